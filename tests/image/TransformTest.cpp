// The surface transforms: scale sizes, resizing and copies, trimming, the alpha mask, regions,
// grey, inverse, transparency, mirroring, light, colour blending, drop shadows, and the convert
// options of mximage.
#include <gtest/gtest.h>

#include "RenderTestSupport.h"
#include "image/ConvertOptions.h"
#include "platform/Gdi.h"

namespace mx::image {
namespace {

using namespace mx::image::test;
using namespace mx::platform;

TEST(ScaleImage, OptionsAndSizes) {
  API32bppDIB pic;
  int32_t w = -1, h = -1;
  pic.ScaleImage(100, 100, w, h, scaleToSize);
  EXPECT_EQ(w, -1);  // empty: nothing changes
  Fill(pic, 40, 20, [](int, int) { return 0xFF000000u; });
  pic.ScaleImage(400, 300, w, h, scaleDownAsNeeded);
  EXPECT_EQ(w, 40);  // small image in a large box keeps its size
  EXPECT_EQ(h, 20);
  pic.ScaleImage(400, 300, w, h, scaleToSize);
  EXPECT_EQ(w, 400);
  EXPECT_EQ(h, 200);
  pic.ScaleImage(30, 300, w, h, scaleDownAsNeeded);  // one side too small: shrinks
  EXPECT_EQ(w, 30);
  EXPECT_EQ(h, 15);
  pic.ScaleImage(7, 9, w, h, scaleStretched);
  EXPECT_EQ(w, 7);
  EXPECT_EQ(h, 9);
  pic.ScaleImage(7, 9, w, h, 5);
  EXPECT_EQ(w, 40);
  EXPECT_EQ(h, 20);
}

TEST(Resize, NearestBilinearMirrorAndKeptFields) {
  std::mt19937 rng(9);
  API32bppDIB pic;
  Fill(pic, 7, 5, [&](int, int) { return RandomPixel(rng); });
  Mem src = MemOf(pic);
  pic.SetImageType(imgPNG);
  pic.HighQualityInterpolation(false);
  ASSERT_TRUE(pic.Resize(13, 4));
  EXPECT_EQ(MemOf(pic).px, RefStretch(src, 13, 4, false).px);
  EXPECT_EQ(pic.ImageType(), imgPNG);
  EXPECT_EQ(pic.Alpha(), AlphaComplex);

  Fill(pic, 7, 5, [&](int x, int y) { return src.at(x, 4 - y); });
  pic.HighQualityInterpolation(true);
  ASSERT_TRUE(pic.Resize(3, 11));
  EXPECT_EQ(MemOf(pic).px, RefStretch(src, 3, 11, true).px);

  // Same size: nothing to do. Negative: mirrored.
  Fill(pic, 3, 2, [](int x, int y) { return 0xFF000000u | static_cast<uint32_t>(y * 3 + x); });
  ASSERT_TRUE(pic.Resize(0, 0));
  ASSERT_TRUE(pic.Resize(-3, 2));
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF000002u, 0xFF000001u, 0xFF000000u, 0xFF000005u, 0xFF000004u,
                                                0xFF000003u}));
  API32bppDIB empty;
  EXPECT_FALSE(empty.Resize(4, 4));
}

TEST(CopyImageTo, MakesReusesAndScales) {
  API32bppDIB pic;
  Fill(pic, 4, 4, [](int x, int y) { return 0xFF000000u | static_cast<uint32_t>(y * 4 + x); });
  pic.SetOriginalBytes({1, 2, 3});
  std::shared_ptr<API32bppDIB> copy;
  pic.CopyImageTo(copy, 0, 0, true);
  ASSERT_TRUE(copy);
  EXPECT_EQ(Pixels(*copy), Pixels(pic));
  std::vector<uint8_t> bytes;
  EXPECT_TRUE(copy->GetOrginalFormat(bytes));
  EXPECT_EQ(copy->ImageType(), imgBmpPARGB);

  API32bppDIB* before = copy.get();
  pic.CopyImageTo(copy, 2, 2);  // existing object, new size: same object, remade
  EXPECT_EQ(copy.get(), before);
  ASSERT_EQ(copy->Width(), 2);
  // Nearest pixel, rows counted from the bottom: picture rows 3 and 1, columns 0 and 2.
  EXPECT_EQ(Pixels(*copy), (std::vector<uint32_t>{0xFF000004u, 0xFF000006u, 0xFF00000Cu, 0xFF00000Eu}));
}

