#include "host/StdPicture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>
#include <filesystem>

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

PictureDecoder& Decoder() {
  static PictureDecoder decoder;
  return decoder;
}

uint16_t U16LE(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
uint16_t U16BE(const uint8_t* p) { return static_cast<uint16_t>((p[0] << 8) | p[1]); }
uint32_t U32LE(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}
uint32_t U32BE(const uint8_t* p) {
  return (static_cast<uint32_t>(p[0]) << 24) | (static_cast<uint32_t>(p[1]) << 16) |
         (static_cast<uint32_t>(p[2]) << 8) | static_cast<uint32_t>(p[3]);
}

// a * 2540 / b, rounded half away from zero: pixels (b = 96) or other units to HiMetric.
int32_t ToHiMetric(int64_t value, int64_t unitsPerInch) {
  if (unitsPerInch <= 0) return 0;
  int64_t p = value * 2540;
  int64_t q = (std::llabs(p) + unitsPerInch / 2) / unitsPerInch;
  int64_t r = p < 0 ? -q : q;
  return r > INT32_MAX ? INT32_MAX : static_cast<int32_t>(r);
}

void SetPixels(PictureInfo& info, int64_t width, int64_t height) {
  if (width <= 0 || height <= 0 || width > INT32_MAX || height > INT32_MAX) return;
  info.pixelWidth = static_cast<int32_t>(width);
  info.pixelHeight = static_cast<int32_t>(height);
  info.himetricWidth = ToHiMetric(width, 96);
  info.himetricHeight = ToHiMetric(height, 96);
}

void SniffBmp(std::span<const uint8_t> b, PictureInfo& info) {
  // File header (14 bytes), then the info header whose first field is its own size.
  if (b.size() < 26) return;
  uint32_t headerSize = U32LE(&b[14]);
  if (headerSize == 12) {
    // The old core header: 16-bit sizes.
    SetPixels(info, U16LE(&b[18]), U16LE(&b[20]));
  } else if (headerSize >= 16 && b.size() >= 26) {
    auto width = static_cast<int32_t>(U32LE(&b[18]));
    auto height = static_cast<int32_t>(U32LE(&b[22]));
    // A negative height marks a top-down bitmap; the size is its magnitude.
    SetPixels(info, width, std::llabs(static_cast<int64_t>(height)));
  }
}

void SniffIcon(std::span<const uint8_t> b, PictureInfo& info) {
  // Directory header (6 bytes), then 16-byte entries; the first entry stands for the icon. A
  // stored 0 means 256.
  if (b.size() < 6 + 16 || U16LE(&b[4]) == 0) return;
  int width = b[6] == 0 ? 256 : b[6];
  int height = b[7] == 0 ? 256 : b[7];
  SetPixels(info, width, height);
}

void SniffGif(std::span<const uint8_t> b, PictureInfo& info) {
  // The logical screen descriptor follows the 6-byte signature.
  if (b.size() < 10) return;
  SetPixels(info, U16LE(&b[6]), U16LE(&b[8]));
}

void SniffPng(std::span<const uint8_t> b, PictureInfo& info) {
  // The first chunk must be IHDR: length, type, then width and height, big-endian.
  if (b.size() < 24 || std::memcmp(&b[12], "IHDR", 4) != 0) return;
  uint32_t width = U32BE(&b[16]);
  uint32_t height = U32BE(&b[20]);
  if (width > INT32_MAX || height > INT32_MAX) return;
  SetPixels(info, width, height);
}

void SniffJpeg(std::span<const uint8_t> b, PictureInfo& info) {
  // Walk the marker segments to the first frame header (SOF0..SOF15 but DHT, JPG and DAC,
  // which share the range). Each segment: FF, marker, a big-endian length counting itself.
  size_t pos = 2;
  while (pos + 4 <= b.size()) {
    if (b[pos] != 0xFF) return;
    uint8_t marker = b[pos + 1];
    if (marker == 0xFF) {  // fill byte
      ++pos;
      continue;
    }
    if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {  // no length field
      pos += 2;
      continue;
    }
    if (marker == 0xD9 || marker == 0xDA) return;  // end of image or scan data: no frame header
    uint16_t length = U16BE(&b[pos + 2]);
    if (length < 2) return;
    bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (frame) {
      // Length, precision, then height and width.
      if (pos + 9 > b.size() || length < 7) return;
      SetPixels(info, U16BE(&b[pos + 7]), U16BE(&b[pos + 5]));
      return;
    }
    pos += 2 + static_cast<size_t>(length);
  }
}

void SniffPlaceableWmf(std::span<const uint8_t> b, PictureInfo& info) {
  // Key, handle, then the bounding box (four signed 16-bit values) and the units per inch.
  if (b.size() < 22) return;
  auto left = static_cast<int16_t>(U16LE(&b[6]));
  auto top = static_cast<int16_t>(U16LE(&b[8]));
  auto right = static_cast<int16_t>(U16LE(&b[10]));
  auto bottom = static_cast<int16_t>(U16LE(&b[12]));
  uint16_t inch = U16LE(&b[14]);
  if (inch == 0) return;
  int32_t w = std::abs(right - left);
  int32_t h = std::abs(bottom - top);
  info.himetricWidth = ToHiMetric(w, inch);
  info.himetricHeight = ToHiMetric(h, inch);
  info.pixelWidth = static_cast<int32_t>((int64_t{w} * 96 + inch / 2) / inch);
  info.pixelHeight = static_cast<int32_t>((int64_t{h} * 96 + inch / 2) / inch);
}

void SniffEmf(std::span<const uint8_t> b, PictureInfo& info) {
  // The header record: bounds in device pixels at 8, the frame in HiMetric at 24.
  auto at = [&](size_t o) { return static_cast<int32_t>(U32LE(&b[o])); };
  int64_t fw = int64_t{at(32)} - at(24);
  int64_t fh = int64_t{at(36)} - at(28);
  if (fw > 0 && fh > 0 && fw <= INT32_MAX && fh <= INT32_MAX) {
    info.himetricWidth = static_cast<int32_t>(fw);
    info.himetricHeight = static_cast<int32_t>(fh);
  }
  int64_t pw = int64_t{at(16)} - at(8) + 1;
  int64_t ph = int64_t{at(20)} - at(12) + 1;
  if (pw > 0 && ph > 0 && pw <= INT32_MAX && ph <= INT32_MAX) {
    info.pixelWidth = static_cast<int32_t>(pw);
    info.pixelHeight = static_cast<int32_t>(ph);
  }
}

}  // namespace

