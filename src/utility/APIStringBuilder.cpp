#include "utility/APIStringBuilder.h"

#include <algorithm>

namespace mx::utility {

namespace {
constexpr size_t kInitialCapacity = 64;
}

APIStringBuilder::APIStringBuilder(size_t capacity) { m_buffer.resize(capacity); }

void APIStringBuilder::EnsureRoom(size_t extra) {
  const size_t needed = m_used + extra;
  if (needed <= m_buffer.size()) return;
  // Doubling keeps the number of reallocations logarithmic in the final length.
  size_t capacity = std::max(kInitialCapacity, m_buffer.size());
  while (capacity < needed) capacity *= 2;
  m_buffer.resize(capacity);
}

void APIStringBuilder::Append(host::StringView xText) {
  if (xText.empty()) return;
  EnsureRoom(xText.size());
  std::copy(xText.begin(), xText.end(), m_buffer.begin() + static_cast<ptrdiff_t>(m_used));
  m_used += xText.size();
}

void APIStringBuilder::Append(char16_t xChar) {
  EnsureRoom(1);
  m_buffer[m_used++] = xChar;
}

host::String APIStringBuilder::ToString() const { return m_buffer.substr(0, m_used); }

void APIStringBuilder::Clear() { m_used = 0; }

}  // namespace mx::utility
