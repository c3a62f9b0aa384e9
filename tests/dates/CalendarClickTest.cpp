// Clicks on the calendar's cells, headings, buttons and today's date, and the events they raise
// in order.
#include "controls/USButton.h"
#include "dates/CalendarTestSupport.h"

namespace mx::dates::testing {
namespace {

using Clicks = CalendarTest;

void ClickButton(const controls::USButton& b) {
  platform::RECT r{};
  platform::GetWindowRect(b.hWnd(), &r);
  platform::InjectMouseMove((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  platform::InjectMouseButton(platform::MouseButton::Left, true);
  platform::InjectMouseButton(platform::MouseButton::Left, false);
  platform::PumpMessages();
  platform::AdvanceVirtualClock(1000);
  platform::PumpMessages();
}

TEST_F(Clicks, ADayOfTheMonthSelectsIt) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  ClickCell(*c, 20);
  EXPECT_EQ(log.Take(), Lines{"DateClicked 2024-01-20"});
  EXPECT_EQ(Iso(c->CurrentDate()), "2024-01-20");
  EXPECT_EQ(c->SelectedCell(), 20);
  // The cell left behind gets the days' colour back; the new one the selected colour.
  c->SelectedForeColor(0x00FFFF);
  Pause();
  ClickCell(*c, 22);
  EXPECT_EQ(c->DayCell(20).foreColor, 0xFFFFFFu);
  EXPECT_EQ(c->DayCell(22).foreColor, 0x00FFFFu);
}

TEST_F(Clicks, APreviousMonthsDayChangesMonthAcrossTheYear) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  // Cell 0 is 31 December 2023. December's grid has 26 November at cell 0, a neighbour's day,
  // so no DateClicked follows the month change.
  ClickCell(*c, 0);
  EXPECT_EQ(log.Take(), Lines{"MonthChanged 2023-12-31"});
  EXPECT_EQ(c->SelectedCell(), 35);
  EXPECT_EQ(std::string(c->MonthYearCaption().caption.begin(), c->MonthYearCaption().caption.end()),
            "dezembro de 2023");
}

TEST_F(Clicks, ANextMonthsDayChangesMonthAndClicksWhenItsCellIsInTheNewMonth) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  // Cell 32 is 1 February; in February's grid cell 32 holds the 29th, a day of the month.
  ClickCell(*c, 32);
  EXPECT_EQ(log.Take(), (Lines{"MonthChanged 2024-02-01", "DateClicked 2024-02-01"}));
  EXPECT_EQ(c->SelectedCell(), 4);
  Pause();
  // From December 2023, cell 36 is 1 January 2024.
  c->CurrentDate(host::DateSerial(2023, 12, 5));
  ClickCell(*c, 36);
  EXPECT_EQ(log.Take(), Lines{"MonthChanged 2024-01-01"});
  EXPECT_EQ(Iso(c->CurrentDate()), "2024-01-01");
}

TEST_F(Clicks, ASecondClickOnTheSameDayIsADoubleClick) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  const auto& r = c->DayCell(20).rect;
  DoublePress((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  EXPECT_EQ(log.Take(), (Lines{"DateClicked 2024-01-20", "DateDblClicked 2024-01-20"}));
}

TEST_F(Clicks, MonthButtonsStepAcrossYearEndsWithoutMonthChanged) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  c->CurrentDate(host::DateSerial(2023, 12, 15));
  ClickButton(*c->NextButton());
  EXPECT_EQ(log.Take(), Lines{"NextButtonClicked 2024-01-15"});
  ClickButton(*c->PreviousButton());
  ClickButton(*c->PreviousButton());
  EXPECT_EQ(log.Take(), (Lines{"LastButtonClicked 2023-12-15", "LastButtonClicked 2023-11-15"}));
  EXPECT_EQ(std::string(c->MonthYearCaption().caption.begin(), c->MonthYearCaption().caption.end()),
            "novembro de 2023");
  // The 31st into a month of 30 days keeps the last day.
  c->CurrentDate(host::DateSerial(2024, 3, 31));
  ClickButton(*c->NextButton());
  EXPECT_EQ(log.Take(), Lines{"NextButtonClicked 2024-04-30"});
  EXPECT_EQ(c->SelectedCell(), c->FirstDayCell() + 29);
}

TEST_F(Clicks, SmallCalendarButtonsSitAtTheirPlaces) {
  auto c = Make<USCalendarSmall>();
  platform::RECT r{};
  platform::GetWindowRect(c->NextButton()->hWnd(), &r);
  EXPECT_EQ(r.left, 180);
  EXPECT_EQ(r.top, 32);
  EXPECT_EQ(r.right - r.left, 22);
  EXPECT_EQ(r.bottom - r.top, 24);
  EventLog log(*c);
  c->CurrentDate(host::DateSerial(2024, 1, 31));
  ClickButton(*c->NextButton());
  EXPECT_EQ(log.Take(), Lines{"NextButtonClicked 2024-02-29"});
}

TEST_F(Clicks, HeadingTodayAndWeekdayHeadings) {
  auto c = Make<USCalendar>();
  EventLog log(*c);
  // A left press and its click both raise the heading event; a right press only the first.
  Press(20, 85);
  EXPECT_EQ(log.Take(), (Lines{"MonthHeadingClicked 2024-01-15", "MonthHeadingClicked 2024-01-15"}));
  Pause();
  Press(20, 85, platform::MouseButton::Right);
  EXPECT_EQ(log.Take(), Lines{"MonthHeadingClicked 2024-01-15"});
  Pause();
  DoublePress(20, 85);
  EXPECT_EQ(log.Take(), (Lines{"MonthHeadingClicked 2024-01-15", "MonthHeadingClicked 2024-01-15",
                               "MonthHeadingDblClicked 2024-01-15"}));
  Pause();

  c->CurrentDate(host::DateSerial(2024, 6, 10));
  Press(20, 55);
  EXPECT_EQ(log.Take(), Lines{"TodayClicked 2024-01-15"});
  EXPECT_EQ(Iso(c->CurrentDate()), "2024-01-15");
  Pause();

  // Column 3 from Sunday is Wednesday (4), column 6 Saturday (7); from Monday, column 6 is
  // Sunday (1).
  Press(23 + 32 * 3 + 4, 118);
  EXPECT_EQ(log.Take(), Lines{"WeekHeadingClicked 4"});
  Pause();
  Press(23 + 32 * 6 + 4, 118);
  EXPECT_EQ(log.Take(), Lines{"WeekHeadingClicked 7"});
  Pause();
  c->WeekStartsWith(host::vbMonday);
  DoublePress(23 + 32 * 6 + 4, 118);
  EXPECT_EQ(log.Take(), (Lines{"WeekHeadingClicked 1", "WeekHeadingDblClicked 1"}));
}

}  // namespace
}  // namespace mx::dates::testing
