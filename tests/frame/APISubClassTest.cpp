// Window subclassing through blocks: the before/original/after order, the tables and their
// limits, deferred removal and the clean-up timer, owners that go away, hooks and callbacks.
#include "frame/APISubClass.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/HandleTable.h"
#include "platform/WindowTestSupport.h"

namespace mx::frame {
namespace {

using namespace mx::platform;
using platform::testing::Log;
using platform::testing::WindowingTest;

constexpr UINT kPing = WM_USER + 1;
constexpr UINT kPong = WM_USER + 2;

// An owner whose procedures are set per test.
class TestOwner : public SubclassOwner {
 public:
  using WindowFn = std::function<void(bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM&)>;
  using HookFn = std::function<void(bool, bool&, LRESULT&, int32_t, WPARAM, LPARAM, eHookType)>;
  using CallbackFn = std::function<LRESULT(int32_t, std::span<const intptr_t>)>;

  WindowFn onWindow;
  HookFn onHook;
  CallbackFn onCallback;
  int32_t procedures = 1;

  [[nodiscard]] int32_t ProcedureCount(eThunkType) const override { return procedures; }
  void SubclassProc(int32_t, bool bBefore, bool& bHandled, LRESULT& lReturn, HWND h, UINT m, WPARAM w, LPARAM l,
                    LPARAM& user) override {
    if (onWindow) onWindow(bBefore, bHandled, lReturn, h, m, w, l, user);
  }
  void HookProc(int32_t, bool bBefore, bool& bHandled, LRESULT& lReturn, int32_t code, WPARAM w, LPARAM l,
                eHookType type, LPARAM&) override {
    if (onHook) onHook(bBefore, bHandled, lReturn, code, w, l, type);
  }
  LRESULT CallbackProc(int32_t ordinal, std::span<const intptr_t> args) override {
    return onCallback ? onCallback(ordinal, args) : 0;
  }
};

class APISubClassTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    m_blocksAtStart = APISubClass::LiveWindowBlocks();
    m_wnd = Make("w", WS_OVERLAPPED | WS_VISIBLE, 10, 10, 200, 150);
    Only({kPing, kPong, WM_NCDESTROY});
    // The original procedure answers a ping with 7.
    On(kPing, [](HWND, WPARAM, LPARAM, LRESULT& r) {
      r = 7;
      return true;
    });
    Take();
  }

  // Subclasses m_wnd with `owner`, both tables holding kPing, and logs the owner's calls.
  void SubclassLogged(APISubClass& sc, TestOwner& owner) {
    owner.onWindow = [this](bool before, bool&, LRESULT& r, HWND, UINT m, WPARAM, LPARAM, LPARAM&) {
      m_log.push_back(std::string(before ? "before:" : "after:") + std::to_string(m - WM_USER) + "=" +
                      std::to_string(r));
    };
    ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
    sc.ssc_AddMsg(m_wnd, MSG_BEFORE_AFTER, {static_cast<int32_t>(kPing)});
  }

  [[nodiscard]] WNDPROC ProcOf(HWND h) const { return static_cast<WNDPROC>(GetWindowLong(h, GWL_WNDPROC)); }

  HWND m_wnd = 0;
  int32_t m_blocksAtStart = 0;
};

TEST_F(APISubClassTest, BeforeOriginalAfterInOrderAndTheAfterCallSeesTheResult) {
  TestOwner owner;
  APISubClass sc;
  SubclassLogged(sc, owner);
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 7);
  // A message in neither table goes straight to the original.
  SendMessage(m_wnd, kPong, 0, 0);
  EXPECT_EQ(Take(), (Log{"before:1=0", "w:0x1025", "after:1=7", "w:0x1026"}));
}

TEST_F(APISubClassTest, DesktopResetFreesTheBlocksOfTheWindowsItDestroys) {
  TestOwner owner;
  APISubClass sc;
  SubclassLogged(sc, owner);
  const WNDPROC entry = ProcOf(m_wnd);
  ASSERT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart + 1);
  // The window goes with the reset, and with it the timer that would have freed its block.
  ResetWindowing();
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);
  EXPECT_FALSE(UnregisterWindowProc(entry)) << "the block's procedure is already gone";
}

