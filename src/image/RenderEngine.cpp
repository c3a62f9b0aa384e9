// The own engine's per-pixel loops. See RenderEngine.h for the memory layout they share.
#include "image/RenderEngine.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "platform/Gdi.h"

namespace mx::image::engine {

using namespace mx::platform;

namespace {

// The rounding of the system's Round and of its conversions to whole numbers: to the nearest,
// halves to even.
inline double roundHalfEven(double v) { return std::nearbyint(v); }

inline uint32_t toByte(double v) {
  double r = roundHalfEven(v);
  return r <= 0.0 ? 0u : r >= 255.0 ? 255u : static_cast<uint32_t>(r);
}

// floor(x / 255) on the two 16-bit lanes of a word, exact for lane values up to 65534.
inline uint32_t div255Lanes(uint32_t x) { return ((x + 0x00010001u + ((x >> 8) & 0x00FF00FFu)) >> 8) & 0x00FF00FFu; }

inline uint32_t addSaturateLanes(uint32_t a, uint32_t b) {
  uint32_t t = a + b;
  uint32_t over = t & 0x01000100u;
  t |= over - (over >> 8);
  return t & 0x00FF00FFu;
}

// Clips a blend rectangle against the source and a destination box; false when nothing is left.
bool clipBlend(int32_t srcW, int32_t srcH, int32_t& srcX, int32_t& srcY, int32_t boxLeft, int32_t boxTop,
               int32_t boxRight, int32_t boxBottom, int32_t& destX, int32_t& destY, int32_t& w, int32_t& h) {
  if (w <= 0 || h <= 0) return false;
  auto cut = [](int32_t& src, int32_t& dst, int32_t& len, int32_t srcMax, int32_t lo, int32_t hi) {
    // Work in 64 bits: callers may pass far-off rectangles.
    int64_t s = src, d = dst, n = len;
    if (s < 0) { d -= s; n += s; s = 0; }
    if (d < lo) { s += lo - d; n -= lo - d; d = lo; }
    n = std::min<int64_t>({n, srcMax - s, hi - d});
    if (n <= 0) return false;
    src = static_cast<int32_t>(s);
    dst = static_cast<int32_t>(d);
    len = static_cast<int32_t>(n);
    return true;
  };
  return cut(srcX, destX, w, srcW, boxLeft, boxRight) && cut(srcY, destY, h, srcH, boxTop, boxBottom);
}

// One row of the blend. The general rule, for a source pixel s of alpha a and constant alpha g:
//   g 255: a 255 copies s; a 0 leaves d; else d := (255 - a) x d / 255 + s
//   g < 255: a 0 leaves d; else e := 255 - a x g / 255 and d := (e x d + s x g) / 255
// applied to all four bytes, each division truncating. Two channels ride in each 16-bit lane
// pair; the lane arithmetic is exact on these ranges (a test checks it against the rule).
void blendRowScalar(const uint32_t* src, uint32_t* dst, int32_t n, uint32_t g, bool gray, const GrayWeights& gw) {
  for (int32_t i = 0; i < n; ++i) {
    uint32_t s = src[i];
    uint32_t a = s >> 24;
    if (a == 0) continue;
    if (gray) {
      uint32_t v = GrayValue(s, gw);
      s = (a << 24) | (v << 16) | (v << 8) | v;
    }
    uint32_t d = dst[i];
    if (g == 255) {
      if (a == 255) {
        dst[i] = s;
        continue;
      }
      uint32_t inv = 255 - a;
      uint32_t rb = addSaturateLanes(div255Lanes((d & 0x00FF00FFu) * inv), s & 0x00FF00FFu);
      uint32_t ag = addSaturateLanes(div255Lanes(((d >> 8) & 0x00FF00FFu) * inv), (s >> 8) & 0x00FF00FFu);
      dst[i] = rb | (ag << 8);
    } else {
      uint32_t e = 255 - a * g / 255;
      // e x d + s x g stays below 65280 per lane for any bytes, so no lane spills.
      uint32_t rb = div255Lanes((d & 0x00FF00FFu) * e + (s & 0x00FF00FFu) * g);
      uint32_t ag = div255Lanes(((d >> 8) & 0x00FF00FFu) * e + ((s >> 8) & 0x00FF00FFu) * g);
      dst[i] = rb | (ag << 8);
    }
  }
}

#if defined(__SSE2__)
// floor(x / 255) on eight 16-bit lanes, exact for x <= 65534 (the identity of div255Lanes).
inline __m128i div255x8(__m128i x) {
  return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(x, _mm_set1_epi16(1)), _mm_srli_epi16(x, 8)), 8);
}

