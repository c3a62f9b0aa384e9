// USListBox: the item table, properties, methods, lifecycle and persistence.
#include "entry/USListBox.h"

#include <algorithm>
#include <utility>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/USImageList.h"
#include "controls/USScrollBar.h"
#include "frame/APITooltip.h"
#include "frame/Themes.h"
#include "host/Err.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBox.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

constexpr int32_t kDefaultCacheIncrement = 1000;

OLE_COLOR DefaultBorderColor() { return host::ShiftRGBColor(0x9A572B, 120); }

}  // namespace

USListBox::USListBox() { m_borderColor = DefaultBorderColor(); }

USListBox::~USListBox() = default;

// ---- The item table -----------------------------------------------------------------------------

const USListBox::ItemRecord& USListBox::At(int32_t index) const {
  if (index < 0 || index >= m_count) host::Raise(9, u"USListBox");
  return m_items[static_cast<size_t>(index)];
}

USListBox::ItemRecord& USListBox::At(int32_t index) {
  if (index < 0 || index >= m_count) host::Raise(9, u"USListBox");
  return m_items[static_cast<size_t>(index)];
}

String USListBox::ItemText(int32_t index) const {
  const Variant& v = m_items[static_cast<size_t>(index)].item;
  if (v.IsNull() || v.IsEmpty()) return {};
  String text;
  // A value with no text form (an object, an array) shows as nothing rather than failing a paint.
  Step([&] { text = v.ToString(); });
  return text;
}

void USListBox::EnsureTableRoom(int32_t lastIndex) {
  if (static_cast<size_t>(lastIndex) < m_items.capacity()) return;
  // The bound moves to the new last index plus CacheIncrement in one step: a fill of n items
  // moves the table about n / CacheIncrement times.
  const size_t bound = static_cast<size_t>(lastIndex) + static_cast<size_t>(std::max(m_cacheIncrement, 0)) + 1;
  m_items.reserve(bound);
  m_selected.reserve(bound);
  ++m_tableGrowths;
}

void USListBox::SetRecord(ItemRecord& r, const Variant& Item, int32_t ItemData, int32_t ItemIcon,
                          int32_t ItemIconSelected, int32_t ItemForeColor, bool ItemEnabled, StringView ItemToolTip,
                          std::shared_ptr<host::StdPicture> ItemMouseIcon, bool ItemSeparatorLine, StringView ItemTag) {
  r.item = Item;
  r.itemData = ItemData;
  r.itemIcon = ItemIcon;
  r.itemIconSelected = ItemIconSelected;
  r.itemForeColor = ItemForeColor;
  r.itemEnabled = ItemEnabled;
  r.itemToolTip = String(ItemToolTip);
  r.itemMouseIcon = std::move(ItemMouseIcon);
  r.itemSeparatorLine = ItemSeparatorLine;
  r.itemTag = String(ItemTag);
}

int32_t USListBox::AddItem(const Variant& Item, int32_t ItemData, int32_t ItemIcon, int32_t ItemIconSelected,
                           int32_t ItemForeColor, bool ItemEnabled, StringView ItemToolTip,
                           std::shared_ptr<host::StdPicture> ItemMouseIcon, bool ItemSeparatorLine,
                           StringView ItemTag) {
  const int32_t index = m_count;
  EnsureTableRoom(index);
  ItemRecord r;
  SetRecord(r, Item, ItemData, ItemIcon, ItemIconSelected, ItemForeColor, ItemEnabled, ItemToolTip,
            std::move(ItemMouseIcon), ItemSeparatorLine, ItemTag);
  m_items.push_back(std::move(r));
  m_selected.push_back(0);
  ++m_count;
  // The bar's range changes with every item, and each change repaints the bar: while it only
  // grows, one update after the fill (a posted message) stands for all of them. The new row
  // itself paints only when it is in view.
  SyncBarLater();
  if (index <= LastVisibleIndex()) DrawList();
  return index;
}

