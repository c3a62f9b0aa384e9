// Every PngSuite file through the reader, compared with what libpng decodes after the reader's
// own reductions: colours premultiplied as c x a / 255 truncated, 16-bit samples cut to their
// high byte, and the colour-key rules (low bytes of the key at 8 bits, high bytes at 16).
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "PngTestSupport.h"
#include "image/API32bppDIB.h"

namespace mx::image {
namespace {

namespace fs = std::filesystem;

struct Expected {
  bool ok = false;
  int width = 0, height = 0;
  std::vector<uint32_t> pixels;  // top-down, 0xAARRGGBB premultiplied
  ENUM_ALPHA_TYPE alpha = AlphaNone;
};

uint32_t pack(uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
  if (a == 0) return 0;
  if (a != 255) r = r * a / 255, g = g * a / 255, b = b * a / 255;
  return b | (g << 8) | (r << 16) | (a << 24);
}

// libpng does the inflating, unfiltering and de-interlacing; the samples are turned into
// pixels here, one at a time, by the rules the reader must follow.
Expected decodeWithLibpng(const std::vector<uint8_t>& file) {
  Expected e;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  struct Reader {
    const std::vector<uint8_t>* data;
    size_t pos;
  } reader{&file, 0};
  std::vector<std::vector<uint8_t>> rows;
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_read_struct(&png, &info, nullptr);
    return Expected{};
  }
  png_set_read_fn(png, &reader, [](png_structp p, png_bytep out, png_size_t n) {
    auto* r = static_cast<Reader*>(png_get_io_ptr(p));
    if (r->pos + n > r->data->size()) png_error(p, "short");
    std::memcpy(out, r->data->data() + r->pos, n);
    r->pos += n;
  });
  png_read_info(png, info);
  png_uint_32 w = png_get_image_width(png, info), h = png_get_image_height(png, info);
  int depth = png_get_bit_depth(png, info), ct = png_get_color_type(png, info);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  rows.assign(h, std::vector<uint8_t>(png_get_rowbytes(png, info)));
  std::vector<png_bytep> ptrs(h);
  for (png_uint_32 y = 0; y < h; ++y) ptrs[y] = rows[y].data();
  png_read_image(png, ptrs.data());

  png_colorp palette = nullptr;
  int nPalette = 0;
  png_get_PLTE(png, info, &palette, &nPalette);
  png_bytep transAlpha = nullptr;
  int nTrans = 0;
  png_color_16p transColor = nullptr;
  bool hasTrns = png_get_tRNS(png, info, &transAlpha, &nTrans, &transColor) != 0;

