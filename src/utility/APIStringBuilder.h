#pragma once
// An append-only text buffer for loops that build a text one character at a time (the filters of
// class MX, labels, the grid). Appending never copies the text already held except when the
// buffer grows, and it grows by doubling, so n appends cost O(n) in total.
#include <cstddef>
#include <cstdint>

#include "host/String.h"

namespace mx::utility {

class APIStringBuilder {
 public:
  APIStringBuilder() = default;
  // Reserves room for `capacity` UTF-16 units up front, for callers that know the final size.
  explicit APIStringBuilder(size_t capacity);

  void Append(host::StringView xText);
  void Append(char16_t xChar);
  // Everything appended since the last Clear.
  [[nodiscard]] host::String ToString() const;
  // Empties the text but keeps the buffer, so a builder reused in a loop stops allocating.
  void Clear();
  // Used length in UTF-16 units.
  [[nodiscard]] int32_t Length() const { return static_cast<int32_t>(m_used); }
  [[nodiscard]] size_t Capacity() const { return m_buffer.size(); }

 private:
  void EnsureRoom(size_t extra);

  // The buffer is sized to its capacity; only the first m_used units are text.
  host::String m_buffer;
  size_t m_used = 0;
};

}  // namespace mx::utility
