#pragma once
// The virtual screen: its size, work area and dpi, the system metrics and parameters read from
// it, layered windows, and the composition of every visible top-level window into one picture.
//
// Composition, bottom of the z-order first: an ordinary window is copied opaque (its alpha
// bytes do not matter); a layered window blends by its constant alpha (LWA_ALPHA) and drops
// pixels of its colour key (LWA_COLORKEY), or, after UpdateLayeredWindow with AC_SRC_ALPHA, is
// blended per pixel as premultiplied colour. Window regions cut every kind. The desktop itself
// shows COLOR_DESKTOP.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Surface.h"
#include "platform/Types.h"

namespace mx::platform {

struct BLENDFUNCTION;

// ---- metrics -----------------------------------------------------------------------------------

constexpr int SM_CXSCREEN = 0, SM_CYSCREEN = 1, SM_CXVSCROLL = 2, SM_CYHSCROLL = 3, SM_CYCAPTION = 4,
              SM_CXBORDER = 5, SM_CYBORDER = 6, SM_CXDLGFRAME = 7, SM_CYDLGFRAME = 8, SM_CYVTHUMB = 9,
              SM_CXHTHUMB = 10, SM_CXICON = 11, SM_CYICON = 12, SM_CXCURSOR = 13, SM_CYCURSOR = 14,
              SM_CYMENU = 15, SM_CXFULLSCREEN = 16, SM_CYFULLSCREEN = 17, SM_MOUSEPRESENT = 19,
              SM_CYVSCROLL = 20, SM_CXHSCROLL = 21, SM_SWAPBUTTON = 23, SM_CXMIN = 28, SM_CYMIN = 29,
              SM_CXSIZE = 30, SM_CYSIZE = 31, SM_CXFRAME = 32, SM_CYFRAME = 33, SM_CXSIZEFRAME = 32,
              SM_CYSIZEFRAME = 33, SM_CXMINTRACK = 34, SM_CYMINTRACK = 35, SM_CXDOUBLECLK = 36,
              SM_CYDOUBLECLK = 37, SM_CXICONSPACING = 38, SM_CYICONSPACING = 39, SM_CMOUSEBUTTONS = 43,
              SM_CXFIXEDFRAME = 7, SM_CYFIXEDFRAME = 8, SM_CXEDGE = 45, SM_CYEDGE = 46,
              SM_CXSMICON = 49, SM_CYSMICON = 50, SM_CYSMCAPTION = 51, SM_CXMINIMIZED = 57,
              SM_CYMINIMIZED = 58, SM_CXMAXTRACK = 59, SM_CYMAXTRACK = 60, SM_CXMAXIMIZED = 61,
              SM_CYMAXIMIZED = 62, SM_CXDRAG = 68, SM_CYDRAG = 69, SM_MOUSEWHEELPRESENT = 75,
              SM_XVIRTUALSCREEN = 76, SM_YVIRTUALSCREEN = 77, SM_CXVIRTUALSCREEN = 78,
              SM_CYVIRTUALSCREEN = 79, SM_CMONITORS = 80, SM_CXFOCUSBORDER = 83, SM_CYFOCUSBORDER = 84,
              SM_REMOTESESSION = 0x1000;

// Values of a 96-dpi screen of the classic system; the screen and full-screen sizes follow the
// virtual screen.
[[nodiscard]] int GetSystemMetrics(int index);

constexpr UINT SPI_GETKEYBOARDSPEED = 0x000A, SPI_GETKEYBOARDDELAY = 0x0016,
               SPI_SETDOUBLECLICKTIME = 0x0020, SPI_GETDRAGFULLWINDOWS = 0x0026,
               SPI_SETWORKAREA = 0x002F, SPI_GETWORKAREA = 0x0030, SPI_GETFONTSMOOTHING = 0x004A,
               SPI_GETMOUSEHOVERWIDTH = 0x0062, SPI_SETMOUSEHOVERWIDTH = 0x0063,
               SPI_GETMOUSEHOVERHEIGHT = 0x0064, SPI_SETMOUSEHOVERHEIGHT = 0x0065,
               SPI_GETMOUSEHOVERTIME = 0x0066, SPI_SETMOUSEHOVERTIME = 0x0067,
               SPI_GETWHEELSCROLLLINES = 0x0068, SPI_SETWHEELSCROLLLINES = 0x0069,
               SPI_GETMENUSHOWDELAY = 0x006A, SPI_GETWHEELSCROLLCHARS = 0x006C,
               SPI_SETWHEELSCROLLCHARS = 0x006D, SPI_GETFLATMENU = 0x1022, SPI_GETDROPSHADOW = 0x1024,
               SPI_GETCLIENTAREAANIMATION = 0x1042;

// Reads (pvParam points at a UINT, BOOL or RECT) or sets (uiParam, or a RECT for the work area)
// one parameter. FALSE for an action this system does not keep or a null pointer.
BOOL SystemParametersInfoW(UINT action, UINT uiParam, void* pvParam, UINT winIni);
inline BOOL SystemParametersInfo(UINT action, UINT uiParam, void* pvParam, UINT winIni) {
  return SystemParametersInfoW(action, uiParam, pvParam, winIni);
}

// ---- the screen --------------------------------------------------------------------------------

// Sets the screen size; the work area becomes the screen less a 40-pixel task bar at the bottom.
void SetScreenSize(int width, int height);
void SetWorkArea(const RECT& rect);
void SetScreenDpi(int dpi);
[[nodiscard]] int GetScreenDpi();

// ---- layered windows ---------------------------------------------------------------------------

// The window must have WS_EX_LAYERED. Switches the window back from per-pixel contents.
BOOL SetLayeredWindowAttributes(HWND hwnd, COLORREF key, BYTE alpha, DWORD flags);
BOOL GetLayeredWindowAttributes(HWND hwnd, COLORREF* key, BYTE* alpha, DWORD* flags);
// Gives a layered window its contents from a DC (size from psize, position from pptDst when
// given) and the way to blend them: ULW_ALPHA with blend (SourceConstantAlpha, AC_SRC_ALPHA for
// per-pixel premultiplied alpha), ULW_COLORKEY with key, or ULW_OPAQUE.
BOOL UpdateLayeredWindow(HWND hwnd, HDC hdcDst, const POINT* pptDst, const SIZE* psize, HDC hdcSrc,
                         const POINT* pptSrc, COLORREF key, const BLENDFUNCTION* blend, DWORD flags);

// ---- composition and capture -------------------------------------------------------------------

// A picture that owns its pixels (top-down, 0xAARRGGBB words; alpha 255 for a screen capture).
class CapturedImage {
 public:
  CapturedImage() = default;
  CapturedImage(int width, int height);
  CapturedImage(const CapturedImage& other);
  CapturedImage& operator=(const CapturedImage& other);
  CapturedImage(CapturedImage&& other) noexcept;
  CapturedImage& operator=(CapturedImage&& other) noexcept;

