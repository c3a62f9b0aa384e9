// The property bag: the two defaults of a key, conversion on read, what counts as equal to a
// default, order and the keys a form file can hold.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "host/Err.h"
#include "host/FormFileReader.h"
#include "host/FormFileWriter.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"

using namespace mx::host;

namespace {

int32_t ErrorNumberOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

// A bag saved in a form file and loaded again, as a control's properties travel.
PropertyBag ThroughFormFile(const PropertyBag& bag) {
  FormFile form;
  form.root = FormBlock(u"Morvantix", u"USButton", u"cmd");
  form.root.bag = bag;
  FormFileBytes bytes = WriteFormText(form, u"cmd.frx");
  FrxReader frx(bytes.companion);
  FormFile back;
  FormFileError error;
  EXPECT_TRUE(ParseFormText(bytes.text, [&](StringView) { return &frx; }, back, error)) << error.Message();
  return back.root.bag;
}

}  // namespace

TEST(PropertyBag, AValueEqualToItsWrittenDefaultComesBackAsTheReadDefault) {
  PropertyBag bag;
  // A button saves its border colours against white and reads them against its own colours:
  // white is lost on a save.
  bag.WriteProperty(u"BorderColorDown", int32_t{0xFFFFFF}, int32_t{0xFFFFFF});
  bag.WriteProperty(u"BorderColorOver", int32_t{0x123456}, int32_t{0xFFFFFF});
  EXPECT_FALSE(bag.Contains(u"BorderColorDown"));
  PropertyBag loaded = ThroughFormFile(bag);
  EXPECT_EQ(loaded.ReadProperty(u"BorderColorDown", int32_t{0x501A00}).ToLong(), 0x501A00);
  EXPECT_EQ(loaded.ReadProperty(u"BorderColorOver", int32_t{0x7B3E00}).ToLong(), 0x123456);

  // Writing the default over an earlier value removes the key: the latest write decides.
  bag.WriteProperty(u"BorderColorOver", int32_t{0xFFFFFF}, int32_t{0xFFFFFF});
  EXPECT_FALSE(bag.Contains(u"BorderColorOver"));
  // Without a default, the value is always stored.
  bag.WriteProperty(u"Plain", int32_t{0});
  EXPECT_TRUE(bag.Contains(u"Plain"));
}

