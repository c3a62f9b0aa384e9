// The image surface: lifecycle, device-context states, pixel access, bulk transfer, alpha
// classification and the checkerboard.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "PngTestSupport.h"
#include "image/API32bppDIB.h"
#include "platform/Gdi.h"

namespace mx::image {
namespace {

using namespace mx::platform;

// Memory word of picture pixel (x, y): rows are bottom-up.
uint32_t word(const API32bppDIB& d, int x, int y) {
  return reinterpret_cast<const uint32_t*>(d.BitsPointer())[static_cast<size_t>(d.Height() - 1 - y) * d.Width() + x];
}

TEST(API32bppDIBLifecycle, EmptyCreatedAndDestroyedStates) {
  API32bppDIB d;
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_EQ(d.ImageType(), imgError);
  EXPECT_EQ(d.Alpha(), AlphaNone);
  // This platform plays NT 5 or later; the system codec is absent, so no GDI+ bit.
  EXPECT_EQ(d.systemCaps(), capAlphaBlend | capNT5 | capNT);
  EXPECT_FALSE(d.HighQualityInterpolation());

  ASSERT_TRUE(d.InitializeDIB(3, -2));  // a negative height counts by its size
  EXPECT_NE(d.Handle(), 0u);
  EXPECT_EQ(d.Width(), 3);
  EXPECT_EQ(d.Height(), 2);
  EXPECT_EQ(d.scanWidth(), 12);
  EXPECT_EQ(d.ImageType(), imgNone);
  EXPECT_EQ(d.Alpha(), AlphaSimple);
  for (int i = 0; i < 24; ++i) EXPECT_EQ(d.BitsPointer()[i], 0);

  d.DestroyDIB();
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_EQ(d.BitsPointer(), nullptr);
  EXPECT_EQ(d.Width(), 0);
  EXPECT_EQ(d.ImageType(), imgError);
  EXPECT_EQ(d.Alpha(), AlphaNone);
}

TEST(API32bppDIBLifecycle, RefusedSizesLeaveTheSurfaceEmpty) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(2, 2));
  EXPECT_FALSE(d.InitializeDIB(0, 10));  // passes the argument test, fails in the platform
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_FALSE(d.InitializeDIB(10, 0));
  EXPECT_FALSE(d.InitializeDIB(-1, 10));
  EXPECT_FALSE(d.InitializeDIB(100000, 100000));  // Height x Width x 4 overflows a Long
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_EQ(d.ImageType(), imgError);
}

TEST(API32bppDIBLifecycle, AlphaBlendFlagNeedsAnAbleSystem) {
  API32bppDIB d;
  d.isAlphaBlendFriendly(false);
  EXPECT_FALSE(d.isAlphaBlendFriendly());
  d.isAlphaBlendFriendly(true);
  EXPECT_TRUE(d.isAlphaBlendFriendly());
  d.isGDIplusEnabled(true);
  EXPECT_FALSE(d.isGDIplusEnabled());
  d.KeepGDIplusActive(true);
  EXPECT_FALSE(d.KeepGDIplusActive());
}

TEST(API32bppDIBDeviceContext, BorrowedDCIsDroppedUnlessManaged) {
  API32bppDIB d;
  EXPECT_EQ(d.LoadDIBinDC(true), 0u);  // empty surface
  ASSERT_TRUE(d.InitializeDIB(4, 4));
  EXPECT_EQ(d.imageDC(), 0u);

  HDC dc = d.LoadDIBinDC(true);
  ASSERT_NE(dc, 0u);
  EXPECT_NE(d.prevBitmap(), 0u);
  EXPECT_EQ(d.LoadDIBinDC(true), dc);  // selecting twice is harmless
  // Drawing through the DC lands in the surface's own memory.
  HBRUSH brush = CreateSolidBrush(RGB(10, 20, 30));
  RECT r{1, 0, 2, 1};
  FillRect(dc, &r, brush);
  DeleteObject(brush);
  EXPECT_EQ(word(d, 1, 0) & 0xFFFFFF, 0x0A141Eu);
  EXPECT_EQ(word(d, 0, 0), 0u);

  d.LoadDIBinDC(false);
  EXPECT_EQ(d.imageDC(), 0u);
  EXPECT_EQ(d.prevBitmap(), 0u);

  d.ManageOwnDC(true);  // created, bitmap not selected
  EXPECT_NE(d.imageDC(), 0u);
  EXPECT_EQ(d.prevBitmap(), 0u);
  HDC kept = d.LoadDIBinDC(true);
  EXPECT_EQ(kept, d.imageDC());
  d.LoadDIBinDC(false);
  EXPECT_EQ(d.imageDC(), kept);  // kept alive between uses
  EXPECT_EQ(d.prevBitmap(), 0u);
  d.ManageOwnDC(false);
  EXPECT_EQ(d.imageDC(), 0u);
  // The bitmap was deselected cleanly, so it can be deleted with the surface.
  d.DestroyDIB();
  EXPECT_EQ(d.Handle(), 0u);
}

