#include "host/HostControls.h"

#include "host/ControlRegistry.h"
#include "host/TextBox.h"

namespace mx::host {

void RegisterHostControls() {
  // Only what is not there yet: a test or an application may have put its own class under one
  // of these names, and that one stays.
  if (!IsControlClassRegistered(u"VB.TextBox"))
    RegisterControlClass(u"VB.TextBox", [] { return std::make_shared<TextBox>(); });
}

}  // namespace mx::host
