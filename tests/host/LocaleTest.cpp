#include "host/Locale.h"

#include <gtest/gtest.h>

#include "host/Format.h"

namespace mx::host {
namespace {

TEST(Locale, PortugueseIsTheDefault) {
  // The test runner sets MX_LOCALE=pt-BR; without it the default is the same.
  EXPECT_EQ(CurrentLocale().name, "pt-BR");
  EXPECT_EQ(CurrentLocale().decimalMark, u',');
  EXPECT_TRUE(CurrentLocale().IsDayFirst());
}

TEST(Locale, SwitchesByNameAndRestores) {
  const Locale& before = CurrentLocale();
  {
    ScopedLocale english("en_us");  // case and "_" do not matter
    EXPECT_EQ(CurrentLocale().name, "en-US");
    EXPECT_FALSE(SetLocale("fr-FR"));
    EXPECT_EQ(CurrentLocale().name, "en-US");  // an unknown name keeps the setting
    EXPECT_EQ(Format(1234.5, u"#,##0.0"), u"1,234.5");
    EXPECT_TRUE(SetLocale("PT-br"));
    EXPECT_EQ(Format(1234.5, u"#,##0.0"), u"1.234,5");
  }
  EXPECT_EQ(&CurrentLocale(), &before);
  EXPECT_EQ(FindLocale("xx"), nullptr);
}

TEST(Locale, BothSettingsAreComplete) {
  for (const char* name : {"pt-BR", "en-US"}) {
    const Locale* locale = FindLocale(name);
    ASSERT_NE(locale, nullptr);
    EXPECT_NE(locale->decimalMark, locale->groupingMark) << name;
    for (StringView month : locale->monthNames) EXPECT_FALSE(month.empty()) << name;
    for (StringView day : locale->dayAbbreviations) EXPECT_EQ(day.size(), 3u) << name;
  }
}

TEST(Locale, FoldsCaseForLatinLetters) {
  EXPECT_TRUE(EqualsNoCase(u"MAR\u00c7O", u"mar\u00e7o"));
  EXPECT_TRUE(EqualsNoCase(u"S\u00c1BADO", u"s\u00e1bado"));
  EXPECT_FALSE(EqualsNoCase(u"sabado", u"s\u00e1bado"));  // accents still count
  EXPECT_EQ(FoldLetter(u'\u00d7'), u'\u00d7');            // the multiplication sign has no case
}

}  // namespace
}  // namespace mx::host
