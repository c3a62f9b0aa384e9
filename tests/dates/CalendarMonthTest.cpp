// The month fill: where day 1 lands, which cells belong to the month, the neighbours' cells,
// the weekday headings, and the two marks.
#include "dates/CalendarTestSupport.h"

#include "host/Locale.h"
#include "host/Strings.h"

namespace mx::dates::testing {
namespace {

std::string Text(const host::String& s) { return std::string(s.begin(), s.end()); }

// Captions of a run of cells joined by blanks, hidden ones as "_".
std::string Captions(const CalendarControl& c, int from, int to) {
  std::string out;
  for (int i = from; i <= to; ++i) {
    if (!out.empty()) out += ' ';
    out += c.DayCell(i).visible ? Text(c.DayCell(i).caption) : "_";
  }
  return out;
}

std::string Columns(const CalendarControl& c) {
  std::string out;
  for (int i = 0; i < 7; ++i) out += (i ? " " : "") + Text(c.ColumnCell(i).caption);
  return out;
}

using Month = CalendarTest;

TEST_F(Month, JanuaryOf2024FillsFromTheCellAfterALeadingDayAndMarksToday) {
  auto c = Make<USCalendar>();
  EXPECT_EQ(c->WeekStartsWith(), 1) << "0 becomes Sunday at the first fill";
  EXPECT_EQ(Text(c->MonthYearCaption().caption), "janeiro de 2024");
  EXPECT_EQ(Columns(*c), "D S T Q Q S S");
  // 1 January 2024 is a Monday: one day of December leads.
  EXPECT_EQ(c->FirstDayCell(), 1);
  EXPECT_EQ(Captions(*c, 0, 2), "31 1 2");
  EXPECT_EQ(Text(c->DayCell(0).tag), "-1");
  EXPECT_EQ(Text(c->DayCell(1).tag), "0");
  EXPECT_EQ(Captions(*c, 30, 41), "30 31 1 2 3 4 5 6 7 8 9 10");
  EXPECT_EQ(Text(c->DayCell(31).tag), "0");
  EXPECT_EQ(Text(c->DayCell(32).tag), "-1");
  EXPECT_EQ(c->DayCell(0).foreColor, 0xC8A35Fu);
  EXPECT_EQ(c->DayCell(2).foreColor, 0xFFFFFFu);

  // Today (the 15th) is cell 15 at (53, 191): the outline 32 x 23 centred on it, the fill 29 x 20
  // half a pixel further.
  EXPECT_EQ(c->SelectedCell(), 15);
  const platform::RECT cell = c->DayCell(15).rect;
  EXPECT_EQ(cell.left, 53);
  EXPECT_EQ(cell.top, 191);
  ASSERT_TRUE(c->DaySelectedBorder().visible);
  EXPECT_EQ(c->DaySelectedBorder().rect.left, 43);
  EXPECT_EQ(c->DaySelectedBorder().rect.top, 186);
  EXPECT_EQ(c->DaySelectedBorder().rect.right, 75);
  EXPECT_EQ(c->DaySelectedBorder().rect.bottom, 209);
  ASSERT_TRUE(c->DaySelected().visible);
  EXPECT_EQ(c->DaySelected().rect.left, 45);
  EXPECT_EQ(c->DaySelected().rect.top, 188);
  EXPECT_EQ(c->DaySelected().rect.right, 74);
  EXPECT_EQ(c->DaySelected().rect.bottom, 208);
  EXPECT_EQ(c->DayCell(15).foreColor, 0xFFFFFFu);
  EXPECT_EQ(Text(c->TodayCaption().caption), Text(host::FormatDate(host::Date(), u"Long Date")));
}

TEST_F(Month, SmallCalendarUsesItsTighterGrid) {
  auto c = Make<USCalendarSmall>();
  EXPECT_EQ(c->DayCell(15).rect.left, 45);
  EXPECT_EQ(c->DayCell(15).rect.top, 131);
  EXPECT_EQ(c->DaySelectedBorder().rect.left, 37);
  EXPECT_EQ(c->DaySelectedBorder().rect.top, 127);
  EXPECT_EQ(c->DaySelected().rect.left, 39);
  EXPECT_EQ(c->DaySelected().rect.top, 129);
  EXPECT_EQ(c->DaySelected().rect.right - c->DaySelected().rect.left, 25);
  EXPECT_EQ(c->ColumnCell(6).rect.left, 19 + 28 * 6);
  EXPECT_FALSE(c->TimerCaption().visible);
  EXPECT_EQ(c->FontTodaySize(), 8.0F);
}

TEST_F(Month, AMonthBeginningOnTheFirstWeekdayShowsAWholeRowBefore) {
  auto c = Make<USCalendar>();
  // September 2024 begins on a Sunday.
  c->CurrentDate(host::DateSerial(2024, 9, 10));
  EXPECT_EQ(c->FirstDayCell(), 7);
  EXPECT_EQ(Captions(*c, 0, 7), "25 26 27 28 29 30 31 1");
  // The same month with weeks from Monday leads with six days.
  c->WeekStartsWith(host::vbMonday);
  EXPECT_EQ(Columns(*c), "S T Q Q S S D");
  EXPECT_EQ(c->FirstDayCell(), 6);
}

TEST_F(Month, FebruaryInLeapAndCommonYears) {
  auto c = Make<USCalendar>();
  // February 2015 begins on a Sunday: 7 lead cells, 28 days, and the last 7 cells are March's.
  c->CurrentDate(host::DateSerial(2015, 2, 3));
  EXPECT_EQ(c->FirstDayCell(), 7);
  EXPECT_EQ(Captions(*c, 34, 41), "28 1 2 3 4 5 6 7");
  for (int i = 35; i < 42; ++i) EXPECT_EQ(Text(c->DayCell(i).tag), "-1") << i;
  // February 2024 (a Thursday start) has its 29th at cell 32.
  c->CurrentDate(host::DateSerial(2024, 2, 29));
  EXPECT_EQ(c->FirstDayCell(), 4);
  EXPECT_EQ(Captions(*c, 32, 33), "29 1");
  EXPECT_EQ(c->SelectedCell(), 32);
  EXPECT_EQ(Text(c->MonthYearCaption().caption), "fevereiro de 2024");
}

TEST_F(Month, NeighbourDaysCanBeHidden) {
  auto c = Make<USCalendar>();
  c->ShowLastMonthDays(false);
  EXPECT_FALSE(c->DayCell(0).visible);
  EXPECT_TRUE(c->DayCell(32).visible);
  c->ShowNextMonthDays(false);
  for (int i = 0; i < CalendarControl::kCellCount; ++i) {
    EXPECT_EQ(c->DayCell(i).visible, i >= 1 && i <= 31) << i;
  }
  // A click on a hidden neighbour's place does nothing.
  EventLog log(*c);
  ClickCell(*c, 0);
  ClickCell(*c, 40);
  EXPECT_EQ(log.Take(), Lines{});
  EXPECT_EQ(Iso(c->CurrentDate()), "2024-01-15");
}

TEST_F(Month, LongWeekdayNamesAndTheOutlineInOtherYears) {
  auto c = Make<USCalendar>();
  c->ShowShortDays(false);
  EXPECT_EQ(Text(c->ColumnCell(0).caption), Text(host::LCase(host::WeekdayName(1, true, host::vbSunday))));
  // Today's day and month in another year still carry the outline, and no fill moves with it.
  c->CurrentDate(host::DateSerial(2019, 1, 3));
  EXPECT_TRUE(c->DaySelectedBorder().visible);
  EXPECT_EQ(c->DaySelectedBorder().rect.left, c->DayCell(c->FirstDayCell() + 14).rect.left - 10);
  c->CurrentDate(host::DateSerial(2019, 3, 3));
  EXPECT_FALSE(c->DaySelectedBorder().visible);
}

TEST_F(Month, CurrentDateDropsTheTimeOfDayAndDateOrderFollowsTheSetting) {
  auto c = Make<USCalendar>();
  c->CurrentDate(host::DateSerial(2024, 5, 6) + 0.75);
  EXPECT_EQ(c->CurrentDate(), host::DateSerial(2024, 5, 6));
  EXPECT_TRUE(GetDateOrder());
  host::ScopedLocale us("en-US");
  EXPECT_FALSE(GetDateOrder());
  // Month first: a click rebuilds the date in that order and still lands on the clicked day.
  c->CurrentDate(host::DateSerial(2024, 1, 15));
  EventLog log(*c);
  ClickCell(*c, 20);
  EXPECT_EQ(log.Take(), Lines{"DateClicked 2024-01-20"});
  EXPECT_EQ(Text(c->MonthYearCaption().caption), "January de 2024");
}

}  // namespace
}  // namespace mx::dates::testing
