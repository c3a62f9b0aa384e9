// Window procedures, classes, creation and destruction, the tree, window longs, properties and
// text. Geometry is in WindowPos.cpp, painting and DCs in WindowPaint.cpp.
#include "platform/Window.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Hook.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace win {

namespace {
// The desktop's handle: slot 0 of the window table is never issued, so this value can never
// name a real window.
constexpr HWND kDesktop = static_cast<HWND>(HandleType::Window) << 28;
// Deeper nesting of sent messages than this is a runaway recursion; refusing the send keeps the
// stack intact and the fault visible as a 0 result.
constexpr int kMaxSendDepth = 1000;
}  // namespace

UserState& St() {
  thread_local UserState state;
  return state;
}

Wnd* Get(HWND hwnd) { return hwnd == kDesktop ? nullptr : St().windows.get(hwnd); }
Wnd* GetLive(HWND hwnd) { return Get(hwnd); }

// Top-level windows are the desktop's children; the list is kept apart from any window.
std::vector<HWND>& SiblingList(HWND parent) {
  if (Wnd* p = Get(parent)) return p->children;
  return St().topLevels;
}

Wnd& TopLevelOf(Wnd& w) {
  Wnd* cur = &w;
  while (Wnd* p = Get(cur->parent)) cur = p;
  return *cur;
}

POINT ScreenOrigin(const Wnd& w) {
  POINT pt{w.rect.left, w.rect.top};
  const Wnd* cur = &w;
  while (const Wnd* p = Get(cur->parent)) {
    pt.x += p->rect.left + p->client.left;
    pt.y += p->rect.top + p->client.top;
    cur = p;
  }
  return pt;
}

POINT ClientScreenOrigin(const Wnd& w) {
  POINT pt = ScreenOrigin(w);
  return {pt.x + w.client.left, pt.y + w.client.top};
}

POINT SurfaceOrigin(const Wnd& w) {
  POINT pt{0, 0};
  const Wnd* cur = &w;
  while (const Wnd* p = Get(cur->parent)) {
    pt.x += cur->rect.left + p->client.left;
    pt.y += cur->rect.top + p->client.top;
    cur = p;
  }
  return pt;
}

bool VisibleChain(const Wnd& w) {
  const Wnd* cur = &w;
  while (cur) {
    if (!(cur->style & WS_VISIBLE)) return false;
    cur = Get(cur->parent);
  }
  return true;
}

LRESULT Deliver(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  UserState& st = St();
  if (st.sendDepth >= kMaxSendDepth) return 0;
  struct DepthGuard {
    int& depth;
    explicit DepthGuard(int& d) : depth(d) { ++depth; }
    ~DepthGuard() { --depth; }
  } guard(st.sendDepth);

  if (HasHooks(WH_CALLWNDPROC)) {
    CWPSTRUCT cwp{lParam, wParam, msg, hwnd};
    CallHooks(WH_CALLWNDPROC, HC_ACTION, 0, reinterpret_cast<LPARAM>(&cwp));
    if (!(w = Get(hwnd))) return 0;
  }
  LRESULT result = CallWindowProc(w->proc, hwnd, msg, wParam, lParam);
  if (HasHooks(WH_CALLWNDPROCRET)) {
    CWPRETSTRUCT ret{result, lParam, wParam, msg, hwnd};
    CallHooks(WH_CALLWNDPROCRET, HC_ACTION, 0, reinterpret_cast<LPARAM>(&ret));
  }
  return result;
}

}  // namespace win

namespace {

// Frees the procedure a class made for itself, counting it back first: RegisterWindowClass kept
// it out of the live counts.
void ReleaseClassProc(WNDPROC proc) {
  AdjustLiveHandleCount(HandleType::Proc, +1);
  UnregisterWindowProc(proc);
}

bool SameNoCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char16_t x = a[i], y = b[i];
    if (x >= u'a' && x <= u'z') x = static_cast<char16_t>(x - 32);
    if (y >= u'a' && y <= u'z') y = static_cast<char16_t>(y - 32);
    if (x != y) return false;
  }
  return true;
}

std::shared_ptr<WindowClass> FindClass(std::u16string_view name) {
  for (auto& c : St().classes)
    if (SameNoCase(c->name, name)) return c;
  return nullptr;
}

void Unlink(Wnd& w) {
  auto& list = SiblingList(w.parent);
  list.erase(std::remove(list.begin(), list.end(), w.hwnd), list.end());
}

// Tells the parent chain that a child came or goes, as far as WS_EX_NOPARENTNOTIFY allows.
void SendParentNotify(HWND hwnd, UINT event) {
  HWND cur = hwnd;
  while (Wnd* w = Get(cur)) {
    if (!w->parent || (w->exStyle & WS_EX_NOPARENTNOTIFY)) break;
    HWND parent = w->parent;
    SendMessageW(parent, WM_PARENTNOTIFY, MAKEWPARAM(static_cast<int>(event), static_cast<int>(Get(hwnd) ? Get(hwnd)->id : 0)),
                 static_cast<LPARAM>(hwnd));
    cur = parent;
  }
}

