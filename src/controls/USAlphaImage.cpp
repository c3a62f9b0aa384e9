// USAlphaImage: properties, persistence, loading and lifecycle.
#include "controls/USAlphaImage.h"

#include <cstdlib>
#include <filesystem>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/USImageList.h"
#include "host/Colors.h"
#include "host/DataObject.h"
#include "host/Form.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "platform/Gdi.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::Variant;

USAlphaImage::USAlphaImage() : m_dib(std::make_unique<image::API32bppDIB>()) {}

USAlphaImage::~USAlphaImage() {
  if (m_hitRegion) platform::DeleteObject(m_hitRegion);
  if (m_registered) frame::APICrossComm::Shared().RemoveRef(this);
}

// ---- Setters ----------------------------------------------------------------------------------

void USAlphaImage::ScaleMethod(int32_t value) {
  if (value < image::smScaled || value > image::smLockScale) return;
  m_scaleMethod = value;
  PropertyChanged(u"ScaleMethod");
  UpdateGeometry();
  Repaint();
}

void USAlphaImage::Opacity(int32_t value) {
  // 0 stays 0 (hidden); anything else wraps as Render does, so 100 is full and 150 is half.
  if (value != 0) {
    value = std::abs(value) % 100;
    if (value == 0) value = 100;
  }
  m_opacity = value;
  PropertyChanged(u"Opacity");
  Repaint();
}

void USAlphaImage::Mirror(int32_t value) {
  if (value < image::mirrorNone || value > image::mirrorAll) return;
  // Only the axes that change are flipped: the picture already holds the old mirror.
  const int32_t change = m_mirror ^ value;
  m_mirror = value;
  PropertyChanged(u"Mirror");
  if (change == 0) return;
  if (m_dib->Handle()) m_dib->MirrorImage((change & image::mirrorHorizontal) != 0, (change & image::mirrorVertical) != 0);
  RebuildCaches();
  Repaint();
}

void USAlphaImage::Rotation(int32_t value) {
  m_rotation = value;
  PropertyChanged(u"Rotation");
  if (!RotateEnabled()) return;
  RebuildCaches();
  Repaint();
}

void USAlphaImage::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  Repaint();
}

void USAlphaImage::MousePointer(int16_t value) {
  UserControl::MousePointer(value);
  PropertyChanged(u"MousePointer");
}

void USAlphaImage::MouseIcon(std::shared_ptr<host::StdPicture> value) {
  UserControl::MouseIcon(std::move(value));
  PropertyChanged(u"MouseIcon");
}

void USAlphaImage::OLEDropMode(int32_t value) {
  if (value != Drop_None && value != Drop_Manual) return;
  m_oleDropMode = value;
  PropertyChanged(u"OLEDropMode");
}

void USAlphaImage::grayScale(int32_t value) {
  if (value < image::gsNoGrayScale || value > image::gsBlueGreenMask) return;
  m_grayFormula = value - 1;
  PropertyChanged(u"grayScale");
  Repaint();
}

void USAlphaImage::HitTest(int32_t value) {
  if (value < Entire_Control || value > Shaped_Region) return;
  m_hitTest = value;
  PropertyChanged(u"HitTest");
  RebuildHitRegion();
}

void USAlphaImage::StretchQuality(bool value) {
  m_props = value ? (m_props | kStretchQuality) : (m_props & ~kStretchQuality);
  m_dib->HighQualityInterpolation(value);
  PropertyChanged(u"StretchQuality");
  RebuildCaches();
  Repaint();
}

void USAlphaImage::AutoSize(bool value) {
  m_props = value ? (m_props | kAutoSize) : (m_props & ~kAutoSize);
  PropertyChanged(u"AutoSize");
  UpdateGeometry();
  Repaint();
}

void USAlphaImage::AutoRedraw(bool value) {
  m_props = value ? (m_props | kAutoRedraw) : (m_props & ~kAutoRedraw);
  PropertyChanged(u"AutoRedraw");
  UpdateScaledCopyFlag();
  RebuildCaches();
  Repaint();
}

void USAlphaImage::KeepOriginalFormat(bool value) {
  m_props = value ? (m_props | kKeepOriginalFormat) : (m_props & ~kKeepOriginalFormat);
  PropertyChanged(u"KeepOriginalFormat");
}

