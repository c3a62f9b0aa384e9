// USFlexGrid: the current cell, hit testing, row selection, the keyboard with the incremental
// search, and the window messages the host has no event for.
//
// Selection lives in the rows' selected bit. A plain move (arrow, page, click without
// modifiers) selects only the target row and makes it the anchor; Shift in a multi mode selects
// exactly the rows from the anchor to the target; Ctrl and Multi Latch toggle one row.
#include <algorithm>

#include "grid/USFlexGrid.h"
#include "platform/Clock.h"
#include "platform/Input.h"
#include "platform/Messages.h"
#include "platform/ScrollBar.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::grid {

using namespace platform;

namespace {

constexpr UINT_PTR kAutoScrollTimer = 0x4D58;
// Characters typed within this time of the last one extend the search text.
constexpr uint32_t kSearchResetMs = 1000;

// Letters and digits: ASCII, and the Latin-1 letters and everything above them, so that
// accented Portuguese names take part in the search.
bool IsAlphaNumeric(char16_t ch) {
  if ((ch >= u'0' && ch <= u'9') || (ch >= u'A' && ch <= u'Z') || (ch >= u'a' && ch <= u'z')) return true;
  return ch >= 0xC0 && ch != 0xD7 && ch != 0xF7;
}

bool IsPrintable(char16_t ch) { return ch >= 0x20 && ch != 0x7F; }

}  // namespace

// ---- rows and columns that can take the current cell -------------------------------------------

bool USFlexGrid::RowOpen(int32_t r) {
  if (r < 0 || r > LastRow()) return false;
  const GridRow& row = StoredRow(StorageRow(r));
  return row.visible && (row.flags & kRowLocked) == 0;
}

bool USFlexGrid::ColOpen(int32_t c) {
  if (c < 0 || c >= Cols()) return false;
  const GridColumn& col = StoredColumn(StorageCol(c));
  return col.visible && !col.locked;
}

int32_t USFlexGrid::NextOpenRow(int32_t from, int32_t step) {
  int32_t r = from < 0 ? (step > 0 ? 0 : LastRow()) : from + step;
  for (; r >= 0 && r <= LastRow(); r += step)
    if (RowOpen(r)) return r;
  return -1;
}

int32_t USFlexGrid::NextOpenCol(int32_t from, int32_t step) {
  int32_t c = from < 0 ? (step > 0 ? 0 : Cols() - 1) : from + step;
  for (; c >= 0 && c < Cols(); c += step)
    if (ColOpen(c)) return c;
  return -1;
}

bool USFlexGrid::CellEditable(int32_t row, int32_t col) {
  if (!AllowEdit() || !RowOpen(row) || col < 0 || col >= Cols() || ColLocked(col) || !ColVisible(col)) return false;
  const int16_t type = StoredColumn(StorageCol(col)).dataType;
  return type == TypeString || type == TypeNumeric || type == TypeDate || type == TypeCustom;
}

// ---- hit testing -------------------------------------------------------------------------------

int32_t USFlexGrid::ColumnAtX(int32_t x) {
  if (Cols() == 0 || x < static_cast<int32_t>(m_metrics.rowNumberWidth)) return -1;
  // The walk of the painted columns: the frozen block, then from the horizontal position.
  int32_t left = static_cast<int32_t>(m_metrics.rowNumberWidth);
  for (int32_t c = 0; c < Cols(); ++c) {
    if (c > FreezeAtCol() && c < m_firstScrollCol) continue;
    const GridColumn& col = StoredColumn(StorageCol(c));
    if (!col.visible) continue;
    if (x >= left && x < left + col.widthPixels) return c;
    left += col.widthPixels;
  }
  return -1;
}

int32_t USFlexGrid::RowAtY(int32_t y) {
  if (LastRow() < 0 || y < m_metrics.headerBottom + 1) return -1;
  int32_t bottom = m_metrics.headerBottom;
  const int32_t height = VisibleHeight();
  for (int32_t r = std::clamp(m_firstRow, 0, LastRow()); r <= LastRow(); ++r) {
    if (!RowPainted(r)) continue;
    bottom += RowHeightAt(r);
    if (bottom > y - 1) return r;
    if (bottom > height) break;  // rows past the client area are not there to be hit
  }
  return -1;
}

