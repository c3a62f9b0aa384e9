// List repaints and scrolling: a full DrawList and a one-row scroll of a list of 1,000 items
// against one of 100,000. The paint walks only the rows in view, so both sizes should cost the
// same. The fill and the sort are measured too, as what a form pays to show a long list.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "entry/USListBox.h"
#include "host/Variant.h"
#include "platform/MessageQueue.h"

namespace {

using mx::entry::USListBox;

std::u16string CityName(int i) {
  const std::string s = "Cidade " + std::to_string((i * 7919) % 100003) + " do Norte";
  return std::u16string(s.begin(), s.end());
}

std::shared_ptr<USListBox> MakeList(int items, bool redrawOff = true) {
  auto list = std::make_shared<USListBox>();
  list->Move(0, 0, 300 * 15, 26 * 12 * 15);  // twelve rows
  list->LoadNew(true);
  list->ShowControl();
  list->Redraw(!redrawOff);
  for (int i = 0; i < items; ++i) list->AddItem(mx::host::Variant(CityName(i)), i);
  list->Redraw(true);
  list->ListIndex(items / 2);
  return list;
}

void BM_ListRepaint(benchmark::State& state) {
  auto list = MakeList(static_cast<int>(state.range(0)));
  for (auto _ : state) list->DrawList();
  mx::platform::PumpMessages();
  list->TerminateControl();
}
BENCHMARK(BM_ListRepaint)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_ListScrollOneRow(benchmark::State& state) {
  auto list = MakeList(static_cast<int>(state.range(0)));
  int32_t top = 0;
  for (auto _ : state) {
    // Down a row at a time through the first 500 tops, then back to the start.
    top = top >= 500 ? 0 : top + 1;
    list->TopIndex(top);
  }
  mx::platform::PumpMessages();
  list->TerminateControl();
}
BENCHMARK(BM_ListScrollOneRow)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Second argument 1: the fill keeps painting on, as a program that never sets Redraw does.
void BM_ListFill(benchmark::State& state) {
  for (auto _ : state) {
    auto list = MakeList(static_cast<int>(state.range(0)), state.range(1) == 0);
    list->TerminateControl();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ListFill)->Args({100000, 0})->Args({100000, 1})->Unit(benchmark::kMillisecond);

void BM_ListOrder(benchmark::State& state) {
  auto list = MakeList(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    list->OrderType(mx::entry::Ascendent);
    list->Order();
    state.PauseTiming();
    list->OrderType(mx::entry::Descendent);
    list->Order();
    state.ResumeTiming();
  }
  list->TerminateControl();
}
BENCHMARK(BM_ListOrder)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
