// USLabel: properties, lifecycle, persistence, layout with AutoSize, and painting.
#include "controls/USLabel.h"

#include <algorithm>

#include "controls/ControlSupport.h"
#include "controls/MemberTable.h"
#include "frame/APIMouseEvents.h"
#include "host/Screen.h"
#include "platform/Desktop.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::String;
using host::StringView;
using host::Variant;

USLabel::USLabel() = default;

USLabel::~USLabel() = default;

// ---- Setters: store, PropertyChanged, Refresh -------------------------------------------------

void USLabel::SetCaptionText(StringView value, bool literal) {
  m_caption.Clear();
  m_caption.Append(value);
  m_literal = literal;
  m_noHtmlCaption = literal ? String(value) : MarkupPlainText(value, false);
}

void USLabel::Caption(StringView value) {
  SetCaptionText(value, false);
  PropertyChanged(u"Caption");
  Refresh();
  Step([&] { Change(); });
}

void USLabel::NoHTMLCaption(StringView value) {
  SetCaptionText(value, true);
  PropertyChanged(u"NoHTMLCaption");
  PropertyChanged(u"Caption");
  Refresh();
  Step([&] { Change(); });
}

void USLabel::Alignment(int32_t value) {
  m_alignment = value;
  PropertyChanged(u"Alignment");
  Refresh();
}

void USLabel::AutoSize(bool value) {
  m_autoSize = value;
  PropertyChanged(u"Autosize");
  if (value) Refresh();
}

void USLabel::WordWrap(bool value) {
  m_wordWrap = value;
  PropertyChanged(u"WordWrap");
  Refresh();
}

void USLabel::BackStyle(int16_t value) {
  UserControl::BackStyle(value);
  PropertyChanged(u"BackStyle");
  Refresh();
}

void USLabel::BackColor(OLE_COLOR value) {
  UserControl::BackColor(value);
  PropertyChanged(u"BackColor");
  Refresh();
}

void USLabel::ForeColor(OLE_COLOR value) {
  UserControl::ForeColor(value);
  PropertyChanged(u"ForeColor");
  Refresh();
}

void USLabel::DisableMouseEvents(bool value) {
  m_disableMouseEvents = value;
  PropertyChanged(u"DisableMouseEvents");
}


void USLabel::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
}

void USLabel::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  const bool hasPicture = value && !value->IsEmpty();
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
  MousePointer(hasPicture ? host::vbCustom : host::vbDefault);
}

void USLabel::About() {}

void USLabel::Dispose() { m_mouseEx.reset(); }

void USLabel::StartMouseEvents() {
  if (m_mouseEx) return;
  auto tracker = std::make_unique<frame::APIMouseEvents>();
  tracker->MouseIn.connect([this] { Step([&] { MouseEnter(); }); });
  tracker->MouseOut.connect([this] { Step([&] { MouseExit(); }); });
  tracker->Attach(UserControl::hWnd());
  m_mouseEx = std::move(tracker);
}

void USLabel::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick, u"Change", Change, u"KeyDown", KeyDown,
                       u"KeyPress", KeyPress, u"KeyUp", KeyUp, u"MouseDown", MouseDown, u"MouseMove", MouseMove,
                       u"MouseUp", MouseUp, u"MouseEnter", MouseEnter, u"MouseExit", MouseExit);
}

// ---- Layout and painting ----------------------------------------------------------------------

void USLabel::Refresh() {
  if (m_inRefresh) return;
  m_inRefresh = true;
  Step([&] { Layout(); });
  Step([&] { ApplyAutoSize(); });
  Step([&] { Paint(); });
  m_inRefresh = false;
}

void USLabel::Layout() {
  const String text = m_caption.ToString();
  const std::vector<MarkupRun> runs = ParseMarkup(text, true, !m_literal);
  MarkupFonts fonts(UserControl::Font()->ToLogFont(platform::GetScreenDpi()));
  m_layout = LayoutMarkup(UserControl::hDC(), fonts, runs, m_wordWrap ? m_clientWidth : 0);
}

