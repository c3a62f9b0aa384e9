// The button's pictures: which picture each state shows, the PictureBytes surface decoded at the
// first paint, the painted size and opacity, the LoadImage_ family and its failures, and a golden
// sheet of pictures beside captions in the four states.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ButtonTestSupport.h"
#include "controls/USImageList.h"
#include "host/Err.h"
#include "image/API32bppDIB.h"
#include "image/PictureBinding.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"
#include "support/Golden.h"

namespace mx::controls::testing {
namespace {

using host::ByteArray;
using host::Variant;

constexpr platform::COLORREF kFace = 0x404040;
// COLORREFs (0x00BBGGRR) of the test pictures.
constexpr platform::COLORREF kRed = 0x0000FF;
constexpr platform::COLORREF kGreen = 0x00FF00;
constexpr platform::COLORREF kBlue = 0xFF0000;

// A w x h surface of one opaque colour (a COLORREF).
std::unique_ptr<image::API32bppDIB> Solid(int w, int h, platform::COLORREF colour) {
  auto dib = std::make_unique<image::API32bppDIB>();
  EXPECT_TRUE(dib->InitializeDIB(w, h));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) dib->SetPixel(x, y, static_cast<int32_t>(colour), 255);
  return dib;
}

ByteArray SolidPng(int w, int h, platform::COLORREF colour) {
  ByteArray out;
  EXPECT_TRUE(Solid(w, h, colour)->SaveToStream_PNG(out));
  return out;
}

ByteArray SolidBmp(int w, int h, platform::COLORREF colour) {
  ByteArray out;
  EXPECT_TRUE(Solid(w, h, colour)->SaveToStream_Bitmap(out));
  return out;
}

// A 16 x 16 disc with soft edges on a transparent ground, as PNG: shows the blend on the face.
ByteArray DiscPng(platform::COLORREF colour) {
  image::API32bppDIB dib;
  EXPECT_TRUE(dib.InitializeDIB(16, 16));
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) {
      const int dx = 2 * x - 15, dy = 2 * y - 15;
      const int d2 = dx * dx + dy * dy;  // radius 7.5 pixels is 15 here: 225 squared units
      const int alpha = d2 <= 169 ? 255 : d2 >= 225 ? 0 : 255 * (225 - d2) / 56;
      if (alpha) dib.SetPixel(x, y, static_cast<int32_t>(colour), alpha);
    }
  ByteArray out;
  EXPECT_TRUE(dib.SaveToStream_PNG(out));
  return out;
}

// An icon file holding one 32-bit image of each size given, each in its own colour.
ByteArray TwoSizeIcon(int small, platform::COLORREF smallColour, int large, platform::COLORREF largeColour) {
  auto le16 = [](ByteArray& b, uint32_t v) {
    b.push_back(static_cast<uint8_t>(v));
    b.push_back(static_cast<uint8_t>(v >> 8));
  };
  auto le32 = [&](ByteArray& b, uint32_t v) {
    le16(b, v & 0xFFFF);
    le16(b, v >> 16);
  };
  auto image = [&](int n, platform::COLORREF c) {
    ByteArray b;
    le32(b, 40), le32(b, n), le32(b, 2 * n), le16(b, 1), le16(b, 32);
    for (int i = 0; i < 6; ++i) le32(b, 0);
    for (int i = 0; i < n * n; ++i) {
      b.push_back(static_cast<uint8_t>(c >> 16)), b.push_back(static_cast<uint8_t>(c >> 8));
      b.push_back(static_cast<uint8_t>(c)), b.push_back(255);
    }
    // The AND mask: rows of whole 32-bit words, all clear (the alpha channel decides).
    b.resize(b.size() + static_cast<size_t>((n + 31) / 32 * 4 * n), 0);
    return b;
  };
  const ByteArray a = image(small, smallColour), c = image(large, largeColour);
  ByteArray out;
  le16(out, 0), le16(out, 1), le16(out, 2);
  uint32_t offset = 6 + 2 * 16;
  for (auto [n, data] : {std::pair{small, &a}, std::pair{large, &c}}) {
    out.push_back(static_cast<uint8_t>(n)), out.push_back(static_cast<uint8_t>(n)), out.push_back(0), out.push_back(0);
    le16(out, 1), le16(out, 32), le32(out, static_cast<uint32_t>(data->size())), le32(out, offset);
    offset += static_cast<uint32_t>(data->size());
  }
  out.insert(out.end(), a.begin(), a.end());
  out.insert(out.end(), c.begin(), c.end());
  return out;
}

