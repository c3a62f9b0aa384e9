// USScrollBar: properties, input and painting.
#include "controls/USScrollBar.h"

#include <algorithm>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/GradientFill.h"
#include "controls/MemberTable.h"
#include "frame/Drawing.h"
#include "frame/Themes.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::Variant;

namespace {

constexpr platform::UINT_PTR kRepeatTimer = 1;

struct ScrollColors {
  OLE_COLOR track, border, arrow, gradient1, gradient2;
};

// The bar's colours of a theme. The Office looks take their light face colours as they are; the
// Windows looks, whose palette faces are dark, lighten theirs so that the arrows stand out.
ScrollColors ThemeColors(int32_t theme) {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(theme, index); };
  const bool office = theme == frame::Office_Theme_Blue || theme == frame::Office_Theme_Silver;
  ScrollColors s{};
  s.track = c(frame::ThemeListEvenRows);
  if (office) {
    s.border = c(frame::ThemeBorderColor);
    s.arrow = host::ShiftRGBColor(c(frame::ThemeBorderColor), -80);
    s.gradient1 = c(frame::ThemeGradientColor1);
    s.gradient2 = c(frame::ThemeGradientColor1 + 2);
  } else {
    s.border = host::ShiftRGBColor(c(frame::ThemeBorderColor), 60);
    s.arrow = c(frame::ThemeBorderColor);
    s.gradient1 = host::ShiftRGBColor(c(frame::ThemeGradientColor1), 140);
    s.gradient2 = host::ShiftRGBColor(c(frame::ThemeGradientColor1), 100);
  }
  return s;
}

const ScrollColors& Defaults() {
  static const ScrollColors d = ThemeColors(frame::Windows_Theme);
  return d;
}

}  // namespace

USScrollBar::USScrollBar() {
  const ScrollColors& d = Defaults();
  m_trackColor = d.track;
  m_borderColor = d.border;
  m_arrowColor = d.arrow;
  m_gradient1 = d.gradient1;
  m_gradient2 = d.gradient2;
}

USScrollBar::~USScrollBar() = default;

// ---- Range and value ----------------------------------------------------------------------------

int32_t USScrollBar::Lowest() const { return std::min(m_min, m_max); }
int32_t USScrollBar::Highest() const { return std::max(m_min, m_max); }

void USScrollBar::Min(int32_t value) {
  m_min = value;
  const int32_t held = std::clamp(m_value, Lowest(), Highest());
  const bool moved = held != m_value;
  m_value = held;
  PropertyChanged(u"Min");
  Invalidate();
  if (moved) Step([&] { Change(); });
}

void USScrollBar::Max(int32_t value) {
  m_max = value;
  const int32_t held = std::clamp(m_value, Lowest(), Highest());
  const bool moved = held != m_value;
  m_value = held;
  PropertyChanged(u"Max");
  Invalidate();
  if (moved) Step([&] { Change(); });
}

void USScrollBar::Value(int32_t value) {
  value = std::clamp(value, Lowest(), Highest());
  const bool changed = value != m_value;
  m_value = value;
  PropertyChanged(u"Value");
  if (changed) Invalidate();
  if (changed) Step([&] { Change(); });
}

void USScrollBar::SmallChange(int32_t value) {
  m_smallChange = std::max(value, 1);
  PropertyChanged(u"SmallChange");
}

void USScrollBar::LargeChange(int32_t value) {
  m_largeChange = std::max(value, 1);
  PropertyChanged(u"LargeChange");
  Invalidate();  // the thumb's length follows it
}

void USScrollBar::Orientation(int32_t value) {
  m_orientation = value == OrientationHorizontal ? OrientationHorizontal : OrientationVertical;
  PropertyChanged(u"Orientation");
  Invalidate();
}

void USScrollBar::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  if (!value) StopRepeat();
  Invalidate();
}

void USScrollBar::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  Invalidate();
}

void USScrollBar::ApplyTheme() {
  const ScrollColors s = ThemeColors(m_theme);
  m_trackColor = s.track;
  m_borderColor = s.border;
  m_arrowColor = s.arrow;
  m_gradient1 = s.gradient1;
  m_gradient2 = s.gradient2;
}

