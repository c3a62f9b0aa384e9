#include "host/Format.h"

#include <gtest/gtest.h>

#include "host/Locale.h"
#include "RegionalTestSupport.h"

namespace mx::host {
namespace {

using test::At;

// Fixed dates: a leap day on a Thursday evening, New Year's Day (a Monday) at midnight, New
// Year's Eve (a Sunday) in the morning, and a Saturday.
const double kLeapDay = At(2024, 2, 29, 18, 5, 9);
const double kNewYear = At(2024, 1, 1);
const double kEve = At(2023, 12, 31, 9, 3, 7);
const double kSaturday = At(2024, 3, 2, 12, 0, 0);

struct DateCase {
  double date;
  const char16_t* pattern;
  const char16_t* portuguese;
  const char16_t* english;
};

TEST(FormatDates, EveryPatternLetterInBothSettings) {
  const DateCase cases[] = {
      {kLeapDay, u"d", u"29", u"29"},
      {kNewYear, u"d", u"1", u"1"},
      {kNewYear, u"dd", u"01", u"01"},
      {kLeapDay, u"ddd", u"qui", u"Thu"},
      {kLeapDay, u"dddd", u"quinta-feira", u"Thursday"},
      {kSaturday, u"ddd", u"s\u00e1b", u"Sat"},
      {kSaturday, u"dddd", u"s\u00e1bado", u"Saturday"},
      {kLeapDay, u"ddddd", u"29/02/2024", u"2/29/2024"},
      {kNewYear, u"ddddd", u"01/01/2024", u"1/1/2024"},
      {kLeapDay, u"dddddd", u"quinta-feira, 29 de fevereiro de 2024", u"Thursday, February 29, 2024"},
      {kLeapDay, u"w", u"5", u"5"},
      {kSaturday, u"w", u"7", u"7"},
      {kLeapDay, u"ww", u"9", u"9"},
      {kEve, u"ww", u"53", u"53"},
      {kLeapDay, u"m", u"2", u"2"},
      {kLeapDay, u"mm", u"02", u"02"},
      {kLeapDay, u"mmm", u"fev", u"Feb"},
      {kLeapDay, u"mmmm", u"fevereiro", u"February"},
      {kEve, u"q", u"4", u"4"},
      {kLeapDay, u"y", u"60", u"60"},
      {kEve, u"y", u"365", u"365"},
      {kLeapDay, u"yy", u"24", u"24"},
      {kEve, u"yyyy", u"2023", u"2023"},
      {kEve, u"h", u"9", u"9"},
      {kEve, u"hh", u"09", u"09"},
      {kEve, u"n", u"3", u"3"},
      {kEve, u"nn", u"03", u"03"},
      {kEve, u"s", u"7", u"7"},
      {kEve, u"ss", u"07", u"07"},
      {kLeapDay, u"hh:mm:ss", u"18:05:09", u"18:05:09"},  // "m" after an hour is minutes
      {kLeapDay, u"HH:MM:SS", u"18:05:09", u"18:05:09"},
      {kLeapDay, u"mm/dd hh", u"02/29 18", u"02/29 18"},
      {kLeapDay, u"ttttt", u"18:05:09", u"6:05:09 PM"},
      {kLeapDay, u"c", u"29/02/2024 18:05:09", u"2/29/2024 6:05:09 PM"},
      {kLeapDay, u"DD/MM/YYYY", u"29/02/2024", u"29/02/2024"},
      {kLeapDay, u"dd \\de mmmm", u"29 de fevereiro", u"29 de February"},
      {kLeapDay, u"dd \"de\" mmmm", u"29 de fevereiro", u"29 de February"},
      {kLeapDay, u"yyyy-mm-dd", u"2024-02-29", u"2024-02-29"},
  };
  for (const DateCase& c : cases) {
    {
      ScopedLocale locale("pt-BR");
      EXPECT_EQ(FormatDate(c.date, c.pattern), c.portuguese) << ToUtf8(c.pattern);
    }
    {
      ScopedLocale locale("en-US");
      EXPECT_EQ(FormatDate(c.date, c.pattern), c.english) << ToUtf8(c.pattern);
    }
  }
}

TEST(FormatDates, TwelveHourForms) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(FormatDate(kLeapDay, u"h:nn AM/PM"), u"6:05 PM");
  EXPECT_EQ(FormatDate(kLeapDay, u"h:nn am/pm"), u"6:05 pm");
  EXPECT_EQ(FormatDate(kLeapDay, u"h A/P"), u"6 P");
  EXPECT_EQ(FormatDate(kEve, u"h a/p"), u"9 a");
  EXPECT_EQ(FormatDate(kLeapDay, u"hh AMPM"), u"06 PM");
  EXPECT_EQ(FormatDate(kNewYear, u"h AM/PM"), u"12 AM");
  EXPECT_EQ(FormatDate(kSaturday, u"h AM/PM"), u"12 PM");
  EXPECT_EQ(FormatDate(kLeapDay, u"hh:mm:ss AM/PM"), u"06:05:09 PM");
}

TEST(FormatDates, NamedFormatsInBothSettings) {
  {
    ScopedLocale locale("pt-BR");
    EXPECT_EQ(FormatDate(kLeapDay, u"Long Date"), u"quinta-feira, 29 de fevereiro de 2024");
    EXPECT_EQ(FormatDate(kLeapDay, u"long date"), u"quinta-feira, 29 de fevereiro de 2024");
    EXPECT_EQ(FormatDate(kLeapDay, u"Short Date"), u"29/02/2024");
    EXPECT_EQ(FormatDate(kLeapDay, u"Medium Date"), u"29-fev-24");
    EXPECT_EQ(FormatDate(kLeapDay, u"Long Time"), u"18:05:09");
    EXPECT_EQ(FormatDate(kLeapDay, u"Medium Time"), u"06:05 PM");
    EXPECT_EQ(FormatDate(kLeapDay, u"SHORT TIME"), u"18:05");
    EXPECT_EQ(FormatDate(kLeapDay, u"General Date"), u"29/02/2024 18:05:09");
    EXPECT_EQ(FormatDate(kLeapDay), u"29/02/2024 18:05:09");
    EXPECT_EQ(FormatDate(kNewYear), u"01/01/2024");  // no time: the date alone
    EXPECT_EQ(FormatDate(0.5), u"12:00:00");         // day 0: the time alone
    EXPECT_EQ(FormatDate(0), u"00:00:00");
    EXPECT_EQ(FormatDate(-1.25), u"29/12/1899 06:00:00");
    EXPECT_EQ(FormatDateTime(kLeapDay, vbShortTime), u"18:05");
    EXPECT_EQ(FormatDateTime(kLeapDay, vbLongDate), u"quinta-feira, 29 de fevereiro de 2024");
    EXPECT_RAISES(FormatDateTime(kLeapDay, 5), 5);
  }
  {
    ScopedLocale locale("en-US");
    EXPECT_EQ(FormatDate(kLeapDay, u"Long Date"), u"Thursday, February 29, 2024");
    EXPECT_EQ(FormatDate(kLeapDay, u"Short Date"), u"2/29/2024");
    EXPECT_EQ(FormatDate(kLeapDay, u"Medium Date"), u"29-Feb-24");
    EXPECT_EQ(FormatDate(kLeapDay, u"Long Time"), u"6:05:09 PM");
    EXPECT_EQ(FormatDate(kLeapDay), u"2/29/2024 6:05:09 PM");
    EXPECT_EQ(FormatDate(0), u"12:00:00 AM");
    EXPECT_EQ(FormatDateTime(kEve, vbLongTime), u"9:03:07 AM");
  }
}

TEST(FormatDates, NumbersAndTextsReadAsDates) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(Format(45351.75, u"dd/mm/yyyy hh:nn"), u"29/02/2024 18:00");
  EXPECT_EQ(Format(u"31/12/2023", u"yyyy-mm-dd"), u"2023-12-31");
  EXPECT_EQ(Format(u"31/12/2023", u"dddd"), u"domingo");
  EXPECT_EQ(Format(u"1/2/2024", u"dd/mm/yyyy"), u"01/02/2024");
  EXPECT_EQ(FormatDate(kLeapDay, u"0.00"), u"45351,75");  // a number pattern shows the day count
  ScopedLocale english("en-US");
  EXPECT_EQ(Format(u"1/2/2024", u"dd/mm/yyyy"), u"02/01/2024");
  EXPECT_EQ(Format(u"12/31/2023", u"dd/mm/yyyy"), u"31/12/2023");
}

