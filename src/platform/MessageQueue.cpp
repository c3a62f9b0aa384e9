// The message queue, the retrieval order of GetMessage/PeekMessage, dispatch, and the loop
// helpers that drive the virtual clock.
#include "platform/MessageQueue.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/Backend.h"
#include "platform/Clock.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace {

// A loop that dispatches this many messages without the queue running dry is a window feeding
// itself (posting or invalidating on every message); the helpers stop rather than hang.
constexpr int kPumpLimit = 200000;

thread_local bool t_exhausted = false;

bool InRange(UINT message, UINT minMsg, UINT maxMsg) {
  if (minMsg == 0 && maxMsg == 0) return true;
  return message >= minMsg && message <= maxMsg;
}

bool MatchesWindow(HWND msgHwnd, HWND filter) {
  if (filter == 0) return true;
  if (filter == static_cast<HWND>(-1)) return msgHwnd == 0;  // thread messages only
  return msgHwnd == filter;
}

bool IsMouseMessage(UINT m) {
  return (m >= WM_MOUSEFIRST && m <= WM_MOUSELAST) || (m >= WM_NCMOUSEMOVE && m <= WM_NCXBUTTONDBLCLK);
}

// Finds the input event with the given serial after re-entrant code may have changed the queue.
InputEvent* FindInput(uint64_t serial) {
  for (auto& ev : St().input)
    if (ev.serial == serial) return &ev;
  return nullptr;
}

void EraseInput(uint64_t serial) {
  auto& q = St().input;
  q.erase(std::remove_if(q.begin(), q.end(), [&](const InputEvent& e) { return e.serial == serial; }), q.end());
}

bool PeekCore(MSG* out, HWND filter, UINT minMsg, UINT maxMsg, UINT flags) {
  UserState& st = St();
  const bool remove = (flags & PM_REMOVE) != 0;
  if (Backend* b = ActiveBackend()) b->PollEvents();
  CheckHover();

  auto takePosted = [&] {
    for (auto it = st.posted.begin(); it != st.posted.end(); ++it) {
      if (MatchesWindow(it->hwnd, filter) && InRange(it->message, minMsg, maxMsg)) {
        *out = *it;
        if (remove) st.posted.erase(it);
        return true;
      }
    }
    return false;
  };
  if (takePosted()) return true;

  // Input, in order. Cooking sends messages (hit tests, cursor, activation) that may add,
  // take or reorder events, so each event is looked up again by its serial afterwards.
  for (size_t i = 0; i < st.input.size();) {
    uint64_t serial = st.input[i].serial;
    if (!st.input[i].cooked) {
      InputEvent copy = st.input[i];
      bool keep = CookInput(copy);
      InputEvent* ev = FindInput(serial);
      if (!ev) continue;
      if (!keep) {
        // Cooking may post (a leave for the window the pointer left for the bare desktop):
        // that comes before the rest of the input.
        EraseInput(serial);
        if (takePosted()) return true;
        continue;
      }
      *ev = copy;
    }
    InputEvent* ev = FindInput(serial);
    if (!ev) continue;
    if (MatchesWindow(ev->msg.hwnd, filter) && InRange(ev->msg.message, minMsg, maxMsg)) {
      MSG m = ev->msg;
      if (remove) {
        InputEvent taken = *ev;
        EraseInput(serial);
        CommitInput(taken);
        // The mouse and keyboard hooks may swallow the message as it is taken.
        if (IsMouseMessage(m.message) && HasHooks(WH_MOUSE)) {
          MOUSEHOOKSTRUCTEX mh;
          mh.pt = m.pt;
          mh.hwnd = m.hwnd;
          mh.wHitTestCode = static_cast<UINT>(taken.hit);
          mh.mouseData = (m.message == WM_MOUSEWHEEL || m.message == WM_MOUSEHWHEEL || m.message == WM_XBUTTONDOWN ||
                          m.message == WM_XBUTTONUP || m.message == WM_XBUTTONDBLCLK)
                             ? static_cast<DWORD>(m.wParam & 0xFFFF0000u)
                             : 0;
          if (CallHooks(WH_MOUSE, HC_ACTION, m.message, reinterpret_cast<LPARAM>(&mh))) {
            i = 0;
            continue;
          }
        } else if (m.message >= WM_KEYDOWN && m.message <= WM_SYSKEYUP && m.message != WM_CHAR &&
                   m.message != WM_SYSCHAR && HasHooks(WH_KEYBOARD)) {
          if (CallHooks(WH_KEYBOARD, HC_ACTION, m.wParam, m.lParam)) {
            i = 0;
            continue;
          }
        }
      }
      *out = m;
      return true;
    }
    // Skip this one: find its position again and move past it.
    size_t pos = 0;
    while (pos < st.input.size() && st.input[pos].serial != serial) ++pos;
    i = pos + 1;
  }

  // WM_QUIT, WM_PAINT and WM_TIMER are not queued: they are made when the queue is otherwise
  // empty, in this order, so a busy queue starves them exactly as the classic one does.
  if (st.quitPosted && (filter == 0 || filter == static_cast<HWND>(-1))) {
    *out = MSG{0, WM_QUIT, static_cast<WPARAM>(st.quitCode), 0, GetTickCount(), st.cursor};
    if (remove) st.quitPosted = false;
    return true;
  }

  HWND paint = 0;
  if (InRange(WM_PAINT, minMsg, maxMsg) && filter != static_cast<HWND>(-1) && FindPaintWindow(filter, &paint)) {
    *out = MSG{paint, WM_PAINT, 0, 0, GetTickCount(), st.cursor};
    return true;
  }

  if (InRange(WM_TIMER, minMsg, maxMsg) && FindDueTimer(filter, minMsg, maxMsg, remove, out)) return true;
  return false;
}

