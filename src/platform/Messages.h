#pragma once
// Message numbers, style bits, flags and the structures that travel with messages. Values are
// the classic desktop API's own, because the controls compare them with numbers written in
// their tables (subclass filters keep raw message numbers) and pack wParam/lParam as it does.
#include <cstdint>
#include <functional>

#include "platform/Types.h"

namespace mx::platform {

using LONG_PTR = intptr_t;
using ATOM = WORD;

// ---- window messages -------------------------------------------------------------------------
constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETREDRAW = 0x000B;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SYSCOLORCHANGE = 0x0015;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_SETTINGCHANGE = 0x001A;
constexpr UINT WM_ACTIVATEAPP = 0x001C;
constexpr UINT WM_CANCELMODE = 0x001F;
constexpr UINT WM_SETCURSOR = 0x0020;
constexpr UINT WM_MOUSEACTIVATE = 0x0021;
constexpr UINT WM_CHILDACTIVATE = 0x0022;
constexpr UINT WM_GETMINMAXINFO = 0x0024;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_STYLECHANGING = 0x007C;
constexpr UINT WM_STYLECHANGED = 0x007D;
constexpr UINT WM_NCCREATE = 0x0081;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_NCCALCSIZE = 0x0083;
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_NCPAINT = 0x0085;
constexpr UINT WM_NCACTIVATE = 0x0086;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_NCMOUSEMOVE = 0x00A0;
constexpr UINT WM_NCLBUTTONDOWN = 0x00A1;
constexpr UINT WM_NCLBUTTONUP = 0x00A2;
constexpr UINT WM_NCLBUTTONDBLCLK = 0x00A3;
constexpr UINT WM_NCRBUTTONDOWN = 0x00A4;
constexpr UINT WM_NCRBUTTONUP = 0x00A5;
constexpr UINT WM_NCRBUTTONDBLCLK = 0x00A6;
constexpr UINT WM_NCMBUTTONDOWN = 0x00A7;
constexpr UINT WM_NCMBUTTONUP = 0x00A8;
constexpr UINT WM_NCMBUTTONDBLCLK = 0x00A9;
constexpr UINT WM_NCXBUTTONDOWN = 0x00AB;
constexpr UINT WM_NCXBUTTONUP = 0x00AC;
constexpr UINT WM_NCXBUTTONDBLCLK = 0x00AD;
constexpr UINT WM_KEYFIRST = 0x0100;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_DEADCHAR = 0x0103;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_SYSCHAR = 0x0106;
constexpr UINT WM_KEYLAST = 0x0109;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_SYSCOMMAND = 0x0112;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_HSCROLL = 0x0114;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_INITMENU = 0x0116;
constexpr UINT WM_ENTERIDLE = 0x0121;
constexpr UINT WM_CTLCOLOREDIT = 0x0133;
constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
constexpr UINT WM_MOUSEFIRST = 0x0200;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_XBUTTONDOWN = 0x020B;
constexpr UINT WM_XBUTTONUP = 0x020C;
constexpr UINT WM_XBUTTONDBLCLK = 0x020D;
constexpr UINT WM_MOUSEHWHEEL = 0x020E;
constexpr UINT WM_MOUSELAST = 0x020E;
constexpr UINT WM_PARENTNOTIFY = 0x0210;
constexpr UINT WM_ENTERMENULOOP = 0x0211;
constexpr UINT WM_EXITMENULOOP = 0x0212;
constexpr UINT WM_SIZING = 0x0214;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_MOVING = 0x0216;
constexpr UINT WM_ENTERSIZEMOVE = 0x0231;
constexpr UINT WM_EXITSIZEMOVE = 0x0232;
constexpr UINT WM_MOUSEHOVER = 0x02A1;
constexpr UINT WM_NCMOUSELEAVE = 0x02A2;
constexpr UINT WM_MOUSELEAVE = 0x02A3;
constexpr UINT WM_CUT = 0x0300;
constexpr UINT WM_COPY = 0x0301;
constexpr UINT WM_PASTE = 0x0302;
constexpr UINT WM_CLEAR = 0x0303;
constexpr UINT WM_UNDO = 0x0304;
constexpr UINT WM_PRINT = 0x0317;
constexpr UINT WM_PRINTCLIENT = 0x0318;
constexpr UINT WM_THEMECHANGED = 0x031A;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;

// ---- window styles ---------------------------------------------------------------------------
constexpr DWORD WS_OVERLAPPED = 0x00000000;
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_MINIMIZE = 0x20000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_MAXIMIZE = 0x01000000;
constexpr DWORD WS_CAPTION = 0x00C00000;  // WS_BORDER | WS_DLGFRAME
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_DLGFRAME = 0x00400000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_THICKFRAME = 0x00040000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;
constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
constexpr DWORD WS_OVERLAPPEDWINDOW =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
constexpr DWORD WS_POPUPWINDOW = WS_POPUP | WS_BORDER | WS_SYSMENU;

constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
constexpr DWORD WS_EX_NOPARENTNOTIFY = 0x00000004;
constexpr DWORD WS_EX_TOPMOST = 0x00000008;
constexpr DWORD WS_EX_ACCEPTFILES = 0x00000010;
constexpr DWORD WS_EX_TRANSPARENT = 0x00000020;
constexpr DWORD WS_EX_MDICHILD = 0x00000040;
constexpr DWORD WS_EX_TOOLWINDOW = 0x00000080;
constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
constexpr DWORD WS_EX_CONTEXTHELP = 0x00000400;
constexpr DWORD WS_EX_RIGHT = 0x00001000;
constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;
constexpr DWORD WS_EX_STATICEDGE = 0x00020000;
constexpr DWORD WS_EX_APPWINDOW = 0x00040000;
constexpr DWORD WS_EX_LAYERED = 0x00080000;
constexpr DWORD WS_EX_NOINHERITLAYOUT = 0x00100000;
constexpr DWORD WS_EX_LAYOUTRTL = 0x00400000;
constexpr DWORD WS_EX_COMPOSITED = 0x02000000;
constexpr DWORD WS_EX_NOACTIVATE = 0x08000000;

// Class styles.
constexpr UINT CS_VREDRAW = 0x0001;
constexpr UINT CS_HREDRAW = 0x0002;
constexpr UINT CS_DBLCLKS = 0x0008;
constexpr UINT CS_OWNDC = 0x0020;
constexpr UINT CS_CLASSDC = 0x0040;
constexpr UINT CS_PARENTDC = 0x0080;
constexpr UINT CS_NOCLOSE = 0x0200;
constexpr UINT CS_SAVEBITS = 0x0800;
constexpr UINT CS_GLOBALCLASS = 0x4000;
constexpr UINT CS_DROPSHADOW = 0x00020000;

constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);

