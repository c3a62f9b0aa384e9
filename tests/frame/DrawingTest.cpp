// The shared drawing helpers: colours resolved as each helper promises, GDI objects released
// and restored, the ANSI count of DrawTextAPI, and the window-level helpers.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "frame/Drawing.h"
#include "platform/Desktop.h"
#include "platform/GdiTestSupport.h"
#include "platform/HandleTable.h"
#include "platform/Messages.h"
#include "platform/SysColors.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::frame {
namespace {

using platform::HandleType;
using platform::LiveHandleCount;
using platform::RECT;
using platform::test::Canvas;

constexpr uint32_t kPaper = 0xFF777777;

// A DIB pixel (0x00RRGGBB, alpha ignored) of an OLE_COLOR.
uint32_t Dib(int32_t oleColor) {
  return static_cast<uint32_t>(host::ColorRed(oleColor) << 16 | host::ColorGreen(oleColor) << 8 |
                               host::ColorBlue(oleColor));
}

// The pixels of the canvas as text: '#' for `ink` (alpha ignored), '.' for paper, '?' otherwise.
std::string Picture(const Canvas& c, uint32_t ink) {
  std::string s;
  for (int y = 0; y < c.height(); ++y) {
    for (int x = 0; x < c.width(); ++x) {
      const uint32_t p = c.at(x, y);
      s += p == kPaper ? '.' : (p & 0xFFFFFF) == ink ? '#' : '?';
    }
    s += '\n';
  }
  return s;
}

class DrawingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_pens = LiveHandleCount(HandleType::Pen);
    m_brushes = LiveHandleCount(HandleType::Brush);
    m_regions = LiveHandleCount(HandleType::Region);
  }
  void TearDown() override {
    platform::ResetSysColors();
    // Every helper releases what it created.
    EXPECT_EQ(LiveHandleCount(HandleType::Pen), m_pens);
    EXPECT_EQ(LiveHandleCount(HandleType::Brush), m_brushes);
    EXPECT_EQ(LiveHandleCount(HandleType::Region), m_regions);
  }
  static void SetSysColor(int index, platform::COLORREF color) { platform::SetSysColors(1, &index, &color); }

 private:
  int m_pens = 0, m_brushes = 0, m_regions = 0;
};

TEST_F(DrawingTest, FillRectColorFillsExactlyTheRectangle) {
  Canvas c(5, 4, kPaper);
  FillRectColor(c.dc(), RECT{1, 1, 4, 3}, 0x102030);
  EXPECT_EQ(Picture(c, 0x302010),
            ".....\n"
            ".###.\n"
            ".###.\n"
            ".....\n");
  // Inverted rectangles are empty, not turned round.
  FillRectColor(c.dc(), RECT{4, 3, 0, 0}, 0x102030);
  FillRectColor(c.dc(), RECT{0, 3, 5, 0}, 0x102030);
  EXPECT_EQ(c.at(0, 0), kPaper);
  EXPECT_EQ(c.at(4, 3), kPaper);
}

TEST_F(DrawingTest, LinesTranslateSystemColoursAndRestoreThePen) {
  SetSysColor(platform::COLOR_HIGHLIGHT, 0xC08040);
  Canvas c(6, 3, kPaper);
  const platform::HGDIOBJ penBefore = platform::GetCurrentObject(c.dc(), platform::OBJ_PEN);
  DrawLineColor(c.dc(), 0, 1, 4, 1, host::vbHighlight);
  EXPECT_EQ(Picture(c, Dib(0xC08040)),
            "......\n"
            "####..\n"
            "......\n");
  EXPECT_EQ(platform::GetCurrentObject(c.dc(), platform::OBJ_PEN), penBefore);
}

TEST_F(DrawingTest, FrameOutlineTranslatesItsColour) {
  SetSysColor(platform::COLOR_BTNSHADOW, 0x405060);
  Canvas c(6, 5, kPaper);
  FrameRectColor(c.dc(), RECT{0, 0, 6, 5}, host::vbButtonShadow);
  EXPECT_EQ(Picture(c, Dib(0x405060)),
            "######\n"
            "#....#\n"
            "#....#\n"
            "#....#\n"
            "######\n");

}

TEST_F(DrawingTest, FocusMarkSitsTwoPixelsInside) {
  Canvas c(10, 8, 0x00FFFFFF);
  platform::SetTextColor(c.dc(), 0x0000FF);
  DrawFocusMark(c.dc(), RECT{0, 0, 10, 8});
  EXPECT_EQ(platform::GetTextColor(c.dc()), 0u);
  // Outside the inset frame and inside it nothing changes; on it, every other pixel does.
  for (int x = 0; x < 10; ++x) {
    EXPECT_EQ(c.at(x, 1), 0x00FFFFFFu) << x;
    EXPECT_EQ(c.at(x, 6), 0x00FFFFFFu) << x;
  }
  EXPECT_EQ(c.at(4, 4), 0x00FFFFFFu);
  int changedOnTop = 0;
  for (int x = 2; x < 8; ++x) changedOnTop += c.at(x, 2) != 0x00FFFFFFu;
  EXPECT_EQ(changedOnTop, 3);
}

