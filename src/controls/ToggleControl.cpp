// ToggleControl: properties, lifecycle, persistence, the click path and painting shared by the
// check box and the option button.
#include "controls/ToggleControl.h"

#include <algorithm>
#include <cwctype>

#include "controls/ControlSupport.h"
#include "controls/MemberTable.h"
#include "frame/APIMouseEvents.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "host/Screen.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::Variant;

namespace {

char16_t LowerCase(char16_t c) {
  if (c < 0x80) return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
  return static_cast<char16_t>(std::towlower(static_cast<wint_t>(c)));
}

// Disabled captions are grey whatever ForeColor says, as the system's own check boxes are.
constexpr OLE_COLOR kDisabledText = 0x808080;

}  // namespace

String AccessKeyFromStart(StringView caption) {
  if (caption.size() < 2) return {};
  const size_t last = caption.size() - 1;
  size_t p = caption.find(u'&');
  if (p == StringView::npos || p >= last) return {};
  if (caption[p + 1] != u'&') return String(1, LowerCase(caption[p + 1]));
  // A doubled "&" is a literal one: the next "&" after the pair gets the same test, once.
  p = caption.find(u'&', p + 2);
  if (p == StringView::npos || p >= last) return {};
  if (caption[p + 1] != u'&') return String(1, LowerCase(caption[p + 1]));
  return {};
}

ToggleGlyphColors GlyphColors(int32_t xTheme, int32_t xState) {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(xTheme, index); };
  // The Office looks have light palettes that serve as they are; the Windows looks have one dark
  // colour per state, lightened for the inside of the glyph.
  const bool office = xTheme == frame::Office_Theme_Blue || xTheme == frame::Office_Theme_Silver;
  const auto light = [&](int32_t index) { return office ? c(index) : host::ShiftRGBColor(c(index), 120); };
  ToggleGlyphColors g;
  g.fillTop = 0xFFFFFF;
  g.mark = office ? host::ShiftRGBColor(c(frame::ThemeBorderColor), -100) : c(frame::ThemeBorderColor);
  switch (xState) {
    case ToggleControl::kStateOver:
      g.border = c(frame::ThemeBorderColorOver);
      g.fillBottom = light(frame::ThemeGradientColorOver1 + 1);
      break;
    case ToggleControl::kStateDown:
      g.border = c(frame::ThemeBorderColorDown);
      g.fillTop = light(frame::ThemeGradientColorDown1);
      g.fillBottom = light(frame::ThemeGradientColorDown1 + 2);
      break;
    case ToggleControl::kStateDisabled:
      g.border = c(frame::ThemeBorderColorDisabled);
      g.fillTop = g.fillBottom = c(frame::ThemeGradientColorDisabled1);
      g.mark = host::ShiftRGBColor(c(frame::ThemeBorderColorDisabled), -80);
      break;
    default:
      g.border = c(frame::ThemeBorderColor);
      g.fillBottom = light(frame::ThemeGradientColor1 + 1);
      break;
  }
  return g;
}

ToggleControl::ToggleControl() = default;

ToggleControl::~ToggleControl() = default;

// ---- Setters ----------------------------------------------------------------------------------

void ToggleControl::Alignment(int32_t value) {
  m_alignment = value;
  PropertyChanged(u"Alignment");
  Refresh();
}

void ToggleControl::BackColor(OLE_COLOR value) {
  UserControl::BackColor(value);
  PropertyChanged(u"BackColor");
  Refresh();
}

void ToggleControl::BackStyle(int16_t value) {
  UserControl::BackStyle(value);
  PropertyChanged(u"BackStyle");
  Refresh();
}

void ToggleControl::Caption(StringView value) {
  m_caption = String(value);
  PropertyChanged(u"Caption");
  AccessKeys(AccessKeyFromStart(m_caption));
  Refresh();
}

void ToggleControl::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  DrawState(value ? (m_mouseOver ? kStateOver : kStateNormal) : kStateDisabled, false);
}

void ToggleControl::ForeColor(OLE_COLOR value) {
  UserControl::ForeColor(value);
  PropertyChanged(u"ForeColor");
  Refresh();
}

void ToggleControl::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  DrawState(-1, true);
}


void ToggleControl::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
}

