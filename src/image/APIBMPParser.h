#pragma once
// BMP reader and writer, and the decoder of device-independent bitmaps that the icon reader and
// the clipboard share.
//
// Reading covers the header sizes in use (12-byte core, 40-byte info, 52/56-byte extended,
// 108-byte v4, 124-byte v5), 1, 4, 8, 16, 24 and 32 bits, RLE4 and RLE8, bottom-up and top-down
// rows and BI_BITFIELDS (with or without an alpha mask). Everything lands premultiplied:
//
//   1..24 bits, or bit fields without an alpha mask   ImageType 1, Alpha 0 (opaque)
//   32 bits BI_RGB, or a non-zero alpha mask          classified by ValidateAlphaChannel: an
//                                                     all-0 or all-255 alpha plane is opaque
//                                                     (type 1), else type 6 or 7
//   RLE with pixels skipped by a delta or an early    ImageType 1, Alpha 1: skipped pixels are
//   end of line / end of bitmap                       transparent
//
// RLE runs that pass the end of a row are clipped at the row's end; a delta or end of line that
// leaves the picture ends decoding. Data that stops before the pixels are complete (plain rows
// short, an RLE stream cut inside a code or before the last row) is refused.
//
// The header's size is checked against the data before the surface is made: uncompressed rows
// must all be present, an RLE stream must read to its end, and no picture may need more than
// kMaxDecodedBytes of surface. A few dozen bytes of header cannot make the reader allocate
// gigabytes.
//
// Writing: an opaque surface, or any surface when a fill colour is given, becomes 24 bits
// (transparent parts blended over that colour); a surface with alpha becomes 32 bits with a v5
// header whose bit fields carry the alpha mask, straight alpha unless the premultiplied pixels are
// asked for.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/String.h"
#include "image/DecodeLimits.h"
#include "platform/Types.h"

namespace mx::image {

class API32bppDIB;

namespace bmp {

// The parts of a DIB header that decoding needs, normalised across header versions.
struct DibLayout {
  uint32_t headerSize = 0;
  int32_t width = 0;
  int32_t height = 0;  // always positive; topDown tells the row order
  bool topDown = false;
  uint16_t bitCount = 0;
  uint32_t compression = 0;
  uint32_t masks[4] = {};  // red, green, blue, alpha (alpha 0: none)
  uint32_t paletteCount = 0;
  uint32_t paletteEntrySize = 4;  // 3 for the core header
  size_t paletteOffset = 0;       // from the header's start
  size_t afterTables = 0;         // header + masks + palette: where packed pixels follow
  uint32_t sizeImage = 0;
};

constexpr uint32_t kBI_RGB = 0, kBI_RLE8 = 1, kBI_RLE4 = 2, kBI_BITFIELDS = 3, kBI_ALPHABITFIELDS = 6;

// Reads and checks a header at p (size bytes available from the header's start, palette
// included). False for anything this reader cannot decode.
bool ParseDibHeader(const uint8_t* p, size_t size, DibLayout& out);

// Bytes of one packed row, DWORD-aligned.
[[nodiscard]] size_t DibStride(int32_t width, uint16_t bitCount);

// Checks, without decoding, that the pixel data can back the picture the header describes:
// every uncompressed row present, or an RLE stream that reads through without being cut.
[[nodiscard]] bool PixelDataSufficient(const DibLayout& h, const uint8_t* bits, size_t bitsSize);

// Decodes the pixels into straight BGRA. dstTop points at picture row 0 (the top row) and
// dstStride steps one row down the picture (negative for a bottom-up surface). Pixels that an
// RLE stream skips are left as they are (callers start from zero) and reported in anySkipped.
// p/size is the header block (for the palette); bits/bitsSize the pixel data.
bool DecodeDibPixels(const DibLayout& h, const uint8_t* p, size_t size, const uint8_t* bits, size_t bitsSize,
                     uint8_t* dstTop, ptrdiff_t dstStride, bool& anySkipped);

}  // namespace bmp

class APIBMPParser {
 public:
  // A BMP file in inStream[streamStart .. streamStart + streamLength); streamLength 0 means to
  // the end. On failure the surface is left empty.
  bool LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart = 0,
                  int32_t streamLength = 0);
  // A packed DIB: header, optional masks and palette, then the pixels (the clipboard's CF_DIB).
  bool LoadPackedDIB(const uint8_t* data, size_t size, API32bppDIB& outDIB);
  // Copies a platform bitmap into the surface. Drawing leaves the alpha byte at 0, so an
  // all-zero alpha plane is read as an opaque picture.
  bool ConvertstdPicTo32bpp(platform::HBITMAP handle, API32bppDIB& outDIB);

  // FileName empty: the file goes to outBytes; otherwise to the file. TransparentFillColor is
  // an OLE_COLOR to blend transparency over (24-bit output), or negative for none.
  bool SaveAsBMP(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes,
                 bool KeepPreMultipliedPixels = false, int32_t TransparentFillColor = -1);
  // The packed DIB form of the same output (no file header), as the clipboard carries it.
  bool SavePackedDIB(const API32bppDIB& surface, std::vector<uint8_t>& outBytes, bool KeepPreMultipliedPixels = false,
                     int32_t TransparentFillColor = -1);

 private:
  bool loadDib(const bmp::DibLayout& h, const uint8_t* p, size_t size, const uint8_t* bits, size_t bitsSize,
               API32bppDIB& outDIB);
  bool encode(const API32bppDIB& surface, std::vector<uint8_t>& out, bool withFileHeader, bool keepPremultiplied,
              int32_t fillColor);
};

}  // namespace mx::image
