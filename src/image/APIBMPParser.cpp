// BMP reading and writing.
#include "image/APIBMPParser.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <span>

#include "image/API32bppDIB.h"
#include "platform/Gdi.h"
#include "platform/SysColors.h"

namespace mx::image {

namespace {

inline uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
inline uint32_t le32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}
inline void put16(std::vector<uint8_t>& o, uint32_t v) {
  o.push_back(static_cast<uint8_t>(v));
  o.push_back(static_cast<uint8_t>(v >> 8));
}
inline void put32(std::vector<uint8_t>& o, uint32_t v) {
  put16(o, v & 0xFFFF);
  put16(o, v >> 16);
}

constexpr size_t kFileHeader = 14;
// Pictures beyond this many pixels on a side are taken as corrupt headers rather than tried.
constexpr int32_t kMaxSide = 1 << 15;

// A bit-field channel: where it sits and how to widen it to 8 bits.
struct Channel {
  uint32_t mask = 0;
  int shift = 0;
  int bits = 0;
  [[nodiscard]] uint8_t get(uint32_t v) const {
    if (!mask) return 0;
    uint32_t x = (v & mask) >> shift;
    if (bits >= 8) return static_cast<uint8_t>(x >> (bits - 8));
    // Narrow fields are stretched so that their maximum becomes 255 (5 bits: 31 -> 255).
    uint32_t max = (1u << bits) - 1;
    return static_cast<uint8_t>((x * 255 + max / 2) / max);
  }
};

bool makeChannel(uint32_t mask, Channel& c) {
  c = Channel{};
  if (!mask) return true;
  c.mask = mask;
  c.shift = std::countr_zero(mask);
  uint32_t run = mask >> c.shift;
  c.bits = std::popcount(run);
  // A field must be one contiguous run of bits.
  return (run & (run + 1)) == 0;
}

// A fill colour for transparency: an RGB value, or a system colour (high bit set, index in the
// low byte). Any other negative value, -1 included, means none.
bool resolveFill(int32_t color, uint32_t& rgb) {
  uint32_t c = static_cast<uint32_t>(color);
  if (color >= 0) {
    rgb = c & 0xFFFFFF;
    return true;
  }
  if ((c & 0xFFFFFF00u) == 0x80000000u) {
    rgb = platform::GetSysColor(static_cast<int>(c & 0xFF)) & 0xFFFFFF;
    return true;
  }
  return false;
}

}  // namespace

