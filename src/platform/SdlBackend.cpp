// The SDL2 back end: real windows for the top-level windows, real input into the queue.
#include "platform/SdlBackend.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Backend.h"
#include "platform/Clock.h"
#include "platform/Cursor.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

#ifdef MX_HAVE_SDL2
#include <SDL.h>
#endif

namespace mx::platform {

#ifdef MX_HAVE_SDL2

using namespace win;

namespace {

// ---- keys --------------------------------------------------------------------------------------

struct KeyPair {
  SDL_Keycode sdl;
  int vk;
};

// One entry per virtual key, in the direction virtual key to SDL. Keys that the platform does
// not tell apart (left and right Shift, the two Enter keys) come after, in kAliases.
std::vector<KeyPair> BuildKeyTable() {
  std::vector<KeyPair> t;
  for (int i = 0; i < 26; ++i) t.push_back({SDLK_a + i, 'A' + i});
  for (int i = 0; i < 10; ++i) t.push_back({SDLK_0 + i, '0' + i});
  for (int i = 0; i < 12; ++i) t.push_back({SDLK_F1 + i, VK_F1 + i});
  for (int i = 0; i < 12; ++i) t.push_back({SDLK_F13 + i, VK_F1 + 12 + i});
  // The key pad's digits run 1..9 then 0 in SDL's order.
  t.push_back({SDLK_KP_0, VK_NUMPAD0});
  for (int i = 0; i < 9; ++i) t.push_back({SDLK_KP_1 + i, VK_NUMPAD0 + 1 + i});
  const KeyPair fixed[] = {
      {SDLK_RETURN, VK_RETURN},       {SDLK_ESCAPE, VK_ESCAPE},       {SDLK_TAB, VK_TAB},
      {SDLK_SPACE, VK_SPACE},         {SDLK_BACKSPACE, VK_BACK},      {SDLK_DELETE, VK_DELETE},
      {SDLK_INSERT, VK_INSERT},       {SDLK_HOME, VK_HOME},           {SDLK_END, VK_END},
      {SDLK_PAGEUP, VK_PRIOR},        {SDLK_PAGEDOWN, VK_NEXT},       {SDLK_LEFT, VK_LEFT},
      {SDLK_RIGHT, VK_RIGHT},         {SDLK_UP, VK_UP},               {SDLK_DOWN, VK_DOWN},
      {SDLK_LSHIFT, VK_SHIFT},        {SDLK_LCTRL, VK_CONTROL},       {SDLK_LALT, VK_MENU},
      {SDLK_LGUI, VK_LWIN},           {SDLK_RGUI, VK_RWIN},           {SDLK_APPLICATION, VK_APPS},
      {SDLK_CAPSLOCK, VK_CAPITAL},    {SDLK_NUMLOCKCLEAR, VK_NUMLOCK}, {SDLK_SCROLLLOCK, VK_SCROLL},
      {SDLK_PAUSE, VK_PAUSE},         {SDLK_PRINTSCREEN, VK_SNAPSHOT}, {SDLK_KP_MULTIPLY, VK_MULTIPLY},
      {SDLK_KP_PLUS, VK_ADD},         {SDLK_KP_MINUS, VK_SUBTRACT},   {SDLK_KP_PERIOD, VK_DECIMAL},
      {SDLK_KP_DIVIDE, VK_DIVIDE},    {SDLK_SEMICOLON, VK_OEM_1},     {SDLK_EQUALS, VK_OEM_PLUS},
      {SDLK_COMMA, VK_OEM_COMMA},     {SDLK_MINUS, VK_OEM_MINUS},     {SDLK_PERIOD, VK_OEM_PERIOD},
      {SDLK_SLASH, VK_OEM_2},         {SDLK_BACKQUOTE, VK_OEM_3},     {SDLK_LEFTBRACKET, VK_OEM_4},
      {SDLK_BACKSLASH, VK_OEM_5},     {SDLK_RIGHTBRACKET, VK_OEM_6},  {SDLK_QUOTE, VK_OEM_7},
  };
  t.insert(t.end(), std::begin(fixed), std::end(fixed));
  return t;
}

// Messages carry the generic modifier (VK_SHIFT), as the classic system's key messages do.
constexpr KeyPair kAliases[] = {
    {SDLK_RSHIFT, VK_SHIFT}, {SDLK_RCTRL, VK_CONTROL}, {SDLK_RALT, VK_MENU}, {SDLK_KP_ENTER, VK_RETURN},
    {SDLK_RETURN2, VK_RETURN},
};

const std::vector<KeyPair>& KeyTable() {
  static const std::vector<KeyPair> table = BuildKeyTable();
  return table;
}

// Physical keys of the United States layout, for symbols that a layout puts outside the table.
int VirtualKeyFromScancode(int sc) {
  if (sc >= SDL_SCANCODE_A && sc <= SDL_SCANCODE_Z) return 'A' + (sc - SDL_SCANCODE_A);
  if (sc >= SDL_SCANCODE_1 && sc <= SDL_SCANCODE_9) return '1' + (sc - SDL_SCANCODE_1);
  switch (sc) {
    case SDL_SCANCODE_0: return '0';
    case SDL_SCANCODE_SEMICOLON: return VK_OEM_1;
    case SDL_SCANCODE_EQUALS: return VK_OEM_PLUS;
    case SDL_SCANCODE_COMMA: return VK_OEM_COMMA;
    case SDL_SCANCODE_MINUS: return VK_OEM_MINUS;
    case SDL_SCANCODE_PERIOD: return VK_OEM_PERIOD;
    case SDL_SCANCODE_SLASH: return VK_OEM_2;
    case SDL_SCANCODE_GRAVE: return VK_OEM_3;
    case SDL_SCANCODE_LEFTBRACKET: return VK_OEM_4;
    case SDL_SCANCODE_BACKSLASH: case SDL_SCANCODE_NONUSBACKSLASH: return VK_OEM_5;
    case SDL_SCANCODE_RIGHTBRACKET: return VK_OEM_6;
    case SDL_SCANCODE_APOSTROPHE: return VK_OEM_7;
    default: return 0;
  }
}

// ---- text --------------------------------------------------------------------------------------

std::string ToUtf8(std::u16string_view s) {
  std::string out;
  for (size_t i = 0; i < s.size(); ++i) {
    uint32_t c = s[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < s.size() && s[i + 1] >= 0xDC00 && s[i + 1] < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;  // a lone surrogate
    }
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (c >> 12)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (c >> 18)));
      out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
  return out;
}

std::u16string FromUtf8(std::string_view s) {
  std::u16string out;
  for (size_t i = 0; i < s.size();) {
    const auto b = static_cast<uint8_t>(s[i]);
    int len = b < 0x80 ? 1 : (b >> 5) == 6 ? 2 : (b >> 4) == 14 ? 3 : (b >> 3) == 30 ? 4 : 0;
    if (len == 0 || i + len > s.size()) {
      out.push_back(0xFFFD);
      ++i;
      continue;
    }
    uint32_t c = len == 1 ? b : len == 2 ? (b & 0x1F) : len == 3 ? (b & 0x0F) : (b & 0x07);
    bool ok = true;
    for (int k = 1; k < len; ++k) {
      const auto cb = static_cast<uint8_t>(s[i + k]);
      if ((cb & 0xC0) != 0x80) ok = false;
      c = (c << 6) | (cb & 0x3F);
    }
    if (!ok || c > 0x10FFFF) {
      out.push_back(0xFFFD);
      ++i;
      continue;
    }
    if (c >= 0x10000) {
      c -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(c));
    }
    i += len;
  }
  return out;
}

