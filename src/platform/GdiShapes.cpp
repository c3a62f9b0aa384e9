// Lines, figures, region painting, the focus rectangle and gradients.
#include <cmath>
#include <cstdlib>

#include "platform/GdiInternal.h"
#include "platform/SysColors.h"

namespace mx::platform {

using namespace gdi;

namespace {

using Span = Region::Span;

struct PenPaint {
  bool visible = false;
  uint32_t color = 0;
  int width = 1;
  UINT style = PS_SOLID;
};

PenPaint penPaint(const DeviceContext& dc) {
  PenPaint p;
  const PenObject* po = pen(dc.pen);
  if (!po || po->style == PS_NULL) return p;
  p.visible = true;
  p.color = pixelOf(dc.pen == state().stock[DC_PEN] ? dc.dcPenColor : po->color);
  p.width = po->width;
  p.style = po->style;
  return p;
}

BrushPaint solid(uint32_t color) {
  BrushPaint b;
  b.kind = BrushPaint::Kind::Solid;
  b.color = color;
  return b;
}

constexpr uint32_t kPatCopy = 0xF0;

// Dash patterns of the styled one-pixel pens, in pixels: on, off, on, off ...
std::span<const int> dashPattern(UINT style) {
  static constexpr int dash[] = {18, 6};
  static constexpr int dot[] = {3, 3};
  static constexpr int dashDot[] = {9, 6, 3, 6};
  static constexpr int dashDotDot[] = {9, 3, 3, 3, 3, 3};
  switch (style) {
    case PS_DASH: return dash;
    case PS_DOT: return dot;
    case PS_DASHDOT: return dashDot;
    case PS_DASHDOTDOT: return dashDotDot;
    default: return {};
  }
}

// Draws lines with the DC's pen, keeping the dash position from one segment to the next.
class LinePainter {
 public:
  explicit LinePainter(DeviceContext& dc) : m_dc(dc), m_pen(penPaint(dc)), m_dash(dashPattern(m_pen.style)) {
    for (int v : m_dash) m_period += v;
  }

  // The segment from a to b in device coordinates, b itself excluded.
  void segment(POINT a, POINT b) {
    if (!m_pen.visible || !m_dc.surface) return;
    if (m_pen.width > 1) {
      thick(a, b);
      return;
    }
    int dx = std::abs(b.x - a.x), sx = a.x < b.x ? 1 : -1;
    int dy = -std::abs(b.y - a.y), sy = a.y < b.y ? 1 : -1;
    int err = dx + dy;
    int x = a.x, y = a.y;
    while (x != b.x || y != b.y) {
      plot(x, y);
      int e2 = 2 * err;
      if (e2 >= dy) {
        err += dy;
        x += sx;
      }
      if (e2 <= dx) {
        err += dx;
        y += sy;
      }
    }
  }

 private:
  void plot(int x, int y) {
    bool on = true;
    if (m_period) {
      int pos = m_step++ % m_period, k = 0;
      while (pos >= m_dash[static_cast<size_t>(k)]) pos -= m_dash[static_cast<size_t>(k++)];
      on = k % 2 == 0;
    }
    if (!on && m_dc.bkMode != OPAQUE) return;
    if (!clipContains(m_dc, x, y)) return;
    m_dc.surface->row(y)[x] = on ? m_pen.color : pixelOf(m_dc.bkColor);
  }

  // Wide pens: a round stamp of the pen's width at every point of the centre line, end points
  // included (wide pens have round ends), painted once as a region.
  void thick(POINT a, POINT b) {
    std::vector<Span> stamp = EllipseRowSpans(m_pen.width, m_pen.width);
    int half = m_pen.width / 2;
    std::vector<RECT> rects;
    auto put = [&](int x, int y) {
      for (size_t r = 0; r < stamp.size(); ++r) {
        int ry = y - half + static_cast<int>(r);
        rects.push_back(RECT{x - half + stamp[r].left, ry, x - half + stamp[r].right, ry + 1});
      }
    };
    int dx = std::abs(b.x - a.x), sx = a.x < b.x ? 1 : -1;
    int dy = -std::abs(b.y - a.y), sy = a.y < b.y ? 1 : -1;
    int err = dx + dy;
    int x = a.x, y = a.y;
    for (;;) {
      put(x, y);
      if (x == b.x && y == b.y) break;
      int e2 = 2 * err;
      if (e2 >= dy) {
        err += dy;
        x += sx;
      }
      if (e2 <= dx) {
        err += dx;
        y += sy;
      }
    }
    patRegion(m_dc, Region::fromRects(rects), solid(m_pen.color), kPatCopy);
  }

