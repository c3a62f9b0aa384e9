#pragma once
// USRibbon: a tabbed command band that sits at the top of its form.
//
//   +---------------------------------------------------------------------------------+
//   |  TabOffset                                                       [tb1] [tb0]    |  tab strip
//   |  / Home \  Insert   View                                                        |
//   |+--------------------------------+--------------+------------------------------+|
//   ||  [icon]   [icon]   [icon]      |   [icon]     |                               ||  band
//   ||  Paste    Copy     Cut  v      |   Find       |                               ||
//   ||           Clipboard         [/]|   Search     |                               ||  category
//   |+--------------------------------+--------------+                               +|  captions
//   +---------------------------------------------------------------------------------+
//
// The host fills it with AddTab, AddCat, AddButton and AddTabButton, then calls Refresh. Content
// is kept as rows of parallel columns in the order of addition; the caller's Index is a column
// of its own and is what events report.
//
// What is on the screen is a set of element arrays, one per role (the tab's three slices, the
// hover slices, the caption, the hit area...). Member 0 of every array is the template and never
// shows; Refresh loads member row + 1 for each row and places it. Hover and press only show and
// hide members, so a pointer move costs a few flag writes and one composition of the band; the
// placement is redone only by Refresh and by a change of tab.
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "controls/CaptionControl.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::frame {
class APIMouseEvents;
class APITooltip;
}
namespace mx::image {
class API32bppDIB;
}
namespace mx::controls {
class USImageList;
}

namespace mx::chrome {

using host::OLE_COLOR;
using host::String;
using host::StringView;

// The element arrays, in painting order (later ones cover earlier ones).
enum class RibbonArray : int32_t {
  BarraLeft, BarraCenter, BarraRight,
  Tab_left_over, Tab_center_over, Tab_right_over,
  Tab_left, Tab_center, Tab_right,
  Tab_caption, TabMouse,
  Cat_Left_off, Cat_Center_off, Cat_Right_off,
  Cat_Left_on, Cat_Center_on, Cat_Right_on,
  Cat_Caption, CatMouse,
  Cat_Dlg, Cat_Dlg_on, Cat_Dlg_over, Cat_Dlg_down,
  Button_left_over, Button_center_over, Button_right_over,
  Button_left, Button_center, Button_right,
  Button_Icon, Button_Caption, Glip_off, Glip_on, ButMouse,
  TabButon, TabButonOn, TabButonOver, TabButon_Icon, ButTabMouse,
  Count
};
[[nodiscard]] const char16_t* RibbonArrayName(RibbonArray array);

// One member of an element array: an image slice, a label or a transparent hit area.
struct RibbonElement {
  bool Visible = false;
  int32_t Left = 0;
  int32_t Top = 0;
  int32_t Width = 0;
  int32_t Height = 0;
  int32_t Row = -1;          // the data row the member shows; -1 for the template
  String Caption;            // labels
  OLE_COLOR ForeColor = 0;   // labels
  [[nodiscard]] platform::RECT Rect() const { return {Left, Top, Left + Width, Top + Height}; }
  [[nodiscard]] bool Contains(int32_t x, int32_t y) const {
    return x >= Left && x < Left + Width && y >= Top && y < Top + Height;
  }
};

// What a point of the band is over, as hover and press track it.
enum class RibbonHit : int32_t { None = 0, Tab = 1, Category = 2, Launcher = 3, Button = 4, TabButton = 5 };
struct RibbonTarget {
  RibbonHit kind = RibbonHit::None;
  int32_t row = -1;
  friend bool operator==(const RibbonTarget&, const RibbonTarget&) = default;
};

// The tool tip of an added item: the caption when no text is given; trimmed, "&" removed, CR LF
// as a blank, runs of blanks made one, trimmed again.
[[nodiscard]] String CleanToolTipText(StringView toolTipText, StringView caption);
// The hot key of a caption: the character after the last "&" that is not part of a "&&" pair,
// lower-cased; empty for a caption shorter than two characters or without one.
[[nodiscard]] String RibbonHotKey(StringView caption);

class RibbonParentWatch;

class USRibbon : public controls::CaptionControl {
 public:
  // Themes 0 and 1 lay the category row out from 390 (tabs shown) or 50 twips, the other looks
  // from 430 or 90: the top of the category plates, in twips of the band.
  [[nodiscard]] static int32_t LayoutValue(int32_t theme, bool showTabs);

