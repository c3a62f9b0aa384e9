// USDatePicker: painting. One routine draws the whole face into the persistent image: ground,
// the text field's place (Style 0) or the drawn text (Style 1), the arrow glyph and the border.
// The separating line is drawn on top while the pointer is over the arrow area.
#include <algorithm>
#include <cmath>

#include "controls/ControlSupport.h"
#include "dates/USDatePicker.h"
#include "entry/USTextBoxEx.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "host/Screen.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::dates {

using controls::detail::Step;

namespace {

// The arrow glyphs of the enabled and the disabled state: a downward triangle 7 wide, 4 tall.
constexpr OLE_COLOR kArrowEnabled = 0x000000;
constexpr OLE_COLOR kArrowDisabled = 0xA0A0A0;
constexpr int32_t kArrowWidth = 7;
constexpr int32_t kArrowHeight = 4;

void DrawArrow(platform::HDC dc, int32_t x, int32_t y, OLE_COLOR color) {
  for (int32_t row = 0; row < kArrowHeight; ++row) {
    frame::FillRectColor(dc, platform::RECT{x + row, y + row, x + kArrowWidth - row, y + row + 1}, color);
  }
}

// A dotted outline, every other pixel of the perimeter, starting at the top left corner.
void DottedRect(platform::HDC dc, const platform::RECT& r, OLE_COLOR color) {
  const auto c = static_cast<platform::COLORREF>(host::TranslateColor(color));
  for (int32_t x = r.left; x < r.right; x += 2) {
    platform::SetPixelV(dc, x, r.top, c);
    platform::SetPixelV(dc, x, r.bottom - 1, c);
  }
  for (int32_t y = r.top; y < r.bottom; y += 2) {
    platform::SetPixelV(dc, r.left, y, c);
    platform::SetPixelV(dc, r.right - 1, y, c);
  }
}

}  // namespace

OLE_COLOR USDatePicker::SurfaceColor() const {
  if (!UserControl::Enabled()) return m_backColorDisabled;
  if (IsCalendarOpen()) return m_backColorOnShowCalendar;
  if (m_style == Dropdown_Combo) return m_backColor;
  return m_gradientColor1;
}

void USDatePicker::DressTextField(OLE_COLOR back) {
  entry::USTextBoxEx& t = *m_txtCombo;
  const OLE_COLOR fore = UserControl::Enabled() ? m_foreColor : m_foreColorDisabled;
  // The field melts into the surface: its grounds and its border take the surface's colour.
  // Each is set only when it differs, since every setter repaints the field.
  const auto set = [](auto getter, auto setter, OLE_COLOR value) {
    if (getter() != value) setter(value);
  };
  set([&] { return t.BackColor(); }, [&](OLE_COLOR v) { t.BackColor(v); }, back);
  set([&] { return t.BackColorOver(); }, [&](OLE_COLOR v) { t.BackColorOver(v); }, back);
  set([&] { return t.BackColorDisabled(); }, [&](OLE_COLOR v) { t.BackColorDisabled(v); }, back);
  set([&] { return t.BorderColor(); }, [&](OLE_COLOR v) { t.BorderColor(v); }, back);
  set([&] { return t.BorderColorOver(); }, [&](OLE_COLOR v) { t.BorderColorOver(v); }, back);
  set([&] { return t.BorderColorDisabled(); }, [&](OLE_COLOR v) { t.BorderColorDisabled(v); }, back);
  set([&] { return t.ForeColor(); }, [&](OLE_COLOR v) { t.ForeColor(v); }, fore);
  set([&] { return t.ForeColorOver(); }, [&](OLE_COLOR v) { t.ForeColorOver(v); }, fore);
  set([&] { return t.ForeColorDisabled(); }, [&](OLE_COLOR v) { t.ForeColorDisabled(v); }, m_foreColorDisabled);
}

void USDatePicker::DrawLine(platform::HDC dc) {
  platform::RECT rc{};
  platform::GetClientRect(UserControl::hWnd(), &rc);
  // From Y 1 to height - 2, both ends drawn.
  frame::FillRectColor(dc, platform::RECT{m_lineX, 1, m_lineX + 1, rc.bottom - 1}, m_borderColor);
}

void USDatePicker::ShowLine(bool visible) {
  if (visible == m_lineVisible) return;
  if (!visible) {
    // Taking the line away is a paint: the face beneath it is drawn again.
    DrawDatePicker();
    return;
  }
  m_lineVisible = true;
  Step([&] { AutoRedraw(true); });
  Step([&] { DrawLine(UserControl::hDC()); });
  Step([&] { AutoRedraw(false); });
  Step([&] { UserControl::Refresh(); });
}

