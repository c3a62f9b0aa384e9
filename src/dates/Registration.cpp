#include "dates/Registration.h"

#include <memory>

#include "dates/USCalendar.h"
#include "dates/USCalendarSmall.h"
#include "dates/USDatePicker.h"
#include "host/ControlRegistry.h"

namespace mx::dates {

void RegisterControls() {
  static const bool registered = [] {
    host::RegisterControlClass(u"Morvantix.USCalendar", [] { return std::make_shared<USCalendar>(); });
    host::RegisterControlClass(u"Morvantix.USCalendarSmall", [] { return std::make_shared<USCalendarSmall>(); });
    host::RegisterControlClass(u"Morvantix.USDatePicker", [] { return std::make_shared<USDatePicker>(); });
    return true;
  }();
  (void)registered;
}

}  // namespace mx::dates