// Every window of the subtree, parents before children, in z-order.
void CollectPreOrder(HWND hwnd, std::vector<HWND>& out) {
  Wnd* w = Get(hwnd);
  if (!w) return;
  out.push_back(hwnd);
  std::vector<HWND> kids = w->children;
  for (HWND c : kids) CollectPreOrder(c, out);
}

bool InSubtree(HWND root, HWND hwnd) {
  for (Wnd* w = Get(hwnd); w; w = Get(w->parent))
    if (w->hwnd == root) return true;
  return false;
}

void SendDestroyTree(HWND hwnd) {
  if (!Get(hwnd)) return;
  SendMessageW(hwnd, WM_DESTROY, 0, 0);
  Wnd* w = Get(hwnd);
  if (!w) return;
  std::vector<HWND> kids = w->children;
  for (HWND c : kids) {
    if (Wnd* cw = Get(c)) {
      cw->destroying = true;
      SendDestroyTree(c);
    }
  }
}

// WM_NCDESTROY from the deepest child up, each window freed right after its own message.
void FinalDestroyTree(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w) return;
  std::vector<HWND> kids = w->children;
  for (HWND c : kids) FinalDestroyTree(c);
  if (!Get(hwnd)) return;
  SendMessageW(hwnd, WM_NCDESTROY, 0, 0);
  w = Get(hwnd);
  if (!w) return;
  // Anything still below (a child created during WM_DESTROY) goes with it.
  std::vector<HWND> late = w->children;
  for (HWND c : late) FinalDestroyTree(c);
  w = Get(hwnd);
  if (!w) return;
  // Past WM_NCDESTROY nothing may refer to the window: its timers, DCs, input state, region
  // and place in the tree go, and then the handle itself.
  KillWindowTimers(hwnd);
  FreeWindowDCs(hwnd);
  ForgetWindowInput(hwnd);
  if (w->region) DeleteObject(w->region);
  if (w->cls) --w->cls->windows;
  Unlink(*w);
  // Owned windows that outlived their owner (created during destruction) lose it.
  for (HWND t : St().topLevels)
    if (Wnd* o = Get(t); o && o->owner == hwnd) o->owner = 0;
  St().windows.remove(hwnd);
}

// Destroys a window that failed during creation before it was ever shown.
void AbortCreation(HWND hwnd, bool sendNcDestroy) {
  if (sendNcDestroy) {
    if (Wnd* w = Get(hwnd)) w->destroying = true;
    FinalDestroyTree(hwnd);
    return;
  }
  Wnd* w = Get(hwnd);
  if (!w) return;
  if (w->cls) --w->cls->windows;
  Unlink(*w);
  St().windows.remove(hwnd);
}


}  // namespace

// ---- procedures --------------------------------------------------------------------------------

WNDPROC RegisterWindowProc(WindowProcFn fn) {
  if (!fn) return 0;
  auto entry = std::make_unique<ProcEntry>();
  entry->fn = std::make_shared<WindowProcFn>(std::move(fn));
  return St().procs.add(std::move(entry));
}

BOOL UnregisterWindowProc(WNDPROC proc) { return St().procs.remove(proc) ? TRUE : FALSE; }

LRESULT CallWindowProc(WNDPROC proc, HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  ProcEntry* e = St().procs.get(proc);
  if (!e) return 0;
  // Hold the callable: the procedure may replace or unregister itself while it runs.
  std::shared_ptr<WindowProcFn> fn = e->fn;
  return (*fn)(hwnd, msg, wParam, lParam);
}

// ---- classes -----------------------------------------------------------------------------------

ATOM RegisterClassExW(const WNDCLASSEXW* wc) {
  if (!wc || !wc->lpszClassName || !wc->lpszClassName[0] || !St().procs.valid(wc->lpfnWndProc)) return 0;
  if (wc->cbClsExtra < 0 || wc->cbWndExtra < 0 || wc->cbClsExtra > 4096 || wc->cbWndExtra > 4096) return 0;
  if (FindClass(wc->lpszClassName)) return 0;
  auto c = std::make_shared<WindowClass>();
  c->name = wc->lpszClassName;
  c->atom = St().nextAtom++;
  c->style = wc->style;
  c->proc = wc->lpfnWndProc;
  c->background = wc->hbrBackground;
  c->cursor = wc->hCursor;
  c->icon = wc->hIcon;
  c->cbClsExtra = wc->cbClsExtra;
  c->cbWndExtra = wc->cbWndExtra;
  c->clsExtra.assign(static_cast<size_t>(wc->cbClsExtra), 0);
  St().classes.push_back(c);
  return c->atom;
}

BOOL UnregisterClassW(const char16_t* name, HANDLE) {
  if (!name) return FALSE;
  auto& classes = St().classes;
  for (auto it = classes.begin(); it != classes.end(); ++it) {
    if (SameNoCase((*it)->name, name)) {
      if ((*it)->windows > 0) return FALSE;
      // A procedure that RegisterWindowClass made for the class goes with it.
      if ((*it)->ownsProc) ReleaseClassProc((*it)->proc);
      classes.erase(it);
      return TRUE;
    }
  }
  return FALSE;
}

