// USProgressBar: properties, theme, persistence and painting.
#include "controls/USProgressBar.h"

#include <algorithm>

#include "controls/ControlSupport.h"
#include "controls/MemberTable.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::String;
using host::StringView;
using host::Variant;

USProgressBar::USProgressBar() = default;

USProgressBar::~USProgressBar() = default;

int32_t USProgressBar::Percent() const {
  if (m_max <= m_min) return 0;
  return static_cast<int32_t>((static_cast<int64_t>(m_value) - m_min) * 100 / (static_cast<int64_t>(m_max) - m_min));
}

void USProgressBar::Min(int32_t value) {
  m_min = value;
  m_value = std::max(m_value, m_min);
  PropertyChanged(u"Min");
  Paint();
}

void USProgressBar::Max(int32_t value) {
  m_max = value;
  m_value = std::min(m_value, std::max(m_max, m_min));
  PropertyChanged(u"Max");
  Paint();
}

void USProgressBar::Value(int32_t value) {
  value = std::max(m_min, std::min(value, m_max));
  const bool changed = value != m_value;
  m_value = value;
  PropertyChanged(u"Value");
  Paint();
  if (changed) Step([&] { Change(); });
}

void USProgressBar::ShowText(bool value) {
  m_showText = value;
  PropertyChanged(u"ShowText");
  Paint();
}

void USProgressBar::Orientation(int32_t value) {
  m_orientation = std::clamp(value, 0, 1);
  PropertyChanged(u"Orientation");
  Paint();
}

void USProgressBar::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  Paint();
}

void USProgressBar::ApplyTheme() {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  // The Office looks take their light gradient as it is; the Windows looks run from their colour
  // lightened down to the colour itself.
  const bool office = m_theme == frame::Office_Theme_Blue || m_theme == frame::Office_Theme_Silver;
  m_borderColor = c(frame::ThemeBorderColor);
  m_gradient1 = office ? c(frame::ThemeGradientColor1) : host::ShiftRGBColor(c(frame::ThemeGradientColor1), 120);
  m_gradient2 = office ? c(frame::ThemeGradientColor1 + 2) : c(frame::ThemeGradientColor1);
  Step([&] { UserControl::BackColor(0xFFFFFF); });
  Step([&] { UserControl::ForeColor(0x000000); });
}

void USProgressBar::BackColor(OLE_COLOR value) {
  UserControl::BackColor(value);
  PropertyChanged(u"BackColor");
  Paint();
}
void USProgressBar::ForeColor(OLE_COLOR value) {
  UserControl::ForeColor(value);
  PropertyChanged(u"ForeColor");
  Paint();
}
void USProgressBar::BorderColor(OLE_COLOR value) {
  m_borderColor = value;
  PropertyChanged(u"BorderColor");
  Paint();
}
void USProgressBar::GradientColor1(OLE_COLOR value) {
  m_gradient1 = value;
  PropertyChanged(u"GradientColor1");
  Paint();
}
void USProgressBar::GradientColor2(OLE_COLOR value) {
  m_gradient2 = value;
  PropertyChanged(u"GradientColor2");
  Paint();
}

void USProgressBar::About() {}

void USProgressBar::Paint() {
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  ++m_paintCount;
  Step([&] {
    const platform::HDC dc = UserControl::hDC();
    const int32_t innerWidth = std::max(0, m_clientWidth - 2);
    const int32_t innerHeight = std::max(0, m_clientHeight - 2);
    const bool vertical = m_orientation == 1;
    const int64_t length = vertical ? innerHeight : innerWidth;
    m_filledWidth = m_max <= m_min ? 0
                                   : static_cast<int32_t>(length * (static_cast<int64_t>(m_value) - m_min) /
                                                          (static_cast<int64_t>(m_max) - m_min));
    // Standing, the bar fills upwards from its bottom edge and its gradient runs across it, so
    // that the sheen lies along the fill as it does when the bar lies flat.
    const platform::RECT fill = vertical
                                    ? platform::RECT{1, 1 + innerHeight - m_filledWidth, 1 + innerWidth, 1 + innerHeight}
                                    : platform::RECT{1, 1, 1 + m_filledWidth, 1 + innerHeight};
    const int32_t fillWidth = fill.right - fill.left;
    const int32_t fillHeight = fill.bottom - fill.top;
    if (fillWidth > 0 && fillHeight > 0) {
      // Equal colours would fill (x, y)-(width, height) in the gradient painter: filled here.
      if (m_gradient1 == m_gradient2) {
        frame::FillRectColor(dc, fill, m_gradient1);
      } else {
        frame::PaintGradientRect(dc, fill.left, fill.top, fillWidth, fillHeight, m_gradient1, m_gradient2,
                                 vertical ? frame::GradientLeftToRight : frame::GradientTopToBottom);
      }
    }
    frame::FrameRectColor(dc, platform::RECT{0, 0, m_clientWidth, m_clientHeight}, m_borderColor);
    if (m_showText) {
      const String text = host::FromUtf8(std::to_string(Percent()) + "%");
      platform::RECT r{0, 0, m_clientWidth, m_clientHeight};
      frame::DrawTextColor(dc, text, r,
                           platform::DT_SINGLELINE | platform::DT_CENTER | platform::DT_VCENTER | platform::DT_NOPREFIX,
                           UserControl::ForeColor());
    }
  });
  Step([&] { AutoRedraw(false); });
}

