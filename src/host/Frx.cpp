#include "host/Frx.h"

#include <cctype>
#include <cstring>
#include <limits>

#include "host/Err.h"

namespace mx::host {

namespace {

// Bytes 0x80..0x9F of Windows-1252. The undefined ones (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for
// the C1 control of the same number, which keeps the mapping a bijection on all 256 bytes.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

// The byte for a character, or -1 when the code page has none.
int EncodeChar(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
  for (int i = 0; i < 32; ++i) {
    if (kHighControls[i] == c) return 0x80 + i;
  }
  return -1;
}

uint32_t LoadUInt32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}

std::string Hex(uint64_t value) {
  static const char* digits = "0123456789ABCDEF";
  std::string s;
  do {
    s.insert(s.begin(), digits[value & 15]);
    value >>= 4;
  } while (value != 0);
  return "0x" + s;
}

}  // namespace

String DecodeWindows1252(std::span<const uint8_t> bytes) {
  String out;
  out.reserve(bytes.size());
  for (uint8_t b : bytes) out.push_back(b >= 0x80 && b < 0xA0 ? kHighControls[b - 0x80] : static_cast<char16_t>(b));
  return out;
}

ByteArray EncodeWindows1252(StringView text) {
  ByteArray out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    char16_t c = text[i];
    int b = EncodeChar(c);
    // A surrogate pair is one character: one "?" for both halves.
    if (b < 0 && c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      ++i;
    }
    out.push_back(b < 0 ? static_cast<uint8_t>('?') : static_cast<uint8_t>(b));
  }
  return out;
}

bool IsWindows1252(StringView text) {
  for (char16_t c : text) {
    if (EncodeChar(c) < 0) return false;
  }
  return true;
}

// ---- references in text ----------------------------------------------------------------------

bool HasCompanionExtension(StringView fileName) {
  if (fileName.size() < 4 || fileName[fileName.size() - 4] != u'.') return false;
  String ext;
  for (char16_t c : fileName.substr(fileName.size() - 3)) ext.push_back(c >= u'A' && c <= u'Z' ? c + 32 : c);
  return ext == u"frx" || ext == u"ctx" || ext == u"pgx" || ext == u"dox" || ext == u"dsx";
}

std::vector<FrxReference> FindFrxReferences(StringView line) {
  std::vector<FrxReference> refs;
  size_t i = 0;
  while (i < line.size()) {
    if (line[i] == u'\'') break;  // a comment runs to the end of the line
    if (line[i] != u'"') {
      ++i;
      continue;
    }
    // Quoted text, a doubled quote standing for one.
    size_t start = i++;
    String text;
    bool closed = false;
    while (i < line.size()) {
      if (line[i] == u'"') {
        if (i + 1 < line.size() && line[i + 1] == u'"') {
          text.push_back(u'"');
          i += 2;
          continue;
        }
        ++i;
        closed = true;
        break;
      }
      text.push_back(line[i++]);
    }
    if (!closed) break;
    if (i < line.size() && line[i] == u':' && HasCompanionExtension(text)) {
      size_t j = i + 1;
      uint64_t offset = 0;
      while (j < line.size() && j - i - 1 < 9) {
        char16_t c = line[j];
        int digit = c >= u'0' && c <= u'9' ? c - u'0'
                    : c >= u'A' && c <= u'F' ? c - u'A' + 10
                    : c >= u'a' && c <= u'f' ? c - u'a' + 10
                                             : -1;
        if (digit < 0) break;
        offset = offset * 16 + static_cast<uint64_t>(digit);
        ++j;
      }
      bool moreDigits = j < line.size() && std::isxdigit(static_cast<unsigned char>(line[j] < 0x80 ? line[j] : 0));
      if (j > i + 1 && !moreDigits && offset <= 0xFFFFFFFFu) {
        refs.push_back(FrxReference{start, j - start, std::move(text), static_cast<uint32_t>(offset)});
        i = j;
      }
    }
  }
  return refs;
}