bool IsPng(const ByteArray& b) { return b.size() > 8 && b[0] == 0x89 && b[1] == 'P' && b[2] == 'N' && b[3] == 'G'; }

class ButtonPicturesTest : public ButtonTest {
 protected:
  void SetUp() override {
    ButtonTest::SetUp();
    image::InstallPictureDecoder();
  }
  void TearDown() override {
    ButtonTest::TearDown();
    image::UninstallPictureDecoder();
  }

  // A button with one plain face colour in every state and no caption.
  std::shared_ptr<TestButton> Plain(int w, int h, host::PropertyBag* bag = nullptr) {
    auto b = Make(10, 10, w, h, bag);
    b->Caption(u"");
    for (int i = 1; i <= 4; ++i) {
      b->GradientColor(i, kFace);
      b->GradientColorOver(i, kFace);
      b->GradientColorDown(i, kFace);
      b->GradientColorDisabled(i, kFace);
    }
    return b;
  }

  // Every pixel of the rectangle [x0, x1) x [y0, y1) has the colour.
  static ::testing::AssertionResult Filled(const platform::CapturedImage& img, int x0, int y0, int x1, int y1,
                                           platform::COLORREF colour) {
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x)
        if (img.color(x, y) != colour)
          return ::testing::AssertionFailure() << "(" << x << "," << y << ") is " << std::hex << img.color(x, y)
                                               << ", not " << colour;
    return ::testing::AssertionSuccess();
  }
};

// ---- Which picture each state shows -------------------------------------------------------------

TEST_F(ButtonPicturesTest, EachStateShowsItsPictureObjectCentredWithoutCaption) {
  auto b = Plain(60, 30);
  b->Picture(host::StdPicture::FromBytes(SolidBmp(16, 16, kRed)));
  b->PictureOn(host::StdPicture::FromBytes(SolidBmp(16, 16, kGreen)));
  b->PictureOver(host::StdPicture::FromBytes(SolidBmp(16, 16, kBlue)));
  // No caption and LeftOfCaption: the 16 x 16 picture sits in the middle, at (22, 7).
  auto expectPicture = [&](platform::COLORREF colour) {
    auto img = Capture(*b);
    EXPECT_TRUE(Filled(img, 22, 7, 38, 23, colour));
    EXPECT_TRUE(Filled(img, 21, 7, 22, 23, kFace));
    EXPECT_TRUE(Filled(img, 38, 7, 39, 23, kFace));
    EXPECT_TRUE(Filled(img, 22, 6, 38, 7, kFace));
    EXPECT_TRUE(Filled(img, 22, 23, 38, 24, kFace));
  };
  b->DrawState(USButton::kStateNormal, true);
  expectPicture(kRed);
  b->DrawState(USButton::kStateOver, true);
  expectPicture(kGreen);  // PictureOn is the over picture
  b->DrawState(USButton::kStateDown, true);
  expectPicture(kBlue);  // PictureOver is the down picture
  b->Enabled(false);
  expectPicture(kRed);  // disabled shows the normal picture, unchanged
  b->Enabled(true);

  // Without a down picture, down falls back to the over one; a checked check button shows it
  // even when the mouse is away.
  b->PictureOver(nullptr);
  b->DrawState(USButton::kStateDown, true);
  expectPicture(kGreen);
  b->PictureOver(host::StdPicture::FromBytes(SolidBmp(16, 16, kBlue)));
  b->CheckBoxMode(true);
  b->Value(true);
  b->DrawState(USButton::kStateNormal, true);
  expectPicture(kBlue);

  // Over without an over picture: the rule for over reads PictureOn only when it is set, and
  // falls to the normal picture otherwise.
  b->Value(false);
  b->PictureOn(nullptr);
  b->DrawState(USButton::kStateOver, true);
  expectPicture(kRed);
}

