// USListBox: keys, the mouse over PicLST, the wheel, the scroll bar, tooltips and pointers, and
// the in-place editor.
#include <algorithm>
#include <cstdlib>

#include "controls/ControlSupport.h"
#include "controls/USScrollBar.h"
#include "entry/USListBox.h"
#include "frame/APITooltip.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Cursor.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;
using namespace mx::platform;

namespace {

constexpr int16_t kKeySpace = 0x20;
constexpr int16_t kKeyPageUp = 0x21;
constexpr int16_t kKeyPageDown = 0x22;
constexpr int16_t kKeyEnd = 0x23;
constexpr int16_t kKeyHome = 0x24;
constexpr int16_t kKeyUp = 0x26;
constexpr int16_t kKeyDown = 0x28;
constexpr int16_t kKeyReturn = 0x0D;
constexpr int16_t kKeyEscape = 0x1B;

}  // namespace

// ---- Keys ---------------------------------------------------------------------------------------

// Moves the current item to target, or, when that item is disabled, to the nearest enabled one
// in the direction of travel; failing that, the nearest one back towards where it was. A list
// with no enabled item on the way keeps its current item.
void USListBox::MoveByKeys(int32_t target, int32_t direction) {
  if (m_count == 0) return;
  target = std::clamp(target, 0, m_count - 1);
  auto enabled = [&](int32_t i) { return m_items[static_cast<size_t>(i)].itemEnabled; };
  int32_t found = -1;
  for (int32_t i = target; i >= 0 && i < m_count; i += direction) {
    if (enabled(i)) {
      found = i;
      break;
    }
  }
  if (found < 0) {
    for (int32_t i = target; i >= 0 && i < m_count && i != m_listIndex; i -= direction) {
      if (enabled(i)) {
        found = i;
        break;
      }
    }
  }
  if (found >= 0 && found != m_listIndex) ListIndex(found);
}

void USListBox::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (m_editing) return;
  const int32_t rows = VisibleRows();
  const int32_t current = m_listIndex;
  switch (KeyCode) {
    case kKeyUp:
      Step([&] { MoveByKeys(current < 0 ? 0 : current - 1, -1); });
      break;
    case kKeyDown:
      Step([&] { MoveByKeys(current < 0 ? 0 : current + 1, 1); });
      break;
    case kKeyPageUp:
      Step([&] { MoveByKeys(current < 0 ? 0 : current - rows, -1); });
      break;
    case kKeyPageDown:
      Step([&] { MoveByKeys(current < 0 ? 0 : current + rows, 1); });
      break;
    case kKeyHome:
      Step([&] { MoveByKeys(0, 1); });
      break;
    case kKeyEnd:
      Step([&] { MoveByKeys(m_count - 1, -1); });
      break;
    case kKeySpace:
      if (m_selectMode == Multiple && current >= 0 && m_items[static_cast<size_t>(current)].itemEnabled) {
        m_selected[static_cast<size_t>(current)] ^= 1;
        Step([&] { DrawItem(current, true); });
      }
      break;
    default:
      break;
  }
  Step([&] { KeyDown(KeyCode, Shift); });
}

void USListBox::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }

void USListBox::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyUp(KeyCode, Shift); }); }

void USListBox::UserControl_GotFocus() {
  m_hasFocus = true;
  if (m_selectMode == Multiple && m_listIndex >= 0) Step([&] { DrawItem(m_listIndex, true); });
}

void USListBox::UserControl_LostFocus() {
  m_hasFocus = false;
  if (m_selectMode == Multiple && m_listIndex >= 0) Step([&] { DrawItem(m_listIndex, true); });
}

void USListBox::UserControl_EnterFocus() { m_hasFocus = true; }

void USListBox::UserControl_ExitFocus() {
  // The focus left the control and its children: an open editor keeps what was typed.
  if (m_editing && m_txtEdit && GetFocus() != m_txtEdit->hWnd()) Step([&] { EndEdit(true); });
}

bool USListBox::PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
  // The wheel reaches the control's window while it has the focus; it scrolls as over PicLST.
  if (msg == WM_MOUSEWHEEL) {
    Step([&] { PicWheel(static_cast<int16_t>(HIWORD(wParam))); });
    lResult = 0;
    return true;
  }
  return false;
}

