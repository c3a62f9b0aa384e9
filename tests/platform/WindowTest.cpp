// Windows: creation and destruction order, procedures and subclassing, the tree, geometry,
// window regions and hit testing, longs, properties and text.
#include "platform/Gdi.h"
#include "WindowTestSupport.h"

namespace mx::platform {
namespace {

using testing::Log;
using testing::WindowingTest;

using WindowTest = WindowingTest;

TEST_F(WindowTest, CreateShowDestroyMessageOrder) {
  HWND top = Make("top", WS_POPUP | WS_VISIBLE, 10, 10, 200, 100);
  ASSERT_TRUE(top);
  EXPECT_EQ(Take(), (Log{"top:NCCREATE", "top:NCCALCSIZE", "top:CREATE", "top:SIZE", "top:MOVE", "top:SHOWWINDOW",
                         "top:POSCHANGING", "top:ACTIVATEAPP", "top:NCACTIVATE", "top:ACTIVATE", "top:SETFOCUS",
                         "top:POSCHANGED"}));

  HWND kid = Make("kid", WS_CHILD | WS_VISIBLE, 5, 5, 50, 20, top, 0, 7);
  ASSERT_TRUE(kid);
  EXPECT_EQ(Take(), (Log{"kid:NCCREATE", "kid:NCCALCSIZE", "kid:CREATE", "top:PARENTNOTIFY", "kid:SIZE", "kid:MOVE",
                         "kid:SHOWWINDOW", "kid:POSCHANGING", "kid:POSCHANGED"}));
  HWND grandkid = Make("grandkid", WS_CHILD, 0, 0, 10, 10, kid);
  Take();

  // WM_DESTROY goes parents first, WM_NCDESTROY children first; the hiding and deactivation
  // come before either.
  Only({WM_DESTROY, WM_NCDESTROY, WM_SHOWWINDOW, WM_ACTIVATE, WM_KILLFOCUS});
  EXPECT_TRUE(DestroyWindow(top));
  EXPECT_EQ(Take(), (Log{"top:ACTIVATE", "top:KILLFOCUS", "top:DESTROY", "kid:DESTROY", "grandkid:DESTROY",
                         "grandkid:NCDESTROY", "kid:NCDESTROY", "top:NCDESTROY"}));
  EXPECT_FALSE(IsWindow(top));
  EXPECT_FALSE(IsWindow(kid));
  EXPECT_FALSE(IsWindow(grandkid));
  EXPECT_EQ(GetActiveWindow(), 0u);
  EXPECT_EQ(GetFocus(), 0u);
}

TEST_F(WindowTest, FailedCreationLeavesNothing) {
  On(WM_CREATE, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    r = -1;
    return true;
  });
  EXPECT_EQ(Make("a", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10), 0u);
  EXPECT_EQ(Take(), (Log{"a:NCCREATE", "a:NCCALCSIZE", "a:CREATE", "a:DESTROY", "a:NCDESTROY"}));

  On(WM_NCCREATE, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    r = FALSE;
    return true;
  });
  EXPECT_EQ(Make("b", WS_POPUP, 0, 0, 10, 10), 0u);
  EXPECT_EQ(Take(), (Log{"b:NCCREATE", "b:NCDESTROY"}));

  EXPECT_EQ(CreateWindowExW(0, u"NoSuchClass", u"", WS_POPUP, 0, 0, 1, 1, 0), 0u);
  EXPECT_EQ(Make("orphan", WS_CHILD, 0, 0, 1, 1, 0), 0u);  // a child needs a parent
  EXPECT_EQ(LiveHandleCount(HandleType::Window), m_windowsAtStart);
}

TEST_F(WindowTest, HandleIsRefusedOnceNcDestroyIsDone) {
  HWND w = Make("w", WS_POPUP, 0, 0, 10, 10);
  SetTimer(w, 1, 100);
  SetProp(w, u"p", 5);
  bool aliveInside = false;
  intptr_t propInside = 0;
  On(WM_NCDESTROY, [&](HWND h, WPARAM, LPARAM, LRESULT&) {
    aliveInside = IsWindow(h);
    propInside = GetProp(h, u"p");
    return false;
  });
  DestroyWindow(w);
  EXPECT_TRUE(aliveInside);
  EXPECT_EQ(propInside, 5);
  EXPECT_FALSE(IsWindow(w));
  EXPECT_EQ(SendMessage(w, WM_USER, 0, 0), 0);
  EXPECT_FALSE(PostMessage(w, WM_USER, 0, 0));
  EXPECT_EQ(GetWindowLong(w, GWL_STYLE), 0);
  EXPECT_FALSE(DestroyWindow(w));
  EXPECT_EQ(ActiveTimerCount(), 0);

  // A new window never reuses the dead handle's value.
  HWND again = Make("again", WS_POPUP, 0, 0, 10, 10);
  EXPECT_NE(again, w);
}

