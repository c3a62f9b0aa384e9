#include "grid/GridData.h"

#include <algorithm>
#include <cmath>

#include "grid/GridNumeric.h"
#include "host/Err.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::grid {

namespace {

constexpr char16_t kSource[] = u"USFlexGrid";
// Rows per storage page. Pages never move once allocated.
constexpr int32_t kPageShift = 10;
constexpr int32_t kPageRows = 1 << kPageShift;

}  // namespace

GridData::GridData() : m_font(std::make_shared<host::StdFont>()), m_fontHeader(std::make_shared<host::StdFont>()) {
  m_formats.resize(1);
  ResetRowTables();
  m_captionHeight = 2 * FontTextHeight(*m_font);
}

GridData::~GridData() = default;

// ---- storage ----------------------------------------------------------------------------------

GridRow& GridData::StoredRow(int32_t storageRow) {
  if (storageRow < 0 || storageRow > m_lastRow) host::Raise(host::kErrSubscriptOutOfRange, kSource);
  return m_rowPages[static_cast<size_t>(storageRow >> kPageShift)][storageRow & (kPageRows - 1)];
}

const GridRow& GridData::StoredRow(int32_t storageRow) const {
  if (storageRow < 0 || storageRow > m_lastRow) host::Raise(host::kErrSubscriptOutOfRange, kSource);
  return m_rowPages[static_cast<size_t>(storageRow >> kPageShift)][storageRow & (kPageRows - 1)];
}

GridCell& GridData::CellAt(int32_t storageRow, int32_t storageCol) {
  GridRow& row = StoredRow(storageRow);
  if (storageCol < 0 || storageCol >= Cols()) host::Raise(host::kErrSubscriptOutOfRange, kSource);
  return row.cells[static_cast<size_t>(storageCol)];
}

void GridData::ResetRowTables() {
  m_rowPages.clear();
  m_rowPages.push_back(std::make_unique<GridRow[]>(kPageRows));
  m_rowOrder.clear();
  m_rowOrder.shrink_to_fit();
  m_extras.clear();
  m_freeExtras.clear();
  m_lastRow = -1;
  m_rowBound = 0;
  m_rowReallocations = 0;
}

void GridData::EnsureRowBound(int32_t lastRow) {
  if (lastRow <= m_rowBound) return;
  // The bound grows to lastRow + CacheIncrement, as callers tune it; the pages behind it are
  // added without moving the rows already held.
  m_rowBound = lastRow + m_cacheIncrement;
  ++m_rowReallocations;
  size_t pagesNeeded = static_cast<size_t>(m_rowBound / kPageRows) + 1;
  while (m_rowPages.size() < pagesNeeded) m_rowPages.push_back(std::make_unique<GridRow[]>(kPageRows));
  size_t wanted = static_cast<size_t>(m_rowBound) + 1;
  if (m_rowOrder.capacity() < wanted) m_rowOrder.reserve(std::max(wanted, m_rowOrder.capacity() * 2));
}

size_t GridData::CellHeapBytes() const {
  size_t bytes = 0;
  const size_t cols = m_columns.size();
  for (int32_t r = 0; r <= m_lastRow; ++r) {
    const GridRow& row = StoredRow(r);
    bytes += row.tag.HeapBytes();
    for (size_t c = 0; c < cols; ++c) bytes += row.cells[c].text.HeapBytes();
  }
  return bytes;
}

GridCellExtra& GridData::ExtraOf(GridCell& cell) {
  if (cell.extra == 0) {
    if (!m_freeExtras.empty()) {
      cell.extra = m_freeExtras.back() + 1;
      m_freeExtras.pop_back();
    } else {
      m_extras.emplace_back();
      cell.extra = static_cast<uint32_t>(m_extras.size());
    }
  }
  return m_extras[cell.extra - 1];
}

const GridCellExtra* GridData::ExtraOf(const GridCell& cell) const {
  return cell.extra == 0 ? nullptr : &m_extras[cell.extra - 1];
}