// The alpha of each of two pixels held in 16-bit lanes, spread over that pixel's four lanes.
inline __m128i spreadAlpha(__m128i px16) {
  return _mm_shufflehi_epi16(_mm_shufflelo_epi16(px16, _MM_SHUFFLE(3, 3, 3, 3)), _MM_SHUFFLE(3, 3, 3, 3));
}

// Two pixels of the g 255 rule before the saturating add of s: (255 - a) x d / 255.
inline __m128i dimmedBy(__m128i s16, __m128i d16) {
  return div255x8(_mm_mullo_epi16(d16, _mm_xor_si128(spreadAlpha(s16), _mm_set1_epi16(0xFF))));
}

// Two pixels of the g < 255 rule: (e x d + s x g) / 255 with e := 255 - a x g / 255. For
// premultiplied pixels (colour <= alpha) the sum stays below 65280, so it fits a lane.
inline __m128i mixedBy(__m128i s16, __m128i d16, __m128i g16) {
  const __m128i e = _mm_sub_epi16(_mm_set1_epi16(255), div255x8(_mm_mullo_epi16(spreadAlpha(s16), g16)));
  return div255x8(_mm_add_epi16(_mm_mullo_epi16(e, d16), _mm_mullo_epi16(s16, g16)));
}

// Four pixels at a time, branch-free: the rule is applied everywhere and lanes whose source
// alpha is 0 take the destination back, which is what the early out of the rule gives.
int32_t blendRowSse2(const uint32_t* src, uint32_t* dst, int32_t n, uint32_t g) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i g16 = _mm_set1_epi16(static_cast<short>(g));
  int32_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i));
    const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dst + i));
    const __m128i slo = _mm_unpacklo_epi8(s, zero), shi = _mm_unpackhi_epi8(s, zero);
    const __m128i dlo = _mm_unpacklo_epi8(d, zero), dhi = _mm_unpackhi_epi8(d, zero);
    __m128i out;
    if (g == 255) out = _mm_adds_epu8(_mm_packus_epi16(dimmedBy(slo, dlo), dimmedBy(shi, dhi)), s);
    else out = _mm_packus_epi16(mixedBy(slo, dlo, g16), mixedBy(shi, dhi, g16));
    const __m128i clear = _mm_cmpeq_epi32(_mm_srli_epi32(s, 24), zero);
    out = _mm_or_si128(_mm_and_si128(clear, d), _mm_andnot_si128(clear, out));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), out);
  }
  return i;
}
#endif

void blendRow(const uint32_t* src, uint32_t* dst, int32_t n, uint32_t g, bool gray, const GrayWeights& gw) {
  int32_t done = 0;
#if defined(__SSE2__)
  // The grey path replaces colours first; it is rare and stays on the plain loop.
  if (!gray) done = blendRowSse2(src, dst, n, g);
#endif
  blendRowScalar(src + done, dst + done, n - done, g, gray, gw);
}

// Int(v) of the rule: the whole part towards minus infinity. Positions are non-negative almost
// always, where truncation gives the same and needs no library call (SSE2 has no floor).
inline int32_t wholePart(double v) {
  return v >= 0.0 && v < 2147483647.0 ? static_cast<int32_t>(v) : static_cast<int32_t>(std::floor(v));
}

// The bilinear taps of one coordinate: two indexes and their weights. A skipped term gets
// weight 0 and repeats the first index, which adds exactly nothing to the sum, so the loops need
// no branches and never read outside the rectangle.
struct Taps {
  int32_t i0 = 0, i1 = 0;
  double w0 = 1.0, w1 = 0.0;
};

// Columns: ix := Int(sx); the last column reads alone, otherwise fx := sx - ix and columns ix and
// ix + 1 get (1 - |0 - fx|) and (1 - |1 - fx|).
Taps columnTaps(double sx, int32_t first, int32_t last) {
  Taps t;
  int32_t ix = wholePart(sx);
  ix = std::clamp(ix, first, last);
  t.i0 = t.i1 = ix;
  if (ix == last) return t;
  double fx = sx - ix;
  t.w0 = 1.0 - std::fabs(0.0 - fx);
  t.w1 = 1.0 - std::fabs(1.0 - fx);
  if (std::fabs(1.0 - fx) != 1.0) t.i1 = ix + 1;
  else t.w1 = 0.0;
  return t;
}

