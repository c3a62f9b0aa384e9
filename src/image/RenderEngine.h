#pragma once
// The surface's own drawing engine: mirroring, resampling, light adjustment, blending and
// rotation by per-pixel loops. It stands in for the system codec where that is absent, so
// every colour rule here works on premultiplied pixels with the arithmetic the surface
// promises (integer, truncating divisions by 255; rounded sums where weights are fractional).
//
// Everything works on bottom-up pixel memory, the layout of a surface and of every work array:
//
//   memory row 0           = bottom picture row
//   memory row height - 1  = top picture row
//
// so a work array can stand wherever a surface can. Rectangles handed in are in picture
// coordinates (y from the top) unless a name says "memory row".
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/Gdi.h"
#include "platform/Types.h"

namespace mx::image::engine {

struct PixelView {
  uint32_t* bits = nullptr;
  int32_t width = 0;
  int32_t height = 0;

  [[nodiscard]] bool empty() const { return !bits || width <= 0 || height <= 0; }
  [[nodiscard]] uint32_t* memRow(int32_t m) const { return bits + static_cast<size_t>(m) * width; }
  [[nodiscard]] uint32_t* row(int32_t y) const { return memRow(height - 1 - y); }
};

// An allocator whose new elements are left unset, so that a buffer about to be overwritten in
// full is not cleared first (for a large picture the clearing costs as much as the filling).
template <class T>
struct UnsetAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = UnsetAllocator<U>;
  };
  UnsetAllocator() = default;
  template <class U>
  UnsetAllocator(const UnsetAllocator<U>&) noexcept {}
  template <class U>
  void construct(U* p) noexcept {
    ::new (static_cast<void*>(p)) U;
  }
  template <class U, class... A>
  void construct(U* p, A&&... a) {
    ::new (static_cast<void*>(p)) U(std::forward<A>(a)...);
  }
};

// A work array that owns its pixels.
struct WorkBuffer {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint32_t, UnsetAllocator<uint32_t>> pixels;

  // False (and empty) when the size is not positive or too large to hold. The pixels are zeroed
  // (transparent) unless the caller is about to write every one of them (`clear` false).
  bool allocate(int32_t w, int32_t h, bool clear = true);
  [[nodiscard]] PixelView view() { return {pixels.data(), width, height}; }
};

struct Rect {
  int32_t x = 0, y = 0, width = 0, height = 0;
};

struct GrayWeights {
  float blue = 1.0f, green = 1.0f, red = 1.0f;
};
[[nodiscard]] GrayWeights GrayFormulaWeights(int32_t formula);
// Round(blue x wB + green x wG + red x wR) in single precision, held to 255.
[[nodiscard]] uint32_t GrayValue(uint32_t pixel, const GrayWeights& w);

// ---- the private operations of the engine ----

// Copies rectangle r of src into out (|r| in size), mirrored left-right and/or top-bottom,
// then shifts its light when `light` is not 0.
bool MirrorToBuffer(const PixelView& src, const Rect& r, bool mirrorX, bool mirrorY, int32_t light,
                    WorkBuffer& out);

// Shifts brightness in proportion to coverage: d := Round(alpha x light / 100 x 255) \ 255 is
// added to each colour, held to 0..alpha. Transparent pixels stay. In place.
void AdjustLight(const PixelView& px, int32_t light);
// The same into a new work array holding rectangle r of src.
bool AdjustLightToBuffer(const PixelView& src, const Rect& r, int32_t light, WorkBuffer& out);

// Resampling target: the full destination size, and the part of it computed. Output pixel
// (x, m) of the part (m a memory row, counted from the bottom) is full destination pixel
// (x + clipX, m + clipY), also counted from the bottom: cutting columns on the left moves clipX,
// cutting rows at the top needs nothing, cutting rows at the bottom moves clipY.
struct StretchTarget {
  int32_t fullWidth = 0, fullHeight = 0;
  int32_t clipX = 0, clipY = 0;
  int32_t width = 0, height = 0;
};

// Resamples rectangle r of src to the target, by nearest pixel or bilinear, into out (which
// must have the target's part size).
void StretchInto(const PixelView& src, const Rect& r, const StretchTarget& t, bool bilinear, const PixelView& out);
bool StretchToBuffer(const PixelView& src, const Rect& r, const StretchTarget& t, bool bilinear, WorkBuffer& out);

// Blends rectangle (srcX, srcY, w, h) of src at (destX, destY) of a 32-bit destination, clipped
// to both so that no read or write leaves either. g is the constant alpha 0..255, gray a
// formula or -1. The destination's alpha byte takes the colour formula too.
void BlendToSurface(const PixelView& src, int32_t srcX, int32_t srcY, const PixelView& dest, int32_t destX,
                    int32_t destY, int32_t w, int32_t h, uint32_t g, int32_t gray);
// The same onto a device context: the rectangle is read back into a 24-bit section, blended
// there and written back, so the DC's alpha is not kept.
bool BlendToDC(const PixelView& src, int32_t srcX, int32_t srcY, platform::HDC dc, int32_t destX, int32_t destY,
               int32_t w, int32_t h, uint32_t g, int32_t gray);

// Inverse-maps a square work array of side Round(sqrt(destW² + destH²)) onto rectangle r of
// src, rotated by `angle` degrees (rounded to a whole number) clockwise on the screen and
// scaled to destW x destH. Points that fall outside r stay transparent.
bool RotateToBuffer(const PixelView& src, const Rect& r, int32_t destW, int32_t destH, double angle, bool bilinear,
                    WorkBuffer& out);

// A region of the given rectangles. One ExtCreateRegion call first (through `create`, which tests
// may replace); when that fails and there are more than 2000 rectangles, blocks of 2000 are made
// and joined with RGN_OR.
using RegionCreator = platform::HRGN (*)(const platform::XFORM*, platform::DWORD, const platform::RGNDATA*);
[[nodiscard]] platform::HRGN RegionFromRects(const std::vector<platform::RECT>& rects, const platform::RECT& bounds,
                                             RegionCreator create = nullptr);

}  // namespace mx::image::engine
