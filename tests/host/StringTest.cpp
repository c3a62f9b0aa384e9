#include "host/String.h"

#include <gtest/gtest.h>

namespace mx::host {
namespace {

TEST(Utf, RoundTripsAcrossPlanes) {
  std::string text = "Ação ñ € 𝄞 end";
  String wide = FromUtf8(text);
  EXPECT_EQ(wide.size(), 15u);  // the clef is a surrogate pair
  EXPECT_EQ(ToUtf8(wide), text);
}

TEST(Utf, BadBytesBecomeReplacementCharacters) {
  EXPECT_EQ(FromUtf8("a\xC3"), u"a\uFFFD");          // truncated sequence
  EXPECT_EQ(FromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");  // overlong slash
  EXPECT_EQ(FromUtf8("\xED\xA0\x80x"), u"\uFFFD\uFFFD\uFFFDx");  // encoded surrogate
  EXPECT_EQ(ToUtf8(u"\xD800z"), "\xEF\xBF\xBDz");
}

}  // namespace
}  // namespace mx::host
