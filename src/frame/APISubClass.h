#pragma once
// APISubClass: window messages, thread hooks and platform callbacks delivered as calls of an
// object's own procedures.
//
// Each registration gets a block of its own (the "thunk"), which lives apart from this class:
// for a window it is a window procedure registered with the platform and put in place of the
// window's own by SetWindowLong(GWL_WNDPROC). For every message the block runs
//
//   nesting + 1
//   shutdown set?         -> original procedure only
//   owner gone?           -> shutdown 0x82, original procedure only
//   before table has msg  -> owner's procedure (bBefore True); it may set bHandled and lReturn
//   not bHandled          -> kill a pending clean-up timer; lReturn = original procedure
//                            after table has msg -> owner's procedure (bBefore False)
//   nesting - 1; WM_NCDESTROY -> shutdown 0x8000
//   nesting 0 and shutdown set -> original procedure put back (0x82 destroys an API window),
//                                 clean-up timer of 100 ms started
//
// The timer frees the block. Any message that passes through the block in those 100 ms kills
// the timer and the next pass starts it again, so a block is never freed while a call is inside
// it or while a window still calls it.
//
// The owner. The classic build finds the owner's procedure by an ordinal into its class's
// table of procedures (1 the last private procedure, 2 the one before). Here the owner is a
// SubclassOwner with one virtual method per kind of callback (windows, hooks, other callbacks);
// nOrdinal travels with every call, so an owner with several procedures of a kind switches on
// it, and ProcedureCount tells how many ordinals of a kind it answers. An ordinal outside
// 1..ProcedureCount, or past the search limit of zAddressOfLoopLimit, is "Callback method not
// found". Where the classic build asks IsBadCodePtr whether the owner's code is still there,
// the block holds a weak token of the owner that dies with it.
//
// Errors go to one private reporter that shows and raises nothing; the operation returns False
// or leaves the tables as they were. LastError reads what it was told last.
#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/Event.h"
#include "host/String.h"
#include "platform/FontEnum.h"
#include "platform/Hook.h"
#include "platform/Messages.h"
#include "platform/Timer.h"
#include "platform/Types.h"
#include "platform/Window.h"

