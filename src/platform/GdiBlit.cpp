// Copies between surfaces: BitBlt, StretchBlt, PatBlt, AlphaBlend, TransparentBlt.
#include <cstring>

#include "platform/Blend.h"
#include "platform/GdiInternal.h"

namespace mx::platform {

using namespace gdi;

namespace {

enum class Sampling { Nearest, Average, And, Or };

// Which source pixels feed each destination pixel along one axis.
//
// Destination index i (0 .. |wD| - 1) lies at device coordinate xD + i, or xD - i for a
// negative size; source index j likewise at xS + j or xS - j. Nearest takes j = i * |wS| / |wD|.
// The other samplings look at the whole footprint: in units of 1 / (|wS| * |wD|) of a pixel,
// destination pixel i covers [i * |wS|, (i + 1) * |wS|) and source pixel j covers
// [j * |wD|, (j + 1) * |wD|); the overlap of the two is j's weight, and the weights of one i
// add up to |wS|. And/Or only combine when shrinking; enlarging repeats the nearest pixel.
struct AxisMap {
  int first = 0;                 // first visible destination coordinate
  std::vector<int> start;        // per visible coordinate: offset into src/weight (size + 1)
  std::vector<int> src;          // source coordinates
  std::vector<int64_t> weight;
  std::vector<uint8_t> ok;       // every source coordinate inside the source surface

