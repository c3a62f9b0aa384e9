// The list blob: its layout field by field, round trips, the versions, compressed names,
// delayed decoding, the other image formats, key collisions and damaged input.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "ImageListTestSupport.h"
#include "host/Err.h"
#include "imagelist/APIHuffman.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "imagelist/ByteIO.h"

namespace mx::imagelist {
namespace {

using host::RuntimeError;
using host::String;
using host::Variant;
using test::PixelAt;
using test::SetPixelAt;
using test::Solid;

// A 5x4 picture with a pattern that depends on seed: opaque colours, and one fully transparent
// pixel (PNG keeps both exactly; partial alpha would not survive premultiplication both ways).
std::unique_ptr<image::API32bppDIB> Pattern(int seed) {
  auto dib = Solid(5, 4, 0xFF000000u | static_cast<uint32_t>(seed * 0x010203));
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 5; ++x)
      SetPixelAt(*dib, x, y, 0xFF000000u | static_cast<uint32_t>((seed * 37 + x * 11 + y * 53) * 0x9E3779u & 0xFFFFFF));
  SetPixelAt(*dib, seed % 5, seed % 4, 0);
  return dib;
}

struct Sample {
  std::shared_ptr<APIImageLists> lists = APIImageLists::Create();
  std::shared_ptr<APIImageList> list;
};

Sample MakeSample(int images, const char16_t* key = u"icons") {
  Sample s;
  s.list = s.lists->Add(5, 4, key);
  for (int i = 1; i <= images; ++i) {
    auto pic = Pattern(i);
    String k = i % 3 == 0 ? String() : u"img" + host::FromUtf8(std::to_string(i));
    s.list->Images()->AddImage_fromDIB(*pic, Variant::Missing(), k, u"tag " + host::FromUtf8(std::to_string(i)));
  }
  return s;
}

std::vector<uint8_t> Export(const Sample& s) {
  std::vector<uint8_t> blob;
  s.lists->ExportImageList(1, blob);
  return blob;
}

// Same count, size, keys, tags and pixels in every cell.
void ExpectSameList(APIImageList& a, APIImageList& b) {
  ASSERT_EQ(a.Images()->Count(), b.Images()->Count());
  EXPECT_EQ(a.Width(), b.Width());
  EXPECT_EQ(a.Height(), b.Height());
  for (int i = 1; i <= a.Images()->Count(); ++i) {
    EXPECT_EQ(a.Images()->Item(i)->Key(), b.Images()->Item(i)->Key());
    EXPECT_EQ(a.Images()->Item(i)->Tag(), b.Images()->Item(i)->Tag());
    image::API32bppDIB ca, cb;
    ASSERT_TRUE(a.Images()->CopyCell(i - 1, ca));
    ASSERT_TRUE(b.Images()->CopyCell(i - 1, cb));
    EXPECT_EQ(0, std::memcmp(ca.BitsPointer(), cb.BitsPointer(), static_cast<size_t>(a.Width()) * a.Height() * 4))
        << "cell " << i;
  }
}

TEST(Livl, LayoutFieldByField) {
  Sample s = MakeSample(2);
  std::vector<uint8_t> b = Export(s);
  ASSERT_GT(b.size(), 80u);
  EXPECT_EQ(std::string(b.begin(), b.begin() + 4), "LIVL");
  EXPECT_EQ(GetU32(b, 4), 2u);
  const uint32_t formatPos = GetU32(b, 8);
  EXPECT_EQ(GetU32(b, 12), formatPos + 3);
  EXPECT_EQ(GetU32(b, 16), 10u);  // "icons"
  EXPECT_EQ(GetText(b, 20, 10), u"icons");
  const size_t h = 30;
  EXPECT_EQ(GetU32(b, h), 2u);      // images
  EXPECT_EQ(GetU32(b, h + 4), 2u);  // with a key
  EXPECT_EQ(GetU32(b, h + 8), 5u);
  EXPECT_EQ(GetU32(b, h + 12), 4u);
  // Name records: "img1" / "tag 1", then "img2" / "tag 2".
  size_t at = h + 16;
  for (int i = 1; i <= 2; ++i) {
    EXPECT_EQ(GetU16(b, at), 8u);
    EXPECT_EQ(GetU16(b, at + 2), 10u);
    EXPECT_EQ(GetText(b, at + 4, 8), u"img" + host::FromUtf8(std::to_string(i)));
    EXPECT_EQ(GetText(b, at + 12, 10), u"tag " + host::FromUtf8(std::to_string(i)));
    at += 4 + 8 + 10;
  }
  EXPECT_EQ(formatPos, at + 1);
  EXPECT_EQ(GetU32(b, at), 3u);
  EXPECT_EQ(GetU16(b, at + 4), 0u);  // DelayLoaded False
  EXPECT_EQ(b[at + 6], 0);           // a picture file
  EXPECT_EQ(std::memcmp(b.data() + at + 7, "\x89PNG", 4), 0);
}

TEST(Livl, RoundTripGivesBackPixelsKeysAndTags) {
  Sample s = MakeSample(7);
  std::vector<uint8_t> blob = Export(s);
  auto fresh = APIImageLists::Create();
  String key;
  auto back = fresh->ImportImageList(blob, key);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(key, u"icons");
  EXPECT_EQ(back->Key(), u"icons");
  ExpectSameList(*s.list, *back);
  EXPECT_EQ(back->Images()->Item(u"IMG4")->Index(), 4);

  // The strip keeps its picture bytes: an unchanged list is written again byte for byte, and a
  // changed one is encoded afresh.
  std::vector<uint8_t> again;
  fresh->ExportImageList(1, again);
  EXPECT_EQ(again, blob);
  back->Images()->Remove(2);
  fresh->ExportImageList(1, again);
  auto third = APIImageLists::Create();
  auto changed = third->ImportImageList(again, key);
  ExpectSameList(*back, *changed);
}

TEST(Livl, EmptyListExportsNoImageData) {
  Sample s = MakeSample(0, u"none");
  std::vector<uint8_t> b = Export(s);
  EXPECT_EQ(GetU32(b, 8) - 1 + 7, b.size());  // the format block ends the blob
  EXPECT_EQ(GetU32(b, 20 + 8), 0u);
  String key;
  auto back = APIImageLists::Create()->ImportImageList(b, key);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->Images()->Count(), 0);
  EXPECT_EQ(back->Width(), 5);
}

