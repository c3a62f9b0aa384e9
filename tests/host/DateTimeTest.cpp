#include "host/DateTime.h"

#include <gtest/gtest.h>

#include "host/Locale.h"
#include "platform/Clock.h"
#include "RegionalTestSupport.h"

namespace mx::host {
namespace {

using test::At;

// Day counts worked out by hand: 2024-01-01 is day 45292, so 29 February 2024 is 45292 + 59.
constexpr double kJan1st2024 = 45292;
constexpr double kLeapDay2024 = 45351;    // a Thursday
constexpr double kNewYearsEve2023 = 45291;  // a Sunday

TEST(DateSerial, BuildsKnownDayCounts) {
  EXPECT_EQ(DateSerial(1899, 12, 30), 0);
  EXPECT_EQ(DateSerial(2024, 1, 1), kJan1st2024);
  EXPECT_EQ(DateSerial(2024, 2, 29), kLeapDay2024);
  EXPECT_EQ(DateSerial(100, 1, 1), -657434);
  EXPECT_EQ(DateSerial(9999, 12, 31), 2958465);
}

TEST(DateSerial, RollsMonthsAndDaysOver) {
  EXPECT_EQ(DateSerial(2024, 13, 1), DateSerial(2025, 1, 1));
  EXPECT_EQ(DateSerial(2024, 0, 1), DateSerial(2023, 12, 1));
  EXPECT_EQ(DateSerial(2024, -11, 1), DateSerial(2023, 1, 1));
  EXPECT_EQ(DateSerial(2024, 3, 0), kLeapDay2024);  // day 0: the last of the month before
  EXPECT_EQ(DateSerial(2024, 1, -1), DateSerial(2023, 12, 30));
  EXPECT_EQ(DateSerial(2023, 2, 29), DateSerial(2023, 3, 1));
  EXPECT_EQ(DateSerial(2024, 1, 366), DateSerial(2024, 12, 31));
}

TEST(DateSerial, TwoDigitYearsAndLimits) {
  EXPECT_EQ(DateSerial(29, 1, 1), DateSerial(2029, 1, 1));
  EXPECT_EQ(DateSerial(30, 1, 1), DateSerial(1930, 1, 1));
  EXPECT_EQ(DateSerial(0, 6, 15), DateSerial(2000, 6, 15));
  EXPECT_EQ(DateSerial(99, 13, 1), DateSerial(2000, 1, 1));  // 1999 first, then the month rolls
  EXPECT_RAISES(DateSerial(10000, 1, 1), 5);
  EXPECT_RAISES(DateSerial(9999, 12, 32), 5);
  EXPECT_RAISES(DateSerial(100, 1, 0), 5);
}

TEST(TimeSerial, RollsIntoDaysBothWays) {
  EXPECT_EQ(TimeSerial(12, 0, 0), 0.5);
  EXPECT_EQ(TimeSerial(0, 90, 0), TimeSerial(1, 30, 0));
  DateParts later = SplitDate(TimeSerial(25, 0, 0));
  EXPECT_EQ(later.day, 31);
  EXPECT_EQ(later.hour, 1);
  // One minute before day 0 is the evening of 29 December, stored as -1 minus the time.
  double before = TimeSerial(0, -1, 0);
  EXPECT_DOUBLE_EQ(before, -1 - 86340.0 / 86400);
  DateParts parts = SplitDate(before);
  EXPECT_EQ(parts.day, 29);
  EXPECT_EQ(parts.hour, 23);
  EXPECT_EQ(parts.minute, 59);
}

TEST(DateParts, FollowTheSignRuleBeforeDayZero) {
  // -1.25 is 29 December 06:00: the fraction counts forward even on negative days.
  DateParts parts = SplitDate(-1.25);
  EXPECT_EQ(parts.year, 1899);
  EXPECT_EQ(parts.day, 29);
  EXPECT_EQ(parts.hour, 6);
  EXPECT_DOUBLE_EQ(DateAdd(u"h", 6, -1.0), -1.25);
  EXPECT_DOUBLE_EQ(DateAdd(u"h", -6, 0.0), -1.75);
  EXPECT_DOUBLE_EQ(DateAdd(u"d", 1, -1.25), 0.25);
}

TEST(DateParts, ReadEachFieldAndRoundToTheSecond) {
  double date = kLeapDay2024 + 0.75 + 9.0 / 86400;  // 18:00:09
  EXPECT_EQ(Year(date), 2024);
  EXPECT_EQ(Month(date), 2);
  EXPECT_EQ(Day(date), 29);
  EXPECT_EQ(Hour(date), 18);
  EXPECT_EQ(Minute(date), 0);
  EXPECT_EQ(Second(date), 9);
  // Less than half a second before midnight shows as the next day.
  double almost = kLeapDay2024 + 86399.6 / 86400;
  EXPECT_EQ(Month(almost), 3);
  EXPECT_EQ(Day(almost), 1);
  EXPECT_EQ(Hour(almost), 0);
  EXPECT_EQ(SplitDate(DateSerial(2024, 12, 31)).dayOfYear, 366);
  EXPECT_RAISES(Year(1e12), 6);
}

TEST(Weekday, CountsFromTheGivenFirstDay) {
  EXPECT_EQ(Weekday(kLeapDay2024), 5);  // Thursday, Sunday first
  EXPECT_EQ(Weekday(kLeapDay2024, vbMonday), 4);
  EXPECT_EQ(Weekday(kLeapDay2024, vbThursday), 1);
  EXPECT_EQ(Weekday(kLeapDay2024, vbFriday), 7);
  EXPECT_EQ(Weekday(kLeapDay2024, vbUseSystemDayOfWeek), 5);  // both settings start on Sunday
  EXPECT_EQ(Weekday(0), 7);  // day 0 was a Saturday
  EXPECT_EQ(Weekday(-1.5), 6);
  EXPECT_RAISES(Weekday(kLeapDay2024, 8), 5);
}

TEST(Names, ComeFromTheRegionalSetting) {
  ScopedLocale portuguese("pt-BR");
  EXPECT_EQ(WeekdayName(1), u"domingo");
  EXPECT_EQ(WeekdayName(3), u"ter\u00e7a-feira");
  EXPECT_EQ(WeekdayName(1, true, vbMonday), u"seg");
  EXPECT_EQ(WeekdayName(7, true, vbMonday), u"dom");
  EXPECT_EQ(MonthName(3), u"mar\u00e7o");
  EXPECT_EQ(MonthName(12, true), u"dez");
  EXPECT_RAISES(MonthName(13), 5);
  EXPECT_RAISES(WeekdayName(0), 5);
  ScopedLocale english("en-US");
  EXPECT_EQ(WeekdayName(7), u"Saturday");
  EXPECT_EQ(WeekdayName(2, true, vbSaturday), u"Sun");
  EXPECT_EQ(MonthName(5, true), u"May");
  EXPECT_EQ(MonthName(9), u"September");
}

TEST(DateAdd, MonthStepsClampToTheLastDay) {
  EXPECT_EQ(DateAdd(u"m", 1, DateSerial(2024, 1, 31)), DateSerial(2024, 2, 29));
  EXPECT_EQ(DateAdd(u"m", 1, DateSerial(2023, 1, 31)), DateSerial(2023, 2, 28));
  EXPECT_EQ(DateAdd(u"M", -1, DateSerial(2024, 3, 31)), DateSerial(2024, 2, 29));
  EXPECT_EQ(DateAdd(u"m", 2, DateSerial(2024, 1, 31)), DateSerial(2024, 3, 31));  // not chained
  EXPECT_EQ(DateAdd(u"m", -13, DateSerial(2024, 1, 15)), DateSerial(2022, 12, 15));
  EXPECT_EQ(DateAdd(u"q", 1, DateSerial(2024, 1, 31)), DateSerial(2024, 4, 30));
  EXPECT_EQ(DateAdd(u"yyyy", 1, kLeapDay2024), DateSerial(2025, 2, 28));
  EXPECT_EQ(DateAdd(u"yyyy", 4, kLeapDay2024), DateSerial(2028, 2, 29));
  EXPECT_DOUBLE_EQ(DateAdd(u"m", 1, At(2024, 1, 31, 18)), At(2024, 2, 29, 18));  // time kept
}

TEST(DateAdd, DayWeekAndTimeIntervals) {
  EXPECT_EQ(DateAdd(u"d", 1, kNewYearsEve2023), kJan1st2024);
  EXPECT_EQ(DateAdd(u"y", -1, kJan1st2024), kNewYearsEve2023);
  EXPECT_EQ(DateAdd(u"w", 1, kNewYearsEve2023), kJan1st2024);  // "w" adds days
  EXPECT_EQ(DateAdd(u"ww", 2, kJan1st2024), kJan1st2024 + 14);
  EXPECT_DOUBLE_EQ(DateAdd(u"n", 90, kJan1st2024), At(2024, 1, 1, 1, 30));
  EXPECT_DOUBLE_EQ(DateAdd(u"s", -1, kJan1st2024), At(2023, 12, 31, 23, 59, 59));
  EXPECT_DOUBLE_EQ(DateAdd(u"H", 36, kJan1st2024), At(2024, 1, 2, 12));
  EXPECT_EQ(DateAdd(u"d", 2.5, kJan1st2024), kJan1st2024 + 2);  // half to even
  EXPECT_EQ(DateAdd(u"d", 3.5, kJan1st2024), kJan1st2024 + 4);
  EXPECT_RAISES(DateAdd(u"yyyy", 1, DateSerial(9999, 6, 1)), 5);
  EXPECT_RAISES(DateAdd(u"d", -1, DateSerial(100, 1, 1)), 5);
  EXPECT_RAISES(DateAdd(u"x", 1, kJan1st2024), 5);
  EXPECT_RAISES(DateAdd(u"", 1, kJan1st2024), 5);
}

TEST(DateDiff, CountsBoundariesAcrossTheYearEnd) {
  double eve = At(2023, 12, 31, 23, 59, 59);
  double newYear = At(2024, 1, 1, 0, 0, 1);
  EXPECT_EQ(DateDiff(u"yyyy", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"q", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"m", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"d", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"h", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"n", eve, newYear), 1);
  EXPECT_EQ(DateDiff(u"s", eve, newYear), 2);
  EXPECT_EQ(DateDiff(u"yyyy", newYear, eve), -1);
  EXPECT_EQ(DateDiff(u"yyyy", DateSerial(2024, 1, 1), DateSerial(2024, 12, 31)), 0);
  EXPECT_EQ(DateDiff(u"m", DateSerial(2024, 1, 31), DateSerial(2024, 2, 1)), 1);
  EXPECT_EQ(DateDiff(u"D", DateSerial(2024, 2, 1), DateSerial(2024, 3, 1)), 29);
}

TEST(DateDiff, WeeksAndCalendarWeeks) {
  // 2023-12-30 is a Saturday, 31 a Sunday, 2024-01-01 a Monday.
  double saturday = DateSerial(2023, 12, 30);
  EXPECT_EQ(DateDiff(u"ww", saturday, kNewYearsEve2023), 1);  // crosses a Sunday
  EXPECT_EQ(DateDiff(u"ww", kNewYearsEve2023, kJan1st2024), 0);
  EXPECT_EQ(DateDiff(u"ww", kNewYearsEve2023, kJan1st2024, vbMonday), 1);
  EXPECT_EQ(DateDiff(u"ww", kJan1st2024, saturday), -1);
  EXPECT_EQ(DateDiff(u"ww", kJan1st2024, DateSerial(2024, 1, 14)), 2);
  EXPECT_EQ(DateDiff(u"w", kJan1st2024, DateSerial(2024, 1, 14)), 1);  // whole weeks: 13 days
  EXPECT_EQ(DateDiff(u"w", DateSerial(2024, 1, 14), kJan1st2024), -1);
  EXPECT_EQ(DateDiff(u"ww", -10.0, 10.0), 3);  // the count runs straight through day 0
  EXPECT_RAISES(DateDiff(u"s", DateSerial(100, 1, 1), DateSerial(9999, 1, 1)), 6);
}

TEST(DatePart, WeekOfYearRules) {
  EXPECT_EQ(DatePart(u"ww", kJan1st2024), 1);
  EXPECT_EQ(DatePart(u"ww", kLeapDay2024), 9);  // week 1 began on Sunday 31 December
  EXPECT_EQ(DatePart(u"ww", kNewYearsEve2023), 53);
  // Four-day rule with Monday first: 1 January 2021 (a Friday) is in week 53 of 2020, and
  // 30 December 2024 (a Monday) already in week 1 of 2025.
  EXPECT_EQ(DatePart(u"ww", DateSerial(2021, 1, 1), vbMonday, vbFirstFourDays), 53);
  EXPECT_EQ(DatePart(u"ww", DateSerial(2021, 1, 4), vbMonday, vbFirstFourDays), 1);
  EXPECT_EQ(DatePart(u"ww", DateSerial(2024, 12, 30), vbMonday, vbFirstFourDays), 1);
  // Full-week rule: 2024's first full Sunday week starts on the 7th.
  EXPECT_EQ(DatePart(u"ww", DateSerial(2024, 1, 6), vbSunday, vbFirstFullWeek), 53);
  EXPECT_EQ(DatePart(u"ww", DateSerial(2024, 1, 7), vbSunday, vbFirstFullWeek), 1);
  EXPECT_RAISES(DatePart(u"ww", kJan1st2024, vbSunday, 4), 5);
}

TEST(DatePart, OtherIntervals) {
  double date = At(2024, 8, 15, 13, 14, 15);
  EXPECT_EQ(DatePart(u"yyyy", date), 2024);
  EXPECT_EQ(DatePart(u"q", date), 3);
  EXPECT_EQ(DatePart(u"m", date), 8);
  EXPECT_EQ(DatePart(u"y", date), 228);
  EXPECT_EQ(DatePart(u"d", date), 15);
  EXPECT_EQ(DatePart(u"w", date), 5);  // a Thursday
  EXPECT_EQ(DatePart(u"w", date, vbMonday), 4);
  EXPECT_EQ(DatePart(u"h", date), 13);
  EXPECT_EQ(DatePart(u"n", date), 14);
  EXPECT_EQ(DatePart(u"s", date), 15);
}

TEST(Clock, NowDateTimeAndTimerFollowTheVirtualClock) {
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 2, 0, 29, 13, 45, 30, 250});
  EXPECT_DOUBLE_EQ(Now(), At(2024, 2, 29, 13, 45, 30));
  EXPECT_EQ(Date(), kLeapDay2024);
  EXPECT_DOUBLE_EQ(Time(), TimeSerial(13, 45, 30));
  EXPECT_DOUBLE_EQ(Timer(), 13 * 3600 + 45 * 60 + 30.25);
  platform::AdvanceVirtualClock(11 * 3600 * 1000);
  EXPECT_EQ(Date(), kLeapDay2024 + 1);
  EXPECT_EQ(Hour(Now()), 0);
}

