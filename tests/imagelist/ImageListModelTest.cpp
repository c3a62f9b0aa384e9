// The collections: keys, limits, errors, positions of cells in the strip, and enumeration.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "ImageListTestSupport.h"
#include "host/Err.h"
#include "host/StdPicture.h"
#include "host/Strings.h"
#include "image/PictureBinding.h"
#include "imagelist/APIEnumVARIANT.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "imagelist/KeyIndex.h"

namespace mx::imagelist {
namespace {

using host::RuntimeError;
using host::String;
using host::Variant;
using test::PixelAt;
using test::Solid;

// Runs f and checks that it raises the given error with its source and message.
template <typename F>
void ExpectError(F&& f, int32_t number, const char16_t* source, const char16_t* message) {
  try {
    f();
    ADD_FAILURE() << "no error raised, expected " << number;
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), number);
    EXPECT_EQ(e.Source(), String(source));
    EXPECT_EQ(e.Description(), String(message));
  }
}

TEST(KeyIndex, StaysDescendingWithoutRegardToCaseAndFindsEveryKey) {
  std::mt19937 rng(3);
  KeyIndex index;
  std::vector<String> keys;
  for (uint32_t id = 1; id <= 300; ++id) {
    String k;
    for (int n = 1 + static_cast<int>(rng() % 6); n > 0; --n) k.push_back(static_cast<char16_t>(u'a' + rng() % 5));
    if (rng() % 2) k = host::UCase(k);
    KeySearch s = index.Search(k);
    if (s.found) continue;
    index.Insert(s.position, k, id);
    keys.push_back(k);
  }
  const auto& e = index.Entries();
  for (size_t i = 1; i < e.size(); ++i) EXPECT_GT(host::StrComp(e[i - 1].key, e[i].key, host::vbTextCompare), 0);
  for (const String& k : keys) EXPECT_TRUE(index.Search(host::LCase(k)).found) << host::ToUtf8(k);
  EXPECT_FALSE(index.Search(u"zzzzzzz").found);
  EXPECT_EQ(index.Search(u"zzzzzzz").position, 0u);  // above every key: first in descending order
  EXPECT_EQ(KeyIndex().Search(u"x").position, 0u);
}

TEST(APIImageLists, MaxImagesIsAPixelBudget) {
  EXPECT_EQ(APIImageLists::MaxImages(32, 32), 1000);
  EXPECT_EQ(APIImageLists::MaxImages(0, 32), 0);
  EXPECT_EQ(APIImageLists::MaxImages(32, -1), 0);
  EXPECT_EQ(APIImageLists::MaxImages(1000, 1024), 1);
  EXPECT_EQ(APIImageLists::MaxImages(1001, 1024), 0);

  auto lists = APIImageLists::Create();
  ExpectError([&] { lists->Add(32, 32, u"big", 1001); }, 1973, u"ImageLists.Add",
              u"Maximum number of images have been exceeded. Create new image list");
  ExpectError([&] { lists->Add(0, 16, u"none"); }, 1973, u"ImageLists.Add",
              u"Maximum number of images have been exceeded. Create new image list");
  EXPECT_EQ(lists->Count(), 0);
  // InitImageCount below 1 counts as 1, which fits.
  EXPECT_NO_THROW(lists->Add(1000, 1024, u"one", -5));
}

TEST(APIImageLists, KeysCollideWithoutRegardToCaseAndEmptyKeysReachOnlyByIndex) {
  auto lists = APIImageLists::Create();
  lists->Add(16, 16, u"ab");
  ExpectError([&] { lists->Add(16, 16, u"AB"); }, 1963, u"ImageLists.Add",
              u"Duplicated Key. Key already exists in this collection");
  auto anon = lists->Add(16, 16, u"");
  auto anon2 = lists->Add(16, 16, u"");  // empty keys are never searched, so never collide
  EXPECT_EQ(lists->Count(), 3);
  EXPECT_EQ(lists->Item(2), anon);
  EXPECT_EQ(lists->Item(3.9), anon2);  // a number's whole part
  EXPECT_EQ(lists->Find(u""), nullptr);
  EXPECT_EQ(lists->Find(Variant(true)), nullptr);
  EXPECT_EQ(lists->Find(0), nullptr);
  EXPECT_EQ(lists->Find(4), nullptr);
  EXPECT_EQ(lists->Item(u"Ab")->Index(), 1);
  ExpectError([&] { (void)lists->Item(u"zz"); }, 1962, u"ImageLists.Item", u"Invalid Key or Index");
}

