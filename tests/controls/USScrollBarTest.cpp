// USScrollBar: Value held to the range, arrows and track by the mouse with auto-repeat on the
// virtual clock, the thumb drag's mapping, the wheel, Change against Scroll, persistence and faces.
#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/USScrollBar.h"
#include "frame/Themes.h"
#include "platform/Input.h"
#include "platform/Timer.h"

namespace mx::controls::testing {
namespace {

using platform::InjectMouseButton;
using platform::InjectMouseMove;
using platform::MouseButton;

class ScrollBarTest : public SmallControlTest {
 protected:
  // A vertical bar 17 x 200 at screen (10, 10): arrows of 17, a track of 166 from y = 17; with
  // range 0..100 and LargeChange 10 the thumb is 166 * 10 / 110 = 15 long, leaving 151 free.
  std::shared_ptr<Open<USScrollBar>> Bar() {
    auto b = Make<USScrollBar>(10, 10, 17, 200);
    b->Change.connect([this] { ++changes; });
    b->Scroll.connect([this] { ++scrolls; });
    return b;
  }
  static void Press(int x, int y) {
    InjectMouseMove(x, y);
    InjectMouseButton(MouseButton::Left, true);
    platform::PumpMessages();
  }
  static void Release() {
    InjectMouseButton(MouseButton::Left, false);
    platform::PumpMessages();
  }
  int changes = 0;
  int scrolls = 0;
};

TEST_F(ScrollBarTest, ValueIsHeldToTheRangeWhichMayRunBackwards) {
  auto b = Bar();
  b->Value(150);
  EXPECT_EQ(b->Value(), 100);
  b->Value(100);  // no change, no event
  b->Max(40);     // the range shrinks under the value: held, and that is a change
  EXPECT_EQ(b->Value(), 40);
  b->Value(-3);
  EXPECT_EQ(b->Value(), 0);
  EXPECT_EQ(changes, 3);

  // Min above Max: values run from 40 at the top down to 0 at the bottom.
  b->Min(40);
  b->Max(0);
  b->Value(40);
  EXPECT_EQ(b->ThumbStart(), b->TrackStart());
  b->Value(0);
  EXPECT_EQ(b->ThumbStart() + b->ThumbLength(), b->TrackStart() + b->TrackLength());
  b->Value(99);
  EXPECT_EQ(b->Value(), 40);

  b->SmallChange(0);
  b->LargeChange(-5);
  EXPECT_EQ(b->SmallChange(), 1);
  EXPECT_EQ(b->LargeChange(), 1);
}

TEST_F(ScrollBarTest, GeometryAndParts) {
  auto b = Bar();
  EXPECT_EQ(b->ArrowLength(), 17);
  EXPECT_EQ(b->TrackLength(), 166);
  EXPECT_EQ(b->ThumbLength(), 15);
  b->Value(50);
  EXPECT_EQ(b->ThumbStart(), 17 + 151 * 50 / 100);
  EXPECT_EQ(b->PartAt(8, 5), USScrollBar::PartArrowMin);
  EXPECT_EQ(b->PartAt(8, 195), USScrollBar::PartArrowMax);
  EXPECT_EQ(b->PartAt(8, 30), USScrollBar::PartTrackMin);
  EXPECT_EQ(b->PartAt(8, 17 + 75 + 3), USScrollBar::PartThumb);
  EXPECT_EQ(b->PartAt(8, 150), USScrollBar::PartTrackMax);
  EXPECT_EQ(b->PartAt(17, 150), USScrollBar::PartNone);

  // No range: no thumb, and the track does nothing. A bar too short for both arrows splits.
  b->Max(0);
  EXPECT_EQ(b->ThumbLength(), 0);
  EXPECT_EQ(b->PartAt(8, 100), USScrollBar::PartNone);
  auto s = Make<USScrollBar>(40, 10, 17, 20);
  EXPECT_EQ(s->ArrowLength(), 10);
  EXPECT_EQ(s->TrackLength(), 0);
  // A long page against a small range still leaves a thumb no shorter than the minimum.
  auto h = Make<USScrollBar>(60, 10, 300, 17);
  h->Orientation(USScrollBar::OrientationHorizontal);
  h->Max(100000);
  h->LargeChange(1);
  EXPECT_EQ(h->ThumbLength(), USScrollBar::kMinThumb);
  h->Value(100000);
  EXPECT_EQ(h->ThumbStart() + h->ThumbLength(), 300 - 17);
}

TEST_F(ScrollBarTest, ArrowsAndTrackStepByTheirChanges) {
  auto b = Bar();
  b->SmallChange(2);
  Press(18, 205);  // the lower arrow
  Release();
  EXPECT_EQ(b->Value(), 2);
  Press(18, 150);  // the track below the thumb
  Release();
  EXPECT_EQ(b->Value(), 12);
  Press(18, 12);  // the upper arrow
  Release();
  EXPECT_EQ(b->Value(), 10);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(scrolls, 0);

  // Disabled: the mouse does nothing.
  b->Enabled(false);
  Press(18, 205);
  Release();
  EXPECT_EQ(b->Value(), 10);
}

TEST_F(ScrollBarTest, HeldArrowRepeatsOnTheClockWhileThePointerStaysOnIt) {
  auto b = Bar();
  const int timersAtStart = platform::ActiveTimerCount();
  Press(18, 205);
  EXPECT_EQ(b->Value(), 1);
  platform::RunFor(USScrollBar::kRepeatDelayMs - 1);
  EXPECT_EQ(b->Value(), 1);
  platform::RunFor(1);
  EXPECT_EQ(b->Value(), 2);
  platform::RunFor(4 * USScrollBar::kRepeatPeriodMs);
  EXPECT_EQ(b->Value(), 6);
  // Off the arrow (the capture keeps the messages coming): the timer runs but nothing steps.
  InjectMouseMove(18, 100);
  platform::PumpMessages();
  platform::RunFor(10 * USScrollBar::kRepeatPeriodMs);
  EXPECT_EQ(b->Value(), 6);
  InjectMouseMove(18, 205);
  platform::PumpMessages();
  platform::RunFor(USScrollBar::kRepeatPeriodMs);
  EXPECT_EQ(b->Value(), 7);
  Release();
  EXPECT_EQ(platform::ActiveTimerCount(), timersAtStart);
  platform::RunFor(1000);
  EXPECT_EQ(b->Value(), 7);
  EXPECT_EQ(changes, 7);
}

TEST_F(ScrollBarTest, HeldTrackPagesUntilTheThumbReachesThePointer) {
  auto b = Bar();
  // The pointer at y = 100 in the bar: the thumb (15 long, 1.51 pixels per value) covers it
  // once its start passes 85 - 17, that is from value 50 on.
  Press(18, 110);
  EXPECT_EQ(b->Value(), 10);
  platform::RunFor(USScrollBar::kRepeatDelayMs + 20 * USScrollBar::kRepeatPeriodMs);
  EXPECT_EQ(b->Value(), 50);
  EXPECT_EQ(b->PartAt(8, 100), USScrollBar::PartThumb);
  Release();
  EXPECT_EQ(changes, 5);
}

TEST_F(ScrollBarTest, ThumbDragScrollsThenChangesOnceOnRelease) {
  auto b = Bar();
  // Grip the thumb 5 pixels into it and move its start 75 of the 151 free pixels down:
  // 75 * 100 / 151 = 49.67, rounded to 50.
  Press(18, 10 + 17 + 5);
  EXPECT_EQ(b->PressedPart(), USScrollBar::PartThumb);
  InjectMouseMove(18, 10 + 17 + 5 + 40);
  InjectMouseMove(18, 10 + 17 + 5 + 75);
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 50);
  EXPECT_EQ(scrolls, 2);
  EXPECT_EQ(changes, 0);
  // Far past the end, and outside the bar: held to Max.
  InjectMouseMove(300, 700);
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 100);
  Release();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(scrolls, 3);
  EXPECT_EQ(b->PressedPart(), USScrollBar::PartNone);

