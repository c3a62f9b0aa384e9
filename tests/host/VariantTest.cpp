#include "host/Variant.h"

#include <gtest/gtest.h>

#include <cmath>

#include "host/Err.h"
#include "host/Locale.h"
#include "host/Strings.h"

namespace mx::host {
namespace {

// These cases pin the invariant conversions, so the regional hooks that are Variant's default
// are switched off around each of them.
class Variant_ : public ::testing::Test {
 protected:
  void SetUp() override { m_saved = GetVariantTextHooks(); SetVariantTextHooks({}); }
  void TearDown() override { SetVariantTextHooks(m_saved); }
  VariantTextHooks m_saved;
};

template <typename F>
int32_t ErrorOf(F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

TEST_F(Variant_, VarTypeAndTypeNameOfEveryKind) {
  struct Case {
    Variant value;
    int32_t type;
    const char16_t* name;
  };
  const Case cases[] = {
      {Variant(), vbEmpty, u"Empty"},
      {Variant::Null(), vbNull, u"Null"},
      {Variant(int16_t{1}), vbInteger, u"Integer"},
      {Variant(1), vbLong, u"Long"},
      {Variant(1.0f), vbSingle, u"Single"},
      {Variant(1.0), vbDouble, u"Double"},
      {Variant(Currency{15000}), vbCurrency, u"Currency"},
      {Variant::FromDate(1), vbDate, u"Date"},
      {Variant(u"x"), vbString, u"String"},
      {Variant(true), vbBoolean, u"Boolean"},
      {Variant(uint8_t{1}), vbByte, u"Byte"},
      {CVErr(5), vbError, u"Error"},
      {Variant::Nothing(), vbObject, u"Nothing"},
      {Variant(std::make_shared<Object>()), vbObject, u"Object"},
      {Variant(ByteArray{1, 2}), vbArray + vbByte, u"Byte()"},
      {Variant(VariantArray(2)), vbArray + vbVariant, u"Variant()"},
      {Variant(std::vector<String>{u"a"}), vbArray + vbString, u"String()"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.VarType(), c.type) << ToUtf8(c.name);
    EXPECT_EQ(c.value.TypeName(), c.name);
  }
  // Wider C++ integers become a Long when they fit and a Double otherwise.
  EXPECT_EQ(Variant(int64_t{5}).VarType(), vbLong);
  EXPECT_EQ(Variant(int64_t{1} << 40).VarType(), vbDouble);
  EXPECT_EQ(Variant(uint32_t{0xFFFFFFFF}).VarType(), vbDouble);
}

TEST_F(Variant_, KindQueries) {
  EXPECT_TRUE(IsMissing(Variant::Missing()));
  EXPECT_TRUE(IsError(Variant::Missing()));
  EXPECT_FALSE(IsMissing(CVErr(5)));
  EXPECT_FALSE(IsMissing(Variant()));
  EXPECT_TRUE(IsObject(Variant::Nothing()));
  EXPECT_TRUE(Variant::Nothing().IsNothing());
  EXPECT_TRUE(IsArray(Variant(ByteArray{})));
  EXPECT_FALSE(IsArray(Variant(u"abc")));
  EXPECT_TRUE(IsEmpty(Variant()));
  EXPECT_FALSE(IsEmpty(Variant(u"")));
  EXPECT_TRUE(IsNull(Variant::Null()));
}

TEST_F(Variant_, IntegerConversionsRoundHalfToEven) {
  const std::pair<double, int32_t> cases[] = {
      {0.5, 0}, {1.5, 2}, {2.5, 2}, {3.5, 4}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2},
      {0.4999999, 0}, {0.5000001, 1}, {-2.6, -3}, {1e9 + 0.5, 1000000000},
  };
  for (auto [in, out] : cases) {
    EXPECT_EQ(Variant(in).ToLong(), out) << in;
    if (std::fabs(in) < 32767) EXPECT_EQ(Variant(in).ToInteger(), out) << in;
  }
  EXPECT_EQ(Variant(u"2.5").ToLong(), 2);
  EXPECT_EQ(Variant(u" 3.5 ").ToInteger(), 4);
  EXPECT_EQ(Variant(Currency{25000}).ToLong(), 2);  // 2.5 as Currency
  EXPECT_EQ(Variant(Currency{35000}).ToLong(), 4);
  EXPECT_EQ(Variant(Currency{-25001}).ToLong(), -3);
  EXPECT_EQ(Variant(2.5f).ToByte(), 2);
  EXPECT_EQ(Variant(true).ToInteger(), -1);
  EXPECT_EQ(Variant().ToLong(), 0);
}

TEST_F(Variant_, OverflowAtTheEdgesOfEachType) {
  EXPECT_EQ(Variant(32767).ToInteger(), 32767);
  EXPECT_EQ(Variant(-32768).ToInteger(), -32768);
  EXPECT_EQ(ErrorOf([] { (void)Variant(32768).ToInteger(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(-32769).ToInteger(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(32767.5).ToInteger(); }), 6);  // rounds up to 32768
  EXPECT_EQ(Variant(-32768.5).ToInteger(), -32768);                   // rounds to even, fits
  EXPECT_EQ(Variant(2147483647.0).ToLong(), 2147483647);
  EXPECT_EQ(Variant(-2147483648.0).ToLong(), INT32_MIN);
  EXPECT_EQ(ErrorOf([] { (void)Variant(2147483648.0).ToLong(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(2147483647.5).ToLong(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"3000000000").ToLong(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(Currency::FromUnits(1LL << 31)).ToLong(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(256).ToByte(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(-1).ToByte(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(1e39).ToSingle(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(1e300).ToCurrency(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"1e400").ToDouble(); }), 6);
  EXPECT_EQ(ErrorOf([] { (void)Variant(3e6).ToDate(); }), 6);
}

TEST_F(Variant_, TextThatIsNoNumberIsATypeMismatch) {
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"abc").ToLong(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"").ToDouble(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"1.2.3").ToDouble(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"12abc").ToDouble(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"maybe").ToBoolean(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(VariantArray(1)).ToLong(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)CVErr(5).ToString(); }), 0);  // "Error 5" is its text
  EXPECT_EQ(ErrorOf([] { (void)CVErr(5).ToLong(); }), 13);
  EXPECT_EQ(Variant(u"-1.5e2").ToDouble(), -150.0);
  EXPECT_EQ(Variant(u"&HFF").ToLong(), 255);
  EXPECT_EQ(Variant(u"&HFFFFFFFF").ToLong(), -1);
  EXPECT_EQ(Variant(u"&O17").ToLong(), 15);
  EXPECT_EQ(Variant(u".5").ToDouble(), 0.5);
}

TEST_F(Variant_, NullIsAnInvalidUseAndPropagatesThroughConcat) {
  Variant null = Variant::Null();
  EXPECT_EQ(ErrorOf([&] { (void)null.ToLong(); }), 94);
  EXPECT_EQ(ErrorOf([&] { (void)null.ToString(); }), 94);
  EXPECT_EQ(ErrorOf([&] { (void)null.ToBoolean(); }), 94);
  EXPECT_EQ(ErrorOf([&] { (void)null.ToDate(); }), 94);
  EXPECT_EQ(Concat(null, Variant(u"x")).ToString(), u"x");
  EXPECT_TRUE(Concat(null, null).IsNull());
  EXPECT_EQ(Concat(Variant(1), Variant(u"a")).ToString(), u"1a");
}

TEST_F(Variant_, BooleanRules) {
  EXPECT_TRUE(Variant(u"true").ToBoolean());
  EXPECT_FALSE(Variant(u" FALSE ").ToBoolean());
  EXPECT_TRUE(Variant(u"-3").ToBoolean());
  EXPECT_FALSE(Variant(u"0").ToBoolean());
  EXPECT_FALSE(Variant().ToBoolean());
  EXPECT_TRUE(Variant(0.1).ToBoolean());
  EXPECT_EQ(Variant(true).ToString(), u"True");
  EXPECT_EQ(Variant(true).ToDouble(), -1.0);
}

TEST_F(Variant_, InvariantTextOfNumbersAndDates) {
  EXPECT_EQ(Variant(0.1 + 0.2).ToString(), u"0.3");  // 15 significant digits hide the error
  EXPECT_EQ(Variant(1.0 / 3).ToString(), u"0.333333333333333");
  EXPECT_EQ(Variant(123456789012345.0).ToString(), u"123456789012345");
  EXPECT_EQ(Variant(1e15).ToString(), u"1E+15");
  EXPECT_EQ(Variant(0.0001).ToString(), u"0.0001");
  EXPECT_EQ(Variant(0.000015).ToString(), u"1.5E-05");
  EXPECT_EQ(Variant(-2.5).ToString(), u"-2.5");
  EXPECT_EQ(Variant(-0.0).ToString(), u"0");
  EXPECT_EQ(Variant(0.1f).ToString(), u"0.1");  // a Single shows 7 digits
  EXPECT_EQ(Variant(Currency{12345}).ToString(), u"1.2345");
  EXPECT_EQ(Variant(Currency{-15000}).ToString(), u"-1.5");
  EXPECT_EQ(Variant(Currency{INT64_MIN}).ToString(), u"-922337203685477.5808");
  EXPECT_EQ(Variant(Currency::FromDouble(1.23456)).ToString(), u"1.2346");
  EXPECT_EQ(Variant::FromDate(45292).ToString(), u"2024-01-01");
  EXPECT_EQ(Variant::FromDate(45292.75).ToString(), u"2024-01-01 18:00:00");
  EXPECT_EQ(Variant::FromDate(0.5).ToString(), u"12:00:00");
  EXPECT_EQ(Variant::FromDate(0).ToString(), u"1899-12-30");
  EXPECT_EQ(Variant::FromDate(-1.25).ToString(), u"1899-12-29 06:00:00");
  EXPECT_EQ(Variant(u"2024-02-29 06:30").ToDate().days, 45351.0 + 6.5 / 24);
  EXPECT_EQ(Variant(u"1899-12-29 06:00:00").ToDate().days, -1.25);
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"2023-02-29").ToDate(); }), 13);
  EXPECT_EQ(Variant(u"45292").ToDate().days, 45292.0);
}

TEST_F(Variant_, TextHooksReplaceTheInvariantForms) {
  VariantTextHooks saved = GetVariantTextHooks();
  VariantTextHooks comma;
  comma.numberToText = [](const Variant& v) { return Replace(InvariantNumberToText(v), u".", u","); };
  comma.textToNumber = [](StringView t) { return InvariantTextToNumber(Replace(t, u",", u".")); };
  SetVariantTextHooks(comma);
  EXPECT_EQ(Variant(2.5).ToString(), u"2,5");
  EXPECT_EQ(Variant(u"2,5").ToDouble(), 2.5);
  EXPECT_EQ(Variant(u"1,5").ToLong(), 2);
  EXPECT_EQ(Str(Variant(2.5)), u" 2.5");  // Str keeps the invariant form
  SetVariantTextHooks(saved);
  EXPECT_EQ(Variant(2.5).ToString(), u"2.5");
}

TEST(VariantRegional, DefaultsFollowTheRegionalSetting) {
  ScopedLocale brazil("pt-BR");
  EXPECT_EQ(Variant(2.5).ToString(), u"2,5");
  EXPECT_EQ(Variant(u"1.234,5").ToDouble(), 1234.5);
  ScopedLocale us("en-US");
  EXPECT_EQ(Variant(2.5).ToString(), u"2.5");
}

TEST_F(Variant_, ByteArraysAndText) {
  Variant bytes(ByteArray{'H', 0, 'i', 0, '!'});
  EXPECT_EQ(bytes.ToString(), String(u"Hi!"));
  EXPECT_EQ(Variant(u"\x263A").ToBytes(), (ByteArray{0x3A, 0x26}));
  EXPECT_EQ(LBound(bytes), 0);
  EXPECT_EQ(UBound(bytes), 4);
  EXPECT_EQ(UBound(Variant(ByteArray{})), -1);
  EXPECT_EQ(ErrorOf([] { (void)UBound(Variant(1)); }), 13);
}

TEST_F(Variant_, ArraysHaveBoundsDimensionsAndValueSemantics) {
  VariantArray grid({{1, 3}, {0, 2}}, vbVariant);  // (1 To 3, 0 To 1)
  EXPECT_EQ(grid.Dimensions(), 2);
  EXPECT_EQ(grid.LBound(1), 1);
  EXPECT_EQ(grid.UBound(1), 3);
  EXPECT_EQ(grid.UBound(2), 1);
  grid({3, 1}) = Variant(u"corner");
  EXPECT_EQ(grid.Items().back().ToString(), u"corner");  // first index fastest
  EXPECT_EQ(ErrorOf([&] { (void)grid({4, 0}); }), 9);
  EXPECT_EQ(ErrorOf([&] { (void)grid({0, 0}); }), 9);
  EXPECT_EQ(ErrorOf([&] { (void)grid[1]; }), 9);  // wrong number of indices
  EXPECT_EQ(ErrorOf([&] { (void)grid.UBound(3); }), 9);

  // Growing the last dimension keeps what is there; changing another one is refused.
  grid.ReDim({{1, 3}, {0, 3}}, true);
  EXPECT_EQ(grid({3, 1}).ToString(), u"corner");
  EXPECT_TRUE(grid({3, 2}).IsEmpty());
  EXPECT_EQ(ErrorOf([&] { grid.ReDim({{1, 4}, {0, 3}}, true); }), 9);

  VariantArray never;
  EXPECT_FALSE(never.IsAllocated());
  EXPECT_EQ(ErrorOf([&] { (void)never.UBound(); }), 9);

  // Copying a Variant copies its array, as assigning an array does.
  Variant a(VariantArray(std::vector<Variant>{1, 2, 3}));
  Variant b = a;
  (*b.Array())[0] = Variant(99);
  EXPECT_EQ((*a.Array())[0].ToLong(), 1);
  EXPECT_EQ(Join(b, u","), u"99,2,3");
  Variant strings(std::vector<String>{u"x", u"y"});
  EXPECT_EQ(UBound(strings), 1);
  EXPECT_EQ(VariantArray(2, 0, vbString)[1].VarType(), vbString);  // String arrays start as ""
}

TEST_F(Variant_, ComparisonAcrossTypes) {
  // Numbers compare by value whatever their kind.
  EXPECT_TRUE(Variant(int16_t{2}) == Variant(2.0));
  EXPECT_TRUE(Variant(true) == Variant(-1));
  EXPECT_TRUE(Variant(Currency{25000}) == Variant(2.5));
  EXPECT_TRUE(Variant(Currency{20000}) == Variant(2));
  EXPECT_TRUE(Variant(uint8_t{200}) > Variant(int16_t{-5}));
  EXPECT_TRUE(Variant::FromDate(45292) == Variant(45292));
  EXPECT_FALSE(Variant(0.1f) == Variant(0.1));  // a Single widened is not the Double
  // Strings compare by code units, or without case in text mode.
  EXPECT_TRUE(Variant(u"B") < Variant(u"a"));
  EXPECT_EQ(Compare(Variant(u"B"), Variant(u"a"), vbTextCompare), 1);
  EXPECT_EQ(Compare(Variant(u"abc"), Variant(u"ABC"), vbTextCompare), 0);
  // A number is less than any text; text of digits is still text.
  EXPECT_TRUE(Variant(100) < Variant(u"1"));
  EXPECT_TRUE(Variant(u"5") > Variant(5));
  // Empty is 0 beside a number and "" beside text.
  EXPECT_TRUE(Variant() == Variant(0));
  EXPECT_TRUE(Variant() == Variant(u""));
  EXPECT_TRUE(Variant() < Variant(u"a"));
  EXPECT_TRUE(Variant() == Variant());
  EXPECT_TRUE(Variant(-1) < Variant());
}

TEST_F(Variant_, NullMakesEveryComparisonFalse) {
  Variant null = Variant::Null();
  EXPECT_FALSE(Compare(null, Variant(1)).has_value());
  EXPECT_FALSE(Compare(Variant(u""), null).has_value());
  EXPECT_FALSE(null == null);
  EXPECT_FALSE(null != null);
  EXPECT_FALSE(null < Variant(1));
  EXPECT_FALSE(Variant(1) >= null);
  EXPECT_TRUE(Variant(1) != Variant(2));
}

TEST_F(Variant_, ComparisonRefusesArraysAndErrors) {
  EXPECT_EQ(ErrorOf([] { (void)(Variant(ByteArray{}) == Variant(1)); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)(CVErr(1) == Variant(1)); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)(Variant::Nothing() == Variant(1)); }), 91);
}

// An object with a default member and one method, reached by name.
class Counter : public Object {
 public:
  String TypeName() const override { return u"Counter"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override {
    if (name.empty() || TextEquals(name, u"Value")) {
      if (kind == CallKind::Let) {
        m_value = args.back().ToLong();
        return Variant();
      }
      return m_value;
    }
    if (TextEquals(name, u"Bump") && kind == CallKind::Method) {
      m_value += ArgumentAt(args, 0).IsMissing() ? 1 : ArgumentAt(args, 0).ToLong();
      if (args.size() > 1) args[1] = Variant(m_value);  // a by-reference output
      return m_value;
    }
    return Object::Invoke(name, kind, args);
  }

 private:
  int32_t m_value = 0;
};

TEST_F(Variant_, LateBoundObjects) {
  auto counter = std::make_shared<Counter>();
  Variant obj(counter);
  EXPECT_EQ(obj.TypeName(), u"Counter");
  EXPECT_EQ(CallByName(obj, u"BUMP", CallKind::Method).ToLong(), 1);
  EXPECT_EQ(CallByName(obj, u"bump", CallKind::Method, {Variant(5)}).ToLong(), 6);
  std::vector<Variant> args{Variant(2), Variant()};
  CallByNameRef(obj, u"Bump", CallKind::Method, args);
  EXPECT_EQ(args[1].ToLong(), 8);
  CallByName(obj, u"Value", CallKind::Let, {Variant(u"41")});
  // Where a value is wanted the default member answers.
  EXPECT_EQ(obj.ToLong(), 41);
  EXPECT_EQ(obj.ToString(), u"41");
  EXPECT_TRUE(obj == Variant(41.0));
  EXPECT_EQ(ErrorOf([&] { CallByName(obj, u"Nope", CallKind::Method); }), 438);
  EXPECT_EQ(ErrorOf([] { CallByName(Variant::Nothing(), u"Bump", CallKind::Method); }), 91);
  EXPECT_EQ(ErrorOf([] { CallByName(Variant(1), u"Bump", CallKind::Method); }), 424);
  EXPECT_EQ(ErrorOf([] { (void)Variant::Nothing().ToLong(); }), 91);
  EXPECT_EQ(ErrorOf([] { (void)Variant(std::make_shared<Object>()).ToLong(); }), 438);
  // Identity: the same object, a different one, two Nothings.
  Variant same(counter);
  EXPECT_TRUE(SameObject(obj, same));
  EXPECT_FALSE(SameObject(obj, Variant(std::make_shared<Counter>())));
  EXPECT_TRUE(SameObject(Variant::Nothing(), Variant::Nothing()));
  EXPECT_EQ(ErrorOf([] { (void)SameObject(Variant(1), Variant::Nothing()); }), 424);
  EXPECT_NE(counter->ObjectId(), Counter().ObjectId());
}

}  // namespace
}  // namespace mx::host