std::optional<uint64_t> NextDue() {
  std::optional<uint64_t> a = NextTimerDue(), b = NextHoverDue();
  if (a && b) return std::min(*a, *b);
  return a ? a : b;
}

bool RunIdleAction() {
  UserState& st = St();
  if (st.idleActions.empty()) return false;
  std::function<void()> action = std::move(st.idleActions.front());
  st.idleActions.pop_front();
  if (action) action();
  return true;
}

// Lets real time pass. With a back end, its events are taken while waiting and dispatched at
// once, so that a loop helper running for a while still answers the pointer.
void PassRealTime(uint64_t milliseconds) {
  Backend* b = ActiveBackend();
  if (!b) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    return;
  }
  const uint64_t end = GetTickCount64() + milliseconds;
  for (;;) {
    b->Sync();
    const uint64_t now = GetTickCount64();
    if (now >= end) return;
    b->WaitEvents(static_cast<int>(std::min<uint64_t>(end - now, 1u << 30)));
    PumpMessages();
  }
}

// Moves time to the next due event: the virtual clock jumps, the real one sleeps. False when
// nothing is due at all, or when what is due cannot be retrieved (filtered out). With a back
// end, real events end the wait too, and only a back end without windows has nothing to wait for.
bool WaitForNext() {
  std::optional<uint64_t> next = NextDue();
  if (Backend* b = ActiveBackend(); b && !IsVirtualClock()) {
    b->Sync();
    if (!next) return b->WaitEvents(-1);
    const uint64_t now = GetTickCount64();
    if (*next <= now) return false;
    return b->WaitEvents(static_cast<int>(std::min<uint64_t>(*next - now, 1u << 30)));
  }
  if (!next) return false;
  uint64_t now = GetTickCount64();
  if (*next <= now) return false;
  if (IsVirtualClock())
    AdvanceVirtualClock(*next - now);
  else
    std::this_thread::sleep_for(std::chrono::milliseconds(*next - now));
  return true;
}

}  // namespace

LRESULT SendMessageW(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (hwnd == HWND_BROADCAST) {
    std::vector<HWND> tops = St().topLevels;
    for (HWND t : tops) Deliver(t, msg, wParam, lParam);
    return 0;
  }
  return Deliver(hwnd, msg, wParam, lParam);
}

