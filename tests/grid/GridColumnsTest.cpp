// Column operations on a live grid: the order and width files, restoring the order, sizing
// (auto size, stretch, force fit), the sort kept across fills, and the header's sort arrow.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "GridPaintTestSupport.h"
#include "host/Err.h"

namespace mx::grid::testing {
namespace {

using platform::COLORREF;

COLORREF Px(const USFlexGrid& g, int x, int y) {
  platform::PumpMessages();
  return platform::CaptureWindow(g.hWnd()).pixel(x, y) & 0xFFFFFF;
}

class GridColumnsTest : public GridPaintTest {
 protected:
  void SetUp() override {
    GridPaintTest::SetUp();
    m_dir = std::filesystem::temp_directory_path() / ("mx_gridcolumns_" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_dir);
  }
  void TearDown() override {
    std::filesystem::remove_all(m_dir);
    GridPaintTest::TearDown();
  }
  host::String Path(const std::string& name) {
    const std::string p = (m_dir / name).string();
    return host::String(p.begin(), p.end());
  }
  std::string Read(const std::string& name) {
    std::ifstream in(m_dir / name, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  void Write(const std::string& name, const std::string& text) {
    std::ofstream(m_dir / name, std::ios::binary) << text;
  }
  static std::vector<int32_t> Order(USFlexGrid& g) { return g.ColOrder(); }

  std::filesystem::path m_dir;
};

TEST_F(GridColumnsTest, ColumnOrderFileRoundTrips) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 3);
  g->ColOrder() = {2, 0, 1};
  host::String error;
  ASSERT_TRUE(g->SaveColumnOrderToFile(Path("order.txt"), error));
  EXPECT_EQ(Read("order.txt"), "0\t2\r\n1\t0\r\n2\t1\r\n");
  g->RestoreColumnOrder();
  EXPECT_EQ(Order(*g), (std::vector<int32_t>{0, 1, 2}));
  EXPECT_EQ(g->ColHeading(0), u"Name");
  ASSERT_TRUE(g->LoadColumnOrderFromFile(Path("order.txt"), error));
  EXPECT_EQ(Order(*g), (std::vector<int32_t>{2, 0, 1}));
  EXPECT_EQ(g->ColHeading(0), u"Done");
  EXPECT_TRUE(error.empty());
  // Lines in any order, blank lines and LF endings are fine.
  Write("lf.txt", "2\t0\n\n0\t1\n1\t2\n");
  ASSERT_TRUE(g->LoadColumnOrderFromFile(Path("lf.txt"), error));
  EXPECT_EQ(Order(*g), (std::vector<int32_t>{1, 2, 0}));
}

TEST_F(GridColumnsTest, DamagedOrderFilesAreRefusedAndChangeNothing) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 2);
  g->ColOrder() = {1, 2, 0};
  const struct {
    const char* text;
    const char16_t* error;
  } cases[] = {
      {"0\t2\r\n1\t0\r\n2", u"Type mismatch"},            // truncated in the last line
      {"0\t2\r\n1\tx\r\n2\t1\r\n", u"Type mismatch"},     // not a number
      {"0\t9\r\n", u"Subscript out of range"},            // no such column
      {"-1\t0\r\n", u"Subscript out of range"},
      {"0\t1.5\r\n", u"Subscript out of range"},          // not a whole index
      {"0\t0\r\n", u"Invalid property value"},            // column 0 would show twice
      {"\xff\xfe" "0\t1\r\n", u"Type mismatch"},          // not Latin digits
  };
  int i = 0;
  for (const auto& c : cases) {
    const std::string name = "bad" + std::to_string(i++) + ".txt";
    Write(name, c.text);
    host::String error;
    EXPECT_FALSE(g->LoadColumnOrderFromFile(Path(name), error)) << c.text;
    EXPECT_EQ(error, c.error) << c.text;
    EXPECT_EQ(Order(*g), (std::vector<int32_t>{1, 2, 0})) << c.text;
  }
  host::String error;
  EXPECT_FALSE(g->LoadColumnOrderFromFile(Path("missing.txt"), error));
  EXPECT_EQ(error, u"File not found");
  EXPECT_FALSE(g->SaveColumnOrderToFile(Path("no/such/dir/order.txt"), error));
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(Order(*g), (std::vector<int32_t>{1, 2, 0}));
}

