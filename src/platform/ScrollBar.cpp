// The window's own scroll bars: state, geometry, drawing and the press-and-hold tracking that
// turns presses into WM_HSCROLL / WM_VSCROLL.
#include "platform/ScrollBar.h"

#include <algorithm>
#include <cstdint>

#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"
#include "platform/Timer.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace {

// The timer that repeats a held arrow or page press; first after a pause, then quickly.
constexpr UINT_PTR kRepeatTimer = 0xFFFF5C01;
constexpr UINT kFirstRepeatMs = 300;
constexpr UINT kRepeatMs = 50;
constexpr int kMinThumb = 8;

ScrollBarState* StateOf(Wnd& w, int nBar) {
  if (nBar == SB_HORZ) return &w.hscroll;
  if (nBar == SB_VERT) return &w.vscroll;
  return nullptr;
}

DWORD StyleBit(int nBar) { return nBar == SB_HORZ ? WS_HSCROLL : WS_VSCROLL; }

// How far the position can go: max - max(page - 1, 0), never below min.
int MaxPos(const ScrollBarState& s) {
  const int64_t top = static_cast<int64_t>(s.max) - std::max<int64_t>(static_cast<int64_t>(s.page) - 1, 0);
  return static_cast<int>(std::max<int64_t>(top, s.min));
}

bool CanScroll(const ScrollBarState& s) { return MaxPos(s) > s.min; }

// The bar's rectangle in window coordinates; empty when the style does not show it.
RECT BarRect(const Wnd& w, int nBar) {
  const int cx = GetSystemMetrics(SM_CXVSCROLL), cy = GetSystemMetrics(SM_CYHSCROLL);
  if (nBar == SB_VERT && (w.style & WS_VSCROLL)) return {w.client.right, w.client.top, w.client.right + cx, w.client.bottom};
  if (nBar == SB_HORZ && (w.style & WS_HSCROLL)) return {w.client.left, w.client.bottom, w.client.right, w.client.bottom + cy};
  return {};
}

// The bar along its axis: arrows at both ends, the track between, the thumb in the track.
struct Layout {
  int length = 0;      // whole bar
  int arrow = 0;       // each arrow
  int thumbStart = 0;  // from the bar's start; thumbLen 0 when there is no thumb
  int thumbLen = 0;
  [[nodiscard]] int trackLen() const { return length - 2 * arrow; }
};

Layout LayoutOf(const ScrollBarState& s, int length, int posForThumb) {
  Layout l;
  l.length = length;
  l.arrow = std::min(GetSystemMetrics(SM_CYVSCROLL), length / 2);
  const int track = l.trackLen();
  if (!CanScroll(s) || s.disabled == ESB_DISABLE_BOTH) return l;
  const int64_t range = static_cast<int64_t>(s.max) - s.min + 1;
  int thumb = s.page ? static_cast<int>(std::max<int64_t>(kMinThumb, track * static_cast<int64_t>(s.page) / range))
                     : GetSystemMetrics(SM_CYVTHUMB);
  if (thumb > track) return l;
  const int64_t span = static_cast<int64_t>(MaxPos(s)) - s.min;
  const int64_t at = std::clamp<int64_t>(static_cast<int64_t>(posForThumb) - s.min, 0, span);
  l.thumbLen = thumb;
  l.thumbStart = l.arrow + static_cast<int>(at * (track - thumb) / span);
  return l;
}

ScrollBarPart PartAt(const Layout& l, int along) {
  if (along < 0 || along >= l.length) return ScrollBarPart::None;
  if (along < l.arrow) return ScrollBarPart::LineUp;
  if (along >= l.length - l.arrow) return ScrollBarPart::LineDown;
  if (l.thumbLen == 0) return ScrollBarPart::None;
  if (along < l.thumbStart) return ScrollBarPart::PageUp;
  if (along < l.thumbStart + l.thumbLen) return ScrollBarPart::Thumb;
  return ScrollBarPart::PageDown;
}