void USScrollBar::BackColor(OLE_COLOR value) {
  m_trackColor = value;
  PropertyChanged(u"BackColor");
  Invalidate();
}
void USScrollBar::BorderColor(OLE_COLOR value) {
  m_borderColor = value;
  PropertyChanged(u"BorderColor");
  Invalidate();
}
void USScrollBar::ArrowColor(OLE_COLOR value) {
  m_arrowColor = value;
  PropertyChanged(u"ArrowColor");
  Invalidate();
}
void USScrollBar::GradientColor1(OLE_COLOR value) {
  m_gradient1 = value;
  PropertyChanged(u"GradientColor1");
  Invalidate();
}
void USScrollBar::GradientColor2(OLE_COLOR value) {
  m_gradient2 = value;
  PropertyChanged(u"GradientColor2");
  Invalidate();
}

void USScrollBar::Refresh() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Invalidate();
}

void USScrollBar::About() { ShowAboutBox(); }

// ---- Geometry -----------------------------------------------------------------------------------

int32_t USScrollBar::ArrowLength() const { return std::max(0, std::min(Thickness(), Length() / 2)); }

int32_t USScrollBar::TrackLength() const { return std::max(0, Length() - 2 * ArrowLength()); }

int32_t USScrollBar::ThumbLength() const {
  const int64_t range = static_cast<int64_t>(Highest()) - Lowest();
  const int32_t track = TrackLength();
  if (range <= 0 || track < kMinThumb) return 0;
  // The thumb is to the track what one page is to the range plus that page.
  const int64_t len = static_cast<int64_t>(track) * m_largeChange / (range + m_largeChange);
  return static_cast<int32_t>(std::clamp<int64_t>(len, kMinThumb, track));
}

int32_t USScrollBar::ThumbStart() const {
  const int32_t thumb = ThumbLength();
  if (thumb == 0) return TrackStart();
  const int64_t span = static_cast<int64_t>(m_max) - m_min;  // signed: Min may be above Max
  const int64_t free = TrackLength() - thumb;
  return TrackStart() + static_cast<int32_t>(free * (static_cast<int64_t>(m_value) - m_min) / span);
}

USScrollBar::Part USScrollBar::PartAt(int32_t x, int32_t y) const {
  if (x < 0 || y < 0 || x >= m_clientWidth || y >= m_clientHeight) return PartNone;
  const int32_t pos = Vertical() ? y : x;
  const int32_t arrow = ArrowLength();
  if (pos < arrow) return PartArrowMin;
  if (pos >= Length() - arrow) return PartArrowMax;
  const int32_t thumb = ThumbLength();
  if (thumb == 0) return PartNone;  // no range: the track does nothing
  const int32_t start = ThumbStart();
  if (pos < start) return PartTrackMin;
  if (pos < start + thumb) return PartThumb;
  return PartTrackMax;
}

// ---- Input --------------------------------------------------------------------------------------

bool USScrollBar::SetFromUser(int64_t value, bool raiseChange) {
  const int32_t held = static_cast<int32_t>(std::clamp<int64_t>(value, Lowest(), Highest()));
  if (held == m_value) return false;
  m_value = held;
  PropertyChanged(u"Value");
  Invalidate();
  if (raiseChange) Step([&] { Change(); });
  return true;
}

bool USScrollBar::StepBy(int64_t amount) {
  return SetFromUser(static_cast<int64_t>(m_value) + amount * Direction(), true);
}

void USScrollBar::RepeatStep() {
  if (!Enabled()) return;
  const Part under = PartAt(m_pointerX, m_pointerY);
  // A held arrow or track part acts only while the pointer is on it; paging stops by itself when
  // the thumb has come under the pointer, since the part there is then the thumb.
  if (under != m_pressed) return;
  switch (m_pressed) {
    case PartArrowMin: StepBy(-static_cast<int64_t>(m_smallChange)); break;
    case PartArrowMax: StepBy(m_smallChange); break;
    case PartTrackMin: StepBy(-static_cast<int64_t>(m_largeChange)); break;
    case PartTrackMax: StepBy(m_largeChange); break;
    default: break;
  }
}

void USScrollBar::StopRepeat() {
  if (m_timerRunning) Step([&] { platform::KillTimer(UserControl::hWnd(), kRepeatTimer); });
  m_timerRunning = false;
}

