// The grid reached only by name, as a script, a form or another control reaches it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "GridInputTestSupport.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/Recordset.h"
#include "host/ScriptPlayer.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"

namespace mx::grid::testing {
namespace {

using host::CallKind;
using host::String;
using host::Variant;

Variant Get(const Variant& o, host::StringView name, std::vector<Variant> args = {}) {
  return host::CallByName(o, name, CallKind::Get, std::move(args));
}
Variant Call(const Variant& o, host::StringView name, std::vector<Variant> args = {}) {
  return host::CallByName(o, name, CallKind::Method, std::move(args));
}
void Let(const Variant& o, host::StringView name, std::vector<Variant> args) {
  host::CallByName(o, name, CallKind::Let, std::move(args));
}
// The host's error number a statement raises, 0 when it runs.
int32_t ErrorOf(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const host::RuntimeError& e) {
    return e.Number();
  }
  return 0;
}
Variant S(const char16_t* s) { return Variant(String(s)); }
Variant N(int32_t v) { return Variant(v); }

// Columns "Fruit" and "Qty" (numeric) with three rows, all by name.
void FillFruit(const Variant& g) {
  Call(g, u"addcolumn", {S(u"Fruit"), Variant(1500.0f)});
  Call(g, u"ADDCOLUMN", {S(u"Qty"), Variant(900.0f), N(AlignToRightCenter), N(TypeNumeric)});
  for (const char16_t* line : {u"Pera\t12", u"Abacaxi\t3", u"Uva\t7"}) Call(g, u"AddItem", {S(line)});
}
std::vector<String> Column(const Variant& g, int col) {
  std::vector<String> out;
  const int32_t rows = Get(g, u"Rows").ToLong();
  for (int r = 0; r < rows; ++r) out.push_back(Get(g, u"TextMatrix", {N(r), N(col)}).ToString());
  return out;
}

class GridDispatchTest : public GridInputTest {
 protected:
  // A shown grid made at run time, known to the test only as a Variant.
  Variant MakeByName(int w = 260, int h = 200) {
    m_grid = Make(10, 10, w, h);
    return Variant(m_grid);
  }
  std::shared_ptr<USFlexGrid> m_grid;
};

TEST_F(GridDispatchTest, FillsSortsAndSearchesAGridByNameAlone) {
  const Variant g = MakeByName();
  FillFruit(g);
  EXPECT_EQ(Get(g, u"Cols").ToLong(), 2);
  EXPECT_EQ(Get(g, u"rows").ToLong(), 3);
  EXPECT_EQ(Get(g, u"TextMatrix", {N(1), N(0)}).ToString(), u"Abacaxi");
  EXPECT_EQ(Get(g, u"CellText", {N(2), N(1)}).ToString(), u"7");

  // A write goes through the cell's own rules: the cell and the grid are marked changed.
  EXPECT_FALSE(Get(g, u"CellChanged", {N(2), N(0)}).ToBoolean());
  Let(g, u"TextMatrix", {N(2), N(0), S(u"Banana")});
  EXPECT_EQ(m_grid->CellText(2, 0), u"Banana");
  EXPECT_TRUE(Get(g, u"CellChanged", {N(2), N(0)}).ToBoolean());
  EXPECT_TRUE(Get(g, u"CellsChanged").ToBoolean());

  // The numeric column sorts by value (3, 7, 12), not as text (12, 3, 7).
  Call(g, u"Sort", {N(1), N(Sort_Ascending)});
  EXPECT_EQ(Column(g, 0), (std::vector<String>{u"Abacaxi", u"Banana", u"Pera"}));
  Call(g, u"sort", {N(1), N(Sort_Descending)});
  EXPECT_EQ(Column(g, 1), (std::vector<String>{u"12", u"7", u"3"}));
  // No arguments cycles the primary column: descending goes back to the order of the fill.
  Call(g, u"Sort");
  EXPECT_EQ(Column(g, 0), (std::vector<String>{u"Pera", u"Abacaxi", u"Banana"}));

  EXPECT_EQ(Call(g, u"FindItem", {S(u"banana"), N(0)}).ToLong(), 2);
  EXPECT_EQ(Call(g, u"FindItem", {S(u"banana"), N(0), N(Search_Equal), Variant(true)}).ToLong(), -1);
  EXPECT_EQ(Call(g, u"FindItem", {S(u"Ab"), N(0), N(Search_BeginsWith)}).ToLong(), 1);

  Call(g, u"FilterOn", {S(u"a"), N(0), N(Search_Like)});
  EXPECT_EQ(Get(g, u"RowVisible", {N(0)}).ToBoolean(), true);
  Call(g, u"FilterOn", {S(u"nan"), N(0), N(Search_Like)});
  EXPECT_FALSE(Get(g, u"RowVisible", {N(0)}).ToBoolean());
  EXPECT_TRUE(Get(g, u"RowVisible", {N(2)}).ToBoolean());
  Call(g, u"FilterOff");
  EXPECT_TRUE(Get(g, u"RowVisible", {N(0)}).ToBoolean());
}

TEST_F(GridDispatchTest, ColumnWidthsAndRedrawByName) {
  const Variant g = MakeByName();
  FillFruit(g);
  EXPECT_FLOAT_EQ(Get(g, u"ColWidth", {N(0)}).ToSingle(), 1501.0f);
  Let(g, u"ColWidth", {N(0), Variant(3000.0f)});
  EXPECT_FLOAT_EQ(Get(g, u"colwidth", {N(0)}).ToSingle(), 3000.0f);
  EXPECT_EQ(m_grid->ColWidthPixels(0), 200);

  // Redraw off by name: a new row changes the model but not the screen, until Redraw is on.
  const auto before = Pixels(Capture(*m_grid));
  Let(g, u"Redraw", {Variant(false)});
  EXPECT_FALSE(Get(g, u"Redraw").ToBoolean());
  EXPECT_EQ(Call(g, u"AddItem", {S(u"Kiwi\t1"), N(0)}).ToLong(), 0);
  Let(g, u"CellBackColor", {N(0), N(0), N(0x0000FF)});
  EXPECT_EQ(Pixels(Capture(*m_grid)), before);
  Let(g, u"Redraw", {Variant(true)});
  const platform::CapturedImage after = Capture(*m_grid);
  EXPECT_NE(Pixels(after), before);
  // The first cell now paints red, a pixel inside it away from its text.
  const int y = m_grid->Metrics().headerBottom + 2;
  EXPECT_EQ(after.pixel(m_grid->GetColumnRect(0).right - 3, y) & 0xFFFFFF, 0xFF0000u);
}

TEST_F(GridDispatchTest, OptionalArgumentsTakeTheMembersDefaults) {
  const Variant g = MakeByName();
  // Caption alone; then an alignment with the width left out as a Missing argument.
  EXPECT_EQ(Call(g, u"AddColumn", {S(u"A")}).ToLong(), 0);
  EXPECT_EQ(Call(g, u"AddColumn", {S(u"B"), Variant::Missing(), N(AlignToRightCenter)}).ToLong(), 1);
  EXPECT_FLOAT_EQ(Get(g, u"ColWidth", {N(1)}).ToSingle(), 501.0f);
  EXPECT_EQ(Get(g, u"ColAlignment", {N(1)}).ToLong(), AlignToRightCenter);
  EXPECT_EQ(Get(g, u"ColAlignment", {N(0)}).ToLong(), AlignToLeftCenter);
  Call(g, u"AddItem", {S(u"one\t1")});
  // A Missing row appends; the row data after the missing flags is taken.
  EXPECT_EQ(Call(g, u"AddItem", {S(u"two\t2"), Variant::Missing(), Variant::Missing(), Variant(true),
                                 Variant::Missing(), Variant::Missing(), N(42)})
                .ToLong(),
            1);
  EXPECT_TRUE(Get(g, u"RowMarkedAsNew", {N(1)}).ToBoolean());
  EXPECT_EQ(Get(g, u"RowData", {N(1)}).ToLong(), 42);
  EXPECT_EQ(Call(g, u"GetIndexFromData", {N(42)}).ToLong(), 1);
  // Not found: 0 by default, -1 when asked.
  EXPECT_EQ(Call(g, u"GetIndexFromData", {N(7)}).ToLong(), 0);
  EXPECT_EQ(Call(g, u"GetIndexFromData", {N(7), Variant(true)}).ToLong(), -1);

  // A write-only row member with its row left out works on the current row.
  Let(g, u"Row", {N(1)});
  Let(g, u"RowBackColor", {N(0x00FF00)});
  EXPECT_EQ(Get(g, u"CellBackColor", {N(1), N(1)}).ToLong(), 0x00FF00);
  EXPECT_NE(Get(g, u"CellBackColor", {N(0), N(1)}).ToLong(), 0x00FF00);
  // With the row given, that row.
  Let(g, u"RowFontBold", {N(0), Variant(true)});
  EXPECT_TRUE(Get(g, u"CellFontBold", {N(0), N(1)}).ToBoolean());
  EXPECT_FALSE(Get(g, u"CellFontBold", {N(1), N(1)}).ToBoolean());
}

TEST_F(GridDispatchTest, FillsFromARecordsetByName) {
  const Variant g = MakeByName();
  auto db = std::make_shared<host::Connection>();
  db->Open(u":memory:");
  db->Execute(u"CREATE TABLE t(name TEXT, qty INTEGER);"
              u"INSERT INTO t VALUES('Pera', 12); INSERT INTO t VALUES('Uva', 7);");
  auto rs = host::Recordset::Create();
  rs->Open(u"SELECT name, qty FROM t ORDER BY rowid", db);

  Call(g, u"FillGridFromQuery", {Variant(rs), Variant(true)});
  EXPECT_EQ(Get(g, u"Cols").ToLong(), 2);
  EXPECT_EQ(Get(g, u"ColHeading", {N(1)}).ToString(), u"qty");
  EXPECT_EQ(Column(g, 0), (std::vector<String>{u"Pera", u"Uva"}));
  EXPECT_EQ(Column(g, 1), (std::vector<String>{u"12", u"7"}));

  // Anything but a recordset object is refused before the grid is cleared.
  EXPECT_EQ(ErrorOf([&] { Call(g, u"FillGridFromQuery", {S(u"SELECT 1")}); }), host::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"FillGridFromQuery", {Variant::Nothing()}); }), host::kErrObjectNotSet);
  EXPECT_EQ(Get(g, u"Rows").ToLong(), 2);
}

