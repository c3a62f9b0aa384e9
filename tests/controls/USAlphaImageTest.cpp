// USAlphaImage: persistence and the flag word, setters, geometry, paint, hit testing, the mouse
// timer, the fade and drops.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "controls/SmallControlTestSupport.h"
#include "controls/USAlphaImage.h"
#include "host/DataObject.h"
#include "host/PropertyBag.h"
#include "image/API32bppDIB.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Timer.h"
#include "platform/Window.h"
#include "support/Golden.h"

namespace mx::controls {
namespace {

using host::PropertyBag;
using host::Variant;
using image::API32bppDIB;

class OpenImage : public USAlphaImage {
 public:
  using USAlphaImage::UserControl_HitTest;
  using USAlphaImage::UserControl_MouseDown;
  using USAlphaImage::UserControl_MouseMove;
  using USAlphaImage::UserControl_MouseUp;
};

// Straight BGRA pixels, top-down, as a picture file (PNG) the control can load.
std::vector<uint8_t> PngOf(int w, int h, const std::vector<uint32_t>& argb) {
  std::vector<uint8_t> bytes(static_cast<size_t>(w) * h * 4);
  for (size_t i = 0; i < argb.size(); ++i) {
    bytes[i * 4 + 0] = static_cast<uint8_t>(argb[i]);
    bytes[i * 4 + 1] = static_cast<uint8_t>(argb[i] >> 8);
    bytes[i * 4 + 2] = static_cast<uint8_t>(argb[i] >> 16);
    bytes[i * 4 + 3] = static_cast<uint8_t>(argb[i] >> 24);
  }
  API32bppDIB dib;
  EXPECT_TRUE(dib.InitializeDIB(w, h));
  EXPECT_TRUE(dib.SetDIBbits(bytes, true, true, false, false));
  std::vector<uint8_t> png;
  EXPECT_TRUE(dib.SaveToStream_PNG(png));
  return png;
}

// A 4 x 4 picture: opaque red left half, transparent right half.
std::vector<uint8_t> HalfRed() {
  std::vector<uint32_t> px(16);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) px[y * 4 + x] = x < 2 ? 0xFFFF0000 : 0x00000000;
  return PngOf(4, 4, px);
}

// A disc of radius 7 in a 16 x 16 picture, shaded from blue to green, transparent outside.
std::vector<uint8_t> Disc() {
  std::vector<uint32_t> px(256);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) {
      const double dx = x - 7.5, dy = y - 7.5;
      if (dx * dx + dy * dy > 7.5 * 7.5) continue;
      px[y * 16 + x] = 0xFF000000u | static_cast<uint32_t>(x * 16) << 8 | static_cast<uint32_t>(255 - y * 12);
    }
  return PngOf(16, 16, px);
}

// The colour a pixel of the picture has, as 0x00RRGGBB of its straight value.
uint32_t PicturePixel(const API32bppDIB& dib, int x, int y) {
  uint8_t alpha = 0;
  const int32_t c = dib.GetPixel(x, y, alpha);
  return static_cast<uint32_t>(alpha) << 24 | static_cast<uint32_t>(host::ColorRed(c)) << 16 |
         static_cast<uint32_t>(host::ColorGreen(c)) << 8 | static_cast<uint32_t>(host::ColorBlue(c));
}

class USAlphaImageTest : public testing::SmallControlTest {
 protected:
  // A control loaded at run time (from an empty bag unless one is given: AutoSize is then off, as
  // the bag's default flag word says), with a picture when one is given.
  std::shared_ptr<testing::Open<OpenImage>> MakeImage(int w, int h, const std::vector<uint8_t>& png = {},
                                                      PropertyBag* bag = nullptr) {
    PropertyBag empty;
    auto c = Make<OpenImage>(10, 10, w, h, bag ? bag : &empty, true);
    if (!png.empty()) EXPECT_TRUE(c->LoadImage_FromArray(png));
    platform::PumpMessages();
    return c;
  }
  static uint32_t Rgb(const platform::CapturedImage& img, int x, int y) { return img.pixel(x, y) & 0xFFFFFF; }
};