// ---- ShowWindow ------------------------------------------------------------------------------
constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_NORMAL = 1;
constexpr int SW_SHOWMINIMIZED = 2;
constexpr int SW_SHOWMAXIMIZED = 3;
constexpr int SW_MAXIMIZE = 3;
constexpr int SW_SHOWNOACTIVATE = 4;
constexpr int SW_SHOW = 5;
constexpr int SW_MINIMIZE = 6;
constexpr int SW_SHOWMINNOACTIVE = 7;
constexpr int SW_SHOWNA = 8;
constexpr int SW_RESTORE = 9;
constexpr int SW_SHOWDEFAULT = 10;

// wParam of WM_SIZE.
constexpr WPARAM SIZE_RESTORED = 0;
constexpr WPARAM SIZE_MINIMIZED = 1;
constexpr WPARAM SIZE_MAXIMIZED = 2;

// ---- SetWindowPos ----------------------------------------------------------------------------
constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOREDRAW = 0x0008;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_FRAMECHANGED = 0x0020;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;
constexpr UINT SWP_NOCOPYBITS = 0x0100;
constexpr UINT SWP_NOOWNERZORDER = 0x0200;
constexpr UINT SWP_NOSENDCHANGING = 0x0400;
constexpr UINT SWP_NOCLIENTSIZE = 0x0800;  // set by the system in WM_WINDOWPOSCHANGED
constexpr UINT SWP_NOCLIENTMOVE = 0x1000;  // likewise
constexpr UINT SWP_DEFERERASE = 0x2000;
constexpr UINT SWP_ASYNCWINDOWPOS = 0x4000;
constexpr UINT SWP_STATECHANGED = 0x8000;

