// The pictures example form, loaded through the class registry as a program would load it and
// shown: its pixels are compared with the PNG art the form was made from, so that a picture that
// is not drawn, drawn in the wrong place, or drawn without its transform shows up here.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "controls/Registration.h"
#include "controls/SmallControlTestSupport.h"
#include "controls/USAlphaImage.h"
#include "controls/USButton.h"
#include "host/Form.h"
#include "host/String.h"
#include "image/API32bppDIB.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"

namespace mx::controls::testing {
namespace {

using image::API32bppDIB;
using platform::COLORREF;

// The art the form was built from; its pictures are inside the form's companion file, so these
// are read only to know what colours to expect.
std::unique_ptr<API32bppDIB> LoadArt(const char* name) {
  auto dib = std::make_unique<API32bppDIB>();
  const std::string path = std::string(MX_SOURCE_DIR) + "/examples/images/" + name;
  EXPECT_TRUE(dib->LoadPicture_File(host::FromUtf8(path))) << path;
  return dib;
}

// An opaque pixel of the art, as 0x00BBGGRR.
COLORREF Opaque(const API32bppDIB& dib, int x, int y) {
  uint8_t alpha = 0;
  const int32_t c = dib.GetPixel(x, y, alpha);
  EXPECT_EQ(alpha, 255) << "art pixel " << x << "," << y << " is not opaque";
  return static_cast<COLORREF>(c);
}

int Channel(COLORREF c, int shift) { return static_cast<int>((c >> shift) & 0xFF); }

class ImagesExampleTest : public SmallControlTest {
 protected:
  void SetUp() override {
    SmallControlTest::SetUp();
    RegisterControls();
    m_form = host::LoadFormFile(std::string(MX_SOURCE_DIR) + "/examples/images.frm");
    ASSERT_TRUE(m_form);
    m_form->Show();
    platform::RunFor(100);
  }
  void TearDown() override {
    if (m_form) m_form->Unload();
    m_form.reset();
    SmallControlTest::TearDown();
  }

  template <typename C>
  std::shared_ptr<C> Find(const char16_t* name) {
    auto c = std::dynamic_pointer_cast<C>(m_form->FindControl(name));
    EXPECT_TRUE(c) << host::ToUtf8(name);
    return c;
  }
  platform::CapturedImage Shot(const char16_t* name) {
    auto c = Find<host::UserControl>(name);
    return c ? Capture(*c) : platform::CapturedImage{};
  }