// ---- windows -----------------------------------------------------------------------------------

enum class Kind { Framed, Plain, Popup };

Kind KindOf(const Wnd& w) {
  const bool tool = (w.exStyle & WS_EX_TOOLWINDOW) != 0;
  if ((w.style & WS_CAPTION) == WS_CAPTION && !tool) return Kind::Framed;
  if (tool) return Kind::Popup;
  return Kind::Plain;
}

// The part of the window that the SDL window shows, in screen coordinates.
RECT ShownArea(const Wnd& w, Kind kind) {
  if (kind == Kind::Framed) {
    POINT o = ClientScreenOrigin(w);
    return {o.x, o.y, o.x + w.client.width(), o.y + w.client.height()};
  }
  return w.rect;
}

// A layered window shows nothing until it has attributes or contents, as on the desktop.
bool ShowsAnything(const Wnd& w) {
  if (!(w.style & WS_VISIBLE)) return false;
  if ((w.exStyle & WS_EX_LAYERED) && !w.perPixel && !w.layeredFlags) return false;
  return true;
}

float OpacityOf(const Wnd& w) {
  if (!(w.exStyle & WS_EX_LAYERED)) return 1.0f;
  if (w.perPixel) return (w.ulwFlags & ULW_ALPHA) ? w.ulwAlpha / 255.0f : 1.0f;
  return (w.layeredFlags & LWA_ALPHA) ? w.layeredAlpha / 255.0f : 1.0f;
}

