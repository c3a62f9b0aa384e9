#pragma once
// A region: a set of pixels kept as y-x banded rectangles.
//
//        x ->
//   y   +-----+   +--+          band 1: top 0, bottom 2, two rectangles
//   |   |  a  |   |b |
//   v   +-----+---+--+-----+    band 2: top 2, bottom 5, one rectangle
//       |        c         |
//       +--+---------+-----+
//          |    d    |          band 3: top 5, bottom 6, one rectangle
//          +---------+
//
// Invariants, which every operation keeps and equality relies on:
//   - rectangles are sorted by top, then by left, and none is empty;
//   - a band is a run of rectangles with the same top and bottom; bands do not overlap and
//     follow each other downwards (a gap between bands is allowed);
//   - inside a band rectangles neither overlap nor touch (touching ones are merged);
//   - two bands that touch vertically never have the same list of x spans (they are merged).
// So one set of pixels has exactly one representation. Right and bottom edges are exclusive.
#include <cstdint>
#include <span>
#include <vector>

#include "platform/Types.h"

namespace mx::platform {

// The combine operations, numbered as the classic API numbers them.
enum class RegionOp : int { And = 1, Or = 2, Xor = 3, Diff = 4, Copy = 5 };

// How complex a region is, numbered as the classic API reports it.
enum class RegionKind : int { Error = 0, Null = 1, Simple = 2, Complex = 3 };

class Region {
 public:
  Region() = default;
  explicit Region(const RECT& r);

  // The union of rectangles given in any order, overlapping or not.
  [[nodiscard]] static Region fromRects(std::span<const RECT> rects);
  // One span [left, right) per row, rows from `top` downwards; empty spans allowed.
  struct Span {
    int left = 0, right = 0;
    friend bool operator==(const Span&, const Span&) = default;
  };
  [[nodiscard]] static Region fromRowSpans(int top, std::span<const Span> rows);
  [[nodiscard]] static Region combine(const Region& a, const Region& b, RegionOp op);

  [[nodiscard]] bool empty() const { return m_rects.empty(); }
  [[nodiscard]] const RECT& extents() const { return m_extents; }
  [[nodiscard]] const std::vector<RECT>& rects() const { return m_rects; }
  [[nodiscard]] RegionKind kind() const;

  [[nodiscard]] bool contains(int x, int y) const;
  // True when any pixel of r lies in the region.
  [[nodiscard]] bool intersects(const RECT& r) const;
  [[nodiscard]] Region intersected(const RECT& r) const { return combine(*this, Region(r), RegionOp::And); }

  // Moves every rectangle; refuses (returns false, region unchanged) when a coordinate would
  // leave the 32-bit range.
  bool offset(int dx, int dy);

  friend bool operator==(const Region& a, const Region& b) { return a.m_rects == b.m_rects; }

 private:
  void computeExtents();

  std::vector<RECT> m_rects;
  RECT m_extents{};
};

// Pixel rows of an ellipse filling a box of w x h pixels, as spans relative to the box's left,
// one per row. Shared by ellipse regions, Ellipse and RoundRect so that they agree.
[[nodiscard]] std::vector<Region::Span> EllipseRowSpans(int w, int h);
// Rows of a rectangle of w x h pixels whose corners are rounded by an ellipse of ew x eh.
[[nodiscard]] std::vector<Region::Span> RoundRectRowSpans(int w, int h, int ew, int eh);

}  // namespace mx::platform
