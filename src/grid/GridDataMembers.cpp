// The cell, row, column and total members of the grid model.
#include <algorithm>
#include <type_traits>

#include "grid/GridData.h"
#include "grid/GridNumeric.h"
#include "host/Err.h"

namespace mx::grid {

namespace {

int16_t WithBit(int16_t flags, int16_t bit, bool on) {
  return static_cast<int16_t>(on ? (flags | bit) : (flags & ~bit));
}

bool IsCheckedText(host::StringView text) { return text == u"True" || text == u"1"; }

// A Variant as a number for the bulk formatter, where an empty text stands for 0.
host::Variant NumberOrZero(const host::Variant& v) {
  if (v.IsString() && v.ToString().empty()) return host::Variant(int32_t{0});
  return v;
}

}  // namespace

// ---- storage members ------------------------------------------------------------------------

void GridData::SetColHeading(int32_t xCol, host::StringView xHeading) {
  m_columns.at(static_cast<size_t>(m_colOrder.at(static_cast<size_t>(xCol)))).heading = host::String(xHeading);
}

void GridData::SetRowData(int32_t xRow, int32_t xData) { StoredRow(xRow).data = xData; }

void GridData::SetRowChecked(int32_t xRow, bool xChecked) {
  GridRow& row = StoredRow(xRow);
  row.flags = WithBit(row.flags, kRowChecked, xChecked);
}

void GridData::SetRowForeColor(int32_t xRow, OLE_COLOR xForeColor) {
  GridRow& row = StoredRow(xRow);
  if (m_columns.empty()) return;
  SetCellFormat(row.cells[0], Format_ForeColor, host::Variant(xForeColor));
  // One search for the row: every other cell takes column 0's record, back colour and all.
  for (int32_t c = 1; c < Cols(); ++c) row.cells[static_cast<size_t>(c)].formatIndex = row.cells[0].formatIndex;
}

void GridData::SetCellAlignment(int32_t xRow, int32_t xCol, int32_t xAlignment) {
  CellAt(xRow, xCol).alignment = static_cast<int16_t>(xAlignment);
}

void GridData::SetCellAlignmentForAllRows(int32_t xAlignment, std::span<const int32_t> xCols) {
  for (int32_t r = 0; r <= m_lastRow; ++r) {
    for (int32_t c : xCols) CellAt(r, c).alignment = static_cast<int16_t>(xAlignment);
  }
}

void GridData::SetCellForeColor(int32_t xRow, int32_t xCol, OLE_COLOR xForeColor) {
  GridCell& cell = CellAt(xRow, xCol);
  if (FormatOf(cell).foreColor == xForeColor) return;
  SetCellFormat(cell, Format_ForeColor, host::Variant(xForeColor));
}

void GridData::SetCellFontBold(int32_t xRow, int32_t xCol, bool xValue) {
  GridCell& cell = CellAt(xRow, xCol);
  cell.flags = WithBit(cell.flags, kCellBold, xValue);
}
void GridData::SetCellFontItalic(int32_t xRow, int32_t xCol, bool xValue) {
  GridCell& cell = CellAt(xRow, xCol);
  cell.flags = WithBit(cell.flags, kCellItalic, xValue);
}
void GridData::SetCellFontUnderline(int32_t xRow, int32_t xCol, bool xValue) {
  GridCell& cell = CellAt(xRow, xCol);
  cell.flags = WithBit(cell.flags, kCellUnderline, xValue);
}
void GridData::SetCellFontStrikethrough(int32_t xRow, int32_t xCol, bool xValue) {
  GridCell& cell = CellAt(xRow, xCol);
  cell.flags = WithBit(cell.flags, kCellStrikethrough, xValue);
}

void GridData::SetCellData(int32_t xRow, int32_t xCol, int32_t xData) { CellAt(xRow, xCol).data = xData; }

void GridData::StorageRowCombined(int32_t xRow, const OLE_COLOR* foreColor, int16_t bit, bool fontOn, bool check) {
  GridRow& row = StoredRow(xRow);
  row.flags = WithBit(row.flags, kRowChecked, check);
  for (int32_t c = 0; c < Cols(); ++c) {
    GridCell& cell = row.cells[static_cast<size_t>(c)];
    cell.flags = WithBit(cell.flags, bit, fontOn);
    if (foreColor != nullptr && FormatOf(cell).foreColor != *foreColor) {
      SetCellFormat(cell, Format_ForeColor, host::Variant(*foreColor));
    }
  }
}

void GridData::SetRowForeColorAndFontBold(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontBold, bool xCheck) {
  StorageRowCombined(xRow, &xForeColor, kCellBold, xIsFontBold, xCheck);
}
void GridData::SetRowForeColorAndFontItalic(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontItalic, bool xCheck) {
  StorageRowCombined(xRow, &xForeColor, kCellItalic, xIsFontItalic, xCheck);
}
void GridData::SetRowForeColorAndFontUnderline(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontUnderline, bool xCheck) {
  StorageRowCombined(xRow, &xForeColor, kCellUnderline, xIsFontUnderline, xCheck);
}
void GridData::SetRowForeColorAndFontStrikethrough(int32_t xRow, OLE_COLOR xForeColor, bool xIsFontStrikethrough,
                                                   bool xCheck) {
  StorageRowCombined(xRow, &xForeColor, kCellStrikethrough, xIsFontStrikethrough, xCheck);
}
void GridData::SetRowCheckedAndFontBold(int32_t xRow, bool xRowChecked, bool xFontBold) {
  StorageRowCombined(xRow, nullptr, kCellBold, xFontBold, xRowChecked);
}
void GridData::SetRowCheckedAndFontItalic(int32_t xRow, bool xRowChecked, bool xFontItalic) {
  StorageRowCombined(xRow, nullptr, kCellItalic, xFontItalic, xRowChecked);
}
void GridData::SetRowCheckedAndFontUnderline(int32_t xRow, bool xRowChecked, bool xFontUnderline) {
  StorageRowCombined(xRow, nullptr, kCellUnderline, xFontUnderline, xRowChecked);
}
void GridData::SetRowCheckedAndFontStrikethrough(int32_t xRow, bool xRowChecked, bool xFontStrikethrough) {
  StorageRowCombined(xRow, nullptr, kCellStrikethrough, xFontStrikethrough, xRowChecked);
}

// ---- cells ----------------------------------------------------------------------------------

int32_t GridData::CellAlignment(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? CellAt(r, c).alignment : 0;
}
void GridData::CellAlignment(int32_t xRow, int32_t xCol, int32_t xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  CellAt(r, c).alignment = static_cast<int16_t>(xValue);
  RepaintIfRedraw();
}

OLE_COLOR GridData::CellBackColor(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? FormatOf(CellAt(r, c)).backColor : 0;
}
void GridData::CellBackColor(int32_t xRow, int32_t xCol, OLE_COLOR xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  SetCellFormat(CellAt(r, c), Format_BackColor, host::Variant(xValue));
  RepaintIfRedraw();
}

OLE_COLOR GridData::CellForeColor(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? FormatOf(CellAt(r, c)).foreColor : 0;
}
void GridData::CellForeColor(int32_t xRow, int32_t xCol, OLE_COLOR xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  // The common case of writing the colour a cell already has costs nothing.
  if (FormatOf(cell).foreColor == xValue) return;
  SetCellFormat(cell, Format_ForeColor, host::Variant(xValue));
  RepaintIfRedraw();
}

host::String GridData::CellFontName(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? FormatOf(CellAt(r, c)).fontName : host::String();
}
void GridData::CellFontName(int32_t xRow, int32_t xCol, host::StringView xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  SetCellFormat(CellAt(r, c), Format_FontName, host::Variant(xValue));
  RepaintIfRedraw();
}

bool GridData::CellHandPointer(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) && FormatOf(CellAt(r, c)).handPointer;
}
void GridData::CellHandPointer(int32_t xRow, int32_t xCol, bool xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  SetCellFormat(CellAt(r, c), Format_HandPointer, host::Variant(xValue));
  RepaintIfRedraw();
}

