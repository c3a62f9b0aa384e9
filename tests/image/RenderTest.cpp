// Render: argument defaults and wraps, the choice of engine, DC and host destinations, and
// golden pictures of rotation, mirroring, shadows and tiling.
#include <gtest/gtest.h>

#include "RenderTestSupport.h"
#include "platform/Gdi.h"
#include "support/Golden.h"

namespace mx::image {
namespace {

using namespace mx::image::test;
using namespace mx::platform;

void Picture(API32bppDIB& d, int w, int h) {
  Fill(d, w, h, [&](int x, int y) { return TestPicture(x, y, w, h); });
}

// An opaque light checkerboard to draw on, so that goldens show alpha as it blends.
void Backdrop(API32bppDIB& d, int w, int h) {
  ASSERT_TRUE(d.InitializeDIB(w, h));
  d.CreateCheckerBoard(6, 0xE0E0E0, 0xFFFFFF);
}

TEST(Render, OpacityZeroEmptySurfacesAndMissingDestinations) {
  API32bppDIB pic, host, empty;
  Picture(pic, 8, 8);
  Backdrop(host, 8, 8);
  auto before = Pixels(host);
  EXPECT_TRUE(pic.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, true, true, &host));  // drawn: nothing
  EXPECT_EQ(Pixels(host), before);
  EXPECT_FALSE(empty.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, true, true, &host));
  EXPECT_FALSE(empty.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 100, true, true, &host));
  EXPECT_FALSE(pic.Render(0));  // neither a DC nor a host
  EXPECT_FALSE(pic.Render(0, 0, 0, 0, 0, 8, 0, 0, 0, 100, true, true, &host));  // source starts past the edge
}

TEST(Render, OpacityWrapsModuloOneHundred) {
  API32bppDIB pic;
  Picture(pic, 10, 10);
  auto drawn = [&](int opacity) {
    API32bppDIB host;
    Backdrop(host, 10, 10);
    EXPECT_TRUE(pic.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, opacity, true, true, &host));
    return Pixels(host);
  };
  EXPECT_EQ(drawn(150), drawn(50));
  EXPECT_EQ(drawn(250), drawn(50));
  EXPECT_EQ(drawn(200), drawn(100));
  EXPECT_NE(drawn(50), drawn(100));
  // Full opacity over a backdrop: the platform's premultiplied over, pixel by pixel.
  API32bppDIB host;
  Backdrop(host, 10, 10);
  auto back = Pixels(host);
  pic.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 100, true, true, &host);
  auto got = Pixels(host), src = Pixels(pic);
  for (size_t i = 0; i < got.size(); ++i) ASSERT_EQ(got[i], RefBlend(src[i], back[i], 255, -1)) << i;
}

TEST(Render, NegativeSourceSizesMirrorAndSourceRectanglesAreCut) {
  API32bppDIB pic;
  Fill(pic, 4, 3, [](int x, int y) { return 0xFF000000u | static_cast<uint32_t>(y * 16 + x); });
  for (bool ownEngine : {false, true}) {
    API32bppDIB host;
    ASSERT_TRUE(host.InitializeDIB(4, 3));
    pic.isAlphaBlendFriendly(!ownEngine);
    // A negative srcwidth with DestWidth 0 (the picture's width) mirrors left to right.
    ASSERT_TRUE(pic.Render(0, 0, 0, 0, 0, 0, 0, -4, 0, 100, true, true, &host));
    for (int y = 0; y < 3; ++y)
      for (int x = 0; x < 4; ++x) ASSERT_EQ(At(host, x, y), At(pic, 3 - x, y)) << x << "," << y;
    // Negative height: top to bottom, and a source rectangle that overruns is cut to the picture.
    host.EraseDIB();
    ASSERT_TRUE(pic.Render(0, 0, 0, 0, 0, 1, 1, 0, -9, 100, true, true, &host));
    // The rectangle is columns 1..3 and rows 1..2, drawn 3 x 2 (DestWidth 0 is the picture's 4,
    // so the width scales 3 -> 4 by nearest pixel).
    EXPECT_EQ(At(host, 0, 0), At(pic, 1, 2));
    EXPECT_EQ(At(host, 0, 1), At(pic, 1, 1));
    EXPECT_EQ(At(host, 0, 2), At(pic, 1, 1));  // 2 rows stretched to 3: the lower one twice
  }
  pic.isAlphaBlendFriendly(true);
}