BOOL GetClassInfoExW(HANDLE, const char16_t* name, WNDCLASSEXW* out) {
  auto c = name ? FindClass(name) : nullptr;
  if (!c || !out) return FALSE;
  out->style = c->style;
  out->lpfnWndProc = c->proc;
  out->cbClsExtra = c->cbClsExtra;
  out->cbWndExtra = c->cbWndExtra;
  out->hIcon = c->icon;
  out->hCursor = c->cursor;
  out->hbrBackground = c->background;
  out->lpszClassName = c->name.c_str();
  return c->atom;
}

std::u16string GetClassNameString(HWND hwnd) {
  Wnd* w = Get(hwnd);
  return w && w->cls ? w->cls->name : std::u16string();
}

int GetClassNameW(HWND hwnd, char16_t* buffer, int size) {
  if (!buffer || size <= 0) return 0;
  std::u16string name = GetClassNameString(hwnd);
  int n = std::min<int>(static_cast<int>(name.size()), size - 1);
  std::copy_n(name.begin(), n, buffer);
  buffer[n] = 0;
  return n;
}

uintptr_t GetClassLongPtr(HWND hwnd, int index) {
  Wnd* w = Get(hwnd);
  if (!w || !w->cls) return 0;
  switch (index) {
    case GCL_STYLE: return w->cls->style;
    case GCL_WNDPROC: return w->cls->proc;
    case GCL_HBRBACKGROUND: return w->cls->background;
    case GCL_HCURSOR: return w->cls->cursor;
    case GCL_CBWNDEXTRA: return static_cast<uintptr_t>(w->cls->cbWndExtra);
    default:
      if (index >= 0 && static_cast<size_t>(index) + sizeof(uintptr_t) <= w->cls->clsExtra.size()) {
        uintptr_t v;
        std::memcpy(&v, w->cls->clsExtra.data() + index, sizeof v);
        return v;
      }
      return 0;
  }
}

uintptr_t SetClassLongPtr(HWND hwnd, int index, uintptr_t value) {
  Wnd* w = Get(hwnd);
  if (!w || !w->cls) return 0;
  uintptr_t old = GetClassLongPtr(hwnd, index);
  WindowClass& c = *w->cls;
  switch (index) {
    case GCL_STYLE: c.style = static_cast<UINT>(value); break;
    case GCL_WNDPROC: c.proc = static_cast<WNDPROC>(value); break;
    case GCL_HBRBACKGROUND: c.background = static_cast<HBRUSH>(value); break;
    case GCL_HCURSOR: c.cursor = static_cast<HCURSOR>(value); break;
    default:
      if (index >= 0 && static_cast<size_t>(index) + sizeof(uintptr_t) <= c.clsExtra.size())
        std::memcpy(c.clsExtra.data() + index, &value, sizeof value);
      else
        return 0;
  }
  return old;
}

ATOM RegisterWindowClass(std::u16string_view name, WindowProcFn fn, UINT style, HBRUSH background,
                         HCURSOR cursor, int cbWndExtra) {
  std::u16string n(name);
  if (n.empty() || FindClass(n)) return 0;
  WNDPROC proc = RegisterWindowProc(std::move(fn));
  WNDCLASSEXW wc;
  wc.style = style;
  wc.lpfnWndProc = proc;
  wc.hbrBackground = background;
  wc.hCursor = cursor;
  wc.cbWndExtra = cbWndExtra;
  wc.lpszClassName = n.c_str();
  ATOM atom = RegisterClassExW(&wc);
  if (!atom) {
    UnregisterWindowProc(proc);
  } else {
    St().classes.back()->ownsProc = true;
    // A class lives as long as the thread unless unregistered, and its procedure with it: the
    // procedure is counted with the class, not as a live object that a leak check would flag.
    AdjustLiveHandleCount(HandleType::Proc, -1);
  }
  return atom;
}

// ---- creation ----------------------------------------------------------------------------------

