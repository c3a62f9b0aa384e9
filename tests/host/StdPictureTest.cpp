// Pictures: the kind and HiMetric size read from each format's header, LoadPicture's errors, the
// decoder seam; and the Screen's units that those sizes are expressed in.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>

#include "host/Err.h"
#include "host/Screen.h"
#include "host/StdPicture.h"
#include "platform/Desktop.h"

using namespace mx::host;

namespace {

int32_t ErrorNumberOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

void PutLE(ByteArray& b, size_t at, uint32_t v, int bytes) {
  if (b.size() < at + static_cast<size_t>(bytes)) b.resize(at + static_cast<size_t>(bytes));
  for (int i = 0; i < bytes; ++i) b[at + static_cast<size_t>(i)] = static_cast<uint8_t>(v >> (8 * i));
}

void PutBE(ByteArray& b, size_t at, uint32_t v, int bytes) {
  if (b.size() < at + static_cast<size_t>(bytes)) b.resize(at + static_cast<size_t>(bytes));
  for (int i = 0; i < bytes; ++i) b[at + static_cast<size_t>(i)] = static_cast<uint8_t>(v >> (8 * (bytes - 1 - i)));
}

ByteArray Png(uint32_t w, uint32_t h) {
  ByteArray b = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  PutBE(b, 16, w, 4);
  PutBE(b, 20, h, 4);
  b.insert(b.end(), {8, 6, 0, 0, 0, 0, 0, 0, 0});
  return b;
}

ByteArray Bmp(int32_t w, int32_t h, uint32_t headerSize = 40) {
  ByteArray b = {'B', 'M'};
  PutLE(b, 14, headerSize, 4);
  if (headerSize == 12) {
    PutLE(b, 18, static_cast<uint32_t>(w), 2);
    PutLE(b, 20, static_cast<uint32_t>(h), 2);
  } else {
    PutLE(b, 18, static_cast<uint32_t>(w), 4);
    PutLE(b, 22, static_cast<uint32_t>(h), 4);
  }
  b.resize(14 + headerSize);
  return b;
}

ByteArray Icon(uint8_t type, uint8_t w, uint8_t h) {
  ByteArray b = {0, 0, type, 0, 1, 0, w, h};
  b.resize(6 + 16);
  return b;
}

ByteArray Jpeg(bool withFrame) {
  ByteArray b = {0xFF, 0xD8};
  b.insert(b.end(), {0xFF, 0xE0, 0, 6, 'J', 'F', 'I', 'F'});  // APP0
  b.insert(b.end(), {0xFF, 0xFF});                            // fill byte before a marker
  b.insert(b.end(), {0xFF, 0xC4, 0, 4, 0, 0});                // DHT shares the frame range
  if (withFrame) b.insert(b.end(), {0xFF, 0xC2, 0, 11, 8, 0x01, 0xE0, 0x02, 0x80, 3, 0, 0, 0, 0});
  b.insert(b.end(), {0xFF, 0xDA, 0, 2, 0xFF, 0xD9});
  return b;
}

ByteArray PlaceableWmf() {
  ByteArray b = {0xD7, 0xCD, 0xC6, 0x9A, 0, 0};
  PutLE(b, 6, 0, 2);
  PutLE(b, 8, 0, 2);
  PutLE(b, 10, 1440, 2);
  PutLE(b, 12, 720, 2);
  PutLE(b, 14, 1440, 2);  // units per inch
  b.resize(22 + 18);
  return b;
}

ByteArray Emf() {
  ByteArray b;
  PutLE(b, 0, 1, 4);
  PutLE(b, 4, 88, 4);
  PutLE(b, 8, 0, 4);  // bounds in pixels, inclusive
  PutLE(b, 12, 0, 4);
  PutLE(b, 16, 99, 4);
  PutLE(b, 20, 49, 4);
  PutLE(b, 24, 0, 4);  // frame in HiMetric
  PutLE(b, 28, 0, 4);
  PutLE(b, 32, 2645, 4);
  PutLE(b, 36, 1322, 4);
  b.insert(b.end(), {' ', 'E', 'M', 'F'});
  b.resize(88);
  return b;
}

struct Expected {
  const char* name;
  ByteArray bytes;
  PictureFormat format;
  int16_t type;
  int32_t pixelWidth, pixelHeight, himetricWidth, himetricHeight;
};

}  // namespace

