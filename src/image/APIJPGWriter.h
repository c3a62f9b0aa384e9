#pragma once
// JPEG writer on libjpeg-turbo: baseline, 4:2:0 sampling, optimised Huffman tables.
//
// JPEG has no transparency: every pixel is laid over an opaque fill colour first (the
// premultiplied colour plus the fill colour times 1 - alpha), so a transparent pixel comes out as
// the fill colour.
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::image {

class API32bppDIB;

class APIJPGWriter {
 public:
  // Quality 1..100 (values outside are held to that range). TransparentFillColor is an
  // OLE_COLOR; -1 (or any negative value that is no system colour) means white. FileName empty:
  // the file goes to outBytes; otherwise to the file.
  bool SaveToJPG(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes,
                 int32_t Quality = 90, int32_t TransparentFillColor = -1);
};

}  // namespace mx::image
