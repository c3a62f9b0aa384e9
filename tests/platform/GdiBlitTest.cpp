#include <gtest/gtest.h>

#include <random>

#include "GdiTestSupport.h"
#include "platform/Blend.h"
#include "platform/Gdi.h"

namespace mx::platform {
namespace {

using test::Canvas;

void numberPixels(Canvas& c) {
  for (int y = 0; y < c.height(); ++y)
    for (int x = 0; x < c.width(); ++x) c.at(x, y) = 0x01000000u * static_cast<uint32_t>(y + 1) + static_cast<uint32_t>(x * 16 + y);
}

TEST(GdiBlit, BitBltCopiesAllFourBytesAndClipsToBothSurfaces) {
  Canvas src(4, 3, 0, /*bottomUp=*/false), dst(6, 5, 0xAAAAAAAA);  // rows run opposite ways
  numberPixels(src);
  // Partly off the destination (left) and partly off the source (bottom).
  ASSERT_TRUE(BitBlt(dst.dc(), -1, 3, 4, 3, src.dc(), 0, 1, SRCCOPY));
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 6; ++x) {
      bool inside = x < 3 && y >= 3;  // source rows 1..2 land on rows 3..4
      uint32_t expected = inside ? src.at(x + 1, y - 2) : 0xAAAAAAAAu;
      EXPECT_EQ(dst.at(x, y), expected) << x << "," << y;
    }
}

TEST(GdiBlit, OverlappingCopyOnOneSurfaceReadsThePictureAsItWas) {
  for (auto [dx, dy] : {std::pair{1, 1}, std::pair{-1, -1}, std::pair{2, 0}, std::pair{0, -2}, std::pair{-3, 1}}) {
    Canvas c(8, 7);
    numberPixels(c);
    std::vector<uint32_t> before = c.pixels();
    ASSERT_TRUE(BitBlt(c.dc(), 2 + dx, 2 + dy, 4, 3, c.dc(), 2, 2, SRCCOPY));
    for (int y = 0; y < 7; ++y)
      for (int x = 0; x < 8; ++x) {
        int sx = x - dx, sy = y - dy;
        bool inDest = x >= 2 + dx && x < 6 + dx && y >= 2 + dy && y < 5 + dy;
        uint32_t expected = inDest ? before[static_cast<size_t>(sy * 8 + sx)] : before[static_cast<size_t>(y * 8 + x)];
        ASSERT_EQ(c.at(x, y), expected) << dx << "," << dy << " at " << x << "," << y;
      }
  }
}

TEST(GdiBlit, OverlappingCopyFromPartlyOffTheSurface) {
  Canvas c(6, 6);
  numberPixels(c);
  std::vector<uint32_t> before = c.pixels();
  ASSERT_TRUE(BitBlt(c.dc(), 1, 1, 4, 4, c.dc(), -1, -1, SRCCOPY));
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 6; ++x) {
      // Destination pixels whose source is off the surface (x or y equal to 1) are not drawn.
      bool copied = x >= 2 && x < 5 && y >= 2 && y < 5;
      uint32_t expected = copied ? before[static_cast<size_t>((y - 2) * 6 + x - 2)] : before[static_cast<size_t>(y * 6 + x)];
      ASSERT_EQ(c.at(x, y), expected) << x << "," << y;
    }
}

TEST(GdiBlit, RasterOperations) {
  Canvas src(1, 1), dst(1, 1);
  const uint32_t s = 0x80F0CC0F, d = 0x40AA33F0;
  HBRUSH brush = CreateSolidBrush(RGB(0x12, 0x34, 0x56));  // pixel 0x00123456
  HGDIOBJ old = SelectObject(dst.dc(), brush);
  struct Case {
    DWORD rop;
    uint32_t expected;
  };
  const Case cases[] = {
      {SRCCOPY, s},
      {SRCPAINT, s | d},
      {SRCAND, s & d},
      {SRCINVERT, s ^ d},
      {SRCERASE, s & ~d},
      {NOTSRCCOPY, ~s},
      {MERGECOPY, s & 0x00123456u},
      {PATCOPY, 0x00123456u},
      {PATINVERT, d ^ 0x00123456u},  // reads the destination: alpha kept
      {DSTINVERT, ~d},
      {BLACKNESS, 0x00000000u},
      {WHITENESS, 0x00FFFFFFu},  // a fill: alpha 0
  };
  for (const Case& c : cases) {
    src.at(0, 0) = s;
    dst.at(0, 0) = d;
    ASSERT_TRUE(BitBlt(dst.dc(), 0, 0, 1, 1, src.dc(), 0, 0, c.rop));
    EXPECT_EQ(dst.at(0, 0), c.expected) << std::hex << c.rop;
  }
  SelectObject(dst.dc(), old);
  DeleteObject(brush);
}

