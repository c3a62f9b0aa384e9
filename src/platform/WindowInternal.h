#pragma once
// The objects behind window handles and the per-thread state of the windowing code: classes,
// the window tree, the message queue, timers, input state and window DCs. Private to the
// platform's windowing files; code above the platform only sees handles.
//
// Geometry. A window keeps its rectangle in its parent's client coordinates (screen coordinates
// for a top-level window) and its client rectangle relative to its own top-left corner:
//
//   parent client (0,0)
//     +-------------------------------------+
//     |   rect.left,top                     |
//     |     +---------------------+         |
//     |     | frame   client.top  |         |
//     |     |   +-------------+   |         |
//     |     |   |   client    |   |         |
//     |     |   +-------------+   |         |
//     |     +---------------------+         |
//     +-------------------------------------+
//
// A top-level window owns a backing surface the size of its rectangle; it and all its
// descendants draw there, each at its offset from the top-level window's corner ("surface
// coordinates"). The desktop composes those surfaces.
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/HandleTable.h"
#include "platform/Messages.h"
#include "platform/Region.h"
#include "platform/ScrollBarState.h"
#include "platform/Surface.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::platform::win {

struct WindowClass {
  std::u16string name;
  ATOM atom = 0;
  UINT style = 0;
  WNDPROC proc = 0;
  HBRUSH background = 0;
  HCURSOR cursor = 0;
  HICON icon = 0;
  int cbClsExtra = 0;
  int cbWndExtra = 0;
  std::vector<uint8_t> clsExtra;
  bool ownsProc = false;  // registered by RegisterWindowClass, so the class frees it
  int windows = 0;  // live windows of the class; a class in use cannot be unregistered
};

struct Wnd {
  HWND hwnd = 0;
  std::shared_ptr<WindowClass> cls;
  DWORD style = 0;
  DWORD exStyle = 0;
  HWND parent = 0;               // 0 for a top-level window
  HWND owner = 0;                // top-level windows only
  std::vector<HWND> children;    // z-order, topmost first
  RECT rect{};                   // parent client coordinates (screen for top-level)
  RECT client{};                 // relative to rect's top-left
  WNDPROC proc = 0;
  std::u16string text;
  LONG_PTR id = 0;
  LONG_PTR userData = 0;
  std::vector<uint8_t> extra;
  std::map<std::u16string, intptr_t> props;
  HRGN region = 0;               // owned; window coordinates
  ScrollBarState hscroll, vscroll;  // the window's own bars (ScrollBar.cpp)

  // Painting. The update region is in client coordinates.
  Region update;
  bool erase = false;            // the update region wants WM_ERASEBKGND
  bool frameDirty = false;       // the non-client area wants WM_NCPAINT
  bool internalPaint = false;
  uint64_t paintSerial = 0;      // moves on at every BeginPaint/ValidateRect
  HDC ownDC = 0;                 // CS_OWNDC

  // Life cycle.
  bool created = false;          // WM_NCCREATE has been answered
  bool destroying = false;
  bool sizeSent = false;

  // Minimise and maximise.
  RECT normalRect{};             // the restored rectangle while minimised or maximised
  bool restoreMaximized = false;

  // Layered windows.
  DWORD layeredFlags = 0;        // LWA_ALPHA, LWA_COLORKEY
  BYTE layeredAlpha = 255;
  COLORREF layeredKey = 0;
  bool perPixel = false;         // contents come from UpdateLayeredWindow
  BYTE ulwAlpha = 255;
  DWORD ulwFlags = 0;
  COLORREF ulwKey = 0;
  bool ulwPerPixelAlpha = false;  // AC_SRC_ALPHA: blend by each pixel's own alpha

  // Top-level windows: the backing surface (top-down, premultiplied BGRA).
  std::vector<uint32_t> pixels;
  Surface surface{};
};

struct ProcEntry {
  std::shared_ptr<WindowProcFn> fn;
};

// A window DC handed out by GetDC, GetWindowDC, GetDCEx or BeginPaint.
struct DcRecord {
  HWND hwnd = 0;                 // 0 for the screen
  DWORD flags = 0;               // DCX_ flags, DCX_WINDOW for a whole-window DC
  std::optional<Region> limit;   // BeginPaint's update region or GetDCEx's region, surface coords
  bool exclude = false;          // limit is subtracted rather than intersected
  bool own = false;              // a CS_OWNDC DC: released only with its window
};

