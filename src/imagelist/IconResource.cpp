#include "imagelist/IconResource.h"

#include <algorithm>
#include <cstring>

#include "image/API32bppDIB.h"
#include "imagelist/ByteIO.h"
#include "platform/Gdi.h"

namespace mx::imagelist {

namespace {

size_t RowBytes(int32_t width, int32_t depth) { return ((static_cast<size_t>(width) * depth + 31) / 32) * 4; }

// A sorted list of 0x00RRGGBB values; FindColour is a bisection over it.
class ColourSet {
 public:
  // Position of the colour, or -(insertion point) - 1.
  [[nodiscard]] long FindColour(uint32_t c) const {
    auto it = std::lower_bound(m_colours.begin(), m_colours.end(), c);
    long i = it - m_colours.begin();
    return it != m_colours.end() && *it == c ? i : -i - 1;
  }
  // False once the set would pass the limit.
  bool Add(uint32_t c, size_t limit) {
    long f = FindColour(c);
    if (f >= 0) return true;
    if (m_colours.size() >= limit) return false;
    m_colours.insert(m_colours.begin() + (-f - 1), c);
    return true;
  }
  [[nodiscard]] size_t Size() const { return m_colours.size(); }
  [[nodiscard]] const std::vector<uint32_t>& Colours() const { return m_colours; }