TEST(APIImageLists, KeyAndIndexOfAList) {
  auto lists = APIImageLists::Create();
  auto a = lists->Add(8, 8, u"a");
  auto b = lists->Add(8, 8, u"b");
  auto c = lists->Add(8, 8, u"c");
  ExpectError([&] { b->Key(u""); }, 1962, u"ImageLists.Key", u"Invalid Key");
  ExpectError([&] { b->Key(u"C"); }, 1963, u"ImageLists.Key", u"Duplicated Key. Key already exists in this collection");
  b->Key(u"B");  // a change of case is a rename of its own key
  b->Key(u"zeta");
  EXPECT_EQ(lists->Item(u"ZETA"), b);
  EXPECT_EQ(lists->Find(u"b"), nullptr);
  c->Index(1);
  EXPECT_EQ(c->Index(), 1);
  EXPECT_EQ(a->Index(), 2);
  EXPECT_EQ(lists->Item(u"c"), c);  // keys follow their lists
  ExpectError([&] { a->Index(4); }, 1962, u"ImageLists.Index", u"Invalid Index");
}

TEST(APIImageLists, RemovingTheLastListEmptiesEverything) {
  auto lists = APIImageLists::Create();
  auto a = lists->Add(8, 8, u"a");
  auto b = lists->Add(8, 8, u"b");
  lists->Remove(u"A");
  EXPECT_EQ(lists->Count(), 1);
  EXPECT_EQ(b->Index(), 1);
  ExpectError([&] { lists->Remove(u"a"); }, 1962, u"ImageLists.Remove", u"Invalid Key or Index");
  lists->Remove(1);
  EXPECT_EQ(lists->Count(), 0);
  EXPECT_FALSE(lists->IsKeyAssigned(u"b"));
  EXPECT_EQ(lists->begin(), lists->end());
  // The key can be used again, and a list held from before answers nothing about itself.
  EXPECT_NO_THROW(lists->Add(8, 8, u"b"));
  EXPECT_EQ(b->Index(), 0);
}

TEST(APIImageLists, AListWhoseParentIsGoneRaises91) {
  std::shared_ptr<APIImageList> orphan;
  {
    auto lists = APIImageLists::Create();
    orphan = lists->Add(8, 8, u"k");
  }
  EXPECT_THROW((void)orphan->Key(), RuntimeError);
  EXPECT_EQ(orphan->Width(), 8);
}

TEST(APIImageLists, EnumeratorsShareTheCollectionsCursor) {
  auto lists = APIImageLists::Create();
  auto a = lists->Add(8, 8, u"a");
  auto b = lists->Add(8, 8, u"b");
  auto c = lists->Add(8, 8, u"c");
  auto e1 = lists->xcom_IEnum();
  auto e2 = lists->xcom_IEnum();
  std::vector<Variant> got;
  EXPECT_EQ(e1->Next(1, got), S_OK_);
  EXPECT_EQ(e2->Next(1, got), S_OK_);
  auto e3 = e1->Clone();
  EXPECT_EQ(e3.get(), e1.get());
  uint32_t fetched = 0;
  EXPECT_EQ(e3->Next(5, got, &fetched), S_FALSE_);
  EXPECT_EQ(fetched, 1u);
  ASSERT_EQ(got.size(), 3u);
  EXPECT_EQ(got[0].Obj(), a);
  EXPECT_EQ(got[1].Obj(), b);
  EXPECT_EQ(got[2].Obj(), c);
  EXPECT_EQ(e2->Next(1, got), S_FALSE_);
  // Reset through one enumerator rewinds the other; Skip runs out with S_FALSE.
  e2->Reset();
  EXPECT_EQ(e1->Skip(2), S_OK_);
  got.clear();
  EXPECT_EQ(e2->Next(1, got), S_OK_);
  EXPECT_EQ(got[0].Obj(), c);
  EXPECT_EQ(e1->Skip(1), S_FALSE_);
  EXPECT_EQ(e1->QueryInterface(u"{00020404-0000-0000-c000-000000000046}"), S_OK_);
  EXPECT_EQ(e1->QueryInterface(kIID_IUnknown), S_OK_);
  EXPECT_EQ(e1->QueryInterface(u"{00020400-0000-0000-C000-000000000046}"), E_NOINTERFACE_);
  // The C++ iteration is separate from the cursor.
  std::vector<std::shared_ptr<APIImageList>> seen(lists->begin(), lists->end());
  EXPECT_EQ(seen.size(), 3u);
}

