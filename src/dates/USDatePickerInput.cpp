// USDatePicker: keys, focus, the pointer over the surface, and the rounded corner.
//
// The focus lives in the text field's inner box (Style 0) or in the control's own window
// (Style 1). Moving between the control's parts is not leaving it; neither is a press on the
// dropped-down calendar, which belongs to the control although it sits on the desktop.
#include "controls/ControlSupport.h"
#include "dates/USCalendarSmall.h"
#include "dates/USDatePicker.h"
#include "entry/USTextBoxEx.h"
#include "frame/APIMouseEvents.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Window.h"
#include "utility/DateFormats.h"
#include "utility/MX.h"

namespace mx::dates {

using controls::detail::Step;

namespace {

constexpr int16_t kKeyReturn = 13;
constexpr int16_t kKeyEscape = 27;
constexpr int16_t kKeyUp = 38;
constexpr int16_t kKeyDown = 40;
constexpr int16_t kKeyF4 = 115;

}  // namespace

// ---- Keys -------------------------------------------------------------------------------------

void USDatePicker::HandleKeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (Shift != 0) return;
  switch (KeyCode) {
    case kKeyReturn:
      if (IsCalendarOpen()) TakeDate(m_calendar->CurrentDate());
      break;
    case kKeyEscape:
      // Swallowed whether or not the calendar is open.
      KeyCode = 0;
      CloseCalendar();
      DrawDatePicker();
      break;
    case kKeyUp:
      KeyCode = 0;
      StepDate(-1);
      break;
    case kKeyDown:
      KeyCode = 0;
      StepDate(1);
      break;
    case kKeyF4:
      KeyCode = 0;
      ShowCalendar();
      break;
    default:
      // The digit still reaches the field.
      if (KeyCode >= '0' && KeyCode <= '9' && m_autoOpenOnChange && !IsCalendarOpen()) ShowCalendar();
      break;
  }
}

void USDatePicker::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  Step([&] { HandleKeyDown(KeyCode, Shift); });
  Step([&] { KeyDown(KeyCode, Shift); });
}

void USDatePicker::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }

void USDatePicker::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyUp(KeyCode, Shift); }); }

// ---- Focus ------------------------------------------------------------------------------------

bool USDatePicker::OwnsWindow(platform::HWND hwnd) const {
  const platform::HWND own = UserControl::hWnd();
  return hwnd && own && (hwnd == own || platform::IsChild(own, hwnd));
}

bool USDatePicker::CalendarOwnsWindow(platform::HWND hwnd) const {
  const platform::HWND cal = m_calendar ? m_calendar->hWnd() : 0;
  return hwnd && cal && (hwnd == cal || platform::IsChild(cal, hwnd));
}

void USDatePicker::GiveFocusBack() {
  const platform::HWND focus = platform::GetFocus();
  if (!m_hasFocus || !CalendarOwnsWindow(focus)) return;
  const platform::HWND target = m_style == Dropdown_Combo && m_txtCombo ? m_txtCombo->hWndEx() : UserControl::hWnd();
  if (target) platform::SetFocus(target);
}

void USDatePicker::UserControl_GotFocus() {
  // In an editable field the typing happens in the field: the focus passes straight on.
  if (m_style == Dropdown_Combo && m_txtCombo && m_txtCombo->hWndEx()) {
    Step([&] { platform::SetFocus(m_txtCombo->hWndEx()); });
    return;
  }
  Step([&] { EnterControl(); });
}

void USDatePicker::UserControl_LostFocus() { Step([&] { OnFocusLeaving(); }); }

void USDatePicker::OnFocusLeaving() {
  const platform::HWND next = platform::GetFocus();
  if (OwnsWindow(next)) return;
  if (IsCalendarOpen()) {
    // A press on the calendar's month buttons: the focus goes there, or nowhere while the
    // calendar's window is being activated. The buttons give it back when clicked.
    if (CalendarOwnsWindow(next)) return;
    if (!next && CalendarOwnsWindow(platform::GetActiveWindow())) return;
  }
  LeaveControl();
}

