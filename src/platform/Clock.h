#pragma once
// Time for the whole platform: the tick count that timers, double clicks and hover use, and the
// local wall time that the host's "now" reads. Real by default; tests switch this thread to a
// virtual clock that stands still until advanced, and the message loop jumps it to the next due
// timer when it has nothing else to do, so timer-driven behaviour runs fast and repeatably.
#include <cstdint>

#include "platform/Types.h"

namespace mx::platform {

struct SYSTEMTIME {
  WORD wYear = 0, wMonth = 0, wDayOfWeek = 0, wDay = 0;
  WORD wHour = 0, wMinute = 0, wSecond = 0, wMilliseconds = 0;
};

// Milliseconds since the clock started; the 32-bit form wraps like the classic tick count.
[[nodiscard]] DWORD GetTickCount();
[[nodiscard]] uint64_t GetTickCount64();

// Local wall time, and the same as milliseconds since 1970-01-01 00:00:00 local time.
void GetLocalTime(SYSTEMTIME* out);
[[nodiscard]] int64_t LocalTimeMilliseconds();

// Switches this thread to a virtual clock whose wall time starts at `start` (wDayOfWeek is
// ignored and recomputed) and whose tick count starts at `startTicks`.
void UseVirtualClock(const SYSTEMTIME& start, uint64_t startTicks = 1000000);
void UseRealClock();
[[nodiscard]] bool IsVirtualClock();
// Moves the virtual clock on; ignored on the real clock.
void AdvanceVirtualClock(uint64_t milliseconds);
// Sets the virtual wall time without touching the tick count.
void SetVirtualLocalTime(const SYSTEMTIME& now);

// Days since 1970-01-01 of a civil date, and back (proleptic Gregorian).
[[nodiscard]] int64_t DaysFromCivil(int year, unsigned month, unsigned day);
void CivilFromDays(int64_t days, int* year, unsigned* month, unsigned* day);

// Test helper: a virtual clock for the life of the object.
class ScopedVirtualClock {
 public:
  explicit ScopedVirtualClock(const SYSTEMTIME& start, uint64_t startTicks = 1000000) {
    UseVirtualClock(start, startTicks);
  }
  ScopedVirtualClock() : ScopedVirtualClock(SYSTEMTIME{2024, 1, 0, 15, 10, 30, 0, 0}) {}
  ~ScopedVirtualClock() { UseRealClock(); }
  ScopedVirtualClock(const ScopedVirtualClock&) = delete;
  ScopedVirtualClock& operator=(const ScopedVirtualClock&) = delete;
};

}  // namespace mx::platform
