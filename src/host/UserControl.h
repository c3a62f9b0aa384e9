#pragma once
// host::UserControl: the base every control of the library derives from. It is what the form host
// gives a user control: a child window, a drawing surface with a persistent image, colours, font,
// pointer, access keys, the ambient and extender objects, and the property bag events.
//
// The host drives a control through the virtual UserControl_... handlers, named as a host
// programmer names them. The order of a run-time load is Initialize, ReadProperties, Resize,
// Show, Paint; of a first drop on a form at design time Initialize, InitProperties, Resize,
// Show, Paint. Saving calls WriteProperties. Unloading calls Hide (where visible) and Terminate.
// A control made by code at run time (Form::Add) gets InitProperties and no ReadProperties.
//
// Window messages become handlers as the host translates them:
//   left, right, middle down      the window takes the capture, then MouseDown
//   move                          MouseMove (Button is the set of buttons held)
//   up                            MouseUp; for the left button, Click when the pointer is still
//                                 over the client area; then the capture is let go if it is
//                                 still the window's
//   second left down of a double  DblClick in place of MouseDown; the up that follows raises
//   click                         MouseUp only
//   keys                          KeyDown, KeyPress (characters), KeyUp while it has the focus
//   focus                         EnterFocus then GotFocus; LostFocus then ExitFocus
//   WM_SIZE                       Resize
//   WM_PAINT                      the persistent image is copied to the window; then Paint,
//                                 unless AutoRedraw is on
// Mouse coordinates are client pixels (the control works in pixels), Button and Shift as the
// host packs them (vbLeftButton 1, vbRightButton 2, vbMiddleButton 4; vbShiftMask 1,
// vbCtrlMask 2, vbAltMask 4).
//
// Keys at form level: Alt with a letter finds the control whose AccessKeys holds it, moves the
// focus there when it can take it, and calls its AccessKeyPress with the lower-case letter.
// Enter goes to the focused control when it is default-capable (DefaultCancel), else to the
// form's Default control, as AccessKeyPress(13); Esc goes to the Cancel control as
// AccessKeyPress(27). Tab and Shift+Tab move the focus through TabStop controls in TabIndex
// order. Ambient.DisplayAsDefault is True for the focused default-capable control, or, while
// the focus is on a control that is not, for the Default one; AmbientChanged("DisplayAsDefault")
// tells a control when that changes.
//
// The events of the control itself (Click, MouseDown...) are host::Event members of the derived
// class; it raises them after its own handling. ConnectEventSink gives each of them its name and
// the form's generic sink, through which mxrun prints events and forms bind handlers by name.
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "host/Colors.h"
#include "host/Control.h"
#include "host/Event.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {

class DataObject;
class PropertyBag;
class UserControl;

// Mouse buttons and shift keys as the host's events pass them.
enum MouseButtonConstants : int16_t { vbLeftButton = 1, vbRightButton = 2, vbMiddleButton = 4 };
enum ShiftConstants : int16_t { vbShiftMask = 1, vbCtrlMask = 2, vbAltMask = 4 };
// The host's MousePointer values used by the library: 0 default, 1 arrow, 3 I-beam, 99 custom
// (MouseIcon).
enum MousePointerConstants : int16_t { vbDefault = 0, vbArrow = 1, vbCrosshair = 2, vbIbeam = 3,
                                       vbSizeNESW = 6, vbSizeNS = 7, vbSizeNWSE = 8, vbSizeWE = 9,
                                       vbHourglass = 11, vbNoDrop = 12, vbSizeAll = 15,
                                       vbCustom = 99 };

// What the container tells its controls. Values come from the form at the moment they are read.
class AmbientProperties : public Object {
 public:
  explicit AmbientProperties(const UserControl& owner) : m_owner(owner) {}
  // False at design time, True at run time.
  [[nodiscard]] bool UserMode() const;
  // A new font object with the container's font description.
  [[nodiscard]] std::shared_ptr<StdFont> Font() const;
  // The control's name on its form ("USButton1"); a control array member adds "(index)".
  [[nodiscard]] String DisplayName() const;
  [[nodiscard]] OLE_COLOR BackColor() const;
  [[nodiscard]] OLE_COLOR ForeColor() const;
  [[nodiscard]] bool DisplayAsDefault() const;
  // Late binding: the members above by name.
  [[nodiscard]] String TypeName() const override { return u"AmbientProperties"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  const UserControl& m_owner;
};

// The site view of a control, late-bound as the host's Extender object is: the extender members
// of Control (Name, Visible, Left, Top, Width, Height, Parent, Container, hWnd...), then the
// control's own members.
class ExtenderObject : public Object {
 public:
  explicit ExtenderObject(Control& control) : m_control(control) {}
  [[nodiscard]] Control& control() const { return m_control; }
  [[nodiscard]] String TypeName() const override;
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  Control& m_control;
};

class UserControl : public Control {
 public:
  UserControl();
  ~UserControl() override;

  // ---- Lifecycle, driven by the form (or by a test acting as one) ------------------------------

