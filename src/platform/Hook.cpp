#include "platform/Hook.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "platform/HandleTable.h"

namespace mx::platform {

namespace {

struct HookEntry {
  int type = 0;
  std::shared_ptr<HOOKPROC> proc;
};

struct HookState {
  HandleTable<HookEntry> table{HandleType::Hook};
  // Newest first. A hook unhooked while a hook call is running keeps its place (as a dead
  // handle, skipped) until the outermost call returns, so that it can still pass the event on.
  std::map<int, std::vector<HHOOK>> chains;
  int running = 0;
};

void Purge(HookState& hs) {
  for (auto& [type, chain] : hs.chains)
    chain.erase(std::remove_if(chain.begin(), chain.end(), [&](HHOOK h) { return !hs.table.valid(h); }), chain.end());
}

HookState& Hooks() {
  thread_local HookState state;
  return state;
}

bool Supported(int type) {
  switch (type) {
    case WH_MSGFILTER:
    case WH_KEYBOARD:
    case WH_GETMESSAGE:
    case WH_CALLWNDPROC:
    case WH_CBT:
    case WH_MOUSE:
    case WH_FOREGROUNDIDLE:
    case WH_CALLWNDPROCRET:
    case WH_KEYBOARD_LL:
    case WH_MOUSE_LL:
      return true;
    default:
      return false;
  }
}

// Calls the first live hook of the chain at or after position `from`.
LRESULT CallFrom(int type, size_t from, int code, WPARAM wParam, LPARAM lParam) {
  auto& hs = Hooks();
  auto it = hs.chains.find(type);
  if (it == hs.chains.end()) return 0;
  // Copy the procedure out: the hook may unhook itself (or others) while it runs.
  for (size_t i = from; i < it->second.size(); ++i) {
    if (HookEntry* e = hs.table.get(it->second[i])) {
      std::shared_ptr<HOOKPROC> proc = e->proc;
      ++hs.running;
      LRESULT r = (*proc)(code, wParam, lParam);
      if (--hs.running == 0) Purge(hs);
      return r;
    }
  }
  return 0;
}

}  // namespace

HHOOK SetWindowsHookExW(int type, HOOKPROC proc, HANDLE, DWORD) {
  if (!Supported(type) || !proc) return 0;
  auto& hs = Hooks();
  auto entry = std::make_unique<HookEntry>();
  entry->type = type;
  entry->proc = std::make_shared<HOOKPROC>(std::move(proc));
  HHOOK h = hs.table.add(std::move(entry));
  if (h) {
    auto& chain = hs.chains[type];
    chain.insert(chain.begin(), h);
  }
  return h;
}

BOOL UnhookWindowsHookEx(HHOOK hook) {
  auto& hs = Hooks();
  if (!hs.table.get(hook)) return FALSE;
  hs.table.remove(hook);
  if (hs.running == 0) Purge(hs);
  return TRUE;
}

LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wParam, LPARAM lParam) {
  auto& hs = Hooks();
  // A hook that unhooked itself inside its own call is still in its chain (see Purge).
  for (auto& [type, chain] : hs.chains) {
    auto pos = std::find(chain.begin(), chain.end(), hook);
    if (pos != chain.end()) return CallFrom(type, static_cast<size_t>(pos - chain.begin()) + 1, code, wParam, lParam);
  }
  return 0;
}

LRESULT CallHooks(int type, int code, WPARAM wParam, LPARAM lParam) {
  return CallFrom(type, 0, code, wParam, lParam);
}

bool HasHooks(int type) {
  auto& hs = Hooks();
  auto it = hs.chains.find(type);
  return it != hs.chains.end() && !it->second.empty();
}

void RemoveAllHooks() {
  auto& hs = Hooks();
  for (HHOOK h : hs.table.handles()) hs.table.remove(h);
  hs.chains.clear();
}

}  // namespace mx::platform
