// USComboBox: txtCombo's text and keys, the list's events, the mouse on the control and hover.
#include <algorithm>

#include "controls/ControlSupport.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;

namespace {

constexpr int16_t kKeyBackspace = 8;
constexpr int16_t kKeyDelete = 46;

// Sets a flag for the length of a scope and puts the old value back.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : m_flag(flag), m_old(flag) { m_flag = true; }
  ~FlagScope() { m_flag = m_old; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

 private:
  bool& m_flag;
  bool m_old;
};

}  // namespace

void USComboBox::ConnectText() {
  host::TextBox& box = *m_text;
  box.Change.connect([this] { OnTextChange(); });
  box.KeyDown.connect([this](int16_t& k, int16_t& s) { OnTextKeyDown(k, s); });
  box.KeyPress.connect([this](int16_t& k) {
    Step([&] { KeyPress(k); });
    // The list style takes no text; a character picks the next item that begins with it.
    if (m_style == Dropdown_List && k >= 32) Step([&] { JumpToInitial(static_cast<char16_t>(k)); });
  });
  box.KeyUp.connect([this](int16_t& k, int16_t& s) { Step([&] { KeyUp(k, s); }); });
  box.Click.connect([this] { Step([&] { Click(); }); });
  box.DblClick.connect([this] { Step([&] { DblClick(); }); });
  // Mouse positions arrive in twips of txtCombo; the control speaks pixels of its own window.
  auto relay = [this](host::Event<int16_t&, int16_t&, float&, float&>& target, bool press) {
    return [this, &target, press](int16_t& b, int16_t& s, float& x, float& y) {
      const host::Screen& screen = host::GetScreen();
      float px = x / screen.TwipsPerPixelX() + kTextInset;
      float py = y / screen.TwipsPerPixelY() + kTextInset;
      // The list style's text is no place to type: a press there works the list, as the
      // arrow does.
      if (press && m_style == Dropdown_List && b == host::vbLeftButton) {
        Step([&] {
          if (m_listOpen) HideList();
          else ShowList();
        });
      }
      Step([&] { target(b, s, px, py); });
    };
  };
  box.MouseDown.connect(relay(MouseDown, true));
  box.MouseMove.connect(relay(MouseMove, false));
  box.MouseUp.connect(relay(MouseUp, false));
  box.SetSiteFilter([this](uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    return OnTextSiteMessage(msg, wParam, lParam);
  });
}

void USComboBox::ConnectList() {
  USListBox& list = *m_list;
  list.ListIndexChange.connect([this] { OnListIndexChange(); });
  list.Scroll.connect([this] { Step([&] { Scroll(); }); });
  list.TopIndexChange.connect([this] { Step([&] { TopIndexChange(); }); });
  // A click on a row: pressed and released over the same enabled row, which is then current.
  list.MouseDown.connect(
      [this](int16_t& b, int16_t&, float&, float&) { m_rowPressed = b == host::vbLeftButton && m_listOpen; });
  list.MouseUp.connect([this](int16_t& b, int16_t&, float& x, float& y) {
    if (!m_rowPressed || b != host::vbLeftButton) return;
    m_rowPressed = false;
    const int32_t row = m_list->TopIndex() + static_cast<int32_t>(y) / std::max(1, m_list->ItemHeight());
    if (x < 0 || y < 0 || row < 0 || row >= m_list->ListCount()) return;
    if (row != m_list->ListIndex() || !m_list->ItemEnabled(row)) return;
    OnListClick();
  });
}

