#include "host/Strings.h"

#include <algorithm>

#include "host/Err.h"

namespace mx::host {

namespace {

[[noreturn]] void BadArgument() { Raise(kErrInvalidProcedureCall); }

// Base letters of U+0100..U+017F; '*' keeps the letter as it is (ligatures, no plain base).
constexpr char16_t kLatinExtABase[] =
    u"AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi**JjKkk"
    u"LlLlLlLlLlNnNnNnnNnOoOoOo**RrRrRrSsSsSsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs";
static_assert(sizeof(kLatinExtABase) / sizeof(char16_t) == 129);

// Base letters of U+00C0..U+00FF.
constexpr char16_t kLatin1Base[] =
    u"AAAAAA*CEEEEIIIIDNOOOOO*OUUUUY**"
    u"aaaaaa*ceeeeiiiidnooooo*ouuuuy*y";
static_assert(sizeof(kLatin1Base) / sizeof(char16_t) == 65);

// Windows-1252 code points 0x80..0x9F; 0 marks the five codes the page leaves unassigned, which
// map to the control characters of the same number.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

int32_t CheckedSize(size_t n) {
  if (n > static_cast<size_t>(INT32_MAX)) Raise(kErrOverflow);
  return static_cast<int32_t>(n);
}

// The order of text comparison. Primary weights group punctuation (by code) before digits
// before letters, and give a letter and its accented forms the same weight.
uint32_t PrimaryWeight(char16_t c) {
  char16_t u = UpperChar(BaseLetter(c));
  if (u >= u'A' && u <= u'Z') return 0x30000u + u;
  if (u >= u'0' && u <= u'9') return 0x20000u + u;
  bool letter = (u >= 0xC0 && u != 0xD7 && u != 0xF7 && u < 0x2000) || (u >= 0x3000 && (u < 0xD800 || u > 0xDFFF));
  if (letter) return 0x30100u + u;
  return u;
}

// Position (0-based) of find in s at or after from, or npos; text mode folds case on the fly.
size_t FindIn(StringView s, StringView find, size_t from, VbCompareMethod compare) {
  if (compare == vbBinaryCompare) return s.find(find, from);
  if (find.size() > s.size()) return StringView::npos;
  String folded = FoldCase(find);
  for (size_t i = from; i + find.size() <= s.size(); ++i) {
    size_t k = 0;
    while (k < folded.size() && UpperChar(s[i + k]) == folded[k]) ++k;
    if (k == folded.size()) return i;
  }
  return StringView::npos;
}

size_t FindLastIn(StringView s, StringView find, VbCompareMethod compare) {
  if (compare == vbBinaryCompare) return s.rfind(find);
  if (find.size() > s.size()) return StringView::npos;
  String folded = FoldCase(find);
  for (size_t i = s.size() - find.size() + 1; i-- > 0;) {
    size_t k = 0;
    while (k < folded.size() && UpperChar(s[i + k]) == folded[k]) ++k;
    if (k == folded.size()) return i;
  }
  return StringView::npos;
}

String DigitsOf(uint32_t value, unsigned base) {
  String out;
  do {
    unsigned d = value % base;
    out.push_back(static_cast<char16_t>(d < 10 ? u'0' + d : u'A' + d - 10));
    value /= base;
  } while (value != 0);
  std::reverse(out.begin(), out.end());
  return out;
}

// The bit pattern Hex and Oct show: 16 bits for the host's Integer and Byte, 32 otherwise.
uint32_t WholePattern(const Variant& number) {
  if (number.IsNull()) Raise(kErrInvalidUseOfNull);
  if (const int16_t* i = number.TryGet<int16_t>()) return static_cast<uint16_t>(*i);
  if (const uint8_t* b = number.TryGet<uint8_t>()) return *b;
  if (const bool* b = number.TryGet<bool>()) return *b ? 0xFFFFu : 0u;
  return static_cast<uint32_t>(number.ToLong());
}

}  // namespace

// ---- case ---------------------------------------------------------------------------------

char16_t UpperChar(char16_t c) {
  if (c < 0x80) return (c >= u'a' && c <= u'z') ? c - 32 : c;
  if (c < 0x100) {
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    if (c == 0xFF) return 0x178;
    return c;
  }
  if (c < 0x180) {
    if (c == 0x131) return u'I';
    if (c == 0x17F) return u'S';
    if (c == 0x138 || c == 0x149) return c;
    if ((c <= 0x137) || (c >= 0x14A && c <= 0x177)) return (c & 1) ? c - 1 : c;
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) ? c : c - 1;
    return c;
  }
  if (c >= 0x3B1 && c <= 0x3C9) return c == 0x3C2 ? 0x3A3 : c - 32;  // final sigma is a sigma
  if (c == 0x3AC) return 0x386;
  if (c >= 0x3AD && c <= 0x3AF) return c - 37;
  if (c == 0x3CC) return 0x38C;
  if (c == 0x3CD || c == 0x3CE) return c - 63;
  if (c >= 0x430 && c <= 0x44F) return c - 32;
  if (c >= 0x450 && c <= 0x45F) return c - 80;
  return c;
}

