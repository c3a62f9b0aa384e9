// Injected input: mouse routing, capture, tracking (leave and hover), double clicks, focus and
// activation, keys and characters, the wheel, and the caption drag.
#include "WindowTestSupport.h"

namespace mx::platform {
namespace {

using testing::Log;
using testing::WindowingTest;

class InputTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    // Two top-level windows side by side; the left one has a child in its corner.
    m_left = Make("left", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100);
    m_kid = Make("kid", WS_CHILD | WS_VISIBLE, 10, 10, 30, 30, m_left);
    m_right = Make("right", WS_POPUP | WS_VISIBLE, 200, 0, 100, 100);
    PumpMessages();
    Take();
  }
  // Messages with their wParam and lParam, for the ones a test asks about.
  void Capture(UINT m) {
    On(m, [this, m](HWND h, WPARAM wp, LPARAM lp, LRESULT&) {
      m_args.push_back({h, m, wp, lp});
      return false;
    });
  }
  void Move(int x, int y) {
    InjectMouseMove(x, y);
    PumpMessages();
  }
  HWND m_left = 0, m_kid = 0, m_right = 0;
  struct Args {
    HWND hwnd;
    UINT msg;
    WPARAM wp;
    LPARAM lp;
  };
  std::vector<Args> m_args;
};

TEST_F(InputTest, MouseGoesToTheWindowUnderThePointInClientCoordinates) {
  Only({WM_NCHITTEST, WM_SETCURSOR, WM_MOUSEMOVE, WM_NCMOUSEMOVE});
  Capture(WM_MOUSEMOVE);
  InjectKey(VK_SHIFT, true);
  Move(25, 30);
  EXPECT_EQ(Take(), (Log{"kid:NCHITTEST", "kid:SETCURSOR", "left:SETCURSOR", "kid:MOUSEMOVE"}));
  ASSERT_EQ(m_args.size(), 1u);
  EXPECT_EQ(m_args[0].hwnd, m_kid);
  EXPECT_EQ(m_args[0].lp, MAKELPARAM(15, 20));
  EXPECT_EQ(m_args[0].wp, MK_SHIFT);
  POINT p;
  GetCursorPos(&p);
  EXPECT_EQ(p, (POINT{25, 30}));

  // A procedure that claims the non-client area gets non-client messages in screen coordinates.
  On(WM_NCHITTEST, [this](HWND h, WPARAM, LPARAM, LRESULT& r) {
    if (h != m_right) return false;
    r = HTCAPTION;
    return true;
  });
  Capture(WM_NCMOUSEMOVE);
  Move(250, 5);
  ASSERT_EQ(m_args.size(), 2u);
  EXPECT_EQ(m_args[1].msg, WM_NCMOUSEMOVE);
  EXPECT_EQ(m_args[1].wp, static_cast<WPARAM>(HTCAPTION));
  EXPECT_EQ(m_args[1].lp, MAKELPARAM(250, 5));
}

TEST_F(InputTest, CaptureRoutesEverythingAndReportsItsLoss) {
  Only({WM_CAPTURECHANGED, WM_LBUTTONUP});
  Capture(WM_LBUTTONUP);
  Capture(WM_CAPTURECHANGED);
  EXPECT_EQ(SetCapture(m_left), 0u);
  InjectMouseMove(250, 50);
  InjectMouseButton(MouseButton::Left, true);
  InjectMouseButton(MouseButton::Left, false);
  PumpMessages();
  ASSERT_EQ(m_args.size(), 1u);
  EXPECT_EQ(m_args[0].hwnd, m_left);
  EXPECT_EQ(m_args[0].lp, MAKELPARAM(250, 50));  // far outside the client area, still its own

  EXPECT_EQ(SetCapture(m_right), m_left);
  EXPECT_EQ(m_args.back().hwnd, m_left);
  EXPECT_EQ(m_args.back().lp, static_cast<LPARAM>(m_right));  // who took it
  ReleaseCapture();
  EXPECT_EQ(m_args.back().hwnd, m_right);
  EXPECT_EQ(m_args.back().lp, 0);
  EXPECT_EQ(GetCapture(), 0u);

  SetCapture(m_kid);
  Take();
  DestroyWindow(m_kid);
  EXPECT_EQ(Take(), (Log{"kid:CAPTURECHANGED"}));
  EXPECT_EQ(GetCapture(), 0u);
}

