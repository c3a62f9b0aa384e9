// The mxil commands, run through the same function the program calls.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include <unistd.h>

#include "ImageListTestSupport.h"
#include "imagelist/ListCommands.h"

namespace mx::imagelist {
namespace {

namespace fs = std::filesystem;
using test::PixelAt;
using test::Solid;

struct Result {
  int code;
  std::string out, err;
};

Result RunMxil(std::vector<std::string> args) {
  std::ostringstream out, err;
  int code = RunImageListCommand(args, out, err);
  return {code, out.str(), err.str()};
}

class MxilCommands : public ::testing::Test {
 protected:
  void SetUp() override {
    // One folder per test and process: ctest runs the tests of this suite side by side.
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    dir = fs::temp_directory_path() / ("mx_mxil_" + std::string(info->name()) + "_" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    ASSERT_TRUE(Solid(6, 6, 0xFFFF0000)->SaveToFile_PNG(host::FromUtf8((dir / "red.png").string())));
    auto two = Solid(6, 3, 0xFF0000FF);
    ASSERT_TRUE(two->SaveToFile_PNG(host::FromUtf8((dir / "blue.bar.png").string())));
  }
  void TearDown() override { fs::remove_all(dir); }
  std::string P(const char* name) { return (dir / name).string(); }
  fs::path dir;
};

TEST_F(MxilCommands, CreateListExtract) {
  Result r = RunMxil({"create", P("out.lIL"), "--key", "toolbar", "--size", "6x6", P("red.png"), P("blue.bar.png")});
  ASSERT_EQ(r.code, 0) << r.err;
  r = RunMxil({"list", P("out.lIL")});
  ASSERT_EQ(r.code, 0) << r.err;
  EXPECT_EQ(r.out,
            "key=toolbar count=2 width=6 height=6\n"
            "index=1 key=red tag=\n"
            "index=2 key=blue.bar tag=\n");

  // The 6x3 picture was scaled into its 6x6 cell, centred top to bottom.
  r = RunMxil({"extract", P("out.lIL"), "2", P("two.png")});
  ASSERT_EQ(r.code, 0) << r.err;
  image::API32bppDIB back;
  ASSERT_TRUE(back.LoadPicture_File(host::FromUtf8(P("two.png"))));
  EXPECT_EQ(back.Width(), 6);
  EXPECT_EQ(PixelAt(back, 3, 0), 0u);
  EXPECT_EQ(PixelAt(back, 3, 2), 0xFF0000FFu);
  EXPECT_EQ(PixelAt(back, 3, 5), 0u);
  r = RunMxil({"extract", P("out.lIL"), "red", P("one.png")});
  EXPECT_EQ(r.code, 0) << r.err;
}

TEST_F(MxilCommands, BadInputGivesClearErrors) {
  EXPECT_EQ(RunMxil({}).code, 2);
  EXPECT_EQ(RunMxil({"create", P("o.lIL"), "--size", "6x6", P("red.png")}).code, 2);  // no key
  EXPECT_EQ(RunMxil({"create", P("o.lIL"), "--key", "k", "--size", "6by6"}).code, 2);
  EXPECT_EQ(RunMxil({"list"}).code, 2);
  Result r = RunMxil({"create", P("o.lIL"), "--key", "k", "--size", "6x6", P("missing.png")});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("missing.png"), std::string::npos);
  r = RunMxil({"create", P("o.lIL"), "--key", "k", "--size", "6x6", P("red.png"), P("red.png")});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("1963"), std::string::npos);
  r = RunMxil({"list", P("red.png")});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("Failed to Import external image list"), std::string::npos);
  ASSERT_EQ(RunMxil({"create", P("o.lIL"), "--key", "k", "--size", "6x6", P("red.png")}).code, 0);
  r = RunMxil({"extract", P("o.lIL"), "5", P("x.png")});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("Invalid Key or Index"), std::string::npos);
}

TEST_F(MxilCommands, ImportFormWritesOneFilePerList) {
  Result r = RunMxil({"import-frm", std::string(MX_TESTDATA_DIR) + "/imagelist/icons.frm", P("lists")});
  ASSERT_EQ(r.code, 0) << r.err;
  EXPECT_TRUE(fs::exists(dir / "lists" / "ImageList_4x4.lIL"));
  EXPECT_TRUE(fs::exists(dir / "lists" / "ImageList_4x4(1).lIL"));
  EXPECT_TRUE(fs::exists(dir / "lists" / "ImageList_4x8.lIL"));
  r = RunMxil({"list", P("lists/ImageList_4x4.lIL")});
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "key=4x4 count=4 width=4 height=4");
  EXPECT_NE(r.out.find("index=1 key=red tag=first \"one\"\n"), std::string::npos);
  r = RunMxil({"import-frm", P("red.png"), P("lists")});
  EXPECT_EQ(r.code, 1);
}

}  // namespace
}  // namespace mx::imagelist
