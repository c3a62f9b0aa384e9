// The GIF writer: write a surface, then read it back with giflib and with the reader.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <set>

#include <unistd.h>

#include "GifTestSupport.h"
#include "image/APIGIFParser.h"
#include "image/GifPalette.h"

namespace mx::image {
namespace {

using test::DecodedGif;
using test::surfacePixel;

struct Saved {
  bool ok = false;
  bool adaptive = false;  // UseAdaptivePalette as it came back
  std::vector<uint8_t> bytes;
  DecodedGif decoded;
};

Saved save(const API32bppDIB& dib, bool adaptive = true, int32_t tolerance = 128) {
  Saved s;
  s.adaptive = adaptive;
  s.ok = APIGIFParser().SaveAsGIF(dib, host::String(), s.bytes, s.adaptive, tolerance);
  if (s.ok) s.decoded = test::decodeGif(s.bytes);
  return s;
}

// 0xAARRGGBB of a decoded pixel, 0 where it is transparent.
uint32_t decodedPixel(const DecodedGif& d, int x, int y) {
  const int index = d.indices[static_cast<size_t>(y) * d.width + x];
  if (index == d.transparent) return 0;
  const test::GifColor c = d.colors[static_cast<size_t>(index)];
  return 0xFF000000u | (uint32_t{c.r} << 16) | (uint32_t{c.g} << 8) | c.b;
}

std::vector<uint32_t> distinctColours(int count, uint32_t seed) {
  std::set<uint32_t> set;
  std::mt19937 rng(seed);
  while (static_cast<int>(set.size()) < count) set.insert(0xFF000000u | (rng() & 0xFFFFFF));
  return {set.begin(), set.end()};
}

TEST(GifWriter, ExactColoursSurviveAtEverySize) {
  struct Case {
    int w, h, colours;
  };
  // 1x1, odd widths, one colour, and the full 256 without transparency.
  const Case cases[] = {{1, 1, 1}, {3, 5, 2}, {7, 3, 5}, {17, 9, 17}, {33, 31, 129}, {64, 64, 256}};
  for (const Case& c : cases) {
    const auto palette = distinctColours(c.colours, uint32_t(c.w * 31 + c.h));
    std::vector<uint32_t> argb(size_t(c.w) * c.h);
    for (size_t i = 0; i < argb.size(); ++i) argb[i] = palette[i % palette.size()];
    API32bppDIB dib;
    ASSERT_TRUE(test::fillSurface(dib, c.w, c.h, argb));
    Saved s = save(dib);
    ASSERT_TRUE(s.ok && s.decoded.ok) << c.w << "x" << c.h;
    EXPECT_TRUE(s.adaptive) << "the flag goes in and comes back unchanged for an exact palette";
    EXPECT_EQ(s.decoded.width, c.w);
    EXPECT_EQ(s.decoded.height, c.h);
    EXPECT_EQ(s.decoded.transparent, -1);
    EXPECT_EQ(s.bytes[10], 0x80 | (GifCodeSize(c.colours) - 1));
    API32bppDIB back;
    ASSERT_TRUE(APIGIFParser().LoadStream(s.bytes, back));
    EXPECT_EQ(back.Alpha(), AlphaNone);
    for (int y = 0; y < c.h; ++y)
      for (int x = 0; x < c.w; ++x) {
        const uint32_t want = argb[size_t(y) * c.w + x];
        ASSERT_EQ(decodedPixel(s.decoded, x, y), want) << c.w << "x" << c.h << " at " << x << "," << y;
        ASSERT_EQ(surfacePixel(back, x, y), want) << c.w << "x" << c.h << " at " << x << "," << y;
      }
  }
}

TEST(GifWriter, FileLayoutWithTransparency) {
  // Two colours and transparency: three entries, code size 2, a table of four.
  API32bppDIB dib;
  ASSERT_TRUE(test::fillSurface(dib, 3, 1, {0xFF0000FFu, 0x00000000u, 0xFFFF0000u}));
  Saved s = save(dib);
  ASSERT_TRUE(s.ok);
  const std::vector<uint8_t> head = {'G', 'I', 'F', '8', '9', 'a', 3, 0, 1, 0, 0x81, 0, 0,
                                     0xFF, 0, 0,    // red sorts first (red in the low byte)
                                     0, 0, 0xFF,    // blue
                                     0xFF, 0xFF, 0xFF,  // the transparency entry
                                     0, 0, 0,       // padding
                                     0x21, 0xF9, 4, 1, 0, 0, 2, 0,
                                     0x2C, 0, 0, 0, 0, 3, 0, 1, 0, 0, 2};
  ASSERT_GT(s.bytes.size(), head.size() + 2);
  EXPECT_EQ(std::vector<uint8_t>(s.bytes.begin(), s.bytes.begin() + head.size()), head);
  EXPECT_EQ(s.bytes.back(), 0x3B);
  EXPECT_EQ(s.bytes[s.bytes.size() - 2], 0);
  ASSERT_TRUE(s.decoded.ok);
  EXPECT_EQ(s.decoded.transparent, 2);
  EXPECT_EQ(s.decoded.indices, (std::vector<uint8_t>{1, 2, 0}));
}

TEST(GifWriter, AlphaPicturesWithFewColoursKeepThemExactly) {
  // 255 colours plus transparency is the most an exact palette holds.
  const auto palette = distinctColours(255, 99);
  std::vector<uint32_t> argb;
  for (int i = 0; i < 40 * 20; ++i) argb.push_back(i % 9 == 4 ? 0u : palette[size_t(i) % 255]);
  API32bppDIB dib;
  ASSERT_TRUE(test::fillSurface(dib, 40, 20, argb));
  Saved s = save(dib, false);
  ASSERT_TRUE(s.ok && s.decoded.ok);
  EXPECT_FALSE(s.adaptive);
  EXPECT_EQ(s.decoded.transparent, 255);
  API32bppDIB back;
  ASSERT_TRUE(APIGIFParser().LoadStream(s.bytes, back));
  EXPECT_EQ(back.Alpha(), AlphaSimple);
  for (int i = 0; i < 40 * 20; ++i) ASSERT_EQ(surfacePixel(back, i % 40, i / 40), argb[size_t(i)]) << i;
}

TEST(GifWriter, PartialAlphaFollowsTheTolerance) {
  // Straight (200, 100, 50) at alpha 100 is stored premultiplied as (78, 39, 19); undone it
  // becomes (198, 99, 48).
  API32bppDIB dib;
  ASSERT_TRUE(test::fillSurface(dib, 4, 1, {0x64C86432u, 0x63C86432u, 0xFE102030u, 0xFF102030u}));
  Saved at100 = save(dib, true, 100);
  ASSERT_TRUE(at100.ok && at100.decoded.ok);
  EXPECT_EQ(decodedPixel(at100.decoded, 0, 0), 0xFFC66330u);
  EXPECT_EQ(decodedPixel(at100.decoded, 1, 0), 0u);  // alpha 99: below the tolerance
  EXPECT_EQ(decodedPixel(at100.decoded, 2, 0), 0xFF0F1F2Fu);  // 254: un-premultiplied, rounding down twice
  EXPECT_EQ(decodedPixel(at100.decoded, 3, 0), 0xFF102030u);

  Saved at255 = save(dib, true, 255);
  ASSERT_TRUE(at255.ok && at255.decoded.ok);
  EXPECT_EQ(decodedPixel(at255.decoded, 0, 0), 0u);
  EXPECT_EQ(decodedPixel(at255.decoded, 2, 0), 0u);  // 254 is still partial
  EXPECT_EQ(decodedPixel(at255.decoded, 3, 0), 0xFF102030u);

  Saved at0 = save(dib, true, 0);
  ASSERT_TRUE(at0.ok && at0.decoded.ok);
  EXPECT_EQ(at0.decoded.transparent, -1) << "every pixel is solid, so no transparency entry";
}

TEST(GifWriter, TooManyColoursWithoutAdaptiveGetTheWebPalette) {
  for (bool withTransparency : {false, true}) {
    const auto palette = distinctColours(300, 5);
    std::vector<uint32_t> argb;
    for (int i = 0; i < 30 * 20; ++i)
      argb.push_back(withTransparency && i == 7 ? 0u : palette[size_t(i) % palette.size()]);
    API32bppDIB dib;
    ASSERT_TRUE(test::fillSurface(dib, 30, 20, argb));
    Saved s = save(dib, false);
    ASSERT_TRUE(s.ok && s.decoded.ok);
    EXPECT_TRUE(s.adaptive) << "comes back True when the colours were reduced";
    EXPECT_EQ(s.decoded.transparent, withTransparency ? 247 : -1);
    const auto web = WebSafePalette();
    ASSERT_EQ(web.size(), 247u);
    EXPECT_EQ(web[216], 0x080808);  // the greys follow the 6 x 6 x 6 cube
    ASSERT_EQ(s.decoded.colors.size(), 256u);
    for (size_t i = 0; i < web.size(); ++i) {
      EXPECT_EQ(s.decoded.colors[i].r, web[i] & 0xFF);
      EXPECT_EQ(s.decoded.colors[i].g, (web[i] >> 8) & 0xFF);
      EXPECT_EQ(s.decoded.colors[i].b, (web[i] >> 16) & 0xFF);
    }
    // Every solid pixel took its nearest web colour; none took the transparency entry.
    GifNearestColor nearest(web, web.size());
    for (int i = 0; i < 30 * 20; ++i) {
      const uint32_t c = argb[size_t(i)];
      if (!c) continue;
      const int32_t asLong = int32_t(((c >> 16) & 0xFF) | (c & 0xFF00) | ((c & 0xFF) << 16));
      ASSERT_EQ(s.decoded.indices[size_t(i)], nearest.Index(asLong)) << i;
    }
  }
}

TEST(GifWriter, FullPaletteWithTransparencyIsReducedNotOverfilled) {
  // 256 solid colours and one transparent pixel would need 257 entries: the colours are reduced
  // to 255 and the last entry stays for transparency.
  const auto palette = distinctColours(256, 41);
  std::vector<uint32_t> argb(palette.begin(), palette.end());
  argb.push_back(0);
  argb.resize(257 + 3, palette[0]);
  API32bppDIB dib;
  ASSERT_TRUE(test::fillSurface(dib, 20, 13, argb));
  Saved s = save(dib, true);
  ASSERT_TRUE(s.ok && s.decoded.ok);
  EXPECT_TRUE(s.adaptive);
  // The octree may end below its limit; the transparency entry is whichever comes last.
  ASSERT_GE(s.decoded.transparent, 128);
  ASSERT_LE(s.decoded.transparent, 255);
  for (int i = 0; i < 20 * 13; ++i) EXPECT_EQ(s.decoded.indices[size_t(i)] == s.decoded.transparent, i == 256) << i;
}

TEST(GifWriter, AdaptivePaletteStaysCloseOnANoisyPictureAcrossCodeResets) {
  // 300 x 300 of noise over 5000 colours: the octree reduces to 256 entries, and the image data
  // runs through many clear codes.
  const auto palette = distinctColours(5000, 17);
  std::mt19937 rng(23);
  std::vector<uint32_t> argb(300 * 300);
  for (auto& c : argb) c = palette[rng() % palette.size()];
  API32bppDIB dib;
  ASSERT_TRUE(test::fillSurface(dib, 300, 300, argb));
  Saved s = save(dib, true);
  ASSERT_TRUE(s.ok && s.decoded.ok);
  EXPECT_TRUE(s.adaptive);
  EXPECT_EQ(s.decoded.colors.size(), 256u);
  API32bppDIB back;
  ASSERT_TRUE(APIGIFParser().LoadStream(s.bytes, back));
  // Leaves six levels deep are at most four wide, so even after merging the error per channel
  // stays well inside the coarsest web step.
  int64_t total = 0;
  for (int i = 0; i < 300 * 300; ++i) {
    const uint32_t a = argb[size_t(i)], b = surfacePixel(back, i % 300, i / 300);
    for (int shift : {0, 8, 16}) total += std::abs(int((a >> shift) & 0xFF) - int((b >> shift) & 0xFF));
  }
  EXPECT_LT(total / (300 * 300 * 3), 20);
}

TEST(GifWriter, FilesAndRefusals) {
  API32bppDIB dib;
  const auto colours = distinctColours(16, 3);
  std::vector<uint32_t> argb(40 * 30);
  for (size_t i = 0; i < argb.size(); ++i) argb[i] = colours[(i * 7 + i / 40) % 16];
  argb.back() = 0xFF123456u;
  ASSERT_TRUE(test::fillSurface(dib, 40, 30, argb));
  const auto dir = std::filesystem::temp_directory_path() / ("mx_gif_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const auto path = (dir / "out.gif").string();
  ASSERT_TRUE(SaveToFile_GIF(dib, host::FromUtf8(path)));
  std::vector<uint8_t> memory;
  ASSERT_TRUE(SaveToStream_GIF(dib, memory));
  EXPECT_EQ(test::readFile(path), memory);
  API32bppDIB back;
  ASSERT_TRUE(back.LoadPicture_File(host::FromUtf8(path)));
  EXPECT_EQ(back.ImageType(), imgGIF);
  EXPECT_EQ(surfacePixel(back, 39, 29), 0xFF123456u);

  // A path that cannot be opened fails and leaves the caller's bytes alone.
  std::vector<uint8_t> untouched = {1, 2, 3};
  bool adaptive = false;
  EXPECT_FALSE(APIGIFParser().SaveAsGIF(dib, host::FromUtf8((dir / "missing" / "x.gif").string()), untouched,
                                        adaptive, 128));
  EXPECT_EQ(untouched, (std::vector<uint8_t>{1, 2, 3}));
  // An empty surface has nothing to write, and leaves no file behind.
  API32bppDIB empty;
  const auto emptyPath = (dir / "empty.gif").string();
  EXPECT_FALSE(SaveToFile_GIF(empty, host::FromUtf8(emptyPath)));
  EXPECT_FALSE(std::filesystem::exists(emptyPath));
  EXPECT_FALSE(SaveToStream_GIF(empty, untouched));
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace mx::image