int32_t USFlexGrid::RowTop(int32_t displayRow) {
  if (displayRow < m_firstRow || displayRow > LastRow()) return -1;
  int32_t y = m_metrics.headerBottom;
  for (int32_t r = std::max(m_firstRow, 0); r < displayRow; ++r) {
    if (!RowPainted(r)) continue;
    y += RowHeightAt(r);
    if (y > VisibleHeight()) return -1;
  }
  return y;
}

int32_t USFlexGrid::LastFullyShownRow() {
  const int32_t avail = AvailableRowsHeight();
  int32_t used = 0, last = -1;
  for (int32_t r = std::clamp(m_firstRow, 0, std::max(LastRow(), 0)); r <= LastRow(); ++r) {
    if (!RowPainted(r)) continue;
    used += RowHeightAt(r);
    if (used > avail) break;
    last = r;
  }
  return last;
}

// ---- the current cell --------------------------------------------------------------------------

bool USFlexGrid::ScrollCellIntoView(int32_t row, int32_t col) {
  bool moved = false;
  if (col > FreezeAtCol() && col < Cols() && HorizontalScrollBarVisible()) {
    auto rightOf = [&] {
      int32_t x = static_cast<int32_t>(m_metrics.rowNumberWidth);
      for (int32_t c = 0; c <= col; ++c) {
        if (c > FreezeAtCol() && c < m_firstScrollCol) continue;
        const GridColumn& gc = StoredColumn(StorageCol(c));
        if (gc.visible) x += gc.widthPixels;
      }
      return x;
    };
    if (col < m_firstScrollCol) {
      m_firstScrollCol = col;
      moved = true;
    } else {
      while (rightOf() > VisibleWidth() && m_firstScrollCol < col) {
        ++m_firstScrollCol;
        moved = true;
      }
    }
  }
  if (row >= 0 && row <= LastRow() && VerticalScrollBarVisible()) {
    if (row < m_firstRow) {
      m_firstRow = row;
      moved = true;
    } else if (const int32_t last = LastFullyShownRow(); last >= 0 && row > last) {
      // Walk back from the row to the first row that still lets it show whole.
      const int32_t avail = AvailableRowsHeight();
      int32_t used = 0, first = row;
      for (int32_t r = row; r >= 0; --r) {
        if (!RowPainted(r)) continue;
        used += RowHeightAt(r);
        if (used > avail) break;
        first = r;
      }
      if (first != m_firstRow) {
        m_firstRow = first;
        moved = true;
      }
    }
  }
  return moved;
}

void USFlexGrid::MoveCurrentCell(int32_t xRow, int32_t xCol, bool xRaiseOnly, bool xRaise) {
  if (xRow >= 0 && xRow <= LastRow() && (StoredRow(StorageRow(xRow)).flags & kRowLocked)) return;
  int32_t row = std::min(xRow, LastRow());
  int32_t col = std::min(xCol, Cols() - 1);
  if (row < -1) row = -1;
  if (col < -1) col = -1;
  if (row != Row() || col != Col()) {
    // The column still becomes current; the latch keeps the editor away from it.
    if (col >= 0 && !ColOpen(col)) SetMoveRefused(true);
    if (row >= 0 && !StoredRow(StorageRow(row)).visible) {
      row = Row();
      m_rowMoveRefused = true;
    }
  }
  if (xRaise && (row != Row() || col != Col())) {
    SetCurrentCell(row, col);
    RowColChanged();
  }
  if (!xRaiseOnly && ScrollCellIntoView(row, col)) {
    DrawGrid(GridData::Redraw());
    Scroll();
  }
}

void USFlexGrid::RowColSet(int32_t xNewRow, int32_t xNewCol) {
  const int32_t row = xNewRow < 0 ? Row() : xNewRow;
  const int32_t col = xNewCol < 0 ? Col() : xNewCol;
  MoveCurrentCell(row, col, false, true);
  DrawGrid(GridData::Redraw());
}