namespace mx::frame {

enum eThunkType : int32_t {
  SubclassThunk = 0,
  HookThunk = 1,
  CallbackThunk = 2,
};

enum eMsgWhen : int32_t {
  MSG_BEFORE = 1,
  MSG_AFTER = 2,
  MSG_BEFORE_AFTER = 3,
};

// Scoped, so that the platform's constants of the same names stay unambiguous where both are
// in sight.
enum class eHookType : int32_t {
  WH_MSGFILTER = -1,
  WH_JOURNALRECORD = 0,
  WH_JOURNALPLAYBACK = 1,
  WH_KEYBOARD = 2,
  WH_GETMESSAGE = 3,
  WH_CALLWNDPROC = 4,
  WH_CBT = 5,
  WH_SYSMSGFILTER = 6,
  WH_MOUSE = 7,
  WH_DEBUG = 9,
  WH_SHELL = 10,
  WH_FOREGROUNDIDLE = 11,
  WH_CALLWNDPROCRET = 12,
  WH_KEYBOARD_LL = 13,
  WH_MOUSE_LL = 14,
};

// The platform's window messages under their own names and values, and ALL_MESSAGES.
enum class eMsg : int32_t {
  ALL_MESSAGES = -1,
  WM_NULL = 0x0000, WM_CREATE = 0x0001, WM_DESTROY = 0x0002, WM_MOVE = 0x0003, WM_SIZE = 0x0005,
  WM_ACTIVATE = 0x0006, WM_SETFOCUS = 0x0007, WM_KILLFOCUS = 0x0008, WM_ENABLE = 0x000A,
  WM_SETREDRAW = 0x000B, WM_SETTEXT = 0x000C, WM_GETTEXT = 0x000D, WM_GETTEXTLENGTH = 0x000E,
  WM_PAINT = 0x000F, WM_CLOSE = 0x0010, WM_QUIT = 0x0012, WM_ERASEBKGND = 0x0014,
  WM_SYSCOLORCHANGE = 0x0015, WM_SHOWWINDOW = 0x0018, WM_SETTINGCHANGE = 0x001A,
  WM_ACTIVATEAPP = 0x001C, WM_CANCELMODE = 0x001F, WM_SETCURSOR = 0x0020, WM_MOUSEACTIVATE = 0x0021,
  WM_CHILDACTIVATE = 0x0022, WM_GETMINMAXINFO = 0x0024, WM_SETFONT = 0x0030, WM_GETFONT = 0x0031,
  WM_WINDOWPOSCHANGING = 0x0046, WM_WINDOWPOSCHANGED = 0x0047, WM_NOTIFY = 0x004E,
  WM_STYLECHANGING = 0x007C, WM_STYLECHANGED = 0x007D, WM_NCCREATE = 0x0081, WM_NCDESTROY = 0x0082,
  WM_NCCALCSIZE = 0x0083, WM_NCHITTEST = 0x0084, WM_NCPAINT = 0x0085, WM_NCACTIVATE = 0x0086,
  WM_GETDLGCODE = 0x0087, WM_NCMOUSEMOVE = 0x00A0, WM_NCLBUTTONDOWN = 0x00A1, WM_NCLBUTTONUP = 0x00A2,
  WM_NCLBUTTONDBLCLK = 0x00A3, WM_NCRBUTTONDOWN = 0x00A4, WM_NCRBUTTONUP = 0x00A5,
  WM_NCRBUTTONDBLCLK = 0x00A6, WM_NCMBUTTONDOWN = 0x00A7, WM_NCMBUTTONUP = 0x00A8,
  WM_NCMBUTTONDBLCLK = 0x00A9, WM_NCXBUTTONDOWN = 0x00AB, WM_NCXBUTTONUP = 0x00AC,
  WM_NCXBUTTONDBLCLK = 0x00AD, WM_KEYFIRST = 0x0100, WM_KEYDOWN = 0x0100, WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102, WM_DEADCHAR = 0x0103, WM_SYSKEYDOWN = 0x0104, WM_SYSKEYUP = 0x0105,
  WM_SYSCHAR = 0x0106, WM_KEYLAST = 0x0109, WM_INITDIALOG = 0x0110, WM_COMMAND = 0x0111,
  WM_SYSCOMMAND = 0x0112, WM_TIMER = 0x0113, WM_HSCROLL = 0x0114, WM_VSCROLL = 0x0115,
  WM_INITMENU = 0x0116, WM_ENTERIDLE = 0x0121, WM_CTLCOLOREDIT = 0x0133, WM_CTLCOLORSTATIC = 0x0138,
  WM_MOUSEFIRST = 0x0200, WM_MOUSEMOVE = 0x0200, WM_LBUTTONDOWN = 0x0201, WM_LBUTTONUP = 0x0202,
  WM_LBUTTONDBLCLK = 0x0203, WM_RBUTTONDOWN = 0x0204, WM_RBUTTONUP = 0x0205, WM_RBUTTONDBLCLK = 0x0206,
  WM_MBUTTONDOWN = 0x0207, WM_MBUTTONUP = 0x0208, WM_MBUTTONDBLCLK = 0x0209, WM_MOUSEWHEEL = 0x020A,
  WM_XBUTTONDOWN = 0x020B, WM_XBUTTONUP = 0x020C, WM_XBUTTONDBLCLK = 0x020D, WM_MOUSEHWHEEL = 0x020E,
  WM_MOUSELAST = 0x020E, WM_PARENTNOTIFY = 0x0210, WM_ENTERMENULOOP = 0x0211, WM_EXITMENULOOP = 0x0212,
  WM_SIZING = 0x0214, WM_CAPTURECHANGED = 0x0215, WM_MOVING = 0x0216, WM_ENTERSIZEMOVE = 0x0231,
  WM_EXITSIZEMOVE = 0x0232, WM_MOUSEHOVER = 0x02A1, WM_NCMOUSELEAVE = 0x02A2, WM_MOUSELEAVE = 0x02A3,
  WM_CUT = 0x0300, WM_COPY = 0x0301, WM_PASTE = 0x0302, WM_CLEAR = 0x0303, WM_UNDO = 0x0304,
  WM_PRINT = 0x0317, WM_PRINTCLIENT = 0x0318, WM_THEMECHANGED = 0x031A, WM_USER = 0x0400,
  WM_APP = 0x8000,
};

constexpr int32_t ALL_MESSAGES = -1;
constexpr int32_t MSG_ENTRIES = 32;

// Shutdown states of a window block.
constexpr int32_t kShutdownRemove = 0x82;    // to be removed (and an API window destroyed)
constexpr int32_t kShutdownWindowGone = 0x8000;

// The most arguments a callback block forwards.
constexpr int32_t kMaxCallbackParams = 10;

// Whoever receives the calls of a block. The base procedures do nothing, as an empty procedure
// would; an owner overrides those of the kinds it registers for.
class SubclassOwner {
 public:
  SubclassOwner() : m_token(std::make_shared<int>(0)) {}
  // A copy is a different owner, with a token of its own.
  SubclassOwner(const SubclassOwner&) : m_token(std::make_shared<int>(0)) {}
  SubclassOwner& operator=(const SubclassOwner&) { return *this; }
  virtual ~SubclassOwner() = default;

