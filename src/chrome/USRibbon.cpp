// USRibbon: content, text handling on add, properties, persistence and lifecycle.
#include "chrome/USRibbon.h"

#include <algorithm>
#include <cwctype>

#include "controls/ControlSupport.h"
#include "controls/USButton.h"
#include "controls/USImageList.h"
#include "frame/APIMouseEvents.h"
#include "frame/APISubClass.h"
#include "frame/APITooltip.h"
#include "host/Colors.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "image/API32bppDIB.h"
#include "platform/Messages.h"
#include "platform/Window.h"

namespace mx::chrome {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

// The system's button-text colour, which the Office looks use for every caption.
constexpr OLE_COLOR kButtonTextColour = 0x80000012;

constexpr const char16_t* kArrayNames[] = {
    u"BarraLeft",        u"BarraCenter",        u"BarraRight",        u"Tab_left_over", u"Tab_center_over",
    u"Tab_right_over",   u"Tab_left",           u"Tab_center",        u"Tab_right",     u"Tab_caption",
    u"TabMouse",         u"Cat_Left_off",       u"Cat_Center_off",    u"Cat_Right_off", u"Cat_Left_on",
    u"Cat_Center_on",    u"Cat_Right_on",       u"Cat_Caption",       u"CatMouse",      u"Cat_Dlg",
    u"Cat_Dlg_on",       u"Cat_Dlg_over",       u"Cat_Dlg_down",      u"Button_left_over",
    u"Button_center_over", u"Button_right_over", u"Button_left",      u"Button_center", u"Button_right",
    u"Button_Icon",      u"Button_Caption",     u"Glip_off",          u"Glip_on",       u"ButMouse",
    u"TabButon",         u"TabButonOn",         u"TabButonOver",      u"TabButon_Icon", u"ButTabMouse",
};
static_assert(std::size(kArrayNames) == static_cast<size_t>(RibbonArray::Count));

bool IsBlank(char16_t c) { return c == u' '; }

String Trim(StringView s) {
  size_t a = 0, b = s.size();
  while (a < b && IsBlank(s[a])) ++a;
  while (b > a && IsBlank(s[b - 1])) --b;
  return String(s.substr(a, b - a));
}

// Each CR LF becomes one blank; a lone CR or LF is left alone.
String CrLfToBlank(StringView s) {
  String out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') {
      out.push_back(u' ');
      ++i;
    } else {
      out.push_back(s[i]);
    }
  }
  return out;
}

}  // namespace

// Watches the form's WM_SIZE, as the host would move a control aligned to the top: the ribbon
// keeps the form's width.
class RibbonParentWatch : public frame::SubclassOwner {
 public:
  RibbonParentWatch(USRibbon& ribbon, platform::HWND form) : m_ribbon(ribbon), m_form(form) {
    if (m_subclass.ssc_Subclass(form, 0, 1, this, true, true))
      m_subclass.ssc_AddMsg(form, frame::MSG_AFTER, {platform::WM_SIZE});
  }
  ~RibbonParentWatch() override { m_subclass.ssc_UnSubclass(m_form); }
  void SubclassProc(int32_t, bool, bool&, platform::LRESULT&, platform::HWND, platform::UINT uMsg, platform::WPARAM,
                    platform::LPARAM, platform::LPARAM&) override {
    if (uMsg == platform::WM_SIZE) Step([&] { m_ribbon.ParentResized(); });
  }

 private:
  USRibbon& m_ribbon;
  platform::HWND m_form;
  frame::APISubClass m_subclass;
};

const char16_t* RibbonArrayName(RibbonArray array) {
  const auto i = static_cast<size_t>(array);
  return i < std::size(kArrayNames) ? kArrayNames[i] : u"";
}

String CleanToolTipText(StringView toolTipText, StringView caption) {
  String text = Trim(toolTipText.empty() ? caption : toolTipText);
  std::erase(text, u'&');
  text = CrLfToBlank(text);
  // Runs of blanks collapse to one: replace doubles until none is left.
  String collapsed;
  collapsed.reserve(text.size());
  for (char16_t c : text)
    if (!(IsBlank(c) && !collapsed.empty() && IsBlank(collapsed.back()))) collapsed.push_back(c);
  return Trim(collapsed);
}

