// DrawTextW through device contexts: measuring rectangles, placement, prefixes and clipping.
#include <gtest/gtest.h>

#include "TextTestSupport.h"

namespace mx::platform {
namespace {

using testing::MakeLogFont;
using testing::TextCanvas;

constexpr uint32_t kWhite = 0xFFFFFFFF;

TEST(DrawTextCalc, SingleAndMultiLine) {
  TextCanvas c(8, 8, MakeLogFont(u"Arial", -13));
  const int h = c.metrics().tmHeight;
  RECT r{5, 7, 6, 8};
  EXPECT_EQ(DrawTextW(c.dc(), u"Hello world", -1, &r, DT_CALCRECT | DT_SINGLELINE), h);
  EXPECT_EQ(r, (RECT{5, 7, 5 + c.extent(u"Hello world"), 7 + h}));

  r = {0, 0, 1, 1};
  EXPECT_EQ(DrawTextW(c.dc(), u"one\r\nthree\nfour", -1, &r, DT_CALCRECT), 3 * h);
  EXPECT_EQ(r, (RECT{0, 0, c.extent(u"three"), 3 * h}));

  // The count limits the text; -1 reads to the terminating zero.
  r = {0, 0, 1, 1};
  DrawTextW(c.dc(), u"one\r\nthree", 3, &r, DT_CALCRECT);
  EXPECT_EQ(r, (RECT{0, 0, c.extent(u"one"), h}));

  // Empty text: no lines, or the one line of a single-line box.
  r = {0, 0, 50, 50};
  EXPECT_EQ(DrawTextW(c.dc(), u"", -1, &r, DT_CALCRECT), 0);
  EXPECT_EQ(r, (RECT{0, 0, 0, 0}));
  r = {0, 0, 50, 50};
  EXPECT_EQ(DrawTextW(c.dc(), u"", -1, &r, DT_CALCRECT | DT_SINGLELINE), h);
  EXPECT_EQ(r, (RECT{0, 0, 0, h}));

  // External leading joins the line height only when asked for.
  TextCanvas big(8, 8, MakeLogFont(u"Arial", -16));
  const TEXTMETRICW tm = big.metrics();
  ASSERT_GT(tm.tmExternalLeading, 0);
  r = {0, 0, 100, 0};
  EXPECT_EQ(DrawTextW(big.dc(), u"a\nb", -1, &r, DT_CALCRECT | DT_EXTERNALLEADING),
            2 * (tm.tmHeight + tm.tmExternalLeading));
}

TEST(DrawTextCalc, WordBreakKeepsTheWidthAndGrowsDown) {
  TextCanvas c(8, 8, MakeLogFont(u"Arial", -12));
  const int h = c.metrics().tmHeight;
  const std::u16string sentence = u"The quick brown fox jumps over the lazy dog";
  const int box = c.extent(u"The quick brown fox") + 2;
  RECT r{10, 20, 10 + box, 21};
  EXPECT_EQ(DrawTextW(c.dc(), sentence, &r, DT_CALCRECT | DT_WORDBREAK), 3 * h);
  // Lines "The quick brown fox" / "jumps over the lazy" / "dog": the box narrows to the widest.
  const int widest = std::max(c.extent(u"The quick brown fox"), c.extent(u"jumps over the lazy"));
  EXPECT_EQ(r, (RECT{10, 20, 10 + widest, 20 + 3 * h}));

  // A word wider than the box widens it, unless it may be broken.
  const int narrow = c.extent(u"Super");
  r = {0, 0, narrow, 0};
  EXPECT_EQ(DrawTextW(c.dc(), u"Supercalifragilistic", &r, DT_CALCRECT | DT_WORDBREAK), h);
  EXPECT_EQ(r.right, c.extent(u"Supercalifragilistic"));
  r = {0, 0, narrow, 0};
  EXPECT_GT(DrawTextW(c.dc(), u"Supercalifragilistic", &r, DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL), 2 * h);
  EXPECT_LE(r.right, narrow);

  // An ellipsis measures the shortened line.
  r = {0, 0, narrow + c.extent(u"..."), 0};
  DrawTextW(c.dc(), u"Supercalifragilistic", &r, DT_CALCRECT | DT_SINGLELINE | DT_END_ELLIPSIS);
  EXPECT_LE(r.right, narrow + c.extent(u"..."));
  EXPECT_GE(r.right, c.extent(u"Supe..."));
}

TEST(DrawTextCalc, MarginsAndTabsOfTheExtendedCall) {
  TextCanvas c(8, 8, MakeLogFont(u"Arial", -12));
  const int avg = c.metrics().tmAveCharWidth;
  DRAWTEXTPARAMS p;
  p.iLeftMargin = 4;
  p.iRightMargin = 6;
  p.iTabLength = 3;
  RECT r{0, 0, 200, 0};
  const char16_t text[] = u"a\tb";
  DrawTextExW(c.dc(), text, -1, &r, DT_CALCRECT | DT_EXPANDTABS | DT_SINGLELINE, &p);
  EXPECT_EQ(r.right, 4 + 3 * avg + c.extent(u"b") + 6);
  EXPECT_EQ(p.uiLengthDrawn, 3u);
  // DT_TABSTOP takes the tab length from the second byte of the format, so 2 << 8, which
  // would otherwise be DT_EXTERNALLEADING, means stops two characters apart.
  TextCanvas tabbed(60, 20, MakeLogFont(u"Arial", -12));
  r = {0, 0, 60, 20};
  DrawTextW(tabbed.dc(), u"a\tb", &r, DT_EXPANDTABS | DT_TABSTOP | DT_SINGLELINE | (2 << 8));
  TextCanvas parts(60, 20, MakeLogFont(u"Arial", -12));
  TextOutW(parts.dc(), 0, 0, u"a");
  TextOutW(parts.dc(), 2 * avg, 0, u"b");
  EXPECT_EQ(tabbed.pixels(), parts.pixels());
  p.cbSize = 3;
  EXPECT_EQ(DrawTextExW(c.dc(), text, -1, &r, 0, &p), 0);
}

// Draws with DrawTextW into a fresh canvas.
std::vector<uint32_t> Drawn(std::u16string_view text, RECT r, UINT format, int* result = nullptr) {
  TextCanvas c(120, 50, MakeLogFont(u"Arial", -14));
  int v = DrawTextW(c.dc(), text, &r, format);
  if (result) *result = v;
  return c.pixels();
}

// Draws with TextOutW at (x, y) into a fresh canvas.
std::vector<uint32_t> Out(std::u16string_view text, int x, int y) {
  TextCanvas c(120, 50, MakeLogFont(u"Arial", -14));
  TextOutW(c.dc(), x, y, text);
  return c.pixels();
}

TEST(DrawTextPlace, AlignmentAndReturnValues) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -14));
  const int w = probe.extent(u"Place"), h = probe.metrics().tmHeight;
  const RECT box{10, 4, 100, 44};
  int result = 0;
  EXPECT_EQ(Drawn(u"Place", box, DT_SINGLELINE, &result), Out(u"Place", 10, 4));
  EXPECT_EQ(result, h);
  EXPECT_EQ(Drawn(u"Place", box, DT_SINGLELINE | DT_RIGHT), Out(u"Place", 100 - w, 4));
  EXPECT_EQ(Drawn(u"Place", box, DT_SINGLELINE | DT_CENTER), Out(u"Place", 10 + (90 - w) / 2, 4));
  // Vertical placement of one line; the result is where the text ends below the box's top.
  const int mid = 4 + (40 - h) / 2;
  EXPECT_EQ(Drawn(u"Place", box, DT_SINGLELINE | DT_VCENTER | DT_CENTER, &result), Out(u"Place", 10 + (90 - w) / 2, mid));
  EXPECT_EQ(result, mid - 4 + h);
  EXPECT_EQ(Drawn(u"Place", box, DT_SINGLELINE | DT_BOTTOM | DT_RIGHT, &result), Out(u"Place", 100 - w, 44 - h));
  EXPECT_EQ(result, 40);
  // Several lines ignore vertical placement and align each line on its own.
  TextCanvas c(120, 50, MakeLogFont(u"Arial", -14));
  RECT r = box;
  EXPECT_EQ(DrawTextW(c.dc(), u"ab\nPlace", &r, DT_RIGHT | DT_VCENTER), 2 * h);
  TextCanvas o(120, 50, MakeLogFont(u"Arial", -14));
  TextOutW(o.dc(), 100 - o.extent(u"ab"), 4, u"ab");
  TextOutW(o.dc(), 100 - w, 4 + h, u"Place");
  EXPECT_EQ(c.pixels(), o.pixels());
}

