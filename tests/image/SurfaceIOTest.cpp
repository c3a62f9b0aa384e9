// The surface's writers and save dispatch, the system-codec binding, the clipboard, drops, the
// host picture decoder and the mximage commands.
#include <gtest/gtest.h>
#include <png.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "host/DataObject.h"
#include "host/StdPicture.h"
#include "image/API32bppDIB.h"
#include "image/APIBMPParser.h"
#include "image/APIGDIPlus.h"
#include "image/APIPNGWriter.h"
#include "image/ImageCommands.h"
#include "image/PictureBinding.h"
#include "platform/Clipboard.h"
#include "platform/Gdi.h"
#include "CodecTestSupport.h"

namespace mx::image {
namespace {

using test::px;

std::string tempPath(const std::string& name) { return ::testing::TempDir() + "mx_codecs_" + name; }

// A 4 x 3 picture with opaque, transparent and partial pixels.
void sample(API32bppDIB& d) {
  test::fill(d, 4, 3,
             {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0,  //
              0x80400000, 0x40102030, 0xFFFFFFFF, 0xFF000000,  //
              0x01010000, 0xC0808080, 0xFF123456, 0x7F7F7F7F},
             AlphaComplex);
}

// Straight RGBA as libpng reads it, top row first.
std::vector<uint8_t> libpngRead(const std::vector<uint8_t>& png, int& w, int& h) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&img, png.data(), png.size())) return {};
  img.format = PNG_FORMAT_RGBA;
  w = static_cast<int>(img.width), h = static_cast<int>(img.height);
  std::vector<uint8_t> out(PNG_IMAGE_SIZE(img));
  if (!png_image_finish_read(&img, nullptr, out.data(), 0, nullptr)) return {};
  return out;
}

TEST(PngWriter, PixelsAsLibpngReadsThemAndBackThroughOurReader) {
  API32bppDIB src, back;
  sample(src);
  std::vector<uint8_t> png;
  ASSERT_TRUE(src.SaveToStream_PNG(png));
  int w = 0, h = 0;
  std::vector<uint8_t> rgba = libpngRead(png, w, h);
  ASSERT_EQ(rgba.size(), 4u * 3u * 4u);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x) {
      uint32_t p = px(src, x, y), a = p >> 24;
      const uint8_t* q = &rgba[static_cast<size_t>(y * 4 + x) * 4];
      auto straight = [&](uint32_t c) { return a == 0 || a == 255 ? c : c * 255 / a; };
      EXPECT_EQ(q[0], straight((p >> 16) & 0xFF)) << x << "," << y;
      EXPECT_EQ(q[2], straight(p & 0xFF)) << x << "," << y;
      EXPECT_EQ(q[3], a);
    }
  // Opaque and fully transparent pixels come back exactly.
  ASSERT_TRUE(back.LoadPicture_Stream(png));
  EXPECT_EQ(px(back, 0, 0), px(src, 0, 0));
  EXPECT_EQ(px(back, 3, 0), 0u);
  EXPECT_EQ(px(back, 2, 2), px(src, 2, 2));

  // An opaque surface is written without alpha (colour type 2) and returns exactly.
  test::fill(src, 2, 1, {0xFF102030, 0xFFFFFFFF}, AlphaNone);
  ASSERT_TRUE(src.SaveToStream_PNG(png));
  EXPECT_EQ(png[25], 2);
  ASSERT_TRUE(back.LoadPicture_Stream(png));
  EXPECT_EQ(test::pixels(back), test::pixels(src));
}

