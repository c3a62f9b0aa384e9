// The compressor: round trips over many sizes and byte distributions, the uncompressed variant,
// the surface form, and damaged blobs.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "image/API32bppDIB.h"
#include "imagelist/APIHuffman.h"

namespace mx::imagelist {
namespace {

std::vector<uint8_t> RoundTrip(const std::vector<uint8_t>& data, std::vector<uint8_t>* blobOut = nullptr) {
  APIHuffman h;
  std::vector<uint8_t> blob, back;
  EXPECT_TRUE(h.Compress(nullptr, data, blob));
  EXPECT_TRUE(h.Decompress(blob, 0, back, nullptr));
  if (blobOut) *blobOut = blob;
  return back;
}

// Bytes drawn from distributions that exercise the tree: uniform over k symbols, skewed
// (geometric), and runs.
std::vector<uint8_t> Sample(std::mt19937& rng, size_t n, int kind) {
  std::vector<uint8_t> v(n);
  switch (kind) {
    case 0:
      for (auto& b : v) b = static_cast<uint8_t>(rng());
      break;  // all 256
    case 1:
      for (auto& b : v) b = static_cast<uint8_t>(rng() % 3);
      break;   // few
    case 2: {  // skewed
      std::geometric_distribution<int> g(0.3);
      for (auto& b : v) b = static_cast<uint8_t>(std::min(g(rng), 255));
      break;
    }
    case 3:
      for (size_t i = 0; i < n; ++i) v[i] = static_cast<uint8_t>((i / 37) * 11);
      break;  // runs
    default:
      for (auto& b : v) b = static_cast<uint8_t>(rng() % 2 ? 0 : 255);
      break;  // two
  }
  return v;
}

TEST(APIHuffman, RoundTripsManySizesAndDistributions) {
  std::mt19937 rng(1234);
  for (size_t n : {0u, 1u, 2u, 3u, 7u, 8u, 9u, 15u, 16u, 17u, 100u, 255u, 256u, 1000u, 4097u, 65536u, 200000u}) {
    for (int kind = 0; kind < 5; ++kind) {
      std::vector<uint8_t> data = Sample(rng, n, kind);
      EXPECT_EQ(RoundTrip(data), data) << "size " << n << " kind " << kind;
    }
  }
}

TEST(APIHuffman, SkewedDataShrinksAndUsesThePackedMagic) {
  std::mt19937 rng(7);
  std::vector<uint8_t> data = Sample(rng, 10000, 2), blob;
  EXPECT_EQ(RoundTrip(data, &blob), data);
  ASSERT_GE(blob.size(), 14u);
  EXPECT_EQ(blob[0], 0x0D);
  EXPECT_EQ(blob[1], '3');
  EXPECT_LT(blob.size(), data.size() / 2);
  // Header: uncompressed length, total length, symbols in use.
  EXPECT_EQ(blob[4] | blob[5] << 8 | blob[6] << 16, 10000);
  EXPECT_EQ(static_cast<size_t>(blob[8] | blob[9] << 8 | blob[10] << 16), blob.size());
}

TEST(APIHuffman, IncompressibleAndSingleSymbolDataAreStoredRaw) {
  // One symbol has a code of no bits: nothing to code, so the raw variant carries it.
  std::vector<uint8_t> same(500, 0x41), blob;
  EXPECT_EQ(RoundTrip(same, &blob), same);
  EXPECT_EQ(blob[1], '0');
  EXPECT_EQ(blob.size(), 14u + 500u);
  EXPECT_EQ(blob[14], 0x41);

  std::mt19937 rng(99);
  std::vector<uint8_t> noise = Sample(rng, 3000, 0);
  EXPECT_EQ(RoundTrip(noise, &blob), noise);
  EXPECT_EQ(blob[1], '0');

  std::vector<uint8_t> empty;
  EXPECT_TRUE(RoundTrip(empty, &blob).empty());
  EXPECT_EQ(blob.size(), 14u);
}

TEST(APIHuffman, ReadsABlobAtAnOffset) {
  std::vector<uint8_t> data(3000);
  for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<uint8_t>(i % 5);
  APIHuffman h;
  std::vector<uint8_t> blob, back;
  h.Compress(nullptr, data, blob);
  std::vector<uint8_t> framed = {1, 2, 3};
  framed.insert(framed.end(), blob.begin(), blob.end());
  framed.push_back(9);  // bytes after the blob's total length are not its business
  ASSERT_TRUE(h.Decompress(framed, 3, back, nullptr));
  EXPECT_EQ(back, data);
}

TEST(APIHuffman, SurfaceRoundTripKeepsSizeAndPixels) {
  image::API32bppDIB src, dst;
  ASSERT_TRUE(src.InitializeDIB(13, 7));
  for (int i = 0; i < 13 * 7; ++i) {
    uint8_t a = static_cast<uint8_t>(i % 3 ? 255 : 128);
    uint8_t* p = src.BitsPointer() + i * 4;
    p[0] = static_cast<uint8_t>(i % 4 * 10);
    p[1] = 0;
    p[2] = static_cast<uint8_t>(std::min<int>(a, i));
    p[3] = a;
  }
  APIHuffman h;
  std::vector<uint8_t> blob, none;
  ASSERT_TRUE(h.Compress(&src, {}, blob));
  ASSERT_TRUE(h.Decompress(blob, 0, none, &dst));
  EXPECT_TRUE(none.empty());
  ASSERT_EQ(dst.Width(), 13);
  ASSERT_EQ(dst.Height(), 7);
  EXPECT_EQ(0, std::memcmp(src.BitsPointer(), dst.BitsPointer(), 13 * 7 * 4));
  // The size fields sit between the length and the total.
  EXPECT_EQ(blob[8], 13);
  EXPECT_EQ(blob[12], 7);
}

TEST(APIHuffman, TruncatedOrDamagedBlobsFailCleanly) {
  std::mt19937 rng(5);
  for (int kind : {1, 2, 0}) {
    std::vector<uint8_t> data = Sample(rng, 600, kind), blob, back;
    APIHuffman h;
    h.Compress(nullptr, data, blob);
    for (size_t cut = 0; cut < blob.size(); ++cut) {
      std::vector<uint8_t> part(blob.begin(), blob.begin() + static_cast<long>(cut));
      EXPECT_FALSE(h.Decompress(part, 0, back, nullptr)) << "cut " << cut << " kind " << kind;
    }
    // Flipped bytes may decode to other data, but never read outside the blob or crash.
    for (size_t i = 0; i < blob.size(); i += 3) {
      std::vector<uint8_t> bad = blob;
      bad[i] ^= 0x5A;
      (void)h.Decompress(bad, 0, back, nullptr);
    }
  }
  APIHuffman h;
  std::vector<uint8_t> back;
  image::API32bppDIB dst;
  // A length far beyond what the data bits can hold is refused before anything is allocated.
  std::vector<uint8_t> blob, few(4000);
  for (size_t i = 0; i < few.size(); ++i) few[i] = static_cast<uint8_t>(i % 3);
  h.Compress(nullptr, few, blob);
  ASSERT_EQ(blob[1], '3');
  blob[4] = blob[5] = blob[6] = 0xFF;
  blob[7] = 0x7F;
  EXPECT_FALSE(h.Decompress(blob, 0, back, nullptr));
  EXPECT_TRUE(back.empty());
  // A surface blob whose size fields disagree with its length is refused.
  std::vector<uint8_t> lying = {0x0D, '0', 'E', 'H', 16, 0, 0, 0, 3, 0, 0, 0, 3, 0, 0, 0};
  lying.resize(16 + 16);
  EXPECT_FALSE(h.Decompress(lying, 0, back, &dst));
  EXPECT_FALSE(h.Decompress(lying, 40, back, nullptr));
}

}  // namespace
}  // namespace mx::imagelist
