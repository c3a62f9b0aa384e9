// USFlexGrid: metrics, the scroll bars, scrolling, row measuring and heading wrap.
#include <algorithm>
#include <cmath>

#include "grid/USFlexGrid.h"
#include "imagelist/APIImageList.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/ScrollBar.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::grid {

using namespace platform;

void USFlexGrid::Refresh() {
  RecalcMetrics();
  DrawGrid(true);
}

void USFlexGrid::RedrawEx(int32_t xSrollPosition, bool xPreserveSortedColumns) {
  RecalcMetrics();
  if (xPreserveSortedColumns) OnReapplySort();
  if (!GridData::Redraw()) {
    // Switch drawing on without the model's own repaint request: this call paints.
    m_switchingRedrawOn = true;
    GridData::Redraw(true);
    m_switchingRedrawOn = false;
  }
  DrawGrid(true, false, xSrollPosition);
  if (VerticalScrollBarVisible() && m_firstScrollCol < FreezeAtCol() + 1) {
    m_firstScrollCol = FreezeAtCol() + 1;
    DrawGrid(true);
  }
}

void USFlexGrid::RecalcMetrics() {
  GridMetrics& m = m_metrics;
  m.ellipsisFlag = DisplayEllipsis() ? DT_WORD_ELLIPSIS : 0u;
  m.checkBoxSize = 14;
  // Every image of the grid is drawn at the bound list's cell size.
  m.imageWidth = m_imageList ? m_imageList->Width() : 0;
  m.imageHeight = m_imageList ? m_imageList->Height() : 0;
  m.firstColTextOffset = RowCheckBoxes() ? m.checkBoxSize + 8 : 3;
  // Column 0 makes room for row images in every row as soon as one row has one, so that the
  // texts of the column stay aligned.
  if (m_imageList && AnyRowImage()) m.firstColTextOffset += m.imageWidth + 2;
  m.captionHeight = Caption().empty() ? 0 : CaptionHeight();
  auto headerFont = FontHeader();
  m.headerTextHeight = headerFont ? FontTextHeight(*headerFont) : 0;
  if (!ColumnHeaders()) {
    m.headerHeight = 0;
  } else {
    const int32_t h = m.headerTextHeight, lines = ColumnHeaderLines();
    m.headerHeight = ColumnHeaderSmall() ? static_cast<int32_t>(std::lround(h + h * lines / 3.0)) : h * (lines + 1);
  }
  m.headerBottom = m.captionHeight + m.headerHeight;
  m.defaultRowHeight = DefaultRowHeight();
}

void USFlexGrid::ImageList(std::shared_ptr<imagelist::APIImageList> xValue) {
  m_imageList = std::move(xValue);
  m_rowImageHint = -1;
  OnMetricsChanged();
}

// The row found last time is asked first: row images are usually set on many rows, so the
// answer rarely needs the walk, which otherwise stops at the first row with an image.
bool USFlexGrid::AnyRowImage() {
  if (m_rowImageHint >= 0 && m_rowImageHint <= LastRow() && StoredRow(m_rowImageHint).image != 0) return true;
  for (int32_t r = 0; r <= LastRow(); ++r) {
    if (StoredRow(r).image != 0) {
      m_rowImageHint = r;
      return true;
    }
  }
  m_rowImageHint = -1;
  return false;
}

// ---- rows and the view -------------------------------------------------------------------------

bool USFlexGrid::RowPainted(int32_t displayRow) const {
  const GridRow& row = StoredRow(StorageRow(displayRow));
  return row.visible || row.groupHeader;
}

int32_t USFlexGrid::RowHeightAt(int32_t displayRow) {
  const int32_t h = StoredRow(StorageRow(displayRow)).height;
  return h > 0 ? h : m_metrics.defaultRowHeight;
}

int32_t USFlexGrid::VisibleHeight() const { return static_cast<int32_t>(ScaleHeight()); }
int32_t USFlexGrid::VisibleWidth() const { return static_cast<int32_t>(ScaleWidth()); }

int32_t USFlexGrid::AvailableRowsHeight() const {
  return VisibleHeight() - m_metrics.headerBottom - (TotalLineShow() ? m_metrics.defaultRowHeight : 0);
}

// Rows that fit from the first row on, and whether every row fits from the top. Both walks stop
// as soon as the height is used up, so they cost the rows of one screen, not the grid.
void USFlexGrid::ComputeRowsVisible() {
  const int32_t avail = AvailableRowsHeight();
  int32_t used = 0, count = 0;
  for (int32_t r = std::clamp(m_firstRow, 0, std::max(LastRow(), 0)); r <= LastRow(); ++r) {
    if (!RowPainted(r)) continue;
    used += RowHeightAt(r);
    if (used > avail) break;
    ++count;
  }
  m_rowsVisible = count;
  used = 0;
  m_allRowsInView = true;
  for (int32_t r = 0; r <= LastRow(); ++r) {
    if (!RowPainted(r)) continue;
    used += RowHeightAt(r);
    if (used > avail) {
      m_allRowsInView = false;
      break;
    }
  }
}