TEST(PropertyBag, DefaultsCompareAsTheHostCompares) {
  // Numbers by value across types; a Single at Single precision.
  EXPECT_TRUE(BagValuesEqual(int16_t{5}, int32_t{5}));
  EXPECT_TRUE(BagValuesEqual(5.0, uint8_t{5}));
  EXPECT_TRUE(BagValuesEqual(true, int16_t{-1}));
  EXPECT_TRUE(BagValuesEqual(0.1f, 0.1));
  EXPECT_FALSE(BagValuesEqual(0.1, 0.1000001));
  EXPECT_TRUE(BagValuesEqual(Currency{12345}, 1.2345));
  EXPECT_TRUE(BagValuesEqual(DateValue{2.0}, int32_t{2}));
  EXPECT_FALSE(BagValuesEqual(int32_t{0x501A00}, int32_t{0xFFFFFF}));
  // Text exactly.
  EXPECT_TRUE(BagValuesEqual(u"abc", u"abc"));
  EXPECT_FALSE(BagValuesEqual(u"abc", u"ABC"));
  EXPECT_TRUE(BagValuesEqual(u"", Variant()));
  EXPECT_FALSE(BagValuesEqual(u"x", int32_t{0}));
  // Fonts by description; pictures by bytes, an empty one equal to Nothing.
  auto a = std::make_shared<StdFont>(u"Tahoma", 8.25);
  auto b = std::make_shared<StdFont>(u"tahoma", 8.25);
  EXPECT_TRUE(BagValuesEqual(Variant(a), Variant(b)));
  b->Underline(true);
  EXPECT_FALSE(BagValuesEqual(Variant(a), Variant(b)));
  EXPECT_TRUE(BagValuesEqual(Variant(std::make_shared<StdPicture>()), Variant::Nothing()));
  auto gif = StdPicture::FromBytes({'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0});
  EXPECT_FALSE(BagValuesEqual(Variant(gif), Variant::Nothing()));
  EXPECT_TRUE(BagValuesEqual(Variant(gif), Variant(StdPicture::FromBytes(gif->Bytes()))));
  EXPECT_FALSE(BagValuesEqual(Variant(a), Variant::Nothing()));
  EXPECT_FALSE(BagValuesEqual(Variant::Nothing(), int32_t{0}));
  // Byte arrays byte by byte; nothing equals a Missing default.
  EXPECT_TRUE(BagValuesEqual(ByteArray{1, 2}, ByteArray{1, 2}));
  EXPECT_FALSE(BagValuesEqual(ByteArray{1, 2}, ByteArray{1}));
  EXPECT_FALSE(BagValuesEqual(Variant(), Variant::Missing()));

  PropertyBag bag;
  bag.WriteProperty(u"Font", Variant(a), Variant(std::make_shared<StdFont>(u"TAHOMA", 8.25)));
  bag.WriteProperty(u"MouseIcon", Variant(std::make_shared<StdPicture>()), Variant::Nothing());
  bag.WriteProperty(u"Value", false, int16_t{0});
  EXPECT_EQ(bag.Count(), 0);
}

TEST(PropertyBag, ReadConvertsToTheTypeOfTheDefault) {
  PropertyBag bag;
  bag.WriteProperty(u"Long", int32_t{300});
  bag.WriteProperty(u"Big", int32_t{70000});
  bag.WriteProperty(u"Text", u"12");
  bag.WriteProperty(u"Flag", int16_t{-1});
  bag.WriteProperty(u"Real", 2.5);

  Variant asInteger = bag.ReadProperty(u"Long", int16_t{0});
  EXPECT_EQ(asInteger.VarType(), vbInteger);
  EXPECT_EQ(asInteger.ToInteger(), 300);
  EXPECT_EQ(bag.ReadProperty(u"Long", u"").ToString(), u"300");
  EXPECT_EQ(bag.ReadProperty(u"Text", int32_t{0}).ToLong(), 12);
  EXPECT_EQ(bag.ReadProperty(u"Flag", false).VarType(), vbBoolean);
  EXPECT_TRUE(bag.ReadProperty(u"Flag", false).ToBoolean());
  EXPECT_EQ(bag.ReadProperty(u"Real", int32_t{0}).ToLong(), 2);  // half to even
  EXPECT_EQ(bag.ReadProperty(u"Real", Currency{}).ToCurrency(), Currency{25000});
  EXPECT_EQ(bag.ReadProperty(u"Text", uint8_t{0}).ToByte(), 12);
  // Without a default, or with an Empty one, the stored value as it is.
  EXPECT_EQ(bag.ReadProperty(u"Long").VarType(), vbLong);
  EXPECT_EQ(bag.ReadProperty(u"Long", Variant()).VarType(), vbLong);
  // Values that do not fit or do not convert raise the host's errors.
  EXPECT_EQ(ErrorNumberOf([&] { (void)bag.ReadProperty(u"Big", int16_t{0}); }), kErrOverflow);
  bag.WriteProperty(u"Word", u"abc");
  EXPECT_EQ(ErrorNumberOf([&] { (void)bag.ReadProperty(u"Word", int32_t{0}); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([&] { (void)bag.ReadProperty(u"Long", Variant::Nothing()); }), kErrTypeMismatch);
  // An absent key without a default is the host's error 327.
  EXPECT_EQ(ErrorNumberOf([&] { (void)bag.ReadProperty(u"Absent"); }), kErrDataValueNotFound);
  EXPECT_EQ(bag.ReadProperty(u"Absent", int16_t{7}).ToInteger(), 7);
}

TEST(PropertyBag, KeysIgnoreCaseAndKeepTheirWrittenOrder) {
  PropertyBag bag;
  bag.WriteProperty(u"Caption", u"a");
  bag.WriteProperty(u"Theme", int16_t{2});
  bag.WriteProperty(u"Alignment", int32_t{1});
  bag.WriteProperty(u"CAPTION", u"b");  // the same key: it keeps its place, in the latest spelling
  EXPECT_EQ(bag.Keys(), (std::vector<String>{u"CAPTION", u"Theme", u"Alignment"}));
  EXPECT_EQ(bag.ReadProperty(u"caption", u"").ToString(), u"b");
  EXPECT_TRUE(bag.Remove(u"THEME"));
  EXPECT_FALSE(bag.Remove(u"Theme"));
  EXPECT_EQ(bag.Keys(), (std::vector<String>{u"CAPTION", u"Alignment"}));
  EXPECT_EQ(ThroughFormFile(bag).Keys(), bag.Keys());
}

TEST(PropertyBag, FontsAreSnapshotsAndReadsGiveNewObjects) {
  auto font = std::make_shared<StdFont>(u"Tahoma", 8.25);
  PropertyBag bag;
  bag.WriteProperty(u"Font", Variant(font));
  font->Size(12.0);  // the control changes its font after the save
  auto first = std::dynamic_pointer_cast<StdFont>(bag.ReadProperty(u"Font", Variant::Nothing()).Obj());
  ASSERT_TRUE(first);
  EXPECT_EQ(first->SizePoints(), 8.25);
  first->Bold(true);
  auto second = std::dynamic_pointer_cast<StdFont>(bag.ReadProperty(u"Font", Variant::Nothing()).Obj());
  EXPECT_FALSE(second->Bold());
  EXPECT_NE(first.get(), second.get());
  // Copying a bag copies its fonts too.
  PropertyBag copy = bag;
  EXPECT_NE(copy.Find(u"Font")->value.Obj(), bag.Find(u"Font")->value.Obj());
  EXPECT_TRUE(copy.SameContents(bag));
}

TEST(PropertyBag, RefusesKeysAndValuesAFormFileCannotHold) {
  PropertyBag bag;
  for (StringView key : {StringView(u""), StringView(u"two words"), StringView(u"a=b"), StringView(u"q\"")}) {
    EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(key, int32_t{1}); }), kErrInvalidProcedureCall);
  }
  bag.WriteProperty(u"1Img", ByteArray{1});  // keys may start with a digit
  EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(u"List", Variant(std::vector<String>{u"a"})); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(u"Other", Variant(std::make_shared<PropertyBag>())); }),
            kErrTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([&] { bag.WriteProperty(u"Inf", std::numeric_limits<double>::infinity()); }), kErrTypeMismatch);
  EXPECT_EQ(bag.Keys(), std::vector<String>{u"1Img"});
}

