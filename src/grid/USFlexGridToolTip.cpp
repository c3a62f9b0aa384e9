// USFlexGrid: the tooltip of clipped cells. When the pointer rests on a cell whose text does not
// fit its column, a small window ("xToolTIP") on the desktop shows the whole text right over the
// cell, in the tooltip colour, without taking the activation. It goes on the next change of the
// cell under the pointer, on a press, a key, a scroll and when the pointer leaves.
#include <algorithm>

#include "frame/Drawing.h"
#include "grid/USFlexGrid.h"
#include "host/Format.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::grid {

using namespace platform;

namespace {

constexpr char16_t kToolTipClass[] = u"MXGridCellTip";
constexpr char16_t kFontProp[] = u"MXGridCellTipFont";
// Room around the text inside the tip.
constexpr int32_t kPadX = 3;
constexpr int32_t kPadY = 1;

LRESULT CellTipProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_NCHITTEST:
      // The tip lies over the cell under the pointer; the grid must go on hearing the mouse.
      return HTTRANSPARENT;
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd, &ps);
      RECT rc;
      GetClientRect(hwnd, &rc);
      frame::FillRectColor(dc, rc, host::TranslateColor(host::vbInfoBackground));
      frame::FrameRectColor(dc, rc, host::TranslateColor(host::vbInfoText));
      const int len = GetWindowTextLengthW(hwnd);
      host::String text(static_cast<size_t>(len), u'\0');
      if (len > 0) GetWindowTextW(hwnd, text.data(), len + 1);
      const HFONT font = static_cast<HFONT>(GetPropW(hwnd, kFontProp));
      HGDIOBJ old = font ? SelectObject(dc, font) : 0;
      SetBkMode(dc, TRANSPARENT);
      RECT tr{rc.left + kPadX, rc.top, rc.right - kPadX, rc.bottom};
      frame::DrawTextColor(dc, text, tr, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX,
                           host::TranslateColor(host::vbInfoText));
      if (font) SelectObject(dc, old);
      EndPaint(hwnd, &ps);
      return 0;
    }
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

void RegisterCellTipClass() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kToolTipClass, &info)) return;
  RegisterWindowClass(kToolTipClass, &CellTipProc, 0, 0, 0);
}

}  // namespace

void USFlexGrid::HideToolTip() {
  if (m_toolTip && IsWindow(m_toolTip) && IsWindowVisible(m_toolTip)) ShowWindow(m_toolTip, SW_HIDE);
}

