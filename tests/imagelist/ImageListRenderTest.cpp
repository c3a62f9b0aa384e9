// Drawing cells: the source never leaves its cell, scaled pictures sit centred in their cells,
// runs of cells, and icons made from a cell.
#include <gtest/gtest.h>

#include "ImageListTestSupport.h"
#include "host/Err.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "imagelist/ByteIO.h"
#include "imagelist/IconResource.h"
#include "platform/Gdi.h"

namespace mx::imagelist {
namespace {

using host::Variant;
using test::PixelAt;
using test::SetPixelAt;
using test::Solid;

constexpr uint32_t kRed = 0xFFFF0000, kBlue = 0xFF0000FF, kGreen = 0xFF00FF00;

struct Fixture {
  std::shared_ptr<APIImageLists> lists = APIImageLists::Create();
  std::shared_ptr<APIListImages> images;
  Fixture(int w, int h) { images = lists->Add(w, h, u"k")->Images(); }
};

// Each row of a surface as a string of letters: R, B, G, '.' for transparent, '?' otherwise.
std::vector<std::string> Picture(const image::API32bppDIB& dib) {
  std::vector<std::string> rows;
  for (int y = 0; y < dib.Height(); ++y) {
    std::string r;
    for (int x = 0; x < dib.Width(); ++x) {
      uint32_t p = PixelAt(dib, x, y);
      r += p == kRed ? 'R' : p == kBlue ? 'B' : p == kGreen ? 'G' : p == 0 ? '.' : '?';
    }
    rows.push_back(r);
  }
  return rows;
}

TEST(ImageListRender, TheSourceNeverReachesIntoTheNextCell) {
  Fixture f(4, 2);
  f.images->AddImage_fromDIB(*Solid(4, 2, kRed));
  f.images->AddImage_fromDIB(*Solid(4, 2, kBlue));
  auto dest = Solid(10, 2, 0);
  // A source wider than the cell at the cell's size: only the cell is drawn.
  f.images->Render(1, 0, 0, 0, 0, 0, 0, 0, 9, 0, 100, -1, 0, 0, dest.get());
  EXPECT_EQ(Picture(*dest), (std::vector<std::string>{"RRRR......", "RRRR......"}));
  // Starting inside the cell and stretched: still nothing of the blue neighbour.
  dest = Solid(10, 2, 0);
  f.images->Render(1, 0, 1, 0, 8, 2, 2, 0, 50, 2, 100, -1, 0, 0, dest.get());
  EXPECT_EQ(Picture(*dest), (std::vector<std::string>{".RRRRRRRR.", ".RRRRRRRR."}));
  // By key, and a negative source width mirrors the cell.
  auto half = Solid(4, 2, kGreen);
  SetPixelAt(*half, 0, 0, kRed);
  SetPixelAt(*half, 0, 1, kRed);
  f.images->AddImage_fromDIB(*half, Variant::Missing(), u"mixed");
  dest = Solid(4, 2, 0);
  f.images->Render(u"MIXED", 0, 0, 0, 0, 0, 0, 0, -4, 0, 100, -1, 0, 0, dest.get());
  EXPECT_EQ(Picture(*dest), (std::vector<std::string>{"GGGR", "GGGR"}));
  try {
    f.images->Render(u"none", 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, -1, 0, 0, dest.get());
    ADD_FAILURE();
  } catch (const host::RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1962);
    EXPECT_EQ(e.Source(), u"Images.Render");
  }
}

TEST(ImageListRender, ScaledPicturesAreCentredWithTransparentMargins) {
  Fixture f(8, 4);
  f.images->AddImage_fromDIB(*Solid(4, 4, kRed));                                        // fits: 4x4
  f.images->AddImage_fromDIB(*Solid(4, 4, kBlue), Variant::Missing(), u"", u"", false);  // stretched
  f.images->AddImage_fromDIB(*Solid(16, 4, kGreen));                                     // shrinks to 8x2
  const auto& strip = f.images->Sheet();
  auto rows = Picture(strip);
  EXPECT_EQ(rows[0].substr(0, 24), "..RRRR..BBBBBBBB........");
  EXPECT_EQ(rows[1].substr(0, 24), "..RRRR..BBBBBBBBGGGGGGGG");
  EXPECT_EQ(rows[2].substr(0, 24), "..RRRR..BBBBBBBBGGGGGGGG");
  EXPECT_EQ(rows[3].substr(0, 24), "..RRRR..BBBBBBBB........");
}

TEST(ImageListRender, RangesDrawBoxesLeftToRight) {
  Fixture f(2, 2);
  f.images->AddImage_fromDIB(*Solid(2, 2, kRed));
  f.images->AddImage_fromDIB(*Solid(2, 2, kBlue));
  f.images->AddImage_fromDIB(*Solid(2, 2, kGreen));
  auto dest = Solid(12, 4, 0);
  // Boxes no wider than a cell take the cell scaled into them.
  f.images->RenderRange(2, u"nothing", 0, 1, 0, 2, 2, dest.get());
  EXPECT_EQ(Picture(*dest)[0], ".BBGG.......");
  // Wider boxes show each cell at its size, centred in its box.
  dest = Solid(12, 4, 0);
  f.images->RenderRange(1, 3, 0, 0, 0, 4, 4, dest.get());
  EXPECT_EQ(Picture(*dest), (std::vector<std::string>{"............", ".RR..BB..GG.", ".RR..BB..GG.", "............"}));
  dest = Solid(12, 4, 0);
  f.images->RenderRange(3, 1, 0, 0, 0, 4, 4, dest.get());  // stop before start: nothing
  EXPECT_EQ(Picture(*dest)[1], "............");
  EXPECT_THROW(f.images->RenderRange(9, 1, 0, 0, 0, 4, 4, dest.get()), host::RuntimeError);
}

TEST(ImageListRender, IconsTakeTheSmallestDepthThatHoldsTheColours) {
  Fixture f(8, 2);
  auto two = Solid(8, 2, kRed);
  SetPixelAt(*two, 7, 0, kBlue);
  f.images->AddImage_fromDIB(*two);
  auto clear = Solid(8, 2, kRed);
  SetPixelAt(*clear, 1, 0, 0);
  SetPixelAt(*clear, 2, 0, kGreen);
  f.images->AddImage_fromDIB(*clear);
  auto soft = Solid(8, 2, 0x80400000);  // partial alpha needs 32 bits
  f.images->AddImage_fromDIB(*soft);

  int32_t depth = 0;
  ExtractedIcon icon;
  platform::HICON h = f.images->ExtractIcon(1, depth, &icon);
  ASSERT_NE(h, 0u);
  EXPECT_EQ(depth, 1);
  const auto& r = icon.resource;
  EXPECT_EQ(GetU32(r, 8), 4u);  // double height
  EXPECT_EQ(GetU16(r, 14), 1u);
  // Palette: blue then red (sorted), rows bottom-up: the top row is the last colour row.
  EXPECT_EQ(GetU32(r, 40), 0x000000FFu);
  EXPECT_EQ(GetU32(r, 44), 0x00FF0000u);
  EXPECT_EQ(r[48 + 4], 0xFEu);  // top row: seven red (1) and one blue (0)
  EXPECT_EQ(r[48], 0xFFu);      // bottom row: all red
  platform::SIZE size{};
  EXPECT_TRUE(platform::GetIconSize(h, &size));
  EXPECT_EQ(size.cx, 8);
  platform::DestroyIcon(h);

  h = f.images->ExtractIcon(2, depth, &icon);
  EXPECT_EQ(depth, 4);  // red, green and black for the transparent pixel
  const size_t mask = 40 + 16 * 4 + 2 * 4;
  EXPECT_EQ(icon.resource[mask + 4], 0x40u);  // the top row's second pixel is transparent
  EXPECT_EQ(icon.resource[mask], 0x00u);
  platform::DestroyIcon(h);

  h = f.images->ExtractIcon(3, depth, &icon);
  EXPECT_EQ(depth, 32);
  EXPECT_EQ(GetU32(icon.resource, 40), 0x807F0000u);  // straight alpha: 0x40 * 255 / 0x80, truncated
  platform::DestroyIcon(h);

  int32_t w = 0, hh = 0;
  h = f.images->ExtractIconEx(1, true, false, 100, -1, 0, 0, w, hh, depth, &icon);
  EXPECT_EQ(w, 8);
  EXPECT_EQ(hh, 2);
  EXPECT_EQ(icon.resource[48 + 4], 0x7Fu);  // mirrored: the blue pixel now comes first
  platform::DestroyIcon(h);
  EXPECT_THROW((void)f.images->ExtractIconEx(u"x", false, false, 100, -1, 0, 0, w, hh, depth), host::RuntimeError);
}

// The icon handle draws what the cell holds: colours where it is opaque, the background where
// the mask says transparent.
TEST(ImageListRender, IconHandlesDrawTheCell) {
  Fixture f(4, 2);
  auto pic = Solid(4, 2, kRed);
  SetPixelAt(*pic, 1, 0, 0);
  SetPixelAt(*pic, 2, 1, kBlue);
  f.images->AddImage_fromDIB(*pic);
  int32_t depth = 0;
  platform::HICON icon = f.images->ExtractIcon(1, depth);
  ASSERT_NE(icon, 0u);
  EXPECT_EQ(depth, 4);
  platform::HDC dc = platform::CreateCompatibleDC(0);
  platform::HBITMAP bmp = platform::CreateCompatibleBitmap(dc, 4, 2);
  platform::HGDIOBJ old = platform::SelectObject(dc, bmp);
  platform::RECT all{0, 0, 4, 2};
  platform::HBRUSH green = platform::CreateSolidBrush(0x00FF00);
  platform::FillRect(dc, &all, green);
  EXPECT_TRUE(platform::DrawIconEx(dc, 0, 0, icon, 0, 0, 0, 0, platform::DI_NORMAL));
  EXPECT_EQ(platform::GetPixel(dc, 0, 0), 0x0000FFu);  // COLORREF: red in the low byte
  EXPECT_EQ(platform::GetPixel(dc, 1, 0), 0x00FF00u);  // transparent: the green ground
  EXPECT_EQ(platform::GetPixel(dc, 2, 1), 0xFF0000u);
  platform::SelectObject(dc, old);
  platform::DeleteObject(bmp);
  platform::DeleteObject(green);
  platform::DeleteDC(dc);
  platform::DestroyIcon(icon);
  // Bytes that are not a resource image make no icon.
  EXPECT_EQ(CreateIconFromResourceImage(std::vector<uint8_t>(30, 0)), 0u);
}

}  // namespace
}  // namespace mx::imagelist
