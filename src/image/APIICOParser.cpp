// ICO and CUR reading.
#include "image/APIICOParser.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "image/API32bppDIB.h"
#include "image/DecodeLimits.h"
#include "image/APIBMPParser.h"
#include "image/APIPNGParser.h"
#include "platform/Gdi.h"

namespace mx::image {

namespace {

inline uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
inline uint32_t le32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}

constexpr uint8_t kPngMagic[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr int32_t kSystemIconSize = 32;

// Straight alpha to premultiplied, and the alpha kind it gives.
ENUM_ALPHA_TYPE premultiply(std::span<uint8_t> px) {
  bool partial = false, transparent = false;
  for (size_t i = 0; i + 3 < px.size(); i += 4) {
    uint8_t* p = px.data() + i;
    uint32_t a = p[3];
    if (a == 255) continue;
    if (a == 0) {
      std::memset(p, 0, 4);
      transparent = true;
      continue;
    }
    partial = true;
    p[0] = static_cast<uint8_t>(p[0] * a / 255);
    p[1] = static_cast<uint8_t>(p[1] * a / 255);
    p[2] = static_cast<uint8_t>(p[2] * a / 255);
  }
  return partial ? AlphaComplex : transparent ? AlphaSimple : AlphaNone;
}

bool alphaPlaneEmpty(std::span<const uint8_t> px) {
  for (size_t i = 3; i < px.size(); i += 4)
    if (px[i]) return false;
  return true;
}

}  // namespace

std::vector<int32_t> APIICOParser::RankEntries(const std::vector<IconEntry>& entries, int32_t iconCx, int32_t iconCy,
                                               int32_t iconBitDepth) {
  if (iconCx <= 0 && iconCy <= 0) iconCx = iconCy = kSystemIconSize;
  if (iconCx <= 0) iconCx = iconCy;
  if (iconCy <= 0) iconCy = iconCx;
  if (iconBitDepth <= 0 || iconBitDepth > 32) iconBitDepth = 32;
  struct Key {
    int64_t distance;
    int smaller;  // 1 when the entry is smaller than wanted in area
    int depthClass;
    int32_t depthOrder;
  };
  auto key = [&](const IconEntry& e) {
    Key k{};
    k.distance = std::abs(static_cast<int64_t>(e.width) - iconCx) + std::abs(static_cast<int64_t>(e.height) - iconCy);
    k.smaller = static_cast<int64_t>(e.width) * e.height < static_cast<int64_t>(iconCx) * iconCy ? 1 : 0;
    if (e.bitDepth <= iconBitDepth) {
      k.depthClass = 0;
      k.depthOrder = -e.bitDepth;
    } else {
      k.depthClass = 1;
      k.depthOrder = e.bitDepth;
    }
    return k;
  };
  std::vector<int32_t> order(entries.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int32_t>(i);
  std::stable_sort(order.begin(), order.end(), [&](int32_t a, int32_t b) {
    Key ka = key(entries[static_cast<size_t>(a)]), kb = key(entries[static_cast<size_t>(b)]);
    if (ka.distance != kb.distance) return ka.distance < kb.distance;
    if (ka.smaller != kb.smaller) return ka.smaller < kb.smaller;
    if (ka.depthClass != kb.depthClass) return ka.depthClass < kb.depthClass;
    return ka.depthOrder < kb.depthOrder;
  });
  return order;
}

bool APIICOParser::readDirectory(const uint8_t* p, size_t size) {
  m_entries.clear();
  if (size < 6 || le16(p) != 0) return false;
  uint16_t type = le16(p + 2), count = le16(p + 4);
  if ((type != 1 && type != 2) || count == 0 || size < 6 + static_cast<size_t>(count) * 16) return false;
  m_cursor = type == 2;
  for (uint16_t i = 0; i < count; ++i) {
    const uint8_t* d = p + 6 + static_cast<size_t>(i) * 16;
    IconEntry e;
    e.width = d[0] ? d[0] : 256;
    e.height = d[1] ? d[1] : 256;
    e.bitDepth = le16(d + 6);
    e.size = le32(d + 8);
    e.offset = le32(d + 12);
    if (m_cursor) {
      e.hotspotX = le16(d + 4);
      e.hotspotY = le16(d + 6);
      e.bitDepth = 0;
    }
    // Entries that point outside the data stay listed; they simply fail to load.
    if (e.offset < size && e.size <= size - e.offset && e.size >= 8) {
      const uint8_t* img = p + e.offset;
      if (std::memcmp(img, kPngMagic, 8) == 0) {
        e.isPng = true;
        if (e.size >= 26) {
          // IHDR: the real size and the depth as bits per pixel.
          static constexpr int kChannels[7] = {1, 0, 3, 1, 2, 0, 4};
          e.width = static_cast<int32_t>((uint32_t{img[16]} << 24) | (img[17] << 16) | (img[18] << 8) | img[19]);
          e.height = static_cast<int32_t>((uint32_t{img[20]} << 24) | (img[21] << 16) | (img[22] << 8) | img[23]);
          int colorType = img[25] <= 6 ? img[25] : 0;
          e.bitDepth = img[24] * (colorType == 3 ? 1 : kChannels[colorType]);
        }
      } else if (e.size >= 16 && le32(img) >= 40) {
        e.bitDepth = le16(img + 14);
      }
    }
    if (e.bitDepth == 0) e.bitDepth = 32;
    m_entries.push_back(e);
  }
  return true;
}

bool APIICOParser::loadEntry(const std::vector<uint8_t>& inStream, size_t base, const IconEntry& e,
                             API32bppDIB& outDIB, int32_t gdiToken) {
  const size_t start = base + e.offset;
  if (e.isPng) {
    APIPNGParser png;
    if (!png.LoadStream(inStream, outDIB, static_cast<int32_t>(start), static_cast<int32_t>(e.size), gdiToken)) {
      outDIB.DestroyDIB();
      return false;
    }
    outDIB.SetImageType(imgPNGicon);
    return true;
  }

  const uint8_t* p = inStream.data() + start;
  const size_t size = e.size;
  bmp::DibLayout h;
  if (!bmp::ParseDibHeader(p, size, h)) return false;
  if (h.compression == bmp::kBI_RLE4 || h.compression == bmp::kBI_RLE8 || h.topDown) return false;
  // The header's height covers the colour rows and the mask rows.
  h.height /= 2;
  if (h.height <= 0) return false;
  const size_t xorBytes = bmp::DibStride(h.width, h.bitCount) * static_cast<size_t>(h.height);
  const size_t andStride = bmp::DibStride(h.width, 1);
  const size_t andBytes = andStride * static_cast<size_t>(h.height);
  if (h.afterTables > size || size - h.afterTables < xorBytes) return false;
  const uint8_t* bits = p + h.afterTables;
  const bool haveMask = size - h.afterTables - xorBytes >= andBytes;

  if (!DecodedSizeAllowed(h.width, h.height) || !outDIB.InitializeDIB(h.width, h.height)) return false;
  const int32_t w = h.width;
  uint8_t* top = outDIB.BitsPointer() + static_cast<size_t>(h.height - 1) * w * 4;
  bool skipped = false;
  if (!bmp::DecodeDibPixels(h, p, size, bits, xorBytes, top, -static_cast<ptrdiff_t>(w) * 4, skipped)) {
    outDIB.DestroyDIB();
    return false;
  }
  std::span<uint8_t> px(outDIB.BitsPointer(), static_cast<size_t>(w) * h.height * 4);
  if (h.bitCount == 32 && !alphaPlaneEmpty(px)) {
    // Alpha icons: the mask is only for systems that cannot blend and is ignored.
    outDIB.Alpha(premultiply(px));
    outDIB.SetImageType(m_cursor ? imgCursorARGB : imgIconARGB);
    return true;
  }
  if (!haveMask) {
    outDIB.DestroyDIB();
    return false;
  }
  // Mask rows are bottom-up like the surface's memory rows, so row r of one is row r of the other.
  const uint8_t* mask = bits + xorBytes;
  bool any = false;
  for (int32_t r = 0; r < h.height; ++r) {
    const uint8_t* m = mask + andStride * static_cast<size_t>(r);
    uint8_t* d = outDIB.BitsPointer() + static_cast<size_t>(r) * w * 4;
    for (int32_t x = 0; x < w; ++x, d += 4) {
      if (m[x >> 3] & (0x80 >> (x & 7))) {
        std::memset(d, 0, 4);
        any = true;
      } else {
        d[3] = 255;
      }
    }
  }
  outDIB.Alpha(any ? AlphaSimple : AlphaNone);
  outDIB.SetImageType(m_cursor ? imgCursor : imgIcon);
  return true;
}

bool APIICOParser::LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t iconCx,
                              int32_t iconCy, int32_t iconBitDepth, int32_t gdiToken, int32_t streamStart,
                              int32_t streamLength) {
  outDIB.DestroyDIB();
  m_entries.clear();
  m_selected = -1;
  if (streamStart < 0 || static_cast<size_t>(streamStart) >= inStream.size()) return false;
  size_t size = inStream.size() - static_cast<size_t>(streamStart);
  if (streamLength > 0 && static_cast<size_t>(streamLength) < size) size = static_cast<size_t>(streamLength);
  try {
    if (!readDirectory(inStream.data() + streamStart, size)) return false;
    for (int32_t index : RankEntries(m_entries, iconCx, iconCy, iconBitDepth)) {
      const IconEntry& e = m_entries[static_cast<size_t>(index)];
      if (e.offset >= size || e.size > size - e.offset || e.size < 8) continue;
      if (loadEntry(inStream, static_cast<size_t>(streamStart), e, outDIB, gdiToken)) {
        m_selected = index;
        return true;
      }
      outDIB.DestroyDIB();
    }
  } catch (...) {
  }
  outDIB.DestroyDIB();
  return false;
}

bool APIICOParser::ConvertstdPicTo32bpp(platform::HICON handle, API32bppDIB& outDIB) {
  using namespace platform;
  outDIB.DestroyDIB();
  ICONINFO info{};
  if (!handle || !GetIconInfo(handle, &info)) return false;
  m_cursor = !info.fIcon;
  auto readBits = [](HBITMAP bmp, int32_t w, int32_t h, uint8_t* out) {
    BITMAPINFO bi{};
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = h;
    bi.bmiHeader.biBitCount = 32;
    return GetDIBits(0, bmp, 0, static_cast<UINT>(h), out, &bi, DIB_RGB_COLORS) == h;
  };
  bool ok = false;
  BITMAP bm{};
  if (info.hbmMask && GetObject(info.hbmMask, sizeof(bm), &bm) && bm.bmWidth > 0 && bm.bmHeight > 0) {
    const int32_t w = bm.bmWidth;
    // A monochrome icon has no colour bitmap; its mask is twice as high, AND rows over XOR rows.
    const int32_t h = info.hbmColor ? bm.bmHeight : bm.bmHeight / 2;
    std::vector<uint8_t> mask(static_cast<size_t>(w) * bm.bmHeight * 4);
    if (h > 0 && readBits(info.hbmMask, w, bm.bmHeight, mask.data()) && outDIB.InitializeDIB(w, h)) {
      uint8_t* dst = outDIB.BitsPointer();
      std::span<uint8_t> px(dst, static_cast<size_t>(w) * h * 4);
      // Bottom-up memory: for a monochrome mask the XOR half is the lower h memory rows.
      if (info.hbmColor) {
        ok = readBits(info.hbmColor, w, h, dst);
      } else {
        std::memcpy(dst, mask.data(), px.size());
        ok = true;
      }
      const uint8_t* andRows = info.hbmColor ? mask.data() : mask.data() + px.size();
      if (ok && info.hbmColor && !alphaPlaneEmpty(px)) {
        outDIB.Alpha(premultiply(px));
        outDIB.SetImageType(m_cursor ? imgCursorARGB : imgIconARGB);
      } else if (ok) {
        bool any = false;
        for (size_t i = 0; i < px.size(); i += 4) {
          // White in the mask keeps the screen: a transparent pixel here.
          if (andRows[i] | andRows[i + 1] | andRows[i + 2]) {
            std::memset(dst + i, 0, 4);
            any = true;
          } else {
            dst[i + 3] = 255;
          }
        }
        outDIB.Alpha(any ? AlphaSimple : AlphaNone);
        outDIB.SetImageType(m_cursor ? imgCursor : imgIcon);
      }
    }
  }
  // GetIconInfo made copies; they are ours to delete.
  if (info.hbmMask) DeleteObject(info.hbmMask);
  if (info.hbmColor) DeleteObject(info.hbmColor);
  if (!ok) outDIB.DestroyDIB();
  return ok;
}

}  // namespace mx::image
