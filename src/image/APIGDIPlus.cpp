// The system-codec binding, standing in with libjpeg-turbo where it is switched on.
#include "image/APIGDIPlus.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "image/API32bppDIB.h"
#include "image/APIJPGWriter.h"
#include "image/APIPNGWriter.h"

// Last: jpeglib.h defines TRUE and FALSE as macros, which would break the platform headers.
#include <jpeglib.h>

namespace mx::image {

namespace {

// -1: not decided yet; then 0 or 1. Decided from the environment on first use.
int g_available = -1;
int32_t g_nextToken = 1;

struct ErrorManager {
  jpeg_error_mgr pub;
  std::jmp_buf jump;
};
void onError(j_common_ptr info) { std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->jump, 1); }
void onMessage(j_common_ptr) {}

// Only trivially destructible locals live in this frame: libjpeg leaves it by longjmp on error.
bool decodeInto(const uint8_t* data, size_t size, API32bppDIB* dib) {
  jpeg_decompress_struct cinfo;
  ErrorManager err;
  cinfo.err = jpeg_std_error(&err.pub);
  err.pub.error_exit = onError;
  err.pub.output_message = onMessage;
  if (setjmp(err.jump)) {
    jpeg_destroy_decompress(&cinfo);
    dib->DestroyDIB();
    return false;
  }
  jpeg_create_decompress(&cinfo);
  jpeg_mem_src(&cinfo, data, static_cast<unsigned long>(size));
  jpeg_read_header(&cinfo, TRUE);
  // Four-channel JPEGs (Adobe CMYK) are decoded as CMYK and turned to colour here; everything
  // else comes out of the library as BGRA, the surface's own order.
  const bool cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
  cinfo.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_BGRA;
  jpeg_start_decompress(&cinfo);
  const int w = static_cast<int>(cinfo.output_width), h = static_cast<int>(cinfo.output_height);
  if (!dib->InitializeDIB(w, h)) {
    jpeg_destroy_decompress(&cinfo);
    return false;
  }
  uint8_t* bits = dib->BitsPointer();
  while (cinfo.output_scanline < cinfo.output_height) {
    // Picture row y goes to memory row h - 1 - y.
    JSAMPROW row = bits + static_cast<size_t>(h - 1 - static_cast<int>(cinfo.output_scanline)) * w * 4;
    jpeg_read_scanlines(&cinfo, &row, 1);
    if (cmyk) {
      // Adobe writes CMYK inverted: each stored value is already 255 - ink.
      for (int x = 0; x < w; ++x) {
        uint8_t* p = row + static_cast<size_t>(x) * 4;
        uint32_t c = p[0], m = p[1], y = p[2], k = p[3];
        p[0] = static_cast<uint8_t>(y * k / 255);
        p[1] = static_cast<uint8_t>(m * k / 255);
        p[2] = static_cast<uint8_t>(c * k / 255);
        p[3] = 255;
      }
    }
  }
  jpeg_finish_decompress(&cinfo);
  jpeg_destroy_decompress(&cinfo);
  return true;
}

}  // namespace

bool APIGDIPlus::isGDIplusOk() {
  if (g_available < 0) {
    const char* env = std::getenv("MX_GDIPLUS");
    g_available = env && std::strcmp(env, "1") == 0 ? 1 : 0;
  }
  return g_available == 1;
}

void APIGDIPlus::SetAvailable(bool value) { g_available = value ? 1 : 0; }

int32_t APIGDIPlus::StartSession() { return isGDIplusOk() ? g_nextToken++ : 0; }

bool APIGDIPlus::EndSession(int32_t token) { return token != 0 && isGDIplusOk(); }

bool APIGDIPlus::DecodeJPEG(const uint8_t* data, size_t size, API32bppDIB& outDIB) {
  outDIB.DestroyDIB();
  // SOI followed by a marker: anything else is not JPEG and not worth handing to the library.
  if (!data || size < 4 || data[0] != 0xFF || data[1] != 0xD8 || data[2] != 0xFF) return false;
  try {
    if (!decodeInto(data, size, &outDIB)) return false;
  } catch (...) {
    outDIB.DestroyDIB();
    return false;
  }
  outDIB.Alpha(AlphaNone);
  outDIB.SetImageType(imgPNG);
  return true;
}

bool APIGDIPlus::LoadPicture(const std::vector<uint8_t>& bytes, API32bppDIB& outDIB, int32_t start, int32_t length) {
  if (!isGDIplusOk()) return false;
  if (start < 0 || static_cast<size_t>(start) >= bytes.size()) return false;
  size_t size = bytes.size() - static_cast<size_t>(start);
  if (length > 0 && static_cast<size_t>(length) < size) size = static_cast<size_t>(length);
  return DecodeJPEG(bytes.data() + start, size, outDIB);
}

bool APIGDIPlus::SaveToPNG(const API32bppDIB& surface, const host::String& FileName,
                           std::vector<uint8_t>& outBytes) {
  if (!isGDIplusOk()) return false;
  return APIPNGWriter().SaveToPNG(surface, FileName, outBytes);
}

bool APIGDIPlus::SaveToJPG(const API32bppDIB& surface, const host::String& FileName,
                           std::vector<uint8_t>& outBytes, int32_t Quality, int32_t TransparentFillColor) {
  if (!isGDIplusOk()) return false;
  return APIJPGWriter().SaveToJPG(surface, FileName, outBytes, Quality, TransparentFillColor);
}

}  // namespace mx::image