namespace bmp {

namespace {

// Walks an RLE4 or RLE8 stream from the bottom-left, calling put(x, y, index) for every pixel
// that lands inside the picture (y is a picture row, 0 = top, so it counts down). False when
// the stream is cut before the end of the bitmap or before the picture is full.
template <class Put>
bool walkRle(const DibLayout& h, const uint8_t* bits, size_t bitsSize, Put&& put) {
  const int32_t w = h.width;
  const bool four = h.compression == kBI_RLE4;
  size_t n = bitsSize;
  if (h.sizeImage && h.sizeImage < n) n = h.sizeImage;
  int32_t x = 0, y = h.height - 1;
  size_t i = 0;
  auto emit = [&](uint32_t index) {
    // Runs past the row's end are clipped.
    if (x < w && y >= 0) put(x, y, index);
    ++x;
  };
  for (;;) {
    if (y < 0) return true;  // the picture is full; whatever follows is ignored
    if (i + 2 > n) return false;  // cut before the end of the bitmap
    uint8_t count = bits[i], value = bits[i + 1];
    i += 2;
    if (count > 0) {
      for (uint32_t k = 0; k < count; ++k) emit(four ? ((k & 1) ? value & 0x0F : value >> 4) : value);
      continue;
    }
    switch (value) {
      case 0:  // end of line
        x = 0;
        --y;
        break;
      case 1:  // end of bitmap
        return true;
      case 2:  // delta: right and up
        if (i + 2 > n) return false;
        x += bits[i];
        y -= bits[i + 1];
        i += 2;
        break;
      default: {  // absolute run of `value` pixels, padded to a 16-bit boundary
        size_t bytes = four ? (static_cast<size_t>(value) + 1) / 2 : value;
        if (i + bytes > n) return false;
        for (uint32_t k = 0; k < value; ++k)
          emit(four ? ((k & 1) ? bits[i + k / 2] & 0x0F : bits[i + k / 2] >> 4) : bits[i + k]);
        i += (bytes + 1) & ~size_t{1};
        break;
      }
    }
  }
}

}  // namespace

bool PixelDataSufficient(const DibLayout& h, const uint8_t* bits, size_t bitsSize) {
  if (h.width <= 0 || h.height <= 0) return false;
  if (h.compression == kBI_RLE8 || h.compression == kBI_RLE4)
    return bits && walkRle(h, bits, bitsSize, [](int32_t, int32_t, uint32_t) {});
  return DibStride(h.width, h.bitCount) * static_cast<size_t>(h.height) <= bitsSize;
}

size_t DibStride(int32_t width, uint16_t bitCount) {
  return ((static_cast<size_t>(width) * bitCount + 31) / 32) * 4;
}

bool ParseDibHeader(const uint8_t* p, size_t size, DibLayout& h) {
  h = DibLayout{};
  if (size < 12) return false;
  h.headerSize = le32(p);
  int64_t width = 0, height = 0;
  if (h.headerSize == 12) {
    // The OS/2 core header: 16-bit sizes, no compression, 3-byte palette entries.
    width = le16(p + 4);
    height = static_cast<int16_t>(le16(p + 6));
    h.bitCount = le16(p + 10);
    h.compression = kBI_RGB;
    h.paletteEntrySize = 3;
  } else {
    if (h.headerSize < 40 || h.headerSize > 124 || size < h.headerSize) return false;
    width = static_cast<int32_t>(le32(p + 4));
    height = static_cast<int32_t>(le32(p + 8));
    h.bitCount = le16(p + 14);
    h.compression = le32(p + 16);
    h.sizeImage = le32(p + 20);
    h.paletteCount = le32(p + 32);
  }
  if (height < 0) {
    h.topDown = true;
    height = -height;
  }
  if (width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide) return false;
  h.width = static_cast<int32_t>(width);
  h.height = static_cast<int32_t>(height);

  size_t pos = h.headerSize;
  switch (h.compression) {
    case kBI_RGB:
      if (h.bitCount != 1 && h.bitCount != 4 && h.bitCount != 8 && h.bitCount != 16 && h.bitCount != 24 &&
          h.bitCount != 32)
        return false;
      if (h.bitCount == 16) {
        h.masks[0] = 0x7C00, h.masks[1] = 0x03E0, h.masks[2] = 0x001F;
      } else if (h.bitCount == 32) {
        h.masks[0] = 0xFF0000, h.masks[1] = 0xFF00, h.masks[2] = 0xFF, h.masks[3] = 0xFF000000;
      }
      break;
    case kBI_RLE8:
    case kBI_RLE4:
      if (h.bitCount != (h.compression == kBI_RLE8 ? 8 : 4)) return false;
      // RLE streams run from the bottom row; a top-down RLE picture is not defined.
      if (h.topDown) return false;
      break;
    case kBI_BITFIELDS:
    case kBI_ALPHABITFIELDS: {
      if (h.bitCount != 16 && h.bitCount != 32) return false;
      int count = h.compression == kBI_ALPHABITFIELDS ? 4 : 3;
      if (h.headerSize == 40) {
        // The masks follow the short header.
        if (size < pos + 4 * static_cast<size_t>(count)) return false;
        for (int i = 0; i < count; ++i) h.masks[i] = le32(p + pos + 4 * i);
        pos += 4 * static_cast<size_t>(count);
      } else {
        if (h.headerSize < 52) return false;
        for (int i = 0; i < 3; ++i) h.masks[i] = le32(p + 40 + 4 * i);
        if (h.headerSize >= 56) h.masks[3] = le32(p + 52);
      }
      if (h.bitCount == 16)
        for (uint32_t& m : h.masks)
          if (m > 0xFFFF) return false;
      Channel c;
      for (uint32_t m : h.masks)
        if (!makeChannel(m, c)) return false;
      if (!(h.masks[0] | h.masks[1] | h.masks[2])) return false;
      break;
    }
    default:
      return false;  // JPEG, PNG and printer compressions are not bitmaps this reader draws
  }

  if (h.bitCount <= 8) {
    uint32_t full = 1u << h.bitCount;
    if (h.paletteCount == 0 || h.paletteCount > full) h.paletteCount = full;
  } else if (h.paletteCount > 256) {
    // Optional table of a true-colour picture; only its size matters (it is skipped).
    return false;
  }
  h.paletteOffset = pos;
  size_t tableBytes = static_cast<size_t>(h.paletteCount) * h.paletteEntrySize;
  if (h.bitCount <= 8 && size < pos + tableBytes) return false;
  h.afterTables = pos + tableBytes;
  return true;
}

bool DecodeDibPixels(const DibLayout& h, const uint8_t* p, size_t size, const uint8_t* bits, size_t bitsSize,
                     uint8_t* dstTop, ptrdiff_t dstStride, bool& anySkipped) {
  anySkipped = false;
  const int32_t w = h.width, hgt = h.height;
  // The palette as opaque BGRA; indices past its end read as black.
  uint32_t palette[256] = {};
  for (uint32_t& c : palette) c = 0xFF000000u;
  if (h.bitCount <= 8) {
    if (h.paletteOffset + static_cast<size_t>(h.paletteCount) * h.paletteEntrySize > size) return false;
    for (uint32_t i = 0; i < h.paletteCount && i < 256; ++i) {
      const uint8_t* e = p + h.paletteOffset + static_cast<size_t>(i) * h.paletteEntrySize;
      palette[i] = 0xFF000000u | (uint32_t{e[2]} << 16) | (uint32_t{e[1]} << 8) | e[0];
    }
  }
  auto rowOut = [&](int32_t y) { return dstTop + dstStride * static_cast<ptrdiff_t>(y); };
  auto putIndex = [&](int32_t x, int32_t y, uint32_t index) {
    uint32_t c = palette[index & 0xFF];
    std::memcpy(rowOut(y) + static_cast<size_t>(x) * 4, &c, 4);
  };

  if (h.compression == kBI_RLE8 || h.compression == kBI_RLE4) {
    // Every pixel starts transparent; anySkipped is settled at the end by what was written.
    std::vector<uint8_t> written(static_cast<size_t>(w) * hgt, 0);
    bool ok = walkRle(h, bits, bitsSize, [&](int32_t x, int32_t y, uint32_t index) {
      putIndex(x, y, index);
      written[static_cast<size_t>(y) * w + x] = 1;
    });
    if (!ok) return false;
    anySkipped = std::find(written.begin(), written.end(), uint8_t{0}) != written.end();
    return true;
  }

  const size_t stride = DibStride(w, h.bitCount);
  if (stride * static_cast<size_t>(hgt) > bitsSize) return false;
  Channel ch[4];
  for (int k = 0; k < 4; ++k) makeChannel(h.masks[k], ch[k]);
  for (int32_t row = 0; row < hgt; ++row) {
    // Stored rows run bottom-up unless the height was negative.
    const uint8_t* src = bits + stride * static_cast<size_t>(h.topDown ? row : hgt - 1 - row);
    uint8_t* out = rowOut(row);
    switch (h.bitCount) {
      case 1:
      case 4:
      case 8: {
        const int bpp = h.bitCount, perByte = 8 / bpp;
        const uint32_t mask = (1u << bpp) - 1;
        for (int32_t x = 0; x < w; ++x) {
          uint8_t byte = src[x / perByte];
          int shift = 8 - bpp * (x % perByte + 1);
          uint32_t c = palette[(byte >> shift) & mask];
          std::memcpy(out + static_cast<size_t>(x) * 4, &c, 4);
        }
        break;
      }
      case 24:
        for (int32_t x = 0; x < w; ++x, src += 3, out += 4) {
          out[0] = src[0], out[1] = src[1], out[2] = src[2], out[3] = 255;
        }
        break;
      case 16:
      case 32: {
        const int bytes = h.bitCount / 8;
        for (int32_t x = 0; x < w; ++x, src += bytes, out += 4) {
          uint32_t v = bytes == 2 ? le16(src) : le32(src);
          out[0] = ch[2].get(v);
          out[1] = ch[1].get(v);
          out[2] = ch[0].get(v);
          out[3] = h.masks[3] ? ch[3].get(v) : 255;
        }
        break;
      }
      default:
        return false;
    }
  }
  return true;
}

}  // namespace bmp