void USLabel::ApplyAutoSize() {
  if (!m_autoSize) return;
  // With word wrap the width stays and the height follows the lines; without, both follow.
  const int32_t w = std::max(1, m_wordWrap ? m_clientWidth : m_layout.width);
  const int32_t h = std::max(1, m_layout.height);
  const host::Screen& screen = host::GetScreen();
  if (w != m_clientWidth) Step([&] { Control::Width(static_cast<float>(w) * screen.TwipsPerPixelX()); });
  if (h != m_clientHeight) Step([&] { Control::Height(static_cast<float>(h) * screen.TwipsPerPixelY()); });
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
}

void USLabel::Paint() {
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  ++m_paintCount;
  Step([&] {
    MarkupFonts fonts(UserControl::Font()->ToLogFont(platform::GetScreenDpi()));
    DrawMarkup(UserControl::hDC(), fonts, m_layout, platform::RECT{0, 0, m_clientWidth, m_clientHeight},
               m_alignment, UserControl::ForeColor());
  });
  Step([&] { AutoRedraw(false); });
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USLabel::UserControl_Initialize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
}

void USLabel::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  Step([&] { SetCaptionText(Ambient().DisplayName(), false); });
  Step([&] { UserControl::BackColor(host::vbButtonFace); });
  Step([&] { UserControl::ForeColor(host::vbWindowText); });
  m_alignment = 0;
  m_autoSize = true;
  m_wordWrap = true;
  m_disableMouseEvents = false;
  Step([&] { UserControl::BackStyle(0); });
  Refresh();
}

void USLabel::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] {
    UserControl::MouseIcon(
        std::dynamic_pointer_cast<host::StdPicture>(saved.Read(u"MouseIcon", Variant::Nothing()).Obj()));
  });
  Step([&] { UserControl::MousePointer(saved.Read(u"MousePointer", Variant(int16_t{0})).ToInteger()); });
  Step([&] { UserControl::BackColor(saved.Read(u"BackColor", Variant(host::vbButtonFace)).ToLong()); });
  Step([&] { UserControl::ForeColor(saved.Read(u"ForeColor", Variant(host::vbWindowText)).ToLong()); });
  Step([&] { UserControl::BackStyle(saved.Read(u"BackStyle", Variant(int16_t{0})).ToInteger()); });
  String displayName;
  Step([&] { displayName = Ambient().DisplayName(); });
  String caption;
  Step([&] { caption = saved.Read(u"Caption", Variant(displayName)).ToString(); });
  Step([&] { m_alignment = saved.Read(u"Alignment", Variant(int32_t{0})).ToLong(); });
  Step([&] { m_autoSize = saved.Read(u"Autosize", Variant(true)).ToBoolean(); });
  Step([&] { m_wordWrap = saved.Read(u"WordWrap", Variant(true)).ToBoolean(); });
  String plain = displayName;
  Step([&] { plain = saved.Read(u"NoHTMLCaption", Variant(displayName)).ToString(); });
  Step([&] { m_disableMouseEvents = saved.Read(u"DisableMouseEvents", Variant(false)).ToBoolean(); });
  // A caption given as plain text was saved the same under both keys, although reading its tags
  // would give another text.
  SetCaptionText(caption, plain == caption && MarkupPlainText(caption, false) != caption);

  if (!caption.empty()) Refresh();
  if (m_userMode && !m_disableMouseEvents) Step([&] { StartMouseEvents(); });
}

void USLabel::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  String displayName;
  Step([&] { displayName = Ambient().DisplayName(); });
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"Caption", Variant(m_caption.ToString()), Variant(displayName));
  const auto icon = UserControl::MouseIcon();
  write(u"MouseIcon", icon ? Variant(icon) : Variant::Nothing(), Variant::Nothing());
  write(u"MousePointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  write(u"BackColor", Variant(UserControl::BackColor()), Variant(host::vbButtonFace));
  write(u"ForeColor", Variant(UserControl::ForeColor()), Variant(host::vbWindowText));
  write(u"BackStyle", Variant(UserControl::BackStyle()), Variant(int16_t{0}));
  write(u"Alignment", Variant(m_alignment), Variant(int32_t{0}));
  write(u"Autosize", Variant(m_autoSize), Variant(true));
  write(u"WordWrap", Variant(m_wordWrap), Variant(true));
  write(u"NoHTMLCaption", Variant(m_noHtmlCaption), Variant(displayName));
  write(u"DisableMouseEvents", Variant(m_disableMouseEvents), Variant(false));
}

