// USTextBoxEx: the inner box's keys, changes, focus and mouse, filtered and passed on.
#include <algorithm>

#include "controls/ControlSupport.h"
#include "entry/APITextEvents.h"
#include "entry/ShellAutoComplete.h"
#include "entry/USTextBoxEx.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"

namespace mx::entry {

using controls::detail::Step;

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kDelete = 46;
constexpr int16_t kMinus = 45;

// Sets a flag for the life of a handler, so that the changes it makes pass straight through.
class HandlerScope {
 public:
  explicit HandlerScope(bool& flag) : m_flag(flag) { m_flag = true; }
  ~HandlerScope() { m_flag = false; }
  HandlerScope(const HandlerScope&) = delete;
  HandlerScope& operator=(const HandlerScope&) = delete;

 private:
  bool& m_flag;
};

}  // namespace

void USTextBoxEx::ConnectInner() {
  host::TextBox& box = *m_inner;
  m_innerConnections = {
      box.KeyDown.connect([this](int16_t& k, int16_t& s) { OnInnerKeyDown(k, s); }),
      box.KeyPress.connect([this](int16_t& k) { OnInnerKeyPress(k); }),
      box.KeyUp.connect([this](int16_t& k, int16_t& s) { Step([&] { KeyUp(k, s); }); }),
      box.Change.connect([this] { OnInnerChange(); }),
      box.GotFocus.connect([this] { OnInnerGotFocus(); }),
      box.LostFocus.connect([this] { OnInnerLostFocus(); }),
      box.Click.connect([this] { OnInnerClick(); }),
      box.DblClick.connect([this] { Step([&] { DblClick(); }); }),
  };
  // Mouse positions arrive in twips of the inner box; the control speaks pixels of its own.
  auto relay = [this](host::Event<int16_t&, int16_t&, float&, float&>& target) {
    return [this, &target](int16_t& b, int16_t& s, float& x, float& y) {
      if (!m_routed) return;
      const host::Screen& screen = host::GetScreen();
      float px = x / screen.TwipsPerPixelX() + 3;
      float py = y / screen.TwipsPerPixelY() + 3;
      Step([&] { target(b, s, px, py); });
    };
  };
  m_innerConnections.push_back(box.MouseDown.connect(relay(MouseDown)));
  m_innerConnections.push_back(box.MouseMove.connect(relay(MouseMove)));
  m_innerConnections.push_back(box.MouseUp.connect(relay(MouseUp)));
  box.SetSiteFilter([this](uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    return OnInnerSiteMessage(msg, wParam, lParam);
  });
}

void USTextBoxEx::DestroySubClass() { m_routed = false; }

bool USTextBoxEx::OnInnerSiteMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) {
  // The inner box is a part of this control, not a control of the form: the form's key routing
  // only hears the control's own window. Tab and Shift+Tab typed in the inner box are handed to
  // that window, so that they move the focus through the form as from any other control.
  const platform::HWND own = UserControl::hWnd();
  if (!own || !Parent()) return false;
  if (msg == platform::WM_KEYDOWN) {
    m_tabPassed = false;
    m_tabTaken = false;
    if (wParam != static_cast<uintptr_t>(platform::VK_TAB)) return false;
    if (platform::GetKeyState(platform::VK_CONTROL) < 0 || platform::GetKeyState(platform::VK_MENU) < 0) return false;
    if (m_shellComplete && platform::GetKeyState(platform::VK_SHIFT) >= 0 && m_shellComplete->WantsTab()) {
      // The file-name completion takes the Tab: it accepts the suggestion instead of leaving.
      m_tabTaken = true;
      Step([&] { m_shellComplete->TakeTab(); });
      return true;
    }
    m_tabPassed = true;
    platform::SendMessageW(own, msg, wParam, lParam);
    return true;
  }
  if (msg == platform::WM_CHAR && m_tabTaken && wParam == u'\t') {
    m_tabTaken = false;
    return true;
  }
  if (msg == platform::WM_CHAR && m_tabPassed && wParam == u'\t') {
    // The character of the Tab the form took: the form swallows it, the inner box never types
    // or raises it.
    m_tabPassed = false;
    platform::SendMessageW(own, msg, wParam, lParam);
    return true;
  }
  return false;
}