TEST(DrawTextPlace, PrefixUnderlinesTheRightCharacter) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -14));
  const TEXTMETRICW tm = probe.metrics();
  const RECT box{6, 3, 110, 40};
  const auto plain = Out(u"File", 6, 3);
  const auto marked = Drawn(u"F&ile", box, DT_SINGLELINE);
  // The two differ exactly in a black underline under "i", inside the descent.
  const int ix = 6 + probe.extent(u"F"), iw = probe.extent(u"i");
  int underlined = 0;
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 120; ++x) {
      const size_t i = static_cast<size_t>(y) * 120 + x;
      if (marked[i] == plain[i]) continue;
      EXPECT_GE(x, ix);
      EXPECT_LT(x, ix + iw);
      EXPECT_GT(y, 3 + tm.tmAscent);
      EXPECT_LT(y, 3 + tm.tmHeight);
      EXPECT_EQ(marked[i], 0u);
      ++underlined;
    }
  }
  EXPECT_GE(underlined, iw);
  // "&&" is a literal "&"; hidden prefixes draw the text alone; the prefix alone draws only
  // the underline.
  EXPECT_EQ(Drawn(u"A&&B", box, DT_SINGLELINE), Out(u"A&B", 6, 3));
  EXPECT_EQ(Drawn(u"F&ile", box, DT_SINGLELINE | DT_HIDEPREFIX), plain);
  EXPECT_EQ(Drawn(u"&File", box, DT_SINGLELINE | DT_NOPREFIX), Out(u"&File", 6, 3));
  const auto only = Drawn(u"F&ile", box, DT_SINGLELINE | DT_PREFIXONLY);
  for (size_t i = 0; i < only.size(); ++i) EXPECT_EQ(only[i], marked[i] != plain[i] ? 0u : kWhite);
}

