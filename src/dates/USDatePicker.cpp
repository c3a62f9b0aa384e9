// USDatePicker: children, properties, the date mask, persistence and lifecycle.
#include "dates/USDatePicker.h"

#include <algorithm>
#include <cmath>

#include "controls/ControlSupport.h"
#include "dates/USCalendarSmall.h"
#include "entry/USTextBoxEx.h"
#include "frame/APIMouseEvents.h"
#include "frame/Themes.h"
#include "host/Colors.h"
#include "host/Conversion.h"
#include "host/DateTime.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Messages.h"
#include "platform/Window.h"
#include "utility/DateFormats.h"

namespace mx::dates {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

// The calendar as the picker drops it down: pressing its days does not take the focus away from
// the field, so that typing and the keys go on where they were.
class DropDownCalendar final : public USCalendarSmall {
 public:
  [[nodiscard]] bool CanGetFocus() const override { return false; }
};

}  // namespace

USDatePicker::USDatePicker() = default;

USDatePicker::~USDatePicker() = default;

void USDatePicker::Changed(StringView key) {
  PropertyChanged(key);
  if (!m_loading) DrawDatePicker();
}

// ---- Children ---------------------------------------------------------------------------------

void USDatePicker::CreateChildren() {
  if (m_txtCombo || !UserControl::hWnd()) return;
  bool userMode = false;
  Step([&] { userMode = Ambient().UserMode(); });
  m_runMode = userMode;
  const host::Screen& screen = host::GetScreen();
  const float tx = screen.TwipsPerPixelX();
  const float ty = screen.TwipsPerPixelY();

  auto text = std::make_shared<entry::USTextBoxEx>();
  text->Move(tx, ty, 60 * tx, 19 * ty);
  text->CreateControlWindow(UserControl::hWnd());
  text->LoadNew(userMode);
  text->ShowControl();
  m_txtCombo = std::move(text);

  // The calendar waits hidden as a child until it is dropped down.
  std::shared_ptr<USCalendarSmall> calendar = std::make_shared<DropDownCalendar>();
  calendar->Move(0, 0, static_cast<float>(calendar->Geometry().width) * tx,
                 static_cast<float>(calendar->Geometry().height) * ty);
  calendar->Control::Visible(false);
  calendar->CreateControlWindow(UserControl::hWnd());
  calendar->LoadNew(userMode);
  calendar->ShowControl();
  m_calendar = std::move(calendar);
  ConnectChildren();
}

void USDatePicker::ConnectChildren() {
  entry::USTextBoxEx& t = *m_txtCombo;
  // The field's events are the control's own: keys go through the control's key handling first.
  t.KeyDown.connect([this](int16_t& k, int16_t& s) {
    Step([&] { HandleKeyDown(k, s); });
    Step([&] { KeyDown(k, s); });
  });
  t.KeyPress.connect([this](int16_t& k) { Step([&] { KeyPress(k); }); });
  t.KeyUp.connect([this](int16_t& k, int16_t& s) { Step([&] { KeyUp(k, s); }); });
  t.Click.connect([this] { Step([&] { Click(); }); });
  t.Change.connect([this] {
    Step([&] {
      double date = 0;
      if (IsCalendarOpen() && TextToDate(date)) m_calendar->CurrentDate(date);
    });
    Step([&] { Change(); });
  });
  // Mouse positions come in the field's pixels; the control reports its own.
  auto relay = [this](host::Event<int16_t&, int16_t&, float&, float&>& target) {
    return [this, &target](int16_t& b, int16_t& s, float& x, float& y) {
      const host::Screen& screen = host::GetScreen();
      float px = x + std::round(m_txtCombo->Left() / screen.TwipsPerPixelX());
      float py = y + std::round(m_txtCombo->Top() / screen.TwipsPerPixelY());
      Step([&] { target(b, s, px, py); });
    };
  };
  t.MouseDown.connect(relay(MouseDown));
  t.MouseMove.connect(relay(MouseMove));
  t.MouseUp.connect(relay(MouseUp));
  // The inner box is where the focus lives while the field is editable.
  t.Inner().GotFocus.connect([this] { Step([&] { EnterControl(); }); });
  t.Inner().LostFocus.connect([this] { Step([&] { OnFocusLeaving(); }); });

  USCalendarSmall& c = *m_calendar;
  c.DateClicked.connect([this](host::DateValue d) { TakeDate(d.days); });
  c.TodayClicked.connect([this](host::DateValue d) { TakeDate(d.days); });
  // The month buttons take the focus when pressed; it comes back to the field at once.
  c.LastButtonClicked.connect([this](host::DateValue) { GiveFocusBack(); });
  c.NextButtonClicked.connect([this](host::DateValue) { GiveFocusBack(); });
}