bool APIBMPParser::loadDib(const bmp::DibLayout& h, const uint8_t* p, size_t size, const uint8_t* bits,
                           size_t bitsSize, API32bppDIB& outDIB) {
  try {
    // Settled before the surface exists: a header may claim far more than its data holds.
    if (!DecodedSizeAllowed(h.width, h.height) || !bmp::PixelDataSufficient(h, bits, bitsSize)) return false;
    if (!outDIB.InitializeDIB(h.width, h.height)) return false;
    const int32_t w = outDIB.Width();
    uint8_t* top = outDIB.BitsPointer() + static_cast<size_t>(h.height - 1) * w * 4;
    bool skipped = false;
    if (!bmp::DecodeDibPixels(h, p, size, bits, bitsSize, top, -static_cast<ptrdiff_t>(w) * 4, skipped)) {
      outDIB.DestroyDIB();
      return false;
    }
    std::span<uint8_t> px(outDIB.BitsPointer(), static_cast<size_t>(w) * h.height * 4);
    if (h.masks[3]) {
      // An alpha plane is classified rather than trusted: the fourth byte of a plain 32-bit
      // bitmap may be padding, and an all-zero plane means an ordinary opaque picture.
      int32_t type = imgNone;
      ENUM_ALPHA_TYPE kind = API32bppDIB::ValidateAlphaChannel(px, true, type);
      outDIB.SetImageType(static_cast<ENUM_IMAGE_FORMAT>(type));
      outDIB.Alpha(type == imgBitmap ? AlphaNone : kind);
    } else {
      outDIB.SetImageType(imgBitmap);
      outDIB.Alpha(skipped ? AlphaSimple : AlphaNone);
    }
    return true;
  } catch (...) {
    outDIB.DestroyDIB();
    return false;
  }
}

