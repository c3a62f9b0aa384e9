#pragma once
// The inside of a device context, shared by the drawing and text code of the platform. Not a
// public header: code above the platform only sees HDC values.
//
// Coordinates. A logical point p is drawn at device point p - windowOrg + viewportOrg + origin,
// where origin places a window DC's client area on its top-level window's surface (0 for memory
// DCs). `clip` is the effective clip in device (surface) coordinates: the surface bounds, a
// window DC's visible area, and the selected clip region, already intersected, as y-x banded
// rectangles. Drawing code intersects with these and never writes outside them.
//
// Alpha. Like the classic system, the raster operations that know nothing of alpha (fills,
// lines, text, pattern brushes) leave the alpha byte of every pixel they touch at 0; copies
// (BitBlt, StretchBlt, SetDIBitsToDevice) move all four bytes; AlphaBlend and GradientFill
// compute it.
#include <memory>
#include <vector>

#include "platform/LogFont.h"
#include "platform/Surface.h"
#include "platform/Types.h"

namespace mx::platform {

constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

struct DeviceContext {
  Surface* surface = nullptr;   // where pixels go; null for a DC with nothing selected
  HWND hwnd = 0;                // window DCs: the window whose client area this is
  bool isMemoryDC = false;
  POINT origin{};               // device offset of logical (0,0) before the org transforms
  POINT windowOrg{};
  POINT viewportOrg{};
  std::vector<RECT> visible;    // base clip before the caller's region: the surface bounds of a
                                // memory DC, the visible part of the window for a window DC
  std::vector<RECT> clip;       // effective clip, device coordinates
  HRGN selectedClip = 0;        // the caller's clip region (logical copy), 0 for none

  HBITMAP bitmap = 0;           // selected objects; memory DCs start with a 1x1 stock bitmap
  HPEN pen = 0;
  HBRUSH brush = 0;
  HFONT font = 0;

  COLORREF textColor = 0x000000;
  COLORREF bkColor = 0xFFFFFF;
  int bkMode = OPAQUE;
  int stretchMode = 1;          // BLACKONWHITE
  UINT textAlign = 0;
  POINT currentPos{};
  POINT brushOrg{};
  COLORREF dcBrushColor = 0xFFFFFF;  // colours of the DC_BRUSH and DC_PEN stock objects
  COLORREF dcPenColor = 0x000000;
  int polyFillMode = 1;         // ALTERNATE

  [[nodiscard]] POINT toDevice(POINT p) const {
    return {p.x - windowOrg.x + viewportOrg.x + origin.x, p.y - windowOrg.y + viewportOrg.y + origin.y};
  }
};

// The DC behind a handle, or null for a stale or foreign one.
[[nodiscard]] DeviceContext* LookupDC(HDC hdc);

// Issues a handle for a DC built elsewhere in the platform (window DCs); the table owns it.
[[nodiscard]] HDC RegisterDC(std::unique_ptr<DeviceContext> dc);
// Frees a DC made by RegisterDC. Selected objects are not deleted: they belong to the caller.
bool FreeDC(HDC hdc);
// Recomputes `clip` from `visible` and the selected clip region; call after changing either.
void UpdateClip(DeviceContext& dc);

// The description a font object was made from, or null for a stale or foreign handle.
[[nodiscard]] const LOGFONTW* LookupFont(HFONT font);

}  // namespace mx::platform