SDL_SystemCursor SystemCursorFor(int id) {
  switch (id) {
    case IDC_IBEAM: return SDL_SYSTEM_CURSOR_IBEAM;
    case IDC_WAIT: return SDL_SYSTEM_CURSOR_WAIT;
    case IDC_CROSS: return SDL_SYSTEM_CURSOR_CROSSHAIR;
    case IDC_APPSTARTING: return SDL_SYSTEM_CURSOR_WAITARROW;
    case IDC_SIZENWSE: return SDL_SYSTEM_CURSOR_SIZENWSE;
    case IDC_SIZENESW: return SDL_SYSTEM_CURSOR_SIZENESW;
    case IDC_SIZEWE: return SDL_SYSTEM_CURSOR_SIZEWE;
    case IDC_SIZENS: return SDL_SYSTEM_CURSOR_SIZENS;
    case IDC_SIZE: case IDC_SIZEALL: return SDL_SYSTEM_CURSOR_SIZEALL;
    case IDC_NO: return SDL_SYSTEM_CURSOR_NO;
    case IDC_HAND: return SDL_SYSTEM_CURSOR_HAND;
    default: return SDL_SYSTEM_CURSOR_ARROW;  // arrow, and shapes SDL has no system cursor for
  }
}

struct RealWindow {
  HWND hwnd = 0;
  Kind kind = Kind::Plain;
  SDL_Window* window = nullptr;
  SDL_Renderer* renderer = nullptr;
  SDL_Texture* texture = nullptr;
  int textureW = 0, textureH = 0;
  RECT shown{};                    // screen area the SDL window was last given
  bool visible = false;
  bool minimized = false;
  std::u16string title;
  float opacity = 1.0f;
  std::vector<uint32_t> presented;  // the pixels last presented, to see what changed
  bool stale = true;                // must present even if the pixels look the same
};

class SdlBackend final : public Backend {
 public:
  bool Start();
  void Stop();

  void PollEvents() override;
  void Sync() override;
  bool WaitEvents(int timeoutMs) override;
  [[nodiscard]] bool DeliversText() const override { return true; }
  [[nodiscard]] std::optional<std::u16string> ClipboardText() override;
  void PublishClipboardText(std::u16string_view text) override;

  [[nodiscard]] RealWindow* Find(HWND hwnd);
  [[nodiscard]] RealWindow* FindById(Uint32 id);

 private:
  void Handle(const SDL_Event& ev);
  void HandleWindowEvent(RealWindow& rw, const SDL_WindowEvent& e);
  void MovePointerTo(RealWindow& rw, int x, int y);
  bool Create(RealWindow& rw, const Wnd& w);
  void Destroy(RealWindow& rw);
  void Present(RealWindow& rw, const Wnd& w);
  void SyncCursor();

