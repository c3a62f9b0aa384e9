// Brushes at work: pattern sampling and the raster operations without a source.
#include "platform/GdiInternal.h"

namespace mx::platform::gdi {

namespace {

// Positive remainder, for pattern coordinates left of or above the brush origin.
int wrap(int v, int n) {
  int r = v % n;
  return r < 0 ? r + n : r;
}

bool hatchBit(int hatch, int x, int y) {
  switch (hatch) {
    case HS_HORIZONTAL: return y == 0;
    case HS_VERTICAL: return x == 0;
    case HS_FDIAGONAL: return x == y;
    case HS_BDIAGONAL: return x + y == 7;
    case HS_CROSS: return x == 0 || y == 0;
    case HS_DIAGCROSS: return x == y || x + y == 7;
    default: return false;
  }
}

}  // namespace

uint32_t BrushPaint::at(int x, int y, bool& paint) const {
  paint = true;
  switch (kind) {
    case Kind::Solid: return color;
    case Kind::Pattern: {
      int px = wrap(x - orgX, brush->patternWidth), py = wrap(y - orgY, brush->patternHeight);
      return brush->pattern[static_cast<size_t>(py) * brush->patternWidth + px];
    }
    case Kind::Hatch:
      if (hatchBit(hatch, wrap(x - orgX, 8), wrap(y - orgY, 8))) return color;
      paint = bkOpaque;
      return bk;
    case Kind::None: break;
  }
  paint = false;
  return 0;
}

BrushPaint brushPaint(const DeviceContext& dc, HBRUSH h) {
  BrushPaint p;
  const BrushObject* b = brush(h);
  if (!b) return p;
  // The pattern is anchored to the DC's own device space, so that a window DC and a memory DC
  // of the same picture line their patterns up.
  p.orgX = dc.origin.x + dc.brushOrg.x;
  p.orgY = dc.origin.y + dc.brushOrg.y;
  if (h == state().stock[DC_BRUSH]) {
    p.kind = BrushPaint::Kind::Solid;
    p.color = pixelOf(dc.dcBrushColor);
    return p;
  }
  switch (b->style) {
    case BS_SOLID:
      p.kind = BrushPaint::Kind::Solid;
      p.color = pixelOf(b->color);
      break;
    case BS_PATTERN:
      if (b->patternWidth > 0 && b->patternHeight > 0) {
        p.kind = BrushPaint::Kind::Pattern;
        p.brush = b;
      }
      break;
    case BS_HATCHED:
      p.kind = BrushPaint::Kind::Hatch;
      p.color = pixelOf(b->color);
      p.bk = pixelOf(dc.bkColor);
      p.bkOpaque = dc.bkMode == OPAQUE;
      p.hatch = b->hatch;
      break;
    default: break;
  }
  return p;
}

void patSpan(Surface& s, int y, int x0, int x1, const BrushPaint& b, uint32_t code) {
  if (x1 <= x0) return;
  if (ropUsesPattern(code) && b.kind == BrushPaint::Kind::None) return;  // a null brush paints nothing
  uint32_t* row = s.row(y);
  if (code == 0xF0 && b.kind == BrushPaint::Kind::Solid) {
    std::fill(row + x0, row + x1, b.color);
    return;
  }
  const uint32_t keep = ropUsesDest(code) ? 0xFFFFFFFFu : 0x00FFFFFFu;
  for (int x = x0; x < x1; ++x) {
    bool paint = true;
    uint32_t p = b.kind == BrushPaint::Kind::None ? 0 : b.at(x, y, paint);
    if (paint) row[x] = rop3(code, p, 0, row[x]) & keep;
  }
}

void patRect(DeviceContext& dc, const RECT& r, const BrushPaint& b, uint32_t code) {
  forEachClipped(dc, r, [&](const RECT& part) {
    for (int y = part.top; y < part.bottom; ++y) patSpan(*dc.surface, y, part.left, part.right, b, code);
  });
}

void patRegion(DeviceContext& dc, const Region& r, const BrushPaint& b, uint32_t code) {
  if (!dc.surface || r.empty()) return;
  Region visible = Region::combine(r, clipRegion(dc), RegionOp::And);
  for (const RECT& part : visible.rects())
    for (int y = part.top; y < part.bottom; ++y) patSpan(*dc.surface, y, part.left, part.right, b, code);
}

Surface& currentSurface(BitmapObject& b) {
  if (b.packed && !b.selectedInto) pull24(b);
  return b.surface;
}

}  // namespace mx::platform::gdi