  // How many procedures of a kind the owner answers (ordinals 1..n).
  [[nodiscard]] virtual int32_t ProcedureCount(eThunkType /*kind*/) const { return 1; }

  // A window message, before (bBefore True) or after the window's original procedure. Setting
  // bHandled in the before call keeps the message from the original procedure and the after
  // call; lReturn is what the window procedure returns.
  virtual void SubclassProc(int32_t /*nOrdinal*/, bool /*bBefore*/, bool& /*bHandled*/, platform::LRESULT& /*lReturn*/,
                            platform::HWND /*lng_hWnd*/, platform::UINT /*uMsg*/, platform::WPARAM /*wParam*/,
                            platform::LPARAM /*lParam*/, platform::LPARAM& /*lParamUser*/) {}

  // A hook event, before or after the rest of the hook chain as the registration's When says.
  virtual void HookProc(int32_t /*nOrdinal*/, bool /*bBefore*/, bool& /*bHandled*/, platform::LRESULT& /*lReturn*/,
                        int32_t /*nCode*/, platform::WPARAM /*wParam*/, platform::LPARAM /*lParam*/,
                        eHookType /*lHookType*/, platform::LPARAM& /*lParamUser*/) {}

  // A platform callback (timer procedure, enumeration) with its arguments, nParamCount of them.
  virtual platform::LRESULT CallbackProc(int32_t /*nOrdinal*/, std::span<const intptr_t> /*args*/) { return 0; }

  // Expires when the owner goes: the blocks' way of telling that its code is gone.
  [[nodiscard]] std::weak_ptr<void> OwnerToken() const { return m_token; }

 private:
  std::shared_ptr<int> m_token;
};

// What scb_SetCallbackAddr hands out: the callable that stands where the classic build gives
// the platform a code address. It forwards nParamCount arguments (missing ones as 0) to its
// owner's procedure; once released, or when its owner is gone, it does nothing and returns 0.
class CallbackAddress {
 public:
  CallbackAddress() = default;

