// The host picture decoder: StdPicture bytes -> surface -> platform bitmap or icon.
#include "image/PictureBinding.h"

#include <cstring>

#include "host/StdPicture.h"
#include "image/API32bppDIB.h"
#include "image/APIGDIPlus.h"
#include "platform/Gdi.h"

namespace mx::image {

namespace {

using namespace mx::platform;

// A bitmap with the surface's pixels, top row first as CreateBitmap wants them. The colours stay
// premultiplied: the surface's own handle readers recognise that form and keep it exact.
HBITMAP bitmapOf(const API32bppDIB& dib) {
  const int32_t w = dib.Width(), h = dib.Height();
  std::vector<uint8_t> rows(static_cast<size_t>(w) * h * 4);
  for (int32_t y = 0; y < h; ++y)
    std::memcpy(rows.data() + static_cast<size_t>(y) * w * 4, dib.BitsPointer() + static_cast<size_t>(h - 1 - y) * w * 4,
                static_cast<size_t>(w) * 4);
  return CreateBitmap(w, h, 1, 32, rows.data());
}

// An icon whose colour bitmap has straight alpha and whose mask marks the fully transparent
// pixels, which is how platform icons carry transparency.
HICON iconOf(const API32bppDIB& dib, bool isIcon) {
  const int32_t w = dib.Width(), h = dib.Height();
  const size_t n = static_cast<size_t>(w) * h;
  std::vector<uint8_t> color(n * 4), mask(n * 4);
  for (int32_t y = 0; y < h; ++y) {
    const uint8_t* s = dib.BitsPointer() + static_cast<size_t>(h - 1 - y) * w * 4;
    uint8_t* c = color.data() + static_cast<size_t>(y) * w * 4;
    uint8_t* m = mask.data() + static_cast<size_t>(y) * w * 4;
    for (int32_t x = 0; x < w; ++x, s += 4, c += 4, m += 4) {
      uint32_t a = s[3];
      for (int k = 0; k < 3; ++k) c[k] = a == 0 || a == 255 ? s[k] : static_cast<uint8_t>(s[k] * 255 / a);
      c[3] = static_cast<uint8_t>(a);
      // White mask: the screen shows through.
      std::memset(m, a == 0 ? 0xFF : 0x00, 3);
      m[3] = 0;
    }
  }
  ICONINFO info{};
  info.fIcon = isIcon ? TRUE : FALSE;
  info.hbmColor = CreateBitmap(w, h, 1, 32, color.data());
  info.hbmMask = CreateBitmap(w, h, 1, 32, mask.data());
  HICON icon = info.hbmColor && info.hbmMask ? CreateIconIndirect(&info) : 0;
  if (info.hbmColor) DeleteObject(info.hbmColor);
  if (info.hbmMask) DeleteObject(info.hbmMask);
  return icon;
}

uint32_t decode(const host::StdPicture& picture) {
  try {
    const host::ByteArray& bytes = picture.Bytes();
    API32bppDIB dib;
    // The host reads JPEG itself, whatever the state of the system-codec binding.
    bool ok = picture.Format() == host::PictureFormat::Jpeg
                  ? APIGDIPlus::DecodeJPEG(bytes.data(), bytes.size(), dib)
                  : dib.LoadPicture_Stream(bytes);
    if (!ok || !dib.Handle()) return 0;
    if (picture.Type() == host::vbPicTypeIcon)
      return iconOf(dib, picture.Format() != host::PictureFormat::Cur);
    if (picture.Type() == host::vbPicTypeBitmap) return bitmapOf(dib);
  } catch (...) {
  }
  return 0;
}

void release(uint32_t handle, int16_t type) {
  if (!handle) return;
  if (type == host::vbPicTypeIcon) {
    DestroyIcon(handle);
  } else {
    DeleteObject(handle);
  }
}

}  // namespace

void InstallPictureDecoder() { host::SetPictureDecoder(host::PictureDecoder{decode, release}); }

void UninstallPictureDecoder() { host::SetPictureDecoder(host::PictureDecoder{}); }

}  // namespace mx::image
