// Input: injection, cooking of injected events into messages, key state, capture, focus,
// activation, mouse tracking and the caption-drag mode.
#include "platform/Input.h"

#include <algorithm>
#include <cstdlib>

#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Hook.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace {

constexpr UINT WMSZ_FIRST = 1;
bool IsTopOfBand(HWND hwnd);  // WMSZ_LEFT; the edge codes follow the hit-test codes in order

struct ButtonInfo {
  int vk;
  UINT down;  // client message; up is down + 1, double click down + 2
  WPARAM mk;
  WORD xbutton;
};

ButtonInfo InfoFor(MouseButton b) {
  switch (b) {
    case MouseButton::Left: return {VK_LBUTTON, WM_LBUTTONDOWN, MK_LBUTTON, 0};
    case MouseButton::Right: return {VK_RBUTTON, WM_RBUTTONDOWN, MK_RBUTTON, 0};
    case MouseButton::Middle: return {VK_MBUTTON, WM_MBUTTONDOWN, MK_MBUTTON, 0};
    case MouseButton::X1: return {VK_XBUTTON1, WM_XBUTTONDOWN, MK_XBUTTON1, XBUTTON1};
    case MouseButton::X2: return {VK_XBUTTON2, WM_XBUTTONDOWN, MK_XBUTTON2, XBUTTON2};
  }
  return {VK_LBUTTON, WM_LBUTTONDOWN, MK_LBUTTON, 0};
}

ButtonInfo InfoForVk(int vk) {
  switch (vk) {
    case VK_RBUTTON: return InfoFor(MouseButton::Right);
    case VK_MBUTTON: return InfoFor(MouseButton::Middle);
    case VK_XBUTTON1: return InfoFor(MouseButton::X1);
    case VK_XBUTTON2: return InfoFor(MouseButton::X2);
    default: return InfoFor(MouseButton::Left);
  }
}

bool AsyncDown(int vk) { return (St().asyncKeys[vk & 0xFF] & 0x80) != 0; }
bool SyncDown(int vk) { return (St().syncKeys[vk & 0xFF] & 0x80) != 0; }

// The generic key (VK_SHIFT) and its left or right form move together.
void SetKeyBits(uint8_t* keys, int vk, bool down, bool toggle) {
  auto apply = [&](int k) {
    uint8_t& b = keys[k & 0xFF];
    if (down) b |= 0x80; else b &= static_cast<uint8_t>(~0x80);
    if (toggle) b ^= 0x01;
  };
  apply(vk);
  switch (vk) {
    case VK_SHIFT: apply(VK_LSHIFT); break;
    case VK_CONTROL: apply(VK_LCONTROL); break;
    case VK_MENU: apply(VK_LMENU); break;
    case VK_LSHIFT: case VK_RSHIFT: apply(VK_SHIFT); break;
    case VK_LCONTROL: case VK_RCONTROL: apply(VK_CONTROL); break;
    case VK_LMENU: case VK_RMENU: apply(VK_MENU); break;
    default: break;
  }
}

WPARAM MouseKeyStateOf(const uint8_t* keys) {
  WPARAM mk = 0;
  if (keys[VK_LBUTTON] & 0x80) mk |= MK_LBUTTON;
  if (keys[VK_RBUTTON] & 0x80) mk |= MK_RBUTTON;
  if (keys[VK_MBUTTON] & 0x80) mk |= MK_MBUTTON;
  if (keys[VK_XBUTTON1] & 0x80) mk |= MK_XBUTTON1;
  if (keys[VK_XBUTTON2] & 0x80) mk |= MK_XBUTTON2;
  if (keys[VK_SHIFT] & 0x80) mk |= MK_SHIFT;
  if (keys[VK_CONTROL] & 0x80) mk |= MK_CONTROL;
  return mk;
}