void USAlphaImage::InversedImage(bool value) {
  if (value == InversedImage()) return;
  m_props ^= kInversedImage;
  PropertyChanged(u"InversedImage");
  if (m_dib->Handle() && m_dib->ImageType() != image::imgCheckerBoard) m_dib->MakeImageInverse();
  RebuildCaches();
  Repaint();
}

void USAlphaImage::ShadowEnabled(bool value) {
  m_props = value ? (m_props | kShadowEnabled) : (m_props & ~kShadowEnabled);
  PropertyChanged(u"ShadowEnabled");
  RebuildShadow();
  Repaint();
}

void USAlphaImage::RotateEnabled(bool value) {
  m_props = value ? (m_props | kRotateEnabled) : (m_props & ~kRotateEnabled);
  PropertyChanged(u"RotateEnabled");
  UpdateScaledCopyFlag();
  UpdateGeometry();
  Repaint();
}

void USAlphaImage::MaskUsed(int32_t value) {
  if (value < image::maskNone || value > image::maskUseBottomRight) return;
  // Only a picture without transparency of its own can take a colour mask; a mask already on
  // may be changed or taken off.
  if (!m_maskOn && m_dib->Alpha() != image::AlphaNone) return;
  if (m_dib->ImageType() == image::imgCheckerBoard) return;
  UndoMask();
  m_maskSource = value;
  ApplyMask();
  PropertyChanged(u"MaskUsed");
  RebuildCaches();
  Repaint();
}

void USAlphaImage::MaskColor(OLE_COLOR value) {
  m_maskColor = value;
  PropertyChanged(u"MaskColor");
  if (m_maskSource != image::maskUseMaskColor || !m_maskOn) return;
  UndoMask();
  ApplyMask();
  RebuildCaches();
  Repaint();
}

void USAlphaImage::ShadowColor(OLE_COLOR value) {
  m_shadowColor = value;
  PropertyChanged(u"ShadowColor");
  RebuildShadow();
  Repaint();
}

void USAlphaImage::ShadowDepth(int32_t value) {
  if (value < 0 || value > 10) return;
  m_shadowDepth = value;
  PropertyChanged(u"ShadowDepth");
  RebuildShadow();
  Repaint();
}

void USAlphaImage::ShadowOffsetX(int32_t value) {
  m_shadowX = value;
  PropertyChanged(u"ShadowOffsetX");
  Repaint();
}

void USAlphaImage::ShadowOffsetY(int32_t value) {
  m_shadowY = value;
  PropertyChanged(u"ShadowOffsetY");
  Repaint();
}

void USAlphaImage::ShadowOpacity(int32_t value) {
  if (value < 0 || value > 100) return;
  m_shadowOpacity = value;
  PropertyChanged(u"ShadowOpacity");
  Repaint();
}

void USAlphaImage::IntensityOffset(float value) {
  if (value < -100.0f || value > 100.0f) return;
  m_intensity = value;
  PropertyChanged(u"Intensity");
  Repaint();
}

// ---- The mask ---------------------------------------------------------------------------------

void USAlphaImage::ApplyMask() {
  m_maskOn = false;
  if (m_maskSource == image::maskNone || !m_dib->Handle()) return;
  const int32_t w = m_dib->Width(), h = m_dib->Height();
  uint8_t alpha = 0;
  int32_t colour = -1;
  switch (m_maskSource) {
    case image::maskUseMaskColor: colour = host::TranslateColor(m_maskColor); break;
    case image::maskUseTopLeft: colour = m_dib->GetPixel(0, 0, alpha); break;
    case image::maskUseTopRight: colour = m_dib->GetPixel(w - 1, 0, alpha); break;
    case image::maskUseBottomLeft: colour = m_dib->GetPixel(0, h - 1, alpha); break;
    default: colour = m_dib->GetPixel(w - 1, h - 1, alpha); break;
  }
  if (colour < 0) return;
  m_maskResolved = colour;
  m_maskOn = true;
  m_dib->MakeTransparent(colour, false);
}

void USAlphaImage::UndoMask() {
  // The picture had no transparency before the mask, so its transparent pixels are exactly the
  // ones the mask took: they get the colour back, opaque.
  if (m_maskOn && m_dib->Handle()) m_dib->MakeTransparent(m_maskResolved, true);
  m_maskOn = false;
}