bool APIBMPParser::LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart,
                              int32_t streamLength) {
  outDIB.DestroyDIB();
  if (streamStart < 0 || static_cast<size_t>(streamStart) >= inStream.size()) return false;
  size_t size = inStream.size() - static_cast<size_t>(streamStart);
  if (streamLength > 0 && static_cast<size_t>(streamLength) < size) size = static_cast<size_t>(streamLength);
  const uint8_t* f = inStream.data() + streamStart;
  if (size < kFileHeader + 12 || f[0] != 'B' || f[1] != 'M') return false;

  bmp::DibLayout h;
  if (!bmp::ParseDibHeader(f + kFileHeader, size - kFileHeader, h)) return false;
  size_t offBits = le32(f + 10);
  // A zero or impossible offset is taken as "right after the tables", as many writers mean it.
  if (offBits < kFileHeader + h.afterTables || offBits >= size) {
    if (offBits != 0 && offBits >= size) return false;
    offBits = kFileHeader + h.afterTables;
  }
  if (offBits >= size) return false;
  if (!loadDib(h, f + kFileHeader, size - kFileHeader, f + offBits, size - offBits, outDIB)) {
    outDIB.DestroyDIB();
    return false;
  }
  return true;
}

bool APIBMPParser::LoadPackedDIB(const uint8_t* data, size_t size, API32bppDIB& outDIB) {
  outDIB.DestroyDIB();
  bmp::DibLayout h;
  if (!data || !bmp::ParseDibHeader(data, size, h)) return false;
  // A true-colour packed DIB may still carry a palette; it sits between header and pixels.
  size_t start = h.bitCount <= 8 ? h.afterTables : h.paletteOffset + static_cast<size_t>(h.paletteCount) * 4;
  if (start >= size) return false;
  if (!loadDib(h, data, size, data + start, size - start, outDIB)) {
    outDIB.DestroyDIB();
    return false;
  }
  return true;
}