int BarLength(const RECT& bar, int nBar) { return nBar == SB_VERT ? bar.height() : bar.width(); }
int Along(const RECT& bar, int nBar, POINT windowPt) { return nBar == SB_VERT ? windowPt.y - bar.top : windowPt.x - bar.left; }
int Across(const RECT& bar, int nBar, POINT windowPt) { return nBar == SB_VERT ? windowPt.x - bar.left : windowPt.y - bar.top; }

void RedrawBar(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (w && VisibleChain(*w)) PaintFrame(*w);
}

// Shows or hides one bar by its style bit and lets the frame follow.
bool SetBarVisible(HWND hwnd, int nBar, bool show) {
  Wnd* w = Get(hwnd);
  if (!w) return false;
  const DWORD bit = StyleBit(nBar);
  if (((w->style & bit) != 0) == show) return false;
  const DWORD style = show ? (w->style | bit) : (w->style & ~bit);
  SetWindowLong(hwnd, GWL_STYLE, static_cast<LONG>(style));
  SetWindowPos(hwnd, 0, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
  return true;
}

// A button face with the classic raised (or, pressed, flat) edge.
void DrawButtonFace(const ScrollFill& fill, RECT r, bool pressed) {
  if (r.empty()) return;
  fill(r, GetSysColor(COLOR_BTNFACE));
  if (pressed) {
    fill({r.left, r.top, r.right, r.top + 1}, GetSysColor(COLOR_BTNSHADOW));
    fill({r.left, r.bottom - 1, r.right, r.bottom}, GetSysColor(COLOR_BTNSHADOW));
    fill({r.left, r.top, r.left + 1, r.bottom}, GetSysColor(COLOR_BTNSHADOW));
    fill({r.right - 1, r.top, r.right, r.bottom}, GetSysColor(COLOR_BTNSHADOW));
    return;
  }
  fill({r.left, r.top, r.right - 1, r.top + 1}, GetSysColor(COLOR_3DLIGHT));
  fill({r.left, r.top, r.left + 1, r.bottom - 1}, GetSysColor(COLOR_3DLIGHT));
  fill({r.left + 1, r.top + 1, r.right - 2, r.top + 2}, GetSysColor(COLOR_BTNHIGHLIGHT));
  fill({r.left + 1, r.top + 1, r.left + 2, r.bottom - 2}, GetSysColor(COLOR_BTNHIGHLIGHT));
  fill({r.left + 1, r.bottom - 2, r.right - 1, r.bottom - 1}, GetSysColor(COLOR_BTNSHADOW));
  fill({r.right - 2, r.top + 1, r.right - 1, r.bottom - 1}, GetSysColor(COLOR_BTNSHADOW));
  fill({r.left, r.bottom - 1, r.right, r.bottom}, GetSysColor(COLOR_3DDKSHADOW));
  fill({r.right - 1, r.top, r.right, r.bottom}, GetSysColor(COLOR_3DDKSHADOW));
}

// A filled triangle of stacked lines, 7 wide and 4 deep, pointing the arrow's way.
void DrawArrowGlyph(const ScrollFill& fill, RECT r, int nBar, bool towardStart, bool pressed, COLORREF color) {
  const int off = pressed ? 1 : 0;
  const int cx = (r.left + r.right) / 2 + off, cy = (r.top + r.bottom) / 2 + off;
  for (int i = 0; i < 4; ++i) {
    const int half = towardStart ? i : 3 - i;  // the apex is on the start side
    if (nBar == SB_VERT) {
      const int y = cy - 2 + i;
      fill({cx - half, y, cx + half + 1, y + 1}, color);
    } else {
      const int x = cx - 2 + i;
      fill({x, cy - half, x + 1, cy + half + 1}, color);
    }
  }
}

void DrawBar(const Wnd& w, int nBar, const ScrollFill& fill) {
  const RECT bar = BarRect(w, nBar);
  if (bar.empty()) return;
  const ScrollBarState& s = nBar == SB_VERT ? w.vscroll : w.hscroll;
  const int length = BarLength(bar, nBar);
  const Layout l = LayoutOf(s, length, s.tracking ? s.trackPos : s.pos);
  // A segment of the bar from a to b along its axis, in window coordinates.
  auto seg = [&](int a, int b) {
    return nBar == SB_VERT ? RECT{bar.left, bar.top + a, bar.right, bar.top + b}
                           : RECT{bar.left + a, bar.top, bar.left + b, bar.bottom};
  };
  fill(seg(l.arrow, length - l.arrow), GetSysColor(COLOR_SCROLLBAR));
  const auto pressed = static_cast<ScrollBarPart>(s.pressedPart);
  if (l.thumbLen) {
    if (pressed == ScrollBarPart::PageUp) fill(seg(l.arrow, l.thumbStart), GetSysColor(COLOR_3DDKSHADOW));
    if (pressed == ScrollBarPart::PageDown)
      fill(seg(l.thumbStart + l.thumbLen, length - l.arrow), GetSysColor(COLOR_3DDKSHADOW));
    DrawButtonFace(fill, seg(l.thumbStart, l.thumbStart + l.thumbLen), false);
  }
  const bool dead = !CanScroll(s);
  const COLORREF on = GetSysColor(COLOR_BTNTEXT), off = GetSysColor(COLOR_GRAYTEXT);
  const RECT up = seg(0, l.arrow), down = seg(length - l.arrow, length);
  const bool upPressed = pressed == ScrollBarPart::LineUp, downPressed = pressed == ScrollBarPart::LineDown;
  DrawButtonFace(fill, up, upPressed);
  DrawButtonFace(fill, down, downPressed);
  DrawArrowGlyph(fill, up, nBar, true, upPressed, dead || (s.disabled & ESB_DISABLE_LTUP) ? off : on);
  DrawArrowGlyph(fill, down, nBar, false, downPressed, dead || (s.disabled & ESB_DISABLE_RTDN) ? off : on);
}

// ---- tracking ----------------------------------------------------------------------------------

struct Tracker {
  HWND hwnd = 0;
  int nBar = SB_VERT;
  ScrollBarPart part = ScrollBarPart::None;
  int grab = 0;    // pointer offset into the thumb when it was pressed
  POINT pt{};      // the pointer, window coordinates

  [[nodiscard]] UINT Message() const { return nBar == SB_VERT ? WM_VSCROLL : WM_HSCROLL; }
  void Send(int code, int pos = 0) const {
    SendMessageW(hwnd, Message(), MAKEWPARAM(code, pos & 0xFFFF), 0);
  }
  [[nodiscard]] bool Current(Wnd*& w, ScrollBarState*& s, RECT& bar) const {
    w = Get(hwnd);
    if (!w) return false;
    s = StateOf(*w, nBar);
    bar = BarRect(*w, nBar);
    return !bar.empty();
  }
  // The part under the pointer now, from the bar as it is now (the application may have moved
  // the position in answer to the last step).
  [[nodiscard]] ScrollBarPart PartUnderPointer() const {
    Wnd* w;
    ScrollBarState* s;
    RECT bar;
    if (!Current(w, s, bar)) return ScrollBarPart::None;
    const int across = Across(bar, nBar, pt);
    if (across < 0 || across >= (nBar == SB_VERT ? bar.width() : bar.height())) return ScrollBarPart::None;
    return PartAt(LayoutOf(*s, BarLength(bar, nBar), s->pos), Along(bar, nBar, pt));
  }
  // One step of an arrow or page press, when the pointer still holds that part.
  void Step() const {
    if (PartUnderPointer() != part) return;
    switch (part) {
      case ScrollBarPart::LineUp: Send(SB_LINEUP); break;
      case ScrollBarPart::LineDown: Send(SB_LINEDOWN); break;
      case ScrollBarPart::PageUp: Send(SB_PAGEUP); break;
      case ScrollBarPart::PageDown: Send(SB_PAGEDOWN); break;
      default: break;
    }
  }
  // Drags the thumb to follow the pointer and reports a changed tracking position.
  void Drag() const {
    Wnd* w;
    ScrollBarState* s;
    RECT bar;
    if (!Current(w, s, bar)) return;
    const Layout l = LayoutOf(*s, BarLength(bar, nBar), s->pos);
    const int room = l.trackLen() - l.thumbLen;
    if (l.thumbLen == 0 || room <= 0) return;
    const int start = std::clamp(Along(bar, nBar, pt) - grab, l.arrow, l.arrow + room);
    const int64_t span = static_cast<int64_t>(MaxPos(*s)) - s->min;
    const int pos = s->min + static_cast<int>(((start - l.arrow) * span + room / 2) / room);
    if (pos == s->trackPos) return;
    s->trackPos = pos;
    RedrawBar(hwnd);
    Send(SB_THUMBTRACK, pos);
  }
};

POINT WindowPointFromClientLParam(HWND hwnd, LPARAM lParam) {
  const Wnd* w = Get(hwnd);
  POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  if (w) {
    p.x += w->client.left;
    p.y += w->client.top;
  }
  return p;
}

bool IsMouseMessage(UINT msg) { return (msg >= WM_MOUSEFIRST && msg <= WM_MOUSELAST) || (msg >= WM_NCMOUSEMOVE && msg <= WM_NCXBUTTONDBLCLK); }

}  // namespace

