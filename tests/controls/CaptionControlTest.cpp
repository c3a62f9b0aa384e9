// The font members every caption-drawing control shares: each setter changes the font, marks its
// own key for the next save (the control's FontStrikeThru marks the host's "FontStrikethru"), and
// only then repaints; and the late-bound names reach the same setters.
#include <functional>

#include "SmallControlTestSupport.h"
#include "controls/USButton.h"
#include "controls/USCheckBox.h"
#include "controls/USLabel.h"
#include "controls/USOptionButton.h"
#include "controls/USProgressBar.h"
#include "host/StdFont.h"
#include "host/Variant.h"

namespace mx::controls::testing {
namespace {

using host::String;
using host::Variant;

// Notes, at each font repaint, how many keys had been marked, to tell the order of the two.
template <typename C>
class Probe : public C {
 public:
  size_t keysAtRepaint = 0;
  int repaints = 0;

 protected:
  void RepaintForFont() override {
    keysAtRepaint = this->ChangedProperties().size();
    ++repaints;
    C::RepaintForFont();
  }
};

template <typename C>
class CaptionFontTest : public SmallControlTest {};

using CaptionControls = ::testing::Types<USButton, USCheckBox, USOptionButton, USLabel, USProgressBar>;
TYPED_TEST_SUITE(CaptionFontTest, CaptionControls);

TYPED_TEST(CaptionFontTest, EachSetterChangesTheFontMarksItsKeyThenRepaints) {
  auto c = this->template Make<Probe<TypeParam>>(0, 0, 120, 24);
  CaptionControl& base = *c;
  struct Case {
    const char16_t* key;
    std::function<void(CaptionControl&)> set;
    std::function<bool(const CaptionControl&)> took;
  };
  const Case cases[] = {
      {u"FontBold", [](CaptionControl& x) { x.FontBold(!x.FontBold()); }, nullptr},
      {u"FontItalic", [](CaptionControl& x) { x.FontItalic(true); }, [](const CaptionControl& x) { return x.FontItalic(); }},
      {u"FontSize", [](CaptionControl& x) { x.FontSize(14.0f); },
       [](const CaptionControl& x) { return x.FontSize() > 13.0f && x.FontSize() < 15.0f; }},
      {u"FontStrikethru", [](CaptionControl& x) { x.FontStrikeThru(true); },
       [](const CaptionControl& x) { return x.FontStrikeThru() && x.Font()->Strikethrough(); }},
      {u"FontUnderline", [](CaptionControl& x) { x.FontUnderline(true); },
       [](const CaptionControl& x) { return x.FontUnderline(); }},
      {u"Font", [](CaptionControl& x) { x.Font(std::make_shared<host::StdFont>(u"Arial", 9.0)); },
       [](const CaptionControl& x) { return x.Font()->Name() == u"Arial" && !x.FontUnderline(); }},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(host::ToUtf8(k.key));
    const bool boldBefore = base.FontBold();
    const size_t keysBefore = c->ChangedProperties().size();
    const int paintsBefore = c->PaintCount();
    const int repaintsBefore = c->repaints;
    k.set(base);
    ASSERT_EQ(c->ChangedProperties().size(), keysBefore + 1);
    EXPECT_EQ(c->ChangedProperties().back(), String(k.key));
    EXPECT_EQ(c->repaints, repaintsBefore + 1);
    EXPECT_EQ(c->keysAtRepaint, keysBefore + 1);
    EXPECT_GT(c->PaintCount(), paintsBefore);
    if (k.took) EXPECT_TRUE(k.took(base));
    else EXPECT_NE(base.FontBold(), boldBefore);
  }
}

// By name, for the controls whose dispatch lists the font's styles.
class CaptionLateBindingTest : public SmallControlTest {};

TEST_F(CaptionLateBindingTest, LateBoundFontStylesReachTheSharedSetters) {
  auto button = Make<USButton>(0, 0, 100, 24);
  auto check = Make<USCheckBox>(0, 30, 100, 24);
  auto label = Make<USLabel>(0, 60, 100, 24);
  Variant on(true);
  for (host::UserControl* c : std::initializer_list<host::UserControl*>{button.get(), check.get(), label.get()}) {
    c->Invoke(u"fontitalic", host::CallKind::Let, std::span<Variant>(&on, 1));
    EXPECT_EQ(c->ChangedProperties().back(), String(u"FontItalic"));
    EXPECT_TRUE(c->Invoke(u"FontItalic", host::CallKind::Get, {}).ToBoolean());
  }
  for (host::UserControl* c : std::initializer_list<host::UserControl*>{button.get(), check.get()}) {
    c->Invoke(u"FontStrikeThru", host::CallKind::Let, std::span<Variant>(&on, 1));
    EXPECT_EQ(c->ChangedProperties().back(), String(u"FontStrikethru"));
    EXPECT_TRUE(c->Invoke(u"fontstrikethru", host::CallKind::Get, {}).ToBoolean());
  }
}

}  // namespace
}  // namespace mx::controls::testing
