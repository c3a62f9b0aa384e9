// The window's own scroll bars: range rules, showing and hiding with the frame, drawing, and
// the WM_VSCROLL / WM_HSCROLL messages that presses on arrows, track and thumb produce.
#include "platform/ScrollBar.h"

#include <string>

#include "WindowTestSupport.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"

namespace mx::platform::testing {
namespace {

class ScrollBarTest : public WindowingTest {
 protected:
  // A 200 x 150 borderless window at (100, 100) with a vertical bar: client 183 x 150, the bar
  // at x 183..200, arrows 17 high, the track from 17 to 133.
  HWND MakeBarWindow(DWORD extra = WS_VSCROLL) {
    HWND h = Make("w", WS_POPUP | WS_VISIBLE | extra, 100, 100, 200, 150);
    SCROLLINFO si;
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    si.nMin = 0;
    si.nMax = 99;
    si.nPage = 10;
    si.nPos = 0;
    SetScrollInfo(h, SB_VERT, &si, TRUE);
    if (extra & WS_HSCROLL) SetScrollInfo(h, SB_HORZ, &si, TRUE);
    m_record = false;
    return h;
  }
  // Records scroll messages as "V:code:pos" and, like an application, moves the position for
  // line, page and thumb-position codes.
  void RecordScrolls(bool applyPosition = true) {
    for (UINT m : {WM_VSCROLL, WM_HSCROLL}) {
      On(m, [this, m, applyPosition](HWND h, WPARAM w, LPARAM, LRESULT& r) {
        const int code = LOWORD(w), pos = HIWORD(w);
        const int bar = m == WM_VSCROLL ? SB_VERT : SB_HORZ;
        scrolls.push_back(std::string(m == WM_VSCROLL ? "V:" : "H:") + std::to_string(code) +
                          (code == SB_THUMBTRACK || code == SB_THUMBPOSITION ? ":" + std::to_string(pos) : ""));
        if (applyPosition) {
          int p = GetScrollPos(h, bar);
          if (code == SB_LINEDOWN) p += 1;
          if (code == SB_LINEUP) p -= 1;
          if (code == SB_PAGEDOWN) p += 10;
          if (code == SB_PAGEUP) p -= 10;
          if (code == SB_THUMBPOSITION) p = pos;
          SetScrollPos(h, bar, p, TRUE);
        }
        if (onScroll) onScroll(code);
        r = 0;
        return true;
      });
    }
  }
  static void PressAt(int x, int y) {
    InjectMouseMove(x, y);
    InjectMouseButton(MouseButton::Left, true);
  }
  static void Release() { InjectMouseButton(MouseButton::Left, false); }

  std::vector<std::string> scrolls;
  std::function<void(int)> onScroll;
};

TEST_F(ScrollBarTest, PositionIsKeptInsideRangeLessPage) {
  HWND h = MakeBarWindow();
  EXPECT_EQ(SetScrollPos(h, SB_VERT, 500, FALSE), 0);
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 90);  // 99 - (10 - 1)
  EXPECT_EQ(SetScrollPos(h, SB_VERT, -4, FALSE), 90);
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 0);

  // A page larger than the range is cut to the range's size.
  SCROLLINFO si;
  si.fMask = SIF_PAGE | SIF_DISABLENOSCROLL;
  si.nPage = 1000;
  SetScrollInfo(h, SB_VERT, &si, FALSE);
  si.fMask = SIF_ALL;
  ASSERT_TRUE(GetScrollInfo(h, SB_VERT, &si));
  EXPECT_EQ(si.nPage, 100u);
  EXPECT_EQ(si.nTrackPos, si.nPos);

  // Bad bars and masks are refused.
  si.fMask = 0;
  EXPECT_FALSE(GetScrollInfo(h, SB_VERT, &si));
  si.fMask = SIF_POS;
  EXPECT_FALSE(GetScrollInfo(h, SB_CTL, &si));
  EXPECT_FALSE(GetScrollInfo(0x7777, SB_VERT, &si));
}