bool APIBMPParser::ConvertstdPicTo32bpp(platform::HBITMAP handle, API32bppDIB& outDIB) {
  using namespace platform;
  outDIB.DestroyDIB();
  if (!handle || GetObjectType(handle) != OBJ_BITMAP) return false;
  BITMAP bm{};
  if (!GetObject(handle, sizeof(bm), &bm) || bm.bmWidth <= 0 || bm.bmHeight == 0) return false;
  int32_t height = bm.bmHeight < 0 ? -bm.bmHeight : bm.bmHeight;
  if (!outDIB.InitializeDIB(bm.bmWidth, height)) return false;
  BITMAPINFO info{};
  info.bmiHeader.biWidth = bm.bmWidth;
  info.bmiHeader.biHeight = height;  // bottom-up, as the surface
  info.bmiHeader.biBitCount = 32;
  if (GetDIBits(0, handle, 0, static_cast<UINT>(height), outDIB.BitsPointer(), &info, DIB_RGB_COLORS) != height) {
    outDIB.DestroyDIB();
    return false;
  }
  std::span<uint8_t> px(outDIB.BitsPointer(), static_cast<size_t>(bm.bmWidth) * height * 4);
  int32_t type = imgNone;
  ENUM_ALPHA_TYPE kind = API32bppDIB::ValidateAlphaChannel(px, true, type);
  outDIB.SetImageType(static_cast<ENUM_IMAGE_FORMAT>(type));
  outDIB.Alpha(type == imgBitmap ? AlphaNone : kind);
  return true;
}

