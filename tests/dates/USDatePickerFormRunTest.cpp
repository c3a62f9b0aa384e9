// The example form's date pickers run as mxrun runs them: a scripted press on the arrow, a click
// on a day of the dropped-down calendar, and the events printed in order.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "controls/Registration.h"
#include "dates/Registration.h"
#include "entry/Registration.h"
#include "host/ScriptPlayer.h"
#include "platform/Clock.h"
#include "platform/Window.h"
#include "support/FormRunSupport.h"

namespace mx::dates {
namespace {

class DatePickerFormRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    controls::RegisterControls();
    entry::RegisterControls();
    RegisterControls();
  }
  void TearDown() override { platform::ResetWindowing(); }
  platform::ScopedVirtualClock m_clock;
};

// The events of one control in the order printed, without the prefix; mouse moves and keys left
// out.
std::vector<std::string> EventsOf(const std::string& text, const std::string& control) {
  std::vector<std::string> events = test::EventsOf(text, control);
  std::erase_if(events, [](const std::string& e) { return e.rfind("Mouse", 0) == 0 || e.rfind("Key", 0) == 0; });
  return events;
}

TEST_F(DatePickerFormRunTest, ArrowThenADayTakesTheDate) {
  host::FormRunOptions options;
  options.formPath = std::string(MX_SOURCE_DIR) + "/examples/dates.frm";
  // dtpDate sits at client (484, 242), 160 x 21: its arrow is at (634, 252). The calendar drops
  // to (484, 264); January 2024 begins in cell 1, so the 20th is cell 20, centred 191 px right
  // and 137 px down of the calendar's corner.
  options.scriptPath = test::WriteTempFile("datepicker_script.txt", 
      "move 634 252\ndown left\nup left\nwait 600\n"
      "move 675 401\ndown left\nup left\nwait 600\n"
      "move 30 600\n");
  std::ostringstream out, err;
  ASSERT_EQ(host::RunForm(options, out, err), 0) << err.str();
  const auto events = EventsOf(out.str(), "dtpDate");
  ASSERT_EQ(events.size(), 5u) << out.str();
  EXPECT_EQ(events[0], "BeginDisplayCalendar");
  EXPECT_EQ(events[1], "Change");
  EXPECT_EQ(events[2], "Click");
  EXPECT_EQ(events[3].rfind("DateClicked 2024-01-20", 0), 0u) << events[3];
  EXPECT_EQ(events[4], "Click");
  // The other pickers heard nothing.
  EXPECT_TRUE(EventsOf(out.str(), "dtpIso").empty());
  EXPECT_TRUE(EventsOf(out.str(), "dtpList").empty());
}

}  // namespace
}  // namespace mx::dates
