// Window geometry: SetWindowPos and everything built on it (moving, sizing, z-order, showing,
// minimising and maximising), coordinate mapping, re-parenting, window regions and hit testing.
#include <algorithm>

#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace win {

const Region* WindowRegion(const Wnd& w) { return w.region ? LookupRegion(w.region) : nullptr; }

void RecalcClient(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w) return;
  RECT rc = w->rect;
  SendMessageW(hwnd, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&rc));
  if (!(w = Get(hwnd))) return;
  RECT c{rc.left - w->rect.left, rc.top - w->rect.top, rc.right - w->rect.left, rc.bottom - w->rect.top};
  c.right = std::max(c.right, c.left);
  c.bottom = std::max(c.bottom, c.top);
  w->client = c;
}

}  // namespace win

namespace {

bool IsTopmost(HWND h) {
  Wnd* w = Get(h);
  return w && (w->exStyle & WS_EX_TOPMOST);
}

// Owned windows stay above their owners, and the owned windows of a topmost window are
// topmost too. Moves each offending window to just above its owner until none is left.
void KeepOwnedAboveOwners() {
  auto& list = St().topLevels;
  for (int guard = 0; guard < 64; ++guard) {
    bool moved = false;
    for (size_t i = 0; i < list.size() && !moved; ++i) {
      Wnd* w = Get(list[i]);
      if (!w || !w->owner) continue;
      auto ownerPos = std::find(list.begin(), list.end(), w->owner);
      if (ownerPos == list.end()) continue;
      if (IsTopmost(w->owner)) w->exStyle |= WS_EX_TOPMOST;
      size_t j = static_cast<size_t>(ownerPos - list.begin());
      if (i > j) {
        HWND h = list[i];
        list.erase(list.begin() + static_cast<long>(i));
        list.insert(list.begin() + static_cast<long>(j), h);
        moved = true;
      }
    }
    if (!moved) break;
  }
}

// Puts a window at its new place in its sibling list.
void ApplyZOrder(Wnd& w, HWND after) {
  auto& list = SiblingList(w.parent);
  const bool topLevel = w.parent == 0;
  if (after == w.hwnd) return;
  list.erase(std::remove(list.begin(), list.end(), w.hwnd), list.end());
  if (topLevel) {
    if (after == HWND_TOPMOST) w.exStyle |= WS_EX_TOPMOST;
    else if (after == HWND_NOTOPMOST || after == HWND_BOTTOM) w.exStyle &= ~WS_EX_TOPMOST;
  }
  const bool topmost = topLevel && (w.exStyle & WS_EX_TOPMOST);
  // The band a top-level window may sit in: topmost windows first, then the rest.
  auto bandBegin = list.begin();
  if (topLevel && !topmost)
    while (bandBegin != list.end() && IsTopmost(*bandBegin)) ++bandBegin;
  auto bandEnd = bandBegin;
  if (topLevel && topmost)
    while (bandEnd != list.end() && IsTopmost(*bandEnd)) ++bandEnd;
  else
    bandEnd = list.end();

  auto pos = bandBegin;
  if (after == HWND_BOTTOM) {
    pos = bandEnd;
  } else if (after != HWND_TOP && after != HWND_TOPMOST && after != HWND_NOTOPMOST) {
    auto it = std::find(list.begin(), list.end(), after);
    if (it != list.end()) pos = std::clamp(it + 1, bandBegin, bandEnd);
  }
  list.insert(pos, w.hwnd);
  if (topLevel) KeepOwnedAboveOwners();
}

bool WantsMinMaxInfo(const Wnd& w) {
  return w.parent == 0 && ((w.style & WS_THICKFRAME) || !(w.style & (WS_POPUP | WS_CHILD)));
}

MINMAXINFO QueryMinMax(HWND hwnd) {
  Wnd* w = Get(hwnd);
  MINMAXINFO mmi;
  RECT insets = FrameInsets(w->style, w->exStyle);
  RECT area;
  if (w->parent) {
    Wnd* p = Get(w->parent);
    area = {0, 0, p->client.right - p->client.left, p->client.bottom - p->client.top};
  } else {
    area = St().workArea;
  }
  // A maximised frame hangs its borders outside the area, as on the classic desktop.
  mmi.ptMaxPosition = {area.left - insets.left, area.top - insets.top};
  mmi.ptMaxSize = {area.right - area.left + insets.left + insets.right,
                   area.bottom - area.top + insets.top + insets.bottom};
  if ((w->style & WS_CAPTION) == WS_CAPTION) {
    // The caption stays on the area: only the side frames and the bottom hang out.
    mmi.ptMaxPosition.y = area.top - (insets.top - GetSystemMetrics(SM_CYCAPTION));
    mmi.ptMaxSize.y = area.bottom - mmi.ptMaxPosition.y + insets.bottom;
  }
  mmi.ptMinTrackSize = {GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK)};
  mmi.ptMaxTrackSize = {GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK)};
  SendMessageW(hwnd, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&mmi));
  return mmi;
}

}  // namespace

