// Tooltips on the virtual clock: the messages Create sends and their order, what waits for the
// next Create, one window per APITooltip, the delay and display times, what hides a tip, and
// golden pictures of the standard and balloon shapes with a title and each icon.
#include "frame/APITooltip.h"

#include "frame/APIMouseEvents.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/SysColors.h"
#include "platform/WindowTestSupport.h"
#include "support/Golden.h"

namespace mx::frame {
namespace {

using namespace mx::platform;
using platform::testing::WindowingTest;

class APITooltipTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    m_record = false;
    // A grey form, so that the pictures show a tip's outline against something.
    On(WM_ERASEBKGND, [](HWND h, WPARAM w, LPARAM, LRESULT& r) {
      RECT rc{};
      GetClientRect(h, &rc);
      HBRUSH brush = CreateSolidBrush(RGB(160, 160, 160));
      FillRect(static_cast<HDC>(w), &rc, brush);
      DeleteObject(brush);
      r = 1;
      return true;
    });
    m_form = Make("form", WS_POPUP | WS_VISIBLE, 100, 100, 300, 200);
    m_button = Make("btn", WS_CHILD | WS_VISIBLE, 20, 20, 100, 30, m_form);
    InjectMouseMove(5, 5);  // far from the form
    PumpMessages();
  }
  void TearDown() override {
    if (m_hook) UnhookWindowsHookEx(m_hook);
    WindowingTest::TearDown();
  }

  // Records every message of WM_USER and above sent to a tip window, as "number:wParam".
  void RecordTipMessages() {
    m_hook = SetWindowsHookEx(WH_CALLWNDPROC, [this](int code, WPARAM w, LPARAM l) {
      const auto* cwp = reinterpret_cast<const CWPSTRUCT*>(l);
      if (cwp->message >= WM_USER && GetClassNameString(cwp->hwnd) == kTooltipClassName)
        m_sent.push_back(std::to_string(cwp->message - WM_USER) + ":" + std::to_string(cwp->wParam));
      return CallNextHookEx(m_hook, code, w, l);
    });
  }

  static int TipWindowCount() {
    int n = 0;
    for (HWND h = FindWindowEx(0, 0, kTooltipClassName, nullptr); h; h = FindWindowEx(0, h, kTooltipClassName, nullptr))
      ++n;
    return n;
  }

  // Puts the pointer on the button and lets the queue take the move.
  static void PointAtButton(int x = 150, int y = 135) {
    InjectMouseMove(x, y);
    PumpMessages();
  }

  HWND m_form = 0;
  HWND m_button = 0;
  HHOOK m_hook = 0;
  std::vector<std::string> m_sent;
};

TEST_F(APITooltipTest, CreateSendsItsMessagesInOrder) {
  RecordTipMessages();
  APITooltip tip;
  tip.TipText(u"Salvar");
  tip.Icon(Icon_Info);
  tip.Title(u"Arquivo");
  ASSERT_TRUE(tip.Create(m_button));
  // Add the tool, title with its icon, text and back colours, display time, then the delay.
  EXPECT_EQ(m_sent, (std::vector<std::string>{"4:0", "32:1", "20:0", "19:0", "3:2", "3:3"}));
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 5000);
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETDELAYTIME, TTDT_INITIAL, 0), 500);
  const TooltipSnapshot s = InspectTooltip(tip.hWnd());
  EXPECT_EQ(s.text, u"Salvar");
  EXPECT_EQ(s.title, u"Arquivo");
  EXPECT_EQ(s.icon, TTI_INFO);
  EXPECT_FALSE(s.balloon);
}

TEST_F(APITooltipTest, NoTitleMessageWithoutTitleOrIcon) {
  RecordTipMessages();
  APITooltip tip;
  tip.TipText(u"Salvar");
  ASSERT_TRUE(tip.Create(m_button));
  EXPECT_EQ(m_sent, (std::vector<std::string>{"4:0", "20:0", "19:0", "3:2", "3:3"}));

  // On a live tip the title goes out only when both a title and an icon are there.
  m_sent.clear();
  tip.Icon(Icon_Error);
  EXPECT_TRUE(m_sent.empty());
  tip.Title(u"Erro");
  EXPECT_EQ(m_sent, (std::vector<std::string>{"32:3"}));
  m_sent.clear();
  tip.Icon(No_Icon);
  tip.Title(u"Outro");
  EXPECT_TRUE(m_sent.empty());
  EXPECT_EQ(InspectTooltip(tip.hWnd()).title, u"Erro");
}

TEST_F(APITooltipTest, TimesStyleAndCentringWaitForTheNextCreate) {
  APITooltip tip;
  tip.TipText(u"x");
  ASSERT_TRUE(tip.Create(m_button));
  const HWND first = tip.hWnd();
  tip.VisibleTime(900);
  tip.DelayTime(50);
  tip.Style(ToolTip_Balloon);
  EXPECT_EQ(SendMessage(first, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 5000);
  EXPECT_EQ(SendMessage(first, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 500);
  EXPECT_FALSE(InspectTooltip(first).balloon);
  ASSERT_TRUE(tip.Create(m_button));
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 900);
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETDELAYTIME, TTDT_INITIAL, 0), 50);
  EXPECT_TRUE(InspectTooltip(tip.hWnd()).balloon);
}