BOOL PostMessageW(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  UserState& st = St();
  if (hwnd == HWND_BROADCAST) {
    for (HWND t : st.topLevels) st.posted.push_back(MSG{t, msg, wParam, lParam, GetTickCount(), st.cursor});
    return TRUE;
  }
  if (hwnd && !Get(hwnd)) return FALSE;
  st.posted.push_back(MSG{hwnd, msg, wParam, lParam, GetTickCount(), st.cursor});
  return TRUE;
}

BOOL PostThreadMessageW(DWORD, UINT msg, WPARAM wParam, LPARAM lParam) { return PostMessageW(0, msg, wParam, lParam); }

void PostQuitMessage(int exitCode) {
  St().quitPosted = true;
  St().quitCode = exitCode;
}

BOOL PeekMessageW(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg, UINT removeFlags) {
  if (!msg) return FALSE;
  MSG m;
  if (!PeekCore(&m, hwnd, minMsg, maxMsg, removeFlags)) return FALSE;
  if (HasHooks(WH_GETMESSAGE))
    CallHooks(WH_GETMESSAGE, HC_ACTION, removeFlags & PM_REMOVE, reinterpret_cast<LPARAM>(&m));
  St().lastMsg = m;
  *msg = m;
  return TRUE;
}

BOOL GetMessageW(MSG* msg, HWND hwnd, UINT minMsg, UINT maxMsg) {
  if (!msg) return FALSE;
  t_exhausted = false;
  for (;;) {
    if (PeekMessageW(msg, hwnd, minMsg, maxMsg, PM_REMOVE)) return msg->message != WM_QUIT ? TRUE : FALSE;
    if (RunIdleAction()) continue;
    if (HasHooks(WH_FOREGROUNDIDLE)) CallHooks(WH_FOREGROUNDIDLE, HC_ACTION, 0, 0);
    if (!WaitForNext()) {
      t_exhausted = true;
      *msg = MSG{};
      return FALSE;
    }
  }
}

BOOL WaitMessage() {
  MSG m;
  if (PeekMessageW(&m, 0, 0, 0, PM_NOREMOVE)) return TRUE;
  if (RunIdleAction()) return TRUE;
  return WaitForNext() ? TRUE : FALSE;
}

BOOL TranslateMessage(const MSG* msg) {
  if (!msg || (msg->message != WM_KEYDOWN && msg->message != WM_SYSKEYDOWN)) return FALSE;
  char16_t ch = CharacterForKey(static_cast<int>(msg->wParam));
  if (!ch) return FALSE;
  // A back end that delivers typed text (keyboard layouts, dead keys, input methods) has sent
  // the printable characters already; only control characters come from the key itself.
  if (Backend* b = ActiveBackend();
      b && b->DeliversText() && msg->message == WM_KEYDOWN && ch >= 0x20 && ch != 0x7F)
    return FALSE;
  UINT charMsg = msg->message == WM_SYSKEYDOWN ? WM_SYSCHAR : WM_CHAR;
  PostMessageW(msg->hwnd, charMsg, ch, msg->lParam);
  return TRUE;
}

// Dispatching is not sending: the send hooks do not see dispatched messages.
LRESULT DispatchMessageW(const MSG* msg) {
  if (!msg) return 0;
  // A WM_TIMER with a procedure runs the procedure instead of the window's; if the timer died
  // in the meantime the message is simply dropped.
  if (msg->message == WM_TIMER && msg->lParam) {
    DispatchTimerProc(*msg);
    return 0;
  }
  Wnd* w = Get(msg->hwnd);
  if (!w) return 0;
  if (msg->message == WM_PAINT) {
    SendPaint(msg->hwnd);
    return 0;
  }
  return CallWindowProc(w->proc, msg->hwnd, msg->message, msg->wParam, msg->lParam);
}

DWORD GetMessageTime() { return St().lastMsg.time; }

DWORD GetMessagePos() {
  const POINT& p = St().lastMsg.pt;
  return static_cast<DWORD>(MAKELPARAM(p.x, p.y));
}

