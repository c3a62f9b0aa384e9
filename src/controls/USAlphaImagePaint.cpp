// USAlphaImage: image geometry, the scaled copy and shadow caches, the hit region, Paint and
// the saves of what is shown.
//
// Geometry, worked out on Resize and after any property that changes it:
//
//   display size (Width, Height)  GetImageScales of the client size and ScaleMethod
//   position (X, Y)               centred in the client; with rotation the picture turns about
//                                 the client's centre and its box is the diagonal square
//   AutoSize                      X = Y = 0 and the control takes the display size (or the
//                                 diagonal square when rotated)
//
// The image offsets (OffsetImage) move the picture from that place; the shadow has offsets of
// its own (ShadowOffsetX/Y, OffsetShadow).
#include <algorithm>
#include <cmath>

#include "controls/ControlSupport.h"
#include "controls/USAlphaImage.h"
#include "host/Colors.h"
#include "host/Screen.h"
#include "platform/Gdi.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;

namespace {

// The host's Round: halves go to the even neighbour.
int32_t RoundHalfEven(double v) { return static_cast<int32_t>(std::nearbyint(v)); }

int32_t Diagonal(int32_t w, int32_t h) {
  return RoundHalfEven(std::sqrt(static_cast<double>(w) * w + static_cast<double>(h) * h));
}

}  // namespace

bool USAlphaImage::IsDesignMode() const {
  bool user = true;
  Step([&] { user = Ambient().UserMode(); });
  return !user;
}

int32_t USAlphaImage::ResolvedShadowColor() const {
  int32_t colour = 0;
  Step([&] { colour = host::TranslateColor(m_shadowColor); });
  return colour < 0 ? 0 : colour;
}

void USAlphaImage::UpdateScaledCopyFlag() {
  const bool on = AutoRedraw() && m_userMode && !RotateEnabled();
  m_props = on ? (m_props | kScaledCopy) : (m_props & ~kScaledCopy);
}

void USAlphaImage::ShowCheckerBoardIfEmpty() {
  if (!IsDesignMode() || m_clientWidth < 1 || m_clientHeight < 1) return;
  const bool empty = !m_dib->Handle() || m_dib->ImageType() == image::imgCheckerBoard;
  if (!empty) return;
  if (m_dib->Width() != m_clientWidth || m_dib->Height() != m_clientHeight || !m_dib->Handle())
    if (!m_dib->InitializeDIB(m_clientWidth, m_clientHeight)) return;
  m_dib->CreateCheckerBoard(12, 0xFFFFFF, 0xC0C0C0);
}

void USAlphaImage::GetImageScales(int32_t& Width, int32_t& Height, int32_t xScaleMethod, int32_t desiredWidth,
                                  int32_t desiredHeight, bool asRotatedImage) const {
  if (xScaleMethod < 0) xScaleMethod = m_scaleMethod;
  if (xScaleMethod > image::smLockScale) xScaleMethod = image::smLockScale;
  if (xScaleMethod == image::smLockScale) {
    Width = m_scaleCx;
    Height = m_scaleCy;
    return;
  }
  if (desiredWidth < 1) desiredWidth = std::max(m_clientWidth, 0);
  if (desiredHeight < 1) desiredHeight = std::max(m_clientHeight, 0);
  const int32_t iw = m_dib->Width(), ih = m_dib->Height();
  if (iw < 1 || ih < 1) {
    Width = Height = 0;
    return;
  }
  if (xScaleMethod == image::smActualSize) {
    Width = iw;
    Height = ih;
    return;
  }
  if (!asRotatedImage) {
    if (xScaleMethod == image::smStretch) {
      Width = desiredWidth;
      Height = desiredHeight;
      return;
    }
    double ratio = std::min(static_cast<double>(desiredWidth) / iw, static_cast<double>(desiredHeight) / ih);
    if (xScaleMethod == image::smScaleDownOnly && ratio > 1.0) ratio = 1.0;
    Width = RoundHalfEven(iw * ratio);
    Height = RoundHalfEven(ih * ratio);
    return;
  }
  // Rotated: the picture must fit at any angle, so its diagonal is what is fitted.
  const int32_t diagonal = Diagonal(iw, ih);
  const double rw = static_cast<double>(iw) / diagonal, rh = static_cast<double>(ih) / diagonal;
  if (xScaleMethod == image::smStretch) {
    Width = RoundHalfEven(rw * desiredWidth);
    Height = RoundHalfEven(rh * desiredHeight);
    return;
  }
  const int32_t side = std::min(desiredWidth, desiredHeight);
  Width = RoundHalfEven(rw * side);
  Height = RoundHalfEven(rh * side);
  if (xScaleMethod == image::smScaleDownOnly && (Width > iw || Height > ih)) {
    Width = iw;
    Height = ih;
  }
}

