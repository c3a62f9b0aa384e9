// The virtual screen: metrics, parameters, layered windows, composition and capture, beeps.
#include "platform/Desktop.h"

#include <algorithm>
#include <cstring>

#include "platform/Blend.h"
#include "platform/DeviceContext.h"
#include "platform/Gdi.h"
#include "platform/Messages.h"
#include "platform/PngEncoder.h"
#include "platform/SysColors.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace {

constexpr int kTaskBarHeight = 40;

struct BeepState {
  int count = 0;
  UINT last = 0;
  std::function<void(UINT)> handler;
};

BeepState& Beeps() {
  thread_local BeepState state;
  return state;
}

uint32_t ScreenPixel(COLORREF c) {
  return 0xFF000000u | (static_cast<uint32_t>(GetRValue(c)) << 16) | (static_cast<uint32_t>(GetGValue(c)) << 8) |
         GetBValue(c);
}

// The screen area a top-level window shows: its rectangle cut by its region and the screen.
Region ScreenShape(const Wnd& w, int screenW, int screenH) {
  Region shape(w.rect);
  if (const Region* r = WindowRegion(w)) {
    Region reg = *r;
    reg.offset(w.rect.left, w.rect.top);
    shape = Region::combine(shape, reg, RegionOp::And);
  }
  return shape.intersected(RECT{0, 0, screenW, screenH});
}

void ComposeWindow(const Wnd& w, Surface& screen) {
  if (w.surface.empty()) return;
  const bool layered = (w.exStyle & WS_EX_LAYERED) != 0;
  // A layered window shows nothing until it has been given attributes or contents.
  if (layered && !w.perPixel && !w.layeredFlags) return;
  Region shape = ScreenShape(w, screen.width, screen.height);
  const int ox = w.rect.left, oy = w.rect.top;

  for (const RECT& r : shape.rects()) {
    for (int y = r.top; y < r.bottom; ++y) {
      const int sy = y - oy;
      if (sy < 0 || sy >= w.surface.height) continue;
      const uint32_t* src = w.surface.row(sy);
      uint32_t* dst = screen.row(y);
      for (int x = r.left; x < r.right; ++x) {
        const int sx = x - ox;
        if (sx < 0 || sx >= w.surface.width) continue;
        const uint32_t s = src[sx];
        uint32_t& d = dst[x];
        if (!layered) {
          d = s | 0xFF000000u;  // ordinary windows are opaque whatever their alpha bytes say
        } else if (w.perPixel) {
          const bool srcAlpha = (w.ulwFlags & ULW_ALPHA) && w.ulwPerPixelAlpha;
          if (w.ulwFlags & ULW_OPAQUE) {
            d = s | 0xFF000000u;
          } else if ((w.ulwFlags & ULW_COLORKEY) && (s & 0x00FFFFFFu) == (ScreenPixel(w.ulwKey) & 0x00FFFFFFu)) {
            continue;
          } else if (w.ulwFlags & ULW_ALPHA) {
            d = blend::blendFast(s, d, w.ulwAlpha, srcAlpha) | 0xFF000000u;
          } else {
            d = s | 0xFF000000u;
          }
        } else {
          if ((w.layeredFlags & LWA_COLORKEY) && (s & 0x00FFFFFFu) == (ScreenPixel(w.layeredKey) & 0x00FFFFFFu)) continue;
          const uint32_t k = (w.layeredFlags & LWA_ALPHA) ? w.layeredAlpha : 255u;
          d = blend::blendFast(s, d, k, false) | 0xFF000000u;
        }
      }
    }
  }
}

}  // namespace

// ---- metrics -----------------------------------------------------------------------------------

