#pragma once
// USListBox: an owner-drawn list. Each item carries a value shown as text, caller's data, an
// icon and a second icon for while it is current, a text colour, an enabled flag, a tooltip, a
// pointer, a separator line above it and a tag. The control owns three constituent children:
//
//   +------------------------------------+---+
//   | PicLST: the rows, drawn into a     | B |   Bar: a USScrollBar, shown only when there
//   | persistent image and copied to the | a |   are more items than visible rows; its value
//   | window on paint                    | r |   is the index of the top row
//   +------------------------------------+---+
//   txtEdit: a host TextBox laid over the current row by StartEdit, hidden by EndEdit.
//
// Rows are ItemHeight pixels high, row k of the window at y = k * ItemHeight, so that the item
// under a point is TopIndex + y / ItemHeight. The item table grows CacheIncrement records past
// the last item whenever it fills, so that a fill of many items moves the table rarely.
//
// Selection: in Single mode the current item (ListIndex) is the one selected item; in Multiple
// mode ListIndex is only the current item and ItemSelected is toggled per item by Space and by
// clicks. A disabled item is never selected by the mouse or the keys, but code may make it
// current.
//
// The list also serves as the drop-down of the combo box, which turns the control's window into
// a top-level pop-up: nothing here assumes that the window has a form as its parent.
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
class APITooltip;
class APISubClass;
}  // namespace mx::frame

namespace mx::imagelist {
class APIImageList;
}  // namespace mx::imagelist

namespace mx::controls {
class USScrollBar;
class USImageList;
}  // namespace mx::controls

namespace mx::entry {

using host::OLE_COLOR;
using host::String;
using host::StringView;

enum ENUM_ORDER_TYPE : int32_t { Ascendent = 0, Descendent = 1 };
enum ENUM_SELECT_MODE : int32_t { Single = 0, Multiple = 1 };
// GradientMode of the list's back: 0 across (left to right), 1 down (top to bottom).
enum ENUM_POSITION : int32_t { Horizontal = 0, Vertical = 1 };

class USListBox : public host::UserControl {
 public:
  // An ItemForeColor of this value draws the item in the list's ForeColor.
  static constexpr int32_t kListForeColor = -1;
  // The colour of the separator line above an item.
  static constexpr OLE_COLOR kSeparatorColor = 0xFAFAFE;

  // One record of the item table.
  struct ItemRecord {
    host::Variant item;
    int32_t itemData = 0;
    int32_t itemIcon = -1;
    int32_t itemIconSelected = -1;
    int32_t itemForeColor = kListForeColor;
    bool itemEnabled = true;
    String itemToolTip;
    std::shared_ptr<host::StdPicture> itemMouseIcon;
    bool itemSeparatorLine = false;
    String itemTag;
  };

  USListBox();
  ~USListBox() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USListBox"; }
  [[nodiscard]] String TypeName() const override { return u"USListBox"; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return m_picDC; }

  // ---- Persisted properties -------------------------------------------------------------------

