#pragma once
// The regional setting that the host's Format, number conversions and date functions follow.
// Two settings are built in: Brazilian Portuguese ("pt-BR", the default) and United States
// English ("en-US"). The choice is process-wide, like the user's regional setting of a desktop:
// MX_LOCALE names it when it is first needed, and SetLocale changes it at any time after.
#include <array>
#include <string_view>

#include "host/String.h"

namespace mx::host {

// The order in which a short date text names its parts.
enum class DateOrder { MonthDayYear = 0, DayMonthYear = 1, YearMonthDay = 2 };

struct Locale {
  std::string_view name;  // "pt-BR"

  char16_t decimalMark;
  char16_t groupingMark;

  DateOrder dateOrder;
  char16_t dateSeparator;
  char16_t timeSeparator;
  // System date and time patterns, in the system's own pattern letters (d, dd, ddd, dddd, M, MM,
  // MMM, MMMM, y, yy, yyyy, h, hh, H, HH, m, mm, s, ss, t, tt, 'quoted text'), which are not the
  // letters of Format: there "m" is a month, here "M" is.
  StringView shortDatePattern;
  StringView longDatePattern;
  StringView timePattern;
  StringView amDesignator;
  StringView pmDesignator;

  StringView currencySymbol;
  bool currencyBefore;          // "R$ 1,00" and "$1.00" both put the symbol first
  bool currencySpace;           // a blank between the symbol and the digits
  bool currencyNegativeParens;  // "($1.00)" rather than "-R$ 1,00"
  int currencyDigits;

  // Full and abbreviated names; months from January, weekdays from Sunday.
  std::array<StringView, 12> monthNames;
  std::array<StringView, 12> monthAbbreviations;
  std::array<StringView, 7> dayNames;
  std::array<StringView, 7> dayAbbreviations;

  int firstDayOfWeek;  // 1 = Sunday ... 7 = Saturday

  // The words of Format's "Yes/No", "True/False" and "On/Off".
  StringView yesText, noText, trueText, falseText, onText, offText;

  [[nodiscard]] bool IsDayFirst() const { return dateOrder == DateOrder::DayMonthYear; }
};

// The setting in force. The first call reads MX_LOCALE; an unset or unknown name means pt-BR.
[[nodiscard]] const Locale& CurrentLocale();

// Chooses a built-in setting by name ("pt-BR", "en-US"; case and "-"/"_" do not matter).
// Returns false and keeps the current one when the name is unknown.
bool SetLocale(std::string_view name);

// A built-in setting by name, or nullptr.
[[nodiscard]] const Locale* FindLocale(std::string_view name);

// Switches the setting for the life of the object and restores the previous one after.
class ScopedLocale {
 public:
  explicit ScopedLocale(std::string_view name);
  ~ScopedLocale();
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  const Locale* m_previous;
};

// Case folding for the comparisons the host makes without regard to case (month names, named
// formats, text-compare Like): ASCII and the Latin-1 letters, which cover both settings.
[[nodiscard]] char16_t FoldLetter(char16_t c);
[[nodiscard]] bool EqualsNoCase(StringView a, StringView b);

}  // namespace mx::host
