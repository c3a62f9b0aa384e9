#pragma once
// Little-endian fields of the image-list blobs. Readers take a span and an offset that the
// caller has checked against the span's size.
#include <cstdint>
#include <span>
#include <vector>

#include "host/String.h"

namespace mx::imagelist {

inline void PutU16(std::vector<uint8_t>& out, uint16_t v) {
  out.push_back(static_cast<uint8_t>(v));
  out.push_back(static_cast<uint8_t>(v >> 8));
}
inline void PutU32(std::vector<uint8_t>& out, uint32_t v) {
  for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
inline void SetU32(std::vector<uint8_t>& out, size_t at, uint32_t v) {
  for (int i = 0; i < 4; ++i) out[at + i] = static_cast<uint8_t>(v >> (8 * i));
}
// Text as UTF-16LE code units, no terminator.
inline void PutText(std::vector<uint8_t>& out, host::StringView text) {
  for (char16_t c : text) PutU16(out, static_cast<uint16_t>(c));
}

[[nodiscard]] inline uint16_t GetU16(std::span<const uint8_t> in, size_t at) {
  return static_cast<uint16_t>(in[at] | (in[at + 1] << 8));
}
[[nodiscard]] inline uint32_t GetU32(std::span<const uint8_t> in, size_t at) {
  return static_cast<uint32_t>(in[at]) | (static_cast<uint32_t>(in[at + 1]) << 8) |
         (static_cast<uint32_t>(in[at + 2]) << 16) | (static_cast<uint32_t>(in[at + 3]) << 24);
}
// byteCount bytes of UTF-16LE; an odd last byte is dropped.
[[nodiscard]] inline host::String GetText(std::span<const uint8_t> in, size_t at, size_t byteCount) {
  host::String s;
  s.reserve(byteCount / 2);
  for (size_t i = 0; i + 1 < byteCount; i += 2) s.push_back(static_cast<char16_t>(GetU16(in, at + i)));
  return s;
}

}  // namespace mx::imagelist
