#include "grid/GridData.h"

#include <gtest/gtest.h>

#include "frame/Themes.h"
#include "grid/GridNumeric.h"
#include "host/Err.h"
#include "host/Format.h"

namespace mx::grid {
namespace {

// A grid with a text, a numeric and a boolean column.
class GridDataTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host::InstallRegionalVariantText();
    g.AddColumn(u"Name");
    g.AddColumn(u"Amount", 500.0f, AlignToRightCenter, TypeNumeric);
    g.AddColumn(u"Paid", 500.0f, AlignToLeftCenter, TypeBoolean);
  }
  GridData g;
};

TEST_F(GridDataTest, TotalsRunFromAddItemAndMoveByDifference) {
  g.AddItem(u"a\t10");  // before the line is on: never counted
  g.TotalLineShow(true);
  g.AddItem(u"b\t2,5");
  g.AddItem(u"c\t&H10");
  EXPECT_DOUBLE_EQ(g.TotalColumns(1), 18.5);
  // Only the difference moves, even for the row added before the line was on: its old value
  // comes off a total it was never part of.
  g.CellText(0, 1, u"100");
  EXPECT_DOUBLE_EQ(g.TotalColumns(1), 108.5);
  g.CellText(1, 1, u"x");
  EXPECT_DOUBLE_EQ(g.TotalColumns(1), 106.0);
  g.TotalLineShow(false);
  g.CellText(2, 1, u"0");
  EXPECT_DOUBLE_EQ(g.TotalColumns(1), 106.0);
  // Text columns never total.
  EXPECT_DOUBLE_EQ(g.TotalColumns(0), 0.0);
}

TEST_F(GridDataTest, TabTextsBeyondOrShortOfTheColumns) {
  g.AddItem(u"a\t1\tTrue\tsurplus\tmore");
  g.AddItem(u"only");
  g.AddItem(u"");
  EXPECT_EQ(g.CellText(0, 0), u"a");
  EXPECT_EQ(g.CellText(0, 1), u"1");
  EXPECT_EQ(g.CellText(1, 0), u"only");
  EXPECT_EQ(g.CellText(1, 1), u"");
  EXPECT_FALSE(g.CellChecked(1, 2));
  EXPECT_EQ(g.CellText(2, 0), u"");
  // An empty middle text leaves its cell empty and the next text in its own column.
  g.AddItem(u"x\t\t1");
  EXPECT_EQ(g.CellText(3, 1), u"");
  EXPECT_TRUE(g.CellChecked(3, 2));
}

TEST_F(GridDataTest, BooleanColumnsKeepNoTextFromAddItem) {
  g.AddItem(u"a\t1\tTrue");
  g.AddItem(u"b\t1\t1");
  g.AddItem(u"c\t1\ttrue");  // only "True" and "1" check
  EXPECT_TRUE(g.CellChecked(0, 2));
  EXPECT_EQ(g.CellText(0, 2), u"");
  EXPECT_TRUE(g.CellChecked(1, 2));
  EXPECT_FALSE(g.CellChecked(2, 2));
  EXPECT_EQ(g.CellValue(0, 2).VarType(), host::vbBoolean);
  EXPECT_TRUE(g.CellValue(0, 2).ToBoolean());

  // CellChecked writes the text; CellText sets the bit from the text.
  g.CellChecked(2, 2, true);
  EXPECT_EQ(g.CellText(2, 2), u"True");
  EXPECT_TRUE(g.CellChanged(2, 2));
  EXPECT_TRUE(g.RowChanged(2));
  g.CellText(0, 2, u"no");
  EXPECT_FALSE(g.CellChecked(0, 2));
  EXPECT_TRUE(g.CellsChanged());
  EXPECT_FALSE(g.RowChanged(1));
}