// ---- Persistence and the flag word ----------------------------------------------------------

TEST_F(USAlphaImageTest, NewControlDefaultsAndFlagWordWriteRules) {
  auto c = Make<OpenImage>(0, 0, 40, 40, nullptr, false);
  EXPECT_EQ(c->Props() & ~USAlphaImage::kScaledCopy, 5);
  EXPECT_EQ(c->Opacity(), 100);
  EXPECT_EQ(c->grayScale(), 0);
  EXPECT_EQ(c->ShadowColor(), 0x404040);
  EXPECT_EQ(c->ShadowOpacity(), 50);

  // The scaled copy's bit is internal: a run-time control with AutoRedraw holds it, never saves it.
  auto r = MakeImage(40, 40, Disc());
  r->AutoRedraw(true);
  ASSERT_NE(r->Props() & USAlphaImage::kScaledCopy, 0);
  PropertyBag bag;
  r->SaveTo(bag);
  EXPECT_EQ(bag.ReadProperty(u"Props", Variant(int32_t{-1})).ToLong(), 1 | 8);
  // Defaults are not written.
  EXPECT_FALSE(bag.Contains(u"Opacity"));
  EXPECT_FALSE(bag.Contains(u"Mask"));
}

TEST_F(USAlphaImageTest, FlagWordReadKeepsOnlyQualityAndFormatWithoutAnImage) {
  PropertyBag bag;
  bag.WriteProperty(u"Props", Variant(int32_t{0x1FF}));
  bag.WriteProperty(u"Scaler", Variant(int32_t{4}));
  bag.WriteProperty(u"Angle", Variant(int32_t{45}));
  bag.WriteProperty(u"Opacity", Variant(int32_t{30}));
  auto c = MakeImage(30, 30, {}, &bag);
  EXPECT_EQ(c->Props(), 1 | 16);
  EXPECT_EQ(c->ScaleMethod(), 0);
  EXPECT_EQ(c->Rotation(), 0);
  EXPECT_EQ(c->Opacity(), 100);

  // With a picture every persisted bit comes back, and the internal one is recomputed.
  PropertyBag withImage;
  withImage.WriteProperty(u"Image", Variant(host::ByteArray(Disc())));
  withImage.WriteProperty(u"Props", Variant(int32_t{0x1FF}));
  auto d = MakeImage(30, 30, {}, &withImage);
  EXPECT_EQ(d->Props(), 0x1FF & ~USAlphaImage::kScaledCopy);
}

TEST_F(USAlphaImageTest, BitmapIsSavedWithoutMaskInversionAndMirrorAndGetsThemBackOnLoad) {
  // An opaque 3 x 2 bitmap: white top-left (the mask colour), then distinct colours.
  const std::vector<uint32_t> src = {0xFFFFFFFF, 0xFF102030, 0xFF405060, 0xFF708090, 0xFFA0B0C0, 0xFFD0E0F0};
  std::vector<uint8_t> straight;
  for (uint32_t p : src)
    for (int s = 0; s < 32; s += 8) straight.push_back(static_cast<uint8_t>(p >> s));
  auto c = MakeImage(30, 30);
  ASSERT_TRUE(c->SetImageBytes(straight, 3, 2, true, true, false, false));
  ASSERT_EQ(c->ImageType(), image::imgBitmap);
  c->MaskUsed(image::maskUseTopLeft);
  c->InversedImage(true);
  c->Mirror(image::mirrorHorizontal);
  // Shown: mirrored, so the masked white pixel is now top-right; others inverted.
  EXPECT_EQ(PicturePixel(c->dibClass(), 2, 0), 0u);
  EXPECT_EQ(PicturePixel(c->dibClass(), 1, 0), 0xFFEFDFCFu);

  PropertyBag bag;
  c->SaveTo(bag);
  EXPECT_TRUE(bag.ReadProperty(u"MaskUsed", Variant(false)).ToBoolean());
  EXPECT_EQ(bag.ReadProperty(u"Mask", Variant(int32_t{0})).ToLong(), 0xFFFFFF);
  const host::ByteArray saved = bag.ReadProperty(u"Image", Variant()).ToBytes();
  API32bppDIB stored;
  ASSERT_TRUE(stored.LoadPicture_Stream(saved));
  for (int i = 0; i < 6; ++i) EXPECT_EQ(PicturePixel(stored, i % 3, i / 3), src[i]) << i;

  auto back = MakeImage(30, 30, {}, &bag);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x)
      EXPECT_EQ(PicturePixel(back->dibClass(), x, y), PicturePixel(c->dibClass(), x, y)) << x << "," << y;
  EXPECT_TRUE(back->InversedImage());
  EXPECT_EQ(back->Mirror(), image::mirrorHorizontal);
}