  // A drag that ends where it began changes nothing.
  Press(18, 10 + 17 + 151 + 3);
  InjectMouseMove(18, 60);
  InjectMouseMove(18, 10 + 17 + 151 + 3);
  platform::PumpMessages();
  Release();
  EXPECT_EQ(b->Value(), 100);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(scrolls, 5);
}

TEST_F(ScrollBarTest, WheelStepsByLinesAndAddsUpHalfNotches) {
  auto b = Bar();
  b->Value(50);
  changes = 0;
  platform::SetFocus(b->hWnd());
  platform::InjectWheel(-120);  // towards the user: towards Max, 3 lines
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 53);
  platform::InjectWheel(60);
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 53);
  platform::InjectWheel(60);
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 50);
  b->SmallChange(20);
  platform::InjectWheel(240);
  platform::PumpMessages();
  EXPECT_EQ(b->Value(), 0);
  EXPECT_EQ(changes, 3);
}

TEST_F(ScrollBarTest, KeysStepPageAndJump) {
  auto b = Bar();
  int16_t shift = 0;
  const auto key = [&](int16_t vk) { b->UserControl_KeyDown(vk, shift); };
  key(platform::VK_DOWN);
  key(platform::VK_NEXT);
  EXPECT_EQ(b->Value(), 11);
  key(platform::VK_END);
  EXPECT_EQ(b->Value(), 100);
  key(platform::VK_PRIOR);
  key(platform::VK_UP);
  EXPECT_EQ(b->Value(), 89);
  key(platform::VK_HOME);
  key(platform::VK_HOME);  // already there: no event
  EXPECT_EQ(b->Value(), 0);
  EXPECT_EQ(changes, 6);
}

