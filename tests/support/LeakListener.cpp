// Linked into every test program: a GoogleTest listener that fails a test which ends with more
// platform objects alive than it started with (windows, DCs, bitmaps, pens, brushes, fonts,
// regions, icons, cursors, window procedures, hooks, timers).
//
// The rule for what may outlive a test: only objects the system itself keeps for the thread's
// lifetime, and those are kept out of the counts where they are made: stock objects, the
// system-colour brushes, the shared standard cursors, and the procedure a registered window
// class owns (classes stay registered for the thread unless unregistered). Nothing else is
// exempt. A library cache that keeps handles must give them back when its owner
// goes, and tests release what they make. A test that ends with fewer objects than it started
// with is not flagged: releasing something an earlier test leaked is that test's fault.
//
// MX_NO_LEAK_CHECK=1 turns the listener off, for a debugging session that stops inside a test.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <sstream>

#include "platform/HandleTable.h"
#include "platform/Timer.h"

namespace mx::test {
namespace {

// Plural names by handle type, the timers last.
constexpr std::array<const char*, platform::kHandleTypeCount + 1> kTypeNames = {
    "?",     "windows", "DCs",   "bitmaps", "pens",  "brushes", "fonts", "regions", "icons",
    "cursors", "window procedures", "hooks", "timers"};

// One more slot than the handle types: the last counts timers.
using Counts = std::array<int, platform::kHandleTypeCount + 1>;

Counts Snapshot() {
  Counts c{};
  for (int t = 1; t < platform::kHandleTypeCount; ++t)
    c[static_cast<size_t>(t)] = platform::LiveHandleCount(static_cast<platform::HandleType>(t));
  c[platform::kHandleTypeCount] = platform::ActiveTimerCount();
  return c;
}

class HandleLeakListener : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override { m_before = Snapshot(); }

  void OnTestEnd(const ::testing::TestInfo& info) override {
    // A test that was skipped or already failed is reported as it is: a failed assertion often
    // leaves its objects behind, and a second message would only hide the first.
    if (info.result() && (info.result()->Skipped() || info.result()->Failed())) return;
    const Counts after = Snapshot();
    std::ostringstream leaks;
    for (size_t t = 1; t < after.size(); ++t) {
      const int grown = after[t] - m_before[t];
      if (grown <= 0) continue;
      leaks << (leaks.tellp() > 0 ? ", " : "") << kTypeNames[t] << " +" << grown;
    }
    if (leaks.tellp() > 0) ADD_FAILURE() << "the test left more platform objects alive than it found: " << leaks.str();
  }

 private:
  Counts m_before{};
};

const bool kRegistered = [] {
  const char* off = std::getenv("MX_NO_LEAK_CHECK");
  if (off && *off && *off != '0') return false;
  // The listeners list owns what is appended; it is deleted with the test program.
  ::testing::UnitTest::GetInstance()->listeners().Append(new HandleLeakListener);
  return true;
}();

}  // namespace
}  // namespace mx::test