TEST_F(APISubClassTest, MessageHandledBeforeReachesNeitherOriginalNorAfter) {
  TestOwner owner;
  APISubClass sc;
  SubclassLogged(sc, owner);
  owner.onWindow = [this](bool before, bool& handled, LRESULT& r, HWND, UINT, WPARAM, LPARAM, LPARAM&) {
    m_log.push_back(before ? "before" : "after");
    handled = true;
    r = 42;
  };
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 42);
  EXPECT_EQ(Take(), (Log{"before"}));
}

TEST_F(APISubClassTest, AfterCallMayReplaceTheResult) {
  TestOwner owner;
  APISubClass sc;
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
  sc.ssc_AddMsg(m_wnd, MSG_AFTER, {static_cast<int32_t>(kPing)});
  owner.onWindow = [](bool before, bool&, LRESULT& r, HWND, UINT, WPARAM, LPARAM, LPARAM&) {
    EXPECT_FALSE(before);
    r = r * 10;
  };
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 70);
  EXPECT_EQ(sc.ssc_CallOrigWndProc(m_wnd, kPing, 0, 0), 7);
}

TEST_F(APISubClassTest, TableKeepsThirtyTwoMessagesAndRefusesTheNext) {
  TestOwner owner;
  APISubClass sc;
  std::vector<UINT> seen;
  owner.onWindow = [&](bool, bool& handled, LRESULT&, HWND, UINT m, WPARAM, LPARAM, LPARAM&) {
    seen.push_back(m);
    handled = true;
  };
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
  std::vector<int32_t> msgs;
  for (int32_t i = 0; i < 33; ++i) msgs.push_back(static_cast<int32_t>(WM_APP) + i);
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE, msgs);
  EXPECT_EQ(sc.LastErrorRoutine(), "zAddMsg");
  EXPECT_EQ(sc.LastError(),
            u"Message table overflow. Either increase the value of Const MSG_ENTRIES or use ALL_MESSAGES instead of "
            u"specific message values");
  for (int32_t m : msgs) SendMessage(m_wnd, static_cast<UINT>(m), 0, 0);
  ASSERT_EQ(seen.size(), 32u);
  EXPECT_EQ(seen.front(), WM_APP);
  EXPECT_EQ(seen.back(), WM_APP + 31);

  // Adding one already there costs nothing; a freed slot takes the refused message.
  seen.clear();
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(WM_APP + 5)});
  sc.ssc_DelMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(WM_APP + 3)});
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(WM_APP + 32)});
  for (UINT m : {WM_APP + 3, WM_APP + 32}) SendMessage(m_wnd, m, 0, 0);
  EXPECT_EQ(seen, (std::vector<UINT>{WM_APP + 32}));
}

TEST_F(APISubClassTest, AllMessagesOverridesSpecificOnesUntilDeleted) {
  TestOwner owner;
  APISubClass sc;
  int calls = 0;
  owner.onWindow = [&](bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM&) { ++calls; };
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
  sc.ssc_AddMsg(m_wnd, MSG_AFTER, {static_cast<int32_t>(kPing)});
  sc.ssc_AddMsg(m_wnd, MSG_AFTER, {eMsg::ALL_MESSAGES});
  SendMessage(m_wnd, kPong, 0, 0);
  SendMessage(m_wnd, WM_APP + 9, 0, 0);
  EXPECT_EQ(calls, 2);
  // A specific message cannot be taken out of ALL_MESSAGES; deleting ALL_MESSAGES empties the table.
  sc.ssc_DelMsg(m_wnd, MSG_AFTER, {static_cast<int32_t>(kPong)});
  SendMessage(m_wnd, kPong, 0, 0);
  EXPECT_EQ(calls, 3);
  sc.ssc_DelMsg(m_wnd, MSG_AFTER, {eMsg::ALL_MESSAGES});
  SendMessage(m_wnd, kPing, 0, 0);
  EXPECT_EQ(calls, 3);
}

