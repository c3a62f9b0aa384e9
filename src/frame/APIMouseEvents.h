#pragma once
// APIMouseEvents: enter, leave, wheel, scroll and side-button events for one window, which the
// host's controls do not have, by subclassing the window.
//
// Which table a message sits in decides who hears it first:
//   before the window's own procedure  WM_MOUSELEAVE (handled here, the window never sees it),
//                                      WM_MOUSEMOVE
//   after it                           WM_CANCELMODE, WM_SETCURSOR, WM_MOUSEWHEEL,
//                                      WM_MOUSEHWHEEL, WM_HSCROLL, WM_VSCROLL, WM_XBUTTONDOWN
// so MouseMove and MouseOut reach the control before the host's handling and the rest after.
// At the entry MouseMove is raised before MouseIn.
#include <cstdint>
#include <memory>

#include "frame/APISubClass.h"
#include "host/Event.h"
#include "platform/Types.h"

namespace mx::frame {

// The decoded arguments of a mouse message.
struct MouseArgs {
  int16_t Button = 0;  // 1 left, 2 right, 4 middle
  int16_t Shift = 0;   // 1 shift, 2 control
  int32_t X = 0;       // low word of lParam, unsigned
  int32_t Y = 0;       // high word of lParam, with its sign
};
[[nodiscard]] MouseArgs DecodeMouseArgs(platform::WPARAM wParam, platform::LPARAM lParam);

class APIMouseEvents : public SubclassOwner {
 public:
  APIMouseEvents() = default;
  // Clears Tracking and Outside and ends the subclass.
  ~APIMouseEvents() override;
  APIMouseEvents(const APIMouseEvents&) = delete;
  APIMouseEvents& operator=(const APIMouseEvents&) = delete;

  // 0 does nothing. Attaching again makes a new subclass, and the earlier one ends as its
  // APISubClass goes; a control attaches once. If the subclass fails, no event ever comes.
  void Attach(platform::HWND Target_hWnd);

  [[nodiscard]] platform::HWND Target() const { return m_target; }
  [[nodiscard]] bool Tracking() const { return m_tracking; }
  [[nodiscard]] bool Outside() const { return m_outside; }
  // A system cursor (IDC_ number) to show over the window; 0 leaves the window's own.
  [[nodiscard]] int32_t CursorID() const { return m_cursorID; }
  void CursorID(int32_t xValue) { m_cursorID = xValue; }

  // Events in identifier order. wParam and lParam are the message's, as 32-bit Longs.
  host::Event<> MouseOut;
  host::Event<> MouseIn;
  host::Event<int32_t, int32_t> MouseInParam;
  host::Event<int32_t, int32_t> MouseWheel;
  host::Event<int32_t, int32_t> MouseVScrollEx;
  host::Event<int32_t, int32_t> MouseHScrollEx;
  host::Event<int32_t, int32_t, int16_t, int16_t, int32_t, int32_t> MouseMove;  // wParam, lParam, Button, Shift, X, Y
  host::Event<int16_t, int32_t, int32_t> MouseBackButtonClick;                  // Shift, X, Y
  host::Event<int16_t, int32_t, int32_t> MouseForwardButtonClick;

  void SubclassProc(int32_t nOrdinal, bool bBefore, bool& bHandled, platform::LRESULT& lReturn,
                    platform::HWND lng_hWnd, platform::UINT uMsg, platform::WPARAM wParam, platform::LPARAM lParam,
                    platform::LPARAM& lParamUser) override;

 private:
  void TrackMouse(platform::HWND hwnd);

  platform::HWND m_target = 0;
  bool m_tracking = false;
  bool m_outside = false;
  int32_t m_cursorID = 0;
  std::unique_ptr<APISubClass> m_subclass;
};

}  // namespace mx::frame
