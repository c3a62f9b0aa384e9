// USTextBoxEx: properties, lifecycle, persistence, layout and the looks.
#include "entry/USTextBoxEx.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "entry/APITextEvents.h"
#include "entry/ShellAutoComplete.h"
#include "frame/APITooltip.h"
#include "frame/Drawing.h"
#include "frame/Themes.h"
#include "host/Colors.h"
#include "host/Conversion.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Window.h"
#include "utility/DateFormats.h"
#include "utility/MX.h"

namespace mx::entry {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

// Where the inner box sits inside the border, and the room the required mark takes at the
// right: the mark is drawn 4 pixels in from the right edge, clear of the inner box.
constexpr int kInset = 3;
constexpr int kMarkSize = 5;
constexpr int kMarkRight = 4;

[[nodiscard]] OLE_COLOR Shift(OLE_COLOR colour, int16_t by) {
  return static_cast<OLE_COLOR>(utility::MX().ShiftRGBColor(static_cast<int32_t>(colour), by));
}

}  // namespace

USTextBoxEx::USTextBoxEx() : m_inner(std::make_shared<host::TextBox>()) {
  m_borderColor = Shift(10114859, 120);
  m_borderColorOver = Shift(8076800, 120);
  m_font = std::make_shared<host::StdFont>();
  m_fontDisabled = m_font;
  m_fontOver = m_font;
  ConnectInner();
}

USTextBoxEx::~USTextBoxEx() = default;

// ---- Setters: store, PropertyChanged, repaint or forward -----------------------------------------

void USTextBoxEx::Alignment(int16_t value) {
  m_alignment = value;
  m_inner->Alignment(value);
  PropertyChanged(u"Alignment");
}

void USTextBoxEx::AllowNegativeNumber(bool value) {
  m_number.allowNegativeNumber = value;
  PropertyChanged(u"AllowNegativeNumber");
}

void USTextBoxEx::AutoFormatCurrency(bool value) {
  m_number.autoFormatCurrency = value;
  PropertyChanged(u"AutoFormatCurrency");
}

void USTextBoxEx::AutoSelect(bool value) {
  m_autoSelect = value;
  PropertyChanged(u"AutoSelect");
}

