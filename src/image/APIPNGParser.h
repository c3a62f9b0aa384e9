#pragma once
// PNG reader: turns PNG data into a premultiplied API32bppDIB.
//
// Only IHDR, PLTE, tRNS, IDAT and IEND are read; every ancillary chunk (gAMA, bKGD, tEXt, ...)
// has no effect. Chunk CRCs are checked only when zlib is bound. The image data is inflated by
// zlib when present, else (or when zlib refuses it) by the reader's own decoder.
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::image {

class API32bppDIB;

class APIPNGParser {
 public:
  // Reads inStream[streamStart .. streamStart + streamLength); streamLength 0 means to the end.
  bool LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart = 0,
                  int32_t streamLength = 0, int32_t gdiToken = 0);
  // fileLength receives the size of the file (0 when it cannot be opened).
  bool LoadFile(const host::String& FileName, API32bppDIB& outDIB, int32_t gdiToken, int64_t& fileLength);
  // The whole content of a file already read, under the rules of a file.
  bool LoadFileData(const std::vector<uint8_t>& fileBytes, API32bppDIB& outDIB, int32_t gdiToken = 0);

  [[nodiscard]] int32_t Width() const { return m_width; }
  [[nodiscard]] int32_t Height() const { return m_height; }

 private:
  bool ParsePNG(const uint8_t* src, size_t size, bool fromFile, API32bppDIB& dib);
  // raw holds the whole inflated image, filter bytes included; its rows are unfiltered in place.
  bool decode(uint8_t* raw, API32bppDIB& dib);

  int32_t m_width = 0;
  int32_t m_height = 0;
  uint8_t m_bitDepth = 0;
  uint8_t m_colorType = 0;
  uint8_t m_interlace = 0;
  std::vector<uint8_t> m_palette;
  std::vector<uint8_t> m_trns;
  int32_t m_transColor = -1;
  size_t m_rawSize = 0;  // the uncompressed size IHDR promises
};

}  // namespace mx::image