TEST_F(ScrollBarTest, BagKeepsRangeStepsOrientationAndColours) {
  auto a = Bar();
  a->Theme(0);
  a->Min(-20);
  a->Max(20);
  a->Value(7);
  a->SmallChange(3);
  a->LargeChange(8);
  a->Orientation(USScrollBar::OrientationHorizontal);
  a->Enabled(false);
  host::PropertyBag bag;
  a->SaveTo(bag);
  auto b = Make<USScrollBar>(40, 10, 200, 17, &bag);
  EXPECT_EQ(b->Min(), -20);
  EXPECT_EQ(b->Max(), 20);
  EXPECT_EQ(b->Value(), 7);
  EXPECT_EQ(b->SmallChange(), 3);
  EXPECT_EQ(b->LargeChange(), 8);
  EXPECT_EQ(b->Orientation(), USScrollBar::OrientationHorizontal);
  EXPECT_FALSE(b->Enabled());
  EXPECT_EQ(b->Theme(), 0);
  EXPECT_EQ(b->GradientColor1(), frame::GetThemeColor(0, 8));
  EXPECT_EQ(b->BorderColor(), 0xE2A981u);
}

TEST_F(ScrollBarTest, Faces) {
  std::vector<platform::CapturedImage> shots;
  int y = 0;
  for (int theme : {2, 0, 3}) {
    auto b = Make<USScrollBar>(0, y += 20, 160, 17);
    b->Orientation(USScrollBar::OrientationHorizontal);
    b->Theme(theme);
    b->LargeChange(40);
    b->Value(30);
    shots.push_back(Capture(*b));
  }
  auto d = Make<USScrollBar>(0, y += 20, 160, 17);
  d->Orientation(USScrollBar::OrientationHorizontal);
  d->Enabled(false);
  shots.push_back(Capture(*d));
  // Pressed on the track after the thumb, the pointer still there.
  auto p = Make<USScrollBar>(0, 200, 160, 17);
  p->Orientation(USScrollBar::OrientationHorizontal);
  Press(120, 208);
  shots.push_back(Capture(*p));
  Release();
  int w = 0, h = 0;
  std::vector<uint32_t> px = Stack(shots, w, h);
  test::ExpectGolden("controls", "scrollbar_faces", w, h, px);

  // Exact pixels of a vertical bar 17 x 120 at Max: the track of 86 gives the shortest thumb,
  // 95..103, above the lower arrow button 103..120 whose triangle has its tip at (8, 112).
  auto v = Make<USScrollBar>(300, 0, 17, 120);
  v->Value(100);
  EXPECT_EQ(v->ThumbStart(), 95);
  const platform::CapturedImage img = Capture(*v);
  EXPECT_EQ(img.color(8, 40), v->BackColor());
  EXPECT_EQ(img.color(0, 40), v->BorderColor());
  EXPECT_EQ(img.color(8, 95), v->BorderColor());  // the thumb's outline
  EXPECT_NE(img.color(8, 94), v->BorderColor());
  EXPECT_EQ(img.color(8, 112), v->ArrowColor());
  EXPECT_EQ(img.color(6, 110), v->ArrowColor());
  EXPECT_EQ(img.color(10, 110), v->ArrowColor());
  EXPECT_NE(img.color(7, 112), v->ArrowColor());
  EXPECT_NE(img.color(8, 113), v->ArrowColor());
}

}  // namespace
}  // namespace mx::controls::testing
