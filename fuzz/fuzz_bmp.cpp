// The BMP reader: a whole file, and the same bytes as a packed DIB (the clipboard's form, and
// the decoder the icon reader shares). A picture that loads must also save and load back.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes(data, data + size);
  mx::image::APIBMPParser parser;
  {
    mx::image::API32bppDIB dib;
    if (parser.LoadStream(bytes, dib)) {
      std::vector<uint8_t> saved;
      mx::image::API32bppDIB back;
      // Our own output of a picture we read must always be readable again.
      if (!parser.SaveAsBMP(dib, {}, saved) || !parser.LoadStream(saved, back) || back.Width() != dib.Width() ||
          back.Height() != dib.Height())
        std::abort();
    }
  }
  // Skipping the 14-byte file header turns a BMP seed into a packed DIB.
  if (size > 14) {
    mx::image::API32bppDIB dib;
    (void)parser.LoadPackedDIB(data + 14, size - 14, dib);
  }
  mx::image::API32bppDIB dib;
  (void)parser.LoadPackedDIB(data, size, dib);
  return 0;
}
