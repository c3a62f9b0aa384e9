// The over state from the mouse tracker, and the tooltip, which only buttons loaded at run time
// get.
#include "ButtonTestSupport.h"
#include "frame/APIMouseEvents.h"
#include "frame/APITooltip.h"
#include "platform/Input.h"

namespace mx::controls::testing {
namespace {

using platform::InjectMouseButton;
using platform::InjectMouseMove;
using platform::MouseButton;
using platform::PumpMessages;

class ButtonHoverTest : public ButtonTest {
 protected:
  void MoveTo(int x, int y) {
    InjectMouseMove(x, y);
    PumpMessages();
  }
};

TEST_F(ButtonHoverTest, EnterPaintsOverAndExitPaintsNormal) {
  host::PropertyBag bag;
  auto b = Make(10, 10, 80, 24, &bag);
  auto neighbour = Make(100, 10, 80, 24);
  ASSERT_TRUE(b->MouseTracker());
  EventLog log(*b);
  int moves = 0;
  b->MouseMove.connect([&](int16_t&, int16_t&, float& x, float& y) {
    ++moves;
    EXPECT_EQ(x, 20);
    EXPECT_EQ(y, 10);
  });
  MoveTo(30, 20);
  EXPECT_TRUE(b->IsMouseOver());
  EXPECT_EQ(b->PaintedState(), USButton::kStateOver);
  EXPECT_EQ(moves, 1);
  const int painted = b->PaintCount();
  MoveTo(30, 20);
  EXPECT_EQ(b->PaintCount(), painted) << "moves inside do not paint";
  MoveTo(120, 20);  // onto the neighbour
  EXPECT_FALSE(b->IsMouseOver());
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
  EXPECT_EQ(log.Take(), (Lines{"MouseEnter", "MouseExit"}));
}

TEST_F(ButtonHoverTest, ClickWithThePointerOverStaysDownUntilTheClickPaintsOver) {
  host::PropertyBag bag;
  auto b = Make(10, 10, 80, 24, &bag);
  std::vector<int32_t> statesAtEvents;
  b->MouseUp.connect([&](int16_t&, int16_t&, float&, float&) { statesAtEvents.push_back(b->PaintedState()); });
  b->Click.connect([&] { statesAtEvents.push_back(b->PaintedState()); });
  MoveTo(30, 20);
  InjectMouseButton(MouseButton::Left, true);
  PumpMessages();
  EXPECT_EQ(b->PaintedState(), USButton::kStateDown);
  InjectMouseButton(MouseButton::Left, false);
  PumpMessages();
  EXPECT_EQ(statesAtEvents, (std::vector<int32_t>{USButton::kStateDown, USButton::kStateOver}));
}

TEST_F(ButtonHoverTest, ButtonMadeByCodeGetsNoTrackerAndNoTooltip) {
  auto b = Make(10, 10, 80, 24);
  b->ToolTipDescription(u"Dica");
  b->ToolTipIcon(1);
  b->CreateToolTip();
  EXPECT_FALSE(b->MouseTracker());
  EXPECT_FALSE(b->ToolTip());
  EventLog log(*b);
  MoveTo(30, 20);
  MoveTo(300, 300);
  EXPECT_TRUE(log.Take().empty());
  EXPECT_EQ(b->PaintedState(), USButton::kStateNormal);
}

TEST_F(ButtonHoverTest, TooltipNeedsADescriptionAndAnIcon) {
  host::PropertyBag bag;
  bag.WriteProperty(u"ToolTipDescription", host::Variant(host::String(u"Grava o registro")));
  auto noIcon = Make(10, 10, 80, 24, &bag);
  EXPECT_FALSE(noIcon->ToolTip());

  bag.WriteProperty(u"ToolTipIcon", host::Variant(int32_t{1}));
  bag.WriteProperty(u"ToolTipTitle", host::Variant(host::String(u"Gravar")));
  auto withIcon = Make(100, 10, 80, 24, &bag);
  ASSERT_TRUE(withIcon->ToolTip());
  EXPECT_NE(withIcon->ToolTip()->hWnd(), platform::HWND{0});
  EXPECT_EQ(withIcon->ToolTip()->TipText(), u"Grava o registro");
  EXPECT_EQ(withIcon->ToolTip()->Style(), frame::ToolTip_Balloon);

  // Later changes wait for the next CreateToolTip.
  withIcon->ToolTipDescription(u"Outra");
  EXPECT_EQ(withIcon->ToolTip()->TipText(), u"Grava o registro");
  withIcon->CreateToolTip();
  EXPECT_EQ(withIcon->ToolTip()->TipText(), u"Outra");
  withIcon->DestroyToolTip();
  EXPECT_EQ(withIcon->ToolTip()->hWnd(), platform::HWND{0});
}

TEST_F(ButtonHoverTest, DisposeEndsTheOverState) {
  host::PropertyBag bag;
  auto b = Make(10, 10, 80, 24, &bag);
  b->Dispose();
  EXPECT_FALSE(b->MouseTracker());
  EventLog log(*b);
  MoveTo(30, 20);
  EXPECT_TRUE(log.Take().empty());
}

}  // namespace
}  // namespace mx::controls::testing