  // Creates the window as a child of parentWindow at the control's extender rectangle (hidden
  // until the form shows it). A control that has no form gets a window on the desktop when it is
  // first asked for one, so that a control made alone in a test still paints.
  void CreateControlWindow(platform::HWND parentWindow);
  // Initialize then InitProperties (or ReadProperties from the bag), then Resize: the load
  // sequence of a design-time drop or a run-time load. userMode is what Ambient.UserMode answers.
  void LoadNew(bool userMode);
  void LoadFrom(PropertyBag& bag, bool userMode);
  // Calls WriteProperties into the bag.
  void SaveTo(PropertyBag& bag);
  // Show (the window becomes visible and is painted), Hide, and Terminate (the window goes).
  void ShowControl();
  void HideControl();
  void TerminateControl();
  [[nodiscard]] bool IsTerminated() const { return m_terminated; }
  // Data dragged over or dropped on the control (what the platform's drop target hands the
  // host): OLEDragOver, OLEDragDrop. Effect is in and out; X and Y are client pixels; State is
  // 0 enter, 1 leave, 2 over.
  void OLEDragOverControl(DataObject& Data, int32_t& Effect, int16_t Button, int16_t Shift, float X, float Y,
                          int16_t State);
  void OLEDragDropControl(DataObject& Data, int32_t& Effect, int16_t Button, int16_t Shift, float X, float Y);

  // ---- The host's members used by controls ------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return m_hwnd; }
  // The device context painted on: the persistent image's while AutoRedraw is on, else the
  // window's own.
  [[nodiscard]] platform::HDC hDC() const;

  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  // 0 transparent: Cls shows what the container paints beneath; 1 opaque: Cls fills BackColor.
  [[nodiscard]] int16_t BackStyle() const { return m_backStyle; }
  void BackStyle(int16_t value);
  // Disabling the window also keeps mouse and keys away from it.
  [[nodiscard]] bool Enabled() const { return m_enabled; }
  void Enabled(bool value);

  [[nodiscard]] int16_t MousePointer() const { return m_mousePointer; }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<StdPicture> MouseIcon() const { return m_mouseIcon; }
  void MouseIcon(std::shared_ptr<StdPicture> value);

  // The font the surface draws text with (selected into hDC); never null.
  [[nodiscard]] std::shared_ptr<StdFont> Font() const { return m_font; }
  void Font(std::shared_ptr<StdFont> value);
  [[nodiscard]] bool FontBold() const { return m_font->Bold(); }
  void FontBold(bool value);
  [[nodiscard]] bool FontItalic() const { return m_font->Italic(); }
  void FontItalic(bool value);
  [[nodiscard]] float FontSize() const { return static_cast<float>(m_font->SizePoints()); }
  void FontSize(float value);
  [[nodiscard]] bool FontStrikethru() const { return m_font->Strikethrough(); }
  void FontStrikethru(bool value);
  [[nodiscard]] bool FontUnderline() const { return m_font->Underline(); }
  void FontUnderline(bool value);

  // The persistent image: while on, drawing on hDC goes to an image the size of the client area;
  // set off, the image stays and is what the window shows (and what Cls clears back to).
  [[nodiscard]] bool AutoRedraw() const { return m_autoRedraw; }
  void AutoRedraw(bool value);
  // Clears the persistent image (or, with AutoRedraw off, the window) to BackColor, or to what
  // the container shows when BackStyle is 0.
  void Cls();
  // Draws a picture on hDC: destination x1, y1 with size width1 x height1 (defaults: the
  // picture's own size), from the source part x2, y2, width2 x height2 (defaults: all of it), in
  // pixels. A picture of no type, or one that cannot be decoded, draws nothing.
  void PaintPicture(const StdPicture& picture, float x1, float y1, Variant width1 = Variant::Missing(),
                    Variant height1 = Variant::Missing(), Variant x2 = Variant::Missing(),
                    Variant y2 = Variant::Missing(), Variant width2 = Variant::Missing(),
                    Variant height2 = Variant::Missing());
  // Repaints the window from the persistent image (and raises Paint when AutoRedraw is off).
  void Refresh();

  // Width and Height (Control's) are the control's size in the container's units (twips), the
  // extender's. Setting one resizes the window, and the control gets a Resize (not re-entered: a
  // Resize that sets them sees no second Resize until it returns).
  // The inner size in pixels.
  [[nodiscard]] float ScaleWidth() const;
  [[nodiscard]] float ScaleHeight() const;
  // Conversions between scale modes (1 to 8, ScaleModeConstants), as the Screen's; from HiMetric
  // to the control's pixels by default.
  [[nodiscard]] float ScaleX(double value, int32_t fromScale = 8 /*vbHimetric*/, int32_t toScale = 3 /*vbPixels*/) const;
  [[nodiscard]] float ScaleY(double value, int32_t fromScale = 8, int32_t toScale = 3) const;

  // The characters that fire AccessKeyPress with Alt (lower case; more than one allowed).
  [[nodiscard]] const String& AccessKeys() const { return m_accessKeys; }
  void AccessKeys(String value) { m_accessKeys = std::move(value); }
  // Whether Enter on it while it has the focus is its own (a button): see the header comment.
  [[nodiscard]] bool DefaultCancel() const { return m_defaultCancel; }
  void DefaultCancel(bool value) { m_defaultCancel = value; }

