#include "platform/Blend.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace mx::platform::blend {
namespace {

TEST(Blend, LaneDivisionIsExactOverTheWholeRange) {
  // Both lanes at once, every value a product of two bytes can take.
  constexpr uint32_t kMax = 255 * 255;
  for (uint32_t x = 0; x <= kMax; ++x) {
    uint32_t got = div255Lanes((x << 16) | (kMax - x));
    ASSERT_EQ(got >> 16, x / 255) << x;
    ASSERT_EQ(got & 0xFFFF, (kMax - x) / 255) << x;
  }
}

TEST(Blend, WorkedExamples) {
  // Half-transparent premultiplied red over opaque grey: 0x80 + 0x80 * 127 / 255 = 128 + 63.
  EXPECT_EQ(blendGeneral(0x80800000, 0xFF808080, 255, true), 0xFFBF3F3Fu);
  // Constant alpha 128 without per-pixel alpha: src * 128 / 255 + dst * 127 / 255.
  // Blue 200 over blue 100: 100 + 49 = 149; alpha 128 + 255 * 127 / 255 = 255.
  EXPECT_EQ(blendGeneral(0x000000C8, 0xFF000064, 128, false), 0xFF000095u);
  // Constant alpha scales the premultiplied source first: 0xFF * 51 / 255 = 51 of everything.
  EXPECT_EQ(blendGeneral(0xFFFFFFFF, 0x00000000, 51, true), 0x33333333u);
  // Early outs: transparent source leaves the destination, opaque source replaces it.
  EXPECT_EQ(blendFast(0x00000000, 0x12345678, 255, true), 0x12345678u);
  EXPECT_EQ(blendFast(0xFF102030, 0x12345678, 255, true), 0xFF102030u);
  EXPECT_EQ(blendFast(0xFF102030, 0x12345678, 0, true), 0x12345678u);
  // Colour above alpha is not valid premultiplied data; the sum is held to 255, not wrapped.
  EXPECT_EQ(blendGeneral(0x10FF0000, 0xFFFF0000, 255, true), 0xFFFF0000u);
  EXPECT_EQ(blendFast(0x10FF0000, 0xFFFF0000, 255, true), 0xFFFF0000u);
}

TEST(Blend, FastPathMatchesGeneralPathBitForBit) {
  // BLEND_ITER reruns one iteration alone.
  const char* only = std::getenv("BLEND_ITER");
  uint64_t checksum = 0;
  for (int iter = 0; iter < 200; ++iter) {
    if (only && std::atoi(only) != iter) continue;
    std::mt19937 rng(static_cast<uint32_t>(iter) * 7919u + 1);
    const int n = 257;
    std::vector<uint32_t> src(n), a(n), b(n);
    for (int i = 0; i < n; ++i) {
      uint32_t alpha = i % 5 == 0 ? 0 : i % 5 == 1 ? 255 : rng() & 0xFF;
      // Mostly valid premultiplied pixels, some with colour above alpha.
      uint32_t lim = iter % 4 == 3 ? 255 : alpha;
      auto ch = [&] { return lim ? rng() % (lim + 1) : 0; };
      src[i] = (alpha << 24) | (ch() << 16) | (ch() << 8) | ch();
      a[i] = b[i] = rng();
    }
    uint32_t k = iter % 3 == 0 ? 255 : rng() & 0xFF;
    bool srcAlpha = iter % 2 == 0;
    blendRowGeneral(src.data(), a.data(), n, k, srcAlpha);
    blendRowFast(src.data(), b.data(), n, k, srcAlpha);
    ASSERT_EQ(a, b) << "iteration " << iter;
    for (uint32_t v : a) checksum = checksum * 1000003u + v;
  }
  if (!only) EXPECT_EQ(checksum, 0xb65a4142b0216ab1u) << std::hex << checksum;
}

}  // namespace
}  // namespace mx::platform::blend