TEST(PngWriter, PropertiesBecomeChunksThatLibpngReads) {
  API32bppDIB src;
  sample(src);
  // Defaults before any property exists.
  EXPECT_EQ(src.pngProps(), nullptr);
  EXPECT_EQ(src.PngPropertyGet(clrDefaultBkg).ToLong(), -1);
  EXPECT_EQ(src.PngPropertyGet(dateTimeModified).ToDouble(), 0.0);
  EXPECT_EQ(src.PngPropertyGet(txtTitle).ToString(), u"");

  ASSERT_TRUE(src.PngPropertySet(txtTitle, host::Variant(host::String(u"Logo"))));
  ASSERT_TRUE(src.PngPropertySet(txtAuthor, host::Variant(host::String(u"S\u00e3o Jo\u00e3o \u4e2d"))));
  ASSERT_TRUE(src.PngPropertySet(txtLargeBlockText, host::Variant(host::String(2000, u'x')), u"Notes"));
  ASSERT_TRUE(src.PngPropertySet(clrDefaultBkg, host::Variant(int32_t{0x0000FF})));
  ASSERT_TRUE(src.PngPropertySet(dateTimeModified, host::Variant::FromDate(45292.5)));  // 2024-01-01 12:00
  EXPECT_FALSE(src.PngPropertySet(txtLargeBlockText, host::Variant(host::String(u"x")), u" bad"));
  EXPECT_FALSE(src.PngPropertySet(99, host::Variant(int32_t{1})));
  EXPECT_EQ(src.PngPropertyGet(txtTitle).ToString(), u"Logo");

  std::vector<uint8_t> png;
  ASSERT_TRUE(src.SaveToStream_PNG(png));
  png_structp rd = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(rd);
  struct Reader {
    const std::vector<uint8_t>* data;
    size_t at;
  } reader{&png, 0};
  png_set_read_fn(rd, &reader, [](png_structp p, png_bytep out, png_size_t n) {
    auto* r = static_cast<Reader*>(png_get_io_ptr(p));
    std::memcpy(out, r->data->data() + r->at, n);
    r->at += n;
  });
  png_read_info(rd, info);
  png_textp text = nullptr;
  int count = png_get_text(rd, info, &text, nullptr);
  ASSERT_EQ(count, 3);
  EXPECT_STREQ(text[0].key, "Title");
  EXPECT_STREQ(text[0].text, "Logo");
  EXPECT_EQ(text[0].compression, PNG_TEXT_COMPRESSION_NONE);
  EXPECT_STREQ(text[1].key, "Author");
  EXPECT_EQ(std::string(text[1].text), "S\u00e3o Jo\u00e3o \u4e2d");  // iTXt, UTF-8
  EXPECT_STREQ(text[2].key, "Notes");
  EXPECT_EQ(text[2].compression, PNG_TEXT_COMPRESSION_zTXt);
  EXPECT_EQ(std::string(text[2].text), std::string(2000, 'x'));
  png_color_16p bkgd = nullptr;
  ASSERT_TRUE(png_get_bKGD(rd, info, &bkgd));
  EXPECT_EQ(bkgd->red, 255);
  EXPECT_EQ(bkgd->blue, 0);
  png_timep t = nullptr;
  ASSERT_TRUE(png_get_tIME(rd, info, &t));
  EXPECT_EQ(t->year, 2024);
  EXPECT_EQ(t->hour, 12);
  png_destroy_read_struct(&rd, &info, nullptr);

  // A missing value removes one; -1 drops them all.
  ASSERT_TRUE(src.PngPropertySet(txtTitle));
  EXPECT_EQ(src.PngPropertyGet(txtTitle).ToString(), u"");
  ASSERT_TRUE(src.PngPropertySet(-1));
  EXPECT_EQ(src.pngProps(), nullptr);
}

// Largest channel difference of two opaque surfaces of the same size.
int maxDiff(const API32bppDIB& a, const API32bppDIB& b) {
  int worst = 0;
  for (size_t i = 0; i < static_cast<size_t>(a.Width()) * a.Height() * 4; ++i)
    worst = std::max(worst, std::abs(a.BitsPointer()[i] - b.BitsPointer()[i]));
  return worst;
}

