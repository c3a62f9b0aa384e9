// USButton: properties, lifecycle, persistence and the click machine.
#include "controls/USButton.h"

#include <algorithm>
#include <cwctype>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/HandCursor.h"
#include "frame/APIMouseEvents.h"
#include "frame/APITooltip.h"
#include "frame/Themes.h"
#include "host/Err.h"
#include "host/Screen.h"
#include "image/API32bppDIB.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::Variant;

namespace {

// The written defaults of these two keys differ from their read defaults: a value equal to the
// written one is not saved and comes back as the read one.
constexpr OLE_COLOR kBorderColorDownWritten = 0xFFFFFF;
constexpr OLE_COLOR kBorderColorOverWritten = 0xFFFFFF;

// The value a key that acts as a click gives LastButton, and the one a double click leaves so
// that the host's click after it is dropped.
constexpr int32_t kLastButtonKey = 1;
constexpr int32_t kLastButtonDoubleClick = 8;

char16_t LowerCase(char16_t c) {
  if (c < 0x80) return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
  return static_cast<char16_t>(std::towlower(static_cast<wint_t>(c)));
}

// Colour `index` (1 to 4) of one of the four-colour gradients; 381 outside that range.
template <typename Colour>
Colour& ColourAt(Colour (&colours)[4], int32_t index) {
  if (index < 1 || index > 4) host::Raise(381, u"USButton");
  return colours[index - 1];
}

}  // namespace

String AccessKeyFromEnd(StringView caption) {
  const auto length = static_cast<int32_t>(caption.size());
  if (length < 2) return {};
  // Positions are 1-based as the rule counts them. The last character cannot be a marker (no
  // character follows it), so the search starts one before it.
  int32_t start = length - 1;
  while (start > 0) {
    int32_t found = 0;
    for (int32_t p = start; p >= 1; --p) {
      if (caption[static_cast<size_t>(p - 1)] == u'&') {
        found = p;
        break;
      }
    }
    if (found == 0) return {};
    const char16_t next = caption[static_cast<size_t>(found)];
    if (found == 1 || caption[static_cast<size_t>(found - 2)] != u'&') return String(1, LowerCase(next));
    // A doubled "&" stands for the character itself: skip the pair.
    start = found - 2;
  }
  return {};
}

USButton::USButton() = default;

USButton::~USButton() = default;

// ---- Setters ----------------------------------------------------------------------------------

void USButton::Alignment(int32_t value) {
  m_alignment = value;
  PropertyChanged(u"Alignment");
  Refresh();
}

void USButton::CropBorders(int32_t value) {
  m_cropBorders = value;
  PropertyChanged(u"CropBorders");
  Refresh();
}

void USButton::Caption(StringView value) {
  m_caption = String(value);
  PropertyChanged(u"Caption");
  AccessKeys(AccessKeyFromEnd(m_caption));
  Refresh();
}

void USButton::CaptionDistance(int16_t value) {
  m_captionDistance = value;
  PropertyChanged(u"CaptionDistance");
  Refresh();
}

void USButton::CaptionWordBreak(bool value) {
  m_captionWordBreak = value;
  PropertyChanged(u"CaptionWordBreak");
  Refresh();
}

void USButton::CheckBoxMode(bool value) {
  m_checkBoxMode = value;
  // Reported under the property's name although the bag key is "CheckBox".
  PropertyChanged(u"CheckBoxMode");
  DrawState(-1, true);
}

void USButton::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  DrawState(value ? (m_hasFocus ? kStateOver : kStateNormal) : kStateDisabled, false);
}

void USButton::Locked(bool value) {
  m_locked = value;
  PropertyChanged(u"Locked");
}

void USButton::Redraw(bool value) {
  const bool wasOff = !m_redraw;
  m_redraw = value;
  if (wasOff && value) Refresh();
  PropertyChanged(u"Redraw");
}

