// The GIF reader: block walk, frame cut-out and the frame decode.
#include <cstdint>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIGIFParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes(data, data + size);
  mx::image::API32bppDIB dib;
  mx::image::APIGIFParser parser;
  (void)parser.LoadStream(bytes, dib);
  return 0;
}
