#include <gtest/gtest.h>

#include "GdiTestSupport.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/SysColors.h"

namespace mx::platform {
namespace {

using test::Canvas;

// A 2 x 1 icon: left pixel drawn, right pixel kept by the mask.
struct TwoPixelIcon {
  HBITMAP color, mask;
  TwoPixelIcon(uint32_t left, uint32_t right) {
    const uint32_t c[2] = {left, right};
    const uint32_t m[2] = {0x00000000, 0x00FFFFFF};
    color = CreateBitmap(2, 1, 1, 32, c);
    mask = CreateBitmap(2, 1, 1, 32, m);
  }
  ~TwoPixelIcon() {
    DeleteObject(color);
    DeleteObject(mask);
  }
};

TEST(GdiIcon, MaskAndThenXorWithoutAlpha) {
  int icons = LiveHandleCount(HandleType::Icon), bitmaps = LiveHandleCount(HandleType::Bitmap);
  HICON icon;
  {
    TwoPixelIcon bm(0x00102030, 0x000F0F0F);
    ICONINFO ii;
    ii.hbmColor = bm.color;
    ii.hbmMask = bm.mask;
    icon = CreateIconIndirect(&ii);
    ASSERT_NE(icon, 0u);
  }  // the icon keeps its own copy of the pixels
  {
    Canvas c(2, 1, 0x00F0F0F0);
    ASSERT_TRUE(DrawIconEx(c.dc(), 0, 0, icon, 0, 0, 0, 0, DI_NORMAL));
    EXPECT_EQ(c.at(0, 0), 0x00102030u);               // (d & 0) ^ c
    EXPECT_EQ(c.at(1, 0), 0x00F0F0F0u ^ 0x000F0F0Fu);  // (d & 1) ^ c: XOR through the mask
  }

  ICONINFO back;
  ASSERT_TRUE(GetIconInfo(icon, &back));
  BITMAP bm;
  GetObject(back.hbmColor, sizeof bm, &bm);
  EXPECT_EQ(bm.bmWidth, 2);
  DeleteObject(back.hbmColor);
  DeleteObject(back.hbmMask);

  HICON copy = CopyIcon(icon);
  EXPECT_TRUE(DestroyIcon(icon));
  EXPECT_FALSE(DestroyIcon(icon));
  SIZE sz;
  EXPECT_TRUE(GetIconSize(copy, &sz));
  EXPECT_EQ(sz, (SIZE{2, 1}));
  EXPECT_TRUE(DestroyIcon(copy));
  EXPECT_EQ(LiveHandleCount(HandleType::Icon), icons);
  EXPECT_EQ(LiveHandleCount(HandleType::Bitmap), bitmaps);
}

TEST(GdiIcon, AlphaIconsBlendByStraightAlpha) {
  TwoPixelIcon bm(0x80FF0000, 0x00000000);  // half-transparent pure red, straight alpha
  ICONINFO ii;
  ii.hbmColor = bm.color;
  ii.hbmMask = bm.mask;
  HICON icon = CreateIconIndirect(&ii);
  Canvas c(4, 2, 0xFF0000FF);
  ASSERT_TRUE(DrawIconEx(c.dc(), 0, 0, icon, 4, 2, 0, 0, DI_NORMAL));  // stretched 2x
  // Premultiplied red 0xFF * 0x80 / 255 = 0x80; blue 0xFF * 127 / 255 = 0x7F; alpha 0x80 + 0x7F.
  EXPECT_EQ(c.at(0, 0), 0xFF80007Fu);
  EXPECT_EQ(c.at(1, 1), 0xFF80007Fu);
  EXPECT_EQ(c.at(2, 0), 0xFF0000FFu);  // alpha 0 pixel leaves the destination
  DestroyIcon(icon);

  ICONINFO none;
  EXPECT_EQ(CreateIconIndirect(&none), 0u);  // a mask is required
}

TEST(GdiEdge, RaisedAndSunkenUseTheSystemColours) {
  Canvas c(4, 4, 0);
  RECT r{0, 0, 4, 4};
  ASSERT_TRUE(DrawEdge(c.dc(), &r, EDGE_RAISED, BF_RECT | BF_MIDDLE | BF_ADJUST));
  EXPECT_EQ(r, (RECT{2, 2, 2, 2}));
  auto px = [](int index) { return GetSysColor(index) == 0 ? 0u : (GetRValue(GetSysColor(index)) << 16 | GetGValue(GetSysColor(index)) << 8 | GetBValue(GetSysColor(index))); };
  EXPECT_EQ(c.at(0, 0), px(COLOR_3DLIGHT));
  EXPECT_EQ(c.at(3, 0), px(COLOR_3DDKSHADOW));  // the bottom-right colour owns the corners
  EXPECT_EQ(c.at(0, 3), px(COLOR_3DDKSHADOW));
  EXPECT_EQ(c.at(1, 1), px(COLOR_3DHILIGHT));
  EXPECT_EQ(c.at(2, 2), px(COLOR_3DSHADOW));
  r = RECT{0, 0, 4, 4};
  DrawEdge(c.dc(), &r, EDGE_SUNKEN, BF_RECT);
  EXPECT_EQ(c.at(0, 0), px(COLOR_3DSHADOW));
  EXPECT_EQ(c.at(1, 1), px(COLOR_3DDKSHADOW));
  EXPECT_EQ(c.at(3, 3), px(COLOR_3DHILIGHT));
  EXPECT_EQ(c.at(2, 2), px(COLOR_3DLIGHT));
}

}  // namespace
}  // namespace mx::platform