void USButton::Value(bool value) {
  m_value = value;
  Step([&] { PropertyChanged(u"Value"); });
  if (!value || m_checkBoxMode) {
    Step([&] { DrawState(-1, true); });
  } else if (m_userMode) {
    // A plain button set True clicks itself without an event: it paints and lets go again.
    m_lastButton = kLastButtonKey;
    Step([&] { RaiseClick(false); });
  } else {
    m_value = false;
  }
}

void USButton::HandPointer(bool value) {
  m_handPointer = value;
  Step([&] { PropertyChanged(u"HandPointer"); });
  ApplyHandPointer();
}

void USButton::ApplyHandPointer() {
  if (m_handPointer) {
    Step([&] { UserControl::MousePointer(host::vbCustom); });
    Step([&] { UserControl::MouseIcon(HandCursorPicture()); });
  } else {
    Step([&] { UserControl::MousePointer(host::vbDefault); });
    Step([&] { UserControl::MouseIcon(nullptr); });
  }
}

void USButton::ShowFocusRect(bool value) {
  m_showFocusRect = value;
  PropertyChanged(u"ShowFocusRect");
}

void USButton::ShowFocusRectDown(bool value) {
  m_showFocusRectDown = value;
  PropertyChanged(u"ShowFocusRectDown");
}

void USButton::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  DrawState(-1, true);
}

void USButton::ApplyTheme() {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  m_cropBorders = Dont_Crop;
  m_gradientColors = frame::Two_Colors;
  m_foreColor = c(frame::ThemeForeColor);
  m_foreColorDisabled = c(frame::ThemeForeColorDisabled);
  m_foreColorDown = c(frame::ThemeForeColorDown);
  m_foreColorOver = c(frame::ThemeForeColorOver);
  m_borderColor = c(frame::ThemeBorderColor);
  m_borderColorDisabled = c(frame::ThemeBorderColorDisabled);
  m_borderColorDown = c(frame::ThemeBorderColorDown);
  m_borderColorOver = c(frame::ThemeBorderColorOver);
  for (int32_t i = 0; i < 4; ++i) {
    m_gradient[i] = c(frame::ThemeGradientColor1 + i);
    m_gradientDisabled[i] = c(frame::ThemeGradientColorDisabled1 + i);
    m_gradientDown[i] = c(frame::ThemeGradientColorDown1 + i);
    m_gradientOver[i] = c(frame::ThemeGradientColorOver1 + i);
  }
}

void USButton::GradientColors(int32_t value) {
  m_gradientColors = value;
  PropertyChanged(u"GradientColors");
  DrawState(-1, true);
}

// Colours of the states normal and disabled are on the screen most of the time and repaint;
// those of over and down only matter from the next state change on.
void USButton::BorderColor(OLE_COLOR value) {
  m_borderColor = value;
  PropertyChanged(u"BorderColor");
  DrawState(-1, true);
}
void USButton::BorderColorDisabled(OLE_COLOR value) {
  m_borderColorDisabled = value;
  PropertyChanged(u"BorderColorDisabled");
  DrawState(-1, true);
}
void USButton::BorderColorOver(OLE_COLOR value) {
  m_borderColorOver = value;
  PropertyChanged(u"BorderColorOver");
}
void USButton::BorderColorDown(OLE_COLOR value) {
  m_borderColorDown = value;
  PropertyChanged(u"BorderColorDown");
}
void USButton::ForeColor(OLE_COLOR value) {
  m_foreColor = value;
  PropertyChanged(u"ForeColor");
  DrawState(-1, true);
}
void USButton::ForeColorDisabled(OLE_COLOR value) {
  m_foreColorDisabled = value;
  PropertyChanged(u"ForeColorDisabled");
  DrawState(-1, true);
}
void USButton::ForeColorOver(OLE_COLOR value) {
  m_foreColorOver = value;
  PropertyChanged(u"ForeColorOver");
}
void USButton::ForeColorDown(OLE_COLOR value) {
  m_foreColorDown = value;
  PropertyChanged(u"ForeColorDown");
}