TEST(TrimImage, BoxesSidesAndTransparentSurfaces) {
  API32bppDIB pic;
  ASSERT_TRUE(pic.InitializeDIB(6, 5));
  int32_t x = 9, y = 9, w = 9, h = 9;
  EXPECT_FALSE(pic.TrimImage(true, 0, x, y, w, h));  // fully transparent
  EXPECT_EQ(x + y + w + h, 0);
  EXPECT_EQ(pic.Width(), 6);

  At(pic, 2, 1) = 0x80000000u;
  At(pic, 4, 3) = 0xFF000000u;
  EXPECT_FALSE(pic.TrimImage(false, -1, x, y, w, h));
  ASSERT_TRUE(pic.TrimImage(false, trimLeft | trimTop, x, y, w, h));
  EXPECT_EQ(std::vector<int32_t>({x, y, w, h}), std::vector<int32_t>({2, 1, 4, 4}));
  ASSERT_TRUE(pic.TrimImage(true, trimAll, x, y, w, h));
  EXPECT_EQ(std::vector<int32_t>({x, y, w, h}), std::vector<int32_t>({0, 0, 3, 3}));
  EXPECT_EQ(pic.Width(), 3);
  EXPECT_EQ(At(pic, 0, 0), 0x80000000u);
  EXPECT_EQ(At(pic, 2, 2), 0xFF000000u);
}

TEST(GetAlphaMask, RowsAlignmentAndOrder) {
  API32bppDIB pic;
  Fill(pic, 3, 2, [](int x, int y) { return static_cast<uint32_t>(10 * y + x + 1) << 24; });
  std::vector<uint8_t> mask;
  ASSERT_TRUE(pic.GetAlphaMask(mask));
  EXPECT_EQ(mask, (std::vector<uint8_t>{1, 2, 3, 11, 12, 13}));
  ASSERT_TRUE(pic.GetAlphaMask(mask, false, true, true));
  EXPECT_EQ(mask, (std::vector<uint8_t>{11, 12, 13, 0, 1, 2, 3, 0}));
  ASSERT_TRUE(pic.GetAlphaMask(mask, false, false, false, 1, 1, 9, 9));
  EXPECT_EQ(mask, (std::vector<uint8_t>{12, 13}));
  EXPECT_FALSE(pic.GetAlphaMask(mask, false, false, false, -1));
}

// The rectangles a region covers, as a set of pixels.
std::vector<std::pair<int, int>> Covered(HRGN rgn, int w, int h) {
  std::vector<std::pair<int, int>> out;
  for (int y = -2; y < h + 2; ++y)
    for (int x = -2; x < w + 2; ++x)
      if (PtInRegion(rgn, x, y)) out.emplace_back(x, y);
  return out;
}

TEST(CreateRegion, StylesOpaqueSurfacesAndOffsets) {
  // An L with a hole in its first row:  X.X.
  //                                     X...
  //                                     XXX.
  API32bppDIB pic;
  const char* rows[] = {"X.X.", "X...", "XXX."};
  Fill(pic, 4, 3, [&](int x, int y) { return rows[y][x] == 'X' ? 0xFF000000u : 0u; });
  auto covered = [&](int style) {
    HRGN r = pic.CreateRegion(style);
    auto c = Covered(r, 4, 3);
    DeleteObject(r);
    return c;
  };
  using P = std::vector<std::pair<int, int>>;
  EXPECT_EQ(covered(regionShaped), (P{{0, 0}, {2, 0}, {0, 1}, {0, 2}, {1, 2}, {2, 2}}));
  EXPECT_EQ(covered(regionEnclosed), (P{{0, 0}, {1, 0}, {2, 0}, {0, 1}, {0, 2}, {1, 2}, {2, 2}}));
  EXPECT_EQ(covered(regionBounds).size(), 9u);
  EXPECT_EQ(pic.CreateRegion(3), 0u);
  HRGN moved = pic.CreateRegion(regionShaped, 5, -1);
  EXPECT_TRUE(PtInRegion(moved, 7, -1));
  EXPECT_FALSE(PtInRegion(moved, 2, 0));
  DeleteObject(moved);

  // Opaque surfaces: the whole rectangle whatever the style or the alpha bytes.
  pic.Alpha(AlphaNone);
  for (int style : {0, 1, 2, 7}) EXPECT_EQ(covered(style).size(), 12u) << style;
  // Nothing covered: no region.
  API32bppDIB clear;
  ASSERT_TRUE(clear.InitializeDIB(3, 3));
  EXPECT_EQ(clear.CreateRegion(regionShaped), 0u);
}

int g_calls = 0;
HRGN RefuseLarge(const XFORM* x, DWORD n, const RGNDATA* d) {
  ++g_calls;
  return d->rdh.nCount > 2000 ? 0 : ExtCreateRegion(x, n, d);
}

