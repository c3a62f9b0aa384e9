#pragma once
// USForm: dropped on a form, it replaces the form's own frame with one it draws itself.
//
// At run time the form's caption and sizing frame go (on the first show) and the control paints
//
//   +--------------------------------------------+
//   | icon  caption - detail          [_][o][x]  |  <- the control's own window, aligned to the
//   |+------------------------------------------+|     top of the form: the caption strip
//   ||                                          ||
//   ||            the form's client area        ||  <- left and right edge strips
//   |+------------------------------------------+|
//   +--------------------------------------------+  <- bottom edge strip
//
// The edge strips are child windows it makes on the form. Since the real frame is gone, the
// control gives back what the frame did: moving by the caption and sizing by the edges (through
// the platform's own move/size loop, started with WM_NCLBUTTONDOWN on the form), the maximise
// area (WM_GETMINMAXINFO), active and inactive colours (WM_NCACTIVATE) and the system commands.
// It sees the form's messages and the strips' mouse through APISubClass.
//
// Two 1 ms timers move work out of window procedures, where replacing or dropping a subclass is
// not safe: TimerSubClass installs the subclass once the form exists, TimerDestroy drops it and
// unloads the form after UnloadMe.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "frame/APISubClass.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::image {
class API32bppDIB;
}
namespace mx::frame {
class APITooltip;
}
namespace mx::host {
class Form;
}

namespace mx::chrome {

using host::OLE_COLOR;
using host::String;
using host::StringView;

class FormBack;

enum ENUM_ICON_SIZES : int32_t { Icon_16x16 = 0, Icon_24x24 = 1, Icon_32x32 = 2, Icon_48x48 = 3, Icon_Custom = 4 };

// The caption buttons, as hoverButton counts them.
enum CaptionButton : int32_t { NoButton = 0, MinimizeButton = 1, MaximizeButton = 2, CloseButton = 3 };

class USForm : public host::UserControl, public frame::SubclassOwner {
 public:
  USForm();
  ~USForm() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USForm"; }
  [[nodiscard]] String TypeName() const override { return u"USForm"; }

