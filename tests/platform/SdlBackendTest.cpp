// The SDL2 back end. Key translation runs everywhere SDL2 is built in; the real-window cases
// need an X display (run them under xvfb-run) and skip without one. The pointer and keyboard
// cases drive the real X server with xdotool.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SdlBackend.h"
#include "platform/User.h"

#ifdef MX_HAVE_SDL2
#include <SDL.h>

namespace mx::platform {
namespace {

// ---- key translation ---------------------------------------------------------------------------

TEST(SdlKeys, EveryTranslatedKeyComesBack) {
  std::vector<int> vks = {VK_RETURN, VK_ESCAPE, VK_TAB, VK_SPACE, VK_BACK, VK_DELETE, VK_INSERT, VK_HOME,
                          VK_END, VK_PRIOR, VK_NEXT, VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_SHIFT, VK_CONTROL,
                          VK_MENU, VK_CAPITAL, VK_OEM_1, VK_OEM_PLUS, VK_OEM_COMMA, VK_OEM_MINUS, VK_OEM_PERIOD,
                          VK_OEM_2, VK_OEM_3, VK_OEM_4, VK_OEM_5, VK_OEM_6, VK_OEM_7, VK_MULTIPLY, VK_ADD,
                          VK_SUBTRACT, VK_DECIMAL, VK_DIVIDE};
  for (int c = 'A'; c <= 'Z'; ++c) vks.push_back(c);
  for (int c = '0'; c <= '9'; ++c) vks.push_back(c);
  for (int f = VK_F1; f <= VK_F24; ++f) vks.push_back(f);
  for (int n = VK_NUMPAD0; n <= VK_NUMPAD9; ++n) vks.push_back(n);
  std::vector<int32_t> seen;
  for (int vk : vks) {
    const int32_t key = SdlKeyFromVirtualKey(vk);
    ASSERT_NE(key, SDLK_UNKNOWN) << "vk 0x" << std::hex << vk;
    EXPECT_EQ(VirtualKeyFromSdlKey(key), vk) << "vk 0x" << std::hex << vk;
    // Two virtual keys must never share one SDL key.
    EXPECT_EQ(std::count(seen.begin(), seen.end(), key), 0) << "vk 0x" << std::hex << vk;
    seen.push_back(key);
  }
}

TEST(SdlKeys, LettersDigitsAndFunctionKeysLineUp) {
  // The ranges are built by offset, so an off-by-one shows at the ends.
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_a), 'A');
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_z), 'Z');
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_0), '0');
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_9), '9');
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_F12), VK_F12);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_F13), VK_F12 + 1);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_KP_0), VK_NUMPAD0);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_KP_9), VK_NUMPAD9);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_PAGEUP), VK_PRIOR);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_PAGEDOWN), VK_NEXT);
}

TEST(SdlKeys, BothHandsOfAModifierGiveTheGenericKey) {
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_RSHIFT), VK_SHIFT);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_RCTRL), VK_CONTROL);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_RALT), VK_MENU);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_KP_ENTER), VK_RETURN);
  EXPECT_EQ(SdlKeyFromVirtualKey(VK_RSHIFT), SDLK_LSHIFT);
  EXPECT_EQ(SdlKeyFromVirtualKey(VK_LMENU), SDLK_LALT);
}

TEST(SdlKeys, LayoutSymbolsFallBackToThePhysicalKey) {
  // A layout's own letter (c cedilla on the semicolon key) becomes that key's virtual key.
  EXPECT_EQ(VirtualKeyFromSdlKey(0xE7, SDL_SCANCODE_SEMICOLON), VK_OEM_1);
  EXPECT_EQ(VirtualKeyFromSdlKey(0xE9, SDL_SCANCODE_E), 'E');
  EXPECT_EQ(VirtualKeyFromSdlKey(0xE7, 0), 0);
  EXPECT_EQ(VirtualKeyFromSdlKey(SDLK_UNKNOWN), 0);
  EXPECT_EQ(SdlKeyFromVirtualKey(0), SDLK_UNKNOWN);
  EXPECT_EQ(SdlKeyFromVirtualKey(VK_LBUTTON), SDLK_UNKNOWN);
}

// ---- real windows ------------------------------------------------------------------------------

