// USComboBox: the paint entry and the face.
//
//   +--------------------------------------+-----------------+
//   |  txtCombo (inset 3, its back colour  | arrow button    |   1-pixel border all round in
//   |  follows the face)                   | kButtonWidth px |   the state's border colour;
//   +--------------------------------------+-----------------+   ShowCorner: a line left of
//                                                                the button
#include <algorithm>

#include "controls/ControlSupport.h"
#include "entry/USComboBox.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "image/API32bppDIB.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;

namespace {

// The arrow: a filled triangle pointing down, kArrowWidth wide at the top and one pixel less on
// each side per row below.
constexpr int kArrowWidth = 7;
constexpr int kArrowRows = (kArrowWidth + 1) / 2;

// Decodes a picture's bytes once into a surface; nothing when they are no picture.
std::shared_ptr<image::API32bppDIB> DecodedPicture(const std::shared_ptr<host::StdPicture>& picture,
                                                   std::shared_ptr<image::API32bppDIB>& cache) {
  if (!picture || picture->IsEmpty()) return nullptr;
  if (!cache) {
    auto dib = std::make_shared<image::API32bppDIB>();
    if (!dib->LoadPicture_Stream(picture->Bytes())) return nullptr;
    cache = std::move(dib);
  }
  return cache;
}

}  // namespace

void USComboBox::DrawCombo(int32_t xState, bool xForce) {
  if (!m_redraw || !UserControl::hWnd()) return;
  const int32_t state = xState == -1 ? CurrentState() : xState;
  if (!xForce && state == m_paintedState) return;
  m_paintedState = state;
  Step([&] { ApplyTextLook(); });
  Step([&] { PaintFrame(state); });
}

void USComboBox::PaintFrame(int32_t state) {
  OLE_COLOR back = m_backColor, border = m_borderColor;
  switch (state) {
    case kStateDisabled:
      back = m_backColorDisabled;
      border = m_borderColorDisabled;
      break;
    case kStateOpen:
      back = m_backColorOnShowList;
      border = m_borderColorOver;
      break;
    case kStateOver:
      back = m_backColorOver;
      border = m_borderColorOver;
      break;
    default: break;
  }
  UserControl::BackColor(back);
  AutoRedraw(true);
  Cls();
  const platform::HDC dc = hDC();
  platform::RECT rc{};
  platform::GetClientRect(UserControl::hWnd(), &rc);
  const platform::RECT button = ButtonRect();
  Step([&] { PaintButton(dc, button, state); });
  if (m_showCorner) {
    Step([&] { frame::DrawLineColor(dc, button.left - 1, 1, button.left - 1, rc.bottom - 1, border); });
  }
  Step([&] { frame::FrameRectColor(dc, rc, border); });
  AutoRedraw(false);
}

void USComboBox::PaintButton(platform::HDC dc, const platform::RECT& button, int32_t state) {
  const int bw = button.right - button.left;
  const int bh = button.bottom - button.top;
  if (bw <= 0 || bh <= 0) return;
  const bool hot = state == kStateOver || state == kStateOpen;
  std::shared_ptr<image::API32bppDIB> face;
  if (hot) face = DecodedPicture(m_listPictureOver, m_pictureOverDib);
  if (!face) face = DecodedPicture(m_listPicture, m_pictureDib);
  if (face && face->Width() > 0 && face->Height() > 0) {
    // The picture is the whole button face, centred, shrunk to fit when larger.
    int w = face->Width(), h = face->Height();
    if (w > bw || h > bh) {
      const double scale = std::min(static_cast<double>(bw) / w, static_cast<double>(bh) / h);
      w = std::max(1, static_cast<int>(w * scale));
      h = std::max(1, static_cast<int>(h * scale));
    }
    face->Render(dc, button.left + (bw - w) / 2, button.top + (bh - h) / 2, w, h);
    return;
  }
  // Equal colours make a solid face over the button itself (the gradient painter would fill
  // from the client origin instead).
  if (m_gradientColor1 == m_gradientColor2) frame::FillRectColor(dc, button, m_gradientColor1);
  else frame::PaintGradientRect(dc, button.left, button.top, bw, bh, m_gradientColor1, m_gradientColor2, m_gradientMode);
  const OLE_COLOR arrow = state == kStateDisabled ? m_borderColorDisabled : m_foreColor;
  const int left = button.left + (bw - kArrowWidth) / 2;
  const int top = button.top + (bh - kArrowRows) / 2;
  for (int row = 0; row < kArrowRows; ++row) {
    frame::FillRectColor(dc, platform::RECT{left + row, top + row, left + kArrowWidth - row, top + row + 1}, arrow);
  }
}

}  // namespace mx::entry