// The gradient setters store and persist under the key with the colour's number. The normal
// and disabled colours repaint at once; the over and down colours show at the next change of
// state.
void USButton::SetGradientColour(OLE_COLOR (&colours)[4], const char16_t* key, int32_t index, OLE_COLOR value,
                                 bool repaint) {
  ColourAt(colours, index) = value;
  PropertyChanged(key + String(1, static_cast<char16_t>(u'0' + index)));
  if (repaint) DrawState(-1, true);
}
OLE_COLOR USButton::GradientColor(int32_t index) const { return ColourAt(m_gradient, index); }
void USButton::GradientColor(int32_t index, OLE_COLOR value) {
  SetGradientColour(m_gradient, u"GradientColor", index, value, true);
}
OLE_COLOR USButton::GradientColorDisabled(int32_t index) const { return ColourAt(m_gradientDisabled, index); }
void USButton::GradientColorDisabled(int32_t index, OLE_COLOR value) {
  SetGradientColour(m_gradientDisabled, u"GradientColorDisabled", index, value, true);
}
OLE_COLOR USButton::GradientColorOver(int32_t index) const { return ColourAt(m_gradientOver, index); }
void USButton::GradientColorOver(int32_t index, OLE_COLOR value) {
  SetGradientColour(m_gradientOver, u"GradientColorOver", index, value, false);
}
OLE_COLOR USButton::GradientColorDown(int32_t index) const { return ColourAt(m_gradientDown, index); }
void USButton::GradientColorDown(int32_t index, OLE_COLOR value) {
  SetGradientColour(m_gradientDown, u"GradientColorDown", index, value, false);
}

void USButton::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
  // Any other pointer than the custom one ends the hand; not marked changed on purpose.
  if (value != host::vbCustom) m_handPointer = false;
}

void USButton::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  const bool hasPicture = value && !value->IsEmpty();
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
  MousePointer(hasPicture ? host::vbCustom : host::vbDefault);
}

// ---- Pictures ---------------------------------------------------------------------------------

bool USButton::HasPicture() const { return (m_picture && !m_picture->IsEmpty()) || !m_pictureBytes.empty(); }

void USButton::Picture(std::shared_ptr<host::StdPicture> value) {
  m_picture = std::move(value);
  PropertyChanged(u"PicNormal");
  Refresh();
}

// The over and down pictures share one rule: the first picture given becomes the normal one, and
// a picture of another size than the normal one switches the size to custom.
void USButton::SetStatePicture(std::shared_ptr<host::StdPicture>& slot, std::shared_ptr<host::StdPicture> value,
                               const char16_t* key, bool shownNow) {
  if (!value || value->IsEmpty()) {
    slot = nullptr;
    PropertyChanged(key);
    return;
  }
  if (!m_picture || m_picture->IsEmpty()) {
    Picture(std::move(value));
    return;
  }
  if (m_pictureSize == Picture_Normal &&
      (value->Width() != m_picture->Width() || value->Height() != m_picture->Height())) {
    PictureSize(Picture_Custom);
  }
  slot = std::move(value);
  PropertyChanged(key);
  if (shownNow) Refresh();
}

void USButton::PictureOn(std::shared_ptr<host::StdPicture> value) {
  SetStatePicture(m_pictureOn, std::move(value), u"PicHot", m_mouseOver);
}

void USButton::PictureOver(std::shared_ptr<host::StdPicture> value) {
  SetStatePicture(m_pictureOver, std::move(value), u"PicDown", m_pressed);
}

void USButton::PictureToChange(std::shared_ptr<host::StdPicture> value) {
  m_pictureToChange = std::move(value);
  PropertyChanged(u"PicToChange");
}

