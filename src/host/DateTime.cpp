#include "host/DateTime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "host/Err.h"
#include "host/Locale.h"
#include "platform/Clock.h"

namespace mx::host {
namespace {

// 1899-12-30 counted from 1970-01-01, the platform's day zero.
constexpr int64_t kUnixDayOfDayZero = -25569;
constexpr int64_t kMinDay = -657434;   // 100-01-01
constexpr int64_t kMaxDay = 2958465;   // 9999-12-31
constexpr int64_t kSecondsPerDay = 86400;

// A date on a straight time line: whole days (floor) and seconds into the day. The host's
// doubles are not linear before day 0, so all arithmetic happens on this form.
struct Instant {
  int64_t day = 0;
  int64_t seconds = 0;
  [[nodiscard]] int64_t TotalSeconds() const { return day * kSecondsPerDay + seconds; }
  static Instant FromTotalSeconds(int64_t total) {
    int64_t day = total >= 0 ? total / kSecondsPerDay : -((-total + kSecondsPerDay - 1) / kSecondsPerDay);
    return {day, total - day * kSecondsPerDay};
  }
};

[[noreturn]] void RaiseInvalidArgument() { Raise(kErrInvalidProcedureCall); }

// The whole part names the day and the fraction, whatever the sign, the time into that day.
Instant ToInstant(double date) {
  if (!std::isfinite(date) || date < kMinDay - 1.0 || date > kMaxDay + 1.0) Raise(kErrOverflow);
  double whole = std::trunc(date);
  auto day = static_cast<int64_t>(whole);
  auto seconds = static_cast<int64_t>(std::llround(std::fabs(date - whole) * kSecondsPerDay));
  if (seconds >= kSecondsPerDay) {
    // Rounded up to the next midnight: one day on along the time line, for either sign.
    ++day;
    seconds -= kSecondsPerDay;
  }
  return {day, seconds};
}

double ToDate(const Instant& instant) {
  double fraction = static_cast<double>(instant.seconds) / kSecondsPerDay;
  return instant.day >= 0 ? static_cast<double>(instant.day) + fraction
                          : static_cast<double>(instant.day) - fraction;
}

bool InRange(const Instant& instant) { return instant.day >= kMinDay && instant.day <= kMaxDay; }

double CheckedDate(const Instant& instant) {
  if (!InRange(instant)) RaiseInvalidArgument();
  return ToDate(instant);
}

int64_t DayOf(int year, int month, int day) {
  return platform::DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) -
         kUnixDayOfDayZero;
}

void CivilOf(int64_t day, int& year, int& month, int& dayOfMonth) {
  unsigned m = 1, d = 1;
  platform::CivilFromDays(day + kUnixDayOfDayZero, &year, &m, &d);
  month = static_cast<int>(m);
  dayOfMonth = static_cast<int>(d);
}

// 0 = Sunday. Day 0 was a Saturday.
int DayOfWeekIndex(int64_t day) { return static_cast<int>(((day + 6) % 7 + 7) % 7); }

int ResolveFirstDay(int firstDayOfWeek) {
  if (firstDayOfWeek == vbUseSystemDayOfWeek) return CurrentLocale().firstDayOfWeek;
  if (firstDayOfWeek < vbSunday || firstDayOfWeek > vbSaturday) RaiseInvalidArgument();
  return firstDayOfWeek;
}

int ResolveFirstWeek(int firstWeekOfYear) {
  if (firstWeekOfYear == vbUseSystem) return vbFirstJan1;
  if (firstWeekOfYear < vbFirstJan1 || firstWeekOfYear > vbFirstFullWeek) RaiseInvalidArgument();
  return firstWeekOfYear;
}

// Weekday 1..7 of a day in a week that starts on firstDay (1 = Sunday).
int WeekdayOf(int64_t day, int firstDay) { return (DayOfWeekIndex(day) - (firstDay - 1) + 7) % 7 + 1; }

// The first day of week 1 of a year.
int64_t FirstWeekStart(int year, int firstDay, int firstWeek) {
  int64_t jan1 = DayOf(year, 1, 1);
  int64_t weekOfJan1 = jan1 - (WeekdayOf(jan1, firstDay) - 1);
  int daysInYear = static_cast<int>(weekOfJan1 + 7 - jan1);  // days of that week in the new year
  switch (firstWeek) {
    case vbFirstFourDays: return daysInYear >= 4 ? weekOfJan1 : weekOfJan1 + 7;
    case vbFirstFullWeek: return daysInYear == 7 ? weekOfJan1 : weekOfJan1 + 7;
    default: return weekOfJan1;
  }
}

int WeekNumber(int64_t day, int firstDay, int firstWeek) {
  int year, month, dom;
  CivilOf(day, year, month, dom);
  int64_t start = FirstWeekStart(year, firstDay, firstWeek);
  // Days before week 1 belong to the last week of the year before; with the four-day and
  // full-week rules the last days of December may already be week 1 of the next year.
  if (day < start) start = FirstWeekStart(year - 1, firstDay, firstWeek);
  else if (firstWeek != vbFirstJan1 && day >= FirstWeekStart(year + 1, firstDay, firstWeek)) return 1;
  return static_cast<int>((day - start) / 7 + 1);
}

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval ParseInterval(StringView text) {
  static constexpr struct {
    StringView name;
    Interval interval;
  } kIntervals[] = {
      {u"yyyy", Interval::Year},    {u"q", Interval::Quarter}, {u"m", Interval::Month},
      {u"y", Interval::DayOfYear},  {u"d", Interval::Day},     {u"w", Interval::Weekday},
      {u"ww", Interval::Week},      {u"h", Interval::Hour},    {u"n", Interval::Minute},
      {u"s", Interval::Second},
  };
  for (const auto& entry : kIntervals) {
    if (EqualsNoCase(entry.name, text)) return entry.interval;
  }
  RaiseInvalidArgument();
}

Instant AddMonths(const Instant& instant, int64_t months) {
  int year, month, day;
  CivilOf(instant.day, year, month, day);
  int64_t total = static_cast<int64_t>(year) * 12 + (month - 1) + months;
  int64_t newYear = total >= 0 ? total / 12 : -((-total + 11) / 12);
  int newMonth = static_cast<int>(total - newYear * 12) + 1;
  if (newYear < 100 || newYear > 9999) RaiseInvalidArgument();
  // A month step keeps the day, held to the end of a shorter month: 31 January + 1 = 29 February.
  int newDay = std::min(day, DaysInMonth(static_cast<int>(newYear), newMonth));
  return {DayOf(static_cast<int>(newYear), newMonth, newDay), instant.seconds};
}

int ExpandTwoDigitYear(int64_t year) {
  if (year >= 0 && year < 30) return static_cast<int>(2000 + year);
  if (year >= 30 && year < 100) return static_cast<int>(1900 + year);
  return static_cast<int>(year);
}

// ---- Reading date texts ---------------------------------------------------------------------

struct Token {
  enum Kind { Number, Word, Separator } kind;
  int64_t value = 0;  // Number
  int digits = 0;     // Number
  String text;        // Word, folded to lower case
  char16_t separator = 0;
};

bool IsLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7);
}