void USListBox::ModifyItem(int32_t Index, const Variant& Item, int32_t ItemData, int32_t ItemIcon,
                           int32_t ItemIconSelected, int32_t ItemForeColor, bool ItemEnabled, StringView ItemToolTip,
                           std::shared_ptr<host::StdPicture> ItemMouseIcon, bool ItemSeparatorLine,
                           StringView ItemTag) {
  SetRecord(At(Index), Item, ItemData, ItemIcon, ItemIconSelected, ItemForeColor, ItemEnabled, ItemToolTip,
            std::move(ItemMouseIcon), ItemSeparatorLine, ItemTag);
  DrawItem(Index, true);
}

void USListBox::RemoveItem(int32_t Index) {
  if (m_count == 0) return;
  (void)At(Index);  // raises for an index out of range
  m_items.erase(m_items.begin() + Index);
  m_selected.erase(m_selected.begin() + Index);
  --m_count;
  // The current item keeps pointing at the same record; removing it leaves none current.
  if (m_listIndex == Index) m_listIndex = -1;
  else if (m_listIndex > Index) --m_listIndex;
  if (m_singleSelected == Index) m_singleSelected = -1;
  else if (m_singleSelected > Index) --m_singleSelected;
  if (m_lastMultipleRow >= m_count) m_lastMultipleRow = -1;
  m_topIndex = std::min(m_topIndex, MaxTopIndex());
  UpdateBar();
  DrawList();
}

void USListBox::Clear() {
  m_items.clear();
  m_selected.clear();
  m_count = 0;
  m_listIndex = -1;
  m_singleSelected = -1;
  m_topIndex = 0;
  m_lastMultipleRow = -1;
  m_hoverIndex = -1;
  if (m_editing) EndEdit(false);
  UpdateBar();
  DrawList();
}

Variant USListBox::Item(int32_t Index) const { return At(Index).item; }
void USListBox::Item(int32_t Index, const Variant& value) { SetField(Index, &ItemRecord::item, value); }
int32_t USListBox::ItemData(int32_t Index) const { return At(Index).itemData; }
void USListBox::ItemData(int32_t Index, int32_t value) { SetField(Index, &ItemRecord::itemData, value); }
int32_t USListBox::ItemIcon(int32_t Index) const { return At(Index).itemIcon; }
void USListBox::ItemIcon(int32_t Index, int32_t value) { SetField(Index, &ItemRecord::itemIcon, value); }
int32_t USListBox::ItemIconSelected(int32_t Index) const { return At(Index).itemIconSelected; }
void USListBox::ItemIconSelected(int32_t Index, int32_t value) {
  SetField(Index, &ItemRecord::itemIconSelected, value);
}
int32_t USListBox::ItemForeColor(int32_t Index) const { return At(Index).itemForeColor; }
void USListBox::ItemForeColor(int32_t Index, int32_t value) { SetField(Index, &ItemRecord::itemForeColor, value); }
bool USListBox::ItemEnabled(int32_t Index) const { return At(Index).itemEnabled; }
void USListBox::ItemEnabled(int32_t Index, bool value) { SetField(Index, &ItemRecord::itemEnabled, value); }
String USListBox::ItemToolTip(int32_t Index) const { return At(Index).itemToolTip; }
void USListBox::ItemToolTip(int32_t Index, StringView value) {
  // The tip of the item under the pointer takes the new text at the next move.
  if (m_tipIndex == Index) m_tipIndex = -1;
  SetField(Index, &ItemRecord::itemToolTip, String(value));
}
std::shared_ptr<host::StdPicture> USListBox::ItemMouseIcon(int32_t Index) const { return At(Index).itemMouseIcon; }
void USListBox::ItemMouseIcon(int32_t Index, std::shared_ptr<host::StdPicture> value) {
  SetField(Index, &ItemRecord::itemMouseIcon, std::move(value));
}
bool USListBox::ItemSeparatorLine(int32_t Index) const { return At(Index).itemSeparatorLine; }
void USListBox::ItemSeparatorLine(int32_t Index, bool value) {
  SetField(Index, &ItemRecord::itemSeparatorLine, value);
}
String USListBox::ItemTag(int32_t Index) const { return At(Index).itemTag; }
void USListBox::ItemTag(int32_t Index, StringView value) { SetField(Index, &ItemRecord::itemTag, String(value)); }
bool USListBox::ItemSelected(int32_t Index) const {
  (void)At(Index);  // raises for an index out of range
  return m_selected[static_cast<size_t>(Index)] != 0;
}
void USListBox::ItemSelected(int32_t Index, bool value) {
  (void)At(Index);  // raises for an index out of range
  if (m_selectMode == Single) {
    // Single mode holds at most one selected item: selecting another lets the first go.
    const int32_t previous = m_singleSelected;
    if (value && previous >= 0 && previous != Index) {
      m_selected[static_cast<size_t>(previous)] = 0;
      DrawItem(previous, true);
    }
    if (value) m_singleSelected = Index;
    else if (previous == Index) m_singleSelected = -1;
  }
  m_selected[static_cast<size_t>(Index)] = value ? 1 : 0;
  DrawItem(Index, true);
}

