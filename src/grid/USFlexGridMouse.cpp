// USFlexGrid: the mouse. Presses select rows and move the current cell, drags extend the
// selection (scrolling a page at a time when the pointer leaves the rows), and in the header
// band presses sort, drag or swap columns and resize them by their right edge.
//
// One press is one of: a column resize (the pointer showed the west-east cursor), a row resize
// (north-south cursor), a header press (which may become a column move once the pointer travels),
// or a press on the rows. The up of the press ends what the down started.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "grid/USFlexGrid.h"
#include "host/DataObject.h"
#include "platform/Input.h"
#include "platform/Window.h"

namespace mx::grid {

using namespace platform;

namespace {

// Pixels the pointer travels with the button on a header cell before the press becomes a move.
constexpr int32_t kHeaderMoveThreshold = 3;
// A column is never made narrower than this by the mouse.
constexpr int32_t kMinimumDragWidth = 40;
// Nor a row lower than this.
constexpr int32_t kMinimumDragHeight = 5;
// How close to an edge the pointer must be to grab it.
constexpr int32_t kGrabDistance = 4;

// Vertical place of a box of height `box` in a cell, by the alignment's row, as painting does.
int32_t AlignY(int32_t alignment, int32_t top, int32_t height, int32_t box, int32_t margin) {
  if (alignment >= 8) return top + height - box - margin;
  if (alignment >= 4) return top + (height - box) / 2;
  return top + margin;
}

}  // namespace

bool USFlexGrid::InCheckBoxOfBooleanCell(int32_t row, int32_t col, int32_t x, int32_t y) {
  const int32_t top = RowTop(row);
  if (top < 0) return false;
  const RECT cr = GetColumnRect(col);
  const GridColumn& column = StoredColumn(StorageCol(col));
  const int32_t align = StoredRow(StorageRow(row)).cells[static_cast<size_t>(StorageCol(col))].alignment;
  const int32_t w = column.widthPixels;
  const int32_t hx = align % 4 == 1 ? cr.left + (w - 13) / 2 : align % 4 == 2 ? cr.left + w - 16 : cr.left + 3;
  const int32_t hy = AlignY(align, top, RowHeightAt(row), 13, MinVerticalOffset());
  return x >= hx && x < hx + 13 && y >= hy && y < hy + 13;
}

void USFlexGrid::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  HideToolTip();
  SetMoveRefused(false);
  m_rowMoveRefused = false;
  m_lastShift = Shift;
  const int32_t x = static_cast<int32_t>(std::lround(X)), y = static_cast<int32_t>(std::lround(Y));
  const int32_t col = ColumnAtX(x);
  const bool inHeader = y <= m_metrics.headerBottom;
  const int32_t row = inHeader ? -1 : RowAtY(y);
  m_downRow = row;
  m_downCol = col;
  m_downX = x;
  m_dragRow = row;
  bool selectionChanged = false;
  const bool ctrl = (Shift & host::vbCtrlMask) != 0, shift = (Shift & host::vbShiftMask) != 0;

