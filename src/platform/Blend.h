#pragma once
// The blend arithmetic of the platform, in one place. Pixels are 0xAARRGGBB words holding
// premultiplied colour. Everything is integer and truncates: x / 255 means the integer quotient.
//
//   scale(p, k)  : every channel c of p becomes c * k / 255
//   over(s, d)   : every channel becomes s + d * (255 - alpha(s)) / 255, held to 255
//   blend(s, d, k, srcAlpha):
//       srcAlpha: over(scale(s, k), d)
//       else    : over(scale(s | 0xFF000000, k), d): the constant alpha alone mixes the two
//
// Two implementations: the general one, channel by channel, which states the rule, and a fast
// one working on two channels per 32-bit word with an exact division by 255. They agree bit for
// bit on every input (a test runs both over a seeded random set).
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mx::platform::blend {

// ---- general path ---------------------------------------------------------------------------

[[nodiscard]] constexpr uint32_t channel(uint32_t p, int shift) { return (p >> shift) & 0xFF; }

[[nodiscard]] constexpr uint32_t scaleGeneral(uint32_t p, uint32_t k) {
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) out |= (channel(p, shift) * k / 255) << shift;
  return out;
}

[[nodiscard]] constexpr uint32_t overGeneral(uint32_t s, uint32_t d) {
  uint32_t inv = 255 - (s >> 24);
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    uint32_t c = channel(s, shift) + channel(d, shift) * inv / 255;
    out |= (c > 255 ? 255 : c) << shift;
  }
  return out;
}

[[nodiscard]] constexpr uint32_t blendGeneral(uint32_t s, uint32_t d, uint32_t k, bool srcAlpha) {
  if (!srcAlpha) s |= 0xFF000000u;
  return overGeneral(scaleGeneral(s, k), d);
}

// ---- fast path ------------------------------------------------------------------------------

// floor(x / 255) for 0 <= x <= 255 * 255, applied to the two 16-bit lanes of a word
// holding 0x00XX00YY-style values: (x + 1 + (x >> 8)) >> 8 is exact on that range.
[[nodiscard]] constexpr uint32_t div255Lanes(uint32_t x) {
  return ((x + 0x00010001u + ((x >> 8) & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
}

[[nodiscard]] constexpr uint32_t scaleFast(uint32_t p, uint32_t k) {
  if (k == 255) return p;
  if (k == 0) return 0;
  uint32_t rb = div255Lanes((p & 0x00FF00FFu) * k);
  uint32_t ag = div255Lanes(((p >> 8) & 0x00FF00FFu) * k);
  return rb | (ag << 8);
}

// Adds two lane words and holds each 16-bit lane to 255.
[[nodiscard]] constexpr uint32_t addSaturateLanes(uint32_t a, uint32_t b) {
  uint32_t t = a + b;
  uint32_t over = t & 0x01000100u;
  t |= over - (over >> 8);
  return t & 0x00FF00FFu;
}

[[nodiscard]] constexpr uint32_t overFast(uint32_t s, uint32_t d) {
  uint32_t sa = s >> 24;
  if (sa == 255) return s;  // d * 0 / 255 adds nothing
  if (s == 0) return d;     // nothing added, d * 255 / 255 == d
  uint32_t inv = 255 - sa;
  uint32_t rb = div255Lanes((d & 0x00FF00FFu) * inv);
  uint32_t ag = div255Lanes(((d >> 8) & 0x00FF00FFu) * inv);
  rb = addSaturateLanes(rb, s & 0x00FF00FFu);
  ag = addSaturateLanes(ag, (s >> 8) & 0x00FF00FFu);
  return rb | (ag << 8);
}

[[nodiscard]] constexpr uint32_t blendFast(uint32_t s, uint32_t d, uint32_t k, bool srcAlpha) {
  if (!srcAlpha) s |= 0xFF000000u;
  return overFast(scaleFast(s, k), d);
}

// One row of AlphaBlend: dst[i] = blend(src[i], dst[i], k, srcAlpha).
inline void blendRowGeneral(const uint32_t* src, uint32_t* dst, int n, uint32_t k, bool srcAlpha) {
  for (int i = 0; i < n; ++i) dst[i] = blendGeneral(src[i], dst[i], k, srcAlpha);
}

#if defined(__SSE2__)
namespace sse2 {

// floor(x / 255) on eight 16-bit lanes, x <= 65279: the same identity as div255Lanes.
inline __m128i div255(__m128i x) {
  return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(x, _mm_set1_epi16(1)), _mm_srli_epi16(x, 8)), 8);
}

// The alpha of each of two pixels, spread over that pixel's four 16-bit lanes.
inline __m128i spreadAlpha(__m128i px16) {
  return _mm_shufflehi_epi16(_mm_shufflelo_epi16(px16, _MM_SHUFFLE(3, 3, 3, 3)), _MM_SHUFFLE(3, 3, 3, 3));
}

// over(s, d) of two pixels widened to 16-bit lanes, before the saturating add of s: d * inv / 255.
inline __m128i dimmed(__m128i s16, __m128i d16) {
  const __m128i inv = _mm_xor_si128(spreadAlpha(s16), _mm_set1_epi16(0xFF));  // 255 - a, a <= 255
  return div255(_mm_mullo_epi16(d16, inv));
}

// Four pixels of blend(s, d, k, srcAlpha). Every product is at most 255 x 255, so the 16-bit
// lanes never spill and the result is the general rule's for any bytes.
inline __m128i blend4(__m128i s, __m128i d, __m128i k16, __m128i opaque, bool scale) {
  const __m128i zero = _mm_setzero_si128();
  s = _mm_or_si128(s, opaque);
  __m128i slo = _mm_unpacklo_epi8(s, zero), shi = _mm_unpackhi_epi8(s, zero);
  if (scale) {
    slo = div255(_mm_mullo_epi16(slo, k16));
    shi = div255(_mm_mullo_epi16(shi, k16));
    s = _mm_packus_epi16(slo, shi);
  }
  const __m128i lo = dimmed(slo, _mm_unpacklo_epi8(d, zero));
  const __m128i hi = dimmed(shi, _mm_unpackhi_epi8(d, zero));
  return _mm_adds_epu8(_mm_packus_epi16(lo, hi), s);
}

}  // namespace sse2
#endif

// The same result as blendRowGeneral, four pixels at a time where SSE2 is there.
inline void blendRowFast(const uint32_t* src, uint32_t* dst, int n, uint32_t k, bool srcAlpha) {
  if (k == 0) return;
  int i = 0;
#if defined(__SSE2__)
  const __m128i k16 = _mm_set1_epi16(static_cast<short>(k));
  const __m128i opaque = _mm_set1_epi32(srcAlpha ? 0 : static_cast<int>(0xFF000000u));
  const bool scale = k != 255;
  for (; i + 4 <= n; i += 4) {
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i));
    __m128i* d = reinterpret_cast<__m128i*>(dst + i);
    _mm_storeu_si128(d, sse2::blend4(s, _mm_loadu_si128(d), k16, opaque, scale));
  }
#endif
  if (srcAlpha && k == 255) {
    for (; i < n; ++i) dst[i] = overFast(src[i], dst[i]);
    return;
  }
  for (; i < n; ++i) dst[i] = blendFast(src[i], dst[i], k, srcAlpha);
}

}  // namespace mx::platform::blend