  DeviceContext& m_dc;
  PenPaint m_pen;
  std::span<const int> m_dash;
  int m_period = 0;
  int m_step = 0;
};

// Rows shrunk by one pixel on every side where a 4-neighbour is outside the shape, `times`
// times. Exact for shapes whose rows are single spans that grow towards the middle (ellipses,
// round rectangles).
std::vector<Span> erode(std::vector<Span> rows, int times) {
  for (int t = 0; t < times; ++t) {
    std::vector<Span> out(rows.size(), Span{0, 0});
    for (size_t y = 0; y < rows.size(); ++y) {
      if (y == 0 || y + 1 == rows.size()) continue;
      int l = std::max({rows[y].left + 1, rows[y - 1].left, rows[y + 1].left});
      int r = std::min({rows[y].right - 1, rows[y - 1].right, rows[y + 1].right});
      if (l < r) out[y] = Span{l, r};
    }
    rows = std::move(out);
  }
  return rows;
}

Region rowsAt(int left, int top, const std::vector<Span>& rows) {
  Region r = Region::fromRowSpans(top, rows);
  r.offset(left, 0);
  return r;
}

// A closed figure from its rows: outlined with the pen, inside filled with the brush. With a
// null pen the figure loses its last column and row and is all brush.
template <class RowsOf>
BOOL figure(HDC hdc, int l, int t, int r, int b, RowsOf rowsOf) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  RECT box = toDeviceRect(*dc, RECT{l, t, r, b});
  PenPaint pen = penPaint(*dc);
  if (!pen.visible) {
    box.right -= 1;
    box.bottom -= 1;
  }
  if (box.empty() || !dc->surface) return TRUE;
  // Keep row tables to a sane size: figures far larger than any surface are clipped anyway.
  if (int64_t{box.right} - box.left > (1 << 24) || int64_t{box.bottom} - box.top > (1 << 24)) return FALSE;
  std::vector<Span> rows = rowsOf(box.width(), box.height());
  std::vector<Span> inner = pen.visible ? erode(rows, pen.width) : rows;
  patRegion(*dc, rowsAt(box.left, box.top, inner), brushPaint(*dc, dc->brush), kPatCopy);
  if (pen.visible) {
    Region outline = Region::combine(rowsAt(box.left, box.top, rows), rowsAt(box.left, box.top, inner), RegionOp::Diff);
    patRegion(*dc, outline, solid(pen.color), kPatCopy);
  }
  return TRUE;
}

// Scan conversion of a polygon: a pixel is inside when its centre is, by the even-odd or the
// winding rule. Edges are compared in doubled coordinates, where pixel centres are odd.
Region polygonRegion(const POINT* pts, int n, int mode) {
  if (!pts || n < 3) return Region();
  int64_t ymin = pts[0].y, ymax = pts[0].y;
  for (int i = 1; i < n; ++i) {
    ymin = std::min<int64_t>(ymin, pts[i].y);
    ymax = std::max<int64_t>(ymax, pts[i].y);
  }
  std::vector<RECT> rects;
  std::vector<std::pair<double, int>> xs;
  for (int64_t y = ymin; y < ymax; ++y) {
    double yc = static_cast<double>(y) + 0.5;
    xs.clear();
    for (int i = 0; i < n; ++i) {
      POINT a = pts[i], b = pts[(i + 1) % n];
      if (a.y == b.y) continue;
      int dir = a.y < b.y ? 1 : -1;
      if (a.y > b.y) std::swap(a, b);
      if (yc < a.y || yc >= b.y) continue;
      double x = a.x + (yc - a.y) * (static_cast<double>(b.x) - a.x) / (static_cast<double>(b.y) - a.y);
      xs.emplace_back(x, dir);
    }
    std::sort(xs.begin(), xs.end());
    int winding = 0;
    for (size_t k = 0; k + 1 < xs.size(); ++k) {
      winding += xs[k].second;
      bool inside = mode == WINDING ? winding != 0 : (k % 2 == 0);
      if (!inside) continue;
      // Pixels whose centres x + 0.5 lie in [xa, xb).
      auto x0 = static_cast<int64_t>(std::ceil(xs[k].first - 0.5));
      auto x1 = static_cast<int64_t>(std::ceil(xs[k + 1].first - 0.5));
      if (x0 < x1)
        rects.push_back(RECT{static_cast<int>(x0), static_cast<int>(y), static_cast<int>(x1), static_cast<int>(y + 1)});
    }
  }
  return Region::fromRects(rects);
}

}  // namespace

// ---- rectangles -------------------------------------------------------------------------------

