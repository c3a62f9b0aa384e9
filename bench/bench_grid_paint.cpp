// Grid repaints: a full DrawGrid of a grid of 1,000 rows against one of 1,000,000 rows, at
// the top and scrolled to the middle. The paint walks only the rows in view, so the figures
// should match whatever the row count.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "grid/USFlexGrid.h"
#include "platform/Clock.h"
#include "platform/MessageQueue.h"
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

}  // namespace