TEST(API32bppDIBDeviceContext, SwapExchangesPicturesAndKeepsSelection) {
  API32bppDIB a, b;
  ASSERT_TRUE(a.InitializeDIB(2, 3));
  ASSERT_TRUE(b.InitializeDIB(5, 1));
  a.SetPixel(0, 0, 0x0000FF);
  b.CreateCheckerBoard(1, 0xFFFFFF, 0);
  a.Tag(host::Variant(int32_t{7}));
  HBITMAP ha = a.Handle(), hb = b.Handle();
  HDC dc = a.LoadDIBinDC(true);
  ASSERT_NE(dc, 0u);

  a.SwapDIBs(b);
  EXPECT_EQ(a.Handle(), hb);
  EXPECT_EQ(b.Handle(), ha);
  EXPECT_EQ(a.Width(), 5);
  EXPECT_EQ(a.Height(), 1);
  EXPECT_EQ(b.Width(), 2);
  EXPECT_EQ(a.ImageType(), imgCheckerBoard);
  EXPECT_EQ(b.ImageType(), imgNone);
  EXPECT_EQ(word(b, 0, 0), 0xFFFF0000u);
  // a was selected before, so it is selected again, now with its new bitmap.
  EXPECT_NE(a.prevBitmap(), 0u);
  EXPECT_EQ(GetCurrentObject(a.imageDC(), OBJ_BITMAP), hb);
  EXPECT_EQ(b.prevBitmap(), 0u);
  EXPECT_EQ(a.Tag(), host::Variant(int32_t{7}));  // other fields stay
}

TEST(API32bppDIBPixels, SetPixelStoresByItsRules) {
  API32bppDIB d;
  EXPECT_EQ(d.SetPixel(0, 0, 0xFF), nullptr);
  ASSERT_TRUE(d.InitializeDIB(3, 2));
  // (0, 0) is the top-left: the first word of the last memory row.
  uint8_t* p = d.SetPixel(0, 0, 0x332211);
  ASSERT_EQ(p, d.BitsPointer() + 12);
  EXPECT_EQ(word(d, 0, 0), 0xFF112233u);
  EXPECT_EQ(d.Alpha(), AlphaSimple);

  d.SetPixel(1, 0, 0x0064C8, 128, true);  // red 200 > alpha scales, green 100 stays
  EXPECT_EQ(word(d, 1, 0), 0x80646400u);
  d.SetPixel(2, 0, 0x0064C8, 128, false);  // straight: all scaled
  EXPECT_EQ(word(d, 2, 0), 0x80643200u);
  EXPECT_EQ(d.Alpha(), AlphaComplex);
  d.SetPixel(1, 0, 0xFFFFFF, 0);
  EXPECT_EQ(word(d, 1, 0), 0u);

  EXPECT_EQ(d.SetPixel(3, 0, 0), nullptr);
  EXPECT_EQ(d.SetPixel(0, 2, 0), nullptr);
  EXPECT_EQ(d.SetPixel(0, 0, 0, 256), nullptr);
}

