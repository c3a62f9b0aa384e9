// The label markup: parsing into styled runs, word-wrapped layout, and drawing.
#include "controls/MarkupText.h"

#include <algorithm>
#include <cstdlib>

#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::controls {

using host::String;
using host::StringView;

namespace {

char16_t Lower(char16_t c) { return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c; }

String LowerTrim(StringView s) {
  size_t b = 0, e = s.size();
  while (b < e && s[b] == u' ') ++b;
  while (e > b && s[e - 1] == u' ') --e;
  String out;
  for (size_t i = b; i < e; ++i) out += Lower(s[i]);
  return out;
}

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  c = Lower(c);
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return -1;
}

bool ParseHex(StringView s, uint32_t& out) {
  if (s.empty() || s.size() > 8) return false;
  out = 0;
  for (char16_t c : s) {
    const int d = HexDigit(c);
    if (d < 0) return false;
    out = out * 16 + static_cast<uint32_t>(d);
  }
  return true;
}

constexpr OLE_COLOR Rgb(uint32_t r, uint32_t g, uint32_t b) { return r | (g << 8) | (b << 16); }

struct NamedColour {
  const char16_t* name;
  OLE_COLOR colour;
};
constexpr NamedColour kNamedColours[] = {
    {u"black", Rgb(0, 0, 0)},         {u"white", Rgb(255, 255, 255)}, {u"red", Rgb(255, 0, 0)},
    {u"green", Rgb(0, 128, 0)},       {u"blue", Rgb(0, 0, 255)},      {u"yellow", Rgb(255, 255, 0)},
    {u"gray", Rgb(128, 128, 128)},    {u"grey", Rgb(128, 128, 128)},  {u"silver", Rgb(192, 192, 192)},
    {u"maroon", Rgb(128, 0, 0)},      {u"navy", Rgb(0, 0, 128)},      {u"purple", Rgb(128, 0, 128)},
    {u"teal", Rgb(0, 128, 128)},      {u"olive", Rgb(128, 128, 0)},   {u"orange", Rgb(255, 165, 0)},
    {u"lime", Rgb(0, 255, 0)},        {u"aqua", Rgb(0, 255, 255)},    {u"cyan", Rgb(0, 255, 255)},
    {u"fuchsia", Rgb(255, 0, 255)},   {u"magenta", Rgb(255, 0, 255)},
};

// The parser's state: open counts of each style and the stack of colours.
struct StyleState {
  int bold = 0, italic = 0, underline = 0, strike = 0;
  std::vector<OLE_COLOR> colours;
  [[nodiscard]] MarkupStyle Current() const {
    MarkupStyle s;
    s.bold = bold > 0;
    s.italic = italic > 0;
    s.underline = underline > 0;
    s.strike = strike > 0;
    s.hasColor = !colours.empty();
    s.color = s.hasColor ? colours.back() : 0;
    return s;
  }
};

void Emit(std::vector<MarkupRun>& runs, StringView text, const MarkupStyle& style) {
  if (text.empty()) return;
  if (!runs.empty() && !runs.back().lineBreak && runs.back().style == style) {
    runs.back().text.append(text);
    return;
  }
  runs.push_back(MarkupRun{String(text), style, false});
}

// Applies a tag; false when it is not one, so the caller shows it as text.
bool ApplyTag(StringView inner, StyleState& st, std::vector<MarkupRun>& runs) {
  const String tag = LowerTrim(inner);
  const auto close = [](int& count) {
    if (count > 0) --count;
    return true;
  };
  if (tag == u"b" || tag == u"strong") return ++st.bold, true;
  if (tag == u"/b" || tag == u"/strong") return close(st.bold);
  if (tag == u"i") return ++st.italic, true;
  if (tag == u"/i") return close(st.italic);
  if (tag == u"u") return ++st.underline, true;
  if (tag == u"/u") return close(st.underline);
  if (tag == u"s") return ++st.strike, true;
  if (tag == u"/s") return close(st.strike);
  if (tag == u"br" || tag == u"br/" || tag == u"br /") {
    runs.push_back(MarkupRun{String(), st.Current(), true});
    return true;
  }
  if (tag == u"/c") {
    if (!st.colours.empty()) st.colours.pop_back();
    return true;
  }
  if (tag.size() > 2 && tag[0] == u'c' && tag.find(u'=') != String::npos) {
    const size_t eq = tag.find(u'=');
    if (LowerTrim(StringView(tag).substr(1, eq - 1)) != u"") return false;
    OLE_COLOR colour = 0;
    // The value keeps its case for nothing: colours are read without regard to it.
    if (!ParseMarkupColor(StringView(tag).substr(eq + 1), colour)) return false;
    st.colours.push_back(colour);
    return true;
  }
  return false;
}

}  // namespace