TEST_F(InputTest, MouseLeaveWhenThePointerGoesElsewhere) {
  Only({WM_MOUSELEAVE});
  auto track = [](HWND h) {
    TRACKMOUSEEVENT tme;
    tme.dwFlags = TME_LEAVE;
    tme.hwndTrack = h;
    return TrackMouseEvent(&tme);
  };
  Move(60, 60);
  EXPECT_TRUE(track(m_left));
  Move(70, 70);
  EXPECT_TRUE(Take().empty());
  Move(20, 20);  // into the child: the parent is left
  EXPECT_EQ(Take(), (Log{"left:MOUSELEAVE"}));
  Move(21, 21);
  EXPECT_TRUE(Take().empty());  // a leave comes once per request

  track(m_kid);
  Move(250, 50);
  EXPECT_EQ(Take(), (Log{"kid:MOUSELEAVE"}));
  // Onto the bare desktop, where no window of ours is.
  Move(260, 50);
  track(m_right);
  Move(150, 400);
  EXPECT_EQ(Take(), (Log{"right:MOUSELEAVE"}));
  Move(250, 50);
  // Asking while the pointer is elsewhere gets the leave at once.
  track(m_left);
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"left:MOUSELEAVE"}));

  // Under capture the pointer stays with the capturing window; the leave comes on release.
  track(m_right);
  SetCapture(m_right);
  Move(50, 50);
  EXPECT_TRUE(Take().empty());
  ReleaseCapture();
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"right:MOUSELEAVE"}));

  // Query and cancel.
  Move(60, 60);
  track(m_left);
  TRACKMOUSEEVENT q;
  q.dwFlags = TME_QUERY;
  EXPECT_TRUE(TrackMouseEvent(&q));
  EXPECT_EQ(q.hwndTrack, m_left);
  EXPECT_EQ(q.dwFlags, TME_LEAVE);
  TRACKMOUSEEVENT c;
  c.dwFlags = TME_LEAVE | TME_CANCEL;
  c.hwndTrack = m_left;
  TrackMouseEvent(&c);
  Move(250, 50);
  EXPECT_TRUE(Take().empty());
}

TEST_F(InputTest, HoverAfterRestingForTheHoverTime) {
  Capture(WM_MOUSEHOVER);
  Move(50, 50);
  const uint64_t start = GetTickCount64();
  TRACKMOUSEEVENT tme;
  tme.dwFlags = TME_HOVER | TME_LEAVE;
  tme.hwndTrack = m_left;
  tme.dwHoverTime = HOVER_DEFAULT;
  TrackMouseEvent(&tme);
  RunFor(300);
  Move(52, 48);  // inside the 4 x 4 hover rectangle: the clock keeps running
  RunFor(99);
  EXPECT_TRUE(m_args.empty());
  RunFor(1);
  ASSERT_EQ(m_args.size(), 1u);
  EXPECT_EQ(GetTickCount64() - start, 400u);
  EXPECT_EQ(m_args[0].lp, MAKELPARAM(52, 48));

  // Hover comes once per request; a move out of the rectangle starts the time again.
  RunFor(1000);
  EXPECT_EQ(m_args.size(), 1u);
  tme.dwHoverTime = 100;
  TrackMouseEvent(&tme);
  RunFor(60);
  Move(55, 48);
  RunFor(60);
  EXPECT_EQ(m_args.size(), 1u);
  EXPECT_TRUE(RunUntilIdle());
  ASSERT_EQ(m_args.size(), 2u);
  EXPECT_EQ(m_args[1].lp, MAKELPARAM(55, 48));
}

TEST_F(InputTest, DoubleClicksNeedTheClassStyleTimeAndPlace) {
  Only({WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN});
  Move(50, 50);
  auto click = [](MouseButton b = MouseButton::Left) {
    InjectClick(b);
    PumpMessages();
  };
  click();
  AdvanceVirtualClock(500);
  click();
  click();  // a third click starts over
  EXPECT_EQ(Take(), (Log{"left:LBUTTONDOWN", "left:LBUTTONDBLCLK", "left:LBUTTONDOWN"}));

  AdvanceVirtualClock(501);
  click();
  EXPECT_EQ(Take(), (Log{"left:LBUTTONDOWN"}));  // too slow
  Move(53, 50);
  click();
  EXPECT_EQ(Take(), (Log{"left:LBUTTONDOWN"}));  // too far: more than 2 pixels
  Move(51, 52);
  click(MouseButton::Right);
  click();
  EXPECT_EQ(Take(), (Log{"left:RBUTTONDOWN", "left:LBUTTONDOWN"}));  // another button between

  // The two side buttons share their messages: one of each is two presses, not a double click.
  Only({WM_XBUTTONDOWN, WM_XBUTTONDBLCLK});
  AdvanceVirtualClock(1000);
  click(MouseButton::X1);
  click(MouseButton::X2);
  click(MouseButton::X2);
  EXPECT_EQ(Take(), (Log{"left:XBUTTONDOWN", "left:XBUTTONDOWN", "left:XBUTTONDBLCLK"}));
  Only({WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN});

  // Without CS_DBLCLKS two quick clicks are two downs.
  RegisterWindowClass(u"Plain", [this](HWND h, UINT m, WPARAM w, LPARAM l) { return Proc(h, m, w, l); });
  HWND plain = CreateWindowEx(0, u"Plain", u"plain", WS_POPUP | WS_VISIBLE, 400, 0, 50, 50, 0);
  m_names[plain] = "plain";
  Move(420, 20);
  click();
  click();
  EXPECT_EQ(Take(), (Log{"plain:LBUTTONDOWN", "plain:LBUTTONDOWN"}));
}

