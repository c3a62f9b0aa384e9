#include "host/String.h"

#include <gtest/gtest.h>

namespace mx::host {
namespace {

TEST(Utf, RoundTripsAcrossPlanes) {
  std::string text = "Ação ñ € 𝄞 end";
  String wide = FromUtf8(text);
  EXPECT_EQ(wide.size(), 15u);  // the clef is a surrogate pair
  EXPECT_EQ(ToUtf8(wide), text);
}

TEST(Utf, BadBytesBecomeReplacementCharacters) {
  EXPECT_EQ(FromUtf8("a\xC3"), u"a\uFFFD");          // truncated sequence
  EXPECT_EQ(FromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");  // overlong slash
  EXPECT_EQ(FromUtf8("\xED\xA0\x80x"), u"\uFFFD\uFFFD\uFFFDx");  // encoded surrogate
  EXPECT_EQ(ToUtf8(u"\xD800z"), "\xEF\xBF\xBDz");
}

}  // namespace
}  // namespace mx::host

// ---- the host's string functions ------------------------------------------------------------

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {
namespace {

// Runs f and returns the host error number it raised, or 0.
template <typename F>
int32_t ErrorOf(F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

String U8(const char* s) { return FromUtf8(s); }

TEST(Strings, MidLeftRightAtTheirEdges) {
  EXPECT_EQ(Mid(u"Morvantix", 3), u"rvantix");
  EXPECT_EQ(Mid(u"Morvantix", 3, 2), u"rv");
  EXPECT_EQ(Mid(u"abc", 3, 10), u"c");
  EXPECT_EQ(Mid(u"abc", 4), u"");
  EXPECT_EQ(Mid(u"abc", 100, 1), u"");
  EXPECT_EQ(Mid(u"abc", 2, 0), u"");
  EXPECT_EQ(ErrorOf([] { (void)Mid(u"abc", 0); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)Mid(u"abc", 1, -1); }), 5);
  EXPECT_EQ(Left(u"abc", 5), u"abc");
  EXPECT_EQ(Right(u"abc", 2), u"bc");
  EXPECT_EQ(Right(u"abc", 9), u"abc");
  EXPECT_EQ(ErrorOf([] { (void)Left(u"abc", -1); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)Right(u"abc", -1); }), 5);
}

TEST(Strings, SurrogatePairsCountAsTwoUnits) {
  String clef = U8("a𝄞b");
  EXPECT_EQ(Len(clef), 4);
  EXPECT_EQ(LenB(clef), 8);
  EXPECT_EQ(Mid(clef, 4), u"b");
  EXPECT_EQ(InStr(clef, u"b"), 4);
  // Reversal works on units, as the host's does: the pair comes out swapped.
  EXPECT_EQ(StrReverse(clef), String(u"b\xDD1E\xD834" u"a"));
}

TEST(Strings, InStrFindsFromStartWithBothCompareModes) {
  EXPECT_EQ(InStr(u"abcabc", u"c"), 3);
  EXPECT_EQ(InStr(4, u"abcabc", u"c"), 6);
  EXPECT_EQ(InStr(7, u"abcabc", u"c"), 0);
  EXPECT_EQ(InStr(u"abc", u"C"), 0);
  EXPECT_EQ(InStr(u"abc", u"C", vbTextCompare), 3);
  EXPECT_EQ(InStr(1, U8("AÇÃO"), U8("ção"), vbTextCompare), 2);
  EXPECT_EQ(InStr(1, U8("AÇÃO"), U8("cao"), vbTextCompare), 0);  // accents still count
  EXPECT_EQ(InStr(u"abc", u"abcd"), 0);
  // The empty text is found where the search starts; nothing is found in an empty text.
  EXPECT_EQ(InStr(u"abc", u""), 1);
  EXPECT_EQ(InStr(3, u"abc", u""), 3);
  EXPECT_EQ(InStr(4, u"abc", u""), 4);
  EXPECT_EQ(InStr(5, u"abc", u""), 0);
  EXPECT_EQ(InStr(u"", u""), 0);
  EXPECT_EQ(InStr(u"", u"a"), 0);
  EXPECT_EQ(ErrorOf([] { (void)InStr(0, u"abc", u"a"); }), 5);
}

TEST(Strings, InStrRevMatchesMustEndByStart) {
  EXPECT_EQ(InStrRev(u"a-b-c", u"-"), 4);
  EXPECT_EQ(InStrRev(u"a-b-c", u"-", 3), 2);
  EXPECT_EQ(InStrRev(u"abcabc", u"bc", 5), 2);  // "bc" at 5 would end at 6
  EXPECT_EQ(InStrRev(u"abcabc", u"bc", 6), 5);
  EXPECT_EQ(InStrRev(u"abc", u"x"), 0);
  EXPECT_EQ(InStrRev(u"abc", u"b", 7), 0);
  EXPECT_EQ(InStrRev(u"abc", u""), 3);
  EXPECT_EQ(InStrRev(u"abc", u"", 2), 2);
  EXPECT_EQ(InStrRev(u"", u"a"), 0);
  EXPECT_EQ(InStrRev(u"xAx", u"a", -1, vbTextCompare), 2);
  EXPECT_EQ(ErrorOf([] { (void)InStrRev(u"abc", u"a", 0); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)InStrRev(u"abc", u"a", -2); }), 5);
}

TEST(Strings, ReplaceReturnsTheTextFromStart) {
  EXPECT_EQ(Replace(u"a.b.c", u".", u","), u"a,b,c");
  EXPECT_EQ(Replace(u"a.b.c", u".", u"", 1, 1), u"ab.c");
  EXPECT_EQ(Replace(u"a.b.c.d", u".", u"-", 3), u"b-c-d");
  EXPECT_EQ(Replace(u"a.b.c.d", u".", u"-", 3, 1), u"b-c.d");
  EXPECT_EQ(Replace(u"abc", u"", u"x"), u"abc");
  EXPECT_EQ(Replace(u"abc", u"b", u"x", 2, 0), u"bc");
  EXPECT_EQ(Replace(u"abc", u"b", u"x", 4), u"");
  EXPECT_EQ(Replace(u"aaaa", u"aa", u"b"), u"bb");  // no overlapping matches
  EXPECT_EQ(Replace(u"xAxa", u"a", u"-", 1, -1, vbTextCompare), u"x-x-");
  EXPECT_EQ(Replace(u"ab", u"b", u"bb"), u"abb");  // replacements are not searched again
  EXPECT_EQ(ErrorOf([] { (void)Replace(u"abc", u"a", u"", 0); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)Replace(u"abc", u"a", u"", 1, -2); }), 5);
}