  if (Button == host::vbLeftButton) {
    if (inHeader) {
      if (m_resizeCol >= 0 && MousePointer() == host::vbSizeWE) {
        m_resizing = true;
        m_resizeStartSize = ColWidthPixels(m_resizeCol);
      } else if ((AllowColumnSort() || AllowColumnSwap() || AllowColumnDrag()) && col >= 0 &&
                 y >= m_metrics.captionHeight) {
        // A press that may sort or move columns first closes the editor: its cell is named by
        // display position, which either would change under it.
        if (UpdateCell(false)) SetHeaderStates(m_headerHoverCol, col, -1);
      }
    } else if (m_resizeRow >= 0 && m_resizeRow <= LastRow() && MousePointer() == host::vbSizeNS) {
      m_resizing = true;
      m_resizeStartSize = RowHeightAt(m_resizeRow);
    } else if (row >= 0) {
      // The close of an open editor runs AfterEdit, whose handler may change the rows.
      if (!UpdateCell(false) || row > LastRow()) {
        MouseDown(Button, Shift, X, Y);
        return;
      }
      GridRow& gr = StoredRow(StorageRow(row));
      // A locked row takes no part: neither the selection nor the current cell move.
      if ((gr.flags & kRowLocked) == 0) {
        const int32_t fromGutter = x - static_cast<int32_t>(m_metrics.rowNumberWidth);
        if (col == 0 && RowCheckBoxes() && !gr.groupHeader && fromGutter >= 5 && fromGutter <= 20) {
          gr.flags = static_cast<int16_t>(gr.flags ^ kRowChecked);
          RowCheckedEvent(row);
        } else {
          if (col >= 0 && StoredColumn(StorageCol(col)).dataType == TypeBoolean && AllowEdit() && !ColLocked(col) &&
              InCheckBoxOfBooleanCell(row, col, x, y)) {
            FlipBooleanCell(row, col, true);
            // The edit events may have emptied the grid or removed the row.
            if (row > LastRow() || col >= Cols()) {
              MouseDown(Button, Shift, X, Y);
              return;
            }
          }
          const bool selected = (StoredRow(StorageRow(row)).flags & kRowSelected) != 0;
          if (MultiSelect() < Multi_Standard) {
            if (ctrl) selectionChanged = SelectOnly(selected ? -1 : row);
            else if (!selected) selectionChanged = SelectOnly(row);
            m_anchorRow = row;
          } else if (MultiSelect() == Multi_Latch || ctrl) {
            selectionChanged = SelectRange(!selected, row, row);
            m_anchorRow = row;
          } else if (shift) {
            if (m_anchorRow < 0 || m_anchorRow > LastRow()) m_anchorRow = Row() >= 0 ? Row() : row;
            selectionChanged = SelectExactly(m_anchorRow, row);
          } else {
            selectionChanged = SelectOnly(row);
            m_anchorRow = row;
          }
        }
        MoveCurrentCell(row, col, false, true);
        if (col >= 0 && col < Cols() && StoredColumn(StorageCol(col)).dataType == TypeButton)
          SetPressedButtonCell(row, col);
      }
    }
  } else if (row >= 0 && (StoredRow(StorageRow(row)).flags & kRowLocked) == 0) {
    // Another button: a press on a selected row of a multi mode keeps the selection, so that a
    // context menu can act on all of it.
    const bool selected = (StoredRow(StorageRow(row)).flags & kRowSelected) != 0;
    if (MultiSelect() < Multi_Standard || !selected) {
      selectionChanged = SelectOnly(row);
      m_anchorRow = row;
    }
    MoveCurrentCell(row, col, false, true);
  }
  DrawGrid(GridData::Redraw());
  if (row >= 0 && row <= LastRow()) CellClickEx(row, col >= 0 && col < Cols() ? StorageCol(col) : -1, Button, Shift, X, Y);
  if (selectionChanged) SelectionChanged();
  MouseDown(Button, Shift, X, Y);
}

void USFlexGrid::UpdatePointerZones(int32_t x, int32_t y) {
  m_resizeCol = -1;
  m_resizeRow = -1;
  int16_t pointer = host::vbDefault;
  if (AllowColumnResizing() && y >= m_metrics.captionHeight && y < m_metrics.headerBottom) {
    int32_t right = static_cast<int32_t>(m_metrics.rowNumberWidth);
    for (int32_t c = 0; c < Cols(); ++c) {
      if (c > FreezeAtCol() && c < m_firstScrollCol) continue;
      const GridColumn& gc = StoredColumn(StorageCol(c));
      if (!gc.visible) continue;
      right += gc.widthPixels;
      if (std::abs(x - right) <= kGrabDistance) {
        m_resizeCol = c;
        m_resizeColOffset = x - gc.widthPixels;
        pointer = host::vbSizeWE;
        break;
      }
      if (right > x + kGrabDistance) break;
    }
  }
  if (m_resizeCol < 0 && AllowRowResizing() && y > m_metrics.headerBottom && LastRow() >= 0) {
    int32_t bottom = m_metrics.headerBottom;
    for (int32_t r = std::clamp(m_firstRow, 0, LastRow()); r <= LastRow() && bottom <= VisibleHeight(); ++r) {
      if (!RowPainted(r)) continue;
      const int32_t h = RowHeightAt(r);
      bottom += h;
      if (std::abs(y - bottom) <= kGrabDistance) {
        m_resizeRow = r;
        m_resizeRowOffset = y - h;
        pointer = host::vbSizeNS;
        break;
      }
    }
  }
  // Only the resize cursors are the grid's own; any other pointer the host set stays.
  const int16_t now = MousePointer();
  if (pointer != now && (pointer != host::vbDefault || now == host::vbSizeWE || now == host::vbSizeNS))
    MousePointer(pointer);
}