void USLabel::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  // Only wrapped text depends on the width; before Show nothing is painted from here.
  if (m_wordWrap && m_shown) Refresh();
}

void USLabel::UserControl_Show() { m_shown = true; }

void USLabel::UserControl_Terminate() {
  m_userMode = false;
  Step([&] { m_mouseEx.reset(); });
}

// ---- Relayed host events ----------------------------------------------------------------------

void USLabel::UserControl_Click() { Step([&] { Click(); }); }
void USLabel::UserControl_DblClick() { Step([&] { DblClick(); }); }
void USLabel::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyDown(KeyCode, Shift); }); }
void USLabel::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }
void USLabel::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyUp(KeyCode, Shift); }); }
void USLabel::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USLabel::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USLabel::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

// ---- Late binding -----------------------------------------------------------------------------

Variant USLabel::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  using L = USLabel;
  static const detail::MemberTable<L> table = [] {
    detail::MemberTable<L> t;
    t.Property(u"Caption", [](L& c) { return Variant(c.Caption()); },
               [](L& c, const Variant& v) { c.Caption(v.ToString()); });
    t.Property(u"NoHTMLCaption", [](L& c) { return Variant(c.NoHTMLCaption()); },
               [](L& c, const Variant& v) { c.NoHTMLCaption(v.ToString()); });
    t.Property(u"Alignment", [](L& c) { return Variant(c.Alignment()); },
               [](L& c, const Variant& v) { c.Alignment(v.ToLong()); });
    t.Property(u"AutoSize", [](L& c) { return Variant(c.AutoSize()); },
               [](L& c, const Variant& v) { c.AutoSize(v.ToBoolean()); });
    t.Property(u"WordWrap", [](L& c) { return Variant(c.WordWrap()); },
               [](L& c, const Variant& v) { c.WordWrap(v.ToBoolean()); });
    t.Property(u"BackStyle", [](L& c) { return Variant(c.BackStyle()); },
               [](L& c, const Variant& v) { c.BackStyle(v.ToInteger()); });
    t.Property(u"BackColor", [](L& c) { return Variant(c.BackColor()); },
               [](L& c, const Variant& v) { c.BackColor(v.ToLong()); });
    t.Property(u"ForeColor", [](L& c) { return Variant(c.ForeColor()); },
               [](L& c, const Variant& v) { c.ForeColor(v.ToLong()); });
    t.Property(u"DisableMouseEvents", [](L& c) { return Variant(c.DisableMouseEvents()); },
               [](L& c, const Variant& v) { c.DisableMouseEvents(v.ToBoolean()); });
    t.Property(u"FontBold", [](L& c) { return Variant(c.FontBold()); },
               [](L& c, const Variant& v) { c.FontBold(v.ToBoolean()); });
    t.Property(u"FontItalic", [](L& c) { return Variant(c.FontItalic()); },
               [](L& c, const Variant& v) { c.FontItalic(v.ToBoolean()); });
    t.Property(u"FontSize", [](L& c) { return Variant(c.FontSize()); },
               [](L& c, const Variant& v) { c.FontSize(v.ToSingle()); });
    t.Property(u"MousePointer", [](L& c) { return Variant(c.MousePointer()); },
               [](L& c, const Variant& v) { c.MousePointer(v.ToInteger()); });
    t.Method(u"About", [](L& c, std::span<Variant>) { c.About(); return Variant(); });
    t.Method(u"Dispose", [](L& c, std::span<Variant>) { c.Dispose(); return Variant(); });
    t.Method(u"Refresh", [](L& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"StartMouseEvents", [](L& c, std::span<Variant>) { c.StartMouseEvents(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? StringView(u"Caption") : name, kind, args, result, u"USLabel"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
