// Row removal and insertion: the storage rebuild behind RemoveRow, DeleteChecked and
// DeleteSelected, and the grid members that raise their events around it.
#include <algorithm>

#include "grid/GridNumeric.h"
#include "grid/USFlexGrid.h"

namespace mx::grid {

// Survivors move down over the gaps in one pass, so the table is rebuilt once whatever the
// number of victims. The pages never move; only the rows inside them do.
void GridData::RemoveStorageRows(const std::vector<uint8_t>& victims) {
  if (m_lastRow < 0) return;
  const int32_t count = m_lastRow + 1;
  std::vector<int32_t> newIndex(static_cast<size_t>(count), -1);
  int32_t kept = 0;
  for (int32_t s = 0; s < count; ++s) {
    const bool victim = static_cast<size_t>(s) < victims.size() && victims[static_cast<size_t>(s)] != 0;
    GridRow& row = StoredRow(s);
    if (victim) {
      for (int32_t c = 0; c < Cols(); ++c) {
        GridCell& cell = row.cells[static_cast<size_t>(c)];
        if (m_totalLineShow && m_columns[static_cast<size_t>(c)].dataType == TypeNumeric)
          m_columnTotals[static_cast<size_t>(c)] -= GridNumericValue(cell.text.View());
        // A count never drops to 0 here: row-wide format copies are not counted, so a zero could
        // free a record that other cells still show.
        const int16_t f = cell.formatIndex;
        if (f > 0 && static_cast<size_t>(f) < m_formats.size() && m_formats[static_cast<size_t>(f)].useCount > 1)
          --m_formats[static_cast<size_t>(f)].useCount;
        ReleaseExtra(cell);
      }
      continue;
    }
    if (kept != s) StoredRow(kept) = std::move(row);
    newIndex[static_cast<size_t>(s)] = kept++;
  }
  // The places left behind at the end hold moved-from rows; reset them to empty records.
  for (int32_t s = kept; s < count; ++s) StoredRow(s) = GridRow{};
  std::vector<int32_t> order;
  order.reserve(static_cast<size_t>(kept));
  for (int32_t storage : m_rowOrder) {
    const int32_t n = newIndex[static_cast<size_t>(storage)];
    if (n >= 0) order.push_back(n);
  }
  m_rowOrder = std::move(order);
  m_lastRow = kept - 1;
  if (m_row > m_lastRow) m_row = m_lastRow;
}

// ---- the grid's members ------------------------------------------------------------------------

void USFlexGrid::RemoveRows(const std::vector<uint8_t>& victims, bool xRedraw) {
  // An editor over a row that may move is closed without writing back.
  if (m_editPending) CancelEdit();
  int32_t survivors = 0;
  for (int32_t s = 0; s <= LastRow(); ++s)
    if (static_cast<size_t>(s) >= victims.size() || victims[static_cast<size_t>(s)] == 0) ++survivors;
  if (survivors == 0) {
    // Clear raises AfterDelete, RowCountChanged and SelectionChanged itself.
    Clear();
    return;
  }
  RemoveStorageRows(victims);
  m_anchorRow = std::min(m_anchorRow, LastRow());
  AfterDelete();
  RowCountChanged();
  SelectionChanged();
  if (xRedraw) DrawGrid(GridData::Redraw());
}

void USFlexGrid::RemoveRow(int32_t xRow) {
  if (LastRow() < 0 || xRow < 0 || xRow > LastRow()) return;
  bool cancel = false;
  BeforeDelete(xRow, cancel);
  if (cancel || xRow > LastRow()) return;
  std::vector<uint8_t> victims(static_cast<size_t>(LastRow() + 1), 0);
  victims[static_cast<size_t>(StorageRow(xRow))] = 1;
  RemoveRows(victims, true);
}

void USFlexGrid::DeleteRowsWithFlag(int16_t flag, bool xRedraw) {
  std::vector<uint8_t> victims(static_cast<size_t>(LastRow() + 1), 0);
  bool any = false;
  for (int32_t s = 0; s <= LastRow(); ++s) {
    if (StoredRow(s).flags & flag) {
      victims[static_cast<size_t>(s)] = 1;
      any = true;
    }
  }
  if (any) RemoveRows(victims, xRedraw);
}

void USFlexGrid::DeleteChecked(bool xRedraw) {
  if (LastRow() < 0 || CheckedCount() == 0) return;
  bool cancel = false;
  BeforeDelete(Row(), cancel);
  if (!cancel) DeleteRowsWithFlag(kRowChecked, xRedraw);
}

void USFlexGrid::DeleteSelected() {
  if (LastRow() < 0 || SelectedCount() == 0) return;
  bool cancel = false;
  BeforeDelete(Row(), cancel);
  if (!cancel) DeleteRowsWithFlag(kRowSelected, true);
}

// The Insert key: an empty row marked as new below the current one, which becomes current.
void USFlexGrid::InsertRowAtCurrent() {
  bool cancel = false;
  BeforeInsert(Row(), cancel);
  if (cancel) return;
  const int32_t below = std::max(Row(), 0) + 1;
  const int32_t display = AddItem(host::StringView(), below, false, true);
  if (SelectOnly(display)) SelectionChanged();
  RowColSet(display, Col());
  AfterInsert(Row());
}

}  // namespace mx::grid