class ParseDates : public ::testing::Test {
 protected:
  // The current year stands in for a missing one: fix it.
  platform::ScopedVirtualClock m_clock{platform::SYSTEMTIME{2024, 6, 0, 10, 8, 0, 0, 0}};
};

TEST_F(ParseDates, DayFirstInPortuguese) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(CDate(u"31/12/2023"), kNewYearsEve2023);
  EXPECT_EQ(CDate(u"05/04/2024"), DateSerial(2024, 4, 5));
  EXPECT_EQ(CDate(u"31-12-2023"), kNewYearsEve2023);
  EXPECT_EQ(CDate(u" 31.12.2023 "), kNewYearsEve2023);
  EXPECT_EQ(CDate(u"12/31/2023"), kNewYearsEve2023);  // impossible day-first: read month-first
  EXPECT_EQ(CDate(u"31/12"), DateSerial(2024, 12, 31));
  EXPECT_EQ(CDate(u"15 de janeiro de 2024"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"segunda-feira, 15 de janeiro de 2024"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"15/MAR\u00c7O/2024"), DateSerial(2024, 3, 15));
  EXPECT_EQ(CDate(u"15-dez-24"), DateSerial(2024, 12, 15));
}

TEST_F(ParseDates, MonthFirstInEnglish) {
  ScopedLocale locale("en-US");
  EXPECT_EQ(CDate(u"12/31/2023"), kNewYearsEve2023);
  EXPECT_EQ(CDate(u"05/04/2024"), DateSerial(2024, 5, 4));
  EXPECT_EQ(CDate(u"31/12/2023"), kNewYearsEve2023);  // impossible month-first: read day-first
  EXPECT_EQ(CDate(u"January 15, 2024"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"Monday, January 15, 2024"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"Monday, 1/15/2024"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"15-Jan-24"), DateSerial(2024, 1, 15));
  EXPECT_EQ(CDate(u"2/29"), kLeapDay2024);
}

