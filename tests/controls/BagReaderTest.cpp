// The saved-key reader the controls' ReadProperties share: a value that does not convert to the
// default's type gives Empty or the default, and the reading goes on.
#include <gtest/gtest.h>

#include "controls/ControlSupport.h"
#include "host/StdFont.h"

namespace mx::controls {
namespace {

using detail::BagReader;
using host::Variant;

host::PropertyBag DamagedBag() {
  host::PropertyBag bag;
  bag.WriteProperty(u"Count", Variant(u"many"));       // text where a number is read
  bag.WriteProperty(u"Huge", Variant(3.0e12));          // past a Long
  bag.WriteProperty(u"Flag", Variant(u"maybe"));        // text where a Boolean is read
  bag.WriteProperty(u"Font", Variant(std::make_shared<host::StdFont>()));
  bag.WriteProperty(u"Width", Variant(int32_t{1234}));  // a good value after the bad ones
  bag.WriteProperty(u"Name", Variant(int32_t{7}));      // a number read as text converts
  return bag;
}

TEST(BagReaderTest, UnconvertibleValuesGiveEmptyOrTheDefaultAndReadingGoesOn) {
  const host::PropertyBag bag = DamagedBag();
  const BagReader empty(bag);
  EXPECT_EQ(empty.Long(u"Count", 5), 0);
  EXPECT_EQ(empty.Long(u"Huge", 5), 0);
  EXPECT_FALSE(empty.Bool(u"Flag", true));
  EXPECT_EQ(empty.Text(u"Font", u"x"), u"");
  EXPECT_TRUE(empty.Read(u"Count", Variant(int32_t{5})).IsEmpty());
  EXPECT_EQ(empty.Picture(u"Font"), nullptr);  // a font is not a picture

  const BagReader defaults(bag, BagReader::kGivesDefault);
  EXPECT_EQ(defaults.Long(u"Count", 5), 5);
  EXPECT_EQ(defaults.Long(u"Huge", 5), 5);
  EXPECT_TRUE(defaults.Bool(u"Flag", true));
  EXPECT_EQ(defaults.Text(u"Font", u"x"), u"x");

  for (const BagReader* r : {&empty, &defaults}) {
    EXPECT_EQ(r->Long(u"Width", 0), 1234);
    EXPECT_EQ(r->Text(u"Name", u""), u"7");
    EXPECT_FLOAT_EQ(r->Single(u"Width", 0.5f), 1234.0f);
    // Absent keys give the default either way.
    EXPECT_EQ(r->Long(u"Missing", 42), 42);
    EXPECT_EQ(r->Picture(u"Missing"), nullptr);
  }
}

}  // namespace
}  // namespace mx::controls