char16_t LowerChar(char16_t c) {
  if (c < 0x80) return (c >= u'A' && c <= u'Z') ? c + 32 : c;
  if (c < 0x100) return (c >= 0xC0 && c <= 0xDE && c != 0xD7) ? c + 32 : c;
  if (c < 0x180) {
    if (c == 0x130) return u'i';
    if (c == 0x178) return 0xFF;
    if (c == 0x138 || c == 0x149 || c == 0x17F) return c;
    if ((c <= 0x137) || (c >= 0x14A && c <= 0x177)) return (c & 1) ? c : c + 1;
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) ? c + 1 : c;
    return c;
  }
  if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 32;
  if (c == 0x386) return 0x3AC;
  if (c >= 0x388 && c <= 0x38A) return c + 37;
  if (c == 0x38C) return 0x3CC;
  if (c == 0x38E || c == 0x38F) return c + 63;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  return c;
}

char16_t BaseLetter(char16_t c) {
  char16_t base = c;
  if (c >= 0xC0 && c <= 0xFF) base = kLatin1Base[c - 0xC0];
  else if (c >= 0x100 && c <= 0x17F) base = kLatinExtABase[c - 0x100];
  return base == u'*' ? c : base;
}

String FoldCase(StringView s) {
  String out(s);
  for (char16_t& c : out) c = UpperChar(c);
  return out;
}

String LCase(StringView s) {
  String out(s);
  for (char16_t& c : out) c = LowerChar(c);
  return out;
}

String UCase(StringView s) { return FoldCase(s); }

// ---- pieces -------------------------------------------------------------------------------

int32_t Len(StringView s) { return CheckedSize(s.size()); }
int32_t LenB(StringView s) { return CheckedSize(s.size() * 2); }

String Mid(StringView s, int32_t start, std::optional<int32_t> length) {
  if (start < 1 || (length && *length < 0)) BadArgument();
  size_t from = static_cast<size_t>(start) - 1;
  if (from >= s.size()) return String();
  return String(s.substr(from, length ? static_cast<size_t>(*length) : StringView::npos));
}

String Left(StringView s, int32_t length) {
  if (length < 0) BadArgument();
  return String(s.substr(0, static_cast<size_t>(length)));
}

String Right(StringView s, int32_t length) {
  if (length < 0) BadArgument();
  size_t n = std::min(s.size(), static_cast<size_t>(length));
  return String(s.substr(s.size() - n));
}

int32_t InStr(StringView s, StringView find, VbCompareMethod compare) { return InStr(1, s, find, compare); }

int32_t InStr(int32_t start, StringView s, StringView find, VbCompareMethod compare) {
  if (start < 1) BadArgument();
  if (s.empty()) return 0;
  size_t from = static_cast<size_t>(start) - 1;
  // The empty text is found at every position up to just past the end.
  if (find.empty()) return from <= s.size() ? start : 0;
  if (from >= s.size()) return 0;
  size_t at = FindIn(s, find, from, compare);
  return at == StringView::npos ? 0 : CheckedSize(at + 1);
}

int32_t InStrRev(StringView s, StringView find, int32_t start, VbCompareMethod compare) {
  if (start == 0 || start < -1) BadArgument();
  if (s.empty()) return 0;
  if (start == -1) start = Len(s);
  if (static_cast<size_t>(start) > s.size()) return 0;
  if (find.empty()) return start;
  // Only matches that end at or before start count.
  size_t at = FindLastIn(s.substr(0, static_cast<size_t>(start)), find, compare);
  return at == StringView::npos ? 0 : CheckedSize(at + 1);
}

String Replace(StringView expression, StringView find, StringView replacement, int32_t start, int32_t count,
               VbCompareMethod compare) {
  if (start < 1 || count < -1) BadArgument();
  size_t from = static_cast<size_t>(start) - 1;
  if (from >= expression.size()) return String();
  StringView work = expression.substr(from);
  if (find.empty() || count == 0) return String(work);
  String out;
  out.reserve(work.size());
  size_t pos = 0;
  int32_t done = 0;
  while (count == -1 || done < count) {
    size_t at = FindIn(work, find, pos, compare);
    if (at == StringView::npos) break;
    out.append(work.substr(pos, at - pos));
    out.append(replacement);
    pos = at + find.size();
    ++done;
  }
  out.append(work.substr(pos));
  return out;
}

String LTrim(StringView s) {
  size_t i = 0;
  while (i < s.size() && s[i] == u' ') ++i;
  return String(s.substr(i));
}

String RTrim(StringView s) {
  size_t n = s.size();
  while (n > 0 && s[n - 1] == u' ') --n;
  return String(s.substr(0, n));
}

String Trim(StringView s) { return LTrim(RTrim(s)); }

String Space(int32_t count) {
  if (count < 0) BadArgument();
  return String(static_cast<size_t>(count), u' ');
}

String StringOf(int32_t count, StringView character) {
  if (count < 0 || character.empty()) BadArgument();
  return String(static_cast<size_t>(count), character.front());
}

