// The reader's own DEFLATE decoder against the platform's compressor, and its refusals.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "image/Inflate.h"
#include "platform/Deflate.h"

namespace mx::image {
namespace {

std::vector<uint8_t> sample(size_t n, unsigned seed) {
  // Text-like data with repeats, so that every block kind and long matches appear.
  std::mt19937 rng(seed);
  std::vector<uint8_t> v;
  while (v.size() < n) {
    if (v.size() > 300 && rng() % 3 == 0) {
      size_t back = 1 + rng() % 300, len = 3 + rng() % 400;
      for (size_t i = 0; i < len && v.size() < n; ++i) v.push_back(v[v.size() - back]);
    } else {
      v.push_back(static_cast<uint8_t>(rng() % (rng() % 2 ? 8 : 256)));
    }
  }
  return v;
}

TEST(Inflate, RoundTripsEveryCompressionLevel) {
  for (int level : {0, 1, 6, 9}) {
    for (size_t n : {size_t{0}, size_t{1}, size_t{1000}, size_t{200000}}) {
      std::vector<uint8_t> data = sample(n, static_cast<unsigned>(n + level));
      std::vector<uint8_t> z = platform::DeflateRaw(data, level);
      std::vector<uint8_t> out(n + 16);
      InflateResult r = InflateRaw(z, out);
      ASSERT_TRUE(r.ok) << level << " " << n;
      ASSERT_EQ(r.produced, n);
      EXPECT_TRUE(std::equal(data.begin(), data.end(), out.begin())) << level << " " << n;
    }
  }
}

TEST(Inflate, RefusesBadBlocksAndOverruns) {
  std::vector<uint8_t> out(16);
  // Stored block whose NLEN is not the complement of LEN.
  std::vector<uint8_t> stored = {0x01, 0x02, 0x00, 0xFC, 0xFF, 'a', 'b'};
  EXPECT_FALSE(InflateRaw(stored, out).ok);
  stored[3] = 0xFD;
  InflateResult ok = InflateRaw(stored, out);
  EXPECT_TRUE(ok.ok);
  EXPECT_EQ(ok.produced, 2u);
  // Block type 3 does not exist.
  EXPECT_FALSE(InflateRaw(std::vector<uint8_t>{0x07, 0x00}, out).ok);
  // Output past the end fails; exactly the end succeeds.
  std::vector<uint8_t> data(40, 'x');
  std::vector<uint8_t> z = platform::DeflateRaw(data, 6);
  std::vector<uint8_t> small(39), exact(40);
  EXPECT_FALSE(InflateRaw(z, small).ok);
  EXPECT_TRUE(InflateRaw(z, exact).ok);
  // Input that stops before the final block.
  for (size_t cut = 0; cut + 1 < z.size(); ++cut)
    EXPECT_FALSE(InflateRaw(std::span<const uint8_t>(z.data(), cut), exact).ok) << cut;
}

// Writes DEFLATE by hand, least significant bit first, so that a test can send exactly the
// symbols it wants with the fixed codes.
class BitWriter {
 public:
  void bits(uint32_t value, int n) {
    for (int i = 0; i < n; ++i) put((value >> i) & 1);
  }
  // A Huffman code goes out most significant bit first.
  void code(uint32_t code, int n) {
    for (int i = n - 1; i >= 0; --i) put((code >> i) & 1);
  }
  void fixedLiteral(int sym) {
    if (sym < 144) code(0x30 + sym, 8);
    else if (sym < 256) code(0x190 + sym - 144, 9);
    else if (sym < 280) code(sym - 256, 7);
    else code(0xC0 + sym - 280, 8);
  }
  void fixedDistance(int sym) { code(sym, 5); }
  void align() {
    while (m_fill) put(0);
  }
  void byte(uint8_t b) { bits(b, 8); }
  std::vector<uint8_t> take() {
    align();
    return m_out;
  }

