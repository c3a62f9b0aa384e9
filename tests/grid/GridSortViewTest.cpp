// Sorting and filtering on a live grid: the open editor, the current row and the view.
#include "GridInputTestSupport.h"
#include "platform/MessageQueue.h"

namespace mx::grid::testing {
namespace {

class GridSortViewTest : public GridInputTest {};

TEST_F(GridSortViewTest, ASortClosesTheEditorFirstAndSortsItsValue) {
  auto g = MakeFilled(4);  // Qty 0, 3, 6, 9
  g->AllowEdit(true);
  g->ForceCellEdit(0, 1);
  ASSERT_TRUE(g->EditPending());
  g->EditControl()->Text(u"100");
  g->Sort(1, Sort_Descending);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(0, 1), u"100");
  EXPECT_EQ(g->CellText(0, 0), u"Row 0");
  EXPECT_EQ(g->Row(), 0);
}

TEST_F(GridSortViewTest, AnEditorThatRefusesToCloseStopsTheSort) {
  auto g = MakeFilled(4);
  g->AllowEdit(true);
  g->AfterEdit.connect([](int32_t, int32_t, host::String&, bool& cancel) { cancel = true; });
  int completes = 0;
  g->SortComplete.connect([&] { ++completes; });
  g->ForceCellEdit(0, 1);
  g->EditControl()->Text(u"100");
  g->Sort(1, Sort_Descending);
  EXPECT_TRUE(g->EditPending());
  EXPECT_EQ(g->SortCol1(), -1);
  EXPECT_EQ(g->ColSortState(1), 0);
  EXPECT_EQ(g->CellText(0, 0), u"Row 0");
  EXPECT_EQ(completes, 0);
}

TEST_F(GridSortViewTest, TheCurrentRowFollowsItsRowIntoView) {
  auto g = MakeFilled(30);
  ASSERT_TRUE(g->VerticalScrollBarVisible());
  g->Row(0);
  int moves = 0;
  g->RowColChanged.connect([&] { ++moves; });
  g->Sort(1, Sort_Descending);  // "Row 0" (Qty 0) goes to the bottom
  EXPECT_EQ(g->Row(), 29);
  EXPECT_EQ(g->CellText(29, 0), u"Row 0");
  EXPECT_EQ(moves, 1);
  platform::PumpMessages();
  EXPECT_GT(g->GetScrollVerticalPosition(), 0);
  EXPECT_EQ(g->RowLastVisible(), 29);
}

TEST_F(GridSortViewTest, AFilterMakesTheFirstRowShownCurrent) {
  auto g = MakeFilled(30);
  g->Row(2);
  int moves = 0;
  g->RowColChanged.connect([&] { ++moves; });
  g->FilterOn(u"Row 2", 0, Search_BeginsWith);  // Row 2, Row 20 to Row 29
  EXPECT_EQ(g->Row(), 2);
  EXPECT_EQ(moves, 0);
  g->FilterOn(u"Row 25", 0);
  EXPECT_EQ(g->Row(), 25);
  EXPECT_EQ(moves, 1);
  platform::PumpMessages();
  EXPECT_EQ(g->RowFirstVisible(), 25);
  g->FilterOn(u"nothing", 0);
  EXPECT_EQ(g->Row(), -1);
  EXPECT_EQ(moves, 2);
}

}  // namespace
}  // namespace mx::grid::testing
