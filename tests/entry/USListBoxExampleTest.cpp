// The lists example: its form and database load, the list fills, and the picture is written;
// a form without a list and a missing form fail with a message.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "entry/ListsExample.h"
#include "platform/Clock.h"
#include "platform/WindowTestSupport.h"
#include "support/Golden.h"

namespace {

class ListsExampleTest : public mx::platform::testing::WindowingTest {};

TEST_F(ListsExampleTest, RendersTheFormFilledFromTheDatabase) {
  const std::string out = ::testing::TempDir() + "lists_example.png";
  std::ostringstream err;
  ASSERT_EQ(mx::entry::RenderListsExample(std::string(MX_SOURCE_DIR) + "/examples/lists.frm",
                                          std::string(MX_SOURCE_DIR) + "/examples/lists.db", out, err),
            0)
      << err.str();
  int w = 0, h = 0;
  std::vector<uint32_t> px;
  ASSERT_TRUE(mx::test::ReadPngFile(out, w, h, px));
  EXPECT_GE(w, 640);
  EXPECT_GE(h, 400);
  std::remove(out.c_str());
}

TEST_F(ListsExampleTest, FailsWithAMessage) {
  std::ostringstream err;
  EXPECT_EQ(mx::entry::RenderListsExample(std::string(MX_SOURCE_DIR) + "/examples/none.frm",
                                          std::string(MX_SOURCE_DIR) + "/examples/lists.db", "x.png", err),
            1);
  EXPECT_NE(err.str().find("none.frm"), std::string::npos);
  const std::string empty = ::testing::TempDir() + "empty_lists.frm";
  if (FILE* f = std::fopen(empty.c_str(), "w")) {
    std::fputs("VERSION 5.00\nBegin VB.Form frmEmpty\n   ClientHeight = 3000\n   ClientWidth = 4000\nEnd\n", f);
    std::fclose(f);
  }
  std::ostringstream err2;
  EXPECT_EQ(mx::entry::RenderListsExample(empty, std::string(MX_SOURCE_DIR) + "/examples/lists.db", "x.png", err2), 1);
  EXPECT_NE(err2.str().find("no USListBox"), std::string::npos) << err2.str();
  // A database without the towns fails after the form and its list were loaded: the form goes.
  std::ostringstream err3;
  EXPECT_EQ(mx::entry::RenderListsExample(std::string(MX_SOURCE_DIR) + "/examples/lists.frm",
                                          std::string(MX_SOURCE_DIR) + "/examples/grid.db", "x.png", err3),
            1);
  EXPECT_NE(err3.str().find("error"), std::string::npos) << err3.str();
  std::remove(empty.c_str());
}

}  // namespace
