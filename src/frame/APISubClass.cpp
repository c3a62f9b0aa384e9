#include "frame/APISubClass.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

#include "platform/Timer.h"

namespace mx::frame {

using platform::HWND;
using platform::LPARAM;
using platform::LRESULT;
using platform::UINT;
using platform::WPARAM;

namespace {

constexpr platform::UINT kCleanupDelayMs = 100;

// A message filter: count 0 passes nothing to the owner, -1 everything, otherwise the first
// `count` slots are searched. A freed slot holds 0.
struct MsgTable {
  int32_t count = 0;
  std::array<int32_t, MSG_ENTRIES> slots{};

  [[nodiscard]] bool Has(int32_t msg) const {
    if (count == 0) return false;
    if (count < 0) return true;
    for (int32_t i = 0; i < count; ++i)
      if (slots[static_cast<size_t>(i)] == msg) return true;
    return false;
  }
};

}  // namespace

// ---- blocks ------------------------------------------------------------------------------------

struct APISubClass::WindowBlock {
  int32_t nesting = 0;
  int32_t shutdown = 0;
  HWND hwnd = 0;
  platform::WNDPROC original = 0;
  platform::WNDPROC entry = 0;
  SubclassOwner* owner = nullptr;
  std::weak_ptr<void> ownerToken;
  int32_t ordinal = 1;
  MsgTable before;
  MsgTable after;
  LPARAM lParamUser = 0;
  bool apiWindow = false;
  platform::UINT_PTR timer = 0;
  bool restored = false;  // the window has its own procedure back
};

struct APISubClass::HookBlock {
  eHookType type = eHookType::WH_MOUSE;
  platform::HHOOK hook = 0;
  eMsgWhen when = MSG_BEFORE;
  SubclassOwner* owner = nullptr;
  std::weak_ptr<void> ownerToken;
  int32_t ordinal = 1;
  LPARAM lParamUser = 0;
};

struct CallbackAddress::Block {
  SubclassOwner* owner = nullptr;
  std::weak_ptr<void> ownerToken;
  int32_t ordinal = 1;
  int32_t paramCount = 0;
  bool timerCallback = false;
  bool released = false;
};

namespace {

// Every window block of the thread until its timer frees it, keyed by its entry procedure.
std::map<platform::WNDPROC, std::shared_ptr<APISubClass::WindowBlock>>& LiveBlocks();

}  // namespace

// The class itself as an owner: hooks and callbacks registered without one come to its events.
class APISubClass::SelfOwner : public SubclassOwner {
 public:
  explicit SelfOwner(APISubClass& cls) : m_cls(cls) {}
  void HookProc(int32_t, bool, bool&, LRESULT&, int32_t nCode, WPARAM wParam, LPARAM lParam, eHookType type,
                LPARAM&) override {
    m_cls.HookMessage(type, nCode, wParam, lParam);
  }
  LRESULT CallbackProc(int32_t, std::span<const intptr_t> args) override {
    m_cls.EnumCallback(args.empty() ? 0 : args[0]);
    return 1;  // an enumeration goes on
  }

