#pragma once
// The GIF variant of LZW compression, in the classic hashed form.
//
// Strings are found through an open-addressed table of 5003 slots keyed by (prefix code, next
// index); a miss emits the prefix and adds the string while codes remain. When code 4096 would
// be needed the table is dropped and a clear code is sent, so the width never exceeds 12 bits.
// Codes are packed least-significant bit first and leave in data sub-blocks of at most 254
// bytes, each preceded by its length.
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace mx::image {

class GifLzwEncoder {
 public:
  // Appends the compressed sub-blocks of indices to out: a clear code first, the end code last,
  // and the closing empty sub-block. codeSize is the minimum code size written before the data
  // (2..8); every index must be below 2^codeSize.
  void Encode(std::span<const uint8_t> indices, int32_t codeSize, std::vector<uint8_t>& out);

 private:
  static constexpr int32_t kHashSize = 5003;
  static constexpr int32_t kMaxBits = 12;
  static constexpr int32_t kMaxMaxCode = 1 << kMaxBits;  // 4096: the first code never handed out

  void output(int32_t code);
  void clearTable();
  void charOut(uint8_t c);
  void flushBlock();

  std::array<int32_t, kHashSize> m_hashKey{};  // -1 for an empty slot
  std::array<uint16_t, kHashSize> m_hashCode{};

  int32_t m_initBits = 0;
  int32_t m_bits = 0;  // current code width
  int32_t m_maxCode = 0;
  int32_t m_clearCode = 0;
  int32_t m_endCode = 0;
  int32_t m_freeCode = 0;
  bool m_clearPending = false;

  uint32_t m_accumulator = 0;
  int32_t m_accumulatedBits = 0;
  std::array<uint8_t, 255> m_block{};
  int32_t m_blockCount = 0;
  std::vector<uint8_t>* m_out = nullptr;
};

}  // namespace mx::image