void USFlexGrid::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  const int32_t x = static_cast<int32_t>(std::lround(X)), y = static_cast<int32_t>(std::lround(Y));
  if (Button == 0) {
    const int32_t col = ColumnAtX(x), row = RowAtY(y);
    if (row != m_mouseRow || col != m_mouseCol) {
      m_mouseRow = row;
      m_mouseCol = col;
      HideToolTip();
      ShowCellToolTip(row, col);
    }
    const bool inBand = y >= m_metrics.captionHeight && y < m_metrics.headerBottom;
    SetHeaderStates(AllowColumnHover() && inBand ? col : -1, m_headerPressedCol, m_headerMovingCol);
    UpdatePointerZones(x, y);
  } else if (Button & host::vbLeftButton) {
    if (m_resizing && m_resizeCol >= 0 && m_resizeCol < Cols()) {
      const int32_t w = x - m_resizeColOffset;
      if (w > kMinimumDragWidth && w != ColWidthPixels(m_resizeCol)) {
        ColWidth(m_resizeCol, static_cast<float>(w) * TwipsPerPixel());
        if (m_editPending) PositionEditor();
      }
    } else if (m_resizing && m_resizeRow >= 0 && m_resizeRow <= LastRow()) {
      const int32_t h = y - m_resizeRowOffset;
      if (h >= kMinimumDragHeight && h != RowHeightAt(m_resizeRow)) {
        GridData::RowHeight(m_resizeRow, h);
        DrawGrid(GridData::Redraw());
        if (m_editPending) PositionEditor();
      }
    } else if (m_headerPressedCol >= 0) {
      if (m_swapCol < 0 && m_dragCol < 0 && (AllowColumnSwap() || AllowColumnDrag()) &&
          std::abs(x - m_downX) >= kHeaderMoveThreshold) {
        if (AllowColumnSwap()) m_swapCol = m_headerPressedCol;
        else m_dragCol = m_headerPressedCol;
      }
      const int32_t moving = m_swapCol >= 0 ? m_swapCol : m_dragCol;
      if (moving >= 0) {
        // The cell travels with the pointer by its distance from the press.
        const int32_t offset = x - m_downX;
        const bool moved = offset != m_headerMoveOffset;
        m_headerMoveOffset = offset;
        if (moving != m_headerMovingCol) SetHeaderStates(-1, m_headerPressedCol, moving);
        else if (moved) DrawGrid(GridData::Redraw());
      }
    } else if (m_downRow >= 0) {
      if (y <= m_metrics.headerBottom) {
        StartAutoScroll(-1);
      } else if (y >= VisibleHeight()) {
        StartAutoScroll(1);
      } else {
        StopAutoScroll();
        const int32_t target = RowAtY(y);
        if (target >= 0 && target != m_dragRow && RowOpen(target)) {
          m_dragRow = target;
          const bool changed = MultiSelect() > 0 ? SelectExactly(m_downRow, target) : SelectOnly(target);
          MoveCurrentCell(target, Col(), false, true);
          DrawGrid(GridData::Redraw());
          if (changed) SelectionChanged();
        }
      }
    }
  }
  MouseMove(Button, Shift, X, Y);
}

// One round of the drag past the rows: a page in the pointer's direction, the selection
// following from the pressed row, as long as the button is held outside the rows.
void USFlexGrid::AutoScrollStep() {
  if (m_autoScrollDirection == 0 || m_downRow < 0 || LastRow() < 0) {
    StopAutoScroll();
    return;
  }
  const int32_t page = std::max(m_rowsVisible, 1);
  int32_t target;
  if (m_autoScrollDirection < 0) {
    m_firstRow = std::max(m_firstRow - page, 0);
    target = NextOpenRow(m_firstRow - 1, 1);
  } else {
    m_firstRow = std::min(m_firstRow + page, std::max(LastRow() - 1, 0));
    DrawGrid(GridData::Redraw());
    const int32_t last = LastFullyShownRow();
    target = last >= 0 && RowOpen(last) ? last : NextOpenRow(last, -1);
  }
  if (target >= 0) {
    m_dragRow = target;
    const bool changed = MultiSelect() > 0 ? SelectExactly(m_downRow, target) : SelectOnly(target);
    MoveCurrentCell(target, Col(), true, true);
    if (changed) SelectionChanged();
  }
  DrawGrid(GridData::Redraw());
  Scroll();
}