int FillRect(HDC hdc, const RECT* r, HBRUSH hbr) {
  DeviceContext* dc = LookupDC(hdc);
  // Small values are not handles but COLOR_ indexes plus one.
  if (hbr > 0 && hbr <= static_cast<HBRUSH>(kSysColorCount)) hbr = GetSysColorBrush(static_cast<int>(hbr) - 1);
  if (!dc || !r || !gdi::brush(hbr)) return 0;
  patRect(*dc, toDeviceRect(*dc, *r), brushPaint(*dc, hbr), kPatCopy);
  return 1;
}

int FrameRect(HDC hdc, const RECT* r, HBRUSH hbr) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !r || !gdi::brush(hbr)) return 0;
  RECT d = toDeviceRect(*dc, *r);
  if (d.empty()) return 1;
  Region frame = Region::combine(Region(d), Region(RECT{d.left + 1, d.top + 1, d.right - 1, d.bottom - 1}),
                                 RegionOp::Diff);
  patRegion(*dc, frame, brushPaint(*dc, hbr), kPatCopy);
  return 1;
}

BOOL InvertRect(HDC hdc, const RECT* r) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !r) return FALSE;
  patRect(*dc, toDeviceRect(*dc, *r), BrushPaint{}, 0x55);
  return TRUE;
}

BOOL Rectangle(HDC hdc, int l, int t, int r, int b) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  PenPaint pen = penPaint(*dc);
  if (pen.visible && pen.style != PS_SOLID && pen.style != PS_INSIDEFRAME) {
    // Styled pens walk the outline so that the dashes run around the corners.
    RECT d = toDeviceRect(*dc, RECT{l, t, r, b});
    if (d.empty()) return TRUE;
    patRect(*dc, RECT{d.left + 1, d.top + 1, d.right - 1, d.bottom - 1}, brushPaint(*dc, dc->brush), kPatCopy);
    LinePainter lp(*dc);
    POINT c[5] = {{d.left, d.top}, {d.right - 1, d.top}, {d.right - 1, d.bottom - 1}, {d.left, d.bottom - 1}, {d.left, d.top}};
    for (int i = 0; i < 4; ++i) lp.segment(c[i], c[i + 1]);
    return TRUE;
  }
  return figure(hdc, l, t, r, b, [](int w, int h) { return std::vector<Span>(static_cast<size_t>(h), Span{0, w}); });
}

BOOL RoundRect(HDC hdc, int l, int t, int r, int b, int ew, int eh) {
  return figure(hdc, l, t, r, b, [&](int w, int h) { return RoundRectRowSpans(w, h, ew, eh); });
}

BOOL Ellipse(HDC hdc, int l, int t, int r, int b) {
  return figure(hdc, l, t, r, b, [](int w, int h) { return EllipseRowSpans(w, h); });
}

// ---- lines -----------------------------------------------------------------------------------

BOOL MoveToEx(HDC hdc, int x, int y, POINT* old) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  if (old) *old = dc->currentPos;
  dc->currentPos = POINT{x, y};
  return TRUE;
}

BOOL LineTo(HDC hdc, int x, int y) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  LinePainter lp(*dc);
  lp.segment(dc->toDevice(dc->currentPos), dc->toDevice(POINT{x, y}));
  dc->currentPos = POINT{x, y};
  return TRUE;
}

BOOL Polyline(HDC hdc, const POINT* pts, int n) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !pts || n < 2) return FALSE;
  LinePainter lp(*dc);
  for (int i = 0; i + 1 < n; ++i) lp.segment(dc->toDevice(pts[i]), dc->toDevice(pts[i + 1]));
  return TRUE;
}

BOOL Polygon(HDC hdc, const POINT* pts, int n) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !pts || n < 2) return FALSE;
  std::vector<POINT> dev(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) dev[static_cast<size_t>(i)] = dc->toDevice(pts[i]);
  patRegion(*dc, polygonRegion(dev.data(), n, dc->polyFillMode), brushPaint(*dc, dc->brush), kPatCopy);
  LinePainter lp(*dc);
  for (int i = 0; i < n; ++i) lp.segment(dev[static_cast<size_t>(i)], dev[static_cast<size_t>((i + 1) % n)]);
  return TRUE;
}

HRGN CreatePolygonRgn(const POINT* pts, int n, int mode) {
  if (!pts || n < 0 || (mode != ALTERNATE && mode != WINDING)) return 0;
  return CreateRegionFrom(polygonRegion(pts, n, mode));
}

// ---- focus rectangle and regions ------------------------------------------------------------