TEST(GdiBlit, StretchNearestPicksTruncatedSourcePositions) {
  Canvas src(4, 1), dst(8, 2);
  for (int x = 0; x < 4; ++x) src.at(x, 0) = 0x10u * static_cast<uint32_t>(x + 1);
  SetStretchBltMode(dst.dc(), COLORONCOLOR);
  ASSERT_TRUE(StretchBlt(dst.dc(), 0, 0, 8, 1, src.dc(), 0, 0, 4, 1, SRCCOPY));
  const uint32_t up[8] = {0x10, 0x10, 0x20, 0x20, 0x30, 0x30, 0x40, 0x40};
  for (int x = 0; x < 8; ++x) EXPECT_EQ(dst.at(x, 0), up[x]) << x;
  // Shrinking 4 -> 3: i * 4 / 3 = 0, 1, 2.
  ASSERT_TRUE(StretchBlt(dst.dc(), 0, 1, 3, 1, src.dc(), 0, 0, 4, 1, SRCCOPY));
  EXPECT_EQ(dst.at(0, 1), 0x10u);
  EXPECT_EQ(dst.at(1, 1), 0x20u);
  EXPECT_EQ(dst.at(2, 1), 0x30u);
  // The classic default mode ANDs the pixels a shrink drops (their footprints overlap), the
  // opposite mode ORs them.
  SetStretchBltMode(dst.dc(), BLACKONWHITE);
  ASSERT_TRUE(StretchBlt(dst.dc(), 0, 1, 3, 1, src.dc(), 0, 0, 4, 1, SRCCOPY));
  EXPECT_EQ(dst.at(0, 1), 0x10u & 0x20u);
  EXPECT_EQ(dst.at(1, 1), 0x20u & 0x30u);
  EXPECT_EQ(dst.at(2, 1), 0x30u & 0x40u);
  SetStretchBltMode(dst.dc(), WHITEONBLACK);
  ASSERT_TRUE(StretchBlt(dst.dc(), 0, 1, 3, 1, src.dc(), 0, 0, 4, 1, SRCCOPY));
  EXPECT_EQ(dst.at(2, 1), 0x30u | 0x40u);
  SetStretchBltMode(dst.dc(), COLORONCOLOR);
  // A negative width mirrors into the columns x, x - 1, ..., x + w + 1.
  dst.fill(0);
  ASSERT_TRUE(StretchBlt(dst.dc(), 3, 0, -4, 1, src.dc(), 0, 0, 4, 1, SRCCOPY));
  for (int x = 0; x < 4; ++x) EXPECT_EQ(dst.at(x, 0), 0x10u * static_cast<uint32_t>(4 - x)) << x;
  EXPECT_EQ(dst.at(4, 0), 0u);
  // Upside down, as the image code flips pictures.
  Canvas col(1, 3);
  for (int y = 0; y < 3; ++y) col.at(0, y) = static_cast<uint32_t>(y + 1);
  Canvas flipped(1, 3);
  ASSERT_TRUE(StretchBlt(flipped.dc(), 0, 2, 1, -3, col.dc(), 0, 0, 1, 3, SRCCOPY));
  EXPECT_EQ(flipped.pixels(), (std::vector<uint32_t>{3, 2, 1}));
}