TEST_F(ScrollBarTest, ShowingABarTakesItsWidthFromTheClientArea) {
  HWND h = Make("w", WS_POPUP | WS_VISIBLE, 100, 100, 200, 150);
  RECT rc;
  GetClientRect(h, &rc);
  EXPECT_EQ(rc.right, 200);
  ShowScrollBar(h, SB_BOTH, TRUE);
  GetClientRect(h, &rc);
  EXPECT_EQ(rc.right, 200 - GetSystemMetrics(SM_CXVSCROLL));
  EXPECT_EQ(rc.bottom, 150 - GetSystemMetrics(SM_CYHSCROLL));
  EXPECT_EQ(GetSystemMetrics(SM_CXVSCROLL), 17);
  ShowScrollBar(h, SB_HORZ, FALSE);
  GetClientRect(h, &rc);
  EXPECT_EQ(rc.bottom, 150);
  EXPECT_EQ(rc.right, 183);
  EXPECT_FALSE(GetWindowLong(h, GWL_STYLE) & WS_HSCROLL);
}

TEST_F(ScrollBarTest, ARangeThatCannotScrollHidesTheBarUnlessAskedToDisable) {
  HWND h = MakeBarWindow();
  SCROLLINFO si;
  si.fMask = SIF_RANGE | SIF_PAGE;
  si.nMin = 0;
  si.nMax = 9;
  si.nPage = 10;
  SetScrollInfo(h, SB_VERT, &si, TRUE);
  EXPECT_FALSE(GetWindowLong(h, GWL_STYLE) & WS_VSCROLL);
  si.nMax = 50;
  SetScrollInfo(h, SB_VERT, &si, TRUE);
  EXPECT_TRUE(GetWindowLong(h, GWL_STYLE) & WS_VSCROLL);
  si.fMask |= SIF_DISABLENOSCROLL;
  si.nMax = 5;
  SetScrollInfo(h, SB_VERT, &si, TRUE);
  EXPECT_TRUE(GetWindowLong(h, GWL_STYLE) & WS_VSCROLL);
  // A disabled bar ignores presses.
  RecordScrolls();
  PressAt(100 + 191, 100 + 140);
  Release();
  PumpMessages();
  EXPECT_TRUE(scrolls.empty());
}

TEST_F(ScrollBarTest, HitTestFindsArrowsTrackAndThumb) {
  HWND h = MakeBarWindow();
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 5}), ScrollBarPart::LineUp);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 20}), ScrollBarPart::Thumb);  // 11 high at 17
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 28}), ScrollBarPart::PageDown);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 140}), ScrollBarPart::LineDown);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {100, 20}), ScrollBarPart::None);
  EXPECT_EQ(ScrollBarHitTest(h, SB_HORZ, {190, 20}), ScrollBarPart::None);
  // At the end the thumb sits at the foot of the track: 17 + 105.
  SetScrollPos(h, SB_VERT, 90, FALSE);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 121}), ScrollBarPart::PageUp);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 122}), ScrollBarPart::Thumb);
  EXPECT_EQ(ScrollBarHitTest(h, SB_VERT, {190, 132}), ScrollBarPart::Thumb);
}

TEST_F(ScrollBarTest, BarIsDrawnWithThumbArrowsAndTrack) {
  HWND h = MakeBarWindow();
  SetScrollPos(h, SB_VERT, 45, TRUE);  // thumb at 17 + 45 * 105 / 90 = 69, 11 high
  HDC dc = GetWindowDC(h);
  EXPECT_EQ(GetPixel(dc, 191, 40), GetSysColor(COLOR_SCROLLBAR));
  EXPECT_EQ(GetPixel(dc, 191, 74), GetSysColor(COLOR_BTNFACE));      // inside the thumb
  EXPECT_EQ(GetPixel(dc, 199, 74), GetSysColor(COLOR_3DDKSHADOW));   // its right edge
  EXPECT_EQ(GetPixel(dc, 191, 85), GetSysColor(COLOR_SCROLLBAR));
  // The up arrow's glyph: the apex line in the middle of the arrow button.
  EXPECT_EQ(GetPixel(dc, 191, 6), GetSysColor(COLOR_BTNTEXT));
  EXPECT_EQ(GetPixel(dc, 186, 6), GetSysColor(COLOR_BTNFACE));
  EnableScrollBar(h, SB_VERT, ESB_DISABLE_UP);
  EXPECT_EQ(GetPixel(dc, 191, 6), GetSysColor(COLOR_GRAYTEXT));
  ReleaseDC(h, dc);
}