// ---- SetWindowPos ------------------------------------------------------------------------------

BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) {
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  const bool wasVisible = (w->style & WS_VISIBLE) != 0;
  if ((flags & SWP_SHOWWINDOW) && wasVisible) flags &= ~SWP_SHOWWINDOW;
  if ((flags & SWP_HIDEWINDOW) && !wasVisible) flags &= ~SWP_HIDEWINDOW;
  if (flags & SWP_NOMOVE) {
    x = w->rect.left;
    y = w->rect.top;
  }
  if (flags & SWP_NOSIZE) {
    cx = w->rect.right - w->rect.left;
    cy = w->rect.bottom - w->rect.top;
  }
  cx = std::max(cx, 0);
  cy = std::max(cy, 0);
  if (!(flags & SWP_NOSIZE) && !(flags & SWP_STATECHANGED) && WantsMinMaxInfo(*w) &&
      !(w->style & (WS_MINIMIZE | WS_MAXIMIZE))) {
    MINMAXINFO mmi = QueryMinMax(hwnd);
    if (!(w = Get(hwnd))) return FALSE;
    cx = std::clamp<int>(cx, mmi.ptMinTrackSize.x, std::max(mmi.ptMinTrackSize.x, mmi.ptMaxTrackSize.x));
    cy = std::clamp<int>(cy, mmi.ptMinTrackSize.y, std::max(mmi.ptMinTrackSize.y, mmi.ptMaxTrackSize.y));
  }

  WINDOWPOS wp{hwnd, insertAfter, x, y, cx, cy, flags};
  if (!(flags & SWP_NOSENDCHANGING)) {
    SendMessageW(hwnd, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&wp));
    if (!(w = Get(hwnd))) return FALSE;
    wp.hwnd = hwnd;
    wp.cx = std::max(wp.cx, 0);
    wp.cy = std::max(wp.cy, 0);
  }

  const RECT oldRect = w->rect;
  const RECT oldClient = w->client;
  RECT newRect{wp.x, wp.y, wp.x + wp.cx, wp.y + wp.cy};
  if (wp.flags & SWP_NOMOVE) {
    newRect = {oldRect.left, oldRect.top, oldRect.left + wp.cx, oldRect.top + wp.cy};
  }
  if (wp.flags & SWP_NOSIZE) {
    newRect.right = newRect.left + (oldRect.right - oldRect.left);
    newRect.bottom = newRect.top + (oldRect.bottom - oldRect.top);
  }
  const bool moved = newRect.left != oldRect.left || newRect.top != oldRect.top;
  const bool sized = newRect.width() != oldRect.width() || newRect.height() != oldRect.height();
  if (!moved) wp.flags |= SWP_NOMOVE;
  if (!sized) wp.flags |= SWP_NOSIZE;

  if (!(wp.flags & SWP_NOZORDER)) ApplyZOrder(*w, wp.hwndInsertAfter);

  w->rect = newRect;
  if (sized || (wp.flags & SWP_FRAMECHANGED)) {
    RecalcClient(hwnd);
    if (!(w = Get(hwnd))) return FALSE;
    if (w->parent == 0 && sized) ResizeSurface(*w);
  }
  if (wp.flags & SWP_SHOWWINDOW) w->style |= WS_VISIBLE;
  if (wp.flags & SWP_HIDEWINDOW) w->style &= ~WS_VISIBLE;

  // The client area moves when the window moves or the frame around it changes.
  const POINT oldOrg{oldRect.left + oldClient.left, oldRect.top + oldClient.top};
  const POINT newOrg{w->rect.left + w->client.left, w->rect.top + w->client.top};
  if (oldOrg == newOrg) wp.flags |= SWP_NOCLIENTMOVE;
  if (oldClient.width() == w->client.width() && oldClient.height() == w->client.height())
    wp.flags |= SWP_NOCLIENTSIZE;

  const bool nowVisible = (w->style & WS_VISIBLE) != 0;
  const bool geometry = moved || sized || (wp.flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED)) ||
                        !(wp.flags & SWP_NOZORDER);
  if (geometry && !(wp.flags & SWP_NOREDRAW))
    InvalidateAfterMove(*w, oldRect, wasVisible, sized || (wp.flags & (SWP_SHOWWINDOW | SWP_FRAMECHANGED)));
  RefreshWindowDCs();

  UserState& st = St();
  if (wp.flags & SWP_HIDEWINDOW) {
    if (st.focus && (st.focus == hwnd || IsChild(hwnd, st.focus))) {
      if (Wnd* cur = Get(hwnd); cur && cur->parent) SetFocus(cur->parent);
    }
    if (st.active == hwnd) ActivateOtherWindow(hwnd);
  } else if (!(wp.flags & SWP_NOACTIVATE) && nowVisible) {
    Wnd* cur = Get(hwnd);
    if (cur && cur->parent == 0 && !(cur->exStyle & WS_EX_NOACTIVATE) && !(cur->style & WS_DISABLED) &&
        !(cur->style & WS_MINIMIZE))
      SetActiveWindow(hwnd);
  }

  if (!Get(hwnd)) return TRUE;
  SendMessageW(hwnd, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&wp));
  return TRUE;
}

BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint) {
  return SetWindowPos(hwnd, 0, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0 : SWP_NOREDRAW));
}

BOOL BringWindowToTop(HWND hwnd) { return SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE); }

// ---- ShowWindow --------------------------------------------------------------------------------

BOOL ShowWindow(HWND hwnd, int cmd) {
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  const bool wasVisible = (w->style & WS_VISIBLE) != 0;
  const bool child = w->parent != 0;
  UINT swp = SWP_NOSIZE | SWP_NOMOVE;
  bool show = true;
  enum class State { Keep, Minimize, Maximize, Restore } state = State::Keep;
  bool activate = false;

  switch (cmd) {
    case SW_HIDE:
      if (!wasVisible) return FALSE;
      show = false;
      swp |= SWP_HIDEWINDOW | SWP_NOACTIVATE | SWP_NOZORDER;
      break;
    case SW_SHOWMINNOACTIVE:
    case SW_MINIMIZE:
      state = State::Minimize;
      break;
    case SW_SHOWMINIMIZED:
      state = State::Minimize;
      activate = true;
      break;
    case SW_SHOWMAXIMIZED:
      state = State::Maximize;
      activate = true;
      break;
    case SW_SHOWNA:
      swp |= SWP_NOZORDER;
      break;
    case SW_SHOW:
      activate = true;
      break;
    case SW_SHOWNOACTIVATE:
      if (w->style & (WS_MINIMIZE | WS_MAXIMIZE)) state = State::Restore;
      break;
    case SW_SHOWNORMAL:
    case SW_SHOWDEFAULT:
    case SW_RESTORE:
      if (w->style & (WS_MINIMIZE | WS_MAXIMIZE)) state = State::Restore;
      activate = true;
      break;
    default:
      return wasVisible ? TRUE : FALSE;
  }
  if (show) swp |= SWP_SHOWWINDOW;
  if (!activate || child) swp |= SWP_NOACTIVATE;
  if (child && state == State::Keep) swp |= SWP_NOZORDER;

  RECT target = w->rect;
  if (state != State::Keep) {
    if (HasHooks(WH_CBT) && CallHooks(WH_CBT, HCBT_MINMAX, hwnd, cmd)) return wasVisible ? TRUE : FALSE;
    if (!(w = Get(hwnd))) return FALSE;
    const bool wasNormal = !(w->style & (WS_MINIMIZE | WS_MAXIMIZE));
    if (wasNormal) w->normalRect = w->rect;
    if (state == State::Minimize && !(w->style & WS_MINIMIZE)) {
      w->restoreMaximized = (w->style & WS_MAXIMIZE) != 0;
      w->style = (w->style | WS_MINIMIZE) & ~WS_MAXIMIZE;
      int mw = GetSystemMetrics(SM_CXMINIMIZED), mh = GetSystemMetrics(SM_CYMINIMIZED);
      if (child) {
        Wnd* p = Get(w->parent);
        int ph = p->client.bottom - p->client.top;
        target = {0, ph - mh, mw, ph};
      } else {
        target = {-32000, -32000, -32000 + mw, -32000 + mh};
      }
      swp = (swp & ~(SWP_NOSIZE | SWP_NOMOVE)) | SWP_STATECHANGED | SWP_FRAMECHANGED;
    } else if (state == State::Maximize && !(w->style & WS_MAXIMIZE)) {
      w->style = (w->style | WS_MAXIMIZE) & ~WS_MINIMIZE;
      MINMAXINFO mmi = QueryMinMax(hwnd);
      if (!(w = Get(hwnd))) return FALSE;
      target = {mmi.ptMaxPosition.x, mmi.ptMaxPosition.y, mmi.ptMaxPosition.x + mmi.ptMaxSize.x,
                mmi.ptMaxPosition.y + mmi.ptMaxSize.y};
      swp = (swp & ~(SWP_NOSIZE | SWP_NOMOVE)) | SWP_STATECHANGED | SWP_FRAMECHANGED;
    } else if (state == State::Restore) {
      const bool backToMax = (w->style & WS_MINIMIZE) && w->restoreMaximized && cmd == SW_RESTORE;
      w->style &= ~(WS_MINIMIZE | WS_MAXIMIZE);
      if (backToMax) {
        w->style |= WS_MAXIMIZE;
        MINMAXINFO mmi = QueryMinMax(hwnd);
        if (!(w = Get(hwnd))) return FALSE;
        target = {mmi.ptMaxPosition.x, mmi.ptMaxPosition.y, mmi.ptMaxPosition.x + mmi.ptMaxSize.x,
                  mmi.ptMaxPosition.y + mmi.ptMaxSize.y};
      } else {
        target = w->normalRect;
      }
      w->restoreMaximized = false;
      swp = (swp & ~(SWP_NOSIZE | SWP_NOMOVE)) | SWP_STATECHANGED | SWP_FRAMECHANGED;
    }
  }

  if (show != wasVisible) {
    SendMessageW(hwnd, WM_SHOWWINDOW, show ? TRUE : FALSE, 0);
    if (!Get(hwnd)) return wasVisible ? TRUE : FALSE;
  }
  SetWindowPos(hwnd, HWND_TOP, target.left, target.top, target.width(), target.height(), swp);
  // Minimising the active window passes activation on, as the classic desktop does.
  if (state == State::Minimize && cmd != SW_SHOWMINIMIZED && St().active == hwnd) ActivateOtherWindow(hwnd);
  return wasVisible ? TRUE : FALSE;
}

