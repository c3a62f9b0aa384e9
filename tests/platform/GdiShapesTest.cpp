#include <gtest/gtest.h>

#include <cstdlib>

#include "GdiTestSupport.h"
#include "platform/Gdi.h"
#include "platform/PngEncoder.h"
#include "platform/SysColors.h"

#include "support/Golden.h"

namespace mx::platform {
namespace {

using test::Canvas;

constexpr uint32_t kPaper = 0x00FFFFFF;  // what fills leave: white, alpha 0
constexpr uint32_t kInk = 0x00000000;

struct Selected {
  HDC dc;
  HGDIOBJ obj, old;
  Selected(HDC d, HGDIOBJ o) : dc(d), obj(o), old(SelectObject(d, o)) {}
  ~Selected() {
    SelectObject(dc, old);
    DeleteObject(obj);
  }
};

TEST(GdiShapes, RectangleDrawsPenOutsideAndBrushInside) {
  Canvas c(7, 5, kPaper);
  Selected brush(c.dc(), CreateSolidBrush(RGB(255, 0, 0)));
  ASSERT_TRUE(Rectangle(c.dc(), 1, 1, 6, 5));
  EXPECT_EQ(c.picture(kInk, kPaper),
            ".......\n"
            ".#####.\n"
            ".#???#.\n"
            ".#???#.\n"
            ".#####.\n");
  EXPECT_EQ(c.at(2, 2), 0x00FF0000u);
  // A null pen leaves the brush alone, one pixel smaller to the right and below.
  c.fill(kPaper);
  SelectObject(c.dc(), GetStockObject(NULL_PEN));
  SelectObject(c.dc(), GetStockObject(BLACK_BRUSH));
  ASSERT_TRUE(Rectangle(c.dc(), 1, 1, 6, 5));
  EXPECT_EQ(c.picture(kInk, kPaper),
            ".......\n"
            ".####..\n"
            ".####..\n"
            ".####..\n"
            ".......\n");
  SelectObject(c.dc(), GetStockObject(BLACK_PEN));
}

TEST(GdiShapes, FillRectTakesSystemColourIndexes) {
  Canvas c(2, 1, 0);
  RECT r{0, 0, 2, 1};
  ASSERT_TRUE(FillRect(c.dc(), &r, static_cast<HBRUSH>(COLOR_3DFACE + 1)));
  COLORREF face = GetSysColor(COLOR_3DFACE);
  EXPECT_EQ(c.at(1, 0), (uint32_t{GetRValue(face)} << 16) | (GetGValue(face) << 8) | GetBValue(face));
  EXPECT_FALSE(FillRect(c.dc(), &r, static_cast<HBRUSH>(kSysColorCount + 1)));
}

TEST(GdiShapes, WidePensEatInwards) {
  Canvas c(6, 6, kPaper);
  Selected pen(c.dc(), CreatePen(PS_SOLID, 2, RGB(0, 0, 0)));
  SelectObject(c.dc(), GetStockObject(NULL_BRUSH));
  ASSERT_TRUE(Rectangle(c.dc(), 0, 0, 6, 6));
  EXPECT_EQ(c.picture(kInk, kPaper),
            "######\n"
            "######\n"
            "##..##\n"
            "##..##\n"
            "######\n"
            "######\n");
  SelectObject(c.dc(), GetStockObject(WHITE_BRUSH));
}

TEST(GdiShapes, RoundRectAndEllipseCoverTheirRegions) {
  // With a null pen a figure and the region of the same arguments are the same pixels.
  struct Case {
    int w, h, ew, eh;
  };
  for (Case k : {Case{6, 5, 3, 3}, Case{12, 9, 6, 4}, Case{20, 14, 40, 40}, Case{9, 9, 0, 0}, Case{16, 10, 7, 9}}) {
    Canvas a(24, 16, kPaper), b(24, 16, kPaper);
    SelectObject(a.dc(), GetStockObject(NULL_PEN));
    SelectObject(a.dc(), GetStockObject(BLACK_BRUSH));
    ASSERT_TRUE(RoundRect(a.dc(), 1, 2, 1 + k.w, 2 + k.h, k.ew, k.eh));
    HRGN r = CreateRoundRectRgn(1, 2, 1 + k.w, 2 + k.h, k.ew, k.eh);
    ASSERT_TRUE(FillRgn(b.dc(), r, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH))));
    EXPECT_EQ(a.picture(kInk, kPaper), b.picture(kInk, kPaper)) << k.w << "x" << k.h << " " << k.ew << "x" << k.eh;
    DeleteObject(r);

