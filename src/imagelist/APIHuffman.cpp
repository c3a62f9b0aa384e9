#include "imagelist/APIHuffman.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "image/API32bppDIB.h"
#include "imagelist/ByteIO.h"

namespace mx::imagelist {

namespace {

constexpr uint8_t kMagicPacked[4] = {0x0D, '3', 'E', 'H'};
constexpr uint8_t kMagicRaw[4] = {0x0D, '0', 'E', 'H'};
// Codes are kept in a 64-bit word. Depth grows with the Fibonacci numbers of the counts, so no
// input that fits in memory comes near this; a deeper tree is stored raw all the same.
constexpr int kMaxCodeBits = 56;

struct Node {
  int parent = -1;
  int left = -1;
  int right = -1;
  int symbol = -1;
  uint64_t weight = 0;
};

struct Code {
  uint64_t bits = 0;  // first bit (nearest the root) in bit 0
  int length = 0;
};

// Writes bits from bit 0 of each byte upward.
class BitWriter {
 public:
  explicit BitWriter(std::vector<uint8_t>& out) : m_out(out) {}
  void Put(uint64_t bits, int count) {
    m_acc |= bits << m_used;
    m_used += count;
    while (m_used >= 8) {
      m_out.push_back(static_cast<uint8_t>(m_acc));
      m_acc >>= 8;
      m_used -= 8;
    }
  }
  void Flush() {
    if (m_used > 0) m_out.push_back(static_cast<uint8_t>(m_acc));
    m_acc = 0;
    m_used = 0;
  }

 private:
  std::vector<uint8_t>& m_out;
  uint64_t m_acc = 0;
  int m_used = 0;
};

// Reads the code strings bit by bit in the writer's order. Bits past the end read as zero and
// are remembered, so a truncated blob is noticed without reading outside the span.
class BitReader {
 public:
  BitReader(std::span<const uint8_t> data, size_t pos)
      : m_data(data), m_bit(static_cast<uint64_t>(pos) * 8), m_end(static_cast<uint64_t>(data.size()) * 8) {}
  int Bit() {
    int b = static_cast<int>((ByteAt(static_cast<size_t>(m_bit >> 3)) >> (m_bit & 7)) & 1);
    ++m_bit;
    return b;
  }
  void AlignToByte() { m_bit = (m_bit + 7) & ~uint64_t{7}; }
  [[nodiscard]] size_t BytePosition() const { return static_cast<size_t>(m_bit >> 3); }
  [[nodiscard]] bool UsedPhantom() const { return m_bit > m_end; }

 private:
  [[nodiscard]] uint32_t ByteAt(size_t i) const { return i < m_data.size() ? m_data[i] : 0u; }

