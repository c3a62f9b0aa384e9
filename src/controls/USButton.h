#pragma once
// USButton: the owner-drawn push button, which can also act as a two-state check button.
//
// Behaviour and painting are kept apart. The click machine (the handlers and RaiseClick) only
// moves flags and asks DrawState for a state; DrawState decides whether anything must be painted
// (a state and focus already on the screen are not painted again) and PaintFace draws the face,
// border, focus mark and caption into the persistent image.
//
// States: 0 normal, 1 over, 2 down, 3 disabled. The face of each is a gradient of two or four
// colours of its own set; a check button whose Value is True shows the down colours whatever the
// mouse does.
#include <cstdint>
#include <memory>
#include <span>

#include "controls/CaptionControl.h"
#include "frame/ToolTipSettings.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::frame {
class APIMouseEvents;
class APITooltip;
}  // namespace mx::frame

namespace mx::image {
class API32bppDIB;
}  // namespace mx::image

namespace mx::controls {

using host::OLE_COLOR;
using host::String;
using host::StringView;

// Member names carry the blanks of the public names as underscores.
enum ENUM_ALIGNMENTS : int32_t { To_Left_Justify = 0, On_Center = 1, To_Right_Justify = 2 };

enum ENUM_BUTTON_BORDERS : int32_t { Dont_Crop = 0, Crop_Left = 1, Crop_Right = 2, Crop_All = 3 };

enum ENUM_PIC_ALIGNMENTS : int32_t {
  Picture_BehindText = 0,
  Picture_BottomEdge = 1,
  Picture_BottomOfCaption = 2,
  Picture_LeftEdge = 3,
  Picture_LeftOfCaption = 4,
  Picture_RightEdge = 5,
  Picture_RightOfCaption = 6,
  Picture_TopEdge = 7,
  Picture_TopOfCaption = 8,
};

enum ENUM_PICTURE_SIZES : int32_t {
  Picture_Normal = 0,
  Picture_16x16 = 1,
  Picture_24x24 = 2,
  Picture_32x32 = 3,
  Picture_48x48 = 4,
  Picture_Custom = 5,
};

class USImageList;

class USButton : public CaptionControl, public frame::ToolTipProperties {
 public:
  // The painted states.
  static constexpr int32_t kStateNormal = 0;
  static constexpr int32_t kStateOver = 1;
  static constexpr int32_t kStateDown = 2;
  static constexpr int32_t kStateDisabled = 3;
  // The smallest client size, in pixels, that Resize lets the button have while Redraw is on.
  static constexpr int32_t kMinimumSize = 15;

  USButton();
  ~USButton() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USButton"; }
  [[nodiscard]] String TypeName() const override { return u"USButton"; }

  // ---- Properties ----------------------------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return UserControl::hDC(); }