TEST(Strings, TrimTakesBlanksOnly) {
  EXPECT_EQ(Trim(u"  a b  "), u"a b");
  EXPECT_EQ(LTrim(u"  a "), u"a ");
  EXPECT_EQ(RTrim(u" a  "), u" a");
  EXPECT_EQ(Trim(u"\ta\t"), u"\ta\t");
  EXPECT_EQ(Trim(u"    "), u"");
}

TEST(Strings, CaseMappingCoversPortugueseAndLatinExtended) {
  EXPECT_EQ(UCase(U8("ação é já")), U8("AÇÃO É JÁ"));
  EXPECT_EQ(LCase(U8("AÇÃO É JÁ")), U8("ação é já"));
  EXPECT_EQ(UCase(U8("ÿœłžő")), U8("ŸŒŁŽŐ"));
  EXPECT_EQ(LCase(U8("ŸŒŁŽŐ")), U8("ÿœłžő"));
  EXPECT_EQ(UCase(U8("ß×÷µ")), U8("ß×÷µ"));  // no single-unit upper case: unchanged
  EXPECT_EQ(UCase(U8("привет σς")), U8("ПРИВЕТ ΣΣ"));
  EXPECT_EQ(LCase(u"MiXeD 123"), u"mixed 123");
}

TEST(Strings, SpaceStringOfAndPadding) {
  EXPECT_EQ(Space(3), u"   ");
  EXPECT_EQ(StringOf(3, u"xy"), u"xxx");
  EXPECT_EQ(StringOf(2, 65), u"AA");
  EXPECT_EQ(StringOf(2, 65 + 256), u"AA");
  EXPECT_EQ(StringOf(0, u"x"), u"");
  EXPECT_EQ(ErrorOf([] { (void)StringOf(2, u""); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)Space(-1); }), 5);
  EXPECT_EQ(LSet(u"ab", 4), u"ab  ");
  EXPECT_EQ(RSet(u"ab", 4), u"  ab");
  EXPECT_EQ(LSet(u"abcdef", 3), u"abc");
  EXPECT_EQ(RSet(u"abcdef", 3), u"abc");
}

TEST(Strings, SplitWithLimitsDelimitersAndEmptyInput) {
  using V = std::vector<String>;
  EXPECT_EQ(Split(u"a b  c"), (V{u"a", u"b", u"", u"c"}));
  EXPECT_EQ(Split(u"a,b,c,d", u",", 2), (V{u"a", u"b,c,d"}));
  EXPECT_EQ(Split(u"a,b", u",", 1), (V{u"a,b"}));
  EXPECT_EQ(Split(u"a,b", u",", 5), (V{u"a", u"b"}));
  EXPECT_EQ(Split(u"a,b", u",", 0), V{});
  EXPECT_EQ(Split(u""), V{});
  EXPECT_EQ(Split(u"", u","), V{});
  EXPECT_EQ(Split(u"abc", u""), (V{u"abc"}));
  EXPECT_EQ(Split(u",", u","), (V{u"", u""}));
  EXPECT_EQ(Split(u"1x2X3", u"x", -1, vbTextCompare), (V{u"1", u"2", u"3"}));
  EXPECT_EQ(Split(u"1x2X3", u"x"), (V{u"1", u"2X3"}));
  EXPECT_EQ(Split(u"a::b", u"::"), (V{u"a", u"b"}));
  EXPECT_EQ(ErrorOf([] { (void)Split(u"a", u" ", -2); }), 5);
  EXPECT_EQ(Join(Split(u"a,b,,c", u","), u";"), u"a;b;;c");
  EXPECT_EQ(Join(V{}), u"");
}