  std::span<const uint8_t> m_data;
  uint64_t m_bit;
  uint64_t m_end;
};

// Joins the two lightest free nodes until one is left. The scan runs in node order and keeps
// the first of equal weights, so the tree (and the blob) depends only on the counts.
void BuildTree(std::vector<Node>& nodes) {
  for (;;) {
    int a = -1, b = -1;
    for (int i = 0; i < static_cast<int>(nodes.size()); ++i) {
      if (nodes[i].parent != -1) continue;
      if (a == -1 || nodes[i].weight < nodes[a].weight) {
        b = a;
        a = i;
      } else if (b == -1 || nodes[i].weight < nodes[b].weight) {
        b = i;
      }
    }
    if (b == -1) return;
    Node joined;
    joined.left = a;
    joined.right = b;
    joined.weight = nodes[a].weight + nodes[b].weight;
    nodes.push_back(joined);
    int id = static_cast<int>(nodes.size()) - 1;
    nodes[a].parent = id;
    nodes[b].parent = id;
  }
}

void WriteRaw(const image::API32bppDIB* source, std::span<const uint8_t> data, std::vector<uint8_t>& out) {
  out.assign(kMagicRaw, kMagicRaw + 4);
  PutU32(out, static_cast<uint32_t>(data.size()));
  if (source) {
    PutU32(out, static_cast<uint32_t>(source->Width()));
    PutU32(out, static_cast<uint32_t>(source->Height()));
  } else {
    PutU32(out, static_cast<uint32_t>(14 + data.size()));
    PutU16(out, 0);
  }
  out.insert(out.end(), data.begin(), data.end());
}

}  // namespace

bool APIHuffman::IsBlob(std::span<const uint8_t> blob, size_t position) {
  if (position > blob.size() || blob.size() - position < 8) return false;
  const uint8_t* p = blob.data() + position;
  return std::memcmp(p, kMagicPacked, 4) == 0 || std::memcmp(p, kMagicRaw, 4) == 0;
}

bool APIHuffman::Compress(const image::API32bppDIB* source, std::span<const uint8_t> bytes,
                          std::vector<uint8_t>& outBlob) {
  std::span<const uint8_t> data = bytes;
  if (source) {
    data = source->BitsPointer() ? std::span<const uint8_t>(source->BitsPointer(),
                                                            static_cast<size_t>(source->Width()) * source->Height() * 4)
                                 : std::span<const uint8_t>();
  }

  std::array<uint64_t, 256> counts{};
  for (uint8_t b : data) ++counts[b];

  // Leaves first, one per byte value in use, in ascending order.
  std::vector<Node> nodes;
  nodes.reserve(512);
  for (int s = 0; s < 256; ++s) {
    if (counts[s] == 0) continue;
    Node leaf;
    leaf.symbol = s;
    leaf.weight = counts[s];
    nodes.push_back(leaf);
  }
  const int leaves = static_cast<int>(nodes.size());
  BuildTree(nodes);

  // Each leaf's code, walked up to the root and then reversed so the root's bit comes first.
  std::array<Code, 256> codes{};
  uint64_t totalBits = 0;
  bool tooDeep = false;
  for (int i = 0; i < leaves; ++i) {
    Code c;
    for (int n = i; nodes[n].parent != -1; n = nodes[n].parent) {
      int bit = nodes[nodes[n].parent].right == n ? 1 : 0;
      c.bits = (c.bits << 1) | static_cast<uint64_t>(bit);
      ++c.length;
    }
    if (c.length > kMaxCodeBits) tooDeep = true;
    codes[nodes[i].symbol] = c;
    totalBits += static_cast<uint64_t>(c.length) * nodes[i].weight;
  }

  const size_t header = source ? 22 : 14;
  uint64_t codeBits = 0;
  for (int i = 0; i < leaves; ++i) codeBits += static_cast<uint64_t>(codes[nodes[i].symbol].length);
  const uint64_t packedSize = header + 2ull * leaves + (codeBits + 7) / 8 + (totalBits + 7) / 8;
  if (totalBits == 0 || tooDeep || packedSize > data.size()) {
    WriteRaw(source, data, outBlob);
    return true;
  }

  outBlob.reserve(static_cast<size_t>(packedSize));
  outBlob.assign(kMagicPacked, kMagicPacked + 4);
  PutU32(outBlob, static_cast<uint32_t>(data.size()));
  if (source) {
    PutU32(outBlob, static_cast<uint32_t>(source->Width()));
    PutU32(outBlob, static_cast<uint32_t>(source->Height()));
  }
  PutU32(outBlob, static_cast<uint32_t>(packedSize));
  PutU16(outBlob, static_cast<uint16_t>(leaves));
  for (int i = 0; i < leaves; ++i) {
    outBlob.push_back(static_cast<uint8_t>(nodes[i].symbol));
    outBlob.push_back(static_cast<uint8_t>(codes[nodes[i].symbol].length));
  }
  BitWriter bits(outBlob);
  for (int i = 0; i < leaves; ++i) {
    const Code& c = codes[nodes[i].symbol];
    bits.Put(c.bits, c.length);
  }
  bits.Flush();
  for (uint8_t b : data) bits.Put(codes[b].bits, codes[b].length);
  bits.Flush();
  return true;
}

bool APIHuffman::Decompress(std::span<const uint8_t> blob, size_t position, std::vector<uint8_t>& outBytes,
                            image::API32bppDIB* target) {
  outBytes.clear();
  if (!IsBlob(blob, position)) return false;
  std::span<const uint8_t> b = blob.subspan(position);
  const bool packed = std::memcmp(b.data(), kMagicPacked, 4) == 0;
  const uint32_t length = GetU32(b, 4);
  uint32_t width = 0, height = 0;
  size_t at = 8;
  if (target) {
    if (b.size() < 16) return false;
    width = GetU32(b, 8);
    height = GetU32(b, 12);
    if (static_cast<uint64_t>(width) * height * 4 != length || width > INT32_MAX || height > INT32_MAX) return false;
    at = 16;
  }

  // Where the decoded bytes go: the surface's memory, or outBytes.
  uint8_t* dst = nullptr;
  auto prepare = [&]() -> bool {
    if (target) {
      if (length == 0) {
        target->DestroyDIB();
        return true;
      }
      if (!target->InitializeDIB(static_cast<int32_t>(width), static_cast<int32_t>(height))) return false;
      dst = target->BitsPointer();
    } else {
      outBytes.resize(length);
      dst = outBytes.data();
    }
    return true;
  };

  if (!packed) {
    const size_t rawAt = target ? 16 : 14;
    if (b.size() < rawAt || b.size() - rawAt < length) return false;
    if (!prepare()) return false;
    if (length) std::memcpy(dst, b.data() + rawAt, length);
    if (target) target->SetImageType(image::imgBmpPARGB);
    return true;
  }

  if (b.size() < at + 6) return false;
  const uint32_t total = GetU32(b, at);
  const uint32_t symbols = GetU16(b, at + 4);
  at += 6;
  if (total > b.size() || total < at) return false;
  b = b.first(total);
  if (symbols < 2 || symbols > 256 || b.size() - at < 2ull * symbols) return false;

  // The tree, rebuilt node by node from the code strings. Node 0 is the root; a leaf has a
  // symbol and no children.
  struct DNode {
    int child[2] = {-1, -1};
    int symbol = -1;
  };
  std::vector<DNode> tree(1);
  tree.reserve(512);
  std::array<int, 256> lengths{};
  std::array<uint8_t, 256> order{};
  int prev = -1;
  for (uint32_t i = 0; i < symbols; ++i) {
    int sym = b[at + 2 * i];
    int len = b[at + 2 * i + 1];
    if (sym <= prev || len == 0 || len > 255) return false;
    prev = sym;
    order[i] = static_cast<uint8_t>(sym);
    lengths[i] = len;
  }
  at += 2ull * symbols;
  BitReader codeBits(b, at);
  for (uint32_t i = 0; i < symbols; ++i) {
    int node = 0;
    for (int k = 0; k < lengths[i]; ++k) {
      if (tree[node].symbol != -1) return false;  // a code runs through a leaf
      int bit = codeBits.Bit();
      if (tree[node].child[bit] == -1) {
        if (tree.size() >= 511) return false;
        tree[node].child[bit] = static_cast<int>(tree.size());
        tree.emplace_back();
      }
      node = tree[node].child[bit];
    }
    if (tree[node].symbol != -1 || tree[node].child[0] != -1 || tree[node].child[1] != -1) return false;
    tree[node].symbol = order[i];
  }
  if (codeBits.UsedPhantom()) return false;
  codeBits.AlignToByte();
  const size_t dataAt = codeBits.BytePosition();

  // Every code takes at least one bit, so a length beyond the bits present is a lie; it is
  // refused before anything that size is allocated.
  if (static_cast<uint64_t>(length) > static_cast<uint64_t>(b.size() - std::min(dataAt, b.size())) * 8) return false;

  // A first-level table over the next kTableBits bits: each entry either finishes a code
  // (symbol and its length) or names the inner node where a bit-by-bit walk goes on. -1 in both
  // marks a path that leaves the tree, which only a damaged blob takes.
  constexpr int kTableBits = 11;
  struct Entry {
    int16_t symbol = -1;
    int16_t node = -1;
    int8_t bits = 0;
  };
  std::vector<Entry> table(size_t{1} << kTableBits);
  for (uint32_t pattern = 0; pattern < table.size(); ++pattern) {
    int node = 0;
    Entry e;
    for (int k = 0; k < kTableBits; ++k) {
      node = tree[node].child[(pattern >> k) & 1];
      if (node == -1) break;
      if (tree[node].symbol != -1) {
        e.symbol = static_cast<int16_t>(tree[node].symbol);
        e.bits = static_cast<int8_t>(k + 1);
        break;
      }
    }
    if (node != -1 && e.symbol == -1) {
      e.node = static_cast<int16_t>(node);
      e.bits = kTableBits;
    }
    table[pattern] = e;
  }

  if (!prepare()) return false;
  // A 64-bit window over the data, refilled a byte at a time; bytes past the end read as zero
  // and are counted, so a blob that runs out is noticed once the symbols are read.
  const uint8_t* p = b.data();
  const size_t end = b.size();
  size_t pos = dataAt;
  uint64_t window = 0;
  int avail = 0;
  uint64_t phantomBits = 0;
  auto refill = [&] {
    if (avail <= 56 && end - pos >= 8) {
      // Away from the end: eight bytes in one load, keeping the whole bytes that fit.
      uint64_t next;
      std::memcpy(&next, p + pos, 8);
      window |= next << avail;
      pos += static_cast<size_t>((63 - avail) >> 3);
      avail |= 56;
      return;
    }
    while (avail <= 56) {
      uint64_t byte = 0;
      if (pos < end)
        byte = p[pos++];
      else
        phantomBits += 8;
      window |= byte << avail;
      avail += 8;
    }
  };
  bool ok = true;
  for (uint32_t n = 0; n < length && ok; ++n) {
    refill();
    const Entry& e = table[window & ((1u << kTableBits) - 1)];
    if (e.symbol >= 0) {
      dst[n] = static_cast<uint8_t>(e.symbol);
      window >>= e.bits;
      avail -= e.bits;
      continue;
    }
    int node = e.node;
    if (node >= 0) {
      window >>= kTableBits;
      avail -= kTableBits;
    }
    while (node >= 0 && tree[node].symbol == -1) {
      if (avail == 0) refill();
      node = tree[node].child[window & 1];
      window >>= 1;
      --avail;
    }
    if (node < 0)
      ok = false;
    else
      dst[n] = static_cast<uint8_t>(tree[node].symbol);
  }
  // The zero bits read past the end sit at the top of the window; taking any of them, or a
  // path out of the tree, means the blob is damaged.
  if (!ok || phantomBits > static_cast<uint64_t>(avail)) {
    if (target) target->DestroyDIB();
    outBytes.clear();
    return false;
  }
  if (target) target->SetImageType(image::imgBmpPARGB);
  return true;
}

}  // namespace mx::imagelist