BOOL IsIconic(HWND hwnd) {
  Wnd* w = Get(hwnd);
  return w && (w->style & WS_MINIMIZE) ? TRUE : FALSE;
}

BOOL IsZoomed(HWND hwnd) {
  Wnd* w = Get(hwnd);
  return w && (w->style & WS_MAXIMIZE) ? TRUE : FALSE;
}

BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* out) {
  Wnd* w = Get(hwnd);
  if (!w || !out) return FALSE;
  out->length = sizeof(WINDOWPLACEMENT);
  out->flags = w->restoreMaximized ? 2u : 0u;  // WPF_RESTORETOMAXIMIZED
  out->showCmd = !(w->style & WS_VISIBLE) ? SW_HIDE
                 : (w->style & WS_MINIMIZE) ? SW_SHOWMINIMIZED
                 : (w->style & WS_MAXIMIZE) ? SW_SHOWMAXIMIZED
                                            : SW_SHOWNORMAL;
  out->rcNormalPosition = (w->style & (WS_MINIMIZE | WS_MAXIMIZE)) ? w->normalRect : w->rect;
  out->ptMinPosition = {-1, -1};
  out->ptMaxPosition = {-1, -1};
  return TRUE;
}

// ---- coordinates -------------------------------------------------------------------------------

BOOL GetWindowRect(HWND hwnd, RECT* out) {
  if (!out) return FALSE;
  if (hwnd == GetDesktopWindow()) {
    *out = {0, 0, St().screenWidth, St().screenHeight};
    return TRUE;
  }
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  POINT o = ScreenOrigin(*w);
  *out = {o.x, o.y, o.x + w->rect.width(), o.y + w->rect.height()};
  return TRUE;
}

