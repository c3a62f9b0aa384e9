#pragma once
// The GIF variant of LZW compression, in the classic hashed form.
//
// Strings are found through an open-addressed hash table keyed by (prefix code, next index); a
// miss emits the prefix and adds the string while codes remain. When code 4096 would be needed
// the table is dropped and a clear code is sent, so the width never exceeds 12 bits. Codes are
// packed least-significant bit first and leave in data sub-blocks of at most 254 bytes, each
// preceded by its length.
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
  static constexpr int32_t kMaxBits = 12;
  static constexpr int32_t kMaxMaxCode = 1 << kMaxBits;  // 4096: the first code never handed out
  // At most 4096 strings live in the table at once; eight thousand slots keep it at most half
  // full, so a probe rarely goes past its first slot, and the table still sits in the L1 cache.
  static constexpr uint32_t kHashBits = 13;
  static constexpr uint32_t kHashSize = 1u << kHashBits;

  // Slot layout: (next index << 12 | prefix) << 12 | code. Code 0 is never handed out (the
  // first free code is at least 6), so 0 marks an empty slot.
  std::array<uint32_t, kHashSize> m_table{};
  std::vector<uint8_t> m_packed;  // the code stream before it is cut into sub-blocks
};

}  // namespace mx::image
