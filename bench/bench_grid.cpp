// Grid fills: AddItem of a million rows, memory per cell, and a fill from an SQLite query.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>
#include <string>

#include "grid/GridData.h"
#include "host/Recordset.h"

namespace {

using mx::grid::GridData;

constexpr int kCols = 10;

// "r<row>c<col>": 5 to 9 units, the short text of a typical listing.
std::u16string RowText(int row) {
  std::u16string line;
  std::string r = std::to_string(row);
  for (int c = 0; c < kCols; ++c) {
    if (c > 0) line += u'\t';
    line += u'r';
    for (char ch : r) line += static_cast<char16_t>(ch);
    line += u'c';
    line += static_cast<char16_t>(u'0' + c);
  }
  return line;
}

void MakeColumns(GridData& g) {
  for (int c = 0; c < kCols; ++c) g.AddColumn(u"Column");
}

void BM_AddItemMillionRows(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  std::vector<std::u16string> lines;
  lines.reserve(static_cast<size_t>(rows));
  for (int r = 0; r < rows; ++r) lines.push_back(RowText(r));
  for (auto _ : state) {
    auto g = std::make_unique<GridData>();
    MakeColumns(*g);
    g->BeginFill();
    for (const auto& line : lines) g->AddItem(line);
    g->EndFill(-1, 0, false);
    benchmark::DoNotOptimize(g->Rows());
    // Freeing the full grid is not part of the fill.
    state.PauseTiming();
    g.reset();
    state.ResumeTiming();
  }
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_AddItemMillionRows)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Bytes the heap grows by per cell, against the bytes of the text itself.
void BM_MemoryPerCell(benchmark::State& state) {
  const int rows = 200000;
  const int length = static_cast<int>(state.range(0));
  std::u16string cell(static_cast<size_t>(length), u'x');
  std::u16string line;
  for (int c = 0; c < kCols; ++c) line += (c ? u"\t" : u"") + cell;
  double perCell = 0;
  for (auto _ : state) {
    malloc_trim(0);
    size_t before = mallinfo2().uordblks;
    {
      GridData g;
      MakeColumns(g);
      for (int r = 0; r < rows; ++r) g.AddItem(line);
      size_t after = mallinfo2().uordblks;
      perCell = static_cast<double>(after - before) / (static_cast<double>(rows) * kCols);
    }
  }
  state.counters["bytes/cell"] = perCell;
  state.counters["text bytes"] = length * 2.0;
  state.counters["fixed cell record"] = static_cast<double>(sizeof(mx::grid::GridCell));
}
BENCHMARK(BM_MemoryPerCell)->Arg(4)->Arg(11)->Arg(12)->Arg(24)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_FillFromSqlite(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  auto db = std::make_shared<mx::host::Connection>();
  db->Open(u":memory:");
  db->Execute(
      u"CREATE TABLE t(a INTEGER, b TEXT, c REAL, d DATE, e BOOLEAN);"
      u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT " +
      std::u16string(mx::host::FromUtf8(std::to_string(rows))) +
      u") INSERT INTO t SELECT i, 'name ' || i, i * 0.25, date('2020-01-01', '+' || (i % 1000) || ' days'), i % 2 "
      u"FROM n;");
  for (auto _ : state) {
    auto rs = mx::host::Recordset::Create();
    rs->Open(u"SELECT * FROM t", db);
    GridData g;
    g.FillGridFromQuery(mx::host::Variant(rs), true);
    benchmark::DoNotOptimize(g.Rows());
  }
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_FillFromSqlite)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
