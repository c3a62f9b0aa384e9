#pragma once
// Shared pieces of the windowing tests: a fixture with a clean desktop and a virtual clock, and
// a window class whose procedure records the messages it gets (by window name) before passing
// them to DefWindowProc, unless a test installs its own handler for a message.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/HandleTable.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"

namespace mx::platform::testing {

inline std::string MessageName(UINT m) {
  static const std::map<UINT, std::string> names = {
      {WM_CREATE, "CREATE"}, {WM_DESTROY, "DESTROY"}, {WM_MOVE, "MOVE"}, {WM_SIZE, "SIZE"},
      {WM_ACTIVATE, "ACTIVATE"}, {WM_SETFOCUS, "SETFOCUS"}, {WM_KILLFOCUS, "KILLFOCUS"},
      {WM_ENABLE, "ENABLE"}, {WM_PAINT, "PAINT"}, {WM_CLOSE, "CLOSE"}, {WM_ERASEBKGND, "ERASEBKGND"},
      {WM_SHOWWINDOW, "SHOWWINDOW"}, {WM_ACTIVATEAPP, "ACTIVATEAPP"}, {WM_CANCELMODE, "CANCELMODE"},
      {WM_SETCURSOR, "SETCURSOR"}, {WM_MOUSEACTIVATE, "MOUSEACTIVATE"}, {WM_GETMINMAXINFO, "GETMINMAXINFO"},
      {WM_WINDOWPOSCHANGING, "POSCHANGING"}, {WM_WINDOWPOSCHANGED, "POSCHANGED"},
      {WM_NCCREATE, "NCCREATE"}, {WM_NCDESTROY, "NCDESTROY"}, {WM_NCCALCSIZE, "NCCALCSIZE"},
      {WM_NCHITTEST, "NCHITTEST"}, {WM_NCPAINT, "NCPAINT"}, {WM_NCACTIVATE, "NCACTIVATE"},
      {WM_NCMOUSEMOVE, "NCMOUSEMOVE"}, {WM_NCLBUTTONDOWN, "NCLBUTTONDOWN"}, {WM_NCLBUTTONUP, "NCLBUTTONUP"},
      {WM_KEYDOWN, "KEYDOWN"}, {WM_KEYUP, "KEYUP"}, {WM_CHAR, "CHAR"}, {WM_SYSKEYDOWN, "SYSKEYDOWN"},
      {WM_SYSKEYUP, "SYSKEYUP"}, {WM_SYSCHAR, "SYSCHAR"}, {WM_TIMER, "TIMER"},
      {WM_MOUSEMOVE, "MOUSEMOVE"}, {WM_LBUTTONDOWN, "LBUTTONDOWN"}, {WM_LBUTTONUP, "LBUTTONUP"},
      {WM_LBUTTONDBLCLK, "LBUTTONDBLCLK"}, {WM_RBUTTONDOWN, "RBUTTONDOWN"}, {WM_RBUTTONUP, "RBUTTONUP"},
      {WM_MBUTTONDOWN, "MBUTTONDOWN"}, {WM_MBUTTONUP, "MBUTTONUP"}, {WM_MOUSEWHEEL, "MOUSEWHEEL"},
      {WM_XBUTTONDOWN, "XBUTTONDOWN"}, {WM_XBUTTONUP, "XBUTTONUP"}, {WM_XBUTTONDBLCLK, "XBUTTONDBLCLK"},
      {WM_PARENTNOTIFY, "PARENTNOTIFY"}, {WM_CAPTURECHANGED, "CAPTURECHANGED"},
      {WM_MOUSEHOVER, "MOUSEHOVER"}, {WM_MOUSELEAVE, "MOUSELEAVE"}, {WM_NCMOUSELEAVE, "NCMOUSELEAVE"},
      {WM_STYLECHANGING, "STYLECHANGING"}, {WM_STYLECHANGED, "STYLECHANGED"},
      {WM_ENTERSIZEMOVE, "ENTERSIZEMOVE"}, {WM_EXITSIZEMOVE, "EXITSIZEMOVE"}, {WM_MOVING, "MOVING"},
      {WM_SYSCOMMAND, "SYSCOMMAND"}, {WM_SETTEXT, "SETTEXT"}, {WM_GETTEXT, "GETTEXT"},
      {WM_GETTEXTLENGTH, "GETTEXTLENGTH"}};
  auto it = names.find(m);
  return it != names.end() ? it->second : "0x" + std::to_string(m);
}

// A clean desktop and a virtual clock for every test.
class WindowingTest : public ::testing::Test {
 protected:
  // Longer than any clean-up delay the library schedules.
  static constexpr uint64_t kScheduledCleanupMs = 250;

