// The font object: bold as a view of the weight, the host's limits, change notices, and the
// platform font made from it.
#include <gtest/gtest.h>

#include <functional>

#include "host/Err.h"
#include "host/StdFont.h"

using namespace mx::host;

namespace {

int32_t ErrorNumberOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

String FaceOf(const mx::platform::LOGFONTW& lf) { return String(lf.lfFaceName); }

}  // namespace

TEST(StdFont, BoldIsAViewOfTheWeight) {
  StdFont font;
  EXPECT_EQ(font.Name(), u"MS Sans Serif");
  EXPECT_EQ(font.Size(), Currency{82500});
  EXPECT_FALSE(font.Bold());
  font.Bold(true);
  EXPECT_EQ(font.Weight(), 700);
  font.Weight(600);  // semibold shows as bold
  EXPECT_TRUE(font.Bold());
  font.Weight(550);
  EXPECT_FALSE(font.Bold());
  font.Weight(551);
  EXPECT_TRUE(font.Bold());
  font.Bold(false);
  EXPECT_EQ(font.Weight(), 400);
}

TEST(StdFont, RefusesValuesOutsideTheHostsLimits) {
  StdFont font;
  EXPECT_EQ(ErrorNumberOf([&] { font.Size(0.0); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Size(-8.0); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Size(2160.5); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Weight(1001); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Weight(-1); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Charset(256); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { font.Name(u""); }), kErrInvalidPropertyValue);
  // Nothing changed by the refused values; the size is kept as given, not rounded to pixels.
  EXPECT_TRUE(font.SameAs(StdFont()));
  font.Size(8.3);
  EXPECT_EQ(font.Size(), Currency{83000});
  font.Size(2160.0);
  EXPECT_EQ(font.SizePoints(), 2160.0);
}

TEST(StdFont, ChangesAreAnnouncedOncePerRealChange) {
  StdFont font;
  std::vector<String> seen;
  font.FontChanged.connect([&](const String& name) { seen.push_back(name); });
  font.Size(8.25);  // unchanged
  font.Name(u"MS Sans Serif");
  font.Italic(false);
  EXPECT_TRUE(seen.empty());
  font.Size(10.0);
  font.Bold(true);  // the weight crosses into bold: both are news
  font.Weight(800);  // still bold: only the weight
  font.Strikethrough(true);
  EXPECT_EQ(seen, (std::vector<String>{u"Size", u"Weight", u"Bold", u"Weight", u"Strikethrough"}));
}

TEST(StdFont, LogFontHeightIsMinusMulDivOfTheSize) {
  struct Case {
    double points;
    int dpi;
    int32_t height;
  };
  // MulDiv rounds half away from zero: 8 points at 96 dpi are 10.67 pixels, 7.875 are 10.5.
  for (Case c : {Case{8.25, 96, -11}, Case{8, 96, -11}, Case{9, 96, -12}, Case{10, 96, -13}, Case{12, 96, -16},
                 Case{7.875, 96, -11}, Case{7.5, 96, -10}, Case{8.25, 120, -14}, Case{72, 96, -96}, Case{0.1, 96, 0}}) {
    StdFont font;
    font.Size(c.points);
    EXPECT_EQ(font.ToLogFont(c.dpi).lfHeight, c.height) << c.points << " pt at " << c.dpi;
  }
  StdFont font(u"Segoe UI", 9, true);
  font.Italic(true);
  font.Strikethrough(true);
  font.Charset(238);
  auto lf = font.ToLogFont();
  EXPECT_EQ(lf.lfWeight, 700);
  EXPECT_EQ(lf.lfItalic, 1);
  EXPECT_EQ(lf.lfUnderline, 0);
  EXPECT_EQ(lf.lfStrikeOut, 1);
  EXPECT_EQ(lf.lfCharSet, 238);
  EXPECT_EQ(FaceOf(lf), u"Segoe UI");
  // A face name longer than the structure holds is cut, and still ends in a zero.
  font.Name(String(40, u'x'));
  EXPECT_EQ(FaceOf(font.ToLogFont()), String(31, u'x'));
}

TEST(StdFont, FromLogFontRecoversTheDescription) {
  StdFont font(u"Courier New", 8.25);
  font.Underline(true);
  auto back = StdFont::FromLogFont(font.ToLogFont());
  EXPECT_TRUE(back->SameAs(font));
  mx::platform::LOGFONTW lf;
  lf.lfHeight = 13;  // a cell height: taken as the character height
  lf.lfWeight = 0;   // "don't care" is normal
  EXPECT_EQ(StdFont::FromLogFont(lf)->SizePoints(), 9.75);
  EXPECT_EQ(StdFont::FromLogFont(lf)->Weight(), 400);
  EXPECT_EQ(StdFont::FromLogFont(lf)->Name(), u"MS Sans Serif");
  lf.lfHeight = -16;
  EXPECT_EQ(StdFont::FromLogFont(lf, 120)->SizePoints(), 9.6);
}

TEST(StdFont, LateBoundMembers) {
  auto font = std::make_shared<StdFont>();
  Variant target(font);
  (void)CallByName(target, u"Name", CallKind::Let, {Variant(u"Arial")});
  (void)CallByName(target, u"size", CallKind::Let, {Variant(11.5)});
  (void)CallByName(target, u"Bold", CallKind::Let, {Variant(true)});
  EXPECT_EQ(CallByName(target, u"", CallKind::Get).ToString(), u"Arial");
  EXPECT_EQ(CallByName(target, u"Size", CallKind::Get).VarType(), vbCurrency);
  EXPECT_EQ(CallByName(target, u"Size", CallKind::Get).ToDouble(), 11.5);
  EXPECT_EQ(CallByName(target, u"Weight", CallKind::Get).ToLong(), 700);
  EXPECT_EQ(ErrorNumberOf([&] { (void)CallByName(target, u"Colour", CallKind::Get); }), kErrMemberNotSupported);
  EXPECT_EQ(ErrorNumberOf([&] { (void)CallByName(target, u"Size", CallKind::Let, {Variant(0)}); }),
            kErrInvalidPropertyValue);
}
