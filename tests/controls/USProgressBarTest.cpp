// USProgressBar: Value held within Min..Max, the percentage and fill, Change, the theme's
// colours, persistence and the faces.
#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/USProgressBar.h"
#include "host/StdFont.h"

namespace mx::controls::testing {
namespace {

class ProgressTest : public SmallControlTest {};

TEST_F(ProgressTest, ValueIsHeldWithinTheRangeAndFillsInProportion) {
  auto p = Make<USProgressBar>(0, 0, 102, 16);
  int changes = 0;
  p->Change.connect([&] { ++changes; });
  p->Value(50);
  EXPECT_EQ(p->FilledWidth(), 50);  // 100 inner pixels
  p->Value(250);
  EXPECT_EQ(p->Value(), 100);
  EXPECT_EQ(p->FilledWidth(), 100);
  p->Value(100);  // no change, no event
  p->Value(-5);
  EXPECT_EQ(p->Value(), 0);
  EXPECT_EQ(changes, 3);

  p->Min(10);
  EXPECT_EQ(p->Value(), 10);
  p->Max(13);
  p->Value(11);
  EXPECT_EQ(p->Percent(), 33);  // truncated
  EXPECT_EQ(p->FilledWidth(), 33);
  p->Max(10);  // an empty range shows nothing
  EXPECT_EQ(p->Percent(), 0);
  EXPECT_EQ(p->FilledWidth(), 0);
}

TEST_F(ProgressTest, ThemeSetsColoursWhichTheBagKeeps) {
  auto a = Make<USProgressBar>(0, 0, 100, 16);
  a->Theme(4);
  EXPECT_EQ(a->BorderColor(), 0x5050C7u);
  EXPECT_EQ(a->GradientColor2(), 0x5050C7u);
  EXPECT_EQ(a->GradientColor1(), host::ShiftRGBColor(0x5050C7, 120));
  a->Max(500);
  a->Value(321);
  a->ShowText(true);
  host::PropertyBag bag;
  a->SaveTo(bag);
  auto b = Make<USProgressBar>(0, 20, 100, 16, &bag);
  EXPECT_EQ(b->Theme(), 4);
  EXPECT_EQ(b->BorderColor(), 0x5050C7u);
  EXPECT_EQ(b->Max(), 500);
  EXPECT_EQ(b->Value(), 321);
  EXPECT_TRUE(b->ShowText());
}

TEST_F(ProgressTest, VerticalBarFillsFromTheBottomAndKeepsItsOrientation) {
  auto p = Make<USProgressBar>(0, 0, 20, 102);
  p->GradientColor1(0x0000FF);  // red on the left of the fill
  p->GradientColor2(0x00FF00);  // green on the right
  p->BorderColor(0x000000);
  p->Orientation(1);
  p->Value(30);
  EXPECT_EQ(p->FilledWidth(), 30);  // of 100 inner rows
  platform::CapturedImage img = Capture(*p);
  // Rows 71..100 are filled, row 70 above them shows the ground, and the border stays.
  EXPECT_EQ(img.color(10, 70), 0xFFFFFFu);
  EXPECT_NE(img.color(10, 71), 0xFFFFFFu);
  EXPECT_NE(img.color(10, 100), 0xFFFFFFu);
  EXPECT_EQ(img.color(10, 101), 0x000000u);
  // The gradient runs across the standing bar: the ends are the two colours, on every row.
  for (int y : {71, 85, 100}) {
    EXPECT_EQ(img.color(1, y), 0x0000FFu) << y;
    EXPECT_EQ(img.color(18, y), 0x00FF00u) << y;
  }
  EXPECT_EQ(img.color(10, 71), img.color(10, 100));

  p->Orientation(7);  // held to vertical
  EXPECT_EQ(p->Orientation(), 1);
  host::PropertyBag bag;
  p->SaveTo(bag);
  auto b = Make<USProgressBar>(30, 0, 20, 102, &bag);
  EXPECT_EQ(b->Orientation(), 1);
  EXPECT_EQ(b->FilledWidth(), 30);

  // Lying down (the default, not written to the bag) the same value fills from the left.
  p->Orientation(0);
  host::PropertyBag flat;
  p->SaveTo(flat);
  EXPECT_FALSE(flat.Contains(u"Orientation"));
  img = Capture(*p);
  EXPECT_EQ(p->FilledWidth(), 5);  // 30% of 18 inner columns
  EXPECT_NE(img.color(5, 50), 0xFFFFFFu);
  EXPECT_EQ(img.color(6, 50), 0xFFFFFFu);
}

TEST_F(ProgressTest, FacesInTwoThemes) {
  std::vector<platform::CapturedImage> shots;
  int y = 0;
  for (int theme : {2, 0}) {
    for (int value : {0, 37, 100}) {
      auto p = Make<USProgressBar>(0, y += 20, 120, 18);
      auto font = std::make_shared<host::StdFont>();
      font->Name(u"Arial");
      font->Size(8.0);
      p->Font(font);
      p->Theme(theme);
      p->ShowText(value == 37);
      p->Value(value);
      shots.push_back(Capture(*p));
    }
  }
  int w = 0, h = 0;
  std::vector<uint32_t> px = Stack(shots, w, h);
  test::ExpectGolden("controls", "progress_themes", w, h, px);
}

}  // namespace
}  // namespace mx::controls::testing