struct NumberCase {
  double value;
  const char16_t* pattern;
  const char16_t* portuguese;
  const char16_t* english;
};

TEST(FormatNumbers, PatternsInBothSettings) {
  const NumberCase cases[] = {
      // Grouping and rounding half away from zero on the decimal digits.
      {1234567.891, u"#,##0.00", u"1.234.567,89", u"1,234,567.89"},
      {2.345, u"#,##0.00", u"2,35", u"2.35"},
      {1.005, u"#,##0.00", u"1,01", u"1.01"},
      {0.125, u"#,##0.00", u"0,13", u"0.13"},
      {-2.345, u"#,##0.00", u"-2,35", u"-2.35"},
      {999.995, u"#,##0.00", u"1.000,00", u"1,000.00"},
      {0, u"#,##0.00", u"0,00", u"0.00"},
      {123, u"#,##0", u"123", u"123"},
      {-1234, u"#,##0", u"-1.234", u"-1,234"},
      // Runs of "0" and "#".
      {5, u"000", u"005", u"005"},
      {12345, u"000", u"12345", u"12345"},
      {0, u"#", u"", u""},
      {0.5, u"#.##", u",5", u".5"},
      {5, u"#.##", u"5,", u"5."},
      {3.14159, u"00.0#", u"03,14", u"03.14"},
      {3.1, u"00.0#", u"03,1", u"03.1"},
      {1234.5, u"0", u"1235", u"1235"},
      {5.5, u".00", u"5,50", u"5.50"},
      {0.5, u".00", u",50", u".50"},
      // Literals between and around digits.
      {123456789, u"000-00-0000", u"123-45-6789", u"123-45-6789"},
      {12, u"\\(00\\)", u"(12)", u"(12)"},
      {12, u"0 \"kg\"", u"12 kg", u"12 kg"},
      {-5, u"$0", u"-$5", u"-$5"},
      // Percent, thousands scaling, scientific.
      {0.256, u"0%", u"26%", u"26%"},
      {0.07, u"0.0%", u"7,0%", u"7.0%"},
      {1234567, u"#,##0,", u"1.235", u"1,235"},
      {1234567, u"0,,", u"1", u"1"},
      {12345, u"0.00E+00", u"1,23E+04", u"1.23E+04"},
      {0.00012345, u"0.00E-00", u"1,23E-04", u"1.23E-04"},
      {12345, u"0.00E-00", u"1,23E04", u"1.23E04"},
      {9.999, u"0.00E+00", u"1,00E+01", u"1.00E+01"},
      {1500, u"0.0e+0", u"1,5e+3", u"1.5e+3"},
      {0, u"0.0E+00", u"0,0E+00", u"0.0E+00"},
      // A negative that rounds to zero keeps its sign, as the host prints it.
      {-0.001, u"0.00", u"-0,00", u"-0.00"},
  };
  for (const NumberCase& c : cases) {
    {
      ScopedLocale locale("pt-BR");
      EXPECT_EQ(Format(c.value, c.pattern), c.portuguese) << c.value << " " << ToUtf8(c.pattern);
    }
    {
      ScopedLocale locale("en-US");
      EXPECT_EQ(Format(c.value, c.pattern), c.english) << c.value << " " << ToUtf8(c.pattern);
    }
  }
}

