// ICO and CUR reading: entry choice, AND masks, alpha entries, PNG entries, damage.
#include <gtest/gtest.h>

#include "image/API32bppDIB.h"
#include "image/APIICOParser.h"
#include "image/APIPNGWriter.h"
#include "CodecTestSupport.h"

namespace mx::image {
namespace {

using test::le16;
using test::le32;
using test::px;

// One icon entry in DIB form: colour rows at `bitCount` (indices or BGR(A) given per pixel, top
// row first), then the AND mask (1 = transparent), both stored bottom-up.
std::vector<uint8_t> dibEntry(int w, int h, int bitCount, const std::vector<uint32_t>& values,
                              const std::vector<uint8_t>& andBits, std::vector<uint32_t> palette = {}) {
  test::DibSpec s{.width = w, .height = h * 2, .bitCount = static_cast<uint16_t>(bitCount)};
  s.palette = std::move(palette);
  if (bitCount <= 8 && s.palette.empty()) s.palette.assign(size_t{1} << bitCount, 0);
  std::vector<uint8_t> out = test::dibTables(s);
  size_t stride = ((static_cast<size_t>(w) * bitCount + 31) / 32) * 4;
  for (int y = h - 1; y >= 0; --y) {
    std::vector<uint8_t> row(stride, 0);
    for (int x = 0; x < w; ++x) {
      uint32_t v = values[static_cast<size_t>(y) * w + x];
      if (bitCount <= 8) {
        int per = 8 / bitCount, shift = 8 - bitCount * (x % per + 1);
        row[static_cast<size_t>(x / per)] |= static_cast<uint8_t>(v << shift);
      } else {
        for (int k = 0; k < bitCount / 8; ++k) row[static_cast<size_t>(x) * (bitCount / 8) + k] = uint8_t(v >> (8 * k));
      }
    }
    out.insert(out.end(), row.begin(), row.end());
  }
  size_t maskStride = ((static_cast<size_t>(w) + 31) / 32) * 4;
  for (int y = h - 1; y >= 0; --y) {
    std::vector<uint8_t> row(maskStride, 0);
    for (int x = 0; x < w; ++x)
      if (andBits[static_cast<size_t>(y) * w + x]) row[static_cast<size_t>(x / 8)] |= uint8_t(0x80 >> (x % 8));
    out.insert(out.end(), row.begin(), row.end());
  }
  return out;
}

struct Entry {
  int w, h;
  std::vector<uint8_t> data;
  int hotX = 0, hotY = 0;
};

std::vector<uint8_t> makeIco(const std::vector<Entry>& entries, int type = 1) {
  std::vector<uint8_t> o;
  le16(o, 0);
  le16(o, static_cast<uint32_t>(type));
  le16(o, static_cast<uint32_t>(entries.size()));
  uint32_t offset = 6 + 16 * static_cast<uint32_t>(entries.size());
  for (const Entry& e : entries) {
    o.push_back(static_cast<uint8_t>(e.w & 0xFF));
    o.push_back(static_cast<uint8_t>(e.h & 0xFF));
    o.push_back(0);
    o.push_back(0);
    le16(o, static_cast<uint32_t>(type == 2 ? e.hotX : 1));
    le16(o, static_cast<uint32_t>(type == 2 ? e.hotY : 0));  // depth left 0: read from the image
    le32(o, static_cast<uint32_t>(e.data.size()));
    le32(o, offset);
    offset += static_cast<uint32_t>(e.data.size());
  }
  for (const Entry& e : entries) o.insert(o.end(), e.data.begin(), e.data.end());
  return o;
}

// A w x h entry of one solid colour at a depth, with nothing masked.
Entry solid(int w, int h, int depth, uint32_t rgb) {
  std::vector<uint32_t> v(static_cast<size_t>(w) * h, depth <= 8 ? 1 : (depth == 32 ? 0 : rgb));
  return Entry{w, h, dibEntry(w, h, depth, v, std::vector<uint8_t>(v.size(), 0), depth <= 8 ? std::vector<uint32_t>(size_t{1} << depth, rgb) : std::vector<uint32_t>{})};
}

TEST(IcoReader, AndMaskMakesPixelsTransparentAtEveryIndexedDepth) {
  // 2 x 2, top row: colour 1, masked; bottom row: colour 2, colour 1.
  const std::vector<uint32_t> idx = {1, 1, 2, 1};
  const std::vector<uint8_t> mask = {0, 1, 0, 0};
  for (int depth : {1, 4, 8}) {
    std::vector<uint32_t> pal(size_t{1} << depth, 0);
    pal[1] = 0xFF0000;
    if (depth > 1) pal[2] = 0x00FF00;
    API32bppDIB d;
    ASSERT_TRUE(d.LoadPicture_Stream(makeIco({Entry{2, 2, dibEntry(2, 2, depth, idx, mask, pal)}}))) << depth;
    EXPECT_EQ(px(d, 0, 0), 0xFFFF0000u) << depth;
    EXPECT_EQ(px(d, 1, 0), 0u) << depth;
    EXPECT_EQ(px(d, 0, 1), depth > 1 ? 0xFF00FF00u : 0xFF000000u) << depth;  // 1 bit: index 2 is index 0
    EXPECT_EQ(d.ImageType(), imgIcon);
    EXPECT_EQ(d.Alpha(), AlphaSimple);
  }
  // 24 bits, nothing masked: opaque.
  API32bppDIB d;
  ASSERT_TRUE(d.LoadPicture_Stream(makeIco({Entry{2, 2, dibEntry(2, 2, 24, {0x102030, 1, 2, 3}, {0, 0, 0, 0})}})));
  EXPECT_EQ(px(d, 0, 0), 0xFF102030u);
  EXPECT_EQ(d.Alpha(), AlphaNone);
}

TEST(IcoReader, ThirtyTwoBitEntriesUseAlphaUnlessTheirPlaneIsEmpty) {
  API32bppDIB d;
  // Straight alpha 128 on red 200: premultiplied to 100; the mask (all set) is ignored.
  ASSERT_TRUE(d.LoadPicture_Stream(makeIco({Entry{2, 1, dibEntry(2, 1, 32, {0x80C80000, 0xFF00FF00}, {1, 1})}})));
  EXPECT_EQ(px(d, 0, 0), 0x80640000u);
  EXPECT_EQ(px(d, 1, 0), 0xFF00FF00u);
  EXPECT_EQ(d.ImageType(), imgIconARGB);
  EXPECT_EQ(d.Alpha(), AlphaComplex);
  // An all-zero alpha plane: the mask decides.
  ASSERT_TRUE(d.LoadPicture_Stream(makeIco({Entry{2, 1, dibEntry(2, 1, 32, {0x00C80000, 0x0000FF00}, {1, 0})}})));
  EXPECT_EQ(px(d, 0, 0), 0u);
  EXPECT_EQ(px(d, 1, 0), 0xFF00FF00u);
  EXPECT_EQ(d.ImageType(), imgIcon);
}

TEST(IcoReader, PngEntriesGoToThePngReader) {
  API32bppDIB src;
  test::fill(src, 3, 2, {0xFFFF0000, 0, 0x80400000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF}, AlphaComplex);
  std::vector<uint8_t> png = APIPNGWriter::Encode(src);
  API32bppDIB d;
  ASSERT_TRUE(d.LoadPicture_Stream(makeIco({Entry{3, 2, png}})));
  EXPECT_EQ(d.ImageType(), imgPNGicon);
  EXPECT_EQ(px(d, 0, 0), 0xFFFF0000u);
  EXPECT_EQ(px(d, 1, 0), 0u);
  EXPECT_EQ(px(d, 2, 1), 0xFFFFFFFFu);
}

TEST(IcoReader, EntryChoiceBySizeThenDepth) {
  std::vector<IconEntry> e = {{16, 16, 8}, {16, 16, 32}, {32, 32, 4}, {48, 48, 32}, {24, 24, 32}};
  auto best = [&](int cx, int cy, int depth) { return APIICOParser::RankEntries(e, cx, cy, depth).front(); };
  EXPECT_EQ(best(16, 16, 32), 1);
  EXPECT_EQ(best(16, 16, 8), 0);
  EXPECT_EQ(best(16, 16, 1), 0);   // nothing at or below 1 bit: the shallowest above it
  EXPECT_EQ(best(0, 0, 32), 2);    // the system size, 32
  EXPECT_EQ(best(40, 0, 32), 3);   // 40 x 40: 48 and 32 are equally far; the larger wins
  EXPECT_EQ(best(20, 20, 32), 4);  // 24 is nearer than 16
  EXPECT_EQ(APIICOParser::RankEntries(e, 16, 16, 32),
            (std::vector<int32_t>{1, 0, 4, 2, 3}));

  // Through the surface: a file with 16 x 16 and 32 x 32 entries of different colours.
  std::vector<uint8_t> ico = makeIco({solid(16, 16, 24, 0x0000FF), solid(32, 32, 8, 0x00FF00)});
  API32bppDIB d;
  ASSERT_TRUE(d.LoadPicture_Stream(ico, 16, 16, 0, 0, true));
  EXPECT_EQ(d.Width(), 16);
  EXPECT_EQ(px(d, 5, 5), 0xFF0000FFu);
  std::vector<std::array<int32_t, 4>> sizes;
  ASSERT_EQ(d.SourceIconSizes(sizes), 2);
  EXPECT_EQ(sizes[0], (std::array<int32_t, 4>{16, 16, 24, static_cast<int32_t>(0xFF000000u)}));
  EXPECT_EQ(sizes[1], (std::array<int32_t, 4>{32, 32, 8, 256}));
  // Read again at another size from the kept bytes.
  ASSERT_TRUE(d.LoadPicture_FromOrignalFormat(32, 32));
  EXPECT_EQ(d.Width(), 32);
  EXPECT_EQ(px(d, 5, 5), 0xFF00FF00u);
}

TEST(IcoReader, CursorsReportTheirTypesAndHotSpots) {
  std::vector<uint8_t> cur = makeIco({Entry{2, 1, dibEntry(2, 1, 24, {0x112233, 0x445566}, {0, 1}), 1, 0}}, 2);
  APIICOParser parser;
  API32bppDIB d;
  ASSERT_TRUE(parser.LoadStream(cur, d));
  EXPECT_TRUE(parser.IsCursor());
  EXPECT_EQ(parser.Entries()[0].hotspotX, 1);
  EXPECT_EQ(d.ImageType(), imgCursor);
  cur = makeIco({Entry{1, 1, dibEntry(1, 1, 32, {0x80FFFFFF}, {0})}}, 2);
  ASSERT_TRUE(d.LoadPicture_Stream(cur));
  EXPECT_EQ(d.ImageType(), imgCursorARGB);
}

TEST(IcoReader, DamagedEntriesFallBackAndDamagedFilesFailCleanly) {
  // The preferred 16 x 16 entry is cut short (no room for its rows): the 32 x 32 one loads.
  Entry broken = solid(16, 16, 24, 0x0000FF);
  broken.data.resize(60);
  std::vector<uint8_t> ico = makeIco({broken, solid(32, 32, 24, 0x00FF00)});
  APIICOParser parser;
  API32bppDIB d;
  ASSERT_TRUE(parser.LoadStream(ico, d, 16, 16));
  EXPECT_EQ(parser.SelectedEntry(), 1);

  // A non-32-bit entry without its mask is refused.
  Entry noMask = solid(8, 8, 24, 0xFF);
  noMask.data.resize(noMask.data.size() - 32);
  EXPECT_FALSE(d.LoadPicture_Stream(makeIco({noMask})));

  std::vector<uint8_t> full = makeIco({solid(4, 4, 4, 0x123456), solid(2, 2, 32, 0)});
  ASSERT_TRUE(APIICOParser().LoadStream(full, d));
  for (size_t n = 1; n < full.size(); ++n) {
    std::vector<uint8_t> cut(full.begin(), full.begin() + static_cast<long>(n));
    bool ok = APIICOParser().LoadStream(cut, d);
    // Only a cut inside the last entry's unused tail could still load the first entry.
    if (!ok) EXPECT_EQ(d.Handle(), 0u) << n;
  }
  std::vector<uint8_t> bad = full;
  bad[2] = 3;  // type 3 is neither icon nor cursor
  EXPECT_FALSE(APIICOParser().LoadStream(bad, d));
  bad = full;
  bad[4] = 0;  // no entries
  EXPECT_FALSE(APIICOParser().LoadStream(bad, d));
}

}  // namespace
}  // namespace mx::image
