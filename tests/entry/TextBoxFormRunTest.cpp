// The text box example form run as mxrun runs it: a script types into a date mask, a currency,
// a number, an upper-case and a required field; the events come out in order and the saved
// form holds the texts as each field laid them out.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "controls/Registration.h"
#include "entry/Registration.h"
#include "host/Locale.h"
#include "host/ScriptPlayer.h"
#include "platform/Clock.h"
#include "platform/Window.h"
#include "support/FormRunSupport.h"

namespace mx::entry {
namespace {

class TextBoxFormRunTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    controls::RegisterControls();
    RegisterControls();
  }
  void TearDown() override { platform::ResetWindowing(); }
  std::string Run(const std::string& script, const std::string& savePath = {}) {
    host::FormRunOptions options;
    options.formPath = std::string(MX_SOURCE_DIR) + "/examples/entry.frm";
    options.scriptPath = test::WriteTempFile("textbox_script.txt", script);
    options.savePath = savePath;
    std::ostringstream out, err;
    EXPECT_EQ(host::RunForm(options, out, err), 0) << err.str();
    return out.str();
  }
  platform::ScopedVirtualClock m_clock;
  host::ScopedLocale m_locale{"pt-BR"};
};

// The value of `key` inside the block of `control` in a saved form file, as written there.
std::string SavedProperty(const std::string& path, const std::string& control, const std::string& key) {
  std::ifstream in(path);
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find("Begin Morvantix.USTextBoxEx " + control) != std::string::npos) inside = true;
    else if (inside && line.find("End") == 3 && line.find_first_not_of(' ') == 3) return "";
    else if (inside) {
      const size_t k = line.find_first_not_of(' ');
      if (k != std::string::npos && line.compare(k, key.size() + 1, key + " ") == 0)
        return line.substr(line.find('=') + 1).substr(line.substr(line.find('=') + 1).find_first_not_of(' '));
    }
  }
  return "";
}

TEST_F(TextBoxFormRunTest, TypedFieldsRaiseTheirEventsInOrderAndSaveTheirLayout) {
  const std::string saved = ::testing::TempDir() + "textbox_saved.frm";
  const std::string out = Run(
      "focus txtDate\ntype 3112x2023\n"
      "focus txtPrice\ntype 12.5\n"
      "focus txtQty\ntype 4.2\n"
      "focus txtName\ntype ana\n"
      "focus txtEmail\ntype a\n"
      "focus txtDate\n",
      saved);

  // The mask refuses the letter: nine key presses, eight changes, each change right after the
  // key that made it.
  const auto date = test::EventsOf(out, "txtDate");
  const std::vector<std::string> dateExpected = {
      "KeyPress 51", "Change", "KeyPress 49", "Change", "KeyPress 49", "Change", "KeyPress 50", "Change",
      "KeyPress 120", "KeyPress 50", "Change", "KeyPress 48", "Change", "KeyPress 50", "Change",
      "KeyPress 51", "Change"};
  EXPECT_EQ(date, dateExpected) << out;

  // Key events are raised before the control's own handling: they print the key as typed.
  // The currency field changes on entry (its plain number shows while it is edited) and on
  // leaving (the prefix and two decimals come back); "." enters its comma.
  const std::vector<std::string> priceExpected = {"Change",      "KeyPress 49", "Change", "KeyPress 50", "Change",
                                                  "KeyPress 46", "Change",      "KeyPress 53", "Change", "Change"};
  EXPECT_EQ(test::EventsOf(out, "txtPrice"), priceExpected) << out;
  // A number field refuses ".": no change follows its key.
  const std::vector<std::string> qtyExpected = {"KeyPress 52", "Change", "KeyPress 46", "KeyPress 50", "Change"};
  EXPECT_EQ(test::EventsOf(out, "txtQty"), qtyExpected) << out;
  const std::vector<std::string> nameExpected = {"KeyPress 97", "Change", "KeyPress 110", "Change", "KeyPress 97",
                                                 "Change"};
  EXPECT_EQ(test::EventsOf(out, "txtName"), nameExpected) << out;
  EXPECT_EQ(test::EventsOf(out, "txtEmail"), (std::vector<std::string>{"KeyPress 97", "Change"})) << out;

  EXPECT_EQ(SavedProperty(saved, "txtDate", "Text"), "\"31/12/2023\"");
  EXPECT_EQ(SavedProperty(saved, "txtPrice", "Text"), "\"R$ 12,50\"");
  EXPECT_EQ(SavedProperty(saved, "txtQty", "Text"), "\"42\"");
  EXPECT_EQ(SavedProperty(saved, "txtName", "Text"), "\"ANA\"");
  EXPECT_EQ(SavedProperty(saved, "txtEmail", "Text"), "\"a\"");
}

}  // namespace
}  // namespace mx::entry
