// Mouse tracking driven by injected input: the order of events against the window's own
// procedure, leave and cancel-mode, one tracking request per entry, the cursor, argument
// decoding, wheel, scroll and side buttons; and the capture arbiter's registry.
#include "frame/APIMouseEvents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/APICrossComm.h"
#include "platform/WindowTestSupport.h"

namespace mx::frame {
namespace {

using namespace mx::platform;
using platform::testing::Log;
using platform::testing::WindowingTest;

class APIMouseEventsTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    m_top = Make("top", WS_POPUP | WS_VISIBLE, 100, 100, 200, 150);
    m_child = Make("c", WS_CHILD | WS_VISIBLE, 20, 30, 60, 40, m_top);
    Only({WM_MOUSEMOVE, WM_MOUSELEAVE, WM_CANCELMODE, WM_MOUSEHOVER, WM_VSCROLL});
    Take();
    m_mouse.MouseMove.connect([this](int32_t, int32_t, int16_t b, int16_t s, int32_t x, int32_t y) {
      m_log.push_back("MouseMove " + std::to_string(b) + " " + std::to_string(s) + " " + std::to_string(x) + "," +
                      std::to_string(y));
    });
    m_mouse.MouseIn.connect([this] { m_log.push_back("MouseIn"); });
    m_mouse.MouseInParam.connect([this](int32_t, int32_t) { m_log.push_back("MouseInParam"); });
    m_mouse.MouseOut.connect([this] { m_log.push_back("MouseOut"); });
  }
  void TearDown() override {
    m_mouse.MouseMove.disconnect_all();
    m_mouse.MouseIn.disconnect_all();
    m_mouse.MouseInParam.disconnect_all();
    m_mouse.MouseOut.disconnect_all();
    WindowingTest::TearDown();
  }

  // Moves the pointer to a point of the child's client area and lets the queue run.
  void MoveInChild(int x, int y) {
    InjectMouseMove(120 + x, 130 + y);
    PumpMessages();
  }

  HWND m_top = 0;
  HWND m_child = 0;
  APIMouseEvents m_mouse;
};

TEST_F(APIMouseEventsTest, EntryRaisesMoveBeforeInAndBothBeforeTheWindowSeesTheMove) {
  m_mouse.Attach(m_child);
  EXPECT_TRUE(m_mouse.Outside());
  MoveInChild(5, 6);
  EXPECT_EQ(Take(), (Log{"MouseMove 0 0 5,6", "MouseIn", "MouseInParam", "c:MOUSEMOVE"}));
  EXPECT_TRUE(m_mouse.Tracking());
  EXPECT_FALSE(m_mouse.Outside());
  MoveInChild(7, 6);
  EXPECT_EQ(Take(), (Log{"MouseMove 0 0 7,6", "c:MOUSEMOVE"}));
}

TEST_F(APIMouseEventsTest, LeaveIsHandledHereAndCancelModeRaisesMouseOutAgain) {
  m_mouse.Attach(m_child);
  MoveInChild(5, 6);
  Take();
  InjectMouseMove(105, 105);  // over the parent, away from the child
  PumpMessages();
  // WM_MOUSELEAVE never reaches the window's own procedure.
  EXPECT_EQ(Take(), (Log{"top:MOUSEMOVE", "MouseOut"}));
  EXPECT_FALSE(m_mouse.Tracking());
  EXPECT_TRUE(m_mouse.Outside());
  // Cancel mode is heard after the window's own handling.
  SendMessage(m_child, WM_CANCELMODE, 0, 0);
  EXPECT_EQ(Take(), (Log{"c:CANCELMODE", "MouseOut"}));
}

TEST_F(APIMouseEventsTest, TrackingIsRequestedOncePerEntry) {
  m_mouse.Attach(m_child);
  MoveInChild(5, 6);
  RunFor(1000);
  MoveInChild(30, 20);  // far enough to leave the hover rectangle
  RunFor(1000);
  // Hover is a one-shot request: a second one would have come after the second rest.
  Log hovers;
  for (const std::string& e : Take())
    if (e == "c:MOUSEHOVER") hovers.push_back(e);
  EXPECT_EQ(hovers.size(), 1u);

  InjectMouseMove(105, 105);
  PumpMessages();
  MoveInChild(5, 6);
  RunFor(1000);
  Log after = Take();
  EXPECT_EQ(std::count(after.begin(), after.end(), "c:MOUSEHOVER"), 1);
}

TEST_F(APIMouseEventsTest, CursorIdReplacesTheWindowsPointerOnlyWhileInside) {
  On(WM_SETCURSOR, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    SetCursor(LoadCursor(0, IDC_IBEAM));
    r = TRUE;
    return true;
  });
  m_mouse.Attach(m_child);
  m_mouse.CursorID(IDC_HAND);
  // The set-cursor of the entry comes while the pointer still counts as outside.
  MoveInChild(5, 6);
  EXPECT_EQ(CursorId(GetCursor()), IDC_IBEAM);
  MoveInChild(6, 6);
  EXPECT_EQ(CursorId(GetCursor()), IDC_HAND);
  EXPECT_EQ(SendMessage(m_child, WM_SETCURSOR, m_child, HTCLIENT), 1);

  m_mouse.CursorID(0);
  MoveInChild(7, 6);
  EXPECT_EQ(CursorId(GetCursor()), IDC_IBEAM);
}