// One unit of injected input, cooked into a message when the queue reaches it.
struct InputEvent {
  enum class Kind { Move, Button, Wheel, Key, Char } kind = Kind::Move;
  POINT pt{};
  int button = 0;                // a VK_ mouse button code
  bool down = false;
  int delta = 0;
  bool horizontal = false;
  int vk = 0;
  char16_t ch = 0;
  int repeat = 1;
  bool synthetic = false;        // a move made by the system after a capture change
  WPARAM mk = 0;                 // MK_ state when it was injected
  bool prevDown = false;         // keys: already down before (auto-repeat)
  bool alt = false, ctrl = false;
  DWORD time = 0;
  uint64_t serial = 0;           // identity while re-entrant code reshapes the queue
  bool cooked = false;
  LRESULT hit = HTCLIENT;        // the hit-test code of a mouse event
  MSG msg{};
};

struct TimerEntry {
  HWND hwnd = 0;
  UINT_PTR id = 0;
  UINT elapse = 0;
  uint64_t due = 0;
  std::shared_ptr<TIMERPROC> proc;
  LPARAM serial = 0;             // travels in lParam of WM_TIMER when there is a procedure
};

struct MouseTracking {
  HWND hwnd = 0;
  DWORD flags = 0;               // TME_LEAVE, TME_HOVER, TME_NONCLIENT
  DWORD hoverTime = 0;
  POINT hoverOrigin{};
  uint64_t hoverDue = 0;
};

struct UserState {
  HandleTable<Wnd> windows{HandleType::Window};
  HandleTable<ProcEntry> procs{HandleType::Proc};
  std::vector<std::shared_ptr<WindowClass>> classes;
  ATOM nextAtom = 0xC000;
  std::vector<HWND> topLevels;   // z-order, topmost first
  int createdCount = 0;          // for default positions

  // Queue.
  std::deque<MSG> posted;
  std::deque<InputEvent> input;
  uint64_t nextInputSerial = 1;
  bool quitPosted = false;
  int quitCode = 0;
  int sendDepth = 0;
  MSG lastMsg{};
  std::deque<std::function<void()>> idleActions;

  // Timers.
  std::vector<TimerEntry> timers;
  UINT_PTR nextThreadTimerId = 1;
  LPARAM nextTimerSerial = 1;

  // Input.
  POINT cursor{640, 400};
  uint8_t asyncKeys[256] = {};   // 0x80 down, 0x01 pressed since the last GetAsyncKeyState
  uint8_t syncKeys[256] = {};    // 0x80 down, 0x01 toggled; as of the last message removed
  HWND capture = 0;
  HWND focus = 0;
  HWND active = 0;
  HWND mouseWindow = 0;          // the window the last mouse message went to
  bool mouseNonClient = false;
  MouseTracking tracking;
  struct {
    UINT message = 0;
    int button = 0;  // the virtual key: the two side buttons share their messages
    HWND hwnd = 0;
    DWORD time = 0;
    POINT pt{};
    bool nonClient = false;
  } lastClick;
  struct {
    HWND hwnd = 0;
    int hit = 0;                 // HTCAPTION to move, a sizing border code to size
    POINT start{};
    RECT startRect{};            // screen coordinates
  } moveSize;

  // Window DCs.
  std::map<HDC, DcRecord> dcs;

  // The screen and settings.
  int screenWidth = 1280, screenHeight = 800;
  RECT workArea{0, 0, 1280, 760};
  int dpi = 96;
  UINT hoverTime = 400, hoverWidth = 4, hoverHeight = 4;
  UINT wheelLines = 3, wheelChars = 3;
  UINT doubleClickTime = 500;
  std::vector<uint32_t> screenPixels;
  Surface screen{};
};

[[nodiscard]] UserState& St();

// The window behind a handle, or null for a stale one or the desktop.
[[nodiscard]] Wnd* Get(HWND hwnd);
// A window that is alive and not past its WM_NCDESTROY.
[[nodiscard]] Wnd* GetLive(HWND hwnd);

