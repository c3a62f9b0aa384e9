// The click machine and the state table of the button, driven by injected input and by the
// host's handlers.
#include "ButtonTestSupport.h"
#include "platform/Input.h"

namespace mx::controls::testing {
namespace {

using platform::InjectKey;
using platform::InjectMouseButton;
using platform::InjectMouseMove;
using platform::MouseButton;
using platform::PumpMessages;

class ButtonClickTest : public ButtonTest {
 protected:
  void Press(MouseButton b = MouseButton::Left) {
    InjectMouseButton(b, true);
    PumpMessages();
  }
  void Release(MouseButton b = MouseButton::Left) {
    InjectMouseButton(b, false);
    PumpMessages();
  }
  void Key(int vk, bool down) {
    InjectKey(vk, down);
    PumpMessages();
  }
};

TEST(AccessKeyFromEnd, CaptionsOfTheRule) {
  EXPECT_EQ(AccessKeyFromEnd(u"A&&B&c"), u"c");
  EXPECT_EQ(AccessKeyFromEnd(u"&&a&&b&c"), u"c");
  EXPECT_EQ(AccessKeyFromEnd(u"&&&x"), u"&");
  EXPECT_EQ(AccessKeyFromEnd(u"&&"), u"&");
  EXPECT_EQ(AccessKeyFromEnd(u"&"), u"");
  EXPECT_EQ(AccessKeyFromEnd(u"x"), u"");
  EXPECT_EQ(AccessKeyFromEnd(u"&Confirmar"), u"c");
  EXPECT_EQ(AccessKeyFromEnd(u"Sa&ir"), u"i");
  // A marker in last place has nothing after it; the one before it counts.
  EXPECT_EQ(AccessKeyFromEnd(u"&Ok&"), u"o");
  EXPECT_EQ(AccessKeyFromEnd(u"Sem tecla"), u"");
}

TEST_F(ButtonClickTest, CaptionSetsTheAccessKeys) {
  auto b = Make(10, 10, 80, 24);
  b->Caption(u"&&&X");
  EXPECT_EQ(b->AccessKeys(), u"&");
  b->Caption(u"Abr&Ir");
  EXPECT_EQ(b->AccessKeys(), u"i");
}

TEST_F(ButtonClickTest, LeftClickRaisesDownUpThenClickAndPaintsTheStates) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
  InjectMouseMove(30, 20);
  PumpMessages();
  Press();
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  EXPECT_TRUE(b->IsPressed());
  EXPECT_EQ(platform::GetCapture(), b->hWnd());
  Release();
  // The click paints the over state last.
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_FALSE(b->IsPressed());
  EXPECT_EQ(platform::GetCapture(), platform::HWND{0});
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1", "Click"}));
}

TEST_F(ButtonClickTest, UpOutsideGivesNoClickAndPaintsNormal) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  InjectMouseMove(30, 20);
  Press();
  InjectMouseMove(300, 300);
  Release();
  // The press gave it the focus, so it rests in the over state.
  ASSERT_EQ(platform::GetFocus(), b->hWnd());
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1"}));

  // Without the focus it rests in the normal state.
  b->UserControl_LostFocus();
  b->DrawState(USButton::kStateDown, false);
  int16_t button = host::vbLeftButton, shift = 0;
  float x = 0, y = 0;
  b->UserControl_MouseUp(button, shift, x, y);
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
}

TEST_F(ButtonClickTest, DoubleClickRaisesOneClickAndDropsTheHostsLateClick) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  InjectMouseMove(30, 20);
  Press();
  Release();
  Press();
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  Release();
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1", "Click", "DblClick", "MouseUp 1"}));
  // A click from the host after the double click finds LastButton 8 and does nothing.
  b->UserControl_Click();
  EXPECT_TRUE(log.Take().empty());
}

TEST_F(ButtonClickTest, OtherButtonsRaiseMouseDownOnly) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  InjectMouseMove(30, 20);
  Press(MouseButton::Right);
  Release(MouseButton::Right);
  Press(MouseButton::Middle);
  Release(MouseButton::Middle);
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 2", "MouseDown 4"}));
  // The last button is not the left one: a click from the host now is dropped.
  b->UserControl_Click();
  EXPECT_TRUE(log.Take().empty());
}

TEST_F(ButtonClickTest, LockedButtonReactsButRaisesNoClick) {
  auto b = Make(10, 10, 80, 24);
  b->Locked(true);
  EventLog log(*b);
  InjectMouseMove(30, 20);
  Press();
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  Release();
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1"}));

  // A locked check button still toggles.
  b->CheckBoxMode(true);
  platform::AdvanceVirtualClock(2000);
  Press();
  Release();
  EXPECT_TRUE(b->Value());
  platform::AdvanceVirtualClock(2000);
  Press();
  Release();
  EXPECT_FALSE(b->Value());
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1", "MouseDown 1", "MouseUp 1"}));
}

