#pragma once
// The host's picture object. It holds the bytes of a picture file exactly as they were loaded
// (they are what a form's companion file stores), what kind of picture they are, and its size
// in HiMetric (hundredths of a millimetre), both read from the file's header without decoding a
// pixel.
//
// The platform handle of the decoded picture (Handle) belongs to the image layer, which sits
// above this one: it registers a PictureDecoder at start-up, and the first read of Handle asks
// it for a bitmap or icon. Without a decoder Handle stays 0; everything else works.
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// The host's picture types.
enum PictureTypeConstants : int16_t {
  vbPicTypeNone = 0,
  vbPicTypeBitmap = 1,
  vbPicTypeMetafile = 2,
  vbPicTypeIcon = 3,
  vbPicTypeEMetafile = 4,
};

// The host's error for bytes that are no picture it knows.
inline constexpr int32_t kErrInvalidPicture = 481;

// The file format, as its first bytes tell it.
enum class PictureFormat : uint8_t { None, Bmp, Ico, Cur, Gif, Jpeg, Png, Wmf, Emf, Unknown };

struct PictureInfo {
  PictureFormat format = PictureFormat::None;
  int16_t type = vbPicTypeNone;
  // Sizes are 0 when the header does not give them (a JPEG cut before its frame header, a
  // metafile without a placeable header).
  int32_t pixelWidth = 0;
  int32_t pixelHeight = 0;
  int32_t himetricWidth = 0;
  int32_t himetricHeight = 0;
};

// Reads the kind and size of a picture file from its header. Never throws; bytes it does not
// recognise give PictureFormat::Unknown (and None for no bytes). Sizes in pixels become HiMetric
// at the screen's 96 dpi: 2540 per 96 pixels, rounded.
[[nodiscard]] PictureInfo SniffPicture(std::span<const uint8_t> bytes);

class StdPicture;

// The image layer's seam: decode returns a platform bitmap (for vbPicTypeBitmap) or icon handle,
// or 0 when it cannot; release gives back what decode made, when the picture goes.
struct PictureDecoder {
  std::function<uint32_t(const StdPicture& picture)> decode;
  std::function<void(uint32_t handle, int16_t type)> release;
};
// Install once at start-up on the UI thread: not synchronised. An empty decoder removes it.
void SetPictureDecoder(PictureDecoder decoder);

class StdPicture : public Object {
 public:
  // An empty picture: no bytes, type none. It stands for Nothing wherever pictures are compared.
  StdPicture() = default;
  ~StdPicture() override;
  StdPicture(const StdPicture&) = delete;
  StdPicture& operator=(const StdPicture&) = delete;

  // Keeps any bytes, recognised or not, so that an entry of a form's companion file survives a
  // load and save unchanged; an unrecognised picture has type none and no size.
  [[nodiscard]] static std::shared_ptr<StdPicture> FromBytes(ByteArray bytes);

  [[nodiscard]] bool IsEmpty() const { return m_bytes.empty(); }
  [[nodiscard]] const ByteArray& Bytes() const { return m_bytes; }
  [[nodiscard]] PictureFormat Format() const { return m_info.format; }
  [[nodiscard]] int16_t Type() const { return m_info.type; }
  // HiMetric, as the host's picture reports its size.
  [[nodiscard]] int32_t Width() const { return m_info.himetricWidth; }
  [[nodiscard]] int32_t Height() const { return m_info.himetricHeight; }
  [[nodiscard]] int32_t PixelWidth() const { return m_info.pixelWidth; }
  [[nodiscard]] int32_t PixelHeight() const { return m_info.pixelHeight; }
  [[nodiscard]] const PictureInfo& Info() const { return m_info; }
  // The decoded picture's platform handle, made on first use through the registered decoder;
  // 0 for an empty picture, without a decoder, or when decoding failed (not retried).
  [[nodiscard]] uint32_t Handle() const;
  [[nodiscard]] uint32_t hPal() const { return 0; }

  // Same bytes; any two empty pictures are the same.
  [[nodiscard]] bool SameAs(const StdPicture& other) const { return m_bytes == other.m_bytes; }

  // Late binding: Handle (the default member), hPal, Type, Width, Height.
  [[nodiscard]] String TypeName() const override { return u"StdPicture"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  ByteArray m_bytes;
  PictureInfo m_info;
  mutable uint32_t m_handle = 0;
  mutable bool m_decodeTried = false;
  // The release function of the decoder that made the handle.
  mutable std::function<void(uint32_t, int16_t)> m_release;
};

// LoadPicture: "" gives an empty picture; a missing file raises 53, one that cannot be read 75,
// and bytes that are no picture 481 "Invalid picture".
[[nodiscard]] std::shared_ptr<StdPicture> LoadPicture(const std::string& path = {});
// LoadPicture from bytes in memory, with the same rule for bytes that are no picture.
[[nodiscard]] std::shared_ptr<StdPicture> LoadPictureFromBytes(ByteArray bytes);
// SavePicture writes the picture's file bytes. An empty picture raises 380; a write that fails
// raises 75.
void SavePicture(const StdPicture& picture, const std::string& path);

}  // namespace mx::host
