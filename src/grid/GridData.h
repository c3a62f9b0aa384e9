#pragma once
// The grid's data model: the five tables, the two order maps, the persisted properties and every
// member that reads or writes content. It has no window and paints nothing; USFlexGrid derives
// from it and supplies painting, input and the column operations through the protected hooks at
// the end (each is called where the model's rules say a repaint, a re-sort or a column fit
// happens, and does nothing in the model alone).
//
// Positions: every row and column argument is a display position, mapped through rowOrder and
// colOrder, except the Set* members listed as storage members, which take storage indices,
// skip all checks and never repaint: they exist so that a fill between BeginFill and EndFill
// costs nothing beyond the store. Out of range they raise the host's error 9.
//
// Row storage grows in pages that never move, so a row's cells stay where they are for the
// life of the row; the row bound still follows CacheIncrement exactly (RowCapacity), which is
// what callers tune. rowOrder grows geometrically behind the same bound.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "grid/GridProperties.h"
#include "grid/GridTypes.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/Variant.h"

namespace mx::grid {

class GridData {
 public:
  GridData();
  virtual ~GridData();
  GridData(const GridData&) = delete;
  GridData& operator=(const GridData&) = delete;

  // ---- counts and the current cell ----
  [[nodiscard]] int32_t Rows() const { return m_lastRow + 1; }
  [[nodiscard]] int32_t ListCount() const { return m_lastRow + 1; }
  [[nodiscard]] int32_t Cols() const { return static_cast<int32_t>(m_columns.size()); }
  [[nodiscard]] int32_t Row() const { return m_row; }
  // Walks forward from xRow to the first row that is visible and not locked; -1 when it runs off
  // the end (or for a negative row).
  void Row(int32_t xRow);
  [[nodiscard]] int32_t Col() const { return m_col; }
  // A column past the last is ignored.
  void Col(int32_t xCol);
  // True once any cell changed since the last fill; Clear resets it.
  [[nodiscard]] bool CellsChanged() const { return m_cellsChanged; }
  [[nodiscard]] bool Redraw() const { return m_redraw; }
  void Redraw(bool xValue);
  [[nodiscard]] int32_t TagID() const { return m_tagId; }

  // ---- fill ----
  void BeginFill(int32_t xTagID = -1, int32_t xCacheIncrement = -1);
  void EndFill(int32_t xStretchedCol = -1, int32_t xStretchedColOFFSET = 0, bool xRedraw = true, int32_t xRow = -1);
  int32_t AddColumn(host::StringView xCaption, float xWidth = 500.0f, int32_t xAlignment = AlignToLeftCenter,
                    int16_t xDataType = TypeString, host::StringView xFormat = {}, host::StringView xInputFilter = {},
                    int32_t xImageAlignment = AlignToLeftCenter, bool xWordWrap = false, int32_t xIndex = 0,
                    bool xVisible = true, bool xLocked = false);
  int32_t AddItem(host::StringView xItem, int32_t xRow = -1, bool xRowChecked = false, bool xMarkAsNew = false,
                  bool xRowLocked = false, bool xRowVisible = true, int32_t xRowData = 0);
  // Walks a recordset by late binding: "EOF", "BOF", "Fields" ("Count", items with "Name" and
  // "Value") and "MoveNext". Values become cell texts as the host shows them (Null as "").
  void FillGridFromQuery(const host::Variant& ActiveRecordset, bool AddColumns = false,
                         bool AddedColumnWidthAutoSize = false, bool FitColumnWidth = false);
  void Clear();
  void ClearAll();