// ---- Loading ----------------------------------------------------------------------------------

bool USAlphaImage::SaveFormatWanted() const { return !m_userMode || KeepOriginalFormat(); }

void USAlphaImage::ApplyStoredEdits() {
  // The order of the save's undo, reversed: mirror, mask, inversion.
  if (m_mirror != image::mirrorNone)
    m_dib->MirrorImage((m_mirror & image::mirrorHorizontal) != 0, (m_mirror & image::mirrorVertical) != 0);
  if (m_maskSource != image::maskNone && m_maskOn) {
    m_dib->MakeTransparent(m_maskResolved, false);
  }
  if (InversedImage()) m_dib->MakeImageInverse();
}

void USAlphaImage::ResetAfterFailedLoad() {
  if (m_scaleMethod == image::smLockScale) m_scaleMethod = image::smScaled;
  m_props &= kStretchQuality | kKeepOriginalFormat;
  m_rotation = 0;
  m_mirror = image::mirrorNone;
  m_opacity = 100;
  m_maskOn = false;
}

// A new picture starts with none of the edits of the old one except those the properties ask
// for again (mirror, inversion); a mask is chosen again by its source.
bool USAlphaImage::AfterLoad(bool loaded) {
  StopFade();
  m_maskOn = false;
  if (loaded) {
    m_dib->HighQualityInterpolation(StretchQuality());
    if (m_mirror != image::mirrorNone)
      m_dib->MirrorImage((m_mirror & image::mirrorHorizontal) != 0, (m_mirror & image::mirrorVertical) != 0);
    if (m_maskSource != image::maskNone && m_dib->Alpha() == image::AlphaNone) ApplyMask();
    if (InversedImage()) m_dib->MakeImageInverse();
  } else {
    ShowCheckerBoardIfEmpty();
  }
  Step([&] { PropertyChanged(u"Image"); });
  UpdateGeometry();
  Repaint();
  return loaded;
}

