// USForm: the form's messages and the strips' mouse, as the subclass delivers them.
//
// The caption strip is the control's own window: the host turns its mouse messages into the
// control's MouseDown/MouseMove/MouseUp first (taking the capture on a press), and the frame's
// work runs after that, in the subclass's after phase, so that a press can hand the capture on
// to the platform's move/size loop.
#include <algorithm>

#include "chrome/USForm.h"
#include "controls/ControlSupport.h"
#include "frame/APITooltip.h"
#include "host/Form.h"
#include "platform/User.h"

namespace mx::chrome {

using controls::detail::Step;
using namespace platform;

namespace {

// Which button each of the three slots of the wide band holds, by the buttons shown: hidden
// buttons close up to the right.
constexpr int32_t kSlotMap[8][3] = {
    // index: minimise shown * 4 + maximise shown * 2 + close shown
    {0, 0, 0},                                  // none
    {0, 0, CloseButton},                        // close only
    {0, 0, MaximizeButton},                     // maximise only
    {0, MaximizeButton, CloseButton},           // maximise, close
    {0, 0, MinimizeButton},                     // minimise only
    {0, MinimizeButton, CloseButton},           // minimise, close
    {0, MinimizeButton, MaximizeButton},        // minimise, maximise
    {MinimizeButton, MaximizeButton, CloseButton},
};

// Slot offsets from the band's left: Office look fixed per button, wide look per slot.
constexpr int32_t kOfficeSlots[3][2] = {{2, 21}, {25, 45}, {50, 70}};
constexpr int32_t kWideSlots[3][2] = {{0, 44}, {46, 89}, {91, 134}};

int16_t PointerForHit(int32_t hit) {
  switch (hit) {
    case HTLEFT:
    case HTRIGHT: return host::vbSizeWE;
    case HTBOTTOMLEFT:
    case HTTOPRIGHT: return host::vbSizeNESW;
    case HTBOTTOMRIGHT:
    case HTTOPLEFT: return host::vbSizeNWSE;
    case HTTOP:
    case HTBOTTOM: return host::vbSizeNS;
    default: return host::vbDefault;
  }
}

}  // namespace

// ---- Hit tests --------------------------------------------------------------------------------

int32_t USForm::ButtonBandWidth() const { return OfficeLook() ? 76 : 137; }

bool USForm::InButtonBandY(int32_t y) const { return OfficeLook() ? (y >= 6 && y <= 26) : (y >= 2 && y <= 28); }

bool USForm::IsButtonLive(int32_t button) const {
  switch (button) {
    case MinimizeButton: return m_enableMinimize && m_showMinimize;
    case MaximizeButton: return m_enableMaximize && m_showMaximize;
    case CloseButton: return m_enableClose && m_showClose;
    default: return false;
  }
}

int32_t USForm::HitTestButton(int32_t x, int32_t y) const {
  if (!m_showControlBox || !InButtonBandY(y)) return NoButton;
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  const int32_t bandLeft = rc.right - ButtonBandWidth();
  const int32_t dx = x - bandLeft;
  if (OfficeLook()) {
    for (int32_t b = 0; b < 3; ++b)
      if (dx >= kOfficeSlots[b][0] && dx <= kOfficeSlots[b][1]) return IsButtonLive(b + 1) ? b + 1 : NoButton;
    return NoButton;
  }
  const int32_t shown = (m_showMinimize ? 4 : 0) + (m_showMaximize ? 2 : 0) + (m_showClose ? 1 : 0);
  for (int32_t s = 0; s < 3; ++s) {
    if (dx < kWideSlots[s][0] || dx > kWideSlots[s][1]) continue;
    // The enable property counts only once the slot has named its button.
    const int32_t button = kSlotMap[shown][s];
    return IsButtonLive(button) ? button : NoButton;
  }
  return NoButton;
}

RECT USForm::ButtonRect(int32_t button) const {
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  if (!m_showControlBox || button < MinimizeButton || button > CloseButton) return RECT{};
  const int32_t bandLeft = rc.right - ButtonBandWidth();
  if (OfficeLook()) {
    const bool shown = button == MinimizeButton ? m_showMinimize : button == MaximizeButton ? m_showMaximize : m_showClose;
    if (!shown) return RECT{};
    return RECT{bandLeft + kOfficeSlots[button - 1][0], 6, bandLeft + kOfficeSlots[button - 1][1] + 1, 27};
  }
  const int32_t shown = (m_showMinimize ? 4 : 0) + (m_showMaximize ? 2 : 0) + (m_showClose ? 1 : 0);
  for (int32_t s = 0; s < 3; ++s)
    if (kSlotMap[shown][s] == button)
      return RECT{bandLeft + kWideSlots[s][0], 0, bandLeft + kWideSlots[s][1] + 1, std::min<int32_t>(rc.bottom, 29)};
  return RECT{};
}

bool USForm::CanSize() const { return m_allowResize && m_windowSizeState == 0; }

// ---- The subclass -------------------------------------------------------------------------------

void USForm::SubclassProc(int32_t, bool bBefore, bool& bHandled, LRESULT& lReturn, HWND lng_hWnd, UINT uMsg,
                          WPARAM wParam, LPARAM lParam, LPARAM&) {
  if (!m_subclassActive) return;
  // Nothing that goes wrong in here may reach the window procedure that called us.
  Step([&] {
    if (lng_hWnd == m_formWindow) ParentMessage(bBefore, bHandled, lReturn, uMsg, wParam, lParam);
    else StripMessage(lng_hWnd, bBefore, bHandled, uMsg, wParam, lParam);
  });
}

void USForm::ParentMessage(bool before, bool& handled, LRESULT& result, UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_SHOWWINDOW:
      if (!before) return;
      m_windowVisible = wParam != 0;
      if (wParam && !m_firstShowDone) FirstShow(true);
      return;

    case WM_SIZE: {
      m_windowSizeState = static_cast<int32_t>(wParam);
      if (!m_windowVisible || m_windowSizeState == SIZE_MINIMIZED) return;
      RECT r{};
      GetWindowRect(m_formWindow, &r);
      // The caption strip follows the form's width whatever happened.
      AlignToParentTop();
      if (r.width() != m_windowRect.width() || r.height() != m_windowRect.height() || m_windowSizeState != 0 ||
          m_minimizedByCommand) {
        m_windowRect = r;
        DrawForm();
      } else {
        // Same size, other state (back from maximised to the size it had): the middle button.
        DrawCaptionButtons();
      }
      return;
    }

    case WM_GETMINMAXINFO: {
      auto* mmi = reinterpret_cast<MINMAXINFO*>(lParam);
      if (!mmi) return;
      SystemParametersInfo(SPI_GETWORKAREA, 0, &m_clipRectangles, 0);
      mmi->ptMinTrackSize.x = 128;
      mmi->ptMinTrackSize.y = OfficeLook() ? 32 : m_borderWidth + 32;
      // A maximised form stays on the work area, off the task bar.
      mmi->ptMaxPosition = {m_clipRectangles.left, m_clipRectangles.top};
      mmi->ptMaxSize = {m_clipRectangles.right, m_clipRectangles.bottom};
      handled = true;
      result = 0;
      return;
    }

    case WM_NCACTIVATE: {
      const bool active = wParam != 0;
      const bool changed = active != m_formActive;
      m_formActive = active;
      if (IsWindowVisible(m_formWindow)) {
        if (m_skipNextActivatePaint) m_skipNextActivatePaint = false;
        else if (changed) DrawForm();
      }
      Step([&] { FormActivated(m_formActive); });
      return;
    }

    case WM_SYSCOMMAND:
      switch (wParam & 0xFFF0) {
        case SC_CLOSE:
          // Whether from the task list, Alt+F4 or the close button: the control's own unload.
          handled = true;
          result = 0;
          UnloadMe();
          return;
        case SC_MINIMIZE:
          m_minimizedByCommand = true;
          return;
        case SC_RESTORE:
          if (m_minimizedByCommand) {
            m_minimizedByCommand = false;
            DrawCaptionButtons();
          }
          return;
        default:
          return;
      }

    default:
      return;
  }
}