int16_t GridData::CellImage(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? FormatOf(CellAt(r, c)).image : int16_t{0};
}
void GridData::CellImage(int32_t xRow, int32_t xCol, int16_t xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  SetCellFormat(CellAt(r, c), Format_Image, host::Variant(xValue));
  RepaintIfRedraw();
}

bool GridData::GetCellFlag(int32_t xRow, int32_t xCol, int16_t bit) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) && (CellAt(r, c).flags & bit) != 0;
}
void GridData::SetCellFlag(int32_t xRow, int32_t xCol, int16_t bit, bool on) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  cell.flags = WithBit(cell.flags, bit, on);
  RepaintIfRedraw();
}

bool GridData::CellChanged(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellChanged); }
bool GridData::CellChecked(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellChecked); }

void GridData::CellChecked(int32_t xRow, int32_t xCol, bool xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  cell.flags = WithBit(cell.flags, kCellChecked, xValue);
  if (m_columns[static_cast<size_t>(c)].dataType == TypeBoolean) cell.text.Assign(xValue ? u"True" : u"False");
  cell.flags = WithBit(cell.flags, kCellChanged, true);
  GridRow& row = StoredRow(r);
  row.flags = WithBit(row.flags, kRowChanged, true);
  m_cellsChanged = true;
  RepaintIfRedraw();
}