void GridData::ReleaseExtra(GridCell& cell) {
  if (cell.extra == 0) return;
  m_extras[cell.extra - 1] = GridCellExtra{};
  m_freeExtras.push_back(cell.extra - 1);
  cell.extra = 0;
}

// ---- metrics the model needs --------------------------------------------------------------------

int32_t GridData::FontTextHeight(const host::StdFont& font) const {
  using namespace platform;
  HDC dc = CreateCompatibleDC(0);
  if (dc == 0) return 0;
  LOGFONTW lf = font.ToLogFont();
  HFONT hf = CreateFontIndirectW(&lf);
  HGDIOBJ old = hf != 0 ? SelectObject(dc, hf) : 0;
  SIZE size{};
  GetTextExtentPoint32W(dc, std::u16string_view(u"ABCDWXYZ"), &size);
  if (old != 0) SelectObject(dc, old);
  if (hf != 0) DeleteObject(hf);
  DeleteDC(dc);
  return size.cy;
}

int32_t GridData::PixelsFromScaled(float scaled) const {
  return static_cast<int32_t>(std::lround(scaled / m_twipsPerPixel));
}

int32_t GridData::DefaultRowHeight() const {
  int32_t textHeight = FontTextHeight(*m_font);
  int32_t height = m_MinRowHeight > 0 ? PixelsFromScaled(static_cast<float>(m_MinRowHeight)) : 0;
  if (height < textHeight) height = textHeight;
  return height + m_MinVerticalOffset * 2 + 1;
}

// ---- the common check ---------------------------------------------------------------------------

bool GridData::CheckRow(int32_t xRow, int32_t& storageRow) const {
  if (m_lastRow < 0) return false;
  int32_t display = xRow;
  if (display < 0) {
    if (m_row >= 0 && m_row <= m_lastRow) {
      display = m_row;
    } else {
      // With no current row the first row stands in, unless it is locked or hidden.
      const GridRow& first = StoredRow(m_rowOrder[0]);
      if ((first.flags & kRowLocked) != 0 || !first.visible) return false;
      display = 0;
    }
  }
  if (display > m_lastRow) display = m_lastRow;
  storageRow = m_rowOrder[static_cast<size_t>(display)];
  return true;
}

bool GridData::CheckRowCol(int32_t xRow, int32_t xCol, int32_t& storageRow, int32_t& storageCol) const {
  if (!CheckRow(xRow, storageRow)) return false;
  if (m_columns.empty() || xCol >= Cols()) return false;
  if (xCol < 0) {
    storageCol = m_col >= 0 && m_col < Cols() ? m_colOrder[static_cast<size_t>(m_col)] : 0;
  } else {
    storageCol = m_colOrder[static_cast<size_t>(xCol)];
  }
  return true;
}

// ---- current cell and batching --------------------------------------------------------------------

void GridData::Row(int32_t xRow) {
  int32_t found = -1;
  for (int32_t r = std::max(xRow, 0); xRow >= 0 && r <= m_lastRow; ++r) {
    const GridRow& row = StoredRow(m_rowOrder[static_cast<size_t>(r)]);
    if (row.visible && (row.flags & kRowLocked) == 0) {
      found = r;
      break;
    }
  }
  m_row = found;
  RepaintIfRedraw();
}

void GridData::Col(int32_t xCol) {
  if (xCol >= Cols()) return;
  m_col = xCol < 0 ? -1 : xCol;
  RepaintIfRedraw();
}

void GridData::Redraw(bool xValue) {
  m_redraw = xValue;
  if (xValue) OnRedrawAt(-1);
}

// ---- fill ---------------------------------------------------------------------------------------

void GridData::BeginFill(int32_t xTagID, int32_t xCacheIncrement) {
  m_rememberedRow = m_row;
  m_hasRememberedRow = true;
  m_redraw = false;
  // By default the view returns to the row that was at the top.
  int32_t tag = xTagID == -1 ? m_firstVisibleRow : xTagID;
  Clear();
  m_tagId = tag;
  CacheIncrement(xCacheIncrement);
}

