#pragma once
// ToggleControl: what USCheckBox and USOptionButton share. A small glyph (a square box or a
// round mark) beside a caption, drawn in the colours of the control's theme for the states
// normal, over, down and disabled, with the dotted focus mark around the caption.
//
// Behaviour and painting are apart as in the button: the handlers move the mouse and key flags
// and ask DrawState for a state; DrawState skips a state and focus already on the screen, and
// PaintFace draws background, glyph, caption and focus mark into the persistent image. What a
// click does to Value, and how the glyph looks, is the derived control's.
#include <cstdint>
#include <memory>
#include <span>

#include "controls/CaptionControl.h"
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
}

namespace mx::controls {

using host::OLE_COLOR;
using host::String;
using host::StringView;

// The key that fires AccessKeyPress for a caption, found from its start: the character after the
// first "&", lower-cased, unless that "&" is the first of a doubled pair; past one doubled pair
// the next "&" is tested once more and no further. Empty when there is none.
[[nodiscard]] String AccessKeyFromStart(StringView caption);

// The colours of a glyph for one theme and state, from the theme's palette.
struct ToggleGlyphColors {
  OLE_COLOR border = 0;
  OLE_COLOR fillTop = 0;     // the inside is a top-to-bottom gradient
  OLE_COLOR fillBottom = 0;
  OLE_COLOR mark = 0;        // the check, the dot or the grayed square
};
[[nodiscard]] ToggleGlyphColors GlyphColors(int32_t xTheme, int32_t xState);

class ToggleControl : public CaptionControl {
 public:
  static constexpr int32_t kStateNormal = 0;
  static constexpr int32_t kStateOver = 1;
  static constexpr int32_t kStateDown = 2;
  static constexpr int32_t kStateDisabled = 3;
  // The glyph's side, and the smallest client size Resize allows.
  static constexpr int32_t kGlyphSize = 13;
  static constexpr int32_t kMinimumSize = 13;
  // Pixels between glyph and caption.
  static constexpr int32_t kCaptionGap = 4;

  ToggleControl();
  ~ToggleControl() override;

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  // 0: glyph at the left, caption after it; 1: caption right-aligned, glyph at the right.
  [[nodiscard]] int32_t Alignment() const { return m_alignment; }
  void Alignment(int32_t value);
  [[nodiscard]] OLE_COLOR BackColor() const { return UserControl::BackColor(); }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] int16_t BackStyle() const { return UserControl::BackStyle(); }
  void BackStyle(int16_t value);
  [[nodiscard]] const String& Caption() const { return m_caption; }
  void Caption(StringView value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return UserControl::ForeColor(); }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores the theme and repaints: the theme only chooses the glyph's colours.
  void Theme(int32_t value);

  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  // A picture sets MousePointer to 99, Nothing sets it to 0.
  void MouseIcon(std::shared_ptr<host::StdPicture> value);

  void About();
  // Lets go of the mouse tracker, so that a host can break the reference before unloading.
  void Dispose();
  // Paints whatever the cached state.
  void Refresh();

  // ---- Events, raised after the control's own handling -----------------------------------------
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

  // ---- Inspection, for tests and tools ---------------------------------------------------------
  [[nodiscard]] int32_t PaintedState() const { return m_state; }
  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }
  [[nodiscard]] bool IsMouseOver() const { return m_mouseOver; }
  [[nodiscard]] bool HasMouseTracker() const { return m_mouseEx != nullptr; }
  // Where the glyph and the caption were last painted, in client pixels.
  [[nodiscard]] platform::RECT GlyphRect() const { return m_glyphRect; }
  [[nodiscard]] platform::RECT CaptionRect() const { return m_captionRect; }

 protected:
  void RepaintForFont() override { Refresh(); }
  // The control's class name, for errors.
  [[nodiscard]] virtual const char16_t* ClassName() const = 0;
  // What a click does to Value (toggle, or set), with its PropertyChanged.
  virtual void ClickValue() = 0;
  // Draws the glyph for the value held, in the given colours, inside box (kGlyphSize square).
  virtual void PaintGlyph(platform::HDC dc, const platform::RECT& box, const ToggleGlyphColors& colours) = 0;
  // Reads and writes the value key, with the control's type.
  virtual void ReadValue(host::PropertyBag& bag) = 0;
  virtual void WriteValue(host::PropertyBag& bag) = 0;
  virtual void ResetValue() = 0;

  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Terminate() override;
  void UserControl_GotFocus() override;
  void UserControl_LostFocus() override;
  void UserControl_AccessKeyPress(int16_t& KeyAscii) override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

  // The drawing entry: paints xState (-1: the current one) unless that state and the focus flag
  // are on the screen already; xForce paints anyway.
  void DrawState(int32_t xState, bool xForce);
  // The click that the mouse, Space and the access key all end in: the value changes, the face
  // repaints, and Click is raised.
  void DoClick();

  [[nodiscard]] bool UserModeFlag() const { return m_userMode; }
  // Late binding of the members above; false when the name is not one of them.
  bool InvokeCommon(StringView name, host::CallKind kind, std::span<host::Variant> args, host::Variant& result);

 private:
  void PaintFace(int32_t xState);
  void StartMouseTracker();
  void ReleaseMouseTracker();
  void OnMouseIn();
  void OnMouseOut();

  String m_caption;
  int32_t m_alignment = 0;
  int32_t m_theme = 2;

  bool m_userMode = false;
  bool m_hasFocus = false;
  bool m_paintedFocus = false;
  bool m_mouseOver = false;
  bool m_pressed = false;
  bool m_spaceDown = false;
  int32_t m_state = kStateNormal;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
  platform::RECT m_glyphRect{};
  platform::RECT m_captionRect{};
  std::unique_ptr<frame::APIMouseEvents> m_mouseEx;
};

}  // namespace mx::controls