TEST(Render, WholeTurnsDrawUnrotatedAndFractionsRotate) {
  API32bppDIB pic;
  Picture(pic, 12, 8);
  HDC screen = 0;
  auto onDC = [&](float angle) {
    API32bppDIB host;
    Backdrop(host, 20, 20);  // opaque: alpha 255 everywhere
    HDC dc = host.LoadDIBinDC(true);
    EXPECT_TRUE(pic.Render(dc, 4, 6, 0, 0, 0, 0, 0, 0, 100, true, true, nullptr, -1, 0, angle));
    host.LoadDIBinDC(false);
    return Pixels(host);
  };
  (void)screen;
  auto plain = onDC(0);
  EXPECT_EQ(onDC(360), plain);
  EXPECT_EQ(onDC(720), plain);
  EXPECT_EQ(onDC(-360), plain);
  // 360.5 takes the rotating path, whole degrees 360 (halves go to even): no visible turn, but
  // the own engine reads the DC back in 24 bits, so the drawn square loses the DC's alpha.
  auto turned = onDC(360.5f);
  EXPECT_NE(turned, plain);
  int cleared = 0;
  for (uint32_t p : turned) cleared += (p >> 24) == 0;
  EXPECT_GT(cleared, 12 * 8);
  for (size_t i = 0; i < plain.size(); ++i) ASSERT_EQ(turned[i] & 0xFFFFFF, plain[i] & 0xFFFFFF) << i;
}

TEST(Render, CenterOnDestXYAndGreyOnADC) {
  API32bppDIB pic;
  Fill(pic, 5, 3, [](int, int) { return 0xFF3264C8u; });  // red 50, green 100, blue 200
  API32bppDIB host;
  ASSERT_TRUE(host.InitializeDIB(10, 10));
  HDC dc = host.LoadDIBinDC(true);
  // Centred on (4, 4): the integer halves move it to (2, 3). Grey goes by the own engine.
  ASSERT_TRUE(pic.Render(dc, 4, 4, 0, 0, 0, 0, 0, 0, 100, true, true, nullptr, 0, 0, 0, true));
  host.LoadDIBinDC(false);
  const uint32_t grey = RefGray(0xFF3264C8u, 0);
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 10; ++x) {
      bool inside = x >= 2 && x < 7 && y >= 3 && y < 6;
      ASSERT_EQ(At(host, x, y) & 0xFFFFFF, inside ? grey * 0x010101u : 0u) << x << "," << y;
    }
}

TEST(Render, OwnEngineOnADCStaysInsideTheDC) {
  API32bppDIB pic;
  Picture(pic, 16, 16);
  pic.HighQualityInterpolation(true);
  API32bppDIB host;
  ASSERT_TRUE(host.InitializeDIB(10, 10));
  HDC dc = host.LoadDIBinDC(true);
  // Scaled, lighter and far over every edge: only the DC's pixels change, and the part inside
  // equals the same draw onto a host surface (apart from the alpha a DC does not keep).
  ASSERT_TRUE(pic.Render(dc, -7, -5, 30, 26, 0, 0, 0, 0, 100, true, true, nullptr, -1, 20));
  host.LoadDIBinDC(false);
  API32bppDIB ref;
  ASSERT_TRUE(ref.InitializeDIB(10, 10));
  ASSERT_TRUE(pic.Render(0, -7, -5, 30, 26, 0, 0, 0, 0, 100, true, true, &ref, -1, 20));
  auto a = Pixels(host), b = Pixels(ref);
  for (size_t i = 0; i < a.size(); ++i) ASSERT_EQ(a[i] & 0xFFFFFF, b[i] & 0xFFFFFF) << i;
}

// ---- goldens ----

TEST(RenderGolden, RotationBilinearAndNearest) {
  API32bppDIB pic;
  Picture(pic, 28, 20);
  API32bppDIB host;
  Backdrop(host, 48, 48);
  pic.HighQualityInterpolation(true);
  ASSERT_TRUE(pic.Render(0, 24, 24, 0, 0, 0, 0, 0, 0, 100, true, true, &host, -1, 0, 30, true));
  mx::test::ExpectGolden("image", "render_rotate30_bilinear", 48, 48, Pixels(host), false);

  Backdrop(host, 48, 48);
  pic.HighQualityInterpolation(false);
  // Scaled as it turns, and at half opacity.
  ASSERT_TRUE(pic.Render(0, 24, 24, 36, 24, 0, 0, 0, 0, 50, true, true, &host, -1, 0, -100, true));
  mx::test::ExpectGolden("image", "render_rotate-100_nearest_scaled", 48, 48, Pixels(host), false);
}

