#pragma once
// Real windows through SDL2. Once switched on, every visible top-level window is shown as an
// SDL window that presents the window's backing surface, and the pointer, buttons, wheel,
// keyboard, typed text, window closing and the clipboard's text reach the same message queue
// that injected input uses. The message loop then waits on those events (up to the next timer)
// instead of running on the clock alone.
//
// How a window is shown depends on its styles:
//   WS_CAPTION (not a tool window)   decorated by the window manager; the SDL window shows the
//                                    client area, and the manager's frame stands in for ours;
//   WS_EX_TOOLWINDOW, no caption     an undecorated pop-up that the manager leaves alone
//                                    (drop-downs, tips): exact place, no task-bar entry;
//   anything else                    undecorated, the whole window including its own frame.
#include <cstdint>

#include "platform/Desktop.h"
#include "platform/Types.h"

namespace mx::platform {

// Switches this program to real windows. False when SDL2 is not built in or no display can be
// opened; the program stays headless then. Also moves the thread to the real clock and gives
// the virtual screen the display's size and work area.
bool UseSdlBackend();
// Closes the real windows and returns to headless, restoring the screen size and work area.
void StopSdlBackend();
[[nodiscard]] bool IsSdlBackendActive();

// Key translation between SDL key codes and the platform's virtual keys. `scancode` is the
// physical key, used for keys that the keyboard layout gives symbols outside the table
// (letters with accents on the keys of the ASCII ones). 0 when there is no such key.
[[nodiscard]] int VirtualKeyFromSdlKey(int32_t sdlKey, int scancode = 0);
[[nodiscard]] int32_t SdlKeyFromVirtualKey(int vk);

// The SDL window id showing a top-level window; 0 when it is not shown.
[[nodiscard]] uint32_t SdlWindowIdOf(HWND hwnd);
// What was last presented in the SDL window of `hwnd`, read back from its renderer (top-down,
// 0xAARRGGBB). Empty when the window is not shown.
[[nodiscard]] CapturedImage ReadPresentedPixels(HWND hwnd);

}  // namespace mx::platform