// ---- Mouse over PicLST ---------------------------------------------------------------------------

int32_t USListBox::IndexAtY(float y) const {
  if (y < 0 || m_itemHeight <= 0) return -1;
  const int32_t row = m_topIndex + static_cast<int32_t>(y / static_cast<float>(m_itemHeight));
  // Only whole visible rows hold items; the space below the last one holds none.
  if (row > LastVisibleIndex() || row >= m_count) return -1;
  return row;
}

void USListBox::PicMouseDown(int16_t button, int16_t shift, float x, float y) {
  m_afterDoubleClick = false;
  // A press on the rows ends an open edit, keeping what was typed, as leaving the box would.
  if (m_editing) Step([&] { EndEdit(true); });
  if (button == host::vbLeftButton && UserControl::Enabled()) {
    const int32_t row = IndexAtY(y);
    if (row >= 0 && m_items[static_cast<size_t>(row)].itemEnabled) {
      if (m_selectMode == Multiple) {
        m_selected[static_cast<size_t>(row)] ^= 1;
        m_lastMultipleRow = row;
      }
      Step([&] { ListIndex(row); });
      Step([&] { DrawItem(row, true); });
    }
  }
  Step([&] { MouseDown(button, shift, x, y); });
}

void USListBox::PicMouseMove(int16_t button, int16_t shift, float x, float y) {
  const int32_t row = IndexAtY(y);
  if (m_hoverIndex < 0 && m_pic) {
    // Ask for the leave, so that the pointer's item is forgotten when it goes.
    TRACKMOUSEEVENT tme{};
    tme.cbSize = sizeof(tme);
    tme.dwFlags = TME_LEAVE;
    tme.hwndTrack = m_pic;
    TrackMouseEvent(&tme);
  }
  m_hoverIndex = row;
  if (m_hoverSelection && !m_mouseMoveDisabled && UserControl::Enabled() && row >= 0 && row != m_listIndex &&
      m_items[static_cast<size_t>(row)].itemEnabled) {
    Step([&] { ListIndex(row); });
  }
  Step([&] { UpdateToolTip(row); });
  Step([&] { MouseMove(button, shift, x, y); });
}

void USListBox::PicMouseUp(int16_t button, int16_t shift, float x, float y) {
  Step([&] { MouseUp(button, shift, x, y); });
  if (button != host::vbLeftButton) return;
  if (m_afterDoubleClick) {
    // The up after a double click ends it: no second Click.
    m_afterDoubleClick = false;
    return;
  }
  RECT rc{};
  if (m_pic) GetClientRect(m_pic, &rc);
  if (x >= 0 && y >= 0 && x < static_cast<float>(rc.right) && y < static_cast<float>(rc.bottom)) Step([&] { Click(); });
}

void USListBox::PicDblClick() {
  m_afterDoubleClick = true;
  Step([&] { DblClick(); });
}

void USListBox::PicWheel(int32_t delta) {
  if (delta == 0) return;
  const int32_t notches = std::max(1, std::abs(delta) / WHEEL_DELTA);
  for (int32_t i = 0; i < notches; ++i) {
    if (delta > 0) DecreaseBarValue();
    else IncreaseBarValue();
  }
}

// The pointer over an item with a pointer of its own: that one, made from the picture once and
// kept until the list goes. False leaves the pointer to the list's MousePointer.
bool USListBox::PicSetCursor() {
  // The pointer is asked for before the move that brought it is reported: the item is the one
  // under the pointer now, not the one the last move saw.
  POINT pt{};
  GetCursorPos(&pt);
  ScreenToClient(m_pic, &pt);
  const int32_t index = IndexAtY(static_cast<float>(pt.y));
  if (index < 0) return false;
  const std::shared_ptr<host::StdPicture>& picture = m_items[static_cast<size_t>(index)].itemMouseIcon;
  if (!picture || picture->IsEmpty()) return false;
  for (const auto& [known, cursor] : m_cursors) {
    if (known == picture) {
      SetCursor(cursor);
      return true;
    }
  }
  const HANDLE handle = picture->Handle();
  HCURSOR cursor = 0;
  if (TypeOfHandle(handle) == HandleType::Cursor) {
    SetCursor(handle);
    return true;
  }
  if (TypeOfHandle(handle) == HandleType::Icon) {
    ICONINFO ii{};
    SIZE size{32, 32};
    if (GetIconInfo(handle, &ii)) {
      if (ii.hbmMask) DeleteObject(ii.hbmMask);
      if (ii.hbmColor) DeleteObject(ii.hbmColor);
      GetIconSize(handle, &size);
      cursor = CreateCursor(0, static_cast<int>(ii.xHotspot), static_cast<int>(ii.yHotspot), size.cx, size.cy,
                            nullptr, nullptr);
    }
  }
  if (!cursor) return false;
  m_cursors.emplace_back(picture, cursor);
  SetCursor(cursor);
  return true;
}

