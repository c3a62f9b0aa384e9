// Icons: a colour picture with a mask, copied out of bitmaps when the icon is made.
#include <cstring>

#include "platform/Blend.h"
#include "platform/GdiInternal.h"

namespace mx::platform {

using namespace gdi;

namespace {

// Top-down copy of a bitmap's pixels.
std::vector<uint32_t> pixelsOf(BitmapObject& b) {
  Surface& s = currentSurface(b);
  std::vector<uint32_t> out(static_cast<size_t>(s.width) * s.height);
  for (int y = 0; y < s.height; ++y)
    std::memcpy(&out[static_cast<size_t>(y) * s.width], s.row(y), static_cast<size_t>(s.width) * 4);
  return out;
}

HBITMAP bitmapFrom(const std::vector<uint32_t>& px, int w, int h) {
  return CreateBitmap(w, h, 1, 32, px.data());
}

// Mask pixels are either white (keep the destination) or black (draw the icon).
bool maskSet(uint32_t px) { return (px & 0x00FFFFFFu) != 0; }

}  // namespace

HICON CreateIconIndirect(const ICONINFO* info) {
  if (!info) return 0;
  BitmapObject* mask = bitmap(info->hbmMask);
  BitmapObject* color = info->hbmColor ? bitmap(info->hbmColor) : nullptr;
  if (!mask || (info->hbmColor && !color)) return 0;
  auto icon = std::make_unique<IconObject>();
  icon->fIcon = info->fIcon != FALSE;
  icon->xHotspot = info->xHotspot;
  icon->yHotspot = info->yHotspot;
  icon->mask = pixelsOf(*mask);
  icon->maskHeight = mask->surface.height;
  if (color) {
    icon->hasColor = true;
    icon->width = color->surface.width;
    icon->height = color->surface.height;
    // The mask must cover the picture; a smaller one cannot say what to keep.
    if (mask->surface.width < icon->width || mask->surface.height < icon->height) return 0;
    icon->color = pixelsOf(*color);
    for (uint32_t px : icon->color)
      if (px >> 24) {
        icon->colorHasAlpha = true;
        break;
      }
  } else {
    // Monochrome: the mask is twice as high, AND half on top, XOR half below.
    if (mask->surface.height < 2) return 0;
    icon->width = mask->surface.width;
    icon->height = mask->surface.height / 2;
  }
  return state().icons.add(std::move(icon));
}

BOOL GetIconInfo(HICON h, ICONINFO* out) {
  IconObject* icon = gdi::icon(h);
  if (!icon || !out) return FALSE;
  *out = ICONINFO{};
  out->fIcon = icon->fIcon ? TRUE : FALSE;
  out->xHotspot = icon->xHotspot;
  out->yHotspot = icon->yHotspot;
  int maskWidth = icon->mask.empty() ? 0 : static_cast<int>(icon->mask.size()) / icon->maskHeight;
  out->hbmMask = bitmapFrom(icon->mask, maskWidth, icon->maskHeight);
  if (icon->hasColor) out->hbmColor = bitmapFrom(icon->color, icon->width, icon->height);
  return out->hbmMask && (!icon->hasColor || out->hbmColor) ? TRUE : FALSE;
}

BOOL DestroyIcon(HICON h) { return state().icons.remove(h) ? TRUE : FALSE; }

HICON CopyIcon(HICON h) {
  IconObject* icon = gdi::icon(h);
  if (!icon) return 0;
  return state().icons.add(std::make_unique<IconObject>(*icon));
}

BOOL GetIconSize(HICON h, SIZE* out) {
  IconObject* icon = gdi::icon(h);
  if (!icon || !out) return FALSE;
  *out = SIZE{icon->width, icon->height};
  return TRUE;
}

BOOL DrawIconEx(HDC hdc, int x, int y, HICON h, int cx, int cy, UINT step, HBRUSH flickerFree, UINT flags) {
  DeviceContext* dc = LookupDC(hdc);
  IconObject* icon = gdi::icon(h);
  if (!dc || !icon || cx < 0 || cy < 0) return FALSE;
  if ((flags & DI_NORMAL) == 0) flags |= DI_NORMAL;
  if (cx == 0) cx = icon->width;
  if (cy == 0) cy = icon->height;
  if (flickerFree) {
    RECT r{x, y, x + cx, y + cy};
    FillRect(hdc, &r, flickerFree);
  }
  if (!dc->surface) return TRUE;
  const int maskWidth = static_cast<int>(icon->mask.size()) / icon->maskHeight;
  POINT d = dc->toDevice(POINT{x, y});
  RECT area{d.x, d.y, d.x + cx, d.y + cy};
  const bool useMask = flags & DI_MASK, useImage = flags & DI_IMAGE;
  forEachClipped(*dc, area, [&](const RECT& part) {
    for (int py = part.top; py < part.bottom; ++py) {
      // Nearest pixel when the icon is drawn at another size.
      int iy = static_cast<int>(int64_t{py - d.y} * icon->height / cy);
      uint32_t* row = dc->surface->row(py);
      for (int px = part.left; px < part.right; ++px) {
        int ix = static_cast<int>(int64_t{px - d.x} * icon->width / cx);
        uint32_t m = icon->mask[static_cast<size_t>(iy) * maskWidth + ix];
        uint32_t c = icon->hasColor ? icon->color[static_cast<size_t>(iy) * icon->width + ix]
                                    : icon->mask[static_cast<size_t>(iy + icon->height) * maskWidth + ix];
        uint32_t& dst = row[px];
        if (icon->hasColor && icon->colorHasAlpha && useMask && useImage) {
          // Icon colours carry straight alpha, as icon files do: premultiply, then blend.
          dst = blend::overFast(blend::scaleFast(c | 0xFF000000u, c >> 24), dst);
          continue;
        }
        if (useMask) dst &= maskSet(m) ? 0xFFFFFFFFu : 0u;
        if (useImage) dst = useMask ? dst ^ c : c;
      }
    }
  });
  return TRUE;
}

BOOL DrawIcon(HDC hdc, int x, int y, HICON h) { return DrawIconEx(hdc, x, y, h, 0, 0, 0, 0, DI_NORMAL); }

}  // namespace mx::platform