  [[nodiscard]] explicit operator bool() const { return static_cast<bool>(m_block); }
  platform::LRESULT operator()(std::span<const intptr_t> args) const;
  platform::LRESULT operator()(std::initializer_list<intptr_t> args) const {
    return (*this)(std::span<const intptr_t>(args.begin(), args.size()));
  }
  // The same callable in the shapes the platform's calls take.
  [[nodiscard]] platform::TIMERPROC AsTimerProc() const;
  [[nodiscard]] platform::WNDENUMPROC AsEnumProc() const;
  // Arguments (address of the LOGFONTW, address of the TEXTMETRICW, font type, lParam).
  [[nodiscard]] platform::FONTENUMPROCW AsFontEnumProc() const;

  friend bool operator==(const CallbackAddress& a, const CallbackAddress& b) { return a.m_block == b.m_block; }

 private:
  friend class APISubClass;
  struct Block;
  explicit CallbackAddress(std::shared_ptr<Block> block) : m_block(std::move(block)) {}
  std::shared_ptr<Block> m_block;
};

class APISubClass {
 public:
  // `owner` is the class's owner, the one that receives calls when a registration names none.
  // Without one, hooks and callbacks come to this class's own events.
  explicit APISubClass(SubclassOwner* owner = nullptr);
  // Ends every subclass, hook and callback of this class.
  ~APISubClass();
  APISubClass(const APISubClass&) = delete;
  APISubClass& operator=(const APISubClass&) = delete;

  // ---- windows -------------------------------------------------------------------------------

  // bIdeSafety and bUnicode are kept for the classic signature: there is no design environment
  // to ask, and the platform has one form of each call. A window that this class subclasses
  // already stays as it is and gives True.
  bool ssc_Subclass(platform::HWND lng_hWnd, platform::LPARAM lParamUser = 0, int32_t nOrdinal = 1,
                    SubclassOwner* oCallback = nullptr, bool bIdeSafety = true, bool bUnicode = false,
                    bool bIsAPIwindow = false);
  // Removal waits until no call is inside the window's block.
  void ssc_UnSubclass(platform::HWND lng_hWnd);
  void ssc_Terminate();
  // The procedure that was replaced, for use inside a callback; 0 for a window not subclassed.
  platform::LRESULT ssc_CallOrigWndProc(platform::HWND lng_hWnd, platform::UINT uMSG, platform::WPARAM wParam,
                                        platform::LPARAM lParam);
  void ssc_AddMsg(platform::HWND lng_hWnd, eMsgWhen When, std::span<const int32_t> Messages);
  void ssc_AddMsg(platform::HWND lng_hWnd, eMsgWhen When, std::initializer_list<int32_t> Messages) {
    ssc_AddMsg(lng_hWnd, When, std::span<const int32_t>(Messages.begin(), Messages.size()));
  }
  void ssc_AddMsg(platform::HWND lng_hWnd, eMsgWhen When, std::initializer_list<eMsg> Messages);
  void ssc_DelMsg(platform::HWND lng_hWnd, eMsgWhen When, std::span<const int32_t> Messages);
  void ssc_DelMsg(platform::HWND lng_hWnd, eMsgWhen When, std::initializer_list<int32_t> Messages) {
    ssc_DelMsg(lng_hWnd, When, std::span<const int32_t>(Messages.begin(), Messages.size()));
  }
  void ssc_DelMsg(platform::HWND lng_hWnd, eMsgWhen When, std::initializer_list<eMsg> Messages);

  // The value handed to every call of a block: a window handle for SubclassThunk, a hook type
  // for HookThunk. Callbacks carry none ("Invalid thunk type passed").
  void zSet_lParamUser(intptr_t hWnd_Hook_ID, eThunkType vType, platform::LPARAM newValue);

  // ---- hooks ---------------------------------------------------------------------------------

  // Thread hooks of the types the platform calls. There is one process here, so a global hook
  // (bGlobal True) sees the same events as a local one. One hook per type: setting a type again
  // replaces the earlier hook.
  bool shk_SetHook(eHookType HookType, bool bGlobal, eMsgWhen When = MSG_BEFORE, platform::LPARAM lParamUser = 0,
                   int32_t nOrdinal = 1, SubclassOwner* oCallback = nullptr, bool bIdeSafety = true,
                   bool bUnicode = false);
  bool shk_UnHook(eHookType HookType);
  void shk_TerminateHooks();

