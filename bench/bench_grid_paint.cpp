// Grid repaints: a full DrawGrid of a grid of 1,000 rows against one of 1,000,000 rows, at
// the top and scrolled to the middle. The paint walks only the rows in view, so the figures
// should match whatever the row count. The reference draws the same texts by hand.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "grid/USFlexGrid.h"
#include "host/StdFont.h"
#include "platform/Clock.h"
#include "platform/Gdi.h"
#include "platform/MessageQueue.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace {

using mx::grid::USFlexGrid;

std::shared_ptr<USFlexGrid> MakeGrid(int rows) {
  auto g = std::make_shared<USFlexGrid>();
  g->Move(0, 0, 640 * 15, 480 * 15);
  g->LoadNew(true);
  g->ShowControl();
  g->Redraw(false);
  g->AddColumn(u"Name", 1800);
  g->AddColumn(u"Qty", 900, mx::grid::AlignToRightCenter, mx::grid::TypeNumeric);
  g->AddColumn(u"Paid", 700, mx::grid::AlignToCenterCenter, mx::grid::TypeBoolean);
  g->AddColumn(u"Done", 1500, mx::grid::AlignToLeftCenter, mx::grid::TypeProgressBar);
  g->AddColumn(u"Note", 3000);
  g->BeginFill();
  for (int r = 0; r < rows; ++r) {
    const std::string s = "Client " + std::to_string(r) + "\t" + std::to_string(r % 97) + "\t1\t" +
                          std::to_string(r % 101) + "\tnote";
    g->AddItem(std::u16string(s.begin(), s.end()));
  }
  g->EndFill(-1, 0, false);
  g->TotalLineShow(true);
  g->Redraw(true);
  return g;
}

void BM_FullRepaint(benchmark::State& state) {
  mx::platform::ResetWindowing();
  mx::platform::ScopedVirtualClock clock;
  auto g = MakeGrid(static_cast<int>(state.range(0)));
  if (state.range(1)) g->SetScrollVerticalPosition(static_cast<int>(state.range(0)) / 2);
  for (auto _ : state) {
    g->DrawGrid(true);
    benchmark::DoNotOptimize(g->RowLastVisible());
  }
  state.counters["rowsPainted"] = g->RowLastVisible() - g->RowFirstVisible() + 1;
  g->TerminateControl();
  g.reset();
  mx::platform::ResetWindowing();
}
BENCHMARK(BM_FullRepaint)
    ->Args({1000, 0})
    ->Args({1000000, 0})
    ->Args({1000, 1})
    ->Args({1000000, 1})
    ->Unit(benchmark::kMicrosecond);

// The floor for the same repaint: the texts of the rows in view, taken from the grid once,
// drawn by hand into an off-screen bitmap of the grid's size (a background fill, one DrawTextW
// per cell in the grid's font, the cell lines) and copied to the grid's window. No header
// states, check boxes, progress bars, per-cell formats or total line: the least any painter of
// these texts must do.
void BM_FullRepaint_reference(benchmark::State& state) {
  using namespace mx::platform;
  ResetWindowing();
  ScopedVirtualClock clock;
  auto g = MakeGrid(static_cast<int>(state.range(0)));
  if (state.range(1)) g->SetScrollVerticalPosition(static_cast<int>(state.range(0)) / 2);
  std::vector<int> widths;
  for (int c = 0; c < g->Cols(); ++c) widths.push_back(g->ColWidthPixels(c));
  struct Row {
    int height;
    std::vector<std::u16string> cells;
  };
  std::vector<Row> rows;
  for (int r = g->RowFirstVisible(); r <= g->RowLastVisible(); ++r) {
    const int stored = g->RowHeight(r);
    Row row{stored > 0 ? stored : g->DefaultRowHeightCached(), {}};
    for (int c = 0; c < g->Cols(); ++c) row.cells.push_back(g->CellText(r, c));
    rows.push_back(std::move(row));
  }
  RECT client{};
  GetClientRect(g->hWnd(), &client);
  HDC window = GetDC(g->hWnd());
  HDC mem = CreateCompatibleDC(window);
  HBITMAP bitmap = CreateCompatibleBitmap(window, client.right, client.bottom);
  const LOGFONTW lf = g->Font()->ToLogFont();
  HFONT font = CreateFontIndirectW(&lf);
  HBRUSH back = CreateSolidBrush(0xFFFFFF);
  HPEN line = CreatePen(PS_SOLID, 1, 0xE0E0E0);
  HGDIOBJ oldBitmap = SelectObject(mem, bitmap);
  HGDIOBJ oldFont = SelectObject(mem, font);
  HGDIOBJ oldPen = SelectObject(mem, line);
  SetBkMode(mem, TRANSPARENT);
  for (auto _ : state) {
    FillRect(mem, &client, back);
    int y = 0;
    for (const Row& row : rows) {
      int x = 0;
      for (size_t c = 0; c < row.cells.size(); ++c) {
        RECT cell{x + 2, y, x + widths[c] - 2, y + row.height};
        DrawTextW(mem, row.cells[c], &cell, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        x += widths[c];
        MoveToEx(mem, x - 1, y, nullptr);
        LineTo(mem, x - 1, y + row.height);
      }
      y += row.height;
      MoveToEx(mem, 0, y - 1, nullptr);
      LineTo(mem, x, y - 1);
    }
    BitBlt(window, 0, 0, client.right, client.bottom, mem, 0, 0, SRCCOPY);
  }
  SelectObject(mem, oldPen);
  SelectObject(mem, oldFont);
  SelectObject(mem, oldBitmap);
  DeleteObject(line);
  DeleteObject(back);
  DeleteObject(font);
  DeleteObject(bitmap);
  DeleteDC(mem);
  ReleaseDC(g->hWnd(), window);
  state.counters["rowsPainted"] = static_cast<double>(rows.size());
  g->TerminateControl();
  g.reset();
  ResetWindowing();
}
BENCHMARK(BM_FullRepaint_reference)
    ->Args({1000, 0})
    ->Args({1000000, 1})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