  AxisMap(int xD, int wD, int xS, int wS, int vis0, int vis1, int srcLimit, Sampling mode) {
    first = vis0;
    const int64_t nd = std::abs(int64_t{wD}), ns = std::abs(int64_t{wS});
    bool footprint = mode == Sampling::Average || (mode != Sampling::Nearest && ns > nd);
    for (int d = vis0; d < vis1; ++d) {
      int64_t i = wD > 0 ? int64_t{d} - xD : int64_t{xD} - d;
      start.push_back(static_cast<int>(src.size()));
      bool inside = true;
      auto add = [&](int64_t j, int64_t w) {
        int64_t s = wS > 0 ? xS + j : xS - j;
        inside = inside && s >= 0 && s < srcLimit;
        src.push_back(static_cast<int>(std::clamp<int64_t>(s, 0, std::max(srcLimit - 1, 0))));
        weight.push_back(w);
      };
      if (!footprint) {
        add(i * ns / nd, 1);
      } else {
        int64_t lo = i * ns, hi = (i + 1) * ns;
        for (int64_t j = lo / nd; j * nd < hi; ++j)
          add(j, std::min((j + 1) * nd, hi) - std::max(j * nd, lo));
      }
      ok.push_back(inside);
    }
    start.push_back(static_cast<int>(src.size()));
  }
};

// Visible destination range of one axis: [x, x + w) or [x + w + 1, x + 1).
std::pair<int, int> destRange(int x, int w) {
  int64_t a = w > 0 ? x : int64_t{x} + w + 1, b = w > 0 ? int64_t{x} + w : int64_t{x} + 1;
  return {static_cast<int>(std::clamp<int64_t>(a, INT32_MIN, INT32_MAX)),
          static_cast<int>(std::clamp<int64_t>(b, INT32_MIN, INT32_MAX))};
}

// Samples the source for every visible destination pixel and hands each clipped row span to
// op(dstRow, y, x0, n, samples, valid). A source inside the destination surface is read from a
// snapshot, so overlapping rectangles read the picture as it was before the call.
template <class RowOp>
void sampleRows(DeviceContext& dc, int xD, int yD, int wD, int hD, const Surface& srcIn, int xS, int yS, int wS,
                int hS, Sampling mode, RowOp&& op) {
  if (!dc.surface || wD == 0 || hD == 0 || wS == 0 || hS == 0 || srcIn.empty()) return;
  Surface& dst = *dc.surface;
  auto [dx0, dx1] = destRange(xD, wD);
  auto [dy0, dy1] = destRange(yD, hD);
  RECT area = intersect(RECT{dx0, dy0, dx1, dy1}, RECT{0, 0, dst.width, dst.height});
  if (area.empty() || dc.clip.empty()) return;

  const Surface* src = &srcIn;
  Surface snapshot;
  std::vector<uint32_t> snapshotPixels;
  if (srcIn.bits == dst.bits) {
    // Only the part of the source rectangle that lies on the surface is copied; the source
    // coordinates then count from that part's corner.
    auto [sx0, sx1] = destRange(xS, wS);
    auto [sy0, sy1] = destRange(yS, hS);
    RECT sr = intersect(RECT{sx0, sy0, sx1, sy1}, RECT{0, 0, srcIn.width, srcIn.height});
    if (sr.empty()) return;
    snapshotPixels.resize(static_cast<size_t>(sr.width()) * sr.height());
    snapshot = Surface{sr.width(), sr.height(), reinterpret_cast<uint8_t*>(snapshotPixels.data()), sr.width() * 4, false};
    for (int y = sr.top; y < sr.bottom; ++y)
      std::memcpy(snapshot.row(y - sr.top), srcIn.row(y) + sr.left, static_cast<size_t>(sr.width()) * 4);
    src = &snapshot;
    xS -= sr.left;
    yS -= sr.top;
  }

  AxisMap mx(xD, wD, xS, wS, area.left, area.right, src->width, mode);
  AxisMap my(yD, hD, yS, hS, area.top, area.bottom, src->height, mode);
  const bool single = mx.src.size() == static_cast<size_t>(area.width()) &&
                      my.src.size() == static_cast<size_t>(area.height());
  const int64_t total = (mode == Sampling::Average) ? int64_t{std::abs(wS)} * std::abs(hS) : 1;

  std::vector<uint32_t> samples(static_cast<size_t>(area.width()));
  std::vector<uint8_t> valid(static_cast<size_t>(area.width()));
  forEachClipped(dc, area, [&](const RECT& part) {
    for (int y = part.top; y < part.bottom; ++y) {
      size_t yi = static_cast<size_t>(y - my.first);
      if (!my.ok[yi]) continue;
      int n = part.width();
      for (int x = part.left; x < part.right; ++x) {
        size_t xi = static_cast<size_t>(x - mx.first);
        size_t k = static_cast<size_t>(x - part.left);
        valid[k] = mx.ok[xi];
        if (!valid[k]) continue;
        if (single) {
          samples[k] = src->row(my.src[yi])[mx.src[xi]];
          continue;
        }
        int ya = my.start[yi], yb = my.start[yi + 1], xa = mx.start[xi], xb = mx.start[xi + 1];
        if (mode == Sampling::Average) {
          // Weighted sums per channel, rounded to nearest: (sum + total / 2) / total with
          // total = |wS| * |hS|, the sum of all weight products.
          int64_t acc[4] = {0, 0, 0, 0};
          for (int a = ya; a < yb; ++a) {
            const uint32_t* row = src->row(my.src[static_cast<size_t>(a)]);
            int64_t wy = my.weight[static_cast<size_t>(a)];
            for (int b = xa; b < xb; ++b) {
              uint32_t p = row[mx.src[static_cast<size_t>(b)]];
              int64_t w = wy * mx.weight[static_cast<size_t>(b)];
              acc[0] += (p & 0xFF) * w;
              acc[1] += ((p >> 8) & 0xFF) * w;
              acc[2] += ((p >> 16) & 0xFF) * w;
              acc[3] += (p >> 24) * w;
            }
          }
          uint32_t out = 0;
          for (int c = 0; c < 4; ++c) out |= static_cast<uint32_t>((acc[c] + total / 2) / total) << (8 * c);
          samples[k] = out;
        } else {
          uint32_t out = mode == Sampling::And ? 0xFFFFFFFFu : 0;
          for (int a = ya; a < yb; ++a) {
            const uint32_t* row = src->row(my.src[static_cast<size_t>(a)]);
            for (int b = xa; b < xb; ++b) {
              uint32_t p = row[mx.src[static_cast<size_t>(b)]];
              out = mode == Sampling::And ? (out & p) : (out | p);
            }
          }
          samples[k] = out;
        }
      }
      op(dst.row(y), y, part.left, n, samples.data(), valid.data());
    }
  });
}

Sampling samplingOf(const DeviceContext& dc) {
  switch (dc.stretchMode) {
    case HALFTONE: return Sampling::Average;
    case BLACKONWHITE: return Sampling::And;
    case WHITEONBLACK: return Sampling::Or;
    default: return Sampling::Nearest;
  }
}

// The surface behind a source DC with its pixels current, or null.
const Surface* sourceSurface(const DeviceContext* dc) {
  if (!dc || !dc->surface || dc->surface->empty()) return nullptr;
  return dc->surface;
}

}  // namespace

bool gdi::stretchFromSurface(DeviceContext& dc, int xD, int yD, int wD, int hD, const Surface& src, int xS, int yS,
                             int wS, int hS, uint32_t code) {
  BrushPaint bp = ropUsesPattern(code) ? brushPaint(dc, dc.brush) : BrushPaint{};
  if (ropUsesPattern(code) && bp.kind == BrushPaint::Kind::None) return true;
  // A plain copy of the same size is a row copy, whatever the stretch mode says.
  bool sameSize = wD == wS && hD == hS;
  if (sameSize && wD > 0 && hD > 0 && code == 0xCC && dc.surface && src.bits != dc.surface->bits) {
    // Straight row copies between two surfaces: the destination rectangle, cut to where the
    // source has pixels, then to the clip.
    auto cut = [](int64_t l, int64_t t, int64_t r, int64_t b) {
      auto c = [](int64_t v) { return static_cast<LONG>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); };
      return RECT{c(l), c(t), c(r), c(b)};
    };
    const int64_t ox = int64_t{xD} - xS, oy = int64_t{yD} - yS;  // source to destination offset
    RECT area = intersect(cut(xD, yD, int64_t{xD} + wD, int64_t{yD} + hD),
                          cut(ox, oy, ox + src.width, oy + src.height));
    forEachClipped(dc, area, [&](const RECT& part) {
      for (int y = part.top; y < part.bottom; ++y)
        std::memcpy(dc.surface->row(y) + part.left, src.row(static_cast<int>(y - oy)) + (part.left - ox),
                    static_cast<size_t>(part.width()) * 4);
    });
    return true;
  }
  Sampling mode = sameSize ? Sampling::Nearest : samplingOf(dc);
  sampleRows(dc, xD, yD, wD, hD, src, xS, yS, wS, hS, mode,
             [&](uint32_t* row, int y, int x0, int n, const uint32_t* s, const uint8_t* valid) {
               if (code == 0xCC) {
                 for (int k = 0; k < n; ++k)
                   if (valid[k]) row[x0 + k] = s[k];
                 return;
               }
               for (int k = 0; k < n; ++k) {
                 if (!valid[k]) continue;
                 bool paint = true;
                 uint32_t p = bp.kind == BrushPaint::Kind::None ? 0 : bp.at(x0 + k, y, paint);
                 if (paint) row[x0 + k] = rop3(code, p, s[k], row[x0 + k]);
               }
             });
  return true;
}

