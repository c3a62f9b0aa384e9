#pragma once
// USComboBox: a combo box made of a text box (txtCombo), a drawn arrow button at the right, and
// an owned list (USListBox1) that becomes a top-level pop-up while the list is open.
//
// Items live in the list; the item members forward to it. The control keeps two states:
//
//   closed ──ShowList (arrow click, F4, Alt+Up/Down, AutoOpenOnChange)──► open
//   open ──HideList (Enter, Esc, a click on a row, the arrow, focus gone: TRelease)──► closed
//
// While open the list window is a child of the desktop owned by the form's window, placed
// below the control, or above it when the work area has no room below. The keyboard focus stays
// in txtCombo all the time (a focus hook refuses it, and activation, to the pop-up), so typing
// and the arrow keys keep working and the form stays active; TRelease polls where the focus went
// and closes the list when it left the combo, or when a button is pressed anywhere else.
//
// Text flow: txtCombo's Change stores the text, then (unless LockChange) opens the list when
// asked to and auto-completes from the list, then raises Change. A change of ListIndex (keys,
// code, a click) writes the item's text into txtCombo, all of it selected; in the Dropdown List
// style that is the only way the text changes.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {
class TextBox;
}  // namespace mx::host

namespace mx::frame {
class APIMouseEvents;
}  // namespace mx::frame

namespace mx::controls {
class USImageList;
}  // namespace mx::controls

namespace mx::image {
class API32bppDIB;
}  // namespace mx::image

namespace mx::entry {

class USListBox;
using host::OLE_COLOR;
using host::String;
using host::StringView;

// Member names carry the blanks of the public names as underscores.
enum ENUM_COMBO_STYLE : int32_t { Dropdown_Combo = 0, Dropdown_List = 1 };

class USComboBox : public host::UserControl {
 public:
  // The faces DrawCombo paints.
  static constexpr int32_t kStateNormal = 0;
  static constexpr int32_t kStateOver = 1;
  static constexpr int32_t kStateOpen = 2;
  static constexpr int32_t kStateDisabled = 3;
  // Geometry: the arrow button's width at the right, inside the border; the text box's inset
  // from the border; the smallest client height Resize allows.
  static constexpr int32_t kButtonWidth = 17;
  static constexpr int32_t kTextInset = 3;
  static constexpr int32_t kMinimumHeight = 19;
  // TRelease: how often it looks at the focus, and how long after opening it lets it be (the
  // click that opened the list is still being handled then).
  static constexpr uint32_t kReleaseInterval = 100;
  static constexpr uint32_t kReleaseGrace = 250;
  static constexpr uintptr_t kReleaseTimerId = 0x7E1E;
  // Posted to the control's window after a click on a row: the list closes once its own mouse
  // handling is over.
  static constexpr uint32_t kCloseListMessage = 0x8000 + 0x1C0;

  USComboBox();
  ~USComboBox() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USComboBox"; }
  [[nodiscard]] String TypeName() const override { return u"USComboBox"; }

  // ---- Persisted properties ---------------------------------------------------------------------

