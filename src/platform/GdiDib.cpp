// Device-independent bits in and out of bitmaps and DCs, and single pixels.
#include <cstring>
#include <optional>

#include "platform/GdiInternal.h"

namespace mx::platform {

using namespace gdi;

namespace {

struct DibLayout {
  int width = 0, height = 0;  // height positive
  bool bottomUp = true;
  int bpp = 32;
  size_t stride = 0;
};

std::optional<DibLayout> dibLayout(const BITMAPINFO* info, UINT usage) {
  if (!info || usage != DIB_RGB_COLORS) return std::nullopt;
  const BITMAPINFOHEADER& h = info->bmiHeader;
  if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biWidth <= 0 || h.biHeight == 0 || h.biHeight == INT32_MIN)
    return std::nullopt;
  if (h.biBitCount != 32 && h.biBitCount != 24) return std::nullopt;
  if (h.biCompression == BI_BITFIELDS) {
    DWORD masks[3];
    std::memcpy(masks, reinterpret_cast<const uint8_t*>(info) + h.biSize, sizeof masks);
    if (h.biBitCount != 32 || masks[0] != 0xFF0000 || masks[1] != 0xFF00 || masks[2] != 0xFF) return std::nullopt;
  } else if (h.biCompression != BI_RGB) {
    return std::nullopt;
  }
  DibLayout l;
  l.width = h.biWidth;
  l.height = h.biHeight < 0 ? -h.biHeight : h.biHeight;
  l.bottomUp = h.biHeight > 0;
  l.bpp = h.biBitCount;
  l.stride = ((static_cast<size_t>(l.width) * l.bpp + 31) / 32) * 4;
  if (static_cast<uint64_t>(l.stride) * l.height > (uint64_t{1} << 31)) return std::nullopt;
  return l;
}

// One DIB row into surface pixels; 24-bit rows get alpha 0.
void readRow(const uint8_t* src, int bpp, int n, uint32_t* dst) {
  if (bpp == 32) {
    std::memcpy(dst, src, static_cast<size_t>(n) * 4);
    return;
  }
  for (int x = 0; x < n; ++x, src += 3) dst[x] = src[0] | (uint32_t{src[1]} << 8) | (uint32_t{src[2]} << 16);
}

void writeRow(const uint32_t* src, int bpp, int n, uint8_t* dst) {
  if (bpp == 32) {
    std::memcpy(dst, src, static_cast<size_t>(n) * 4);
    return;
  }
  for (int x = 0; x < n; ++x, dst += 3) {
    dst[0] = src[x] & 0xFF;
    dst[1] = (src[x] >> 8) & 0xFF;
    dst[2] = (src[x] >> 16) & 0xFF;
  }
}

// A 32-bit surface over DIB rows: the caller's memory itself for 32 bits, a converted copy
// for 24. `rows` scans starting at `bits`.
struct DibSurface {
  Surface surface;
  std::vector<uint32_t> copy;
  DibSurface(const void* bits, const DibLayout& l, int rows) {
    surface.width = l.width;
    surface.height = rows;
    surface.stride = l.width * 4;
    surface.bottomUp = l.bottomUp;
    if (l.bpp == 32) {
      surface.bits = const_cast<uint8_t*>(static_cast<const uint8_t*>(bits));  // only read
      return;
    }
    copy.resize(static_cast<size_t>(l.width) * rows);
    for (int m = 0; m < rows; ++m)
      readRow(static_cast<const uint8_t*>(bits) + l.stride * static_cast<size_t>(m), 24, l.width,
              &copy[static_cast<size_t>(m) * l.width]);
    surface.bits = reinterpret_cast<uint8_t*>(copy.data());
  }
};

// Picture row (0 at the top) held by scan line s of a picture of height h.
int rowOfScan(int s, int h, bool bottomUp) { return bottomUp ? h - 1 - s : s; }

}  // namespace

int GetDIBits(HDC, HBITMAP hbm, UINT start, UINT lines, void* bits, BITMAPINFO* info, UINT usage) {
  BitmapObject* b = bitmap(hbm);
  if (!b || !info || usage != DIB_RGB_COLORS) return 0;
  Surface& s = currentSurface(*b);
  BITMAPINFOHEADER& h = info->bmiHeader;
  if (!bits) {
    if (h.biBitCount == 0) {
      h = BITMAPINFOHEADER{};
      h.biWidth = s.width;
      h.biHeight = s.height;
      h.biBitCount = static_cast<WORD>(b->bitsPixel());
    }
    if (h.biBitCount != 32 && h.biBitCount != 24) return 0;
    size_t stride = ((static_cast<size_t>(h.biWidth > 0 ? h.biWidth : s.width) * h.biBitCount + 31) / 32) * 4;
    h.biSizeImage = static_cast<DWORD>(stride * static_cast<size_t>(s.height));
    return s.height;
  }
  auto l = dibLayout(info, usage);
  if (!l || start >= static_cast<UINT>(s.height)) return 0;
  int n = static_cast<int>(std::min<UINT>(lines, static_cast<UINT>(s.height) - start));
  int w = std::min(l->width, s.width);
  for (int i = 0; i < n; ++i) {
    int scan = static_cast<int>(start) + i;
    writeRow(s.row(rowOfScan(scan, s.height, l->bottomUp)), l->bpp, w,
             static_cast<uint8_t*>(bits) + l->stride * static_cast<size_t>(i));
  }
  return n;
}