TEST_F(USAlphaImageTest, DesignTimeShowsACheckerBoardThatIsNeverSaved) {
  auto c = Make<OpenImage>(0, 0, 30, 30, nullptr, false);
  ASSERT_EQ(c->ImageType(), image::imgCheckerBoard);
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 0), 0xFFFFFFFFu);
  EXPECT_EQ(PicturePixel(c->dibClass(), 12, 0), 0xFFC0C0C0u);
  EXPECT_EQ(PicturePixel(c->dibClass(), 12, 12), 0xFFFFFFFFu);
  PropertyBag bag;
  c->SaveTo(bag);
  EXPECT_FALSE(bag.Contains(u"Image"));
  // At design time the whole control is hit, picture or not.
  int16_t hit = 0;
  c->UserControl_HitTest(29, 29, hit);
  EXPECT_EQ(hit, 3);
}

// ---- Setters ---------------------------------------------------------------------------------

TEST_F(USAlphaImageTest, OpacityWrapsButKeepsZero) {
  auto c = MakeImage(8, 8, HalfRed());
  const struct { int32_t in, out; } cases[] = {{0, 0}, {150, 50}, {-30, 30}, {200, 100}, {100, 100}, {1, 1}};
  for (const auto& k : cases) {
    c->Opacity(k.in);
    EXPECT_EQ(c->Opacity(), k.out) << k.in;
  }
  // Zero hides the picture: the control shows only what is beneath it.
  c->Opacity(0);
  const auto hidden = Capture(*c);
  EXPECT_EQ(Rgb(hidden, 0, 0), Rgb(hidden, 3, 0));
  c->Opacity(100);
  EXPECT_EQ(Rgb(Capture(*c), 0, 0), 0xFF0000u);
}

TEST_F(USAlphaImageTest, RangesAreEnforcedBySetters) {
  auto c = MakeImage(8, 8, HalfRed());
  c->ShadowDepth(11);
  c->ShadowOpacity(101);
  c->IntensityOffset(-100.5f);
  c->Mirror(4);
  c->MaskUsed(6);
  c->grayScale(9);
  c->HitTest(4);
  c->ScaleMethod(5);
  EXPECT_EQ(c->ShadowDepth(), 2);
  EXPECT_EQ(c->ShadowOpacity(), 50);
  EXPECT_EQ(c->IntensityOffset(), 0.0f);
  EXPECT_EQ(c->Mirror(), 0);
  EXPECT_EQ(c->MaskUsed(), 0);
  EXPECT_EQ(c->grayScale(), 0);
  EXPECT_EQ(c->HitTest(), 0);
  EXPECT_EQ(c->ScaleMethod(), 0);
  c->ShadowDepth(10);
  c->IntensityOffset(-100.0f);
  EXPECT_EQ(c->ShadowDepth(), 10);
  EXPECT_EQ(c->IntensityOffset(), -100.0f);
}

