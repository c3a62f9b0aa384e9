#pragma once
// Helpers of the rendering and transform tests: surfaces filled from code, pixels read back in
// picture order, random premultiplied pixels, and reference versions of the engine's integer
// and floating formulas written the plain way, to compare the engine with.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/RenderEngine.h"

namespace mx::image::test {

// Picture pixel (x, y), y from the top: rows are bottom-up in memory.
inline uint32_t& At(const API32bppDIB& d, int x, int y) {
  return reinterpret_cast<uint32_t*>(d.BitsPointer())[static_cast<size_t>(d.Height() - 1 - y) * d.Width() + x];
}

inline void Fill(API32bppDIB& d, int w, int h, const std::function<uint32_t(int, int)>& f,
                 ENUM_ALPHA_TYPE alpha = AlphaComplex) {
  ASSERT_TRUE(d.InitializeDIB(w, h));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) At(d, x, y) = f(x, y);
  d.Alpha(alpha);
  d.SetImageType(imgBmpPARGB);
}

// Top-down pixel words of the whole surface.
inline std::vector<uint32_t> Pixels(const API32bppDIB& d) {
  std::vector<uint32_t> out;
  for (int y = 0; y < d.Height(); ++y)
    for (int x = 0; x < d.Width(); ++x) out.push_back(At(d, x, y));
  return out;
}

// A valid premultiplied pixel; a quarter are transparent and a quarter opaque, so that the
// blends' early outs are exercised too.
inline uint32_t RandomPixel(std::mt19937& rng) {
  uint32_t kind = rng() % 4;
  uint32_t a = kind == 0 ? 0 : kind == 1 ? 255 : rng() % 256;
  if (a == 0) return 0;
  uint32_t b = rng() % (a + 1), g = rng() % (a + 1), r = rng() % (a + 1);
  return (a << 24) | (r << 16) | (g << 8) | b;
}

inline uint32_t Ch(uint32_t p, int i) { return (p >> (8 * i)) & 0xFF; }

// A colourful test picture with a soft alpha edge: a disc on a transparent field, with a
// coloured bar so that orientation shows.
inline uint32_t TestPicture(int x, int y, int w, int h) {
  double dx = x - (w - 1) / 2.0, dy = y - (h - 1) / 2.0;
  double r = std::sqrt(dx * dx + dy * dy), R = std::min(w, h) / 2.0;
  uint32_t a = r < R - 2 ? 255 : r < R ? static_cast<uint32_t>((R - r) * 127) : 0;
  if (y < h / 4 && x < w / 2) a = 255;  // a bar at the top left
  if (a == 0) return 0;
  uint32_t red = static_cast<uint32_t>(x * 255 / std::max(1, w - 1)) * a / 255;
  uint32_t green = static_cast<uint32_t>(y * 255 / std::max(1, h - 1)) * a / 255;
  uint32_t blue = (y < h / 4 && x < w / 2) ? a : a / 3;
  return (a << 24) | (red << 16) | (green << 8) | blue;
}

// ---- reference formulas, on bottom-up memory as the engine's rules are stated ----

struct Mem {
  std::vector<uint32_t> px;  // bottom-up
  int w = 0, h = 0;
  uint32_t& at(int x, int m) { return px[static_cast<size_t>(m) * w + x]; }
  uint32_t at(int x, int m) const { return px[static_cast<size_t>(m) * w + x]; }
};

inline Mem MemOf(const API32bppDIB& d) {
  Mem m;
  m.w = d.Width();
  m.h = d.Height();
  auto* p = reinterpret_cast<const uint32_t*>(d.BitsPointer());
  m.px.assign(p, p + static_cast<size_t>(m.w) * m.h);
  return m;
}

inline uint32_t RefByte(double v) {
  double r = std::nearbyint(v);
  return r < 0 ? 0 : r > 255 ? 255 : static_cast<uint32_t>(r);
}

// Nearest or bilinear resampling of the rectangle (rx, base, rw, rh) of src to dw x dh; base is
// the rectangle's first memory row (its bottom row), as the rule counts rows.
inline Mem RefStretch(const Mem& src, int rx, int base, int rw, int rh, int dw, int dh, bool bilinear) {
  Mem out;
  out.w = dw;
  out.h = dh;
  out.px.assign(static_cast<size_t>(dw) * dh, 0);
  double xr = static_cast<double>(rw) / dw, yr = static_cast<double>(rh) / dh;
  for (int m = 0; m < dh; ++m)
    for (int x = 0; x < dw; ++x) {
      double sy = m * yr + base, sx = x * xr + rx;
      int iy = static_cast<int>(sy), ix = static_cast<int>(sx);
      if (!bilinear) {
        out.at(x, m) = src.at(ix, iy);
        continue;
      }
      double fy = iy == base ? 0.0 : std::fabs(1.0 - (sy - iy));
      double fx = ix == rx + rw - 1 ? 0.0 : sx - ix;
      uint32_t p = 0;
      for (int c = 0; c < 4; ++c) {
        double sum = 0;
        for (int r = 0; r < 2; ++r)
          for (int k = 0; k < 2; ++k) {
            if (std::fabs(r - fy) == 1.0 || std::fabs(k - fx) == 1.0) continue;
            sum += ((1 - std::fabs(r - fy)) * (1 - std::fabs(k - fx))) * Ch(src.at(ix + k, iy - r), c);
          }
        p |= RefByte(sum) << (8 * c);
      }
      out.at(x, m) = p;
    }
  return out;
}

inline Mem RefStretch(const Mem& src, int dw, int dh, bool bilinear) {
  return RefStretch(src, 0, 0, src.w, src.h, dw, dh, bilinear);
}

inline uint32_t RefLightPixel(uint32_t p, int light) {
  uint32_t a = p >> 24;
  if (a == 0) return p;
  double delta = light / 100.0 * 255.0;
  int d = static_cast<int>(std::nearbyint(a * delta)) / 255;
  uint32_t out = a << 24;
  for (int c = 0; c < 3; ++c) {
    int v = static_cast<int>(Ch(p, c)) + d;
    if (delta <= 0) v = std::max(v, 0);
    else v = std::min(v, static_cast<int>(a));
    out |= static_cast<uint32_t>(v) << (8 * c);
  }
  return out;
}

inline uint32_t RefGray(uint32_t p, int formula) {
  engine::GrayWeights w = engine::GrayFormulaWeights(formula);
  float v = static_cast<float>(Ch(p, 0)) * w.blue + static_cast<float>(Ch(p, 1)) * w.green +
            static_cast<float>(Ch(p, 2)) * w.red;
  return RefByte(v);
}

// One destination pixel under one source pixel, constant alpha g, grey formula or -1.
inline uint32_t RefBlend(uint32_t s, uint32_t d, uint32_t g, int gray) {
  uint32_t a = s >> 24;
  if (a == 0) return d;
  if (gray != -1) {
    uint32_t v = RefGray(s, gray);
    s = (a << 24) | (v << 16) | (v << 8) | v;
  }
  if (g == 255 && a == 255) return s;
  uint32_t out = 0;
  for (int c = 0; c < 4; ++c) {
    uint32_t sc = Ch(s, c), dc = Ch(d, c), v;
    if (g == 255) {
      v = std::min<uint32_t>(255, (255 - a) * dc / 255 + sc);
    } else {
      uint32_t e = 255 - a * g / 255;
      v = (e * dc + sc * g) / 255;
    }
    out |= v << (8 * c);
  }
  return out;
}

}  // namespace mx::image::test
