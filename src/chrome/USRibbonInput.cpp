// USRibbon: hover, press and click through the hit areas, the keyboard, and the events.
//
// Two hover marks are kept apart: the category plate under the pointer (lit wherever the pointer
// is inside it, buttons included) and the topmost item under it (a tab, a button, a launcher or
// a tab button). A press remembers its item; the release raises the item's event only when it
// comes over the same item. Disabled buttons neither light nor press nor raise.
#include <cwctype>

#include "chrome/USRibbon.h"
#include "controls/ControlSupport.h"
#include "controls/HandCursor.h"
#include "frame/APITooltip.h"
#include "host/Form.h"
#include "host/Screen.h"
#include "platform/Messages.h"
#include "platform/Window.h"

namespace mx::chrome {

using controls::detail::Step;
using A = RibbonArray;

namespace {

bool Hits(const std::vector<RibbonElement>& members, int32_t x, int32_t y, int32_t& row) {
  // Later members lie over earlier ones.
  for (size_t i = members.size(); i-- > 1;)
    if (members[i].Visible && members[i].Contains(x, y)) {
      row = members[i].Row;
      return true;
    }
  return false;
}

}  // namespace

RibbonTarget USRibbon::HitTest(int32_t x, int32_t y) const {
  if (!m_built) return {};
  int32_t row = -1;
  if (Hits(Elements(A::ButTabMouse), x, y, row)) return {RibbonHit::TabButton, row};
  if (Hits(Elements(A::TabMouse), x, y, row)) return {RibbonHit::Tab, row};
  if (Hits(Elements(A::Cat_Dlg), x, y, row)) return {RibbonHit::Launcher, row};
  if (Hits(Elements(A::ButMouse), x, y, row)) return {RibbonHit::Button, row};
  if (Hits(Elements(A::CatMouse), x, y, row)) return {RibbonHit::Category, row};
  return {};
}

bool USRibbon::ButtonRowEnabled(int32_t row) const {
  if (row < 0 || row >= ButtonCount()) return false;
  return ButtonEnabled(m_buttons[static_cast<size_t>(row)].index);
}

// ---- Hover and press ------------------------------------------------------------------------------

void USRibbon::ShowHover(RibbonTarget t, bool on) {
  if (t.row < 0) return;
  switch (t.kind) {
    case RibbonHit::Tab:
      // The selected tab has no hover mark: it is lit already.
      if (on && m_tabs[static_cast<size_t>(t.row)].index == m_currentTab) on = false;
      for (A a : {A::Tab_left_over, A::Tab_center_over, A::Tab_right_over}) SetVisible(a, t.row, on);
      break;
    case RibbonHit::Button: {
      for (A a : {A::Button_left_over, A::Button_center_over, A::Button_right_over}) SetVisible(a, t.row, on);
      const bool mark = m_buttons[static_cast<size_t>(t.row)].showDlg;
      SetVisible(A::Glip_on, t.row, mark && on);
      SetVisible(A::Glip_off, t.row, mark && !on);
      break;
    }
    case RibbonHit::Launcher:
      SetVisible(A::Cat_Dlg_over, t.row, on);
      break;
    case RibbonHit::TabButton:
      SetVisible(A::TabButonOn, t.row, on);
      break;
    default:
      break;
  }
}

void USRibbon::SetHover(RibbonTarget target) {
  if (target == m_hover) return;
  ShowHover(m_hover, false);
  m_hover = target;
  ShowHover(target, true);
  ApplyPointer(target);
  UpdateToolTip(target);
}

void USRibbon::UpdateToolTip(RibbonTarget target) {
  if (!m_userMode) return;
  String tip;
  if (target.kind == RibbonHit::Button && target.row >= 0 && target.row < ButtonCount())
    tip = m_buttons[static_cast<size_t>(target.row)].toolTip;
  else if (target.kind == RibbonHit::TabButton && target.row >= 0 && target.row < TabButtonCount())
    tip = m_tabButtons[static_cast<size_t>(target.row)].toolTip;
  if (tip.empty()) {
    Step([&] { m_toolTip.reset(); });
    return;
  }
  // From one item with a tip to the next only the text changes, which a live tip takes at once.
  Step([&] {
    if (m_toolTip && m_toolTip->hWnd()) {
      if (m_toolTip->TipText() != tip) m_toolTip->TipText(tip);
      return;
    }
    if (!m_toolTip) m_toolTip = std::make_unique<frame::APITooltip>();
    m_toolTip->Style(frame::ToolTip_Standard);
    m_toolTip->TipText(tip);
    m_toolTip->Create(UserControl::hWnd());
  });
}

void USRibbon::SetHoverCategory(int32_t catRow) {
  if (catRow == m_hoverCat) return;
  const auto show = [&](int32_t row, bool on) {
    if (row < 0 || row >= CatCount()) return;
    for (A a : {A::Cat_Left_on, A::Cat_Center_on, A::Cat_Right_on}) SetVisible(a, row, on);
    if (m_cats[static_cast<size_t>(row)].showDlg) SetVisible(A::Cat_Dlg_on, row, on);
  };
  show(m_hoverCat, false);
  m_hoverCat = catRow;
  show(catRow, true);
}

void USRibbon::ShowPressed(RibbonTarget t, bool on) {
  if (t.row < 0) return;
  switch (t.kind) {
    case RibbonHit::Button:
      for (A a : {A::Button_left, A::Button_center, A::Button_right}) SetVisible(a, t.row, on);
      break;
    case RibbonHit::Launcher:
      SetVisible(A::Cat_Dlg_down, t.row, on);
      break;
    case RibbonHit::TabButton:
      SetVisible(A::TabButonOver, t.row, on);
      break;
    default:
      break;
  }
}

void USRibbon::ApplyPointer(RibbonTarget target) {
  const bool hand = (target.kind == RibbonHit::Button && m_buttonHandPointer) ||
                    (target.kind == RibbonHit::TabButton && m_tabButtonHandPointer);
  const int16_t pointer = hand ? host::vbCustom : host::vbDefault;
  if (UserControl::MousePointer() == pointer) return;
  Step([&] { UserControl::MouseIcon(hand ? controls::HandCursorPicture() : nullptr); });
  Step([&] { UserControl::MousePointer(pointer); });
}

void USRibbon::PointerMoved(int32_t x, int32_t y) {
  if (!m_built) return;
  RibbonTarget t = HitTest(x, y);
  if (t.kind == RibbonHit::Button && !ButtonRowEnabled(t.row)) t = {};
  // The category under the pointer, whatever lies over its plate.
  int32_t cat = -1;
  int32_t row = -1;
  if (Hits(Elements(A::CatMouse), x, y, row)) cat = row;
  SetHoverCategory(cat);
  SetHover(t.kind == RibbonHit::Category ? RibbonTarget{} : t);
  // A pressed item shows pressed only while the pointer is over it.
  if (m_pressed.kind != RibbonHit::None) ShowPressed(m_pressed, t == m_pressed);
  // Only what changed is painted again; a move inside one item paints nothing.
  ComposeDirty();
}

void USRibbon::PointerLeft() {
  if (!m_built) return;
  if (m_hover.kind == RibbonHit::None && m_hoverCat < 0) return;
  SetHover({});
  SetHoverCategory(-1);
  ComposeDirty();
}

// ---- Clicks and events --------------------------------------------------------------------------------

void USRibbon::ElementPosition(const RibbonElement& e, float& x, float& y) const {
  // The element's lower left corner, in the parent's client area and its scale (twips on a
  // form): where a host drops a menu for the item.
  platform::POINT pt{e.Left, e.Top + e.Height};
  const platform::HWND self = UserControl::hWnd();
  const platform::HWND parent = self ? platform::GetParent(self) : 0;
  if (parent && Parent()) {
    platform::MapWindowPoints(self, parent, &pt, 1);
    const host::Screen& screen = host::GetScreen();
    x = static_cast<float>(pt.x) * screen.TwipsPerPixelX();
    y = static_cast<float>(pt.y) * screen.TwipsPerPixelY();
    return;
  }
  // Without a form there is no scale to convert to: pixels of the band.
  x = static_cast<float>(pt.x);
  y = static_cast<float>(pt.y);
}

void USRibbon::RunClick(RibbonTarget t) {
  if (t.row < 0) return;
  float x = 0, y = 0;
  switch (t.kind) {
    case RibbonHit::Tab: {
      const int32_t index = m_tabs.at(static_cast<size_t>(t.row)).index;
      Step([&] { SelectTab(index, false); });
      Step([&] { TabClick(index); });
      break;
    }
    case RibbonHit::Category: {
      const int32_t index = m_cats.at(static_cast<size_t>(t.row)).index;
      ElementPosition(Element(A::CatMouse, t.row), x, y);
      Step([&] { CatClick(index, x, y); });
      break;
    }
    case RibbonHit::Launcher: {
      const int32_t index = m_cats.at(static_cast<size_t>(t.row)).index;
      ElementPosition(Element(A::Cat_Dlg, t.row), x, y);
      Step([&] { CatClick(index, x, y); });
      break;
    }
    case RibbonHit::Button: {
      if (!ButtonRowEnabled(t.row)) return;
      const int32_t index = m_buttons.at(static_cast<size_t>(t.row)).index;
      ElementPosition(Element(A::ButMouse, t.row), x, y);
      Step([&] { ButtonClick(index, x, y); });
      break;
    }
    case RibbonHit::TabButton: {
      const int32_t index = m_tabButtons.at(static_cast<size_t>(t.row)).index;
      ElementPosition(Element(A::ButTabMouse, t.row), x, y);
      Step([&] { TabButtonClick(index, x, y); });
      break;
    }
    default:
      break;
  }
}

void USRibbon::UserControl_MouseMove(int16_t& /*Button*/, int16_t& /*Shift*/, float& X, float& Y) {
  m_lastPointer = {static_cast<int32_t>(X), static_cast<int32_t>(Y)};
  Step([&] { PointerMoved(m_lastPointer.x, m_lastPointer.y); });
}

void USRibbon::PressAt(int32_t x, int32_t y) {
  if (!m_built) return;
  Step([&] {
    RibbonTarget t = HitTest(x, y);
    if (t.kind == RibbonHit::Button && !ButtonRowEnabled(t.row)) t = {};
    ShowPressed(m_pressed, false);
    m_pressed = t;
    ShowPressed(t, true);
    if (t.kind == RibbonHit::Button && t.row != m_focusButton) {
      // The focus mark moves with the press: both buttons are painted again.
      if (m_showButtonFocus && m_hasFocus) {
        if (InCurrentView(m_focusButton)) MarkDirty(Element(A::ButMouse, m_focusButton).Rect());
        MarkDirty(Element(A::ButMouse, t.row).Rect());
      }
      m_focusButton = t.row;
    }
    ComposeDirty();
  });
}

void USRibbon::UserControl_MouseDown(int16_t& Button, int16_t& /*Shift*/, float& X, float& Y) {
  if (Button != host::vbLeftButton) return;
  m_lastPointer = {static_cast<int32_t>(X), static_cast<int32_t>(Y)};
  PressAt(m_lastPointer.x, m_lastPointer.y);
}

// The host turns the second of two quick presses into a double click with no press of its own;
// on a ribbon each press counts, so it presses where the pointer last was.
void USRibbon::UserControl_DblClick() { PressAt(m_lastPointer.x, m_lastPointer.y); }

void USRibbon::UserControl_MouseUp(int16_t& Button, int16_t& /*Shift*/, float& X, float& Y) {
  if (Button != host::vbLeftButton || !m_built) return;
  const RibbonTarget pressed = m_pressed;
  if (pressed.kind == RibbonHit::None) return;
  RibbonTarget t{};
  Step([&] { t = HitTest(static_cast<int32_t>(X), static_cast<int32_t>(Y)); });
  Step([&] {
    ShowPressed(pressed, false);
    m_pressed = {};
    ComposeDirty();
  });
  if (t == pressed) RunClick(pressed);
}

// ---- Keyboard -----------------------------------------------------------------------------------------

void USRibbon::MoveTab(int32_t step) {
  if (m_tabs.empty() || !m_showTabs) return;
  int32_t row = TabRowOf(m_currentTab);
  const int32_t next = row < 0 ? 0 : row + step;
  if (next < 0 || next >= TabCount() || next == row) return;
  RunClick({RibbonHit::Tab, next});
}

void USRibbon::MoveButtonFocus(int32_t step) {
  const std::vector<int32_t> rows = CurrentButtons();
  if (rows.empty()) return;
  const auto it = std::find(rows.begin(), rows.end(), m_focusButton);
  int32_t pos = 0;
  if (it == rows.end()) pos = step > 0 ? 0 : static_cast<int32_t>(rows.size()) - 1;
  else pos = std::clamp(static_cast<int32_t>(it - rows.begin()) + step, 0, static_cast<int32_t>(rows.size()) - 1);
  if (rows[static_cast<size_t>(pos)] == m_focusButton) return;
  m_focusButton = rows[static_cast<size_t>(pos)];
  if (m_showButtonFocus) Compose();
}

void USRibbon::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (Shift != 0 || !m_built) return;
  Step([&] {
    switch (KeyCode) {
      case platform::VK_RETURN:
        if (InCurrentView(m_focusButton)) RunClick({RibbonHit::Button, m_focusButton});
        break;
      case platform::VK_LEFT:
        MoveTab(-1);
        break;
      case platform::VK_RIGHT:
        MoveTab(1);
        break;
      case platform::VK_UP:
        MoveButtonFocus(-1);
        break;
      case platform::VK_DOWN:
        MoveButtonFocus(1);
        break;
      default:
        break;
    }
  });
}

void USRibbon::UserControl_AccessKeyPress(int16_t& KeyAscii) {
  if (!m_built) return;
  const auto key = static_cast<char16_t>(std::towlower(static_cast<wint_t>(KeyAscii)));
  for (int32_t row : CurrentButtons()) {
    const ButtonRow& b = m_buttons[static_cast<size_t>(row)];
    if (b.hotKey.size() == 1 && b.hotKey[0] == key && ButtonRowEnabled(row)) {
      m_focusButton = row;
      Step([&] { Compose(); });
      RunClick({RibbonHit::Button, row});
      return;
    }
  }
}

void USRibbon::UserControl_GotFocus() {
  m_hasFocus = true;
  if (m_focusButton < 0) {
    const std::vector<int32_t> rows = CurrentButtons();
    if (!rows.empty()) m_focusButton = rows.front();
  }
  if (m_showButtonFocus) Step([&] { Compose(); });
}

void USRibbon::UserControl_LostFocus() {
  m_hasFocus = false;
  if (m_showButtonFocus) Step([&] { Compose(); });
}

}  // namespace mx::chrome