void USListBox::UpdateToolTip(int32_t index) {
  if (index == m_tipIndex) return;
  m_tipIndex = index;
  bool runTime = false;
  Step([&] { runTime = Ambient().UserMode(); });
  if (!runTime || !m_pic) return;
  const String text = index >= 0 ? m_items[static_cast<size_t>(index)].itemToolTip : String();
  if (text.empty()) {
    if (m_toolTip) m_toolTip->Destroy();
    return;
  }
  if (!m_toolTip) m_toolTip = std::make_unique<frame::APITooltip>();
  // A tip per item: the window is made anew for the item's text, so its delay starts again.
  m_toolTip->TipText(text);
  m_toolTip->Create(m_pic);
}

// ---- Scrolling ------------------------------------------------------------------------------------

void USListBox::SetTopFromUser(int32_t value) { TopIndex(value); }

void USListBox::OnBarChange() {
  if (m_inBarChange || !m_bar) return;
  const int32_t value = m_bar->Value();
  if (value != m_topIndex) TopIndex(value);
}

// ---- In-place editor --------------------------------------------------------------------------------

void USListBox::StartEdit() {
  if (m_listIndex < 0 || !UserControl::hWnd()) return;
  // The current row comes into view first.
  if (m_listIndex < m_topIndex || m_listIndex > LastVisibleIndex()) {
    TopIndex(m_listIndex < m_topIndex ? m_listIndex : m_listIndex - VisibleRows() + 1);
  }
  if (m_rows.empty()) LayoutRows();
  const RECT row = RowRect(m_listIndex - m_topIndex);
  if (!m_txtEdit) {
    m_txtEdit = std::make_shared<host::TextBox>();
    m_txtEdit->BorderStyle(0);
    m_txtEdit->KeyDown.connect([this](int16_t& KeyCode, int16_t&) { EditKeyDown(KeyCode); });
  }
  m_txtEdit->Font(UserControl::Font());
  m_txtEdit->Create(UserControl::hWnd(), row.left + 1, row.top + 3, (row.right - row.left) - 2, m_itemHeight - 5);
  m_txtEdit->Text(ItemText(m_listIndex));
  m_txtEdit->SelStart(0);
  m_txtEdit->SelLength(host::Len(m_txtEdit->Text()));
  m_editing = true;
  m_txtEdit->Show();
  SetWindowPos(m_txtEdit->hWnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  platform::SetFocus(m_txtEdit->hWnd());
}

void USListBox::EndEdit(bool Modify) {
  if (!m_editing || !m_txtEdit) return;
  m_editing = false;
  const String text = m_txtEdit->Text();
  const bool hadFocus = GetFocus() == m_txtEdit->hWnd();
  Step([&] { m_txtEdit->HideControl(); });
  if (Modify && m_listIndex >= 0 && m_listIndex < m_count) Item(m_listIndex, host::Variant(text));
  if (hadFocus && UserControl::hWnd()) platform::SetFocus(UserControl::hWnd());
}

void USListBox::EditKeyDown(int16_t& KeyCode) {
  if (KeyCode == kKeyReturn) {
    KeyCode = 0;
    Step([&] { EndEdit(true); });
  } else if (KeyCode == kKeyEscape) {
    KeyCode = 0;
    Step([&] { EndEdit(false); });
  }
}

}  // namespace mx::entry