// Records the mouse and key messages a window gets and paints it in one colour.
struct Probe {
  COLORREF color = RGB(255, 255, 255);
  std::vector<std::pair<UINT, LPARAM>> mouse;
  std::vector<std::pair<UINT, WPARAM>> keys;
  int closes = 0;
};

class RealWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display; run under xvfb-run";
    ResetWindowing();
    if (!UseSdlBackend()) GTEST_SKIP() << "SDL could not open the display";
    RegisterWindowClass(u"Probe", [this](HWND h, UINT m, WPARAM w, LPARAM l) -> LRESULT {
      Probe& p = m_probes[h];
      switch (m) {
        case WM_LBUTTONDOWN: case WM_LBUTTONUP: case WM_RBUTTONDOWN: case WM_RBUTTONUP:
          p.mouse.push_back({m, l});
          break;
        case WM_KEYDOWN: case WM_KEYUP: case WM_CHAR:
          p.keys.push_back({m, w});
          break;
        case WM_CLOSE:
          ++p.closes;
          break;
        case WM_PAINT: {
          PAINTSTRUCT ps;
          HDC dc = BeginPaint(h, &ps);
          RECT r;
          GetClientRect(h, &r);
          HBRUSH b = CreateSolidBrush(p.color);
          FillRect(dc, &r, b);
          DeleteObject(b);
          EndPaint(h, &ps);
          return 0;
        }
        default:
          break;
      }
      return DefWindowProc(h, m, w, l);
    });
  }
  void TearDown() override {
    ResetWindowing();
    PumpMessages();
    StopSdlBackend();
    m_probes.clear();
  }

  HWND Make(DWORD style, int x, int y, int w, int h, HWND parent = 0, COLORREF color = RGB(255, 255, 255),
            DWORD ex = 0, const char16_t* title = u"Probe") {
    HWND hwnd = CreateWindowExW(ex, u"Probe", title, style, x, y, w, h, parent, parent ? 1 : 0);
    m_probes[hwnd].color = color;
    return hwnd;
  }

  SDL_Window* Real(HWND h) {
    uint32_t id = SdlWindowIdOf(h);
    return id ? SDL_GetWindowFromID(id) : nullptr;
  }

  // Runs the loop until `done` holds, the real X server having had time to deliver.
  template <class F>
  bool RunUntil(F done, int limitMs = 3000) {
    for (int waited = 0; waited < limitMs; waited += 20) {
      RunFor(20);
      if (done()) return true;
    }
    return done();
  }

  static bool Xdotool(const std::string& args) {
    return std::system(("xdotool " + args + " >/dev/null 2>&1").c_str()) == 0;
  }
  static bool HaveXdotool() { return std::system("command -v xdotool >/dev/null 2>&1") == 0; }

  std::map<HWND, Probe> m_probes;
};

TEST_F(RealWindowTest, ShowingMovingAndHidingFollowTheWindow) {
  HWND h = Make(WS_POPUP, 100, 80, 200, 150);
  PumpMessages();
  EXPECT_EQ(Real(h), nullptr) << "a hidden window has no real window";

  ShowWindow(h, SW_SHOWNA);
  PumpMessages();
  SDL_Window* sw = Real(h);
  ASSERT_NE(sw, nullptr);
  EXPECT_TRUE(SDL_GetWindowFlags(sw) & SDL_WINDOW_SHOWN);
  EXPECT_TRUE(SDL_GetWindowFlags(sw) & SDL_WINDOW_BORDERLESS);
  int x = 0, y = 0, w = 0, hh = 0;
  SDL_GetWindowPosition(sw, &x, &y);
  SDL_GetWindowSize(sw, &w, &hh);
  EXPECT_EQ(x, 100);
  EXPECT_EQ(y, 80);
  EXPECT_EQ(w, 200);
  EXPECT_EQ(hh, 150);

  MoveWindow(h, 320, 240, 180, 90, TRUE);
  PumpMessages();
  ASSERT_EQ(Real(h), sw) << "moving keeps the same real window";
  SDL_GetWindowPosition(sw, &x, &y);
  SDL_GetWindowSize(sw, &w, &hh);
  EXPECT_EQ(x, 320);
  EXPECT_EQ(y, 240);
  EXPECT_EQ(w, 180);
  EXPECT_EQ(hh, 90);

  ShowWindow(h, SW_HIDE);
  PumpMessages();
  EXPECT_EQ(Real(h), nullptr);
  EXPECT_TRUE(SDL_GetWindowFlags(sw) & SDL_WINDOW_HIDDEN);

  // The real window goes with the platform's.
  DestroyWindow(h);
  PumpMessages();
  EXPECT_EQ(SDL_GetWindowFromID(SDL_GetWindowID(sw)), nullptr);
}

