#pragma once
// PNG encoding of a 32-bit surface: 8 bits per sample, RGBA (colour type 6) or RGB (type 2),
// no interlace, an adaptive filter per row, zlib-compressed image data.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Surface.h"

namespace mx::platform {

struct PngChunk {
  char type[4] = {};
  std::vector<uint8_t> data;
};

struct PngEncodeOptions {
  // The surface holds premultiplied colour (the platform's usual form): each channel is turned
  // back into straight colour as c * 255 / alpha, truncating, except for alpha 0 and 255 where
  // the stored value is written as it is. False writes the bytes as they are.
  bool premultiplied = true;
  // Colour type 2: the alpha byte is left out (and no un-premultiplying happens).
  bool dropAlpha = false;
  int level = 6;  // zlib level 0..9
  bool allowSystemZlib = true;
  // Ancillary chunks (pHYs, tEXt, ...) written between IHDR and the image data.
  std::vector<PngChunk> extraChunks;
};

// The PNG file bytes, or empty for an empty surface.
[[nodiscard]] std::vector<uint8_t> EncodePng(const Surface& surface, const PngEncodeOptions& options = {});
// Encodes and writes a file; false when the surface is empty or the file cannot be written.
bool WritePngFile(const Surface& surface, const std::string& path, const PngEncodeOptions& options = {});

// Appends one chunk: length, type, data, CRC.
void AppendPngChunk(std::vector<uint8_t>& out, const char type[4], const uint8_t* data, size_t size);

}  // namespace mx::platform
