#pragma once
// The one picture type of the library: a 32-bit DIB section with what the object knows about its
// transparency and its source.
//
// Memory layout, relied on by every reader, writer and pixel loop:
//
//   BitsPointer ──► row Height-1 of the picture (the bottom row)   Width x 4 bytes, no padding
//                   row Height-2
//                   ...
//                   row 0 (the top row)
//
//   each pixel: blue, green, red, alpha; colours premultiplied (c <= alpha; alpha 0 => all 0)
//
// No member throws: failures are reported as false, 0 or -1, and a failed load leaves the
// surface empty.
#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"
#include "image/TransformEnums.h"
#include "platform/Types.h"

namespace mx::host {
class DataObject;
class StdFont;
class StdPicture;
}  // namespace mx::host

namespace mx::image {

class APIPNGWriter;

enum ENUM_IMAGE_FORMAT : int32_t {
  imgError = -1,
  imgNone = 0,
  imgBitmap = 1,
  imgWMF = 2,
  imgIcon = 3,
  imgEMF = 4,
  imgCursor = 5,
  imgBmpARGB = 6,
  imgBmpPARGB = 7,
  imgIconARGB = 8,
  imgGIF = 9,
  imgPNG = 10,
  imgPNGicon = 11,
  imgCursorARGB = 12,
  imgCheckerBoard = 64,
};

enum ENUM_ALPHA_TYPE : int32_t {
  AlphaNone = 0,
  AlphaSimple = 1,
  AlphaComplex = 2,
};

// Bits of systemCaps.
enum : int32_t {
  capAlphaBlend = 1,
  capGDIplus = 2,
  capNT5 = 8,
  capWin98 = 16,
  capNoGDIplus = 32,
  capNT = 64,
};

class API32bppDIB {
 public:
  API32bppDIB();
  ~API32bppDIB();
  API32bppDIB(const API32bppDIB&) = delete;
  API32bppDIB& operator=(const API32bppDIB&) = delete;

  // ---- properties ----
  [[nodiscard]] host::Variant& Tag() { return m_tag; }
  void Tag(host::Variant value) { m_tag = std::move(value); }
  [[nodiscard]] bool HighQualityInterpolation() const { return m_highQuality; }
  void HighQualityInterpolation(bool value) { m_highQuality = value; }
  [[nodiscard]] platform::HBITMAP Handle() const { return m_handle; }
  [[nodiscard]] uint8_t* BitsPointer() const { return m_bits; }
  [[nodiscard]] int32_t Width() const { return m_width; }
  [[nodiscard]] int32_t Height() const { return m_height; }
  [[nodiscard]] int32_t scanWidth() const { return m_width * 4; }
  [[nodiscard]] platform::HDC imageDC() const { return m_imageDC; }
  // Non-zero while the bitmap is selected into imageDC.
  [[nodiscard]] platform::HGDIOBJ prevBitmap() const { return m_prevBitmap; }
  [[nodiscard]] int32_t systemCaps() const { return m_systemCaps; }
  [[nodiscard]] ENUM_IMAGE_FORMAT ImageType() const { return m_imageType; }
  // For the readers of this library.
  void SetImageType(ENUM_IMAGE_FORMAT value) { m_imageType = value; }
  [[nodiscard]] bool ManageOwnDC() const { return m_manageOwnDC; }
  void ManageOwnDC(bool value);
  [[nodiscard]] ENUM_ALPHA_TYPE Alpha() const { return m_alpha; }
  void Alpha(ENUM_ALPHA_TYPE value) { m_alpha = value; }
  [[nodiscard]] bool isAlphaBlendFriendly() const { return (m_systemCaps & capAlphaBlend) != 0; }
  void isAlphaBlendFriendly(bool value);
  [[nodiscard]] bool isGDIplusEnabled() const { return (m_systemCaps & capGDIplus) != 0; }
  void isGDIplusEnabled(bool value);
  [[nodiscard]] int32_t gdiToken() const { return m_gdiToken; }
  void gdiToken(int32_t value);
  [[nodiscard]] bool KeepGDIplusActive() const { return m_keepGDIplus; }
  void KeepGDIplusActive(bool value);
  // Asked afresh on every call: libz.so.1 loads and exports crc32 (and MX_NO_ZLIB is not 1).
  [[nodiscard]] bool isZlibEnabled() const;