TEST(CreateRegion, ManyRectanglesAreJoinedInBlocksWhenOneCallFails) {
  // A checkerboard of single pixels: 4500 rectangles.
  std::vector<RECT> rects;
  for (int y = 0; y < 90; ++y)
    for (int x = y % 2; x < 100; x += 2) rects.push_back(RECT{x, y, x + 1, y + 1});
  ASSERT_EQ(rects.size(), 4500u);
  g_calls = 0;
  HRGN rgn = engine::RegionFromRects(rects, RECT{0, 0, 100, 90}, &RefuseLarge);
  ASSERT_NE(rgn, 0u);
  EXPECT_EQ(g_calls, 1 + 3);  // the refused whole, then blocks of 2000, 2000 and 500
  EXPECT_TRUE(PtInRegion(rgn, 0, 0));
  EXPECT_FALSE(PtInRegion(rgn, 1, 0));
  EXPECT_TRUE(PtInRegion(rgn, 99, 89));
  EXPECT_EQ(GetRegionRects(rgn).size(), 4500u);
  DeleteObject(rgn);
  // Below the block size a refusal stands.
  rects.resize(1500);
  EXPECT_EQ(engine::RegionFromRects(rects, RECT{0, 0, 100, 90}, [](const XFORM*, DWORD, const RGNDATA*) -> HRGN {
              return 0;
            }),
            0u);
}

TEST(PixelTransforms, GreyInverseLightAndBlendToColor) {
  API32bppDIB pic;
  auto load = [&] {
    Fill(pic, 3, 1, [](int x, int) { return std::array<uint32_t, 3>{0xFFC86432u, 0x80402010u, 0u}[x]; });
  };
  load();
  EXPECT_FALSE(pic.MakeGrayScale(-1));
  ASSERT_TRUE(pic.MakeGrayScale(0));
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF7C7C7Cu, 0x80000000u | RefGray(0x80402010u, 0) * 0x010101u, 0u}));

  load();
  ASSERT_TRUE(pic.MakeImageInverse());
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF379BCDu, 0x80406070u, 0u}));

  load();
  EXPECT_FALSE(pic.MakeLighterDarker(101));
  ASSERT_TRUE(pic.MakeLighterDarker(-30));
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{RefLightPixel(0xFFC86432u, -30), RefLightPixel(0x80402010u, -30), 0u}));

  load();
  ASSERT_TRUE(pic.BlendToColor(0x0000FF, 0));  // below 1: no change
  ASSERT_TRUE(pic.BlendToColor(0x0000FF, 40));  // towards red, 40 percent
  // (60 x c + 40 x colour) x alpha / 25500: opaque red 200 -> 222, green 100 -> 60, blue 50 -> 30;
  // half alpha: red 64 -> (3840 + 10200) x 128 / 25500 = 70, green 32 -> 9, blue 16 -> 4.
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFFDE3C1Eu, 0x80460904u, 0u}));
}

TEST(PixelTransforms, TransparencyBothWaysAndMirroring) {
  API32bppDIB pic;
  Fill(pic, 3, 1, [](int x, int) { return std::array<uint32_t, 3>{0xFF00FF00u, 0xFF0000FFu, 0xFF00FF00u}[x]; },
       AlphaNone);
  pic.SetImageType(imgBitmap);
  ASSERT_TRUE(pic.MakeTransparent(0x00FF00, false));  // 0xBBGGRR: green
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0u, 0xFF0000FFu, 0u}));
  EXPECT_EQ(pic.Alpha(), AlphaSimple);
  EXPECT_EQ(pic.ImageType(), imgBmpPARGB);

  ASSERT_TRUE(pic.MakeTransparent(0xFF0000, true));  // fill the holes with opaque blue
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF0000FFu, 0xFF0000FFu, 0xFF0000FFu}));
  EXPECT_EQ(pic.Alpha(), AlphaNone);
  EXPECT_EQ(pic.ImageType(), imgBitmap);

  Fill(pic, 2, 2, [](int x, int y) { return 0xFF000000u | static_cast<uint32_t>(y * 2 + x); });
  EXPECT_FALSE(pic.MirrorImage(false, false));
  ASSERT_TRUE(pic.MirrorImage(true, true));
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF000003u, 0xFF000002u, 0xFF000001u, 0xFF000000u}));
}