BOOL PatBlt(HDC hdc, int x, int y, int w, int h, DWORD rop) {
  DeviceContext* dc = LookupDC(hdc);
  uint32_t code = (rop >> 16) & 0xFF;
  if (!dc || ropUsesSource(code)) return FALSE;
  POINT p = dc->toDevice(POINT{x, y});
  RECT r = orderedRect(p, POINT{p.x + w, p.y + h});
  patRect(*dc, r, brushPaint(*dc, dc->brush), code);
  return TRUE;
}

BOOL StretchBlt(HDC hdcDest, int xD, int yD, int wD, int hD, HDC hdcSrc, int xS, int yS, int wS, int hS, DWORD rop) {
  DeviceContext* dc = LookupDC(hdcDest);
  uint32_t code = (rop >> 16) & 0xFF;
  if (!dc) return FALSE;
  if (!ropUsesSource(code)) {
    // Pattern rows need the true y of each pixel, which the source path does not give.
    POINT p = dc->toDevice(POINT{xD, yD});
    auto [x0, x1] = destRange(p.x, wD);
    auto [y0, y1] = destRange(p.y, hD);
    patRect(*dc, RECT{x0, y0, x1, y1}, brushPaint(*dc, dc->brush), code);
    return TRUE;
  }
  DeviceContext* sdc = LookupDC(hdcSrc);
  const Surface* src = sourceSurface(sdc);
  if (!src) return FALSE;
  POINT d = dc->toDevice(POINT{xD, yD});
  POINT s = sdc->toDevice(POINT{xS, yS});
  return stretchFromSurface(*dc, d.x, d.y, wD, hD, *src, s.x, s.y, wS, hS, code) ? TRUE : FALSE;
}

BOOL BitBlt(HDC hdcDest, int x, int y, int cx, int cy, HDC hdcSrc, int x1, int y1, DWORD rop) {
  // Negative extents describe the same rectangle from its other corner; no mirroring.
  if (cx < 0) {
    x += cx;
    x1 += cx;
    cx = -cx;
  }
  if (cy < 0) {
    y += cy;
    y1 += cy;
    cy = -cy;
  }
  return StretchBlt(hdcDest, x, y, cx, cy, hdcSrc, x1, y1, cx, cy, rop);
}