 private:
  APISubClass& m_cls;
};

namespace {

void ReleaseBlocksOfGoneWindows();

std::map<platform::WNDPROC, std::shared_ptr<APISubClass::WindowBlock>>& LiveBlocks() {
  thread_local std::map<platform::WNDPROC, std::shared_ptr<APISubClass::WindowBlock>> blocks;
  // A desktop reset drops the clean-up timers: the blocks of the windows it destroyed go then.
  thread_local const bool resetHooked = [] {
    platform::OnResetWindowing(ReleaseBlocksOfGoneWindows);
    return true;
  }();
  (void)resetHooked;
  return blocks;
}

void KillCleanupTimer(APISubClass::WindowBlock& b) {
  if (b.timer == 0) return;
  platform::KillTimer(0, b.timer);
  b.timer = 0;
}

void ReleaseBlocksOfGoneWindows() {
  auto& blocks = LiveBlocks();
  for (auto it = blocks.begin(); it != blocks.end();) {
    APISubClass::WindowBlock& b = *it->second;
    if (b.nesting > 0 || platform::IsWindow(b.hwnd)) {
      ++it;
      continue;
    }
    KillCleanupTimer(b);
    platform::UnregisterWindowProc(b.entry);
    it = blocks.erase(it);
  }
}

// Step 9: the window gets its procedure back and the block waits for its timer. A window that
// someone else subclassed on top of this block keeps calling it, so the block cannot go: it
// stays in pass-through until the window is gone.
void ReleaseBlock(const std::shared_ptr<APISubClass::WindowBlock>& block) {
  APISubClass::WindowBlock& b = *block;
  const bool alive = platform::IsWindow(b.hwnd) != 0;
  if (alive && b.shutdown != kShutdownWindowGone && !b.restored) {
    if (static_cast<platform::WNDPROC>(platform::GetWindowLong(b.hwnd, platform::GWL_WNDPROC)) != b.entry) return;
    platform::SetWindowLong(b.hwnd, platform::GWL_WNDPROC, static_cast<platform::LONG>(b.original));
    b.restored = true;
    if (b.shutdown == kShutdownRemove && b.apiWindow) platform::DestroyWindow(b.hwnd);
  }
  std::weak_ptr<APISubClass::WindowBlock> weak = block;
  b.timer = platform::SetTimer(0, b.timer, kCleanupDelayMs,
                               [weak](HWND, UINT, platform::UINT_PTR id, platform::DWORD) {
                                 platform::KillTimer(0, id);
                                 std::shared_ptr<APISubClass::WindowBlock> blk = weak.lock();
                                 if (!blk) return;
                                 blk->timer = 0;
                                 platform::UnregisterWindowProc(blk->entry);
                                 LiveBlocks().erase(blk->entry);
                               });
}

// The block's window procedure: steps 1 to 10.
LRESULT RunWindowBlock(const std::shared_ptr<APISubClass::WindowBlock>& block, HWND hwnd, UINT msg, WPARAM wParam,
                       LPARAM lParam) {
  APISubClass::WindowBlock& b = *block;
  ++b.nesting;
  LRESULT lReturn = 0;
  if (b.shutdown == 0 && b.ownerToken.expired()) b.shutdown = kShutdownRemove;
  if (b.shutdown != 0) {
    KillCleanupTimer(b);
    lReturn = platform::CallWindowProc(b.original, hwnd, msg, wParam, lParam);
  } else {
    bool handled = false;
    const auto m = static_cast<int32_t>(msg);
    if (b.before.Has(m)) b.owner->SubclassProc(b.ordinal, true, handled, lReturn, hwnd, msg, wParam, lParam, b.lParamUser);
    if (!handled) {
      KillCleanupTimer(b);
      lReturn = platform::CallWindowProc(b.original, hwnd, msg, wParam, lParam);
      // The before call may have ended its owner; a gone owner is not called again.
      if (b.after.Has(m) && !b.ownerToken.expired())
        b.owner->SubclassProc(b.ordinal, false, handled, lReturn, hwnd, msg, wParam, lParam, b.lParamUser);
    }
  }
  --b.nesting;
  if (msg == platform::WM_NCDESTROY) b.shutdown = kShutdownWindowGone;
  if (b.nesting == 0 && b.shutdown != 0) ReleaseBlock(block);
  return lReturn;
}

}  // namespace

// ---- callback addresses ------------------------------------------------------------------------

LRESULT CallbackAddress::operator()(std::span<const intptr_t> args) const {
  if (!m_block || m_block->released) return 0;
  std::array<intptr_t, kMaxCallbackParams> forwarded{};
  const size_t n = static_cast<size_t>(m_block->paramCount);
  std::copy_n(args.begin(), std::min(n, args.size()), forwarded.begin());
  if (m_block->ownerToken.expired()) {
    // A timer whose owner went would fire for ever: the block stops it.
    if (m_block->timerCallback && n >= 3)
      platform::KillTimer(static_cast<HWND>(forwarded[0]), static_cast<platform::UINT_PTR>(forwarded[2]));
    return 0;
  }
  return m_block->owner->CallbackProc(m_block->ordinal, std::span<const intptr_t>(forwarded.data(), n));
}

platform::TIMERPROC CallbackAddress::AsTimerProc() const {
  CallbackAddress self = *this;
  return [self](HWND hwnd, UINT msg, platform::UINT_PTR id, platform::DWORD time) {
    self({static_cast<intptr_t>(hwnd), static_cast<intptr_t>(msg), static_cast<intptr_t>(id),
          static_cast<intptr_t>(time)});
  };
}

platform::WNDENUMPROC CallbackAddress::AsEnumProc() const {
  CallbackAddress self = *this;
  return [self](HWND hwnd, LPARAM lParam) -> platform::BOOL {
    return self({static_cast<intptr_t>(hwnd), static_cast<intptr_t>(lParam)}) != 0 ? platform::TRUE : platform::FALSE;
  };
}

platform::FONTENUMPROCW CallbackAddress::AsFontEnumProc() const {
  CallbackAddress self = *this;
  return [self](const platform::LOGFONTW* lf, const platform::TEXTMETRICW* tm, platform::DWORD type,
                LPARAM lParam) -> int {
    return self({reinterpret_cast<intptr_t>(lf), reinterpret_cast<intptr_t>(tm), static_cast<intptr_t>(type),
                 static_cast<intptr_t>(lParam)}) != 0
               ? 1
               : 0;
  };
}

// ---- the class ---------------------------------------------------------------------------------

APISubClass::APISubClass(SubclassOwner* owner) : m_owner(owner), m_self(std::make_unique<SelfOwner>(*this)) {}

APISubClass::~APISubClass() {
  ssc_Terminate();
  shk_TerminateHooks();
  scb_TerminateCallbacks();
}

void APISubClass::zError(const char* routine, host::StringView text) {
  // Shown nowhere and raised never: callers only see the False or the unchanged state.
  m_errorRoutine = routine;
  m_errorText = host::String(text);
}

SubclassOwner* APISubClass::ResolveOwner(SubclassOwner* oCallback, eThunkType kind) {
  if (oCallback) return oCallback;
  if (m_owner) return m_owner;
  // Only hooks and callbacks have procedures of the class's own.
  return kind == SubclassThunk ? nullptr : m_self.get();
}

bool APISubClass::zMap_VFunction(SubclassOwner* owner, eThunkType kind, int32_t nOrdinal, const char* routine) {
  if (!owner || nOrdinal < 1 || nOrdinal > m_loopLimit || nOrdinal > owner->ProcedureCount(kind)) {
    zError(routine, u"Callback method not found");
    return false;
  }
  return true;
}

std::shared_ptr<APISubClass::WindowBlock> APISubClass::FindBlock(HWND hwnd) const {
  for (const auto& b : m_windows)
    if (b->hwnd == hwnd && b->shutdown == 0) return b;
  return nullptr;
}

bool APISubClass::IsSubclassed(HWND lng_hWnd) const { return FindBlock(lng_hWnd) != nullptr; }

int32_t APISubClass::LiveWindowBlocks() { return static_cast<int32_t>(LiveBlocks().size()); }

bool APISubClass::ssc_Subclass(HWND lng_hWnd, LPARAM lParamUser, int32_t nOrdinal, SubclassOwner* oCallback,
                               bool /*bIdeSafety*/, bool /*bUnicode*/, bool bIsAPIwindow) {
  // Blocks whose window went or that were released no longer belong to the class.
  std::erase_if(m_windows, [](const std::shared_ptr<WindowBlock>& b) { return b->shutdown != 0; });
  if (!platform::IsWindow(lng_hWnd)) {
    zError("ssc_Subclass", u"Invalid window handle");
    return false;
  }
  // The desktop belongs to the system, never to the calling process.
  if (lng_hWnd == platform::GetDesktopWindow()) {
    zError("ssc_Subclass", u"Window handle belongs to another process");
    return false;
  }
  if (FindBlock(lng_hWnd)) return true;
  SubclassOwner* owner = ResolveOwner(oCallback, SubclassThunk);
  if (!zMap_VFunction(owner, SubclassThunk, nOrdinal, "ssc_Subclass")) return false;

  auto block = std::make_shared<WindowBlock>();
  block->hwnd = lng_hWnd;
  block->owner = owner;
  block->ownerToken = owner->OwnerToken();
  block->ordinal = nOrdinal;
  block->lParamUser = lParamUser;
  block->apiWindow = bIsAPIwindow;
  // The procedure holds the block, so a call inside it keeps it alive even past its release.
  block->entry = platform::RegisterWindowProc(
      [block](HWND h, UINT m, WPARAM w, LPARAM l) { return RunWindowBlock(block, h, m, w, l); });
  if (block->entry == 0) {
    zError("ssc_Subclass", u"VirtualAlloc failed, error: 0");
    return false;
  }
  block->original = static_cast<platform::WNDPROC>(platform::GetWindowLong(lng_hWnd, platform::GWL_WNDPROC));
  if (platform::SetWindowLong(lng_hWnd, platform::GWL_WNDPROC, static_cast<platform::LONG>(block->entry)) == 0) {
    platform::UnregisterWindowProc(block->entry);
    zError("ssc_Subclass", u"SetWindowLong failed, error #0");
    return false;
  }
  LiveBlocks()[block->entry] = block;
  m_windows.push_back(block);
  return true;
}

void APISubClass::ssc_UnSubclass(HWND lng_hWnd) {
  std::shared_ptr<WindowBlock> block = FindBlock(lng_hWnd);
  if (!block) return;
  std::erase(m_windows, block);
  block->shutdown = kShutdownRemove;
  // From inside a callback the block is still in use: its last call out does the release.
  if (block->nesting == 0) ReleaseBlock(block);
}

void APISubClass::ssc_Terminate() {
  std::vector<std::shared_ptr<WindowBlock>> all = m_windows;
  for (const auto& b : all) ssc_UnSubclass(b->hwnd);
  m_windows.clear();
}

LRESULT APISubClass::ssc_CallOrigWndProc(HWND lng_hWnd, UINT uMSG, WPARAM wParam, LPARAM lParam) {
  std::shared_ptr<WindowBlock> block = FindBlock(lng_hWnd);
  if (!block) {
    zError("ssc_CallOrigWndProc", u"Thunk hasn't been initialized");
    return 0;
  }
  return platform::CallWindowProc(block->original, lng_hWnd, uMSG, wParam, lParam);
}

void APISubClass::ChangeTables(HWND hwnd, eMsgWhen When, std::span<const int32_t> Messages, bool add) {
  const char* routine = add ? "zAddMsg" : "zDelMsg";
  std::shared_ptr<WindowBlock> block = FindBlock(hwnd);
  if (!block) {
    zError(routine, u"Thunk hasn't been initialized");
    return;
  }
  for (eMsgWhen which : {MSG_BEFORE, MSG_AFTER}) {
    if ((When & which) == 0) continue;
    MsgTable& t = which == MSG_BEFORE ? block->before : block->after;
    for (int32_t msg : Messages) {
      if (add) {
        if (msg == ALL_MESSAGES) {
          t.count = -1;
          break;
        }
        if (t.count < 0) break;
        bool present = false;
        int32_t freeSlot = -1;
        for (int32_t i = 0; i < t.count; ++i) {
          const int32_t s = t.slots[static_cast<size_t>(i)];
          if (s == msg) present = true;
          else if (s == 0 && freeSlot < 0) freeSlot = i;
        }
        if (present) continue;
        if (freeSlot >= 0) {
          t.slots[static_cast<size_t>(freeSlot)] = msg;
          continue;
        }
        if (t.count >= MSG_ENTRIES) {
          zError(routine,
                 u"Message table overflow. Either increase the value of Const MSG_ENTRIES or use ALL_MESSAGES "
                 u"instead of specific message values");
          break;
        }
        t.slots[static_cast<size_t>(t.count++)] = msg;
      } else {
        if (msg == ALL_MESSAGES) {
          t.count = 0;
          t.slots.fill(0);
          break;
        }
        for (int32_t i = 0; i < t.count; ++i) {
          if (t.slots[static_cast<size_t>(i)] != msg) continue;
          t.slots[static_cast<size_t>(i)] = 0;
          if (i == t.count - 1) --t.count;
          break;
        }
      }
    }
  }
}

void APISubClass::ssc_AddMsg(HWND lng_hWnd, eMsgWhen When, std::span<const int32_t> Messages) {
  ChangeTables(lng_hWnd, When, Messages, true);
}

void APISubClass::ssc_AddMsg(HWND lng_hWnd, eMsgWhen When, std::initializer_list<eMsg> Messages) {
  std::vector<int32_t> numbers;
  for (eMsg m : Messages) numbers.push_back(static_cast<int32_t>(m));
  ChangeTables(lng_hWnd, When, numbers, true);
}

void APISubClass::ssc_DelMsg(HWND lng_hWnd, eMsgWhen When, std::span<const int32_t> Messages) {
  ChangeTables(lng_hWnd, When, Messages, false);
}

void APISubClass::ssc_DelMsg(HWND lng_hWnd, eMsgWhen When, std::initializer_list<eMsg> Messages) {
  std::vector<int32_t> numbers;
  for (eMsg m : Messages) numbers.push_back(static_cast<int32_t>(m));
  ChangeTables(lng_hWnd, When, numbers, false);
}

void APISubClass::zSet_lParamUser(intptr_t hWnd_Hook_ID, eThunkType vType, LPARAM newValue) {
  switch (vType) {
    case SubclassThunk:
      if (auto block = FindBlock(static_cast<HWND>(hWnd_Hook_ID))) {
        block->lParamUser = newValue;
        return;
      }
      break;
    case HookThunk:
      for (const auto& h : m_hooks) {
        if (static_cast<intptr_t>(h->type) == hWnd_Hook_ID) {
          h->lParamUser = newValue;
          return;
        }
      }
      break;
    default:
      zError("zSet_lParamUser", u"Invalid thunk type passed");
      return;
  }
  zError("zSet_lParamUser", u"Thunk hasn't been initialized");
}

// ---- hooks -------------------------------------------------------------------------------------

bool APISubClass::shk_SetHook(eHookType HookType, bool /*bGlobal*/, eMsgWhen When, LPARAM lParamUser,
                              int32_t nOrdinal, SubclassOwner* oCallback, bool /*bIdeSafety*/, bool /*bUnicode*/) {
  SubclassOwner* owner = ResolveOwner(oCallback, HookThunk);
  if (!zMap_VFunction(owner, HookThunk, nOrdinal, "shk_SetHook")) return false;
  shk_UnHook(HookType);

  auto block = std::make_shared<HookBlock>();
  block->type = HookType;
  block->when = (When & MSG_BEFORE_AFTER) != 0 ? When : MSG_BEFORE;
  block->owner = owner;
  block->ownerToken = owner->OwnerToken();
  block->ordinal = nOrdinal;
  block->lParamUser = lParamUser;
  std::weak_ptr<HookBlock> weak = block;
  block->hook = platform::SetWindowsHookEx(
      static_cast<int>(HookType), [weak](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
        std::shared_ptr<HookBlock> b = weak.lock();
        if (!b) return 0;
        // Negative codes belong to the chain alone, as every hook procedure is told.
        if (code < 0 || b->ownerToken.expired()) {
          const LRESULT r = platform::CallNextHookEx(b->hook, code, wParam, lParam);
          // An owner that went without unhooking: the block takes itself out.
          if (code >= 0 && b->ownerToken.expired()) platform::UnhookWindowsHookEx(b->hook);
          return r;
        }
        bool handled = false;
        LRESULT lReturn = 0;
        if (b->when & MSG_BEFORE)
          b->owner->HookProc(b->ordinal, true, handled, lReturn, code, wParam, lParam, b->type, b->lParamUser);
        if (!handled) {
          lReturn = platform::CallNextHookEx(b->hook, code, wParam, lParam);
          if ((b->when & MSG_AFTER) && !b->ownerToken.expired())
            b->owner->HookProc(b->ordinal, false, handled, lReturn, code, wParam, lParam, b->type, b->lParamUser);
        }
        return lReturn;
      });
  if (block->hook == 0) {
    zError("shk_SetHook", u"SetWindowsHookEx failed, error #0");
    return false;
  }
  m_hooks.push_back(block);
  return true;
}

bool APISubClass::shk_UnHook(eHookType HookType) {
  for (auto it = m_hooks.begin(); it != m_hooks.end(); ++it) {
    if ((*it)->type != HookType) continue;
    const bool ok = platform::UnhookWindowsHookEx((*it)->hook) != 0;
    m_hooks.erase(it);
    return ok;
  }
  return false;
}

void APISubClass::shk_TerminateHooks() {
  for (const auto& h : m_hooks) platform::UnhookWindowsHookEx(h->hook);
  m_hooks.clear();
}

// ---- callbacks ---------------------------------------------------------------------------------

CallbackAddress APISubClass::scb_SetCallbackAddr(int32_t nParamCount, int32_t nOrdinal, SubclassOwner* oCallback,
                                                 bool /*bIdeSafety*/, bool bIsTimerCallback) {
  if (nParamCount < 0 || nParamCount > kMaxCallbackParams) {
    zError("scb_SetCallbackAddr", u"Invalid Parameter count");
    return {};
  }
  SubclassOwner* owner = ResolveOwner(oCallback, CallbackThunk);
  if (!owner || nOrdinal < 1 || nOrdinal > m_loopLimit || nOrdinal > owner->ProcedureCount(CallbackThunk)) {
    zError("scb_SetCallbackAddr", u"Callback address not found.");
    return {};
  }
  for (const CallbackAddress& c : m_callbacks)
    if (c.m_block->owner == owner && c.m_block->ordinal == nOrdinal && !c.m_block->ownerToken.expired()) return c;
  auto block = std::make_shared<CallbackAddress::Block>();
  block->owner = owner;
  block->ownerToken = owner->OwnerToken();
  block->ordinal = nOrdinal;
  block->paramCount = nParamCount;
  block->timerCallback = bIsTimerCallback;
  CallbackAddress address(std::move(block));
  m_callbacks.push_back(address);
  return address;
}

void APISubClass::scb_ReleaseCallback(int32_t nOrdinal, SubclassOwner* oCallback) {
  SubclassOwner* owner = ResolveOwner(oCallback, CallbackThunk);
  std::erase_if(m_callbacks, [&](const CallbackAddress& c) {
    if (c.m_block->owner != owner || c.m_block->ordinal != nOrdinal) return false;
    c.m_block->released = true;
    return true;
  });
}

void APISubClass::scb_TerminateCallbacks() {
  for (const CallbackAddress& c : m_callbacks) c.m_block->released = true;
  m_callbacks.clear();
}

void APISubClass::zAddressOfLoopLimit(int32_t xVal) { m_loopLimit = xVal; }

void APISubClass::EnumWindowHandles(SubclassOwner* oCallback, int32_t nOrdinal) {
  SubclassOwner* owner = oCallback ? oCallback : m_self.get();
  CallbackAddress address = scb_SetCallbackAddr(2, nOrdinal, owner);
  if (!address) return;
  platform::EnumWindows(address.AsEnumProc(), 0);
  scb_ReleaseCallback(nOrdinal, owner);
}

void APISubClass::EnumFonts(platform::HDC hDC, SubclassOwner* oCallback, int32_t nOrdinal) {
  SubclassOwner* owner = oCallback ? oCallback : m_self.get();
  CallbackAddress address = scb_SetCallbackAddr(4, nOrdinal, owner);
  if (!address) return;
  // No face name and any character set: one call per family.
  platform::EnumFontFamiliesW(hDC, nullptr, address.AsFontEnumProc(), 0);
  scb_ReleaseCallback(nOrdinal, owner);
}

host::String APISubClass::EnumFontName(intptr_t EnumValue) {
  if (EnumValue == 0) return {};
  const auto* lf = reinterpret_cast<const platform::LOGFONTW*>(EnumValue);
  size_t n = 0;
  while (n < static_cast<size_t>(platform::LF_FACESIZE) && lf->lfFaceName[n]) ++n;
  return host::String(std::u16string_view(lf->lfFaceName, n));
}

}  // namespace mx::frame
