// Region data from outside (ExtCreateRegion's RGNDATA), then the region algebra on the result.
#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/Gdi.h"

using namespace mx::platform;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  // The declared size and count come from the input, so they may lie about the bytes given.
  std::vector<uint8_t> buffer(size - 1 + sizeof(RGNDATAHEADER));
  std::memcpy(buffer.data(), data + 1, size - 1);
  DWORD declared = static_cast<DWORD>(size - 1);
  HRGN a = ExtCreateRegion(nullptr, declared, reinterpret_cast<const RGNDATA*>(buffer.data()));
  if (!a) return 0;
  HRGN b = CreateRoundRectRgn(-5, -5, 40 + data[0], 30, 12, 9);
  HRGN out = CreateRectRgn(0, 0, 0, 0);
  CombineRgn(out, a, b, 1 + data[0] % 5);
  RECT box;
  GetRgnBox(out, &box);
  (void)PtInRegion(out, box.left, box.top);
  std::vector<uint8_t> back(GetRegionData(out, 0, nullptr));
  if (!back.empty()) GetRegionData(out, static_cast<DWORD>(back.size()), reinterpret_cast<RGNDATA*>(back.data()));
  DeleteObject(a);
  DeleteObject(b);
  DeleteObject(out);
  return 0;
}
