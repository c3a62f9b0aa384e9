// GIF encoding speed: the writer's LZW encoder against giflib's EGifPutLine on the same
// 1024 x 1024 picture of 256 colours, both writing into memory. giflib's figure includes its
// few header bytes; the image data is what costs.
#include <benchmark/benchmark.h>
#include <gif_lib.h>

#include <cmath>
#include <random>
#include <vector>

#include "image/GifLzwEncoder.h"

namespace {

constexpr int kSize = 1024;

enum class Indices { Photo, Flat };

// Photo: a dithered picture, smooth bands with noise at every pixel, the hard case for LZW.
// Flat: large areas of one index with some edges, like a screenshot or a diagram.
const std::vector<uint8_t>& indices(Indices which) {
  static std::vector<uint8_t> sets[2];
  auto& v = sets[static_cast<int>(which)];
  if (!v.empty()) return v;
  v.resize(static_cast<size_t>(kSize) * kSize);
  std::mt19937 rng(3);
  for (int y = 0; y < kSize; ++y)
    for (int x = 0; x < kSize; ++x) {
      int value;
      if (which == Indices::Photo) {
        value = static_cast<int>(128 + 60 * std::sin(x / 53.0) + 60 * std::cos(y / 71.0)) + static_cast<int>(rng() % 4);
      } else {
        value = ((x / 128) * 8 + (y / 96)) % 256;
        if ((x + y) % 97 == 0) value = 255;
      }
      v[static_cast<size_t>(y) * kSize + x] = static_cast<uint8_t>(value);
    }
  return v;
}

void BM_GifLzwOurs(benchmark::State& state, Indices which) {
  const auto& px = indices(which);
  std::vector<uint8_t> out;
  mx::image::GifLzwEncoder encoder;
  for (auto _ : state) {
    out.clear();
    encoder.Encode(px, 8, out);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kSize * kSize);
  state.counters["out_KiB"] = static_cast<double>(out.size()) / 1024;
}

void BM_GifLzwGiflib(benchmark::State& state, Indices which) {
  const auto& px = indices(which);
  std::vector<uint8_t> out;
  ColorMapObject* map = GifMakeMapObject(256, nullptr);
  for (int i = 0; i < 256; ++i) map->Colors[i] = {static_cast<GifByteType>(i), static_cast<GifByteType>(i), static_cast<GifByteType>(i)};
  for (auto _ : state) {
    out.clear();
    int error = 0;
    GifFileType* gif = EGifOpen(&out, [](GifFileType* g, const GifByteType* data, int n) {
      auto* v = static_cast<std::vector<uint8_t>*>(g->UserData);
      v->insert(v->end(), data, data + n);
      return n;
    }, &error);
    if (!gif || EGifPutScreenDesc(gif, kSize, kSize, 8, 0, map) == GIF_ERROR ||
        EGifPutImageDesc(gif, 0, 0, kSize, kSize, false, nullptr) == GIF_ERROR) {
      state.SkipWithError("giflib");
      break;
    }
    for (int y = 0; y < kSize; ++y)
      EGifPutLine(gif, const_cast<GifPixelType*>(px.data() + static_cast<size_t>(y) * kSize), kSize);
    EGifCloseFile(gif, &error);
    benchmark::DoNotOptimize(out.data());
  }
  GifFreeMapObject(map);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kSize * kSize);
  state.counters["out_KiB"] = static_cast<double>(out.size()) / 1024;
}

BENCHMARK_CAPTURE(BM_GifLzwOurs, photo, Indices::Photo)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_GifLzwGiflib, photo, Indices::Photo)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_GifLzwOurs, flat, Indices::Flat)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_GifLzwGiflib, flat, Indices::Flat)->Unit(benchmark::kMillisecond);

}  // namespace