// Rows, counted from the bottom: the first row of the rectangle reads alone; otherwise
// fy := |1 - (sy - iy)| and rows iy and iy - 1 get (1 - |0 - fy|) and (1 - |1 - fy|).
Taps rowTaps(double sy, int32_t first, int32_t last) {
  Taps t;
  int32_t iy = wholePart(sy);
  iy = std::clamp(iy, first, last);
  t.i0 = t.i1 = iy;
  if (iy == first) return t;
  double fy = std::fabs(1.0 - (sy - iy));
  t.w0 = 1.0 - std::fabs(0.0 - fy);
  t.w1 = 1.0 - std::fabs(1.0 - fy);
  if (std::fabs(0.0 - fy) == 1.0) {
    // Row iy has weight exactly 0: read row iy - 1 only.
    t.w0 = 0.0;
    t.i0 = iy - 1;
  }
  if (std::fabs(1.0 - fy) != 1.0) t.i1 = iy - 1;
  else t.w1 = 0.0;
  return t;
}

// The four-term sum of every channel, terms in the order (row 0, col 0), (0, 1), (1, 0), (1, 1),
// each weight the product of its row and column weights; each sum rounded to a byte.
#if defined(__SSE2__)
// A pixel's four channels as doubles: (blue, green) and (red, alpha).
inline void channelsOf(uint32_t p, __m128d& lo, __m128d& hi) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i c = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p)), zero), zero);
  lo = _mm_cvtepi32_pd(c);
  hi = _mm_cvtepi32_pd(_mm_shuffle_epi32(c, _MM_SHUFFLE(3, 2, 3, 2)));
}
#endif

inline uint32_t bilinearPixel(const uint32_t* r0, const uint32_t* r1, const Taps& tx, double wy0, double wy1) {
  const uint32_t p00 = r0[tx.i0], p01 = r0[tx.i1], p10 = r1[tx.i0], p11 = r1[tx.i1];
  const double w00 = wy0 * tx.w0, w01 = wy0 * tx.w1, w10 = wy1 * tx.w0, w11 = wy1 * tx.w1;
#if defined(__SSE2__)
  // The same products and sums in the same order, two channels per register: IEEE arithmetic
  // gives every lane the bits of the plain loop below. The conversion rounds to nearest, halves
  // to even (the default rounding mode, as nearbyint uses), and the packs hold to 0..255.
  __m128d lo, hi, clo, chi;
  channelsOf(p00, clo, chi);
  __m128d w = _mm_set1_pd(w00);
  lo = _mm_mul_pd(w, clo);
  hi = _mm_mul_pd(w, chi);
  channelsOf(p01, clo, chi);
  w = _mm_set1_pd(w01);
  lo = _mm_add_pd(lo, _mm_mul_pd(w, clo));
  hi = _mm_add_pd(hi, _mm_mul_pd(w, chi));
  channelsOf(p10, clo, chi);
  w = _mm_set1_pd(w10);
  lo = _mm_add_pd(lo, _mm_mul_pd(w, clo));
  hi = _mm_add_pd(hi, _mm_mul_pd(w, chi));
  channelsOf(p11, clo, chi);
  w = _mm_set1_pd(w11);
  lo = _mm_add_pd(lo, _mm_mul_pd(w, clo));
  hi = _mm_add_pd(hi, _mm_mul_pd(w, chi));
  const __m128i words = _mm_unpacklo_epi64(_mm_cvtpd_epi32(lo), _mm_cvtpd_epi32(hi));
  const __m128i halves = _mm_packs_epi32(words, words);
  return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(halves, halves)));
#else
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    double sum = w00 * ((p00 >> shift) & 0xFF);
    sum += w01 * ((p01 >> shift) & 0xFF);
    sum += w10 * ((p10 >> shift) & 0xFF);
    sum += w11 * ((p11 >> shift) & 0xFF);
    out |= toByte(sum) << shift;
  }
  return out;
#endif
}

#if defined(__SSE2__)
// ---- bilinear resampling in single precision, checked against the double rule ----
//
// The rule sums four double products and rounds to nearest, halves to even. The fast loop does
// the same sum separably in floats, four channels per register: first down the rows,
//   V = wy0 * c0 + wy1 * c1                 (per source column, once per output row)
// then across the columns,
//   v = wx0 * V0 + wx1 * V1,
// each weight the double weight rounded to a float. Every term wy_i wx_j c_ij of the exact sum S
// (taken with the double weights) passes through at most six roundings of relative size 2^-24
// (two weight conversions, two products, two sums; all terms are non-negative, so the relative
// errors of a sum are bounded by those of its terms). Hence
//   |v - S| <= ((1 + 2^-24)^6 - 1) S < 6.0001 x 2^-24 x S.
// The weights of each direction sum to at most 1 + 2^-52 (1 - f and 1 - |1 - f|, each rounded
// once), so S <= 255 x (1 + 2^-51) and |v - S| < 9.2e-5. The double rule itself is off S by at
// most five roundings of 2^-53 relative, under 2e-13. So v is within kNearHalf = 2^-13
// (1.22e-4) of the double sum, and where v lies further than that from every half-integer both
// round to the same byte (the hold at 255 included: S never reaches 255.5). The distance is
// measured exactly: v - rint(v) is exact in floats for 0 <= v < 2^23 (the two are within a
// factor of two of each other or rint(v) is 0). A pixel with any channel inside the margin
// is redone by the double rule; for pictures whose weights give exact halves (doubling) that
// is the tie-breaking case the rule is about, elsewhere it is about one pixel in a thousand.
constexpr float kNearHalf = 1.0f / 8192.0f;

