#include "chrome/Registration.h"

#include <memory>

#include "chrome/USForm.h"
#include "host/ControlRegistry.h"

namespace mx::chrome {

void RegisterControls() {
  if (host::IsControlClassRegistered(u"Morvantix.USForm")) return;
  host::RegisterControlClass(u"Morvantix.USForm", [] { return std::make_shared<USForm>(); });
}

}  // namespace mx::chrome
