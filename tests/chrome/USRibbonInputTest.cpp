// The ribbon driven by injected input: hover through the hit areas, press and release, the events
// with their positions, the keyboard and hot keys, the hand pointer, and the handles left after
// a form with a USForm and a ribbon unloads.
#include <gtest/gtest.h>

#include <array>

#include "USRibbonTestSupport.h"
#include "controls/Registration.h"
#include "frame/APITooltip.h"
#include "host/ScriptPlayer.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Timer.h"

namespace mx::chrome::testing {
namespace {

using A = RibbonArray;
using Events = std::vector<std::string>;

std::string Pos(const USRibbon& r, A array, int32_t row, const char* name, int32_t index) {
  // Positions are the element's lower left corner in the form's twips; the ribbon stands at the
  // form's client origin.
  const RibbonElement& e = r.Element(array, row);
  return std::string(name) + " " + std::to_string(index) + " " + std::to_string(e.Left * 15) + " " +
         std::to_string((e.Top + e.Height) * 15);
}

TEST_F(RibbonTest, HoverLightsTheItemAndItsCategoryAndMovesWithThePointer) {
  auto r = MakeFilled();
  MoveOver(*r, A::ButMouse, 1);
  EXPECT_EQ(r->HoverTarget(), (RibbonTarget{RibbonHit::Button, 1}));
  EXPECT_EQ(r->HoverCategory(), 0);
  for (A a : {A::Button_left_over, A::Button_center_over, A::Button_right_over})
    EXPECT_TRUE(r->Element(a, 1).Visible);
  EXPECT_TRUE(r->Element(A::Cat_Center_on, 0).Visible);
  EXPECT_TRUE(r->Element(A::Cat_Dlg_on, 0).Visible);

  // Onto the next category's button: the first button and plate go dark.
  MoveOver(*r, A::ButMouse, 3);
  EXPECT_FALSE(r->Element(A::Button_center_over, 1).Visible);
  EXPECT_FALSE(r->Element(A::Cat_Center_on, 0).Visible);
  EXPECT_TRUE(r->Element(A::Button_center_over, 3).Visible);
  EXPECT_TRUE(r->Element(A::Cat_Center_on, 1).Visible);

  // A button with a menu swaps its mark for the lit one.
  MoveOver(*r, A::ButMouse, 0);
  EXPECT_TRUE(r->Element(A::Glip_on, 0).Visible);
  EXPECT_FALSE(r->Element(A::Glip_off, 0).Visible);

  // A tab other than the current one lights; the current one does not.
  MoveOver(*r, A::TabMouse, 2);
  EXPECT_TRUE(r->Element(A::Tab_center_over, 2).Visible);
  EXPECT_TRUE(r->Element(A::Glip_off, 0).Visible);
  EXPECT_EQ(r->HoverCategory(), -1);
  MoveOver(*r, A::TabMouse, 0);
  EXPECT_FALSE(r->Element(A::Tab_center_over, 0).Visible);
  EXPECT_FALSE(r->Element(A::Tab_center_over, 2).Visible);

  // The launcher lights itself over its category's mark; the tab buttons light too.
  MoveOver(*r, A::Cat_Dlg, 0);
  EXPECT_EQ(r->HoverTarget(), (RibbonTarget{RibbonHit::Launcher, 0}));
  EXPECT_TRUE(r->Element(A::Cat_Dlg_over, 0).Visible);
  MoveOver(*r, A::ButTabMouse, 1);
  EXPECT_FALSE(r->Element(A::Cat_Dlg_over, 0).Visible);
  EXPECT_TRUE(r->Element(A::TabButonOn, 1).Visible);

  // Out of the control, onto the form: the tracker's leave clears every mark.
  MoveTo(r->hWnd(), 300, 200);
  EXPECT_EQ(r->HoverTarget().kind, RibbonHit::None);
  EXPECT_EQ(r->HoverCategory(), -1);
  EXPECT_FALSE(r->Element(A::TabButonOn, 1).Visible);
}

TEST_F(RibbonTest, HoveredItemsShowTheirCleanedToolTip) {
  auto r = MakeFilled();
  MoveOver(*r, A::ButMouse, 3);
  ASSERT_NE(r->ToolTip(), nullptr);
  EXPECT_EQ(r->ToolTip()->TipText(), u"Localizar texto");
  EXPECT_NE(r->ToolTip()->hWnd(), 0u);
  MoveOver(*r, A::ButMouse, 0);
  EXPECT_EQ(r->ToolTip()->TipText(), u"Colar");
  MoveOver(*r, A::ButTabMouse, 0);
  EXPECT_EQ(r->ToolTip()->TipText(), u"Ajuda");
  // The second tab button was given no text: no tip over it, nor over a tab.
  MoveOver(*r, A::ButTabMouse, 1);
  EXPECT_EQ(r->ToolTip(), nullptr);
  MoveOver(*r, A::ButMouse, 0);
  MoveOver(*r, A::TabMouse, 2);
  EXPECT_EQ(r->ToolTip(), nullptr);
}

TEST_F(RibbonTest, MovesInsideOneItemComposeNothing) {
  auto r = MakeFilled();
  MoveOver(*r, A::ButMouse, 1);
  const int32_t composed = r->ComposeCount();
  const platform::POINT p = Centre(r->Element(A::ButMouse, 1));
  MoveTo(r->hWnd(), p.x + 1, p.y);
  MoveTo(r->hWnd(), p.x + 2, p.y + 3);
  EXPECT_EQ(r->ComposeCount(), composed);
}

TEST_F(RibbonTest, DisabledButtonsNeitherLightNorPressNorRaise) {
  auto r = MakeFilled();
  Record(*r);
  r->ButtonEnabled(101, false);
  MoveOver(*r, A::ButMouse, 1);
  EXPECT_EQ(r->HoverTarget().kind, RibbonHit::None);
  EXPECT_FALSE(r->Element(A::Button_center_over, 1).Visible);
  // Its category still lights: the pointer is inside the plate.
  EXPECT_EQ(r->HoverCategory(), 0);
  Press(true);
  EXPECT_FALSE(r->Element(A::Button_center, 1).Visible);
  Press(false);
  EXPECT_TRUE(m_events.empty());
  // Enabled again, the same place works.
  r->ButtonEnabled(101, true);
  ClickOver(*r, A::ButMouse, 1);
  EXPECT_EQ(m_events, (Events{Pos(*r, A::ButMouse, 1, "ButtonClick", 101)}));
}

TEST_F(RibbonTest, ClicksRaiseOneEventPerKindWithTheElementsPosition) {
  auto r = MakeFilled();
  Record(*r);
  ClickOver(*r, A::ButMouse, 2);
  // The plate below the buttons is the category's own.
  const RibbonElement& plate = r->Element(A::CatMouse, 1);
  ClickAt(r->hWnd(), plate.Left + plate.Width / 2, plate.Top + plate.Height - 4);
  ClickOver(*r, A::Cat_Dlg, 0);
  ClickOver(*r, A::ButTabMouse, 0);
  Events expected{Pos(*r, A::ButMouse, 2, "ButtonClick", 102), Pos(*r, A::CatMouse, 1, "CatClick", 11),
                  Pos(*r, A::Cat_Dlg, 0, "CatClick", 10), Pos(*r, A::ButTabMouse, 0, "TabButtonClick", 1)};
  EXPECT_EQ(m_events, expected);

  // A tab click selects the tab first, then tells the host.
  m_events.clear();
  int32_t seen = -1;
  r->TabClick.connect([&](int32_t) { seen = r->CurrentTab(); });
  ClickOver(*r, A::TabMouse, 1);
  EXPECT_EQ(m_events, (Events{"TabClick 1"}));
  EXPECT_EQ(seen, 1);
  EXPECT_TRUE(r->Element(A::ButMouse, 4).Visible);
}

TEST_F(RibbonTest, EventsReachTheFormsSinkAsTheRunnerPrintsThem) {
  std::vector<std::string> lines;
  auto r = MakeRibbon({}, 600, 260, [&](host::StringView source, int32_t index, host::StringView name,
                                       std::span<host::Variant> args) {
    // The form's own events (Load, Activate) go by; the ribbon's are the ones looked at.
    if (source == u"USRibbon1") lines.push_back(host::FormatEventLine(source, index, name, args));
  });
  FillStandard(*r);
  r->Refresh();
  ClickOver(*r, A::TabMouse, 2);
  ClickOver(*r, A::TabMouse, 0);
  ClickOver(*r, A::ButMouse, 1);
  const RibbonElement& b = r->Element(A::ButMouse, 1);
  EXPECT_EQ(lines, (Events{"EVENT USRibbon1.TabClick 2", "EVENT USRibbon1.TabClick 0",
                           "EVENT USRibbon1.ButtonClick 101 " + std::to_string(b.Left * 15) + " " +
                               std::to_string((b.Top + b.Height) * 15)}));
}

TEST_F(RibbonTest, ARibbonWithoutAFormReportsPositionsInItsOwnPixels) {
  auto r = std::make_shared<USRibbon>();
  r->Move(0, 0, 500 * 15, 1800);
  r->LoadNew(true);
  FillStandard(*r);
  r->Refresh();
  r->ShowControl();
  platform::PumpMessages();
  Record(*r);
  ClickOver(*r, A::ButMouse, 3);
  const RibbonElement& b = r->Element(A::ButMouse, 3);
  EXPECT_EQ(m_events, (Events{"ButtonClick 103 " + std::to_string(b.Left) + " " + std::to_string(b.Top + b.Height)}));
  r->TerminateControl();
}

TEST_F(RibbonTest, PressShowsThePressedPictureAndOnlyAReleaseOverTheSameItemClicks) {
  auto r = MakeFilled();
  Record(*r);
  MoveOver(*r, A::ButMouse, 0);
  Press(true);
  EXPECT_EQ(r->PressedTarget(), (RibbonTarget{RibbonHit::Button, 0}));
  EXPECT_TRUE(r->Element(A::Button_center, 0).Visible);
  // Off the item the pressed plate goes, back over it it returns.
  MoveOver(*r, A::ButMouse, 1);
  EXPECT_FALSE(r->Element(A::Button_center, 0).Visible);
  MoveOver(*r, A::ButMouse, 0);
  EXPECT_TRUE(r->Element(A::Button_center, 0).Visible);
  MoveOver(*r, A::ButMouse, 2);
  Press(false);
  EXPECT_FALSE(r->Element(A::Button_center, 0).Visible);
  EXPECT_TRUE(m_events.empty());

  MoveOver(*r, A::Cat_Dlg, 0);
  Press(true);
  EXPECT_TRUE(r->Element(A::Cat_Dlg_down, 0).Visible);
  Press(false);
  EXPECT_FALSE(r->Element(A::Cat_Dlg_down, 0).Visible);
  MoveOver(*r, A::ButTabMouse, 1);
  Press(true);
  EXPECT_TRUE(r->Element(A::TabButonOver, 1).Visible);
  Press(false);
  EXPECT_EQ(m_events, (Events{Pos(*r, A::Cat_Dlg, 0, "CatClick", 10), Pos(*r, A::ButTabMouse, 1, "TabButtonClick", 2)}));
}

TEST_F(RibbonTest, HandPointerOverButtonsAndTabButtonsOnlyWhenAskedFor) {
  auto r = MakeFilled(Bag({{u"ButtonHandPointer", true}}));
  MoveOver(*r, A::ButMouse, 0);
  EXPECT_EQ(r->MousePointer(), host::vbCustom);
  MoveOver(*r, A::ButTabMouse, 0);
  EXPECT_EQ(r->MousePointer(), host::vbDefault);
  r->TabButtonHandPointer(true);
  EXPECT_EQ(r->MousePointer(), host::vbCustom);
  MoveOver(*r, A::TabMouse, 1);
  EXPECT_EQ(r->MousePointer(), host::vbDefault);
}

TEST_F(RibbonTest, ArrowsMoveThroughTabsAndButtonsAndReturnClicks) {
  auto r = MakeFilled(Bag({{u"ShowButtonFocus", true}}));
  Record(*r);
  r->SetFocus();
  platform::PumpMessages();
  // The focus starts on the first button of the view.
  EXPECT_EQ(r->FocusButton(), 0);
  Key(platform::VK_DOWN);
  Key(platform::VK_DOWN);
  Key(platform::VK_DOWN);
  EXPECT_EQ(r->FocusButton(), 3);
  Key(platform::VK_DOWN);  // the last one stays
  EXPECT_EQ(r->FocusButton(), 3);
  Key(platform::VK_UP);
  EXPECT_EQ(r->FocusButton(), 2);
  Key(platform::VK_RETURN);
  Key(platform::VK_RIGHT);
  EXPECT_EQ(r->CurrentTab(), 1);
  Key(platform::VK_RIGHT);
  Key(platform::VK_RIGHT);  // past the last tab: nothing
  Key(platform::VK_LEFT);
  EXPECT_EQ(r->CurrentTab(), 1);
  // The new view's first button has the mark.
  EXPECT_EQ(r->FocusButton(), 4);
  Key(platform::VK_UP);
  Key(platform::VK_RETURN);
  EXPECT_EQ(m_events, (Events{Pos(*r, A::ButMouse, 2, "ButtonClick", 102), "TabClick 1", "TabClick 2", "TabClick 1",
                              Pos(*r, A::ButMouse, 4, "ButtonClick", 104)}));
  // With a shift key held the arrows are left alone.
  platform::InjectKey(platform::VK_SHIFT, true);
  Key(platform::VK_LEFT);
  platform::InjectKey(platform::VK_SHIFT, false);
  platform::PumpMessages();
  EXPECT_EQ(r->CurrentTab(), 1);
}

TEST_F(RibbonTest, FocusMarkIsDrawnOnlyWhileTheRibbonHasTheFocus) {
  auto r = MakeFilled(Bag({{u"ShowButtonFocus", true}}));
  controls::RegisterControls();
  auto other = r->Parent()->AddControl(u"Morvantix.USButton", u"cmdOther");
  other->Move(0, 3000, 1200, 400);
  other->Visible(true);
  platform::PumpMessages();
  auto shot = [&] { return Pixels(platform::CaptureWindow(r->hWnd())); };
  other->SetFocus();
  platform::PumpMessages();
  const auto unfocused = shot();
  r->SetFocus();
  platform::PumpMessages();
  const auto focused = shot();
  // Only the mark differs, inside the first button.
  const RibbonElement& b = r->Element(A::ButMouse, 0);
  const platform::CapturedImage img = platform::CaptureWindow(r->hWnd());
  int32_t differing = 0;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) {
      const size_t i = static_cast<size_t>(y) * img.width() + x;
      if (focused[i] == unfocused[i]) continue;
      ++differing;
      EXPECT_TRUE(b.Contains(x, y)) << x << "," << y;
    }
  EXPECT_GT(differing, 20);
  other->SetFocus();
  platform::PumpMessages();
  EXPECT_EQ(shot(), unfocused);
  // Without ShowButtonFocus there is no mark even with the focus.
  r->ShowButtonFocus(false);
  r->SetFocus();
  platform::PumpMessages();
  EXPECT_EQ(shot(), unfocused);
}

TEST_F(RibbonTest, HotKeysClickTheButtonOfTheCurrentTab) {
  auto r = MakeFilled();
  Record(*r);
  r->AddButton(105, 11, u"Salvar && Sair");
  r->AddButton(106, 11, u"X");
  r->Refresh();
  auto alt = [](int vk) {
    platform::InjectKey(platform::VK_MENU, true);
    platform::InjectKeyPress(vk);
    platform::InjectKey(platform::VK_MENU, false);
    platform::PumpMessages();
  };
  alt('P');
  alt('S');  // "&&" marks no key
  alt('X');  // a single character is no hot key
  alt('T');  // "Tabela" is on another tab; "Recor&tar" is here
  EXPECT_EQ(m_events, (Events{Pos(*r, A::ButMouse, 1, "ButtonClick", 101), Pos(*r, A::ButMouse, 2, "ButtonClick", 102)}));
}

std::array<int, platform::kHandleTypeCount> Counts() {
  std::array<int, platform::kHandleTypeCount> out{};
  for (int t = 1; t < platform::kHandleTypeCount; ++t)
    out[static_cast<size_t>(t)] = platform::LiveHandleCount(static_cast<platform::HandleType>(t));
  return out;
}

// One run of a form with a USForm and a filled ribbon: shown, hovered, clicked, unloaded.
void RunFormWithChromeAndRibbon() {
  auto form = std::make_shared<host::Form>(u"frmBoth");
  form->Move(50 * 15.0f, host::Variant(50 * 15.0f), host::Variant(500 * 15.0f), host::Variant(300 * 15.0f));
  auto chrome = std::make_shared<USForm>();
  form->SiteControl(chrome, u"USForm1");
  host::PropertyBag empty;
  chrome->LoadFrom(empty, true);
  auto ribbon = std::make_shared<USRibbon>();
  form->SiteControl(ribbon, u"USRibbon1");
  ribbon->LoadFrom(empty, true);
  form->Show();
  platform::RunFor(20);
  ribbon->Move(0, 26 * 15.0f, 500 * 15.0f, 1500);
  FillStandard(*ribbon);
  ribbon->Refresh();
  const RibbonElement& button = ribbon->Element(RibbonArray::ButMouse, 0);
  platform::POINT screen{button.Left + 5, button.Top + 5};
  platform::ClientToScreen(ribbon->hWnd(), &screen);
  platform::InjectMouseMove(screen.x, screen.y);
  platform::InjectMouseButton(platform::MouseButton::Left, true);
  platform::InjectMouseButton(platform::MouseButton::Left, false);
  platform::InjectMouseMove(screen.x, screen.y + 200);
  platform::PumpMessages();
  form->Unload();
  // Subclass thunks are let go by a clean-up timer after release.
  platform::RunFor(500);
}

TEST_F(RibbonTest, HandlesAndTimersAreBackAfterAFormWithAUSFormAndARibbonUnloads) {
  // A first run registers the window classes the forms use once per thread; the counts are
  // taken after it.
  RunFormWithChromeAndRibbon();
  const auto before = Counts();
  const int timers = platform::ActiveTimerCount();
  RunFormWithChromeAndRibbon();
  EXPECT_EQ(Counts(), before);
  EXPECT_EQ(platform::ActiveTimerCount(), timers);
}

}  // namespace
}  // namespace mx::chrome::testing
