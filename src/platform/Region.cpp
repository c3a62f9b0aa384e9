#include "platform/Region.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace mx::platform {

namespace {

using Span = Region::Span;

// Appends bands to a rectangle list, merging a band into the one above it when they touch and
// have the same spans, which keeps the representation unique.
class BandWriter {
 public:
  explicit BandWriter(std::vector<RECT>& out) : m_out(out) {}

  void emit(int top, int bottom, const std::vector<Span>& spans) {
    if (spans.empty() || bottom <= top) return;
    if (m_prevStart != kNone && m_out[m_prevStart].bottom == top &&
        m_out.size() - m_prevStart == spans.size()) {
      bool same = true;
      for (size_t i = 0; i < spans.size() && same; ++i) {
        const RECT& r = m_out[m_prevStart + i];
        same = r.left == spans[i].left && r.right == spans[i].right;
      }
      if (same) {
        for (size_t i = m_prevStart; i < m_out.size(); ++i) m_out[i].bottom = bottom;
        return;
      }
    }
    m_prevStart = m_out.size();
    for (const Span& s : spans) m_out.push_back(RECT{s.left, top, s.right, bottom});
  }

 private:
  static constexpr size_t kNone = std::numeric_limits<size_t>::max();
  std::vector<RECT>& m_out;
  size_t m_prevStart = kNone;
};

[[nodiscard]] bool applyOp(RegionOp op, bool a, bool b) {
  switch (op) {
    case RegionOp::And: return a && b;
    case RegionOp::Or: return a || b;
    case RegionOp::Xor: return a != b;
    case RegionOp::Diff: return a && !b;
    case RegionOp::Copy: return a;
  }
  return false;
}

// Combines two sorted, non-touching span lists of one band. Edges are walked in x order; both
// inputs are toggled at an x before the result is evaluated there, so no empty span and no
// pair of touching spans can come out.
void combineSpans(const RECT* a, size_t na, const RECT* b, size_t nb, RegionOp op,
                  std::vector<Span>& out) {
  out.clear();
  constexpr int64_t kEnd = std::numeric_limits<int64_t>::max();
  size_t i = 0, j = 0;
  bool inA = false, inB = false, cur = false;
  int start = 0;
  while (i < 2 * na || j < 2 * nb) {
    int64_t xa = i < 2 * na ? (i % 2 ? a[i / 2].right : a[i / 2].left) : kEnd;
    int64_t xb = j < 2 * nb ? (j % 2 ? b[j / 2].right : b[j / 2].left) : kEnd;
    int64_t x = std::min(xa, xb);
    if (xa == x) { inA = !inA; ++i; }
    if (xb == x) { inB = !inB; ++j; }
    bool in = applyOp(op, inA, inB);
    if (in != cur) {
      if (in) start = static_cast<int>(x);
      else out.push_back(Span{start, static_cast<int>(x)});
      cur = in;
    }
  }
}

// Index one past the band that starts at `first`.
[[nodiscard]] size_t bandEnd(const std::vector<RECT>& rects, size_t first) {
  size_t e = first;
  while (e < rects.size() && rects[e].top == rects[first].top) ++e;
  return e;
}

}  // namespace

Region::Region(const RECT& r) {
  if (!r.empty()) m_rects.push_back(r);
  computeExtents();
}

void Region::computeExtents() {
  if (m_rects.empty()) {
    m_extents = RECT{};
    return;
  }
  m_extents = RECT{m_rects.front().left, m_rects.front().top, m_rects.front().right, m_rects.back().bottom};
  for (const RECT& r : m_rects) {
    m_extents.left = std::min(m_extents.left, r.left);
    m_extents.right = std::max(m_extents.right, r.right);
  }
}