TEST(PropertyBag, CompanionEntriesReadAsTextOrBytesAsAsked) {
  PropertyBag bag;
  BagEntry entry;
  entry.key = u"Text";
  entry.value = ByteArray{'A', 0xE7, '\r', '\n'};
  entry.companionBlob = true;
  bag.Put(entry);
  EXPECT_EQ(bag.ReadProperty(u"Text", u"").ToString(), u"A\u00E7\r\n");
  EXPECT_EQ(*bag.ReadProperty(u"Text", ByteArray{}).Bytes(), (ByteArray{'A', 0xE7, '\r', '\n'}));
  EXPECT_EQ(bag.ReadProperty(u"Text").Bytes()->size(), 4u);
  EXPECT_EQ(ErrorNumberOf([&] { (void)bag.ReadProperty(u"Text", 0.0); }), kErrTypeMismatch);

  // It equals the text or the bytes it holds.
  PropertyBag asText, asBytes, other;
  asText.WriteProperty(u"Text", u"A\u00E7\r\n");
  asBytes.WriteProperty(u"TEXT", ByteArray{'A', 0xE7, '\r', '\n'});
  other.WriteProperty(u"Text", u"A\u00E7\n");
  EXPECT_TRUE(bag.SameContents(asText));
  EXPECT_TRUE(asBytes.SameContents(bag));
  EXPECT_FALSE(bag.SameContents(other));
}

TEST(PropertyBag, RewritingTheSameValueKeepsTheFormItWasReadIn) {
  PropertyBag bag;
  BagEntry entry;
  entry.key = u"Mask";
  entry.value = int32_t{255};
  entry.style = ValueStyle::HexLong;
  entry.comment = u"kept";
  bag.Put(entry);
  bag.WriteProperty(u"Mask", int32_t{255}, int32_t{0});
  EXPECT_EQ(bag.Find(u"Mask")->style, ValueStyle::HexLong);
  EXPECT_EQ(bag.Find(u"Mask")->comment, u"kept");
  bag.WriteProperty(u"Mask", int32_t{256}, int32_t{0});
  EXPECT_EQ(bag.Find(u"Mask")->style, ValueStyle::Canonical);
  EXPECT_TRUE(bag.Find(u"Mask")->comment.empty());
}
