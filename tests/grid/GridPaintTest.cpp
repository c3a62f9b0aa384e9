// Layout and painting of the grid: metrics, scroll ranges, which rows and columns are painted,
// stripes, selection, row heights, RequestRowData, and golden pictures of a small grid.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "GridPaintTestSupport.h"
#include "../support/Golden.h"
#include "host/Form.h"
#include "host/Recordset.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/ScrollBar.h"
#include "platform/Window.h"

namespace mx::grid::testing {
namespace {

using platform::COLORREF;

COLORREF Px(const USFlexGrid& g, int x, int y) {
  platform::PumpMessages();
  return platform::CaptureWindow(g.hWnd()).pixel(x, y) & 0xFFFFFF;
}
// OLE_COLOR 0xBBGGRR as the capture's 0xRRGGBB.
uint32_t Rgb(host::OLE_COLOR c) { return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF); }

TEST_F(GridPaintTest, HeaderHeightFollowsHeadersLinesAndCaption) {
  auto g = Make(10, 10, 300, 200);
  Fill(*g, 3);
  const int h = g->Metrics().headerTextHeight;
  ASSERT_GT(h, 0);
  g->ColumnHeaderLines(3);
  g->ColumnHeaderSmall(false);
  EXPECT_EQ(g->Metrics().headerHeight, h * (3 + 1));
  g->ColumnHeaderSmall(true);
  EXPECT_EQ(g->Metrics().headerHeight, static_cast<int>(std::lround(h + h * 3 / 3.0)));
  g->ColumnHeaders(false);
  g->Refresh();
  EXPECT_EQ(g->Metrics().headerHeight, 0);
  EXPECT_EQ(g->Metrics().headerBottom, 0);
  // The first row starts at the caption's bottom: its back fills from there.
  g->Caption(u"Title");
  g->CaptionHeight(24);
  EXPECT_EQ(g->Metrics().headerBottom, 24);
  g->GridLines(None_Lines);
  g->Refresh();
  EXPECT_EQ(Px(*g, 150, 25), Rgb(g->BackColorEvenRows()));  // display row 0 is the even stripe
  EXPECT_NE(Px(*g, 150, 23), Rgb(g->BackColorEvenRows()));
}

TEST_F(GridPaintTest, ScrollRangesFollowRowsAndSize) {
  auto g = Make(10, 10, 300, 200);
  Fill(*g, 3);
  EXPECT_FALSE(g->VerticalScrollBarVisible());
  Fill(*g, 0);  // adds three more columns and no rows: wider than the control
  EXPECT_TRUE(g->HorizontalScrollBarVisible());
  int lo = -1, hi = -1;
  platform::GetScrollRange(g->hWnd(), platform::SB_HORZ, &lo, &hi);
  EXPECT_EQ(hi, g->Cols() - 2);
  for (int i = 0; i < 40; ++i) g->AddItem(u"x\t1\t");
  EXPECT_TRUE(g->VerticalScrollBarVisible());
  platform::GetScrollRange(g->hWnd(), platform::SB_VERT, &lo, &hi);
  EXPECT_EQ(hi, g->LastRow() - 1);
  // The position is clamped into a smaller range, and the bar goes when all rows fit.
  g->SetScrollVerticalPosition(40);
  EXPECT_EQ(g->GetScrollVerticalPosition(), 40);
  g->Move(150, 150, 300 * 15, 2000 * 15);
  platform::PumpMessages();
  EXPECT_FALSE(g->VerticalScrollBarVisible());
  EXPECT_EQ(g->GetScrollVerticalPosition(), 0);
  g->ScrollBars(Scroll_None);
  g->Move(150, 150, 120 * 15, 100 * 15);
  platform::PumpMessages();
  EXPECT_FALSE(g->VerticalScrollBarVisible());
  EXPECT_FALSE(g->HorizontalScrollBarVisible());
  // Past Rows is ignored.
  g->ScrollBars(Scroll_Both);
  g->Refresh();
  g->SetScrollVerticalPosition(5);
  g->SetScrollVerticalPosition(g->Rows() + 1);
  EXPECT_EQ(g->GetScrollVerticalPosition(), 5);
}

TEST_F(GridPaintTest, ScrollBarClicksMoveTheView) {
  auto g = Make(10, 10, 300, 200);
  Fill(*g, 100);
  ASSERT_TRUE(g->VerticalScrollBarVisible());
  const int first = g->RowFirstVisible();
  platform::RECT wr;
  platform::GetWindowRect(g->hWnd(), &wr);
  const int barX = wr.right - 8;
  // The down arrow: one row.
  platform::InjectMouseMove(barX, wr.bottom - (g->HorizontalScrollBarVisible() ? 17 : 0) - 8);
  platform::InjectClick();
  platform::PumpMessages();
  EXPECT_EQ(g->RowFirstVisible(), first + 1);
  // The track below the thumb: a page of the rows in view.
  const int page = g->RowsVisible();
  platform::InjectMouseMove(barX, wr.top + 120);
  platform::InjectClick();
  platform::PumpMessages();
  EXPECT_EQ(g->RowFirstVisible(), first + 1 + page);
  EXPECT_EQ(platform::GetScrollPos(g->hWnd(), platform::SB_VERT), first + 1 + page);
}

TEST_F(GridPaintTest, FrozenColumnsStayWhileScrolled) {
  auto g = Make(10, 10, 260, 160);
  g->Redraw(false);
  for (int c = 0; c < 8; ++c) {
    const std::string h = "C" + std::to_string(c);
    g->AddColumn(host::String(h.begin(), h.end()), 900);
  }
  g->AddItem(u"a\tb\tc\td\te\tf\tg\th");
  g->FreezeAtCol(1);
  g->Redraw(true);
  ASSERT_TRUE(g->HorizontalScrollBarVisible());
  EXPECT_EQ(g->GetScrollHorizontalPosition(), 2);  // at least FreezeAtCol + 1
  platform::SendMessageW(g->hWnd(), platform::WM_HSCROLL, platform::SB_LINERIGHT, 0);
  platform::SendMessageW(g->hWnd(), platform::WM_HSCROLL, platform::SB_LINERIGHT, 0);
  EXPECT_EQ(g->GetScrollHorizontalPosition(), 4);
  // Columns 0 and 1 keep their places; column 4 follows them.
  EXPECT_EQ(g->GetColumnRect(0).left, 0);
  EXPECT_EQ(g->GetColumnRect(1).left, 60);
  EXPECT_EQ(g->GetColumnRect(4).left, 120);
  EXPECT_EQ(g->GetColumnRect(2).right - g->GetColumnRect(2).left, 0);
  // The line after the frozen block is twice as wide: pixels 118 and 119 are the grid colour,
  // where the line after column 0 is pixel 59 alone.
  g->GridColor(0x0000FF);
  const int y = g->Metrics().headerBottom + 5;
  EXPECT_EQ(Px(*g, 118, y), 0xFF0000u);
  EXPECT_EQ(Px(*g, 119, y), 0xFF0000u);
  EXPECT_NE(Px(*g, 120, y), 0xFF0000u);
  EXPECT_NE(Px(*g, 58, y), 0xFF0000u);
  EXPECT_EQ(Px(*g, 59, y), 0xFF0000u);
  EXPECT_NE(Px(*g, 60, y), 0xFF0000u);
}

TEST_F(GridPaintTest, HiddenRowsDoNotDisturbStripesAndGroupHeadersCount) {
  auto g = Make(10, 10, 300, 250);
  Fill(*g, 6);
  g->GridLines(None_Lines);
  g->BackColorEvenRows(0x00FFFF);
  g->RowVisible(1, false);
  g->RowVisible(2, false);
  g->RowGroupHeader(3, true);
  g->RowVisible(3, false);  // a group header is painted even when hidden
  g->Refresh();
  const int top = g->Metrics().headerBottom, h = g->RowHeight(0);
  // Rows 0, 3, 4, 5 are painted: even, odd, even, odd by the painted order.
  const uint32_t even = Rgb(0x00FFFF), odd = Rgb(g->BackColorBackground());
  EXPECT_EQ(Px(*g, 150, top + h / 2), even);
  EXPECT_EQ(Px(*g, 150, top + h + h / 2), odd);
  EXPECT_EQ(Px(*g, 150, top + 2 * h + h / 2), even);
  EXPECT_EQ(Px(*g, 150, top + 3 * h + h / 2), odd);
  EXPECT_EQ(g->RowLastVisible(), 5);
}

TEST_F(GridPaintTest, UnlimitedWordWrapRowsGrowAndLimitedOnesStop) {
  auto g = Make(10, 10, 300, 400);
  g->Redraw(false);
  g->AddColumn(u"Text", 1500, AlignToLeftCenter, TypeString, {}, {}, AlignToLeftCenter, true);
  g->AddItem(u"one two three four five six seven eight nine ten eleven twelve thirteen fourteen");
  g->AddItem(u"short");
  g->AllowWordWrap(true);
  g->Redraw(true);
  const int single = g->RowHeight(1);
  const int tall = g->RowHeight(0);
  EXPECT_GT(tall, single * 2);  // many lines in a 100-pixel column, no limit with MaxLineCount 0
  g->MaxLineCount(2);
  g->CellText(0, 0, u"one two three four five six seven eight nine ten eleven twelve thirteen fourteen!");
  g->Refresh();
  const int limit = g->Metrics().defaultRowHeight - g->MinVerticalOffset() * 2 - 1;
  EXPECT_EQ(g->RowHeight(0), limit * 2 + g->MinVerticalOffset() * 2);
  EXPECT_EQ(g->RowHeight(1), single);
}

TEST_F(GridPaintTest, SelectedRowPaintsOnlyWhenSelectionShows) {
  auto g = Make(10, 10, 300, 200);
  Fill(*g, 3);
  g->GridLines(None_Lines);
  g->FocusRectColor(0x00FF00);
  g->RowSelected(1, true);
  g->FocusRectMode(Focus_None);
  g->MultiSelect(Single_Select);
  const int y = g->Metrics().headerBottom + g->RowHeight(0) + 5;
  EXPECT_NE(Px(*g, 150, y), 0x00FF00u);
  g->MultiSelect(Multi_Standard);
  EXPECT_EQ(Px(*g, 150, y), 0x00FF00u);
  g->MultiSelect(Single_Select);
  g->FocusRectMode(Focus_Row);
  EXPECT_EQ(Px(*g, 150, y), 0x00FF00u);
}

TEST_F(GridPaintTest, RequestRowDataOnEmptyGridAndAfterPartialView) {
  auto g = Make(10, 10, 300, 200);
  std::vector<int> asked;
  g->RequestRowData.connect([&](int32_t r) { asked.push_back(r); });
  g->Refresh();
  g->Refresh();
  EXPECT_EQ(asked, (std::vector<int>{-1, -1}));
  asked.clear();
  Fill(*g, 50);
  asked.clear();
  g->Refresh();
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0], g->RowLastVisible());
  EXPECT_LT(g->RowLastVisible(), 20);  // only rows in view are walked
  asked.clear();
  g->Move(150, 150, 300 * 15, 3000 * 15);
  platform::PumpMessages();
  g->Refresh();
  EXPECT_TRUE(asked.empty());  // every row in view
}

