// Images in the grid: the bound list's metrics, row images in column 0's strip, cell images
// placed by the column's image alignment, cell pictures scaled into their cells, the selected
// style, bad indexes, the minimum size, and a golden picture.
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <vector>

#include "GridPaintTestSupport.h"
#include "grid/GridExample.h"
#include "../support/Golden.h"
#include "host/StdPicture.h"
#include "image/API32bppDIB.h"
#include "image/PictureBinding.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace mx::grid::testing {
namespace {

using platform::COLORREF;

constexpr uint32_t kWhite = 0xFFFFFF, kRed = 0xFF0000, kGreen = 0x00FF00, kBlue = 0x0000FF;

COLORREF Px(const USFlexGrid& g, int x, int y) {
  platform::PumpMessages();
  return platform::CaptureWindow(g.hWnd()).pixel(x, y) & 0xFFFFFF;
}

// A w x h picture of one opaque colour (0xRRGGBB), with an optional different top-left pixel.
std::unique_ptr<image::API32bppDIB> Icon(int w, int h, uint32_t rgb, uint32_t corner) {
  auto dib = std::make_unique<image::API32bppDIB>();
  EXPECT_TRUE(dib->InitializeDIB(w, h));
  auto* px = reinterpret_cast<uint32_t*>(dib->BitsPointer());
  for (int i = 0; i < w * h; ++i) px[i] = 0xFF000000 | rgb;
  // Rows are bottom-up: the top-left pixel is the first of the last row in memory.
  px[static_cast<size_t>(h - 1) * w] = 0xFF000000 | corner;
  dib->SetImageType(image::imgBmpPARGB);
  return dib;
}

// A list of 8 x 8 images: 1 red with a blue top-left pixel, 2 green.
std::shared_ptr<imagelist::APIImageList> MakeList(std::shared_ptr<imagelist::APIImageLists>& owner) {
  owner = imagelist::APIImageLists::Create();
  auto list = owner->Add(8, 8, u"icons");
  list->Images()->AddImage_fromDIB(*Icon(8, 8, kRed, kBlue));
  list->Images()->AddImage_fromDIB(*Icon(8, 8, kGreen, kGreen));
  return list;
}

class GridImagesTest : public GridPaintTest {
 protected:
  // Columns "Name" (100 px) and "State" (60 px), rows "Row i", plain white rows with no lines.
  std::shared_ptr<USFlexGrid> MakeGrid(int rows) {
    auto g = Make(10, 10, 240, 140);
    g->Redraw(false);
    g->GridLines(None_Lines);
    g->BackColorEvenRowsEnabled(false);
    g->FocusRectMode(Focus_None);
    g->AddColumn(u"Name", 1500);
    g->AddColumn(u"State", 900);
    for (int i = 0; i < rows; ++i) {
      const std::string s = "Row " + std::to_string(i) + "\t";
      g->AddItem(host::String(s.begin(), s.end()));
    }
    g->ImageList(MakeList(m_lists));
    g->Redraw(true);
    return g;
  }
  int RowTop(const USFlexGrid& g, int r) const { return g.Metrics().headerBottom + r * g.Metrics().defaultRowHeight; }

