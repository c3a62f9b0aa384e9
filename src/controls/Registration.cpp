#include "controls/Registration.h"

#include <memory>

#include "controls/USAlphaImage.h"
#include "controls/USAnimatedImage.h"
#include "controls/USButton.h"
#include "controls/USCheckBox.h"
#include "controls/USGroupBox.h"
#include "controls/USImageList.h"
#include "controls/USLabel.h"
#include "controls/USOptionButton.h"
#include "controls/USProgressBar.h"
#include "controls/USScrollBar.h"
#include "controls/USStatusBar.h"
#include "host/ControlRegistry.h"

namespace mx::controls {

void RegisterControls() {
  static const bool registered = [] {
    host::RegisterControlClass(u"Morvantix.USAlphaImage", [] { return std::make_shared<USAlphaImage>(); });
    host::RegisterControlClass(u"Morvantix.USAnimatedImage", [] { return std::make_shared<USAnimatedImage>(); });
    host::RegisterControlClass(u"Morvantix.USButton", [] { return std::make_shared<USButton>(); });
    host::RegisterControlClass(u"Morvantix.USCheckBox", [] { return std::make_shared<USCheckBox>(); });
    host::RegisterControlClass(u"Morvantix.USGroupBox", [] { return std::make_shared<USGroupBox>(); });
    host::RegisterControlClass(u"Morvantix.USImageList", [] { return std::make_shared<USImageList>(); });
    host::RegisterControlClass(u"Morvantix.USLabel", [] { return std::make_shared<USLabel>(); });
    host::RegisterControlClass(u"Morvantix.USOptionButton", [] { return std::make_shared<USOptionButton>(); });
    host::RegisterControlClass(u"Morvantix.USProgressBar", [] { return std::make_shared<USProgressBar>(); });
    host::RegisterControlClass(u"Morvantix.USScrollBar", [] { return std::make_shared<USScrollBar>(); });
    host::RegisterControlClass(u"Morvantix.USStatusBar", [] { return std::make_shared<USStatusBar>(); });
    return true;
  }();
  (void)registered;
}

}  // namespace mx::controls