TEST_F(USAlphaImageTest, MirrorFlipsOnlyTheAxesThatChange) {
  auto c = MakeImage(8, 8, Disc());
  API32bppDIB& dib = c->dibClass();
  const uint32_t topLeftish = PicturePixel(dib, 3, 1);
  c->Mirror(image::mirrorHorizontal);
  EXPECT_EQ(PicturePixel(dib, 12, 1), topLeftish);
  // The same value again changes nothing.
  c->Mirror(image::mirrorHorizontal);
  EXPECT_EQ(PicturePixel(dib, 12, 1), topLeftish);
  // Horizontal to vertical flips both axes of what is held.
  c->Mirror(image::mirrorVertical);
  EXPECT_EQ(PicturePixel(dib, 3, 14), topLeftish);
  c->Mirror(image::mirrorNone);
  EXPECT_EQ(PicturePixel(dib, 3, 1), topLeftish);
}

TEST_F(USAlphaImageTest, CornerMaskTakesTheCornerColourAtTheTimeOfSetting) {
  const std::vector<uint32_t> src = {0xFF0000FF, 0xFF00FF00, 0xFF00FF00, 0xFFFF0000};
  std::vector<uint8_t> straight;
  for (uint32_t p : src)
    for (int s = 0; s < 32; s += 8) straight.push_back(static_cast<uint8_t>(p >> s));
  auto c = MakeImage(20, 20);
  ASSERT_TRUE(c->SetImageBytes(straight, 2, 2, true, true, false, false));
  c->MaskUsed(image::maskUseBottomRight);  // red
  EXPECT_EQ(PicturePixel(c->dibClass(), 1, 1), 0u);
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 0), 0xFF0000FFu);
  // Another source first gives the old colour back, then takes its own.
  c->MaskUsed(image::maskUseTopRight);  // green
  EXPECT_EQ(PicturePixel(c->dibClass(), 1, 1), 0xFFFF0000u);
  EXPECT_EQ(PicturePixel(c->dibClass(), 1, 0), 0u);
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 1), 0u);
  // MaskColor counts only while it is the source.
  c->MaskColor(0xFF0000);  // blue as OLE_COLOR
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 0), 0xFF0000FFu);
  c->MaskUsed(image::maskUseMaskColor);
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 0), 0u);
  c->MaskUsed(image::maskNone);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(PicturePixel(c->dibClass(), i % 2, i / 2), src[i]) << i;
}

TEST_F(USAlphaImageTest, MaskNeedsAnOpaquePicture) {
  auto c = MakeImage(20, 20, HalfRed());
  c->MaskUsed(image::maskUseTopLeft);
  EXPECT_EQ(c->MaskUsed(), 0);
  EXPECT_EQ(PicturePixel(c->dibClass(), 0, 0), 0xFFFF0000u);
}

// ---- Geometry --------------------------------------------------------------------------------

TEST_F(USAlphaImageTest, ImageScalesByMethod) {
  auto c = MakeImage(100, 50, Disc());
  // A 16 x 16 picture in a 100 x 50 client; desired sizes of 0 mean the client.
  const struct { int32_t method, dw, dh; bool rotated; int32_t w, h; } cases[] = {
      {image::smScaled, 0, 0, false, 50, 50},      {image::smStretch, 0, 0, false, 100, 50},
      {image::smScaleDownOnly, 0, 0, false, 16, 16}, {image::smScaleDownOnly, 8, 12, false, 8, 8},
      {image::smActualSize, 0, 0, false, 16, 16},  {7, 0, 0, false, 16, 16} /* above 4 is LockScale */,
      // Rotated: the diagonal (23) is fitted, 16/23 of the smaller side, rounded.
      {image::smScaled, 0, 0, true, 35, 35},       {image::smStretch, 0, 0, true, 70, 35},
      {image::smScaleDownOnly, 0, 0, true, 16, 16}, {image::smScaleDownOnly, 20, 20, true, 14, 14},
      {image::smActualSize, 0, 0, true, 16, 16},
  };
  c->ScaleMethod(image::smActualSize);  // locks 16 x 16 as the scaled size in force
  for (const auto& k : cases) {
    int32_t w = -1, h = -1;
    c->GetImageScales(w, h, k.method, k.dw, k.dh, k.rotated);
    EXPECT_EQ(w, k.w) << k.method << " rotated " << k.rotated << " " << k.dw;
    EXPECT_EQ(h, k.h) << k.method << " rotated " << k.rotated << " " << k.dw;
  }
}