  // ---- lifecycle and device context ----
  bool InitializeDIB(int32_t Width, int32_t Height);
  void DestroyDIB();
  void EraseDIB();
  // True: the DC with the bitmap selected (0 when empty). False: deselects, and drops the DC
  // unless ManageOwnDC; returns 0.
  platform::HDC LoadDIBinDC(bool bSelect);
  void SwapDIBs(API32bppDIB& other);
  // The system-codec session: a token only while the binding is available (APIGDIPlus).
  [[nodiscard]] int32_t CreateGDIplusToken();
  bool DestroyGDIplusToken(int32_t token);
  bool GetOrginalFormat(std::vector<uint8_t>& outBytes) const;

  // ---- loading ----
  bool LoadPicture_File(const host::String& FileName, int32_t iconCx = 0, int32_t iconCy = 0,
                        bool SaveFormat = false, int32_t iconBitDepth = 32);
  bool LoadPicture_Stream(const std::vector<uint8_t>& inStream, int32_t iconCx = 0, int32_t iconCy = 0,
                          int32_t streamStart = 0, int32_t streamLength = 0, bool SaveFormat = false,
                          int32_t iconBitDepth = 32);
  bool LoadPicture_FromOrignalFormat(int32_t iconCx = 0, int32_t iconCy = 0, int32_t iconBitDepth = 32);

  // ---- pixel access ----
  // Colour as 0xBBGGRR, or -1 outside the picture (Alpha then 0).
  int32_t GetPixel(int32_t X, int32_t Y, uint8_t& Alpha, bool asPreMultiplied = false) const;
  // The address of the pixel written, or null.
  uint8_t* SetPixel(int32_t X, int32_t Y, int32_t Color, int32_t Alpha = 255, bool isPreMultiplied = false);
  // A 2-D byte array (row bytes by Height, first index fastest) has the memory of the flat one,
  // so as2D changes nothing in the bytes handed back; it is kept for the argument order.
  bool GetDIBbits(std::vector<uint8_t>& outBytes, bool as2D = false, bool asPreMultiplied = false,
                  bool as32bit = true, bool asScanAligned = false, bool asBottomUp = true, int32_t X = 0,
                  int32_t Y = 0, int32_t Width = 0, int32_t Height = 0, bool asBGR = true) const;
  bool SetDIBbits(const std::vector<uint8_t>& inBytes, bool isBGR = true, bool is32bit = true,
                  bool isScanAligned = false, bool isBottomUp = true, int32_t X = 0, int32_t Y = 0,
                  int32_t Width = 0, int32_t Height = 0);
  // Rows of width, height, bit depth, colour count; returns the row count (0 when not an icon).
  int32_t SourceIconSizes(std::vector<std::array<int32_t, 4>>& outSizes) const;
  bool CreateCheckerBoard(int32_t cellSize, int32_t Color1, int32_t Color2);

  // Classifies (and with Premultiply converts) a 32-bit pixel array; imageType is in-out, and -1
  // on entry skips the scan and treats the pixels as having no alpha.
  static ENUM_ALPHA_TYPE ValidateAlphaChannel(std::span<uint8_t> pixels, bool Premultiply, int32_t& imageType);