TEST(GdiBlit, HalftoneAveragesTheCoveredArea) {
  Canvas src(3, 2), dst(2, 1);
  // Channels chosen so that the weighted sums show the rounding.
  const uint32_t v[2][3] = {{0x00000000, 0x0A141E28, 0xFFFFFFFF}, {0x01010101, 0x02020202, 0x03030303}};
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) src.at(x, y) = v[y][x];
  EXPECT_EQ(SetStretchBltMode(dst.dc(), HALFTONE), BLACKONWHITE);
  ASSERT_TRUE(StretchBlt(dst.dc(), 0, 0, 2, 1, src.dc(), 0, 0, 3, 2, SRCCOPY));
  // Destination pixel 0 covers source columns 0 (weight 2) and 1 (weight 1) of both rows; the
  // weights sum to 3 * 2 = 6 and the sum is rounded: (sum + 3) / 6.
  auto expect = [&](int dx, int c0, int c1, int w0, int w1) {
    for (int shift = 0; shift < 32; shift += 8) {
      uint32_t sum = 0;
      for (int y = 0; y < 2; ++y)
        sum += ((v[y][c0] >> shift) & 0xFF) * static_cast<uint32_t>(w0) + ((v[y][c1] >> shift) & 0xFF) * static_cast<uint32_t>(w1);
      EXPECT_EQ((dst.at(dx, 0) >> shift) & 0xFF, (sum + 3) / 6) << "pixel " << dx << " shift " << shift;
    }
  };
  expect(0, 0, 1, 2, 1);
  expect(1, 1, 2, 1, 2);
  // Spot values: blue of pixel 0 is (0*2 + 0x28 + 1*2 + 2 + 3) / 6 = 47 / 6 = 7.
  EXPECT_EQ(dst.at(0, 0) & 0xFF, 7u);
  EXPECT_EQ(dst.at(1, 0) >> 24, (0x0A + 0xFF * 2 + 2 + 3 * 2 + 3) / 6u);
}

TEST(GdiBlit, AlphaBlendFollowsTheIntegerFormula) {
  Canvas src(16, 16), dst(16, 16);
  std::mt19937 rng(42);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) {
      uint32_t a = (x + y) % 4 == 0 ? 0 : (x + y) % 4 == 1 ? 255 : rng() & 0xFF;
      src.at(x, y) = (a << 24) | ((a ? rng() % (a + 1) : 0) << 16) | ((a ? rng() % (a + 1) : 0) << 8) | (a ? rng() % (a + 1) : 0);
      dst.at(x, y) = rng();
    }
  for (int k : {255, 128, 1}) {
    for (bool perPixel : {true, false}) {
      Canvas d2(16, 16);
      for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) d2.at(x, y) = dst.at(x, y);
      BLENDFUNCTION bf{AC_SRC_OVER, 0, static_cast<BYTE>(k), perPixel ? AC_SRC_ALPHA : BYTE{0}};
      ASSERT_TRUE(AlphaBlend(d2.dc(), 0, 0, 16, 16, src.dc(), 0, 0, 16, 16, bf));
      for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
          uint32_t s = perPixel ? src.at(x, y) : src.at(x, y) | 0xFF000000u, d = dst.at(x, y), want = 0;
          uint32_t sa = ((s >> 24) * static_cast<uint32_t>(k)) / 255;
          for (int sh = 0; sh < 32; sh += 8) {
            uint32_t sc = ((s >> sh) & 0xFF) * static_cast<uint32_t>(k) / 255;
            want |= std::min(255u, sc + ((d >> sh) & 0xFF) * (255 - sa) / 255) << sh;
          }
          ASSERT_EQ(d2.at(x, y), want) << "k " << k << " perPixel " << perPixel << " at " << x << "," << y;
        }
    }
  }
}