// Scan codes of the standard keyboard, with the extended-key flag in bit 8.
int ScanCodeOf(int vk) {
  static const char* kRow1 = "QWERTYUIOP";
  static const char* kRow2 = "ASDFGHJKL";
  static const char* kRow3 = "ZXCVBNM";
  if (vk >= '1' && vk <= '9') return 2 + (vk - '1');
  if (vk == '0') return 11;
  for (int i = 0; kRow1[i]; ++i) if (vk == kRow1[i]) return 16 + i;
  for (int i = 0; kRow2[i]; ++i) if (vk == kRow2[i]) return 30 + i;
  for (int i = 0; kRow3[i]; ++i) if (vk == kRow3[i]) return 44 + i;
  if (vk >= VK_F1 && vk <= VK_F1 + 9) return 59 + (vk - VK_F1);
  switch (vk) {
    case VK_ESCAPE: return 1;
    case VK_OEM_MINUS: return 12;
    case VK_OEM_PLUS: return 13;
    case VK_BACK: return 14;
    case VK_TAB: return 15;
    case VK_OEM_4: return 26;
    case VK_OEM_6: return 27;
    case VK_RETURN: return 28;
    case VK_CONTROL: case VK_LCONTROL: return 29;
    case VK_RCONTROL: return 0x100 | 29;
    case VK_OEM_1: return 39;
    case VK_OEM_7: return 40;
    case VK_OEM_3: return 41;
    case VK_SHIFT: case VK_LSHIFT: return 42;
    case VK_OEM_5: return 43;
    case VK_OEM_COMMA: return 51;
    case VK_OEM_PERIOD: return 52;
    case VK_OEM_2: return 53;
    case VK_DIVIDE: return 0x100 | 53;
    case VK_RSHIFT: return 54;
    case VK_MULTIPLY: return 55;
    case VK_MENU: case VK_LMENU: return 56;
    case VK_RMENU: return 0x100 | 56;
    case VK_SPACE: return 57;
    case VK_CAPITAL: return 58;
    case VK_NUMLOCK: return 69;
    case VK_SCROLL: return 70;
    case VK_HOME: return 0x100 | 71;
    case VK_UP: return 0x100 | 72;
    case VK_PRIOR: return 0x100 | 73;
    case VK_SUBTRACT: return 74;
    case VK_LEFT: return 0x100 | 75;
    case VK_RIGHT: return 0x100 | 77;
    case VK_ADD: return 78;
    case VK_END: return 0x100 | 79;
    case VK_DOWN: return 0x100 | 80;
    case VK_NEXT: return 0x100 | 81;
    case VK_INSERT: return 0x100 | 82;
    case VK_DELETE: return 0x100 | 83;
    case VK_F1 + 10: return 87;
    case VK_F12: return 88;
    default:
      if (vk >= VK_NUMPAD0 && vk <= VK_NUMPAD9) {
        static const int kPad[10] = {82, 79, 80, 81, 75, 76, 77, 71, 72, 73};
        return kPad[vk - VK_NUMPAD0];
      }
      return 0;
  }
}

void Enqueue(InputEvent ev) {
  UserState& st = St();
  ev.serial = st.nextInputSerial++;
  if (!ev.time) ev.time = GetTickCount();
  st.input.push_back(std::move(ev));
}

bool MouseLowLevelHook(UINT message, POINT pt, DWORD mouseData) {
  if (!HasHooks(WH_MOUSE_LL)) return false;
  MSLLHOOKSTRUCT ll;
  ll.pt = pt;
  ll.mouseData = mouseData;
  ll.time = GetTickCount();
  return CallHooks(WH_MOUSE_LL, HC_ACTION, message, reinterpret_cast<LPARAM>(&ll)) != 0;
}

// ---- mouse tracking ----------------------------------------------------------------------------

void UpdateMouseWindow(HWND target, bool nonClient, POINT pt) {
  UserState& st = St();
  MouseTracking& t = st.tracking;
  if (t.hwnd) {
    const bool trackedNc = (t.flags & TME_NONCLIENT) != 0;
    const bool over = target == t.hwnd && nonClient == trackedNc;
    if (!over) {
      if (t.flags & TME_LEAVE) PostMessageW(t.hwnd, trackedNc ? WM_NCMOUSELEAVE : WM_MOUSELEAVE, 0, 0);
      t = MouseTracking{};
    } else if (t.flags & TME_HOVER) {
      // Moving within the hover rectangle keeps the clock running; leaving it starts over.
      if (std::abs(pt.x - t.hoverOrigin.x) > static_cast<int>(st.hoverWidth / 2) ||
          std::abs(pt.y - t.hoverOrigin.y) > static_cast<int>(st.hoverHeight / 2)) {
        t.hoverOrigin = pt;
        t.hoverDue = GetTickCount64() + t.hoverTime;
      }
    }
  }
  st.mouseWindow = target;
  st.mouseNonClient = nonClient;
}

// ---- caption drag and border sizing ------------------------------------------------------------

void MoveSizeStep(POINT pt) {
  UserState& st = St();
  auto ms = st.moveSize;
  Wnd* w = Get(ms.hwnd);
  if (!w) return;
  const int dx = pt.x - ms.start.x, dy = pt.y - ms.start.y;
  RECT r = ms.startRect;
  const int hit = ms.hit;
  if (hit == HTCAPTION) {
    OffsetRect(&r, dx, dy);
    SendMessageW(ms.hwnd, WM_MOVING, 0, reinterpret_cast<LPARAM>(&r));
  } else {
    if (hit == HTLEFT || hit == HTTOPLEFT || hit == HTBOTTOMLEFT) r.left = std::min(r.left + dx, r.right);
    if (hit == HTRIGHT || hit == HTTOPRIGHT || hit == HTBOTTOMRIGHT) r.right = std::max(r.right + dx, r.left);
    if (hit == HTTOP || hit == HTTOPLEFT || hit == HTTOPRIGHT) r.top = std::min(r.top + dy, r.bottom);
    if (hit == HTBOTTOM || hit == HTBOTTOMLEFT || hit == HTBOTTOMRIGHT) r.bottom = std::max(r.bottom + dy, r.top);
    SendMessageW(ms.hwnd, WM_SIZING, static_cast<WPARAM>(hit - HTLEFT) + WMSZ_FIRST, reinterpret_cast<LPARAM>(&r));
  }
  if (!(w = Get(ms.hwnd))) return;
  POINT tl{r.left, r.top};
  if (w->parent) ScreenToClient(w->parent, &tl);
  UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | (hit == HTCAPTION ? SWP_NOSIZE : 0);
  SetWindowPos(ms.hwnd, 0, tl.x, tl.y, r.right - r.left, r.bottom - r.top, flags);
}