PictureInfo SniffPicture(std::span<const uint8_t> b) {
  PictureInfo info;
  if (b.empty()) return info;
  const size_t n = b.size();
  auto starts = [&](std::initializer_list<uint8_t> magic) {
    if (n < magic.size()) return false;
    return std::equal(magic.begin(), magic.end(), b.begin());
  };
  if (starts({0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A})) {
    info.format = PictureFormat::Png;
    info.type = vbPicTypeBitmap;
    SniffPng(b, info);
  } else if (starts({'G', 'I', 'F', '8', '7', 'a'}) || starts({'G', 'I', 'F', '8', '9', 'a'})) {
    info.format = PictureFormat::Gif;
    info.type = vbPicTypeBitmap;
    SniffGif(b, info);
  } else if (starts({0xFF, 0xD8, 0xFF})) {
    info.format = PictureFormat::Jpeg;
    info.type = vbPicTypeBitmap;
    SniffJpeg(b, info);
  } else if (starts({'B', 'M'}) && n >= 18) {
    info.format = PictureFormat::Bmp;
    info.type = vbPicTypeBitmap;
    SniffBmp(b, info);
  } else if (starts({0, 0, 1, 0}) && n >= 6 && U16LE(&b[4]) > 0) {
    info.format = PictureFormat::Ico;
    info.type = vbPicTypeIcon;
    SniffIcon(b, info);
  } else if (starts({0, 0, 2, 0}) && n >= 6 && U16LE(&b[4]) > 0) {
    info.format = PictureFormat::Cur;
    info.type = vbPicTypeIcon;
    SniffIcon(b, info);
  } else if (starts({0xD7, 0xCD, 0xC6, 0x9A})) {
    info.format = PictureFormat::Wmf;
    info.type = vbPicTypeMetafile;
    SniffPlaceableWmf(b, info);
  } else if (n >= 44 && U32LE(&b[0]) == 1 && std::memcmp(&b[40], " EMF", 4) == 0) {
    info.format = PictureFormat::Emf;
    info.type = vbPicTypeEMetafile;
    SniffEmf(b, info);
  } else if (n >= 18 && (U16LE(&b[0]) == 1 || U16LE(&b[0]) == 2) && U16LE(&b[2]) == 9 &&
             (U16LE(&b[4]) == 0x0100 || U16LE(&b[4]) == 0x0300)) {
    // A bare metafile header carries no size.
    info.format = PictureFormat::Wmf;
    info.type = vbPicTypeMetafile;
  } else {
    info.format = PictureFormat::Unknown;
  }
  return info;
}

