#pragma once
// Windows: classes, creation and destruction, the window tree, styles and window longs,
// properties, text, position and visibility, window regions, painting and window DCs.
//
// Window procedures are handles too. RegisterWindowProc turns a C++ callable into a WNDPROC;
// that handle is what a class names, what GWL_WNDPROC holds and what CallWindowProc calls, so
// subclassing by SetWindowLong(GWL_WNDPROC) and CallWindowProc chains exactly as the classic
// system does, with the callable kept alive while any call is inside it.
#include <functional>
#include <string>
#include <string_view>

#include "platform/Messages.h"
#include "platform/Types.h"

namespace mx::platform {

// ---- window procedures -------------------------------------------------------------------------

[[nodiscard]] WNDPROC RegisterWindowProc(WindowProcFn fn);
// The handle dies at once; a call already inside the procedure finishes normally.
BOOL UnregisterWindowProc(WNDPROC proc);
// Calls a registered procedure; 0 for a stale one.
LRESULT CallWindowProc(WNDPROC proc, HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
LRESULT DefWindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

// ---- classes -----------------------------------------------------------------------------------

struct WNDCLASSEXW {
  UINT cbSize = sizeof(WNDCLASSEXW);
  UINT style = 0;
  WNDPROC lpfnWndProc = 0;
  int cbClsExtra = 0;
  int cbWndExtra = 0;
  HANDLE hInstance = 0;
  HICON hIcon = 0;
  HCURSOR hCursor = 0;
  HBRUSH hbrBackground = 0;  // a brush, or a system colour index + 1
  const char16_t* lpszMenuName = nullptr;
  const char16_t* lpszClassName = nullptr;
  HICON hIconSm = 0;
};
using WNDCLASSEX = WNDCLASSEXW;

// Fails (0) for a missing name or procedure, or a name already registered.
ATOM RegisterClassExW(const WNDCLASSEXW* wc);
inline ATOM RegisterClassEx(const WNDCLASSEXW* wc) { return RegisterClassExW(wc); }
// Fails while windows of the class exist.
BOOL UnregisterClassW(const char16_t* name, HANDLE hInstance = 0);
inline BOOL UnregisterClass(const char16_t* name, HANDLE hInstance = 0) { return UnregisterClassW(name, hInstance); }
BOOL GetClassInfoExW(HANDLE hInstance, const char16_t* name, WNDCLASSEXW* out);
int GetClassNameW(HWND hwnd, char16_t* buffer, int size);
inline int GetClassName(HWND hwnd, char16_t* buffer, int size) { return GetClassNameW(hwnd, buffer, size); }
[[nodiscard]] std::u16string GetClassNameString(HWND hwnd);
[[nodiscard]] uintptr_t GetClassLongPtr(HWND hwnd, int index);
uintptr_t SetClassLongPtr(HWND hwnd, int index, uintptr_t value);

// Registers `fn` as the procedure of a new class in one call; the procedure lives as long as
// the thread. Returns the class atom, 0 if the name is taken.
ATOM RegisterWindowClass(std::u16string_view name, WindowProcFn fn, UINT style = 0,
                         HBRUSH background = 0, HCURSOR cursor = 0, int cbWndExtra = 0);

// ---- creation and destruction ------------------------------------------------------------------

// The classic sequence: WH_CBT HCBT_CREATEWND, WM_GETMINMAXINFO (overlapped or sizable top-level
// windows), WM_NCCREATE, WM_NCCALCSIZE, WM_CREATE, WM_PARENTNOTIFY to the parent, WM_SIZE,
// WM_MOVE, then showing when WS_VISIBLE is given. WM_NCCREATE returning FALSE or WM_CREATE
// returning -1 destroys the window and gives 0. `menuOrId` is a child's identifier. A parent of
// HWND_MESSAGE makes an ordinary hidden top-level window (there are no message-only windows).
HWND CreateWindowExW(DWORD exStyle, const char16_t* className, const char16_t* windowName, DWORD style,
                     int x, int y, int width, int height, HWND parent, UINT_PTR menuOrId = 0,
                     HANDLE hInstance = 0, void* param = nullptr);
inline HWND CreateWindowEx(DWORD exStyle, const char16_t* className, const char16_t* windowName,
                           DWORD style, int x, int y, int width, int height, HWND parent,
                           UINT_PTR menuOrId = 0, HANDLE hInstance = 0, void* param = nullptr) {
  return CreateWindowExW(exStyle, className, windowName, style, x, y, width, height, parent, menuOrId,
                         hInstance, param);
}
inline HWND CreateWindow(const char16_t* className, const char16_t* windowName, DWORD style, int x,
                         int y, int width, int height, HWND parent, UINT_PTR menuOrId = 0,
                         HANDLE hInstance = 0, void* param = nullptr) {
  return CreateWindowExW(0, className, windowName, style, x, y, width, height, parent, menuOrId,
                         hInstance, param);
}

// Owned windows go first, each completely. Then the window is hidden, loses focus, capture and
// activation, and gets WM_DESTROY, followed by its children (parents before children); then
// WM_NCDESTROY from the deepest child up to the window itself. Its timers, DCs, region and
// properties go with it, and its handle is refused from then on.
BOOL DestroyWindow(HWND hwnd);

// ---- the tree ----------------------------------------------------------------------------------

// The desktop: the parent of every top-level window. It has no procedure and cannot be destroyed.
[[nodiscard]] HWND GetDesktopWindow();
[[nodiscard]] BOOL IsWindow(HWND hwnd);
// True when the window and all its ancestors have WS_VISIBLE.
[[nodiscard]] BOOL IsWindowVisible(HWND hwnd);
[[nodiscard]] BOOL IsWindowEnabled(HWND hwnd);
// Returns nonzero when the window was disabled before. Sends WM_ENABLE on a change.
BOOL EnableWindow(HWND hwnd, BOOL enable);
[[nodiscard]] BOOL IsChild(HWND parent, HWND hwnd);
// A child's parent, or a popup's owner (the classic rule); 0 otherwise.
[[nodiscard]] HWND GetParent(HWND hwnd);
// Returns the old parent. 0 or the desktop make the window top-level.
HWND SetParent(HWND hwnd, HWND newParent);
[[nodiscard]] HWND GetAncestor(HWND hwnd, UINT flags);
[[nodiscard]] HWND GetWindow(HWND hwnd, UINT cmd);
[[nodiscard]] HWND GetTopWindow(HWND hwnd);
[[nodiscard]] HWND GetNextWindow(HWND hwnd, UINT cmd);

using WNDENUMPROC = std::function<BOOL(HWND, LPARAM)>;
// Every descendant, depth first in z-order; stops when the callback returns FALSE.
BOOL EnumChildWindows(HWND parent, const WNDENUMPROC& fn, LPARAM lParam);
BOOL EnumWindows(const WNDENUMPROC& fn, LPARAM lParam);
// Top-level windows by class and/or caption (null matches anything).
[[nodiscard]] HWND FindWindowW(const char16_t* className, const char16_t* windowName);
inline HWND FindWindow(const char16_t* className, const char16_t* windowName) {
  return FindWindowW(className, windowName);
}
// Children of parent (top-level windows for 0) after `after`.
[[nodiscard]] HWND FindWindowExW(HWND parent, HWND after, const char16_t* className, const char16_t* windowName);
inline HWND FindWindowEx(HWND parent, HWND after, const char16_t* className, const char16_t* windowName) {
  return FindWindowExW(parent, after, className, windowName);
}

// ---- longs, properties, text -------------------------------------------------------------------

// GWL_WNDPROC, GWL_STYLE (WM_STYLECHANGING/CHANGED), GWL_EXSTYLE, GWL_HWNDPARENT (the owner of
// a top-level window), GWL_ID, GWL_USERDATA, and offsets into the class's extra window bytes.
LONG_PTR GetWindowLongPtr(HWND hwnd, int index);
LONG_PTR SetWindowLongPtr(HWND hwnd, int index, LONG_PTR value);
// The 32-bit forms: handles and styles come back unsigned-widened from the 32-bit value, and
// offsets into the extra window bytes read and write 4 bytes.
LONG GetWindowLong(HWND hwnd, int index);
LONG SetWindowLong(HWND hwnd, int index, LONG value);

BOOL SetPropW(HWND hwnd, const char16_t* name, intptr_t value);
[[nodiscard]] intptr_t GetPropW(HWND hwnd, const char16_t* name);
intptr_t RemovePropW(HWND hwnd, const char16_t* name);
inline BOOL SetProp(HWND hwnd, const char16_t* name, intptr_t value) { return SetPropW(hwnd, name, value); }
inline intptr_t GetProp(HWND hwnd, const char16_t* name) { return GetPropW(hwnd, name); }
inline intptr_t RemoveProp(HWND hwnd, const char16_t* name) { return RemovePropW(hwnd, name); }

// Through WM_SETTEXT, WM_GETTEXT and WM_GETTEXTLENGTH, so that a procedure can answer them.
BOOL SetWindowTextW(HWND hwnd, const char16_t* text);
int GetWindowTextW(HWND hwnd, char16_t* buffer, int size);
int GetWindowTextLengthW(HWND hwnd);
inline BOOL SetWindowText(HWND hwnd, const char16_t* text) { return SetWindowTextW(hwnd, text); }
inline int GetWindowText(HWND hwnd, char16_t* buffer, int size) { return GetWindowTextW(hwnd, buffer, size); }
inline int GetWindowTextLength(HWND hwnd) { return GetWindowTextLengthW(hwnd); }
[[nodiscard]] std::u16string GetWindowTextString(HWND hwnd);

// ---- position and visibility -------------------------------------------------------------------

BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint);
BOOL BringWindowToTop(HWND hwnd);
// Screen coordinates.
BOOL GetWindowRect(HWND hwnd, RECT* out);
// Always (0, 0, width, height) of the client area.
BOOL GetClientRect(HWND hwnd, RECT* out);
BOOL ClientToScreen(HWND hwnd, POINT* pt);
BOOL ScreenToClient(HWND hwnd, POINT* pt);
// Client coordinates of `from` to those of `to` (0 or the desktop mean the screen). The result
// packs the x offset in the low word and the y offset in the high word.
int MapWindowPoints(HWND from, HWND to, POINT* points, UINT count);
// Window rectangle for a wanted client rectangle under the given styles.
BOOL AdjustWindowRectEx(RECT* rect, DWORD style, BOOL menu, DWORD exStyle);

// Returns nonzero when the window was visible before.
BOOL ShowWindow(HWND hwnd, int cmd);
[[nodiscard]] BOOL IsIconic(HWND hwnd);
[[nodiscard]] BOOL IsZoomed(HWND hwnd);
BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* out);