int GetSystemMetrics(int index) {
  UserState& st = St();
  switch (index) {
    case SM_CXSCREEN: case SM_CXVIRTUALSCREEN: return st.screenWidth;
    case SM_CYSCREEN: case SM_CYVIRTUALSCREEN: return st.screenHeight;
    case SM_XVIRTUALSCREEN: case SM_YVIRTUALSCREEN: return 0;
    case SM_CXFULLSCREEN: return st.workArea.right - st.workArea.left;
    case SM_CYFULLSCREEN: return st.workArea.bottom - st.workArea.top - 22;
    case SM_CXMAXIMIZED: return st.workArea.right - st.workArea.left + 8;
    case SM_CYMAXIMIZED: return st.workArea.bottom - st.workArea.top + 8;
    case SM_CXMAXTRACK: return st.screenWidth + 12;
    case SM_CYMAXTRACK: return st.screenHeight + 12;
    case SM_CXVSCROLL: case SM_CYHSCROLL: case SM_CYVSCROLL: case SM_CXHSCROLL:
    case SM_CYVTHUMB: case SM_CXHTHUMB: return 17;
    case SM_CYCAPTION: return 22;
    case SM_CYSMCAPTION: return 18;
    case SM_CXBORDER: case SM_CYBORDER: return 1;
    case SM_CXDLGFRAME: case SM_CYDLGFRAME: return 3;
    case SM_CXFRAME: case SM_CYFRAME: return 4;
    case SM_CXEDGE: case SM_CYEDGE: return 2;
    case SM_CXICON: case SM_CYICON: case SM_CXCURSOR: case SM_CYCURSOR: return 32;
    case SM_CXSMICON: case SM_CYSMICON: return 16;
    case SM_CYMENU: return 20;
    case SM_CXMIN: return 132;
    case SM_CYMIN: return 38;
    case SM_CXMINTRACK: return 132;
    case SM_CYMINTRACK: return 38;
    case SM_CXSIZE: case SM_CYSIZE: return 22;
    case SM_CXMINIMIZED: return 160;
    case SM_CYMINIMIZED: return 28;
    case SM_CXDOUBLECLK: case SM_CYDOUBLECLK: return 4;
    case SM_CXDRAG: case SM_CYDRAG: return 4;
    case SM_CXICONSPACING: case SM_CYICONSPACING: return 75;
    case SM_CXFOCUSBORDER: case SM_CYFOCUSBORDER: return 1;
    case SM_MOUSEPRESENT: case SM_MOUSEWHEELPRESENT: case SM_CMONITORS: return 1;
    case SM_CMOUSEBUTTONS: return 5;
    case SM_SWAPBUTTON: case SM_REMOTESESSION: return 0;
    default: return 0;
  }
}

BOOL SystemParametersInfoW(UINT action, UINT uiParam, void* pvParam, UINT) {
  UserState& st = St();
  auto putUint = [&](UINT v) {
    if (!pvParam) return FALSE;
    *static_cast<UINT*>(pvParam) = v;
    return TRUE;
  };
  auto putBool = [&](BOOL v) {
    if (!pvParam) return FALSE;
    *static_cast<BOOL*>(pvParam) = v;
    return TRUE;
  };
  switch (action) {
    case SPI_GETWORKAREA:
      if (!pvParam) return FALSE;
      *static_cast<RECT*>(pvParam) = st.workArea;
      return TRUE;
    case SPI_SETWORKAREA:
      if (!pvParam) return FALSE;
      SetWorkArea(*static_cast<const RECT*>(pvParam));
      return TRUE;
    case SPI_GETMOUSEHOVERTIME: return putUint(st.hoverTime);
    case SPI_SETMOUSEHOVERTIME: st.hoverTime = std::max(uiParam, 1u); return TRUE;
    case SPI_GETMOUSEHOVERWIDTH: return putUint(st.hoverWidth);
    case SPI_SETMOUSEHOVERWIDTH: st.hoverWidth = uiParam; return TRUE;
    case SPI_GETMOUSEHOVERHEIGHT: return putUint(st.hoverHeight);
    case SPI_SETMOUSEHOVERHEIGHT: st.hoverHeight = uiParam; return TRUE;
    case SPI_GETWHEELSCROLLLINES: return putUint(st.wheelLines);
    case SPI_SETWHEELSCROLLLINES: st.wheelLines = uiParam; return TRUE;
    case SPI_GETWHEELSCROLLCHARS: return putUint(st.wheelChars);
    case SPI_SETWHEELSCROLLCHARS: st.wheelChars = uiParam; return TRUE;
    case SPI_SETDOUBLECLICKTIME: st.doubleClickTime = uiParam ? uiParam : 500; return TRUE;
    case SPI_GETKEYBOARDDELAY: return putUint(1);
    case SPI_GETKEYBOARDSPEED: return putUint(31);
    case SPI_GETMENUSHOWDELAY: return putUint(400);
    case SPI_GETDRAGFULLWINDOWS: return putBool(TRUE);
    case SPI_GETFONTSMOOTHING: return putBool(TRUE);
    case SPI_GETFLATMENU: return putBool(FALSE);
    case SPI_GETDROPSHADOW: return putBool(TRUE);
    case SPI_GETCLIENTAREAANIMATION: return putBool(TRUE);
    default: return FALSE;
  }
}