void USTextBoxEx::OnInnerKeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (!m_routed) return;
  m_listTookChar = 0;
  if (m_shellComplete && !m_locked) {
    // The suggestion list lies over the box: while it is open its keys are its own and reach
    // neither the host nor the box.
    bool taken = false;
    Step([&] { taken = m_shellComplete->KeyDown(KeyCode, Shift); });
    if (taken) {
      if (KeyCode == platform::VK_RETURN) m_listTookChar = 13;
      else if (KeyCode == platform::VK_ESCAPE) m_listTookChar = 27;
      KeyCode = 0;
      return;
    }
  }
  Step([&] { KeyDown(KeyCode, Shift); });
  // The clipboard shortcuts are noted so that the keys that follow skip every filter; the
  // change they make is reformatted by the change handler.
  m_ctrlZ = KeyCode == 90 && Shift == host::vbCtrlMask;
  m_ctrlX = KeyCode == 88 && Shift == host::vbCtrlMask;
  m_ctrlC = KeyCode == 67 && Shift == host::vbCtrlMask;
  m_ctrlV = KeyCode == 86 && Shift == host::vbCtrlMask;
  if (KeyCode == kBackspace && m_inner->SelStart() == 0 && m_inner->SelLength() == 0) {
    KeyCode = 0;
    return;
  }
  if (!(m_ctrlZ || m_ctrlX || m_ctrlC || m_ctrlV)) Step([&] { HandleKeyDown(KeyCode, Shift); });
}

void USTextBoxEx::HandleKeyDown(int16_t& KeyCode, int16_t& Shift) {
  m_swallowBackspace = false;
  if (m_locked) return;
  HandlerScope scope(m_inHandler);
  if (m_textEvents) Step([&] { m_textEvents->Texto_Verificar(KeyCode); });
  if (Shift == 0 && !m_mask.empty()) {
    const int32_t maskLength = static_cast<int32_t>(m_mask.size());
    if (KeyCode == kDelete || KeyCode == kBackspace) {
      m_swallowBackspace = KeyCode == kBackspace;
      KeyCode = 0;
      const String text = m_inner->Text();
      if (m_inner->SelStart() == 0 && m_inner->SelLength() > 0 && m_inner->SelLength() >= host::Len(text)) {
        ClearControl();
      } else {
        int32_t p = 0;
        const String blanked = MaskBlankSelection(text, m_mask, m_inner->SelStart(), m_inner->SelLength(), p);
        if (p <= maskLength) {
          Text(blanked);
          m_inner->SelStart(p);
          m_maskCaret = p;
        }
      }
    } else if (((KeyCode >= '0' && KeyCode <= '9') || (KeyCode >= 'A' && KeyCode <= 'Z')) &&
               m_inner->SelStart() != maskLength) {
      PrepareMaskEntry();
    }
  }
  Shift = 0;
}

void USTextBoxEx::PrepareMaskEntry() {
  // A selection over the whole mask is typed over from the start, on an empty template.
  const String tmpl = MaskTemplate(m_mask);
  if (m_inner->SelLength() >= static_cast<int32_t>(m_mask.size()) && m_inner->Text() != tmpl) {
    m_inner->Text(tmpl);
    m_maskCaret = 0;
    m_inner->SelStart(0);
  }
}

