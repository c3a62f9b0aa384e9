// USDatePicker: the drop-down calendar. Opening tears the calendar off the control and puts it on
// the desktop as a tool window owned by the form; closing puts it back, hidden, under the control.
#include <cmath>

#include "controls/ControlSupport.h"
#include "dates/USCalendarSmall.h"
#include "dates/USDatePicker.h"
#include "entry/USTextBoxEx.h"
#include "host/DateTime.h"
#include "host/Form.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::dates {

using controls::detail::Step;

namespace {

// TRelease's id on the control's window.
constexpr platform::UINT_PTR kReleaseTimerId = 1;

}  // namespace

bool USDatePicker::IsCalendarOpen() const {
  return m_calendar && m_calendar->hWnd() && platform::IsWindowVisible(m_calendar->hWnd());
}

void USDatePicker::ShowCalendar() {
  // As if the pointer were just right of the line: the style's text part cannot stop it.
  m_lastMouseX = m_lineX + 1;
  ToggleCalendar();
}

void USDatePicker::ToggleCalendar() {
  if (!m_calendar) return;
  // In an editable field the text part is for typing: only the arrow area opens the calendar.
  if (m_style != Dropdown_List && m_lastMouseX <= m_lineX) return;
  if (IsCalendarOpen()) {
    CloseCalendar();
    DrawDatePicker();
    return;
  }
  OpenCalendar();
}

void USDatePicker::OpenCalendar() {
  Step([&] { BeginDisplayCalendar(); });
  USCalendarSmall& cal = *m_calendar;
  // The calendar speaks in the container's font, at its own sizes.
  Step([&] {
    const std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    cal.FontColumns(ambient);
    cal.FontDays(ambient);
    cal.FontMonthYear(ambient);
    cal.FontToday(ambient);
  });
  Step([&] { cal.FontMonthYearSize(10); });
  Step([&] { cal.FontDaysSize(8); });
  Step([&] { cal.FontColumnsSize(7); });
  Step([&] { cal.FontTodaySize(7); });
  if (cal.Theme() != m_theme) Step([&] { cal.Theme(m_theme); });
  Step([&] {
    double date = 0;
    if (TextToDate(date)) cal.CurrentDate(date);
  });
  Step([&] { PlaceCalendar(); });
  Step([&] { cal.Control::Visible(true); });
  Step([&] { platform::ShowWindow(cal.hWnd(), platform::SW_SHOWNOACTIVATE); });
  Step([&] { StartRelease(); });
  m_calendarOpenedAt = platform::GetTickCount();
  Step([&] { DrawDatePicker(); });
}

void USDatePicker::PlaceCalendar() {
  const platform::HWND cal = m_calendar->hWnd();
  const platform::HWND own = UserControl::hWnd();
  if (!cal || !own) return;
  // A top-level tool window, owned by the form so that it stays above it and goes with it.
  platform::HWND owner = Parent() ? Parent()->hWnd() : 0;
  if (!owner) owner = platform::GetAncestor(own, platform::GA_ROOT);
  platform::LONG_PTR style = platform::GetWindowLongPtr(cal, platform::GWL_STYLE);
  style = (style & ~static_cast<platform::LONG_PTR>(platform::WS_CHILD)) | static_cast<platform::LONG_PTR>(platform::WS_POPUP);
  platform::SetWindowLongPtr(cal, platform::GWL_STYLE, style);
  platform::SetWindowLongPtr(cal, platform::GWL_EXSTYLE,
                             platform::GetWindowLongPtr(cal, platform::GWL_EXSTYLE) | platform::WS_EX_TOOLWINDOW |
                                 platform::WS_EX_NOACTIVATE);
  platform::SetParent(cal, 0);
  platform::SetWindowLongPtr(cal, platform::GWL_HWNDPARENT, static_cast<platform::LONG_PTR>(owner));

  platform::RECT rc{};
  platform::GetWindowRect(own, &rc);
  platform::RECT work{};
  platform::SystemParametersInfo(platform::SPI_GETWORKAREA, 0, &work, 0);
  platform::RECT calRect{};
  platform::GetWindowRect(cal, &calRect);
  const int32_t height = calRect.bottom - calRect.top;
  // No room under the control: the calendar opens above it.
  const int32_t top = work.bottom < rc.bottom + height + 1 ? rc.top - height - 1 : rc.bottom + 1;
  platform::SetWindowPos(cal, platform::HWND_TOP, rc.left, top, 0, 0,
                         platform::SWP_NOSIZE | platform::SWP_NOACTIVATE);
}