TEST_F(GridColumnsTest, ColumnWidthFileRoundTripsAndStopsAtABadLine) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 2);
  g->ColWidth(0, 1234.5f);
  g->ColWidth(2, 300);
  host::String error;
  ASSERT_TRUE(g->SaveColumnWidthsToFile(Path("w.txt"), error));
  EXPECT_EQ(Read("w.txt"), "0\t1234,5\r\n1\t901\r\n2\t300\r\n");  // the regional decimal sign
  g->ColWidth(0, 600);
  g->ColWidth(2, 600);
  ASSERT_TRUE(g->LoadColumnWidthsFromFile(Path("w.txt"), error));
  EXPECT_FLOAT_EQ(g->ColWidth(0), 1234.5f);
  EXPECT_EQ(g->ColWidthPixels(0), 82);
  EXPECT_FLOAT_EQ(g->ColWidth(2), 300);
  // A bad line ends the load there: the lines before it stay applied.
  Write("bad.txt", "0\t750\r\n1\tabc\r\n2\t1500\r\n");
  EXPECT_FALSE(g->LoadColumnWidthsFromFile(Path("bad.txt"), error));
  EXPECT_EQ(error, u"Type mismatch");
  EXPECT_FLOAT_EQ(g->ColWidth(0), 750);
  EXPECT_FLOAT_EQ(g->ColWidth(1), 901);
  EXPECT_FLOAT_EQ(g->ColWidth(2), 300);
  Write("huge.txt", "0\t1e300\r\n");
  EXPECT_FALSE(g->LoadColumnWidthsFromFile(Path("huge.txt"), error));
  EXPECT_EQ(error, u"Overflow");
  EXPECT_FLOAT_EQ(g->ColWidth(0), 750);
}

TEST_F(GridColumnsTest, RegistryMembersDoNothing) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 1);
  g->ColOrder() = {2, 1, 0};
  host::String error = u"untouched";
  g->SaveColumnOrderToRegistry(u"grid", error);
  g->LoadColumnOrderFromRegistry(u"grid", error);
  g->SaveColumnWidthsToRegistry(u"grid", error);
  g->LoadColumnWidthsFromRegistry(u"grid", error);
  EXPECT_EQ(error, u"untouched");
  EXPECT_EQ(Order(*g), (std::vector<int32_t>{2, 1, 0}));
}

TEST_F(GridColumnsTest, StretchColTakesWhatIsLeftEvenBelowZero) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 2);  // 100, 60 and 60 pixels
  ASSERT_FALSE(g->VerticalScrollBarVisible());
  g->StretchCol(0, 5);
  EXPECT_EQ(g->ColWidthPixels(0), 260 - 120 - 1 - 5);
  EXPECT_FLOAT_EQ(g->ColWidth(0), 134 * 15.0f);
  // Hidden columns do not count.
  g->ColVisible(2, false);
  g->StretchCol(0, 0);
  EXPECT_EQ(g->ColWidthPixels(0), 260 - 60 - 1);
  // A narrow remainder gives a negative width: stored as it is, and the paint goes on.
  g->ColVisible(2, true);
  g->StretchCol(0, 300);
  EXPECT_EQ(g->ColWidthPixels(0), 260 - 120 - 1 - 300);
  g->Refresh();
  // The columns after it start that much further left, here off the control altogether.
  EXPECT_EQ(g->GetColumnRect(1).left, -161);
  EXPECT_EQ(Px(*g, 250, g->Metrics().headerBottom + 5), 0xFFFFFFu);
}

TEST_F(GridColumnsTest, ForceFitFillsTheClientWidth) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 2);
  g->ColumnsForceFit();
  // 3900 host units shared in the ratio 1501 : 901 : 901.
  EXPECT_FLOAT_EQ(g->ColWidth(0), 1772);
  EXPECT_FLOAT_EQ(g->ColWidth(1), 1064);
  EXPECT_FLOAT_EQ(g->ColWidth(2), 1064);
  EXPECT_EQ(g->ColWidthPixels(0) + g->ColWidthPixels(1) + g->ColWidthPixels(2), 260);
  // A single column is left alone.
  auto one = Make(10, 200, 260, 100);
  one->AddColumn(u"Only", 900);
  one->ColumnsForceFit();
  EXPECT_FLOAT_EQ(one->ColWidth(0), 901);
}