void USDatePicker::ApplyFontToChildren() {
  if (!m_txtCombo) return;
  const std::shared_ptr<host::StdFont> font = UserControl::Font();
  Step([&] { m_txtCombo->Font(font); });
  Step([&] { m_txtCombo->FontOver(font); });
  Step([&] { m_txtCombo->FontDisabled(font); });
}

void USDatePicker::RepaintForFont() {
  ApplyFontToChildren();
  DrawDatePicker();
}

// ---- The date mask and the text ---------------------------------------------------------------

String USDatePicker::FormatTag() const { return m_txtCombo ? m_txtCombo->Tag() : String(); }

void USDatePicker::ApplyDateMask(int32_t xFormat) {
  const String format = utility::DateFormatToString(xFormat);
  String mask = format;
  for (char16_t& ch : mask) {
    const char16_t lower = (ch >= u'A' && ch <= u'Z') ? static_cast<char16_t>(ch + 32) : ch;
    if (lower == u'd' || lower == u'm' || lower == u'y') ch = u'#';
  }
  entry::USTextBoxEx& t = *m_txtCombo;
  t.AllowNegativeNumber(false);
  t.MaxLength(10);
  // Laying a mask blanks the field: it is laid only when it changes, so that writing a text in
  // the same layout does not pass through an empty field (and a second Change).
  if (t.Mask() != mask) t.Mask(mask);
  if (t.MaskType() != entry::Only_Number) t.MaskType(entry::Only_Number);
  t.NumberOnly(true);
  // Every layout keeps room for ten characters, even the shorter ones.
  t.MaxLength(10);
  // The field's Tag is the one place where the layout in force is remembered.
  t.Tag(format);
}

String USDatePicker::Text() const { return m_txtCombo ? m_txtCombo->Text() : String(); }

void USDatePicker::Text(StringView value) {
  if (!m_txtCombo) return;
  ApplyDateMask(m_formatDate);
  m_txtCombo->Text(value);
  PropertyChanged(u"Text");
  DrawDatePicker();
}

int32_t USDatePicker::SelStart() const { return m_txtCombo ? m_txtCombo->SelStart() : 0; }
void USDatePicker::SelStart(int32_t value) {
  if (m_txtCombo) m_txtCombo->SelStart(value);
  PropertyChanged(u"SelStart");
}
int32_t USDatePicker::SelLength() const { return m_txtCombo ? m_txtCombo->SelLength() : 0; }
void USDatePicker::SelLength(int32_t value) {
  if (m_txtCombo) m_txtCombo->SelLength(value);
  PropertyChanged(u"SelLength");
}
String USDatePicker::SelText() const { return m_txtCombo ? m_txtCombo->SelText() : String(); }
void USDatePicker::SelText(StringView value) {
  if (m_txtCombo) m_txtCombo->SelText(value);
  PropertyChanged(u"SelText");
  DrawDatePicker();
}

namespace {

// The parts of a date text in the order a layout reads them, as the validator reads them: the
// digits between separators, each as a number.
std::vector<int32_t> DateParts(StringView text) {
  const String t = host::Trim(text);
  const String sep = utility::DetectDateSeparator(t);
  std::vector<int32_t> parts;
  size_t start = 0;
  while (true) {
    const size_t at = sep.empty() ? String::npos : t.find(sep, start);
    const String part = t.substr(start, at == String::npos ? String::npos : at - start);
    parts.push_back(static_cast<int32_t>(host::Val(part)));
    if (at == String::npos) break;
    start = at + sep.size();
  }
  return parts;
}

}  // namespace

