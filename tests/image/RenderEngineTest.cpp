// The own engine against reference versions of its formulas: nearest and bilinear resampling,
// light, grey and the blend, one by one and then together through Render over a seeded set of
// random sizes, offsets and settings.
#include <gtest/gtest.h>

#include <cstdlib>

#include "RenderTestSupport.h"
#include "platform/Gdi.h"

namespace mx::image {
namespace {

using namespace mx::image::test;

Mem RandomMem(std::mt19937& rng, int w, int h) {
  Mem m;
  m.w = w;
  m.h = h;
  for (int i = 0; i < w * h; ++i) m.px.push_back(RandomPixel(rng));
  return m;
}

engine::PixelView ViewOf(Mem& m) { return {m.px.data(), m.w, m.h}; }
std::vector<uint32_t> Pixels(const engine::WorkBuffer& b) { return {b.pixels.begin(), b.pixels.end()}; }

TEST(RenderEngine, StretchMatchesTheReferenceNearestAndBilinear) {
  std::mt19937 rng(11);
  const int sizes[][4] = {{4, 3, 9, 7}, {9, 7, 4, 3}, {1, 1, 5, 5}, {5, 1, 13, 2}, {7, 7, 7, 3}, {16, 9, 23, 31}};
  for (auto& s : sizes) {
    Mem src = RandomMem(rng, s[0], s[1]);
    for (bool bilinear : {false, true}) {
      Mem expected = RefStretch(src, s[2], s[3], bilinear);
      engine::WorkBuffer out;
      ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, s[0], s[1]}, {s[2], s[3], 0, 0, s[2], s[3]}, bilinear,
                                          out));
      EXPECT_EQ(Pixels(out), expected.px) << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3]
                                         << (bilinear ? " bilinear" : " nearest");
    }
  }
}

TEST(RenderEngine, BilinearDoublingByHand) {
  // Two columns 0 and 200 (opaque grey levels) doubled to four: x positions 0, .5, 1, 1.5.
  // Column 1 is the last one and is read alone; 0.5 mixes half and half, rounded.
  Mem src;
  src.w = 2;
  src.h = 1;
  src.px = {0xFF000000u, 0xFFC8C8C8u};
  engine::WorkBuffer out;
  ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, 2, 1}, {4, 1, 0, 0, 4, 1}, true, out));
  EXPECT_EQ(Pixels(out), (std::vector<uint32_t>{0xFF000000u, 0xFF646464u, 0xFFC8C8C8u, 0xFFC8C8C8u}));

  // Rows: the first row (the bottom one) reads alone; above it rows iy and iy - 1 mix, so a
  // step between rows shows one row later than a centred filter would.
  src.w = 1;
  src.h = 2;
  src.px = {0xFF000000u, 0xFFC8C8C8u};  // bottom black, top grey
  ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, 1, 2}, {1, 4, 0, 0, 1, 4}, true, out));
  // sy = 0, .5, 1, 1.5 from the bottom: row 0; row 0; row 0 (fy 1: only iy - 1); half and half.
  EXPECT_EQ(Pixels(out), (std::vector<uint32_t>{0xFF000000u, 0xFF000000u, 0xFF000000u, 0xFF646464u}));
}

TEST(RenderEngine, ClippedStretchEqualsTheCutOfTheFullOne) {
  std::mt19937 rng(5);
  Mem src = RandomMem(rng, 11, 8);
  for (bool bilinear : {false, true}) {
    Mem full = RefStretch(src, 29, 17, bilinear);
    // Columns 3.. and memory rows 2.. (rows cut at the bottom of the picture), 20 x 9 of them.
    engine::WorkBuffer part;
    ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, 11, 8}, {29, 17, 3, 2, 20, 9}, bilinear, part));
    for (int m = 0; m < 9; ++m)
      for (int x = 0; x < 20; ++x) ASSERT_EQ(part.pixels[m * 20 + x], full.at(x + 3, m + 2)) << x << "," << m;
  }
}

TEST(RenderEngine, LightShiftsByCoverageAndHoldsToAlpha) {
  // Every alpha and a spread of channel values, for a few light values on both sides.
  for (int light : {-100, -37, -1, 1, 50, 100}) {
    Mem m;
    m.w = 256;
    m.h = 4;
    for (int y = 0; y < 4; ++y)
      for (uint32_t a = 0; a < 256; ++a) {
        uint32_t c = a * static_cast<uint32_t>(y) / 3;
        m.px.push_back(a == 0 ? 0 : (a << 24) | (c << 16) | ((a - c) << 8) | (c / 2));
      }
    Mem expected = m;
    for (uint32_t& p : expected.px) p = RefLightPixel(p, light);
    engine::AdjustLight(ViewOf(m), light);
    EXPECT_EQ(m.px, expected.px) << "light " << light;
  }
  // By hand: alpha 128, light 50: d = Round(128 x 127.5) \ 255 = 16320 \ 255 = 64.
  Mem one;
  one.w = one.h = 1;
  one.px = {0x80507870u};
  engine::AdjustLight(ViewOf(one), 50);
  EXPECT_EQ(one.px[0], 0x80808080u);  // every channel + 64 passes alpha and is held there
  one.px = {0x80102030u};
  engine::AdjustLight(ViewOf(one), 25);  // Round(128 x 63.75) \ 255 = 8160 \ 255 = 32
  EXPECT_EQ(one.px[0], 0x80304050u);
  engine::AdjustLight(ViewOf(one), -40);  // Round(128 x -102) \ 255 = -13056 \ 255 = -51
  EXPECT_EQ(one.px[0], 0x80000D1Du);  // red 0x30 held at 0; 0x40 - 51, 0x50 - 51
}