void USAlphaImage::UpdateGeometry() {
  if (m_clientWidth < 0 || m_inGeometry) return;
  if (!m_dib->Handle()) {
    m_x = m_y = m_width = m_height = 0;
    m_actualSize = false;
    RebuildCaches();
    return;
  }
  const bool rotate = RotateEnabled();
  int32_t w = 0, h = 0;
  GetImageScales(w, h, -1, 0, 0, rotate);
  if (m_scaleMethod == image::smLockScale && (w < 1 || h < 1)) {
    // Nothing locked yet: the picture's own size is the one to lock.
    w = m_dib->Width();
    h = m_dib->Height();
  }
  if (m_scaleMethod != image::smLockScale || m_scaleCx < 1 || m_scaleCy < 1) {
    m_scaleCx = w;
    m_scaleCy = h;
  }
  m_width = w;
  m_height = h;
  if (rotate) {
    m_x = std::max(m_clientWidth / 2, 0);
    m_y = std::max(m_clientHeight / 2, 0);
  } else {
    m_x = std::max((m_clientWidth - w) / 2, 0);
    m_y = std::max((m_clientHeight - h) / 2, 0);
  }
  m_actualSize = w == m_dib->Width() && h == m_dib->Height();

  if (AutoSize() && m_dib->ImageType() != image::imgCheckerBoard) {
    m_x = m_y = 0;
    const int32_t side = rotate ? Diagonal(w, h) : 0;
    const int32_t tw = rotate ? side : w, th = rotate ? side : h;
    if (tw > 0 && th > 0 && (tw != m_clientWidth || th != m_clientHeight)) {
      m_inGeometry = true;
      Step([&] {
        const host::Screen& screen = host::GetScreen();
        Control::Width(static_cast<float>(tw) * screen.TwipsPerPixelX());
        Control::Height(static_cast<float>(th) * screen.TwipsPerPixelY());
      });
      m_inGeometry = false;
      platform::RECT rc{};
      Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
      if (rc.right > 0 && rc.bottom > 0) {
        m_clientWidth = rc.right;
        m_clientHeight = rc.bottom;
      }
    }
  }
  RebuildCaches();
}

void USAlphaImage::RebuildCaches() {
  RebuildScaledCopy();
  RebuildShadow();
  RebuildHitRegion();
}

std::shared_ptr<image::API32bppDIB> USAlphaImage::ScaledSource() const {
  if (m_width < 1 || m_height < 1 || m_actualSize) return nullptr;
  auto copy = std::make_shared<image::API32bppDIB>();
  copy->HighQualityInterpolation(m_dib->HighQualityInterpolation());
  if (!copy->InitializeDIB(m_width, m_height)) return nullptr;
  m_dib->Render(0, 0, 0, m_width, m_height, 0, 0, 0, 0, 100, true, true, copy.get());
  copy->Alpha(m_dib->Alpha() == image::AlphaNone ? image::AlphaNone : image::AlphaComplex);
  copy->SetImageType(image::imgBmpPARGB);
  return copy;
}

void USAlphaImage::RebuildScaledCopy() {
  if (!(m_props & kScaledCopy) || m_scaleCx < 1 || !m_dib->Handle() || m_width < 1 || m_height < 1) {
    m_scaledDib.reset();
    return;
  }
  if (!m_scaledDib || m_scaledDib->Width() != m_width || m_scaledDib->Height() != m_height) {
    auto copy = std::make_shared<image::API32bppDIB>();
    copy->ManageOwnDC(true);
    copy->gdiToken(m_dib->gdiToken());
    if (!copy->InitializeDIB(m_width, m_height)) {
      m_scaledDib.reset();
      return;
    }
    m_scaledDib = std::move(copy);
  } else {
    m_scaledDib->EraseDIB();
  }
  m_scaledDib->HighQualityInterpolation(m_dib->HighQualityInterpolation());
  m_dib->Render(0, 0, 0, m_width, m_height, 0, 0, 0, 0, 100, true, true, m_scaledDib.get());
  m_scaledDib->Alpha(m_dib->Alpha() == image::AlphaNone ? image::AlphaNone : image::AlphaComplex);
  m_scaledDib->SetImageType(image::imgBmpPARGB);
}

