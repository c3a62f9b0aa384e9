#include <gtest/gtest.h>

#include <array>

#include "platform/DeviceContext.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"

namespace mx::platform {
namespace {

constexpr std::array<HandleType, 7> kTypes{HandleType::DC,   HandleType::Bitmap, HandleType::Pen,
                                           HandleType::Brush, HandleType::Font, HandleType::Region,
                                           HandleType::Icon};

std::array<int, 7> liveCounts() {
  std::array<int, 7> out{};
  for (size_t i = 0; i < kTypes.size(); ++i) out[i] = LiveHandleCount(kTypes[i]);
  return out;
}

BITMAPINFO header(int w, int h, int bpp = 32) {
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = w;
  bi.bmiHeader.biHeight = h;
  bi.bmiHeader.biBitCount = static_cast<WORD>(bpp);
  return bi;
}

TEST(GdiObjects, SelectReturnsPreviousAndDeleteRefusesSelectedAndStock) {
  auto before = liveCounts();
  HDC dc = CreateCompatibleDC(0);
  ASSERT_NE(dc, 0u);
  EXPECT_EQ(GetObjectType(dc), OBJ_MEMDC);

  HPEN pen = CreatePen(PS_SOLID, 3, RGB(1, 2, 3));
  HBRUSH brush = CreateSolidBrush(RGB(4, 5, 6));
  LOGFONTW lf;
  lf.lfHeight = -13;
  lf.lfFaceName[0] = u'A';
  HFONT font = CreateFontIndirectW(&lf);
  BITMAPINFO bi = header(8, 4);
  void* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(dc, &bi, DIB_RGB_COLORS, &bits, 0, 0);
  ASSERT_NE(bits, nullptr);

  HGDIOBJ oldPen = SelectObject(dc, pen);
  EXPECT_EQ(oldPen, GetStockObject(BLACK_PEN));
  HGDIOBJ oldBrush = SelectObject(dc, brush);
  EXPECT_EQ(oldBrush, GetStockObject(WHITE_BRUSH));
  HGDIOBJ oldFont = SelectObject(dc, font);
  HGDIOBJ oldBmp = SelectObject(dc, bmp);
  EXPECT_EQ(GetObjectType(oldBmp), OBJ_BITMAP);
  EXPECT_EQ(GetCurrentObject(dc, OBJ_BITMAP), bmp);
  EXPECT_EQ(LookupDC(dc)->surface->width, 8);

  // Selected objects and stock objects cannot be deleted.
  EXPECT_FALSE(DeleteObject(pen));
  EXPECT_FALSE(DeleteObject(brush));
  EXPECT_FALSE(DeleteObject(font));
  EXPECT_FALSE(DeleteObject(bmp));
  EXPECT_FALSE(DeleteObject(GetStockObject(WHITE_BRUSH)));
  EXPECT_EQ(GetObjectType(GetStockObject(WHITE_BRUSH)), OBJ_BRUSH);

  // A bitmap lives in one DC at a time.
  HDC other = CreateCompatibleDC(0);
  EXPECT_EQ(SelectObject(other, bmp), 0u);
  EXPECT_TRUE(DeleteDC(other));

  EXPECT_EQ(LookupFont(font)->lfHeight, -13);
  EXPECT_EQ(SelectObject(dc, oldPen), pen);
  EXPECT_EQ(SelectObject(dc, oldBrush), brush);
  EXPECT_EQ(SelectObject(dc, oldFont), font);
  EXPECT_EQ(SelectObject(dc, oldBmp), bmp);
  EXPECT_TRUE(DeleteObject(pen));
  EXPECT_TRUE(DeleteObject(brush));
  EXPECT_TRUE(DeleteObject(font));
  EXPECT_TRUE(DeleteObject(bmp));
  EXPECT_TRUE(DeleteDC(dc));
  // Stale handles are refused everywhere.
  EXPECT_FALSE(DeleteObject(pen));
  EXPECT_EQ(SelectObject(dc, GetStockObject(BLACK_PEN)), 0u);
  EXPECT_EQ(LookupFont(font), nullptr);
  EXPECT_EQ(GetObjectType(bmp), 0u);
  EXPECT_EQ(liveCounts(), before);
}

TEST(GdiObjects, DeletingADcReleasesItsObjects) {
  auto before = liveCounts();
  HDC dc = CreateCompatibleDC(0);
  HPEN pen = CreatePen(PS_DOT, 1, 0);
  HBITMAP bmp = CreateCompatibleBitmap(dc, 3, 3);
  SelectObject(dc, pen);
  SelectObject(dc, bmp);
  HRGN clip = CreateRectRgn(0, 0, 2, 2);
  SelectClipRgn(dc, clip);
  EXPECT_TRUE(DeleteDC(dc));
  EXPECT_TRUE(DeleteObject(pen));
  EXPECT_TRUE(DeleteObject(bmp));
  EXPECT_TRUE(DeleteObject(clip));
  EXPECT_EQ(liveCounts(), before);
}

TEST(GdiObjects, GetObjectDescribesBitmapsPensBrushesAndFonts) {
  BITMAPINFO bi = header(5, -3);
  void* bits = nullptr;
  HBITMAP dib = CreateDIBSection(0, &bi, DIB_RGB_COLORS, &bits, 0, 0);
  BITMAP bm;
  ASSERT_EQ(GetObject(dib, sizeof bm, &bm), static_cast<int>(sizeof bm));
  EXPECT_EQ(bm.bmWidth, 5);
  EXPECT_EQ(bm.bmHeight, 3);
  EXPECT_EQ(bm.bmWidthBytes, 20);
  EXPECT_EQ(bm.bmBitsPixel, 32);
  EXPECT_EQ(bm.bmBits, bits);
  DIBSECTION ds;
  ASSERT_EQ(GetObject(dib, sizeof ds, &ds), static_cast<int>(sizeof ds));
  EXPECT_EQ(ds.dsBmih.biHeight, -3);  // the header keeps the row order the caller asked for
  EXPECT_EQ(GetObject(dib, 4, &bm), 0);

  BITMAPINFO bi24 = header(5, 2, 24);
  HBITMAP dib24 = CreateDIBSection(0, &bi24, DIB_RGB_COLORS, &bits, 0, 0);
  ASSERT_NE(dib24, 0u);
  GetObject(dib24, sizeof bm, &bm);
  EXPECT_EQ(bm.bmBitsPixel, 24);
  EXPECT_EQ(bm.bmWidthBytes, 16);  // 15 bytes rounded up to a multiple of 4

  HBITMAP ddb = CreateCompatibleBitmap(0, 2, 2);
  GetObject(ddb, sizeof bm, &bm);
  EXPECT_EQ(bm.bmBits, nullptr);

  HPEN pen = CreatePen(PS_SOLID, 4, RGB(9, 8, 7));
  LOGPEN lp;
  ASSERT_EQ(GetObject(pen, sizeof lp, &lp), static_cast<int>(sizeof lp));
  EXPECT_EQ(lp.lopnWidth.x, 4);
  EXPECT_EQ(lp.lopnColor, RGB(9, 8, 7));
  LOGBRUSH lb;
  GetObject(GetStockObject(NULL_BRUSH), sizeof lb, &lb);
  EXPECT_EQ(lb.lbStyle, BS_NULL);
  LOGFONTW lf;
  ASSERT_EQ(GetObject(GetStockObject(DEFAULT_GUI_FONT), sizeof lf, &lf), static_cast<int>(sizeof lf));
  EXPECT_LT(lf.lfHeight, 0);
  EXPECT_EQ(GetObject(pen, 0, nullptr), static_cast<int>(sizeof(LOGPEN)));
  for (HGDIOBJ h : {dib, dib24, ddb, static_cast<HGDIOBJ>(pen)}) EXPECT_TRUE(DeleteObject(h));
}

TEST(GdiObjects, BadBitmapRequestsAreRefused) {
  void* bits = reinterpret_cast<void*>(1);
  BITMAPINFO bi = header(0, 10);
  EXPECT_EQ(CreateDIBSection(0, &bi, DIB_RGB_COLORS, &bits, 0, 0), 0u);
  EXPECT_EQ(bits, nullptr);
  bi = header(10, 10, 16);
  EXPECT_EQ(CreateDIBSection(0, &bi, DIB_RGB_COLORS, &bits, 0, 0), 0u);
  bi = header(1 << 20, 1 << 20);
  EXPECT_EQ(CreateDIBSection(0, &bi, DIB_RGB_COLORS, &bits, 0, 0), 0u);
  EXPECT_EQ(CreateDIBSection(0, nullptr, DIB_RGB_COLORS, &bits, 0, 0), 0u);
  EXPECT_EQ(CreateCompatibleBitmap(0, -1, 5), 0u);
  EXPECT_EQ(CreateBitmap(4, 4, 1, 8, nullptr), 0u);
}

TEST(GdiObjects, SaveAndRestoreBringBackSelectionsAndAttributes) {
  HDC dc = CreateCompatibleDC(0);
  HPEN red = CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
  SetTextColor(dc, RGB(1, 1, 1));
  EXPECT_EQ(SaveDC(dc), 1);
  SelectObject(dc, red);
  SetTextColor(dc, RGB(2, 2, 2));
  SetViewportOrgEx(dc, 5, 6, nullptr);
  EXPECT_EQ(SaveDC(dc), 2);
  SetTextColor(dc, RGB(3, 3, 3));
  EXPECT_TRUE(RestoreDC(dc, -1));
  EXPECT_EQ(GetTextColor(dc), RGB(2, 2, 2));
  EXPECT_TRUE(RestoreDC(dc, 1));
  EXPECT_EQ(GetTextColor(dc), RGB(1, 1, 1));
  EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), GetStockObject(BLACK_PEN));
  POINT org;
  GetViewportOrgEx(dc, &org);
  EXPECT_EQ(org, (POINT{0, 0}));
  EXPECT_FALSE(RestoreDC(dc, 1));  // nothing left to restore
  EXPECT_TRUE(DeleteObject(red));
  EXPECT_TRUE(DeleteDC(dc));
}

