#include "platform/SysColors.h"

#include <array>

#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/Messages.h"
#include "platform/MessageQueue.h"

namespace mx::platform {

namespace {

// The default scheme of the classic desktop at the time the controls were written.
constexpr std::array<COLORREF, kSysColorCount> kDefaults = {
    RGB(200, 200, 200),  // COLOR_SCROLLBAR
    RGB(0, 0, 0),        // COLOR_BACKGROUND
    RGB(153, 180, 209),  // COLOR_ACTIVECAPTION
    RGB(191, 205, 219),  // COLOR_INACTIVECAPTION
    RGB(240, 240, 240),  // COLOR_MENU
    RGB(255, 255, 255),  // COLOR_WINDOW
    RGB(100, 100, 100),  // COLOR_WINDOWFRAME
    RGB(0, 0, 0),        // COLOR_MENUTEXT
    RGB(0, 0, 0),        // COLOR_WINDOWTEXT
    RGB(0, 0, 0),        // COLOR_CAPTIONTEXT
    RGB(180, 180, 180),  // COLOR_ACTIVEBORDER
    RGB(244, 247, 252),  // COLOR_INACTIVEBORDER
    RGB(171, 171, 171),  // COLOR_APPWORKSPACE
    RGB(51, 153, 255),   // COLOR_HIGHLIGHT
    RGB(255, 255, 255),  // COLOR_HIGHLIGHTTEXT
    RGB(240, 240, 240),  // COLOR_BTNFACE
    RGB(160, 160, 160),  // COLOR_BTNSHADOW
    RGB(109, 109, 109),  // COLOR_GRAYTEXT
    RGB(0, 0, 0),        // COLOR_BTNTEXT
    RGB(67, 78, 84),     // COLOR_INACTIVECAPTIONTEXT
    RGB(255, 255, 255),  // COLOR_BTNHIGHLIGHT
    RGB(105, 105, 105),  // COLOR_3DDKSHADOW
    RGB(227, 227, 227),  // COLOR_3DLIGHT
    RGB(0, 0, 0),        // COLOR_INFOTEXT
    RGB(255, 255, 225),  // COLOR_INFOBK
    RGB(181, 181, 181),  // (unused slot 25)
    RGB(0, 102, 204),    // COLOR_HOTLIGHT
    RGB(185, 209, 234),  // COLOR_GRADIENTACTIVECAPTION
    RGB(215, 228, 242),  // COLOR_GRADIENTINACTIVECAPTION
    RGB(51, 153, 255),   // COLOR_MENUHILIGHT
    RGB(240, 240, 240),  // COLOR_MENUBAR
};

struct SysColorState {
  std::array<COLORREF, kSysColorCount> colors = kDefaults;
  std::array<HBRUSH, kSysColorCount> brushes{};  // made on first use, kept for the thread
};

SysColorState& State() {
  thread_local SysColorState state;
  return state;
}

}  // namespace

COLORREF GetSysColor(int index) {
  if (index < 0 || index >= kSysColorCount) return 0;
  return State().colors[static_cast<size_t>(index)];
}

HBRUSH GetSysColorBrush(int index) {
  if (index < 0 || index >= kSysColorCount) return 0;
  auto& st = State();
  HBRUSH& b = st.brushes[static_cast<size_t>(index)];
  if (!b || GetObjectType(b) != OBJ_BRUSH) {
    b = CreateSolidBrush(st.colors[static_cast<size_t>(index)]);
    // The system owns these brushes for the thread's lifetime, as it owns the stock objects:
    // they are kept out of the live counts that leak checks compare.
    if (b) AdjustLiveHandleCount(HandleType::Brush, -1);
  }
  return b;
}

BOOL SetSysColors(int count, const int* indexes, const COLORREF* colors) {
  if (count < 0 || (count > 0 && (!indexes || !colors))) return FALSE;
  auto& st = State();
  for (int i = 0; i < count; ++i) {
    int idx = indexes[i];
    if (idx < 0 || idx >= kSysColorCount) continue;
    st.colors[static_cast<size_t>(idx)] = colors[i] & 0x00FFFFFF;
    // The old brush may still be selected somewhere; a fresh one carries the new colour.
    st.brushes[static_cast<size_t>(idx)] = 0;
  }
  SendMessageW(HWND_BROADCAST, WM_SYSCOLORCHANGE, 0, 0);
  return TRUE;
}

void ResetSysColors() {
  auto& st = State();
  for (int i = 0; i < kSysColorCount; ++i)
    if (st.colors[static_cast<size_t>(i)] != kDefaults[static_cast<size_t>(i)]) st.brushes[static_cast<size_t>(i)] = 0;
  st.colors = kDefaults;
}

}  // namespace mx::platform
