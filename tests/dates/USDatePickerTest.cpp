// USDatePicker driven on a form through injected input: where a press opens the calendar, where
// the calendar opens, the timer's grace, the keys, picking a date, focus, hover, the date mask,
// persistence and late binding.
#include "dates/USDatePickerTestSupport.h"
#include "frame/Themes.h"
#include "host/DateTime.h"
#include "host/PropertyBag.h"
#include "host/Err.h"
#include "host/Format.h"
#include "controls/USButton.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "utility/DateFormats.h"

namespace mx::dates::testing {
namespace {

using Picker = DatePickerTest;

std::string Iso(double date) { return host::ToUtf8(host::FormatDate(date, u"yyyy-mm-dd")); }

TEST_F(Picker, APressOnTheTextPartDoesNotOpenButTheArrowAndShowCalendarDo) {
  // The text part of an editable field belongs to the field.
  Press(At(30, 10));
  EXPECT_FALSE(picker->IsCalendarOpen());
  // The field's click is the control's.
  EXPECT_EQ(Take(), (Lines{"MouseEnter", "Click"}));
  // The surface left of the line (the border strip) does not open it either.
  Press(At(60, 1));
  EXPECT_FALSE(picker->IsCalendarOpen());
  Wait(1000);
  Press(At(110, 10));
  EXPECT_TRUE(picker->IsCalendarOpen());
  EXPECT_TRUE(picker->IsReleaseTimerRunning());
  EXPECT_EQ(Take(), (Lines{"BeginDisplayCalendar"}));

  // A second press on the arrow toggles it shut; the timer does not close it first.
  Wait(1000);
  Press(At(110, 10));
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_FALSE(picker->IsReleaseTimerRunning());
  EXPECT_EQ(Take(), (Lines{"Click"}));

  Wait(1000);
  picker->ShowCalendar();
  EXPECT_TRUE(picker->IsCalendarOpen());
  picker->ShowCalendar();
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_EQ(Take(), (Lines{"BeginDisplayCalendar", "Click"}));
}

TEST_F(Picker, AListStyleOpensFromAnyPointOfItsFace) {
  picker->Style(Dropdown_List);
  platform::PumpMessages();
  EXPECT_FALSE(platform::IsWindowVisible(picker->TextField().hWnd()));
  Press(At(30, 10));
  EXPECT_TRUE(picker->IsCalendarOpen());
  // The list style holds the focus in its own window.
  EXPECT_EQ(platform::GetFocus(), picker->hWnd());
}

TEST_F(Picker, TheCalendarIsATopLevelToolWindowUnderTheControlAndComesBack) {
  picker->ShowCalendar();
  const platform::HWND cal = picker->Calendar().hWnd();
  EXPECT_EQ(platform::GetAncestor(cal, platform::GA_ROOT), cal);
  EXPECT_EQ(platform::GetWindow(cal, platform::GW_OWNER), form->hWnd());
  EXPECT_TRUE(platform::GetWindowLongPtr(cal, platform::GWL_EXSTYLE) & platform::WS_EX_TOOLWINDOW);
  const platform::RECT r = PickerRect();
  const platform::RECT c = CalendarRect();
  EXPECT_EQ(c.left, r.left);
  EXPECT_EQ(c.top, r.bottom + 1);
  EXPECT_EQ(c.right - c.left, 215);
  EXPECT_EQ(c.bottom - c.top, 226);

  picker->ShowCalendar();
  EXPECT_EQ(platform::GetParent(cal), picker->hWnd());
  EXPECT_FALSE(platform::IsWindowVisible(cal));
}

TEST_F(Picker, NearTheBottomOfTheWorkAreaTheCalendarOpensAbove) {
  platform::RECT work{};
  platform::SystemParametersInfo(platform::SPI_GETWORKAREA, 0, &work, 0);
  // Just no room: the bottom of the calendar would land one pixel past the work area.
  platform::RECT r = PickerRect();
  const int shift = work.bottom - (r.bottom + 226 + 1) + 1;
  form->Move(form->Left(), form->Top() + static_cast<float>(shift * 15));
  platform::PumpMessages();
  r = PickerRect();
  ASSERT_EQ(work.bottom, r.bottom + 226);
  picker->ShowCalendar();
  platform::RECT c = CalendarRect();
  EXPECT_EQ(c.left, r.left);
  EXPECT_EQ(c.top, r.top - 226 - 1);
  picker->ShowCalendar();

  // One pixel higher there is room below again.
  form->Move(form->Left(), form->Top() - 15);
  platform::PumpMessages();
  r = PickerRect();
  picker->ShowCalendar();
  c = CalendarRect();
  EXPECT_EQ(c.top, r.bottom + 1);
}

TEST_F(Picker, APressOutsideClosesOnlyAfterTheGrace) {
  FocusPicker();
  picker->ShowCalendar();
  Take();
  const platform::POINT outside{900, 600};
  // Pressed at once and held through a tick: within 250 ms nothing closes.
  Hold(outside);
  Wait(100);
  Wait(100);
  Release();
  EXPECT_TRUE(picker->IsCalendarOpen());
  // Past the grace the same press closes it, with Click.
  Wait(100);
  Hold(outside);
  Wait(100);
  Release();
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_FALSE(picker->IsReleaseTimerRunning());
  EXPECT_EQ(Take(), (Lines{"Click"}));
}

TEST_F(Picker, AQuickClickBetweenTicksStillCloses) {
  picker->ShowCalendar();
  Wait(300);
  Take();
  Press(platform::POINT{900, 600});
  Wait(100);
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_EQ(Take(), (Lines{"Click"}));
}

TEST_F(Picker, APressInsideTheCalendarDoesNotClose) {
  picker->ShowCalendar();
  Wait(300);
  const platform::RECT c = CalendarRect();
  // The month heading: not a day, so nothing is taken.
  const auto& h = picker->Calendar().MonthYearCaption().rect;
  Hold(platform::POINT{c.left + (h.left + h.right) / 2, c.top + (h.top + h.bottom) / 2});
  Wait(100);
  Release();
  EXPECT_TRUE(picker->IsCalendarOpen());
}

TEST_F(Picker, PickingADayWritesTheTextClosesAndKeepsTheFocus) {
  FocusPicker();
  picker->Text(u"10/01/2024");
  picker->ShowCalendar();
  Take();
  ASSERT_EQ(Iso(picker->Calendar().CurrentDate()), "2024-01-10");
  // January 2024 starts on a Monday: the 20th is the cell of its first day plus 19.
  USCalendarSmall& cal = picker->Calendar();
  const auto& cell = cal.DayCell(cal.FirstDayCell() + 19).rect;
  const platform::RECT c = CalendarRect();
  Press(platform::POINT{c.left + (cell.left + cell.right) / 2, c.top + (cell.top + cell.bottom) / 2});
  EXPECT_EQ(picker->Text(), u"20/01/2024");
  EXPECT_FALSE(picker->IsCalendarOpen());
  // The close raises Click, then the date and Click again; EndDisplayCalendar never comes.
  EXPECT_EQ(Take(), (Lines{"Change", "Click", "DateClicked 20/01/2024", "Click"}));
  EXPECT_TRUE(picker->HasFocus());
  EXPECT_EQ(platform::GetFocus(), picker->TextField().hWndEx());
}

TEST_F(Picker, TheMonthButtonsGiveTheFocusBackAndKeepTheCalendarOpen) {
  FocusPicker();
  picker->Text(u"10/01/2024");
  picker->ShowCalendar();
  Wait(300);
  Take();
  const platform::HWND next = picker->Calendar().NextButton()->hWnd();
  platform::RECT b{};
  platform::GetWindowRect(next, &b);
  Press(platform::POINT{(b.left + b.right) / 2, (b.top + b.bottom) / 2});
  Wait(100);
  EXPECT_TRUE(picker->IsCalendarOpen());
  EXPECT_EQ(host::Month(picker->Calendar().CurrentDate()), 2);
  EXPECT_EQ(platform::GetFocus(), picker->TextField().hWndEx());
  EXPECT_TRUE(Take().empty());

  // A press on a month button released off it keeps the focus there, where the control cannot
  // see it go; a press elsewhere then closes the calendar and leaves the control all the same.
  Wait(1000);
  Hold(platform::POINT{(b.left + b.right) / 2, (b.top + b.bottom) / 2});
  platform::InjectMouseMove(b.right + 40, b.bottom + 40);
  Release();
  ASSERT_EQ(platform::GetFocus(), next);
  platform::RECT o{};
  platform::GetWindowRect(other->hWnd(), &o);
  Press(platform::POINT{o.left + 20, o.top + 10});
  Wait(100);
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_FALSE(picker->HasFocus());
}

TEST_F(Picker, UpAndDownStepDayByDayAcrossMonthEnds) {
  FocusPicker();
  picker->Text(u"31/01/2024");
  picker->ShowCalendar();
  Key(platform::VK_DOWN);
  EXPECT_EQ(picker->Text(), u"01/02/2024");
  // The calendar turned to February with the text.
  EXPECT_EQ(Iso(picker->Calendar().CurrentDate()), "2024-02-01");
  EXPECT_NE(picker->Calendar().MonthYearCaption().caption.find(u"2024"), host::String::npos);
  Key(platform::VK_UP);
  EXPECT_EQ(picker->Text(), u"31/01/2024");
  EXPECT_EQ(host::Month(picker->Calendar().CurrentDate()), 1);

  // A leap February, with the calendar closed: the keys still move the date.
  picker->ShowCalendar();
  picker->Text(u"28/02/2024");
  picker->ShowCalendar();
  picker->ShowCalendar();
  Key(platform::VK_DOWN);
  EXPECT_EQ(picker->Text(), u"29/02/2024");
  Key(platform::VK_DOWN);
  EXPECT_EQ(picker->Text(), u"01/03/2024");
  // Over a year's end.
  picker->Text(u"01/01/2025");
  picker->ShowCalendar();
  picker->ShowCalendar();
  Key(platform::VK_UP);
  EXPECT_EQ(picker->Text(), u"31/12/2024");
}

TEST_F(Picker, EscIsSwallowedOpenOrClosedAndClosingWithItRaisesClick) {
  FocusPicker();
  std::vector<int> keys;
  picker->KeyDown.connect([&](int16_t& k, int16_t&) { keys.push_back(k); });
  Key(platform::VK_ESCAPE);
  EXPECT_EQ(keys, (std::vector<int>{0}));
  EXPECT_TRUE(Take().empty()) << "no Click without a close";
  picker->ShowCalendar();
  Take();
  Key(platform::VK_ESCAPE);
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_EQ(Take(), (Lines{"Click"}));
  // Keys with a shift held are left alone.
  keys.clear();
  platform::InjectKey(platform::VK_SHIFT, true);
  Key(platform::VK_DOWN);
  platform::InjectKey(platform::VK_SHIFT, false);
  platform::PumpMessages();
  EXPECT_EQ(keys, (std::vector<int>{platform::VK_SHIFT, platform::VK_DOWN}));
}

TEST_F(Picker, ReturnTakesTheCalendarsDateAndF4Opens) {
  FocusPicker();
  Key(platform::VK_F4);
  ASSERT_TRUE(picker->IsCalendarOpen());
  Take();
  Key(platform::VK_RETURN);
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_EQ(picker->Text(), u"15/01/2024");
  EXPECT_EQ(Take(), (Lines{"Change", "Click", "DateClicked 15/01/2024", "Click"}));
  // With the calendar closed Return takes nothing.
  Key(platform::VK_RETURN);
  EXPECT_TRUE(Take().empty());
}

TEST_F(Picker, ADigitOpensWithAutoOpenOnChangeAndIsStillTyped) {
  FocusPicker();
  Type(u"3");
  EXPECT_FALSE(picker->IsCalendarOpen());
  picker->Text(u"");
  picker->AutoOpenOnChange(true);
  picker->SelStart(0);
  platform::InjectKeyPress('3');
  Type(u"3");
  EXPECT_TRUE(picker->IsCalendarOpen());
  EXPECT_EQ(picker->Text().substr(0, 1), u"3");
}

TEST_F(Picker, TypingAValidDateMovesTheOpenCalendar) {
  FocusPicker();
  picker->ShowCalendar();
  picker->SelStart(0);
  Type(u"05032024");
  EXPECT_EQ(picker->Text(), u"05/03/2024");
  EXPECT_EQ(Iso(picker->Calendar().CurrentDate()), "2024-03-05");
  EXPECT_TRUE(picker->IsValidDate());
  // A two-digit year never validates, so the calendar keeps its date.
  picker->Text(u"");
  picker->SelStart(0);
  Type(u"070424");
  EXPECT_EQ(Iso(picker->Calendar().CurrentDate()), "2024-03-05");
  EXPECT_FALSE(picker->IsValidDate());
}

TEST_F(Picker, LeavingClosesTheCalendarAndCompletesAShortDate) {
  FocusPicker();
  EXPECT_TRUE(picker->HasFocus());
  picker->ShowCalendar();
  picker->SelStart(0);
  Type(u"2001");
  Take();
  other->SetFocus();
  platform::PumpMessages();
  EXPECT_FALSE(picker->HasFocus());
  EXPECT_FALSE(picker->IsCalendarOpen());
  const Lines seen = Take();
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.front(), "Click");
  EXPECT_EQ(picker->Text(), u"20/01/2024");

