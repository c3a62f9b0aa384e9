// Date and time members of MX. The layout logic lives in DateFormats; these members add the
// clock, the host's calendar arithmetic and the Portuguese day names.
#include <optional>

#include "host/DateTime.h"
#include "host/Strings.h"
#include "utility/MX.h"

namespace mx::utility {

using host::String;
using host::StringView;

namespace {

const char16_t* const kDayNames[7] = {u"Domingo",     u"Segunda-feira", u"Terça-feira", u"Quarta-feira",
                                      u"Quinta-feira", u"Sexta-feira",   u"Sábado"};

String TwoDigits(int value) {
  String text;
  text.push_back(static_cast<char16_t>(u'0' + value / 10 % 10));
  text.push_back(static_cast<char16_t>(u'0' + value % 10));
  return text;
}

// A time part read strictly: optional blanks around one or more decimal digits, nothing else.
std::optional<int> StrictInteger(StringView text) {
  const String trimmed = host::Trim(text);
  if (trimmed.empty() || trimmed.size() > 9) return std::nullopt;
  int value = 0;
  for (char16_t c : trimmed) {
    if (c < u'0' || c > u'9') return std::nullopt;
    value = value * 10 + (c - u'0');
  }
  return value;
}

}  // namespace

bool MX::IsValidDate(const String& xDate, ENUM_DATE_FORMAT xFormat) const {
  return ValidateDateText(xDate, xFormat);
}

bool MX::IsValidDateEx(const String& xDate, ENUM_DATE_FORMAT xFormat) const {
  return ValidateDateText(xDate, xFormat);
}

String MX::FormatAsDate(const String& xDate, const String& xFormat) const { return ConvertDateText(xDate, xFormat); }

String MX::FormatAsDateEx(const String& xDate, const String& xFormat) const {
  return ConvertDateText(xDate, xFormat);
}

bool MX::IsValidTime(const String& xTime, const String& xDelimiter) const {
  // Empty text names no time at all, although every missing part would otherwise count as 0.
  if (xTime.empty()) return false;
  int values[3] = {0, 0, 0};
  if (!xDelimiter.empty()) {
    size_t start = 0;
    for (int index = 0;; ++index) {
      if (index == 3) return false;  // a fourth part
      const size_t at = xTime.find(xDelimiter, start);
      const StringView part = StringView(xTime).substr(start, at == String::npos ? String::npos : at - start);
      const std::optional<int> value = StrictInteger(part);
      if (!value) return false;
      values[index] = *value;
      if (at == String::npos) break;
      start = at + xDelimiter.size();
    }
  } else {
    // Without a delimiter the length decides: hhmm or hhmmss.
    if (xTime.size() != 4 && xTime.size() != 6) return false;
    for (size_t index = 0; index * 2 < xTime.size(); ++index) {
      const std::optional<int> value = StrictInteger(StringView(xTime).substr(index * 2, 2));
      if (!value) return false;
      values[index] = *value;
    }
  }
  return values[0] <= 23 && values[1] <= 59 && values[2] <= 59;
}

String MX::CurrentTime() const {
  const host::DateParts now = host::SplitDate(host::Now());
  return TwoDigits(now.hour) + u":" + TwoDigits(now.minute) + u":" + TwoDigits(now.second);
}

String MX::CurrentDate() const {
  // The day-first layout whatever the regional setting, as FormatAsDate gives it for "DD/MM/YYYY".
  const host::DateParts now = host::SplitDate(host::Date());
  String year = host::FromUtf8(std::to_string(now.year));
  if (year.size() < 4) year.insert(0, 4 - year.size(), u'0');
  return TwoDigits(now.day) + u"/" + TwoDigits(now.month) + u"/" + year;
}

String MX::CurrentDateTime() const { return CurrentDate() + u" " + CurrentTime(); }

int32_t MX::NumberOfDaysOnMonth(int16_t xMonth, int16_t xYear) const {
  try {
    const int year = xYear == 0 ? host::Year(host::Now()) : xYear;
    // The first of the month is read as text under the regional setting, so the month length is
    // true where the setting puts the day first; elsewhere "01/2/2024" is the second of January.
    const String text = u"01/" + host::FromUtf8(std::to_string(xMonth)) + u"/" + host::FromUtf8(std::to_string(year));
    const double first = host::CDate(text);
    const double next = host::DateAdd(u"m", 1, first);
    return host::DateDiff(u"d", first, next);
  } catch (...) {
    return 0;
  }
}

bool MX::IsYearLeap(int16_t xYear) const { return xYear % 4 == 0 && (xYear % 100 != 0 || xYear % 400 == 0); }

int16_t MX::CalculateAge(double xBirthday) const {
  try {
    const double today = host::Date();
    int age = host::Year(today) - host::Year(xBirthday);
    const int month = host::Month(today);
    const int birthMonth = host::Month(xBirthday);
    // A birthday falling today counts as reached.
    if (month < birthMonth || (month == birthMonth && host::Day(today) < host::Day(xBirthday))) --age;
    return static_cast<int16_t>(age);
  } catch (...) {
    return 0;
  }
}

String MX::NameOfTheDay(double xDate, bool xAbbreviated) const {
  try {
    const String name = kDayNames[host::Weekday(xDate, host::vbSunday) - 1];
    return xAbbreviated ? name.substr(0, 3) : name;
  } catch (...) {
    return String();
  }
}

}  // namespace mx::utility