// Per output column: where its two columns sit among the vertically blended ones, and the
// column weights as floats.
struct ColumnTapsF {
  int32_t k0 = 0, k1 = 0;
  float w0 = 1.0f, w1 = 0.0f;
};

inline __m128 channelsF(uint32_t p) {
  const __m128i zero = _mm_setzero_si128();
  return _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p)), zero), zero));
}

// Rounds four channels (halves to even, the default rounding mode) and reports in the mask the
// lanes too close to a half for the float sum to decide.
inline __m128i roundChecked(__m128 v, __m128& nearHalf) {
  const __m128i r = _mm_cvtps_epi32(v);
  const __m128 off = _mm_andnot_ps(_mm_set1_ps(-0.0f), _mm_sub_ps(v, _mm_cvtepi32_ps(r)));
  nearHalf = _mm_or_ps(nearHalf, _mm_cmpge_ps(off, _mm_set1_ps(0.5f - kNearHalf)));
  return r;
}

template <class RowTaps>
void stretchBilinearFloat(const PixelView& src, int32_t firstCol, int32_t cols, const std::vector<Taps>& taps,
                          RowTaps&& rowTapsOf, const PixelView& out, int32_t w, int32_t h) {
  // Only the source columns some output column reads are blended down the rows: all of them
  // when enlarging, about two per output column when shrinking a lot.
  std::vector<int32_t> slotOf(static_cast<size_t>(cols), -1);
  std::vector<int32_t> used;
  std::vector<ColumnTapsF> ct(static_cast<size_t>(w));
  auto slot = [&](int32_t col) {
    int32_t& s = slotOf[static_cast<size_t>(col - firstCol)];
    if (s < 0) {
      s = static_cast<int32_t>(used.size());
      used.push_back(col);
    }
    return s;
  };
  for (int32_t x = 0; x < w; ++x) {
    const Taps& t = taps[static_cast<size_t>(x)];
    ct[x] = {slot(t.i0), slot(t.i1), static_cast<float>(t.w0), static_cast<float>(t.w1)};
  }
  const size_t n = used.size();
  struct Channels {
    __m128 c;
  };
  std::vector<Channels> v(n);
  // Source rows converted to floats once: enlarging reads each for several output rows. Two
  // slots are enough, rows being visited in order.
  struct Slot {
    int32_t row = -1;
    std::vector<Channels> c;
  } slots[2];
  for (Slot& sl : slots) sl.c.resize(n);
  auto converted = [&](int32_t row, int32_t keep) -> const Channels* {
    for (Slot& sl : slots)
      if (sl.row == row) return sl.c.data();
    Slot& sl = slots[0].row == keep ? slots[1] : slots[0];
    const uint32_t* p = src.memRow(row);
    for (size_t j = 0; j < n; ++j) sl.c[j].c = channelsF(p[used[j]]);
    sl.row = row;
    return sl.c.data();
  };

  for (int32_t m = h - 1; m >= 0; --m) {
    const Taps ty = rowTapsOf(m);
    const uint32_t* r0 = src.memRow(ty.i0);
    const uint32_t* r1 = src.memRow(ty.i1);
    const Channels* c0 = converted(ty.i0, ty.i1);
    const Channels* c1 = converted(ty.i1, ty.i0);
    const __m128 wy0 = _mm_set1_ps(static_cast<float>(ty.w0)), wy1 = _mm_set1_ps(static_cast<float>(ty.w1));
    for (size_t j = 0; j < n; ++j) v[j].c = _mm_add_ps(_mm_mul_ps(wy0, c0[j].c), _mm_mul_ps(wy1, c1[j].c));
    uint32_t* d = out.memRow(m);
    auto across = [&](int32_t x, __m128& nearHalf) {
      const ColumnTapsF& t = ct[static_cast<size_t>(x)];
      const __m128 s = _mm_add_ps(_mm_mul_ps(_mm_set1_ps(t.w0), v[static_cast<size_t>(t.k0)].c),
                                  _mm_mul_ps(_mm_set1_ps(t.w1), v[static_cast<size_t>(t.k1)].c));
      return roundChecked(s, nearHalf);
    };
    auto redo = [&](int32_t x) { d[x] = bilinearPixel(r0, r1, taps[static_cast<size_t>(x)], ty.w0, ty.w1); };
    int32_t x = 0;
    for (; x + 4 <= w; x += 4) {
      __m128 nearHalf = _mm_setzero_ps();
      const __m128i p0 = across(x, nearHalf), p1 = across(x + 1, nearHalf);
      const __m128i p2 = across(x + 2, nearHalf), p3 = across(x + 3, nearHalf);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + x),
                       _mm_packus_epi16(_mm_packs_epi32(p0, p1), _mm_packs_epi32(p2, p3)));
      if (_mm_movemask_ps(nearHalf)) [[unlikely]]
        for (int32_t k = x; k < x + 4; ++k) redo(k);
    }
    for (; x < w; ++x) {
      __m128 nearHalf = _mm_setzero_ps();
      const __m128i p = _mm_packs_epi32(across(x, nearHalf), _mm_setzero_si128());
      d[x] = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(p, p)));
      if (_mm_movemask_ps(nearHalf)) redo(x);
    }
  }
}

