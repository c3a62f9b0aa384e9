// USImageList: its fixed size and its lists saved to and read from the property bag.
#include <gtest/gtest.h>

#include <cstring>

#include "controls/USImageList.h"
#include "host/Err.h"
#include "host/PropertyBag.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "platform/Clock.h"
#include "platform/HandleTable.h"
#include "platform/User.h"

namespace mx::controls {
namespace {

using host::PropertyBag;
using host::Variant;

class USImageListTest : public ::testing::Test {
 protected:
  void SetUp() override { platform::ResetWindowing(); }
  void TearDown() override {
    for (auto& c : m_controls) c->TerminateControl();
    m_controls.clear();
    platform::ResetWindowing();
  }
  std::shared_ptr<USImageList> Make(PropertyBag* bag = nullptr, float w = 3000, float h = 2000) {
    auto c = std::make_shared<USImageList>();
    c->Move(0, 0, w, h);
    if (bag)
      c->LoadFrom(*bag, true);
    else
      c->LoadNew(false);
    c->ShowControl();
    platform::PumpMessages();
    m_controls.push_back(c);
    return c;
  }
  platform::ScopedVirtualClock m_clock;
  std::vector<std::shared_ptr<USImageList>> m_controls;
};

void AddSolid(imagelist::APIListImages& images, uint32_t argb, const char16_t* key, const char16_t* tag) {
  image::API32bppDIB pic;
  ASSERT_TRUE(pic.InitializeDIB(images.Width(), images.Height()));
  auto* px = reinterpret_cast<uint32_t*>(pic.BitsPointer());
  for (int i = 0; i < pic.Width() * pic.Height(); ++i) px[i] = argb;
  images.AddImage_fromDIB(pic, Variant::Missing(), key, tag);
}

TEST_F(USImageListTest, KeepsItsOwnSizeWhateverTheFormAsksAndHidesAtRunTime) {
  auto c = Make();
  EXPECT_TRUE(platform::IsWindowVisible(c->hWnd()));  // design time
  PropertyBag bag;
  EXPECT_FALSE(platform::IsWindowVisible(Make(&bag)->hWnd()));
  EXPECT_EQ(c->Width(), USImageList::kWidthTwips);
  EXPECT_EQ(c->Height(), USImageList::kHeightTwips);
  c->Move(0, 0, 9000, 100);
  EXPECT_EQ(c->Width(), 440.0f);
  EXPECT_EQ(c->Height(), 510.0f);
}

TEST_F(USImageListTest, ListsTravelThroughThePropertyBag) {
  auto a = Make();
  PropertyBag empty;
  a->SaveTo(empty);
  EXPECT_EQ(empty.Count(), 0);  // no lists: Count stays at its default and is not written

  auto first = a->ImageLists()->Add(4, 4, u"tools");
  AddSolid(*first->Images(), 0xFFFF0000, u"cut", u"Recortar");
  AddSolid(*first->Images(), 0xFF00FF00, u"", u"");
  auto second = a->ImageLists()->Add(2, 3, u"small");
  AddSolid(*second->Images(), 0xFF0000FF, u"dot", u"");
  PropertyBag bag;
  a->SaveTo(bag);
  EXPECT_EQ(bag.Keys(), (std::vector<host::String>{u"Count", u"1Img", u"2Img"}));
  EXPECT_EQ(bag.ReadProperty(u"Count").ToLong(), 2);
  Variant saved = bag.ReadProperty(u"2Img");
  const host::ByteArray* blob = saved.Bytes();
  ASSERT_NE(blob, nullptr);
  EXPECT_EQ(std::memcmp(blob->data(), "LIVL", 4), 0);

  auto b = Make(&bag);
  auto lists = b->ImageLists();
  ASSERT_EQ(lists->Count(), 2);
  EXPECT_EQ(lists->Item(1)->Key(), u"tools");
  EXPECT_EQ(lists->Item(u"SMALL")->Height(), 3);
  auto images = lists->Item(1)->Images();
  ASSERT_EQ(images->Count(), 2);
  EXPECT_EQ(images->Item(u"cut")->Tag(), u"Recortar");
  image::API32bppDIB cell;
  ASSERT_TRUE(images->CopyCell(1, cell));
  EXPECT_EQ(reinterpret_cast<const uint32_t*>(cell.BitsPointer())[5], 0xFF00FF00u);
}

TEST_F(USImageListTest, EntriesThatWillNotImportAreSkipped) {
  auto a = Make();
  a->ImageLists()->Add(4, 4, u"ok");
  PropertyBag saved;
  a->SaveTo(saved);
  host::ByteArray good = saved.ReadProperty(u"1Img").ToBytes();
  host::ByteArray newer = good;
  newer[4] = 3;  // a version from the future raises 1974 inside the read

  PropertyBag bag;
  bag.WriteProperty(u"Count", Variant(int32_t{2000000000}));  // damaged: far more than the bag holds
  bag.WriteProperty(u"1Img", Variant(host::ByteArray{}));
  bag.WriteProperty(u"2Img", Variant(newer));
  bag.WriteProperty(u"3Img", Variant(good));
  // "4Img" and the rest are missing altogether.
  host::Err().Clear();
  auto b = Make(&bag);
  ASSERT_EQ(b->ImageLists()->Count(), 1);
  EXPECT_EQ(b->ImageLists()->Item(1)->Key(), u"ok");
  EXPECT_EQ(host::Err().Number(), 0);
}

TEST_F(USImageListTest, TheLateBoundListsAndTheDirtyMark) {
  auto c = Make();
  c->UpdateLists();
  ASSERT_FALSE(c->ChangedProperties().empty());
  EXPECT_EQ(c->ChangedProperties().back(), u"UpdateLists");
  Variant lists =
      host::CallByName(Variant(std::static_pointer_cast<host::Object>(c)), u"ImageLists", host::CallKind::Get);
  EXPECT_EQ(lists.Obj(), c->ImageLists());
}

}  // namespace
}  // namespace mx::controls
