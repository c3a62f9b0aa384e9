// The text box's window procedure: messages become editing, then the host's events.
//
//   WM_KEYDOWN        the form's routing first (Tab, Enter, Esc); KeyDown; the key's own
//                     action with the KeyCode the handlers left (0: none)
//   WM_CHAR           KeyPress; the character the handlers left (0: none) is typed
//   WM_KEYUP          KeyUp
//   WM_LBUTTONDOWN    focus, capture, the caret to the point (Shift extends), MouseDown
//   WM_LBUTTONDBLCLK  the word under the point selected, DblClick
//   WM_MOUSEMOVE      dragging extends the selection; MouseMove
//   WM_LBUTTONUP      MouseUp, then Click over the client area (not after a double click)
//   focus             caret blink on or off, GotFocus / LostFocus
//   edit messages     TextBoxEdit.cpp
//
// Handlers run guarded: a failure stays in Err and never unwinds through the platform.
#include <algorithm>

#include "host/Err.h"
#include "host/HostInput.h"
#include "host/Screen.h"
#include "host/TextBoxImpl.h"
#include "host/UserControl.h"
#include "platform/Gdi.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

void TextBox::Impl::RegisterClassOnce() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kTextBoxClass, &info)) return;
  RegisterWindowClass(kTextBoxClass, &TextBox::Impl::WindowProc, CS_DBLCLKS, 0, LoadCursorW(0, IDC_IBEAM));
}

