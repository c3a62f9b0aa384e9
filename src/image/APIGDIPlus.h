#pragma once
// The system-codec binding: the first choice of the surface for loading, and for saving PNG and
// JPEG, where such a codec exists. This build has none by default, so isGDIplusOk answers False
// and the library's own readers and writers do the work. A process may switch the binding on
// (SetAvailable, or MX_GDIPLUS=1 in the environment); it then stands in for the system codec
// with the formats the own chain does not read: JPEG through libjpeg-turbo. Everything it loads
// reports ImageType 10, as the system codec's pictures do.
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::image {

class API32bppDIB;

class APIGDIPlus {
 public:
  // Whether the binding may be used in this process.
  [[nodiscard]] static bool isGDIplusOk();
  // Switches the binding on or off for the process (tests, or a host that wants JPEG input).
  static void SetAvailable(bool value);

  // A session token (non-zero) while the binding is available, else 0.
  [[nodiscard]] static int32_t StartSession();
  static bool EndSession(int32_t token);

  // Loads a picture the own readers did not take: the file's bytes are in `bytes` (the range
  // start .. start + length). False when unavailable or the data is no picture it reads.
  bool LoadPicture(const std::vector<uint8_t>& bytes, API32bppDIB& outDIB, int32_t start = 0, int32_t length = 0);

  // The savers fail at once while unavailable, so the surface's dispatch goes on to its own
  // writers. FileName empty: the file goes to outBytes.
  bool SaveToPNG(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes);
  bool SaveToJPG(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes,
                 int32_t Quality = 90, int32_t TransparentFillColor = -1);

  // Decodes JPEG data into the surface (premultiplied, opaque). Used by LoadPicture; open to
  // callers that want JPEG regardless of the binding's state.
  static bool DecodeJPEG(const uint8_t* data, size_t size, API32bppDIB& outDIB);
};

}  // namespace mx::image