  // ---- Properties ----------------------------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Loads the look's colours (without marking them changed), then DrawForm.
  void Theme(int32_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] bool AllowMove() const { return m_allowMove; }
  void AllowMove(bool value);
  [[nodiscard]] bool AllowResize() const { return m_allowResize; }
  void AllowResize(bool value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorInactive() const { return m_backColorInactive; }
  void BackColorInactive(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorDisabled() const { return m_backColorDisabled; }
  void BackColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorInactive() const { return m_borderColorInactive; }
  void BorderColorInactive(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDisabled() const { return m_borderColorDisabled; }
  void BorderColorDisabled(OLE_COLOR value);
  [[nodiscard]] int32_t BorderWidth() const { return m_borderWidth; }
  void BorderWidth(int32_t value);
  // The default member.
  [[nodiscard]] const String& Caption() const { return m_caption; }
  void Caption(StringView value);
  [[nodiscard]] const String& CaptionDelimiter() const { return m_captionDelimiter; }
  void CaptionDelimiter(StringView value);
  [[nodiscard]] bool CaptionOnCenter() const { return m_captionOnCenter; }
  void CaptionOnCenter(bool value);
  [[nodiscard]] int32_t CaptionTop() const { return m_captionTop; }
  void CaptionTop(int32_t value);
  [[nodiscard]] bool EnableCloseButton() const { return m_enableClose; }
  void EnableCloseButton(bool value);
  [[nodiscard]] bool EnableMaximizeButton() const { return m_enableMaximize; }
  void EnableMaximizeButton(bool value);
  [[nodiscard]] bool EnableMinimizeButton() const { return m_enableMinimize; }
  void EnableMinimizeButton(bool value);
  [[nodiscard]] bool ShowControlBox() const { return m_showControlBox; }
  void ShowControlBox(bool value);
  [[nodiscard]] bool ShowCloseButton() const { return m_showClose; }
  void ShowCloseButton(bool value);
  [[nodiscard]] bool ShowMaximizeButton() const { return m_showMaximize; }
  void ShowMaximizeButton(bool value);
  [[nodiscard]] bool ShowMinimizeButton() const { return m_showMinimize; }
  void ShowMinimizeButton(bool value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDelimiter() const { return m_foreColorDelimiter; }
  void ForeColorDelimiter(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorInactive() const { return m_foreColorInactive; }
  void ForeColorInactive(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDisabled() const { return m_foreColorDisabled; }
  void ForeColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColor1() const { return m_gradientColor1; }
  void GradientColor1(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColor2() const { return m_gradientColor2; }
  void GradientColor2(OLE_COLOR value);
  [[nodiscard]] int32_t IconSize() const { return m_iconSize; }
  void IconSize(int32_t value);
  [[nodiscard]] int32_t IconSizeX() const { return m_iconSizeX; }
  void IconSizeX(int32_t value);
  [[nodiscard]] int32_t IconSizeY() const { return m_iconSizeY; }
  void IconSizeY(int32_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> Icon() const { return m_icon; }
  void Icon(std::shared_ptr<host::StdPicture> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  // Kept and saved; nothing else reads it.
  [[nodiscard]] bool ChangeThemeControls() const { return m_changeThemeControls; }
  void ChangeThemeControls(bool value);
  [[nodiscard]] bool ShowInnerBorder() const { return m_showInnerBorder; }
  void ShowInnerBorder(bool value);
  [[nodiscard]] const String& ToolTipClose() const { return m_toolTipClose; }
  void ToolTipClose(StringView value);
  [[nodiscard]] const String& ToolTipMaximize() const { return m_toolTipMaximize; }
  void ToolTipMaximize(StringView value);
  [[nodiscard]] const String& ToolTipMinimize() const { return m_toolTipMinimize; }
  void ToolTipMinimize(StringView value);
  // The caption picture as the serialised bytes of an image surface ("DibPicture"); when set it
  // takes the place of Icon.
  [[nodiscard]] const host::ByteArray& PictureBytes() const { return m_pictureBytes; }
  void PictureBytes(host::ByteArray value);
  void ClearPictureBytes();

  // ---- Methods -------------------------------------------------------------------------------

  void About();
  void ConfigureActionsButtons(bool xShowMinimizeButton, bool xShowMaximizeButton, bool xShowCloseButton);
  void CenterOnScreen();
  // The work area's width and the screen's height less nothing: the work area grown by the task
  // bar. False when the form is already so, or has no window.
  bool ShowOnFullScreen();
  void TranslucentForm(int32_t TranslucentLevel);
  void AlphaWindowInitializeOnFullScreen(int32_t TranslucentLevel = 125, OLE_COLOR BackColor = 0);
  void AlphaWindowInitializeOnModal(int32_t TranslucentLevel = 125, OLE_COLOR BackColor = 0);
  void AlphaWindowCloseAll();
  void DrawGradient();
  // Both block for the whole fade: 25 ms between steps of 5.
  void DrawFadeIN();
  void DrawFadeOUT();
  // The desktop has no task bar: these succeed (S_OK) and change nothing.
  int32_t TaskBar_SetProgressState(platform::HWND hWnd, int32_t Flags);
  int32_t TaskBar_SetProgressValue(platform::HWND hWnd, int32_t Value);
  int32_t TaskBar_SetOverlayIcon(platform::HWND hWnd, int32_t hIcon, StringView Description);
  int32_t TaskBar_SetThumbnailClip(platform::HWND hWnd, int32_t Left, int32_t Top, int32_t Right, int32_t Bottom);
  int32_t TaskBar_SetThumbnailTooltip(platform::HWND hWnd, StringView Tip);
  void DrawForm();
  void DestroySubClass();
  void SetForegroundWindow(platform::HWND ParentWindow);
  void UnloadMe();
  void UnloadMeEx();

  // ---- Events --------------------------------------------------------------------------------

  host::Event<String&> ClipboardGetText;  // declared for the interface; never raised
  host::Event<bool> FormActivated;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<> Click;
  host::Event<> DblClick;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection, for tests and tools -------------------------------------------------------

  [[nodiscard]] platform::HWND FormWindow() const { return m_formWindow; }
  [[nodiscard]] bool SubclassActive() const { return m_subclassActive; }
  [[nodiscard]] bool FormActive() const { return m_formActive; }
  [[nodiscard]] int32_t WindowSizeState() const { return m_windowSizeState; }
  [[nodiscard]] int32_t HoverButton() const { return m_hoverButton; }
  [[nodiscard]] bool ButtonPressed() const { return m_buttonPressed; }
  // The glyph the maximise slot shows now: MaximizeButton, or the restore picture (-2) when the
  // form is maximised.
  [[nodiscard]] int32_t MaximizeGlyph() const;
  // The tip text of the caption strip's tooltip ("" with no button under the mouse).
  [[nodiscard]] String ToolTipText() const;
  // 0 bottom, 1 left, 2 right.
  [[nodiscard]] platform::HWND EdgeWindow(int32_t index) const { return m_edges[static_cast<size_t>(index)]; }
  // The caption strip's height that Resize forces for the look (pixels), and the button band.
  [[nodiscard]] int32_t ButtonBandWidth() const;
  // The button under a point of the caption strip, by the hit test of the current look.
  [[nodiscard]] int32_t HitTestButton(int32_t x, int32_t y) const;
  // The rectangle of a button's slot in the caption strip, empty when it is not shown.
  [[nodiscard]] platform::RECT ButtonRect(int32_t button) const;
  // The caption's layout box as DrawCaptionText computed it last.
  [[nodiscard]] platform::RECT CaptionRect() const { return m_captionRect; }

  // APISubClass's callback: the form's messages and the strips' mouse.
  void SubclassProc(int32_t nOrdinal, bool bBefore, bool& bHandled, platform::LRESULT& lReturn,
                    platform::HWND lng_hWnd, platform::UINT uMsg, platform::WPARAM wParam, platform::LPARAM lParam,
                    platform::LPARAM& lParamUser) override;

  // The edge strips' window procedure paints them through this.
  void PaintEdge(platform::HWND edge, platform::HDC dc);
  [[nodiscard]] platform::HCURSOR EdgeCursor(platform::HWND edge) const;

 protected:
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  // Life (USForm.cpp).
  void ApplyTheme();
  void StartTimer(bool destroyTimer);
  void OnTimerSubClass();
  void OnTimerDestroy();
  void InstallFormSubclass();
  void FirstShow(bool fromShowMessage);
  [[nodiscard]] host::Form* ParentForm() const;
  void AlignToParentTop();
  void DropDimLayers();
  void ReleaseEdges();

  // Messages (USFormMessages.cpp).
  void ParentMessage(bool before, bool& handled, platform::LRESULT& result, platform::UINT msg,
                     platform::WPARAM wParam, platform::LPARAM lParam);
  void StripMessage(platform::HWND strip, bool before, bool& handled, platform::UINT msg, platform::WPARAM wParam,
                    platform::LPARAM lParam);
  void CaptionMouseMove(int32_t x, int32_t y);
  void CaptionButtonDown(int32_t x, int32_t y);
  void CaptionButtonUp(int32_t x, int32_t y);
  void CaptionDoubleClick();
  void EdgeMouse(platform::HWND edge, platform::UINT msg, int32_t x, int32_t y);
  void ResetHover();
  void SetHover(int32_t button);
  void StartSystemLoop(int32_t hitTest);
  [[nodiscard]] bool InButtonBandY(int32_t y) const;
  [[nodiscard]] bool IsButtonLive(int32_t button) const;
  [[nodiscard]] bool CanSize() const;
  void UpdateToolTip();

  // Painting (USFormPaint.cpp).
  void RemoveFormFrame();
  void BuildFormEdges();
  void LayoutFormEdges();
  void DrawFormStrips();
  void DrawCaptionButtons();
  void PaintButtonBand(platform::HDC dc);
  void DrawCaptionText(platform::HDC dc);
  void DrawCaptionIcon(platform::HDC dc);
  void ApplyFormRegion();
  [[nodiscard]] bool OfficeLook() const { return m_theme == 0 || m_theme == 1; }
  [[nodiscard]] OLE_COLOR StripBackColor() const;
  [[nodiscard]] OLE_COLOR StripBorderColor() const;
  [[nodiscard]] bool HasCaptionPicture() const;
  [[nodiscard]] int32_t EdgeThickness() const;
  void FadeTo(int32_t from, int32_t to, int32_t step);

  // Persisted.
  int32_t m_theme = 2;
  bool m_allowMove = true;
  bool m_allowResize = false;
  OLE_COLOR m_backColor = 0x9A572B;
  OLE_COLOR m_backColorInactive = 0x9A572B;
  OLE_COLOR m_backColorDisabled = 0xEBEBEB;
  OLE_COLOR m_borderColor = 0x7B3E00;
  OLE_COLOR m_borderColorInactive = 0x7B3E00;
  OLE_COLOR m_borderColorDisabled = 0x848484;
  int32_t m_borderWidth = 1;
  String m_caption;
  String m_captionDelimiter = u"-";
  bool m_captionOnCenter = false;
  int32_t m_captionTop = 7;
  bool m_enableClose = true;
  bool m_enableMaximize = true;
  bool m_enableMinimize = true;
  bool m_showControlBox = true;
  bool m_showClose = true;
  bool m_showMaximize = true;
  bool m_showMinimize = true;
  OLE_COLOR m_foreColor = 0xFFFFFF;
  OLE_COLOR m_foreColorDelimiter = 0xCBAE99;
  OLE_COLOR m_foreColorInactive = 0xCBAE99;
  OLE_COLOR m_foreColorDisabled = 0x000000;
  OLE_COLOR m_gradientColor1 = 0xF0F0F0;
  OLE_COLOR m_gradientColor2 = 0xF0F0F0;
  int32_t m_iconSize = Icon_16x16;
  int32_t m_iconSizeX = 16;
  int32_t m_iconSizeY = 16;
  std::shared_ptr<host::StdPicture> m_icon;
  bool m_changeThemeControls = false;
  bool m_showInnerBorder = false;
  String m_toolTipClose = u"Fechar";
  String m_toolTipMaximize = u"Maximizar";
  String m_toolTipMinimize = u"Minimizar";
  host::ByteArray m_pictureBytes;

  // Run-time state.
  bool m_userMode = false;
  platform::HWND m_formWindow = 0;
  bool m_subclassActive = false;
  bool m_closing = false;
  bool m_formActive = true;
  bool m_windowVisible = false;
  bool m_firstShowDone = false;
  bool m_skipNextActivatePaint = false;
  int32_t m_windowSizeState = 0;
  int32_t m_hoverButton = NoButton;
  int32_t m_lastHoverButton = NoButton;
  bool m_buttonPressed = false;
  bool m_mouseTracking = false;
  bool m_minimizedByCommand = false;
  uint32_t m_hoverTime = 0;
  platform::HWND m_edges[3] = {0, 0, 0};
  int16_t m_edgePointer[3] = {0, 0, 0};
  platform::RECT m_windowRect{};
  platform::RECT m_clipRectangles{};
  platform::RECT m_captionRect{};
  platform::UINT_PTR m_timerSubClass = 0;
  platform::UINT_PTR m_timerDestroy = 0;
  std::unique_ptr<frame::APISubClass> m_subclass;
  std::unique_ptr<frame::APITooltip> m_toolTip;
  std::shared_ptr<image::API32bppDIB> m_picture;
  std::vector<std::shared_ptr<FormBack>> m_dimLayers;
};

}  // namespace mx::chrome