void USFlexGrid::Row(int32_t xRow) {
  int32_t found = -1;
  for (int32_t r = std::max(xRow, 0); xRow >= 0 && r <= LastRow(); ++r) {
    if (RowOpen(r)) {
      found = r;
      break;
    }
  }
  if (found < 0) {
    if (Row() != -1) {
      SetCurrentCell(-1, Col());
      RowColChanged();
    }
    DrawGrid(GridData::Redraw());
    return;
  }
  RowColSet(found, -1);
}

void USFlexGrid::Col(int32_t xCol) {
  if (xCol >= Cols()) return;
  if (xCol < 0) {
    if (Col() != -1) {
      SetCurrentCell(Row(), -1);
      RowColChanged();
    }
    DrawGrid(GridData::Redraw());
    return;
  }
  RowColSet(Row(), xCol);
}

// ---- selection ---------------------------------------------------------------------------------

// Hidden rows take no part: a range over a filtered list selects only what shows.
bool USFlexGrid::SelectRange(bool xState, int32_t xFrom, int32_t xTo) {
  if (LastRow() < 0) return false;
  int32_t a = std::clamp(xFrom, 0, LastRow()), b = std::clamp(xTo, 0, LastRow());
  if (a > b) std::swap(a, b);
  bool changed = false;
  for (int32_t r = a; r <= b; ++r) {
    GridRow& row = StoredRow(StorageRow(r));
    if (!row.visible || ((row.flags & kRowSelected) != 0) == xState) continue;
    row.flags = static_cast<int16_t>(row.flags ^ kRowSelected);
    changed = true;
  }
  return changed;
}

bool USFlexGrid::SelectOnly(int32_t row) { return SelectExactly(row, row); }

// One pass that leaves exactly the shown rows from..to selected (none for -1), reporting a change
// only when a bit really moved.
bool USFlexGrid::SelectExactly(int32_t from, int32_t to) {
  if (from > to) std::swap(from, to);
  bool changed = false;
  for (int32_t r = 0; r <= LastRow(); ++r) {
    GridRow& gr = StoredRow(StorageRow(r));
    const bool want = from >= 0 && r >= from && r <= to && gr.visible;
    if (((gr.flags & kRowSelected) != 0) == want) continue;
    gr.flags = static_cast<int16_t>(gr.flags ^ kRowSelected);
    changed = true;
  }
  return changed;
}

void USFlexGrid::NavigateTo(int32_t row, int32_t col, bool extend) {
  // A grid with no current column takes its first open one, so that the cell reached can be
  // edited from the keyboard.
  if (col < 0) col = NextOpenCol(-1, 1);
  bool selectionChanged = false;
  if (row >= 0 && RowOpen(row)) {
    if (extend && MultiSelect() > 0) {
      if (m_anchorRow < 0 || m_anchorRow > LastRow()) m_anchorRow = Row() >= 0 ? Row() : row;
      selectionChanged = SelectExactly(m_anchorRow, row);
    } else {
      selectionChanged = SelectOnly(row);
      m_anchorRow = row;
    }
  }
  MoveCurrentCell(row, col, false, true);
  DrawGrid(GridData::Redraw());
  if (selectionChanged) SelectionChanged();
}

// ---- keyboard ----------------------------------------------------------------------------------

int32_t USFlexGrid::PageDownRow() {
  if (LastRow() < 0) return -1;
  const int32_t page = std::max(m_rowsVisible - 1, 1);
  int32_t r = std::max(Row(), 0), n = 0;
  while (n < page && r < LastRow()) {
    ++r;
    if (RowPainted(r)) ++n;
  }
  if (RowOpen(r)) return r;
  const int32_t after = NextOpenRow(r, 1);
  return after >= 0 ? after : NextOpenRow(r, -1);
}

int32_t USFlexGrid::PageUpRow() {
  if (LastRow() < 0) return -1;
  const int32_t page = std::max(m_rowsVisible - 1, 1);
  int32_t r = std::max(Row(), 0), n = 0;
  while (n < page && r > 0) {
    --r;
    if (RowPainted(r)) ++n;
  }
  if (RowOpen(r)) return r;
  const int32_t before = NextOpenRow(r, -1);
  return before >= 0 ? before : NextOpenRow(r, 1);
}

