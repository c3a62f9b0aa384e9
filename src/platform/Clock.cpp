#include "platform/Clock.h"

#include <chrono>
#include <ctime>

namespace mx::platform {

namespace {

struct ClockState {
  bool isVirtual = false;
  uint64_t ticks = 0;         // virtual tick count
  int64_t wallAtTicks0 = 0;   // virtual local wall time, in ms, when ticks was 0
};
thread_local ClockState t_clock;

const auto kProcessStart = std::chrono::steady_clock::now();

int64_t MillisecondsOf(const SYSTEMTIME& t) {
  int64_t days = DaysFromCivil(t.wYear, t.wMonth, t.wDay);
  return ((days * 24 + t.wHour) * 60 + t.wMinute) * 60000 + t.wSecond * 1000 + t.wMilliseconds;
}

}  // namespace

// Howard Hinnant's civil-date algorithms: exact over the whole proleptic Gregorian range.
int64_t DaysFromCivil(int year, unsigned month, unsigned day) {
  int64_t y = static_cast<int64_t>(year) - (month <= 2);
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

void CivilFromDays(int64_t z, int* year, unsigned* month, unsigned* day) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  *day = doy - (153 * mp + 2) / 5 + 1;
  *month = mp < 10 ? mp + 3 : mp - 9;
  *year = static_cast<int>(static_cast<int64_t>(yoe) + era * 400 + (*month <= 2));
}

uint64_t GetTickCount64() {
  if (t_clock.isVirtual) return t_clock.ticks;
  auto elapsed = std::chrono::steady_clock::now() - kProcessStart;
  return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

DWORD GetTickCount() { return static_cast<DWORD>(GetTickCount64()); }

int64_t LocalTimeMilliseconds() {
  if (t_clock.isVirtual) return t_clock.wallAtTicks0 + static_cast<int64_t>(t_clock.ticks);
  auto now = std::chrono::system_clock::now();
  auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
  std::time_t secs = static_cast<std::time_t>(ms / 1000);
  std::tm local{};
  localtime_r(&secs, &local);
  return ms + static_cast<int64_t>(local.tm_gmtoff) * 1000;
}

void GetLocalTime(SYSTEMTIME* out) {
  if (!out) return;
  int64_t ms = LocalTimeMilliseconds();
  int64_t days = ms >= 0 ? ms / 86400000 : -((-ms + 86399999) / 86400000);
  int64_t rest = ms - days * 86400000;
  int y;
  unsigned m, d;
  CivilFromDays(days, &y, &m, &d);
  out->wYear = static_cast<WORD>(y);
  out->wMonth = static_cast<WORD>(m);
  out->wDay = static_cast<WORD>(d);
  out->wDayOfWeek = static_cast<WORD>(((days % 7) + 11) % 7);  // 1970-01-01 was a Thursday
  out->wHour = static_cast<WORD>(rest / 3600000);
  out->wMinute = static_cast<WORD>(rest / 60000 % 60);
  out->wSecond = static_cast<WORD>(rest / 1000 % 60);
  out->wMilliseconds = static_cast<WORD>(rest % 1000);
}

void UseVirtualClock(const SYSTEMTIME& start, uint64_t startTicks) {
  t_clock.isVirtual = true;
  t_clock.ticks = startTicks;
  t_clock.wallAtTicks0 = MillisecondsOf(start) - static_cast<int64_t>(startTicks);
}

void UseRealClock() { t_clock = ClockState{}; }

bool IsVirtualClock() { return t_clock.isVirtual; }

void AdvanceVirtualClock(uint64_t milliseconds) {
  if (t_clock.isVirtual) t_clock.ticks += milliseconds;
}

void SetVirtualLocalTime(const SYSTEMTIME& now) {
  if (t_clock.isVirtual) t_clock.wallAtTicks0 = MillisecondsOf(now) - static_cast<int64_t>(t_clock.ticks);
}

}  // namespace mx::platform