  [[nodiscard]] int width() const { return m_surface.width; }
  [[nodiscard]] int height() const { return m_surface.height; }
  [[nodiscard]] bool empty() const { return m_surface.empty(); }
  [[nodiscard]] uint32_t pixel(int x, int y) const;
  // The same pixel as a COLORREF (0x00BBGGRR), as GetPixel would give it.
  [[nodiscard]] COLORREF color(int x, int y) const;
  [[nodiscard]] Surface& surface() { return m_surface; }
  [[nodiscard]] const Surface& surface() const { return m_surface; }

 private:
  void bind();
  std::vector<uint32_t> m_pixels;
  Surface m_surface{};
};

// Composes the screen as it is now; pending WM_PAINT messages are not run first.
[[nodiscard]] CapturedImage CaptureScreen();
// The window's pixels from its top-level window's surface (for a layered window with per-pixel
// contents, those), whole window rectangle, not composed with anything else.
[[nodiscard]] CapturedImage CaptureWindow(HWND hwnd);
bool SaveScreenPng(const std::string& path);
bool SaveWindowPng(HWND hwnd, const std::string& path);

// ---- beeps -------------------------------------------------------------------------------------

// There is no sound here: a beep is counted and passed to a handler that tests may set.
BOOL MessageBeep(UINT type);
[[nodiscard]] int MessageBeepCount();
[[nodiscard]] UINT LastMessageBeep();
void SetMessageBeepHandler(std::function<void(UINT)> handler);
void ResetMessageBeeps();

}  // namespace mx::platform
