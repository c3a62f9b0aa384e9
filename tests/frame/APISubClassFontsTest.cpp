// Font enumeration through a callback block: every family to EnumCallback, or to an owner that
// may stop the walk.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "frame/APISubClass.h"
#include "platform/FontEnum.h"
#include "platform/Gdi.h"

namespace mx::frame {
namespace {

using namespace mx::platform;

class FontOwner : public SubclassOwner {
 public:
  std::function<LRESULT(int32_t, std::span<const intptr_t>)> onCallback;
  LRESULT CallbackProc(int32_t ordinal, std::span<const intptr_t> args) override { return onCallback(ordinal, args); }
};

class APISubClassFontsTest : public ::testing::Test {
 protected:
  void SetUp() override { m_dc = CreateCompatibleDC(0); }
  void TearDown() override { DeleteDC(m_dc); }

  // The platform's own listing, for comparison.
  [[nodiscard]] std::vector<host::String> PlatformNames() const {
    std::vector<host::String> names;
    EnumFontFamiliesW(
        m_dc, nullptr,
        [&](const LOGFONTW* lf, const TEXTMETRICW*, DWORD, LPARAM) {
          names.emplace_back(lf->lfFaceName);
          return 1;
        },
        0);
    return names;
  }

  HDC m_dc = 0;
};

TEST_F(APISubClassFontsTest, RaisesEveryFamilyInThePlatformsOrder) {
  APISubClass sc;
  std::vector<host::String> raised;
  sc.EnumCallback.connect([&](intptr_t v) { raised.push_back(APISubClass::EnumFontName(v)); });
  sc.EnumFonts(m_dc);
  EXPECT_EQ(raised, PlatformNames());
  EXPECT_NE(std::find(raised.begin(), raised.end(), u"MS Sans Serif"), raised.end());
  EXPECT_TRUE(APISubClass::EnumFontName(0).empty());

  // The block is released afterwards, so a second run lists the same again.
  raised.clear();
  sc.EnumFonts(m_dc);
  EXPECT_EQ(raised, PlatformNames());
}

TEST_F(APISubClassFontsTest, OwnerGetsThePlatformArgumentsAndMayStop) {
  APISubClass sc;
  int raised = 0;
  sc.EnumCallback.connect([&](intptr_t) { ++raised; });
  FontOwner owner;
  std::vector<host::String> seen;
  owner.onCallback = [&](int32_t ordinal, std::span<const intptr_t> args) -> LRESULT {
    EXPECT_EQ(ordinal, 1);
    EXPECT_EQ(args.size(), 4u);
    const auto* tm = reinterpret_cast<const TEXTMETRICW*>(args[1]);
    EXPECT_NE(tm, nullptr);
    if (tm) {
      EXPECT_GT(tm->tmHeight, 0);
    }
    EXPECT_EQ(args[2], static_cast<intptr_t>(TRUETYPE_FONTTYPE));
    EXPECT_EQ(args[3], 0);
    seen.push_back(reinterpret_cast<const LOGFONTW*>(args[0])->lfFaceName);
    return seen.size() < 3 ? 1 : 0;
  };
  sc.EnumFonts(m_dc, &owner);
  std::vector<host::String> all = PlatformNames();
  ASSERT_GT(all.size(), 3u);
  EXPECT_EQ(seen, std::vector<host::String>(all.begin(), all.begin() + 3));
  EXPECT_EQ(raised, 0);
}

TEST_F(APISubClassFontsTest, NothingForAMissingDCOrAnUnknownProcedure) {
  APISubClass sc;
  int raised = 0;
  sc.EnumCallback.connect([&](intptr_t) { ++raised; });
  HDC gone = CreateCompatibleDC(0);
  DeleteDC(gone);
  sc.EnumFonts(gone);
  sc.EnumFonts(0);
  EXPECT_EQ(raised, 0);

  FontOwner owner;
  int asked = 0;
  owner.onCallback = [&](int32_t, std::span<const intptr_t>) -> LRESULT { return ++asked; };
  sc.EnumFonts(m_dc, &owner, 2);
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(sc.LastErrorRoutine(), "scb_SetCallbackAddr");
  EXPECT_EQ(sc.LastError(), u"Callback address not found.");
}

}  // namespace
}  // namespace mx::frame
