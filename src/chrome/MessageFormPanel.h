#pragma once
// The panel at the foot of a message form (xPic) that holds its buttons: the host's picture box
// in the part of a plain container. It paints nothing of its own: it is transparent, so the
// form's ground (its colour or its gradient) shows around the buttons, and it never takes the
// focus.
#include "host/String.h"
#include "host/UserControl.h"

namespace mx::chrome {

class MessageFormPanel : public host::UserControl {
 public:
  MessageFormPanel();

  [[nodiscard]] host::String ProgId() const override { return u"VB.PictureBox"; }
  [[nodiscard]] host::String TypeName() const override { return u"PictureBox"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }

  // Takes the ground of the form again (after the form's colour or gradient changed).
  void Repaint();

 protected:
  void UserControl_Resize() override { Repaint(); }
  void UserControl_Show() override { Repaint(); }
};

}  // namespace mx::chrome
