#pragma once
// The text of a grid cell in 24 bytes. A grid of a million rows holds tens of millions of
// texts, most of them short, so a std::u16string per cell (32 bytes, plus a heap block for
// anything past 7 units) would double the grid's size. Texts of up to 11 UTF-16 units live
// inside the record; longer ones in one heap block of exactly their length.
//
//   inline: [ 11 units of text (22 bytes) | length (1 byte) | 0 ]
//   heap:   [ pointer (8) | length (4) | unused (10) | 1 ]
#include <cstdint>
#include <cstring>

#include "host/String.h"

namespace mx::grid {

class GridText {
 public:
  static constexpr size_t kInlineUnits = 11;

  GridText() { std::memset(m_bytes, 0, sizeof(m_bytes)); }
  explicit GridText(host::StringView text) : GridText() { Assign(text); }
  GridText(const GridText& other) : GridText() { Assign(other.View()); }
  GridText(GridText&& other) noexcept {
    std::memcpy(m_bytes, other.m_bytes, sizeof(m_bytes));
    std::memset(other.m_bytes, 0, sizeof(other.m_bytes));
  }
  GridText& operator=(const GridText& other) {
    if (this != &other) Assign(other.View());
    return *this;
  }
  GridText& operator=(GridText&& other) noexcept {
    if (this != &other) {
      Release();
      std::memcpy(m_bytes, other.m_bytes, sizeof(m_bytes));
      std::memset(other.m_bytes, 0, sizeof(other.m_bytes));
    }
    return *this;
  }
  ~GridText() { Release(); }

  void Assign(host::StringView text);
  void Clear() {
    Release();
    std::memset(m_bytes, 0, sizeof(m_bytes));
  }

  [[nodiscard]] bool IsHeap() const { return m_bytes[kModeByte] != 0; }
  [[nodiscard]] size_t Size() const {
    if (!IsHeap()) return m_bytes[kLengthByte];
    uint32_t n;
    std::memcpy(&n, m_bytes + sizeof(char16_t*), sizeof(n));
    return n;
  }
  [[nodiscard]] bool Empty() const { return Size() == 0; }
  [[nodiscard]] host::StringView View() const {
    if (!IsHeap()) return {reinterpret_cast<const char16_t*>(m_bytes), m_bytes[kLengthByte]};
    const char16_t* p;
    std::memcpy(&p, m_bytes, sizeof(p));
    return {p, Size()};
  }
  [[nodiscard]] host::String Str() const { return host::String(View()); }
  // Heap bytes held beyond the record (0 for an inline text).
  [[nodiscard]] size_t HeapBytes() const { return IsHeap() ? Size() * sizeof(char16_t) : 0; }

 private:
  static constexpr size_t kLengthByte = 22;
  static constexpr size_t kModeByte = 23;

  void Release();

  alignas(char16_t*) unsigned char m_bytes[24];
};

static_assert(sizeof(GridText) == 24);

}  // namespace mx::grid
