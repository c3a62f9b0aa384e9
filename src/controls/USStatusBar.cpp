// USStatusBar: panels, docking, theme, persistence and painting.
#include "controls/USStatusBar.h"

#include <algorithm>
#include <string>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/GradientFill.h"
#include "controls/MemberTable.h"
#include "frame/Drawing.h"
#include "frame/Themes.h"
#include "host/Err.h"
#include "host/Form.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::String;
using host::Variant;

namespace {

struct StatusColors {
  OLE_COLOR fore, border, gradient1, gradient2;
};

// The Office looks run their light face colours down the bar in black text; the Windows looks
// run from a lighter tone of their colour down to the colour itself, in their own text colour.
StatusColors ThemeColors(int32_t theme) {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(theme, index); };
  if (theme == frame::Office_Theme_Blue || theme == frame::Office_Theme_Silver)
    return {c(frame::ThemeForeColor), c(frame::ThemeBorderColor), c(frame::ThemeGradientColor1),
            c(frame::ThemeGradientColor1 + 2)};
  return {c(frame::ThemeForeColor), c(frame::ThemeBorderColorDown),
          host::ShiftRGBColor(c(frame::ThemeGradientColor1), 40), c(frame::ThemeGradientColor1)};
}

const StatusColors& Defaults() {
  static const StatusColors d = ThemeColors(frame::Windows_Theme);
  return d;
}

String PanelKey(int32_t index, const char* field) {
  return host::FromUtf8("Panel" + std::to_string(index) + field);
}

}  // namespace

USStatusBar::USStatusBar() {
  m_borderColor = Defaults().border;
  m_gradient1 = Defaults().gradient1;
  m_gradient2 = Defaults().gradient2;
}

USStatusBar::~USStatusBar() = default;

// ---- Panels -------------------------------------------------------------------------------------

const USStatusBar::Panel& USStatusBar::At(int32_t index) const {
  if (index < 1 || index > PanelCount()) host::Raise(9, u"USStatusBar");
  return m_panels[static_cast<size_t>(index - 1)];
}
USStatusBar::Panel& USStatusBar::At(int32_t index) {
  return const_cast<Panel&>(static_cast<const USStatusBar&>(*this).At(index));
}

int32_t USStatusBar::AddPanel(host::StringView Text, int32_t Width, int32_t Alignment, bool AutoSize) {
  Panel p;
  p.text = String(Text);
  p.width = std::max(Width, 0);
  p.alignment = std::clamp(Alignment, 0, 2);
  p.autoSize = AutoSize;
  m_panels.push_back(std::move(p));
  PanelsChanged();
  return PanelCount();
}

void USStatusBar::RemovePanel(int32_t Index) {
  (void)At(Index);
  m_panels.erase(m_panels.begin() + (Index - 1));
  PanelsChanged();
}

void USStatusBar::ClearPanels() {
  m_panels.clear();
  PanelsChanged();
}

String USStatusBar::PanelText(int32_t Index) const { return At(Index).text; }
void USStatusBar::PanelText(int32_t Index, host::StringView value) {
  At(Index).text = String(value);
  PanelsChanged();
}
int32_t USStatusBar::PanelWidth(int32_t Index) const { return At(Index).width; }
void USStatusBar::PanelWidth(int32_t Index, int32_t value) {
  At(Index).width = std::max(value, 0);
  PanelsChanged();
}
int32_t USStatusBar::PanelAlignment(int32_t Index) const { return At(Index).alignment; }
void USStatusBar::PanelAlignment(int32_t Index, int32_t value) {
  At(Index).alignment = std::clamp(value, 0, 2);
  PanelsChanged();
}
bool USStatusBar::PanelAutoSize(int32_t Index) const { return At(Index).autoSize; }
void USStatusBar::PanelAutoSize(int32_t Index, bool value) {
  At(Index).autoSize = value;
  PanelsChanged();
}
std::shared_ptr<host::StdPicture> USStatusBar::PanelPicture(int32_t Index) const { return At(Index).picture; }
void USStatusBar::PanelPicture(int32_t Index, std::shared_ptr<host::StdPicture> value) {
  At(Index).picture = std::move(value);
  PanelsChanged();
}
int32_t USStatusBar::PanelLeft(int32_t Index) const { return At(Index).left; }
int32_t USStatusBar::PanelRight(int32_t Index) const { return At(Index).right; }

int32_t USStatusBar::PanelAt(int32_t x) const {
  for (size_t i = 0; i < m_panels.size(); ++i)
    if (x >= m_panels[i].left && x < m_panels[i].right) return static_cast<int32_t>(i + 1);
  return 0;
}