TEST_F(USAlphaImageTest, GeometryCentresAndAutoSizeFitsTheControl) {
  auto c = MakeImage(60, 40, Disc());
  c->ScaleMethod(image::smActualSize);
  auto g = c->DisplayRect();
  EXPECT_EQ(g.x, 22);
  EXPECT_EQ(g.y, 12);
  EXPECT_TRUE(g.actualSize);
  c->ScaleMethod(image::smScaled);
  g = c->DisplayRect();
  EXPECT_EQ(g.width, 40);
  EXPECT_EQ(g.x, 10);
  EXPECT_FALSE(g.actualSize);
  // AutoSize: the control takes the display size, the picture its corner.
  c->ScaleMethod(image::smActualSize);
  c->AutoSize(true);
  platform::RECT rc{};
  platform::GetClientRect(c->hWnd(), &rc);
  EXPECT_EQ(rc.right, 16);
  EXPECT_EQ(rc.bottom, 16);
  EXPECT_EQ(c->DisplayRect().x, 0);
  // Rotated, the control becomes the diagonal square.
  c->RotateEnabled(true);
  platform::GetClientRect(c->hWnd(), &rc);
  EXPECT_EQ(rc.right, 23);
  EXPECT_EQ(rc.bottom, 23);
}

TEST_F(USAlphaImageTest, ScaledCopyAndShadowCacheFollowTheRules) {
  auto c = MakeImage(40, 40, Disc());
  EXPECT_EQ(c->ScaledCopy(), nullptr);
  c->AutoRedraw(true);
  ASSERT_NE(c->ScaledCopy(), nullptr);
  EXPECT_EQ(c->ScaledCopy()->Width(), 40);
  // Rotation turns the copy off: the picture is turned from the source each time.
  c->RotateEnabled(true);
  EXPECT_EQ(c->ScaledCopy(), nullptr);
  c->RotateEnabled(false);
  // A small picture at its own size draws its shadow on each paint; a scaled one keeps it.
  c->ScaleMethod(image::smActualSize);
  c->ShadowEnabled(true);
  EXPECT_EQ(c->ShadowCache(), nullptr);
  c->ScaleMethod(image::smScaled);
  ASSERT_NE(c->ShadowCache(), nullptr);
  EXPECT_EQ(c->ShadowCache()->Width(), 40 + 4);
}

// ---- Paint -----------------------------------------------------------------------------------

TEST_F(USAlphaImageTest, PaintsExactPixelsAtOpacityGreyAndRotation) {
  auto c = MakeImage(8, 8, HalfRed());
  c->ScaleMethod(image::smActualSize);
  // The picture sits at (2, 2); (0, 0) shows the ground.
  auto img = Capture(*c);
  const uint32_t ground = Rgb(img, 0, 0);
  EXPECT_EQ(Rgb(img, 2, 2), 0xFF0000u);
  EXPECT_EQ(Rgb(img, 5, 2), ground);  // transparent half

  c->Opacity(50);
  img = Capture(*c);
  // Constant alpha 127 over the ground: e = 255 - 255 * 127 / 255 = 128, d = (128 d + 127 s) / 255.
  auto blend = [](uint32_t d, uint32_t s) { return (128 * d + 127 * s) / 255; };
  const uint32_t gr = ground >> 16 & 0xFF, gg = ground >> 8 & 0xFF, gb = ground & 0xFF;
  EXPECT_EQ(Rgb(img, 2, 2), blend(gr, 255) << 16 | blend(gg, 0) << 8 | blend(gb, 0));

  c->Opacity(100);
  c->grayScale(image::gsNTSCPAL);
  img = Capture(*c);
  // NTSC: Round(255 x 0.299) = 76 in all three channels.
  EXPECT_EQ(Rgb(img, 3, 3), 0x4C4C4Cu);

  c->grayScale(image::gsNoGrayScale);
  // Nearest sampling: a half turn then moves whole pixels.
  c->StretchQuality(false);
  c->RotateEnabled(true);
  c->Rotation(180);
  img = Capture(*c);
  // Half a turn puts the red half on the right: picture columns 0..1 land on 4..5.
  EXPECT_EQ(Rgb(img, 4, 3), 0xFF0000u);
  EXPECT_EQ(Rgb(img, 5, 4), 0xFF0000u);
  EXPECT_EQ(Rgb(img, 2, 3), ground);
}