TEST_F(APISubClassTest, UnsubclassFromInsideACallbackWaitsForTheOutermostCall) {
  TestOwner owner;
  APISubClass sc;
  const WNDPROC original = ProcOf(m_wnd);
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
  const WNDPROC entry = ProcOf(m_wnd);
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(kPing), static_cast<int32_t>(kPong)});
  int pings = 0;
  owner.onWindow = [&](bool, bool&, LRESULT&, HWND h, UINT m, WPARAM, LPARAM, LPARAM&) {
    if (m == kPing) {
      ++pings;
      SendMessage(h, kPong, 0, 0);  // nesting 2 inside
      // Still in place while the outer call is inside the block.
      EXPECT_EQ(ProcOf(h), entry);
    } else {
      sc.ssc_UnSubclass(h);
      EXPECT_EQ(ProcOf(h), entry);
    }
  };
  SendMessage(m_wnd, kPing, 0, 0);
  EXPECT_EQ(ProcOf(m_wnd), original);
  EXPECT_FALSE(sc.IsSubclassed(m_wnd));
  SendMessage(m_wnd, kPing, 0, 0);
  EXPECT_EQ(pings, 1);
  // The block itself goes 100 ms later.
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart + 1);
  RunFor(100);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);
}

TEST_F(APISubClassTest, BlockOfADestroyedWindowIsFreedByItsTimer) {
  TestOwner owner;
  APISubClass sc;
  SubclassLogged(sc, owner);
  const int procs = LiveHandleCount(HandleType::Proc);
  DestroyWindow(m_wnd);
  // The original procedure saw WM_NCDESTROY through the block.
  EXPECT_EQ(Take(), (Log{"w:NCDESTROY"}));
  RunFor(99);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart + 1);
  RunFor(1);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);
  EXPECT_EQ(LiveHandleCount(HandleType::Proc), procs - 1);
  EXPECT_EQ(ActiveTimerCount(), 0);
  EXPECT_FALSE(sc.IsSubclassed(m_wnd));
}

TEST_F(APISubClassTest, CallThroughAReleasedBlockRestartsItsTimer) {
  TestOwner owner;
  APISubClass sc;
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, &owner));
  const WNDPROC entry = ProcOf(m_wnd);
  sc.ssc_UnSubclass(m_wnd);
  RunFor(60);
  // Someone who kept the old procedure still calls it: it passes on to the original.
  EXPECT_EQ(CallWindowProc(entry, m_wnd, kPing, 0, 0), 7);
  RunFor(60);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart + 1);
  RunFor(40);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);
  EXPECT_EQ(CallWindowProc(entry, m_wnd, kPing, 0, 0), 0);
}

TEST_F(APISubClassTest, BlockUnderAnotherSubclassPassesThroughUntilItCanLeave) {
  TestOwner lower, upper;
  APISubClass a, b;
  int lowerCalls = 0, upperCalls = 0;
  lower.onWindow = [&](bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM&) { ++lowerCalls; };
  upper.onWindow = [&](bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM&) { ++upperCalls; };
  const WNDPROC original = ProcOf(m_wnd);
  ASSERT_TRUE(a.ssc_Subclass(m_wnd, 0, 1, &lower));
  a.ssc_AddMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(kPing)});
  ASSERT_TRUE(b.ssc_Subclass(m_wnd, 0, 1, &upper));
  b.ssc_AddMsg(m_wnd, MSG_BEFORE, {static_cast<int32_t>(kPing)});
  const WNDPROC upperEntry = ProcOf(m_wnd);

  // The lower one cannot take itself out of the chain without cutting the upper one off.
  a.ssc_UnSubclass(m_wnd);
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 7);
  EXPECT_EQ(ProcOf(m_wnd), upperEntry);
  EXPECT_EQ(lowerCalls, 0);
  EXPECT_EQ(upperCalls, 1);

  b.ssc_UnSubclass(m_wnd);
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 7);
  EXPECT_EQ(ProcOf(m_wnd), original);
  RunFor(100);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);
}