// One pixel of the bilinear rule by the same float sums (down the rows for each column, then
// across), so the bound above holds; a pixel near a half is redone by the double rule.
inline uint32_t bilinearPixelChecked(const uint32_t* r0, const uint32_t* r1, const Taps& tx, double wy0d,
                                     double wy1d) {
  const __m128 wy0 = _mm_set1_ps(static_cast<float>(wy0d)), wy1 = _mm_set1_ps(static_cast<float>(wy1d));
  const __m128 v0 = _mm_add_ps(_mm_mul_ps(wy0, channelsF(r0[tx.i0])), _mm_mul_ps(wy1, channelsF(r1[tx.i0])));
  const __m128 v1 = _mm_add_ps(_mm_mul_ps(wy0, channelsF(r0[tx.i1])), _mm_mul_ps(wy1, channelsF(r1[tx.i1])));
  const __m128 s = _mm_add_ps(_mm_mul_ps(_mm_set1_ps(static_cast<float>(tx.w0)), v0),
                              _mm_mul_ps(_mm_set1_ps(static_cast<float>(tx.w1)), v1));
  __m128 nearHalf = _mm_setzero_ps();
  const __m128i p = _mm_packs_epi32(roundChecked(s, nearHalf), _mm_setzero_si128());
  if (_mm_movemask_ps(nearHalf)) [[unlikely]]
    return bilinearPixel(r0, r1, tx, wy0d, wy1d);
  return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(p, p)));
}
#endif

}  // namespace

bool WorkBuffer::allocate(int32_t w, int32_t h, bool clear) {
  width = height = 0;
  pixels.clear();
  if (w <= 0 || h <= 0) return false;
  // The same ceiling as a surface: the byte size must fit a Long.
  if (static_cast<int64_t>(w) * h * 4 > std::numeric_limits<int32_t>::max()) return false;
  try {
    if (clear) pixels.assign(static_cast<size_t>(w) * h, 0u);
    else pixels.resize(static_cast<size_t>(w) * h);
  } catch (const std::bad_alloc&) {
    return false;
  }
  width = w;
  height = h;
  return true;
}

GrayWeights GrayFormulaWeights(int32_t formula) {
  switch (formula) {
    case -1: return {1.0f, 1.0f, 1.0f};
    case 1: return {0.072f, 0.715f, 0.213f};
    case 2: return {0.333f, 0.334f, 0.333f};
    case 3: return {0.1f, 0.1f, 0.8f};
    case 4: return {0.1f, 0.8f, 0.1f};
    case 5: return {0.8f, 0.1f, 0.1f};
    case 6: return {0.1f, 0.45f, 0.45f};
    case 7: return {0.45f, 0.45f, 0.1f};
    default: return {0.114f, 0.587f, 0.299f};  // NTSCPAL, also for every value out of range
  }
}

uint32_t GrayValue(uint32_t p, const GrayWeights& w) {
  float v = static_cast<float>(p & 0xFF) * w.blue + static_cast<float>((p >> 8) & 0xFF) * w.green +
            static_cast<float>((p >> 16) & 0xFF) * w.red;
  return toByte(v);
}

