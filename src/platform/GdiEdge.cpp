// DrawEdge: the 3-D borders of the classic look, in the current system colours.
#include "platform/GdiInternal.h"
#include "platform/SysColors.h"

namespace mx::platform {

using namespace gdi;

namespace {

struct EdgeColors {
  int topLeft, bottomRight;  // system colour indexes
};

// Raised borders are light above and to the left, sunken ones dark; the outer line of each
// pair is the stronger one.
EdgeColors outerColors(UINT edge, UINT flags) {
  if (flags & BF_MONO) return {COLOR_WINDOWFRAME, COLOR_WINDOWFRAME};
  if (flags & BF_FLAT) return {COLOR_3DSHADOW, COLOR_3DSHADOW};
  if (edge & BDR_RAISEDOUTER) return {(flags & BF_SOFT) ? COLOR_3DHILIGHT : COLOR_3DLIGHT, COLOR_3DDKSHADOW};
  return {COLOR_3DSHADOW, COLOR_3DHILIGHT};
}

EdgeColors innerColors(UINT edge, UINT flags) {
  if (flags & BF_MONO) return {COLOR_WINDOW, COLOR_WINDOW};
  if (flags & BF_FLAT) return {COLOR_3DFACE, COLOR_3DFACE};
  if (edge & BDR_RAISEDINNER) return {(flags & BF_SOFT) ? COLOR_3DLIGHT : COLOR_3DHILIGHT, COLOR_3DSHADOW};
  return {COLOR_3DDKSHADOW, COLOR_3DLIGHT};
}

void fill(DeviceContext& dc, RECT logical, int color) {
  patRect(dc, toDeviceRect(dc, logical), BrushPaint{BrushPaint::Kind::Solid, pixelOf(GetSysColor(color))}, 0xF0);
}

// One line of border on the flagged sides. Top and left stop one pixel short, so the
// bottom-right colour owns the top-right and bottom-left corners.
void border(DeviceContext& dc, RECT& r, UINT flags, EdgeColors c) {
  if (r.empty()) return;
  if (flags & BF_TOP) fill(dc, RECT{r.left, r.top, r.right - 1, r.top + 1}, c.topLeft);
  if (flags & BF_LEFT) fill(dc, RECT{r.left, r.top, r.left + 1, r.bottom - 1}, c.topLeft);
  if (flags & BF_BOTTOM) fill(dc, RECT{r.left, r.bottom - 1, r.right, r.bottom}, c.bottomRight);
  if (flags & BF_RIGHT) fill(dc, RECT{r.right - 1, r.top, r.right, r.bottom}, c.bottomRight);
  if (flags & BF_LEFT) ++r.left;
  if (flags & BF_TOP) ++r.top;
  if (flags & BF_RIGHT) --r.right;
  if (flags & BF_BOTTOM) --r.bottom;
}

}  // namespace

BOOL DrawEdge(HDC hdc, RECT* r, UINT edge, UINT flags) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !r) return FALSE;
  RECT inner = *r;
  if (edge & BDR_OUTER) border(*dc, inner, flags, outerColors(edge, flags));
  if (edge & BDR_INNER) border(*dc, inner, flags, innerColors(edge, flags));
  if ((flags & BF_MIDDLE) && !inner.empty()) fill(*dc, inner, (flags & BF_MONO) ? COLOR_WINDOW : COLOR_3DFACE);
  if (flags & BF_ADJUST) *r = inner;
  return TRUE;
}

}  // namespace mx::platform