void USProgressBar::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Change", Change, u"Click", Click, u"MouseDown", MouseDown, u"MouseMove", MouseMove,
                       u"MouseUp", MouseUp);
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USProgressBar::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_min = 0;
  m_max = 100;
  m_value = 0;
  m_showText = false;
  m_orientation = 0;
  m_theme = frame::Windows_Theme;
  ApplyTheme();
}

void USProgressBar::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  const BagReader saved(PropBag);
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { UserControl::BackColor(saved.Read(u"BackColor", Variant(OLE_COLOR{0xFFFFFF})).ToLong()); });
  Step([&] { UserControl::ForeColor(saved.Read(u"ForeColor", Variant(OLE_COLOR{0x000000})).ToLong()); });
  Step([&] { m_borderColor = saved.Read(u"BorderColor", Variant(OLE_COLOR{0x9A572B})).ToLong(); });
  Step([&] { m_gradient1 = saved.Read(u"GradientColor1", Variant(OLE_COLOR{0xFFCFA3})).ToLong(); });
  Step([&] { m_gradient2 = saved.Read(u"GradientColor2", Variant(OLE_COLOR{0x9A572B})).ToLong(); });
  Step([&] { m_min = saved.Read(u"Min", Variant(int32_t{0})).ToLong(); });
  Step([&] { m_max = saved.Read(u"Max", Variant(int32_t{100})).ToLong(); });
  Step([&] { m_value = std::max(m_min, std::min(saved.Read(u"Value", Variant(int32_t{0})).ToLong(), m_max)); });
  Step([&] { m_showText = saved.Read(u"ShowText", Variant(false)).ToBoolean(); });
  Step([&] { m_orientation = std::clamp(saved.Read(u"Orientation", Variant(int32_t{0})).ToLong(), 0, 1); });
  // Only stored: the saved colours apply.
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{frame::Windows_Theme})).ToLong(); });
}

void USProgressBar::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"BackColor", Variant(UserControl::BackColor()), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ForeColor", Variant(UserControl::ForeColor()), Variant(OLE_COLOR{0x000000}));
  write(u"BorderColor", Variant(m_borderColor), Variant(OLE_COLOR{0x9A572B}));
  write(u"GradientColor1", Variant(m_gradient1), Variant(OLE_COLOR{0xFFCFA3}));
  write(u"GradientColor2", Variant(m_gradient2), Variant(OLE_COLOR{0x9A572B}));
  write(u"Min", Variant(m_min), Variant(int32_t{0}));
  write(u"Max", Variant(m_max), Variant(int32_t{100}));
  write(u"Value", Variant(m_value), Variant(int32_t{0}));
  write(u"ShowText", Variant(m_showText), Variant(false));
  write(u"Orientation", Variant(m_orientation), Variant(int32_t{0}));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
}

void USProgressBar::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Paint();
}

void USProgressBar::UserControl_Click() { Step([&] { Click(); }); }
void USProgressBar::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USProgressBar::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USProgressBar::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

Variant USProgressBar::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USProgressBar;
  static const detail::MemberTable<P> table = [] {
    detail::MemberTable<P> t;
    t.Property(u"Min", [](P& c) { return Variant(c.Min()); }, [](P& c, const Variant& v) { c.Min(v.ToLong()); });
    t.Property(u"Max", [](P& c) { return Variant(c.Max()); }, [](P& c, const Variant& v) { c.Max(v.ToLong()); });
    t.Property(u"Value", [](P& c) { return Variant(c.Value()); },
               [](P& c, const Variant& v) { c.Value(v.ToLong()); });
    t.Property(u"ShowText", [](P& c) { return Variant(c.ShowText()); },
               [](P& c, const Variant& v) { c.ShowText(v.ToBoolean()); });
    t.Property(u"Orientation", [](P& c) { return Variant(c.Orientation()); },
               [](P& c, const Variant& v) { c.Orientation(v.ToLong()); });
    t.Property(u"Theme", [](P& c) { return Variant(c.Theme()); },
               [](P& c, const Variant& v) { c.Theme(v.ToLong()); });
    t.Property(u"BorderColor", [](P& c) { return Variant(c.BorderColor()); },
               [](P& c, const Variant& v) { c.BorderColor(v.ToLong()); });
    t.Property(u"hDC", [](P& c) { return Variant(static_cast<int32_t>(c.hDC())); });
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"About", [](P& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? StringView(u"Value") : name, kind, args, result, u"USProgressBar"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