  std::shared_ptr<host::Form> m_form;
};

// Every alpha image is 100 x 100 pixels; a 64 x 64 picture at actual size sits at (18, 18).
constexpr int kInset = 18;

TEST_F(ImagesExampleTest, AlphaImagesKeepTheirSettingsThroughTheFile) {
  auto rotated = Find<USAlphaImage>(u"imgRotated");
  auto masked = Find<USAlphaImage>(u"imgMasked");
  auto shadow = Find<USAlphaImage>(u"imgShadow");
  ASSERT_TRUE(rotated && masked && shadow);
  EXPECT_TRUE(rotated->RotateEnabled());
  EXPECT_EQ(rotated->Rotation(), 45);
  EXPECT_EQ(masked->MaskUsed(), image::maskUseTopLeft);
  EXPECT_TRUE(shadow->ShadowEnabled());
  EXPECT_EQ(Find<USAlphaImage>(u"imgMirrored")->Mirror(), image::mirrorHorizontal);
  EXPECT_EQ(Find<USAlphaImage>(u"imgOpacity")->Opacity(), 40);
  EXPECT_EQ(Find<USAlphaImage>(u"imgScaled")->imageWidth(), 32);
  EXPECT_EQ(shadow->imageWidth(), 64);
}

TEST_F(ImagesExampleTest, ArrowIsDrawnAsIsMirroredAndRotated) {
  const auto arrowArt = LoadArt("arrow.png");
  const API32bppDIB& arrow = *arrowArt;
  const auto actual = Shot(u"imgActual");
  const auto mirrored = Shot(u"imgMirrored");
  const auto rotated = Shot(u"imgRotated");
  ASSERT_EQ(actual.width(), 100);
  // A transparent corner shows whatever lies beneath; the picture is compared with it.
  const COLORREF ground = actual.color(0, 0);

  // The tail of the shaft and a point of the head, where they are in the art.
  for (auto [x, y] : {std::pair{8, 32}, {20, 30}, {44, 20}}) {
    EXPECT_EQ(actual.color(kInset + x, kInset + y), Opaque(arrow, x, y)) << x << "," << y;
    // Mirrored left to right: art column x lands in column 63 - x.
    EXPECT_EQ(mirrored.color(kInset + 63 - x, kInset + y), Opaque(arrow, x, y)) << x << "," << y;
  }
  // Where the head is in the unmirrored arrow, the mirrored one has only its shaft or nothing.
  EXPECT_EQ(mirrored.color(kInset + 36, kInset + 14), mirrored.color(0, 0));
  EXPECT_NE(actual.color(kInset + 36, kInset + 14), ground);

  // Turned 45 degrees about the centre: the tail has left the horizontal line and the tip points
  // down to the right, while the centre of the shaft stays where it was.
  EXPECT_EQ(rotated.color(kInset + 8, 50), rotated.color(0, 0));
  EXPECT_NE(actual.color(kInset + 8, 50), ground);
  EXPECT_NE(rotated.color(66, 66), rotated.color(0, 0));
  EXPECT_EQ(actual.color(66, 66), ground);
}

TEST_F(ImagesExampleTest, StarIsScaledToFillTheControl) {
  const auto starArt = LoadArt("star.png");
  const API32bppDIB& star = *starArt;
  const auto scaled = Shot(u"imgScaled");
  ASSERT_EQ(scaled.width(), 100);
  // Unscaled, the 32-pixel star would cover rows 34..65 only; scaled, its top point reaches row 12.
  EXPECT_NE(scaled.color(50, 12), scaled.color(0, 0));
  // Its pale centre keeps its colour, up to the smoothing of the enlargement.
  const COLORREF centre = scaled.color(50, 52), art = Opaque(star, 16, 16);
  for (int shift : {0, 8, 16}) EXPECT_NEAR(Channel(centre, shift), Channel(art, shift), 12) << shift;
}

TEST_F(ImagesExampleTest, LeafIsGreyFadedAndShadowed) {
  const auto leafArt = LoadArt("leaf.png");
  const API32bppDIB& leaf = *leafArt;
  const auto grey = Shot(u"imgGrey");
  const auto faded = Shot(u"imgOpacity");
  const auto shadowed = Shot(u"imgShadow");
  const int x = 44, y = 28;  // inside the blade, off the vein
  const COLORREF art = Opaque(leaf, x, y);

  const COLORREF g = grey.color(kInset + x, kInset + y);
  EXPECT_EQ(Channel(g, 0), Channel(g, 8));
  EXPECT_EQ(Channel(g, 8), Channel(g, 16));
  EXPECT_NE(g, art);

  // 40 % of the picture over what is beneath.
  const COLORREF f = faded.color(kInset + x, kInset + y), under = faded.color(0, 0);
  for (int shift : {0, 8, 16})
    EXPECT_NEAR(Channel(f, shift), (Channel(art, shift) * 40 + Channel(under, shift) * 60) / 100, 1) << shift;

  // Below and right of the blade, where the picture is clear, only the shadow falls.
  const COLORREF s = shadowed.color(kInset + 46, kInset + 42), ground = shadowed.color(0, 0);
  EXPECT_EQ(grey.color(kInset + 46, kInset + 42), grey.color(0, 0));
  for (int shift : {0, 8, 16}) EXPECT_LT(Channel(s, shift), Channel(ground, shift) - 30) << shift;
  EXPECT_EQ(shadowed.color(kInset + x, kInset + y), art);
}

TEST_F(ImagesExampleTest, BadgeLosesItsCornerColour) {
  const auto badgeArt = LoadArt("badge.png");
  const API32bppDIB& badge = *badgeArt;
  ASSERT_EQ(Opaque(badge, 1, 1), 0xFF00FFu);
  const auto masked = Shot(u"imgMasked");
  // The magenta ground is gone and what is beneath shows through.
  EXPECT_EQ(masked.color(kInset + 1, kInset + 1), masked.color(0, 0));
  EXPECT_EQ(masked.color(kInset + 62, kInset + 62), masked.color(0, 0));
  // The disc and the white cross stay.
  EXPECT_EQ(masked.color(50, 50), 0xFFFFFFu);
  EXPECT_EQ(masked.color(kInset + 32, kInset + 8), Opaque(badge, 32, 8));
}

TEST_F(ImagesExampleTest, ButtonPicturesSitWhereTheirAlignmentSays) {
  const auto heartArt = LoadArt("heart.png");
  const API32bppDIB& heart = *heartArt;
  const auto checkArt = LoadArt("check.png");
  const API32bppDIB& check = *checkArt;
  const auto starArt = LoadArt("star.png");
  const API32bppDIB& star = *starArt;
  struct Case {
    const char16_t* name;
    const API32bppDIB* art;
    int x, y;  // an opaque pixel of the 32 x 32 art
  } cases[] = {{u"cmdLeftEdge", &heart, 16, 16}, {u"cmdRightOf", &check, 16, 4}, {u"cmdLeftOf", &star, 16, 16},
               {u"cmdRightEdge", &star, 16, 16}};
  for (const auto& c : cases) {
    auto button = Find<USButton>(c.name);
    ASSERT_TRUE(button);
    const auto layout = button->CurrentLayout();
    ASSERT_TRUE(layout.pictureLayoutValid) << host::ToUtf8(c.name);
    const auto shot = Capture(*button);
    EXPECT_EQ(shot.color(layout.pictureLeft + c.x, layout.pictureTop + c.y), Opaque(*c.art, c.x, c.y))
        << host::ToUtf8(c.name);
  }

  // The alignments themselves: beside, above and below the caption, and against the edges.
  auto at = [&](const char16_t* name) { return Find<USButton>(name)->CurrentLayout(); };
  EXPECT_LT(at(u"cmdLeftOf").pictureLeft + 32, at(u"cmdLeftOf").textRect.right);
  EXPECT_LE(at(u"cmdLeftOf").pictureLeft + 32, at(u"cmdLeftOf").textRect.left + 8);
  EXPECT_GE(at(u"cmdRightOf").pictureLeft, at(u"cmdRightOf").textRect.right - 8);
  EXPECT_LE(at(u"cmdTopOf").pictureTop + 24, at(u"cmdTopOf").textRect.top + 4);
  EXPECT_GE(at(u"cmdBottomOf").pictureTop, at(u"cmdBottomOf").textRect.bottom - 4);
  EXPECT_LT(at(u"cmdLeftEdge").pictureLeft, 10);
  EXPECT_GT(at(u"cmdRightEdge").pictureLeft, 180 - 32 - 10);
  EXPECT_LT(at(u"cmdTopEdge").pictureTop, 10);
  EXPECT_GT(at(u"cmdBottomEdge").pictureTop, 64 - 16 - 10);
}

}  // namespace
}  // namespace mx::controls::testing