TEST(GdiBlit, AlphaBlendRefusesBadRectanglesAndStretches) {
  Canvas a(8, 8, 0xFF000000), b(4, 4, 0xFF00FF00);
  BLENDFUNCTION bf{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  EXPECT_FALSE(AlphaBlend(a.dc(), 0, 0, 4, 4, b.dc(), 1, 0, 4, 4, bf));  // leaves the source
  EXPECT_FALSE(AlphaBlend(a.dc(), 0, 0, 4, 4, b.dc(), -1, 0, 2, 2, bf));
  EXPECT_FALSE(AlphaBlend(a.dc(), 2, 2, 4, 4, a.dc(), 0, 0, 4, 4, bf));  // overlap on one surface
  EXPECT_FALSE(AlphaBlend(a.dc(), 0, 0, -4, 4, b.dc(), 0, 0, 4, 4, bf));
  BLENDFUNCTION bad = bf;
  bad.BlendOp = 1;
  EXPECT_FALSE(AlphaBlend(a.dc(), 0, 0, 4, 4, b.dc(), 0, 0, 4, 4, bad));
  EXPECT_EQ(a.at(0, 0), 0xFF000000u);
  // Same surface, apart: allowed.
  a.at(0, 0) = 0xFF123456;
  EXPECT_TRUE(AlphaBlend(a.dc(), 4, 4, 1, 1, a.dc(), 0, 0, 1, 1, bf));
  EXPECT_EQ(a.at(4, 4), 0xFF123456u);
  // Stretched 4 x 4 -> 8 x 8 by nearest pixel.
  b.at(3, 3) = 0xFF0000FF;
  EXPECT_TRUE(AlphaBlend(a.dc(), 0, 0, 8, 8, b.dc(), 0, 0, 4, 4, bf));
  EXPECT_EQ(a.at(7, 7), 0xFF0000FFu);
  EXPECT_EQ(a.at(6, 6), 0xFF0000FFu);
  EXPECT_EQ(a.at(5, 5), 0xFF00FF00u);
}

TEST(GdiBlit, TransparentBltSkipsTheKeyColour) {
  Canvas src(3, 1), dst(3, 1, 0x11111111);
  src.at(0, 0) = 0xFFFF00FF;  // magenta key (alpha is ignored in the comparison)
  src.at(1, 0) = 0x00000001;
  src.at(2, 0) = 0x00FF00FF;
  ASSERT_TRUE(TransparentBlt(dst.dc(), 0, 0, 3, 1, src.dc(), 0, 0, 3, 1, RGB(255, 0, 255)));
  EXPECT_EQ(dst.pixels(), (std::vector<uint32_t>{0x11111111, 0x00000001, 0x11111111}));
}

TEST(GdiBlit, ViewportAndWindowOriginsMoveBothEnds) {
  Canvas src(4, 4), dst(4, 4);
  numberPixels(src);
  SetViewportOrgEx(dst.dc(), 2, 1, nullptr);
  SetWindowOrgEx(src.dc(), -1, -1, nullptr);  // logical (0, 0) of the source is device (1, 1)
  ASSERT_TRUE(BitBlt(dst.dc(), 0, 0, 1, 1, src.dc(), 0, 0, SRCCOPY));
  EXPECT_EQ(dst.at(2, 1), src.at(1, 1));
  POINT old;
  OffsetViewportOrgEx(dst.dc(), -2, -1, &old);
  EXPECT_EQ(old, (POINT{2, 1}));
}

TEST(GdiDib, BitsInAndOutInBothRowOrdersAndDepths) {
  Canvas c(3, 2);
  // Bottom-up 24-bit rows are padded to 12 bytes; scan 0 is the bottom picture row.
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = 3;
  bi.bmiHeader.biHeight = 2;
  bi.bmiHeader.biBitCount = 24;
  uint8_t rows[24] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 10, 11, 12, 13, 14, 15, 16, 17, 18, 0, 0, 0};
  ASSERT_EQ(SetDIBits(c.dc(), c.bitmap(), 0, 2, rows, &bi, DIB_RGB_COLORS), 2);
  EXPECT_EQ(c.at(0, 1), 0x00030201u);  // bottom row from the first scan
  EXPECT_EQ(c.at(2, 0), 0x00121110u);

  // Back out as top-down 32-bit.
  BITMAPINFO td{};
  td.bmiHeader.biWidth = 3;
  td.bmiHeader.biHeight = -2;
  uint32_t out[6] = {};
  ASSERT_EQ(GetDIBits(c.dc(), c.bitmap(), 0, 2, out, &td, DIB_RGB_COLORS), 2);
  EXPECT_EQ(out[0], 0x000C0B0Au);
  EXPECT_EQ(out[3], 0x00030201u);

  // Describing the bitmap.
  BITMAPINFO q{};
  q.bmiHeader.biBitCount = 0;
  EXPECT_EQ(GetDIBits(c.dc(), c.bitmap(), 0, 0, nullptr, &q, DIB_RGB_COLORS), 2);
  EXPECT_EQ(q.bmiHeader.biWidth, 3);
  EXPECT_EQ(q.bmiHeader.biBitCount, 32);
  EXPECT_EQ(q.bmiHeader.biSizeImage, 24u);
  // Bad headers are refused.
  BITMAPINFO bad = td;
  bad.bmiHeader.biBitCount = 8;
  EXPECT_EQ(GetDIBits(c.dc(), c.bitmap(), 0, 2, out, &bad, DIB_RGB_COLORS), 0);
}

