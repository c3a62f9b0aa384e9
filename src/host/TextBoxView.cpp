// The text box's view: lines (wrapped at the width in a multi-line box without a horizontal
// bar), positions to pixels and back, scrolling that follows the caret, and painting.
//
// Geometry of the client area:
//
//   +--------------------------------+   border: 2 pixels of sunken edge (BorderStyle 1)
//   |+------------------------------+|   text rectangle: inside the border, less a margin of
//   ||  line 0   (topLine)          ||   kMargin pixels left and right and 1 at the top;
//   ||  line 1                      ||   each line is LineHeight high. A line's text starts at
//   |+------------------------------+|   LineLeft (alignment, then -scrollX).
//   +--------------------------------+
#include <algorithm>
#include <vector>

#include "host/TextBoxImpl.h"
#include "platform/Gdi.h"
#include "platform/Text.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

constexpr int kMargin = 1;

COLORREF Resolve(OLE_COLOR color) {
  const int32_t c = TranslateColor(color);
  return c < 0 ? 0 : static_cast<COLORREF>(c);
}

// Extent from the start of `s` to the end of each unit.
std::vector<int> Extents(HDC dc, StringView s) {
  std::vector<int> dx(s.size());
  if (!s.empty()) {
    int fit = 0;
    SIZE size{};
    GetTextExtentExPointW(dc, s.data(), static_cast<int>(s.size()), 0x7FFFFFFF, &fit, dx.data(), &size);
  }
  return dx;
}

}  // namespace

String TextBox::Impl::Display() const {
  // The password character stands for every character of a single line.
  if (passwordChar && !multiLine) return String(text.size(), passwordChar);
  return text;
}

RECT TextBox::Impl::TextRect() const {
  RECT rc{0, 0, 0, 0};
  if (self.m_hwnd) GetClientRect(self.m_hwnd, &rc);
  else rc = RECT{0, 0, static_cast<LONG>(self.m_width / 15), static_cast<LONG>(self.m_height / 15)};
  const int border = borderStyle == 1 ? 2 : 0;
  rc.left += border + kMargin;
  rc.right -= border + kMargin;
  rc.top += border + 1;
  rc.bottom -= border;
  if (rc.right < rc.left) rc.right = rc.left;
  if (rc.bottom < rc.top) rc.bottom = rc.top;
  return rc;
}

int TextBox::Impl::LineHeight() {
  EnsureFont();
  TEXTMETRICW tm;
  if (!measureDC || !GetTextMetricsW(measureDC, &tm) || tm.tmHeight <= 0) return 13;
  return static_cast<int>(tm.tmHeight);
}

void TextBox::Impl::Layout() {
  if (layoutValid) return;
  EnsureFont();
  lines.clear();
  const String shown = Display();
  const int32_t n = static_cast<int32_t>(shown.size());
  const bool wrap = multiLine && !(scrollBars & 1);
  const int width = std::max(1, static_cast<int>(TextRect().right - TextRect().left));
  int32_t s = 0;
  for (;;) {
    // A hard line: up to "\r\n" in a multi-line box; the whole text in a single line.
    int32_t e = n;
    if (multiLine) {
      const size_t br = shown.find(u"\r\n", static_cast<size_t>(s));
      if (br != String::npos) e = static_cast<int32_t>(br);
    }
    if (!wrap || e == s) {
      lines.push_back({s, e - s});
    } else {
      const std::vector<int> dx = Extents(measureDC, StringView(shown).substr(static_cast<size_t>(s), static_cast<size_t>(e - s)));
      int32_t ls = s;
      while (ls < e) {
        const int base = ls > s ? dx[static_cast<size_t>(ls - s - 1)] : 0;
        int32_t fit = ls;
        while (fit < e && dx[static_cast<size_t>(fit - s)] - base <= width) ++fit;
        if (fit >= e) {
          lines.push_back({ls, e - ls});
          break;
        }
        // Break after the last blank that fits; blanks after it hang past the edge. A word
        // longer than the line breaks where it no longer fits.
        int32_t b = fit;
        while (b > ls && shown[static_cast<size_t>(b - 1)] != u' ' && shown[static_cast<size_t>(b)] != u' ') --b;
        if (b == ls) b = std::max(fit, ls + 1);
        while (b < e && shown[static_cast<size_t>(b)] == u' ') ++b;
        lines.push_back({ls, b - ls});
        ls = b;
      }
    }
    if (e >= n) break;
    s = e + 2;
    if (s > n) break;
    if (s == n) {
      // A break at the very end leaves an empty last line for the caret.
      lines.push_back({n, 0});
      break;
    }
  }
  if (lines.empty()) lines.push_back({0, 0});
  layoutValid = true;
}