TEST_F(GridDataTest, CacheIncrementSetsTheRowBound) {
  g.CacheIncrement(-5);
  EXPECT_EQ(g.CacheIncrement(), 1000);
  g.AddItem(u"0");
  EXPECT_EQ(g.RowReallocations(), 0);  // the first row fits the one allocated
  g.AddItem(u"1");
  EXPECT_EQ(g.RowCapacity(), 1002);
  for (int i = 0; i < 1000; ++i) g.AddItem(u"r");
  EXPECT_EQ(g.RowReallocations(), 1);  // 1002 rows fill the bound exactly
  g.AddItem(u"r");
  EXPECT_EQ(g.RowReallocations(), 2);
  EXPECT_EQ(g.RowCapacity(), 1003 + 1000);

  g.BeginFill(-1, 0);
  EXPECT_EQ(g.CacheIncrement(), 0);
  for (int i = 0; i < 5; ++i) g.AddItem(u"r");
  EXPECT_EQ(g.RowReallocations(), 4);  // every AddItem after the first
  EXPECT_EQ(g.RowCapacity(), 5);
  // BeginFill's default stores 1000, whatever was set before.
  g.BeginFill();
  EXPECT_EQ(g.CacheIncrement(), 1000);
}

TEST_F(GridDataTest, AddColumnPlacesByIndexButNeverFirst) {
  EXPECT_EQ(g.AddColumn(u"End", 500.0f, 4, TypeString, {}, {}, 4, false, 0), 3);
  EXPECT_EQ(g.AddColumn(u"Mid", 500.0f, 4, TypeString, {}, {}, 4, false, 1), 1);
  EXPECT_EQ(g.AddColumn(u"Past", 500.0f, 4, TypeString, {}, {}, 4, false, 99), 5);
  EXPECT_EQ(g.ColHeading(0), u"Name");
  EXPECT_EQ(g.ColHeading(1), u"Mid");
  EXPECT_EQ(g.ColHeading(4), u"End");
  EXPECT_EQ(g.ColHeading(5), u"Past");
  EXPECT_FLOAT_EQ(g.ColWidth(0), 501.0f);
  EXPECT_EQ(g.ColWidthPixels(0), 33);  // 501 twips at 15 per pixel
  EXPECT_EQ(g.ColInputFilter(2), u"1234567890.-,");
  GridData dates;
  dates.AddColumn(u"D", 500.0f, 4, TypeDate);
  EXPECT_EQ(dates.ColInputFilter(0), u"1234567890./-");
}

TEST_F(GridDataTest, AddColumnAfterRowsGivesEveryRowACell) {
  g.AddItem(u"a\t1");
  g.AddItem(u"b\t2");
  g.AddColumn(u"Wrapped", 500.0f, AlignToRightTop, TypeString, {}, {}, 4, true);
  EXPECT_EQ(g.CellAlignment(1, 3), AlignToRightTop);
  EXPECT_EQ(g.CellText(1, 3), u"");
  EXPECT_TRUE(g.CellWordWrap(1, 3));
  EXPECT_EQ(g.CellText(1, 0), u"b");
  // New rows take alignment 5 whatever the column says.
  g.AddItem(u"c\t3\t0\tw");
  EXPECT_EQ(g.CellAlignment(2, 3), AlignToCenterCenter);
  EXPECT_EQ(g.CellText(2, 3), u"w");
}

TEST_F(GridDataTest, FormatsAreInternedAndReused) {
  g.ForeColor(0x112233);
  g.AddItem(u"a");
  g.AddItem(u"b");
  ASSERT_EQ(g.Formats().size(), 1u);
  EXPECT_EQ(g.CellForeColor(0, 0), 0x112233);
  EXPECT_EQ(g.CellBackColor(0, 0), 0xFFFFFF);

  g.CellBackColor(0, 0, 0x0000FF);
  g.CellBackColor(1, 1, 0x0000FF);
  EXPECT_EQ(g.Formats().size(), 2u);
  EXPECT_EQ(g.Formats()[1].useCount, 2);
  // Back to the default colour finds the first record again.
  g.CellBackColor(0, 0, 0xFFFFFF);
  EXPECT_EQ(g.Formats().size(), 2u);
  EXPECT_EQ(g.CellBackColor(0, 0), 0xFFFFFF);
  EXPECT_EQ(g.Formats()[0].useCount, 2);
  // The old record keeps its count: it is only ever raised.
  EXPECT_EQ(g.Formats()[1].useCount, 2);
  // The same colour again costs nothing.
  g.CellForeColor(1, 1, 0x112233);
  EXPECT_EQ(g.Formats()[0].useCount, 2);

  g.CellFontName(0, 1, u"Arial");
  g.CellHandPointer(0, 1, true);
  g.CellImage(0, 1, 3);
  EXPECT_EQ(g.CellFontName(0, 1), u"Arial");
  EXPECT_TRUE(g.CellHandPointer(0, 1));
  EXPECT_EQ(g.CellImage(0, 1), 3);
  EXPECT_EQ(g.CellBackColor(0, 1), 0xFFFFFF);
}