bool USDatePicker::TextToDate(double& out) const {
  const String text = Text();
  if (!utility::ValidateDateText(text, m_formatDate)) return false;
  const std::vector<int32_t> p = DateParts(text);
  const auto at = [&](size_t i) { return i < p.size() ? p[i] : 0; };
  int32_t day = 1, month = 1, year = 0;
  const int32_t f = m_formatDate;
  // The same division of the codes that the validator uses: which part is the day, the month
  // and the year.
  if (f == 0 || (f >= 25 && f <= 35)) {
    year = at(0), month = at(1), day = at(2);
  } else if (f == 1 || (f >= 3 && f <= 13)) {
    day = at(0), month = at(1), year = at(2);
  } else if (f == 2 || (f >= 14 && f <= 24)) {
    month = at(0), day = at(1), year = at(2);
  } else if (f >= 54 && f <= 65) {
    month = at(0), day = at(1), year = host::Year(host::Date());
  } else if (f >= 66 && f <= 77) {
    year = at(0), month = at(1), day = 1;
  } else {
    return false;
  }
  out = host::DateSerial(year, month, day);
  return true;
}

String USDatePicker::DateToText(double date) const {
  // The date as the host writes it, rewritten into the layout in force.
  return utility::ConvertDateText(host::CStr(Variant(host::DateValue{std::trunc(date)})), FormatTag());
}

// ---- Read-only members and methods ------------------------------------------------------------

String USDatePicker::TextTrim() const { return host::Replace(host::Trim(Text()), u"\t", u""); }

int32_t USDatePicker::TextLen() const { return host::Len(Text()); }

int32_t USDatePicker::TextLenEx() const { return m_txtCombo ? host::Len(host::Trim(m_txtCombo->TextNoMask())) : 0; }

Variant USDatePicker::TextAsDate(int32_t xFormatToValidate, int32_t xFormatToReturn) const {
  if (!m_txtCombo) return Variant::Null();
  return m_txtCombo->TextAsDate(xFormatToValidate, xFormatToReturn);
}

bool USDatePicker::IsValidDate(int32_t xFormat) const { return utility::ValidateDateText(Text(), xFormat); }

void USDatePicker::Clear() {
  Text(u"");
  if (m_calendar) m_calendar->CurrentDate(host::Now());
}

// ---- Setters ----------------------------------------------------------------------------------

void USDatePicker::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  DrawDatePicker();
}

void USDatePicker::ApplyTheme() {
  const auto entry = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  m_backColor = m_backColorDisabled = 0xFFFFFF;
  m_backColorOver = 0xF4FFFF;
  m_foreColor = m_foreColorDisabled = 0x000000;
  m_gradientColor1 = m_gradientColor2 = 0xFFFFFF;
  m_backColorOnShowCalendar = host::ShiftRGBColor(entry(frame::ThemeGradientColor1), 140);
  m_borderColorDisabled = entry(frame::ThemeBorderColorDisabled);
  // The Office looks take their border colours as they are; the Windows looks lighten them.
  if (m_theme >= frame::Windows_Theme) {
    m_borderColor = host::ShiftRGBColor(entry(frame::ThemeBorderColor), 120);
    m_borderColorOver = host::ShiftRGBColor(entry(frame::ThemeBorderColorOver), 120);
  } else {
    m_borderColor = entry(frame::ThemeBorderColor);
    m_borderColorOver = entry(frame::ThemeBorderColorOver);
  }
}

void USDatePicker::FormatDate(int32_t value) {
  double date = 0;
  const bool hadDate = m_txtCombo && TextToDate(date);
  m_formatDate = value;
  PropertyChanged(u"FormatDate");
  if (!m_txtCombo || m_loading) return;
  // The field takes the new layout's mask at once: a date it held is rewritten in the new
  // layout, anything else would not fit the new mask and is cleared.
  Step([&] {
    ApplyDateMask(m_formatDate);
    Text(hadDate ? DateToText(date) : String());
  });
}