void USStatusBar::PanelsChanged() {
  PropertyChanged(u"Panels");
  Layout();
  Paint();
}

// ---- Properties ---------------------------------------------------------------------------------

void USStatusBar::ShowSizeGrip(bool value) {
  m_showSizeGrip = value;
  PropertyChanged(u"ShowSizeGrip");
  Refresh();
}
void USStatusBar::Font(std::shared_ptr<host::StdFont> value) {
  UserControl::Font(std::move(value));
  PropertyChanged(u"Font");
  Paint();
}
void USStatusBar::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  Paint();
}
void USStatusBar::ApplyTheme() {
  const StatusColors s = ThemeColors(m_theme);
  Step([&] { UserControl::ForeColor(s.fore); });
  m_borderColor = s.border;
  m_gradient1 = s.gradient1;
  m_gradient2 = s.gradient2;
}
void USStatusBar::ForeColor(OLE_COLOR value) {
  UserControl::ForeColor(value);
  PropertyChanged(u"ForeColor");
  Paint();
}
void USStatusBar::BorderColor(OLE_COLOR value) {
  m_borderColor = value;
  PropertyChanged(u"BorderColor");
  Paint();
}
void USStatusBar::GradientColor1(OLE_COLOR value) {
  m_gradient1 = value;
  PropertyChanged(u"GradientColor1");
  Paint();
}
void USStatusBar::GradientColor2(OLE_COLOR value) {
  m_gradient2 = value;
  PropertyChanged(u"GradientColor2");
  Paint();
}

void USStatusBar::About() { ShowAboutBox(); }

// ---- Docking and layout -------------------------------------------------------------------------

void USStatusBar::Dock() {
  // Only a bar placed on the form itself docks; one inside a container stays where it was put.
  host::Form* form = Parent();
  if (!form || Container() || m_docking || !Ambient().UserMode()) return;
  m_docking = true;
  Step([&] {
    const float height = Control::Height();
    Control::Move(0, std::max(0.0f, form->ScaleHeight() - height), form->ScaleWidth(), height);
  });
  m_docking = false;
}

bool USStatusBar::GripShown() const {
  if (!m_showSizeGrip) return false;
  // A grip on a form that cannot be resized would promise what it cannot do.
  const host::Form* form = Parent();
  return !form || form->BorderStyle() == 2 || form->BorderStyle() == 5;
}

void USStatusBar::Layout() {
  const int32_t avail = std::max(0, m_clientWidth - (GripShown() ? kGripWidth : 0));
  int32_t fixed = 0, autos = 0;
  for (const Panel& p : m_panels) {
    if (p.autoSize) ++autos;
    else fixed += p.width;
  }
  const int32_t spare = std::max(0, avail - fixed);
  int32_t x = 0, seen = 0;
  for (Panel& p : m_panels) {
    int32_t w = p.width;
    if (p.autoSize) {
      ++seen;
      // Equal shares; the last auto-size panel takes what the division leaves over.
      const int32_t share = spare / autos + (seen == autos ? spare % autos : 0);
      w = std::max(share, p.width);
    }
    p.left = x;
    p.right = x + w;
    x += w;
  }
}

void USStatusBar::Refresh() {
  Dock();
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Layout();
  Paint();
}

void USStatusBar::Paint() {
  using platform::RECT;
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  Step([&] {
    const platform::HDC dc = UserControl::hDC();
    detail::FillGradient(dc, RECT{0, 0, m_clientWidth, m_clientHeight}, m_gradient1, m_gradient2,
                         frame::GradientTopToBottom);
    frame::DrawLineColor(dc, 0, 0, m_clientWidth, 0, m_borderColor);
    const OLE_COLOR fore = UserControl::ForeColor();
    for (size_t i = 0; i < m_panels.size(); ++i) {
      const Panel& p = m_panels[i];
      RECT r{p.left + 4, 1, p.right - 4, m_clientHeight};
      if (p.picture && !p.picture->IsEmpty()) {
        // Centred in the rows below the top line, as the text is; the picture is scaled to an
        // icon's size whatever its own.
        const int32_t top = 1 + (m_clientHeight - 1 - kIconSize) / 2;
        PaintPicture(*p.picture, static_cast<float>(r.left), static_cast<float>(top), Variant(kIconSize),
                     Variant(kIconSize));
        r.left += kIconSize + 2;
      }
      const uint32_t align = p.alignment == 1 ? platform::DT_CENTER : p.alignment == 2 ? platform::DT_RIGHT : 0;
      if (!p.text.empty())
        frame::DrawTextColor(dc, p.text, r,
                             platform::DT_SINGLELINE | platform::DT_VCENTER | platform::DT_END_ELLIPSIS |
                                 platform::DT_NOPREFIX | align,
                             fore);
      // A separator after every panel but the last.
      if (i + 1 < m_panels.size())
        frame::DrawLineColor(dc, p.right - 1, 4, p.right - 1, m_clientHeight - 3, m_borderColor);
    }
    if (GripShown()) {
      // Three diagonal rows of dots in the bottom right corner.
      for (int32_t row = 0; row < 3; ++row)
        for (int32_t k = 0; k <= row; ++k) {
          const int32_t x = m_clientWidth - 4 - 4 * k, y = m_clientHeight - 4 - 4 * (row - k);
          frame::FillRectColor(dc, RECT{x - 2, y - 2, x, y}, fore);
        }
    }
  });
  Step([&] { AutoRedraw(false); });
}

