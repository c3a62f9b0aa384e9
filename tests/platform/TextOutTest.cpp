// Measuring and single-line drawing through device contexts.
#include <gtest/gtest.h>

#include "TextTestSupport.h"
#include "platform/HandleTable.h"

namespace mx::platform {
namespace {

using testing::MakeLogFont;
using testing::TextCanvas;

TEST(TextMeasure, ExtentsAddUpWithoutKerning) {
  for (const char16_t* face : {u"Arial", u"Times New Roman", u"Tahoma", u"Courier New"}) {
    TextCanvas c(8, 8, MakeLogFont(face, -15));
    const TEXTMETRICW tm = c.metrics();
    SIZE empty{-1, -1};
    ASSERT_TRUE(GetTextExtentPoint32W(c.dc(), u"", 0, &empty));
    EXPECT_EQ(empty.cx, 0);
    EXPECT_EQ(empty.cy, tm.tmHeight);
    // Pairs that kern in these faces measure as their parts.
    for (std::u16string_view s : {u"ab", u"AV", u"To", u"Wa", u"Ty."}) {
      int sum = 0;
      for (char16_t ch : s) sum += c.extent(std::u16string_view(&ch, 1));
      EXPECT_EQ(c.extent(s), sum) << std::string(s.begin(), s.end());
    }
    EXPECT_EQ(tm.tmHeight, tm.tmAscent + tm.tmDescent);
  }
}

TEST(TextMeasure, SurrogatePairsAndCharWidths) {
  TextCanvas c(8, 8, MakeLogFont(u"Arial", -16));
  INT widths[3] = {};
  ASSERT_TRUE(GetCharWidth32W(c.dc(), U'a', U'c', widths));
  EXPECT_EQ(c.extent(u"abc"), widths[0] + widths[1] + widths[2]);
  INT emoji = 0;
  ASSERT_TRUE(GetCharWidth32W(c.dc(), 0x1F600, 0x1F600, &emoji));
  EXPECT_GT(emoji, 0);
  EXPECT_EQ(c.extent(u"\U0001F600"), emoji);  // one glyph, not two halves
  EXPECT_FALSE(GetCharWidth32W(c.dc(), 10, 9, widths));

  // Fit and partial extents per UTF-16 unit; both halves of a pair end at the pair's end.
  std::u16string s = u"a\U0001F600b";
  int fit = -1;
  int dx[4] = {};
  SIZE sz;
  ASSERT_TRUE(GetTextExtentExPointW(c.dc(), s.data(), 4, widths[0] + emoji, &fit, dx, &sz));
  EXPECT_EQ(fit, 3);
  EXPECT_EQ(dx[0], widths[0]);
  EXPECT_EQ(dx[1], widths[0] + emoji);
  EXPECT_EQ(dx[2], widths[0] + emoji);
  EXPECT_EQ(sz.cx, widths[0] + emoji + widths[1]);
  ASSERT_TRUE(GetTextExtentExPointW(c.dc(), s.data(), 4, widths[0] + emoji - 1, &fit, nullptr, nullptr));
  EXPECT_EQ(fit, 1);
}

TEST(TextMeasure, BadArgumentsFailCleanly) {
  SIZE sz;
  TEXTMETRICW tm;
  EXPECT_FALSE(GetTextExtentPoint32W(0, u"a", 1, &sz));
  EXPECT_FALSE(GetTextMetricsW(0x12345678, &tm));
  EXPECT_FALSE(TextOutW(0, 0, 0, u"a", 1));
  RECT r{0, 0, 10, 10};
  EXPECT_EQ(DrawTextW(0, u"a", -1, &r, 0), 0);
  TextCanvas c(8, 8, MakeLogFont(u"Arial", -12));
  EXPECT_FALSE(GetTextExtentPoint32W(c.dc(), nullptr, 3, &sz));
  EXPECT_FALSE(TextOutW(c.dc(), 0, 0, u"a", -1));
  EXPECT_EQ(DrawTextW(c.dc(), u"a", -1, nullptr, 0), 0);
}

TEST(TextMeasure, FaceNameAndDefaultFont) {
  TextCanvas c(8, 8, MakeLogFont(u"Tahoma", -11));
  char16_t name[32];
  EXPECT_EQ(GetTextFaceW(c.dc(), 32, name), 6);
  EXPECT_EQ(std::u16string(name), u"Tahoma");
  EXPECT_EQ(GetTextFaceW(c.dc(), 0, nullptr), 7);
  EXPECT_EQ(GetTextFaceW(c.dc(), 4, name), 3);
  EXPECT_EQ(std::u16string(name), u"Tah");

  // A fresh memory DC measures with its stock font.
  HDC dc = CreateCompatibleDC(0);
  TEXTMETRICW tm;
  ASSERT_TRUE(GetTextMetricsW(dc, &tm));
  EXPECT_GT(tm.tmHeight, 0);
  DeleteDC(dc);
}

// Draws one string with the given alignment and returns the pixels.
std::vector<uint32_t> Draw(UINT align, int x, int y, std::u16string_view s = u"Align") {
  TextCanvas c(120, 60, MakeLogFont(u"Arial", -18));
  SetTextAlign(c.dc(), align);
  EXPECT_TRUE(TextOutW(c.dc(), x, y, s));
  return c.pixels();
}

TEST(TextOut, AlignmentPlacesTheTextExactly) {
  TextCanvas probe(8, 8, MakeLogFont(u"Arial", -18));
  const int w = probe.extent(u"Align");
  const TEXTMETRICW tm = probe.metrics();
  const auto reference = Draw(TA_LEFT | TA_TOP, 20, 10);
  EXPECT_NE(reference, Draw(TA_LEFT | TA_TOP, 21, 10));  // the comparison can see one pixel
  EXPECT_EQ(Draw(TA_RIGHT | TA_TOP, 20 + w, 10), reference);
  EXPECT_EQ(Draw(TA_CENTER | TA_TOP, 20 + w / 2, 10), reference);
  EXPECT_EQ(Draw(TA_LEFT | TA_BASELINE, 20, 10 + tm.tmAscent), reference);
  EXPECT_EQ(Draw(TA_LEFT | TA_BOTTOM, 20, 10 + tm.tmHeight), reference);
  EXPECT_EQ(Draw(TA_RIGHT | TA_BOTTOM, 20 + w, 10 + tm.tmHeight), reference);
}

TEST(TextOut, UpdateCurrentPositionContinuesTheLine) {
  const auto whole = Draw(TA_LEFT, 7, 9, u"Type");
  TextCanvas c(120, 60, MakeLogFont(u"Arial", -18));
  SetTextAlign(c.dc(), TA_UPDATECP);
  LookupDC(c.dc())->currentPos = {7, 9};
  TextOutW(c.dc(), 500, 500, u"Ty");  // the coordinates are ignored
  TextOutW(c.dc(), 0, 0, u"pe");
  EXPECT_EQ(c.pixels(), whole);
  POINT cp;
  GetCurrentPositionEx(c.dc(), &cp);
  EXPECT_EQ(cp.x, 7 + c.extent(u"Type"));
  EXPECT_EQ(cp.y, 9);
  // Right-aligned text ends at the position and leaves it at its start.
  SetTextAlign(c.dc(), TA_UPDATECP | TA_RIGHT);
  TextOutW(c.dc(), 0, 0, u"ab");
  GetCurrentPositionEx(c.dc(), &cp);
  EXPECT_EQ(cp.x, 7 + c.extent(u"Type") - c.extent(u"ab"));
}

TEST(TextOut, OpaqueBackgroundFillsTheCellOnly) {
  TextCanvas c(100, 40, MakeLogFont(u"Verdana", -14), 0xFF123456);
  SetBkMode(c.dc(), OPAQUE);
  SetBkColor(c.dc(), RGB(0x10, 0x20, 0x30));
  SetTextColor(c.dc(), RGB(0xFF, 0xFF, 0xFF));
  ASSERT_TRUE(TextOutW(c.dc(), 11, 7, u"Cell"));
  const int w = c.extent(u"Cell"), h = c.metrics().tmHeight;
  int ink = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 100; ++x) {
      const uint32_t p = c.at(x, y);
      if (x >= 11 && x < 11 + w && y >= 7 && y < 7 + h) {
        // Background or text blended over it, and the alpha byte always cleared.
        EXPECT_EQ(p >> 24, 0u) << x << "," << y;
        ink += p != 0x102030;
      } else {
        EXPECT_EQ(p, 0xFF123456u) << x << "," << y;
      }
    }
  }
  EXPECT_GT(ink, 20);
}