bool ParseMarkupColor(StringView colourText, OLE_COLOR& colour) {
  String s = LowerTrim(colourText);
  if (s.size() >= 2 && (s.front() == u'"' || s.front() == u'\'') && s.back() == s.front()) s = LowerTrim(StringView(s).substr(1, s.size() - 2));
  if (s.empty()) return false;
  uint32_t v = 0;
  if (s[0] == u'#') {
    if (s.size() == 7 && ParseHex(StringView(s).substr(1), v)) {
      colour = Rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
      return true;
    }
    if (s.size() == 4 && ParseHex(StringView(s).substr(1), v)) {
      // #RGB doubles each digit.
      colour = Rgb(((v >> 8) & 0xF) * 17, ((v >> 4) & 0xF) * 17, (v & 0xF) * 17);
      return true;
    }
    return false;
  }
  if (s.size() > 2 && s[0] == u'&' && s[1] == u'h') {
    StringView digits = StringView(s).substr(2);
    if (!digits.empty() && digits.back() == u'&') digits.remove_suffix(1);
    if (!ParseHex(digits, v)) return false;
    colour = v;
    return true;
  }
  if (std::all_of(s.begin(), s.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; })) {
    if (s.size() > 10) return false;
    const unsigned long long n = std::strtoull(host::ToUtf8(s).c_str(), nullptr, 10);
    if (n > 0xFFFFFFFFull) return false;
    colour = static_cast<OLE_COLOR>(n);
    return true;
  }
  for (const NamedColour& c : kNamedColours) {
    if (s == c.name) {
      colour = c.colour;
      return true;
    }
  }
  return false;
}

std::vector<MarkupRun> ParseMarkup(StringView text, bool processPrefix, bool readTags) {
  std::vector<MarkupRun> runs;
  StyleState st;
  String plain;  // text of the current style not yet emitted
  const auto flush = [&] {
    Emit(runs, plain, st.Current());
    plain.clear();
  };
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'<' && readTags) {
      const size_t end = text.find(u'>', i + 1);
      if (end != StringView::npos) {
        StyleState before = st;
        flush();
        if (ApplyTag(text.substr(i + 1, end - i - 1), st, runs)) {
          i = end;
          continue;
        }
        st = std::move(before);
      }
      plain += c;  // not a tag: shown as it stands
      continue;
    }
    if (processPrefix && c == u'&' && i + 1 < text.size()) {
      if (text[i + 1] == u'&') {
        plain += u'&';
        ++i;
        continue;
      }
      // The access-key character shows underlined.
      flush();
      ++st.underline;
      plain += text[i + 1];
      flush();
      --st.underline;
      ++i;
      continue;
    }
    if (processPrefix && c == u'&') continue;  // a closing "&" marks nothing
    plain += c;
  }
  flush();
  return runs;
}

String MarkupPlainText(StringView text, bool processPrefix) {
  String out;
  for (const MarkupRun& r : ParseMarkup(text, processPrefix)) {
    if (r.lineBreak) out += u'\n';
    else out += r.text;
  }
  return out;
}

// ---- Fonts ------------------------------------------------------------------------------------

MarkupFonts::~MarkupFonts() {
  for (auto& [key, font] : m_fonts) platform::DeleteObject(font);
}