  std::map<HWND, RealWindow> m_windows;
  std::map<int, SDL_Cursor*> m_cursors;
  int m_cursorId = -1;              // IDC_ number shown now; 0 hidden; -1 not set yet
  bool m_capturing = false;
  bool m_polling = false;
  HWND m_topmost = 0;
  int m_savedWidth = 0, m_savedHeight = 0;
  RECT m_savedWorkArea{};
};

SdlBackend*& Instance() {
  static SdlBackend* instance = nullptr;
  return instance;
}

bool SdlBackend::Start() {
  // Ctrl+C in a terminal should end the program as usual, not become an SDL quit event.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  // The first click into a window that is not focused is a click like any other.
  SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
  SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");
  // Surfaces are drawn in software; a software renderer presents them without a GPU context,
  // which also works on virtual displays. The environment may still choose another.
  SDL_SetHintWithPriority(SDL_HINT_RENDER_DRIVER, "software", SDL_HINT_DEFAULT);
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return false;
  // Without a display SDL falls back to drivers that show nothing; that is not a real window,
  // unless someone asked for one of them by name.
  const char* driver = SDL_GetCurrentVideoDriver();
  const char* wanted = std::getenv("SDL_VIDEODRIVER");
  if (driver && (!std::strcmp(driver, "offscreen") || !std::strcmp(driver, "dummy")) &&
      !(wanted && !std::strcmp(wanted, driver))) {
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
    return false;
  }
  SDL_StartTextInput();

  m_savedWidth = GetSystemMetrics(SM_CXSCREEN);
  m_savedHeight = GetSystemMetrics(SM_CYSCREEN);
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &m_savedWorkArea, 0);
  SDL_Rect bounds;
  if (SDL_GetDisplayBounds(0, &bounds) == 0 && bounds.w > 0 && bounds.h > 0) {
    SetScreenSize(bounds.x + bounds.w, bounds.y + bounds.h);
    SDL_Rect usable;
    if (SDL_GetDisplayUsableBounds(0, &usable) == 0 && usable.w > 0 && usable.h > 0)
      SetWorkArea(RECT{usable.x, usable.y, usable.x + usable.w, usable.y + usable.h});
  }
  UseRealClock();
  return true;
}

void SdlBackend::Stop() {
  for (auto& [h, rw] : m_windows) Destroy(rw);
  m_windows.clear();
  for (auto& [id, c] : m_cursors) SDL_FreeCursor(c);
  m_cursors.clear();
  if (m_capturing) SDL_CaptureMouse(SDL_FALSE);
  SDL_StopTextInput();
  SDL_QuitSubSystem(SDL_INIT_VIDEO);
  SetScreenSize(m_savedWidth, m_savedHeight);
  SetWorkArea(m_savedWorkArea);
}

RealWindow* SdlBackend::Find(HWND hwnd) {
  auto it = m_windows.find(hwnd);
  return it == m_windows.end() ? nullptr : &it->second;
}

RealWindow* SdlBackend::FindById(Uint32 id) {
  for (auto& [h, rw] : m_windows)
    if (rw.window && SDL_GetWindowID(rw.window) == id) return &rw;
  return nullptr;
}

bool SdlBackend::Create(RealWindow& rw, const Wnd& w) {
  Uint32 flags = SDL_WINDOW_HIDDEN;
  switch (rw.kind) {
    case Kind::Framed:
      if (w.style & WS_THICKFRAME) flags |= SDL_WINDOW_RESIZABLE;
      if (w.owner) flags |= SDL_WINDOW_SKIP_TASKBAR;
      break;
    case Kind::Plain:
      flags |= SDL_WINDOW_BORDERLESS;
      if (w.owner) flags |= SDL_WINDOW_SKIP_TASKBAR;
      break;
    case Kind::Popup:
      // Override-redirect on X11: placed exactly, never decorated, never in the task bar.
      flags |= SDL_WINDOW_BORDERLESS | SDL_WINDOW_POPUP_MENU | SDL_WINDOW_SKIP_TASKBAR;
      break;
  }
  rw.shown = ShownArea(w, rw.kind);
  rw.window = SDL_CreateWindow(ToUtf8(w.text).c_str(), rw.shown.left, rw.shown.top,
                               std::max<int>(1, rw.shown.width()), std::max<int>(1, rw.shown.height()), flags);
  if (!rw.window) return false;
  rw.renderer = SDL_CreateRenderer(rw.window, -1, 0);
  if (!rw.renderer) rw.renderer = SDL_CreateRenderer(rw.window, -1, SDL_RENDERER_SOFTWARE);
  if (!rw.renderer) {
    SDL_DestroyWindow(rw.window);
    rw.window = nullptr;
    return false;
  }
  rw.title = w.text;
  rw.visible = false;
  rw.stale = true;
  return true;
}