bool APIBMPParser::encode(const API32bppDIB& surface, std::vector<uint8_t>& out, bool withFileHeader,
                          bool keepPremultiplied, int32_t fillColor) {
  if (!surface.Handle()) return false;
  const int32_t w = surface.Width(), hgt = surface.Height();
  const bool hasAlpha = surface.Alpha() != AlphaNone;
  uint32_t unused = 0;
  const bool use32 = hasAlpha && !resolveFill(fillColor, unused);
  const uint16_t bpp = use32 ? 32 : 24;
  const size_t stride = bmp::DibStride(w, bpp);
  const size_t imageBytes = stride * static_cast<size_t>(hgt);
  const uint32_t headerSize = use32 ? 124 : 40;
  const size_t offBits = (withFileHeader ? kFileHeader : 0) + headerSize;
  if (offBits + imageBytes > 0xFFFFFFFFu) return false;

  out.clear();
  out.reserve(offBits + imageBytes);
  if (withFileHeader) {
    out.push_back('B');
    out.push_back('M');
    put32(out, static_cast<uint32_t>(offBits + imageBytes));
    put32(out, 0);
    put32(out, static_cast<uint32_t>(offBits));
  }
  put32(out, headerSize);
  put32(out, static_cast<uint32_t>(w));
  put32(out, static_cast<uint32_t>(hgt));  // positive: bottom-up, the surface's own order
  put16(out, 1);
  put16(out, bpp);
  put32(out, use32 ? bmp::kBI_BITFIELDS : bmp::kBI_RGB);
  put32(out, static_cast<uint32_t>(imageBytes));
  put32(out, 3780);  // 96 dpi in pixels per metre
  put32(out, 3780);
  put32(out, 0);
  put32(out, 0);
  if (use32) {
    put32(out, 0x00FF0000);
    put32(out, 0x0000FF00);
    put32(out, 0x000000FF);
    put32(out, 0xFF000000);
    put32(out, 0x73524742);  // 'sRGB'
    out.insert(out.end(), 36 + 12, 0);  // end points and gamma, unused with sRGB
    put32(out, 4);                      // LCS_GM_IMAGES
    put32(out, 0);
    put32(out, 0);
    put32(out, 0);
  }

  uint32_t fill = 0;
  resolveFill(fillColor, fill);
  const uint32_t fr = fill & 0xFF, fg = (fill >> 8) & 0xFF, fb = (fill >> 16) & 0xFF;

  const uint8_t* bits = surface.BitsPointer();
  std::vector<uint8_t> row(stride, 0);
  for (int32_t r = 0; r < hgt; ++r) {
    // Memory rows of the surface are already bottom-up: copy them in order.
    const uint8_t* s = bits + static_cast<size_t>(r) * w * 4;
    uint8_t* d = row.data();
    for (int32_t x = 0; x < w; ++x, s += 4) {
      uint32_t a = s[3];
      if (use32) {
        if (keepPremultiplied || a == 0 || a == 255) {
          d[0] = s[0], d[1] = s[1], d[2] = s[2];
        } else {
          d[0] = static_cast<uint8_t>(s[0] * 255 / a);
          d[1] = static_cast<uint8_t>(s[1] * 255 / a);
          d[2] = static_cast<uint8_t>(s[2] * 255 / a);
        }
        d[3] = static_cast<uint8_t>(a);
        d += 4;
      } else if (!hasAlpha || a == 255) {
        d[0] = s[0], d[1] = s[1], d[2] = s[2];
        d += 3;
      } else {
        // Premultiplied over an opaque colour: c + fill x (255 - a) / 255.
        uint32_t inv = 255 - a;
        d[0] = static_cast<uint8_t>(s[0] + fb * inv / 255);
        d[1] = static_cast<uint8_t>(s[1] + fg * inv / 255);
        d[2] = static_cast<uint8_t>(s[2] + fr * inv / 255);
        d += 3;
      }
    }
    out.insert(out.end(), row.begin(), row.end());
  }
  return true;
}

bool APIBMPParser::SaveAsBMP(const API32bppDIB& surface, const host::String& FileName,
                             std::vector<uint8_t>& outBytes, bool KeepPreMultipliedPixels,
                             int32_t TransparentFillColor) {
  std::FILE* file = nullptr;
  if (!FileName.empty()) {
    file = std::fopen(host::ToUtf8(FileName).c_str(), "wb");
    if (!file) return false;
  }
  std::vector<uint8_t> out;
  bool ok = false;
  try {
    ok = encode(surface, out, true, KeepPreMultipliedPixels, TransparentFillColor);
  } catch (...) {
    ok = false;
  }
  if (!file) {
    if (ok) outBytes = std::move(out);
    return ok;
  }
  if (ok) ok = std::fwrite(out.data(), 1, out.size(), file) == out.size();
  if (std::fclose(file) != 0) ok = false;
  if (!ok) std::remove(host::ToUtf8(FileName).c_str());
  return ok;
}

bool APIBMPParser::SavePackedDIB(const API32bppDIB& surface, std::vector<uint8_t>& outBytes,
                                 bool KeepPreMultipliedPixels, int32_t TransparentFillColor) {
  try {
    return encode(surface, outBytes, false, KeepPreMultipliedPixels, TransparentFillColor);
  } catch (...) {
    return false;
  }
}

}  // namespace mx::image
