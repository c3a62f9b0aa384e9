#include "image/GifLzwEncoder.h"

namespace mx::image {

namespace {

constexpr int32_t maxCodeFor(int32_t bits) { return (1 << bits) - 1; }

// How far the next index is shifted before it is mixed with the prefix: the table size rounded
// up to a power of two decides how many bits the hash can spread over.
constexpr int32_t hashShift(int32_t hashSize) {
  int32_t shift = 0;
  for (int32_t f = hashSize; f < 65536; f *= 2) ++shift;
  return 8 - shift;
}

}  // namespace

void GifLzwEncoder::Encode(std::span<const uint8_t> indices, int32_t codeSize, std::vector<uint8_t>& out) {
  m_out = &out;
  m_initBits = codeSize + 1;
  m_bits = m_initBits;
  m_maxCode = maxCodeFor(m_bits);
  m_clearCode = 1 << codeSize;
  m_endCode = m_clearCode + 1;
  m_freeCode = m_clearCode + 2;
  m_clearPending = false;
  m_accumulator = 0;
  m_accumulatedBits = 0;
  m_blockCount = 0;
  m_hashKey.fill(-1);

  constexpr int32_t shift = hashShift(kHashSize);
  output(m_clearCode);

  if (!indices.empty()) {
    int32_t prefix = indices[0];
    for (size_t at = 1; at < indices.size(); ++at) {
      const int32_t c = indices[at];
      const int32_t key = (c << kMaxBits) + prefix;
      int32_t slot = (c << shift) ^ prefix;

      bool found = false;
      if (m_hashKey[static_cast<size_t>(slot)] == key) {
        found = true;
      } else if (m_hashKey[static_cast<size_t>(slot)] >= 0) {
        // Secondary probe: step backwards by a distance tied to the first slot.
        const int32_t step = slot == 0 ? 1 : kHashSize - slot;
        do {
          slot -= step;
          if (slot < 0) slot += kHashSize;
          if (m_hashKey[static_cast<size_t>(slot)] == key) {
            found = true;
            break;
          }
        } while (m_hashKey[static_cast<size_t>(slot)] >= 0);
      }
      if (found) {
        prefix = m_hashCode[static_cast<size_t>(slot)];
        continue;
      }

      output(prefix);
      prefix = c;
      if (m_freeCode < kMaxMaxCode) {
        m_hashCode[static_cast<size_t>(slot)] = static_cast<uint16_t>(m_freeCode++);
        m_hashKey[static_cast<size_t>(slot)] = key;
      } else {
        clearTable();
      }
    }
    output(prefix);
  }
  output(m_endCode);
  m_out->push_back(0);
  m_out = nullptr;
}

void GifLzwEncoder::clearTable() {
  m_hashKey.fill(-1);
  m_freeCode = m_clearCode + 2;
  m_clearPending = true;
  output(m_clearCode);
}

void GifLzwEncoder::output(int32_t code) {
  m_accumulator &= static_cast<uint32_t>(maxCodeFor(m_accumulatedBits));
  m_accumulator |= static_cast<uint32_t>(code) << m_accumulatedBits;
  m_accumulatedBits += m_bits;
  while (m_accumulatedBits >= 8) {
    charOut(static_cast<uint8_t>(m_accumulator & 0xFF));
    m_accumulator >>= 8;
    m_accumulatedBits -= 8;
  }

  // The width grows once the next code to be assigned no longer fits; the decoder makes the
  // same step one code later, which is what it expects. After a clear, back to the start width.
  if (m_freeCode > m_maxCode || m_clearPending) {
    if (m_clearPending) {
      m_bits = m_initBits;
      m_maxCode = maxCodeFor(m_bits);
      m_clearPending = false;
    } else {
      ++m_bits;
      m_maxCode = m_bits == kMaxBits ? kMaxMaxCode : maxCodeFor(m_bits);
    }
  }

  if (code == m_endCode) {
    while (m_accumulatedBits > 0) {
      charOut(static_cast<uint8_t>(m_accumulator & 0xFF));
      m_accumulator >>= 8;
      m_accumulatedBits -= 8;
    }
    flushBlock();
  }
}

void GifLzwEncoder::charOut(uint8_t c) {
  m_block[static_cast<size_t>(m_blockCount++)] = c;
  if (m_blockCount >= 254) flushBlock();
}

void GifLzwEncoder::flushBlock() {
  if (m_blockCount <= 0) return;
  m_out->push_back(static_cast<uint8_t>(m_blockCount));
  m_out->insert(m_out->end(), m_block.begin(), m_block.begin() + m_blockCount);
  m_blockCount = 0;
}

}  // namespace mx::image