void USTextBoxEx::OnInnerKeyPress(int16_t& KeyAscii) {
  if (!m_routed) return;
  if (m_listTookChar != 0 && KeyAscii == m_listTookChar) {
    m_listTookChar = 0;
    KeyAscii = 0;
    return;
  }
  Step([&] { KeyPress(KeyAscii); });
  if (KeyAscii == kBackspace && m_swallowBackspace) {
    // The key-down handling already deleted in the mask.
    m_swallowBackspace = false;
    KeyAscii = 0;
    return;
  }
  if (KeyAscii == kBackspace && m_inner->SelStart() == 0 && m_inner->SelLength() == 0) {
    KeyAscii = 0;
    return;
  }
  // A character typed without a key going down first (text put in by an input method) still
  // tells the completions whether text is being added or taken away.
  if (KeyAscii != 0) {
    const int16_t typed = KeyAscii == kBackspace ? kBackspace : 0;
    if (m_textEvents) Step([&] { m_textEvents->Texto_Verificar(typed); });
    if (m_shellComplete) m_shellComplete->CharTyped(KeyAscii);
  }
  if (!(m_ctrlZ || m_ctrlX || m_ctrlC || m_ctrlV)) Step([&] { HandleKeyPress(KeyAscii); });
}

void USTextBoxEx::HandleKeyPress(int16_t& KeyAscii) {
  if (m_locked) return;
  HandlerScope scope(m_inHandler);
  const String text = m_inner->Text();
  if (m_number.formatType != To_Text) {
    if (KeyAscii == kMinus) {
      KeyAscii = 0;
      if (m_number.allowNegativeNumber && text.find(u'-') == String::npos) {
        m_inner->Text(u"-" + text);
        m_inner->SelStart(host::Len(m_inner->Text()));
      }
    } else if (m_number.autoFormatCurrency || m_number.formatType != To_Currency) {
      FilterNumberKey(KeyAscii, false);
    } else {
      FilterNumberKey(KeyAscii, true);
      if (RefusedByDecimalsLimit(text, m_inner->SelStart(), m_inner->SelLength(), KeyAscii, m_number.decimals))
        KeyAscii = 0;
    }
    return;
  }
  KeyAscii = ApplyTextCase(KeyAscii, m_textCase);
  if (!m_mask.empty()) {
    m_maskCaret = m_inner->SelStart();
    const int32_t maskLength = static_cast<int32_t>(m_mask.size());
    if (m_maskCaret < maskLength) {
      const MaskKeyResult r = MaskKeyPress(text, m_mask, m_maskType, m_numberOnly, m_maskCaret, KeyAscii);
      if (r.changed) m_inner->Text(r.text);
      m_inner->SelStart(r.caret);
      m_maskCaret = r.caret;
    } else if (KeyAscii != kBackspace) {
      KeyAscii = 0;
    }
  } else if (m_numberOnly) {
    FilterNumberKey(KeyAscii, false);
  }
}

void USTextBoxEx::OnInnerChange() {
  if (!m_routed) {
    Step([&] { Change(); });
    return;
  }
  if (m_inner->Text() == m_lastText) return;
  Step([&] { OnChange(); });
}

void USTextBoxEx::OnChange() {
  if (!(m_locked || m_inHandler)) {
    HandlerScope scope(m_inHandler);
    const String text = m_inner->Text();
    if (m_number.formatType == To_Currency && m_number.autoFormatCurrency) {
      Step([&] { OnFormatCurrencyAsTyped(); });
    } else if (m_number.formatType == To_Number || m_number.formatType == To_Currency) {
      // An emptied number field shows 0, selected, so that the next digit replaces it.
      const String trimmed = host::Trim(text);
      if (trimmed.empty() && trimmed != u"-") {
        m_inner->Text(u"0");
        m_inner->SelStart(0);
        m_inner->SelLength(1);
      }
    } else if (!m_mask.empty()) {
      const String laid = ApplyMask(text, m_mask, m_maskType, m_numberOnly);
      if (laid != text) m_inner->Text(laid);
      m_inner->SelStart(MaskFirstFree(m_inner->Text(), m_mask));
    } else if (m_numberOnly) {
      // A paste into a digits-only field keeps its digits.
      const String digits = FilterMaskChars(text, Only_Number, true);
      if (digits != text) m_inner->Text(digits);
    }
    if (m_number.formatType == To_Text && m_mask.empty() && m_textEvents) {
      Step([&] { m_textEvents->Texto_AutoCompletar(*m_inner); });
    }
    if (m_number.formatType == To_Text && m_mask.empty() && m_shellComplete) {
      Step([&] { m_shellComplete->TextChanged(); });
    }
    if (m_textCase != Case_Normal) {
      const String cased = ApplyTextCase(m_inner->Text(), m_textCase);
      if (cased != m_inner->Text()) {
        // The selection survives the case: a completion stays selected after the typed text.
        const int32_t caret = m_inner->SelStart();
        const int32_t selected = m_inner->SelLength();
        m_inner->Text(cased);
        m_inner->SelStart(caret);
        m_inner->SelLength(selected);
      }
    }
  }
  m_ctrlZ = m_ctrlX = m_ctrlC = m_ctrlV = false;
  m_lastText = m_inner->Text();
  Step([&] { Change(); });
}