void SdlBackend::Destroy(RealWindow& rw) {
  if (rw.texture) SDL_DestroyTexture(rw.texture);
  if (rw.renderer) SDL_DestroyRenderer(rw.renderer);
  if (rw.window) SDL_DestroyWindow(rw.window);
  rw.texture = nullptr;
  rw.renderer = nullptr;
  rw.window = nullptr;
}

void SdlBackend::Present(RealWindow& rw, const Wnd& w) {
  const int width = rw.shown.width(), height = rw.shown.height();
  if (width <= 0 || height <= 0 || w.surface.empty()) return;
  // Where the shown area starts on the backing surface: the client corner for a framed window.
  const int ox = rw.kind == Kind::Framed ? w.client.left : 0;
  const int oy = rw.kind == Kind::Framed ? w.client.top : 0;
  const int cw = std::min(width, w.surface.width - ox), ch = std::min(height, w.surface.height - oy);
  // Most calls come after paints that changed nothing here: compare in place before copying.
  if (!rw.stale && rw.presented.size() == static_cast<size_t>(width) * height && cw == width && ch == height) {
    bool same = true;
    for (int y = 0; y < ch && same; ++y)
      same = std::memcmp(&rw.presented[static_cast<size_t>(y) * width], w.surface.row(y + oy) + ox,
                         static_cast<size_t>(cw) * 4) == 0;
    if (same) return;
  }
  std::vector<uint32_t> frame(static_cast<size_t>(width) * height, 0);
  for (int y = 0; y < ch; ++y)
    if (cw > 0) std::memcpy(&frame[static_cast<size_t>(y) * width], w.surface.row(y + oy) + ox, static_cast<size_t>(cw) * 4);

  if (!rw.texture || rw.textureW != width || rw.textureH != height) {
    if (rw.texture) SDL_DestroyTexture(rw.texture);
    rw.texture = SDL_CreateTexture(rw.renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, width, height);
    if (!rw.texture) return;
    rw.textureW = width;
    rw.textureH = height;
    // Ordinary windows are opaque whatever their alpha bytes say; per-pixel contents are
    // premultiplied, so dropping alpha shows them over black.
    SDL_SetTextureBlendMode(rw.texture, SDL_BLENDMODE_NONE);
  }
  SDL_UpdateTexture(rw.texture, nullptr, frame.data(), width * 4);
  SDL_RenderClear(rw.renderer);
  SDL_RenderCopy(rw.renderer, rw.texture, nullptr, nullptr);
  SDL_RenderPresent(rw.renderer);
  rw.presented = std::move(frame);
  rw.stale = false;
}

