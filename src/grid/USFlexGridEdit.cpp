// USFlexGrid: the cell editor. A cell is edited in the grid's own pop-up text box, or in a control
// bound to its column, which the grid reaches only by late binding (members by name), so that any
// control with a value, colours and a window can serve.
//
// The editor is closed or open. Open: EditPending is True, editRow and editCol name the cell,
// and the editor window sits over the cell with the focus. It closes through UpdateCell (the
// value written back, unless AfterEdit cancels), Escape (nothing written) or Clear.
#include <algorithm>

#include "grid/USFlexGrid.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "platform/Input.h"
#include "platform/Window.h"

namespace mx::grid {

using namespace platform;

namespace {

// Late-bound calls on a bound control run under resume-next: a member the control lacks, or one
// that fails, changes nothing.
bool TryInvoke(const host::ObjectRef& target, host::StringView name, host::CallKind kind,
               std::vector<host::Variant> args = {}, host::Variant* result = nullptr) {
  if (!target) return false;
  try {
    host::Variant r = target->Invoke(name, kind, args);
    if (result) *result = std::move(r);
    return true;
  } catch (...) {
    return false;
  }
}

bool TryLet(const host::ObjectRef& target, host::StringView name, host::Variant value) {
  return TryInvoke(target, name, host::CallKind::Let, {std::move(value)});
}

HWND WindowOf(const host::ObjectRef& control) {
  host::Variant h;
  if (!TryInvoke(control, u"hWnd", host::CallKind::Get, {}, &h)) return 0;
  try {
    return static_cast<HWND>(h.ToLong());
  } catch (...) {
    return 0;
  }
}

}  // namespace

void USFlexGrid::EnsureEditor() {
  if (m_editor && m_editor->hWnd()) return;
  if (!hWnd()) return;
  // "TEditControl": one box for the life of the grid, hidden between edits.
  m_editor = std::make_unique<host::TextBox>();
  m_editor->Create(hWnd(), 0, 0, 1, 1);
  m_editor->BorderStyle(0);
  m_editor->KeyDown.connect([this](int16_t& keyCode, int16_t& shift) { EditorKeyDown(keyCode, shift); });
  m_editor->KeyPress.connect([this](int16_t& keyAscii) { EditorKeyPress(keyAscii); });
  m_editor->Change.connect([this] {
    if (m_editRow >= 0) m_editPending = true;
  });
  m_editor->DblClick.connect([this] { DblClick(); });
  m_editor->LostFocus.connect([this] {
    // Focus that leaves for somewhere outside the grid takes the edit with it.
    const HWND to = GetFocus();
    if (m_editPending && !m_editBound && to != hWnd() && !FocusIsInEditor(to)) UpdateCell(false);
  });
}

bool USFlexGrid::FocusIsInEditor(HWND focus) const {
  if (!focus) return false;
  if (m_editBound) {
    const HWND w = WindowOf(m_boundEditor);
    return w && (focus == w || IsChild(w, focus));
  }
  return m_editor && focus == m_editor->hWnd();
}

bool USFlexGrid::BeginCellEdit(int32_t xRow, int32_t xCol, bool xBlankCell) {
  if (xRow < 0 || xRow > LastRow() || xCol < 0 || xCol >= Cols()) return false;
  if (!UpdateCell(false)) return false;
  if (!CellEditable(xRow, xCol)) return false;
  const int32_t storageCol = StorageCol(xCol);
  bool cancel = false;
  BeforeEdit(xRow, storageCol, cancel);
  if (cancel || m_editPending || xRow > LastRow()) return false;
  HideToolTip();
  if (ScrollCellIntoView(xRow, xCol)) {
    DrawGrid(GridData::Redraw());
    Scroll();
  }
  m_editRow = xRow;
  m_editCol = xCol;
  m_editByF2 = false;
  const GridColumn& column = StoredColumn(storageCol);
  const GridCell& cell = StoredRow(StorageRow(xRow)).cells[static_cast<size_t>(storageCol)];
  const host::String text = xBlankCell ? host::String() : cell.text.Str();

  if (column.boundControl) {
    m_editBound = true;
    m_boundEditor = column.boundControl;
    m_editPending = true;
    ShowBoundEditor(m_boundEditor, xRow, xCol);
    return true;
  }

  EnsureEditor();
  if (!m_editor || !m_editor->hWnd()) {
    m_editRow = m_editCol = -1;
    return false;
  }
  m_editBound = false;
  // The box takes the cell's horizontal alignment: left, centre or right by the alignment's
  // column (0, 4, 8 left; 1, 5, 9 centre).
  const int32_t a = cell.alignment;
  m_editor->Alignment(static_cast<int16_t>(a % 4 == 0 ? 0 : a % 4 == 1 ? 2 : 1));
  m_editor->ForeColor(ForeColorEdit());
  m_editor->BackColor(BackColorEdit());
  if (Font()) {
    auto font = Font()->Clone();
    font->Bold((cell.flags & kCellBold) != 0);
    font->Italic((cell.flags & kCellItalic) != 0);
    font->Underline((cell.flags & kCellUnderline) != 0);
    font->Strikethrough((cell.flags & kCellStrikethrough) != 0);
    const auto& formats = Formats();
    if (cell.formatIndex > 0 && static_cast<size_t>(cell.formatIndex) < formats.size() &&
        !formats[static_cast<size_t>(cell.formatIndex)].fontName.empty())
      font->Name(formats[static_cast<size_t>(cell.formatIndex)].fontName);
    m_editor->Font(font);
  }
  m_editor->MaxLength(0);
  m_editPending = true;
  m_editor->Text(text);
  m_editor->SelStart(0);
  m_editor->SelLength(static_cast<int32_t>(text.size()));
  PositionEditor();
  m_editor->Visible(true);
  m_editor->Show();
  platform::SetFocus(m_editor->hWnd());
  return true;
}

void USFlexGrid::ForceCellEdit(int32_t lNewRow, int32_t lNewCol, bool bBlankCell) {
  const int32_t row = lNewRow < 0 ? Row() : lNewRow;
  const int32_t col = lNewCol < 0 ? Col() : lNewCol;
  if (row < 0 || row > LastRow() || col < 0 || col >= Cols()) return;
  if (!UpdateCell(false)) return;
  if (row != Row() || col != Col()) NavigateTo(row, col, false);
  if (Row() != row) return;  // the row could not become current (locked or hidden)
  BeginCellEdit(row, col, bBlankCell);
}

void USFlexGrid::ShowBoundEditor(const host::ObjectRef& control, int32_t row, int32_t col) {
  // The control lives among the grid's siblings, so that it can stand over the grid.
  const HWND w = WindowOf(control);
  const HWND container = hWnd() ? GetParent(hWnd()) : 0;
  if (w && container && GetParent(w) != container) SetParent(w, container);
  TryLet(control, u"ForeColor", host::Variant(static_cast<int32_t>(ForeColorEdit())));
  TryLet(control, u"ForeColorOver", host::Variant(static_cast<int32_t>(ForeColorEdit())));
  TryLet(control, u"BackColor", host::Variant(static_cast<int32_t>(BackColorEdit())));
  TryLet(control, u"BackColorOver", host::Variant(static_cast<int32_t>(BackColorEdit())));
  // The cell's value, for a control that shows one.
  TryLet(control, u"Text", host::Variant(CellText(row, col)));
  PositionBoundControl(control, StoredColumn(StorageCol(col)).moveControl);
  TryLet(control, u"Visible", host::Variant(true));
  TryInvoke(control, u"ZOrder", host::CallKind::Method, {host::Variant(static_cast<int16_t>(0))});
  TryInvoke(control, u"SetFocus", host::CallKind::Method);
  // A combo opens its list at once.
  TryInvoke(control, u"ShowList", host::CallKind::Method);
}

void USFlexGrid::PositionEditor() {
  if (!m_editPending || m_editRow < 0 || m_editCol < 0) return;
  if (m_editBound) {
    PositionBoundControl(m_boundEditor, StoredColumn(StorageCol(m_editCol)).moveControl);
    return;
  }
  if (!m_editor || !m_editor->hWnd()) return;
  const RECT cr = GetColumnRect(m_editCol);
  const int32_t top = RowTop(m_editRow);
  if (top < 0 || cr.right <= cr.left) {
    // The cell scrolled out of view: the box waits, empty-sized, until it shows again.
    m_editor->Create(hWnd(), 0, 0, 0, 0);
    return;
  }
  const int32_t line = GridLineWidth();
  const int32_t width = StoredColumn(StorageCol(m_editCol)).widthPixels - line - 2;
  const int32_t height = RowHeightAt(m_editRow) - line * 2;
  m_editor->Create(hWnd(), cr.left + line, top + line, std::max(width, 0), std::max(height, 0));
}

// The control's edges follow the cell as its mask allows, in the units of its parent's scale
// (twips unless the parent says pixels).
void USFlexGrid::PositionBoundControl(const host::ObjectRef& control, int32_t moveMask) {
  if (!control || m_editRow < 0 || !hWnd()) return;
  const RECT cr = GetColumnRect(m_editCol);
  const int32_t top = RowTop(m_editRow);
  if (top < 0) return;
  const HWND w = WindowOf(control);
  const HWND parent = w ? GetParent(w) : GetParent(hWnd());
  POINT p{cr.left, top};
  ClientToScreen(hWnd(), &p);
  if (parent) ScreenToClient(parent, &p);
  float perPixel = host::GetScreen().TwipsPerPixelX();
  host::Variant parentObject, scaleMode;
  if (TryInvoke(control, u"Parent", host::CallKind::Get, {}, &parentObject) && parentObject.IsObject() &&
      TryInvoke(parentObject.ToObject(), u"ScaleMode", host::CallKind::Get, {}, &scaleMode)) {
    try {
      if (scaleMode.ToInteger() == 3) perPixel = 1.0f;
    } catch (...) {
    }
  }
  const int32_t width = StoredColumn(StorageCol(m_editCol)).widthPixels;
  const int32_t height = RowHeightAt(m_editRow);
  if (moveMask & Move_Left) TryLet(control, u"Left", host::Variant(static_cast<float>(p.x) * perPixel));
  if (moveMask & Move_Top) TryLet(control, u"Top", host::Variant(static_cast<float>(p.y) * perPixel));
  if (moveMask & Move_Width) TryLet(control, u"Width", host::Variant(static_cast<float>(width) * perPixel));
  if (moveMask & Move_Height) TryLet(control, u"Height", host::Variant(static_cast<float>(height) * perPixel));
}

host::String USFlexGrid::EditorValue() {
  if (!m_editBound) return m_editor ? m_editor->Text() : host::String();
  host::Variant v;
  // The control's default member first, then its text.
  if (!TryInvoke(m_boundEditor, u"", host::CallKind::Get, {}, &v) &&
      !TryInvoke(m_boundEditor, u"Text", host::CallKind::Get, {}, &v))
    return CellText(m_editRow, m_editCol);
  try {
    return v.ToString();
  } catch (...) {
    return CellText(m_editRow, m_editCol);
  }
}

void USFlexGrid::HideEditorWindow() {
  const bool hadFocus = FocusIsInEditor(GetFocus());
  if (m_editBound) TryLet(m_boundEditor, u"Visible", host::Variant(false));
  else if (m_editor) m_editor->HideControl();
  // The focus comes back only from the editor: a close caused by the focus going elsewhere
  // leaves it there.
  if (hadFocus && hWnd()) platform::SetFocus(hWnd());
  m_boundEditor.reset();
  m_editBound = false;
  m_editRow = m_editCol = -1;
  m_editByF2 = false;
}

bool USFlexGrid::UpdateCell(bool xAllowMove) {
  if (!m_editPending) return true;
  const int32_t row = m_editRow, col = m_editCol;
  const bool valid = row >= 0 && row <= LastRow() && col >= 0 && col < Cols();
  host::String value = EditorValue();
  const bool changed = valid && value != CellText(row, col);
  if (changed) {
    bool cancel = false;
    AfterEdit(row, StorageCol(col), value, cancel);
    // A cancelling handler keeps the editor open with what was typed.
    if (cancel) return false;
  }
  m_editPending = false;
  HideEditorWindow();
  if (changed) {
    CellText(row, col, value);  // totals, the changed marks and the row's measure follow the text
    MeasureRow(row);
  }
  if (xAllowMove && valid) {
    if (EditMove() == MoveRight) {
      const int32_t next = NextOpenCol(col, 1);
      if (next >= 0) MoveCurrentCell(row, next, false, true);
    } else if (EditMove() == MoveDown) {
      const int32_t next = NextOpenRow(row, 1);
      if (next >= 0) NavigateTo(next, Col(), false);
    }
  }
  DrawGrid(GridData::Redraw());
  return true;
}

void USFlexGrid::CancelEdit() {
  if (!m_editPending) return;
  m_editPending = false;
  HideEditorWindow();
  DrawGrid(GridData::Redraw());
}

void USFlexGrid::OnClearing() {
  HideToolTip();
  if (m_editPending) {
    m_editPending = false;
    HideEditorWindow();
  }
  m_anchorRow = m_downRow = m_dragRow = -1;
}

void USFlexGrid::BindControl(int32_t xCol, host::ObjectRef xControl, int32_t xMoveControl) {
  if (xCol < 0 || xCol >= Cols()) return;
  GridColumn& column = StoredColumn(StorageCol(xCol));
  if (m_editPending && m_editBound && m_boundEditor == column.boundControl) CancelEdit();
  column.boundControl = std::move(xControl);
  column.moveControl = static_cast<int16_t>(xMoveControl);
}

// ---- the text box's keys -----------------------------------------------------------------------

void USFlexGrid::EditorKeyDown(int16_t& KeyCode, int16_t& Shift) {
  switch (KeyCode) {
    case VK_RETURN:
    case VK_ESCAPE:
    case VK_UP:
    case VK_DOWN:
    case VK_LEFT:
    case VK_RIGHT:
    case VK_TAB:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_F2: {
      int16_t original = KeyCode;
      HandleKeyDown(KeyCode, Shift, true);
      KeyDown(original, Shift);
      return;
    }
    default:
      return;
  }
}

void USFlexGrid::EditorKeyPress(int16_t& KeyAscii) {
  if (m_suppressKeyPress || !m_editPending) {
    // The character of a key the grid already acted on (or of one that closed the editor).
    m_suppressKeyPress = false;
    KeyAscii = 0;
    return;
  }
  if (KeyAscii == 13 || KeyAscii == 27) {
    if (EditTrigger() & OnAnyKey) {
      if (KeyAscii == 27) CancelEdit();
      else UpdateCell(true);
    }
    KeyAscii = 0;
    return;
  }
  KeyAscii = FilterEditChar(m_editCol, KeyAscii);
  if (KeyAscii == 0) return;
  const int32_t storageCol = m_editCol >= 0 ? StorageCol(m_editCol) : -1;
  EditKeyPress(storageCol, KeyAscii);
  if (KeyAscii != 0) KeyPress(KeyAscii);
}

// The filter "<" lowers and ">" raises every character; any other filter is the set of
// characters allowed. Backspace and code 46 always pass (46 is the Delete key's code, so "." is
// never filtered out), and so do the other control characters, which are editing commands.
int16_t USFlexGrid::FilterEditChar(int32_t displayCol, int16_t keyAscii) {
  if (displayCol < 0 || displayCol >= Cols()) return keyAscii;
  const host::String& filter = StoredColumn(StorageCol(displayCol)).inputFilter;
  if (filter.empty()) return keyAscii;
  const char16_t ch = static_cast<char16_t>(keyAscii);
  if (filter == u"<") return static_cast<int16_t>(host::LCase(host::StringView(&ch, 1))[0]);
  if (filter == u">") return static_cast<int16_t>(host::UCase(host::StringView(&ch, 1))[0]);
  if (keyAscii == 8 || keyAscii == 46 || ch < 0x20) return keyAscii;
  return filter.find(ch) != host::String::npos ? keyAscii : 0;
}

}  // namespace mx::grid
