// PNG decoding speed: the library's reader, with zlib and with its own inflate, against libpng
// and libspng, on three large pictures written by libpng with its default filter choice and
// compression: 8-bit RGBA, 8-bit palette and 16-bit grey.
//
// Every decoder delivers 8-bit four-channel pixels: ours premultiplied BGRA into a new surface,
// libpng BGRA through its own transforms (16-bit samples cut to their high byte, as ours are),
// libspng RGBA. The references write into one buffer kept across iterations.
#include <benchmark/benchmark.h>
#include <png.h>
#if MX_HAVE_SPNG
#include <spng.h>
#endif

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIPNGParser.h"

namespace {

constexpr int kSize = 2048;

enum class Picture { Rgba, Palette, Grey16 };

// libpng's writer into memory, with its defaults for filters and compression.
std::vector<uint8_t> writePng(int colorType, int depth, const std::vector<uint8_t>& samples, int channels) {
  std::vector<uint8_t> out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    return {};
  }
  png_set_write_fn(
      png, &out,
      [](png_structp p, png_bytep data, png_size_t n) {
        auto* v = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(p));
        v->insert(v->end(), data, data + n);
      },
      nullptr);
  png_set_IHDR(png, info, kSize, kSize, depth, colorType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (colorType == PNG_COLOR_TYPE_PALETTE) {
    png_color pal[256];
    for (int i = 0; i < 256; ++i) pal[i] = {static_cast<png_byte>(i), static_cast<png_byte>(255 - i), static_cast<png_byte>(i * 3)};
    png_set_PLTE(png, info, pal, 256);
  }
  png_write_info(png, info);
  const size_t rowBytes = static_cast<size_t>(kSize) * channels * depth / 8;
  for (int y = 0; y < kSize; ++y) png_write_row(png, samples.data() + rowBytes * y);
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return out;
}

// Pictures that compress like real ones: smooth gradients, a little noise, flat areas.
const std::vector<uint8_t>& testPng(Picture which) {
  static std::vector<uint8_t> files[3];
  auto& file = files[static_cast<int>(which)];
  if (!file.empty()) return file;
  std::mt19937 rng(7);
  const size_t n = static_cast<size_t>(kSize) * kSize;
  if (which == Picture::Rgba) {
    // A photo with a mask: alpha ramps diagonally, so every alpha value appears.
    std::vector<uint8_t> s(n * 4);
    for (int y = 0; y < kSize; ++y)
      for (int x = 0; x < kSize; ++x) {
        uint8_t* p = s.data() + (static_cast<size_t>(y) * kSize + x) * 4;
        p[0] = static_cast<uint8_t>(x / 8);
        p[1] = static_cast<uint8_t>(y / 8);
        p[2] = static_cast<uint8_t>(rng() % 16 + (x ^ y) / 64);
        p[3] = static_cast<uint8_t>((x + y) / 16 % 256);
      }
    file = writePng(PNG_COLOR_TYPE_RGBA, 8, s, 4);
  } else if (which == Picture::Palette) {
    // A dithered picture of 256 colours: bands with noise at their edges.
    std::vector<uint8_t> s(n);
    for (int y = 0; y < kSize; ++y)
      for (int x = 0; x < kSize; ++x) {
        double v = 128 + 60 * std::sin(x / 97.0) + 60 * std::cos(y / 131.0);
        s[static_cast<size_t>(y) * kSize + x] = static_cast<uint8_t>(static_cast<int>(v) + static_cast<int>(rng() % 3));
      }
    file = writePng(PNG_COLOR_TYPE_PALETTE, 8, s, 1);
  } else {
    // A 16-bit scan: a smooth field whose low bits are noise.
    std::vector<uint8_t> s(n * 2);
    for (int y = 0; y < kSize; ++y)
      for (int x = 0; x < kSize; ++x) {
        unsigned v = static_cast<unsigned>(32768 + 16000 * std::sin(x / 300.0) * std::cos(y / 200.0)) + rng() % 64;
        uint8_t* p = s.data() + (static_cast<size_t>(y) * kSize + x) * 2;
        p[0] = static_cast<uint8_t>(v >> 8);
        p[1] = static_cast<uint8_t>(v);
      }
    file = writePng(PNG_COLOR_TYPE_GRAY, 16, s, 1);
  }
  return file;
}