void SdlBackend::Sync() {
  UserState& st = St();
  // Windows that went, or became children.
  for (auto it = m_windows.begin(); it != m_windows.end();) {
    Wnd* w = GetLive(it->first);
    if (!w || w->parent || w->destroying) {
      Destroy(it->second);
      it = m_windows.erase(it);
    } else {
      ++it;
    }
  }

  HWND topmost = 0;
  for (HWND h : st.topLevels) {
    Wnd* w = GetLive(h);
    if (!w || w->parent) continue;
    RealWindow* rw = Find(h);
    if (!ShowsAnything(*w)) {
      if (rw && rw->visible) {
        SDL_HideWindow(rw->window);
        rw->visible = false;
      }
      continue;
    }
    if (!topmost) topmost = h;
    const Kind kind = KindOf(*w);
    if (rw && rw->kind != kind) {
      // A change of decoration needs a new window.
      Destroy(*rw);
      m_windows.erase(h);
      rw = nullptr;
    }
    if (!rw) {
      RealWindow fresh;
      fresh.hwnd = h;
      fresh.kind = kind;
      if (!Create(fresh, *w)) continue;
      rw = &m_windows.emplace(h, std::move(fresh)).first->second;
    }

    const bool minimized = (w->style & WS_MINIMIZE) != 0;
    if (!minimized) {
      RECT area = ShownArea(*w, kind);
      if (area.width() > 0 && area.height() > 0 && !(area == rw->shown)) {
        if (area.left != rw->shown.left || area.top != rw->shown.top)
          SDL_SetWindowPosition(rw->window, area.left, area.top);
        if (area.width() != rw->shown.width() || area.height() != rw->shown.height())
          SDL_SetWindowSize(rw->window, area.width(), area.height());
        rw->shown = area;
        rw->stale = true;
      }
    }
    if (w->text != rw->title) {
      SDL_SetWindowTitle(rw->window, ToUtf8(w->text).c_str());
      rw->title = w->text;
    }
    const float opacity = OpacityOf(*w);
    if (opacity != rw->opacity) {
      SDL_SetWindowOpacity(rw->window, opacity);
      rw->opacity = opacity;
    }
    if (!rw->visible) {
      SDL_ShowWindow(rw->window);
      rw->visible = true;
      rw->stale = true;
    }
    if (minimized != rw->minimized) {
      if (minimized) SDL_MinimizeWindow(rw->window); else SDL_RestoreWindow(rw->window);
      rw->minimized = minimized;
    }
    if (!minimized) Present(*rw, *w);
  }
  // The platform's z-order leads: a window it brought to the top is raised for real.
  if (topmost && topmost != m_topmost) {
    if (RealWindow* rw = Find(topmost); rw && rw->kind != Kind::Popup) SDL_RaiseWindow(rw->window);
    m_topmost = topmost;
  }

  SyncCursor();
  // While a window holds the capture the pointer keeps reporting outside our windows.
  const bool capture = st.capture != 0;
  if (capture != m_capturing) {
    SDL_CaptureMouse(capture ? SDL_TRUE : SDL_FALSE);
    m_capturing = capture;
  }
}

void SdlBackend::SyncCursor() {
  HCURSOR c = GetCursor();
  const int id = c ? std::max(CursorId(c), 1) : 0;  // 1: a cursor of the program's own
  if (id == m_cursorId) return;
  m_cursorId = id;
  if (!id) {
    SDL_ShowCursor(SDL_DISABLE);
    return;
  }
  const SDL_SystemCursor shape = SystemCursorFor(id);
  SDL_Cursor*& cursor = m_cursors[shape];
  if (!cursor) cursor = SDL_CreateSystemCursor(shape);
  if (cursor) SDL_SetCursor(cursor);
  SDL_ShowCursor(SDL_ENABLE);
}

void SdlBackend::PollEvents() {
  if (m_polling) return;  // handling an event may read the queue again
  m_polling = true;
  SDL_Event ev;
  while (SDL_PollEvent(&ev)) Handle(ev);
  m_polling = false;
}

bool SdlBackend::WaitEvents(int timeoutMs) {
  if (timeoutMs < 0) {
    const bool any = std::any_of(m_windows.begin(), m_windows.end(), [](const auto& p) { return p.second.visible; });
    if (!any) return false;
  }
  SDL_Event ev;
  const int got = timeoutMs < 0 ? SDL_WaitEvent(&ev) : SDL_WaitEventTimeout(&ev, timeoutMs);
  if (got) {
    m_polling = true;
    Handle(ev);
    m_polling = false;
    PollEvents();
  }
  return true;
}

void SdlBackend::MovePointerTo(RealWindow& rw, int x, int y) {
  POINT now{};
  GetCursorPos(&now);
  const int sx = rw.shown.left + x, sy = rw.shown.top + y;
  if (now.x != sx || now.y != sy) InjectMouseMove(sx, sy);
}

