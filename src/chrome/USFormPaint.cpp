// USForm: the frame on the parent (style change, edge strips, window region) and the painting
// of the caption strip and the edges.
#include <algorithm>

#include "chrome/CaptionButtonArt.h"
#include "chrome/USForm.h"
#include "controls/ControlSupport.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "host/Colors.h"
#include "host/Form.h"
#include "host/Strings.h"
#include "image/API32bppDIB.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/User.h"

namespace mx::chrome {

using controls::detail::Step;
using host::Variant;
using namespace platform;

namespace {

constexpr const char16_t* kEdgeClass = u"MxFormEdge";
// The strips' names, as the form's controls would be named: bottom, left, right.
constexpr const char16_t* kEdgeNames[3] = {u"MXPBQRLN", u"MXPLQRLN", u"MXPRQRLN"};
// Single line, no clipping, no "&" prefix, ellipsis where the text does not fit.
constexpr uint32_t kCaptionFlags = 264480;

LRESULT EdgeProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* owner = reinterpret_cast<USForm*>(GetWindowLongPtr(hwnd, GWLP_USERDATA));
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd, &ps);
      if (owner && dc) owner->PaintEdge(hwnd, dc);
      EndPaint(hwnd, &ps);
      return 0;
    }
    case WM_SETCURSOR:
      if (owner)
        if (HCURSOR c = owner->EdgeCursor(hwnd)) {
          SetCursor(c);
          return TRUE;
        }
      return DefWindowProc(hwnd, msg, wParam, lParam);
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

void RegisterEdgeClass() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kEdgeClass, &info)) return;
  RegisterWindowClass(kEdgeClass, &EdgeProc, 0, 0, 0);
}

// A solid or vertical gradient fill of any rectangle (the gradient painter's equal-colour case
// measures from the origin, so offset rectangles fill themselves).
void FillVertical(HDC dc, const RECT& r, OLE_COLOR c1, OLE_COLOR c2) {
  if (c1 == c2) frame::FillRectColor(dc, r, c1);
  else frame::PaintGradientRect(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, c1, c2, 1);
}

}  // namespace

// ---- Colours and sizes ----------------------------------------------------------------------------

OLE_COLOR USForm::StripBackColor() const {
  if (!UserControl::Enabled()) return m_backColorDisabled;
  return m_formActive ? m_backColor : m_backColorInactive;
}

OLE_COLOR USForm::StripBorderColor() const {
  if (!UserControl::Enabled()) return m_borderColorDisabled;
  return m_formActive ? m_borderColor : m_borderColorInactive;
}

int32_t USForm::EdgeThickness() const { return (OfficeLook() ? 3 : std::max(0, m_borderWidth)) + (m_showInnerBorder ? 1 : 0); }

bool USForm::HasCaptionPicture() const {
  return !m_pictureBytes.empty() || (m_icon && !m_icon->IsEmpty());
}

// ---- The frame ----------------------------------------------------------------------------------

void USForm::RemoveFormFrame() {
  if (!m_formWindow) return;
  DWORD style = static_cast<DWORD>(GetWindowLong(m_formWindow, GWL_STYLE));
  DWORD exStyle = static_cast<DWORD>(GetWindowLong(m_formWindow, GWL_EXSTYLE));
  style &= ~(WS_CAPTION | WS_THICKFRAME | WS_POPUP);
  if (m_allowResize) style &= ~WS_SYSMENU;
  const bool minBox = m_showControlBox && m_showMinimize;
  const bool maxBox = m_showControlBox && m_showMaximize;
  style = minBox ? (style | WS_MINIMIZEBOX) : (style & ~WS_MINIMIZEBOX);
  style = maxBox ? (style | WS_MAXIMIZEBOX) : (style & ~WS_MAXIMIZEBOX);
  host::Form* form = ParentForm();
  bool inTaskBar = true;
  if (form) {
    try {
      inTaskBar = form->Invoke(u"ShowInTaskBar", host::CallKind::Get, {}).ToBoolean();
    } catch (...) {
      // A form of the host that keeps no such setting shows in the task list, as forms do.
      inTaskBar = true;
    }
  }
  exStyle = inTaskBar ? (exStyle | WS_EX_APPWINDOW) : (exStyle & ~WS_EX_APPWINDOW);
  SetWindowLong(m_formWindow, GWL_STYLE, static_cast<LONG>(style));
  SetWindowLong(m_formWindow, GWL_EXSTYLE, static_cast<LONG>(exStyle));
  RECT r{};
  GetWindowRect(m_formWindow, &r);
  SetWindowPos(m_formWindow, 0, r.left, r.top, r.width(), r.height(),
               SWP_NOZORDER | SWP_FRAMECHANGED | SWP_NOOWNERZORDER);
}

