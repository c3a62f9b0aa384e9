#include "frame/Drawing.h"

#include <string>

#include "platform/Desktop.h"
#include "platform/FontEngine.h"
#include "platform/Gdi.h"
#include "platform/Messages.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::frame {

namespace {

using platform::COLORREF;

bool IsHighSurrogate(char16_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool IsLowSurrogate(char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

// The characters of bytes 0x80..0x9F in the Western code page, taken from the platform's own
// decoding so that both directions agree.
const std::u16string& WesternHighBlock() {
  static const std::u16string block = [] {
    std::string bytes;
    for (int b = 0x80; b <= 0x9F; ++b) bytes.push_back(static_cast<char>(b));
    return platform::AnsiToUtf16(bytes.data(), static_cast<int>(bytes.size()));
  }();
  return block;
}

// Text in the Western code page, as the narrow calls read it: characters it lacks become "?",
// a surrogate pair one "?".
std::string ToAnsi(host::StringView text) {
  const std::u16string& high = WesternHighBlock();
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t u = text[i];
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) {
      out.push_back(static_cast<char>(u));
      continue;
    }
    if (IsHighSurrogate(u) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) ++i;
    const size_t at = high.size() == 0x20 ? high.find(u) : std::u16string::npos;
    out.push_back(at == std::u16string::npos ? '?' : static_cast<char>(0x80 + at));
  }
  return out;
}

// Pens and brushes take a plain colour; a refused system colour arrives as -1 and is passed on
// as it stands, which the platform draws as white.
COLORREF PenColor(OLE_COLOR color) { return static_cast<COLORREF>(host::TranslateColor(color)); }

}  // namespace

void FillRectColor(platform::HDC hDC, const platform::RECT& rect, OLE_COLOR xColor) {
  // An inverted rectangle is empty here, not turned round: the gradient painter's equal-colour
  // fill relies on an offset rectangle shrinking to nothing.
  if (rect.empty()) return;
  const platform::HBRUSH brush = platform::CreateSolidBrush(static_cast<COLORREF>(xColor));
  if (!brush) return;
  platform::FillRect(hDC, &rect, brush);
  platform::DeleteObject(brush);
}

int32_t AnsiByteLength(host::StringView text) {
  int32_t bytes = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) ++i;
    ++bytes;
  }
  return bytes;
}

int32_t DrawTextAPI(platform::HDC hDC, host::StringView xText, platform::RECT& rect, uint32_t xFlags) {
  int32_t result = platform::DrawTextW(hDC, xText.data(), AnsiByteLength(xText), &rect, xFlags);
  if (result == 0) {
    const std::string ansi = ToAnsi(xText);
    result = platform::DrawTextA(hDC, ansi.c_str(), static_cast<int>(ansi.size()), &rect, xFlags);
  }
  return result;
}

void DrawLineColor(platform::HDC hDC, int32_t x1, int32_t y1, int32_t x2, int32_t y2, OLE_COLOR xColor) {
  const platform::HPEN pen = platform::CreatePen(static_cast<int>(platform::PS_SOLID), 1, PenColor(xColor));
  if (!pen) return;
  const platform::HGDIOBJ old = platform::SelectObject(hDC, pen);
  platform::MoveToEx(hDC, x1, y1, nullptr);
  platform::LineTo(hDC, x2, y2);
  if (old) platform::SelectObject(hDC, old);
  platform::DeleteObject(pen);
}

void FrameRectColor(platform::HDC hDC, const platform::RECT& rect, OLE_COLOR xColor) {
  const platform::HBRUSH brush = platform::CreateSolidBrush(PenColor(xColor));
  if (!brush) return;
  platform::FrameRect(hDC, &rect, brush);
  platform::DeleteObject(brush);
}

void RoundRectOutline(platform::HDC hDC, const platform::RECT& rect, int32_t xRadiusX, int32_t xRadiusY,
                      OLE_COLOR xColor) {
  const platform::HPEN pen = platform::CreatePen(static_cast<int>(platform::PS_SOLID), 1, PenColor(xColor));
  if (!pen) return;
  const platform::HGDIOBJ oldPen = platform::SelectObject(hDC, pen);
  const platform::HGDIOBJ oldBrush = platform::SelectObject(hDC, platform::GetStockObject(platform::NULL_BRUSH));
  platform::RoundRect(hDC, rect.left, rect.top, rect.right, rect.bottom, xRadiusX, xRadiusY);
  if (oldBrush) platform::SelectObject(hDC, oldBrush);
  if (oldPen) platform::SelectObject(hDC, oldPen);
  platform::DeleteObject(pen);
}

int32_t DrawTextColor(platform::HDC hDC, host::StringView xText, platform::RECT& rect, uint32_t xFlags,
                      OLE_COLOR xColor) {
  platform::SetTextColor(hDC, PenColor(xColor));
  return DrawTextAPI(hDC, xText, rect, xFlags);
}

void DrawFocusMark(platform::HDC hDC, const platform::RECT& rect) {
  platform::SetTextColor(hDC, 0);
  const platform::RECT inner{rect.left + 2, rect.top + 2, rect.right - 2, rect.bottom - 2};
  platform::DrawFocusRect(hDC, &inner);
}

void SetRoundedCorners(platform::HWND hWnd, int32_t width, int32_t height, int32_t xRadiusX, int32_t xRadiusY) {
  const platform::HRGN region = platform::CreateRoundRectRgn(0, 0, width + 1, height + 1, xRadiusX, xRadiusY);
  if (!region) return;
  // A window that accepts the region owns it from then on; only a refused one is ours to free.
  if (!platform::SetWindowRgn(hWnd, region, platform::TRUE)) platform::DeleteObject(region);
}

void SetWindowTranslucency(platform::HWND hWnd, uint8_t xLevel) {
  const platform::LONG style = platform::GetWindowLong(hWnd, platform::GWL_EXSTYLE);
  platform::SetWindowLong(hWnd, platform::GWL_EXSTYLE,
                          style | static_cast<platform::LONG>(platform::WS_EX_LAYERED));
  platform::SetLayeredWindowAttributes(hWnd, 0, xLevel, platform::LWA_ALPHA);
}

}  // namespace mx::frame
