// Formatted text in a rectangle: DrawTextW and its relatives.
#include <algorithm>
#include <cstdint>

#include "platform/DeviceContext.h"
#include "platform/FontEngine.h"
#include "platform/Text.h"
#include "platform/TextLayout.h"

namespace mx::platform {

namespace {

constexpr int kDefaultTabChars = 8;

int DrawTextCore(HDC hdc, std::u16string_view units, RECT* rect, UINT format, DRAWTEXTPARAMS* params) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !rect) return 0;
  if (params) params->uiLengthDrawn = 0;

  // With DT_TABSTOP the second byte of the format is the tab length, not flags.
  int tabChars = kDefaultTabChars;
  if (format & DT_TABSTOP) {
    tabChars = static_cast<int>((format >> 8) & 0xFF);
    format &= ~0xFF00u;
    if (tabChars == 0) tabChars = kDefaultTabChars;
  }
  if (params && params->iTabLength > 0) tabChars = params->iTabLength;

  const Font& font = (format & DT_INTERNAL) ? FontEngine::instance().font(DefaultLogFont()) : SelectedFont(*dc);
  const FontMetrics& fm = font.metrics();
  const int lineHeight = fm.height() + ((format & DT_EXTERNALLEADING) ? fm.externalLeading : 0);
  const int leftMargin = params ? params->iLeftMargin : 0;
  const int rightMargin = params ? params->iRightMargin : 0;
  const bool updateCp = dc->textAlign & TA_UPDATECP;

  RECT box{rect->left + leftMargin, rect->top, rect->right - rightMargin, rect->bottom};
  TextLayoutOptions opt;
  opt.format = format;
  // Widened before subtracting: a rectangle spanning the whole coordinate range must not wrap.
  opt.maxWidth = static_cast<int>(std::clamp<int64_t>(int64_t{box.right} - box.left, -(1 << 30), 1 << 30));
  opt.tabWidth = (format & DT_EXPANDTABS) ? tabChars * fm.aveCharWidth : 0;
  opt.noWrap = updateCp;
  std::vector<TextLine> lines = LayoutText(font, DecodeUtf16(units), opt);
  if (params) params->uiLengthDrawn = static_cast<UINT>(units.size());

  const bool single = format & DT_SINGLELINE;
  const int textHeight = static_cast<int>(lines.size()) * lineHeight;
  int widest = 0;
  for (const TextLine& l : lines) widest = std::max(widest, l.width);

  if (format & DT_CALCRECT) {
    rect->right = rect->left + leftMargin + widest + rightMargin;
    rect->bottom = rect->top + textHeight;
    return textHeight;
  }

  // One line can sit in the middle or at the bottom of the box; more lines always start at
  // its top. The result then tells how far below the box's top the text ends.
  int y = box.top;
  int result = textHeight;
  if (single && (format & DT_VCENTER)) {
    y = box.top + (box.bottom - box.top - lineHeight) / 2;
    result = y - box.top + lineHeight;
  } else if (single && (format & DT_BOTTOM)) {
    y = box.bottom - lineHeight;
    result = y - box.top + lineHeight;
  }

  POINT d0 = dc->toDevice({rect->left, rect->top});
  POINT d1 = dc->toDevice({rect->right, rect->bottom});
  RECT deviceRect{d0.x, d0.y, d1.x, d1.y};
  const RECT* limit = (format & DT_NOCLIP) ? nullptr : &deviceRect;
  const RunTarget ink = TargetOf(*dc, dc->textColor, limit);
  const RunTarget paper = TargetOf(*dc, dc->bkColor, limit);
  const bool drawGlyphs = !(format & DT_PREFIXONLY);

  int penEnd = box.left;
  for (const TextLine& line : lines) {
    // An edit control shows no line that the box would cut at the bottom (the first one
    // always shows).
    if ((format & DT_EDITCONTROL) && !single && y != box.top && y + lineHeight > box.bottom) break;
    int x = box.left;
    if (updateCp) {
      x = dc->currentPos.x;
    } else if (format & DT_CENTER) {  // centring wins when both bits are set
      x = box.left + (box.right - box.left - line.width) / 2;
    } else if (format & DT_RIGHT) {
      x = box.right - line.width;
    }
    POINT p = dc->toDevice({x, y});
    const int baseline = p.y + fm.ascent;
    if (drawGlyphs) {
      if (dc->bkMode == OPAQUE && line.width > 0)
        FillDeviceRect(paper, RECT{p.x, p.y, p.x + line.width, p.y + fm.height()});
      DrawRun(ink, font, line.text, p.x, baseline, line.steps.data());
    }
    for (int mark : line.underlines) {
      int ux = p.x;
      for (int i = 0; i < mark; ++i) ux += line.steps[i];
      const int top = baseline + fm.underlinePos;
      FillDeviceRect(ink, RECT{ux, top, ux + line.steps[mark], top + fm.underlineThickness});
    }
    penEnd = x + line.width;
    y += lineHeight;
  }
  if (updateCp && !lines.empty()) dc->currentPos.x = penEnd;
  return result;
}

}  // namespace

int DrawTextW(HDC hdc, const char16_t* text, int count, RECT* rect, UINT format) {
  if (!text && count != 0) return 0;
  return DrawTextCore(hdc, TextView(text, count), rect, format, nullptr);
}

int DrawTextW(HDC hdc, std::u16string_view text, RECT* rect, UINT format) {
  return DrawTextCore(hdc, text, rect, format, nullptr);
}

int DrawTextExW(HDC hdc, const char16_t* text, int count, RECT* rect, UINT format, DRAWTEXTPARAMS* params) {
  if (!text && count != 0) return 0;
  if (params && params->cbSize != sizeof(DRAWTEXTPARAMS)) return 0;
  return DrawTextCore(hdc, TextView(text, count), rect, format, params);
}

int DrawTextA(HDC hdc, const char* text, int count, RECT* rect, UINT format) {
  if (!text && count != 0) return 0;
  return DrawTextCore(hdc, AnsiToUtf16(text, count), rect, format, nullptr);
}

}  // namespace mx::platform