bool MirrorToBuffer(const PixelView& src, const Rect& r, bool mirrorX, bool mirrorY, int32_t light, WorkBuffer& out) {
  if (src.empty() || r.x < 0 || r.y < 0 || r.width <= 0 || r.height <= 0 || r.x + r.width > src.width ||
      r.y + r.height > src.height)
    return false;
  // Every row is copied over: no need to clear first.
  if (!out.allocate(r.width, r.height, false)) return false;
  PixelView o = out.view();
  for (int32_t y = 0; y < r.height; ++y) {
    const uint32_t* s = src.row(r.y + y) + r.x;
    uint32_t* d = o.row(mirrorY ? r.height - 1 - y : y);
    if (mirrorX) std::reverse_copy(s, s + r.width, d);
    else std::memcpy(d, s, static_cast<size_t>(r.width) * 4);
  }
  if (light != 0) AdjustLight(o, light);
  return true;
}

void AdjustLight(const PixelView& px, int32_t light) {
  if (px.empty() || light == 0) return;
  const double delta = light / 100.0 * 255.0;
  // d depends only on alpha: one table of 256 shifts.
  int32_t shift[256];
  for (int a = 0; a < 256; ++a) shift[a] = static_cast<int32_t>(roundHalfEven(a * delta)) / 255;
  const size_t n = static_cast<size_t>(px.width) * px.height;
  uint32_t* p = px.bits;
  if (delta <= 0) {
    for (size_t i = 0; i < n; ++i) {
      uint32_t a = p[i] >> 24;
      if (a == 0) continue;
      int32_t d = shift[a];
      uint32_t out = a << 24;
      for (int sh = 0; sh < 24; sh += 8) {
        int32_t c = static_cast<int32_t>((p[i] >> sh) & 0xFF) + d;
        out |= static_cast<uint32_t>(c < 0 ? 0 : c) << sh;
      }
      p[i] = out;
    }
  } else {
    for (size_t i = 0; i < n; ++i) {
      uint32_t a = p[i] >> 24;
      if (a == 0) continue;
      int32_t d = shift[a];
      uint32_t out = a << 24;
      for (int sh = 0; sh < 24; sh += 8) {
        int32_t c = static_cast<int32_t>((p[i] >> sh) & 0xFF) + d;
        out |= static_cast<uint32_t>(c > static_cast<int32_t>(a) ? a : c) << sh;
      }
      p[i] = out;
    }
  }
}

bool AdjustLightToBuffer(const PixelView& src, const Rect& r, int32_t light, WorkBuffer& out) {
  return MirrorToBuffer(src, r, false, false, light, out);
}

void StretchInto(const PixelView& src, const Rect& r, const StretchTarget& t, bool bilinear, const PixelView& out) {
  if (src.empty() || out.empty() || t.fullWidth <= 0 || t.fullHeight <= 0) return;
  const double xRatio = static_cast<double>(r.width) / t.fullWidth;
  const double yRatio = static_cast<double>(r.height) / t.fullHeight;
  // The rectangle's rows counted from the bottom of the source memory.
  const int32_t base = src.height - r.y - r.height;
  const int32_t lastCol = r.x + r.width - 1, lastRow = base + r.height - 1;
  const int32_t w = std::min(t.width, out.width), h = std::min(t.height, out.height);

  if (!bilinear) {
    std::vector<int32_t> cols(static_cast<size_t>(w));
    for (int32_t x = 0; x < w; ++x)
      cols[x] = std::clamp(static_cast<int32_t>(std::floor((x + t.clipX) * xRatio + r.x)), r.x, lastCol);
    int32_t prev = -1;
    for (int32_t m = h - 1; m >= 0; --m) {
      int32_t sr = std::clamp(static_cast<int32_t>(std::floor((m + t.clipY) * yRatio + base)), base, lastRow);
      uint32_t* d = out.memRow(m);
      if (sr == prev) {
        // Enlarging repeats source rows: the row just made is the same one.
        std::memcpy(d, out.memRow(m + 1), static_cast<size_t>(w) * 4);
        continue;
      }
      prev = sr;
      const uint32_t* s = src.memRow(sr);
      for (int32_t x = 0; x < w; ++x) d[x] = s[cols[x]];
    }
    return;
  }

  // The x positions and their taps are computed once per column.
  std::vector<Taps> cols(static_cast<size_t>(w));
  for (int32_t x = 0; x < w; ++x) cols[x] = columnTaps((x + t.clipX) * xRatio + r.x, r.x, lastCol);
#if defined(__SSE2__)
  stretchBilinearFloat(src, r.x, r.width, cols, [&](int32_t m) { return rowTaps((m + t.clipY) * yRatio + base, base, lastRow); },
                      out, w, h);
#else
  for (int32_t m = h - 1; m >= 0; --m) {
    Taps ty = rowTaps((m + t.clipY) * yRatio + base, base, lastRow);
    const uint32_t* r0 = src.memRow(ty.i0);
    const uint32_t* r1 = src.memRow(ty.i1);
    uint32_t* d = out.memRow(m);
    for (int32_t x = 0; x < w; ++x) d[x] = bilinearPixel(r0, r1, cols[x], ty.w0, ty.w1);
  }
#endif
}

