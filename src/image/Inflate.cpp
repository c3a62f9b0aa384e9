#include "image/Inflate.h"

#include <cstring>

namespace mx::image {

namespace {

constexpr int kMaxBits = 15;
// Codes up to this length decode in one table look-up; longer ones walk the canonical counts.
constexpr int kFastBits = 10;

constexpr uint16_t kLengthBase[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                      31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr uint8_t kLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                      2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr uint16_t kDistBase[30] = {1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
                                    193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr uint8_t kDistExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6,
                                    6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

// A canonical Huffman code. fast[] is indexed by the next kFastBits input bits (least
// significant first, as DEFLATE packs them): entry = symbol | length << 9, length 0 meaning
// "longer code, use the slow walk".
struct Huffman {
  uint16_t fast[1 << kFastBits];
  uint16_t count[kMaxBits + 1];
  uint16_t symbol[288];

  // False for an over-subscribed code; an incomplete one is allowed (a single distance code).
  bool build(const uint8_t* lengths, int n) {
    std::memset(count, 0, sizeof count);
    for (int i = 0; i < n; ++i) ++count[lengths[i]];
    count[0] = 0;
    int left = 1;
    for (int len = 1; len <= kMaxBits; ++len) {
      left <<= 1;
      left -= count[len];
      if (left < 0) return false;
    }
    uint16_t offs[kMaxBits + 2];
    offs[1] = 0;
    for (int len = 1; len <= kMaxBits; ++len) offs[len + 1] = static_cast<uint16_t>(offs[len] + count[len]);
    for (int i = 0; i < n; ++i)
      if (lengths[i]) symbol[offs[lengths[i]]++] = static_cast<uint16_t>(i);

    std::memset(fast, 0, sizeof fast);
    // Assign canonical codes in symbol order and spread each short one over the table.
    int next[kMaxBits + 2] = {};
    int code = 0;
    for (int len = 1; len <= kMaxBits; ++len) {
      code = (code + count[len - 1]) << 1;
      next[len] = code;
    }
    for (int i = 0; i < n; ++i) {
      int len = lengths[i];
      if (len == 0) continue;
      int c = next[len]++;
      if (len > kFastBits) continue;
      // DEFLATE sends Huffman codes most significant bit first into an LSB-first stream.
      int rev = 0;
      for (int b = 0; b < len; ++b) rev |= ((c >> b) & 1) << (len - 1 - b);
      for (int k = rev; k < (1 << kFastBits); k += 1 << len)
        fast[k] = static_cast<uint16_t>(i | (len << 9));
    }
    return true;
  }
};

class Decoder {
 public:
  Decoder(std::span<const uint8_t> in, std::span<uint8_t> out, bool d64)
      : m_in(in.data()), m_inSize(in.size()), m_out(out.data()), m_outSize(out.size()), m_deflate64(d64) {}

  InflateResult run() {
    InflateResult r;
    bool last = false;
    while (!last) {
      if (!need(3)) return r;
      last = take(1) != 0;
      int type = static_cast<int>(take(2));
      bool ok = false;
      if (type == 0) {
        ok = stored();
      } else if (type == 1) {
        buildFixed();
        ok = codes(s_fixedLit, s_fixedDist);
      } else if (type == 2) {
        ok = dynamic();
      }
      if (!ok) return r;
    }
    // Zero padding past the input's end was read as data: the stream was cut short.
    if (m_overrunBits > m_bitCount) return r;
    r.ok = true;
    r.produced = m_outPos;
    return r;
  }

 private:
  // Keeps at least n (<= 32) bits in the accumulator. Past the end of the input zeros are
  // shifted in and counted, so that a stream that ends too soon is caught.
  bool need(int n) {
    while (m_bitCount < n) {
      uint64_t byte = 0;
      if (m_inPos < m_inSize) {
        byte = m_in[m_inPos++];
      } else {
        m_overrunBits += 8;
        if (m_overrunBits > 64) return false;
      }
      m_bits |= byte << m_bitCount;
      m_bitCount += 8;
    }
    return true;
  }
  uint32_t take(int n) {
    uint32_t v = static_cast<uint32_t>(m_bits & ((uint64_t{1} << n) - 1));
    m_bits >>= n;
    m_bitCount -= n;
    return v;
  }
  bool bits(int n, uint32_t& v) {
    if (n == 0) {
      v = 0;
      return true;
    }
    if (!need(n)) return false;
    v = take(n);
    return true;
  }

  // -1 on a bad code or exhausted input.
  int decode(const Huffman& h) {
    if (!need(kMaxBits)) return -1;
    uint16_t e = h.fast[m_bits & ((1u << kFastBits) - 1)];
    if (e >> 9) {
      take(e >> 9);
      return e & 0x1FF;
    }
    // Slow walk over the canonical code, one bit at a time.
    int code = 0, first = 0, index = 0;
    for (int len = 1; len <= kMaxBits; ++len) {
      code |= static_cast<int>(take(1));
      int count = h.count[len];
      if (code - count < first) return h.symbol[index + (code - first)];
      index += count;
      first += count;
      first <<= 1;
      code <<= 1;
    }
    return -1;
  }

  bool stored() {
    // The block's header ends at the next byte boundary.
    take(m_bitCount & 7);
    uint32_t len, nlen;
    if (!bits(16, len) || !bits(16, nlen)) return false;
    if (len != (~nlen & 0xFFFF)) return false;
    // Whole bytes still in the accumulator come first, then straight from the input.
    while (len > 0 && m_bitCount >= 8) {
      if (m_outPos >= m_outSize) return false;
      m_out[m_outPos++] = static_cast<uint8_t>(take(8));
      --len;
    }
    if (len > m_inSize - m_inPos || len > m_outSize - m_outPos) return false;
    std::memcpy(m_out + m_outPos, m_in + m_inPos, len);
    m_inPos += len;
    m_outPos += len;
    return true;
  }

  bool dynamic() {
    uint32_t hlit, hdist, hclen;
    if (!bits(5, hlit) || !bits(5, hdist) || !bits(4, hclen)) return false;
    hlit += 257;
    hdist += 1;
    hclen += 4;
    if (hlit > 286 || hdist > 30) return false;
    static constexpr uint8_t kOrder[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    uint8_t lengths[320] = {};
    for (uint32_t i = 0; i < hclen; ++i) {
      uint32_t v;
      if (!bits(3, v)) return false;
      lengths[kOrder[i]] = static_cast<uint8_t>(v);
    }
    if (!m_lenCode.build(lengths, 19)) return false;
    uint32_t n = 0;
    std::memset(lengths, 0, sizeof lengths);
    while (n < hlit + hdist) {
      int sym = decode(m_lenCode);
      if (sym < 0) return false;
      if (sym < 16) {
        lengths[n++] = static_cast<uint8_t>(sym);
        continue;
      }
      uint8_t value = 0;
      uint32_t repeat;
      if (sym == 16) {
        if (n == 0) return false;
        value = lengths[n - 1];
        if (!bits(2, repeat)) return false;
        repeat += 3;
      } else if (sym == 17) {
        if (!bits(3, repeat)) return false;
        repeat += 3;
      } else {
        if (!bits(7, repeat)) return false;
        repeat += 11;
      }
      if (n + repeat > hlit + hdist) return false;
      while (repeat--) lengths[n++] = value;
    }
    if (lengths[256] == 0) return false;  // a block must be able to end
    if (!m_lit.build(lengths, static_cast<int>(hlit))) return false;
    if (!m_dist.build(lengths + hlit, static_cast<int>(hdist))) return false;
    return codes(m_lit, m_dist);
  }

  bool codes(const Huffman& lit, const Huffman& dist) {
    uint8_t* out = m_out;
    for (;;) {
      int sym = decode(lit);
      if (sym < 0) return false;
      if (sym < 256) {
        if (m_outPos >= m_outSize) return false;
        out[m_outPos++] = static_cast<uint8_t>(sym);
        continue;
      }
      if (sym == 256) return true;
      sym -= 257;
      if (sym >= 29) return false;
      uint32_t extra, len;
      if (sym == 28 && m_deflate64) {
        if (!bits(16, extra)) return false;
        len = extra + 3;
      } else {
        if (!bits(kLengthExtra[sym], extra)) return false;
        len = kLengthBase[sym] + extra;
      }
      int dsym = decode(dist);
      if (dsym < 0 || dsym >= 30) return false;
      uint32_t dextra;
      if (!bits(kDistExtra[dsym], dextra)) return false;
      size_t d = kDistBase[dsym] + dextra;
      if (d > m_outPos || len > m_outSize - m_outPos) return false;
      uint8_t* dst = out + m_outPos;
      const uint8_t* src = dst - d;
      if (d >= len) {
        std::memcpy(dst, src, len);
      } else {
        // Overlapping copy: a run repeats the last d bytes.
        for (uint32_t i = 0; i < len; ++i) dst[i] = src[i];
      }
      m_outPos += len;
    }
  }

  static void buildFixed() {
    // Built once, on the first fixed block any decoder sees.
    thread_local bool built = false;
    if (built) return;
    uint8_t l[288];
    for (int i = 0; i < 144; ++i) l[i] = 8;
    for (int i = 144; i < 256; ++i) l[i] = 9;
    for (int i = 256; i < 280; ++i) l[i] = 7;
    for (int i = 280; i < 288; ++i) l[i] = 8;
    s_fixedLit.build(l, 288);
    uint8_t d[30];
    for (auto& v : d) v = 5;
    s_fixedDist.build(d, 30);
    built = true;
  }

  static thread_local Huffman s_fixedLit;
  static thread_local Huffman s_fixedDist;

  const uint8_t* m_in;
  size_t m_inSize;
  size_t m_inPos = 0;
  uint8_t* m_out;
  size_t m_outSize;
  size_t m_outPos = 0;
  bool m_deflate64;
  uint64_t m_bits = 0;
  int m_bitCount = 0;
  int m_overrunBits = 0;
  Huffman m_lenCode;
  Huffman m_lit;
  Huffman m_dist;
};

thread_local Huffman Decoder::s_fixedLit;
thread_local Huffman Decoder::s_fixedDist;

}  // namespace

InflateResult InflateRaw(std::span<const uint8_t> in, std::span<uint8_t> out, bool deflate64Lengths) {
  Decoder d(in, out, deflate64Lengths);
  return d.run();
}

}  // namespace mx::image