void USButton::PictureAlignment(int32_t value) {
  m_pictureAlignment = value;
  PropertyChanged(u"PicAlign");
  Refresh();
}

void USButton::PictureOpacity(int32_t /*value*/) {
  // The value given is dropped: only the opacity read from the bag (or the default) counts.
  m_pictureOpacity = std::clamp(m_pictureOpacity, 0, 100);
  PropertyChanged(u"PicOpacity");
  DrawState(-1, true);
}

void USButton::PictureSize(int32_t value) {
  m_pictureSize = value;
  PropertyChanged(u"PicSize");
  static constexpr int32_t kSizes[] = {16, 24, 32, 48};
  if (value >= Picture_16x16 && value <= Picture_48x48) {
    m_pictureSizeX = m_pictureSizeY = kSizes[value - 1];
  } else if (value == Picture_Normal && m_picture && !m_picture->IsEmpty()) {
    // The picture's own size, from HiMetric; the X slot takes the height and Y the width.
    m_pictureSizeX = static_cast<int32_t>(ScaleY(m_picture->Height()));
    m_pictureSizeY = static_cast<int32_t>(ScaleY(m_picture->Width()));
  }
  Refresh();
}

void USButton::PictureSizeX(int32_t value) {
  m_pictureSizeX = value;
  m_pictureSize = Picture_Custom;
  PropertyChanged(u"PicSizeH");
  PropertyChanged(u"PicSize");
  Refresh();
}

void USButton::PictureSizeY(int32_t value) {
  m_pictureSizeY = value;
  m_pictureSize = Picture_Custom;
  PropertyChanged(u"PicSizeW");
  PropertyChanged(u"PicSize");
  Refresh();
}

// ---- Methods ----------------------------------------------------------------------------------

void USButton::About() { ShowAboutBox(); }

void USButton::Refresh() {
  m_needLayout = true;
  DrawState(-1, true);
}

void USButton::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick, u"KeyDown", KeyDown, u"KeyPress", KeyPress,
                       u"KeyUp", KeyUp, u"MouseDown", MouseDown, u"MouseEnter", MouseEnter, u"MouseExit",
                       MouseExit, u"MouseMove", MouseMove, u"MouseUp", MouseUp);
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USButton::UserControl_Initialize() {}

void USButton::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  Step([&] { m_caption = Ambient().DisplayName(); });
  Step([&] { AccessKeys(AccessKeyFromEnd(m_caption)); });
  m_alignment = On_Center;
  m_cropBorders = Dont_Crop;
  m_captionDistance = 0;
  m_captionWordBreak = false;
  m_checkBoxMode = false;
  Step([&] { UserControl::Enabled(true); });
  m_borderColor = 0x9A572B;
  m_borderColorDisabled = 0xDBCECC;
  m_borderColorOver = 0x7B3E00;
  m_borderColorDown = 0x501A00;
  m_foreColor = m_foreColorOver = m_foreColorDown = 0xFFFFFF;
  m_foreColorDisabled = 0x008000;
  std::fill(std::begin(m_gradient), std::end(m_gradient), 0x9A572B);
  std::fill(std::begin(m_gradientDisabled), std::end(m_gradientDisabled), 0xDBCECC);
  std::fill(std::begin(m_gradientOver), std::end(m_gradientOver), 0x7B3E00);
  std::fill(std::begin(m_gradientDown), std::end(m_gradientDown), 0x501A00);
  m_gradientColors = frame::Two_Colors;
  m_handPointer = true;
  m_locked = false;
  m_pictureAlignment = Picture_LeftOfCaption;
  m_pictureOpacity = 100;
  m_pictureSize = Picture_Normal;
  m_pictureSizeX = m_pictureSizeY = 16;
  m_redraw = true;
  m_showFocusRect = true;
  m_showFocusRectDown = false;
  m_theme = frame::Windows_Theme;
  m_value = false;
}