LRESULT TextBox::Impl::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_NCCREATE) {
    auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* created = cs ? static_cast<TextBox*>(cs->lpCreateParams) : nullptr;
    SetWindowLongPtr(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    if (created) created->m_hwnd = hwnd;
  }
  auto* tb = reinterpret_cast<TextBox*>(GetWindowLongPtr(hwnd, GWLP_USERDATA));
  if (!tb) return DefWindowProc(hwnd, msg, wParam, lParam);
  Impl& im = *tb->m_impl;
  // A handler may unload the box: hold it when shared, and check that it lives after each one.
  std::shared_ptr<Object> keep = tb->weak_from_this().lock();
  std::shared_ptr<bool> alive = im.alive;
  auto gone = [&] { return !*alive || !IsWindow(hwnd); };
  // Mouse coordinates reach the events in twips, as the host's intrinsic controls give them.
  const float tpx = GetScreen().TwipsPerPixelX(), tpy = GetScreen().TwipsPerPixelY();

  intptr_t result = 0;
  if (im.EditMessage(msg, wParam, lParam, result)) return result;

  switch (msg) {
    case WM_NCDESTROY:
      SetWindowLongPtr(hwnd, GWLP_USERDATA, 0);
      if (tb->m_hwnd == hwnd) tb->m_hwnd = 0;
      im.focused = false;
      return DefWindowProc(hwnd, msg, wParam, lParam);
    case WM_SIZE:
      im.layoutValid = false;
      im.ScrollToCaret();
      InvalidateRect(hwnd, nullptr, FALSE);
      return 0;
    case WM_ERASEBKGND:
      // Painting covers every pixel.
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd, &ps);
      if (dc) im.Paint(dc);
      EndPaint(hwnd, &ps);
      return 0;
    }
    case WM_GETDLGCODE:
      // DLGC_WANTARROWS | DLGC_WANTCHARS: arrows and characters are the box's own.
      return 0x0001 | 0x0080;
    case WM_ENABLE:
      im.enabled = wParam != 0;
      InvalidateRect(hwnd, nullptr, FALSE);
      return 0;
    case WM_TIMER:
      if (wParam == kCaretTimer) {
        im.caretVisible = !im.caretVisible;
        InvalidateRect(hwnd, nullptr, FALSE);
        return 0;
      }
      return DefWindowProc(hwnd, msg, wParam, lParam);

    case WM_SETFOCUS:
      im.focused = true;
      im.ResetBlink();
      InvalidateRect(hwnd, nullptr, FALSE);
      OnErrorResumeNext([&] { tb->GotFocus(); });
      if (!gone() && tb->m_siteFilter) tb->m_siteFilter(msg, wParam, lParam);
      return 0;
    case WM_KILLFOCUS:
      im.focused = false;
      im.caretVisible = false;
      im.dragging = false;
      KillTimer(hwnd, kCaretTimer);
      InvalidateRect(hwnd, nullptr, FALSE);
      OnErrorResumeNext([&] { tb->LostFocus(); });
      if (!gone() && tb->m_siteFilter) tb->m_siteFilter(msg, wParam, lParam);
      return 0;

    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
      if (tb->m_siteFilter && tb->m_siteFilter(msg, wParam, lParam)) return 0;
      if (gone()) return 0;
      int16_t keyCode = static_cast<int16_t>(wParam), shift = ShiftState();
      OnErrorResumeNext([&] { tb->KeyDown(keyCode, shift); });
      if (gone()) return 0;
      if (msg == WM_KEYDOWN && keyCode != 0) OnErrorResumeNext([&] { im.HandleKeyDown(keyCode, shift); });
      return msg == WM_SYSKEYDOWN ? DefWindowProc(hwnd, msg, wParam, lParam) : 0;
    }
    case WM_CHAR: {
      if (tb->m_siteFilter && tb->m_siteFilter(msg, wParam, lParam)) return 0;
      if (gone()) return 0;
      int16_t keyAscii = static_cast<int16_t>(wParam);
      OnErrorResumeNext([&] { tb->KeyPress(keyAscii); });
      if (gone() || keyAscii == 0) return 0;
      OnErrorResumeNext([&] { im.HandleChar(static_cast<char16_t>(static_cast<uint16_t>(keyAscii))); });
      return 0;
    }
    case WM_SYSCHAR:
      if (tb->m_siteFilter) tb->m_siteFilter(msg, wParam, lParam);
      return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP: {
      int16_t keyCode = static_cast<int16_t>(wParam), shift = ShiftState();
      OnErrorResumeNext([&] { tb->KeyUp(keyCode, shift); });
      return 0;
    }

    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
      int16_t button = msg == WM_LBUTTONDOWN ? vbLeftButton : msg == WM_RBUTTONDOWN ? vbRightButton : vbMiddleButton;
      // The press gives the box the focus first, so GotFocus comes before MouseDown.
      if (button != vbMiddleButton && GetFocus() != hwnd) {
        platform::SetFocus(hwnd);
        if (gone()) return 0;
      }
      const int px = GET_X_LPARAM(lParam), py = GET_Y_LPARAM(lParam);
      if (button == vbLeftButton) {
        im.afterDoubleClick = false;
        const int32_t pos = im.HitTest(px, py);
        im.SetSelection((wParam & MK_SHIFT) ? im.anchor : pos, pos);
        im.preferredX = -1;
        im.dragging = true;
      }
      SetCapture(hwnd);
      int16_t shift = MouseShift(wParam);
      float x = static_cast<float>(px) * tpx, y = static_cast<float>(py) * tpy;
      OnErrorResumeNext([&] { tb->MouseDown(button, shift, x, y); });
      return 0;
    }
    case WM_LBUTTONDBLCLK: {
      SetCapture(hwnd);
      im.afterDoubleClick = true;
      im.dragging = false;
      int32_t start = 0, end = 0;
      im.WordAt(im.HitTest(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)), start, end);
      im.SetSelection(start, end);
      OnErrorResumeNext([&] { tb->DblClick(); });
      return 0;
    }
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK:
      return WindowProc(hwnd, msg == WM_RBUTTONDBLCLK ? WM_RBUTTONDOWN : WM_MBUTTONDOWN, wParam, lParam);
    case WM_MOUSEMOVE: {
      const int px = GET_X_LPARAM(lParam), py = GET_Y_LPARAM(lParam);
      if (im.dragging && (wParam & MK_LBUTTON)) im.SetSelection(im.anchor, im.HitTest(px, py));
      int16_t button = ButtonsHeld(wParam), shift = MouseShift(wParam);
      float x = static_cast<float>(px) * tpx, y = static_cast<float>(py) * tpy;
      OnErrorResumeNext([&] { tb->MouseMove(button, shift, x, y); });
      return 0;
    }
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
      int16_t button = msg == WM_LBUTTONUP ? vbLeftButton : msg == WM_RBUTTONUP ? vbRightButton : vbMiddleButton;
      if (button == vbLeftButton) im.dragging = false;
      int16_t shift = MouseShift(wParam);
      const POINT pt{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      float x = static_cast<float>(pt.x) * tpx, y = static_cast<float>(pt.y) * tpy;
      OnErrorResumeNext([&] { tb->MouseUp(button, shift, x, y); });
      if (gone()) return 0;
      if (button == vbLeftButton) {
        const bool wasDouble = im.afterDoubleClick;
        im.afterDoubleClick = false;
        RECT rc;
        GetClientRect(hwnd, &rc);
        if (!wasDouble && PtInRect(&rc, pt)) {
          OnErrorResumeNext([&] { tb->Click(); });
          if (gone()) return 0;
        }
      }
      if (GetCapture() == hwnd && ButtonsHeld(wParam) == 0) ReleaseCapture();
      return 0;
    }
    case WM_CAPTURECHANGED:
      im.dragging = false;
      return 0;
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

}  // namespace mx::host