  // A full date is left as it is; an empty field stays empty.
  FocusPicker();
  picker->Text(u"31/12/2023");
  other->SetFocus();
  platform::PumpMessages();
  EXPECT_EQ(picker->Text(), u"31/12/2023");
  picker->Text(u"");
  FocusPicker();
  other->SetFocus();
  platform::PumpMessages();
  EXPECT_EQ(picker->TextLenEx(), 0);
}

TEST_F(Picker, GettingTheFocusSelectsTheWholeText) {
  picker->Text(u"31/12/2023");
  picker->SelStart(3);
  picker->SelLength(0);
  FocusPicker();
  EXPECT_EQ(picker->SelStart(), 0);
  EXPECT_EQ(picker->SelLength(), 10);
}

TEST_F(Picker, TheMaskFollowsTheLayoutAndTheFieldRemembersIt) {
  entry::USTextBoxEx& field = picker->TextField();
  picker->Text(u"20012024");
  EXPECT_EQ(picker->Text(), u"20/01/2024");
  EXPECT_EQ(field.Mask(), u"##/##/####");
  EXPECT_EQ(field.Tag(), u"dd/mm/yyyy");
  EXPECT_EQ(field.MaskType(), entry::Only_Number);
  EXPECT_TRUE(field.NumberOnly());

  // A new layout rewrites the date held.
  picker->FormatDate(utility::yyyy_mm_dd_Hyphen);
  EXPECT_EQ(picker->Text(), u"2024-01-20");
  picker->Text(u"20240120");
  EXPECT_EQ(field.Mask(), u"####-##-##");
  EXPECT_EQ(picker->Text(), u"2024-01-20");
  EXPECT_EQ(field.Tag(), u"yyyy-mm-dd");
  EXPECT_TRUE(picker->IsValidDate(utility::yyyy_mm_dd_Hyphen));

  // A short layout keeps room for ten characters all the same.
  picker->FormatDate(utility::DD_MM_YY_Slash);
  EXPECT_EQ(field.Mask(), u"##/##/##");
  // Two-digit years never validate, so the next layout finds no date to carry over.
  EXPECT_EQ(picker->Text(), u"20/01/24");
  picker->FormatDate(utility::MM_DD_YYYY_Slash);
  EXPECT_EQ(picker->TextLenEx(), 0);
  picker->FormatDate(utility::DD_MM_YY_Slash);
  EXPECT_EQ(field.MaxLength(), 10);

  // A date taken from the calendar is written in the layout in force.
  picker->FormatDate(utility::MM_DD_YYYY_Dot);
  picker->Text(u"");
  picker->ShowCalendar();
  picker->Calendar().CurrentDate(host::DateSerial(2024, 2, 9));
  FocusPicker();
  Key(platform::VK_RETURN);
  EXPECT_EQ(picker->Text(), u"02.09.2024");
}

TEST_F(Picker, TextViewsAndClear) {
  picker->Text(u"0503");
  EXPECT_EQ(picker->TextLen(), 6);  // "05/03/", trimmed by the mask
  EXPECT_EQ(picker->TextLenEx(), 4);
  EXPECT_TRUE(picker->TextAsDate().IsNull());
  picker->Text(u"05032024");
  EXPECT_EQ(host::ToUtf8(picker->TextAsDate(1, 25).ToString()), "2024-03-05");
  EXPECT_EQ(picker->TextTrim(), u"05/03/2024");
  picker->Calendar().CurrentDate(host::DateSerial(2020, 6, 1));
  picker->Clear();
  EXPECT_EQ(picker->TextLenEx(), 0);
  EXPECT_EQ(Iso(picker->Calendar().CurrentDate()), "2024-01-15");
}

TEST_F(Picker, HoverShowsTheLineOverTheArrowAndCrossingIntoTheFieldIsNoExit) {
  MoveTo(At(110, 10));
  EXPECT_TRUE(picker->LineVisible());
  EXPECT_EQ(picker->LineX(), 120 - 17);
  MoveTo(At(60, 1));
  EXPECT_FALSE(picker->LineVisible());
  MoveTo(At(30, 10));
  MoveTo(At(60, 1));
  EXPECT_EQ(Take(), (Lines{"MouseEnter"}));
  MoveTo(platform::POINT{900, 600});
  EXPECT_EQ(Take(), (Lines{"MouseExit"}));
  // A disabled picker shows no line.
  picker->Enabled(false);
  MoveTo(At(110, 10));
  EXPECT_FALSE(picker->LineVisible());
}

TEST_F(Picker, ThemesLoadTheirColours) {
  // Theme 2 reproduces the defaults of a new control.
  picker->Theme(frame::Windows_Theme_Red);
  picker->Theme(frame::Windows_Theme);
  EXPECT_EQ(picker->BackColorOnShowCalendar(), 0xFFE3B7);
  EXPECT_EQ(picker->BorderColor(), 0xFFCFA3);
  EXPECT_EQ(picker->BorderColorOver(), 0xF3B678);
  EXPECT_EQ(picker->BorderColorDisabled(), 0xDBCECC);
  // Office looks take the palette's borders unshifted, the others lighten them by 120.
  picker->BackColor(0x123456);
  picker->Theme(frame::Office_Theme_Blue);
  EXPECT_EQ(picker->BackColor(), 0xFFFFFF);
  EXPECT_EQ(picker->BorderColor(), 0xE2A981);
  EXPECT_EQ(picker->BorderColorOver(), 0xBBF2FF);
  EXPECT_EQ(picker->BackColorOnShowCalendar(), 0xFFFFFF) << "0xFFEFE3 lightened by 140, held at 255";
  picker->Theme(frame::Windows_Theme_Green);
  EXPECT_EQ(picker->BorderColor(), 0xB9EC78);
  EXPECT_EQ(picker->BorderColorOver(), 0x9FD478);
  // The calendar takes the picker's theme when it opens.
  picker->ShowCalendar();
  EXPECT_EQ(picker->Calendar().Theme(), frame::Windows_Theme_Green);
}

TEST_F(Picker, TheBagKeepsEveryPropertyAndWritesNoDefaults) {
  host::PropertyBag empty;
  picker->SaveTo(empty);
  for (const char16_t* key : {u"Theme", u"FormatDate", u"Style", u"BorderColor", u"Text", u"Enabled"}) {
    EXPECT_FALSE(empty.Contains(key)) << host::ToUtf8(key);
  }

  picker->Theme(frame::Windows_Theme_Orange);
  picker->FormatDate(utility::YYYY_MM_DD_Slash);
  picker->ShowCorner(true);
  picker->AutoOpenOnChange(true);
  picker->Style(Dropdown_List);
  picker->GradientMode(Horizontal);
  picker->GradientColor1(0x00FF00);
  picker->GradientColor2(0x0000FF);
  picker->ForeColor(0x102030);
  picker->Alignment(2);
  picker->Enabled(false);
  picker->Text(u"20240229");
  host::PropertyBag bag;
  picker->SaveTo(bag);

  auto copy = std::dynamic_pointer_cast<USDatePicker>(form->AddControl(u"Morvantix.USDatePicker", u"dtpCopy"));
  copy->LoadFrom(bag, true);
  EXPECT_EQ(copy->Theme(), frame::Windows_Theme_Orange);
  EXPECT_EQ(copy->FormatDate(), utility::YYYY_MM_DD_Slash);
  EXPECT_TRUE(copy->ShowCorner());
  EXPECT_TRUE(copy->AutoOpenOnChange());
  EXPECT_EQ(copy->Style(), Dropdown_List);
  EXPECT_EQ(copy->GradientMode(), Horizontal);
  EXPECT_EQ(copy->GradientColor1(), 0x00FF00);
  EXPECT_EQ(copy->GradientColor2(), 0x0000FF);
  EXPECT_EQ(copy->ForeColor(), 0x102030);
  EXPECT_EQ(copy->BorderColor(), picker->BorderColor());
  EXPECT_EQ(copy->BackColorOnShowCalendar(), picker->BackColorOnShowCalendar());
  EXPECT_EQ(copy->Alignment(), 2);
  EXPECT_FALSE(copy->Enabled());
  EXPECT_EQ(copy->Text(), u"2024/02/29");
  EXPECT_EQ(copy->TextField().Mask(), u"####/##/##");
  form->RemoveControl(u"dtpCopy");
}

TEST_F(Picker, APressOnAnotherControlClosesThroughTheFocus) {
  FocusPicker();
  picker->ShowCalendar();
  Take();
  // Within the grace the timer would not close it; the focus leaving does, at once.
  platform::RECT o{};
  platform::GetWindowRect(other->hWnd(), &o);
  Press(platform::POINT{o.left + 20, o.top + 10});
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_FALSE(picker->HasFocus());
  EXPECT_EQ(Take(), (Lines{"Click"}));
  Wait(300);
  EXPECT_FALSE(picker->IsReleaseTimerRunning());
}

TEST_F(Picker, ListStyleTakesTheKeysInItsOwnWindow) {
  picker->Style(Dropdown_List);
  picker->Text(u"31/03/2024");
  picker->ShowCalendar();
  picker->ShowCalendar();
  FocusPicker();
  Key(platform::VK_DOWN);
  EXPECT_EQ(picker->Text(), u"01/04/2024");
  Key(platform::VK_F4);
  EXPECT_TRUE(picker->IsCalendarOpen());
  Key(platform::VK_ESCAPE);
  EXPECT_FALSE(picker->IsCalendarOpen());
  EXPECT_EQ(platform::GetFocus(), picker->hWnd());
}

TEST_F(Picker, UnloadingWithTheCalendarOpenLeavesNoWindowBehind) {
  picker->ShowCalendar();
  ASSERT_TRUE(picker->IsCalendarOpen());
  picker.reset();
  other.reset();
  form->Unload();
  form.reset();
  platform::PumpMessages();
  Wait(300);
  // The fixture's tear-down counts the windows.
}

TEST_F(Picker, ShowCornerRoundsTheRightCornersUntilTheNextPaint) {
  picker->ShowCorner(true);
  picker->HideControl();
  picker->ShowControl();
  platform::PumpMessages();
  const platform::HRGN rgn = platform::CreateRectRgn(0, 0, 0, 0);
  ASSERT_NE(platform::GetWindowRgn(picker->hWnd(), rgn), 0);
  EXPECT_FALSE(platform::PtInRegion(rgn, 119, 0)) << "top right corner cut";
  EXPECT_FALSE(platform::PtInRegion(rgn, 119, 20));
  EXPECT_TRUE(platform::PtInRegion(rgn, 0, 0)) << "left half square";
  EXPECT_TRUE(platform::PtInRegion(rgn, 0, 20));
  // The next paint puts the plain rectangle back.
  picker->BackColor(0xEEEEEE);
  ASSERT_NE(platform::GetWindowRgn(picker->hWnd(), rgn), 0);
  EXPECT_TRUE(platform::PtInRegion(rgn, 119, 0));
  platform::DeleteObject(rgn);
}

TEST_F(Picker, TheSurfaceKeepsItsMinimumSize) {
  picker->Move(150, 150, 90, 60);
  platform::PumpMessages();
  EXPECT_EQ(picker->ScaleWidth(), 18.0F);
  EXPECT_EQ(picker->ScaleHeight(), 18.0F);
  EXPECT_EQ(picker->LineX(), 1);
}

TEST_F(Picker, LateBoundMembers) {
  host::Variant v(int32_t{utility::yyyy_mm_dd_Hyphen});
  picker->Invoke(u"FormatDate", host::CallKind::Let, std::span<host::Variant>(&v, 1));
  host::Variant t(host::String(u"20240115"));
  picker->Invoke(u"", host::CallKind::Let, std::span<host::Variant>(&t, 1));
  EXPECT_EQ(host::ToUtf8(picker->Invoke(u"Text", host::CallKind::Get, {}).ToString()), "2024-01-15");
  host::Variant code(int32_t{utility::yyyy_mm_dd_Hyphen});
  EXPECT_TRUE(picker->Invoke(u"IsValidDate", host::CallKind::Method, std::span<host::Variant>(&code, 1)).ToBoolean());
  EXPECT_FALSE(picker->Invoke(u"isvaliddate", host::CallKind::Method, {}).ToBoolean()) << "code 1 reads day first";
  picker->Invoke(u"ShowCalendar", host::CallKind::Method, {});
  EXPECT_TRUE(picker->IsCalendarOpen());
  EXPECT_EQ(picker->Invoke(u"TextLenEx", host::CallKind::Get, {}).ToLong(), 8);
  // Read-only members refuse a write.
  host::Variant n(int32_t{1});
  EXPECT_THROW(picker->Invoke(u"TextLen", host::CallKind::Let, std::span<host::Variant>(&n, 1)), host::RuntimeError);
}

}  // namespace
}  // namespace mx::dates::testing
