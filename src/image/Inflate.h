#pragma once
// The PNG reader's own DEFLATE decoder (stored, fixed and dynamic blocks), so that PNG data can
// be read on a machine without zlib.
#include <cstddef>
#include <cstdint>
#include <span>

namespace mx::image {

struct InflateResult {
  bool ok = false;
  size_t produced = 0;  // bytes written to the output
};

// Decodes raw DEFLATE data (no zlib header) into out. Output that would run past the end of out
// fails, as does running out of input before the final block ends; a final block that ends
// early succeeds with fewer bytes produced.
//
// deflate64Lengths: length symbol 285 is followed by 16 extra bits and means that value + 3,
// as in Deflate64, instead of plain DEFLATE's fixed 258.
[[nodiscard]] InflateResult InflateRaw(std::span<const uint8_t> in, std::span<uint8_t> out,
                                       bool deflate64Lengths = false);

}  // namespace mx::image