namespace win {

void PaintScrollBars(const Wnd& w, const ScrollFill& fill) {
  DrawBar(w, SB_VERT, fill);
  DrawBar(w, SB_HORZ, fill);
  if ((w.style & WS_VSCROLL) && (w.style & WS_HSCROLL)) {
    const RECT v = BarRect(w, SB_VERT);
    fill({v.left, v.bottom, v.right, v.bottom + GetSystemMetrics(SM_CYHSCROLL)}, GetSysColor(COLOR_BTNFACE));
  }
}

// Runs while the left button holds a part of the bar: a nested loop on the thread's queue, as
// the classic system's own scroll-bar loop, that ends at the release, when the capture goes,
// or when nothing can arrive any more.
void TrackScrollBar(HWND hwnd, int nBar, POINT screenPt) {
  Wnd* w = Get(hwnd);
  if (!w) return;
  ScrollBarState* s = StateOf(*w, nBar);
  const RECT bar = BarRect(*w, nBar);
  if (!s || bar.empty() || s->disabled == ESB_DISABLE_BOTH || !IsWindowEnabled(hwnd)) return;
  const POINT o = ScreenOrigin(*w);
  Tracker t;
  t.hwnd = hwnd;
  t.nBar = nBar;
  t.pt = {screenPt.x - o.x, screenPt.y - o.y};
  const Layout l = LayoutOf(*s, BarLength(bar, nBar), s->pos);
  t.part = PartAt(l, Along(bar, nBar, t.pt));
  if (t.part == ScrollBarPart::None) return;
  if ((t.part == ScrollBarPart::LineUp && (s->disabled & ESB_DISABLE_LTUP)) ||
      (t.part == ScrollBarPart::LineDown && (s->disabled & ESB_DISABLE_RTDN)))
    return;
  if (t.part == ScrollBarPart::Thumb) {
    t.grab = Along(bar, nBar, t.pt) - l.thumbStart;
    s->tracking = true;
    s->trackPos = s->pos;
  }
  s->pressedPart = static_cast<int>(t.part);
  SetCapture(hwnd);
  RedrawBar(hwnd);
  if (t.part == ScrollBarPart::Thumb) t.Send(SB_THUMBTRACK, s->pos);
  else {
    t.Step();
    SetTimer(hwnd, kRepeatTimer, kFirstRepeatMs);
  }

  for (;;) {
    if (!IsWindow(hwnd) || GetCapture() != hwnd) break;
    MSG m{};
    if (!GetMessageW(&m, 0, 0, 0)) {
      // A quit belongs to the outer loop; an exhausted queue means the release never comes.
      if (!IsQueueExhausted()) PostQuitMessage(static_cast<int>(m.wParam));
      break;
    }
    if (m.hwnd == hwnd && m.message == WM_LBUTTONUP) {
      t.pt = WindowPointFromClientLParam(hwnd, m.lParam);
      if (t.part == ScrollBarPart::Thumb) t.Drag();
      break;
    }
    if (m.hwnd == hwnd && m.message == WM_MOUSEMOVE) {
      t.pt = WindowPointFromClientLParam(hwnd, m.lParam);
      if (t.part == ScrollBarPart::Thumb) t.Drag();
      continue;
    }
    if (m.hwnd == hwnd && m.message == WM_TIMER && m.wParam == kRepeatTimer) {
      SetTimer(hwnd, kRepeatTimer, kRepeatMs);
      t.Step();
      continue;
    }
    // Other mouse input belongs to the press and is swallowed; the rest goes on as usual.
    if (IsMouseMessage(m.message)) continue;
    TranslateMessage(&m);
    DispatchMessageW(&m);
  }

  if (IsWindow(hwnd)) {
    KillTimer(hwnd, kRepeatTimer);
    if (Wnd* now = Get(hwnd)) {
      ScrollBarState* st = StateOf(*now, nBar);
      const bool wasTracking = st->tracking;
      st->tracking = false;
      st->pressedPart = 0;
      if (wasTracking) t.Send(SB_THUMBPOSITION, st->trackPos);
    }
    t.Send(SB_ENDSCROLL);
    RedrawBar(hwnd);
    if (GetCapture() == hwnd) ReleaseCapture();
  }
}

}  // namespace win