bool GridData::CellFontBold(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellBold); }
void GridData::CellFontBold(int32_t xRow, int32_t xCol, bool xValue) { SetCellFlag(xRow, xCol, kCellBold, xValue); }
bool GridData::CellFontItalic(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellItalic); }
void GridData::CellFontItalic(int32_t xRow, int32_t xCol, bool xValue) { SetCellFlag(xRow, xCol, kCellItalic, xValue); }
bool GridData::CellFontUnderline(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellUnderline); }
void GridData::CellFontUnderline(int32_t xRow, int32_t xCol, bool xValue) {
  SetCellFlag(xRow, xCol, kCellUnderline, xValue);
}
bool GridData::CellFontStrikethrough(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellStrikethrough); }
void GridData::CellFontStrikethrough(int32_t xRow, int32_t xCol, bool xValue) {
  SetCellFlag(xRow, xCol, kCellStrikethrough, xValue);
}
bool GridData::CellWordWrap(int32_t xRow, int32_t xCol) { return GetCellFlag(xRow, xCol, kCellWordWrap); }
void GridData::CellWordWrap(int32_t xRow, int32_t xCol, bool xValue) { SetCellFlag(xRow, xCol, kCellWordWrap, xValue); }

int16_t GridData::CellProgressValue(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c) || m_columns[static_cast<size_t>(c)].dataType != TypeProgressBar) return 0;
  return CellAt(r, c).flags;
}
void GridData::CellProgressValue(int32_t xRow, int32_t xCol, int16_t xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c) || m_columns[static_cast<size_t>(c)].dataType != TypeProgressBar) return;
  // The progress value shares the flags word of the cell.
  CellAt(r, c).flags = std::clamp<int16_t>(xValue, 0, 100);
  RepaintIfRedraw();
}

host::String GridData::CellTag(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return {};
  const GridCellExtra* extra = ExtraOf(static_cast<const GridCell&>(CellAt(r, c)));
  return extra != nullptr ? extra->tag : host::String();
}
void GridData::CellTag(int32_t xRow, int32_t xCol, host::StringView xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  if (xValue.empty() && cell.extra == 0) return;
  ExtraOf(cell).tag = host::String(xValue);
}

