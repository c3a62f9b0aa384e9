#pragma once
// A memory DC over a fresh 32-bit DIB section, with direct pixel access for checks.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Gdi.h"

namespace mx::platform::test {

class Canvas {
 public:
  Canvas(int w, int h, uint32_t fill = 0, bool bottomUp = true) : m_w(w), m_h(h) {
    BITMAPINFO bi{};
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = bottomUp ? h : -h;
    m_dc = CreateCompatibleDC(0);
    m_bmp = CreateDIBSection(m_dc, &bi, DIB_RGB_COLORS, reinterpret_cast<void**>(&m_bits), 0, 0);
    m_old = SelectObject(m_dc, m_bmp);
    m_bottomUp = bottomUp;
    for (int i = 0; i < w * h; ++i) m_bits[i] = fill;
  }
  ~Canvas() {
    SelectObject(m_dc, m_old);
    DeleteObject(m_bmp);
    DeleteDC(m_dc);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  [[nodiscard]] HDC dc() const { return m_dc; }
  [[nodiscard]] HBITMAP bitmap() const { return m_bmp; }
  [[nodiscard]] int width() const { return m_w; }
  [[nodiscard]] int height() const { return m_h; }
  [[nodiscard]] uint32_t& at(int x, int y) { return m_bits[index(x, y)]; }
  [[nodiscard]] uint32_t at(int x, int y) const { return m_bits[index(x, y)]; }
  void fill(uint32_t v) {
    for (int i = 0; i < m_w * m_h; ++i) m_bits[i] = v;
  }
  [[nodiscard]] std::vector<uint32_t> pixels() const {
    std::vector<uint32_t> out;
    for (int y = 0; y < m_h; ++y)
      for (int x = 0; x < m_w; ++x) out.push_back(at(x, y));
    return out;
  }
  // One character per pixel: '#' where the pixel equals `ink`, '.' where it equals `paper`,
  // '?' otherwise; rows end with a newline.
  [[nodiscard]] std::string picture(uint32_t ink, uint32_t paper) const {
    std::string s;
    for (int y = 0; y < m_h; ++y) {
      for (int x = 0; x < m_w; ++x) s += at(x, y) == ink ? '#' : at(x, y) == paper ? '.' : '?';
      s += '\n';
    }
    return s;
  }

 private:
  [[nodiscard]] size_t index(int x, int y) const {
    int row = m_bottomUp ? m_h - 1 - y : y;
    return static_cast<size_t>(row) * m_w + x;
  }
  int m_w, m_h;
  bool m_bottomUp = true;
  HDC m_dc = 0;
  HBITMAP m_bmp = 0;
  HGDIOBJ m_old = 0;
  uint32_t* m_bits = nullptr;
};

}  // namespace mx::platform::test
