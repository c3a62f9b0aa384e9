#pragma once
// host::IntrinsicControl: the base of the host's own windowed controls (VB.TextBox...), the
// counterpart of UserControl for controls that the host itself implements.
//
// The form drives both kinds through the same steps: a window as a child of the container,
// a load from a property bag (or InitProperties when made by code), Show, Hide, Terminate, the
// form's look at keys first (Tab, Enter, Esc, access keys) and every event to the form's sink.
// An intrinsic control also works unsited: Create gives it a window inside any parent window,
// which is how a user control holds one as a constituent control.
#include <cstdint>
#include <functional>

#include "host/Control.h"
#include "host/Event.h"
#include "platform/Types.h"

namespace mx::host {

class PropertyBag;

class IntrinsicControl : public Control {
 public:
  // The form's part in the control's keyboard and focus messages: it sees WM_KEYDOWN,
  // WM_SYSKEYDOWN, WM_CHAR and WM_SYSCHAR first (true: consumed, the control hears nothing),
  // and is told of WM_SETFOCUS and WM_KILLFOCUS after the control's own handling.
  using SiteFilter = std::function<bool(uint32_t msg, uintptr_t wParam, intptr_t lParam)>;

  // Creates the window as a child of parentWindow at the extender rectangle (twips divided by
  // the screen's twips per pixel), hidden until ShowControl. A second call moves an existing
  // window to the new parent.
  virtual void CreateControlWindow(platform::HWND parentWindow) = 0;
  // The host's defaults (a control made by code), or the properties of a form file's block.
  virtual void LoadNew(bool userMode) = 0;
  virtual void LoadFrom(PropertyBag& bag, bool userMode) = 0;
  // Writes the properties that differ from their defaults, as the host saves a form.
  virtual void SaveTo(PropertyBag& bag) const = 0;
  // The window is shown (where Visible) or hidden; Terminate destroys it.
  virtual void ShowControl() = 0;
  virtual void HideControl() = 0;
  virtual void TerminateControl() = 0;
  // Gives each event its name and the form's generic sink.
  virtual void ConnectEventSink(const EventSink& sink) = 0;

  void SetSiteFilter(SiteFilter filter) { m_siteFilter = std::move(filter); }

 protected:
  SiteFilter m_siteFilter;
};

}  // namespace mx::host
