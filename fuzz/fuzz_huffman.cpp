// The image list's byte compressor: decoding damaged blobs of both source kinds, and compressing
// the input itself, which must decode back to the same bytes.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "image/API32bppDIB.h"
#include "imagelist/APIHuffman.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::span<const uint8_t> blob(data, size);
  mx::imagelist::APIHuffman huffman;
  {
    std::vector<uint8_t> out;
    (void)huffman.Decompress(blob, 0, out, nullptr);
  }
  {
    std::vector<uint8_t> out;
    mx::image::API32bppDIB surface;
    (void)huffman.Decompress(blob, 0, out, &surface);
  }

  std::vector<uint8_t> packed, unpacked;
  if (!huffman.Compress(nullptr, blob, packed) || !huffman.Decompress(packed, 0, unpacked, nullptr) ||
      unpacked.size() != size || !std::equal(unpacked.begin(), unpacked.end(), data))
    std::abort();
  return 0;
}
