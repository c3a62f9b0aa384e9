#pragma once
// The one size limit the picture readers share. A header of a few bytes can claim a picture of
// any size; every reader checks the claim here (and against the data it has) before it makes
// the surface, so that hostile or damaged files are refused instead of allocating gigabytes.
#include <cstddef>
#include <cstdint>

namespace mx::image {

// The largest surface, in bytes, that a reader makes from a file: 256 MB, 8192 x 8192 pixels.
constexpr size_t kMaxDecodedBytes = size_t{1} << 28;

// True when a width x height surface of 4 bytes a pixel stays within kMaxDecodedBytes.
[[nodiscard]] constexpr bool DecodedSizeAllowed(int64_t width, int64_t height) {
  if (width <= 0 || height <= 0) return false;
  // Each side is first held below the limit so that the product cannot overflow.
  constexpr auto limit = static_cast<int64_t>(kMaxDecodedBytes / 4);
  return width <= limit && height <= limit && width * height <= limit;
}

}  // namespace mx::image