// The deepest visible window under a screen point: disabled children give way to their parent,
// children with WS_EX_TRANSPARENT and windows answering WM_NCHITTEST with HTTRANSPARENT let the
// search go on below them, and window regions shape what is hit.
[[nodiscard]] HWND WindowFromPoint(POINT pt);
// The child of parent (client coordinates) containing the point, hidden and disabled ones
// included, or parent itself; 0 when the point is outside parent.
[[nodiscard]] HWND ChildWindowFromPoint(HWND parent, POINT pt);
[[nodiscard]] HWND ChildWindowFromPointEx(HWND parent, POINT pt, UINT flags);

// ---- window regions ----------------------------------------------------------------------------

// The window takes ownership of the region (window coordinates) and deletes it when replaced or
// when the window goes; 0 removes the region.
int SetWindowRgn(HWND hwnd, HRGN rgn, BOOL redraw);
// Copies the window's region into rgn; returns the region kind, ERROR (0) when it has none.
int GetWindowRgn(HWND hwnd, HRGN rgn);
int GetWindowRgnBox(HWND hwnd, RECT* out);

// ---- painting ----------------------------------------------------------------------------------

BOOL InvalidateRect(HWND hwnd, const RECT* rect, BOOL erase);
BOOL InvalidateRgn(HWND hwnd, HRGN rgn, BOOL erase);
BOOL ValidateRect(HWND hwnd, const RECT* rect);
BOOL ValidateRgn(HWND hwnd, HRGN rgn);
// Sends WM_PAINT at once when the window has something to paint.
BOOL UpdateWindow(HWND hwnd);
BOOL RedrawWindow(HWND hwnd, const RECT* rect, HRGN rgn, UINT flags);
BOOL GetUpdateRect(HWND hwnd, RECT* out, BOOL erase);
int GetUpdateRgn(HWND hwnd, HRGN rgn, BOOL erase);
// Sends WM_NCPAINT and WM_ERASEBKGND when due, validates the update region and returns a DC
// clipped to it. fErase is TRUE when the background is still to be erased by the caller.
HDC BeginPaint(HWND hwnd, PAINTSTRUCT* ps);
BOOL EndPaint(HWND hwnd, const PAINTSTRUCT* ps);

