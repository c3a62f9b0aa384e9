#include "image/Inflate.h"

#include <bit>
#include <cstddef>
#include <cstring>

namespace mx::image {

namespace {

constexpr int kMaxBits = 15;

// One table entry, for a code short enough to be found in one look-up, or the meaning of a
// symbol for the slow walk:
//
//   bits  0..3   length of the code (0: longer than the table, walk the canonical counts)
//   bits  4..5   kind: literal (or plain value), length, end of block, invalid symbol
//   bits  8..12  extra bits that follow the code
//   bits 16..31  value: the literal byte, the length base or the distance base
//
// Folding the base and the extra-bit count into the entry spares the decoding loop a second
// table read per length or distance.
enum Kind : uint32_t { kValue = 0, kLength = 1, kEnd = 2, kInvalid = 3 };

constexpr uint32_t entry(uint32_t kind, uint32_t extra, uint32_t value) { return kind << 4 | extra << 8 | value << 16; }
constexpr uint32_t codeLength(uint32_t e) { return e & 15; }
constexpr uint32_t kindOf(uint32_t e) { return (e >> 4) & 3; }
constexpr uint32_t extraOf(uint32_t e) { return (e >> 8) & 31; }
constexpr uint32_t valueOf(uint32_t e) { return e >> 16; }

constexpr uint16_t kLengthBase[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                      31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr uint8_t kLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                      2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr uint16_t kDistBase[30] = {1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
                                    193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr uint8_t kDistExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6,
                                    6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

// What each symbol means, for the three alphabets. Symbol 285 of the literal/length alphabet
// has two readings: 258 with no extra bits, or (Deflate64) 16 extra bits added to 3.
struct SymbolMeanings {
  uint32_t literalLength[288];
  uint32_t literalLength64[288];
  uint32_t distance[32];
  uint32_t plain[19];
};

constexpr SymbolMeanings makeMeanings() {
  SymbolMeanings m{};
  for (uint32_t s = 0; s < 288; ++s) {
    uint32_t e = entry(kInvalid, 0, 0);
    if (s < 256) e = entry(kValue, 0, s);
    else if (s == 256) e = entry(kEnd, 0, 0);
    else if (s < 286) e = entry(kLength, kLengthExtra[s - 257], kLengthBase[s - 257]);
    m.literalLength[s] = e;
    m.literalLength64[s] = s == 285 ? entry(kLength, 16, 3) : e;
  }
  for (uint32_t s = 0; s < 32; ++s) m.distance[s] = s < 30 ? entry(kValue, kDistExtra[s], kDistBase[s]) : entry(kInvalid, 0, 0);
  for (uint32_t s = 0; s < 19; ++s) m.plain[s] = entry(kValue, 0, s);
  return m;
}
constexpr SymbolMeanings kMeanings = makeMeanings();

// A canonical Huffman code. fast[] is indexed by the next FastBits input bits (least
// significant first, as DEFLATE packs them); codes longer than that are found by walking the
// code lengths one bit at a time, which the shapes of real data make rare.
template <int FastBits>
struct Huffman {
  uint32_t fast[1 << FastBits];
  uint16_t count[kMaxBits + 1];
  uint16_t symbol[288];
  const uint32_t* meaning = nullptr;

  // False for an over-subscribed code; an incomplete one is allowed (a single distance code).
  bool build(const uint8_t* lengths, int n, const uint32_t* meanings) {
    meaning = meanings;
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

    // Bit patterns no code reaches (an incomplete code) keep length 0 and so go to the walk,
    // which rejects them.
    std::memset(fast, 0, sizeof fast);
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
      if (len > FastBits) continue;
      // Codes are sent most significant bit first into the least-significant-first stream.
      uint32_t rev = 0;
      for (int b = 0; b < len; ++b) rev |= static_cast<uint32_t>((c >> b) & 1) << (len - 1 - b);
      uint32_t e = meanings[i] | static_cast<uint32_t>(len);
      for (uint32_t k = rev; k < (1u << FastBits); k += 1u << len) fast[k] = e;
    }
    return true;
  }
};

constexpr int kLitFastBits = 11;
constexpr int kDistFastBits = 9;
constexpr int kLenCodeFastBits = 7;  // the code-length code never exceeds 7 bits

// The input and its bit accumulator. A plain value: the decoding loop copies it into locals,
// which the compiler can keep in registers (stores through the output's byte pointer may
// alias any member, so members would be reloaded after each one).
struct BitReader {
  const uint8_t* in;
  size_t size;
  size_t pos = 0;
  uint64_t bits = 0;
  int count = 0;
  int overrun = 0;  // zero bits shifted in past the end of the input

  // Tops the accumulator up to at least 56 bits. With eight input bytes left this is one
  // unaligned load: the bytes are or-ed in above the bits held and the read position moves by
  // the whole bytes that fitted. The part of a byte that did not fit is read again next time,
  // to the same bit position, so or-ing it twice does no harm.
  //
  // Near the end bytes come one at a time, and past the end zeros are shifted in and counted.
  // Once any of those zeros has been consumed the stream was cut short and decoding can only
  // fail, so it stops there (false).
  bool refill() {
    if (count >= 56) return true;
    if (size - pos >= 8) {
      uint64_t w;
      std::memcpy(&w, in + pos, 8);
      if constexpr (std::endian::native == std::endian::big) w = byteswap64(w);
      bits |= w << count;
      pos += static_cast<size_t>((63 - count) >> 3);
      count |= 56;
      return true;
    }
    if (overrun > count) return false;
    while (count <= 56) {
      uint64_t byte = 0;
      if (pos < size) {
        byte = in[pos++];
      } else {
        overrun += 8;
      }
      bits |= byte << count;
      count += 8;
    }
    return true;
  }
  static uint64_t byteswap64(uint64_t v) {
    uint64_t r = 0;
    for (int i = 0; i < 8; ++i) r = (r << 8) | ((v >> (8 * i)) & 0xFF);
    return r;
  }
  // n <= 32 bits, all of them held.
  uint32_t take(uint32_t n) {
    uint32_t v = static_cast<uint32_t>(bits & ((uint64_t{1} << n) - 1));
    bits >>= n;
    count -= static_cast<int>(n);
    return v;
  }

  // The meaning of the next symbol, its code consumed; kInvalid for a pattern no code has. At
  // least 15 bits must be held.
  template <int FastBits>
  uint32_t decode(const Huffman<FastBits>& h) {
    uint32_t e = h.fast[bits & ((1u << FastBits) - 1)];
    if (codeLength(e) != 0) {
      take(codeLength(e));
      return e;
    }
    // Slow walk over the canonical code, one bit at a time.
    int code = 0, first = 0, index = 0;
    for (int len = 1; len <= kMaxBits; ++len) {
      code |= static_cast<int>(take(1));
      int count = h.count[len];
      if (code - count < first) return h.meaning[h.symbol[index + (code - first)]];
      index += count;
      first += count;
      first <<= 1;
      code <<= 1;
    }
    return entry(kInvalid, 0, 0);
  }

};

class Decoder {
 public:
  Decoder(std::span<const uint8_t> in, std::span<uint8_t> out, bool d64)
      : m_br{in.data(), in.size()}, m_out(out.data()), m_outSize(out.size()), m_deflate64(d64) {}

  InflateResult run() {
    InflateResult r;
    bool last = false;
    while (!last) {
      if (!m_br.refill()) return r;
      last = m_br.take(1) != 0;
      uint32_t type = m_br.take(2);
      bool ok = false;
      if (type == 0) {
        ok = stored();
      } else if (type == 1) {
        ok = fixed();
      } else if (type == 2) {
        ok = dynamic();
      }
      if (!ok) return r;
    }
    // Zero padding past the input's end was read as data: the stream was cut short.
    if (m_br.overrun > m_br.count) return r;
    r.ok = true;
    r.produced = m_outPos;
    return r;
  }

 private:
  bool stored() {
    // The block's header ends at the next byte boundary.
    m_br.take(static_cast<uint32_t>(m_br.count & 7));
    if (!m_br.refill()) return false;
    uint32_t len = m_br.take(16), nlen = m_br.take(16);
    if (len != (~nlen & 0xFFFF)) return false;
    // Whole bytes still in the accumulator come first, then straight from the input.
    while (len > 0 && m_br.count >= 8) {
      if (m_outPos >= m_outSize) return false;
      m_out[m_outPos++] = static_cast<uint8_t>(m_br.take(8));
      --len;
    }
    if (len > m_br.size - m_br.pos || len > m_outSize - m_outPos) return false;
    if (len == 0) return true;
    std::memcpy(m_out + m_outPos, m_br.in + m_br.pos, len);
    m_br.pos += len;
    m_outPos += len;
    // The accumulator is empty, but above its count it may still hold bits of the byte that
    // was the next one before the copy skipped past it.
    m_br.bits = 0;
    return true;
  }

  bool fixed() {
    // Built once per thread, on the first fixed block any decoder sees, in both readings of
    // length symbol 285.
    thread_local bool built = false;
    thread_local Huffman<kLitFastBits> lit[2];
    thread_local Huffman<kDistFastBits> dist;
    if (!built) {
      uint8_t l[288];
      for (int i = 0; i < 144; ++i) l[i] = 8;
      for (int i = 144; i < 256; ++i) l[i] = 9;
      for (int i = 256; i < 280; ++i) l[i] = 7;
      for (int i = 280; i < 288; ++i) l[i] = 8;
      lit[0].build(l, 288, kMeanings.literalLength);
      lit[1].build(l, 288, kMeanings.literalLength64);
      uint8_t d[30];
      for (auto& v : d) v = 5;
      dist.build(d, 30, kMeanings.distance);
      built = true;
    }
    return codes(lit[m_deflate64 ? 1 : 0], dist);
  }

  bool dynamic() {
    if (!m_br.refill()) return false;
    uint32_t hlit = m_br.take(5) + 257, hdist = m_br.take(5) + 1, hclen = m_br.take(4) + 4;
    if (hlit > 286 || hdist > 30) return false;
    static constexpr uint8_t kOrder[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    uint8_t lengths[320] = {};
    for (uint32_t i = 0; i < hclen; ++i) {
      if (!m_br.refill()) return false;
      lengths[kOrder[i]] = static_cast<uint8_t>(m_br.take(3));
    }
    if (!m_lenCode.build(lengths, 19, kMeanings.plain)) return false;
    uint32_t n = 0;
    std::memset(lengths, 0, sizeof lengths);
    while (n < hlit + hdist) {
      if (!m_br.refill()) return false;
      uint32_t e = m_br.decode(m_lenCode);
      if (kindOf(e) == kInvalid) return false;
      uint32_t sym = valueOf(e);
      if (sym < 16) {
        lengths[n++] = static_cast<uint8_t>(sym);
        continue;
      }
      uint8_t value = 0;
      uint32_t repeat;
      if (sym == 16) {
        if (n == 0) return false;
        value = lengths[n - 1];
        repeat = m_br.take(2) + 3;
      } else if (sym == 17) {
        repeat = m_br.take(3) + 3;
      } else {
        repeat = m_br.take(7) + 11;
      }
      if (n + repeat > hlit + hdist) return false;
      while (repeat--) lengths[n++] = value;
    }
    if (lengths[256] == 0) return false;  // a block must be able to end
    if (!m_lit.build(lengths, static_cast<int>(hlit), m_deflate64 ? kMeanings.literalLength64 : kMeanings.literalLength))
      return false;
    if (!m_dist.build(lengths + hlit, static_cast<int>(hdist), kMeanings.distance)) return false;
    return codes(m_lit, m_dist);
  }

  bool codes(const Huffman<kLitFastBits>& lit, const Huffman<kDistFastBits>& dist) {
    uint8_t* const out = m_out;
    const size_t outSize = m_outSize;
    size_t pos = m_outPos;
    BitReader br = m_br;
    for (;;) {
      if (!br.refill()) break;
      uint32_t e = br.decode(lit);
      uint32_t kind = kindOf(e);
      if (kind == kValue) {
        if (pos >= outSize) break;
        out[pos++] = static_cast<uint8_t>(valueOf(e));
        // A literal takes at most 15 of the 56 bits held: a second one needs no refill.
        if (br.count < kMaxBits) continue;
        e = br.decode(lit);
        kind = kindOf(e);
        if (kind == kValue) {
          if (pos >= outSize) break;
          out[pos++] = static_cast<uint8_t>(valueOf(e));
          continue;
        }
      }
      if (kind == kEnd) {
        m_outPos = pos;
        m_br = br;
        return true;
      }
      if (kind == kInvalid) break;
      // Length: its extra bits (up to 16 in the Deflate64 reading), then the distance code and
      // its extra bits, up to 28 more.
      if (br.count < 16 && !br.refill()) break;
      size_t len = valueOf(e) + br.take(extraOf(e));
      if (br.count < 28 && !br.refill()) break;
      uint32_t d = br.decode(dist);
      if (kindOf(d) != kValue) break;
      size_t distance = valueOf(d) + br.take(extraOf(d));
      if (distance > pos || len > outSize - pos) break;
      copyMatch(out + pos, distance, len, outSize - pos);
      pos += len;
    }
    m_outPos = pos;
    m_br = br;
    return false;
  }

  // Copies len bytes from distance back; room is what the output has from dst on (>= len).
  // Where the room allows, whole 16- or 8-byte steps run past len: later output overwrites the
  // surplus. A step no longer than the distance never reads a byte the same step writes.
  static void copyMatch(uint8_t* dst, size_t distance, size_t len, size_t room) {
    const uint8_t* src = dst - distance;
    uint8_t* const end = dst + len;
    if (distance >= 16 && len + 16 <= room) {
      do {
        std::memcpy(dst, src, 16);
        dst += 16;
        src += 16;
      } while (dst < end);
      return;
    }
    if (distance >= 8 && len + 8 <= room) {
      do {
        std::memcpy(dst, src, 8);
        dst += 8;
        src += 8;
      } while (dst < end);
      return;
    }
    if (distance == 1) {
      // A run of one byte: the common shape of flat picture areas.
      std::memset(dst, *src, len);
      return;
    }
    // Short distances repeat the last few bytes; each byte may depend on one just written.
    for (size_t i = 0; i < len; ++i) dst[i] = src[i];
  }

  BitReader m_br;
  uint8_t* m_out;
  size_t m_outSize;
  size_t m_outPos = 0;
  bool m_deflate64;
  Huffman<kLenCodeFastBits> m_lenCode;
  Huffman<kLitFastBits> m_lit;
  Huffman<kDistFastBits> m_dist;
};

}  // namespace

InflateResult InflateRaw(std::span<const uint8_t> in, std::span<uint8_t> out, bool deflate64Lengths) {
  Decoder d(in, out, deflate64Lengths);
  return d.run();
}

}  // namespace mx::image