HWND CreateWindowExW(DWORD exStyle, const char16_t* className, const char16_t* windowName, DWORD style,
                     int x, int y, int width, int height, HWND parent, UINT_PTR menuOrId, HANDLE hInstance,
                     void* param) {
  UserState& st = St();
  auto cls = className ? FindClass(className) : nullptr;
  if (!cls) return 0;
  if (parent == kDesktop || parent == HWND_MESSAGE) parent = 0;
  HWND owner = 0;
  if (style & WS_CHILD) {
    if (!Get(parent)) return 0;  // a child needs a parent
  } else if (parent) {
    if (!Get(parent)) return 0;
    owner = GetAncestor(parent, GA_ROOT);
    parent = 0;
  }
  const bool topLevel = parent == 0;
  // Overlapped windows always have a caption and clip their siblings, whatever was asked.
  if (topLevel && !(style & (WS_POPUP | WS_CHILD))) style |= WS_CLIPSIBLINGS | WS_CAPTION;

  // Defaults: overlapped windows cascade from the work area's corner.
  if (x == CW_USEDEFAULT) {
    if (topLevel && !(style & WS_POPUP)) {
      int step = 26 * (st.createdCount % 8);
      x = st.workArea.left + step;
      y = st.workArea.top + step;
    } else {
      x = 0;
      y = 0;
    }
  }
  if (width == CW_USEDEFAULT) {
    if (topLevel && !(style & WS_POPUP)) {
      width = (st.workArea.right - st.workArea.left) * 3 / 4;
      height = (st.workArea.bottom - st.workArea.top) * 3 / 4;
    } else {
      width = 0;
      height = 0;
    }
  }
  width = std::max(width, 0);
  height = std::max(height, 0);
  ++st.createdCount;

  // Visibility and the minimised/maximised state are applied by ShowWindow at the end, so that
  // the window hears of them in the usual order after WM_CREATE.
  const DWORD wantVisible = style & WS_VISIBLE;
  const DWORD wantState = style & (WS_MINIMIZE | WS_MAXIMIZE);
  auto w = std::make_unique<Wnd>();
  w->cls = cls;
  w->style = style & ~(WS_VISIBLE | WS_MINIMIZE | WS_MAXIMIZE);
  w->exStyle = exStyle;
  w->parent = parent;
  w->owner = owner;
  w->rect = {x, y, x + width, y + height};
  w->normalRect = w->rect;
  w->client = {0, 0, width, height};
  w->proc = cls->proc;
  w->id = (style & WS_CHILD) ? static_cast<LONG_PTR>(menuOrId) : 0;
  w->extra.assign(static_cast<size_t>(cls->cbWndExtra), 0);
  Wnd* raw = w.get();
  HWND hwnd = st.windows.add(std::move(w));
  if (!hwnd) return 0;
  raw->hwnd = hwnd;
  ++cls->windows;
  if (topLevel) {
    // New top-level windows go on top of their band; children go to the bottom, so that the
    // first child created is the first in z-order (and tab) order.
    auto& list = st.topLevels;
    auto pos = list.begin();
    if (!(exStyle & WS_EX_TOPMOST))
      while (pos != list.end() && Get(*pos) && (Get(*pos)->exStyle & WS_EX_TOPMOST)) ++pos;
    list.insert(pos, hwnd);
    ResizeSurface(*raw);
  } else {
    Get(parent)->children.push_back(hwnd);
  }

  std::u16string nameCopy = windowName ? windowName : u"";
  CREATESTRUCTW cs;
  cs.lpCreateParams = param;
  cs.hInstance = hInstance;
  cs.hMenu = static_cast<HANDLE>(menuOrId);
  cs.hwndParent = parent ? parent : owner;
  cs.x = x;
  cs.y = y;
  cs.cx = width;
  cs.cy = height;
  cs.style = static_cast<LONG>(style);
  cs.lpszName = nameCopy.c_str();
  cs.lpszClass = cls->name.c_str();
  cs.dwExStyle = exStyle;

  // The CBT hook sees the handle before any message and may still refuse the window.
  if (HasHooks(WH_CBT)) {
    CBT_CREATEWND cbt{&cs, HWND_TOP};
    if (CallHooks(WH_CBT, HCBT_CREATEWND, hwnd, reinterpret_cast<LPARAM>(&cbt))) {
      AbortCreation(hwnd, false);
      return 0;
    }
  }

  if (topLevel && ((style & WS_THICKFRAME) || !(style & (WS_POPUP | WS_CHILD)))) {
    MINMAXINFO mmi;
    RECT wa = st.workArea;
    mmi.ptMaxSize = {wa.right - wa.left, wa.bottom - wa.top};
    mmi.ptMaxPosition = {wa.left, wa.top};
    mmi.ptMinTrackSize = {GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK)};
    mmi.ptMaxTrackSize = {GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK)};
    SendMessageW(hwnd, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&mmi));
    if (Wnd* cw = Get(hwnd)) {
      int cx = std::clamp<int>(width, mmi.ptMinTrackSize.x, std::max(mmi.ptMinTrackSize.x, mmi.ptMaxTrackSize.x));
      int cy = std::clamp<int>(height, mmi.ptMinTrackSize.y, std::max(mmi.ptMinTrackSize.y, mmi.ptMaxTrackSize.y));
      cw->rect.right = cw->rect.left + cx;
      cw->rect.bottom = cw->rect.top + cy;
      cw->normalRect = cw->rect;
      cw->client = {0, 0, cx, cy};
      cs.cx = cx;
      cs.cy = cy;
      ResizeSurface(*cw);
    }
  }

  // Every step below can run code that destroys the window; each one checks the handle again.
  if (!Get(hwnd)) return 0;
  if (!SendMessageW(hwnd, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&cs))) {
    AbortCreation(hwnd, Get(hwnd) != nullptr);
    return 0;
  }
  if (Wnd* cw = Get(hwnd)) cw->created = true; else return 0;

  // The client area comes from WM_NCCALCSIZE, in parent coordinates.
  {
    Wnd* cw = Get(hwnd);
    RECT rc = cw->rect;
    SendMessageW(hwnd, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&rc));
    if (!(cw = Get(hwnd))) return 0;
    cw->client = {rc.left - cw->rect.left, rc.top - cw->rect.top, rc.right - cw->rect.left, rc.bottom - cw->rect.top};
    if (cw->client.right < cw->client.left) cw->client.right = cw->client.left;
    if (cw->client.bottom < cw->client.top) cw->client.bottom = cw->client.top;
  }

  // -1 from WM_CREATE is a refusal: the window goes the full way, WM_DESTROY included.
  if (SendMessageW(hwnd, WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs)) == -1) {
    if (Get(hwnd)) DestroyWindow(hwnd);
    return 0;
  }
  if (!Get(hwnd)) return 0;
  SendParentNotify(hwnd, WM_CREATE);
  if (Wnd* cw = Get(hwnd)) {
    cw->sizeSent = true;
    SendMessageW(hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(cw->client.right - cw->client.left, cw->client.bottom - cw->client.top));
  }
  if (Wnd* cw = Get(hwnd)) {
    POINT org{cw->rect.left + cw->client.left, cw->rect.top + cw->client.top};
    SendMessageW(hwnd, WM_MOVE, 0, MAKELPARAM(org.x, org.y));
  }
  if (!Get(hwnd)) return 0;
  if (wantVisible) {
    int cmd = (wantState & WS_MAXIMIZE) ? SW_SHOWMAXIMIZED : (wantState & WS_MINIMIZE) ? SW_SHOWMINIMIZED : SW_SHOW;
    ShowWindow(hwnd, cmd);
  }
  return Get(hwnd) ? hwnd : 0;
}