TEST_F(ButtonPicturesTest, NonSquareSizeIsPaintedSizeXWideAndSizeYHigh) {
  auto b = Plain(120, 80);
  b->PictureSizeX(20);
  b->PictureSizeY(40);
  b->PictureBytes(SolidPng(10, 10, kRed));
  // The layout centres a box 40 wide and 20 high: (40, 30). The paint from there is 20 x 40.
  auto img = Capture(*b);
  EXPECT_TRUE(Filled(img, 40, 30, 60, 70, kRed));
  EXPECT_TRUE(Filled(img, 60, 30, 80, 50, kFace));  // the rest of the layout's box
  EXPECT_TRUE(Filled(img, 39, 30, 40, 70, kFace));
  EXPECT_TRUE(Filled(img, 40, 29, 60, 30, kFace));
  EXPECT_TRUE(Filled(img, 40, 70, 60, 71, kFace));

  // The same through a picture object.
  b->ClearPictureBytes();
  b->Picture(host::StdPicture::FromBytes(SolidBmp(10, 10, kGreen)));
  b->PictureSizeX(20);  // setting a picture does not change the custom size
  img = Capture(*b);
  EXPECT_TRUE(Filled(img, 40, 30, 60, 70, kGreen));
  EXPECT_TRUE(Filled(img, 60, 30, 80, 50, kFace));
}

// ---- Opacity -----------------------------------------------------------------------------------

TEST_F(ButtonPicturesTest, OpacityComesFromTheBagAndTheSetterChangesNothing) {
  host::PropertyBag bag;
  bag.WriteProperty(u"PicOpacity", Variant(int32_t{50}));
  auto b = Plain(40, 30, &bag);
  b->GradientColor(1, 0x000000);
  b->GradientColor(2, 0x000000);
  b->PictureBytes(SolidPng(16, 16, 0xFFFFFF));
  auto img = Capture(*b);
  // White at half opacity over black: 255 x 50 / 100 of the way, within a unit of rounding.
  const platform::COLORREF half = img.color(15, 10);
  EXPECT_NEAR(static_cast<int>(half & 0xFF), 127, 1);
  EXPECT_EQ(half, (half & 0xFF) * 0x010101u);
  EXPECT_TRUE(Filled(img, 12, 7, 28, 23, half));

  b->PictureOpacity(30);
  EXPECT_EQ(b->PictureOpacity(), 50);
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, half));
  b->PictureOpacity(100);
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, half));
}

TEST_F(ButtonPicturesTest, SoftEdgesBlendOverTheFace) {
  auto b = Plain(40, 30);
  b->PictureBytes(DiscPng(0xFFFFFF));
  auto img = Capture(*b);
  EXPECT_EQ(img.color(12 + 8, 7 + 8), 0xFFFFFFu);  // the middle of the disc
  EXPECT_EQ(img.color(12, 7), kFace);             // a transparent corner
  // Disc pixel (10, 1) has alpha 255 x 31 / 56 = 141: 141 + 64 x (255 - 141) / 255 = 169.6.
  const platform::COLORREF rim = img.color(12 + 10, 7 + 1);
  EXPECT_EQ(rim, (rim & 0xFF) * 0x010101u);
  EXPECT_NEAR(static_cast<int>(rim & 0xFF), 170, 1);
}

// ---- PictureBytes ------------------------------------------------------------------------------

