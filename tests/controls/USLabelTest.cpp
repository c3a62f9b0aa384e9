// USLabel: Change after Caption, AutoSize with and without word wrap, the load orders, the
// Resize gate, persistence and a rendered markup caption.
#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/USLabel.h"
#include "host/StdFont.h"

namespace mx::controls::testing {
namespace {

using host::PropertyBag;

class LabelTest : public SmallControlTest {
 protected:
  static platform::RECT Client(const USLabel& l) {
    platform::RECT rc{};
    platform::GetClientRect(l.hWnd(), &rc);
    return rc;
  }
  // A fixed font, so that sizes and pictures do not follow the ambient one.
  static std::shared_ptr<host::StdFont> FixedFont() {
    auto f = std::make_shared<host::StdFont>();
    f->Name(u"Arial");
    f->Size(10.0);
    return f;
  }
};

TEST_F(LabelTest, ChangeFollowsTheNewCaptionAndItsPaint) {
  auto l = Make<USLabel>(0, 0, 120, 20);
  std::vector<std::string> seen;
  l->Change.connect([&] { seen.push_back(host::ToUtf8(l->Caption()) + " " + std::to_string(l->PaintCount())); });
  const int before = l->PaintCount();
  l->Caption(u"<b>Novo</b>");
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0], "<b>Novo</b> " + std::to_string(before + 1));
  EXPECT_EQ(l->NoHTMLCaption(), u"Novo");
}

TEST_F(LabelTest, AutoSizeFollowsTheText) {
  auto l = Make<USLabel>(0, 0, 300, 40);
  l->Font(FixedFont());
  l->WordWrap(false);
  l->Caption(u"Linha");
  const platform::RECT one = Client(*l);
  EXPECT_EQ(one.right, l->CurrentLayout().width);
  EXPECT_GT(one.right, 10);
  l->Caption(u"Linha<br>Linha");
  const platform::RECT two = Client(*l);
  EXPECT_EQ(two.right, one.right);
  EXPECT_EQ(two.bottom, 2 * one.bottom);

  // With word wrap the width stays and the lines make the height.
  l->Control::Width(60 * 15.0f);
  l->WordWrap(true);
  l->Caption(u"uma frase longa que quebra em linhas");
  const platform::RECT wrapped = Client(*l);
  EXPECT_EQ(wrapped.right, 60);
  EXPECT_GE(l->CurrentLayout().lines.size(), 3u);
  EXPECT_EQ(wrapped.bottom, l->CurrentLayout().height);
  for (const MarkupLine& line : l->CurrentLayout().lines) EXPECT_LE(line.width, 60);

  // Off, the size stays whatever the text.
  l->AutoSize(false);
  l->Caption(u"x");
  EXPECT_EQ(Client(*l).bottom, wrapped.bottom);
}

TEST_F(LabelTest, AWordWiderThanTheLineBreaksBetweenCharacters) {
  auto l = Make<USLabel>(0, 0, 30, 20);
  l->Font(FixedFont());
  l->Caption(u"Paralelep\u00edpedo");
  const MarkupLayout& layout = l->CurrentLayout();
  ASSERT_GE(layout.lines.size(), 2u);
  host::String joined;
  for (const MarkupLine& line : layout.lines) {
    EXPECT_LE(line.width, 30);
    for (const MarkupPiece& p : line.pieces) joined += p.text;
  }
  EXPECT_EQ(joined, u"Paralelep\u00edpedo");
}

TEST_F(LabelTest, LoadOrders) {
  // Dropped: transparent, and painted by InitProperties.
  auto dropped = Make<USLabel>(0, 0, 100, 20, nullptr, false);
  EXPECT_EQ(dropped->BackStyle(), 0);
  EXPECT_GE(dropped->PaintCount(), 1);

  // Read with an empty caption: nothing is painted.
  PropertyBag empty;
  empty.WriteProperty(u"Caption", host::Variant(host::String(u"")));
  auto blank = Make<USLabel>(0, 30, 100, 20, &empty);
  EXPECT_EQ(blank->PaintCount(), 0);
  EXPECT_TRUE(blank->HasMouseTracker());

  PropertyBag quiet;
  quiet.WriteProperty(u"Caption", host::Variant(host::String(u"Oi")));
  quiet.WriteProperty(u"DisableMouseEvents", host::Variant(true));
  auto read = Make<USLabel>(0, 60, 100, 20, &quiet);
  EXPECT_GE(read->PaintCount(), 1);
  EXPECT_FALSE(read->HasMouseTracker());
  read->StartMouseEvents();
  EXPECT_TRUE(read->HasMouseTracker());
}