bool StretchToBuffer(const PixelView& src, const Rect& r, const StretchTarget& t, bool bilinear, WorkBuffer& out) {
  if (src.empty() || r.width <= 0 || r.height <= 0 || r.x < 0 || r.y < 0 || r.x + r.width > src.width ||
      r.y + r.height > src.height)
    return false;
  // StretchInto writes every pixel of the part unless the full size is empty.
  if (!out.allocate(t.width, t.height, t.fullWidth <= 0 || t.fullHeight <= 0)) return false;
  StretchInto(src, r, t, bilinear, out.view());
  return true;
}

void BlendToSurface(const PixelView& src, int32_t srcX, int32_t srcY, const PixelView& dest, int32_t destX,
                    int32_t destY, int32_t w, int32_t h, uint32_t g, int32_t gray) {
  if (src.empty() || dest.empty() || g == 0) return;
  if (!clipBlend(src.width, src.height, srcX, srcY, 0, 0, dest.width, dest.height, destX, destY, w, h)) return;
  const GrayWeights gw = GrayFormulaWeights(gray);
  for (int32_t y = 0; y < h; ++y)
    blendRow(src.row(srcY + y) + srcX, dest.row(destY + y) + destX, w, g > 255 ? 255 : g, gray != -1, gw);
}

bool BlendToDC(const PixelView& src, int32_t srcX, int32_t srcY, HDC dc, int32_t destX, int32_t destY, int32_t w,
               int32_t h, uint32_t g, int32_t gray) {
  if (src.empty() || !dc) return false;
  if (g == 0) return true;
  // Only the part that can show is read back; what lies outside the DC's clip would be dropped
  // when written anyway.
  RECT box{};
  if (GetClipBox(dc, &box) == ERROR) return false;
  if (!clipBlend(src.width, src.height, srcX, srcY, box.left, box.top, box.right, box.bottom, destX, destY, w, h))
    return true;

  BITMAPINFO info{};
  info.bmiHeader.biWidth = w;
  info.bmiHeader.biHeight = h;  // bottom-up, like the surfaces
  info.bmiHeader.biBitCount = 24;
  void* bitsV = nullptr;
  HBITMAP section = CreateDIBSection(0, &info, DIB_RGB_COLORS, &bitsV, 0, 0);
  if (!section || !bitsV) {
    if (section) DeleteObject(section);
    return false;
  }
  HDC mem = CreateCompatibleDC(0);
  HGDIOBJ old = mem ? SelectObject(mem, section) : 0;
  bool ok = old && BitBlt(mem, 0, 0, w, h, dc, destX, destY, SRCCOPY);
  if (old) SelectObject(mem, old);  // selecting out brings the packed rows up to date
  if (mem) DeleteDC(mem);
  if (ok) {
    const GrayWeights gw = GrayFormulaWeights(gray);
    const size_t stride = ((static_cast<size_t>(w) * 24 + 31) / 32) * 4;
    auto* bits = static_cast<uint8_t*>(bitsV);
    std::vector<uint32_t> row(static_cast<size_t>(w));
    for (int32_t m = 0; m < h; ++m) {
      uint8_t* packed = bits + stride * m;
      for (int32_t x = 0; x < w; ++x)
        row[x] = packed[3 * x] | (uint32_t{packed[3 * x + 1]} << 8) | (uint32_t{packed[3 * x + 2]} << 16);
      // Memory row m of the section is picture row h - 1 - m of the rectangle.
      blendRow(src.row(srcY + h - 1 - m) + srcX, row.data(), w, g > 255 ? 255 : g, gray != -1, gw);
      for (int32_t x = 0; x < w; ++x) {
        packed[3 * x] = row[x] & 0xFF;
        packed[3 * x + 1] = (row[x] >> 8) & 0xFF;
        packed[3 * x + 2] = (row[x] >> 16) & 0xFF;
      }
    }
    ok = SetDIBitsToDevice(dc, destX, destY, static_cast<DWORD>(w), static_cast<DWORD>(h), 0, 0, 0,
                           static_cast<UINT>(h), bits, &info, DIB_RGB_COLORS) != 0;
  }
  DeleteObject(section);
  return ok;
}