  std::shared_ptr<imagelist::APIImageLists> m_lists;
};

TEST_F(GridImagesTest, MetricsFollowTheBoundListAndRowImages) {
  auto g = MakeGrid(3);
  EXPECT_EQ(g->Metrics().imageWidth, 8);
  EXPECT_EQ(g->Metrics().imageHeight, 8);
  EXPECT_EQ(g->Metrics().firstColTextOffset, 3);  // no row has an image yet
  g->RowImage(2, 1);
  EXPECT_EQ(g->Metrics().firstColTextOffset, 3 + 8 + 2);
  g->RowCheckBoxes(true);
  g->Refresh();
  EXPECT_EQ(g->Metrics().firstColTextOffset, 22 + 8 + 2);
  // The last row image gone, the strip is the check box's alone again.
  g->RowImage(2, 0);
  EXPECT_EQ(g->Metrics().firstColTextOffset, 22);
  g->RowImage(0, -2);
  EXPECT_EQ(g->Metrics().firstColTextOffset, 32);
  // Unbound: images take no room, whatever the rows say.
  g->ImageList(nullptr);
  EXPECT_EQ(g->Metrics().imageWidth, 0);
  EXPECT_EQ(g->Metrics().firstColTextOffset, 22);
  // Clearing the rows forgets their images too.
  g->ImageList(MakeList(m_lists));
  EXPECT_EQ(g->Metrics().firstColTextOffset, 32);
  g->Clear();
  g->AddItem(u"again\t");
  g->Refresh();
  EXPECT_EQ(g->Metrics().firstColTextOffset, 22);
}

TEST_F(GridImagesTest, RowImageSitsInTheStripCentredOrAtTheTop) {
  auto g = MakeGrid(3);
  g->RowImage(1, 1);
  const int h = g->Metrics().defaultRowHeight, top = RowTop(*g, 1);
  int y = top + (h - 8) / 2;
  EXPECT_EQ(Px(*g, 3, y), kBlue);  // the image's own top-left pixel
  EXPECT_EQ(Px(*g, 4, y), kRed);
  EXPECT_EQ(Px(*g, 10, y + 7), kRed);
  EXPECT_EQ(Px(*g, 11, y + 7), kWhite);
  EXPECT_EQ(Px(*g, 2, y), kWhite);
  EXPECT_EQ(Px(*g, 3, y - 1), kWhite);
  EXPECT_EQ(Px(*g, 3, y + 8), kWhite);
  // Rows without an image keep the strip empty.
  EXPECT_EQ(Px(*g, 6, RowTop(*g, 0) + (h - 8) / 2 + 3), kWhite);

  g->CenterRowImage(false);
  g->Refresh();
  y = top + g->MinVerticalOffset();
  EXPECT_EQ(Px(*g, 3, y), kBlue);
  EXPECT_EQ(Px(*g, 3, y - 1), kWhite);

  // After the check box, and the sign of the index is ignored.
  g->RowCheckBoxes(true);
  g->RowImage(1, -2);
  g->Refresh();
  EXPECT_EQ(Px(*g, 22, y), kGreen);
  EXPECT_EQ(Px(*g, 29, y + 7), kGreen);
  EXPECT_EQ(Px(*g, 30, y + 7), kWhite);
}

TEST_F(GridImagesTest, CellImagePlacedByTheColumnsImageAlignment) {
  auto g = MakeGrid(2);
  const int h = g->Metrics().defaultRowHeight, top = RowTop(*g, 0), m = g->MinVerticalOffset();
  g->CellImage(0, 1, 1);
  struct Case {
    int32_t alignment;
    int x, y;
  } cases[] = {
      {AlignToLeftTop, 103, top + m},          {AlignToLeftCenter, 103, top + (h - 8) / 2},
      {AlignToRightCenter, 149, top + (h - 8) / 2}, {AlignToLeftBottom, 103, top + h - 8 - m},
      {AlignToRightBottom, 149, top + h - 8 - m},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.alignment);
    g->ColImageAlignment(1, c.alignment);
    g->Refresh();
    EXPECT_EQ(Px(*g, c.x, c.y), kBlue);
    EXPECT_EQ(Px(*g, c.x + 7, c.y + 7), kRed);
    EXPECT_EQ(Px(*g, c.x - 1, c.y), kWhite);
    EXPECT_EQ(Px(*g, c.x + 8, c.y + 7), kWhite);
    EXPECT_EQ(Px(*g, c.x, c.y - 1), kWhite);
  }
  // A second row with no image format stays empty.
  EXPECT_EQ(Px(*g, 149 + 3, RowTop(*g, 1) + h - 8 - m + 3), kWhite);
}

// The leftmost and rightmost columns in [x0, x1) of a row band holding a dark (text) pixel.
std::pair<int, int> InkSpan(const USFlexGrid& g, int x0, int x1, int y0, int y1) {
  platform::PumpMessages();
  const auto img = platform::CaptureWindow(g.hWnd());
  int lo = -1, hi = -1;
  for (int x = x0; x < x1; ++x)
    for (int y = y0; y < y1; ++y)
      if ((img.pixel(x, y) & 0xFFFFFF) != kWhite && (img.pixel(x, y) & 0xFFFFFF) != kBlue &&
          (img.pixel(x, y) & 0xFFFFFF) != kRed) {
        if (lo < 0) lo = x;
        hi = x;
      }
  return {lo, hi};
}