TEST_F(ButtonClickTest, SpaceClicksOnReleaseWithTheCaptureHeldMeanwhile) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  platform::SetFocus(b->hWnd());
  PumpMessages();
  Key(platform::VK_SPACE, true);
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  EXPECT_EQ(platform::GetCapture(), b->hWnd());
  Key(platform::VK_SPACE, false);
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_EQ(platform::GetCapture(), platform::HWND{0});
  EXPECT_EQ(log.Take(), (Lines{"KeyDown 32", "KeyPress 32", "Click", "KeyUp 32"}));
}

TEST_F(ButtonClickTest, AccessKeyClicksButEnterAndEscapeLeaveACheckButton) {
  auto b = Make(10, 10, 80, 24);
  EventLog log(*b);
  int16_t key = u'a';
  b->UserControl_AccessKeyPress(key);
  EXPECT_EQ(log.Take(), (Lines{"Click"}));
  key = 13;
  b->UserControl_AccessKeyPress(key);
  EXPECT_EQ(log.Take(), (Lines{"Click"}));

  b->CheckBoxMode(true);
  for (int16_t k : {int16_t{13}, int16_t{27}}) {
    key = k;
    b->UserControl_AccessKeyPress(key);
  }
  EXPECT_FALSE(b->Value());
  EXPECT_TRUE(log.Take().empty());
  key = u'a';
  b->UserControl_AccessKeyPress(key);
  EXPECT_TRUE(b->Value());
  EXPECT_EQ(log.Take(), (Lines{"Click"}));

  // A disabled button ignores its access key.
  b->Enabled(false);
  b->UserControl_AccessKeyPress(key);
  EXPECT_TRUE(b->Value());
  EXPECT_TRUE(log.Take().empty());
}

TEST_F(ButtonClickTest, EnabledFocusAndStateTable) {
  auto b = Make(10, 10, 80, 24);
  b->Enabled(false);
  EXPECT_EQ(b->PaintedState(), USButton::kStateDisabled);
  b->Enabled(true);
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);

  b->UserControl_GotFocus();
  b->Enabled(false);
  b->Enabled(true);
  // Back from disabled with the focus: over.
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);

  // Losing the focus always paints normal and drops a pressed key.
  b->DrawState(USButton::kStateDown, false);
  b->UserControl_LostFocus();
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
  EXPECT_FALSE(b->IsPressed());
}

TEST_F(ButtonClickTest, ValueOnAPlainButtonClicksSilently) {
  // Run time is what ReadProperties finds; a button made with InitProperties stays in design mode.
  host::PropertyBag bag;
  auto b = Make(10, 10, 80, 24, &bag);
  EventLog log(*b);
  const int before = b->PaintCount();
  b->Value(true);
  EXPECT_FALSE(b->Value());
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_GT(b->PaintCount(), before);
  EXPECT_TRUE(log.Take().empty());

  // At design time the value simply returns to False.
  auto d = Make(100, 10, 80, 24, nullptr, true);
  const int designBefore = d->PaintCount();
  d->Value(true);
  EXPECT_FALSE(d->Value());
  EXPECT_EQ(d->PaintCount(), designBefore);
}

TEST_F(ButtonClickTest, CheckButtonTogglesOnEachClick) {
  auto b = Make(10, 10, 80, 24);
  b->CheckBoxMode(true);
  EventLog log(*b);
  InjectMouseMove(30, 20);
  Press();
  // Pressing an unchecked check button shows the down face.
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  Release();
  EXPECT_TRUE(b->Value());
  platform::AdvanceVirtualClock(2000);
  Press();
  Release();
  EXPECT_FALSE(b->Value());
  EXPECT_EQ(log.Take(), (Lines{"MouseDown 1", "MouseUp 1", "Click", "MouseDown 1", "MouseUp 1", "Click"}));
}

TEST_F(ButtonClickTest, RedrawOffPaintsNothingUntilSetOnOnce) {
  auto b = Make(10, 10, 80, 24);
  const int start = b->PaintCount();
  b->Redraw(false);
  b->Caption(u"Novo");
  b->ForeColor(0x0000FF);
  b->GradientColors(1);
  b->Enabled(false);
  b->Enabled(true);
  EXPECT_EQ(b->PaintCount(), start);
  b->Redraw(true);
  EXPECT_EQ(b->PaintCount(), start + 1);
  b->Redraw(true);
  EXPECT_EQ(b->PaintCount(), start + 1);
}