  // ---- storage members: storage indices, no checks, no repaint ----
  void SetColHeading(int32_t xCol, host::StringView xHeading);  // the one that maps through colOrder
  void SetRowData(int32_t xRow, int32_t xData);
  void SetRowForeColor(int32_t xRow, OLE_COLOR xForeColor);
  void SetRowChecked(int32_t xRow, bool xChecked);
  void SetCellAlignment(int32_t xRow, int32_t xCol, int32_t xAlignment);
  void SetCellAlignmentL(int32_t xRow, int32_t xCol) { SetCellAlignment(xRow, xCol, AlignToLeftCenter); }
  void SetCellAlignmentR(int32_t xRow, int32_t xCol) { SetCellAlignment(xRow, xCol, AlignToRightCenter); }
  void SetCellAlignmentC(int32_t xRow, int32_t xCol) { SetCellAlignment(xRow, xCol, AlignToCenterCenter); }
  void SetCellAlignmentForAllRows(int32_t xAlignment, std::span<const int32_t> xCols);
  void SetCellForeColor(int32_t xRow, int32_t xCol, OLE_COLOR xForeColor);
  void SetCellFontBold(int32_t xRow, int32_t xCol, bool xValue);
  void SetCellFontItalic(int32_t xRow, int32_t xCol, bool xValue);
  void SetCellFontUnderline(int32_t xRow, int32_t xCol, bool xValue);
  void SetCellFontStrikethrough(int32_t xRow, int32_t xCol, bool xValue);
  void SetCellData(int32_t xRow, int32_t xCol, int32_t xData);
  void SetRowForeColorAndFontBold(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontBold, bool xCheck);
  void SetRowForeColorAndFontItalic(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontItalic, bool xCheck);
  void SetRowForeColorAndFontUnderline(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontUnderline, bool xCheck);
  void SetRowForeColorAndFontStrikethrough(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontStrikethrough, bool xCheck);
  void SetRowCheckedAndFontBold(int32_t xRow, bool xRowChecked, bool xFontBold);
  void SetRowCheckedAndFontItalic(int32_t xRow, bool xRowChecked, bool xFontItalic);
  void SetRowCheckedAndFontUnderline(int32_t xRow, bool xRowChecked, bool xFontUnderline);
  void SetRowCheckedAndFontStrikethrough(int32_t xRow, bool xRowChecked, bool xFontStrikethrough);

  // ---- cells, validated by the common row-column check; a failed check does nothing and a get
  // gives the type's zero ----
  [[nodiscard]] int32_t CellAlignment(int32_t xRow, int32_t xCol);
  void CellAlignment(int32_t xRow, int32_t xCol, int32_t xValue);
  [[nodiscard]] OLE_COLOR CellBackColor(int32_t xRow, int32_t xCol);
  void CellBackColor(int32_t xRow, int32_t xCol, OLE_COLOR xValue);
  [[nodiscard]] OLE_COLOR CellForeColor(int32_t xRow, int32_t xCol);
  void CellForeColor(int32_t xRow, int32_t xCol, OLE_COLOR xValue);
  [[nodiscard]] host::String CellFontName(int32_t xRow, int32_t xCol);
  void CellFontName(int32_t xRow, int32_t xCol, host::StringView xValue);
  [[nodiscard]] bool CellHandPointer(int32_t xRow, int32_t xCol);
  void CellHandPointer(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] int16_t CellImage(int32_t xRow, int32_t xCol);
  void CellImage(int32_t xRow, int32_t xCol, int16_t xValue);
  [[nodiscard]] bool CellChanged(int32_t xRow, int32_t xCol);
  [[nodiscard]] bool CellChecked(int32_t xRow, int32_t xCol);
  void CellChecked(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] bool CellFontBold(int32_t xRow, int32_t xCol);
  void CellFontBold(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] bool CellFontItalic(int32_t xRow, int32_t xCol);
  void CellFontItalic(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] bool CellFontUnderline(int32_t xRow, int32_t xCol);
  void CellFontUnderline(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] bool CellFontStrikethrough(int32_t xRow, int32_t xCol);
  void CellFontStrikethrough(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] bool CellWordWrap(int32_t xRow, int32_t xCol);
  void CellWordWrap(int32_t xRow, int32_t xCol, bool xValue);
  [[nodiscard]] int16_t CellProgressValue(int32_t xRow, int32_t xCol);
  void CellProgressValue(int32_t xRow, int32_t xCol, int16_t xValue);
  [[nodiscard]] host::String CellTag(int32_t xRow, int32_t xCol);
  void CellTag(int32_t xRow, int32_t xCol, host::StringView xValue);
  [[nodiscard]] int32_t CellData(int32_t xRow, int32_t xCol);
  void CellData(int32_t xRow, int32_t xCol, int32_t xValue);
  [[nodiscard]] host::String CellText(int32_t xRow, int32_t xCol);
  void CellText(int32_t xRow, int32_t xCol, host::StringView xValue);
  // A TypeBoolean column gives CellChecked as a Boolean, any other the text's numeric value.
  [[nodiscard]] host::Variant CellValue(int32_t xRow, int32_t xCol);
  void CellValue(int32_t xRow, int32_t xCol, const host::Variant& xValue);
  void CellPicture(int32_t xRow, int32_t xCol, host::ObjectRef xValue);
  [[nodiscard]] host::ObjectRef CellAsPicture(int32_t xRow, int32_t xCol);

