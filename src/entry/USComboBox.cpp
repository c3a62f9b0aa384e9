// USComboBox: properties, lifecycle, persistence, the constituent parts and the theme.
#include "entry/USComboBox.h"

#include <algorithm>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "entry/USListBox.h"
#include "frame/APIMouseEvents.h"
#include "frame/Themes.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "image/API32bppDIB.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/Window.h"
#include "utility/MX.h"

namespace mx::entry {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

[[nodiscard]] OLE_COLOR Shift(OLE_COLOR colour, int16_t by) {
  return static_cast<OLE_COLOR>(utility::MX().ShiftRGBColor(static_cast<int32_t>(colour), by));
}

// The persisted defaults that are derived from the Windows theme's palette.
constexpr OLE_COLOR kWindowsBorder = 0x9A572B;
constexpr OLE_COLOR kWindowsBorderOver = 0x7B3E00;

[[nodiscard]] OLE_COLOR DefaultBorderColor() { return Shift(kWindowsBorder, 120); }
[[nodiscard]] OLE_COLOR DefaultBorderColorOver() { return Shift(kWindowsBorderOver, 120); }
[[nodiscard]] OLE_COLOR DefaultBackColorOnShowList() { return Shift(kWindowsBorder, 140); }

}  // namespace

USComboBox::USComboBox() : m_text(std::make_shared<host::TextBox>()), m_list(std::make_shared<USListBox>()) {
  m_borderColor = DefaultBorderColor();
  m_borderColorOver = DefaultBorderColorOver();
  m_backColorOnShowList = DefaultBackColorOnShowList();
  ConnectText();
  ConnectList();
}

USComboBox::~USComboBox() {
  // A combo dropped while its list is open must not leave its focus hook behind.
  if (m_focusHook) platform::UnhookWindowsHookEx(m_focusHook);
}

// ---- Setters: store, PropertyChanged, repaint ----------------------------------------------------

void USComboBox::Alignment(int16_t value) {
  m_text->Alignment(value);
  m_alignment = value;
  PropertyChanged(u"Alignment");
}

void USComboBox::AutoComplete(bool value) {
  m_autoComplete = value;
  PropertyChanged(u"AutoComplete");
}

void USComboBox::AutoOpenOnChange(bool value) {
  m_autoOpenOnChange = value;
  PropertyChanged(u"AutoOpenOnChange");
}

