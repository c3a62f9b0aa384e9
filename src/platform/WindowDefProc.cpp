// DefWindowProc: what a window does with the messages its procedure passes on, and the frame
// metrics behind the non-client area.
#include <algorithm>

#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace win {

int FrameBorder(DWORD style, DWORD exStyle) {
  int b = 0;
  if (style & WS_THICKFRAME) b = GetSystemMetrics(SM_CXFRAME);
  else if ((style & WS_DLGFRAME) || (exStyle & WS_EX_DLGMODALFRAME)) b = GetSystemMetrics(SM_CXDLGFRAME);
  else if (style & WS_BORDER) b = GetSystemMetrics(SM_CXBORDER);
  if (exStyle & WS_EX_CLIENTEDGE) b += GetSystemMetrics(SM_CXEDGE);
  if (exStyle & WS_EX_STATICEDGE) b += 1;
  return b;
}

RECT FrameInsets(DWORD style, DWORD exStyle) {
  const int b = FrameBorder(style, exStyle);
  RECT in{b, b, b, b};
  if ((style & WS_CAPTION) == WS_CAPTION)
    in.top += GetSystemMetrics((exStyle & WS_EX_TOOLWINDOW) ? SM_CYSMCAPTION : SM_CYCAPTION);
  if (style & WS_VSCROLL) in.right += GetSystemMetrics(SM_CXVSCROLL);
  if (style & WS_HSCROLL) in.bottom += GetSystemMetrics(SM_CYHSCROLL);
  return in;
}

}  // namespace win

namespace {

LRESULT NcHitTest(const Wnd& w, POINT screen) {
  POINT o = ScreenOrigin(w);
  int x = screen.x - o.x, y = screen.y - o.y;
  int width = w.rect.width(), height = w.rect.height();
  if (x < 0 || y < 0 || x >= width || y >= height) return HTNOWHERE;
  if (const Region* r = WindowRegion(w); r && !r->contains(x, y)) return HTNOWHERE;
  if (x >= w.client.left && x < w.client.right && y >= w.client.top && y < w.client.bottom) return HTCLIENT;
  if (w.style & WS_MINIMIZE) return HTCAPTION;

  const int b = FrameBorder(w.style, w.exStyle);
  if ((w.style & WS_THICKFRAME) && !(w.style & WS_MAXIMIZE)) {
    // Corners reach a little along each edge so that they can be grabbed.
    const int corner = b + GetSystemMetrics(SM_CYCAPTION) / 2;
    const bool left = x < b, right = x >= width - b, top = y < b, bottom = y >= height - b;
    const bool nearLeft = x < corner, nearRight = x >= width - corner;
    const bool nearTop = y < corner, nearBottom = y >= height - corner;
    if ((top && nearLeft) || (left && nearTop)) return HTTOPLEFT;
    if ((top && nearRight) || (right && nearTop)) return HTTOPRIGHT;
    if ((bottom && nearLeft) || (left && nearBottom)) return HTBOTTOMLEFT;
    if ((bottom && nearRight) || (right && nearBottom)) return HTBOTTOMRIGHT;
    if (left) return HTLEFT;
    if (right) return HTRIGHT;
    if (top) return HTTOP;
    if (bottom) return HTBOTTOM;
  }
  if ((w.style & WS_CAPTION) == WS_CAPTION) {
    const int ch = GetSystemMetrics((w.exStyle & WS_EX_TOOLWINDOW) ? SM_CYSMCAPTION : SM_CYCAPTION);
    if (y >= b && y < b + ch && x >= b && x < width - b) {
      if (w.style & WS_SYSMENU) {
        int bx = width - b - ch;  // buttons are caption-high squares from the right
        if (x >= bx) return HTCLOSE;
        if (w.style & (WS_MAXIMIZEBOX | WS_MINIMIZEBOX)) {
          if (x >= bx - ch) return HTMAXBUTTON;
          if (x >= bx - 2 * ch) return HTMINBUTTON;
        }
        if (x < b + ch && !(w.exStyle & WS_EX_TOOLWINDOW)) return HTSYSMENU;
      }
      return HTCAPTION;
    }
  }
  if ((w.style & WS_VSCROLL) && x >= w.client.right && y >= w.client.top && y < w.client.bottom) return HTVSCROLL;
  if ((w.style & WS_HSCROLL) && y >= w.client.bottom && x >= w.client.left && x < w.client.right) return HTHSCROLL;
  if ((w.style & WS_VSCROLL) && (w.style & WS_HSCROLL) && x >= w.client.right && y >= w.client.bottom) return HTGROWBOX;
  return HTBORDER;
}

int CursorForHit(LRESULT hit) {
  switch (hit) {
    case HTLEFT:
    case HTRIGHT: return IDC_SIZEWE;
    case HTTOP:
    case HTBOTTOM: return IDC_SIZENS;
    case HTTOPLEFT:
    case HTBOTTOMRIGHT: return IDC_SIZENWSE;
    case HTTOPRIGHT:
    case HTBOTTOMLEFT: return IDC_SIZENESW;
    default: return IDC_ARROW;
  }
}

HBRUSH ResolveBrush(HBRUSH brush) {
  // Classes may name a system colour as its index + 1 instead of a brush.
  if (brush > 0 && brush <= static_cast<HBRUSH>(kSysColorCount)) return GetSysColorBrush(static_cast<int>(brush) - 1);
  return brush;
}

}  // namespace