TEST(FormatNumbers, Sections) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(Format(5.0, u"0.00;(0.00)"), u"5,00");
  EXPECT_EQ(Format(-5.0, u"0.00;(0.00)"), u"(5,00)");
  EXPECT_EQ(Format(0.0, u"0.00;(0.00)"), u"0,00");
  const char16_t* four = u"#,##0;-#,##0;\"zero\";\"nulo\"";
  EXPECT_EQ(Format(1234.0, four), u"1.234");
  EXPECT_EQ(Format(-1234.0, four), u"-1.234");
  EXPECT_EQ(Format(0.0, four), u"zero");
  EXPECT_EQ(Format(Variant::Null(), four), u"nulo");
  EXPECT_EQ(Format(Variant::Null(), u"0.00"), u"");
  // An empty section falls back to the first, with the minus sign put back.
  EXPECT_EQ(Format(-3.0, u"0;;\"z\""), u"-3");
  EXPECT_EQ(Format(0.0, u"0;;\"z\""), u"z");
  EXPECT_EQ(Format(0.0, u"0;-0;"), u"0");
  // The two-section currency pattern that the text box builds for entry from the right.
  EXPECT_EQ(Format(-1234.5, u"#,##0.00;-#,##0.00"), u"-1.234,50");
  EXPECT_EQ(Format(12.0, u"0;x;y;z;w"), u"12");  // a fifth section is ignored
  EXPECT_EQ(Format(5.0, u"\"a;b\" 0"), u"a;b 5");   // ";" inside quotes splits nothing
}

