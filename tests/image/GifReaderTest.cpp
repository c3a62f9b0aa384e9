// The GIF reader: first frame only, cut out to its own size, transparency through the index
// ramp, and clean refusal of damaged data.
#include <gtest/gtest.h>

#include <filesystem>

#include "GifTestSupport.h"
#include "image/APIGIFParser.h"

namespace mx::image {
namespace {

using test::GifFrameSpec;
using test::GifSpec;
using test::surfacePixel;

const std::string kGifDir = std::string(MX_TESTDATA_DIR) + "/gif/";
const std::string kBadDir = std::string(MX_TESTDATA_DIR) + "/bad/gif/";

GifSpec oneFrame(int w, int h, std::vector<test::GifColor> map, std::vector<uint8_t> indices, int transparent = -1) {
  GifSpec s;
  s.screenWidth = w;
  s.screenHeight = h;
  s.globalMap = std::move(map);
  GifFrameSpec f;
  f.width = w;
  f.height = h;
  f.indices = std::move(indices);
  f.transparent = transparent;
  s.frames = {f};
  return s;
}

TEST(GifReader, OpaqueFrameKeepsTableColoursWithFullAlpha) {
  auto gif = test::makeGif(oneFrame(3, 2, {{255, 0, 0}, {0, 128, 0}, {1, 2, 3}}, {0, 1, 2, 2, 1, 0}));
  API32bppDIB dib;
  ASSERT_TRUE(APIGIFParser().LoadStream(gif, dib));
  ASSERT_EQ(dib.Width(), 3);
  ASSERT_EQ(dib.Height(), 2);
  EXPECT_EQ(dib.ImageType(), imgGIF);
  EXPECT_EQ(dib.Alpha(), AlphaNone);
  EXPECT_EQ(surfacePixel(dib, 0, 0), 0xFFFF0000u);
  EXPECT_EQ(surfacePixel(dib, 1, 0), 0xFF008000u);
  EXPECT_EQ(surfacePixel(dib, 2, 0), 0xFF010203u);
  EXPECT_EQ(surfacePixel(dib, 0, 1), 0xFF010203u);
  EXPECT_EQ(surfacePixel(dib, 2, 1), 0xFFFF0000u);
}

TEST(GifReader, TransparentIndexIsToldApartFromAnEqualColour) {
  // Entries 1 and 3 hold the same colour; only index 3 is transparent. Decoding through the
  // ramp keeps them apart.
  auto gif = test::makeGif(oneFrame(4, 1, {{9, 9, 9}, {50, 60, 70}, {0, 0, 0}, {50, 60, 70}}, {0, 1, 2, 3}, 3));
  API32bppDIB dib;
  APIGIFParser parser;
  ASSERT_TRUE(parser.LoadStream(gif, dib));
  EXPECT_EQ(dib.Alpha(), AlphaSimple);
  EXPECT_EQ(dib.ImageType(), imgGIF);
  EXPECT_EQ(surfacePixel(dib, 0, 0), 0xFF090909u);
  EXPECT_EQ(surfacePixel(dib, 1, 0), 0xFF323C46u);
  EXPECT_EQ(surfacePixel(dib, 2, 0), 0xFF000000u);  // opaque black, not transparent
  EXPECT_EQ(surfacePixel(dib, 3, 0), 0u);
  // The copy handed to the decoder carries the ramp, not the colours.
  test::DecodedGif frame = test::decodeGif(parser.FrameBytes());
  ASSERT_TRUE(frame.ok);
  EXPECT_EQ(frame.colors[3].r, 3);
  EXPECT_EQ(frame.colors[3].b, 3);
}

TEST(GifReader, OnlyTheFirstFrameOfAnAnimationLoads) {
  auto bytes = test::readFile(kGifDir + "animated.gif");
  ASSERT_FALSE(bytes.empty());
  API32bppDIB dib;
  APIGIFParser parser;
  ASSERT_TRUE(parser.LoadStream(bytes, dib));
  ASSERT_EQ(dib.Width(), 4);
  ASSERT_EQ(dib.Height(), 3);
  // First frame: red, green, blue, white with white (index 3) transparent; the loop and
  // comment blocks before it change nothing. The second frame is all blue.
  const uint32_t R = 0xFFFF0000, G = 0xFF00FF00, B = 0xFF0000FF, T = 0;
  const uint32_t expected[12] = {R, G, B, T, G, B, T, R, B, T, R, G};
  for (int i = 0; i < 12; ++i) EXPECT_EQ(surfacePixel(dib, i % 4, i / 4), expected[i]) << i;
  EXPECT_EQ(dib.Alpha(), AlphaSimple);
  EXPECT_EQ(test::decodeGif(parser.FrameBytes()).frameCount, 1);
}

TEST(GifReader, FrameSmallerThanTheScreenGivesTheFrameSize) {
  auto bytes = test::readFile(kGifDir + "small_frame.gif");
  API32bppDIB dib;
  APIGIFParser parser;
  ASSERT_TRUE(parser.LoadStream(bytes, dib));
  EXPECT_EQ(dib.Width(), 3);
  EXPECT_EQ(dib.Height(), 2);
  // The frame's local table wins over the global black and white one.
  EXPECT_EQ(surfacePixel(dib, 0, 0), 0xFF0A141Eu);
  EXPECT_EQ(surfacePixel(dib, 1, 0), 0xFF28323Cu);
  EXPECT_EQ(surfacePixel(dib, 2, 0), 0xFF46505Au);
  EXPECT_EQ(surfacePixel(dib, 0, 1), 0xFF46505Au);
  EXPECT_EQ(surfacePixel(dib, 2, 1), 0xFF0A141Eu);
  // The cut-out copy: screen of the frame's size, frame moved to the corner.
  const auto& copy = parser.FrameBytes();
  EXPECT_EQ(copy[6], 3);
  EXPECT_EQ(copy[8], 2);
  EXPECT_EQ(copy.back(), 0x3B);
}

TEST(GifReader, LocalTableTransparencyInterlaceAndVersions) {
  GifSpec s;
  s.screenWidth = 2;
  s.screenHeight = 10;
  s.globalMap = {{1, 1, 1}, {2, 2, 2}};
  GifFrameSpec f;
  f.width = 2;
  f.height = 10;
  f.interlace = true;
  f.localMap = {{100, 0, 0}, {0, 100, 0}, {0, 0, 100}, {7, 7, 7}};
  for (int y = 0; y < 10; ++y) f.indices.insert(f.indices.end(), {uint8_t(y % 3), 3});
  f.transparent = 1;
  s.frames = {f};
  auto gif = test::makeGif(s);
  for (const char* version : {"GIF89a", "GIF87a", "gif89a", "GiF87A"}) {
    std::copy(version, version + 6, gif.begin());
    API32bppDIB dib;
    ASSERT_TRUE(APIGIFParser().LoadStream(gif, dib)) << version;
    for (int y = 0; y < 10; ++y) {
      const uint32_t left[3] = {0xFF640000u, 0u, 0xFF000064u};
      EXPECT_EQ(surfacePixel(dib, 0, y), left[y % 3]) << "row " << y;
      EXPECT_EQ(surfacePixel(dib, 1, y), 0xFF070707u) << "row " << y;
    }
  }
}

TEST(GifReader, ReadsARangeOfALargerArrayAndThroughTheSurface) {
  auto gif = test::readFile(kGifDir + "animated.gif");
  std::vector<uint8_t> padded(7, 0xEE);
  padded.insert(padded.end(), gif.begin(), gif.end());
  padded.insert(padded.end(), 5, 0xEE);
  API32bppDIB dib;
  ASSERT_TRUE(APIGIFParser().LoadStream(padded, dib, 7, static_cast<int32_t>(gif.size())));
  EXPECT_EQ(dib.Width(), 4);
  EXPECT_FALSE(APIGIFParser().LoadStream(padded, dib, 6, 0));
  EXPECT_EQ(dib.Handle(), 0);

  // The surface's load chain hands GIF data to this reader after PNG declines it.
  ASSERT_TRUE(dib.LoadPicture_Stream(padded, 0, 0, 7, static_cast<int32_t>(gif.size()), true));
  EXPECT_EQ(dib.ImageType(), imgGIF);
  EXPECT_EQ(surfacePixel(dib, 0, 0), 0xFFFF0000u);
  API32bppDIB fromFile;
  ASSERT_TRUE(fromFile.LoadPicture_File(host::FromUtf8(kGifDir + "animated.gif")));
  EXPECT_EQ(fromFile.ImageType(), imgGIF);
  EXPECT_EQ(fromFile.Alpha(), AlphaSimple);
}

TEST(GifReader, DamagedFilesAreRefusedAndLeaveTheSurfaceEmpty) {
  int seen = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kBadDir)) {
    auto bytes = test::readFile(entry.path().string());
    API32bppDIB dib;
    dib.InitializeDIB(2, 2);  // a failed load must not leave an older picture behind
    EXPECT_FALSE(APIGIFParser().LoadStream(bytes, dib)) << entry.path();
    EXPECT_EQ(dib.Handle(), 0) << entry.path();
    EXPECT_EQ(dib.ImageType(), imgError) << entry.path();
    ++seen;
  }
  EXPECT_GE(seen, 5);
}