BOOL DestroyWindow(HWND hwnd) {
  Wnd* w = Get(hwnd);
  // A second DestroyWindow from inside the first one's messages must not start over.
  if (!w || w->destroying) return FALSE;
  if (HasHooks(WH_CBT) && CallHooks(WH_CBT, HCBT_DESTROYWND, hwnd, 0)) return FALSE;
  w->destroying = true;
  const bool child = w->parent != 0;
  if (child) SendParentNotify(hwnd, WM_DESTROY);

  // Hiding first gives the usual hide messages and moves focus and activation elsewhere while
  // the window can still answer.
  if ((w = Get(hwnd)) && (w->style & WS_VISIBLE)) {
    if (child)
      ShowWindow(hwnd, SW_HIDE);
    else
      SetWindowPos(hwnd, 0, 0, 0, 0, 0, SWP_HIDEWINDOW | SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER);
  }
  if (!Get(hwnd)) return TRUE;

  // Owned windows go first, each completely.
  if (!child) {
    std::vector<HWND> owned;
    for (HWND t : St().topLevels)
      if (Wnd* o = Get(t); o && o->owner == hwnd) owned.push_back(t);
    for (HWND o : owned) DestroyWindow(o);
  }
  if (!Get(hwnd)) return TRUE;

  // Activation, focus and capture leave the subtree before it hears of its end.
  UserState& st = St();
  if (!child && st.active == hwnd) ActivateOtherWindow(hwnd);
  if (st.focus && InSubtree(hwnd, st.focus)) {
    HWND parent = Get(hwnd) ? Get(hwnd)->parent : 0;
    if (parent && !Get(parent)->destroying)
      SetFocus(parent);
    else if (st.focus && InSubtree(hwnd, st.focus)) {
      HWND old = st.focus;
      st.focus = 0;
      SendMessageW(old, WM_KILLFOCUS, 0, 0);
    }
  }
  if (st.capture && InSubtree(hwnd, st.capture)) {
    HWND old = st.capture;
    st.capture = 0;
    SendMessageW(old, WM_CAPTURECHANGED, 0, 0);
    PostSyntheticMouseMove();
  }
  if (!Get(hwnd)) return TRUE;

  SendDestroyTree(hwnd);
  FinalDestroyTree(hwnd);
  return TRUE;
}

// ---- the tree ----------------------------------------------------------------------------------

HWND GetDesktopWindow() { return kDesktop; }

BOOL IsWindow(HWND hwnd) { return hwnd == kDesktop || Get(hwnd) ? TRUE : FALSE; }

BOOL IsWindowVisible(HWND hwnd) {
  if (hwnd == kDesktop) return TRUE;
  Wnd* w = Get(hwnd);
  return w && VisibleChain(*w) ? TRUE : FALSE;
}

BOOL IsWindowEnabled(HWND hwnd) {
  if (hwnd == kDesktop) return TRUE;
  Wnd* w = Get(hwnd);
  return w && !(w->style & WS_DISABLED) ? TRUE : FALSE;
}

BOOL EnableWindow(HWND hwnd, BOOL enable) {
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  const bool wasDisabled = (w->style & WS_DISABLED) != 0;
  if (enable && wasDisabled) {
    w->style &= ~WS_DISABLED;
    SendMessageW(hwnd, WM_ENABLE, TRUE, 0);
  } else if (!enable && !wasDisabled) {
    // A disabled window can hold neither a mouse mode nor the focus.
    SendMessageW(hwnd, WM_CANCELMODE, 0, 0);
    if (Wnd* cw = Get(hwnd)) cw->style |= WS_DISABLED; else return FALSE;
    if (St().focus == hwnd) SetFocus(0);
    SendMessageW(hwnd, WM_ENABLE, FALSE, 0);
  }
  return wasDisabled ? TRUE : FALSE;
}

BOOL IsChild(HWND parent, HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w || !Get(parent)) return FALSE;
  for (Wnd* p = Get(w->parent); p; p = Get(p->parent))
    if (p->hwnd == parent) return TRUE;
  return FALSE;
}

