// Grid sort and filter over a million rows, each beside std::sort (or a plain loop) over the
// same keys computed beforehand: the cost of the grid's own work against the bare algorithm.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "grid/GridData.h"
#include "grid/GridNumeric.h"
#include "host/Strings.h"

namespace {

using mx::grid::GridData;

constexpr int kRows = 1000000;

// Two columns: a name of 6 to 12 letters and an amount with the regional decimal comma, both in
// random order with a fixed seed.
struct Data {
  std::vector<std::u16string> names;
  std::vector<std::u16string> amounts;
  std::vector<std::u16string> lines;
};

const Data& TheData() {
  static const Data data = [] {
    Data d;
    std::mt19937 rng(12345);
    std::uniform_int_distribution<int> letter(0, 25), length(6, 12), cents(0, 9999999);
    for (int r = 0; r < kRows; ++r) {
      std::u16string name;
      const int n = length(rng);
      for (int i = 0; i < n; ++i) name += static_cast<char16_t>((i == 0 ? u'A' : u'a') + letter(rng));
      const int c = cents(rng);
      std::string a = std::to_string(c / 100) + "," + std::to_string(100 + c % 100).substr(1);
      d.names.push_back(name);
      d.amounts.emplace_back(a.begin(), a.end());
      d.lines.push_back(name + u'\t' + d.amounts.back());
    }
    return d;
  }();
  return data;
}

std::unique_ptr<GridData> MakeGrid() {
  auto g = std::make_unique<GridData>();
  g->AddColumn(u"Name");
  g->AddColumn(u"Amount", 500.0f, mx::grid::AlignToRightCenter, mx::grid::TypeNumeric);
  g->BeginFill();
  for (const auto& line : TheData().lines) g->AddItem(line);
  g->EndFill(-1, 0, false);
  return g;
}

GridData& SharedGrid() {
  static std::unique_ptr<GridData> g = MakeGrid();
  return *g;
}

// Each sort starts from the fill order: Sort_Normal puts rowOrder back to identity.
void BM_GridSortNumeric(benchmark::State& state) {
  GridData& g = SharedGrid();
  for (auto _ : state) {
    state.PauseTiming();
    g.Sort(1, mx::grid::Sort_Normal);
    state.ResumeTiming();
    g.Sort(1, mx::grid::Sort_Ascending);
  }
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(kRows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_GridSortNumeric)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_GridSortText(benchmark::State& state) {
  GridData& g = SharedGrid();
  for (auto _ : state) {
    state.PauseTiming();
    g.Sort(0, mx::grid::Sort_Normal);
    state.ResumeTiming();
    g.Sort(0, mx::grid::Sort_Ascending);
  }
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(kRows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_GridSortText)->Unit(benchmark::kMillisecond)->Iterations(5);

// The references: the keys are made outside the timing, std::sort sorts (key, row) pairs.
void BM_StdSortNumericKeys(benchmark::State& state) {
  std::vector<std::pair<double, int>> keys;
  for (int r = 0; r < kRows; ++r) keys.emplace_back(mx::grid::GridNumericValue(TheData().amounts[r]), r);
  for (auto _ : state) {
    state.PauseTiming();
    auto work = keys;
    state.ResumeTiming();
    std::sort(work.begin(), work.end());
    benchmark::DoNotOptimize(work.data());
  }
}
BENCHMARK(BM_StdSortNumericKeys)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_StdSortTextKeys(benchmark::State& state) {
  std::vector<std::pair<std::u16string, int>> keys;
  for (int r = 0; r < kRows; ++r) keys.emplace_back(mx::host::UCase(TheData().names[r]), r);
  for (auto _ : state) {
    state.PauseTiming();
    auto work = keys;
    state.ResumeTiming();
    std::sort(work.begin(), work.end());
    benchmark::DoNotOptimize(work.data());
  }
}
BENCHMARK(BM_StdSortTextKeys)->Unit(benchmark::kMillisecond)->Iterations(5);

// Filtering: rows whose name begins with "B", without case, over the whole grid.
void BM_GridFilterBeginsWith(benchmark::State& state) {
  GridData& g = SharedGrid();
  for (auto _ : state) g.FilterOn(u"b", 0, mx::grid::Search_BeginsWith);
  g.FilterOff();
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(kRows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_GridFilterBeginsWith)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_GridFilterLike(benchmark::State& state) {
  GridData& g = SharedGrid();
  for (auto _ : state) g.FilterOn(u"ab", 0, mx::grid::Search_Like);
  g.FilterOff();
}
BENCHMARK(BM_GridFilterLike)->Unit(benchmark::kMillisecond)->Iterations(5);

// The reference: the same test over upper-cased keys made beforehand, writing a flag per row.
void BM_PlainLoopBeginsWithKeys(benchmark::State& state) {
  std::vector<std::u16string> keys;
  for (int r = 0; r < kRows; ++r) keys.push_back(mx::host::UCase(TheData().names[r]));
  std::vector<char> visible(kRows);
  for (auto _ : state) {
    for (int r = 0; r < kRows; ++r) visible[r] = !keys[r].empty() && keys[r][0] == u'B';
    benchmark::DoNotOptimize(visible.data());
  }
}
BENCHMARK(BM_PlainLoopBeginsWithKeys)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
