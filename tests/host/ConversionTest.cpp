#include "host/Conversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/Locale.h"
#include "RegionalTestSupport.h"

namespace mx::host {
namespace {

TEST(Val, ReadsTheLeadingNumber) {
  ScopedLocale locale("pt-BR");  // Val ignores the setting: "." is always the mark
  EXPECT_EQ(Val(u"  12abc"), 12);
  EXPECT_EQ(Val(u"1.5e2x"), 150);
  EXPECT_EQ(Val(u""), 0);
  EXPECT_EQ(Val(u"abc"), 0);
  EXPECT_EQ(Val(u" 1 2 3"), 123);  // blanks are dropped anywhere
  EXPECT_EQ(Val(u"\t-\n4"), -4);
  EXPECT_EQ(Val(u"-1.5"), -1.5);
  EXPECT_EQ(Val(u"1,5"), 1);  // a comma ends the number
  EXPECT_EQ(Val(u".5"), 0.5);
  EXPECT_EQ(Val(u"1.2.3"), 1.2);
  EXPECT_EQ(Val(u"1d3"), 1000);
  EXPECT_EQ(Val(u"1e"), 1);  // an exponent mark with no digits ends the number
  EXPECT_EQ(Val(u"e5"), 0);
  EXPECT_EQ(Val(u"--5"), 0);
  EXPECT_RAISES(Val(u"1e999"), 6);
}

TEST(Val, HexAndOctalTakeTheHostsIntegerWidths) {
  EXPECT_EQ(Val(u"&HFF"), 255);
  EXPECT_EQ(Val(u"&hff"), 255);
  EXPECT_EQ(Val(u"&HFFFF"), -1);      // fits 16 bits: an Integer
  EXPECT_EQ(Val(u"&H8000"), -32768);
  EXPECT_EQ(Val(u"&HFFFF&"), 65535);  // the Long suffix
  EXPECT_EQ(Val(u"&H10000"), 65536);
  EXPECT_EQ(Val(u"&HFFFFFFFF"), -1);
  EXPECT_EQ(Val(u"&O17"), 15);
  EXPECT_EQ(Val(u"&H1Fzz"), 31);
  EXPECT_EQ(Val(u"&H"), 0);
  EXPECT_EQ(Val(u"&HG"), 0);
  EXPECT_RAISES(Val(u"&H123456789"), 6);
}

TEST(IsNumeric, FollowsTheRegionalMarks) {
  {
    ScopedLocale locale("pt-BR");
    for (const char16_t* text : {u"1.234,56", u" 12 ", u"R$ 1.234,56", u"-R$ 5", u"R$-5", u"5-", u"(5)",
                                 u"1.5", u",5", u"1e5", u"-1,5E-3", u"&H1F", u"+7", u"1.2.3"}) {
      EXPECT_TRUE(IsNumeric(text)) << ToUtf8(text);
    }
    for (const char16_t* text : {u"", u"   ", u"-", u",", u"abc", u"12abc", u"1,2,3", u"1e", u"&HG", u"$5",
                                 u"--5", u"(-5)", u"(5", u".5", u"1 2", u"5-+"}) {
      EXPECT_FALSE(IsNumeric(text)) << ToUtf8(text);
    }
  }
  {
    ScopedLocale locale("en-US");
    EXPECT_FALSE(IsNumeric(u"1.234,56"));
    EXPECT_TRUE(IsNumeric(u"1,234.56"));
    EXPECT_TRUE(IsNumeric(u"$1,234.56"));
    EXPECT_TRUE(IsNumeric(u"($5)"));
    EXPECT_FALSE(IsNumeric(u"R$ 5"));
  }
}

TEST(IsNumeric, OfVariants) {
  ScopedLocale locale("pt-BR");
  EXPECT_TRUE(IsNumeric(Variant()));
  EXPECT_TRUE(IsNumeric(Variant(3.5)));
  EXPECT_TRUE(IsNumeric(Variant(true)));
  EXPECT_TRUE(IsNumeric(Variant(u"2,5")));
  EXPECT_FALSE(IsNumeric(Variant(u"2,5x")));
  EXPECT_FALSE(IsNumeric(Variant::Null()));
  EXPECT_FALSE(IsNumeric(Variant::FromDate(45000)));
}

TEST(CDbl, ReadsUnderTheSettingAndRaises) {
  {
    ScopedLocale locale("pt-BR");
    EXPECT_EQ(CDbl(u"1.5"), 15);  // "." groups: fifteen
    EXPECT_EQ(CDbl(u"1,5"), 1.5);
    EXPECT_EQ(CDbl(u"1.500,00"), 1500);
    EXPECT_EQ(CDbl(u"(R$ 2,50)"), -2.5);
    EXPECT_EQ(CDbl(u"&H10"), 16);
    EXPECT_EQ(CDbl(Variant(u"2,5")), 2.5);
    EXPECT_EQ(CDbl(Variant(true)), -1);
    EXPECT_RAISES(CDbl(u"abc"), 13);
    EXPECT_RAISES(CDbl(u""), 13);
    EXPECT_RAISES(CDbl(u"1e999"), 6);
    EXPECT_RAISES(CDbl(Variant::Null()), 94);
  }
  {
    ScopedLocale locale("en-US");
    EXPECT_EQ(CDbl(u"1,5"), 15);
    EXPECT_EQ(CDbl(u"1.5"), 1.5);
  }
}

TEST(IntegerConversions, RoundHalfToEvenAndOverflow) {
  const struct {
    double value;
    int16_t expected;
  } cases[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {0.5, 0}, {1.5, 2}, {-1.5, -2}, {2.4999, 2}, {32767.4, 32767},
               {-32768.5, -32768}};
  for (const auto& c : cases) EXPECT_EQ(CInt(c.value), c.expected) << c.value;
  EXPECT_RAISES(CInt(32767.5), 6);
  EXPECT_RAISES(CInt(-32769.0), 6);
  EXPECT_RAISES(CInt(std::numeric_limits<double>::quiet_NaN()), 6);
  EXPECT_EQ(CLng(2147483646.5), 2147483646);
  EXPECT_EQ(CLng(-2147483648.5), -2147483648);
  EXPECT_RAISES(CLng(2147483647.5), 6);
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(CInt(Variant(u"2,5")), 2);
  EXPECT_EQ(CLng(Variant(u"1.000.000")), 1000000);
  EXPECT_RAISES(CInt(Variant(u"x")), 13);
}

TEST(OtherConversions, SingleCurrencyAndDate) {
  EXPECT_EQ(CSng(0.1), 0.1f);
  EXPECT_RAISES(CSng(1e39), 6);
  ScopedLocale locale("pt-BR");
  EXPECT_EQ(CCur(Variant(u"R$ 1.234,56")).scaled, 12345600);
  EXPECT_RAISES(CCur(1e20), 6);
  EXPECT_EQ(CDate(Variant(u"31/12/2023")), 45291);
  EXPECT_EQ(CDate(Variant(u"45000,5")), 45000.5);  // not a date text, but a number
  EXPECT_EQ(CDate(Variant(45000)), 45000);
  EXPECT_RAISES(CDate(Variant(u"nada")), 13);
  EXPECT_RAISES(CDate(Variant::Null()), 94);
  EXPECT_TRUE(IsDate(Variant::FromDate(1)));
  EXPECT_TRUE(IsDate(Variant(u"1/1/2000")));
  EXPECT_FALSE(IsDate(Variant(45000.0)));  // a number is no date until converted
}

TEST(Round, HalfToEvenOnDecimalDigits) {
  EXPECT_EQ(Round(2.5), 2);
  EXPECT_EQ(Round(3.5), 4);
  EXPECT_EQ(Round(-2.5), -2);
  EXPECT_EQ(Round(-3.7), -4);
  EXPECT_EQ(Round(0.125, 2), 0.12);
  EXPECT_EQ(Round(0.135, 2), 0.14);
  EXPECT_EQ(Round(2.675, 2), 2.68);  // the double is 2.67499999...; its 15 digits are a tie
  EXPECT_EQ(Round(1.005, 2), 1.0);
  EXPECT_EQ(Round(123.456, 1), 123.5);
  EXPECT_EQ(Round(9.995, 2), 10.0);
  EXPECT_EQ(Round(0.0004, 3), 0.0);
  EXPECT_EQ(Round(1e300, 2), 1e300);
  EXPECT_RAISES(Round(1.5, -1), 5);
}

TEST(Round, IntAndFixDifferBelowZero) {
  EXPECT_EQ(Int(-1.5), -2);
  EXPECT_EQ(Fix(-1.5), -1);
  EXPECT_EQ(Int(1.5), 1);
  EXPECT_EQ(Fix(1.5), 1);
  EXPECT_EQ(Int(-2.0), -2);
}

}  // namespace
}  // namespace mx::host
