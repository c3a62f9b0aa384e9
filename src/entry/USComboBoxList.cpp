// USComboBox: the drop-down (ShowList, HideList, placement, TRelease), the fill and position
// members, and the members forwarded to the list.
#include <algorithm>
#include <cmath>

#include "controls/ControlSupport.h"
#include "controls/USImageList.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "host/Conversion.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Text.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;
using host::Variant;

namespace {

// The list's border: one pixel above and below its rows.
constexpr int kListBorder = 2;

}  // namespace

// ---- Opening and closing -----------------------------------------------------------------------------

void USComboBox::ShowList() {
  if (!m_listOpen) Step([&] { BeginDisplayList(); });
  // A handler of BeginDisplayList may fill the list: only now is the count looked at.
  if (!m_showEmptyList && ListCount() == 0) return;
  if (!UserControl::hWnd() || !UserControl::Enabled()) return;
  CreateParts();
  const platform::HWND listWnd = m_list->hWnd();
  if (!listWnd) return;
  ApplyListLooks();
  if (!m_listOpen) {
    // A pop-up of its own: a tool window on the desktop, owned by the form's window so that it
    // stays above the form and goes with it. The owner is set after the parent is gone, since
    // setting it on a child would move the child instead.
    const platform::DWORD style = static_cast<platform::DWORD>(platform::GetWindowLong(listWnd, platform::GWL_STYLE));
    const platform::DWORD exStyle =
        static_cast<platform::DWORD>(platform::GetWindowLong(listWnd, platform::GWL_EXSTYLE));
    platform::SetWindowLongPtr(listWnd, platform::GWL_EXSTYLE,
                               exStyle | platform::WS_EX_TOOLWINDOW | platform::WS_EX_NOACTIVATE);
    platform::SetWindowLongPtr(listWnd, platform::GWL_STYLE,
                               (style & ~platform::WS_CHILD) | platform::WS_POPUP);
    platform::SetParent(listWnd, 0);
    platform::SetWindowLongPtr(listWnd, platform::GWL_HWNDPARENT, static_cast<platform::LONG_PTR>(FormWindow()));
    m_indexAtOpen = ListIndex();
    m_textAtOpen = m_text->Text();
  }
  PlaceList();
  if (!m_listOpen) {
    m_listOpen = true;
    m_openedAt = platform::GetTickCount();
    Step([&] { m_list->ShowControl(); });
    Step([&] { platform::ShowWindow(listWnd, platform::SW_SHOWNA); });
    platform::SetTimer(UserControl::hWnd(), kReleaseTimerId, kReleaseInterval);
    if (!m_focusHook) {
      m_focusHook = platform::SetWindowsHookEx(
          platform::WH_CBT, [this](int code, platform::WPARAM wParam, platform::LPARAM lParam) -> platform::LRESULT {
            const auto target = static_cast<platform::HWND>(wParam);
            const platform::HWND popup = m_list->hWnd();
            const bool inPopup = popup && (target == popup || platform::IsChild(popup, target));
            if ((code == platform::HCBT_SETFOCUS || code == platform::HCBT_ACTIVATE) && inPopup) return 1;
            return platform::CallNextHookEx(m_focusHook, code, wParam, lParam);
          });
    }
  }
  // The current item is shown in the rows.
  Step([&] {
    const int32_t index = m_list->ListIndex();
    const int32_t rows = std::max(1, std::min(ListCount(), m_numberItemsToShow));
    if (index >= 0 && (index < m_list->TopIndex() || index >= m_list->TopIndex() + rows)) m_list->TopIndex(index);
  });
  ApplyTextLook();
  DrawCombo(kStateOpen, false);
}

