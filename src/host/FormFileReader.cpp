#include "host/FormFileReader.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "host/Err.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

struct Line {
  String text;
  int32_t number = 0;
};

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

StringView TrimBlanks(StringView s) {
  size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

size_t LeadingBlanks(StringView s) {
  size_t n = 0;
  while (n < s.size() && IsBlank(s[n])) ++n;
  return n;
}

bool EqualsNoCase(StringView a, StringView b) { return a.size() == b.size() && FoldCase(a) == FoldCase(b); }

// The first blank-separated word of a trimmed line, and what follows it (trimmed).
StringView FirstWord(StringView t, StringView* rest = nullptr) {
  size_t n = 0;
  while (n < t.size() && !IsBlank(t[n])) ++n;
  if (rest) *rest = TrimBlanks(t.substr(n));
  return t.substr(0, n);
}

// A keyword line such as "End" or "EndProperty": the word alone, or followed by a comment.
bool IsKeywordLine(StringView t, StringView keyword) {
  StringView rest;
  return EqualsNoCase(FirstWord(t, &rest), keyword) && (rest.empty() || rest[0] == u'\'');
}

// A line that opens a block: the keyword as its first word, not followed by "=". A property
// that happens to be named "Begin" stays a property when the writer puts blanks before its "=".
bool OpensBlock(StringView t, StringView keyword) {
  StringView rest;
  return EqualsNoCase(FirstWord(t, &rest), keyword) && (rest.empty() || rest[0] != u'=');
}

std::string Quote(StringView s) { return "\"" + ToUtf8(s) + "\""; }

std::vector<Line> SplitLines(const String& text) {
  std::vector<Line> lines;
  size_t start = 0;
  int32_t number = 1;
  for (size_t i = 0; i <= text.size(); ++i) {
    bool end = i == text.size();
    if (!end && text[i] != u'\r' && text[i] != u'\n') continue;
    // The last piece after a final line break is no line.
    if (end && start == text.size()) break;
    lines.push_back(Line{text.substr(start, i - start), number++});
    if (!end && text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
    start = i + 1;
  }
  return lines;
}

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return -1;
}

struct ParsedValue {
  enum Kind { Value, Reference, Unknown } kind = Unknown;
  Variant value;
  ValueStyle style = ValueStyle::Canonical;
  String comment;
  String refFile;
  uint32_t refOffset = 0;
};

class Parser {
 public:
  Parser(const CompanionLoader& companions, FormFileError& error) : m_companions(companions), m_error(error) {}

  bool Run(const std::vector<Line>& lines, FormFile& out);

 private:
  struct Open {
    FormBlock* block;
    int32_t beginLine;
    bool lastWasHost;  // where an unknown line goes: with the property before it
  };

  bool Fail(int32_t line, std::string reason) {
    m_error.line = line;
    m_error.reason = std::move(reason);
    return false;
  }

  bool ParseBlockHeader(StringView rest, int32_t line, FormBlock& block);
  bool ParseValue(StringView text, int32_t line, ParsedValue& out);
  bool ParseNumber(StringView token, int32_t line, ParsedValue& out);
  bool ResolveEntry(StringView file, uint32_t offset, int32_t line, FrxEntry& entry);
  bool ResolveReferences(const std::vector<String>& rawLines, int32_t firstLine, std::vector<FrxEntry>& entries);
  bool ReadProperty(StringView t, int32_t line, Open& open, bool& understood);
  bool ReadFont(const std::vector<Line>& lines, size_t& i, StringView name, Open& open);
  bool ReadUnknownPropertyBlock(const std::vector<Line>& lines, size_t& i, Open& open);
  bool AddUnknownLine(const Line& line, Open& open);

  const CompanionLoader& m_companions;
  FormFileError& m_error;
};

bool Parser::ParseBlockHeader(StringView rest, int32_t line, FormBlock& block) {
  StringView after;
  StringView cls = FirstWord(rest, &after);
  size_t dot = cls.find(u'.');
  if (cls.empty() || dot == StringView::npos || dot == 0 || dot + 1 == cls.size()) {
    return Fail(line, "expected Library.Class after Begin, found " + Quote(cls));
  }
  StringView trailing;
  StringView name = FirstWord(after, &trailing);
  if (name.empty() || name[0] == u'\'') return Fail(line, "the block " + Quote(cls) + " has no control name");
  if (!trailing.empty() && trailing[0] != u'\'') return Fail(line, "unexpected text after the block name: " + Quote(trailing));
  block.library = String(cls.substr(0, dot));
  block.className = String(cls.substr(dot + 1));
  block.name = String(name);
  return true;
}

bool Parser::ParseNumber(StringView token, int32_t line, ParsedValue& out) {
  std::string ascii;
  for (char16_t c : token) {
    if (c > 0x7F) return Fail(line, "bad number " + Quote(token));
    ascii.push_back(static_cast<char>(c));
  }
  const char* first = ascii.data();
  const char* last = first + ascii.size();
  bool negative = false;
  if (first != last && (*first == '+' || *first == '-')) {
    negative = *first == '-';
    ++first;
  }
  // from_chars takes no sign of its own and no blanks: digits must follow at once.
  if (first == last || (*first != '.' && (*first < '0' || *first > '9'))) return Fail(line, "bad number " + Quote(token));
  bool whole = ascii.find_first_of(".eE") == std::string::npos;
  if (whole) {
    uint64_t magnitude = 0;
    auto [end, ec] = std::from_chars(first, last, magnitude);
    if (end != last) return Fail(line, "bad number " + Quote(token));
    if (ec == std::errc() && magnitude <= (negative ? 2147483648ull : 2147483647ull)) {
      int64_t v = negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
      out.value = Variant(static_cast<int32_t>(v));
      return true;
    }
    // Beyond a Long: carried as a Double, as the host's text conversion would.
  }
  double value = 0;
  auto [end, ec] = std::from_chars(first, last, value, std::chars_format::general);
  if (end != last || ec != std::errc()) return Fail(line, "bad number " + Quote(token));
  out.value = Variant(negative ? -value : value);
  return true;
}

bool Parser::ParseValue(StringView text, int32_t line, ParsedValue& out) {
  StringView v = TrimBlanks(text);
  out = ParsedValue{};
  if (v.empty()) return true;  // Unknown
  size_t pos = 0;
  if (v[0] == u'"') {
    String s;
    bool closed = false;
    for (pos = 1; pos < v.size(); ++pos) {
      if (v[pos] != u'"') {
        s.push_back(v[pos]);
      } else if (pos + 1 < v.size() && v[pos + 1] == u'"') {
        s.push_back(u'"');
        ++pos;
      } else {
        closed = true;
        ++pos;
        break;
      }
    }
    if (!closed) return Fail(line, "unterminated string");
    if (pos < v.size() && v[pos] == u':') {
      uint64_t offset = 0;
      size_t digits = 0;
      for (++pos; pos < v.size() && HexDigit(v[pos]) >= 0; ++pos, ++digits) {
        offset = offset * 16 + static_cast<uint64_t>(HexDigit(v[pos]));
        if (offset > 0xFFFFFFFFu) return Fail(line, "companion file offset too large");
      }
      if (digits == 0) return Fail(line, "bad companion file offset after " + Quote(s));
      out.kind = ParsedValue::Reference;
      out.refFile = std::move(s);
      out.refOffset = static_cast<uint32_t>(offset);
    } else {
      out.kind = ParsedValue::Value;
      out.value = Variant(std::move(s));
    }
  } else if (v.size() >= 2 && v[0] == u'&' && (v[1] == u'H' || v[1] == u'h')) {
    uint64_t n = 0;
    size_t significant = 0;
    for (pos = 2; pos < v.size() && HexDigit(v[pos]) >= 0; ++pos) {
      n = n * 16 + static_cast<uint64_t>(HexDigit(v[pos]));
      if (n != 0) ++significant;
      if (significant > 8) return Fail(line, "hexadecimal number too large");
    }
    if (pos == 2) return Fail(line, "bad hexadecimal number " + Quote(FirstWord(v)));
    bool isLong = pos < v.size() && v[pos] == u'&';
    if (isLong) {
      ++pos;
      out.value = Variant(static_cast<int32_t>(static_cast<uint32_t>(n)));
      out.style = ValueStyle::HexLong;
    } else {
      if (n > 0xFFFF) return Fail(line, "hexadecimal Integer out of range (a Long ends in \"&\")");
      out.value = Variant(static_cast<int16_t>(static_cast<uint16_t>(n)));
      out.style = ValueStyle::HexInteger;
    }
    if (pos < v.size() && !IsBlank(v[pos]) && v[pos] != u'\'') {
      return Fail(line, "bad hexadecimal number " + Quote(FirstWord(v)));
    }
    out.kind = ParsedValue::Value;
  } else if ((v[0] >= u'0' && v[0] <= u'9') || v[0] == u'-' || v[0] == u'+' || v[0] == u'.') {
    while (pos < v.size() && !IsBlank(v[pos]) && v[pos] != u'\'') ++pos;
    if (!ParseNumber(v.substr(0, pos), line, out)) return false;
    out.kind = ParsedValue::Value;
  } else {
    return true;  // an identifier or other text: not a value this reader knows
  }
  StringView tail = TrimBlanks(v.substr(pos));
  if (!tail.empty()) {
    if (tail[0] != u'\'') return Fail(line, "unexpected text after the value: " + Quote(tail));
    out.comment = String(tail.substr(1));
  }
  // -1 and 0 with the comment the host writes beside them are Booleans.
  if (const int32_t* n = out.value.TryGet<int32_t>(); n && (*n == -1 || *n == 0)) {
    StringView c = TrimBlanks(out.comment);
    if ((*n == -1 && EqualsNoCase(c, u"True")) || (*n == 0 && EqualsNoCase(c, u"False"))) {
      out.value = Variant(*n == -1);
      out.comment.clear();
    }
  }
  return true;
}

bool Parser::ResolveEntry(StringView file, uint32_t offset, int32_t line, FrxEntry& entry) {
  const FrxReader* frx = m_companions ? m_companions(file) : nullptr;
  if (!frx) return Fail(line, "companion file " + Quote(file) + " not found");
  std::string reason;
  if (!frx->ReadEntry(offset, entry, &reason)) return Fail(line, ToUtf8(file) + ": " + reason);
  return true;
}

bool Parser::ResolveReferences(const std::vector<String>& rawLines, int32_t firstLine, std::vector<FrxEntry>& entries) {
  for (size_t k = 0; k < rawLines.size(); ++k) {
    for (const FrxReference& ref : FindFrxReferences(rawLines[k])) {
      FrxEntry entry;
      if (!ResolveEntry(ref.fileName, ref.offset, firstLine + static_cast<int32_t>(k), entry)) return false;
      entries.push_back(std::move(entry));
    }
  }
  return true;
}

bool Parser::AddUnknownLine(const Line& line, Open& open) {
  std::vector<String> raw{String(StringView(line.text).substr(LeadingBlanks(line.text)))};
  std::vector<FrxEntry> entries;
  if (!ResolveReferences(raw, line.number, entries)) return false;
  PropertyBag& section = open.lastWasHost || open.block->IsHostClass() ? open.block->host : open.block->bag;
  section.AddUnknownLines(std::move(raw), std::move(entries));
  return true;
}

bool Parser::ReadProperty(StringView t, int32_t line, Open& open, bool& understood) {
  understood = false;
  size_t eq = t.find(u'=');
  if (eq == StringView::npos) return true;
  StringView key = TrimBlanks(t.substr(0, eq));
  if (!IsValidBagKey(key)) return true;
  ParsedValue parsed;
  if (!ParseValue(t.substr(eq + 1), line, parsed)) return false;
  if (parsed.kind == ParsedValue::Unknown) return true;

  BagEntry entry;
  entry.key = String(key);
  entry.style = parsed.style;
  entry.comment = std::move(parsed.comment);
  if (parsed.kind == ParsedValue::Reference) {
    FrxEntry frx;
    if (!ResolveEntry(parsed.refFile, parsed.refOffset, line, frx)) return false;
    if (frx.kind == FrxEntryKind::Picture) {
      entry.value = Variant(StdPicture::FromBytes(std::move(frx.bytes)));
    } else {
      entry.value = Variant(std::move(frx.bytes));
      entry.companionBlob = true;
    }
  } else {
    entry.value = std::move(parsed.value);
  }
  bool host = open.block->IsHostKey(key);
  (host ? open.block->host : open.block->bag).Put(std::move(entry));
  open.lastWasHost = host;
  understood = true;
  return true;
}

bool Parser::ReadFont(const std::vector<Line>& lines, size_t& i, StringView name, Open& open) {
  const int32_t beginLine = lines[i].number;
  auto font = std::make_shared<StdFont>();
  for (++i; i < lines.size(); ++i) {
    StringView t = TrimBlanks(lines[i].text);
    int32_t line = lines[i].number;
    if (t.empty()) continue;
    if (IsKeywordLine(t, u"EndProperty")) {
      bool host = open.block->IsHostKey(name);
      BagEntry entry;
      entry.key = String(name);
      entry.value = Variant(std::move(font));
      (host ? open.block->host : open.block->bag).Put(std::move(entry));
      open.lastWasHost = host;
      return true;
    }
    if (OpensBlock(t, u"Begin") || OpensBlock(t, u"BeginProperty") || IsKeywordLine(t, u"End")) break;
    size_t eq = t.find(u'=');
    // A font has a fixed set of properties; anything else in its block has nowhere to go.
    if (eq == StringView::npos) continue;
    StringView key = TrimBlanks(t.substr(0, eq));
    ParsedValue parsed;
    if (!ParseValue(t.substr(eq + 1), line, parsed)) return false;
    if (parsed.kind == ParsedValue::Reference) return Fail(line, "a font property cannot refer to the companion file");
    if (parsed.kind == ParsedValue::Unknown) continue;
    try {
      String k = FoldCase(key);
      const Variant& v = parsed.value;
      if (k == u"NAME") font->Name(v.ToString());
      else if (k == u"SIZE") font->Size(v.ToCurrency());
      else if (k == u"CHARSET") font->Charset(v.ToInteger());
      else if (k == u"WEIGHT") font->Weight(v.ToInteger());
      else if (k == u"UNDERLINE") font->Underline(v.ToBoolean());
      else if (k == u"ITALIC") font->Italic(v.ToBoolean());
      else if (k == u"STRIKETHROUGH") font->Strikethrough(v.ToBoolean());
      else if (k == u"BOLD") font->Bold(v.ToBoolean());
    } catch (const RuntimeError&) {
      return Fail(line, "bad value for the font property " + Quote(key));
    }
  }
  return Fail(beginLine, "BeginProperty " + ToUtf8(name) + " has no EndProperty");
}

bool Parser::ReadUnknownPropertyBlock(const std::vector<Line>& lines, size_t& i, Open& open) {
  // Kept whole, nested BeginProperty blocks included, with indentation relative to its first
  // line.
  const size_t first = i;
  const size_t base = LeadingBlanks(lines[i].text);
  std::vector<String> raw;
  int depth = 0;
  for (; i < lines.size(); ++i) {
    const String& text = lines[i].text;
    StringView t = TrimBlanks(text);
    size_t lead = LeadingBlanks(text);
    raw.push_back(text.substr(lead >= base ? base : lead));
    if (OpensBlock(t, u"BeginProperty")) {
      ++depth;
    } else if (IsKeywordLine(t, u"EndProperty")) {
      if (--depth == 0) {
        std::vector<FrxEntry> entries;
        if (!ResolveReferences(raw, lines[first].number, entries)) return false;
        PropertyBag& section = open.lastWasHost || open.block->IsHostClass() ? open.block->host : open.block->bag;
        section.AddUnknownLines(std::move(raw), std::move(entries));
        return true;
      }
    } else if (IsKeywordLine(t, u"End") || OpensBlock(t, u"Begin")) {
      break;
    }
  }
  StringView rest;
  FirstWord(TrimBlanks(lines[first].text), &rest);
  return Fail(lines[first].number, "BeginProperty " + ToUtf8(FirstWord(rest)) + " has no EndProperty");
}

bool Parser::Run(const std::vector<Line>& lines, FormFile& out) {
  out = FormFile{};
  out.version.clear();
  enum class Phase { Header, Body, Trailer } phase = Phase::Header;
  std::vector<Open> stack;

  for (size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    StringView t = TrimBlanks(line.text);
    StringView rest;
    StringView word = FirstWord(t, &rest);

    if (phase == Phase::Trailer) {
      out.trailer.push_back(line.text);
      continue;
    }
    if (phase == Phase::Header) {
      if (OpensBlock(t, u"Begin")) {
        if (!ParseBlockHeader(rest, line.number, out.root)) return false;
        stack.push_back(Open{&out.root, line.number, true});
        phase = Phase::Body;
      } else if (EqualsNoCase(word, u"VERSION") && !rest.empty() && out.version.empty()) {
        out.version = String(rest);
      } else {
        FormHeaderLine header;
        header.text = line.text;
        // Object = "<reference>"; "<file>"
        StringView objectRest;
        if (EqualsNoCase(FirstWord(t, &objectRest), u"Object") && !objectRest.empty() && objectRest[0] == u'=') {
          ParsedValue ref, file;
          StringView values = TrimBlanks(objectRest.substr(1));
          size_t semi = values.rfind(u';');
          FormFileError ignored;
          Parser quiet(m_companions, ignored);
          if (semi != StringView::npos && quiet.ParseValue(values.substr(0, semi), 0, ref) &&
              quiet.ParseValue(values.substr(semi + 1), 0, file) && ref.kind == ParsedValue::Value &&
              file.kind == ParsedValue::Value && ref.value.IsString() && file.value.IsString() &&
              ref.comment.empty() && file.comment.empty()) {
            header.object = FormObjectReference{ref.value.ToString(), file.value.ToString()};
            header.text.clear();
          }
        }
        out.header.push_back(std::move(header));
      }
      continue;
    }

    // Inside a block.
    Open& open = stack.back();
    if (IsKeywordLine(t, u"End")) {
      stack.pop_back();
      if (stack.empty()) phase = Phase::Trailer;
    } else if (OpensBlock(t, u"Begin")) {
      FormBlock child;
      if (!ParseBlockHeader(rest, line.number, child)) return false;
      open.block->children.push_back(std::move(child));
      stack.push_back(Open{&open.block->children.back(), line.number, true});
    } else if (OpensBlock(t, u"BeginProperty")) {
      StringView clsid;
      StringView name = FirstWord(rest, &clsid);
      if (name.empty()) return Fail(line.number, "BeginProperty without a property name");
      StringView id = FirstWord(clsid);
      if (EqualsNoCase(id, kStdFontClassId)) {
        if (!ReadFont(lines, i, name, open)) return false;
      } else if (!ReadUnknownPropertyBlock(lines, i, open)) {
        return false;
      }
    } else if (IsKeywordLine(t, u"EndProperty")) {
      return Fail(line.number, "EndProperty without BeginProperty");
    } else {
      bool understood = false;
      if (!ReadProperty(t, line.number, open, understood)) return false;
      if (!understood && !AddUnknownLine(line, open)) return false;
    }
  }
  if (phase == Phase::Header) {
    return Fail(lines.empty() ? 0 : lines.back().number, "no Begin block: this is not a form file");
  }
  if (!stack.empty()) {
    return Fail(stack.back().beginLine, "the block " + Quote(stack.back().block->name) + " has no End");
  }
  return true;
}

std::optional<ByteArray> ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  ByteArray bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return bytes;
}