platform::HFONT MarkupFonts::Get(const MarkupStyle& style) {
  const int key = (style.bold ? 1 : 0) | (style.italic ? 2 : 0) | (style.underline ? 4 : 0) | (style.strike ? 8 : 0);
  const auto it = m_fonts.find(key);
  if (it != m_fonts.end()) return it->second;
  // Tags add to the base font; they never take a style of the base font away.
  platform::LOGFONTW lf = m_base;
  if (style.bold) lf.lfWeight = std::max<platform::LONG>(lf.lfWeight, 700);
  if (style.italic) lf.lfItalic = 1;
  if (style.underline) lf.lfUnderline = 1;
  if (style.strike) lf.lfStrikeOut = 1;
  const platform::HFONT font = platform::CreateFontIndirectW(&lf);
  m_fonts[key] = font;
  return font;
}

// ---- Layout -----------------------------------------------------------------------------------

namespace {

// A word or a run of blanks, made of fragments in their styles.
struct Fragment {
  String text;
  MarkupStyle style;
  int32_t width = 0;
};
struct Token {
  std::vector<Fragment> fragments;
  bool blank = false;
  bool lineBreak = false;
  int32_t width = 0;
};

struct Measurer {
  platform::HDC dc;
  MarkupFonts& fonts;
  int32_t Width(StringView text, const MarkupStyle& style) {
    platform::SelectObject(dc, fonts.Get(style));
    platform::SIZE size{};
    platform::GetTextExtentPoint32W(dc, text, &size);
    return size.cx;
  }
  platform::TEXTMETRICW Metrics(const MarkupStyle& style) {
    platform::SelectObject(dc, fonts.Get(style));
    platform::TEXTMETRICW tm{};
    platform::GetTextMetricsW(dc, &tm);
    return tm;
  }
};

std::vector<Token> Tokenize(const std::vector<MarkupRun>& runs) {
  std::vector<Token> tokens;
  for (const MarkupRun& run : runs) {
    if (run.lineBreak) {
      Token t;
      t.lineBreak = true;
      t.fragments.push_back(Fragment{String(), run.style, 0});
      tokens.push_back(std::move(t));
      continue;
    }
    for (char16_t c : run.text) {
      const bool blank = c == u' ' || c == u'\t';
      // A word continues across style changes: "<b>bo</b>ld" is one word.
      if (tokens.empty() || tokens.back().lineBreak || tokens.back().blank != blank) {
        Token t;
        t.blank = blank;
        tokens.push_back(std::move(t));
      }
      auto& frags = tokens.back().fragments;
      if (frags.empty() || !(frags.back().style == run.style)) frags.push_back(Fragment{String(), run.style, 0});
      frags.back().text += blank ? u' ' : c;
    }
  }
  return tokens;
}

}  // namespace