TEST_F(GridImagesTest, TextMakesRoomForTheImage) {
  auto g = MakeGrid(1);
  g->CellText(0, 1, u"WW");
  g->CellAlignment(0, 1, AlignToLeftCenter);
  const int top = RowTop(*g, 0), bottom = top + g->Metrics().defaultRowHeight;
  const auto plain = InkSpan(*g, 100, 160, top, bottom);
  ASSERT_GE(plain.first, 103);
  ASSERT_LT(plain.first, 106);
  g->CellImage(0, 1, 1);
  const auto left = InkSpan(*g, 100, 160, top, bottom);
  EXPECT_EQ(left.first - plain.first, 8 + 2);
  // Right-aligned text with the image after it: the text ends before the image.
  g->CellAlignment(0, 1, AlignToRightCenter);
  g->ColImageAlignment(1, AlignToRightCenter);
  g->Refresh();
  const auto right = InkSpan(*g, 100, 160, top, bottom);
  // (a glyph may overhang its box by a pixel; it never reaches the image)
  EXPECT_LT(right.second, 149);
  EXPECT_GT(right.second, 149 - 2 - 5);
  // Row images widen column 0's strip to 3 + 8 + 2, and the text starts 3 after the strip
  // where it started 3 into the cell before.
  g->CellAlignment(0, 0, AlignToLeftCenter);
  const auto name = InkSpan(*g, 1, 100, top, bottom);  // past the border
  g->RowImage(0, 2);
  const auto shifted = InkSpan(*g, 11, 100, top, bottom);
  EXPECT_EQ(shifted.first - name.first, 8 + 2 + 3) << name.first << " " << shifted.first;
}

TEST_F(GridImagesTest, SelectedRowsBlendCellImagesOnlyWhenAsked) {
  auto g = MakeGrid(3);
  g->FocusRectMode(Focus_Row);
  g->FocusRectColor(0xFF8000);  // BGR: blue 255, green 128, red 0
  g->RowImage(1, 1);
  g->CellImage(1, 1, 2);
  g->Row(0);
  g->RowSelected(1, true);
  const int h = g->Metrics().defaultRowHeight, y = RowTop(*g, 1) + (h - 8) / 2;
  // Plain by default; the row image's strip keeps the unselected back.
  EXPECT_EQ(Px(*g, 103 + 3, y + 3), kGreen);
  EXPECT_EQ(Px(*g, 4, y + 3), kRed);
  EXPECT_EQ(Px(*g, 1, y + 3), kWhite);
  g->ApplySelectionToImages(true);
  g->Refresh();
  // Half strength over the selection: green 255 over (0, 128, 255) at alpha 127.
  const COLORREF p = Px(*g, 103 + 3, y + 3);
  const int r = (p >> 16) & 0xFF, gr = (p >> 8) & 0xFF, b = p & 0xFF;
  EXPECT_NEAR(r, 0, 1);
  EXPECT_NEAR(gr, (255 * 127 + 128 * 128) / 255, 1);
  EXPECT_NEAR(b, (255 * 128) / 255, 1);
  EXPECT_EQ(Px(*g, 4, y + 3), kRed);  // row images stay plain in their strip
  // Unselected rows stay plain.
  g->CellImage(0, 1, 2);
  EXPECT_EQ(Px(*g, 103 + 3, RowTop(*g, 0) + (h - 8) / 2 + 3), kGreen);
}

