#pragma once
// Golden pictures: a rendering is compared with a stored PNG under tests/golden/<layer>/, pixel
// for pixel. UPDATE_GOLDEN=1 writes the stored picture anew; a mismatch leaves the actual
// picture and a difference mask (red where pixels differ) beside the stored one.
// libpng reads and writes them here, in the tests only.
#include <gtest/gtest.h>
#include <png.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace mx::test {

inline bool WritePngFile(const std::string& path, int w, int h, const std::vector<uint32_t>& px) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  img.width = static_cast<png_uint_32>(w);
  img.height = static_cast<png_uint_32>(h);
  img.format = PNG_FORMAT_BGRA;
  return png_image_write_to_file(&img, path.c_str(), 0, px.data(), w * 4, nullptr) != 0;
}

inline bool ReadPngFile(const std::string& path, int& w, int& h, std::vector<uint32_t>& px) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&img, path.c_str())) return false;
  img.format = PNG_FORMAT_BGRA;
  w = static_cast<int>(img.width);
  h = static_cast<int>(img.height);
  px.assign(static_cast<size_t>(w) * h, 0);
  return png_image_finish_read(&img, nullptr, px.data(), w * 4, nullptr) != 0;
}

// `pixels` are top-down 0xAARRGGBB values. With `opaque` the alpha byte is set to 255 before
// the comparison: GDI-style drawing leaves alpha at 0, and stored pictures must be viewable.
inline void ExpectGolden(const std::string& layer, const std::string& name, int w, int h,
                         std::vector<uint32_t> pixels, bool opaque = true) {
  if (opaque)
    for (uint32_t& p : pixels) p |= 0xFF000000;
  const std::string base = std::string(MX_GOLDEN_DIR) + "/" + layer + "/" + name;
  const std::string path = base + ".png";
  if (std::getenv("UPDATE_GOLDEN")) {
    ASSERT_TRUE(WritePngFile(path, w, h, pixels)) << "cannot write " << path;
    return;
  }
  int gw = 0, gh = 0;
  std::vector<uint32_t> expected;
  ASSERT_TRUE(ReadPngFile(path, gw, gh, expected)) << "missing golden " << path;
  ASSERT_EQ(gw, w) << path;
  ASSERT_EQ(gh, h) << path;
  if (expected == pixels) return;
  std::vector<uint32_t> diff(pixels.size());
  size_t bad = 0;
  for (size_t i = 0; i < pixels.size(); ++i) {
    diff[i] = expected[i] == pixels[i] ? 0xFFFFFFFF : 0xFFFF0000;
    bad += expected[i] != pixels[i];
  }
  WritePngFile(base + ".actual.png", w, h, pixels);
  WritePngFile(base + ".diff.png", w, h, diff);
  ADD_FAILURE() << bad << " pixels differ from " << path;
}

}  // namespace mx::test