// ---- Current and top item -----------------------------------------------------------------------

int32_t USListBox::MaxTopIndex() const { return std::max(0, m_count - VisibleRows()); }

void USListBox::ListIndex(int32_t value) {
  if (value < -1 || value >= m_count) host::Raise(380, u"USListBox");
  const int32_t old = m_listIndex;
  const int32_t oldTop = m_topIndex;
  const int32_t oldSelected = m_singleSelected;
  m_listIndex = value;
  if (m_selectMode == Single) {
    // One selected item in Single mode: the current one, when it may be selected at all.
    if (oldSelected >= 0) m_selected[static_cast<size_t>(oldSelected)] = 0;
    m_singleSelected = -1;
    if (value >= 0 && m_items[static_cast<size_t>(value)].itemEnabled) {
      m_selected[static_cast<size_t>(value)] = 1;
      m_singleSelected = value;
    }
  }
  if (value >= 0) {
    const int32_t rows = VisibleRows();
    if (value < m_topIndex) m_topIndex = value;
    else if (value > m_topIndex + rows - 1) m_topIndex = value - rows + 1;
    m_topIndex = std::clamp(m_topIndex, 0, MaxTopIndex());
  }
  if (m_topIndex != oldTop) {
    UpdateBar();
    DrawList();
  } else {
    if (oldSelected >= 0 && oldSelected != old) DrawItem(oldSelected, true);
    if (old >= 0) DrawItem(old, true);
    if (value >= 0 && value != old) DrawItem(value, true);
  }
  if (old != value) ListIndexChange();
  if (m_topIndex != oldTop) {
    TopIndexChange();
    Scroll();
  }
}

void USListBox::TopIndex(int32_t value) {
  const int32_t top = std::clamp(value, 0, MaxTopIndex());
  if (top == m_topIndex) return;
  // The editor sits over a row that is about to move: the edit ends with what was typed.
  if (m_editing) EndEdit(true);
  m_topIndex = top;
  UpdateBar();
  DrawList();
  TopIndexChange();
  Scroll();
}

// ---- Methods ------------------------------------------------------------------------------------

void USListBox::SwapItems(int32_t a, int32_t b) {
  std::swap(m_items[static_cast<size_t>(a)], m_items[static_cast<size_t>(b)]);
  std::swap(m_selected[static_cast<size_t>(a)], m_selected[static_cast<size_t>(b)]);
  // The current item follows its record.
  if (m_listIndex == a) m_listIndex = b;
  else if (m_listIndex == b) m_listIndex = a;
  if (m_singleSelected == a) m_singleSelected = b;
  else if (m_singleSelected == b) m_singleSelected = a;
}

// Hoare-style quicksort on the texts with the middle item as pivot; the records and the selected
// flags move together. Recursion goes into the smaller part only, so the depth stays logarithmic.
void USListBox::QuickSort(int32_t low, int32_t high, bool descending) {
  while (low < high) {
    const String pivot = ItemText(low + (high - low) / 2);
    int32_t i = low, j = high;
    auto before = [&](const String& a, const String& b) {
      const int32_t c = host::StrComp(a, b, host::vbTextCompare);
      return descending ? c > 0 : c < 0;
    };
    while (i <= j) {
      while (before(ItemText(i), pivot)) ++i;
      while (before(pivot, ItemText(j))) --j;
      if (i <= j) {
        if (i != j) SwapItems(i, j);
        ++i;
        --j;
      }
    }
    if (j - low < high - i) {
      QuickSort(low, j, descending);
      low = i;
    } else {
      QuickSort(i, high, descending);
      high = j;
    }
  }
}

