#pragma once
// The 78 date layouts that the date-aware controls share, and the text logic around them: turn a
// code into its format string, rewrite a date text into a layout, and validate a date text.
// Dates travel as text here; nothing in this module keeps state.
#include <cstdint>

#include "host/String.h"

namespace mx::utility {

// The layouts. A layout's persisted value may never change, so the separator order inside each
// group (slash, hyphen, dot; slash, dot, hyphen for the short day-month groups) is part of the
// format. The layout text itself ("DD/MM/YYYY") is what DateFormatName gives; the C++ names spell
// the separator out because "/", "-" and "." cannot appear in an identifier. Values 1 and 25 are
// written in lower case, as they always have been.
enum ENUM_DATE_FORMAT : int32_t {
  YYYY_MM_DD_Slash = 0,
  dd_mm_yyyy_Slash = 1,
  MM_DD_YYYY_Slash = 2,
  DD_MM_YY_Slash = 3,
  DD_MM_YYYY_Hyphen = 4,
  DD_MM_YYYY_Dot = 5,
  DD_MM_YY_Hyphen = 6,
  DD_MM_YY_Dot = 7,
  D_M_YYYY_Slash = 8,
  D_M_YYYY_Hyphen = 9,
  D_M_YYYY_Dot = 10,
  D_M_YY_Slash = 11,
  D_M_YY_Hyphen = 12,
  D_M_YY_Dot = 13,
  MM_DD_YYYY_Hyphen = 14,
  MM_DD_YYYY_Dot = 15,
  MM_DD_YY_Slash = 16,
  MM_DD_YY_Hyphen = 17,
  MM_DD_YY_Dot = 18,
  M_D_YYYY_Slash = 19,
  M_D_YYYY_Hyphen = 20,
  M_D_YYYY_Dot = 21,
  M_D_YY_Slash = 22,
  M_D_YY_Hyphen = 23,
  M_D_YY_Dot = 24,
  yyyy_mm_dd_Hyphen = 25,
  YYYY_MM_DD_Dot = 26,
  YY_MM_DD_Slash = 27,
  YY_MM_DD_Hyphen = 28,
  YY_MM_DD_Dot = 29,
  YYYY_M_D_Slash = 30,
  YYYY_M_D_Hyphen = 31,
  YYYY_M_D_Dot = 32,
  YY_M_D_Slash = 33,
  YY_M_D_Hyphen = 34,
  YY_M_D_Dot = 35,
  DD_MM_Slash = 36,
  DD_MM_Hyphen = 37,
  DD_MM_Dot = 38,
  D_MM_Slash = 39,
  D_MM_Hyphen = 40,
  D_MM_Dot = 41,
  D_M_Slash = 42,
  D_M_Dot = 43,
  D_M_Hyphen = 44,
  MM_DD_Slash = 45,
  MM_DD_Hyphen = 46,
  MM_DD_Dot = 47,
  M_DD_Slash = 48,
  M_DD_Hyphen = 49,
  M_DD_Dot = 50,
  M_D_Slash = 51,
  M_D_Dot = 52,
  M_D_Hyphen = 53,
  MM_YYYY_Slash = 54,
  MM_YYYY_Hyphen = 55,
  MM_YYYY_Dot = 56,
  M_YYYY_Slash = 57,
  M_YYYY_Hyphen = 58,
  M_YYYY_Dot = 59,
  MM_YY_Slash = 60,
  MM_YY_Hyphen = 61,
  MM_YY_Dot = 62,
  M_YY_Slash = 63,
  M_YY_Hyphen = 64,
  M_YY_Dot = 65,
  YYYY_MM_Slash = 66,
  YYYY_MM_Hyphen = 67,
  YYYY_MM_Dot = 68,
  YYYY_M_Slash = 69,
  YYYY_M_Hyphen = 70,
  YYYY_M_Dot = 71,
  YY_MM_Slash = 72,
  YY_MM_Hyphen = 73,
  YY_MM_Dot = 74,
  YY_M_Slash = 75,
  YY_M_Hyphen = 76,
  YY_M_Dot = 77,
};

inline constexpr int32_t kDateFormatCount = 78;

// The layout families, by the order of their parts.
enum class DateFamily {
  None,            // not one of the layouts
  DayMonthYear,    // two short parts, then the year (codes 1 to 24)
  YearFirst,       // the year, then two short parts (0, 25 to 35)
  DayMonth,        // two short parts, no year (36 to 53)
  MonthYear,       // a short part, then the year (54 to 65)
  YearMonth,       // the year, then a short part (66 to 77)
};

// The layout's name as the type library spells it ("DD/MM/YYYY", "dd/mm/yyyy"); empty when the
// code is out of range.
[[nodiscard]] host::String DateFormatName(int32_t xFormat);
// The format string of a code: its name in lower case, or empty for a code outside 0 to 77.
[[nodiscard]] host::String DateFormatToString(int32_t xFormat);
// The family of a code, and of a format string compared without regard to case.
[[nodiscard]] DateFamily DateFormatFamily(int32_t xFormat);
[[nodiscard]] DateFamily DateFormatFamily(host::StringView xFormat);

// The first of "/", "-", "." that occurs anywhere in the text, tested in that order, or empty.
// The priority is by character, not by position: "1.2/3" gives "/".
[[nodiscard]] host::String DetectDateSeparator(host::StringView xDate);

// Rewrites a date text into a layout (a code given as text, or any format string).
[[nodiscard]] host::String ConvertDateText(host::StringView xDate, host::StringView xFormat);
// Whether a date text is a real date when read by a layout code.
[[nodiscard]] bool ValidateDateText(host::StringView xDate, int32_t xFormat);

// Trims, then prefixes "0" up to xLength; never cuts a longer text.
[[nodiscard]] host::String PadDatePart(host::StringView xPart, int32_t xLength);
// Widens a year part to xLength: two digits by the 50/19xx, below 50/20xx rule, other lengths
// through the host's Format with as many "Y" as the text has characters.
[[nodiscard]] host::String PadYearPart(host::StringView xPart, int32_t xLength);

}  // namespace mx::utility