int SetDIBits(HDC, HBITMAP hbm, UINT start, UINT lines, const void* bits, const BITMAPINFO* info, UINT usage) {
  BitmapObject* b = bitmap(hbm);
  auto l = dibLayout(info, usage);
  if (!b || !bits || !l) return 0;
  Surface& s = currentSurface(*b);
  if (start >= static_cast<UINT>(s.height)) return 0;
  int n = static_cast<int>(std::min<UINT>(lines, static_cast<UINT>(s.height) - start));
  int w = std::min(l->width, s.width);
  for (int i = 0; i < n; ++i) {
    int scan = static_cast<int>(start) + i;
    readRow(static_cast<const uint8_t*>(bits) + l->stride * static_cast<size_t>(i), l->bpp, w,
            s.row(rowOfScan(scan, s.height, l->bottomUp)));
  }
  if (!b->selectedInto) push24(*b);
  return n;
}

int StretchDIBits(HDC hdc, int xD, int yD, int wD, int hD, int xS, int yS, int wS, int hS, const void* bits,
                  const BITMAPINFO* info, UINT usage, DWORD rop) {
  DeviceContext* dc = LookupDC(hdc);
  auto l = dibLayout(info, usage);
  uint32_t code = (rop >> 16) & 0xFF;
  if (!dc || !l || (!bits && ropUsesSource(code))) return 0;
  if (!ropUsesSource(code)) return PatBlt(hdc, xD, yD, wD, hD, rop) ? l->height : 0;
  DibSurface src(bits, *l, l->height);
  // For a bottom-up picture the source y counts from the bottom row: the rectangle is rows
  // [yS, yS + hS) counted upwards, drawn upright.
  int ySrc = yS;
  if (l->bottomUp) ySrc = hS > 0 ? l->height - yS - hS : l->height - 2 - yS - hS;
  POINT d = dc->toDevice(POINT{xD, yD});
  stretchFromSurface(*dc, d.x, d.y, wD, hD, src.surface, xS, ySrc, wS, hS, code);
  return l->height;
}

int SetDIBitsToDevice(HDC hdc, int xD, int yD, DWORD w, DWORD h, int xS, int yS, UINT startScan, UINT cLines,
                      const void* bits, const BITMAPINFO* info, UINT usage) {
  DeviceContext* dc = LookupDC(hdc);
  auto l = dibLayout(info, usage);
  if (!dc || !l || !bits || w > INT32_MAX || h > INT32_MAX) return 0;
  if (startScan >= static_cast<UINT>(l->height)) return 0;
  int rows = static_cast<int>(std::min<UINT>(cLines, static_cast<UINT>(l->height) - startScan));
  if (rows <= 0) return 0;
  // The bits hold scans startScan .. startScan + rows - 1; find the picture rows they are.
  int chunkTop = l->bottomUp ? l->height - static_cast<int>(startScan) - rows : static_cast<int>(startScan);
  int wi = static_cast<int>(w), hi = static_cast<int>(h);
  int top = l->bottomUp ? l->height - yS - hi : yS;
  DibSurface src(bits, *l, rows);
  POINT d = dc->toDevice(POINT{xD, yD});
  stretchFromSurface(*dc, d.x, d.y, wi, hi, src.surface, xS, top - chunkTop, wi, hi, 0xCC);
  return rows;
}

COLORREF GetPixel(HDC hdc, int x, int y) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !dc->surface) return static_cast<COLORREF>(CLR_INVALID);
  POINT p = dc->toDevice(POINT{x, y});
  if (!clipContains(*dc, p.x, p.y)) return static_cast<COLORREF>(CLR_INVALID);
  return colorOf(dc->surface->row(p.y)[p.x]);
}

COLORREF SetPixel(HDC hdc, int x, int y, COLORREF color) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !dc->surface) return static_cast<COLORREF>(CLR_INVALID);
  POINT p = dc->toDevice(POINT{x, y});
  if (!clipContains(*dc, p.x, p.y)) return static_cast<COLORREF>(CLR_INVALID);
  dc->surface->row(p.y)[p.x] = pixelOf(color);
  return color & 0xFFFFFF;
}

BOOL SetPixelV(HDC hdc, int x, int y, COLORREF color) {
  return SetPixel(hdc, x, y, color) != static_cast<COLORREF>(CLR_INVALID) ? TRUE : FALSE;
}

}  // namespace mx::platform
