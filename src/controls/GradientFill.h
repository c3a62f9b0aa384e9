#pragma once
// A gradient over a rectangle for the controls that paint faces at an offset. The frame's
// gradient painter fills (x, y)-(width, height) when both colours are equal, a rule kept for its
// callers at the origin; a face away from the origin fills its own rectangle instead.
#include <cstdint>

#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "platform/Types.h"

namespace mx::controls::detail {

inline void FillGradient(platform::HDC dc, const platform::RECT& r, host::OLE_COLOR from, host::OLE_COLOR to,
                         int32_t direction) {
  const int32_t w = r.right - r.left, h = r.bottom - r.top;
  if (w < 1 || h < 1) return;
  if (from == to) frame::FillRectColor(dc, r, from);
  else frame::PaintGradientRect(dc, r.left, r.top, w, h, from, to, direction);
}

}  // namespace mx::controls::detail