// The capture left the window of the move/size mode: the mode ends with it.
void MoveSizeLostCapture(HWND old) {
  UserState& st = St();
  if (st.moveSize.hwnd && st.moveSize.hwnd == old) {
    st.moveSize = {};
    SendMessageW(old, WM_EXITSIZEMOVE, 0, 0);
  }
}

// ---- activation --------------------------------------------------------------------------------

HWND Activate(HWND hwnd, WORD how) {
  UserState& st = St();
  if (hwnd) {
    if (!Get(hwnd)) return 0;
    hwnd = GetAncestor(hwnd, GA_ROOT);
  }
  const HWND old = st.active;
  if (old == hwnd) return old;
  if (hwnd && HasHooks(WH_CBT)) {
    CBTACTIVATESTRUCT cas{how == WA_CLICKACTIVE ? TRUE : FALSE, old};
    if (CallHooks(WH_CBT, HCBT_ACTIVATE, hwnd, reinterpret_cast<LPARAM>(&cas))) return 0;
  }
  st.active = hwnd;
  if (old && Get(old)) {
    SendMessageW(old, WM_NCACTIVATE, FALSE, 0);
    if (Get(old)) SendMessageW(old, WM_ACTIVATE, MAKEWPARAM(WA_INACTIVE, IsIconic(old) ? 1 : 0), static_cast<LPARAM>(hwnd));
  }
  if (st.active != hwnd) return old;  // a handler moved activation on
  if (!old || !hwnd) {
    // The application as a whole gains or loses activation.
    std::vector<HWND> tops = st.topLevels;
    for (HWND t : tops)
      if (Get(t)) SendMessageW(t, WM_ACTIVATEAPP, hwnd ? TRUE : FALSE, 0);
  }
  if (hwnd && Get(hwnd)) {
    // The activated window comes to the top of its band (owned windows stay above it).
    if (!IsTopOfBand(hwnd)) SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if (Get(hwnd)) SendMessageW(hwnd, WM_NCACTIVATE, TRUE, 0);
    if (Get(hwnd))
      SendMessageW(hwnd, WM_ACTIVATE, MAKEWPARAM(how, IsIconic(hwnd) ? 1 : 0), static_cast<LPARAM>(old));
  }
  // Focus may not stay in a window that is no longer active.
  if (old && st.focus && st.active != old && Get(old) && (st.focus == old || IsChild(old, st.focus))) {
    HWND f = st.focus;
    st.focus = 0;
    SendMessageW(f, WM_KILLFOCUS, 0, 0);
  }
  return old;
}

bool IsTopOfBand(HWND hwnd) {
  Wnd* w = Get(hwnd);
  for (HWND t : St().topLevels) {
    if (t == hwnd) return true;
    Wnd* o = Get(t);
    if (!o) continue;
    bool sameBand = ((o->exStyle ^ w->exStyle) & WS_EX_TOPMOST) == 0;
    bool ownedByIt = false;
    for (Wnd* up = Get(o->owner); up; up = Get(up->owner))
      if (up->hwnd == hwnd) ownedByIt = true;
    if (sameBand && !ownedByIt) return false;
  }
  return true;
}

bool CanActivate(HWND h, HWND leaving) {
  Wnd* w = Get(h);
  if (!w || h == leaving || w->destroying) return false;
  if (!(w->style & WS_VISIBLE) || (w->style & (WS_DISABLED | WS_MINIMIZE))) return false;
  if (w->exStyle & WS_EX_NOACTIVATE) return false;
  for (Wnd* o = Get(w->owner); o; o = Get(o->owner))
    if (o->hwnd == leaving) return false;
  return true;
}

}  // namespace

// ---- injection ---------------------------------------------------------------------------------

void InjectMouseMove(int screenX, int screenY) {
  UserState& st = St();
  POINT pt{std::clamp(screenX, 0, std::max(0, st.screenWidth - 1)), std::clamp(screenY, 0, std::max(0, st.screenHeight - 1))};
  if (MouseLowLevelHook(WM_MOUSEMOVE, pt, 0)) return;
  st.cursor = pt;
  InputEvent ev;
  ev.kind = InputEvent::Kind::Move;
  ev.pt = pt;
  ev.mk = MouseKeyStateOf(st.asyncKeys);
  Enqueue(std::move(ev));
}