  [[nodiscard]] AmbientProperties& Ambient() { return m_ambient; }
  [[nodiscard]] const AmbientProperties& Ambient() const { return m_ambient; }
  [[nodiscard]] ExtenderObject& Extender() { return m_extender; }
  // All controls on the same form, in the form's order (empty without a form).
  [[nodiscard]] std::vector<std::shared_ptr<Control>> ParentControls() const;

  // Tells the host that a property must be written on the next save (the form's dirty mark).
  void PropertyChanged(StringView propertyName = {});
  // The names passed to PropertyChanged since the last save, in order (for tests and the form).
  [[nodiscard]] const std::vector<String>& ChangedProperties() const { return m_changed; }

  // Gives each event of the control its name and the form's generic sink (see Event.h's
  // BindEventSinks).
  virtual void ConnectEventSink(const EventSink& sink) {}

  [[nodiscard]] String TypeName() const override;
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 protected:
  // ---- The host's events: override what the control needs ---------------------------------------
  virtual void UserControl_Initialize() {}
  virtual void UserControl_InitProperties() {}
  virtual void UserControl_ReadProperties(PropertyBag& PropBag) {}
  virtual void UserControl_WriteProperties(PropertyBag& PropBag) {}
  virtual void UserControl_Resize() {}
  virtual void UserControl_Show() {}
  virtual void UserControl_Hide() {}
  virtual void UserControl_Paint() {}
  virtual void UserControl_GotFocus() {}
  virtual void UserControl_LostFocus() {}
  virtual void UserControl_EnterFocus() {}
  virtual void UserControl_ExitFocus() {}
  virtual void UserControl_AccessKeyPress(int16_t& KeyAscii) {}
  virtual void UserControl_AmbientChanged(const String& PropertyName) {}
  virtual void UserControl_Click() {}
  virtual void UserControl_DblClick() {}
  virtual void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) {}
  virtual void UserControl_KeyPress(int16_t& KeyAscii) {}
  virtual void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) {}
  virtual void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {}
  virtual void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {}
  virtual void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {}
  // 0 none, 3 hit: whether a point inside the window belongs to the control (windowless shape).
  virtual void UserControl_HitTest(float X, float Y, int16_t& HitResult) {}
  virtual void UserControl_OLEDragOver(DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift, float& X,
                                       float& Y, int16_t& State) {}
  virtual void UserControl_OLEDragDrop(DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift, float& X,
                                       float& Y) {}
  virtual void UserControl_Terminate() {}

  // Window messages the host has no event for reach the control here first; return true when
  // handled (result in lResult). The default passes everything on.
  virtual bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
    return false;
  }

  // The extender rectangle and visibility move the window (Control's hooks).
  void ApplyGeometry() override;
  void ApplyVisible() override;

 private:
  // Creates the window on the desktop for a control that has none yet.
  void EnsureWindow() const;
  // The form's part in the control's keyboard and focus messages: it sees WM_KEYDOWN,
  // WM_SYSKEYDOWN, WM_CHAR and WM_SYSCHAR first (true: consumed, the control hears nothing),
  // and is told of WM_SETFOCUS and WM_KILLFOCUS after the control's handlers.
  using SiteFilter = std::function<bool(uint32_t msg, uintptr_t wParam, intptr_t lParam)>;
  void SetSiteFilter(SiteFilter filter);
  // Sets what Ambient.DisplayAsDefault answers; a change raises AmbientChanged.
  void SetDisplayAsDefault(bool value);
  [[nodiscard]] bool IsShown() const;

  // Surfaces and lifecycle steps (UserControl.cpp).
  void ReleaseWindowResources();
  [[nodiscard]] uint32_t ResolvedBackColor() const;
  void ApplyDCState(platform::HDC dc);
  void FillBackground(platform::HDC dc, int width, int height);
  void ResizeImage(int width, int height);
  void PresentImage();
  void WatchFont();
  void FontDescriptionChanged();
  void RunInitialize();
  void FireResize();
  void DoShow();
  void DoHide();

  friend class AmbientProperties;
  friend class Form;
  struct Impl;
  std::unique_ptr<Impl> m_impl;

  platform::HWND m_hwnd = 0;
  OLE_COLOR m_backColor = vbButtonFace;
  OLE_COLOR m_foreColor = vbButtonText;
  int16_t m_backStyle = 1;
  bool m_enabled = true;
  int16_t m_mousePointer = 0;
  std::shared_ptr<StdPicture> m_mouseIcon;
  std::shared_ptr<StdFont> m_font;
  bool m_autoRedraw = false;
  bool m_defaultCancel = false;
  bool m_userMode = false;
  bool m_terminated = false;
  String m_accessKeys;
  std::vector<String> m_changed;
  AmbientProperties m_ambient{*this};
  ExtenderObject m_extender{*this};
};

}  // namespace mx::host