TEST(RenderGolden, MirroringInFourQuadrants) {
  API32bppDIB pic;
  Picture(pic, 24, 24);
  API32bppDIB host;
  Backdrop(host, 48, 48);
  ASSERT_TRUE(pic.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 100, true, true, &host));
  ASSERT_TRUE(pic.Render(0, 24, 0, -24, 24, 0, 0, 0, 0, 100, true, true, &host));
  ASSERT_TRUE(pic.Render(0, 0, 24, 24, -24, 0, 0, 0, 0, 100, true, true, &host));
  ASSERT_TRUE(pic.Render(0, 24, 24, 24, 24, 0, 0, -24, -24, 100, true, true, &host, 0, 30));
  mx::test::ExpectGolden("image", "render_mirror_quadrants", 48, 48, Pixels(host), false);
}

TEST(RenderGolden, DropShadowUnderThePicture) {
  API32bppDIB pic;
  Picture(pic, 36, 36);
  API32bppDIB host;
  Backdrop(host, 48, 48);
  ASSERT_TRUE(pic.RenderDropShadow_JIT(0, 4, 4, 3, 0x402000, 70, 0, &host));
  ASSERT_TRUE(pic.Render(0, 4, 4, 0, 0, 0, 0, 0, 0, 100, true, true, &host));
  mx::test::ExpectGolden("image", "render_drop_shadow", 48, 48, Pixels(host), false);
}

TEST(RenderGolden, TilingWithSpacingStaggerAndMirrors) {
  API32bppDIB pic;
  Picture(pic, 12, 10);
  API32bppDIB host;
  Backdrop(host, 48, 48);
  HDC dc = host.LoadDIBinDC(true);
  ASSERT_TRUE(pic.TileImage(dc, 2, 2, 44, 44, 0, 0, 2, 1, true, true, false));
  host.LoadDIBinDC(false);
  mx::test::ExpectGolden("image", "tile_stagger_mirrorx", 48, 48, Pixels(host), false);

  Backdrop(host, 48, 48);
  dc = host.LoadDIBinDC(true);
  // Half-size tiles mirrored both ways, grey.
  ASSERT_TRUE(pic.TileImage(dc, 0, 0, 48, 48, 8, -7, 0, 0, false, true, true, 100, 0));
  host.LoadDIBinDC(false);
  mx::test::ExpectGolden("image", "tile_mirror_xy_grey", 48, 48, Pixels(host), false);
}

TEST(Tile, OneTileCoveringTheDestinationIsClippedToIt) {
  API32bppDIB pic;
  Fill(pic, 10, 10, [](int, int) { return 0xFF102030u; });
  API32bppDIB host;
  ASSERT_TRUE(host.InitializeDIB(12, 12));
  HDC dc = host.LoadDIBinDC(true);
  ASSERT_TRUE(pic.TileImage(dc, 1, 2, 4, 3));
  EXPECT_FALSE(pic.TileImage(dc, 0, 0, 0, 5));
  EXPECT_FALSE(pic.TileImage(0, 0, 0, 5, 5));
  host.LoadDIBinDC(false);
  for (int y = 0; y < 12; ++y)
    for (int x = 0; x < 12; ++x)
      ASSERT_EQ(At(host, x, y), (x >= 1 && x < 5 && y >= 2 && y < 5) ? 0xFF102030u : 0u) << x << "," << y;
}

TEST(Tile, RepeatsEveryCellExactly) {
  // A 3 x 2 tile with spacing 1 x 1 over 17 x 9: every pixel is the tile's or empty by position.
  API32bppDIB pic;
  Fill(pic, 3, 2, [](int x, int y) { return 0xFF000000u | static_cast<uint32_t>(y * 3 + x + 1); });
  API32bppDIB host;
  ASSERT_TRUE(host.InitializeDIB(17, 9));
  HDC dc = host.LoadDIBinDC(true);
  ASSERT_TRUE(pic.TileImage(dc, 0, 0, 17, 9, 0, 0, 1, 1));
  host.LoadDIBinDC(false);
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 17; ++x) {
      int cx = x % 4, cy = y % 3;
      uint32_t want = (cx < 3 && cy < 2) ? 0xFF000000u | static_cast<uint32_t>(cy * 3 + cx + 1) : 0u;
      ASSERT_EQ(At(host, x, y), want) << x << "," << y;
    }
}

}  // namespace
}  // namespace mx::image