  [[nodiscard]] int16_t Alignment() const { return m_alignment; }
  void Alignment(int16_t value);
  [[nodiscard]] bool AutoComplete() const { return m_autoComplete; }
  void AutoComplete(bool value);
  [[nodiscard]] bool AutoOpenOnChange() const { return m_autoOpenOnChange; }
  void AutoOpenOnChange(bool value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorDisabled() const { return m_backColorDisabled; }
  void BackColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorOver() const { return m_backColorOver; }
  void BackColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorOnShowList() const { return m_backColorOnShowList; }
  void BackColorOnShowList(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDisabled() const { return m_borderColorDisabled; }
  void BorderColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorOver() const { return m_borderColorOver; }
  void BorderColorOver(OLE_COLOR value);
  [[nodiscard]] int32_t CacheIncrement() const { return m_cacheIncrement; }
  void CacheIncrement(int32_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDisabled() const { return m_foreColorDisabled; }
  void ForeColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColor1() const { return m_gradientColor1; }
  void GradientColor1(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColor2() const { return m_gradientColor2; }
  void GradientColor2(OLE_COLOR value);
  // The direction of the arrow button's gradient (PaintGradientRect's directions).
  [[nodiscard]] int32_t GradientMode() const { return m_gradientMode; }
  void GradientMode(int32_t value);
  [[nodiscard]] OLE_COLOR ListBackColor() const { return m_listBackColor; }
  void ListBackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ListBackColorEvenRows() const { return m_listBackColorEvenRows; }
  void ListBackColorEvenRows(OLE_COLOR value);
  [[nodiscard]] bool ListBackColorEvenRowsEnabled() const { return m_listBackColorEvenRowsEnabled; }
  void ListBackColorEvenRowsEnabled(bool value);
  [[nodiscard]] OLE_COLOR ListForeColor() const { return m_listForeColor; }
  void ListForeColor(OLE_COLOR value);
  [[nodiscard]] bool ListGradient() const { return m_listGradient; }
  void ListGradient(bool value);
  [[nodiscard]] int32_t ListItemHeight() const { return m_listItemHeight; }
  void ListItemHeight(int32_t value);
  [[nodiscard]] float ListItemWidth() const { return m_listItemWidth; }
  void ListItemWidth(float value);
  [[nodiscard]] bool ListItemWidthCustom() const { return m_listItemWidthCustom; }
  void ListItemWidthCustom(bool value);
  [[nodiscard]] OLE_COLOR ListItemSelectedBorderColor() const { return m_listItemSelectedBorderColor; }
  void ListItemSelectedBorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ListItemSelectedColor1() const { return m_listItemSelectedColor1; }
  void ListItemSelectedColor1(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ListItemSelectedColor2() const { return m_listItemSelectedColor2; }
  void ListItemSelectedColor2(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ListItemSelectedForeColor() const { return m_listItemSelectedForeColor; }
  void ListItemSelectedForeColor(OLE_COLOR value);
  // The arrow button's face, in place of the gradient and arrow; ListPictureOver under the
  // pointer and while the list is open.
  [[nodiscard]] std::shared_ptr<host::StdPicture> ListPicture() const { return m_listPicture; }
  void ListPicture(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> ListPictureOver() const { return m_listPictureOver; }
  void ListPictureOver(std::shared_ptr<host::StdPicture> value);
  // Suppresses Change and the auto-search while set (bulk changes).
  [[nodiscard]] bool LockChange() const { return m_lockChange; }
  void LockChange(bool value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  void MouseIcon(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] int32_t NumberItemsToShow() const { return m_numberItemsToShow; }
  void NumberItemsToShow(int32_t value);
  // False suspends painting of the control and of its list; True paints once with all changes.
  [[nodiscard]] bool Redraw() const { return m_redraw; }
  void Redraw(bool value);
  [[nodiscard]] int32_t SelLength() const;
  void SelLength(int32_t value);
  [[nodiscard]] int32_t SelStart() const;
  void SelStart(int32_t value);
  [[nodiscard]] String SelText() const;
  void SelText(StringView value);
  // A line between the text and the arrow button.
  [[nodiscard]] bool ShowCorner() const { return m_showCorner; }
  void ShowCorner(bool value);
  // Whether ShowList opens a list without items.
  [[nodiscard]] bool ShowEmptyList() const { return m_showEmptyList; }
  void ShowEmptyList(bool value);
  [[nodiscard]] int32_t Style() const { return m_style; }
  void Style(int32_t value);
  // The default member. In the Dropdown List style setting it selects the item with that text
  // (without regard to case) and the text follows; a text no item has changes nothing.
  [[nodiscard]] String Text() const;
  void Text(StringView value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  void Theme(int32_t value);

  // ---- Fill --------------------------------------------------------------------------------------

  // Starts a bulk fill: the list stops painting, Change and the auto-search are held, and the
  // data of the item to select at the end is kept as TagID. A cache increment above 0 is taken.
  void BeginFill(int32_t xTagID = -1, int32_t xCacheIncrement = -1);
  // Ends it: the custom width is measured when asked, the item whose ItemData is TagID becomes
  // current (xIndexForNonData when none has it), the hold ends and the list paints if xRedraw.
  void EndFill(int32_t xIndexForNonData = -1, bool xCustomItemWidth = true, int32_t xCustomItemWidthOFFSET = 0,
               bool xRedraw = true);
  [[nodiscard]] int32_t TagID() const { return m_tagID; }
  void TagID(int32_t value) { m_tagID = value; }
  // Measures every item's text in Font, adds the offset and makes that the list's width.
  void SetCustomItemWidth(int32_t xCustomItemWidthOFFSET = 0, bool xRedraw = true);

  // ---- Position ----------------------------------------------------------------------------------

  // Selects the item with that text (xCompare 0 binary, 1 text), or xIndexForNonData.
  void SetIndexPositionByStr(StringView xToFind, int32_t xIndexForNonData = -1, int32_t xCompare = 0,
                             bool xCustomItemWidth = true, int32_t xCustomItemWidthOFFSET = 0, bool xRedraw = true);
  // Selects the item whose ItemData is xToFind, or xIndexForNonData.
  void SetIndexPositionByNum(int32_t xToFind, int32_t xIndexForNonData = -1, bool xCustomItemWidth = true,
                             int32_t xCustomItemWidthOFFSET = 0, bool xRedraw = true);
  // As ByNum with xToFindAsDATA; without it, the item whose text reads as that number.
  void SetIndexPositionByNumEx(double xToFind, int32_t xIndexForNonData = -1, bool xCustomItemWidth = true,
                               int32_t xCustomItemWidthOFFSET = 0, bool xRedraw = true, bool xToFindAsDATA = true);
  // Ends a suspended paint and selects Index.
  void RedrawAndSetIndexPosition(int32_t Index);
  [[nodiscard]] int32_t GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult = true) const;
  [[nodiscard]] int32_t GetIndexFromStr(StringView xTextToFind, int32_t xCompare = 0,
                                        bool DefaultAsNullResult = true) const;
  [[nodiscard]] int32_t FindFirst(StringView FindString, int32_t StartIndex = 0, bool StartWith = false) const;

  // ---- Forwarded to the list ------------------------------------------------------------------

  void AddItem(const host::Variant& Item, int32_t ItemData = 0, int32_t ItemIcon = -1, int32_t ItemIconSelected = -1,
               int32_t ItemForeColor = -1, bool ItemEnabled = true, StringView ItemToolTip = {},
               std::shared_ptr<host::StdPicture> ItemMouseIcon = nullptr, bool ItemSeparatorLine = false,
               StringView ItemTag = {});
  void ModifyItem(int32_t Index, const host::Variant& Item, int32_t ItemData = 0, int32_t ItemIcon = -1,
                  int32_t ItemIconSelected = -1, int32_t ItemForeColor = -1, bool ItemEnabled = true,
                  StringView ItemToolTip = {}, std::shared_ptr<host::StdPicture> ItemMouseIcon = nullptr,
                  bool ItemSeparatorLine = false, StringView ItemTag = {});
  void RemoveItem(int32_t Index);
  // Clears the items and the text (Change follows unless LockChange).
  void Clear();
  // Clear with LockChange held at xLockChange for its length.
  void ClearEx(bool xLockChange = true);
  void Order();
  void SetUSImageList(const std::shared_ptr<controls::USImageList>& ImageListControl, StringView Key = u"Key");
  [[nodiscard]] host::Variant Item(int32_t Index) const;
  void Item(int32_t Index, const host::Variant& value);
  [[nodiscard]] int32_t ItemData(int32_t Index) const;
  void ItemData(int32_t Index, int32_t value);
  [[nodiscard]] int32_t ItemIcon(int32_t Index) const;
  void ItemIcon(int32_t Index, int32_t value);
  [[nodiscard]] int32_t ItemIconSelected(int32_t Index) const;
  void ItemIconSelected(int32_t Index, int32_t value);
  // -1 draws the item in the list's colour.
  [[nodiscard]] int32_t ItemForeColor(int32_t Index) const;
  void ItemForeColor(int32_t Index, int32_t value);
  [[nodiscard]] bool ItemEnabled(int32_t Index) const;
  void ItemEnabled(int32_t Index, bool value);
  [[nodiscard]] String ItemToolTip(int32_t Index) const;
  void ItemToolTip(int32_t Index, StringView value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> ItemMouseIcon(int32_t Index) const;
  void ItemMouseIcon(int32_t Index, std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] bool ItemSeparatorLine(int32_t Index) const;
  void ItemSeparatorLine(int32_t Index, bool value);
  [[nodiscard]] String ItemTag(int32_t Index) const;
  void ItemTag(int32_t Index, StringView value);
  [[nodiscard]] int32_t ListIndex() const;
  void ListIndex(int32_t value);
  [[nodiscard]] int32_t ListCount() const;

  // ---- The list ----------------------------------------------------------------------------------

  // Opens the list (see the header comment); called while open it only places the list again.
  void ShowList();
  void HideList();
  [[nodiscard]] bool IsListVisible() const { return m_listOpen; }
  void About();

  // For tests and the grid: the inner parts.
  [[nodiscard]] host::TextBox& txtCombo() const { return *m_text; }
  [[nodiscard]] USListBox& USListBox1() const { return *m_list; }
  [[nodiscard]] int32_t PaintedState() const { return m_paintedState; }
  [[nodiscard]] bool IsMouseOver() const { return m_mouseOver; }
  [[nodiscard]] bool MouseTracker() const { return m_mouseEx != nullptr; }
  // The arrow button's rectangle in client pixels.
  [[nodiscard]] platform::RECT ButtonRect() const;

  // ---- Events ------------------------------------------------------------------------------------

  host::Event<> Change;
  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&> KeyPress;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<> ListIndexChange;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<> MouseEnter;
  host::Event<> MouseExit;
  host::Event<> Scroll;
  host::Event<> TopIndexChange;
  host::Event<> ItemClicked;
  host::Event<> BeginDisplayList;
  host::Event<> EndDisplayList;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // The paint entry: state -1 is the current one; without force a state and look already on
  // the screen are not painted again.
  void DrawCombo(int32_t xState = -1, bool xForce = false);

 protected:
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Hide() override;
  void UserControl_GotFocus() override;
  void UserControl_ExitFocus() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_Terminate() override;
  bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) override;

 private:
  // Parts and wiring (USComboBox.cpp, USComboBoxInput.cpp).
  void CreateParts();
  void ConnectText();
  void ConnectList();
  void Layout();
  void ApplyTheme();
  void ApplyListLooks();
  void ApplyTextLook();
  void AttachMouseTracker();
  // Text and keys (USComboBoxInput.cpp).
  void OnTextChange();
  void OnTextKeyDown(int16_t& KeyCode, int16_t& Shift);
  bool HandleKey(int16_t& KeyCode, int16_t Shift);
  bool OnTextSiteMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam);
  void OnListIndexChange();
  void OnListClick();
  void MoveListIndex(int32_t delta);
  void JumpToInitial(char16_t initial);
  void SetTextFromCode(StringView value, bool selectAll);
  void AutoCompleteFrom(const String& typed);
  void OnMouseEnter();
  void OnMouseExit();
  // Pop-up (USComboBoxList.cpp).
  void OnReleaseTimer();
  void PlaceList();
  [[nodiscard]] bool FocusIsOurs() const;
  [[nodiscard]] platform::HWND FormWindow() const;
  [[nodiscard]] int32_t MeasureItemsWidth() const;
  // Paint (USComboBoxPaint.cpp).
  void PaintFrame(int32_t state);
  void PaintButton(platform::HDC dc, const platform::RECT& button, int32_t state);
  [[nodiscard]] int32_t CurrentState() const;

  std::shared_ptr<host::TextBox> m_text;
  std::shared_ptr<USListBox> m_list;
  std::unique_ptr<frame::APIMouseEvents> m_mouseEx;
  std::unique_ptr<frame::APIMouseEvents> m_textMouseEx;
  std::shared_ptr<image::API32bppDIB> m_pictureDib;
  std::shared_ptr<image::API32bppDIB> m_pictureOverDib;

  int16_t m_alignment = 0;
  bool m_autoComplete = true;
  bool m_autoOpenOnChange = false;
  OLE_COLOR m_backColor = 0xFFFFFF;
  OLE_COLOR m_backColorDisabled = 0xFFFFFF;
  OLE_COLOR m_backColorOver = 0xF4FFFF;
  OLE_COLOR m_backColorOnShowList = 0;
  OLE_COLOR m_borderColor = 0;
  OLE_COLOR m_borderColorDisabled = 0xDBCECC;
  OLE_COLOR m_borderColorOver = 0;
  int32_t m_cacheIncrement = 1000;
  OLE_COLOR m_foreColor = 0;
  OLE_COLOR m_foreColorDisabled = 0;
  OLE_COLOR m_gradientColor1 = 0xFFFFFF;
  OLE_COLOR m_gradientColor2 = 0xFFFFFF;
  int32_t m_gradientMode = 1;
  OLE_COLOR m_listBackColor = 0xFFFFFF;
  OLE_COLOR m_listBackColorEvenRows = 0xFBFBFC;
  bool m_listBackColorEvenRowsEnabled = true;
  OLE_COLOR m_listForeColor = 0xFFFFFF;
  bool m_listGradient = false;
  int32_t m_listItemHeight = 26;
  float m_listItemWidth = 0;
  bool m_listItemWidthCustom = false;
  OLE_COLOR m_listItemSelectedBorderColor = 0xFFF3E5;
  OLE_COLOR m_listItemSelectedColor1 = 0xFFF3E5;
  OLE_COLOR m_listItemSelectedColor2 = 0xFFF3E5;
  OLE_COLOR m_listItemSelectedForeColor = 0xFFFFFF;
  std::shared_ptr<host::StdPicture> m_listPicture;
  std::shared_ptr<host::StdPicture> m_listPictureOver;
  bool m_lockChange = false;
  int32_t m_numberItemsToShow = 7;
  bool m_redraw = true;
  bool m_showCorner = false;
  bool m_showEmptyList = false;
  int32_t m_style = Dropdown_Combo;
  int32_t m_theme = 2;
  int32_t m_tagID = -1;

  // Run-time state.
  bool m_userMode = false;
  bool m_listOpen = false;
  bool m_mouseOver = false;
  bool m_hasFocus = false;
  // What was current when the list opened: Esc puts it back.
  int32_t m_indexAtOpen = -1;
  String m_textAtOpen;
  // When the list opened, on the platform's clock: TRelease's grace runs from here.
  uint32_t m_openedAt = 0;
  // Set while the control writes txtCombo itself: the change is not auto-completed.
  bool m_settingText = false;
  // The last key in txtCombo deleted text: no auto-complete for the change it makes.
  bool m_deleting = false;
  // Set while the control moves the list's index itself for the auto-complete: the text stays.
  bool m_completing = false;
  // BeginFill held LockChange and the list's painting; EndFill gives them back.
  bool m_filling = false;
  bool m_lockBeforeFill = false;
  // The list's own painting switch, apart from the control's Redraw.
  bool m_listRedraw = true;
  int32_t m_paintedState = -2;
  bool m_paintedFocus = false;
  // A row of the list was pressed: its click closes the list.
  bool m_rowPressed = false;
  // While the list is open: refuses the focus and activation to the pop-up, so that the keys
  // stay in txtCombo and the form stays active when a row is clicked.
  platform::HHOOK m_focusHook = 0;
};

}  // namespace mx::entry