MarkupLayout LayoutMarkup(platform::HDC dc, MarkupFonts& fonts, const std::vector<MarkupRun>& runs,
                          int32_t wrapWidth) {
  Measurer m{dc, fonts};
  const platform::HGDIOBJ oldFont = platform::SelectObject(dc, fonts.Get(MarkupStyle{}));
  std::vector<Token> tokens = Tokenize(runs);
  for (Token& t : tokens) {
    t.width = 0;
    for (Fragment& f : t.fragments) t.width += f.width = m.Width(f.text, f.style);
  }

  MarkupLayout layout;
  MarkupLine line;
  // The style that sets an empty line's height: the one in force where the line is.
  MarkupStyle lineStyle;
  const auto place = [&](const Fragment& f) {
    MarkupPiece piece{line.width, f.width, 0, f.text, f.style};
    if (!line.pieces.empty()) {
      MarkupPiece& prev = line.pieces.back();
      if (prev.style == f.style && prev.x + prev.width == line.width) {
        prev.text += f.text;
        prev.width += f.width;
        line.width += f.width;
        return;
      }
    }
    line.pieces.push_back(std::move(piece));
    line.width += f.width;
  };
  const auto finish = [&] {
    // Trailing blanks take no room in the line's width; they may share a piece with a word.
    while (!line.pieces.empty()) {
      MarkupPiece& last = line.pieces.back();
      const size_t keep = last.text.find_last_not_of(u' ');
      if (keep == String::npos) {
        line.width -= last.width;
        line.pieces.pop_back();
        continue;
      }
      if (keep + 1 < last.text.size()) {
        last.text.resize(keep + 1);
        last.width = m.Width(last.text, last.style);
        line.width = last.x + last.width;
      }
      break;
    }
    if (line.pieces.empty()) {
      const platform::TEXTMETRICW tm = m.Metrics(lineStyle);
      line.height = tm.tmHeight;
      line.ascent = tm.tmAscent;
    }
    for (MarkupPiece& p : line.pieces) {
      const platform::TEXTMETRICW tm = m.Metrics(p.style);
      p.ascent = tm.tmAscent;
      line.ascent = std::max<int32_t>(line.ascent, tm.tmAscent);
      line.height = std::max<int32_t>(line.height, tm.tmAscent);
    }
    // Height: the deepest ascent plus the deepest descent of the line.
    int32_t descent = 0;
    for (const MarkupPiece& p : line.pieces) descent = std::max<int32_t>(descent, m.Metrics(p.style).tmDescent);
    if (!line.pieces.empty()) line.height = line.ascent + descent;
    layout.width = std::max(layout.width, line.width);
    layout.height += line.height;
    layout.lines.push_back(std::move(line));
    line = MarkupLine{};
  };

  bool wrapped = false;  // the current line began at a wrap, not at the start or a <br>
  for (size_t i = 0; i < tokens.size(); ++i) {
    Token& t = tokens[i];
    if (t.lineBreak) {
      if (line.pieces.empty()) lineStyle = t.fragments.front().style;
      finish();
      wrapped = false;
      continue;
    }
    if (!t.fragments.empty() && line.pieces.empty()) lineStyle = t.fragments.front().style;
    if (t.blank) {
      if (wrapped && line.pieces.empty()) continue;
      for (const Fragment& f : t.fragments) place(f);
      continue;
    }
    if (wrapWidth > 0 && line.width + t.width > wrapWidth && !line.pieces.empty()) {
      finish();
      wrapped = true;
    }
    if (wrapWidth > 0 && t.width > wrapWidth && line.pieces.empty()) {
      // A word wider than the line is broken between characters, at least one per line.
      for (const Fragment& f : t.fragments) {
        for (char16_t c : f.text) {
          const Fragment one{String(1, c), f.style, m.Width(StringView(&c, 1), f.style)};
          if (line.width + one.width > wrapWidth && !line.pieces.empty()) {
            finish();
            wrapped = true;
          }
          place(one);
        }
      }
      continue;
    }
    for (const Fragment& f : t.fragments) place(f);
  }
  finish();
  platform::SelectObject(dc, oldFont);
  return layout;
}

void DrawMarkup(platform::HDC dc, MarkupFonts& fonts, const MarkupLayout& layout, const platform::RECT& rect,
                int32_t alignment, OLE_COLOR defaultColour) {
  const platform::HGDIOBJ oldFont = platform::SelectObject(dc, fonts.Get(MarkupStyle{}));
  const int oldMode = platform::SetBkMode(dc, platform::TRANSPARENT);
  const platform::COLORREF oldColour = platform::SetTextColor(dc, 0);
  const int32_t width = rect.right - rect.left;
  int32_t y = rect.top;
  for (const MarkupLine& line : layout.lines) {
    int32_t x = rect.left;
    if (alignment == 1) x += width - line.width;
    else if (alignment == 2) x += (width - line.width) / 2;
    for (const MarkupPiece& p : line.pieces) {
      platform::SelectObject(dc, fonts.Get(p.style));
      const OLE_COLOR colour = p.style.hasColor ? p.style.color : defaultColour;
      platform::SetTextColor(dc, static_cast<platform::COLORREF>(host::TranslateColor(colour)));
      platform::TextOutW(dc, x + p.x, y + line.ascent - p.ascent, p.text);
    }
    y += line.height;
  }
  platform::SetTextColor(dc, oldColour);
  platform::SetBkMode(dc, oldMode);
  platform::SelectObject(dc, oldFont);
}

}  // namespace mx::controls