TEST_F(GridDispatchTest, RaisesTheHostsErrorNumbers) {
  const Variant g = MakeByName();
  FillFruit(g);
  // Wrong types.
  EXPECT_EQ(ErrorOf([&] { Let(g, u"ColWidth", {N(0), S(u"wide")}); }), host::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Let(g, u"AllowEdit", {S(u"maybe")}); }), host::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"Sort", {S(u"first")}); }), host::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Let(g, u"Font", {N(3)}); }), host::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"SetCellAlignmentForAllRows", {N(4), N(0)}); }), host::kErrTypeMismatch);
  // Missing required arguments, left out or passed as Missing; too many arguments.
  EXPECT_EQ(ErrorOf([&] { Call(g, u"AddItem"); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"AddColumn", {Variant::Missing()}); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Get(g, u"TextMatrix", {N(0)}); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"FilterOn", {S(u"x")}); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"Refresh", {N(1)}); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Get(g, u"Rows", {N(1)}); }), host::kErrWrongArgumentCount);
  // Shapes: a read-only property written, a write-only one read, a method assigned to.
  EXPECT_EQ(ErrorOf([&] { Let(g, u"Rows", {N(5)}); }), 383);
  EXPECT_EQ(ErrorOf([&] { Get(g, u"RowBackColor", {N(0)}); }), 451);
  EXPECT_EQ(ErrorOf([&] { Let(g, u"Clear", {N(1)}); }), host::kErrMemberNotSupported);
  // Unknown names, and no default member.
  EXPECT_EQ(ErrorOf([&] { Call(g, u"Frobnicate"); }), host::kErrMemberNotSupported);
  EXPECT_EQ(ErrorOf([&] { Get(g, u""); }), host::kErrMemberNotSupported);
  // Bad indices get the member's own answer: the validated ones do nothing, the storage ones
  // raise 9.
  EXPECT_EQ(ErrorOf([&] { Let(g, u"CellText", {N(0), N(9), S(u"x")}); }), 0);
  EXPECT_EQ(Get(g, u"CellText", {N(0), N(9)}).ToString(), u"");
  EXPECT_EQ(ErrorOf([&] { Call(g, u"SetRowData", {N(99), N(1)}); }), host::kErrSubscriptOutOfRange);
  // Nothing of the above changed the grid.
  EXPECT_EQ(Column(g, 0), (std::vector<String>{u"Pera", u"Abacaxi", u"Uva"}));
}