void USComboBox::PlaceList() {
  const platform::HWND own = UserControl::hWnd();
  const platform::HWND listWnd = m_list->hWnd();
  if (!own || !listWnd) return;
  platform::RECT control{};
  platform::GetWindowRect(own, &control);
  platform::RECT work{};
  if (!platform::SystemParametersInfo(platform::SPI_GETWORKAREA, 0, &work, 0)) {
    work = platform::RECT{0, 0, platform::GetSystemMetrics(platform::SM_CXSCREEN),
                          platform::GetSystemMetrics(platform::SM_CYSCREEN)};
  }
  const int32_t count = ListCount();
  const int32_t rows = std::max(1, std::min(count, m_numberItemsToShow));
  int height = rows * m_listItemHeight + kListBorder;
  int width = control.right - control.left;
  if (m_listItemWidthCustom) {
    // The measured width holds the texts; the scroll bar, when there is one, comes on top.
    width = static_cast<int>(std::lround(m_listItemWidth));
    if (count > rows) width += m_list->ScrollBarWidth();
    width = std::max(width, 1);
  }
  // Below the control when the rows fit there, else above it; when neither side has room, the
  // roomier side, with the rows that fit.
  const int below = work.bottom - control.bottom;
  const int above = control.top - work.top;
  int top = control.bottom;
  if (height > below) {
    if (height <= above || above > below) {
      height = std::min(height, std::max(above, m_listItemHeight + kListBorder));
      top = control.top - height;
    } else {
      height = std::max(below, m_listItemHeight + kListBorder);
    }
  }
  int left = control.left;
  if (left + width > work.right) left = work.right - width;
  left = std::max(left, static_cast<int>(work.left));
  const host::Screen& screen = host::GetScreen();
  Step([&] {
    m_list->Move(static_cast<float>(left) * screen.TwipsPerPixelX(), static_cast<float>(top) * screen.TwipsPerPixelY(),
                 static_cast<float>(width) * screen.TwipsPerPixelX(),
                 static_cast<float>(height) * screen.TwipsPerPixelY());
  });
  // The list's geometry is in its parent's terms; while it is a pop-up those are the screen's.
  platform::SetWindowPos(listWnd, platform::HWND_TOP, left, top, width, height, platform::SWP_NOACTIVATE);
}

void USComboBox::HideList() {
  if (!m_listOpen) return;
  m_listOpen = false;
  m_rowPressed = false;
  const platform::HWND own = UserControl::hWnd();
  const platform::HWND listWnd = m_list->hWnd();
  if (own) platform::KillTimer(own, kReleaseTimerId);
  if (m_focusHook) {
    platform::UnhookWindowsHookEx(m_focusHook);
    m_focusHook = 0;
  }
  const bool focusInList =
      listWnd && (platform::GetFocus() == listWnd || platform::IsChild(listWnd, platform::GetFocus()));
  if (listWnd) {
    Step([&] { m_list->HideControl(); });
    platform::ShowWindow(listWnd, platform::SW_HIDE);
    // Back as a child of the control, hidden, until the next ShowList.
    const platform::DWORD style = static_cast<platform::DWORD>(platform::GetWindowLong(listWnd, platform::GWL_STYLE));
    const platform::DWORD exStyle =
        static_cast<platform::DWORD>(platform::GetWindowLong(listWnd, platform::GWL_EXSTYLE));
    platform::SetWindowLongPtr(listWnd, platform::GWL_HWNDPARENT, 0);
    platform::SetWindowLongPtr(listWnd, platform::GWL_EXSTYLE,
                               exStyle & ~(platform::WS_EX_TOOLWINDOW | platform::WS_EX_NOACTIVATE));
    platform::SetWindowLongPtr(listWnd, platform::GWL_STYLE, (style & ~platform::WS_POPUP) | platform::WS_CHILD);
    if (own) platform::SetParent(listWnd, own);
    Step([&] { Layout(); });
  }
  if (focusInList && m_text->hWnd() && UserControl::Enabled()) Step([&] { platform::SetFocus(m_text->hWnd()); });
  Step([&] { ApplyTextLook(); });
  Step([&] { DrawCombo(-1, false); });
  Step([&] { EndDisplayList(); });
}

platform::HWND USComboBox::FormWindow() const {
  const platform::HWND own = UserControl::hWnd();
  return own ? platform::GetAncestor(own, platform::GA_ROOT) : 0;
}

bool USComboBox::FocusIsOurs() const {
  const platform::HWND own = UserControl::hWnd();
  const platform::HWND listWnd = m_list->hWnd();
  const platform::HWND focus = platform::GetFocus();
  if (!focus) return false;
  if (focus == own || (own && platform::IsChild(own, focus))) return true;
  return listWnd && (focus == listWnd || platform::IsChild(listWnd, focus));
}

