// Image lists: the compressor and the list blob on 1000 icons of 32 x 32 (one full list).
#include <benchmark/benchmark.h>

#include <cstring>

#include "image/API32bppDIB.h"
#include "imagelist/APIHuffman.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace {

using namespace mx;

// Icon-like pictures: a disc with a few shades on a transparent ground, different per index.
std::shared_ptr<imagelist::APIImageLists> MakeIcons(int count) {
  auto lists = imagelist::APIImageLists::Create();
  auto list = lists->Add(32, 32, u"icons", count);
  image::API32bppDIB pic;
  pic.InitializeDIB(32, 32);
  for (int i = 0; i < count; ++i) {
    auto* px = reinterpret_cast<uint32_t*>(pic.BitsPointer());
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x) {
        int dx = x - 16, dy = y - 16, d = dx * dx + dy * dy;
        uint32_t shade = static_cast<uint32_t>((i * 37 + (d >> 5) * 29) & 0xFF);
        px[y * 32 + x] =
            d < 196 ? 0xFF000000u | shade << 16 | (shade ^ 0x5A) << 8 | static_cast<uint32_t>(i & 0xFF) : 0;
      }
    list->Images()->AddImage_fromDIB(pic, host::Variant::Missing(), u"icon" + host::FromUtf8(std::to_string(i)),
                                     u"tag");
  }
  return lists;
}

const std::shared_ptr<imagelist::APIImageLists>& Icons() {
  // Thread-local, so that the lists go before the thread's platform objects they hold handles of.
  thread_local auto lists = MakeIcons(1000);
  return lists;
}

void BM_HuffmanCompress1000Icons(benchmark::State& state) {
  const auto& strip = Icons()->Item(1)->Images()->Sheet();
  std::vector<uint8_t> blob;
  for (auto _ : state) {
    imagelist::APIHuffman().Compress(&strip, {}, blob);
    benchmark::DoNotOptimize(blob.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(strip.Width()) * strip.Height() * 4);
  state.counters["ratio"] =
      static_cast<double>(blob.size()) / (static_cast<double>(strip.Width()) * strip.Height() * 4);
}
BENCHMARK(BM_HuffmanCompress1000Icons)->Unit(benchmark::kMillisecond);

void BM_HuffmanDecompress1000Icons(benchmark::State& state) {
  const auto& strip = Icons()->Item(1)->Images()->Sheet();
  std::vector<uint8_t> blob, none;
  imagelist::APIHuffman().Compress(&strip, {}, blob);
  image::API32bppDIB out;
  for (auto _ : state) {
    imagelist::APIHuffman().Decompress(blob, 0, none, &out);
    benchmark::DoNotOptimize(out.BitsPointer());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(strip.Width()) * strip.Height() * 4);
}
BENCHMARK(BM_HuffmanDecompress1000Icons)->Unit(benchmark::kMillisecond);

void BM_LivlExport1000Icons(benchmark::State& state) {
  std::vector<uint8_t> blob;
  for (auto _ : state) {
    Icons()->ExportImageList(1, blob);
    benchmark::DoNotOptimize(blob.data());
  }
  state.counters["bytes"] = static_cast<double>(blob.size());
}
BENCHMARK(BM_LivlExport1000Icons)->Unit(benchmark::kMillisecond);

void BM_LivlImport1000Icons(benchmark::State& state) {
  std::vector<uint8_t> blob;
  Icons()->ExportImageList(1, blob);
  auto lists = imagelist::APIImageLists::Create();
  for (auto _ : state) {
    host::String key;
    auto list = lists->ImportImageList(blob, key);
    benchmark::DoNotOptimize(list->Images()->Sheet().BitsPointer());
    state.PauseTiming();
    lists->Clear();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_LivlImport1000Icons)->Unit(benchmark::kMillisecond);

// A delayed import reads only the names; the picture waits for first use.
void BM_LivlImportDelayed1000Icons(benchmark::State& state) {
  Icons()->Item(1)->Images()->DelayLoaded(true);
  std::vector<uint8_t> blob;
  Icons()->ExportImageList(1, blob);
  Icons()->Item(1)->Images()->DelayLoaded(false);
  auto lists = imagelist::APIImageLists::Create();
  for (auto _ : state) {
    host::String key;
    benchmark::DoNotOptimize(lists->ImportImageList(blob, key).get());
    state.PauseTiming();
    lists->Clear();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_LivlImportDelayed1000Icons)->Unit(benchmark::kMillisecond);

}  // namespace