BOOL AlphaBlend(HDC hdcDest, int xD, int yD, int wD, int hD, HDC hdcSrc, int xS, int yS, int wS, int hS,
                BLENDFUNCTION fn) {
  DeviceContext* dc = LookupDC(hdcDest);
  DeviceContext* sdc = LookupDC(hdcSrc);
  const Surface* src = sourceSurface(sdc);
  if (!dc || !src || !dc->surface) return FALSE;
  if (fn.BlendOp != AC_SRC_OVER || fn.BlendFlags != 0 || (fn.AlphaFormat & ~AC_SRC_ALPHA) != 0) return FALSE;
  if (wD < 0 || hD < 0 || wS < 0 || hS < 0) return FALSE;
  POINT d = dc->toDevice(POINT{xD, yD});
  POINT s = sdc->toDevice(POINT{xS, yS});
  RECT sr{s.x, s.y, s.x + wS, s.y + hS};
  if (sr.left < 0 || sr.top < 0 || sr.right > src->width || sr.bottom > src->height) return FALSE;
  RECT dr{d.x, d.y, d.x + wD, d.y + hD};
  if (src->bits == dc->surface->bits && !intersect(sr, dr).empty()) return FALSE;
  if (wD == 0 || hD == 0 || wS == 0 || hS == 0 || fn.SourceConstantAlpha == 0) return TRUE;

  const uint32_t k = fn.SourceConstantAlpha;
  const bool srcAlpha = (fn.AlphaFormat & AC_SRC_ALPHA) != 0;
  if (wD == wS && hD == hS && src->bits != dc->surface->bits) {
    // Unscaled from another surface: blend the source rows in place, no sampling. The source
    // rectangle was checked to lie inside the source, so only the destination side is cut.
    Surface& dst = *dc->surface;
    const int64_t ox = int64_t{d.x} - s.x, oy = int64_t{d.y} - s.y;  // source to destination offset
    auto edge = [](int64_t v) { return static_cast<LONG>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX)); };
    RECT area = intersect(RECT{d.x, d.y, edge(int64_t{d.x} + wD), edge(int64_t{d.y} + hD)},
                          RECT{0, 0, dst.width, dst.height});
    if (area.empty()) return TRUE;
    forEachClipped(*dc, area, [&](const RECT& part) {
      for (int y = part.top; y < part.bottom; ++y)
        blend::blendRowFast(src->row(static_cast<int>(y - oy)) + (part.left - ox), dst.row(y) + part.left,
                            part.width(), k, srcAlpha);
    });
    return TRUE;
  }
  Sampling mode = (wD == wS && hD == hS) ? Sampling::Nearest
                  : dc->stretchMode == HALFTONE ? Sampling::Average
                                                : Sampling::Nearest;
  sampleRows(*dc, d.x, d.y, wD, hD, *src, s.x, s.y, wS, hS, mode,
             [&](uint32_t* row, int, int x0, int n, const uint32_t* smp, const uint8_t*) {
               blend::blendRowFast(smp, row + x0, n, k, srcAlpha);
             });
  return TRUE;
}

BOOL TransparentBlt(HDC hdcDest, int xD, int yD, int wD, int hD, HDC hdcSrc, int xS, int yS, int wS, int hS,
                    UINT transparent) {
  DeviceContext* dc = LookupDC(hdcDest);
  DeviceContext* sdc = LookupDC(hdcSrc);
  const Surface* src = sourceSurface(sdc);
  if (!dc || !src || wD < 0 || hD < 0 || wS < 0 || hS < 0) return FALSE;
  POINT d = dc->toDevice(POINT{xD, yD});
  POINT s = sdc->toDevice(POINT{xS, yS});
  const uint32_t key = pixelOf(transparent);
  sampleRows(*dc, d.x, d.y, wD, hD, *src, s.x, s.y, wS, hS, Sampling::Nearest,
             [&](uint32_t* row, int, int x0, int n, const uint32_t* smp, const uint8_t* valid) {
               for (int k = 0; k < n; ++k)
                 if (valid[k] && (smp[k] & 0x00FFFFFFu) != key) row[x0 + k] = smp[k];
             });
  return TRUE;
}

}  // namespace mx::platform