bool Tokenize(StringView text, std::vector<Token>& tokens) {
  size_t i = 0;
  while (i < text.size()) {
    char16_t c = text[i];
    if (c == u' ' || c == u'\t') {
      // Blanks separate like "/" does, but runs of them and blanks around other marks collapse.
      ++i;
      if (!tokens.empty() && tokens.back().kind != Token::Separator)
        tokens.push_back({Token::Separator, 0, 0, {}, u' '});
      continue;
    }
    if (c >= u'0' && c <= u'9') {
      Token token{Token::Number, 0, 0, {}, 0};
      while (i < text.size() && text[i] >= u'0' && text[i] <= u'9') {
        if (token.value < 1000000) token.value = token.value * 10 + (text[i] - u'0');
        ++token.digits;
        ++i;
      }
      tokens.push_back(token);
      continue;
    }
    if (IsLetter(c)) {
      Token token{Token::Word, 0, 0, {}, 0};
      // Hyphenated names ("segunda-feira") are one word.
      while (i < text.size() &&
             (IsLetter(text[i]) || (text[i] == u'-' && i + 1 < text.size() && IsLetter(text[i + 1])))) {
        token.text.push_back(FoldLetter(text[i]));
        ++i;
      }
      // An abbreviation may carry a dot: "jan." or "Jan.".
      if (i < text.size() && text[i] == u'.') ++i;
      tokens.push_back(token);
      continue;
    }
    if (c == u'/' || c == u'-' || c == u'.' || c == u',' || c == u':') {
      if (!tokens.empty() && tokens.back().kind == Token::Separator) {
        // A mark after a blank replaces it; two marks in a row are not a date.
        if (tokens.back().separator != u' ') return false;
        tokens.back().separator = c;
      } else {
        tokens.push_back({Token::Separator, 0, 0, {}, c});
      }
      ++i;
      continue;
    }
    return false;
  }
  return true;
}

