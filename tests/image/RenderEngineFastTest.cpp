// The engine's vector loops against the plain formulas over whole input ranges: every constant
// alpha, source alpha and destination byte for the blend, and resampling ratios whose weights
// land exactly on halves, where rounding to even decides.
#include <gtest/gtest.h>

#include "RenderTestSupport.h"

namespace mx::image {
namespace {

using namespace mx::image::test;

engine::PixelView ViewOf(Mem& m) { return {m.px.data(), m.w, m.h}; }
std::vector<uint32_t> Pixels(const engine::WorkBuffer& b) { return {b.pixels.begin(), b.pixels.end()}; }

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
      EXPECT_EQ(Pixels(out), expected.px) << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3]
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
    EXPECT_EQ(Pixels(out), expected) << "clipY " << clipY;
  }
}

// The bilinear loop sums in single precision and redoes by the double rule every pixel whose
// sum lies near a half. Weights in tenths and fifths put exact real halves on sums like
// 0.1 x 5 + 0.9 x 0, which the double rule rounds one way and an unchecked float sum the other;
// channels drawn from the ends and the middle of their range, and from anywhere, over ratios
// that sweep the weights finely, make sums fall close to halves on both sides.
TEST(RenderEngineFast, FloatBilinearAgreesWithTheDoubleRuleNearHalves) {
  std::mt19937 rng(9);
  const uint32_t edges[] = {0, 1, 2, 5, 127, 128, 129, 253, 254, 255};
  const int sizes[][4] = {{10, 10, 100, 100}, {5, 5, 50, 45},  {6, 6, 53, 47}, {6, 6, 97, 89},
                          {20, 4, 190, 70},   {7, 9, 70, 90},  {4, 4, 40, 10}, {9, 9, 12, 99}};
  for (int round = 0; round < 40; ++round)
    for (auto& s : sizes) {
      Mem src;
      src.w = s[0];
      src.h = s[1];
      const bool fromEdges = round % 2 == 0;
      for (int i = 0; i < s[0] * s[1]; ++i) {
        uint32_t p = 0;
        for (int c = 0; c < 4; ++c) p |= (fromEdges ? edges[rng() % std::size(edges)] : rng() % 256) << (8 * c);
        src.px.push_back(p);
      }
      Mem expected = RefStretch(src, s[2], s[3], true);
      engine::WorkBuffer out;
      ASSERT_TRUE(engine::StretchToBuffer(ViewOf(src), {0, 0, s[0], s[1]}, {s[2], s[3], 0, 0, s[2], s[3]}, true, out));
      ASSERT_EQ(Pixels(out), expected.px)
          << s[0] << "x" << s[1] << " -> " << s[2] << "x" << s[3] << " round " << round;
    }
}

uint64_t Fnv(uint64_t h, const std::vector<uint32_t>& v) {
  for (uint32_t p : v)
    for (int i = 0; i < 4; ++i) h = (h ^ ((p >> (8 * i)) & 0xFF)) * 1099511628211ull;
  return h;
}

// Bilinear rotation takes the float sums with the same check. The stored checksum was taken from
// the plain double loop over these cases: turns of every size, enlarged and shrunk, on pictures
// whose channels sit at the ends and the middle of their range.
TEST(RenderEngineFast, BilinearRotationKeepsTheDoubleRuleResults) {
  std::mt19937 rng(10);
  const uint32_t edges[] = {0, 1, 2, 5, 127, 128, 129, 253, 254, 255};
  auto pick = [&](int lo, int hi) { return lo + static_cast<int>(rng() % static_cast<uint32_t>(hi - lo + 1)); };
  uint64_t checksum = 14695981039346656037ull;
  for (int i = 0; i < 120; ++i) {
    Mem src;
    src.w = pick(1, 30);
    src.h = pick(1, 30);
    for (int k = 0; k < src.w * src.h; ++k) {
      uint32_t p = 0;
      for (int c = 0; c < 4; ++c) p |= (i % 2 ? edges[rng() % std::size(edges)] : rng() % 256) << (8 * c);
      src.px.push_back(p);
    }
    const int rx = pick(0, src.w - 1), ry = pick(0, src.h - 1);
    const engine::Rect r{rx, ry, pick(1, src.w - rx), pick(1, src.h - ry)};
    engine::WorkBuffer out;
    ASSERT_TRUE(engine::RotateToBuffer(ViewOf(src), r, pick(1, 70), pick(1, 70), pick(-720, 720), true, out));
    checksum = Fnv(checksum, Pixels(out));
  }
  EXPECT_EQ(checksum, 0xd0713d3459237476ull) << std::hex << checksum;
}

}  // namespace
}  // namespace mx::image
