#include <gtest/gtest.h>

#include "utility/APIStringBuilder.h"

namespace mx::utility {
namespace {

TEST(APIStringBuilder, KeepsEveryAppendAcrossGrowth) {
  APIStringBuilder builder;
  host::String expected;
  // Mixed pieces that straddle several doublings of the buffer.
  for (int i = 0; i < 5000; ++i) {
    if (i % 3 == 0) {
      const host::String piece(static_cast<size_t>(i % 17), static_cast<char16_t>(u'a' + i % 26));
      builder.Append(piece);
      expected += piece;
    } else {
      const char16_t c = static_cast<char16_t>(0x00C0 + i % 64);
      builder.Append(c);
      expected += c;
    }
    ASSERT_EQ(builder.Length(), static_cast<int32_t>(expected.size()));
  }
  EXPECT_EQ(builder.ToString(), expected);
  EXPECT_GE(builder.Capacity(), expected.size());
  EXPECT_LT(builder.Capacity(), expected.size() * 2 + 64);
}

TEST(APIStringBuilder, ClearEmptiesButKeepsTheBuffer) {
  APIStringBuilder builder;
  builder.Append(u"olá mundo");
  const size_t capacity = builder.Capacity();
  builder.Clear();
  EXPECT_EQ(builder.Length(), 0);
  EXPECT_EQ(builder.ToString(), u"");
  EXPECT_EQ(builder.Capacity(), capacity);
  builder.Append(u'x');
  builder.Append(u"");
  EXPECT_EQ(builder.ToString(), u"x");
}

}  // namespace
}  // namespace mx::utility