TEST_F(APISubClassTest, OwnerThatGoesAwayTakesItsBlockOut) {
  auto owner = std::make_unique<TestOwner>();
  APISubClass sc;
  const WNDPROC original = ProcOf(m_wnd);
  int calls = 0;
  owner->onWindow = [&](bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM&) { ++calls; };
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 0, 1, owner.get()));
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE_AFTER, {eMsg::ALL_MESSAGES});
  owner.reset();
  EXPECT_EQ(SendMessage(m_wnd, kPing, 0, 0), 7);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(ProcOf(m_wnd), original);
}

TEST_F(APISubClassTest, ApiWindowIsDestroyedWithItsSubclass) {
  TestOwner owner;
  APISubClass sc;
  HWND api = Make("api", WS_POPUP, 0, 0, 10, 10);
  ASSERT_TRUE(sc.ssc_Subclass(api, 0, 1, &owner, true, false, true));
  sc.ssc_UnSubclass(api);
  EXPECT_FALSE(IsWindow(api));
  EXPECT_TRUE(IsWindow(m_wnd));
}

TEST_F(APISubClassTest, RefusalsLeaveNothingSubclassed) {
  TestOwner owner;
  APISubClass sc;
  const WNDPROC original = ProcOf(m_wnd);
  struct Case {
    HWND hwnd;
    int32_t ordinal;
    SubclassOwner* owner;
    const char* routine;
    const char16_t* text;
  };
  HWND gone = Make("gone", WS_POPUP, 0, 0, 5, 5);
  DestroyWindow(gone);
  for (const Case& c : {Case{gone, 1, &owner, "ssc_Subclass", u"Invalid window handle"},
                        Case{GetDesktopWindow(), 1, &owner, "ssc_Subclass", u"Window handle belongs to another process"},
                        Case{m_wnd, 2, &owner, "ssc_Subclass", u"Callback method not found"},
                        Case{m_wnd, 0, &owner, "ssc_Subclass", u"Callback method not found"},
                        Case{m_wnd, 1, nullptr, "ssc_Subclass", u"Callback method not found"}}) {
    EXPECT_FALSE(sc.ssc_Subclass(c.hwnd, 0, c.ordinal, c.owner));
    EXPECT_EQ(sc.LastErrorRoutine(), c.routine);
    EXPECT_EQ(sc.LastError(), c.text);
  }
  EXPECT_EQ(ProcOf(m_wnd), original);
  EXPECT_EQ(APISubClass::LiveWindowBlocks(), m_blocksAtStart);

  // The search limit hides ordinals that the owner has.
  owner.procedures = 3;
  sc.zAddressOfLoopLimit(2);
  EXPECT_FALSE(sc.ssc_Subclass(m_wnd, 0, 3, &owner));
  EXPECT_TRUE(sc.ssc_Subclass(m_wnd, 0, 2, &owner));
}

TEST_F(APISubClassTest, LParamUserTravelsByReference) {
  TestOwner owner;
  APISubClass sc;
  std::vector<LPARAM> seen;
  owner.onWindow = [&](bool, bool&, LRESULT&, HWND, UINT, WPARAM, LPARAM, LPARAM& user) { seen.push_back(user++); };
  ASSERT_TRUE(sc.ssc_Subclass(m_wnd, 10, 1, &owner));
  sc.ssc_AddMsg(m_wnd, MSG_BEFORE_AFTER, {static_cast<int32_t>(kPing)});
  SendMessage(m_wnd, kPing, 0, 0);
  sc.zSet_lParamUser(m_wnd, SubclassThunk, 100);
  SendMessage(m_wnd, kPing, 0, 0);
  EXPECT_EQ(seen, (std::vector<LPARAM>{10, 11, 100, 101}));

  sc.zSet_lParamUser(m_wnd, CallbackThunk, 1);
  EXPECT_EQ(sc.LastError(), u"Invalid thunk type passed");
  sc.zSet_lParamUser(m_wnd + 1, SubclassThunk, 1);
  EXPECT_EQ(sc.LastError(), u"Thunk hasn't been initialized");
}