int32_t TextBox::Impl::LineOf(int32_t pos) {
  Layout();
  // The last line starting at or before pos: the end of a wrapped line belongs to the next.
  auto it = std::upper_bound(lines.begin(), lines.end(), pos, [](int32_t p, const TextBoxLine& l) { return p < l.start; });
  if (it == lines.begin()) return 0;
  return static_cast<int32_t>(it - lines.begin()) - 1;
}

int TextBox::Impl::XOf(int32_t pos) {
  Layout();
  const TextBoxLine& l = lines[static_cast<size_t>(LineOf(pos))];
  const int32_t count = std::clamp(pos - l.start, 0, l.length);
  if (count == 0) return 0;
  const String shown = Display();
  SIZE size{};
  GetTextExtentPoint32W(measureDC, shown.data() + l.start, count, &size);
  return static_cast<int>(size.cx);
}

int TextBox::Impl::LineWidth(int32_t line) {
  Layout();
  const TextBoxLine& l = lines[static_cast<size_t>(line)];
  if (l.length == 0) return 0;
  const String shown = Display();
  SIZE size{};
  GetTextExtentPoint32W(measureDC, shown.data() + l.start, l.length, &size);
  return static_cast<int>(size.cx);
}

int TextBox::Impl::LineLeft(int32_t line) {
  const RECT tr = TextRect();
  const int avail = static_cast<int>(tr.right - tr.left);
  const int w = LineWidth(line);
  int offset = 0;
  // Alignment only places text that fits; wider text starts at the left and scrolls.
  if (w < avail) {
    if (alignment == 1) offset = avail - w - 1;
    else if (alignment == 2) offset = (avail - w) / 2;
  }
  return static_cast<int>(tr.left) + offset - scrollX;
}

int32_t TextBox::Impl::PositionAtX(int32_t line, int x) {
  Layout();
  const TextBoxLine& l = lines[static_cast<size_t>(line)];
  const String shown = Display();
  const std::vector<int> dx = Extents(measureDC, StringView(shown).substr(static_cast<size_t>(l.start), static_cast<size_t>(l.length)));
  // The nearest boundary: past half of a character counts as after it.
  int32_t pos = l.start;
  int prev = 0;
  for (int32_t i = 0; i < l.length; ++i) {
    const int next = dx[static_cast<size_t>(i)];
    if (x < (prev + next + 1) / 2) break;
    pos = l.start + i + 1;
    prev = next;
  }
  // The end of a wrapped line is the next line's start: stay before it.
  if (line + 1 < static_cast<int32_t>(lines.size()) && pos == lines[static_cast<size_t>(line + 1)].start &&
      pos > l.start && pos < static_cast<int32_t>(text.size()) && text[static_cast<size_t>(pos)] != u'\r')
    pos = PrevPosition(pos);
  // Never between the two halves of a surrogate pair.
  if (pos > 0 && pos < static_cast<int32_t>(text.size()) && text[static_cast<size_t>(pos)] >= 0xDC00 &&
      text[static_cast<size_t>(pos)] <= 0xDFFF)
    --pos;
  return pos;
}

int32_t TextBox::Impl::HitTest(int x, int y) {
  Layout();
  const RECT tr = TextRect();
  const int lh = std::max(1, LineHeight());
  int32_t line = topLine + (y >= tr.top ? (y - static_cast<int>(tr.top)) / lh : -1);
  line = std::clamp<int32_t>(line, 0, static_cast<int32_t>(lines.size()) - 1);
  return PositionAtX(line, x - LineLeft(line));
}

void TextBox::Impl::ScrollToCaret() {
  Layout();
  const RECT tr = TextRect();
  const int width = static_cast<int>(tr.right - tr.left);
  const int32_t line = LineOf(caret);
  const bool wrap = multiLine && !(scrollBars & 1);
  if (wrap) {
    scrollX = 0;
  } else {
    int widest = 0;
    for (int32_t i = 0; i < static_cast<int32_t>(lines.size()); ++i) widest = std::max(widest, LineWidth(i));
    const int x = XOf(caret);
    if (widest < width) {
      scrollX = 0;
    } else {
      // Past either edge the text jumps by a quarter of the width, so that typing on does not
      // scroll at every character.
      if (x - scrollX >= width) scrollX = x - width + width / 4;
      else if (x < scrollX) scrollX = std::max(0, x - width / 4);
      // Never show blank space past the end once the text is wider than the box.
      scrollX = std::clamp(scrollX, 0, std::max(0, widest + 1 - width));
      if (x - scrollX >= width) scrollX = x - width + 1;
    }
  }
  if (multiLine) {
    const int visible = std::max(1, static_cast<int>(tr.bottom - tr.top) / std::max(1, LineHeight()));
    if (line < topLine) topLine = line;
    else if (line >= topLine + visible) topLine = line - visible + 1;
    topLine = std::clamp<int32_t>(topLine, 0, std::max<int32_t>(0, static_cast<int32_t>(lines.size()) - 1));
  } else {
    topLine = 0;
  }
}

