#pragma once
// The objects behind drawing handles and the per-thread tables that own them. Private to the
// drawing code of the platform.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/DeviceContext.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/Region.h"
#include "platform/Surface.h"

namespace mx::platform::gdi {

struct BitmapObject {
  Surface surface;                    // always 32 bits; what drawing reads and writes
  std::unique_ptr<uint8_t[]> pixels;  // owns surface.bits
  bool dibSection = false;
  BITMAPINFOHEADER header{};          // DIB sections: the header they were made from
  // 24-bit sections hand the caller packed rows; the 32-bit surface is a working copy that is
  // filled from them when the bitmap goes into a DC and written back when it comes out.
  std::unique_ptr<uint8_t[]> packed;
  int packedStride = 0;
  HDC selectedInto = 0;               // the DC holding it; the stock bitmap may be in many

  [[nodiscard]] int bitsPixel() const { return packed ? 24 : 32; }
};

struct PenObject {
  UINT style = PS_SOLID;
  int width = 1;
  COLORREF color = 0;
  int selected = 0;  // number of DCs holding it
};

struct BrushObject {
  UINT style = BS_SOLID;
  COLORREF color = 0;
  int hatch = 0;
  int patternWidth = 0, patternHeight = 0;
  std::vector<uint32_t> pattern;  // top-down rows of the pattern bitmap
  int selected = 0;
};

struct FontObject {
  LOGFONTW lf;
  int selected = 0;
};

struct RegionObject {
  Region region;
};

struct IconObject {
  bool fIcon = true;
  DWORD xHotspot = 0, yHotspot = 0;
  int width = 0, height = 0;
  bool hasColor = false;      // false: a monochrome icon, the mask holds AND and XOR halves
  bool colorHasAlpha = false; // any colour pixel with a non-zero alpha byte
  std::vector<uint32_t> color;  // top-down
  std::vector<uint32_t> mask;   // top-down; non-zero pixels are "keep the destination"
  int maskHeight = 0;
};

// What SaveDC keeps.
struct SavedDC {
  HBITMAP bitmap = 0;
  HPEN pen = 0;
  HBRUSH brush = 0;
  HFONT font = 0;
  std::optional<Region> clip;
  COLORREF textColor = 0, bkColor = 0, dcBrushColor = 0, dcPenColor = 0;
  int bkMode = 0, stretchMode = 0, polyFillMode = 0;
  UINT textAlign = 0;
  POINT windowOrg{}, viewportOrg{}, currentPos{}, brushOrg{};
};

struct GdiState {
  GdiState();
  ~GdiState();
  GdiState(const GdiState&) = delete;
  GdiState& operator=(const GdiState&) = delete;

  HandleTable<DeviceContext> dcs{HandleType::DC};
  HandleTable<BitmapObject> bitmaps{HandleType::Bitmap};
  HandleTable<PenObject> pens{HandleType::Pen};
  HandleTable<BrushObject> brushes{HandleType::Brush};
  HandleTable<FontObject> fonts{HandleType::Font};
  HandleTable<RegionObject> regions{HandleType::Region};
  HandleTable<IconObject> icons{HandleType::Icon};

  std::array<HGDIOBJ, 20> stock{};
  HBITMAP stockBitmap = 0;
  std::unordered_map<HDC, std::vector<SavedDC>> saved;

  [[nodiscard]] bool isStock(HGDIOBJ h) const;