void USComboBox::OnReleaseTimer() {
  if (!m_listOpen) {
    platform::KillTimer(UserControl::hWnd(), kReleaseTimerId);
    return;
  }
  // The press that opened the list may still be settling the focus.
  if (platform::GetTickCount() - m_openedAt < kReleaseGrace) return;
  const platform::HWND active = platform::GetActiveWindow();
  const bool activeIsOurs = active == FormWindow() || active == m_list->hWnd();
  if (!FocusIsOurs() || !activeIsOurs) {
    HideList();
    return;
  }
  // A button held down over anything but the combo and its list is a click elsewhere.
  if (platform::GetAsyncKeyState(platform::VK_LBUTTON) < 0 || platform::GetAsyncKeyState(platform::VK_RBUTTON) < 0) {
    platform::POINT pt{};
    platform::GetCursorPos(&pt);
    const platform::HWND under = platform::WindowFromPoint(pt);
    const platform::HWND own = UserControl::hWnd();
    const platform::HWND listWnd = m_list->hWnd();
    const bool ours = under && (under == own || platform::IsChild(own, under) || under == listWnd ||
                                platform::IsChild(listWnd, under));
    if (!ours) HideList();
  }
}

// ---- Fill ------------------------------------------------------------------------------------------

void USComboBox::BeginFill(int32_t xTagID, int32_t xCacheIncrement) {
  m_tagID = xTagID;
  if (xCacheIncrement > 0) Step([&] { m_list->CacheIncrement(xCacheIncrement); });
  if (!m_filling) {
    m_lockBeforeFill = m_lockChange;
    m_filling = true;
  }
  m_lockChange = true;
  m_listRedraw = false;
  Step([&] { m_list->Redraw(false); });
}

void USComboBox::EndFill(int32_t xIndexForNonData, bool xCustomItemWidth, int32_t xCustomItemWidthOFFSET,
                         bool xRedraw) {
  if (xCustomItemWidth) SetCustomItemWidth(xCustomItemWidthOFFSET, false);
  int32_t index = GetIndexFromData(m_tagID, true);
  if (index < 0) index = xIndexForNonData;
  if (index < -1 || index >= ListCount()) index = -1;
  if (index != ListIndex()) ListIndex(index);
  if (m_filling) {
    m_lockChange = m_lockBeforeFill;
    m_filling = false;
  }
  m_listRedraw = xRedraw;
  Step([&] { m_list->Redraw(m_redraw && m_listRedraw); });
}

int32_t USComboBox::MeasureItemsWidth() const {
  const int32_t count = ListCount();
  if (count == 0) return 0;
  const platform::HDC dc = platform::CreateCompatibleDC(0);
  if (!dc) return 0;
  const platform::LOGFONTW lf = UserControl::Font()->ToLogFont();
  const platform::HFONT font = platform::CreateFontIndirectW(&lf);
  const platform::HGDIOBJ old = font ? platform::SelectObject(dc, font) : 0;
  int32_t widest = 0;
  for (int32_t i = 0; i < count; ++i) {
    const String text = m_list->Item(i).ToString();
    platform::SIZE size{};
    if (platform::GetTextExtentPoint32W(dc, std::u16string_view(text), &size)) widest = std::max(widest, size.cx);
  }
  if (font) {
    platform::SelectObject(dc, old);
    platform::DeleteObject(font);
  }
  platform::DeleteDC(dc);
  return widest;
}

void USComboBox::SetCustomItemWidth(int32_t xCustomItemWidthOFFSET, bool xRedraw) {
  m_listItemWidth = static_cast<float>(MeasureItemsWidth() + xCustomItemWidthOFFSET);
  m_listItemWidthCustom = true;
  PropertyChanged(u"ListItemWidth");
  PropertyChanged(u"ListItemWidthCustom");
  if (m_listOpen) PlaceList();
  if (xRedraw) {
    m_listRedraw = true;
    Step([&] { m_list->Redraw(m_redraw); });
  }
}

// ---- Position ------------------------------------------------------------------------------------