bool MatchesName(const String& word, StringView name) { return EqualsNoCase(word, name); }

int MonthFromWord(const String& word, const Locale& locale) {
  for (int m = 0; m < 12; ++m) {
    if (MatchesName(word, locale.monthNames[m]) || MatchesName(word, locale.monthAbbreviations[m]))
      return m + 1;
  }
  return 0;
}

bool IsWeekdayWord(const String& word, const Locale& locale) {
  for (int d = 0; d < 7; ++d) {
    if (MatchesName(word, locale.dayNames[d]) || MatchesName(word, locale.dayAbbreviations[d])) return true;
  }
  return false;
}

// 1 for a morning designator, 2 for an afternoon one, 0 otherwise.
int MeridiemFromWord(const String& word, const Locale& locale) {
  if (MatchesName(word, locale.amDesignator) || word == u"am" || word == u"a") return 1;
  if (MatchesName(word, locale.pmDesignator) || word == u"pm" || word == u"p") return 2;
  return 0;
}

bool MakeDay(int64_t year, int64_t month, int64_t day, int64_t& out) {
  if (month < 1 || month > 12 || day < 1) return false;
  int y = ExpandTwoDigitYear(year);
  if (y < 100 || y > 9999) return false;
  if (day > DaysInMonth(y, static_cast<int>(month))) return false;
  out = DayOf(y, static_cast<int>(month), static_cast<int>(day));
  return true;
}

struct DateNumber {
  int64_t value;
  int digits;
  [[nodiscard]] bool IsYearLike() const { return digits >= 3 || value > 31; }
};

int CurrentYear() { return SplitDate(Now()).year; }

// The day of the date parts of a text. Two numbers without a month name are a day and a month
// of the current year in the setting's order; when that is no date the order is swapped, and
// then month and year are tried ("12/2023" is 1 December 2023). Three numbers are read in the
// setting's order unless the first one is a year; "25/12/2024" still reads as Christmas under
// en-US, since the month-first reading is impossible and the day-first one is not. A text with
// no valid reading at all ("13/25/2024") is not a date.
bool ResolveDay(const std::vector<DateNumber>& numbers, int monthName, const Locale& locale, int64_t& out) {
  bool dayFirst = locale.IsDayFirst();
  if (monthName) {
    if (numbers.size() == 1) {
      const DateNumber& n = numbers[0];
      if (n.IsYearLike()) return MakeDay(n.value, monthName, 1, out);
      return MakeDay(CurrentYear(), monthName, n.value, out);
    }
    if (numbers.size() == 2) {
      if (numbers[0].IsYearLike()) return MakeDay(numbers[0].value, monthName, numbers[1].value, out);
      return MakeDay(numbers[1].value, monthName, numbers[0].value, out);
    }
    return false;
  }
  if (numbers.size() == 2) {
    const DateNumber& a = numbers[0];
    const DateNumber& b = numbers[1];
    if (b.IsYearLike()) return MakeDay(b.value, a.value, 1, out);
    if (a.IsYearLike()) return MakeDay(a.value, b.value, 1, out);
    int year = CurrentYear();
    if (dayFirst ? MakeDay(year, b.value, a.value, out) : MakeDay(year, a.value, b.value, out)) return true;
    if (dayFirst ? MakeDay(year, a.value, b.value, out) : MakeDay(year, b.value, a.value, out)) return true;
    return MakeDay(b.value, a.value, 1, out);
  }
  if (numbers.size() == 3) {
    const DateNumber& a = numbers[0];
    const DateNumber& b = numbers[1];
    const DateNumber& c = numbers[2];
    if (a.IsYearLike()) return MakeDay(a.value, b.value, c.value, out) || MakeDay(a.value, c.value, b.value, out);
    if (locale.dateOrder == DateOrder::YearMonthDay && MakeDay(a.value, b.value, c.value, out)) return true;
    if (dayFirst) return MakeDay(c.value, b.value, a.value, out) || MakeDay(c.value, a.value, b.value, out);
    return MakeDay(c.value, a.value, b.value, out) || MakeDay(c.value, b.value, a.value, out);
  }
  return false;
}