TEST(Strings, StrCompBinaryIsCodeUnitOrder) {
  EXPECT_EQ(StrComp(u"a", u"b"), -1);
  EXPECT_EQ(StrComp(u"B", u"a"), -1);  // upper case first in binary order
  EXPECT_EQ(StrComp(u"abc", u"ab"), 1);
  EXPECT_EQ(StrComp(u"", u""), 0);
  EXPECT_EQ(StrComp(U8("é"), u"f"), 1);
}

TEST(Strings, StrCompTextFoldsCaseAndKeepsAccentsBesideTheirLetters) {
  EXPECT_EQ(StrComp(u"ABC", u"abc", vbTextCompare), 0);
  EXPECT_EQ(StrComp(U8("AÇÃO"), U8("ação"), vbTextCompare), 0);
  EXPECT_EQ(StrComp(U8("Élan"), U8("élan"), vbTextCompare), 0);
  EXPECT_EQ(StrComp(u"B", u"a", vbTextCompare), 1);
  // An accented letter sorts with its letter, before the next letter...
  EXPECT_EQ(StrComp(U8("Ângela"), u"Bruno", vbTextCompare), -1);
  EXPECT_EQ(StrComp(U8("ção"), u"cb", vbTextCompare), -1);
  // ...and decides only between texts otherwise equal.
  EXPECT_EQ(StrComp(u"cao", U8("ção"), vbTextCompare), -1);
  EXPECT_EQ(StrComp(U8("ção"), u"CAO", vbTextCompare), 1);
  EXPECT_EQ(StrComp(U8("cão"), u"caz", vbTextCompare), -1);
  // Punctuation before digits before letters.
  EXPECT_EQ(StrComp(u"_", u"1", vbTextCompare), -1);
  EXPECT_EQ(StrComp(u"9", u"a", vbTextCompare), -1);
  EXPECT_TRUE(TextEquals(U8("Ação"), U8("AÇÃO")));
  EXPECT_FALSE(TextEquals(U8("Ação"), u"ACAO"));
}

TEST(Strings, CharacterCodesFollowWindows1252) {
  EXPECT_EQ(Asc(u"A"), 65);
  EXPECT_EQ(Asc(U8("ã")), 0xE3);
  EXPECT_EQ(Asc(U8("€")), 0x80);
  EXPECT_EQ(Asc(U8("ł")), 'l');  // best fit
  EXPECT_EQ(Asc(U8("ж")), '?');
  EXPECT_EQ(AscW(U8("ж")), 0x436);
  EXPECT_EQ(AscW(u"\xFFFF"), -1);  // the host's Integer is signed
  EXPECT_EQ(Chr(0x80), U8("€"));
  EXPECT_EQ(Chr(0x81), String(1, u'\x81'));
  EXPECT_EQ(ChrW(-1), String(1, u'\xFFFF'));
  EXPECT_EQ(ErrorOf([] { (void)Asc(u""); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)Chr(256); }), 5);
  EXPECT_EQ(ErrorOf([] { (void)ChrW(65536); }), 5);
  for (int32_t code = 0; code < 256; ++code) EXPECT_EQ(Asc(Chr(code)), code) << code;
}

TEST(Strings, HexOctAndStr) {
  EXPECT_EQ(Hex(Variant(255)), u"FF");
  EXPECT_EQ(Hex(Variant(int16_t{-1})), u"FFFF");
  EXPECT_EQ(Hex(Variant(-1)), u"FFFFFFFF");
  EXPECT_EQ(Hex(Variant(0)), u"0");
  EXPECT_EQ(Hex(Variant(10.5)), u"A");  // rounds half to even
  EXPECT_EQ(Oct(Variant(8)), u"10");
  EXPECT_EQ(Oct(Variant(int16_t{-1})), u"177777");
  EXPECT_EQ(ErrorOf([] { (void)Hex(Variant(3e10)); }), 6);
  EXPECT_EQ(Str(Variant(42)), u" 42");
  EXPECT_EQ(Str(Variant(-42)), u"-42");
  EXPECT_EQ(Str(Variant(0.5)), u" 0.5");
  EXPECT_EQ(Str(Variant(-1.25)), u"-1.25");
  EXPECT_EQ(Str(Variant(u"7")), u" 7");
  EXPECT_EQ(ErrorOf([] { (void)Str(Variant::Null()); }), 94);
}

}  // namespace
}  // namespace mx::host
