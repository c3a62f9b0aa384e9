// Text drawn onto surfaces: the size of a text surface, coverage as alpha, backgrounds, and text
// blended onto an existing picture.
#include <gtest/gtest.h>

#include "host/StdFont.h"
#include "image/API32bppDIB.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "CodecTestSupport.h"
#include "support/Golden.h"

namespace mx::image {
namespace {

using test::px;

host::StdFont font() { return host::StdFont(u"Arial", 12); }

// The size the text surface must have: widest line plus overhang, tallest line times lines.
void expectedSize(const host::StdFont& f, const std::vector<std::u16string>& lines, int& w, int& h) {
  platform::LOGFONTW lf = f.ToLogFont(96);
  platform::HFONT hf = platform::CreateFontIndirectW(&lf);
  platform::HDC dc = platform::CreateCompatibleDC(0);
  platform::HGDIOBJ old = platform::SelectObject(dc, hf);
  platform::TEXTMETRICW tm{};
  platform::GetTextMetricsW(dc, &tm);
  w = h = 0;
  int tallest = 0;
  for (const auto& l : lines) {
    platform::SIZE sz{};
    platform::GetTextExtentPoint32W(dc, l, &sz);
    w = std::max(w, static_cast<int>(sz.cx));
    tallest = std::max(tallest, static_cast<int>(sz.cy));
  }
  w += tm.tmOverhang;
  h = tallest * static_cast<int>(lines.size());
  platform::SelectObject(dc, old);
  platform::DeleteDC(dc);
  platform::DeleteObject(hf);
}

TEST(DrawText, AnEmptySurfaceBecomesTheTextWithCoverageAsAlpha) {
  API32bppDIB d;
  ASSERT_TRUE(d.DrawText_stdFont(font(), u"Ag\r\nWide line", 0, 0, 0, 0, 0, 0x0000C0));
  int w = 0, h = 0;
  expectedSize(font(), {u"Ag", u"Wide line"}, w, h);
  EXPECT_EQ(d.Width(), w);
  EXPECT_EQ(d.Height(), h);
  EXPECT_EQ(d.ImageType(), imgBmpPARGB);
  EXPECT_EQ(d.Alpha(), AlphaComplex);
  // Every pixel is the fore colour (red 192) scaled by its own alpha; some are solid, some
  // partial, and the corners are empty.
  int solid = 0, partial = 0;
  for (uint32_t p : test::pixels(d)) {
    uint32_t a = p >> 24;
    EXPECT_EQ(p & 0xFFFFFF, (192 * a / 255) << 16) << std::hex << p;
    solid += a == 255;
    partial += a > 0 && a < 255;
  }
  EXPECT_GT(solid, 0);
  EXPECT_GT(partial, 0);
  EXPECT_EQ(px(d, 0, 0), 0u);
  EXPECT_FALSE(d.DrawText_stdFont(font(), u""));
}

TEST(DrawText, BackgroundColourMakesAnOpaqueTextSurface) {
  API32bppDIB d;
  ASSERT_TRUE(d.DrawText_stdFont(font(), u"Hi", 0, 0, 0, 0, 0, 0x000000, 0xFFEE11));
  EXPECT_EQ(d.ImageType(), imgBitmap);
  EXPECT_EQ(d.Alpha(), AlphaNone);
  bool dark = false;
  for (uint32_t p : test::pixels(d)) {
    EXPECT_EQ(p >> 24, 255u);
    dark |= (p & 0xFF) < 0x40;
  }
  EXPECT_TRUE(dark);
  EXPECT_EQ(px(d, 0, 0), 0xFF11EEFFu);  // the background, red in the low byte of the argument
}

TEST(DrawText, TextBlendsOntoAnExistingPictureAndAnUprightCopyOfARotatedFont) {
  API32bppDIB d;
  d.InitializeDIB(60, 40);
  d.CreateCheckerBoard(60, 0xFFFFFF, 0xFFFFFF);  // opaque white
  platform::LOGFONTW lf = font().ToLogFont(96);
  lf.lfEscapement = 900;
  platform::HFONT turned = platform::CreateFontIndirectW(&lf);
  ASSERT_TRUE(d.DrawText_hFont(turned, u"Te\r\nxt", platform::TA_CENTER, 30, 20, 0, 0, 0x800000, -1, 100, -1, 0.0f,
                               true));
  platform::DeleteObject(turned);
  // Still opaque everywhere; blue text darkened red and green somewhere near the centre.
  int touched = 0;
  for (uint32_t p : test::pixels(d)) {
    EXPECT_EQ(p >> 24, 255u);
    touched += (p & 0xFF) < 0xFF;
  }
  EXPECT_GT(touched, 10);
  EXPECT_EQ(px(d, 0, 0), 0xFFFFFFFFu);
  mx::test::ExpectGolden("image", "drawtext_centred", d.Width(), d.Height(), test::pixels(d));
}

}  // namespace
}  // namespace mx::image