void setPixels(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kSize * kSize);
}

void BM_PngOurs(benchmark::State& state, Picture which, bool noZlib) {
  if (noZlib) setenv("MX_NO_ZLIB", "1", 1);
  else unsetenv("MX_NO_ZLIB");
  const auto& png = testPng(which);
  for (auto _ : state) {
    mx::image::API32bppDIB dib;
    mx::image::APIPNGParser parser;
    if (!parser.LoadStream(png, dib)) state.SkipWithError("decode failed");
    benchmark::DoNotOptimize(dib.BitsPointer());
  }
  unsetenv("MX_NO_ZLIB");
  setPixels(state);
  state.counters["file_KiB"] = static_cast<double>(png.size()) / 1024;
}

struct MemoryReader {
  const std::vector<uint8_t>* data;
  size_t pos;
};

void BM_PngLibpng(benchmark::State& state, Picture which) {
  const auto& file = testPng(which);
  std::vector<uint8_t> out(static_cast<size_t>(kSize) * kSize * 4);
  std::vector<png_bytep> rows(kSize);
  for (int y = 0; y < kSize; ++y) rows[y] = out.data() + static_cast<size_t>(y) * kSize * 4;
  for (auto _ : state) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    MemoryReader reader{&file, 0};
    if (setjmp(png_jmpbuf(png))) {
      png_destroy_read_struct(&png, &info, nullptr);
      state.SkipWithError("libpng");
      break;
    }
    png_set_read_fn(png, &reader, [](png_structp p, png_bytep dst, png_size_t n) {
      auto* r = static_cast<MemoryReader*>(png_get_io_ptr(p));
      if (r->pos + n > r->data->size()) png_error(p, "short");
      std::memcpy(dst, r->data->data() + r->pos, n);
      r->pos += n;
    });
    png_read_info(png, info);
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_bgr(png);
    png_read_update_info(png, info);
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    benchmark::DoNotOptimize(out.data());
  }
  setPixels(state);
}

#if MX_HAVE_SPNG
void BM_PngSpng(benchmark::State& state, Picture which) {
  const auto& file = testPng(which);
  std::vector<uint8_t> out(static_cast<size_t>(kSize) * kSize * 4);
  for (auto _ : state) {
    spng_ctx* ctx = spng_ctx_new(0);
    spng_set_png_buffer(ctx, file.data(), file.size());
    if (spng_decode_image(ctx, out.data(), out.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS) != 0)
      state.SkipWithError("libspng");
    spng_ctx_free(ctx);
    benchmark::DoNotOptimize(out.data());
  }
  setPixels(state);
}
#endif

#define MX_PNG_BENCHES(name, picture)                                                          \
  BENCHMARK_CAPTURE(BM_PngOurs, name##_zlib, picture, false)->Unit(benchmark::kMillisecond);    \
  BENCHMARK_CAPTURE(BM_PngOurs, name##_builtin, picture, true)->Unit(benchmark::kMillisecond);  \
  BENCHMARK_CAPTURE(BM_PngLibpng, name, picture)->Unit(benchmark::kMillisecond);

MX_PNG_BENCHES(rgba8, Picture::Rgba)
MX_PNG_BENCHES(palette8, Picture::Palette)
MX_PNG_BENCHES(grey16, Picture::Grey16)

#if MX_HAVE_SPNG
BENCHMARK_CAPTURE(BM_PngSpng, rgba8, Picture::Rgba)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PngSpng, palette8, Picture::Palette)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PngSpng, grey16, Picture::Grey16)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
