// USRibbon: composing the band. The visible members of the element arrays are painted in array
// order onto the persistent image: the ground, then the band, tabs, plates, captions, pictures
// and the focus mark. Hit areas paint nothing.
#include <algorithm>

#include "chrome/RibbonArt.h"
#include "chrome/USRibbon.h"
#include "controls/ControlSupport.h"
#include "frame/Drawing.h"
#include "image/API32bppDIB.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::chrome {

using controls::detail::Step;
using A = RibbonArray;

namespace {

// The left and right slice arrays of the plate a slice array belongs to.
bool PlateFamily(A a, A& left, A& right) {
  static constexpr A kFamilies[][3] = {
      {A::BarraLeft, A::BarraCenter, A::BarraRight},
      {A::Tab_left_over, A::Tab_center_over, A::Tab_right_over},
      {A::Tab_left, A::Tab_center, A::Tab_right},
      {A::Cat_Left_off, A::Cat_Center_off, A::Cat_Right_off},
      {A::Cat_Left_on, A::Cat_Center_on, A::Cat_Right_on},
      {A::Button_left_over, A::Button_center_over, A::Button_right_over},
      {A::Button_left, A::Button_center, A::Button_right},
  };
  for (const auto& family : kFamilies)
    if (a == family[0] || a == family[1] || a == family[2]) {
      left = family[0];
      right = family[2];
      return true;
    }
  return false;
}

bool IsHitArea(A a) { return a == A::TabMouse || a == A::CatMouse || a == A::ButMouse || a == A::ButTabMouse; }

}  // namespace

void USRibbon::SetVisible(A array, int32_t row, bool on) {
  RibbonElement& e = Member(array, row);
  if (e.Visible == on) return;
  e.Visible = on;
  MarkDirty(e.Rect());
}

void USRibbon::MarkDirty(const platform::RECT& r) {
  if (r.right <= r.left || r.bottom <= r.top) return;
  if (m_dirty.right <= m_dirty.left || m_dirty.bottom <= m_dirty.top) m_dirty = r;
  else platform::UnionRect(&m_dirty, &m_dirty, &r);
}

void USRibbon::ComposeDirty() {
  const platform::RECT area = m_dirty;
  m_dirty = {};
  if (area.right <= area.left || area.bottom <= area.top) return;
  Compose(&area);
}

void USRibbon::Compose(const platform::RECT* area) {
  // Whatever was marked is covered by this composition.
  if (!area) m_dirty = {};
  if (!m_built) return;
  const platform::HWND wnd = UserControl::hWnd();
  if (!wnd) return;
  platform::RECT rc{};
  platform::GetClientRect(wnd, &rc);
  if (rc.right <= 0 || rc.bottom <= 0) return;
  platform::RECT paint = rc;
  if (area && !platform::IntersectRect(&paint, &rc, area)) return;
  ++m_composeCount;
  Step([&] { UserControl::AutoRedraw(true); });
  const platform::HDC dc = UserControl::hDC();
  // A partial composition paints every member that reaches into the area, clipped to it: the
  // result is the same as a whole one there.
  const bool clipped = area != nullptr;
  if (clipped) {
    Step([&] {
      const platform::HRGN rgn = platform::CreateRectRgnIndirect(&paint);
      platform::SelectClipRgn(dc, rgn);
      platform::DeleteObject(rgn);
    });
  }
  const RibbonColours colours = RibbonThemeColours(m_theme);
  const int32_t bandTop = LayoutValue(m_theme, m_showTabs) / 15 - 3;
  Step([&] {
    frame::FillRectColor(dc, paint, colours.strip2);
    FillVerticalRamp(dc, paint, 0, std::max(1, bandTop), colours.strip1, colours.strip2);
  });
  Step([&] { platform::SetBkMode(dc, platform::TRANSPARENT); });

  for (int32_t ai = 0; ai < static_cast<int32_t>(A::Count); ++ai) {
    const auto array = static_cast<A>(ai);
    if (IsHitArea(array)) continue;
    const auto& members = Elements(array);
    for (size_t i = 1; i < members.size(); ++i) {
      const RibbonElement& e = members[i];
      if (!e.Visible || e.Width <= 0 || e.Height <= 0) continue;
      if (clipped && (e.Left >= paint.right || e.Left + e.Width <= paint.left || e.Top >= paint.bottom ||
                      e.Top + e.Height <= paint.top))
        continue;
      Step([&] {
        platform::RECT r = e.Rect();
        switch (array) {
          case A::Tab_caption:
            frame::DrawTextColor(dc, e.Caption, r,
                                 platform::DT_CENTER | platform::DT_VCENTER | platform::DT_SINGLELINE |
                                     platform::DT_NOPREFIX | platform::DT_NOCLIP,
                                 e.ForeColor);
            break;
          case A::Cat_Caption:
            frame::DrawTextColor(dc, e.Caption, r,
                                 platform::DT_VCENTER | platform::DT_SINGLELINE | platform::DT_NOPREFIX |
                                     platform::DT_NOCLIP,
                                 e.ForeColor);
            break;
          case A::Button_Caption: {
            const bool enabled = ButtonRowEnabled(e.Row);
            frame::DrawTextColor(dc, e.Caption, r, platform::DT_SINGLELINE | platform::DT_NOCLIP,
                                 enabled ? e.ForeColor : colours.disabledText);
            break;
          }
          case A::Button_Icon: {
            const auto& surface = m_buttons.at(static_cast<size_t>(e.Row)).surface;
            // A disabled button's picture is grey and faint.
            const bool enabled = ButtonRowEnabled(e.Row);
            if (surface)
              surface->Render(dc, e.Left, e.Top, e.Width, e.Height, 0, 0, 0, 0, enabled ? 100 : 45, true, true,
                              nullptr, enabled ? -1 : 0);
            break;
          }
          case A::TabButon_Icon: {
            const auto& surface = m_tabButtons.at(static_cast<size_t>(e.Row)).surface;
            if (surface) surface->Render(dc, e.Left, e.Top, e.Width, e.Height);
            break;
          }
          default: {
            A left{}, right{};
            platform::RECT plate = r;
            if (PlateFamily(array, left, right)) {
              const RibbonElement& l = Element(left, e.Row);
              const RibbonElement& rr = Element(right, e.Row);
              plate = {l.Left, l.Top, rr.Left + rr.Width, l.Top + l.Height};
            }
            DrawRibbonPiece(dc, array, r, plate, colours, 17);
            break;
          }
        }
      });
    }
  }

  if (m_showButtonFocus && m_hasFocus && m_focusButton >= 0 && m_focusButton < ButtonCount()) {
    const RibbonElement& area = Element(A::ButMouse, m_focusButton);
    if (area.Visible) {
      platform::RECT r = area.Rect();
      platform::InflateRect(&r, -2, -2);
      Step([&] { platform::DrawFocusRect(dc, &r); });
    }
  }
  if (clipped) Step([&] { platform::SelectClipRgn(dc, 0); });
  Step([&] { UserControl::AutoRedraw(false); });
  Step([&] { UserControl::Refresh(); });
}

}  // namespace mx::chrome