void USButton::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);

  m_pictureToChange = saved.Picture(u"PicToChange");
  m_pictureOver = saved.Picture(u"PicDown");
  m_pictureOn = saved.Picture(u"PicHot");
  m_picture = saved.Picture(u"PicNormal");
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { UserControl::MouseIcon(saved.Picture(u"MouseIcon")); });
  Step([&] { UserControl::MousePointer(static_cast<int16_t>(saved.Long(u"MousePointer", 0))); });
  m_state = saved.Long(u"State", kStateNormal);
  m_redraw = saved.Bool(u"Redraw", true);
  Step([&] {
    const Variant bytes = saved.Read(u"DibPicture", Variant());
    if (const host::ByteArray* b = bytes.Bytes()) m_pictureBytes = *b;
    else m_pictureBytes.clear();
  });
  m_alignment = saved.Long(u"Alignment", On_Center);
  m_cropBorders = saved.Long(u"CropBorders", Dont_Crop);
  String displayName;
  Step([&] { displayName = Ambient().DisplayName(); });
  m_caption = saved.Text(u"Caption", displayName);
  m_captionDistance = static_cast<int16_t>(saved.Long(u"CaptionDistance", 0));
  m_captionWordBreak = saved.Bool(u"CaptionWordBreak", false);
  m_checkBoxMode = saved.Bool(u"CheckBox", false);
  const bool enabled = saved.Bool(u"Enabled", true);
  m_borderColor = saved.Long(u"BorderColor", 0x9A572B);
  m_borderColorDisabled = saved.Long(u"BorderColorDisabled", 0xDBCECC);
  m_borderColorOver = saved.Long(u"BorderColorOver", 0x7B3E00);
  m_borderColorDown = saved.Long(u"BorderColorDown", 0x501A00);
  m_foreColor = saved.Long(u"ForeColor", 0xFFFFFF);
  m_foreColorOver = saved.Long(u"ForeColorOver", 0xFFFFFF);
  m_foreColorDown = saved.Long(u"ForeColorDown", 0xFFFFFF);
  m_foreColorDisabled = saved.Long(u"ForeColorDisabled", 0x008000);
  for (int32_t i = 0; i < 4; ++i) {
    const String n(1, static_cast<char16_t>(u'1' + i));
    m_gradient[i] = saved.Long((u"GradientColor" + n).c_str(), 0x9A572B);
    m_gradientDisabled[i] = saved.Long((u"GradientColorDisabled" + n).c_str(), 0xDBCECC);
    m_gradientOver[i] = saved.Long((u"GradientColorOver" + n).c_str(), 0x7B3E00);
    m_gradientDown[i] = saved.Long((u"GradientColorDown" + n).c_str(), 0x501A00);
  }
  m_gradientColors = saved.Long(u"GradientColors", frame::Two_Colors);
  m_handPointer = saved.Bool(u"HandPointer", true);
  m_locked = saved.Bool(u"Locked", false);
  m_pictureAlignment = saved.Long(u"PicAlign", Picture_LeftOfCaption);
  m_pictureOpacity = saved.Long(u"PicOpacity", 100);
  m_pictureSize = saved.Long(u"PicSize", Picture_Normal);
  m_pictureSizeX = saved.Long(u"PicSizeH", 16);
  m_pictureSizeY = saved.Long(u"PicSizeW", 16);
  m_showFocusRect = saved.Bool(u"ShowFocusRect", true);
  m_showFocusRectDown = saved.Bool(u"ShowFocusRectDown", false);
  // Only stored: the colours saved with the button are the ones that apply.
  m_theme = saved.Long(u"Theme", frame::Windows_Theme);
  Step([&] { m_tip.Read(PropBag); });
  m_value = saved.Bool(u"Value", false);

  // Side effects last.
  Step([&] { AccessKeys(AccessKeyFromEnd(m_caption)); });
  Step([&] { UserControl::Enabled(enabled); });
  // At design time a saved hand pointer shows the normal pointer until the property is set again.
  if (m_userMode && m_handPointer) ApplyHandPointer();
}

