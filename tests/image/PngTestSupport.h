#pragma once
// Builds small PNG files in memory for the reader's tests.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/Deflate.h"

namespace mx::image::test {

inline void putBE32(std::vector<uint8_t>& out, uint32_t v) {
  out.push_back(static_cast<uint8_t>(v >> 24));
  out.push_back(static_cast<uint8_t>(v >> 16));
  out.push_back(static_cast<uint8_t>(v >> 8));
  out.push_back(static_cast<uint8_t>(v));
}

// One chunk with its correct CRC, unless crcOverride is given.
inline void addChunk(std::vector<uint8_t>& png, const char* type, const std::vector<uint8_t>& data,
                     const uint32_t* crcOverride = nullptr) {
  putBE32(png, static_cast<uint32_t>(data.size()));
  size_t typeAt = png.size();
  png.insert(png.end(), type, type + 4);
  png.insert(png.end(), data.begin(), data.end());
  uint32_t crc = platform::Crc32(std::span<const uint8_t>(png.data() + typeAt, data.size() + 4));
  putBE32(png, crcOverride ? *crcOverride : crc);
}

inline std::vector<uint8_t> signature() { return {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A}; }

inline std::vector<uint8_t> ihdr(uint32_t w, uint32_t h, uint8_t depth, uint8_t colorType, uint8_t interlace = 0) {
  std::vector<uint8_t> d;
  putBE32(d, w);
  putBE32(d, h);
  d.insert(d.end(), {depth, colorType, 0, 0, interlace});
  return d;
}

// A whole file: IHDR, the extra chunks given as (type, data) pairs, one IDAT of the zlib-
// compressed filtered rows, IEND.
struct PngSpec {
  uint32_t width = 1, height = 1;
  uint8_t depth = 8, colorType = 2, interlace = 0;
  std::vector<uint8_t> rows;  // filter bytes included
  std::vector<std::pair<std::string, std::vector<uint8_t>>> extra;
  int level = 6;
};

inline std::vector<uint8_t> makePng(const PngSpec& s) {
  std::vector<uint8_t> png = signature();
  addChunk(png, "IHDR", ihdr(s.width, s.height, s.depth, s.colorType, s.interlace));
  for (const auto& [type, data] : s.extra) addChunk(png, type.c_str(), data);
  addChunk(png, "IDAT", platform::ZlibCompress(s.rows, s.level, false));
  addChunk(png, "IEND", {});
  return png;
}

// Sets MX_NO_ZLIB for a scope, restoring the previous state after.
class ScopedNoZlib {
 public:
  explicit ScopedNoZlib(bool noZlib) {
    const char* v = std::getenv("MX_NO_ZLIB");
    m_had = v != nullptr;
    if (v) m_old = v;
    if (noZlib) setenv("MX_NO_ZLIB", "1", 1);
    else unsetenv("MX_NO_ZLIB");
  }
  ~ScopedNoZlib() {
    if (m_had) setenv("MX_NO_ZLIB", m_old.c_str(), 1);
    else unsetenv("MX_NO_ZLIB");
  }

 private:
  bool m_had = false;
  std::string m_old;
};

}  // namespace mx::image::test
