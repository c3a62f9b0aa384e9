#pragma once
// Shared pieces of the calendar tests: a clean desktop on a virtual clock whose today is Monday
// 2024-01-15 10:30, calendars made alone on the desktop at (0, 0) so that screen and client
// pixels agree, an event recorder, and clicks injected as the pointer gives them.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dates/USCalendar.h"
#include "dates/USCalendarSmall.h"
#include "host/DateTime.h"
#include "host/Format.h"
#include "host/PropertyBag.h"
#include "host/String.h"
#include "platform/Clock.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"
#include "platform/Window.h"

namespace mx::dates::testing {

using Lines = std::vector<std::string>;

inline std::string Iso(double date) {
  const host::String s = host::FormatDate(date, u"yyyy-mm-dd");
  return std::string(s.begin(), s.end());
}

// Records the calendar's events as lines: "DateClicked 2024-01-20", "WeekHeadingClicked 2".
class EventLog {
 public:
  explicit EventLog(CalendarControl& c) {
    auto date = [this](const char* name) {
      return [this, name](host::DateValue d) { m_lines.push_back(std::string(name) + " " + Iso(d.days)); };
    };
    auto number = [this](const char* name) {
      return [this, name](int16_t n) { m_lines.push_back(std::string(name) + " " + std::to_string(n)); };
    };
    c.DateClicked.connect(date("DateClicked"));
    c.DateDblClicked.connect(date("DateDblClicked"));
    c.LastButtonClicked.connect(date("LastButtonClicked"));
    c.MonthChanged.connect(date("MonthChanged"));
    c.MonthHeadingClicked.connect(date("MonthHeadingClicked"));
    c.MonthHeadingDblClicked.connect(date("MonthHeadingDblClicked"));
    c.NextButtonClicked.connect(date("NextButtonClicked"));
    c.TodayClicked.connect(date("TodayClicked"));
    c.WeekHeadingClicked.connect(number("WeekHeadingClicked"));
    c.WeekHeadingDblClicked.connect(number("WeekHeadingDblClicked"));
  }
  Lines Take() {
    Lines out;
    out.swap(m_lines);
    return out;
  }

 private:
  Lines m_lines;
};

class CalendarTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    m_windowsAtStart = platform::LiveHandleCount(platform::HandleType::Window);
  }
  void TearDown() override {
    for (auto& c : m_controls) c->TerminateControl();
    m_controls.clear();
    EXPECT_EQ(platform::LiveHandleCount(platform::HandleType::Window), m_windowsAtStart);
    platform::ResetWindowing();
  }

  // A calendar at screen (0, 0), loaded from a bag (or new when bag is null), then shown.
  template <typename T>
  std::shared_ptr<T> Make(host::PropertyBag* bag = nullptr, bool userMode = true) {
    auto c = std::make_shared<T>();
    c->Move(0, 0, static_cast<float>(c->Geometry().width * 15), static_cast<float>(c->Geometry().height * 15));
    if (bag) c->LoadFrom(*bag, userMode);
    else c->LoadNew(userMode);
    c->ShowControl();
    platform::PumpMessages();
    m_controls.push_back(c);
    return c;
  }

  static void Press(int x, int y, platform::MouseButton b = platform::MouseButton::Left) {
    platform::InjectMouseMove(x, y);
    platform::InjectMouseButton(b, true);
    platform::InjectMouseButton(b, false);
    platform::PumpMessages();
  }
  // Two clicks at one place with no time between them: the second press is a double click.
  static void DoublePress(int x, int y) {
    platform::InjectMouseMove(x, y);
    for (int i = 0; i < 2; ++i) {
      platform::InjectMouseButton(platform::MouseButton::Left, true);
      platform::InjectMouseButton(platform::MouseButton::Left, false);
    }
    platform::PumpMessages();
  }
  // The centre of a day cell or weekday heading.
  static void ClickCell(const CalendarControl& c, int index) {
    const auto& r = c.DayCell(index).rect;
    Press((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  }
  // Lets the pointer rest long enough that the next press is not taken for a double click.
  static void Pause() {
    platform::AdvanceVirtualClock(1000);
    platform::PumpMessages();
  }

  platform::ScopedVirtualClock m_clock;
  std::vector<std::shared_ptr<CalendarControl>> m_controls;
  int m_windowsAtStart = 0;
};

}  // namespace mx::dates::testing