bool USComboBox::OnTextSiteMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) {
  // txtCombo is part of this control, not a control of the form: the form's key routing only
  // hears the control's own window. Tab, and Enter and Esc while the list is closed, are handed
  // to that window, so that they move the focus and reach the form's default and cancel
  // buttons as from any other control.
  const platform::HWND own = UserControl::hWnd();
  if (!own || !Parent()) return false;
  if (msg != platform::WM_KEYDOWN && msg != platform::WM_CHAR) return false;
  const auto key = static_cast<int>(wParam);
  bool pass = false;
  if (msg == platform::WM_KEYDOWN) {
    pass = key == platform::VK_TAB || (!m_listOpen && (key == platform::VK_RETURN || key == platform::VK_ESCAPE));
    if (pass && (platform::GetKeyState(platform::VK_CONTROL) < 0 || platform::GetKeyState(platform::VK_MENU) < 0))
      pass = false;
  } else {
    // The characters of the keys passed on go the same way.
    pass = key == u'\t' || (!m_listOpen && (key == u'\r' || key == 27));
  }
  if (!pass) return false;
  // Tab leaves the combo: its list goes at once rather than at the next look of TRelease.
  if (msg == platform::WM_KEYDOWN && key == platform::VK_TAB && m_listOpen) Step([&] { HideList(); });
  platform::SendMessageW(own, msg, wParam, lParam);
  return true;
}

void USComboBox::OnTextKeyDown(int16_t& KeyCode, int16_t& Shift) {
  m_deleting = KeyCode == kKeyBackspace || KeyCode == kKeyDelete;
  bool handled = false;
  Step([&] { handled = HandleKey(KeyCode, Shift); });
  Step([&] { KeyDown(KeyCode, Shift); });
  // The keys the combo used do nothing more in the text box (Up and Down would move the caret).
  if (handled) KeyCode = 0;
}

void USComboBox::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  bool handled = false;
  Step([&] { handled = HandleKey(KeyCode, Shift); });
  Step([&] { KeyDown(KeyCode, Shift); });
  if (handled) KeyCode = 0;
}

bool USComboBox::HandleKey(int16_t& KeyCode, int16_t Shift) {
  const bool alt = (Shift & host::vbAltMask) != 0;
  switch (KeyCode) {
    case platform::VK_F4:
      if (Shift != 0) return false;
      if (m_listOpen) HideList();
      else ShowList();
      return true;
    case platform::VK_UP:
    case platform::VK_DOWN:
      if (alt) {
        if (m_listOpen) HideList();
        else ShowList();
        return true;
      }
      MoveListIndex(KeyCode == platform::VK_DOWN ? 1 : -1);
      return true;
    case platform::VK_NEXT:
      MoveListIndex(m_numberItemsToShow);
      return true;
    case platform::VK_PRIOR:
      MoveListIndex(-m_numberItemsToShow);
      return true;
    case platform::VK_RETURN:
      if (!m_listOpen) return false;
      HideList();
      return true;
    case platform::VK_ESCAPE: {
      if (!m_listOpen) return false;
      // Closing without a choice: what was current when the list opened comes back.
      const int32_t index = m_indexAtOpen;
      const String text = m_textAtOpen;
      HideList();
      if (ListIndex() != index) Step([&] { ListIndex(index); });
      if (m_text->Text() != text) SetTextFromCode(text, true);
      return true;
    }
    default: return false;
  }
}

void USComboBox::MoveListIndex(int32_t delta) {
  const int32_t count = ListCount();
  if (count <= 0) return;
  const int32_t current = ListIndex();
  // From no item, either direction starts at the first.
  const int32_t next = current < 0 ? 0 : std::clamp(current + delta, 0, count - 1);
  if (next != current) ListIndex(next);
}

void USComboBox::JumpToInitial(char16_t initial) {
  const int32_t count = ListCount();
  if (count == 0) return;
  const String key(1, initial);
  // From the item after the current one, round to the start.
  const int32_t from = ListIndex() + 1;
  int32_t found = from < count ? m_list->FindFirst(key, from, true) : -1;
  if (found < 0) found = m_list->FindFirst(key, 0, true);
  if (found >= 0 && found != ListIndex()) ListIndex(found);
}

void USComboBox::SetTextFromCode(StringView value, bool selectAll) {
  {
    FlagScope scope(m_settingText);
    if (m_text->Text() != value) m_text->Text(value);
  }
  if (selectAll) {
    m_text->SelStart(0);
    m_text->SelLength(host::Len(m_text->Text()));
  }
}