void USScrollBar::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] {
    if (Button != host::vbLeftButton || !Enabled()) return;
    m_pointerX = static_cast<int32_t>(X);
    m_pointerY = static_cast<int32_t>(Y);
    m_pressed = PartAt(m_pointerX, m_pointerY);
    if (m_pressed == PartThumb) {
      m_grabOffset = (Vertical() ? m_pointerY : m_pointerX) - ThumbStart();
      m_dragStartValue = m_value;
      Invalidate();
    } else if (m_pressed != PartNone) {
      Invalidate();
      RepeatStep();
      m_timerRunning = platform::SetTimer(UserControl::hWnd(), kRepeatTimer, kRepeatDelayMs) != 0;
    }
  });
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void USScrollBar::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] {
    m_pointerX = static_cast<int32_t>(X);
    m_pointerY = static_cast<int32_t>(Y);
    if (m_pressed != PartThumb) return;
    // The thumb's leading edge follows the pointer less the grip; its place in the free part of
    // the track maps linearly onto Min..Max, rounded to the nearest value.
    const int64_t free = TrackLength() - ThumbLength();
    if (free <= 0) return;
    const int64_t start = std::clamp<int64_t>((Vertical() ? m_pointerY : m_pointerX) - m_grabOffset - TrackStart(), 0, free);
    const int64_t span = static_cast<int64_t>(m_max) - m_min;
    const int64_t scaled = start * span;
    const int64_t rounded = (scaled >= 0 ? scaled + free / 2 : scaled - free / 2) / free;
    if (SetFromUser(m_min + rounded, false)) Step([&] { Scroll(); });
  });
  Step([&] { MouseMove(Button, Shift, X, Y); });
}

void USScrollBar::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] {
    if (Button != host::vbLeftButton || m_pressed == PartNone) return;
    const Part was = m_pressed;
    m_pressed = PartNone;
    StopRepeat();
    Invalidate();
    // A drag tells the end of its scrolling with one Change, if it moved at all.
    if (was == PartThumb && m_value != m_dragStartValue) Step([&] { Change(); });
  });
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USScrollBar::UserControl_LostFocus() {
  if (m_pressed == PartNone) return;
  m_pressed = PartNone;
  StopRepeat();
  Invalidate();
}

void USScrollBar::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  Step([&] {
    if (!Enabled()) return;
    switch (KeyCode) {
      case platform::VK_UP: case platform::VK_LEFT: StepBy(-static_cast<int64_t>(m_smallChange)); break;
      case platform::VK_DOWN: case platform::VK_RIGHT: StepBy(m_smallChange); break;
      case platform::VK_PRIOR: StepBy(-static_cast<int64_t>(m_largeChange)); break;
      case platform::VK_NEXT: StepBy(m_largeChange); break;
      case platform::VK_HOME: SetFromUser(m_min, true); break;
      case platform::VK_END: SetFromUser(m_max, true); break;
      default: break;
    }
  });
  Step([&] { KeyDown(KeyCode, Shift); });
}

void USScrollBar::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyUp(KeyCode, Shift); }); }

bool USScrollBar::PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
  if (msg == platform::WM_TIMER && wParam == kRepeatTimer) {
    Step([&] {
      if (m_pressed == PartNone || m_pressed == PartThumb) return StopRepeat();
      // After the first delay the repeat runs at its own, faster period.
      platform::SetTimer(UserControl::hWnd(), kRepeatTimer, kRepeatPeriodMs);
      RepeatStep();
    });
    lResult = 0;
    return true;
  }
  if (msg == platform::WM_MOUSEWHEEL) {
    Step([&] {
      if (!Enabled()) return;
      // Turns add up until they make a notch (120), so fine-grained wheels step too.
      m_wheelRemainder += static_cast<int16_t>(static_cast<uint32_t>(wParam) >> 16);
      const int32_t notches = m_wheelRemainder / 120;
      m_wheelRemainder -= notches * 120;
      if (notches == 0) return;
      platform::UINT lines = 3;
      platform::SystemParametersInfo(platform::SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
      // Turning away from the user (positive) moves towards Min, as a page scrolls up.
      StepBy(-static_cast<int64_t>(notches) * std::max<int64_t>(lines, 1) * m_smallChange);
    });
    lResult = 0;
    return true;
  }
  return false;
}

// ---- Painting -----------------------------------------------------------------------------------

void USScrollBar::Invalidate() { Step([&] { UserControl::Refresh(); }); }

void USScrollBar::UserControl_Paint() {
  ++m_paintCount;
  Step([&] { PaintBar(UserControl::hDC()); });
}

