#include "utility/DateFormats.h"

#include <cmath>
#include <vector>

#include "host/Conversion.h"
#include "host/DateTime.h"
#include "host/Format.h"
#include "host/Strings.h"
#include "utility/MX.h"

namespace mx::utility {

using host::String;
using host::StringView;

namespace {

// Indexed by code; the persisted values make this order fixed.
constexpr StringView kNames[kDateFormatCount] = {
    u"YYYY/MM/DD", u"dd/mm/yyyy", u"MM/DD/YYYY", u"DD/MM/YY",   u"DD-MM-YYYY", u"DD.MM.YYYY", u"DD-MM-YY",
    u"DD.MM.YY",   u"D/M/YYYY",   u"D-M-YYYY",   u"D.M.YYYY",   u"D/M/YY",     u"D-M-YY",     u"D.M.YY",
    u"MM-DD-YYYY", u"MM.DD.YYYY", u"MM/DD/YY",   u"MM-DD-YY",   u"MM.DD.YY",   u"M/D/YYYY",   u"M-D-YYYY",
    u"M.D.YYYY",   u"M/D/YY",     u"M-D-YY",     u"M.D.YY",     u"yyyy-mm-dd", u"YYYY.MM.DD", u"YY/MM/DD",
    u"YY-MM-DD",   u"YY.MM.DD",   u"YYYY/M/D",   u"YYYY-M-D",   u"YYYY.M.D",   u"YY/M/D",     u"YY-M-D",
    u"YY.M.D",     u"DD/MM",      u"DD-MM",      u"DD.MM",      u"D/MM",       u"D-MM",       u"D.MM",
    u"D/M",        u"D.M",        u"D-M",        u"MM/DD",      u"MM-DD",      u"MM.DD",      u"M/DD",
    u"M-DD",       u"M.DD",       u"M/D",        u"M.D",        u"M-D",        u"MM/YYYY",    u"MM-YYYY",
    u"MM.YYYY",    u"M/YYYY",     u"M-YYYY",     u"M.YYYY",     u"MM/YY",      u"MM-YY",      u"MM.YY",
    u"M/YY",       u"M-YY",       u"M.YY",       u"YYYY/MM",    u"YYYY-MM",    u"YYYY.MM",    u"YYYY/M",
    u"YYYY-M",     u"YYYY.M",     u"YY/MM",      u"YY-MM",      u"YY.MM",      u"YY/M",       u"YY-M",
    u"YY.M",
};

String AsciiLower(StringView text) {
  String out(text);
  for (char16_t& c : out) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  }
  return out;
}

// A part's number with its leading zeros gone: "05" -> "5", "x" -> "0".
String StripZeros(const String& part) {
  const double value = host::Val(part);
  return host::CStr(host::Variant(value));
}

int16_t ReadPart(const std::vector<String>& parts, size_t index) {
  // A missing part is a failure of the whole validation, like a subscript out of range.
  return host::CInt(host::Val(parts.at(index)));
}

}  // namespace

String DateFormatName(int32_t xFormat) {
  if (xFormat < 0 || xFormat >= kDateFormatCount) return String();
  return String(kNames[xFormat]);
}

String DateFormatToString(int32_t xFormat) { return AsciiLower(DateFormatName(xFormat)); }

DateFamily DateFormatFamily(int32_t xFormat) {
  if (xFormat < 0 || xFormat >= kDateFormatCount) return DateFamily::None;
  if (xFormat == 0 || (xFormat >= 25 && xFormat <= 35)) return DateFamily::YearFirst;
  if (xFormat <= 24) return DateFamily::DayMonthYear;
  if (xFormat <= 53) return DateFamily::DayMonth;
  if (xFormat <= 65) return DateFamily::MonthYear;
  return DateFamily::YearMonth;
}

DateFamily DateFormatFamily(StringView xFormat) {
  const String lowered = AsciiLower(xFormat);
  for (int32_t code = 0; code < kDateFormatCount; ++code) {
    if (AsciiLower(kNames[code]) == lowered) return DateFormatFamily(code);
  }
  return DateFamily::None;
}

String DetectDateSeparator(StringView xDate) {
  for (char16_t separator : {u'/', u'-', u'.'}) {
    if (xDate.find(separator) != StringView::npos) return String(1, separator);
  }
  return String();
}

String PadDatePart(StringView xPart, int32_t xLength) {
  String text = host::Trim(xPart);
  if (static_cast<int32_t>(text.size()) < xLength) text.insert(0, static_cast<size_t>(xLength) - text.size(), u'0');
  return text;
}