TEST_F(ButtonPicturesTest, BytesAreDecodedAtTheFirstPaintAndWinOverThePicture) {
  auto b = Plain(40, 30);
  b->Redraw(false);
  b->Picture(host::StdPicture::FromBytes(SolidBmp(16, 16, kGreen)));
  b->PictureBytes(SolidPng(16, 16, kRed));
  EXPECT_FALSE(b->Picture());
  EXPECT_EQ(b->PictureSurface(), nullptr);  // nothing painted yet
  b->Redraw(true);
  b->Refresh();
  ASSERT_NE(b->PictureSurface(), nullptr);
  EXPECT_EQ(b->PictureSurface()->Width(), 16);
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kRed));

  // New bytes replace the picture shown.
  b->PictureBytes(SolidPng(16, 16, kBlue));
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kBlue));

  // Cleared: no surface, and a picture object shows again.
  b->ClearPictureBytes();
  EXPECT_TRUE(b->PictureBytes().empty());
  EXPECT_EQ(b->PictureSurface(), nullptr);
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kFace));
  b->Picture(host::StdPicture::FromBytes(SolidBmp(16, 16, kGreen)));
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kGreen));
}

TEST_F(ButtonPicturesTest, UnreadableBytesLeaveTheFacePainted) {
  auto b = Plain(40, 30);
  b->Caption(u"x");
  b->PictureBytes(ByteArray{0x89, 'P', 'N', 'G', 1, 2, 3});
  auto img = Capture(*b);
  ASSERT_NE(b->PictureSurface(), nullptr);
  EXPECT_EQ(b->PictureSurface()->Handle(), 0u);
  // No picture anywhere: only face and caption ink, and the border still drawn.
  EXPECT_EQ(img.color(5, 15), kFace);
  EXPECT_EQ(img.color(0, 0), b->BorderColor());
  // A repaint in another state does not try the bytes again, and still paints.
  const int before = b->PaintCount();
  b->DrawState(USButton::kStateOver, false);
  EXPECT_EQ(b->PaintCount(), before + 1);
}

TEST_F(ButtonPicturesTest, LoadedPictureTravelsThroughTheBagAsPng) {
  auto a = Plain(40, 30);
  ASSERT_TRUE(a->LoadImage_FromArray(SolidBmp(16, 16, kGreen)));
  ASSERT_TRUE(IsPng(a->PictureBytes()));
  host::PropertyBag bag;
  a->SaveTo(bag);
  auto b = Plain(40, 30, &bag);
  EXPECT_EQ(b->PictureBytes(), a->PictureBytes());
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kGreen));
}

// ---- Loads -------------------------------------------------------------------------------------