void GridData::EndFill(int32_t xStretchedCol, int32_t xStretchedColOFFSET, bool xRedraw, int32_t xRow) {
  if (m_lastRow >= 0) {
    OnReapplySort();
    int32_t target = xRow;
    if (target == -1) target = m_hasRememberedRow && m_rememberedRow >= 0 ? m_rememberedRow : 0;
    if (target != m_row) Row(target);
  }
  if (xStretchedCol != -1) OnStretchCol(xStretchedCol, xStretchedColOFFSET);
  if (xRedraw) {
    m_redraw = true;
    OnRedrawAt(m_tagId);
  }
  m_hasRememberedRow = false;
  m_rememberedRow = -1;
}

void GridData::InitCell(GridCell& cell, const GridColumn& column, int32_t alignment) const {
  cell.alignment = static_cast<int16_t>(alignment);
  cell.formatIndex = 0;
  cell.flags = column.cellFlagsDefault;
}

GridFormat GridData::DefaultFormat() const {
  GridFormat f;
  f.backColor = m_BackColorBackground;
  f.foreColor = m_ForeColor;
  f.fontName = m_font ? m_font->Name() : host::String();
  return f;
}

int32_t GridData::AddColumn(host::StringView xCaption, float xWidth, int32_t xAlignment, int16_t xDataType,
                            host::StringView xFormat, host::StringView xInputFilter, int32_t xImageAlignment,
                            bool xWordWrap, int32_t xIndex, bool xVisible, bool xLocked) {
  const int32_t storage = Cols();
  GridColumn column;
  column.heading = host::String(xCaption);
  column.widthScaled = xWidth + 1.0f;
  column.widthPixels = PixelsFromScaled(column.widthScaled);
  column.alignment = xAlignment;
  column.imageAlignment = xImageAlignment;
  column.dataType = xDataType;
  column.format = host::String(xFormat);
  column.inputFilter = host::String(xInputFilter);
  if (column.inputFilter.empty()) {
    if (xDataType == TypeNumeric) column.inputFilter = u"1234567890.-,";
    if (xDataType == TypeDate) column.inputFilter = u"1234567890./-";
  }
  column.cellFlagsDefault = xWordWrap ? kCellWordWrap : 0;
  column.visible = xVisible;
  column.locked = xLocked;
  m_columns.push_back(std::move(column));
  m_totalColumns.emplace_back();
  m_columnTotals.push_back(0.0);

  // Index 0 appends too: a column is never put before display position 1 this way.
  int32_t display;
  if (xIndex < 1 || xIndex >= storage) {
    m_colOrder.push_back(storage);
    display = storage;
  } else {
    m_colOrder.insert(m_colOrder.begin() + xIndex, storage);
    display = xIndex;
  }

  if (m_lastRow >= 0) {
    // Existing rows get a cell for the new column, aligned as the column says and in the
    // control's current colours and font.
    const size_t oldCols = static_cast<size_t>(storage);
    GridFormat look = DefaultFormat();
    int16_t format = InternFormat(look);
    for (int32_t r = 0; r <= m_lastRow; ++r) {
      GridRow& row = StoredRow(r);
      auto cells = std::make_unique<GridCell[]>(oldCols + 1);
      for (size_t c = 0; c < oldCols; ++c) cells[c] = std::move(row.cells[c]);
      InitCell(cells[oldCols], m_columns.back(), xAlignment);
      cells[oldCols].formatIndex = format;
      row.cells = std::move(cells);
    }
    if (m_formats[static_cast<size_t>(format)].useCount == 0) m_formats[static_cast<size_t>(format)].useCount = 1;
  }
  OnMetricsChanged();
  return display;
}