TEST(JpgWriter, RoundTripWithinToleranceAndTheDispatchOrder) {
  // A smooth 32 x 32 gradient: at quality 95 with 4:2:0 sampling the DCT and chroma rounding
  // stay within a few levels per channel; 8 leaves room for encoder versions while a swapped
  // channel, a flipped row order or a shifted picture would be far off.
  API32bppDIB src, back;
  std::vector<uint32_t> v;
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) v.push_back(0xFF000000u | (uint32_t(x * 8) << 16) | (uint32_t(y * 8) << 8) | 0x40);
  test::fill(src, 32, 32, v, AlphaNone);
  const std::string path = tempPath("q.jpg");
  ASSERT_TRUE(src.SaveToFile_JPG(host::FromUtf8(path), 95));
  std::ifstream f(path, std::ios::binary);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), {});
  ASSERT_TRUE(APIGDIPlus::DecodeJPEG(bytes.data(), bytes.size(), back));
  EXPECT_LE(maxDiff(src, back), 8);

  // The own writer takes the quality's low byte: 256 + 95 writes the same file.
  const std::string path2 = tempPath("q2.jpg");
  ASSERT_TRUE(src.SaveToFile_JPG(host::FromUtf8(path2), 256 + 95));
  std::ifstream f2(path2, std::ios::binary);
  EXPECT_EQ(std::vector<uint8_t>((std::istreambuf_iterator<char>(f2)), {}), bytes);

  // Without the system codec the chain reads no JPEG and the stream save has no second writer.
  API32bppDIB d;
  std::vector<uint8_t> out;
  EXPECT_FALSE(d.LoadPicture_Stream(bytes));
  EXPECT_FALSE(src.SaveToStream_JPG(out));
  APIGDIPlus::SetAvailable(true);
  API32bppDIB withCodec;
  EXPECT_TRUE(withCodec.isGDIplusEnabled());
  EXPECT_TRUE(src.SaveToStream_JPG(out));
  ASSERT_TRUE(withCodec.LoadPicture_Stream(bytes, 0, 0, 0, 0, true));
  EXPECT_EQ(withCodec.ImageType(), imgPNG);  // the binding's pictures always report PNG
  std::vector<uint8_t> kept;
  ASSERT_TRUE(withCodec.GetOrginalFormat(kept));
  EXPECT_EQ(kept[1], 'P');  // what is kept is a PNG of the picture, not the JPEG
  APIGDIPlus::SetAvailable(false);

  // Transparency is laid over the fill colour.
  test::fill(src, 1, 1, {0}, AlphaSimple);
  ASSERT_TRUE(src.SaveToFile_JPG(host::FromUtf8(path), 90, 0x00FF00));
  std::ifstream f3(path, std::ios::binary);
  bytes.assign((std::istreambuf_iterator<char>(f3)), {});
  ASSERT_TRUE(APIGDIPlus::DecodeJPEG(bytes.data(), bytes.size(), back));
  EXPECT_NEAR(static_cast<int>((px(back, 0, 0) >> 8) & 0xFF), 255, 3);
  EXPECT_NEAR(static_cast<int>(px(back, 0, 0) & 0xFF), 0, 3);
  for (size_t n = 0; n < bytes.size(); n += 7) (void)APIGDIPlus::DecodeJPEG(bytes.data(), n, back);
}

TEST(SaveDispatch, EveryFormatRoundTripsThroughFilesAndTheChain) {
  API32bppDIB src, back;
  // Few colours with binary alpha: exact through PNG, BMP and GIF.
  test::fill(src, 8, 8, std::vector<uint32_t>(64, 0xFF336699), AlphaSimple);
  for (int i = 0; i < 8; ++i) std::memset(src.BitsPointer() + i * 4 * 9, 0, 4);
  for (const char* ext : {"png", "bmp", "gif"}) {
    const std::string path = tempPath(std::string("rt.") + ext);
    ConvertSettings settings;
    ASSERT_TRUE(SaveByExtension(src, path, settings)) << ext;
    ASSERT_TRUE(back.LoadPicture_File(host::FromUtf8(path))) << ext;
    EXPECT_EQ(test::pixels(back), test::pixels(src)) << ext;
  }
  EXPECT_FALSE(SaveByExtension(src, tempPath("rt.tiff"), ConvertSettings{}));
}