 private:
  std::vector<uint32_t> m_colours;
};

void PutHeader(std::vector<uint8_t>& out, int32_t w, int32_t h, int32_t depth, uint32_t imageSize) {
  PutU32(out, 40);
  PutU32(out, static_cast<uint32_t>(w));
  PutU32(out, static_cast<uint32_t>(h * 2));
  PutU16(out, 1);
  PutU16(out, static_cast<uint16_t>(depth));
  PutU32(out, 0);  // BI_RGB
  PutU32(out, imageSize);
  for (int i = 0; i < 4; ++i) PutU32(out, 0);
}

}  // namespace

std::vector<uint8_t> BuildIconResource(const image::API32bppDIB& picture, int32_t& bitDepth) {
  bitDepth = 0;
  const int32_t w = picture.Width(), h = picture.Height();
  if (!picture.Handle() || w <= 0 || h <= 0) return {};
  const uint8_t* px = picture.BitsPointer();
  const size_t n = static_cast<size_t>(w) * h;

  bool partial = false, anyTransparent = false;
  ColourSet colours;
  bool few = true;
  for (size_t i = 0; i < n; ++i) {
    uint8_t a = px[i * 4 + 3];
    if (a == 0) {
      anyTransparent = true;
    } else if (a != 255) {
      partial = true;
    } else if (few) {
      uint32_t c = px[i * 4] | (px[i * 4 + 1] << 8) | (static_cast<uint32_t>(px[i * 4 + 2]) << 16);
      few = colours.Add(c, 256);
    }
  }
  if (anyTransparent && few) few = colours.Add(0, 256);
  int32_t depth = 32;
  if (!partial && few) depth = colours.Size() <= 2 ? 1 : colours.Size() <= 16 ? 4 : 8;

  const size_t colourRow = RowBytes(w, depth), maskRow = RowBytes(w, 1);
  const size_t imageSize = colourRow * h + maskRow * h;
  std::vector<uint8_t> out;
  out.reserve(40 + (depth <= 8 ? (4u << depth) : 0) + imageSize);
  PutHeader(out, w, h, depth, static_cast<uint32_t>(imageSize));
  if (depth <= 8) {
    const size_t entries = size_t{1} << depth;
    for (size_t i = 0; i < entries; ++i) {
      uint32_t c = i < colours.Size() ? colours.Colours()[i] : 0;
      out.push_back(static_cast<uint8_t>(c));
      out.push_back(static_cast<uint8_t>(c >> 8));
      out.push_back(static_cast<uint8_t>(c >> 16));
      out.push_back(0);
    }
  }
  // Both the surface and the resource are bottom-up, so memory rows map one to one.
  const size_t colourAt = out.size();
  out.resize(out.size() + imageSize, 0);
  uint8_t* colour = out.data() + colourAt;
  uint8_t* mask = colour + colourRow * h;
  for (int32_t row = 0; row < h; ++row) {
    const uint8_t* src = px + static_cast<size_t>(row) * w * 4;
    uint8_t* dst = colour + colourRow * row;
    uint8_t* m = mask + maskRow * row;
    for (int32_t x = 0; x < w; ++x) {
      const uint8_t* p = src + x * 4;
      uint8_t a = p[3];
      if (a == 0) m[x / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
      if (depth == 32) {
        // Straight alpha in the resource; transparent pixels stay all zero.
        for (int c = 0; c < 3; ++c)
          dst[x * 4 + c] = a == 0 ? 0 : a == 255 ? p[c] : static_cast<uint8_t>(p[c] * 255 / a);
        dst[x * 4 + 3] = a;
        continue;
      }
      uint32_t c = a == 0 ? 0 : (p[0] | (p[1] << 8) | (static_cast<uint32_t>(p[2]) << 16));
      uint32_t index = static_cast<uint32_t>(colours.FindColour(c));
      if (depth == 8) {
        dst[x] = static_cast<uint8_t>(index);
      } else if (depth == 4) {
        dst[x / 2] |= static_cast<uint8_t>(x % 2 ? index : index << 4);
      } else if (index) {
        dst[x / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
      }
    }
  }
  bitDepth = depth;
  return out;
}

platform::HICON CreateIconFromResourceImage(std::span<const uint8_t> res) {
  if (res.size() < 40 || GetU32(res, 0) != 40) return 0;
  const int32_t w = static_cast<int32_t>(GetU32(res, 4));
  const int32_t h2 = static_cast<int32_t>(GetU32(res, 8));
  const int32_t depth = GetU16(res, 14);
  if (w <= 0 || w > 4096 || h2 <= 0 || h2 % 2 || h2 > 8192 || GetU32(res, 16) != 0) return 0;
  if (depth != 1 && depth != 4 && depth != 8 && depth != 32) return 0;
  const int32_t h = h2 / 2;
  const size_t palette = depth <= 8 ? (size_t{4} << depth) : 0;
  const size_t colourRow = RowBytes(w, depth), maskRow = RowBytes(w, 1);
  if (res.size() < 40 + palette + (colourRow + maskRow) * h) return 0;
  const uint8_t* pal = res.data() + 40;
  const uint8_t* colour = pal + palette;
  const uint8_t* mask = colour + colourRow * h;

  // The platform's bitmaps take top-down rows; the resource is bottom-up.
  std::vector<uint32_t> colourPx(static_cast<size_t>(w) * h), maskPx(static_cast<size_t>(w) * h);
  for (int32_t y = 0; y < h; ++y) {
    const int32_t row = h - 1 - y;
    const uint8_t* c = colour + colourRow * row;
    const uint8_t* m = mask + maskRow * row;
    for (int32_t x = 0; x < w; ++x) {
      uint32_t v;
      if (depth == 32) {
        std::memcpy(&v, c + x * 4, 4);
      } else {
        uint32_t index = depth == 8   ? c[x]
                         : depth == 4 ? (x % 2 ? c[x / 2] & 15u : c[x / 2] >> 4)
                                      : (c[x / 8] >> (7 - x % 8)) & 1u;
        const uint8_t* q = pal + index * 4;
        v = q[0] | (q[1] << 8) | (static_cast<uint32_t>(q[2]) << 16);
      }
      colourPx[static_cast<size_t>(y) * w + x] = v;
      maskPx[static_cast<size_t>(y) * w + x] = (m[x / 8] >> (7 - x % 8)) & 1 ? 0x00FFFFFFu : 0u;
    }
  }
  platform::ICONINFO info;
  info.fIcon = platform::TRUE;
  info.hbmColor = platform::CreateBitmap(w, h, 1, 32, colourPx.data());
  info.hbmMask = platform::CreateBitmap(w, h, 1, 32, maskPx.data());
  platform::HICON icon = info.hbmColor && info.hbmMask ? platform::CreateIconIndirect(&info) : 0;
  if (info.hbmColor) platform::DeleteObject(info.hbmColor);
  if (info.hbmMask) platform::DeleteObject(info.hbmMask);
  return icon;
}

}  // namespace mx::imagelist