void USForm::StripMessage(HWND strip, bool before, bool& handled, UINT msg, WPARAM, LPARAM lParam) {
  const int32_t x = GET_X_LPARAM(lParam), y = GET_Y_LPARAM(lParam);
  if (msg == WM_MOUSELEAVE || msg == WM_CANCELMODE) {
    if (strip == UserControl::hWnd()) ResetHover();
    handled = true;
    return;
  }
  if (before) return;
  if (strip != UserControl::hWnd()) {
    EdgeMouse(strip, msg, x, y);
    return;
  }
  switch (msg) {
    case WM_MOUSEMOVE: CaptionMouseMove(x, y); break;
    case WM_LBUTTONDOWN: CaptionButtonDown(x, y); break;
    case WM_LBUTTONUP: CaptionButtonUp(x, y); break;
    case WM_LBUTTONDBLCLK: CaptionDoubleClick(); break;
    default: break;
  }
}

// ---- Caption strip ----------------------------------------------------------------------------

void USForm::CaptionMouseMove(int32_t x, int32_t y) {
  if (!m_mouseTracking) {
    m_mouseTracking = true;
    if (m_hoverTime == 0) SystemParametersInfo(SPI_GETMOUSEHOVERTIME, 0, &m_hoverTime, 0);
    TRACKMOUSEEVENT tme;
    tme.dwFlags = TME_LEAVE | TME_HOVER;
    tme.hwndTrack = UserControl::hWnd();
    tme.dwHoverTime = m_hoverTime;
    TrackMouseEvent(&tme);
  }
  // The top band, above the buttons, sizes the form from its top edge.
  int16_t pointer = host::vbDefault;
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  if (CanSize() && y < (OfficeLook() ? 6 : 2)) {
    pointer = x < 8 ? host::vbSizeNWSE : x > rc.right - 8 ? host::vbSizeNESW : host::vbSizeNS;
  }
  if (UserControl::MousePointer() != pointer) UserControl::MousePointer(pointer);
  SetHover(HitTestButton(x, y));
}