void ToggleControl::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  const bool hasPicture = value && !value->IsEmpty();
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
  MousePointer(hasPicture ? host::vbCustom : host::vbDefault);
}

void ToggleControl::About() {}

void ToggleControl::Dispose() { ReleaseMouseTracker(); }

void ToggleControl::Refresh() { DrawState(-1, true); }

void ToggleControl::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick, u"KeyDown", KeyDown, u"KeyPress", KeyPress,
                       u"KeyUp", KeyUp, u"MouseDown", MouseDown, u"MouseEnter", MouseEnter, u"MouseExit",
                       MouseExit, u"MouseMove", MouseMove, u"MouseUp", MouseUp);
}

bool ToggleControl::InvokeCommon(StringView name, host::CallKind kind, std::span<Variant> args, Variant& result) {
  using T = ToggleControl;
  static const detail::MemberTable<T> table = [] {
    detail::MemberTable<T> t;
    t.Property(u"Alignment", [](T& c) { return Variant(c.Alignment()); },
               [](T& c, const Variant& v) { c.Alignment(v.ToLong()); });
    t.Property(u"BackColor", [](T& c) { return Variant(c.BackColor()); },
               [](T& c, const Variant& v) { c.BackColor(v.ToLong()); });
    t.Property(u"BackStyle", [](T& c) { return Variant(c.BackStyle()); },
               [](T& c, const Variant& v) { c.BackStyle(v.ToInteger()); });
    t.Property(u"Caption", [](T& c) { return Variant(c.Caption()); },
               [](T& c, const Variant& v) { c.Caption(v.ToString()); });
    t.Property(u"Enabled", [](T& c) { return Variant(c.Enabled()); },
               [](T& c, const Variant& v) { c.Enabled(v.ToBoolean()); });
    t.Property(u"ForeColor", [](T& c) { return Variant(c.ForeColor()); },
               [](T& c, const Variant& v) { c.ForeColor(v.ToLong()); });
    t.Property(u"Theme", [](T& c) { return Variant(c.Theme()); },
               [](T& c, const Variant& v) { c.Theme(v.ToLong()); });
    t.Property(u"FontBold", [](T& c) { return Variant(c.FontBold()); },
               [](T& c, const Variant& v) { c.FontBold(v.ToBoolean()); });
    t.Property(u"FontItalic", [](T& c) { return Variant(c.FontItalic()); },
               [](T& c, const Variant& v) { c.FontItalic(v.ToBoolean()); });
    t.Property(u"FontSize", [](T& c) { return Variant(c.FontSize()); },
               [](T& c, const Variant& v) { c.FontSize(v.ToSingle()); });
    t.Property(u"FontStrikeThru", [](T& c) { return Variant(c.FontStrikeThru()); },
               [](T& c, const Variant& v) { c.FontStrikeThru(v.ToBoolean()); });
    t.Property(u"FontUnderline", [](T& c) { return Variant(c.FontUnderline()); },
               [](T& c, const Variant& v) { c.FontUnderline(v.ToBoolean()); });
    t.Property(u"MousePointer", [](T& c) { return Variant(c.MousePointer()); },
               [](T& c, const Variant& v) { c.MousePointer(v.ToInteger()); });
    t.Property(u"hWnd", [](T& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"About", [](T& c, std::span<Variant>) { c.About(); return Variant(); });
    t.Method(u"Dispose", [](T& c, std::span<Variant>) { c.Dispose(); return Variant(); });
    t.Method(u"Refresh", [](T& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    return t;
  }();
  return table.Dispatch(*this, name, kind, args, result, ClassName());
}

// ---- Lifecycle --------------------------------------------------------------------------------

void ToggleControl::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  Step([&] { m_caption = Ambient().DisplayName(); });
  Step([&] { AccessKeys(AccessKeyFromStart(m_caption)); });
  Step([&] { UserControl::BackColor(Ambient().BackColor()); });
  // Dropped at design time the control is transparent, and is saved so, although a bag without
  // the key reads back opaque.
  Step([&] { UserControl::BackStyle(0); });
  Step([&] { UserControl::ForeColor(0x000000); });
  m_theme = frame::Windows_Theme;
  m_alignment = 0;
  ResetValue();
}

void ToggleControl::UserControl_ReadProperties(host::PropertyBag& PropBag) {
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
  Step([&] { UserControl::MousePointer(static_cast<int16_t>(saved.Long(u"MousePointer", 0))); });
  Step([&] { UserControl::BackColor(static_cast<OLE_COLOR>(saved.Long(u"BackColor", Ambient().BackColor()))); });
  Step([&] { UserControl::ForeColor(static_cast<OLE_COLOR>(saved.Long(u"ForeColor", 0x000000))); });
  Step([&] { UserControl::BackStyle(static_cast<int16_t>(saved.Long(u"BackStyle", 1))); });
  Step([&] { m_caption = saved.Read(u"Caption", Variant(Ambient().DisplayName())).ToString(); });
  bool enabled = true;
  Step([&] { enabled = saved.Read(u"Enabled", Variant(true)).ToBoolean(); });
  m_theme = saved.Long(u"Theme", frame::Windows_Theme);
  m_alignment = saved.Long(u"Alignment", 0);
  Step([&] { ReadValue(PropBag); });

  // Side effects last.
  Step([&] { AccessKeys(AccessKeyFromStart(m_caption)); });
  Step([&] { UserControl::Enabled(enabled); });
  if (m_userMode) Step([&] { StartMouseTracker(); });
}

void ToggleControl::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  Step([&] { write(u"Caption", Variant(m_caption), Variant(Ambient().DisplayName())); });
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  const auto icon = UserControl::MouseIcon();
  write(u"MouseIcon", icon ? Variant(icon) : Variant::Nothing(), Variant::Nothing());
  write(u"MousePointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  Step([&] { write(u"BackColor", Variant(UserControl::BackColor()), Variant(Ambient().BackColor())); });
  write(u"ForeColor", Variant(UserControl::ForeColor()), Variant(OLE_COLOR{0x000000}));
  write(u"BackStyle", Variant(UserControl::BackStyle()), Variant(int16_t{1}));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"Alignment", Variant(m_alignment), Variant(int32_t{0}));
  Step([&] { WriteValue(PropBag); });
}

void ToggleControl::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  // The minimum holds always, not only while painting is on.
  const host::Screen& screen = host::GetScreen();
  if (rc.bottom < kMinimumSize) Step([&] { Control::Height(kMinimumSize * screen.TwipsPerPixelY()); });
  if (rc.right < kMinimumSize) Step([&] { Control::Width(kMinimumSize * screen.TwipsPerPixelX()); });
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Step([&] { DrawState(-1, true); });
}

