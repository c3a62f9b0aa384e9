#pragma once
// PNG writer over the platform's PNG encoding core, with the text and other chunk properties a
// surface can carry (PngPropertySet / PngPropertyGet).
//
// An opaque surface (Alpha 0) is written as RGB, any other as RGBA with straight alpha
// (c x 255 / alpha, truncating; alpha 0 and 255 written as stored). Properties go between IHDR
// and the image data in this order: bKGD, tIME, then the texts in the order they were first set.
// A text is tEXt when it is Latin-1 and short, zTXt when it is Latin-1 and long, iTXt (UTF-8)
// otherwise.
#include <cstdint>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::image {

class API32bppDIB;

// Property kinds. The text kinds use the registered PNG keywords; txtLargeBlockText uses the
// Keyword argument. dateTimeModified is a Date written as tIME; clrDefaultBkg an OLE_COLOR
// written as bKGD.
enum ePngProperties : int32_t {
  txtTitle = 1,
  txtAuthor = 2,
  txtDescription = 4,
  txtCopyright = 8,
  txtCreationTime = 16,
  txtSoftware = 32,
  txtDisclaimer = 64,
  txtWarning = 128,
  txtSource = 256,
  txtComment = 512,
  txtLargeBlockText = 1024,
  dateTimeModified = 2048,
  clrDefaultBkg = 4096,
};

class APIPNGWriter {
 public:
  // Value Missing removes the property. False for an unknown kind, a value of the wrong kind, or
  // a custom keyword that PNG does not allow (1 to 79 Latin-1 characters, no leading, trailing or
  // double blanks).
  bool PropertySet(int32_t xType, const host::Variant& Value, const host::String& Keyword = {});
  // The stored value, or for a property not set: Long -1 for clrDefaultBkg, the date 0 for
  // dateTimeModified, an empty string otherwise.
  [[nodiscard]] host::Variant PropertyGet(int32_t xType, const host::String& Keyword = {}) const;
  [[nodiscard]] bool HasProperties() const { return !m_props.empty(); }

  // FileName empty: the file goes to outBytes; otherwise to the file.
  bool SaveToPNG(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes) const;
  // The PNG bytes of a surface, no properties; empty for an empty surface.
  [[nodiscard]] static std::vector<uint8_t> Encode(const API32bppDIB& surface);

 private:
  struct Property {
    int32_t type = 0;
    host::String keyword;  // the PNG keyword the property is written under
    host::Variant value;
  };
  [[nodiscard]] static host::String keywordFor(int32_t xType, const host::String& custom);
  [[nodiscard]] std::vector<uint8_t> encode(const API32bppDIB& surface) const;

  std::vector<Property> m_props;
};

}  // namespace mx::image
