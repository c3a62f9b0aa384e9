// The frame on the parent: removal on the first show, the strips' places and heights, the
// caption buttons' slots, hover, tooltips and clicks, and the deferred unload.
#include "ChromeTestSupport.h"
#include "controls/Registration.h"

namespace mx::chrome::testing {
namespace {

using namespace platform;

TEST_F(ChromeTest, FirstShowRemovesTheFrameAndLaysOutTheStrips) {
  auto chrome = Make();
  ASSERT_TRUE(chrome->SubclassActive());
  const HWND form = FormOf(*chrome).hWnd();
  const DWORD style = static_cast<DWORD>(GetWindowLong(form, GWL_STYLE));
  EXPECT_EQ(style & (WS_CAPTION | WS_THICKFRAME | WS_POPUP), 0u);
  // Without resizing the system menu stays; both boxes follow the shown buttons.
  EXPECT_NE(style & WS_SYSMENU, 0u);
  EXPECT_NE(style & WS_MINIMIZEBOX, 0u);
  EXPECT_NE(style & WS_MAXIMIZEBOX, 0u);
  EXPECT_NE(GetWindowLong(form, GWL_EXSTYLE) & static_cast<LONG>(WS_EX_APPWINDOW), 0);
  // The window keeps its rectangle; its client area is now all of it.
  const RECT r = WindowRect(form);
  EXPECT_EQ(r.left, 100);
  EXPECT_EQ(r.width(), 400);
  RECT client{};
  GetClientRect(form, &client);
  EXPECT_EQ(client.right, 400);
  EXPECT_EQ(client.bottom, 240);

  // Caption strip across the top at the look's height; edges one BorderWidth thick.
  const RECT caption = WindowRect(chrome->hWnd());
  EXPECT_EQ(caption.left, 100);
  EXPECT_EQ(caption.top, 100);
  EXPECT_EQ(caption.width(), 400);
  EXPECT_EQ(caption.height(), 26);
  const RECT bottom = WindowRect(chrome->EdgeWindow(0));
  const RECT left = WindowRect(chrome->EdgeWindow(1));
  const RECT right = WindowRect(chrome->EdgeWindow(2));
  EXPECT_EQ(bottom.top, 339);
  EXPECT_EQ(bottom.width(), 400);
  EXPECT_EQ(left.width(), 1);
  EXPECT_EQ(left.height(), 240);
  EXPECT_EQ(right.left, 499);
}

TEST_F(ChromeTest, FrameStylesFollowResizeAndControlBox) {
  auto chrome = Make(Bag({{u"AllowResize", true}, {u"ShowControlBox", false}}));
  const DWORD style = static_cast<DWORD>(GetWindowLong(FormOf(*chrome).hWnd(), GWL_STYLE));
  EXPECT_EQ(style & WS_SYSMENU, 0u);
  EXPECT_EQ(style & (WS_MINIMIZEBOX | WS_MAXIMIZEBOX), 0u);
  // With no control box there is no button to find and the caption runs to 4 pixels from the
  // right.
  for (int x = 250; x < 400; x += 5) EXPECT_EQ(chrome->HitTestButton(x, 12), NoButton) << x;
  EXPECT_EQ(chrome->CaptionRect().right, 396);
}

TEST_F(ChromeTest, StripHeightAndBandFollowTheLook) {
  auto chrome = Make(Bag({{u"Theme", int32_t{0}}}));
  EXPECT_EQ(WindowRect(chrome->hWnd()).height(), 28);
  // Office edges are 3 pixels whatever BorderWidth says.
  EXPECT_EQ(WindowRect(chrome->EdgeWindow(1)).width(), 3);
  EXPECT_EQ(chrome->ButtonBandWidth(), 76);
  chrome->Theme(4);
  EXPECT_EQ(chrome->BackColor(), 0x5050C7u);
  EXPECT_EQ(chrome->BorderColorInactive(), 0x32327Bu);
  EXPECT_EQ(chrome->ForeColorDelimiter(), 0xA6BCF5u);
  // Setting an Office look keeps the colours of the one before.
  chrome->Theme(1);
  EXPECT_EQ(chrome->BackColor(), 0x5050C7u);
  EXPECT_EQ(chrome->GradientColor2(), 0xEDE8E5u);
  EXPECT_EQ(chrome->ForeColor(), 0x3B3B3Bu);
}

TEST_F(ChromeTest, WideBandSlotsCloseUpToTheRight) {
  auto chrome = Make();
  // Band of 137 at the right of a 400-pixel strip: slots at 263..307, 309..352, 354..397.
  struct Case {
    bool min, max, close;
    int32_t slot1, slot2, slot3;
  };
  const Case cases[] = {
      {true, true, true, MinimizeButton, MaximizeButton, CloseButton},
      {false, true, true, NoButton, MaximizeButton, CloseButton},
      {true, true, false, NoButton, MinimizeButton, MaximizeButton},
      {true, false, true, NoButton, MinimizeButton, CloseButton},
      {false, false, true, NoButton, NoButton, CloseButton},
      {false, true, false, NoButton, NoButton, MaximizeButton},
      {true, false, false, NoButton, NoButton, MinimizeButton},
  };
  for (const Case& c : cases) {
    chrome->ConfigureActionsButtons(c.min, c.max, c.close);
    EXPECT_EQ(chrome->HitTestButton(263, 12), c.slot1) << c.min << c.max << c.close;
    EXPECT_EQ(chrome->HitTestButton(330, 12), c.slot2) << c.min << c.max << c.close;
    EXPECT_EQ(chrome->HitTestButton(397, 12), c.slot3) << c.min << c.max << c.close;
    // The gap between slots and the rows outside the band hold nothing.
    EXPECT_EQ(chrome->HitTestButton(308, 12), NoButton);
    EXPECT_EQ(chrome->HitTestButton(397, 1), NoButton);
  }
  // The enable property counts after the slot has named its button.
  chrome->ConfigureActionsButtons(false, false, true);
  chrome->EnableCloseButton(false);
  EXPECT_EQ(chrome->HitTestButton(397, 12), NoButton);
  EXPECT_EQ(chrome->HitTestButton(330, 12), NoButton);
}

TEST_F(ChromeTest, OfficeSlotsAreFixedAndNeedEnableAndShow) {
  auto chrome = Make(Bag({{u"Theme", int32_t{0}}}));
  // Band of 76 at 324: minimise 326..345, maximise 349..369, close 374..394; rows 6..26.
  EXPECT_EQ(chrome->HitTestButton(326, 6), MinimizeButton);
  EXPECT_EQ(chrome->HitTestButton(369, 26), MaximizeButton);
  EXPECT_EQ(chrome->HitTestButton(374, 15), CloseButton);
  EXPECT_EQ(chrome->HitTestButton(347, 15), NoButton);
  EXPECT_EQ(chrome->HitTestButton(374, 27), NoButton);
  chrome->ShowMinimizeButton(false);
  chrome->EnableMaximizeButton(false);
  // Hidden buttons do not shift in this look.
  EXPECT_EQ(chrome->HitTestButton(330, 15), NoButton);
  EXPECT_EQ(chrome->HitTestButton(360, 15), NoButton);
  EXPECT_EQ(chrome->HitTestButton(380, 15), CloseButton);
}

TEST_F(ChromeTest, HoverSetsTheButtonAndItsTooltipAndLeavingClearsThem) {
  auto chrome = Make();
  const HWND strip = chrome->hWnd();
  MoveTo(strip, 280, 12);
  EXPECT_EQ(chrome->HoverButton(), MinimizeButton);
  EXPECT_EQ(chrome->ToolTipText(), u"Minimizar");
  MoveTo(strip, 330, 12);
  EXPECT_EQ(chrome->ToolTipText(), u"Maximizar");
  MoveTo(strip, 380, 12);
  EXPECT_EQ(chrome->HoverButton(), CloseButton);
  EXPECT_EQ(chrome->ToolTipText(), u"Fechar");
  MoveTo(strip, 100, 12);
  EXPECT_EQ(chrome->HoverButton(), NoButton);
  EXPECT_EQ(chrome->ToolTipText(), u"");
  MoveTo(strip, 380, 12);
  // Out of the strip altogether: the leave resets the hover.
  MoveTo(strip, 200, 120);
  RunFor(10);
  EXPECT_EQ(chrome->HoverButton(), NoButton);
}

TEST_F(ChromeTest, MaximizeAndRestoreToggleTheGlyphAndTooltip) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  ClickAt(chrome->hWnd(), 330, 12);
  RunFor(10);
  ASSERT_TRUE(IsZoomed(form));
  EXPECT_EQ(chrome->WindowSizeState(), SIZE_MAXIMIZED);
  EXPECT_EQ(chrome->MaximizeGlyph(), -2);
  // The maximised form covers the work area and leaves the task bar free.
  const RECT r = WindowRect(form);
  EXPECT_EQ(r.left, 0);
  EXPECT_EQ(r.top, 0);
  EXPECT_EQ(r.right, 1280);
  EXPECT_EQ(r.bottom, 760);
  // The strip followed the form's width; the middle button is where the band now puts it.
  EXPECT_EQ(WindowRect(chrome->hWnd()).width(), 1280);
  MoveTo(chrome->hWnd(), 1200, 12);
  MoveTo(chrome->hWnd(), 1190, 12);
  EXPECT_EQ(chrome->HoverButton(), MaximizeButton);
  EXPECT_EQ(chrome->ToolTipText(), u"Rest. tamanho");
  ClickAt(chrome->hWnd(), 1190, 12);
  RunFor(10);
  EXPECT_FALSE(IsZoomed(form));
  EXPECT_EQ(chrome->MaximizeGlyph(), MaximizeButton);
  EXPECT_EQ(WindowRect(form).width(), 400);
}

TEST_F(ChromeTest, MinimizeButtonMinimizesTheForm) {
  auto chrome = Make();
  ClickAt(chrome->hWnd(), 280, 12);
  RunFor(10);
  EXPECT_TRUE(IsIconic(FormOf(*chrome).hWnd()));
  EXPECT_EQ(chrome->WindowSizeState(), SIZE_MINIMIZED);
}

TEST_F(ChromeTest, CloseButtonUnloadsThroughTheDeferredTimer) {
  auto chrome = Make();
  host::Form& form = FormOf(*chrome);
  std::vector<int16_t> modes;
  form.QueryUnload.connect([&](int16_t&, int16_t& mode) { modes.push_back(mode); });
  ClickAt(chrome->hWnd(), 380, 12);
  // Inside the click nothing is unloaded: the subclass is only marked off.
  EXPECT_TRUE(form.IsLoaded());
  EXPECT_FALSE(chrome->SubclassActive());
  EXPECT_TRUE(modes.empty());
  RunFor(20);
  EXPECT_FALSE(form.IsLoaded());
  EXPECT_EQ(modes, std::vector<int16_t>{host::vbFormCode});
  EXPECT_TRUE(host::Forms().empty());
}

TEST_F(ChromeTest, SystemCloseGoesToUnloadMeAndARefusalKeepsTheFrameWorking) {
  auto chrome = Make();
  host::Form& form = FormOf(*chrome);
  int refusals = 1;
  form.QueryUnload.connect([&](int16_t& cancel, int16_t&) {
    if (refusals-- > 0) cancel = 1;
  });
  // The default close would unload at once through WM_CLOSE: the control takes it instead.
  SendMessageW(form.hWnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(form.IsLoaded());
  RunFor(30);
  // Refused: the form stays and the subclass comes back through TimerSubClass.
  ASSERT_TRUE(form.IsLoaded());
  EXPECT_TRUE(chrome->SubclassActive());
  MoveTo(chrome->hWnd(), 380, 12);
  EXPECT_EQ(chrome->HoverButton(), CloseButton);
  ClickAt(chrome->hWnd(), 380, 12);
  RunFor(30);
  EXPECT_FALSE(form.IsLoaded());
}

TEST_F(ChromeTest, ActivationRepaintsAndRaisesFormActivated) {
  auto chrome = Make();
  std::vector<bool> seen;
  chrome->FormActivated.connect([&](bool active) { seen.push_back(active); });
  auto other = std::make_shared<host::Form>(u"frmOther");
  m_forms.push_back(other);
  other->Show();
  PumpMessages();
  EXPECT_FALSE(chrome->FormActive());
  SetActiveWindow(FormOf(*chrome).hWnd());
  PumpMessages();
  EXPECT_TRUE(chrome->FormActive());
  EXPECT_EQ(seen, (std::vector<bool>{false, true}));
}

}  // namespace
}  // namespace mx::chrome::testing

namespace mx::chrome::testing {
namespace {

using namespace platform;

// The example form, read through the class registry as a host loads it.
TEST_F(ChromeTest, ExampleFormLoadsWithItsFrame) {
  controls::RegisterControls();
  auto form = host::LoadFormFile(std::string(MX_SOURCE_DIR) + "/examples/chrome.frm");
  m_forms.push_back(form);
  auto chrome = std::dynamic_pointer_cast<USForm>(form->FindControl(u"USForm1"));
  ASSERT_NE(chrome, nullptr);
  EXPECT_TRUE(chrome->AllowResize());
  EXPECT_TRUE(chrome->Font()->Bold());
  form->Show();
  RunFor(20);
  EXPECT_TRUE(chrome->SubclassActive());
  EXPECT_EQ(GetWindowLong(form->hWnd(), GWL_STYLE) & static_cast<LONG>(WS_CAPTION), 0);
  EXPECT_EQ(WindowRect(chrome->hWnd()).height(), 26);
  ASSERT_NE(form->FindControl(u"cmdSave"), nullptr);
}

}  // namespace
}  // namespace mx::chrome::testing