void SdlBackend::Handle(const SDL_Event& ev) {
  switch (ev.type) {
    case SDL_MOUSEMOTION:
      if (RealWindow* rw = FindById(ev.motion.windowID)) MovePointerTo(*rw, ev.motion.x, ev.motion.y);
      break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP: {
      RealWindow* rw = FindById(ev.button.windowID);
      if (!rw) break;
      MovePointerTo(*rw, ev.button.x, ev.button.y);
      MouseButton b;
      switch (ev.button.button) {
        case SDL_BUTTON_LEFT: b = MouseButton::Left; break;
        case SDL_BUTTON_RIGHT: b = MouseButton::Right; break;
        case SDL_BUTTON_MIDDLE: b = MouseButton::Middle; break;
        case SDL_BUTTON_X1: b = MouseButton::X1; break;
        case SDL_BUTTON_X2: b = MouseButton::X2; break;
        default: return;
      }
      InjectMouseButton(b, ev.type == SDL_MOUSEBUTTONDOWN);
      break;
    }
    case SDL_MOUSEWHEEL: {
      const int sign = ev.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -1 : 1;
      if (ev.wheel.y) InjectWheel(sign * ev.wheel.y * WHEEL_DELTA, false);
      if (ev.wheel.x) InjectWheel(sign * ev.wheel.x * WHEEL_DELTA, true);
      break;
    }
    case SDL_KEYDOWN:
    case SDL_KEYUP: {
      const int vk = VirtualKeyFromSdlKey(ev.key.keysym.sym, ev.key.keysym.scancode);
      if (vk) InjectKey(vk, ev.type == SDL_KEYDOWN);
      break;
    }
    case SDL_TEXTINPUT:
      // With Ctrl or Alt held the key itself makes the character (a control code or
      // WM_SYSCHAR), as translation does; the text event would be a second one.
      if (SDL_GetModState() & (KMOD_CTRL | KMOD_ALT)) break;
      InjectText(FromUtf8(ev.text.text));
      break;
    case SDL_WINDOWEVENT:
      if (RealWindow* rw = FindById(ev.window.windowID)) HandleWindowEvent(*rw, ev.window);
      break;
    default:
      break;  // SDL_QUIT included: closing windows is the program's business
  }
}