void USDatePicker::ShowCorner(bool value) {
  m_showCorner = value;
  PropertyChanged(u"ShowCorner");
}

void USDatePicker::AutoOpenOnChange(bool value) {
  m_autoOpenOnChange = value;
  PropertyChanged(u"AutoOpenOnChange");
}

void USDatePicker::Style(int32_t value) {
  m_style = value == Dropdown_List ? Dropdown_List : Dropdown_Combo;
  Changed(u"Style");
}

void USDatePicker::BackColor(OLE_COLOR value) { m_backColor = value; Changed(u"BackColor"); }
void USDatePicker::BackColorDisabled(OLE_COLOR value) { m_backColorDisabled = value; Changed(u"BackColorDisabled"); }
void USDatePicker::BackColorOver(OLE_COLOR value) { m_backColorOver = value; Changed(u"BackColorOver"); }
void USDatePicker::BackColorOnShowCalendar(OLE_COLOR value) {
  m_backColorOnShowCalendar = value;
  Changed(u"BackColorOnShowCalendar");
}
void USDatePicker::BorderColor(OLE_COLOR value) { m_borderColor = value; Changed(u"BorderColor"); }
void USDatePicker::BorderColorDisabled(OLE_COLOR value) {
  m_borderColorDisabled = value;
  Changed(u"BorderColorDisabled");
}
void USDatePicker::BorderColorOver(OLE_COLOR value) { m_borderColorOver = value; Changed(u"BorderColorOver"); }
void USDatePicker::ForeColor(OLE_COLOR value) { m_foreColor = value; Changed(u"ForeColor"); }
void USDatePicker::ForeColorDisabled(OLE_COLOR value) { m_foreColorDisabled = value; Changed(u"ForeColorDisabled"); }
void USDatePicker::GradientMode(int32_t value) {
  m_gradientMode = value == Horizontal ? Horizontal : Vertical;
  Changed(u"GradientMode");
}
void USDatePicker::GradientColor1(OLE_COLOR value) { m_gradientColor1 = value; Changed(u"GradientColor1"); }
void USDatePicker::GradientColor2(OLE_COLOR value) { m_gradientColor2 = value; Changed(u"GradientColor2"); }

void USDatePicker::Alignment(int16_t value) {
  m_alignment = std::clamp<int16_t>(value, 0, 2);
  if (m_txtCombo) Step([&] { m_txtCombo->Alignment(m_alignment); });
  Changed(u"Alignment");
}

void USDatePicker::Enabled(bool value) {
  UserControl::Enabled(value);
  if (m_txtCombo) Step([&] { m_txtCombo->Enabled(value); });
  // A disabled picker keeps no drop-down open.
  if (!value) Step([&] { CloseCalendar(); });
  Changed(u"Enabled");
}

void USDatePicker::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  if (m_txtCombo) Step([&] { m_txtCombo->MousePointer(value); });
  PropertyChanged(u"MousePointer");
}

void USDatePicker::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  UserControl::MouseIcon(value);
  if (m_txtCombo) Step([&] { m_txtCombo->MouseIcon(value); });
  PropertyChanged(u"MouseIcon");
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USDatePicker::UserControl_Initialize() { Step([&] { CreateChildren(); }); }

void USDatePicker::UserControl_InitProperties() {
  m_loading = true;
  Step([&] { m_runMode = Ambient().UserMode(); });
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_theme = frame::Windows_Theme;
  m_formatDate = 1;
  m_showCorner = false;
  m_autoOpenOnChange = false;
  m_style = Dropdown_Combo;
  m_backColor = m_backColorDisabled = 0xFFFFFF;
  m_backColorOver = 0xF4FFFF;
  m_backColorOnShowCalendar = host::ShiftRGBColor(0x9A572B, 140);
  m_borderColor = host::ShiftRGBColor(0x9A572B, 120);
  m_borderColorDisabled = 0xDBCECC;
  m_borderColorOver = host::ShiftRGBColor(0x7B3E00, 120);
  m_foreColor = m_foreColorDisabled = 0x000000;
  m_gradientMode = Vertical;
  m_gradientColor1 = m_gradientColor2 = 0xFFFFFF;
  m_alignment = 0;
  ApplyFontToChildren();
  if (m_txtCombo) {
    Step([&] { ApplyDateMask(m_formatDate); });
    Step([&] { m_txtCombo->Text(u""); });
  }
  m_loading = false;
  Step([&] { DrawDatePicker(); });
}