BOOL GetClientRect(HWND hwnd, RECT* out) {
  if (!out) return FALSE;
  if (hwnd == GetDesktopWindow()) {
    *out = {0, 0, St().screenWidth, St().screenHeight};
    return TRUE;
  }
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  *out = {0, 0, w->client.width(), w->client.height()};
  return TRUE;
}

BOOL ClientToScreen(HWND hwnd, POINT* pt) {
  if (!pt) return FALSE;
  if (hwnd == GetDesktopWindow()) return TRUE;
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  POINT o = ClientScreenOrigin(*w);
  pt->x += o.x;
  pt->y += o.y;
  return TRUE;
}

BOOL ScreenToClient(HWND hwnd, POINT* pt) {
  if (!pt) return FALSE;
  if (hwnd == GetDesktopWindow()) return TRUE;
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  POINT o = ClientScreenOrigin(*w);
  pt->x -= o.x;
  pt->y -= o.y;
  return TRUE;
}

int MapWindowPoints(HWND from, HWND to, POINT* points, UINT count) {
  POINT a{0, 0}, b{0, 0};
  if (from && from != GetDesktopWindow()) {
    Wnd* w = Get(from);
    if (!w) return 0;
    a = ClientScreenOrigin(*w);
  }
  if (to && to != GetDesktopWindow()) {
    Wnd* w = Get(to);
    if (!w) return 0;
    b = ClientScreenOrigin(*w);
  }
  int dx = a.x - b.x, dy = a.y - b.y;
  for (UINT i = 0; points && i < count; ++i) {
    points[i].x += dx;
    points[i].y += dy;
  }
  return static_cast<int>(static_cast<uint32_t>(MAKELPARAM(dx, dy)));
}

BOOL AdjustWindowRectEx(RECT* rect, DWORD style, BOOL, DWORD exStyle) {
  if (!rect) return FALSE;
  RECT in = FrameInsets(style, exStyle);
  rect->left -= in.left;
  rect->top -= in.top;
  rect->right += in.right;
  rect->bottom += in.bottom;
  return TRUE;
}

// ---- re-parenting ------------------------------------------------------------------------------

