// Whole pictures of text in several faces and formats, compared with stored images exactly.
// UPDATE_GOLDEN=1 writes the stored image anew; a mismatch leaves the actual picture and a
// difference mask beside the stored one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "TextTestSupport.h"
#include "support/Golden.h"

namespace mx::platform {
namespace {

using testing::MakeLogFont;
using testing::TextCanvas;

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

  test::ExpectGolden("platform", "text_faces", c.width(), c.height(), c.pixels());
}


}  // namespace
}  // namespace mx::platform