TEST_F(USAlphaImageTest, GoldenEffects) {
  std::vector<platform::CapturedImage> shots;
  auto make = [&](auto&& setup) {
    auto c = MakeImage(40, 40, Disc());
    setup(*c);
    shots.push_back(Capture(*c));
  };
  make([](USAlphaImage& c) { c.ScaleMethod(image::smScaled); });
  make([](USAlphaImage& c) { c.Opacity(50); });
  make([](USAlphaImage& c) {
    c.ShadowEnabled(true);
    c.ShadowDepth(3);
    c.ScaleMethod(image::smScaled);
  });
  make([](USAlphaImage& c) {
    c.RotateEnabled(true);
    c.Rotation(30);
    c.grayScale(image::gsNTSCPAL);
  });
  make([](USAlphaImage& c) {
    c.Mirror(image::mirrorAll);
    c.IntensityOffset(40);
  });
  int w = 0, h = 0;
  const auto px = Stack(shots, w, h);
  mx::test::ExpectGolden("controls", "alphaimage_effects", w, h, px);
}

TEST_F(USAlphaImageTest, SaveRederedSavesWhatIsShown) {
  auto c = MakeImage(8, 8, HalfRed());
  c->ScaleMethod(image::smStretch);
  c->grayScale(image::gsNTSCPAL);
  API32bppDIB shown;
  ASSERT_TRUE(c->RenderedImage(shown));
  EXPECT_EQ(shown.Width(), 8);
  EXPECT_EQ(shown.Height(), 8);
  EXPECT_EQ(PicturePixel(shown, 0, 0), 0xFF4C4C4Cu);
  EXPECT_EQ(PicturePixel(shown, 7, 7), 0u);
  // Rotated results are cut down to what is visible.
  c->RotateEnabled(true);
  c->Rotation(90);
  ASSERT_TRUE(c->RenderedImage(shown));
  EXPECT_LT(shown.Width(), 11);
  EXPECT_EQ(shown.Width() * shown.Height() > 0, true);
  const std::string path = ::testing::TempDir() + "alphaimage_rendered.png";
  EXPECT_TRUE(c->SaveRederedToPNG(host::FromUtf8(path)));
  API32bppDIB back;
  ASSERT_TRUE(back.LoadPicture_File(host::FromUtf8(path)));
  EXPECT_EQ(back.Width(), shown.Width());
  c->ClearImage();
  EXPECT_FALSE(c->SaveRederedToPNG(host::FromUtf8(path)));
}

// ---- Hit testing and the mouse ---------------------------------------------------------------

TEST_F(USAlphaImageTest, ShapedRegionIgnoresTransparentPixels) {
  auto c = MakeImage(8, 8, HalfRed());
  c->ScaleMethod(image::smActualSize);
  int16_t hit = 0;
  c->UserControl_HitTest(5, 3, hit);
  EXPECT_EQ(hit, 3);  // Entire Control
  c->HitTest(Shaped_Region);
  ASSERT_NE(c->HitRegion(), 0u);
  c->UserControl_HitTest(5, 3, hit);
  EXPECT_EQ(hit, 0);
  c->UserControl_HitTest(2, 3, hit);
  EXPECT_EQ(hit, 3);
  c->UserControl_HitTest(1, 3, hit);  // outside the picture
  EXPECT_EQ(hit, 0);
  c->HitTest(Bounding_Region);
  EXPECT_EQ(c->HitRegion(), 0u);
  EXPECT_EQ(c->HitRect().left, 2);
  EXPECT_EQ(c->HitRect().right, 4);
  c->HitTest(Entire_Control);
  // Leave the capture where the test found it.
  c->UserControl_HitTest(100, 100, hit);
}