  // ---- callbacks -----------------------------------------------------------------------------

  // A callable for the platform, bound to the owner's procedure nOrdinal. Asking again for the
  // same owner and ordinal gives the same callable. A timer callable whose owner is gone kills
  // its timer (arguments hwnd, message, id, time) when it fires. An empty result on failure.
  CallbackAddress scb_SetCallbackAddr(int32_t nParamCount, int32_t nOrdinal = 1, SubclassOwner* oCallback = nullptr,
                                      bool bIdeSafety = true, bool bIsTimerCallback = false);
  void scb_ReleaseCallback(int32_t nOrdinal, SubclassOwner* oCallback = nullptr);
  void scb_TerminateCallbacks();

  // How far the search for an owner's procedure may look: the highest ordinal found.
  void zAddressOfLoopLimit(int32_t xVal);

  // Enumerations through a callback block. Without an owner each value is raised as
  // EnumCallback and the enumeration runs to the end; an owner's CallbackProc gets (value,
  // lParam 0) and its 0 stops it.
  void EnumWindowHandles(SubclassOwner* oCallback = nullptr, int32_t nOrdinal = 1);
  // Every font family hDC can draw with, in any character set. The value is the address of the
  // family's LOGFONTW, valid during the call only (EnumFontName reads its face name); an owner's
  // CallbackProc gets the platform's four arguments (LOGFONTW, TEXTMETRICW, font type, lParam
  // 0). A DC that does not exist lists nothing.
  void EnumFonts(platform::HDC hDC, SubclassOwner* oCallback = nullptr, int32_t nOrdinal = 1);
  // The face name behind a value that EnumFonts raised; empty for 0.
  [[nodiscard]] static host::String EnumFontName(intptr_t EnumValue);

  // ---- events --------------------------------------------------------------------------------

  host::Event<eHookType, int32_t, platform::WPARAM, platform::LPARAM> HookMessage;
  host::Event<intptr_t> EnumCallback;

  // ---- inspection ----------------------------------------------------------------------------

  // What the reporter was told last: the routine and the text (both empty when nothing went wrong).
  [[nodiscard]] const std::string& LastErrorRoutine() const { return m_errorRoutine; }
  [[nodiscard]] const host::String& LastError() const { return m_errorText; }
  // Windows this class subclasses now.
  [[nodiscard]] bool IsSubclassed(platform::HWND lng_hWnd) const;
  // Blocks of every window subclass of this thread not yet freed by their timer.
  [[nodiscard]] static int32_t LiveWindowBlocks();

 // The block behind a window subclass; defined and used by the implementation only.
  struct WindowBlock;

 private:
  struct HookBlock;
  class SelfOwner;

  void zError(const char* routine, host::StringView text);
  [[nodiscard]] SubclassOwner* ResolveOwner(SubclassOwner* oCallback, eThunkType kind);
  [[nodiscard]] bool zMap_VFunction(SubclassOwner* owner, eThunkType kind, int32_t nOrdinal, const char* routine);
  [[nodiscard]] std::shared_ptr<WindowBlock> FindBlock(platform::HWND hwnd) const;
  void ChangeTables(platform::HWND hwnd, eMsgWhen When, std::span<const int32_t> Messages, bool add);

  SubclassOwner* m_owner;
  std::unique_ptr<SelfOwner> m_self;
  std::vector<std::shared_ptr<WindowBlock>> m_windows;
  std::vector<std::shared_ptr<HookBlock>> m_hooks;
  std::vector<CallbackAddress> m_callbacks;
  int32_t m_loopLimit = 64;
  std::string m_errorRoutine;
  host::String m_errorText;
};

}  // namespace mx::frame
