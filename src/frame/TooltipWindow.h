#pragma once
// The tooltip window class of this library, "tooltips_class32": a top-level popup that shows a
// tool's text after the pointer rested on the tool, drawn in the library's own style, standard
// (a framed rectangle) or balloon (a rounded body with a stem pointing at the tool), with an
// optional title line and icon. It is driven by the classic tooltip messages below.
//
// Behaviour, apart from painting. A tool's mouse messages reach the tip through a subclass of
// the tool window (TTF_SUBCLASS) or TTM_RELAYEVENT:
//
//   Idle --move on a tool--> Waiting --initial delay, pointer still there--> Shown
//   Waiting --move--> Waiting (the delay starts again: the pointer must rest)
//   Shown --display time, or a button--> Popped --pointer leaves the tool--> Idle
//   any --pointer leaves the tool, TTM_POP, TTM_ACTIVATE False--> Idle
//
// While not Idle a 100 ms timer looks where the pointer is, as the tool itself hears nothing
// once the pointer has gone to another window. The tip answers WM_NCHITTEST with HTTRANSPARENT,
// so it never stands between the pointer and the tool.
#include <cstdint>

#include "host/String.h"
#include "platform/Messages.h"
#include "platform/Types.h"

namespace mx::frame {

inline constexpr char16_t kTooltipClassName[] = u"tooltips_class32";

// Styles.
constexpr platform::DWORD TTS_ALWAYSTIP = 0x01;
constexpr platform::DWORD TTS_NOPREFIX = 0x02;
constexpr platform::DWORD TTS_BALLOON = 0x40;

// Tool flags.
constexpr platform::UINT TTF_IDISHWND = 0x0001;
constexpr platform::UINT TTF_CENTERTIP = 0x0002;
constexpr platform::UINT TTF_SUBCLASS = 0x0010;

// Delay kinds of TTM_SETDELAYTIME and TTM_GETDELAYTIME.
constexpr platform::WPARAM TTDT_AUTOMATIC = 0;
constexpr platform::WPARAM TTDT_RESHOW = 1;
constexpr platform::WPARAM TTDT_AUTOPOP = 2;
constexpr platform::WPARAM TTDT_INITIAL = 3;

// Title icons of TTM_SETTITLEA; a larger value is an icon handle.
constexpr platform::WPARAM TTI_NONE = 0;
constexpr platform::WPARAM TTI_INFO = 1;
constexpr platform::WPARAM TTI_WARNING = 2;
constexpr platform::WPARAM TTI_ERROR = 3;

constexpr platform::UINT TTM_ACTIVATE = platform::WM_USER + 1;
constexpr platform::UINT TTM_SETDELAYTIME = platform::WM_USER + 3;
constexpr platform::UINT TTM_ADDTOOLA = platform::WM_USER + 4;
constexpr platform::UINT TTM_DELTOOLA = platform::WM_USER + 5;
constexpr platform::UINT TTM_RELAYEVENT = platform::WM_USER + 7;
constexpr platform::UINT TTM_UPDATETIPTEXTA = platform::WM_USER + 12;
constexpr platform::UINT TTM_GETTOOLCOUNT = platform::WM_USER + 13;
constexpr platform::UINT TTM_SETTIPBKCOLOR = platform::WM_USER + 19;
constexpr platform::UINT TTM_SETTIPTEXTCOLOR = platform::WM_USER + 20;
constexpr platform::UINT TTM_GETDELAYTIME = platform::WM_USER + 21;
constexpr platform::UINT TTM_GETTIPBKCOLOR = platform::WM_USER + 22;
constexpr platform::UINT TTM_GETTIPTEXTCOLOR = platform::WM_USER + 23;
constexpr platform::UINT TTM_POP = platform::WM_USER + 28;
constexpr platform::UINT TTM_SETTITLEA = platform::WM_USER + 32;

// The tool record of the narrow messages. Text is Windows-1252. 40 bytes was the first size of
// the classic record, 44 the one with lParam; both are taken.
struct TOOLINFOA {
  platform::UINT cbSize = 44;
  platform::UINT uFlags = 0;
  platform::HWND hwnd = 0;
  platform::UINT_PTR uId = 0;
  platform::RECT rect{};
  platform::HANDLE hinst = 0;
  const char* lpszText = nullptr;
  platform::LPARAM lParam = 0;
};
constexpr platform::UINT TTTOOLINFOA_V1_SIZE = 40;

// Registers the class on this thread unless it is there; false if it cannot be.
bool RegisterTooltipClass();

// What a tip window holds, for tests and for callers that want to look without messages.
struct TooltipSnapshot {
  bool exists = false;
  bool balloon = false;
  host::String text;     // of the tool shown or last added
  host::String title;
  platform::WPARAM icon = 0;
  platform::COLORREF textColor = 0;
  platform::COLORREF backColor = 0;
  int toolCount = 0;
};
[[nodiscard]] TooltipSnapshot InspectTooltip(platform::HWND tip);

}  // namespace mx::frame