void USDatePicker::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  m_loading = true;
  Step([&] { m_runMode = Ambient().UserMode(); });
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  auto readText = [&](const char16_t* key) {
    String v;
    Step([&] { v = saved.Read(key, Variant(String())).ToString(); });
    return v;
  };

  m_theme = saved.Long(u"Theme", frame::Windows_Theme);
  m_formatDate = saved.Long(u"FormatDate", 1);
  m_showCorner = saved.Bool(u"ShowCorner", false);
  m_autoOpenOnChange = saved.Bool(u"AutoOpenOnChange", false);
  m_style = saved.Long(u"Style", Dropdown_Combo) == Dropdown_List ? Dropdown_List : Dropdown_Combo;
  m_backColor = saved.Long(u"BackColor", 0xFFFFFF);
  m_backColorDisabled = saved.Long(u"BackColorDisabled", 0xFFFFFF);
  m_backColorOver = saved.Long(u"BackColorOver", 0xF4FFFF);
  m_backColorOnShowCalendar = saved.Long(u"BackColorOnShowCalendar", host::ShiftRGBColor(0x9A572B, 140));
  m_borderColor = saved.Long(u"BorderColor", host::ShiftRGBColor(0x9A572B, 120));
  m_borderColorDisabled = saved.Long(u"BorderColorDisabled", 0xDBCECC);
  m_borderColorOver = saved.Long(u"BorderColorOver", host::ShiftRGBColor(0x7B3E00, 120));
  m_foreColor = saved.Long(u"ForeColor", 0x000000);
  m_foreColorDisabled = saved.Long(u"ForeColorDisabled", 0x000000);
  m_gradientMode = saved.Long(u"GradientMode", Vertical) == Horizontal ? Horizontal : Vertical;
  m_gradientColor1 = saved.Long(u"GradientColor1", 0xFFFFFF);
  m_gradientColor2 = saved.Long(u"GradientColor2", 0xFFFFFF);
  m_alignment = static_cast<int16_t>(std::clamp(saved.Long(u"Alignment", 0), 0, 2));
  const bool enabled = saved.Bool(u"Enabled", true);
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { UserControl::MousePointer(static_cast<int16_t>(saved.Long(u"MousePointer", 0))); });
  Step([&] {
    auto icon = std::dynamic_pointer_cast<host::StdPicture>(saved.Read(u"MouseIcon", Variant::Nothing()).Obj());
    UserControl::MouseIcon(icon);
  });
  Step([&] { UserControl::Enabled(enabled); });
  if (m_txtCombo) {
    ApplyFontToChildren();
    Step([&] { m_txtCombo->Enabled(enabled); });
    Step([&] { m_txtCombo->Alignment(m_alignment); });
    Step([&] { m_txtCombo->MousePointer(UserControl::MousePointer()); });
    Step([&] { ApplyDateMask(m_formatDate); });
    Step([&] { m_txtCombo->Text(readText(u"Text")); });
    Step([&] { m_txtCombo->SelStart(saved.Long(u"SelStart", 0)); });
    Step([&] { m_txtCombo->SelLength(saved.Long(u"SelLength", 0)); });
  }
  m_loading = false;
  Step([&] { DrawDatePicker(); });
}