// Colours of the frame and its text: the face is painted again at once.
#define MX_FACE_SETTER(Name, member)        \
  void USComboBox::Name(OLE_COLOR value) { \
    member = value;                        \
    PropertyChanged(u## #Name);            \
    DrawCombo(-1, true);                   \
  }
MX_FACE_SETTER(BackColor, m_backColor)
MX_FACE_SETTER(BackColorDisabled, m_backColorDisabled)
MX_FACE_SETTER(BackColorOver, m_backColorOver)
MX_FACE_SETTER(BackColorOnShowList, m_backColorOnShowList)
MX_FACE_SETTER(BorderColor, m_borderColor)
MX_FACE_SETTER(BorderColorDisabled, m_borderColorDisabled)
MX_FACE_SETTER(BorderColorOver, m_borderColorOver)
MX_FACE_SETTER(ForeColor, m_foreColor)
MX_FACE_SETTER(ForeColorDisabled, m_foreColorDisabled)
MX_FACE_SETTER(GradientColor1, m_gradientColor1)
MX_FACE_SETTER(GradientColor2, m_gradientColor2)
#undef MX_FACE_SETTER

// Looks of the list: handed to the list now, so that an open list shows them at once.
#define MX_LIST_SETTER(Name, Type, member) \
  void USComboBox::Name(Type value) {      \
    member = value;                        \
    PropertyChanged(u## #Name);            \
    ApplyListLooks();                      \
  }
MX_LIST_SETTER(ListBackColor, OLE_COLOR, m_listBackColor)
MX_LIST_SETTER(ListBackColorEvenRows, OLE_COLOR, m_listBackColorEvenRows)
MX_LIST_SETTER(ListBackColorEvenRowsEnabled, bool, m_listBackColorEvenRowsEnabled)
MX_LIST_SETTER(ListForeColor, OLE_COLOR, m_listForeColor)
MX_LIST_SETTER(ListGradient, bool, m_listGradient)
MX_LIST_SETTER(ListItemSelectedBorderColor, OLE_COLOR, m_listItemSelectedBorderColor)
MX_LIST_SETTER(ListItemSelectedColor1, OLE_COLOR, m_listItemSelectedColor1)
MX_LIST_SETTER(ListItemSelectedColor2, OLE_COLOR, m_listItemSelectedColor2)
MX_LIST_SETTER(ListItemSelectedForeColor, OLE_COLOR, m_listItemSelectedForeColor)
#undef MX_LIST_SETTER

void USComboBox::CacheIncrement(int32_t value) {
  m_cacheIncrement = value;
  Step([&] { m_list->CacheIncrement(value); });
  PropertyChanged(u"CacheIncrement");
}

void USComboBox::Enabled(bool value) {
  UserControl::Enabled(value);
  m_text->Enabled(value);
  PropertyChanged(u"Enabled");
  if (!value) HideList();
  DrawCombo(-1, true);
}

void USComboBox::Font(std::shared_ptr<host::StdFont> value) {
  if (!value) return;
  UserControl::Font(value);
  m_text->Font(value);
  PropertyChanged(u"Font");
  ApplyListLooks();
  Layout();
  DrawCombo(-1, true);
}

void USComboBox::GradientMode(int32_t value) {
  m_gradientMode = value;
  PropertyChanged(u"GradientMode");
  DrawCombo(-1, true);
}

void USComboBox::ListItemHeight(int32_t value) {
  m_listItemHeight = std::max(1, value);
  PropertyChanged(u"ListItemHeight");
  ApplyListLooks();
  if (m_listOpen) PlaceList();
  else Layout();
}

void USComboBox::ListItemWidth(float value) {
  m_listItemWidth = value;
  PropertyChanged(u"ListItemWidth");
  if (m_listOpen) PlaceList();
}

void USComboBox::ListItemWidthCustom(bool value) {
  m_listItemWidthCustom = value;
  PropertyChanged(u"ListItemWidthCustom");
  if (m_listOpen) PlaceList();
}

void USComboBox::ListPicture(std::shared_ptr<host::StdPicture> value) {
  m_listPicture = std::move(value);
  m_pictureDib.reset();
  PropertyChanged(u"ListPicture");
  DrawCombo(-1, true);
}

void USComboBox::ListPictureOver(std::shared_ptr<host::StdPicture> value) {
  m_listPictureOver = std::move(value);
  m_pictureOverDib.reset();
  PropertyChanged(u"ListPictureOver");
  DrawCombo(-1, true);
}

void USComboBox::LockChange(bool value) {
  m_lockChange = value;
  PropertyChanged(u"LockChange");
}

void USComboBox::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
}

void USComboBox::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
}

void USComboBox::NumberItemsToShow(int32_t value) {
  m_numberItemsToShow = std::max(1, value);
  PropertyChanged(u"NumberItemsToShow");
  if (m_listOpen) PlaceList();
  else Layout();
}

void USComboBox::Redraw(bool value) {
  const bool was = m_redraw;
  m_redraw = value;
  Step([&] { m_list->Redraw(value && m_listRedraw); });
  if (value && !was) DrawCombo(-1, true);
  PropertyChanged(u"Redraw");
}

int32_t USComboBox::SelLength() const { return m_text->SelLength(); }
void USComboBox::SelLength(int32_t value) {
  m_text->SelLength(value);
  PropertyChanged(u"SelLength");
}
int32_t USComboBox::SelStart() const { return m_text->SelStart(); }
void USComboBox::SelStart(int32_t value) {
  m_text->SelStart(value);
  PropertyChanged(u"SelStart");
}
String USComboBox::SelText() const { return m_text->SelText(); }
void USComboBox::SelText(StringView value) {
  // Through the box's own editing, so the change runs the text algorithm as typing would.
  m_text->SelText(value);
  PropertyChanged(u"SelText");
}

void USComboBox::ShowCorner(bool value) {
  m_showCorner = value;
  PropertyChanged(u"ShowCorner");
  DrawCombo(-1, true);
}