TEST_F(GridDispatchTest, TheGridsOwnMembersWinOverTheHostsOfTheSameName) {
  const Variant g = MakeByName();
  FillFruit(g);
  // ForeColor is the grid's cell colour (new cells take it), not the host's pen colour.
  Let(g, u"ForeColor", {N(0x123456)});
  EXPECT_EQ(m_grid->GridData::ForeColor(), 0x123456);
  EXPECT_EQ(Get(g, u"forecolor").ToLong(), 0x123456);
  Let(g, u"Enabled", {Variant(false)});
  EXPECT_FALSE(m_grid->GridData::Enabled());
  EXPECT_FALSE(m_grid->UserControl::Enabled());
  // Font takes a font object and remeasures the grid.
  auto font = std::make_shared<host::StdFont>();
  font->Name(u"DejaVu Sans");
  font->Size(14.0);
  const int rowHeightBefore = m_grid->Metrics().defaultRowHeight;
  host::CallByName(g, u"Font", CallKind::Set, {Variant(font)});
  EXPECT_EQ(Get(g, u"Font").Obj(), std::static_pointer_cast<host::Object>(font));
  EXPECT_GT(m_grid->Metrics().defaultRowHeight, rowHeightBefore);
  // A name the grid lacks still reaches the host: the surface's back colour.
  Let(g, u"BackColor", {N(0x00FFFF)});
  EXPECT_EQ(m_grid->UserControl::BackColor(), 0x00FFFF);
}

