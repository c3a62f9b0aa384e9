#pragma once
// How much the process's peak resident memory grew while a call ran: the test that a reader
// refuses a hostile header before it allocates, rather than after. Linux only; nullopt where the
// kernel does not let the peak be reset (the caller then skips the check).
#include <cstddef>
#include <fstream>
#include <functional>
#include <optional>
#include <string>

namespace mx::test {

// A field of /proc/self/status in bytes ("VmHWM", "VmRSS"), 0 when absent.
inline size_t ProcStatusBytes(const std::string& field) {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.compare(0, field.size() + 1, field + ":") == 0) return std::stoull(line.substr(field.size() + 1)) * 1024;
  }
  return 0;
}

inline std::optional<size_t> PeakGrowth(const std::function<void()>& fn) {
  // Writing 5 to clear_refs sets the peak back to the current resident size.
  {
    std::ofstream reset("/proc/self/clear_refs");
    if (!reset || !(reset << "5") || !reset.flush()) return std::nullopt;
  }
  const size_t before = ProcStatusBytes("VmRSS");
  if (before == 0) return std::nullopt;
  fn();
  const size_t peak = ProcStatusBytes("VmHWM");
  return peak > before ? peak - before : 0;
}

}  // namespace mx::test
