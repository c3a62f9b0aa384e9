#include "host/Like.h"

#include <gtest/gtest.h>

#include "RegionalTestSupport.h"

namespace mx::host {
namespace {

struct LikeCase {
  const char16_t* text;
  const char16_t* pattern;
  bool binary;
  bool textCompare;
};

TEST(Like, PatternTable) {
  const LikeCase cases[] = {
      {u"abc", u"a?c", true, true},
      {u"ac", u"a?c", false, false},
      {u"aXXXc", u"a*c", true, true},
      {u"ac", u"a*c", true, true},
      {u"", u"*", true, true},
      {u"", u"", true, true},
      {u"a", u"", false, false},
      {u"", u"?", false, false},
      {u"a1b", u"a#b", true, true},
      {u"aXb", u"a#b", false, false},
      {u"a12b", u"a##b", true, true},
      {u"d", u"[!a-c]", true, true},
      {u"b", u"[!a-c]", false, false},
      {u"B", u"[!a-c]", true, false},  // binary: "B" is outside a-c; text: it is "b"
      {u"bx", u"[a-c]x", true, true},
      {u"Bx", u"[a-c]x", false, true},
      {u"q", u"[a-cx-z]", false, false},
      {u"y", u"[a-cx-z]", true, true},
      {u"-", u"[-a]", true, true},
      {u"-", u"[a-]", true, true},
      {u"*", u"[*]", true, true},
      {u"a", u"[*]", false, false},
      {u"?", u"[?]", true, true},
      {u"#", u"[#]", true, true},
      {u"[", u"[[]", true, true},
      {u"a]", u"a]", true, true},
      {u"ab", u"a[]b", true, true},  // an empty list matches no character at all
      {u"ABC", u"a*c", false, true},
      {u"\u00c1gua", u"\u00e1*", false, true},
      {u"aaaaaaaaab", u"*a*a*b", true, true},
      {u"abcabd", u"*abd", true, true},
      {u"mississippi", u"m*iss*ppi", true, true},
      {u"abc", u"*b", false, false},
      {u"abc", u"**c", true, true},
      {u"ab", u"a*b*", true, true},
      {u"Silva", u"S*a", true, true},
      {u"Silva", u"s*", false, true},
  };
  for (const LikeCase& c : cases) {
    EXPECT_EQ(Like(c.text, c.pattern), c.binary) << ToUtf8(c.text) << " Like " << ToUtf8(c.pattern);
    EXPECT_EQ(Like(c.text, c.pattern, vbTextCompare), c.textCompare)
        << ToUtf8(c.text) << " Like " << ToUtf8(c.pattern) << " (text)";
  }
}

TEST(Like, BadPatternsRaise) {
  EXPECT_RAISES(Like(u"a", u"[a"), 93);
  EXPECT_RAISES(Like(u"a", u"[c-a]"), 93);
  EXPECT_RAISES(Like(u"a", u"x*[b-"), 93);
}

TEST(Like, LongStarPatternsStayFast) {
  // Exponential backtracking would hang here; the matcher returns to the last star only.
  String text(5000, u'a');
  EXPECT_FALSE(Like(text, u"*a*a*a*a*a*a*a*b"));
  text += u'b';
  EXPECT_TRUE(Like(text, u"*a*a*a*a*a*a*a*b"));
}

}  // namespace
}  // namespace mx::host