TEST_F(GridDispatchTest, ObjectArgumentsArePicturesControlsAndListsOrNothing) {
  const Variant g = MakeByName();
  FillFruit(g);
  auto picture = std::make_shared<host::StdPicture>();
  // Called with the picture as the third argument, or set as an indexed property.
  Call(g, u"CellPicture", {N(0), N(0), Variant(picture)});
  EXPECT_EQ(Get(g, u"CellAsPicture", {N(0), N(0)}).Obj(), std::static_pointer_cast<host::Object>(picture));
  host::CallByName(g, u"CellPicture", CallKind::Set, {N(1), N(0), Variant(picture)});
  EXPECT_EQ(Get(g, u"CellAsPicture", {N(1), N(0)}).Obj(), std::static_pointer_cast<host::Object>(picture));
  host::CallByName(g, u"CellPicture", CallKind::Set, {N(1), N(0), Variant::Nothing()});
  EXPECT_TRUE(Get(g, u"CellAsPicture", {N(1), N(0)}).IsNothing());
  EXPECT_EQ(ErrorOf([&] { Call(g, u"CellPicture", {N(0), N(0)}); }), host::kErrWrongArgumentCount);
  EXPECT_EQ(ErrorOf([&] { Call(g, u"CellPicture", {N(0), N(0), S(u"pic.png")}); }), host::kErrTypeMismatch);

  // An image list must be one; Nothing unbinds.
  EXPECT_EQ(ErrorOf([&] { host::CallByName(g, u"ImageList", CallKind::Set, {Variant(picture)}); }),
            host::kErrTypeMismatch);
  host::CallByName(g, u"ImageList", CallKind::Set, {Variant::Nothing()});
  EXPECT_TRUE(Get(g, u"ImageList").IsNothing());
  // A bound editor is any object reached by late binding; a number is no control.
  EXPECT_EQ(ErrorOf([&] { Call(g, u"BindControl", {N(0), N(5)}); }), host::kErrTypeMismatch);
}

