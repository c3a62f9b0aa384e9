#pragma once
// Byte builders for BMP and ICO test files, and pixel readers for surfaces.
#include <cstdint>
#include <vector>

#include "image/API32bppDIB.h"

namespace mx::image::test {

inline void le16(std::vector<uint8_t>& o, uint32_t v) {
  o.push_back(static_cast<uint8_t>(v));
  o.push_back(static_cast<uint8_t>(v >> 8));
}
inline void le32(std::vector<uint8_t>& o, uint32_t v) {
  le16(o, v & 0xFFFF);
  le16(o, v >> 16);
}

struct DibSpec {
  uint32_t headerSize = 40;
  int32_t width = 1, height = 1;  // negative height: top-down
  uint16_t bitCount = 24;
  uint32_t compression = 0;
  uint32_t colorsUsed = 0;
  std::vector<uint32_t> palette;  // 0x00RRGGBB
  std::vector<uint32_t> masks;    // written after a 40-byte header, or inside a larger one
  std::vector<uint8_t> bits;      // pixel data exactly as stored
};

// The header, masks and palette of a DIB (no file header).
inline std::vector<uint8_t> dibTables(const DibSpec& s) {
  std::vector<uint8_t> o;
  le32(o, s.headerSize);
  if (s.headerSize == 12) {
    le16(o, static_cast<uint32_t>(s.width));
    le16(o, static_cast<uint32_t>(s.height));
    le16(o, 1);
    le16(o, s.bitCount);
    for (uint32_t c : s.palette) o.insert(o.end(), {uint8_t(c), uint8_t(c >> 8), uint8_t(c >> 16)});
    return o;
  }
  le32(o, static_cast<uint32_t>(s.width));
  le32(o, static_cast<uint32_t>(s.height));
  le16(o, 1);
  le16(o, s.bitCount);
  le32(o, s.compression);
  le32(o, static_cast<uint32_t>(s.bits.size()));
  le32(o, 3780);
  le32(o, 3780);
  le32(o, s.colorsUsed);
  le32(o, 0);
  if (s.headerSize > 40) {
    for (size_t i = 0; i < 4; ++i) le32(o, i < s.masks.size() ? s.masks[i] : 0);
    o.resize(s.headerSize, 0);
  } else {
    for (uint32_t m : s.masks) le32(o, m);
  }
  for (uint32_t c : s.palette) le32(o, c);
  return o;
}

inline std::vector<uint8_t> makeBmp(const DibSpec& s) {
  std::vector<uint8_t> tables = dibTables(s);
  std::vector<uint8_t> o = {'B', 'M'};
  le32(o, static_cast<uint32_t>(14 + tables.size() + s.bits.size()));
  le32(o, 0);
  le32(o, static_cast<uint32_t>(14 + tables.size()));
  o.insert(o.end(), tables.begin(), tables.end());
  o.insert(o.end(), s.bits.begin(), s.bits.end());
  return o;
}

// Pixel (x, y), y from the top, as stored: 0xAARRGGBB premultiplied.
inline uint32_t px(const API32bppDIB& d, int x, int y) {
  const uint8_t* p = d.BitsPointer() + (static_cast<size_t>(d.Height() - 1 - y) * d.Width() + x) * 4;
  return static_cast<uint32_t>(p[0]) | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

// All pixels top row first.
inline std::vector<uint32_t> pixels(const API32bppDIB& d) {
  std::vector<uint32_t> out;
  for (int y = 0; y < d.Height(); ++y)
    for (int x = 0; x < d.Width(); ++x) out.push_back(px(d, x, y));
  return out;
}

// Fills a surface from top-down 0xAARRGGBB premultiplied values.
inline void fill(API32bppDIB& d, int w, int h, const std::vector<uint32_t>& values, ENUM_ALPHA_TYPE kind) {
  d.InitializeDIB(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      uint32_t v = values[static_cast<size_t>(y) * w + x];
      uint8_t* p = d.BitsPointer() + (static_cast<size_t>(h - 1 - y) * w + x) * 4;
      p[0] = uint8_t(v), p[1] = uint8_t(v >> 8), p[2] = uint8_t(v >> 16), p[3] = uint8_t(v >> 24);
    }
  d.Alpha(kind);
}

}  // namespace mx::image::test