void USComboBox::ShowEmptyList(bool value) {
  m_showEmptyList = value;
  PropertyChanged(u"ShowEmptyList");
}

void USComboBox::Style(int32_t value) {
  m_style = value == Dropdown_List ? Dropdown_List : Dropdown_Combo;
  // The list style shows the current item's text and takes no typing.
  m_text->Locked(m_style == Dropdown_List);
  if (m_style == Dropdown_List) {
    const int32_t index = ListIndex();
    SetTextFromCode(index >= 0 ? m_list->Item(index).ToString() : String(), false);
  }
  PropertyChanged(u"Style");
}

String USComboBox::Text() const { return m_text->Text(); }

void USComboBox::Text(StringView value) {
  if (m_style == Dropdown_List) {
    // The text only follows the list: a text is taken by selecting the item that has it.
    if (value.empty()) {
      if (ListIndex() >= 0) ListIndex(-1);
    } else {
      const int32_t index = m_list->FindFirst(value, 0, false);
      if (index >= 0) ListIndex(index);
    }
  } else {
    SetTextFromCode(value, false);
    // An item with exactly that text becomes current, without rewriting the text.
    const int32_t index = value.empty() ? -1 : m_list->FindFirst(value, 0, false);
    if (index >= 0 && index != m_list->ListIndex()) {
      m_completing = true;
      Step([&] { m_list->ListIndex(index); });
      m_completing = false;
    }
  }
  PropertyChanged(u"Text");
}

void USComboBox::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  ApplyListLooks();
  DrawCombo(-1, true);
}

void USComboBox::ApplyTheme() {
  const auto c = [&](int32_t index) { return frame::GetThemeColor(m_theme, index); };
  m_backColor = 0xFFFFFF;
  m_backColorDisabled = 0xFFFFFF;
  m_backColorOver = 0xF4FFFF;
  m_backColorOnShowList = Shift(c(frame::ThemeGradientColor1), 140);
  m_borderColorDisabled = c(frame::ThemeBorderColorDisabled);
  if (m_theme == frame::Office_Theme_Blue || m_theme == frame::Office_Theme_Silver) {
    m_borderColor = c(frame::ThemeBorderColor);
    m_borderColorOver = c(frame::ThemeBorderColorOver);
  } else {
    m_borderColor = Shift(c(frame::ThemeBorderColor), 120);
    m_borderColorOver = Shift(c(frame::ThemeBorderColorOver), 120);
  }
  m_foreColor = 0x000000;
  m_foreColorDisabled = 0x000000;
  m_gradientColor1 = 0xFFFFFF;
  m_gradientColor2 = 0xFFFFFF;
  m_listBackColor = 0xFFFFFF;
  m_listBackColorEvenRows = c(frame::ThemeListEvenRows);
  m_listForeColor = 0x000000;
  m_listItemSelectedBorderColor = c(frame::ThemeSelectionBorder);
  m_listItemSelectedColor1 = c(frame::ThemeSelectionFill);
  m_listItemSelectedColor2 = c(frame::ThemeSelectionFill);
  m_listItemSelectedForeColor = 0x000000;
}

void USComboBox::About() { controls::ShowAboutBox(); }

// ---- Parts -----------------------------------------------------------------------------------------

void USComboBox::CreateParts() {
  const platform::HWND own = UserControl::hWnd();
  if (!own) return;
  if (!m_list->hWnd()) {
    Step([&] {
      m_list->CreateControlWindow(own);
      // A list loaded at run time gets its run-time services (the wheel); its bag is empty, so
      // every key takes its read default and the looks come from here.
      if (m_userMode) {
        host::PropertyBag empty;
        m_list->LoadFrom(empty, true);
      } else {
        m_list->LoadNew(false);
      }
      ApplyListLooks();
    });
  }
  Layout();
}