void USDatePicker::DrawDatePicker() {
  const platform::HWND hwnd = UserControl::hWnd();
  if (!hwnd || m_loading || IsTerminated()) return;
  ++m_paintCount;
  platform::RECT rc{};
  platform::GetClientRect(hwnd, &rc);
  const int32_t w = rc.right;
  const int32_t h = rc.bottom;
  const bool enabled = UserControl::Enabled();

  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  m_lineVisible = false;
  m_arrowRect = platform::RECT{w - 18, 2, w - 2, h - 2};
  if (m_runMode) {
    Step([&] { platform::SetWindowRgn(hwnd, platform::CreateRectRgn(0, 0, w, h), platform::TRUE); });
  }
  if (m_txtCombo) Step([&] { m_txtCombo->Control::Visible(m_style == Dropdown_Combo); });

  const platform::HDC dc = UserControl::hDC();
  const OLE_COLOR back = SurfaceColor();
  Step([&] {
    const bool gradient = enabled && !IsCalendarOpen() && m_style == Dropdown_List &&
                          m_gradientColor1 != m_gradientColor2;
    if (gradient) {
      frame::PaintGradientRect(dc, 0, 0, w, h, m_gradientColor1, m_gradientColor2,
                               m_gradientMode == Horizontal ? frame::GradientLeftToRight : frame::GradientTopToBottom);
    } else {
      frame::FillRectColor(dc, rc, back);
    }
  });

  if (m_style == Dropdown_Combo && m_txtCombo) {
    Step([&] {
      const host::Screen& screen = host::GetScreen();
      const float tx = screen.TwipsPerPixelX();
      const float ty = screen.TwipsPerPixelY();
      platform::SIZE q{};
      platform::GetTextExtentPoint32W(dc, u"Q", &q);
      const int32_t width = std::max(1, w - 18);
      m_txtCombo->Move(tx, static_cast<float>(std::max(0, (h - q.cy) / 2)) * ty, static_cast<float>(width) * tx,
                       static_cast<float>(q.cy) * ty);
      // The field keeps a height of its own at least; it is centred at the height it took.
      const int32_t actual = static_cast<int32_t>(m_txtCombo->ScaleHeight());
      if (actual != q.cy) {
        m_txtCombo->Move(tx, static_cast<float>(std::max(0, (h - actual) / 2)) * ty, static_cast<float>(width) * tx,
                         static_cast<float>(actual) * ty);
      }
    });
    Step([&] { DressTextField(back); });
  }

  if (m_style == Dropdown_List) {
    Step([&] {
      if (m_hasFocus && !IsCalendarOpen()) {
        const platform::RECT focus{2, 2, w - 18, h - 2};
        if (m_theme == frame::Office_Theme_Blue || m_theme == frame::Office_Theme_Silver) {
          platform::DrawFocusRect(dc, &focus);
        } else {
          DottedRect(dc, focus, m_borderColorOver);
        }
      }
    });
    Step([&] {
      platform::RECT r{4, m_arrowRect.top, m_arrowRect.right - 10, m_arrowRect.bottom};
      uint32_t flags = platform::DT_SINGLELINE | platform::DT_VCENTER | platform::DT_NOPREFIX | platform::DT_END_ELLIPSIS;
      if (m_alignment == 1) flags |= platform::DT_RIGHT;
      else if (m_alignment == 2) flags |= platform::DT_CENTER;
      platform::SetBkMode(dc, platform::TRANSPARENT);
      frame::DrawTextColor(dc, Text(), r, flags, enabled ? m_foreColor : m_foreColorDisabled);
    });
  }

  Step([&] {
    const int32_t y = m_arrowRect.top + (m_arrowRect.bottom - m_arrowRect.top - kArrowHeight) / 2;
    DrawArrow(dc, m_arrowRect.right - 10, y, enabled ? kArrowEnabled : kArrowDisabled);
  });

  Step([&] {
    const OLE_COLOR border = !enabled ? m_borderColorDisabled : m_hasFocus ? m_borderColorOver : m_borderColor;
    frame::FrameRectColor(dc, rc, border);
  });
  Step([&] { AutoRedraw(false); });
  Step([&] { UserControl::Refresh(); });
}

}  // namespace mx::dates