int32_t GridData::CellData(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? CellAt(r, c).data : 0;
}
void GridData::CellData(int32_t xRow, int32_t xCol, int32_t xValue) {
  int32_t r, c;
  if (CheckRowCol(xRow, xCol, r, c)) CellAt(r, c).data = xValue;
}

host::String GridData::CellText(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  return CheckRowCol(xRow, xCol, r, c) ? CellAt(r, c).text.Str() : host::String();
}

void GridData::CellText(int32_t xRow, int32_t xCol, host::StringView xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  const GridColumn& column = m_columns[static_cast<size_t>(c)];
  if (m_totalLineShow && column.dataType == TypeNumeric) {
    // Totals move by the difference, so rows added before the line was on stay out of it.
    m_columnTotals[static_cast<size_t>(c)] += GridNumericValue(xValue) - GridNumericValue(cell.text.View());
  }
  cell.measured = false;
  cell.text.Assign(xValue);
  if (column.dataType == TypeBoolean) cell.flags = WithBit(cell.flags, kCellChecked, IsCheckedText(xValue));
  cell.flags = WithBit(cell.flags, kCellChanged, true);
  GridRow& row = StoredRow(r);
  row.flags = WithBit(row.flags, kRowChanged, true);
  m_cellsChanged = true;
  RepaintIfRedraw();
}

host::Variant GridData::CellValue(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return host::Variant();
  const GridCell& cell = CellAt(r, c);
  if (m_columns[static_cast<size_t>(c)].dataType == TypeBoolean) return host::Variant((cell.flags & kCellChecked) != 0);
  return host::Variant(GridNumericValue(cell.text.View()));
}

void GridData::CellValue(int32_t xRow, int32_t xCol, const host::Variant& xValue) {
  CellText(xRow, xCol, xValue.IsNull() ? host::String() : xValue.ToString());
}

void GridData::CellPicture(int32_t xRow, int32_t xCol, host::ObjectRef xValue) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return;
  GridCell& cell = CellAt(r, c);
  if (!xValue && cell.extra == 0) return;
  ExtraOf(cell).picture = std::move(xValue);
  RepaintIfRedraw();
}

host::ObjectRef GridData::CellAsPicture(int32_t xRow, int32_t xCol) {
  int32_t r, c;
  if (!CheckRowCol(xRow, xCol, r, c)) return nullptr;
  const GridCellExtra* extra = ExtraOf(static_cast<const GridCell&>(CellAt(r, c)));
  return extra != nullptr ? extra->picture : nullptr;
}

// ---- rows -----------------------------------------------------------------------------------

bool GridData::GetRowFlag(int32_t xRow, int16_t bit) {
  int32_t r;
  return CheckRow(xRow, r) && (StoredRow(r).flags & bit) != 0;
}
void GridData::SetRowFlag(int32_t xRow, int16_t bit, bool on) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  GridRow& row = StoredRow(r);
  row.flags = WithBit(row.flags, bit, on);
  RepaintIfRedraw();
}

bool GridData::RowChecked(int32_t xRow) { return GetRowFlag(xRow, kRowChecked); }
void GridData::RowChecked(int32_t xRow, bool xValue) { SetRowFlag(xRow, kRowChecked, xValue); }
bool GridData::RowSelected(int32_t xRow) { return GetRowFlag(xRow, kRowSelected); }
void GridData::RowSelected(int32_t xRow, bool xValue) { SetRowFlag(xRow, kRowSelected, xValue); }
bool GridData::RowChanged(int32_t xRow) { return GetRowFlag(xRow, kRowChanged); }
bool GridData::RowMarkedAsNew(int32_t xRow) { return GetRowFlag(xRow, kRowNew); }