void USDatePicker::EnterControl() {
  if (m_hasFocus) return;
  m_hasFocus = true;
  Step([&] { DrawDatePicker(); });
  if (m_style == Dropdown_Combo && m_txtCombo) {
    Step([&] {
      m_txtCombo->SelStart(0);
      m_txtCombo->SelLength(host::Len(m_txtCombo->Text()));
    });
  }
}

void USDatePicker::LeaveControl() {
  if (!m_hasFocus) return;
  m_hasFocus = false;
  Step([&] { CloseCalendar(); });
  Step([&] { DrawDatePicker(); });
  if (!m_txtCombo) return;
  // A short date typed by the user is completed on leaving; an invalid one comes back as the
  // formatter leaves it, without a message.
  Step([&] {
    const String typed = m_txtCombo->TextNoMask();
    const String tag = FormatTag();
    const String full = host::Replace(tag, u"/", u"");
    if (!typed.empty() && host::Len(typed) < host::Len(full)) {
      Text(utility::MX().FormatAsDate(m_txtCombo->Text(), tag));
    }
  });
}

// ---- Pointer ----------------------------------------------------------------------------------

void USDatePicker::AttachTrackers() {
  const auto attach = [this](std::unique_ptr<frame::APIMouseEvents>& slot, platform::HWND hwnd) {
    if (slot || !hwnd) return;
    auto tracker = std::make_unique<frame::APIMouseEvents>();
    tracker->MouseIn.connect([this] { OnTrackerIn(); });
    tracker->MouseOut.connect([this] { OnTrackerOut(); });
    tracker->Attach(hwnd);
    slot = std::move(tracker);
  };
  attach(m_mouseExA, UserControl::hWnd());
  if (m_txtCombo) {
    attach(m_mouseExB, m_txtCombo->hWnd());
    attach(m_mouseExInner, m_txtCombo->hWndEx());
  }
}

void USDatePicker::OnTrackerIn() {
  if (m_mouseOver) return;
  m_mouseOver = true;
  if (!IsCalendarOpen()) Step([&] { DrawDatePicker(); });
  Step([&] { MouseEnter(); });
}

void USDatePicker::OnTrackerOut() {
  // Passing from the surface into the field (or back) is not leaving the control.
  platform::POINT pt{};
  platform::GetCursorPos(&pt);
  if (OwnsWindow(platform::WindowFromPoint(pt))) {
    // Into the field, left of the line: the surface hears no more moves, so the line goes now.
    platform::POINT client = pt;
    platform::ScreenToClient(UserControl::hWnd(), &client);
    Step([&] { OnHoverMove(static_cast<float>(client.x)); });
    return;
  }
  if (!m_mouseOver) return;
  m_mouseOver = false;
  if (!IsCalendarOpen()) Step([&] { DrawDatePicker(); });
  Step([&] { MouseExit(); });
}

void USDatePicker::OnHoverMove(float x) {
  if (!UserControl::Enabled() || IsCalendarOpen()) return;
  m_lastMouseX = static_cast<int32_t>(x);
  ShowLine(m_lastMouseX > m_lineX);
}

void USDatePicker::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  if (Button == host::vbLeftButton) {
    m_lastMouseX = static_cast<int32_t>(X);
    Step([&] { ToggleCalendar(); });
  }
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void USDatePicker::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { OnHoverMove(X); });
  Step([&] { MouseMove(Button, Shift, X, Y); });
}

void USDatePicker::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

// ---- Corner -----------------------------------------------------------------------------------

void USDatePicker::ApplyCornerRegion() {
  const platform::HWND hwnd = UserControl::hWnd();
  if (!m_showCorner || !m_runMode || !hwnd) return;
  platform::RECT rc{};
  platform::GetClientRect(hwnd, &rc);
  // Rounded on the right only: the round rectangle joined with a plain left half.
  const platform::HRGN round = platform::CreateRoundRectRgn(0, 0, rc.right + 1, rc.bottom + 1, 4, 4);
  const platform::HRGN left = platform::CreateRectRgn(0, 0, rc.right / 2, rc.bottom);
  platform::CombineRgn(round, round, left, platform::RGN_OR);
  platform::DeleteObject(left);
  platform::SetWindowRgn(hwnd, round, platform::TRUE);
}

}  // namespace mx::dates