constexpr HWND HWND_TOP = 0;
constexpr HWND HWND_BOTTOM = 1;
constexpr HWND HWND_TOPMOST = 0xFFFFFFFF;    // (HWND)-1
constexpr HWND HWND_NOTOPMOST = 0xFFFFFFFE;  // (HWND)-2
constexpr HWND HWND_MESSAGE = 0xFFFFFFFD;    // (HWND)-3
constexpr HWND HWND_BROADCAST = 0x0000FFFF;

// ---- GetWindowLong ---------------------------------------------------------------------------
constexpr int GWL_WNDPROC = -4;
constexpr int GWL_HINSTANCE = -6;
constexpr int GWL_HWNDPARENT = -8;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWL_USERDATA = -21;
constexpr int GWL_ID = -12;
constexpr int GWLP_WNDPROC = GWL_WNDPROC;
constexpr int GWLP_HWNDPARENT = GWL_HWNDPARENT;
constexpr int GWLP_USERDATA = GWL_USERDATA;
constexpr int GWLP_ID = GWL_ID;

// GetClassLong.
constexpr int GCL_STYLE = -26;
constexpr int GCL_WNDPROC = -24;
constexpr int GCL_HBRBACKGROUND = -10;
constexpr int GCL_HCURSOR = -12;
constexpr int GCL_CBWNDEXTRA = -18;

// ---- GetWindow / GetAncestor -----------------------------------------------------------------
constexpr UINT GW_HWNDFIRST = 0;
constexpr UINT GW_HWNDLAST = 1;
constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_HWNDPREV = 3;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;
constexpr UINT GW_ENABLEDPOPUP = 6;

constexpr UINT GA_PARENT = 1;
constexpr UINT GA_ROOT = 2;
constexpr UINT GA_ROOTOWNER = 3;

// ChildWindowFromPointEx.
constexpr UINT CWP_ALL = 0;
constexpr UINT CWP_SKIPINVISIBLE = 1;
constexpr UINT CWP_SKIPDISABLED = 2;
constexpr UINT CWP_SKIPTRANSPARENT = 4;

// ---- hit-test codes --------------------------------------------------------------------------
constexpr LRESULT HTERROR = -2;
constexpr LRESULT HTTRANSPARENT = -1;
constexpr LRESULT HTNOWHERE = 0;
constexpr LRESULT HTCLIENT = 1;
constexpr LRESULT HTCAPTION = 2;
constexpr LRESULT HTSYSMENU = 3;
constexpr LRESULT HTGROWBOX = 4;
constexpr LRESULT HTSIZE = 4;
constexpr LRESULT HTMENU = 5;
constexpr LRESULT HTHSCROLL = 6;
constexpr LRESULT HTVSCROLL = 7;
constexpr LRESULT HTMINBUTTON = 8;
constexpr LRESULT HTMAXBUTTON = 9;
constexpr LRESULT HTLEFT = 10;
constexpr LRESULT HTRIGHT = 11;
constexpr LRESULT HTTOP = 12;
constexpr LRESULT HTTOPLEFT = 13;
constexpr LRESULT HTTOPRIGHT = 14;
constexpr LRESULT HTBOTTOM = 15;
constexpr LRESULT HTBOTTOMLEFT = 16;
constexpr LRESULT HTBOTTOMRIGHT = 17;
constexpr LRESULT HTBORDER = 18;
constexpr LRESULT HTCLOSE = 20;
constexpr LRESULT HTHELP = 21;

// ---- WM_ACTIVATE, WM_MOUSEACTIVATE, WM_SYSCOMMAND --------------------------------------------
constexpr WORD WA_INACTIVE = 0;
constexpr WORD WA_ACTIVE = 1;
constexpr WORD WA_CLICKACTIVE = 2;

constexpr LRESULT MA_ACTIVATE = 1;
constexpr LRESULT MA_ACTIVATEANDEAT = 2;
constexpr LRESULT MA_NOACTIVATE = 3;
constexpr LRESULT MA_NOACTIVATEANDEAT = 4;

constexpr WPARAM SC_SIZE = 0xF000;
constexpr WPARAM SC_MOVE = 0xF010;
constexpr WPARAM SC_MINIMIZE = 0xF020;
constexpr WPARAM SC_MAXIMIZE = 0xF030;
constexpr WPARAM SC_CLOSE = 0xF060;
constexpr WPARAM SC_KEYMENU = 0xF100;
constexpr WPARAM SC_RESTORE = 0xF120;