// ---- Lifecycle ----------------------------------------------------------------------------------

void USStatusBar::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_panels.clear();
  m_showSizeGrip = true;
  m_theme = frame::Windows_Theme;
  ApplyTheme();
}

void USStatusBar::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  const StatusColors& d = Defaults();
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { UserControl::ForeColor(saved.Read(u"ForeColor", Variant(d.fore)).ToLong()); });
  Step([&] { m_borderColor = saved.Read(u"BorderColor", Variant(d.border)).ToLong(); });
  Step([&] { m_gradient1 = saved.Read(u"GradientColor1", Variant(d.gradient1)).ToLong(); });
  Step([&] { m_gradient2 = saved.Read(u"GradientColor2", Variant(d.gradient2)).ToLong(); });
  Step([&] { m_showSizeGrip = saved.Read(u"ShowSizeGrip", Variant(true)).ToBoolean(); });
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{frame::Windows_Theme})).ToLong(); });
  m_panels.clear();
  int32_t count = 0;
  Step([&] { count = std::clamp(saved.Read(u"PanelCount", Variant(int32_t{0})).ToLong(), 0, 255); });
  for (int32_t i = 1; i <= count; ++i) {
    Panel p;
    Step([&] { p.text = saved.Read(PanelKey(i, "Text"), Variant(String())).ToString(); });
    Step([&] { p.width = std::max(0, saved.Read(PanelKey(i, "Width"), Variant(int32_t{100})).ToLong()); });
    Step([&] { p.alignment = std::clamp(saved.Read(PanelKey(i, "Alignment"), Variant(int32_t{0})).ToLong(), 0, 2); });
    Step([&] { p.autoSize = saved.Read(PanelKey(i, "AutoSize"), Variant(false)).ToBoolean(); });
    Step([&] {
      p.picture = std::dynamic_pointer_cast<host::StdPicture>(saved.Read(PanelKey(i, "Picture"), Variant::Nothing()).Obj());
    });
    m_panels.push_back(std::move(p));
  }
}

void USStatusBar::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const String& key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  const StatusColors& d = Defaults();
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"ForeColor", Variant(UserControl::ForeColor()), Variant(d.fore));
  write(u"BorderColor", Variant(m_borderColor), Variant(d.border));
  write(u"GradientColor1", Variant(m_gradient1), Variant(d.gradient1));
  write(u"GradientColor2", Variant(m_gradient2), Variant(d.gradient2));
  write(u"ShowSizeGrip", Variant(m_showSizeGrip), Variant(true));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"PanelCount", Variant(PanelCount()), Variant(int32_t{0}));
  for (int32_t i = 1; i <= PanelCount(); ++i) {
    const Panel& p = m_panels[static_cast<size_t>(i - 1)];
    write(PanelKey(i, "Text"), Variant(p.text), Variant(String()));
    write(PanelKey(i, "Width"), Variant(p.width), Variant(int32_t{100}));
    write(PanelKey(i, "Alignment"), Variant(p.alignment), Variant(int32_t{0}));
    write(PanelKey(i, "AutoSize"), Variant(p.autoSize), Variant(false));
    write(PanelKey(i, "Picture"), p.picture ? Variant(p.picture) : Variant::Nothing(), Variant::Nothing());
  }
}

void USStatusBar::UserControl_Resize() {
  if (m_docking) return;  // the Move of Dock: Refresh lays out once it is done
  Refresh();
}

