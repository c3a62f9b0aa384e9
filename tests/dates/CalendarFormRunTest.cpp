// The example form run as mxrun runs it: scripted clicks on a calendar print its events in order.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "controls/Registration.h"
#include "dates/Registration.h"
#include "host/ScriptPlayer.h"
#include "platform/Clock.h"
#include "platform/Window.h"
#include "support/FormRunSupport.h"

namespace mx::dates {
namespace {

class CalendarFormRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    controls::RegisterControls();
    RegisterControls();
  }
  void TearDown() override { platform::ResetWindowing(); }
  platform::ScopedVirtualClock m_clock;
};

TEST_F(CalendarFormRunTest, ScriptedClicksRaiseTheEventsInOrder) {
  host::FormRunOptions options;
  options.formPath = std::string(MX_SOURCE_DIR) + "/examples/dates.frm";
  // calMain sits at client (8, 8): day cell 20 is centred at (227, 205), the next-month button
  // at (226, 96), the heading starts at (24, 88), today's date at (24, 58), cell 0 at (35, 153).
  options.scriptPath = test::WriteTempFile("calendar_script.txt", 
      "move 227 205\ndown left\nup left\nwait 600\n"
      "move 226 96\ndown left\nup left\nwait 600\n"
      "move 35 153\ndown left\nup left\nwait 600\n"
      "move 30 93\ndown left\nup left\nwait 600\n"
      "move 30 63\ndown left\nup left\nwait 600\n"
      "move 227 205\ndblclick\n");
  std::ostringstream out, err;
  ASSERT_EQ(host::RunForm(options, out, err), 0) << err.str();
  const auto events = test::EventsOf(out.str(), "calMain");
  ASSERT_EQ(events.size(), 8u) << out.str();
  EXPECT_EQ(events[0].rfind("DateClicked ", 0), 0u) << events[0];
  EXPECT_EQ(events[1].rfind("NextButtonClicked ", 0), 0u) << events[1];
  // Cell 0 of February is a day of January: the month changes back, and January's cell 0 is a
  // neighbour's day too, so no DateClicked follows.
  EXPECT_EQ(events[2].rfind("MonthChanged ", 0), 0u) << events[2];
  EXPECT_EQ(events[3].rfind("MonthHeadingClicked ", 0), 0u) << events[3];
  EXPECT_EQ(events[4].rfind("MonthHeadingClicked ", 0), 0u) << events[4];
  EXPECT_EQ(events[5].rfind("TodayClicked ", 0), 0u) << events[5];
  EXPECT_EQ(events[6].rfind("DateClicked ", 0), 0u) << events[6];
  EXPECT_EQ(events[7].rfind("DateDblClicked ", 0), 0u) << events[7];
  EXPECT_TRUE(test::EventsOf(out.str(), "calSmall").empty());
}

}  // namespace
}  // namespace mx::dates