// ---- mouse key state (wParam of mouse messages) ----------------------------------------------
constexpr WPARAM MK_LBUTTON = 0x0001;
constexpr WPARAM MK_RBUTTON = 0x0002;
constexpr WPARAM MK_SHIFT = 0x0004;
constexpr WPARAM MK_CONTROL = 0x0008;
constexpr WPARAM MK_MBUTTON = 0x0010;
constexpr WPARAM MK_XBUTTON1 = 0x0020;
constexpr WPARAM MK_XBUTTON2 = 0x0040;

constexpr WORD XBUTTON1 = 0x0001;
constexpr WORD XBUTTON2 = 0x0002;
constexpr int WHEEL_DELTA = 120;
constexpr UINT WHEEL_PAGESCROLL = 0xFFFFFFFF;

// ---- virtual keys ----------------------------------------------------------------------------
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_CANCEL = 0x03;
constexpr int VK_MBUTTON = 0x04;
constexpr int VK_XBUTTON1 = 0x05;
constexpr int VK_XBUTTON2 = 0x06;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_CLEAR = 0x0C;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_PAUSE = 0x13;
constexpr int VK_CAPITAL = 0x14;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_SNAPSHOT = 0x2C;
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
// '0'..'9' and 'A'..'Z' are their ASCII codes.
constexpr int VK_LWIN = 0x5B;
constexpr int VK_RWIN = 0x5C;
constexpr int VK_APPS = 0x5D;
constexpr int VK_NUMPAD0 = 0x60;
constexpr int VK_NUMPAD9 = 0x69;
constexpr int VK_MULTIPLY = 0x6A;
constexpr int VK_ADD = 0x6B;
constexpr int VK_SEPARATOR = 0x6C;
constexpr int VK_SUBTRACT = 0x6D;
constexpr int VK_DECIMAL = 0x6E;
constexpr int VK_DIVIDE = 0x6F;
constexpr int VK_F1 = 0x70;
constexpr int VK_F2 = 0x71;
constexpr int VK_F3 = 0x72;
constexpr int VK_F4 = 0x73;
constexpr int VK_F5 = 0x74;
constexpr int VK_F10 = 0x79;
constexpr int VK_F12 = 0x7B;
constexpr int VK_F24 = 0x87;
constexpr int VK_NUMLOCK = 0x90;
constexpr int VK_SCROLL = 0x91;
constexpr int VK_LSHIFT = 0xA0;
constexpr int VK_RSHIFT = 0xA1;
constexpr int VK_LCONTROL = 0xA2;
constexpr int VK_RCONTROL = 0xA3;
constexpr int VK_LMENU = 0xA4;
constexpr int VK_RMENU = 0xA5;
constexpr int VK_OEM_1 = 0xBA;       // ;:
constexpr int VK_OEM_PLUS = 0xBB;    // =+
constexpr int VK_OEM_COMMA = 0xBC;   // ,<
constexpr int VK_OEM_MINUS = 0xBD;   // -_
constexpr int VK_OEM_PERIOD = 0xBE;  // .>
constexpr int VK_OEM_2 = 0xBF;       // /?
constexpr int VK_OEM_3 = 0xC0;       // `~
constexpr int VK_OEM_4 = 0xDB;       // [{
constexpr int VK_OEM_5 = 0xDC;       // \|
constexpr int VK_OEM_6 = 0xDD;       // ]}
constexpr int VK_OEM_7 = 0xDE;       // '"

// lParam bits of key messages.
constexpr LPARAM KF_EXTENDED_BIT = 1 << 24;
constexpr LPARAM KF_ALTDOWN_BIT = 1 << 29;
constexpr LPARAM KF_REPEAT_BIT = 1 << 30;
constexpr LPARAM KF_UP_BIT = static_cast<LPARAM>(1u << 31);

// ---- PeekMessage, RedrawWindow, GetDCEx -------------------------------------------------------
constexpr UINT PM_NOREMOVE = 0x0000;
constexpr UINT PM_REMOVE = 0x0001;
constexpr UINT PM_NOYIELD = 0x0002;

constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_INTERNALPAINT = 0x0002;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_VALIDATE = 0x0008;
constexpr UINT RDW_NOINTERNALPAINT = 0x0010;
constexpr UINT RDW_NOERASE = 0x0020;
constexpr UINT RDW_NOCHILDREN = 0x0040;
constexpr UINT RDW_ALLCHILDREN = 0x0080;
constexpr UINT RDW_UPDATENOW = 0x0100;
constexpr UINT RDW_ERASENOW = 0x0200;
constexpr UINT RDW_FRAME = 0x0400;
constexpr UINT RDW_NOFRAME = 0x0800;

constexpr DWORD DCX_WINDOW = 0x00000001;
constexpr DWORD DCX_CACHE = 0x00000002;
constexpr DWORD DCX_PARENTCLIP = 0x00000020;
constexpr DWORD DCX_CLIPSIBLINGS = 0x00000010;
constexpr DWORD DCX_CLIPCHILDREN = 0x00000008;
constexpr DWORD DCX_EXCLUDERGN = 0x00000040;
constexpr DWORD DCX_INTERSECTRGN = 0x00000080;
constexpr DWORD DCX_LOCKWINDOWUPDATE = 0x00000400;

// ---- TrackMouseEvent -------------------------------------------------------------------------
constexpr DWORD TME_HOVER = 0x00000001;
constexpr DWORD TME_LEAVE = 0x00000002;
constexpr DWORD TME_NONCLIENT = 0x00000010;
constexpr DWORD TME_QUERY = 0x40000000;
constexpr DWORD TME_CANCEL = 0x80000000;
constexpr DWORD HOVER_DEFAULT = 0xFFFFFFFF;

// ---- layered windows -------------------------------------------------------------------------
constexpr DWORD LWA_COLORKEY = 0x00000001;
constexpr DWORD LWA_ALPHA = 0x00000002;
constexpr DWORD ULW_COLORKEY = 0x00000001;
constexpr DWORD ULW_ALPHA = 0x00000002;
constexpr DWORD ULW_OPAQUE = 0x00000004;

// ---- structures ------------------------------------------------------------------------------
struct MSG {
  HWND hwnd = 0;
  UINT message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
  DWORD time = 0;
  POINT pt{};
};

struct CREATESTRUCTW {
  void* lpCreateParams = nullptr;
  HANDLE hInstance = 0;
  HANDLE hMenu = 0;  // a child's identifier
  HWND hwndParent = 0;
  int cy = 0, cx = 0, y = 0, x = 0;
  LONG style = 0;
  const char16_t* lpszName = nullptr;
  const char16_t* lpszClass = nullptr;
  DWORD dwExStyle = 0;
};
using CREATESTRUCT = CREATESTRUCTW;

struct WINDOWPOS {
  HWND hwnd = 0;
  HWND hwndInsertAfter = 0;
  int x = 0, y = 0, cx = 0, cy = 0;
  UINT flags = 0;
};

struct NCCALCSIZE_PARAMS {
  RECT rgrc[3];
  WINDOWPOS* lppos = nullptr;
};

struct MINMAXINFO {
  POINT ptReserved{};
  POINT ptMaxSize{};
  POINT ptMaxPosition{};
  POINT ptMinTrackSize{};
  POINT ptMaxTrackSize{};
};

struct STYLESTRUCT {
  DWORD styleOld = 0;
  DWORD styleNew = 0;
};

struct TRACKMOUSEEVENT {
  DWORD cbSize = sizeof(TRACKMOUSEEVENT);
  DWORD dwFlags = 0;
  HWND hwndTrack = 0;
  DWORD dwHoverTime = 0;
};

struct PAINTSTRUCT {
  HDC hdc = 0;
  BOOL fErase = FALSE;
  RECT rcPaint{};
  BOOL fRestore = FALSE;
  BOOL fIncUpdate = FALSE;
  BYTE rgbReserved[32] = {};
};

struct WINDOWPLACEMENT {
  UINT length = sizeof(WINDOWPLACEMENT);
  UINT flags = 0;
  UINT showCmd = 0;
  POINT ptMinPosition{};
  POINT ptMaxPosition{};
  RECT rcNormalPosition{};
};


// A window procedure as C++ sees it; the window only holds a WNDPROC handle to one of these.
using WindowProcFn = std::function<LRESULT(HWND, UINT, WPARAM, LPARAM)>;

}  // namespace mx::platform
