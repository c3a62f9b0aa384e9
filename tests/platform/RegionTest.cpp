#include "platform/Region.h"

#include <gtest/gtest.h>

#include <array>
#include <bitset>
#include <cstdlib>
#include <random>
#include <string>

namespace mx::platform {
namespace {

constexpr int kGrid = 40;  // reference pictures cover [-4, 36) in both directions
constexpr int kOff = 4;
using Pixels = std::bitset<kGrid * kGrid>;

Pixels paint(const Region& r) {
  Pixels p;
  for (int y = -kOff; y < kGrid - kOff; ++y)
    for (int x = -kOff; x < kGrid - kOff; ++x)
      if (r.contains(x, y)) p.set(static_cast<size_t>((y + kOff) * kGrid + x + kOff));
  return p;
}

Pixels paintRects(const std::vector<RECT>& rects) {
  Pixels p;
  for (const RECT& r : rects)
    for (int y = r.top; y < r.bottom; ++y)
      for (int x = r.left; x < r.right; ++x) p.set(static_cast<size_t>((y + kOff) * kGrid + x + kOff));
  return p;
}

// Checks the banding rules that make one picture have one representation.
::testing::AssertionResult wellFormed(const Region& r) {
  const auto& v = r.rects();
  for (size_t i = 0; i < v.size(); ++i) {
    const RECT& q = v[i];
    if (q.empty()) return ::testing::AssertionFailure() << "empty rect " << i;
    if (i == 0) continue;
    const RECT& p = v[i - 1];
    if (p.top == q.top) {
      if (p.bottom != q.bottom) return ::testing::AssertionFailure() << "ragged band at " << i;
      if (q.left <= p.right) return ::testing::AssertionFailure() << "touching spans at " << i;
    } else if (q.top < p.bottom) {
      return ::testing::AssertionFailure() << "bands overlap at " << i;
    }
  }
  // Bands that touch must differ, or they should have been merged.
  size_t start = 0;
  while (start < v.size()) {
    size_t end = start;
    while (end < v.size() && v[end].top == v[start].top) ++end;
    size_t next = end;
    while (next < v.size() && v[next].top == v[end < v.size() ? end : 0].top) ++next;
    if (end < v.size() && v[end].top == v[start].bottom && next - end == end - start) {
      bool same = true;
      for (size_t k = 0; k < end - start; ++k)
        same = same && v[start + k].left == v[end + k].left && v[start + k].right == v[end + k].right;
      if (same) return ::testing::AssertionFailure() << "unmerged bands at " << end;
    }
    start = end;
  }
  return ::testing::AssertionSuccess();
}

uint64_t fnv(uint64_t h, int v) {
  for (int i = 0; i < 4; ++i) {
    h ^= static_cast<uint8_t>(v >> (8 * i));
    h *= 1099511628211ull;
  }
  return h;
}

Region randomRegion(std::mt19937& rng) {
  std::uniform_int_distribution<int> coord(-2, 33), count(0, 6);
  std::vector<RECT> rects;
  int n = count(rng);
  for (int i = 0; i < n; ++i) {
    int a = coord(rng), b = coord(rng), c = coord(rng), d = coord(rng);
    rects.push_back(RECT{std::min(a, b), std::min(c, d), std::max(a, b), std::max(c, d)});
  }
  return Region::fromRects(rects);
}

TEST(Region, CombineMatchesPerPixelReference) {
  // Set REGION_ITER to rerun one iteration alone.
  const char* only = std::getenv("REGION_ITER");
  uint64_t checksum = 1469598103934665603ull;
  for (int iter = 0; iter < 400; ++iter) {
    if (only && std::atoi(only) != iter) continue;
    std::mt19937 rng(static_cast<uint32_t>(iter));
    Region a = randomRegion(rng), b = randomRegion(rng);
    ASSERT_TRUE(wellFormed(a)) << "iteration " << iter;
    Pixels pa = paint(a), pb = paint(b);
    const std::array<std::pair<RegionOp, Pixels>, 5> cases{{
        {RegionOp::And, pa & pb},
        {RegionOp::Or, pa | pb},
        {RegionOp::Xor, pa ^ pb},
        {RegionOp::Diff, pa & ~pb},
        {RegionOp::Copy, pa},
    }};
    for (const auto& [op, expected] : cases) {
      Region c = Region::combine(a, b, op);
      ASSERT_TRUE(wellFormed(c)) << "iteration " << iter << " op " << static_cast<int>(op);
      ASSERT_EQ(paint(c), expected) << "iteration " << iter << " op " << static_cast<int>(op);
      ASSERT_EQ(paintRects(c.rects()), expected) << "iteration " << iter;
      // Same picture, same representation: rebuilding from its own rectangles changes nothing.
      ASSERT_EQ(Region::fromRects(c.rects()), c) << "iteration " << iter;
      for (const RECT& r : c.rects()) checksum = fnv(fnv(fnv(fnv(checksum, r.left), r.top), r.right), r.bottom);
    }
  }
  if (!only) EXPECT_EQ(checksum, 0xcb297a16e8d633c8ull) << std::hex << checksum;
}

TEST(Region, ContainsExcludesRightAndBottomEdges) {
  Region r(RECT{2, 3, 5, 7});
  EXPECT_TRUE(r.contains(2, 3));
  EXPECT_TRUE(r.contains(4, 6));
  EXPECT_FALSE(r.contains(5, 6));
  EXPECT_FALSE(r.contains(4, 7));
  EXPECT_FALSE(r.contains(1, 3));
  EXPECT_FALSE(r.contains(2, 2));
  EXPECT_TRUE(r.intersects(RECT{4, 6, 10, 10}));
  EXPECT_FALSE(r.intersects(RECT{5, 0, 10, 10}));
  EXPECT_FALSE(r.intersects(RECT{0, 7, 10, 10}));
  EXPECT_FALSE(r.intersects(RECT{3, 4, 3, 5}));  // an empty rectangle meets nothing
}

TEST(Region, KindsAndExtents) {
  EXPECT_EQ(Region().kind(), RegionKind::Null);
  EXPECT_EQ(Region(RECT{5, 5, 5, 9}).kind(), RegionKind::Null);
  Region two = Region::fromRects(std::vector<RECT>{{0, 0, 2, 2}, {4, 1, 6, 3}});
  EXPECT_EQ(two.kind(), RegionKind::Complex);
  EXPECT_EQ(two.extents(), (RECT{0, 0, 6, 3}));
  // Two halves that make one rectangle collapse into one.
  Region one = Region::fromRects(std::vector<RECT>{{0, 0, 3, 4}, {3, 0, 8, 4}});
  EXPECT_EQ(one.kind(), RegionKind::Simple);
  Region stacked = Region::fromRects(std::vector<RECT>{{0, 2, 8, 4}, {0, 0, 8, 2}});
  EXPECT_EQ(stacked.rects(), (std::vector<RECT>{{0, 0, 8, 4}}));
}

TEST(Region, OffsetRefusesOverflowAndLeavesRegionAlone) {
  Region r(RECT{0, 0, 10, 10});
  EXPECT_TRUE(r.offset(-5, 7));
  EXPECT_EQ(r.extents(), (RECT{-5, 7, 5, 17}));
  EXPECT_FALSE(r.offset(INT32_MAX, 0));
  EXPECT_EQ(r.extents(), (RECT{-5, 7, 5, 17}));
}

std::string picture(const std::vector<Region::Span>& rows, int w) {
  std::string s;
  for (const auto& row : rows) {
    for (int x = 0; x < w; ++x) s += x >= row.left && x < row.right ? '#' : '.';
    s += '\n';
  }
  return s;
}

TEST(Region, SmallEllipsesHaveTheFamiliarShapes) {
  EXPECT_EQ(picture(EllipseRowSpans(1, 1), 1), "#\n");
  EXPECT_EQ(picture(EllipseRowSpans(2, 2), 2), "##\n##\n");
  EXPECT_EQ(picture(EllipseRowSpans(3, 3), 3), ".#.\n###\n.#.\n");
  EXPECT_EQ(picture(EllipseRowSpans(4, 4), 4), ".##.\n####\n####\n.##.\n");
  EXPECT_EQ(picture(EllipseRowSpans(5, 5), 5), ".###.\n#####\n#####\n#####\n.###.\n");
  EXPECT_EQ(picture(EllipseRowSpans(8, 8), 8),
            "..####..\n"
            ".######.\n"
            "########\n"
            "########\n"
            "########\n"
            "########\n"
            ".######.\n"
            "..####..\n");
  EXPECT_EQ(picture(EllipseRowSpans(9, 3), 9), ".#######.\n#########\n.#######.\n");
  EXPECT_EQ(picture(EllipseRowSpans(6, 1), 6), "######\n");
}

TEST(Region, RoundRectCornersComeFromTheEllipse) {
  // A 3 x 3 corner ellipse cuts exactly one pixel at each corner.
  EXPECT_EQ(picture(RoundRectRowSpans(6, 4, 3, 3), 6), ".####.\n######\n######\n.####.\n");
  // Corner ellipse 4 x 4 on a 7 x 5 box: two rows rounded at the top and two at the bottom.
  EXPECT_EQ(picture(RoundRectRowSpans(7, 5, 4, 4), 7), ".#####.\n#######\n#######\n#######\n.#####.\n");
  EXPECT_EQ(picture(RoundRectRowSpans(10, 6, 8, 6), 10),
            "..######..\n"
            ".########.\n"
            "##########\n"
            "##########\n"
            ".########.\n"
            "..######..\n");
  // An ellipse larger than the box is held to the box: the shape becomes the ellipse.
  EXPECT_EQ(RoundRectRowSpans(5, 5, 50, 50), EllipseRowSpans(5, 5));
  // No rounding for ellipse sizes below 2.
  EXPECT_EQ(picture(RoundRectRowSpans(3, 2, 1, 1), 3), "###\n###\n");
}

}  // namespace

}  // namespace mx::platform