 private:
  std::array<int, kHandleTypeCount> m_stockCounts{};
};

// This thread's tables, made with the stock objects on first use.
[[nodiscard]] GdiState& state();

[[nodiscard]] BitmapObject* bitmap(HBITMAP h);
[[nodiscard]] PenObject* pen(HPEN h);
[[nodiscard]] BrushObject* brush(HBRUSH h);
[[nodiscard]] RegionObject* region(HRGN h);
[[nodiscard]] IconObject* icon(HICON h);

// 24-bit sections: packed rows to the working surface and back.
void pull24(BitmapObject& b);
void push24(BitmapObject& b);

// A new bitmap object of the given size with zeroed 32-bit pixels, or null when the size is
// out of range or memory is short.
[[nodiscard]] std::unique_ptr<BitmapObject> makeBitmap(int width, int height, bool bottomUp);

// The effective clip as a region in device coordinates.
[[nodiscard]] Region clipRegion(const DeviceContext& dc);

// Colour of a COLORREF as a surface pixel (alpha 0, see the alpha rule in DeviceContext.h).
[[nodiscard]] constexpr uint32_t pixelOf(COLORREF c) {
  return (static_cast<uint32_t>(GetRValue(c)) << 16) | (static_cast<uint32_t>(GetGValue(c)) << 8) |
         GetBValue(c);
}
[[nodiscard]] constexpr COLORREF colorOf(uint32_t px) {
  return RGB((px >> 16) & 0xFF, (px >> 8) & 0xFF, px & 0xFF);
}

// ---- painting helpers ------------------------------------------------------------------------

// A rectangle from two device points, ordered.
[[nodiscard]] inline RECT orderedRect(POINT a, POINT b) {
  return RECT{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}
// A logical rectangle in device coordinates, ordered.
[[nodiscard]] inline RECT toDeviceRect(const DeviceContext& dc, const RECT& r) {
  return orderedRect(dc.toDevice(POINT{r.left, r.top}), dc.toDevice(POINT{r.right, r.bottom}));
}
[[nodiscard]] inline RECT intersect(const RECT& a, const RECT& b) {
  return RECT{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
              std::min(a.bottom, b.bottom)};
}

// Calls f(part) for each non-empty part of a device rectangle inside the DC's clip. The clip
// is banded and sorted by top, so the walk stops at the first band below the rectangle.
template <class F>
void forEachClipped(const DeviceContext& dc, const RECT& r, F&& f) {
  if (r.empty() || !dc.surface) return;
  for (const RECT& c : dc.clip) {
    if (c.top >= r.bottom) break;
    RECT part = intersect(c, r);
    if (!part.empty()) f(part);
  }
}

// The classic ternary raster operations: bit i of the code is the result for pattern, source
// and destination bits (i >> 2, i >> 1, i) & 1, evaluated on whole words.
[[nodiscard]] constexpr uint32_t rop3(uint32_t code, uint32_t p, uint32_t s, uint32_t d) {
  uint32_t r = 0;
  for (uint32_t i = 0; i < 8; ++i)
    if ((code >> i) & 1) r |= ((i & 4) ? p : ~p) & ((i & 2) ? s : ~s) & ((i & 1) ? d : ~d);
  return r;
}
[[nodiscard]] constexpr bool ropUsesSource(uint32_t code) { return ((code >> 2) & 0x33) != (code & 0x33); }
[[nodiscard]] constexpr bool ropUsesPattern(uint32_t code) { return ((code >> 4) & 0x0F) != (code & 0x0F); }
[[nodiscard]] constexpr bool ropUsesDest(uint32_t code) { return ((code >> 1) & 0x55) != (code & 0x55); }

// Whether a device pixel is inside the DC's clip.
[[nodiscard]] inline bool clipContains(const DeviceContext& dc, int x, int y) {
  for (const RECT& c : dc.clip) {
    if (c.top > y) break;
    if (y < c.bottom && x >= c.left && x < c.right) return true;
  }
  return false;
}

// What a brush paints, resolved against a DC (DC_BRUSH colour, background for hatches, origin).
struct BrushPaint {
  enum class Kind { None, Solid, Pattern, Hatch } kind = Kind::None;
  uint32_t color = 0;    // solid colour, or the hatch lines
  uint32_t bk = 0;       // between hatch lines when the background mode is OPAQUE
  bool bkOpaque = true;
  int hatch = 0;
  const BrushObject* brush = nullptr;
  int orgX = 0, orgY = 0;  // device position of the pattern's origin

  // The pattern word at device (x, y); `paint` false means leave the pixel alone.
  [[nodiscard]] uint32_t at(int x, int y, bool& paint) const;
};
[[nodiscard]] BrushPaint brushPaint(const DeviceContext& dc, HBRUSH h);

// Applies a raster operation without source (fills, PatBlt) to one clipped row span. A fill
// (an operation that does not read the destination) writes alpha 0, see DeviceContext.h; one
// that reads it works on all four bytes, so that inverting twice gives the picture back.
void patSpan(Surface& s, int y, int x0, int x1, const BrushPaint& b, uint32_t code);
// Fills every clipped part of a device rectangle.
void patRect(DeviceContext& dc, const RECT& deviceRect, const BrushPaint& b, uint32_t code);
// Fills a region given in device coordinates, within the clip.
void patRegion(DeviceContext& dc, const Region& deviceRegion, const BrushPaint& b, uint32_t code);

// The bitmap's pixels made current for reading outside a DC (24-bit sections).
[[nodiscard]] Surface& currentSurface(BitmapObject& b);

// Stretching copy from a surface to a DC: source rectangle (xS, yS, wS, hS) in the source's
// pixels, destination (xD, yD, wD, hD) in device pixels; negative sizes mirror (the rectangle
// then runs from x down to x + w + 1). Parts of the source outside its surface are not drawn.
// `mode` is the DC's stretch mode.
bool stretchFromSurface(DeviceContext& dst, int xD, int yD, int wD, int hD, const Surface& src, int xS,
                        int yS, int wS, int hS, uint32_t ropCode);

}  // namespace mx::platform::gdi
