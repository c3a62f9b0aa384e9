// The headless run behind `mxutil USMsgBox`: script, picture and printed result.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "ChromeTestSupport.h"
#include "chrome/MessageForm.h"
#include "chrome/MessageFormRun.h"
#include "support/Golden.h"

namespace mx::chrome {
namespace {

class MessageBoxRunTest : public testing::ChromeTest {
 protected:
  std::string Temp(const char* name) { return ::testing::TempDir() + "msgbox_run_" + name; }
  std::string WriteScript(const char* name, const std::string& text) {
    const std::string path = Temp(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

TEST_F(MessageBoxRunTest, PlaysTheScriptPrintsTheResultAndWritesThePicture) {
  MessageBoxRunOptions options;
  options.prompt = "Excluir o registro?";
  options.buttons = 4;
  options.title = "Cadastro";
  options.scriptPath = WriteScript("yesno.txt", "# press No\nwait 200\nkey N\n");
  options.pngPath = Temp("yesno.png");
  std::remove(options.pngPath.c_str());
  std::ostringstream out, err;
  EXPECT_EQ(RunMessageBox(options, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "7\n");
  int w = 0, h = 0;
  std::vector<uint32_t> px;
  ASSERT_TRUE(test::ReadPngFile(options.pngPath, w, h, px));
  // 240 + 3500 + 240 twips wide: the short prompt is held at the label's minimum width.
  EXPECT_EQ(w, 265);
  EXPECT_GT(h, 80);
}

TEST_F(MessageBoxRunTest, ScriptClicksAButtonWithTheMouse) {
  MessageBoxRunOptions options;
  options.prompt = "Tentar de novo?";
  options.buttons = 5;
  options.markup = true;
  // The second button of two, centred in a 265-pixel row: 80 wide with an 8-pixel gap.
  options.scriptPath = WriteScript("click.txt", "move 180 88\ndown left\nup left\n");
  std::ostringstream out, err;
  EXPECT_EQ(RunMessageBox(options, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "2\n");
}

TEST_F(MessageBoxRunTest, BadScriptsFailCleanly) {
  MessageBoxRunOptions options;
  options.prompt = "x";
  options.scriptPath = Temp("missing.txt");
  std::remove(options.scriptPath.c_str());
  std::ostringstream out, err;
  EXPECT_EQ(RunMessageBox(options, out, err), 1);
  EXPECT_NE(err.str().find("cannot read"), std::string::npos);
  EXPECT_EQ(out.str(), "");

  options.scriptPath = WriteScript("bad.txt", "key N\nfly away\n");
  err.str("");
  EXPECT_EQ(RunMessageBox(options, out, err), 1);
  EXPECT_NE(err.str().find("line 2"), std::string::npos);

  // A script that leaves the box up: the box ends as closed without a button.
  options.scriptPath = WriteScript("idle.txt", "wait 100\n");
  err.str("");
  out.str("");
  EXPECT_EQ(RunMessageBox(options, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "0\n");
}

}  // namespace
}  // namespace mx::chrome
