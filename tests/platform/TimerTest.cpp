// Timers on the virtual clock: order, re-arming, killing from inside, procedures, and the loop
// moving the clock.
#include "WindowTestSupport.h"

namespace mx::platform {
namespace {

using testing::WindowingTest;

class TimerTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    m_w = Make("w", WS_POPUP, 0, 0, 10, 10);
    m_start = GetTickCount64();
    On(WM_TIMER, [this](HWND, WPARAM id, LPARAM, LRESULT&) {
      m_fired.push_back({static_cast<int>(id), GetTickCount64() - m_start});
      return true;
    });
  }
  HWND m_w = 0;
  uint64_t m_start = 0;
  std::vector<std::pair<int, uint64_t>> m_fired;  // (id, ms since the start)
};

TEST_F(TimerTest, FireInTimeOrderAndReArm) {
  SetTimer(m_w, 3, 70);
  SetTimer(m_w, 1, 30);
  SetTimer(m_w, 2, 50);
  RunFor(150);
  EXPECT_EQ(m_fired, (std::vector<std::pair<int, uint64_t>>{
                         {1, 30}, {2, 50}, {1, 60}, {3, 70}, {1, 90}, {2, 100}, {1, 120}, {3, 140}, {1, 150}, {2, 150}}));
  EXPECT_EQ(GetTickCount64() - m_start, 150u);
}

TEST_F(TimerTest, ALateLoopGetsOneMessageNotABurst) {
  SetTimer(m_w, 1, 100);
  AdvanceVirtualClock(1000);
  PumpMessages();
  ASSERT_EQ(m_fired.size(), 1u);
  // Re-armed from when the message was taken.
  RunFor(99);
  EXPECT_EQ(m_fired.size(), 1u);
  RunFor(1);
  EXPECT_EQ(m_fired.size(), 2u);
}

TEST_F(TimerTest, KillInsideItsOwnMessageAndReplace) {
  int count = 0;
  On(WM_TIMER, [&](HWND h, WPARAM id, LPARAM, LRESULT&) {
    if (++count == 3) KillTimer(h, id);
    return true;
  });
  SetTimer(m_w, 5, 20);
  EXPECT_TRUE(RunUntilIdle());
  EXPECT_EQ(count, 3);
  EXPECT_EQ(GetTickCount64() - m_start, 60u);
  EXPECT_FALSE(KillTimer(m_w, 5));

  // Setting the same id again restarts it with the new period rather than adding one.
  SetTimer(m_w, 6, 100);
  RunFor(50);
  SetTimer(m_w, 6, 100);
  RunFor(99);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(ActiveTimerCount(), 1);
  // Periods below the minimum are raised to it, and a periodic timer never lets the loop idle.
  SetTimer(m_w, 6, 1);
  EXPECT_FALSE(RunUntilIdle(35));
  EXPECT_EQ(count, 6);
}

TEST_F(TimerTest, ProceduresAndThreadTimers) {
  std::vector<std::string> calls;
  UINT_PTR id = SetTimer(m_w, 9, 40, [&](HWND h, UINT msg, UINT_PTR tid, DWORD tick) {
    EXPECT_EQ(h, m_w);
    EXPECT_EQ(msg, WM_TIMER);
    EXPECT_EQ(tick, GetTickCount());
    calls.push_back("window " + std::to_string(tid));
  });
  EXPECT_EQ(id, 9u);
  UINT_PTR t1 = SetTimer(0, 0, 30, [&](HWND h, UINT, UINT_PTR tid, DWORD) {
    EXPECT_EQ(h, 0u);
    calls.push_back("thread");
    KillTimer(0, tid);
  });
  UINT_PTR t2 = SetTimer(0, 0, 1000, [&](HWND, UINT, UINT_PTR, DWORD) { calls.push_back("other"); });
  EXPECT_NE(t1, 0u);
  EXPECT_NE(t1, t2);
  RunFor(80);
  // The window procedure never saw WM_TIMER: the procedures took them.
  EXPECT_TRUE(m_fired.empty());
  EXPECT_EQ(calls, (std::vector<std::string>{"thread", "window 9", "window 9"}));
  EXPECT_EQ(SetTimer(0, t2, 10, [&](HWND, UINT, UINT_PTR, DWORD) { calls.push_back("replaced"); }), t2);
  RunFor(10);
  EXPECT_EQ(calls.back(), "replaced");
  EXPECT_EQ(SetTimer(0xDEAD, 1, 10), 0u);  // a stale window
  // The procedures hold this test's locals: they must not outlive it.
  KillTimer(m_w, id);
  KillTimer(0, t2);
}

TEST_F(TimerTest, GetMessageMovesTheClockToTheNextTimer) {
  SetTimer(m_w, 1, 250);
  MSG m;
  ASSERT_TRUE(GetMessage(&m, 0, 0, 0));
  EXPECT_EQ(m.message, WM_TIMER);
  EXPECT_EQ(m.hwnd, m_w);
  EXPECT_EQ(GetTickCount64() - m_start, 250u);
  DestroyWindow(m_w);
  EXPECT_EQ(ActiveTimerCount(), 0);  // the window's timers went with it
  EXPECT_FALSE(GetMessage(&m, 0, 0, 0));
  EXPECT_TRUE(IsQueueExhausted());
}

}  // namespace
}  // namespace mx::platform