TEST_F(ScrollBarTest, ClicksOnArrowsAndTrackSendLineAndPageSteps) {
  HWND h = MakeBarWindow(WS_VSCROLL | WS_HSCROLL);
  RecordScrolls();
  // Client 183 x 133: the vertical bar is 133 high (arrows 17), the horizontal one 183 wide.
  PressAt(100 + 191, 100 + 125);
  Release();
  PumpMessages();
  EXPECT_EQ(scrolls, (std::vector<std::string>{"V:1", "V:8"}));
  scrolls.clear();
  PressAt(100 + 191, 100 + 100);  // below the thumb
  Release();
  PumpMessages();
  EXPECT_EQ(scrolls, (std::vector<std::string>{"V:3", "V:8"}));
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 11);
  scrolls.clear();
  PressAt(100 + 5, 100 + 140);  // left arrow of the horizontal bar
  Release();
  PumpMessages();
  EXPECT_EQ(scrolls, (std::vector<std::string>{"H:0", "H:8"}));
  EXPECT_EQ(GetCapture(), HWND(0));
}

TEST_F(ScrollBarTest, HeldArrowRepeatsUntilReleased) {
  HWND h = MakeBarWindow();
  RecordScrolls();
  int lines = 0;
  onScroll = [&](int code) {
    if (code == SB_LINEDOWN && ++lines == 5) Release();
  };
  PressAt(100 + 191, 100 + 140);
  RunUntilIdle(5000);
  EXPECT_EQ(lines, 5);
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 5);
  EXPECT_EQ(scrolls.back(), "V:8");
}

TEST_F(ScrollBarTest, HeldPageStopsWhenTheThumbReachesThePointer) {
  HWND h = MakeBarWindow();
  RecordScrolls();
  int pages = 0;
  onScroll = [&](int code) {
    if (code == SB_PAGEDOWN) ++pages;
  };
  // Each page moves the thumb down by 11 or 12 pixels (17 + pos * 105 / 90): after three pages
  // (pos 30) it spans 52..63 and covers the pointer at 60, so the repeats stop stepping.
  PressAt(100 + 191, 100 + 60);
  // Keep the button down for two seconds of repeats, then let go.
  SetTimer(h, 99, 2000, [&](HWND, UINT, UINT_PTR, DWORD) {
    KillTimer(h, 99);
    Release();
  });
  RunUntilIdle(10000);
  EXPECT_EQ(pages, 3);
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 30);
}

TEST_F(ScrollBarTest, ThumbDragReportsTrackingThenFinalPosition) {
  HWND h = MakeBarWindow();
  RecordScrolls(false);
  int trackSeen = -1;
  onScroll = [&](int code) {
    if (code == SB_THUMBTRACK) {
      SCROLLINFO si;
      si.fMask = SIF_TRACKPOS | SIF_POS;
      GetScrollInfo(h, SB_VERT, &si);
      trackSeen = si.nTrackPos;
      EXPECT_EQ(si.nPos, 0);  // the bar never moves the position itself
    }
  };
  PressAt(100 + 191, 100 + 22);  // 5 pixels into the thumb
  InjectMouseMove(100 + 191, 100 + 43);  // thumb top to 38: (21 * 90 + 52) / 105 = 18
  InjectMouseMove(100 + 150, 100 + 400);  // far below: the end
  Release();
  PumpMessages();
  EXPECT_EQ(scrolls, (std::vector<std::string>{"V:5:0", "V:5:18", "V:5:90", "V:4:90", "V:8"}));
  EXPECT_EQ(trackSeen, 90);
  EXPECT_EQ(GetScrollPos(h, SB_VERT), 0);
}

}  // namespace
}  // namespace mx::platform::testing
