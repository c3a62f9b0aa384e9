#include "host/FormFileWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/Frx.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

constexpr size_t kIndent = 3;
constexpr size_t kNameColumn = 16;
// Longer strings go to the companion file: a text line of the form stays short enough for the
// host's line reader.
constexpr size_t kLongString = 255;

String Ascii(std::string_view s) { return String(s.begin(), s.end()); }

// The shortest decimal that reads back as the same value, written as the host writes numbers:
// "." for the decimal point and an exponent as "E+20" / "E-05".
template <typename T>
String FormatReal(T value) {
  if (value == 0) return u"0";
  char buf[64];
  auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
  std::string s(buf, end);
  size_t e = s.find('e');
  if (e == std::string::npos) return Ascii(s);
  std::string mantissa = s.substr(0, e);
  int exponent = std::stoi(s.substr(e + 1));
  std::string digits = std::to_string(std::abs(exponent));
  if (digits.size() < 2) digits.insert(0, "0");
  return Ascii(mantissa + "E" + (exponent < 0 ? "-" : "+") + digits);
}

String FormatCurrency(Currency c) {
  uint64_t magnitude = c.scaled < 0 ? static_cast<uint64_t>(-(c.scaled + 1)) + 1 : static_cast<uint64_t>(c.scaled);
  std::string s = std::to_string(magnitude / Currency::kScale);
  uint64_t frac = magnitude % Currency::kScale;
  if (frac != 0) {
    std::string f = std::to_string(frac + Currency::kScale).substr(1);  // four digits, leading zeros kept
    while (f.back() == '0') f.pop_back();
    s += "." + f;
  }
  return Ascii((c.scaled < 0 ? "-" : "") + s);
}

String FormatHex(uint32_t value, size_t minDigits) {
  static const char16_t* digits = u"0123456789ABCDEF";
  String hex;
  do {
    hex.insert(hex.begin(), digits[value & 15]);
    value >>= 4;
  } while (value != 0);
  while (hex.size() < minDigits) hex.insert(hex.begin(), u'0');
  return hex;
}

String Quoted(StringView s) {
  String out = u"\"";
  for (char16_t c : s) {
    out.push_back(c);
    if (c == u'"') out.push_back(c);
  }
  out.push_back(u'"');
  return out;
}

bool NamesColour(StringView key) { return FoldCase(key).find(u"COLOR") != String::npos; }

bool NeedsCompanion(const String& s) {
  if (s.size() > kLongString) return true;
  return std::any_of(s.begin(), s.end(), [](char16_t c) { return c < 0x20; });
}

class Writer {
 public:
  Writer(StringView companionName, const FormWriteOptions& options)
      : m_companionName(companionName), m_options(options) {}

  void Form(const FormFile& form) {
    if (!form.version.empty()) Line(0, u"VERSION " + form.version);
    for (const FormHeaderLine& header : form.header) {
      if (header.object) {
        Line(0, u"Object = " + Quoted(header.object->reference) + u"; " + Quoted(header.object->file));
      } else {
        Line(0, header.text);
      }
    }
    Block(form.root, 0);
    for (const String& line : form.trailer) Line(0, line);
  }

  [[nodiscard]] const String& Text() const { return m_text; }
  [[nodiscard]] const FrxWriter& Companion() const { return m_frx; }

 private:
  void Line(size_t indent, StringView text) {
    m_text.append(indent, u' ');
    m_text.append(text);
    m_text.append(u"\r\n");
  }

  void Block(const FormBlock& block, size_t depth) {
    size_t indent = depth * kIndent;
    // The trailing blank after the name is how the host writes the line.
    Line(indent, u"Begin " + block.FullClassName() + u" " + block.name + u" ");
    Section(block, block.host, indent + kIndent, true);
    Section(block, block.bag, indent + kIndent, false);
    for (const FormBlock& child : block.children) Block(child, depth + 1);
    Line(indent, u"End");
  }

