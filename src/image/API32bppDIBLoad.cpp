// The load chain of the image surface: each reader tests its own magic bytes, the first to take
// the data ends the chain.
#include <fstream>

#include "image/API32bppDIB.h"
#include "host/DataObject.h"
#include "host/StdPicture.h"
#include "image/APIBMPParser.h"
#include "image/APIGDIPlus.h"
#include "image/APIGIFParser.h"
#include "image/APIICOParser.h"
#include "image/APIPNGParser.h"
#include "platform/Gdi.h"

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
// depth, then BMP. Each tests its own magic bytes first, so a refusal is cheap.
bool tryGIF(const std::vector<uint8_t>& bytes, API32bppDIB& dib, int32_t start, int32_t length) {
  return APIGIFParser().LoadStream(bytes, dib, start, length);
}
bool tryICO(const std::vector<uint8_t>& bytes, API32bppDIB& dib, int32_t iconCx, int32_t iconCy,
            int32_t iconBitDepth, int32_t gdiToken, int32_t start, int32_t length) {
  return APIICOParser().LoadStream(bytes, dib, iconCx, iconCy, iconBitDepth, gdiToken, start, length);
}
bool tryBMP(const std::vector<uint8_t>& bytes, API32bppDIB& dib, int32_t start, int32_t length) {
  return APIBMPParser().LoadStream(bytes, dib, start, length);
}

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
  // The system codec comes last: JPEG and anything else the own readers leave. What it keeps
  // is the PNG encoding of what it loaded, not the source, and it always reports Image PNG.
  if ((!loaded || !m_handle) && isGDIplusEnabled()) {
    DestroyDIB();
    APIGDIPlus codec;
    if (codec.LoadPicture(bytes, *this, streamStart, streamLength)) {
      SetImageType(imgPNG);
      if (SaveFormat) {
        std::vector<uint8_t> png;
        if (codec.SaveToPNG(*this, host::String(), png)) m_original = std::move(png);
      }
      return true;
    }
    loaded = false;
  }
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

bool API32bppDIB::LoadPicture_StdPicture(const std::shared_ptr<host::StdPicture>& Picture) {
  DestroyDIB();
  if (!Picture || Picture->IsEmpty()) return false;
  try {
    switch (Picture->Type()) {
      case host::vbPicTypeIcon:
        APIICOParser().ConvertstdPicTo32bpp(Picture->Handle(), *this);
        break;
      case host::vbPicTypeBitmap:
        APIBMPParser().ConvertstdPicTo32bpp(Picture->Handle(), *this);
        break;
      default:
        // Metafiles would be played onto the surface; this platform has no metafile player.
        break;
    }
  } catch (...) {
    DestroyDIB();
  }
  return m_handle != 0;
}

bool API32bppDIB::LoadPicture_ByHandle(uint32_t Handle) {
  using namespace platform;
  DestroyDIB();
  if (!Handle) return false;
  if (GetObjectType(Handle) == OBJ_BITMAP) return APIBMPParser().ConvertstdPicTo32bpp(Handle, *this);
  // Anything else may be an icon or cursor. The bitmaps GetIconInfo made are the caller's of
  // that call, so they are deleted here; the converter asks for its own.
  ICONINFO info{};
  if (!GetIconInfo(Handle, &info)) return false;
  if (info.hbmMask) DeleteObject(info.hbmMask);
  if (info.hbmColor) DeleteObject(info.hbmColor);
  return APIICOParser().ConvertstdPicTo32bpp(Handle, *this);
}

bool API32bppDIB::LoadPicture_DropedFiles(host::DataObject& DragDrop_DataObject, int32_t FileIndex, int32_t iconCx,
                                          int32_t iconCy, bool SaveFormat, int32_t iconBitDepth) {
  DestroyDIB();
  GetDroppedFileNames(DragDrop_DataObject);
  const auto& files = DragDrop_DataObject.Files();
  if (FileIndex < 1 || FileIndex > files.Count()) return false;
  return LoadPicture_File(files.Item(FileIndex), iconCx, iconCy, SaveFormat, iconBitDepth);
}

bool API32bppDIB::LoadPicture_PastedFiles(int32_t FileIndex, int32_t iconCx, int32_t iconCy, bool SaveFormat,
                                          int32_t iconBitDepth, int32_t& FileCount) {
  DestroyDIB();
  std::vector<host::String> names;
  FileCount = GetPastedFileNames(names);
  // Index 0 asks only for the count.
  if (FileIndex == 0) return true;
  if (FileIndex < 0 || FileIndex > FileCount) return false;
  return LoadPicture_File(names[static_cast<size_t>(FileIndex)], iconCx, iconCy, SaveFormat, iconBitDepth);
}

}  // namespace mx::image
