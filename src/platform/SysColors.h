#pragma once
// System colours: the default scheme of the classic desktop (light grey 3-D faces, white
// windows, blue selection), readable as COLORREFs and as shared solid brushes.
#include "platform/Types.h"

namespace mx::platform {

constexpr int COLOR_SCROLLBAR = 0, COLOR_BACKGROUND = 1, COLOR_DESKTOP = 1, COLOR_ACTIVECAPTION = 2,
              COLOR_INACTIVECAPTION = 3, COLOR_MENU = 4, COLOR_WINDOW = 5, COLOR_WINDOWFRAME = 6,
              COLOR_MENUTEXT = 7, COLOR_WINDOWTEXT = 8, COLOR_CAPTIONTEXT = 9, COLOR_ACTIVEBORDER = 10,
              COLOR_INACTIVEBORDER = 11, COLOR_APPWORKSPACE = 12, COLOR_HIGHLIGHT = 13,
              COLOR_HIGHLIGHTTEXT = 14, COLOR_BTNFACE = 15, COLOR_3DFACE = 15, COLOR_BTNSHADOW = 16,
              COLOR_3DSHADOW = 16, COLOR_GRAYTEXT = 17, COLOR_BTNTEXT = 18,
              COLOR_INACTIVECAPTIONTEXT = 19, COLOR_BTNHIGHLIGHT = 20, COLOR_BTNHILIGHT = 20,
              COLOR_3DHIGHLIGHT = 20, COLOR_3DHILIGHT = 20, COLOR_3DDKSHADOW = 21, COLOR_3DLIGHT = 22,
              COLOR_INFOTEXT = 23, COLOR_INFOBK = 24, COLOR_HOTLIGHT = 26,
              COLOR_GRADIENTACTIVECAPTION = 27, COLOR_GRADIENTINACTIVECAPTION = 28,
              COLOR_MENUHILIGHT = 29, COLOR_MENUBAR = 30;
constexpr int kSysColorCount = 31;

// 0 for an index outside the table.
[[nodiscard]] COLORREF GetSysColor(int index);
// A solid brush of the colour, owned by the system: never delete it. 0 for a bad index.
[[nodiscard]] HBRUSH GetSysColorBrush(int index);
// Changes colours and tells every top-level window (WM_SYSCOLORCHANGE).
BOOL SetSysColors(int count, const int* indexes, const COLORREF* colors);
// Back to the default scheme (tests).
void ResetSysColors();

}  // namespace mx::platform