TEST(RenderEngine, GreyFormulasAndTheirWeights) {
  const uint32_t p = 0xFFC86432u;  // red 200, green 100, blue 50
  // Round(50 x wB + 100 x wG + 200 x wR) with single-precision weights.
  // (SimpleAvg and BlueGreenMask land on .65 and exactly .5: the half goes to the even side.)
  const int expected[] = {/*-1*/ 0, /*0*/ 124, /*1*/ 118, /*2*/ 117, /*3*/ 175, /*4*/ 105, /*5*/ 70,
                          /*6*/ 140, /*7*/ 88};
  for (int f = -1; f <= 7; ++f) {
    if (f == -1) continue;  // no grey: the engine is never asked
    EXPECT_EQ(engine::GrayValue(p, engine::GrayFormulaWeights(f)), static_cast<uint32_t>(expected[f + 1])) << f;
  }
  // Out of range takes NTSCPAL.
  EXPECT_EQ(engine::GrayValue(p, engine::GrayFormulaWeights(8)), 124u);
  EXPECT_EQ(engine::GrayValue(p, engine::GrayFormulaWeights(-2)), 124u);
  // White stays white under every formula: the weights add up to one.
  for (int f = 0; f <= 7; ++f) EXPECT_EQ(engine::GrayValue(0xFFFFFFFFu, engine::GrayFormulaWeights(f)), 255u) << f;
}

TEST(RenderEngine, BlendOfEveryAlphaAndConstantAlphaMatchesTheRule) {
  std::mt19937 rng(3);
  for (uint32_t g : {255u, 254u, 128u, 1u}) {
    for (int gray : {-1, 0, 5}) {
      Mem src = RandomMem(rng, 64, 16), dst = RandomMem(rng, 64, 16);
      Mem expected = dst;
      for (size_t i = 0; i < src.px.size(); ++i) expected.px[i] = RefBlend(src.px[i], dst.px[i], g, gray);
      engine::BlendToSurface(ViewOf(src), 0, 0, ViewOf(dst), 0, 0, 64, 16, g, gray);
      EXPECT_EQ(dst.px, expected.px) << "g " << g << " gray " << gray;
    }
  }
}

TEST(RenderEngine, BlendIsClippedOnEverySide) {
  // A 6 x 6 source of opaque pixels, its picture position written into it, blended at offsets
  // that overrun each edge of a 5 x 4 destination; the rest of the destination keeps its fill.
  Mem src;
  src.w = src.h = 6;
  for (int m = 0; m < 6; ++m)
    for (int x = 0; x < 6; ++x) src.px.push_back(0xFF000000u | (static_cast<uint32_t>(5 - m) << 8) | x);
  for (auto [dx, dy] : {std::pair{-3, -2}, std::pair{2, 1}, std::pair{-1, 3}, std::pair{4, -5}, std::pair{-9, 0}}) {
    Mem dst;
    dst.w = 5;
    dst.h = 4;
    dst.px.assign(20, 0x11223344u);
    engine::BlendToSurface(ViewOf(src), 1, 0, ViewOf(dst), dx, dy, 5, 6, 255, -1);
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 5; ++x) {
        int sx = x - dx + 1, sy = y - dy;
        bool inside = x - dx >= 0 && x - dx < 5 && sy >= 0 && sy < 6;
        uint32_t want = inside ? 0xFF000000u | (static_cast<uint32_t>(sy) << 8) | sx : 0x11223344u;
        ASSERT_EQ(dst.at(x, 3 - y), want) << dx << "," << dy << " at " << x << "," << y;
      }
  }
}

// ---- Render's own engine over many random cases against the references ----