void USComboBox::OnTextChange() {
  const String text = m_text->Text();
  // The auto-complete writing the rest of an item: the typed change raises Change once, below.
  if (m_completing) return;
  if (!m_settingText && !m_lockChange && ListCount() > 0) {
    if (m_autoOpenOnChange && !m_listOpen) Step([&] { ShowList(); });
    if (m_autoComplete && !m_deleting && !text.empty() && m_style == Dropdown_Combo)
      Step([&] { AutoCompleteFrom(text); });
  }
  m_deleting = false;
  if (!m_lockChange) Step([&] { Change(); });
}

void USComboBox::AutoCompleteFrom(const String& typed) {
  int32_t index = m_list->FindFirst(typed, 0, true);
  if (index < 0) index = m_list->FindFirst(typed, 0, false);
  if (index < 0) return;
  const String item = m_list->Item(index).ToString();
  FlagScope scope(m_completing);
  if (m_list->ListIndex() != index) Step([&] { m_list->ListIndex(index); });
  // The typed part stays as typed; the rest of the item follows, selected, so that the next key
  // types over it.
  const int32_t typedLength = host::Len(typed);
  if (host::Len(item) > typedLength) {
    m_text->Text(typed + item.substr(static_cast<size_t>(typedLength)));
    m_text->SelStart(typedLength);
    m_text->SelLength(host::Len(item) - typedLength);
  }
}

void USComboBox::OnListIndexChange() {
  if (!m_completing) {
    const int32_t index = m_list->ListIndex();
    Step([&] {
      if (index >= 0) SetTextFromCode(m_list->Item(index).ToString(), true);
      else if (m_style == Dropdown_List) SetTextFromCode(u"", false);
    });
  }
  Step([&] { ListIndexChange(); });
}

void USComboBox::OnListClick() {
  const int32_t index = m_list->ListIndex();
  if (index >= 0) Step([&] { SetTextFromCode(m_list->Item(index).ToString(), true); });
  Step([&] { ItemClicked(); });
  // The list is closed once its own mouse handling is over.
  const platform::HWND own = UserControl::hWnd();
  if (own) platform::PostMessageW(own, kCloseListMessage, 0, 0);
}

bool USComboBox::PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
  (void)lParam;
  if (msg == platform::WM_TIMER && wParam == kReleaseTimerId) {
    Step([&] { OnReleaseTimer(); });
    lResult = 0;
    return true;
  }
  if (msg == kCloseListMessage) {
    Step([&] {
      if (!m_listOpen) return;
      HideList();
      if (m_text->hWnd() && UserControl::Enabled()) platform::SetFocus(m_text->hWnd());
    });
    lResult = 0;
    return true;
  }
  return false;
}

// ---- The control's own window: the arrow button and the border ------------------------------------

void USComboBox::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  if (Button == host::vbLeftButton) {
    const platform::RECT button = ButtonRect();
    const bool onButton = X >= static_cast<float>(button.left) && X < static_cast<float>(button.right) &&
                          Y >= static_cast<float>(button.top) && Y < static_cast<float>(button.bottom);
    if (onButton || m_style == Dropdown_List) {
      Step([&] {
        if (m_listOpen) HideList();
        else ShowList();
      });
    }
  }
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void USComboBox::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}

void USComboBox::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USComboBox::UserControl_Click() { Step([&] { Click(); }); }

void USComboBox::UserControl_DblClick() { Step([&] { DblClick(); }); }

// ---- Hover -----------------------------------------------------------------------------------------

void USComboBox::OnMouseEnter() {
  if (m_mouseOver) return;
  m_mouseOver = true;
  Step([&] { DrawCombo(-1, false); });
  Step([&] { MouseEnter(); });
}

void USComboBox::OnMouseExit() {
  if (!m_mouseOver) return;
  // Leaving the control's window for txtCombo, or the other way, is no exit.
  platform::POINT pt{};
  platform::GetCursorPos(&pt);
  const platform::HWND under = platform::WindowFromPoint(pt);
  const platform::HWND own = UserControl::hWnd();
  if (under && (under == own || platform::IsChild(own, under))) return;
  m_mouseOver = false;
  Step([&] { DrawCombo(-1, false); });
  Step([&] { MouseExit(); });
}

}  // namespace mx::entry