void USListBox::Order() {
  if (m_count > 1) QuickSort(0, m_count - 1, m_orderType == Descendent);
  m_lastMultipleRow = -1;
  DrawList();
}

void USListBox::Refresh() {
  ApplyItemHeightAuto();
  LayoutChildren();
  DrawList();
}

int32_t USListBox::FindFirst(StringView FindString, int32_t StartIndex, bool StartWith) const {
  const String wanted = host::LCase(FindString);
  for (int32_t i = std::max(0, StartIndex); i < m_count; ++i) {
    const String text = host::LCase(ItemText(i));
    if (StartWith ? text.compare(0, wanted.size(), wanted) == 0 && text.size() >= wanted.size() : text == wanted)
      return i;
  }
  return -1;
}

int32_t USListBox::GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult) const {
  for (int32_t i = 0; i < m_count; ++i) {
    if (m_items[static_cast<size_t>(i)].itemData == xDataToFind) return i;
  }
  return DefaultAsNullResult ? -1 : 0;
}

int32_t USListBox::GetIndexFromStr(StringView xTextToFind, int32_t xCompare, bool DefaultAsNullResult) const {
  const auto compare = xCompare == 0 ? host::vbBinaryCompare : host::vbTextCompare;
  for (int32_t i = 0; i < m_count; ++i) {
    if (host::StrComp(ItemText(i), xTextToFind, compare) == 0) return i;
  }
  return DefaultAsNullResult ? -1 : 0;
}

void USListBox::IncreaseBarValue() { SetTopFromUser(m_topIndex + 1); }

void USListBox::DecreaseBarValue() { SetTopFromUser(m_topIndex - 1); }

void USListBox::DisableMouseMove(bool CurrentState) { m_mouseMoveDisabled = CurrentState; }

void USListBox::SetUSImageList(const std::shared_ptr<controls::USImageList>& ImageListControl, StringView Key) {
  m_imageListControl = ImageListControl;
  m_imageListKey = String(Key);
  DrawList();
}

std::shared_ptr<imagelist::APIImageList> USListBox::BoundImages() const {
  const auto& control = m_imageListControl;
  if (!control) return nullptr;
  auto lists = control->ImageLists();
  if (!lists) return nullptr;
  std::shared_ptr<imagelist::APIImageList> list;
  // A key the control does not hold means no icons, not an error in the paint.
  Step([&] {
    if (lists->IsKeyAssigned(m_imageListKey)) list = lists->Item(Variant(m_imageListKey));
  });
  return list;
}

void USListBox::About() { controls::ShowAboutBox(); }

// ---- Setters ------------------------------------------------------------------------------------

// Colours and modes of the rows repaint the list; geometry also lays the children out again.
#define MX_LIST_SETTER(Name, Type, member, key) \
  void USListBox::Name(Type value) {            \
    member = value;                             \
    PropertyChanged(key);                       \
    DrawList();                                 \
  }
MX_LIST_SETTER(Alignment, int32_t, m_alignment, u"Alignment")
MX_LIST_SETTER(BackColor, OLE_COLOR, m_backColor, u"BackColor")
MX_LIST_SETTER(BackColorEvenRows, OLE_COLOR, m_backColorEvenRows, u"BackColorEvenRows")
MX_LIST_SETTER(BackColorEvenRowsEnabled, bool, m_backColorEvenRowsEnabled, u"BackColorEvenRowsEnabled")
MX_LIST_SETTER(BorderColor, OLE_COLOR, m_borderColor, u"BorderColor")
MX_LIST_SETTER(ForeColor, OLE_COLOR, m_foreColor, u"ForeColor")
MX_LIST_SETTER(ForeColorSelected, OLE_COLOR, m_foreColorSelected, u"ForeColorSelected")
MX_LIST_SETTER(GradientMode, int32_t, m_gradientMode, u"GradientMode")
MX_LIST_SETTER(ItemSelectedBackColor, OLE_COLOR, m_itemSelectedBackColor, u"ItemSelectedBackColor")
MX_LIST_SETTER(ItemSelectedBorderColor, OLE_COLOR, m_itemSelectedBorderColor, u"ItemSelectedBorderColor")
MX_LIST_SETTER(ItemSelectedColor1, OLE_COLOR, m_itemSelectedColor1, u"ItemSelectedColor1")
MX_LIST_SETTER(ItemSelectedColor2, OLE_COLOR, m_itemSelectedColor2, u"ItemSelectedColor2")
MX_LIST_SETTER(ItemTextLeft, int32_t, m_itemTextLeft, u"ItemTextLeft")
MX_LIST_SETTER(ListGradient, bool, m_listGradient, u"ListGradient")
MX_LIST_SETTER(WordWrap, bool, m_wordWrap, u"WordWrap")
#undef MX_LIST_SETTER

