// The desktop: composition of top-level windows (opaque, layered, shaped), capture and PNG
// output, metrics and parameters, system colours, cursors and the clipboard.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "platform/Gdi.h"
#include "platform/PngEncoder.h"
#include "WindowTestSupport.h"

#include "support/Golden.h"

namespace mx::platform {
namespace {

using testing::WindowingTest;

class DesktopTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    // Each window fills its client area with its own colour when asked to paint.
    On(WM_PAINT, [this](HWND h, WPARAM, LPARAM, LRESULT&) {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(h, &ps);
      RECT r;
      GetClientRect(h, &r);
      HBRUSH b = CreateSolidBrush(m_colors[h]);
      FillRect(dc, &r, b);
      DeleteObject(b);
      EndPaint(h, &ps);
      return true;
    });
  }
  void TearDown() override {
    ResetClipboard();
    WindowingTest::TearDown();
  }
  HWND Painted(const std::string& name, COLORREF c, DWORD style, int x, int y, int w, int h, DWORD ex = 0) {
    HWND hwnd = Make(name, style, x, y, w, h, 0, ex);
    m_colors[hwnd] = c;
    return hwnd;
  }
  std::map<HWND, COLORREF> m_colors;
};

// The screen as top-down pixels for the golden comparison.
std::vector<uint32_t> PixelsOf(const CapturedImage& img) {
  std::vector<uint32_t> px;
  px.reserve(static_cast<size_t>(img.width()) * img.height());
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) px.push_back(img.pixel(x, y));
  return px;
}

TEST_F(DesktopTest, ComposesOpaqueShapedAndLayeredWindows) {
  SetScreenSize(160, 120);
  int idx = COLOR_DESKTOP;
  COLORREF teal = RGB(58, 110, 165);
  SetSysColors(1, &idx, &teal);
  Painted("red", RGB(255, 0, 0), WS_POPUP | WS_VISIBLE | WS_BORDER, 10, 10, 80, 60);
  HWND green = Painted("green", RGB(0, 255, 0), WS_POPUP | WS_VISIBLE, 40, 30, 80, 60);
  SetWindowRgn(green, CreateEllipticRgn(0, 0, 80, 60), TRUE);
  HWND blue = Painted("blue", RGB(0, 0, 255), WS_POPUP | WS_VISIBLE, 70, 50, 80, 60, WS_EX_LAYERED);
  PumpMessages();

  // A layered window shows nothing until it has attributes.
  CapturedImage before = CaptureScreen();
  EXPECT_EQ(before.color(145, 105), teal);
  SetLayeredWindowAttributes(blue, 0, 128, LWA_ALPHA);
  CapturedImage img = CaptureScreen();

  EXPECT_EQ(img.color(0, 0), teal);
  EXPECT_EQ(img.color(10, 10), GetSysColor(COLOR_WINDOWFRAME));  // the border's outline
  EXPECT_EQ(img.color(20, 20), RGB(255, 0, 0));
  EXPECT_EQ(img.color(41, 31), RGB(255, 0, 0));   // outside the green ellipse: red shows
  EXPECT_EQ(img.color(80, 40), RGB(0, 255, 0));
  // Half blue over green and over the desktop, truncating as the blend rule says.
  EXPECT_EQ(img.color(100, 70), RGB(0, 127, 128));
  EXPECT_EQ(img.color(145, 105), RGB(58 * 127 / 255, 110 * 127 / 255, 128 + 165 * 127 / 255));
  EXPECT_EQ(img.pixel(145, 105) >> 24, 0xFFu);
  test::ExpectGolden("platform", "desktop_compose", img.width(), img.height(), PixelsOf(img));

  // A colour key lets the desktop through where the window has that colour.
  SetLayeredWindowAttributes(blue, RGB(0, 0, 255), 0, LWA_COLORKEY);
  EXPECT_EQ(CaptureScreen().color(145, 105), teal);
  // Hidden windows are not composed.
  ShowWindow(green, SW_HIDE);
  EXPECT_EQ(CaptureScreen().color(80, 40), RGB(255, 0, 0));
}