void USDatePicker::ReturnCalendar() {
  if (!m_calendar) return;
  const platform::HWND cal = m_calendar->hWnd();
  const platform::HWND own = UserControl::hWnd();
  if (!cal || !own || platform::GetParent(cal) == own) return;
  platform::ShowWindow(cal, platform::SW_HIDE);
  platform::LONG_PTR style = platform::GetWindowLongPtr(cal, platform::GWL_STYLE);
  style = (style & ~static_cast<platform::LONG_PTR>(platform::WS_POPUP)) | static_cast<platform::LONG_PTR>(platform::WS_CHILD);
  platform::SetWindowLongPtr(cal, platform::GWL_STYLE, style);
  platform::SetWindowLongPtr(cal, platform::GWL_EXSTYLE,
                             platform::GetWindowLongPtr(cal, platform::GWL_EXSTYLE) & ~platform::WS_EX_NOACTIVATE);
  platform::SetParent(cal, own);
}

void USDatePicker::CloseCalendar() {
  if (!IsCalendarOpen()) return;
  Step([&] { StopRelease(); });
  Step([&] { ReturnCalendar(); });
  Step([&] { m_calendar->Control::Visible(false); });
  Step([&] { platform::ShowWindow(m_calendar->hWnd(), platform::SW_HIDE); });
  Step([&] { GiveFocusBack(); });
  Step([&] { Click(); });
  // The focus may have gone elsewhere while a month button held it, unseen by the control: the
  // control is left now.
  if (m_hasFocus && !OwnsWindow(platform::GetFocus())) Step([&] { LeaveControl(); });
}

// ---- TRelease ---------------------------------------------------------------------------------

void USDatePicker::StartRelease() {
  const platform::HWND own = UserControl::hWnd();
  if (!own) return;
  const platform::UINT_PTR id = platform::SetTimer(
      own, kReleaseTimerId, kReleaseInterval,
      [this](platform::HWND, platform::UINT, platform::UINT_PTR, platform::DWORD) { ReleaseTick(); });
  m_releaseRunning = id != 0;
}

void USDatePicker::StopRelease() {
  if (m_releaseRunning && UserControl::hWnd()) platform::KillTimer(UserControl::hWnd(), kReleaseTimerId);
  m_releaseRunning = false;
}

void USDatePicker::ReleaseTick() {
  if (m_runMode) {
    Step([&] {
      // Either bit counts: held now, or pressed since the last look (a quick click between ticks).
      const bool pressed = platform::GetAsyncKeyState(platform::VK_LBUTTON) != 0 ||
                           platform::GetAsyncKeyState(platform::VK_RBUTTON) != 0;
      if (!pressed || !IsCalendarOpen()) return;
      platform::POINT pt{};
      platform::GetCursorPos(&pt);
      platform::RECT calRect{};
      platform::GetWindowRect(m_calendar->hWnd(), &calRect);
      if (platform::PtInRect(&calRect, pt)) return;
      // A press on the control itself toggles the calendar through the control's own press.
      if (platform::WindowFromPoint(pt) == UserControl::hWnd()) return;
      if (platform::GetTickCount() - m_calendarOpenedAt <= kReleaseGrace) return;
      CloseCalendar();
      DrawDatePicker();
    });
  }
  // The timer runs exactly while the calendar shows, however it was closed.
  if (!IsCalendarOpen()) Step([&] { StopRelease(); });
}

// ---- Dates from the calendar and the keys ------------------------------------------------------

void USDatePicker::TakeDate(double date) {
  Step([&] { Text(DateToText(date)); });
  Step([&] { CloseCalendar(); });
  Step([&] { DrawDatePicker(); });
  Step([&] { DateClicked(host::DateValue{date}); });
  Step([&] { Click(); });
}

void USDatePicker::StepDate(int32_t days) {
  if (!m_calendar) return;
  const double date = host::DateAdd(u"d", days, m_calendar->CurrentDate());
  m_calendar->CurrentDate(date);
  Text(DateToText(date));
}

}  // namespace mx::dates