TEST(Clipboard, PackedDibsAndPastedFiles) {
  platform::ResetClipboard();
  API32bppDIB src, d;
  test::fill(src, 3, 2, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF000000, 0xFFFFFFFF, 0xFF808080}, AlphaNone);
  std::vector<uint8_t> dib;
  ASSERT_TRUE(APIBMPParser().SavePackedDIB(src, dib));
  EXPECT_FALSE(d.LoadPicture_ClipBoard());
  ASSERT_TRUE(platform::OpenClipboard(0));
  platform::EmptyClipboard();
  platform::SetClipboardData(platform::CF_DIB, dib);
  platform::CloseClipboard();
  ASSERT_TRUE(d.LoadPicture_ClipBoard());
  EXPECT_EQ(test::pixels(d), test::pixels(src));

  // Files on the clipboard: count only with index 0, then one loaded by index.
  const std::string path = tempPath("paste.bmp");
  ASSERT_TRUE(src.SaveToFile_Bitmap(host::FromUtf8(path)));
  std::vector<host::String> names = {u"/nowhere/a.png", host::FromUtf8(path)};
  ASSERT_TRUE(platform::OpenClipboard(0));
  platform::EmptyClipboard();
  platform::SetClipboardData(platform::CF_HDROP, host::MakeDropFiles(names));
  platform::CloseClipboard();
  int32_t count = 0;
  EXPECT_TRUE(d.LoadPicture_PastedFiles(0, 0, 0, false, 32, count));
  EXPECT_EQ(count, 2);
  EXPECT_EQ(d.Handle(), 0u);
  EXPECT_FALSE(d.LoadPicture_PastedFiles(1, 0, 0, false, 32, count));
  EXPECT_TRUE(d.LoadPicture_PastedFiles(2, 0, 0, false, 32, count));
  EXPECT_EQ(d.Width(), 3);
  EXPECT_FALSE(d.LoadPicture_PastedFiles(3, 0, 0, false, 32, count));
  platform::ResetClipboard();
}

TEST(Drops, WideNamesReplaceTheAnsiFilesList) {
  API32bppDIB src, d;
  test::fill(src, 2, 2, std::vector<uint32_t>(4, 0xFF0000FF), AlphaNone);
  const std::string path = tempPath("drop \xe4\xb8\xad.bmp");  // a name outside the ANSI code page
  ASSERT_TRUE(src.SaveToFile_Bitmap(host::FromUtf8(path)));
  std::vector<host::String> names = {host::FromUtf8(path)};
  host::DataObject data;
  data.SetDroppedFiles(names);
  EXPECT_NE(data.Files().Item(1), names[0]);  // the host's list has "?" for the character
  ASSERT_TRUE(d.LoadPicture_DropedFiles(data, 1));
  EXPECT_EQ(data.Files().Item(1), names[0]);
  EXPECT_FALSE(d.LoadPicture_DropedFiles(data, 2));

  // A narrow drop list leaves the list as it stands.
  host::DataObject narrow;
  narrow.SetDroppedFiles(names, false);
  EXPECT_FALSE(d.GetDroppedFileNames(narrow));
  EXPECT_EQ(narrow.Files().Count(), 1);
  // Damaged records are refused, not followed.
  host::ByteArray record = host::MakeDropFiles(names);
  record.resize(record.size() - 3);
  EXPECT_FALSE(host::ParseDropFiles(record).has_value());
}