  // ---- rows ----
  [[nodiscard]] bool RowChecked(int32_t xRow);
  void RowChecked(int32_t xRow, bool xValue);
  [[nodiscard]] int32_t RowData(int32_t xRow);
  void RowData(int32_t xRow, int32_t xValue);
  [[nodiscard]] bool RowGroupHeader(int32_t xRow);
  void RowGroupHeader(int32_t xRow, bool xValue);
  [[nodiscard]] int32_t RowHeight(int32_t xRow);
  // -1 asks for the current row to be measured again instead of storing.
  void RowHeight(int32_t xRow, int32_t xValue);
  [[nodiscard]] int32_t RowImage(int32_t xRow);
  void RowImage(int32_t xRow, int32_t xValue);
  // The get also remembers its answer for the editor (LastRowLocked).
  [[nodiscard]] bool RowLocked(int32_t xRow);
  void RowLocked(int32_t xRow, bool xValue);
  [[nodiscard]] bool RowSelected(int32_t xRow);
  void RowSelected(int32_t xRow, bool xValue);
  [[nodiscard]] host::String RowTag(int32_t xRow);
  void RowTag(int32_t xRow, host::StringView xValue);
  [[nodiscard]] bool RowVisible(int32_t xRow);
  void RowVisible(int32_t xRow, bool xValue);
  [[nodiscard]] bool RowChanged(int32_t xRow);
  [[nodiscard]] bool RowMarkedAsNew(int32_t xRow);
  // Write-only row members; -1 is the current row. They walk every column.
  void RowBackColor(int32_t xRow, OLE_COLOR xValue);
  void RowForeColor(int32_t xRow, OLE_COLOR xValue);
  void RowFontBold(int32_t xRow, bool xValue);
  void RowFontItalic(int32_t xRow, bool xValue);
  void RowFontUnderline(int32_t xRow, bool xValue);
  void RowFontStrikethrough(int32_t xRow, bool xValue);
  [[nodiscard]] bool LastRowLocked() const { return m_lastRowLocked; }

  // ---- row-wide check and selection helpers ----
  void CheckAllRowsSelected();
  void UnCheckAllRowsSelected();
  void CheckAllRowsVisibles();
  void UnCheckAllRowsVisibles();
  void InvertCheckedAllRowsVisibles();
  [[nodiscard]] int32_t CheckedCount() const;
  [[nodiscard]] int32_t SelectedCount() const;
  void SelectAllRows();
  void UnselectAllRows();
  void SelectedClearAll();

  // ---- columns, through colOrder; an index outside the columns does nothing (get: zero) ----
  [[nodiscard]] int32_t ColAlignment(int32_t xCol) const;
  void ColAlignment(int32_t xCol, int32_t xValue);
  [[nodiscard]] host::String ColFormat(int32_t xCol) const;
  void ColFormat(int32_t xCol, host::StringView xValue);
  [[nodiscard]] host::String ColHeading(int32_t xCol) const;
  void ColHeading(int32_t xCol, host::StringView xValue);
  [[nodiscard]] int32_t ColImageAlignment(int32_t xCol) const;
  void ColImageAlignment(int32_t xCol, int32_t xValue);
  [[nodiscard]] host::String ColInputFilter(int32_t xCol) const;
  void ColInputFilter(int32_t xCol, host::StringView xValue);
  // True for column -1 and while the last cell move was refused.
  [[nodiscard]] bool ColLocked(int32_t xCol) const;
  void ColLocked(int32_t xCol, bool xValue);
  [[nodiscard]] host::String ColTag(int32_t xCol) const;
  void ColTag(int32_t xCol, host::StringView xValue);
  [[nodiscard]] int16_t ColType(int32_t xCol) const;
  void ColType(int32_t xCol, int16_t xValue);
  [[nodiscard]] bool ColVisible(int32_t xCol) const;
  void ColVisible(int32_t xCol, bool xValue);
  // Host scale units (twips); the pixel width follows.
  [[nodiscard]] float ColWidth(int32_t xCol) const;
  void ColWidth(int32_t xCol, float xValue);
  [[nodiscard]] int32_t ColWidthPixels(int32_t xCol) const;
  // Bit 256 of the column's default cell flags: reaches cells made later, not existing ones.
  [[nodiscard]] bool ColWordWrap(int32_t xCol) const;
  void ColWordWrap(int32_t xCol, bool xValue);

