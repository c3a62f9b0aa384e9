#pragma once
// The window's own scroll bars: the non-client bars a window gets with WS_HSCROLL and
// WS_VSCROLL. The platform keeps their range, page and position, draws them with the frame, and
// turns presses on them into WM_HSCROLL / WM_VSCROLL messages with the SB_ codes: an arrow
// sends a line step (repeated while held), the track beside the thumb a page step (repeated
// until the thumb reaches the pointer), and a thumb drag SB_THUMBTRACK for every change of the
// tracking position and SB_THUMBPOSITION at the release. Each press ends with SB_ENDSCROLL.
// The application moves the position itself (SetScrollInfo) in answer; the bar never does.
#include "platform/Types.h"

namespace mx::platform {

constexpr int SB_HORZ = 0, SB_VERT = 1, SB_CTL = 2, SB_BOTH = 3;

constexpr int SB_LINEUP = 0, SB_LINELEFT = 0, SB_LINEDOWN = 1, SB_LINERIGHT = 1, SB_PAGEUP = 2,
              SB_PAGELEFT = 2, SB_PAGEDOWN = 3, SB_PAGERIGHT = 3, SB_THUMBPOSITION = 4,
              SB_THUMBTRACK = 5, SB_TOP = 6, SB_LEFT = 6, SB_BOTTOM = 7, SB_RIGHT = 7, SB_ENDSCROLL = 8;

constexpr UINT SIF_RANGE = 0x1, SIF_PAGE = 0x2, SIF_POS = 0x4, SIF_DISABLENOSCROLL = 0x8,
               SIF_TRACKPOS = 0x10, SIF_ALL = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS;

constexpr UINT ESB_ENABLE_BOTH = 0, ESB_DISABLE_LTUP = 1, ESB_DISABLE_LEFT = 1, ESB_DISABLE_UP = 1,
               ESB_DISABLE_RTDN = 2, ESB_DISABLE_RIGHT = 2, ESB_DISABLE_DOWN = 2, ESB_DISABLE_BOTH = 3;

struct SCROLLINFO {
  UINT cbSize = sizeof(SCROLLINFO);
  UINT fMask = 0;
  int nMin = 0;
  int nMax = 0;
  UINT nPage = 0;
  int nPos = 0;
  int nTrackPos = 0;
};

// Stores what fMask names. The page is kept within the range size (max - min + 1) and the
// position within min to max - max(page - 1, 0). A range change shows a bar that can scroll and
// hides one that cannot, or, with SIF_DISABLENOSCROLL, disables it instead. Returns the
// position; 0 for a stale window or SB_CTL (no scroll bar controls here).
int SetScrollInfo(HWND hwnd, int nBar, const SCROLLINFO* info, BOOL redraw);
// Fills what fMask asks; SIF_TRACKPOS is the thumb's position while it is dragged (else the
// position). FALSE for a stale window, SB_CTL or an empty mask.
BOOL GetScrollInfo(HWND hwnd, int nBar, SCROLLINFO* info);
// Return the previous position.
int SetScrollPos(HWND hwnd, int nBar, int nPos, BOOL redraw);
[[nodiscard]] int GetScrollPos(HWND hwnd, int nBar);
BOOL SetScrollRange(HWND hwnd, int nBar, int nMinPos, int nMaxPos, BOOL redraw);
BOOL GetScrollRange(HWND hwnd, int nBar, int* minPos, int* maxPos);
// Adds or removes WS_HSCROLL / WS_VSCROLL (SB_BOTH: both) and recalculates the frame, so the
// client area shrinks or grows by the bar (SM_CXVSCROLL / SM_CYHSCROLL, 17 pixels).
BOOL ShowScrollBar(HWND hwnd, int wBar, BOOL bShow);
// ESB_ flags: which arrows are disabled. A bar disabled at both ends draws no thumb and ignores
// presses. FALSE when nothing changed.
BOOL EnableScrollBar(HWND hwnd, UINT wSBflags, UINT wArrows);

// The parts of a bar, as hit testing and drawing see them.
enum class ScrollBarPart { None = 0, LineUp, PageUp, Thumb, PageDown, LineDown };

// Which part of the window's bar is under a point in window coordinates (0, 0 at the window's
// top-left corner). None when the bar is not shown or the point is outside it.
[[nodiscard]] ScrollBarPart ScrollBarHitTest(HWND hwnd, int nBar, POINT windowPt);

}  // namespace mx::platform