TEST_F(DrawingTest, DrawTextApiCountsAnsiBytes) {
  EXPECT_EQ(AnsiByteLength(u"a\u00e7\u20ac"), 3);  // c cedilla and the euro sign: one byte each
  EXPECT_EQ(AnsiByteLength(u"\xDE00\xD83D"), 2);   // a low before a high is no pair: two "?"

  Canvas c(200, 40, 0x00FFFFFF);
  const std::u16string text = u"x\U0001F600yz";  // 5 units, 4 ANSI bytes: "z" is not drawn

  RECT viaApi{0, 0, 200, 40};
  const int32_t height = DrawTextAPI(c.dc(), text, viaApi, platform::DT_CALCRECT | platform::DT_SINGLELINE);
  RECT firstFour{0, 0, 200, 40};
  platform::DrawTextW(c.dc(), text.data(), 4, &firstFour, platform::DT_CALCRECT | platform::DT_SINGLELINE);
  RECT whole{0, 0, 200, 40};
  platform::DrawTextW(c.dc(), text.data(), 5, &whole, platform::DT_CALCRECT | platform::DT_SINGLELINE);

  EXPECT_GT(height, 0);
  EXPECT_EQ(height, firstFour.bottom);
  EXPECT_EQ(viaApi, firstFour);
  EXPECT_LT(viaApi.right, whole.right);
}

class WindowHelpersTest : public DrawingTest {
 protected:
  void SetUp() override {
    DrawingTest::SetUp();
    platform::ResetWindowing();
    platform::RegisterWindowClass(u"FrameTestWindow", [](platform::HWND h, platform::UINT m, platform::WPARAM w,
                                                         platform::LPARAM l) {
      return platform::DefWindowProc(h, m, w, l);
    });
    m_hwnd = platform::CreateWindowExW(0, u"FrameTestWindow", u"", platform::WS_POPUP | platform::WS_VISIBLE, 10,
                                       10, 30, 20, 0);
    ASSERT_NE(m_hwnd, 0u);
  }
  void TearDown() override {
    platform::DestroyWindow(m_hwnd);
    platform::ResetWindowing();
    DrawingTest::TearDown();
  }
  platform::HWND m_hwnd = 0;
};

TEST_F(WindowHelpersTest, TranslucencyMakesTheWindowLayeredWithItsAlpha) {
  platform::SetWindowLong(m_hwnd, platform::GWL_EXSTYLE, platform::WS_EX_TOOLWINDOW);
  SetWindowTranslucency(m_hwnd, 128);
  const auto ex = static_cast<platform::DWORD>(platform::GetWindowLong(m_hwnd, platform::GWL_EXSTYLE));
  EXPECT_EQ(ex, platform::WS_EX_LAYERED | platform::WS_EX_TOOLWINDOW);  // added, nothing taken away
  platform::BYTE alpha = 0;
  platform::DWORD flags = 0;
  ASSERT_TRUE(platform::GetLayeredWindowAttributes(m_hwnd, nullptr, &alpha, &flags));
  EXPECT_EQ(alpha, 128);
  EXPECT_EQ(flags, platform::LWA_ALPHA);

  SetWindowTranslucency(m_hwnd, 0);
  ASSERT_TRUE(platform::GetLayeredWindowAttributes(m_hwnd, nullptr, &alpha, &flags));
  EXPECT_EQ(alpha, 0);
}

TEST_F(WindowHelpersTest, RoundedCornersGiveTheWindowARegionItKeeps) {
  SetRoundedCorners(m_hwnd, 30, 20, 3, 3);
  RECT box{};
  EXPECT_NE(platform::GetWindowRgnBox(m_hwnd, &box), platform::ERROR);
  EXPECT_EQ(box, (RECT{0, 0, 30, 20}));
  const platform::HRGN copy = platform::CreateRectRgn(0, 0, 0, 0);
  ASSERT_NE(platform::GetWindowRgn(m_hwnd, copy), platform::ERROR);
  EXPECT_FALSE(platform::PtInRegion(copy, 0, 0));
  EXPECT_TRUE(platform::PtInRegion(copy, 15, 10));
  EXPECT_TRUE(platform::PtInRegion(copy, 29, 10));
  platform::DeleteObject(copy);

  // A second call replaces the region; the window frees the old one, and its own goes with it.
  SetRoundedCorners(m_hwnd, 10, 10, 3, 3);
  EXPECT_NE(platform::GetWindowRgnBox(m_hwnd, &box), platform::ERROR);
  EXPECT_EQ(box, (RECT{0, 0, 10, 10}));
}

}  // namespace
}  // namespace mx::frame