TEST_F(GridDataTest, RowForeColorSharesColumnZerosRecord) {
  g.AddItem(u"a\t1");
  g.CellBackColor(0, 1, 0x00FF00);
  g.RowForeColor(0, 0x0000AA);
  // Every cell of the row takes column 0's format, the green back colour of column 1 included.
  EXPECT_EQ(g.CellForeColor(0, 1), 0x0000AA);
  EXPECT_EQ(g.CellBackColor(0, 1), 0xFFFFFF);
  g.Row(0);
  g.RowBackColor(-1, 0x00FF00);
  EXPECT_EQ(g.CellBackColor(0, 2), 0x00FF00);
}

TEST_F(GridDataTest, SearchByDataDefaultsToRowZero) {
  g.AddItem(u"a", -1, false, false, false, true, 10);
  g.AddItem(u"b", -1, false, false, false, true, 20);
  g.CellData(1, 2, 7);
  EXPECT_EQ(g.GetIndexFromData(20), 1);
  EXPECT_EQ(g.GetIndexFromData(99), 0);
  EXPECT_EQ(g.GetIndexFromData(99, true), -1);
  EXPECT_EQ(g.GetIndexFromCellData(7, 2), 1);
  EXPECT_EQ(g.GetIndexFromCellData(7, 1), 0);
  EXPECT_EQ(g.GetIndexFromCellData(7, 1, true), -1);
  GridData empty;
  EXPECT_EQ(empty.GetIndexFromData(0, true), -1);
}

TEST_F(GridDataTest, CommonCheckOutOfRange) {
  // An empty grid refuses everything quietly.
  g.CellText(0, 0, u"x");
  EXPECT_EQ(g.CellText(0, 0), u"");
  EXPECT_FALSE(g.RowChecked(-1));

  g.AddItem(u"first");
  g.AddItem(u"second\t5");
  g.AddItem(u"third\t7");
  // A row past the end is the last row; a column past the last is refused.
  EXPECT_EQ(g.CellText(99, 0), u"third");
  g.CellText(0, 3, u"nope");
  EXPECT_EQ(g.CellText(0, 3), u"");
  EXPECT_EQ(g.CellData(0, 3), 0);
  // No current row: a negative row is the first, if it is usable; a negative column is 0.
  EXPECT_EQ(g.CellText(-1, -1), u"first");
  g.RowLocked(0, true);
  EXPECT_EQ(g.CellText(-1, 0), u"");
  // With a current cell, negatives mean it, the column through colOrder.
  g.Row(1);
  g.Col(1);
  EXPECT_EQ(g.CellText(-1, -1), u"5");
  std::swap(g.ColOrder()[0], g.ColOrder()[1]);
  EXPECT_EQ(g.CellText(-1, -1), u"second");
  // Row let skips locked and hidden rows, and runs off the end to -1.
  g.RowVisible(2, false);
  g.Row(0);
  EXPECT_EQ(g.Row(), 1);
  g.Row(2);
  EXPECT_EQ(g.Row(), -1);
  // Storage members do no check.
  EXPECT_THROW(g.SetCellData(5, 0, 1), host::RuntimeError);
  EXPECT_THROW(g.SetRowData(-1, 1), host::RuntimeError);
}

TEST_F(GridDataTest, StorageIndexAgainstDisplayOrder) {
  g.AddItem(u"s0\t1");
  g.AddItem(u"s1\t2");
  EXPECT_EQ(g.AddItem(u"s2\t3", 0), 0);  // inserted at the top, stored last
  EXPECT_EQ(g.CellText(0, 0), u"s2");
  EXPECT_EQ(g.StorageRow(0), 2);
  // Storage members address storage rows; display members go through rowOrder.
  g.SetRowData(2, 42);
  EXPECT_EQ(g.RowData(0), 42);
  g.SetCellFontBold(0, 1, true);
  EXPECT_TRUE(g.CellFontBold(1, 1));
  // A column move: display 0 is now storage column 1.
  std::swap(g.ColOrder()[0], g.ColOrder()[1]);
  EXPECT_EQ(g.ColHeading(0), u"Amount");
  EXPECT_EQ(g.CellText(0, 0), u"3");
  g.SetColHeading(0, u"First shown");  // the one storage member that maps its column
  EXPECT_EQ(g.ColHeading(0), u"First shown");
  EXPECT_EQ(g.ColHeading(1), u"Name");
  // Totals: the let takes the storage column, the get the display column.
  g.TotalLineCaption(0, u"Sum");
  EXPECT_EQ(g.TotalLineCaption(1), u"Sum");
  EXPECT_EQ(g.TotalLineCaption(0), u"");
  // AddItem texts follow storage order.
  g.AddItem(u"s3\t4");
  EXPECT_EQ(g.CellText(3, 0), u"4");
}

