// The PNG reader's own rules: CRCs with and without zlib, ignored chunks, colour keys, filters,
// interlacing, the Deflate64 reading after zlib refuses, and damaged input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "PngTestSupport.h"
#include "image/API32bppDIB.h"
#include "image/APIPNGParser.h"

namespace mx::image {
namespace {

using test::addChunk;
using test::makePng;
using test::PngSpec;
using test::ScopedNoZlib;

uint32_t word(const API32bppDIB& d, int x, int y) {
  return reinterpret_cast<const uint32_t*>(d.BitsPointer())[static_cast<size_t>(d.Height() - 1 - y) * d.Width() + x];
}

bool load(const std::vector<uint8_t>& png, API32bppDIB& d) {
  APIPNGParser p;
  return p.LoadStream(png, d);
}

// 2 x 2 RGB: red, green / blue, white.
PngSpec rgb2x2() {
  PngSpec s;
  s.width = s.height = 2;
  s.rows = {0, 255, 0, 0, 0, 255, 0, 0, 0, 0, 255, 255, 255, 255};
  return s;
}

TEST(APIPNGParserChunks, WrongCrcIsRefusedOnlyWithZlib) {
  std::vector<uint8_t> png = makePng(rgb2x2());
  png[png.size() - 12 - 1] ^= 0x55;  // the last byte of IDAT's CRC
  for (bool noZlib : {false, true}) {
    ScopedNoZlib scope(noZlib);
    API32bppDIB d;
    EXPECT_EQ(load(png, d), noZlib) << noZlib;
    if (noZlib) EXPECT_EQ(word(d, 1, 1), 0xFFFFFFFFu);
  }
  // A CRC of 0 is not checked at all.
  std::vector<uint8_t> zeroCrc = test::signature();
  const uint32_t zero = 0;
  addChunk(zeroCrc, "IHDR", test::ihdr(2, 2, 8, 2), &zero);
  addChunk(zeroCrc, "IDAT", platform::ZlibCompress(rgb2x2().rows, 6, false), &zero);
  addChunk(zeroCrc, "IEND", {});
  API32bppDIB d;
  ScopedNoZlib scope(false);
  EXPECT_TRUE(load(zeroCrc, d));
  EXPECT_EQ(word(d, 0, 0), 0xFFFF0000u);
}

TEST(APIPNGParserChunks, AncillaryChunksAndTrailingDataChangeNothing) {
  ScopedNoZlib scope(false);
  PngSpec plain = rgb2x2();
  PngSpec withExtras = plain;
  uint32_t badCrc = 0x12345678;
  withExtras.extra = {{"gAMA", {0, 0, 0x27, 0x10}}, {"bKGD", {0, 9, 0, 9, 0, 9}}, {"tEXt", {'a', 0, 'b'}}};
  std::vector<uint8_t> a = makePng(plain), b = makePng(withExtras);
  b.insert(b.end(), {1, 2, 3, 4, 5, 6, 7, 8, 9});  // bytes after IEND
  API32bppDIB da, db;
  ASSERT_TRUE(load(a, da));
  ASSERT_TRUE(load(b, db));
  EXPECT_EQ(0, std::memcmp(da.BitsPointer(), db.BitsPointer(), 16));
  // An ancillary chunk is skipped unread, so even a wrong CRC on one does not matter.
  std::vector<uint8_t> c = test::signature();
  addChunk(c, "IHDR", test::ihdr(2, 2, 8, 2));
  addChunk(c, "gAMA", {0, 0, 0x27, 0x10}, &badCrc);
  addChunk(c, "IDAT", platform::ZlibCompress(plain.rows, 6, false));
  addChunk(c, "IEND", {});
  API32bppDIB dc;
  EXPECT_TRUE(load(c, dc));
}

TEST(APIPNGParserChunks, BadHeadersAndPalettesAreRefused) {
  ScopedNoZlib scope(false);
  struct Case {
    const char* what;
    uint32_t w, h;
    uint8_t depth, type, interlace;
  } cases[] = {{"zero width", 0, 2, 8, 2, 0},     {"negative height", 2, 0x80000000u, 8, 2, 0},
               {"depth 3", 2, 2, 3, 2, 0},        {"colour type 5", 2, 2, 8, 5, 0},
               {"interlace 2", 2, 2, 8, 2, 2},    {"RGB of 4 bits", 2, 2, 4, 2, 0},
               {"16-bit palette", 2, 2, 16, 3, 0}};
  for (const auto& c : cases) {
    PngSpec s = rgb2x2();
    std::vector<uint8_t> png = test::signature();
    addChunk(png, "IHDR", test::ihdr(c.w, c.h, c.depth, c.type, c.interlace));
    addChunk(png, "IDAT", platform::ZlibCompress(s.rows, 6, false));
    addChunk(png, "IEND", {});
    API32bppDIB d;
    EXPECT_FALSE(load(png, d)) << c.what;
    EXPECT_EQ(d.Handle(), 0u) << c.what;
  }
  PngSpec pal;
  pal.colorType = 3;
  pal.rows = {0, 0};
  pal.extra = {{"PLTE", {1, 2, 3, 4}}};
  API32bppDIB d;
  EXPECT_FALSE(load(makePng(pal), d));
  // No image data at all.
  std::vector<uint8_t> noData = test::signature();
  addChunk(noData, "IHDR", test::ihdr(1, 1, 8, 0));
  addChunk(noData, "IEND", {});
  EXPECT_FALSE(load(noData, d));
}

TEST(APIPNGParserKeys, ColourKeysAndTheAlphaTheyReport) {
  ScopedNoZlib scope(false);
  // 8-bit RGB with a key no pixel uses: still Alpha Simple.
  PngSpec s = rgb2x2();
  s.extra = {{"tRNS", {0, 1, 0, 2, 0, 3}}};
  API32bppDIB d;
  ASSERT_TRUE(load(makePng(s), d));
  EXPECT_EQ(d.Alpha(), AlphaSimple);
  EXPECT_EQ(word(d, 0, 0), 0xFFFF0000u);
  // The same key on green: the 8-bit path compares the low bytes of the key's samples.
  s.extra = {{"tRNS", {0x7F, 0, 0x7F, 255, 0x7F, 0}}};
  ASSERT_TRUE(load(makePng(s), d));
  EXPECT_EQ(word(d, 1, 0), 0u);
  EXPECT_EQ(word(d, 0, 0), 0xFFFF0000u);

  // 16-bit grey: every sample whose high byte equals the key's high byte is transparent.
  PngSpec g;
  g.width = 3;
  g.depth = 16;
  g.colorType = 0;
  g.rows = {0, 0x12, 0x00, 0x12, 0xFF, 0x13, 0x12};
  g.extra = {{"tRNS", {0x12, 0x34}}};
  ASSERT_TRUE(load(makePng(g), d));
  EXPECT_EQ(word(d, 0, 0), 0u);
  EXPECT_EQ(word(d, 1, 0), 0u);
  EXPECT_EQ(word(d, 2, 0), 0xFF131313u);
  EXPECT_EQ(d.Alpha(), AlphaSimple);

  // 2-bit grey with a key: the grey scale is i x 85.
  PngSpec k;
  k.width = 4;
  k.depth = 2;
  k.colorType = 0;
  k.rows = {0, 0b00011011};
  k.extra = {{"tRNS", {0, 2}}};
  ASSERT_TRUE(load(makePng(k), d));
  EXPECT_EQ(word(d, 0, 0), 0xFF000000u);
  EXPECT_EQ(word(d, 1, 0), 0xFF555555u);
  EXPECT_EQ(word(d, 2, 0), 0u);
  EXPECT_EQ(word(d, 3, 0), 0xFFFFFFFFu);
}

TEST(APIPNGParserKeys, PalettesWithPartialAlphaStillReportSimple) {
  ScopedNoZlib scope(false);
  PngSpec s;
  s.width = 3;
  s.colorType = 3;
  s.rows = {0, 0, 1, 7};  // index 7 lies beyond the palette
  s.extra = {{"PLTE", {200, 100, 50, 10, 20, 30}}, {"tRNS", {128}}};
  API32bppDIB d;
  ASSERT_TRUE(load(makePng(s), d));
  EXPECT_EQ(word(d, 0, 0), 0x80643219u);  // 200*128/255=100, 50, 25
  EXPECT_EQ(word(d, 1, 0), 0xFF0A141Eu);  // past the tRNS table: opaque
  EXPECT_EQ(word(d, 2, 0), 0xFF000000u);  // past the palette: black, and no crash
  EXPECT_EQ(d.Alpha(), AlphaSimple);
  // One-bit palette image without PLTE: black and white.
  PngSpec bw;
  bw.width = 2;
  bw.depth = 1;
  bw.colorType = 3;
  bw.rows = {0, 0b01000000};
  ASSERT_TRUE(load(makePng(bw), d));
  EXPECT_EQ(word(d, 0, 0), 0xFF000000u);
  EXPECT_EQ(word(d, 1, 0), 0xFFFFFFFFu);
  EXPECT_EQ(d.Alpha(), AlphaNone);
}

TEST(APIPNGParserFilters, UnknownFilterDependsOnInterlace) {
  ScopedNoZlib scope(false);
  // Plain image: the row with filter 9 is kept as it stands, the next one still decodes (Up
  // adds the kept row).
  PngSpec s;
  s.width = 1;
  s.height = 2;
  s.colorType = 0;
  s.rows = {9, 40, 2, 5};
  API32bppDIB d;
  ASSERT_TRUE(load(makePng(s), d));
  EXPECT_EQ(word(d, 0, 0), 0xFF282828u);
  EXPECT_EQ(word(d, 0, 1), 0xFF2D2D2Du);
  // Interlaced 1 x 2: pass 1 holds row 0, pass 7 holds row 1; an unknown filter ends it.
  s.interlace = 1;
  s.rows = {0, 40, 2, 5};
  ASSERT_TRUE(load(makePng(s), d));
  EXPECT_EQ(word(d, 0, 1), 0xFF050505u);  // Up on a pass's first row adds nothing
  s.rows = {0, 40, 9, 5};
  EXPECT_FALSE(load(makePng(s), d));
  EXPECT_EQ(d.Handle(), 0u);
}

TEST(APIPNGParserFilters, InterlacedWidthOneSkipsEmptyPasses) {
  ScopedNoZlib scope(false);
  // 1 x 8 grey, interlaced: passes 2, 4 and 6 have no columns, so the data holds rows of
  // passes 1 (y 0), 3 (y 4), 5 (y 2, 6) and 7 (y 1, 3, 5, 7).
  PngSpec s;
  s.width = 1;
  s.height = 8;
  s.colorType = 0;
  s.interlace = 1;
  s.rows = {0, 10, 0, 14, 0, 12, 0, 16, 0, 11, 0, 13, 0, 15, 0, 17};
  for (bool noZlib : {false, true}) {
    ScopedNoZlib z(noZlib);
    API32bppDIB d;
    ASSERT_TRUE(load(makePng(s), d));
    for (int y = 0; y < 8; ++y) EXPECT_EQ(word(d, 0, y) & 0xFF, 10u + y) << y;
  }
}

// Applies PNG filter f to one row of raw samples; prev is the row above (nullptr: none). bpp
// is the filters' distance to the left neighbour.
std::vector<uint8_t> filterRow(int f, const std::vector<uint8_t>& cur, const std::vector<uint8_t>* prev, size_t bpp) {
  std::vector<uint8_t> out(cur.size());
  for (size_t i = 0; i < cur.size(); ++i) {
    int a = i >= bpp ? cur[i - bpp] : 0, b = prev ? (*prev)[i] : 0, c = prev && i >= bpp ? (*prev)[i - bpp] : 0;
    int pred = 0;
    switch (f) {
      case 1: pred = a; break;
      case 2: pred = b; break;
      case 3: pred = (a + b) / 2; break;
      case 4: {
        int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
        pred = (pa <= pb && pa <= pc) ? a : (pb <= pc ? b : c);
        break;
      }
      default: break;
    }
    out[i] = static_cast<uint8_t>(cur[i] - pred);
  }
  return out;
}

TEST(APIPNGParserFilters, EveryFilterOnEveryFormatMatchesTheUnfilteredImage) {
  // The same samples sent once with filter 0 and once with the five filters in turn must
  // decode to the same pixels, on every depth and colour type, plain and interlaced, for
  // widths that give one pixel, less than a vector and whole vectors with a remainder.
  struct Format {
    uint8_t colorType, depth;
  } formats[] = {{0, 1}, {0, 2}, {0, 4}, {0, 8}, {0, 16}, {2, 8}, {2, 16}, {3, 1},
                 {3, 2}, {3, 4}, {3, 8}, {4, 8}, {4, 16}, {6, 8}, {6, 16}};
  std::mt19937 rng(77);
  std::vector<uint8_t> palette(768);
  for (auto& v : palette) v = static_cast<uint8_t>(rng());
  for (const Format& f : formats) {
    const int channels = f.colorType == 6 ? 4 : f.colorType == 4 ? 2 : f.colorType == 2 ? 3 : 1;
    const int bitsPerPixel = channels * f.depth;
    const size_t bpp = std::max(1, bitsPerPixel / 8);
    for (uint32_t width : {1u, 2u, 3u, 5u, 17u, 33u}) {
      for (uint8_t interlace : {0, 1}) {
        const uint32_t height = 9;
        PngSpec plain, filtered;
        plain.width = filtered.width = width;
        plain.height = filtered.height = height;
        plain.depth = filtered.depth = f.depth;
        plain.colorType = filtered.colorType = f.colorType;
        plain.interlace = filtered.interlace = interlace;
        if (f.colorType == 3) plain.extra = filtered.extra = {{"PLTE", palette}};
        int filterType = static_cast<int>(width) % 5;
        // The rows of each pass (one pass for a plain image), each pass starting afresh.
        const int xs[7] = {0, 4, 0, 2, 0, 1, 0}, ys[7] = {0, 0, 4, 0, 2, 0, 1};
        const int dx[7] = {8, 8, 4, 4, 2, 2, 1}, dy[7] = {8, 8, 8, 4, 4, 2, 2};
        for (int p = 0; p < (interlace ? 7 : 1); ++p) {
          uint32_t pw = interlace ? width / dx[p] + (width % dx[p] > static_cast<uint32_t>(xs[p])) : width;
          uint32_t ph = interlace ? height / dy[p] + (height % dy[p] > static_cast<uint32_t>(ys[p])) : height;
          if (pw == 0 || ph == 0) continue;
          size_t rowBytes = (pw * static_cast<size_t>(bitsPerPixel) + 7) / 8;
          std::vector<uint8_t> prev;
          for (uint32_t r = 0; r < ph; ++r) {
            // Samples from a small set make the Paeth distances tie often.
            std::vector<uint8_t> cur(rowBytes);
            bool fewValues = r % 2 == 0;
            for (auto& v : cur) v = static_cast<uint8_t>(fewValues ? rng() % 3 * 120 : rng());
            plain.rows.push_back(0);
            plain.rows.insert(plain.rows.end(), cur.begin(), cur.end());
            filtered.rows.push_back(static_cast<uint8_t>(filterType));
            std::vector<uint8_t> sent = filterRow(filterType, cur, r ? &prev : nullptr, bpp);
            filtered.rows.insert(filtered.rows.end(), sent.begin(), sent.end());
            filterType = (filterType + 1) % 5;
            prev = cur;
          }
        }
        API32bppDIB a, b;
        ASSERT_TRUE(load(makePng(plain), a));
        ASSERT_TRUE(load(makePng(filtered), b));
        EXPECT_EQ(0, std::memcmp(a.BitsPointer(), b.BitsPointer(), size_t{width} * height * 4))
            << "type " << int{f.colorType} << " depth " << int{f.depth} << " width " << width << " interlace "
            << int{interlace};
      }
    }
  }
}

TEST(APIPNGParserPixels, EveryColourAndAlphaPremultipliesByTruncation) {
  // 8-bit RGBA with every alpha against every channel value, 259 wide so that rows end with a
  // remainder after whole groups of pixels: each channel must be c x a / 255 rounded down,
  // alpha 0 an all-zero pixel.
  PngSpec s;
  s.width = 259;
  s.height = 256;
  s.colorType = 6;
  for (uint32_t a = 0; a < 256; ++a) {
    s.rows.push_back(0);
    for (uint32_t x = 0; x < s.width; ++x) {
      uint32_t c = x & 255;
      s.rows.insert(s.rows.end(), {static_cast<uint8_t>(c), static_cast<uint8_t>(255 - c),
                                   static_cast<uint8_t>(c * 7), static_cast<uint8_t>(a)});
    }
  }
  API32bppDIB d;
  ASSERT_TRUE(load(makePng(s), d));
  int wrong = 0;
  for (uint32_t a = 0; a < 256; ++a) {
    for (uint32_t x = 0; x < s.width; ++x) {
      uint32_t c = x & 255, r = c, g = 255 - c, b = (c * 7) & 255;
      uint32_t want = a == 0 ? 0 : (b * a / 255) | (g * a / 255) << 8 | (r * a / 255) << 16 | a << 24;
      uint32_t got = word(d, static_cast<int>(x), static_cast<int>(a));
      if (got != want && ++wrong < 5) ADD_FAILURE() << "x " << x << " alpha " << a << std::hex << ": " << got << " not " << want;
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(d.Alpha(), AlphaComplex);
}

TEST(APIPNGParserData, SplitImageDataAndDataThatEndsEarly) {
  // One IDAT is read where it lies, several are gathered: any split of the same zlib stream,
  // down to one byte per chunk, decodes to the same pixels.
  PngSpec s;
  s.width = 23;
  s.height = 11;
  s.colorType = 6;
  std::mt19937 rng(5);
  for (uint32_t y = 0; y < s.height; ++y) {
    s.rows.push_back(static_cast<uint8_t>(y % 5));
    for (uint32_t i = 0; i < s.width * 4; ++i) s.rows.push_back(static_cast<uint8_t>(rng() % 16));
  }
  const std::vector<uint8_t> z = platform::ZlibCompress(s.rows, 6, false);
  for (bool noZlib : {false, true}) {
    ScopedNoZlib scope(noZlib);
    API32bppDIB whole;
    ASSERT_TRUE(load(makePng(s), whole));
    for (size_t piece : {size_t{1}, size_t{7}, z.size() - 1}) {
      std::vector<uint8_t> png = test::signature();
      addChunk(png, "IHDR", test::ihdr(s.width, s.height, 8, 6));
      for (size_t at = 0; at < z.size(); at += piece) {
        addChunk(png, "IDAT", std::vector<uint8_t>(z.begin() + static_cast<std::ptrdiff_t>(at),
                                                   z.begin() + static_cast<std::ptrdiff_t>(std::min(z.size(), at + piece))));
        if (at == 0) addChunk(png, "tEXt", {'k', 0, 'v'});  // chunks between IDATs are passed over
      }
      addChunk(png, "IEND", {});
      API32bppDIB d;
      ASSERT_TRUE(load(png, d)) << piece;
      EXPECT_EQ(0, std::memcmp(d.BitsPointer(), whole.BitsPointer(), size_t{s.width} * s.height * 4)) << piece;
    }
  }
  // A stream that ends after three of five rows: the rest read as zeros, whatever memory the
  // reader was handed. A large picture decoded first leaves the heap dirty.
  PngSpec rgb;
  rgb.width = 4;
  rgb.height = 5;
  rgb.rows.assign(3 * 13, 0);
  for (size_t i = 0; i < rgb.rows.size(); ++i)
    if (i % 13) rgb.rows[i] = 200;
  for (bool noZlib : {false, true}) {
    ScopedNoZlib scope(noZlib);
    API32bppDIB big, d;
    ASSERT_TRUE(load(makePng(s), big));
    ASSERT_TRUE(load(makePng(rgb), d));
    for (int y = 0; y < 5; ++y)
      for (int x = 0; x < 4; ++x) EXPECT_EQ(word(d, x, y), y < 3 ? 0xFFC8C8C8u : 0xFF000000u) << x << " " << y;
  }
}

TEST(APIPNGParserData, LargePictureDecodesEveryRow) {
  // Above two megabytes of rows the inflated data lives in its own mapping; every pixel of a
  // 1024 x 800 RGB picture must still come out, with zlib and without.
  PngSpec s;
  s.width = 1024;
  s.height = 800;
  s.level = 1;
  auto sample = [](uint32_t x, uint32_t y, int ch) { return static_cast<uint8_t>((x * (ch + 1) + y * 3 + (x * y >> 7)) & 255); };
  for (uint32_t y = 0; y < s.height; ++y) {
    s.rows.push_back(static_cast<uint8_t>(y % 2 ? 0 : 1));
    std::vector<uint8_t> cur;
    for (uint32_t x = 0; x < s.width; ++x)
      for (int ch = 0; ch < 3; ++ch) cur.push_back(sample(x, y, ch));
    std::vector<uint8_t> sent = filterRow(y % 2 ? 0 : 1, cur, nullptr, 3);
    s.rows.insert(s.rows.end(), sent.begin(), sent.end());
  }
  const std::vector<uint8_t> png = makePng(s);
  for (bool noZlib : {false, true}) {
    ScopedNoZlib scope(noZlib);
    API32bppDIB d;
    ASSERT_TRUE(load(png, d));
    int wrong = 0;
    for (uint32_t y = 0; y < s.height; ++y)
      for (uint32_t x = 0; x < s.width; ++x) {
        uint32_t want = 0xFF000000u | uint32_t{sample(x, y, 0)} << 16 | uint32_t{sample(x, y, 1)} << 8 | sample(x, y, 2);
        if (word(d, static_cast<int>(x), static_cast<int>(y)) != want) ++wrong;
      }
    EXPECT_EQ(wrong, 0) << noZlib;
  }
}

// A zlib stream whose Adler-32 is wrong: zlib refuses it, the own decoder never looks.
std::vector<uint8_t> badAdler(std::vector<uint8_t> z) {
  z.back() ^= 1;
  return z;
}

TEST(APIPNGParserInflate, Deflate64LengthsOnlyAfterZlibRefused) {
  // 300 grey pixels of one value: the compressor sends a match of length 258.
  std::vector<uint8_t> rows(301, 77);
  rows[0] = 0;
  std::vector<uint8_t> z = platform::ZlibCompress(rows, 9, false);
  std::vector<uint8_t> png = test::signature();
  addChunk(png, "IHDR", test::ihdr(300, 1, 8, 0));
  addChunk(png, "IDAT", badAdler(z));
  addChunk(png, "IEND", {});
  {
    ScopedNoZlib scope(true);
    API32bppDIB d;
    ASSERT_TRUE(load(png, d));
    EXPECT_EQ(word(d, 299, 0), 0xFF4D4D4Du);
  }
  {
    // zlib fails on the checksum, then the own decoder reads 16 more bits after length 258
    // and runs past the expected size.
    ScopedNoZlib scope(false);
    API32bppDIB d;
    EXPECT_FALSE(load(png, d));
  }
  // Without a length-258 match the second reading gives the same pixels.
  std::vector<uint8_t> stored = test::signature();
  addChunk(stored, "IHDR", test::ihdr(300, 1, 8, 0));
  addChunk(stored, "IDAT", badAdler(platform::ZlibCompress(rows, 0, false)));
  addChunk(stored, "IEND", {});
  ScopedNoZlib scope(false);
  API32bppDIB d;
  ASSERT_TRUE(load(stored, d));
  EXPECT_EQ(word(d, 150, 0), 0xFF4D4D4Du);
}

TEST(APIPNGParserDamage, EveryTruncationAndCorruptionFailsCleanly) {
  PngSpec s;
  s.width = 7;
  s.height = 5;
  s.colorType = 6;
  s.interlace = 1;
  std::mt19937 rng(1234);
  // Build interlaced rows: passes of a 7 x 5 image, filter bytes random from 0..4.
  const int xs[7] = {0, 4, 0, 2, 0, 1, 0}, ys[7] = {0, 0, 4, 0, 2, 0, 1};
  const int dx[7] = {8, 8, 4, 4, 2, 2, 1}, dy[7] = {8, 8, 8, 4, 4, 2, 2};
  for (int p = 0; p < 7; ++p) {
    int pw = 7 / dx[p] + (7 % dx[p] > xs[p]), ph = 5 / dy[p] + (5 % dy[p] > ys[p]);
    if (!pw || !ph) continue;
    for (int r = 0; r < ph; ++r) {
      s.rows.push_back(static_cast<uint8_t>(rng() % 5));
      for (int i = 0; i < pw * 4; ++i) s.rows.push_back(static_cast<uint8_t>(rng()));
    }
  }
  std::vector<uint8_t> png = makePng(s);
  for (bool noZlib : {false, true}) {
    ScopedNoZlib scope(noZlib);
    API32bppDIB whole;
    ASSERT_TRUE(load(png, whole));
    const size_t dataEnd = png.size() - 12;  // where IEND starts
    for (size_t n = 0; n < dataEnd; ++n) {
      std::vector<uint8_t> cut(png.begin(), png.begin() + static_cast<std::ptrdiff_t>(n));
      API32bppDIB d;
      // A stream's running total starts one byte low, so without zlib (no CRC to read) a
      // stream missing only the last CRC byte still loads.
      bool expected = noZlib && n == dataEnd - 1;
      EXPECT_EQ(load(cut, d), expected) << n;
      if (!expected) EXPECT_EQ(d.Handle(), 0u);
    }
    // Flipped bytes anywhere: whatever the result, no crash, and a failure leaves nothing.
    for (int i = 0; i < 2000; ++i) {
      std::vector<uint8_t> bad = png;
      bad[8 + rng() % (bad.size() - 8)] ^= static_cast<uint8_t>(1 + rng() % 255);
      API32bppDIB d;
      if (!load(bad, d)) EXPECT_EQ(d.Handle(), 0u);
    }
  }
}

}  // namespace
}  // namespace mx::image