TEST_F(LabelTest, ResizeRepaintsOnlyWrappedTextAfterShow) {
  auto l = std::make_shared<USLabel>();
  m_controls.push_back(l);
  l->Move(0, 0, 100 * 15.0f, 20 * 15.0f);
  l->LoadNew(true);
  const int afterInit = l->PaintCount();
  l->Control::Width(90 * 15.0f);
  EXPECT_EQ(l->PaintCount(), afterInit) << "not shown yet";
  l->ShowControl();
  l->Control::Width(80 * 15.0f);
  EXPECT_EQ(l->PaintCount(), afterInit + 1);
  l->WordWrap(false);
  const int unwrapped = l->PaintCount();
  l->AutoSize(false);
  l->Control::Width(70 * 15.0f);
  EXPECT_EQ(l->PaintCount(), unwrapped);
}

TEST_F(LabelTest, PointerEntersAndLeavesUnlessMouseEventsAreOff) {
  std::vector<std::string> log;
  auto watch = [&](USLabel& l, const std::string& name) {
    l.MouseEnter.connect([&log, name] { log.push_back(name + " enter"); });
    l.MouseExit.connect([&log, name] { log.push_back(name + " exit"); });
  };
  PropertyBag tracked;
  Make<USLabel>(0, 0, 10, 10)->SaveTo(tracked);
  PropertyBag quiet;
  auto q = Make<USLabel>(0, 0, 10, 10);
  q->DisableMouseEvents(true);
  q->SaveTo(quiet);

  auto on = Make<USLabel>(100, 100, 80, 20, &tracked, true);
  auto off = Make<USLabel>(100, 200, 80, 20, &quiet, true);
  EXPECT_TRUE(on->HasMouseTracker());
  EXPECT_FALSE(off->HasMouseTracker());
  watch(*on, "on");
  watch(*off, "off");
  for (const auto& [x, y] : {std::pair{110, 105}, {110, 205}, {5, 5}}) {
    platform::InjectMouseMove(x, y);
    platform::PumpMessages();
  }
  EXPECT_EQ(log, (std::vector<std::string>{"on enter", "on exit"}));

  // Turned off in the bag, the events can still be asked for by code.
  log.clear();
  off->StartMouseEvents();
  platform::InjectMouseMove(110, 205);
  platform::PumpMessages();
  platform::InjectMouseMove(5, 5);
  platform::PumpMessages();
  EXPECT_EQ(log, (std::vector<std::string>{"off enter", "off exit"}));
}

TEST_F(LabelTest, RoundTripKeepsKeysAndAPlainCaption) {
  auto a = Make<USLabel>(0, 0, 100, 20);
  a->Caption(u"<i>texto</i>");
  a->AutoSize(false);
  a->Alignment(2);
  a->DisableMouseEvents(true);
  PropertyBag bag;
  a->SaveTo(bag);
  EXPECT_TRUE(bag.Contains(u"Autosize"));
  EXPECT_EQ(bag.ReadProperty(u"NoHTMLCaption").ToString(), u"texto");
  auto b = Make<USLabel>(0, 30, 100, 20, &bag);
  EXPECT_EQ(b->Caption(), u"<i>texto</i>");
  EXPECT_FALSE(b->AutoSize());
  EXPECT_EQ(b->Alignment(), 2);
  EXPECT_TRUE(b->DisableMouseEvents());
  EXPECT_TRUE(b->CurrentLayout().lines.at(0).pieces.at(0).style.italic);

  // A caption given as plain text shows its tags, and still does after a save.
  a->NoHTMLCaption(u"<i>literal</i>");
  PropertyBag bag2;
  a->SaveTo(bag2);
  auto c = Make<USLabel>(0, 60, 200, 20, &bag2);
  EXPECT_EQ(c->NoHTMLCaption(), u"<i>literal</i>");
  ASSERT_EQ(c->CurrentLayout().lines.at(0).pieces.size(), 1u);
  EXPECT_EQ(c->CurrentLayout().lines[0].pieces[0].text, u"<i>literal</i>");
}

TEST_F(LabelTest, MarkupCaptionPicture) {
  auto l = Make<USLabel>(0, 0, 150, 20);
  l->BackStyle(1);
  l->BackColor(0xFFFFFF);
  l->ForeColor(0x000000);
  l->Font(FixedFont());
  l->Alignment(2);
  l->Caption(u"<b>Negrito</b> e <i>it\u00e1lico</i><br><u>sub</u> <s>riscado</s> <c=#C00000>cor</c>");
  const platform::CapturedImage img = Capture(*l);
  int w = 0, h = 0;
  std::vector<uint32_t> px = Stack({img}, w, h);
  test::ExpectGolden("controls", "label_markup", w, h, px);
}

}  // namespace
}  // namespace mx::controls::testing