  // ---- totals: the get maps through colOrder, the let takes the storage column ----
  [[nodiscard]] bool TotalLineColFontBold(int32_t xCol) const;
  void TotalLineColFontBold(int32_t xCol, bool xValue);
  [[nodiscard]] bool TotalLineColFontItalic(int32_t xCol) const;
  void TotalLineColFontItalic(int32_t xCol, bool xValue);
  [[nodiscard]] bool TotalLineColFontUnderline(int32_t xCol) const;
  void TotalLineColFontUnderline(int32_t xCol, bool xValue);
  [[nodiscard]] bool TotalLineColFontStrikethrough(int32_t xCol) const;
  void TotalLineColFontStrikethrough(int32_t xCol, bool xValue);
  [[nodiscard]] int32_t TotalLineColAlignment(int32_t xCol) const;
  void TotalLineColAlignment(int32_t xCol, int32_t xValue);
  [[nodiscard]] bool TotalLineColInvisible(int32_t xCol) const;
  void TotalLineColInvisible(int32_t xCol, bool xValue);
  [[nodiscard]] OLE_COLOR TotalLineForeColor(int32_t xCol) const;
  void TotalLineForeColor(int32_t xCol, OLE_COLOR xValue);
  [[nodiscard]] host::String TotalLineCaption(int32_t xCol) const;
  void TotalLineCaption(int32_t xCol, host::StringView xValue);
  [[nodiscard]] bool TotalLineColAvg(int32_t xCol) const;
  void TotalLineColAvg(int32_t xCol, bool xValue);
  [[nodiscard]] bool TotalLineShow() const { return m_totalLineShow; }
  void TotalLineShow(bool xValue);
  // The running sum of a storage column (0 outside the columns).
  [[nodiscard]] double TotalColumns(int32_t xCol) const;

  // ---- search by data ----
  [[nodiscard]] int32_t GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult = false) const;
  [[nodiscard]] int32_t GetIndexFromCellData(int32_t xDataToFind, int32_t xCol, bool DefaultAsNullResult = false) const;