#define MX_LOOK_SETTER(Name, member)    \
  void USTextBoxEx::Name(OLE_COLOR value) { \
    member = value;                       \
    PropertyChanged(u## #Name);           \
    ApplyLook(m_look, true);              \
  }
MX_LOOK_SETTER(BackColor, m_backColor)
MX_LOOK_SETTER(BackColorDisabled, m_backColorDisabled)
MX_LOOK_SETTER(BackColorOver, m_backColorOver)
MX_LOOK_SETTER(BorderColor, m_borderColor)
MX_LOOK_SETTER(BorderColorDisabled, m_borderColorDisabled)
MX_LOOK_SETTER(BorderColorOver, m_borderColorOver)
MX_LOOK_SETTER(ForeColor, m_foreColor)
MX_LOOK_SETTER(ForeColorDisabled, m_foreColorDisabled)
MX_LOOK_SETTER(ForeColorOver, m_foreColorOver)
MX_LOOK_SETTER(RequiredColor, m_requiredColor)
#undef MX_LOOK_SETTER

void USTextBoxEx::CurrencyChar(StringView value) {
  m_number.currencyChar = String(value);
  PropertyChanged(u"CurrencyChar");
}

void USTextBoxEx::DataField(StringView value) {
  m_dataField = String(value);
  PropertyChanged(u"DataField");
}

void USTextBoxEx::Decimals(int16_t value) {
  m_number.decimals = value;
  PropertyChanged(u"Decimals");
}

void USTextBoxEx::DecimalSimbol(StringView value) {
  m_number.decimalSimbol = String(value);
  PropertyChanged(u"DecimalSimbol");
}

void USTextBoxEx::Enabled(bool value) {
  UserControl::Enabled(value);
  m_inner->Enabled(value);
  PropertyChanged(u"Enabled");
  ApplyLook(value ? (m_hasFocus ? kLookFocused : kLookNormal) : kLookDisabled, true);
}

void USTextBoxEx::Font(std::shared_ptr<host::StdFont> value) {
  if (!value) return;
  m_font = std::move(value);
  PropertyChanged(u"Font");
  ApplyLook(m_look, true);
}

void USTextBoxEx::FontDisabled(std::shared_ptr<host::StdFont> value) {
  if (!value) return;
  m_fontDisabled = std::move(value);
  PropertyChanged(u"FontDisabled");
  ApplyLook(m_look, true);
}

void USTextBoxEx::FontOver(std::shared_ptr<host::StdFont> value) {
  if (!value) return;
  m_fontOver = std::move(value);
  PropertyChanged(u"FontOver");
  ApplyLook(m_look, true);
}

void USTextBoxEx::FormatType(int32_t value) {
  m_number.formatType = value;
  switch (value) {
    case To_Text:
      m_numberOnly = false;
      Alignment(0);
      Text(u"");
      SelStart(0);
      ApplyMaxLength(255);
      break;
    case To_Number:
      m_mask.clear();
      m_numberOnly = true;
      Alignment(0);
      Text(u"0");
      SelStart(host::Len(Text()));
      ApplyMaxLength(9);
      break;
    case To_Currency:
      m_mask.clear();
      m_numberOnly = true;
      Alignment(1);
      // The zero amount is shown as it is, in the currency's own layout ("R$ 0,00").
      SetInnerText(CurrencyZeroText(m_number));
      m_lastText = m_inner->Text();
      SelStart(host::Len(m_inner->Text()));
      ApplyMaxLength(29);
      break;
    default: break;
  }
  PropertyChanged(u"FormatType");
}

void USTextBoxEx::Locked(bool value) {
  m_locked = value;
  m_inner->Locked(value);
  PropertyChanged(u"Locked");
}

void USTextBoxEx::Mask(StringView value) {
  // Masks belong to text entries only; number and currency entries ignore them.
  if (m_number.formatType != To_Text) return;
  m_mask = String(value);
  if (!m_mask.empty()) {
    ApplyMaxLength(static_cast<int32_t>(m_mask.size()));
    SetInnerText(MaskTemplate(m_mask));
  } else {
    ApplyMaxLength(255);
    SetInnerText(u"");
  }
  m_maskCaret = 0;
  m_lastText = m_inner->Text();
  PropertyChanged(u"Mask");
}

void USTextBoxEx::MaskType(int32_t value) {
  m_maskType = value;
  PropertyChanged(u"MaskType");
}

int32_t USTextBoxEx::MaxLength() const { return m_inner->MaxLength(); }

void USTextBoxEx::MaxLength(int32_t value) {
  ApplyMaxLength(value);
  PropertyChanged(u"MaxLength");
}

void USTextBoxEx::ApplyMaxLength(int32_t value) { m_inner->MaxLength(std::max(0, value)); }

void USTextBoxEx::GrowMaxLengthTo(int32_t length) {
  if (length > m_inner->MaxLength() && m_inner->MaxLength() != 0) ApplyMaxLength(length);
}

void USTextBoxEx::NumberOnly(bool value) {
  m_numberOnly = value;
  PropertyChanged(u"NumberOnly");
}

void USTextBoxEx::OLEDragMode(int16_t value) {
  m_oleDragMode = value;
  PropertyChanged(u"OLEDragMode");
}

void USTextBoxEx::OLEDropMode(int16_t value) {
  m_oleDropMode = value;
  PropertyChanged(u"OLEDropMode");
}

String USTextBoxEx::PasswordChar() const { return m_inner->PasswordChar(); }

void USTextBoxEx::PasswordChar(StringView value) {
  m_inner->PasswordChar(value);
  PropertyChanged(u"PasswordChar");
}

void USTextBoxEx::Required(bool value) {
  m_required = value;
  PropertyChanged(u"Required");
  Layout();
  ApplyLook(m_look, true);
}

String USTextBoxEx::Text() const { return m_inner->Text(); }

void USTextBoxEx::Text(StringView value) {
  String text(value);
  if (text.empty()) m_maskCaret = 0;
  if (m_number.formatType == To_Text) {
    if (!m_mask.empty()) text = ApplyMask(text, m_mask, m_maskType, m_numberOnly);
    else if (m_numberOnly) text = utility::ReturnNumbersOnly(text, false);
    text = ApplyTextCase(text, m_textCase);
  } else {
    text = FormatNumberEntry(text, m_number);
    GrowMaxLengthTo(host::Len(host::Trim(text)));
  }
  SetInnerText(text);
  if (!m_hasFocus) {
    if (m_autoSelect) {
      // Select all, as EM_SETSEL 0, -1 does.
      Step([&] { m_inner->SelStart(0); m_inner->SelLength(host::Len(m_inner->Text())); });
    } else if (text != MaskTemplate(m_mask)) {
      m_inner->SelStart(0);
    }
  } else if (!m_autoSelect && text != MaskTemplate(m_mask)) {
    m_inner->SelStart(host::Len(m_inner->Text()));
  }
  m_lastText = m_inner->Text();
  PropertyChanged(u"Text");
}

void USTextBoxEx::SetInnerText(StringView value) {
  // A text longer than the limit would be cut by the inner box: the limit gives way first.
  GrowMaxLengthTo(static_cast<int32_t>(value.size()));
  m_inner->Text(value);
}

void USTextBoxEx::TextCase(int32_t value) {
  m_textCase = value;
  PropertyChanged(u"TextCase");
}

void USTextBoxEx::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  ApplyLook(m_look, true);
}

