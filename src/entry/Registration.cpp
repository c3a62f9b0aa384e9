#include "entry/Registration.h"

#include <memory>

#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "entry/USTextBoxEx.h"
#include "host/ControlRegistry.h"

namespace mx::entry {

void RegisterControls() {
  static const bool registered = [] {
    host::RegisterControlClass(u"Morvantix.USTextBoxEx", [] { return std::make_shared<USTextBoxEx>(); });
    host::RegisterControlClass(u"Morvantix.USListBox", [] { return std::make_shared<USListBox>(); });
    host::RegisterControlClass(u"Morvantix.USComboBox", [] { return std::make_shared<USComboBox>(); });
    return true;
  }();
  (void)registered;
}

}  // namespace mx::entry
