// Text files by encoding.
#include <fstream>
#include <iterator>
#include <string>

#include "utility/MX.h"

namespace mx::utility {

using host::String;

namespace {

// Windows-1252 for 0x80..0x9F; the five codes it leaves undefined map to the C1 control with the
// same number, as the desktop system's converter does. Every other byte is its Latin-1 code point.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

String DecodeAnsi(const std::string& bytes) {
  String text;
  text.reserve(bytes.size());
  for (unsigned char b : bytes) text.push_back(b >= 0x80 && b <= 0x9F ? kCp1252High[b - 0x80] : char16_t{b});
  return text;
}

String DecodeUtf16(const std::string& bytes, bool bigEndian) {
  String text;
  text.reserve(bytes.size() / 2);
  // An odd last byte is half a unit and is dropped.
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    text.push_back(static_cast<char16_t>(bigEndian ? (first << 8) | second : (second << 8) | first));
  }
  return text;
}

bool StartsWith(const std::string& bytes, std::initializer_list<unsigned char> prefix) {
  if (bytes.size() < prefix.size()) return false;
  size_t i = 0;
  for (unsigned char b : prefix) {
    if (static_cast<unsigned char>(bytes[i++]) != b) return false;
  }
  return true;
}

}  // namespace

String MX::LoadStringFromFile(const String& xFile, ENUM_ENCODIND_TYPE Tipo) const {
  try {
    std::ifstream file(host::ToUtf8(xFile), std::ios::binary);
    if (!file) return String();
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) return String();

    ENUM_ENCODIND_TYPE encoding = Tipo;
    if (encoding < EncANSI || encoding > EncUnicodeBigEndian) {
      // Two bytes decide; "EF BB" is taken for UTF-8 without looking at the third.
      if (StartsWith(bytes, {0xFF, 0xFE})) {
        encoding = EncUnicode;
      } else if (StartsWith(bytes, {0xFE, 0xFF})) {
        encoding = EncUnicodeBigEndian;
      } else if (StartsWith(bytes, {0xEF, 0xBB})) {
        encoding = EncUTF8;
      } else {
        encoding = EncANSI;
      }
    }

    switch (encoding) {
      case EncUTF8:
        if (StartsWith(bytes, {0xEF, 0xBB, 0xBF})) bytes.erase(0, 3);
        return host::FromUtf8(bytes);
      case EncUnicode:
        if (StartsWith(bytes, {0xFF, 0xFE})) bytes.erase(0, 2);
        return DecodeUtf16(bytes, false);
      case EncUnicodeBigEndian:
        if (StartsWith(bytes, {0xFE, 0xFF})) bytes.erase(0, 2);
        return DecodeUtf16(bytes, true);
      default:
        return DecodeAnsi(bytes);
    }
  } catch (...) {
    return String();
  }
}

}  // namespace mx::utility