String RibbonHotKey(StringView caption) {
  if (caption.size() < 2) return {};
  // Read from the left so that every "&&" pairs up as the text shows it ("&&&x" is a literal
  // "&" then the marker of x); the last marker found is the one nearest the end.
  char16_t key = 0;
  for (size_t i = 0; i + 1 < caption.size();) {
    if (caption[i] != u'&') {
      ++i;
      continue;
    }
    if (caption[i + 1] != u'&') key = caption[i + 1];
    i += 2;
  }
  if (key == 0) return {};
  return String(1, key < 0x80 ? static_cast<char16_t>(key >= u'A' && key <= u'Z' ? key + 32 : key)
                              : static_cast<char16_t>(std::towlower(static_cast<wint_t>(key))));
}

int32_t USRibbon::LayoutValue(int32_t theme, bool showTabs) {
  if (theme == 0 || theme == 1) return showTabs ? 390 : 50;
  return showTabs ? 430 : 90;
}

USRibbon::USRibbon() {
  // Every array starts with its template member.
  for (auto& array : m_elements) array.resize(1);
}

USRibbon::~USRibbon() {
  // The watch calls back into the ribbon: it goes first.
  m_parentWatch.reset();
}

// ---- Setters ------------------------------------------------------------------------------------

void USRibbon::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  if (value == 0 || value == 1) {
    m_foreColorButton = m_foreColorCat = m_foreColorTabNormal = m_foreColorTabSelected = kButtonTextColour;
    m_tabOffset = 90;
  } else {
    m_foreColorButton = m_foreColorCat = m_foreColorTabSelected = 0x000000;
    m_foreColorTabNormal = 0xFFFFFF;
    m_tabOffset = 20;
  }
  if (m_built) Rebuild();
}

void USRibbon::TabOffset(int32_t value) {
  m_tabOffset = value;
  PropertyChanged(u"TabOffSet");
  if (m_built) Rebuild();
}

void USRibbon::ButtonHandPointer(bool value) {
  m_buttonHandPointer = value;
  PropertyChanged(u"ButtonHandPointer");
  ApplyPointer(m_hover);
}

void USRibbon::TabButtonHandPointer(bool value) {
  m_tabButtonHandPointer = value;
  PropertyChanged(u"TabButtonHandPointer");
  ApplyPointer(m_hover);
}

void USRibbon::ShowButtonFocus(bool value) {
  m_showButtonFocus = value;
  PropertyChanged(u"ShowButtonFocus");
  if (m_built) Compose();
}

void USRibbon::ShowTabs(bool value) {
  m_showTabs = value;
  PropertyChanged(u"ShowTabs");
  if (m_built) Rebuild();
}

void USRibbon::ButtonCenter(bool value) {
  m_buttonCenter = value;
  PropertyChanged(u"ButtonCenter");
  if (m_built) Rebuild();
}

void USRibbon::ForeColorCat(OLE_COLOR value) {
  m_foreColorCat = value;
  PropertyChanged(u"ForeColorCat");
  if (m_built) Rebuild();
}

void USRibbon::ForeColorButton(OLE_COLOR value) {
  m_foreColorButton = value;
  PropertyChanged(u"ForeColorButton");
  if (m_built) Rebuild();
}

void USRibbon::ForeColorTabSelected(OLE_COLOR value) {
  m_foreColorTabSelected = value;
  PropertyChanged(u"ForeColorTabSelected");
  if (m_built) Rebuild();
}

void USRibbon::ForeColorTabNormal(OLE_COLOR value) {
  m_foreColorTabNormal = value;
  PropertyChanged(u"ForeColorTabNormal");
  if (m_built) Rebuild();
}

void USRibbon::ImageList(std::shared_ptr<controls::USImageList> value) {
  m_imageList = std::move(value);
  m_imageListName.clear();
  PropertyChanged(u"ImageList");
  if (m_built) Refresh();
}

void USRibbon::ImageListKey(StringView value) {
  m_imageListKey = String(value);
  PropertyChanged(u"ImageListKey");
  if (m_built) Refresh();
}

bool USRibbon::ButtonEnabled(int32_t Index) const {
  const auto it = m_buttonEnabled.find(Index);
  return it != m_buttonEnabled.end() && it->second;
}