BOOL DrawFocusRect(HDC hdc, const RECT* r) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !r) return FALSE;
  RECT d = toDeviceRect(*dc, *r);
  if (d.empty() || !dc->surface) return TRUE;
  // The dots follow a checkerboard anchored at the DC's brush origin, so two focus rectangles
  // that share an edge agree on it.
  const int ox = dc->origin.x + dc->brushOrg.x, oy = dc->origin.y + dc->brushOrg.y;
  const uint32_t on = pixelOf(dc->bkColor), off = pixelOf(dc->textColor);
  auto dot = [&](int x, int y) {
    if (!clipContains(*dc, x, y)) return;
    dc->surface->row(y)[x] ^= ((x - ox + y - oy) & 1) == 0 ? on : off;
  };
  for (int x = d.left; x < d.right; ++x) {
    dot(x, d.top);
    if (d.bottom - 1 > d.top) dot(x, d.bottom - 1);
  }
  for (int y = d.top + 1; y < d.bottom - 1; ++y) {
    dot(d.left, y);
    if (d.right - 1 > d.left) dot(d.right - 1, y);
  }
  return TRUE;
}

namespace {
// A region in logical coordinates moved to device coordinates.
std::optional<Region> deviceRegion(const DeviceContext& dc, HRGN rgn) {
  const Region* r = LookupRegion(rgn);
  if (!r) return std::nullopt;
  Region out = *r;
  POINT o = dc.toDevice(POINT{0, 0});
  if (!out.offset(o.x, o.y)) return Region();
  return out;
}
}  // namespace

BOOL FillRgn(HDC hdc, HRGN rgn, HBRUSH hbr) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !gdi::brush(hbr)) return FALSE;
  auto r = deviceRegion(*dc, rgn);
  if (!r) return FALSE;
  patRegion(*dc, *r, brushPaint(*dc, hbr), kPatCopy);
  return TRUE;
}

BOOL PaintRgn(HDC hdc, HRGN rgn) {
  DeviceContext* dc = LookupDC(hdc);
  return dc ? FillRgn(hdc, rgn, dc->brush) : FALSE;
}

BOOL InvertRgn(HDC hdc, HRGN rgn) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  auto r = deviceRegion(*dc, rgn);
  if (!r) return FALSE;
  patRegion(*dc, *r, BrushPaint{}, 0x55);
  return TRUE;
}

BOOL FrameRgn(HDC hdc, HRGN rgn, HBRUSH hbr, int w, int h) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !gdi::brush(hbr) || w < 0 || h < 0) return FALSE;
  auto r = deviceRegion(*dc, rgn);
  if (!r) return FALSE;
  // The inside is what remains when the region is intersected with itself moved w pixels each
  // way horizontally and h pixels each way vertically; the frame is the rest.
  Region inner = *r;
  for (auto [dx, dy] : {std::pair{w, 0}, std::pair{-w, 0}, std::pair{0, h}, std::pair{0, -h}}) {
    Region moved = *r;
    if (!moved.offset(dx, dy)) return FALSE;
    inner = Region::combine(inner, moved, RegionOp::And);
  }
  patRegion(*dc, Region::combine(*r, inner, RegionOp::Diff), brushPaint(*dc, hbr), kPatCopy);
  return TRUE;
}

// ---- gradients -----------------------------------------------------------------------------