TEST(GdiDib, StretchDIBitsDrawsBottomUpPicturesUpright) {
  // A 2 x 3 bottom-up picture: memory rows bottom first.
  const uint32_t bits[6] = {0x31, 0x32, 0x21, 0x22, 0x11, 0x12};  // rows 3, 2, 1 of the picture
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = 2;
  bi.bmiHeader.biHeight = 3;
  Canvas c(2, 3);
  EXPECT_EQ(StretchDIBits(c.dc(), 0, 0, 2, 3, 0, 0, 2, 3, bits, &bi, DIB_RGB_COLORS, SRCCOPY), 3);
  EXPECT_EQ(c.pixels(), (std::vector<uint32_t>{0x11, 0x12, 0x21, 0x22, 0x31, 0x32}));
  // Source y counts from the bottom: rows [1, 2) from the bottom is the middle row.
  c.fill(0);
  StretchDIBits(c.dc(), 0, 0, 2, 1, 0, 1, 2, 1, bits, &bi, DIB_RGB_COLORS, SRCCOPY);
  EXPECT_EQ(c.at(0, 0), 0x21u);
  // SetDIBitsToDevice with only the bottom two scans present.
  c.fill(0);
  EXPECT_EQ(SetDIBitsToDevice(c.dc(), 0, 0, 2, 3, 0, 0, 0, 2, bits, &bi, DIB_RGB_COLORS), 2);
  EXPECT_EQ(c.pixels(), (std::vector<uint32_t>{0, 0, 0x21, 0x22, 0x31, 0x32}));
}

TEST(GdiDib, TwentyFourBitSectionsSeeWhatWasDrawn) {
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = 2;
  bi.bmiHeader.biHeight = -2;
  bi.bmiHeader.biBitCount = 24;
  uint8_t* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(0, &bi, DIB_RGB_COLORS, reinterpret_cast<void**>(&bits), 0, 0);
  ASSERT_NE(bmp, 0u);
  bits[0] = 0x10;  // written before selection: visible to drawing
  HDC dc = CreateCompatibleDC(0);
  HGDIOBJ old = SelectObject(dc, bmp);
  EXPECT_EQ(GetPixel(dc, 0, 0), RGB(0, 0, 0x10));
  SetPixelV(dc, 1, 1, RGB(1, 2, 3));
  GdiFlush();
  EXPECT_EQ(bits[8 + 3], 3);  // second row starts at byte 8 (6 rounded up to 8)
  EXPECT_EQ(bits[8 + 5], 1);
  SetPixelV(dc, 0, 1, RGB(7, 8, 9));
  SelectObject(dc, old);
  EXPECT_EQ(bits[8], 9);
  DeleteDC(dc);
  DeleteObject(bmp);
}

TEST(GdiDib, PixelsOutsideTheClipAreInvalid) {
  Canvas c(4, 4, 0xFF00FF00);
  EXPECT_EQ(GetPixel(c.dc(), 1, 1), RGB(0, 255, 0));
  EXPECT_EQ(GetPixel(c.dc(), 4, 0), static_cast<COLORREF>(CLR_INVALID));
  EXPECT_EQ(SetPixel(c.dc(), -1, 0, 0), static_cast<COLORREF>(CLR_INVALID));
  IntersectClipRect(c.dc(), 0, 0, 2, 2);
  EXPECT_EQ(GetPixel(c.dc(), 2, 2), static_cast<COLORREF>(CLR_INVALID));
  EXPECT_EQ(SetPixel(c.dc(), 1, 1, RGB(1, 2, 3)), RGB(1, 2, 3));
  EXPECT_EQ(c.at(1, 1), 0x00010203u);  // alpha 0, as every drawing call that is not a copy
}

}  // namespace
}  // namespace mx::platform
