// Where cell text lands against the column's alignment. A column's alignment places its
// heading; cells made by AddItem are centred whatever the column says, and are aligned by the
// cell members. Cells that AddColumn makes in existing rows take the column's alignment.
#include "GridPaintTestSupport.h"

namespace mx::grid::testing {
namespace {

// The leftmost and rightmost x in [x0, x1) of a band of rows holding a dark (text) pixel.
std::pair<int, int> Ink(const USFlexGrid& g, int x0, int x1, int y0, int y1) {
  platform::PumpMessages();
  const auto img = platform::CaptureWindow(g.hWnd());
  int lo = -1, hi = -1;
  for (int x = x0; x < x1; ++x)
    for (int y = y0; y < y1; ++y)
      if ((img.pixel(x, y) & 0xFF) < 0x80) {
        if (lo < 0) lo = x;
        hi = x;
      }
  return {lo, hi};
}

class GridColumnsAlignmentTest : public GridPaintTest {
 protected:
  // One right-aligned 100-pixel column (pixels 0 to 99) and one row "ab", no grid lines or
  // stripes to confuse the ink.
  std::shared_ptr<USFlexGrid> MakeGrid() {
    auto g = Make(10, 10, 240, 120);
    g->Redraw(false);
    g->AddColumn(u"H", 1499, AlignToRightCenter);
    g->AddItem(u"ab");
    g->GridLines(None_Lines);
    g->BackColorEvenRowsEnabled(false);
    g->FocusRectMode(Focus_None);
    g->BorderStyle(0);
    g->Redraw(true);
    return g;
  }
  std::pair<int, int> RowInk(const USFlexGrid& g) {
    const int top = g.Metrics().headerBottom;
    return Ink(g, 0, 100, top + 1, top + g.Metrics().defaultRowHeight - 1);
  }
};

TEST_F(GridColumnsAlignmentTest, AddedCellsAreCentredUntilAligned) {
  auto g = MakeGrid();
  EXPECT_EQ(g->ColAlignment(0), AlignToRightCenter);
  EXPECT_EQ(g->CellAlignment(0, 0), AlignToCenterCenter);
  const auto centred = RowInk(*g);
  ASSERT_GE(centred.first, 0);
  // Centred: as much room on both sides, give or take a pixel of rounding and glyph bearing.
  EXPECT_LE(std::abs(centred.first - (99 - centred.second)), 2);

  // Aligned by the bulk member, the text goes to the right edge less the 3-pixel inset.
  g->FormatCellsAlignment(0, -1, 0, 0, AlignToRightCenter);
  const auto right = RowInk(*g);
  EXPECT_GE(right.second, 100 - 3 - 2);
  EXPECT_LE(right.second, 100 - 3);
  EXPECT_EQ(right.second - right.first, centred.second - centred.first);

  g->CellAlignment(0, 0, AlignToLeftCenter);
  const auto left = RowInk(*g);
  EXPECT_GE(left.first, 3);
  EXPECT_LE(left.first, 3 + 2);
}

TEST_F(GridColumnsAlignmentTest, CellsAddedWithAColumnTakeItsAlignment) {
  auto g = MakeGrid();
  g->AddColumn(u"Later", 900, AlignToRightCenter);
  EXPECT_EQ(g->CellAlignment(0, 1), AlignToRightCenter);
  // A row added afterwards is centred in both columns again.
  g->AddItem(u"c\td");
  EXPECT_EQ(g->CellAlignment(1, 0), AlignToCenterCenter);
  EXPECT_EQ(g->CellAlignment(1, 1), AlignToCenterCenter);
}

}  // namespace
}  // namespace mx::grid::testing