Region Region::fromRects(std::span<const RECT> input) {
  std::vector<RECT> rects;
  rects.reserve(input.size());
  for (const RECT& r : input)
    if (!r.empty()) rects.push_back(r);
  Region out;
  if (rects.empty()) return out;
  std::sort(rects.begin(), rects.end(), [](const RECT& a, const RECT& b) { return a.top < b.top; });

  std::vector<int> ys;
  ys.reserve(rects.size() * 2);
  for (const RECT& r : rects) {
    ys.push_back(r.top);
    ys.push_back(r.bottom);
  }
  std::sort(ys.begin(), ys.end());
  ys.erase(std::unique(ys.begin(), ys.end()), ys.end());

  // Sweep downwards keeping the rectangles that cover the current interval. Every interval
  // between two consecutive edges is covered by the same rectangles from top to bottom.
  std::vector<RECT> active;
  std::vector<Span> spans;
  BandWriter writer(out.m_rects);
  size_t next = 0;
  for (size_t k = 0; k + 1 < ys.size(); ++k) {
    int y0 = ys[k], y1 = ys[k + 1];
    std::erase_if(active, [&](const RECT& r) { return r.bottom <= y0; });
    while (next < rects.size() && rects[next].top <= y0) active.push_back(rects[next++]);
    if (active.empty()) continue;
    std::sort(active.begin(), active.end(), [](const RECT& a, const RECT& b) { return a.left < b.left; });
    spans.clear();
    for (const RECT& r : active) {
      if (!spans.empty() && r.left <= spans.back().right)
        spans.back().right = std::max(spans.back().right, r.right);
      else
        spans.push_back(Span{r.left, r.right});
    }
    writer.emit(y0, y1, spans);
  }
  out.computeExtents();
  return out;
}

Region Region::fromRowSpans(int top, std::span<const Span> rows) {
  Region out;
  BandWriter writer(out.m_rects);
  std::vector<Span> one(1);
  for (size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].right <= rows[i].left) continue;
    one[0] = rows[i];
    int y = top + static_cast<int>(i);
    writer.emit(y, y + 1, one);
  }
  out.computeExtents();
  return out;
}

Region Region::combine(const Region& a, const Region& b, RegionOp op) {
  if (op == RegionOp::Copy) return a;
  const auto& ra = a.m_rects;
  const auto& rb = b.m_rects;

  std::vector<int> ys;
  ys.reserve((ra.size() + rb.size()) * 2);
  for (const RECT& r : ra) { ys.push_back(r.top); ys.push_back(r.bottom); }
  for (const RECT& r : rb) { ys.push_back(r.top); ys.push_back(r.bottom); }
  std::sort(ys.begin(), ys.end());
  ys.erase(std::unique(ys.begin(), ys.end()), ys.end());

  Region out;
  BandWriter writer(out.m_rects);
  std::vector<Span> spans;
  size_t ia = 0, ib = 0;
  for (size_t k = 0; k + 1 < ys.size(); ++k) {
    int y0 = ys[k], y1 = ys[k + 1];
    // Skip bands that end above this interval; a band that starts at or above y0 then covers
    // the whole interval, because its edges are among the breakpoints.
    while (ia < ra.size() && ra[ia].bottom <= y0) ia = bandEnd(ra, ia);
    while (ib < rb.size() && rb[ib].bottom <= y0) ib = bandEnd(rb, ib);
    size_t ea = ia, eb = ib;
    if (ia < ra.size() && ra[ia].top <= y0) ea = bandEnd(ra, ia);
    if (ib < rb.size() && rb[ib].top <= y0) eb = bandEnd(rb, ib);
    if (ea == ia && eb == ib) continue;
    combineSpans(ra.data() + ia, ea - ia, rb.data() + ib, eb - ib, op, spans);
    writer.emit(y0, y1, spans);
  }
  out.computeExtents();
  return out;
}

RegionKind Region::kind() const {
  if (m_rects.empty()) return RegionKind::Null;
  return m_rects.size() == 1 ? RegionKind::Simple : RegionKind::Complex;
}

bool Region::contains(int x, int y) const {
  // Bottoms never decrease along the list, so the first rectangle ending below y starts the
  // only band that can hold the point.
  auto it = std::upper_bound(m_rects.begin(), m_rects.end(), y,
                             [](int v, const RECT& r) { return v < r.bottom; });
  if (it == m_rects.end() || it->top > y) return false;
  for (int top = it->top; it != m_rects.end() && it->top == top; ++it) {
    if (x < it->left) return false;
    if (x < it->right) return true;
  }
  return false;
}