TEST_F(RealWindowTest, DecorationFollowsTheStyles) {
  HWND framed = Make(WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 300, 200, 0, RGB(255, 255, 255), 0, u"Título");
  HWND tool = Make(WS_POPUP | WS_VISIBLE, 400, 50, 120, 80, 0, RGB(255, 255, 255), WS_EX_TOOLWINDOW);
  PumpMessages();
  SDL_Window* f = Real(framed);
  SDL_Window* t = Real(tool);
  ASSERT_NE(f, nullptr);
  ASSERT_NE(t, nullptr);
  // A framed window shows its client area inside the window manager's frame.
  EXPECT_FALSE(SDL_GetWindowFlags(f) & SDL_WINDOW_BORDERLESS);
  EXPECT_TRUE(SDL_GetWindowFlags(f) & SDL_WINDOW_RESIZABLE);
  RECT client;
  GetClientRect(framed, &client);
  POINT origin{0, 0};
  ClientToScreen(framed, &origin);
  int x = 0, y = 0, w = 0, h = 0;
  SDL_GetWindowPosition(f, &x, &y);
  SDL_GetWindowSize(f, &w, &h);
  EXPECT_EQ(x, origin.x);
  EXPECT_EQ(y, origin.y);
  EXPECT_EQ(w, client.right);
  EXPECT_EQ(h, client.bottom);
  EXPECT_STREQ(SDL_GetWindowTitle(f), "T\xC3\xADtulo");
  SetWindowTextW(framed, u"Outro");
  PumpMessages();
  EXPECT_STREQ(SDL_GetWindowTitle(f), "Outro");

  EXPECT_TRUE(SDL_GetWindowFlags(t) & SDL_WINDOW_POPUP_MENU);
  EXPECT_TRUE(SDL_GetWindowFlags(t) & SDL_WINDOW_SKIP_TASKBAR);
}

TEST_F(RealWindowTest, LayeredWindowsShowTheirOpacity) {
  HWND h = Make(WS_POPUP | WS_VISIBLE, 60, 60, 100, 100, 0, RGB(0, 0, 255), WS_EX_LAYERED);
  PumpMessages();
  EXPECT_EQ(Real(h), nullptr) << "a layered window without attributes shows nothing";
  SetLayeredWindowAttributes(h, 0, 128, LWA_ALPHA);
  PumpMessages();
  SDL_Window* sw = Real(h);
  ASSERT_NE(sw, nullptr);
  float opacity = 0;
  ASSERT_EQ(SDL_GetWindowOpacity(sw, &opacity), 0);
  EXPECT_NEAR(opacity, 128 / 255.0f, 0.002f);
  SetLayeredWindowAttributes(h, 0, 255, LWA_ALPHA);
  PumpMessages();
  SDL_GetWindowOpacity(sw, &opacity);
  EXPECT_FLOAT_EQ(opacity, 1.0f);
}

TEST_F(RealWindowTest, ClosingTheRealWindowSendsClose) {
  HWND h = Make(WS_OVERLAPPEDWINDOW | WS_VISIBLE, 80, 80, 200, 120);
  HWND other = Make(WS_POPUP | WS_VISIBLE, 400, 80, 100, 100);
  PumpMessages();
  SDL_Window* sw = Real(h);
  ASSERT_NE(sw, nullptr);
  SDL_Event ev{};
  ev.type = SDL_WINDOWEVENT;
  ev.window.event = SDL_WINDOWEVENT_CLOSE;
  ev.window.windowID = SDL_GetWindowID(sw);
  SDL_PushEvent(&ev);
  PumpMessages();
  EXPECT_EQ(m_probes[h].closes, 1);
  EXPECT_EQ(m_probes[other].closes, 0);
  // WM_CLOSE reached DefWindowProc, which destroys the window.
  EXPECT_FALSE(IsWindow(h));
}