// ---- hooks -------------------------------------------------------------------------------------

TEST_F(APISubClassTest, MouseHookSeesInputAndMayDiscardIt) {
  TestOwner owner;
  APISubClass sc;
  Only({WM_LBUTTONDOWN});
  std::vector<std::string> calls;
  bool discard = true;
  owner.onHook = [&](bool before, bool& handled, LRESULT& r, int32_t code, WPARAM w, LPARAM, eHookType type) {
    if (w != WM_LBUTTONDOWN) return;
    calls.push_back(std::string(before ? "before" : "after") + ":" + std::to_string(code) + ":" +
                    std::to_string(static_cast<int>(type)));
    if (before && discard) {
      handled = true;
      r = 1;
    }
  };
  ASSERT_TRUE(sc.shk_SetHook(eHookType::WH_MOUSE, false, MSG_BEFORE_AFTER, 0, 1, &owner));
  InjectMouseMove(50, 60);
  InjectMouseButton(MouseButton::Left, true);
  PumpMessages();
  EXPECT_EQ(calls, (std::vector<std::string>{"before:0:7"}));
  EXPECT_TRUE(Take().empty());

  discard = false;
  InjectMouseButton(MouseButton::Left, false);
  RunFor(1000);  // no double click
  InjectMouseButton(MouseButton::Left, true);
  PumpMessages();
  EXPECT_EQ(calls, (std::vector<std::string>{"before:0:7", "before:0:7", "after:0:7"}));
  EXPECT_EQ(Take(), (Log{"w:LBUTTONDOWN"}));

  EXPECT_TRUE(sc.shk_UnHook(eHookType::WH_MOUSE));
  EXPECT_FALSE(sc.shk_UnHook(eHookType::WH_MOUSE));
  InjectMouseButton(MouseButton::Left, false);
  RunFor(1000);
  InjectMouseButton(MouseButton::Left, true);
  PumpMessages();
  EXPECT_EQ(calls.size(), 3u);
}

TEST_F(APISubClassTest, HookWithoutOwnerRaisesHookMessage) {
  APISubClass sc;
  std::vector<int> keys;
  sc.HookMessage.connect([&](eHookType type, int32_t code, WPARAM w, LPARAM) {
    EXPECT_EQ(type, eHookType::WH_KEYBOARD);
    EXPECT_EQ(code, 0);
    keys.push_back(static_cast<int>(w));
  });
  SetFocus(m_wnd);
  ASSERT_TRUE(sc.shk_SetHook(eHookType::WH_KEYBOARD, false));
  InjectKeyPress('A');
  PumpMessages();
  EXPECT_EQ(keys, (std::vector<int>{'A', 'A'}));
}

TEST_F(APISubClassTest, HookTypeThePlatformNeverCallsIsRefused) {
  TestOwner owner;
  APISubClass sc;
  EXPECT_FALSE(sc.shk_SetHook(eHookType::WH_JOURNALRECORD, true, MSG_BEFORE, 0, 1, &owner));
  EXPECT_EQ(sc.LastErrorRoutine(), "shk_SetHook");
  EXPECT_EQ(sc.LastError(), u"SetWindowsHookEx failed, error #0");
  EXPECT_FALSE(HasHooks(WH_JOURNALRECORD));
}

TEST_F(APISubClassTest, HookIsRemovedWithItsClass) {
  TestOwner owner;
  {
    APISubClass sc;
    ASSERT_TRUE(sc.shk_SetHook(eHookType::WH_CALLWNDPROC, false, MSG_AFTER, 0, 1, &owner));
    EXPECT_TRUE(HasHooks(WH_CALLWNDPROC));
  }
  EXPECT_FALSE(HasHooks(WH_CALLWNDPROC));
}