bool ParseDateText(StringView text, double& result) {
  std::vector<Token> tokens;
  if (!Tokenize(text, tokens)) return false;
  const Locale& locale = CurrentLocale();

  std::vector<DateNumber> numbers;
  int monthName = 0;
  bool hasTime = false;
  int64_t hour = 0, minute = 0, second = 0;
  int meridiem = 0;
  bool commaAfterNumber = false;

  auto next = [&](size_t i) -> const Token* { return i < tokens.size() ? &tokens[i] : nullptr; };
  auto isSep = [&](size_t i, char16_t c) {
    const Token* t = next(i);
    return t && t->kind == Token::Separator && t->separator == c;
  };
  auto meridiemAt = [&](size_t i) -> int {
    // An AM/PM word right after the time, with or without a blank before it.
    size_t j = isSep(i, u' ') ? i + 1 : i;
    const Token* t = next(j);
    if (t && t->kind == Token::Word) {
      if (int m = MeridiemFromWord(t->text, locale)) return m;
    }
    return 0;
  };

  size_t i = 0;
  while (i < tokens.size()) {
    const Token& token = tokens[i];
    if (token.kind == Token::Separator) {
      // ":" only ever appears inside a time, which is consumed below.
      if (token.separator == u':') return false;
      if (token.separator == u',' && i > 0 && tokens[i - 1].kind == Token::Number) commaAfterNumber = true;
      ++i;
      continue;
    }
    if (token.kind == Token::Word) {
      if (int m = MonthFromWord(token.text, locale)) {
        if (monthName) return false;
        monthName = m;
      } else if (!IsWeekdayWord(token.text, locale) && token.text != u"de" && token.text != u"of") {
        return false;
      }
      ++i;
      continue;
    }
    // A number: the start of a time when ":" or an AM/PM follows, else a date part.
    if (isSep(i + 1, u':')) {
      if (hasTime) return false;
      hasTime = true;
      hour = token.value;
      const Token* m = next(i + 2);
      if (!m || m->kind != Token::Number) return false;
      minute = m->value;
      i += 3;
      if (isSep(i, u':')) {
        const Token* s = next(i + 1);
        if (!s || s->kind != Token::Number) return false;
        second = s->value;
        i += 2;
      }
      if ((meridiem = meridiemAt(i)) != 0) i += isSep(i, u' ') ? 2 : 1;
      continue;
    }
    if (int m = meridiemAt(i + 1)) {
      if (hasTime) return false;
      hasTime = true;
      hour = token.value;
      meridiem = m;
      i += isSep(i + 1, u' ') ? 3 : 2;
      continue;
    }
    if (numbers.size() == 3) return false;
    numbers.push_back({token.value, token.digits});
    ++i;
  }

  if (!hasTime && numbers.empty() && !monthName) return false;
  // A comma separates a day from the year only beside a month name ("January 15, 2024"); between
  // bare numbers it is a decimal mark, and "1,5" is no date.
  if (commaAfterNumber && !monthName) return false;

  int64_t day = 0;
  if (!numbers.empty() || monthName) {
    if (!ResolveDay(numbers, monthName, locale, day)) return false;
  }
  if (hasTime) {
    if (meridiem) {
      if (hour > 12) return false;
      if (hour == 12) hour = 0;
      if (meridiem == 2) hour += 12;
    }
    if (hour > 23 || minute > 59 || second > 59) return false;
  }
  result = ToDate({day, hour * 3600 + minute * 60 + second});
  return true;
}

}  // namespace

DateParts SplitDate(double date) {
  Instant instant = ToInstant(date);
  DateParts parts;
  CivilOf(instant.day, parts.year, parts.month, parts.day);
  parts.hour = static_cast<int>(instant.seconds / 3600);
  parts.minute = static_cast<int>(instant.seconds / 60 % 60);
  parts.second = static_cast<int>(instant.seconds % 60);
  parts.dayOfWeek = DayOfWeekIndex(instant.day) + 1;
  parts.dayOfYear = static_cast<int>(instant.day - DayOf(parts.year, 1, 1)) + 1;
  return parts;
}

bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

double DateSerial(int year, int month, int day) {
  int64_t total = static_cast<int64_t>(ExpandTwoDigitYear(year)) * 12 + (month - 1);
  int64_t y = total >= 0 ? total / 12 : -((-total + 11) / 12);
  int m = static_cast<int>(total - y * 12) + 1;
  if (y < 100 || y > 9999) RaiseInvalidArgument();
  return CheckedDate({DayOf(static_cast<int>(y), m, 1) + day - 1, 0});
}

double TimeSerial(int hour, int minute, int second) {
  int64_t total = static_cast<int64_t>(hour) * 3600 + static_cast<int64_t>(minute) * 60 + second;
  return CheckedDate(Instant::FromTotalSeconds(total));
}

double DateValueOf(StringView text) {
  Instant instant = ToInstant(CDate(text));
  return ToDate({instant.day, 0});
}

double TimeValue(StringView text) {
  Instant instant = ToInstant(CDate(text));
  return ToDate({0, instant.seconds});
}

int Year(double date) { return SplitDate(date).year; }
int Month(double date) { return SplitDate(date).month; }
int Day(double date) { return SplitDate(date).day; }
int Hour(double date) { return SplitDate(date).hour; }
int Minute(double date) { return SplitDate(date).minute; }
int Second(double date) { return SplitDate(date).second; }

int Weekday(double date, int firstDayOfWeek) {
  return WeekdayOf(ToInstant(date).day, ResolveFirstDay(firstDayOfWeek));
}

String WeekdayName(int weekday, bool abbreviate, int firstDayOfWeek) {
  if (weekday < 1 || weekday > 7) RaiseInvalidArgument();
  int firstDay = ResolveFirstDay(firstDayOfWeek);
  const Locale& locale = CurrentLocale();
  int index = (weekday - 1 + firstDay - 1) % 7;
  return String(abbreviate ? locale.dayAbbreviations[index] : locale.dayNames[index]);
}

String MonthName(int month, bool abbreviate) {
  if (month < 1 || month > 12) RaiseInvalidArgument();
  const Locale& locale = CurrentLocale();
  return String(abbreviate ? locale.monthAbbreviations[month - 1] : locale.monthNames[month - 1]);
}

int WeekOfYear(double date, int firstDayOfWeek, int firstWeekOfYear) {
  return WeekNumber(ToInstant(date).day, ResolveFirstDay(firstDayOfWeek), ResolveFirstWeek(firstWeekOfYear));
}

double DateAdd(StringView interval, double number, double date) {
  Interval which = ParseInterval(interval);
  if (!std::isfinite(number) || std::fabs(number) > 2147483647.0) RaiseInvalidArgument();
  // A fractional count is rounded as the host rounds to a whole number: half to even.
  auto count = static_cast<int64_t>(std::nearbyint(number));
  Instant instant = ToInstant(date);
  switch (which) {
    case Interval::Year: return CheckedDate(AddMonths(instant, count * 12));
    case Interval::Quarter: return CheckedDate(AddMonths(instant, count * 3));
    case Interval::Month: return CheckedDate(AddMonths(instant, count));
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday: instant.day += count; return CheckedDate(instant);
    case Interval::Week: instant.day += count * 7; return CheckedDate(instant);
    case Interval::Hour: return CheckedDate(Instant::FromTotalSeconds(instant.TotalSeconds() + count * 3600));
    case Interval::Minute: return CheckedDate(Instant::FromTotalSeconds(instant.TotalSeconds() + count * 60));
    case Interval::Second: return CheckedDate(Instant::FromTotalSeconds(instant.TotalSeconds() + count));
  }
  RaiseInvalidArgument();
}

