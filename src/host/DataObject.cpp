// The host's drag-and-drop data object.
#include "host/DataObject.h"

#include "host/Err.h"
#include "host/Frx.h"
#include "host/StdPicture.h"

namespace mx::host {

namespace {

constexpr uint32_t kDropFilesHeader = 20;

void put32(ByteArray& out, uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
uint32_t le32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}

// The ANSI form of a name, as the host's Files list shows it.
String ansiForm(const String& name) { return DecodeWindows1252(EncodeWindows1252(name)); }

}  // namespace

ByteArray MakeDropFiles(std::span<const String> names, bool wide) {
  ByteArray out;
  put32(out, kDropFilesHeader);
  put32(out, 0);  // drop point
  put32(out, 0);
  put32(out, 0);  // fNC
  put32(out, wide ? 1 : 0);
  for (const String& n : names) {
    if (wide) {
      for (char16_t c : n) {
        out.push_back(static_cast<uint8_t>(c));
        out.push_back(static_cast<uint8_t>(c >> 8));
      }
      out.push_back(0);
      out.push_back(0);
    } else {
      ByteArray a = EncodeWindows1252(n);
      out.insert(out.end(), a.begin(), a.end());
      out.push_back(0);
    }
  }
  // The list ends with an empty name.
  out.push_back(0);
  if (wide) out.push_back(0);
  return out;
}

std::optional<std::vector<String>> ParseDropFiles(std::span<const uint8_t> record, bool* wide) {
  if (record.size() < kDropFilesHeader) return std::nullopt;
  uint32_t offset = le32(record.data());
  bool isWide = le32(record.data() + 16) != 0;
  if (wide) *wide = isWide;
  if (offset < kDropFilesHeader || offset > record.size()) return std::nullopt;
  std::vector<String> names;
  size_t pos = offset;
  const size_t unit = isWide ? 2 : 1;
  for (;;) {
    // Every name, and the list, must end inside the record.
    String name;
    ByteArray narrow;
    for (;;) {
      if (pos + unit > record.size()) return std::nullopt;
      uint32_t c = isWide ? static_cast<uint32_t>(record[pos] | (record[pos + 1] << 8)) : record[pos];
      pos += unit;
      if (c == 0) break;
      if (isWide) {
        name.push_back(static_cast<char16_t>(c));
      } else {
        narrow.push_back(static_cast<uint8_t>(c));
      }
    }
    if (!isWide) name = DecodeWindows1252(narrow);
    if (name.empty()) break;
    names.push_back(std::move(name));
  }
  return names;
}

const String& DataObject::DataObjectFiles::Item(int32_t index) const {
  if (index < 1 || index > Count()) Raise(9);
  return m_names[static_cast<size_t>(index - 1)];
}

void DataObject::DataObjectFiles::Add(const String& name, int32_t before) {
  if (before < 0 || before > Count() + 1) Raise(9);
  if (before == 0) {
    m_names.push_back(name);
  } else {
    m_names.insert(m_names.begin() + (before - 1), name);
  }
}

void DataObject::DataObjectFiles::Remove(int32_t index) {
  if (index < 1 || index > Count()) Raise(9);
  m_names.erase(m_names.begin() + (index - 1));
}

bool DataObject::GetFormat(int16_t format) const {
  if (format == vbCFFiles) return m_data.count(vbCFFiles) != 0 || m_files.Count() > 0;
  return m_data.count(format) != 0;
}

Variant DataObject::GetData(int16_t format) const {
  auto it = m_data.find(format);
  if (it == m_data.end()) {
    if (format == vbCFFiles && m_files.Count() > 0) return Variant();
    Raise(461);
  }
  const ByteArray& b = it->second;
  if (format == vbCFText) {
    ByteArray text(b.begin(), b.end());
    while (!text.empty() && text.back() == 0) text.pop_back();
    return Variant(DecodeWindows1252(text));
  }
  if (format == vbCFDIB || format == vbCFBitmap) {
    // A packed DIB becomes a BMP file: a 14-byte header in front, pixels after the tables.
    if (b.size() < 16) Raise(461);
    uint32_t header = le32(b.data());
    const size_t at = header == 12 ? 10 : 14;  // the bit count
    uint32_t bits = static_cast<uint32_t>(b[at] | (b[at + 1] << 8));
    uint32_t colors = header >= 40 && b.size() >= 36 ? le32(b.data() + 32) : 0;
    if (bits <= 8 && colors == 0) colors = 1u << bits;
    uint32_t masks = header == 40 && b.size() >= 20 && le32(b.data() + 16) == 3 ? 12 : 0;
    uint32_t offBits = 14 + header + masks + colors * (header == 12 ? 3 : 4);
    ByteArray file = {'B', 'M'};
    put32(file, static_cast<uint32_t>(14 + b.size()));
    put32(file, 0);
    put32(file, offBits);
    file.insert(file.end(), b.begin(), b.end());
    return Variant(ObjectRef(StdPicture::FromBytes(std::move(file))));
  }
  return Variant(b);
}

void DataObject::SetData(const Variant& value, int16_t format) {
  if (value.IsString()) {
    ByteArray text = EncodeWindows1252(value.ToString());
    text.push_back(0);
    m_data[format] = std::move(text);
  } else {
    m_data[format] = value.ToBytes();
  }
}

void DataObject::Clear() {
  m_data.clear();
  m_files.Clear();
}

void DataObject::SetDroppedFiles(std::span<const String> names, bool wide) {
  m_data[vbCFFiles] = MakeDropFiles(names, wide);
  m_files.Clear();
  for (const String& n : names) m_files.Add(ansiForm(n));
}

std::optional<ByteArray> DataObject::DropList() const {
  auto it = m_data.find(vbCFFiles);
  if (it == m_data.end()) return std::nullopt;
  return it->second;
}

}  // namespace mx::host