void USAlphaImage::RebuildShadow() {
  m_shadowDib.reset();
  if (!ShadowEnabled() || !m_dib->Handle() || m_width < 1 || m_height < 1) return;
  if (m_dib->ImageType() == image::imgCheckerBoard) return;
  // A small picture at its own size is cheap to shadow on each paint. A rotated one keeps its
  // shadow too: only a kept shadow can be turned with the picture.
  const bool large = m_dib->Width() >= 129 || m_dib->Height() >= 129;
  if (!large && m_actualSize && !RotateEnabled()) return;
  const int32_t colour = ResolvedShadowColor();
  if (m_scaledDib) {
    m_shadowDib = m_scaledDib->CreateDropShadow(m_shadowDepth, colour);
  } else if (auto scaled = ScaledSource()) {
    m_shadowDib = scaled->CreateDropShadow(m_shadowDepth, colour);
  } else {
    m_shadowDib = m_dib->CreateDropShadow(m_shadowDepth, colour);
  }
}

void USAlphaImage::RebuildHitRegion() {
  if (m_hitRegion) {
    platform::DeleteObject(m_hitRegion);
    m_hitRegion = 0;
  }
  m_hitNothing = false;
  m_hitRect = {0, 0, std::max(m_clientWidth, 0), std::max(m_clientHeight, 0)};
  if (m_hitTest == Entire_Control || !m_dib->Handle() || m_width < 1 || IsDesignMode()) return;

  platform::HRGN region = 0;
  const int32_t style = m_hitTest - 1;
  if (RotateEnabled()) {
    // The shape of the turned picture: drawn as Paint draws it, onto a surface of the client.
    image::API32bppDIB shape;
    if (m_clientWidth < 1 || m_clientHeight < 1 || !shape.InitializeDIB(m_clientWidth, m_clientHeight)) return;
    m_dib->Render(0, m_clientWidth / 2 + m_imageOffsetX, m_clientHeight / 2 + m_imageOffsetY, m_width, m_height, 0, 0,
                  0, 0, 100, true, true, &shape, -1, 0, static_cast<float>(m_rotation), true);
    shape.Alpha(image::AlphaComplex);
    region = shape.CreateRegion(style, 0, 0);
  } else {
    const int32_t dx = m_x + m_imageOffsetX, dy = m_y + m_imageOffsetY;
    if (m_scaledDib) {
      region = m_scaledDib->CreateRegion(style, dx, dy);
    } else if (auto scaled = ScaledSource()) {
      region = scaled->CreateRegion(style, dx, dy);
    } else {
      region = m_dib->CreateRegion(style, dx, dy);
    }
  }
  if (!region) {
    // A picture with no opaque pixel has no shape: it takes no mouse at all.
    m_hitNothing = true;
    return;
  }
  if (m_hitTest == Bounding_Region) {
    platform::GetRgnBox(region, &m_hitRect);
    platform::DeleteObject(region);
    return;
  }
  m_hitRegion = region;
}

void USAlphaImage::Repaint() {
  if (m_clientWidth < 0 || !UserControl::hWnd()) return;
  Step([&] { UserControl::Refresh(); });
}