  // ---- sort, search and columns ----
  // Sorts the rows on a display column, with an optional second column for runs of equal texts.
  // Types are GRID_SORT_TYPE; -1 for the first cycles none, ascending, descending; -1 for the
  // second takes the first's. Only rowOrder moves: rows keep their flags, checks and data.
  void Sort(int32_t vCol1 = -1, int32_t vCol1SortType = -1, int32_t vCol2 = -1, int32_t vCol2SortType = -1);
  // The header click's sort step on a display column: with shift (and a primary sort in place) the
  // column becomes the secondary sort and takes its next state; a click on the primary column
  // cycles it; any other click makes the column the primary one. The mouse-up on a pressed header
  // cell calls this when AllowColumnSort is on, before raising ColumnClick.
  void SortByHeaderClick(int32_t displayCol, bool shift);
  // With PreserveSortedColumns, sorts again on the stored columns and states (EndFill, RedrawEx);
  // without it, forgets them.
  void ReapplySortedColumns();
  // The stored state of a display column: 0 none, 2 ascending, 1 descending.
  [[nodiscard]] int16_t ColSortState(int32_t xCol) const;
  // The display row of the first match at or after StartingRow (hidden rows included), or -1.
  [[nodiscard]] int32_t FindItem(host::StringView SearchText, int32_t SearchColumn = -1,
                                 int32_t SearchMode = Search_Equal, bool MatchCase = false,
                                 int32_t StartingRow = 0);
  // Shows the rows from StartingRow on that match and hides the others; rows above StartingRow
  // are left as they are.
  void FilterOn(host::StringView FilterText, int32_t SearchColumn, int32_t SearchMode = Search_Equal,
                bool MatchCase = false, int32_t StartingRow = 0);
  // FilterOn that always compares in upper case.
  void FilterOnEx(host::StringView FilterText, int32_t SearchColumn, int32_t SearchMode = Search_Equal,
                  int32_t StartingRow = 0);
  void FilterOff(int32_t StartingRow = 0);
  // Puts every column back in its storage position.
  void RestoreColumnOrder();
  // Column files: one "display<TAB>value" line per column, Latin text. Failures never raise: the
  // host's description goes to xError and the result is False.
  bool SaveColumnOrderToFile(host::StringView xFile, host::String& xError);
  // A file that does not hold a whole, valid order is refused and leaves the order as it was.
  bool LoadColumnOrderFromFile(host::StringView xFile, host::String& xError);
  bool SaveColumnWidthsToFile(host::StringView xFile, host::String& xError);
  // Widths apply line by line; a malformed line ends the load there.
  bool LoadColumnWidthsFromFile(host::StringView xFile, host::String& xError);
  // Kept as members that do nothing: the grid keeps no settings in a registry.
  void SaveColumnOrderToRegistry(host::StringView /*UniqueGridName*/, host::String& /*ErrDescription*/) {}
  void LoadColumnOrderFromRegistry(host::StringView /*UniqueGridName*/, host::String& /*ErrDescription*/) {}
  void SaveColumnWidthsToRegistry(host::StringView /*UniqueGridName*/, host::String& /*ErrDescription*/) {}
  void LoadColumnWidthsFromRegistry(host::StringView /*UniqueGridName*/, host::String& /*ErrDescription*/) {}
  // Raised at the end of every Sort.
  host::Event<> SortComplete;
  // Declared for handlers written against it (Ascending, Col, Value1, Value2, Swap); Sort never
  // raises it, so a TypeCustom column sorts as text.
  host::Event<bool, int32_t, host::String, host::String, bool&> CustomSort;
  // ---- end of sort, search and columns ----

  // ---- bulk format over display ranges (-1 ends at the last) ----
  void FormatCells(int32_t RowFrom = 0, int32_t RowTo = -1, int32_t ColFrom = 0, int32_t ColTo = -1,
                   int32_t Mode = Format_Image, const host::Variant& xValue = host::Variant(host::String()),
                   int32_t vNewAlign = AlignToLeftCenter);
  void FormatCellsAlignment(int32_t RowFrom = 0, int32_t RowTo = -1, int32_t ColFrom = 0, int32_t ColTo = -1,
                            int32_t vAlignment = AlignToLeftCenter);

  // ---- design-time column definitions ----
  [[nodiscard]] host::String HeaderFormatString() const;
  void HeaderFormatString(host::StringView xValue);
  // Frees the columns and builds them again from HeaderFormatString.
  void RebuildColumnsFromHeaderFormat();

  // ---- persisted properties ----
#define MX_GRID_ACCESSORS(T, Name, Key, Default)            \
  [[nodiscard]] const T& Name() const { return m_##Name; } \
  void Name(const T& xValue) {                              \
    m_##Name = xValue;                                      \
    PropertySet(Key);                                       \
  }
  MX_GRID_PROPERTIES(MX_GRID_ACCESSORS)
#undef MX_GRID_ACCESSORS
  [[nodiscard]] bool AllowColumnResizing() const { return m_allowColumnResizing; }
  void AllowColumnResizing(bool xValue);
  [[nodiscard]] bool ColumnHeaderSmall() const { return m_columnHeaderSmall; }
  void ColumnHeaderSmall(bool xValue);
  [[nodiscard]] bool FocusRowHighlightKeepTextForeColor() const { return m_focusRowKeepFore; }
  void FocusRowHighlightKeepTextForeColor(bool xValue);
  [[nodiscard]] int32_t CacheIncrement() const { return m_cacheIncrement; }
  // A negative value stores 1000.
  void CacheIncrement(int32_t xValue);
  [[nodiscard]] int16_t ColumnHeaderLines() const { return m_columnHeaderLines; }
  // Below 1 stores 1.
  void ColumnHeaderLines(int16_t xValue);
  [[nodiscard]] int32_t CaptionHeight() const { return m_captionHeight; }
  void CaptionHeight(int32_t xValue);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores and re-derives the palette (ApplyTheme).
  void Theme(int32_t xValue);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return m_font; }
  void Font(std::shared_ptr<host::StdFont> xValue);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontHeader() const { return m_fontHeader; }
  void FontHeader(std::shared_ptr<host::StdFont> xValue);

