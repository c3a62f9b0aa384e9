#include "platform/HandleTable.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/Clock.h"

namespace mx::platform {
namespace {

struct Thing {
  int value;
};

TEST(HandleTable, StaleAndForeignHandlesAreRefused) {
  HandleTable<Thing> table(HandleType::Brush);
  int before = LiveHandleCount(HandleType::Brush);
  HANDLE a = table.add(std::make_unique<Thing>(Thing{7}));
  ASSERT_NE(a, 0u);
  EXPECT_EQ(TypeOfHandle(a), HandleType::Brush);
  EXPECT_EQ(table.get(a)->value, 7);
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), before + 1);

  // Same slot bits, other type: refused.
  HANDLE foreign = (a & 0x0FFFFFFFu) | (static_cast<uint32_t>(HandleType::Pen) << 28);
  EXPECT_EQ(table.get(foreign), nullptr);

  auto removed = table.remove(a);
  ASSERT_TRUE(removed);
  EXPECT_EQ(table.get(a), nullptr);
  EXPECT_FALSE(table.remove(a));
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), before);
  EXPECT_EQ(table.get(0), nullptr);
}

TEST(HandleTable, ReusedSlotsGetNewHandles) {
  HandleTable<Thing> table(HandleType::Region);
  std::set<HANDLE> seen;
  for (int i = 0; i < 1000; ++i) {
    HANDLE h = table.add(std::make_unique<Thing>(Thing{i}));
    EXPECT_TRUE(seen.insert(h).second) << "handle value reused at " << i;
    table.remove(h);
  }
  EXPECT_EQ(table.live(), 0u);
}

TEST(Clock, VirtualClockMovesOnlyWhenAdvanced) {
  ScopedVirtualClock clock(SYSTEMTIME{2023, 12, 0, 31, 23, 59, 59, 500});
  DWORD t0 = GetTickCount();
  EXPECT_EQ(GetTickCount(), t0);
  AdvanceVirtualClock(600);
  EXPECT_EQ(GetTickCount(), t0 + 600);
  SYSTEMTIME now;
  GetLocalTime(&now);
  EXPECT_EQ(now.wYear, 2024);
  EXPECT_EQ(now.wMonth, 1);
  EXPECT_EQ(now.wDay, 1);
  EXPECT_EQ(now.wDayOfWeek, 1);  // Monday
  EXPECT_EQ(now.wHour, 0);
  EXPECT_EQ(now.wMilliseconds, 100);
}

TEST(Clock, CivilDaysRoundTrip) {
  EXPECT_EQ(DaysFromCivil(1970, 1, 1), 0);
  EXPECT_EQ(DaysFromCivil(2000, 3, 1) - DaysFromCivil(2000, 2, 28), 2);  // 2000 is leap
  EXPECT_EQ(DaysFromCivil(1900, 3, 1) - DaysFromCivil(1900, 2, 28), 1);  // 1900 is not
  for (int64_t d = -800000; d < 800000; d += 997) {
    int y;
    unsigned m, day;
    CivilFromDays(d, &y, &m, &day);
    ASSERT_EQ(DaysFromCivil(y, m, day), d);
  }
}

}  // namespace
}  // namespace mx::platform
