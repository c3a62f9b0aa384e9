#pragma once
// USCalendarSmall: the compact month view, 215 x 226 pixels, outlined, without a clock; the
// calendar that the date picker drops down.
#include "dates/CalendarControl.h"

namespace mx::dates {

class USCalendarSmall : public CalendarControl {
 public:
  USCalendarSmall() : CalendarControl(kSmallCalendar) {}

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USCalendarSmall"; }
  [[nodiscard]] String TypeName() const override { return u"USCalendarSmall"; }
};

}  // namespace mx::dates
