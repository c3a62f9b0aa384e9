#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "platform/Gdi.h"
#include "platform/HandleTable.h"

namespace mx::platform {
namespace {

std::string picture(HRGN r, int w, int h) {
  std::string s;
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) s += PtInRegion(r, x, y) ? '#' : '.';
    s += '\n';
  }
  return s;
}

TEST(RegionApi, CombineReportsTheKindOfTheResult) {
  int live = LiveHandleCount(HandleType::Region);
  HRGN a = CreateRectRgn(0, 0, 10, 10), b = CreateRectRgn(5, 0, 15, 10), d = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(CombineRgn(d, a, b, RGN_AND), SIMPLEREGION);
  EXPECT_EQ(CombineRgn(d, a, b, RGN_OR), SIMPLEREGION);  // two rectangles that make one
  EXPECT_EQ(CombineRgn(d, a, b, RGN_XOR), COMPLEXREGION);
  EXPECT_EQ(CombineRgn(d, a, a, RGN_DIFF), NULLREGION);
  EXPECT_EQ(CombineRgn(d, b, 0, RGN_COPY), SIMPLEREGION);  // the second source is not needed
  EXPECT_TRUE(EqualRgn(d, b));
  EXPECT_EQ(CombineRgn(d, a, 0, RGN_AND), ERROR);
  EXPECT_EQ(CombineRgn(d, a, b, 9), ERROR);
  // The destination may be a source.
  EXPECT_EQ(CombineRgn(a, a, b, RGN_DIFF), SIMPLEREGION);
  RECT box;
  EXPECT_EQ(GetRgnBox(a, &box), SIMPLEREGION);
  EXPECT_EQ(box, (RECT{0, 0, 5, 10}));
  for (HRGN h : {a, b, d}) EXPECT_TRUE(DeleteObject(h));
  EXPECT_EQ(LiveHandleCount(HandleType::Region), live);
  EXPECT_EQ(GetRgnBox(a, &box), ERROR);
  EXPECT_FALSE(PtInRegion(a, 1, 1));
}

TEST(RegionApi, EdgesAndQueries) {
  HRGN r = CreateRectRgn(10, 20, 2, 5);  // corners in any order
  RECT box;
  GetRgnBox(r, &box);
  EXPECT_EQ(box, (RECT{2, 5, 10, 20}));
  EXPECT_TRUE(PtInRegion(r, 2, 5));
  EXPECT_FALSE(PtInRegion(r, 10, 5));
  EXPECT_FALSE(PtInRegion(r, 2, 20));
  RECT touching{10, 5, 12, 20};
  EXPECT_FALSE(RectInRegion(r, &touching));
  RECT overlapping{9, 19, 12, 30};
  EXPECT_TRUE(RectInRegion(r, &overlapping));
  EXPECT_EQ(OffsetRgn(r, -2, -5), SIMPLEREGION);
  GetRgnBox(r, &box);
  EXPECT_EQ(box, (RECT{0, 0, 8, 15}));
  EXPECT_EQ(OffsetRgn(r, INT32_MAX, 0), ERROR);
  EXPECT_TRUE(SetRectRgn(r, 1, 1, 1, 9));
  EXPECT_EQ(GetRgnBox(r, &box), NULLREGION);
  DeleteObject(r);
}

