// USFlexGrid: DrawGrid and its parts. Everything is painted straight onto the persistent image;
// a paint walks the rows from the first shown until the client area is full, and the columns
// that are painted, so its cost follows the view, never the number of rows.
#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

#include "frame/Drawing.h"
#include "grid/USFlexGrid.h"
#include "host/Format.h"
#include "host/StdPicture.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIListImages.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Text.h"

namespace mx::grid {

using namespace platform;

namespace {

COLORREF Rgb(OLE_COLOR c) { return static_cast<COLORREF>(host::TranslateColor(c)); }

void Fill(HDC dc, const RECT& r, OLE_COLOR c) {
  if (r.right <= r.left || r.bottom <= r.top) return;
  HBRUSH b = CreateSolidBrush(Rgb(c));
  FillRect(dc, &r, b);
  DeleteObject(b);
}

void Line(HDC dc, int x1, int y1, int x2, int y2, OLE_COLOR c, int width = 1) {
  HPEN pen = CreatePen(PS_SOLID, std::max(width, 1), Rgb(c));
  HGDIOBJ old = SelectObject(dc, pen);
  MoveToEx(dc, x1, y1, nullptr);
  LineTo(dc, x2, y2);
  SelectObject(dc, old);
  DeleteObject(pen);
}

// A top-to-bottom gradient through GradientFill, vertex colours scaled to 16 bits a channel.
void Gradient(HDC dc, const RECT& r, OLE_COLOR from, OLE_COLOR to) {
  if (r.right <= r.left || r.bottom <= r.top) return;
  const COLORREF a = Rgb(from), b = Rgb(to);
  TRIVERTEX v[2];
  v[0].x = r.left;
  v[0].y = r.top;
  v[0].Red = static_cast<COLOR16>(GetRValue(a) * 256);
  v[0].Green = static_cast<COLOR16>(GetGValue(a) * 256);
  v[0].Blue = static_cast<COLOR16>(GetBValue(a) * 256);
  v[1].x = r.right;
  v[1].y = r.bottom;
  v[1].Red = static_cast<COLOR16>(GetRValue(b) * 256);
  v[1].Green = static_cast<COLOR16>(GetGValue(b) * 256);
  v[1].Blue = static_cast<COLOR16>(GetBValue(b) * 256);
  GRADIENT_RECT g{0, 1};
  GradientFill(dc, v, 2, &g, 1, GRADIENT_FILL_RECT_V);
}

// The 50 percent blend of two colours, per channel with weight 128 of 255.
OLE_COLOR Blend50(OLE_COLOR a, OLE_COLOR b) {
  const COLORREF x = Rgb(a), y = Rgb(b);
  auto mix = [](int p, int q) { return (p * 128 + q * (255 - 128)) / 255; };
  return host::MakeColor(mix(GetRValue(x), GetRValue(y)), mix(GetGValue(x), GetGValue(y)),
                         mix(GetBValue(x), GetBValue(y)));
}

bool Centred(int32_t alignment) { return alignment == 1 || alignment == 5 || alignment == 9; }

// Vertical place of a box of height `box` in a cell by the alignment's row (top, centre, bottom).
int32_t AlignY(int32_t alignment, int32_t top, int32_t height, int32_t box, int32_t margin) {
  if (alignment >= 8) return top + height - box - margin;
  if (alignment >= 4) return top + (height - box) / 2;
  return top + margin;
}

}  // namespace

// What one paint shares between its parts.
struct USFlexGrid::PaintContext {
  HDC dc = 0;
  int32_t width = 0;
  int32_t height = 0;
  OLE_COLOR headerFill = 0;
  OLE_COLOR headerFillCurrent = 0;
  // The painted columns in display order, with their places.
  struct Col {
    int32_t display = 0;
    int32_t storage = 0;
    int32_t x = 0;
    int32_t w = 0;
  };
  std::vector<Col> cols;
  int32_t right = 0;  // the painted right edge
  int32_t currentY = -1, currentH = 0;
};

// ---- fonts -------------------------------------------------------------------------------------

HFONT USFlexGrid::FontFor(const host::StdFont& base, bool bold, bool italic, bool underline, bool strike,
                          host::StringView name) {
  const int style = (bold ? 1 : 0) | (italic ? 2 : 0) | (underline ? 4 : 0) | (strike ? 8 : 0);
  auto key = std::make_tuple(&base, style, host::String(name));
  if (auto it = m_fonts.find(key); it != m_fonts.end()) return it->second;
  LOGFONTW lf = base.ToLogFont();
  if (bold) lf.lfWeight = 700;
  if (italic) lf.lfItalic = 1;
  if (underline) lf.lfUnderline = 1;
  if (strike) lf.lfStrikeOut = 1;
  if (!name.empty() && name.size() < 32) {
    std::fill(std::begin(lf.lfFaceName), std::end(lf.lfFaceName), u'\0');
    std::copy(name.begin(), name.end(), lf.lfFaceName);
  }
  HFONT f = CreateFontIndirectW(&lf);
  m_fonts.emplace(std::move(key), f);
  return f;
}

void USFlexGrid::ReleaseFonts() {
  for (auto& [key, f] : m_fonts)
    if (f) DeleteObject(f);
  m_fonts.clear();
}

// ---- the check-box sprites ---------------------------------------------------------------------

// Four 13-pixel boxes side by side: unchecked, unchecked disabled, checked, checked disabled.
// Themes 0 and 1 use 13-pixel-high boxes, later themes 14 (a shadow line under the box).
void USFlexGrid::BuildCheckStrip() {
  if (m_checkDC && m_checkTheme == Theme()) return;
  if (!m_checkDC) {
    m_checkDC = CreateCompatibleDC(0);
    m_checkBitmap = CreateCompatibleBitmap(m_checkDC, 52, 14);
    m_checkOld = SelectObject(m_checkDC, m_checkBitmap);
  }
  m_checkTheme = Theme();
  const bool flat = Theme() > 1;
  const OLE_COLOR base = flat ? kGridBaseColor : 0x808080;
  Fill(m_checkDC, {0, 0, 52, 14}, BackColorBackground());
  for (int i = 0; i < 4; ++i) {
    const int x = i * 13;
    const bool disabled = (i % 2) == 1, checked = i >= 2;
    const OLE_COLOR frame = disabled ? 0xC0C0C0 : base;
    Fill(m_checkDC, {x, 0, x + 13, 13}, frame);
    Fill(m_checkDC, {x + 1, 1, x + 12, 12}, disabled ? 0xF0F0F0 : 0xFFFFFF);
    if (flat) Fill(m_checkDC, {x + 1, 13, x + 12, 14}, 0xE0E0E0);
    if (checked) {
      // A tick of stacked 2-pixel columns: down from (3, 6) to (5, 8), then up to (9, 4).
      const OLE_COLOR tick = disabled ? 0xA0A0A0 : 0x000000;
      const int ys[] = {5, 6, 7, 6, 5, 4, 3};
      for (int k = 0; k < 7; ++k) Fill(m_checkDC, {x + 3 + k, ys[k], x + 4 + k, ys[k] + 3}, tick);
    }
  }
}

void USFlexGrid::DrawCheckSprite(HDC dc, int32_t x, int32_t y, bool checked) {
  BuildCheckStrip();
  const int sx = (checked ? 26 : 0) + (Enabled() ? 0 : 13);
  const int h = Theme() <= 1 ? 13 : 14;
  BitBlt(dc, x, y, 13, h, m_checkDC, sx, 0, SRCCOPY);
}

// ---- images -------------------------------------------------------------------------------------

// The selected style is the image at half strength over the selection's back, so that it takes
// on the selection's colour the way the text does.
void USFlexGrid::DrawListImage(HDC dc, int32_t index, int32_t x, int32_t y, bool selectedStyle) {
  if (!m_imageList || index == 0 || index == INT32_MIN) return;
  auto images = m_imageList->Images();
  if (!images) return;
  try {
    images->Render(host::Variant(std::abs(index)), dc, x, y, m_metrics.imageWidth, m_metrics.imageHeight, 0, 0, 0,
                   0, selectedStyle ? 50 : 100);
  } catch (...) {
    // An index the list does not have skips the image; the rest of the cell still paints.
  }
}

void USFlexGrid::DrawCellPicture(HDC dc, const host::ObjectRef& picture, const RECT& box, int32_t alignment,
                                 bool selectedStyle) {
  if (!picture || box.right <= box.left || box.bottom <= box.top) return;
  DecodedPicture& decoded = m_pictures[picture.get()];
  if (decoded.source.expired()) {
    // A new picture, or a new one at the address of one that has gone: decode it once.
    decoded.source = picture;
    decoded.surface.reset();
    if (auto pic = std::dynamic_pointer_cast<host::StdPicture>(picture); pic && !pic->IsEmpty()) {
      auto surface = std::make_shared<image::API32bppDIB>();
      if (surface->LoadPicture_StdPicture(pic) && surface->Width() > 0 && surface->Height() > 0)
        decoded.surface = std::move(surface);
    }
    if (m_pictures.size() > 64) std::erase_if(m_pictures, [](const auto& e) { return e.second.source.expired(); });
  }
  image::API32bppDIB* surface = decoded.surface.get();  // still there: only gone pictures were dropped
  if (!surface) return;
  // The larger side meets the box; the other keeps the picture's proportions.
  const double bw = box.right - box.left, bh = box.bottom - box.top;
  const double scale = std::min(bw / surface->Width(), bh / surface->Height());
  const int32_t w = std::max(1, static_cast<int32_t>(std::lround(surface->Width() * scale)));
  const int32_t h = std::max(1, static_cast<int32_t>(std::lround(surface->Height() * scale)));
  int32_t x = box.left;
  if (alignment % 4 == 1) x = box.left + (static_cast<int32_t>(bw) - w) / 2;
  else if (alignment % 4 == 2) x = box.right - w;
  const int32_t y = AlignY(alignment, box.top, static_cast<int32_t>(bh), h, 0);
  surface->Render(dc, x, y, w, h, 0, 0, 0, 0, selectedStyle ? 50 : 100);
}

// ---- the row-number gutter ---------------------------------------------------------------------

void USFlexGrid::ComputeRowNumberWidth(int32_t lastRowInView) {
  if (!ShowRowNumbers() || m_rowsVisible == 0 || LastRow() < 0 || !Font()) {
    m_metrics.rowNumberWidth = 0;
    return;
  }
  int32_t n = ShowRowNumbersVary() ? lastRowInView + 1 : ListCount();
  host::String text = host::String(u"9999");
  if (ShowRowNumbersVary() || n > 9999) {
    const std::string digits = std::to_string(n);
    text.assign(digits.begin(), digits.end());
  }
  HDC dc = hDC();
  SIZE size{};
  if (dc) {
    HGDIOBJ old = SelectObject(dc, FontFor(*Font(), false, false, false, false));
    GetTextExtentPoint32W(dc, text, &size);
    SelectObject(dc, old);
  }
  m_metrics.rowNumberWidth = static_cast<float>(size.cx + 10);
}

// ---- DrawGrid ----------------------------------------------------------------------------------

void USFlexGrid::DrawGrid(bool xRedraw, bool xSkipFocusRect, int32_t xFirstRow) {
  if (m_inDraw) return;
  if (Row() > LastRow()) GridData::Row(LastRow());
  if (!xRedraw) return;
  struct Guard {
    bool& flag;
    explicit Guard(bool& f) : flag(f) { flag = true; }
    ~Guard() { flag = false; }
  } guard(m_inDraw);
  if (m_metrics.defaultRowHeight == 0) RecalcMetrics();

  // The first row: the caller's, a pending "scroll to", or the bar's.
  if (xFirstRow >= 0) m_firstRow = xFirstRow;
  else if (m_scrollTo >= 0) m_firstRow = m_scrollTo;
  m_scrollTo = -1;
  m_firstRow = std::clamp(m_firstRow, 0, std::max(LastRow(), 0));
  UpdateScrollBars();

  PaintContext pc;
  pc.dc = hDC();
  if (!pc.dc) return;
  pc.width = VisibleWidth();
  pc.height = VisibleHeight();
  pc.headerFill = Blend50(HeaderGradientColor1(), HeaderGradientColor2());
  pc.headerFillCurrent = host::ShiftRGBColor(HeaderGradientColor1(), 10);
  SetBkMode(pc.dc, TRANSPARENT);
  Fill(pc.dc, {0, 0, pc.width, pc.height}, BackColorBackground());

  int32_t y = m_metrics.headerBottom;
  m_rowFirstVisible = -1;
  m_rowLastVisible = -1;
  bool allDrawn = true;
  if (LastRow() < 0) {
    m_metrics.rowNumberWidth = 0;
    DrawCaption(pc);
    DrawHeaders(pc);
    RequestRowData(-1);
  } else {
    // Word-wrapped rows differ in height: after a Down key keep the current row inside the view.
    if ((AllowWordWrap() || AllowRowResizing()) && m_lastKeyCode == 40 && Row() >= m_firstRow) {
      int32_t bottom = m_metrics.headerBottom;
      for (int32_t r = m_firstRow; r <= Row(); ++r)
        if (RowPainted(r)) bottom += RowHeightAt(r);
      int32_t excess = bottom - (m_metrics.headerBottom + AvailableRowsHeight());
      while (excess > 0 && m_firstRow < Row()) {
        if (RowPainted(m_firstRow)) excess -= RowHeightAt(m_firstRow);
        ++m_firstRow;
      }
    }
    DrawCaption(pc);
    ComputeRowNumberWidth(std::min(LastRow(), m_firstRow + std::max(m_rowsVisible, 1) - 1));
    DrawHeaders(pc);

    int32_t first = m_firstRow;
    while (first <= LastRow() && !RowPainted(first)) ++first;
    if (first > LastRow()) RequestRowData(-1);
    // Odd display index starts true; hidden rows do not flip it.
    bool parity = (first % 2) == 1;
    for (int32_t r = first; r <= LastRow(); ++r) {
      if (!RowPainted(r)) continue;
      if (y > pc.height) {
        allDrawn = false;
        break;
      }
      MeasureRow(r);
      const int32_t h = RowHeightAt(r);
      if (m_rowFirstVisible < 0) m_rowFirstVisible = r;
      DrawRow(pc, r, y, h, parity);
      m_rowLastVisible = r;
      parity = !parity;
      y += h;
    }
    if (first > 0) allDrawn = false;
    SelectClipRgn(pc.dc, 0);

    // Vertical lines, the one after the frozen block twice as wide; a last one closes the edge.
    if (GridLines() == Both_Lines || GridLines() == Vertical_Lines) {
      for (const auto& c : pc.cols) {
        const int w = (c.display == FreezeAtCol()) ? GridLineWidth() * 2 : GridLineWidth();
        Line(pc.dc, c.x + c.w - 1, m_metrics.headerBottom, c.x + c.w - 1, y, GridColor(), w);
      }
      Line(pc.dc, pc.right - 1, m_metrics.headerBottom, pc.right - 1, y, GridColor(), GridLineWidth());
    }
    if (TotalLineShow() && allDrawn) DrawTotals(pc, y);
    // With FocusRectHide the rectangle shows only while the grid or its editor has the focus.
    if (FocusRectHide() && hWnd()) {
      const HWND focus = GetFocus();
      if (focus != hWnd() && !FocusIsInEditor(focus)) xSkipFocusRect = true;
    }
    if (Row() != -1 && FocusRectMode() != Focus_None && !xSkipFocusRect && pc.currentY >= 0) {
      RECT fr{};
      if (FocusRectMode() == Focus_Row) {
        fr = {static_cast<LONG>(m_metrics.rowNumberWidth), pc.currentY, pc.right, pc.currentY + pc.currentH + 1};
      } else {
        fr = GetColumnRect(Col());
        if (Col() > 0) fr.left -= 1;
        fr.top = pc.currentY;
        fr.bottom = pc.currentY + pc.currentH + 1;
      }
      if (fr.right > static_cast<LONG>(m_metrics.rowNumberWidth)) {
        HPEN pen = CreatePen(PS_SOLID, 1, Rgb(FocusRectBorderColor()));
        HGDIOBJ oldPen = SelectObject(pc.dc, pen);
        HGDIOBJ oldBrush = SelectObject(pc.dc, GetStockObject(NULL_BRUSH));
        RoundRect(pc.dc, fr.left, fr.top, fr.right, fr.bottom, 0, 0);
        SelectObject(pc.dc, oldBrush);
        SelectObject(pc.dc, oldPen);
        DeleteObject(pen);
      }
    }
  }
  if (BorderStyle() == Fixed_Single) frame::FrameRectColor(pc.dc, {0, 0, pc.width, pc.height}, Rgb(BorderColor()));
  ReleaseFonts();
  host::UserControl::Refresh();
  if (LastRow() >= 0 && !allDrawn) RequestRowData(m_rowLastVisible);
}

RECT USFlexGrid::GetColumnRect(int32_t xCol) {
  int32_t x = static_cast<int32_t>(m_metrics.rowNumberWidth);
  for (int32_t c = 0; c < Cols(); ++c) {
    const GridColumn& col = StoredColumn(StorageCol(c));
    if ((c > FreezeAtCol() && c < m_firstScrollCol) || !col.visible) {
      if (c == xCol) return RECT{x, m_metrics.headerBottom, x, m_metrics.headerBottom};
      continue;
    }
    if (c == xCol) return RECT{x, m_metrics.headerBottom, x + col.widthPixels, VisibleHeight()};
    x += col.widthPixels;
  }
  return RECT{};
}

// ---- caption and header band -------------------------------------------------------------------

void USFlexGrid::DrawHeaderCell(PaintContext& pc, const RECT& r, int32_t state, OLE_COLOR c1, OLE_COLOR c2,
                                bool lastColumn) {
  RECT g = r;
  if (state >= 2) g.left += 2;
  Gradient(pc.dc, g, c1, c2);
  if (state == 1 && Theme() <= 1) Line(pc.dc, r.left, r.bottom - 2, r.right, r.bottom - 2, 0xFFFFFF);
  Line(pc.dc, r.left, r.bottom - 1, r.right, r.bottom - 1, BorderColor());
  OLE_COLOR sep = state == 1 ? ColumnSeparatorColor() : state == 2 ? ColumnSeparatorColorOver() : ColumnSeparatorColorDown();
  if (lastColumn) sep = host::ShiftRGBColor(sep, 20);
  if (r.bottom - r.top > 8) Line(pc.dc, r.right - 1, r.top + 4, r.right - 1, r.bottom - 4, sep);
}

void USFlexGrid::DrawCaption(PaintContext& pc) {
  if (Caption().empty() || m_metrics.captionHeight <= 0 || !FontHeader()) return;
  RECT r{0, 0, pc.width, m_metrics.captionHeight};
  DrawHeaderCell(pc, r, 1, CaptionGradientColor1(), CaptionGradientColor2(), false);
  HGDIOBJ old = SelectObject(pc.dc, FontFor(*FontHeader(), FontHeader()->Bold(), false, false, false));
  RECT tr{10, 0, pc.width - 10, m_metrics.captionHeight};
  uint32_t flags = static_cast<uint32_t>(CaptionAlignment());
  if (CaptionWordWrap()) {
    // Centre the wrapped block by measuring it first.
    RECT m = tr;
    DrawTextW(pc.dc, Caption(), &m, flags | 0x110 | DT_CALCRECT);
    tr.top = std::max<LONG>(0, (m_metrics.captionHeight - m.height()) / 2);
    flags |= 0x110;
  } else {
    flags |= 0x924;
  }
  frame::DrawTextColor(pc.dc, Caption(), tr, flags, Rgb(ForeColorHeader()));
  SelectObject(pc.dc, old);
}

void USFlexGrid::DrawHeaders(PaintContext& pc) {
  // The column layout serves the rows too, so it is computed even without headers.
  pc.cols.clear();
  int32_t x = static_cast<int32_t>(m_metrics.rowNumberWidth);
  for (int32_t c = 0; c < Cols(); ++c) {
    if (c > FreezeAtCol() && c < m_firstScrollCol) continue;
    const int32_t s = StorageCol(c);
    GridColumn& col = StoredColumn(s);
    if (!col.visible) continue;
    col.leftPixels = x;
    pc.cols.push_back({c, s, x, col.widthPixels});
    x += col.widthPixels;
    if (x > pc.width) break;  // columns past the right edge are not painted
  }
  pc.right = std::min(x, pc.width);
  m_paintedRight = pc.right;
  if (!ColumnHeaders() || m_metrics.headerHeight <= 0) return;
  const int32_t top = m_metrics.captionHeight, bottom = m_metrics.headerBottom;
  const bool interactive = AllowColumnSort() || AllowColumnSwap() || AllowColumnDrag();
  if (ShowRowNumbers() && m_metrics.rowNumberWidth > 0)
    DrawHeaderCell(pc, {-1, top, static_cast<LONG>(m_metrics.rowNumberWidth), bottom}, 1, HeaderGradientColor1(),
                   HeaderGradientColor2(), false);
  HFONT font = FontHeader() ? FontFor(*FontHeader(), FontHeader()->Bold(), false, false, false) : 0;
  HGDIOBJ oldFont = SelectObject(pc.dc, font);
  // A column being moved follows the pointer by m_headerMoveOffset: its place stays empty and it
  // is drawn last, over its neighbours.
  auto drawCell = [&](const PaintContext::Col& c, int32_t dx) {
    const GridColumn& col = StoredColumn(c.storage);
    int32_t state = 1;
    if (c.display == m_headerMovingCol) state = 4;
    else if (c.display == m_headerPressedCol) state = 3;
    else if (c.display == m_headerHoverCol && AllowColumnHover()) state = 2;
    if (!interactive) state = 1;
    const RECT r{c.x + dx, top, c.x + dx + c.w, bottom};
    const bool last = c.display == Cols() - 1;
    if (state == 1) DrawHeaderCell(pc, r, 1, HeaderGradientColor1(), HeaderGradientColor2(), last);
    else if (state == 2) DrawHeaderCell(pc, r, 2, HeaderGradientColorOver1(), HeaderGradientColorOver2(), last);
    else DrawHeaderCell(pc, r, 3, HeaderGradientColorDown1(), HeaderGradientColorDown2(), last);

    RECT tr{r.left + 3, r.top, r.right - 6, r.bottom};
    const bool primary = c.storage == SortCol1(), secondary = c.storage == SortCol2();
    if (col.sortState != 0 && (primary || secondary) && c.w >= 9) {
      // A filled triangle of stacked lines, 12 pixels from the right edge.
      const int aw = primary ? 9 : 6, ah = primary ? 5 : 3;
      const int ax = r.right - 12, ay = r.top + (r.bottom - r.top - ah) / 2;
      for (int i = 0; i < ah; ++i) {
        const int row = col.sortState == 1 ? i : ah - 1 - i;  // 1: apex up
        const int half = row * (aw / 2) / std::max(ah - 1, 1);
        Line(pc.dc, ax + aw / 2 - half, ay + i, ax + aw / 2 + half + 1, ay + i, ArrowColor());
      }
      tr.right = r.right - 13;
    }
    const OLE_COLOR fore = state == 1 ? ForeColorHeader() : ForeColorHeaderOver();
    uint32_t flags = static_cast<uint32_t>(col.alignment) | m_metrics.ellipsisFlag;
    host::String text = col.heading;
    if (ColumnHeaderLines() >= 2 && (col.cellFlagsDefault & kCellWordWrap) && m_headerMovingCol < 0) {
      text = WrapHeading(text, tr.right - tr.left, ColumnHeaderLines());
      RECT m = tr;
      DrawTextW(pc.dc, text, &m, flags | 0x110 | DT_CALCRECT);
      tr.top = r.top + std::max<LONG>(0, (r.bottom - r.top - m.height()) / 2);
      flags |= 0x110;
    } else {
      flags |= 0x924;
    }
    frame::DrawTextColor(pc.dc, text, tr, flags, Rgb(fore));
  };
  const PaintContext::Col* moving = nullptr;
  for (const auto& c : pc.cols) {
    if (c.display == m_headerMovingCol && interactive) moving = &c;
    else drawCell(c, 0);
  }
  if (moving) drawCell(*moving, m_headerMoveOffset);
  SelectObject(pc.dc, oldFont);
}

// ---- rows --------------------------------------------------------------------------------------

void USFlexGrid::DrawRow(PaintContext& pc, int32_t r, int32_t y, int32_t h, bool parity) {
  HDC dc = pc.dc;
  GridRow& row = StoredRow(StorageRow(r));
  const int32_t rnw = static_cast<int32_t>(m_metrics.rowNumberWidth);
  const bool current = r == Row();
  if (current) {
    pc.currentY = y;
    pc.currentH = h;
  }
  SelectClipRgn(dc, 0);

  // The gutter.
  if (ShowRowNumbers() && rnw > 0) {
    Fill(dc, {0, y, rnw, y + h}, current ? pc.headerFillCurrent : pc.headerFill);
    if (y > m_metrics.headerBottom) {
      const bool nearCurrent = current || r - 1 == Row();
      Line(dc, 0, y, rnw, y, nearCurrent ? pc.headerFillCurrent : pc.headerFill, GridLineWidth());
    }
    HGDIOBJ old = SelectObject(dc, FontFor(*Font(), current, false, false, false));
    const std::string n = std::to_string(r + 1);
    RECT tr{0, y, rnw, y + h};
    frame::DrawTextColor(dc, host::String(n.begin(), n.end()), tr, 0x925, Rgb(ForeColorHeader()));
    SelectObject(dc, old);
  }

  // The row's back.
  const bool selected = (MultiSelect() > 0 || FocusRectMode() == Focus_Row) && (row.flags & kRowSelected);
  const OLE_COLOR unselectedBack = !BackColorEvenRowsEnabled() || parity ? BackColorBackground() : BackColorEvenRows();
  if (selected) {
    Fill(dc, {rnw + 1, y, pc.right, y + h - (Theme() > 1 ? 1 : 0)}, FocusRectColor());
    // The strip of check box and row image keeps the unselected back while column 0 is in place.
    if (!pc.cols.empty() && pc.cols.front().display == 0 && m_metrics.firstColTextOffset > 3)
      Fill(dc, {pc.cols.front().x, y, pc.cols.front().x + m_metrics.firstColTextOffset, y + h}, unselectedBack);
  } else {
    Fill(dc, {rnw, y, pc.right, y + h}, unselectedBack);
  }

  const auto& formats = Formats();
  for (const auto& c : pc.cols) {
    const GridColumn& col = StoredColumn(c.storage);
    const GridCell& cell = row.cells[static_cast<size_t>(c.storage)];
    const RECT cr{c.x, y, c.x + c.w, y + h};
    SetRectRgn(m_clipRgn, cr.left, cr.top, cr.right, cr.bottom);
    SelectClipRgn(dc, m_clipRgn);
    const GridFormat& fmt = formats[static_cast<size_t>(std::max<int16_t>(cell.formatIndex, 0)) % formats.size()];

    // Colours.
    OLE_COLOR fore = row.groupHeader || !selected ? fmt.foreColor : ForeColorSelected();
    if (selected && FocusRowHighlightKeepTextForeColor()) fore = fmt.foreColor;
    if (!selected && fmt.backColor != BackColorBackground()) Fill(dc, cr, fmt.backColor);

    // The text rectangle.
    const int32_t align = cell.alignment;
    RECT tr = cr;
    if (c.display == 0 && m_metrics.firstColTextOffset > 3) {
      tr.left = cr.left + m_metrics.firstColTextOffset + 3;
      tr.right = cr.right - 3;
    } else if (!Centred(align)) {
      tr.left += 3;
      tr.right -= 3;
    }
    if (c.display == 0 && !row.groupHeader && RowCheckBoxes())
      DrawCheckSprite(dc, cr.left + 6, AlignY(align, y, h, 13, MinVerticalOffset()), row.flags & kRowChecked);
    // The row image sits in column 0's strip after the check box, on the unselected back.
    if (c.display == 0 && row.image != 0 && m_imageList) {
      const int32_t ix = cr.left + (RowCheckBoxes() ? m_metrics.checkBoxSize + 8 : 3);
      const int32_t iy = CenterRowImage() ? y + (h - m_metrics.imageHeight) / 2 : y + MinVerticalOffset();
      DrawListImage(dc, row.image, ix, iy, false);
    }

    bool plainFont = false;
    if (!row.groupHeader) {
      if (col.dataType == TypeBoolean) {
        const int32_t hx = align % 4 == 1 ? cr.left + (c.w - 13) / 2 : align % 4 == 2 ? cr.right - 16 : cr.left + 3;
        DrawCheckSprite(dc, hx, AlignY(align, y, h, 13, MinVerticalOffset()), cell.flags & kCellChecked);
        continue;
      }
      if (col.dataType == TypeProgressBar) {
        // The track, then the value: (width - 1) / 100 per point of the cell's value.
        double v = 0;
        const std::string s(cell.text.View().begin(), cell.text.View().end());
        try {
          v = s.empty() ? cell.flags : std::stod(s);
        } catch (...) {
          v = 0;
        }
        v = std::clamp(v, 0.0, 100.0);
        const RECT track{cr.left + 2, y + 3, cr.right - 2, y + h - 3 - (GridLines() ? 1 : 0)};
        Gradient(dc, track, host::ShiftRGBColor(ProgressBarColor1(), 110), host::ShiftRGBColor(ProgressBarColor2(), 90));
        const int32_t vw = static_cast<int32_t>((c.w - 1) / 100.0 * v);
        Gradient(dc, {track.left, track.top, std::min<LONG>(cr.left + 2 + vw, track.right), track.bottom},
                 ProgressBarColor1(), ProgressBarColor2());
        tr = {cr.left + 3, cr.top + 3, cr.right - 3, cr.bottom - 3};
        plainFont = true;
      } else if (col.dataType == TypeButton) {
        // Without a theme engine the button is the header face: pressed while the mouse holds it.
        const bool pressed = r == m_buttonRow && c.display == m_buttonCol;
        const RECT br{cr.left + 1, cr.top + 1, cr.right - 1, cr.bottom - 1};
        if (pressed) Gradient(dc, br, HeaderGradientColorDown1(), HeaderGradientColorDown2());
        else Gradient(dc, br, HeaderGradientColor1(), HeaderGradientColor2());
        frame::FrameRectColor(dc, br, Rgb(BorderColor()));
        fore = ForeColorHeader();
      }
    }

    // The cell's image takes its width from the text's side: before the text, or after it for
    // the right-hand alignments.
    const bool selectedImages = selected && ApplySelectionToImages();
    if (fmt.image != 0 && m_imageList && m_metrics.imageWidth > 0) {
      const int32_t ia = col.imageAlignment;
      const int32_t iy = AlignY(ia, y, h, m_metrics.imageHeight, MinVerticalOffset());
      int32_t ix = 0;
      if (ia % 4 == 2) {
        ix = std::min<int32_t>(tr.right, cr.right - 3) - m_metrics.imageWidth;
        tr.right = ix - 2;
      } else {
        ix = std::max<int32_t>(tr.left, cr.left + 3);
        tr.left = ix + m_metrics.imageWidth + 2;
      }
      DrawListImage(dc, fmt.image, ix, iy, selectedImages);
    }
    if (cell.extra != 0) {
      const RECT box{std::max<LONG>(tr.left, cr.left + 2), cr.top + 2, std::min<LONG>(tr.right, cr.right - 2),
                     cr.bottom - 2};
      DrawCellPicture(dc, StoredCellPicture(cell), box, col.imageAlignment, selectedImages);
    }

    // The text.
    if (cell.text.Empty()) continue;
    host::String text(cell.text.View());
    if (!col.format.empty()) text = host::Format(text, col.format);
    HFONT font = plainFont ? FontFor(*Font(), false, false, false, false, fmt.fontName)
                           : FontFor(*Font(), cell.flags & kCellBold, cell.flags & kCellItalic,
                                     cell.flags & kCellUnderline, cell.flags & kCellStrikethrough, fmt.fontName);
    HGDIOBJ old = SelectObject(dc, font);
    uint32_t flags = static_cast<uint32_t>(col.dataType == TypeButton ? AlignToCenterCenter : align) | m_metrics.ellipsisFlag;
    bool wrap = false;
    if (AllowWordWrap() && (cell.flags & kCellWordWrap)) {
      RECT m{0, 0, 0, 0};
      DrawTextW(dc, text, &m, m_metrics.ellipsisFlag | 0xD24);
      wrap = m.width() > tr.right - tr.left;
    }
    if (wrap) {
      RECT m = tr;
      DrawTextW(dc, text, &m, m_metrics.ellipsisFlag | 0x510);
      if (align >= 4 && align < 8) tr.top = y + std::max<LONG>(0, (h - m.height()) / 2);
      flags |= 0x110;
    } else {
      flags |= 0x924;
    }
    frame::DrawTextColor(dc, text, tr, flags, Rgb(fore));
    SelectObject(dc, old);
  }
  SelectClipRgn(dc, 0);

  // The row line under the row.
  if (GridLines() == Both_Lines || GridLines() == Horizontal_Lines)
    Line(dc, rnw, y + h - 1, pc.right, y + h - 1, GridColor(), GridLineWidth());
  if (r == LastRow() && ShowRowNumbers() && rnw > 0) Line(dc, 0, y + h - 1, rnw, y + h - 1, pc.headerFill, GridLineWidth());
}

void USFlexGrid::DrawTotals(PaintContext& pc, int32_t y) {
  const int32_t h = m_metrics.defaultRowHeight;
  Line(pc.dc, static_cast<int32_t>(m_metrics.rowNumberWidth), y, pc.right, y, GridColor());
  for (const auto& c : pc.cols) {
    const GridTotalColumn& t = TotalColumn(c.storage);
    if (t.invisible) continue;
    const GridColumn& col = StoredColumn(c.storage);
    host::String text = t.caption;
    if (col.dataType == TypeNumeric) {
      double total = TotalColumns(c.storage);
      if (t.average && Rows() > 0) total /= Rows();
      host::String number = col.format.empty() ? host::Format(total) : host::Format(total, col.format);
      text = t.caption.empty() ? number : t.caption + u" " + number;
    }
    if (text.empty()) continue;
    HGDIOBJ old = SelectObject(pc.dc, FontFor(*Font(), t.fontBold, t.fontItalic, t.fontUnderline, t.fontStrikethrough));
    const uint32_t flags = static_cast<uint32_t>(t.alignment) | m_metrics.ellipsisFlag | 0x800;
    RECT m{c.x + 3, 0, c.x + c.w - 3, 0};
    DrawTextW(pc.dc, text, &m, flags | DT_CALCRECT);
    RECT tr{c.x + 3, y + std::max<LONG>(0, (h - m.height()) / 2), c.x + c.w - 3, y + h};
    frame::DrawTextColor(pc.dc, text, tr, flags, Rgb(t.foreColor));
    SelectObject(pc.dc, old);
  }
}

}  // namespace mx::grid