bool GridData::RowLocked(int32_t xRow) {
  m_lastRowLocked = GetRowFlag(xRow, kRowLocked);
  return m_lastRowLocked;
}
void GridData::RowLocked(int32_t xRow, bool xValue) { SetRowFlag(xRow, kRowLocked, xValue); }

int32_t GridData::RowData(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) ? StoredRow(r).data : 0;
}
void GridData::RowData(int32_t xRow, int32_t xValue) {
  int32_t r;
  if (CheckRow(xRow, r)) StoredRow(r).data = xValue;
}

bool GridData::RowGroupHeader(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) && StoredRow(r).groupHeader;
}
void GridData::RowGroupHeader(int32_t xRow, bool xValue) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  StoredRow(r).groupHeader = xValue;
  RepaintIfRedraw();
}

int32_t GridData::RowHeight(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) ? StoredRow(r).height : 0;
}
void GridData::RowHeight(int32_t xRow, int32_t xValue) {
  int32_t r;
  if (xValue == -1) {
    // Measure the current row again: its cells forget their measured heights and the row
    // returns to the default height until painting measures the wrapped ones.
    if (!CheckRow(-1, r)) return;
    GridRow& row = StoredRow(r);
    for (int32_t c = 0; c < Cols(); ++c) row.cells[static_cast<size_t>(c)].measured = false;
    row.height = DefaultRowHeightCached();
    RepaintIfRedraw();
    return;
  }
  if (!CheckRow(xRow, r)) return;
  GridRow& row = StoredRow(r);
  row.height = xValue;
  for (int32_t c = 0; c < Cols(); ++c) row.cells[static_cast<size_t>(c)].measured = false;
  RepaintIfRedraw();
}

int32_t GridData::RowImage(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) ? StoredRow(r).image : 0;
}
void GridData::RowImage(int32_t xRow, int32_t xValue) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  StoredRow(r).image = xValue;
  OnMetricsChanged();  // a row image moves the text of column 0
}

host::String GridData::RowTag(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) ? StoredRow(r).tag.Str() : host::String();
}
void GridData::RowTag(int32_t xRow, host::StringView xValue) {
  int32_t r;
  if (CheckRow(xRow, r)) StoredRow(r).tag.Assign(xValue);
}

bool GridData::RowVisible(int32_t xRow) {
  int32_t r;
  return CheckRow(xRow, r) && StoredRow(r).visible;
}
void GridData::RowVisible(int32_t xRow, bool xValue) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  StoredRow(r).visible = xValue;
  RepaintIfRedraw();
}

void GridData::RowBackColor(int32_t xRow, OLE_COLOR xValue) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  GridRow& row = StoredRow(r);
  for (int32_t c = 0; c < Cols(); ++c) SetCellFormat(row.cells[static_cast<size_t>(c)], Format_BackColor, host::Variant(xValue));
  RepaintIfRedraw();
}

void GridData::RowForeColor(int32_t xRow, OLE_COLOR xValue) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  SetRowForeColor(r, xValue);
  RepaintIfRedraw();
}

void GridData::RowFontFlag(int32_t xRow, int16_t bit, bool on) {
  int32_t r;
  if (!CheckRow(xRow, r)) return;
  GridRow& row = StoredRow(r);
  for (int32_t c = 0; c < Cols(); ++c) {
    GridCell& cell = row.cells[static_cast<size_t>(c)];
    cell.flags = WithBit(cell.flags, bit, on);
  }
  RepaintIfRedraw();
}

void GridData::RowFontBold(int32_t xRow, bool xValue) { RowFontFlag(xRow, kCellBold, xValue); }
void GridData::RowFontItalic(int32_t xRow, bool xValue) { RowFontFlag(xRow, kCellItalic, xValue); }
void GridData::RowFontUnderline(int32_t xRow, bool xValue) { RowFontFlag(xRow, kCellUnderline, xValue); }
void GridData::RowFontStrikethrough(int32_t xRow, bool xValue) { RowFontFlag(xRow, kCellStrikethrough, xValue); }

