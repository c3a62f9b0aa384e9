#pragma once
// ICO and CUR reader.
//
//   file:  reserved 0 | type 1 (icon) or 2 (cursor) | count      6 bytes
//          count x { width, height, colours, 0, planes/hot-x, bits/hot-y, size, offset }   16 bytes
//   entry: a PNG file, or a DIB whose height is doubled: the colour (XOR) rows, then a 1-bit
//          AND mask of the same size, both bottom-up and DWORD-aligned
//
// One entry is loaded: the one nearest to the wanted size, then to the wanted depth (see
// RankEntries). If it cannot be decoded the next in rank is tried. A 32-bit entry whose alpha
// plane is not all zero uses that (straight) alpha; every other entry takes its transparency from
// the AND mask, where a set bit is a transparent pixel (screen-inverting pixels of old icons are
// transparent too). PNG entries go to the PNG reader and report ImageType 11.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Types.h"

namespace mx::image {

class API32bppDIB;

struct IconEntry {
  int32_t width = 0;
  int32_t height = 0;
  int32_t bitDepth = 0;  // from the image's own header; directory fields are often 0
  bool isPng = false;
  uint32_t offset = 0;  // from the start of the icon data
  uint32_t size = 0;
  // Cursors keep their hot spot where icons keep planes and bit count.
  int32_t hotspotX = 0;
  int32_t hotspotY = 0;
};

class APIICOParser {
 public:
  // iconCx/iconCy 0 stand for the system's icon size (32); when only one is 0 it follows the
  // other. iconBitDepth 0 stands for 32. streamLength 0 means to the end.
  bool LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t iconCx = 0, int32_t iconCy = 0,
                  int32_t iconBitDepth = 32, int32_t gdiToken = 0, int32_t streamStart = 0,
                  int32_t streamLength = 0);
  // Copies a platform icon or cursor (colour and mask bitmaps) into the surface.
  bool ConvertstdPicTo32bpp(platform::HICON handle, API32bppDIB& outDIB);

  // The directory read by the last LoadStream (also when no entry could be decoded).
  [[nodiscard]] const std::vector<IconEntry>& Entries() const { return m_entries; }
  // The entry the surface holds, or -1.
  [[nodiscard]] int32_t SelectedEntry() const { return m_selected; }
  [[nodiscard]] bool IsCursor() const { return m_cursor; }

  // Entry indices from best to worst for a wanted size and depth: the smallest size distance
  // (|dw| + |dh|), a larger entry before a smaller one at equal distance, then the deepest entry
  // not above the wanted depth, else the shallowest above it; ties keep file order.
  [[nodiscard]] static std::vector<int32_t> RankEntries(const std::vector<IconEntry>& entries, int32_t iconCx,
                                                        int32_t iconCy, int32_t iconBitDepth);

 private:
  bool readDirectory(const uint8_t* p, size_t size);
  bool loadEntry(const std::vector<uint8_t>& inStream, size_t base, const IconEntry& e, API32bppDIB& outDIB,
                 int32_t gdiToken);

  std::vector<IconEntry> m_entries;
  int32_t m_selected = -1;
  bool m_cursor = false;
};

}  // namespace mx::image