TEST_F(GridDataTest, CombinedRowMembersAndFlags) {
  g.AddItem(u"a\t1");
  g.SetRowForeColorAndFontItalic(0, 0x0000FF, true, true);
  EXPECT_TRUE(g.RowChecked(0));
  EXPECT_TRUE(g.CellFontItalic(0, 0));
  EXPECT_TRUE(g.CellFontItalic(0, 2));
  EXPECT_EQ(g.CellForeColor(0, 2), 0x0000FF);
  g.SetRowCheckedAndFontStrikethrough(0, false, true);
  EXPECT_FALSE(g.RowChecked(0));
  EXPECT_TRUE(g.CellFontStrikethrough(0, 1));
  EXPECT_TRUE(g.CellFontItalic(0, 1));  // other bits stay

  g.AddItem(u"b", -1, true, true, true);
  EXPECT_TRUE(g.RowChecked(1));
  EXPECT_TRUE(g.RowMarkedAsNew(1));
  EXPECT_TRUE(g.RowLocked(1));
  EXPECT_TRUE(g.LastRowLocked());
  EXPECT_EQ(g.CheckedCount(), 1);
  g.CheckAllRowsVisibles();
  EXPECT_EQ(g.CheckedCount(), 2);
  g.InvertCheckedAllRowsVisibles();
  EXPECT_EQ(g.CheckedCount(), 0);
  g.RowSelected(0, true);
  g.CheckAllRowsSelected();  // needs RowCheckBoxes
  EXPECT_EQ(g.CheckedCount(), 0);
  g.RowCheckBoxes(true);
  g.CheckAllRowsSelected();
  EXPECT_TRUE(g.RowChecked(0));
  EXPECT_FALSE(g.RowChecked(1));
  g.SelectAllRows();
  EXPECT_EQ(g.SelectedCount(), 2);
  g.SelectedClearAll();
  EXPECT_EQ(g.SelectedCount(), 0);
}

TEST_F(GridDataTest, ProgressWordWrapAndColumnDefaults) {
  g.AddColumn(u"Done", 500.0f, 4, TypeProgressBar);
  g.AddItem(u"a\t1\t0\t");
  g.CellProgressValue(0, 3, 250);
  EXPECT_EQ(g.CellProgressValue(0, 3), 100);
  g.CellProgressValue(0, 3, -4);
  EXPECT_EQ(g.CellProgressValue(0, 3), 0);
  g.CellProgressValue(0, 0, 50);  // not a progress column
  EXPECT_EQ(g.CellProgressValue(0, 0), 0);
  // ColWordWrap reaches later cells only.
  g.ColWordWrap(0, true);
  EXPECT_TRUE(g.ColWordWrap(0));
  EXPECT_FALSE(g.CellWordWrap(0, 0));
  g.AddItem(u"b");
  EXPECT_TRUE(g.CellWordWrap(1, 0));
  EXPECT_TRUE(g.ColLocked(-1));
}

TEST_F(GridDataTest, BulkFormatOverDisplayRanges) {
  for (int i = 0; i < 4; ++i) g.AddItem(u"r");
  g.FormatCells(1, 2, 1, -1, Format_BackColor, host::Variant(int32_t{0xFF}));
  EXPECT_EQ(g.CellBackColor(0, 1), 0xFFFFFF);
  EXPECT_EQ(g.CellBackColor(1, 1), 0xFF);
  EXPECT_EQ(g.CellBackColor(2, 2), 0xFF);
  EXPECT_EQ(g.CellBackColor(1, 0), 0xFFFFFF);
  g.FormatCells(0, -1, 0, 0, Format_FontBold, host::Variant(true));
  EXPECT_TRUE(g.CellFontBold(3, 0));
  EXPECT_FALSE(g.CellFontBold(3, 1));
  g.FormatCellsAlignment(3, 3, 0, -1, AlignToRightBottom);
  EXPECT_EQ(g.CellAlignment(3, 2), AlignToRightBottom);
  EXPECT_EQ(g.CellAlignment(2, 2), AlignToCenterCenter);
}