void USFlexGrid::ShowCellToolTip(int32_t xRow, int32_t xCol) {
  if (!AutoToolTips() || !hWnd() || xRow < 0 || xRow > LastRow() || xCol < 0 || xCol >= Cols()) return;
  if (GetKeyState(VK_LBUTTON) < 0 || GetKeyState(VK_RBUTTON) < 0) return;
  if (m_editPending && xRow == m_editRow && xCol == m_editCol) return;
  const int32_t storageCol = StorageCol(xCol);
  const GridColumn& column = StoredColumn(storageCol);
  const GridCell& cell = StoredRow(StorageRow(xRow)).cells[static_cast<size_t>(storageCol)];
  if (cell.text.Empty() || column.dataType == TypeBoolean || column.dataType == TypeProgressBar) return;
  // A wrapped cell shows its text on several lines already.
  if (AllowWordWrap() && (cell.flags & kCellWordWrap)) return;
  host::String text(cell.text.View());
  if (!column.format.empty()) text = host::Format(text, column.format);

  const int32_t top = RowTop(xRow);
  const RECT cr = GetColumnRect(xCol);
  if (top < 0 || cr.right <= cr.left || !Font() || !FontHeader()) return;
  // The room the painter gives the text: inset 3 on both sides, column 0 past its check box
  // and row image strip.
  int32_t room = column.widthPixels - 6;
  if (xCol == 0 && m_metrics.firstColTextOffset > 3) room = column.widthPixels - m_metrics.firstColTextOffset - 6;
  HDC dc = hDC();
  if (!dc) return;
  SIZE size{};
  HGDIOBJ old = SelectObject(dc, FontFor(*Font(), cell.flags & kCellBold, cell.flags & kCellItalic,
                                          cell.flags & kCellUnderline, cell.flags & kCellStrikethrough));
  GetTextExtentPoint32W(dc, text, &size);
  SelectObject(dc, old);
  ReleaseFonts();
  if (size.cx <= room) return;

  RegisterCellTipClass();
  if (!m_toolTip || !IsWindow(m_toolTip)) {
    m_toolTip = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kToolTipClass, u"xToolTIP",
                                WS_POPUP, 0, 0, 1, 1, 0);
    if (!m_toolTip) return;
  }
  if (!m_toolTipFont) {
    const LOGFONTW lf = FontHeader()->ToLogFont();
    m_toolTipFont = CreateFontIndirectW(&lf);
    SetPropW(m_toolTip, kFontProp, static_cast<intptr_t>(m_toolTipFont));
  }
  // Sized to the text in the header font.
  HDC measure = CreateCompatibleDC(0);
  HGDIOBJ oldMeasure = SelectObject(measure, m_toolTipFont);
  SIZE tipText{};
  GetTextExtentPoint32W(measure, text, &tipText);
  SelectObject(measure, oldMeasure);
  DeleteDC(measure);
  const int32_t w = tipText.cx + kPadX * 2, h = std::max<int32_t>(tipText.cy + kPadY * 2, RowHeightAt(xRow));
  POINT p{cr.left, top};
  ClientToScreen(hWnd(), &p);
  // Kept on the screen: shifted left or up when it would run past the work area.
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  if (work.right > work.left) {
    if (p.x + w > work.right) p.x = std::max<LONG>(work.left, work.right - w);
    if (p.y + h > work.bottom) p.y = std::max<LONG>(work.top, work.bottom - h);
  }
  SetWindowTextW(m_toolTip, text.c_str());
  SetWindowPos(m_toolTip, HWND_TOPMOST, p.x, p.y, w, h, SWP_NOACTIVATE);
  ShowWindow(m_toolTip, SW_SHOWNOACTIVATE);
  InvalidateRect(m_toolTip, nullptr, TRUE);
}

void USFlexGrid::TerminateInput() {
  StopAutoScroll();
  if (m_editor) {
    m_editor->TerminateControl();
    m_editor.reset();
  }
  m_editPending = false;
  m_boundEditor.reset();
  if (m_toolTip) {
    if (IsWindow(m_toolTip)) DestroyWindow(m_toolTip);
    m_toolTip = 0;
  }
  if (m_toolTipFont) {
    DeleteObject(m_toolTipFont);
    m_toolTipFont = 0;
  }
}

void USFlexGrid::ConnectInputEventSinks(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"AfterEdit", AfterEdit, u"AfterInsert", AfterInsert, u"BeforeDelete", BeforeDelete,
                       u"BeforeEdit", BeforeEdit, u"BeforeInsert", BeforeInsert, u"CellButtonClick", CellButtonClick,
                       u"CellClick", CellClick, u"CellClickEx", CellClickEx, u"CellHandClick", CellHandClick,
                       u"CellImageClick", CellImageClick, u"Click", Click, u"ColumnClick", ColumnClick,
                       u"ColumnOrderChanged", ColumnOrderChanged, u"ColumnSizeChanged", ColumnSizeChanged,
                       u"DblClick", DblClick, u"EditKeyPress", EditKeyPress, u"KeyDown", KeyDown, u"KeyPress",
                       KeyPress, u"KeyUp", KeyUp, u"MouseDown", MouseDown, u"MouseEnter", MouseEnter, u"MouseExit",
                       MouseExit, u"MouseMove", MouseMove, u"MouseUp", MouseUp, u"OLEDragDrop", OLEDragDrop,
                       u"RowChecked", RowCheckedEvent, u"RowColChanged", RowColChanged);
}

}  // namespace mx::grid