  // Defaults of a new control (the ambient font is given by the container).
  void InitProperties(std::shared_ptr<host::StdFont> ambientFont = nullptr);
  // Reads every key; at run time the columns are then built from HeaderFormatString.
  void ReadProperties(const host::PropertyBag& PropBag, std::shared_ptr<host::StdFont> ambientFont = nullptr);
  void WriteProperties(host::PropertyBag& PropBag, std::shared_ptr<host::StdFont> ambientFont = nullptr) const;
  // Copies the colours of the theme into the colour properties.
  void ApplyTheme();

  [[nodiscard]] bool UserMode() const { return m_userMode; }
  void UserMode(bool xValue) { m_userMode = xValue; }

  // ---- events raised by the model ----
  host::Event<> AfterDelete;
  host::Event<> RowCountChanged;
  host::Event<> SelectionChanged;

  // ---- storage access for painting, editing and sort ----
  [[nodiscard]] int32_t LastRow() const { return m_lastRow; }
  // The allocated row bound (what CacheIncrement tunes) and how often it has grown.
  [[nodiscard]] int32_t RowCapacity() const { return m_rowBound + 1; }
  [[nodiscard]] int32_t RowReallocations() const { return m_rowReallocations; }
  [[nodiscard]] int32_t StorageRow(int32_t displayRow) const { return m_rowOrder[static_cast<size_t>(displayRow)]; }
  [[nodiscard]] int32_t StorageCol(int32_t displayCol) const { return m_colOrder[static_cast<size_t>(displayCol)]; }
  [[nodiscard]] std::vector<int32_t>& RowOrder() { return m_rowOrder; }
  [[nodiscard]] std::vector<int32_t>& ColOrder() { return m_colOrder; }
  [[nodiscard]] GridRow& StoredRow(int32_t storageRow);
  [[nodiscard]] const GridRow& StoredRow(int32_t storageRow) const;
  // Each row's cells are a block of their own, so a walk over many rows misses the cache once
  // per row, at addresses the hardware cannot foresee. The filter asks for the cell kCellsAhead
  // rows ahead of the one it reads, which overlaps those misses.
  static constexpr size_t kCellsAhead = 8;
  void PrefetchCell(int32_t storageRow, size_t storageCol) const {
    __builtin_prefetch(StoredRow(storageRow).cells.get() + storageCol);
  }
  [[nodiscard]] GridColumn& StoredColumn(int32_t storageCol) { return m_columns.at(static_cast<size_t>(storageCol)); }
  [[nodiscard]] const std::vector<GridFormat>& Formats() const { return m_formats; }
  // A stored cell's picture (CellPicture), or null.
  [[nodiscard]] host::ObjectRef StoredCellPicture(const GridCell& cell) const {
    const GridCellExtra* extra = ExtraOf(cell);
    return extra != nullptr ? extra->picture : nullptr;
  }
  [[nodiscard]] const GridTotalColumn& TotalColumn(int32_t storageCol) const {
    return m_totalColumns.at(static_cast<size_t>(storageCol));
  }
  // The common row-column check: display row and column in, storage row and column out. False
  // on an empty grid, for a column past the last, or when no row can stand for a negative one.
  [[nodiscard]] bool CheckRowCol(int32_t xRow, int32_t xCol, int32_t& storageRow, int32_t& storageCol) const;
  // The row half alone, for row members.
  [[nodiscard]] bool CheckRow(int32_t xRow, int32_t& storageRow) const;
  // Heap bytes held by cell texts and row arrays, for memory accounting.
  [[nodiscard]] size_t CellHeapBytes() const;
  // Host units per pixel used for column widths (twips: 15 at 96 dpi).
  [[nodiscard]] float TwipsPerPixel() const { return m_twipsPerPixel; }
  // Storage columns of the primary and secondary sort, -1 when unused.
  [[nodiscard]] int32_t SortCol1() const { return m_sortCol1; }
  [[nodiscard]] int32_t SortCol2() const { return m_sortCol2; }
  void SetSortCols(int32_t sortCol1, int32_t sortCol2) {
    m_sortCol1 = sortCol1;
    m_sortCol2 = sortCol2;
  }
  // Forgets both sort columns and every column's sort state.
  void ForgetSort();
  // The default height of new rows, measured once per change of the font or row settings.
  [[nodiscard]] int32_t DefaultRowHeightCached();