// A file in a folder by name; when the exact name is not there, one that differs only in case
// (form files written on a system that ignores case name their companions loosely).
std::optional<std::filesystem::path> FindInFolder(const std::filesystem::path& folder, const std::string& name) {
  std::error_code ec;
  std::filesystem::path exact = folder / name;
  if (std::filesystem::is_regular_file(exact, ec)) return exact;
  String wanted = FoldCase(FromUtf8(name));
  for (const auto& item : std::filesystem::directory_iterator(folder, ec)) {
    if (FoldCase(FromUtf8(item.path().filename().string())) == wanted && item.is_regular_file(ec)) return item.path();
  }
  return std::nullopt;
}

}  // namespace

std::string FormFileError::Message() const {
  return line > 0 ? "line " + std::to_string(line) + ": " + reason : reason;
}

bool ParseFormText(std::span<const uint8_t> text, const CompanionLoader& companions, FormFile& out,
                   FormFileError& error) {
  error = FormFileError{};
  Parser parser(companions, error);
  return parser.Run(SplitLines(DecodeWindows1252(text)), out);
}

bool ReadFormFile(const std::string& path, FormFile& out, FormFileError& error) {
  error = FormFileError{};
  std::optional<ByteArray> text = ReadWholeFile(path);
  if (!text) {
    error.reason = "cannot read " + path;
    return false;
  }
  std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (folder.empty()) folder = ".";
  std::map<String, std::unique_ptr<FrxReader>> cache;
  CompanionLoader loader = [&](StringView fileName) -> const FrxReader* {
    String key = FoldCase(fileName);
    auto it = cache.find(key);
    if (it != cache.end()) return it->second.get();
    // A reference names a file beside the form; a path in it is not followed elsewhere.
    std::string name = ToUtf8(fileName);
    size_t sep = name.find_last_of("/\\");
    if (sep != std::string::npos) name = name.substr(sep + 1);
    std::unique_ptr<FrxReader> reader;
    if (auto found = FindInFolder(folder, name)) {
      if (auto bytes = ReadWholeFile(*found)) reader = std::make_unique<FrxReader>(std::move(*bytes));
    }
    return (cache[key] = std::move(reader)).get();
  };
  return ParseFormText(*text, loader, out, error);
}

}  // namespace mx::host