// ---- window DCs --------------------------------------------------------------------------------

// A DC on the client area (GetDC), the whole window (GetWindowDC) or as flags say (GetDCEx:
// DCX_WINDOW, DCX_CLIPCHILDREN, DCX_CLIPSIBLINGS, DCX_INTERSECTRGN or DCX_EXCLUDERGN with a
// region in the DC's coordinates, which the system takes over and deletes, as the classic call
// does). 0 or the desktop give a DC on the screen surface. Release every one with ReleaseDC; a
// CS_OWNDC window keeps one DC for its life and ReleaseDC leaves it alone.
HDC GetDC(HWND hwnd);
HDC GetWindowDC(HWND hwnd);
HDC GetDCEx(HWND hwnd, HRGN clip, DWORD flags);
int ReleaseDC(HWND hwnd, HDC hdc);
[[nodiscard]] HWND WindowFromDC(HDC hdc);

// ---- rectangles --------------------------------------------------------------------------------

BOOL SetRect(RECT* r, int left, int top, int right, int bottom);
BOOL SetRectEmpty(RECT* r);
BOOL CopyRect(RECT* dst, const RECT* src);
BOOL OffsetRect(RECT* r, int dx, int dy);
BOOL InflateRect(RECT* r, int dx, int dy);
BOOL IntersectRect(RECT* dst, const RECT* a, const RECT* b);
BOOL UnionRect(RECT* dst, const RECT* a, const RECT* b);
BOOL SubtractRect(RECT* dst, const RECT* a, const RECT* b);
[[nodiscard]] BOOL PtInRect(const RECT* r, POINT pt);
[[nodiscard]] BOOL IsRectEmpty(const RECT* r);
[[nodiscard]] BOOL EqualRect(const RECT* a, const RECT* b);

// ---- test support ------------------------------------------------------------------------------

// Destroys every window of the thread, unregisters every class, and clears the queue, timers,
// hooks, capture, focus, activation, key state, tracking, beeps, system colours and the screen
// settings, so that each test starts from an empty default desktop.
void ResetWindowing();
// Adds a step to every later ResetWindowing of this thread, run once the windows are gone and
// before the timers are dropped: for layers above that free what belonged to those windows on a
// timer (the reset would otherwise throw that timer away with the clean-up in it).
void OnResetWindowing(std::function<void()> step);

}  // namespace mx::platform