TEST(TextOut, ExtTextOutOpaqueAndClippedRectangle) {
  TextCanvas c(100, 40, MakeLogFont(u"Arial", -20, 700));
  SetBkColor(c.dc(), RGB(0, 0xFF, 0));
  RECT r{10, 5, 40, 25};
  const char16_t text[] = u"Clipped text";
  ASSERT_TRUE(ExtTextOutW(c.dc(), 5, 2, ETO_OPAQUE | ETO_CLIPPED, &r, text, 12, nullptr));
  int ink = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 100; ++x) {
      const uint32_t p = c.at(x, y);
      if (x >= r.left && x < r.right && y >= r.top && y < r.bottom) {
        ink += p != 0x00FF00;
        EXPECT_EQ(p >> 24, 0u);
      } else {
        EXPECT_EQ(p, 0xFFFFFFFFu) << x << "," << y;
      }
    }
  }
  EXPECT_GT(ink, 10);
  // ETO_OPAQUE with no text still fills.
  c.fill_all(0xFFFFFFFF);
  ASSERT_TRUE(ExtTextOutW(c.dc(), 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr));
  EXPECT_EQ(c.at(10, 5), 0x00FF00u);
  EXPECT_EQ(c.at(39, 24), 0x00FF00u);
  EXPECT_EQ(c.at(40, 24), 0xFFFFFFFFu);
}

