#include <gtest/gtest.h>

#include "host/DateTime.h"
#include "host/Locale.h"
#include "platform/Clock.h"
#include "utility/DateFormats.h"
#include "utility/MX.h"

namespace mx::utility {
namespace {

using host::FromUtf8;
using host::ToUtf8;

std::string Convert(const char* date, const char* format) {
  return ToUtf8(ConvertDateText(FromUtf8(date), FromUtf8(format)));
}

TEST(DateFormatTable, NamesCodesAndFamilies) {
  EXPECT_EQ(DateFormatName(0), u"YYYY/MM/DD");
  EXPECT_EQ(DateFormatName(1), u"dd/mm/yyyy");
  EXPECT_EQ(DateFormatName(25), u"yyyy-mm-dd");
  EXPECT_EQ(DateFormatToString(42), u"d/m");
  EXPECT_EQ(DateFormatToString(43), u"d.m");
  EXPECT_EQ(DateFormatToString(53), u"m-d");
  EXPECT_EQ(DateFormatToString(77), u"yy.m");
  EXPECT_EQ(DateFormatToString(78), u"");
  EXPECT_EQ(DateFormatToString(-1), u"");
  for (int32_t code = 0; code < kDateFormatCount; ++code) {
    EXPECT_EQ(DateFormatFamily(DateFormatName(code)), DateFormatFamily(code)) << code;
  }
  EXPECT_EQ(DateFormatFamily(u"DD/mm/YyYy"), DateFamily::DayMonthYear);
  EXPECT_EQ(DateFormatFamily(u"dddd"), DateFamily::None);
}

TEST(DetectDateSeparator, PriorityIsByCharacter) {
  EXPECT_EQ(DetectDateSeparator(u"1.2/3"), u"/");
  EXPECT_EQ(DetectDateSeparator(u"1.2-3"), u"-");
  EXPECT_EQ(DetectDateSeparator(u"31.12.2023"), u".");
  EXPECT_EQ(DetectDateSeparator(u"20231231"), u"");
}

TEST(PadParts, DateAndYear) {
  EXPECT_EQ(PadDatePart(u" 5 ", 2), u"05");
  EXPECT_EQ(PadDatePart(u"2024", 2), u"2024");  // never cut
  EXPECT_EQ(PadYearPart(u"49", 4), u"2049");
  EXPECT_EQ(PadYearPart(u"50", 4), u"1950");
  EXPECT_EQ(PadYearPart(u"2024", 2), u"2024");
  // Other lengths go through the host's rendering with one "Y" per character: the number 5 is
  // the host's day 5, the 4th day of 1900.
  EXPECT_EQ(PadYearPart(u"5", 2), u"4");
}

TEST(FormatAsDate, EveryCodeOnOneDate) {
  host::ScopedLocale locale("pt-BR");
  // 5 March 2024, written as the regional setting reads it.
  const char* const expected[kDateFormatCount] = {
      // year first: 0, then day/month first: 1 to 24
      "2024/03/05", "05/03/2024", "03/05/2024", "05/03/24", "05-03-2024", "05.03.2024", "05-03-24",
      "05.03.24", "5/3/2024", "5-3-2024", "5.3.2024", "5/3/24", "5-3-24", "5.3.24", "03-05-2024",
      "03.05.2024", "03/05/24", "03-05-24", "03.05.24", "3/5/2024", "3-5-2024", "3.5.2024", "3/5/24",
      "3-5-24", "3.5.24",
      // year first: 25 to 35
      "2024-03-05", "2024.03.05", "24/03/05", "24-03-05", "24.03.05", "2024/3/5", "2024-3-5", "2024.3.5",
      "24/3/5", "24-3-5", "24.3.5",
      // day and month: 36 to 53
      "05/03", "05-03", "05.03", "5/03", "5-03", "5.03", "5/3", "5.3", "5-3", "03/05", "03-05", "03.05",
      "3/05", "3-05", "3.05", "3/5", "3.5", "3-5",
      // month and year: 54 to 65
      "03/2024", "03-2024", "03.2024", "3/2024", "3-2024", "3.2024", "03/24", "03-24", "03.24", "3/24",
      "3-24", "3.24",
      // year and month: 66 to 77. Both pieces come from the month; a one-digit month padded as a
      // year goes through the host's rendering ("3" is the host's day 3, the 2nd day of 1900).
      "2/03", "2-03", "2.03", "3/3", "3-3", "3.3", "2/03", "2-03", "2.03", "3/3", "3-3", "3.3",
  };
  MX mx;
  for (int32_t code = 0; code < kDateFormatCount; ++code) {
    EXPECT_EQ(ToUtf8(mx.FormatAsDate(u"05/03/2024", DateFormatToString(code))), expected[code]) << "code " << code;
    // The code itself, passed as text, selects the same layout.
    EXPECT_EQ(ToUtf8(mx.FormatAsDate(u"05/03/2024", FromUtf8(std::to_string(code)))), expected[code])
        << "code " << code;
  }
}

TEST(FormatAsDate, RebuildRules) {
  host::ScopedLocale locale("pt-BR");
  EXPECT_EQ(Convert("", "1"), "");
  EXPECT_EQ(Convert("   ", "dd/mm/yyyy"), "");
  EXPECT_EQ(Convert("31.12.2023", "1"), "31/12/2023");
  EXPECT_EQ(Convert("31-12-2023", " dd.mm.yyyy "), "31.12.2023");
  // Capitals work as lower case; the output separators are the format's.
  EXPECT_EQ(Convert("31/12/2023", "DD-MM-YYYY"), "31-12-2023");
  EXPECT_EQ(ToUtf8(MX().FormatAsDateEx(u"1/2/2024")), "01/02/2024");
  // The year-and-month layouts read the month twice.
  EXPECT_EQ(Convert("2023/12", "yyyy/mm"), "12/12");
  EXPECT_EQ(Convert("2023/12", "67"), "12-12");
  // A year that lost its leading zero is not a two-digit year any more.
  EXPECT_EQ(Convert("05/03/2005", "dd/mm/yy"), "05/03/4");
  // Text that is no date is split as it stands; its two-digit year takes the 50 rule.
  EXPECT_EQ(Convert("49/13/45", "yyyy/mm/dd"), "2049/13/45");
  EXPECT_EQ(Convert("99/13/45", "yyyy/mm/dd"), "1999/13/45");
  // A free format returns the rendered text; a layout that finds too few parts gives "".
  EXPECT_EQ(Convert("31/12/2023", "dddd"), "domingo");
  EXPECT_EQ(Convert("hoje", "dd/mm/yyyy"), "");
  // A day and month alone is a date of the current year to the host.
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 1, 0, 15, 10, 30, 0, 0});
  EXPECT_EQ(Convert("31/12", "dd/mm/yyyy"), "31/12/2024");
  // An unknown code leaves an empty format: the host's general date, and no rebuild.
  EXPECT_EQ(Convert("31/12/2023", "78"), "31/12/2023");
  EXPECT_EQ(Convert("31-12-2023", "-1"), "31/12/2023");
}