void USListBox::CacheIncrement(int32_t value) {
  m_cacheIncrement = value < 0 ? kDefaultCacheIncrement : value;
  PropertyChanged(u"CacheIncrement");
}

void USListBox::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  if (m_bar) Step([&] { m_bar->Enabled(value && m_count > VisibleRows()); });
  DrawList();
}

void USListBox::Font(std::shared_ptr<host::StdFont> value) {
  UserControl::Font(std::move(value));
  PropertyChanged(u"Font");
  Refresh();
}

void USListBox::HoverSelection(bool value) {
  m_hoverSelection = value;
  PropertyChanged(u"HoverSelection");
}

void USListBox::ItemHeight(int32_t value) {
  m_itemHeight = std::max(1, value);
  PropertyChanged(u"ItemHeight");
  Refresh();
}

void USListBox::ItemHeightAuto(bool value) {
  m_itemHeightAuto = value;
  PropertyChanged(u"ItemHeightAuto");
  Refresh();
}

void USListBox::ItemOffset(int32_t value) {
  m_itemOffset = std::max(0, value);
  PropertyChanged(u"ItemOffset");
  Refresh();
}

void USListBox::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
}

void USListBox::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
}

void USListBox::OrderType(int32_t value) {
  m_orderType = value;
  PropertyChanged(u"OrderType");
}

void USListBox::Redraw(bool value) {
  const bool wasOff = !m_redraw;
  m_redraw = value;
  if (wasOff && value) Refresh();
  PropertyChanged(u"Redraw");
}

void USListBox::ScrollBarWidth(int32_t value) {
  m_scrollBarWidth = std::max(0, value);
  PropertyChanged(u"ScrollBarWidth");
  Refresh();
}

void USListBox::SelectionPicture(std::shared_ptr<host::StdPicture> value) {
  m_selectionPicture = std::move(value);
  PropertyChanged(u"SelectionPicture");
  DrawList();
}

void USListBox::SelectMode(int32_t value) {
  m_selectMode = value == Multiple ? Multiple : Single;
  PropertyChanged(u"SelectMode");
  if (m_selectMode == Single) {
    // Back to one selected item: the current one.
    std::fill(m_selected.begin(), m_selected.end(), 0);
    m_singleSelected = -1;
    if (m_listIndex >= 0 && m_items[static_cast<size_t>(m_listIndex)].itemEnabled) {
      m_selected[static_cast<size_t>(m_listIndex)] = 1;
      m_singleSelected = m_listIndex;
    }
  }
  m_lastMultipleRow = -1;
  DrawList();
}

void USListBox::ApplyTheme() {
  m_listGradient = false;
  m_backColor = 0xFFFFFF;
  m_backColorEvenRows = frame::GetThemeColor(m_theme, frame::ThemeListEvenRows);
  m_backColorEvenRowsEnabled = true;
  m_borderColor = host::ShiftRGBColor(frame::GetThemeColor(m_theme, frame::ThemeBorderColor), 120);
  m_foreColor = 0x000000;
  m_foreColorSelected = 0x000000;
  m_itemSelectedBackColor = 0xFFFFFF;
  m_itemSelectedBorderColor = frame::GetThemeColor(m_theme, frame::ThemeSelectionBorder);
  m_itemSelectedColor1 = frame::GetThemeColor(m_theme, frame::ThemeSelectionFill);
  m_itemSelectedColor2 = m_itemSelectedColor1;
}

void USListBox::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  Refresh();
}