// ---- the screen --------------------------------------------------------------------------------

void SetScreenSize(int width, int height) {
  UserState& st = St();
  st.screenWidth = std::clamp(width, 1, 16384);
  st.screenHeight = std::clamp(height, 1, 16384);
  st.workArea = {0, 0, st.screenWidth, std::max(0, st.screenHeight - kTaskBarHeight)};
  RefreshWindowDCs();
}

void SetWorkArea(const RECT& rect) {
  UserState& st = St();
  RECT r{std::max(0, static_cast<int>(rect.left)), std::max(0, static_cast<int>(rect.top)),
         std::min(st.screenWidth, static_cast<int>(rect.right)), std::min(st.screenHeight, static_cast<int>(rect.bottom))};
  if (r.empty()) return;
  st.workArea = r;
}

void SetScreenDpi(int dpi) { St().dpi = std::clamp(dpi, 48, 480); }
int GetScreenDpi() { return St().dpi; }

// ---- layered windows ---------------------------------------------------------------------------

BOOL SetLayeredWindowAttributes(HWND hwnd, COLORREF key, BYTE alpha, DWORD flags) {
  Wnd* w = Get(hwnd);
  if (!w || !(w->exStyle & WS_EX_LAYERED)) return FALSE;
  w->layeredKey = key;
  w->layeredAlpha = alpha;
  w->layeredFlags = flags & (LWA_ALPHA | LWA_COLORKEY);
  // Attributes turn the window back into one that paints itself.
  if (w->perPixel) {
    w->perPixel = false;
    RedrawWindow(hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  }
  return TRUE;
}

BOOL GetLayeredWindowAttributes(HWND hwnd, COLORREF* key, BYTE* alpha, DWORD* flags) {
  Wnd* w = Get(hwnd);
  if (!w || !(w->exStyle & WS_EX_LAYERED) || w->perPixel) return FALSE;
  if (key) *key = w->layeredKey;
  if (alpha) *alpha = w->layeredAlpha;
  if (flags) *flags = w->layeredFlags;
  return TRUE;
}

BOOL UpdateLayeredWindow(HWND hwnd, HDC, const POINT* pptDst, const SIZE* psize, HDC hdcSrc, const POINT* pptSrc,
                         COLORREF key, const BLENDFUNCTION* blend, DWORD flags) {
  Wnd* w = Get(hwnd);
  if (!w || !(w->exStyle & WS_EX_LAYERED) || w->parent) return FALSE;
  if ((flags & ULW_ALPHA) && !blend) return FALSE;
  if (psize && (psize->cx <= 0 || psize->cy <= 0)) return FALSE;
  const RECT old = w->rect;
  int x = pptDst ? pptDst->x : old.left, y = pptDst ? pptDst->y : old.top;
  int cx = psize ? psize->cx : old.right - old.left, cy = psize ? psize->cy : old.bottom - old.top;
  if (x != old.left || y != old.top || cx != old.right - old.left || cy != old.bottom - old.top) {
    SetWindowPos(hwnd, 0, x, y, cx, cy, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    if (!(w = Get(hwnd))) return FALSE;
  }
  if (hdcSrc) {
    DeviceContext* src = LookupDC(hdcSrc);
    if (!src || !src->surface || src->surface->empty()) return FALSE;
    const POINT from = pptSrc ? *pptSrc : POINT{0, 0};
    const POINT dev = src->toDevice(from);
    const Surface& s = *src->surface;
    for (int row = 0; row < w->surface.height; ++row) {
      uint32_t* out = w->surface.row(row);
      const int sy = dev.y + row;
      for (int col = 0; col < w->surface.width; ++col) {
        const int sx = dev.x + col;
        out[col] = (sx >= 0 && sy >= 0 && sx < s.width && sy < s.height) ? s.row(sy)[sx] : 0;
      }
    }
  }
  w->perPixel = true;
  w->ulwFlags = flags;
  w->ulwKey = key;
  w->ulwAlpha = blend ? blend->SourceConstantAlpha : 255;
  w->ulwPerPixelAlpha = blend && (blend->AlphaFormat & AC_SRC_ALPHA);
  // Its contents are given, not painted.
  ClearUpdate(*w);
  return TRUE;
}

// ---- captured images ---------------------------------------------------------------------------

CapturedImage::CapturedImage(int width, int height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
  m_pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  m_surface = {width, height, nullptr, width * 4, false};
  bind();
}

CapturedImage::CapturedImage(const CapturedImage& other) : m_pixels(other.m_pixels), m_surface(other.m_surface) { bind(); }

CapturedImage& CapturedImage::operator=(const CapturedImage& other) {
  if (this != &other) {
    m_pixels = other.m_pixels;
    m_surface = other.m_surface;
    bind();
  }
  return *this;
}

CapturedImage::CapturedImage(CapturedImage&& other) noexcept
    : m_pixels(std::move(other.m_pixels)), m_surface(other.m_surface) {
  bind();
  other.m_surface = {};
}

CapturedImage& CapturedImage::operator=(CapturedImage&& other) noexcept {
  if (this != &other) {
    m_pixels = std::move(other.m_pixels);
    m_surface = other.m_surface;
    bind();
    other.m_surface = {};
  }
  return *this;
}

void CapturedImage::bind() {
  m_surface.bits = m_pixels.empty() ? nullptr : reinterpret_cast<uint8_t*>(m_pixels.data());
  m_surface.stride = m_surface.width * 4;
  m_surface.bottomUp = false;
}

uint32_t CapturedImage::pixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width() || y >= height()) return 0;
  return m_pixels[static_cast<size_t>(y) * static_cast<size_t>(width()) + static_cast<size_t>(x)];
}