namespace {

uint32_t vertexPixel(uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
  return ((a >> 8) << 24) | ((r >> 8) << 16) | ((g >> 8) << 8) | (b >> 8);
}

// c0 + (c1 - c0) * i / n, in 16 bits, truncating towards zero.
uint32_t lerp16(uint32_t c0, uint32_t c1, int64_t i, int64_t n) {
  return static_cast<uint32_t>(int64_t{c0} + (int64_t{c1} - int64_t{c0}) * i / n);
}

void gradientRect(DeviceContext& dc, const TRIVERTEX& a, const TRIVERTEX& b, bool horizontal) {
  RECT d = orderedRect(dc.toDevice(POINT{a.x, a.y}), dc.toDevice(POINT{b.x, b.y}));
  // The colour runs from the vertex on the left (top) edge to the one beyond the right
  // (bottom) edge: pixel i of n gets c0 + (c1 - c0) * i / n, so the far colour is approached
  // but, being on the excluded edge, not reached.
  bool aFirst = horizontal ? a.x <= b.x : a.y <= b.y;
  const TRIVERTEX& v0 = aFirst ? a : b;
  const TRIVERTEX& v1 = aFirst ? b : a;
  const int64_t n = horizontal ? d.width() : d.height();
  forEachClipped(dc, d, [&](const RECT& part) {
    for (int y = part.top; y < part.bottom; ++y) {
      uint32_t* row = dc.surface->row(y);
      for (int x = part.left; x < part.right; ++x) {
        int64_t i = horizontal ? x - d.left : y - d.top;
        row[x] = vertexPixel(lerp16(v0.Red, v1.Red, i, n), lerp16(v0.Green, v1.Green, i, n),
                             lerp16(v0.Blue, v1.Blue, i, n), lerp16(v0.Alpha, v1.Alpha, i, n));
      }
    }
  });
}

// Triangles: pixels whose centres lie inside (edges included), coloured by barycentric weights
// of the centre, summed in 16 bits and truncated.
void gradientTriangle(DeviceContext& dc, const TRIVERTEX& a, const TRIVERTEX& b, const TRIVERTEX& c) {
  using Big = __int128;
  POINT p[3] = {dc.toDevice(POINT{a.x, a.y}), dc.toDevice(POINT{b.x, b.y}), dc.toDevice(POINT{c.x, c.y})};
  const TRIVERTEX* v[3] = {&a, &b, &c};
  // Doubled coordinates put pixel centres on odd integers.
  auto edge = [](POINT p0, POINT p1, int64_t x2, int64_t y2) {
    return Big{2 * int64_t{p1.x} - 2 * int64_t{p0.x}} * (y2 - 2 * int64_t{p0.y}) -
           Big{2 * int64_t{p1.y} - 2 * int64_t{p0.y}} * (x2 - 2 * int64_t{p0.x});
  };
  Big area = edge(p[0], p[1], 2 * int64_t{p[2].x}, 2 * int64_t{p[2].y});
  if (area == 0) return;
  RECT box{std::min({p[0].x, p[1].x, p[2].x}), std::min({p[0].y, p[1].y, p[2].y}),
           std::max({p[0].x, p[1].x, p[2].x}), std::max({p[0].y, p[1].y, p[2].y})};
  forEachClipped(dc, box, [&](const RECT& part) {
    for (int y = part.top; y < part.bottom; ++y) {
      uint32_t* row = dc.surface->row(y);
      for (int x = part.left; x < part.right; ++x) {
        int64_t cx = 2 * int64_t{x} + 1, cy = 2 * int64_t{y} + 1;
        Big w0 = edge(p[1], p[2], cx, cy), w1 = edge(p[2], p[0], cx, cy), w2 = edge(p[0], p[1], cx, cy);
        if (area < 0) {
          w0 = -w0;
          w1 = -w1;
          w2 = -w2;
        }
        if (w0 < 0 || w1 < 0 || w2 < 0) continue;
        Big total = area < 0 ? -area : area;
        auto mix = [&](COLOR16 TRIVERTEX::*ch) {
          return static_cast<uint32_t>((w0 * (v[0]->*ch) + w1 * (v[1]->*ch) + w2 * (v[2]->*ch)) / total);
        };
        row[x] = vertexPixel(mix(&TRIVERTEX::Red), mix(&TRIVERTEX::Green), mix(&TRIVERTEX::Blue), mix(&TRIVERTEX::Alpha));
      }
    }
  });
}

}  // namespace

BOOL GradientFill(HDC hdc, const TRIVERTEX* vertices, ULONG nVertices, const void* mesh, ULONG nMesh, ULONG mode) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !vertices || !mesh || !dc->surface) return FALSE;
  if (mode == GRADIENT_FILL_RECT_H || mode == GRADIENT_FILL_RECT_V) {
    const auto* rects = static_cast<const GRADIENT_RECT*>(mesh);
    for (ULONG i = 0; i < nMesh; ++i)
      if (rects[i].UpperLeft >= nVertices || rects[i].LowerRight >= nVertices) return FALSE;
    for (ULONG i = 0; i < nMesh; ++i)
      gradientRect(*dc, vertices[rects[i].UpperLeft], vertices[rects[i].LowerRight], mode == GRADIENT_FILL_RECT_H);
    return TRUE;
  }
  if (mode == GRADIENT_FILL_TRIANGLE) {
    const auto* tris = static_cast<const GRADIENT_TRIANGLE*>(mesh);
    for (ULONG i = 0; i < nMesh; ++i)
      if (tris[i].Vertex1 >= nVertices || tris[i].Vertex2 >= nVertices || tris[i].Vertex3 >= nVertices) return FALSE;
    for (ULONG i = 0; i < nMesh; ++i)
      gradientTriangle(*dc, vertices[tris[i].Vertex1], vertices[tris[i].Vertex2], vertices[tris[i].Vertex3]);
    return TRUE;
  }
  return FALSE;
}

}  // namespace mx::platform
