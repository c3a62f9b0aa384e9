#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "utility/MX.h"

namespace mx::utility {
namespace {

namespace fs = std::filesystem;

class LoadStringFromFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir = fs::temp_directory_path() / ("mxutil_files_" + std::to_string(::getpid()));
    fs::create_directories(m_dir);
  }
  void TearDown() override { fs::remove_all(m_dir); }

  host::String Write(const std::string& name, const std::string& bytes) {
    const fs::path path = m_dir / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return host::FromUtf8(path.string());
  }

  fs::path m_dir;
};

// "Ação €" in each encoding.
const std::string kUtf8 = "A\xC3\xA7\xC3\xA3o \xE2\x82\xAC";
const std::string kUtf16LE = std::string("A\0\xE7\0\xE3\0o\0 \0\xAC\x20", 12);
const std::string kUtf16BE = std::string("\0A\0\xE7\0\xE3\0o\0 \x20\xAC", 12);
const std::string kCp1252 = "A\xE7\xE3o \x80";

TEST_F(LoadStringFromFileTest, DetectsTheEncodingFromTheFirstBytes) {
  MX mx;
  const host::String expected = u"Ação €";
  EXPECT_EQ(mx.LoadStringFromFile(Write("utf8.txt", "\xEF\xBB\xBF" + kUtf8)), expected);
  EXPECT_EQ(mx.LoadStringFromFile(Write("le.txt", "\xFF\xFE" + kUtf16LE)), expected);
  EXPECT_EQ(mx.LoadStringFromFile(Write("be.txt", "\xFE\xFF" + kUtf16BE)), expected);
  EXPECT_EQ(mx.LoadStringFromFile(Write("ansi.txt", kCp1252)), expected);
  // Without a byte-order mark UTF-8 is taken for ANSI, as the detection only knows marks.
  EXPECT_EQ(mx.LoadStringFromFile(Write("bare.txt", kUtf8)), u"AÃ§Ã£o â‚¬");
}

TEST_F(LoadStringFromFileTest, AGivenEncodingIsObeyedAndItsMarkSkipped) {
  MX mx;
  EXPECT_EQ(mx.LoadStringFromFile(Write("a.txt", kUtf8), EncUTF8), u"Ação €");
  EXPECT_EQ(mx.LoadStringFromFile(Write("b.txt", kUtf16LE), EncUnicode), u"Ação €");
  EXPECT_EQ(mx.LoadStringFromFile(Write("c.txt", "\xFE\xFF" + kUtf16BE), EncUnicodeBigEndian), u"Ação €");
  EXPECT_EQ(mx.LoadStringFromFile(Write("d.txt", "\xEF\xBB\xBF" "a"), EncANSI), u"ï»¿a");
}

TEST_F(LoadStringFromFileTest, Windows1252HighRangeAndOddEnds) {
  MX mx;
  // 0x80..0x9F are the typographic characters, the undefined ones their C1 code points.
  EXPECT_EQ(mx.LoadStringFromFile(Write("hi.txt", "\x80\x81\x85\x8A\x93\x94\x96\x99\x9F\xA0\xFF")),
            u"€\u0081…Š“”–™Ÿ\u00A0ÿ");
  // Half a UTF-16 unit at the end is dropped.
  EXPECT_EQ(mx.LoadStringFromFile(Write("odd.txt", std::string("\xFF\xFE" "a\0b", 5))), u"a");
  EXPECT_EQ(mx.LoadStringFromFile(Write("empty.txt", "")), u"");
  EXPECT_EQ(mx.LoadStringFromFile(Write("one.txt", "\xEF")), u"ï");
}

TEST_F(LoadStringFromFileTest, MissingFilesAndDirectoriesGiveEmptyText) {
  MX mx;
  EXPECT_EQ(mx.LoadStringFromFile(host::FromUtf8((m_dir / "none.txt").string())), u"");
  EXPECT_EQ(mx.LoadStringFromFile(host::FromUtf8(m_dir.string())), u"");
  EXPECT_EQ(mx.LoadStringFromFile(u""), u"");
}

}  // namespace
}  // namespace mx::utility
