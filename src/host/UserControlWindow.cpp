// The user control's window procedure: window messages become the host's events.
//
//   WM_xBUTTONDOWN     focus (left and right), capture, MouseDown
//   WM_LBUTTONDBLCLK   capture, DblClick; the up that follows gives MouseUp and no Click
//   WM_MOUSEMOVE       MouseMove with the buttons held
//   WM_xBUTTONUP       MouseUp; Click for the left button over the client area; capture let go
//   keys               the form's routing first (Tab, Enter, Esc, access keys), then KeyDown,
//                      KeyPress, KeyUp
//   focus              EnterFocus, GotFocus / LostFocus, ExitFocus (Enter and Exit only when
//                      the focus crosses the control's own border, not between its parts)
//   WM_SIZE            the image follows the client size, then Resize
//   WM_PAINT           the image is copied to the window, then Paint unless AutoRedraw is on
//
// Handlers run guarded: a failure stays in Err and never unwinds through the platform.
#include <cmath>

#include "host/HostInput.h"
#include "host/Screen.h"
#include "host/UserControlImpl.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

int StandardCursorFor(int16_t pointer) {
  switch (pointer) {
    case vbArrow: return IDC_ARROW;
    case vbCrosshair: return IDC_CROSS;
    case vbIbeam: return IDC_IBEAM;
    case 4: return IDC_ICON;
    case 5: return IDC_SIZEALL;
    case vbSizeNESW: return IDC_SIZENESW;
    case vbSizeNS: return IDC_SIZENS;
    case vbSizeNWSE: return IDC_SIZENWSE;
    case vbSizeWE: return IDC_SIZEWE;
    case 10: return IDC_UPARROW;
    case vbHourglass: return IDC_WAIT;
    case vbNoDrop: return IDC_NO;
    case 13: return IDC_APPSTARTING;
    case 14: return IDC_HELP;
    case vbSizeAll: return IDC_SIZEALL;
    default: return IDC_ARROW;
  }
}

}  // namespace

void UserControl::Impl::RegisterClassOnce() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kClassName, &info)) return;
  // CS_OWNDC keeps one window DC for the control's life: that is hDC with AutoRedraw off, so its
  // font and colours stay selected between calls.
  RegisterWindowClass(kClassName, &UserControl::Impl::WindowProc, CS_DBLCLKS | CS_OWNDC, 0,
                      LoadCursorW(0, IDC_ARROW));
}

HCURSOR UserControl::Impl::CursorFor(UserControl& uc) {
  Impl& im = *uc.m_impl;
  if (uc.m_mousePointer != vbCustom) return LoadCursorW(0, StandardCursorFor(uc.m_mousePointer));
  if (im.cursorPicture != uc.m_mouseIcon) {
    if (im.customCursor && im.ownsCustomCursor) DestroyCursor(im.customCursor);
    im.customCursor = 0;
    im.ownsCustomCursor = false;
    im.cursorPicture = uc.m_mouseIcon;
    const uint32_t handle = im.cursorPicture ? im.cursorPicture->Handle() : 0;
    if (handle && TypeOfHandle(handle) == HandleType::Cursor) {
      im.customCursor = handle;
    } else if (handle && TypeOfHandle(handle) == HandleType::Icon) {
      // A pointer with the icon's size and hot spot.
      ICONINFO ii;
      SIZE size{32, 32};
      if (GetIconInfo(handle, &ii)) {
        if (ii.hbmMask) DeleteObject(ii.hbmMask);
        if (ii.hbmColor) DeleteObject(ii.hbmColor);
        GetIconSize(handle, &size);
        im.customCursor = CreateCursor(0, static_cast<int>(ii.xHotspot), static_cast<int>(ii.yHotspot), size.cx,
                                       size.cy, nullptr, nullptr);
        im.ownsCustomCursor = im.customCursor != 0;
      }
    }
  }
  // A custom pointer without a picture that gives one shows the arrow.
  return im.customCursor ? im.customCursor : LoadCursorW(0, IDC_ARROW);
}

