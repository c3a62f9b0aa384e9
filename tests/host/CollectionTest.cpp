#include "host/Collection.h"

#include <gtest/gtest.h>

#include "host/Err.h"

namespace mx::host {
namespace {

// The error a statement raised, whole, or a number 0 when it raised none.
template <typename F>
RuntimeError ErrorOf(F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e;
  }
  return RuntimeError(0, {}, u"none");
}

String Text(const Collection& c) {
  String out;
  for (const Variant& v : c) out += v.ToString();
  return out;
}

TEST(Collection, KeysIgnoreCaseAndDuplicatesRaise457) {
  Collection c;
  c.Add(Variant(u"first"), Variant(u"Ação"));
  EXPECT_EQ(c.Item(Variant(u"AÇÃO")).ToString(), u"first");
  EXPECT_EQ(c.Item(Variant(u"ação")).ToString(), u"first");
  EXPECT_TRUE(c.Contains(u"aÇão"));
  EXPECT_FALSE(c.Contains(u"acao"));

  RuntimeError dup = ErrorOf([&] { c.Add(Variant(u"second"), Variant(u"AçãO")); });
  EXPECT_EQ(dup.Number(), 457);
  EXPECT_EQ(dup.Description(), u"This key is already associated with an element of this collection");
  EXPECT_EQ(c.Count(), 1);  // the refused item is not added

  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(u"missing")); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { c.Add(Variant(1), Variant(7)); }).Number(), 13);  // keys are text
}

TEST(Collection, IndexIsOneBasedAndChecked) {
  Collection c;
  for (int i = 1; i <= 3; ++i) c.Add(Variant(i * 10));
  EXPECT_EQ(c.Item(Variant(1)).ToLong(), 10);
  EXPECT_EQ(c.Item(Variant(3)).ToLong(), 30);
  // Text is always a key, even when it reads as a number.
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(u"2")); }).Number(), 5);
}

TEST(Collection, BadIndexesRaise5) {
  Collection c;
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(1)); }).Number(), 5);
  c.Add(Variant(u"a"));
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(0)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(2)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { c.Remove(Variant(2)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(Variant(1.5)); }).Number(), 5);  // rounds to 2
  EXPECT_EQ(c.Item(Variant(0.5 + 0.6)).ToString(), u"a");
}

TEST(Collection, RemoveShiftsLaterItemsDown) {
  Collection c;
  c.Add(Variant(u"a"), Variant(u"ka"));
  c.Add(Variant(u"b"), Variant(u"kb"));
  c.Add(Variant(u"c"), Variant(u"kc"));
  c.Remove(Variant(1));
  EXPECT_EQ(c.Count(), 2);
  EXPECT_EQ(c.Item(Variant(1)).ToString(), u"b");
  EXPECT_EQ(c.Item(Variant(u"KC")).ToString(), u"c");
  c.Remove(Variant(u"kB"));
  EXPECT_EQ(Text(c), u"c");
  EXPECT_FALSE(c.Contains(u"kb"));
  c.Add(Variant(u"b2"), Variant(u"kb"));  // a removed key is free again
  EXPECT_EQ(Text(c), u"cb2");
}

TEST(Collection, BeforeAndAfterByIndexOrKey) {
  Collection c;
  c.Add(Variant(u"b"), Variant(u"kb"));
  c.Add(Variant(u"a"), Variant(), Variant(1));
  c.Add(Variant(u"d"));
  c.Add(Variant(u"c"), Variant(u"kc"), Variant(), Variant(u"KB"));
  c.Add(Variant(u"e"), Variant(), Variant(), Variant(4));
  EXPECT_EQ(Text(c), u"abcde");
  // Keys keep finding their items after insertions ahead of them.
  EXPECT_EQ(c.Item(Variant(u"kc")).ToString(), u"c");
  c.Remove(Variant(u"kc"));
  EXPECT_EQ(Text(c), u"abde");

  EXPECT_EQ(ErrorOf([&] { c.Add(Variant(u"x"), Variant(), Variant(1), Variant(2)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { c.Add(Variant(u"x"), Variant(), Variant(9)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { c.Add(Variant(u"x"), Variant(u"kx"), Variant(u"nokey")); }).Number(), 5);
  EXPECT_FALSE(c.Contains(u"kx"));  // a failed Add leaves nothing behind
  EXPECT_EQ(c.Count(), 4);
}

TEST(Collection, ManyItemsStayReachableByKeyAndIndex) {
  Collection c;
  constexpr int kCount = 20000;
  for (int i = 0; i < kCount; ++i) c.Add(Variant(i), Variant(u"Key" + Variant(i).ToString()));
  // Remove every third item from the front half, which renumbers everything behind.
  for (int i = 0; i < kCount / 2; i += 3) c.Remove(Variant(u"KEY" + Variant(i).ToString()));
  int removed = (kCount / 2 + 2) / 3;
  EXPECT_EQ(c.Count(), kCount - removed);
  for (int i = 0; i < kCount; i += 7) {
    bool gone = i < kCount / 2 && i % 3 == 0;
    EXPECT_EQ(c.Contains(u"key" + Variant(i).ToString()), !gone) << i;
    if (!gone) EXPECT_EQ(c.Item(Variant(u"key" + Variant(i).ToString())).ToLong(), i);
  }
  EXPECT_EQ(c.Item(Variant(c.Count())).ToLong(), kCount - 1);
  EXPECT_EQ(c.Item(Variant(1)).ToLong(), 1);
}

TEST(Collection, CopiesAreIndependent) {
  Collection a;
  a.Add(Variant(u"x"), Variant(u"k"));
  Collection b = a;
  b.Remove(Variant(u"k"));
  EXPECT_EQ(a.Count(), 1);
  EXPECT_EQ(a.Item(Variant(u"K")).ToString(), u"x");
  EXPECT_NE(a.ObjectId(), b.ObjectId());
}

TEST(Collection, ReachedByName) {
  auto c = std::make_shared<Collection>();
  Variant obj(c);
  CallByName(obj, u"add", CallKind::Method, {Variant(u"one"), Variant(u"k1")});
  CallByName(obj, u"Add", CallKind::Method, {Variant(u"zero"), Variant::Missing(), Variant(1)});
  EXPECT_EQ(CallByName(obj, u"Count", CallKind::Get).ToLong(), 2);
  EXPECT_EQ(CallByName(obj, u"", CallKind::Get, {Variant(u"K1")}).ToString(), u"one");
  EXPECT_EQ(CallByName(obj, u"Item", CallKind::Get, {Variant(1)}).ToString(), u"zero");
  CallByName(obj, u"Remove", CallKind::Method, {Variant(1)});
  EXPECT_EQ(c->EnumerateItems().size(), 1u);
  EXPECT_EQ(obj.TypeName(), u"Collection");
  EXPECT_EQ(ErrorOf([&] { CallByName(obj, u"Item", CallKind::Get); }).Number(), 449);
  EXPECT_EQ(ErrorOf([&] { CallByName(obj, u"Keys", CallKind::Get); }).Number(), 438);
}

}  // namespace
}  // namespace mx::host