void USAlphaImage::UserControl_Paint() {
  if (m_clientWidth < 0 || !m_dib->Handle()) return;
  const platform::HDC dc = hDC();
  if (!dc) return;
  platform::RECT clip{};
  if (platform::GetClipBox(dc, &clip) <= 0 || clip.right <= clip.left || clip.bottom <= clip.top)
    clip = {0, 0, m_clientWidth, m_clientHeight};

  const bool rotate = RotateEnabled();
  const int32_t cx = m_clientWidth / 2, cy = m_clientHeight / 2;
  platform::RECT picture{};
  if (rotate) {
    const int32_t side = Diagonal(m_width, m_height);
    picture.left = cx + m_imageOffsetX - side / 2;
    picture.top = cy + m_imageOffsetY - side / 2;
    picture.right = picture.left + side;
    picture.bottom = picture.top + side;
  } else {
    picture = {m_x + m_imageOffsetX, m_y + m_imageOffsetY, m_x + m_imageOffsetX + m_width,
               m_y + m_imageOffsetY + m_height};
  }
  platform::RECT visible{};
  if (!platform::IntersectRect(&visible, &clip, &picture)) return;
  const int32_t light = static_cast<int32_t>(m_intensity);

  if (ShadowEnabled() && m_shadowOpacity > 0) {
    const int32_t sx = (m_clientWidth - m_width) / 2 + m_shadowX + m_shadowMoveX;
    const int32_t sy = (m_clientHeight - m_height) / 2 + m_shadowY + m_shadowMoveY;
    Step([&] {
      if (!m_shadowDib) {
        m_dib->RenderDropShadow_JIT(dc, sx, sy, m_shadowDepth, ResolvedShadowColor(), m_shadowOpacity);
      } else if (!rotate) {
        m_shadowDib->Render(dc, sx, sy, 0, 0, 0, 0, 0, 0, m_shadowOpacity);
      } else {
        m_shadowDib->Render(dc, cx + m_shadowX + m_shadowMoveX, cy + m_shadowY + m_shadowMoveY, m_shadowDib->Width(),
                            m_shadowDib->Height(), 0, 0, 0, 0, m_shadowOpacity, true, true, nullptr, m_grayFormula, 0,
                            static_cast<float>(m_rotation), true);
      }
    });
  }

  Step([&] {
    if (m_scaledDib) {
      // Only what the clip lets through, from the copy that already has the display size.
      m_scaledDib->Render(dc, visible.left, visible.top, visible.right - visible.left, visible.bottom - visible.top,
                          visible.left - picture.left, visible.top - picture.top, visible.right - visible.left,
                          visible.bottom - visible.top, m_opacity, true, true, nullptr, m_grayFormula, light);
    } else if (rotate) {
      m_dib->Render(dc, cx + m_imageOffsetX, cy + m_imageOffsetY, m_width, m_height, 0, 0, 0, 0, m_opacity, true, true,
                    nullptr, m_grayFormula, light, static_cast<float>(m_rotation), true);
    } else if (m_actualSize) {
      m_dib->Render(dc, visible.left, visible.top, visible.right - visible.left, visible.bottom - visible.top,
                    visible.left - picture.left, visible.top - picture.top, visible.right - visible.left,
                    visible.bottom - visible.top, m_opacity, true, true, nullptr, m_grayFormula, light);
    } else {
      m_dib->Render(dc, picture.left, picture.top, m_width, m_height, 0, 0, 0, 0, m_opacity, true, true, nullptr,
                    m_grayFormula, light);
    }
  });
}

// ---- What is shown, saved ---------------------------------------------------------------------

bool USAlphaImage::RenderedImage(image::API32bppDIB& out, int32_t LightAdjustment) const {
  if (!m_dib->Handle() || m_dib->ImageType() == image::imgCheckerBoard) return false;
  int32_t w = m_width, h = m_height;
  if (w < 1 || h < 1) {
    w = m_dib->Width();
    h = m_dib->Height();
  }
  const bool rotate = RotateEnabled() && (m_rotation % 360) != 0;
  if (rotate) {
    const int32_t side = Diagonal(w, h);
    if (!out.InitializeDIB(side, side)) return false;
    m_dib->Render(0, side / 2, side / 2, w, h, 0, 0, 0, 0, m_opacity, true, true, &out, m_grayFormula, LightAdjustment,
                  static_cast<float>(m_rotation), true);
  } else {
    if (!out.InitializeDIB(w, h)) return false;
    m_dib->Render(0, 0, 0, w, h, 0, 0, 0, 0, m_opacity, true, true, &out, m_grayFormula, LightAdjustment);
  }
  out.Alpha(image::AlphaComplex);
  out.SetImageType(image::imgBmpPARGB);
  if (rotate) {
    // The turned picture leaves transparent corners: cut them away.
    int32_t x = 0, y = 0, tw = 0, th = 0;
    if (!out.TrimImage(true, image::trimAll, x, y, tw, th)) return false;
  }
  return true;
}

bool USAlphaImage::SaveRederedToBMP(const host::String& FileName, bool KeepPreMultipliedPixels,
                                    int32_t TransparentFillColor, int32_t LightAdjustment) {
  image::API32bppDIB out;
  return RenderedImage(out, LightAdjustment) &&
         out.SaveToFile_Bitmap(FileName, KeepPreMultipliedPixels, TransparentFillColor);
}

bool USAlphaImage::SaveRederedToGIF(const host::String& FileName, bool UseAdaptivePalette,
                                    int32_t OpaquenessTolerance, int32_t LightAdjustment) {
  image::API32bppDIB out;
  return RenderedImage(out, LightAdjustment) && out.SaveToFile_GIF(FileName, UseAdaptivePalette, OpaquenessTolerance);
}

bool USAlphaImage::SaveRederedToJPG(const host::String& FileName, int32_t Quality, int32_t TransparentFillColor,
                                    int32_t LightAdjustment) {
  image::API32bppDIB out;
  return RenderedImage(out, LightAdjustment) && out.SaveToFile_JPG(FileName, Quality, TransparentFillColor);
}

bool USAlphaImage::SaveRederedToPNG(const host::String& FileName, int32_t LightAdjustment) {
  image::API32bppDIB out;
  return RenderedImage(out, LightAdjustment) && out.SaveToFile_PNG(FileName);
}

}  // namespace mx::controls
