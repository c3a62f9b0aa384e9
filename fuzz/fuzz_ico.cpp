// The ICO and CUR reader, asked for a few sizes and depths so that different entries win the
// ranking and get decoded.
#include <cstdint>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIICOParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes(data, data + size);
  static const int32_t kAsks[][3] = {{0, 0, 32}, {16, 16, 8}, {48, 0, 4}, {256, 256, 1}};
  for (const auto& ask : kAsks) {
    mx::image::API32bppDIB dib;
    mx::image::APIICOParser parser;
    (void)parser.LoadStream(bytes, dib, ask[0], ask[1], ask[2]);
  }
  return 0;
}
