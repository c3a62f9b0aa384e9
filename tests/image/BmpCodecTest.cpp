// BMP reading (every depth, RLE, bit fields, row orders) and writing, against pixels built here.
#include <gtest/gtest.h>

#include <random>

#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"
#include "CodecTestSupport.h"

namespace mx::image {
namespace {

using test::DibSpec;
using test::makeBmp;
using test::px;

bool load(const std::vector<uint8_t>& f, API32bppDIB& d) { return APIBMPParser().LoadStream(f, d); }

constexpr uint32_t kRed = 0xFFFF0000, kGreen = 0xFF00FF00, kBlue = 0xFF0000FF, kBlack = 0xFF000000,
                   kWhite = 0xFFFFFFFF;

TEST(BmpReader, IndexedDepthsInBothRowOrders) {
  // 1 bit: row 0 (top) = 1 0 1, row 1 = 0 1 0, stored bottom-up: row 1 first.
  DibSpec s1{.width = 3, .height = 2, .bitCount = 1, .palette = {0x0000FF, 0xFFFFFF}};
  s1.bits = {0x40, 0, 0, 0, 0xA0, 0, 0, 0};
  API32bppDIB d;
  ASSERT_TRUE(load(makeBmp(s1), d));
  EXPECT_EQ(test::pixels(d), (std::vector<uint32_t>{kWhite, kBlue, kWhite, kBlue, kWhite, kBlue}));
  EXPECT_EQ(d.ImageType(), imgBitmap);
  EXPECT_EQ(d.Alpha(), AlphaNone);

  // 4 bits, top-down (negative height): nibbles high first; index 5 lies past a 3-entry table.
  DibSpec s4{.width = 3, .height = -1, .bitCount = 4, .colorsUsed = 3, .palette = {0xFF0000, 0x00FF00, 0x0000FF}};
  s4.bits = {0x21, 0x50, 0, 0};
  ASSERT_TRUE(load(makeBmp(s4), d));
  EXPECT_EQ(test::pixels(d), (std::vector<uint32_t>{kBlue, kGreen, kBlack}));

  // 8 bits, two rows bottom-up, 3-pixel rows padded to 4 bytes; the core header's 3-byte table.
  DibSpec s8{.headerSize = 12, .width = 3, .height = 2, .bitCount = 8, .palette = {}};
  for (int i = 0; i < 256; ++i) s8.palette.push_back(static_cast<uint32_t>(i * 0x010101));
  s8.bits = {1, 2, 3, 0, 10, 20, 30, 0};
  ASSERT_TRUE(load(makeBmp(s8), d));
  EXPECT_EQ(px(d, 0, 0), 0xFF0A0A0Au);
  EXPECT_EQ(px(d, 2, 1), 0xFF030303u);
}

TEST(BmpReader, TrueColourAndBitFields) {
  API32bppDIB d;
  // 24 bits: one 2-pixel row, blue-green-red order, padded to 8 bytes.
  DibSpec s24{.width = 2, .height = 1, .bitCount = 24, .bits = {0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0, 0}};
  ASSERT_TRUE(load(makeBmp(s24), d));
  EXPECT_EQ(px(d, 0, 0), 0xFF302010u);
  EXPECT_EQ(px(d, 1, 0), 0xFF605040u);

  // 16 bits without masks is 5-5-5; 31 stretches to 255, 16 to 132.
  DibSpec s16{.width = 2, .height = 1, .bitCount = 16};
  test::le16(s16.bits, 0x7C00);
  test::le16(s16.bits, (16 << 5) | 1);
  ASSERT_TRUE(load(makeBmp(s16), d));
  EXPECT_EQ(px(d, 0, 0), 0xFFFF0000u);
  EXPECT_EQ(px(d, 1, 0), 0xFF008408u);

  // 16 bits 5-6-5 through BI_BITFIELDS after a 40-byte header.
  DibSpec s565{.width = 2, .height = 1, .bitCount = 16, .compression = 3, .masks = {0xF800, 0x07E0, 0x001F}};
  test::le16(s565.bits, 0x07E0);
  test::le16(s565.bits, 0xF81F);
  ASSERT_TRUE(load(makeBmp(s565), d));
  EXPECT_EQ(px(d, 0, 0), kGreen);
  EXPECT_EQ(px(d, 1, 0), 0xFFFF00FFu);

  // 32-bit fields with an alpha mask in a v5 header, red in the low byte: alpha is straight and
  // gets premultiplied (200 x 128 / 255 = 100).
  DibSpec s32{.headerSize = 124, .width = 2, .height = 1, .bitCount = 32, .compression = 3,
              .masks = {0x000000FF, 0x0000FF00, 0x00FF0000, 0xFF000000}};
  test::le32(s32.bits, 0x800000C8);  // red 200, alpha 128
  test::le32(s32.bits, 0xFF00FF00);  // green, opaque
  ASSERT_TRUE(load(makeBmp(s32), d));
  EXPECT_EQ(px(d, 0, 0), 0x80640000u);
  EXPECT_EQ(px(d, 1, 0), kGreen);
  EXPECT_EQ(d.ImageType(), imgBmpARGB);
  EXPECT_EQ(d.Alpha(), AlphaComplex);

  // The same fields without an alpha mask: opaque whatever the top byte holds.
  s32.masks = {0x000000FF, 0x0000FF00, 0x00FF0000};
  ASSERT_TRUE(load(makeBmp(s32), d));
  EXPECT_EQ(px(d, 0, 0), 0xFFC80000u);
  EXPECT_EQ(d.Alpha(), AlphaNone);
}

TEST(BmpReader, PlainThirtyTwoBitsIsClassifiedByItsAlphaPlane) {
  API32bppDIB d;
  DibSpec s{.width = 2, .height = 1, .bitCount = 32};
  // Every alpha 0: an ordinary opaque picture.
  s.bits = {0x10, 0x20, 0x30, 0, 0x40, 0x50, 0x60, 0};
  ASSERT_TRUE(load(makeBmp(s), d));
  EXPECT_EQ(d.ImageType(), imgBitmap);
  EXPECT_EQ(d.Alpha(), AlphaNone);
  EXPECT_EQ(px(d, 1, 0), 0xFF605040u);
  // Alpha 0 with colour beside an opaque pixel: straight alpha, and the colour is dropped.
  s.bits = {0x10, 0x20, 0x30, 0, 0x40, 0x50, 0x60, 255};
  ASSERT_TRUE(load(makeBmp(s), d));
  EXPECT_EQ(d.ImageType(), imgBmpARGB);
  EXPECT_EQ(px(d, 0, 0), 0u);
  // Colours never above alpha: already premultiplied, kept as they are.
  s.bits = {0x10, 0x20, 0x30, 0x80, 0x40, 0x50, 0x60, 255};
  ASSERT_TRUE(load(makeBmp(s), d));
  EXPECT_EQ(d.ImageType(), imgBmpPARGB);
  EXPECT_EQ(px(d, 0, 0), 0x80302010u);
}

// An RLE8 picture 4 x 3 with a 4-colour table: 1 red, 2 green, 3 blue.
DibSpec rle8(std::vector<uint8_t> stream, int w = 4, int h = 3) {
  return DibSpec{.width = w, .height = h, .bitCount = 8, .compression = 1, .colorsUsed = 4,
                 .palette = {0, 0xFF0000, 0x00FF00, 0x0000FF}, .bits = std::move(stream)};
}

TEST(BmpReader, Rle8RunsAbsoluteDeltaAndEnds) {
  API32bppDIB d;
  // Bottom row: run of 2 red, absolute 3 pixels (2 3 1, padded) clipped at the row's end.
  // Middle row: delta right 1 and up 0, then one blue; end of line. Top row: end of bitmap.
  ASSERT_TRUE(load(makeBmp(rle8({2, 1, 0, 3, 2, 3, 1, 0, 0, 0, 0, 2, 1, 0, 1, 3, 0, 0, 0, 1})), d));
  EXPECT_EQ(px(d, 0, 2), kRed);
  EXPECT_EQ(px(d, 1, 2), kRed);
  EXPECT_EQ(px(d, 2, 2), kGreen);
  EXPECT_EQ(px(d, 3, 2), kBlue);  // the absolute run's third pixel fell past the end: clipped
  EXPECT_EQ(px(d, 0, 1), 0u);     // skipped by the delta: transparent
  EXPECT_EQ(px(d, 1, 1), kBlue);
  EXPECT_EQ(px(d, 0, 0), 0u);  // never reached
  EXPECT_EQ(d.Alpha(), AlphaSimple);
  EXPECT_EQ(d.ImageType(), imgBitmap);

  // A run longer than the row is clipped too; the next line starts clean.
  ASSERT_TRUE(load(makeBmp(rle8({9, 2, 0, 0, 4, 3, 0, 0, 4, 1, 0, 1}, 4, 3)), d));
  EXPECT_EQ(px(d, 3, 2), kGreen);
  EXPECT_EQ(px(d, 0, 1), kBlue);
  EXPECT_EQ(px(d, 3, 0), kRed);
  EXPECT_EQ(d.Alpha(), AlphaNone);

  // A delta that leaves the top ends the picture; data after it is ignored.
  ASSERT_TRUE(load(makeBmp(rle8({4, 1, 0, 2, 0, 9, 0xEE, 0xEE})), d));
  EXPECT_EQ(px(d, 0, 2), kRed);
}

TEST(BmpReader, Rle8DamageIsRefused) {
  API32bppDIB d;
  // Cut inside an absolute run, cut before the end, top-down RLE, and RLE8 with 4 bits.
  EXPECT_FALSE(load(makeBmp(rle8({0, 5, 1, 2})), d));
  EXPECT_FALSE(load(makeBmp(rle8({4, 1, 0, 0})), d));
  EXPECT_FALSE(load(makeBmp(rle8({0, 2, 1})), d));  // delta without its two bytes
  DibSpec td = rle8({0, 1});
  td.height = -3;
  EXPECT_FALSE(load(makeBmp(td), d));
  DibSpec wrongDepth = rle8({0, 1});
  wrongDepth.bitCount = 4;
  EXPECT_FALSE(load(makeBmp(wrongDepth), d));
  EXPECT_EQ(d.Handle(), 0u);
}

TEST(BmpReader, Rle4AlternatesNibblesAndPadsAbsoluteRuns) {
  API32bppDIB d;
  DibSpec s{.width = 5, .height = 2, .bitCount = 4, .compression = 2, .colorsUsed = 4,
            .palette = {0, 0xFF0000, 0x00FF00, 0x0000FF}};
  // Bottom: run of 5 alternating 1 2; top: absolute 3 pixels 3 1 2 (2 bytes, already even), then
  // a run of 2 of 3.
  s.bits = {5, 0x12, 0, 0, 0, 3, 0x31, 0x20, 2, 0x33, 0, 1};
  ASSERT_TRUE(load(makeBmp(s), d));
  EXPECT_EQ(test::pixels(d), (std::vector<uint32_t>{kBlue, kRed, kGreen, kBlue, kBlue,  //
                                                    kRed, kGreen, kRed, kGreen, kRed}));
  // An odd absolute count of 5 nibbles takes 3 bytes, padded to 4.
  s.bits = {0, 5, 0x12, 0x31, 0x20, 0, 0, 0, 5, 0x33, 0, 1};
  ASSERT_TRUE(load(makeBmp(s), d));
  EXPECT_EQ(px(d, 4, 1), kGreen);
  EXPECT_EQ(px(d, 0, 0), kBlue);
}

TEST(BmpReader, HeadersThatCannotBeDecodedAreRefused) {
  API32bppDIB d;
  DibSpec ok{.width = 1, .height = 1, .bitCount = 24, .bits = {1, 2, 3, 0}};
  ASSERT_TRUE(load(makeBmp(ok), d));
  auto refused = [&](DibSpec s) { return !load(makeBmp(s), d) && d.Handle() == 0; };
  DibSpec s = ok;
  s.bitCount = 7;
  EXPECT_TRUE(refused(s));
  s = ok;
  s.width = 0;
  EXPECT_TRUE(refused(s));
  s = ok;
  s.width = 1 << 20;
  EXPECT_TRUE(refused(s));
  s = ok;
  s.compression = 4;  // JPEG inside BMP
  EXPECT_TRUE(refused(s));
  s = DibSpec{.width = 1, .height = 1, .bitCount = 16, .compression = 3, .masks = {0xF0F0, 0x0F00, 0x000F}};
  s.bits = {0, 0, 0, 0};
  EXPECT_TRUE(refused(s));  // a mask with a gap
  s.masks = {0x1F0000, 0x07E0, 0x001F};
  EXPECT_TRUE(refused(s));  // a 16-bit mask beyond 16 bits
  std::vector<uint8_t> f = makeBmp(ok);
  f[1] = 'A';
  EXPECT_FALSE(load(f, d));
}

TEST(BmpReader, EveryTruncationIsRefusedAndNoDamageCrashes) {
  DibSpec s{.width = 3, .height = 2, .bitCount = 8, .colorsUsed = 4, .palette = {0, 0xFF0000, 0x00FF00, 0x0000FF}};
  s.bits = {1, 2, 3, 0, 3, 2, 1, 0};
  std::vector<uint8_t> full = makeBmp(s);
  API32bppDIB d;
  ASSERT_TRUE(load(full, d));
  for (size_t n = 1; n < full.size(); ++n) {
    std::vector<uint8_t> cut(full.begin(), full.begin() + static_cast<long>(n));
    EXPECT_FALSE(load(cut, d)) << "length " << n;
    EXPECT_EQ(d.Handle(), 0u);
  }
  std::mt19937 rng(7);
  std::vector<uint8_t> rle = makeBmp(rle8({2, 1, 0, 3, 2, 3, 1, 0, 0, 0, 0, 2, 1, 0, 1, 3, 0, 0, 0, 1}));
  for (int i = 0; i < 3000; ++i) {
    std::vector<uint8_t> f = (i & 1) ? rle : full;
    for (int k = 0; k < 3; ++k) f[rng() % f.size()] = static_cast<uint8_t>(rng());
    (void)load(f, d);  // must return, whatever it answers
  }
}

TEST(BmpWriter, RoundTripsAreExact) {
  API32bppDIB src, back;
  // Opaque: 24 bits, every colour exact (3-pixel rows exercise the padding).
  test::fill(src, 3, 2, {kRed, kGreen, kBlue, 0xFF123456, 0xFF000000, 0xFFFFFFFF}, AlphaNone);
  std::vector<uint8_t> bytes;
  ASSERT_TRUE(src.SaveToStream_Bitmap(bytes));
  EXPECT_EQ(bytes[28], 24);
  EXPECT_EQ(bytes.size(), 14u + 40u + 2u * 12u);
  ASSERT_TRUE(back.LoadPicture_Stream(bytes));
  EXPECT_EQ(test::pixels(back), test::pixels(src));
  EXPECT_EQ(back.ImageType(), imgBitmap);

  // Alpha kept premultiplied: 32 bits in a v5 header, read back exactly as premultiplied data.
  test::fill(src, 2, 2, {0x80400000, 0, 0xFF00FF00, 0x01010101}, AlphaComplex);
  ASSERT_TRUE(src.SaveToStream_Bitmap(bytes, true));
  EXPECT_EQ(bytes[14], 124);
  ASSERT_TRUE(back.LoadPicture_Stream(bytes));
  EXPECT_EQ(test::pixels(back), test::pixels(src));
  EXPECT_EQ(back.ImageType(), imgBmpPARGB);

  // Straight alpha in the file: c x 255 / a, truncating.
  ASSERT_TRUE(src.SaveToStream_Bitmap(bytes, false));
  size_t at = 14 + 124;  // bottom row first: (0,1) then (1,1); top row (0,0) follows
  EXPECT_EQ(bytes[at + 8 + 2], 0x40 * 255 / 0x80);
  EXPECT_EQ(bytes[at + 8 + 3], 0x80);

  // A fill colour flattens to 24 bits: c + fill x (255 - a) / 255.
  ASSERT_TRUE(src.SaveToStream_Bitmap(bytes, false, 0x0000FF));  // red fill
  ASSERT_TRUE(back.LoadPicture_Stream(bytes));
  EXPECT_EQ(px(back, 0, 0), 0xFF400000u + (uint32_t{0xFF * 127 / 255} << 16));
  EXPECT_EQ(px(back, 1, 0), 0xFFFF0000u);  // fully transparent: the fill itself

  API32bppDIB empty;
  EXPECT_FALSE(empty.SaveToStream_Bitmap(bytes));
  EXPECT_FALSE(src.SaveToFile_Bitmap(u"/nonexistent-dir/x.bmp"));
}

}  // namespace
}  // namespace mx::image