  // ---- rendering and transforms (API32bppDIBRender.cpp, API32bppDIBTransform.cpp) ----
  // Draws onto a DC, or into destHostDIB's memory when given. Sizes 0 mean the image's; a
  // negative srcwidth or srcheight mirrors; Opacity wraps modulo 100 (0 is full); an Angle
  // that is not a whole turn rotates about the destination's centre. Blend has no effect.
  bool Render(platform::HDC destinationDC, int32_t DestX = 0, int32_t DestY = 0, int32_t DestWidth = 0,
              int32_t DestHeight = 0, int32_t srcX = 0, int32_t srcY = 0, int32_t srcwidth = 0,
              int32_t srcheight = 0, int32_t Opacity = 100, bool Blend = true, bool SetHalfTone = true,
              API32bppDIB* destHostDIB = nullptr, int32_t grayScale = -1, int32_t LightAdjustment = 0,
              float Angle = 0.0f, bool CenterOnDestXY = false);
  void ScaleImage(int32_t DestWidth, int32_t DestHeight, int32_t& ScaledWidth, int32_t& ScaledHeight,
                  int32_t ScaleOption = scaleToSize) const;
  bool Resize(int32_t Width, int32_t Height);
  // destDIB is made when null, and recreated only when its size differs.
  void CopyImageTo(std::shared_ptr<API32bppDIB>& destDIB, int32_t Width = 0, int32_t Height = 0,
                   bool CopyOriginalFormat = false);
  bool TrimImage(bool UpdateDIB, int32_t Method, int32_t& X, int32_t& Y, int32_t& Width, int32_t& Height);
  bool TileImage(platform::HDC destinationDC, int32_t DestX, int32_t DestY, int32_t DestWidth, int32_t DestHeight,
                 int32_t TileWidth = 0, int32_t TileHeight = 0, int32_t xSpacing = 0, int32_t ySpacing = 0,
                 bool Stagger = false, bool MirrorX = false, bool MirrorY = false, int32_t Opacity = 100,
                 int32_t grayScale = -1, int32_t LightAdjustment = 0);
  bool GetAlphaMask(std::vector<uint8_t>& outMask, bool as2D = false, bool asScanAligned = false,
                    bool asBottomUp = false, int32_t X = 0, int32_t Y = 0, int32_t Width = 0,
                    int32_t Height = 0) const;
  // A region owned by the caller, or 0.
  [[nodiscard]] platform::HRGN CreateRegion(int32_t RegionStyle, int32_t xOffset = 0, int32_t yOffset = 0) const;
  bool MakeGrayScale(int32_t Formula);
  bool MakeImageInverse();
  bool MakeTransparent(int32_t Color, bool AddBackground);
  bool MirrorImage(bool MirrorX, bool MirrorY);
  bool MakeLighterDarker(int32_t LightAdjustment);
  bool BlendToColor(int32_t Color, int32_t BlendPct);
  [[nodiscard]] std::shared_ptr<API32bppDIB> CreateDropShadow(int32_t Depth, int32_t Color) const;
  bool RenderDropShadow_JIT(platform::HDC destinationDC, int32_t DestX, int32_t DestY, int32_t Depth, int32_t Color,
                            int32_t Opacity = 100, int32_t LightAdjustment = 0, API32bppDIB* destHostDIB = nullptr);

  // ---- more loading, saving, text, clipboard and drops (API32bppDIBLoad.cpp,
  //      API32bppDIBSave.cpp, API32bppDIBText.cpp, API32bppDIBClipboard.cpp) ----
  // By the picture's Type: icons and bitmaps through their platform handle. Metafiles are not
  // drawn by this platform and fail. An empty picture leaves the surface empty.
  bool LoadPicture_StdPicture(const std::shared_ptr<host::StdPicture>& Picture);
  // A bitmap or icon handle; it stays the caller's.
  bool LoadPicture_ByHandle(uint32_t Handle);
  // A bitmap on the clipboard: CF_BITMAP (a handle) or a packed DIB (CF_DIB, CF_DIBV5).
  bool LoadPicture_ClipBoard();
  bool LoadPicture_DropedFiles(host::DataObject& DragDrop_DataObject, int32_t FileIndex, int32_t iconCx = 0,
                               int32_t iconCy = 0, bool SaveFormat = false, int32_t iconBitDepth = 32);
  // FileIndex 0 only counts; FileCount receives the number of files on the clipboard.
  bool LoadPicture_PastedFiles(int32_t FileIndex, int32_t iconCx, int32_t iconCy, bool SaveFormat,
                               int32_t iconBitDepth, int32_t& FileCount);
  // Refills the data object's Files with the wide names of its drop list; false without one.
  bool GetDroppedFileNames(host::DataObject& DragDrop_DataObject) const;
  // The files on the clipboard (CF_HDROP): the count, and their names from index 1 (index 0 is
  // an unused empty entry, as in a 1-based array).
  int32_t GetPastedFileNames(std::vector<host::String>& outNames) const;

