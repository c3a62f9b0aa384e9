#pragma once
// host::Control: anything that sits on a form, the host's own controls and user controls alike.
//
// It carries what the host keeps for a control's site, whatever the control is: its name and
// index in a control array, the form and container that hold it, and the extender properties
// (position and size in the container's scale, visibility, tab order, tag, default and cancel).
// The form file's extender lines ("Left", "Top", "Width", "Height", "TabIndex", "Index"...) load
// into these and are written back from them.
//
// A control's own members may share a name with a site member (a user control publishes its own
// `Enabled`, `hWnd`...). C++ hides the base member then; the host reaches the site view through
// `Extender()` of a UserControl, or by qualifying (`Control::Visible()`).
#include <cstdint>
#include <memory>
#include <span>

#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {

class Form;
class PropertyBag;

class Control : public Object {
 public:
  Control();
  ~Control() override;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // The class name the registry knows it by ("Morvantix.USButton", "VB.TextBox").
  [[nodiscard]] virtual String ProgId() const = 0;

  [[nodiscard]] const String& Name() const { return m_name; }
  // Index within a control array; -1 for a control that is in none.
  [[nodiscard]] int32_t Index() const { return m_index; }
  // The form that holds the control; nullptr for a control not sited (made by code, never
  // added to a form).
  [[nodiscard]] Form* Parent() const { return m_form; }
  // The control that contains it (a frame, a picture box), or nullptr when the form does.
  [[nodiscard]] Control* Container() const { return m_container; }

  // The control's window; 0 for a windowless control.
  [[nodiscard]] virtual platform::HWND hWnd() const { return 0; }

  // Extender geometry, in the container's scale (twips on a form). Setting one moves or sizes
  // the window, which the control sees as a Resize where the size changed.
  [[nodiscard]] float Left() const { return m_left; }
  void Left(float value);
  [[nodiscard]] float Top() const { return m_top; }
  void Top(float value);
  [[nodiscard]] float Width() const { return m_width; }
  void Width(float value);
  [[nodiscard]] float Height() const { return m_height; }
  void Height(float value);
  void Move(float left, float top, float width, float height);

  [[nodiscard]] bool Visible() const { return m_visible; }
  void Visible(bool value);
  [[nodiscard]] int16_t TabIndex() const { return m_tabIndex; }
  void TabIndex(int16_t value);
  [[nodiscard]] bool TabStop() const { return m_tabStop; }
  void TabStop(bool value) { m_tabStop = value; }
  [[nodiscard]] const String& Tag() const { return m_tag; }
  void Tag(String value) { m_tag = std::move(value); }
  // The form's default (Enter) and cancel (Esc) control; setting one clears it on the others.
  [[nodiscard]] bool Default() const { return m_default; }
  void Default(bool value);
  [[nodiscard]] bool Cancel() const { return m_cancel; }
  void Cancel(bool value);

  // Gives the control the keyboard focus (raises 5 when it cannot take it: invisible, disabled,
  // or a control that never takes focus).
  void SetFocus();
  // 0 brings it to the front of its siblings, 1 sends it to the back.
  void ZOrder(int16_t position = 0);
  // Whether the control can hold the focus at all (labels and shapes cannot).
  [[nodiscard]] virtual bool CanGetFocus() const { return true; }

  // Late binding of the extender members (Name, Index, Left, Top, Width, Height, Visible,
  // TabIndex, TabStop, Tag, Default, Cancel, Parent, Container, hWnd, Move, SetFocus, ZOrder);
  // derived classes answer their own members first and fall back here.
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 protected:
  // The form calls these; a control reacts to geometry and visibility in its overrides.
  friend class Form;
  virtual void SiteChanged() {}
  // The window rectangle changed: the control moves its window.
  virtual void ApplyGeometry() {}
  virtual void ApplyVisible() {}

  String m_name;
  int32_t m_index = -1;
  Form* m_form = nullptr;
  Control* m_container = nullptr;
  float m_left = 0;
  float m_top = 0;
  float m_width = 0;
  float m_height = 0;
  bool m_visible = true;
  bool m_tabStop = true;
  bool m_default = false;
  bool m_cancel = false;
  int16_t m_tabIndex = 0;
  String m_tag;
};

}  // namespace mx::host