void USComboBox::ApplyListLooks() {
  USListBox& list = *m_list;
  Step([&] {
    // Each of the list's setters repaints: hold its painting until all are in.
    list.Redraw(false);
    list.BackColor(m_listBackColor);
    list.BackColorEvenRows(m_listBackColorEvenRows);
    list.BackColorEvenRowsEnabled(m_listBackColorEvenRowsEnabled);
    list.ForeColor(m_listForeColor);
    list.ForeColorSelected(m_listItemSelectedForeColor);
    list.ListGradient(m_listGradient);
    list.ItemHeight(m_listItemHeight);
    list.ItemSelectedBorderColor(m_listItemSelectedBorderColor);
    list.ItemSelectedColor1(m_listItemSelectedColor1);
    list.ItemSelectedColor2(m_listItemSelectedColor2);
    list.BorderColor(m_borderColor);
    list.Font(UserControl::Font());
    if (m_cacheIncrement > 0) list.CacheIncrement(m_cacheIncrement);
    list.Redraw(m_redraw && m_listRedraw);
  });
}

void USComboBox::Layout() {
  const platform::HWND own = UserControl::hWnd();
  if (!own) return;
  platform::RECT rc{};
  platform::GetClientRect(own, &rc);
  const platform::RECT button = ButtonRect();
  const int innerW = std::max(1, static_cast<int>(button.left) - kTextInset - 1);
  const int innerH = std::max(1, static_cast<int>(rc.bottom) - 2 * kTextInset);
  Step([&] {
    m_text->BorderStyle(0);
    m_text->Create(own, kTextInset, kTextInset, innerW, innerH);
  });
  // The closed list keeps the size it opens with, so that moving through it with the keys
  // scrolls it as the open list would.
  if (!m_listOpen && m_list->hWnd()) {
    const host::Screen& screen = host::GetScreen();
    const int rows = std::max(1, m_numberItemsToShow);
    Step([&] {
      m_list->Move(0, 0, static_cast<float>(rc.right) * screen.TwipsPerPixelX(),
                   static_cast<float>(rows * m_listItemHeight + 2) * screen.TwipsPerPixelY());
    });
  }
}

platform::RECT USComboBox::ButtonRect() const {
  platform::RECT rc{};
  if (UserControl::hWnd()) platform::GetClientRect(UserControl::hWnd(), &rc);
  // Inside the one-pixel border, at the right.
  const int right = std::max(1, static_cast<int>(rc.right) - 1);
  const int left = std::max(1, right - kButtonWidth);
  return platform::RECT{left, 1, right, std::max(1, static_cast<int>(rc.bottom) - 1)};
}

void USComboBox::ApplyTextLook() {
  const int32_t state = CurrentState();
  OLE_COLOR back = m_backColor, fore = m_foreColor;
  if (state == kStateDisabled) {
    back = m_backColorDisabled;
    fore = m_foreColorDisabled;
  } else if (state == kStateOpen) {
    back = m_backColorOnShowList;
  } else if (state == kStateOver) {
    back = m_backColorOver;
  }
  Step([&] {
    if (m_text->BackColor() != back) m_text->BackColor(back);
    if (m_text->ForeColor() != fore) m_text->ForeColor(fore);
  });
}

int32_t USComboBox::CurrentState() const {
  if (!UserControl::Enabled()) return kStateDisabled;
  if (m_listOpen) return kStateOpen;
  if (m_mouseOver) return kStateOver;
  return kStateNormal;
}

void USComboBox::AttachMouseTracker() {
  if (m_mouseEx || !UserControl::hWnd()) return;
  // One tracker on the control's window and one on the text box: the pointer passing from one
  // to the other is still over the combo (OnMouseExit looks where it went).
  auto own = std::make_unique<frame::APIMouseEvents>();
  own->MouseIn.connect([this] { OnMouseEnter(); });
  own->MouseOut.connect([this] { OnMouseExit(); });
  own->Attach(UserControl::hWnd());
  m_mouseEx = std::move(own);
  if (m_text->hWnd()) {
    auto inner = std::make_unique<frame::APIMouseEvents>();
    inner->MouseIn.connect([this] { OnMouseEnter(); });
    inner->MouseOut.connect([this] { OnMouseExit(); });
    inner->Attach(m_text->hWnd());
    m_textMouseEx = std::move(inner);
  }
}

// ---- Lifecycle -------------------------------------------------------------------------------------