TEST_F(GridDispatchTest, ColumnFilesReportFailuresThroughTheirByReferenceArgument) {
  const Variant g = MakeByName();
  FillFruit(g);
  std::vector<Variant> args{S(u"/nonexistent-dir/order.txt"), S(u"")};
  EXPECT_FALSE(host::CallByNameRef(g, u"SaveColumnOrderToFile", CallKind::Method, args).ToBoolean());
  EXPECT_FALSE(args[1].ToString().empty());

  const std::string path = ::testing::TempDir() + "grid_dispatch_widths.txt";
  const String file(path.begin(), path.end());
  std::vector<Variant> save{Variant(file), S(u"")};
  EXPECT_TRUE(host::CallByNameRef(g, u"SaveColumnWidthsToFile", CallKind::Method, save).ToBoolean());
  EXPECT_EQ(save[1].ToString(), u"");
  Let(g, u"ColWidth", {N(0), Variant(2400.0f)});
  std::vector<Variant> load{Variant(file), S(u"")};
  EXPECT_TRUE(host::CallByNameRef(g, u"LoadColumnWidthsFromFile", CallKind::Method, load).ToBoolean());
  EXPECT_FLOAT_EQ(Get(g, u"ColWidth", {N(0)}).ToSingle(), 1501.0f);
  std::remove(path.c_str());
}

// A form file with a grid, reached through the form by the control's name; the pointer then
// plays a script as mxrun does, against a property that was set by name.
constexpr const char* kForm = R"(VERSION 5.00
Begin VB.Form frmStock
   ClientHeight    =   3600
   ClientWidth     =   4800
   Begin Morvantix.USFlexGrid grdStock
      Height          =   3000
      Left            =   150
      Top             =   150
      Width           =   4200
   End
End
)";

class GridDispatchFormTest : public GridInputTest {
 protected:
  void SetUp() override {
    GridInputTest::SetUp();
    RegisterControls();
    host::FormFile file;
    host::FormFileError error;
    ASSERT_TRUE(host::ParseFormText(std::span(reinterpret_cast<const uint8_t*>(kForm), std::strlen(kForm)),
                                    [](host::StringView) { return nullptr; }, file, error));
    form = host::Form::FromFormFile(file);
    form->SetEventSink([this](host::StringView source, int32_t index, host::StringView name, std::span<Variant> args) {
      events.push_back(host::FormatEventLine(source, index, name, std::span<const Variant>(args.data(), args.size())));
    });
    form->Show();
    platform::PumpMessages();
  }
  void TearDown() override {
    if (form) form->Unload();
    form.reset();
    GridInputTest::TearDown();
  }
  std::shared_ptr<host::Form> form;
  std::vector<std::string> events;
};

TEST_F(GridDispatchFormTest, AScriptSortsByAHeaderClickThatWasEnabledByName) {
  const Variant g = Get(Variant(form), u"grdStock");
  ASSERT_TRUE(g.IsObject());
  FillFruit(g);
  auto grid = std::dynamic_pointer_cast<USFlexGrid>(g.Obj());
  ASSERT_TRUE(grid);

  // The header band of the second column, in the form's client pixels (the grid is at 10, 10).
  const platform::RECT header = grid->GetColumnRect(1);
  const int x = 10 + (header.left + header.right) / 2;
  const int y = 10 + grid->Metrics().headerBottom / 2;
  const std::string click = "move " + std::to_string(x) + " " + std::to_string(y) + "\ndown left\nup left\nwait 600\n";
  host::ScriptPlayer player(form);

  // Sorting by a header click is off by default: the click is a plain click on the control.
  player.Play(host::ParseScript(click));
  EXPECT_EQ(Column(g, 0), (std::vector<String>{u"Pera", u"Abacaxi", u"Uva"}));
  EXPECT_NE(std::find(events.begin(), events.end(), "EVENT grdStock.Click"), events.end());
  EXPECT_EQ(std::find(events.begin(), events.end(), "EVENT grdStock.ColumnClick 1"), events.end());

  // The property by its name (its bag key is "ColumnSort"), then the same click sorts.
  Let(g, u"AllowColumnSort", {Variant(true)});
  EXPECT_TRUE(grid->AllowColumnSort());
  events.clear();
  player.Play(host::ParseScript(click));
  EXPECT_EQ(Column(g, 1), (std::vector<String>{u"3", u"7", u"12"}));
  EXPECT_NE(std::find(events.begin(), events.end(), "EVENT grdStock.SortComplete"), events.end());
  EXPECT_NE(std::find(events.begin(), events.end(), "EVENT grdStock.ColumnClick 1"), events.end());
}

}  // namespace
}  // namespace mx::grid::testing