HWND SetParent(HWND hwnd, HWND newParent) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  if (newParent == GetDesktopWindow()) newParent = 0;
  if (newParent && (!Get(newParent) || newParent == hwnd || IsChild(hwnd, newParent))) return 0;
  HWND old = w->parent ? w->parent : GetDesktopWindow();
  if (w->parent == newParent) return old;

  const bool wasVisible = VisibleChain(*w);
  if (wasVisible && w->parent) {
    RECT r = w->rect;
    RedrawWindow(w->parent, &r, 0, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  }
  auto& oldList = SiblingList(w->parent);
  oldList.erase(std::remove(oldList.begin(), oldList.end(), hwnd), oldList.end());
  w->parent = newParent;
  if (newParent) {
    w->owner = 0;
    Get(newParent)->children.insert(Get(newParent)->children.begin(), hwnd);
    w->pixels.clear();
    w->pixels.shrink_to_fit();
    w->surface = {};
  } else {
    ApplyZOrder(*w, HWND_TOP);
    ResizeSurface(*w);
  }
  RefreshWindowDCs();
  if (VisibleChain(*w)) RedrawWindow(hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  return old;
}

// ---- window regions ----------------------------------------------------------------------------

int SetWindowRgn(HWND hwnd, HRGN rgn, BOOL redraw) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  if (rgn && !LookupRegion(rgn)) return 0;
  if (w->region && w->region != rgn) DeleteObject(w->region);
  const bool visible = VisibleChain(*w);
  if (visible && w->parent && redraw) {
    RECT r = w->rect;
    RedrawWindow(w->parent, &r, 0, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  }
  w->region = rgn;
  RefreshWindowDCs();
  if (visible && redraw) RedrawWindow(hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  return 1;
}

int GetWindowRgn(HWND hwnd, HRGN rgn) {
  Wnd* w = Get(hwnd);
  if (!w || !w->region || !rgn) return ERROR;
  return CombineRgn(rgn, w->region, 0, RGN_COPY);
}

int GetWindowRgnBox(HWND hwnd, RECT* out) {
  Wnd* w = Get(hwnd);
  if (!w || !w->region || !out) return ERROR;
  return GetRgnBox(w->region, out);
}

// ---- hit testing -------------------------------------------------------------------------------

namespace {

// Whether a screen point is inside a window's rectangle and region.
bool Contains(const Wnd& w, POINT screen) {
  POINT o = ScreenOrigin(w);
  int x = screen.x - o.x, y = screen.y - o.y;
  if (x < 0 || y < 0 || x >= w.rect.width() || y >= w.rect.height()) return false;
  if (const Region* r = WindowRegion(w)) return r->contains(x, y);
  return true;
}

bool InClient(const Wnd& w, POINT screen) {
  POINT o = ClientScreenOrigin(w);
  return screen.x >= o.x && screen.y >= o.y && screen.x < o.x + w.client.width() && screen.y < o.y + w.client.height();
}

struct Hit {
  HWND hwnd = 0;
  LRESULT code = HTNOWHERE;
};

// Searches a sibling list front to back; see WindowFromPoint for the rules.
Hit HitIn(const std::vector<HWND>& list, POINT pt, bool topLevel, bool sendHitTest) {
  std::vector<HWND> snapshot = list;
  for (HWND h : snapshot) {
    Wnd* w = Get(h);
    if (!w || !(w->style & WS_VISIBLE)) continue;
    if (topLevel ? ((w->exStyle & (WS_EX_LAYERED | WS_EX_TRANSPARENT)) == (WS_EX_LAYERED | WS_EX_TRANSPARENT))
                 : (w->exStyle & WS_EX_TRANSPARENT) != 0)
      continue;
    if (!Contains(*w, pt)) continue;
    if (!topLevel && (w->style & WS_DISABLED)) continue;  // the parent takes the point
    if (topLevel && (w->style & WS_DISABLED)) return {h, HTERROR};
    if (InClient(*w, pt)) {
      Hit inner = HitIn(w->children, pt, false, sendHitTest);
      if (inner.hwnd) return inner;
    }
    if (!Get(h)) continue;
    LRESULT code = sendHitTest ? SendMessageW(h, WM_NCHITTEST, 0, MAKELPARAM(pt.x, pt.y)) : HTCLIENT;
    if (code == HTTRANSPARENT) continue;
    if (!Get(h)) continue;
    return {h, code};
  }
  return {};
}

}  // namespace

HWND WindowFromPoint(POINT pt) { return HitIn(St().topLevels, pt, true, true).hwnd; }

namespace win {
// The window under a screen point and its hit-test code, for the input code.
std::pair<HWND, LRESULT> HitTestScreen(POINT pt) {
  Hit h = HitIn(St().topLevels, pt, true, true);
  return {h.hwnd, h.code};
}
}  // namespace win

HWND ChildWindowFromPointEx(HWND parent, POINT pt, UINT flags) {
  Wnd* p = Get(parent);
  if (!p) return 0;
  if (pt.x < 0 || pt.y < 0 || pt.x >= p->client.width() || pt.y >= p->client.height()) return 0;
  POINT screen = pt;
  ClientToScreen(parent, &screen);
  for (HWND h : p->children) {
    Wnd* w = Get(h);
    if (!w) continue;
    if ((flags & CWP_SKIPINVISIBLE) && !(w->style & WS_VISIBLE)) continue;
    if ((flags & CWP_SKIPDISABLED) && (w->style & WS_DISABLED)) continue;
    if ((flags & CWP_SKIPTRANSPARENT) && (w->exStyle & WS_EX_TRANSPARENT)) continue;
    if (Contains(*w, screen)) return h;
  }
  return parent;
}

HWND ChildWindowFromPoint(HWND parent, POINT pt) { return ChildWindowFromPointEx(parent, pt, CWP_ALL); }

}  // namespace mx::platform