bool USAlphaImage::LoadImage_FromFile(const host::String& FileName, int32_t iconCx, int32_t iconCy,
                                      int32_t iconBitDepth) {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_File(FileName, iconCx, iconCy, SaveFormatWanted(), iconBitDepth); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromArray(const std::vector<uint8_t>& inArray, int32_t iconCx, int32_t iconCy,
                                       int32_t streamStart, int32_t streamLength, int32_t iconBitDepth) {
  bool ok = false;
  Step([&] {
    ok = m_dib->LoadPicture_Stream(inArray, iconCx, iconCy, streamStart, streamLength, SaveFormatWanted(),
                                   iconBitDepth);
  });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromResource(const host::String& ResIndex, const host::String& ResSection,
                                          int32_t iconCx, int32_t iconCy, int32_t iconBitDepth) {
  // A program's resources are files here: <MX_RESOURCE_DIR or the current directory>/<section>/<name>.
  bool ok = false;
  Step([&] {
    const char* root = std::getenv("MX_RESOURCE_DIR");
    std::filesystem::path path = root && *root ? std::filesystem::path(root) : std::filesystem::current_path();
    path /= std::filesystem::path(host::ToUtf8(ResSection));
    path /= std::filesystem::path(host::ToUtf8(ResIndex));
    std::vector<uint8_t> bytes;
    if (FILE* f = std::fopen(path.string().c_str(), "rb")) {
      uint8_t buffer[65536];
      size_t n = 0;
      while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.insert(bytes.end(), buffer, buffer + n);
      std::fclose(f);
    }
    // Resource bytes are the program's own: never kept as original bytes.
    if (!bytes.empty()) ok = m_dib->LoadPicture_Stream(bytes, iconCx, iconCy, 0, 0, false, iconBitDepth);
  });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromStdPicture(const std::shared_ptr<host::StdPicture>& Picture) {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_StdPicture(Picture); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromClipboard() {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_ClipBoard(); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromHandle(uint32_t Handle) {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_ByHandle(Handle); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromPastedFiles(int32_t FileIndex, int32_t& FileCount, int32_t iconCx, int32_t iconCy,
                                             int32_t iconBitDepth) {
  bool ok = false;
  FileCount = 0;
  Step([&] {
    ok = m_dib->LoadPicture_PastedFiles(FileIndex, iconCx, iconCy, SaveFormatWanted(), iconBitDepth, FileCount);
  });
  // Index 0 only counts: the picture in place stays.
  if (FileIndex == 0) return ok;
  return AfterLoad(ok && m_dib->Handle() != 0);
}

bool USAlphaImage::LoadImage_FromDropedFiles(host::DataObject& Data, int32_t FileIndex, int32_t iconCx,
                                             int32_t iconCy, int32_t iconBitDepth) {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_DropedFiles(Data, FileIndex, iconCx, iconCy, SaveFormatWanted(), iconBitDepth); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromOrignalBytes(int32_t iconCx, int32_t iconCy, int32_t iconBitDepth) {
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_FromOrignalFormat(iconCx, iconCy, iconBitDepth); });
  return AfterLoad(ok);
}

bool USAlphaImage::LoadImage_FromUSImageList(const USImageList& objUSImageList, const Variant& Index,
                                             const Variant& Key) {
  bool ok = false;
  Step([&] {
    auto lists = objUSImageList.ImageLists();
    if (!lists) return;
    auto list = lists->Find(Index);
    if (!list || !list->Images()) return;
    int32_t depth = 32;
    const platform::HICON icon = list->Images()->ExtractIcon(Key, depth);
    if (!icon) return;
    ok = m_dib->LoadPicture_ByHandle(icon);
    platform::DestroyIcon(icon);
  });
  return AfterLoad(ok);
}

bool USAlphaImage::GetStream(std::vector<uint8_t>& outStream) {
  outStream.clear();
  bool ok = false;
  Step([&] { ok = m_dib->GetOrginalFormat(outStream); });
  return ok;
}

bool USAlphaImage::SetStream(const std::vector<uint8_t>& inStream, int32_t cX, int32_t cY, int32_t bitDepth) {
  // With LockScale the size asked for is the size shown.
  if (m_scaleMethod == image::smLockScale && cX > 0 && cY > 0) {
    m_scaleCx = cX;
    m_scaleCy = cY;
  }
  bool ok = false;
  Step([&] { ok = m_dib->LoadPicture_Stream(inStream, cX, cY, 0, 0, SaveFormatWanted(), bitDepth); });
  return AfterLoad(ok);
}

void USAlphaImage::ClearImage() {
  StopFade();
  m_dib->DestroyDIB();
  m_maskOn = false;
  m_scaledDib.reset();
  m_shadowDib.reset();
  ShowCheckerBoardIfEmpty();
  Step([&] { PropertyChanged(u"Image"); });
  UpdateGeometry();
  Repaint();
}

bool USAlphaImage::ResizeImage(int32_t Width, int32_t Height) {
  bool ok = false;
  Step([&] { ok = m_dib->Resize(Width, Height); });
  if (ok) {
    Step([&] { PropertyChanged(u"Image"); });
    UpdateGeometry();
    Repaint();
  }
  return ok;
}

bool USAlphaImage::TrimImage(int32_t Method, int32_t& X, int32_t& Y, int32_t& Width, int32_t& Height) {
  bool ok = false;
  Step([&] { ok = m_dib->TrimImage(true, Method, X, Y, Width, Height); });
  if (ok) {
    Step([&] { PropertyChanged(u"Image"); });
    UpdateGeometry();
    Repaint();
  }
  return ok;
}

bool USAlphaImage::Render(platform::HDC destinationDC, int32_t DestX, int32_t DestY, int32_t DestWidth,
                          int32_t DestHeight, int32_t srcX, int32_t srcY, int32_t srcwidth, int32_t srcheight,
                          int32_t Opacity, bool Blend, bool SetHalfTone, image::API32bppDIB* destHostDIB,
                          int32_t grayScale, int32_t LightAdjustment, float Angle, bool CenterOnDestXY) {
  return m_dib->Render(destinationDC, DestX, DestY, DestWidth, DestHeight, srcX, srcY, srcwidth, srcheight, Opacity,
                       Blend, SetHalfTone, destHostDIB, grayScale, LightAdjustment, Angle, CenterOnDestXY);
}

bool USAlphaImage::GetImageBytes(std::vector<uint8_t>& outBytes, bool as2D, bool asPreMultiplied, bool as32bit,
                                 bool asScanAligned, bool asBottomUp) {
  return m_dib->GetDIBbits(outBytes, as2D, asPreMultiplied, as32bit, asScanAligned, asBottomUp);
}

bool USAlphaImage::SetImageBytes(const std::vector<uint8_t>& inBytes, int32_t Width, int32_t Height, bool isBGR,
                                 bool is32bit, bool isScanAligned, bool isBottomUp) {
  // A picture of another size starts a new surface; pixels of the same size are replaced.
  bool ok = false;
  Step([&] {
    if (Width > 0 && Height > 0 && (Width != m_dib->Width() || Height != m_dib->Height() ||
                                    m_dib->ImageType() == image::imgCheckerBoard)) {
      if (!m_dib->InitializeDIB(Width, Height)) return;
    }
    ok = m_dib->SetDIBbits(inBytes, isBGR, is32bit, isScanAligned, isBottomUp);
    // Pixels handed in on a fresh surface are a bitmap, with or without transparency.
    if (ok && m_dib->ImageType() == image::imgNone)
      m_dib->SetImageType(m_dib->Alpha() == image::AlphaNone ? image::imgBitmap : image::imgBmpPARGB);
  });
  if (!ok) return false;
  m_maskOn = false;
  Step([&] { PropertyChanged(u"Image"); });
  UpdateGeometry();
  Repaint();
  return true;
}

// ---- Saving the source ------------------------------------------------------------------------

bool USAlphaImage::SaveToBMP(const host::String& FileName, bool KeepPreMultipliedPixels, int32_t TransparentFillColor) {
  return m_dib->SaveToFile_Bitmap(FileName, KeepPreMultipliedPixels, TransparentFillColor);
}
bool USAlphaImage::SaveToGIF(const host::String& FileName, bool UseAdaptivePalette, int32_t OpaquenessTolerance) {
  return m_dib->SaveToFile_GIF(FileName, UseAdaptivePalette, OpaquenessTolerance);
}
bool USAlphaImage::SaveToJPG(const host::String& FileName, int32_t Quality, int32_t TransparentFillColor) {
  return m_dib->SaveToFile_JPG(FileName, Quality, TransparentFillColor);
}
bool USAlphaImage::SaveToPNG(const host::String& FileName) { return m_dib->SaveToFile_PNG(FileName); }
bool USAlphaImage::SaveToBMPStream(std::vector<uint8_t>& Bytes, bool KeepPreMultipliedPixels,
                                   int32_t TransparentFillColor) {
  return m_dib->SaveToStream_Bitmap(Bytes, KeepPreMultipliedPixels, TransparentFillColor);
}
bool USAlphaImage::SaveToGIFStream(std::vector<uint8_t>& Bytes, bool UseAdaptivePalette, int32_t OpaquenessTolerance) {
  return m_dib->SaveToStream_GIF(Bytes, UseAdaptivePalette, OpaquenessTolerance);
}
bool USAlphaImage::SaveToJPGStream(std::vector<uint8_t>& Bytes, int32_t Quality) {
  return m_dib->SaveToStream_JPG(Bytes, Quality);
}
bool USAlphaImage::SaveToPNGStream(std::vector<uint8_t>& Bytes) { return m_dib->SaveToStream_PNG(Bytes); }

// The picture with the edits of the setters undone, as PNG: what "Image" holds for bitmaps.
bool USAlphaImage::SaveSourceState(std::vector<uint8_t>& bytes) const {
  std::shared_ptr<image::API32bppDIB> copy;
  m_dib->CopyImageTo(copy);
  if (!copy || !copy->Handle()) return false;
  if (InversedImage()) copy->MakeImageInverse();
  if (m_maskOn) copy->MakeTransparent(m_maskResolved, true);
  if (m_mirror != image::mirrorNone)
    copy->MirrorImage((m_mirror & image::mirrorHorizontal) != 0, (m_mirror & image::mirrorVertical) != 0);
  return copy->SaveToStream_PNG(bytes);
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USAlphaImage::About() { ShowAboutBox(); }

void USAlphaImage::Refresh() {
  ReadContainerScaleMode();
  UpdateGeometry();
  Repaint();
}

void USAlphaImage::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"MouseExit", MouseExit, u"MouseEnter", MouseEnter, u"MouseUp", MouseUp, u"MouseMove",
                       MouseMove, u"MouseDown", MouseDown, u"KeyDown", KeyDown, u"KeyPress", KeyPress, u"KeyUp",
                       KeyUp, u"OLEDragDrop", OLEDragDrop, u"OLEDragOver", OLEDragOver, u"FadeTerminated",
                       FadeTerminated);
}

void USAlphaImage::UserControl_Initialize() {
  // The picture is drawn over the container's own background, never over a colour.
  Step([&] { BackStyle(0); });
}

void USAlphaImage::UserControl_InitProperties() {
  ReadContainerScaleMode();
  m_props = kStretchQuality | kAutoSize;
  m_scaleMethod = image::smScaled;
  m_opacity = 100;
  m_mirror = image::mirrorNone;
  m_rotation = 0;
  m_oleDropMode = Drop_None;
  m_grayFormula = -1;
  m_hitTest = Entire_Control;
  m_maskSource = image::maskNone;
  m_maskOn = false;
  m_maskColor = host::vbButtonFace;
  m_shadowColor = 0x404040;
  m_shadowDepth = 2;
  m_shadowX = m_shadowY = 2;
  m_shadowOpacity = 50;
  m_intensity = 0.0f;
  m_dib->HighQualityInterpolation(true);
  Step([&] { UserControl::Enabled(true); });
}

void USAlphaImage::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);

  Step([&] {
    UserControl::MouseIcon(std::dynamic_pointer_cast<host::StdPicture>(saved.Read(u"MIcon", Variant::Nothing()).Obj()));
  });
  Step([&] { UserControl::MousePointer(static_cast<int16_t>(saved.Long(u"MPointer", 0))); });
  m_scaleMethod = saved.Long(u"Scaler", image::smScaled);
  m_opacity = saved.Long(u"Opacity", 100);
  m_mirror = saved.Long(u"Mirror", image::mirrorNone) & image::mirrorAll;
  m_rotation = saved.Long(u"Angle", 0);
  const bool enabled = saved.Bool(u"Enabled", true);
  m_oleDropMode = saved.Long(u"OLEdrop", Drop_None);
  m_grayFormula = saved.Long(u"GrayScale", -1);
  m_hitTest = saved.Long(u"HitTest", Entire_Control);
  // The bit of the scaled copy is the control's own business, whatever a file says.
  m_props = saved.Long(u"Props", kStretchQuality) & ~kScaledCopy;
  m_maskOn = saved.Bool(u"MaskUsed", false);
  m_maskColor = saved.Long(u"MaskColor", host::vbButtonFace);
  m_maskSource = saved.Long(u"MaskSource", image::maskNone);
  m_maskResolved = m_maskOn ? saved.Long(u"Mask", host::vbButtonFace) : 0;
  if (m_maskResolved < 0) Step([&] { m_maskResolved = host::TranslateColor(m_maskResolved); });
  m_shadowColor = saved.Long(u"ShadowColor", 0x404040);
  m_shadowDepth = saved.Long(u"ShadowDepth", 2);
  m_shadowX = saved.Long(u"ShadowX", 2);
  m_shadowY = saved.Long(u"ShadowY", 2);
  m_shadowOpacity = saved.Long(u"ShadowOpacity", 50);
  Step([&] { m_intensity = saved.Read(u"Intensity", Variant(0.0f)).ToSingle(); });
  m_scaleCx = saved.Long(u"ScaleCx", 0);
  m_scaleCy = saved.Long(u"ScaleCy", 0);

  bool loaded = false;
  Step([&] {
    const Variant bytes = saved.Read(u"Image", Variant());
    const host::ByteArray* b = bytes.Bytes();
    if (!b || b->empty()) return;
    loaded = m_dib->LoadPicture_Stream(*b, m_scaleCx, m_scaleCy, 0, 0, SaveFormatWanted(), 32);
  });
  if (loaded) {
    m_dib->HighQualityInterpolation(StretchQuality());
    ApplyStoredEdits();
  } else {
    ResetAfterFailedLoad();
    m_dib->HighQualityInterpolation(StretchQuality());
  }
  UpdateScaledCopyFlag();

  Step([&] { UserControl::Enabled(enabled); });
  ReadContainerScaleMode();
  if (m_userMode && !m_registered) {
    Step([&] {
      frame::APICrossComm::Shared().AddRef(this);
      m_registered = true;
      frame::APICrossComm::Shared().ManageGDIToken(UserControl::hWnd());
      m_dib->gdiToken(static_cast<int32_t>(frame::APICrossComm::Shared().gdiToken()));
    });
  }
}

void USAlphaImage::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  // The design-time checkerboard is no picture.
  if (m_dib->Handle() && m_dib->ImageType() != image::imgCheckerBoard) {
    Step([&] {
      std::vector<uint8_t> bytes;
      const int32_t type = m_dib->ImageType();
      const bool bitmap = type == image::imgBitmap || type == image::imgBmpARGB || type == image::imgBmpPARGB;
      bool ok = false;
      if (bitmap && (m_dib->isZlibEnabled() || m_dib->isGDIplusEnabled())) ok = SaveSourceState(bytes);
      if (!ok) ok = m_dib->GetOrginalFormat(bytes);
      // Without source bytes (a run-time load that did not keep them) the pixels go as PNG.
      if (!ok) ok = SaveSourceState(bytes);
      if (ok) write(u"Image", Variant(host::ByteArray(std::move(bytes))), Variant::Missing());
    });
  }
  write(u"Scaler", Variant(m_scaleMethod), Variant(int32_t{0}));
  write(u"Opacity", Variant(m_opacity), Variant(int32_t{100}));
  write(u"Mirror", Variant(m_mirror), Variant(int32_t{0}));
  write(u"Angle", Variant(m_rotation), Variant(int32_t{0}));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"MPointer", Variant(UserControl::MousePointer()), Variant(int16_t{0}));
  write(u"OLEdrop", Variant(static_cast<int16_t>(m_oleDropMode)), Variant(int16_t{0}));
  {
    std::shared_ptr<host::StdPicture> icon = UserControl::MouseIcon();
    write(u"MIcon", icon ? Variant(icon) : Variant::Nothing(), Variant::Nothing());
  }
  write(u"GrayScale", Variant(m_grayFormula), Variant(int32_t{-1}));
  write(u"HitTest", Variant(m_hitTest), Variant(int32_t{0}));
  write(u"Props", Variant(m_props & ~kScaledCopy), Variant(int32_t{1}));
  write(u"MaskUsed", Variant(m_maskOn), Variant(false));
  write(u"MaskColor", Variant(m_maskColor), Variant(host::vbButtonFace));
  write(u"MaskSource", Variant(m_maskSource), Variant(int32_t{0}));
  if (m_maskOn) write(u"Mask", Variant(m_maskResolved), Variant(host::vbButtonFace));
  write(u"ShadowColor", Variant(m_shadowColor), Variant(OLE_COLOR{0x404040}));
  write(u"ShadowDepth", Variant(m_shadowDepth), Variant(int32_t{2}));
  write(u"ShadowX", Variant(m_shadowX), Variant(int32_t{2}));
  write(u"ShadowY", Variant(m_shadowY), Variant(int32_t{2}));
  write(u"ShadowOpacity", Variant(m_shadowOpacity), Variant(int32_t{50}));
  write(u"Intensity", Variant(m_intensity), Variant(0.0f));
  // The locked size is what LockScale shows; in the other modes it follows the client.
  if (m_scaleMethod == image::smLockScale) {
    write(u"ScaleCx", Variant(m_scaleCx), Variant(int32_t{0}));
    write(u"ScaleCy", Variant(m_scaleCy), Variant(int32_t{0}));
  }
}

void USAlphaImage::UserControl_Resize() {
  if (m_inGeometry) return;
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  ShowCheckerBoardIfEmpty();
  UpdateGeometry();
  Repaint();
}

void USAlphaImage::UserControl_Show() {
  if (m_userMode && !m_registered) {
    Step([&] {
      frame::APICrossComm::Shared().AddRef(this);
      m_registered = true;
    });
  }
}

void USAlphaImage::UserControl_Hide() {
  StopMouseTimer();
  StopFade();
  if (m_registered) {
    Step([&] { frame::APICrossComm::Shared().RemoveRef(this); });
    m_registered = false;
  }
}

void USAlphaImage::UserControl_Terminate() {
  UserControl_Hide();
  m_userMode = false;
  Step([&] { m_thunks.reset(); });
  m_scaledDib.reset();
  m_shadowDib.reset();
  if (m_hitRegion) {
    platform::DeleteObject(m_hitRegion);
    m_hitRegion = 0;
  }
  m_dib->DestroyDIB();
}

}  // namespace mx::controls