TEST(FormatNumbers, NamedFormats) {
  {
    ScopedLocale locale("pt-BR");
    EXPECT_EQ(Format(1234.5, u"Currency"), u"R$ 1.234,50");
    EXPECT_EQ(Format(-1234.5, u"currency"), u"-R$ 1.234,50");
    EXPECT_EQ(Format(1234.567, u"Fixed"), u"1234,57");
    EXPECT_EQ(Format(1234.567, u"STANDARD"), u"1.234,57");
    EXPECT_EQ(Format(0.1234, u"Percent"), u"12,34%");
    EXPECT_EQ(Format(1234.5, u"Scientific"), u"1,23E+03");
    EXPECT_EQ(Format(1234.5, u"General Number"), u"1234,5");
    EXPECT_EQ(Format(0.0, u"Yes/No"), u"N\u00e3o");
    EXPECT_EQ(Format(2.0, u"Yes/No"), u"Sim");
    EXPECT_EQ(Format(-1.0, u"True/False"), u"Verdadeiro");
    EXPECT_EQ(Format(0.0, u"On/Off"), u"Desativado");
  }
  {
    ScopedLocale locale("en-US");
    EXPECT_EQ(Format(1234.5, u"Currency"), u"$1,234.50");
    EXPECT_EQ(Format(-1234.5, u"Currency"), u"($1,234.50)");
    EXPECT_EQ(Format(1234.567, u"Standard"), u"1,234.57");
    EXPECT_EQ(Format(0.0, u"Yes/No"), u"No");
    EXPECT_EQ(Format(1.0, u"True/False"), u"True");
    EXPECT_EQ(Format(1.0, u"On/Off"), u"On");
  }
}

TEST(FormatNumbers, NumberCurrencyAndPercentFunctions) {
  {
    ScopedLocale locale("pt-BR");
    EXPECT_EQ(FormatNumber(1234.567), u"1.234,57");
    EXPECT_EQ(FormatNumber(-0.5, 1, vbFalse, vbTrue, vbFalse), u"(,5)");
    EXPECT_EQ(FormatNumber(1234.5, 0, vbTrue, vbFalse, vbFalse), u"1235");
    EXPECT_EQ(FormatCurrency(-1234.5), u"-R$ 1.234,50");
    EXPECT_EQ(FormatCurrency(-1234.5, 2, vbTrue, vbTrue), u"(R$ 1.234,50)");
    EXPECT_EQ(FormatPercent(0.1234, 1), u"12,3%");
    EXPECT_RAISES(FormatNumber(1, 2, 5), 5);
    EXPECT_RAISES(FormatNumber(1, -2), 5);
  }
  ScopedLocale locale("en-US");
  EXPECT_EQ(FormatCurrency(-1234.5), u"($1,234.50)");
  EXPECT_EQ(FormatCurrency(-1234.5, 0, vbTrue, vbFalse), u"-$1,235");
}

