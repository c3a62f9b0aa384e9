// Image lists of the host's common controls read from a form and its companion file.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ImageListTestSupport.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "imagelist/FormFileImport.h"

namespace mx::imagelist {
namespace {

namespace fs = std::filesystem;
using test::PixelAt;

const std::string kForm = std::string(MX_TESTDATA_DIR) + "/imagelist/icons.frm";

TEST(FormFileImport, ReadsEveryListWithItsImagesKeysAndTags) {
  auto lists = APIImageLists::Create();
  lists->Add(16, 16, u"4x4");  // taken: the form's lists count on from it
  FormImportResult r = ImportImageListsFromForm(*lists, kForm);
  ASSERT_TRUE(r.isForm) << r.error;
  EXPECT_EQ(r.imagesSkipped, 0);
  ASSERT_EQ(r.lists.size(), 3u);
  EXPECT_EQ(r.lists[0]->Key(), u"4x4(1)");
  EXPECT_EQ(r.lists[1]->Key(), u"4x4(2)");
  EXPECT_EQ(r.lists[2]->Key(), u"4x8");  // height first, then width
  EXPECT_EQ(lists->Count(), 4);

  auto small = r.lists[0]->Images();
  ASSERT_EQ(small->Count(), 4);
  EXPECT_EQ(small->Item(1)->Key(), u"red");
  EXPECT_EQ(small->Item(1)->Tag(), u"first \"one\"");
  EXPECT_EQ(small->Item(2)->Key(), u"");
  EXPECT_EQ(small->Item(3)->Tag(), u"3");
  const auto& strip = small->Sheet();
  EXPECT_EQ(PixelAt(strip, 1, 1), 0xFFFF0000u);
  EXPECT_EQ(PixelAt(strip, 5, 3), 0xFF00FF00u);
  EXPECT_EQ(PixelAt(strip, 10, 2), 0xFF0000FFu);
  EXPECT_EQ(PixelAt(strip, 12, 0), 0xFFFFFFFFu);
  EXPECT_EQ(PixelAt(strip, 13, 0), 0u);
  // Keys belong to their own list: "RED" in another list is no collision.
  EXPECT_EQ(r.lists[1]->Images()->Item(u"red")->Index(), 1);

  // A 4x4 picture in an 8x4 list sits centred.
  const auto& wide = r.lists[2]->Images()->Sheet();
  EXPECT_EQ(PixelAt(wide, 1, 2), 0u);
  EXPECT_EQ(PixelAt(wide, 2, 2), 0xFFFF0000u);
  EXPECT_EQ(PixelAt(wide, 5, 0), 0xFFFF0000u);
  EXPECT_EQ(PixelAt(wide, 6, 3), 0u);
}

TEST(FormFileImport, RefusesWhatIsNoFormAndDamagedCompanions) {
  auto lists = APIImageLists::Create();
  FormImportResult r = ImportImageListsFromForm(*lists, std::string(MX_TESTDATA_DIR) + "/imagelist/icons.frx");
  EXPECT_FALSE(r.isForm);
  EXPECT_NE(r.error.find("not a form"), std::string::npos);
  r = ImportImageListsFromForm(*lists, "/no/such/form.frm");
  EXPECT_FALSE(r.isForm);

  // The companion cut short: the reader refuses the form as a whole, and nothing is added.
  fs::path dir = fs::temp_directory_path() / "mx_form_import_test";
  fs::create_directories(dir);
  fs::copy_file(kForm, dir / "icons.frm", fs::copy_options::overwrite_existing);
  std::ifstream in(std::string(MX_TESTDATA_DIR) + "/imagelist/icons.frx", std::ios::binary);
  std::string frx((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::ofstream((dir / "icons.frx").string(), std::ios::binary).write(frx.data(), 150);
  r = ImportImageListsFromForm(*lists, (dir / "icons.frm").string());
  EXPECT_FALSE(r.isForm);
  EXPECT_FALSE(r.error.empty());
  EXPECT_EQ(lists->Count(), 0);

  // An image whose bytes are no picture is skipped; the rest of the list comes in.
  std::string damaged = frx;
  damaged[0x67 + 28] = 'X';  // the green picture's PNG signature
  std::ofstream((dir / "icons.frx").string(), std::ios::binary | std::ios::trunc)
      .write(damaged.data(), static_cast<long>(damaged.size()));
  r = ImportImageListsFromForm(*lists, (dir / "icons.frm").string());
  ASSERT_TRUE(r.isForm) << r.error;
  EXPECT_EQ(r.imagesSkipped, 1);
  EXPECT_EQ(r.lists[0]->Images()->Count(), 3);
  fs::remove_all(dir);
}

}  // namespace
}  // namespace mx::imagelist
