#pragma once
// USAlphaImage: one picture with real transparency, shown scaled, mirrored, rotated, grey,
// lightened, with a drop shadow and a colour mask, hit-tested against its opaque shape.
//
// The picture is kept as loaded in `dib`; what the setters change (mirror, mask, inversion) is
// applied to it in place and undone again when the form is saved, so that the saved bytes are
// always the source picture. Everything else (scale, opacity, grey, light, rotation, shadow) is
// applied while painting. The control paints in its Paint event, straight onto the window, from
// `dib` or from the scaled copy that AutoRedraw keeps.
//
// The flag word ("Props"):
//
//   bit   1 StretchQuality      8 AutoRedraw            64 InversedImage       256 RotateEnabled
//         4 AutoSize           16 KeepOriginalFormat   128 ShadowEnabled
//        32 internal: the scaled copy is in use; never persisted
//
// The pointer leaves a windowless shape without the window knowing, so mouse exit is found by a
// 100 ms timer that looks where the cursor is; APICrossComm makes sure that only one control of
// the thread thinks the mouse is over it.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "frame/APICrossComm.h"
#include "frame/APISubClass.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "image/API32bppDIB.h"
#include "platform/Types.h"

namespace mx::host {
class DataObject;
}

namespace mx::controls {

class USImageList;

enum ENUM_HITTEST_STYLE : int32_t {
  Entire_Control = 0,
  Bounding_Region = 1,
  Enclosed_Region = 2,
  Shaped_Region = 3,
};

enum ENUM_OLE_DROP_MODE : int32_t { Drop_None = 0, Drop_Manual = 1 };

class USAlphaImage : public host::UserControl, public frame::APIICrossComm, public frame::SubclassOwner {
 public:
  // Bits of the flag word.
  static constexpr int32_t kStretchQuality = 1;
  static constexpr int32_t kAutoSize = 4;
  static constexpr int32_t kAutoRedraw = 8;
  static constexpr int32_t kKeepOriginalFormat = 16;
  static constexpr int32_t kScaledCopy = 32;
  static constexpr int32_t kInversedImage = 64;
  static constexpr int32_t kShadowEnabled = 128;
  static constexpr int32_t kRotateEnabled = 256;
  // How long the pointer is looked for before it counts as gone.
  static constexpr uint32_t kMouseCheckInterval = 100;

  USAlphaImage();
  ~USAlphaImage() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USAlphaImage"; }
  [[nodiscard]] host::String TypeName() const override { return u"USAlphaImage"; }