bool USFlexGrid::VerticalScrollBarVisible() const {
  return hWnd() && (GetWindowLong(hWnd(), GWL_STYLE) & WS_VSCROLL);
}

bool USFlexGrid::HorizontalScrollBarVisible() const {
  return hWnd() && (GetWindowLong(hWnd(), GWL_STYLE) & WS_HSCROLL);
}

int32_t USFlexGrid::GetScrollVerticalPosition() const { return m_firstRow; }
int32_t USFlexGrid::GetScrollHorizontalPosition() const { return m_firstScrollCol; }

void USFlexGrid::SetScrollVerticalPosition(int32_t xValue) {
  if (xValue > Rows() || xValue < 0) return;
  m_scrollTo = xValue;
  DrawGrid(GridData::Redraw());
}

// The window's own bars follow the grid: the vertical one counts display rows, the horizontal
// one display columns. Visibility is set by ShowScrollBar alone (the ranges are stored with
// SIF_DISABLENOSCROLL so that storing never shows or hides a bar).
void USFlexGrid::UpdateScrollBars() {
  const HWND hwnd = hWnd();
  auto store = [&](int bar, int maxPos, int pos) {
    SCROLLINFO si;
    si.fMask = SIF_RANGE | SIF_POS | SIF_PAGE | SIF_DISABLENOSCROLL;
    si.nMin = 0;
    si.nMax = std::max(maxPos, 0);
    si.nPage = 0;
    si.nPos = pos;
    if (hwnd) SetScrollInfo(hwnd, bar, &si, TRUE);
  };
  const int32_t mode = ScrollBars();
  if (mode == Scroll_None) {
    if (hwnd) ShowScrollBar(hwnd, SB_BOTH, FALSE);
    store(SB_HORZ, 0, 0);
    store(SB_VERT, 0, 0);
    m_firstScrollCol = std::max(0, FreezeAtCol() + 1);
    return;
  }
  // The vertical bar first, since it takes width from the columns; once more after the
  // horizontal one, which takes height from the rows.
  auto vertical = [&] {
    ComputeRowsVisible();
    const bool want = (mode == Scroll_Vertical || mode == Scroll_Both) && !m_allRowsInView;
    const int32_t maxPos = std::max(LastRow() - 1, 0);
    m_firstRow = std::clamp(m_firstRow, 0, want ? maxPos : std::max(LastRow(), 0));
    if (!want) m_firstRow = 0;
    store(SB_VERT, want ? maxPos : 0, m_firstRow);
    if (hwnd) ShowScrollBar(hwnd, SB_VERT, want);
  };
  vertical();
  bool wantH = false;
  if (mode == Scroll_Horizontal || mode == Scroll_Both) {
    RECT wr{};
    if (hwnd) GetWindowRect(hwnd, &wr);
    // The width of the whole control, less the border and (as the bar measures it) 13 for a
    // vertical bar.
    int32_t avail = hwnd ? wr.width() : VisibleWidth();
    if (BorderStyle() == Fixed_Single) avail -= 2;
    if (VerticalScrollBarVisible()) avail -= 13;
    int32_t sum = 0;
    for (int32_t c = 0; c < Cols(); ++c) {
      const GridColumn& col = StoredColumn(StorageCol(c));
      if (!col.visible) continue;
      sum += col.widthPixels;
      if (sum > avail) {
        wantH = true;
        break;
      }
    }
  }
  const int32_t maxCol = std::max(Cols() - 2, 0);
  if (wantH) {
    m_firstScrollCol = std::clamp(m_firstScrollCol, 0, std::max(maxCol, FreezeAtCol() + 1));
    if (m_firstScrollCol <= FreezeAtCol()) m_firstScrollCol = FreezeAtCol() + 1;
  } else {
    m_firstScrollCol = std::max(0, FreezeAtCol() + 1);
  }
  store(SB_HORZ, wantH ? maxCol : 0, wantH ? m_firstScrollCol : 0);
  if (hwnd) ShowScrollBar(hwnd, SB_HORZ, wantH);
  vertical();
}

void USFlexGrid::OnScrollMessage(bool vertical, int code) {
  SCROLLINFO si;
  si.fMask = SIF_ALL;
  GetScrollInfo(hWnd(), vertical ? SB_VERT : SB_HORZ, &si);
  int32_t pos = vertical ? m_firstRow : m_firstScrollCol;
  const int32_t page = vertical ? std::max(m_rowsVisible, 1) : 1;
  switch (code) {
    case SB_LINEUP: pos -= 1; break;
    case SB_LINEDOWN: pos += 1; break;
    case SB_PAGEUP: pos -= page; break;
    case SB_PAGEDOWN: pos += page; break;
    case SB_THUMBTRACK:
      if (!ScrollTrack()) return;
      pos = si.nTrackPos;
      break;
    case SB_THUMBPOSITION: pos = si.nTrackPos; break;
    case SB_TOP: pos = si.nMin; break;
    case SB_BOTTOM: pos = si.nMax; break;
    default: return;
  }
  pos = std::clamp(pos, si.nMin, std::max(si.nMin, si.nMax));
  if (vertical) {
    if (pos == m_firstRow) return;
    m_firstRow = pos;
  } else {
    if (pos == m_firstScrollCol) return;
    m_firstScrollCol = pos;
  }
  DrawGrid(true);
  Scroll();
}