TEST_F(APIMouseEventsTest, DecodingKeepsXUnsignedAndYSigned) {
  struct Case {
    WPARAM w;
    int x, y;
    MouseArgs expected;
  };
  for (const Case& c : {
           Case{MK_LBUTTON | MK_MBUTTON | MK_CONTROL, 40000, -3, {5, 2, 40000, -3}},
           Case{MK_RBUTTON | MK_SHIFT, -1, -1, {2, 1, 65535, -1}},
           Case{MK_SHIFT | MK_CONTROL | MK_XBUTTON1, 32767, 32767, {0, 3, 32767, 32767}},
           Case{0, 0, -32768, {0, 0, 0, -32768}},
       }) {
    const MouseArgs a = DecodeMouseArgs(c.w, MAKELPARAM(c.x, c.y));
    EXPECT_EQ(a.Button, c.expected.Button) << c.x << "," << c.y;
    EXPECT_EQ(a.Shift, c.expected.Shift) << c.x << "," << c.y;
    EXPECT_EQ(a.X, c.expected.X) << c.x << "," << c.y;
    EXPECT_EQ(a.Y, c.expected.Y) << c.x << "," << c.y;
  }
}

TEST_F(APIMouseEventsTest, CapturedMoveAboveAndLeftOfTheWindow) {
  m_mouse.Attach(m_child);
  MoveInChild(5, 6);
  Take();
  SetCapture(m_child);
  InjectMouseMove(110, 120);  // 10 left of and 10 above the child
  PumpMessages();
  Log log = Take();
  ASSERT_FALSE(log.empty());
  EXPECT_EQ(log.front(), "MouseMove 0 0 65526,-10");
  ReleaseCapture();
}

TEST_F(APIMouseEventsTest, WheelScrollAndSideButtonsCarryTheirArguments) {
  std::vector<std::pair<int32_t, int32_t>> wheels, vscrolls;
  std::vector<std::string> sides;
  m_mouse.MouseWheel.connect([&](int32_t w, int32_t l) { wheels.emplace_back(w, l); });
  m_mouse.MouseVScrollEx.connect([&](int32_t w, int32_t l) {
    vscrolls.emplace_back(w, l);
    m_log.push_back("MouseVScrollEx");
  });
  m_mouse.MouseBackButtonClick.connect([&](int16_t s, int32_t x, int32_t y) {
    sides.push_back("back " + std::to_string(s) + " " + std::to_string(x) + "," + std::to_string(y));
  });
  m_mouse.MouseForwardButtonClick.connect([&](int16_t s, int32_t x, int32_t y) {
    sides.push_back("forward " + std::to_string(s) + " " + std::to_string(x) + "," + std::to_string(y));
  });
  WPARAM seenW = 0;
  LPARAM seenL = 0;
  On(WM_MOUSEWHEEL, [&](HWND, WPARAM w, LPARAM l, LRESULT&) {
    seenW = w;
    seenL = l;
    return false;
  });
  m_mouse.Attach(m_child);
  SetFocus(m_child);
  MoveInChild(5, 6);
  InjectWheel(-240);
  PumpMessages();
  ASSERT_EQ(wheels.size(), 1u);
  EXPECT_EQ(wheels[0].first, static_cast<int32_t>(seenW));
  EXPECT_EQ(wheels[0].second, static_cast<int32_t>(seenL));
  EXPECT_EQ(static_cast<int16_t>(HIWORD(seenW)), -240);
  InjectWheel(120, true);
  PumpMessages();
  EXPECT_EQ(wheels.size(), 2u);

  Take();
  SendMessage(m_child, WM_VSCROLL, 3, 77);
  EXPECT_EQ(Take(), (Log{"c:0x277", "MouseVScrollEx"}));
  EXPECT_EQ(vscrolls, (std::vector<std::pair<int32_t, int32_t>>{{3, 77}}));

  InjectMouseButton(MouseButton::X1, true);
  InjectMouseButton(MouseButton::X1, false);
  PumpMessages();
  RunFor(1000);  // no double click
  InjectMouseButton(MouseButton::X2, true);
  InjectMouseButton(MouseButton::X2, false);
  PumpMessages();
  EXPECT_EQ(sides, (std::vector<std::string>{"back 0 5,6", "forward 0 5,6"}));
}

