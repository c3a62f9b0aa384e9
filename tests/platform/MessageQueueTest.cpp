// The queue: retrieval order, WM_PAINT when idle, painting and clipping, quitting, modal loops
// on the same queue, and hooks.
#include "platform/Gdi.h"
#include "WindowTestSupport.h"

namespace mx::platform {
namespace {

using testing::Log;
using testing::WindowingTest;

using MessageQueueTest = WindowingTest;

TEST_F(MessageQueueTest, PaintComesOnlyWhenNothingElseIsQueued) {
  HWND w = Make("w", WS_POPUP | WS_VISIBLE, 0, 0, 40, 40);
  PumpMessages();
  SetTimer(w, 1, 10);
  AdvanceVirtualClock(10);  // the timer is due
  InvalidateRect(w, nullptr, TRUE);
  PostMessage(w, WM_USER, 1, 0);
  PostMessage(w, WM_USER, 2, 0);

  std::vector<UINT> got;
  MSG m;
  // Peeking without removing leaves the paint in place for as long as it is not validated.
  ASSERT_TRUE(PeekMessage(&m, 0, WM_PAINT, WM_PAINT, PM_NOREMOVE));
  EXPECT_EQ(m.message, WM_PAINT);
  while (PeekMessage(&m, 0, 0, 0, PM_REMOVE)) {
    got.push_back(m.message);
    DispatchMessage(&m);
    if (m.message == WM_TIMER) KillTimer(w, 1);
  }
  EXPECT_EQ(got, (std::vector<UINT>{WM_USER, WM_USER, WM_PAINT, WM_TIMER}));
}

TEST_F(MessageQueueTest, BeginPaintReportsTheUpdateAreaAndErasing) {
  HWND w = Make("w", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100);
  PumpMessages();
  PAINTSTRUCT seen{};
  On(WM_PAINT, [&](HWND h, WPARAM, LPARAM, LRESULT&) {
    BeginPaint(h, &seen);
    EndPaint(h, &seen);
    return true;
  });
  RECT a{10, 10, 20, 20}, b{50, 40, 60, 70};
  InvalidateRect(w, &a, FALSE);
  InvalidateRect(w, &b, FALSE);
  UpdateWindow(w);
  EXPECT_EQ(seen.rcPaint, (RECT{10, 10, 60, 70}));
  EXPECT_FALSE(seen.fErase);

  // The class has no brush, so WM_ERASEBKGND does nothing and the caller must erase.
  InvalidateRect(w, &a, TRUE);
  UpdateWindow(w);
  EXPECT_TRUE(seen.fErase);
  On(WM_ERASEBKGND, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    r = 1;
    return true;
  });
  InvalidateRect(w, &a, TRUE);
  UpdateWindow(w);
  EXPECT_FALSE(seen.fErase);