void ToggleControl::UserControl_Terminate() {
  m_userMode = false;
  Step([&] { ReleaseMouseTracker(); });
}

void ToggleControl::StartMouseTracker() {
  if (m_mouseEx) return;
  auto tracker = std::make_unique<frame::APIMouseEvents>();
  tracker->MouseIn.connect([this] { OnMouseIn(); });
  tracker->MouseOut.connect([this] { OnMouseOut(); });
  tracker->Attach(UserControl::hWnd());
  m_mouseEx = std::move(tracker);
}

void ToggleControl::ReleaseMouseTracker() { m_mouseEx.reset(); }

void ToggleControl::OnMouseIn() {
  m_mouseOver = true;
  if (!m_pressed) Step([&] { DrawState(kStateOver, false); });
  Step([&] { MouseEnter(); });
}

void ToggleControl::OnMouseOut() {
  m_mouseOver = false;
  Step([&] { DrawState(kStateNormal, false); });
  Step([&] { MouseExit(); });
}

// ---- The click path ---------------------------------------------------------------------------

void ToggleControl::DoClick() {
  if (!UserControl::Enabled()) return;
  m_pressed = false;
  m_spaceDown = false;
  Step([&] { ClickValue(); });
  Step([&] { DrawState(m_mouseOver ? kStateOver : kStateNormal, true); });
  Step([&] { Click(); });
}

void ToggleControl::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  if (Button == host::vbLeftButton) {
    m_pressed = true;
    Step([&] { DrawState(kStateDown, false); });
  }
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void ToggleControl::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}

