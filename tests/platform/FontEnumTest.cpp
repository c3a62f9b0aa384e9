#include "platform/FontEnum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/FontEngine.h"
#include "platform/Gdi.h"

namespace mx::platform {
namespace {

struct Listed {
  std::u16string name;
  LOGFONTW lf;
  TEXTMETRICW tm;
  DWORD type = 0;
};

std::u16string Fold(std::u16string s) {
  for (char16_t& c : s)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
  return s;
}

class FontEnumTest : public ::testing::Test {
 protected:
  void SetUp() override { m_dc = CreateCompatibleDC(0); }
  void TearDown() override { DeleteDC(m_dc); }

  // Everything the callback saw, and what the call returned.
  std::vector<Listed> List(const LOGFONTW* filter, int* result = nullptr, int answer = 1) {
    std::vector<Listed> out;
    int r = EnumFontFamiliesExW(
        m_dc, filter,
        [&](const LOGFONTW* lf, const TEXTMETRICW* tm, DWORD type, LPARAM lParam) {
          EXPECT_EQ(lParam, 77);
          EXPECT_NE(tm, nullptr);
          out.push_back({std::u16string(lf->lfFaceName), *lf, tm ? *tm : TEXTMETRICW{}, type});
          return answer;
        },
        77, 0);
    if (result) *result = r;
    return out;
  }

  static const Listed* Find(const std::vector<Listed>& list, std::u16string_view name) {
    for (const Listed& l : list)
      if (l.name == name) return &l;
    return nullptr;
  }

  static LOGFONTW Filter(std::u16string_view face, BYTE charSet = DEFAULT_CHARSET) {
    LOGFONTW lf;
    lf.lfCharSet = charSet;
    std::copy(face.begin(), face.end(), lf.lfFaceName);
    return lf;
  }

  HDC m_dc = 0;
};

TEST_F(FontEnumTest, ListsInstalledAndClassicFamiliesOnceInSortedOrder) {
  int result = 0;
  std::vector<Listed> all = List(nullptr, &result, 7);
  EXPECT_EQ(result, 7);  // the callback's last answer
  ASSERT_GT(all.size(), 10u);
  for (size_t i = 1; i < all.size(); ++i)
    EXPECT_LT(Fold(all[i - 1].name), Fold(all[i].name)) << "order or duplicate at " << i;

  // Every name a face carries, the condensed and light families as well as the main one.
  for (std::u16string_view name : {u"Liberation Sans", u"Liberation Serif", u"Liberation Mono", u"DejaVu Sans",
                                   u"DejaVu Sans Condensed", u"DejaVu Sans Light"})
    EXPECT_NE(Find(all, name), nullptr) << std::string(name.begin(), name.end());
  // The classic names, in their classic spelling.
  for (std::u16string_view name : {u"MS Sans Serif", u"Tahoma", u"Arial", u"Courier New", u"Times New Roman"})
    EXPECT_NE(Find(all, name), nullptr) << std::string(name.begin(), name.end());

  // Each installed name selects the face of that name: none falls to the default face.
  FontEngine& engine = FontEngine::instance();
  std::vector<std::string> classic = ClassicFaceNames();
  for (const Listed& l : all) {
    EXPECT_EQ(l.type, TRUETYPE_FONTTYPE);
    std::string ascii(l.name.begin(), l.name.end());
    if (std::find(classic.begin(), classic.end(), ascii) != classic.end()) continue;
    std::string resolved = engine.resolveFamily(l.name);
    EXPECT_EQ(Fold(std::u16string(resolved.begin(), resolved.end())), Fold(l.name)) << ascii;
  }

  // Same list twice.
  std::vector<Listed> again = List(nullptr);
  ASSERT_EQ(again.size(), all.size());
  for (size_t i = 0; i < all.size(); ++i) EXPECT_EQ(again[i].name, all[i].name);
}

TEST_F(FontEnumTest, EachFamilyCarriesItsRegularStyle) {
  std::vector<Listed> all = List(nullptr);
  const Listed* sans = Find(all, u"Liberation Sans");
  ASSERT_NE(sans, nullptr);
  // The family has bold and italic faces too; the plain one is reported.
  EXPECT_EQ(sans->lf.lfWeight, 400);
  EXPECT_EQ(sans->lf.lfItalic, 0);
  EXPECT_EQ(sans->lf.lfCharSet, ANSI_CHARSET);
  EXPECT_EQ(sans->lf.lfPitchAndFamily & 0x03, VARIABLE_PITCH);
  EXPECT_EQ(sans->tm.tmPitchAndFamily & 0x01, 1);  // the metrics' inverted bit: variable

  // A family whose only face is extra light reports that weight, not a made-up regular one.
  const Listed* light = Find(all, u"DejaVu Sans Light");
  ASSERT_NE(light, nullptr);
  EXPECT_LT(light->lf.lfWeight, 400);

  // A classic name takes the style of the face it stands for.
  const Listed* courier = Find(all, u"Courier New");
  ASSERT_NE(courier, nullptr);
  EXPECT_EQ(courier->lf.lfPitchAndFamily & 0x03, FIXED_PITCH);
  EXPECT_EQ(courier->tm.tmPitchAndFamily & 0x01, 0);
  const Listed* tahoma = Find(all, u"Tahoma");
  ASSERT_NE(tahoma, nullptr);
  EXPECT_EQ(tahoma->lf.lfWeight, 400);
  EXPECT_EQ(tahoma->lf.lfItalic, 0);
  EXPECT_GT(tahoma->tm.tmHeight, 0);
  EXPECT_GT(tahoma->tm.tmAveCharWidth, 0);
  // Condensed: narrower on average than its wide sibling.
  const Listed* verdana = Find(all, u"Verdana");
  ASSERT_NE(verdana, nullptr);
  EXPECT_LT(tahoma->tm.tmAveCharWidth, verdana->tm.tmAveCharWidth);
}

TEST_F(FontEnumTest, FilterSelectsOneFamilyAndCharacterSet) {
  LOGFONTW f = Filter(u"tahoma");
  std::vector<Listed> one = List(&f);
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].name, u"Tahoma");  // the listed spelling, not the filter's