  bool SaveToFile_Bitmap(const host::String& FileName, bool KeepPreMultipliedPixels = false,
                         int32_t TransparentFillColor = -1) const;
  bool SaveToStream_Bitmap(std::vector<uint8_t>& outBytes, bool KeepPreMultipliedPixels = false,
                           int32_t TransparentFillColor = -1) const;
  bool SaveToFile_GIF(const host::String& FileName, bool UseAdaptivePalette = true,
                      int32_t OpaquenessTolerance = 128) const;
  bool SaveToStream_GIF(std::vector<uint8_t>& outBytes, bool UseAdaptivePalette = true,
                        int32_t OpaquenessTolerance = 128) const;
  bool SaveToFile_PNG(const host::String& FileName) const;
  bool SaveToStream_PNG(std::vector<uint8_t>& outBytes) const;
  bool SaveToFile_JPG(const host::String& FileName, int32_t Quality = 90, int32_t TransparentFillColor = -1) const;
  // Through the system codec only, so it fails while that is unavailable.
  bool SaveToStream_JPG(std::vector<uint8_t>& outBytes, int32_t Quality = 90) const;
  // xType -1 drops every property; a Missing Value removes one.
  bool PngPropertySet(int32_t xType, const host::Variant& Value = host::Variant::Missing(),
                      const host::String& Keyword = {});
  [[nodiscard]] host::Variant PngPropertyGet(int32_t xType, const host::String& Keyword = {}) const;
  // The writer that holds the properties, or null until the first one is set.
  [[nodiscard]] const APIPNGWriter* pngProps() const { return m_pngProps.get(); }

  // Text drawn onto the surface, or when it is empty the surface becomes the text. ForeColor
  // and BackColor are OLE_COLORs; BackColor negative draws the text alone with its coverage as
  // alpha.
  bool DrawText_stdFont(const host::StdFont& Font, const host::String& Text, int32_t TextAlign = 0, int32_t X = 0,
                        int32_t Y = 0, int32_t Width = 0, int32_t Height = 0, int32_t ForeColor = 0,
                        int32_t BackColor = -1, int32_t Opacity = 100, int32_t GrayScale = -1, float Angle = 0.0f,
                        bool CenterOnDestXY = false);
  bool DrawText_hFont(platform::HFONT hFont, const host::String& Text, int32_t TextAlign = 0, int32_t X = 0,
                      int32_t Y = 0, int32_t Width = 0, int32_t Height = 0, int32_t ForeColor = 0,
                      int32_t BackColor = -1, int32_t Opacity = 100, int32_t GrayScale = -1, float Angle = 0.0f,
                      bool CenterOnDestXY = false);

  // Copies the original bytes kept by a load. Readers fill them through here.
  void SetOriginalBytes(std::vector<uint8_t> bytes) { m_original = std::move(bytes); }

 private:
  bool drawTextCore(platform::HFONT font, const host::String& Text, int32_t TextAlign, int32_t X, int32_t Y,
                    int32_t Width, int32_t Height, int32_t ForeColor, int32_t BackColor, int32_t Opacity,
                    int32_t GrayScale, float Angle, bool CenterOnDestXY);
  bool loadCore(const host::String* fileName, const std::vector<uint8_t>& bytes, int32_t iconCx, int32_t iconCy,
                int32_t streamStart, int32_t streamLength, bool SaveFormat, int32_t iconBitDepth);

  host::Variant m_tag;
  bool m_highQuality = false;
  platform::HBITMAP m_handle = 0;
  uint8_t* m_bits = nullptr;
  int32_t m_height = 0;
  int32_t m_width = 0;
  platform::HDC m_imageDC = 0;
  platform::HGDIOBJ m_prevBitmap = 0;
  int32_t m_systemCaps = 0;
  ENUM_IMAGE_FORMAT m_imageType = imgError;
  bool m_manageOwnDC = false;
  ENUM_ALPHA_TYPE m_alpha = AlphaNone;
  int32_t m_gdiToken = 0;
  std::vector<uint8_t> m_original;
  bool m_keepGDIplus = false;
  std::shared_ptr<APIPNGWriter> m_pngProps;  // text and chunk properties for PNG saves
};

}  // namespace mx::image