// ---- images ----

class Images : public ::testing::Test {
 protected:
  void SetUp() override {
    lists = APIImageLists::Create();
    list = lists->Add(4, 3, u"list");
    images = list->Images();
  }
  std::shared_ptr<APIListImage> AddSolid(uint32_t argb, const char16_t* key, const Variant& index = Variant::Missing(),
                                         const char16_t* tag = u"") {
    auto pic = Solid(4, 3, argb);
    return images->AddImage_fromDIB(*pic, index, key, tag);
  }
  // The colour of each cell in order, read from the strip's top-left pixel of the cell.
  std::vector<uint32_t> Cells() {
    std::vector<uint32_t> out;
    const auto& strip = images->Sheet();
    for (int i = 0; i < images->Count(); ++i) out.push_back(PixelAt(strip, i * 4 + 3, 2));
    return out;
  }
  std::shared_ptr<APIImageLists> lists;
  std::shared_ptr<APIImageList> list;
  std::shared_ptr<APIListImages> images;
};

TEST_F(Images, CellsFollowInsertionRemovalAndMoves) {
  auto red = AddSolid(0xFFFF0000, u"red");
  auto blue = AddSolid(0xFF0000FF, u"blue");
  auto green = AddSolid(0xFF00FF00, u"green", Variant(u"BLUE"));  // before blue
  auto white = AddSolid(0xFFFFFFFF, u"", 1, u"first");
  EXPECT_EQ(Cells(), (std::vector<uint32_t>{0xFFFFFFFF, 0xFFFF0000, 0xFF00FF00, 0xFF0000FF}));
  EXPECT_EQ(green->Index(), 3);
  EXPECT_EQ(blue->Index(), 4);
  EXPECT_EQ(white->Tag(), u"first");
  EXPECT_EQ(white->Key(), u"");
  EXPECT_EQ(white->Width(), 4);
  EXPECT_EQ(white->Height(), 3);

  images->Remove(u"red");
  EXPECT_EQ(Cells(), (std::vector<uint32_t>{0xFFFFFFFF, 0xFF00FF00, 0xFF0000FF}));
  EXPECT_EQ(blue->Index(), 3);
  EXPECT_EQ(red->Index(), 0);
  // The freed cell past the end is transparent again.
  EXPECT_EQ(PixelAt(images->Sheet(), 3 * 4, 0), 0u);

  blue->Index(1);
  EXPECT_EQ(Cells(), (std::vector<uint32_t>{0xFF0000FF, 0xFFFFFFFF, 0xFF00FF00}));
  EXPECT_EQ(white->Tag(), u"first");
  blue->Index(3);
  EXPECT_EQ(Cells(), (std::vector<uint32_t>{0xFFFFFFFF, 0xFF00FF00, 0xFF0000FF}));
  ExpectError([&] { green->Index(0); }, 1962, u"Images.Index", u"Invalid Key or Index");
  EXPECT_EQ(images->Item(u"green"), green);
}

