// Colour reduction and LZW pieces of the GIF writer, checked against giflib's decoder.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "GifTestSupport.h"
#include "image/GifLzwEncoder.h"
#include "image/GifPalette.h"

namespace mx::image {
namespace {

using test::decodeGif;

constexpr int32_t rgb(int r, int g, int b) { return r | (g << 8) | (b << 16); }

TEST(GifPalette, CodeSizeCoversEveryTableSizeAtItsBoundaries) {
  // (largest colour count for the size, size)
  const std::pair<int, int> table[] = {{4, 2}, {8, 3}, {16, 4}, {32, 5}, {64, 6}, {128, 7}, {256, 8}};
  int from = 1;
  for (auto [upTo, size] : table) {
    for (int n = from; n <= upTo; ++n) {
      EXPECT_EQ(GifCodeSize(n), size) << n;
      EXPECT_GE(1 << GifCodeSize(n), n) << "the padded table must hold every colour";
    }
    from = upTo + 1;
  }
}

TEST(GifPalette, ExactPaletteIsSortedDistinctAndSkipsTransparency) {
  std::vector<int32_t> pixels = {rgb(9, 0, 0), -1, rgb(1, 2, 3), rgb(9, 0, 0), rgb(0, 0, 255), -1, rgb(1, 2, 3)};
  std::vector<int32_t> palette;
  ASSERT_TRUE(BuildExactPalette(pixels, 256, palette));
  EXPECT_EQ(palette, (std::vector<int32_t>{rgb(9, 0, 0), rgb(1, 2, 3), rgb(0, 0, 255)}));
  for (size_t i = 0; i < palette.size(); ++i) EXPECT_EQ(ExactPaletteIndex(palette, palette[i]), int32_t(i));
  EXPECT_EQ(ExactPaletteIndex(palette, rgb(2, 2, 3)), -1);
  // The marker sorts after every real colour, so appending it keeps the order.
  EXPECT_GT(kGifTransparentMarker, rgb(255, 255, 255));
}

TEST(GifPalette, OctreeKeepsColoursThatNeedNoReduction) {
  // 200 colours four apart on each channel land in separate deepest leaves: nothing merges, and
  // each leaf's average is the colour itself.
  std::set<int32_t> colors;
  std::mt19937 rng(7);
  while (colors.size() < 200) colors.insert(rgb(int(rng() % 64) * 4, int(rng() % 64) * 4, int(rng() % 64) * 4));
  GifOctree tree(255);
  for (int repeat = 0; repeat < 3; ++repeat)
    for (int32_t c : colors) tree.AddColor(c);
  EXPECT_EQ(tree.LeafCount(), 200u);
  std::vector<int32_t> palette = tree.Palette();
  EXPECT_EQ(std::set<int32_t>(palette.begin(), palette.end()), colors);
}

TEST(GifPalette, OctreeReducesToTheLimitAndAveragesMergedColours) {
  GifOctree tree(255);
  std::mt19937 rng(11);
  for (int i = 0; i < 20000; ++i) {
    tree.AddColor(int32_t(rng() & 0xFFFFFF));
    ASSERT_LE(tree.LeafCount(), 255u);
  }
  EXPECT_EQ(tree.Palette().size(), tree.LeafCount());

  // Two tight clusters: whatever merges, each entry stays inside the cluster it came from.
  GifOctree two(2);
  for (int i = 0; i < 50; ++i) {
    two.AddColor(rgb(10 + i % 5, 20, 30));
    two.AddColor(rgb(200, 210 + i % 7, 220));
  }
  std::vector<int32_t> p = two.Palette();
  ASSERT_EQ(p.size(), 2u);
  std::sort(p.begin(), p.end(), [](int32_t a, int32_t b) { return (a & 0xFF) < (b & 0xFF); });
  EXPECT_EQ(p[0], rgb(12, 20, 30));
  EXPECT_EQ(p[1], rgb(200, 212, 220));  // (210+...+216 spread over 50 samples) / 50 truncated
}

TEST(GifPalette, NearestUsesSquaredDistanceAndFirstEntryWinsTies) {
  // (25,10,10) is nearer by the sum of differences, (18,18,18) by the sum of squares.
  std::vector<int32_t> palette = {rgb(25, 10, 10), rgb(18, 18, 18), rgb(0, 0, 0), rgb(20, 20, 20)};
  GifNearestColor nearest(palette, palette.size());
  EXPECT_EQ(nearest.Index(rgb(10, 10, 10)), 1);
  EXPECT_EQ(nearest.Index(rgb(10, 10, 10)), 1);  // from the cache
  EXPECT_EQ(nearest.Index(rgb(20, 20, 20)), 3);
  // Halfway between two entries: the earlier one.
  std::vector<int32_t> tie = {rgb(10, 0, 0), rgb(0, 0, 0)};
  EXPECT_EQ(GifNearestColor(tie, 2).Index(rgb(5, 0, 0)), 0);
  // Entries past the search count (the transparency entry) are never chosen.
  std::vector<int32_t> withMarker = {rgb(0, 0, 0), rgb(255, 255, 255)};
  EXPECT_EQ(GifNearestColor(withMarker, 1).Index(rgb(250, 250, 250)), 0);
}

// A complete one-frame GIF around the encoder's output, for giflib to decode.
std::vector<uint8_t> wrapLzw(const std::vector<uint8_t>& indices, int w, int h, int codeSize) {
  std::vector<uint8_t> gif = {'G', 'I', 'F', '8', '9', 'a', uint8_t(w), uint8_t(w >> 8), uint8_t(h), uint8_t(h >> 8),
                              uint8_t(0x80 | (codeSize - 1)), 0, 0};
  for (int i = 0; i < (1 << codeSize); ++i) gif.insert(gif.end(), {uint8_t(i), uint8_t(i), uint8_t(i)});
  gif.insert(gif.end(), {0x2C, 0, 0, 0, 0, uint8_t(w), uint8_t(w >> 8), uint8_t(h), uint8_t(h >> 8), 0,
                         uint8_t(codeSize)});
  GifLzwEncoder().Encode(indices, codeSize, gif);
  gif.push_back(0x3B);
  return gif;
}

TEST(GifLzw, GiflibDecodesWhatIsEncodedAtEveryCodeSize) {
  std::mt19937 rng(3);
  struct Case {
    int w, h, codeSize;
    bool noisy;
  };
  // Noise at 8 bits fills the 4096-code table many times over, forcing clear codes mid-stream;
  // runs and small alphabets grow long strings and walk the width up through every step.
  const Case cases[] = {{1, 1, 2, true},    {3, 1, 2, false},   {17, 13, 3, true},  {64, 64, 4, false},
                        {301, 207, 8, true}, {640, 480, 2, false}, {255, 255, 5, true}, {1000, 30, 8, false}};
  for (const Case& c : cases) {
    std::vector<uint8_t> indices(size_t(c.w) * c.h);
    const int colors = 1 << c.codeSize;
    for (size_t i = 0; i < indices.size(); ++i)
      indices[i] = c.noisy ? uint8_t(rng() % colors) : uint8_t((i / 97 + (i % 5 == 0)) % colors);
    std::vector<uint8_t> gif = wrapLzw(indices, c.w, c.h, c.codeSize);
    test::DecodedGif d = decodeGif(gif);
    ASSERT_TRUE(d.ok) << c.w << "x" << c.h << " code size " << c.codeSize;
    EXPECT_EQ(d.indices, indices) << c.w << "x" << c.h << " code size " << c.codeSize;
  }
}

TEST(GifLzw, SubBlocksAreAtMost254BytesAndEndWithAnEmptyOne) {
  std::mt19937 rng(5);
  std::vector<uint8_t> indices(200 * 200);
  for (auto& v : indices) v = uint8_t(rng());
  std::vector<uint8_t> out;
  GifLzwEncoder().Encode(indices, 8, out);
  size_t pos = 0, blocks = 0;
  while (pos < out.size() && out[pos] != 0) {
    EXPECT_LE(out[pos], 254);
    pos += size_t(out[pos]) + 1;
    ++blocks;
  }
  EXPECT_GT(blocks, 100u);
  ASSERT_EQ(pos, out.size() - 1);
  // The encoder starts with a clear code: 256 at 9 bits, least-significant bit first.
  EXPECT_EQ(out[1], 0x00);
  EXPECT_EQ(out[2] & 1, 1);
}

}  // namespace
}  // namespace mx::image