int32_t USListBox::VisibleRows() const {
  const int32_t height = m_clientHeight > 0 ? m_clientHeight : 0;
  return std::max(1, height / std::max(1, m_itemHeight));
}

void USListBox::VisibleRows(int32_t value) {
  if (value < 1) host::Raise(380, u"USListBox");
  // The control takes exactly that many rows; the container's units are twips.
  Height(static_cast<float>(value * m_itemHeight) * host::GetScreen().TwipsPerPixelY());
  PropertyChanged(u"VisibleRows");
}

// ---- Lifecycle ----------------------------------------------------------------------------------

void USListBox::UserControl_Initialize() {}

void USListBox::UserControl_InitProperties() {
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_alignment = 0;
  m_cacheIncrement = kDefaultCacheIncrement;
  m_gradientMode = Horizontal;
  m_hoverSelection = false;
  m_itemHeight = 26;
  m_itemHeightAuto = false;
  m_itemOffset = 0;
  m_itemTextLeft = 3;
  m_orderType = Ascendent;
  m_redraw = true;
  m_scrollBarWidth = 13;
  m_selectMode = Single;
  m_theme = frame::Windows_Theme;
  m_wordWrap = false;
  m_backColor = 0xFFFFFF;
  m_backColorEvenRows = 0xFBFBFC;
  m_backColorEvenRowsEnabled = true;
  m_borderColor = DefaultBorderColor();
  m_foreColor = m_foreColorSelected = 0x000000;
  m_itemSelectedBackColor = 0xFFFFFF;
  m_itemSelectedBorderColor = m_itemSelectedColor1 = m_itemSelectedColor2 = 0xFFF3E5;
  m_listGradient = false;
  Step([&] { CreateChildren(); });
}

void USListBox::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag, BagReader::kGivesDefault);

  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] { UserControl::MouseIcon(saved.Picture(u"MouseIcon")); });
  m_selectionPicture = saved.Picture(u"SelectionPicture");
  m_alignment = saved.Long(u"Alignment", 0);
  m_backColor = static_cast<OLE_COLOR>(saved.Long(u"BackColor", 0xFFFFFF));
  m_backColorEvenRows = static_cast<OLE_COLOR>(saved.Long(u"BackColorEvenRows", 0xFBFBFC));
  m_backColorEvenRowsEnabled = saved.Bool(u"BackColorEvenRowsEnabled", true);
  m_borderColor = static_cast<OLE_COLOR>(saved.Long(u"BorderColor", static_cast<int32_t>(DefaultBorderColor())));
  m_cacheIncrement = saved.Long(u"CacheIncrement", kDefaultCacheIncrement);
  if (m_cacheIncrement < 0) m_cacheIncrement = kDefaultCacheIncrement;
  const bool enabled = saved.Bool(u"Enabled", true);
  m_foreColor = static_cast<OLE_COLOR>(saved.Long(u"ForeColor", 0));
  m_foreColorSelected = static_cast<OLE_COLOR>(saved.Long(u"ForeColorSelected", 0));
  m_gradientMode = saved.Long(u"GradientMode", Horizontal);
  m_hoverSelection = saved.Bool(u"HoverSelection", false);
  m_itemHeight = std::max(1, saved.Long(u"ItemHeight", 26));
  m_itemHeightAuto = saved.Bool(u"ItemHeightAuto", false);
  m_itemOffset = std::max(0, saved.Long(u"ItemOffset", 0));
  m_itemSelectedBackColor = static_cast<OLE_COLOR>(saved.Long(u"ItemSelectedBackColor", 0xFFFFFF));
  m_itemSelectedBorderColor = static_cast<OLE_COLOR>(saved.Long(u"ItemSelectedBorderColor", 0xFFF3E5));
  m_itemSelectedColor1 = static_cast<OLE_COLOR>(saved.Long(u"ItemSelectedColor1", 0xFFF3E5));
  m_itemSelectedColor2 = static_cast<OLE_COLOR>(saved.Long(u"ItemSelectedColor2", 0xFFF3E5));
  m_itemTextLeft = saved.Long(u"ItemTextLeft", 3);
  m_listGradient = saved.Bool(u"ListGradient", false);
  const auto pointer = static_cast<int16_t>(saved.Long(u"MousePointer", 0));
  m_orderType = saved.Long(u"OrderType", Ascendent);
  // A saved list without the key does not paint until Redraw is set: the key's default is False.
  m_redraw = saved.Bool(u"Redraw", false);
  m_scrollBarWidth = std::max(0, saved.Long(u"ScrollBarWidth", 13));
  m_selectMode = saved.Long(u"SelectMode", Single) == Multiple ? Multiple : Single;
  // Only stored: the colours saved with the list are the ones that apply.
  m_theme = saved.Long(u"Theme", frame::Windows_Theme);
  m_wordWrap = saved.Bool(u"WordWrap", false);

  Step([&] { UserControl::MousePointer(pointer); });
  Step([&] { UserControl::Enabled(enabled); });
  Step([&] { CreateChildren(); });
}