    a.fill(kPaper);
    b.fill(kPaper);
    ASSERT_TRUE(Ellipse(a.dc(), 1, 2, 1 + k.w, 2 + k.h));
    r = CreateEllipticRgn(1, 2, 1 + k.w, 2 + k.h);
    FillRgn(b.dc(), r, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    EXPECT_EQ(a.picture(kInk, kPaper), b.picture(kInk, kPaper)) << k.w << "x" << k.h;
    DeleteObject(r);
    SelectObject(a.dc(), GetStockObject(BLACK_PEN));
    SelectObject(a.dc(), GetStockObject(WHITE_BRUSH));
  }
}

TEST(GdiShapes, RoundRectWithPenOutlinesTheCorners) {
  Canvas c(8, 6, 0x00808080);
  ASSERT_TRUE(RoundRect(c.dc(), 0, 0, 8, 6, 4, 4));
  EXPECT_EQ(c.picture(kInk, kPaper),
            "?######?\n"
            "#......#\n"
            "#......#\n"
            "#......#\n"
            "#......#\n"
            "?######?\n");
  c.fill(0x00808080);
  ASSERT_TRUE(Ellipse(c.dc(), 0, 0, 8, 6));
  EXPECT_EQ(c.picture(kInk, kPaper),
            "??####??\n"
            "?#....#?\n"
            "#......#\n"
            "#......#\n"
            "?#....#?\n"
            "??####??\n");
}

TEST(GdiShapes, LinesLeaveOutTheirLastPixel) {
  Canvas c(6, 5, kPaper);
  MoveToEx(c.dc(), 0, 0, nullptr);
  ASSERT_TRUE(LineTo(c.dc(), 5, 0));
  LineTo(c.dc(), 5, 4);
  MoveToEx(c.dc(), 0, 4, nullptr);
  LineTo(c.dc(), 4, 2);  // shallow slope: one pixel per column
  // (5, 0) is left out by the first line and drawn as the start of the second.
  EXPECT_EQ(c.picture(kInk, kPaper),
            "######\n"
            ".....#\n"
            "...#.#\n"
            ".##..#\n"
            "#.....\n");
  POINT p;
  GetCurrentPositionEx(c.dc(), &p);
  EXPECT_EQ(p, (POINT{4, 2}));
}

TEST(GdiShapes, StyledPensAndBackgroundMode) {
  Canvas c(14, 2, kPaper);
  Selected pen(c.dc(), CreatePen(PS_DOT, 1, RGB(0, 0, 0)));
  SetBkColor(c.dc(), RGB(255, 0, 0));
  SetBkMode(c.dc(), TRANSPARENT);
  MoveToEx(c.dc(), 0, 0, nullptr);
  LineTo(c.dc(), 14, 0);
  SetBkMode(c.dc(), OPAQUE);
  MoveToEx(c.dc(), 0, 1, nullptr);
  LineTo(c.dc(), 14, 1);
  EXPECT_EQ(c.picture(kInk, kPaper),
            "###...###...##\n"
            "###???###???##\n");
  EXPECT_EQ(c.at(4, 1), 0x00FF0000u);
}

TEST(GdiShapes, FocusRectangleInvertsEveryOtherPixelAndUndoesItself) {
  Canvas c(6, 4, kPaper);
  SetTextColor(c.dc(), 0);
  RECT r{0, 0, 6, 4};
  ASSERT_TRUE(DrawFocusRect(c.dc(), &r));
  EXPECT_EQ(c.picture(kInk, kPaper),
            "#.#.#.\n"
            ".....#\n"
            "#.....\n"
            ".#.#.#\n");
  DrawFocusRect(c.dc(), &r);
  EXPECT_EQ(c.picture(kInk, kPaper), "......\n......\n......\n......\n");
  // The checkerboard stays put in device space when the brush origin does.
  SetBrushOrgEx(c.dc(), 1, 0, nullptr);
  DrawFocusRect(c.dc(), &r);
  EXPECT_EQ(c.at(0, 0), kPaper);
  EXPECT_EQ(c.at(1, 0), kInk);
}

TEST(GdiShapes, GradientsInterpolateInSixteenBits) {
  Canvas c(4, 4, 0x12345678);
  TRIVERTEX v[2];
  v[0] = TRIVERTEX{0, 0, 0x0000, 0xFF00, 0x8000, 0xFF00};
  v[1] = TRIVERTEX{4, 1, 0xFF00, 0x0000, 0x8000, 0x0000};
  GRADIENT_RECT gr{0, 1};
  ASSERT_TRUE(GradientFill(c.dc(), v, 2, &gr, 1, GRADIENT_FILL_RECT_H));
  // Column i gets c0 + (c1 - c0) * i / 4: red 0, 0x3FC0, 0x7F80, 0xBF40 -> high bytes.
  EXPECT_EQ(c.at(0, 0), 0xFF00FF80u);
  EXPECT_EQ(c.at(1, 0), 0xBF3FBF80u);
  EXPECT_EQ(c.at(2, 0), 0x7F7F7F80u);
  EXPECT_EQ(c.at(3, 0), 0x3FBF3F80u);
  EXPECT_EQ(c.at(0, 1), 0x12345678u);  // outside the rectangle
  // Vertical, the vertices given bottom-right first: the top row still takes the top colour.
  TRIVERTEX w[2] = {TRIVERTEX{0, 4, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}, TRIVERTEX{1, 1, 0, 0, 0, 0}};
  ASSERT_TRUE(GradientFill(c.dc(), w, 2, &gr, 1, GRADIENT_FILL_RECT_V));
  EXPECT_EQ(c.at(0, 1), 0x00000000u);
  EXPECT_EQ(c.at(0, 2), 0x55555555u);  // 0xFFFF / 3 = 0x5555
  EXPECT_EQ(c.at(0, 3), 0xAAAAAAAAu);
  GRADIENT_RECT badIndex{0, 7};
  EXPECT_FALSE(GradientFill(c.dc(), v, 2, &badIndex, 1, GRADIENT_FILL_RECT_H));
  EXPECT_FALSE(GradientFill(c.dc(), v, 2, &gr, 1, 9));
}

TEST(GdiShapes, GradientTrianglesTakeVertexColoursAtTheCorners) {
  Canvas c(9, 9, 0);
  TRIVERTEX v[3] = {TRIVERTEX{0, 0, 0xFF00, 0, 0, 0xFF00}, TRIVERTEX{9, 0, 0, 0xFF00, 0, 0xFF00},
                    TRIVERTEX{0, 9, 0, 0, 0xFF00, 0xFF00}};
  GRADIENT_TRIANGLE t{0, 1, 2};
  ASSERT_TRUE(GradientFill(c.dc(), v, 3, &t, 1, GRADIENT_FILL_TRIANGLE));
  // Pixel (0, 0) samples its centre (0.5, 0.5): weights 8/9, 1/18, 1/18 of 0xFF00.
  EXPECT_EQ(c.at(0, 0), 0xFF000000u | ((0xFF00u * 16 / 18) >> 8) << 16 | ((0xFF00u / 18) >> 8) << 8 | (0xFF00u / 18) >> 8);
  EXPECT_NE(c.at(7, 0), 0u);
  EXPECT_EQ(c.at(8, 8), 0u);  // beyond the hypotenuse
}

TEST(GdiShapes, FillsNeverLeaveTheClip) {
  Canvas c(10, 10, 0x11111111);
  HRGN clip = CreateEllipticRgn(2, 2, 9, 9);
  SelectClipRgn(c.dc(), clip);
  RECT everything{-100, -100, 100, 100};
  FillRect(c.dc(), &everything, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 10; ++x)
      EXPECT_EQ(c.at(x, y), PtInRegion(clip, x, y) ? 0u : 0x11111111u) << x << "," << y;
  // The clip follows the DC's own units: moving the viewport afterwards does not move it.
  SetViewportOrgEx(c.dc(), 3, 0, nullptr);
  RECT box;
  EXPECT_EQ(GetClipBox(c.dc(), &box), COMPLEXREGION);
  EXPECT_EQ(box, (RECT{-1, 2, 5, 8}));
  SetViewportOrgEx(c.dc(), 0, 0, nullptr);
  // ExcludeClipRect and then no clip at all.
  ExcludeClipRect(c.dc(), 0, 0, 5, 10);
  EXPECT_FALSE(PtVisible(c.dc(), 4, 5));
  EXPECT_TRUE(PtVisible(c.dc(), 5, 5));
  HRGN copy = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(GetClipRgn(c.dc(), copy), 1);
  EXPECT_FALSE(PtInRegion(copy, 4, 5));
  SelectClipRgn(c.dc(), 0);
  EXPECT_EQ(GetClipRgn(c.dc(), copy), 0);
  EXPECT_EQ(GetClipBox(c.dc(), &box), SIMPLEREGION);
  EXPECT_EQ(box, (RECT{0, 0, 10, 10}));
  DeleteObject(copy);
  DeleteObject(clip);
}

TEST(GdiShapes, PatBltAndInversions) {
  Canvas c(2, 1);
  c.at(0, 0) = 0x80102030;
  c.at(1, 0) = 0xFF000000;
  ASSERT_TRUE(PatBlt(c.dc(), 0, 0, 2, 1, DSTINVERT));
  EXPECT_EQ(c.at(0, 0), 0x7FEFDFCFu);
  RECT r{0, 0, 2, 1};
  InvertRect(c.dc(), &r);
  EXPECT_EQ(c.at(0, 0), 0x80102030u);
  ASSERT_TRUE(PatBlt(c.dc(), 0, 0, 1, 1, WHITENESS));
  EXPECT_EQ(c.at(0, 0), 0x00FFFFFFu);
  EXPECT_FALSE(PatBlt(c.dc(), 0, 0, 1, 1, SRCCOPY));  // needs a source
  // A null brush paints nothing.
  SelectObject(c.dc(), GetStockObject(NULL_BRUSH));
  PatBlt(c.dc(), 0, 0, 2, 1, PATCOPY);
  EXPECT_EQ(c.at(1, 0), 0xFF000000u);
}

TEST(GdiShapes, PatternAndHatchBrushesFollowTheBrushOrigin) {
  Canvas pat(2, 2);
  pat.at(0, 0) = 0x000000AA;
  pat.at(1, 0) = 0x000000BB;
  pat.at(0, 1) = 0x000000CC;
  pat.at(1, 1) = 0x000000DD;
  HBRUSH b = CreatePatternBrush(pat.bitmap());
  Canvas c(3, 2);
  RECT r{0, 0, 3, 2};
  FillRect(c.dc(), &r, b);
  EXPECT_EQ(c.pixels(), (std::vector<uint32_t>{0xAA, 0xBB, 0xAA, 0xCC, 0xDD, 0xCC}));
  SetBrushOrgEx(c.dc(), 1, 1, nullptr);
  FillRect(c.dc(), &r, b);
  EXPECT_EQ(c.pixels(), (std::vector<uint32_t>{0xDD, 0xCC, 0xDD, 0xBB, 0xAA, 0xBB}));
  DeleteObject(b);

  HBRUSH h = CreateHatchBrush(HS_CROSS, RGB(0, 0, 255));
  Canvas d(9, 2, 0x11111111);
  SetBkMode(d.dc(), TRANSPARENT);
  RECT all{0, 0, 9, 2};
  FillRect(d.dc(), &all, h);
  EXPECT_EQ(d.at(0, 1), 0x000000FFu);
  EXPECT_EQ(d.at(8, 1), 0x000000FFu);
  EXPECT_EQ(d.at(3, 1), 0x11111111u);  // the gaps keep the background in transparent mode
  DeleteObject(h);
}

TEST(GdiShapes, PolygonsFillByTheirRule) {
  // A five-pointed star drawn in one stroke: its middle is inside by winding, outside by
  // even-odd.
  const POINT star[5] = {{10, 0}, {16, 19}, {0, 7}, {20, 7}, {4, 19}};
  HRGN alt = CreatePolygonRgn(star, 5, ALTERNATE);
  HRGN wind = CreatePolygonRgn(star, 5, WINDING);
  EXPECT_FALSE(PtInRegion(alt, 10, 10));
  EXPECT_TRUE(PtInRegion(wind, 10, 10));
  EXPECT_TRUE(PtInRegion(alt, 10, 3));
  RECT box;
  GetRgnBox(wind, &box);
  EXPECT_EQ(box, (RECT{1, 2, 19, 19}));  // the thin tip has no pixel centre inside until row 2
  DeleteObject(alt);
  DeleteObject(wind);

  // A right triangle: pixels whose centres are inside.
  Canvas c(5, 4, kPaper);
  SelectObject(c.dc(), GetStockObject(NULL_PEN));
  SelectObject(c.dc(), GetStockObject(BLACK_BRUSH));
  const POINT tri[3] = {{0, 0}, {4, 4}, {0, 4}};
  ASSERT_TRUE(Polygon(c.dc(), tri, 3));
  EXPECT_EQ(c.picture(kInk, kPaper),
            ".....\n"
            "#....\n"
            "##...\n"
            "###..\n");
  SelectObject(c.dc(), GetStockObject(BLACK_PEN));
}

TEST(GdiShapes, FrameRgnPaintsTheBorderInside) {
  Canvas c(6, 5, kPaper);
  HRGN r = CreateRectRgn(0, 0, 6, 5);
  ASSERT_TRUE(FrameRgn(c.dc(), r, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)), 2, 1));
  EXPECT_EQ(c.picture(kInk, kPaper),
            "######\n"
            "##..##\n"
            "##..##\n"
            "##..##\n"
            "######\n");
  DeleteObject(r);
}