void USStatusBar::UserControl_Show() {
  host::Form* form = Parent();
  if (form && !m_formResize && Ambient().UserMode()) {
    std::weak_ptr<host::Object> self = weak_from_this();
    m_formResize = form->Resize.connect([this, self] {
      if (self.lock()) Refresh();
    });
  }
  Refresh();
}

void USStatusBar::UserControl_Terminate() {
  if (host::Form* form = Parent(); form && m_formResize) form->Resize.disconnect(m_formResize);
  m_formResize = 0;
}

void USStatusBar::UserControl_Click() {
  Step([&] {
    int32_t index = PanelAt(m_lastX);
    if (index > 0) PanelClick(index);
  });
}
void USStatusBar::UserControl_DblClick() {
  Step([&] {
    int32_t index = PanelAt(m_lastX);
    if (index > 0) PanelDblClick(index);
  });
}
void USStatusBar::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_lastX = static_cast<int32_t>(X);
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USStatusBar::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USStatusBar::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_lastX = static_cast<int32_t>(X);
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USStatusBar::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"PanelClick", PanelClick, u"PanelDblClick", PanelDblClick, u"MouseDown", MouseDown,
                       u"MouseMove", MouseMove, u"MouseUp", MouseUp);
}

Variant USStatusBar::Invoke(host::StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USStatusBar;
  static const detail::MemberTable<P> table = [] {
    detail::MemberTable<P> t;
    const auto arg = [](std::span<Variant> a, size_t i) { return i < a.size() ? a[i] : Variant::Missing(); };
    t.Method(u"AddPanel", [arg](P& c, std::span<Variant> a) {
      const Variant w = arg(a, 1), al = arg(a, 2), au = arg(a, 3);
      return Variant(c.AddPanel(a.empty() ? String() : a[0].ToString(), w.IsMissing() ? 100 : w.ToLong(),
                                al.IsMissing() ? 0 : al.ToLong(), au.IsMissing() ? false : au.ToBoolean()));
    });
    t.Method(u"RemovePanel", [](P& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USStatusBar");
      c.RemovePanel(a[0].ToLong());
      return Variant();
    });
    t.Method(u"ClearPanels", [](P& c, std::span<Variant>) { c.ClearPanels(); return Variant(); });
    t.Property(u"PanelCount", [](P& c) { return Variant(c.PanelCount()); });
    // The panel properties take the panel's index: Name(i) reads, Name(i) = v writes (the value
    // comes last).
    const auto indexed = [&t](host::StringView name, auto get, auto let) {
      t.Method(name, [get, let](P& c, std::span<Variant> a) {
        if (a.empty()) host::Raise(450, u"USStatusBar");
        if (a.size() >= 2) {
          let(c, a[0].ToLong(), a[1]);
          return Variant();
        }
        return get(c, a[0].ToLong());
      });
    };
    indexed(u"PanelText", [](P& c, int32_t i) { return Variant(c.PanelText(i)); },
            [](P& c, int32_t i, const Variant& v) { c.PanelText(i, v.ToString()); });
    indexed(u"PanelWidth", [](P& c, int32_t i) { return Variant(c.PanelWidth(i)); },
            [](P& c, int32_t i, const Variant& v) { c.PanelWidth(i, v.ToLong()); });
    indexed(u"PanelAlignment", [](P& c, int32_t i) { return Variant(c.PanelAlignment(i)); },
            [](P& c, int32_t i, const Variant& v) { c.PanelAlignment(i, v.ToLong()); });
    indexed(u"PanelAutoSize", [](P& c, int32_t i) { return Variant(c.PanelAutoSize(i)); },
            [](P& c, int32_t i, const Variant& v) { c.PanelAutoSize(i, v.ToBoolean()); });
    indexed(
        u"PanelPicture",
        [](P& c, int32_t i) {
          auto picture = c.PanelPicture(i);
          return picture ? Variant(picture) : Variant::Nothing();
        },
        [](P& c, int32_t i, const Variant& v) {
          auto picture = std::dynamic_pointer_cast<host::StdPicture>(v.ToObject());
          if (!picture && !v.IsNothing()) host::Raise(13, u"USStatusBar");
          c.PanelPicture(i, std::move(picture));
        });
    t.Property(u"Theme", [](P& c) { return Variant(c.Theme()); }, [](P& c, const Variant& v) { c.Theme(v.ToLong()); });
    t.Property(u"ShowSizeGrip", [](P& c) { return Variant(c.ShowSizeGrip()); },
               [](P& c, const Variant& v) { c.ShowSizeGrip(v.ToBoolean()); });
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"Refresh", [](P& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"About", [](P& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name, kind, args, result, u"USStatusBar")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
