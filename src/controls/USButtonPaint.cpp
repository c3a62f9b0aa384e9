// USButton: the paint cycle, the face, the corner region, the layout of caption and picture,
// and the caption itself.
#include <algorithm>

#include "controls/ControlSupport.h"
#include "controls/USButton.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;

namespace {

// DrawText flags of the caption. Measuring with CaptionWordBreak True: one line, ellipsis, "&"
// literal; with it False: wrapped and centred. Drawing uses the same split without DT_CALCRECT
// and, for wrapped text, without DT_CENTER (the measured rectangle is already the text's width).
constexpr uint32_t kMeasureSingleLine = platform::DT_WORD_ELLIPSIS | platform::DT_NOPREFIX | platform::DT_CALCRECT |
                                        platform::DT_NOCLIP | platform::DT_SINGLELINE | platform::DT_VCENTER;
constexpr uint32_t kMeasureWrapped =
    platform::DT_CALCRECT | platform::DT_NOCLIP | platform::DT_WORDBREAK | platform::DT_CENTER;
constexpr uint32_t kDrawSingleLine = platform::DT_WORD_ELLIPSIS | platform::DT_NOPREFIX | platform::DT_NOCLIP |
                                     platform::DT_SINGLELINE | platform::DT_VCENTER;
constexpr uint32_t kDrawWrapped = platform::DT_NOCLIP | platform::DT_WORDBREAK;
static_assert(kMeasureSingleLine == 0x40D24 && kMeasureWrapped == 0x511);
static_assert(kDrawSingleLine == 0x40924 && kDrawWrapped == 0x110);

// The corner rounding of the button's window region.
constexpr int32_t kCornerEllipse = 3;
// The margins the layout keeps between an edge picture and the border.
constexpr int32_t kLayoutMargin = 3;

void Offset(platform::RECT& r, int32_t dx, int32_t dy) { platform::OffsetRect(&r, dx, dy); }

}  // namespace

void USButton::DrawState(int32_t xState, bool xForce) {
  if (!m_redraw) return;
  if (xState == -1) xState = m_state;
  if (!xForce && xState == m_state && m_hasFocus == m_paintedFocus) return;
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  m_paintedFocus = m_hasFocus;
  m_state = xState;
  ++m_paintCount;
  Step([&] { PaintFace(xState); });
  Step([&] { AutoRedraw(false); });
}

void USButton::PaintGradient(OLE_COLOR c1, OLE_COLOR c2, OLE_COLOR c3, OLE_COLOR c4, int32_t gradientColors) {
  const auto mode = gradientColors == frame::Four_Colors ? frame::Four_Colors : frame::Two_Colors;
  if (frame::IsSolidGradientFace(mode, c1, c2, c3, c4)) {
    // A solid face is the host's background: setting it clears the persistent image to it.
    Step([&] { UserControl::BackColor(c1); });
    Step([&] { Cls(); });
    return;
  }
  frame::PaintGradientFace(UserControl::hDC(), m_clientWidth, m_clientHeight, mode, c1, c2, c3, c4);
}