void USDatePicker::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"FormatDate", Variant(m_formatDate), Variant(int32_t{1}));
  write(u"ShowCorner", Variant(m_showCorner), Variant(false));
  write(u"AutoOpenOnChange", Variant(m_autoOpenOnChange), Variant(false));
  write(u"Style", Variant(m_style), Variant(int32_t{Dropdown_Combo}));
  write(u"BackColor", Variant(m_backColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"BackColorDisabled", Variant(m_backColorDisabled), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"BackColorOver", Variant(m_backColorOver), Variant(OLE_COLOR{0xF4FFFF}));
  write(u"BackColorOnShowCalendar", Variant(m_backColorOnShowCalendar),
        Variant(host::ShiftRGBColor(0x9A572B, 140)));
  write(u"BorderColor", Variant(m_borderColor), Variant(host::ShiftRGBColor(0x9A572B, 120)));
  write(u"BorderColorDisabled", Variant(m_borderColorDisabled), Variant(OLE_COLOR{0xDBCECC}));
  write(u"BorderColorOver", Variant(m_borderColorOver), Variant(host::ShiftRGBColor(0x7B3E00, 120)));
  write(u"ForeColor", Variant(m_foreColor), Variant(OLE_COLOR{0x000000}));
  write(u"ForeColorDisabled", Variant(m_foreColorDisabled), Variant(OLE_COLOR{0x000000}));
  write(u"GradientMode", Variant(m_gradientMode), Variant(int32_t{Vertical}));
  write(u"GradientColor1", Variant(m_gradientColor1), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"GradientColor2", Variant(m_gradientColor2), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"Alignment", Variant(int32_t{m_alignment}), Variant(int32_t{0}));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"MousePointer", Variant(int32_t{UserControl::MousePointer()}), Variant(int32_t{0}));
  write(u"MouseIcon", UserControl::MouseIcon() ? Variant(UserControl::MouseIcon()) : Variant::Nothing(),
        Variant::Nothing());
  write(u"SelStart", Variant(SelStart()), Variant(int32_t{0}));
  write(u"SelLength", Variant(SelLength()), Variant(int32_t{0}));
  write(u"SelText", Variant(SelText()), Variant(String()));
  // A field holding only its mask's template is empty.
  write(u"Text", Variant(TextLenEx() > 0 ? Text() : String()), Variant(String()));
}

void USDatePicker::UserControl_Resize() {
  const host::Screen& screen = host::GetScreen();
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  if (rc.right < kMinimumSize) Step([&] { Control::Width(static_cast<float>(kMinimumSize) * screen.TwipsPerPixelX()); });
  if (rc.bottom < kMinimumSize) {
    Step([&] { Control::Height(static_cast<float>(kMinimumSize) * screen.TwipsPerPixelY()); });
  }
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_lineX = rc.right - 17;
  Step([&] { DrawDatePicker(); });
  Step([&] { UserControl::Refresh(); });
}

void USDatePicker::UserControl_Show() {
  if (!m_runMode) return;
  Step([&] { AttachTrackers(); });
  Step([&] { ApplyCornerRegion(); });
  // The calendar is marked a tool window ahead of its first drop-down.
  Step([&] {
    const platform::HWND cal = m_calendar ? m_calendar->hWnd() : 0;
    if (cal) {
      platform::SetWindowLongPtr(cal, platform::GWL_EXSTYLE,
                                 platform::GetWindowLongPtr(cal, platform::GWL_EXSTYLE) | platform::WS_EX_TOOLWINDOW);
    }
  });
}

void USDatePicker::UserControl_Terminate() {
  Step([&] { StopRelease(); });
  // A calendar still torn off goes back under the control, so that it ends with it.
  Step([&] { ReturnCalendar(); });
  m_runMode = false;
  m_mouseExA.reset();
  m_mouseExB.reset();
  m_mouseExInner.reset();
  for (auto* child : {static_cast<host::UserControl*>(m_calendar.get()),
                      static_cast<host::UserControl*>(m_txtCombo.get())}) {
    if (child) Step([&] { child->TerminateControl(); });
  }
}

void USDatePicker::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Change", Change, u"Click", Click, u"KeyDown", KeyDown, u"KeyPress", KeyPress, u"KeyUp",
                       KeyUp, u"MouseDown", MouseDown, u"MouseEnter", MouseEnter, u"MouseExit", MouseExit,
                       u"MouseMove", MouseMove, u"MouseUp", MouseUp, u"DateClicked", DateClicked,
                       u"BeginDisplayCalendar", BeginDisplayCalendar, u"EndDisplayCalendar", EndDisplayCalendar);
}

}  // namespace mx::dates
