#include "chrome/MessageFormPanel.h"

#include "controls/ControlSupport.h"

namespace mx::chrome {

using controls::detail::Step;

MessageFormPanel::MessageFormPanel() = default;

void MessageFormPanel::Repaint() {
  // The persistent image holds the ground: the window shows it again after every cover-up
  // without asking the form each time.
  Step([&] { BackStyle(0); });
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  Step([&] { AutoRedraw(false); });
  Step([&] { UserControl::Refresh(); });
}

}  // namespace mx::chrome
