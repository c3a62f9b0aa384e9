#include "entry/TextMask.h"

#include <algorithm>

#include "host/Strings.h"
#include "utility/CharClass.h"

namespace mx::entry {

namespace {

constexpr char16_t kBlank = u' ';
constexpr int16_t kBackspace = 8;
constexpr int16_t kEnter = 13;

[[nodiscard]] bool IsFreeMaskChar(char16_t c) { return c == u'#' || c == u'@'; }

// The text widened to the template's length, the missing tail taken from the template, so that
// every position of the mask can be written by index.
[[nodiscard]] String PadToTemplate(StringView text, const String& tmpl) {
  String out(text);
  if (out.size() < tmpl.size()) out.append(tmpl, out.size(), String::npos);
  return out;
}

}  // namespace

String MaskTemplate(StringView mask) {
  String out(mask);
  for (char16_t& c : out) {
    if (IsFreeMaskChar(c)) c = kBlank;
  }
  return out;
}

bool MaskAcceptsChar(char16_t c, int32_t maskType, bool numberOnly) {
  if (numberOnly) return utility::IsCharDigit(c);
  switch (maskType) {
    case Only_Text: return utility::IsCharAlpha(c);
    case Only_Number: return utility::IsCharDigit(c);
    case Text_And_Number: return utility::IsCharAlphaNumeric(c);
    default: return false;
  }
}

String FilterMaskChars(StringView text, int32_t maskType, bool numberOnly) {
  String out;
  out.reserve(text.size());
  for (char16_t c : text) {
    if (MaskAcceptsChar(c, maskType, numberOnly)) out.push_back(c);
  }
  return out;
}

String ApplyMask(StringView text, StringView mask, int32_t maskType, bool numberOnly) {
  const String tmpl = MaskTemplate(mask);
  const String input = FilterMaskChars(text, maskType, numberOnly);
  const size_t n = tmpl.size();
  String out;
  out.reserve(n);
  size_t i = 0;  // next unread input character (0-based)
  for (size_t j = 0; j < n; ++j) {
    const char16_t t = tmpl[j];
    if (t == kBlank && i < input.size()) {
      // A free position: input that repeats the template's character here is passed over first.
      while (i < n && i < input.size() && input[i] == t) ++i;
      if (i < input.size()) {
        out.push_back(input[i]);
        ++i;
      } else {
        out.push_back(t);
      }
    } else {
      // A literal (or the input ran out): a typed copy of the literal is consumed with it, so
      // that "12/34" and "1234" lay out alike.
      while (i < input.size() && input[i] == t) ++i;
      out.push_back(t);
    }
  }
  if (FilterMaskChars(text, Text_And_Number).empty()) return tmpl;
  return host::Trim(out);
}

String TextNoMask(StringView text, StringView mask, int32_t maskType) {
  if (mask.empty()) return String(text);
  if (maskType < Only_Text || maskType > Text_And_Number) return String();
  return FilterMaskChars(text, maskType);
}

MaskKeyResult MaskKeyPress(StringView text, StringView mask, int32_t maskType, bool numberOnly, int32_t caret,
                           int16_t& keyAscii) {
  const String tmpl = MaskTemplate(mask);
  const int32_t n = static_cast<int32_t>(tmpl.size());
  MaskKeyResult result{String(text), std::clamp(caret, 0, n), false};
  if (keyAscii == kEnter) return result;
  const int16_t key = keyAscii;
  keyAscii = 0;

  if (key == kBackspace) {
    // Back over literals to the nearest free position before the caret, and blank it there.
    for (int32_t p = result.caret - 1; p >= 0; --p) {
      if (tmpl[p] != kBlank) continue;
      result.text = PadToTemplate(text, tmpl);
      result.text[p] = kBlank;
      result.caret = p;
      result.changed = true;
      break;
    }
    return result;
  }
  if (key < 32 || key > 0xFFFF) return result;
  const auto c = static_cast<char16_t>(static_cast<uint16_t>(key));
  if (!MaskAcceptsChar(c, maskType, numberOnly)) return result;
  // Forward over literals to the next free position, which the character overwrites.
  for (int32_t p = result.caret; p < n; ++p) {
    if (tmpl[p] != kBlank) continue;
    result.text = PadToTemplate(text, tmpl);
    result.text[p] = c;
    result.caret = p + 1;
    result.changed = true;
    break;
  }
  return result;
}

String MaskBlankSelection(StringView text, StringView mask, int32_t selStart, int32_t selLength, int32_t& caret) {
  const String tmpl = MaskTemplate(mask);
  const int32_t n = static_cast<int32_t>(tmpl.size());
  const int32_t p = std::max(selStart, 1);
  caret = p;
  String out(text);
  // Position p is 1-based: the last position of the mask may still be blanked.
  if (p > n) return out;
  // 1-based positions to blank: the selection, or position p alone.
  int32_t first = p;
  int32_t last = p;
  if (selLength > 0) {
    first = selStart + 1;
    last = selStart + selLength;
  }
  const int32_t textLength = static_cast<int32_t>(out.size());
  for (int32_t pos = first; pos <= last && pos <= textLength && pos <= n; ++pos) {
    if (out[pos - 1] != tmpl[pos - 1]) out[pos - 1] = kBlank;
  }
  return out;
}

int32_t MaskFirstFree(StringView text, StringView mask) {
  const String tmpl = MaskTemplate(mask);
  for (size_t j = 0; j < tmpl.size(); ++j) {
    if (tmpl[j] != kBlank) continue;
    if (j >= text.size() || text[j] == kBlank) return static_cast<int32_t>(j);
  }
  return static_cast<int32_t>(text.size());
}

}  // namespace mx::entry