namespace {

// The index to select: the one found, else the fallback, kept to what the list can take.
[[nodiscard]] int32_t PositionFor(int32_t found, int32_t fallback, int32_t count) {
  const int32_t index = found >= 0 ? found : fallback;
  return index >= -1 && index < count ? index : -1;
}

}  // namespace

void USComboBox::SetIndexPositionByStr(StringView xToFind, int32_t xIndexForNonData, int32_t xCompare,
                                       bool xCustomItemWidth, int32_t xCustomItemWidthOFFSET, bool xRedraw) {
  if (xCustomItemWidth) SetCustomItemWidth(xCustomItemWidthOFFSET, false);
  ListIndex(PositionFor(GetIndexFromStr(xToFind, xCompare, true), xIndexForNonData, ListCount()));
  if (xRedraw) RedrawAndSetIndexPosition(ListIndex());
}

void USComboBox::SetIndexPositionByNum(int32_t xToFind, int32_t xIndexForNonData, bool xCustomItemWidth,
                                       int32_t xCustomItemWidthOFFSET, bool xRedraw) {
  if (xCustomItemWidth) SetCustomItemWidth(xCustomItemWidthOFFSET, false);
  ListIndex(PositionFor(GetIndexFromData(xToFind, true), xIndexForNonData, ListCount()));
  if (xRedraw) RedrawAndSetIndexPosition(ListIndex());
}

void USComboBox::SetIndexPositionByNumEx(double xToFind, int32_t xIndexForNonData, bool xCustomItemWidth,
                                         int32_t xCustomItemWidthOFFSET, bool xRedraw, bool xToFindAsDATA) {
  if (xCustomItemWidth) SetCustomItemWidth(xCustomItemWidthOFFSET, false);
  int32_t found = -1;
  if (xToFindAsDATA) {
    found = GetIndexFromData(static_cast<int32_t>(std::lround(xToFind)), true);
  } else {
    // The first item whose text reads as that number ("10", "10,0" and " 10" alike).
    for (int32_t i = 0, n = ListCount(); i < n && found < 0; ++i) {
      double value = 0;
      if (host::ParseNumber(host::Trim(m_list->Item(i).ToString()), value) == host::NumberParse::Ok &&
          value == xToFind)
        found = i;
    }
  }
  ListIndex(PositionFor(found, xIndexForNonData, ListCount()));
  if (xRedraw) RedrawAndSetIndexPosition(ListIndex());
}

void USComboBox::RedrawAndSetIndexPosition(int32_t Index) {
  m_listRedraw = true;
  Step([&] { m_list->Redraw(m_redraw); });
  if (Index != ListIndex()) ListIndex(Index);
}

int32_t USComboBox::GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult) const {
  return m_list->GetIndexFromData(xDataToFind, DefaultAsNullResult);
}

int32_t USComboBox::GetIndexFromStr(StringView xTextToFind, int32_t xCompare, bool DefaultAsNullResult) const {
  return m_list->GetIndexFromStr(xTextToFind, xCompare, DefaultAsNullResult);
}

int32_t USComboBox::FindFirst(StringView FindString, int32_t StartIndex, bool StartWith) const {
  return m_list->FindFirst(FindString, StartIndex, StartWith);
}

// ---- Forwarded to the list ------------------------------------------------------------------------

void USComboBox::AddItem(const Variant& Item, int32_t ItemData, int32_t ItemIcon, int32_t ItemIconSelected,
                         int32_t ItemForeColor, bool ItemEnabled, StringView ItemToolTip,
                         std::shared_ptr<host::StdPicture> ItemMouseIcon, bool ItemSeparatorLine,
                         StringView ItemTag) {
  m_list->AddItem(Item, ItemData, ItemIcon, ItemIconSelected, ItemForeColor, ItemEnabled, ItemToolTip,
                  std::move(ItemMouseIcon), ItemSeparatorLine, ItemTag);
  if (m_listOpen) PlaceList();
}