TEST_F(ButtonClickTest, RepeatedStatesPaintOnce) {
  auto b = Make(10, 10, 80, 24);
  const int start = b->PaintCount();
  b->DrawState(USButton::kStateOver, false);
  b->DrawState(USButton::kStateOver, false);
  b->DrawState(-1, false);
  EXPECT_EQ(b->PaintCount(), start + 1);
  // Over and down colours are not on the screen: setting them paints nothing.
  b->DrawState(USButton::kStateNormal, false);
  const int normal = b->PaintCount();
  b->BorderColorOver(0x123456);
  b->GradientColorDown(2, 0x123456);
  b->ForeColorDown(0x123456);
  EXPECT_EQ(b->PaintCount(), normal);
  b->GradientColor(2, 0x123456);
  EXPECT_EQ(b->PaintCount(), normal + 1);
}

TEST_F(ButtonClickTest, MinimumSizeHoldsOnlyWhileRedrawIsOn) {
  auto b = Make(10, 10, 80, 24);
  b->Move(b->Left(), b->Top(), 5 * 15, 5 * 15);
  EXPECT_EQ(b->ScaleWidth(), 15);
  EXPECT_EQ(b->ScaleHeight(), 15);
  EXPECT_EQ(b->Width(), 15 * 15);

  b->Redraw(false);
  b->Move(b->Left(), b->Top(), 5 * 15, 5 * 15);
  EXPECT_EQ(b->ScaleWidth(), 5);
  EXPECT_EQ(b->ScaleHeight(), 5);
}

TEST_F(ButtonClickTest, ThemeOverwritesColoursAndFourColourMode) {
  auto b = Make(10, 10, 80, 24);
  b->GradientColors(1);
  b->CropBorders(Crop_All);
  b->Theme(4);  // Windows Theme Red
  EXPECT_EQ(b->GradientColors(), 0);
  EXPECT_EQ(b->CropBorders(), 0);
  EXPECT_EQ(b->BorderColor(), 0x5050C7);
  EXPECT_EQ(b->BorderColorDown(), 0x1F1F5E);
  EXPECT_EQ(b->BorderColorOver(), 0x2E2E8E);
  EXPECT_EQ(b->ForeColorDisabled(), 0x008000);
  EXPECT_EQ(b->GradientColorOver(4), 0x2E2E8E);
  // Only "Theme" is marked changed; the colours go out with the next save anyway.
  EXPECT_EQ(b->ChangedProperties().back(), u"Theme");

  b->Theme(0);  // Office Theme Blue
  EXPECT_EQ(b->ForeColor(), 0x000000);
  EXPECT_EQ(b->GradientColor(3), 0xFFD1AE);
  EXPECT_EQ(b->GradientColorDown(4), 0x70D8FE);
  EXPECT_EQ(b->BorderColorOver(), 0xBBF2FF);
}

TEST_F(ButtonClickTest, HandPointerAndMousePointer) {
  auto b = Make(10, 10, 80, 24);
  // Dropped by code: the hand is the property's default, but only setting it applies it.
  EXPECT_TRUE(b->HandPointer());
  EXPECT_EQ(b->MousePointer(), 0);
  b->HandPointer(true);
  EXPECT_EQ(b->MousePointer(), 99);
  ASSERT_TRUE(b->MouseIcon());
  EXPECT_EQ(b->MouseIcon()->Type(), host::vbPicTypeIcon);
  b->MousePointer(1);
  EXPECT_FALSE(b->HandPointer());
  b->HandPointer(false);
  EXPECT_EQ(b->MousePointer(), 0);
  EXPECT_FALSE(b->MouseIcon() && !b->MouseIcon()->IsEmpty());
}

}  // namespace
}  // namespace mx::controls::testing

namespace mx::controls::testing {
namespace {

TEST_F(ButtonClickTest, AboutShowsAModalBoxThatEscapeCloses) {
  auto b = Make(10, 10, 80, 24);
  bool sawBox = false;
  platform::PushIdleAction([&] {
    // While the modal loop runs, the box is a visible top-level window with its caption.
    const platform::HWND box = platform::FindWindowW(nullptr, u"Sobre");
    sawBox = box != 0 && platform::IsWindowVisible(box);
    platform::InjectKeyPress(platform::VK_ESCAPE);
  });
  b->About();
  EXPECT_TRUE(sawBox);
  EXPECT_EQ(platform::FindWindowW(nullptr, u"Sobre"), platform::HWND{0});
}

}  // namespace
}  // namespace mx::controls::testing