TEST_F(WindowTest, OwnedWindowsGoBeforeTheirOwner) {
  HWND owner = Make("owner", WS_POPUP, 0, 0, 10, 10);
  HWND owned = Make("owned", WS_POPUP, 0, 0, 10, 10, owner);
  EXPECT_EQ(GetWindow(owned, GW_OWNER), owner);
  EXPECT_EQ(GetParent(owned), owner);  // a popup's "parent" is its owner
  Take();
  Only({WM_DESTROY, WM_NCDESTROY});
  DestroyWindow(owner);
  EXPECT_EQ(Take(), (Log{"owned:DESTROY", "owned:NCDESTROY", "owner:DESTROY", "owner:NCDESTROY"}));
}

TEST_F(WindowTest, SendMessageNestsInsideAProcedure) {
  HWND w = Make("w", WS_POPUP, 0, 0, 10, 10);
  std::vector<std::string> order;
  On(WM_USER, [&](HWND h, WPARAM, LPARAM, LRESULT& r) {
    order.push_back("enter");
    r = SendMessage(h, WM_USER + 1, 0, 0) + 1;
    order.push_back("leave");
    return true;
  });
  On(WM_USER + 1, [&](HWND, WPARAM, LPARAM, LRESULT& r) {
    order.push_back("nested");
    r = 41;
    return true;
  });
  EXPECT_EQ(SendMessage(w, WM_USER, 0, 0), 42);
  EXPECT_EQ(order, (std::vector<std::string>{"enter", "nested", "leave"}));
}

TEST_F(WindowTest, ProcedureReplacedFromInsideItselfFinishesItsCall) {
  HWND w = Make("w", WS_POPUP, 0, 0, 10, 10);
  std::vector<std::string> calls;
  WNDPROC second = RegisterWindowProc([&](HWND h, UINT m, WPARAM wp, LPARAM lp) -> LRESULT {
    if (m == WM_USER) calls.push_back("second");
    return DefWindowProc(h, m, wp, lp);
  });
  WNDPROC first = 0;
  std::string tag = "first-after-replace";  // read after the procedure replaced itself
  first = RegisterWindowProc([&, tag](HWND h, UINT m, WPARAM wp, LPARAM lp) -> LRESULT {
    if (m != WM_USER) return DefWindowProc(h, m, wp, lp);
    LONG_PTR old = SetWindowLongPtr(h, GWL_WNDPROC, second);
    EXPECT_EQ(static_cast<WNDPROC>(old), first);
    UnregisterWindowProc(first);  // the running call must survive its own handle's death
    calls.push_back(tag);
    return 7;
  });
  SetWindowLongPtr(w, GWL_WNDPROC, first);
  EXPECT_EQ(SendMessage(w, WM_USER, 0, 0), 7);
  EXPECT_EQ(SendMessage(w, WM_USER, 0, 0), 0);
  EXPECT_EQ(calls, (std::vector<std::string>{"first-after-replace", "second"}));
  EXPECT_EQ(CallWindowProc(first, w, WM_USER, 0, 0), 0);  // stale procedure handle
  // A bad handle is refused and the window keeps its procedure.
  EXPECT_EQ(SetWindowLongPtr(w, GWL_WNDPROC, 0x12345), 0);
  EXPECT_EQ(static_cast<WNDPROC>(GetWindowLongPtr(w, GWL_WNDPROC)), second);
  UnregisterWindowProc(second);
}

// A subclass in the classic style: it remembers the procedure it replaced and, when asked to
// go while another subclass sits above it, stays in the chain as a pass-through.
struct Subclass {
  std::string name;
  std::vector<std::string>* trace;
  WNDPROC self = 0, prev = 0;
  bool removed = false;

  void Install(HWND h) {
    self = RegisterWindowProc([this](HWND hw, UINT m, WPARAM wp, LPARAM lp) -> LRESULT {
      if (m == WM_USER && !removed) trace->push_back(name);
      return CallWindowProc(prev, hw, m, wp, lp);
    });
    prev = static_cast<WNDPROC>(SetWindowLongPtr(h, GWL_WNDPROC, self));
  }
  void Remove(HWND h) {
    removed = true;
    if (static_cast<WNDPROC>(GetWindowLongPtr(h, GWL_WNDPROC)) == self) SetWindowLongPtr(h, GWL_WNDPROC, prev);
  }
};

