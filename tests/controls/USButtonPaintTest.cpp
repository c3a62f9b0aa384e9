// The button's face, border, caption colours and focus mark, checked on the pixels the screen
// shows, and a golden sheet of every theme in its four states.
#include <set>

#include "ButtonTestSupport.h"
#include "platform/Gdi.h"
#include "support/Golden.h"

namespace mx::controls::testing {
namespace {

class ButtonPaintTest : public ButtonTest {
 protected:
  // The colours of the caption's pixels: what differs from the face colour inside the border.
  static std::set<platform::COLORREF> InkColours(const platform::CapturedImage& img, platform::COLORREF face) {
    std::set<platform::COLORREF> out;
    for (int y = 3; y < img.height() - 3; ++y)
      for (int x = 3; x < img.width() - 3; ++x)
        if (img.color(x, y) != face) out.insert(img.color(x, y));
    return out;
  }
};

TEST_F(ButtonPaintTest, SolidFaceWithBorderAroundIt) {
  auto b = Make(10, 10, 40, 20);
  b->Caption(u"");
  b->GradientColor(1, 0x204060);
  b->GradientColor(2, 0x204060);
  b->BorderColor(0x0000FF);
  auto img = Capture(*b);
  ASSERT_EQ(img.width(), 40);
  for (int x = 0; x < 40; ++x) {
    EXPECT_EQ(img.color(x, 0), 0x0000FFu) << x;
    EXPECT_EQ(img.color(x, 19), 0x0000FFu) << x;
  }
  for (int y = 1; y < 19; ++y)
    for (int x = 1; x < 39; ++x) ASSERT_EQ(img.color(x, y), 0x204060u) << x << "," << y;
}

TEST_F(ButtonPaintTest, TwoColourFaceRunsTopToBottom) {
  auto b = Make(10, 10, 20, 16);
  b->Caption(u"");
  b->GradientColor(1, 0x000000);
  b->GradientColor(2, 0x0000FF);  // red 0 to 255 over 16 rows: 17 a row
  auto img = Capture(*b);
  for (int y = 1; y < 15; ++y) EXPECT_EQ(img.color(5, y), static_cast<platform::COLORREF>(17 * y)) << y;
}

TEST_F(ButtonPaintTest, FourColoursThatSumToFourTimesTheFirstPaintSolid) {
  auto b = Make(10, 10, 30, 20);
  b->Caption(u"");
  // 0x10 + 0x20 + 0x00 + 0x10 = 4 x 0x10: solid, although the colours differ.
  b->GradientColor(1, 0x000010);
  b->GradientColor(2, 0x000020);
  b->GradientColor(3, 0x000000);
  b->GradientColor(4, 0x000010);
  b->GradientColors(1);
  auto img = Capture(*b);
  for (int y = 1; y < 19; ++y) ASSERT_EQ(img.color(10, y), 0x000010u) << y;

  // Another sum gives two gradients: top half from 1 to 2, bottom half from 3 to 4.
  b->GradientColor(4, 0x000011);
  img = Capture(*b);
  EXPECT_EQ(img.color(10, 1), 0x000010u + (0x10 * 1) / 9);
  EXPECT_EQ(img.color(10, 10), 0x000000u);
  EXPECT_EQ(img.color(10, 18), 0x11u * 8 / 9);
}

TEST_F(ButtonPaintTest, CheckedCheckButtonShowsDownColoursWithNormalTextAndOverBorder) {
  host::PropertyBag bag;
  auto b = Make(10, 10, 60, 24, &bag);
  b->Caption(u"W");
  b->CheckBoxMode(true);
  b->GradientColorDown(1, 0x303030);
  b->GradientColorDown(2, 0x303030);
  b->GradientColorDown(3, 0x00FF00);  // ignored: a checked face is always two colours
  b->GradientColorDown(4, 0x00FF00);
  b->GradientColors(1);
  b->ForeColor(0xFFFFFF);
  b->ForeColorDown(0x00FFFF);
  b->BorderColorOver(0xFF0000);
  b->BorderColor(0x0000FF);
  b->Value(true);
  b->UserControl_LostFocus();  // the mouse is away and it has no focus

  auto check = [&](const char* when) {
    auto img = Capture(*b);
    EXPECT_EQ(img.color(0, 12), 0xFF0000u) << when;
    EXPECT_EQ(img.color(30, 2), 0x303030u) << when;
    EXPECT_EQ(img.color(30, 21), 0x303030u) << when;
    const auto ink = InkColours(img, 0x303030);
    EXPECT_TRUE(ink.count(0xFFFFFF)) << when;
    EXPECT_FALSE(ink.count(0x00FFFF)) << when;
  };
  check("resting");
  // Pressing it again paints the normal state with the same colours.
  b->DrawState(USButton::kStateDown, false);
  check("pressed");
}

TEST_F(ButtonPaintTest, DisabledUsesItsOwnColoursAndNoFocusMark) {
  auto b = Make(10, 10, 60, 24);
  b->Caption(u"W");
  b->GradientColorDisabled(1, 0x404040);
  b->GradientColorDisabled(2, 0x404040);
  b->BorderColorDisabled(0x00FF00);
  b->ForeColorDisabled(0xFF00FF);
  b->UserControl_GotFocus();
  b->Enabled(false);
  auto img = Capture(*b);
  EXPECT_EQ(img.color(0, 0), 0x00FF00u);
  const auto ink = InkColours(img, 0x404040);
  EXPECT_TRUE(ink.count(0xFF00FF));
  EXPECT_FALSE(ink.count(0x000000)) << "no focus mark while disabled";
}

TEST_F(ButtonPaintTest, FocusMarkInsetByTwo) {
  auto b = Make(10, 10, 40, 20);
  b->Caption(u"");
  b->GradientColor(1, 0xFFFFFF);
  b->GradientColor(2, 0xFFFFFF);
  b->UserControl_GotFocus();
  auto img = Capture(*b);
  // The dotted mark runs along row 2 between columns 2 and 37; rows 1 and 3 stay white.
  int marked = 0;
  for (int x = 2; x < 38; ++x) marked += img.color(x, 2) != 0xFFFFFFu;
  EXPECT_GT(marked, 10);
  for (int x = 3; x < 37; ++x) {
    EXPECT_EQ(img.color(x, 1), 0xFFFFFFu);
    EXPECT_EQ(img.color(x, 3), 0xFFFFFFu);
  }
  // Without ShowFocusRect no mark.
  b->ShowFocusRect(false);
  b->Refresh();
  img = Capture(*b);
  for (int x = 2; x < 38; ++x) EXPECT_EQ(img.color(x, 2), 0xFFFFFFu);
}

TEST_F(ButtonPaintTest, CropCornersAreCutAndCompleted) {
  host::PropertyBag bag;
  auto b = Make(10, 10, 40, 20, &bag);
  b->Caption(u"");
  b->BorderColor(0x0000FF);
  b->CropBorders(Crop_Left);
  platform::RECT box{};
  EXPECT_NE(platform::GetWindowRgnBox(b->hWnd(), &box), 0);
  // The left corners are outside the region; the right ones inside.
  platform::HRGN r = platform::CreateRectRgn(0, 0, 0, 0);
  platform::GetWindowRgn(b->hWnd(), r);
  EXPECT_FALSE(platform::PtInRegion(r, 0, 0));
  EXPECT_FALSE(platform::PtInRegion(r, 0, 19));
  EXPECT_TRUE(platform::PtInRegion(r, 39, 0));
  EXPECT_TRUE(platform::PtInRegion(r, 39, 19));
  platform::DeleteObject(r);
  auto img = Capture(*b);
  EXPECT_EQ(img.color(1, 1), 0x0000FFu);
  EXPECT_EQ(img.color(1, 18), 0x0000FFu);
  EXPECT_NE(img.color(38, 1), 0x0000FFu);

  // Back to no cropping at run time keeps the region already applied.
  b->CropBorders(Dont_Crop);
  r = platform::CreateRectRgn(0, 0, 0, 0);
  EXPECT_NE(platform::GetWindowRgn(b->hWnd(), r), 0);
  EXPECT_FALSE(platform::PtInRegion(r, 0, 0));
  platform::DeleteObject(r);
}

TEST_F(ButtonPaintTest, GoldenThemesInFourStates) {
  constexpr int kW = 96, kH = 32;
  const std::vector<int32_t> states = {USButton::kStateNormal, USButton::kStateOver, USButton::kStateDown,
                                       USButton::kStateDisabled};
  std::vector<uint32_t> sheet(static_cast<size_t>(kW * 4) * kH * 7);
  for (int theme = 0; theme < 7; ++theme) {
    auto b = Make(10, 10, kW, kH);
    b->Caption(u"&Gravar");
    b->Theme(theme);
    for (size_t s = 0; s < states.size(); ++s) {
      if (states[s] == USButton::kStateDisabled) b->Enabled(false);
      else b->DrawState(states[s], true);
      auto img = Capture(*b);
      for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
          sheet[static_cast<size_t>((theme * kH + y) * kW * 4 + s * kW + x)] = img.pixel(x, y);
    }
  }
  test::ExpectGolden("controls", "button_themes", kW * 4, kH * 7, sheet);
}

}  // namespace
}  // namespace mx::controls::testing