void USFlexGrid::ToggleEditor(bool byF2) {
  if (m_editPending) {
    UpdateCell(!byF2);
    return;
  }
  if (BeginCellEdit(Row(), Col())) m_editByF2 = byF2;
}

// Space and Delete share the cell's edit rules with the mouse; the order of the events follows
// the key (before, change, after).
void USFlexGrid::FlipBooleanCell(int32_t row, int32_t col, bool afterEditFirst) {
  const int32_t storageCol = StorageCol(col);
  bool cancel = false;
  BeforeEdit(row, storageCol, cancel);
  if (cancel) return;
  const bool newValue = !CellChecked(row, col);
  host::String text = newValue ? u"True" : u"False";
  if (afterEditFirst) {
    AfterEdit(row, storageCol, text, cancel);
    if (!cancel) CellChecked(row, col, newValue);
    return;
  }
  CellChecked(row, col, newValue);
  AfterEdit(row, storageCol, text, cancel);
  if (cancel) CellChecked(row, col, !newValue);
}

void USFlexGrid::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  HandleKeyDown(KeyCode, Shift, false);
  KeyDown(KeyCode, Shift);
}

void USFlexGrid::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { KeyUp(KeyCode, Shift); }

void USFlexGrid::HandleKeyDown(int16_t& KeyCode, int16_t Shift, bool fromEditor) {
  HideToolTip();
  SetMoveRefused(false);
  m_rowMoveRefused = false;
  m_suppressKeyPress = false;
  m_suppressSearch = false;
  m_lastShift = Shift;
  SetLastKeyCode(KeyCode);
  const bool ctrl = (Shift & host::vbCtrlMask) != 0, shift = (Shift & host::vbShiftMask) != 0;
  const int32_t row = Row(), col = Col();

  switch (KeyCode) {
    case VK_RETURN:
    case VK_ESCAPE:
      if (EditTrigger() & OnAnyKey) {
        // KeyPress takes both keys in this mode.
        KeyCode = 0;
        return;
      }
      if (KeyCode == VK_ESCAPE) {
        if (m_editPending) CancelEdit();
        KeyCode = 0;
        m_suppressKeyPress = true;
        return;
      }
      if (m_editPending) {
        if (UpdateCell(true)) KeyCode = 0;
      } else if ((EditTrigger() & OnEnterKey) && BeginCellEdit(row, col)) {
        m_editByF2 = false;
        KeyCode = 0;
      }
      if (KeyCode == 0) m_suppressKeyPress = true;
      return;

    case VK_INSERT:
      if (AllowInsert() && !m_editPending) InsertRowAtCurrent();
      return;

    case VK_DELETE: {
      if (m_editPending) return;
      if (AllowDelete() && MultiSelect() > 0 && SelectedCount() > 0) {
        bool cancel = false;
        BeforeDelete(row, cancel);
        if (!cancel) DeleteRowsWithFlag(kRowSelected, true);
        return;
      }
      if (!CellEditable(row, col)) return;
      const int32_t storageCol = StorageCol(col);
      bool cancel = false;
      BeforeEdit(row, storageCol, cancel);
      if (cancel) return;
      BeforeDelete(row, cancel);
      if (cancel) return;
      const host::String old = CellText(row, col);
      CellText(row, col, u"");  // the totals follow the text
      host::String value;
      AfterEdit(row, storageCol, value, cancel);
      if (cancel) {
        CellText(row, col, old);
        return;
      }
      AfterDelete();
      return;
    }

    case VK_F2:
      if (EditTrigger() & OnF2Key) {
        ToggleEditor(true);
        KeyCode = 0;
      }
      return;

    case VK_SPACE: {
      if (fromEditor || row < 0) return;
      if (RowCheckBoxes()) {
        if (MultiSelect() > 0 && SelectedCount() > 0) {
          for (int32_t r = 0; r <= LastRow(); ++r) {
            GridRow& gr = StoredRow(StorageRow(r));
            if ((gr.flags & kRowSelected) && RowOpen(r)) gr.flags = static_cast<int16_t>(gr.flags ^ kRowChecked);
          }
        } else if (RowOpen(row)) {
          GridRow& gr = StoredRow(StorageRow(row));
          gr.flags = static_cast<int16_t>(gr.flags ^ kRowChecked);
        }
        DrawGrid(GridData::Redraw());
        RowCheckedEvent(row);
        KeyCode = 0;
        m_suppressKeyPress = true;
        return;
      }
      if (col < 0) return;
      const GridColumn& column = StoredColumn(StorageCol(col));
      if (CellHandPointer(row, col)) {
        CellHandClick(row, col, Shift);
      } else if (column.dataType == TypeButton) {
        CellButtonClick(row, col);
      } else if (column.dataType == TypeBoolean && AllowEdit() && RowOpen(row) && !ColLocked(col)) {
        FlipBooleanCell(row, col, false);
        DrawGrid(GridData::Redraw());
        KeyCode = 0;
        m_suppressKeyPress = true;
      }
      return;
    }

    case 'A':
      if (ctrl && MultiSelect() > 0) {
        SelectAllRows();
        DrawGrid(GridData::Redraw());
        m_suppressKeyPress = true;
      }
      return;
    case 'C':
    case 'V':
      if (ctrl) m_suppressSearch = true;
      return;

    case VK_UP:
    case VK_DOWN: {
      if (!UpdateCell(false)) return;
      const int32_t target = NextOpenRow(row, KeyCode == VK_UP ? -1 : 1);
      if (target >= 0) NavigateTo(target, col, shift);
      if (fromEditor) KeyCode = 0;
      return;
    }

    case VK_LEFT:
    case VK_RIGHT:
    case VK_TAB: {
      const bool back = KeyCode == VK_LEFT || (KeyCode == VK_TAB && shift);
      if (m_editPending) {
        // The editor keeps the key while the caret can still move inside its text.
        if (m_editBound || !m_editor) return;
        if (KeyCode != VK_TAB) {
          if (m_editByF2) return;
          const int32_t caret = m_editor->SelStart() + m_editor->SelLength();
          const int32_t length = static_cast<int32_t>(m_editor->Text().size());
          if (back ? caret != 0 : caret != length) return;
        }
        if (!UpdateCell(false)) return;
      }
      const int32_t target = NextOpenCol(col, back ? -1 : 1);
      if (target >= 0) {
        MoveCurrentCell(row, target, false, true);
        DrawGrid(GridData::Redraw());
      }
      if (fromEditor) KeyCode = 0;
      return;
    }

    case VK_PRIOR:
    case VK_NEXT: {
      if (!UpdateCell(false)) return;
      const int32_t target = KeyCode == VK_PRIOR ? PageUpRow() : PageDownRow();
      if (target >= 0) NavigateTo(target, col, shift);
      if (fromEditor) KeyCode = 0;
      return;
    }

    case VK_HOME:
    case VK_END: {
      if (m_editPending) return;
      const bool toEnd = KeyCode == VK_END;
      if (ctrl) {
        const int32_t target = NextOpenRow(-1, toEnd ? -1 : 1);
        if (target >= 0) NavigateTo(target, col, shift);
      } else {
        const int32_t target = NextOpenCol(-1, toEnd ? -1 : 1);
        if (target >= 0) {
          MoveCurrentCell(row, target, false, true);
          DrawGrid(GridData::Redraw());
        }
      }
      return;
    }
    default:
      return;
  }
}

