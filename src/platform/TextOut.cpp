// Single-line text: TextOutW, ExtTextOutW and the measuring functions.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/DeviceContext.h"
#include "platform/FontEngine.h"
#include "platform/Text.h"

namespace mx::platform {

namespace {

// The upper half of Windows-1252; 0x80..0x9F hold typographic marks instead of C1 controls.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// Colour values may carry palette flags in the high byte; only the RGB part draws.
constexpr COLORREF kRgbMask = 0x00FFFFFF;

}  // namespace

std::u16string AnsiToUtf16(const char* text, int count) {
  std::u16string out;
  if (!text) return out;
  size_t n = count < 0 ? std::strlen(text) : static_cast<size_t>(count);
  out.reserve(n);
  for (size_t i = 0; i < n; ++i) {
    auto b = static_cast<unsigned char>(text[i]);
    out += (b >= 0x80 && b < 0xA0) ? kCp1252High[b - 0x80] : static_cast<char16_t>(b);
  }
  return out;
}

std::u16string_view TextView(const char16_t* text, int count) {
  if (!text) return {};
  if (count < 0) return std::u16string_view(text);
  return {text, static_cast<size_t>(count)};
}

const Font& SelectedFont(const DeviceContext& dc) {
  const LOGFONTW* lf = dc.font ? LookupFont(dc.font) : nullptr;
  return FontEngine::instance().font(lf ? *lf : DefaultLogFont());
}

RunTarget TargetOf(DeviceContext& dc, COLORREF color, const RECT* limit) {
  RunTarget t;
  t.surface = dc.surface;
  t.clip = &dc.clip;
  t.limit = limit;
  t.color = color & kRgbMask;
  return t;
}

BOOL ExtTextOutW(HDC hdc, int x, int y, UINT options, const RECT* rect, const char16_t* text, UINT count,
                 const INT* dx) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || (count > 0 && !text)) return FALSE;
  const Font& font = SelectedFont(*dc);
  const FontMetrics& m = font.metrics();
  std::u16string_view units(text ? text : u"", count);
  std::u32string cps = DecodeUtf16(units);

  // A caller's spacing array is per UTF-16 unit; a surrogate pair gets the sum of its two.
  std::vector<int> steps;
  if (dx) {
    steps.reserve(cps.size());
    for (size_t i = 0, u = 0; i < cps.size(); ++i) {
      int step = dx[u++];
      if (cps[i] >= 0x10000 && u < units.size()) step += dx[u++];
      steps.push_back(step);
    }
  }
  int width = 0;
  if (dx) {
    for (int s : steps) width += s;
  } else {
    width = RunWidth(font, cps);
  }

  const UINT align = dc->textAlign;
  POINT ref = (align & TA_UPDATECP) ? dc->currentPos : POINT{x, y};
  int left = ref.x;
  if ((align & TA_CENTER) == TA_CENTER) {
    left = ref.x - width / 2;
  } else if (align & TA_RIGHT) {
    left = ref.x - width;
  }
  int baseline = ref.y + m.ascent;
  if ((align & TA_BASELINE) == TA_BASELINE) {
    baseline = ref.y;
  } else if (align & TA_BOTTOM) {
    baseline = ref.y - m.descent;
  }

  RECT clipRect{};
  if (rect) {
    POINT a = dc->toDevice({rect->left, rect->top});
    POINT b = dc->toDevice({rect->right, rect->bottom});
    clipRect = {a.x, a.y, b.x, b.y};
  }
  POINT origin = dc->toDevice({left, baseline});
  if (rect && (options & ETO_OPAQUE)) FillDeviceRect(TargetOf(*dc, dc->bkColor), clipRect);
  const RECT* limit = (rect && (options & ETO_CLIPPED)) ? &clipRect : nullptr;
  if (dc->bkMode == OPAQUE && width > 0) {
    RECT cell{origin.x, origin.y - m.ascent, origin.x + width, origin.y + m.descent};
    FillDeviceRect(TargetOf(*dc, dc->bkColor, limit), cell);
  }
  DrawRun(TargetOf(*dc, dc->textColor, limit), font, cps, origin.x, origin.y, dx ? steps.data() : nullptr);

  // Left-aligned text leaves the position at its end, right-aligned text at its start;
  // centred text leaves it where it was.
  if ((align & TA_UPDATECP) && (align & TA_CENTER) != TA_CENTER)
    dc->currentPos.x = (align & TA_RIGHT) ? ref.x - width : ref.x + width;
  return TRUE;
}