void USScrollBar::PaintBar(platform::HDC dc) {
  using platform::RECT;
  const bool vertical = Vertical();
  const bool enabled = Enabled();
  // A rectangle from along-axis start..end, across the whole thickness.
  const auto span = [&](int32_t from, int32_t to) {
    return vertical ? RECT{0, from, m_clientWidth, to} : RECT{from, 0, to, m_clientHeight};
  };
  // Faces run across the bar, so that the arrows and the thumb look like one rounded rail.
  const int32_t across = vertical ? frame::GradientLeftToRight : frame::GradientTopToBottom;
  const OLE_COLOR grey = 0xB4B4B4;
  const OLE_COLOR border = enabled ? m_borderColor : frame::GetThemeColor(m_theme, frame::ThemeBorderColorDisabled);
  const auto face = [&](const RECT& r, bool pressed) {
    if (!enabled) detail::FillGradient(dc, r, 0xF0F0F0, 0xE4E4E4, across);
    else if (pressed) detail::FillGradient(dc, r, m_gradient2, m_gradient1, across);
    else detail::FillGradient(dc, r, m_gradient1, m_gradient2, across);
    frame::FrameRectColor(dc, r, border);
  };

  const int32_t length = Length();
  const int32_t arrow = ArrowLength();
  frame::FillRectColor(dc, RECT{0, 0, m_clientWidth, m_clientHeight}, m_trackColor);
  // A held track part darkens while the pointer is on it.
  if ((m_pressed == PartTrackMin || m_pressed == PartTrackMax) && PartAt(m_pointerX, m_pointerY) == m_pressed) {
    const RECT r = m_pressed == PartTrackMin ? span(TrackStart(), ThumbStart())
                                             : span(ThumbStart() + ThumbLength(), length - arrow);
    frame::FillRectColor(dc, r, host::ShiftRGBColor(m_trackColor, -40));
  }

  // The arrows: filled triangles pointing away from the track, one pixel line per row.
  const auto drawArrow = [&](const RECT& r, bool towardsMin) {
    const int32_t w = r.right - r.left, h = r.bottom - r.top;
    const int32_t size = std::clamp((std::min(w, h) - 2) / 4, 1, 6);  // rows of the triangle
    const int32_t cx = r.left + w / 2, cy = r.top + h / 2;
    const OLE_COLOR colour = enabled ? m_arrowColor : grey;
    for (int32_t i = 0; i < size; ++i) {
      // Row i from the tip has 2i + 1 pixels.
      const int32_t along = towardsMin ? -size / 2 + i : size / 2 - i;
      if (vertical) frame::DrawLineColor(dc, cx - i, cy + along, cx + i + 1, cy + along, colour);
      else frame::DrawLineColor(dc, cx + along, cy - i, cx + along, cy + i + 1, colour);
    }
  };
  if (arrow > 0) {
    const RECT a = span(0, arrow), b = span(length - arrow, length);
    face(a, m_pressed == PartArrowMin);
    face(b, m_pressed == PartArrowMax);
    drawArrow(a, true);
    drawArrow(b, false);
  }

  const int32_t thumb = enabled ? ThumbLength() : 0;
  if (thumb > 0) {
    const int32_t start = ThumbStart();
    const RECT t = span(start, start + thumb);
    face(t, m_pressed == PartThumb);
    // Three grip lines across the middle of a thumb long enough to hold them.
    if (thumb >= 14 && Thickness() >= 8) {
      const int32_t mid = start + thumb / 2;
      for (int32_t k = -2; k <= 2; k += 2) {
        if (vertical) frame::DrawLineColor(dc, 3, mid + k, m_clientWidth - 3, mid + k, border);
        else frame::DrawLineColor(dc, mid + k, 3, mid + k, m_clientHeight - 3, border);
      }
    }
  }
  frame::FrameRectColor(dc, RECT{0, 0, m_clientWidth, m_clientHeight}, border);
}

// ---- Lifecycle ----------------------------------------------------------------------------------

void USScrollBar::UserControl_InitProperties() {
  m_min = 0;
  m_max = 100;
  m_value = 0;
  m_smallChange = 1;
  m_largeChange = 10;
  m_orientation = OrientationVertical;
  m_theme = frame::Windows_Theme;
  ApplyTheme();
}

