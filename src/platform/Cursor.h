#pragma once
// Cursors. The standard shapes are shared handles made on first use and never destroyed; the
// current shape is what SetCursor last chose (a headless screen draws no pointer, but the
// choice is observable).
#include <string>

#include "platform/Types.h"

namespace mx::platform {

constexpr int IDC_ARROW = 32512, IDC_IBEAM = 32513, IDC_WAIT = 32514, IDC_CROSS = 32515,
              IDC_UPARROW = 32516, IDC_SIZE = 32640, IDC_ICON = 32641, IDC_SIZENWSE = 32642,
              IDC_SIZENESW = 32643, IDC_SIZEWE = 32644, IDC_SIZENS = 32645, IDC_SIZEALL = 32646,
              IDC_NO = 32648, IDC_HAND = 32649, IDC_APPSTARTING = 32650, IDC_HELP = 32651;

// A standard cursor by IDC_ number (hInstance must be 0); 0 for an unknown one.
[[nodiscard]] HCURSOR LoadCursorW(HANDLE hInstance, int id);
[[nodiscard]] inline HCURSOR LoadCursor(HANDLE hInstance, int id) { return LoadCursorW(hInstance, id); }
// A cursor of the caller's own (hot spot and size only); free it with DestroyCursor.
[[nodiscard]] HCURSOR CreateCursor(HANDLE hInstance, int xHotSpot, int yHotSpot, int width, int height,
                                   const void* andPlane, const void* xorPlane);
// FALSE for a shared cursor or a stale handle.
BOOL DestroyCursor(HCURSOR cursor);
// Returns the previous cursor; 0 hides the pointer.
HCURSOR SetCursor(HCURSOR cursor);
[[nodiscard]] HCURSOR GetCursor();
// The IDC_ number of a standard cursor, 0 for others.
[[nodiscard]] int CursorId(HCURSOR cursor);
[[nodiscard]] BOOL GetCursorHotSpot(HCURSOR cursor, POINT* hotSpot);

}  // namespace mx::platform