int32_t DateDiff(StringView interval, double date1, double date2, int firstDayOfWeek, int firstWeekOfYear) {
  Interval which = ParseInterval(interval);
  int firstDay = ResolveFirstDay(firstDayOfWeek);
  ResolveFirstWeek(firstWeekOfYear);  // checked, though no interval of DateDiff depends on it
  Instant a = ToInstant(date1);
  Instant b = ToInstant(date2);
  DateParts pa = SplitDate(date1);
  DateParts pb = SplitDate(date2);
  auto floorDiv = [](int64_t x, int64_t y) { return x >= 0 ? x / y : -((-x + y - 1) / y); };
  int64_t result = 0;
  switch (which) {
    case Interval::Year: result = pb.year - pa.year; break;
    case Interval::Quarter:
      result = (pb.year * 4 + (pb.month - 1) / 3) - (pa.year * 4 + (pa.month - 1) / 3);
      break;
    case Interval::Month: result = (pb.year * 12 + pb.month) - (pa.year * 12 + pa.month); break;
    case Interval::DayOfYear:
    case Interval::Day: result = b.day - a.day; break;
    // Whole weeks between the two days, counted toward zero.
    case Interval::Weekday: result = (b.day - a.day) / 7; break;
    // Calendar weeks: how many first days of the week lie after date1, up to date2.
    case Interval::Week: {
      int64_t shift = 6 - (firstDay - 1);  // day 0 was a Saturday, index 6 from Sunday
      result = floorDiv(b.day + shift, 7) - floorDiv(a.day + shift, 7);
      break;
    }
    case Interval::Hour: result = floorDiv(b.TotalSeconds(), 3600) - floorDiv(a.TotalSeconds(), 3600); break;
    case Interval::Minute: result = floorDiv(b.TotalSeconds(), 60) - floorDiv(a.TotalSeconds(), 60); break;
    case Interval::Second: result = b.TotalSeconds() - a.TotalSeconds(); break;
  }
  if (result > std::numeric_limits<int32_t>::max() || result < std::numeric_limits<int32_t>::min())
    Raise(kErrOverflow);
  return static_cast<int32_t>(result);
}

int DatePart(StringView interval, double date, int firstDayOfWeek, int firstWeekOfYear) {
  Interval which = ParseInterval(interval);
  int firstDay = ResolveFirstDay(firstDayOfWeek);
  int firstWeek = ResolveFirstWeek(firstWeekOfYear);
  DateParts parts = SplitDate(date);
  switch (which) {
    case Interval::Year: return parts.year;
    case Interval::Quarter: return (parts.month - 1) / 3 + 1;
    case Interval::Month: return parts.month;
    case Interval::DayOfYear: return parts.dayOfYear;
    case Interval::Day: return parts.day;
    case Interval::Weekday: return WeekdayOf(ToInstant(date).day, firstDay);
    case Interval::Week: return WeekNumber(ToInstant(date).day, firstDay, firstWeek);
    case Interval::Hour: return parts.hour;
    case Interval::Minute: return parts.minute;
    case Interval::Second: return parts.second;
  }
  RaiseInvalidArgument();
}

double Now() {
  platform::SYSTEMTIME now;
  platform::GetLocalTime(&now);
  return ToDate({DayOf(now.wYear, now.wMonth, now.wDay), now.wHour * 3600 + now.wMinute * 60 + now.wSecond});
}

double Date() { return ToDate({ToInstant(Now()).day, 0}); }

double Time() { return ToDate({0, ToInstant(Now()).seconds}); }

double Timer() {
  platform::SYSTEMTIME now;
  platform::GetLocalTime(&now);
  return now.wHour * 3600.0 + now.wMinute * 60.0 + now.wSecond + now.wMilliseconds / 1000.0;
}

bool TryParseDate(StringView text, double& date) { return ParseDateText(text, date); }

bool IsDate(StringView text) {
  double ignored;
  return ParseDateText(text, ignored);
}

double CDate(StringView text) {
  double date;
  if (!ParseDateText(text, date)) Raise(kErrTypeMismatch);
  return date;
}

bool IsDate(const String& text) { return IsDate(StringView(text)); }
bool IsDate(const char16_t* text) { return IsDate(StringView(text ? text : u"")); }
double CDate(const String& text) { return CDate(StringView(text)); }
double CDate(const char16_t* text) { return CDate(StringView(text ? text : u"")); }

double CDate(double number) {
  if (!std::isfinite(number) || number < kMinDate || number >= kMaxDay + 1.0) Raise(kErrOverflow);
  return number;
}

}  // namespace mx::host
