#pragma once
// The host's Format: numbers, dates and text rendered by a named format or a pattern, with the
// marks, names and patterns of the regional setting (host/Locale.h).
//
// Named formats, compared without regard to case: "General Date", "Long Date", "Medium Date",
// "Short Date", "Long Time", "Medium Time", "Short Time"; "General Number", "Currency", "Fixed",
// "Standard", "Percent", "Scientific", "Yes/No", "True/False", "On/Off".
//
// Date patterns: d dd ddd dddd ddddd (short date) dddddd (long date), w ww, m mm mmm mmmm (an
// "m" after an hour means minutes), q, y (day of the year) yy yyyy, h hh, n nn, s ss, ttttt
// (long time), c (general date), AM/PM am/pm A/P a/p (12-hour clock, written as given), AMPM
// (the setting's designators); "/" and ":" print the setting's separators.
//
// Number patterns: 0 (digit or zero), # (digit or nothing), "." (the setting's decimal mark),
// "," between digits (grouping, printed as the setting's mark) or just before the point or the
// end (divide by 1000), % (times 100), E+ E- e+ e- (scientific), other text literally. Up to four
// sections split by ";": positive, negative (printed without a minus of its own), zero, Null.
//
// Text patterns: @ (character or blank), & (character or nothing), < (lower case), > (upper
// case), ! (fill from the left).
//
// Everywhere: "quoted text" and \x are literal. Rounding is half away from zero on the number's
// 15 significant decimal digits, so 2.345 with "0.00" gives "2,35" (pt-BR) even though the double
// nearest 2.345 lies just below it; a negative value that rounds to zero keeps its sign ("-0,00"),
// as the host prints it.
#include "host/DateTime.h"
#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// A number: an empty format gives the general form ("1234,5"; "1E+15" beyond 15 digits).
// A date pattern shows the number as the date it counts.
[[nodiscard]] String Format(double number, StringView format = {}, int firstDayOfWeek = vbSunday,
                            int firstWeekOfYear = vbFirstJan1);
// A value of the Date type: an empty format gives the general date.
[[nodiscard]] String FormatDate(double date, StringView format = {}, int firstDayOfWeek = vbSunday,
                                int firstWeekOfYear = vbFirstJan1);
// A String argument: formatted as a number when it reads as one under the setting, else as a
// date when it reads as one, else by a text pattern; anything else comes back unchanged.
[[nodiscard]] String Format(StringView text, StringView format = {}, int firstDayOfWeek = vbSunday,
                            int firstWeekOfYear = vbFirstJan1);
[[nodiscard]] String Format(const String& text, StringView format = {}, int firstDayOfWeek = vbSunday,
                            int firstWeekOfYear = vbFirstJan1);
[[nodiscard]] String Format(const char16_t* text, StringView format = {}, int firstDayOfWeek = vbSunday,
                            int firstWeekOfYear = vbFirstJan1);
// Any Variant: by its type as above; Booleans as numbers (True is -1) except under the Yes/No
// style names; Null gives the fourth section of a number pattern or the empty string; Empty
// formats as 0 under a number pattern and as "" otherwise.
[[nodiscard]] String Format(const Variant& value, StringView format = {}, int firstDayOfWeek = vbSunday,
                            int firstWeekOfYear = vbFirstJan1);

// FormatDateTime's named formats.
enum : int { vbGeneralDate = 0, vbLongDate = 1, vbShortDate = 2, vbLongTime = 3, vbShortTime = 4 };
[[nodiscard]] String FormatDateTime(double date, int namedFormat = vbGeneralDate);

// FormatNumber, FormatCurrency and FormatPercent. digits -1 takes the setting's two places; the
// other arguments take vbTrue, vbFalse or vbUseDefault (the setting's choice: a leading zero,
// grouping, and parentheses only for a negative amount of money where the setting writes them).
enum : int { vbUseDefault = -2 };
[[nodiscard]] String FormatNumber(double value, int digits = -1, int includeLeadingDigit = vbUseDefault,
                                  int useParens = vbUseDefault, int groupDigits = vbUseDefault);
[[nodiscard]] String FormatCurrency(double value, int digits = -1, int includeLeadingDigit = vbUseDefault,
                                    int useParens = vbUseDefault, int groupDigits = vbUseDefault);
[[nodiscard]] String FormatPercent(double value, int digits = -1, int includeLeadingDigit = vbUseDefault,
                                   int useParens = vbUseDefault, int groupDigits = vbUseDefault);

// The general form of a number with the given decimal mark: up to `significantDigits` digits
// without trailing zeros, switching to "1E+15" / "1,5E-05" outside 1E-4 to 1E+15. What CStr
// shows for a Double (15 digits) or a Single (7 digits).
[[nodiscard]] String GeneralNumberText(double value, char16_t decimalMark, int significantDigits = 15);

// The regional conversions for Variant: CStr, string concatenation and text read as a number or
// a date follow the regional setting, as the host's do. They are Variant's default; writers of
// files and persisted properties format numbers themselves in the invariant form.
[[nodiscard]] VariantTextHooks RegionalVariantTextHooks();
// Puts them back after a test or a caller replaced them.
void InstallRegionalVariantText();

}  // namespace mx::host
