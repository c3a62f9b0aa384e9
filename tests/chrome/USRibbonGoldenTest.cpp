// The ribbon's looks: a Windows look with a button and its category lit, and an Office look with
// a tab lit and a launcher pressed, compared with stored pictures; plus exact pixels that pin the
// art's rules (slices joining, the brighter Office band).
#include <gtest/gtest.h>

#include "USRibbonTestSupport.h"
#include "support/Golden.h"

namespace mx::chrome::testing {
namespace {

using A = RibbonArray;

class RibbonGoldenTest : public RibbonTest {
 protected:
  std::shared_ptr<USRibbon> MakeLook(int32_t theme) {
    auto r = MakeRibbon({}, 440, 200);
    r->Theme(theme);
    FillStandard(*r);
    r->ButtonEnabled(102, false);
    r->Refresh();
    return r;
  }
  void Compare(const USRibbon& r, const std::string& name) {
    const platform::CapturedImage img = platform::CaptureWindow(r.hWnd());
    ASSERT_FALSE(img.empty());
    test::ExpectGolden("chrome", name, img.width(), img.height(), Pixels(img));
  }
};

TEST_F(RibbonGoldenTest, WindowsLookWithAButtonHovered) {
  auto r = MakeLook(2);
  MoveOver(*r, A::ButMouse, 1);
  Compare(*r, "ribbon_windows_hover");
}

TEST_F(RibbonGoldenTest, OfficeLookWithATabHoveredAndALauncherPressed) {
  auto r = MakeLook(0);
  MoveOver(*r, A::Cat_Dlg, 0);
  Press(true);
  const platform::CapturedImage pressed = platform::CaptureWindow(r->hWnd());
  Press(false);
  MoveOver(*r, A::TabMouse, 1);
  Compare(*r, "ribbon_office_hover");
  // The pressed launcher differs from the one at rest only inside its own box.
  const platform::CapturedImage rest = platform::CaptureWindow(r->hWnd());
  const RibbonElement& dlg = r->Element(A::Cat_Dlg, 0);
  int32_t changedOutside = 0, changedInside = 0;
  for (int y = 0; y < rest.height(); ++y)
    for (int x = 0; x < rest.width(); ++x) {
      if (rest.pixel(x, y) == pressed.pixel(x, y)) continue;
      const bool inside = dlg.Contains(x, y);
      const bool onTab = r->Element(A::TabMouse, 1).Contains(x, y);
      const bool onCategory = r->Element(A::CatMouse, 0).Contains(x, y);
      if (inside) ++changedInside;
      else if (!onTab && !onCategory) ++changedOutside;
    }
  EXPECT_GT(changedInside, 0);
  EXPECT_EQ(changedOutside, 0);
}

TEST_F(RibbonGoldenTest, HoverPaintsOnlyWhatChangedAndMatchesAWholePaint) {
  for (int32_t theme : {0, 3}) {
    auto r = MakeLook(theme);
    // A walk over buttons, a launcher, tabs and tab buttons, with presses on the way.
    MoveOver(*r, A::ButMouse, 0);
    MoveOver(*r, A::ButMouse, 3);
    MoveOver(*r, A::Cat_Dlg, 0);
    Press(true);
    MoveOver(*r, A::TabMouse, 2);
    Press(false);
    MoveOver(*r, A::ButTabMouse, 1);
    Press(true);
    MoveOver(*r, A::ButMouse, 1);
    const std::vector<uint32_t> partial = Pixels(platform::CaptureWindow(r->hWnd()));
    const int32_t composed = r->ComposeCount();
    Press(false);
    MoveOver(*r, A::ButMouse, 1);
    // The pressed plate went when the pointer left it: the release has nothing to paint.
    EXPECT_EQ(r->ComposeCount(), composed);
    MoveOver(*r, A::ButTabMouse, 1);
    Press(true);
    MoveOver(*r, A::ButMouse, 1);
    // The same marks painted from scratch.
    r->ShowButtonFocus(false);
    EXPECT_EQ(Pixels(platform::CaptureWindow(r->hWnd())), partial) << theme;
    Press(false);
    r->Parent()->Unload();
  }
}

TEST_F(RibbonGoldenTest, SlicesJoinWithoutSeamsAndTheOfficeBandIsBrighter) {
  auto brightness = [](uint32_t p) { return ((p >> 16) & 0xFF) + ((p >> 8) & 0xFF) + (p & 0xFF); };
  int32_t bandBrightness[2] = {};
  for (int32_t theme : {0, 2}) {
    auto r = MakeLook(theme);
    const platform::CapturedImage img = platform::CaptureWindow(r->hWnd());
    // Along the selected tab and a category plate, each row is one colour across the joint of
    // the left and centre slices and of the centre and right slices.
    for (A family : {A::Tab_center, A::Cat_Center_off}) {
      const RibbonElement& c = r->Element(family, 0);
      for (int y = c.Top + 1; y < c.Top + c.Height - 1; ++y) {
        EXPECT_EQ(img.pixel(c.Left - 1, y), img.pixel(c.Left, y)) << theme << " y " << y;
        EXPECT_EQ(img.pixel(c.Left + c.Width - 1, y), img.pixel(c.Left + c.Width, y)) << theme << " y " << y;
      }
    }
    // The band's ground beside the last category, halfway down.
    const RibbonElement& band = r->Element(A::BarraCenter, 0);
    bandBrightness[theme == 0 ? 0 : 1] = brightness(img.pixel(band.Left + band.Width - 20, band.Top + 10));
    r->Parent()->Unload();
  }
  EXPECT_GT(bandBrightness[0], bandBrightness[1]);
}

}  // namespace
}  // namespace mx::chrome::testing
