#pragma once
// The host's view of the keyboard and mouse state, as its key and mouse events pass it: Shift as
// vbShiftMask | vbCtrlMask | vbAltMask and Button as the set of buttons held.
#include <cstdint>

#include "host/UserControl.h"
#include "platform/User.h"

namespace mx::host {

// Shift of a key event: the modifier keys down right now.
[[nodiscard]] inline int16_t ShiftState() {
  using namespace platform;
  int16_t shift = 0;
  if (GetKeyState(VK_SHIFT) < 0) shift |= vbShiftMask;
  if (GetKeyState(VK_CONTROL) < 0) shift |= vbCtrlMask;
  if (GetKeyState(VK_MENU) < 0) shift |= vbAltMask;
  return shift;
}

// Shift of a mouse event, from the message's key flags (Alt is not among them).
[[nodiscard]] inline int16_t MouseShift(platform::WPARAM keys) {
  using namespace platform;
  int16_t shift = 0;
  if (keys & MK_SHIFT) shift |= vbShiftMask;
  if (keys & MK_CONTROL) shift |= vbCtrlMask;
  if (GetKeyState(VK_MENU) < 0) shift |= vbAltMask;
  return shift;
}

// Button of a mouse move: every button held, from the message's key flags.
[[nodiscard]] inline int16_t ButtonsHeld(platform::WPARAM keys) {
  using namespace platform;
  int16_t buttons = 0;
  if (keys & MK_LBUTTON) buttons |= vbLeftButton;
  if (keys & MK_RBUTTON) buttons |= vbRightButton;
  if (keys & MK_MBUTTON) buttons |= vbMiddleButton;
  return buttons;
}

}  // namespace mx::host
