#include <gtest/gtest.h>

#include <climits>
#include <set>

#include "utility/MX.h"

namespace mx::utility {
namespace {

using host::FromUtf8;
using host::ToUtf8;

TEST(RemoveAccents, ReplacesOnlyTheTableLetters) {
  MX mx;
  EXPECT_EQ(ToUtf8(mx.RemoveAccents(FromUtf8("Ação, ÉPOCA, Über, Åse, çà"))), "Acao, EPOCA, Uber, Ase, ca");
  EXPECT_EQ(ToUtf8(mx.RemoveAccents(FromUtf8("ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÒÓÔÕÖÙÚÛÜàáâãäåçèéêëìíîïòóôõöùúûü"))),
            "AAAAAACEEEEIIIIOOOOOUUUUaaaaaaceeeeiiiiooooouuuu");
  // Letters outside the table stay, accented or not.
  EXPECT_EQ(ToUtf8(mx.RemoveAccents(FromUtf8("ñÑýÝÿØæ"))), "ñÑýÝÿØæ");
  EXPECT_EQ(mx.RemoveAccents(u""), u"");
}

TEST(Filters, TrimThenKeepTheirClass) {
  MX mx;
  EXPECT_EQ(mx.ReturnNumbersOnly(u"  R$ -1.234,56 "), u"123456");
  EXPECT_EQ(ReturnNumbersOnly(u"  R$ -1.234,56 ", true), u"-123456");
  EXPECT_EQ(ToUtf8(mx.ReturnTextsOnly(FromUtf8(" João da Silva, 42! "))), "JoãodaSilva");
  EXPECT_EQ(ToUtf8(mx.ReturnTextsAndNumbersOnly(FromUtf8(" João da Silva, 42! "))), "JoãodaSilva42");
  EXPECT_EQ(ToUtf8(mx.ReturnTextsOnly(FromUtf8("Ωμέγα-Жук_1"))), "ΩμέγαЖук");
  EXPECT_EQ(mx.ReturnNumbersOnly(u"abc"), u"");
}

TEST(Padding, FormatWithZerosAndLenTrim) {
  MX mx;
  EXPECT_EQ(mx.FormatWithZeros(u"12", 5), u"00012");
  EXPECT_EQ(mx.FormatWithZeros(u"123456", 5), u"123456");
  EXPECT_EQ(mx.FormatWithZeros(u"  7 ", 3), u"007");
  EXPECT_EQ(mx.FormatWithZeros(u"", 2), u"00");
  EXPECT_EQ(mx.FormatWithZeros(u"5", -3), u"5");
  EXPECT_EQ(mx.LenTrim(u"  ab  "), 2);
  EXPECT_EQ(mx.LenTrim(u"\tab "), 3);  // only blanks are trimmed
  EXPECT_EQ(mx.LenTrim(u"   "), 0);
}

TEST(GetStringContent, FindsTheTextBetweenMarkersWithoutRegardToCase) {
  MX mx;
  EXPECT_EQ(mx.GetStringContent(u"Nome: <b>Ana</b> fim", u"<B>", u"</B>"), u"Ana");
  EXPECT_EQ(mx.GetStringContent(u"a[1] b[2]", u"[", u"]"), u"1");
  EXPECT_EQ(mx.GetStringContent(u"sem marcador", u"<", u">"), u"");
  EXPECT_EQ(mx.GetStringContent(u"início <sem fim", u"<", u">"), u"");
  EXPECT_EQ(ToUtf8(mx.GetStringContent(FromUtf8("x AÇÃO: valor; y"), FromUtf8("ação:"), u";")), " valor");
  // The end marker is searched only after the start marker.
  EXPECT_EQ(mx.GetStringContent(u"> a < b >", u"<", u">"), u" b ");
}

TEST(Numbers, LongToHexPadsToEightDigits) {
  MX mx;
  EXPECT_EQ(mx.LongToHex(255), u"000000FF");
  EXPECT_EQ(mx.LongToHex(0), u"00000000");
  EXPECT_EQ(mx.LongToHex(0x12ABCDEF), u"12ABCDEF");
  EXPECT_EQ(mx.LongToHex(-1), u"FFFFFFFF");
  EXPECT_EQ(mx.LongToHex(-256), u"FFFFFF00");
  EXPECT_EQ(mx.LongToHex(INT32_MIN), u"80000000");
}

TEST(Numbers, ShiftRGBColorClampsEachChannel) {
  MX mx;
  EXPECT_EQ(mx.ShiftRGBColor(0x102030, 0x10), 0x203040);
  EXPECT_EQ(mx.ShiftRGBColor(0xF0E0D0, 0x20), 0xFFFFF0);
  EXPECT_EQ(mx.ShiftRGBColor(0x102030, -0x20), 0x000010);
  EXPECT_EQ(mx.ShiftRGBColor(0xFFFFFF, -300), 0);
  EXPECT_EQ(mx.ShiftRGBColor(0x000000, 300), 0xFFFFFF);
  // The high byte (a system colour's flag) is not carried into the result.
  EXPECT_EQ(mx.ShiftRGBColor(static_cast<int32_t>(0x8000000F), 0), 0x00000F);
}

TEST(Numbers, RandomGroupsHaveTheirShape) {
  MX mx;
  std::set<std::u16string> seen;
  for (int i = 0; i < 200; ++i) {
    const std::u16string text = mx.CreateRandomNumberAsStr();
    ASSERT_EQ(text.size(), 11u) << ToUtf8(text);
    for (size_t g = 0; g < 4; ++g) {
      const std::u16string group = text.substr(g * 3, 2);
      ASSERT_TRUE(group[0] >= u'0' && group[0] <= u'9' && group[1] >= u'0' && group[1] <= u'9');
      ASSERT_LE(std::stoi(ToUtf8(group)), 98);  // the whole part of 99 times a fraction below 1
      if (g < 3) ASSERT_EQ(text[g * 3 + 2], u'.');
    }
    seen.insert(text);
  }
  EXPECT_GT(seen.size(), 150u);
  const std::u16string custom = mx.CreateRandomNumberAsStr(u"-", 3, 1000);
  ASSERT_EQ(custom.size(), 14u);  // three groups of four digits
  EXPECT_EQ(custom[4], u'-');
  EXPECT_EQ(custom[9], u'-');
  EXPECT_EQ(mx.CreateRandomNumberAsStr(u".", 0), u"");
  EXPECT_EQ(mx.CreateRandomNumberAsStr(u".", 1, 0), u"0");

  std::set<int32_t> longs;
  for (int i = 0; i < 20; ++i) {
    const int32_t value = mx.CreateRandomNumberAsLong();
    EXPECT_GE(value, 0);
    longs.insert(value);
  }
  EXPECT_GT(longs.size(), 15u);
}

}  // namespace
}  // namespace mx::utility
