// Whole pictures of text in several faces and formats, compared with stored images exactly.
// UPDATE_GOLDEN=1 writes the stored image anew; a mismatch leaves the actual picture and a
// difference mask beside the stored one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "TextTestSupport.h"

#ifdef MX_HAVE_LIBPNG
#include <png.h>
#endif

namespace mx::platform {
namespace {

using testing::MakeLogFont;
using testing::TextCanvas;

#ifdef MX_HAVE_LIBPNG

bool WritePng(const std::string& path, int w, int h, const std::vector<uint32_t>& px) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  img.width = static_cast<png_uint_32>(w);
  img.height = static_cast<png_uint_32>(h);
  img.format = PNG_FORMAT_BGRA;
  return png_image_write_to_file(&img, path.c_str(), 0, px.data(), w * 4, nullptr) != 0;
}

bool ReadPng(const std::string& path, int& w, int& h, std::vector<uint32_t>& px) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&img, path.c_str())) return false;
  img.format = PNG_FORMAT_BGRA;
  w = static_cast<int>(img.width);
  h = static_cast<int>(img.height);
  px.assign(static_cast<size_t>(w) * h, 0);
  return png_image_finish_read(&img, nullptr, px.data(), w * 4, nullptr) != 0;
}

// Text leaves alpha at 0 where it draws; the stored pictures are opaque so that they can be
// looked at, so the comparison is of the colour channels and, separately, of the alpha rule.
void ExpectGolden(const std::string& name, const TextCanvas& c) {
  std::vector<uint32_t> actual = c.pixels();
  for (uint32_t& p : actual) p |= 0xFF000000;
  const std::string path = std::string(MX_GOLDEN_DIR) + "/platform/" + name + ".png";
  if (std::getenv("UPDATE_GOLDEN")) {
    ASSERT_TRUE(WritePng(path, c.width(), c.height(), actual));
    return;
  }
  int w = 0, h = 0;
  std::vector<uint32_t> expected;
  ASSERT_TRUE(ReadPng(path, w, h, expected)) << "missing golden " << path;
  ASSERT_EQ(w, c.width());
  ASSERT_EQ(h, c.height());
  if (expected != actual) {
    std::vector<uint32_t> diff(actual.size());
    size_t bad = 0;
    for (size_t i = 0; i < actual.size(); ++i) {
      diff[i] = expected[i] == actual[i] ? 0xFFFFFFFF : 0xFFFF0000;
      bad += expected[i] != actual[i];
    }
    WritePng(path.substr(0, path.size() - 4) + ".actual.png", w, h, actual);
    WritePng(path.substr(0, path.size() - 4) + ".diff.png", w, h, diff);
    ADD_FAILURE() << bad << " pixels differ from " << path;
  }
}

TEST(TextGolden, FacesAndFormats) {
  TextCanvas c(220, 150, MakeLogFont(u"Tahoma", -11));
  HDC dc = c.dc();
  RECT r{4, 2, 216, 16};
  DrawTextW(dc, u"&File  Tahoma 8 with a&ccess keys && more", &r, DT_SINGLELINE | DT_VCENTER);

  struct Row {
    LOGFONTW lf;
    const char16_t* text;
    COLORREF color;
  };
  const Row rows[] = {
      {MakeLogFont(u"Arial", -13, 700), u"Arial bold 10", RGB(0x20, 0x40, 0xA0)},
      {MakeLogFont(u"Times New Roman", -15, 400, true, true), u"Times italic underlined", RGB(0x80, 0, 0)},
      {MakeLogFont(u"Courier New", -13, 400, false, false, true), u"Courier struck out", RGB(0, 0x70, 0)},
      {MakeLogFont(u"Segoe UI", -12), u"Segoe UI \u00e7\u00e3o \u20ac 1.234,56", RGB(0, 0, 0)},
  };
  int y = 18;
  for (const Row& row : rows) {
    HFONT f = CreateFontIndirectW(&row.lf);
    HGDIOBJ old = SelectObject(dc, f);
    SetTextColor(dc, row.color);
    TextOutW(dc, 4, y, row.text);
    TEXTMETRICW tm;
    GetTextMetricsW(dc, &tm);
    y += tm.tmHeight + 2;
    SelectObject(dc, old);
    DeleteObject(f);
  }

  LOGFONTW verdana = MakeLogFont(u"Verdana", -11);
  HFONT f = CreateFontIndirectW(&verdana);
  HGDIOBJ old = SelectObject(dc, f);
  SetBkMode(dc, OPAQUE);
  SetBkColor(dc, RGB(0xFF, 0xF0, 0xC0));
  SetTextColor(dc, RGB(0x30, 0x30, 0x30));
  r = {4, y, 120, 148};
  DrawTextW(dc, u"Wrapped and centred text in a narrow box", &r, DT_WORDBREAK | DT_CENTER);
  SetBkMode(dc, TRANSPARENT);
  r = {124, y, 216, y + 14};
  DrawTextW(dc, u"C:\\Arquivos\\Morvantix\\leia-me.txt", &r, DT_SINGLELINE | DT_PATH_ELLIPSIS);
  r = {124, y + 16, 216, y + 30};
  DrawTextW(dc, u"End ellipsis on a long caption", &r, DT_SINGLELINE | DT_END_ELLIPSIS | DT_RIGHT);
  SelectObject(dc, old);
  DeleteObject(f);

  ExpectGolden("text_faces", c);
}

#else

TEST(TextGolden, FacesAndFormats) { GTEST_SKIP() << "libpng is needed to read the stored pictures"; }

#endif

}  // namespace
}  // namespace mx::platform
