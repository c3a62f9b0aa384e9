#include "platform/HandleTable.h"

#include <array>

namespace mx::platform {

namespace {
thread_local std::array<int, kHandleTypeCount> t_live{};
}

int LiveHandleCount(HandleType type) {
  auto i = static_cast<size_t>(type);
  return i < t_live.size() ? t_live[i] : 0;
}

void AdjustLiveHandleCount(HandleType type, int delta) {
  auto i = static_cast<size_t>(type);
  if (i < t_live.size()) t_live[i] += delta;
}

}  // namespace mx::platform