TEST_F(APITooltipTest, ColoursAndTextReachALiveTipAtOnce) {
  APITooltip tip;
  tip.TipText(u"antes");
  ASSERT_TRUE(tip.Create(m_button));
  tip.BackColor(host::vbInfoBackground);
  tip.ForeColor(0x0000FF);
  tip.TipText(u"depois \u00e9");
  const TooltipSnapshot s = InspectTooltip(tip.hWnd());
  EXPECT_EQ(s.backColor, GetSysColor(COLOR_INFOBK));
  EXPECT_EQ(s.textColor, 0x0000FFu);
  EXPECT_EQ(s.text, u"depois \u00e9");
}

TEST_F(APITooltipTest, TwoCreatesLeaveOneWindowAndDestroyNone) {
  const LONG original = GetWindowLong(m_button, GWL_WNDPROC);
  APITooltip tip;
  tip.TipText(u"x");
  ASSERT_TRUE(tip.Create(m_button));
  const HWND first = tip.hWnd();
  ASSERT_TRUE(tip.Create(m_button));
  EXPECT_FALSE(IsWindow(first));
  EXPECT_EQ(TipWindowCount(), 1);
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETTOOLCOUNT, 0, 0), 1);
  tip.Destroy();
  EXPECT_EQ(tip.hWnd(), 0u);
  EXPECT_EQ(TipWindowCount(), 0);
  // The tip's watch on the button has ended too.
  EXPECT_EQ(GetWindowLong(m_button, GWL_WNDPROC), original);
  // A later setter finds no window and sends nothing.
  tip.BackColor(0xFF);
  tip.TipText(u"y");
  EXPECT_EQ(TipWindowCount(), 0);
}

TEST_F(APITooltipTest, CreateForAGoneOwnerFailsQuietly) {
  APITooltip tip;
  HWND gone = Make("gone", WS_POPUP, 0, 0, 5, 5);
  DestroyWindow(gone);
  EXPECT_FALSE(tip.Create(gone));
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETTOOLCOUNT, 0, 0), 0);
}

TEST_F(APITooltipTest, TipAppearsAfterTheDelayAndGoesAfterTheDisplayTime) {
  APITooltip tip;
  tip.TipText(u"Salvar");
  tip.VisibleTime(2000);
  ASSERT_TRUE(tip.Create(m_button));
  const HWND h = tip.hWnd();
  PointAtButton();
  RunFor(499);
  EXPECT_FALSE(IsWindowVisible(h));
  RunFor(1);
  ASSERT_TRUE(IsWindowVisible(h));
  RECT r{};
  GetWindowRect(h, &r);
  // Below the pointer, clear of the arrow.
  EXPECT_EQ(r.left, 150);
  EXPECT_EQ(r.top, 155);
  // The tip does not take activation from the form.
  EXPECT_EQ(GetActiveWindow(), m_form);

  RunFor(1999);
  EXPECT_TRUE(IsWindowVisible(h));
  RunFor(1);
  EXPECT_FALSE(IsWindowVisible(h));
  // Resting on the tool does not bring it back...
  PointAtButton(152, 135);
  RunFor(3000);
  EXPECT_FALSE(IsWindowVisible(h));
  // ...leaving and coming back does.
  PointAtButton(400, 400);
  RunFor(200);
  PointAtButton();
  RunFor(500);
  EXPECT_TRUE(IsWindowVisible(h));
}

TEST_F(APITooltipTest, MovingRestartsTheDelay) {
  APITooltip tip;
  tip.TipText(u"Salvar");
  ASSERT_TRUE(tip.Create(m_button));
  PointAtButton(150, 135);
  RunFor(300);
  PointAtButton(160, 135);
  RunFor(300);
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));
  RunFor(200);
  EXPECT_TRUE(IsWindowVisible(tip.hWnd()));
}

TEST_F(APITooltipTest, LeavingOrClickingHidesTheTip) {
  APITooltip tip;
  tip.TipText(u"Salvar");
  ASSERT_TRUE(tip.Create(m_button));
  PointAtButton();
  RunFor(500);
  ASSERT_TRUE(IsWindowVisible(tip.hWnd()));
  // Onto the form beside the button: the tool hears nothing, the tip's own look-out notices.
  PointAtButton(110, 110);
  RunFor(100);
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));

  PointAtButton();
  RunFor(500);
  ASSERT_TRUE(IsWindowVisible(tip.hWnd()));
  InjectClick();
  PumpMessages();
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));
  RunFor(1000);
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));
}

TEST_F(APITooltipTest, ToolThatGoesTakesItsToolAway) {
  APITooltip tip;
  tip.TipText(u"Salvar");
  ASSERT_TRUE(tip.Create(m_button));
  PointAtButton();
  RunFor(500);
  ASSERT_TRUE(IsWindowVisible(tip.hWnd()));
  DestroyWindow(m_button);
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));
  EXPECT_EQ(SendMessage(tip.hWnd(), TTM_GETTOOLCOUNT, 0, 0), 0);
  EXPECT_TRUE(RunUntilIdle(10000));
}