void USForm::BuildFormEdges() {
  if (!m_formWindow) return;
  RegisterEdgeClass();
  for (size_t i = 0; i < 3; ++i) {
    // A strip of that name already on the form is taken over rather than made twice.
    HWND edge = FindWindowExW(m_formWindow, 0, kEdgeClass, kEdgeNames[i]);
    if (!edge)
      edge = CreateWindowExW(0, kEdgeClass, kEdgeNames[i], WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, 1, 1,
                             m_formWindow);
    if (!edge) continue;
    SetWindowLongPtr(edge, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowPos(edge, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    m_edges[i] = edge;
  }
  if (!m_subclass) return;
  const HWND strips[] = {UserControl::hWnd(), m_edges[0], m_edges[1], m_edges[2]};
  for (HWND strip : strips) {
    if (!strip || !m_subclass->ssc_Subclass(strip)) continue;
    m_subclass->ssc_AddMsg(strip, frame::MSG_BEFORE, {WM_MOUSELEAVE, WM_CANCELMODE});
    m_subclass->ssc_AddMsg(strip, frame::MSG_AFTER, {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK});
  }
}

void USForm::LayoutFormEdges() {
  if (!m_formWindow || !IsWindow(m_formWindow)) return;
  RECT rc{};
  GetClientRect(m_formWindow, &rc);
  const int t = EdgeThickness();
  const RECT places[3] = {{0, rc.bottom - t, rc.right, rc.bottom}, {0, 0, t, rc.bottom}, {rc.right - t, 0, rc.right, rc.bottom}};
  for (size_t i = 0; i < 3; ++i) {
    if (!m_edges[i] || !IsWindow(m_edges[i])) continue;
    const RECT& p = places[i];
    SetWindowPos(m_edges[i], 0, p.left, p.top, p.width(), p.height(), SWP_NOZORDER);
    InvalidateRect(m_edges[i], nullptr, FALSE);
  }
}

void USForm::PaintEdge(HWND edge, HDC dc) {
  RECT rc{};
  GetClientRect(edge, &rc);
  const OLE_COLOR border = StripBorderColor();
  const int t = EdgeThickness();
  // The Office look keeps the outer line in the border colour and the rest in its ground; the
  // others are all border.
  frame::FillRectColor(dc, rc, OfficeLook() && UserControl::Enabled() ? m_gradientColor2 : border);
  const bool bottom = edge == m_edges[0], left = edge == m_edges[1];
  // Outer line: along the form's edge.
  if (bottom) frame::DrawLineColor(dc, 0, rc.bottom - 1, rc.right, rc.bottom - 1, border);
  else if (left) frame::DrawLineColor(dc, 0, 0, 0, rc.bottom, border);
  else frame::DrawLineColor(dc, rc.right - 1, 0, rc.right - 1, rc.bottom, border);
  if (m_showInnerBorder && t > 1) {
    // One more line on the client side, lighter, as a bevel.
    const OLE_COLOR inner = MixColour(border, 0xFFFFFF, 96);
    if (bottom) frame::DrawLineColor(dc, t - 1, 0, rc.right - t + 1, 0, inner);
    else if (left) frame::DrawLineColor(dc, t - 1, 0, t - 1, rc.bottom - t + 1, inner);
    else frame::DrawLineColor(dc, 0, 0, 0, rc.bottom - t + 1, inner);
  }
}

void USForm::ApplyFormRegion() {
  if (!m_formWindow) return;
  if (!OfficeLook()) {
    SetWindowRgn(m_formWindow, 0, TRUE);
    return;
  }
  RECT r{};
  GetWindowRect(m_formWindow, &r);
  const int w = r.width(), h = r.height();
  HRGN region = CreateRectRgn(0, 0, w, h);
  // Each corner loses a 2 x 2 square, a 1 x 4 column and a 4 x 1 row: a small rounding.
  const RECT cuts[] = {
      {0, 0, 2, 2},         {0, 0, 1, 4},         {0, 0, 4, 1},          // top left
      {w - 2, 0, w, 2},     {w - 1, 0, w, 4},     {w - 4, 0, w, 1},      // top right
      {0, h - 2, 2, h},     {0, h - 4, 1, h},     {0, h - 1, 4, h},      // bottom left
      {w - 2, h - 2, w, h}, {w - 1, h - 4, w, h}, {w - 4, h - 1, w, h},  // bottom right
  };
  for (const RECT& c : cuts) {
    HRGN cut = CreateRectRgn(c.left, c.top, c.right, c.bottom);
    CombineRgn(region, region, cut, RGN_DIFF);
    DeleteObject(cut);
  }
  // The window owns the region from here on.
  SetWindowRgn(m_formWindow, region, TRUE);
}

// ---- The caption strip --------------------------------------------------------------------------

void USForm::DrawFormStrips() {
  const HWND strip = UserControl::hWnd();
  if (!strip) return;
  RECT rc{};
  GetClientRect(strip, &rc);
  if (rc.right <= 0 || rc.bottom <= 0) return;
  UserControl::AutoRedraw(true);
  HDC dc = UserControl::hDC();
  if (!UserControl::Enabled()) frame::FillRectColor(dc, rc, m_backColorDisabled);
  else if (OfficeLook()) FillVertical(dc, rc, m_gradientColor1, m_gradientColor2);
  else frame::FillRectColor(dc, rc, StripBackColor());
  // The frame's line runs on round the top of the strip, joining the edges.
  const OLE_COLOR border = StripBorderColor();
  const int lines = OfficeLook() ? 1 : std::max(0, m_borderWidth);
  for (int i = 0; i < lines; ++i) {
    frame::DrawLineColor(dc, 0, i, rc.right, i, border);
    frame::DrawLineColor(dc, i, 0, i, rc.bottom, border);
    frame::DrawLineColor(dc, rc.right - 1 - i, 0, rc.right - 1 - i, rc.bottom, border);
  }
  Step([&] { PaintButtonBand(dc); });
  Step([&] { DrawCaptionIcon(dc); });
  Step([&] { DrawCaptionText(dc); });
  UserControl::AutoRedraw(false);
  if (m_userMode && m_firstShowDone) Step([&] { ApplyFormRegion(); });
  UserControl::Refresh();
}

void USForm::DrawCaptionButtons() {
  const HWND strip = UserControl::hWnd();
  if (!strip) return;
  UserControl::AutoRedraw(true);
  Step([&] { PaintButtonBand(UserControl::hDC()); });
  UserControl::AutoRedraw(false);
  UserControl::Refresh();
}

void USForm::PaintButtonBand(HDC dc) {
  if (!m_showControlBox) return;
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  const int32_t lines = OfficeLook() ? 1 : std::max(0, m_borderWidth);
  // The band's ground first, so that a hover change repaints the buttons alone.
  RECT band{std::max<int32_t>(lines, rc.right - ButtonBandWidth()), lines, rc.right - lines, rc.bottom};
  if (!UserControl::Enabled()) frame::FillRectColor(dc, band, m_backColorDisabled);
  else if (OfficeLook()) {
    // The gradient of the strip over just the band's rows.
    RECT full{band.left, 0, band.right, rc.bottom};
    FillVertical(dc, full, m_gradientColor1, m_gradientColor2);
    frame::DrawLineColor(dc, band.left, 0, band.right, 0, StripBorderColor());
  } else frame::FillRectColor(dc, band, StripBackColor());

  ButtonColours colours;
  const bool enabled = UserControl::Enabled();
  colours.glyph = !enabled ? m_foreColorDisabled : m_formActive ? m_foreColor : m_foreColorInactive;
  colours.background = !enabled ? m_backColorDisabled : OfficeLook() ? m_gradientColor2 : StripBackColor();
  if (OfficeLook()) {
    colours.hoverFill = frame::GetThemeColor(m_theme, frame::ThemeGradientColorOver1);
    colours.pressedFill = frame::GetThemeColor(m_theme, frame::ThemeGradientColorDown1);
    colours.frame = frame::GetThemeColor(m_theme, frame::ThemeBorderColorDown);
  } else {
    colours.hoverFill = host::ShiftRGBColor(StripBackColor(), 40);
    colours.pressedFill = host::ShiftRGBColor(StripBackColor(), -30);
  }
  const ButtonLook look = OfficeLook() ? ButtonLook::Office : ButtonLook::Windows;
  for (int32_t button = MinimizeButton; button <= CloseButton; ++button) {
    const RECT cell = ButtonRect(button);
    if (cell.right <= cell.left) continue;
    ButtonFace face = FaceNormal;
    if (!enabled || !IsButtonLive(button)) face = FaceDisabled;
    else if (button == m_hoverButton) face = m_buttonPressed ? FacePressed : FaceHover;
    const ButtonGlyph glyph = button == MinimizeButton ? GlyphMinimize
                              : button == CloseButton  ? GlyphClose
                              : MaximizeGlyph() == MaximizeButton ? GlyphMaximize
                                                                  : GlyphRestore;
    DrawCaptionButton(dc, cell, look, glyph, face, colours);
  }
}

void USForm::DrawCaptionIcon(HDC dc) {
  if (!HasCaptionPicture()) return;
  if (!m_picture) {
    auto picture = std::make_shared<image::API32bppDIB>();
    const bool loaded = !m_pictureBytes.empty() ? picture->LoadPicture_Stream(m_pictureBytes, m_iconSizeX, m_iconSizeY)
                                                : picture->LoadPicture_StdPicture(m_icon);
    if (!loaded) return;
    m_picture = std::move(picture);
  }
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  m_picture->Render(dc, 4, (rc.bottom - m_iconSizeY) / 2, m_iconSizeX, m_iconSizeY);
}

void USForm::DrawCaptionText(HDC dc) {
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  RECT box{HasCaptionPicture() ? m_iconSizeX + 8 : 2, m_captionTop,
           m_showControlBox ? rc.right - ButtonBandWidth() : rc.right - 4, rc.bottom};
  SetBkMode(dc, TRANSPARENT);
  if (m_captionOnCenter) {
    RECT measure{0, 0, rc.right, rc.bottom};
    frame::DrawTextAPI(dc, m_caption, measure, kCaptionFlags | DT_CALCRECT);
    const int32_t textWidth = measure.right - measure.left;
    // Centred in the strip's width when it fits there without running into the buttons.
    const int32_t left = (rc.right - textWidth) / 2;
    if (left >= box.left && left + textWidth <= box.right) {
      box.left = left;
      box.right = left + textWidth;
    }
  }
  m_captionRect = box;
  if (m_caption.empty()) return;
  const bool enabled = UserControl::Enabled();
  const OLE_COLOR colour = !enabled ? m_foreColorDisabled : m_formActive ? m_foreColor : m_foreColorInactive;
  const size_t split = m_captionDelimiter.empty() ? String::npos : m_caption.rfind(m_captionDelimiter);
  if (!enabled || !m_formActive || split == String::npos) {
    frame::DrawTextColor(dc, m_caption, box, kCaptionFlags, colour);
    return;
  }
  // Split at the last delimiter: what comes before in the fore colour, the delimiter and what
  // follows in the delimiter's colour, one after the other.
  const String head = m_caption.substr(0, split);
  const String tail = m_caption.substr(split);
  RECT measure{0, 0, rc.right, rc.bottom};
  frame::DrawTextAPI(dc, head, measure, kCaptionFlags | DT_CALCRECT);
  RECT first = box;
  frame::DrawTextColor(dc, head, first, kCaptionFlags, m_foreColor);
  RECT second = box;
  second.left = std::min(box.right, box.left + (measure.right - measure.left));
  frame::DrawTextColor(dc, tail, second, kCaptionFlags, m_foreColorDelimiter);
}

}  // namespace mx::chrome
