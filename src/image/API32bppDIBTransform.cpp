// Operations that change a surface or make a new one from it: scaling and resizing, copies,
// trimming, tiling, the alpha mask and regions, grey, inverse, transparency, mirroring, light,
// colour blending and drop shadows.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host/Colors.h"
#include "image/API32bppDIB.h"
#include "image/RenderEngine.h"
#include "platform/Gdi.h"

namespace mx::image {

using namespace mx::platform;

namespace {

engine::PixelView viewOf(const API32bppDIB& d) {
  return {reinterpret_cast<uint32_t*>(d.BitsPointer()), d.Width(), d.Height()};
}

// An OLE colour as a pixel word 0x00RRGGBB; a colour that cannot be resolved counts as black.
uint32_t colorWord(int32_t color) {
  int32_t c = host::TranslateColor(color);
  if (c < 0) c = 0;
  uint32_t u = static_cast<uint32_t>(c);
  return ((u & 0xFF) << 16) | (u & 0xFF00) | ((u >> 16) & 0xFF);
}

// Fills `to` (already of size |w| x |h|) from `from`, mirrored by negative sizes and resampled
// when the sizes differ: the own engine's share of Resize and CopyImageTo.
bool resampleInto(API32bppDIB& from, API32bppDIB& to, int32_t w, int32_t h, bool bilinear) {
  engine::PixelView src = viewOf(from);
  engine::Rect rect{0, 0, from.Width(), from.Height()};
  engine::WorkBuffer mirrored;
  if (w < 0 || h < 0) {
    if (!engine::MirrorToBuffer(src, rect, w < 0, h < 0, 0, mirrored)) return false;
    src = mirrored.view();
  }
  const int32_t aw = std::abs(w), ah = std::abs(h);
  engine::PixelView out = viewOf(to);
  if (aw == rect.width && ah == rect.height) {
    std::memcpy(out.bits, src.bits, static_cast<size_t>(aw) * ah * 4);
    return true;
  }
  engine::StretchInto(src, rect, {aw, ah, 0, 0, aw, ah}, bilinear, out);
  return true;
}

// The engine choice shared by Resize and CopyImageTo once the system codec is out: mirroring and
// quality scaling by the own resampler; plain scaling by Render with AlphaBlend switched off, so
// that AlphaBlend never does the scaling of a stored image.
bool scaleInto(API32bppDIB& from, API32bppDIB& to, int32_t w, int32_t h) {
  if (w < 0 || h < 0 || !from.isAlphaBlendFriendly() || from.HighQualityInterpolation())
    return resampleInto(from, to, w, h, from.HighQualityInterpolation());
  const bool switchOff = (from.systemCaps() & (capAlphaBlend | capWin98)) != 0;
  if (switchOff) from.isAlphaBlendFriendly(false);
  bool ok = from.Render(0, 0, 0, w, h, 0, 0, 0, 0, 100, true, true, &to);
  if (switchOff) from.isAlphaBlendFriendly(true);
  return ok;
}

}  // namespace

void API32bppDIB::ScaleImage(int32_t DestWidth, int32_t DestHeight, int32_t& ScaledWidth, int32_t& ScaledHeight,
                             int32_t ScaleOption) const {
  if (!m_handle) return;
  if (ScaleOption == scaleStretched) {
    ScaledWidth = DestWidth;
    ScaledHeight = DestHeight;
    return;
  }
  if (ScaleOption != scaleToSize && ScaleOption != scaleDownAsNeeded) {
    ScaledWidth = m_width;
    ScaledHeight = m_height;
    return;
  }
  // Single precision, as the ratios are kept.
  float xr = static_cast<float>(DestWidth) / static_cast<float>(m_width);
  float yr = static_cast<float>(DestHeight) / static_cast<float>(m_height);
  if (ScaleOption == scaleDownAsNeeded && xr > 1.0f && yr > 1.0f) xr = yr = 1.0f;
  float r = std::min(xr, yr);
  ScaledWidth = static_cast<int32_t>(static_cast<float>(m_width) * r);
  ScaledHeight = static_cast<int32_t>(static_cast<float>(m_height) * r);
}

bool API32bppDIB::Resize(int32_t Width, int32_t Height) {
  if (!m_handle) return false;
  if (Width == 0) Width = m_width;
  if (Height == 0) Height = m_height;
  if (Width == m_width && Height == m_height) return true;
  API32bppDIB fresh;
  fresh.gdiToken(m_gdiToken);
  fresh.isGDIplusEnabled(isGDIplusEnabled());
  fresh.HighQualityInterpolation(m_highQuality);
  if (!fresh.InitializeDIB(std::abs(Width), std::abs(Height))) return false;
  if (!scaleInto(*this, fresh, Width, Height)) return false;
  fresh.SetImageType(m_imageType);
  fresh.Alpha(m_alpha);
  fresh.m_original = m_original;
  fresh.m_tag = m_tag;
  SwapDIBs(fresh);
  return true;
}

void API32bppDIB::CopyImageTo(std::shared_ptr<API32bppDIB>& destDIB, int32_t Width, int32_t Height,
                              bool CopyOriginalFormat) {
  if (!m_handle || destDIB.get() == this) return;
  if (Width == 0) Width = m_width;
  if (Height == 0) Height = m_height;
  const int32_t aw = std::abs(Width), ah = std::abs(Height);
  if (!destDIB) {
    destDIB = std::make_shared<API32bppDIB>();
    destDIB->gdiToken(m_gdiToken);
    destDIB->isGDIplusEnabled(isGDIplusEnabled());
    destDIB->HighQualityInterpolation(m_highQuality);
  } else {
    destDIB->gdiToken(m_gdiToken);
  }
  API32bppDIB& d = *destDIB;
  if (!d.Handle() || d.Width() != aw || d.Height() != ah) {
    if (!d.InitializeDIB(aw, ah)) return;
  }
  if (Width == m_width && Height == m_height) {
    std::memcpy(d.BitsPointer(), m_bits, static_cast<size_t>(m_width) * m_height * 4);
  } else {
    // The scaling draws over what the surface holds: start from transparent.
    d.EraseDIB();
    scaleInto(*this, d, Width, Height);
  }
  d.Alpha(m_alpha);
  d.SetImageType(m_imageType);
  if (CopyOriginalFormat) d.m_original = m_original;
}

bool API32bppDIB::TrimImage(bool UpdateDIB, int32_t Method, int32_t& X, int32_t& Y, int32_t& Width, int32_t& Height) {
  X = Y = Width = Height = 0;
  if (!m_handle || Method < 0) return false;
  if (Method == trimAll) Method = trimLeft | trimTop | trimRight | trimBottom;
  const engine::PixelView v = viewOf(*this);
  // The box of all pixels with alpha; a side that is not asked for stays at the edge. Rows and
  // columns outside the box hold nothing, so one scan gives what side-by-side scans give.
  int32_t top = m_height, bottom = -1, left = m_width, right = -1;
  for (int32_t y = 0; y < m_height; ++y) {
    const uint32_t* row = v.row(y);
    int32_t first = -1, last = -1;
    for (int32_t x = 0; x < m_width; ++x)
      if (row[x] >> 24) {
        if (first < 0) first = x;
        last = x;
      }
    if (first < 0) continue;
    top = std::min(top, y);
    bottom = y;
    left = std::min(left, first);
    right = std::max(right, last);
  }
  if (bottom < 0) return false;  // fully transparent
  if (!(Method & trimTop)) top = 0;
  if (!(Method & trimBottom)) bottom = m_height - 1;
  if (!(Method & trimLeft)) left = 0;
  if (!(Method & trimRight)) right = m_width - 1;
  X = left;
  Y = top;
  Width = right - left + 1;
  Height = bottom - top + 1;
  if (UpdateDIB && (Width < m_width || Height < m_height)) {
    API32bppDIB fresh;
    if (!fresh.InitializeDIB(Width, Height)) return false;
    const engine::PixelView out = viewOf(fresh);
    for (int32_t y = 0; y < Height; ++y)
      std::memcpy(out.row(y), v.row(top + y) + left, static_cast<size_t>(Width) * 4);
    fresh.gdiToken(m_gdiToken);
    fresh.Alpha(m_alpha);
    fresh.SetImageType(m_imageType);
    fresh.m_original = m_original;
    fresh.m_tag = m_tag;
    SwapDIBs(fresh);
    X = Y = 0;
  }
  return true;
}

bool API32bppDIB::GetAlphaMask(std::vector<uint8_t>& outMask, bool /*as2D*/, bool asScanAligned, bool asBottomUp,
                               int32_t X, int32_t Y, int32_t Width, int32_t Height) const {
  // The region rules of GetDIBbits; a 2-D array has the memory of the flat one.
  if (!m_handle || X < 0 || Y < 0 || Width < 0 || Height < 0) return false;
  if (Width == 0) Width = m_width;
  if (Height == 0) Height = m_height;
  if (X >= m_width || Y >= m_height) return false;
  Width = std::min(Width, m_width - X);
  Height = std::min(Height, m_height - Y);
  const size_t rowBytes = asScanAligned ? (static_cast<size_t>(Width) + 3) & ~size_t{3} : static_cast<size_t>(Width);
  outMask.assign(rowBytes * Height, 0);
  const engine::PixelView v = viewOf(*this);
  for (int32_t r = 0; r < Height; ++r) {
    const uint32_t* src = v.row(asBottomUp ? Y + Height - 1 - r : Y + r) + X;
    uint8_t* dst = outMask.data() + rowBytes * r;
    for (int32_t x = 0; x < Width; ++x) dst[x] = static_cast<uint8_t>(src[x] >> 24);
  }
  return true;
}

HRGN API32bppDIB::CreateRegion(int32_t RegionStyle, int32_t xOffset, int32_t yOffset) const {
  if (!m_handle) return 0;
  HRGN rgn = 0;
  if (m_alpha == AlphaNone) {
    // Every pixel is opaque, whatever the alpha bytes say.
    rgn = CreateRectRgn(0, 0, m_width, m_height);
  } else {
    if (RegionStyle < regionBounds || RegionStyle > regionShaped) return 0;
    const engine::PixelView v = viewOf(*this);
    std::vector<RECT> rects;
    RECT bounds{m_width, m_height, -1, -1};
    for (int32_t y = 0; y < m_height; ++y) {
      const uint32_t* row = v.row(y);
      int32_t x = 0;
      while (x < m_width) {
        while (x < m_width && !(row[x] >> 24)) ++x;
        if (x == m_width) break;
        int32_t start = x;
        while (x < m_width && (row[x] >> 24)) ++x;
        if (RegionStyle == regionShaped) {
          rects.push_back(RECT{start, y, x, y + 1});
        } else if (RegionStyle == regionEnclosed) {
          // One rectangle from the first to the last covered pixel of the row.
          if (!rects.empty() && rects.back().top == y) rects.back().right = x;
          else rects.push_back(RECT{start, y, x, y + 1});
        }
        bounds.left = std::min<LONG>(bounds.left, start);
        bounds.right = std::max<LONG>(bounds.right, x);
        bounds.top = std::min<LONG>(bounds.top, y);
        bounds.bottom = y + 1;
      }
    }
    if (bounds.bottom < 0) return 0;  // nothing covered
    if (RegionStyle == regionBounds) rects.assign(1, bounds);
    rgn = engine::RegionFromRects(rects, bounds);
  }
  if (rgn && (xOffset || yOffset)) OffsetRgn(rgn, xOffset, yOffset);
  return rgn;
}

bool API32bppDIB::MakeGrayScale(int32_t Formula) {
  if (!m_handle || Formula == -1) return false;
  const engine::GrayWeights w = engine::GrayFormulaWeights(Formula);
  auto* p = reinterpret_cast<uint32_t*>(m_bits);
  const size_t n = static_cast<size_t>(m_width) * m_height;
  for (size_t i = 0; i < n; ++i) {
    if (!(p[i] >> 24)) continue;
    uint32_t g = engine::GrayValue(p[i], w);
    p[i] = (p[i] & 0xFF000000u) | (g << 16) | (g << 8) | g;
  }
  return true;
}

bool API32bppDIB::MakeImageInverse() {
  if (!m_handle) return false;
  auto* p = reinterpret_cast<uint32_t*>(m_bits);
  const size_t n = static_cast<size_t>(m_width) * m_height;
  for (size_t i = 0; i < n; ++i) {
    uint32_t a = p[i] >> 24;
    if (!a) continue;
    // alpha - c is the inverse of a premultiplied channel.
    uint32_t out = a << 24;
    for (int sh = 0; sh < 24; sh += 8) out |= (a - std::min(a, (p[i] >> sh) & 0xFF)) << sh;
    p[i] = out;
  }
  return true;
}

bool API32bppDIB::MakeTransparent(int32_t Color, bool AddBackground) {
  if (!m_handle) return false;
  auto* p = reinterpret_cast<uint32_t*>(m_bits);
  const size_t n = static_cast<size_t>(m_width) * m_height;
  const uint32_t opaque = 0xFF000000u | colorWord(Color);
  if (AddBackground) {
    for (size_t i = 0; i < n; ++i)
      if (p[i] == 0) p[i] = opaque;
    int32_t type = m_imageType;
    m_alpha = ValidateAlphaChannel(std::span<uint8_t>(m_bits, n * 4), true, type);
    if (m_alpha == AlphaNone && (m_imageType == imgBmpARGB || m_imageType == imgBmpPARGB)) m_imageType = imgBitmap;
    return true;
  }
  bool any = false;
  for (size_t i = 0; i < n; ++i)
    if (p[i] == opaque) {
      p[i] = 0;
      any = true;
    }
  if (any) {
    // Holes are simple transparency; partial alpha already present stays described as such.
    if (m_alpha != AlphaComplex) m_alpha = AlphaSimple;
    if (m_imageType == imgBitmap) m_imageType = imgBmpPARGB;
  }
  return true;
}

bool API32bppDIB::MirrorImage(bool MirrorX, bool MirrorY) {
  if (!m_handle || (!MirrorX && !MirrorY)) return false;
  engine::WorkBuffer buf;
  if (!engine::MirrorToBuffer(viewOf(*this), {0, 0, m_width, m_height}, MirrorX, MirrorY, 0, buf)) return false;
  std::memcpy(m_bits, buf.pixels.data(), buf.pixels.size() * 4);
  return true;
}

bool API32bppDIB::MakeLighterDarker(int32_t LightAdjustment) {
  if (!m_handle || LightAdjustment < -100 || LightAdjustment > 100) return false;
  engine::AdjustLight(viewOf(*this), LightAdjustment);
  return true;
}

bool API32bppDIB::BlendToColor(int32_t Color, int32_t BlendPct) {
  if (!m_handle) return false;
  if (BlendPct < 1) return true;
  if (BlendPct > 100) BlendPct = 100;
  const uint32_t pct = static_cast<uint32_t>(BlendPct);
  uint32_t t[256];
  t[0] = 0;
  for (uint32_t c = 1; c < 256; ++c) t[c] = (100 - pct) * c;
  const uint32_t col = colorWord(Color);
  auto* p = reinterpret_cast<uint32_t*>(m_bits);
  const size_t n = static_cast<size_t>(m_width) * m_height;
  for (size_t i = 0; i < n; ++i) {
    uint32_t a = p[i] >> 24;
    if (!a) continue;
    uint32_t out = a << 24;
    for (int sh = 0; sh < 24; sh += 8) {
      // Applied to the premultiplied channel, so partial pixels darken somewhat: the required
      // result.
      uint32_t c = (t[(p[i] >> sh) & 0xFF] + ((col >> sh) & 0xFF) * pct) * a / 25500;
      out |= c << sh;
    }
    p[i] = out;
  }
  return true;
}

std::shared_ptr<API32bppDIB> API32bppDIB::CreateDropShadow(int32_t Depth, int32_t Color) const {
  if (!m_handle) return nullptr;
  Depth = std::clamp(Depth, 0, 10);
  const int32_t k = 2 * Depth;
  auto shadow = std::make_shared<API32bppDIB>();
  if (!shadow->InitializeDIB(m_width + k, m_height + k)) return nullptr;
  const int32_t outW = m_width + k, outH = m_height + k;
  const uint32_t area = static_cast<uint32_t>((k + 1) * (k + 1));
  const uint32_t col = colorWord(Color);
  const engine::PixelView src = viewOf(*this), out = viewOf(*shadow);

  // A box blur of the alpha plane with a (k + 1) x (k + 1) window ending at the output pixel.
  // Column sums cover rows y - k .. y and are updated as y moves; the row total covers columns
  // x - k .. x. Settled quirk: source column Width - 1 never enters and the last output column
  // stays empty, as the running total stops one column early.
  std::vector<uint32_t> colSum(static_cast<size_t>(m_width), 0);
  for (int32_t y = 0; y < outH; ++y) {
    if (y < m_height) {
      const uint32_t* row = src.row(y);
      for (int32_t c = 0; c < m_width; ++c) colSum[c] += row[c] >> 24;
    }
    if (y - k - 1 >= 0 && y - k - 1 < m_height) {
      const uint32_t* row = src.row(y - k - 1);
      for (int32_t c = 0; c < m_width; ++c) colSum[c] -= row[c] >> 24;
    }
    uint32_t* dst = out.row(y);
    uint32_t total = 0;
    for (int32_t x = 0; x <= outW - 2; ++x) {
      if (x <= m_width - 2) total += colSum[x];
      if (x - k - 1 >= 0 && x - k - 1 <= m_width - 2) total -= colSum[x - k - 1];
      uint32_t a = total / area;
      if (a == 0) continue;
      if (a == 255) {
        dst[x] = 0xFF000000u | col;
        continue;
      }
      uint32_t px = a << 24;
      for (int sh = 0; sh < 24; sh += 8) px |= (((col >> sh) & 0xFF) * a / 255) << sh;
      dst[x] = px;
    }
  }
  shadow->Alpha(AlphaComplex);
  shadow->SetImageType(imgBmpPARGB);
  return shadow;
}

bool API32bppDIB::RenderDropShadow_JIT(HDC destinationDC, int32_t DestX, int32_t DestY, int32_t Depth,
                                       int32_t Color, int32_t Opacity, int32_t LightAdjustment,
                                       API32bppDIB* destHostDIB) {
  std::shared_ptr<API32bppDIB> shadow = CreateDropShadow(Depth, Color);
  if (!shadow) return false;
  return shadow->Render(destinationDC, DestX, DestY, 0, 0, 0, 0, 0, 0, Opacity, true, true, destHostDIB, -1,
                        LightAdjustment);
}

}  // namespace mx::image
