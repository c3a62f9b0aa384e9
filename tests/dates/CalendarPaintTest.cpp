// The calendars' surfaces: exact colours of the ground, the marks and the outline, and golden
// pictures of both calendars in two themes.
#include "dates/CalendarTestSupport.h"
#include "frame/Themes.h"
#include "platform/Desktop.h"
#include "support/Golden.h"

namespace mx::dates::testing {
namespace {

using Paint = CalendarTest;

platform::CapturedImage Capture(const CalendarControl& c) {
  platform::PumpMessages();
  return platform::CaptureWindow(c.hWnd());
}

std::vector<uint32_t> Pixels(const platform::CapturedImage& img) {
  std::vector<uint32_t> out;
  out.reserve(static_cast<size_t>(img.width()) * img.height());
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) out.push_back(img.pixel(x, y));
  return out;
}

TEST_F(Paint, GroundMarksAndOutlineHaveTheirColours) {
  auto c = Make<USCalendar>();
  auto img = Capture(*c);
  ASSERT_EQ(img.width(), 245);
  ASSERT_EQ(img.height(), 300);
  EXPECT_EQ(img.color(2, 2), 0x9A572Bu);
  // Today's outline (43, 186)-(75, 209) and the chosen day's fill (45, 188)-(74, 208), inside
  // which the cell's text stands; the fill's corner pixel carries no text.
  EXPECT_EQ(img.color(43, 186), 0xCB9022u);
  EXPECT_EQ(img.color(74, 208), 0xCB9022u);
  EXPECT_EQ(img.color(44, 187), 0x9A572Bu) << "between outline and fill";
  EXPECT_EQ(img.color(45, 188), 0xCB9022u);
  EXPECT_EQ(img.color(73, 207), 0xCB9022u);
  EXPECT_EQ(img.color(75, 188), 0x9A572Bu);

  // The small calendar draws an outline round itself, the large one does not.
  auto s = Make<USCalendarSmall>();
  auto small = Capture(*s);
  ASSERT_EQ(small.width(), 215);
  EXPECT_EQ(small.color(0, 0), 0xCB9022u);
  EXPECT_EQ(small.color(214, 225), 0xCB9022u);
  EXPECT_EQ(small.color(1, 1), 0x9A572Bu);
  EXPECT_EQ(img.color(0, 0), 0x9A572Bu);

  // Moving the choice repaints: the old place goes back to the ground.
  c->CurrentDate(host::DateSerial(2024, 1, 3));
  img = Capture(*c);
  EXPECT_EQ(img.color(45, 188), 0x9A572Bu);
  EXPECT_EQ(img.color(43, 186), 0xCB9022u) << "today's outline stays";
}

TEST_F(Paint, GoldenCalendarsInTwoThemes) {
  for (int theme : {frame::Windows_Theme, frame::Windows_Theme_Green}) {
    // As a form runs them: dropped and themed at design time, saved, loaded at run time (so that
    // the clock runs, in the font saved with it).
    host::PropertyBag bigBag, smallBag;
    {
      USCalendar big;
      big.LoadNew(false);
      big.Theme(theme);
      big.SaveTo(bigBag);
      big.TerminateControl();
      USCalendarSmall small;
      small.LoadNew(false);
      small.Theme(theme);
      small.SaveTo(smallBag);
      small.TerminateControl();
    }
    auto big = Make<USCalendar>(&bigBag);
    auto small = Make<USCalendarSmall>(&smallBag);
    // One tick puts the time on the clock.
    platform::AdvanceVirtualClock(1000);
    platform::PumpMessages();
    auto a = Capture(*big);
    auto b = Capture(*small);
    test::ExpectGolden("dates", "calendar_theme" + std::to_string(theme), a.width(), a.height(), Pixels(a));
    test::ExpectGolden("dates", "calendar_small_theme" + std::to_string(theme), b.width(), b.height(), Pixels(b));
    big->TerminateControl();
    small->TerminateControl();
  }
}

}  // namespace
}  // namespace mx::dates::testing