void USComboBox::UserControl_Initialize() {}

void USComboBox::UserControl_InitProperties() {
  Step([&] {
    auto font = Ambient().Font();
    UserControl::Font(font);
    m_text->Font(font);
  });
  Step([&] { ApplyTheme(); });
  m_redraw = true;
  Step([&] { CreateParts(); });
  Step([&] { ApplyListLooks(); });
  Step([&] { ApplyTextLook(); });
}

void USComboBox::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag, BagReader::kGivesDefault);
  auto colour = [&](const char16_t* key, OLE_COLOR def, OLE_COLOR& target) {
    Step([&] { target = static_cast<OLE_COLOR>(saved.Read(key, Variant(static_cast<int32_t>(def))).ToLong()); });
  };
  auto flag = [&](const char16_t* key, bool def, bool& target) {
    Step([&] { target = saved.Read(key, Variant(def)).ToBoolean(); });
  };
  auto picture = [&](const char16_t* key) {
    std::shared_ptr<host::StdPicture> p;
    Step([&] { p = std::dynamic_pointer_cast<host::StdPicture>(saved.Read(key, Variant::Nothing()).Obj()); });
    return p && !p->IsEmpty() ? p : nullptr;
  };
  Step([&] {
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant::Nothing()).Obj());
    if (!font) font = Ambient().Font();
    UserControl::Font(font);
    m_text->Font(font);
  });
  m_listPicture = picture(u"ListPicture");
  m_listPictureOver = picture(u"ListPictureOver");
  Step([&] { UserControl::MouseIcon(picture(u"MouseIcon")); });
  Step([&] { UserControl::MousePointer(saved.Read(u"MousePointer", Variant(int16_t{0})).ToInteger()); });
  Step([&] { m_alignment = saved.Read(u"Alignment", Variant(int16_t{0})).ToInteger(); });
  flag(u"AutoComplete", true, m_autoComplete);
  flag(u"AutoOpenOnChange", false, m_autoOpenOnChange);
  colour(u"BorderColor", DefaultBorderColor(), m_borderColor);
  colour(u"BorderColorDisabled", 0xDBCECC, m_borderColorDisabled);
  colour(u"BorderColorOver", DefaultBorderColorOver(), m_borderColorOver);
  colour(u"BackColor", 0xFFFFFF, m_backColor);
  colour(u"BackColorDisabled", 0xFFFFFF, m_backColorDisabled);
  colour(u"BackColorOver", 0xF4FFFF, m_backColorOver);
  colour(u"BackColorOnShowList", DefaultBackColorOnShowList(), m_backColorOnShowList);
  colour(u"ForeColor", 0, m_foreColor);
  colour(u"ForeColorDisabled", 0, m_foreColorDisabled);
  colour(u"GradientColor1", 0xFFFFFF, m_gradientColor1);
  colour(u"GradientColor2", 0xFFFFFF, m_gradientColor2);
  Step([&] { m_gradientMode = saved.Read(u"GradientMode", Variant(int32_t{1})).ToLong(); });
  colour(u"ListBackColor", 0xFFFFFF, m_listBackColor);
  colour(u"ListBackColorEvenRows", 0xFBFBFC, m_listBackColorEvenRows);
  flag(u"ListBackColorEvenRowsEnabled", true, m_listBackColorEvenRowsEnabled);
  colour(u"ListForeColor", 0xFFFFFF, m_listForeColor);
  flag(u"ListGradient", false, m_listGradient);
  flag(u"ListItemWidthCustom", false, m_listItemWidthCustom);
  flag(u"ShowCorner", false, m_showCorner);
  flag(u"ShowEmptyList", false, m_showEmptyList);
  flag(u"LockChange", false, m_lockChange);
  flag(u"Redraw", false, m_redraw);
  Step([&] { m_listItemHeight = std::max(1, saved.Read(u"ListItemHeight", Variant(int32_t{26})).ToLong()); });
  Step([&] { m_listItemWidth = saved.Read(u"ListItemWidth", Variant(0.0f)).ToSingle(); });
  colour(u"ListItemSelectedBorderColor", 0xFFF3E5, m_listItemSelectedBorderColor);
  colour(u"ListItemSelectedColor1", 0xFFF3E5, m_listItemSelectedColor1);
  colour(u"ListItemSelectedColor2", 0xFFF3E5, m_listItemSelectedColor2);
  colour(u"ListItemSelectedForeColor", 0xFFFFFF, m_listItemSelectedForeColor);
  Step([&] { m_numberItemsToShow = std::max(1, saved.Read(u"NumberItemsToShow", Variant(int32_t{7})).ToLong()); });
  Step([&] { m_style = saved.Read(u"Style", Variant(int32_t{0})).ToLong() == Dropdown_List ? Dropdown_List : Dropdown_Combo; });
  Step([&] { m_theme = saved.Read(u"Theme", Variant(int32_t{2})).ToLong(); });
  Step([&] { m_cacheIncrement = saved.Read(u"CacheIncrement", Variant(int32_t{1000})).ToLong(); });
  bool enabled = true;
  flag(u"Enabled", true, enabled);
  String text;
  int32_t selStart = 0, selLength = 0;
  Step([&] { text = saved.Read(u"Text", Variant(String())).ToString(); });
  Step([&] { selStart = saved.Read(u"SelStart", Variant(int32_t{0})).ToLong(); });
  Step([&] { selLength = saved.Read(u"SelLength", Variant(int32_t{0})).ToLong(); });

  // Side effects last: the parts, the text and its selection, the enabled state.
  Step([&] { CreateParts(); });
  Step([&] { m_text->Alignment(m_alignment); });
  Step([&] { m_text->Locked(m_style == Dropdown_List); });
  Step([&] { ApplyListLooks(); });
  if (m_style == Dropdown_Combo) Step([&] { SetTextFromCode(text, false); });
  Step([&] {
    if (selStart > 0) m_text->SelStart(selStart);
    if (selLength > 0) m_text->SelLength(selLength);
  });
  Step([&] {
    UserControl::Enabled(enabled);
    m_text->Enabled(enabled);
  });
  Step([&] { ApplyTextLook(); });
}