TEST_F(RealWindowTest, PresentedPixelsAreTheWindowSurface) {
  HWND top = Make(WS_POPUP | WS_VISIBLE, 120, 100, 160, 120, 0, RGB(200, 30, 40));
  HWND child = Make(WS_CHILD | WS_VISIBLE, 40, 30, 50, 40, top, RGB(20, 60, 220));
  (void)child;
  PumpMessages();
  CapturedImage shown = ReadPresentedPixels(top);
  ASSERT_EQ(shown.width(), 160);
  ASSERT_EQ(shown.height(), 120);
  EXPECT_EQ(shown.color(5, 5), RGB(200, 30, 40));
  EXPECT_EQ(shown.color(60, 45), RGB(20, 60, 220));
  EXPECT_EQ(shown.color(90, 70), RGB(200, 30, 40)) << "just past the child's corner";
  CapturedImage own = CaptureWindow(top);
  for (int y = 0; y < 120; ++y)
    for (int x = 0; x < 160; ++x)
      ASSERT_EQ(shown.color(x, y), own.color(x, y)) << x << "," << y;

  // A repaint is presented again once the queue runs dry.
  m_probes[top].color = RGB(0, 160, 0);
  InvalidateRect(top, nullptr, TRUE);
  PumpMessages();
  EXPECT_EQ(ReadPresentedPixels(top).color(5, 5), RGB(0, 160, 0));
}

TEST_F(RealWindowTest, ARealClickReachesTheChildAtItsClientPoint) {
  if (!HaveXdotool()) GTEST_SKIP() << "xdotool is not installed";
  HWND top = Make(WS_POPUP | WS_VISIBLE, 150, 120, 300, 200, 0, RGB(230, 230, 230));
  HWND child = Make(WS_CHILD | WS_VISIBLE, 40, 30, 100, 60, top, RGB(30, 30, 200));
  PumpMessages();
  ASSERT_NE(Real(top), nullptr);

  // Screen point of the child's client (10, 20).
  ASSERT_TRUE(Xdotool("mousemove --sync 200 170"));
  ASSERT_TRUE(RunUntil([] {
    POINT p{};
    GetCursorPos(&p);
    return p.x == 200 && p.y == 170;
  })) << "the pointer move never arrived";
  ASSERT_TRUE(Xdotool("click 1"));
  ASSERT_TRUE(RunUntil([&] { return m_probes[child].mouse.size() >= 2; }));
  const auto& got = m_probes[child].mouse;
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0].first, static_cast<UINT>(WM_LBUTTONDOWN));
  EXPECT_EQ(got[1].first, static_cast<UINT>(WM_LBUTTONUP));
  for (const auto& [msg, lp] : got) {
    EXPECT_EQ(GET_X_LPARAM(lp), 10);
    EXPECT_EQ(GET_Y_LPARAM(lp), 20);
  }
  EXPECT_TRUE(m_probes[top].mouse.empty()) << "the parent under the child hears nothing";

  // A right click on the parent's own area, beside the child.
  ASSERT_TRUE(Xdotool("mousemove --sync 400 300 click 3"));
  ASSERT_TRUE(RunUntil([&] { return m_probes[top].mouse.size() >= 2; }));
  EXPECT_EQ(m_probes[top].mouse[0].first, static_cast<UINT>(WM_RBUTTONDOWN));
  EXPECT_EQ(GET_X_LPARAM(m_probes[top].mouse[0].second), 250);
  EXPECT_EQ(GET_Y_LPARAM(m_probes[top].mouse[0].second), 180);
}

TEST_F(RealWindowTest, AClickInAFramedWindowCountsFromItsClientCorner) {
  if (!HaveXdotool()) GTEST_SKIP() << "xdotool is not installed";
  // The real window shows only the client area here, so its corner is the client's corner.
  HWND top = Make(WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 200, 240, 180);
  PumpMessages();
  ASSERT_NE(Real(top), nullptr);
  POINT origin{0, 0};
  ClientToScreen(top, &origin);
  ASSERT_TRUE(Xdotool("mousemove --sync " + std::to_string(origin.x + 7) + " " + std::to_string(origin.y + 9) +
                      " click 1"));
  ASSERT_TRUE(RunUntil([&] { return m_probes[top].mouse.size() >= 2; }));
  EXPECT_EQ(m_probes[top].mouse[0].first, static_cast<UINT>(WM_LBUTTONDOWN));
  EXPECT_EQ(GET_X_LPARAM(m_probes[top].mouse[0].second), 7);
  EXPECT_EQ(GET_Y_LPARAM(m_probes[top].mouse[0].second), 9);
}