// ---- the calls ---------------------------------------------------------------------------------

int SetScrollInfo(HWND hwnd, int nBar, const SCROLLINFO* info, BOOL redraw) {
  Wnd* w = Get(hwnd);
  ScrollBarState* s = w ? StateOf(*w, nBar) : nullptr;
  if (!s || !info) return 0;
  const bool rangeTouched = info->fMask & (SIF_RANGE | SIF_PAGE);
  if (info->fMask & SIF_RANGE) {
    s->min = info->nMin;
    s->max = std::max(info->nMin, info->nMax);
  }
  if (info->fMask & SIF_PAGE) s->page = info->nPage;
  const int64_t rangeSize = static_cast<int64_t>(s->max) - s->min + 1;
  if (static_cast<int64_t>(s->page) > rangeSize) s->page = static_cast<UINT>(rangeSize);
  if (info->fMask & SIF_POS) s->pos = info->nPos;
  s->pos = std::clamp(s->pos, s->min, MaxPos(*s));
  const int pos = s->pos;
  if (rangeTouched) {
    const bool can = CanScroll(*s);
    if (info->fMask & SIF_DISABLENOSCROLL) {
      s->disabled = can ? ESB_ENABLE_BOTH : ESB_DISABLE_BOTH;
    } else {
      SetBarVisible(hwnd, nBar, can);
    }
  }
  if (redraw) RedrawBar(hwnd);
  return pos;
}

