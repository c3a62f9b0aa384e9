// The example form run as mxrun runs it: a scripted click on a button prints its Click.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "controls/Registration.h"
#include "host/ScriptPlayer.h"
#include "support/Golden.h"
#include "platform/Clock.h"
#include "platform/Window.h"
#include "support/FormRunSupport.h"

namespace mx::controls {
namespace {

class ButtonFormRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    RegisterControls();
  }
  void TearDown() override { platform::ResetWindowing(); }
  platform::ScopedVirtualClock m_clock;
};

TEST_F(ButtonFormRunTest, ScriptedClickOnTheExampleForm) {
  host::FormRunOptions options;
  options.formPath = std::string(MX_SOURCE_DIR) + "/examples/buttons.frm";
  // cmdBlue spans client pixels 12..140 x 12..44; cmdDisabled (row 3, column 1) takes no click.
  options.scriptPath = test::WriteTempFile("button_script.txt", "move 70 28\ndown left\nup left\nwait 600\nmove 200 160\ndown left\nup left\n");
  std::ostringstream out, err;
  EXPECT_EQ(host::RunForm(options, out, err), 0) << err.str();
  const std::string text = out.str();
  EXPECT_EQ(text.rfind("EVENT frmButtons.Load\n", 0), 0u) << text;
  EXPECT_NE(text.find("EVENT cmdBlue.MouseDown 1 0 58 16\nEVENT cmdBlue.MouseUp 1 0 58 16\nEVENT cmdBlue.Click\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.find("cmdDisabled"), std::string::npos) << text;
  EXPECT_NE(text.find("EVENT frmButtons.Unload\n"), std::string::npos);
}

TEST_F(ButtonFormRunTest, BadScriptLineFailsWithItsLine) {
  host::FormRunOptions options;
  options.formPath = std::string(MX_SOURCE_DIR) + "/examples/buttons.frm";
  options.scriptPath = test::WriteTempFile("button_script.txt", "move 1 1\nclick\n");
  std::ostringstream out, err;
  EXPECT_NE(host::RunForm(options, out, err), 0);
  EXPECT_NE(err.str().find("line 2"), std::string::npos) << err.str();
  EXPECT_TRUE(out.str().empty()) << "nothing runs before the script is read";

  options.scriptPath.clear();
  options.formPath = std::string(MX_TESTDATA_DIR) + "/no-such-form.frm";
  EXPECT_NE(host::RunForm(options, out, err), 0);
}


// A run shows hover and, after the button's delay, its tooltip over the form: the script's shots
// are what the screen shows where the form is.
TEST_F(ButtonFormRunTest, ScriptShotsShowHoverAndTooltip) {
  const std::string dir = ::testing::TempDir();
  host::FormRunOptions options;
  options.formPath = std::string(MX_TESTDATA_DIR) + "/forms/tooltip.frm";
  // cmdSave spans client pixels 12..112 x 12..42; the tip waits ToolDelayTime (1500 ms).
  options.scriptPath = test::WriteTempFile("button_script.txt", "move 50 25\nwait 100\nshot " + dir + "hover.png\nwait 1700\nshot " + dir + "tip.png\n");
  std::ostringstream out, err;
  ASSERT_EQ(host::RunForm(options, out, err), 0) << err.str();
  EXPECT_NE(out.str().find("EVENT cmdSave.MouseEnter"), std::string::npos) << out.str();
  for (const char* name : {"hover", "tip"}) {
    int w = 0, h = 0;
    std::vector<uint32_t> px;
    ASSERT_TRUE(test::ReadPngFile(dir + name + ".png", w, h, px)) << name;
    test::ExpectGolden("controls", std::string("script_") + name, w, h, px);
  }
}

}  // namespace
}  // namespace mx::controls