void USComboBox::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  auto colour = [](OLE_COLOR c) { return Variant(static_cast<int32_t>(c)); };
  auto picture = [](const std::shared_ptr<host::StdPicture>& p) { return p ? Variant(p) : Variant::Nothing(); };
  write(u"Alignment", Variant(m_alignment), Variant(int16_t{0}));
  write(u"AutoComplete", Variant(m_autoComplete), Variant(true));
  write(u"AutoOpenOnChange", Variant(m_autoOpenOnChange), Variant(false));
  write(u"BorderColor", colour(m_borderColor), colour(DefaultBorderColor()));
  write(u"BorderColorDisabled", colour(m_borderColorDisabled), colour(0xDBCECC));
  write(u"BorderColorOver", colour(m_borderColorOver), colour(DefaultBorderColorOver()));
  write(u"BackColor", colour(m_backColor), colour(0xFFFFFF));
  write(u"BackColorDisabled", colour(m_backColorDisabled), colour(0xFFFFFF));
  write(u"BackColorOver", colour(m_backColorOver), colour(0xF4FFFF));
  write(u"BackColorOnShowList", colour(m_backColorOnShowList), colour(DefaultBackColorOnShowList()));
  write(u"ForeColor", colour(m_foreColor), colour(0));
  write(u"ForeColorDisabled", colour(m_foreColorDisabled), colour(0));
  write(u"GradientColor1", colour(m_gradientColor1), colour(0xFFFFFF));
  write(u"GradientColor2", colour(m_gradientColor2), colour(0xFFFFFF));
  write(u"GradientMode", Variant(m_gradientMode), Variant(int32_t{1}));
  write(u"ListBackColor", colour(m_listBackColor), colour(0xFFFFFF));
  write(u"ListBackColorEvenRows", colour(m_listBackColorEvenRows), colour(0xFBFBFC));
  write(u"ListBackColorEvenRowsEnabled", Variant(m_listBackColorEvenRowsEnabled), Variant(true));
  write(u"ListForeColor", colour(m_listForeColor), colour(0xFFFFFF));
  write(u"ListGradient", Variant(m_listGradient), Variant(false));
  write(u"ListItemWidthCustom", Variant(m_listItemWidthCustom), Variant(false));
  write(u"ShowCorner", Variant(m_showCorner), Variant(false));
  write(u"ShowEmptyList", Variant(m_showEmptyList), Variant(false));
  write(u"LockChange", Variant(m_lockChange), Variant(false));
  write(u"Redraw", Variant(m_redraw), Variant(false));
  write(u"ListItemHeight", Variant(m_listItemHeight), Variant(int32_t{26}));
  write(u"ListItemWidth", Variant(m_listItemWidth), Variant(0.0f));
  write(u"ListItemSelectedBorderColor", colour(m_listItemSelectedBorderColor), colour(0xFFF3E5));
  write(u"ListItemSelectedColor1", colour(m_listItemSelectedColor1), colour(0xFFF3E5));
  write(u"ListItemSelectedColor2", colour(m_listItemSelectedColor2), colour(0xFFF3E5));
  write(u"ListItemSelectedForeColor", colour(m_listItemSelectedForeColor), colour(0xFFFFFF));
  write(u"ListPicture", picture(m_listPicture), Variant::Nothing());
  write(u"ListPictureOver", picture(m_listPictureOver), Variant::Nothing());
  write(u"MouseIcon", picture(UserControl::MouseIcon()), Variant::Nothing());
  write(u"MousePointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  write(u"NumberItemsToShow", Variant(m_numberItemsToShow), Variant(int32_t{7}));
  write(u"SelLength", Variant(SelLength()), Variant(int32_t{0}));
  write(u"SelStart", Variant(SelStart()), Variant(int32_t{0}));
  write(u"SelText", Variant(SelText()), Variant(String()));
  write(u"Style", Variant(m_style), Variant(int32_t{0}));
  write(u"Text", Variant(Text()), Variant(String()));
  write(u"Theme", Variant(m_theme), Variant(int32_t{2}));
  write(u"CacheIncrement", Variant(m_cacheIncrement), Variant(int32_t{1000}));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"Font", Variant(UserControl::Font()), Variant::Nothing());
}