BOOL GetScrollInfo(HWND hwnd, int nBar, SCROLLINFO* info) {
  Wnd* w = Get(hwnd);
  ScrollBarState* s = w ? StateOf(*w, nBar) : nullptr;
  if (!s || !info || !(info->fMask & SIF_ALL)) return FALSE;
  if (info->fMask & SIF_RANGE) {
    info->nMin = s->min;
    info->nMax = s->max;
  }
  if (info->fMask & SIF_PAGE) info->nPage = s->page;
  if (info->fMask & SIF_POS) info->nPos = s->pos;
  if (info->fMask & SIF_TRACKPOS) info->nTrackPos = s->tracking ? s->trackPos : s->pos;
  return TRUE;
}

int SetScrollPos(HWND hwnd, int nBar, int nPos, BOOL redraw) {
  const int old = GetScrollPos(hwnd, nBar);
  SCROLLINFO si;
  si.fMask = SIF_POS;
  si.nPos = nPos;
  SetScrollInfo(hwnd, nBar, &si, redraw);
  return old;
}

int GetScrollPos(HWND hwnd, int nBar) {
  SCROLLINFO si;
  si.fMask = SIF_POS;
  return GetScrollInfo(hwnd, nBar, &si) ? si.nPos : 0;
}

BOOL SetScrollRange(HWND hwnd, int nBar, int nMinPos, int nMaxPos, BOOL redraw) {
  Wnd* w = Get(hwnd);
  if (!w || !StateOf(*w, nBar)) return FALSE;
  SCROLLINFO si;
  si.fMask = SIF_RANGE;
  si.nMin = nMinPos;
  si.nMax = nMaxPos;
  SetScrollInfo(hwnd, nBar, &si, redraw);
  return TRUE;
}