TEST(GdiShapes, ShowcaseMatchesGolden) {
  Canvas c(64, 48, kPaper);
  HDC dc = c.dc();
  TRIVERTEX g[2] = {TRIVERTEX{0, 0, 0x3000, 0x6000, 0xC000, 0}, TRIVERTEX{64, 12, 0xF000, 0xF800, 0xFF00, 0}};
  GRADIENT_RECT gr{0, 1};
  GradientFill(dc, g, 2, &gr, 1, GRADIENT_FILL_RECT_V);
  {
    Selected brush(dc, CreateSolidBrush(RGB(255, 200, 40)));
    Selected pen(dc, CreatePen(PS_SOLID, 1, RGB(120, 60, 0)));
    RoundRect(dc, 3, 15, 30, 33, 9, 9);
  }
  {
    Selected brush(dc, CreateHatchBrush(HS_DIAGCROSS, RGB(0, 128, 0)));
    Selected pen(dc, CreatePen(PS_SOLID, 3, RGB(0, 90, 0)));
    Ellipse(dc, 34, 14, 61, 35);
  }
  {
    Selected pen(dc, CreatePen(PS_DASH, 1, RGB(200, 0, 0)));
    SetBkMode(dc, TRANSPARENT);
    const POINT zig[5] = {{2, 46}, {14, 37}, {26, 46}, {38, 37}, {62, 46}};
    Polyline(dc, zig, 5);
  }
  RECT focus{33, 13, 62, 36};
  DrawFocusRect(dc, &focus);
  mx::test::ExpectGolden("platform", "gdi_shapes", c.width(), c.height(), c.pixels());
}

}  // namespace
}  // namespace mx::platform