HWND GetParent(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  if (w->parent) return w->parent;
  if (w->style & WS_POPUP) return w->owner;
  return 0;
}

HWND GetAncestor(HWND hwnd, UINT flags) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  switch (flags) {
    case GA_PARENT: return w->parent ? w->parent : kDesktop;
    case GA_ROOT: return TopLevelOf(*w).hwnd;
    case GA_ROOTOWNER: {
      HWND cur = TopLevelOf(*w).hwnd;
      for (int guard = 0; guard < 1000; ++guard) {
        HWND next = GetParent(cur);
        if (!next) break;
        cur = next;
      }
      return cur;
    }
    default: return 0;
  }
}

HWND GetWindow(HWND hwnd, UINT cmd) {
  if (hwnd == kDesktop) {
    if (cmd == GW_CHILD) return St().topLevels.empty() ? 0 : St().topLevels.front();
    return 0;
  }
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  auto& list = SiblingList(w->parent);
  auto pos = std::find(list.begin(), list.end(), hwnd);
  switch (cmd) {
    case GW_HWNDFIRST: return list.empty() ? 0 : list.front();
    case GW_HWNDLAST: return list.empty() ? 0 : list.back();
    case GW_HWNDNEXT: return (pos != list.end() && pos + 1 != list.end()) ? *(pos + 1) : 0;
    case GW_HWNDPREV: return (pos != list.end() && pos != list.begin()) ? *(pos - 1) : 0;
    case GW_OWNER: return w->owner;
    case GW_CHILD: return w->children.empty() ? 0 : w->children.front();
    case GW_ENABLEDPOPUP:
      for (HWND t : St().topLevels)
        if (Wnd* o = Get(t); o && o->owner == hwnd && (o->style & WS_VISIBLE) && !(o->style & WS_DISABLED)) return t;
      return 0;
    default: return 0;
  }
}

HWND GetTopWindow(HWND hwnd) { return GetWindow(hwnd ? hwnd : kDesktop, GW_CHILD); }
HWND GetNextWindow(HWND hwnd, UINT cmd) { return GetWindow(hwnd, cmd); }

BOOL EnumChildWindows(HWND parent, const WNDENUMPROC& fn, LPARAM lParam) {
  if (!fn) return FALSE;
  std::vector<HWND> all;
  if (!parent || parent == kDesktop) {
    all = St().topLevels;
  } else {
    Wnd* p = Get(parent);
    if (!p) return FALSE;
    std::vector<HWND> kids = p->children;
    for (HWND c : kids) CollectPreOrder(c, all);
  }
  for (HWND h : all) {
    if (!Get(h)) continue;  // destroyed by an earlier callback
    if (!fn(h, lParam)) return FALSE;
  }
  return TRUE;
}

BOOL EnumWindows(const WNDENUMPROC& fn, LPARAM lParam) { return EnumChildWindows(0, fn, lParam); }

HWND FindWindowExW(HWND parent, HWND after, const char16_t* className, const char16_t* windowName) {
  std::vector<HWND> list;
  if (!parent || parent == kDesktop) {
    list = St().topLevels;
  } else {
    Wnd* p = Get(parent);
    if (!p) return 0;
    list = p->children;
  }
  auto it = list.begin();
  if (after) {
    it = std::find(list.begin(), list.end(), after);
    if (it == list.end()) return 0;
    ++it;
  }
  for (; it != list.end(); ++it) {
    Wnd* w = Get(*it);
    if (!w) continue;
    if (className && !SameNoCase(w->cls->name, className)) continue;
    if (windowName && !SameNoCase(w->text, windowName)) continue;
    return *it;
  }
  return 0;
}

HWND FindWindowW(const char16_t* className, const char16_t* windowName) {
  return FindWindowExW(0, 0, className, windowName);
}

// ---- longs -------------------------------------------------------------------------------------

namespace {

LONG_PTR SetStyle(HWND hwnd, int index, DWORD value) {
  Wnd* w = Get(hwnd);
  DWORD old = index == GWL_STYLE ? w->style : w->exStyle;
  STYLESTRUCT ss{old, value};
  SendMessageW(hwnd, WM_STYLECHANGING, static_cast<WPARAM>(static_cast<intptr_t>(index)), reinterpret_cast<LPARAM>(&ss));
  if (!(w = Get(hwnd))) return 0;
  if (index == GWL_STYLE) {
    w->style = ss.styleNew;
  } else {
    // The topmost band is kept by SetWindowPos only; a style write cannot move a window there.
    DWORD next = (ss.styleNew & ~WS_EX_TOPMOST) | (w->exStyle & WS_EX_TOPMOST);
    if ((w->exStyle & WS_EX_LAYERED) && !(next & WS_EX_LAYERED)) {
      w->layeredFlags = 0;
      w->layeredAlpha = 255;
      w->perPixel = false;
    }
    w->exStyle = next;
  }
  ss.styleOld = old;
  SendMessageW(hwnd, WM_STYLECHANGED, static_cast<WPARAM>(static_cast<intptr_t>(index)), reinterpret_cast<LPARAM>(&ss));
  RefreshWindowDCs();
  return static_cast<LONG_PTR>(old);
}

LONG_PTR GetLongImpl(HWND hwnd, int index, size_t bytes) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  switch (index) {
    case GWL_WNDPROC: return static_cast<LONG_PTR>(w->proc);
    case GWL_HINSTANCE: return 0;
    case GWL_HWNDPARENT: return static_cast<LONG_PTR>(w->parent ? w->parent : w->owner);
    case GWL_STYLE: return static_cast<LONG_PTR>(w->style);
    case GWL_EXSTYLE: return static_cast<LONG_PTR>(w->exStyle);
    case GWL_ID: return w->id;
    case GWL_USERDATA: return w->userData;
    default:
      if (index >= 0 && static_cast<size_t>(index) + bytes <= w->extra.size()) {
        if (bytes == sizeof(LONG)) {
          LONG v;
          std::memcpy(&v, w->extra.data() + index, sizeof v);
          return v;
        }
        LONG_PTR v;
        std::memcpy(&v, w->extra.data() + index, sizeof v);
        return v;
      }
      return 0;
  }
}