  void SetUp() override {
    ResetWindowing();
    m_windowsAtStart = LiveHandleCount(HandleType::Window);
    m_dcsAtStart = LiveHandleCount(HandleType::DC);
    RegisterWindowClass(u"Rec", [this](HWND h, UINT m, WPARAM w, LPARAM l) { return Proc(h, m, w, l); }, CS_DBLCLKS);
  }
  void TearDown() override {
    // Handlers may refer to the test's locals, which are gone by now.
    m_handlers.clear();
    // Clean-ups the code under test scheduled on a timer (a released subclass frees its
    // procedure 100 ms later) run before the reset drops every timer; on the virtual clock
    // this costs no real time.
    if (IsVirtualClock()) RunFor(kScheduledCleanupMs);
    ResetWindowing();
    // Every test leaves no window and no window DC behind.
    EXPECT_EQ(LiveHandleCount(HandleType::Window), m_windowsAtStart);
    EXPECT_EQ(LiveHandleCount(HandleType::DC), m_dcsAtStart);
  }

  // Creates a recording window called `name`.
  HWND Make(const std::string& name, DWORD style, int x, int y, int w, int h, HWND parent = 0, DWORD ex = 0,
            UINT_PTR id = 0) {
    std::u16string n(name.begin(), name.end());
    HWND hwnd = CreateWindowExW(ex, u"Rec", n.c_str(), style, x, y, w, h, parent, id);
    if (hwnd) m_names[hwnd] = name;
    return hwnd;
  }

  LRESULT Proc(HWND h, UINT m, WPARAM w, LPARAM l) {
    std::string who = NameOf(h, m, l);
    if (m_record && (m_only.empty() || m_only.count(m))) m_log.push_back(who + ":" + MessageName(m));
    auto it = m_handlers.find(m);
    if (it != m_handlers.end()) {
      LRESULT r = 0;
      if (it->second(h, w, l, r)) return r;
    }
    return DefWindowProc(h, m, w, l);
  }

  std::string NameOf(HWND h, UINT m, LPARAM l) {
    // The name is known from WM_NCCREATE on, before CreateWindowEx returns.
    if (m == WM_NCCREATE && l) {
      std::u16string title = reinterpret_cast<const CREATESTRUCTW*>(l)->lpszName;
      m_names[h] = std::string(title.begin(), title.end());
    }
    auto it = m_names.find(h);
    return it != m_names.end() ? it->second : "?";
  }

  // Handler: return true to answer with `result` instead of DefWindowProc.
  using Handler = std::function<bool(HWND, WPARAM, LPARAM, LRESULT&)>;
  void On(UINT m, Handler h) { m_handlers[m] = std::move(h); }

  // Only these messages are recorded (all when empty).
  void Only(std::initializer_list<UINT> ms) { m_only = std::set<UINT>(ms); }
  std::vector<std::string> Take() {
    std::vector<std::string> out;
    out.swap(m_log);
    return out;
  }

  std::map<HWND, std::string> m_names;
  std::map<UINT, Handler> m_handlers;
  std::set<UINT> m_only;
  std::vector<std::string> m_log;
  bool m_record = true;
  int m_windowsAtStart = 0;
  int m_dcsAtStart = 0;
  ScopedVirtualClock m_clock;
};

using Log = std::vector<std::string>;

}  // namespace mx::platform::testing
