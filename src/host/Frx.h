#pragma once
// The binary companion of a form file (.frx beside a .frm, .ctx beside a .ctl) and the ANSI code
// page that the form text and its long strings are stored in.
//
// The companion is a run of entries, each found by its offset from the text form. Every number is
// a little-endian 32-bit value:
//
//   picture      "lt" 0 0 | length n | n bytes of a picture file
//   byte array   length n | n bytes
//   long string  length n | n bytes of Windows-1252 text
//
// A byte array and a long string look the same; which one an entry is depends on what the
// property that reads it asks for.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// Windows-1252 <-> UTF-16. Every byte decodes (the five bytes that the code page leaves undefined
// map to the C1 controls with the same number, as the system's conversion does), so decoding and
// encoding back gives the same bytes. Characters outside the code page encode as "?", as the
// host's own conversion to ANSI does.
[[nodiscard]] String DecodeWindows1252(std::span<const uint8_t> bytes);
[[nodiscard]] ByteArray EncodeWindows1252(StringView text);
// True when every character of the text has a Windows-1252 byte.
[[nodiscard]] bool IsWindows1252(StringView text);

// The picture entry's tag.
inline constexpr uint8_t kFrxPictureTag[4] = {'l', 't', 0, 0};

enum class FrxEntryKind : uint8_t {
  Picture,  // tagged picture file bytes
  Blob,     // a byte array or a long string: the property that reads it decides
};

struct FrxEntry {
  FrxEntryKind kind = FrxEntryKind::Blob;
  ByteArray bytes;
  friend bool operator==(const FrxEntry&, const FrxEntry&) = default;
};

// A reference to a companion entry inside a line of text: `"frmMain.frx":0A3C`. Only names
// ending in a companion extension (.frx, .ctx, .pgx, .dox, .dsx) count, so that other quoted
// text followed by a colon is left alone.
struct FrxReference {
  size_t position = 0;  // of the opening quote
  size_t length = 0;    // through the last hexadecimal digit
  String fileName;
  uint32_t offset = 0;
};
// The references in a line, in order; quoted text is skipped as a whole ("" inside it included).
// Offsets too large for 32 bits are not references.
[[nodiscard]] std::vector<FrxReference> FindFrxReferences(StringView line);
// "name":XXXX with at least four upper-case hexadecimal digits, as the host writes it.
[[nodiscard]] String FormatFrxReference(StringView fileName, uint32_t offset);
[[nodiscard]] bool HasCompanionExtension(StringView fileName);

// Read access to a companion file held in memory. Every read is checked against the bytes that
// are there; nothing here throws.
class FrxReader {
 public:
  FrxReader() = default;
  explicit FrxReader(ByteArray bytes) : m_bytes(std::move(bytes)) {}

  [[nodiscard]] size_t Size() const { return m_bytes.size(); }
  [[nodiscard]] const ByteArray& Bytes() const { return m_bytes; }

  // The entry at an offset. A picture tag whose length does not fit is tried as a plain entry
  // before the read is refused. On failure, reason says why ("length 4000 at offset 0x10 runs
  // past the end of the 96-byte file").
  [[nodiscard]] bool ReadEntry(uint32_t offset, FrxEntry& out, std::string* reason = nullptr) const;
  // Raw access, as the image-list import reads its own entries.
  [[nodiscard]] bool ReadUInt32(uint64_t offset, uint32_t& out) const;
  [[nodiscard]] bool ReadBytes(uint64_t offset, uint64_t count, ByteArray& out) const;

 private:
  ByteArray m_bytes;
};

// Builds a companion file: each Add appends an entry and returns the offset that the text form
// refers to it by.
class FrxWriter {
 public:
  [[nodiscard]] uint32_t AddPicture(std::span<const uint8_t> pictureFile);
  [[nodiscard]] uint32_t AddBlob(std::span<const uint8_t> bytes);
  [[nodiscard]] const ByteArray& Bytes() const { return m_bytes; }
  [[nodiscard]] bool Empty() const { return m_bytes.empty(); }

 private:
  void PutUInt32(uint32_t value);
  ByteArray m_bytes;
};

}  // namespace mx::host