 protected:
  // Hooks for the control. Each is called where the model's rules call for the action.
  virtual void OnPropertyChanged(host::StringView /*key*/) {}
  // Repaint the whole grid (called only while Redraw is on).
  virtual void OnRepaint() {}
  // Metrics-affecting change: recalculate and repaint.
  virtual void OnMetricsChanged() {}
  // Scroll so that the given row shows at the top, and repaint (EndFill with xRedraw).
  virtual void OnRedrawAt(int32_t /*firstRow*/) {}
  // Re-apply the preserved sort (EndFill).
  virtual void OnReapplySort() {}
  // Column sizing belongs to the column operations.
  virtual void OnAutoSizeColumn(int32_t /*displayCol*/) {}
  virtual void OnStretchCol(int32_t /*displayCol*/, int32_t /*offset*/) {}
  virtual void OnColumnsForceFit() {}
  // Hide an open editor and the tooltip (Clear).
  virtual void OnClearing() {}
  // The default row height of new rows, from the metrics.
  [[nodiscard]] virtual int32_t DefaultRowHeight() const;
  // Text height of "ABCDWXYZ" in a font, in pixels.
  [[nodiscard]] virtual int32_t FontTextHeight(const host::StdFont& font) const;

  // ---- sort, search and columns: hooks ----
  // Close an open editor before sorting (UpdateCell); False when the editor refuses.
  [[nodiscard]] virtual bool OnSortCloseEditor() { return true; }
  // Make a display row current (-1: none) after a sort or filter and bring it into view. With
  // force the row becomes current even where a cell move would refuse it: after a sort it is
  // the row that was current, only at another position.
  virtual void OnSetCurrentRow(int32_t displayRow, bool /*force*/) { m_row = displayRow; }
  // Recalculate and repaint after a column operation.
  virtual void OnColumnsRefresh() { RepaintIfRedraw(); }
  // ---- end of sort, search and columns: hooks ----

  // ---- selection and editing: storage access ----
  // Sets the current cell as it stands, without the walk of Row and without a repaint.
  void SetCurrentCell(int32_t xRow, int32_t xCol) {
    m_row = xRow;
    m_col = xCol;
  }
  // The one-shot latch that ColLocked reports while the last cell move aimed at a hidden or
  // locked column.
  void SetMoveRefused(bool xValue) { m_moveRefused = xValue; }
  // Drops every storage row whose entry in victims is non-zero, rebuilding the row table once:
  // the other rows keep their order, their cells and flags; rowOrder keeps the display order of
  // the survivors; the victims' numeric totals and format counts are taken back. Callers handle
  // the last row (Clear) and the events. Defined with the row operations (GridRowRemoval.cpp).
  void RemoveStorageRows(const std::vector<uint8_t>& victims);
  // ---- end of selection and editing: storage access ----

  // Stores done by the generated setters: mark changed and repaint.
  void PropertySet(host::StringView key);
  void RepaintIfRedraw() {
    if (m_redraw) OnRepaint();
  }