void InjectMouseButton(MouseButton button, bool down) {
  UserState& st = St();
  ButtonInfo info = InfoFor(button);
  if (MouseLowLevelHook(down ? info.down : info.down + 1, st.cursor, static_cast<DWORD>(info.xbutton) << 16)) return;
  SetKeyBits(st.asyncKeys, info.vk, down, false);
  if (down) st.asyncKeys[info.vk] |= 0x01;
  InputEvent ev;
  ev.kind = InputEvent::Kind::Button;
  ev.pt = st.cursor;
  ev.button = info.vk;
  ev.down = down;
  ev.mk = MouseKeyStateOf(st.asyncKeys);
  Enqueue(std::move(ev));
}

void InjectClick(MouseButton button) {
  InjectMouseButton(button, true);
  InjectMouseButton(button, false);
}

void InjectWheel(int delta, bool horizontal) {
  UserState& st = St();
  if (MouseLowLevelHook(horizontal ? WM_MOUSEHWHEEL : WM_MOUSEWHEEL, st.cursor,
                        static_cast<DWORD>(static_cast<uint16_t>(delta)) << 16))
    return;
  InputEvent ev;
  ev.kind = InputEvent::Kind::Wheel;
  ev.pt = st.cursor;
  ev.delta = delta;
  ev.horizontal = horizontal;
  ev.mk = MouseKeyStateOf(st.asyncKeys);
  Enqueue(std::move(ev));
}

// Alt and Ctrl are read at injection: they decide between WM_KEYDOWN and WM_SYSKEYDOWN and the
// context bit, whatever happens to the keys later in the queue.
void InjectKey(int vk, bool down, int repeat) {
  UserState& st = St();
  vk &= 0xFF;
  const bool wasDown = AsyncDown(vk);
  const bool alt = vk == VK_MENU || vk == VK_LMENU || vk == VK_RMENU ? down : AsyncDown(VK_MENU);
  const bool ctrl = AsyncDown(VK_CONTROL);
  if (HasHooks(WH_KEYBOARD_LL)) {
    KBDLLHOOKSTRUCT ll;
    ll.vkCode = static_cast<DWORD>(vk);
    int sc = ScanCodeOf(vk);
    ll.scanCode = static_cast<DWORD>(sc & 0xFF);
    ll.flags = (down ? 0u : 0x80u) | (alt ? 0x20u : 0u) | ((sc & 0x100) ? 0x01u : 0u);
    ll.time = GetTickCount();
    const bool sys = alt && !ctrl;
    WPARAM m = down ? (sys ? WM_SYSKEYDOWN : WM_KEYDOWN) : (sys ? WM_SYSKEYUP : WM_KEYUP);
    if (CallHooks(WH_KEYBOARD_LL, HC_ACTION, m, reinterpret_cast<LPARAM>(&ll))) return;
  }
  SetKeyBits(st.asyncKeys, vk, down, false);
  if (down && !wasDown) st.asyncKeys[vk] |= 0x01;
  InputEvent ev;
  ev.kind = InputEvent::Kind::Key;
  ev.pt = st.cursor;
  ev.vk = vk;
  ev.down = down;
  ev.repeat = std::clamp(repeat, 1, 0xFFFF);
  ev.prevDown = wasDown;
  ev.alt = alt;
  ev.ctrl = ctrl;
  Enqueue(std::move(ev));
}

void InjectKeyPress(int vk) {
  InjectKey(vk, true);
  InjectKey(vk, false);
}

void keybd_event(BYTE vk, BYTE scan, DWORD flags, uintptr_t extraInfo) {
  InjectKey(vk, (flags & KEYEVENTF_KEYUP) == 0);
}

void InjectText(std::u16string_view text) {
  for (char16_t c : text) {
    InputEvent ev;
    ev.kind = InputEvent::Kind::Char;
    ev.pt = St().cursor;
    ev.ch = c;
    Enqueue(std::move(ev));
  }
}

// ---- cooking -----------------------------------------------------------------------------------

