#pragma once
// Line layout of formatted text: access-key prefixes, explicit and automatic line breaks, tab
// stops and ellipses. DrawTextW measures and draws with it; it needs a font but no DC, so
// layout can be checked without pixels.
#include <string>
#include <string_view>
#include <vector>

#include "platform/FontEngine.h"
#include "platform/Types.h"

namespace mx::platform {

struct TextLine {
  std::u32string text;     // what is drawn; tabs already stand as blanks when expanded
  std::vector<int> steps;  // pen step after each character, tab stops included
  int width = 0;
  std::vector<int> underlines;  // indexes in `text` of the characters marked with "&"
};

struct TextLayoutOptions {
  UINT format = 0;      // DT_ flags; DT_TABSTOP bits already taken out
  int maxWidth = 0;     // width lines are broken and shortened to
  int tabWidth = 0;     // pixels between tab stops, 0 when tabs are not expanded
  bool noWrap = false;  // lines are never broken (text placed at the current position)
};

// Lays out already decoded text. A single-line layout has exactly one line; a multi-line one
// has none for empty text.
[[nodiscard]] std::vector<TextLine> LayoutText(const Font& font, std::u32string_view text,
                                               const TextLayoutOptions& options);

}  // namespace mx::platform