  e.ok = true;
  e.width = static_cast<int>(w);
  e.height = static_cast<int>(h);
  e.pixels.resize(static_cast<size_t>(w) * h);
  for (png_uint_32 y = 0; y < h; ++y) {
    const uint8_t* s = rows[y].data();
    for (png_uint_32 x = 0; x < w; ++x) {
      uint32_t px = 0;
      switch (ct) {
        case 0: {
          if (depth == 16) {
            uint32_t hi = s[x * 2];
            bool key = hasTrns && hi == ((transColor->gray >> 8) & 0xFF);
            px = key ? 0 : pack(hi, hi, hi, 255);
          } else {
            int perByte = 8 / depth, mask = (1 << depth) - 1;
            uint32_t v = (s[x / perByte] >> (8 - depth * (x % perByte + 1))) & mask;
            uint32_t keyValue = (transColor ? transColor->gray & 0xFF : 0) & mask;
            uint32_t grey = v * (255 / mask);
            px = (hasTrns && v == keyValue) ? 0 : pack(grey, grey, grey, 255);
          }
          break;
        }
        case 2: {
          uint32_t r, g, b;
          bool key;
          if (depth == 16) {
            r = s[x * 6], g = s[x * 6 + 2], b = s[x * 6 + 4];
            key = hasTrns && r == (transColor->red >> 8u) && g == (transColor->green >> 8u) &&
                  b == (transColor->blue >> 8u);
          } else {
            r = s[x * 3], g = s[x * 3 + 1], b = s[x * 3 + 2];
            key = hasTrns && r == (transColor->red & 0xFFu) && g == (transColor->green & 0xFFu) &&
                  b == (transColor->blue & 0xFFu);
          }
          px = key ? 0 : pack(r, g, b, 255);
          break;
        }
        case 3: {
          int perByte = 8 / depth, mask = (1 << depth) - 1;
          uint32_t i = (s[x / perByte] >> (8 - depth * (x % perByte + 1))) & mask;
          uint32_t r = 0, g = 0, b = 0;
          if (static_cast<int>(i) < nPalette) r = palette[i].red, g = palette[i].green, b = palette[i].blue;
          uint32_t a = hasTrns ? (static_cast<int>(i) < nTrans ? transAlpha[i] : 255) : 255;
          px = pack(r, g, b, a);
          break;
        }
        case 4: {
          int step = depth / 8;
          uint32_t v = s[x * 2 * step], a = s[x * 2 * step + step];
          px = pack(v, v, v, a);
          break;
        }
        case 6: {
          int step = depth / 8;
          const uint8_t* p = s + x * 4 * step;
          px = pack(p[0], p[step], p[2 * step], p[3 * step]);
          break;
        }
        default:
          break;
      }
      e.pixels[y * w + x] = px;
    }
  }
  e.alpha = ct >= 4 ? AlphaComplex : (hasTrns ? AlphaSimple : AlphaNone);
  png_destroy_read_struct(&png, &info, nullptr);
  return e;
}

std::vector<uint8_t> readFile(const fs::path& p) {
  std::ifstream f(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> suiteFiles() {
  std::vector<fs::path> out;
  for (const auto& entry : fs::directory_iterator(MX_PNGSUITE_DIR))
    if (entry.path().extension() == ".png") out.push_back(entry.path());
  std::sort(out.begin(), out.end());
  return out;
}

// Corrupt files whose only fault is a chunk CRC: without zlib no CRC is checked, so they load.
bool onlyCrcIsWrong(const std::string& name) { return name == "xcsn0g01.png" || name == "xhdn0g08.png"; }

class PngSuite : public ::testing::TestWithParam<bool> {};

TEST_P(PngSuite, EveryFileMatchesLibpngOrIsRefused) {
  const bool noZlib = GetParam();
  test::ScopedNoZlib scope(noZlib);
  auto files = suiteFiles();
  ASSERT_GT(files.size(), 150u);
  int compared = 0;
  for (const auto& path : files) {
    std::string name = path.filename().string();
    SCOPED_TRACE(name);
    std::vector<uint8_t> bytes = readFile(path);
    API32bppDIB dib;
    bool loaded = dib.LoadPicture_Stream(bytes);
    if (name[0] == 'x') {
      EXPECT_EQ(loaded, noZlib && onlyCrcIsWrong(name));
      if (!loaded) EXPECT_EQ(dib.Handle(), 0u);
      continue;
    }
    ASSERT_TRUE(loaded);
    Expected e = decodeWithLibpng(bytes);
    ASSERT_TRUE(e.ok);
    ASSERT_EQ(dib.Width(), e.width);
    ASSERT_EQ(dib.Height(), e.height);
    EXPECT_EQ(dib.ImageType(), imgPNG);
    EXPECT_EQ(dib.Alpha(), e.alpha);
    int mismatches = 0;
    for (int y = 0; y < e.height && mismatches < 3; ++y) {
      // Bottom-up: picture row y is memory row Height - 1 - y.
      const auto* row = reinterpret_cast<const uint32_t*>(dib.BitsPointer()) +
                        static_cast<size_t>(e.height - 1 - y) * e.width;
      for (int x = 0; x < e.width && mismatches < 3; ++x) {
        if (row[x] != e.pixels[static_cast<size_t>(y) * e.width + x]) {
          ADD_FAILURE() << "pixel " << x << "," << y << " is " << std::hex << row[x] << " want "
                        << e.pixels[static_cast<size_t>(y) * e.width + x];
          ++mismatches;
        }
      }
    }
    ++compared;
  }
  EXPECT_GT(compared, 140);
}

INSTANTIATE_TEST_SUITE_P(Zlib, PngSuite, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? std::string("BuiltInInflate") : std::string("SystemZlib"); });

}  // namespace
}  // namespace mx::image