TEST_F(InputTest, FocusAndActivationMessages) {
  EXPECT_EQ(GetActiveWindow(), m_right);  // the last window shown
  Only({WM_ACTIVATE, WM_NCACTIVATE, WM_SETFOCUS, WM_KILLFOCUS});
  Capture(WM_SETFOCUS);
  Capture(WM_KILLFOCUS);
  SetFocus(m_kid);
  EXPECT_EQ(Take(), (Log{"right:NCACTIVATE", "right:ACTIVATE", "left:NCACTIVATE", "left:ACTIVATE", "right:KILLFOCUS",
                         "left:SETFOCUS", "left:KILLFOCUS", "kid:SETFOCUS"}));
  EXPECT_EQ(GetFocus(), m_kid);
  EXPECT_EQ(m_args.back().wp, static_cast<WPARAM>(m_left));  // WM_SETFOCUS names the loser
  EXPECT_EQ(GetActiveWindow(), m_left);

  // A click on the other window activates it, with WA_CLICKACTIVE.
  Only({WM_MOUSEACTIVATE, WM_ACTIVATE, WM_LBUTTONDOWN});
  Capture(WM_ACTIVATE);
  m_args.clear();
  Move(250, 50);
  InjectClick();
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"right:MOUSEACTIVATE", "left:ACTIVATE", "right:ACTIVATE", "right:LBUTTONDOWN"}));
  auto activate = std::find_if(m_args.rbegin(), m_args.rend(), [](const Args& a) { return a.msg == WM_ACTIVATE; });
  ASSERT_NE(activate, m_args.rend());
  EXPECT_EQ(activate->hwnd, m_right);
  EXPECT_EQ(LOWORD(activate->wp), WA_CLICKACTIVE);
  EXPECT_EQ(activate->lp, static_cast<LPARAM>(m_left));  // the window that lost activation
  EXPECT_EQ(GetFocus(), m_right);

  // MA_NOACTIVATEANDEAT keeps activation where it is and swallows the click.
  On(WM_MOUSEACTIVATE, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    r = MA_NOACTIVATEANDEAT;
    return true;
  });
  Move(60, 60);
  InjectClick();
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"left:MOUSEACTIVATE"}));
  EXPECT_EQ(GetActiveWindow(), m_right);

  // A disabled window beeps instead of taking the click.
  m_handlers.erase(WM_MOUSEACTIVATE);
  EnableWindow(m_left, FALSE);
  const int beeps = MessageBeepCount();
  InjectClick();
  PumpMessages();
  EXPECT_EQ(MessageBeepCount(), beeps + 1);
  EXPECT_TRUE(Take().empty());
}

