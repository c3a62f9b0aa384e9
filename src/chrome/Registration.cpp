#include "chrome/Registration.h"

#include <memory>

#include "chrome/MessageForm.h"
#include "chrome/USForm.h"
#include "chrome/USRibbon.h"
#include "host/ControlRegistry.h"

namespace mx::chrome {

void RegisterControls() {
  InstallMessageForms();
  if (!host::IsControlClassRegistered(u"Morvantix.USForm"))
    host::RegisterControlClass(u"Morvantix.USForm", [] { return std::make_shared<USForm>(); });
  if (!host::IsControlClassRegistered(u"Morvantix.USRibbon"))
    host::RegisterControlClass(u"Morvantix.USRibbon", [] { return std::make_shared<USRibbon>(); });
}

}  // namespace mx::chrome