String PadYearPart(StringView xPart, int32_t xLength) {
  const String text = host::Trim(xPart);
  if (static_cast<int32_t>(text.size()) >= xLength) return text;
  if (text.size() == 2) {
    // The library's own two-digit rule: 50 and above are 19xx, below 50 are 20xx.
    return (host::Val(text) >= 50 ? u"19" : u"20") + text;
  }
  // Any other length goes through the host's rendering with one "Y" per character, so a year
  // that lost its leading zero on the way ("05" -> "5") comes back as the host renders it.
  return host::Format(host::Variant(text), String(text.size(), u'Y'));
}

String ConvertDateText(StringView xDate, StringView xFormat) {
  try {
    if (host::Trim(xDate).empty()) return String();

    // Callers may pass a layout code as text ("1"); an unknown code leaves an empty format.
    String format = host::Trim(xFormat);
    if (host::IsNumeric(format)) {
      const double code = std::trunc(host::CDbl(format));
      format = (code >= 0 && code < kDateFormatCount) ? DateFormatToString(static_cast<int32_t>(code)) : String();
    }

    String copy(xDate);
    for (char16_t& c : copy) {
      if (c == u'-' || c == u'.') c = u'/';
    }
    const String rendered = host::Format(host::Variant(copy), format);

    const DateFamily family = DateFormatFamily(format);
    if (family == DateFamily::None) return rendered;

    const std::vector<String> dateParts = host::Split(rendered, DetectDateSeparator(rendered));
    const String separator = DetectDateSeparator(format);
    const std::vector<String> formatParts = host::Split(format, separator);
    auto date = [&](size_t i) { return StripZeros(dateParts.at(i)); };
    auto width = [&](size_t i) { return static_cast<int32_t>(formatParts.at(i).size()); };

    switch (family) {
      case DateFamily::DayMonthYear:
        return PadDatePart(date(0), width(0)) + separator + PadDatePart(date(1), width(1)) + separator +
               PadYearPart(date(2), width(2));
      case DateFamily::YearFirst:
        return PadYearPart(date(0), width(0)) + separator + PadDatePart(date(1), width(1)) + separator +
               PadDatePart(date(2), width(2));
      case DateFamily::DayMonth:
        return PadDatePart(date(0), width(0)) + separator + PadDatePart(date(1), width(1));
      case DateFamily::MonthYear:
        return PadDatePart(date(0), width(0)) + separator + PadYearPart(date(1), width(1));
      case DateFamily::YearMonth:
        // Both pieces read the second part: "2023/12" under "yyyy/mm" gives "12/12". Stored
        // texts and the date controls depend on this, so it stays.
        return PadYearPart(date(1), width(1)) + separator + PadDatePart(date(1), width(1));
      case DateFamily::None:
        break;
    }
    return rendered;
  } catch (...) {
    return String();
  }
}

bool ValidateDateText(StringView xDate, int32_t xFormat) {
  try {
    if (ReturnNumbersOnly(xDate, false).empty()) return false;
    const String text = host::Trim(xDate);
    // The text's own separator is used, whatever the layout's: "31-12-2023" passes under code 1.
    const std::vector<String> parts = host::Split(text, DetectDateSeparator(text));
    if (xFormat < 0 || xFormat >= kDateFormatCount) return false;

    int day = 0, month = 0, year = 0;
    // Which part means what goes by this division, not by the layout families: the day-and-month
    // codes read no year at all, and the month-and-year codes read their second part as a day
    // of the current year.
    if (xFormat == 0 || (xFormat >= 25 && xFormat <= 35)) {
      year = ReadPart(parts, 0), month = ReadPart(parts, 1), day = ReadPart(parts, 2);
    } else if (xFormat == 1 || (xFormat >= 3 && xFormat <= 13)) {
      day = ReadPart(parts, 0), month = ReadPart(parts, 1), year = ReadPart(parts, 2);
    } else if (xFormat == 2 || (xFormat >= 14 && xFormat <= 24)) {
      month = ReadPart(parts, 0), day = ReadPart(parts, 1), year = ReadPart(parts, 2);
    } else if (xFormat <= 53) {
      day = ReadPart(parts, 0), month = ReadPart(parts, 1);
    } else if (xFormat <= 65) {
      month = ReadPart(parts, 0), day = ReadPart(parts, 1);
      year = host::Year(host::Now());
    } else {
      year = ReadPart(parts, 0), month = ReadPart(parts, 1);
      day = 1;
    }

    if (day < 1 || day > 31) return false;
    if (year < 1000) return false;  // so a true two-digit year never validates
    if (month < 1 || month > 12) return false;
    switch (month) {
      case 4:
      case 6:
      case 9:
      case 11:
        return day <= 30;
      case 2: {
        if (day > 29) return false;
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        return leap || day <= 28;
      }
      default:
        return true;
    }
  } catch (...) {
    return false;
  }
}

}  // namespace mx::utility