TEST(TextOut, SpacingArrayPlacesEachCharacter) {
  TextCanvas a(100, 30, MakeLogFont(u"Arial", -16));
  const INT dx[] = {20, 20, 20};
  ASSERT_TRUE(ExtTextOutW(a.dc(), 0, 0, 0, nullptr, u"ijk", 3, dx));
  TextCanvas b(100, 30, MakeLogFont(u"Arial", -16));
  TextOutW(b.dc(), 0, 0, u"i");
  TextOutW(b.dc(), 20, 0, u"j");
  TextOutW(b.dc(), 40, 0, u"k");
  EXPECT_EQ(a.pixels(), b.pixels());
}

TEST(TextOut, FollowsOriginsAndClipRegion) {
  TextCanvas moved(80, 40, MakeLogFont(u"Arial", -16));
  SetViewportOrgEx(moved.dc(), 13, 6, nullptr);
  SetWindowOrgEx(moved.dc(), 3, 1, nullptr);
  TextOutW(moved.dc(), 0, 0, u"Org");
  TextCanvas direct(80, 40, MakeLogFont(u"Arial", -16));
  TextOutW(direct.dc(), 10, 5, u"Org");
  EXPECT_EQ(moved.pixels(), direct.pixels());

  TextCanvas clipped(80, 40, MakeLogFont(u"Arial", -16));
  HRGN rgn = CreateRectRgn(12, 0, 20, 40);
  SelectClipRgn(clipped.dc(), rgn);
  DeleteObject(rgn);
  TextOutW(clipped.dc(), 10, 5, u"Org");
  const auto all = direct.pixels();
  const auto part = clipped.pixels();
  int inside = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 80; ++x) {
      const size_t i = static_cast<size_t>(y) * 80 + x;
      if (x >= 12 && x < 20) {
        EXPECT_EQ(part[i], all[i]);
        inside += all[i] != 0xFFFFFFFF;
      } else {
        EXPECT_EQ(part[i], 0xFFFFFFFFu) << x << "," << y;
      }
    }
  }
  EXPECT_GT(inside, 0);
}

TEST(TextOut, DrawingKeepsFontHandlesBalanced) {
  const int before = LiveHandleCount(HandleType::Font);
  {
    TextCanvas c(60, 20, MakeLogFont(u"Arial", -12, 700, true, true, true));
    TextOutW(c.dc(), 0, 0, u"handles");
    RECT r{0, 0, 60, 20};
    DrawTextW(c.dc(), u"&handles", &r, DT_SINGLELINE | DT_END_ELLIPSIS);
    EXPECT_EQ(LiveHandleCount(HandleType::Font), before + 1);
  }
  EXPECT_EQ(LiveHandleCount(HandleType::Font), before);
}

TEST(TextOut, NarrowTextReadsTheWesternCodePage) {
  TextCanvas a(80, 20, MakeLogFont(u"Arial", -14));
  TextCanvas b(80, 20, MakeLogFont(u"Arial", -14));
  TextOutA(a.dc(), 0, 0, "\x80 \xE7\xE3o", 5);
  TextOutW(b.dc(), 0, 0, u"\u20AC \u00E7\u00E3o");
  EXPECT_EQ(a.pixels(), b.pixels());
}

}  // namespace
}  // namespace mx::platform