// Geometry helpers (see the diagram above).
[[nodiscard]] POINT ScreenOrigin(const Wnd& w);        // window corner in screen coordinates
[[nodiscard]] POINT ClientScreenOrigin(const Wnd& w);  // client corner in screen coordinates
[[nodiscard]] Wnd& TopLevelOf(Wnd& w);
[[nodiscard]] POINT SurfaceOrigin(const Wnd& w);       // window corner on its top-level's surface
[[nodiscard]] bool VisibleChain(const Wnd& w);         // it and every ancestor have WS_VISIBLE
// Children in z-order of a parent, or the top-level list for 0.
[[nodiscard]] std::vector<HWND>& SiblingList(HWND parent);

// Calls a window procedure with the send hooks around it; the core of SendMessage.
LRESULT Deliver(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

// Frame thickness on each side (as a RECT of insets) that DefWindowProc gives these styles.
[[nodiscard]] RECT FrameInsets(DWORD style, DWORD exStyle);
// The frame alone, without caption and scroll bars: where the sizing borders are.
[[nodiscard]] int FrameBorder(DWORD style, DWORD exStyle);
// Recomputes the client rectangle through WM_NCCALCSIZE.
void RecalcClient(HWND hwnd);
// The window's region, or null when it has none.
[[nodiscard]] const Region* WindowRegion(const Wnd& w);
// The non-client area needs painting: WM_NCPAINT, drawn by DefWindowProc.
void PaintFrame(Wnd& w);
// The window's own scroll bars, drawn with the frame through `fill` (window coordinates).
using ScrollFill = std::function<void(const RECT&, COLORREF)>;
void PaintScrollBars(const Wnd& w, const ScrollFill& fill);
// A left press on a bar (WM_NCLBUTTONDOWN with HTHSCROLL or HTVSCROLL) until its release.
void TrackScrollBar(HWND hwnd, int nBar, POINT screenPt);

// Paint and DC support shared between files.
void ResizeSurface(Wnd& w);
void RefreshWindowDCs();
void FreeWindowDCs(HWND hwnd);
// After a change of place, size, z-order or visibility: repaints what was uncovered in the
// parent and the window itself. A top-level window keeps its own surface, so only a change of
// size, frame or visibility (`contentChanged`) makes it repaint.
void InvalidateAfterMove(Wnd& w, const RECT& oldRectInParent, bool wasVisible, bool contentChanged);
[[nodiscard]] bool FindPaintWindow(HWND filter, HWND* out);
void ClearUpdate(Wnd& w);

// The window under a screen point and its WM_NCHITTEST answer.
[[nodiscard]] std::pair<HWND, LRESULT> HitTestScreen(POINT pt);
// Sends WM_PAINT now; validates afterwards if the procedure never began painting, so that a
// procedure that ignores WM_PAINT cannot make the queue repaint forever.
void SendPaint(HWND hwnd);

// Input support shared between files.
void ForgetWindowInput(HWND hwnd);    // a window is going: drop capture, focus, tracking
void ActivateOtherWindow(HWND leaving);
void PostSyntheticMouseMove();
// The move and size mode that DefWindowProc starts from a caption or border click: the pointer
// drags the window until the button comes up or the capture goes.
void BeginSystemMoveSize(HWND hwnd, int hit);
void EndSystemMoveSize(HWND hwnd);
// Turns an event into its message, with the side effects of doing so; false drops the event.
[[nodiscard]] bool CookInput(InputEvent& ev);
void CommitInput(const InputEvent& ev);
[[nodiscard]] std::optional<uint64_t> NextHoverDue();
void CheckHover();
void KillWindowTimers(HWND hwnd);
[[nodiscard]] std::optional<uint64_t> NextTimerDue();
[[nodiscard]] bool FindDueTimer(HWND filter, UINT minMsg, UINT maxMsg, bool remove, MSG* out);
// Runs the procedure of the timer a WM_TIMER names; false when that timer is gone.
bool DispatchTimerProc(const MSG& msg);
// The character a key gives with the present Shift, Caps Lock and Ctrl state; 0 for none.
[[nodiscard]] char16_t CharacterForKey(int vk);

}  // namespace mx::platform::win