 private:
  void put(uint32_t bit) {
    if (m_fill == 0) m_out.push_back(0);
    m_out.back() |= static_cast<uint8_t>(bit << m_fill);
    m_fill = (m_fill + 1) & 7;
  }
  std::vector<uint8_t> m_out;
  int m_fill = 0;
};

// Decodes into exactly size bytes, and checks that nothing was written past them: the copies
// may run ahead in whole steps only where the output has room.
std::vector<uint8_t> inflateExactly(const std::vector<uint8_t>& z, size_t size, bool d64 = false) {
  std::vector<uint8_t> out(size + 32, 0xA5);
  InflateResult r = InflateRaw(z, std::span<uint8_t>(out.data(), size), d64);
  if (!r.ok || r.produced != size) return {};
  for (size_t i = size; i < out.size(); ++i) EXPECT_EQ(out[i], 0xA5) << "written past the end at " << i;
  out.resize(size);
  return out;
}

TEST(Inflate, MatchesOfEveryShortDistanceAndLongRuns) {
  // Periodic data gives matches at exactly the period: distance 1 (byte runs), the overlapping
  // copies below 8 and 16, and long ones; sizes that end mid-match leave the copy no room to
  // run past its end.
  for (size_t period : {1, 2, 3, 5, 7, 8, 9, 15, 16, 17, 31, 300}) {
    for (size_t n : {size_t{40}, size_t{259}, size_t{1000}, size_t{70001}}) {
      std::vector<uint8_t> data(n);
      for (size_t i = 0; i < n; ++i) data[i] = static_cast<uint8_t>((i % period) * 37 + 11);
      // A few bytes of no pattern after the run: its last copy ends just short of the end.
      for (size_t i = 0; i < n % 7; ++i) data.push_back(static_cast<uint8_t>(200 + i));
      std::vector<uint8_t> z = platform::DeflateRaw(data, 9);
      EXPECT_EQ(inflateExactly(z, data.size()), data) << period << " " << n;
    }
  }
}

TEST(Inflate, LongCodesOfASkewedAlphabet) {
  // Symbol frequencies halving from one to the next make the rarest codes 15 bits long, far
  // past what one table look-up covers.
  std::mt19937 rng(99);
  std::vector<uint8_t> data;
  for (int i = 0; i < 300000; ++i) {
    int sym = 0;
    while (sym < 40 && (rng() & 1)) ++sym;
    data.push_back(static_cast<uint8_t>(sym * 5));
  }
  std::vector<uint8_t> z = platform::DeflateRaw(data, 1);
  EXPECT_EQ(inflateExactly(z, data.size()), data);
}

TEST(Inflate, HandWrittenBlocks) {
  // A fixed block of 'a' then a run of distance 1 and length 258, not final; then a stored
  // block, which must start at a byte boundary although bits of it were already read; then a
  // final fixed block that copies across the stored one.
  BitWriter w;
  w.bits(0, 1);
  w.bits(1, 2);
  w.fixedLiteral('a');
  w.fixedLiteral(285);  // length 258
  w.fixedDistance(0);   // distance 1
  w.fixedLiteral(256);
  w.bits(0, 1);
  w.bits(0, 2);
  w.align();
  w.bits(3, 16);
  w.bits(0xFFFC, 16);
  w.byte('x');
  w.byte('y');
  w.byte('z');
  w.bits(1, 1);
  w.bits(1, 2);
  w.fixedLiteral(257);  // length 3
  w.fixedDistance(3);   // distance 4: "ayxz" -> back over the stored bytes
  w.fixedLiteral(256);
  std::vector<uint8_t> z = w.take();
  std::string expected(259, 'a');
  expected += "xyz";
  expected += "axy";
  std::vector<uint8_t> out = inflateExactly(z, expected.size());
  EXPECT_EQ(std::string(out.begin(), out.end()), expected);
}

TEST(Inflate, Deflate64ReadsSixteenBitsAfterLength285) {
  // 'a', then symbol 285 with the 16 bits 997 behind it, distance 1.
  BitWriter w;
  w.bits(1, 1);
  w.bits(1, 2);
  w.fixedLiteral('a');
  w.fixedLiteral(285);
  w.bits(997, 16);
  w.fixedDistance(0);
  w.fixedLiteral(256);
  std::vector<uint8_t> z = w.take();
  EXPECT_EQ(inflateExactly(z, 1001, true), std::vector<uint8_t>(1001, 'a'));
  // Plain DEFLATE reads 258 and then takes the 16 bits as codes: not this output.
  std::vector<uint8_t> out(1001);
  InflateResult plain = InflateRaw(z, out, false);
  EXPECT_FALSE(plain.ok && plain.produced == 1001 && out == std::vector<uint8_t>(1001, 'a'));
  // Output beyond the expected size fails instead of being cut.
  std::vector<uint8_t> small(1000);
  EXPECT_FALSE(InflateRaw(z, small, true).ok);
  // A distance that reaches before the start of the output fails.
  BitWriter far;
  far.bits(1, 1);
  far.bits(1, 2);
  far.fixedLiteral('a');
  far.fixedLiteral(257);
  far.fixedDistance(1);  // distance 2 with one byte written
  far.fixedLiteral(256);
  EXPECT_FALSE(InflateRaw(far.take(), out).ok);
}

}  // namespace
}  // namespace mx::image