void USTextBoxEx::ApplyTheme() {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  m_backColor = 0xFFFFFF;
  m_backColorDisabled = 0xFFFFFF;
  m_backColorOver = 0xF4FFFF;
  m_foreColor = m_foreColorDisabled = m_foreColorOver = 0x000000;
  m_borderColorDisabled = c(frame::ThemeBorderColorDisabled);
  if (m_theme == frame::Office_Theme_Blue || m_theme == frame::Office_Theme_Silver) {
    m_borderColor = c(frame::ThemeBorderColor);
    m_borderColorOver = c(frame::ThemeBorderColorOver);
  } else {
    m_borderColor = Shift(c(frame::ThemeBorderColor), 120);
    m_borderColorOver = Shift(c(frame::ThemeBorderColorOver), 120);
  }
}

#define MX_STORE_SETTER(Name, Type, member) \
  void USTextBoxEx::Name(Type value) {      \
    member = value;                         \
    PropertyChanged(u## #Name);             \
  }
#undef MX_STORE_SETTER

// ---- Read-only views -------------------------------------------------------------------------------

double USTextBoxEx::TextCdbl() const {
  String t = Text();
  if (!m_number.currencyChar.empty()) t = host::Replace(t, m_number.currencyChar, u"");
  double value = 0;
  if (host::ParseNumber(host::Trim(t), value) != host::NumberParse::Ok) return 0;
  return value;
}

String USTextBoxEx::TextTrim() const { return host::Trim(Text()); }
int32_t USTextBoxEx::TextLen() const { return host::Len(Text()); }
int32_t USTextBoxEx::TextLenEx() const { return host::Len(TextTrim()); }
String USTextBoxEx::TextUCase() const { return host::UCase(Text()); }
String USTextBoxEx::TextLCase() const { return host::LCase(Text()); }
String USTextBoxEx::TextNoMask() const { return entry::TextNoMask(Text(), m_mask, m_maskType); }
String USTextBoxEx::TextNoMaskEx() const { return host::Trim(TextNoMask()); }

Variant USTextBoxEx::TextAsDate(int32_t xFormatToValidate, int32_t xFormatToReturn) const {
  // Eight digits or nothing: a day, a month and a four-digit year, whatever the layout says.
  if (host::Len(TextNoMaskEx()) != 8) return Variant::Null();
  if (!utility::ValidateDateText(Text(), xFormatToValidate)) return Variant::Null();
  return Variant(utility::ConvertDateText(Text(), host::CStr(Variant(xFormatToReturn))));
}

platform::HWND USTextBoxEx::hWndEx() const { return m_inner->hWnd(); }
bool USTextBoxEx::IsValidEmail() const { return utility::MX().IsValidEmail(Text()); }
String USTextBoxEx::ReturnNumbersOnly() const { return utility::MX().ReturnNumbersOnly(Text()); }
String USTextBoxEx::ReturnTextOnly() const { return utility::MX().ReturnTextsOnly(Text()); }

int32_t USTextBoxEx::TotalLines() const {
  // A break is "\r\n" as the inner box stores it; a lone "\n" counts as one too.
  const String t = TextTrim();
  return 1 + static_cast<int32_t>(std::count(t.begin(), t.end(), u'\n'));
}

int32_t USTextBoxEx::SelStart() const { return m_inner->SelStart(); }
void USTextBoxEx::SelStart(int32_t value) { m_inner->SelStart(value); }
int32_t USTextBoxEx::SelLength() const { return m_inner->SelLength(); }
void USTextBoxEx::SelLength(int32_t value) { m_inner->SelLength(value); }
String USTextBoxEx::SelText() const { return m_inner->SelText(); }
void USTextBoxEx::SelText(StringView value) { m_inner->SelText(value); }

// ---- Methods -------------------------------------------------------------------------------------

bool USTextBoxEx::LoadTextFile(StringView FileName) {
  std::ifstream in(host::ToUtf8(FileName), std::ios::binary);
  if (!in) return false;
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  // The whole length goes in as text: UTF-8 when the bytes read as such, else one character per
  // byte, as a plain code-page file reads.
  String text = host::FromUtf8(bytes);
  if (host::ToUtf8(text) != bytes) text.assign(bytes.begin(), bytes.end()), std::transform(
      bytes.begin(), bytes.end(), text.begin(), [](char b) { return static_cast<char16_t>(static_cast<uint8_t>(b)); });
  GrowMaxLengthTo(static_cast<int32_t>(text.size()));
  m_inner->Text(text);
  return true;
}

void USTextBoxEx::ClearControl() {
  m_maskCaret = 0;
  if (m_number.formatType == To_Number || m_number.formatType == To_Currency) Text(u"0");
  else Text(u"");
  SelStart(0);
}

void USTextBoxEx::CreateToolTip() {
  // Without a description there is nothing to show: no tip window is made.
  if (!m_userMode || m_tip.description.empty()) return;
  if (!m_toolTip) m_toolTip = std::make_unique<frame::APITooltip>();
  // The pointer rests over the inner box, which covers nearly all of the control.
  m_tip.CreateOn(*m_toolTip, m_inner->hWnd() ? m_inner->hWnd() : UserControl::hWnd());
}

void USTextBoxEx::DestroyToolTip() { m_toolTip.reset(); }

void USTextBoxEx::About() { controls::ShowAboutBox(); }

// ---- Lifecycle -------------------------------------------------------------------------------------

void USTextBoxEx::UserControl_Initialize() {}

void USTextBoxEx::UserControl_InitProperties() {
  Step([&] { m_font = Ambient().Font(); });
  m_fontDisabled = m_font;
  m_fontOver = m_font;
  Step([&] { ApplyTheme(); });
  ApplyMaxLength(255);
}

void USTextBoxEx::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  auto readFont = [&](const char16_t* key) {
    std::shared_ptr<host::StdFont> f;
    Step([&] { f = std::dynamic_pointer_cast<host::StdFont>(saved.Read(key, Variant::Nothing()).Obj()); });
    if (!f) Step([&] { f = Ambient().Font(); });
    return f ? f : std::make_shared<host::StdFont>();
  };
  m_font = readFont(u"Font");
  m_fontDisabled = readFont(u"FontDisabled");
  m_fontOver = readFont(u"FontOver");
  Step([&] { m_alignment = saved.Read(u"Alignment", Variant(int16_t{0})).ToInteger(); });
  Step([&] { m_number.allowNegativeNumber = saved.Read(u"AllowNegativeNumber", Variant(true)).ToBoolean(); });
  Step([&] { m_number.autoFormatCurrency = saved.Read(u"AutoFormatCurrency", Variant(false)).ToBoolean(); });
  Step([&] { m_autoSelect = saved.Read(u"AutoSelect", Variant(true)).ToBoolean(); });
  Step([&] { m_backColor = static_cast<OLE_COLOR>(saved.Read(u"BackColor", Variant(int32_t{0xFFFFFF})).ToLong()); });
  Step([&] { m_backColorDisabled = static_cast<OLE_COLOR>(saved.Read(u"BackColorDisabled", Variant(int32_t{0xFFFFFF})).ToLong()); });
  Step([&] { m_backColorOver = static_cast<OLE_COLOR>(saved.Read(u"BackColorOver", Variant(int32_t{0xF4FFFF})).ToLong()); });
  Step([&] { m_borderColor = static_cast<OLE_COLOR>(saved.Read(u"BorderColor", Variant(static_cast<int32_t>(Shift(10114859, 120)))).ToLong()); });
  Step([&] { m_borderColorDisabled = static_cast<OLE_COLOR>(saved.Read(u"BorderColorDisabled", Variant(int32_t{14405324})).ToLong()); });
  Step([&] { m_borderColorOver = static_cast<OLE_COLOR>(saved.Read(u"BorderColorOver", Variant(static_cast<int32_t>(Shift(8076800, 120)))).ToLong()); });
  Step([&] { m_number.currencyChar = saved.Read(u"CurrencyChar", Variant(String(u"R$"))).ToString(); });
  Step([&] { m_dataField = saved.Read(u"DataField", Variant(String())).ToString(); });
  Step([&] { m_number.decimals = saved.Read(u"Decimals", Variant(int16_t{2})).ToInteger(); });
  Step([&] { m_number.decimalSimbol = saved.Read(u"DecimalSimbol", Variant(String(u","))).ToString(); });
  bool enabled = true;
  Step([&] { enabled = saved.Read(u"Enabled", Variant(true)).ToBoolean(); });
  Step([&] { m_foreColor = static_cast<OLE_COLOR>(saved.Read(u"ForeColor", Variant(int32_t{0})).ToLong()); });
  Step([&] { m_foreColorDisabled = static_cast<OLE_COLOR>(saved.Read(u"ForeColorDisabled", Variant(int32_t{0})).ToLong()); });
  Step([&] { m_foreColorOver = static_cast<OLE_COLOR>(saved.Read(u"ForeColorOver", Variant(int32_t{0})).ToLong()); });
  Step([&] { m_number.formatType = saved.Read(u"FormatType", Variant(int32_t{0})).ToLong(); });
  Step([&] { m_locked = saved.Read(u"Locked", Variant(false)).ToBoolean(); });
  Step([&] { m_mask = saved.Read(u"Mask", Variant(String())).ToString(); });
  Step([&] { m_maskType = saved.Read(u"MaskType", Variant(int32_t{2})).ToLong(); });
  Step([&] { ApplyMaxLength(saved.Read(u"MaxLength", Variant(int16_t{255})).ToInteger()); });
  Step([&] { m_numberOnly = saved.Read(u"NumberOnly", Variant(false)).ToBoolean(); });
  Step([&] { m_oleDragMode = saved.Read(u"OLEDragMode", Variant(int16_t{0})).ToInteger(); });
  Step([&] { m_oleDropMode = saved.Read(u"OLEDropMode", Variant(int16_t{0})).ToInteger(); });
  Step([&] { m_inner->PasswordChar(saved.Read(u"PasswordChar", Variant(String())).ToString()); });
  Step([&] { m_required = saved.Read(u"Required", Variant(false)).ToBoolean(); });
  Step([&] { m_requiredColor = static_cast<OLE_COLOR>(saved.Read(u"RequiredColor", Variant(int32_t{0x0000C0})).ToLong()); });
  Step([&] { m_textCase = saved.Read(u"TextCase", Variant(int32_t{0})).ToLong(); });
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{2})).ToLong(); });
  Step([&] { m_tip.Read(PropBag); });
  // The text goes in last, through the setter, so that the mask and number rules lay it out.
  String text;
  Step([&] { text = saved.Read(u"Text", Variant(String())).ToString(); });
  Step([&] { m_inner->Alignment(m_alignment); });
  Step([&] { m_inner->Locked(m_locked); });
  if (m_number.formatType != To_Text && text.empty()) text = u"0";
  if (!m_mask.empty() && text.empty()) text = MaskTemplate(m_mask);
  Step([&] { Text(text); });
  Step([&] { UserControl::Enabled(enabled); m_inner->Enabled(enabled); });
}