void USButton::PaintFace(int32_t xState) {
  if (m_needLayout) {
    if (m_cropBorders != Dont_Crop) Step([&] { ApplyRegion(kCornerEllipse, kCornerEllipse); });
    Step([&] { LayoutContents(kLayoutMargin, kLayoutMargin); });
  }

  OLE_COLOR textColour = m_foreColor;
  bool focusMark = false;
  if (!UserControl::Enabled()) {
    m_state = kStateDisabled;
    textColour = m_foreColorDisabled;
    Step([&] {
      PaintGradient(m_gradientDisabled[0], m_gradientDisabled[1], m_gradientDisabled[2], m_gradientDisabled[3],
                    m_gradientColors);
    });
  } else {
    // A checked check button does not look pressed when pressed again: it already shows the down
    // colours, so the press paints the normal state with those.
    if (m_checkBoxMode && m_value && xState == kStateDown) xState = kStateNormal;
    if (xState == kStateDown) {
      textColour = m_foreColorDown;
      focusMark = m_showFocusRectDown;
      Step([&] {
        PaintGradient(m_gradientDown[0], m_gradientDown[1], m_gradientDown[2], m_gradientDown[3], m_gradientColors);
      });
    } else if ((xState == kStateNormal || xState == kStateOver) && m_value) {
      textColour = m_foreColor;
      Step([&] { PaintGradient(m_gradientDown[0], m_gradientDown[1], 0, 0, frame::Two_Colors); });
    } else if (xState == kStateOver) {
      textColour = m_foreColorOver;
      Step([&] {
        PaintGradient(m_gradientOver[0], m_gradientOver[1], m_gradientOver[2], m_gradientOver[3], m_gradientColors);
      });
    } else if (xState == kStateNormal) {
      textColour = m_foreColor;
      Step([&] { PaintGradient(m_gradient[0], m_gradient[1], m_gradient[2], m_gradient[3], m_gradientColors); });
    }
  }

  // Border and focus mark follow the stored state, first match wins.
  OLE_COLOR border;
  const bool focusShown = m_hasFocus || m_displayAsDefault;
  if (m_state == kStateDisabled) {
    border = m_borderColorDisabled;
    focusMark = false;
  } else if (m_state == kStateOver || (m_checkBoxMode && m_value) ||
             (m_pressed && !m_mouseOver && xState != kStateDown)) {
    border = m_borderColorOver;
    focusMark = focusShown && m_showFocusRect;
  } else if (m_state == kStateDown) {
    border = m_borderColorDown;  // the focus mark chosen with the down face stays
  } else if (focusShown) {
    border = m_borderColorOver;
    focusMark = m_showFocusRect;
  } else {
    border = m_borderColor;
  }

  const platform::HDC dc = UserControl::hDC();
  const auto pixel = static_cast<platform::COLORREF>(host::TranslateColor(border));
  // These pixels complete the cut corners along the rounded region's edge.
  if (m_cropBorders == Crop_Left || m_cropBorders == Crop_All) {
    platform::SetPixelV(dc, 1, 1, pixel);
    platform::SetPixelV(dc, 1, m_clientHeight - 2, pixel);
  }
  if (m_cropBorders == Crop_Right || m_cropBorders == Crop_All) {
    platform::SetPixelV(dc, m_clientWidth - 2, 1, pixel);
    platform::SetPixelV(dc, m_clientWidth - 2, m_clientHeight - 2, pixel);
  }

  const platform::RECT client{0, 0, m_clientWidth, m_clientHeight};
  if (focusMark) Step([&] { frame::DrawFocusMark(dc, client); });
  if (m_pictureLayoutValid) Step([&] { DrawPicture(); });
  Step([&] { DrawCaption(textColour); });
  // The border is a one-pixel outline over the whole client area, on top of everything else as
  // a shape control lying over the surface would be.
  Step([&] { frame::FrameRectColor(dc, client, border); });
}

void USButton::ApplyRegion(int32_t xEllipseW, int32_t xEllipseH) {
  if (!m_userMode) return;
  const platform::HWND wnd = UserControl::hWnd();
  if (!wnd) return;
  const platform::HRGN region = platform::CreateRoundRectRgn(0, 0, m_clientWidth + 1, m_clientHeight + 1, xEllipseW,
                                                            xEllipseH);
  if (!region) return;
  // A square half keeps the corners of the side that is not cropped.
  if (m_cropBorders == Crop_Right || m_cropBorders == Dont_Crop) {
    const platform::HRGN half = platform::CreateRectRgn(0, 0, m_clientWidth / 2, m_clientHeight + 1);
    platform::CombineRgn(region, region, half, platform::RGN_OR);
    platform::DeleteObject(half);
  }
  if (m_cropBorders == Crop_Left || m_cropBorders == Dont_Crop) {
    const platform::HRGN half = platform::CreateRectRgn(m_clientWidth / 2, 0, m_clientWidth + 1, m_clientHeight + 1);
    platform::CombineRgn(region, region, half, platform::RGN_OR);
    platform::DeleteObject(half);
  }
  // The window owns a region it accepts.
  if (!platform::SetWindowRgn(wnd, region, platform::TRUE)) platform::DeleteObject(region);
}

