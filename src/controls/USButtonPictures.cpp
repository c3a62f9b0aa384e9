// USButton: the picture on the face. A picture comes either from the host's picture objects
// (Picture, PictureOn, PictureOver) or from PictureBytes, a PNG kept in the property bag and
// decoded into an image surface the first time it is painted. The LoadImage_ family reads any
// format the image engine knows into that surface and keeps it as PNG bytes.
//
// Which picture is on the face:
//
//   surface present ─────────────► the surface, at PictureOpacity
//   PictureBytes with data ──────► decode them into a new surface, then as above
//   otherwise, by state:   over ─► PictureOn (when set), else Picture
//                          down or Value ─► PictureOver, else PictureOn
//                          normal or disabled ─► Picture
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "controls/ControlSupport.h"
#include "controls/USButton.h"
#include "controls/USImageList.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "platform/Gdi.h"

namespace mx::controls {

using detail::Step;

namespace {

// The size and depth asked of an icon inside PictureBytes when it is decoded for painting.
constexpr int32_t kStoredIconSize = 32;
constexpr int32_t kStoredIconDepth = 32;

std::unique_ptr<image::API32bppDIB> NewSurface() {
  auto dib = std::make_unique<image::API32bppDIB>();
  // Repeated renders should not pay for starting the system codec each time.
  dib->KeepGDIplusActive(true);
  return dib;
}

// A program's resources are files here: <MX_RESOURCE_DIR or the current folder>/<section>/<id>.
// Empty when the file is missing or cannot be read.
host::ByteArray ReadResourceFile(const String& section, const String& id) {
  const char* root = std::getenv("MX_RESOURCE_DIR");
  std::filesystem::path path = root && *root ? std::filesystem::path(root) : std::filesystem::current_path();
  path /= std::filesystem::path(host::ToUtf8(section));
  path /= std::filesystem::path(host::ToUtf8(id));
  host::ByteArray bytes;
  FILE* f = std::fopen(path.string().c_str(), "rb");
  if (!f) return bytes;
  uint8_t buffer[65536];
  size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.insert(bytes.end(), buffer, buffer + n);
  std::fclose(f);
  return bytes;
}

}  // namespace

// ---- Painting ---------------------------------------------------------------------------------

void USButton::RenderPictureSurface() {
  // Painted PictureSizeX wide and PictureSizeY high: the layout placed a box the other way
  // round, and non-square sizes keep that difference.
  m_dib->Render(UserControl::hDC(), m_pictureLeft, m_pictureTop, m_pictureSizeX, m_pictureSizeY, 0, 0, 0, 0,
                m_pictureOpacity, true, true, nullptr, -1);
}

void USButton::DrawPicture() {
  if (m_dib) {
    RenderPictureSurface();
    return;
  }
  if (!m_pictureBytes.empty()) {
    // Decoded once: a surface that failed to decode stays empty (and draws nothing) until the
    // bytes change, rather than decoding again on every state change.
    m_dib = NewSurface();
    if (m_dib->LoadPicture_Stream(m_pictureBytes, kStoredIconSize, kStoredIconSize, 0, 0, false, kStoredIconDepth))
      RenderPictureSurface();
    return;
  }
  const std::shared_ptr<host::StdPicture>* chosen = &m_picture;
  if (m_pictureOn && m_state == kStateOver) {
    chosen = &m_pictureOn;
  } else if (m_state == kStateDown || m_value) {
    chosen = m_pictureOver ? &m_pictureOver : &m_pictureOn;
  }
  if (!*chosen || (*chosen)->IsEmpty()) return;
  PaintPicture(**chosen, static_cast<float>(m_pictureLeft), static_cast<float>(m_pictureTop),
               host::Variant(m_pictureSizeX), host::Variant(m_pictureSizeY));
}

// ---- Picture bytes ----------------------------------------------------------------------------

void USButton::PictureBytes(host::ByteArray value) {
  // The surface shows the bytes it was decoded from; new bytes are decoded at the next paint.
  m_dib.reset();
  StorePictureBytes(std::move(value));
}

void USButton::StorePictureBytes(host::ByteArray value) {
  m_pictureBytes = std::move(value);
  Step([&] { PropertyChanged(u"DibPicture"); });
  // Bytes win over a picture object.
  if (!m_pictureBytes.empty()) m_picture = nullptr;
  Step([&] { Refresh(); });
}

void USButton::ClearPictureBytes() {
  m_dib.reset();
  m_pictureBytes.clear();
  Step([&] { PropertyChanged(u"DibPicture"); });
  Step([&] { Refresh(); });
}

// ---- Loads ------------------------------------------------------------------------------------

void USButton::DesiredIconSize(int32_t& width, int32_t& height) const {
  // The box of the layout: PictureSizeY wide, PictureSizeX high.
  if (width < 1) width = m_pictureSizeY;
  if (height < 1) height = m_pictureSizeX;
}

bool USButton::AdoptLoadedPicture(std::unique_ptr<image::API32bppDIB> loaded) {
  // A load works on a surface of its own, so that a failed one leaves both the bytes and the
  // picture on the face as they were.
  if (!loaded || !loaded->Handle()) return false;
  m_dib = std::move(loaded);
  host::ByteArray png;
  if (!m_dib->SaveToStream_PNG(png) || png.empty()) {
    // The new image is shown but cannot be kept in the bag.
    Step([&] { Refresh(); });
    return false;
  }
  StorePictureBytes(std::move(png));
  return true;
}

bool USButton::LoadImage_FromFile(const String& FileName, int32_t desiredIconWidth, int32_t desiredIconHeight,
                                  int32_t desiredIconBitDepth) {
  DesiredIconSize(desiredIconWidth, desiredIconHeight);
  auto dib = NewSurface();
  bool ok = false;
  Step([&] { ok = dib->LoadPicture_File(FileName, desiredIconWidth, desiredIconHeight, false, desiredIconBitDepth); });
  return ok && AdoptLoadedPicture(std::move(dib));
}

bool USButton::LoadImage_FromArray(const host::ByteArray& Bytes, int32_t desiredIconWidth, int32_t desiredIconHeight,
                                   int32_t desiredIconBitDepth) {
  DesiredIconSize(desiredIconWidth, desiredIconHeight);
  auto dib = NewSurface();
  bool ok = false;
  Step([&] {
    ok = dib->LoadPicture_Stream(Bytes, desiredIconWidth, desiredIconHeight, 0, 0, false, desiredIconBitDepth);
  });
  return ok && AdoptLoadedPicture(std::move(dib));
}

bool USButton::LoadImage_FromResource(const host::Variant& /*VBglobal*/, const String& ResSection,
                                      const String& ResID, int32_t desiredIconWidth, int32_t desiredIconHeight,
                                      int32_t desiredIconBitDepth) {
  // The program object only names whose resources to read; here they are files beside the
  // program, so it is not needed.
  DesiredIconSize(desiredIconWidth, desiredIconHeight);
  auto dib = NewSurface();
  bool ok = false;
  Step([&] {
    const host::ByteArray bytes = ReadResourceFile(ResSection, ResID);
    if (!bytes.empty())
      ok = dib->LoadPicture_Stream(bytes, desiredIconWidth, desiredIconHeight, 0, 0, false, desiredIconBitDepth);
  });
  return ok && AdoptLoadedPicture(std::move(dib));
}

bool USButton::LoadImage_FromStdPicture(const std::shared_ptr<host::StdPicture>& stdPic) {
  auto dib = NewSurface();
  bool ok = false;
  Step([&] { ok = dib->LoadPicture_StdPicture(stdPic); });
  return ok && AdoptLoadedPicture(std::move(dib));
}

bool USButton::LoadImage_FromHandle(uint32_t Handle) {
  auto dib = NewSurface();
  bool ok = false;
  Step([&] { ok = dib->LoadPicture_ByHandle(Handle); });
  return ok && AdoptLoadedPicture(std::move(dib));
}

bool USButton::LoadImage_FromUSImageList(const USImageList& objUSImageList, const host::Variant& Index,
                                         const host::Variant& Key) {
  // Key picks the list and Index the image in it; the icon made for the load is ours to free.
  platform::HICON icon = 0;
  Step([&] {
    auto lists = objUSImageList.ImageLists();
    if (!lists) return;
    auto list = lists->Find(Key);
    if (!list || !list->Images()) return;
    int32_t depth = 32;
    icon = list->Images()->ExtractIcon(Index, depth);
  });
  if (!icon) return false;
  const bool ok = LoadImage_FromHandle(icon);
  platform::DestroyIcon(icon);
  return ok;
}

}  // namespace mx::controls
