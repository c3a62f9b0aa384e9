// Hit testing, the header band (resize, swap, drag, click), the incremental search, the wheel,
// row check boxes and the tooltip of clipped cells.
#include "GridInputTestSupport.h"
#include "host/UserControl.h"

namespace mx::grid::testing {
namespace {

TEST_F(GridInputTest, HitTestingFollowsThePaintedColumnsAndRows) {
  auto g = MakeFilled(30, 200, 200);
  const int hb = g->Metrics().headerBottom;
  const int h = g->RowHeight(0);
  // Columns of 100, 60 and 60 pixels from the left edge.
  EXPECT_EQ(g->ColumnAtX(0), 0);
  EXPECT_EQ(g->ColumnAtX(99), 0);
  EXPECT_EQ(g->ColumnAtX(100), 1);
  EXPECT_EQ(g->ColumnAtX(219), 2);
  EXPECT_EQ(g->ColumnAtX(220), -1);
  // A row owns the pixel under its bottom edge: the first pixel past headerBottom + 1.
  EXPECT_EQ(g->RowAtY(hb), -1);
  EXPECT_EQ(g->RowAtY(hb + 1), 0);
  EXPECT_EQ(g->RowAtY(hb + h), 0);
  EXPECT_EQ(g->RowAtY(hb + h + 1), 1);
  // Hidden rows take no room; scrolled rows start at the first one shown.
  g->RowVisible(1, false);
  EXPECT_EQ(g->RowAtY(hb + h + 1), 2);
  g->SetScrollVerticalPosition(5);
  EXPECT_EQ(g->RowAtY(hb + 1), 5);
  // The row-number gutter is no column.
  g->ShowRowNumbers(true);
  const int gutter = static_cast<int>(g->RowNumberWidth());
  ASSERT_GT(gutter, 0);
  EXPECT_EQ(g->ColumnAtX(gutter - 1), -1);
  EXPECT_EQ(g->ColumnAtX(gutter), 0);
}

TEST_F(GridInputTest, HitTestingSkipsColumnsScrolledPastTheFrozenBlock) {
  auto g = MakeFilled(5, 240, 160);
  g->AddColumn(u"D", 900);
  g->AddColumn(u"E", 900);
  g->FreezeAtCol(0);
  ASSERT_TRUE(g->HorizontalScrollBarVisible());
  ClickCell(*g, 0, 0);
  // Right to the last column: the view scrolls, column 0 stays where it was.
  for (int i = 0; i < 4; ++i) Key(platform::VK_RIGHT);
  EXPECT_EQ(g->Col(), 4);
  EXPECT_EQ(g->GetScrollHorizontalPosition(), 3);
  EXPECT_EQ(g->ColumnAtX(50), 0);
  EXPECT_EQ(g->ColumnAtX(101), 3);
  const platform::RECT last = g->GetColumnRect(4);
  EXPECT_LE(last.right, g->VisibleWidth());
  // Back to column 1: it scrolls into view again.
  for (int i = 0; i < 3; ++i) Key(platform::VK_LEFT);
  EXPECT_EQ(g->Col(), 1);
  EXPECT_EQ(g->GetScrollHorizontalPosition(), 1);
}

TEST_F(GridInputTest, DraggingAHeaderEdgeResizesTheColumn) {
  auto g = MakeFilled();
  g->AllowColumnResizing(true);
  GridEventLog log(*g);
  const int y = HeaderCenter(*g, 0).y;
  MoveTo(*g, {101, y});
  EXPECT_EQ(g->MousePointer(), host::vbSizeWE);
  Button(true);
  MoveTo(*g, {131, y});
  EXPECT_EQ(g->ColWidthPixels(0), 130);
  EXPECT_FLOAT_EQ(g->ColWidth(0), 130 * 15.0f);
  // Never 40 pixels or narrower: the last width above it stays.
  MoveTo(*g, {41, y});
  EXPECT_EQ(g->ColWidthPixels(0), 130);
  MoveTo(*g, {43, y});
  EXPECT_EQ(g->ColWidthPixels(0), 42);
  Button(false);
  EXPECT_EQ(log.Events(), (std::vector<std::string>{"MouseDown", "ColumnSizeChanged(0,0)", "MouseUp", "Click"}));
  // The pointer over a cell is the default one again.
  MoveTo(*g, CellCenter(*g, 2, 1));
  EXPECT_EQ(g->MousePointer(), host::vbDefault);
}

TEST_F(GridInputTest, DoubleClickOnAHeaderEdgeSizesTheColumnToItsText) {
  auto g = MakeFilled();
  g->AllowColumnResizing(true);
  MoveTo(*g, {101, HeaderCenter(*g, 0).y});
  for (int i = 0; i < 2; ++i) {
    Button(true);
    Button(false);
  }
  const int fitted = g->ColWidthPixels(0);
  EXPECT_NE(fitted, 100);
  // The same width the column members give.
  g->ColWidth(0, 1500);
  g->SetColumnWidthAutoSize(0);
  EXPECT_EQ(g->ColWidthPixels(0), fitted);
}

TEST_F(GridInputTest, ResizeCursorOnlyWhereResizingIsAllowed) {
  auto g = MakeFilled();
  g->AllowColumnResizing(false);
  MoveTo(*g, {101, HeaderCenter(*g, 0).y});
  EXPECT_EQ(g->MousePointer(), host::vbDefault);
  g->AllowRowResizing(true);
  const int bottom = RowTopOf(*g, 2);
  MoveTo(*g, {150, bottom + 2});
  EXPECT_EQ(g->MousePointer(), host::vbSizeNS);
  Button(true);
  MoveTo(*g, {150, bottom + 12});
  Button(false);
  EXPECT_EQ(g->RowHeight(1), g->RowHeight(0) + 10);
}

TEST_F(GridInputTest, HeaderDragWithSwapExchangesTwoColumnsAndKeepsTheData) {
  auto g = MakeFilled(3);
  g->AllowColumnSwap(true);
  GridEventLog log(*g);
  ClickCell(*g, 1, 0);
  log.Clear();
  MoveTo(*g, HeaderCenter(*g, 0));
  Button(true);
  MoveTo(*g, HeaderCenter(*g, 1));
  MoveTo(*g, HeaderCenter(*g, 2));
  Button(false);
  EXPECT_EQ(g->ColOrder(), (std::vector<int32_t>{2, 1, 0}));
  EXPECT_EQ(g->ColHeading(0), u"Done");
  EXPECT_EQ(g->ColHeading(2), u"Name");
  // Storage is untouched: row 1's first stored cell is still its name.
  EXPECT_EQ(g->StoredRow(1).cells[0].text.Str(), u"Row 1");
  EXPECT_EQ(g->CellText(1, 2), u"Row 1");
  // The current cell followed its column.
  EXPECT_EQ(g->Col(), 2);
  EXPECT_EQ(log.Count("ColumnOrderChanged(0,2)"), 1);
  // A move is no click: no sort and no ColumnClick.
  EXPECT_EQ(log.Count("ColumnClick"), 0);
  // An edit open when the header is pressed is written to its own column first.
  g->AllowEdit(true);
  g->ForceCellEdit(0, 2);
  Type(u"Zed");
  MoveTo(*g, HeaderCenter(*g, 2));
  Button(true);
  EXPECT_FALSE(g->EditPending());
  MoveTo(*g, HeaderCenter(*g, 0));
  Button(false);
  EXPECT_EQ(g->StoredRow(0).cells[0].text.Str(), u"Zed");
}

TEST_F(GridInputTest, AMovedHeaderCellFollowsThePointerAndLeavesItsPlaceEmpty) {
  auto g = MakeFilled(3);
  g->AllowColumnSwap(true);
  const int y = HeaderCenter(*g, 1).y;
  const host::OLE_COLOR back = host::TranslateColor(g->BackColorBackground());
  ASSERT_NE(Capture(*g).color(105, y), back);
  MoveTo(*g, {110, y});
  Button(true);
  MoveTo(*g, {140, y});
  // Column 1 (100..160) is drawn 30 pixels on, pressed: its old left part is bare, and it
  // covers the start of column 2, which keeps its normal face past it.
  const auto img = Capture(*g);
  EXPECT_EQ(img.color(105, y), back);
  EXPECT_NE(img.color(135, y), back);
  EXPECT_NE(img.color(187, y), img.color(215, y));
  Button(false);
  EXPECT_NE(Capture(*g).color(105, y), back);
}

TEST_F(GridInputTest, HeaderDragWithDragMovesOneColumnAndShiftsTheOthers) {
  auto g = MakeFilled(3);
  g->AllowColumnDrag(true);
  MoveTo(*g, HeaderCenter(*g, 0));
  Button(true);
  MoveTo(*g, HeaderCenter(*g, 2));
  Button(false);
  EXPECT_EQ(g->ColOrder(), (std::vector<int32_t>{1, 2, 0}));
  EXPECT_EQ(g->CellText(2, 0), u"6");
  // Released off every column: nothing moves.
  MoveTo(*g, HeaderCenter(*g, 0));
  Button(true);
  MoveTo(*g, {g->VisibleWidth() - 5, HeaderCenter(*g, 0).y});
  Button(false);
  EXPECT_EQ(g->ColOrder(), (std::vector<int32_t>{1, 2, 0}));
}

TEST_F(GridInputTest, HeaderClickSortsAndRaisesColumnClickWithTheStorageColumn) {
  auto g = MakeFilled(4);
  g->AllowColumnSort(true);
  g->AllowColumnDrag(true);
  GridEventLog log(*g);
  ClickAt(*g, HeaderCenter(*g, 1));
  EXPECT_EQ(g->SortCol1(), 1);
  EXPECT_EQ(log.Events(), (std::vector<std::string>{"MouseDown", "ColumnClick(1)", "MouseUp", "Click"}));
  ClickAt(*g, HeaderCenter(*g, 1));
  EXPECT_EQ(g->CellText(0, 0), u"Row 3");  // descending on the second click
  // After the columns moved, ColumnClick still names the storage column.
  std::vector<int32_t>& order = g->ColOrder();
  std::swap(order[0], order[1]);
  g->Refresh();
  log.Clear();
  ClickAt(*g, HeaderCenter(*g, 0));
  EXPECT_EQ(log.Count("ColumnClick"), 1);
  EXPECT_EQ(log.Count("ColumnClick(1)"), 1);
}

TEST_F(GridInputTest, IncrementalSearchFindsRowsAsLettersArriveAndRestartsAfterASecond) {
  auto g = Make(10, 10, 260, 240);
  g->AddColumn(u"Name", 1500);
  for (const char16_t* n : {u"Alice", u"Bob", u"Bruno", u"Carla", u"Cecília"}) g->AddItem(n);
  platform::SetFocus(g->hWnd());
  platform::PumpMessages();
  Type(u"b");
  EXPECT_EQ(g->Row(), 1);
  platform::RunFor(400);
  Type(u"r");
  EXPECT_EQ(g->SearchText(), u"br");
  EXPECT_EQ(g->Row(), 2);
  // A second later the text starts again with the new letter.
  platform::RunFor(1000);
  Type(u"c");
  EXPECT_EQ(g->SearchText(), u"c");
  EXPECT_EQ(g->Row(), 3);
  Type(u"e");
  EXPECT_EQ(g->Row(), 4);
  EXPECT_EQ(SelectedRows(*g), std::vector<int>({4}));
  // No match leaves the current row where it was.
  Type(u"x");
  EXPECT_EQ(g->SearchText(), u"cex");
  EXPECT_EQ(g->Row(), 4);
}

TEST_F(GridInputTest, WheelScrollsByTheWheelLinesAndClosesTheEditorFirst) {
  auto g = MakeFilled(60, 260, 200);
  g->AllowEdit(true);
  g->ForceCellEdit(0, 0);
  ASSERT_TRUE(g->EditPending());
  MoveTo(*g, CellCenter(*g, 3, 1));
  platform::SetFocus(g->hWnd());
  platform::PumpMessages();
  platform::InjectWheel(-120);
  platform::PumpMessages();
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->GetScrollVerticalPosition(), 3);
}

TEST_F(GridInputTest, RowCheckBoxesFlipByClickInTheirSpanAndBySpace) {
  auto g = MakeFilled(5);
  g->RowCheckBoxes(true);
  GridEventLog log(*g);
  const int y = CellCenter(*g, 2, 0).y;
  ClickAt(*g, {12, y});
  EXPECT_TRUE(g->RowChecked(2));
  EXPECT_EQ(log.Count("RowChecked(2)"), 1);
  EXPECT_EQ(log.Count("SelectionChanged"), 0);
  // Just past the span it is an ordinary click.
  ClickAt(*g, {22, y});
  EXPECT_TRUE(g->RowChecked(2));
  EXPECT_EQ(SelectedRows(*g), std::vector<int>({2}));
  Key(platform::VK_SPACE);
  EXPECT_FALSE(g->RowChecked(2));
  // In a multi mode Space flips every selected row that is not locked.
  g->MultiSelect(Multi_Standard);
  ClickCellWith(*g, platform::VK_SHIFT, 4, 1);
  g->RowLocked(3, true);
  Key(platform::VK_SPACE);
  EXPECT_TRUE(g->RowChecked(2));
  EXPECT_FALSE(g->RowChecked(3));
  EXPECT_TRUE(g->RowChecked(4));
}

TEST_F(GridInputTest, BooleanCellFlipsOnItsBoxOnlyAndAfterEditCanRefuse) {
  auto g = MakeFilled(5);
  g->AllowEdit(true);
  GridEventLog log(*g);
  // The box of a centred boolean cell is 13 pixels wide in the middle of the column.
  const platform::RECT c = g->GetColumnRect(2);
  const int mid = (c.left + c.right) / 2, y = CellCenter(*g, 1, 2).y;
  ClickAt(*g, {mid, y});
  EXPECT_TRUE(g->CellChecked(1, 2));
  EXPECT_EQ(g->CellText(1, 2), u"True");
  EXPECT_TRUE(g->CellChanged(1, 2));
  EXPECT_EQ(log.Count("BeforeEdit(1,2)"), 1);
  EXPECT_EQ(log.LastValue(), u"True");
  ClickAt(*g, {c.left + 3, y});
  EXPECT_TRUE(g->CellChecked(1, 2));
  g->AfterEdit.connect([](int32_t, int32_t, host::String&, bool& cancel) { cancel = true; });
  ClickAt(*g, {mid, y});
  EXPECT_TRUE(g->CellChecked(1, 2));
}

TEST_F(GridInputTest, ClippedCellShowsItsWholeTextInATipOverTheCell) {
  auto g = MakeFilled(3);
  g->CellText(1, 0, u"A name far too long for a column one hundred pixels wide");
  MoveTo(*g, CellCenter(*g, 1, 0));
  const platform::HWND tip = g->ToolTipWindow();
  ASSERT_NE(tip, 0u);
  EXPECT_TRUE(platform::IsWindowVisible(tip));
  platform::RECT wr{};
  platform::GetWindowRect(tip, &wr);
  platform::POINT cell{0, RowTopOf(*g, 1)};
  platform::ClientToScreen(g->hWnd(), &cell);
  EXPECT_EQ(wr.left, cell.x);
  EXPECT_EQ(wr.top, cell.y);
  EXPECT_GT(wr.right - wr.left, 100);
  // The tip's colour is the system tooltip back.
  const auto img = platform::CaptureWindow(tip);
  EXPECT_EQ(img.color(5, 2), host::TranslateColor(host::vbInfoBackground));
  // A cell whose text fits shows none; the tip goes as the pointer moves on.
  MoveTo(*g, CellCenter(*g, 2, 0));
  EXPECT_FALSE(platform::IsWindowVisible(tip));
  g->AutoToolTips(false);
  MoveTo(*g, CellCenter(*g, 1, 0));
  EXPECT_FALSE(platform::IsWindowVisible(tip));
}

TEST_F(GridInputTest, MouseEnterAndExitOncePerVisit) {
  auto g = MakeFilled(3);
  int enters = 0, exits = 0;
  g->MouseEnter.connect([&] { ++enters; });
  g->MouseExit.connect([&] { ++exits; });
  MoveTo(*g, CellCenter(*g, 0, 0));
  MoveTo(*g, CellCenter(*g, 1, 1));
  EXPECT_EQ(enters, 1);
  platform::InjectMouseMove(600, 600);
  platform::PumpMessages();
  EXPECT_EQ(exits, 1);
  MoveTo(*g, CellCenter(*g, 1, 1));
  EXPECT_EQ(enters, 2);
}

}  // namespace
}  // namespace mx::grid::testing
