// Render against pixman on the same sizes: an unscaled blend of a 1024 x 1024 premultiplied
// picture onto another, bilinear and nearest scaling 1024 -> 1536, and a 30 degree rotation.
#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cmath>
#include <random>

#include "image/API32bppDIB.h"

namespace {

using mx::image::API32bppDIB;

constexpr int kSide = 1024, kScaled = 1536;

// A premultiplied picture with every kind of alpha: smooth colour, noisy partial alpha, holes.
void makePicture(API32bppDIB& d, int w, int h, unsigned seed) {
  d.InitializeDIB(w, h);
  std::mt19937 rng(seed);
  auto* p = reinterpret_cast<uint32_t*>(d.BitsPointer());
  for (int i = 0; i < w * h; ++i) {
    uint32_t a = (i % 7 == 0) ? 0 : (i % 5 == 0) ? 255 : rng() % 256;
    uint32_t r = (i % w) * a / w, g = (i / w) * a / h, b = (rng() % 256) * a / 255;
    p[i] = (a << 24) | (r << 16) | (g << 8) | b;
  }
  d.Alpha(mx::image::AlphaComplex);
}

pixman_image_t* wrap(API32bppDIB& d) {
  return pixman_image_create_bits(PIXMAN_a8r8g8b8, d.Width(), d.Height(), reinterpret_cast<uint32_t*>(d.BitsPointer()),
                                  d.Width() * 4);
}

void setPixels(benchmark::State& state, int64_t perIteration) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * perIteration);
}

// ---- unscaled blend ----

void BM_Blend_Render(benchmark::State& state, bool alphaBlend) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  makePicture(dst, kSide, kSide, 2);
  src.isAlphaBlendFriendly(alphaBlend);
  for (auto _ : state) {
    src.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 100, true, true, &dst);
    benchmark::ClobberMemory();
  }
  setPixels(state, int64_t{kSide} * kSide);
}
BENCHMARK_CAPTURE(BM_Blend_Render, alphablend, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Blend_Render, own_engine, false)->Unit(benchmark::kMillisecond);

void BM_Blend_pixman(benchmark::State& state) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  makePicture(dst, kSide, kSide, 2);
  pixman_image_t* s = wrap(src);
  pixman_image_t* d = wrap(dst);
  for (auto _ : state) {
    pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, d, 0, 0, 0, 0, 0, 0, kSide, kSide);
    benchmark::ClobberMemory();
  }
  pixman_image_unref(s);
  pixman_image_unref(d);
  setPixels(state, int64_t{kSide} * kSide);
}
BENCHMARK(BM_Blend_pixman)->Unit(benchmark::kMillisecond);

// ---- scaling 1024 -> 1536 onto a transparent surface ----

void BM_Scale_Render(benchmark::State& state, bool bilinear) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  dst.InitializeDIB(kScaled, kScaled);
  src.isAlphaBlendFriendly(false);  // the own engine
  src.HighQualityInterpolation(bilinear);
  for (auto _ : state) {
    src.Render(0, 0, 0, kScaled, kScaled, 0, 0, 0, 0, 100, true, true, &dst);
    benchmark::ClobberMemory();
  }
  setPixels(state, int64_t{kScaled} * kScaled);
}
BENCHMARK_CAPTURE(BM_Scale_Render, bilinear, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Scale_Render, nearest, false)->Unit(benchmark::kMillisecond);

void BM_Scale_pixman(benchmark::State& state, pixman_filter_t filter) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  dst.InitializeDIB(kScaled, kScaled);
  pixman_image_t* s = wrap(src);
  pixman_image_t* d = wrap(dst);
  pixman_transform_t t;
  pixman_transform_init_scale(&t, pixman_double_to_fixed(static_cast<double>(kSide) / kScaled),
                              pixman_double_to_fixed(static_cast<double>(kSide) / kScaled));
  pixman_image_set_transform(s, &t);
  pixman_image_set_filter(s, filter, nullptr, 0);
  for (auto _ : state) {
    pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, d, 0, 0, 0, 0, 0, 0, kScaled, kScaled);
    benchmark::ClobberMemory();
  }
  pixman_image_unref(s);
  pixman_image_unref(d);
  setPixels(state, int64_t{kScaled} * kScaled);
}
BENCHMARK_CAPTURE(BM_Scale_pixman, bilinear, PIXMAN_FILTER_BILINEAR)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Scale_pixman, nearest, PIXMAN_FILTER_NEAREST)->Unit(benchmark::kMillisecond);

// ---- rotation by 30 degrees about the centre, bilinear ----

constexpr int kRotSide = 1448;  // the diagonal of the picture: the whole turned square

void BM_Rotate_Render(benchmark::State& state, bool bilinear) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  dst.InitializeDIB(kRotSide, kRotSide);
  src.HighQualityInterpolation(bilinear);
  for (auto _ : state) {
    src.Render(0, kRotSide / 2, kRotSide / 2, 0, 0, 0, 0, 0, 0, 100, true, true, &dst, -1, 0, 30.0f, true);
    benchmark::ClobberMemory();
  }
  setPixels(state, int64_t{kRotSide} * kRotSide);
}
BENCHMARK_CAPTURE(BM_Rotate_Render, bilinear, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Rotate_Render, nearest, false)->Unit(benchmark::kMillisecond);

void BM_Rotate_pixman(benchmark::State& state, pixman_filter_t filter) {
  API32bppDIB src, dst;
  makePicture(src, kSide, kSide, 1);
  dst.InitializeDIB(kRotSide, kRotSide);
  pixman_image_t* s = wrap(src);
  pixman_image_t* d = wrap(dst);
  // Destination to source: move the square's centre to the origin, turn back, move to the
  // picture's centre.
  const double rad = 30.0 * std::acos(-1.0) / 180.0;
  pixman_transform_t t;
  pixman_transform_init_translate(&t, pixman_double_to_fixed(-kRotSide / 2.0), pixman_double_to_fixed(-kRotSide / 2.0));
  pixman_transform_rotate(&t, nullptr, pixman_double_to_fixed(std::cos(-rad)), pixman_double_to_fixed(std::sin(-rad)));
  pixman_transform_translate(&t, nullptr, pixman_double_to_fixed(kSide / 2.0), pixman_double_to_fixed(kSide / 2.0));
  pixman_image_set_transform(s, &t);
  pixman_image_set_filter(s, filter, nullptr, 0);
  pixman_image_set_repeat(s, PIXMAN_REPEAT_NONE);
  for (auto _ : state) {
    pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, d, 0, 0, 0, 0, 0, 0, kRotSide, kRotSide);
    benchmark::ClobberMemory();
  }
  pixman_image_unref(s);
  pixman_image_unref(d);
  setPixels(state, int64_t{kRotSide} * kRotSide);
}
BENCHMARK_CAPTURE(BM_Rotate_pixman, bilinear, PIXMAN_FILTER_BILINEAR)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Rotate_pixman, nearest, PIXMAN_FILTER_NEAREST)->Unit(benchmark::kMillisecond);

}  // namespace