void USRibbon::ButtonEnabled(int32_t Index, bool value) {
  m_buttonEnabled[Index] = value;
  if (!value) {
    // A button that goes off while lit or pressed loses the mark at once.
    if (m_hover.kind == RibbonHit::Button && m_buttons[static_cast<size_t>(m_hover.row)].index == Index) SetHover({});
    if (m_pressed.kind == RibbonHit::Button && m_buttons[static_cast<size_t>(m_pressed.row)].index == Index) {
      ShowPressed(m_pressed, false);
      m_pressed = {};
    }
  }
  if (m_built) {
    UpdateAccessKeys();
    Compose();
  }
}

// ---- Content ------------------------------------------------------------------------------------

void USRibbon::AddTab(int32_t Index, StringView Caption) {
  m_tabs.push_back({Index, CrLfToBlank(Caption)});
}

void USRibbon::AddCat(int32_t Index, int32_t TabIndex, StringView Caption, bool ShowDglButton) {
  m_cats.push_back({Index, TabIndex, CrLfToBlank(Caption), ShowDglButton});
}

void USRibbon::AddButton(int32_t Index, int32_t CatIndex, StringView Caption, std::shared_ptr<host::StdPicture> Picture,
                         const Variant& ImageIndex, bool ShowDglButton, StringView ToolTipText) {
  ButtonRow row;
  row.index = Index;
  row.catIndex = CatIndex;
  row.caption = String(Caption);
  row.toolTip = CleanToolTipText(ToolTipText, Caption);
  // The picture is kept only when one was given: an empty one counts as none.
  if (Picture && !Picture->IsEmpty()) row.picture = std::move(Picture);
  row.imageIndex = ImageIndex;
  row.showDlg = ShowDglButton;
  row.hotKey = RibbonHotKey(Caption);
  m_buttons.push_back(std::move(row));
  m_buttonEnabled[Index] = true;
}

void USRibbon::AddTabButton(int32_t Index, std::shared_ptr<host::StdPicture> Picture, const Variant& ImageIndex,
                            StringView ToolTipText) {
  TabButtonRow row;
  row.index = Index;
  row.toolTip = CleanToolTipText(ToolTipText, {});
  if (Picture && !Picture->IsEmpty()) row.picture = std::move(Picture);
  row.imageIndex = ImageIndex;
  m_tabButtons.push_back(std::move(row));
}

void USRibbon::RemoveButton() {
  if (m_hover.kind == RibbonHit::Button) {
    m_hover = {};
    m_toolTip.reset();
  }
  if (m_pressed.kind == RibbonHit::Button) m_pressed = {};
  m_focusButton = -1;
  m_buttons.clear();
  m_buttonEnabled.clear();
  UnloadMembers({RibbonArray::Button_left_over, RibbonArray::Button_center_over, RibbonArray::Button_right_over,
                 RibbonArray::Button_left, RibbonArray::Button_center, RibbonArray::Button_right,
                 RibbonArray::Button_Icon, RibbonArray::Button_Caption, RibbonArray::Glip_off, RibbonArray::Glip_on,
                 RibbonArray::ButMouse});
  Step([&] { UpdateAccessKeys(); });
  if (m_built) Compose();
}

void USRibbon::RemoveCat() {
  if (m_hover.kind == RibbonHit::Category || m_hover.kind == RibbonHit::Launcher) m_hover = {};
  if (m_pressed.kind == RibbonHit::Category || m_pressed.kind == RibbonHit::Launcher) m_pressed = {};
  m_hoverCat = -1;
  m_cats.clear();
  UnloadMembers({RibbonArray::Cat_Left_off, RibbonArray::Cat_Center_off, RibbonArray::Cat_Right_off,
                 RibbonArray::Cat_Left_on, RibbonArray::Cat_Center_on, RibbonArray::Cat_Right_on,
                 RibbonArray::Cat_Caption, RibbonArray::CatMouse, RibbonArray::Cat_Dlg, RibbonArray::Cat_Dlg_on,
                 RibbonArray::Cat_Dlg_over, RibbonArray::Cat_Dlg_down});
  if (m_built) Compose();
}

