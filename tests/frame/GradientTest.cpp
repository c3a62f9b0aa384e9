// The gradient painter, checked pixel by pixel against ramps worked out by hand, and the rule
// that decides when a two- or four-colour face is solid.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "frame/Gradient.h"
#include "platform/GdiTestSupport.h"

namespace mx::frame {
namespace {

using platform::test::Canvas;

// Untouched pixels keep this value, which no gradient here produces (its alpha is 255).
constexpr uint32_t kPaper = 0xFF777777;

// Picture rows top-down, left to right, over the rectangle (x, y, w, h) of the canvas.
std::vector<uint32_t> Area(const Canvas& c, int x, int y, int w, int h) {
  std::vector<uint32_t> out;
  for (int r = y; r < y + h; ++r)
    for (int col = x; col < x + w; ++col) out.push_back(c.at(col, r));
  return out;
}

// Pixels outside (x, y, w, h) that are not paper.
int TouchedOutside(const Canvas& c, int x, int y, int w, int h) {
  int n = 0;
  for (int r = 0; r < c.height(); ++r)
    for (int col = 0; col < c.width(); ++col) {
      const bool inside = col >= x && col < x + w && r >= y && r < y + h;
      if (!inside && c.at(col, r) != kPaper) ++n;
    }
  return n;
}

// From (R 0, G 100, B 10) to (R 10, G 0, B 255) over four steps, n = 3:
//   R: 0 + 10i/3           -> 0, 3, 6, 10
//   G: 100 + (-100i)/3     -> 100, 67, 34, 0     (toward zero: -33, -66, not -34, -67)
//   B: 10 + 245i/3         -> 10, 91, 173, 255
constexpr int32_t kFrom = 0x0A6400;
constexpr int32_t kTo = 0xFF000A;
constexpr uint32_t R0 = 0x0000640A, R1 = 0x0003435B, R2 = 0x000622AD, R3 = 0x000A00FF;

TEST(GradientRamp, TruncatesTowardZeroInEachChannel) {
  EXPECT_EQ(GradientRamp(kFrom, kTo, 4), (std::vector<uint32_t>{R0, R1, R2, R3}));
  // Reversed, the steps fall differently: R 10 - 10i/3 gives 10, 7, 4, 0 and B 255 - 245i/3
  // gives 255, 174, 92, 10.
  EXPECT_EQ(GradientRamp(kTo, kFrom, 4), (std::vector<uint32_t>{R3, 0x000721AE, 0x0004425C, R0}));
  EXPECT_TRUE(GradientRamp(kFrom, kTo, 0).empty());
}

TEST(PaintGradientRect, OneByOnePaintsTheSumOfHalves) {
  Canvas c(3, 3, kPaper);
  // R 49 and 5 give 24 + 2 = 26, not the mean 27; G 32 and 4 give 18; B 16 and 3 give 8 + 1 = 9.
  PaintGradientRect(c.dc(), 1, 1, 1, 1, 0x102031, 0x030405, GradientLeftToRight);
  EXPECT_EQ(c.at(1, 1), 0x001A1209u);
  EXPECT_EQ(GradientRamp(0xFFFFFF, 0xFFFFFE, 1), (std::vector<uint32_t>{0x00FEFEFE}));
  EXPECT_EQ(TouchedOutside(c, 1, 1, 1, 1), 0);
}

TEST(PaintGradientRect, SingleStepAlongTheDirectionPaintsTheMean) {
  Canvas c(5, 5, kPaper);
  // Height 1 top to bottom: the whole row is the one-entry ramp.
  PaintGradientRect(c.dc(), 1, 0, 3, 1, 0x102031, 0x030405, GradientTopToBottom);
  EXPECT_EQ(Area(c, 1, 0, 3, 1), std::vector<uint32_t>(3, 0x001A1209));
  // Width 1 left to right: the whole column.
  PaintGradientRect(c.dc(), 0, 2, 1, 3, 0x102031, 0x030405, GradientLeftToRight);
  EXPECT_EQ(Area(c, 0, 2, 1, 3), std::vector<uint32_t>(3, 0x001A1209));
}

TEST(PaintGradientRect, EachDirectionFollowsTheRamp) {
  struct Case {
    int32_t direction;
    int w, h;
    std::vector<uint32_t> expected;  // rows top-down
  };
  const Case cases[] = {
      {GradientLeftToRight, 4, 2, {R0, R1, R2, R3, R0, R1, R2, R3}},
      {GradientTopToBottom, 2, 4, {R0, R0, R1, R1, R2, R2, R3, R3}},
      // Width + height - 1 = 4 entries; pixel (c, r) is entry r + c.
      {GradientDiagonalDown, 3, 2, {R0, R1, R2, R1, R2, R3}},
      // Entry (h - 1 - r) + c: the bottom row starts the ramp.
      {GradientDiagonalUp, 3, 2, {R1, R2, R3, R0, R1, R2}},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE("direction " + std::to_string(k.direction));
    Canvas c(k.w + 3, k.h + 3, kPaper);
    PaintGradientRect(c.dc(), 2, 1, k.w, k.h, kFrom, kTo, k.direction);
    EXPECT_EQ(Area(c, 2, 1, k.w, k.h), k.expected);
    EXPECT_EQ(TouchedOutside(c, 2, 1, k.w, k.h), 0);
  }
}

TEST(PaintGradientRect, UnknownDirectionsPaintBlack) {
  for (int32_t direction : {4, 7, -1, 1000}) {
    Canvas c(6, 5, kPaper);
    PaintGradientRect(c.dc(), 1, 1, 3, 2, kFrom, kTo, direction);
    EXPECT_EQ(Area(c, 1, 1, 3, 2), std::vector<uint32_t>(6, 0u)) << direction;
    EXPECT_EQ(TouchedOutside(c, 1, 1, 3, 2), 0) << direction;
  }
}

TEST(PaintGradientRect, EqualColoursFillUpToWidthAndHeightAsEdges) {
  Canvas c(16, 16, kPaper);
  // Right 5 and bottom 5 lie before left and top 10: nothing at all.
  PaintGradientRect(c.dc(), 10, 10, 5, 5, 0x112233, 0x112233, GradientTopToBottom);
  EXPECT_EQ(TouchedOutside(c, 0, 0, 0, 0), 0);

  // From (2, 1) the fill reaches only to (5, 4): 3 x 3 pixels, not 5 x 4.
  PaintGradientRect(c.dc(), 2, 1, 5, 4, 0x112233, 0x112233, GradientTopToBottom);
  EXPECT_EQ(Area(c, 2, 1, 3, 3), std::vector<uint32_t>(9, c.at(2, 1)));
  EXPECT_EQ(c.at(2, 1) & 0xFFFFFF, 0x332211u);
  EXPECT_EQ(TouchedOutside(c, 2, 1, 3, 3), 0);
}

TEST(PaintGradientRect, EqualityIsOfTheValuesAsGiven) {
  // Same low bytes but one is a system colour: not equal, so the far-edge fill does not apply
  // and a gradient covers the whole rectangle. Nor is the system colour translated: it is read
  // as red 15 on black.
  Canvas c(6, 6, kPaper);
  PaintGradientRect(c.dc(), 3, 3, 2, 2, host::vbButtonFace, 0x00000F, GradientLeftToRight);
  EXPECT_EQ(Area(c, 3, 3, 2, 2), std::vector<uint32_t>(4, 0x000F0000));
}

TEST(PaintGradientRect, EmptyOrHugeSizesPaintNothing) {
  Canvas c(4, 4, kPaper);
  for (auto [w, h] : {std::pair{0, 3}, {3, 0}, {-2, 3}, {3, -1}}) {
    PaintGradientRect(c.dc(), 0, 0, w, h, kFrom, kTo, GradientDiagonalDown);
    PaintGradientRect(c.dc(), 0, 0, w, h, kFrom, kFrom, GradientDiagonalDown);
  }
  // Too large to build in memory: refused rather than attempted.
  for (auto [w, h] : {std::pair{INT32_MAX, INT32_MAX}, {1 << 20, 1 << 20}})
    PaintGradientRect(c.dc(), 0, 0, w, h, kFrom, kTo, GradientDiagonalDown);
  EXPECT_EQ(TouchedOutside(c, 0, 0, 0, 0), 0);
}

TEST(GradientFace, SolidWhenTwoAreEqualOrFourSumToFourTimesTheFirst) {
  EXPECT_TRUE(IsSolidGradientFace(Two_Colors, 0x123456, 0x123456, 0, 0xFFFFFF));
  EXPECT_FALSE(IsSolidGradientFace(Two_Colors, 0x123456, 0x123457, 0x123456, 0x123456));
  EXPECT_TRUE(IsSolidGradientFace(Four_Colors, 0x808080, 0x808080, 0x808080, 0x808080));
  // Different colours that add up to four times the first count as solid too.
  EXPECT_TRUE(IsSolidGradientFace(Four_Colors, 0x000010, 0x000020, 0x000000, 0x000010));
  EXPECT_TRUE(IsSolidGradientFace(Four_Colors, 0x400000, 0x000000, 0x800000, 0x400000));
  EXPECT_FALSE(IsSolidGradientFace(Four_Colors, 0x000010, 0x000010, 0x000010, 0x000011));
  // Only the sum counts: equal first two colours are not enough.
  EXPECT_FALSE(IsSolidGradientFace(Four_Colors, 0x123456, 0x123456, 0, 0));
  // System colours (negative Longs) add up without overflowing.
  EXPECT_TRUE(IsSolidGradientFace(Four_Colors, host::vbButtonFace, host::vbButtonFace, host::vbButtonFace,
                                  host::vbButtonFace));
}

TEST(GradientFace, FourColoursSplitAtTheRoundedHalf) {
  constexpr int32_t c1 = 0x000010, c2 = 0x000020, c3 = 0x000040, c4 = 0x000070;
  {
    // 5 / 2 = 2.5 rounds to 2: rows 0-1 and 2-3; row 4 stays as it was.
    Canvas c(2, 5, kPaper);
    PaintGradientFace(c.dc(), 2, 5, Four_Colors, c1, c2, c3, c4);
    EXPECT_EQ(Area(c, 0, 0, 1, 5), (std::vector<uint32_t>{0x100000, 0x200000, 0x400000, 0x700000, kPaper}));
  }
  {
    // 7 / 2 = 3.5 rounds to 4: rows 0-3, then 4-7 of which 4-6 are on the surface.
    // Lower ramp 0x40 + 0x30 * i / 3: 0x40, 0x50, 0x60.
    Canvas c(1, 7, kPaper);
    PaintGradientFace(c.dc(), 1, 7, Four_Colors, c1, c2, c3, c4);
    EXPECT_EQ(Area(c, 0, 0, 1, 7),
              (std::vector<uint32_t>{0x100000, 0x150000, 0x1A0000, 0x200000, 0x400000, 0x500000, 0x600000}));
  }
  {
    // Equal lower colours take the fill whose bottom is the height: the lower half stays empty.
    Canvas c(1, 4, kPaper);
    PaintGradientFace(c.dc(), 1, 4, Four_Colors, c1, c2, c3, c3);
    EXPECT_EQ(Area(c, 0, 0, 1, 4), (std::vector<uint32_t>{0x100000, 0x200000, kPaper, kPaper}));
  }
}

}  // namespace
}  // namespace mx::frame
