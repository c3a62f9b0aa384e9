// Pixel and bulk access of the image surface, alpha classification and the checkerboard.
#include <algorithm>
#include <cstring>

#include "image/API32bppDIB.h"
#include "platform/SysColors.h"

namespace mx::image {

namespace {

// Picture row y (0 is the top) of a bottom-up surface.
inline uint8_t* pictureRow(uint8_t* bits, int32_t width, int32_t height, int32_t y) {
  return bits + static_cast<size_t>(height - 1 - y) * static_cast<size_t>(width) * 4;
}

// A colour of the host: red in the low byte, high bit set for a system colour.
inline uint32_t resolveColor(int32_t color) {
  uint32_t c = static_cast<uint32_t>(color);
  if (c & 0x80000000u) return platform::GetSysColor(static_cast<int>(c & 0xFF)) & 0xFFFFFF;
  return c & 0xFFFFFF;
}

// Bytes per row of the exchanged arrays.
inline int64_t rowBytesFor(int32_t width, bool as32bit, bool scanAligned) {
  if (as32bit) return static_cast<int64_t>(width) * 4;
  if (scanAligned) return ((static_cast<int64_t>(width) * 24 + 31) & ~int64_t{31}) / 8;
  return static_cast<int64_t>(width) * 3;
}

}  // namespace

int32_t API32bppDIB::GetPixel(int32_t X, int32_t Y, uint8_t& Alpha, bool asPreMultiplied) const {
  Alpha = 0;
  if (!m_handle || X < 0 || Y < 0 || X >= m_width || Y >= m_height) return -1;
  const uint8_t* p = pictureRow(m_bits, m_width, m_height, Y) + static_cast<size_t>(X) * 4;
  uint32_t b = p[0], g = p[1], r = p[2], a = p[3];
  Alpha = static_cast<uint8_t>(a);
  if (!asPreMultiplied && a != 0 && a != 255) {
    b = b * 255 / a;
    g = g * 255 / a;
    r = r * 255 / a;
  }
  return static_cast<int32_t>(r | (g << 8) | (b << 16));
}

uint8_t* API32bppDIB::SetPixel(int32_t X, int32_t Y, int32_t Color, int32_t Alpha, bool isPreMultiplied) {
  if (!m_handle || Alpha < 0 || Alpha > 255 || X < 0 || Y < 0 || X >= m_width || Y >= m_height)
    return nullptr;
  uint8_t* p = pictureRow(m_bits, m_width, m_height, Y) + static_cast<size_t>(X) * 4;
  if (Alpha == 0) {
    std::memset(p, 0, 4);
    m_alpha = AlphaComplex;
    return p;
  }
  uint32_t c = resolveColor(Color);
  uint32_t ch[3] = {(c >> 16) & 0xFF, (c >> 8) & 0xFF, c & 0xFF};  // blue, green, red
  uint32_t a = static_cast<uint32_t>(Alpha);
  for (uint32_t& v : ch) {
    // Premultiplied input is trusted except where it cannot be: no channel may exceed alpha.
    if (Alpha == 255 || isPreMultiplied) {
      if (v > a) v = v * a / 255;
    } else {
      v = v * a / 255;
    }
  }
  p[0] = static_cast<uint8_t>(ch[0]);
  p[1] = static_cast<uint8_t>(ch[1]);
  p[2] = static_cast<uint8_t>(ch[2]);
  p[3] = static_cast<uint8_t>(a);
  if (a != 255) m_alpha = AlphaComplex;
  return p;
}

bool API32bppDIB::GetDIBbits(std::vector<uint8_t>& outBytes, bool as2D, bool asPreMultiplied, bool as32bit,
                             bool asScanAligned, bool asBottomUp, int32_t X, int32_t Y, int32_t Width,
                             int32_t Height, bool asBGR) const {
  (void)as2D;
  if (!m_handle || X < 0 || Y < 0 || Width < 0 || Height < 0) return false;
  if (Width == 0) Width = m_width;
  if (Height == 0) Height = m_height;
  if (X >= m_width || Y >= m_height) return false;
  Width = std::min<int32_t>(Width, m_width - X);
  Height = std::min<int32_t>(Height, m_height - Y);
  int64_t rowBytes = rowBytesFor(Width, as32bit, asScanAligned);
  outBytes.assign(static_cast<size_t>(rowBytes * Height), 0);

  bool whole = X == 0 && Y == 0 && Width == m_width && Height == m_height;
  if (as32bit && asPreMultiplied && asBottomUp && asBGR && whole) {
    std::memcpy(outBytes.data(), m_bits, outBytes.size());
    return true;
  }
  const int step = as32bit ? 4 : 3;
  for (int32_t row = 0; row < Height; ++row) {
    // Output row `row` holds picture row Y + row, or counts from the region's bottom.
    int32_t y = asBottomUp ? Y + Height - 1 - row : Y + row;
    const uint8_t* src = pictureRow(m_bits, m_width, m_height, y) + static_cast<size_t>(X) * 4;
    uint8_t* dst = outBytes.data() + row * rowBytes;
    for (int32_t x = 0; x < Width; ++x, src += 4, dst += step) {
      uint32_t a = src[3];
      if (a == 0) continue;  // stays zero in either colour order
      uint32_t b = src[0], g = src[1], r = src[2];
      if (!asPreMultiplied && a != 255) {
        b = b * 255 / a;
        g = g * 255 / a;
        r = r * 255 / a;
      }
      if (!asBGR) std::swap(b, r);
      dst[0] = static_cast<uint8_t>(b);
      dst[1] = static_cast<uint8_t>(g);
      dst[2] = static_cast<uint8_t>(r);
      if (as32bit) dst[3] = static_cast<uint8_t>(a);
    }
  }
  return true;
}

bool API32bppDIB::SetDIBbits(const std::vector<uint8_t>& inBytes, bool isBGR, bool is32bit, bool isScanAligned,
                             bool isBottomUp, int32_t X, int32_t Y, int32_t Width, int32_t Height) {
  if (!m_handle || X < 0 || Y < 0 || Width < 0 || Height < 0) return false;
  if (Width == 0) Width = m_width;
  if (Height == 0) Height = m_height;
  if (X >= m_width || Y >= m_height) return false;
  Width = std::min<int32_t>(Width, m_width - X);
  Height = std::min<int32_t>(Height, m_height - Y);
  int64_t rowBytes = rowBytesFor(Width, is32bit, isScanAligned);
  // Measured against the surface's full height, not the region's.
  if (static_cast<int64_t>(inBytes.size()) < rowBytes * m_height) return false;

  const int step = is32bit ? 4 : 3;
  for (int32_t row = 0; row < Height; ++row) {
    int32_t y = isBottomUp ? Y + Height - 1 - row : Y + row;
    uint8_t* dst = pictureRow(m_bits, m_width, m_height, y) + static_cast<size_t>(X) * 4;
    const uint8_t* src = inBytes.data() + row * rowBytes;
    for (int32_t x = 0; x < Width; ++x, src += step, dst += 4) {
      if (isBGR) {
        dst[0] = src[0];
        dst[2] = src[2];
      } else {
        dst[0] = src[2];
        dst[2] = src[0];
      }
      dst[1] = src[1];
      if (is32bit) dst[3] = src[3];
    }
  }
  int32_t type = m_imageType;
  m_alpha = ValidateAlphaChannel(std::span<uint8_t>(m_bits, static_cast<size_t>(m_width) * m_height * 4), true,
                                 type);
  return true;
}

ENUM_ALPHA_TYPE API32bppDIB::ValidateAlphaChannel(std::span<uint8_t> pixels, bool Premultiply,
                                                  int32_t& imageType) {
  const size_t count = pixels.size() / 4;
  uint8_t* px = pixels.data();
  // 0: could be premultiplied; 1: a transparent pixel carries colour, so it cannot be;
  // 2: proven straight alpha, scan stopped.
  int state = 0;
  bool partial = false;
  size_t zeros = 0, opaque = 0;
  bool scanned = imageType != -1;
  if (scanned) {
    for (size_t i = 0; i < count && state != 2; ++i) {
      const uint8_t* p = px + i * 4;
      uint8_t a = p[3];
      if (a == 0) {
        ++zeros;
        if (state == 0 && (p[0] | p[1] | p[2])) state = 1;
      } else if (a == 255) {
        if (state == 1) state = 2;
        else ++opaque;
      } else {
        if (state == 1 || p[0] > a || p[1] > a || p[2] > a) state = 2;
        else partial = true;
      }
    }
  }
  bool noAlpha = !scanned || (state != 2 && (zeros == count || opaque == count));
  if (noAlpha) {
    // An all-zero alpha plane is an ordinary 24-bit picture kept in 32 bits, not an invisible one.
    imageType = imgBitmap;
    if (Premultiply)
      for (size_t i = 0; i < count; ++i) px[i * 4 + 3] = 255;
    return AlphaNone;
  }
  if (state == 0) {
    imageType = imgBmpPARGB;
    return partial ? AlphaComplex : AlphaSimple;
  }
  imageType = imgBmpARGB;
  bool sawPartial = false;
  for (size_t i = 0; i < count; ++i) {
    uint8_t* p = px + i * 4;
    uint32_t a = p[3];
    if (a == 255) continue;
    if (a == 0) {
      if (Premultiply) std::memset(p, 0, 4);
      continue;
    }
    sawPartial = true;
    if (Premultiply) {
      p[0] = static_cast<uint8_t>(p[0] * a / 255);
      p[1] = static_cast<uint8_t>(p[1] * a / 255);
      p[2] = static_cast<uint8_t>(p[2] * a / 255);
    }
  }
  return sawPartial ? AlphaComplex : AlphaSimple;
}

bool API32bppDIB::CreateCheckerBoard(int32_t cellSize, int32_t Color1, int32_t Color2) {
  if (!m_handle || cellSize < 1) return false;
  auto toPixel = [](uint32_t c) {
    // 0xBBGGRR to memory order blue, green, red, opaque alpha.
    return 0xFF000000u | ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
  };
  const uint32_t px[2] = {toPixel(resolveColor(Color1)), toPixel(resolveColor(Color2))};
  for (int32_t y = 0; y < m_height; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(pictureRow(m_bits, m_width, m_height, y));
    int rowParity = (y / cellSize) & 1;
    for (int32_t x = 0; x < m_width; ++x) row[x] = px[((x / cellSize) & 1) ^ rowParity];
  }
  m_imageType = imgCheckerBoard;
  m_alpha = AlphaNone;
  return true;
}

int32_t API32bppDIB::SourceIconSizes(std::vector<std::array<int32_t, 4>>& outSizes) const {
  outSizes.clear();
  switch (m_imageType) {
    case imgIcon:
    case imgCursor:
    case imgIconARGB:
    case imgPNGicon:
    case imgCursorARGB:
      break;
    default:
      return 0;
  }
  auto colorCount = [](int32_t depth) -> int32_t {
    switch (depth) {
      case 1: return 2;
      case 2: return 4;
      case 4: return 16;
      case 8: return 256;
      default: break;
    }
    if (depth < 24) return 0xFFFF00;
    if (depth == 24) return static_cast<int32_t>(0xFF000000u);
    return -1;
  };
  const std::vector<uint8_t>& b = m_original;
  auto le16 = [&](size_t at) { return static_cast<int32_t>(b[at] | (b[at + 1] << 8)); };
  auto le32 = [&](size_t at) {
    return static_cast<uint32_t>(b[at] | (b[at + 1] << 8) | (b[at + 2] << 16) | (uint32_t{b[at + 3]} << 24));
  };
  // The icon directory: a 6-byte header, then 16 bytes per entry. The depth of an entry is
  // taken from its image (a bitmap header's bit count, or a PNG's channels), since directory
  // fields are often left 0.
  if (b.size() >= 6 && le16(0) == 0 && (le16(2) == 1 || le16(2) == 2)) {
    int32_t n = le16(4);
    if (n > 0 && b.size() >= 6 + static_cast<size_t>(n) * 16) {
      for (int32_t i = 0; i < n; ++i) {
        size_t e = 6 + static_cast<size_t>(i) * 16;
        int32_t w = b[e] ? b[e] : 256, h = b[e + 1] ? b[e + 1] : 256;
        int32_t depth = le16(e + 6);
        uint32_t size = le32(e + 8), offset = le32(e + 12);
        if (offset < b.size() && size >= 16 && size <= b.size() - offset) {
          const uint8_t* img = b.data() + offset;
          if (img[0] == 0x89 && img[1] == 'P' && size >= 26) {
            static constexpr int kChannels[7] = {1, 0, 3, 1, 2, 0, 4};
            int type = img[25] <= 6 ? img[25] : 0;
            depth = img[24] * (type == 3 ? 1 : kChannels[type]);
          } else if (size >= 16 && le32(offset) >= 40) {
            depth = le16(offset + 14);
          }
        }
        if (depth == 0) depth = 32;
        outSizes.push_back({w, h, depth, colorCount(depth)});
      }
      return static_cast<int32_t>(outSizes.size());
    }
  }
  outSizes.push_back({m_width, m_height, 32, -1});
  return 1;
}

}  // namespace mx::image