// The expected picture of one Render call with the own engine onto a host, built from the
// references: crop, mirror with light, resample, light, blend with clipping.
Mem ExpectedRender(const Mem& dest0, const Mem& srcAll, int sx, int sy, int sw, int sh, int dx, int dy, int dw, int dh,
                   bool bilinear, uint32_t g, int gray, int light) {
  bool mirrorX = dw < 0, mirrorY = dh < 0;
  int aw = std::abs(dw), ah = std::abs(dh);
  Mem crop;
  crop.w = sw;
  crop.h = sh;
  crop.px.resize(static_cast<size_t>(sw) * sh);
  // Picture row y of the crop is picture row sy + y of the source.
  for (int y = 0; y < sh; ++y)
    for (int x = 0; x < sw; ++x) {
      int px = mirrorX ? sw - 1 - x : x, py = mirrorY ? sh - 1 - y : y;
      crop.at(x, sh - 1 - y) = srcAll.at(sx + px, srcAll.h - 1 - (sy + py));
    }
  bool scaled = aw != sw || ah != sh;
  if ((mirrorX || mirrorY || !scaled) && light)
    for (uint32_t& p : crop.px) p = RefLightPixel(p, light);
  // Unmirrored, the resampling reads the source itself, with the rectangle's offsets in its
  // positions; mirrored, it reads the mirrored copy.
  Mem pic = !scaled ? crop
            : (mirrorX || mirrorY) ? RefStretch(crop, aw, ah, bilinear)
                                   : RefStretch(srcAll, sx, srcAll.h - sy - sh, sw, sh, aw, ah, bilinear);
  if (scaled && !(mirrorX || mirrorY) && light)
    for (uint32_t& p : pic.px) p = RefLightPixel(p, light);
  Mem out = dest0;
  for (int y = 0; y < ah; ++y)
    for (int x = 0; x < aw; ++x) {
      int tx = dx + x, ty = dy + y;
      if (tx < 0 || ty < 0 || tx >= out.w || ty >= out.h) continue;
      uint32_t& d = out.at(tx, out.h - 1 - ty);
      d = RefBlend(pic.at(x, ah - 1 - y), d, g, gray);
    }
  return out;
}

uint64_t Fnv(uint64_t h, const std::vector<uint32_t>& v) {
  for (uint32_t p : v)
    for (int i = 0; i < 4; ++i) h = (h ^ ((p >> (8 * i)) & 0xFF)) * 1099511628211ull;
  return h;
}

TEST(RenderEngine, SeededRandomRendersMatchTheReferences) {
  // MX_RENDER_CASE=n reruns one case alone.
  int only = -1;
  if (const char* e = std::getenv("MX_RENDER_CASE")) only = std::atoi(e);
  uint64_t checksum = 14695981039346656037ull;
  for (int i = 0; i < 300; ++i) {
    if (only >= 0 && i != only) continue;
    std::mt19937 rng(1000 + i);
    auto pick = [&](int lo, int hi) { return lo + static_cast<int>(rng() % static_cast<uint32_t>(hi - lo + 1)); };
    const int W = pick(1, 24), H = pick(1, 24);
    API32bppDIB src, dest;
    Fill(src, W, H, [&](int, int) { return RandomPixel(rng); });
    Fill(dest, pick(1, 40), pick(1, 40), [&](int, int) { return RandomPixel(rng); });
    const int sx = pick(0, W - 1), sy = pick(0, H - 1);
    const int sw = pick(1, W - sx), sh = pick(1, H - sy);
    int dw = pick(1, 48), dh = pick(1, 48);
    if (rng() % 3 == 0) dw = sw;  // unscaled in one direction now and then
    if (rng() % 3 == 0) dh = sh;
    const bool mirrorX = rng() % 3 == 0, mirrorY = rng() % 4 == 0;
    const int dx = pick(-20, 30), dy = pick(-20, 30);
    const int opacity = pick(1, 100);
    const int gray = rng() % 3 == 0 ? pick(0, 7) : -1;
    const int light = rng() % 3 == 0 ? pick(-100, 100) : 0;
    const bool bilinear = rng() % 2 == 0;

    Mem before = MemOf(dest);
    src.isAlphaBlendFriendly(false);
    src.HighQualityInterpolation(bilinear);
    ASSERT_TRUE(src.Render(0, dx, dy, dw, dh, sx, sy, mirrorX ? -sw : sw, mirrorY ? -sh : sh, opacity, true, true,
                           &dest, gray, light))
        << "case " << i;
    Mem expected = ExpectedRender(before, MemOf(src), sx, sy, sw, sh, dx, dy, mirrorX ? -dw : dw, mirrorY ? -dh : dh,
                                  bilinear, static_cast<uint32_t>(opacity * 255 / 100), gray, light);
    Mem got = MemOf(dest);
    ASSERT_EQ(got.px, expected.px) << "case " << i << ": src " << W << "x" << H << " rect " << sx << "," << sy << " "
                                   << sw << "x" << sh << " -> " << dx << "," << dy << " " << dw << "x" << dh
                                   << " mirror " << mirrorX << mirrorY << " opacity " << opacity << " gray " << gray
                                   << " light " << light << " bilinear " << bilinear;
    checksum = Fnv(checksum, got.px);
  }
  // Pins the whole set: a change in any formula shows here even where a reference changed with it.
  if (only < 0) EXPECT_EQ(checksum, 0x5750c0da3de7b8dull) << std::hex << checksum;
}

}  // namespace
}  // namespace mx::image