namespace win {

bool CookInput(InputEvent& ev) {
  UserState& st = St();
  ev.cooked = true;
  if (ev.kind == InputEvent::Kind::Key || ev.kind == InputEvent::Kind::Char) {
    // Keys go to the focus window; with no focus, to the active window as system keys.
    HWND target = st.focus ? st.focus : st.active;
    if (!target || !Get(target)) return false;
    if (ev.kind == InputEvent::Kind::Char) {
      ev.msg = MSG{target, WM_CHAR, ev.ch, 1, ev.time, ev.pt};
      return true;
    }
    const bool sys = (ev.alt && !ev.ctrl) || ev.vk == VK_F10 || !st.focus;
    UINT m = ev.down ? (sys ? WM_SYSKEYDOWN : WM_KEYDOWN) : (sys ? WM_SYSKEYUP : WM_KEYUP);
    int sc = ScanCodeOf(ev.vk);
    LPARAM lp = static_cast<LPARAM>(ev.repeat & 0xFFFF) | (static_cast<LPARAM>(sc & 0xFF) << 16);
    if (sc & 0x100) lp |= KF_EXTENDED_BIT;
    if (ev.alt) lp |= KF_ALTDOWN_BIT;
    if (ev.prevDown || !ev.down) lp |= KF_REPEAT_BIT;
    if (!ev.down) lp |= KF_UP_BIT;
    ev.msg = MSG{target, m, static_cast<WPARAM>(ev.vk), lp, ev.time, ev.pt};
    return true;
  }

  if (ev.kind == InputEvent::Kind::Wheel) {
    HWND target = st.focus ? st.focus : st.active;
    if (!target || !Get(target)) return false;
    UINT m = ev.horizontal ? WM_MOUSEHWHEEL : WM_MOUSEWHEEL;
    ev.msg = MSG{target, m, MAKEWPARAM(static_cast<int>(ev.mk), ev.delta), MAKELPARAM(ev.pt.x, ev.pt.y), ev.time, ev.pt};
    return true;
  }

  // The caption-drag mode takes the pointer until the left button comes up.
  if (st.moveSize.hwnd) {
    if (ev.kind == InputEvent::Kind::Move) MoveSizeStep(ev.pt);
    else if (ev.kind == InputEvent::Kind::Button && ev.button == VK_LBUTTON && !ev.down) EndSystemMoveSize(st.moveSize.hwnd);
    return false;
  }

  // With capture everything goes to the capturing window as client input; otherwise the hit
  // test decides the window and whether the point is client or frame.
  HWND target;
  LRESULT hit;
  if (st.capture && Get(st.capture)) {
    target = st.capture;
    hit = HTCLIENT;
  } else {
    std::tie(target, hit) = HitTestScreen(ev.pt);
  }
  if (!target || !Get(target)) {
    UpdateMouseWindow(0, false, ev.pt);
    return false;
  }
  const bool captured = st.capture == target;
  const bool nonClient = !captured && hit != HTCLIENT && hit != HTERROR;
  UpdateMouseWindow(target, nonClient, ev.pt);

  ButtonInfo info = InfoForVk(ev.button);
  UINT clientMsg = WM_MOUSEMOVE;
  if (ev.kind == InputEvent::Kind::Button) clientMsg = ev.down ? info.down : info.down + 1;

  if (!captured) {
    SendMessageW(target, WM_SETCURSOR, target, MAKELPARAM(static_cast<int>(hit), static_cast<int>(clientMsg)));
    if (!Get(target)) return false;
  }
  if (hit == HTERROR) return false;  // a disabled window takes no mouse input

  if (ev.kind == InputEvent::Kind::Button && ev.down) {
    // A second press of the same button on the same window and area, soon enough and close
    // enough, is a double click when the class asks for them (the frame always does).
    const auto& lc = st.lastClick;
    const int halfW = GetSystemMetrics(SM_CXDOUBLECLK) / 2, halfH = GetSystemMetrics(SM_CYDOUBLECLK) / 2;
    const bool again = lc.message == clientMsg && lc.button == ev.button && lc.hwnd == target &&
                       lc.nonClient == nonClient &&
                       ev.time - lc.time <= st.doubleClickTime && std::abs(ev.pt.x - lc.pt.x) <= halfW &&
                       std::abs(ev.pt.y - lc.pt.y) <= halfH;
    Wnd* w = Get(target);
    if (again && (nonClient || (w->cls && (w->cls->style & CS_DBLCLKS)))) {
      clientMsg = info.down + 2;
      st.lastClick = {};
    } else {
      st.lastClick = {clientMsg, ev.button, target, ev.time, ev.pt, nonClient};
    }

    // A press in an inactive top-level window asks the window whether to activate and whether
    // to let the click through.
    if (!captured) {
      HWND top = GetAncestor(target, GA_ROOT);
      if (top != st.active) {
        LRESULT r = SendMessageW(target, WM_MOUSEACTIVATE, top, MAKELPARAM(static_cast<int>(hit), static_cast<int>(info.down)));
        if ((r == MA_ACTIVATE || r == MA_ACTIVATEANDEAT) && Get(top)) Activate(top, WA_CLICKACTIVE);
        if (r == MA_ACTIVATEANDEAT || r == MA_NOACTIVATEANDEAT) return false;
        if (!Get(target)) return false;
      }
    }
  }

  // Non-client messages mirror the client ones at a fixed distance, carry the hit code in
  // wParam and screen coordinates in lParam.
  UINT m = nonClient ? clientMsg - (WM_MOUSEMOVE - WM_NCMOUSEMOVE) : clientMsg;
  WPARAM wp;
  LPARAM lp;
  if (nonClient) {
    wp = static_cast<WPARAM>(hit);
    if (info.xbutton && ev.kind == InputEvent::Kind::Button) wp = MAKEWPARAM(static_cast<int>(hit), info.xbutton);
    lp = MAKELPARAM(ev.pt.x, ev.pt.y);
  } else {
    wp = ev.mk;
    if (info.xbutton && ev.kind == InputEvent::Kind::Button) wp = MAKEWPARAM(static_cast<int>(ev.mk), info.xbutton);
    POINT c = ev.pt;
    ScreenToClient(target, &c);
    lp = MAKELPARAM(c.x, c.y);
  }
  ev.hit = hit;
  ev.msg = MSG{target, m, wp, lp, ev.time, ev.pt};
  return true;
}

// The queue's key state moves as messages are taken, so that GetKeyState answers for the
// message being handled even when more input is already queued behind it.
void CommitInput(const InputEvent& ev) {
  UserState& st = St();
  switch (ev.kind) {
    case InputEvent::Kind::Button:
      SetKeyBits(st.syncKeys, ev.button, ev.down, ev.down);
      break;
    case InputEvent::Kind::Key:
      SetKeyBits(st.syncKeys, ev.vk, ev.down, ev.down && !ev.prevDown);
      break;
    default:
      break;
  }
}

char16_t CharacterForKey(int vk) {
  const bool shift = SyncDown(VK_SHIFT);
  const bool ctrl = SyncDown(VK_CONTROL);
  const bool alt = SyncDown(VK_MENU);
  const bool caps = (St().syncKeys[VK_CAPITAL] & 0x01) != 0;
  if (ctrl && alt) return 0;
  if (vk >= 'A' && vk <= 'Z') {
    if (ctrl) return static_cast<char16_t>(vk - 'A' + 1);
    return static_cast<char16_t>((shift != caps) ? vk : vk + 32);
  }
  if (vk >= '0' && vk <= '9') {
    if (ctrl) return 0;
    static const char16_t kShifted[] = u")!@#$%^&*(";
    return shift ? kShifted[vk - '0'] : static_cast<char16_t>(vk);
  }
  if (vk >= VK_NUMPAD0 && vk <= VK_NUMPAD9) return static_cast<char16_t>(u'0' + (vk - VK_NUMPAD0));
  switch (vk) {
    case VK_SPACE: return u' ';
    case VK_RETURN: return ctrl ? u'\n' : u'\r';
    case VK_BACK: return ctrl ? char16_t{0x7F} : u'\b';
    case VK_TAB: return ctrl ? 0 : u'\t';
    case VK_ESCAPE: return char16_t{0x1B};
    case VK_MULTIPLY: return u'*';
    case VK_ADD: return u'+';
    case VK_SUBTRACT: return u'-';
    case VK_DECIMAL: return u'.';
    case VK_DIVIDE: return u'/';
    default: break;
  }
  if (ctrl) {
    // Ctrl with the bracket keys gives the classic control characters.
    if (vk == VK_OEM_4) return char16_t{0x1B};
    if (vk == VK_OEM_5) return char16_t{0x1C};
    if (vk == VK_OEM_6) return char16_t{0x1D};
    return 0;
  }
  switch (vk) {
    case VK_OEM_1: return shift ? u':' : u';';
    case VK_OEM_PLUS: return shift ? u'+' : u'=';
    case VK_OEM_COMMA: return shift ? u'<' : u',';
    case VK_OEM_MINUS: return shift ? u'_' : u'-';
    case VK_OEM_PERIOD: return shift ? u'>' : u'.';
    case VK_OEM_2: return shift ? u'?' : u'/';
    case VK_OEM_3: return shift ? u'~' : u'`';
    case VK_OEM_4: return shift ? u'{' : u'[';
    case VK_OEM_5: return shift ? u'|' : u'\\';
    case VK_OEM_6: return shift ? u'}' : u']';
    case VK_OEM_7: return shift ? u'"' : u'\'';
    default: return 0;
  }
}

std::optional<uint64_t> NextHoverDue() {
  const MouseTracking& t = St().tracking;
  if (t.hwnd && (t.flags & TME_HOVER)) return t.hoverDue;
  return std::nullopt;
}

void CheckHover() {
  UserState& st = St();
  MouseTracking& t = st.tracking;
  if (!t.hwnd || !(t.flags & TME_HOVER) || GetTickCount64() < t.hoverDue) return;
  if (!Get(t.hwnd)) {
    t = {};
    return;
  }
  t.flags &= ~TME_HOVER;
  if (t.flags & TME_NONCLIENT) {
    LRESULT hit = SendMessageW(t.hwnd, WM_NCHITTEST, 0, MAKELPARAM(st.cursor.x, st.cursor.y));
    PostMessageW(t.hwnd, 0x02A0 /* WM_NCMOUSEHOVER */, static_cast<WPARAM>(hit), MAKELPARAM(st.cursor.x, st.cursor.y));
  } else {
    POINT c = st.cursor;
    ScreenToClient(t.hwnd, &c);
    PostMessageW(t.hwnd, WM_MOUSEHOVER, MouseKeyStateOf(st.syncKeys), MAKELPARAM(c.x, c.y));
  }
  if (!(t.flags & (TME_LEAVE | TME_HOVER))) t = {};
}

void PostSyntheticMouseMove() {
  InputEvent ev;
  ev.kind = InputEvent::Kind::Move;
  ev.pt = St().cursor;
  ev.synthetic = true;
  ev.mk = MouseKeyStateOf(St().asyncKeys);
  Enqueue(std::move(ev));
}

void ForgetWindowInput(HWND hwnd) {
  UserState& st = St();
  if (st.capture == hwnd) st.capture = 0;
  if (st.focus == hwnd) st.focus = 0;
  if (st.active == hwnd) st.active = 0;
  if (st.mouseWindow == hwnd) st.mouseWindow = 0;
  if (st.tracking.hwnd == hwnd) st.tracking = {};
  if (st.lastClick.hwnd == hwnd) st.lastClick = {};
  if (st.moveSize.hwnd == hwnd) st.moveSize = {};
  st.input.erase(std::remove_if(st.input.begin(), st.input.end(),
                                [&](const InputEvent& e) { return e.cooked && e.msg.hwnd == hwnd; }),
                 st.input.end());
  st.posted.erase(std::remove_if(st.posted.begin(), st.posted.end(), [&](const MSG& m) { return m.hwnd == hwnd; }),
                  st.posted.end());
}

void ActivateOtherWindow(HWND leaving) {
  UserState& st = St();
  HWND next = 0;
  if (Wnd* w = Get(leaving); w && w->owner && CanActivate(w->owner, leaving)) next = w->owner;
  if (!next) {
    for (HWND t : st.topLevels)
      if (CanActivate(t, leaving)) {
        next = t;
        break;
      }
  }
  Activate(next, WA_ACTIVE);
}

void BeginSystemMoveSize(HWND hwnd, int hit) {
  UserState& st = St();
  if (!Get(hwnd) || st.moveSize.hwnd) return;
  RECT r;
  GetWindowRect(hwnd, &r);
  SetCapture(hwnd);
  // The drag starts where the pointer was for the message being handled, not where later
  // queued input has already taken the cursor.
  st.moveSize = {hwnd, hit, st.lastMsg.message ? st.lastMsg.pt : st.cursor, r};
  SendMessageW(hwnd, WM_ENTERSIZEMOVE, 0, 0);
}

void EndSystemMoveSize(HWND hwnd) {
  UserState& st = St();
  if (!hwnd || st.moveSize.hwnd != hwnd) return;
  st.moveSize = {};
  if (st.capture == hwnd) {
    st.capture = 0;
    SendMessageW(hwnd, WM_CAPTURECHANGED, 0, 0);
    PostSyntheticMouseMove();
  }
  if (Get(hwnd)) SendMessageW(hwnd, WM_EXITSIZEMOVE, 0, 0);
}

}  // namespace win

