#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "GdiTestSupport.h"
#include "platform/Gdi.h"

namespace mx::platform {
namespace {

using test::Canvas;

// Every drawing call, asked to draw far beyond a clip made of a ring (an ellipse less a
// smaller one), must leave every pixel outside the ring as it was.
TEST(GdiClip, NoCallWritesOutsideTheClip) {
  Canvas src(40, 40, 0x80FF8040);
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = 40;
  bi.bmiHeader.biHeight = 40;
  std::vector<uint32_t> dib(1600, 0xFF102030);
  uint32_t maskPixels[4] = {0, 0x00FFFFFF, 0x00FFFFFF, 0};
  uint32_t colorPixels[4] = {0x80FF0000, 0x00000000, 0x00000000, 0xFF00FF00};
  HBITMAP mask = CreateBitmap(2, 2, 1, 32, maskPixels), color = CreateBitmap(2, 2, 1, 32, colorPixels);
  ICONINFO ii;
  ii.hbmMask = mask;
  ii.hbmColor = color;
  HICON icon = CreateIconIndirect(&ii);
  HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));

  const std::vector<std::pair<std::string, std::function<void(HDC)>>> calls = {
      {"FillRect", [&](HDC dc) { RECT r{-50, -50, 90, 90}; FillRect(dc, &r, red); }},
      {"Rectangle", [](HDC dc) { Rectangle(dc, -5, -5, 45, 45); }},
      {"Ellipse", [](HDC dc) { Ellipse(dc, -5, 0, 45, 40); }},
      {"RoundRect", [](HDC dc) { RoundRect(dc, -5, -5, 45, 45, 20, 20); }},
      {"Lines", [](HDC dc) { for (int i = -40; i < 80; i += 3) { MoveToEx(dc, -20, i, nullptr); LineTo(dc, 60, 40 - i); } }},
      {"WideLine", [](HDC dc) {
         HPEN p = CreatePen(PS_SOLID, 7, 0);
         HGDIOBJ o = SelectObject(dc, p);
         MoveToEx(dc, -10, 20, nullptr);
         LineTo(dc, 50, 18);
         SelectObject(dc, o);
         DeleteObject(p);
       }},
      {"Polygon", [](HDC dc) { const POINT p[4] = {{-10, -10}, {60, 0}, {20, 60}, {0, 20}}; Polygon(dc, p, 4); }},
      {"BitBlt", [&](HDC dc) { BitBlt(dc, -10, -10, 60, 60, src.dc(), 0, 0, SRCCOPY); }},
      {"BitBltXor", [&](HDC dc) { BitBlt(dc, -10, -10, 60, 60, src.dc(), 0, 0, SRCINVERT); }},
      {"StretchNearest", [&](HDC dc) { StretchBlt(dc, 50, -10, -70, 70, src.dc(), 0, 0, 40, 40, SRCCOPY); }},
      {"StretchHalftone", [&](HDC dc) {
         SetStretchBltMode(dc, HALFTONE);
         StretchBlt(dc, -10, -10, 70, 55, src.dc(), 0, 0, 40, 40, SRCCOPY);
       }},
      {"AlphaBlend", [&](HDC dc) {
         BLENDFUNCTION bf{AC_SRC_OVER, 0, 200, AC_SRC_ALPHA};
         AlphaBlend(dc, -10, -10, 70, 70, src.dc(), 0, 0, 40, 40, bf);
       }},
      {"TransparentBlt", [&](HDC dc) { TransparentBlt(dc, -10, -10, 60, 60, src.dc(), 0, 0, 40, 40, 0); }},
      {"GradientRect", [](HDC dc) {
         TRIVERTEX v[2] = {TRIVERTEX{-30, -30, 0, 0, 0, 0}, TRIVERTEX{80, 80, 0xFF00, 0xFF00, 0, 0xFF00}};
         GRADIENT_RECT r{0, 1};
         GradientFill(dc, v, 2, &r, 1, GRADIENT_FILL_RECT_H);
       }},
      {"GradientTriangle", [](HDC dc) {
         TRIVERTEX v[3] = {TRIVERTEX{-30, -30, 0, 0, 0, 0}, TRIVERTEX{90, 0, 0xFF00, 0, 0, 0}, TRIVERTEX{0, 90, 0, 0xFF00, 0, 0}};
         GRADIENT_TRIANGLE t{0, 1, 2};
         GradientFill(dc, v, 3, &t, 1, GRADIENT_FILL_TRIANGLE);
       }},
      {"PatBlt", [](HDC dc) { PatBlt(dc, -20, -20, 90, 90, DSTINVERT); }},
      {"InvertRect", [](HDC dc) { RECT r{-20, -20, 70, 70}; InvertRect(dc, &r); }},
      {"FocusRect", [](HDC dc) { for (int i = -5; i < 20; i += 2) { RECT r{i, i, 40 - i, 40 - i}; DrawFocusRect(dc, &r); } }},
      {"SetPixel", [](HDC dc) { for (int y = -3; y < 43; ++y) for (int x = -3; x < 43; ++x) SetPixelV(dc, x, y, RGB(9, 9, 9)); }},
      {"FillRgn", [&](HDC dc) { HRGN r = CreateRectRgn(-100, -100, 100, 100); FillRgn(dc, r, red); DeleteObject(r); }},
      {"FrameRgn", [&](HDC dc) { HRGN r = CreateEllipticRgn(-4, -4, 44, 44); FrameRgn(dc, r, red, 6, 6); DeleteObject(r); }},
      {"DrawEdge", [](HDC dc) { RECT r{-2, -2, 42, 42}; DrawEdge(dc, &r, EDGE_SUNKEN, BF_RECT | BF_MIDDLE); }},
      {"DrawIconEx", [&](HDC dc) { DrawIconEx(dc, -5, -5, icon, 50, 50, 0, 0, DI_NORMAL); }},
      {"StretchDIBits", [&](HDC dc) { StretchDIBits(dc, -10, -10, 70, 70, 0, 0, 40, 40, dib.data(), &bi, DIB_RGB_COLORS, SRCCOPY); }},
      {"SetDIBitsToDevice", [&](HDC dc) { SetDIBitsToDevice(dc, -5, -5, 40, 40, 0, 0, 0, 40, dib.data(), &bi, DIB_RGB_COLORS); }},
  };

  HRGN outer = CreateEllipticRgn(4, 4, 37, 35), inner = CreateEllipticRgn(12, 12, 26, 24);
  CombineRgn(outer, outer, inner, RGN_DIFF);
  for (const auto& [name, draw] : calls) {
    Canvas c(40, 40, 0x5A5A5A5A);
    // The viewport moves drawing, not the clip.
    SelectClipRgn(c.dc(), outer);
    SetViewportOrgEx(c.dc(), 3, -2, nullptr);
    draw(c.dc());
    int changedInside = 0;
    for (int y = 0; y < 40; ++y)
      for (int x = 0; x < 40; ++x) {
        if (PtInRegion(outer, x, y)) {
          changedInside += c.at(x, y) != 0x5A5A5A5Au;
          continue;
        }
        ASSERT_EQ(c.at(x, y), 0x5A5A5A5Au) << name << " wrote outside the clip at " << x << "," << y;
      }
    EXPECT_GT(changedInside, 0) << name << " drew nothing at all";
  }
  DeleteObject(outer);
  DeleteObject(inner);
  DestroyIcon(icon);
  DeleteObject(mask);
  DeleteObject(color);
  DeleteObject(red);
}

}  // namespace
}  // namespace mx::platform
