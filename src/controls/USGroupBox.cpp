// USGroupBox: properties, theme, persistence and painting.
#include "controls/USGroupBox.h"

#include <algorithm>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/GradientFill.h"
#include "controls/MemberTable.h"
#include "frame/Drawing.h"
#include "frame/Themes.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::Variant;

USGroupBox::USGroupBox() = default;
USGroupBox::~USGroupBox() = default;

void USGroupBox::Caption(host::StringView value) {
  m_caption = host::String(value);
  PropertyChanged(u"Caption");
  Refresh();
}
void USGroupBox::Alignment(int32_t value) {
  m_alignment = std::clamp(value, 0, 2);
  PropertyChanged(u"Alignment");
  Refresh();
}
void USGroupBox::Font(std::shared_ptr<host::StdFont> value) {
  UserControl::Font(std::move(value));
  PropertyChanged(u"Font");
  Refresh();  // the band follows the font's height
}
void USGroupBox::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  Refresh();
}
void USGroupBox::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  Refresh();
}
void USGroupBox::ApplyTheme() {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  Step([&] { UserControl::ForeColor(c(frame::ThemeForeColor)); });
  m_borderColor = c(frame::ThemeBorderColor);
  m_header1 = c(frame::ThemeGradientColor1);
  m_header2 = c(frame::ThemeGradientColor1 + 1);
  m_body1 = 0xFFFFFF;
  m_body2 = 0xFFFFFF;
}
void USGroupBox::ForeColor(OLE_COLOR value) {
  UserControl::ForeColor(value);
  PropertyChanged(u"ForeColor");
  Paint();
}
void USGroupBox::BorderColor(OLE_COLOR value) {
  m_borderColor = value;
  PropertyChanged(u"BorderColor");
  Paint();
}
void USGroupBox::GradientHeader1(OLE_COLOR value) {
  m_header1 = value;
  PropertyChanged(u"GradientHeader1");
  Paint();
}
void USGroupBox::GradientHeader2(OLE_COLOR value) {
  m_header2 = value;
  PropertyChanged(u"GradientHeader2");
  Paint();
}
void USGroupBox::GradientColor1(OLE_COLOR value) {
  m_body1 = value;
  PropertyChanged(u"GradientColor1");
  Paint();
}
void USGroupBox::GradientColor2(OLE_COLOR value) {
  m_body2 = value;
  PropertyChanged(u"GradientColor2");
  Paint();
}

void USGroupBox::About() { ShowAboutBox(); }

int32_t USGroupBox::CornerRadius() const {
  return m_theme == frame::Office_Theme_Blue || m_theme == frame::Office_Theme_Silver ? 5 : 3;
}

void USGroupBox::Refresh() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  // The band holds one line of the caption's font with 4 pixels above and below.
  Step([&] {
    platform::RECT t{0, 0, 1000, 1000};
    frame::DrawTextAPI(UserControl::hDC(), u"Ag", t, platform::DT_CALCRECT | platform::DT_SINGLELINE);
    m_headerHeight = std::min(t.bottom + 8, m_clientHeight);
  });
  const int32_t radius = CornerRadius();
  if (m_clientWidth != m_regionWidth || m_clientHeight != m_regionHeight || radius != m_regionRadius) {
    // The region is the outline's own round rectangle, so the outline's corner pixels are the
    // last ones inside it and what lies beyond the curve is the container's.
    Step([&] { frame::SetRoundedCorners(UserControl::hWnd(), m_clientWidth, m_clientHeight, 2 * radius, 2 * radius); });
    m_regionWidth = m_clientWidth;
    m_regionHeight = m_clientHeight;
    m_regionRadius = radius;
  }
  Paint();
}

void USGroupBox::Paint() {
  using platform::RECT;
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  Step([&] {
    const platform::HDC dc = UserControl::hDC();
    const int32_t band = m_headerHeight;
    detail::FillGradient(dc, RECT{0, band, m_clientWidth, m_clientHeight}, m_body1, m_body2,
                         frame::GradientTopToBottom);
    detail::FillGradient(dc, RECT{0, 0, m_clientWidth, band}, m_header1, m_header2, frame::GradientTopToBottom);
    const bool enabled = UserControl::Enabled();
    const OLE_COLOR border = enabled ? m_borderColor : frame::GetThemeColor(m_theme, frame::ThemeBorderColorDisabled);
    const int32_t ellipse = 2 * CornerRadius();
    frame::RoundRectOutline(dc, RECT{0, 0, m_clientWidth, m_clientHeight}, ellipse, ellipse, border);
    if (band > 0 && band < m_clientHeight) frame::DrawLineColor(dc, 0, band - 1, m_clientWidth, band - 1, border);
    if (!m_caption.empty()) {
      RECT r{6, 0, m_clientWidth - 6, band};
      const uint32_t align = m_alignment == 1 ? platform::DT_CENTER : m_alignment == 2 ? platform::DT_RIGHT : 0;
      frame::DrawTextColor(dc, m_caption, r,
                           platform::DT_SINGLELINE | platform::DT_VCENTER | platform::DT_END_ELLIPSIS | align,
                           enabled ? UserControl::ForeColor() : frame::GetThemeColor(m_theme, frame::ThemeForeColorDisabled));
    }
  });
  Step([&] { AutoRedraw(false); });
  RepaintChildren();
}