// ---- state -------------------------------------------------------------------------------------

BOOL GetCursorPos(POINT* pt) {
  if (!pt) return FALSE;
  *pt = St().cursor;
  return TRUE;
}

BOOL SetCursorPos(int x, int y) {
  InjectMouseMove(x, y);
  return TRUE;
}

int16_t GetAsyncKeyState(int vk) {
  uint8_t& b = St().asyncKeys[vk & 0xFF];
  int16_t r = static_cast<int16_t>((b & 0x80) ? 0x8000 : 0);
  if (b & 0x01) {
    r = static_cast<int16_t>(r | 1);
    b &= static_cast<uint8_t>(~0x01);
  }
  return r;
}

int16_t GetKeyState(int vk) {
  uint8_t b = St().syncKeys[vk & 0xFF];
  return static_cast<int16_t>(((b & 0x80) ? 0x8000 : 0) | (b & 0x01));
}

BOOL GetKeyboardState(BYTE* state256) {
  if (!state256) return FALSE;
  std::copy_n(St().syncKeys, 256, state256);
  return TRUE;
}

WPARAM CurrentMouseKeyState() { return MouseKeyStateOf(St().asyncKeys); }

UINT GetDoubleClickTime() { return St().doubleClickTime; }

BOOL SetDoubleClickTime(UINT ms) {
  St().doubleClickTime = ms ? ms : 500;
  return TRUE;
}