String StringOf(int32_t count, int32_t charCode) {
  // A code above 255 is taken modulo 256, as the host's character codes are bytes here.
  if (count < 0 || charCode < 0) BadArgument();
  return String(static_cast<size_t>(count), Chr(charCode % 256).front());
}

String StrReverse(StringView s) { return String(s.rbegin(), s.rend()); }

std::vector<String> Split(StringView expression, StringView delimiter, int32_t limit, VbCompareMethod compare) {
  if (limit < -1) BadArgument();
  std::vector<String> parts;
  if (expression.empty() || limit == 0) return parts;
  if (delimiter.empty()) {
    parts.emplace_back(expression);
    return parts;
  }
  size_t pos = 0;
  while (limit == -1 || parts.size() + 1 < static_cast<size_t>(limit)) {
    size_t at = FindIn(expression, delimiter, pos, compare);
    if (at == StringView::npos) break;
    parts.emplace_back(expression.substr(pos, at - pos));
    pos = at + delimiter.size();
  }
  parts.emplace_back(expression.substr(pos));
  return parts;
}

String Join(const std::vector<String>& items, StringView delimiter) {
  String out;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i) out.append(delimiter);
    out.append(items[i]);
  }
  return out;
}

String Join(const Variant& items, StringView delimiter) {
  const VariantArray* arr = items.Array();
  if (!arr) Raise(kErrTypeMismatch);
  if (arr->Dimensions() > 1) BadArgument();
  String out;
  bool first = true;
  for (const Variant& v : *arr) {
    if (!first) out.append(delimiter);
    first = false;
    out.append(v.ToString());
  }
  return out;
}

// ---- comparison ---------------------------------------------------------------------------

int32_t StrComp(StringView a, StringView b, VbCompareMethod compare) {
  if (compare == vbBinaryCompare) {
    int c = a.compare(b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
  }
  size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    uint32_t wa = PrimaryWeight(a[i]);
    uint32_t wb = PrimaryWeight(b[i]);
    if (wa != wb) return wa < wb ? -1 : 1;
  }
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  // Same letters: the accents decide, the first difference first.
  for (size_t i = 0; i < n; ++i) {
    char16_t ua = UpperChar(a[i]);
    char16_t ub = UpperChar(b[i]);
    if (ua != ub) return ua < ub ? -1 : 1;
  }
  return 0;
}

bool TextEquals(StringView a, StringView b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && UpperChar(a[i]) != UpperChar(b[i])) return false;
  }
  return true;
}

// ---- character codes ----------------------------------------------------------------------

int32_t Asc(StringView s) {
  if (s.empty()) BadArgument();
  char16_t c = s.front();
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
  if (c <= 0x9F && kCp1252High[c - 0x80] == 0) return c;
  for (int i = 0; i < 32; ++i) {
    if (kCp1252High[i] == c) return 0x80 + i;
  }
  // Outside the code page: the closest plain letter, as the system's best-fit mapping gives.
  char16_t base = BaseLetter(c);
  if (base != c && base < 0x80) return base;
  return u'?';
}

int32_t AscW(StringView s) {
  if (s.empty()) BadArgument();
  return static_cast<int16_t>(s.front());
}

String Chr(int32_t code) {
  if (code < 0 || code > 255) BadArgument();
  if (code >= 0x80 && code <= 0x9F && kCp1252High[code - 0x80] != 0) return String(1, kCp1252High[code - 0x80]);
  return String(1, static_cast<char16_t>(code));
}

String ChrW(int32_t code) {
  if (code < -32768 || code > 65535) BadArgument();
  return String(1, static_cast<char16_t>(code < 0 ? code + 65536 : code));
}

// ---- numbers as text ----------------------------------------------------------------------

String Hex(const Variant& number) { return DigitsOf(WholePattern(number), 16); }
String Oct(const Variant& number) { return DigitsOf(WholePattern(number), 8); }

String Str(const Variant& number) {
  if (number.IsNull()) Raise(kErrInvalidUseOfNull);
  if (const bool* b = number.TryGet<bool>()) return *b ? u"True" : u"False";
  String text;
  bool negative;
  if (number.TryGet<float>() || number.TryGet<Currency>() || number.TryGet<double>()) {
    text = InvariantNumberToText(number);
    negative = !text.empty() && text.front() == u'-';
  } else if (number.TryGet<int16_t>() || number.TryGet<int32_t>() || number.TryGet<uint8_t>() || number.IsEmpty()) {
    int32_t v = number.ToLong();
    text = Variant(v).ToString();
    negative = v < 0;
  } else {
    double v = number.ToDouble();
    text = InvariantNumberToText(Variant(v));
    negative = !text.empty() && text.front() == u'-';
  }
  return negative ? text : u" " + text;
}

String LSet(StringView text, int32_t width) {
  if (width < 0) BadArgument();
  String out(text.substr(0, static_cast<size_t>(width)));
  out.resize(static_cast<size_t>(width), u' ');
  return out;
}

String RSet(StringView text, int32_t width) {
  if (width < 0) BadArgument();
  StringView cut = text.substr(0, static_cast<size_t>(width));
  return String(static_cast<size_t>(width) - cut.size(), u' ') + String(cut);
}

}  // namespace mx::host