void USComboBox::UserControl_Resize() {
  float sh = 0, sw = 0;
  Step([&] { sw = ScaleWidth(); sh = ScaleHeight(); });
  const host::Screen& screen = host::GetScreen();
  Step([&] {
    if (sh < kMinimumHeight) Height(static_cast<float>(kMinimumHeight) * screen.TwipsPerPixelY());
  });
  // Room for the arrow button and a few pixels of text.
  Step([&] {
    const int minimumWidth = kButtonWidth + 2 * kTextInset + 4;
    if (sw < minimumWidth) Width(static_cast<float>(minimumWidth) * screen.TwipsPerPixelX());
  });
  Step([&] { CreateParts(); });
  Step([&] { DrawCombo(-1, true); });
}

void USComboBox::UserControl_Show() {
  Step([&] { CreateParts(); });
  Step([&] { m_text->Show(); });
  if (m_userMode) Step([&] { AttachMouseTracker(); });
  Step([&] { DrawCombo(-1, true); });
}

void USComboBox::UserControl_Hide() {
  // A hidden combo (a grid putting its editor away) takes its list with it.
  Step([&] { HideList(); });
}

void USComboBox::UserControl_GotFocus() {
  // The control's window only passes the focus on: typing happens in txtCombo.
  Step([&] {
    if (m_text->hWnd() && UserControl::Enabled()) platform::SetFocus(m_text->hWnd());
  });
}

void USComboBox::UserControl_ExitFocus() {
  if (m_listOpen && !FocusIsOurs()) Step([&] { HideList(); });
}

void USComboBox::UserControl_Terminate() {
  m_userMode = false;
  Step([&] { HideList(); });
  Step([&] { platform::KillTimer(UserControl::hWnd(), kReleaseTimerId); });
  m_mouseEx.reset();
  m_textMouseEx.reset();
  m_pictureDib.reset();
  m_pictureOverDib.reset();
  Step([&] { m_list->TerminateControl(); });
  Step([&] { m_text->TerminateControl(); });
}

}  // namespace mx::entry
