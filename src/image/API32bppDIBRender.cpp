// Render: drawing the surface onto a DC or into another surface, with its three engines: the
// platform's AlphaBlend for plain draws, the system codec where it is enabled, and the own
// per-pixel engine (RenderEngine.h) for mirrored, grey, lighter or darker, high-quality scaled
// and rotated draws.
#include <cmath>
#include <cstdlib>

#include "image/API32bppDIB.h"
#include "image/RenderEngine.h"
#include "platform/Gdi.h"

namespace mx::image {

using namespace mx::platform;

namespace {

engine::PixelView viewOf(const API32bppDIB& d) {
  return {reinterpret_cast<uint32_t*>(d.BitsPointer()), d.Width(), d.Height()};
}

// Where the own engine's result goes: a host surface's memory or a DC.
struct Destination {
  HDC dc = 0;
  API32bppDIB* host = nullptr;

  // The box that can receive pixels, in the destination's coordinates; false when unknown.
  bool bounds(RECT& box) const {
    if (host) {
      box = RECT{0, 0, host->Width(), host->Height()};
      return true;
    }
    return GetClipBox(dc, &box) != ERROR;
  }
};

// The final step of the own engine: light (when still pending), grey and constant alpha, onto
// the destination, clipped so that no write leaves it.
bool blendToDest(const engine::PixelView& src, int32_t srcX, int32_t srcY, const Destination& dest, int32_t destX,
                 int32_t destY, int32_t w, int32_t h, uint32_t g, int32_t gray, int32_t light) {
  engine::WorkBuffer work;
  engine::PixelView from = src;
  if (light != 0) {
    // Only the part that can show is adjusted.
    int32_t sx = srcX, sy = srcY;
    if (destX < 0) { sx -= destX; w += destX; destX = 0; }
    if (destY < 0) { sy -= destY; h += destY; destY = 0; }
    if (sx < 0) { destX -= sx; w += sx; sx = 0; }
    if (sy < 0) { destY -= sy; h += sy; sy = 0; }
    w = std::min(w, src.width - sx);
    h = std::min(h, src.height - sy);
    if (w <= 0 || h <= 0) return true;
    if (!engine::AdjustLightToBuffer(src, {sx, sy, w, h}, light, work)) return false;
    from = work.view();
    srcX = srcY = 0;
  }
  if (dest.host) {
    engine::BlendToSurface(from, srcX, srcY, viewOf(*dest.host), destX, destY, w, h, g, gray);
    return true;
  }
  return engine::BlendToDC(from, srcX, srcY, dest.dc, destX, destY, w, h, g, gray);
}

// The own engine's rotation: mirror and light first, inverse-map into a square work array, and
// blend the square centred on the destination rectangle.
bool renderRotated(const API32bppDIB& self, const Destination& dest, int32_t DestX, int32_t DestY, int32_t DestWidth,
                   int32_t DestHeight, int32_t srcX, int32_t srcY, int32_t srcwidth, int32_t srcheight,
                   int32_t Opacity, int32_t grayScale, int32_t LightAdjustment, float Angle) {
  engine::PixelView src = viewOf(self);
  engine::Rect rect{srcX, srcY, srcwidth, srcheight};
  engine::WorkBuffer prepared;
  const bool mirrorX = DestWidth < 0, mirrorY = DestHeight < 0;
  if (mirrorX || mirrorY || LightAdjustment != 0) {
    if (!engine::MirrorToBuffer(src, rect, mirrorX, mirrorY, LightAdjustment, prepared)) return false;
    src = prepared.view();
    rect = {0, 0, srcwidth, srcheight};
  }
  const int32_t w = std::abs(DestWidth), h = std::abs(DestHeight);
  engine::WorkBuffer square;
  if (!engine::RotateToBuffer(src, rect, w, h, Angle, self.HighQualityInterpolation(), square)) return false;
  const int32_t n = square.width;
  // Halves as the system divides them: in floating point, rounded to the nearest (halves to
  // even) when the position is taken as a whole number.
  const int32_t x = static_cast<int32_t>(std::nearbyint(DestX + w / 2.0 - n / 2.0));
  const int32_t y = static_cast<int32_t>(std::nearbyint(DestY + h / 2.0 - n / 2.0));
  return blendToDest(square.view(), 0, 0, dest, x, y, n, n, static_cast<uint32_t>(Opacity * 255 / 100), grayScale,
                     0);
}

// Rotation angles count when they have a fraction or are not whole turns.
bool isRotated(float angle) {
  if (!std::isfinite(angle)) return false;
  double whole = std::trunc(static_cast<double>(angle));
  return whole != angle || std::fmod(whole, 360.0) != 0.0;
}

}  // namespace

bool API32bppDIB::Render(HDC destinationDC, int32_t DestX, int32_t DestY, int32_t DestWidth, int32_t DestHeight,
                         int32_t srcX, int32_t srcY, int32_t srcwidth, int32_t srcheight, int32_t Opacity,
                         bool /*Blend*/, bool SetHalfTone, API32bppDIB* destHostDIB, int32_t grayScale,
                         int32_t LightAdjustment, float Angle, bool CenterOnDestXY) {
  // Opacity 0 (or below) draws nothing but tells whether there is an image to draw.
  if (Opacity < 1) return m_handle != 0;
  if (!m_handle) return false;
  if (destHostDIB && !destHostDIB->Handle()) destHostDIB = nullptr;
  if (!destinationDC && !destHostDIB) return false;

  if (DestWidth == 0) DestWidth = m_width;
  if (DestHeight == 0) DestHeight = m_height;
  if (srcX < 0) srcX = 0;
  if (srcY < 0) srcY = 0;
  if (srcwidth == 0) srcwidth = m_width;
  if (srcwidth < 0) {
    srcwidth = -srcwidth;
    DestWidth = -DestWidth;
  }
  if (srcheight == 0) srcheight = m_height;
  if (srcheight < 0) {
    srcheight = -srcheight;
    DestHeight = -DestHeight;
  }
  if (static_cast<int64_t>(srcX) + srcwidth > m_width) srcwidth = m_width - srcX;
  if (static_cast<int64_t>(srcY) + srcheight > m_height) srcheight = m_height - srcY;
  if (srcwidth <= 0 || srcheight <= 0) return false;

  const bool rotated = isRotated(Angle);
  // 100 is full and 150 means 50: the wrap is intended.
  Opacity = std::abs(Opacity) % 100;
  if (Opacity == 0) Opacity = 100;
  if (LightAdjustment < -100 || LightAdjustment > 100) LightAdjustment = 0;
  if (CenterOnDestXY) {
    DestX -= std::abs(DestWidth) / 2;
    DestY -= std::abs(DestHeight) / 2;
  }

  Destination dest{destinationDC, destHostDIB};
  if (rotated) {
    // The system codec draws on a DC; the own engine blends a host surface in its memory, so
    // that the host keeps its alpha.
    return renderRotated(*this, dest, DestX, DestY, DestWidth, DestHeight, srcX, srcY, srcwidth, srcheight, Opacity,
                         grayScale, LightAdjustment, Angle);
  }

  const bool mirrored = DestWidth <= 0 || DestHeight < 0;
  const int32_t absW = std::abs(DestWidth), absH = std::abs(DestHeight);
  const bool scaled = absW != srcwidth || absH != srcheight;

  bool useAlphaBlend = !m_keepGDIplus && !(isGDIplusEnabled() && m_gdiToken != 0) && isAlphaBlendFriendly() &&
                       !mirrored && grayScale == -1 && LightAdjustment == 0;
  if (useAlphaBlend && scaled && m_highQuality) useAlphaBlend = false;
  // The system codec of this build loads and saves but does not draw, so a draw that would go to
  // it is done by the own engine, which gives the same picture.

  const uint32_t constAlpha = static_cast<uint32_t>(Opacity * 255 / 100);
  if (useAlphaBlend) {
    const bool wasSelected = m_prevBitmap != 0;
    HDC srcDC = LoadDIBinDC(true);
    if (!srcDC) return false;
    HDC target = destinationDC;
    bool hostWasSelected = false;
    if (destHostDIB) {
      hostWasSelected = destHostDIB->prevBitmap() != 0;
      target = destHostDIB->LoadDIBinDC(true);
    }
    int oldMode = 0;
    const bool halftone = SetHalfTone && (m_systemCaps & capNT) && target;
    if (halftone) oldMode = SetStretchBltMode(target, HALFTONE);
    BLENDFUNCTION fn{AC_SRC_OVER, 0, static_cast<BYTE>(constAlpha),
                     static_cast<BYTE>(m_alpha > AlphaNone ? AC_SRC_ALPHA : 0)};
    const bool ok = target && AlphaBlend(target, DestX, DestY, DestWidth, DestHeight, srcDC, srcX, srcY, srcwidth,
                                         srcheight, fn);
    if (halftone && oldMode) SetStretchBltMode(target, oldMode);
    if (destHostDIB && !hostWasSelected) destHostDIB->LoadDIBinDC(false);
    if (!wasSelected) LoadDIBinDC(false);
    return ok;
  }

  // The own engine: mirror (with light), resample (light after), blend.
  engine::PixelView src = viewOf(*this);
  engine::Rect rect{srcX, srcY, srcwidth, srcheight};
  engine::WorkBuffer mirroredBuf, scaledBuf;
  int32_t light = LightAdjustment;
  if (mirrored) {
    if (!engine::MirrorToBuffer(src, rect, DestWidth < 0, DestHeight < 0, light, mirroredBuf)) return false;
    light = 0;
    src = mirroredBuf.view();
    rect = {0, 0, srcwidth, srcheight};
  }
  if (!scaled) return blendToDest(src, rect.x, rect.y, dest, DestX, DestY, absW, absH, constAlpha, grayScale, light);

  // Only the part of the scaled picture that can land on the destination is computed; the
  // resampling positions are those of the full picture.
  engine::StretchTarget t{absW, absH, 0, 0, absW, absH};
  int32_t outX = DestX, outTop = DestY;
  RECT box{};
  if (dest.bounds(box)) {
    int64_t left = std::max<int64_t>(DestX, box.left), right = std::min<int64_t>(int64_t{DestX} + absW, box.right);
    int64_t top = std::max<int64_t>(DestY, box.top), bottom = std::min<int64_t>(int64_t{DestY} + absH, box.bottom);
    if (left >= right || top >= bottom) return true;  // nothing of it can show
    t.clipX = static_cast<int32_t>(left - DestX);
    t.width = static_cast<int32_t>(right - left);
    // Rows count from the bottom of the full picture.
    t.clipY = static_cast<int32_t>(int64_t{DestY} + absH - bottom);
    t.height = static_cast<int32_t>(bottom - top);
    outX = static_cast<int32_t>(left);
    outTop = static_cast<int32_t>(top);
  }
  if (!engine::StretchToBuffer(src, rect, t, m_highQuality, scaledBuf)) return false;
  if (light != 0) engine::AdjustLight(scaledBuf.view(), light);
  return blendToDest(scaledBuf.view(), 0, 0, dest, outX, outTop, t.width, t.height, constAlpha, grayScale, 0);
}

}  // namespace mx::image