// ---- row-wide helpers -------------------------------------------------------------------------

void GridData::SetAllRowFlags(int16_t bit, bool on, bool onlyVisible, bool onlySelected, bool invert) {
  for (int32_t r = 0; r <= m_lastRow; ++r) {
    GridRow& row = StoredRow(r);
    if (onlyVisible && !row.visible) continue;
    if (onlySelected && (row.flags & kRowSelected) == 0) continue;
    bool value = invert ? (row.flags & bit) == 0 : on;
    row.flags = WithBit(row.flags, bit, value);
  }
  RepaintIfRedraw();
}

void GridData::CheckAllRowsSelected() {
  if (m_RowCheckBoxes) SetAllRowFlags(kRowChecked, true, false, true, false);
}
void GridData::UnCheckAllRowsSelected() {
  if (m_RowCheckBoxes) SetAllRowFlags(kRowChecked, false, false, true, false);
}
void GridData::CheckAllRowsVisibles() { SetAllRowFlags(kRowChecked, true, true, false, false); }
void GridData::UnCheckAllRowsVisibles() { SetAllRowFlags(kRowChecked, false, true, false, false); }
void GridData::InvertCheckedAllRowsVisibles() { SetAllRowFlags(kRowChecked, false, true, false, true); }

int32_t GridData::CheckedCount() const {
  int32_t n = 0;
  for (int32_t r = 0; r <= m_lastRow; ++r) n += (StoredRow(r).flags & kRowChecked) != 0 ? 1 : 0;
  return n;
}

int32_t GridData::SelectedCount() const {
  int32_t n = 0;
  for (int32_t r = 0; r <= m_lastRow; ++r) n += (StoredRow(r).flags & kRowSelected) != 0 ? 1 : 0;
  return n;
}

void GridData::SelectAllRows() {
  SetAllRowFlags(kRowSelected, true, false, false, false);
  SelectionChanged();
}
void GridData::UnselectAllRows() {
  SetAllRowFlags(kRowSelected, false, false, false, false);
  SelectionChanged();
}
void GridData::SelectedClearAll() {
  // Clears the selection without announcing it: callers that move the selection raise once.
  for (int32_t r = 0; r <= m_lastRow; ++r) {
    GridRow& row = StoredRow(r);
    row.flags = WithBit(row.flags, kRowSelected, false);
  }
}

// ---- columns --------------------------------------------------------------------------------

int32_t GridData::ColAlignment(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].alignment : 0;
}
void GridData::ColAlignment(int32_t xCol, int32_t xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].alignment = xValue;
  RepaintIfRedraw();
}

host::String GridData::ColFormat(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].format : host::String();
}
void GridData::ColFormat(int32_t xCol, host::StringView xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].format = host::String(xValue);
  RepaintIfRedraw();
}

host::String GridData::ColHeading(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].heading : host::String();
}
void GridData::ColHeading(int32_t xCol, host::StringView xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].heading = host::String(xValue);
  RepaintIfRedraw();
}

int32_t GridData::ColImageAlignment(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].imageAlignment : 0;
}
void GridData::ColImageAlignment(int32_t xCol, int32_t xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].imageAlignment = xValue;
  RepaintIfRedraw();
}

host::String GridData::ColInputFilter(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].inputFilter : host::String();
}
void GridData::ColInputFilter(int32_t xCol, host::StringView xValue) {
  if (ValidCol(xCol)) m_columns[static_cast<size_t>(StorageCol(xCol))].inputFilter = host::String(xValue);
}

bool GridData::ColLocked(int32_t xCol) const {
  if (xCol == -1 || m_moveRefused) return true;
  return ValidCol(xCol) && m_columns[static_cast<size_t>(StorageCol(xCol))].locked;
}
void GridData::ColLocked(int32_t xCol, bool xValue) {
  if (ValidCol(xCol)) m_columns[static_cast<size_t>(StorageCol(xCol))].locked = xValue;
}

