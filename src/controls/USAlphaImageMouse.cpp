// USAlphaImage: hit testing, mouse enter and exit through APICrossComm and the 100 ms check,
// the fade, the mouse and key events, and drops.
//
// Mouse over, as a small state machine driven by the host's HitTest and a timer:
//
//   not captured --HitTest 3--> captured (MouseEnter, timer armed, Tag "Timer")
//   captured --HitTest 0, or timer finds the cursor off the shape--> not captured (MouseExit)
//   captured --another control takes the capture--> not captured (MouseExit)
//
// The timer re-arms itself every 100 ms while the cursor stays on the shape: a windowless
// shape gets no leave message from the platform, so it has to look.
#include <algorithm>
#include <cmath>

#include "controls/ControlSupport.h"
#include "controls/USAlphaImage.h"
#include "host/DataObject.h"
#include "host/Form.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;

namespace {
constexpr int32_t kOrdinalMouse = 1;
constexpr int32_t kOrdinalFade = 2;
constexpr int16_t kHit = 3;
}  // namespace

// The two timers are told apart by ids made from the object's identity: it and its negative.
platform::UINT_PTR USAlphaImage::MouseTimerId() const { return static_cast<platform::UINT_PTR>(ObjectId()); }
platform::UINT_PTR USAlphaImage::FadeTimerId() const {
  return static_cast<platform::UINT_PTR>(-static_cast<intptr_t>(ObjectId()));
}

bool USAlphaImage::isMouseOver() const {
  return frame::APICrossComm::Shared().CapturedControl() == static_cast<const frame::APIICrossComm*>(this);
}

bool USAlphaImage::PointInShape(int32_t x, int32_t y) const {
  if (m_hitNothing) return false;
  if (m_hitRegion) return platform::PtInRegion(m_hitRegion, x, y) != 0;
  return platform::PtInRect(&m_hitRect, platform::POINT{x, y}) != 0;
}

void USAlphaImage::UserControl_HitTest(float X, float Y, int16_t& HitResult) {
  HitResult = PointInShape(static_cast<int32_t>(std::floor(X)), static_cast<int32_t>(std::floor(Y))) ? kHit : 0;
  if (IsDesignMode()) {
    // At design time the whole control can be picked up, whatever the picture's shape.
    if (HitResult == 0) HitResult = kHit;
    return;
  }
  // A control made by code at run time has no enter and exit.
  if (!m_userMode) return;
  frame::APICrossComm& arbiter = frame::APICrossComm::Shared();
  frame::APIICrossComm* const held = arbiter.CapturedControl();
  if (held == this) {
    // Our ReleaseMouseCapture runs from here and raises MouseExit.
    if (HitResult == 0) Step([&] { arbiter.CapturedControl(nullptr); });
    return;
  }
  if (held) Step([&] { arbiter.CapturedControl(nullptr); });
  if (HitResult != kHit) return;
  m_clientOrigin = {0, 0};
  Step([&] { platform::ClientToScreen(UserControl::hWnd(), &m_clientOrigin); });
  Step([&] { arbiter.CapturedControl(this); });
  Step([&] { MouseEnter(); });
  StartMouseTimer();
  Step([&] { Control::Tag(u"Timer"); });
}

void USAlphaImage::ReleaseMouseCapture() {
  StopMouseTimer();
  Step([&] { Control::Tag(u""); });
  Step([&] { MouseExit(); });
}

void USAlphaImage::StartMouseTimer() {
  Step([&] {
    if (!UserControl::hWnd()) return;
    if (!m_thunks) m_thunks = std::make_unique<frame::APISubClass>(this);
    frame::CallbackAddress callback = m_thunks->scb_SetCallbackAddr(4, kOrdinalMouse, this, true, true);
    if (!callback) return;
    m_mouseTimerOn =
        platform::SetTimer(UserControl::hWnd(), MouseTimerId(), kMouseCheckInterval, callback.AsTimerProc()) != 0;
  });
}

void USAlphaImage::StopMouseTimer() {
  if (!m_mouseTimerOn) return;
  m_mouseTimerOn = false;
  Step([&] { platform::KillTimer(UserControl::hWnd(), MouseTimerId()); });
}

platform::LRESULT USAlphaImage::CallbackProc(int32_t nOrdinal, std::span<const intptr_t> /*args*/) {
  if (nOrdinal == kOrdinalMouse) MouseTimerTick();
  else if (nOrdinal == kOrdinalFade) FadeTick();
  return 0;
}

void USAlphaImage::MouseTimerTick() {
  StopMouseTimer();
  frame::APICrossComm& arbiter = frame::APICrossComm::Shared();
  if (arbiter.CapturedControl() != this) return;
  platform::POINT cursor{};
  platform::HWND under = 0;
  Step([&] {
    platform::GetCursorPos(&cursor);
    under = platform::WindowFromPoint(cursor);
  });
  // Asking for the window under the cursor runs our own HitTest, which may already have let go.
  if (arbiter.CapturedControl() != this) return;
  const bool inside =
      under == UserControl::hWnd() && PointInShape(cursor.x - m_clientOrigin.x, cursor.y - m_clientOrigin.y);
  if (inside) StartMouseTimer();
  else Step([&] { arbiter.CapturedControl(nullptr); });
}

// ---- Fade -------------------------------------------------------------------------------------

