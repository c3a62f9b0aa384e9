#include <gtest/gtest.h>

#include "entry/TextMask.h"

namespace mx::entry {
namespace {

constexpr char16_t kDateMask[] = u"##/##/####";

TEST(TextMask, TemplateBlanksFreePositionsOnly) {
  EXPECT_EQ(MaskTemplate(u"(##) @@@-####"), u"(  )    -    ");
  EXPECT_EQ(MaskTemplate(u""), u"");
}

TEST(TextMask, ApplyMaskLaysDigitsBetweenLiterals) {
  EXPECT_EQ(ApplyMask(u"31122023", kDateMask, Only_Number), u"31/12/2023");
  // Typed literals are consumed with the template's own.
  EXPECT_EQ(ApplyMask(u"31/12/2023", kDateMask, Only_Number), u"31/12/2023");
  // A short entry keeps the literal that follows its last free position, then is trimmed.
  EXPECT_EQ(ApplyMask(u"123", kDateMask, Only_Number), u"12/3 /");
  EXPECT_EQ(ApplyMask(u"1234", kDateMask, Only_Number), u"12/34/");
  // Characters of the wrong class are dropped, not laid in.
  EXPECT_EQ(ApplyMask(u"3a1-1b2", kDateMask, Only_Number), u"31/12/");
  // Too much input is cut at the mask's end.
  EXPECT_EQ(ApplyMask(u"311220239999", kDateMask, Only_Number), u"31/12/2023");
}

TEST(TextMask, ApplyMaskWithoutLettersOrDigitsGivesTheWholeTemplate) {
  EXPECT_EQ(ApplyMask(u"", kDateMask, Only_Number), u"  /  /    ");
  EXPECT_EQ(ApplyMask(u" / -", kDateMask, Only_Number), u"  /  /    ");
  // Letters under a digits-only mask are filtered away but still count as content.
  EXPECT_EQ(ApplyMask(u"ab", kDateMask, Only_Number), u"/  /");
}

TEST(TextMask, ApplyMaskFiltersByMaskTypeAndNumberOnly) {
  EXPECT_EQ(ApplyMask(u"ab12cd", u"@@-@@", Only_Text), u"ab-cd");
  EXPECT_EQ(ApplyMask(u"ab12cd", u"@@-@@", Text_And_Number), u"ab-12");
  EXPECT_EQ(ApplyMask(u"ab12cd", u"@@-@@", Text_And_Number, true), u"12-");
  // Accented letters are letters.
  EXPECT_EQ(ApplyMask(u"ção", u"@@@", Only_Text), u"ção");
}

TEST(TextMask, TextNoMaskByMaskType) {
  EXPECT_EQ(TextNoMask(u"ab 12", u"", 1), u"ab 12");
  EXPECT_EQ(TextNoMask(u"AB-12", u"@@-##", Only_Text), u"AB");
  EXPECT_EQ(TextNoMask(u"AB-12", u"@@-##", Only_Number), u"12");
  EXPECT_EQ(TextNoMask(u"AB-12", u"@@-##", Text_And_Number), u"AB12");
  EXPECT_EQ(TextNoMask(u"AB-12", u"@@-##", 3), u"");
}

// Types the characters one at a time the way the text box does: each key goes through
// MaskKeyPress at the caret.
struct MaskTyping {
  String text = MaskTemplate(kDateMask);
  int32_t caret = 0;
  bool Type(char16_t c) {
    int16_t key = static_cast<int16_t>(c);
    MaskKeyResult r = MaskKeyPress(text, kDateMask, Only_Number, false, caret, key);
    text = r.text;
    caret = r.caret;
    return r.changed;
  }
};

TEST(TextMask, TypingStepsOverLiteralsAndKeepsTheLength) {
  MaskTyping t;
  const char16_t* expected[] = {u"3 /  /    ", u"31/  /    ", u"31/1 /    ", u"31/12/    ",
                                u"31/12/2   ", u"31/12/20  ", u"31/12/202 ", u"31/12/2023"};
  const int32_t carets[] = {1, 2, 4, 5, 7, 8, 9, 10};
  const char16_t digits[] = u"31122023";
  for (int i = 0; i < 8; ++i) {
    ASSERT_TRUE(t.Type(digits[i])) << i;
    EXPECT_EQ(t.text, expected[i]) << i;
    EXPECT_EQ(t.caret, carets[i]) << i;
  }
  // Full: nothing more goes in.
  EXPECT_FALSE(t.Type(u'9'));
  EXPECT_EQ(t.text, u"31/12/2023");
}

TEST(TextMask, TypingRefusesTheWrongClassAndOverwritesInsideTheEntry) {
  MaskTyping t;
  EXPECT_FALSE(t.Type(u'x'));
  EXPECT_EQ(t.text, u"  /  /    ");
  EXPECT_EQ(t.caret, 0);
  t.text = u"31/12/2023";
  t.caret = 2;  // before the first "/": the next free position is the month's first digit
  ASSERT_TRUE(t.Type(u'0'));
  EXPECT_EQ(t.text, u"31/02/2023");
  EXPECT_EQ(t.caret, 4);
  // A trimmed entry is widened back to the template before a position past its end is written.
  t.text = u"12/3 /";
  t.caret = 4;
  ASSERT_TRUE(t.Type(u'4'));
  EXPECT_EQ(t.text, u"12/34/    ");
}

TEST(TextMask, BackspaceStepsBackOverLiteralsEnterPasses) {
  int16_t key = 8;
  MaskKeyResult r = MaskKeyPress(u"31/12/    ", kDateMask, Only_Number, false, 6, key);
  EXPECT_EQ(key, 0);
  EXPECT_EQ(r.text, u"31/1 /    ");
  EXPECT_EQ(r.caret, 4);
  key = 8;
  r = MaskKeyPress(u"  /  /    ", kDateMask, Only_Number, false, 0, key);
  EXPECT_FALSE(r.changed);
  key = 13;
  r = MaskKeyPress(u"31/12/    ", kDateMask, Only_Number, false, 6, key);
  EXPECT_EQ(key, 13);
  EXPECT_FALSE(r.changed);
}

TEST(TextMask, DeleteBlanksSelectedPositionsButKeepsLiterals) {
  int32_t caret = -1;
  // The whole middle selected: digits become blanks, both "/" stay.
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 1, 8, caret), u"3 /  /   3");
  EXPECT_EQ(caret, 1);
  // Nothing selected: position p = SelStart, the character before the caret.
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 5, 0, caret), u"31/1 /2023");
  EXPECT_EQ(caret, 5);
  // At 0 the first position is taken.
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 0, 0, caret), u" 1/12/2023");
  EXPECT_EQ(caret, 1);
  // A literal under the caret survives.
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 3, 0, caret), u"31/12/2023");
  // At the mask's end the last position goes; past it nothing is blanked.
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 10, 0, caret), u"31/12/202 ");
  EXPECT_EQ(caret, 10);
  EXPECT_EQ(MaskBlankSelection(u"31/12/2023", kDateMask, 11, 0, caret), u"31/12/2023");
}

TEST(TextMask, FirstFreePosition) {
  EXPECT_EQ(MaskFirstFree(u"  /  /    ", kDateMask), 0);
  EXPECT_EQ(MaskFirstFree(u"12/3 /", kDateMask), 4);
  EXPECT_EQ(MaskFirstFree(u"12/34/", kDateMask), 6);
  EXPECT_EQ(MaskFirstFree(u"12/34/5678", kDateMask), 10);
}

}  // namespace
}  // namespace mx::entry