void USFlexGrid::UserControl_KeyPress(int16_t& KeyAscii) {
  if (m_suppressKeyPress) {
    // Its key down already acted on the key.
    m_suppressKeyPress = false;
    KeyAscii = 0;
    return;
  }
  const char16_t ch = static_cast<char16_t>(KeyAscii);
  const bool ctrl = (m_lastShift & host::vbCtrlMask) != 0;
  bool handled = false;
  // Any key opens the editor: a printable character becomes its first character, Backspace
  // opens it empty and Enter with the cell's text. Other control characters (Escape, Ctrl
  // combinations) open nothing. A cell that cannot be edited leaves the key to the search.
  if ((EditTrigger() & OnAnyKey) && Enabled() && !m_editPending && (IsPrintable(ch) || ch == u'\r' || ch == u'\b') &&
      CellEditable(Row(), Col())) {
    const bool typed = IsPrintable(ch);
    if (BeginCellEdit(Row(), Col(), ch != u'\r')) {
      m_editByF2 = false;
      handled = true;
      if (typed && m_editor && !m_editBound) {
        const int16_t filtered = FilterEditChar(m_editCol, KeyAscii);
        if (filtered != 0) m_editor->SelText(host::String(1, static_cast<char16_t>(filtered)));
      }
    }
  }
  if (!handled && ((ch == u'\n') || (ch == 27 && ctrl))) {
    KeyAscii = 0;  // Ctrl+Enter and Ctrl+Escape: consumed, nothing else
    handled = true;
  }
  if (!handled && !m_suppressSearch && !m_editPending && IsAlphaNumeric(ch)) IncrementalSearch(ch);
  m_suppressSearch = false;
  KeyPress(KeyAscii);
}

