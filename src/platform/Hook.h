#pragma once
// Thread hooks: procedures that see messages and events before (or around) the windows they are
// for. Each type keeps a chain, newest first; a hook passes the event on with CallNextHookEx.
//
// Where each type is called here:
//   WH_GETMESSAGE      GetMessage/PeekMessage hand out a message (wParam PM_REMOVE or
//                      PM_NOREMOVE, lParam MSG*, which the hook may change).
//   WH_CALLWNDPROC     before a sent message reaches its procedure (lParam CWPSTRUCT*).
//   WH_CALLWNDPROCRET  after it (lParam CWPRETSTRUCT*).
//   WH_MOUSE           a mouse message is taken from the queue (wParam the message, lParam
//                      MOUSEHOOKSTRUCTEX*); nonzero discards it.
//   WH_KEYBOARD        a key message is taken (wParam the key, lParam the key flags); nonzero
//                      discards it.
//   WH_CBT             window creation, destruction, activation, focus, minimise and maximise;
//                      nonzero prevents the action.
//   WH_MOUSE_LL, WH_KEYBOARD_LL  input as it is injected; nonzero drops it.
//   WH_MSGFILTER       messages of a modal loop run by RunModalLoop (code MSGF_DIALOGBOX).
//   WH_FOREGROUNDIDLE  the queue goes idle in GetMessage.
// Types the system never produces here (journal, shell, debug, system-wide filters) are refused.
#include <functional>

#include "platform/Messages.h"
#include "platform/Types.h"

namespace mx::platform {

constexpr int WH_MSGFILTER = -1;
constexpr int WH_JOURNALRECORD = 0;
constexpr int WH_JOURNALPLAYBACK = 1;
constexpr int WH_KEYBOARD = 2;
constexpr int WH_GETMESSAGE = 3;
constexpr int WH_CALLWNDPROC = 4;
constexpr int WH_CBT = 5;
constexpr int WH_SYSMSGFILTER = 6;
constexpr int WH_MOUSE = 7;
constexpr int WH_DEBUG = 9;
constexpr int WH_SHELL = 10;
constexpr int WH_FOREGROUNDIDLE = 11;
constexpr int WH_CALLWNDPROCRET = 12;
constexpr int WH_KEYBOARD_LL = 13;
constexpr int WH_MOUSE_LL = 14;

constexpr int HC_ACTION = 0;
constexpr int HC_NOREMOVE = 3;

constexpr int HCBT_MOVESIZE = 0;
constexpr int HCBT_MINMAX = 1;
constexpr int HCBT_QS = 2;
constexpr int HCBT_CREATEWND = 3;
constexpr int HCBT_DESTROYWND = 4;
constexpr int HCBT_ACTIVATE = 5;
constexpr int HCBT_CLICKSKIPPED = 6;
constexpr int HCBT_KEYSKIPPED = 7;
constexpr int HCBT_SYSCOMMAND = 8;
constexpr int HCBT_SETFOCUS = 9;

constexpr int MSGF_DIALOGBOX = 0;

struct CWPSTRUCT {
  LPARAM lParam = 0;
  WPARAM wParam = 0;
  UINT message = 0;
  HWND hwnd = 0;
};

struct CWPRETSTRUCT {
  LRESULT lResult = 0;
  LPARAM lParam = 0;
  WPARAM wParam = 0;
  UINT message = 0;
  HWND hwnd = 0;
};

struct MOUSEHOOKSTRUCT {
  POINT pt{};
  HWND hwnd = 0;
  UINT wHitTestCode = 0;
  uintptr_t dwExtraInfo = 0;
};

struct MOUSEHOOKSTRUCTEX : MOUSEHOOKSTRUCT {
  DWORD mouseData = 0;  // wheel delta or X button in the high word
};

struct CBT_CREATEWND {
  CREATESTRUCTW* lpcs = nullptr;
  HWND hwndInsertAfter = 0;
};

struct CBTACTIVATESTRUCT {
  BOOL fMouse = FALSE;
  HWND hWndActive = 0;
};

struct KBDLLHOOKSTRUCT {
  DWORD vkCode = 0;
  DWORD scanCode = 0;
  DWORD flags = 0;  // LLKHF_UP 0x80, LLKHF_ALTDOWN 0x20, LLKHF_EXTENDED 0x01
  DWORD time = 0;
  uintptr_t dwExtraInfo = 0;
};

struct MSLLHOOKSTRUCT {
  POINT pt{};
  DWORD mouseData = 0;
  DWORD flags = 0;
  DWORD time = 0;
  uintptr_t dwExtraInfo = 0;
};

using HOOKPROC = std::function<LRESULT(int code, WPARAM wParam, LPARAM lParam)>;

// Thread hooks only: threadId and hInstance are accepted for the classic signature and ignored.
// Returns 0 for a type this system never calls or an empty procedure.
HHOOK SetWindowsHookExW(int type, HOOKPROC proc, HANDLE hInstance = 0, DWORD threadId = 0);
inline HHOOK SetWindowsHookEx(int type, HOOKPROC proc, HANDLE hInstance = 0, DWORD threadId = 0) {
  return SetWindowsHookExW(type, std::move(proc), hInstance, threadId);
}
// Safe from inside the hook itself: the running call finishes.
BOOL UnhookWindowsHookEx(HHOOK hook);
// Passes the event to the hook after `hook` in its chain; 0 at the end of the chain.
LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wParam, LPARAM lParam);

// Platform side: runs the chain of a type; 0 when it is empty.
LRESULT CallHooks(int type, int code, WPARAM wParam, LPARAM lParam);
[[nodiscard]] bool HasHooks(int type);
void RemoveAllHooks();

}  // namespace mx::platform
