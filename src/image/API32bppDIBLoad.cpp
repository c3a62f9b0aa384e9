// The load chain of the image surface: each reader tests its own magic bytes, the first to take
// the data ends the chain.
#include <fstream>

#include "image/API32bppDIB.h"
#include "image/APIGIFParser.h"
#include "image/APIPNGParser.h"

namespace mx::image {

namespace {

// Files this small cannot hold a picture the chain is meant for; they are refused before any
// reader sees them.
constexpr int64_t kMinFileSize = 57;
constexpr size_t kMinStreamSize = 20;

bool readWholeFile(const host::String& fileName, std::vector<uint8_t>& out) {
  std::ifstream f(host::ToUtf8(fileName), std::ios::binary | std::ios::ate);
  if (!f) return false;
  std::streamoff size = f.tellg();
  if (size < 0) return false;
  out.resize(static_cast<size_t>(size));
  f.seekg(0);
  return static_cast<bool>(f.read(reinterpret_cast<char*>(out.data()), size)) || size == 0;
}

// The readers that follow PNG in the chain: GIF, then ICO/CUR with the wanted icon size and
// depth, then BMP. ICO/CUR and BMP are not part of this build yet, so those decline and the
// chain goes on; a load of such data fails and leaves the surface empty.
bool tryGIF(const std::vector<uint8_t>& bytes, API32bppDIB& dib, int32_t start, int32_t length) {
  return APIGIFParser().LoadStream(bytes, dib, start, length);
}
bool tryICO(const std::vector<uint8_t>&, API32bppDIB&, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t) {
  return false;
}
bool tryBMP(const std::vector<uint8_t>&, API32bppDIB&, int32_t, int32_t) { return false; }

}  // namespace

bool API32bppDIB::loadCore(const host::String* fileName, const std::vector<uint8_t>& bytes, int32_t iconCx,
                           int32_t iconCy, int32_t streamStart, int32_t streamLength, bool SaveFormat,
                           int32_t iconBitDepth) {
  DestroyDIB();
  if (iconCx < 0) iconCx = 0;
  if (iconCy < 0) iconCy = 0;
  if (iconBitDepth < 0 || iconBitDepth > 32) iconBitDepth = 32;

  // PNG first. A file has already been read whole into bytes, so the reader works from
  // memory under the rules of a file.
  bool loaded = false;
  {
    APIPNGParser png;
    loaded = fileName ? png.LoadFileData(bytes, *this, m_gdiToken)
                      : png.LoadStream(bytes, *this, streamStart, streamLength, m_gdiToken);
    if (!loaded) DestroyDIB();
  }
  if (!loaded && fileName) {
    streamStart = 0;
    streamLength = static_cast<int32_t>(bytes.size());
  }
  if (!loaded) loaded = tryGIF(bytes, *this, streamStart, streamLength);
  if (!loaded)
    loaded = tryICO(bytes, *this, iconCx, iconCy, iconBitDepth, m_gdiToken, streamStart, streamLength);
  if (!loaded) loaded = tryBMP(bytes, *this, streamStart, streamLength);
  // The system codec (JPEG, TIFF, ...) would come last; this build has none (isGDIplusEnabled
  // stays False), so nothing further is tried.
  if (!loaded || !m_handle) {
    DestroyDIB();
    return false;
  }
  // The whole array is kept, not only the range that was read.
  if (SaveFormat) m_original = bytes;
  return true;
}

bool API32bppDIB::LoadPicture_File(const host::String& FileName, int32_t iconCx, int32_t iconCy, bool SaveFormat,
                                   int32_t iconBitDepth) {
  DestroyDIB();
  std::vector<uint8_t> bytes;
  if (!readWholeFile(FileName, bytes) || static_cast<int64_t>(bytes.size()) < kMinFileSize) return false;
  return loadCore(&FileName, bytes, iconCx, iconCy, 0, static_cast<int32_t>(bytes.size()), SaveFormat,
                  iconBitDepth);
}

bool API32bppDIB::LoadPicture_Stream(const std::vector<uint8_t>& inStream, int32_t iconCx, int32_t iconCy,
                                     int32_t streamStart, int32_t streamLength, bool SaveFormat,
                                     int32_t iconBitDepth) {
  DestroyDIB();
  if (inStream.empty()) return false;
  if (streamStart < 0) streamStart = 0;
  if (static_cast<size_t>(streamStart) >= inStream.size()) return false;
  size_t available = inStream.size() - static_cast<size_t>(streamStart);
  if (streamLength <= 0 || static_cast<size_t>(streamLength) > available)
    streamLength = static_cast<int32_t>(available);
  if (static_cast<size_t>(streamLength) < kMinStreamSize) return false;
  return loadCore(nullptr, inStream, iconCx, iconCy, streamStart, streamLength, SaveFormat, iconBitDepth);
}

bool API32bppDIB::LoadPicture_FromOrignalFormat(int32_t iconCx, int32_t iconCy, int32_t iconBitDepth) {
  // Copied first: loading starts by destroying the surface, and with it these bytes.
  std::vector<uint8_t> copy = m_original;
  if (copy.empty()) {
    DestroyDIB();
    return false;
  }
  return LoadPicture_Stream(copy, iconCx, iconCy, 0, 0, true, iconBitDepth);
}

}  // namespace mx::image