TEST(Livl, NamesPast1024BytesAreCompressed) {
  // Two images; the second tag is sized so that keys and tags come to exactly the limit, then
  // one character (two bytes) more.
  for (int extra : {0, 1}) {
    Sample s;
    s.list = s.lists->Add(5, 4, u"n");
    s.list->Images()->AddImage_fromDIB(*Pattern(1), Variant::Missing(), u"k1", u"");
    String tag((1024 - 4) / 2 + extra, u'x');
    s.list->Images()->AddImage_fromDIB(*Pattern(2), Variant::Missing(), u"", tag);
    std::vector<uint8_t> b = Export(s);
    const size_t block = GetU32(b, 8) - 1;
    EXPECT_EQ(b[block + 6], extra ? 4 : 0) << extra;
    if (extra) {
      EXPECT_EQ(b[20 + 2 + 16], 0x0D);  // the compressor's magic stands at h + 16
    }
    String key;
    auto back = APIImageLists::Create()->ImportImageList(b, key);
    ASSERT_NE(back, nullptr);
    ExpectSameList(*s.list, *back);
  }
}

TEST(Livl, DelayLoadedStripsDecodeOnFirstUse) {
  Sample s = MakeSample(3);
  s.list->Images()->DelayLoaded(true);
  std::vector<uint8_t> blob = Export(s);
  EXPECT_EQ(GetU16(blob, GetU32(blob, 8) - 1 + 4), 0xFFFFu);
  auto fresh = APIImageLists::Create();
  String key;
  auto back = fresh->ImportImageList(blob, key);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->Images()->DelayLoaded());
  EXPECT_FALSE(back->Images()->IsDecoded());
  // Exporting undecoded writes the kept bytes without decoding them.
  std::vector<uint8_t> again;
  fresh->ExportImageList(1, again);
  EXPECT_EQ(again, blob);
  EXPECT_FALSE(back->Images()->IsDecoded());
  ExpectSameList(*s.list, *back);
  EXPECT_TRUE(back->Images()->IsDecoded());
}