TEST_F(DesktopTest, UpdateLayeredWindowBlendsPerPixel) {
  SetScreenSize(64, 64);
  HWND w = Make("ulw", WS_POPUP | WS_VISIBLE, 0, 0, 4, 4, 0, WS_EX_LAYERED);
  // A 2 x 1 source: opaque red, and half-transparent green (premultiplied: 0x80 alpha, 0x80 green).
  HDC mem = CreateCompatibleDC(0);
  BITMAPINFO bi{};
  bi.bmiHeader.biWidth = 2;
  bi.bmiHeader.biHeight = -1;
  void* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(mem, &bi, DIB_RGB_COLORS, &bits);
  ASSERT_TRUE(bmp && bits);
  auto* px = static_cast<uint32_t*>(bits);
  px[0] = 0xFFFF0000u;
  px[1] = 0x80008000u;
  HGDIOBJ old = SelectObject(mem, bmp);
  POINT dst{10, 20}, src{0, 0};
  SIZE size{2, 1};
  BLENDFUNCTION bf;
  bf.AlphaFormat = AC_SRC_ALPHA;
  EXPECT_TRUE(UpdateLayeredWindow(w, 0, &dst, &size, mem, &src, 0, &bf, ULW_ALPHA));
  SelectObject(mem, old);
  DeleteObject(bmp);
  DeleteDC(mem);

  RECT r;
  GetWindowRect(w, &r);
  EXPECT_EQ(r, (RECT{10, 20, 12, 21}));
  CapturedImage img = CaptureScreen();  // the desktop is black
  EXPECT_EQ(img.color(10, 20), RGB(255, 0, 0));
  EXPECT_EQ(img.color(11, 20), RGB(0, 0x80, 0));
  // Constant alpha on top of per-pixel alpha.
  bf.SourceConstantAlpha = 128;
  UpdateLayeredWindow(w, 0, nullptr, nullptr, 0, nullptr, 0, &bf, ULW_ALPHA);
  EXPECT_EQ(CaptureScreen().color(10, 20), RGB(128, 0, 0));
  EXPECT_FALSE(UpdateLayeredWindow(Make("plain", WS_POPUP, 0, 0, 1, 1), 0, nullptr, nullptr, 0, nullptr, 0, &bf, ULW_ALPHA));
}

TEST_F(DesktopTest, SavesWindowsAndTheScreenAsPng) {
  SetScreenSize(32, 16);
  HWND w = Painted("w", RGB(1, 2, 3), WS_POPUP | WS_VISIBLE, 4, 4, 8, 6);
  PumpMessages();
  CapturedImage one = CaptureWindow(w);
  EXPECT_EQ(one.width(), 8);
  EXPECT_EQ(one.height(), 6);
  EXPECT_EQ(one.color(7, 5), RGB(1, 2, 3));
  const std::string path = ::testing::TempDir() + "desktop_window.png";
  ASSERT_TRUE(SaveWindowPng(w, path));
  std::ifstream f(path, std::ios::binary);
  char sig[8] = {};
  f.read(sig, 8);
  EXPECT_EQ(std::string(sig + 1, 3), "PNG");
  EXPECT_TRUE(SaveScreenPng(::testing::TempDir() + "desktop_screen.png"));
  EXPECT_FALSE(SaveWindowPng(0xBAD, path));
  std::remove(path.c_str());
}

TEST_F(DesktopTest, MetricsAndParametersFollowTheScreen) {
  EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), 1280);
  EXPECT_EQ(GetSystemMetrics(SM_CYSCREEN), 800);
  RECT wa;
  ASSERT_TRUE(SystemParametersInfo(SPI_GETWORKAREA, 0, &wa, 0));
  EXPECT_EQ(wa, (RECT{0, 0, 1280, 760}));
  SetScreenSize(1024, 768);
  SystemParametersInfo(SPI_GETWORKAREA, 0, &wa, 0);
  EXPECT_EQ(wa, (RECT{0, 0, 1024, 728}));
  EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), 1024);

  UINT v = 0;
  SystemParametersInfo(SPI_GETMOUSEHOVERTIME, 0, &v, 0);
  EXPECT_EQ(v, 400u);
  SystemParametersInfo(SPI_SETMOUSEHOVERTIME, 250, nullptr, 0);
  SystemParametersInfo(SPI_GETMOUSEHOVERTIME, 0, &v, 0);
  EXPECT_EQ(v, 250u);
  SystemParametersInfo(SPI_GETWHEELSCROLLLINES, 0, &v, 0);
  EXPECT_EQ(v, 3u);
  EXPECT_FALSE(SystemParametersInfo(SPI_GETWORKAREA, 0, nullptr, 0));
  EXPECT_FALSE(SystemParametersInfo(0xFFFF, 0, &v, 0));
  EXPECT_EQ(GetDoubleClickTime(), 500u);
}