void USAlphaImage::FadeInOut(int32_t FinalOpacity, int32_t FadeStepPercent, int32_t FadeDelayInterval) {
  StopFade();
  FinalOpacity = std::clamp(FinalOpacity, 0, 100);
  if (FadeStepPercent == 0 || FinalOpacity == m_opacity) return;
  m_fadeStep = std::abs(FadeStepPercent) * (FinalOpacity > m_opacity ? 1 : -1);
  m_fadeTarget = FinalOpacity;
  m_fadeInterval = static_cast<uint32_t>(std::max(FadeDelayInterval, 10));
  Step([&] {
    if (!UserControl::hWnd()) return;
    if (!m_thunks) m_thunks = std::make_unique<frame::APISubClass>(this);
    frame::CallbackAddress callback = m_thunks->scb_SetCallbackAddr(4, kOrdinalFade, this, true, true);
    if (!callback ||
        !platform::SetTimer(UserControl::hWnd(), FadeTimerId(), m_fadeInterval, callback.AsTimerProc()))
      m_fadeTarget = -1;
  });
  if (m_fadeTarget < 0) m_fadeStep = 0;
}

void USAlphaImage::StopFade() {
  if (m_fadeTarget < 0) return;
  m_fadeTarget = -1;
  Step([&] { platform::KillTimer(UserControl::hWnd(), FadeTimerId()); });
}

void USAlphaImage::FadeTick() {
  if (m_fadeTarget < 0) return;
  const int32_t next = m_opacity + m_fadeStep;
  const bool done = m_fadeStep > 0 ? next >= m_fadeTarget : next <= m_fadeTarget;
  if (done) {
    const int32_t target = m_fadeTarget;
    StopFade();
    Step([&] { Opacity(target); });
    Step([&] { FadeTerminated(m_opacity); });
    return;
  }
  // The platform timer repeats on its own: it stays armed for the next step.
  Step([&] { Opacity(next); });
}

// ---- Offsets ----------------------------------------------------------------------------------

void USAlphaImage::OffsetShadow(int32_t X, int32_t Y) {
  m_shadowMoveX = X;
  m_shadowMoveY = Y;
  Repaint();
}

void USAlphaImage::OffsetImage(bool SetOffsets, int32_t& X, int32_t& Y, int32_t& ShadowX, int32_t& ShadowY) {
  if (!SetOffsets) {
    X = m_imageOffsetX;
    Y = m_imageOffsetY;
    ShadowX = m_shadowMoveX;
    ShadowY = m_shadowMoveY;
    return;
  }
  m_imageOffsetX = X;
  m_imageOffsetY = Y;
  m_shadowMoveX = ShadowX;
  m_shadowMoveY = ShadowY;
  // The shape to hit moves with the picture.
  RebuildHitRegion();
  Repaint();
}

// ---- Mouse and keys ---------------------------------------------------------------------------

void USAlphaImage::ReadContainerScaleMode() {
  m_containerScaleMode = 9;
  Step([&] {
    if (host::Form* form = Control::Parent()) {
      host::Variant mode = form->Invoke(u"ScaleMode", host::CallKind::Get, {});
      m_containerScaleMode = mode.ToInteger();
    }
  });
}

void USAlphaImage::ToContainerScale(float& X, float& Y) const {
  // 9 (the container's position) and pixels need no conversion: the control works in pixels.
  if (m_containerScaleMode < 1 || m_containerScaleMode > 8 || m_containerScaleMode == 3) return;
  Step([&] {
    X = ScaleX(X, 3, m_containerScaleMode);
    Y = ScaleY(Y, 3, m_containerScaleMode);
  });
}

void USAlphaImage::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_buttons = static_cast<int16_t>(m_buttons | Button);
  ToContainerScale(X, Y);
  Step([&] { MouseDown(Button, Shift, X, Y); });
}

void USAlphaImage::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Button = m_buttons;
  ToContainerScale(X, Y);
  Step([&] { MouseMove(Button, Shift, X, Y); });
}

void USAlphaImage::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_buttons = static_cast<int16_t>(m_buttons & ~Button);
  ToContainerScale(X, Y);
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

void USAlphaImage::UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyDown(KeyCode, Shift); }); }
void USAlphaImage::UserControl_KeyPress(int16_t& KeyAscii) { Step([&] { KeyPress(KeyAscii); }); }
void USAlphaImage::UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) { Step([&] { KeyUp(KeyCode, Shift); }); }

// ---- Drops ------------------------------------------------------------------------------------

void USAlphaImage::UserControl_OLEDragOver(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift,
                                           float& X, float& Y, int16_t& State) {
  if (m_oleDropMode != Drop_Manual) return;
  ToContainerScale(X, Y);
  Step([&] { OLEDragOver(Data, Effect, Button, Shift, X, Y, State); });
}

void USAlphaImage::UserControl_OLEDragDrop(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift,
                                           float& X, float& Y) {
  if (m_oleDropMode != Drop_Manual) return;
  // The host's Files list has lost what its code page cannot say: the full names go first.
  Step([&] { m_dib->GetDroppedFileNames(Data); });
  ToContainerScale(X, Y);
  Step([&] { OLEDragDrop(Data, Effect, Button, Shift, X, Y); });
}

}  // namespace mx::controls