TEST(RegionApi, ExtCreateRegionTakesRectanglesInAnyOrderAndRoundTrips) {
  std::vector<RECT> rects = {{20, 20, 30, 25}, {0, 0, 10, 10}, {5, 5, 25, 8}, {40, 0, 41, 1}};
  std::vector<char> data(sizeof(RGNDATAHEADER) + rects.size() * sizeof(RECT));
  RGNDATAHEADER h;
  h.nCount = static_cast<DWORD>(rects.size());
  std::memcpy(data.data(), &h, sizeof h);
  std::memcpy(data.data() + sizeof h, rects.data(), rects.size() * sizeof(RECT));
  const auto* rd = reinterpret_cast<const RGNDATA*>(data.data());
  HRGN r = ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()), rd);
  ASSERT_NE(r, 0u);
  for (int y = -1; y < 30; ++y)
    for (int x = -1; x < 45; ++x) {
      bool in = std::any_of(rects.begin(), rects.end(), [&](const RECT& q) {
        return x >= q.left && x < q.right && y >= q.top && y < q.bottom;
      });
      ASSERT_EQ(PtInRegion(r, x, y) != 0, in) << x << "," << y;
    }
  // Too few bytes for the count, or a wrong type: refused.
  EXPECT_EQ(ExtCreateRegion(nullptr, static_cast<DWORD>(data.size() - 1), rd), 0u);
  std::vector<char> wrong = data;
  reinterpret_cast<RGNDATAHEADER*>(wrong.data())->iType = 2;
  EXPECT_EQ(ExtCreateRegion(nullptr, static_cast<DWORD>(wrong.size()), reinterpret_cast<const RGNDATA*>(wrong.data())), 0u);

  // GetRegionData gives back banded rectangles that rebuild the same region.
  DWORD need = GetRegionData(r, 0, nullptr);
  ASSERT_GT(need, sizeof(RGNDATAHEADER));
  std::vector<char> out(need);
  EXPECT_EQ(GetRegionData(r, need - 1, reinterpret_cast<RGNDATA*>(out.data())), 0u);
  ASSERT_EQ(GetRegionData(r, need, reinterpret_cast<RGNDATA*>(out.data())), need);
  const auto* oh = reinterpret_cast<const RGNDATAHEADER*>(out.data());
  EXPECT_EQ(oh->rcBound, (RECT{0, 0, 41, 25}));
  EXPECT_EQ(oh->nCount, GetRegionRects(r).size());
  HRGN again = ExtCreateRegion(nullptr, need, reinterpret_cast<const RGNDATA*>(out.data()));
  EXPECT_TRUE(EqualRgn(r, again));
  DeleteObject(again);
  DeleteObject(r);
}

TEST(RegionApi, RoundRectRegionsAreOnePixelSmallerThanTheirRectangle) {
  // The usual call for a w x h window: CreateRoundRectRgn(0, 0, w + 1, h + 1, 3, 3).
  HRGN r = CreateRoundRectRgn(0, 0, 7, 5, 3, 3);
  EXPECT_EQ(picture(r, 7, 5),
            ".####..\n"
            "######.\n"
            "######.\n"
            ".####..\n"
            ".......\n");
  DeleteObject(r);
  r = CreateRoundRectRgn(0, 0, 11, 9, 6, 6);
  EXPECT_EQ(picture(r, 11, 9),
            ".########..\n"
            "##########.\n"
            "##########.\n"
            "##########.\n"
            "##########.\n"
            "##########.\n"
            "##########.\n"
            ".########..\n"
            "...........\n");
  DeleteObject(r);
  r = CreateEllipticRgn(0, 0, 6, 6);
  EXPECT_EQ(picture(r, 6, 6),
            ".###..\n"
            "#####.\n"
            "#####.\n"
            "#####.\n"
            ".###..\n"
            "......\n");
  DeleteObject(r);
  // Degenerate rectangles give empty regions, not failures.
  r = CreateRoundRectRgn(0, 0, 1, 10, 3, 3);
  RECT box;
  EXPECT_EQ(GetRgnBox(r, &box), NULLREGION);
  DeleteObject(r);
}

TEST(RegionApi, ManyRectanglesJoinInBlocks) {
  // A shaped picture region: one rectangle per run of opaque pixels on each row, joined in
  // blocks with RGN_OR the way the image code builds large regions.
  std::mt19937 rng(3);
  HRGN all = CreateRectRgn(0, 0, 0, 0);
  std::vector<std::vector<bool>> opaque(200, std::vector<bool>(300));
  for (int block = 0; block < 4; ++block) {
    std::vector<RECT> rects;
    for (int y = block * 50; y < block * 50 + 50; ++y)
      for (int x = 0; x < 300;) {
        int run = static_cast<int>(rng() % 12) + 1;
        if (rng() % 2) {
          rects.push_back(RECT{x, y, std::min(300, x + run), y + 1});
          for (int k = x; k < std::min(300, x + run); ++k) opaque[static_cast<size_t>(y)][static_cast<size_t>(k)] = true;
        }
        x += run;
      }
    std::vector<char> data(sizeof(RGNDATAHEADER) + rects.size() * sizeof(RECT));
    RGNDATAHEADER h;
    h.nCount = static_cast<DWORD>(rects.size());
    std::memcpy(data.data(), &h, sizeof h);
    std::memcpy(data.data() + sizeof h, rects.data(), rects.size() * sizeof(RECT));
    HRGN part = ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    ASSERT_NE(CombineRgn(all, all, part, RGN_OR), ERROR);
    DeleteObject(part);
  }
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 300; ++x)
      ASSERT_EQ(PtInRegion(all, x, y) != 0, opaque[static_cast<size_t>(y)][static_cast<size_t>(x)]) << x << "," << y;
  DeleteObject(all);
}

}  // namespace
}  // namespace mx::platform