  // Validating a part leaves the rest to paint.
  InvalidateRect(w, nullptr, FALSE);
  RECT left{0, 0, 50, 100};
  ValidateRect(w, &left);
  RECT upd;
  EXPECT_TRUE(GetUpdateRect(w, &upd, FALSE));
  EXPECT_EQ(upd, (RECT{50, 0, 100, 100}));
  ValidateRect(w, nullptr);
  EXPECT_FALSE(GetUpdateRect(w, &upd, FALSE));
  EXPECT_EQ(PumpMessages(), 0);
}

TEST_F(MessageQueueTest, InvalidationReachesChildrenUnlessClipped) {
  HWND clip = Make("clip", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 100, 100);
  HWND open = Make("open", WS_POPUP | WS_VISIBLE, 200, 0, 100, 100);
  HWND k1 = Make("k1", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, clip);
  HWND k2 = Make("k2", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, open);
  PumpMessages();
  Only({WM_PAINT});
  Take();
  InvalidateRect(clip, nullptr, FALSE);
  InvalidateRect(open, nullptr, FALSE);
  PumpMessages();
    // Top of the z-order first, parents before their children.
  EXPECT_EQ(Take(), (Log{"open:PAINT", "k2:PAINT", "clip:PAINT"}));
  RedrawWindow(clip, nullptr, 0, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  EXPECT_EQ(Take(), (Log{"clip:PAINT", "k1:PAINT"}));
  // A rectangle away from the child leaves it alone.
  RECT away{50, 50, 60, 60};
  InvalidateRect(open, &away, FALSE);
  PumpMessages();
  EXPECT_EQ(Take(), (Log{"open:PAINT"}));
  // A procedure that never begins painting does not make the queue repaint forever.
  On(WM_PAINT, [](HWND, WPARAM, LPARAM, LRESULT&) { return true; });
  InvalidateRect(k1, nullptr, FALSE);
  EXPECT_EQ(PumpMessages(), 1);
  (void)k2;
}

TEST_F(MessageQueueTest, WindowDCsClipToTheVisiblePart) {
  // Parent with WS_CLIPCHILDREN paints red over everything; two overlapping children, the lower
  // one WS_CLIPSIBLINGS, paint green and blue. Each may only touch its own visible part.
  HWND top = Make("top", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 30, 20);
  HWND upper = Make("upper", WS_CHILD | WS_VISIBLE, 5, 5, 10, 10, top);
  HWND lower = Make("lower", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 10, 5, 10, 10, top);
  PumpMessages();
  auto fill = [](HWND h, COLORREF c) {
    HDC dc = GetDC(h);
    RECT r{-100, -100, 100, 100};
    HBRUSH br = CreateSolidBrush(c);
    FillRect(dc, &r, br);
    DeleteObject(br);
    ReleaseDC(h, dc);
  };
  fill(top, RGB(255, 0, 0));
  fill(upper, RGB(0, 255, 0));
  fill(lower, RGB(0, 0, 255));
  CapturedImage img = CaptureWindow(top);
  EXPECT_EQ(img.color(0, 0), RGB(255, 0, 0));
  EXPECT_EQ(img.color(7, 7), RGB(0, 255, 0));
  EXPECT_EQ(img.color(12, 7), RGB(0, 255, 0));  // the upper child covers the lower one here
  EXPECT_EQ(img.color(17, 7), RGB(0, 0, 255));
  EXPECT_EQ(img.color(25, 7), RGB(255, 0, 0));
  EXPECT_EQ(img.color(7, 14), RGB(0, 255, 0));
  EXPECT_EQ(img.color(7, 15), RGB(255, 0, 0));

  // A region limits the window DC as well.
  SetWindowRgn(upper, CreateRectRgn(0, 0, 2, 2), FALSE);
  fill(top, RGB(255, 0, 0));
  fill(upper, RGB(0, 255, 0));
  img = CaptureWindow(top);
  EXPECT_EQ(img.color(6, 6), RGB(0, 255, 0));
  EXPECT_EQ(img.color(8, 8), RGB(255, 0, 0));
}

TEST_F(MessageQueueTest, QuitAndExhaustion) {
  MSG m;
  // Nothing queued and nothing due: GetMessage must not hang.
  EXPECT_FALSE(GetMessage(&m, 0, 0, 0));
  EXPECT_EQ(m.message, WM_NULL);
  EXPECT_TRUE(IsQueueExhausted());

  PostMessage(0, WM_USER, 0, 0);
  PostQuitMessage(3);
  EXPECT_TRUE(GetMessage(&m, 0, 0, 0));
  EXPECT_EQ(m.message, WM_USER);
  EXPECT_EQ(m.hwnd, 0u);
  EXPECT_FALSE(GetMessage(&m, 0, 0, 0));
  EXPECT_EQ(m.message, WM_QUIT);
  EXPECT_EQ(m.wParam, 3u);
  EXPECT_FALSE(IsQueueExhausted());
  EXPECT_FALSE(IsQuitPending());
}

TEST_F(MessageQueueTest, PeekFiltersByWindowAndRange) {
  HWND a = Make("a", WS_POPUP, 0, 0, 10, 10);
  HWND b = Make("b", WS_POPUP, 0, 0, 10, 10);
  PostMessage(a, WM_USER, 0, 0);
  PostMessage(b, WM_USER + 1, 0, 0);
  PostMessage(a, WM_USER + 2, 0, 0);
  MSG m;
  ASSERT_TRUE(PeekMessage(&m, b, 0, 0, PM_REMOVE));
  EXPECT_EQ(m.message, WM_USER + 1);
  ASSERT_TRUE(PeekMessage(&m, 0, WM_USER + 2, WM_USER + 5, PM_NOREMOVE));
  EXPECT_EQ(m.message, WM_USER + 2);
  ASSERT_TRUE(PeekMessage(&m, 0, 0, 0, PM_REMOVE));
  EXPECT_EQ(m.message, WM_USER);
  EXPECT_FALSE(PeekMessage(&m, b, 0, 0, PM_REMOVE));
  EXPECT_TRUE(PeekMessage(&m, a, 0, 0, PM_REMOVE));
  EXPECT_FALSE(PeekMessage(&m, 0, 0, 0, PM_REMOVE));
}

TEST_F(MessageQueueTest, ModalLoopRunsOnTheSameQueueUntilItsWindowGoes) {
  HWND owner = Make("owner", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200);
  HWND dialog = Make("dialog", WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU, 20, 20, 100, 80, owner);
  EnableWindow(owner, FALSE);
  PumpMessages();
  PostMessage(owner, WM_USER, 0, 0);  // messages for other windows still flow
  bool ownerGotIt = false;
  On(WM_USER, [&](HWND h, WPARAM, LPARAM, LRESULT&) {
    ownerGotIt = h == owner;
    return true;
  });
  // The user clicks the dialog's close box once the loop is idle.
  PushIdleAction([] {
    RECT r;
    HWND d = FindWindow(u"Rec", u"dialog");
    GetWindowRect(d, &r);
    InjectMouseMove(r.right - 8, r.top + 10);
    InjectClick();
  });
  EXPECT_TRUE(RunModalLoop(dialog));
  EXPECT_TRUE(ownerGotIt);
  EXPECT_FALSE(IsWindow(dialog));
  EnableWindow(owner, TRUE);
}

TEST_F(MessageQueueTest, HooksSeeMessagesAndCanVeto) {
  std::vector<std::string> trace;
  HHOOK cbt = SetWindowsHookEx(WH_CBT, [&](int code, WPARAM, LPARAM l) -> LRESULT {
    if (code == HCBT_CREATEWND) {
      auto* cs = reinterpret_cast<CBT_CREATEWND*>(l)->lpcs;
      if (std::u16string(cs->lpszName) == u"vetoed") return 1;
    }
    if (code == HCBT_DESTROYWND) trace.push_back("destroy?");
    return 0;
  });
  ASSERT_TRUE(cbt);
  EXPECT_EQ(Make("vetoed", WS_POPUP, 0, 0, 1, 1), 0u);
  EXPECT_TRUE(Take().empty());  // refused before any message
  HWND w = Make("w", WS_POPUP, 0, 0, 1, 1);
  ASSERT_TRUE(w);

  // Two send hooks chained: newest first, each passing on.
  HHOOK older = SetWindowsHookEx(WH_CALLWNDPROC, [&](int c, WPARAM wp, LPARAM l) -> LRESULT {
    if (reinterpret_cast<CWPSTRUCT*>(l)->message == WM_USER) trace.push_back("older");
    return 0;
  });
  HHOOK newer = 0;
  newer = SetWindowsHookEx(WH_CALLWNDPROC, [&](int c, WPARAM wp, LPARAM l) -> LRESULT {
    if (reinterpret_cast<CWPSTRUCT*>(l)->message == WM_USER) {
      trace.push_back("newer");
      UnhookWindowsHookEx(newer);  // leaving from inside itself
    }
    return CallNextHookEx(newer, c, wp, l);
  });
  HHOOK ret = SetWindowsHookEx(WH_CALLWNDPROCRET, [&](int, WPARAM, LPARAM l) -> LRESULT {
    auto* r = reinterpret_cast<CWPRETSTRUCT*>(l);
    if (r->message == WM_USER) trace.push_back("ret=" + std::to_string(r->lResult));
    return 0;
  });
  On(WM_USER, [&](HWND, WPARAM, LPARAM, LRESULT& r) {
    trace.push_back("proc");
    r = 9;
    return true;
  });
  SendMessage(w, WM_USER, 0, 0);
  SendMessage(w, WM_USER, 0, 0);
  EXPECT_EQ(trace, (std::vector<std::string>{"newer", "older", "proc", "ret=9", "older", "proc", "ret=9"}));

  // WH_GETMESSAGE may rewrite what the loop gets.
  HHOOK gm = SetWindowsHookEx(WH_GETMESSAGE, [](int, WPARAM, LPARAM l) -> LRESULT {
    auto* m = reinterpret_cast<MSG*>(l);
    if (m->message == WM_USER + 5) m->wParam = 99;
    return 0;
  });
  PostMessage(w, WM_USER + 5, 1, 0);
  MSG m;
  ASSERT_TRUE(PeekMessage(&m, 0, 0, 0, PM_REMOVE));
  EXPECT_EQ(m.wParam, 99u);

  trace.clear();
  HHOOK keep = SetWindowsHookEx(WH_CBT, [](int code, WPARAM, LPARAM) -> LRESULT { return code == HCBT_DESTROYWND; });
  EXPECT_FALSE(DestroyWindow(w));
  EXPECT_TRUE(IsWindow(w));
  UnhookWindowsHookEx(keep);
  EXPECT_TRUE(DestroyWindow(w));
  EXPECT_EQ(trace, (std::vector<std::string>{"destroy?"}));
  EXPECT_EQ(SetWindowsHookEx(WH_JOURNALRECORD, [](int, WPARAM, LPARAM) -> LRESULT { return 0; }), 0u);
  for (HHOOK h : {cbt, older, ret, gm}) EXPECT_TRUE(UnhookWindowsHookEx(h));
  EXPECT_FALSE(UnhookWindowsHookEx(newer));
}

}  // namespace
}  // namespace mx::platform
