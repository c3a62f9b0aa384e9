// USListBox's rows on the screen: where the text starts, the separator line, the selection, the
// icons from a bound image list, the themes, Redraw, the bag, and a golden of a whole list.
#include <gtest/gtest.h>

#include <algorithm>

#include "controls/USImageList.h"
#include "entry/USListBoxTestSupport.h"
#include "frame/Themes.h"
#include "host/Colors.h"
#include "host/PropertyBag.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "support/Golden.h"

using mx::entry::testing::ListBoxTest;
using mx::host::Variant;
using namespace mx::platform;

namespace {

// The leftmost column of row `slot` holding a dark (text) pixel, from x = 1 (past the border).
int FirstDarkColumn(const CapturedImage& img, int slot, int rowHeight = 26) {
  for (int x = 1; x < img.width(); ++x)
    for (int y = slot * rowHeight + 1; y < (slot + 1) * rowHeight - 1; ++y) {
      const COLORREF c = img.color(x, y);
      if ((c & 0xFF) < 0x80 && ((c >> 8) & 0xFF) < 0x80 && ((c >> 16) & 0xFF) < 0x80) return x;
    }
  return -1;
}

// An opaque square icon of one colour (0xRRGGBB), premultiplied BGRA as the surfaces hold it.
std::unique_ptr<mx::image::API32bppDIB> SolidIcon(int size, uint32_t rgb) {
  auto dib = std::make_unique<mx::image::API32bppDIB>();
  dib->InitializeDIB(size, size);
  uint32_t* px = reinterpret_cast<uint32_t*>(dib->BitsPointer());
  std::fill(px, px + size * size, 0xFF000000u | rgb);
  return dib;
}

class ListBoxPaintTest : public ListBoxTest {
 protected:
  // Three 16 x 16 icons, red, green and blue, under the key "Key".
  std::shared_ptr<mx::controls::USImageList> MakeIcons() {
    auto control = std::make_shared<mx::controls::USImageList>();
    auto list = control->ImageLists()->Add(16, 16, u"Key");
    for (uint32_t rgb : {0xD02020u, 0x20A020u, 0x2040D0u}) list->Images()->AddImage_fromDIB(*SolidIcon(16, rgb));
    return control;
  }
};

TEST_F(ListBoxPaintTest, TextStartsAtItemTextLeftWithoutAnIcon) {
  list->SetUSImageList(MakeIcons());
  list->AddItem(Variant(u"Muro"));                  // ItemIcon -1
  list->AddItem(Variant(u"Muro"), 0, 0);            // the first icon
  CapturedImage at3 = Capture();
  const int plain = FirstDarkColumn(at3, 0);
  ASSERT_GT(plain, 0);
  list->ItemTextLeft(23);
  CapturedImage at23 = Capture();
  EXPECT_EQ(FirstDarkColumn(at23, 0), plain + 20);
  // With an icon the icon sits at ItemTextLeft and the text follows it.
  EXPECT_EQ(at23.color(23, 26 + 5), 0x2020D0u);  // red, as a COLORREF
  EXPECT_EQ(at23.color(22, 26 + 5) & 0xFF, 0xFCu);  // the even row's back, left of the icon
  EXPECT_EQ(FirstDarkColumn(at23, 1), plain + 20 + 16 + 4);
}

TEST_F(ListBoxPaintTest, SeparatorLineAboveTheItemOnly) {
  Fill(4);
  list->ItemSeparatorLine(0, true);  // the first item never has one
  list->ItemSeparatorLine(2, true);
  CapturedImage img = Capture();
  EXPECT_EQ(img.color(60, 2 * 26 - 1), 0xFAFAFEu);
  EXPECT_EQ(img.color(60, 2 * 26 - 2), 0xFBFBFCu);  // row 1 is an even row
  EXPECT_EQ(img.color(60, 2 * 26), 0xFFFFFFu);
  EXPECT_EQ(img.color(60, 1), 0xFFFFFFu);
  // Repainting the row above keeps the line, which lies in that row's last pixel row.
  list->ItemTag(1, u"again");
  img = Capture();
  EXPECT_EQ(img.color(60, 2 * 26 - 1), 0xFAFAFEu);
  // The border over everything, in BorderColor.
  const COLORREF border = static_cast<COLORREF>(mx::host::ShiftRGBColor(0x9A572B, 120));
  EXPECT_EQ(img.color(0, 40), border);
  EXPECT_EQ(img.color(kWidth - 1, 40), border);
  EXPECT_EQ(img.color(50, 0), border);
}

TEST_F(ListBoxPaintTest, SelectionColoursAndDisabledItems) {
  Fill(3);
  list->ItemSelectedColor1(0x00FFFF);
  list->ItemSelectedColor2(0x00FFFF);
  list->ItemSelectedBorderColor(0xFF0000);
  list->ListIndex(1);
  CapturedImage img = Capture();
  EXPECT_EQ(img.color(150, 26 + 13), 0x00FFFFu);
  EXPECT_EQ(img.color(150, 26), 0xFF0000u);
  EXPECT_EQ(img.color(150, 2 * 26 - 1), 0xFF0000u);
  // A disabled selected item does not show the selection.
  list->ItemEnabled(1, false);
  img = Capture();
  EXPECT_EQ(img.color(150, 26 + 13), 0xFBFBFCu);
  // A vertical gradient from colour 1 at the top to colour 2 at the bottom of the inner rows.
  list->ItemEnabled(1, true);
  list->ItemSelectedColor1(0x000000);
  list->ItemSelectedColor2(0x0000F0);
  img = Capture();
  EXPECT_EQ(img.color(150, 27), 0x000000u);
  EXPECT_EQ(img.color(150, 2 * 26 - 2), 0x0000F0u);
}

TEST_F(ListBoxPaintTest, ThemeSetsTheListColoursFromThePalette) {
  for (int32_t theme = 0; theme < mx::frame::kThemeCount; ++theme) {
    list->Theme(theme);
    EXPECT_EQ(list->BorderColor(),
              mx::host::ShiftRGBColor(mx::frame::GetThemeColor(theme, mx::frame::ThemeBorderColor), 120));
    EXPECT_EQ(list->BackColorEvenRows(), mx::frame::GetThemeColor(theme, mx::frame::ThemeListEvenRows));
    EXPECT_EQ(list->ItemSelectedBorderColor(), mx::frame::GetThemeColor(theme, mx::frame::ThemeSelectionBorder));
    EXPECT_EQ(list->ItemSelectedColor1(), mx::frame::GetThemeColor(theme, mx::frame::ThemeSelectionFill));
    EXPECT_EQ(list->ItemSelectedColor2(), list->ItemSelectedColor1());
  }
}

TEST_F(ListBoxPaintTest, RedrawOffSuspendsPaintingAndOnPaintsOnce) {
  Fill(3);
  const int64_t before = list->RowsPainted();
  list->Redraw(false);
  list->BackColor(0x00FF00);
  Fill(3);
  list->ListIndex(2);
  EXPECT_EQ(list->RowsPainted(), before);
  list->Redraw(true);
  EXPECT_EQ(list->RowsPainted(), before + 5);  // the five visible rows, once
  list->Redraw(true);
  EXPECT_EQ(list->RowsPainted(), before + 5);
}

TEST_F(ListBoxPaintTest, BagRoundTripAndTheRedrawDefault) {
  list->Theme(4);  // first: a theme sets the back colour too
  list->ItemHeight(20);
  list->BackColor(0x112233);
  list->HoverSelection(true);
  list->SelectMode(mx::entry::Multiple);
  list->CacheIncrement(50);
  list->OrderType(mx::entry::Descendent);
  list->ItemTextLeft(9);
  mx::host::PropertyBag bag;
  list->SaveTo(bag);
  // The list keeps Redraw True in the bag: its default there is False.
  EXPECT_TRUE(bag.ReadProperty(u"Redraw", Variant(false)).ToBoolean());

  auto copy = std::dynamic_pointer_cast<mx::entry::USListBox>(form->AddControl(u"Morvantix.USListBox", u"lst2"));
  copy->Move(0, 0, 3000, 1500);
  copy->LoadFrom(bag, true);
  EXPECT_EQ(copy->ItemHeight(), 20);
  EXPECT_EQ(copy->BackColor(), 0x112233u);
  EXPECT_TRUE(copy->HoverSelection());
  EXPECT_EQ(copy->SelectMode(), mx::entry::Multiple);
  EXPECT_EQ(copy->CacheIncrement(), 50);
  EXPECT_EQ(copy->OrderType(), mx::entry::Descendent);
  EXPECT_EQ(copy->ItemTextLeft(), 9);
  EXPECT_EQ(copy->Theme(), 4);
  EXPECT_EQ(copy->BorderColor(), list->BorderColor());
  EXPECT_TRUE(copy->Redraw());
  EXPECT_EQ(copy->VisibleRows(), 100 / 20);

  // A list saved from an empty bag reads Redraw False and paints nothing until it is set.
  mx::host::PropertyBag empty;
  auto bare = std::dynamic_pointer_cast<mx::entry::USListBox>(form->AddControl(u"Morvantix.USListBox", u"lst3"));
  bare->LoadFrom(empty, true);
  EXPECT_FALSE(bare->Redraw());
  EXPECT_EQ(bare->ItemHeight(), 26);
  EXPECT_EQ(bare->BackColorEvenRows(), 0xFBFBFCu);
  bare->AddItem(Variant(u"a"));
  EXPECT_EQ(bare->RowsPainted(), 0);
  bare->Redraw(true);
  EXPECT_EQ(bare->RowsPainted(), 1);
}

TEST_F(ListBoxPaintTest, GoldenListWithIconsSelectionAndSeparator) {
  list->SetUSImageList(MakeIcons());
  list->AddItem(Variant(u"Aracaju"), 1, 0);
  list->AddItem(Variant(u"Belo Horizonte"), 2, 1, 2);
  list->AddItem(Variant(u"Curitiba"), 3, 2, -1, 0x0000C0);
  list->AddItem(Variant(u"Florianópolis"), 4, -1, -1, -1, false);
  list->AddItem(Variant(u"Goiânia"), 5, 0, -1, -1, true, u"", nullptr, true);
  list->AddItem(Variant(u"Manaus"), 6, 1);
  list->ListIndex(1);  // current: drawn with its selected icon, the blue one
  CapturedImage img = Capture();
  std::vector<uint32_t> px(static_cast<size_t>(img.width()) * img.height());
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) px[static_cast<size_t>(y) * img.width() + x] = img.pixel(x, y);
  mx::test::ExpectGolden("entry", "listbox_icons", img.width(), img.height(), px);
}

}  // namespace

namespace {

// Rows of the capture between top and bottom (exclusive) that hold a dark pixel in the text area.
int DarkRows(const CapturedImage& img, int top, int bottom) {
  int rows = 0;
  for (int y = top; y < bottom; ++y)
    for (int x = 3; x < 180; ++x) {
      const COLORREF c = img.color(x, y);
      if ((c & 0xFF) < 0x80 && ((c >> 8) & 0xFF) < 0x80 && ((c >> 16) & 0xFF) < 0x80) {
        ++rows;
        break;
      }
    }
  return rows;
}

TEST_F(ListBoxPaintTest, WordWrapBreaksLongTextOverTheRow) {
  list->ItemHeight(64);
  list->AddItem(Variant(u"Uma cidade com um nome comprido demais para uma linha"));
  const int single = DarkRows(Capture(), 1, 63);
  list->WordWrap(true);
  const int wrapped = DarkRows(Capture(), 1, 63);
  EXPECT_GT(single, 0);
  EXPECT_GT(wrapped, single * 3 / 2);
}

}  // namespace
