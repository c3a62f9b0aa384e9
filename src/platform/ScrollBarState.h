#pragma once
// The state of a window's own scroll bar (WS_HSCROLL / WS_VSCROLL), kept in the window object.
// Private to the platform; code above it uses the calls of ScrollBar.h.
#include "platform/Types.h"

namespace mx::platform::win {

struct ScrollBarState {
  int min = 0;
  int max = 100;        // a standard bar starts with the range 0 to 100
  UINT page = 0;
  int pos = 0;
  int trackPos = 0;
  bool tracking = false;  // the thumb is being dragged: trackPos is live
  UINT disabled = 0;      // ESB_DISABLE_LTUP | ESB_DISABLE_RTDN
  int pressedPart = 0;    // the part held down, drawn pushed in (0 none)
};

}  // namespace mx::platform::win