TEST_F(GridImagesTest, MissingImagesSkipOnlyThemselves) {
  auto g = MakeGrid(2);
  g->CellText(0, 1, u"WW");
  const int top = RowTop(*g, 0), bottom = top + g->Metrics().defaultRowHeight;
  g->Redraw(false);
  g->RowImage(0, 9);  // the list has two images
  g->CellImage(0, 1, -7);
  g->RowImage(1, INT32_MIN);
  EXPECT_NO_THROW(g->Redraw(true));
  // Nothing drawn where the images would be, the text still there after their room.
  for (int x = 3; x < 11; ++x) EXPECT_EQ(Px(*g, x, top + 10), kWhite);
  const auto ink = InkSpan(*g, 100, 160, top, bottom);
  EXPECT_GE(ink.first, 113);
  // An empty list draws nothing either.
  m_lists->Item(1)->Images()->Clear();
  g->RowImage(0, 1);
  EXPECT_NO_THROW(g->Refresh());
  EXPECT_EQ(Px(*g, 3, top + (bottom - top - 8) / 2), kWhite);
}

// A 24-bit BMP file of w x h pixels in one colour (0xRRGGBB).
host::ByteArray SolidBmp(int w, int h, uint32_t rgb) {
  const int stride = (w * 3 + 3) & ~3;
  const uint32_t size = 54 + static_cast<uint32_t>(stride * h);
  std::vector<uint8_t> b(size, 0);
  auto put32 = [&](size_t at, uint32_t v) { std::memcpy(&b[at], &v, 4); };
  b[0] = 'B';
  b[1] = 'M';
  put32(2, size);
  put32(10, 54);
  put32(14, 40);
  put32(18, static_cast<uint32_t>(w));
  put32(22, static_cast<uint32_t>(h));
  b[26] = 1;
  b[28] = 24;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      uint8_t* p = &b[54 + static_cast<size_t>(y * stride + x * 3)];
      p[0] = rgb & 0xFF;
      p[1] = (rgb >> 8) & 0xFF;
      p[2] = (rgb >> 16) & 0xFF;
    }
  return host::ByteArray(b.begin(), b.end());
}

TEST_F(GridImagesTest, CellPictureFillsTheCellKeepingItsProportions) {
  image::InstallPictureDecoder();
  auto g = MakeGrid(2);
  g->ImageList(nullptr);
  // Left-aligned text is inset 3, which the picture's box follows.
  g->CellAlignment(0, 1, AlignToLeftCenter);
  g->CellAlignment(1, 1, AlignToLeftCenter);
  const int h = g->Metrics().defaultRowHeight, top = RowTop(*g, 0);
  // A wide picture meets the box's width; a tall one its height.
  g->CellPicture(0, 1, host::StdPicture::FromBytes(SolidBmp(40, 4, 0x0000FF)));
  // The box: the text's room (103 to 157) and the cell less 2 at top and bottom.
  const int bw = 157 - 103, bh = h - 4;
  const double scale = std::min(bw / 40.0, bh / 4.0);
  const int pw = static_cast<int>(std::lround(40 * scale)), ph = static_cast<int>(std::lround(4 * scale));
  const int py = top + 2 + (bh - ph) / 2;
  EXPECT_EQ(Px(*g, 103 + 1, py + 1), kBlue);
  EXPECT_EQ(Px(*g, 103 + pw - 2, py + ph - 2), kBlue);
  EXPECT_EQ(Px(*g, 103 + pw + 1, py + 1), kWhite);
  EXPECT_EQ(Px(*g, 103 + 1, py - 2), kWhite);

  g->CellPicture(1, 1, host::StdPicture::FromBytes(SolidBmp(4, 40, 0xFF0000)));
  const int top1 = RowTop(*g, 1);
  const double s1 = std::min(bw / 4.0, bh / 40.0);
  const int qw = static_cast<int>(std::lround(4 * s1));
  ASSERT_GE(qw, 2);
  EXPECT_EQ(Px(*g, 103, top1 + 2 + bh / 2), kRed);
  EXPECT_EQ(Px(*g, 103 + qw - 1, top1 + 2 + bh / 2), kRed);
  EXPECT_EQ(Px(*g, 103 + qw + 1, top1 + 2 + bh / 2), kWhite);
  EXPECT_EQ(Px(*g, 103, top1 + 1), kWhite);
  // Taken away, the cell is empty again; a picture that is not one draws nothing.
  g->CellPicture(1, 1, nullptr);
  EXPECT_EQ(Px(*g, 103, top1 + 2 + bh / 2), kWhite);
  g->CellPicture(1, 1, host::StdPicture::FromBytes(host::ByteArray{1, 2, 3}));
  EXPECT_EQ(Px(*g, 103, top1 + 2 + bh / 2), kWhite);
  image::UninstallPictureDecoder();
}