TEST(GdiObjects, LiveCountsComeBackAfterABusyPaint) {
  auto before = liveCounts();
  {
    HDC screenless = CreateCompatibleDC(0);
    // Drawing on the 1 x 1 stock bitmap a new DC starts with is harmless.
    RECT big{-5, -5, 50, 50};
    EXPECT_TRUE(FillRect(screenless, &big, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH))));
    BITMAPINFO bi = header(32, 32);
    void* bits = nullptr;
    HBITMAP bmp = CreateDIBSection(screenless, &bi, DIB_RGB_COLORS, &bits, 0, 0);
    HGDIOBJ oldBmp = SelectObject(screenless, bmp);
    SaveDC(screenless);
    HRGN clip = CreateEllipticRgn(0, 0, 30, 30);
    SelectClipRgn(screenless, clip);
    DeleteObject(clip);  // the DC keeps its own copy
    IntersectClipRect(screenless, 2, 2, 28, 28);
    SaveDC(screenless);
    HPEN pen = CreatePen(PS_DASH, 1, RGB(1, 2, 3));
    HBRUSH hatch = CreateHatchBrush(HS_CROSS, RGB(3, 2, 1));
    HGDIOBJ oldPen = SelectObject(screenless, pen);
    HGDIOBJ oldBrush = SelectObject(screenless, hatch);
    RoundRect(screenless, 1, 1, 31, 31, 8, 8);
    Ellipse(screenless, 4, 4, 20, 20);
    const POINT tri[3] = {{0, 0}, {30, 4}, {12, 30}};
    Polygon(screenless, tri, 3);
    HRGN frame = CreateRoundRectRgn(0, 0, 20, 20, 5, 5);
    FrameRgn(screenless, frame, hatch, 2, 2);
    DeleteObject(frame);
    SelectObject(screenless, oldPen);
    SelectObject(screenless, oldBrush);
    EXPECT_TRUE(DeleteObject(pen));
    EXPECT_TRUE(DeleteObject(hatch));
    RestoreDC(screenless, 1);
    SelectObject(screenless, oldBmp);
    EXPECT_TRUE(DeleteObject(bmp));
    EXPECT_TRUE(DeleteDC(screenless));
  }
  EXPECT_EQ(liveCounts(), before);
}

}  // namespace
}  // namespace mx::platform