void USTextBoxEx::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  auto colour = [](OLE_COLOR c) { return Variant(static_cast<int32_t>(c)); };
  write(u"Alignment", Variant(m_alignment), Variant(int16_t{0}));
  write(u"AllowNegativeNumber", Variant(m_number.allowNegativeNumber), Variant(true));
  write(u"AutoFormatCurrency", Variant(m_number.autoFormatCurrency), Variant(false));
  write(u"AutoSelect", Variant(m_autoSelect), Variant(true));
  write(u"BackColor", colour(m_backColor), colour(0xFFFFFF));
  write(u"BackColorDisabled", colour(m_backColorDisabled), colour(0xFFFFFF));
  write(u"BackColorOver", colour(m_backColorOver), colour(0xF4FFFF));
  write(u"BorderColor", colour(m_borderColor), colour(Shift(10114859, 120)));
  write(u"BorderColorDisabled", colour(m_borderColorDisabled), colour(14405324));
  write(u"BorderColorOver", colour(m_borderColorOver), colour(Shift(8076800, 120)));
  write(u"CurrencyChar", Variant(m_number.currencyChar), Variant(String(u"R$")));
  write(u"DataField", Variant(m_dataField), Variant(String()));
  write(u"Decimals", Variant(m_number.decimals), Variant(int16_t{2}));
  write(u"DecimalSimbol", Variant(m_number.decimalSimbol), Variant(String(u",")));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"Font", Variant(m_font), Variant::Nothing());
  write(u"FontDisabled", Variant(m_fontDisabled), Variant::Nothing());
  write(u"FontOver", Variant(m_fontOver), Variant::Nothing());
  write(u"ForeColor", colour(m_foreColor), colour(0));
  write(u"ForeColorDisabled", colour(m_foreColorDisabled), colour(0));
  write(u"ForeColorOver", colour(m_foreColorOver), colour(0));
  write(u"FormatType", Variant(m_number.formatType), Variant(int32_t{0}));
  write(u"Locked", Variant(m_locked), Variant(false));
  write(u"Mask", Variant(m_mask), Variant(String()));
  write(u"MaskType", Variant(m_maskType), Variant(int32_t{2}));
  write(u"MaxLength", Variant(static_cast<int16_t>(std::min(MaxLength(), 32767))), Variant(int16_t{255}));
  write(u"NumberOnly", Variant(m_numberOnly), Variant(false));
  write(u"OLEDragMode", Variant(m_oleDragMode), Variant(int16_t{0}));
  write(u"OLEDropMode", Variant(m_oleDropMode), Variant(int16_t{0}));
  write(u"PasswordChar", Variant(PasswordChar()), Variant(String()));
  write(u"Required", Variant(m_required), Variant(false));
  write(u"RequiredColor", colour(m_requiredColor), colour(0x0000C0));
  write(u"Text", Variant(Text()), Variant(String()));
  write(u"Value", Variant(Text()), Variant(String()));
  write(u"TextCase", Variant(m_textCase), Variant(int32_t{0}));
  write(u"Theme", Variant(m_theme), Variant(int32_t{2}));
  Step([&] { m_tip.Write(PropBag); });
}

