// Line layout without pixels: breaks, word wrapping, prefixes, ellipses and tab stops.
#include <gtest/gtest.h>

#include "platform/Text.h"
#include "platform/TextLayout.h"

namespace mx::platform {
namespace {

const Font& Arial12() {
  LOGFONTW lf;
  lf.lfHeight = -12;
  const char16_t name[] = u"Arial";
  std::copy(std::begin(name), std::end(name), lf.lfFaceName);
  return FontEngine::instance().font(lf);
}

std::vector<TextLine> Layout(std::u32string_view text, UINT format, int maxWidth = 1000, int tab = 0) {
  TextLayoutOptions o;
  o.format = format;
  o.maxWidth = maxWidth;
  o.tabWidth = tab;
  return LayoutText(Arial12(), text, o);
}

std::vector<std::u32string> Texts(const std::vector<TextLine>& lines) {
  std::vector<std::u32string> out;
  for (const TextLine& l : lines) out.push_back(l.text);
  return out;
}

int W(std::u32string_view s) { return RunWidth(Arial12(), s); }

TEST(TextLayout, ExplicitLineBreaks) {
  using V = std::vector<std::u32string>;
  EXPECT_EQ(Texts(Layout(U"a\rb\nc\r\nd", 0)), (V{U"a", U"b", U"c", U"d"}));
  EXPECT_EQ(Texts(Layout(U"a\n\nb", 0)), (V{U"a", U"", U"b"}));
  EXPECT_EQ(Texts(Layout(U"a\r\n", 0)), (V{U"a"}));  // a final break opens no line
  EXPECT_EQ(Texts(Layout(U"\n", 0)), (V{U""}));
  EXPECT_TRUE(Layout(U"", 0).empty());
  // One line shows its breaks as blanks, and always has its line even when empty.
  EXPECT_EQ(Texts(Layout(U"a\r\nb", DT_SINGLELINE)), (V{U"a  b"}));
  EXPECT_EQ(Layout(U"", DT_SINGLELINE).size(), 1u);
  // Widths are the sum of advances.
  std::vector<TextLine> l = Layout(U"ab\nabc", 0);
  EXPECT_EQ(l[0].width, W(U"a") + W(U"b"));
  EXPECT_EQ(l[1].width, W(U"abc"));
}

TEST(TextLayout, WordWrapBreaksAtBlanksGreedily) {
  const std::u32string sentence = U"The quick brown fox jumps over the lazy dog";
  const int max = W(U"The quick brown fox") + 2;
  std::vector<TextLine> lines = Layout(sentence, DT_WORDBREAK, max);
  using V = std::vector<std::u32string>;
  // " jumps" does not fit after "fox"; "jumps over the lazy dog" is wider than the first line.
  ASSERT_GT(W(U"The quick brown fox jumps"), max);
  ASSERT_GT(W(U"jumps over the lazy dog"), max);
  ASSERT_LE(W(U"jumps over the lazy"), max);
  EXPECT_EQ(Texts(lines), (V{U"The quick brown fox", U"jumps over the lazy", U"dog"}));
  for (const TextLine& l : lines) EXPECT_LE(l.width, max);

  // A wider box holds the whole sentence; several blanks between words vanish at a break.
  EXPECT_EQ(Layout(sentence, DT_WORDBREAK, W(sentence)).size(), 1u);
  EXPECT_EQ(Texts(Layout(U"one    two", DT_WORDBREAK, W(U"one  "))), (V{U"one", U"two"}));
  // Leading blanks of a paragraph stay; each paragraph wraps on its own.
  EXPECT_EQ(Texts(Layout(U"  aa bb\ncc", DT_WORDBREAK, W(U"  aa b"))), (V{U"  aa", U"bb", U"cc"}));
}

TEST(TextLayout, LongWordsOverflowOrBreakByCharacters) {
  const std::u32string word = U"Supercalifragilistic";
  const int max = W(U"Super");
  using V = std::vector<std::u32string>;
  // The classic behaviour: the word stays whole and overflows its line.
  std::vector<TextLine> whole = Layout(U"a " + word + U" b", DT_WORDBREAK, max);
  EXPECT_EQ(Texts(whole), (V{U"a", word, U"b"}));
  EXPECT_GT(whole[1].width, max);
  // As an edit control does: cut by characters, each piece as long as fits.
  std::vector<TextLine> cut = Layout(word, DT_WORDBREAK | DT_EDITCONTROL, max);
  std::u32string joined;
  for (size_t i = 0; i < cut.size(); ++i) {
    EXPECT_LE(cut[i].width, max);
    if (i + 1 < cut.size()) EXPECT_GT(cut[i].width + W(cut[i + 1].text.substr(0, 1)), max);
    joined += cut[i].text;
  }
  EXPECT_EQ(joined, word);
  EXPECT_GT(cut.size(), 2u);
  // A box narrower than any character still moves on one character a line.
  EXPECT_EQ(Layout(U"abc", DT_WORDBREAK | DT_EDITCONTROL, 0).size(), 3u);
  EXPECT_EQ(Texts(Layout(U"ab cd", DT_WORDBREAK, 0)), (V{U"ab", U"cd"}));
}

TEST(TextLayout, AccessKeyPrefixes) {
  auto one = [](std::u32string_view s, UINT f = DT_SINGLELINE) { return Layout(s, f)[0]; };
  EXPECT_EQ(one(U"&File").text, U"File");
  EXPECT_EQ(one(U"&File").underlines, std::vector<int>{0});
  EXPECT_EQ(one(U"Sa&ve").underlines, std::vector<int>{2});
  EXPECT_EQ(one(U"A&&B").text, U"A&B");
  EXPECT_EQ(one(U"A&&B").underlines, std::vector<int>{});
  EXPECT_EQ(one(U"&&&x").text, U"&x");
  EXPECT_EQ(one(U"&&&x").underlines, std::vector<int>{1});
  EXPECT_EQ(one(U"Save &").text, U"Save ");  // a prefix with nothing after it draws nothing
  EXPECT_EQ(one(U"&a&b").underlines, (std::vector<int>{0, 1}));  // each marked character
  EXPECT_EQ(one(U"&File", DT_SINGLELINE | DT_NOPREFIX).text, U"&File");
  EXPECT_EQ(one(U"&File", DT_SINGLELINE | DT_NOPREFIX).underlines, std::vector<int>{});
  EXPECT_EQ(one(U"A&bc&&d", DT_SINGLELINE | DT_HIDEPREFIX).text, U"Abc&d");
  EXPECT_EQ(one(U"A&bc&&d", DT_SINGLELINE | DT_HIDEPREFIX).underlines, std::vector<int>{});
  // The mark follows its character onto a wrapped line.
  std::vector<TextLine> wrapped = Layout(U"one t&wo", DT_WORDBREAK, W(U"one t"));
  ASSERT_EQ(wrapped.size(), 2u);
  EXPECT_EQ(wrapped[0].underlines, std::vector<int>{});
  EXPECT_EQ(wrapped[1].text, U"two");
  EXPECT_EQ(wrapped[1].underlines, std::vector<int>{1});
  // The prefix takes no room.
  EXPECT_EQ(one(U"&File").width, W(U"File"));
}

TEST(TextLayout, EllipsesMakeLinesFit) {
  const std::u32string text = U"A caption that is far too long for its box";
  for (int max : {W(U"A caption"), W(U"A cap") + 3, W(U"...") + 1, W(U"..."), 5, 0}) {
    for (UINT f : {DT_END_ELLIPSIS, DT_WORD_ELLIPSIS}) {
      SCOPED_TRACE(max);
      TextLine l = Layout(text, DT_SINGLELINE | f, max)[0];
      ASSERT_GE(l.text.size(), 3u);
      EXPECT_EQ(l.text.substr(l.text.size() - 3), U"...");
      const std::u32string kept = l.text.substr(0, l.text.size() - 3);
      EXPECT_EQ(text.substr(0, kept.size()), kept);
      if (max >= W(U"...")) {
        EXPECT_LE(l.width, max);
        // As much as fits is kept: one more character would not.
        EXPECT_GT(W(text.substr(0, kept.size() + 1)) + W(U"..."), max);
      }
    }
  }
  // Text that fits is left alone; the mark of a cut character goes with it.
  EXPECT_EQ(Layout(U"Short", DT_SINGLELINE | DT_END_ELLIPSIS, W(U"Short"))[0].text, U"Short");
  EXPECT_EQ(Layout(U"Abcdefghij&k", DT_SINGLELINE | DT_END_ELLIPSIS, W(U"Abc..."))[0].underlines, std::vector<int>{});
  EXPECT_EQ(Layout(U"&Abcdefghijk", DT_SINGLELINE | DT_END_ELLIPSIS, W(U"Abc..."))[0].underlines, std::vector<int>{0});
  // Every line of several is shortened on its own.
  std::vector<TextLine> two = Layout(U"long long long\nok", DT_END_ELLIPSIS, W(U"long lo"));
  EXPECT_EQ(two[0].text.substr(two[0].text.size() - 3), U"...");
  EXPECT_EQ(two[1].text, U"ok");
}

TEST(TextLayout, PathEllipsisKeepsTheLastComponent) {
  const std::u32string path = U"C:\\Program Files\\Some Vendor\\Application.exe";
  const int max = W(U"C:\\Pro...\\Application.exe");
  TextLine l = Layout(path, DT_SINGLELINE | DT_PATH_ELLIPSIS, max)[0];
  EXPECT_LE(l.width, max);
  EXPECT_EQ(l.text, U"C:\\Pro...\\Application.exe");
  // A marked character of the kept file name moves with it.
  TextLine marked = Layout(U"C:\\Program Files\\&Application.exe", DT_SINGLELINE | DT_PATH_ELLIPSIS, max)[0];
  ASSERT_EQ(marked.underlines.size(), 1u);
  EXPECT_EQ(marked.text[marked.underlines[0]], U'A');
  // Forward slashes count too.
  TextLine u = Layout(U"/usr/share/fonts/truetype/x.ttf", DT_SINGLELINE | DT_PATH_ELLIPSIS, W(U"/usr...\\x.ttf"))[0];
  EXPECT_EQ(u.text.substr(u.text.size() - 6), U"/x.ttf");
  EXPECT_NE(u.text.find(U"..."), std::u32string::npos);
  // Not even the file name fits: its end is cut as well, and the result still fits.
  TextLine tiny = Layout(path, DT_SINGLELINE | DT_PATH_ELLIPSIS, W(U"...\\Appl"))[0];
  EXPECT_LE(tiny.width, W(U"...\\Appl"));
  EXPECT_EQ(tiny.text.substr(tiny.text.size() - 3), U"...");
}

TEST(TextLayout, TabStops) {
  const int tab = 8 * Arial12().metrics().aveCharWidth;
  TextLine l = Layout(U"a\tb", DT_SINGLELINE, 1000, tab)[0];
  ASSERT_EQ(l.steps.size(), 3u);
  EXPECT_EQ(l.steps[0] + l.steps[1], tab);  // b starts at the first stop
  EXPECT_EQ(l.text, U"a b");                 // the tab itself draws nothing
  EXPECT_EQ(l.width, tab + W(U"b"));
  // Past a stop, the next one.
  TextLine far = Layout(U"abcdefghijklmnopq\tb", DT_SINGLELINE, 1000, tab)[0];
  int x = 0;
  for (size_t i = 0; i + 1 < far.steps.size(); ++i) x += far.steps[i];
  EXPECT_EQ(x % tab, 0);
  EXPECT_GT(x, W(U"abcdefghijklmnopq"));
  EXPECT_LE(x - W(U"abcdefghijklmnopq"), tab);
  // Without expansion a tab is just a character.
  EXPECT_EQ(Layout(U"a\tb", DT_SINGLELINE)[0].text, U"a\tb");
}

}  // namespace
}  // namespace mx::platform
