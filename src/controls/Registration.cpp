#include "controls/Registration.h"

#include <memory>

#include "controls/USButton.h"
#include "host/ControlRegistry.h"

namespace mx::controls {

void RegisterControls() {
  static const bool registered = [] {
    host::RegisterControlClass(u"Morvantix.USButton", [] { return std::make_shared<USButton>(); });
    return true;
  }();
  (void)registered;
}

}  // namespace mx::controls
