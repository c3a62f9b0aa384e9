#include "platform/TextLayout.h"

#include <algorithm>

#include "platform/Text.h"

namespace mx::platform {

namespace {

constexpr char32_t kPrefix = U'&';
constexpr std::u32string_view kEllipsis = U"...";

bool IsBlank(char32_t c) { return c == U' ' || c == U'\t'; }

// Resolves access-key prefixes: "&x" draws x underlined, "&&" draws one "&", and a "&" at the
// very end draws nothing. Every marked character is underlined.
std::u32string StripPrefixes(std::u32string_view in, std::vector<int>& marks) {
  std::u32string out;
  out.reserve(in.size());
  marks.clear();
  for (size_t i = 0; i < in.size(); ++i) {
    if (in[i] != kPrefix) {
      out += in[i];
      continue;
    }
    if (i + 1 >= in.size()) break;
    ++i;
    if (in[i] != kPrefix) marks.push_back(static_cast<int>(out.size()));
    out += in[i];
  }
  return out;
}

class Measurer {
 public:
  Measurer(const Font& font, int tabWidth) : m_font(font), m_tab(tabWidth) {}

  // Pen step of character c when the pen stands x pixels from the start of the line.
  [[nodiscard]] int step(char32_t c, int x) const {
    if (c == U'\t' && m_tab > 0) return m_tab - (x % m_tab);
    return m_font.advance(c);
  }

  [[nodiscard]] int width(std::u32string_view s) const {
    int x = 0;
    for (char32_t c : s) x += step(c, x);
    return x;
  }

  // Marks outside the text are dropped.
  [[nodiscard]] TextLine line(std::u32string_view s, const std::vector<int>& marks) const {
    TextLine l;
    l.text.assign(s);
    l.steps.reserve(s.size());
    int x = 0;
    for (char32_t& c : l.text) {
      int st = step(c, x);
      if (c == U'\t' && m_tab > 0) c = U' ';  // the stop is in the step; draw nothing for it
      l.steps.push_back(st);
      x += st;
    }
    l.width = x;
    for (int mark : marks)
      if (mark >= 0 && mark < static_cast<int>(s.size())) l.underlines.push_back(mark);
    return l;
  }