// ---- capture -----------------------------------------------------------------------------------

HWND SetCapture(HWND hwnd) {
  UserState& st = St();
  if (!hwnd) {
    HWND old = st.capture;
    ReleaseCapture();
    return old;
  }
  if (!Get(hwnd)) return 0;
  HWND old = st.capture;
  if (old == hwnd) return old;
  st.capture = hwnd;
  if (old && Get(old)) {
    SendMessageW(old, WM_CAPTURECHANGED, 0, static_cast<LPARAM>(hwnd));
    MoveSizeLostCapture(old);
  }
  return old;
}

BOOL ReleaseCapture() {
  UserState& st = St();
  HWND old = st.capture;
  if (!old) return TRUE;
  st.capture = 0;
  if (Get(old)) {
    SendMessageW(old, WM_CAPTURECHANGED, 0, 0);
    MoveSizeLostCapture(old);
  }
  PostSyntheticMouseMove();
  return TRUE;
}

HWND GetCapture() { return St().capture; }

// ---- focus and activation ----------------------------------------------------------------------

// Focus is set before the messages go out, so GetFocus inside WM_KILLFOCUS already names the
// new window, and a handler that moves the focus again wins.
HWND SetFocus(HWND hwnd) {
  UserState& st = St();
  const HWND old = st.focus;
  if (hwnd == old) return old;
  if (hwnd) {
    if (!Get(hwnd)) return 0;
    if (HasHooks(WH_CBT) && CallHooks(WH_CBT, HCBT_SETFOCUS, hwnd, static_cast<LPARAM>(old))) return 0;
    HWND top = GetAncestor(hwnd, GA_ROOT);
    if (top != st.active) {
      Activate(top, WA_ACTIVE);
      if (st.active != top || !Get(hwnd)) return 0;
    }
  }
  const HWND prev = st.focus;
  if (prev == hwnd) return old;
  st.focus = hwnd;
  if (prev && Get(prev)) SendMessageW(prev, WM_KILLFOCUS, hwnd, 0);
  if (st.focus != hwnd) return old;  // the losing window moved the focus elsewhere
  if (hwnd && Get(hwnd)) SendMessageW(hwnd, WM_SETFOCUS, prev, 0);
  return old;
}

