#pragma once
// USCalendar: the large month view, 245 x 300 pixels, with a running clock (a 1000 ms timer at
// run time) and today's long date above the month.
#include "dates/CalendarControl.h"

namespace mx::dates {

class USCalendar : public CalendarControl {
 public:
  USCalendar() : CalendarControl(kLargeCalendar) {}

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USCalendar"; }
  [[nodiscard]] String TypeName() const override { return u"USCalendar"; }

  [[nodiscard]] OLE_COLOR TimerColor() const { return TimerColorValue(); }
  void TimerColor(OLE_COLOR value) { SetTimerColor(value); }
  [[nodiscard]] std::shared_ptr<host::StdFont> FontTimer() const { return FontTimerValue(); }
  void FontTimer(std::shared_ptr<host::StdFont> value) { SetFontTimer(std::move(value)); }
  // Saved with the control but not read back: after a load the clock has its font's own size.
  [[nodiscard]] float FontTimerSize() const { return FontTimerSizeValue(); }
  void FontTimerSize(float value) { SetFontTimerSize(value); }

  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;
};

}  // namespace mx::dates
