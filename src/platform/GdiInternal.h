#pragma once
// The objects behind drawing handles and the per-thread tables that own them. Private to the
// drawing code of the platform.
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

}  // namespace mx::platform::gdi
