// PNG decoding speed: the library's reader (with zlib, and with its own inflate) against libpng
// on a large RGBA picture made by the platform's encoder.
#include <benchmark/benchmark.h>
#include <png.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIPNGParser.h"
#include "platform/PngEncoder.h"

namespace {

// A smooth gradient with noise and a varying alpha: compresses like a photo with a mask.
const std::vector<uint8_t>& testPng() {
  static const std::vector<uint8_t> png = [] {
    const int w = 2048, h = 2048;
    std::vector<uint8_t> bits(static_cast<size_t>(w) * h * 4);
    std::mt19937 rng(7);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        uint8_t* p = bits.data() + (static_cast<size_t>(y) * w + x) * 4;
        int a = (x + y) / 16 % 256;
        p[3] = static_cast<uint8_t>(a);
        p[2] = static_cast<uint8_t>(x / 8 * a / 255);
        p[1] = static_cast<uint8_t>(y / 8 * a / 255);
        p[0] = static_cast<uint8_t>((rng() % 16) * a / 255);
      }
    mx::platform::Surface s;
    s.width = w;
    s.height = h;
    s.bits = bits.data();
    s.stride = w * 4;
    return mx::platform::EncodePng(s);
  }();
  return png;
}

void BM_APIPNGParser(benchmark::State& state, bool noZlib) {
  if (noZlib) setenv("MX_NO_ZLIB", "1", 1);
  else unsetenv("MX_NO_ZLIB");
  const auto& png = testPng();
  for (auto _ : state) {
    mx::image::API32bppDIB dib;
    mx::image::APIPNGParser parser;
    if (!parser.LoadStream(png, dib)) state.SkipWithError("decode failed");
    benchmark::DoNotOptimize(dib.BitsPointer());
  }
  unsetenv("MX_NO_ZLIB");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 2048 * 2048 * 4);
}
BENCHMARK_CAPTURE(BM_APIPNGParser, zlib, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_APIPNGParser, builtin_inflate, true)->Unit(benchmark::kMillisecond);

// libpng's simplified API to premultiplied BGRA, the nearest thing to what the reader delivers.
void BM_libpng(benchmark::State& state) {
  const auto& png = testPng();
  std::vector<uint8_t> out(static_cast<size_t>(2048) * 2048 * 4);
  for (auto _ : state) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, png.data(), png.size())) state.SkipWithError("libpng");
    image.format = PNG_FORMAT_BGRA;
    image.flags |= PNG_IMAGE_FLAG_FAST;
    if (!png_image_finish_read(&image, nullptr, out.data(), 0, nullptr)) state.SkipWithError("libpng");
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * 2048 * 2048 * 4);
}
BENCHMARK(BM_libpng)->Unit(benchmark::kMillisecond);

}  // namespace