void SetPictureDecoder(PictureDecoder decoder) { Decoder() = std::move(decoder); }

std::shared_ptr<StdPicture> StdPicture::FromBytes(ByteArray bytes) {
  auto picture = std::make_shared<StdPicture>();
  picture->m_info = SniffPicture(bytes);
  if (picture->m_info.format == PictureFormat::Unknown) picture->m_info.type = vbPicTypeNone;
  picture->m_bytes = std::move(bytes);
  return picture;
}

StdPicture::~StdPicture() {
  if (m_handle != 0 && m_release) m_release(m_handle, m_info.type);
}

uint32_t StdPicture::Handle() const {
  if (!m_decodeTried && !m_bytes.empty() && m_info.type != vbPicTypeNone) {
    const PictureDecoder& decoder = Decoder();
    if (decoder.decode) {
      m_decodeTried = true;
      m_handle = decoder.decode(*this);
      if (m_handle != 0) m_release = decoder.release;
    }
  }
  return m_handle;
}

Variant StdPicture::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  String member = FoldCase(name);
  if (kind != CallKind::Let && kind != CallKind::Set) {
    if (member.empty() || member == u"HANDLE") return Variant(static_cast<int32_t>(Handle()));
    if (member == u"HPAL") return Variant(static_cast<int32_t>(0));
    if (member == u"TYPE") return Variant(m_info.type);
    if (member == u"WIDTH") return Variant(m_info.himetricWidth);
    if (member == u"HEIGHT") return Variant(m_info.himetricHeight);
  } else if (member.empty() || member == u"HANDLE" || member == u"TYPE" || member == u"WIDTH" ||
             member == u"HEIGHT") {
    // The picture's description follows from its bytes; it is read-only.
    Raise(kErrInvalidPropertyValue, u"StdPicture", u"Property is read-only");
  }
  return Object::Invoke(name, kind, args);
}

std::shared_ptr<StdPicture> LoadPictureFromBytes(ByteArray bytes) {
  if (bytes.empty()) return std::make_shared<StdPicture>();
  auto picture = StdPicture::FromBytes(std::move(bytes));
  if (picture->Format() == PictureFormat::Unknown) Raise(kErrInvalidPicture, u"LoadPicture", u"Invalid picture");
  return picture;
}

std::shared_ptr<StdPicture> LoadPicture(const std::string& path) {
  if (path.empty()) return std::make_shared<StdPicture>();
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    Raise(std::filesystem::exists(path, ec) ? kErrPathFileAccess : kErrFileNotFound, u"LoadPicture");
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) Raise(kErrPathFileAccess, u"LoadPicture");
  ByteArray bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) Raise(kErrPathFileAccess, u"LoadPicture");
  if (bytes.empty()) Raise(kErrInvalidPicture, u"LoadPicture", u"Invalid picture");
  return LoadPictureFromBytes(std::move(bytes));
}

void SavePicture(const StdPicture& picture, const std::string& path) {
  if (picture.IsEmpty()) Raise(kErrInvalidPropertyValue, u"SavePicture");
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) Raise(kErrPathFileAccess, u"SavePicture");
  out.write(reinterpret_cast<const char*>(picture.Bytes().data()), static_cast<std::streamsize>(picture.Bytes().size()));
  if (!out) Raise(kErrPathFileAccess, u"SavePicture");
}

}  // namespace mx::host