class ButtonLoadTest : public ButtonPicturesTest {
 protected:
  void SetUp() override {
    ButtonPicturesTest::SetUp();
    m_dir = std::filesystem::temp_directory_path() /
            ("mx_button_pictures_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
             ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(m_dir / "PICS");
  }
  void TearDown() override {
    std::filesystem::remove_all(m_dir);
    ButtonPicturesTest::TearDown();
  }
  void WriteFile(const std::filesystem::path& p, const ByteArray& bytes) {
    std::ofstream(p, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  }
  std::filesystem::path m_dir;
};

TEST_F(ButtonLoadTest, EverySourceLoadsShowsAndKeepsPng) {
  WriteFile(m_dir / "pic.bmp", SolidBmp(16, 16, kRed));
  WriteFile(m_dir / "PICS" / "101", SolidPng(16, 16, kGreen));
  setenv("MX_RESOURCE_DIR", m_dir.string().c_str(), 1);
  auto picture = host::StdPicture::FromBytes(SolidBmp(16, 16, kBlue));
  auto handlePicture = host::StdPicture::FromBytes(SolidBmp(16, 16, 0x00FFFF));

  auto lists = std::make_shared<USImageList>();
  lists->LoadNew(false);
  auto list = lists->ImageLists()->Add(16, 16, u"tools");
  {
    image::API32bppDIB cell;
    ASSERT_TRUE(cell.InitializeDIB(16, 16));
    auto* px = reinterpret_cast<uint32_t*>(cell.BitsPointer());
    for (int i = 0; i < 256; ++i) px[i] = 0xFFFF00FF;  // magenta, opaque
    list->Images()->AddImage_fromDIB(cell, Variant::Missing(), u"cut", u"");
  }

  struct Case {
    const char* name;
    std::function<bool(USButton&)> load;
    platform::COLORREF colour;
  };
  const std::vector<Case> cases = {
      {"file", [&](USButton& b) { return b.LoadImage_FromFile(host::FromUtf8((m_dir / "pic.bmp").string())); }, kRed},
      {"resource", [&](USButton& b) { return b.LoadImage_FromResource(Variant(), u"PICS", u"101"); }, kGreen},
      {"picture", [&](USButton& b) { return b.LoadImage_FromStdPicture(picture); }, kBlue},
      {"handle", [&](USButton& b) { return b.LoadImage_FromHandle(handlePicture->Handle()); }, 0x00FFFF},
      {"image list",
       [&](USButton& b) { return b.LoadImage_FromUSImageList(*lists, Variant(u"cut"), Variant(u"tools")); },
       0xFF00FF},
  };
  auto b = Plain(40, 30);
  b->Picture(host::StdPicture::FromBytes(SolidBmp(16, 16, 0x808080)));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ByteArray before = b->PictureBytes();
    ASSERT_TRUE(c.load(*b));
    EXPECT_FALSE(b->Picture());  // the bytes took its place
    EXPECT_TRUE(IsPng(b->PictureBytes()));
    EXPECT_NE(b->PictureBytes(), before);
    EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, c.colour));
    // The PNG kept is the picture shown.
    image::API32bppDIB check;
    ASSERT_TRUE(check.LoadPicture_Stream(b->PictureBytes()));
    uint8_t alpha = 0;
    EXPECT_EQ(check.GetPixel(8, 8, alpha), static_cast<int32_t>(c.colour));
    EXPECT_EQ(alpha, 255);
  }
  unsetenv("MX_RESOURCE_DIR");
  lists->TerminateControl();
}

TEST_F(ButtonLoadTest, FailedLoadsKeepTheBytesAndTheFace) {
  setenv("MX_RESOURCE_DIR", m_dir.string().c_str(), 1);
  WriteFile(m_dir / "PICS" / "bad", ByteArray{'B', 'M', 0, 0});
  auto lists = std::make_shared<USImageList>();
  lists->LoadNew(false);
  lists->ImageLists()->Add(16, 16, u"empty");

  auto b = Plain(40, 30);
  ASSERT_TRUE(b->LoadImage_FromArray(SolidPng(16, 16, kRed)));
  const ByteArray kept = b->PictureBytes();
  const std::vector<std::pair<const char*, std::function<bool()>>> failures = {
      {"missing file", [&] { return b->LoadImage_FromFile(host::FromUtf8((m_dir / "none.png").string())); }},
      {"garbage", [&] { return b->LoadImage_FromArray(ByteArray{1, 2, 3, 4, 5}); }},
      {"no bytes", [&] { return b->LoadImage_FromArray(ByteArray{}); }},
      {"missing resource", [&] { return b->LoadImage_FromResource(Variant(), u"PICS", u"999"); }},
      {"bad resource", [&] { return b->LoadImage_FromResource(Variant(), u"PICS", u"bad"); }},
      {"no picture", [&] { return b->LoadImage_FromStdPicture(nullptr); }},
      {"no handle", [&] { return b->LoadImage_FromHandle(0); }},
      {"unknown list", [&] { return b->LoadImage_FromUSImageList(*lists, Variant(int32_t{1}), Variant(u"nope")); }},
      {"empty list", [&] { return b->LoadImage_FromUSImageList(*lists, Variant(int32_t{1}), Variant(u"empty")); }},
  };
  for (const auto& [name, load] : failures) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(load());
    EXPECT_EQ(b->PictureBytes(), kept);
    EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kRed));
  }
  unsetenv("MX_RESOURCE_DIR");
  lists->TerminateControl();
}