void USFlexGrid::FinishHeaderMove(int32_t x) {
  const bool swap = m_swapCol >= 0;
  const int32_t from = swap ? m_swapCol : m_dragCol;
  m_swapCol = m_dragCol = -1;
  m_headerMoveOffset = 0;
  const int32_t to = ColumnAtX(x);
  if (to < 0 || to == from) return;
  const int32_t currentStorage = Col() >= 0 ? StorageCol(Col()) : -1;
  std::vector<int32_t>& order = ColOrder();
  if (swap) {
    std::swap(order[static_cast<size_t>(from)], order[static_cast<size_t>(to)]);
  } else {
    // The columns between shift one place towards where the dragged one came from.
    const int32_t moved = order[static_cast<size_t>(from)];
    order.erase(order.begin() + from);
    order.insert(order.begin() + to, moved);
  }
  // The current cell stays on the same storage column; the data never moves.
  int32_t newCol = Col();
  if (currentStorage >= 0)
    newCol = static_cast<int32_t>(std::find(order.begin(), order.end(), currentStorage) - order.begin());
  SetCurrentCell(Row(), newCol);
  RowColSet(Row(), newCol);
  if (m_editPending) PositionEditor();
  ColumnOrderChanged(from, to);
}

void USFlexGrid::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  StopAutoScroll();
  const int32_t x = static_cast<int32_t>(std::lround(X)), y = static_cast<int32_t>(std::lround(Y));
  if (Button == host::vbLeftButton) {
    if (m_resizing) {
      m_resizing = false;
      // A press on the edge that moved nothing is no resize.
      if (m_resizeCol >= 0 && m_resizeCol < Cols() && ColWidthPixels(m_resizeCol) != m_resizeStartSize)
        ColumnSizeChanged(m_resizeCol, StoredColumn(StorageCol(m_resizeCol)).moveControl);
    } else if (m_headerPressedCol >= 0) {
      const int32_t pressed = m_headerPressedCol;
      if (m_swapCol >= 0 || m_dragCol >= 0) {
        SetHeaderStates(m_headerHoverCol, -1, -1);
        FinishHeaderMove(x);
      } else {
        SetHeaderStates(m_headerHoverCol, -1, -1);
        if (y >= m_metrics.captionHeight && y <= m_metrics.headerBottom && ColumnAtX(x) == pressed) {
          if (AllowColumnSort()) SortByHeaderClick(pressed, (Shift & host::vbShiftMask) != 0);
          ColumnClick(StorageCol(pressed));
        }
      }
    } else if (m_downRow >= 0 && m_downRow <= LastRow()) {
      const int32_t row = RowAtY(y), col = ColumnAtX(x);
      if (row == m_downRow && col == m_downCol && col >= 0 && RowOpen(row)) {
        const GridColumn& column = StoredColumn(StorageCol(col));
        const int16_t type = column.dataType;
        if ((EditTrigger() & OnMouseClick) && CellEditable(row, col)) BeginCellEdit(row, col);
        if (row <= LastRow() && (CellImage(row, col) != 0 || (col == 0 && StoredRow(StorageRow(row)).image != 0)))
          CellImageClick(row, col);
        if (CellHandPointer(row, col)) CellHandClick(row, col, Shift);
        if (type == TypeButton) CellButtonClick(row, col);
      }
      SetPressedButtonCell(-1, -1);
    }
  }
  m_dragRow = -1;
  MouseUp(Button, Shift, X, Y);
}

void USFlexGrid::UserControl_Click() {
  Click();
  if (m_downRow >= 0 && m_downRow <= LastRow() && m_downCol >= 0 && m_downCol < Cols())
    CellClick(m_downRow, StorageCol(m_downCol), m_lastShift);
}

void USFlexGrid::UserControl_DblClick() {
  POINT pt{};
  GetCursorPos(&pt);
  ScreenToClient(hWnd(), &pt);
  if (MousePointer() == host::vbSizeWE && AllowColumnResizing() && m_resizeCol >= 0) {
    SetColumnWidthAutoSize(m_resizeCol);
  } else if (pt.y > m_metrics.headerBottom && (EditTrigger() & OnMouseDblClick)) {
    const int32_t row = RowAtY(pt.y), col = ColumnAtX(pt.x);
    if (RowOpen(row)) {
      if (m_editPending) {
        UpdateCell(false);
      } else if (col >= 0) {
        MoveCurrentCell(row, col, false, true);
        if (BeginCellEdit(row, col)) m_editByF2 = false;
      }
    }
  }
  DblClick();
}

void USFlexGrid::UserControl_OLEDragDrop(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift,
                                         float& X, float& Y) {
  OLEDragDrop(Data, Effect, Button, Shift, X, Y);
}

}  // namespace mx::grid