  [[nodiscard]] int32_t Alignment() const { return m_alignment; }
  void Alignment(int32_t value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorEvenRows() const { return m_backColorEvenRows; }
  void BackColorEvenRows(OLE_COLOR value);
  [[nodiscard]] bool BackColorEvenRowsEnabled() const { return m_backColorEvenRowsEnabled; }
  void BackColorEvenRowsEnabled(bool value);
  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  // Negative values mean the default, 1000.
  [[nodiscard]] int32_t CacheIncrement() const { return m_cacheIncrement; }
  void CacheIncrement(int32_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorSelected() const { return m_foreColorSelected; }
  void ForeColorSelected(OLE_COLOR value);
  [[nodiscard]] int32_t GradientMode() const { return m_gradientMode; }
  void GradientMode(int32_t value);
  [[nodiscard]] bool HoverSelection() const { return m_hoverSelection; }
  void HoverSelection(bool value);
  // The row height in pixels (at least 1); with ItemHeightAuto the font decides it.
  [[nodiscard]] int32_t ItemHeight() const { return m_itemHeight; }
  void ItemHeight(int32_t value);
  [[nodiscard]] bool ItemHeightAuto() const { return m_itemHeightAuto; }
  void ItemHeightAuto(bool value);
  // The rows' inset from the left and right edges, in pixels.
  [[nodiscard]] int32_t ItemOffset() const { return m_itemOffset; }
  void ItemOffset(int32_t value);
  [[nodiscard]] OLE_COLOR ItemSelectedBackColor() const { return m_itemSelectedBackColor; }
  void ItemSelectedBackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ItemSelectedBorderColor() const { return m_itemSelectedBorderColor; }
  void ItemSelectedBorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ItemSelectedColor1() const { return m_itemSelectedColor1; }
  void ItemSelectedColor1(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ItemSelectedColor2() const { return m_itemSelectedColor2; }
  void ItemSelectedColor2(OLE_COLOR value);
  [[nodiscard]] int32_t ItemTextLeft() const { return m_itemTextLeft; }
  void ItemTextLeft(int32_t value);
  [[nodiscard]] bool ListGradient() const { return m_listGradient; }
  void ListGradient(bool value);
  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  void MouseIcon(std::shared_ptr<host::StdPicture> value);
  // Stored; the items are put in this order by Order.
  [[nodiscard]] int32_t OrderType() const { return m_orderType; }
  void OrderType(int32_t value);
  // False suspends painting; turning it on again paints once.
  [[nodiscard]] bool Redraw() const { return m_redraw; }
  void Redraw(bool value);
  [[nodiscard]] int32_t ScrollBarWidth() const { return m_scrollBarWidth; }
  void ScrollBarWidth(int32_t value);
  // A picture drawn stretched over a selected row in place of the selection gradient.
  [[nodiscard]] std::shared_ptr<host::StdPicture> SelectionPicture() const { return m_selectionPicture; }
  void SelectionPicture(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] int32_t SelectMode() const { return m_selectMode; }
  void SelectMode(int32_t value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  void Theme(int32_t value);
  // The number of whole rows the list shows; setting it sizes the control to that many rows.
  [[nodiscard]] int32_t VisibleRows() const;
  void VisibleRows(int32_t value);
  [[nodiscard]] bool WordWrap() const { return m_wordWrap; }
  void WordWrap(bool value);

  // ---- Items ----------------------------------------------------------------------------------

  // Adds an item at the end and returns its index.
  int32_t AddItem(const host::Variant& Item, int32_t ItemData = 0, int32_t ItemIcon = -1,
                  int32_t ItemIconSelected = -1, int32_t ItemForeColor = kListForeColor, bool ItemEnabled = true,
                  StringView ItemToolTip = {}, std::shared_ptr<host::StdPicture> ItemMouseIcon = nullptr,
                  bool ItemSeparatorLine = false, StringView ItemTag = {});
  // Replaces every field of item Index (its selected flag stays).
  void ModifyItem(int32_t Index, const host::Variant& Item, int32_t ItemData = 0, int32_t ItemIcon = -1,
                  int32_t ItemIconSelected = -1, int32_t ItemForeColor = kListForeColor, bool ItemEnabled = true,
                  StringView ItemToolTip = {}, std::shared_ptr<host::StdPicture> ItemMouseIcon = nullptr,
                  bool ItemSeparatorLine = false, StringView ItemTag = {});
  // Nothing happens on an empty list; an index out of range raises 9.
  void RemoveItem(int32_t Index);
  void Clear();
  [[nodiscard]] int32_t ListCount() const { return m_count; }

  // Indexed item fields: an index outside 0..ListCount-1 raises 9. Each setter repaints its row.
  [[nodiscard]] host::Variant Item(int32_t Index) const;
  void Item(int32_t Index, const host::Variant& value);
  [[nodiscard]] int32_t ItemData(int32_t Index) const;
  void ItemData(int32_t Index, int32_t value);
  [[nodiscard]] int32_t ItemIcon(int32_t Index) const;
  void ItemIcon(int32_t Index, int32_t value);
  [[nodiscard]] int32_t ItemIconSelected(int32_t Index) const;
  void ItemIconSelected(int32_t Index, int32_t value);
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
  [[nodiscard]] bool ItemSelected(int32_t Index) const;
  void ItemSelected(int32_t Index, bool value);

  // The current item, -1 for none. Setting it (from -1 to ListCount-1; others raise 380) makes
  // the item current, selects it in Single mode when it is enabled, scrolls it into view and
  // raises ListIndexChange, then TopIndexChange and Scroll when the top row moved.
  [[nodiscard]] int32_t ListIndex() const { return m_listIndex; }
  void ListIndex(int32_t value);
  // The item in the top row; held between 0 and ListCount - VisibleRows.
  [[nodiscard]] int32_t TopIndex() const { return m_topIndex; }
  void TopIndex(int32_t value);

  // ---- Methods --------------------------------------------------------------------------------

  // Sorts the items by their text in OrderType, carrying every field and the selected flags.
  void Order();
  void Refresh();
  // From StartIndex, the first item whose text equals FindString (or begins with it), without
  // regard to case; -1 when there is none.
  [[nodiscard]] int32_t FindFirst(StringView FindString, int32_t StartIndex = 0, bool StartWith = false) const;
  // The first item with this ItemData / this text (xCompare as the host's: 0 binary, 1 text);
  // none found gives -1, or 0 when DefaultAsNullResult is False.
  [[nodiscard]] int32_t GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult = true) const;
  [[nodiscard]] int32_t GetIndexFromStr(StringView xTextToFind, int32_t xCompare = 0,
                                        bool DefaultAsNullResult = true) const;
  // Scroll by one row down / up through the bar (the wheel's steps).
  void IncreaseBarValue();
  void DecreaseBarValue();
  // The in-place editor over the current row; EndEdit(True) writes its text to the item.
  void StartEdit();
  void EndEdit(bool Modify);
  [[nodiscard]] bool IsEditing() const { return m_editing; }
  // True stops the pointer from moving ListIndex in HoverSelection mode until called with False.
  void DisableMouseMove(bool CurrentState);
  // Icons come from the list Key of the image-list control.
  void SetUSImageList(const std::shared_ptr<controls::USImageList>& ImageListControl, StringView Key = u"Key");
  void About();

  // ---- Events ---------------------------------------------------------------------------------

  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&> KeyDown;  // KeyCode, Shift
  host::Event<int16_t&> KeyPress;           // KeyAscii
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<> ListIndexChange;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;  // Button, Shift, X, Y (PicLST pixels)
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<> Scroll;
  host::Event<> TopIndexChange;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection, for tests and tools --------------------------------------------------------

  // The constituent windows.
  [[nodiscard]] platform::HWND PicLSThWnd() const { return m_pic; }
  [[nodiscard]] controls::USScrollBar* Bar() const { return m_bar.get(); }
  [[nodiscard]] host::TextBox* TextEdit() const { return m_txtEdit.get(); }
  // The rectangle of visible row `slot` (0 = top row) in PicLST, as the last layout made it.
  [[nodiscard]] platform::RECT RowRect(int32_t slot) const;
  // How many records the table holds room for, and how often it grew.
  [[nodiscard]] int32_t TableBound() const { return static_cast<int32_t>(m_items.capacity()); }
  [[nodiscard]] int32_t TableGrowths() const { return m_tableGrowths; }
  // How many rows DrawItem has painted since the control was made (a paint cost measure).
  [[nodiscard]] int64_t RowsPainted() const { return m_rowsPainted; }
  [[nodiscard]] bool MouseMoveDisabled() const { return m_mouseMoveDisabled; }
  [[nodiscard]] const frame::APITooltip* ToolTip() const { return m_toolTip.get(); }

  // The drawing entries: the whole list, and one row (xClear clears its rectangle first).
  void DrawList();
  void DrawItem(int32_t xIndex, bool xClear);

 protected:
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_GotFocus() override;
  void UserControl_LostFocus() override;
  void UserControl_EnterFocus() override;
  void UserControl_ExitFocus() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) override;

 private:
  friend struct ListBoxWindows;

  // Table access that raises 9 for an index out of range.
  [[nodiscard]] const ItemRecord& At(int32_t index) const;
  ItemRecord& At(int32_t index);
  // Stores one field of item index (raising 9 when out of range) and repaints its row.
  template <typename T>
  void SetField(int32_t index, T ItemRecord::*field, T value) {
    At(index).*field = std::move(value);
    DrawItem(index, true);
  }
  [[nodiscard]] String ItemText(int32_t index) const;
  void EnsureTableRoom(int32_t lastIndex);
  void SetRecord(ItemRecord& r, const host::Variant& Item, int32_t ItemData, int32_t ItemIcon,
                 int32_t ItemIconSelected, int32_t ItemForeColor, bool ItemEnabled, StringView ItemToolTip,
                 std::shared_ptr<host::StdPicture> ItemMouseIcon, bool ItemSeparatorLine, StringView ItemTag);
  void QuickSort(int32_t low, int32_t high, bool descending);
  void SwapItems(int32_t a, int32_t b);

  // Children and layout (paint unit).
  void CreateChildren();
  void DestroyChildren();
  void LayoutChildren();
  void UpdateBar();
  void SyncBarLater();
  void LayoutRows();
  void ApplyItemHeightAuto();
  void EnsurePicSurface(int32_t width, int32_t height);
  void PaintPicWindow(platform::HDC dc);
  void PresentRows(int32_t firstSlot, int32_t lastSlot);
  void PaintBack(const platform::RECT& rc, int32_t index);
  void DrawIcon(int32_t icon, const platform::RECT& row, int32_t& textLeft);
  [[nodiscard]] int32_t LastVisibleIndex() const;
  [[nodiscard]] int32_t MaxTopIndex() const;
  [[nodiscard]] std::shared_ptr<imagelist::APIImageList> BoundImages() const;
  void ApplyTheme();

  // Input (input unit).
  void PicMouseDown(int16_t button, int16_t shift, float x, float y);
  void PicMouseMove(int16_t button, int16_t shift, float x, float y);
  void PicMouseUp(int16_t button, int16_t shift, float x, float y);
  void PicDblClick();
  void PicWheel(int32_t delta);
  bool PicSetCursor();
  [[nodiscard]] int32_t IndexAtY(float y) const;
  void MoveByKeys(int32_t target, int32_t direction);
  void SetTopFromUser(int32_t value);
  void OnBarChange();
  void UpdateToolTip(int32_t index);
  void EditKeyDown(int16_t& KeyCode);

  // Persisted.
  int32_t m_alignment = 0;
  OLE_COLOR m_backColor = 0xFFFFFF;
  OLE_COLOR m_backColorEvenRows = 0xFBFBFC;
  bool m_backColorEvenRowsEnabled = true;
  OLE_COLOR m_borderColor = 0;
  int32_t m_cacheIncrement = 1000;
  OLE_COLOR m_foreColor = 0;
  OLE_COLOR m_foreColorSelected = 0;
  int32_t m_gradientMode = Horizontal;
  bool m_hoverSelection = false;
  int32_t m_itemHeight = 26;
  bool m_itemHeightAuto = false;
  int32_t m_itemOffset = 0;
  OLE_COLOR m_itemSelectedBackColor = 0xFFFFFF;
  OLE_COLOR m_itemSelectedBorderColor = 0xFFF3E5;
  OLE_COLOR m_itemSelectedColor1 = 0xFFF3E5;
  OLE_COLOR m_itemSelectedColor2 = 0xFFF3E5;
  int32_t m_itemTextLeft = 3;
  bool m_listGradient = false;
  int32_t m_orderType = Ascendent;
  bool m_redraw = true;
  int32_t m_scrollBarWidth = 13;
  std::shared_ptr<host::StdPicture> m_selectionPicture;
  int32_t m_selectMode = Single;
  int32_t m_theme = 2;
  bool m_wordWrap = false;

  // The item table: records and the parallel selected flags. Both hold m_count live entries;
  // the records' capacity is the table's bound.
  std::vector<ItemRecord> m_items;
  std::vector<uint8_t> m_selected;
  int32_t m_count = 0;
  int32_t m_tableGrowths = 0;

  // Run-time state.
  bool m_userMode = false;
  bool m_hasFocus = false;
  bool m_editing = false;
  bool m_mouseMoveDisabled = false;
  bool m_inBarChange = false;
  bool m_inLayout = false;
  bool m_barSyncPosted = false;
  bool m_afterDoubleClick = false;
  int32_t m_listIndex = -1;
  // In Single mode the one item whose selected flag is set (-1: none), so that moving the
  // selection touches two flags rather than the whole table.
  int32_t m_singleSelected = -1;
  int32_t m_topIndex = 0;
  int32_t m_lastMultipleRow = -1;
  int32_t m_hoverIndex = -1;
  int32_t m_tipIndex = -1;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int64_t m_rowsPainted = 0;
  // Row rectangles of the visible window, refreshed by LayoutRows.
  std::vector<platform::RECT> m_rows;
  int32_t m_picWidth = 0;
  int32_t m_picHeight = 0;

  // PicLST: its window, and the persistent image it shows (a DIB selected into a memory DC).
  platform::HWND m_pic = 0;
  platform::HDC m_picDC = 0;
  platform::HBITMAP m_picBitmap = 0;
  platform::HGDIOBJ m_picOldBitmap = 0;
  platform::HFONT m_picFont = 0;
  platform::HGDIOBJ m_picOldFont = 0;
  std::shared_ptr<controls::USScrollBar> m_bar;
  std::shared_ptr<host::TextBox> m_txtEdit;
  std::unique_ptr<frame::APITooltip> m_toolTip;
  // The bound image-list control; the list only reads its images.
  std::shared_ptr<controls::USImageList> m_imageListControl;
  String m_imageListKey = u"Key";
  // Custom pointers made from item icons, released in Terminate.
  std::vector<std::pair<std::shared_ptr<host::StdPicture>, platform::HCURSOR>> m_cursors;
};

}  // namespace mx::entry