TEST_F(Images, KeysOfImages) {
  auto a = AddSolid(0xFF000001, u"ab");
  ExpectError([&] { AddSolid(0xFF000002, u"AB"); }, 1963, u"Images.Add",
              u"Duplicated Key. Key already exists in this collection");
  EXPECT_EQ(images->Count(), 1);
  auto b = AddSolid(0xFF000002, u"");
  auto c = AddSolid(0xFF000003, u"");
  EXPECT_EQ(images->Find(u""), nullptr);
  ExpectError([&] { b->Key(u"Ab"); }, 1963, u"Images.Key", u"Duplicated Key. Key already exists in this collection");
  b->Key(u"bee");
  c->Key(u"cee");
  EXPECT_EQ(images->Item(u"BEE"), b);
  b->Key(u"");  // removes the key
  EXPECT_FALSE(images->IsKeyAssigned(u"bee"));
  a->Key(u"AB");
  EXPECT_EQ(a->Key(), u"AB");
  EXPECT_EQ(images->Item(u"cee"), c);
  c->Tag(u"t");
  EXPECT_EQ(c->Tag(), u"t");
}

TEST_F(Images, TheBudgetAndRemovingTheLastImage) {
  auto big = lists->Add(1000, 1024, u"big");
  auto pic = Solid(1000, 1024, 0xFF102030);
  auto first = big->Images()->AddImage_fromDIB(*pic);
  ASSERT_NE(first, nullptr);
  ExpectError([&] { big->Images()->AddImage_fromDIB(*pic); }, 1973, u"Images.Add",
              u"Maximum number of images have been exceeded. Create new image list");
  EXPECT_EQ(big->Images()->Count(), 1);
  big->Images()->Remove(1);
  EXPECT_EQ(big->Images()->Count(), 0);
  EXPECT_FALSE(big->Images()->IsDecoded());
  ExpectError([&] { big->Images()->Remove(1); }, 1962, u"Images.Remove", u"Invalid Key or Index");
  // Rendering an empty list does nothing, even for an index that does not exist.
  EXPECT_NO_THROW(big->Images()->Render(7, 0, 0, 0));
}

TEST_F(Images, EnumerationOfImagesSharesTheCursorToo) {
  AddSolid(0xFF000001, u"a");
  AddSolid(0xFF000002, u"b");
  auto e1 = images->xcom_IEnum();
  auto e2 = list->xcom_IEnum();  // the list's enumerator walks its images
  std::vector<Variant> got;
  e1->Next(1, got);
  e2->Next(1, got);
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[1].Obj(), images->Item(2));
  EXPECT_EQ(e1->Next(1, got), S_FALSE_);
  size_t n = 0;
  for (auto image : *images) n += image != nullptr;
  EXPECT_EQ(n, 2u);
}

}  // namespace
}  // namespace mx::imagelist

namespace mx::imagelist {
namespace {

std::vector<uint8_t> PngOf(int w, int h, uint32_t argb) {
  std::vector<uint8_t> png;
  EXPECT_TRUE(Solid(w, h, argb)->SaveToStream_PNG(png));
  return png;
}

TEST(ImageSources, StreamsPicturesAndSizes) {
  auto lists = APIImageLists::Create();
  auto images = lists->Add(4, 4, u"k")->Images();
  std::vector<uint8_t> png = PngOf(4, 4, 0xFF123456);
  ASSERT_NE(images->AddImage_fromStream(png, Variant::Missing(), u"a"), nullptr);
  // Bytes that are no picture add nothing and raise nothing.
  std::vector<uint8_t> junk(100, 0x42);
  EXPECT_EQ(images->AddImage_fromStream(junk), nullptr);
  EXPECT_EQ(images->Count(), 1);
  image::InstallPictureDecoder();
  ASSERT_NE(images->AddImage_fromStdPicture(host::StdPicture::FromBytes(PngOf(4, 4, 0xFF654321))), nullptr);
  EXPECT_EQ(PixelAt(images->Sheet(), 6, 1), 0xFF654321u);
  EXPECT_EQ(images->AddImage_fromStdPicture(nullptr), nullptr);

  std::vector<std::array<int32_t, 2>> sizes;
  EXPECT_EQ(lists->ImageSizesFromStream(PngOf(7, 3, 0xFF000000), sizes), 1);
  EXPECT_EQ(sizes[0], (std::array<int32_t, 2>{7, 3}));
  EXPECT_EQ(lists->ImageSizesFromStream(junk, sizes), 0);
  EXPECT_TRUE(sizes.empty());
}

}  // namespace
}  // namespace mx::imagelist
