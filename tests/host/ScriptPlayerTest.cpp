// Input scripts: parsing with line numbers, event lines, and playing against a form.
#include <gtest/gtest.h>

#include <sstream>

#include "host/ControlRegistry.h"
#include "host/Form.h"
#include "host/ScriptPlayer.h"
#include "host/UserControl.h"
#include "platform/Clock.h"
#include "platform/Window.h"

namespace mx::host {
namespace {

// A control that raises Click and KeyPress as a user control would, and remembers its focus.
class ProbeControl : public UserControl {
 public:
  [[nodiscard]] String ProgId() const override { return u"Probe.Control"; }
  Event<> Click;
  Event<int16_t&> KeyPress;
  Event<int16_t&, int16_t&, float&, float&> MouseDown;
  void ConnectEventSink(const EventSink& sink) override {
    BindEventSinks(sink, u"Click", Click, u"KeyPress", KeyPress, u"MouseDown", MouseDown);
  }
  bool focused = false;

 protected:
  void UserControl_Click() override { Click(); }
  void UserControl_KeyPress(int16_t& k) override { KeyPress(k); }
  void UserControl_MouseDown(int16_t& b, int16_t& s, float& x, float& y) override { MouseDown(b, s, x, y); }
  void UserControl_GotFocus() override { focused = true; }
};

TEST(ScriptParse, CommandsAndTheirArguments) {
  const auto steps = ParseScript(
      "# a comment\n"
      "move 10 20\r\n"
      "\n"
      "down left\n"
      "up RIGHT\n"
      "dblclick\n"
      "wheel -2\n"
      "key space\n"
      "keydown &H0D\n"
      "keyup 27\n"
      "type Olá mundo\n"
      "focus cmd(3)\n"
      "wait 250\n"
      "shot out.png");
  ASSERT_EQ(steps.size(), 12u);
  EXPECT_EQ(steps[0].op, ScriptOp::Move);
  EXPECT_EQ(steps[0].line, 2);
  EXPECT_EQ(steps[0].a, 10);
  EXPECT_EQ(steps[0].b, 20);
  EXPECT_EQ(steps[1].line, 4);
  EXPECT_EQ(steps[2].a, 1);
  EXPECT_EQ(steps[4].a, -2);
  EXPECT_EQ(steps[5].a, 0x20);
  EXPECT_EQ(steps[6].a, 0x0D);
  EXPECT_EQ(steps[7].a, 27);
  EXPECT_EQ(steps[8].text, "Olá mundo");
  EXPECT_EQ(steps[9].text, "cmd");
  EXPECT_EQ(steps[9].index, 3);
  EXPECT_EQ(steps[10].a, 250);
  EXPECT_EQ(steps[11].text, "out.png");
}

TEST(ScriptParse, BadLinesNameTheirLine) {
  const char* bad[] = {"move 10", "down up", "jump 1 2", "key NOSUCHKEY", "wait -5", "move 1 2 3", "focus a(b)",
                       "type", "shot"};
  for (const char* line : bad) {
    const std::string script = std::string("move 0 0\n\n") + line + "\n";
    try {
      (void)ParseScript(script);
      ADD_FAILURE() << "accepted: " << line;
    } catch (const ScriptError& e) {
      EXPECT_EQ(e.Line(), 3) << line;
      EXPECT_NE(std::string(e.what()).find("line 3"), std::string::npos) << e.what();
    }
  }
}

TEST(ScriptParse, KeyNames) {
  EXPECT_EQ(ScriptKeyCode("a"), 'A');
  EXPECT_EQ(ScriptKeyCode("7"), 7);  // a number is a code, not the digit key
  EXPECT_EQ(ScriptKeyCode("F12"), 0x7B);
  EXPECT_EQ(ScriptKeyCode("Escape"), 0x1B);
  EXPECT_EQ(ScriptKeyCode("F25"), -1);
  EXPECT_EQ(ScriptKeyCode("256"), -1);
}

TEST(ScriptEventLine, ArgumentsInInvariantForm) {
  std::vector<Variant> args{Variant(int16_t{1}), Variant(int16_t{0}), Variant(12.5f), Variant(7.0f)};
  EXPECT_EQ(FormatEventLine(u"cmdOk", -1, u"MouseDown", args), "EVENT cmdOk.MouseDown 1 0 12.5 7");
  std::vector<Variant> more{Variant(true), Variant(String(u"diz \"oi\""))};
  EXPECT_EQ(FormatEventLine(u"cmd", 2, u"Change", more), "EVENT cmd.Change 2 True \"diz \"\"oi\"\"\"");
  EXPECT_EQ(FormatEventLine(u"frm", -1, u"Load", {}), "EVENT frm.Load");
}

class ScriptPlayTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    RegisterControlClass(u"Probe.Control", [] { return std::make_shared<ProbeControl>(); });
  }
  void TearDown() override {
    for (const auto& f : Forms()) f->Unload();
    platform::ResetWindowing();
  }
  platform::ScopedVirtualClock m_clock;
};

TEST_F(ScriptPlayTest, ClicksKeysAndFocusReachTheControl) {
  auto form = std::make_shared<Form>(u"frmProbe");
  std::vector<std::string> lines;
  form->SetEventSink([&](StringView src, int32_t index, StringView name, std::span<Variant> args) {
    lines.push_back(FormatEventLine(src, index, name, std::span<const Variant>(args.data(), args.size())));
  });
  form->Move(0, 0, 4000, 3000);
  auto probe = std::dynamic_pointer_cast<ProbeControl>(form->AddControl(u"Probe.Control", u"probe"));
  ASSERT_TRUE(probe);
  probe->Move(600, 300, 1500, 450);  // client pixels 40,20 to 140,50
  probe->Visible(true);              // controls added by code start hidden
  form->Show();
  lines.clear();

  ScriptPlayer player(form);
  EXPECT_TRUE(player.Play(ParseScript("move 50 30\ndown left\nup left\nfocus probe\ntype x\n")));
  EXPECT_TRUE(probe->focused);
  EXPECT_EQ(lines, (std::vector<std::string>{"EVENT probe.MouseDown 1 0 10 10", "EVENT probe.Click",
                                             "EVENT probe.KeyPress 120"}));

  // A step on a control that is not there names its line.
  try {
    player.Play(ParseScript("wait 10\nfocus nobody\n"));
    ADD_FAILURE() << "focus on a missing control was accepted";
  } catch (const ScriptError& e) {
    EXPECT_EQ(e.Line(), 2);
  }
}

TEST_F(ScriptPlayTest, StopsWhenTheLastFormHasUnloaded) {
  auto form = std::make_shared<Form>(u"frmShort");
  form->Show();
  ScriptPlayer player(form);
  form->Unload();
  EXPECT_FALSE(player.Play(ParseScript("move 1 1\nwait 10\n")));
}

}  // namespace
}  // namespace mx::host