TEST_F(GridColumnsTest, AutoSizeFollowsTypesTextsAndHeadings) {
  auto g = Make(10, 10, 400, 200);
  g->Redraw(false);
  g->AddColumn(u"N");
  g->AddColumn(u"Paid", 900, AlignToLeftCenter, TypeBoolean);
  g->AddColumn(u"Progress", 900, AlignToLeftCenter, TypeProgressBar);
  g->AddColumn(u"A much longer heading than any text");
  g->Redraw(true);
  // Before any row the heading alone counts.
  g->SetColumnWidthAutoSize(0);
  const float headingOnly = g->ColWidth(0);
  EXPECT_GT(headingOnly, 10 * 15.0f);
  EXPECT_EQ(static_cast<int>(headingOnly) % 15, 0);  // whole pixels in host units

  g->AddItem(u"short\tTrue\t50\tx");
  g->SetColumnWidthAutoSize(-1);
  const float one = g->ColWidth(0);
  EXPECT_GT(one, headingOnly);
  EXPECT_FLOAT_EQ(g->ColWidth(1), 480);  // boolean: a fixed width
  EXPECT_FLOAT_EQ(g->ColWidth(2), 901);  // progress bar: untouched
  const float heading = g->ColWidth(3);
  g->AddItem(u"a considerably longer text\tFalse\t10\ty");
  g->SetColumnWidthAutoSize(0);
  EXPECT_GT(g->ColWidth(0), one);
  EXPECT_FLOAT_EQ(g->ColWidth(3), heading);  // column 3 not asked
  // Bold text is wider than plain.
  const float plain = g->ColWidth(0);
  g->CellFontBold(1, 0, true);
  g->SetColumnWidthAutoSize(0);
  EXPECT_GT(g->ColWidth(0), plain);
}

TEST_F(GridColumnsTest, PreservedSortComesBackAfterAFill) {
  auto g = Make(10, 10, 260, 200);
  Fill(*g, 4);  // Qty 0, 3, 6, 9
  g->Sort(1, Sort_Descending);
  EXPECT_EQ(g->CellText(0, 1), u"9");
  // A fill keeps the sort and applies it at the end.
  g->BeginFill();
  for (const char16_t* item : {u"a\t5", u"b\t50", u"c\t-1"}) g->AddItem(item);
  g->EndFill();
  EXPECT_EQ(g->CellText(0, 1), u"50");
  EXPECT_EQ(g->CellText(2, 1), u"-1");
  EXPECT_EQ(g->SortCol1(), 1);
  EXPECT_EQ(g->ColSortState(1), 1);
  // A row added after the sort finds its place at the next Redraw.
  g->Redraw(false);
  g->AddItem(u"d\t70");
  g->Redraw(true);
  EXPECT_EQ(g->CellText(0, 0), u"d");
  // Without the property a Clear forgets the sort.
  g->PreserveSortedColumns(false);
  g->BeginFill();
  for (const char16_t* item : {u"a\t5", u"b\t50", u"c\t-1"}) g->AddItem(item);
  g->EndFill();
  EXPECT_EQ(g->CellText(0, 0), u"a");
  EXPECT_EQ(g->SortCol1(), -1);
}

TEST_F(GridColumnsTest, TheArrowShowsWhileSortedAndGoesAfterTheCycle) {
  auto g = Make(10, 10, 260, 160);
  Fill(*g, 3);
  g->ArrowColor(0x0000FF);
  // The primary arrow is 9 by 5 pixels, 12 pixels from the right edge of column 0 (100 wide);
  // its middle column is always drawn.
  const int x = 100 - 12 + 4, y = (g->Metrics().headerBottom - 5) / 2 + 2;
  EXPECT_NE(Px(*g, x, y), 0xFF0000u);
  g->SortByHeaderClick(0, false);
  EXPECT_EQ(Px(*g, x, y), 0xFF0000u);
  g->SortByHeaderClick(0, false);
  EXPECT_EQ(Px(*g, x, y), 0xFF0000u);
  g->SortByHeaderClick(0, false);
  EXPECT_EQ(g->SortCol1(), -1);
  EXPECT_NE(Px(*g, x, y), 0xFF0000u);
}

}  // namespace
}  // namespace mx::grid::testing
