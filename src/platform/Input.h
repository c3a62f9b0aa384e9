#pragma once
// Input: what the pointer and keyboard do, as a back end delivers it, and the state that input
// moves: cursor position, key state, capture, focus and activation, mouse tracking.
//
// Injected input joins the queue and is cooked into messages when the queue reaches it, as the
// classic system cooks its hardware queue: the hit test (WM_NCHITTEST), WM_SETCURSOR,
// WM_MOUSEACTIVATE and activation on a button down, double-click detection, capture routing,
// WM_MOUSELEAVE for a tracked window that the pointer left, and the mouse and keyboard hooks.
// The cursor position and GetAsyncKeyState change at injection; GetKeyState changes as the
// messages are taken from the queue.
#include <string_view>

#include "platform/Messages.h"
#include "platform/Types.h"

namespace mx::platform {

// ---- injection ---------------------------------------------------------------------------------

enum class MouseButton { Left, Right, Middle, X1, X2 };

void InjectMouseMove(int screenX, int screenY);
void InjectMouseButton(MouseButton button, bool down);
// Press and release at the current position.
void InjectClick(MouseButton button = MouseButton::Left);
// WM_MOUSEWHEEL (or WM_MOUSEHWHEEL) to the focus window; delta in WHEEL_DELTA units of 120.
void InjectWheel(int delta, bool horizontal = false);
// A key going down or up; a down while already down is an auto-repeat. `repeat` is the repeat
// count the message carries.
void InjectKey(int vk, bool down, int repeat = 1);
// Down then up.
void InjectKeyPress(int vk);
// WM_CHAR for each UTF-16 unit, to the focus window.
void InjectText(std::u16string_view text);

// The classic synthetic-keystroke call: a key down, or up with KEYEVENTF_KEYUP, joins the input
// queue as a real one would. The scan code and extra information are accepted and not used.
constexpr DWORD KEYEVENTF_EXTENDEDKEY = 0x0001, KEYEVENTF_KEYUP = 0x0002;
void keybd_event(BYTE vk, BYTE scan, DWORD flags, uintptr_t extraInfo);

// ---- state -------------------------------------------------------------------------------------

BOOL GetCursorPos(POINT* pt);
// Moves the pointer as a move of the mouse would (input is queued).
BOOL SetCursorPos(int x, int y);
// 0x8000 when down now; bit 0 when pressed since the last call.
[[nodiscard]] int16_t GetAsyncKeyState(int vk);
// As of the message last taken from the queue: 0x8000 bit when down, bit 0 when toggled.
[[nodiscard]] int16_t GetKeyState(int vk);
BOOL GetKeyboardState(BYTE* state256);

// ---- capture -----------------------------------------------------------------------------------

// The window losing capture gets WM_CAPTURECHANGED with the new owner in lParam. Releasing the
// capture makes a mouse move at the current position, so that the window under the pointer
// hears of it and a tracked window that the pointer left gets WM_MOUSELEAVE.
HWND SetCapture(HWND hwnd);
BOOL ReleaseCapture();
[[nodiscard]] HWND GetCapture();

// ---- focus and activation ----------------------------------------------------------------------

// WM_KILLFOCUS to the old window, then WM_SETFOCUS to the new one; the top-level window of the
// new one is activated first. Returns the old focus window.
HWND SetFocus(HWND hwnd);
[[nodiscard]] HWND GetFocus();
// WM_NCACTIVATE and WM_ACTIVATE (WA_INACTIVE) to the old window, then WM_NCACTIVATE and
// WM_ACTIVATE to the new one, which comes to the top. Returns the old active window.
HWND SetActiveWindow(HWND hwnd);
[[nodiscard]] HWND GetActiveWindow();
BOOL SetForegroundWindow(HWND hwnd);
[[nodiscard]] HWND GetForegroundWindow();

// ---- tracking ----------------------------------------------------------------------------------

// TME_LEAVE: WM_MOUSELEAVE when the pointer leaves the window (into another window, a child, or
// the non-client area), at once if it is not over the window now. TME_HOVER: WM_MOUSEHOVER
// once the pointer rested within the hover rectangle for the hover time. TME_NONCLIENT tracks
// the non-client area instead. TME_CANCEL and TME_QUERY as the classic call.
BOOL TrackMouseEvent(TRACKMOUSEEVENT* tme);
inline BOOL _TrackMouseEvent(TRACKMOUSEEVENT* tme) { return TrackMouseEvent(tme); }

[[nodiscard]] UINT GetDoubleClickTime();
BOOL SetDoubleClickTime(UINT ms);

// The keyboard-state bits of mouse messages (MK_*) as they are now.
[[nodiscard]] WPARAM CurrentMouseKeyState();

}  // namespace mx::platform