TEST(API32bppDIBPixels, GetPixelUndoesPremultiplication) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(2, 1));
  d.SetPixel(0, 0, 0x0064C8, 128, false);  // stored 100, 50, 0 at 128
  uint8_t a = 9;
  EXPECT_EQ(d.GetPixel(0, 0, a), 0x0063C7);  // 100*255/128 = 199, 50*255/128 = 99
  EXPECT_EQ(a, 128);
  EXPECT_EQ(d.GetPixel(0, 0, a, true), 0x003264);
  EXPECT_EQ(d.GetPixel(1, 0, a), 0);
  EXPECT_EQ(a, 0);
  a = 9;
  EXPECT_EQ(d.GetPixel(-1, 0, a), -1);
  EXPECT_EQ(a, 0);
  EXPECT_EQ(d.GetPixel(0, 1, a), -1);
}

TEST(API32bppDIBBulk, GetDIBbitsShapes) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(3, 2));
  d.SetPixel(0, 0, 0x030201);
  d.SetPixel(1, 0, 0x0064C8, 128, false);
  d.SetPixel(2, 1, 0x060504);
  std::vector<uint8_t> out;
  ASSERT_TRUE(d.GetDIBbits(out, false, true, true, false, true));
  ASSERT_EQ(out.size(), 24u);
  EXPECT_EQ(0, std::memcmp(out.data(), d.BitsPointer(), 24));  // the block copy

  // Top-down RGB, straight colour, 24-bit rows rounded to 32 bits: 2 pixels -> 8 bytes.
  ASSERT_TRUE(d.GetDIBbits(out, false, false, false, true, false, 0, 0, 2, 0, false));
  std::vector<uint8_t> want = {1, 2, 3, 199, 99, 0, 0, 0,  // row 0, then padding
                               0, 0, 0, 0,   0,  0, 0, 0};
  EXPECT_EQ(out, want);

  // A region clipped to the surface, bottom-up, BGRA.
  ASSERT_TRUE(d.GetDIBbits(out, false, true, true, false, true, 2, 0, 5, 5));
  want = {6, 5, 4, 255, 0, 0, 0, 0};  // (2, 1) first, then (2, 0)
  EXPECT_EQ(out, want);
  EXPECT_FALSE(d.GetDIBbits(out, false, true, true, false, true, 3, 0));
  EXPECT_FALSE(d.GetDIBbits(out, false, true, true, false, true, -1, 0));
}

TEST(API32bppDIBBulk, SetDIBbitsValidatesAndPremultiplies) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(2, 2));
  // Top-down straight BGRA with partial alpha.
  std::vector<uint8_t> in = {200, 100, 50, 128, 1, 2, 3, 255, 0, 0, 0, 0, 9, 9, 9, 255};
  EXPECT_FALSE(d.SetDIBbits(std::vector<uint8_t>(in.begin(), in.end() - 1), true, true, false, false));
  ASSERT_TRUE(d.SetDIBbits(in, true, true, false, false));
  EXPECT_EQ(word(d, 0, 0), 0x80193264u);  // 50*128/255=25, 100->50, 200->100
  EXPECT_EQ(word(d, 1, 0), 0xFF030201u);
  EXPECT_EQ(word(d, 0, 1), 0u);
  EXPECT_EQ(d.Alpha(), AlphaComplex);

  // 24-bit RGB into the bottom-right pixel: alpha is left as it was. The array must still
  // cover the surface's full height.
  std::vector<uint8_t> rgb = {7, 8, 9, 0, 0, 0};
  ASSERT_TRUE(d.SetDIBbits(rgb, false, false, false, true, 1, 1, 1, 1));
  EXPECT_EQ(word(d, 1, 1), 0xFF070809u);
}

// Runs ValidateAlphaChannel over BGRA pixels given as words.
struct Validated {
  ENUM_ALPHA_TYPE alpha;
  int32_t type;
  std::vector<uint32_t> pixels;
};
Validated validate(std::vector<uint32_t> px, bool premultiply, int32_t type = imgNone) {
  std::span<uint8_t> bytes(reinterpret_cast<uint8_t*>(px.data()), px.size() * 4);
  ENUM_ALPHA_TYPE a = API32bppDIB::ValidateAlphaChannel(bytes, premultiply, type);
  return {a, type, px};
}

