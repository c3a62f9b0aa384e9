#pragma once
// A memory DC on a 32-bit bottom-up DIB section with a font selected, for the text tests.
#include <string_view>
#include <vector>

#include "platform/DeviceContext.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::platform::testing {

inline LOGFONTW MakeLogFont(std::u16string_view face, LONG height, LONG weight = 400, bool italic = false,
                            bool underline = false, bool strike = false) {
  LOGFONTW lf;
  lf.lfHeight = height;
  lf.lfWeight = weight;
  lf.lfItalic = italic;
  lf.lfUnderline = underline;
  lf.lfStrikeOut = strike;
  for (size_t i = 0; i < face.size() && i + 1 < LF_FACESIZE; ++i) lf.lfFaceName[i] = face[i];
  return lf;
}

class TextCanvas {
 public:
  TextCanvas(int w, int h, const LOGFONTW& lf, uint32_t fill = 0xFFFFFFFF) : m_w(w), m_h(h) {
    m_dc = CreateCompatibleDC(0);
    BITMAPINFO bi{};
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = h;  // bottom-up, as the image engine's surfaces are
    void* bits = nullptr;
    m_bmp = CreateDIBSection(m_dc, &bi, DIB_RGB_COLORS, &bits, 0, 0);
    m_oldBmp = SelectObject(m_dc, m_bmp);
    m_font = CreateFontIndirectW(&lf);
    m_oldFont = SelectObject(m_dc, m_font);
    SetBkMode(m_dc, TRANSPARENT);
    SetTextColor(m_dc, RGB(0, 0, 0));
    fill_all(fill);
  }
  ~TextCanvas() {
    SelectObject(m_dc, m_oldFont);
    SelectObject(m_dc, m_oldBmp);
    DeleteObject(m_font);
    DeleteObject(m_bmp);
    DeleteDC(m_dc);
  }
  TextCanvas(const TextCanvas&) = delete;
  TextCanvas& operator=(const TextCanvas&) = delete;

  [[nodiscard]] HDC dc() const { return m_dc; }
  [[nodiscard]] int width() const { return m_w; }
  [[nodiscard]] int height() const { return m_h; }

  void fill_all(uint32_t v) {
    Surface* s = LookupDC(m_dc)->surface;
    for (int y = 0; y < m_h; ++y) std::fill(s->row(y), s->row(y) + m_w, v);
  }
  [[nodiscard]] uint32_t at(int x, int y) const { return LookupDC(m_dc)->surface->row(y)[x]; }

  // All pixels, top row first.
  [[nodiscard]] std::vector<uint32_t> pixels() const {
    std::vector<uint32_t> out;
    out.reserve(static_cast<size_t>(m_w) * m_h);
    for (int y = 0; y < m_h; ++y)
      for (int x = 0; x < m_w; ++x) out.push_back(at(x, y));
    return out;
  }

  [[nodiscard]] TEXTMETRICW metrics() const {
    TEXTMETRICW tm;
    GetTextMetricsW(m_dc, &tm);
    return tm;
  }
  [[nodiscard]] int extent(std::u16string_view s) const {
    SIZE sz;
    GetTextExtentPoint32W(m_dc, s, &sz);
    return sz.cx;
  }

 private:
  int m_w, m_h;
  HDC m_dc = 0;
  HBITMAP m_bmp = 0;
  HFONT m_font = 0;
  HGDIOBJ m_oldBmp = 0, m_oldFont = 0;
};

}  // namespace mx::platform::testing
