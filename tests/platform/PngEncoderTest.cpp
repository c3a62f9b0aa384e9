#include "platform/PngEncoder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "platform/Deflate.h"

#if MX_HAVE_LIBPNG
#include <png.h>
#include <zlib.h>
#endif

namespace mx::platform {
namespace {

std::span<const uint8_t> bytesOf(const char* s) { return {reinterpret_cast<const uint8_t*>(s), std::strlen(s)}; }

TEST(Checksums, KnownValues) {
  EXPECT_EQ(Crc32(bytesOf("123456789")), 0xCBF43926u);
  EXPECT_EQ(Crc32(bytesOf("")), 0u);
  // Continuing a CRC gives the same as one pass.
  EXPECT_EQ(Crc32(bytesOf("6789"), Crc32(bytesOf("12345"))), 0xCBF43926u);
  EXPECT_EQ(Adler32(bytesOf("Wikipedia")), 0x11E60398u);
  EXPECT_EQ(Adler32(bytesOf("")), 1u);
  // Long runs of 0xFF push the sums past the point where the modulo must be taken.
  std::vector<uint8_t> ff(100000, 0xFF);
  uint32_t a = 1, b = 0;
  for (uint8_t v : ff) {
    a = (a + v) % 65521;
    b = (b + a) % 65521;
  }
  EXPECT_EQ(Adler32(ff), (b << 16) | a);
}

// Test data with the kinds of redundancy pictures have: runs, repeats near and far, noise.
std::vector<uint8_t> mixedData(size_t n, uint32_t seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> d;
  d.reserve(n);
  while (d.size() < n) {
    switch (rng() % 4) {
      case 0: d.insert(d.end(), rng() % 300 + 1, static_cast<uint8_t>(rng())); break;
      case 1: for (int i = rng() % 200; i >= 0; --i) d.push_back(static_cast<uint8_t>(rng())); break;
      case 2:
        if (!d.empty()) {
          size_t dist = rng() % std::min<size_t>(d.size(), 40000) + 1, len = rng() % 400 + 3;
          for (size_t i = 0; i < len; ++i) d.push_back(d[d.size() - dist]);
        }
        break;
      default: for (int i = rng() % 100; i >= 0; --i) d.push_back(static_cast<uint8_t>(rng() % 4)); break;
    }
  }
  d.resize(n);
  return d;
}

#if MX_HAVE_LIBPNG

std::vector<uint8_t> inflateAll(const std::vector<uint8_t>& z, size_t expected) {
  std::vector<uint8_t> out(expected + 1);
  uLongf len = out.size();
  if (uncompress(out.data(), &len, z.data(), z.size()) != Z_OK) return {0xDE, 0xAD};
  out.resize(len);
  return out;
}

TEST(Deflate, OwnCompressorRoundTripsThroughZlib) {
  const size_t sizes[] = {0, 1, 2, 3, 258, 259, 4096, 65535, 65536, 70000, 300000};
  for (size_t n : sizes) {
    for (int level : {0, 1, 6, 9}) {
      std::vector<uint8_t> data = mixedData(n, static_cast<uint32_t>(n * 10 + level));
      std::vector<uint8_t> z = ZlibCompress(data, level, /*allowSystemZlib=*/false);
      ASSERT_EQ(inflateAll(z, data.size()), data) << "size " << n << " level " << level;
      if (level > 0 && n >= 4096) EXPECT_LT(z.size(), data.size()) << "size " << n;
    }
  }
  // Incompressible input falls back to stored blocks and grows only by their headers.
  std::mt19937 rng(5);
  std::vector<uint8_t> noise(200000);
  for (auto& v : noise) v = static_cast<uint8_t>(rng());
  std::vector<uint8_t> z = ZlibCompress(noise, 9, false);
  EXPECT_EQ(inflateAll(z, noise.size()), noise);
  EXPECT_LE(z.size(), noise.size() + noise.size() / 1000 + 16);
  // Long runs use every length and the farthest distances.
  std::vector<uint8_t> runs(100000, 7);
  for (size_t i = 0; i < runs.size(); i += 32768) runs[i] = 1;
  EXPECT_EQ(inflateAll(ZlibCompress(runs, 9, false), runs.size()), runs);
}

struct Decoded {
  int width = 0, height = 0;
  std::vector<uint8_t> pixels;
};

Decoded decodeWithLibpng(const std::vector<uint8_t>& file, bool alpha) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  Decoded d;
  if (!png_image_begin_read_from_memory(&img, file.data(), file.size())) return d;
  img.format = alpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
  d.pixels.resize(PNG_IMAGE_SIZE(img));
  if (!png_image_finish_read(&img, nullptr, d.pixels.data(), 0, nullptr)) return Decoded{};
  d.width = static_cast<int>(img.width);
  d.height = static_cast<int>(img.height);
  return d;
}

struct TestSurface {
  std::vector<uint32_t> mem;
  Surface s;
  TestSurface(int w, int h, bool bottomUp) : mem(static_cast<size_t>(w) * h) {
    s.width = w;
    s.height = h;
    s.stride = w * 4;
    s.bits = reinterpret_cast<uint8_t*>(mem.data());
    s.bottomUp = bottomUp;
  }
};

TEST(PngEncoder, RandomPremultipliedPicturesDecodeToStraightColour) {
  struct Size {
    int w, h;
  };
  const Size sizes[] = {{1, 1}, {1, 7}, {13, 1}, {31, 17}, {4000, 3}, {64, 64}};
  int iter = 0;
  for (Size sz : sizes) {
    for (bool systemZlib : {true, false}) {
      std::mt19937 rng(static_cast<uint32_t>(++iter));
      TestSurface t(sz.w, sz.h, iter % 2 == 0);
      for (int y = 0; y < sz.h; ++y) {
        uint32_t* row = t.s.row(y);
        for (int x = 0; x < sz.w; ++x) {
          // Smooth areas and random premultiplied pixels, with alpha 0 and 255 often.
          uint32_t a = rng() % 3 == 0 ? 255 : rng() % 3 == 0 ? 0 : rng() % 256;
          uint32_t r = a ? rng() % (a + 1) : 0, g = a ? (x * 7 % (a + 1)) : 0, b = a ? (y % (a + 1)) : 0;
          row[x] = (a << 24) | (r << 16) | (g << 8) | b;
        }
      }
      PngEncodeOptions o;
      o.allowSystemZlib = systemZlib;
      Decoded d = decodeWithLibpng(EncodePng(t.s, o), true);
      ASSERT_EQ(d.width, sz.w);
      ASSERT_EQ(d.height, sz.h);
      for (int y = 0; y < sz.h; ++y)
        for (int x = 0; x < sz.w; ++x) {
          uint32_t px = t.s.row(y)[x], a = px >> 24;
          auto straight = [&](uint32_t c) { return a == 0 || a == 255 ? c : c * 255 / a; };
          const uint8_t* p = &d.pixels[(static_cast<size_t>(y) * sz.w + x) * 4];
          ASSERT_EQ(p[0], straight((px >> 16) & 0xFF)) << x << "," << y;
          ASSERT_EQ(p[1], straight((px >> 8) & 0xFF)) << x << "," << y;
          ASSERT_EQ(p[2], straight(px & 0xFF)) << x << "," << y;
          ASSERT_EQ(p[3], a) << x << "," << y;
        }
    }
  }
}

TEST(PngEncoder, StraightAndOpaqueModesWriteBytesAsTheyAre) {
  TestSurface t(3, 2, true);
  const uint32_t px[6] = {0x80FF0000, 0x00123456, 0xFF00FF00, 0x7F7F7F7F, 0x01020304, 0xFFFFFFFF};
  for (int i = 0; i < 6; ++i) t.s.row(i / 3)[i % 3] = px[i];

  PngEncodeOptions straight;
  straight.premultiplied = false;
  Decoded d = decodeWithLibpng(EncodePng(t.s, straight), true);
  ASSERT_EQ(d.pixels.size(), 24u);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(d.pixels[static_cast<size_t>(i) * 4 + 0], (px[i] >> 16) & 0xFF);
    EXPECT_EQ(d.pixels[static_cast<size_t>(i) * 4 + 3], px[i] >> 24);
  }