TEST_F(USAlphaImageTest, FullyTransparentPictureTakesNoMouse) {
  // A surface just made is all transparent (not all opaque, as pixel data with a zero alpha plane is).
  API32bppDIB clear;
  ASSERT_TRUE(clear.InitializeDIB(4, 4));
  std::vector<uint8_t> png;
  ASSERT_TRUE(clear.SaveToStream_PNG(png));
  auto c = MakeImage(8, 8, png);
  ASSERT_NE(c->dibClass().Alpha(), image::AlphaNone);
  c->HitTest(Shaped_Region);
  EXPECT_EQ(c->HitRegion(), 0u);
  int enters = 0;
  c->MouseEnter.connect([&] { ++enters; });
  int16_t hit = 3;
  c->UserControl_HitTest(1, 1, hit);
  EXPECT_EQ(hit, 0);
  EXPECT_EQ(enters, 0);
}

TEST_F(USAlphaImageTest, PointerEntersOnOpaquePixelsAndLeavesByTheTimer) {
  auto c = MakeImage(8, 8, HalfRed());
  c->ScaleMethod(image::smActualSize);
  c->HitTest(Shaped_Region);
  std::vector<std::string> events;
  c->MouseEnter.connect([&] { events.push_back("enter"); });
  c->MouseExit.connect([&] { events.push_back("exit"); });
  platform::POINT origin{0, 0};
  platform::ClientToScreen(c->hWnd(), &origin);

  // The transparent half does not count.
  platform::InjectMouseMove(origin.x + 5, origin.y + 3);
  platform::PumpMessages();
  EXPECT_TRUE(events.empty());
  platform::InjectMouseMove(origin.x + 2, origin.y + 3);
  platform::PumpMessages();
  ASSERT_EQ(events, std::vector<std::string>{"enter"});
  EXPECT_TRUE(c->isMouseOver());
  EXPECT_EQ(c->Tag(), u"Timer");
  // Staying on the picture keeps it over, timer after timer.
  platform::RunFor(350);
  EXPECT_EQ(events.size(), 1u);
  // The cursor goes away without a move message reaching the control: the timer notices.
  platform::SetCursorPos(origin.x + 200, origin.y + 200);
  platform::RunFor(150);
  EXPECT_EQ(events, (std::vector<std::string>{"enter", "exit"}));
  EXPECT_FALSE(c->isMouseOver());
  EXPECT_EQ(c->Tag(), u"");
}

TEST_F(USAlphaImageTest, AnotherControlTakingTheMouseReleasesTheFirst) {
  auto a = MakeImage(8, 8, HalfRed());
  auto b = MakeImage(8, 8, HalfRed());
  int exitsA = 0;
  a->MouseExit.connect([&] { ++exitsA; });
  int16_t hit = 0;
  a->UserControl_HitTest(1, 1, hit);
  ASSERT_TRUE(a->isMouseOver());
  b->UserControl_HitTest(1, 1, hit);
  EXPECT_TRUE(b->isMouseOver());
  EXPECT_FALSE(a->isMouseOver());
  EXPECT_EQ(exitsA, 1);
  b->UserControl_HitTest(100, 100, hit);
  EXPECT_FALSE(b->isMouseOver());
}

