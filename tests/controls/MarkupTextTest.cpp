// Parsing of the label markup: nesting, unclosed and stray tags, text that only looks like a tag,
// colours in their forms, line breaks and the access-key prefix.
#include <gtest/gtest.h>

#include "controls/MarkupText.h"

namespace mx::controls {
namespace {

using Runs = std::vector<MarkupRun>;

MarkupStyle Style(bool b, bool i = false, bool u = false, bool s = false) {
  MarkupStyle st;
  st.bold = b;
  st.italic = i;
  st.underline = u;
  st.strike = s;
  return st;
}

MarkupStyle Colour(OLE_COLOR c, MarkupStyle st = {}) {
  st.hasColor = true;
  st.color = c;
  return st;
}

MarkupRun Text(const char16_t* text, MarkupStyle st = {}) { return MarkupRun{text, st, false}; }
MarkupRun Break(MarkupStyle st = {}) { return MarkupRun{u"", st, true}; }

TEST(MarkupParseTest, TagsNestAndCloseInAnyCase) {
  EXPECT_EQ(ParseMarkup(u"a<b>b<I>c</i></B>d"),
            (Runs{Text(u"a"), Text(u"b", Style(true)), Text(u"c", Style(true, true)), Text(u"d")}));
  // <b> and <strong> are one style: closing the inner one keeps the outer.
  EXPECT_EQ(ParseMarkup(u"<b><strong>x</strong>y</b>z"), (Runs{Text(u"xy", Style(true)), Text(u"z")}));
  EXPECT_EQ(ParseMarkup(u"<u>u</u><s>s</s>"), (Runs{Text(u"u", Style(false, false, true)),
                                                     Text(u"s", Style(false, false, false, true))}));
}

TEST(MarkupParseTest, UnclosedRunsToTheEndAndStrayClosingTagsAreDropped) {
  EXPECT_EQ(ParseMarkup(u"a<i>b c"), (Runs{Text(u"a"), Text(u"b c", Style(false, true))}));
  EXPECT_EQ(ParseMarkup(u"</b>x</c></u>y"), (Runs{Text(u"xy")}));
}

TEST(MarkupParseTest, WhatIsNotATagStaysText) {
  EXPECT_EQ(ParseMarkup(u"<x>y</x>"), (Runs{Text(u"<x>y</x>")}));
  EXPECT_EQ(ParseMarkup(u"5 < 6 e 7 > 2"), (Runs{Text(u"5 < 6 e 7 > 2")}));
  EXPECT_EQ(ParseMarkup(u"a < b"), (Runs{Text(u"a < b")}));
  EXPECT_EQ(ParseMarkup(u"<c=bogus>t</c>"), (Runs{Text(u"<c=bogus>t")}));
  EXPECT_EQ(ParseMarkup(u"<b"), (Runs{Text(u"<b")}));
  // With tags off every "<" is text.
  EXPECT_EQ(ParseMarkup(u"<b>x</b>", true, false), (Runs{Text(u"<b>x</b>")}));
}

TEST(MarkupParseTest, ColoursInEveryForm) {
  struct Case {
    const char16_t* colourText;
    OLE_COLOR colour;
  };
  const Case good[] = {{u"#FF0000", 0x0000FF}, {u"#00ff80", 0x80FF00}, {u"#F00", 0x0000FF},
                       {u"&H00FF0000&", 0xFF0000}, {u"&hC0", 0xC0},    {u"255", 0xFF},
                       {u"Navy", 0x800000},    {u"\"orange\"", 0x00A5FF}, {u" grey ", 0x808080}};
  for (const Case& c : good) {
    OLE_COLOR got = 1;
    EXPECT_TRUE(ParseMarkupColor(c.colourText, got)) << host::ToUtf8(c.colourText);
    EXPECT_EQ(got, c.colour) << host::ToUtf8(c.colourText);
  }
  for (const char16_t* bad : {u"", u"#12345", u"#GG0000", u"&H", u"99999999999", u"reddish", u"-1"}) {
    OLE_COLOR got = 0;
    EXPECT_FALSE(ParseMarkupColor(bad, got)) << host::ToUtf8(bad);
  }
  // Colours stack: closing the inner one goes back to the outer.
  EXPECT_EQ(ParseMarkup(u"<c=red>a<c=#0000FF>b</c>c</c>d"),
            (Runs{Text(u"a", Colour(0x0000FF)), Text(u"b", Colour(0xFF0000)), Text(u"c", Colour(0x0000FF)), Text(u"d")}));
  EXPECT_EQ(ParseMarkup(u"<b><c=blue>x"), (Runs{Text(u"x", Colour(0xFF0000, Style(true)))}));
}

TEST(MarkupParseTest, BreaksAndThePrefix) {
  EXPECT_EQ(ParseMarkup(u"a<br>b<BR/>"), (Runs{Text(u"a"), Break(), Text(u"b"), Break()}));
  EXPECT_EQ(ParseMarkup(u"<b>a<br>b</b>"), (Runs{Text(u"a", Style(true)), Break(Style(true)), Text(u"b", Style(true))}));
  // "&&" is one "&"; "&x" underlines x; a closing "&" shows nothing.
  EXPECT_EQ(ParseMarkup(u"R&&D &Sim&"),
            (Runs{Text(u"R&D "), Text(u"S", Style(false, false, true)), Text(u"im")}));
  EXPECT_EQ(ParseMarkup(u"R&&D", false), (Runs{Text(u"R&&D")}));
  EXPECT_EQ(MarkupPlainText(u"<b>Ol\u00e1</b><br>mundo <x>"), u"Ol\u00e1\nmundo <x>");
}

}  // namespace
}  // namespace mx::controls