void USForm::CaptionButtonDown(int32_t x, int32_t y) {
  const int32_t button = HitTestButton(x, y);
  SetHover(button);
  if (button != NoButton) {
    m_buttonPressed = true;
    DrawCaptionButtons();
    return;
  }
  RECT rc{};
  GetClientRect(UserControl::hWnd(), &rc);
  if (CanSize() && y < (OfficeLook() ? 6 : 2)) {
    StartSystemLoop(x < 8 ? HTTOPLEFT : x > rc.right - 8 ? HTTOPRIGHT : HTTOP);
    return;
  }
  if (m_allowMove) StartSystemLoop(HTCAPTION);
}

void USForm::CaptionButtonUp(int32_t x, int32_t y) {
  const bool wasPressed = m_buttonPressed;
  m_buttonPressed = false;
  const int32_t button = InButtonBandY(y) ? HitTestButton(x, y) : NoButton;
  if (wasPressed) DrawCaptionButtons();
  if (!wasPressed || button == NoButton || button != m_hoverButton) return;
  switch (button) {
    case MinimizeButton:
      PostMessageW(m_formWindow, WM_SYSCOMMAND, SC_MINIMIZE, 0);
      break;
    case MaximizeButton:
      if (m_windowSizeState == SIZE_MAXIMIZED) PostMessageW(m_formWindow, WM_SYSCOMMAND, SC_RESTORE, 0);
      else if (m_showMaximize) PostMessageW(m_formWindow, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
      break;
    case CloseButton:
      UnloadMe();
      break;
    default:
      break;
  }
}

void USForm::CaptionDoubleClick() {
  // On a button the second press is a press of that button, not a double click of the strip.
  if (m_hoverButton != NoButton) {
    m_buttonPressed = true;
    DrawCaptionButtons();
    return;
  }
  if (m_showControlBox && m_enableMaximize && m_showMaximize)
    PostMessageW(m_formWindow, WM_SYSCOMMAND, m_windowSizeState == SIZE_MAXIMIZED ? SC_RESTORE : SC_MAXIMIZE, 0);
}

void USForm::StartSystemLoop(int32_t hitTest) {
  // The platform's own loop moves or sizes the form from here on; it needs the capture.
  ReleaseCapture();
  POINT pt{};
  GetCursorPos(&pt);
  SendMessageW(m_formWindow, WM_NCLBUTTONDOWN, static_cast<WPARAM>(hitTest), MAKELPARAM(pt.x, pt.y));
}

void USForm::SetHover(int32_t button) {
  m_hoverButton = button;
  if (m_hoverButton == m_lastHoverButton) return;
  m_lastHoverButton = m_hoverButton;
  if (m_hoverButton == NoButton) m_buttonPressed = false;
  UpdateToolTip();
  DrawCaptionButtons();
}

void USForm::ResetHover() {
  m_mouseTracking = false;
  m_buttonPressed = false;
  SetHover(NoButton);
}

void USForm::UpdateToolTip() {
  if (!m_toolTip) return;
  String text;
  switch (m_hoverButton) {
    case MinimizeButton: text = m_toolTipMinimize; break;
    case MaximizeButton: text = m_windowSizeState == SIZE_MAXIMIZED ? String(u"Rest. tamanho") : m_toolTipMaximize; break;
    case CloseButton: text = m_toolTipClose; break;
    default: break;
  }
  m_toolTip->TipText(text);
}

String USForm::ToolTipText() const { return m_toolTip ? m_toolTip->TipText() : String(); }

int32_t USForm::MaximizeGlyph() const { return m_windowSizeState == SIZE_MAXIMIZED ? -2 : MaximizeButton; }

// ---- Edge strips --------------------------------------------------------------------------------

void USForm::EdgeMouse(HWND edge, UINT msg, int32_t x, int32_t y) {
  size_t index = 3;
  for (size_t i = 0; i < 3; ++i)
    if (m_edges[i] == edge) index = i;
  if (index == 3) return;
  int32_t hit = HTNOWHERE;
  if (CanSize()) {
    RECT rc{};
    GetClientRect(edge, &rc);
    if (index == 1) hit = HTLEFT;
    else if (index == 2) hit = HTRIGHT;
    else if (msg == WM_MOUSEMOVE) hit = x < 3 ? HTBOTTOMLEFT : x > rc.right - 3 ? HTBOTTOMRIGHT : HTBOTTOM;
    else hit = x < 8 ? HTBOTTOMLEFT : x > rc.right - 8 ? HTBOTTOMRIGHT : HTBOTTOM;
  }
  if (msg == WM_MOUSEMOVE) {
    m_edgePointer[index] = PointerForHit(hit);
    if (HCURSOR c = EdgeCursor(edge)) SetCursor(c);
  } else if (msg == WM_LBUTTONDOWN && hit != HTNOWHERE) {
    StartSystemLoop(hit);
  }
}

HCURSOR USForm::EdgeCursor(HWND edge) const {
  for (size_t i = 0; i < 3; ++i) {
    if (m_edges[i] != edge) continue;
    switch (m_edgePointer[i]) {
      case host::vbSizeWE: return LoadCursorW(0, IDC_SIZEWE);
      case host::vbSizeNS: return LoadCursorW(0, IDC_SIZENS);
      case host::vbSizeNESW: return LoadCursorW(0, IDC_SIZENESW);
      case host::vbSizeNWSE: return LoadCursorW(0, IDC_SIZENWSE);
      default: return 0;
    }
  }
  return 0;
}

// ---- The control's own mouse events (the caption strip) ---------------------------------------

void USForm::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USForm::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USForm::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}
void USForm::UserControl_Click() { Step([&] { Click(); }); }
void USForm::UserControl_DblClick() { Step([&] { DblClick(); }); }

}  // namespace mx::chrome