TEST(API32bppDIBAlpha, ValidateAlphaChannelKinds) {
  // Alpha 0 everywhere: a 24-bit picture in 32 bits, made opaque.
  auto v = validate({0x00112233, 0x00445566}, true);
  EXPECT_EQ(v.alpha, AlphaNone);
  EXPECT_EQ(v.type, imgBitmap);
  EXPECT_EQ(v.pixels, (std::vector<uint32_t>{0xFF112233, 0xFF445566}));
  // All opaque.
  v = validate({0xFF112233, 0xFFFFFFFF}, true);
  EXPECT_EQ(v.alpha, AlphaNone);
  EXPECT_EQ(v.type, imgBitmap);
  // Premultiplied with partial alpha, and premultiplied with only 0 and 255.
  v = validate({0x80404040, 0x00000000, 0xFF010203}, true);
  EXPECT_EQ(v.alpha, AlphaComplex);
  EXPECT_EQ(v.type, imgBmpPARGB);
  EXPECT_EQ(v.pixels[0], 0x80404040u);
  v = validate({0x00000000, 0xFF010203}, true);
  EXPECT_EQ(v.alpha, AlphaSimple);
  EXPECT_EQ(v.type, imgBmpPARGB);
  // A transparent pixel with colour: straight alpha, converted.
  v = validate({0x00FF0000, 0x80FF8000, 0xFF123456}, true);
  EXPECT_EQ(v.type, imgBmpARGB);
  EXPECT_EQ(v.alpha, AlphaComplex);
  EXPECT_EQ(v.pixels, (std::vector<uint32_t>{0, 0x80804000, 0xFF123456}));
  // A colour above its alpha; without Premultiply nothing changes.
  v = validate({0x10200000, 0xFF000000}, false);
  EXPECT_EQ(v.type, imgBmpARGB);
  EXPECT_EQ(v.pixels[0], 0x10200000u);
  // Straight alpha of only 0 and 255.
  v = validate({0x00FF0000, 0xFF00FF00}, true);
  EXPECT_EQ(v.type, imgBmpARGB);
  EXPECT_EQ(v.alpha, AlphaSimple);
  EXPECT_EQ(v.pixels[0], 0u);
  // Type -1 skips the scan: no alpha.
  v = validate({0x80404040}, true, -1);
  EXPECT_EQ(v.alpha, AlphaNone);
  EXPECT_EQ(v.type, imgBitmap);
  EXPECT_EQ(v.pixels[0], 0xFF404040u);
}

TEST(API32bppDIBPixels, CheckerBoardCells) {
  API32bppDIB d;
  EXPECT_FALSE(d.CreateCheckerBoard(2, 0, 0));
  ASSERT_TRUE(d.InitializeDIB(5, 3));
  EXPECT_FALSE(d.CreateCheckerBoard(0, 0, 0));
  ASSERT_TRUE(d.CreateCheckerBoard(2, 0x0000FF, 0xFF0000));  // red and blue
  const uint32_t R = 0xFFFF0000, B = 0xFF0000FF;
  const uint32_t want[3][5] = {{R, R, B, B, R}, {R, R, B, B, R}, {B, B, R, R, B}};
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x) EXPECT_EQ(word(d, x, y), want[y][x]) << x << "," << y;
  EXPECT_EQ(d.ImageType(), imgCheckerBoard);
}

TEST(API32bppDIBIcons, SourceIconSizesOnlyForIcons) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(16, 8));
  std::vector<std::array<int32_t, 4>> sizes;
  EXPECT_EQ(d.SourceIconSizes(sizes), 0);
  d.SetImageType(imgIconARGB);
  ASSERT_EQ(d.SourceIconSizes(sizes), 1);
  EXPECT_EQ(sizes[0], (std::array<int32_t, 4>{16, 8, 32, -1}));
}

// ---- the load chain ----