void USListBox::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  auto colour = [](OLE_COLOR c) { return Variant(static_cast<int32_t>(c)); };
  auto picture = [](const std::shared_ptr<host::StdPicture>& p) { return p ? Variant(p) : Variant::Nothing(); };
  write(u"Alignment", Variant(m_alignment), Variant(int32_t{0}));
  write(u"BackColor", colour(m_backColor), colour(0xFFFFFF));
  write(u"BackColorEvenRows", colour(m_backColorEvenRows), colour(0xFBFBFC));
  write(u"BackColorEvenRowsEnabled", Variant(m_backColorEvenRowsEnabled), Variant(true));
  write(u"BorderColor", colour(m_borderColor), colour(DefaultBorderColor()));
  write(u"CacheIncrement", Variant(m_cacheIncrement), Variant(kDefaultCacheIncrement));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"ForeColor", colour(m_foreColor), colour(0));
  write(u"ForeColorSelected", colour(m_foreColorSelected), colour(0));
  write(u"GradientMode", Variant(m_gradientMode), Variant(int32_t{Horizontal}));
  write(u"HoverSelection", Variant(m_hoverSelection), Variant(false));
  write(u"ItemHeight", Variant(m_itemHeight), Variant(int32_t{26}));
  write(u"ItemHeightAuto", Variant(m_itemHeightAuto), Variant(false));
  write(u"ItemOffset", Variant(m_itemOffset), Variant(int32_t{0}));
  write(u"ItemSelectedBackColor", colour(m_itemSelectedBackColor), colour(0xFFFFFF));
  write(u"ItemSelectedBorderColor", colour(m_itemSelectedBorderColor), colour(0xFFF3E5));
  write(u"ItemSelectedColor1", colour(m_itemSelectedColor1), colour(0xFFF3E5));
  write(u"ItemSelectedColor2", colour(m_itemSelectedColor2), colour(0xFFF3E5));
  write(u"ItemTextLeft", Variant(m_itemTextLeft), Variant(int32_t{3}));
  write(u"ListGradient", Variant(m_listGradient), Variant(false));
  write(u"MouseIcon", picture(UserControl::MouseIcon()), Variant::Nothing());
  write(u"MousePointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  write(u"OrderType", Variant(m_orderType), Variant(int32_t{Ascendent}));
  write(u"Redraw", Variant(m_redraw), Variant(false));
  write(u"ScrollBarWidth", Variant(m_scrollBarWidth), Variant(int32_t{13}));
  write(u"SelectionPicture", picture(m_selectionPicture), Variant::Nothing());
  write(u"SelectMode", Variant(m_selectMode), Variant(int32_t{Single}));
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  // Written for the designer's sake; reading takes the rows from the height again.
  write(u"VisibleRows", Variant(VisibleRows()), Variant(int32_t{0}));
  write(u"WordWrap", Variant(m_wordWrap), Variant(false));
}

void USListBox::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Step([&] { CreateChildren(); });
  Step([&] { Refresh(); });
}

void USListBox::UserControl_Show() {
  Step([&] { CreateChildren(); });
  Step([&] { Refresh(); });
}

void USListBox::UserControl_Terminate() {
  m_userMode = false;
  m_redraw = false;
  Step([&] { m_toolTip.reset(); });
  Step([&] { DestroyChildren(); });
}

}  // namespace mx::entry