BOOL TextOutW(HDC hdc, int x, int y, const char16_t* text, int count) {
  if (count < 0) return FALSE;
  return ExtTextOutW(hdc, x, y, 0, nullptr, text, static_cast<UINT>(count), nullptr);
}

BOOL TextOutW(HDC hdc, int x, int y, std::u16string_view text) {
  return ExtTextOutW(hdc, x, y, 0, nullptr, text.data(), static_cast<UINT>(text.size()), nullptr);
}

BOOL TextOutA(HDC hdc, int x, int y, const char* text, int count) {
  if (count < 0 || (count > 0 && !text)) return FALSE;
  return TextOutW(hdc, x, y, AnsiToUtf16(text, count));
}

BOOL GetTextMetricsW(HDC hdc, TEXTMETRICW* tm) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !tm) return FALSE;
  *tm = SelectedFont(*dc).textMetrics();
  return TRUE;
}

BOOL GetTextExtentPoint32W(HDC hdc, const char16_t* text, int count, SIZE* size) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !size || count < 0 || (count > 0 && !text)) return FALSE;
  const Font& font = SelectedFont(*dc);
  size->cx = RunWidth(font, DecodeUtf16(TextView(text, count)));
  size->cy = font.metrics().height();
  return TRUE;
}

BOOL GetTextExtentPoint32W(HDC hdc, std::u16string_view text, SIZE* size) {
  return GetTextExtentPoint32W(hdc, text.data(), static_cast<int>(text.size()), size);
}

BOOL GetTextExtentPoint32A(HDC hdc, const char* text, int count, SIZE* size) {
  if (count < 0 || (count > 0 && !text)) return FALSE;
  return GetTextExtentPoint32W(hdc, AnsiToUtf16(text, count), size);
}

BOOL GetTextExtentExPointW(HDC hdc, const char16_t* text, int count, int maxExtent, int* fit, int* dx, SIZE* size) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || count < 0 || (count > 0 && !text)) return FALSE;
  const Font& font = SelectedFont(*dc);
  std::u16string_view units = TextView(text, count);
  int x = 0, fitted = 0;
  bool fitting = true;
  for (size_t u = 0; u < units.size();) {
    char32_t cp = units[u];
    size_t len = 1;
    if (cp >= 0xD800 && cp <= 0xDBFF && u + 1 < units.size() && units[u + 1] >= 0xDC00 && units[u + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (units[u + 1] - 0xDC00);
      len = 2;
    }
    x += font.advance(cp);
    // Both halves of a pair end where the pair ends; a pair fits or not as one.
    for (size_t k = 0; k < len; ++k) {
      if (dx) dx[u + k] = x;
    }
    if (fitting && (maxExtent < 0 || x <= maxExtent)) {
      fitted += static_cast<int>(len);
    } else {
      fitting = false;
    }
    u += len;
  }
  if (fit) *fit = fitted;
  if (size) *size = SIZE{x, font.metrics().height()};
  return TRUE;
}

int GetTextFaceW(HDC hdc, int count, char16_t* name) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return 0;
  const Font& font = SelectedFont(*dc);
  std::u16string face;
  for (int i = 0; i < LF_FACESIZE && font.logFont().lfFaceName[i]; ++i) face += font.logFont().lfFaceName[i];
  if (face.empty()) {
    for (char c : font.family()) face += static_cast<char16_t>(static_cast<unsigned char>(c));
  }
  if (!name) return static_cast<int>(face.size()) + 1;
  if (count <= 0) return 0;
  size_t n = std::min(face.size(), static_cast<size_t>(count - 1));
  std::copy_n(face.data(), n, name);
  name[n] = 0;
  return static_cast<int>(n);
}

BOOL GetCharWidth32W(HDC hdc, UINT first, UINT last, INT* widths) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !widths || last < first || last > 0x10FFFF) return FALSE;
  const Font& font = SelectedFont(*dc);
  for (UINT c = first; c <= last; ++c) widths[c - first] = font.advance(static_cast<char32_t>(c));
  return TRUE;
}

}  // namespace mx::platform