// A 1 x 1 grey PNG without IEND, 55 bytes: small enough for the file rule.
std::vector<uint8_t> tinyPng() {
  std::vector<uint8_t> png = test::signature();
  test::addChunk(png, "IHDR", test::ihdr(1, 1, 8, 0));
  test::addChunk(png, "IDAT", {0x78, 0x9C, 0x63, 0x60, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01});
  return png;
}

std::string tempFile(const std::vector<uint8_t>& bytes) {
  static int n = 0;
  std::string path = (std::filesystem::temp_directory_path() / ("mx_image_" + std::to_string(getpid()) + "_" +
                                                               std::to_string(n++) + ".bin"))
                         .string();
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return path;
}

TEST(API32bppDIBLoad, SizeThresholdsOfFilesAndStreams) {
  std::vector<uint8_t> png = tinyPng();
  ASSERT_EQ(png.size(), 55u);
  API32bppDIB d;
  ASSERT_TRUE(d.LoadPicture_Stream(png));
  EXPECT_EQ(word(d, 0, 0), 0xFF000000u);
  // The same bytes as a file are too small to be looked at.
  std::string small = tempFile(png);
  EXPECT_FALSE(d.LoadPicture_File(host::FromUtf8(small)));
  EXPECT_EQ(d.Handle(), 0u);
  // Padding after the data makes the file big enough: extra bytes after the last chunk
  // are read as a chunk header, so pad with an IEND.
  std::vector<uint8_t> padded = png;
  test::addChunk(padded, "IEND", {});
  std::string big = tempFile(padded);
  EXPECT_TRUE(d.LoadPicture_File(host::FromUtf8(big)));
  EXPECT_FALSE(d.LoadPicture_File(u"/no/such/file.png"));
  std::remove(small.c_str());
  std::remove(big.c_str());

  EXPECT_FALSE(d.LoadPicture_Stream(std::vector<uint8_t>(png.begin(), png.begin() + 19)));
  // A range shorter than 20 bytes fails too.
  EXPECT_FALSE(d.LoadPicture_Stream(png, 0, 0, 0, 19));
}

TEST(API32bppDIBLoad, OriginalBytesAreTheWholeArray) {
  std::vector<uint8_t> data = {1, 2, 3};
  std::vector<uint8_t> png = tinyPng();
  data.insert(data.end(), png.begin(), png.end());
  data.push_back(0xEE);
  API32bppDIB d;
  std::vector<uint8_t> kept;
  ASSERT_TRUE(d.LoadPicture_Stream(data, 0, 0, 3, 55, false));
  EXPECT_FALSE(d.GetOrginalFormat(kept));
  ASSERT_TRUE(d.LoadPicture_Stream(data, 0, 0, 3, 55, true));
  ASSERT_TRUE(d.GetOrginalFormat(kept));
  EXPECT_EQ(kept, data);  // bytes outside the range included

  // Reading the kept bytes again starts at their beginning, where no PNG starts.
  EXPECT_FALSE(d.LoadPicture_FromOrignalFormat());
  EXPECT_EQ(d.Handle(), 0u);

  ASSERT_TRUE(d.LoadPicture_Stream(png, 0, 0, 0, 0, true));
  ASSERT_TRUE(d.LoadPicture_FromOrignalFormat());
  ASSERT_TRUE(d.GetOrginalFormat(kept));  // kept again
  EXPECT_EQ(kept, png);
  d.DestroyDIB();
  EXPECT_FALSE(d.GetOrginalFormat(kept));
  EXPECT_FALSE(d.LoadPicture_FromOrignalFormat());
}

TEST(API32bppDIBLoad, UnreadFormatsLeaveTheSurfaceEmpty) {
  API32bppDIB d;
  ASSERT_TRUE(d.InitializeDIB(2, 2));
  std::vector<uint8_t> gif = {'G', 'I', 'F', '8', '9', 'a'};
  gif.resize(64, 0);
  EXPECT_FALSE(d.LoadPicture_Stream(gif));
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_EQ(d.ImageType(), imgError);
}

}  // namespace
}  // namespace mx::image