TEST(Livl, VersionsOneAndTwoReadThreeRefused) {
  Sample s = MakeSample(2);
  std::vector<uint8_t> v2 = Export(s);

  // Version 1: the same blob without the format byte (a block of 2).
  std::vector<uint8_t> v1 = v2;
  const size_t block = GetU32(v2, 8) - 1;
  SetU32(v1, 4, 1);
  SetU32(v1, block, 2);
  v1.erase(v1.begin() + static_cast<long>(block) + 6);
  auto lists = APIImageLists::Create();
  String key;
  auto back = lists->ImportImageList(v1, key);
  ASSERT_NE(back, nullptr);
  ExpectSameList(*s.list, *back);

  std::vector<uint8_t> v3 = v2;
  SetU32(v3, 4, 3);
  try {
    lists->ImportImageList(v3, key);
    ADD_FAILURE() << "version 3 accepted";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1974);
    EXPECT_EQ(e.Source(), u"ImageLists.ImportImageList");
    EXPECT_EQ(e.Description(), u"Invalid ImageList Version. Update your ImageList classes/control");
  }
  EXPECT_EQ(lists->Count(), 1);
  EXPECT_FALSE(lists->IsKeyAssigned(u"icons(1)"));
  // Not a blob at all: nothing, and no error.
  std::vector<uint8_t> junk = {'L', 'I', 'V', 'X', 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(lists->ImportImageList(junk, key), nullptr);
}

TEST(Livl, CompressedSurfaceAndCompressedFileFormatsRead) {
  Sample s = MakeSample(3);
  std::vector<uint8_t> blob = Export(s);
  const size_t block = GetU32(blob, 8) - 1;
  std::vector<uint8_t> head(blob.begin(), blob.begin() + static_cast<long>(block) + 7);
  std::vector<uint8_t> png(blob.begin() + static_cast<long>(block) + 7, blob.end());

  // Format 2: the PNG file inside a compressor blob.
  std::vector<uint8_t> f2 = head, packed;
  f2[block + 6] = 2;
  APIHuffman().Compress(nullptr, png, packed);
  f2.insert(f2.end(), packed.begin(), packed.end());
  // Format 1: the strip's pixels inside a compressor blob with its size.
  std::vector<uint8_t> f1 = head;
  f1[block + 6] = 1;
  APIHuffman().Compress(&s.list->Images()->Sheet(), {}, packed);
  f1.insert(f1.end(), packed.begin(), packed.end());

  for (const auto* b : {&f1, &f2}) {
    String key;
    auto back = APIImageLists::Create()->ImportImageList(*b, key);
    ASSERT_NE(back, nullptr);
    ExpectSameList(*s.list, *back);
  }
  // Delayed loading of format 2 keeps the unpacked file as the strip's bytes.
  f2[block + 4] = 0xFF;
  f2[block + 5] = 0xFF;
  String key;
  auto delayed = APIImageLists::Create()->ImportImageList(f2, key);
  EXPECT_FALSE(delayed->Images()->IsDecoded());
  ExpectSameList(*s.list, *delayed);
}