TEST_F(RealWindowTest, RealKeysGiveOneCharacterEach) {
  if (!HaveXdotool()) GTEST_SKIP() << "xdotool is not installed";
  HWND top = Make(WS_POPUP | WS_VISIBLE, 200, 200, 200, 100);
  PumpMessages();
  SDL_Window* sw = Real(top);
  ASSERT_NE(sw, nullptr);
  SetFocus(top);
  ASSERT_TRUE(Xdotool("mousemove --sync 300 250"));
  SDL_SetWindowInputFocus(sw);
  RunFor(50);
  ASSERT_TRUE(Xdotool("key --clearmodifiers a Return Prior"));
  auto& keys = m_probes[top].keys;
  ASSERT_TRUE(RunUntil([&] {
    return std::count_if(keys.begin(), keys.end(), [](auto& k) { return k.first == WM_KEYUP; }) >= 3;
  }));
  std::vector<std::pair<UINT, WPARAM>> expect = {
      {WM_KEYDOWN, 'A'}, {WM_CHAR, 'a'}, {WM_KEYUP, 'A'},
      {WM_KEYDOWN, VK_RETURN}, {WM_CHAR, '\r'}, {WM_KEYUP, VK_RETURN},
      {WM_KEYDOWN, VK_PRIOR}, {WM_KEYUP, VK_PRIOR}};
  EXPECT_EQ(keys, expect);
}

TEST_F(RealWindowTest, ClipboardTextGoesBothWays) {
  ASSERT_TRUE(SetClipboardText(u"ol\u00E1 mundo"));
  char* sys = SDL_GetClipboardText();
  ASSERT_NE(sys, nullptr);
  EXPECT_STREQ(sys, "ol\xC3\xA1 mundo");
  SDL_free(sys);

  // Another program copies: our readers see its text.
  SDL_SetClipboardText("de fora");
  EXPECT_EQ(GetClipboardText(), std::u16string(u"de fora"));
  ASSERT_TRUE(OpenClipboard(0));
  auto bytes = GetClipboardData(CF_TEXT);
  CloseClipboard();
  ASSERT_TRUE(bytes.has_value());
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes->data())), "de fora");
}

TEST_F(RealWindowTest, TheLoopWaitsForRealEventsAndTimers) {
  HWND h = Make(WS_POPUP | WS_VISIBLE, 10, 10, 50, 50);
  PumpMessages();
  // With a real window up, an empty queue waits rather than giving up: a timer ends the wait.
  SetTimer(h, 7, 30, nullptr);
  MSG m;
  ASSERT_TRUE(GetMessageW(&m, 0, 0, 0));
  EXPECT_EQ(m.message, static_cast<UINT>(WM_TIMER));
  KillTimer(h, 7);
  // A real event ends it too: a pushed close request.
  SDL_Event ev{};
  ev.type = SDL_WINDOWEVENT;
  ev.window.event = SDL_WINDOWEVENT_CLOSE;
  ev.window.windowID = SDL_GetWindowID(Real(h));
  SDL_PushEvent(&ev);
  ASSERT_TRUE(GetMessageW(&m, 0, 0, 0));
  EXPECT_EQ(m.message, static_cast<UINT>(WM_CLOSE));
  EXPECT_EQ(m.hwnd, h);
}

TEST(SdlBackendHeadless, WithoutADisplayTheSwitchFailsCleanly) {
  if (std::getenv("DISPLAY")) GTEST_SKIP() << "a display is there";
  EXPECT_FALSE(UseSdlBackend());
  EXPECT_FALSE(IsSdlBackendActive());
  EXPECT_EQ(SdlWindowIdOf(0), 0u);
}

}  // namespace
}  // namespace mx::platform

#endif  // MX_HAVE_SDL2