host::String GridData::ColTag(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].tag : host::String();
}
void GridData::ColTag(int32_t xCol, host::StringView xValue) {
  if (ValidCol(xCol)) m_columns[static_cast<size_t>(StorageCol(xCol))].tag = host::String(xValue);
}

int16_t GridData::ColType(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].dataType : int16_t{0};
}
void GridData::ColType(int32_t xCol, int16_t xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].dataType = xValue;
  RepaintIfRedraw();
}

bool GridData::ColVisible(int32_t xCol) const {
  return ValidCol(xCol) && m_columns[static_cast<size_t>(StorageCol(xCol))].visible;
}
void GridData::ColVisible(int32_t xCol, bool xValue) {
  if (!ValidCol(xCol)) return;
  m_columns[static_cast<size_t>(StorageCol(xCol))].visible = xValue;
  OnMetricsChanged();
}

float GridData::ColWidth(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].widthScaled : 0.0f;
}
void GridData::ColWidth(int32_t xCol, float xValue) {
  if (!ValidCol(xCol)) return;
  GridColumn& column = m_columns[static_cast<size_t>(StorageCol(xCol))];
  column.widthScaled = xValue;
  column.widthPixels = PixelsFromScaled(xValue);
  OnMetricsChanged();
}
int32_t GridData::ColWidthPixels(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].widthPixels : 0;
}

bool GridData::ColWordWrap(int32_t xCol) const {
  return ValidCol(xCol) && (m_columns[static_cast<size_t>(StorageCol(xCol))].cellFlagsDefault & kCellWordWrap) != 0;
}
void GridData::ColWordWrap(int32_t xCol, bool xValue) {
  if (!ValidCol(xCol)) return;
  GridColumn& column = m_columns[static_cast<size_t>(StorageCol(xCol))];
  column.cellFlagsDefault = WithBit(column.cellFlagsDefault, kCellWordWrap, xValue);
}

// ---- totals: get by display column, let by storage column ------------------------------------

#define MX_GRID_TOTAL_MEMBER(Type, Name, field)                                            \
  Type GridData::Name(int32_t xCol) const {                                                \
    if (!ValidCol(xCol)) return Type{};                                                    \
    return m_totalColumns[static_cast<size_t>(StorageCol(xCol))].field;                   \
  }                                                                                        \
  void GridData::Name(int32_t xCol, std::conditional_t<std::is_same_v<Type, host::String>, \
                                                       host::StringView, Type> xValue) {    \
    if (!ValidCol(xCol)) return;                                                           \
    m_totalColumns[static_cast<size_t>(xCol)].field = Type(xValue);                       \
    RepaintIfRedraw();                                                                     \
  }

MX_GRID_TOTAL_MEMBER(bool, TotalLineColFontBold, fontBold)
MX_GRID_TOTAL_MEMBER(bool, TotalLineColFontItalic, fontItalic)
MX_GRID_TOTAL_MEMBER(bool, TotalLineColFontUnderline, fontUnderline)
MX_GRID_TOTAL_MEMBER(bool, TotalLineColFontStrikethrough, fontStrikethrough)
MX_GRID_TOTAL_MEMBER(int32_t, TotalLineColAlignment, alignment)
MX_GRID_TOTAL_MEMBER(bool, TotalLineColInvisible, invisible)
MX_GRID_TOTAL_MEMBER(OLE_COLOR, TotalLineForeColor, foreColor)
MX_GRID_TOTAL_MEMBER(host::String, TotalLineCaption, caption)
MX_GRID_TOTAL_MEMBER(bool, TotalLineColAvg, average)
#undef MX_GRID_TOTAL_MEMBER

double GridData::TotalColumns(int32_t xCol) const {
  return xCol >= 0 && static_cast<size_t>(xCol) < m_columnTotals.size() ? m_columnTotals[static_cast<size_t>(xCol)] : 0.0;
}