TEST_F(GridDataTest, HeaderFormatStringBothWays) {
  GridData d;
  d.UserMode(false);
  d.HeaderFormatString(u"Code;1200;6;1;#,##0;;4;256;0;-1;0|Name;2000|Hidden;300;4;0;;;4;0;0;0;1");
  ASSERT_EQ(d.Cols(), 3);
  EXPECT_FLOAT_EQ(d.ColWidth(0), 1201.0f);
  EXPECT_EQ(d.ColAlignment(0), AlignToRightCenter);
  EXPECT_EQ(d.ColType(0), TypeNumeric);
  EXPECT_EQ(d.ColFormat(0), u"#,##0");
  EXPECT_EQ(d.ColInputFilter(0), u"1234567890.-,");
  EXPECT_TRUE(d.ColWordWrap(0));
  EXPECT_TRUE(d.ColVisible(1));
  EXPECT_FALSE(d.ColVisible(2));
  EXPECT_TRUE(d.ColLocked(2));
  // The stored string comes back as it was set.
  EXPECT_EQ(d.HeaderFormatString().substr(0, 5), u"Code;");

  // Composed from live columns: width in pixels, flags at 7, "0" at 8.
  GridData live;
  live.AddColumn(u"A", 1499.0f, 6, TypeNumeric, u"0.00", {}, 4, true);
  live.AddColumn(u"B", 299.0f, 4, TypeString, {}, u"abc", 2, false, 0, false, true);
  EXPECT_EQ(live.HeaderFormatString(), u"A;100;6;1;0.00;1234567890.-,;4;256;0;-1;0|B;20;4;0;;abc;2;0;0;0;-1");

  // At run time the let only stores; the columns come from ReadProperties.
  GridData run;
  run.HeaderFormatString(u"X;100");
  EXPECT_EQ(run.Cols(), 0);
}

TEST(GridNumericValue, ReadsTextsTheWayTotalsAndSortNeed) {
  host::InstallRegionalVariantText();
  EXPECT_DOUBLE_EQ(GridNumericValue(u""), 0);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"1.500,00"), 1500);  // the regional conversion first
  EXPECT_DOUBLE_EQ(GridNumericValue(u"&H10"), 16);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"True"), 1);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"False"), 0);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"12abc"), 12);
  EXPECT_DOUBLE_EQ(GridNumericValue(u" 3 kg"), 3);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"12$5"), 125);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"&h1fz"), 31);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"abc"), 0);
  EXPECT_DOUBLE_EQ(GridNumericValue(u"-5x"), 0);  // the walk starts only at a digit
}

TEST(GridTheme, PaletteFollowsTheLook) {
  GridData g;
  g.Theme(0);
  EXPECT_EQ(g.BorderColor(), 0xE2A981);
  EXPECT_EQ(g.HeaderGradientColorDown1(), 0x79C0FF);
  g.Theme(1);
  EXPECT_EQ(g.HeaderBorderColorOver(), 0x78A8C1);
  EXPECT_EQ(g.GridColor(), 0xFBFBFB);
  g.Theme(3);
  EXPECT_EQ(g.CaptionGradientColor1(), frame::GetThemeColor(3, 8));
  EXPECT_EQ(g.HeaderGradientColor2(), host::ShiftRGBColor(frame::GetThemeColor(3, 9), 120));
  EXPECT_EQ(g.HeaderGradientColorOver2(), host::ShiftRGBColor(g.HeaderGradientColor2(), 20));
  EXPECT_EQ(g.FocusRectColor(), frame::GetThemeColor(3, 26));
  EXPECT_EQ(g.ColumnSeparatorColorDown(), frame::GetThemeColor(3, 6));
  EXPECT_EQ(g.GridColor(), 0xFAFAFE);
}

