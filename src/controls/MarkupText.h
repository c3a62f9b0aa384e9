#pragma once
// The small markup of label captions, and its layout and drawing.
//
// Tags, without regard to case: <b> and <strong> (bold), <i>, <u>, <s> (struck through), each
// closed by its "</...>" form; <br> (also "<br/>") for a new line; <c=colour> ... </c> for a
// colour. Tags nest; one left open runs to the end of the text; a closing tag with nothing open
// is dropped. Anything between "<" and ">" that is not one of these, and a "<" with no ">" after
// it, is shown as text. Colours of <c=...> (quotes around the value allowed):
//   #RRGGBB or #RGB        as on the web
//   &HBBGGRR (or &H...&)   the OLE_COLOR of the host's hexadecimal form
//   a decimal number       an OLE_COLOR
//   a name                 black, white, red, green, blue, yellow, gray/grey, silver, maroon,
//                          navy, purple, teal, olive, orange, lime, aqua/cyan, fuchsia/magenta
// A colour that is none of these leaves the tag as text. With prefix processing on, "&&" shows
// one "&" and "&x" shows x underlined, as the host's labels show an access key.
//
// Layout breaks lines at <br>, and, with a wrap width, between words (at blanks); a word wider
// than the line is broken between characters. Blanks at the start of a wrapped line are dropped.
// Pieces of one line share a baseline.
#include <cstdint>
#include <map>
#include <vector>

#include "host/Colors.h"
#include "host/String.h"
#include "platform/LogFont.h"
#include "platform/Types.h"

namespace mx::controls {

using host::OLE_COLOR;

struct MarkupStyle {
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strike = false;
  bool hasColor = false;
  OLE_COLOR color = 0;
  friend bool operator==(const MarkupStyle&, const MarkupStyle&) = default;
};

// A stretch of text in one style, or a line break (text empty).
struct MarkupRun {
  host::String text;
  MarkupStyle style;
  bool lineBreak = false;
  friend bool operator==(const MarkupRun&, const MarkupRun&) = default;
};

// With readTags False every "<" is text, and only the prefix is read.
[[nodiscard]] std::vector<MarkupRun> ParseMarkup(host::StringView text, bool processPrefix = true,
                                                bool readTags = true);
// Reads the value of a <c=...> tag; false when it is not a colour.
[[nodiscard]] bool ParseMarkupColor(host::StringView colourText, OLE_COLOR& colour);
// The text as it shows, without tags, with a line feed for each line break.
[[nodiscard]] host::String MarkupPlainText(host::StringView text, bool processPrefix = true);

// The fonts of the styles over one base font, made on first use and released together.
class MarkupFonts {
 public:
  explicit MarkupFonts(const platform::LOGFONTW& base) : m_base(base) {}
  ~MarkupFonts();
  MarkupFonts(const MarkupFonts&) = delete;
  MarkupFonts& operator=(const MarkupFonts&) = delete;
  [[nodiscard]] platform::HFONT Get(const MarkupStyle& style);

 private:
  platform::LOGFONTW m_base;
  std::map<int, platform::HFONT> m_fonts;  // by the four style bits
};

struct MarkupPiece {
  int32_t x = 0;  // from the line's start
  int32_t width = 0;
  int32_t ascent = 0;
  host::String text;
  MarkupStyle style;
};

struct MarkupLine {
  std::vector<MarkupPiece> pieces;
  int32_t width = 0;
  int32_t height = 0;
  int32_t ascent = 0;
};

struct MarkupLayout {
  std::vector<MarkupLine> lines;
  int32_t width = 0;   // of the widest line
  int32_t height = 0;  // of all lines
};

// Lays the runs out with the fonts selected into dc in turn; wrapWidth <= 0 breaks only at <br>.
[[nodiscard]] MarkupLayout LayoutMarkup(platform::HDC dc, MarkupFonts& fonts, const std::vector<MarkupRun>& runs,
                                        int32_t wrapWidth);
// Draws the layout from the top of rect, each line placed by alignment (0 left, 1 right,
// 2 centre) within rect's width; pieces without a colour of their own take defaultColour.
// The background is left as it is.
void DrawMarkup(platform::HDC dc, MarkupFonts& fonts, const MarkupLayout& layout, const platform::RECT& rect,
                int32_t alignment, OLE_COLOR defaultColour);

}  // namespace mx::controls
