// The reference for the image-list compressor: zlib with its Huffman-only strategy (no string
// matching, the same kind of coding as APIHuffman) over the same strip of 1000 icons.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstring>
#include <string>
#include <vector>

#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace {

using namespace mx;

// The strip's bytes, built as bench_imagelist.cpp builds its icons.
const std::vector<uint8_t>& StripBytes() {
  static const std::vector<uint8_t> bytes = [] {
    auto lists = imagelist::APIImageLists::Create();
    auto list = lists->Add(32, 32, u"icons", 1000);
    image::API32bppDIB pic;
    pic.InitializeDIB(32, 32);
    for (int i = 0; i < 1000; ++i) {
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
    const auto& strip = list->Images()->Sheet();
    const uint8_t* p = strip.BitsPointer();
    return std::vector<uint8_t>(p, p + static_cast<size_t>(strip.Width()) * strip.Height() * 4);
  }();
  return bytes;
}

std::vector<uint8_t> HuffmanOnly(const std::vector<uint8_t>& in) {
  std::vector<uint8_t> out(compressBound(static_cast<uLong>(in.size())));
  z_stream z{};
  deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15, 8, Z_HUFFMAN_ONLY);
  z.next_in = const_cast<Bytef*>(in.data());
  z.avail_in = static_cast<uInt>(in.size());
  z.next_out = out.data();
  z.avail_out = static_cast<uInt>(out.size());
  deflate(&z, Z_FINISH);
  out.resize(z.total_out);
  deflateEnd(&z);
  return out;
}

void BM_ZlibHuffmanOnlyCompress1000Icons(benchmark::State& state) {
  const auto& in = StripBytes();
  std::vector<uint8_t> out;
  for (auto _ : state) {
    out = HuffmanOnly(in);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(in.size()));
  state.counters["ratio"] = static_cast<double>(out.size()) / static_cast<double>(in.size());
}
BENCHMARK(BM_ZlibHuffmanOnlyCompress1000Icons)->Unit(benchmark::kMillisecond);

void BM_ZlibHuffmanOnlyDecompress1000Icons(benchmark::State& state) {
  const auto& in = StripBytes();
  const std::vector<uint8_t> packed = HuffmanOnly(in);
  std::vector<uint8_t> out(in.size());
  for (auto _ : state) {
    uLongf n = static_cast<uLongf>(out.size());
    if (uncompress(out.data(), &n, packed.data(), static_cast<uLong>(packed.size())) != Z_OK)
      state.SkipWithError("zlib");
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(in.size()));
}
BENCHMARK(BM_ZlibHuffmanOnlyDecompress1000Icons)->Unit(benchmark::kMillisecond);

}  // namespace
