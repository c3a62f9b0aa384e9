// Saving and reading a button, late binding, and the layout of caption and picture.
#include "ButtonTestSupport.h"
#include "host/Err.h"
#include "host/StdPicture.h"

namespace mx::controls::testing {
namespace {

using host::PropertyBag;
using host::Variant;

// A 2 x 2 picture file (BMP, 24 bits), enough for the layout to see a picture.
host::ByteArray TinyBmp() {
  host::ByteArray b = {'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 24, 0};
  b.resize(70, 0);
  return b;
}

class ButtonPersistTest : public ButtonTest {};

TEST_F(ButtonPersistTest, ANewButtonSavesOnlyTheTwoAsymmetricKeys) {
  auto b = Make(0, 0, 80, 24);
  PropertyBag bag;
  b->SaveTo(bag);
  // Every other key is at its written default; these two read defaults differ from theirs.
  EXPECT_EQ(bag.Keys(), (std::vector<host::String>{u"BorderColorOver", u"BorderColorDown"}));
}

TEST_F(ButtonPersistTest, RoundTripKeepsChangedValuesUnderTheirKeys) {
  auto a = Make(0, 0, 80, 24);
  a->Caption(u"&Gravar");
  a->CheckBoxMode(true);
  a->Value(true);
  a->CropBorders(Crop_Left);
  a->GradientColors(1);
  a->GradientColorDown(3, 0x112233);
  a->PictureSizeX(20);
  a->PictureAlignment(Picture_TopEdge);
  a->ToolTipDescription(u"Salva o registro");
  a->ToolTipIcon(2);
  a->CaptionDistance(7);
  a->Enabled(false);
  PropertyBag bag;
  a->SaveTo(bag);
  // Keys are the bag's names, not the properties'.
  EXPECT_TRUE(bag.Contains(u"CheckBox"));
  EXPECT_FALSE(bag.Contains(u"CheckBoxMode"));
  EXPECT_TRUE(bag.Contains(u"PicSizeH"));
  EXPECT_TRUE(bag.Contains(u"PicAlign"));
  EXPECT_EQ(bag.ReadProperty(u"PicSize").ToLong(), Picture_Custom);

  auto b = Make(100, 0, 80, 24, &bag);
  EXPECT_EQ(b->Caption(), u"&Gravar");
  EXPECT_EQ(b->AccessKeys(), u"g");
  EXPECT_TRUE(b->CheckBoxMode());
  EXPECT_TRUE(b->Value());
  EXPECT_EQ(b->CropBorders(), Crop_Left);
  EXPECT_EQ(b->GradientColors(), 1);
  EXPECT_EQ(b->GradientColorDown(3), 0x112233);
  EXPECT_EQ(b->PictureSizeX(), 20);
  EXPECT_EQ(b->PictureSize(), Picture_Custom);
  EXPECT_EQ(b->PictureAlignment(), Picture_TopEdge);
  EXPECT_EQ(b->ToolTipDescription(), u"Salva o registro");
  EXPECT_EQ(b->ToolTipIcon(), 2);
  EXPECT_EQ(b->CaptionDistance(), 7);
  EXPECT_FALSE(b->Enabled());
  EXPECT_EQ(b->PaintedState(), USButton::kStateDisabled);
}

TEST_F(ButtonPersistTest, WhiteOverAndDownBordersComeBackAsTheReadDefaults) {
  auto a = Make(0, 0, 80, 24);
  a->BorderColorDown(0xFFFFFF);
  a->BorderColorOver(0xFFFFFF);
  a->ForeColorOver(0x000000);
  PropertyBag bag;
  a->SaveTo(bag);
  EXPECT_FALSE(bag.Contains(u"BorderColorDown"));
  EXPECT_FALSE(bag.Contains(u"BorderColorOver"));
  auto b = Make(100, 0, 80, 24, &bag);
  EXPECT_EQ(b->BorderColorDown(), 0x501A00);
  EXPECT_EQ(b->BorderColorOver(), 0x7B3E00);
  EXPECT_EQ(b->ForeColorOver(), 0x000000);

  // The read defaults themselves are different from the written ones, so they are saved.
  PropertyBag again;
  b->SaveTo(again);
  EXPECT_EQ(again.ReadProperty(u"BorderColorDown").ToLong(), 0x501A00);
  EXPECT_EQ(again.ReadProperty(u"BorderColorOver").ToLong(), 0x7B3E00);
}

TEST_F(ButtonPersistTest, ReadThemeIsOnlyStoredAndHandPointerAppliesAtRunTime) {
  PropertyBag bag;
  bag.WriteProperty(u"Theme", Variant(int32_t{6}));
  bag.WriteProperty(u"BorderColor", Variant(int32_t{0x0000FF}));
  auto run = Make(0, 0, 80, 24, &bag, true);
  EXPECT_EQ(run->Theme(), 6);
  EXPECT_EQ(run->BorderColor(), 0x0000FF);
  EXPECT_EQ(run->GradientColor(1), 0x9A572B);
  EXPECT_EQ(run->MousePointer(), 99);
  auto design = Make(100, 0, 80, 24, &bag, false);
  EXPECT_TRUE(design->HandPointer());
  EXPECT_EQ(design->MousePointer(), 0);
  // The built-in hand is not saved as a custom icon.
  PropertyBag saved;
  run->SaveTo(saved);
  EXPECT_FALSE(saved.Contains(u"MouseIcon"));
  EXPECT_FALSE(saved.Contains(u"MousePointer") && saved.ReadProperty(u"MousePointer").ToLong() != 99);
}

TEST_F(ButtonPersistTest, PictureOpacityIgnoresTheValueGiven) {
  PropertyBag bag;
  bag.WriteProperty(u"PicOpacity", Variant(int32_t{140}));
  auto b = Make(0, 0, 80, 24, &bag);
  EXPECT_EQ(b->PictureOpacity(), 140);
  b->PictureOpacity(30);
  EXPECT_EQ(b->PictureOpacity(), 100);  // the held value, clamped
}

TEST_F(ButtonPersistTest, LateBindingReachesPropertiesAndMethods) {
  auto b = Make(0, 0, 80, 24);
  Variant caption(u"Por nome");
  b->Invoke(u"caption", host::CallKind::Let, std::span<Variant>(&caption, 1));
  EXPECT_EQ(b->Caption(), u"Por nome");
  EXPECT_EQ(b->Invoke(u"", host::CallKind::Get, {}).ToString(), u"Por nome");
  Variant colour(int32_t{0x00FF00});
  b->Invoke(u"GradientColorOver3", host::CallKind::Let, std::span<Variant>(&colour, 1));
  EXPECT_EQ(b->GradientColorOver(3), 0x00FF00);
  EXPECT_EQ(b->Invoke(u"CHECKBOXMODE", host::CallKind::Get, {}).ToBoolean(), false);
  const int before = b->PaintCount();
  b->Invoke(u"Refresh", host::CallKind::Method, {});
  EXPECT_EQ(b->PaintCount(), before + 1);
  EXPECT_THROW(b->Invoke(u"NoSuchMember", host::CallKind::Get, {}), host::RuntimeError);
}

TEST_F(ButtonPersistTest, GradientColoursAreNumberedOneToFourUnderTheirOwnKeys) {
  auto b = Make(0, 0, 80, 24);
  for (int32_t outside : {0, 5}) {
    try {
      (void)b->GradientColorDisabled(outside);
      ADD_FAILURE() << outside << " was accepted";
    } catch (const host::RuntimeError& e) {
      EXPECT_EQ(e.Number(), 381);
    }
    EXPECT_THROW(b->GradientColorOver(outside, 0x123456), host::RuntimeError);
  }
  // The normal and disabled colours repaint at once; over and down wait for their state.
  int before = b->PaintCount();
  b->GradientColor(4, 0x0000FF);
  EXPECT_GT(b->PaintCount(), before);
  before = b->PaintCount();
  b->GradientColorDown(1, 0x00FF00);
  EXPECT_EQ(b->PaintCount(), before);
  PropertyBag bag;
  b->SaveTo(bag);
  EXPECT_EQ(bag.ReadProperty(u"GradientColor4").ToLong(), 0x0000FF);
  EXPECT_EQ(bag.ReadProperty(u"GradientColorDown1").ToLong(), 0x00FF00);
  EXPECT_FALSE(bag.Contains(u"GradientColor1"));
  EXPECT_EQ(b->GradientColor(1), 0x9A572B);
}

// ---- Layout -------------------------------------------------------------------------------------

class ButtonLayoutTest : public ButtonTest {
 protected:
  std::shared_ptr<TestButton> WithPicture(const char16_t* caption, int32_t alignment) {
    auto b = Make(0, 0, 120, 60);
    b->Caption(caption);
    b->Picture(host::StdPicture::FromBytes(TinyBmp()));
    b->PictureSizeX(20);
    b->PictureSizeY(40);
    b->PictureAlignment(alignment);
    return b;
  }
};

TEST_F(ButtonLayoutTest, CaptionAloneIsCentred) {
  auto b = Make(0, 0, 120, 60);
  b->Caption(u"Ok");
  const auto l = b->CurrentLayout();
  EXPECT_FALSE(l.pictureLayoutValid);
  const int w = l.textRect.right - l.textRect.left, h = l.textRect.bottom - l.textRect.top;
  EXPECT_GT(w, 0);
  EXPECT_EQ(l.textRect.left, (120 - w) / 2);
  EXPECT_EQ(l.textRect.top, (60 - h) / 2);
}

TEST_F(ButtonLayoutTest, PictureWithoutCaptionIsCentredAsFortyWideTwentyHigh) {
  auto b = WithPicture(u"", Picture_LeftOfCaption);
  const auto l = b->CurrentLayout();
  ASSERT_TRUE(l.pictureLayoutValid);
  // Layout takes PictureSizeY as the width and PictureSizeX as the height.
  EXPECT_EQ(l.pictureLeft, (120 - 40) / 2);
  EXPECT_EQ(l.pictureTop, (60 - 20) / 2);
}

TEST_F(ButtonLayoutTest, PictureLeftOfCaptionKeepsAGapAndCentresBoth) {
  auto b = WithPicture(u"Texto", Picture_LeftOfCaption);
  const auto l = b->CurrentLayout();
  ASSERT_TRUE(l.pictureLayoutValid);
  const int tw = l.textRect.right - l.textRect.left;
  const int f = (120 - (40 + 2 + tw)) / 2;
  EXPECT_EQ(l.pictureLeft, f);
  EXPECT_EQ(l.pictureTop, (60 - 20) / 2);
  EXPECT_EQ(l.textRect.left, 40 + 2 + f);
}

TEST_F(ButtonLayoutTest, EdgeAndStackedAlignments) {
  {
    auto b = WithPicture(u"Texto", Picture_RightEdge);
    const auto l = b->CurrentLayout();
    EXPECT_EQ(l.pictureLeft, 120 - 40 - 3);
    // The text sits left of the picture with the gap, then moves half the free room left.
    const int tw = l.textRect.right - l.textRect.left;
    const int leftBeforeShift = 120 - 40 - 3 - 2 - tw;
    const int free = leftBeforeShift - 3;
    EXPECT_EQ(l.textRect.left, free > 1 ? leftBeforeShift - free / 2 : leftBeforeShift);
  }
  {
    auto b = WithPicture(u"Texto", Picture_TopOfCaption);
    const auto l = b->CurrentLayout();
    const int th = l.textRect.bottom - l.textRect.top;
    // Stacked with no gap, the pair centred vertically.
    const int f = (60 - (20 + th)) / 2;
    EXPECT_EQ(l.pictureTop, f);
    EXPECT_EQ(l.textRect.top, 20 + f);
    EXPECT_EQ(l.pictureLeft, (120 - 40) / 2);
  }
  {
    auto b = WithPicture(u"", Picture_BottomEdge);
    const auto l = b->CurrentLayout();
    EXPECT_EQ(l.pictureTop, 60 - 20 - 3);
  }
}

TEST_F(ButtonLayoutTest, PictureSlotsAndBytes) {
  auto b = Make(0, 0, 120, 60);
  auto pic = host::StdPicture::FromBytes(TinyBmp());
  // The first picture given through an other slot becomes the normal one.
  b->PictureOn(pic);
  EXPECT_EQ(b->Picture(), pic);
  EXPECT_FALSE(b->PictureOn());
  // Bytes win over the picture object.
  b->PictureBytes(TinyBmp());
  EXPECT_FALSE(b->Picture());
  EXPECT_TRUE(b->CurrentLayout().pictureLayoutValid);
  b->ClearPictureBytes();
  EXPECT_FALSE(b->CurrentLayout().pictureLayoutValid);
}

}  // namespace
}  // namespace mx::controls::testing
