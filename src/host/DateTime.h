#pragma once
// The host's date and time functions. A date is a double: the whole part counts days from
// 1899-12-30 (day 0), the fraction is the time of day. Before day 0 the fraction still counts
// forward from midnight: -1.25 is 1899-12-29 06:00, not 1899-12-28 18:00. The host's dates run
// from 100-01-01 to 9999-12-31; results outside that raise "Invalid procedure call or argument".
#include <cstdint>

#include "host/String.h"

namespace mx::host {

// First day of the week and first week of the year, numbered as the host numbers them.
enum : int {
  vbUseSystemDayOfWeek = 0,
  vbSunday = 1,
  vbMonday = 2,
  vbTuesday = 3,
  vbWednesday = 4,
  vbThursday = 5,
  vbFriday = 6,
  vbSaturday = 7,
};
enum : int { vbUseSystem = 0, vbFirstJan1 = 1, vbFirstFourDays = 2, vbFirstFullWeek = 3 };

inline constexpr double kMinDate = -657434.0;  // 100-01-01
inline constexpr double kMaxDate = 2958465.0 + 86399.0 / 86400.0;  // 9999-12-31 23:59:59

// A date taken apart, rounded to the nearest second as the host shows dates.
struct DateParts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
  int dayOfWeek = 7;  // 1 = Sunday ... 7 = Saturday
  int dayOfYear = 364;
};
[[nodiscard]] DateParts SplitDate(double date);

[[nodiscard]] bool IsLeapYear(int year);
[[nodiscard]] int DaysInMonth(int year, int month);

// Builders. Months and days outside their range roll over: month 13 is January of the next
// year, day 0 the last day of the month before. Years 0-29 mean 2000-2029, 30-99 mean 1930-1999.
[[nodiscard]] double DateSerial(int year, int month, int day);
// Hours, minutes and seconds roll over into days, in either direction.
[[nodiscard]] double TimeSerial(int hour, int minute, int second);

// The date part or the time part of a date text; "Type mismatch" when it is not one.
// (DateValueOf: the name DateValue is the date type of a Variant.)
[[nodiscard]] double DateValueOf(StringView text);
[[nodiscard]] double TimeValue(StringView text);

[[nodiscard]] int Year(double date);
[[nodiscard]] int Month(double date);
[[nodiscard]] int Day(double date);
[[nodiscard]] int Hour(double date);
[[nodiscard]] int Minute(double date);
[[nodiscard]] int Second(double date);
// 1 to 7, counted from firstDayOfWeek (vbUseSystemDayOfWeek: the regional setting's).
[[nodiscard]] int Weekday(double date, int firstDayOfWeek = vbSunday);
// The name of the weekday-th day of a week that starts on firstDayOfWeek.
[[nodiscard]] String WeekdayName(int weekday, bool abbreviate = false,
                                 int firstDayOfWeek = vbUseSystemDayOfWeek);
[[nodiscard]] String MonthName(int month, bool abbreviate = false);
// Week number of the year, 1 to 53, by the host's rules for the first week.
[[nodiscard]] int WeekOfYear(double date, int firstDayOfWeek = vbSunday,
                             int firstWeekOfYear = vbFirstJan1);

// Intervals: "yyyy" years, "q" quarters, "m" months, "y", "d", "w" days, "ww" weeks, "h" hours,
// "n" minutes, "s" seconds, compared without regard to case.
[[nodiscard]] double DateAdd(StringView interval, double number, double date);
// Counts the interval boundaries crossed going from date1 to date2 (negative going back).
[[nodiscard]] int32_t DateDiff(StringView interval, double date1, double date2,
                               int firstDayOfWeek = vbSunday, int firstWeekOfYear = vbFirstJan1);
[[nodiscard]] int DatePart(StringView interval, double date, int firstDayOfWeek = vbSunday,
                           int firstWeekOfYear = vbFirstJan1);

// The clock, read from the platform so that tests can fix it. Timer is the seconds since
// midnight, with milliseconds.
[[nodiscard]] double Now();
[[nodiscard]] double Date();
[[nodiscard]] double Time();
[[nodiscard]] double Timer();

// Date texts under the regional setting: day first for pt-BR, month first for en-US; "/", "-"
// or "." between the parts; month names of the setting; an optional time "h:mm[:ss]" with an
// optional AM/PM. Two-digit years 0-29 mean 20xx, 30-99 mean 19xx.
[[nodiscard]] bool TryParseDate(StringView text, double& date);
[[nodiscard]] bool IsDate(StringView text);
[[nodiscard]] bool IsDate(const String& text);
[[nodiscard]] bool IsDate(const char16_t* text);
// A date from a text ("Type mismatch" when it is none) or a number ("Overflow" outside the range).
// The String and pointer forms keep literals unambiguous beside the Variant form.
[[nodiscard]] double CDate(StringView text);
[[nodiscard]] double CDate(const String& text);
[[nodiscard]] double CDate(const char16_t* text);
[[nodiscard]] double CDate(double number);

}  // namespace mx::host