TEST(GridPersistence, DefaultsAndTheirAsymmetries) {
  GridData a;
  a.InitProperties();
  EXPECT_TRUE(a.AllowColumnResizing());
  host::PropertyBag bag;
  a.WriteProperties(bag);
  // Always written, and the resizing True of a new control survives only because it differs
  // from the bag default.
  EXPECT_TRUE(bag.Contains(u"ColumnHeaderSmall"));
  EXPECT_TRUE(bag.Contains(u"TotalLineShow"));
  EXPECT_TRUE(bag.Contains(u"AllowColumnResizing"));
  EXPECT_FALSE(bag.Contains(u"BackColorEdit"));
  EXPECT_FALSE(bag.Contains(u"ArrowColor"));

  GridData fromEmpty;
  fromEmpty.ReadProperties(host::PropertyBag());
  EXPECT_FALSE(fromEmpty.AllowColumnResizing());
  EXPECT_EQ(fromEmpty.HeaderGradientColor1(), host::ShiftRGBColor(kGridBaseColor, 120));
  EXPECT_EQ(fromEmpty.HeaderGradientColorOver1(), host::ShiftRGBColor(fromEmpty.HeaderGradientColor1(), 20));
  EXPECT_EQ(fromEmpty.EditTrigger(), 52);
  EXPECT_EQ(fromEmpty.FreezeAtCol(), -1);

  // A default that names another property follows the value read for it.
  host::PropertyBag partial;
  partial.WriteProperty(u"ForeColorHeader", host::Variant(int32_t{0x123456}));
  partial.WriteProperty(u"HeaderGradientColor1", host::Variant(int32_t{0x202020}));
  GridData c;
  c.ReadProperties(partial);
  EXPECT_EQ(c.ArrowColor(), 0x123456);
  EXPECT_EQ(c.HeaderGradientColorOver1(), host::ShiftRGBColor(0x202020, 20));
  EXPECT_EQ(c.HeaderGradientColorDown1(), host::ShiftRGBColor(0x202020, 10));

  // Keys as stored, columns built at run time.
  a.AllowEdit(true);
  a.ArrowColor(0x123456);
  a.CacheIncrement(50);
  a.HeaderFormatString(u"One|Two;900");
  host::PropertyBag saved;
  a.WriteProperties(saved);
  EXPECT_TRUE(saved.Contains(u"Editable"));
  GridData b;
  b.ReadProperties(saved);
  EXPECT_TRUE(b.AllowEdit());
  EXPECT_EQ(b.ArrowColor(), 0x123456);
  EXPECT_EQ(b.CacheIncrement(), 50);
  ASSERT_EQ(b.Cols(), 2);
  EXPECT_FLOAT_EQ(b.ColWidth(1), 901.0f);
}

TEST_F(GridDataTest, FillBracketsAndClear) {
  int rowCountEvents = 0;
  int afterDelete = 0;
  g.RowCountChanged.connect([&] { ++rowCountEvents; });
  g.AfterDelete.connect([&] { ++afterDelete; });
  g.AddItem(u"a");
  g.AddItem(u"b");
  g.AddItem(u"c");
  g.Row(2);
  EXPECT_EQ(rowCountEvents, 3);
  g.BeginFill(7, 10);
  EXPECT_FALSE(g.Redraw());
  EXPECT_EQ(g.Rows(), 0);
  EXPECT_EQ(g.Row(), -1);
  EXPECT_EQ(afterDelete, 1);
  EXPECT_EQ(g.TagID(), 7);
  for (int i = 0; i < 5; ++i) g.AddItem(u"n");
  g.EndFill();
  EXPECT_TRUE(g.Redraw());
  EXPECT_EQ(g.Row(), 2);  // the row remembered by BeginFill
  g.BeginFill();
  g.AddItem(u"x");
  g.EndFill(-1, 0, false, 0);
  EXPECT_FALSE(g.Redraw());
  EXPECT_EQ(g.Row(), 0);
  // Clear keeps the columns; ClearAll drops them.
  g.Clear();
  EXPECT_EQ(g.Cols(), 3);
  g.AddItem(u"again\t3");
  EXPECT_EQ(g.CellText(0, 1), u"3");
  g.ClearAll();
  EXPECT_EQ(g.Cols(), 0);
  EXPECT_EQ(g.Rows(), 0);
}

}  // namespace
}  // namespace mx::grid
