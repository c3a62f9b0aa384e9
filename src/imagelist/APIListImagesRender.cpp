// Drawing the cells of a list, and icons made from them.
#include <algorithm>
#include <cstdlib>

#include "host/Err.h"
#include "imagelist/APIListImages.h"
#include "imagelist/IconResource.h"

namespace mx::imagelist {

using host::Raise;
using host::Variant;

void APIListImages::Render(const Variant& Index, platform::HDC destinationDC, int32_t DestX, int32_t DestY,
                           int32_t DestWidth, int32_t DestHeight, int32_t srcX, int32_t srcY, int32_t srcwidth,
                           int32_t srcheight, int32_t Opacity, int32_t grayScale, int32_t LightAdjustment, float Angle,
                           image::API32bppDIB* destHostDIB) {
  if (Count() == 0) return;
  int32_t p = Locate(Index);
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"Images.Render", kMsgInvalidKeyOrIndex);
  // The cell goes through a one-cell scratch surface, so no source rectangle can reach into a
  // neighbouring cell whatever the arguments say.
  if (!CopyCell(p, m_work)) return;

  if (DestWidth == 0) DestWidth = m_width;
  if (DestHeight == 0) DestHeight = m_height;
  const bool mirrorX = srcwidth < 0, mirrorY = srcheight < 0;
  srcwidth = std::abs(srcwidth);
  srcheight = std::abs(srcheight);
  if (srcX < 0) srcX = 0;
  if (srcY < 0) srcY = 0;
  if (srcwidth == 0 || srcwidth > m_width) srcwidth = m_width;
  if (srcheight == 0 || srcheight > m_height) srcheight = m_height;
  srcwidth = std::min(srcwidth, m_width - srcX);
  srcheight = std::min(srcheight, m_height - srcY);
  if (srcwidth <= 0 || srcheight <= 0) return;
  m_work.Render(destinationDC, DestX, DestY, DestWidth, DestHeight, srcX, srcY, mirrorX ? -srcwidth : srcwidth,
                mirrorY ? -srcheight : srcheight, Opacity, true, true, destHostDIB, grayScale, LightAdjustment, Angle);
}

void APIListImages::RenderRange(const Variant& StartIndex, const Variant& StopIndex, platform::HDC destinationDC,
                                int32_t DestX, int32_t DestY, int32_t imageWidth, int32_t imageHeight,
                                image::API32bppDIB* destHostDIB) {
  int32_t start = Locate(StartIndex);
  if (start < 0) Raise(kErrInvalidKeyOrIndex, u"Images.RenderRange", kMsgInvalidKeyOrIndex);
  int32_t stop = Locate(StopIndex);
  if (stop < 0) stop = Count() - 1;
  if (stop < start) return;
  EnsureDecoded();
  // One session for the whole run instead of one per image: the system codec's where it is
  // enabled, otherwise the strip's own device context.
  const bool codec = m_sheet.isGDIplusEnabled();
  if (codec)
    m_sheet.KeepGDIplusActive(true);
  else
    m_sheet.ManageOwnDC(true);
  int32_t x = DestX;
  for (int32_t i = start; i <= stop; ++i, x += imageWidth) {
    if (imageWidth <= m_width) {
      m_sheet.Render(destinationDC, x, DestY, imageWidth, imageHeight, i * m_width, 0, m_width, m_height, 100, true,
                     true, destHostDIB);
    } else {
      m_sheet.Render(destinationDC, x + (imageWidth - m_width) / 2, DestY + (imageHeight - m_height) / 2, m_width,
                     m_height, i * m_width, 0, m_width, m_height, 100, true, true, destHostDIB);
    }
  }
  m_sheet.ManageOwnDC(false);
}

platform::HICON APIListImages::MakeIcon(const image::API32bppDIB& cell, int32_t& bitDepth, ExtractedIcon* details) {
  std::vector<uint8_t> resource = BuildIconResource(cell, bitDepth);
  platform::HICON icon = CreateIconFromResourceImage(resource);
  if (details) {
    details->handle = icon;
    details->bitDepth = bitDepth;
    details->resource = std::move(resource);
  }
  return icon;
}

platform::HICON APIListImages::ExtractIcon(const Variant& Index, int32_t& Rtn_BitDepth, ExtractedIcon* details) {
  int32_t p = Count() ? Locate(Index) : -1;
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"Images.ExtractIcon", kMsgInvalidKeyOrIndex);
  image::API32bppDIB cell;
  if (!CopyCell(p, cell)) return 0;
  return MakeIcon(cell, Rtn_BitDepth, details);
}

platform::HICON APIListImages::ExtractIconEx(const Variant& Index, bool MirrorAxisX, bool MirrorAxisY, int32_t Opacity,
                                             int32_t grayScale, int32_t LightAdjustment, float Angle,
                                             int32_t& Rtn_iconWidth, int32_t& Rtn_iconHeight, int32_t& Rtn_BitDepth,
                                             ExtractedIcon* details) {
  int32_t p = Count() ? Locate(Index) : -1;
  if (p < 0) Raise(kErrInvalidKeyOrIndex, u"Images.ExtractIconEx", kMsgInvalidKeyOrIndex);
  image::API32bppDIB cell, out;
  if (!CopyCell(p, cell) || !out.InitializeDIB(m_width, m_height)) return 0;
  // Mirroring is asked of Render by negative source sizes; rotation turns about the centre of
  // the cell-sized destination.
  cell.Render(0, 0, 0, m_width, m_height, 0, 0, MirrorAxisX ? -m_width : m_width, MirrorAxisY ? -m_height : m_height,
              Opacity, true, true, &out, grayScale, LightAdjustment, Angle);
  Rtn_iconWidth = m_width;
  Rtn_iconHeight = m_height;
  return MakeIcon(out, Rtn_BitDepth, details);
}

}  // namespace mx::imagelist
