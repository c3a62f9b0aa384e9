// The reader's own DEFLATE decoder against the platform's compressor, and its refusals.
#include <gtest/gtest.h>

#include <random>

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

}  // namespace
}  // namespace mx::image
