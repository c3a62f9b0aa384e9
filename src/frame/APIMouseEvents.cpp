#include "frame/APIMouseEvents.h"

#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/Messages.h"

namespace mx::frame {

using platform::LPARAM;
using platform::LRESULT;
using platform::WPARAM;

namespace {

// The hover time is read once per thread, on the first tracking request.
thread_local platform::UINT t_hoverTime = 0;

// Mouse code never lets a handler's failure out into the window procedure.
template <typename E, typename... A>
void Raise(E& event, A... args) {
  try {
    event(args...);
  } catch (...) {
  }
}

}  // namespace

MouseArgs DecodeMouseArgs(WPARAM wParam, LPARAM lParam) {
  MouseArgs a;
  if (wParam & platform::MK_LBUTTON) a.Button |= 1;
  if (wParam & platform::MK_RBUTTON) a.Button |= 2;
  if (wParam & platform::MK_MBUTTON) a.Button |= 4;
  if (wParam & platform::MK_SHIFT) a.Shift |= 1;
  if (wParam & platform::MK_CONTROL) a.Shift |= 2;
  // lParam is a 32-bit Long: X reads its low word as unsigned, so a position past 32767 (or a
  // negative one) comes out positive, while Y is the Long divided by 65536 rounding down, the
  // high word with its sign.
  const auto l = static_cast<int32_t>(static_cast<uint32_t>(lParam));
  a.X = l & 0xFFFF;
  a.Y = l >> 16;
  return a;
}

APIMouseEvents::~APIMouseEvents() {
  m_tracking = false;
  m_outside = false;
  m_subclass.reset();
}

void APIMouseEvents::Attach(platform::HWND Target_hWnd) {
  if (Target_hWnd == 0) return;
  m_outside = true;
  m_target = Target_hWnd;
  m_subclass = std::make_unique<APISubClass>();
  if (!m_subclass->ssc_Subclass(Target_hWnd, 0, 1, this, true, true)) return;
  m_subclass->ssc_AddMsg(Target_hWnd, MSG_AFTER, {31, 526, 522, 32, 277, 523, 276});
  m_subclass->ssc_AddMsg(Target_hWnd, MSG_BEFORE, {675, 512});
}

void APIMouseEvents::TrackMouse(platform::HWND hwnd) {
  if (t_hoverTime == 0) platform::SystemParametersInfo(platform::SPI_GETMOUSEHOVERTIME, 0, &t_hoverTime, 0);
  platform::TRACKMOUSEEVENT tme;
  tme.cbSize = 16;
  tme.dwFlags = platform::TME_HOVER | platform::TME_LEAVE;
  tme.hwndTrack = hwnd;
  tme.dwHoverTime = t_hoverTime;
  if (platform::_TrackMouseEvent(&tme) == 0) platform::TrackMouseEvent(&tme);
}

void APIMouseEvents::SubclassProc(int32_t, bool, bool& bHandled, LRESULT& lReturn, platform::HWND lng_hWnd,
                                  platform::UINT uMsg, WPARAM wParam, LPARAM lParam, LPARAM&) {
  const auto w32 = static_cast<int32_t>(static_cast<uint32_t>(wParam));
  const auto l32 = static_cast<int32_t>(static_cast<uint32_t>(lParam));
  const std::weak_ptr<void> alive = OwnerToken();
  switch (uMsg) {
    case platform::WM_MOUSELEAVE:
    case platform::WM_CANCELMODE:
      bHandled = true;
      lReturn = 0;
      Raise(MouseOut);
      // A handler may have ended this object (its control went away).
      if (alive.expired()) return;
      m_tracking = false;
      m_outside = true;
      break;
    case platform::WM_SETCURSOR:
      if (m_outside || m_cursorID < 1) break;
      platform::SetCursor(platform::LoadCursor(0, m_cursorID));
      lReturn = 1;
      bHandled = true;
      break;
    case platform::WM_HSCROLL:
      Raise(MouseHScrollEx, w32, l32);
      lReturn = 0;
      break;
    case platform::WM_VSCROLL:
      Raise(MouseVScrollEx, w32, l32);
      lReturn = 0;
      break;
    case platform::WM_MOUSEMOVE: {
      // One tracking request per entry: leave ends it, and the next move asks again.
      if (!m_tracking) {
        m_tracking = true;
        TrackMouse(lng_hWnd);
      }
      const MouseArgs a = DecodeMouseArgs(wParam, lParam);
      Raise(MouseMove, w32, l32, a.Button, a.Shift, a.X, a.Y);
      if (alive.expired()) return;
      if (m_outside) {
        m_outside = false;
        Raise(MouseIn);
        Raise(MouseInParam, w32, l32);
      }
      break;
    }
    case platform::WM_MOUSEWHEEL:
    case platform::WM_MOUSEHWHEEL:
      Raise(MouseWheel, w32, l32);
      lReturn = 0;
      break;
    case platform::WM_XBUTTONDOWN: {
      const MouseArgs a = DecodeMouseArgs(wParam, lParam);
      if (wParam & platform::MK_XBUTTON1) Raise(MouseBackButtonClick, a.Shift, a.X, a.Y);
      else if (wParam & platform::MK_XBUTTON2) Raise(MouseForwardButtonClick, a.Shift, a.X, a.Y);
      break;
    }
    default:
      break;
  }
}

}  // namespace mx::frame