void USScrollBar::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  const ScrollColors& d = Defaults();
  Step([&] { m_min = saved.Read(u"Min", Variant(int32_t{0})).ToLong(); });
  Step([&] { m_max = saved.Read(u"Max", Variant(int32_t{100})).ToLong(); });
  Step([&] { m_value = std::clamp(saved.Read(u"Value", Variant(int32_t{0})).ToLong(), Lowest(), Highest()); });
  Step([&] { m_smallChange = std::max(1, saved.Read(u"SmallChange", Variant(int32_t{1})).ToLong()); });
  Step([&] { m_largeChange = std::max(1, saved.Read(u"LargeChange", Variant(int32_t{10})).ToLong()); });
  Step([&] { m_orientation = saved.Read(u"Orientation", Variant(int32_t{0})).ToLong() == 1 ? 1 : 0; });
  Step([&] { m_trackColor = saved.Read(u"BackColor", Variant(d.track)).ToLong(); });
  Step([&] { m_borderColor = saved.Read(u"BorderColor", Variant(d.border)).ToLong(); });
  Step([&] { m_arrowColor = saved.Read(u"ArrowColor", Variant(d.arrow)).ToLong(); });
  Step([&] { m_gradient1 = saved.Read(u"GradientColor1", Variant(d.gradient1)).ToLong(); });
  Step([&] { m_gradient2 = saved.Read(u"GradientColor2", Variant(d.gradient2)).ToLong(); });
  // Only stored: the saved colours apply.
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{frame::Windows_Theme})).ToLong(); });
  Step([&] { UserControl::Enabled(saved.Read(u"Enabled", Variant(true)).ToBoolean()); });
}

void USScrollBar::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  const ScrollColors& d = Defaults();
  write(u"Min", Variant(m_min), Variant(int32_t{0}));
  write(u"Max", Variant(m_max), Variant(int32_t{100}));
  write(u"Value", Variant(m_value), Variant(int32_t{0}));
  write(u"SmallChange", Variant(m_smallChange), Variant(int32_t{1}));
  write(u"LargeChange", Variant(m_largeChange), Variant(int32_t{10}));
  write(u"Orientation", Variant(m_orientation), Variant(int32_t{0}));
  write(u"BackColor", Variant(m_trackColor), Variant(d.track));
  write(u"BorderColor", Variant(m_borderColor), Variant(d.border));
  write(u"ArrowColor", Variant(m_arrowColor), Variant(d.arrow));
  write(u"GradientColor1", Variant(m_gradient1), Variant(d.gradient1));
  write(u"GradientColor2", Variant(m_gradient2), Variant(d.gradient2));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"Enabled", Variant(Enabled()), Variant(true));
}

void USScrollBar::UserControl_Resize() { Refresh(); }

void USScrollBar::UserControl_Terminate() {
  StopRepeat();
  m_pressed = PartNone;
}

void USScrollBar::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Change", Change, u"Scroll", Scroll, u"KeyDown", KeyDown, u"KeyUp", KeyUp,
                       u"MouseDown", MouseDown, u"MouseMove", MouseMove, u"MouseUp", MouseUp);
}

Variant USScrollBar::Invoke(host::StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USScrollBar;
  static const detail::MemberTable<P> table = [] {
    detail::MemberTable<P> t;
    const auto longProp = [&t](const char16_t* n, int32_t (P::*get)() const, void (P::*let)(int32_t)) {
      t.Property(n, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToLong()); });
    };
    longProp(u"Min", &P::Min, &P::Min);
    longProp(u"Max", &P::Max, &P::Max);
    longProp(u"Value", &P::Value, &P::Value);
    longProp(u"SmallChange", &P::SmallChange, &P::SmallChange);
    longProp(u"LargeChange", &P::LargeChange, &P::LargeChange);
    longProp(u"Orientation", &P::Orientation, &P::Orientation);
    longProp(u"Theme", &P::Theme, &P::Theme);
    t.Property(u"Enabled", [](P& c) { return Variant(c.Enabled()); },
               [](P& c, const Variant& v) { c.Enabled(v.ToBoolean()); });
    const auto colorProp = [&t](const char16_t* n, OLE_COLOR (P::*get)() const, void (P::*let)(OLE_COLOR)) {
      t.Property(n, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToLong()); });
    };
    colorProp(u"BackColor", &P::BackColor, &P::BackColor);
    colorProp(u"BorderColor", &P::BorderColor, &P::BorderColor);
    colorProp(u"ArrowColor", &P::ArrowColor, &P::ArrowColor);
    colorProp(u"GradientColor1", &P::GradientColor1, &P::GradientColor1);
    colorProp(u"GradientColor2", &P::GradientColor2, &P::GradientColor2);
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"Refresh", [](P& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"About", [](P& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? host::StringView(u"Value") : name, kind, args, result, u"USScrollBar"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