void USComboBox::ModifyItem(int32_t Index, const Variant& Item, int32_t ItemData, int32_t ItemIcon,
                            int32_t ItemIconSelected, int32_t ItemForeColor, bool ItemEnabled,
                            StringView ItemToolTip, std::shared_ptr<host::StdPicture> ItemMouseIcon,
                            bool ItemSeparatorLine, StringView ItemTag) {
  m_list->ModifyItem(Index, Item, ItemData, ItemIcon, ItemIconSelected, ItemForeColor, ItemEnabled, ItemToolTip,
                     std::move(ItemMouseIcon), ItemSeparatorLine, ItemTag);
  // The current item's new text shows in the box.
  if (Index == m_list->ListIndex()) SetTextFromCode(m_list->Item(Index).ToString(), false);
}

void USComboBox::RemoveItem(int32_t Index) {
  m_list->RemoveItem(Index);
  if (m_listOpen) {
    if (ListCount() == 0 && !m_showEmptyList) HideList();
    else PlaceList();
  }
}

void USComboBox::Clear() {
  m_list->Clear();
  if (m_listOpen && !m_showEmptyList) HideList();
  SetTextFromCode(u"", false);
}

void USComboBox::ClearEx(bool xLockChange) {
  const bool old = m_lockChange;
  m_lockChange = xLockChange;
  Step([&] { Clear(); });
  m_lockChange = old;
}

void USComboBox::Order() { m_list->Order(); }

void USComboBox::SetUSImageList(const std::shared_ptr<controls::USImageList>& ImageListControl, StringView Key) {
  m_list->SetUSImageList(ImageListControl, Key);
}

Variant USComboBox::Item(int32_t Index) const { return m_list->Item(Index); }
void USComboBox::Item(int32_t Index, const Variant& value) {
  m_list->Item(Index, value);
  if (Index == m_list->ListIndex()) SetTextFromCode(value.ToString(), false);
}
int32_t USComboBox::ItemData(int32_t Index) const { return m_list->ItemData(Index); }
void USComboBox::ItemData(int32_t Index, int32_t value) { m_list->ItemData(Index, value); }
int32_t USComboBox::ItemIcon(int32_t Index) const { return m_list->ItemIcon(Index); }
void USComboBox::ItemIcon(int32_t Index, int32_t value) { m_list->ItemIcon(Index, value); }
int32_t USComboBox::ItemIconSelected(int32_t Index) const { return m_list->ItemIconSelected(Index); }
void USComboBox::ItemIconSelected(int32_t Index, int32_t value) { m_list->ItemIconSelected(Index, value); }
int32_t USComboBox::ItemForeColor(int32_t Index) const { return m_list->ItemForeColor(Index); }
void USComboBox::ItemForeColor(int32_t Index, int32_t value) { m_list->ItemForeColor(Index, value); }
bool USComboBox::ItemEnabled(int32_t Index) const { return m_list->ItemEnabled(Index); }
void USComboBox::ItemEnabled(int32_t Index, bool value) { m_list->ItemEnabled(Index, value); }
String USComboBox::ItemToolTip(int32_t Index) const { return m_list->ItemToolTip(Index); }
void USComboBox::ItemToolTip(int32_t Index, StringView value) { m_list->ItemToolTip(Index, value); }
std::shared_ptr<host::StdPicture> USComboBox::ItemMouseIcon(int32_t Index) const { return m_list->ItemMouseIcon(Index); }
void USComboBox::ItemMouseIcon(int32_t Index, std::shared_ptr<host::StdPicture> value) {
  m_list->ItemMouseIcon(Index, std::move(value));
}
bool USComboBox::ItemSeparatorLine(int32_t Index) const { return m_list->ItemSeparatorLine(Index); }
void USComboBox::ItemSeparatorLine(int32_t Index, bool value) { m_list->ItemSeparatorLine(Index, value); }
String USComboBox::ItemTag(int32_t Index) const { return m_list->ItemTag(Index); }
void USComboBox::ItemTag(int32_t Index, StringView value) { m_list->ItemTag(Index, value); }
int32_t USComboBox::ListIndex() const { return m_list->ListIndex(); }
void USComboBox::ListIndex(int32_t value) { m_list->ListIndex(value); }
int32_t USComboBox::ListCount() const { return m_list->ListCount(); }

}  // namespace mx::entry
