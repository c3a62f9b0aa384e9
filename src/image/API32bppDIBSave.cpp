// The save dispatch of the image surface: which writer is asked first for each format.
#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"
#include "image/APIGDIPlus.h"
#include "image/APIGIFParser.h"
#include "image/APIJPGWriter.h"
#include "image/APIPNGWriter.h"

namespace mx::image {

bool API32bppDIB::SaveToFile_Bitmap(const host::String& FileName, bool KeepPreMultipliedPixels,
                                    int32_t TransparentFillColor) const {
  if (FileName.empty()) return false;
  std::vector<uint8_t> unused;
  return APIBMPParser().SaveAsBMP(*this, FileName, unused, KeepPreMultipliedPixels, TransparentFillColor);
}

bool API32bppDIB::SaveToStream_Bitmap(std::vector<uint8_t>& outBytes, bool KeepPreMultipliedPixels,
                                      int32_t TransparentFillColor) const {
  return APIBMPParser().SaveAsBMP(*this, host::String(), outBytes, KeepPreMultipliedPixels, TransparentFillColor);
}

bool API32bppDIB::SaveToFile_GIF(const host::String& FileName, bool UseAdaptivePalette,
                                 int32_t OpaquenessTolerance) const {
  return image::SaveToFile_GIF(*this, FileName, UseAdaptivePalette, OpaquenessTolerance);
}

bool API32bppDIB::SaveToStream_GIF(std::vector<uint8_t>& outBytes, bool UseAdaptivePalette,
                                   int32_t OpaquenessTolerance) const {
  return image::SaveToStream_GIF(*this, outBytes, UseAdaptivePalette, OpaquenessTolerance);
}

// With properties set, their writer must go first: the system codec would drop them.
bool API32bppDIB::SaveToFile_PNG(const host::String& FileName) const {
  if (FileName.empty() || !m_handle) return false;
  std::vector<uint8_t> unused;
  if (!m_pngProps) {
    if (APIGDIPlus().SaveToPNG(*this, FileName, unused)) return true;
    return APIPNGWriter().SaveToPNG(*this, FileName, unused);
  }
  if (m_pngProps->SaveToPNG(*this, FileName, unused)) return true;
  return APIGDIPlus().SaveToPNG(*this, FileName, unused);
}

bool API32bppDIB::SaveToStream_PNG(std::vector<uint8_t>& outBytes) const {
  if (!m_handle) return false;
  if (!m_pngProps) {
    if (APIGDIPlus().SaveToPNG(*this, host::String(), outBytes)) return true;
    return APIPNGWriter().SaveToPNG(*this, host::String(), outBytes);
  }
  if (m_pngProps->SaveToPNG(*this, host::String(), outBytes)) return true;
  return APIGDIPlus().SaveToPNG(*this, host::String(), outBytes);
}

bool API32bppDIB::SaveToFile_JPG(const host::String& FileName, int32_t Quality, int32_t TransparentFillColor) const {
  if (FileName.empty() || !m_handle) return false;
  std::vector<uint8_t> unused;
  if (APIGDIPlus().SaveToJPG(*this, FileName, unused, Quality, TransparentFillColor)) return true;
  // The own writer takes the quality as a byte.
  return APIJPGWriter().SaveToJPG(*this, FileName, unused, Quality & 0xFF, TransparentFillColor);
}

bool API32bppDIB::SaveToStream_JPG(std::vector<uint8_t>& outBytes, int32_t Quality) const {
  // Deliberately no second writer: without the system codec a JPEG stream is not made.
  if (!m_handle) return false;
  return APIGDIPlus().SaveToJPG(*this, host::String(), outBytes, Quality);
}

bool API32bppDIB::PngPropertySet(int32_t xType, const host::Variant& Value, const host::String& Keyword) {
  if (xType == -1) {
    m_pngProps.reset();
    return true;
  }
  if (Value.IsMissing()) return m_pngProps ? m_pngProps->PropertySet(xType, Value, Keyword) : true;
  auto props = m_pngProps ? m_pngProps : std::make_shared<APIPNGWriter>();
  if (!props->PropertySet(xType, Value, Keyword)) return false;
  m_pngProps = std::move(props);
  return true;
}

host::Variant API32bppDIB::PngPropertyGet(int32_t xType, const host::String& Keyword) const {
  if (m_pngProps) return m_pngProps->PropertyGet(xType, Keyword);
  if (xType == clrDefaultBkg) return host::Variant(int32_t{-1});
  if (xType == dateTimeModified) return host::Variant::FromDate(0);
  return host::Variant(host::String());
}

}  // namespace mx::image
