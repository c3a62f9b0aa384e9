// The reader's own DEFLATE decoder on raw streams, in both length modes.
#include <cstdint>
#include <vector>

#include "image/Inflate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  // The first byte picks the mode and a bound for the output, as a PNG header would.
  const bool deflate64 = data[0] & 1;
  std::vector<uint8_t> out(static_cast<size_t>(data[0]) * 64 + 1);
  (void)mx::image::InflateRaw({data + 1, size - 1}, out, deflate64);
  return 0;
}
