// The engine's vector loops against the plain formulas over whole input ranges: every constant
// alpha, source alpha and destination byte for the blend, and resampling ratios whose weights
// land exactly on halves, where rounding to even decides.
#include <gtest/gtest.h>

#include "RenderTestSupport.h"

namespace mx::image {
namespace {

using namespace mx::image::test;

engine::PixelView ViewOf(Mem& m) { return {m.px.data(), m.w, m.h}; }

// One pixel per (alpha, destination byte) pair; 257 columns so that rows end off the four-pixel
// step and the tail loop runs too.
struct BlendPlane {
  Mem src, dst;
  BlendPlane(std::mt19937& rng, bool premultiplied) {
    src.w = dst.w = 257;
    src.h = dst.h = 256;
    for (int m = 0; m < 256; ++m)
      for (int x = 0; x < 257; ++x) {
        uint32_t a = static_cast<uint32_t>(m), d = static_cast<uint32_t>(x % 256);
        uint32_t lim = premultiplied ? a : 255;
        // Blue at the top of its range, green at the bottom, red anywhere in it.
        uint32_t s = (a << 24) | ((lim ? rng() % (lim + 1) : 0) << 16) | lim;
        src.px.push_back(s);
        dst.px.push_back((rng() % 256 << 24) | (d << 16) | ((255 - d) << 8) | d);
      }
  }
};

TEST(RenderEngineFast, BlendOfEveryAlphaConstantAlphaAndDestinationByte) {
  std::mt19937 rng(5);
  BlendPlane plane(rng, true);
  for (uint32_t g = 1; g <= 255; ++g) {
    Mem dst = plane.dst, expected = plane.dst;
    for (size_t i = 0; i < dst.px.size(); ++i) expected.px[i] = RefBlend(plane.src.px[i], dst.px[i], g, -1);
    engine::BlendToSurface(ViewOf(plane.src), 0, 0, ViewOf(dst), 0, 0, dst.w, dst.h, g, -1);
    ASSERT_EQ(dst.px, expected.px) << "constant alpha " << g;
  }
}

TEST(RenderEngineFast, FullOpacityBlendIsExactEvenForColourAboveAlpha) {
  // With g 255 the rule is a saturating add, defined for any bytes; the vector loop must give
  // the same, whatever the source claims.
  std::mt19937 rng(6);
  BlendPlane plane(rng, false);
  Mem dst = plane.dst, expected = plane.dst;
  for (size_t i = 0; i < dst.px.size(); ++i) expected.px[i] = RefBlend(plane.src.px[i], dst.px[i], 255, -1);
  engine::BlendToSurface(ViewOf(plane.src), 0, 0, ViewOf(dst), 0, 0, dst.w, dst.h, 255, -1);
  EXPECT_EQ(dst.px, expected.px);
}

TEST(RenderEngineFast, StretchAtRatiosWithExactHalvesAndThirds) {
  // Doubling and quadrupling put weights on exact halves (ties round to even); 3 / 2 and 2 / 3
  // give thirds; the odd ratios give weights with no short binary form.
  std::mt19937 rng(7);
  const int sizes[][4] = {{10, 6, 20, 12},  {10, 6, 40, 24}, {12, 12, 18, 18}, {18, 18, 12, 12},
                          {31, 17, 67, 5},  {64, 3, 21, 9},  {2, 2, 64, 64},   {33, 9, 33, 27}};
  for (auto& s : sizes) {
    Mem src;
    src.w = s[0];
    src.h = s[1];
    // Opaque grey steps of odd and even levels make half-way sums land on both sides of a tie.
    for (int i = 0; i < s[0] * s[1]; ++i) src.px.push_back(i % 3 == 0 ? RandomPixel(rng) : 0xFF000000u | (rng() % 256) * 0x010101u);
    for (bool bilinear : {false, true}) {
      Mem expected = RefStretch(src, s[2], s[3], bilinear);
      engine::WorkBuffer out;
      ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, s[0], s[1]}, {s[2], s[3], 0, 0, s[2], s[3]}, bilinear,
                                          out));
      EXPECT_EQ(out.pixels, expected.px) << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3]
                                         << (bilinear ? " bilinear" : " nearest");
    }
  }
}

TEST(RenderEngineFast, NearestEnlargementWithTheBottomRowsCut) {
  // Repeated source rows are copied from the row just made; a cut at the bottom shifts which
  // rows repeat, so the copy must follow the rows actually computed.
  std::mt19937 rng(8);
  Mem src;
  src.w = 7;
  src.h = 5;
  for (int i = 0; i < 35; ++i) src.px.push_back(RandomPixel(rng));
  Mem full = RefStretch(src, 15, 17, false);
  for (int clipY : {0, 1, 2, 5}) {
    engine::WorkBuffer out;
    ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, 7, 5}, {15, 17, 0, clipY, 15, 17 - clipY}, false, out));
    std::vector<uint32_t> expected(full.px.begin() + static_cast<ptrdiff_t>(clipY) * 15, full.px.end());
    EXPECT_EQ(out.pixels, expected) << "clipY " << clipY;
  }
}

}  // namespace
}  // namespace mx::image