  // ---- Properties ----------------------------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] int32_t ScaleMethod() const { return m_scaleMethod; }
  void ScaleMethod(int32_t value);
  // 0 hides the picture; other values wrap into 1..100.
  [[nodiscard]] int32_t Opacity() const { return m_opacity; }
  void Opacity(int32_t value);
  [[nodiscard]] int32_t Mirror() const { return m_mirror; }
  void Mirror(int32_t value);
  // Degrees, applied while RotateEnabled is on.
  [[nodiscard]] int32_t Rotation() const { return m_rotation; }
  void Rotation(int32_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  void MouseIcon(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] int32_t OLEDropMode() const { return m_oleDropMode; }
  void OLEDropMode(int32_t value);
  // ENUM_GRAY_SCALES: the stored formula plus 1 (0 no grey).
  [[nodiscard]] int32_t grayScale() const { return m_grayFormula + 1; }
  void grayScale(int32_t value);
  [[nodiscard]] int32_t HitTest() const { return m_hitTest; }
  void HitTest(int32_t value);
  [[nodiscard]] bool StretchQuality() const { return (m_props & kStretchQuality) != 0; }
  void StretchQuality(bool value);
  [[nodiscard]] bool AutoSize() const { return (m_props & kAutoSize) != 0; }
  void AutoSize(bool value);
  // Keeps a copy of the picture at its display size (at run time, unrotated), so that painting
  // needs no resampling.
  [[nodiscard]] bool AutoRedraw() const { return (m_props & kAutoRedraw) != 0; }
  void AutoRedraw(bool value);
  [[nodiscard]] bool KeepOriginalFormat() const { return (m_props & kKeepOriginalFormat) != 0; }
  void KeepOriginalFormat(bool value);
  [[nodiscard]] bool InversedImage() const { return (m_props & kInversedImage) != 0; }
  void InversedImage(bool value);
  [[nodiscard]] bool ShadowEnabled() const { return (m_props & kShadowEnabled) != 0; }
  void ShadowEnabled(bool value);
  [[nodiscard]] bool RotateEnabled() const { return (m_props & kRotateEnabled) != 0; }
  void RotateEnabled(bool value);
  // ENUM_MASK_SOURCE: where the transparent colour comes from (0: no mask).
  [[nodiscard]] int32_t MaskUsed() const { return m_maskSource; }
  void MaskUsed(int32_t value);
  [[nodiscard]] host::OLE_COLOR MaskColor() const { return m_maskColor; }
  void MaskColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR ShadowColor() const { return m_shadowColor; }
  void ShadowColor(host::OLE_COLOR value);
  [[nodiscard]] int32_t ShadowDepth() const { return m_shadowDepth; }
  void ShadowDepth(int32_t value);
  [[nodiscard]] int32_t ShadowOffsetX() const { return m_shadowX; }
  void ShadowOffsetX(int32_t value);
  [[nodiscard]] int32_t ShadowOffsetY() const { return m_shadowY; }
  void ShadowOffsetY(int32_t value);
  [[nodiscard]] int32_t ShadowOpacity() const { return m_shadowOpacity; }
  void ShadowOpacity(int32_t value);
  [[nodiscard]] float IntensityOffset() const { return m_intensity; }
  void IntensityOffset(float value);

  // Read-only.
  [[nodiscard]] int32_t imageWidth() const { return m_dib->Width(); }
  [[nodiscard]] int32_t imageHeight() const { return m_dib->Height(); }
  [[nodiscard]] int32_t ImageType() const { return m_dib->ImageType(); }
  [[nodiscard]] bool GDIplusInitialized() const { return m_dib->gdiToken() != 0; }
  [[nodiscard]] bool GDIplusEnabled() const { return m_dib->isGDIplusEnabled(); }
  // The picture as loaded (with mirror, mask and inversion applied).
  [[nodiscard]] image::API32bppDIB& dibClass() { return *m_dib; }
  // True while this control holds the mouse.
  [[nodiscard]] bool isMouseOver() const;

  // ---- Methods -------------------------------------------------------------------------------

  void About();
  void Refresh();
  void ClearImage();
  bool ResizeImage(int32_t Width, int32_t Height);
  bool TrimImage(int32_t Method, int32_t& X, int32_t& Y, int32_t& Width, int32_t& Height);
  // Draws the picture as loaded onto another DC or surface (the surface's Render).
  bool Render(platform::HDC destinationDC, int32_t DestX = 0, int32_t DestY = 0, int32_t DestWidth = 0,
              int32_t DestHeight = 0, int32_t srcX = 0, int32_t srcY = 0, int32_t srcwidth = 0, int32_t srcheight = 0,
              int32_t Opacity = 100, bool Blend = true, bool SetHalfTone = true,
              image::API32bppDIB* destHostDIB = nullptr, int32_t grayScale = -1, int32_t LightAdjustment = 0,
              float Angle = 0.0f, bool CenterOnDestXY = false);
  bool GetImageBytes(std::vector<uint8_t>& outBytes, bool as2D = false, bool asPreMultiplied = false,
                     bool as32bit = true, bool asScanAligned = false, bool asBottomUp = true);
  bool SetImageBytes(const std::vector<uint8_t>& inBytes, int32_t Width, int32_t Height, bool isBGR = true,
                     bool is32bit = true, bool isScanAligned = false, bool isBottomUp = true);

  bool SaveToBMP(const host::String& FileName, bool KeepPreMultipliedPixels = false, int32_t TransparentFillColor = -1);
  bool SaveToGIF(const host::String& FileName, bool UseAdaptivePalette = true, int32_t OpaquenessTolerance = 128);
  bool SaveToJPG(const host::String& FileName, int32_t Quality = 90, int32_t TransparentFillColor = -1);
  bool SaveToPNG(const host::String& FileName);
  bool SaveToBMPStream(std::vector<uint8_t>& Bytes, bool KeepPreMultipliedPixels = false,
                       int32_t TransparentFillColor = -1);
  bool SaveToGIFStream(std::vector<uint8_t>& Bytes, bool UseAdaptivePalette = true, int32_t OpaquenessTolerance = 128);
  bool SaveToJPGStream(std::vector<uint8_t>& Bytes, int32_t Quality = 90);
  bool SaveToPNGStream(std::vector<uint8_t>& Bytes);
  // What the control shows (scale, mirror, grey, opacity, rotation, light), trimmed, saved.
  bool SaveRederedToBMP(const host::String& FileName, bool KeepPreMultipliedPixels = false,
                        int32_t TransparentFillColor = -1, int32_t LightAdjustment = 0);
  bool SaveRederedToGIF(const host::String& FileName, bool UseAdaptivePalette = true,
                        int32_t OpaquenessTolerance = 128, int32_t LightAdjustment = 0);
  bool SaveRederedToJPG(const host::String& FileName, int32_t Quality = 90, int32_t TransparentFillColor = -1,
                        int32_t LightAdjustment = 0);
  bool SaveRederedToPNG(const host::String& FileName, int32_t LightAdjustment = 0);
  // The rendered picture itself, as the SaveRedered... members save it; false when nothing shows.
  bool RenderedImage(image::API32bppDIB& out, int32_t LightAdjustment = 0) const;

  bool LoadImage_FromFile(const host::String& FileName, int32_t iconCx = 0, int32_t iconCy = 0,
                          int32_t iconBitDepth = 32);
  bool LoadImage_FromArray(const std::vector<uint8_t>& inArray, int32_t iconCx = 0, int32_t iconCy = 0,
                           int32_t streamStart = 0, int32_t streamLength = 0, int32_t iconBitDepth = 32);
  // A resource of the program: here a file of that name beside MX_RESOURCE_DIR or the current
  // directory (ResSection names the folder).
  bool LoadImage_FromResource(const host::String& ResIndex, const host::String& ResSection, int32_t iconCx = 0,
                              int32_t iconCy = 0, int32_t iconBitDepth = 32);
  bool LoadImage_FromStdPicture(const std::shared_ptr<host::StdPicture>& Picture);
  bool LoadImage_FromClipboard();
  bool LoadImage_FromHandle(uint32_t Handle);
  bool LoadImage_FromPastedFiles(int32_t FileIndex, int32_t& FileCount, int32_t iconCx = 0, int32_t iconCy = 0,
                                 int32_t iconBitDepth = 32);
  bool LoadImage_FromDropedFiles(host::DataObject& Data, int32_t FileIndex = 1, int32_t iconCx = 0,
                                 int32_t iconCy = 0, int32_t iconBitDepth = 32);
  bool LoadImage_FromOrignalBytes(int32_t iconCx = 0, int32_t iconCy = 0, int32_t iconBitDepth = 32);
  // Index names the list (number or key), Key the image in it (number or key).
  bool LoadImage_FromUSImageList(const USImageList& objUSImageList, const host::Variant& Index,
                                 const host::Variant& Key);
  bool GetStream(std::vector<uint8_t>& outStream);
  // A load whose size follows ScaleMethod: with LockScale, cX and cY become the locked size.
  bool SetStream(const std::vector<uint8_t>& inStream, int32_t cX = 0, int32_t cY = 0, int32_t bitDepth = 32);

  // The display size for a client (or desired) size; see the geometry notes in the source.
  void GetImageScales(int32_t& Width, int32_t& Height, int32_t xScaleMethod = -1, int32_t desiredWidth = 0,
                      int32_t desiredHeight = 0, bool asRotatedImage = false) const;
  // Fades Opacity to FinalOpacity by FadeStepPercent every FadeDelayInterval ms; FadeTerminated
  // tells the end.
  void FadeInOut(int32_t FinalOpacity, int32_t FadeStepPercent = 10, int32_t FadeDelayInterval = 30);
  // Moves the shadow, relative to where it would be.
  void OffsetShadow(int32_t X, int32_t Y);
  // SetOffsets True moves the picture and its shadow; False reads the offsets in force.
  void OffsetImage(bool SetOffsets, int32_t& X, int32_t& Y, int32_t& ShadowX, int32_t& ShadowY);

  // ---- Events --------------------------------------------------------------------------------

  host::Event<> MouseExit;
  host::Event<> MouseEnter;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&> KeyPress;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<host::DataObject&, int32_t&, int16_t&, int16_t&, float&, float&> OLEDragDrop;
  host::Event<host::DataObject&, int32_t&, int16_t&, int16_t&, float&, float&, int16_t&> OLEDragOver;
  host::Event<int32_t> FadeTerminated;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- APIICrossComm -------------------------------------------------------------------------

  [[nodiscard]] frame::APICrossComm* CrossTalkClass() override { return &frame::APICrossComm::Shared(); }
  void ReleaseMouseCapture() override;

  // ---- Inspection, for tests and tools -------------------------------------------------------

  struct Geometry {
    int32_t x = 0, y = 0, width = 0, height = 0;
    bool actualSize = false;
  };
  [[nodiscard]] Geometry DisplayRect() const { return {m_x, m_y, m_width, m_height, m_actualSize}; }
  // The flag word as held (bit 32 included).
  [[nodiscard]] int32_t Props() const { return m_props; }
  [[nodiscard]] const image::API32bppDIB* ScaledCopy() const { return m_scaledDib.get(); }
  [[nodiscard]] const image::API32bppDIB* ShadowCache() const { return m_shadowDib.get(); }
  // The hit region (0 when the test object is a rectangle) and the rectangle.
  [[nodiscard]] platform::HRGN HitRegion() const { return m_hitRegion; }
  [[nodiscard]] platform::RECT HitRect() const { return m_hitRect; }
  [[nodiscard]] bool FadeRunning() const { return m_fadeTarget >= 0; }

 protected:
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Hide() override;
  void UserControl_Paint() override;
  void UserControl_Terminate() override;
  void UserControl_HitTest(float X, float Y, int16_t& HitResult) override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_OLEDragOver(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift, float& X,
                               float& Y, int16_t& State) override;
  void UserControl_OLEDragDrop(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift, float& X,
                               float& Y) override;

  // Timer callbacks: ordinal 1 the mouse check, 2 the fade step.
  [[nodiscard]] int32_t ProcedureCount(frame::eThunkType kind) const override {
    return kind == frame::CallbackThunk ? 2 : 1;
  }
  platform::LRESULT CallbackProc(int32_t nOrdinal, std::span<const intptr_t> args) override;

 private:
  // Geometry and caches (USAlphaImagePaint.cpp).
  void UpdateGeometry();
  void RebuildScaledCopy();
  void RebuildShadow();
  void RebuildHitRegion();
  void RebuildCaches();
  void Repaint();
  void UpdateScaledCopyFlag();
  void ShowCheckerBoardIfEmpty();
  [[nodiscard]] bool IsDesignMode() const;
  [[nodiscard]] int32_t ResolvedShadowColor() const;
  // A copy of the picture at the display size, or null when it is already that size.
  [[nodiscard]] std::shared_ptr<image::API32bppDIB> ScaledSource() const;

  // Loading (USAlphaImage.cpp).
  bool AfterLoad(bool loaded);
  void ApplyStoredEdits();
  void ApplyMask();
  void UndoMask();
  [[nodiscard]] bool SaveSourceState(std::vector<uint8_t>& bytes) const;
  void ResetAfterFailedLoad();
  [[nodiscard]] bool SaveFormatWanted() const;

  // Mouse and timers (USAlphaImageMouse.cpp).
  [[nodiscard]] bool PointInShape(int32_t x, int32_t y) const;
  void StartMouseTimer();
  void StopMouseTimer();
  void StopFade();
  void MouseTimerTick();
  void FadeTick();
  void ReadContainerScaleMode();
  void ToContainerScale(float& X, float& Y) const;
  [[nodiscard]] platform::UINT_PTR MouseTimerId() const;
  [[nodiscard]] platform::UINT_PTR FadeTimerId() const;

  std::unique_ptr<image::API32bppDIB> m_dib;
  std::shared_ptr<image::API32bppDIB> m_scaledDib;
  std::shared_ptr<image::API32bppDIB> m_shadowDib;

  // Persisted.
  int32_t m_props = kStretchQuality | kAutoSize;
  int32_t m_scaleMethod = 0;
  int32_t m_opacity = 100;
  int32_t m_mirror = 0;
  int32_t m_rotation = 0;
  int32_t m_oleDropMode = Drop_None;
  int32_t m_grayFormula = -1;
  int32_t m_hitTest = Entire_Control;
  int32_t m_maskSource = 0;
  bool m_maskOn = false;
  host::OLE_COLOR m_maskColor = host::vbButtonFace;
  int32_t m_maskResolved = 0;
  host::OLE_COLOR m_shadowColor = 0x404040;
  int32_t m_shadowDepth = 2;
  int32_t m_shadowX = 2;
  int32_t m_shadowY = 2;
  int32_t m_shadowOpacity = 50;
  float m_intensity = 0.0f;
  int32_t m_scaleCx = 0;
  int32_t m_scaleCy = 0;

  // Run-time state.
  bool m_userMode = false;
  int32_t m_containerScaleMode = 9;
  int32_t m_clientWidth = -1;  // -1 until the first Resize: nothing paints before it
  int32_t m_clientHeight = -1;
  int32_t m_x = 0, m_y = 0, m_width = 0, m_height = 0;
  int32_t m_imageOffsetX = 0, m_imageOffsetY = 0;
  int32_t m_shadowMoveX = 0, m_shadowMoveY = 0;
  bool m_actualSize = false;
  bool m_inGeometry = false;
  // The hit-test object: the region when there is one, else the rectangle; m_hitNothing when
  // the picture has no opaque pixel at all, so that nothing is hit.
  platform::HRGN m_hitRegion = 0;
  platform::RECT m_hitRect{};
  bool m_hitNothing = false;
  platform::POINT m_clientOrigin{};
  int16_t m_buttons = 0;
  bool m_registered = false;
  bool m_mouseTimerOn = false;
  int32_t m_fadeTarget = -1;  // -1: no fade running
  int32_t m_fadeStep = 0;
  uint32_t m_fadeInterval = 30;
  std::unique_ptr<frame::APISubClass> m_thunks;
};

}  // namespace mx::controls