void USButton::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  auto picture = [](const std::shared_ptr<host::StdPicture>& p) { return p ? Variant(p) : Variant::Nothing(); };

  write(u"PicToChange", picture(m_pictureToChange), Variant::Nothing());
  write(u"PicDown", picture(m_pictureOver), Variant::Nothing());
  write(u"PicHot", picture(m_pictureOn), Variant::Nothing());
  write(u"PicNormal", picture(m_picture), Variant::Nothing());
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  // The hand is the button's own pointer, restored from HandPointer: it is not saved as an icon.
  std::shared_ptr<host::StdPicture> icon = UserControl::MouseIcon();
  if (icon == HandCursorPicture()) icon = nullptr;
  write(u"MouseIcon", picture(icon), Variant::Nothing());
  write(u"MousePointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  write(u"State", Variant(m_state), Variant(int32_t{kStateNormal}));
  write(u"Redraw", Variant(m_redraw), Variant(true));
  if (!m_pictureBytes.empty()) write(u"DibPicture", Variant(m_pictureBytes), Variant::Missing());
  write(u"Alignment", Variant(m_alignment), Variant(int32_t{On_Center}));
  write(u"CropBorders", Variant(m_cropBorders), Variant(int32_t{Dont_Crop}));
  Step([&] { write(u"Caption", Variant(m_caption), Variant(Ambient().DisplayName())); });
  write(u"CaptionDistance", Variant(m_captionDistance), Variant(int16_t{0}));
  write(u"CaptionWordBreak", Variant(m_captionWordBreak), Variant(false));
  write(u"CheckBox", Variant(m_checkBoxMode), Variant(false));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"BorderColor", Variant(m_borderColor), Variant(OLE_COLOR{0x9A572B}));
  write(u"BorderColorDisabled", Variant(m_borderColorDisabled), Variant(OLE_COLOR{0xDBCECC}));
  write(u"BorderColorOver", Variant(m_borderColorOver), Variant(kBorderColorOverWritten));
  write(u"BorderColorDown", Variant(m_borderColorDown), Variant(kBorderColorDownWritten));
  write(u"ForeColor", Variant(m_foreColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ForeColorOver", Variant(m_foreColorOver), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ForeColorDown", Variant(m_foreColorDown), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ForeColorDisabled", Variant(m_foreColorDisabled), Variant(OLE_COLOR{0x008000}));
  for (int32_t i = 0; i < 4; ++i) {
    const String n(1, static_cast<char16_t>(u'1' + i));
    write((u"GradientColor" + n).c_str(), Variant(m_gradient[i]), Variant(OLE_COLOR{0x9A572B}));
    write((u"GradientColorDisabled" + n).c_str(), Variant(m_gradientDisabled[i]), Variant(OLE_COLOR{0xDBCECC}));
    write((u"GradientColorOver" + n).c_str(), Variant(m_gradientOver[i]), Variant(OLE_COLOR{0x7B3E00}));
    write((u"GradientColorDown" + n).c_str(), Variant(m_gradientDown[i]), Variant(OLE_COLOR{0x501A00}));
  }
  write(u"GradientColors", Variant(m_gradientColors), Variant(int32_t{frame::Two_Colors}));
  write(u"HandPointer", Variant(m_handPointer), Variant(true));
  write(u"Locked", Variant(m_locked), Variant(false));
  write(u"PicAlign", Variant(m_pictureAlignment), Variant(int32_t{Picture_LeftOfCaption}));
  write(u"PicOpacity", Variant(m_pictureOpacity), Variant(int32_t{100}));
  write(u"PicSize", Variant(m_pictureSize), Variant(int32_t{Picture_Normal}));
  write(u"PicSizeH", Variant(m_pictureSizeX), Variant(int32_t{16}));
  write(u"PicSizeW", Variant(m_pictureSizeY), Variant(int32_t{16}));
  write(u"ShowFocusRect", Variant(m_showFocusRect), Variant(true));
  write(u"ShowFocusRectDown", Variant(m_showFocusRectDown), Variant(false));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  Step([&] { m_tip.Write(PropBag); });
  write(u"Value", Variant(m_value), Variant(false));
}

void USButton::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  if (m_redraw) {
    const host::Screen& screen = host::GetScreen();
    if (rc.bottom < kMinimumSize) Step([&] { Control::Height(kMinimumSize * screen.TwipsPerPixelY()); });
    if (rc.right < kMinimumSize) Step([&] { Control::Width(kMinimumSize * screen.TwipsPerPixelX()); });
    Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  }
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  if (m_redraw) Step([&] { Refresh(); });
}

