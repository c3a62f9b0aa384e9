#include "platform/Timer.h"

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Messages.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapse, TIMERPROC proc) {
  UserState& st = St();
  if (hwnd && !Get(hwnd)) return 0;
  elapse = std::clamp(elapse, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
  const uint64_t due = GetTickCount64() + elapse;
  auto procPtr = proc ? std::make_shared<TIMERPROC>(std::move(proc)) : nullptr;

  // (hwnd, id) names a timer; a thread timer with id 0 is always a new one.
  TimerEntry* existing = nullptr;
  if (hwnd || id) {
    for (auto& t : st.timers)
      if (t.hwnd == hwnd && t.id == id) existing = &t;
  }
  if (existing) {
    existing->elapse = elapse;
    existing->due = due;
    existing->proc = std::move(procPtr);
    // A fresh serial: a WM_TIMER still queued for the old procedure must not run the new one.
    existing->serial = existing->proc ? st.nextTimerSerial++ : 0;
    return hwnd ? (id ? id : 1) : id;
  }
  if (!hwnd) {
    // A thread timer gets a fresh identifier that no live thread timer uses.
    do {
      id = st.nextThreadTimerId++;
    } while (std::any_of(st.timers.begin(), st.timers.end(), [&](const TimerEntry& t) { return !t.hwnd && t.id == id; }));
  }
  TimerEntry t;
  t.hwnd = hwnd;
  t.id = id;
  t.elapse = elapse;
  t.due = due;
  t.proc = std::move(procPtr);
  t.serial = t.proc ? st.nextTimerSerial++ : 0;
  st.timers.push_back(std::move(t));
  return hwnd ? (id ? id : 1) : id;
}

BOOL KillTimer(HWND hwnd, UINT_PTR id) {
  auto& timers = St().timers;
  auto it = std::find_if(timers.begin(), timers.end(), [&](const TimerEntry& t) { return t.hwnd == hwnd && t.id == id; });
  if (it == timers.end()) return FALSE;
  timers.erase(it);
  return TRUE;
}

int ActiveTimerCount() { return static_cast<int>(St().timers.size()); }

namespace win {

void KillWindowTimers(HWND hwnd) {
  auto& timers = St().timers;
  timers.erase(std::remove_if(timers.begin(), timers.end(), [&](const TimerEntry& t) { return t.hwnd == hwnd; }),
               timers.end());
}

std::optional<uint64_t> NextTimerDue() {
  std::optional<uint64_t> next;
  for (const auto& t : St().timers)
    if (!next || t.due < *next) next = t.due;
  return next;
}

bool FindDueTimer(HWND filter, UINT, UINT, bool remove, MSG* out) {
  UserState& st = St();
  const uint64_t now = GetTickCount64();
  // The earliest due timer first; among equals, the one set first.
  TimerEntry* best = nullptr;
  for (auto& t : st.timers) {
    if (t.due > now) continue;
    if (filter == static_cast<HWND>(-1) ? t.hwnd != 0 : (filter && t.hwnd != filter)) continue;
    if (!best || t.due < best->due) best = &t;
  }
  if (!best) return false;
  *out = MSG{best->hwnd, WM_TIMER, best->id, best->serial, static_cast<DWORD>(now), st.cursor};
  // Re-armed from the moment its message is taken, so a late loop gets one message, not a burst.
  if (remove) best->due = now + best->elapse;
  return true;
}

bool DispatchTimerProc(const MSG& msg) {
  for (const auto& t : St().timers) {
    if (t.hwnd == msg.hwnd && t.id == msg.wParam && t.serial == msg.lParam && t.proc) {
      std::shared_ptr<TIMERPROC> proc = t.proc;  // the procedure may kill its own timer
      (*proc)(msg.hwnd, WM_TIMER, msg.wParam, GetTickCount());
      return true;
    }
  }
  return false;
}

}  // namespace win

}  // namespace mx::platform