TEST_F(USAlphaImageTest, MouseUpReportsTheReleasedButtonWhileMovesReportTheHeldOnes) {
  auto c = MakeImage(8, 8, HalfRed());
  std::vector<int> seen;
  c->MouseMove.connect([&](int16_t& b, int16_t&, float&, float&) { seen.push_back(b); });
  c->MouseUp.connect([&](int16_t& b, int16_t&, float&, float&) { seen.push_back(100 + b); });
  int16_t left = host::vbLeftButton, right = host::vbRightButton, none = 0, shift = 0;
  float x = 1, y = 1;
  c->UserControl_MouseDown(left, shift, x, y);
  c->UserControl_MouseDown(right, shift, x, y);
  c->UserControl_MouseMove(none, shift, x, y);
  c->UserControl_MouseUp(left, shift, x, y);
  c->UserControl_MouseMove(none, shift, x, y);
  EXPECT_EQ(seen, (std::vector<int>{3, 101, 2}));
}

// ---- Fade ------------------------------------------------------------------------------------

TEST_F(USAlphaImageTest, FadeReachesItsTargetOnTheClockAndEndsOnce) {
  auto c = MakeImage(8, 8, HalfRed());
  std::vector<int32_t> ends;
  std::vector<int32_t> steps;
  c->FadeTerminated.connect([&](int32_t v) { ends.push_back(v); });
  c->FadeInOut(0, 30, 50);
  ASSERT_TRUE(c->FadeRunning());
  for (int i = 0; i < 3; ++i) {
    platform::RunFor(50);
    steps.push_back(c->Opacity());
  }
  EXPECT_EQ(steps, (std::vector<int32_t>{70, 40, 10}));
  EXPECT_TRUE(ends.empty());
  platform::RunFor(50);
  EXPECT_EQ(c->Opacity(), 0);
  EXPECT_EQ(ends, std::vector<int32_t>{0});
  EXPECT_FALSE(c->FadeRunning());
  platform::RunFor(500);
  EXPECT_EQ(ends.size(), 1u);

  // No step, or a target already reached: nothing starts. A new fade replaces a running one.
  c->FadeInOut(0, 10, 30);
  EXPECT_FALSE(c->FadeRunning());
  c->FadeInOut(60, 0, 30);
  EXPECT_FALSE(c->FadeRunning());
  c->FadeInOut(250, 50, 1);  // target held to 100, interval raised to 10
  c->FadeInOut(40, 25, 10);
  platform::RunFor(20);
  EXPECT_EQ(c->Opacity(), 40);
  EXPECT_EQ(ends, (std::vector<int32_t>{0, 40}));
}

// ---- Drops -----------------------------------------------------------------------------------

TEST_F(USAlphaImageTest, DropsReachTheHostOnlyInManualModeWithFullNames) {
  auto c = MakeImage(20, 20);
  const std::string path = ::testing::TempDir() + "alphaimage_drop_\xC5\x81\xC3\xB3d\xC5\xBA.png";
  {
    API32bppDIB dib;
    ASSERT_TRUE(dib.LoadPicture_Stream(Disc()));
    ASSERT_TRUE(dib.SaveToFile_PNG(host::FromUtf8(path)));
  }
  host::DataObject data;
  const host::String name = host::FromUtf8(path);
  data.SetDroppedFiles(std::span<const host::String>(&name, 1));
  int drops = 0;
  host::String seen;
  c->OLEDragDrop.connect([&](host::DataObject& d, int32_t&, int16_t&, int16_t&, float&, float&) {
    ++drops;
    seen = d.Files().Item(1);
    EXPECT_TRUE(c->LoadImage_FromDropedFiles(d, 1));
  });
  int32_t effect = 1;
  c->OLEDragDropControl(data, effect, 0, 0, 3, 3);
  EXPECT_EQ(drops, 0);
  c->OLEDropMode(Drop_Manual);
  c->OLEDragDropControl(data, effect, 0, 0, 3, 3);
  EXPECT_EQ(drops, 1);
  EXPECT_EQ(seen, name);
  EXPECT_EQ(c->imageWidth(), 16);
}

}  // namespace
}  // namespace mx::controls
