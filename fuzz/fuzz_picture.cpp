// The surface's load chain: every reader it dispatches to by the leading bytes.
#include <cstdint>
#include <vector>

#include "image/API32bppDIB.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes(data, data + size);
  mx::image::API32bppDIB dib;
  (void)dib.LoadPicture_Stream(bytes);
  return 0;
}