TEST(FormatNumbers, GeneralForm) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(Format(1234.5), u"1234,5");
  EXPECT_EQ(Format(0.1 + 0.2), u"0,3");
  EXPECT_EQ(Format(1.0 / 3), u"0,333333333333333");
  EXPECT_EQ(Format(123456789012345.0), u"123456789012345");
  EXPECT_EQ(Format(1e15), u"1E+15");
  EXPECT_EQ(Format(0.0001), u"0,0001");
  EXPECT_EQ(Format(0.00001), u"1E-05");
  EXPECT_EQ(Format(-1.5e-7), u"-1,5E-07");
  EXPECT_EQ(Format(2.5e100), u"2,5E+100");
  EXPECT_EQ(Format(-0.0), u"0");
  EXPECT_EQ(GeneralNumberText(1234.5, u'.'), u"1234.5");
  EXPECT_EQ(GeneralNumberText(1.0f / 3, u',', 7), u"0,3333333");
  ScopedLocale english("en-US");
  EXPECT_EQ(Format(1234.5), u"1234.5");
}

TEST(FormatText, StringArguments) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(Format(u"1.234,5", u"#,##0.00"), u"1.234,50");
  EXPECT_EQ(Format(u"1.5", u"0.00"), u"15,00");  // "." groups in pt-BR: fifteen
  EXPECT_EQ(Format(u"abc", u"0.00"), u"abc");
  EXPECT_EQ(Format(u"abc", u"dd/mm/yyyy"), u"abc");
  EXPECT_EQ(Format(u"1.234,5"), u"1.234,5");  // no format: the text as it is
  EXPECT_EQ(Format(String(u"2,5"), u"0.0"), u"2,5");
  // Text patterns.
  EXPECT_EQ(Format(u"abc", u">"), u"ABC");
  EXPECT_EQ(Format(u"Ma\u00c7\u00e3", u"<"), u"ma\u00e7\u00e3");
  EXPECT_EQ(Format(u"12345", u"@@@-@@"), u"123-45");
  EXPECT_EQ(Format(u"ab", u"@@@@"), u"  ab");
  EXPECT_EQ(Format(u"ab", u"!@@@@"), u"ab  ");
  EXPECT_EQ(Format(u"ab", u"&&&&"), u"ab");
  EXPECT_EQ(Format(u"abcdef", u"@@-@@"), u"abcd-ef");
  EXPECT_EQ(Format(u"", u"@;\"vazio\""), u"vazio");
}

TEST(FormatVariants, ByType) {
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(Format(Variant::FromDate(45351.75)), u"29/02/2024 18:00:00");
  EXPECT_EQ(Format(Variant::FromDate(45351.75), u"dd/mm"), u"29/02");
  EXPECT_EQ(Format(Variant(2.5)), u"2,5");
  EXPECT_EQ(Format(Variant(2.5), u"0.00"), u"2,50");
  EXPECT_EQ(Format(Variant(int32_t{45351}), u"dd/mm/yyyy"), u"29/02/2024");
  EXPECT_EQ(Format(Variant(1.1f)), u"1,1");  // a Single shows 7 digits, not 1,10000002384186
  EXPECT_EQ(Format(Variant(Currency{12345})), u"1,2345");
  EXPECT_EQ(Format(Variant(true), u"Yes/No"), u"Sim");
  EXPECT_EQ(Format(Variant(true), u"0"), u"-1");
  EXPECT_EQ(Format(Variant(u"3,5"), u"0.00"), u"3,50");
  EXPECT_EQ(Format(Variant(), u"0.0"), u"0,0");
  EXPECT_EQ(Format(Variant()), u"");
  EXPECT_RAISES(Format(Variant(ByteArray{1, 2})), 13);
}

TEST(FormatVariants, RegionalTextHooks) {
  VariantTextHooks saved = GetVariantTextHooks();
  InstallRegionalVariantText();
  {
    ScopedLocale locale("pt-BR");
    EXPECT_EQ(CStr(Variant(1.5)), u"1,5");
    EXPECT_EQ(Variant(u"1.234,5").ToDouble(), 1234.5);
    EXPECT_EQ(CStr(Variant::FromDate(45351.75)), u"29/02/2024 18:00:00");
    EXPECT_EQ(Variant(u"31/12/2023").ToDate().days, 45291);
    EXPECT_EQ(CStr(Variant(Currency{-15000})), u"-1,5");
  }
  {
    ScopedLocale locale("en-US");
    EXPECT_EQ(CStr(Variant(1.5)), u"1.5");
    EXPECT_EQ(Variant(u"1,234.5").ToDouble(), 1234.5);
  }
  SetVariantTextHooks(saved);
}

}  // namespace
}  // namespace mx::host