void USTextBoxEx::UserControl_Resize() {
  float sw = 0, sh = 0;
  Step([&] { sw = ScaleWidth(); sh = ScaleHeight(); });
  Step([&] {
    if (sh < kMinimumSize) Height(static_cast<float>(kMinimumSize) * host::GetScreen().TwipsPerPixelY());
  });
  Step([&] {
    if (sw < kMinimumSize) Width(static_cast<float>(kMinimumSize) * host::GetScreen().TwipsPerPixelX());
  });
  Step([&] { Layout(); });
  Step([&] { ApplyLook(UserControl::Enabled() ? (m_hasFocus ? kLookFocused : kLookNormal) : kLookDisabled, true); });
}

void USTextBoxEx::UserControl_Show() {
  Step([&] { Layout(); });
  Step([&] { m_inner->Show(); });
  Step([&] { CreateToolTip(); });
}

void USTextBoxEx::UserControl_GotFocus() {
  // The control's window only passes the focus on: typing happens in the inner box.
  Step([&] {
    if (m_inner->hWnd()) platform::SetFocus(m_inner->hWnd());
  });
  if (m_focusPassing) {
    // The focus did not come back to the inner box (a handler moved it on): the leaving that
    // was held back when it passed through is done now.
    m_focusPassing = false;
    if (m_hasFocus && platform::GetFocus() != m_inner->hWnd()) Step([&] { LeaveFocus(); });
  }
}