TEST_F(ButtonLoadTest, IconSizeDefaultsToThePictureBox) {
  const ByteArray icon = TwoSizeIcon(16, kRed, 32, kGreen);
  auto b = Plain(60, 44);
  b->PictureSize(Picture_32x32);
  ASSERT_TRUE(b->LoadImage_FromArray(icon));
  EXPECT_EQ(b->PictureSurface()->Width(), 32);
  EXPECT_TRUE(Filled(Capture(*b), 14, 6, 46, 38, kGreen));

  b->PictureSize(Picture_16x16);
  ASSERT_TRUE(b->LoadImage_FromArray(icon));
  EXPECT_EQ(b->PictureSurface()->Width(), 16);
  EXPECT_TRUE(Filled(Capture(*b), 22, 14, 38, 30, kRed));

  // A size given wins over the box's.
  ASSERT_TRUE(b->LoadImage_FromArray(icon, 32, 32));
  EXPECT_EQ(b->PictureSurface()->Width(), 32);
}

TEST_F(ButtonLoadTest, LoadsByName) {
  auto b = Plain(40, 30);
  std::vector<Variant> args = {Variant(SolidPng(16, 16, kBlue))};
  EXPECT_TRUE(b->Invoke(u"LoadImage_FromArray", host::CallKind::Method, args).ToBoolean());
  EXPECT_TRUE(Filled(Capture(*b), 12, 7, 28, 23, kBlue));
  std::vector<Variant> none;
  EXPECT_THROW(b->Invoke(u"loadimage_fromfile", host::CallKind::Method, none), host::RuntimeError);
  std::vector<Variant> notAList = {Variant(int32_t{3}), Variant(int32_t{1}), Variant(int32_t{1})};
  EXPECT_THROW(b->Invoke(u"LoadImage_FromUSImageList", host::CallKind::Method, notAList), host::RuntimeError);
}

// ---- Golden ------------------------------------------------------------------------------------

TEST_F(ButtonPicturesTest, GoldenPicturesBesideCaptionsInFourStates) {
  constexpr int kW = 84, kH = 44;
  const std::vector<int32_t> alignments = {Picture_LeftOfCaption, Picture_RightEdge, Picture_TopOfCaption,
                                           Picture_BehindText};
  const std::vector<int32_t> states = {USButton::kStateNormal, USButton::kStateOver, USButton::kStateDown,
                                       USButton::kStateDisabled};
  std::vector<uint32_t> sheet(static_cast<size_t>(kW * 4) * kH * (alignments.size() + 1));
  auto put = [&](const platform::CapturedImage& img, size_t row, size_t column) {
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x)
        sheet[(row * kH + y) * kW * 4 + column * kW + x] = img.pixel(x, y);
  };
  for (size_t a = 0; a < alignments.size(); ++a) {
    auto b = Make(10, 10, kW, kH);
    b->Caption(u"Abrir");
    b->PictureAlignment(alignments[a]);
    b->PictureBytes(DiscPng(0x00C0FF));
    for (size_t s = 0; s < states.size(); ++s) {
      if (states[s] == USButton::kStateDisabled) b->Enabled(false);
      else b->DrawState(states[s], true);
      put(Capture(*b), a, s);
    }
  }
  // A last row of picture objects: one picture for each of normal, over and down.
  auto b = Make(10, 10, kW, kH);
  b->Caption(u"Abrir");
  b->Picture(host::StdPicture::FromBytes(SolidBmp(16, 16, kRed)));
  b->PictureOn(host::StdPicture::FromBytes(SolidBmp(16, 16, kGreen)));
  b->PictureOver(host::StdPicture::FromBytes(SolidBmp(16, 16, kBlue)));
  for (size_t s = 0; s < states.size(); ++s) {
    if (states[s] == USButton::kStateDisabled) b->Enabled(false);
    else b->DrawState(states[s], true);
    put(Capture(*b), alignments.size(), s);
  }
  test::ExpectGolden("controls", "button_pictures", kW * 4, kH * static_cast<int>(alignments.size() + 1), sheet);
}

}  // namespace
}  // namespace mx::controls::testing