int32_t GridData::AddItem(host::StringView xItem, int32_t xRow, bool xRowChecked, bool xMarkAsNew, bool xRowLocked,
                          bool xRowVisible, int32_t xRowData) {
  const int32_t cols = Cols();
  ++m_lastRow;
  EnsureRowBound(m_lastRow);
  const int32_t storage = m_lastRow;
  int32_t display;
  if (xRow < 0 || xRow > m_lastRow - 1) {
    m_rowOrder.push_back(storage);
    display = m_lastRow;
  } else {
    m_rowOrder.insert(m_rowOrder.begin() + xRow, storage);
    display = xRow;
  }

  GridRow& row = StoredRow(storage);
  row.cells = cols > 0 ? std::make_unique<GridCell[]>(static_cast<size_t>(cols)) : nullptr;
  row.tag.Clear();
  row.height = DefaultRowHeightCached();
  row.image = 0;
  row.data = xRowData;
  row.flags = 0;
  row.groupHeader = false;
  row.visible = xRowVisible;

  if (m_lastRow == 0) {
    // The first row ever sets up format 0 from the control's colours and font.
    m_formats[0] = DefaultFormat();
    m_formats[0].useCount = 1;
  }

  // Texts are cut at tabs as they are stored: surplus texts are ignored, missing ones leave
  // their cells empty.
  size_t pos = 0;
  bool more = !xItem.empty();
  for (int32_t c = 0; c < cols; ++c) {
    GridCell& cell = row.cells[static_cast<size_t>(c)];
    const GridColumn& column = m_columns[static_cast<size_t>(c)];
    InitCell(cell, column, AlignToCenterCenter);
    if (!more) continue;
    size_t tab = xItem.find(u'\t', pos);
    host::StringView text = xItem.substr(pos, tab == host::StringView::npos ? host::StringView::npos : tab - pos);
    if (tab == host::StringView::npos) more = false;
    else pos = tab + 1;
    if (column.dataType == TypeBoolean) {
      // A boolean column keeps no text: the check bit is the value.
      if (text == u"True" || text == u"1") cell.flags = static_cast<int16_t>(cell.flags | kCellChecked);
      else cell.flags = static_cast<int16_t>(cell.flags & ~kCellChecked);
    } else {
      if (!text.empty()) cell.text.Assign(text);
      if (m_totalLineShow && column.dataType == TypeNumeric) m_columnTotals[static_cast<size_t>(c)] += GridNumericValue(text);
    }
  }
  if (xRowChecked) row.flags = static_cast<int16_t>(row.flags | kRowChecked);
  if (xRowLocked) row.flags = static_cast<int16_t>(row.flags | kRowLocked);
  if (xMarkAsNew) row.flags = static_cast<int16_t>(row.flags | kRowNew);

  RepaintIfRedraw();
  RowCountChanged();
  return display;
}

void GridData::Clear() {
  if (m_lastRow < 0) return;
  OnClearing();
  ResetRowTables();
  m_columnTotals.assign(m_columns.size(), 0.0);
  m_formats.assign(1, GridFormat{});
  m_row = -1;
  m_col = -1;
  if (!m_PreserveSortedColumns) ForgetSort();
  m_firstVisibleRow = 0;
  m_editPending = false;
  m_cellsChanged = false;
  OnMetricsChanged();
  AfterDelete();
  RowCountChanged();
  SelectionChanged();
}

void GridData::ClearAll() {
  Clear();
  m_columns.clear();
  m_totalColumns.clear();
  m_columnTotals.clear();
  m_colOrder.clear();
  m_col = -1;
  ForgetSort();
  OnMetricsChanged();
}

void GridData::ForgetSort() {
  m_sortCol1 = -1;
  m_sortCol2 = -1;
  for (auto& column : m_columns) column.sortState = 0;
}

// ---- formats ------------------------------------------------------------------------------------

const GridFormat& GridData::FormatOf(const GridCell& cell) const {
  size_t index = cell.formatIndex >= 0 ? static_cast<size_t>(cell.formatIndex) : 0;
  return m_formats[std::min(index, m_formats.size() - 1)];
}

