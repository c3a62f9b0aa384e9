// References for the grid's fills: the same work done with plain containers and the SQLite C
// interface, with no grid. Their figures are the floor a fill could reach; the table of
// bench/table.py sets the grid's figures beside them.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kCols = 10;

// The same rows as bench_grid.cpp's AddItem figure: "r<row>c<col>" cells joined by tabs.
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

// Each line cut at its tabs into a vector of strings per row.
void BM_AddItemMillionRows_reference(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  std::vector<std::u16string> lines;
  lines.reserve(static_cast<size_t>(rows));
  for (int r = 0; r < rows; ++r) lines.push_back(RowText(r));
  for (auto _ : state) {
    auto table = std::make_unique<std::vector<std::vector<std::u16string>>>();
    for (const auto& line : lines) {
      auto& cells = table->emplace_back();
      cells.reserve(kCols);
      size_t start = 0;
      for (;;) {
        size_t tab = line.find(u'\t', start);
        cells.emplace_back(line, start, tab == std::u16string::npos ? std::u16string::npos : tab - start);
        if (tab == std::u16string::npos) break;
        start = tab + 1;
      }
    }
    benchmark::DoNotOptimize(table->size());
    state.PauseTiming();
    table.reset();
    state.ResumeTiming();
  }
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_AddItemMillionRows_reference)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

// The query of bench_grid.cpp's fill read through the C interface, every value as UTF-16 text.
void BM_FillFromSqlite_reference(benchmark::State& state) {
  const int rows = static_cast<int>(state.range(0));
  sqlite3* db = nullptr;
  sqlite3_open(":memory:", &db);
  const std::string make =
      "CREATE TABLE t(a INTEGER, b TEXT, c REAL, d DATE, e BOOLEAN);"
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT " +
      std::to_string(rows) +
      ") INSERT INTO t SELECT i, 'name ' || i, i * 0.25, date('2020-01-01', '+' || (i % 1000) || ' days'), i % 2 "
      "FROM n;";
  sqlite3_exec(db, make.c_str(), nullptr, nullptr, nullptr);
  for (auto _ : state) {
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT * FROM t", -1, &st, nullptr);
    std::vector<std::vector<std::u16string>> table;
    const int cols = sqlite3_column_count(st);
    while (sqlite3_step(st) == SQLITE_ROW) {
      auto& cells = table.emplace_back();
      cells.reserve(static_cast<size_t>(cols));
      for (int c = 0; c < cols; ++c) {
        auto* text = static_cast<const char16_t*>(sqlite3_column_text16(st, c));
        cells.emplace_back(text ? text : u"");
      }
    }
    sqlite3_finalize(st);
    benchmark::DoNotOptimize(table.size());
  }
  sqlite3_close(db);
  state.counters["rows/s"] = benchmark::Counter(static_cast<double>(rows) * state.iterations(),
                                                benchmark::Counter::kIsRate);
}
BENCHMARK(BM_FillFromSqlite_reference)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