TEST(PictureBinding, HandlesOfHostPicturesLoadBack) {
  InstallPictureDecoder();
  API32bppDIB src, d;
  test::fill(src, 3, 2, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF000000, 0xFFFFFFFF, 0xFF808080}, AlphaNone);
  std::vector<uint8_t> bmp;
  ASSERT_TRUE(src.SaveToStream_Bitmap(bmp));
  auto picture = host::StdPicture::FromBytes(bmp);
  ASSERT_NE(picture->Handle(), 0u);
  ASSERT_TRUE(d.LoadPicture_StdPicture(picture));
  EXPECT_EQ(test::pixels(d), test::pixels(src));
  ASSERT_TRUE(d.LoadPicture_ByHandle(picture->Handle()));
  EXPECT_EQ(d.Width(), 3);

  // An icon with alpha: through a platform icon handle and back, transparency kept.
  std::vector<uint8_t> ico = {0, 0, 1, 0, 1, 0, 2, 1, 0, 0, 1, 0, 32, 0};
  test::DibSpec s{.width = 2, .height = 2, .bitCount = 32};  // one row of colour, one of mask
  std::vector<uint8_t> entry = test::dibTables(s);
  for (uint32_t v : {0xFF00FF00u, 0u}) test::le32(entry, v);
  for (int i = 0; i < 4; ++i) entry.push_back(0);
  test::le32(ico, static_cast<uint32_t>(entry.size()));
  test::le32(ico, 22);
  ico.insert(ico.end(), entry.begin(), entry.end());
  auto icon = host::StdPicture::FromBytes(ico);
  ASSERT_EQ(icon->Type(), host::vbPicTypeIcon);
  ASSERT_TRUE(d.LoadPicture_StdPicture(icon));
  EXPECT_EQ(d.ImageType(), imgIconARGB);
  EXPECT_EQ(px(d, 0, 0), 0xFF00FF00u);
  EXPECT_EQ(px(d, 1, 0), 0u);
  EXPECT_FALSE(d.LoadPicture_StdPicture(std::make_shared<host::StdPicture>()));
  EXPECT_FALSE(d.LoadPicture_ByHandle(0x12345));
  UninstallPictureDecoder();
}

TEST(ImageCommands, InfoRawConvertAndErrors) {
  API32bppDIB src;
  sample(src);
  const std::string in = tempPath("cmd.png");
  ASSERT_TRUE(src.SaveToFile_PNG(host::FromUtf8(in)));
  std::ostringstream out, err;
  EXPECT_EQ(RunImageCommand({"info", in}, out, err), 0);
  EXPECT_EQ(out.str(), "width=4 height=3 type=10 alpha=2\n");

  const std::string raw = tempPath("cmd.raw");
  EXPECT_EQ(RunImageCommand({"raw", in, raw}, out, err), 0);
  std::ifstream f(raw, std::ios::binary);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), {});
  API32bppDIB loaded;
  ASSERT_TRUE(loaded.LoadPicture_File(host::FromUtf8(in)));
  ASSERT_EQ(bytes.size(), 48u);
  EXPECT_EQ(0, std::memcmp(bytes.data(), loaded.BitsPointer(), 48));

  const std::string gif = tempPath("cmd.gif");
  EXPECT_EQ(RunImageCommand({"convert", in, gif, "--adaptive"}, out, err), 0);
  out.str("");
  EXPECT_EQ(RunImageCommand({"info", gif}, out, err), 0);
  EXPECT_EQ(out.str().substr(0, 24), "width=4 height=3 type=9 ");

  EXPECT_EQ(RunImageCommand({"info", tempPath("missing.png")}, out, err), 1);
  EXPECT_EQ(RunImageCommand({"convert", in, tempPath("x.tga")}, out, err), 2);
  EXPECT_EQ(RunImageCommand({"convert", in, gif, "--spin"}, out, err), 2);
  EXPECT_EQ(RunImageCommand({"bench-decode", in, "0"}, out, err), 2);
  EXPECT_EQ(RunImageCommand({}, out, err), 2);
  out.str("");
  EXPECT_EQ(RunImageCommand({"bench-decode", in, "3"}, out, err), 0);
  EXPECT_EQ(out.str().rfind("ms_per_decode=", 0), 0u);
}

}  // namespace
}  // namespace mx::image