void USTextBoxEx::OnFormatCurrencyAsTyped() {
  const String text = m_inner->Text();
  const int32_t fromEnd = host::Len(text) - m_inner->SelStart();
  const String formatted = FormatCurrencyAsTyped(text, m_number.decimals);
  if (formatted == text) return;
  GrowMaxLengthTo(host::Len(formatted));
  m_inner->Text(formatted);
  m_inner->SelStart(std::max(0, host::Len(formatted) - std::max(0, fromEnd)));
}

void USTextBoxEx::OnInnerGotFocus() {
  if (m_focusPassing) {
    // The focus only went through the control's own window and came back: nothing was left.
    m_focusPassing = false;
    return;
  }
  m_hasFocus = true;
  if (!m_locked) {
    HandlerScope scope(m_inHandler);
    Step([&] { ApplyLook(kLookFocused, true); });
    Step([&] {
      if (m_number.formatType == To_Number || m_number.formatType == To_Currency) {
        String t = m_inner->Text();
        if (!m_number.currencyChar.empty()) t = host::Replace(t, m_number.currencyChar, u"");
        t = host::Trim(t);
        // A currency field shows its plain number while it is edited.
        if (m_number.formatType == To_Currency && !m_number.autoFormatCurrency) t = PlainCurrencyText(t, m_number);
        if (t != m_inner->Text()) m_inner->Text(t);
        m_lastText = m_inner->Text();
      }
    });
    Step([&] {
      if (m_autoSelect) {
        m_inner->SelStart(0);
        m_inner->SelLength(host::Len(m_inner->Text()));
      }
    });
  } else {
    Step([&] { ApplyLook(kLookFocused, true); });
  }
}

void USTextBoxEx::OnInnerLostFocus() {
  // The focus already names its new window here. When that is the control's own window (a
  // SetFocus on a control whose inner box has the focus, a click on the border), the window
  // hands the focus straight back: leaving and entering would reformat the text being edited
  // ("12,5" to "R$ 12,50" and back to "12,50") and move the caret, so both are skipped.
  const platform::HWND own = UserControl::hWnd();
  if (own && platform::GetFocus() == own) {
    m_focusPassing = true;
    return;
  }
  LeaveFocus();
}

void USTextBoxEx::LeaveFocus() {
  m_hasFocus = false;
  if (m_shellComplete) Step([&] { m_shellComplete->Close(); });
  Step([&] { ApplyLook(kLookNormal, true); });
  if (m_locked || m_number.formatType != To_Currency) return;
  HandlerScope scope(m_inHandler);
  Step([&] {
    String t = host::Trim(m_inner->Text());
    if (t.empty() || t == u"-") t = u"0";
    t = FormatNumberEntry(t, m_number);
    GrowMaxLengthTo(host::Len(t));
    if (t != m_inner->Text()) m_inner->Text(t);
    m_lastText = m_inner->Text();
  });
}

void USTextBoxEx::OnInnerClick() {
  if (!m_routed) return;
  if (m_inner->SelLength() == 0 && m_autoSelect && !m_locked &&
      (m_number.formatType == To_Number || m_number.formatType == To_Currency)) {
    Step([&] {
      m_inner->SelStart(0);
      m_inner->SelLength(host::Len(m_inner->Text()));
    });
  }
  Step([&] { Click(); });
}

}  // namespace mx::entry