void USFlexGrid::IncrementalSearch(char16_t ch) {
  const uint32_t now = GetTickCount();
  if (!m_searchStarted || now - m_searchTick >= kSearchResetMs) m_searchText.assign(1, ch);
  else m_searchText.push_back(ch);
  m_searchStarted = true;
  m_searchTick = now;
  const int32_t found = FindItem(m_searchText, SearchColumn(), Search_Navigate, false, 0);
  if (found >= 0) NavigateTo(found, Col(), false);
}

// ---- messages ------------------------------------------------------------------------------------

bool USFlexGrid::RouteInputMessage(uint32_t msg, uintptr_t wParam, intptr_t /*lParam*/, intptr_t& lResult) {
  switch (msg) {
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      // The editor sits on a cell that is about to move: it closes first, or nothing scrolls.
      if (m_editPending && !UpdateCell(false)) {
        lResult = 0;
        return true;
      }
      HideToolTip();
      if (msg == WM_MOUSEHWHEEL) {
        OnHorizontalWheel(static_cast<int16_t>(HIWORD(wParam)));
        lResult = 0;
        return true;
      }
      return false;
    case WM_MOUSEMOVE:
      if (!m_mouseInside) {
        TRACKMOUSEEVENT tme;
        tme.dwFlags = TME_LEAVE;
        tme.hwndTrack = hWnd();
        TrackMouseEvent(&tme);
        m_mouseInside = true;
        MouseEnter();
      }
      return false;
    case WM_MOUSELEAVE:
      m_mouseInside = false;
      HideToolTip();
      m_mouseRow = m_mouseCol = -1;
      SetHeaderStates(-1, m_headerPressedCol, m_headerMovingCol);
      MouseExit();
      lResult = 0;
      return true;
    case WM_SETFOCUS:
      if (FocusRectHide()) DrawGrid(GridData::Redraw());
      return false;
    case WM_KILLFOCUS: {
      const HWND next = static_cast<HWND>(wParam);
      if (m_editPending && !FocusIsInEditor(next)) UpdateCell(false);
      if (FocusRectHide()) DrawGrid(GridData::Redraw(), true);
      return false;
    }
    case WM_TIMER:
      if (wParam != kAutoScrollTimer) return false;
      AutoScrollStep();
      lResult = 0;
      return true;
    default:
      return false;
  }
}

void USFlexGrid::OnHorizontalWheel(int delta) {
  if (!HorizontalScrollBarVisible()) return;
  SCROLLINFO si;
  si.fMask = SIF_ALL;
  GetScrollInfo(hWnd(), SB_HORZ, &si);
  // A tilt to the right (positive) moves the view right, one column per notch.
  const int32_t pos = std::clamp(m_firstScrollCol + delta / 120, std::max(si.nMin, FreezeAtCol() + 1),
                                 std::max(si.nMin, si.nMax));
  if (pos == m_firstScrollCol) return;
  m_firstScrollCol = pos;
  DrawGrid(true);
  Scroll();
}

void USFlexGrid::StartAutoScroll(int direction) {
  if (m_autoScrollDirection == direction) return;
  m_autoScrollDirection = direction;
  SetTimer(hWnd(), kAutoScrollTimer, 100);
}

void USFlexGrid::StopAutoScroll() {
  if (m_autoScrollDirection == 0) return;
  m_autoScrollDirection = 0;
  if (hWnd()) KillTimer(hWnd(), kAutoScrollTimer);
}

}  // namespace mx::grid
