#include "image/GifLzwEncoder.h"

#include <algorithm>
#include <cstring>

namespace mx::image {

namespace {

constexpr int32_t maxCodeFor(int32_t bits) { return (1 << bits) - 1; }

// Fibonacci hashing of the 20-bit (index, prefix) key onto the table's bits.
constexpr uint32_t hashSlot(uint32_t key, uint32_t bits) { return (key * 2654435761u) >> (32 - bits); }

// Codes are gathered least-significant bit first in a 64-bit accumulator and leave it four
// bytes at a time; out always has room for the four (the caller sizes it for the worst case).
struct BitPacker {
  uint8_t* out;
  uint64_t acc = 0;
  int32_t bits = 0;

  void put(uint32_t code, int32_t width) {
    acc |= uint64_t{code} << bits;
    bits += width;
    if (bits >= 32) {
      const uint32_t word = static_cast<uint32_t>(acc);
      const uint8_t le[4] = {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8),
                             static_cast<uint8_t>(word >> 16), static_cast<uint8_t>(word >> 24)};
      std::memcpy(out, le, 4);
      out += 4;
      acc >>= 32;
      bits -= 32;
    }
  }
  void finish() {
    while (bits > 0) {
      *out++ = static_cast<uint8_t>(acc);
      acc >>= 8;
      bits -= 8;
    }
  }
};

}  // namespace

void GifLzwEncoder::Encode(std::span<const uint8_t> indices, int32_t codeSize, std::vector<uint8_t>& out) {
  const int32_t initBits = codeSize + 1;
  const uint32_t clearCode = 1u << codeSize;
  const uint32_t endCode = clearCode + 1;
  int32_t width = initBits;
  int32_t maxCode = maxCodeFor(width);
  uint32_t freeCode = clearCode + 2;
  m_table.fill(0);

  // Every index costs at most one code of at most 12 bits; add the clear codes, one per table
  // filling (which takes at least 4096 - 258 codes, counted generously as 2048), the first
  // clear, the last prefix and the end code.
  const size_t maxCodes = indices.size() + indices.size() / 2048 + 4;
  m_packed.resize(maxCodes * 12 / 8 + 8);
  BitPacker packer{m_packed.data()};

  // The width grows once the next code to be assigned no longer fits, checked after each code
  // is written and before the new string takes its code; the decoder makes the same step one
  // code later, which is what it expects.
  auto emit = [&](uint32_t code) {
    packer.put(code, width);
    if (static_cast<int32_t>(freeCode) > maxCode) {
      ++width;
      maxCode = width == kMaxBits ? kMaxMaxCode : maxCodeFor(width);
    }
  };

  emit(clearCode);
  if (!indices.empty()) {
    uint32_t prefix = indices[0];
    const uint8_t* p = indices.data() + 1;
    const uint8_t* const end = indices.data() + indices.size();
    for (; p < end; ++p) {
      const uint32_t c = *p;
      const uint32_t key = c << kMaxBits | prefix;
      uint32_t slot = hashSlot(key, kHashBits);
      uint32_t e;
      // Linear probing: the string is either in the run of full slots from its hash, or absent.
      while ((e = m_table[slot]) != 0 && (e >> kMaxBits) != key) slot = (slot + 1) & (kHashSize - 1);
      if (e != 0) {
        prefix = e & (kMaxMaxCode - 1);
        continue;
      }
      emit(prefix);
      prefix = c;
      if (freeCode < static_cast<uint32_t>(kMaxMaxCode)) {
        m_table[slot] = key << kMaxBits | freeCode++;
      } else {
        // Table full: a clear code at the current width, then everything starts over.
        packer.put(clearCode, width);
        m_table.fill(0);
        freeCode = clearCode + 2;
        width = initBits;
        maxCode = maxCodeFor(width);
      }
    }
    emit(prefix);
  }
  emit(endCode);
  packer.finish();

  // Cut the code stream into sub-blocks of 254 bytes, each led by its length, then the empty
  // block that closes the image data.
  const size_t packed = static_cast<size_t>(packer.out - m_packed.data());
  size_t at = out.size();
  out.resize(at + packed + (packed + 253) / 254 + 1);
  for (size_t from = 0; from < packed; from += 254) {
    const size_t n = std::min<size_t>(254, packed - from);
    out[at++] = static_cast<uint8_t>(n);
    std::memcpy(out.data() + at, m_packed.data() + from, n);
    at += n;
  }
  out[at] = 0;
}

}  // namespace mx::image