int16_t GridData::InternFormat(const GridFormat& wanted) {
  // The first equal record wins; the first free record ends the walk. Records are never
  // compacted, so an index once handed out keeps its look.
  int32_t freeSlot = -1;
  for (size_t i = 0; i < m_formats.size(); ++i) {
    if (m_formats[i].useCount == 0) {
      freeSlot = static_cast<int32_t>(i);
      break;
    }
    if (m_formats[i].SameLook(wanted)) return static_cast<int16_t>(i);
  }
  if (freeSlot < 0) {
    if (m_formats.size() >= static_cast<size_t>(kMaxFormats)) host::Raise(host::kErrOverflow, kSource);
    m_formats.emplace_back();
    freeSlot = static_cast<int32_t>(m_formats.size() - 1);
  }
  GridFormat& slot = m_formats[static_cast<size_t>(freeSlot)];
  slot = wanted;
  slot.useCount = 0;
  return static_cast<int16_t>(freeSlot);
}

void GridData::SetCellFormat(GridCell& cell, int32_t attribute, const host::Variant& value) {
  if (m_lastRow < 0) return;
  GridFormat f = cell.formatIndex == -1 ? DefaultFormat() : FormatOf(cell);
  switch (attribute) {
    case Format_BackColor: f.backColor = value.ToLong(); break;
    case Format_ForeColor: f.foreColor = value.ToLong(); break;
    case Format_Image: f.image = value.ToInteger(); break;
    case Format_FontName: f.fontName = value.ToString(); break;
    case Format_HandPointer: f.handPointer = value.ToBoolean(); break;
    default: return;
  }
  int16_t index = InternFormat(f);
  if (index != cell.formatIndex) {
    // Only ever raised: the old record keeps its count.
    ++m_formats[static_cast<size_t>(index)].useCount;
    cell.formatIndex = index;
  }
}

// ---- properties with side effects -------------------------------------------------------------

void GridData::PropertySet(host::StringView key) {
  m_rowHeightCache = -1;
  OnPropertyChanged(key);
  RepaintIfRedraw();
}

void GridData::CacheIncrement(int32_t xValue) {
  m_cacheIncrement = xValue < 0 ? 1000 : xValue;
  OnPropertyChanged(u"CacheIncrement");
}

void GridData::ColumnHeaderLines(int16_t xValue) {
  m_columnHeaderLines = xValue < 1 ? int16_t{1} : xValue;
  OnPropertyChanged(u"ColumnHeaderLines");
  OnMetricsChanged();
}

void GridData::CaptionHeight(int32_t xValue) {
  m_captionHeight = xValue;
  OnPropertyChanged(u"CaptionHeight");
  OnMetricsChanged();
}

void GridData::AllowColumnResizing(bool xValue) {
  m_allowColumnResizing = xValue;
  PropertySet(u"AllowColumnResizing");
}

void GridData::ColumnHeaderSmall(bool xValue) {
  m_columnHeaderSmall = xValue;
  OnPropertyChanged(u"ColumnHeaderSmall");
  OnMetricsChanged();
}

void GridData::FocusRowHighlightKeepTextForeColor(bool xValue) {
  m_focusRowKeepFore = xValue;
  PropertySet(u"FocusRowHighlightKeepTextForeColor");
}

void GridData::TotalLineShow(bool xValue) {
  // Switching on does not add up rows already held: totals only run from here on.
  m_totalLineShow = xValue;
  PropertySet(u"TotalLineShow");
}

void GridData::Font(std::shared_ptr<host::StdFont> xValue) {
  m_font = xValue ? std::move(xValue) : std::make_shared<host::StdFont>();
  m_rowHeightCache = -1;
  OnPropertyChanged(u"Font");
  OnMetricsChanged();
}

void GridData::FontHeader(std::shared_ptr<host::StdFont> xValue) {
  m_fontHeader = xValue ? std::move(xValue) : std::make_shared<host::StdFont>();
  OnPropertyChanged(u"FontHeader");
  OnMetricsChanged();
}

int32_t GridData::DefaultRowHeightCached() {
  if (m_rowHeightCache < 0) m_rowHeightCache = DefaultRowHeight();
  return m_rowHeightCache;
}

}  // namespace mx::grid
