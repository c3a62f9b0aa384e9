#pragma once
// Icons made in memory, the way an icon resource image is laid out in an icon file:
//
//   BITMAPINFOHEADER   biHeight = 2 x height (colour rows, then the mask rows)
//   palette            2^depth RGBQUADs, for depths 1, 4 and 8 only
//   colour rows        bottom-up, each padded to 4 bytes; 32-bit rows carry straight alpha
//   AND mask rows      1 bit per pixel, bottom-up, padded to 4 bytes; 1 = transparent
//
// Depth is chosen from the picture: any partial alpha, or more than 256 colours, keeps 32 bits;
// otherwise the smallest of 1, 4 and 8 that holds every colour (black joins the palette when
// some pixel is transparent, since a transparent pixel's colour must be 0 for the mask to work).
#include <cstdint>
#include <span>
#include <vector>

#include "platform/Types.h"

namespace mx::image {
class API32bppDIB;
}

namespace mx::imagelist {

// The resource image of a surface (premultiplied, bottom-up); bitDepth receives the depth used.
// Empty for an empty surface.
[[nodiscard]] std::vector<uint8_t> BuildIconResource(const image::API32bppDIB& picture, int32_t& bitDepth);
// An icon handle from a resource image (the caller owns and destroys it), or 0 when the bytes
// are not one.
[[nodiscard]] platform::HICON CreateIconFromResourceImage(std::span<const uint8_t> resource);

}  // namespace mx::imagelist