 private:
  void EnsureRowBound(int32_t lastRow);
  void ResetRowTables();
  [[nodiscard]] GridCell& CellAt(int32_t storageRow, int32_t storageCol);
  void InitCell(GridCell& cell, const GridColumn& column, int32_t alignment) const;
  [[nodiscard]] GridFormat DefaultFormat() const;
  // Interns a format with one attribute replaced and stores its index in the cell.
  void SetCellFormat(GridCell& cell, int32_t attribute, const host::Variant& value);
  [[nodiscard]] int16_t InternFormat(const GridFormat& wanted);
  [[nodiscard]] const GridFormat& FormatOf(const GridCell& cell) const;
  void SetCellFlag(int32_t xRow, int32_t xCol, int16_t bit, bool on);
  [[nodiscard]] bool GetCellFlag(int32_t xRow, int32_t xCol, int16_t bit);
  void SetRowFlag(int32_t xRow, int16_t bit, bool on);
  [[nodiscard]] bool GetRowFlag(int32_t xRow, int16_t bit);
  void RowFontFlag(int32_t xRow, int16_t bit, bool on);
  void StorageRowCombined(int32_t xRow, const OLE_COLOR* foreColor, int16_t bit, bool fontOn, bool check);
  void StoreCellText(GridCell& cell, int32_t storageCol, host::StringView text);
  [[nodiscard]] GridCellExtra& ExtraOf(GridCell& cell);
  [[nodiscard]] const GridCellExtra* ExtraOf(const GridCell& cell) const;
  void ReleaseExtra(GridCell& cell);
  [[nodiscard]] int32_t PixelsFromScaled(float scaled) const;
  [[nodiscard]] bool ValidCol(int32_t xCol) const { return xCol >= 0 && xCol < Cols(); }
  void SetAllRowFlags(int16_t bit, bool on, bool onlyVisible, bool onlySelected, bool invert);
  // ---- sort, search and columns: internals ----
  void SortStorage(int32_t col1, int32_t type1, int32_t col2, int32_t type2, bool col2Given);
  void SortRange(int32_t first, int32_t last, int32_t storageCol, int16_t state);
  void ApplyFilter(host::StringView text, int32_t searchColumn, int32_t mode, bool matchCase, int32_t startingRow);
  [[nodiscard]] int32_t DisplayColOf(int32_t storageCol) const;

  // Tables.
  std::vector<GridColumn> m_columns;
  std::vector<GridTotalColumn> m_totalColumns;
  std::vector<double> m_columnTotals;
  std::vector<GridFormat> m_formats;
  std::vector<std::unique_ptr<GridRow[]>> m_rowPages;
  std::vector<GridCellExtra> m_extras;
  std::vector<uint32_t> m_freeExtras;
  std::vector<int32_t> m_rowOrder;
  std::vector<int32_t> m_colOrder;
  int32_t m_lastRow = -1;
  int32_t m_rowBound = 0;
  int32_t m_rowReallocations = 0;
  int32_t m_sortCol1 = -1;
  int32_t m_sortCol2 = -1;
  int32_t m_rowHeightCache = -1;

  // Control state.
  int32_t m_row = -1;
  int32_t m_col = -1;
  int32_t m_firstVisibleRow = 0;
  int32_t m_tagId = -1;
  int32_t m_rememberedRow = -1;
  bool m_hasRememberedRow = false;
  bool m_redraw = true;
  bool m_cellsChanged = false;
  bool m_editPending = false;
  bool m_lastRowLocked = false;
  bool m_moveRefused = false;
  bool m_userMode = true;
  float m_twipsPerPixel = 15.0f;

  // Persisted properties.
#define MX_GRID_FIELDS(T, Name, Key, Default) T m_##Name = Default;
  MX_GRID_PROPERTIES(MX_GRID_FIELDS)
#undef MX_GRID_FIELDS
  bool m_allowColumnResizing = false;
  bool m_columnHeaderSmall = false;
  bool m_focusRowKeepFore = false;
  bool m_totalLineShow = false;
  int32_t m_cacheIncrement = 1000;
  int16_t m_columnHeaderLines = 3;
  int32_t m_captionHeight = 0;
  int32_t m_theme = 2;
  host::String m_headerFormatString;
  std::shared_ptr<host::StdFont> m_font;
  std::shared_ptr<host::StdFont> m_fontHeader;

  friend class GridDataTestAccess;
};

}  // namespace mx::grid
