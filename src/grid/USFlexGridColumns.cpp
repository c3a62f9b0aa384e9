// USFlexGrid: column sizing (auto size, stretch, force fit) and the view side of the sort and
// filter members (making a row current and bringing it into view).
#include <algorithm>
#include <cmath>

#include "grid/USFlexGrid.h"
#include "host/Format.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::grid {

using namespace platform;

namespace {

// Host units per width of a boolean column, and of the vertical scroll bar in ColumnsForceFit.
constexpr float kBooleanColumnWidth = 480;
constexpr float kVerticalBarWidth = 275;

int32_t TextWidth(HDC dc, HFONT font, host::StringView text) {
  if (text.empty()) return 0;
  HGDIOBJ old = SelectObject(dc, font);
  RECT r{0, 0, 0, 0};
  DrawTextW(dc, text, &r, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, old);
  return r.width();
}

}  // namespace

// ---- current row -------------------------------------------------------------------------------

void USFlexGrid::OnSetCurrentRow(int32_t displayRow, bool force) {
  if (displayRow < 0) {
    if (Row() != -1) {
      SetCurrentCell(-1, Col());
      RowColChanged();
    }
    return;
  }
  // The cell move raises RowColChanged when the position changes and scrolls the row into view.
  MoveCurrentCell(displayRow, Col(), false, true);
  if (force && Row() != displayRow) SetCurrentCell(displayRow, Col());
}

void USFlexGrid::OnColumnsRefresh() {
  if (GridData::Redraw()) Refresh();
}

// ---- auto size ---------------------------------------------------------------------------------

void USFlexGrid::SetColumnWidthAutoSize(int32_t xCol) {
  if (xCol == -1) {
    for (int32_t c = 0; c < Cols(); ++c) AutoSizeColumn(c);
  } else {
    AutoSizeColumn(xCol);
  }
  if (GridData::Redraw()) Refresh();
}

void USFlexGrid::AutoSizeColumn(int32_t xCol) {
  if (xCol < 0 || xCol >= Cols()) return;
  const int32_t storage = StorageCol(xCol);
  const GridColumn& col = StoredColumn(storage);
  if (col.dataType == TypeBoolean) {
    ColWidth(xCol, kBooleanColumnWidth);
    return;
  }
  if (col.dataType == TypeProgressBar || col.dataType == TypeButton) return;
  HDC dc = hDC();
  if (!dc || !Font()) return;

  // The heading counts, so that a column sized before its rows arrive (a fill from a query)
  // still shows its caption.
  int32_t largest = 0;
  if (FontHeader()) largest = TextWidth(dc, FontFor(*FontHeader(), false, false, false, false), col.heading);
  if (col.dataType == TypeNumeric && TotalLineShow()) {
    const GridTotalColumn& t = TotalColumn(storage);
    double total = TotalColumns(storage);
    if (t.average && Rows() > 0) total /= Rows();
    const host::String number = col.format.empty() ? host::Format(total) : host::Format(total, col.format);
    const host::String text = t.caption.empty() ? number : t.caption + u" " + number;
    largest = std::max(largest, TextWidth(dc, FontFor(*Font(), t.fontBold, t.fontItalic, t.fontUnderline,
                                                      t.fontStrikethrough), text));
  }

  const auto& formats = Formats();
  const bool images = m_imageList != nullptr && m_metrics.imageWidth > 0;
  for (int32_t r = 0; r <= LastRow(); ++r) {
    const GridRow& row = StoredRow(StorageRow(r));
    const GridCell& cell = row.cells[static_cast<size_t>(storage)];
    const GridFormat& fmt = formats[static_cast<size_t>(std::max<int16_t>(cell.formatIndex, 0)) % formats.size()];
    int32_t width = 0;
    if (!cell.text.Empty()) {
      host::String text(cell.text.View());
      if (!col.format.empty()) text = host::Format(text, col.format);
      HFONT font = FontFor(*Font(), cell.flags & kCellBold, cell.flags & kCellItalic, cell.flags & kCellUnderline,
                           cell.flags & kCellStrikethrough, fmt.fontName);
      width = TextWidth(dc, font, text);
    }
    if (images && (fmt.image != 0 || (xCol == 0 && row.image != 0))) width += m_metrics.imageWidth;
    largest = std::max(largest, width);
  }
  // Fonts made for measuring go with the measuring; the next paint makes its own.
  ReleaseFonts();
  ColWidth(xCol, static_cast<float>(largest + 10) * TwipsPerPixel());
}

// ---- stretch and fit ---------------------------------------------------------------------------

void USFlexGrid::StretchCol(int32_t xColumn, int32_t xOffset) {
  if (xColumn < 0 || xColumn >= Cols()) return;
  int32_t others = 0;
  for (int32_t c = 0; c < Cols(); ++c)
    if (c != xColumn && ColVisible(c)) others += ColWidthPixels(c);
  const double pixels = static_cast<double>(VisibleWidth()) - others - m_metrics.rowNumberWidth - 1 - xOffset;
  ColWidth(xColumn, static_cast<float>(std::nearbyint(pixels)) * TwipsPerPixel());
}

void USFlexGrid::ColumnsForceFit() {
  if (Cols() < 2) return;
  const bool verticalBar = VerticalScrollBarVisible();
  // Host units, less the bar, less the gutter (which is counted as it stands, in pixels).
  float available = static_cast<float>(VisibleWidth()) * TwipsPerPixel();
  if (verticalBar) available -= kVerticalBarWidth;
  available -= m_metrics.rowNumberWidth;

  float sum = 0;
  int32_t count = 0, last = -1;
  for (int32_t c = 0; c < Cols(); ++c) {
    if (!ColVisible(c)) continue;
    sum += ColWidth(c);
    ++count;
    last = c;
  }
  if (sum == 0) return;
  const float factor = available / sum;
  const bool redraw = GridData::Redraw();
  GridData::Redraw(false);

  float newSum = 0;
  for (int32_t c = 0; c < Cols(); ++c) {
    if (!ColVisible(c)) continue;
    // Whole host units, rounded half to even as the host rounds.
    const float w = std::nearbyint(ColWidth(c) * factor);
    ColWidth(c, w);
    newSum += w;
  }
  // The last column takes a correction by what is left over. The amounts were found by trial on
  // the look of the grid and are kept as they are.
  const float residue = static_cast<float>(count - 1) + newSum - available;
  float correction = 0;
  auto ruleOfThree = [&](float barAbsent, float odd, float evenFew) {
    if (!verticalBar) return barAbsent;
    if (count % 2 != 0) return odd;
    return Rows() < 1000 ? evenFew : 0.0f;
  };
  if (residue == 0) correction = verticalBar ? 0 : -10;
  else if (residue == 3) correction = ruleOfThree(10, 20, 20);
  else if (residue == 4) correction = -20;
  else if (residue == 6) correction = ruleOfThree(20, 40, 40);
  if (correction != 0 && last >= 0) ColWidth(last, ColWidth(last) + correction);

  GridData::Redraw(redraw);
}

}  // namespace mx::grid