TEST(DrawTextPlace, ClipsToTheBoxUnlessTold) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -14));
  const RECT box{20, 10, 50, 20};  // lower than the line and narrower than the text
  const auto clipped = Drawn(u"Overflowing text", box, DT_SINGLELINE);
  const auto free = Drawn(u"Overflowing text", box, DT_SINGLELINE | DT_NOCLIP);
  int outside = 0;
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 120; ++x) {
      const size_t i = static_cast<size_t>(y) * 120 + x;
      const bool in = x >= box.left && x < box.right && y >= box.top && y < box.bottom;
      if (in) {
        EXPECT_EQ(clipped[i], free[i]);
      } else {
        EXPECT_EQ(clipped[i], kWhite) << x << "," << y;
        outside += free[i] != kWhite;
      }
    }
  }
  EXPECT_GT(outside, 0);
}

TEST(DrawTextPlace, EditControlHidesAPartlyVisibleLastLine) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -14));
  const int h = probe.metrics().tmHeight;
  const RECT box{0, 0, 120, 2 * h + h / 2};
  const auto two = Drawn(u"one\ntwo", box, 0);
  EXPECT_EQ(Drawn(u"one\ntwo\nthree", box, DT_EDITCONTROL), two);
  EXPECT_NE(Drawn(u"one\ntwo\nthree", box, 0), two);  // clipped, but partly there
  // The first line shows even in a box lower than a line.
  EXPECT_EQ(Drawn(u"one", RECT{0, 0, 120, h / 2}, DT_EDITCONTROL | DT_NOCLIP), Out(u"one", 0, 0));
}

TEST(DrawTextPlace, EllipsisDrawsTheShortenedLine) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -14));
  const int room = probe.extent(u"Overfl...") + 1;
  const RECT box{5, 5, 5 + room, 30};
  EXPECT_EQ(Drawn(u"Overflowing text", box, DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOCLIP), Out(u"Overfl...", 5, 5));
  EXPECT_EQ(Drawn(u"Overflowing text", box, DT_SINGLELINE | DT_WORD_ELLIPSIS | DT_NOCLIP), Out(u"Overfl...", 5, 5));
}

TEST(DrawTextPlace, OpaqueLinesAndAlphaRule) {
  TextCanvas c(100, 50, MakeLogFont(u"Arial", -14), 0xFF808080);
  SetBkMode(c.dc(), OPAQUE);
  SetBkColor(c.dc(), RGB(0, 0, 0xFF));
  SetTextColor(c.dc(), RGB(0xFF, 0xFF, 0));
  RECT r{2, 2, 98, 48};
  const int h = c.metrics().tmHeight;
  DrawTextW(c.dc(), u"ab\nc", &r, DT_NOCLIP);
  const int wab = c.extent(u"ab"), wc = c.extent(u"c");
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 100; ++x) {
      const bool cell = (y >= 2 && y < 2 + h && x >= 2 && x < 2 + wab) || (y >= 2 + h && y < 2 + 2 * h && x >= 2 && x < 2 + wc);
      if (cell) {
        EXPECT_EQ(c.at(x, y) >> 24, 0u) << x << "," << y;
      } else {
        EXPECT_EQ(c.at(x, y), 0xFF808080u) << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace mx::platform
