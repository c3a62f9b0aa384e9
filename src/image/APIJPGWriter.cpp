// JPEG writing through libjpeg-turbo.
#include "image/APIJPGWriter.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "image/API32bppDIB.h"
#include "platform/SysColors.h"

// Last: jpeglib.h defines TRUE and FALSE as macros, which would break the platform headers.
#include <jpeglib.h>

namespace mx::image {

namespace {

// libjpeg reports fatal errors through a callback that must not return: it jumps back to the
// caller. Only plain data lives between setjmp and longjmp below, so no destructor is skipped.
struct ErrorManager {
  jpeg_error_mgr pub;
  std::jmp_buf jump;
};

void onError(j_common_ptr info) { std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->jump, 1); }
void onMessage(j_common_ptr) {}

uint32_t fillOf(int32_t color) {
  uint32_t c = static_cast<uint32_t>(color);
  if (color >= 0) return c & 0xFFFFFF;
  if ((c & 0xFFFFFF00u) == 0x80000000u) return platform::GetSysColor(static_cast<int>(c & 0xFF)) & 0xFFFFFF;
  return 0xFFFFFF;
}

// Compresses top-down RGB rows; mem/memSize receive a malloc'd buffer. Returns false on a
// libjpeg error.
bool compress(const uint8_t* rgb, int width, int height, int quality, unsigned char** mem, unsigned long* memSize) {
  jpeg_compress_struct cinfo;
  ErrorManager err;
  cinfo.err = jpeg_std_error(&err.pub);
  err.pub.error_exit = onError;
  err.pub.output_message = onMessage;
  if (setjmp(err.jump)) {
    jpeg_destroy_compress(&cinfo);
    return false;
  }
  jpeg_create_compress(&cinfo);
  jpeg_mem_dest(&cinfo, mem, memSize);
  cinfo.image_width = static_cast<JDIMENSION>(width);
  cinfo.image_height = static_cast<JDIMENSION>(height);
  cinfo.input_components = 3;
  cinfo.in_color_space = JCS_RGB;
  jpeg_set_defaults(&cinfo);
  jpeg_set_quality(&cinfo, quality, TRUE);
  cinfo.optimize_coding = TRUE;
  // 96 dpi, as the screen the pictures come from.
  cinfo.density_unit = 1;
  cinfo.X_density = 96;
  cinfo.Y_density = 96;
  jpeg_start_compress(&cinfo, TRUE);
  const size_t stride = static_cast<size_t>(width) * 3;
  while (cinfo.next_scanline < cinfo.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(rgb + stride * cinfo.next_scanline);
    jpeg_write_scanlines(&cinfo, &row, 1);
  }
  jpeg_finish_compress(&cinfo);
  jpeg_destroy_compress(&cinfo);
  return true;
}

}  // namespace

bool APIJPGWriter::SaveToJPG(const API32bppDIB& surface, const host::String& FileName,
                             std::vector<uint8_t>& outBytes, int32_t Quality, int32_t TransparentFillColor) {
  if (!surface.Handle()) return false;
  std::FILE* file = nullptr;
  std::string path;
  if (!FileName.empty()) {
    path = host::ToUtf8(FileName);
    file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
  }
  const int w = surface.Width(), h = surface.Height();
  const uint32_t fill = fillOf(TransparentFillColor);
  const uint32_t fr = fill & 0xFF, fg = (fill >> 8) & 0xFF, fb = (fill >> 16) & 0xFF;
  const bool opaque = surface.Alpha() == AlphaNone;
  const int quality = Quality < 1 ? 1 : Quality > 100 ? 100 : Quality;

  bool ok = false;
  std::vector<uint8_t> out;
  try {
    std::vector<uint8_t> rgb(static_cast<size_t>(w) * h * 3);
    for (int y = 0; y < h; ++y) {
      // Picture row y sits at memory row h - 1 - y.
      const uint8_t* s = surface.BitsPointer() + static_cast<size_t>(h - 1 - y) * w * 4;
      uint8_t* d = rgb.data() + static_cast<size_t>(y) * w * 3;
      for (int x = 0; x < w; ++x, s += 4, d += 3) {
        // A surface that says it is opaque is taken at its word, whatever its alpha bytes hold.
        uint32_t inv = opaque ? 0 : 255u - s[3];
        d[0] = static_cast<uint8_t>(s[2] + fr * inv / 255);
        d[1] = static_cast<uint8_t>(s[1] + fg * inv / 255);
        d[2] = static_cast<uint8_t>(s[0] + fb * inv / 255);
      }
    }
    unsigned char* mem = nullptr;
    unsigned long memSize = 0;
    ok = compress(rgb.data(), w, h, quality, &mem, &memSize);
    if (ok && mem) out.assign(mem, mem + memSize);
    std::free(mem);
    ok = ok && !out.empty();
  } catch (...) {
    ok = false;
  }
  if (!file) {
    if (ok) outBytes = std::move(out);
    return ok;
  }
  if (ok) ok = std::fwrite(out.data(), 1, out.size(), file) == out.size();
  if (std::fclose(file) != 0) ok = false;
  if (!ok) std::remove(path.c_str());
  return ok;
}

}  // namespace mx::image