TEST_F(APIMouseEventsTest, EndingTheTrackerGivesTheWindowItsProcedureBack) {
  const LONG original = GetWindowLong(m_child, GWL_WNDPROC);
  {
    APIMouseEvents mouse;
    mouse.Attach(0);
    EXPECT_EQ(mouse.Target(), 0u);
    EXPECT_FALSE(mouse.Outside());
    mouse.Attach(m_child);
    mouse.Attach(m_child);  // a second attach replaces the first subclass
    EXPECT_NE(GetWindowLong(m_child, GWL_WNDPROC), original);
    int ins = 0;
    mouse.MouseIn.connect([&] { ++ins; });
    MoveInChild(5, 6);
    EXPECT_EQ(ins, 1);
  }
  EXPECT_EQ(GetWindowLong(m_child, GWL_WNDPROC), original);
}

// ---- the capture arbiter -----------------------------------------------------------------------

class Party : public APIICrossComm {
 public:
  explicit Party(APICrossComm& arbiter) : m_arbiter(arbiter) {}
  APICrossComm* CrossTalkClass() override { return &m_arbiter; }
  void ReleaseMouseCapture() override { ++releases; }
  int releases = 0;

 private:
  APICrossComm& m_arbiter;
};

TEST(APICrossCommTest, TakingTheCaptureMakesTheHolderReleaseIt) {
  APICrossComm arbiter;
  Party a(arbiter), b(arbiter);
  arbiter.CapturedControl(&a);
  arbiter.CapturedControl(&a);
  EXPECT_EQ(a.releases, 0);
  arbiter.CapturedControl(&b);
  EXPECT_EQ(a.releases, 1);
  EXPECT_EQ(arbiter.CapturedControl(), &b);
  arbiter.CapturedControl(nullptr);
  EXPECT_EQ(b.releases, 1);
  EXPECT_EQ(arbiter.CapturedControl(), nullptr);
}

TEST(APICrossCommTest, RegistryStaysSortedAndGrowsAndShrinksByFive) {
  APICrossComm arbiter;
  std::vector<std::unique_ptr<Party>> parties;
  for (int i = 0; i < 12; ++i) parties.push_back(std::make_unique<Party>(arbiter));
  // Scrambled order in, ascending addresses out.
  const int order[] = {7, 2, 11, 0, 5, 9, 1, 10, 3, 8, 6, 4};
  std::vector<int32_t> capacities;
  for (int i : order) {
    arbiter.AddRef(parties[static_cast<size_t>(i)].get());
    capacities.push_back(arbiter.RefCapacity());
  }
  arbiter.AddRef(parties[3].get());
  arbiter.AddRef(nullptr);
  EXPECT_EQ(arbiter.RefCount(), 12);
  EXPECT_EQ(capacities, (std::vector<int32_t>{6, 6, 6, 6, 6, 6, 11, 11, 11, 11, 11, 16}));
  for (int32_t i = 1; i < arbiter.RefCount(); ++i)
    EXPECT_TRUE(std::less<APIICrossComm*>()(arbiter.RefAt(i - 1), arbiter.RefAt(i)));

  arbiter.CapturedControl(parties[4].get());
  arbiter.RemoveRef(parties[4].get());
  // Removal clears the capture without asking the holder to release.
  EXPECT_EQ(arbiter.CapturedControl(), nullptr);
  EXPECT_EQ(parties[4]->releases, 0);
  EXPECT_EQ(arbiter.RefCapacity(), 16);  // 5 spare
  arbiter.RemoveRef(parties[5].get());
  EXPECT_EQ(arbiter.RefCapacity(), 10);  // 6 spare: shrunk to the count
  arbiter.RemoveRef(parties[5].get());
  EXPECT_EQ(arbiter.RefCount(), 10);
}

TEST(APICrossCommTest, TokenStartsOnceAndIsGivenBackWithTheLastObject) {
  int starts = 0;
  std::vector<uintptr_t> stops;
  APICrossComm::BindTokenLibrary({[&] { return static_cast<uintptr_t>(++starts * 100); },
                                  [&](uintptr_t t) { stops.push_back(t); }});
  {
    APICrossComm arbiter;
    Party a(arbiter), b(arbiter);
    arbiter.AddRef(&a);
    arbiter.AddRef(&b);
    arbiter.ManageGDIToken(0);
    arbiter.ManageGDIToken(0);
    EXPECT_EQ(arbiter.gdiToken(), 100u);
    arbiter.RemoveRef(&a);
    EXPECT_TRUE(stops.empty());
    arbiter.RemoveRef(&b);
    EXPECT_EQ(stops, (std::vector<uintptr_t>{100}));
    EXPECT_EQ(arbiter.gdiToken(), 0u);
    EXPECT_EQ(arbiter.RefCapacity(), 0);
    arbiter.ManageGDIToken(0);
    EXPECT_EQ(arbiter.gdiToken(), 200u);
  }
  // An arbiter that ends gives its token back too.
  EXPECT_EQ(stops, (std::vector<uintptr_t>{100, 200}));
  APICrossComm::BindTokenLibrary({});
  APICrossComm unbound;
  unbound.ManageGDIToken(0);
  EXPECT_EQ(unbound.gdiToken(), 0u);
}

}  // namespace
}  // namespace mx::frame
