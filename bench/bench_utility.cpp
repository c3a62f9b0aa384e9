// Appending one character at a time must cost linear time overall: a million appends should take
// about a thousand times as long as a thousand, not a million times.
#include <benchmark/benchmark.h>

#include "utility/APIStringBuilder.h"
#include "utility/MX.h"

namespace {

void BM_StringBuilderAppendChar(benchmark::State& state) {
  const auto count = static_cast<size_t>(state.range(0));
  for (auto _ : state) {
    mx::utility::APIStringBuilder builder;
    for (size_t i = 0; i < count; ++i) builder.Append(static_cast<char16_t>(u'a' + i % 26));
    benchmark::DoNotOptimize(builder.ToString());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_StringBuilderAppendChar)->RangeMultiplier(10)->Range(1000, 1000000)->Complexity(benchmark::oN);

void BM_StringBuilderAppendWords(benchmark::State& state) {
  const mx::host::String word = u"palavra ";
  for (auto _ : state) {
    mx::utility::APIStringBuilder builder;
    for (int64_t i = 0; i < state.range(0); ++i) builder.Append(word);
    benchmark::DoNotOptimize(builder.ToString());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(BM_StringBuilderAppendWords)->Arg(125000);

void BM_ReturnNumbersOnly(benchmark::State& state) {
  mx::host::String text;
  for (int i = 0; i < 100000; ++i) text += u"a1-b2 ";
  const mx::utility::MX mx;
  for (auto _ : state) benchmark::DoNotOptimize(mx.ReturnNumbersOnly(text));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size() * 2));
}
BENCHMARK(BM_ReturnNumbersOnly);

}  // namespace