LRESULT UserControl::Impl::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_NCCREATE) {
    auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* created = cs ? static_cast<UserControl*>(cs->lpCreateParams) : nullptr;
    SetWindowLongPtr(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    if (created) created->m_hwnd = hwnd;
  }
  auto* uc = reinterpret_cast<UserControl*>(GetWindowLongPtr(hwnd, GWLP_USERDATA));
  if (!uc) return DefWindowProc(hwnd, msg, wParam, lParam);
  Impl& im = *uc->m_impl;
  // The control may be unloaded by its own handler: hold it when it is shared, and check that it
  // still lives after each handler otherwise.
  std::shared_ptr<Object> keep = uc->weak_from_this().lock();
  std::shared_ptr<bool> alive = im.alive;

  LRESULT result = 0;
  bool handled = false;
  Guard([&] { handled = uc->PreTranslateMessage(msg, wParam, lParam, result); });
  if (!*alive || handled) return result;

  switch (msg) {
    case WM_NCDESTROY:
      SetWindowLongPtr(hwnd, GWLP_USERDATA, 0);
      if (uc->m_hwnd == hwnd) {
        // Destroyed from outside (its form's window went first): the own DC went with it.
        uc->m_hwnd = 0;
        im.windowDC = 0;
        im.oldWindowFont = 0;
        im.shown = false;
      }
      return DefWindowProc(hwnd, msg, wParam, lParam);

    case WM_SIZE: {
      const int cw = LOWORD(static_cast<uintptr_t>(lParam)), ch = HIWORD(static_cast<uintptr_t>(lParam));
      uc->ResizeImage(cw, ch);
      if (!im.settingGeometry) {
        // A size set from outside: the extender follows, keeping its twips where they round
        // to the same pixels.
        const float tpx = GetScreen().TwipsPerPixelX(), tpy = GetScreen().TwipsPerPixelY();
        if (std::lround(uc->m_width / tpx) != cw) uc->m_width = static_cast<float>(cw) * tpx;
        if (std::lround(uc->m_height / tpy) != ch) uc->m_height = static_cast<float>(ch) * tpy;
      }
      uc->FireResize();
      return 0;
    }
    case WM_MOVE: {
      if (!im.settingGeometry && (GetWindowLongPtr(hwnd, GWL_STYLE) & WS_CHILD)) {
        const float tpx = GetScreen().TwipsPerPixelX(), tpy = GetScreen().TwipsPerPixelY();
        const int x = GET_X_LPARAM(lParam), y = GET_Y_LPARAM(lParam);
        if (std::lround(uc->m_left / tpx) != x) uc->m_left = static_cast<float>(x) * tpx;
        if (std::lround(uc->m_top / tpy) != y) uc->m_top = static_cast<float>(y) * tpy;
      }
      return 0;
    }

    case WM_ERASEBKGND:
      // The image is the background; a child that is transparent asks for it here too.
      if (wParam && im.imageDC)
        BitBlt(static_cast<HDC>(wParam), 0, 0, im.imageWidth, im.imageHeight, im.imageDC, 0, 0, SRCCOPY);
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd, &ps);
      if (dc && im.imageDC) BitBlt(dc, 0, 0, im.imageWidth, im.imageHeight, im.imageDC, 0, 0, SRCCOPY);
      EndPaint(hwnd, &ps);
      if (!uc->m_autoRedraw) Guard([&] { uc->UserControl_Paint(); });
      return 0;
    }

    case WM_SETCURSOR:
      if (static_cast<HWND>(wParam) == hwnd && static_cast<int16_t>(LOWORD(static_cast<uintptr_t>(lParam))) == HTCLIENT &&
          uc->m_mousePointer != vbDefault) {
        SetCursor(CursorFor(*uc));
        return TRUE;
      }
      return DefWindowProc(hwnd, msg, wParam, lParam);
    case WM_NCHITTEST: {
      LRESULT hit = DefWindowProc(hwnd, msg, wParam, lParam);
      if (hit != HTCLIENT) return hit;
      POINT pt{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      ScreenToClient(hwnd, &pt);
      int16_t hitResult = 3;
      Guard([&] { uc->UserControl_HitTest(static_cast<float>(pt.x), static_cast<float>(pt.y), hitResult); });
      if (!*alive) return hit;
      return hitResult == 0 ? HTTRANSPARENT : hit;
    }

    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
      int16_t button = msg == WM_LBUTTONDOWN ? vbLeftButton : msg == WM_RBUTTONDOWN ? vbRightButton : vbMiddleButton;
      if (button == vbLeftButton) im.afterDoubleClick = false;
      // A press gives the control the focus first, so GotFocus comes before MouseDown.
      if (button != vbMiddleButton && uc->CanGetFocus() && GetFocus() != hwnd && !IsChild(hwnd, GetFocus())) {
        platform::SetFocus(hwnd);
        if (!*alive || !IsWindow(hwnd)) return 0;
      }
      SetCapture(hwnd);
      int16_t shift = MouseShift(wParam);
      float x = static_cast<float>(GET_X_LPARAM(lParam)), y = static_cast<float>(GET_Y_LPARAM(lParam));
      Guard([&] { uc->UserControl_MouseDown(button, shift, x, y); });
      return 0;
    }
    case WM_LBUTTONDBLCLK: {
      SetCapture(hwnd);
      im.afterDoubleClick = true;
      Guard([&] { uc->UserControl_DblClick(); });
      return 0;
    }
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK:
      // Only the left button double-clicks; a second press of another is a press.
      return WindowProc(hwnd, msg == WM_RBUTTONDBLCLK ? WM_RBUTTONDOWN : WM_MBUTTONDOWN, wParam, lParam);
    case WM_MOUSEMOVE: {
      int16_t button = ButtonsHeld(wParam), shift = MouseShift(wParam);
      float x = static_cast<float>(GET_X_LPARAM(lParam)), y = static_cast<float>(GET_Y_LPARAM(lParam));
      Guard([&] { uc->UserControl_MouseMove(button, shift, x, y); });
      return 0;
    }
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
      int16_t button = msg == WM_LBUTTONUP ? vbLeftButton : msg == WM_RBUTTONUP ? vbRightButton : vbMiddleButton;
      int16_t shift = MouseShift(wParam);
      const POINT pt{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      float x = static_cast<float>(pt.x), y = static_cast<float>(pt.y);
      Guard([&] { uc->UserControl_MouseUp(button, shift, x, y); });
      if (!*alive || !IsWindow(hwnd)) return 0;
      if (button == vbLeftButton) {
        const bool wasDouble = im.afterDoubleClick;
        im.afterDoubleClick = false;
        RECT rc;
        GetClientRect(hwnd, &rc);
        if (!wasDouble && PtInRect(&rc, pt)) {
          Guard([&] { uc->UserControl_Click(); });
          if (!*alive || !IsWindow(hwnd)) return 0;
        }
      }
      // The capture taken on the press goes when no button is held any more.
      if (GetCapture() == hwnd && ButtonsHeld(wParam) == 0) ReleaseCapture();
      return 0;
    }

    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
      if (im.siteFilter && im.siteFilter(msg, wParam, lParam)) return 0;
      if (!*alive) return 0;
      int16_t keyCode = static_cast<int16_t>(wParam), shift = ShiftState();
      Guard([&] { uc->UserControl_KeyDown(keyCode, shift); });
      if (!*alive || !IsWindow(hwnd)) return 0;
      // Alt+F4 and the like still reach the system.
      return msg == WM_SYSKEYDOWN ? DefWindowProc(hwnd, msg, wParam, lParam) : 0;
    }
    case WM_CHAR: {
      if (im.siteFilter && im.siteFilter(msg, wParam, lParam)) return 0;
      if (!*alive) return 0;
      int16_t keyAscii = static_cast<int16_t>(wParam);
      Guard([&] { uc->UserControl_KeyPress(keyAscii); });
      return 0;
    }
    case WM_SYSCHAR:
      if (im.siteFilter) im.siteFilter(msg, wParam, lParam);
      return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP: {
      int16_t keyCode = static_cast<int16_t>(wParam), shift = ShiftState();
      Guard([&] { uc->UserControl_KeyUp(keyCode, shift); });
      return 0;
    }

    case WM_SETFOCUS: {
      const HWND previous = static_cast<HWND>(wParam);
      if (!(previous && IsChild(hwnd, previous))) {
        Guard([&] { uc->UserControl_EnterFocus(); });
        if (!*alive) return 0;
      }
      Guard([&] { uc->UserControl_GotFocus(); });
      if (*alive && im.siteFilter) im.siteFilter(msg, wParam, lParam);
      return 0;
    }
    case WM_KILLFOCUS: {
      const HWND next = static_cast<HWND>(wParam);
      Guard([&] { uc->UserControl_LostFocus(); });
      if (!*alive) return 0;
      if (!(next && IsChild(hwnd, next))) {
        Guard([&] { uc->UserControl_ExitFocus(); });
        if (!*alive) return 0;
      }
      if (im.siteFilter) im.siteFilter(msg, wParam, lParam);
      return 0;
    }
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

}  // namespace mx::host