  // The host's lines go in alphabetical order, each carrying along the unknown lines that
  // followed it; the bag keeps the order its keys were written in.
  void Section(const FormBlock& block, const PropertyBag& bag, size_t indent, bool sorted) {
    struct Group {
      const BagItem* entry;
      std::vector<const BagItem*> unknown;
    };
    std::vector<const BagItem*> leading;
    std::vector<Group> groups;
    for (const BagItem& item : bag.Items()) {
      if (item.IsUnknown()) {
        (groups.empty() ? leading : groups.back().unknown).push_back(&item);
      } else {
        groups.push_back(Group{&item, {}});
      }
    }
    if (sorted) {
      std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
        return FoldCase(a.entry->entry.key) < FoldCase(b.entry->entry.key);
      });
    }
    for (const BagItem* item : leading) Unknown(*item, indent);
    for (const Group& group : groups) {
      Entry(block, group.entry->entry, indent);
      for (const BagItem* item : group.unknown) Unknown(*item, indent);
    }
  }

  void Unknown(const BagItem& item, size_t indent) {
    // References inside kept lines point at the entries stored with them, in order; each entry
    // is written again and the reference follows it to its new offset.
    size_t next = 0;
    for (const String& line : item.unknownLines) {
      String out;
      size_t from = 0;
      for (const FrxReference& ref : FindFrxReferences(line)) {
        if (next >= item.unknownEntries.size()) break;
        const FrxEntry& entry = item.unknownEntries[next++];
        uint32_t offset = entry.kind == FrxEntryKind::Picture ? m_frx.AddPicture(entry.bytes) : m_frx.AddBlob(entry.bytes);
        out.append(line, from, ref.position - from);
        out += FormatFrxReference(m_companionName, offset);
        from = ref.position + ref.length;
      }
      out.append(line, from, String::npos);
      Line(indent, out);
    }
  }

  void Property(size_t indent, StringView key, StringView valueText) {
    String line(key);
    if (line.size() < kNameColumn) line.append(kNameColumn - line.size(), u' ');
    line += u"=   ";
    line += valueText;
    Line(indent, line);
  }

  void Font(size_t indent, StringView key, const StdFont& font) {
    Line(indent, u"BeginProperty " + String(key) + u" " + kStdFontClassId + u" ");
    size_t inner = indent + kIndent;
    Property(inner, u"Name", Quoted(font.Name()));
    Property(inner, u"Size", FormatCurrency(font.Size()));
    Property(inner, u"Charset", Ascii(std::to_string(font.Charset())));
    Property(inner, u"Weight", Ascii(std::to_string(font.Weight())));
    Property(inner, u"Underline", Boolean(font.Underline()));
    Property(inner, u"Italic", Boolean(font.Italic()));
    Property(inner, u"Strikethrough", Boolean(font.Strikethrough()));
    Line(indent, u"EndProperty");
  }

  static String Boolean(bool value) { return value ? u"-1  'True" : u"0   'False"; }

  String Reference(uint32_t offset) { return FormatFrxReference(m_companionName, offset); }

  void Entry(const FormBlock& block, const BagEntry& entry, size_t indent) {
    const Variant& v = entry.value;
    if (entry.companionBlob) {
      if (const ByteArray* bytes = v.Bytes()) Property(indent, entry.key, Reference(m_frx.AddBlob(*bytes)));
      return;
    }
    if (v.IsObject()) {
      ObjectRef obj = v.Obj();
      if (auto font = std::dynamic_pointer_cast<StdFont>(obj)) {
        Font(indent, entry.key, *font);
      } else if (auto picture = std::dynamic_pointer_cast<StdPicture>(obj); picture && !picture->IsEmpty()) {
        Property(indent, entry.key, Reference(m_frx.AddPicture(picture->Bytes())));
      }
      return;
    }
    if (const ByteArray* bytes = v.Bytes()) {
      Property(indent, entry.key, Reference(m_frx.AddBlob(*bytes)));
      return;
    }
    if (const String* s = v.TryGet<String>()) {
      if (NeedsCompanion(*s)) {
        Property(indent, entry.key, Reference(m_frx.AddBlob(EncodeWindows1252(*s))));
      } else {
        Property(indent, entry.key, WithComment(Quoted(*s), entry.comment));
      }
      return;
    }
    if (const bool* b = v.TryGet<bool>()) {
      Property(indent, entry.key, Boolean(*b));
      return;
    }
    String text;
    bool whole = false;
    if (const int16_t* i = v.TryGet<int16_t>()) {
      text = entry.style == ValueStyle::HexInteger ? u"&H" + FormatHex(static_cast<uint16_t>(*i), 1)
                                                   : Ascii(std::to_string(*i));
      whole = true;
    } else if (const int32_t* l = v.TryGet<int32_t>()) {
      bool hex = entry.style == ValueStyle::HexLong ||
                 (entry.style == ValueStyle::Canonical && NamesColour(entry.key));
      text = hex ? u"&H" + FormatHex(static_cast<uint32_t>(*l), 8) + u"&" : Ascii(std::to_string(*l));
      whole = true;
    } else if (const uint8_t* b = v.TryGet<uint8_t>()) {
      text = Ascii(std::to_string(*b));
      whole = true;
    } else if (const float* f = v.TryGet<float>()) {
      text = FormatReal(*f);
    } else if (const double* d = v.TryGet<double>()) {
      text = FormatReal(*d);
    } else if (const Currency* c = v.TryGet<Currency>()) {
      text = FormatCurrency(*c);
    } else if (const DateValue* date = v.TryGet<DateValue>()) {
      // The day count: exact, and free of any regional date form.
      text = FormatReal(date->days);
    } else {
      return;  // Empty, Null: nothing to write
    }
    String comment = entry.comment;
    if (comment.empty() && whole && m_options.enumComment) comment = m_options.enumComment(block, entry);
    Property(indent, entry.key, WithComment(text, comment));
  }

  static String WithComment(const String& text, const String& comment) {
    return comment.empty() ? text : text + u"  '" + comment;
  }

  String m_companionName;
  const FormWriteOptions& m_options;
  String m_text;
  FrxWriter m_frx;
};

bool WriteBytes(const std::filesystem::path& path, const ByteArray& bytes, std::string* error) {
  // Through a temporary file, so that a failed save leaves the old file whole.
  std::filesystem::path temp = path;
  temp += ".tmp";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) {
      if (error) *error = "cannot write " + temp.string();
      std::error_code ec;
      std::filesystem::remove(temp, ec);
      return false;
    }
  }
  std::error_code ec;
  std::filesystem::rename(temp, path, ec);
  if (ec) {
    if (error) *error = "cannot write " + path.string() + ": " + ec.message();
    std::filesystem::remove(temp, ec);
    return false;
  }
  return true;
}

}  // namespace

FormFileBytes WriteFormText(const FormFile& form, StringView companionFileName, const FormWriteOptions& options) {
  Writer writer(companionFileName, options);
  writer.Form(form);
  return FormFileBytes{EncodeWindows1252(writer.Text()), writer.Companion().Bytes()};
}

bool SaveFormFile(const FormFile& form, const std::string& path, std::string* error, const FormWriteOptions& options) {
  std::filesystem::path companion = CompanionPathFor(path);
  FormFileBytes bytes = WriteFormText(form, FromUtf8(companion.filename().string()), options);
  if (!WriteBytes(path, bytes.text, error)) return false;
  if (!bytes.companion.empty()) return WriteBytes(companion, bytes.companion, error);
  std::error_code ec;
  std::filesystem::remove(companion, ec);
  return true;
}

}  // namespace mx::host