  PngEncodeOptions rgb;
  rgb.dropAlpha = true;
  std::vector<uint8_t> file = EncodePng(t.s, rgb);
  EXPECT_EQ(file[25], 2);  // colour type in IHDR
  d = decodeWithLibpng(file, false);
  ASSERT_EQ(d.pixels.size(), 18u);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(d.pixels[static_cast<size_t>(i) * 3 + 0], (px[i] >> 16) & 0xFF);
    EXPECT_EQ(d.pixels[static_cast<size_t>(i) * 3 + 1], (px[i] >> 8) & 0xFF);
    EXPECT_EQ(d.pixels[static_cast<size_t>(i) * 3 + 2], px[i] & 0xFF);
  }
}

#endif  // MX_HAVE_LIBPNG

TEST(PngEncoder, ChunksAreFramedAndChecked) {
  uint32_t one = 0xFF336699;
  Surface s{1, 1, reinterpret_cast<uint8_t*>(&one), 4, false};
  PngEncodeOptions o;
  PngChunk text;
  std::memcpy(text.type, "tEXt", 4);
  text.data = {'a', 0, 'b'};
  o.extraChunks.push_back(text);
  std::vector<uint8_t> f = EncodePng(s, o);
  ASSERT_GT(f.size(), 8u);
  EXPECT_EQ(std::memcmp(f.data(), "\x89PNG\r\n\x1a\n", 8), 0);
  // Walk the chunks: every CRC must match, IHDR first, tEXt before IDAT, IEND last.
  std::vector<std::string> order;
  size_t pos = 8;
  while (pos + 12 <= f.size()) {
    uint32_t len = (uint32_t{f[pos]} << 24) | (f[pos + 1] << 16) | (f[pos + 2] << 8) | f[pos + 3];
    ASSERT_LE(pos + 12 + len, f.size());
    uint32_t crc = (uint32_t{f[pos + 8 + len]} << 24) | (f[pos + 9 + len] << 16) | (f[pos + 10 + len] << 8) |
                   f[pos + 11 + len];
    EXPECT_EQ(crc, Crc32(std::span<const uint8_t>(f.data() + pos + 4, len + 4)));
    order.emplace_back(reinterpret_cast<const char*>(&f[pos + 4]), 4);
    pos += 12 + len;
  }
  EXPECT_EQ(pos, f.size());
  EXPECT_EQ(order, (std::vector<std::string>{"IHDR", "tEXt", "IDAT", "IEND"}));
  EXPECT_TRUE(EncodePng(Surface{}).empty());
  EXPECT_FALSE(WritePngFile(s, "/nonexistent-dir/x.png"));
}

}  // namespace
}  // namespace mx::platform