TEST_F(WindowTest, SubclassChainThroughCallWindowProc) {
  HWND w = Make("w", WS_POPUP, 0, 0, 10, 10);
  std::vector<std::string> trace;
  On(WM_USER, [&](HWND, WPARAM wp, LPARAM, LRESULT& r) {
    trace.push_back("base");
    r = static_cast<LRESULT>(wp) * 2;
    return true;
  });
  Subclass s1{"s1", &trace}, s2{"s2", &trace};
  s1.Install(w);
  s2.Install(w);
  EXPECT_EQ(SendMessage(w, WM_USER, 21, 0), 42);
  EXPECT_EQ(trace, (std::vector<std::string>{"s2", "s1", "base"}));

  // Out of order: the lower one goes first and must not cut the upper one off.
  trace.clear();
  s1.Remove(w);
  EXPECT_EQ(SendMessage(w, WM_USER, 5, 0), 10);
  EXPECT_EQ(trace, (std::vector<std::string>{"s2", "base"}));
  trace.clear();
  s2.Remove(w);
  EXPECT_EQ(static_cast<WNDPROC>(GetWindowLongPtr(w, GWL_WNDPROC)), s1.self);
  EXPECT_EQ(SendMessage(w, WM_USER, 1, 0), 2);
  EXPECT_EQ(trace, (std::vector<std::string>{"base"}));
  DestroyWindow(w);
  UnregisterWindowProc(s1.self);
  UnregisterWindowProc(s2.self);
}

TEST_F(WindowTest, TreeQueriesAndEnumeration) {
  HWND top = Make("top", WS_POPUP, 0, 0, 100, 100);
  HWND a = Make("a", WS_CHILD, 0, 0, 10, 10, top, 0, 1);
  HWND b = Make("b", WS_CHILD, 0, 0, 10, 10, top, 0, 2);
  HWND a1 = Make("a1", WS_CHILD, 0, 0, 5, 5, a);
  HWND other = Make("Other Window", WS_OVERLAPPED, 0, 0, 200, 100);

  // The first child created is first in z-order.
  EXPECT_EQ(GetWindow(top, GW_CHILD), a);
  EXPECT_EQ(GetWindow(a, GW_HWNDNEXT), b);
  EXPECT_EQ(GetWindow(b, GW_HWNDNEXT), 0u);
  EXPECT_EQ(GetWindow(b, GW_HWNDPREV), a);
  EXPECT_EQ(GetParent(a1), a);
  EXPECT_EQ(GetParent(other), 0u);
  EXPECT_EQ(GetAncestor(a1, GA_ROOT), top);
  EXPECT_EQ(GetAncestor(top, GA_PARENT), GetDesktopWindow());
  EXPECT_TRUE(IsChild(top, a1));
  EXPECT_FALSE(IsChild(a, b));
  EXPECT_EQ(GetWindowLong(b, GWL_ID), 2);

  std::vector<HWND> seen;
  EnumChildWindows(top, [&](HWND h, LPARAM) { seen.push_back(h); return TRUE; }, 0);
  EXPECT_EQ(seen, (std::vector<HWND>{a, a1, b}));
  seen.clear();
  EnumChildWindows(top, [&](HWND h, LPARAM) { seen.push_back(h); return h != a; }, 0);
  EXPECT_EQ(seen, (std::vector<HWND>{a}));

  EXPECT_EQ(FindWindow(u"rec", u"other window"), other);  // both compared without case
  EXPECT_EQ(FindWindow(nullptr, u"a"), 0u);                // children are not top-level
  EXPECT_EQ(FindWindowEx(top, a, u"Rec", nullptr), b);

  // Re-parenting: b moves under a, on top of a's children.
  EXPECT_EQ(SetParent(b, a), top);
  EXPECT_EQ(GetWindow(a, GW_CHILD), b);
  EXPECT_EQ(SetParent(a, a1), 0u);  // a cycle is refused
  EXPECT_EQ(SetParent(a1, 0), a);
  EXPECT_EQ(GetAncestor(a1, GA_PARENT), GetDesktopWindow());
}