  f = Filter(u"dejavu sans condensed");
  one = List(&f);
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].name, u"DejaVu Sans Condensed");

  int result = 0;
  f = Filter(u"No Such Face");
  EXPECT_TRUE(List(&f, &result).empty());
  EXPECT_EQ(result, 1);

  // Every installed face has the Latin letters: none is a symbol face, all are ANSI ones.
  f = Filter(u"", SYMBOL_CHARSET);
  EXPECT_TRUE(List(&f).empty());
  f = Filter(u"", ANSI_CHARSET);
  EXPECT_EQ(List(&f).size(), List(nullptr).size());
}

TEST_F(FontEnumTest, ZeroFromTheCallbackStops) {
  int calls = 0;
  int result = EnumFontFamiliesExW(
      m_dc, nullptr,
      [&](const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM) { return ++calls == 2 ? 0 : 1; }, 0, 0);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(result, 0);
}

TEST_F(FontEnumTest, RefusesBadArgumentsWithoutCalling) {
  int calls = 0;
  FONTENUMPROCW proc = [&](const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM) { return ++calls; };
  EXPECT_EQ(EnumFontFamiliesExW(0, nullptr, proc, 0, 0), 0);
  HDC gone = CreateCompatibleDC(0);
  DeleteDC(gone);
  EXPECT_EQ(EnumFontFamiliesExW(gone, nullptr, proc, 0, 0), 0);
  EXPECT_EQ(EnumFontFamiliesExW(m_dc, nullptr, proc, 0, 1), 0);
  EXPECT_EQ(EnumFontFamiliesExW(m_dc, nullptr, FONTENUMPROCW{}, 0, 0), 0);
  // A name too long for a LOGFONTW names nothing.
  EXPECT_EQ(EnumFontFamiliesW(m_dc, u"A face name far longer than thirty-one units", proc, 0), 1);
  EXPECT_EQ(calls, 0);
}

TEST_F(FontEnumTest, OlderFormsListEveryCharacterSetOrOneFamily) {
  std::vector<std::u16string> names;
  FONTENUMPROCW proc = [&](const LOGFONTW* lf, const TEXTMETRICW*, DWORD, LPARAM) {
    names.emplace_back(lf->lfFaceName);
    return 1;
  };
  EnumFontFamiliesW(m_dc, nullptr, proc, 0);
  EXPECT_EQ(names.size(), List(nullptr).size());
  names.clear();
  EnumFontsW(m_dc, u"MS SANS SERIF", proc, 0);
  EXPECT_EQ(names, std::vector<std::u16string>{u"MS Sans Serif"});
}

}  // namespace
}  // namespace mx::platform