void USButton::UserControl_Show() {
  if (!m_userMode) return;
  if (!m_mouseEx) {
    Step([&] {
      auto tracker = std::make_unique<frame::APIMouseEvents>();
      tracker->MouseIn.connect([this] { OnMouseEnter(); });
      tracker->MouseOut.connect([this] { OnMouseExit(); });
      tracker->MouseMove.connect([this](int32_t, int32_t, int16_t button, int16_t shift, int32_t x, int32_t y) {
        OnTrackerMove(button, shift, static_cast<float>(x), static_cast<float>(y));
      });
      tracker->Attach(UserControl::hWnd());
      m_mouseEx = std::move(tracker);
    });
  }
  Step([&] { CreateToolTip(); });
}

void USButton::OnMouseEnter() {
  m_mouseOver = true;
  if (!m_pressed) Step([&] { DrawState(kStateOver, false); });
  Step([&] { MouseEnter(); });
}

void USButton::OnMouseExit() {
  m_mouseOver = false;
  if (UserControl::Enabled()) Step([&] { DrawState(kStateNormal, false); });
  Step([&] { MouseExit(); });
}

void USButton::OnTrackerMove(int16_t button, int16_t shift, float x, float y) {
  // Moves only relay: no painting, so that a moving pointer costs nothing.
  Step([&] { MouseMove(button, shift, x, y); });
}

void USButton::UserControl_Terminate() {
  // Nothing started from here on may paint.
  m_userMode = false;
  Step([&] { ReleaseMouseTracker(); });
  m_pictureBytes.clear();
  m_dib.reset();
  Step([&] { m_toolTip.reset(); });
}

void USButton::Dispose() { ReleaseMouseTracker(); }

void USButton::ReleaseMouseTracker() { m_mouseEx.reset(); }

bool USButton::HasMouseTrackerAttached() const { return m_mouseEx != nullptr; }

void USButton::CreateToolTip() {
  // Without a description or an icon there is no tooltip at all; out of the box there is none.
  if (!m_userMode || m_tip.description.empty() || m_tip.icon == 0) return;
  if (!m_toolTip) m_toolTip = std::make_unique<frame::APITooltip>();
  m_tip.CreateOn(*m_toolTip, UserControl::hWnd());
}

void USButton::DestroyToolTip() {
  if (m_userMode && m_toolTip && !m_tip.description.empty()) m_toolTip->Destroy();
}

// ---- The click machine ------------------------------------------------------------------------

bool USButton::CaptureIsOurs() const {
  const platform::HWND wnd = UserControl::hWnd();
  return wnd != 0 && platform::GetCapture() == wnd;
}

void USButton::RaiseClick(bool xRaise) {
  if (m_pressed || m_lastButton != kLastButtonKey) return;
  m_spaceDown = false;
  if (m_checkBoxMode) m_value = !m_value;
  Step([&] { DrawState(kStateOver, m_checkBoxMode); });
  if (!m_checkBoxMode) m_value = false;
  if (!m_locked && UserControl::Enabled() && xRaise) Step([&] { Click(); });
}