// ---- callbacks ---------------------------------------------------------------------------------

TEST_F(APISubClassTest, TimerCallbackForwardsItsArgumentsAndStopsWhenItsOwnerGoes) {
  auto owner = std::make_unique<TestOwner>();
  APISubClass sc;
  std::vector<std::vector<intptr_t>> calls;
  owner->onCallback = [&](int32_t, std::span<const intptr_t> args) {
    calls.emplace_back(args.begin(), args.end());
    return 0;
  };
  CallbackAddress address = sc.scb_SetCallbackAddr(4, 1, owner.get(), true, true);
  ASSERT_TRUE(address);
  EXPECT_TRUE(address == sc.scb_SetCallbackAddr(4, 1, owner.get(), true, true));
  ASSERT_EQ(SetTimer(m_wnd, 7, 50, address.AsTimerProc()), 7u);
  RunFor(50);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0][0], static_cast<intptr_t>(m_wnd));
  EXPECT_EQ(calls[0][1], static_cast<intptr_t>(WM_TIMER));
  EXPECT_EQ(calls[0][2], 7);
  EXPECT_EQ(ActiveTimerCount(), 1);
  owner.reset();
  RunFor(50);
  EXPECT_EQ(ActiveTimerCount(), 0);
  EXPECT_EQ(calls.size(), 1u);
}

TEST_F(APISubClassTest, ReleasedCallbackDoesNothing) {
  TestOwner owner;
  APISubClass sc;
  int calls = 0;
  owner.onCallback = [&](int32_t, std::span<const intptr_t> args) {
    ++calls;
    EXPECT_EQ(args.size(), 2u);
    return 5;
  };
  CallbackAddress address = sc.scb_SetCallbackAddr(2, 1, &owner);
  EXPECT_EQ(address({1, 2, 3}), 5);
  sc.scb_ReleaseCallback(1, &owner);
  EXPECT_EQ(address({1, 2}), 0);
  EXPECT_EQ(calls, 1);
}

TEST_F(APISubClassTest, CallbackRefusals) {
  TestOwner owner;
  APISubClass sc;
  EXPECT_FALSE(sc.scb_SetCallbackAddr(kMaxCallbackParams + 1, 1, &owner));
  EXPECT_EQ(sc.LastError(), u"Invalid Parameter count");
  EXPECT_FALSE(sc.scb_SetCallbackAddr(-1, 1, &owner));
  EXPECT_FALSE(sc.scb_SetCallbackAddr(2, 2, &owner));
  EXPECT_EQ(sc.LastErrorRoutine(), "scb_SetCallbackAddr");
  EXPECT_EQ(sc.LastError(), u"Callback address not found.");
}

TEST_F(APISubClassTest, EnumWindowHandlesRaisesEachWindowOrAsksTheOwner) {
  HWND second = Make("second", WS_POPUP, 0, 0, 5, 5);
  APISubClass sc;
  std::vector<intptr_t> raised;
  sc.EnumCallback.connect([&](intptr_t v) { raised.push_back(v); });
  sc.EnumWindowHandles();
  std::vector<intptr_t> expected;
  EnumWindows(
      [&](HWND h, LPARAM) {
        expected.push_back(static_cast<intptr_t>(h));
        return TRUE;
      },
      0);
  EXPECT_EQ(raised, expected);
  EXPECT_EQ(raised.size(), 2u);
  (void)second;

  // An owner's 0 stops the enumeration; nothing reaches the event.
  TestOwner owner;
  int asked = 0;
  owner.onCallback = [&](int32_t, std::span<const intptr_t>) {
    ++asked;
    return 0;
  };
  raised.clear();
  sc.EnumWindowHandles(&owner);
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(raised.empty());
}

}  // namespace
}  // namespace mx::frame
