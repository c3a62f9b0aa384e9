#include <gtest/gtest.h>

#include <cmath>

#include "host/Collection.h"
#include "host/Locale.h"
#include "utility/MX.h"

namespace mx::utility {
namespace {

using host::ToUtf8;
using host::Variant;

TEST(FormatFileSize, ThresholdsAndUnits) {
  host::ScopedLocale locale("pt-BR");
  MX mx;
  struct Case {
    double value;
    const char* text;
  } const cases[] = {
      {0, "0 Bytes"},
      {999, "999 Bytes"},
      {12.7, "12 Bytes"},
      {999.9, "0,98 Kb"},
      {-5, "-5 Bytes"},
      {1000, "0,98 Kb"},
      {1024, "1,00 Kb"},
      {1536, "1,50 Kb"},
      {1048575, "1.024,00 Kb"},
      {1048576, "1,00 Mb"},
      {1073741823, "1.024,00 Mb"},
      {1073741824, "1,00 Gb"},
      {1099511627776.0, "1,00 Tb"},
      {1125899906842624.0, "1,00 Pb"},
      {std::ldexp(1.0, 60), "1,00 Eb"},
      {std::ldexp(1.0, 70), "1,00 Zb"},
      {std::ldexp(1.5, 80), "1,50 Yb"},
      {std::ldexp(1.0, 90), "1.024,00 Yb"},  // no unit beyond Yb
  };
  for (const Case& c : cases) EXPECT_EQ(ToUtf8(mx.FormatFileSize(c.value)), c.text) << c.value;
  EXPECT_EQ(mx.FormatFileSize(std::nan("")), u"");

  host::ScopedLocale us("en-US");
  EXPECT_EQ(mx.FormatFileSize(1048575), u"1,024.00 Kb");
  EXPECT_EQ(mx.FormatFileSize(1536), u"1.50 Kb");
}

TEST(MilimeterToInche, RoundsToFivePlacesWithAPoint) {
  MX mx;
  for (const char* name : {"pt-BR", "en-US"}) {
    host::ScopedLocale locale(name);
    EXPECT_EQ(mx.MilimeterToInche(25.4), u"1") << name;
    EXPECT_EQ(mx.MilimeterToInche(10), u"0.3937") << name;
    EXPECT_EQ(mx.MilimeterToInche(1), u"0.03937") << name;
    EXPECT_EQ(mx.MilimeterToInche(100), u"3.93701") << name;
    EXPECT_EQ(mx.MilimeterToInche(-50), u"-1.9685") << name;
    EXPECT_EQ(mx.MilimeterToInche(0), u"0") << name;
  }
}

TEST(Values, FixNullFieldAndArrays) {
  host::ScopedLocale locale("pt-BR");
  MX mx;
  EXPECT_EQ(mx.FixNullField(Variant::Null()), u"");
  EXPECT_EQ(mx.FixNullField(Variant()), u"");
  EXPECT_EQ(mx.FixNullField(Variant(u"Ana")), u"Ana");
  EXPECT_EQ(mx.FixNullField(Variant(int32_t{42})), u"42");
  EXPECT_EQ(mx.FixNullField(Variant(1.5)), u"1,5");
  EXPECT_EQ(mx.FixNullField(Variant(host::VariantArray(3))), u"");  // no text form: nothing

  EXPECT_FALSE(mx.IsArrayHasBeenInitialized(Variant()));
  EXPECT_FALSE(mx.IsArrayHasBeenInitialized(Variant(u"abc")));
  EXPECT_FALSE(mx.IsArrayHasBeenInitialized(Variant(host::VariantArray())));  // never sized
  EXPECT_TRUE(mx.IsArrayHasBeenInitialized(Variant(host::VariantArray(0))));  // sized to nothing
  EXPECT_TRUE(mx.IsArrayHasBeenInitialized(Variant(host::VariantArray(3))));
  EXPECT_TRUE(mx.IsArrayHasBeenInitialized(Variant(host::ByteArray{1, 2})));
}

TEST(Values, JoinCollectionInOrder) {
  host::ScopedLocale locale("pt-BR");
  MX mx;
  host::Collection items;
  EXPECT_EQ(mx.JoinCollection(items), u"");
  items.Add(Variant(u"um"));
  EXPECT_EQ(mx.JoinCollection(items), u"um");
  items.Add(Variant(int32_t{2}));
  items.Add(Variant(2.5), Variant(u"chave"));
  EXPECT_EQ(mx.JoinCollection(items), u"um\r\n2\r\n2,5");
  EXPECT_EQ(mx.JoinCollection(items, u", "), u"um, 2, 2,5");
  // An item with no text form stops the join; what came before it is kept.
  items.Add(Variant(host::VariantArray(1)));
  items.Add(Variant(u"depois"));
  EXPECT_EQ(mx.JoinCollection(items, u";"), u"um;2;2,5;");
}

}  // namespace
}  // namespace mx::utility