void USRibbon::RemoveTab() {
  if (m_hover.kind == RibbonHit::Tab) m_hover = {};
  if (m_pressed.kind == RibbonHit::Tab) m_pressed = {};
  m_tabs.clear();
  UnloadMembers({RibbonArray::Tab_left_over, RibbonArray::Tab_center_over, RibbonArray::Tab_right_over,
                 RibbonArray::Tab_left, RibbonArray::Tab_center, RibbonArray::Tab_right, RibbonArray::Tab_caption,
                 RibbonArray::TabMouse});
  if (m_built) Compose();
}

void USRibbon::Clear() {
  RemoveButton();
  RemoveCat();
  RemoveTab();
  if (m_hover.kind == RibbonHit::TabButton) m_hover = {};
  m_toolTip.reset();
  if (m_pressed.kind == RibbonHit::TabButton) m_pressed = {};
  m_tabButtons.clear();
  UnloadMembers({RibbonArray::TabButon, RibbonArray::TabButonOn, RibbonArray::TabButonOver,
                 RibbonArray::TabButon_Icon, RibbonArray::ButTabMouse});
  m_currentTab = -1;
  if (m_built) Compose();
}

void USRibbon::ActivateTab(int32_t Index) {
  // The bound is inclusive: the count itself is accepted and selects whatever tab has that
  // Index, which may be none (an empty band).
  if (Index < 0 || Index > TabCount()) return;
  if (!m_built) {
    m_currentTab = Index;
    return;
  }
  SelectTab(Index, false);
}

void USRibbon::BindPictureArray(const std::vector<std::shared_ptr<host::Control>>& ImgButton) {
  m_pictureArray.clear();
  for (const auto& member : ImgButton) {
    if (!member) continue;
    // The array is a store, not something to show: its members go out of sight.
    Step([&] { member->Visible(false); });
    m_pictureArray.push_back(member);
  }
  if (m_built) Refresh();
}

void USRibbon::RemovePictureArray(const std::vector<std::shared_ptr<host::Control>>& ImgButton) {
  // Forgets the array only when it is the one bound (compared by its first member).
  if (!ImgButton.empty() && !m_pictureArray.empty() && ImgButton.front() != m_pictureArray.front()) return;
  m_pictureArray.clear();
  if (m_built) Refresh();
}

void USRibbon::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"TabClick", TabClick, u"CatClick", CatClick, u"ButtonClick", ButtonClick,
                       u"TabButtonClick", TabButtonClick);
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USRibbon::UserControl_Initialize() {}

void USRibbon::UserControl_InitProperties() {
  Step([&] { m_userMode = Ambient().UserMode(); });
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_theme = 2;
  m_tabOffset = 20;
  m_buttonHandPointer = m_tabButtonHandPointer = m_showButtonFocus = m_buttonCenter = false;
  m_showTabs = true;
  m_foreColorCat = m_foreColorButton = m_foreColorTabSelected = 0x000000;
  m_foreColorTabNormal = 0xFFFFFF;
  m_imageList.reset();
  m_imageListName.clear();
  m_imageListKey.clear();
  // A new ribbon takes the top of its form.
  Step([&] { AlignToParentTop(); });
}

void USRibbon::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);

  // Only stored: the colours saved with the ribbon are the ones that apply.
  m_theme = saved.Long(u"Theme", 2);
  m_tabOffset = saved.Long(u"TabOffSet", 20);
  m_buttonHandPointer = saved.Bool(u"ButtonHandPointer", false);
  m_tabButtonHandPointer = saved.Bool(u"TabButtonHandPointer", false);
  m_showButtonFocus = saved.Bool(u"ShowButtonFocus", false);
  m_showTabs = saved.Bool(u"ShowTabs", true);
  m_buttonCenter = saved.Bool(u"ButtonCenter", false);
  m_foreColorCat = static_cast<OLE_COLOR>(saved.Long(u"ForeColorCat", 0x000000));
  m_foreColorButton = static_cast<OLE_COLOR>(saved.Long(u"ForeColorButton", 0x000000));
  m_foreColorTabSelected = static_cast<OLE_COLOR>(saved.Long(u"ForeColorTabSelected", 0x000000));
  m_foreColorTabNormal = static_cast<OLE_COLOR>(saved.Long(u"ForeColorTabNormal", 0xFFFFFF));
  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  // A form file names the image-list control; a bag filled by code may hold the control itself.
  Step([&] {
    const Variant list = saved.Read(u"ImageList", Variant(String()));
    if (auto control = std::dynamic_pointer_cast<controls::USImageList>(list.Obj())) m_imageList = control;
    else if (list.IsString()) m_imageListName = list.ToString();
  });
  Step([&] { m_imageListKey = saved.Read(u"ImageListKey", Variant(String())).ToString(); });
}

