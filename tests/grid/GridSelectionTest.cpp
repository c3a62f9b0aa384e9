// Row selection and the current cell, by clicks and keys, in the three selection modes.
#include "GridInputTestSupport.h"

namespace mx::grid::testing {
namespace {

using platform::VK_CONTROL;
using platform::VK_SHIFT;

using Rows = std::vector<int>;

TEST_F(GridInputTest, SingleSelectClickSelectsOneRowAndCtrlClickClearsIt) {
  auto g = MakeFilled();
  GridEventLog log(*g);
  ClickCell(*g, 2, 1);
  EXPECT_EQ(g->Row(), 2);
  EXPECT_EQ(g->Col(), 1);
  EXPECT_EQ(SelectedRows(*g), Rows({2}));
  // The press moves the cell and the selection; the host's click comes after the up.
  EXPECT_EQ(log.Events(), (std::vector<std::string>{"RowColChanged", "CellClickEx(2,1)", "SelectionChanged",
                                                    "MouseDown", "MouseUp", "Click", "CellClick(2,1)"}));
  ClickCell(*g, 4, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({4}));
  // Ctrl on the selected row: everything cleared, the row toggled off.
  ClickCellWith(*g, VK_CONTROL, 4, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({}));
  EXPECT_EQ(g->Row(), 4);
}

TEST_F(GridInputTest, MultiStandardShiftExtendsFromTheAnchorAndCtrlAdds) {
  auto g = MakeFilled();
  g->MultiSelect(Multi_Standard);
  ClickCell(*g, 1, 0);
  ClickCellWith(*g, VK_SHIFT, 3, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({1, 2, 3}));
  EXPECT_EQ(g->Row(), 3);
  ClickCellWith(*g, VK_CONTROL, 5, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({1, 2, 3, 5}));
  // A Shift range is measured from the last plain or Ctrl click, and replaces the selection.
  ClickCellWith(*g, VK_SHIFT, 7, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({5, 6, 7}));
  ClickCell(*g, 2, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({2}));
}

TEST_F(GridInputTest, MultiLatchClicksToggleSingleRows) {
  auto g = MakeFilled();
  g->MultiSelect(Multi_Latch);
  ClickCell(*g, 1, 0);
  ClickCell(*g, 3, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({1, 3}));
  ClickCell(*g, 1, 0);
  EXPECT_EQ(SelectedRows(*g), Rows({3}));
}

TEST_F(GridInputTest, RightClickOnASelectedRowKeepsAMultiSelection) {
  auto g = MakeFilled();
  g->MultiSelect(Multi_Standard);
  ClickCell(*g, 1, 0);
  ClickCellWith(*g, VK_SHIFT, 3, 0);
  ClickAt(*g, CellCenter(*g, 2, 0), platform::MouseButton::Right);
  EXPECT_EQ(SelectedRows(*g), Rows({1, 2, 3}));
  EXPECT_EQ(g->Row(), 2);
  // On an unselected row it selects that row alone.
  ClickAt(*g, CellCenter(*g, 6, 0), platform::MouseButton::Right);
  EXPECT_EQ(SelectedRows(*g), Rows({6}));
}

TEST_F(GridInputTest, ClickOnALockedRowChangesNeitherSelectionNorCurrentRow) {
  auto g = MakeFilled();
  ClickCell(*g, 1, 0);
  g->RowLocked(3, true);
  GridEventLog log(*g);
  ClickCell(*g, 3, 0);
  EXPECT_EQ(g->Row(), 1);
  EXPECT_EQ(SelectedRows(*g), Rows({1}));
  EXPECT_EQ(log.Count("RowColChanged"), 0);
  EXPECT_EQ(log.Count("SelectionChanged"), 0);
}

TEST_F(GridInputTest, RowLetWalksPastLockedAndHiddenRowsAndOffTheEnd) {
  auto g = MakeFilled(6);
  g->RowLocked(2, true);
  g->RowVisible(3, false);
  g->Row(2);
  EXPECT_EQ(g->Row(), 4);
  g->RowLocked(5, true);
  g->Row(5);
  EXPECT_EQ(g->Row(), -1);
  g->Row(0);
  EXPECT_EQ(g->Row(), 0);
}

TEST_F(GridInputTest, ArrowsSkipHiddenAndLockedRowsAndCarryTheSelection) {
  auto g = MakeFilled();
  ClickCell(*g, 0, 0);
  g->RowVisible(1, false);
  g->RowLocked(2, true);
  Key(platform::VK_DOWN);
  EXPECT_EQ(g->Row(), 3);
  EXPECT_EQ(SelectedRows(*g), Rows({3}));
  Key(platform::VK_UP);
  EXPECT_EQ(g->Row(), 0);
  // Nothing above the first row: the key changes nothing.
  Key(platform::VK_UP);
  EXPECT_EQ(g->Row(), 0);
  KeyWith(VK_CONTROL, platform::VK_END);
  EXPECT_EQ(g->Row(), 9);
  KeyWith(VK_CONTROL, platform::VK_HOME);
  EXPECT_EQ(g->Row(), 0);
}

TEST_F(GridInputTest, ShiftArrowsExtendOnlyInMultiModes) {
  auto g = MakeFilled();
  ClickCell(*g, 2, 0);
  KeyWith(VK_SHIFT, platform::VK_DOWN);
  EXPECT_EQ(SelectedRows(*g), Rows({3}));  // single: the selection follows the cell
  g->MultiSelect(Multi_Standard);
  ClickCell(*g, 2, 0);
  KeyWith(VK_SHIFT, platform::VK_DOWN);
  KeyWith(VK_SHIFT, platform::VK_DOWN);
  EXPECT_EQ(SelectedRows(*g), Rows({2, 3, 4}));
  // Back up past the anchor: the range flips to the other side.
  for (int i = 0; i < 3; ++i) KeyWith(VK_SHIFT, platform::VK_UP);
  EXPECT_EQ(SelectedRows(*g), Rows({1, 2}));
  Key(platform::VK_DOWN);
  EXPECT_EQ(SelectedRows(*g), Rows({2}));
}

TEST_F(GridInputTest, LeftAndRightSkipLockedAndHiddenColumnsAndHomeEndReachTheEdges) {
  auto g = MakeFilled();
  g->AddColumn(u"Extra", 600);
  ClickCell(*g, 0, 0);
  g->ColLocked(1, true);
  Key(platform::VK_RIGHT);
  EXPECT_EQ(g->Col(), 2);
  g->ColVisible(3, false);
  Key(platform::VK_RIGHT);
  EXPECT_EQ(g->Col(), 2);
  Key(platform::VK_LEFT);
  EXPECT_EQ(g->Col(), 0);
  Key(platform::VK_END);
  EXPECT_EQ(g->Col(), 2);
  Key(platform::VK_HOME);
  EXPECT_EQ(g->Col(), 0);
}

TEST_F(GridInputTest, CtrlASelectsAllOnlyInMultiModes) {
  auto g = MakeFilled(5);
  ClickCell(*g, 1, 0);
  KeyWith(VK_CONTROL, 'A');
  EXPECT_EQ(g->SelectedCount(), 1);
  g->MultiSelect(Multi_Latch);
  KeyWith(VK_CONTROL, 'A');
  EXPECT_EQ(g->SelectedCount(), 5);
}

TEST_F(GridInputTest, PageDownMovesAPageAndScrollsTheCurrentRowIntoView) {
  auto g = MakeFilled(60, 260, 200);
  ASSERT_TRUE(g->VerticalScrollBarVisible());
  ClickCell(*g, 0, 0);
  const int page = g->RowsVisible();
  ASSERT_GT(page, 2);
  Key(platform::VK_NEXT);
  EXPECT_EQ(g->Row(), page - 1);
  Key(platform::VK_NEXT);
  EXPECT_EQ(g->Row(), 2 * (page - 1));
  // The current row shows whole: it lies between the first row and the last row fully shown.
  EXPECT_GE(g->Row(), g->GetScrollVerticalPosition());
  EXPECT_LT(g->Row(), g->GetScrollVerticalPosition() + page);
  KeyWith(VK_CONTROL, platform::VK_END);
  EXPECT_EQ(g->Row(), 59);
  EXPECT_EQ(g->RowLastVisible(), 59);
  Key(platform::VK_PRIOR);
  EXPECT_EQ(g->Row(), 59 - (page - 1));
}

TEST_F(GridInputTest, FocusRectHideShowsTheRectangleOnlyWhileFocused) {
  auto g = MakeFilled(4);
  g->FocusRectBorderColor(0x0000FF);  // apart from the selection's fill
  ClickCell(*g, 1, 1);
  const int y = RowTopOf(*g, 1);  // the rectangle's top edge runs along the row's top
  const platform::COLORREF border = host::TranslateColor(g->FocusRectBorderColor());
  EXPECT_EQ(Capture(*g).color(120, y), border);
  g->FocusRectHide(true);
  auto other = Make(300, 10, 60, 60);
  platform::SetFocus(other->hWnd());
  platform::PumpMessages();
  EXPECT_NE(Capture(*g).color(120, y), border);
  g->Refresh();  // any later paint keeps it hidden
  EXPECT_NE(Capture(*g).color(120, y), border);
  platform::SetFocus(g->hWnd());
  platform::PumpMessages();
  EXPECT_EQ(Capture(*g).color(120, y), border);
}

TEST_F(GridInputTest, DraggingOverRowsExtendsFromThePressedRow) {
  auto g = MakeFilled();
  g->MultiSelect(Multi_Standard);
  MoveTo(*g, CellCenter(*g, 2, 0));
  Button(true);
  MoveTo(*g, CellCenter(*g, 3, 0));
  MoveTo(*g, CellCenter(*g, 5, 0));
  Button(false);
  EXPECT_EQ(SelectedRows(*g), Rows({2, 3, 4, 5}));
  EXPECT_EQ(g->Row(), 5);
  // In single mode the drag carries the one selected row along.
  g->MultiSelect(Single_Select);
  MoveTo(*g, CellCenter(*g, 1, 0));
  Button(true);
  MoveTo(*g, CellCenter(*g, 4, 0));
  Button(false);
  EXPECT_EQ(SelectedRows(*g), Rows({4}));
}

TEST_F(GridInputTest, DraggingBelowTheRowsScrollsAPageAtATimeOnTheTimer) {
  auto g = MakeFilled(80, 260, 200);
  g->MultiSelect(Multi_Standard);
  const int page = g->RowsVisible();
  MoveTo(*g, CellCenter(*g, 1, 0));
  Button(true);
  MoveTo(*g, {50, static_cast<platform::LONG>(g->VisibleHeight() + 10)});
  const int before = g->GetScrollVerticalPosition();
  platform::RunFor(100);
  EXPECT_EQ(g->GetScrollVerticalPosition(), before + page);
  platform::RunFor(100);
  EXPECT_EQ(g->GetScrollVerticalPosition(), before + 2 * page);
  // The selection runs from the pressed row to the last row in view.
  EXPECT_EQ(SelectedRows(*g).front(), 1);
  EXPECT_EQ(SelectedRows(*g).back(), g->Row());
  EXPECT_GT(g->Row(), 2 * page);
  Button(false);
  const int after = g->GetScrollVerticalPosition();
  platform::RunFor(300);
  EXPECT_EQ(g->GetScrollVerticalPosition(), after);
}

}  // namespace
}  // namespace mx::grid::testing