TEST(GifReader, EveryTruncationIsRefusedWithoutACrash) {
  for (const char* name : {"animated.gif", "small_frame.gif"}) {
    const auto whole = test::readFile(kGifDir + name);
    // The frame ends one byte before the trailer; without the trailer the frame is still whole.
    for (size_t n = 1; n + 1 < whole.size(); ++n) {
      std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
      API32bppDIB dib;
      const bool loaded = APIGIFParser().LoadStream(cut, dib);
      // animated.gif's first frame is whole well before the file ends.
      const size_t firstFrameEnd = std::string(name) == "animated.gif" ? 0x59 : whole.size() - 1;
      EXPECT_EQ(loaded, n >= firstFrameEnd) << name << " cut to " << n;
      if (!loaded) EXPECT_EQ(dib.Handle(), 0);
    }
  }
}

TEST(GifReader, CorruptBytesNeverCrash) {
  // Every byte of a small file flipped in turn: loads may succeed or fail, but a success
  // is always a complete surface of the frame's declared size.
  const auto whole = test::readFile(kGifDir + "animated.gif");
  for (size_t i = 0; i < whole.size(); ++i)
    for (uint8_t mask : {0x01, 0x80, 0xFF}) {
      auto bytes = whole;
      bytes[i] ^= mask;
      API32bppDIB dib;
      if (APIGIFParser().LoadStream(bytes, dib)) {
        EXPECT_GT(dib.Width() * dib.Height(), 0) << i;
        EXPECT_EQ(dib.ImageType(), imgGIF);
      } else {
        EXPECT_EQ(dib.Handle(), 0);
      }
    }
}

}  // namespace
}  // namespace mx::image