TEST_F(GridPaintTest, WrapHeadingBreaksAfterNonLettersAndEndsLimitedText) {
  auto g = Make(10, 10, 300, 200);
  const host::String one = g->WrapHeading(u"  Quantity-ordered by_customer  ", 1000, 0);
  EXPECT_EQ(one, u"Quantity-ordered by_customer");
  const host::String two = g->WrapHeading(u"Quantity-ordered by customer", 60, 0);
  EXPECT_EQ(two.substr(0, 10), u"Quantity-\r");
  const host::String cut = g->WrapHeading(u"a b c d e f g h i j k l", 20, 2);
  EXPECT_EQ(cut.size() >= 3 ? cut.substr(cut.size() - 3) : cut, u"...");
  EXPECT_EQ(std::count(cut.begin(), cut.end(), u'\n'), 1);
}

TEST_F(GridPaintTest, RedrawOffBatchesEveryChangeIntoOnePaint) {
  auto g = Make(10, 10, 300, 200);
  int paints = 0;
  // An empty grid asks for data on every paint, which makes paints countable.
  g->RequestRowData.connect([&](int32_t) { ++paints; });
  g->Redraw(false);
  g->BackColorBackground(0x00FFFF);
  g->GridColor(0x0000FF);
  g->ShowRowNumbers(true);
  g->ColumnHeaderLines(2);
  EXPECT_EQ(paints, 0);
  g->Redraw(true);
  EXPECT_EQ(paints, 1);
  g->GridColor(0x00FF00);
  EXPECT_EQ(paints, 2);
  // Changed properties reach the host's dirty list.
  const auto& changed = g->ChangedProperties();
  EXPECT_NE(std::find(changed.begin(), changed.end(), u"GridColor"), changed.end());
}

