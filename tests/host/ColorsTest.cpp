// Colour shifting, OLE_COLOR resolution and the per-thread toolkit theme.
#include <gtest/gtest.h>

#include <thread>

#include "host/Colors.h"
#include "platform/SysColors.h"

namespace mx::host {
namespace {

TEST(ShiftRGBColor, ClampsEachChannelWithoutCarrying) {
  // A full red channel must not spill into green, nor an empty one borrow from it.
  EXPECT_EQ(ShiftRGBColor(0x0000FF, 1), 0x0101FF);
  EXPECT_EQ(ShiftRGBColor(0x010000, -2), 0x000000);
  EXPECT_EQ(ShiftRGBColor(0x80FF00, 0x10), 0x90FF10);
  EXPECT_EQ(ShiftRGBColor(0x7F0080, -0x80), 0x000000);
  EXPECT_EQ(ShiftRGBColor(0x7F0081, -0x80), 0x000001);
  EXPECT_EQ(ShiftRGBColor(0x000000, INT16_MAX), 0xFFFFFF);
  EXPECT_EQ(ShiftRGBColor(0xFFFFFF, INT16_MIN), 0x000000);
  EXPECT_EQ(ShiftRGBColor(0x40C020, 120), 0xB8FF98);
}

TEST(ShiftRGBColor, ReadsOnlyTheLowBytesOfASystemColour) {
  // The index byte is shifted as if it were red; the flag is gone from the result.
  EXPECT_EQ(ShiftRGBColor(vbButtonFace, 0), 0x00000F);
  EXPECT_EQ(ShiftRGBColor(vbButtonFace, 0x10), 0x10101F);
  EXPECT_FALSE(IsSystemColor(ShiftRGBColor(static_cast<OLE_COLOR>(0xFF000000u), 5)));
}

class TranslateColorTest : public ::testing::Test {
 protected:
  void TearDown() override { platform::ResetSysColors(); }
};

TEST_F(TranslateColorTest, PlainColoursPassThrough) {
  EXPECT_EQ(TranslateColor(0x000000), 0x000000);
  EXPECT_EQ(TranslateColor(0xFFFFFF), 0xFFFFFF);
  EXPECT_EQ(TranslateColor(0x501A00), 0x501A00);
}

TEST_F(TranslateColorTest, SystemColoursFollowThePlatformScheme) {
  EXPECT_EQ(TranslateColor(vbButtonFace), static_cast<int32_t>(platform::GetSysColor(platform::COLOR_BTNFACE)));
  EXPECT_EQ(TranslateColor(vbWindowText), static_cast<int32_t>(platform::GetSysColor(platform::COLOR_WINDOWTEXT)));

  // A changed scheme is seen at once: nothing is cached.
  const int index = platform::COLOR_BTNFACE;
  const platform::COLORREF changed = 0x123456;
  platform::SetSysColors(1, &index, &changed);
  EXPECT_EQ(TranslateColor(vbButtonFace), 0x123456);
  EXPECT_EQ(TranslateColor(kSystemColorFlag | 30), static_cast<int32_t>(platform::GetSysColor(30)));
}

TEST_F(TranslateColorTest, OnlyTheLowByteNamesTheSystemColour) {
  const int index = platform::COLOR_HIGHLIGHT;
  const platform::COLORREF changed = 0xA0B0C0;
  platform::SetSysColors(1, &index, &changed);
  EXPECT_EQ(TranslateColor(static_cast<OLE_COLOR>(0x8012340Du)), 0xA0B0C0);
}

TEST_F(TranslateColorTest, RefusedColoursGiveMinusOne) {
  EXPECT_EQ(TranslateColor(kSystemColorFlag | 31), -1);       // past the last system colour
  EXPECT_EQ(TranslateColor(kSystemColorFlag | 0xFF), -1);
  EXPECT_EQ(TranslateColor(0x01000005), -1);                  // palette index without a palette
  EXPECT_EQ(TranslateColor(0x04000000), -1);
  EXPECT_EQ(TranslateColor(static_cast<OLE_COLOR>(0xFF000000u)), -1);
  EXPECT_EQ(TranslateColor(-1), -1);
  // Palette-relative colours keep their RGB: every surface is true colour.
  EXPECT_EQ(TranslateColor(0x02123456), 0x123456);
}

TEST(DefaultToolkitTheme, StartsAtTwoAndIsKeptPerThread) {
  int32_t seenByOther = -1;
  std::thread([&] { seenByOther = DefaultToolkitTheme(); }).join();
  EXPECT_EQ(seenByOther, 2);

  const int32_t before = DefaultToolkitTheme();
  SetDefautlToolkitTheme(5);
  EXPECT_EQ(DefaultToolkitTheme(), 5);
  std::thread([&] { seenByOther = DefaultToolkitTheme(); }).join();
  EXPECT_EQ(seenByOther, 2);
  SetDefautlToolkitTheme(before);
}

}  // namespace
}  // namespace mx::host