TEST_F(WindowTest, SetWindowPosMessagesAndClientGeometry) {
  HWND top = Make("top", WS_POPUP | WS_VISIBLE, 100, 50, 200, 150);
  HWND kid = Make("kid", WS_CHILD | WS_VISIBLE | WS_BORDER, 10, 20, 60, 40, top);
  Only({WM_WINDOWPOSCHANGING, WM_WINDOWPOSCHANGED, WM_MOVE, WM_SIZE});
  Take();

  // WM_WINDOWPOSCHANGING may change the request.
  On(WM_WINDOWPOSCHANGING, [](HWND, WPARAM, LPARAM l, LRESULT&) {
    auto* wp = reinterpret_cast<WINDOWPOS*>(l);
    wp->cx = std::min(wp->cx, 80);
    return false;
  });
  SetWindowPos(kid, 0, 15, 25, 100, 40, SWP_NOZORDER);
  EXPECT_EQ(Take(), (Log{"kid:POSCHANGING", "kid:POSCHANGED", "kid:MOVE", "kid:SIZE"}));
  RECT r;
  GetWindowRect(kid, &r);
  EXPECT_EQ(r, (RECT{115, 75, 195, 115}));
  GetClientRect(kid, &r);
  EXPECT_EQ(r, (RECT{0, 0, 78, 38}));  // one-pixel border
  POINT p{0, 0};
  ClientToScreen(kid, &p);
  EXPECT_EQ(p, (POINT{116, 76}));
  POINT pts[1] = {{1, 2}};
  MapWindowPoints(kid, top, pts, 1);
  EXPECT_EQ(pts[0], (POINT{17, 28}));

  // A move alone gives no WM_SIZE; NOSENDCHANGING skips the question.
  SetWindowPos(kid, 0, 0, 0, 0, 0, SWP_NOZORDER | SWP_NOSIZE | SWP_NOSENDCHANGING);
  EXPECT_EQ(Take(), (Log{"kid:POSCHANGED", "kid:MOVE"}));
  // Nothing changing still reports, but neither moves nor sizes.
  SetWindowPos(kid, 0, 0, 0, 0, 0, SWP_NOZORDER | SWP_NOSIZE | SWP_NOMOVE);
  EXPECT_EQ(Take(), (Log{"kid:POSCHANGING", "kid:POSCHANGED"}));

  // A procedure that keeps WM_WINDOWPOSCHANGED from DefWindowProc gets no WM_SIZE.
  On(WM_WINDOWPOSCHANGED, [](HWND, WPARAM, LPARAM, LRESULT&) { return true; });
  MoveWindow(kid, 1, 1, 30, 30, TRUE);
  EXPECT_EQ(Take(), (Log{"kid:POSCHANGING", "kid:POSCHANGED"}));
}