TEST_F(GridPaintTest, ExampleFormReadsItsGridAndFillsFromTheDatabase) {
  RegisterControls();
  auto form = host::LoadFormFile(std::string(MX_SOURCE_DIR) + "/examples/grid.frm");
  ASSERT_TRUE(form);
  auto grid = std::dynamic_pointer_cast<USFlexGrid>(form->FindControl(u"grdOrders"));
  ASSERT_TRUE(grid);
  EXPECT_EQ(grid->Cols(), 8);
  EXPECT_EQ(grid->ColType(5), TypeProgressBar);
  EXPECT_EQ(grid->FreezeAtCol(), 0);
  EXPECT_EQ(grid->Caption(), u"Pedidos de 2024");
  auto connection = std::make_shared<host::Connection>();
  connection->Open(host::FromUtf8(std::string(MX_SOURCE_DIR) + "/examples/grid.db"));
  auto rs = host::Recordset::Create();
  rs->Open(u"SELECT Client, Qty, Price, Ordered, Paid, Progress, Action, Client FROM orders", connection);
  grid->FillGridFromQuery(host::Variant(rs));
  EXPECT_EQ(grid->Rows(), 3000);
  form->Show();
  platform::PumpMessages();
  EXPECT_TRUE(grid->VerticalScrollBarVisible());
  EXPECT_TRUE(grid->HorizontalScrollBarVisible());
  EXPECT_EQ(grid->GetScrollHorizontalPosition(), 1);  // past the frozen column
  EXPECT_TRUE(grid->CellChecked(0, 4));               // Paid 1 in the first order
  EXPECT_EQ(grid->RowFirstVisible(), 0);
  EXPECT_GT(grid->RowLastVisible(), 5);
  form->Unload();
}