HWND GetFocus() { return St().focus; }

HWND SetActiveWindow(HWND hwnd) { return Activate(hwnd, WA_ACTIVE); }

HWND GetActiveWindow() { return St().active; }

BOOL SetForegroundWindow(HWND hwnd) {
  if (!Get(hwnd)) return FALSE;
  Activate(hwnd, WA_ACTIVE);
  return St().active == GetAncestor(hwnd, GA_ROOT) ? TRUE : FALSE;
}

HWND GetForegroundWindow() { return St().active; }

// ---- tracking ----------------------------------------------------------------------------------

// One tracked window per thread. "Over the window" is judged by where the last mouse message
// went (the capturing window while there is capture), not by a fresh hit test.
BOOL TrackMouseEvent(TRACKMOUSEEVENT* tme) {
  UserState& st = St();
  if (!tme || tme->cbSize != sizeof(TRACKMOUSEEVENT)) return FALSE;
  MouseTracking& t = st.tracking;
  if (tme->dwFlags & TME_QUERY) {
    tme->dwFlags = t.hwnd ? t.flags : 0;
    tme->hwndTrack = t.hwnd;
    tme->dwHoverTime = t.hwnd ? t.hoverTime : 0;
    return TRUE;
  }
  if (!Get(tme->hwndTrack)) return FALSE;
  const bool nc = (tme->dwFlags & TME_NONCLIENT) != 0;
  if (tme->dwFlags & TME_CANCEL) {
    if (t.hwnd == tme->hwndTrack && ((t.flags & TME_NONCLIENT) != 0) == nc) {
      t.flags &= ~(tme->dwFlags & (TME_LEAVE | TME_HOVER));
      if (!(t.flags & (TME_LEAVE | TME_HOVER))) t = {};
    }
    return TRUE;
  }
  const bool over = st.mouseWindow == tme->hwndTrack && st.mouseNonClient == nc;
  if (!over) {
    // Asking to hear of a leave while already outside gets the leave at once.
    if (tme->dwFlags & TME_LEAVE) PostMessageW(tme->hwndTrack, nc ? WM_NCMOUSELEAVE : WM_MOUSELEAVE, 0, 0);
    return TRUE;
  }
  if (t.hwnd != tme->hwndTrack || ((t.flags & TME_NONCLIENT) != 0) != nc) t = MouseTracking{tme->hwndTrack, 0};
  t.flags |= tme->dwFlags & (TME_LEAVE | TME_HOVER | TME_NONCLIENT);
  if (tme->dwFlags & TME_HOVER) {
    t.hoverTime = tme->dwHoverTime == HOVER_DEFAULT ? st.hoverTime : tme->dwHoverTime;
    t.hoverOrigin = st.cursor;
    t.hoverDue = GetTickCount64() + t.hoverTime;
  }
  return TRUE;
}

}  // namespace mx::platform
