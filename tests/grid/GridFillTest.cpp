#include <gtest/gtest.h>

#include "grid/GridData.h"
#include "host/DateTime.h"
#include "host/Err.h"
#include "host/Format.h"
#include "host/Recordset.h"

namespace mx::grid {
namespace {

class GridFillTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host::InstallRegionalVariantText();
    m_db = std::make_shared<host::Connection>();
    m_db->Open(u":memory:");
    m_db->Execute(
        u"CREATE TABLE sales(item TEXT, qty INTEGER, price REAL, sold DATE, paid BOOLEAN, note TEXT);"
        u"INSERT INTO sales VALUES('Caneta', 3, 2.5, '2024-03-05', 1, NULL);"
        u"INSERT INTO sales VALUES('Lápis', 10, NULL, NULL, 0, 'tab\tinside');"
        u"INSERT INTO sales VALUES(NULL, -2, 1234.75, '1999-12-31', 1, '');");
  }

  std::shared_ptr<host::Recordset> Query(host::StringView sql) {
    auto rs = host::Recordset::Create();
    rs->Open(sql, m_db);
    return rs;
  }

  std::shared_ptr<host::Connection> m_db;
  GridData g;
};

TEST_F(GridFillTest, AddsColumnsAndRowsFromTheRecordset) {
  auto rs = Query(u"SELECT item, qty, price, sold, paid, note FROM sales ORDER BY rowid");
  g.FillGridFromQuery(host::Variant(rs), true);
  ASSERT_EQ(g.Cols(), 6);
  ASSERT_EQ(g.Rows(), 3);
  EXPECT_EQ(g.ColHeading(0), u"item");
  EXPECT_EQ(g.ColHeading(5), u"note");
  EXPECT_EQ(g.ColType(1), TypeString);  // every added column is text
  EXPECT_FLOAT_EQ(g.ColWidth(3), 501.0f);

  EXPECT_EQ(g.CellText(0, 0), u"Caneta");
  EXPECT_EQ(g.CellText(0, 1), u"3");
  EXPECT_EQ(g.CellText(0, 2), u"2,5");  // numbers as the regional setting shows them
  EXPECT_EQ(g.CellText(0, 3), host::Format(host::Variant::FromDate(host::DateSerial(2024, 3, 5))));
  EXPECT_EQ(g.CellText(0, 3), u"05/03/2024");
  EXPECT_EQ(g.CellText(0, 4), u"True");
  EXPECT_EQ(g.CellText(0, 5), u"");  // Null
  EXPECT_EQ(g.CellText(1, 0), u"Lápis");
  EXPECT_EQ(g.CellText(1, 2), u"");
  EXPECT_EQ(g.CellText(1, 4), u"False");
  // A tab inside a value splits it like any other tab: the rest is surplus and dropped.
  EXPECT_EQ(g.CellText(1, 5), u"tab");
  EXPECT_EQ(g.CellText(2, 0), u"");
  EXPECT_EQ(g.CellText(2, 1), u"-2");
  EXPECT_EQ(g.CellText(2, 2), u"1234,75");
  EXPECT_TRUE(rs->EOF_());
}

TEST_F(GridFillTest, KeepsDesignedColumnsAndTheirTypes) {
  g.AddColumn(u"Item");
  g.AddColumn(u"Qty", 500.0f, AlignToRightCenter, TypeNumeric);
  g.AddColumn(u"Price", 500.0f, AlignToRightCenter, TypeNumeric);
  g.AddColumn(u"Sold", 500.0f, AlignToLeftCenter, TypeDate);
  g.AddColumn(u"Paid", 500.0f, AlignToLeftCenter, TypeBoolean);
  g.TotalLineShow(true);
  g.AddItem(u"old\t100");
  g.FillGridFromQuery(host::Variant(Query(u"SELECT item, qty, price, sold, paid FROM sales ORDER BY rowid")));
  EXPECT_EQ(g.Cols(), 5);
  EXPECT_EQ(g.Rows(), 3);
  EXPECT_EQ(g.ColHeading(1), u"Qty");
  // Booleans check the cell and keep no text; numeric columns total.
  EXPECT_TRUE(g.CellChecked(0, 4));
  EXPECT_FALSE(g.CellChecked(1, 4));
  EXPECT_EQ(g.CellText(0, 4), u"");
  EXPECT_DOUBLE_EQ(g.TotalColumns(1), 11.0);
  EXPECT_DOUBLE_EQ(g.TotalColumns(2), 1237.25);
  EXPECT_DOUBLE_EQ(g.CellValue(2, 2).ToDouble(), 1234.75);
}

TEST_F(GridFillTest, EmptyResultClearsAndStops) {
  g.AddColumn(u"kept");
  g.AddItem(u"row");
  g.FillGridFromQuery(host::Variant(Query(u"SELECT item FROM sales WHERE qty > 99")), true);
  EXPECT_EQ(g.Rows(), 0);
  EXPECT_EQ(g.Cols(), 0);  // ClearAll ran before the recordset was found empty
  // Anything that is not a recordset is a late-binding error, not a crash.
  EXPECT_THROW(g.FillGridFromQuery(host::Variant(int32_t{5})), host::RuntimeError);
}

}  // namespace
}  // namespace mx::grid