void USButton::LayoutContents(int32_t xMarginY, int32_t xMarginX) {
  m_needLayout = false;
  m_pictureLayoutValid = false;
  const int32_t W = m_clientWidth;
  const int32_t H = m_clientHeight;

  platform::RECT T{};
  if (!m_caption.empty()) {
    T = platform::RECT{0, 0, W, H};
    frame::DrawTextAPI(UserControl::hDC(), m_caption, T, m_captionWordBreak ? kMeasureSingleLine : kMeasureWrapped);
  }
  Offset(T, (W - T.right) / 2, (H - T.bottom) / 2);
  m_textRect = T;
  if (!HasPicture()) return;

  // The picture box is PictureSizeY wide and PictureSizeX high here; DrawPicture paints it the
  // other way round. Square sizes agree; others keep the difference.
  platform::RECT P{0, 0, m_pictureSizeY, m_pictureSizeX};
  const int32_t G = m_caption.empty() ? 0 : 2;
  const bool hasGap = G > 0;
  auto centreX = [&] { Offset(P, (W - P.right) / 2, 0); };
  auto centreY = [&] { Offset(P, 0, (H - P.bottom) / 2); };
  auto textToTop = [&] { Offset(T, 0, -T.top); };
  auto textToLeft = [&] { Offset(T, -T.left, 0); };
  int32_t F = 0;

  switch (m_pictureAlignment) {
    case Picture_BehindText:
      centreX();
      centreY();
      break;
    case Picture_BottomEdge:
      centreX();
      textToTop();
      Offset(P, 0, H - P.bottom - xMarginY);
      if (hasGap) {
        Offset(T, 0, P.top - T.bottom);
        F = T.top - xMarginY;
        if (F > 1) Offset(T, 0, -(F / 2));
      }
      break;
    case Picture_BottomOfCaption:
      centreX();
      textToTop();
      if (hasGap) {
        Offset(P, 0, T.bottom);
        F = (H - P.bottom) / 2;
        Offset(P, 0, F);
        Offset(T, 0, F);
      } else {
        Offset(P, 0, (H - P.bottom) / 2);
      }
      break;
    case Picture_LeftEdge:
      centreY();
      textToLeft();
      Offset(P, xMarginX, 0);
      if (hasGap) {
        Offset(T, P.right + G, 0);
        F = W - xMarginX - T.right;
        if (F > 1) Offset(T, F / 2, 0);
      }
      break;
    case Picture_LeftOfCaption:
      centreY();
      textToLeft();
      if (hasGap) {
        Offset(T, P.right + G, 0);
        F = (W - T.right) / 2;
        Offset(T, F, 0);
        Offset(P, F, 0);
      } else {
        Offset(P, (W - P.right) / 2, 0);
      }
      break;
    case Picture_RightEdge:
      centreY();
      textToLeft();
      Offset(P, W - P.right - xMarginX, 0);
      if (hasGap) {
        Offset(T, P.left - T.right - G, 0);
        F = T.left - xMarginX;
        if (F > 1) Offset(T, -(F / 2), 0);
      }
      break;
    case Picture_RightOfCaption:
      centreY();
      textToLeft();
      if (hasGap) {
        Offset(P, T.right + G, 0);
        F = (W - P.right) / 2;
        Offset(P, F, 0);
        Offset(T, F, 0);
      } else {
        Offset(P, (W - P.right) / 2, 0);
      }
      break;
    case Picture_TopEdge:
      centreX();
      textToTop();
      Offset(P, 0, xMarginY);
      if (hasGap) {
        Offset(T, 0, P.bottom);
        F = H - T.bottom - xMarginY;
        if (F > 1) Offset(T, 0, F / 2);
      }
      break;
    case Picture_TopOfCaption:
      centreX();
      textToTop();
      if (hasGap) {
        Offset(T, 0, P.bottom);
        F = (H - T.bottom) / 2;
        Offset(T, 0, F);
        Offset(P, 0, F);
      } else {
        Offset(P, 0, (H - P.bottom) / 2);
      }
      break;
    default:
      // An alignment outside the list places the picture at the top left, text as measured.
      break;
  }

  m_pictureLeft = P.left;
  m_pictureTop = P.top;
  m_textRect = T;
  m_pictureLayoutValid = true;
}

void USButton::DrawCaption(OLE_COLOR xColour) {
  if (m_caption.empty()) return;
  platform::RECT R = m_textRect;
  if (m_alignment == To_Left_Justify) {
    R.left = m_captionDistance;
  } else if (m_alignment == To_Right_Justify) {
    R.left = static_cast<int32_t>(ScaleWidth()) - m_captionDistance - (m_textRect.right - m_textRect.left);
  }
  // The host's surface draws text transparently (its FontTransparent is on by default).
  platform::SetBkMode(UserControl::hDC(), platform::TRANSPARENT);
  frame::DrawTextColor(UserControl::hDC(), m_caption, R, m_captionWordBreak ? kDrawSingleLine : kDrawWrapped,
                       xColour);
}

}  // namespace mx::controls
