#pragma once
// Pictures with known pixels for the image-list tests.
#include <cstdint>
#include <cstring>
#include <memory>

#include "image/API32bppDIB.h"

namespace mx::imagelist::test {

// A surface filled with one premultiplied BGRA value (0xAARRGGBB).
inline std::unique_ptr<image::API32bppDIB> Solid(int w, int h, uint32_t argb) {
  auto dib = std::make_unique<image::API32bppDIB>();
  if (!dib->InitializeDIB(w, h)) return nullptr;
  auto* px = reinterpret_cast<uint32_t*>(dib->BitsPointer());
  for (int i = 0; i < w * h; ++i) px[i] = argb;
  dib->SetImageType(image::imgBmpPARGB);
  return dib;
}

// The pixel at picture coordinates (y from the top) as 0xAARRGGBB.
inline uint32_t PixelAt(const image::API32bppDIB& dib, int x, int y) {
  uint32_t v;
  std::memcpy(&v, dib.BitsPointer() + (static_cast<size_t>(dib.Height() - 1 - y) * dib.Width() + x) * 4, 4);
  return v;
}

inline void SetPixelAt(image::API32bppDIB& dib, int x, int y, uint32_t argb) {
  std::memcpy(dib.BitsPointer() + (static_cast<size_t>(dib.Height() - 1 - y) * dib.Width() + x) * 4, &argb, 4);
}

}  // namespace mx::imagelist::test