TEST(StdPicture, HeadersGiveKindAndSizeWithoutDecoding) {
  const Expected cases[] = {
      // 300 px = 7937.5 HiMetric, rounded half away from zero.
      {"png", Png(300, 200), PictureFormat::Png, vbPicTypeBitmap, 300, 200, 7938, 5292},
      {"png cut after signature", {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A}, PictureFormat::Png,
       vbPicTypeBitmap, 0, 0, 0, 0},
      {"gif", {'G', 'I', 'F', '8', '9', 'a', 32, 0, 16, 0, 0}, PictureFormat::Gif, vbPicTypeBitmap, 32, 16, 847, 423},
      {"gif87", {'G', 'I', 'F', '8', '7', 'a', 1, 1, 2, 0}, PictureFormat::Gif, vbPicTypeBitmap, 257, 2, 6800, 53},
      {"bmp top-down", Bmp(64, -48), PictureFormat::Bmp, vbPicTypeBitmap, 64, 48, 1693, 1270},
      {"bmp core header", Bmp(10, 20, 12), PictureFormat::Bmp, vbPicTypeBitmap, 10, 20, 265, 529},
      {"ico 256", Icon(1, 0, 0), PictureFormat::Ico, vbPicTypeIcon, 256, 256, 6773, 6773},
      {"cur", Icon(2, 32, 32), PictureFormat::Cur, vbPicTypeIcon, 32, 32, 847, 847},
      {"jpeg", Jpeg(true), PictureFormat::Jpeg, vbPicTypeBitmap, 640, 480, 16933, 12700},
      {"jpeg without frame", Jpeg(false), PictureFormat::Jpeg, vbPicTypeBitmap, 0, 0, 0, 0},
      {"placeable wmf", PlaceableWmf(), PictureFormat::Wmf, vbPicTypeMetafile, 96, 48, 2540, 1270},
      {"emf", Emf(), PictureFormat::Emf, vbPicTypeEMetafile, 100, 50, 2645, 1322},
      {"ico with no images", {0, 0, 1, 0, 0, 0}, PictureFormat::Unknown, vbPicTypeNone, 0, 0, 0, 0},
      {"text", {'h', 'e', 'l', 'l', 'o'}, PictureFormat::Unknown, vbPicTypeNone, 0, 0, 0, 0},
      {"nothing", {}, PictureFormat::None, vbPicTypeNone, 0, 0, 0, 0},
  };
  for (const Expected& c : cases) {
    SCOPED_TRACE(c.name);
    auto picture = StdPicture::FromBytes(c.bytes);
    EXPECT_EQ(picture->Format(), c.format);
    EXPECT_EQ(picture->Type(), c.type);
    EXPECT_EQ(picture->PixelWidth(), c.pixelWidth);
    EXPECT_EQ(picture->PixelHeight(), c.pixelHeight);
    EXPECT_EQ(picture->Width(), c.himetricWidth);
    EXPECT_EQ(picture->Height(), c.himetricHeight);
    EXPECT_EQ(picture->Bytes(), c.bytes);  // kept exactly, recognised or not
  }
  // Every cut of every header answers without reading past the end.
  for (const Expected& c : cases) {
    for (size_t n = 0; n < c.bytes.size(); ++n) (void)SniffPicture(std::span(c.bytes.data(), n));
  }
}

TEST(StdPicture, LoadPictureRefusesWhatIsNoPicture) {
  EXPECT_TRUE(LoadPicture()->IsEmpty());
  EXPECT_EQ(LoadPicture("")->Handle(), 0u);
  EXPECT_EQ(ErrorNumberOf([] { (void)LoadPictureFromBytes({'h', 'i'}); }), kErrInvalidPicture);
  EXPECT_TRUE(LoadPictureFromBytes({})->IsEmpty());

  std::filesystem::path dir = std::filesystem::temp_directory_path() / "mx_stdpicture";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  EXPECT_EQ(ErrorNumberOf([&] { (void)LoadPicture((dir / "absent.png").string()); }), kErrFileNotFound);
  EXPECT_EQ(ErrorNumberOf([&] { (void)LoadPicture(dir.string()); }), kErrPathFileAccess);
  std::ofstream((dir / "empty.bmp").string()).close();
  EXPECT_EQ(ErrorNumberOf([&] { (void)LoadPicture((dir / "empty.bmp").string()); }), kErrInvalidPicture);

  // SavePicture writes the file's bytes; LoadPicture reads them back as they were.
  auto gif = StdPicture::FromBytes({'G', 'I', 'F', '8', '9', 'a', 5, 0, 7, 0, 0, 0, 0, 0x3B});
  SavePicture(*gif, (dir / "p.gif").string());
  auto loaded = LoadPicture((dir / "p.gif").string());
  EXPECT_TRUE(loaded->SameAs(*gif));
  EXPECT_EQ(loaded->PixelHeight(), 7);
  EXPECT_EQ(ErrorNumberOf([&] { SavePicture(StdPicture(), (dir / "none.bmp").string()); }), kErrInvalidPropertyValue);
  EXPECT_EQ(ErrorNumberOf([&] { SavePicture(*gif, (dir / "no" / "such.gif").string()); }), kErrPathFileAccess);
  std::filesystem::remove_all(dir);
}