void USFlexGrid::OnWheel(int delta) {
  if (!VerticalScrollBarVisible()) return;
  UINT lines = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  const int32_t step = lines == WHEEL_PAGESCROLL ? std::max(m_rowsVisible, 1) : static_cast<int32_t>(lines);
  const int32_t pos = std::clamp(m_firstRow - delta / 120 * step, 0, std::max(LastRow() - 1, 0));
  if (pos == m_firstRow) return;
  m_firstRow = pos;
  DrawGrid(true);
  Scroll();
}

// ---- measuring ---------------------------------------------------------------------------------

int32_t USFlexGrid::MeasureText(host::StringView text, HFONT font, uint32_t flags, int32_t width) {
  HDC dc = hDC();
  if (!dc) return 0;
  HGDIOBJ old = SelectObject(dc, font);
  RECT r{0, 0, std::max(width, 1), 0};
  DrawTextW(dc, text, &r, flags | DT_CALCRECT);
  SelectObject(dc, old);
  return r.height();
}

void USFlexGrid::MeasureRow(int32_t xRow) {
  if (!AllowWordWrap() || xRow < 0 || xRow > LastRow() || !Font()) return;
  GridRow& row = StoredRow(StorageRow(xRow));
  bool stale = false;
  for (int32_t c = 0; c < Cols() && !stale; ++c) stale = !row.cells[static_cast<size_t>(c)].measured;
  if (!stale) return;
  int32_t tallest = 0;
  for (int32_t c = 0; c < Cols(); ++c) {
    GridCell& cell = row.cells[static_cast<size_t>(c)];
    const GridColumn& col = StoredColumn(c);
    const bool wrap = (cell.flags & kCellWordWrap) != 0;
    const uint32_t flags = m_metrics.ellipsisFlag | (wrap ? 0x510u : 0xD24u);
    HFONT f = FontFor(*Font(), cell.flags & kCellBold, cell.flags & kCellItalic, cell.flags & kCellUnderline,
                      cell.flags & kCellStrikethrough);
    const host::StringView text = cell.text.View();
    if (!text.empty()) tallest = std::max(tallest, MeasureText(text, f, flags, col.widthPixels - 15));
    cell.measured = true;
  }
  const int32_t limit = m_metrics.defaultRowHeight - MinVerticalOffset() * 2 - 1;
  if (tallest < limit) tallest = limit;
  if (MaxLineCount() >= 1 && tallest > limit * MaxLineCount()) tallest = limit * MaxLineCount();
  row.height = tallest + MinVerticalOffset() * 2;
}

host::String USFlexGrid::WrapHeading(host::StringView xText, int32_t xWidth, int32_t xLines) {
  auto trim = [](host::String s) {
    size_t a = s.find_first_not_of(u' ');
    if (a == host::String::npos) return host::String();
    size_t b = s.find_last_not_of(u' ');
    return s.substr(a, b - a + 1);
  };
  host::String text(xText);
  for (char16_t& ch : text)
    if (ch == u'\r' || ch == u'\n') ch = u' ';
  text = trim(text);
  HFONT font = FontHeader() ? FontFor(*FontHeader(), false, false, false, false) : 0;
  HDC dc = hDC();
  auto width = [&](const host::String& s) {
    if (!dc) return static_cast<int32_t>(s.size()) * 7;
    HGDIOBJ old = SelectObject(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, s, &size);
    SelectObject(dc, old);
    return static_cast<int32_t>(size.cx);
  };
  std::vector<host::String> lines;
  host::String run;
  size_t breakAt = 0;  // in run: just past the last character that is not a letter or "_"
  for (char16_t ch : text) {
    run.push_back(ch);
    const bool wordChar = (ch >= u'A' && ch <= u'Z') || (ch >= u'a' && ch <= u'z') || ch == u'_' || ch >= 0xC0;
    if (!wordChar) breakAt = run.size();
    if (width(run) > xWidth && breakAt > 0 && breakAt < run.size()) {
      lines.push_back(trim(run.substr(0, breakAt)));
      run = run.substr(breakAt);
      breakAt = 0;
    }
  }
  if (!trim(run).empty()) lines.push_back(trim(run));
  if (xLines > 0 && static_cast<int32_t>(lines.size()) > xLines) {
    lines.resize(static_cast<size_t>(xLines));
    lines.back() += u"...";
  }
  host::String out;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (i) out += u"\r\n";
    out += lines[i];
  }
  return out;
}

}  // namespace mx::grid
