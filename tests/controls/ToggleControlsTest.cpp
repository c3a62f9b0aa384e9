// The check box and the option button: access keys, the design-time drop, clicks by mouse, Space
// and access key, the minimum size, mouse tracking, option groups, persistence and the faces.
#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/USCheckBox.h"
#include "controls/USOptionButton.h"
#include "host/Err.h"
#include "host/Form.h"
#include "platform/Input.h"
#include "platform/Messages.h"

namespace mx::controls::testing {
namespace {

using host::PropertyBag;
using host::Variant;

TEST(AccessKeyFromStartTest, LooksOncePastADoubledAmpersand) {
  struct Case {
    const char16_t* caption;
    const char16_t* key;
  };
  const Case cases[] = {
      {u"A&&B&c", u"c"}, {u"&&a&&b&c", u""}, {u"&&&x", u"x"}, {u"&&", u""}, {u"&", u""},  {u"x", u""},
      {u"&Sim", u"s"},   {u"Gravar&", u""},  {u"&&", u""},     {u"a&&", u""}, {u"", u""},
  };
  for (const Case& c : cases) EXPECT_EQ(AccessKeyFromStart(c.caption), host::String(c.key)) << host::ToUtf8(c.caption);
}

class ToggleTest : public SmallControlTest {};

TEST_F(ToggleTest, DroppedAtDesignTimeIsTransparentAndLoadedWithoutTheKeyIsOpaque) {
  auto dropped = Make<USCheckBox>(0, 0, 100, 20, nullptr, false);
  EXPECT_EQ(dropped->BackStyle(), 0);
  PropertyBag saved;
  dropped->SaveTo(saved);
  // Transparent is not the bag's default, so it is written and survives the round trip.
  ASSERT_TRUE(saved.Contains(u"BackStyle"));
  auto reloaded = Make<USCheckBox>(0, 30, 100, 20, &saved);
  EXPECT_EQ(reloaded->BackStyle(), 0);

  PropertyBag empty;
  auto fromBag = Make<USCheckBox>(0, 60, 100, 20, &empty);
  EXPECT_EQ(fromBag->BackStyle(), 1);
}

TEST_F(ToggleTest, ClicksToggleBetweenClearAndCheckedAndLeaveGrayedForClear) {
  auto box = Make<USCheckBox>(0, 0, 100, 20);
  std::vector<int> seen;
  box->Click.connect([&] { seen.push_back(box->Value()); });
  box->UserControl_Click();
  box->UserControl_Click();
  box->Value(USCheckBox::kGrayed);
  box->UserControl_Click();
  EXPECT_EQ(seen, (std::vector<int>{1, 0, 0}));
  EXPECT_THROW(box->Value(3), host::RuntimeError);
  EXPECT_EQ(box->Value(), 0);
}

TEST_F(ToggleTest, SpaceClicksOnReleaseAndAccessKeysClickButNotEnterOrEsc) {
  auto box = Make<USCheckBox>(0, 0, 100, 20);
  int clicks = 0;
  box->Click.connect([&] { ++clicks; });
  int16_t key = platform::VK_SPACE, shift = 0;
  box->UserControl_KeyDown(key, shift);
  EXPECT_EQ(box->PaintedState(), ToggleControl::kStateDown);
  EXPECT_EQ(clicks, 0);
  box->UserControl_KeyUp(key, shift);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(box->Value(), 1);

  for (int16_t ascii : {int16_t{13}, int16_t{27}}) box->UserControl_AccessKeyPress(ascii);
  EXPECT_EQ(clicks, 1);
  int16_t letter = 'g';
  box->UserControl_AccessKeyPress(letter);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(box->Value(), 0);

  box->Enabled(false);
  box->UserControl_AccessKeyPress(letter);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(box->PaintedState(), ToggleControl::kStateDisabled);
}

TEST_F(ToggleTest, GrowsToTheMinimumWhateverTheRequest) {
  auto box = Make<USCheckBox>(0, 0, 5, 5);
  platform::RECT rc{};
  platform::GetClientRect(box->hWnd(), &rc);
  EXPECT_EQ(rc.right, 13);
  EXPECT_EQ(rc.bottom, 13);
  box->Control::Height(8 * 15.0f);
  platform::GetClientRect(box->hWnd(), &rc);
  EXPECT_EQ(rc.bottom, 13);
}

TEST_F(ToggleTest, OnlyALoadAtRunTimeTracksTheMouse) {
  PropertyBag bag;
  auto design = Make<USCheckBox>(0, 0, 100, 20, &bag, false);
  auto byCode = Make<USCheckBox>(0, 30, 100, 20);
  auto run = Make<USCheckBox>(200, 200, 100, 20, &bag, true);
  EXPECT_FALSE(design->HasMouseTracker());
  EXPECT_FALSE(byCode->HasMouseTracker());
  ASSERT_TRUE(run->HasMouseTracker());

  std::vector<std::string> log;
  run->MouseEnter.connect([&] { log.push_back("enter"); });
  run->MouseExit.connect([&] { log.push_back("exit"); });
  platform::InjectMouseMove(210, 205);
  platform::PumpMessages();
  EXPECT_EQ(run->PaintedState(), ToggleControl::kStateOver);
  // Leaving for another window ends the hover.
  platform::InjectMouseMove(5, 5);
  platform::PumpMessages();
  EXPECT_EQ(log, (std::vector<std::string>{"enter", "exit"}));
  EXPECT_EQ(run->PaintedState(), ToggleControl::kStateNormal);
}

TEST_F(ToggleTest, RoundTripKeepsEveryKey) {
  auto a = Make<USCheckBox>(0, 0, 120, 20);
  a->Caption(u"&Ativo");
  a->Value(USCheckBox::kGrayed);
  a->Theme(0);
  a->Alignment(1);
  a->ForeColor(0x0000FF);
  a->BackStyle(1);
  PropertyBag bag;
  a->SaveTo(bag);
  auto b = Make<USCheckBox>(0, 30, 120, 20, &bag);
  EXPECT_EQ(b->Caption(), u"&Ativo");
  EXPECT_EQ(b->AccessKeys(), u"a");
  EXPECT_EQ(b->Value(), USCheckBox::kGrayed);
  EXPECT_EQ(b->Theme(), 0);
  EXPECT_EQ(b->Alignment(), 1);
  EXPECT_EQ(b->ForeColor(), 0x0000FFu);
  EXPECT_EQ(b->BackStyle(), 1);
  EXPECT_EQ(Variant(b->Invoke(u"", host::CallKind::Get, {})).ToLong(), USCheckBox::kGrayed);
}

TEST_F(ToggleTest, OptionButtonsOfOneContainerClearEachOther) {
  host::Form form(u"Form1", host::FormMode::Run);
  std::vector<std::shared_ptr<USOptionButton>> group;
  for (int i = 0; i < 3; ++i) {
    auto o = std::make_shared<USOptionButton>();
    form.SiteControl(o, u"opt" + host::String(1, static_cast<char16_t>(u'A' + i)));
    group.push_back(o);
  }
  // One in another container keeps its value.
  auto other = std::make_shared<USOptionButton>();
  form.SiteControl(other, u"optOther", -1, group[2].get());
  for (auto& o : group) o->LoadNew(true);
  other->LoadNew(true);

  other->Value(true);
  group[0]->Value(true);
  group[1]->Value(true);
  EXPECT_FALSE(group[0]->Value());
  EXPECT_TRUE(group[1]->Value());
  EXPECT_TRUE(other->Value());
  // Late binding goes through the same setter.
  Variant v[] = {Variant(true)};
  group[2]->Invoke(u"", host::CallKind::Let, v);
  EXPECT_FALSE(group[1]->Value());
  EXPECT_TRUE(group[2]->Value());
  EXPECT_TRUE(other->Value());
  for (auto& o : group) o->TerminateControl();
  other->TerminateControl();
}

TEST_F(ToggleTest, ClickOnAnOptionChoosesItAndClearsTheGroup) {
  host::Form form(u"Form1", host::FormMode::Run);
  auto a = std::make_shared<Open<USOptionButton>>();
  auto b = std::make_shared<Open<USOptionButton>>();
  form.SiteControl(a, u"optA");
  form.SiteControl(b, u"optB");
  a->LoadNew(true);
  b->LoadNew(true);
  a->Value(true);
  std::vector<std::string> log;
  b->Click.connect([&] { log.push_back("b " + std::to_string(b->Value()) + std::to_string(a->Value())); });
  b->UserControl_Click();
  b->UserControl_Click();
  EXPECT_EQ(log, (std::vector<std::string>{"b 10", "b 10"}));
  a->TerminateControl();
  b->TerminateControl();
}

// One face per value and state, in the Windows look and the Office blue look.
TEST_F(ToggleTest, FacesInTwoThemes) {
  for (int theme : {2, 0}) {
    std::vector<platform::CapturedImage> shots;
    int y = 0;
    auto add = [&](auto control) {
      control->BackStyle(1);
      control->BackColor(0xFFFFFF);
      control->Theme(theme);
      shots.push_back(Capture(*control));
    };
    for (int16_t v : {int16_t{0}, int16_t{1}, int16_t{2}}) {
      auto box = Make<USCheckBox>(0, y += 22, 110, 20);
      box->Caption(u"&Ativo " + host::String(1, static_cast<char16_t>(u'0' + v)));
      box->Value(v);
      add(box);
    }
    auto focused = Make<USCheckBox>(0, y += 22, 110, 20);
    focused->Caption(u"Foco");
    focused->Value(1);
    focused->UserControl_GotFocus();
    add(focused);
    auto down = Make<USCheckBox>(0, y += 22, 110, 20);
    down->Caption(u"Direita");
    down->Alignment(1);
    int16_t left = host::vbLeftButton, shift = 0;
    float px = 2, py = 2;
    down->UserControl_MouseDown(left, shift, px, py);
    add(down);
    auto disabled = Make<USCheckBox>(0, y += 22, 110, 20);
    disabled->Caption(u"Inativo");
    disabled->Value(1);
    disabled->Enabled(false);
    add(disabled);
    for (bool v : {false, true}) {
      auto option = Make<USOptionButton>(0, y += 22, 110, 20);
      option->Caption(v ? u"Sim" : u"N\u00e3o");
      option->Value(v);
      add(option);
    }
    int w = 0, h = 0;
    std::vector<uint32_t> px32 = Stack(shots, w, h);
    test::ExpectGolden("controls", "toggles_theme" + std::to_string(theme), w, h, px32);
  }
}

}  // namespace
}  // namespace mx::controls::testing