DWORD GetQueueStatus(UINT flags) {
  constexpr DWORD QS_KEY = 0x1, QS_MOUSEMOVE = 0x2, QS_MOUSEBUTTON = 0x4, QS_POSTMESSAGE = 0x8, QS_TIMER = 0x10,
                  QS_PAINT = 0x20;
  UserState& st = St();
  DWORD s = 0;
  if (!st.posted.empty() || st.quitPosted) s |= QS_POSTMESSAGE;
  for (const auto& ev : st.input) {
    switch (ev.kind) {
      case InputEvent::Kind::Move: s |= QS_MOUSEMOVE; break;
      case InputEvent::Kind::Button:
      case InputEvent::Kind::Wheel: s |= QS_MOUSEBUTTON; break;
      default: s |= QS_KEY; break;
    }
  }
  HWND paint;
  if (FindPaintWindow(0, &paint)) s |= QS_PAINT;
  if (auto next = NextTimerDue(); next && *next <= GetTickCount64()) s |= QS_TIMER;
  s &= flags;
  return (s << 16) | s;
}

BOOL InSendMessage() { return FALSE; }

bool IsQueueExhausted() { return t_exhausted; }

// ---- loop helpers ------------------------------------------------------------------------------

int PumpMessages() {
  int n = 0;
  MSG m;
  while (n < kPumpLimit && PeekMessageW(&m, 0, 0, 0, PM_REMOVE)) {
    if (m.message == WM_QUIT) {
      // Left for the caller's own loop to see.
      PostQuitMessage(static_cast<int>(m.wParam));
      break;
    }
    TranslateMessage(&m);
    DispatchMessageW(&m);
    ++n;
  }
  // The queue ran dry: what was painted can be shown.
  if (Backend* b = ActiveBackend()) b->Sync();
  return n;
}

int RunFor(uint64_t milliseconds) {
  int n = 0;
  const uint64_t end = GetTickCount64() + milliseconds;
  for (int guard = 0; guard < kPumpLimit; ++guard) {
    n += PumpMessages();
    if (IsQuitPending()) break;
    if (RunIdleAction()) continue;
    const uint64_t now = GetTickCount64();
    std::optional<uint64_t> next = NextDue();
    if (!next || *next > end) {
      if (end > now) {
        if (IsVirtualClock())
          AdvanceVirtualClock(end - now);
        else
          PassRealTime(end - now);
      }
      n += PumpMessages();
      break;
    }
    // Something due now that no pump took (all filtered) would spin: step past it.
    uint64_t step = *next > now ? *next - now : 1;
    if (IsVirtualClock())
      AdvanceVirtualClock(step);
    else
      PassRealTime(step);
  }
  return n;
}

bool RunUntilIdle(uint64_t limitMs) {
  const uint64_t start = GetTickCount64();
  for (int guard = 0; guard < kPumpLimit; ++guard) {
    PumpMessages();
    if (IsQuitPending()) return false;
    if (RunIdleAction()) continue;
    std::optional<uint64_t> next = NextDue();
    if (!next) return true;
    const uint64_t now = GetTickCount64();
    if (*next > start + limitMs) return false;
    uint64_t step = *next > now ? *next - now : 1;
    if (IsVirtualClock())
      AdvanceVirtualClock(step);
    else
      PassRealTime(step);
  }
  return false;
}

bool RunModalLoop(HWND hwnd) {
  MSG m;
  while (IsWindow(hwnd)) {
    if (!GetMessageW(&m, 0, 0, 0)) {
      if (m.message == WM_QUIT) PostQuitMessage(static_cast<int>(m.wParam));
      return false;
    }
    if (HasHooks(WH_MSGFILTER) && CallHooks(WH_MSGFILTER, MSGF_DIALOGBOX, 0, reinterpret_cast<LPARAM>(&m))) continue;
    TranslateMessage(&m);
    DispatchMessageW(&m);
  }
  return true;
}

void PushIdleAction(std::function<void()> action) { St().idleActions.push_back(std::move(action)); }

bool IsQuitPending(int* exitCode) {
  if (exitCode) *exitCode = St().quitCode;
  return St().quitPosted;
}

}  // namespace mx::platform