TEST(StdPicture, HandleComesFromTheRegisteredDecoderOnce) {
  int decodes = 0;
  std::vector<std::pair<uint32_t, int16_t>> released;
  auto picture = StdPicture::FromBytes(Png(2, 2));
  EXPECT_EQ(picture->Handle(), 0u);  // no decoder yet: not counted as a failed attempt

  SetPictureDecoder(PictureDecoder{[&](const StdPicture& p) -> uint32_t {
                                     ++decodes;
                                     return p.PixelWidth() == 2 ? 0x1234u : 0u;
                                   },
                                   [&](uint32_t handle, int16_t type) { released.emplace_back(handle, type); }});
  EXPECT_EQ(picture->Handle(), 0x1234u);
  EXPECT_EQ(picture->Handle(), 0x1234u);
  EXPECT_EQ(decodes, 1);
  EXPECT_EQ(StdPicture().Handle(), 0u);                                  // nothing to decode
  EXPECT_EQ(StdPicture::FromBytes({'x', 'y', 'z'})->Handle(), 0u);        // no picture kind
  auto failing = StdPicture::FromBytes(Png(3, 3));
  EXPECT_EQ(failing->Handle(), 0u);
  EXPECT_EQ(failing->Handle(), 0u);  // a failure is not retried
  EXPECT_EQ(decodes, 2);
  failing.reset();
  EXPECT_TRUE(released.empty());  // nothing was made, so nothing is given back
  picture.reset();
  ASSERT_EQ(released.size(), 1u);
  EXPECT_EQ(released[0], (std::pair<uint32_t, int16_t>{0x1234u, vbPicTypeBitmap}));
  SetPictureDecoder({});
}

// ---- the Screen ------------------------------------------------------------------------------------

TEST(Screen, SizeAndPixelFollowTheMetrics) {
  Screen& screen = GetScreen();
  EXPECT_EQ(screen.TwipsPerPixelX(), 15.0f);
  EXPECT_EQ(screen.TwipsPerPixelY(), 15.0f);
  EXPECT_EQ(screen.Width(), 1280 * 15.0f);
  EXPECT_EQ(screen.Height(), 800 * 15.0f);
  SetScreenMetricsSource([] { return ScreenMetrics{1920, 1080, 120}; });
  EXPECT_EQ(screen.TwipsPerPixelX(), 12.0f);
  EXPECT_EQ(screen.Width(), 23040.0f);
  EXPECT_EQ(screen.ScaleX(10, vbPixels, vbTwips), 120.0f);
  // A source that knows only part falls back for the rest.
  SetScreenMetricsSource([] { return ScreenMetrics{0, 600, 0}; });
  EXPECT_EQ(screen.Width(), 19200.0f);
  EXPECT_EQ(screen.Height(), 9000.0f);
  SetScreenMetricsSource({});
  EXPECT_EQ(screen.Height(), 12000.0f);
  // By default the platform's desktop is asked.
  mx::platform::SetScreenSize(1024, 768);
  EXPECT_EQ(screen.Width(), 1024 * 15.0f);
  mx::platform::SetScreenDpi(144);
  EXPECT_EQ(screen.TwipsPerPixelY(), 10.0f);
  EXPECT_EQ(screen.Height(), 768 * 10.0f);
  mx::platform::SetScreenDpi(96);
  mx::platform::SetScreenSize(1280, 800);
}

TEST(Screen, ScaleConvertsBetweenTheHostsUnits) {
  const Screen& s = GetScreen();
  EXPECT_FLOAT_EQ(s.ScaleX(2540), 1440.0f);  // HiMetric to twips by default
  EXPECT_FLOAT_EQ(s.ScaleX(32, vbPixels, vbHimetric), 846.6667f);
  EXPECT_FLOAT_EQ(s.ScaleX(1, vbInches, vbPixels), 96.0f);
  EXPECT_FLOAT_EQ(s.ScaleX(72, vbPoints, vbInches), 1.0f);
  EXPECT_FLOAT_EQ(s.ScaleX(10, vbMillimeters, vbCentimeters), 1.0f);
  EXPECT_FLOAT_EQ(s.ScaleX(2.54, vbCentimeters, vbInches), 1.0f);
  // The character cell is wider in twips down than across.
  EXPECT_FLOAT_EQ(s.ScaleX(1, vbCharacters, vbTwips), 120.0f);
  EXPECT_FLOAT_EQ(s.ScaleY(1, vbCharacters, vbTwips), 240.0f);
  EXPECT_FLOAT_EQ(s.ScaleY(16, vbPixels, vbCharacters), 1.0f);

  // Every conversion and its inverse return the value.
  for (int32_t from = vbTwips; from <= vbHimetric; ++from) {
    for (int32_t to = vbTwips; to <= vbHimetric; ++to) {
      for (double v : {1.0, 37.5, 12345.0}) {
        float x = s.ScaleX(s.ScaleX(v, from, to), to, from);
        float y = s.ScaleY(s.ScaleY(v, from, to), to, from);
        EXPECT_NEAR(x, v, v * 1e-6) << from << "->" << to;
        EXPECT_NEAR(y, v, v * 1e-6) << from << "->" << to;
      }
    }
  }
  for (int32_t bad : {int32_t{vbUser}, int32_t{vbContainerPosition}, int32_t{vbContainerSize}, 11, -1}) {
    EXPECT_EQ(ErrorNumberOf([&] { (void)s.ScaleX(1, bad, vbTwips); }), kErrInvalidProcedureCall);
    EXPECT_EQ(ErrorNumberOf([&] { (void)s.ScaleY(1, vbTwips, bad); }), kErrInvalidProcedureCall);
  }
}