void USButton::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_lastButton = Button;
  if (Button == host::vbLeftButton) {
    m_pressed = true;
    Step([&] { DrawState(kStateDown, false); });
  }
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void USButton::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  // With a mouse tracker attached the tracker relays moves; without one (design time, a button
  // made by code) the host's move is relayed here, so that each move is raised once.
  if (!HasMouseTrackerAttached()) Step([&] { MouseMove(Button, Shift, X, Y); });
}

void USButton::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  // Other buttons neither change anything nor raise MouseUp.
  if (Button != host::vbLeftButton) return;
  m_pressed = m_spaceDown;
  if (!m_mouseOver) Step([&] { DrawState(m_hasFocus ? kStateOver : kStateNormal, false); });
  if (CaptureIsOurs()) Step([&] { platform::ReleaseCapture(); });
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USButton::UserControl_Click() { RaiseClick(true); }

void USButton::UserControl_DblClick() {
  if (m_lastButton != kLastButtonKey) return;
  m_pressed = true;
  Step([&] { DrawState(kStateDown, false); });
  m_lastButton = kLastButtonDoubleClick;
  if (!CaptureIsOurs()) Step([&] { platform::SetCapture(UserControl::hWnd()); });
  Step([&] { DblClick(); });
}

void USButton::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (Shift == 0) {
    switch (KeyCode) {
      case platform::VK_SPACE:
        m_pressed = true;
        m_spaceDown = true;
        if (!CaptureIsOurs()) Step([&] { platform::SetCapture(UserControl::hWnd()); });
        Step([&] { DrawState(kStateDown, false); });
        break;
      case platform::VK_LEFT:
      case platform::VK_UP:
        // Arrows move the focus as Shift+Tab and Tab would, by pressing those keys. The Tab is
        // left down, as the keyboard would leave it.
        Step([] {
          platform::InjectKey(platform::VK_SHIFT, true);
          platform::InjectKey(platform::VK_TAB, true);
          platform::InjectKey(platform::VK_SHIFT, false);
        });
        break;
      case platform::VK_RIGHT:
      case platform::VK_DOWN:
        Step([] { platform::InjectKey(platform::VK_TAB, true); });
        break;
      default:
        break;
    }
  }
  Step([&] { KeyDown(KeyCode, Shift); });
}

void USButton::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }

void USButton::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) {
  if (KeyCode == platform::VK_SPACE) {
    m_pressed = false;
    if (m_spaceDown) {
      m_spaceDown = false;
      m_lastButton = kLastButtonKey;
      RaiseClick(true);
    }
    if (CaptureIsOurs()) Step([&] { platform::ReleaseCapture(); });
  }
  Step([&] { KeyUp(KeyCode, Shift); });
}

void USButton::UserControl_AccessKeyPress(int16_t& KeyAscii) {
  if (!UserControl::Enabled()) return;
  if (m_spaceDown && CaptureIsOurs()) Step([&] { platform::ReleaseCapture(); });
  // Enter and Esc reach a check button as the form's default or cancel key: they must not toggle it.
  if (m_checkBoxMode && (KeyAscii == 13 || KeyAscii == 27)) return;
  m_pressed = false;
  m_lastButton = kLastButtonKey;
  RaiseClick(true);
}

void USButton::UserControl_GotFocus() {
  if (!UserControl::Enabled()) return;
  m_hasFocus = true;
  if (!m_pressed) Step([&] { DrawState(-1, false); });
}

void USButton::UserControl_LostFocus() {
  if (!UserControl::Enabled()) return;
  m_hasFocus = false;
  m_pressed = false;
  m_spaceDown = false;
  Step([&] { DrawState(kStateNormal, true); });
}

void USButton::UserControl_AmbientChanged(const String& /*PropertyName*/) {
  Step([&] { m_displayAsDefault = Ambient().DisplayAsDefault(); });
}

}  // namespace mx::controls