TEST_F(InputTest, KeysCharactersAndKeyState) {
  SetFocus(m_kid);
  Capture(WM_KEYDOWN);
  Capture(WM_KEYUP);
  Capture(WM_CHAR);
  Capture(WM_SYSKEYDOWN);
  Capture(WM_SYSCHAR);
  InjectKey('A', true);
  // The asynchronous state moves at once; the queue's state only when the message is taken.
  EXPECT_TRUE(GetAsyncKeyState('A') & 0x8000);
  EXPECT_FALSE(GetKeyState('A') & 0x8000);
  PumpMessages();
  EXPECT_TRUE(GetKeyState('A') & 0x8000);
  InjectKey('A', true);  // auto-repeat
  InjectKey('A', false);
  InjectKey(VK_SHIFT, true);
  InjectKeyPress('A');
  InjectKeyPress('2');
  InjectKey(VK_SHIFT, false);
  PumpMessages();
  std::u16string chars;
  for (auto& a : m_args)
    if (a.msg == WM_CHAR) chars.push_back(static_cast<char16_t>(a.wp));
  EXPECT_EQ(chars, u"aaA@");
  EXPECT_EQ(m_args[0].msg, WM_KEYDOWN);
  EXPECT_EQ(m_args[0].hwnd, m_kid);
  EXPECT_EQ(m_args[0].lp, 0x001E0001);  // repeat 1, scan code 30
  EXPECT_EQ(m_args[2].msg, WM_KEYDOWN);
  EXPECT_EQ(m_args[2].lp, 0x401E0001);  // previous state down
  EXPECT_EQ(m_args[4].msg, WM_KEYUP);
  EXPECT_EQ(static_cast<uint32_t>(m_args[4].lp), 0xC01E0001u);
  EXPECT_FALSE(GetKeyState(VK_SHIFT) & 0x8000);

  // Alt turns keys into system keys with the context bit, and characters into WM_SYSCHAR.
  m_args.clear();
  InjectKey(VK_MENU, true);
  InjectKeyPress('X');
  InjectKey(VK_MENU, false);
  PumpMessages();
  ASSERT_GE(m_args.size(), 3u);
  EXPECT_EQ(m_args[1].msg, WM_SYSKEYDOWN);
  EXPECT_EQ(m_args[1].wp, static_cast<WPARAM>('X'));
  EXPECT_TRUE(m_args[1].lp & KF_ALTDOWN_BIT);
  EXPECT_EQ(m_args[2].msg, WM_SYSCHAR);
  EXPECT_EQ(m_args[2].wp, static_cast<WPARAM>('x'));

  // Text arrives as one WM_CHAR per UTF-16 unit.
  m_args.clear();
  InjectText(u"é😀");
  PumpMessages();
  ASSERT_EQ(m_args.size(), 3u);
  EXPECT_EQ(m_args[0].wp, 0xE9u);
  EXPECT_EQ(m_args[1].wp, 0xD83Du);
  EXPECT_EQ(m_args[2].wp, 0xDE00u);

  // Caps Lock toggles on its press.
  InjectKeyPress(VK_CAPITAL);
  InjectKeyPress('Q');
  m_args.clear();
  PumpMessages();
  EXPECT_EQ(GetKeyState(VK_CAPITAL) & 1, 1);
  EXPECT_EQ(m_args.back().wp, static_cast<WPARAM>('Q'));
}

TEST_F(InputTest, WheelGoesToTheFocusAndUpToItsParent) {
  SetFocus(m_kid);
  Capture(WM_MOUSEWHEEL);
  Move(250, 40);  // the pointer is over another window: the focus still gets the wheel
  InjectKey(VK_CONTROL, true);
  InjectWheel(-WHEEL_DELTA);
  InjectKey(VK_CONTROL, false);
  PumpMessages();
  // The child leaves it to DefWindowProc, which passes it to the parent.
  ASSERT_EQ(m_args.size(), 2u);
  EXPECT_EQ(m_args[0].hwnd, m_kid);
  EXPECT_EQ(m_args[1].hwnd, m_left);
  EXPECT_EQ(static_cast<int16_t>(HIWORD(m_args[0].wp)), -WHEEL_DELTA);
  EXPECT_EQ(LOWORD(m_args[0].wp), MK_CONTROL);
  EXPECT_EQ(m_args[0].lp, MAKELPARAM(250, 40));
}

TEST_F(InputTest, CaptionDragMovesTheWindow) {
  // A borderless window that calls its own area a caption, as a custom frame does.
  On(WM_NCHITTEST, [this](HWND h, WPARAM, LPARAM l, LRESULT& r) {
    if (h != m_right) return false;
    POINT p{GET_X_LPARAM(l), GET_Y_LPARAM(l)};
    ScreenToClient(h, &p);
    r = p.y < 20 ? HTCAPTION : HTCLIENT;
    return true;
  });
  Only({WM_ENTERSIZEMOVE, WM_MOVING, WM_EXITSIZEMOVE, WM_NCLBUTTONDOWN});
  Move(210, 10);
  InjectMouseButton(MouseButton::Left, true);
  InjectMouseMove(230, 40);
  InjectMouseMove(240, 60);
  InjectMouseButton(MouseButton::Left, false);
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"right:NCLBUTTONDOWN", "right:ENTERSIZEMOVE", "right:MOVING", "right:MOVING",
                         "right:EXITSIZEMOVE"}));
  RECT r;
  GetWindowRect(m_right, &r);
  EXPECT_EQ(r, (RECT{230, 50, 330, 150}));
  EXPECT_EQ(GetCapture(), 0u);

  // The classic trick from a client click: release capture, then send the caption click.
  On(WM_LBUTTONDOWN, [](HWND h, WPARAM, LPARAM, LRESULT&) {
    ReleaseCapture();
    SendMessage(h, WM_NCLBUTTONDOWN, HTCAPTION, 0);
    return true;
  });
  Move(260, 120);
  InjectMouseButton(MouseButton::Left, true);
  InjectMouseMove(250, 100);
  InjectMouseButton(MouseButton::Left, false);
  PumpMessages();
  GetWindowRect(m_right, &r);
  EXPECT_EQ(r, (RECT{220, 30, 320, 130}));
}

}  // namespace
}  // namespace mx::platform