 private:
  const Font& m_font;
  int m_tab;
};

// Longest prefix of s that fits in `room` pixels (measured from the line start).
size_t FittingPrefix(const Measurer& m, std::u32string_view s, int room) {
  int x = 0;
  size_t k = 0;
  for (; k < s.size(); ++k) {
    int st = m.step(s[k], x);
    if (x + st > room) break;
    x += st;
  }
  return k;
}

// Cuts the end of a line and puts "..." there, keeping as much as fits.
TextLine EndEllipsis(const Measurer& m, const TextLine& l, int maxWidth) {
  int room = maxWidth - m.width(kEllipsis);
  size_t k = room > 0 ? FittingPrefix(m, l.text, room) : 0;
  std::u32string s = l.text.substr(0, k);
  s += kEllipsis;
  return m.line(s, l.underlines);
}

// Keeps the last path component ("\name" or "/name") and cuts the middle before it.
TextLine PathEllipsis(const Measurer& m, const TextLine& l, int maxWidth) {
  size_t sep = l.text.find_last_of(U"\\/");
  if (sep == std::u32string::npos || sep == 0) return EndEllipsis(m, l, maxWidth);
  std::u32string_view text = l.text;
  std::u32string_view tail = text.substr(sep);
  for (size_t k = sep; k-- > 0;) {
    std::u32string s(text.substr(0, k));
    s += kEllipsis;
    s += tail;
    if (m.width(s) <= maxWidth || k == 0) {
      // Marks in the kept head stay; marks in the tail move with it; the rest go.
      std::vector<int> marks;
      for (int mark : l.underlines) {
        if (static_cast<size_t>(mark) < k) marks.push_back(mark);
        if (static_cast<size_t>(mark) >= sep)
          marks.push_back(mark - static_cast<int>(sep) + static_cast<int>(k + kEllipsis.size()));
      }
      TextLine out = m.line(s, marks);
      // Even the bare tail does not fit: cut its end as well.
      if (out.width > maxWidth) return EndEllipsis(m, out, maxWidth);
      return out;
    }
  }
  return EndEllipsis(m, l, maxWidth);
}

// Breaks one paragraph (no line breaks inside) into lines of at most maxWidth pixels, at blanks.
// A word wider than a line stays whole and overflows, unless breakWords cuts it by characters.
void WrapParagraph(const Measurer& m, std::u32string_view p, int maxWidth, bool breakWords,
                   std::vector<std::pair<size_t, size_t>>& out) {
  const size_t n = p.size();
  size_t i = 0;
  do {
    const size_t lineStart = i;
    size_t lineEnd = i;
    size_t j = i;
    bool any = false;
    while (j < n) {
      size_t wordStart = j;
      while (wordStart < n && IsBlank(p[wordStart])) ++wordStart;
      if (wordStart == n) {
        // Blanks at the end of the paragraph stay on the line while they fit.
        if (m.width(p.substr(lineStart, n - lineStart)) <= maxWidth || !any) lineEnd = n;
        j = n;
        break;
      }
      size_t wordEnd = wordStart;
      while (wordEnd < n && !IsBlank(p[wordEnd])) ++wordEnd;
      int w = m.width(p.substr(lineStart, wordEnd - lineStart));
      if (w <= maxWidth) {
        lineEnd = j = wordEnd;
        any = true;
        continue;
      }
      if (any) break;  // the word starts the next line
      // The first word alone is too wide for the line.
      if (breakWords) {
        size_t k = lineStart + FittingPrefix(m, p.substr(lineStart, wordEnd - lineStart), maxWidth);
        k = std::max(k, wordStart + 1);
        lineEnd = j = k;
        any = true;
        break;
      }
      lineEnd = j = wordEnd;
      any = true;
    }
    out.emplace_back(lineStart, lineEnd);
    i = j;
    while (i < n && IsBlank(p[i])) ++i;
  } while (i < n);
}

}  // namespace

std::vector<TextLine> LayoutText(const Font& font, std::u32string_view input, const TextLayoutOptions& opt) {
  const UINT format = opt.format;
  const bool single = format & DT_SINGLELINE;
  Measurer m(font, opt.tabWidth);

  std::vector<int> marks;
  std::u32string text = (format & DT_NOPREFIX) ? std::u32string(input) : StripPrefixes(input, marks);
  if (format & DT_HIDEPREFIX) marks.clear();

  // Paragraphs: a single line ignores its breaks (they show as blanks); otherwise CR, LF and
  // CR LF each end a line, and a break at the very end starts no new one.
  std::vector<std::pair<size_t, size_t>> paragraphs;
  if (single) {
    for (char32_t& c : text)
      if (c == U'\r' || c == U'\n') c = U' ';
    paragraphs.emplace_back(0, text.size());
  } else {
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] != U'\r' && text[i] != U'\n') continue;
      paragraphs.emplace_back(start, i);
      if (text[i] == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n') ++i;
      start = i + 1;
    }
    if (start < text.size()) paragraphs.emplace_back(start, text.size());
  }

  const bool wrap = (format & DT_WORDBREAK) && !single && !opt.noWrap;
  std::vector<std::pair<size_t, size_t>> ranges;
  for (auto [a, b] : paragraphs) {
    if (wrap) {
      std::vector<std::pair<size_t, size_t>> parts;
      WrapParagraph(m, std::u32string_view(text).substr(a, b - a), opt.maxWidth, format & DT_EDITCONTROL, parts);
      for (auto [pa, pb] : parts) ranges.emplace_back(a + pa, a + pb);
    } else {
      ranges.emplace_back(a, b);
    }
  }

  std::vector<TextLine> lines;
  lines.reserve(ranges.size());
  const bool ellipsis = format & (DT_END_ELLIPSIS | DT_WORD_ELLIPSIS | DT_PATH_ELLIPSIS);
  for (auto [a, b] : ranges) {
    std::vector<int> lineMarks;
    for (int mark : marks) lineMarks.push_back(mark - static_cast<int>(a));
    TextLine line = m.line(std::u32string_view(text).substr(a, b - a), lineMarks);
    if (ellipsis && line.width > opt.maxWidth) {
      line = (format & DT_PATH_ELLIPSIS) ? PathEllipsis(m, line, opt.maxWidth) : EndEllipsis(m, line, opt.maxWidth);
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace mx::platform
