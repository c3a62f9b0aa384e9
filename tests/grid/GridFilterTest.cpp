#include <gtest/gtest.h>

#include <vector>

#include "grid/GridData.h"
#include "host/Format.h"

namespace mx::grid {
namespace {

class GridFilterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host::InstallRegionalVariantText();
    g.AddColumn(u"Id");
    g.AddColumn(u"Fruit");
    for (const char16_t* item : {u"1\tapple", u"2\tBanana", u"3\tblueberry", u"4\tcherry", u"5\tJo\u00e3o Ma\u00e7\u00e3",
                                 u"6\t", u"7\tbanana split"})
      g.AddItem(item);
  }
  std::vector<bool> Visible() {
    std::vector<bool> out;
    for (int32_t r = 0; r < g.Rows(); ++r) out.push_back(g.RowVisible(r));
    return out;
  }
  GridData g;
};

TEST_F(GridFilterTest, FindItemModes) {
  EXPECT_EQ(g.FindItem(u"BANANA", 1), 1);                         // equal, without case
  EXPECT_EQ(g.FindItem(u"BANANA", 1, Search_Equal, true), -1);    // with case
  EXPECT_EQ(g.FindItem(u"Banana", 1, Search_Equal, true), 1);
  EXPECT_EQ(g.FindItem(u"bl", 1, Search_GreaterEqual), 2);        // "BLUEBERRY" >= "BL"; "APPLE", "BANANA" are not
  EXPECT_EQ(g.FindItem(u"split", 1, Search_Like), 6);
  EXPECT_EQ(g.FindItem(u"err", 1, Search_Like), 2);
  EXPECT_EQ(g.FindItem(u"ban", 1, Search_BeginsWith), 1);
  EXPECT_EQ(g.FindItem(u"RRY", 1, Search_EndsWith), 2);
  EXPECT_EQ(g.FindItem(u"banana split and more", 1, Search_BeginsWith), -1);
  EXPECT_EQ(g.FindItem(u"x", 1, 3), -1);  // not a mode
}

TEST_F(GridFilterTest, NavigateLandsOnTheFirstRowWithTheSameInitial) {
  g.Sort(1, Sort_Ascending);  // "", apple, Banana, banana split, blueberry, cherry, João
  EXPECT_EQ(g.FindItem(u"b", 1, Search_Navigate), 2);
  EXPECT_EQ(g.CellText(2, 1), u"Banana");
  EXPECT_EQ(g.FindItem(u"bl", 1, Search_Navigate), 4);
  // Past every "b" the next row starts with another letter: no match rather than "cherry".
  EXPECT_EQ(g.FindItem(u"bz", 1, Search_Navigate), -1);
  // The empty cell never matches, even though it is the first row.
  EXPECT_EQ(g.FindItem(u"a", 1, Search_Navigate), 1);
}

TEST_F(GridFilterTest, FindItemStartsWhereAskedAndSearchesHiddenRows) {
  EXPECT_EQ(g.FindItem(u"banana", 1, Search_BeginsWith, false, 2), 6);
  EXPECT_EQ(g.FindItem(u"banana", 1, Search_BeginsWith, false, 99), 1);  // out of range: from 0
  EXPECT_EQ(g.FindItem(u"banana", 1, Search_BeginsWith, false, -4), 1);
  g.RowVisible(1, false);
  EXPECT_EQ(g.FindItem(u"banana", 1), 1);
  EXPECT_EQ(g.FindItem(u"", 1), -1);
  // A negative column is the current one.
  g.Col(1);
  EXPECT_EQ(g.FindItem(u"cherry"), 3);
  g.Col(0);
  EXPECT_EQ(g.FindItem(u"4"), 3);
  EXPECT_EQ(g.FindItem(u"4", 5), -1);  // past the columns
  GridData empty;
  empty.AddColumn(u"A");
  EXPECT_EQ(empty.FindItem(u"a", 0), -1);
}

TEST_F(GridFilterTest, FilterOnShowsMatchesFromTheStartingRowOnly) {
  g.RowVisible(0, false);  // above the start: stays hidden
  g.FilterOn(u"b", 1, Search_BeginsWith, false, 1);
  EXPECT_EQ(Visible(), (std::vector<bool>{false, true, true, false, false, false, true}));
  EXPECT_EQ(g.Row(), 1);
  g.FilterOn(u"cherry", 1, Search_Equal, false, 2);
  // Row 1 lies above the start and keeps what it had.
  EXPECT_EQ(Visible(), (std::vector<bool>{false, true, false, true, false, false, false}));
  EXPECT_EQ(g.Row(), 3);
}

TEST_F(GridFilterTest, FilterLikeTrimsAndIgnoresAccentsInTheCells) {
  g.FilterOn(u"  joao maca ", 1, Search_Like);
  EXPECT_EQ(Visible(), (std::vector<bool>{false, false, false, false, true, false, false}));
  // With case, the upper-case search text misses the lower-case cell.
  g.FilterOn(u"JOAO", 1, Search_Like, true);
  EXPECT_EQ(Visible(), (std::vector<bool>(7, false)));
  // FilterOnEx always ignores case.
  g.FilterOnEx(u"BANANA", 1, Search_Like);
  EXPECT_EQ(Visible(), (std::vector<bool>{false, true, false, false, false, false, true}));
}

TEST_F(GridFilterTest, NothingLeftClearsTheSelectionAndTheCurrentRow) {
  g.Row(3);
  g.RowSelected(3, true);
  g.FilterOn(u"kiwi", 1);
  EXPECT_EQ(g.Row(), -1);
  EXPECT_EQ(g.SelectedCount(), 0);
  EXPECT_EQ(Visible(), (std::vector<bool>(7, false)));
}

TEST_F(GridFilterTest, FilterOffShowsRowsFromTheStartingRow) {
  g.FilterOn(u"kiwi", 1);
  g.FilterOff(4);
  EXPECT_EQ(Visible(), (std::vector<bool>{false, false, false, false, true, true, true}));
  // The current cell comes back on the first row that can hold it.
  EXPECT_EQ(g.Row(), 4);
  g.RowSelected(5, true);
  g.FilterOff(4);  // nothing changes: the selection stays
  EXPECT_EQ(g.SelectedCount(), 1);
  g.FilterOff();
  EXPECT_EQ(Visible(), (std::vector<bool>(7, true)));
  EXPECT_EQ(g.SelectedCount(), 0);
  EXPECT_EQ(g.Row(), 4);
}

}  // namespace
}  // namespace mx::grid