// `bytes` is the width of the access to the extra window bytes: 4 for the LONG forms, the
// pointer width for the Ptr forms.
LONG_PTR SetLongImpl(HWND hwnd, int index, LONG_PTR value, size_t bytes) {
  Wnd* w = Get(hwnd);
  if (!w) return 0;
  LONG_PTR old = GetLongImpl(hwnd, index, bytes);
  switch (index) {
    case GWL_WNDPROC:
      // A stale or foreign procedure would leave the window deaf: refuse it and keep the old one.
      if (!St().procs.valid(static_cast<WNDPROC>(value))) return 0;
      w->proc = static_cast<WNDPROC>(value);
      return old;
    case GWL_STYLE:
    case GWL_EXSTYLE:
      return SetStyle(hwnd, index, static_cast<DWORD>(value));
    case GWL_HWNDPARENT:
      // For a top-level window this is the owner, as in the classic system; a child moves.
      if (w->parent) {
        SetParent(hwnd, static_cast<HWND>(value));
      } else {
        HWND owner = value ? GetAncestor(static_cast<HWND>(value), GA_ROOT) : 0;
        if (owner == hwnd) return 0;
        w->owner = owner;
      }
      return old;
    case GWL_ID: w->id = value; return old;
    case GWL_USERDATA: w->userData = value; return old;
    default:
      if (index >= 0 && static_cast<size_t>(index) + bytes <= w->extra.size()) {
        if (bytes == sizeof(LONG)) {
          LONG v = static_cast<LONG>(value);
          std::memcpy(w->extra.data() + index, &v, sizeof v);
        } else {
          std::memcpy(w->extra.data() + index, &value, sizeof value);
        }
        return old;
      }
      return 0;
  }
}

}  // namespace

LONG_PTR GetWindowLongPtr(HWND hwnd, int index) { return GetLongImpl(hwnd, index, sizeof(LONG_PTR)); }
LONG_PTR SetWindowLongPtr(HWND hwnd, int index, LONG_PTR value) {
  return SetLongImpl(hwnd, index, value, sizeof(LONG_PTR));
}
LONG GetWindowLong(HWND hwnd, int index) { return static_cast<LONG>(GetLongImpl(hwnd, index, sizeof(LONG))); }
LONG SetWindowLong(HWND hwnd, int index, LONG value) {
  // Handles and styles are 32-bit values: widen without sign so that a WNDPROC survives.
  const bool unsignedValue = index == GWL_WNDPROC || index == GWL_HWNDPARENT || index == GWL_STYLE ||
                             index == GWL_EXSTYLE;
  LONG_PTR wide = unsignedValue ? static_cast<LONG_PTR>(static_cast<uint32_t>(value)) : static_cast<LONG_PTR>(value);
  return static_cast<LONG>(SetLongImpl(hwnd, index, wide, sizeof(LONG)));
}

// ---- properties and text -----------------------------------------------------------------------

BOOL SetPropW(HWND hwnd, const char16_t* name, intptr_t value) {
  Wnd* w = Get(hwnd);
  if (!w || !name || !name[0]) return FALSE;
  w->props[name] = value;
  return TRUE;
}

intptr_t GetPropW(HWND hwnd, const char16_t* name) {
  Wnd* w = Get(hwnd);
  if (!w || !name) return 0;
  auto it = w->props.find(name);
  return it == w->props.end() ? 0 : it->second;
}

intptr_t RemovePropW(HWND hwnd, const char16_t* name) {
  Wnd* w = Get(hwnd);
  if (!w || !name) return 0;
  auto it = w->props.find(name);
  if (it == w->props.end()) return 0;
  intptr_t v = it->second;
  w->props.erase(it);
  return v;
}

BOOL SetWindowTextW(HWND hwnd, const char16_t* text) {
  if (!Get(hwnd)) return FALSE;
  return SendMessageW(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text ? text : u"")) ? TRUE : FALSE;
}

