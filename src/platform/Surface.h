#pragma once
// A 32-bit drawing surface: blue, green, red, alpha in memory order. Bitmaps made from a
// positive-height header are bottom-up: the first row in memory is the last picture row.
// Drawing code addresses rows by picture coordinate (0 is the top) through row().
#include <cstdint>

namespace mx::platform {

struct Surface {
  int width = 0;
  int height = 0;
  uint8_t* bits = nullptr;  // start of the pixel memory
  int stride = 0;           // bytes from one memory row to the next; always width * 4
  bool bottomUp = true;

  [[nodiscard]] bool empty() const { return !bits || width <= 0 || height <= 0; }
  [[nodiscard]] uint32_t* row(int y) {
    int memRow = bottomUp ? height - 1 - y : y;
    return reinterpret_cast<uint32_t*>(bits + static_cast<intptr_t>(memRow) * stride);
  }
  [[nodiscard]] const uint32_t* row(int y) const {
    int memRow = bottomUp ? height - 1 - y : y;
    return reinterpret_cast<const uint32_t*>(bits + static_cast<intptr_t>(memRow) * stride);
  }
  // Signed step in bytes from picture row y to y + 1.
  [[nodiscard]] intptr_t rowStep() const { return bottomUp ? -stride : stride; }
};

// A pixel as a 32-bit value: 0xAARRGGBB on a little-endian machine.
constexpr uint32_t kAlphaShift = 24;

}  // namespace mx::platform