BOOL GetScrollRange(HWND hwnd, int nBar, int* minPos, int* maxPos) {
  SCROLLINFO si;
  si.fMask = SIF_RANGE;
  if (!GetScrollInfo(hwnd, nBar, &si)) return FALSE;
  if (minPos) *minPos = si.nMin;
  if (maxPos) *maxPos = si.nMax;
  return TRUE;
}

BOOL ShowScrollBar(HWND hwnd, int wBar, BOOL bShow) {
  if (!Get(hwnd) || wBar == SB_CTL || wBar < 0 || wBar > SB_BOTH) return FALSE;
  if (wBar == SB_HORZ || wBar == SB_BOTH) SetBarVisible(hwnd, SB_HORZ, bShow != FALSE);
  if (wBar == SB_VERT || wBar == SB_BOTH) SetBarVisible(hwnd, SB_VERT, bShow != FALSE);
  return TRUE;
}

BOOL EnableScrollBar(HWND hwnd, UINT wSBflags, UINT wArrows) {
  Wnd* w = Get(hwnd);
  if (!w || wSBflags == static_cast<UINT>(SB_CTL) || wSBflags > static_cast<UINT>(SB_BOTH)) return FALSE;
  bool changed = false;
  for (int bar : {SB_HORZ, SB_VERT}) {
    if (wSBflags != static_cast<UINT>(SB_BOTH) && wSBflags != static_cast<UINT>(bar)) continue;
    ScrollBarState* s = StateOf(*w, bar);
    if (s->disabled != (wArrows & ESB_DISABLE_BOTH)) {
      s->disabled = wArrows & ESB_DISABLE_BOTH;
      changed = true;
    }
  }
  if (changed) RedrawBar(hwnd);
  return changed ? TRUE : FALSE;
}

ScrollBarPart ScrollBarHitTest(HWND hwnd, int nBar, POINT windowPt) {
  Wnd* w = Get(hwnd);
  ScrollBarState* s = w ? StateOf(*w, nBar) : nullptr;
  if (!s) return ScrollBarPart::None;
  const RECT bar = BarRect(*w, nBar);
  if (bar.empty() || windowPt.x < bar.left || windowPt.x >= bar.right || windowPt.y < bar.top ||
      windowPt.y >= bar.bottom)
    return ScrollBarPart::None;
  return PartAt(LayoutOf(*s, BarLength(bar, nBar), s->tracking ? s->trackPos : s->pos), Along(bar, nBar, windowPt));
}

}  // namespace mx::platform
