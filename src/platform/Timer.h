#pragma once
// Timers. A due timer becomes a WM_TIMER message when the queue has nothing else to give, one
// pending message per timer at a time, and re-arms from the moment its message is taken. On the
// virtual clock the message loop jumps time to the next due timer when it would otherwise wait.
#include <functional>

#include "platform/Types.h"

namespace mx::platform {

// A timer procedure, called by DispatchMessage of the timer's WM_TIMER instead of the window
// procedure: (hwnd, WM_TIMER, id, tick count).
using TIMERPROC = std::function<void(HWND, UINT, UINT_PTR, DWORD)>;

// Periods below this are raised to it, as the classic system does.
constexpr UINT USER_TIMER_MINIMUM = 10;
constexpr UINT USER_TIMER_MAXIMUM = 0x7FFFFFFF;

// With a window: (hwnd, id) names the timer, an existing one is replaced, and the result is id
// (1 when id is 0). Without a window: id replaces an existing thread timer of that id, otherwise
// a new id is chosen and returned. 0 on failure (a stale window).
UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapse, TIMERPROC proc = nullptr);
BOOL KillTimer(HWND hwnd, UINT_PTR id);

// Test support: the number of live timers on this thread.
[[nodiscard]] int ActiveTimerCount();

}  // namespace mx::platform