void SdlBackend::HandleWindowEvent(RealWindow& rw, const SDL_WindowEvent& e) {
  const HWND h = rw.hwnd;
  Wnd* w = GetLive(h);
  if (!w) return;
  switch (e.event) {
    case SDL_WINDOWEVENT_CLOSE:
      PostMessageW(h, WM_CLOSE, 0, 0);
      break;
    case SDL_WINDOWEVENT_EXPOSED:
      rw.stale = true;
      break;
    case SDL_WINDOWEVENT_MOVED: {
      // The window manager placed or moved the window: the platform follows.
      const int dx = e.data1 - rw.shown.left, dy = e.data2 - rw.shown.top;
      if ((!dx && !dy) || rw.minimized) break;
      rw.shown = {rw.shown.left + dx, rw.shown.top + dy, rw.shown.right + dx, rw.shown.bottom + dy};
      SetWindowPos(h, 0, w->rect.left + dx, w->rect.top + dy, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      break;
    }
    case SDL_WINDOWEVENT_SIZE_CHANGED: {
      const int dw = e.data1 - rw.shown.width(), dh = e.data2 - rw.shown.height();
      if ((!dw && !dh) || rw.minimized) break;
      rw.shown.right += dw;
      rw.shown.bottom += dh;
      rw.stale = true;
      SetWindowPos(h, 0, 0, 0, w->rect.width() + dw, w->rect.height() + dh,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      break;
    }
    case SDL_WINDOWEVENT_MINIMIZED:
      rw.minimized = true;
      if (!IsIconic(h)) ShowWindow(h, SW_MINIMIZE);
      break;
    case SDL_WINDOWEVENT_RESTORED:
      rw.minimized = false;
      rw.stale = true;
      if (IsIconic(h)) ShowWindow(h, SW_RESTORE);
      break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
      // A window disabled by a modal one stays inactive, as clicking it would leave it.
      if (IsWindowEnabled(h) && GetActiveWindow() != h) SetActiveWindow(h);
      break;
    case SDL_WINDOWEVENT_LEAVE: {
      // The pointer left for another program or the bare desktop: tell tracked windows.
      int gx = 0, gy = 0;
      SDL_GetGlobalMouseState(&gx, &gy);
      POINT now{};
      GetCursorPos(&now);
      if (!St().capture && (now.x != gx || now.y != gy)) InjectMouseMove(gx, gy);
      break;
    }
    default:
      break;
  }
}

std::optional<std::u16string> SdlBackend::ClipboardText() {
  if (!SDL_HasClipboardText()) return std::nullopt;
  char* text = SDL_GetClipboardText();
  if (!text) return std::nullopt;
  std::u16string out = FromUtf8(text);
  SDL_free(text);
  return out;
}

void SdlBackend::PublishClipboardText(std::u16string_view text) { SDL_SetClipboardText(ToUtf8(text).c_str()); }

}  // namespace

bool UseSdlBackend() {
  if (Instance()) return true;
  auto backend = std::make_unique<SdlBackend>();
  if (!backend->Start()) return false;
  Instance() = backend.release();
  SetActiveBackend(Instance());
  Instance()->Sync();
  return true;
}

void StopSdlBackend() {
  SdlBackend* b = Instance();
  if (!b) return;
  SetActiveBackend(nullptr);
  b->Stop();
  delete b;
  Instance() = nullptr;
}

bool IsSdlBackendActive() { return Instance() != nullptr; }

int VirtualKeyFromSdlKey(int32_t sdlKey, int scancode) {
  for (const KeyPair& p : KeyTable())
    if (p.sdl == sdlKey) return p.vk;
  for (const KeyPair& p : kAliases)
    if (p.sdl == sdlKey) return p.vk;
  return VirtualKeyFromScancode(scancode);
}

int32_t SdlKeyFromVirtualKey(int vk) {
  for (const KeyPair& p : KeyTable())
    if (p.vk == vk) return p.sdl;
  // The left and right forms of a modifier come back as the left key.
  switch (vk) {
    case VK_LSHIFT: case VK_RSHIFT: return SDLK_LSHIFT;
    case VK_LCONTROL: case VK_RCONTROL: return SDLK_LCTRL;
    case VK_LMENU: case VK_RMENU: return SDLK_LALT;
    default: return SDLK_UNKNOWN;
  }
}

uint32_t SdlWindowIdOf(HWND hwnd) {
  SdlBackend* b = Instance();
  RealWindow* rw = b ? b->Find(hwnd) : nullptr;
  return rw && rw->window && rw->visible ? SDL_GetWindowID(rw->window) : 0;
}

CapturedImage ReadPresentedPixels(HWND hwnd) {
  SdlBackend* b = Instance();
  RealWindow* rw = b ? b->Find(hwnd) : nullptr;
  if (!rw || !rw->renderer || !rw->visible) return {};
  int w = 0, h = 0;
  if (SDL_GetRendererOutputSize(rw->renderer, &w, &h) != 0 || w <= 0 || h <= 0) return {};
  CapturedImage image(w, h);
  Surface& s = image.surface();
  if (SDL_RenderReadPixels(rw->renderer, nullptr, SDL_PIXELFORMAT_ARGB8888, s.bits, s.stride) != 0) return {};
  return image;
}

#else  // no SDL2: headless only

bool UseSdlBackend() { return false; }
void StopSdlBackend() {}
bool IsSdlBackendActive() { return false; }
int VirtualKeyFromSdlKey(int32_t, int) { return 0; }
int32_t SdlKeyFromVirtualKey(int) { return 0; }
uint32_t SdlWindowIdOf(HWND) { return 0; }
CapturedImage ReadPresentedPixels(HWND) { return {}; }

#endif

}  // namespace mx::platform