LRESULT DefWindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  switch (msg) {
    case WM_NCCREATE: {
      auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      if (cs && cs->lpszName) w->text = cs->lpszName;
      return TRUE;
    }
    // The frame's insets come off the proposed rectangle; a minimised top-level window has
    // no client area at all.
    case WM_NCCALCSIZE: {
      RECT* rc = wParam ? &reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam)->rgrc[0] : reinterpret_cast<RECT*>(lParam);
      if (!rc) return 0;
      if ((w->style & WS_MINIMIZE) && !w->parent) {
        rc->right = rc->left;
        rc->bottom = rc->top;
        return 0;
      }
      RECT in = FrameInsets(w->style, w->exStyle);
      rc->left += in.left;
      rc->top += in.top;
      rc->right = std::max(rc->left, rc->right - in.right);
      rc->bottom = std::max(rc->top, rc->bottom - in.bottom);
      return 0;
    }
    case WM_NCHITTEST:
      return NcHitTest(*w, POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    case WM_NCPAINT:
      PaintFrame(*w);
      return 0;
    case WM_NCACTIVATE:
      if ((w->style & WS_CAPTION) == WS_CAPTION || (w->style & (WS_THICKFRAME | WS_BORDER))) PaintFrame(*w);
      return TRUE;
    case WM_SETTEXT: {
      auto* text = reinterpret_cast<const char16_t*>(lParam);
      w->text = text ? text : u"";
      if ((w->style & WS_CAPTION) == WS_CAPTION && VisibleChain(*w)) PaintFrame(*w);
      return TRUE;
    }
    case WM_GETTEXT: {
      auto* buffer = reinterpret_cast<char16_t*>(lParam);
      if (!buffer || wParam == 0) return 0;
      size_t n = std::min(w->text.size(), static_cast<size_t>(wParam) - 1);
      std::copy_n(w->text.begin(), n, buffer);
      buffer[n] = 0;
      return static_cast<LRESULT>(n);
    }
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(w->text.size());
    case WM_CLOSE:
      DestroyWindow(hwnd);
      return 0;
    case WM_ERASEBKGND: {
      HBRUSH brush = w->cls ? ResolveBrush(w->cls->background) : 0;
      if (!brush || !wParam) return 0;
      RECT rc{0, 0, w->client.width(), w->client.height()};
      FillRect(static_cast<HDC>(wParam), &rc, brush);
      return 1;
    }
    case WM_PAINT: {
      PAINTSTRUCT ps;
      BeginPaint(hwnd, &ps);
      EndPaint(hwnd, &ps);
      return 0;
    }
    case WM_SETCURSOR: {
      // The parent may decide first; then the class cursor in the client area, sizing arrows
      // on a sizing border, and a beep for a click on a disabled window.
      if (w->parent && (w->style & WS_CHILD)) {
        if (SendMessageW(w->parent, WM_SETCURSOR, wParam, lParam)) return TRUE;
        if (!(w = Get(hwnd))) return 0;
      }
      const auto hit = static_cast<int16_t>(LOWORD(static_cast<uintptr_t>(lParam)));
      const UINT mouseMsg = HIWORD(static_cast<uintptr_t>(lParam));
      if (hit == HTERROR) {
        if (mouseMsg == WM_LBUTTONDOWN || mouseMsg == WM_RBUTTONDOWN || mouseMsg == WM_MBUTTONDOWN ||
            mouseMsg == WM_XBUTTONDOWN)
          MessageBeep(0);
        return FALSE;
      }
      if (hit == HTCLIENT) {
        if (w->cls && w->cls->cursor) SetCursor(w->cls->cursor);
        return FALSE;
      }
      SetCursor(LoadCursorW(0, CursorForHit(hit)));
      return FALSE;
    }
    case WM_MOUSEACTIVATE: {
      if (w->parent && (w->style & WS_CHILD)) {
        LRESULT r = SendMessageW(w->parent, WM_MOUSEACTIVATE, wParam, lParam);
        if (r) return r;
        if (!(w = Get(hwnd))) return MA_NOACTIVATE;
      }
      Wnd& top = TopLevelOf(*w);
      return (top.exStyle & WS_EX_NOACTIVATE) ? MA_NOACTIVATE : MA_ACTIVATE;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE && !(w->style & WS_MINIMIZE)) SetFocus(hwnd);
      return 0;
    // WM_MOVE and WM_SIZE come from here, so a procedure that keeps WM_WINDOWPOSCHANGED for
    // itself gets neither, as in the classic system.
    case WM_WINDOWPOSCHANGED: {
      auto* wp = reinterpret_cast<const WINDOWPOS*>(lParam);
      if (!wp) return 0;
      if (!(wp->flags & SWP_NOCLIENTMOVE)) {
        POINT org{w->rect.left + w->client.left, w->rect.top + w->client.top};
        SendMessageW(hwnd, WM_MOVE, 0, MAKELPARAM(org.x, org.y));
        if (!(w = Get(hwnd))) return 0;
      }
      if (!(wp->flags & SWP_NOCLIENTSIZE) || (wp->flags & SWP_STATECHANGED)) {
        WPARAM kind = (w->style & WS_MINIMIZE) ? SIZE_MINIMIZED : (w->style & WS_MAXIMIZE) ? SIZE_MAXIMIZED : SIZE_RESTORED;
        SendMessageW(hwnd, WM_SIZE, kind, MAKELPARAM(w->client.width(), w->client.height()));
      }
      return 0;
    }
    case WM_SYSCOMMAND: {
      const WPARAM cmd = wParam & 0xFFF0;
      const int hit = static_cast<int>(wParam & 0x000F);
      switch (cmd) {
        case SC_CLOSE:
          if (w->cls && (w->cls->style & CS_NOCLOSE)) return 0;
          SendMessageW(hwnd, WM_CLOSE, 0, 0);
          return 0;
        case SC_MINIMIZE: ShowWindow(hwnd, SW_MINIMIZE); return 0;
        case SC_MAXIMIZE: ShowWindow(hwnd, SW_MAXIMIZE); return 0;
        case SC_RESTORE: ShowWindow(hwnd, SW_RESTORE); return 0;
        case SC_MOVE: BeginSystemMoveSize(hwnd, HTCAPTION); return 0;
        case SC_SIZE: BeginSystemMoveSize(hwnd, hit ? static_cast<int>(HTLEFT) + hit - 1 : static_cast<int>(HTBOTTOMRIGHT)); return 0;
        default: return 0;
      }
    }
    // A press on the caption or a sizing border starts the move/size mode; here it is not a
    // modal loop but a mode that the following input drives (see the input code).
    case WM_NCLBUTTONDOWN: {
      const LRESULT hit = static_cast<LRESULT>(wParam);
      if (hit == HTCAPTION) {
        if (!(w->style & WS_MAXIMIZE)) SendMessageW(hwnd, WM_SYSCOMMAND, SC_MOVE + HTCAPTION, lParam);
      } else if (hit >= HTLEFT && hit <= HTBOTTOMRIGHT) {
        SendMessageW(hwnd, WM_SYSCOMMAND, SC_SIZE + static_cast<WPARAM>(hit - HTLEFT + 1), lParam);
      }  else if (hit == HTVSCROLL || hit == HTHSCROLL) {
        TrackScrollBar(hwnd, hit == HTVSCROLL ? 1 /*SB_VERT*/ : 0 /*SB_HORZ*/,
                       POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      }
      return 0;
    }
    case WM_NCLBUTTONUP: {
      const LRESULT hit = static_cast<LRESULT>(wParam);
      if (hit == HTCLOSE) SendMessageW(hwnd, WM_SYSCOMMAND, SC_CLOSE, lParam);
      else if (hit == HTMAXBUTTON)
        SendMessageW(hwnd, WM_SYSCOMMAND, (w->style & WS_MAXIMIZE) ? SC_RESTORE : SC_MAXIMIZE, lParam);
      else if (hit == HTMINBUTTON) SendMessageW(hwnd, WM_SYSCOMMAND, SC_MINIMIZE, lParam);
      return 0;
    }
    case WM_NCLBUTTONDBLCLK:
      if (static_cast<LRESULT>(wParam) == HTCAPTION && (w->style & WS_MAXIMIZEBOX))
        SendMessageW(hwnd, WM_SYSCOMMAND, (w->style & WS_MAXIMIZE) ? SC_RESTORE : SC_MAXIMIZE, lParam);
      return 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      // Unhandled wheel turns go up to the parent, so that a container can scroll.
      if (w->parent && (w->style & WS_CHILD)) return SendMessageW(w->parent, msg, wParam, lParam);
      return 0;
    case WM_CANCELMODE:
      EndSystemMoveSize(hwnd);
      if (St().capture == hwnd) ReleaseCapture();
      return 0;
    case WM_SYSKEYDOWN:
      if (wParam == static_cast<WPARAM>(VK_F4) && (lParam & KF_ALTDOWN_BIT)) {
        HWND root = GetAncestor(hwnd, GA_ROOT);
        SendMessageW(root, WM_SYSCOMMAND, SC_CLOSE, 0);
      }
      return 0;
    case WM_SHOWWINDOW:
    case WM_GETMINMAXINFO:
    case WM_WINDOWPOSCHANGING:
    default:
      return 0;
  }
}

}  // namespace mx::platform