bool Region::intersects(const RECT& r) const {
  if (r.empty()) return false;
  auto it = std::upper_bound(m_rects.begin(), m_rects.end(), r.top,
                             [](int v, const RECT& q) { return v < q.bottom; });
  for (; it != m_rects.end() && it->top < r.bottom; ++it)
    if (it->left < r.right && r.left < it->right) return true;
  return false;
}

bool Region::offset(int dx, int dy) {
  if (m_rects.empty() || (dx == 0 && dy == 0)) return true;
  auto fits = [](int64_t v) {
    return v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max();
  };
  if (!fits(int64_t{m_extents.left} + dx) || !fits(int64_t{m_extents.right} + dx) ||
      !fits(int64_t{m_extents.top} + dy) || !fits(int64_t{m_extents.bottom} + dy))
    return false;
  for (RECT& r : m_rects) {
    r.left += dx;
    r.right += dx;
    r.top += dy;
    r.bottom += dy;
  }
  computeExtents();
  return true;
}

// The ellipse rule. With the centre c and the semi-axes a, b measured between pixel centres
// (a = (w - 1) / 2), the pixel at offset (dx, dy) from c belongs to the ellipse when
//     dx^2 / a^2 + (|dy| - 1/2)^2 / b^2 <= 1   or   (|dx| - 1/2)^2 / a^2 + dy^2 / b^2 <= 1
// (a negative |d| - 1/2 counts as 0). This is the filled form of the midpoint ellipse walk,
// which steps to the next row or column as soon as the half-way point leaves the curve; it
// gives the familiar small shapes: 2 x 2 is a square, 3 x 3 a plus sign, 4 x 4 has its four
// corner pixels cut. Doubled coordinates keep it in integers; 128 bits cover any int size.
std::vector<Span> EllipseRowSpans(int w, int h) {
  std::vector<Span> rows;
  if (w <= 0 || h <= 0) return rows;
  rows.resize(static_cast<size_t>(h));
  using Big = __int128;
  const Big A = w - 1, B = h - 1;
  const Big A2 = A * A, B2 = B * B, AB2 = A2 * B2;
  auto inside = [&](int x, int y) {
    Big X = 2 * Big{x} - A, Y = 2 * Big{y} - B;
    Big ax = X < 0 ? -X : X, ay = Y < 0 ? -Y : Y;
    Big Xh = ax > 0 ? ax - 1 : 0, Yh = ay > 0 ? ay - 1 : 0;
    return X * X * B2 + Yh * Yh * A2 <= AB2 || Xh * Xh * B2 + Y * Y * A2 <= AB2;
  };
  for (int y = 0; y < h; ++y) {
    // Inclusion only grows towards the centre column, so search the first included column.
    int lo = 0, hi = (w - 1) / 2;
    if (!inside(hi, y)) {
      rows[static_cast<size_t>(y)] = Span{0, 0};
      continue;
    }
    while (lo < hi) {
      int mid = lo + (hi - lo) / 2;
      if (inside(mid, y)) hi = mid;
      else lo = mid + 1;
    }
    rows[static_cast<size_t>(y)] = Span{lo, w - lo};
  }
  return rows;
}

std::vector<Span> RoundRectRowSpans(int w, int h, int ew, int eh) {
  std::vector<Span> rows;
  if (w <= 0 || h <= 0) return rows;
  ew = std::min(std::abs(ew), w);
  eh = std::min(std::abs(eh), h);
  rows.assign(static_cast<size_t>(h), Span{0, w});
  if (ew <= 1 || eh <= 1) return rows;
  std::vector<Span> corner = EllipseRowSpans(ew, eh);
  // The upper half of the ellipse rounds the top rows, the lower half the bottom rows; the
  // middle row of an odd ellipse is full width and so needs no special case.
  for (int y = 0; y < h; ++y) {
    int ey;
    if (y < eh / 2) ey = y;
    else if (y >= h - eh / 2) ey = y - (h - eh);
    else continue;
    const Span& c = corner[static_cast<size_t>(ey)];
    rows[static_cast<size_t>(y)] = Span{c.left, w - (ew - c.right)};
  }
  return rows;
}

}  // namespace mx::platform