// A small grid of every painted kind in the default theme and in theme 0.
void FillSample(USFlexGrid& g) {
  g.Redraw(false);
  g.Caption(u"Orders");
  g.CaptionHeight(22);
  g.ShowRowNumbers(true);
  g.RowCheckBoxes(true);
  g.TotalLineShow(true);  // totals add up as rows arrive
  g.AddColumn(u"Client", 1500);
  g.AddColumn(u"Qty", 700, AlignToRightCenter, TypeNumeric);
  g.AddColumn(u"Paid", 600, AlignToCenterCenter, TypeBoolean);
  g.AddColumn(u"Done", 1000, AlignToLeftCenter, TypeProgressBar);
  g.AddColumn(u"Act", 700, AlignToCenterCenter, TypeButton);
  const char16_t* rows[] = {u"Ana\t3\t\t20\tGo", u"Bruno\t12\t\t75\tGo", u"Carla\t7\t\t100\tGo", u"Davi\t1\t\t0\tGo"};
  for (auto* r : rows) g.AddItem(r);
  g.CellChecked(1, 2, true);
  g.RowChecked(2, true);
  g.CellFontBold(0, 0, true);
  g.TotalLineCaption(1, u"Sum");
  g.TotalLineColAlignment(1, AlignToRightCenter);
  g.SetSortCols(1, -1);
  g.StoredColumn(1).sortState = 2;
  g.Row(1);
  g.Redraw(true);
}

TEST_F(GridPaintTest, GoldenSmallGridInTwoThemes) {
  for (int theme : {2, 0}) {
    auto g = Make(10, 10, 360, 190);
    g->Theme(theme);
    FillSample(*g);
    const auto img = Capture(*g);
    test::ExpectGolden("grid", "small_grid_theme" + std::to_string(theme), img.width(), img.height(), Pixels(img), true);
  }
}

}  // namespace
}  // namespace mx::grid::testing