void TextBox::Impl::Invalidate() {
  if (self.m_hwnd) InvalidateRect(self.m_hwnd, nullptr, FALSE);
}

void TextBox::Impl::ResetBlink() {
  // After a move or an edit the caret shows at once and the blink starts over.
  if (!focused || !self.m_hwnd) return;
  caretVisible = true;
  SetTimer(self.m_hwnd, kCaretTimer, kCaretBlinkMs);
}

void TextBox::Impl::Paint(HDC dc) {
  Layout();
  EnsureFont();
  RECT client{};
  GetClientRect(self.m_hwnd, &client);
  HBRUSH back = CreateSolidBrush(Resolve(backColor));
  FillRect(dc, &client, back);
  DeleteObject(back);
  if (borderStyle == 1) {
    RECT edge = client;
    DrawEdge(dc, &edge, EDGE_SUNKEN, BF_RECT);
  }
  const RECT tr = TextRect();
  const int saved = SaveDC(dc);
  IntersectClipRect(dc, static_cast<int>(tr.left), static_cast<int>(tr.top), static_cast<int>(tr.right),
                    static_cast<int>(tr.bottom));
  HGDIOBJ oldFont = SelectObject(dc, hfont);
  SetBkMode(dc, TRANSPARENT);

  const COLORREF textColor = enabled ? Resolve(foreColor) : GetSysColor(COLOR_GRAYTEXT);
  // The selection: highlight colours with the focus; without it hidden, or in the inactive
  // colours when HideSelection is off.
  const bool showSel = SelMin() != SelMax() && (focused || !hideSelection);
  const COLORREF selBack = focused ? GetSysColor(COLOR_HIGHLIGHT) : GetSysColor(COLOR_BTNFACE);
  const COLORREF selText = focused ? GetSysColor(COLOR_HIGHLIGHTTEXT) : textColor;
  const String shown = Display();
  const int lh = std::max(1, LineHeight());
  const int32_t count = static_cast<int32_t>(lines.size());
  for (int32_t i = topLine; i < count; ++i) {
    const int y = static_cast<int>(tr.top) + (i - topLine) * lh;
    if (y >= tr.bottom) break;
    const TextBoxLine& l = lines[static_cast<size_t>(i)];
    const int left = LineLeft(i);
    const char16_t* base = shown.data() + l.start;
    SetTextColor(dc, textColor);
    if (l.length > 0) TextOutW(dc, left, y, base, l.length);
    if (!showSel) continue;
    const int32_t s = std::max(SelMin(), l.start), e = std::min(SelMax(), l.start + l.length);
    if (s >= e) continue;
    SIZE a{}, b{};
    if (s > l.start) GetTextExtentPoint32W(dc, base, s - l.start, &a);
    GetTextExtentPoint32W(dc, base, e - l.start, &b);
    RECT sel{left + a.cx, y, left + b.cx, y + lh};
    HBRUSH brush = CreateSolidBrush(selBack);
    FillRect(dc, &sel, brush);
    DeleteObject(brush);
    // The selected run is drawn again over its highlight, clipped to it, so that glyphs that
    // overhang the run's edges keep their pixels on the unselected side.
    const int inner = SaveDC(dc);
    IntersectClipRect(dc, static_cast<int>(sel.left), static_cast<int>(sel.top), static_cast<int>(sel.right),
                      static_cast<int>(sel.bottom));
    SetTextColor(dc, selText);
    TextOutW(dc, left, y, base, l.length);
    RestoreDC(dc, inner);
  }
  if (focused && caretVisible) {
    const int32_t line = LineOf(caret);
    if (line >= topLine) {
      const int x = LineLeft(line) + XOf(caret);
      const int y = static_cast<int>(tr.top) + (line - topLine) * lh;
      RECT c{x, y, x + 1, y + lh};
      HBRUSH brush = CreateSolidBrush(textColor);
      FillRect(dc, &c, brush);
      DeleteObject(brush);
    }
  }
  SelectObject(dc, oldFont);
  RestoreDC(dc, saved);
}

}  // namespace mx::host
