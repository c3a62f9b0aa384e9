// Region handles: creation, algebra and queries over Region objects.
#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/GdiInternal.h"

namespace mx::platform {

using namespace gdi;

namespace {

RECT normalized(int l, int t, int r, int b) {
  return RECT{std::min(l, r), std::min(t, b), std::max(l, r), std::max(t, b)};
}

// Shapes made from row spans of a box whose top-left is (left, top).
Region shapeFromRows(int left, int top, const std::vector<Region::Span>& rows) {
  Region r = Region::fromRowSpans(top, rows);
  r.offset(left, 0);
  return r;
}

}  // namespace

HRGN CreateRegionFrom(Region region) {
  auto obj = std::make_unique<RegionObject>();
  obj->region = std::move(region);
  return state().regions.add(std::move(obj));
}

const Region* LookupRegion(HRGN rgn) {
  RegionObject* r = region(rgn);
  return r ? &r->region : nullptr;
}

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
  return CreateRegionFrom(Region(normalized(left, top, right, bottom)));
}

HRGN CreateRectRgnIndirect(const RECT* r) {
  return r ? CreateRectRgn(r->left, r->top, r->right, r->bottom) : 0;
}

HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int ew, int eh) {
  RECT box = normalized(left, top, right, bottom);
  int64_t w = int64_t{box.right} - box.left - 1, h = int64_t{box.bottom} - box.top - 1;
  if (w <= 0 || h <= 0) return CreateRegionFrom(Region());
  if (w > std::numeric_limits<int>::max() / 2 || h > (1 << 24)) return 0;
  return CreateRegionFrom(shapeFromRows(box.left, box.top, RoundRectRowSpans(static_cast<int>(w),
                                                                               static_cast<int>(h), ew, eh)));
}

HRGN CreateEllipticRgn(int left, int top, int right, int bottom) {
  RECT box = normalized(left, top, right, bottom);
  int64_t w = int64_t{box.right} - box.left - 1, h = int64_t{box.bottom} - box.top - 1;
  if (w <= 0 || h <= 0) return CreateRegionFrom(Region());
  if (w > std::numeric_limits<int>::max() / 2 || h > (1 << 24)) return 0;
  return CreateRegionFrom(shapeFromRows(box.left, box.top, EllipseRowSpans(static_cast<int>(w), static_cast<int>(h))));
}

HRGN CreateEllipticRgnIndirect(const RECT* r) {
  return r ? CreateEllipticRgn(r->left, r->top, r->right, r->bottom) : 0;
}

HRGN ExtCreateRegion(const XFORM* xform, DWORD count, const RGNDATA* data) {
  if (xform || !data || count < sizeof(RGNDATAHEADER)) return 0;
  const RGNDATAHEADER& h = data->rdh;
  if (h.dwSize < sizeof(RGNDATAHEADER) || h.iType != RDH_RECTANGLES) return 0;
  // The rectangles follow the header; their count must fit in the bytes given.
  uint64_t need = uint64_t{h.dwSize} + uint64_t{h.nCount} * sizeof(RECT);
  if (need > count) return 0;
  std::vector<RECT> rects(h.nCount);
  if (h.nCount) std::memcpy(rects.data(), reinterpret_cast<const char*>(data) + h.dwSize, h.nCount * sizeof(RECT));
  // Callers build these lists by hand; a rectangle given corner-first is still meant.
  for (RECT& r : rects) r = normalized(r.left, r.top, r.right, r.bottom);
  return CreateRegionFrom(Region::fromRects(rects));
}

DWORD GetRegionData(HRGN rgn, DWORD size, RGNDATA* data) {
  RegionObject* r = region(rgn);
  if (!r) return 0;
  const auto& rects = r->region.rects();
  uint64_t need = sizeof(RGNDATAHEADER) + uint64_t{rects.size()} * sizeof(RECT);
  if (need > std::numeric_limits<DWORD>::max()) return 0;
  if (!data) return static_cast<DWORD>(need);
  if (size < need) return 0;
  RGNDATAHEADER h;
  h.nCount = static_cast<DWORD>(rects.size());
  h.nRgnSize = static_cast<DWORD>(rects.size() * sizeof(RECT));
  h.rcBound = r->region.extents();
  std::memcpy(static_cast<void*>(data), &h, sizeof h);
  if (!rects.empty()) std::memcpy(reinterpret_cast<char*>(data) + sizeof h, rects.data(), rects.size() * sizeof(RECT));
  return static_cast<DWORD>(need);
}

int CombineRgn(HRGN dest, HRGN src1, HRGN src2, int mode) {
  RegionObject* d = region(dest);
  RegionObject* a = region(src1);
  if (!d || !a || mode < RGN_AND || mode > RGN_COPY) return ERROR;
  if (mode == RGN_COPY) {
    d->region = a->region;
  } else {
    RegionObject* b = region(src2);
    if (!b) return ERROR;
    d->region = Region::combine(a->region, b->region, static_cast<RegionOp>(mode));
  }
  return static_cast<int>(d->region.kind());
}

int OffsetRgn(HRGN rgn, int dx, int dy) {
  RegionObject* r = region(rgn);
  if (!r || !r->region.offset(dx, dy)) return ERROR;
  return static_cast<int>(r->region.kind());
}

BOOL PtInRegion(HRGN rgn, int x, int y) {
  RegionObject* r = region(rgn);
  return r && r->region.contains(x, y) ? TRUE : FALSE;
}

BOOL RectInRegion(HRGN rgn, const RECT* rc) {
  RegionObject* r = region(rgn);
  if (!r || !rc) return FALSE;
  return r->region.intersects(normalized(rc->left, rc->top, rc->right, rc->bottom)) ? TRUE : FALSE;
}

int GetRgnBox(HRGN rgn, RECT* out) {
  RegionObject* r = region(rgn);
  if (!r || !out) return ERROR;
  *out = r->region.extents();
  return static_cast<int>(r->region.kind());
}

BOOL EqualRgn(HRGN a, HRGN b) {
  RegionObject* ra = region(a);
  RegionObject* rb = region(b);
  if (!ra || !rb) return FALSE;  // the classic call answers ERROR (0) for a bad handle
  return ra->region == rb->region ? TRUE : FALSE;
}

BOOL SetRectRgn(HRGN rgn, int left, int top, int right, int bottom) {
  RegionObject* r = region(rgn);
  if (!r) return FALSE;
  r->region = Region(normalized(left, top, right, bottom));
  return TRUE;
}

std::vector<RECT> GetRegionRects(HRGN rgn) {
  RegionObject* r = region(rgn);
  return r ? r->region.rects() : std::vector<RECT>{};
}

}  // namespace mx::platform