TEST_F(APITooltipTest, CentredTipHangsBelowTheMiddleOfTheTool) {
  APITooltip tip;
  tip.TipText(u"Salvar");
  tip.Centered(true);
  ASSERT_TRUE(tip.Create(m_button));
  PointAtButton(125, 125);
  RunFor(500);
  RECT r{};
  GetWindowRect(tip.hWnd(), &r);
  EXPECT_EQ((r.left + r.right) / 2, 170);  // the button spans 120..220
  EXPECT_EQ(r.top, 150);
}

TEST_F(APITooltipTest, TipAndMouseTrackerShareTheButton) {
  // The order of a button's Show: the tracker first, then the tip, made twice.
  APIMouseEvents mouse;
  mouse.Attach(m_button);
  int ins = 0, outs = 0;
  mouse.MouseIn.connect([&] { ++ins; });
  mouse.MouseOut.connect([&] { ++outs; });
  APITooltip tip;
  tip.TipText(u"Salvar");
  ASSERT_TRUE(tip.Create(m_button));
  ASSERT_TRUE(tip.Create(m_button));
  PointAtButton();
  RunFor(500);
  EXPECT_TRUE(IsWindowVisible(tip.hWnd()));
  PointAtButton(110, 110);
  RunFor(100);
  EXPECT_FALSE(IsWindowVisible(tip.hWnd()));
  EXPECT_EQ(ins, 1);
  EXPECT_EQ(outs, 1);
  mouse.MouseIn.disconnect_all();
  mouse.MouseOut.disconnect_all();
}

// ---- pictures ------------------------------------------------------------------------------------

// Shows a tip and returns the screen around it (2 pixels of desktop on each side).
void ExpectTipGolden(APITooltip& tip, HWND tool, const std::string& name) {
  ASSERT_TRUE(tip.Create(tool));
  InjectMouseMove(150, 135);
  PumpMessages();
  RunFor(500);
  ASSERT_TRUE(IsWindowVisible(tip.hWnd()));
  PumpMessages();  // paints
  RECT r{};
  GetWindowRect(tip.hWnd(), &r);
  const CapturedImage screen = CaptureScreen();
  const int w = r.width() + 4, h = r.height() + 4;
  std::vector<uint32_t> px;
  for (int y = r.top - 2; y < r.bottom + 2; ++y)
    for (int x = r.left - 2; x < r.right + 2; ++x) px.push_back(screen.pixel(x, y));
  mx::test::ExpectGolden("frame", name, w, h, px);
}

TEST_F(APITooltipTest, StandardTipWithTitleAndInfoIcon) {
  APITooltip tip;
  tip.TipText(u"Grava o arquivo\nno disco");
  tip.Title(u"Salvar");
  tip.Icon(Icon_Info);
  tip.BackColor(host::vbInfoBackground);
  tip.ForeColor(host::vbInfoText);
  ExpectTipGolden(tip, m_button, "tooltip_standard_info");
}

TEST_F(APITooltipTest, BalloonTipWithTitleAndWarningIcon) {
  APITooltip tip;
  tip.Style(ToolTip_Balloon);
  tip.TipText(u"O arquivo j\u00e1 existe");
  tip.Title(u"Aten\u00e7\u00e3o");
  tip.Icon(Icon_Warning);
  tip.BackColor(0xE1FFFF);
  tip.ForeColor(0x000000);
  ExpectTipGolden(tip, m_button, "tooltip_balloon_warning");
}

TEST_F(APITooltipTest, BalloonTipWithErrorIconAndNoTitle) {
  APITooltip tip;
  tip.Style(ToolTip_Balloon);
  tip.TipText(u"Falhou");
  tip.Icon(Icon_Error);
  tip.BackColor(0xFFFFFF);
  tip.ForeColor(0x404040);
  ExpectTipGolden(tip, m_button, "tooltip_balloon_error");
}

TEST_F(APITooltipTest, ShowingAndPaintingReleaseTheirObjects) {
  const HandleType kinds[] = {HandleType::Brush, HandleType::Pen, HandleType::Font, HandleType::Region,
                              HandleType::DC};
  std::vector<int> before;
  for (HandleType k : kinds) before.push_back(LiveHandleCount(k));
  {
    APITooltip tip;
    tip.Style(ToolTip_Balloon);
    tip.TipText(u"Salvar");
    tip.Title(u"Arquivo");
    tip.Icon(Icon_Error);
    ASSERT_TRUE(tip.Create(m_button));
    PointAtButton();
    RunFor(500);
    PumpMessages();
    ASSERT_TRUE(IsWindowVisible(tip.hWnd()));
  }
  for (size_t i = 0; i < std::size(kinds); ++i) EXPECT_EQ(LiveHandleCount(kinds[i]), before[i]) << i;
}

}  // namespace
}  // namespace mx::frame