TEST_F(ParseDates, YearsTimesAndPartialDates) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(CDate(u"2024-01-15"), DateSerial(2024, 1, 15));  // a year first is always y-m-d
  EXPECT_EQ(CDate(u"1/1/29"), DateSerial(2029, 1, 1));
  EXPECT_EQ(CDate(u"1/1/30"), DateSerial(1930, 1, 1));
  EXPECT_EQ(CDate(u"12/2023"), DateSerial(2023, 12, 1));  // month and year
  EXPECT_DOUBLE_EQ(CDate(u"31/12/2023 13:45:30"), At(2023, 12, 31, 13, 45, 30));
  EXPECT_DOUBLE_EQ(CDate(u"31/12/2023 1:45 PM"), At(2023, 12, 31, 13, 45));
  EXPECT_DOUBLE_EQ(CDate(u"10:30"), 0.4375);
  EXPECT_DOUBLE_EQ(CDate(u"12:00 AM"), 0.0);
  EXPECT_DOUBLE_EQ(CDate(u"12:30pm"), TimeSerial(12, 30, 0));
  EXPECT_DOUBLE_EQ(CDate(u"7 pm"), TimeSerial(19, 0, 0));
  EXPECT_DOUBLE_EQ(CDate(u"13:45 31/12/2023"), At(2023, 12, 31, 13, 45));
  EXPECT_EQ(DateValueOf(u"31/12/2023 13:45"), kNewYearsEve2023);
  EXPECT_DOUBLE_EQ(TimeValue(u"31/12/2023 12:00"), 0.5);
}

TEST_F(ParseDates, RefusesWhatIsNoDate) {
  for (const char16_t* text : {u"", u"   ", u"abc", u"13/25/2024", u"32/01/2024", u"29/02/2023", u"2024",
                               u"10:61", u"25:00", u"1/2/3/4", u"1//2/2024", u"13:00 PM", u"31/12/2023 10",
                               u"janeiro", u"15 foo 2024", u"1:2:3:4", u"1,5", u"1/5,2024"}) {
    EXPECT_FALSE(IsDate(text)) << ToUtf8(text);
  }
  EXPECT_TRUE(IsDate(u"29/02/2024"));
  EXPECT_RAISES(CDate(u"xyz"), 13);
  EXPECT_RAISES(DateValueOf(u"xyz"), 13);
  EXPECT_RAISES(CDate(1e10), 6);
  EXPECT_EQ(CDate(45000.5), 45000.5);
}

}  // namespace
}  // namespace mx::host