String FormatFrxReference(StringView fileName, uint32_t offset) {
  static const char16_t* digits = u"0123456789ABCDEF";
  String hex;
  do {
    hex.insert(hex.begin(), digits[offset & 15]);
    offset >>= 4;
  } while (offset != 0);
  while (hex.size() < 4) hex.insert(hex.begin(), u'0');
  String quoted = u"\"";
  for (char16_t c : fileName) {
    quoted.push_back(c);
    if (c == u'"') quoted.push_back(c);
  }
  return quoted + u"\":" + hex;
}

// ---- reading -----------------------------------------------------------------------------------

bool FrxReader::ReadUInt32(uint64_t offset, uint32_t& out) const {
  if (offset > m_bytes.size() || m_bytes.size() - offset < 4) return false;
  out = LoadUInt32(m_bytes.data() + offset);
  return true;
}

bool FrxReader::ReadBytes(uint64_t offset, uint64_t count, ByteArray& out) const {
  if (offset > m_bytes.size() || m_bytes.size() - offset < count) return false;
  out.assign(m_bytes.begin() + static_cast<ptrdiff_t>(offset),
             m_bytes.begin() + static_cast<ptrdiff_t>(offset + count));
  return true;
}

bool FrxReader::ReadEntry(uint32_t offset, FrxEntry& out, std::string* reason) const {
  auto fail = [&](std::string why) {
    if (reason) *reason = std::move(why);
    return false;
  };
  const uint64_t size = m_bytes.size();
  if (offset >= size) {
    return fail("offset " + Hex(offset) + " is past the end of the " + std::to_string(size) + "-byte companion file");
  }
  uint32_t length = 0;
  if (!ReadUInt32(offset, length)) {
    return fail("the entry at offset " + Hex(offset) + " is cut short before its length");
  }
  if (std::memcmp(m_bytes.data() + offset, kFrxPictureTag, 4) == 0) {
    uint32_t pictureLength = 0;
    if (ReadUInt32(uint64_t{offset} + 4, pictureLength) && size - offset - 8 >= pictureLength) {
      out.kind = FrxEntryKind::Picture;
      return ReadBytes(uint64_t{offset} + 8, pictureLength, out.bytes);
    }
    // The tag may as well be the length of a plain entry: fall through and try that.
  }
  if (size - offset - 4 < length) {
    return fail("length " + std::to_string(length) + " at offset " + Hex(offset) + " runs past the end of the " +
                std::to_string(size) + "-byte companion file");
  }
  out.kind = FrxEntryKind::Blob;
  return ReadBytes(uint64_t{offset} + 4, length, out.bytes);
}

// ---- writing -----------------------------------------------------------------------------------

void FrxWriter::PutUInt32(uint32_t value) {
  for (int i = 0; i < 4; ++i) m_bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

uint32_t FrxWriter::AddPicture(std::span<const uint8_t> pictureFile) {
  // Offsets and lengths are 32-bit in the file: refuse what cannot be addressed.
  if (pictureFile.size() > std::numeric_limits<uint32_t>::max() - m_bytes.size() - 8) {
    Raise(kErrOutOfMemory, u"FrxWriter");
  }
  auto offset = static_cast<uint32_t>(m_bytes.size());
  m_bytes.insert(m_bytes.end(), kFrxPictureTag, kFrxPictureTag + 4);
  PutUInt32(static_cast<uint32_t>(pictureFile.size()));
  m_bytes.insert(m_bytes.end(), pictureFile.begin(), pictureFile.end());
  return offset;
}

uint32_t FrxWriter::AddBlob(std::span<const uint8_t> bytes) {
  if (bytes.size() > std::numeric_limits<uint32_t>::max() - m_bytes.size() - 4) Raise(kErrOutOfMemory, u"FrxWriter");
  auto offset = static_cast<uint32_t>(m_bytes.size());
  PutUInt32(static_cast<uint32_t>(bytes.size()));
  m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
  return offset;
}

}  // namespace mx::host
