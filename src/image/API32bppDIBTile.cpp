// TileImage: a destination rectangle filled with copies of the picture.
//
// The tiles are rendered once each (plain, and mirrored where asked), placed into one work
// surface for the first period of the pattern, and the rest is made by block copies that double
// the filled part each round, first along each row, then down the rows:
//
//   cell = tile + spacing        period across = 1 cell, 2 with MirrorX (plain, mirrored)
//                                period down   = 1 row of cells, 2 with MirrorY or Stagger
//   Stagger shifts every second row of cells right by half a tile plus the spacing.
//
// The work surface is drawn with one Render at the asked opacity.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "image/API32bppDIB.h"
#include "image/RenderEngine.h"
#include "platform/Gdi.h"

namespace mx::image {

using namespace mx::platform;

namespace {

engine::PixelView viewOf(const API32bppDIB& d) {
  return {reinterpret_cast<uint32_t*>(d.BitsPointer()), d.Width(), d.Height()};
}

// Copies a tile with its top left at (x, y) of the work view, limited to columns [0, right).
void placeTile(const engine::PixelView& tile, const engine::PixelView& work, int32_t x, int32_t y, int32_t right) {
  const int32_t from = std::max(0, x), to = std::min(right, x + tile.width);
  if (from >= to) return;
  for (int32_t ty = 0; ty < tile.height && y + ty < work.height; ++ty)
    std::memcpy(work.row(y + ty) + from, tile.row(ty) + (from - x), static_cast<size_t>(to - from) * 4);
}

}  // namespace

bool API32bppDIB::TileImage(HDC destinationDC, int32_t DestX, int32_t DestY, int32_t DestWidth, int32_t DestHeight,
                            int32_t TileWidth, int32_t TileHeight, int32_t xSpacing, int32_t ySpacing, bool Stagger,
                            bool MirrorX, bool MirrorY, int32_t Opacity, int32_t grayScale, int32_t LightAdjustment) {
  if (!destinationDC || !m_handle || DestWidth == 0 || DestHeight == 0) return false;
  const int32_t dw = std::abs(DestWidth), dh = std::abs(DestHeight);
  if (TileWidth == 0) TileWidth = m_width;
  if (TileHeight == 0) TileHeight = m_height;
  // Negative tile sizes mirror every tile.
  const bool flipX = TileWidth < 0, flipY = TileHeight < 0;
  const int32_t tw = std::abs(TileWidth), th = std::abs(TileHeight);
  xSpacing = std::abs(xSpacing);
  ySpacing = std::abs(ySpacing);

  if (tw >= dw && th >= dh) {
    // One tile covers all; what overhangs the destination is clipped away.
    if (!SaveDC(destinationDC)) return false;
    IntersectClipRect(destinationDC, DestX, DestY, DestX + dw, DestY + dh);
    bool ok = Render(destinationDC, DestX, DestY, flipX ? -tw : tw, flipY ? -th : th, 0, 0, 0, 0, Opacity, true, true,
                     nullptr, grayScale, LightAdjustment);
    RestoreDC(destinationDC, -1);
    return ok;
  }

  // An opaque picture gains nothing from filtering its tiles.
  const bool quality = m_highQuality;
  if (m_alpha == AlphaNone) m_highQuality = false;
  // tiles[my][mx]: the tile mirrored across (mx) and down (my) in addition to flipX and flipY.
  API32bppDIB tiles[2][2];
  bool made[2][2] = {};
  auto tile = [&](bool mx, bool my) -> API32bppDIB* {
    API32bppDIB& t = tiles[my][mx];
    if (!made[my][mx]) {
      made[my][mx] = true;
      if (!t.InitializeDIB(tw, th) ||
          !Render(0, 0, 0, (flipX != mx) ? -tw : tw, (flipY != my) ? -th : th, 0, 0, 0, 0, 100, true, true, &t,
                  grayScale, LightAdjustment))
        t.DestroyDIB();
    }
    return t.Handle() ? &t : nullptr;
  };

  API32bppDIB work;
  bool ok = work.InitializeDIB(dw, dh) && tile(false, false);
  if (ok) {
    const engine::PixelView wv = viewOf(work);
    const int64_t cw = int64_t{tw} + xSpacing, ch = int64_t{th} + ySpacing;
    const int32_t spanX = static_cast<int32_t>(std::min<int64_t>(dw, cw * (MirrorX ? 2 : 1)));
    const int32_t cellRows = (MirrorY || Stagger) ? 2 : 1;
    const int64_t shift = (int64_t{tw} / 2 + xSpacing) % (cw * (MirrorX ? 2 : 1));
    int32_t filledRows = 0;
    for (int32_t j = 0; j < cellRows && ok; ++j) {
      const int64_t y0 = j * ch;
      if (y0 >= dh) break;
      const bool odd = (j & 1) != 0;
      const int64_t off = (Stagger && odd) ? shift : 0;
      // Start one period to the left when shifted, so the left edge is covered too.
      for (int64_t i = off > 0 ? -2 : 0; off + i * cw < spanX; ++i) {
        API32bppDIB* t = tile(MirrorX && (i & 1), MirrorY && odd);
        if (!t) {
          ok = false;
          break;
        }
        placeTile(viewOf(*t), wv, static_cast<int32_t>(off + i * cw), static_cast<int32_t>(y0), spanX);
      }
      // Double the filled width of every row of this strip of cells.
      const int32_t stripEnd = static_cast<int32_t>(std::min<int64_t>(dh, y0 + ch));
      for (int32_t y = static_cast<int32_t>(y0); y < stripEnd; ++y) {
        uint32_t* row = wv.row(y);
        for (int32_t filled = spanX; filled < dw;) {
          int32_t n = std::min(filled, dw - filled);
          std::memcpy(row + filled, row, static_cast<size_t>(n) * 4);
          filled += n;
        }
      }
      filledRows = stripEnd;
    }
    // Double the filled rows. Picture rows [0, f) sit at the end of the bottom-up memory, and the
    // next f rows just before them.
    while (ok && filledRows < dh) {
      int32_t n = std::min(filledRows, dh - filledRows);
      std::memcpy(wv.memRow(dh - filledRows - n), wv.memRow(dh - n), static_cast<size_t>(n) * dw * 4);
      filledRows += n;
    }
  }
  m_highQuality = quality;
  if (!ok) return false;
  work.Alpha(AlphaComplex);
  work.SetImageType(imgBmpPARGB);
  return work.Render(destinationDC, DestX, DestY, 0, 0, 0, 0, 0, 0, Opacity);
}

}  // namespace mx::image
