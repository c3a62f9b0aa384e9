#include <gtest/gtest.h>

#include "entry/NumberEntry.h"
#include "host/Locale.h"

namespace mx::entry {
namespace {

TEST(NumberEntry, FilterNumberKey) {
  struct Case { int16_t key; bool decimal; int16_t expected; };
  const Case cases[] = {
      {'0', false, '0'}, {'9', true, '9'}, {8, false, 8},
      {',', false, 0},   {',', true, ','},  // a number field refuses decimals
      {'.', false, 0},   {'.', true, ','},  // in a currency field both marks enter a comma
      {'a', true, 0},    {'-', true, 0},     {' ', false, 0}, {13, false, 0},
  };
  for (const Case& c : cases) {
    int16_t key = c.key;
    FilterNumberKey(key, c.decimal);
    EXPECT_EQ(key, c.expected) << "key " << c.key << " decimal " << c.decimal;
  }
}

TEST(NumberEntry, DecimalsLimitDependsOnCaretAndComma) {
  // Complete decimals: a digit at the end is refused, before the comma it passes.
  EXPECT_TRUE(RefusedByDecimalsLimit(u"12,34", 5, 0, '5', 2));
  EXPECT_FALSE(RefusedByDecimalsLimit(u"12,34", 2, 0, '5', 2));
  EXPECT_FALSE(RefusedByDecimalsLimit(u"12,34", 1, 0, '5', 2));
  // Right behind the comma counts as behind it.
  EXPECT_TRUE(RefusedByDecimalsLimit(u"12,34", 3, 0, '5', 2));
  EXPECT_FALSE(RefusedByDecimalsLimit(u"12,3", 4, 0, '4', 2));
  EXPECT_TRUE(RefusedByDecimalsLimit(u"12,345", 6, 0, '1', 3));
  // A second comma never, Backspace always.
  EXPECT_TRUE(RefusedByDecimalsLimit(u"12,", 0, 0, ',', 2));
  EXPECT_FALSE(RefusedByDecimalsLimit(u"12,34", 5, 0, 8, 2));
  EXPECT_FALSE(RefusedByDecimalsLimit(u"1234", 4, 0, ',', 2));
  // A selection is typed over.
  EXPECT_FALSE(RefusedByDecimalsLimit(u"12,34", 3, 2, '5', 2));
}

TEST(NumberEntry, CurrencyPatternAndZeroText) {
  EXPECT_EQ(CurrencyPattern(2), u"#,##0.00");
  EXPECT_EQ(CurrencyPattern(3), u"#,###0.000");
  EXPECT_EQ(CurrencyPattern(0), u"#,0");
  NumberOptions o;
  o.formatType = To_Currency;
  EXPECT_EQ(CurrencyZeroText(o), u"R$ 0,00");
  o.currencyChar = u"";
  o.decimals = 3;
  o.decimalSimbol = u".";
  EXPECT_EQ(CurrencyZeroText(o), u"0.000");
}

class NumberEntryPtBr : public ::testing::Test {
 protected:
  host::ScopedLocale m_locale{"pt-BR"};
};

TEST_F(NumberEntryPtBr, CurrencyTextSetter) {
  NumberOptions o;
  o.formatType = To_Currency;
  EXPECT_EQ(FormatNumberEntry(u"1234,5", o), u"R$ 1.234,50");
  EXPECT_EQ(FormatNumberEntry(u"R$ 1.234,50", o), u"R$ 1.234,50");
  EXPECT_EQ(FormatNumberEntry(u"", o), u"R$ 0,00");
  EXPECT_EQ(FormatNumberEntry(u"-", o), u"R$ 0,00");
  EXPECT_EQ(FormatNumberEntry(u"abc", o), u"R$ 0,00");
  // A negative amount keeps its own minus behind the prefix, and reads back the same.
  EXPECT_EQ(FormatNumberEntry(u"-5", o), u"-R$ -5,00");
  EXPECT_EQ(FormatNumberEntry(u"-R$ -5,00", o), u"-R$ -5,00");
  o.allowNegativeNumber = false;
  EXPECT_EQ(FormatNumberEntry(u"-5", o), u"R$ 5,00");
  o.currencyChar = u"";
  o.decimals = 3;
  EXPECT_EQ(FormatNumberEntry(u"2,5", o), u"2,500");
  // Formatted as typed: no pattern, the value's own rendering behind the prefix.
  o.currencyChar = u"R$";
  o.autoFormatCurrency = true;
  EXPECT_EQ(FormatNumberEntry(u"1.234,50", o), u"R$ 1234,5");
}

TEST_F(NumberEntryPtBr, NumberTextSetter) {
  NumberOptions o;
  o.formatType = To_Number;
  EXPECT_EQ(FormatNumberEntry(u"12a3", o), u"123");
  EXPECT_EQ(FormatNumberEntry(u"1-2", o), u"-12");
  EXPECT_EQ(FormatNumberEntry(u"-", o), u"0");
  EXPECT_EQ(FormatNumberEntry(u"", o), u"0");
  o.allowNegativeNumber = false;
  EXPECT_EQ(FormatNumberEntry(u"-12", o), u"12");
  o.formatType = To_Text;
  EXPECT_EQ(FormatNumberEntry(u"a-1", o), u"a-1");
}

TEST_F(NumberEntryPtBr, PlainCurrencyWhileEditing) {
  NumberOptions o;
  o.formatType = To_Currency;
  EXPECT_EQ(PlainCurrencyText(u"R$ 1.234,50", o), u"1234,5");
  EXPECT_EQ(PlainCurrencyText(u"R$ 0,00", o), u"0");
  EXPECT_EQ(PlainCurrencyText(u"-R$ -5,25", o), u"-5,25");
  EXPECT_EQ(PlainCurrencyText(u"-", o), u"-");
}

TEST_F(NumberEntryPtBr, CurrencyAsTypedShiftsDigitsInFromTheRight) {
  // The text after each digit typed at the end of the previous result.
  String text = u"0,00";
  const char16_t* expected[] = {u"0,01", u"0,12", u"1,23", u"12,34", u"123,45", u"1.234,56", u"12.345,67"};
  const char16_t digits[] = u"1234567";
  for (int i = 0; i < 7; ++i) {
    text = FormatCurrencyAsTyped(text + digits[i], 2);
    EXPECT_EQ(text, expected[i]) << i;
  }
  EXPECT_EQ(FormatCurrencyAsTyped(u"1234", 2), u"12,34");
  // Backspace takes the last digit back off.
  EXPECT_EQ(FormatCurrencyAsTyped(u"12,3", 2), u"1,23");
  EXPECT_EQ(FormatCurrencyAsTyped(u"-1234", 2), u"-12,34");
  EXPECT_EQ(FormatCurrencyAsTyped(u"", 2), u"0,00");
  EXPECT_EQ(FormatCurrencyAsTyped(u"5", 3), u"0,005");
  EXPECT_EQ(FormatCurrencyAsTyped(u"125", 0), u"125");
}

TEST(NumberEntry, CurrencyAsTypedFollowsTheRegionalMarks) {
  host::ScopedLocale us("en-US");
  EXPECT_EQ(FormatCurrencyAsTyped(u"123456", 2), u"1,234.56");
}

TEST(NumberEntry, TextCase) {
  EXPECT_EQ(ApplyTextCase(u"São Paulo", Case_Upper), u"SÃO PAULO");
  EXPECT_EQ(ApplyTextCase(u"São Paulo", Case_Lower), u"são paulo");
  EXPECT_EQ(ApplyTextCase(u"São Paulo", Case_Normal), u"São Paulo");
  EXPECT_EQ(ApplyTextCase(int16_t{u'ç'}, Case_Upper), int16_t{u'Ç'});
  EXPECT_EQ(ApplyTextCase(int16_t{'A'}, Case_Lower), int16_t{'a'});
  EXPECT_EQ(ApplyTextCase(int16_t{'1'}, Case_Upper), int16_t{'1'});
  EXPECT_EQ(ApplyTextCase(int16_t{0}, Case_Upper), int16_t{0});
}

}  // namespace
}  // namespace mx::entry
