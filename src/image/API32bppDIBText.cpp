// Text drawn onto the image surface, with its anti-aliasing kept as alpha.
#include <algorithm>

#include "host/Colors.h"
#include "host/StdFont.h"
#include "image/API32bppDIB.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::image {

using namespace mx::platform;

namespace {

constexpr BYTE kClearTypeQuality = 6;

// Lines end at each CR LF pair; a lone CR or LF stays inside its line.
std::vector<host::String> splitLines(const host::String& text) {
  std::vector<host::String> lines;
  size_t start = 0;
  for (;;) {
    size_t at = text.find(u"\r\n", start);
    if (at == host::String::npos) {
      lines.push_back(text.substr(start));
      return lines;
    }
    lines.push_back(text.substr(start, at - start));
    start = at + 2;
  }
}

// An OLE_COLOR as 0xBBGGRR, system colours resolved.
uint32_t rgbOf(int32_t color) { return static_cast<uint32_t>(host::TranslateColor(color)) & 0xFFFFFF; }

}  // namespace

bool API32bppDIB::DrawText_stdFont(const host::StdFont& Font, const host::String& Text, int32_t TextAlign, int32_t X,
                                   int32_t Y, int32_t Width, int32_t Height, int32_t ForeColor, int32_t BackColor,
                                   int32_t Opacity, int32_t GrayScale, float Angle, bool CenterOnDestXY) {
  try {
    LOGFONTW lf = Font.ToLogFont(96);
    lf.lfQuality = kClearTypeQuality;
    HFONT font = CreateFontIndirectW(&lf);
    if (!font) return false;
    bool ok = drawTextCore(font, Text, TextAlign, X, Y, Width, Height, ForeColor, BackColor, Opacity, GrayScale,
                           Angle, CenterOnDestXY);
    DeleteObject(font);
    return ok;
  } catch (...) {
    return false;
  }
}

bool API32bppDIB::DrawText_hFont(HFONT hFont, const host::String& Text, int32_t TextAlign, int32_t X, int32_t Y,
                                 int32_t Width, int32_t Height, int32_t ForeColor, int32_t BackColor,
                                 int32_t Opacity, int32_t GrayScale, float Angle, bool CenterOnDestXY) {
  if (!hFont) return false;
  try {
    LOGFONTW lf{};
    if (!GetObject(hFont, sizeof(lf), &lf)) return false;
    // Rotation is the renderer's business: the text is drawn upright and turned by Angle.
    HFONT upright = 0;
    if (lf.lfEscapement != 0 || lf.lfOrientation != 0) {
      lf.lfEscapement = lf.lfOrientation = 0;
      upright = CreateFontIndirectW(&lf);
      if (!upright) return false;
    }
    bool ok = drawTextCore(upright ? upright : hFont, Text, TextAlign, X, Y, Width, Height, ForeColor, BackColor,
                           Opacity, GrayScale, Angle, CenterOnDestXY);
    if (upright) DeleteObject(upright);
    return ok;
  } catch (...) {
    return false;
  }
}