  USRibbon();
  ~USRibbon() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USRibbon"; }
  [[nodiscard]] String TypeName() const override { return u"USRibbon"; }

  // ---- Properties ----------------------------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return UserControl::hDC(); }

  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores the look, sets the four text colours and TabOffset from it, and rebuilds the band.
  void Theme(int32_t value);
  // The left of the first tab, in pixels of the band.
  [[nodiscard]] int32_t TabOffset() const { return m_tabOffset; }
  void TabOffset(int32_t value);
  [[nodiscard]] bool ButtonHandPointer() const { return m_buttonHandPointer; }
  void ButtonHandPointer(bool value);
  [[nodiscard]] bool TabButtonHandPointer() const { return m_tabButtonHandPointer; }
  void TabButtonHandPointer(bool value);
  [[nodiscard]] bool ShowButtonFocus() const { return m_showButtonFocus; }
  void ShowButtonFocus(bool value);
  [[nodiscard]] bool ShowTabs() const { return m_showTabs; }
  void ShowTabs(bool value);
  [[nodiscard]] bool ButtonCenter() const { return m_buttonCenter; }
  void ButtonCenter(bool value);
  [[nodiscard]] OLE_COLOR ForeColorCat() const { return m_foreColorCat; }
  void ForeColorCat(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorButton() const { return m_foreColorButton; }
  void ForeColorButton(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorTabSelected() const { return m_foreColorTabSelected; }
  void ForeColorTabSelected(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorTabNormal() const { return m_foreColorTabNormal; }
  void ForeColorTabNormal(OLE_COLOR value);
  // The image-list control button pictures come from, and the key of the list in it.
  [[nodiscard]] std::shared_ptr<controls::USImageList> ImageList() const { return m_imageList; }
  void ImageList(std::shared_ptr<controls::USImageList> value);
  [[nodiscard]] const String& ImageListKey() const { return m_imageListKey; }
  void ImageListKey(StringView value);

  // One flag per button Index (not per row). An Index no button has reads False.
  [[nodiscard]] bool ButtonEnabled(int32_t Index) const;
  void ButtonEnabled(int32_t Index, bool value);

  // ---- Methods -------------------------------------------------------------------------------

  void AddTab(int32_t Index, StringView Caption);
  void AddCat(int32_t Index, int32_t TabIndex, StringView Caption, bool ShowDglButton = false);
  void AddButton(int32_t Index, int32_t CatIndex, StringView Caption,
                 std::shared_ptr<host::StdPicture> Picture = nullptr, const host::Variant& ImageIndex = host::Variant::Missing(),
                 bool ShowDglButton = false, StringView ToolTipText = {});
  void AddTabButton(int32_t Index, std::shared_ptr<host::StdPicture> Picture = nullptr,
                    const host::Variant& ImageIndex = host::Variant::Missing(), StringView ToolTipText = {});
  void Clear();
  void RemoveButton();
  void RemoveCat();
  void RemoveTab();
  // Selects the tab of that Index when Index is from 0 up to the tab count.
  void ActivateTab(int32_t Index);
  // Rebuilds the whole band and shows the current tab (the first one when none is current).
  void Refresh();
  // A source of button pictures by ImageIndex, for buttons without a picture or an image list:
  // the controls' Picture members, by position. The controls are hidden.
  void BindPictureArray(const std::vector<std::shared_ptr<host::Control>>& ImgButton);
  void RemovePictureArray(const std::vector<std::shared_ptr<host::Control>>& ImgButton);

  // ---- Events, raised after the ribbon's own handling ------------------------------------------

  host::Event<int32_t> TabClick;                    // Index
  host::Event<int32_t, float, float> CatClick;      // Index, PositionX, PositionY
  host::Event<int32_t, float, float> ButtonClick;
  host::Event<int32_t, float, float> TabButtonClick;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection, for tests and tools -------------------------------------------------------

  [[nodiscard]] int32_t TabCount() const { return static_cast<int32_t>(m_tabs.size()); }
  [[nodiscard]] int32_t CatCount() const { return static_cast<int32_t>(m_cats.size()); }
  [[nodiscard]] int32_t ButtonCount() const { return static_cast<int32_t>(m_buttons.size()); }
  [[nodiscard]] int32_t TabButtonCount() const { return static_cast<int32_t>(m_tabButtons.size()); }
  [[nodiscard]] int32_t CurrentTab() const { return m_currentTab; }
  [[nodiscard]] const String& TabCaption(int32_t row) const { return m_tabs.at(row).caption; }
  [[nodiscard]] const String& CatCaption(int32_t row) const { return m_cats.at(row).caption; }
  [[nodiscard]] const String& ButtonToolTip(int32_t row) const { return m_buttons.at(row).toolTip; }
  [[nodiscard]] const String& ButtonHotKey(int32_t row) const { return m_buttons.at(row).hotKey; }
  [[nodiscard]] const String& TabButtonToolTip(int32_t row) const { return m_tabButtons.at(row).toolTip; }
  // The members of an element array, template first.
  [[nodiscard]] const std::vector<RibbonElement>& Elements(RibbonArray array) const {
    return m_elements[static_cast<size_t>(array)];
  }
  [[nodiscard]] const RibbonElement& Element(RibbonArray array, int32_t row) const {
    return m_elements[static_cast<size_t>(array)].at(static_cast<size_t>(row) + 1);
  }
  // The layout value the category row was last built with (0 before the first build).
  [[nodiscard]] int32_t LastLayoutValue() const { return m_layoutValue; }
  [[nodiscard]] RibbonTarget HoverTarget() const { return m_hover; }
  [[nodiscard]] int32_t HoverCategory() const { return m_hoverCat; }
  [[nodiscard]] RibbonTarget PressedTarget() const { return m_pressed; }
  // The row of the button that has the keyboard focus mark; -1 for none.
  [[nodiscard]] int32_t FocusButton() const { return m_focusButton; }
  // What the band shows at a client point.
  [[nodiscard]] RibbonTarget HitTest(int32_t x, int32_t y) const;
  // The height of the band for the current look and ShowTabs, in pixels.
  [[nodiscard]] int32_t BandHeight() const;
  // The tip of the hovered item; null while the pointer is over an item without one.
  [[nodiscard]] const frame::APITooltip* ToolTip() const { return m_toolTip.get(); }
  // How many times the band has been composed on the surface.
  [[nodiscard]] int32_t ComposeCount() const { return m_composeCount; }

 protected:
  // A new font lays the band out again, once it has been built.
  void RepaintForFont() override {
    if (m_built) Refresh();
  }
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_GotFocus() override;
  void UserControl_LostFocus() override;
  void UserControl_AccessKeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_DblClick() override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  struct TabRow {
    int32_t index = 0;
    String caption;
  };
  struct CatRow {
    int32_t index = 0;
    int32_t tabIndex = 0;
    String caption;
    bool showDlg = false;
  };
  struct ButtonRow {
    int32_t index = 0;
    int32_t catIndex = 0;
    String caption;
    String toolTip;
    std::shared_ptr<host::StdPicture> picture;
    host::Variant imageIndex;
    bool showDlg = false;
    String hotKey;
    std::unique_ptr<image::API32bppDIB> surface;  // decoded at Refresh
  };
  struct TabButtonRow {
    int32_t index = 0;
    String toolTip;
    std::shared_ptr<host::StdPicture> picture;
    host::Variant imageIndex;
    std::unique_ptr<image::API32bppDIB> surface;
  };

  // Layout (USRibbonLayout.cpp).
  [[nodiscard]] std::vector<RibbonElement>& Array(RibbonArray array) { return m_elements[static_cast<size_t>(array)]; }
  RibbonElement& Member(RibbonArray array, int32_t row);
  void LoadMembers(RibbonArray array, size_t rows);
  void UnloadMembers(std::initializer_list<RibbonArray> arrays);
  void SelectTab(int32_t index, bool force);
  void BuildBand();
  // Places everything again with the pictures already decoded: what a change of look, colour or
  // layout setting needs.
  void Rebuild();
  void BuildTabs();
  void BuildTabButtons();
  void BuildCategories(int32_t layoutValue);
  void BuildButtons();
  void PlaceButtonsOf(int32_t catRow, int32_t left, int32_t top, int32_t plateWidth);
  [[nodiscard]] int32_t ButtonWidth(int32_t row) const;
  [[nodiscard]] int32_t CategoryWidth(int32_t row) const;
  [[nodiscard]] int32_t TextWidth(StringView text, bool prefix) const;
  [[nodiscard]] int32_t CatRowOf(int32_t catIndex) const;
  [[nodiscard]] int32_t TabRowOf(int32_t tabIndex) const;
  [[nodiscard]] bool InCurrentView(int32_t buttonRow) const;
  [[nodiscard]] std::vector<int32_t> CurrentButtons() const;
  void LoadPictures();
  std::unique_ptr<image::API32bppDIB> PictureFor(const std::shared_ptr<host::StdPicture>& picture,
                                                 const host::Variant& imageIndex) const;
  void UpdateAccessKeys();
  void AlignToParentTop();
  // The form's client width changed: a ribbon standing at the form's left follows it.
  void ParentResized();
  void FitHeight();

  // Behaviour (USRibbonInput.cpp).
  void SetHover(RibbonTarget target);
  void ShowHover(RibbonTarget target, bool on);
  void SetHoverCategory(int32_t catRow);
  void ShowPressed(RibbonTarget target, bool on);
  void ApplyPointer(RibbonTarget target);
  void UpdateToolTip(RibbonTarget target);
  void RunClick(RibbonTarget target);
  [[nodiscard]] bool ButtonRowEnabled(int32_t row) const;
  void PointerMoved(int32_t x, int32_t y);
  void PressAt(int32_t x, int32_t y);
  void PointerLeft();
  void MoveTab(int32_t step);
  void MoveButtonFocus(int32_t step);
  void ElementPosition(const RibbonElement& e, float& x, float& y) const;

  // Shows or hides one member, marking its rectangle for the next partial composition.
  void SetVisible(RibbonArray array, int32_t row, bool on);
  void MarkDirty(const platform::RECT& r);
  // Painting (USRibbonPaint.cpp). Compose paints the whole band, or only `area` when given;
  // ComposeDirty paints what SetVisible marked since the last composition.
  void Compose(const platform::RECT* area = nullptr);
  void ComposeDirty();

  // Persisted.
  int32_t m_theme = 2;
  int32_t m_tabOffset = 20;
  bool m_buttonHandPointer = false;
  bool m_tabButtonHandPointer = false;
  bool m_showButtonFocus = false;
  bool m_showTabs = true;
  bool m_buttonCenter = false;
  OLE_COLOR m_foreColorCat = 0x000000;
  OLE_COLOR m_foreColorButton = 0x000000;
  OLE_COLOR m_foreColorTabSelected = 0x000000;
  OLE_COLOR m_foreColorTabNormal = 0xFFFFFF;
  std::shared_ptr<controls::USImageList> m_imageList;
  String m_imageListName;  // a list named in the bag, found among the form's controls at Show
  String m_imageListKey;

  // Content.
  std::vector<TabRow> m_tabs;
  std::vector<CatRow> m_cats;
  std::vector<ButtonRow> m_buttons;
  std::vector<TabButtonRow> m_tabButtons;
  std::map<int32_t, bool> m_buttonEnabled;
  std::vector<std::shared_ptr<host::Control>> m_pictureArray;
  int32_t m_currentTab = -1;

  // Run-time state.
  std::vector<RibbonElement> m_elements[static_cast<size_t>(RibbonArray::Count)];
  bool m_userMode = false;
  bool m_built = false;
  bool m_building = false;
  bool m_hasFocus = false;
  int32_t m_layoutValue = 0;
  RibbonTarget m_hover;
  int32_t m_hoverCat = -1;
  RibbonTarget m_pressed;
  int32_t m_focusButton = -1;
  int32_t m_composeCount = 0;
  platform::POINT m_lastPointer{-1, -1};
  platform::RECT m_dirty{};
  std::unique_ptr<frame::APIMouseEvents> m_mouseEx;
  std::unique_ptr<frame::APITooltip> m_toolTip;
  std::unique_ptr<RibbonParentWatch> m_parentWatch;
  friend class RibbonParentWatch;
};

}  // namespace mx::chrome