TEST(FormatAsDate, ReadsTheDateByTheRegionalSetting) {
  host::ScopedLocale locale("en-US");
  EXPECT_EQ(Convert("03/05/2024", "1"), "05/03/2024");
  EXPECT_EQ(Convert("03/05/2024", "2"), "03/05/2024");
}

TEST(ValidateDateText, Table) {
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2023, 6, 0, 15, 12, 0, 0, 0});
  struct Case {
    const char* text;
    int32_t code;
    bool valid;
  } const cases[] = {
      {"29/02/2000", 1, true},   {"29/02/1900", 1, false},  {"30/02/2000", 1, false}, {"28/02/1900", 1, true},
      {"29/02/2024", 1, true},   {"29/02/2023", 1, false},  {"31/04/2023", 1, false}, {"30/04/2023", 1, true},
      {"31/12/2023", 1, true},   {"31-12-2023", 1, true},   {"31.12.2023", 1, true},  {"32/12/2023", 1, false},
      {"00/12/2023", 1, false},  {"31/13/2023", 1, false},  {"31/00/2023", 1, false}, {"31/12/999", 1, false},
      {"12/31/999", 2, false},   {"12/31/2023", 2, true},   {"31/12/2023", 2, false}, {"31/12/23", 3, false},
      {"31/12/2023", 3, true},   {"2023/12/31", 0, true},   {"2023-02-29", 25, false}, {"2024-02-29", 25, true},
      {"31/12/2023", 78, false}, {"31/12/2023", -1, false}, {"", 1, false},          {"//", 1, false},
      {"abc", 1, false},         {"31/12", 1, false},       {"31122023", 1, false},   {"31/12/2023/7", 1, true},
      {"31/12/70000", 1, false},  // beyond a 16-bit integer
      // The day-and-month codes never validate: their year stays 0.
      {"31/12", 36, false},      {"01/01/2023", 36, false}, {"12/31", 45, false},
      // Month and year: the second part is a day of the current year.
      {"12/23", 54, true},       {"12/2023", 54, false},    {"02/29", 54, false},     {"02/28", 60, true},
      // Year and month: the day is 1.
      {"2023/02", 66, true},     {"2023/13", 66, false},    {"99/02", 72, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ValidateDateText(FromUtf8(c.text), c.code), c.valid) << c.text << " under " << c.code;
  }
  MX mx;
  EXPECT_TRUE(mx.IsValidDateEx(u"29/02/2000"));
  EXPECT_TRUE(mx.IsValidDate(u"12/31/2023", MM_DD_YYYY_Slash));
}