  [[nodiscard]] int32_t Alignment() const { return m_alignment; }
  void Alignment(int32_t value);
  [[nodiscard]] int32_t CropBorders() const { return m_cropBorders; }
  void CropBorders(int32_t value);
  // The default member.
  [[nodiscard]] const String& Caption() const { return m_caption; }
  void Caption(StringView value);
  [[nodiscard]] int16_t CaptionDistance() const { return m_captionDistance; }
  void CaptionDistance(int16_t value);
  // The name says the opposite of what it does, and stays so: True draws one line ending in an
  // ellipsis with "&" shown as it is; False wraps lines and underlines the access key.
  [[nodiscard]] bool CaptionWordBreak() const { return m_captionWordBreak; }
  void CaptionWordBreak(bool value);
  [[nodiscard]] bool CheckBoxMode() const { return m_checkBoxMode; }
  void CheckBoxMode(bool value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] bool Locked() const { return m_locked; }
  void Locked(bool value);
  [[nodiscard]] bool Redraw() const { return m_redraw; }
  void Redraw(bool value);
  [[nodiscard]] bool Value() const { return m_value; }
  void Value(bool value);
  [[nodiscard]] bool HandPointer() const { return m_handPointer; }
  void HandPointer(bool value);
  [[nodiscard]] bool ShowFocusRect() const { return m_showFocusRect; }
  void ShowFocusRect(bool value);
  [[nodiscard]] bool ShowFocusRectDown() const { return m_showFocusRectDown; }
  void ShowFocusRectDown(bool value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores the theme and copies its palette into every colour property below (without marking
  // them changed: they are saved by their own keys anyway), then repaints.
  void Theme(int32_t value);
  [[nodiscard]] int32_t GradientColors() const { return m_gradientColors; }
  void GradientColors(int32_t value);

  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDisabled() const { return m_borderColorDisabled; }
  void BorderColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorOver() const { return m_borderColorOver; }
  void BorderColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDown() const { return m_borderColorDown; }
  void BorderColorDown(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDisabled() const { return m_foreColorDisabled; }
  void ForeColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorOver() const { return m_foreColorOver; }
  void ForeColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDown() const { return m_foreColorDown; }
  void ForeColorDown(OLE_COLOR value);
  // Colour sets of the faces; index 1 to 4 (others raise 381, as an indexed property would).
  [[nodiscard]] OLE_COLOR GradientColor(int32_t index) const;
  void GradientColor(int32_t index, OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColorDisabled(int32_t index) const;
  void GradientColorDisabled(int32_t index, OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColorOver(int32_t index) const;
  void GradientColorOver(int32_t index, OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColorDown(int32_t index) const;
  void GradientColorDown(int32_t index, OLE_COLOR value);

  // The system's names of the sixteen face colours, over the indexed forms above.
  [[nodiscard]] OLE_COLOR GradientColor1() const { return GradientColor(1); }
  void GradientColor1(OLE_COLOR value) { GradientColor(1, value); }
  [[nodiscard]] OLE_COLOR GradientColor2() const { return GradientColor(2); }
  void GradientColor2(OLE_COLOR value) { GradientColor(2, value); }
  [[nodiscard]] OLE_COLOR GradientColor3() const { return GradientColor(3); }
  void GradientColor3(OLE_COLOR value) { GradientColor(3, value); }
  [[nodiscard]] OLE_COLOR GradientColor4() const { return GradientColor(4); }
  void GradientColor4(OLE_COLOR value) { GradientColor(4, value); }
  [[nodiscard]] OLE_COLOR GradientColorDisabled1() const { return GradientColorDisabled(1); }
  void GradientColorDisabled1(OLE_COLOR value) { GradientColorDisabled(1, value); }
  [[nodiscard]] OLE_COLOR GradientColorDisabled2() const { return GradientColorDisabled(2); }
  void GradientColorDisabled2(OLE_COLOR value) { GradientColorDisabled(2, value); }
  [[nodiscard]] OLE_COLOR GradientColorDisabled3() const { return GradientColorDisabled(3); }
  void GradientColorDisabled3(OLE_COLOR value) { GradientColorDisabled(3, value); }
  [[nodiscard]] OLE_COLOR GradientColorDisabled4() const { return GradientColorDisabled(4); }
  void GradientColorDisabled4(OLE_COLOR value) { GradientColorDisabled(4, value); }
  [[nodiscard]] OLE_COLOR GradientColorOver1() const { return GradientColorOver(1); }
  void GradientColorOver1(OLE_COLOR value) { GradientColorOver(1, value); }
  [[nodiscard]] OLE_COLOR GradientColorOver2() const { return GradientColorOver(2); }
  void GradientColorOver2(OLE_COLOR value) { GradientColorOver(2, value); }
  [[nodiscard]] OLE_COLOR GradientColorOver3() const { return GradientColorOver(3); }
  void GradientColorOver3(OLE_COLOR value) { GradientColorOver(3, value); }
  [[nodiscard]] OLE_COLOR GradientColorOver4() const { return GradientColorOver(4); }
  void GradientColorOver4(OLE_COLOR value) { GradientColorOver(4, value); }
  [[nodiscard]] OLE_COLOR GradientColorDown1() const { return GradientColorDown(1); }
  void GradientColorDown1(OLE_COLOR value) { GradientColorDown(1, value); }
  [[nodiscard]] OLE_COLOR GradientColorDown2() const { return GradientColorDown(2); }
  void GradientColorDown2(OLE_COLOR value) { GradientColorDown(2, value); }
  [[nodiscard]] OLE_COLOR GradientColorDown3() const { return GradientColorDown(3); }
  void GradientColorDown3(OLE_COLOR value) { GradientColorDown(3, value); }
  [[nodiscard]] OLE_COLOR GradientColorDown4() const { return GradientColorDown(4); }
  void GradientColorDown4(OLE_COLOR value) { GradientColorDown(4, value); }

  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  void MouseIcon(std::shared_ptr<host::StdPicture> value);

  // Pictures: Picture is the normal one, PictureOn the one of the over state ("PicHot") and
  // PictureOver the one of the down state ("PicDown"); the names are the system's.
  [[nodiscard]] std::shared_ptr<host::StdPicture> Picture() const { return m_picture; }
  void Picture(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> PictureOn() const { return m_pictureOn; }
  void PictureOn(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> PictureOver() const { return m_pictureOver; }
  void PictureOver(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> PictureToChange() const { return m_pictureToChange; }
  void PictureToChange(std::shared_ptr<host::StdPicture> value);
  // A PNG kept in the bag and decoded at the first paint. Setting bytes clears Picture: when
  // both are there, the bytes win.
  [[nodiscard]] const host::ByteArray& PictureBytes() const { return m_pictureBytes; }
  void PictureBytes(host::ByteArray value);
  void ClearPictureBytes();
  [[nodiscard]] int32_t PictureAlignment() const { return m_pictureAlignment; }
  void PictureAlignment(int32_t value);
  // The value given is not kept: the setter only clamps the opacity already held (from the bag
  // or the default) and repaints.
  [[nodiscard]] int32_t PictureOpacity() const { return m_pictureOpacity; }
  void PictureOpacity(int32_t value);
  [[nodiscard]] int32_t PictureSize() const { return m_pictureSize; }
  void PictureSize(int32_t value);
  [[nodiscard]] int32_t PictureSizeX() const { return m_pictureSizeX; }
  void PictureSizeX(int32_t value);
  [[nodiscard]] int32_t PictureSizeY() const { return m_pictureSizeY; }
  void PictureSizeY(int32_t value);

  // Tooltip settings (ToolTip*, ToolDelayTime) come from ToolTipProperties: stored and saved;
  // they reach a tooltip at the next CreateToolTip.

  // ---- Methods -----------------------------------------------------------------------------

  // Shows the about box modally.
  void About();
  // Lets go of the mouse tracker, so that a host can break the reference before unloading.
  void Dispose();
  // Recomputes the layout and paints, whatever the cached state.
  void Refresh();
  void CreateToolTip();
  void DestroyToolTip();

  // Loads an image into the picture surface and keeps it as PNG bytes in PictureBytes. A size
  // below 1 asks for the picture box's (PictureSizeY wide, PictureSizeX high); sizes and depth
  // choose among the images of an icon file. False when nothing was loaded, or when the image
  // could not be kept as PNG; a failed load leaves PictureBytes and the face as they were.
  bool LoadImage_FromFile(const String& FileName, int32_t desiredIconWidth = 0, int32_t desiredIconHeight = 0,
                          int32_t desiredIconBitDepth = 32);
  bool LoadImage_FromArray(const host::ByteArray& Bytes, int32_t desiredIconWidth = 0, int32_t desiredIconHeight = 0,
                           int32_t desiredIconBitDepth = 32);
  // The program's resources are files: <MX_RESOURCE_DIR or the current folder>/<ResSection>/<ResID>.
  bool LoadImage_FromResource(const host::Variant& VBglobal, const String& ResSection, const String& ResID,
                              int32_t desiredIconWidth = 0, int32_t desiredIconHeight = 0,
                              int32_t desiredIconBitDepth = 32);
  bool LoadImage_FromStdPicture(const std::shared_ptr<host::StdPicture>& stdPic);
  // A bitmap or icon handle; it stays the caller's.
  bool LoadImage_FromHandle(uint32_t Handle);
  // The image Index of the list Key of the image-list control.
  bool LoadImage_FromUSImageList(const USImageList& objUSImageList, const host::Variant& Index,
                                 const host::Variant& Key);

  // ---- Events, raised after the button's own handling ----------------------------------------

  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&> KeyDown;  // KeyCode, Shift
  host::Event<int16_t&> KeyPress;           // KeyAscii
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;  // Button, Shift, X, Y
  host::Event<> MouseEnter;
  host::Event<> MouseExit;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;

  // Late binding: every property and method above by name; "" is Caption.
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection: the state the paint cycle keeps, for tests and tools ----------------------

  struct Layout {
    platform::RECT textRect;
    int32_t pictureLeft = 0;
    int32_t pictureTop = 0;
    bool pictureLayoutValid = false;
  };
  [[nodiscard]] Layout CurrentLayout() const { return {m_textRect, m_pictureLeft, m_pictureTop, m_pictureLayoutValid}; }
  // The state last painted (0 normal, 1 over, 2 down, 3 disabled).
  [[nodiscard]] int32_t PaintedState() const { return m_state; }
  // How many times the face has been painted since the button was made.
  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }
  [[nodiscard]] bool IsPressed() const { return m_pressed; }
  [[nodiscard]] bool IsMouseOver() const { return m_mouseOver; }
  // The run-time services: the mouse tracker that gives the over state, and the tooltip.
  [[nodiscard]] const frame::APIMouseEvents* MouseTracker() const { return m_mouseEx.get(); }
  [[nodiscard]] const frame::APITooltip* ToolTip() const { return m_toolTip.get(); }
  // The surface the picture bytes were decoded or loaded into; null until one is needed.
  [[nodiscard]] const image::API32bppDIB* PictureSurface() const { return m_dib.get(); }

 protected:
  void RepaintForFont() override { Refresh(); }
  void ToolTipPropertyChanged(StringView key) override { PropertyChanged(key); }
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_GotFocus() override;
  void UserControl_LostFocus() override;
  void UserControl_AccessKeyPress(int16_t& KeyAscii) override;
  void UserControl_AmbientChanged(const String& PropertyName) override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

  // The drawing entry: paints xState (-1: the current one) unless that state and the focus flag
  // are on the screen already; xForce paints anyway. Nothing happens while Redraw is off.
  void DrawState(int32_t xState, bool xForce);

 private:
  void SetGradientColour(OLE_COLOR (&colours)[4], const char16_t* key, int32_t index, OLE_COLOR value, bool repaint);
  void PaintFace(int32_t xState);
  void PaintGradient(OLE_COLOR c1, OLE_COLOR c2, OLE_COLOR c3, OLE_COLOR c4, int32_t gradientColors);
  void ApplyRegion(int32_t xEllipseW, int32_t xEllipseH);
  void LayoutContents(int32_t xMarginY, int32_t xMarginX);
  void DrawCaption(OLE_COLOR xColour);
  void DrawPicture();
  void RenderPictureSurface();
  void StorePictureBytes(host::ByteArray value);
  void DesiredIconSize(int32_t& width, int32_t& height) const;
  bool AdoptLoadedPicture(std::unique_ptr<image::API32bppDIB> loaded);
  void RaiseClick(bool xRaise);
  void SetStatePicture(std::shared_ptr<host::StdPicture>& slot, std::shared_ptr<host::StdPicture> value,
                       const char16_t* key, bool shownNow);
  void ApplyTheme();
  void ApplyHandPointer();
  void ReleaseMouseTracker();
  [[nodiscard]] bool CaptureIsOurs() const;
  [[nodiscard]] bool HasMouseTrackerAttached() const;
  [[nodiscard]] bool HasPicture() const;
  void OnMouseEnter();
  void OnMouseExit();
  void OnTrackerMove(int16_t button, int16_t shift, float x, float y);

  // Persisted.
  int32_t m_alignment = On_Center;
  int32_t m_cropBorders = Dont_Crop;
  String m_caption;
  int16_t m_captionDistance = 0;
  bool m_captionWordBreak = false;
  bool m_checkBoxMode = false;
  bool m_locked = false;
  bool m_redraw = true;
  bool m_value = false;
  bool m_handPointer = true;
  bool m_showFocusRect = true;
  bool m_showFocusRectDown = false;
  int32_t m_theme = 2;
  int32_t m_gradientColors = 0;
  OLE_COLOR m_borderColor = 0x9A572B;
  OLE_COLOR m_borderColorDisabled = 0xDBCECC;
  OLE_COLOR m_borderColorOver = 0x7B3E00;
  OLE_COLOR m_borderColorDown = 0x501A00;
  OLE_COLOR m_foreColor = 0xFFFFFF;
  OLE_COLOR m_foreColorDisabled = 0x008000;
  OLE_COLOR m_foreColorOver = 0xFFFFFF;
  OLE_COLOR m_foreColorDown = 0xFFFFFF;
  OLE_COLOR m_gradient[4] = {0x9A572B, 0x9A572B, 0x9A572B, 0x9A572B};
  OLE_COLOR m_gradientDisabled[4] = {0xDBCECC, 0xDBCECC, 0xDBCECC, 0xDBCECC};
  OLE_COLOR m_gradientOver[4] = {0x7B3E00, 0x7B3E00, 0x7B3E00, 0x7B3E00};
  OLE_COLOR m_gradientDown[4] = {0x501A00, 0x501A00, 0x501A00, 0x501A00};
  std::shared_ptr<host::StdPicture> m_picture;
  std::shared_ptr<host::StdPicture> m_pictureOn;
  std::shared_ptr<host::StdPicture> m_pictureOver;
  std::shared_ptr<host::StdPicture> m_pictureToChange;
  host::ByteArray m_pictureBytes;
  int32_t m_pictureAlignment = Picture_LeftOfCaption;
  int32_t m_pictureOpacity = 100;
  int32_t m_pictureSize = Picture_Normal;
  int32_t m_pictureSizeX = 16;
  int32_t m_pictureSizeY = 16;

  // Run-time state.
  bool m_userMode = false;
  bool m_needLayout = true;
  bool m_pictureLayoutValid = false;
  bool m_paintedFocus = false;
  int32_t m_state = kStateNormal;
  bool m_pressed = false;
  bool m_hasFocus = false;
  bool m_mouseOver = false;
  bool m_spaceDown = false;
  int32_t m_lastButton = 0;
  bool m_displayAsDefault = false;
  platform::RECT m_textRect{};
  int32_t m_pictureLeft = 0;
  int32_t m_pictureTop = 0;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
  std::unique_ptr<frame::APIMouseEvents> m_mouseEx;
  std::unique_ptr<frame::APITooltip> m_toolTip;
  std::unique_ptr<image::API32bppDIB> m_dib;
};

// The key that fires AccessKeyPress for a caption, found from its end: the character after the
// last "&" that is not one of a doubled pair, lower-cased; empty when there is none.
[[nodiscard]] String AccessKeyFromEnd(StringView caption);

}  // namespace mx::controls