TEST_F(GridImagesTest, NeverSmallerThanSixtyBySixty) {
  auto g = Make(10, 10, 100, 100);
  g->Move(150, 150, 30, 45);
  platform::PumpMessages();
  EXPECT_EQ(g->Width(), 60);
  EXPECT_EQ(g->Height(), 60);
  g->Move(150, 150, 75, 30);
  platform::PumpMessages();
  EXPECT_EQ(g->Width(), 75);
  EXPECT_EQ(g->Height(), 60);
}

// Status icons: a check box column with row images, a cell image column, a selected row.
TEST_F(GridImagesTest, GoldenStatusIcons) {
  auto lists = imagelist::APIImageLists::Create();
  auto list = lists->Add(10, 10, u"status");
  // A filled disc of 10 pixels in three colours, hard-edged so that the picture is exact.
  for (uint32_t rgb : {0x2EA043u, 0xD29922u, 0xCF222Eu}) {
    image::API32bppDIB dib;
    ASSERT_TRUE(dib.InitializeDIB(10, 10));
    auto* px = reinterpret_cast<uint32_t*>(dib.BitsPointer());
    for (int y = 0; y < 10; ++y)
      for (int x = 0; x < 10; ++x) {
        const double dx = x - 4.5, dy = y - 4.5;
        px[y * 10 + x] = dx * dx + dy * dy <= 22 ? 0xFF000000 | rgb : 0;
      }
    dib.SetImageType(image::imgBmpPARGB);
    list->Images()->AddImage_fromDIB(dib);
  }
  auto g = Make(10, 10, 220, 110);
  g->Redraw(false);
  g->RowCheckBoxes(true);
  g->ApplySelectionToImages(true);
  g->AddColumn(u"Client", 1500);
  g->AddColumn(u"State", 1500, AlignToLeftCenter, TypeString, {}, {}, AlignToLeftCenter);
  const char16_t* rows[] = {u"Ana\tPaid", u"Bruno\tLate", u"Carla\tOpen", u"Davi\tPaid"};
  const int16_t states[] = {1, 3, 2, 1};
  for (int i = 0; i < 4; ++i) {
    g->AddItem(rows[i]);
    g->RowImage(i, states[i]);
    g->CellImage(i, 1, states[i]);
  }
  g->ImageList(list);
  g->RowChecked(0, true);
  g->RowSelected(2, true);
  g->Row(2);
  g->Redraw(true);
  platform::PumpMessages();
  const auto img = platform::CaptureWindow(g->hWnd());
  test::ExpectGolden("grid", "status_icons", img.width(), img.height(), Pixels(img), true);
}

}  // namespace
}  // namespace mx::grid::testing

namespace mx::grid::testing {
namespace {

// The example form shows a status disc in front of every client: paid green, open amber.
TEST_F(GridPaintTest, ExampleShowsStatusIcons) {
  const std::string png = ::testing::TempDir() + "grid_example_icons.png";
  std::ostringstream err;
  ASSERT_EQ(RenderGridExample(std::string(MX_SOURCE_DIR) + "/examples/grid.frm",
                              std::string(MX_SOURCE_DIR) + "/examples/grid.db", png, err),
            0)
      << err.str();
  int w = 0, h = 0;
  std::vector<uint32_t> px;
  ASSERT_TRUE(test::ReadPngFile(png, w, h, px));
  int green = 0, amber = 0;
  for (uint32_t p : px) {
    green += (p & 0xFFFFFF) == 0x2EA043;
    amber += (p & 0xFFFFFF) == 0xD29922;
  }
  // The first order is paid: at least its whole disc (68 pixels of the 10 x 10 mask) shows.
  EXPECT_GE(green, 68);
  EXPECT_GE(amber, 68);
  std::remove(png.c_str());
}

}  // namespace
}  // namespace mx::grid::testing