TEST_F(DesktopTest, SystemColoursAndTheirBrushes) {
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), 0xF0F0F0u);
  EXPECT_EQ(GetSysColor(COLOR_WINDOW), 0xFFFFFFu);
  EXPECT_EQ(GetSysColor(99), 0u);
  HBRUSH face = GetSysColorBrush(COLOR_3DFACE);
  EXPECT_EQ(GetSysColorBrush(COLOR_BTNFACE), face);
  LOGBRUSH lb;
  ASSERT_EQ(GetObject(face, sizeof lb, &lb), static_cast<int>(sizeof lb));
  EXPECT_EQ(lb.lbColor, 0xF0F0F0u);

  HWND w = Make("w", WS_POPUP, 0, 0, 1, 1);
  Only({WM_SYSCOLORCHANGE});
  Take();
  int idx = COLOR_BTNFACE;
  COLORREF c = RGB(1, 2, 3);
  SetSysColors(1, &idx, &c);
  EXPECT_EQ(Take().size(), 1u);
  EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(1, 2, 3));
  GetObject(GetSysColorBrush(COLOR_BTNFACE), sizeof lb, &lb);
  EXPECT_EQ(lb.lbColor, RGB(1, 2, 3));

  // A class brush given as a colour index + 1 erases with that colour.
  RegisterWindowClass(u"Face", [](HWND h, UINT m, WPARAM wp, LPARAM lp) { return DefWindowProc(h, m, wp, lp); }, 0,
                      static_cast<HBRUSH>(COLOR_WINDOW + 1));
  HWND f = CreateWindowEx(0, u"Face", u"", WS_POPUP | WS_VISIBLE, 0, 0, 5, 5, 0);
  UpdateWindow(f);
  EXPECT_EQ(CaptureWindow(f).color(2, 2), 0xFFFFFFu);
  (void)w;
}

TEST_F(DesktopTest, CursorsFollowTheClassAndSetCursor) {
  HCURSOR arrow = LoadCursor(0, IDC_ARROW);
  HCURSOR beam = LoadCursor(0, IDC_IBEAM);
  ASSERT_TRUE(arrow && beam);
  EXPECT_EQ(LoadCursor(0, IDC_ARROW), arrow);
  EXPECT_EQ(CursorId(beam), IDC_IBEAM);
  EXPECT_EQ(LoadCursor(0, 12345), 0u);
  EXPECT_FALSE(DestroyCursor(arrow));  // shared

  RegisterWindowClass(u"Edit", [](HWND h, UINT m, WPARAM wp, LPARAM lp) { return DefWindowProc(h, m, wp, lp); }, 0, 0,
                      beam);
  CreateWindowEx(0, u"Edit", u"", WS_POPUP | WS_VISIBLE, 100, 100, 50, 20, 0);
  HWND sizable = Make("sizable", WS_POPUP | WS_VISIBLE | WS_THICKFRAME, 300, 100, 50, 50);
  SetCursor(arrow);
  InjectMouseMove(110, 110);
  PumpMessages();
  EXPECT_EQ(GetCursor(), beam);
  InjectMouseMove(301, 120);  // on the left sizing border
  PumpMessages();
  EXPECT_EQ(CursorId(GetCursor()), IDC_SIZEWE);
  EXPECT_EQ(SetCursor(arrow), LoadCursor(0, IDC_SIZEWE));
  (void)sizable;
}

TEST_F(DesktopTest, ClipboardText) {
  EXPECT_FALSE(GetClipboardText().has_value());
  EXPECT_TRUE(SetClipboardText(u"Olá ✓"));
  EXPECT_EQ(GetClipboardText(), u"Olá ✓");
  EXPECT_TRUE(IsClipboardFormatAvailable(CF_UNICODETEXT));
  EXPECT_TRUE(IsClipboardFormatAvailable(CF_TEXT));  // offered in the other text form
  ASSERT_TRUE(OpenClipboard(0));
  EXPECT_FALSE(OpenClipboard(0));  // already open
  auto ansi = GetClipboardData(CF_TEXT);
  ASSERT_TRUE(ansi.has_value());
  EXPECT_EQ(*ansi, (std::vector<uint8_t>{'O', 'l', 0xE1, ' ', '?', 0}));
  EXPECT_TRUE(EmptyClipboard());
  EXPECT_EQ(CountClipboardFormats(), 0);
  SetClipboardData(CF_TEXT, {'h', 'i', 0});
  UINT custom = RegisterClipboardFormatW(u"Morvantix Grid");
  EXPECT_EQ(RegisterClipboardFormatW(u"Morvantix Grid"), custom);
  SetClipboardData(custom, {1, 2, 3});
  EXPECT_EQ(EnumClipboardFormats(0), CF_TEXT);
  EXPECT_EQ(EnumClipboardFormats(CF_TEXT), custom);
  EXPECT_TRUE(CloseClipboard());
  EXPECT_EQ(GetClipboardText(), u"hi");
  EXPECT_FALSE(EmptyClipboard());  // not open
  EXPECT_FALSE(SetClipboardData(CF_TEXT, {}));
}

}  // namespace
}  // namespace mx::platform