TEST_F(WindowTest, ZOrderBandsAndOwnedWindows) {
  HWND a = Make("a", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10);
  HWND b = Make("b", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10);
  HWND t = Make("t", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, 0, WS_EX_TOPMOST);
  HWND owned = Make("owned", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, a);
  auto order = [] {
    std::vector<HWND> v;
    for (HWND h = GetTopWindow(0); h; h = GetWindow(h, GW_HWNDNEXT)) v.push_back(h);
    return v;
  };
  EXPECT_EQ(order(), (std::vector<HWND>{t, owned, b, a}));
  // Bringing the owner up brings its owned window along, above it; topmost stays on top.
  SetWindowPos(a, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  EXPECT_EQ(order(), (std::vector<HWND>{t, owned, a, b}));
  SetWindowPos(owned, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  EXPECT_EQ(order(), (std::vector<HWND>{t, owned, a, b}));
  SetWindowPos(b, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  EXPECT_TRUE(GetWindowLong(b, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_EQ(order(), (std::vector<HWND>{b, t, owned, a}));
  SetWindowPos(t, HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  EXPECT_EQ(order(), (std::vector<HWND>{b, t, owned, a}));
  SetWindowPos(t, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  EXPECT_EQ(order(), (std::vector<HWND>{b, owned, a, t}));
}

TEST_F(WindowTest, MinimiseMaximiseAndRestore) {
  HWND w = Make("w", WS_POPUP | WS_THICKFRAME | WS_VISIBLE, 100, 100, 300, 200);
  std::vector<std::pair<WPARAM, LPARAM>> sizes;
  On(WM_SIZE, [&](HWND, WPARAM wp, LPARAM lp, LRESULT&) {
    sizes.push_back({wp, lp});
    return false;
  });
  ShowWindow(w, SW_MAXIMIZE);
  EXPECT_TRUE(IsZoomed(w));
  RECT r;
  GetWindowRect(w, &r);
  // The sizing frame hangs outside the 1280 x 760 work area.
  EXPECT_EQ(r, (RECT{-4, -4, 1284, 764}));
  ASSERT_EQ(sizes.size(), 1u);
  EXPECT_EQ(sizes[0].first, SIZE_MAXIMIZED);
  EXPECT_EQ(sizes[0].second, MAKELPARAM(1280, 760));

  ShowWindow(w, SW_MINIMIZE);
  EXPECT_TRUE(IsIconic(w));
  EXPECT_FALSE(IsZoomed(w));
  EXPECT_EQ(sizes.back().first, SIZE_MINIMIZED);
  // Restoring a window minimised from maximised brings it back maximised, then normal.
  ShowWindow(w, SW_RESTORE);
  EXPECT_TRUE(IsZoomed(w));
  ShowWindow(w, SW_RESTORE);
  GetWindowRect(w, &r);
  EXPECT_EQ(r, (RECT{100, 100, 400, 300}));
  EXPECT_EQ(sizes.back().first, SIZE_RESTORED);

  // WM_GETMINMAXINFO decides the maximised place.
  On(WM_GETMINMAXINFO, [](HWND, WPARAM, LPARAM l, LRESULT&) {
    auto* mmi = reinterpret_cast<MINMAXINFO*>(l);
    mmi->ptMaxPosition = {50, 60};
    mmi->ptMaxSize = {500, 400};
    return true;
  });
  ShowWindow(w, SW_SHOWMAXIMIZED);
  GetWindowRect(w, &r);
  EXPECT_EQ(r, (RECT{50, 60, 550, 460}));
  WINDOWPLACEMENT wp;
  GetWindowPlacement(w, &wp);
  EXPECT_EQ(wp.showCmd, static_cast<UINT>(SW_SHOWMAXIMIZED));
  EXPECT_EQ(wp.rcNormalPosition, (RECT{100, 100, 400, 300}));
}

TEST_F(WindowTest, HitTestingThroughRegionsTransparencyAndState) {
  HWND below = Make("below", WS_POPUP | WS_VISIBLE, 0, 0, 300, 300);
  HWND round = Make("round", WS_POPUP | WS_VISIBLE, 100, 100, 100, 100);
  const int regionsAtStart = LiveHandleCount(HandleType::Region);
  SetWindowRgn(round, CreateEllipticRgn(0, 0, 100, 100), TRUE);
  EXPECT_EQ(WindowFromPoint({150, 150}), round);
  EXPECT_EQ(WindowFromPoint({101, 101}), below);  // the corner is outside the circle
  EXPECT_EQ(WindowFromPoint({198, 150}), round);
  EXPECT_EQ(WindowFromPoint({500, 500}), 0u);

  // GetWindowRgn copies; the window keeps its own.
  HRGN copy = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(GetWindowRgn(round, copy), COMPLEXREGION);
  EXPECT_TRUE(PtInRegion(copy, 50, 50));
  EXPECT_FALSE(PtInRegion(copy, 1, 1));
  SetRectRgn(copy, 0, 0, 1, 1);
  EXPECT_EQ(WindowFromPoint({150, 150}), round);
  DeleteObject(copy);

  HWND kid = Make("kid", WS_CHILD | WS_VISIBLE, 0, 0, 50, 50, below);
  EXPECT_EQ(WindowFromPoint({10, 10}), kid);
  EnableWindow(kid, FALSE);
  EXPECT_EQ(WindowFromPoint({10, 10}), below);  // disabled children give way to the parent
  EXPECT_EQ(ChildWindowFromPoint(below, {10, 10}), kid);
  EXPECT_EQ(ChildWindowFromPointEx(below, {10, 10}, CWP_SKIPDISABLED), below);
  EnableWindow(kid, TRUE);
  ShowWindow(kid, SW_HIDE);
  EXPECT_EQ(WindowFromPoint({10, 10}), below);
  ShowWindow(kid, SW_SHOWNA);
  SetWindowLong(kid, GWL_EXSTYLE, WS_EX_TRANSPARENT);
  EXPECT_EQ(WindowFromPoint({10, 10}), below);
  SetWindowLong(kid, GWL_EXSTYLE, 0);
  On(WM_NCHITTEST, [&](HWND h, WPARAM, LPARAM, LRESULT& r) {
    if (h != kid) return false;
    r = HTTRANSPARENT;
    return true;
  });
  EXPECT_EQ(WindowFromPoint({10, 10}), below);

  // The region went with its window.
  DestroyWindow(round);
  EXPECT_EQ(LiveHandleCount(HandleType::Region), regionsAtStart);
}

TEST_F(WindowTest, LongsStylesPropertiesAndText) {
  WNDCLASSEXW wc;
  wc.lpfnWndProc = RegisterWindowProc([](HWND h, UINT m, WPARAM w, LPARAM l) { return DefWindowProc(h, m, w, l); });
  wc.cbWndExtra = 12;
  wc.lpszClassName = u"Extra";
  ASSERT_TRUE(RegisterClassEx(&wc));
  EXPECT_FALSE(RegisterClassEx(&wc));  // the name is taken
  HWND x = CreateWindowEx(0, u"Extra", u"", WS_POPUP, 0, 0, 1, 1, 0);
  EXPECT_EQ(SetWindowLong(x, 8, 0x11223344), 0);
  EXPECT_EQ(GetWindowLong(x, 8), 0x11223344);
  EXPECT_EQ(SetWindowLong(x, 10, 1), 0);  // past the 12 bytes
  EXPECT_FALSE(UnregisterClass(u"Extra"));  // a window still uses it
  DestroyWindow(x);
  EXPECT_TRUE(UnregisterClass(u"Extra"));
  UnregisterWindowProc(wc.lpfnWndProc);

  HWND w = Make("w", WS_POPUP, 0, 0, 10, 10);
  Only({WM_STYLECHANGING, WM_STYLECHANGED});
  Take();
  STYLESTRUCT seen{};
  On(WM_STYLECHANGED, [&](HWND, WPARAM wp, LPARAM l, LRESULT&) {
    EXPECT_EQ(static_cast<int>(static_cast<intptr_t>(wp)), GWL_STYLE);
    seen = *reinterpret_cast<STYLESTRUCT*>(l);
    return false;
  });
  LONG old = SetWindowLong(w, GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_BORDER));
  EXPECT_EQ(static_cast<DWORD>(old), WS_POPUP);
  EXPECT_EQ(seen.styleOld, WS_POPUP);
  EXPECT_EQ(seen.styleNew, WS_POPUP | WS_BORDER);
  EXPECT_EQ(Take(), (Log{"w:STYLECHANGING", "w:STYLECHANGED"}));

  EXPECT_EQ(SetWindowLongPtr(w, GWL_USERDATA, 1234), 0);
  EXPECT_EQ(GetWindowLongPtr(w, GWL_USERDATA), 1234);
  EXPECT_TRUE(SetProp(w, u"Key", -5));
  EXPECT_EQ(GetProp(w, u"Key"), -5);
  EXPECT_EQ(RemoveProp(w, u"Key"), -5);
  EXPECT_EQ(GetProp(w, u"Key"), 0);

  EXPECT_EQ(GetWindowTextString(w), u"w");
  SetWindowText(w, u"Olá mundo");
  EXPECT_EQ(GetWindowTextLength(w), 9);
  char16_t small[4];
  EXPECT_EQ(GetWindowText(w, small, 4), 3);
  EXPECT_EQ(std::u16string(small), u"Olá");
  // A procedure answering WM_GETTEXT itself is what GetWindowText reports.
  On(WM_GETTEXT, [](HWND, WPARAM n, LPARAM l, LRESULT& r) {
    auto* buf = reinterpret_cast<char16_t*>(l);
    if (n < 3) return false;
    buf[0] = u'h';
    buf[1] = u'i';
    buf[2] = 0;
    r = 2;
    return true;
  });
  On(WM_GETTEXTLENGTH, [](HWND, WPARAM, LPARAM, LRESULT& r) {
    r = 2;
    return true;
  });
  EXPECT_EQ(GetWindowTextString(w), u"hi");
}

TEST_F(WindowTest, WindowDCsAreFreedWithTheirWindow) {
  HWND w = Make("w", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50);
  HWND kid = Make("kid", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, w);
  const int dcs = LiveHandleCount(HandleType::DC);
  HDC a = GetDC(w);
  HDC b = GetWindowDC(kid);
  ASSERT_TRUE(a && b);
  EXPECT_EQ(WindowFromDC(b), kid);
  EXPECT_EQ(LiveHandleCount(HandleType::DC), dcs + 2);
  EXPECT_EQ(ReleaseDC(w, a), 1);
  EXPECT_EQ(ReleaseDC(w, a), 0);  // already gone
  DestroyWindow(w);               // b was never released
  EXPECT_EQ(LiveHandleCount(HandleType::DC), dcs);
}

}  // namespace
}  // namespace mx::platform
