#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "grid/GridData.h"
#include "host/Err.h"
#include "host/Format.h"

namespace mx::grid {
namespace {

class GridSortTest : public ::testing::Test {
 protected:
  void SetUp() override { host::InstallRegionalVariantText(); }

  // The texts of a display column, top to bottom.
  std::vector<host::String> Column(int32_t col) {
    std::vector<host::String> out;
    for (int32_t r = 0; r < g.Rows(); ++r) out.push_back(g.CellText(r, col));
    return out;
  }
  std::vector<int32_t> Order() { return {g.RowOrder().begin(), g.RowOrder().begin() + g.Rows()}; }
  void Rows(std::initializer_list<const char16_t*> items) {
    for (const char16_t* item : items) g.AddItem(item);
  }

  GridData g;
};

using Texts = std::vector<host::String>;

TEST_F(GridSortTest, HeaderClicksCycleAscendingDescendingAndBackToTheFillOrder) {
  g.AddColumn(u"Fruit");
  Rows({u"pera", u"Abacate", u"uva", u"banana"});
  int completes = 0;
  g.SortComplete.connect([&] { ++completes; });

  g.SortByHeaderClick(0, false);
  EXPECT_EQ(Column(0), (Texts{u"Abacate", u"banana", u"pera", u"uva"}));
  EXPECT_EQ(g.SortCol1(), 0);
  EXPECT_EQ(g.ColSortState(0), 2);  // ascending is stored as 2

  g.SortByHeaderClick(0, false);
  EXPECT_EQ(Column(0), (Texts{u"uva", u"pera", u"banana", u"Abacate"}));
  EXPECT_EQ(g.ColSortState(0), 1);

  g.SortByHeaderClick(0, false);
  EXPECT_EQ(Order(), (std::vector<int32_t>{0, 1, 2, 3}));
  EXPECT_EQ(g.SortCol1(), -1);
  EXPECT_EQ(g.SortCol2(), -1);
  EXPECT_EQ(g.ColSortState(0), 0);
  EXPECT_EQ(completes, 3);
}

TEST_F(GridSortTest, PublicTypesAreStoredReversedAndCycleFromTheStoredState) {
  g.AddColumn(u"A");
  Rows({u"b", u"a", u"c"});
  g.Sort(0, Sort_Descending);
  EXPECT_EQ(g.ColSortState(0), 1);
  EXPECT_EQ(Column(0), (Texts{u"c", u"b", u"a"}));
  g.Sort(0, Sort_Ascending);
  EXPECT_EQ(g.ColSortState(0), 2);
  EXPECT_EQ(Column(0), (Texts{u"a", u"b", u"c"}));
  // -1 cycles on: ascending goes to descending.
  g.Sort(0);
  EXPECT_EQ(g.ColSortState(0), 1);
  g.Sort(0, Sort_Normal);
  EXPECT_EQ(Order(), (std::vector<int32_t>{0, 1, 2}));
  EXPECT_EQ(g.SortCol1(), -1);
}

TEST_F(GridSortTest, TextsCompareUpperCasedInBinaryOrder) {
  g.AddColumn(u"T", 500.0f, AlignToLeftCenter, TypeCustom);  // a custom column sorts as text
  Rows({u"b", u"_x", u"Zeta", u"\u00e9cole", u"a", u"10", u"9"});
  g.Sort(0, Sort_Ascending);
  // Digits < upper-case letters < "_" < Latin-1 letters; "10" before "9" as text.
  EXPECT_EQ(Column(0), (Texts{u"10", u"9", u"a", u"b", u"Zeta", u"_x", u"\u00e9cole"}));
}

TEST_F(GridSortTest, NumericColumnsSortByTheTextsValue) {
  g.AddColumn(u"N", 500.0f, AlignToRightCenter, TypeNumeric);
  Rows({u"1.500,00", u"&H10", u"200", u"-3", u"2,5", u"True"});
  g.Sort(0, Sort_Ascending);
  // -3, 1 (True), 2.5, 16, 200, 1500: the regional reading, the hex prefix and "True".
  EXPECT_EQ(Column(0), (Texts{u"-3", u"True", u"2,5", u"&H10", u"200", u"1.500,00"}));
  g.Sort(0, Sort_Descending);
  EXPECT_EQ(Column(0), (Texts{u"1.500,00", u"200", u"&H10", u"2,5", u"True", u"-3"}));
}

TEST_F(GridSortTest, TextsThatAreNotDatesGoLastAscendingAndFirstDescending) {
  g.AddColumn(u"D", 500.0f, AlignToLeftCenter, TypeDate);
  Rows({u"05/03/2024", u"not a date", u"31/12/1999", u"01/01/2030", u"32/01/2020"});
  g.Sort(0, Sort_Ascending);
  const Texts asc = Column(0);
  EXPECT_EQ((Texts{asc[0], asc[1], asc[2]}), (Texts{u"31/12/1999", u"05/03/2024", u"01/01/2030"}));
  EXPECT_EQ(Texts(asc.begin() + 3, asc.end()).size(), 2u);
  for (size_t i = 3; i < asc.size(); ++i) EXPECT_TRUE(asc[i] == u"not a date" || asc[i] == u"32/01/2020");
  g.Sort(0, Sort_Descending);
  const Texts desc = Column(0);
  for (size_t i = 0; i < 2; ++i) EXPECT_TRUE(desc[i] == u"not a date" || desc[i] == u"32/01/2020");
  EXPECT_EQ((Texts{desc[2], desc[3], desc[4]}), (Texts{u"01/01/2030", u"05/03/2024", u"31/12/1999"}));
}

TEST_F(GridSortTest, BooleanColumnsSortByTheCheckBit) {
  g.AddColumn(u"Name");
  g.AddColumn(u"Paid", 500.0f, AlignToLeftCenter, TypeBoolean);
  Rows({u"a\tTrue", u"b\tFalse", u"c\t1", u"d\t"});
  g.Sort(1, Sort_Ascending);
  const Texts names = Column(0);
  EXPECT_TRUE((Texts{names[0], names[1]} == Texts{u"b", u"d"}) || (Texts{names[0], names[1]} == Texts{u"d", u"b"}));
  EXPECT_FALSE(g.CellChecked(0, 1));
  EXPECT_FALSE(g.CellChecked(1, 1));
  EXPECT_TRUE(g.CellChecked(2, 1));
  EXPECT_TRUE(g.CellChecked(3, 1));
}

// Equal keys come out in the order the Hoare partition leaves them, not the fill order: five
// equal rows end as 4, 5, 3, 1, 2 (the outer swap pairs reverse them, then each side of two is
// swapped again). A stable sort would keep 1 to 5.
TEST_F(GridSortTest, EqualKeysFollowTheHoarePartition) {
  g.AddColumn(u"Key");
  g.AddColumn(u"Id");
  Rows({u"k\t1", u"k\t2", u"k\t3", u"k\t4", u"k\t5"});
  g.Sort(0, Sort_Ascending);
  EXPECT_EQ(Column(1), (Texts{u"4", u"5", u"3", u"1", u"2"}));
}

TEST_F(GridSortTest, SecondaryColumnSortsRunsOfEqualPrimaryTexts) {
  g.AddColumn(u"Group");
  g.AddColumn(u"Qty", 500.0f, AlignToRightCenter, TypeNumeric);
  Rows({u"y\t5", u"x\t1", u"y\t30", u"x\t20", u"x\t3", u"z\t7"});
  g.Sort(0, Sort_Ascending, 1, Sort_Descending);
  EXPECT_EQ(Column(0), (Texts{u"x", u"x", u"x", u"y", u"y", u"z"}));
  EXPECT_EQ(Column(1), (Texts{u"20", u"3", u"1", u"30", u"5", u"7"}));
  EXPECT_EQ(g.SortCol2(), 1);
  EXPECT_EQ(g.ColSortState(1), 1);
  // Without a type the second column takes the first one's direction.
  g.Sort(0, Sort_Descending, 1);
  EXPECT_EQ(Column(0), (Texts{u"z", u"y", u"y", u"x", u"x", u"x"}));
  EXPECT_EQ(Column(1), (Texts{u"7", u"30", u"5", u"20", u"3", u"1"}));
}

TEST_F(GridSortTest, SortColumnsFollowTheRules) {
  g.AddColumn(u"A");
  g.AddColumn(u"B");
  Rows({u"2\tb", u"1\ta"});
  // The same column twice is one sort.
  g.Sort(0, Sort_Ascending, 0, Sort_Descending);
  EXPECT_EQ(g.SortCol1(), 0);
  EXPECT_EQ(g.SortCol2(), -1);
  // Columns are display positions; the sort state keeps storage columns.
  std::swap(g.ColOrder()[0], g.ColOrder()[1]);
  g.Sort(0, Sort_Descending);
  EXPECT_EQ(g.SortCol1(), 1);
  EXPECT_EQ(Column(0), (Texts{u"b", u"a"}));
  // Past the table is the host's error 9; an empty grid returns before looking.
  try {
    g.Sort(2);
    FAIL() << "expected a run-time error";
  } catch (const host::RuntimeError& e) {
    EXPECT_EQ(e.Number(), host::kErrSubscriptOutOfRange);
  }
  GridData empty;
  empty.AddColumn(u"A");
  EXPECT_NO_THROW(empty.Sort(5));
}

TEST_F(GridSortTest, RowsKeepTheirFlagsDataAndTheCurrentRowThroughASort) {
  g.AddColumn(u"Name");
  g.AddColumn(u"Qty", 500.0f, AlignToRightCenter, TypeNumeric);
  Rows({u"c\t3", u"a\t1", u"b\t2"});
  g.RowChecked(0, true);
  g.RowSelected(1, true);
  g.RowData(2, 42);
  g.CellFontBold(2, 1, true);
  g.Row(0);  // "c"
  g.Sort(1, Sort_Ascending);
  EXPECT_EQ(Column(0), (Texts{u"a", u"b", u"c"}));
  EXPECT_EQ(g.Row(), 2);
  EXPECT_TRUE(g.RowChecked(2));
  EXPECT_FALSE(g.RowChecked(0));
  EXPECT_TRUE(g.RowSelected(0));
  EXPECT_EQ(g.RowData(1), 42);
  EXPECT_TRUE(g.CellFontBold(1, 1));
  EXPECT_EQ(g.SelectedCount(), 1);
}

TEST_F(GridSortTest, ShiftClickAddsAndCyclesTheSecondaryColumn) {
  g.AddColumn(u"Group");
  g.AddColumn(u"Name");
  Rows({u"x\tb", u"y\tz", u"x\ta", u"x\tc"});
  // Without a primary sort a shifted click is a plain one.
  g.SortByHeaderClick(1, true);
  EXPECT_EQ(g.SortCol1(), 1);
  EXPECT_EQ(g.SortCol2(), -1);

  g.SortByHeaderClick(0, false);
  EXPECT_EQ(g.SortCol1(), 0);
  g.SortByHeaderClick(1, true);  // held ascending from before: next is descending
  EXPECT_EQ(g.SortCol2(), 1);
  EXPECT_EQ(g.ColSortState(1), 1);
  EXPECT_EQ(Column(1), (Texts{u"c", u"b", u"a", u"z"}));
  g.SortByHeaderClick(1, true);  // descending -> none: the secondary sort goes
  EXPECT_EQ(g.SortCol2(), -1);
  EXPECT_EQ(g.ColSortState(1), 0);
  EXPECT_EQ(g.SortCol1(), 0);
  EXPECT_EQ(Column(0), (Texts{u"x", u"x", u"x", u"y"}));
  g.SortByHeaderClick(1, true);  // none -> ascending
  EXPECT_EQ(Column(1), (Texts{u"a", u"b", u"c", u"z"}));

  // A plain click on another column makes it primary and drops the secondary.
  g.SortByHeaderClick(1, false);
  EXPECT_EQ(g.SortCol1(), 1);
  EXPECT_EQ(g.SortCol2(), -1);
}

}  // namespace
}  // namespace mx::grid
