// Text through window DCs and the screen DC: the same pixels as in a memory DC, placed at the
// client area's origin, and never outside the window's visible part.
#include <gtest/gtest.h>

#include "TextTestSupport.h"
#include "platform/Window.h"

namespace mx::platform {
namespace {

using testing::MakeLogFont;
using testing::TextCanvas;

class TextWindowDC : public ::testing::Test {
 protected:
  void SetUp() override {
    static bool registered = false;
    if (!registered) {
      registered = RegisterWindowClass(u"TextProbe", [](HWND h, UINT m, WPARAM w, LPARAM l) {
                     return DefWindowProc(h, m, w, l);
                   }) != 0;
    }
    ASSERT_TRUE(registered);
  }
};

// Fills a DC's whole surface with one value, so that pictures can be compared.
void Fill(HDC dc, uint32_t v) {
  Surface* s = LookupDC(dc)->surface;
  for (int y = 0; y < s->height; ++y) std::fill(s->row(y), s->row(y) + s->width, v);
}

TEST_F(TextWindowDC, ChildWindowDrawsAtItsOriginAndStaysInside) {
  HWND top = CreateWindowExW(0, u"TextProbe", u"", WS_POPUP | WS_VISIBLE, 40, 30, 200, 120, 0);
  ASSERT_NE(top, 0u);
  HWND child = CreateWindowExW(0, u"TextProbe", u"", WS_CHILD | WS_VISIBLE, 20, 10, 60, 30, top);
  ASSERT_NE(child, 0u);

  LOGFONTW lf = MakeLogFont(u"Arial", -16);
  HFONT font = CreateFontIndirectW(&lf);
  HDC dc = GetDC(child);
  ASSERT_NE(dc, 0u);
  Fill(dc, 0xFFFFFFFF);
  HGDIOBJ old = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  // No clipping by the text call: only the window's own bounds hold the text in.
  RECT r{4, 6, 300, 100};
  DrawTextW(dc, u"Wide text that leaves the child", &r, DT_NOCLIP);
  const Surface& s = *LookupDC(dc)->surface;
  const POINT origin = LookupDC(dc)->origin;

  // The same call in a memory DC, shifted by the child's place on the window surface.
  TextCanvas ref(s.width, s.height, lf);
  RECT rr{4 + origin.x, 6 + origin.y, 300 + origin.x, 100 + origin.y};
  DrawTextW(ref.dc(), u"Wide text that leaves the child", &rr, DT_NOCLIP);
  int inside = 0;
  for (int y = 0; y < s.height; ++y) {
    for (int x = 0; x < s.width; ++x) {
      const bool in = x >= origin.x && x < origin.x + 60 && y >= origin.y && y < origin.y + 30;
      const uint32_t got = s.row(y)[x];
      if (in) {
        EXPECT_EQ(got, ref.at(x, y)) << x << "," << y;
        inside += got != 0xFFFFFFFF;
      } else {
        EXPECT_EQ(got, 0xFFFFFFFFu) << x << "," << y;
      }
    }
  }
  EXPECT_GT(inside, 20);
  SelectObject(dc, old);
  ReleaseDC(child, dc);
  DeleteObject(font);
  DestroyWindow(top);
}

TEST_F(TextWindowDC, ScreenDCMeasuresAndDraws) {
  HDC screen = GetDC(0);
  ASSERT_NE(screen, 0u);
  TEXTMETRICW tm;
  ASSERT_TRUE(GetTextMetricsW(screen, &tm));
  LOGFONTW lf = MakeLogFont(u"Tahoma", -11);
  HFONT font = CreateFontIndirectW(&lf);
  HGDIOBJ old = SelectObject(screen, font);
  TextCanvas mem(8, 8, lf);
  RECT a{0, 0, 100, 0}, b{0, 0, 100, 0};
  EXPECT_EQ(DrawTextW(screen, u"Measured alike everywhere", &a, DT_CALCRECT | DT_WORDBREAK),
            DrawTextW(mem.dc(), u"Measured alike everywhere", &b, DT_CALCRECT | DT_WORDBREAK));
  EXPECT_EQ(a, b);
  // Drawing on the screen changes the pixels under the text only.
  const Surface* s = LookupDC(screen)->surface;
  ASSERT_TRUE(s && !s->empty());
  std::vector<uint32_t> rows;
  for (int y = 0; y < 40; ++y) rows.insert(rows.end(), s->row(y), s->row(y) + 120);
  SetBkMode(screen, TRANSPARENT);
  SetTextColor(screen, RGB(0xFF, 0, 0xFF));
  TextOutW(screen, 10, 10, u"Screen");
  const int w = mem.extent(u"Screen"), h = mem.metrics().tmHeight;
  int changed = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 120; ++x) {
      const bool differs = s->row(y)[x] != rows[static_cast<size_t>(y) * 120 + x];
      if (differs) {
        ++changed;
        EXPECT_TRUE(x >= 9 && x < 10 + w + 1 && y >= 10 && y < 10 + h) << x << "," << y;
      }
    }
  }
  EXPECT_GT(changed, 10);
  SelectObject(screen, old);
  ReleaseDC(0, screen);
  DeleteObject(font);
}

}  // namespace
}  // namespace mx::platform