// ---- search by data ---------------------------------------------------------------------------

int32_t GridData::GetIndexFromData(int32_t xDataToFind, bool DefaultAsNullResult) const {
  for (int32_t r = 0; r <= m_lastRow; ++r) {
    if (StoredRow(StorageRow(r)).data == xDataToFind) return r;
  }
  // Without DefaultAsNullResult a miss reads as row 0, indistinguishable from a hit there.
  return DefaultAsNullResult ? -1 : 0;
}

int32_t GridData::GetIndexFromCellData(int32_t xDataToFind, int32_t xCol, bool DefaultAsNullResult) const {
  if (ValidCol(xCol)) {
    const size_t c = static_cast<size_t>(StorageCol(xCol));
    for (int32_t r = 0; r <= m_lastRow; ++r) {
      if (StoredRow(StorageRow(r)).cells[c].data == xDataToFind) return r;
    }
  }
  return DefaultAsNullResult ? -1 : 0;
}

// ---- bulk format ----------------------------------------------------------------------------

void GridData::FormatCells(int32_t RowFrom, int32_t RowTo, int32_t ColFrom, int32_t ColTo, int32_t Mode,
                           const host::Variant& xValue, int32_t vNewAlign) {
  if (m_lastRow < 0 || m_columns.empty()) return;
  if (RowTo < 0 || RowTo > m_lastRow) RowTo = m_lastRow;
  if (ColTo < 0 || ColTo >= Cols()) ColTo = Cols() - 1;
  RowFrom = std::max(RowFrom, 0);
  ColFrom = std::max(ColFrom, 0);
  // Convert once, raising before any cell changes when the value does not fit the mode.
  host::Variant value = xValue;
  if (Mode & (Format_BackColor | Format_ForeColor | Format_Image)) value = NumberOrZero(xValue);
  bool flagOn = false;
  if (Mode & (Format_FontBold | Format_FontItalic | Format_FontUnderline | Format_FontStrikethrough | Format_HandPointer)) {
    flagOn = NumberOrZero(xValue).ToBoolean();
  }
  for (int32_t r = RowFrom; r <= RowTo; ++r) {
    GridRow& row = StoredRow(StorageRow(r));
    for (int32_t c = ColFrom; c <= ColTo; ++c) {
      GridCell& cell = row.cells[static_cast<size_t>(StorageCol(c))];
      if (Mode & Format_BackColor) SetCellFormat(cell, Format_BackColor, value);
      if (Mode & Format_ForeColor) SetCellFormat(cell, Format_ForeColor, value);
      if (Mode & Format_Image) SetCellFormat(cell, Format_Image, value);
      if (Mode & Format_FontName) SetCellFormat(cell, Format_FontName, xValue);
      if (Mode & Format_HandPointer) SetCellFormat(cell, Format_HandPointer, host::Variant(flagOn));
      if (Mode & Format_FontBold) cell.flags = WithBit(cell.flags, kCellBold, flagOn);
      if (Mode & Format_FontItalic) cell.flags = WithBit(cell.flags, kCellItalic, flagOn);
      if (Mode & Format_FontUnderline) cell.flags = WithBit(cell.flags, kCellUnderline, flagOn);
      if (Mode & Format_FontStrikethrough) cell.flags = WithBit(cell.flags, kCellStrikethrough, flagOn);
      if (Mode & Format_Alignment) cell.alignment = static_cast<int16_t>(vNewAlign);
    }
  }
  RepaintIfRedraw();
}

void GridData::FormatCellsAlignment(int32_t RowFrom, int32_t RowTo, int32_t ColFrom, int32_t ColTo, int32_t vAlignment) {
  FormatCells(RowFrom, RowTo, ColFrom, ColTo, Format_Alignment, host::Variant(), vAlignment);
}

}  // namespace mx::grid