bool API32bppDIB::drawTextCore(HFONT font, const host::String& Text, int32_t TextAlign, int32_t X, int32_t Y,
                               int32_t Width, int32_t Height, int32_t ForeColor, int32_t BackColor, int32_t Opacity,
                               int32_t GrayScale, float Angle, bool CenterOnDestXY) {
  if (Text.empty() || !font) return false;
  const std::vector<host::String> lines = splitLines(Text);

  // Measure: the widest line, the tallest line, and the font's overhang.
  HDC dc = CreateCompatibleDC(0);
  if (!dc) return false;
  HGDIOBJ oldFont = SelectObject(dc, font);
  TEXTMETRICW tm{};
  GetTextMetricsW(dc, &tm);
  int32_t widest = 0, tallest = 0;
  for (const host::String& line : lines) {
    SIZE sz{};
    GetTextExtentPoint32W(dc, line, &sz);
    widest = std::max<int32_t>(widest, sz.cx);
    tallest = std::max<int32_t>(tallest, sz.cy);
  }
  if (tallest == 0) tallest = tm.tmHeight;
  const int32_t textW = widest + tm.tmOverhang;
  const int32_t textH = tallest * static_cast<int32_t>(lines.size());

  API32bppDIB temp;
  if (textW <= 0 || textH <= 0 || !temp.InitializeDIB(textW, textH)) {
    SelectObject(dc, oldFont);
    DeleteDC(dc);
    return false;
  }
  const bool withBack = BackColor >= 0 || (static_cast<uint32_t>(BackColor) & 0xFFFFFF00u) == 0x80000000u;
  const uint32_t fore = rgbOf(ForeColor);
  HGDIOBJ oldBmp = SelectObject(dc, temp.Handle());
  if (withBack) {
    HBRUSH brush = CreateSolidBrush(rgbOf(BackColor));
    RECT r{0, 0, textW, textH};
    FillRect(dc, &r, brush);
    DeleteObject(brush);
    SetTextColor(dc, fore);
  } else {
    // White on black: the blue byte of each pixel is then the glyph's coverage.
    SetTextColor(dc, 0xFFFFFF);
  }
  SetBkMode(dc, TRANSPARENT);
  UINT align = static_cast<UINT>(TextAlign) & (TA_CENTER | TA_RIGHT);
  SetTextAlign(dc, align);
  int32_t x = 0;
  if (align == TA_CENTER) {
    x = (textW - tm.tmOverhang) / 2;
  } else if (align == TA_RIGHT) {
    x = textW - tm.tmOverhang;
  }
  for (size_t i = 0; i < lines.size(); ++i)
    TextOutW(dc, x, static_cast<int32_t>(i) * tallest, lines[i]);
  SelectObject(dc, oldBmp);
  SelectObject(dc, oldFont);
  DeleteDC(dc);

  uint8_t* px = temp.BitsPointer();
  const size_t count = static_cast<size_t>(textW) * textH;
  if (withBack) {
    for (size_t i = 0; i < count; ++i) px[i * 4 + 3] = 255;
    temp.SetImageType(imgBitmap);
    temp.Alpha(AlphaNone);
  } else {
    const uint32_t r = fore & 0xFF, g = (fore >> 8) & 0xFF, b = (fore >> 16) & 0xFF;
    for (size_t i = 0; i < count; ++i) {
      uint8_t* p = px + i * 4;
      uint32_t a = p[0];
      if (a == 0) {
        p[0] = p[1] = p[2] = p[3] = 0;
      } else if (a == 255) {
        p[0] = static_cast<uint8_t>(b), p[1] = static_cast<uint8_t>(g), p[2] = static_cast<uint8_t>(r), p[3] = 255;
      } else {
        // Premultiplied: the colour scaled by the coverage, which is also the alpha.
        p[0] = static_cast<uint8_t>(b * a / 255);
        p[1] = static_cast<uint8_t>(g * a / 255);
        p[2] = static_cast<uint8_t>(r * a / 255);
        p[3] = static_cast<uint8_t>(a);
      }
    }
    temp.SetImageType(imgBmpPARGB);
    temp.Alpha(AlphaComplex);
  }

  if (!m_handle) {
    SwapDIBs(temp);
    return true;
  }
  // Borrow this surface's DC, and give it back only if it was not selected before.
  const bool wasSelected = m_prevBitmap != 0;
  HDC dest = LoadDIBinDC(true);
  bool ok = temp.Render(dest, X, Y, Width, Height, 0, 0, 0, 0, Opacity, true, true, this, GrayScale, 0, Angle,
                        CenterOnDestXY);
  if (!wasSelected) LoadDIBinDC(false);
  // Text without a background over a surface with transparency leaves partial alpha behind.
  if (ok && !withBack && m_alpha != AlphaNone) m_alpha = AlphaComplex;
  return ok;
}

}  // namespace mx::image