int GetWindowTextW(HWND hwnd, char16_t* buffer, int size) {
  if (!buffer || size <= 0) return 0;
  buffer[0] = 0;
  if (!Get(hwnd)) return 0;
  return static_cast<int>(SendMessageW(hwnd, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthW(HWND hwnd) {
  if (!Get(hwnd)) return 0;
  return static_cast<int>(SendMessageW(hwnd, WM_GETTEXTLENGTH, 0, 0));
}

std::u16string GetWindowTextString(HWND hwnd) {
  int n = GetWindowTextLengthW(hwnd);
  if (n <= 0) return {};
  std::u16string s(static_cast<size_t>(n) + 1, u'\0');
  int got = GetWindowTextW(hwnd, s.data(), n + 1);
  s.resize(static_cast<size_t>(std::max(got, 0)));
  return s;
}

// ---- rectangles --------------------------------------------------------------------------------

BOOL SetRect(RECT* r, int left, int top, int right, int bottom) {
  if (!r) return FALSE;
  *r = {left, top, right, bottom};
  return TRUE;
}
BOOL SetRectEmpty(RECT* r) { return SetRect(r, 0, 0, 0, 0); }
BOOL CopyRect(RECT* dst, const RECT* src) {
  if (!dst || !src) return FALSE;
  *dst = *src;
  return TRUE;
}
BOOL OffsetRect(RECT* r, int dx, int dy) {
  if (!r) return FALSE;
  r->left += dx;
  r->right += dx;
  r->top += dy;
  r->bottom += dy;
  return TRUE;
}
BOOL InflateRect(RECT* r, int dx, int dy) {
  if (!r) return FALSE;
  r->left -= dx;
  r->right += dx;
  r->top -= dy;
  r->bottom += dy;
  return TRUE;
}
BOOL IntersectRect(RECT* dst, const RECT* a, const RECT* b) {
  if (!dst || !a || !b) return FALSE;
  RECT r{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
         std::min(a->bottom, b->bottom)};
  if (r.empty()) {
    *dst = {};
    return FALSE;
  }
  *dst = r;
  return TRUE;
}
BOOL UnionRect(RECT* dst, const RECT* a, const RECT* b) {
  if (!dst || !a || !b) return FALSE;
  if (a->empty() && b->empty()) {
    *dst = {};
    return FALSE;
  }
  if (a->empty()) *dst = *b;
  else if (b->empty()) *dst = *a;
  else
    *dst = {std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
            std::max(a->bottom, b->bottom)};
  return TRUE;
}
// What remains of a when b is taken away, when that is still a rectangle; otherwise a itself.
BOOL SubtractRect(RECT* dst, const RECT* a, const RECT* b) {
  if (!dst || !a || !b) return FALSE;
  RECT r = *a;
  RECT i;
  if (IntersectRect(&i, a, b)) {
    if (i.top == r.top && i.bottom == r.bottom) {
      if (i.left == r.left) r.left = i.right;
      else if (i.right == r.right) r.right = i.left;
    } else if (i.left == r.left && i.right == r.right) {
      if (i.top == r.top) r.top = i.bottom;
      else if (i.bottom == r.bottom) r.bottom = i.top;
    }
  }
  if (r.empty()) {
    *dst = {};
    return FALSE;
  }
  *dst = r;
  return TRUE;
}
BOOL PtInRect(const RECT* r, POINT pt) {
  return r && pt.x >= r->left && pt.x < r->right && pt.y >= r->top && pt.y < r->bottom ? TRUE : FALSE;
}
BOOL IsRectEmpty(const RECT* r) { return !r || r->empty() ? TRUE : FALSE; }
BOOL EqualRect(const RECT* a, const RECT* b) { return a && b && *a == *b ? TRUE : FALSE; }

// ---- reset -------------------------------------------------------------------------------------

namespace {

std::vector<std::function<void()>>& ResetSteps() {
  thread_local std::vector<std::function<void()>> steps;
  return steps;
}

}  // namespace

void OnResetWindowing(std::function<void()> step) { ResetSteps().push_back(std::move(step)); }

void ResetWindowing() {
  UserState& st = St();
  for (int pass = 0; pass < 4 && !st.topLevels.empty(); ++pass) {
    std::vector<HWND> tops = st.topLevels;
    for (HWND h : tops) DestroyWindow(h);
  }
  for (const auto& step : ResetSteps()) step();
  st.posted.clear();
  st.input.clear();
  st.quitPosted = false;
  st.quitCode = 0;
  st.idleActions.clear();
  st.timers.clear();
  RemoveAllHooks();
  st.capture = st.focus = st.active = st.mouseWindow = 0;
  st.mouseNonClient = false;
  st.tracking = {};
  st.lastClick = {};
  std::memset(st.asyncKeys, 0, sizeof st.asyncKeys);
  std::memset(st.syncKeys, 0, sizeof st.syncKeys);
  // Classes go with their procedures; a test registers what it needs.
  for (auto& c : st.classes)
    if (c->ownsProc) ReleaseClassProc(c->proc);
  st.classes.clear();
  st.createdCount = 0;
  SetCursor(0);
  SetScreenSize(1280, 800);
  st.cursor = {st.screenWidth / 2, st.screenHeight / 2};
  st.hoverTime = 400;
  st.hoverWidth = st.hoverHeight = 4;
  st.wheelLines = st.wheelChars = 3;
  st.doubleClickTime = 500;
  ResetSysColors();
  ResetMessageBeeps();
}

}  // namespace mx::platform