void USGroupBox::RepaintChildren() {
  for (const auto& control : ParentControls()) {
    auto* child = dynamic_cast<host::UserControl*>(control.get());
    if (!child || control->Container() != this || child->BackStyle() != 0) continue;
    // A resize to the same size does nothing; the control's own Refresh member repaints it
    // with a fresh ground (Cls asks this face for it).
    Step([&] { child->Invoke(u"Refresh", host::CallKind::Method, {}); });
  }
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USGroupBox::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  Step([&] { m_caption = Ambient().DisplayName(); });
  m_alignment = 0;
  m_theme = frame::Windows_Theme;
  ApplyTheme();
}

void USGroupBox::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { m_caption = saved.Read(u"Caption", Variant(Ambient().DisplayName())).ToString(); });
  Step([&] { m_alignment = std::clamp(saved.Read(u"Alignment", Variant(int32_t{0})).ToLong(), 0, 2); });
  Step([&] { UserControl::ForeColor(saved.Read(u"ForeColor", Variant(OLE_COLOR{0xFFFFFF})).ToLong()); });
  Step([&] { m_borderColor = saved.Read(u"BorderColor", Variant(OLE_COLOR{0x9A572B})).ToLong(); });
  Step([&] { m_header1 = saved.Read(u"GradientHeader1", Variant(OLE_COLOR{0x9A572B})).ToLong(); });
  Step([&] { m_header2 = saved.Read(u"GradientHeader2", Variant(OLE_COLOR{0x9A572B})).ToLong(); });
  Step([&] { m_body1 = saved.Read(u"GradientColor1", Variant(OLE_COLOR{0xFFFFFF})).ToLong(); });
  Step([&] { m_body2 = saved.Read(u"GradientColor2", Variant(OLE_COLOR{0xFFFFFF})).ToLong(); });
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{frame::Windows_Theme})).ToLong(); });
  Step([&] { UserControl::Enabled(saved.Read(u"Enabled", Variant(true)).ToBoolean()); });
}

void USGroupBox::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  Step([&] { write(u"Caption", Variant(m_caption), Variant(Ambient().DisplayName())); });
  write(u"Alignment", Variant(m_alignment), Variant(int32_t{0}));
  write(u"ForeColor", Variant(UserControl::ForeColor()), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"BorderColor", Variant(m_borderColor), Variant(OLE_COLOR{0x9A572B}));
  write(u"GradientHeader1", Variant(m_header1), Variant(OLE_COLOR{0x9A572B}));
  write(u"GradientHeader2", Variant(m_header2), Variant(OLE_COLOR{0x9A572B}));
  write(u"GradientColor1", Variant(m_body1), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"GradientColor2", Variant(m_body2), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
}

void USGroupBox::UserControl_Resize() { Refresh(); }

void USGroupBox::UserControl_Click() { Step([&] { Click(); }); }
void USGroupBox::UserControl_DblClick() { Step([&] { DblClick(); }); }
void USGroupBox::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USGroupBox::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USGroupBox::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USGroupBox::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick, u"MouseDown", MouseDown, u"MouseMove",
                       MouseMove, u"MouseUp", MouseUp);
}

Variant USGroupBox::Invoke(host::StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USGroupBox;
  static const detail::MemberTable<P> table = [] {
    detail::MemberTable<P> t;
    t.Property(u"Caption", [](P& c) { return Variant(c.Caption()); },
               [](P& c, const Variant& v) { c.Caption(v.ToString()); });
    t.Property(u"Alignment", [](P& c) { return Variant(c.Alignment()); },
               [](P& c, const Variant& v) { c.Alignment(v.ToLong()); });
    t.Property(u"Theme", [](P& c) { return Variant(c.Theme()); }, [](P& c, const Variant& v) { c.Theme(v.ToLong()); });
    t.Property(u"Enabled", [](P& c) { return Variant(c.Enabled()); },
               [](P& c, const Variant& v) { c.Enabled(v.ToBoolean()); });
    const auto colorProp = [&t](const char16_t* n, OLE_COLOR (P::*get)() const, void (P::*let)(OLE_COLOR)) {
      t.Property(n, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToLong()); });
    };
    colorProp(u"ForeColor", &P::ForeColor, &P::ForeColor);
    colorProp(u"BorderColor", &P::BorderColor, &P::BorderColor);
    colorProp(u"GradientHeader1", &P::GradientHeader1, &P::GradientHeader1);
    colorProp(u"GradientHeader2", &P::GradientHeader2, &P::GradientHeader2);
    colorProp(u"GradientColor1", &P::GradientColor1, &P::GradientColor1);
    colorProp(u"GradientColor2", &P::GradientColor2, &P::GradientColor2);
    t.Property(u"hDC", [](P& c) { return Variant(static_cast<int32_t>(c.hDC())); });
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"Refresh", [](P& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"About", [](P& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? host::StringView(u"Caption") : name, kind, args, result, u"USGroupBox"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