bool RotateToBuffer(const PixelView& src, const Rect& r, int32_t destW, int32_t destH, double angle, bool bilinear,
                    WorkBuffer& out) {
  if (src.empty() || r.width <= 0 || r.height <= 0 || destW <= 0 || destH <= 0 || r.x < 0 || r.y < 0 ||
      r.x + r.width > src.width || r.y + r.height > src.height)
    return false;
  // Only whole degrees count on this path.
  const double whole = roundHalfEven(angle);
  if (!std::isfinite(whole)) return false;
  const double degrees = std::fmod(whole, 360.0);
  const double pi = 4.0 * std::atan(1.0);
  const double rad = -(pi * degrees) / 180.0;
  const double xs = static_cast<double>(destW) / r.width, ys = static_cast<double>(destH) / r.height;
  const double cosX = std::cos(rad) / xs, sinX = std::sin(rad) / xs;
  const double cosY = std::cos(rad) / ys, sinY = std::sin(rad) / ys;
  const double side = roundHalfEven(std::sqrt(static_cast<double>(destW) * destW + static_cast<double>(destH) * destH));
  if (side > std::numeric_limits<int32_t>::max()) return false;
  const int32_t n = static_cast<int32_t>(side);
  if (!out.allocate(n, n)) return false;

  const int32_t base = src.height - r.y - r.height;
  const double cx = r.width / 2.0 + r.x, cy = r.height / 2.0 + base;
  const double left = r.x, right = r.x + r.width, bottom = base, top = base + r.height;
  const int32_t lastCol = r.x + r.width - 1, lastRow = base + r.height - 1;
  PixelView o = out.view();
  // Work pixels are sampled at their centres, measured from the square's centre, so that the
  // source rectangle sits in the middle of the square.
  const double half = n / 2.0;
  for (int32_t m = 0; m < n; ++m) {
    const double dy = m + 0.5 - half;
    double sx = dy * sinX + (0.5 - half) * cosX + cx;
    double sy = dy * cosY - (0.5 - half) * sinY + cy;
    uint32_t* d = o.memRow(m);
    for (int32_t x = 0; x < n; ++x, sx += cosX, sy -= sinY) {
      if (sx < left || sx >= right || sy < bottom || sy >= top) continue;
      if (!bilinear) {
        d[x] = src.memRow(static_cast<int32_t>(sy))[static_cast<int32_t>(sx)];
        continue;
      }
      Taps tx = columnTaps(sx, r.x, lastCol);
      Taps ty;
      if (tx.i0 == lastCol) {
        // At the last column both fractions are 0: one source pixel.
        ty.i0 = ty.i1 = std::clamp(static_cast<int32_t>(sy), base, lastRow);
      } else {
        ty = rowTaps(sy, base, lastRow);
      }
#if defined(__SSE2__)
      d[x] = bilinearPixelChecked(src.memRow(ty.i0), src.memRow(ty.i1), tx, ty.w0, ty.w1);
#else
      d[x] = bilinearPixel(src.memRow(ty.i0), src.memRow(ty.i1), tx, ty.w0, ty.w1);
#endif
    }
  }
  return true;
}

namespace {

HRGN regionOfBlock(const RECT* rects, size_t count, const RECT& bounds, RegionCreator create) {
  // RGNDATAHEADER (32 bytes) followed by the rectangles.
  std::vector<uint8_t> data(sizeof(RGNDATAHEADER) + count * sizeof(RECT));
  RGNDATAHEADER h;
  h.nCount = static_cast<DWORD>(count);
  h.nRgnSize = static_cast<DWORD>(count * sizeof(RECT));
  h.rcBound = bounds;
  std::memcpy(data.data(), &h, sizeof h);
  if (count) std::memcpy(data.data() + sizeof h, rects, count * sizeof(RECT));
  return create(nullptr, static_cast<DWORD>(data.size()), reinterpret_cast<const RGNDATA*>(data.data()));
}

}  // namespace

HRGN RegionFromRects(const std::vector<RECT>& rects, const RECT& bounds, RegionCreator create) {
  if (!create) create = &ExtCreateRegion;
  if (HRGN whole = regionOfBlock(rects.data(), rects.size(), bounds, create)) return whole;
  constexpr size_t kBlock = 2000;
  if (rects.size() <= kBlock) return 0;
  HRGN result = 0;
  for (size_t start = 0; start < rects.size(); start += kBlock) {
    size_t count = std::min(kBlock, rects.size() - start);
    HRGN part = regionOfBlock(rects.data() + start, count, bounds, create);
    if (!part) {
      if (result) DeleteObject(result);
      return 0;
    }
    if (!result) {
      result = part;
      continue;
    }
    CombineRgn(result, result, part, RGN_OR);
    DeleteObject(part);
  }
  return result;
}

}  // namespace mx::image::engine