TEST(Livl, KeyCollisionsOnImportGetACounter) {
  Sample s = MakeSample(1);
  std::vector<uint8_t> blob = Export(s);
  String key;
  auto second = s.lists->ImportImageList(blob, key);
  EXPECT_EQ(key, u"icons(1)");
  EXPECT_EQ(second->Key(), u"icons(1)");
  key.clear();
  s.lists->ImportImageList(blob, key);
  EXPECT_EQ(key, u"icons(2)");
  key = u"ICONS";  // a key given by the caller is checked the same way
  s.lists->ImportImageList(blob, key);
  EXPECT_EQ(key, u"ICONS(3)");
  key = u"other";
  s.lists->ImportImageList(blob, key);
  EXPECT_EQ(key, u"other");
  EXPECT_EQ(s.lists->Count(), 5);
}

TEST(Livl, TruncatedAndDamagedBlobsNeverCrashAndLeaveNoTrace) {
  Sample s = MakeSample(4);
  s.list->Images()->Item(1)->Tag(String(600, u't'));  // compressed names as well
  std::vector<uint8_t> blob = Export(s);
  auto lists = APIImageLists::Create();
  for (size_t cut = 0; cut < blob.size(); ++cut) {
    std::vector<uint8_t> part(blob.begin(), blob.begin() + static_cast<long>(cut));
    String key;
    try {
      // The picture reader forgives a PNG cut inside its closing chunk, so the last few
      // lengths may give a complete list; anything shorter gives nothing or 1975.
      if (auto l = lists->ImportImageList(part, key)) {
        EXPECT_GT(cut, blob.size() - 16);
        EXPECT_EQ(l->Images()->Count(), 4);
        lists->Clear();
      }
    } catch (const RuntimeError& e) {
      EXPECT_EQ(e.Number(), 1975) << cut;
    }
    EXPECT_EQ(lists->Count(), 0) << cut;
  }
  // Bytes changed one at a time: an error or a list, never a crash.
  for (size_t i = 0; i < blob.size(); i += 7) {
    std::vector<uint8_t> bad = blob;
    bad[i] ^= 0xA5;
    String key;
    try {
      if (auto l = lists->ImportImageList(bad, key)) (void)l->Images()->Count();
    } catch (const RuntimeError&) {
    }
  }
}

TEST(Livl, ExportErrors) {
  auto lists = APIImageLists::Create();
  std::vector<uint8_t> out;
  try {
    lists->ExportImageList(u"nope", out);
    ADD_FAILURE();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1962);
    EXPECT_EQ(e.Source(), u"ImageLists.ExportImageList");
  }
  auto list = lists->Add(5, 4, u"x");
  // A tag too long for its 16-bit length field: the error under way, with the list's key as text.
  list->Images()->AddImage_fromDIB(*Pattern(1), Variant::Missing(), u"", String(32768, u't'));
  try {
    lists->ExportImageList(1, out);
    ADD_FAILURE();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1976);
    EXPECT_EQ(e.Description(), u"x");
  }
  list->Images()->Item(1)->Tag(String(32767, u't'));
  EXPECT_NO_THROW(lists->ExportImageList(1, out));
  try {
    lists->ExportToFile(1, "/nonexistent-dir/x.lIL");
    ADD_FAILURE();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 1976);
    EXPECT_EQ(e.Description(), u"Error exporting image list. Ensure enough disk space and valid write-permissions");
  }
}

TEST(Livl, FilesHoldTheBlobAsItStands) {
  Sample s = MakeSample(3);
  std::string path = (std::filesystem::temp_directory_path() / "mx_livl_test.lIL").string();
  s.lists->ExportToFile(u"icons", path);
  auto fresh = APIImageLists::Create();
  String key;
  auto back = fresh->ImportFromFile(path, key);
  ExpectSameList(*s.list, *back);
  std::vector<uint8_t> again;
  fresh->ExportImageList(1, again);
  EXPECT_EQ(std::filesystem::file_size(path), again.size());
  std::remove(path.c_str());
  EXPECT_THROW(fresh->ImportFromFile(path, key), RuntimeError);
}

}  // namespace
}  // namespace mx::imagelist
