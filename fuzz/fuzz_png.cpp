// The PNG reader, with and without the system zlib (chosen by the parity of the size, so that
// whole PNG files stay valid seeds).
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIPNGParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size & 1)
    setenv("MX_NO_ZLIB", "1", 1);
  else
    unsetenv("MX_NO_ZLIB");
  std::vector<uint8_t> bytes(data, data + size);
  mx::image::API32bppDIB dib;
  mx::image::APIPNGParser parser;
  (void)parser.LoadStream(bytes, dib);
  return 0;
}
