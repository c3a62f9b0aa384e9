// What an open editor looks like over its cell.
#include "../support/Golden.h"
#include "GridInputTestSupport.h"

namespace mx::grid::testing {
namespace {

TEST_F(GridInputTest, OpenEditorCoversItsCellInTheEditColours) {
  auto g = MakeFilled(3, 230, 130);
  g->AllowEdit(true);
  ClickCell(*g, 1, 0);
  Type(u"Abc");
  ASSERT_TRUE(g->EditPending());
  const auto img = Capture(*g);
  // Inside the box: the edit back colour; the grid line under the row stays.
  const platform::RECT col = g->GetColumnRect(0);
  const int top = RowTopOf(*g, 1), h = g->RowHeight(1);
  EXPECT_EQ(img.color(col.right - 5, top + 3), host::TranslateColor(g->BackColorEdit()));
  EXPECT_EQ(img.color(col.right - 5, top + h - 1), host::TranslateColor(g->GridColor()));
  test::ExpectGolden("grid", "edit_open", img.width(), img.height(), Pixels(img), true);
}

}  // namespace
}  // namespace mx::grid::testing