void ToggleControl::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  if (Button == host::vbLeftButton) {
    m_pressed = m_spaceDown;
    // Released away from the control: no click follows, so the face goes back here.
    if (!m_pressed) Step([&] { DrawState(m_mouseOver ? kStateOver : kStateNormal, false); });
  }
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void ToggleControl::UserControl_Click() { DoClick(); }

void ToggleControl::UserControl_DblClick() {
  // The second press of a double click is a click of its own for a toggle, as the system's
  // check boxes take it.
  Step([&] { DoClick(); });
  Step([&] { DblClick(); });
}

void ToggleControl::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (KeyCode == platform::VK_SPACE && Shift == 0 && !m_spaceDown) {
    m_pressed = true;
    m_spaceDown = true;
    Step([&] { DrawState(kStateDown, false); });
  }
  Step([&] { KeyDown(KeyCode, Shift); });
}

void ToggleControl::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }

void ToggleControl::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) {
  if (KeyCode == platform::VK_SPACE) {
    if (m_spaceDown) {
      DoClick();
    } else {
      m_pressed = false;
    }
  }
  Step([&] { KeyUp(KeyCode, Shift); });
}

void ToggleControl::UserControl_AccessKeyPress(int16_t& KeyAscii) {
  // Enter and Esc arrive as the form's default and cancel keys; they are not this control's.
  if (KeyAscii == 13 || KeyAscii == 27) return;
  DoClick();
}

void ToggleControl::UserControl_GotFocus() {
  m_hasFocus = true;
  Step([&] { DrawState(-1, false); });
}

void ToggleControl::UserControl_LostFocus() {
  m_hasFocus = false;
  m_pressed = false;
  m_spaceDown = false;
  Step([&] { DrawState(m_mouseOver ? kStateOver : kStateNormal, false); });
}

// ---- Painting ---------------------------------------------------------------------------------

void ToggleControl::DrawState(int32_t xState, bool xForce) {
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

void ToggleControl::PaintFace(int32_t xState) {
  const bool enabled = UserControl::Enabled();
  if (!enabled) {
    m_state = kStateDisabled;
    xState = kStateDisabled;
  } else if (xState == kStateDisabled) {
    xState = m_state = kStateNormal;
  }
  const platform::HDC dc = UserControl::hDC();
  const int32_t W = m_clientWidth;
  const int32_t H = m_clientHeight;

  // The glyph sits at one side, centred vertically.
  const int32_t top = (H - kGlyphSize) / 2;
  const int32_t left = m_alignment == 1 ? W - kGlyphSize : 0;
  m_glyphRect = platform::RECT{left, top, left + kGlyphSize, top + kGlyphSize};
  Step([&] { PaintGlyph(dc, m_glyphRect, GlyphColors(m_theme, xState)); });

  m_captionRect = platform::RECT{};
  if (m_caption.empty()) return;
  // The caption is one line; "&" marks the access key with an underline.
  const int32_t avail = std::max(0, W - kGlyphSize - kCaptionGap);
  platform::RECT measured{0, 0, avail, H};
  frame::DrawTextAPI(dc, m_caption, measured, platform::DT_CALCRECT | platform::DT_SINGLELINE);
  const int32_t textW = std::min<int32_t>(measured.right, avail);
  const int32_t textH = measured.bottom;
  const int32_t textTop = (H - textH) / 2;
  const int32_t textLeft = m_alignment == 1 ? W - kGlyphSize - kCaptionGap - textW : kGlyphSize + kCaptionGap;
  m_captionRect = platform::RECT{textLeft, textTop, textLeft + textW, textTop + textH};
  platform::RECT r = m_captionRect;
  frame::DrawTextColor(dc, m_caption, r, platform::DT_SINGLELINE | platform::DT_END_ELLIPSIS,
                       enabled ? UserControl::ForeColor() : kDisabledText);
  if (m_hasFocus && enabled) {
    // The mark runs one pixel around the caption (DrawFocusMark insets by two).
    platform::RECT f{m_captionRect.left - 3, m_captionRect.top - 3, m_captionRect.right + 3,
                     m_captionRect.bottom + 3};
    f.left = std::max(f.left, 0);
    f.top = std::max(f.top, 0);
    f.right = std::min(f.right, W);
    f.bottom = std::min(f.bottom, H);
    frame::DrawFocusMark(dc, f);
  }
}

}  // namespace mx::controls