COLORREF CapturedImage::color(int x, int y) const {
  uint32_t p = pixel(x, y);
  return RGB((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
}

CapturedImage CaptureScreen() {
  UserState& st = St();
  CapturedImage img(st.screenWidth, st.screenHeight);
  Surface& screen = img.surface();
  const uint32_t desk = ScreenPixel(GetSysColor(COLOR_DESKTOP));
  for (int y = 0; y < screen.height; ++y) std::fill(screen.row(y), screen.row(y) + screen.width, desk);
  // Bottom of the z-order first.
  for (auto it = st.topLevels.rbegin(); it != st.topLevels.rend(); ++it) {
    const Wnd* w = Get(*it);
    if (w && (w->style & WS_VISIBLE)) ComposeWindow(*w, screen);
  }
  return img;
}

CapturedImage CaptureWindow(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w) return {};
  const Wnd& top = TopLevelOf(*w);
  const POINT so = SurfaceOrigin(*w);
  CapturedImage img(w->rect.width(), w->rect.height());
  Surface& out = img.surface();
  for (int y = 0; y < out.height; ++y) {
    const int sy = so.y + y;
    if (sy < 0 || sy >= top.surface.height) continue;
    const uint32_t* src = top.surface.row(sy);
    uint32_t* dst = out.row(y);
    for (int x = 0; x < out.width; ++x) {
      const int sx = so.x + x;
      if (sx >= 0 && sx < top.surface.width) dst[x] = src[sx];
    }
  }
  return img;
}

bool SaveScreenPng(const std::string& path) {
  CapturedImage img = CaptureScreen();
  PngEncodeOptions opt;
  opt.dropAlpha = true;
  return WritePngFile(img.surface(), path, opt);
}

bool SaveWindowPng(HWND hwnd, const std::string& path) {
  Wnd* w = Get(hwnd);
  if (!w) return false;
  CapturedImage img = CaptureWindow(hwnd);
  PngEncodeOptions opt;
  // Only per-pixel layered contents carry meaningful alpha; other windows are opaque.
  const Wnd& top = TopLevelOf(*w);
  opt.dropAlpha = !(top.perPixel && (top.exStyle & WS_EX_LAYERED));
  return WritePngFile(img.surface(), path, opt);
}

// ---- beeps -------------------------------------------------------------------------------------

BOOL MessageBeep(UINT type) {
  BeepState& b = Beeps();
  ++b.count;
  b.last = type;
  if (b.handler) b.handler(type);
  return TRUE;
}

int MessageBeepCount() { return Beeps().count; }
UINT LastMessageBeep() { return Beeps().last; }
void SetMessageBeepHandler(std::function<void(UINT)> handler) { Beeps().handler = std::move(handler); }

void ResetMessageBeeps() {
  BeepState& b = Beeps();
  b.count = 0;
  b.last = 0;
  b.handler = nullptr;
}

}  // namespace mx::platform