void USRibbon::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  write(u"Theme", Variant(m_theme), Variant(int32_t{2}));
  write(u"TabOffSet", Variant(m_tabOffset), Variant(int32_t{20}));
  write(u"ButtonHandPointer", Variant(m_buttonHandPointer), Variant(false));
  write(u"TabButtonHandPointer", Variant(m_tabButtonHandPointer), Variant(false));
  write(u"ShowButtonFocus", Variant(m_showButtonFocus), Variant(false));
  write(u"ShowTabs", Variant(m_showTabs), Variant(true));
  write(u"ButtonCenter", Variant(m_buttonCenter), Variant(false));
  write(u"ForeColorCat", Variant(static_cast<int32_t>(m_foreColorCat)), Variant(int32_t{0}));
  write(u"ForeColorButton", Variant(static_cast<int32_t>(m_foreColorButton)), Variant(int32_t{0}));
  write(u"ForeColorTabSelected", Variant(static_cast<int32_t>(m_foreColorTabSelected)), Variant(int32_t{0}));
  write(u"ForeColorTabNormal", Variant(static_cast<int32_t>(m_foreColorTabNormal)), Variant(int32_t{0xFFFFFF}));
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  // The image list is saved by its control's name, which the form file can hold.
  String listName = m_imageListName;
  if (m_imageList && !m_imageList->Name().empty()) listName = m_imageList->Name();
  write(u"ImageList", Variant(listName), Variant(String()));
  write(u"ImageListKey", Variant(m_imageListKey), Variant(String()));
}

void USRibbon::UserControl_Resize() {
  if (m_built) Step([&] { BuildBand(); });
}

void USRibbon::UserControl_Show() {
  if (!m_userMode) return;
  // A list named in the bag is found now that every control of the form is loaded.
  if (!m_imageList && !m_imageListName.empty()) {
    Step([&] {
      for (const auto& control : ParentControls())
        if (host::TextEquals(control->Name(), m_imageListName))
          if (auto list = std::dynamic_pointer_cast<controls::USImageList>(control)) m_imageList = list;
    });
  }
  if (!m_parentWatch) {
    Step([&] {
      host::Form* form = Parent();
      if (form && form->hWnd()) m_parentWatch = std::make_unique<RibbonParentWatch>(*this, form->hWnd());
    });
  }
  if (!m_mouseEx) {
    Step([&] {
      auto tracker = std::make_unique<frame::APIMouseEvents>();
      tracker->MouseOut.connect([this] { PointerLeft(); });
      tracker->Attach(UserControl::hWnd());
      m_mouseEx = std::move(tracker);
    });
  }
}

void USRibbon::UserControl_Terminate() {
  // Nothing from here on may paint or raise.
  m_userMode = false;
  m_built = false;
  Step([&] { m_mouseEx.reset(); });
  Step([&] { m_toolTip.reset(); });
  Step([&] { m_parentWatch.reset(); });
  for (auto& b : m_buttons) b.surface.reset();
  for (auto& b : m_tabButtons) b.surface.reset();
  m_pictureArray.clear();
  m_imageList.reset();
}

void USRibbon::ParentResized() {
  host::Form* form = Parent();
  if (!form || !form->hWnd() || Control::Left() != 0) return;
  platform::RECT rc{};
  platform::GetClientRect(form->hWnd(), &rc);
  const float width = static_cast<float>(rc.right) * host::GetScreen().TwipsPerPixelX();
  if (rc.right > 0 && Control::Width() != width) Control::Width(width);
}

void USRibbon::AlignToParentTop() {
  host::Form* form = Parent();
  const host::Screen& screen = host::GetScreen();
  const float height = static_cast<float>(BandHeight()) * screen.TwipsPerPixelY();
  if (!form || !form->hWnd()) {
    Control::Height(height);
    return;
  }
  platform::RECT rc{};
  platform::GetClientRect(form->hWnd(), &rc);
  Control::Move(0, 0, static_cast<float>(rc.right) * screen.TwipsPerPixelX(), height);
}

}  // namespace mx::chrome