void USTextBoxEx::UserControl_Terminate() {
  m_userMode = false;
  Step([&] { FinalizeAutoComplete(); });
  Step([&] { m_shellComplete.reset(); });
  Step([&] { DestroySubClass(); });
  Step([&] { m_toolTip.reset(); });
  Step([&] { m_inner->TerminateControl(); });
}

// ---- Layout and looks ------------------------------------------------------------------------------

void USTextBoxEx::Layout() {
  const platform::HWND hwnd = UserControl::hWnd();
  if (!hwnd) return;
  platform::RECT rc{};
  platform::GetClientRect(hwnd, &rc);
  const int w = rc.right - rc.left;
  const int h = rc.bottom - rc.top;
  const int markRoom = m_required ? kMarkSize + kMarkRight - kInset + 1 : 0;
  const int innerW = std::max(1, w - 2 * kInset - markRoom);
  const int innerH = std::max(1, h - 2 * kInset);
  m_inner->BorderStyle(0);
  m_inner->Create(hwnd, kInset, kInset, innerW, innerH);
}

std::shared_ptr<host::StdFont> USTextBoxEx::LookFont(int32_t look) const {
  if (look == kLookDisabled) return m_fontDisabled;
  if (look == kLookFocused) return m_fontOver;
  return m_font;
}

