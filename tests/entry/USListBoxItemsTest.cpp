// USListBox's item table and its searches: growth, removal, errors from the table, the lookups'
// defaults, and Order carrying every field of an item with its text.
#include <gtest/gtest.h>

#include "entry/USListBoxTestSupport.h"
#include "host/Err.h"

using mx::entry::testing::ListBoxTest;
using mx::host::Variant;

namespace {

template <typename F>
int32_t ErrorNumber(F&& f) {
  try {
    f();
  } catch (const mx::host::RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

TEST_F(ListBoxTest, TableGrowsByCacheIncrementPastItsBound) {
  list->CacheIncrement(10);
  list->AddItem(Variant(u"first"));
  // The first item opens room for it and ten more.
  EXPECT_EQ(list->TableGrowths(), 1);
  EXPECT_GE(list->TableBound(), 11);
  Fill(10);
  EXPECT_EQ(list->TableGrowths(), 1);
  list->AddItem(Variant(u"twelfth"));
  EXPECT_EQ(list->TableGrowths(), 2);
  EXPECT_GE(list->TableBound(), 22);
  EXPECT_EQ(list->ListCount(), 12);
  EXPECT_EQ(list->Item(0).ToString(), u"first");
  EXPECT_EQ(list->Item(11).ToString(), u"twelfth");
  EXPECT_EQ(list->ItemData(5), 40);
  // A negative increment is the default one.
  list->CacheIncrement(-5);
  EXPECT_EQ(list->CacheIncrement(), 1000);
}

TEST_F(ListBoxTest, IndexOutsideTheTableIsARunTimeError) {
  EXPECT_EQ(ErrorNumber([&] { (void)list->Item(0); }), 9);
  list->RemoveItem(0);  // an empty list: nothing happens
  list->RemoveItem(7);
  Fill(3);
  EXPECT_EQ(ErrorNumber([&] { (void)list->ItemTag(3); }), 9);
  EXPECT_EQ(ErrorNumber([&] { list->ItemIcon(-1, 2); }), 9);
  EXPECT_EQ(ErrorNumber([&] { list->RemoveItem(3); }), 9);
  EXPECT_EQ(ErrorNumber([&] { list->ListIndex(3); }), 380);
  EXPECT_EQ(ErrorNumber([&] { list->ListIndex(-2); }), 380);
  EXPECT_EQ(list->ListCount(), 3);
}

TEST_F(ListBoxTest, RemoveItemKeepsTheCurrentItemOnItsRecord) {
  Fill(5);
  list->ListIndex(3);
  list->RemoveItem(1);
  EXPECT_EQ(list->ListIndex(), 2);
  EXPECT_EQ(list->Item(2).ToString(), u"Item 3");
  EXPECT_TRUE(list->ItemSelected(2));
  list->RemoveItem(2);
  EXPECT_EQ(list->ListIndex(), -1);
  list->Clear();
  EXPECT_EQ(list->ListCount(), 0);
  EXPECT_EQ(list->TopIndex(), 0);
}

TEST_F(ListBoxTest, LookupsAndTheirDefaults) {
  Fill(4);
  list->AddItem(Variant(u"São Paulo"), 77);
  list->AddItem(Variant(u"SANTOS"), 78);
  EXPECT_EQ(list->GetIndexFromData(77), 4);
  EXPECT_EQ(list->GetIndexFromData(12345), -1);
  EXPECT_EQ(list->GetIndexFromData(12345, false), 0);
  EXPECT_EQ(list->GetIndexFromStr(u"santos"), -1);
  EXPECT_EQ(list->GetIndexFromStr(u"santos", 1), 5);
  EXPECT_EQ(list->GetIndexFromStr(u"nowhere", 1, false), 0);
  // FindFirst ignores case; StartWith matches a beginning; StartIndex skips earlier items.
  EXPECT_EQ(list->FindFirst(u"são paulo"), 4);
  EXPECT_EQ(list->FindFirst(u"s"), -1);
  EXPECT_EQ(list->FindFirst(u"s", 0, true), 4);
  EXPECT_EQ(list->FindFirst(u"s", 5, true), 5);
  EXPECT_EQ(list->FindFirst(u"item 2", 3), -1);
  EXPECT_EQ(list->FindFirst(u"Item 10", 0, true), -1);
}

TEST_F(ListBoxTest, OrderCarriesEveryFieldWithItsText) {
  list->AddItem(Variant(u"delta"), 4, 3, 7, 0x0000FF, true, u"tip d", nullptr, true, u"tag d");
  list->AddItem(Variant(u"Alpha"), 1, 0, -1, -1, false, u"tip a", nullptr, false, u"tag a");
  list->AddItem(Variant(u"charlie"), 3);
  list->AddItem(Variant(u"bravo"), 2);
  list->SelectMode(mx::entry::Multiple);
  list->ItemSelected(0, true);
  list->ItemSelected(3, true);
  list->ListIndex(2);  // charlie is current
  list->Order();
  const char16_t* expected[] = {u"Alpha", u"bravo", u"charlie", u"delta"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(list->Item(i).ToString(), expected[i]);
    EXPECT_EQ(list->ItemData(i), i + 1);
  }
  EXPECT_EQ(list->ItemIcon(3), 3);
  EXPECT_EQ(list->ItemIconSelected(3), 7);
  EXPECT_EQ(list->ItemForeColor(3), 0x0000FF);
  EXPECT_EQ(list->ItemToolTip(3), u"tip d");
  EXPECT_TRUE(list->ItemSeparatorLine(3));
  EXPECT_EQ(list->ItemTag(3), u"tag d");
  EXPECT_FALSE(list->ItemEnabled(0));
  EXPECT_EQ(list->ItemTag(0), u"tag a");
  // The selected flags and the current item went with their items.
  EXPECT_TRUE(list->ItemSelected(3));
  EXPECT_TRUE(list->ItemSelected(1));
  EXPECT_FALSE(list->ItemSelected(0));
  EXPECT_FALSE(list->ItemSelected(2));
  EXPECT_EQ(list->ListIndex(), 2);

  list->OrderType(mx::entry::Descendent);
  list->Order();
  EXPECT_EQ(list->Item(0).ToString(), u"delta");
  EXPECT_EQ(list->Item(3).ToString(), u"Alpha");
  EXPECT_EQ(list->ItemData(0), 4);
}

TEST_F(ListBoxTest, OrderSortsALargeListWithDuplicates) {
  // A seeded shuffle of repeated keys: every neighbour pair ends in order and no item is lost.
  uint32_t seed = 12345;
  int64_t dataSum = 0;
  for (int i = 0; i < 3000; ++i) {
    seed = seed * 1103515245u + 12345u;
    const int key = static_cast<int>((seed >> 16) % 500);
    list->AddItem(Variant(mx::host::FromUtf8("k" + std::to_string(1000 + key))), i);
    dataSum += i;
  }
  list->Order();
  int64_t after = 0;
  for (int i = 0; i < list->ListCount(); ++i) {
    after += list->ItemData(i);
    if (i > 0) EXPECT_LE(list->Item(i - 1).ToString(), list->Item(i).ToString()) << i;
  }
  EXPECT_EQ(after, dataSum);
}

TEST_F(ListBoxTest, LateBoundMembersReachTheTable) {
  std::vector<Variant> add{Variant(u"x"), Variant(int32_t{5}), Variant::Missing(), Variant::Missing(),
                           Variant::Missing(), Variant(false)};
  EXPECT_EQ(list->Invoke(u"AddItem", mx::host::CallKind::Method, add).ToLong(), 0);
  std::vector<Variant> idx{Variant(int32_t{0})};
  EXPECT_EQ(list->Invoke(u"ItemData", mx::host::CallKind::Get, idx).ToLong(), 5);
  EXPECT_FALSE(list->Invoke(u"ItemEnabled", mx::host::CallKind::Get, idx).ToBoolean());
  EXPECT_EQ(list->ItemIcon(0), -1);
  EXPECT_EQ(list->Invoke(u"", mx::host::CallKind::Get, idx).ToString(), u"x");
  std::vector<Variant> let{Variant(int32_t{0}), Variant(u"tagged")};
  list->Invoke(u"ItemTag", mx::host::CallKind::Let, let);
  EXPECT_EQ(list->ItemTag(0), u"tagged");
  EXPECT_EQ(list->Invoke(u"ListCount", mx::host::CallKind::Get, {}).ToLong(), 1);
  std::vector<Variant> find{Variant(u"X")};
  EXPECT_EQ(list->Invoke(u"FindFirst", mx::host::CallKind::Method, find).ToLong(), 0);
}

}  // namespace
