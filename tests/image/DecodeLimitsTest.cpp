// Headers that claim far more picture than their data holds are refused before the surface is
// made: the peak resident memory of the process must not grow by the claimed size.
#include <gtest/gtest.h>

#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"
#include "image/APIGIFParser.h"
#include "image/APIICOParser.h"
#include "image/APIPNGParser.h"
#include "image/DecodeLimits.h"
#include "CodecTestSupport.h"
#include "GifTestSupport.h"
#include "PngTestSupport.h"
#include "support/PeakMemory.h"

namespace mx::image {
namespace {

// Far below any of the refused claims below (the smallest is 144 MB), far above test noise.
constexpr size_t kAllowedGrowth = size_t{32} << 20;

// Runs fn and fails when the peak resident memory grew by more than kAllowedGrowth.
void ExpectNoLargeAllocation(const std::function<void()>& fn) {
  std::optional<size_t> grown = mx::test::PeakGrowth(fn);
  if (!grown) GTEST_SKIP() << "the kernel does not let the peak resident size be reset";
  EXPECT_LT(*grown, kAllowedGrowth) << "the reader allocated " << (*grown >> 20) << " MB";
}

TEST(DecodeLimits, SizeAllowedStopsAtTheLimitWithoutOverflow) {
  EXPECT_TRUE(DecodedSizeAllowed(8192, 8192));
  EXPECT_FALSE(DecodedSizeAllowed(8193, 8192));
  EXPECT_TRUE(DecodedSizeAllowed(int64_t{1} << 26, 1));  // one long row, exactly the limit
  EXPECT_FALSE(DecodedSizeAllowed((int64_t{1} << 26) + 1, 1));
  // Products that would wrap a 64-bit multiplication are caught by the sides.
  EXPECT_FALSE(DecodedSizeAllowed(int64_t{1} << 40, int64_t{1} << 40));
  EXPECT_FALSE(DecodedSizeAllowed(0, 10));
  EXPECT_FALSE(DecodedSizeAllowed(10, -1));
}

TEST(DecodeLimits, FortyByteBmpClaimingAHugePictureAllocatesNothing) {
  // 16000 x 16000 pixels of 1 bit (a 1 GB surface), with 8 bytes where 32 MB of rows are due.
  std::vector<uint8_t> file = test::readFile(std::string(MX_TESTDATA_DIR) + "/bad/bmp/claims-16000-square.bmp");
  ASSERT_EQ(file.size(), 40u);
  API32bppDIB dib;
  ExpectNoLargeAllocation([&] { EXPECT_FALSE(APIBMPParser().LoadStream(file, dib)); });
  EXPECT_EQ(dib.Handle(), 0u);
  // The same header as a packed DIB (the clipboard's form) is refused the same way.
  ExpectNoLargeAllocation(
      [&] { EXPECT_FALSE(APIBMPParser().LoadPackedDIB(file.data() + 14, file.size() - 14, dib)); });
}

TEST(DecodeLimits, RleStreamsAreReadThroughBeforeTheSurfaceIsMade) {
  // 6000 x 6000 (144 MB) whose stream is cut after one run: refused without the surface.
  test::DibSpec cut{.width = 6000, .height = 6000, .bitCount = 8, .compression = bmp::kBI_RLE8, .colorsUsed = 1,
                    .palette = {0xFF0000}, .bits = {4, 0, 0, 0}};
  API32bppDIB dib;
  ExpectNoLargeAllocation([&] { EXPECT_FALSE(APIBMPParser().LoadStream(test::makeBmp(cut), dib)); });

  // One pixel past the absolute limit, even with a well-formed stream that ends at once.
  test::DibSpec wide{.width = 8193, .height = 8192, .bitCount = 8, .compression = bmp::kBI_RLE8, .colorsUsed = 1,
                     .palette = {0xFF0000}, .bits = {0, 1}};
  ExpectNoLargeAllocation([&] { EXPECT_FALSE(APIBMPParser().LoadStream(test::makeBmp(wide), dib)); });

  // A stream that ends early is still a picture: the rest is transparent.
  test::DibSpec small{.width = 4, .height = 2, .bitCount = 8, .compression = bmp::kBI_RLE8, .colorsUsed = 1,
                      .palette = {0xFF0000}, .bits = {2, 0, 0, 1}};
  ASSERT_TRUE(APIBMPParser().LoadStream(test::makeBmp(small), dib));
  EXPECT_EQ(test::px(dib, 0, 1), 0xFFFF0000u);
  EXPECT_EQ(test::px(dib, 2, 1), 0u);
  EXPECT_EQ(test::px(dib, 0, 0), 0u);
  EXPECT_EQ(dib.Alpha(), AlphaSimple);
}

TEST(DecodeLimits, PngWhoseSurfaceWouldPassTheLimitIsRefusedBeforeInflating) {
  // 1-bit grey, 16384 x 16384: 33 MB of rows deflate to some 33 KB, within the inflate ratio,
  // but the surface would be 1 GB.
  test::PngSpec s{.width = 16384, .height = 16384, .depth = 1, .colorType = 0};
  s.rows.assign((16384 / 8 + 1) * size_t{16384}, 0);
  std::vector<uint8_t> png = test::makePng(s);
  std::vector<uint8_t>().swap(s.rows);
  API32bppDIB dib;
  ExpectNoLargeAllocation([&] { EXPECT_FALSE(APIPNGParser().LoadStream(png, dib)); });
  EXPECT_EQ(dib.Handle(), 0u);
}

TEST(DecodeLimits, GifFramesAreHeldToWhatTheirDataCanFill) {
  // A large flat frame compresses to a few bytes a thousand pixels and still loads.
  test::GifSpec big{.screenWidth = 2048, .screenHeight = 1024, .globalMap = {{0, 0, 255}, {255, 255, 255}}};
  big.frames.push_back({.width = 2048, .height = 1024, .indices = std::vector<uint8_t>(2048 * 1024, 0)});
  API32bppDIB dib;
  ASSERT_TRUE(APIGIFParser().LoadStream(test::makeGif(big), dib));
  EXPECT_EQ(dib.Width(), 2048);
  EXPECT_EQ(test::surfacePixel(dib, 2047, 1023), 0xFF0000FFu);

  // The descriptor of a 2 x 2 frame rewritten to claim 60000 x 60000 is refused.
  test::GifSpec tiny{.screenWidth = 2, .screenHeight = 2, .globalMap = {{0, 0, 0}, {255, 255, 255}}};
  tiny.frames.push_back({.width = 2, .height = 2, .indices = {0, 1, 1, 0}});
  std::vector<uint8_t> file = test::makeGif(tiny);
  ASSERT_TRUE(APIGIFParser().LoadStream(file, dib));
  size_t at = 13 + 6;  // header, logical screen and the two-colour table
  ASSERT_EQ(file[at], 0x2C);
  for (size_t k : {at + 5, at + 7}) file[k] = 0x60, file[k + 1] = 0xEA;
  ExpectNoLargeAllocation([&] { EXPECT_FALSE(APIGIFParser().LoadStream(file, dib)); });
}

}  // namespace
}  // namespace mx::image
