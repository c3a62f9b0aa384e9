#pragma once
// The thread's message queue and message loop.
//
// What GetMessage and PeekMessage return, in this order: posted messages, then injected input
// (cooked into mouse and key messages only when reached), then WM_QUIT once PostQuitMessage was
// called, then WM_PAINT for a window with something to paint, then WM_TIMER for a due timer.
// Sent messages never queue: SendMessage calls the procedure at once, nested when sent from
// inside another procedure.
//
// Waiting. When nothing is there, GetMessage first runs the next idle action (PushIdleAction),
// then waits for the next due timer or mouse hover; on the virtual clock it moves the clock
// there instead of waiting. When there is nothing to wait for at all, it does not hang: it
// returns FALSE with message WM_NULL (and IsQueueExhausted() tells this apart from WM_QUIT).
#include <cstdint>
#include <functional>

#include "platform/Messages.h"
#include "platform/Types.h"

namespace mx::platform {

// Sends to one window; 0 for a stale one. HWND_BROADCAST sends to every top-level window.
LRESULT SendMessageW(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
inline LRESULT SendMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  return SendMessageW(hwnd, msg, wParam, lParam);
}
// 0 posts a thread message (hwnd 0 in the MSG). Fails for a stale window.
BOOL PostMessageW(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
inline BOOL PostMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  return PostMessageW(hwnd, msg, wParam, lParam);
}
BOOL PostThreadMessageW(DWORD threadId, UINT msg, WPARAM wParam, LPARAM lParam);
void PostQuitMessage(int exitCode);

// hwnd filters to one window (0: any, including thread messages); a min/max of 0/0 takes all.
BOOL GetMessageW(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg);
BOOL PeekMessageW(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg, UINT removeFlags);
inline BOOL GetMessage(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg) {
  return GetMessageW(msg, hwnd, minMsg, maxMsg);
}
inline BOOL PeekMessage(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg, UINT removeFlags) {
  return PeekMessageW(msg, hwnd, minMsg, maxMsg, removeFlags);
}
// Posts WM_CHAR / WM_SYSCHAR for a key down that gives a character (United States layout).
BOOL TranslateMessage(const MSG* msg);
LRESULT DispatchMessageW(const MSG* msg);
inline LRESULT DispatchMessage(const MSG* msg) { return DispatchMessageW(msg); }
// Waits until something could be retrieved (see above); FALSE when nothing ever can.
BOOL WaitMessage();

[[nodiscard]] DWORD GetMessageTime();
[[nodiscard]] DWORD GetMessagePos();
[[nodiscard]] DWORD GetQueueStatus(UINT flags);
[[nodiscard]] BOOL InSendMessage();
// True when the last GetMessage returned FALSE because nothing could ever arrive.
[[nodiscard]] bool IsQueueExhausted();

// ---- loop helpers ------------------------------------------------------------------------------

// Retrieves, translates and dispatches until nothing is ready now, without moving the clock.
// Returns the number of messages dispatched. WM_QUIT is left for the caller (IsQuitPending).
int PumpMessages();
// Moves the virtual clock on by `milliseconds`, stopping at every due timer and hover on the
// way, in time order, and pumping at each; pumps at the end. On the real clock it pumps for
// that long. Returns the number of messages dispatched.
int RunFor(uint64_t milliseconds);
// Pumps and moves the virtual clock from due event to due event until nothing is left to do or
// `limitMs` of virtual time have passed (periodic timers never let a queue go idle). Returns
// true when it went idle.
bool RunUntilIdle(uint64_t limitMs = 60000);
// A nested message loop on the same queue that returns when `hwnd` is destroyed (true), or
// when WM_QUIT arrives (it is posted again for the outer loop) or nothing can happen any more
// (false).
bool RunModalLoop(HWND hwnd);
// Work for an idle queue: GetMessage and the helpers above run the oldest action when the queue
// is empty, before waiting. This is how a test drives a modal loop: queue the clicks that will
// close it.
void PushIdleAction(std::function<void()> action);
[[nodiscard]] bool IsQuitPending(int* exitCode = nullptr);

}  // namespace mx::platform