void USTextBoxEx::ApplyLook(int32_t xState, bool xRefresh) {
  if (!UserControl::Enabled()) xState = kLookDisabled;
  m_look = xState;
  OLE_COLOR back = m_backColor, fore = m_foreColor, border = m_borderColor;
  if (xState == kLookDisabled) {
    back = m_backColorDisabled;
    fore = m_foreColorDisabled;
    border = m_borderColorDisabled;
  } else if (xState == kLookFocused) {
    back = m_backColorOver;
    fore = m_foreColorOver;
    border = m_borderColorOver;
  }
  // A font is only handed over when it is another face, so that a look change keeps the
  // inner box's layout where nothing visible differs.
  const std::shared_ptr<host::StdFont> font = LookFont(xState);
  Step([&] {
    if (font && (m_inner->Font()->Name() != font->Name() || m_inner->Font() != font)) m_inner->Font(font);
  });
  Step([&] {
    if (m_inner->BackColor() != back) m_inner->BackColor(back);
    if (m_inner->ForeColor() != fore) m_inner->ForeColor(fore);
  });
  if (!xRefresh || !UserControl::hWnd()) return;
  Step([&] {
    UserControl::BackColor(back);
    AutoRedraw(true);
    Cls();
    const platform::HDC dc = hDC();
    platform::RECT rc{};
    platform::GetClientRect(UserControl::hWnd(), &rc);
    // The border: one pixel around the whole client area in the look's colour.
    frame::FillRectColor(dc, platform::RECT{rc.left, rc.top, rc.right, rc.top + 1}, border);
    frame::FillRectColor(dc, platform::RECT{rc.left, rc.bottom - 1, rc.right, rc.bottom}, border);
    frame::FillRectColor(dc, platform::RECT{rc.left, rc.top, rc.left + 1, rc.bottom}, border);
    frame::FillRectColor(dc, platform::RECT{rc.right - 1, rc.top, rc.right, rc.bottom}, border);
    if (m_required) {
      // A small filled triangle in the top right corner, its right side 4 pixels in from the
      // right edge: one row shorter per pixel down.
      const int right = rc.right - kMarkRight;
      for (int row = 0; row < kMarkSize; ++row) {
        frame::FillRectColor(dc, platform::RECT{right - (kMarkSize - row), rc.top + kInset + row, right,
                                                rc.top + kInset + row + 1}, m_requiredColor);
      }
    }
    AutoRedraw(false);
  });
}

}  // namespace mx::entry