TEST(ValidateDateText, CurrentYearDecidesMonthAndYearCodes) {
  MX mx;
  {
    platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 3, 0, 1, 0, 0, 0, 0});
    EXPECT_TRUE(mx.IsValidDate(u"02/29", MM_YYYY_Slash));
  }
  {
    platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2023, 3, 0, 1, 0, 0, 0, 0});
    EXPECT_FALSE(mx.IsValidDate(u"02/29", MM_YYYY_Slash));
  }
}

TEST(IsValidTime, DelimitedAndPositional) {
  MX mx;
  struct Case {
    const char* text;
    const char* delimiter;
    bool valid;
  } const cases[] = {
      {"235959", "", true},   {"2360", "", false},     {"12345", "", false},    {"1234567", "", false},
      {"0000", "", true},     {"1230", "", true},      {"12ab", "", false},     {"240000", "", false},
      {"1:2:3:4", ":", false}, {"12", ":", true},      {"23:59:59", ":", true}, {"24:00", ":", false},
      {"12:60", ":", false},  {"12:30:60", ":", false}, {"12::30", ":", false}, {"ab:cd", ":", false},
      {"-1:00", ":", false},  {"1.5:00", ":", false},  {" 12 : 30 ", ":", true}, {"12.30", ".", true},
      {"12h30", "h", true},   {"12<>30<>15", "<>", true}, {"", ":", false},      {"", "", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(mx.IsValidTime(FromUtf8(c.text), FromUtf8(c.delimiter)), c.valid)
        << "'" << c.text << "' with '" << c.delimiter << "'";
  }
  EXPECT_FALSE(mx.IsValidTime(u"1:2:3:4"));
  EXPECT_TRUE(mx.IsValidTime(u"7:05"));
}

TEST(Calendar, LeapYearsAndMonthLengths) {
  host::ScopedLocale locale("pt-BR");
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 1, 0, 15, 10, 30, 0, 0});
  MX mx;
  EXPECT_TRUE(mx.IsYearLeap(2000));
  EXPECT_TRUE(mx.IsYearLeap(2024));
  EXPECT_FALSE(mx.IsYearLeap(1900));
  EXPECT_FALSE(mx.IsYearLeap(2023));
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 2024), 29);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 2023), 28);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 2000), 29);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 1900), 28);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(4, 2023), 30);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(12, 2023), 31);
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2), 29);  // year 0: the current year, 2024
  {
    platform::ScopedVirtualClock later(platform::SYSTEMTIME{2025, 1, 0, 15, 10, 30, 0, 0});
    EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 0), 28);
  }
  // Month first, "01/2/2024" is the second of January, and a month from there is 31 days.
  host::ScopedLocale us("en-US");
  EXPECT_EQ(mx.NumberOfDaysOnMonth(2, 2024), 31);
}

TEST(Calendar, AgeAroundTheBirthday) {
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 1, 0, 15, 10, 30, 0, 0});
  MX mx;
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2000, 1, 15)), 24);  // today counts as reached
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2000, 1, 14)), 24);
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2000, 1, 16)), 23);
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2000, 2, 1)), 23);
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(1999, 12, 31)), 24);
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2024, 1, 15)), 0);
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2025, 1, 15)), -1);
  // Born on 29 February: not yet 24 on 28 February 2024, 24 on the 29th.
  platform::ScopedVirtualClock leap(platform::SYSTEMTIME{2024, 2, 0, 28, 0, 0, 0, 0});
  EXPECT_EQ(mx.CalculateAge(host::DateSerial(2000, 2, 29)), 23);
}

TEST(Calendar, DayNamesAndTheClock) {
  platform::ScopedVirtualClock clock(platform::SYSTEMTIME{2024, 1, 0, 15, 10, 30, 5, 0});
  MX mx;
  EXPECT_EQ(ToUtf8(mx.NameOfTheDay(host::DateSerial(2024, 1, 13))), "Sábado");
  EXPECT_EQ(ToUtf8(mx.NameOfTheDay(host::DateSerial(2024, 1, 13), true)), "Sáb");
  EXPECT_EQ(ToUtf8(mx.NameOfTheDay(host::DateSerial(2024, 1, 14))), "Domingo");
  EXPECT_EQ(ToUtf8(mx.NameOfTheDay(host::DateSerial(2024, 1, 16), true)), "Ter");
  EXPECT_EQ(ToUtf8(mx.NameOfTheDay(host::DateSerial(2024, 1, 17) + 0.75)), "Quarta-feira");
  EXPECT_EQ(mx.CurrentDate(), u"15/01/2024");
  EXPECT_EQ(mx.CurrentTime(), u"10:30:05");
  EXPECT_EQ(mx.CurrentDateTime(), u"15/01/2024 10:30:05");
  host::ScopedLocale us("en-US");
  EXPECT_EQ(mx.CurrentDate(), u"15/01/2024");
}

}  // namespace
}  // namespace mx::utility