TEST(DropShadow, DepthZeroAndTheBoxBlurWithItsLastColumn) {
  API32bppDIB pic;
  Fill(pic, 4, 3, [](int, int) { return 0xFF000000u; });
  auto flat = pic.CreateDropShadow(0, 0x0000FF);
  ASSERT_TRUE(flat);
  ASSERT_EQ(flat->Width(), 4);
  ASSERT_EQ(flat->Height(), 3);
  EXPECT_EQ(flat->Alpha(), AlphaComplex);
  EXPECT_EQ(flat->ImageType(), imgBmpPARGB);
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 3; ++x) EXPECT_EQ(At(*flat, x, y), 0xFFFF0000u);  // opaque red
    EXPECT_EQ(At(*flat, 3, y), 0u);                                       // the settled empty column
  }

  // Depth 1 over a random alpha plane against the box sum written out; depth 99 is held to 10.
  std::mt19937 rng(4);
  Fill(pic, 9, 6, [&](int, int) { return RandomPixel(rng); });
  auto s = pic.CreateDropShadow(1, 0x204080);
  ASSERT_EQ(s->Width(), 11);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 11; ++x) {
      uint32_t sum = 0;
      for (int c = x - 2; c <= x; ++c)
        for (int r = y - 2; r <= y; ++r)
          if (c >= 0 && c < 9 - 1 && r >= 0 && r < 6) sum += At(pic, c, r) >> 24;
      uint32_t a = x == 10 ? 0 : sum / 9;
      uint32_t want = a == 0 ? 0 : a == 255 ? 0xFF804020u : (a << 24) | (0x80 * a / 255) << 16 | (0x40 * a / 255) << 8 | (0x20 * a / 255);
      ASSERT_EQ(At(*s, x, y), want) << x << "," << y;
    }
  EXPECT_EQ(pic.CreateDropShadow(99, 0)->Width(), 9 + 20);
}

// ---- mximage convert options ----

TEST(ConvertOptions, ParsingTakesItsOptionsAndRefusesBadValues) {
  std::vector<std::string> args{"in.png", "--scale", "10x20", "--nearest", "--mirror", "hv", "out.png", "--gray", "3"};
  ConvertOptions opts;
  std::string error;
  ASSERT_TRUE(opts.Parse(args, error)) << error;
  EXPECT_EQ(args, (std::vector<std::string>{"in.png", "out.png"}));
  EXPECT_FALSE(opts.empty());

  for (std::vector<std::string> bad : {std::vector<std::string>{"--scale", "10"}, {"--scale", "0x5"},
                                       {"--mirror", "x"}, {"--gray", "8"}, {"--light", "-101"},
                                       {"--transparent", "0x1000000"}, {"--shadow", "11"}, {"--opacity", "abc"},
                                       {"--rotate"}}) {
    ConvertOptions o;
    EXPECT_FALSE(o.Parse(bad, error)) << bad[0];
    EXPECT_FALSE(error.empty());
  }
  std::vector<std::string> none{"a", "b"};
  ConvertOptions o;
  ASSERT_TRUE(o.Parse(none, error));
  EXPECT_TRUE(o.empty());
}

TEST(ConvertOptions, AppliedInTheFixedOrder) {
  // A transparent border around a 2 x 1 opaque pair; trim, then scale by nearest, then mirror:
  // if the mirror came before the trim or the scale came first, the pixels would differ.
  API32bppDIB pic;
  Fill(pic, 5, 3, [](int x, int y) {
    return y == 1 && x == 1 ? 0xFF0000FFu : y == 1 && x == 2 ? 0xFFFF0000u : 0u;
  });
  std::vector<std::string> args{"--opacity", "100", "--mirror", "h", "--scale", "4x1", "--nearest", "--trim",
                                "--invert"};
  ConvertOptions opts;
  std::string error;
  ASSERT_TRUE(opts.Parse(args, error));
  ASSERT_TRUE(opts.Apply(pic, error)) << error;
  ASSERT_EQ(pic.Width(), 4);
  ASSERT_EQ(pic.Height(), 1);
  // blue blue red red -> mirrored: red red blue blue -> inverted: cyan cyan yellow yellow.
  EXPECT_EQ(Pixels(pic), (std::vector<uint32_t>{0xFF00FFFFu, 0xFF00FFFFu, 0xFFFFFF00u, 0xFFFFFF00u}));
}

TEST(ConvertOptions, RotationShadowAndOpacityGrowAndFadeTheResult) {
  API32bppDIB pic;
  Fill(pic, 20, 10, [](int, int) { return 0xFF808080u; });
  std::vector<std::string> args{"--rotate", "90", "--shadow", "2", "--shadow-color", "0x0000FF", "--opacity", "50"};
  ConvertOptions opts;
  std::string error;
  ASSERT_TRUE(opts.Parse(args, error));
  ASSERT_TRUE(opts.Apply(pic, error)) << error;
  // Turned: 10 x 20; the shadow adds 2 x depth.
  ASSERT_EQ(pic.Width(), 14);
  ASSERT_EQ(pic.Height(), 24);
  // Half opacity of an opaque grey: alpha 127, colour 128 x 127 / 255.
  EXPECT_EQ(At(pic, 5, 10), 0x7F3F3F3Fu);
  // Far corner: shadow only, reddish and faint.
  uint32_t corner = At(pic, 12, 22);
  EXPECT_GT(corner >> 24, 0u);
  EXPECT_EQ(corner & 0xFFFF, 0u);
}

}  // namespace
}  // namespace mx::image
