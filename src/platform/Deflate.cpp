#include "platform/Deflate.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <queue>

namespace mx::platform {

// ---- checksums ------------------------------------------------------------------------------

namespace {

constexpr std::array<uint32_t, 256> makeCrcTable() {
  std::array<uint32_t, 256> t{};
  for (uint32_t n = 0; n < 256; ++n) {
    uint32_t c = n;
    for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    t[n] = c;
  }
  return t;
}
constexpr auto kCrcTable = makeCrcTable();

}  // namespace

uint32_t Crc32(std::span<const uint8_t> data, uint32_t crc) {
  uint32_t c = crc ^ 0xFFFFFFFFu;
  for (uint8_t b : data) c = kCrcTable[(c ^ b) & 0xFF] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

uint32_t Adler32(std::span<const uint8_t> data, uint32_t adler) {
  constexpr uint32_t kMod = 65521;
  // 5552 is the most bytes whose sums cannot overflow 32 bits before the modulo.
  constexpr size_t kChunk = 5552;
  uint32_t a = adler & 0xFFFF, b = adler >> 16;
  size_t i = 0;
  while (i < data.size()) {
    size_t end = std::min(data.size(), i + kChunk);
    for (; i < end; ++i) {
      a += data[i];
      b += a;
    }
    a %= kMod;
    b %= kMod;
  }
  return (b << 16) | a;
}

// ---- bit output ------------------------------------------------------------------------------

namespace {

// DEFLATE packs bits from the least significant end of each byte; Huffman codes go in with
// their first bit first, so codes are kept bit-reversed.
class BitWriter {
 public:
  explicit BitWriter(std::vector<uint8_t>& out) : m_out(out) {}
  void put(uint32_t bits, int count) {
    m_acc |= static_cast<uint64_t>(bits) << m_n;
    m_n += count;
    while (m_n >= 8) {
      m_out.push_back(static_cast<uint8_t>(m_acc));
      m_acc >>= 8;
      m_n -= 8;
    }
  }
  void alignToByte() {
    if (m_n > 0) put(0, 8 - m_n);
  }

 private:
  std::vector<uint8_t>& m_out;
  uint64_t m_acc = 0;
  int m_n = 0;
};

uint32_t reverseBits(uint32_t code, int len) {
  uint32_t r = 0;
  for (int i = 0; i < len; ++i) r |= ((code >> i) & 1u) << (len - 1 - i);
  return r;
}

// ---- the code tables of the format ----------------------------------------------------------

constexpr int kLitLenCodes = 286, kDistCodes = 30, kClCodes = 19;
constexpr std::array<uint16_t, 29> kLenBase{3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                            31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr std::array<uint8_t, 29> kLenExtra{0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                            2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<uint16_t, 30> kDistBase{1,   2,   3,   4,   5,   7,    9,    13,   17,   25,
                                             33,  49,  65,  97,  129, 193,  257,  385,  513,  769,
                                             1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr std::array<uint8_t, 30> kDistExtra{0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                             6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
constexpr std::array<uint8_t, kClCodes> kClOrder{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};

int lengthCode(int len) {  // index into kLenBase
  int i = 28;
  while (kLenBase[static_cast<size_t>(i)] > len) --i;
  return i;
}
int distCode(int dist) {
  int i = 29;
  while (kDistBase[static_cast<size_t>(i)] > dist) --i;
  return i;
}

struct Code {
  std::vector<uint8_t> lengths;
  std::vector<uint32_t> codes;  // bit-reversed, ready for BitWriter
};

// Canonical codes from lengths, as the format defines them.
Code canonical(std::vector<uint8_t> lengths) {
  Code c;
  std::array<uint32_t, 16> count{}, next{};
  for (uint8_t l : lengths)
    if (l) ++count[l];
  uint32_t code = 0;
  for (int bits = 1; bits < 16; ++bits) {
    code = (code + count[static_cast<size_t>(bits - 1)]) << 1;
    next[static_cast<size_t>(bits)] = code;
  }
  c.codes.resize(lengths.size());
  for (size_t i = 0; i < lengths.size(); ++i)
    if (lengths[i]) c.codes[i] = reverseBits(next[lengths[i]]++, lengths[i]);
  c.lengths = std::move(lengths);
  return c;
}

// Huffman code lengths no longer than maxBits. When the tree comes out too deep the counts
// are flattened (halved, kept non-zero) and the tree is built again, which always ends because
// equal counts give a balanced tree. At least two symbols get a code, so that every code is
// complete and any decoder accepts it.
std::vector<uint8_t> huffmanLengths(std::vector<uint32_t> freq, int maxBits) {
  size_t n = freq.size();
  std::vector<uint8_t> lengths(n, 0);
  int used = 0;
  for (uint32_t f : freq) used += f > 0;
  if (used < 2) {
    for (size_t i = 0; i < n && used < 2; ++i)
      if (!freq[i]) {
        freq[i] = 1;
        ++used;
      }
  }
  for (;;) {
    struct Node {
      uint64_t weight;
      int left, right;  // -1 for a leaf
    };
    std::vector<Node> nodes;
    std::vector<int> leafOf(n, -1);
    using Item = std::pair<uint64_t, int>;
    std::priority_queue<Item, std::vector<Item>, std::greater<>> heap;
    for (size_t i = 0; i < n; ++i)
      if (freq[i]) {
        leafOf[i] = static_cast<int>(nodes.size());
        heap.push({freq[i], static_cast<int>(nodes.size())});
        nodes.push_back(Node{freq[i], -1, -1});
      }
    while (heap.size() > 1) {
      auto [wa, a] = heap.top();
      heap.pop();
      auto [wb, b] = heap.top();
      heap.pop();
      heap.push({wa + wb, static_cast<int>(nodes.size())});
      nodes.push_back(Node{wa + wb, a, b});
    }
    // Depths from the root down; parents come after their children in `nodes`.
    std::vector<int> depth(nodes.size(), 0);
    for (int i = static_cast<int>(nodes.size()) - 1; i >= 0; --i) {
      const Node& nd = nodes[static_cast<size_t>(i)];
      if (nd.left >= 0) {
        depth[static_cast<size_t>(nd.left)] = depth[static_cast<size_t>(i)] + 1;
        depth[static_cast<size_t>(nd.right)] = depth[static_cast<size_t>(i)] + 1;
      }
    }
    int maxDepth = 0;
    for (size_t i = 0; i < n; ++i)
      if (leafOf[i] >= 0) maxDepth = std::max(maxDepth, depth[static_cast<size_t>(leafOf[i])]);
    if (maxDepth <= maxBits) {
      for (size_t i = 0; i < n; ++i)
        if (leafOf[i] >= 0) lengths[i] = static_cast<uint8_t>(depth[static_cast<size_t>(leafOf[i])]);
      return lengths;
    }
    for (uint32_t& f : freq)
      if (f) f = (f >> 1) | 1;
  }
}

Code fixedLitLen() {
  std::vector<uint8_t> l(288);
  for (int i = 0; i < 288; ++i) l[static_cast<size_t>(i)] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
  return canonical(std::move(l));
}
Code fixedDist() { return canonical(std::vector<uint8_t>(30, 5)); }

// ---- LZ77 -----------------------------------------------------------------------------------

struct Token {
  uint16_t litlen;  // a literal byte, or a match length 3..258
  uint16_t dist;    // 0 for a literal
};

constexpr int kWindow = 32768;
constexpr int kMinMatch = 3, kMaxMatch = 258;
constexpr int kHashBits = 15;

struct LevelParams {
  int chain;  // most candidates looked at per position
  int nice;   // a match this long ends the search
  bool lazy;  // look one byte ahead for a longer match before taking one
};
constexpr std::array<LevelParams, 10> kLevels{{{0, 0, false},
                                               {4, 16, false},
                                               {8, 32, false},
                                               {16, 32, false},
                                               {16, 64, true},
                                               {32, 128, true},
                                               {64, 128, true},
                                               {128, 258, true},
                                               {512, 258, true},
                                               {2048, 258, true}}};

// Hash chains over three-byte prefixes: head holds the newest position of each hash, prev
// links every position to the previous one with the same hash, indexed modulo the window.
// Positions are int64 so that -1 can end a chain.
class MatchFinder {
 public:
  MatchFinder(std::span<const uint8_t> data, LevelParams p)
      : m_data(data), m_p(p), m_head(1u << kHashBits, -1), m_prev(kWindow, -1) {}

  void insert(size_t pos) {
    if (pos + kMinMatch > m_data.size()) return;
    uint32_t h = hash(pos);
    m_prev[pos & (kWindow - 1)] = m_head[h];
    m_head[h] = static_cast<int64_t>(pos);
  }

  // Longest match for pos among earlier positions (call before insert(pos)).
  std::pair<int, int> find(size_t pos) const {
    if (pos + kMinMatch > m_data.size()) return {0, 0};
    int maxLen = static_cast<int>(std::min<size_t>(kMaxMatch, m_data.size() - pos));
    int bestLen = 0, bestDist = 0;
    int64_t cand = m_head[hash(pos)];
    int chain = m_p.chain;
    const uint8_t* cur = m_data.data() + pos;
    while (cand >= 0 && chain-- > 0) {
      int64_t dist = static_cast<int64_t>(pos) - cand;
      if (dist > kWindow - 1 || dist <= 0) break;
      const uint8_t* c = m_data.data() + cand;
      if (c[bestLen] == cur[bestLen]) {
        int len = 0;
        while (len < maxLen && c[len] == cur[len]) ++len;
        if (len > bestLen) {
          bestLen = len;
          bestDist = static_cast<int>(dist);
          if (len >= m_p.nice || len == maxLen) break;
        }
      }
      int64_t next = m_prev[static_cast<size_t>(cand) & (kWindow - 1)];
      if (next >= cand) break;  // the slot was reused by a newer position: chain ends
      cand = next;
    }
    if (bestLen < kMinMatch) return {0, 0};
    return {bestLen, bestDist};
  }

 private:
  uint32_t hash(size_t pos) const {
    const uint8_t* p = m_data.data() + pos;
    return ((uint32_t{p[0]} << 10) ^ (uint32_t{p[1]} << 5) ^ p[2]) & ((1u << kHashBits) - 1);
  }
  std::span<const uint8_t> m_data;
  LevelParams m_p;
  std::vector<int64_t> m_head, m_prev;
};

// ---- blocks -----------------------------------------------------------------------------------

class BlockWriter {
 public:
  BlockWriter(std::vector<uint8_t>& out, std::span<const uint8_t> data)
      : m_bits(out), m_data(data), m_fixedLit(fixedLitLen()), m_fixedDist(fixedDist()) {}

  // Sends tokens covering data[begin, end) as the cheapest of the three block kinds.
  void block(const std::vector<Token>& tokens, size_t begin, size_t end, bool last) {
    std::vector<uint32_t> lf(kLitLenCodes, 0), df(kDistCodes, 0);
    for (const Token& t : tokens) {
      if (t.dist == 0) {
        ++lf[t.litlen];
      } else {
        ++lf[static_cast<size_t>(257 + lengthCode(t.litlen))];
        ++df[static_cast<size_t>(distCode(t.dist))];
      }
    }
    lf[256] = 1;
    Code lit = canonical(huffmanLengths(lf, 15));
    Code dist = canonical(huffmanLengths(df, 15));
    Header hdr = makeHeader(lit, dist);

    uint64_t dynBits = 3 + hdr.bits + dataBits(tokens, lit, dist);
    uint64_t fixBits = 3 + dataBits(tokens, m_fixedLit, m_fixedDist);
    size_t storedBlocks = std::max<size_t>(1, (end - begin + 65534) / 65535);
    uint64_t storedBits = (end - begin) * 8 + storedBlocks * (3 + 7 + 32);

    if (storedBits <= dynBits && storedBits <= fixBits) {
      stored(begin, end, last);
    } else if (fixBits <= dynBits) {
      m_bits.put(last ? 1 : 0, 1);
      m_bits.put(1, 2);
      symbols(tokens, m_fixedLit, m_fixedDist);
    } else {
      m_bits.put(last ? 1 : 0, 1);
      m_bits.put(2, 2);
      writeHeader(hdr);
      symbols(tokens, lit, dist);
    }
  }

  void stored(size_t begin, size_t end, bool last) {
    do {
      size_t n = std::min<size_t>(65535, end - begin);
      bool final = last && begin + n == end;
      m_bits.put(final ? 1 : 0, 1);
      m_bits.put(0, 2);
      m_bits.alignToByte();
      m_bits.put(static_cast<uint32_t>(n), 16);
      m_bits.put(static_cast<uint32_t>(~n & 0xFFFF), 16);
      for (size_t i = 0; i < n; ++i) m_bits.put(m_data[begin + i], 8);
      begin += n;
    } while (begin < end);
  }

  void finish() { m_bits.alignToByte(); }

 private:
  struct Header {
    int hlit = 257, hdist = 1, hclen = 4;
    std::vector<uint8_t> seq;    // code-length symbols 0..18
    std::vector<uint8_t> extra;  // their extra-bit values
    Code cl;
    uint64_t bits = 0;
  };

  // The run-length coded list of code lengths and the code that sends it.
  static Header makeHeader(const Code& lit, const Code& dist) {
    Header h;
    h.hlit = kLitLenCodes;
    while (h.hlit > 257 && lit.lengths[static_cast<size_t>(h.hlit - 1)] == 0) --h.hlit;
    h.hdist = kDistCodes;
    while (h.hdist > 1 && dist.lengths[static_cast<size_t>(h.hdist - 1)] == 0) --h.hdist;
    std::vector<uint8_t> all(lit.lengths.begin(), lit.lengths.begin() + h.hlit);
    all.insert(all.end(), dist.lengths.begin(), dist.lengths.begin() + h.hdist);
    for (size_t i = 0; i < all.size();) {
      uint8_t v = all[i];
      size_t run = 1;
      while (i + run < all.size() && all[i + run] == v) ++run;
      if (v == 0 && run >= 3) {
        size_t n = std::min<size_t>(run, 138);
        h.seq.push_back(n >= 11 ? 18 : 17);
        h.extra.push_back(static_cast<uint8_t>(n >= 11 ? n - 11 : n - 3));
        i += n;
      } else if (v != 0 && run >= 4) {
        // One plain length, then repeats of it in groups of 3 to 6.
        h.seq.push_back(v);
        h.extra.push_back(0);
        size_t n = std::min<size_t>(run - 1, 6);
        h.seq.push_back(16);
        h.extra.push_back(static_cast<uint8_t>(n - 3));
        i += 1 + n;
      } else {
        h.seq.push_back(v);
        h.extra.push_back(0);
        ++i;
      }
    }
    std::vector<uint32_t> cf(kClCodes, 0);
    for (uint8_t s : h.seq) ++cf[s];
    h.cl = canonical(huffmanLengths(cf, 7));
    h.hclen = kClCodes;
    while (h.hclen > 4 && h.cl.lengths[kClOrder[static_cast<size_t>(h.hclen - 1)]] == 0) --h.hclen;
    h.bits = 5 + 5 + 4 + 3 * static_cast<uint64_t>(h.hclen);
    for (uint8_t s : h.seq) h.bits += h.cl.lengths[s] + (s == 16 ? 2 : s == 17 ? 3 : s == 18 ? 7 : 0);
    return h;
  }

  void writeHeader(const Header& h) {
    m_bits.put(static_cast<uint32_t>(h.hlit - 257), 5);
    m_bits.put(static_cast<uint32_t>(h.hdist - 1), 5);
    m_bits.put(static_cast<uint32_t>(h.hclen - 4), 4);
    for (int i = 0; i < h.hclen; ++i) m_bits.put(h.cl.lengths[kClOrder[static_cast<size_t>(i)]], 3);
    for (size_t i = 0; i < h.seq.size(); ++i) {
      uint8_t s = h.seq[i];
      m_bits.put(h.cl.codes[s], h.cl.lengths[s]);
      if (s == 16) m_bits.put(h.extra[i], 2);
      else if (s == 17) m_bits.put(h.extra[i], 3);
      else if (s == 18) m_bits.put(h.extra[i], 7);
    }
  }

  static uint64_t dataBits(const std::vector<Token>& tokens, const Code& lit, const Code& dist) {
    uint64_t bits = lit.lengths[256];
    for (const Token& t : tokens) {
      if (t.dist == 0) {
        bits += lit.lengths[t.litlen];
      } else {
        int lc = lengthCode(t.litlen), dc = distCode(t.dist);
        bits += lit.lengths[static_cast<size_t>(257 + lc)] + kLenExtra[static_cast<size_t>(lc)] +
                dist.lengths[static_cast<size_t>(dc)] + kDistExtra[static_cast<size_t>(dc)];
      }
    }
    return bits;
  }

  void symbols(const std::vector<Token>& tokens, const Code& lit, const Code& dist) {
    for (const Token& t : tokens) {
      if (t.dist == 0) {
        m_bits.put(lit.codes[t.litlen], lit.lengths[t.litlen]);
        continue;
      }
      auto lc = static_cast<size_t>(lengthCode(t.litlen));
      m_bits.put(lit.codes[257 + lc], lit.lengths[257 + lc]);
      m_bits.put(t.litlen - kLenBase[lc], kLenExtra[lc]);
      auto dc = static_cast<size_t>(distCode(t.dist));
      m_bits.put(dist.codes[dc], dist.lengths[dc]);
      m_bits.put(t.dist - kDistBase[dc], kDistExtra[dc]);
    }
    m_bits.put(lit.codes[256], lit.lengths[256]);
  }

  BitWriter m_bits;
  std::span<const uint8_t> m_data;
  Code m_fixedLit, m_fixedDist;
};

}  // namespace

std::vector<uint8_t> DeflateRaw(std::span<const uint8_t> data, int level) {
  level = std::clamp(level, 0, 9);
  std::vector<uint8_t> out;
  out.reserve(data.size() / 2 + 64);
  BlockWriter writer(out, data);
  if (level == 0 || data.empty()) {
    writer.stored(0, data.size(), true);
    writer.finish();
    return out;
  }
  const LevelParams params = kLevels[static_cast<size_t>(level)];
  MatchFinder finder(data, params);
  // Blocks of this many symbols let the Huffman codes follow changes in the data (a picture's
  // flat areas and its busy ones) while keeping each block's header cost small.
  constexpr size_t kBlockTokens = 1 << 15;
  std::vector<Token> tokens;
  tokens.reserve(kBlockTokens);
  size_t blockStart = 0, pos = 0;
  while (pos < data.size()) {
    auto [len, dist] = finder.find(pos);
    if (len && params.lazy && len < params.nice && pos + 1 < data.size()) {
      // A longer match one byte on is worth a literal now.
      finder.insert(pos);
      auto [len2, dist2] = finder.find(pos + 1);
      int first = 1;  // pos itself is in the table already
      if (len2 > len) {
        tokens.push_back(Token{data[pos], 0});
        ++pos;
        len = len2;
        dist = dist2;
        first = 0;
      }
      for (int i = first; i < len; ++i) finder.insert(pos + static_cast<size_t>(i));
      tokens.push_back(Token{static_cast<uint16_t>(len), static_cast<uint16_t>(dist)});
      pos += static_cast<size_t>(len);
    } else if (len) {
      for (int i = 0; i < len; ++i) finder.insert(pos + static_cast<size_t>(i));
      tokens.push_back(Token{static_cast<uint16_t>(len), static_cast<uint16_t>(dist)});
      pos += static_cast<size_t>(len);
    } else {
      finder.insert(pos);
      tokens.push_back(Token{data[pos], 0});
      ++pos;
    }
    if (tokens.size() >= kBlockTokens || pos >= data.size()) {
      writer.block(tokens, blockStart, pos, pos >= data.size());
      tokens.clear();
      blockStart = pos;
    }
  }
  writer.finish();
  return out;
}

// ---- zlib streams ---------------------------------------------------------------------------------

namespace {

struct SystemZlib {
  using Compress2 = int (*)(uint8_t*, unsigned long*, const uint8_t*, unsigned long, int);
  using Bound = unsigned long (*)(unsigned long);
  Compress2 compress2 = nullptr;
  Bound compressBound = nullptr;

  SystemZlib() {
    // Bound by name and kept for the life of the process; absent is a normal case.
    void* lib = dlopen("libz.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!lib) return;
    compress2 = reinterpret_cast<Compress2>(dlsym(lib, "compress2"));
    compressBound = reinterpret_cast<Bound>(dlsym(lib, "compressBound"));
    if (!compress2 || !compressBound) compress2 = nullptr;
  }
};

const SystemZlib& systemZlib() {
  static const SystemZlib z;
  return z;
}

}  // namespace

bool SystemZlibAvailable() { return systemZlib().compress2 != nullptr; }

std::vector<uint8_t> ZlibCompress(std::span<const uint8_t> data, int level, bool allowSystemZlib) {
  level = std::clamp(level, 0, 9);
  const SystemZlib& z = systemZlib();
  if (allowSystemZlib && z.compress2) {
    unsigned long cap = z.compressBound(data.size());
    std::vector<uint8_t> out(cap);
    if (z.compress2(out.data(), &cap, data.data(), data.size(), level) == 0) {
      out.resize(cap);
      return out;
    }
  }
  // CMF 0x78: deflate with a 32 KiB window; FLG chosen so that CMF * 256 + FLG is a multiple
  // of 31, with the level hint in its top bits.
  uint8_t flevel = level <= 1 ? 0 : level <= 5 ? 1 : level == 6 ? 2 : 3;
  uint8_t flg = static_cast<uint8_t>(flevel << 6);
  flg = static_cast<uint8_t>(flg + (31 - (0x78 * 256 + flg) % 31) % 31);
  std::vector<uint8_t> out{0x78, flg};
  std::vector<uint8_t> body = DeflateRaw(data, level);
  out.insert(out.end(), body.begin(), body.end());
  uint32_t adler = Adler32(data);
  for (int s = 24; s >= 0; s -= 8) out.push_back(static_cast<uint8_t>(adler >> s));
  return out;
}

}  // namespace mx::platform
