#include "chrome/FormBack.h"

#include <algorithm>

#include "frame/Drawing.h"
#include "platform/User.h"

namespace mx::chrome {

using namespace platform;

FormBack::FormBack() : host::Form(kName, host::FormMode::Run) { BorderStyle(0); }

void FormBack::AlphaWindowInitializeOnFullScreen(HWND xOwner, int32_t TranslucentLevel, host::OLE_COLOR BackColor) {
  RECT work{};
  SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
  // The task bar is the part of the screen below the work area; the layer covers it too.
  const int taskBarHeight = std::max(0, GetSystemMetrics(SM_CYSCREEN) - (work.bottom - work.top));
  Cover(xOwner, RECT{0, 0, work.right - work.left, work.bottom - work.top + taskBarHeight}, TranslucentLevel,
        BackColor);
}

void FormBack::AlphaWindowInitializeOnModal(HWND xForm, int32_t TranslucentLevel, host::OLE_COLOR BackColor) {
  RECT r{};
  if (!GetWindowRect(xForm, &r)) return;
  Cover(xForm, r, TranslucentLevel, BackColor);
}

void FormBack::Cover(HWND xOwner, const RECT& area, int32_t level, host::OLE_COLOR colour) {
  if (!hWnd()) return;
  Form::BackColor(colour);
  m_owner = IsWindow(xOwner) ? xOwner : 0;
  if (m_owner) SetWindowLong(hWnd(), GWL_HWNDPARENT, static_cast<LONG>(m_owner));
  SetWindowPos(hWnd(), 0, area.left, area.top, area.right - area.left, area.bottom - area.top,
               SWP_NOZORDER | SWP_FRAMECHANGED);
  frame::SetWindowTranslucency(hWnd(), static_cast<uint8_t>(std::clamp(level, 0, 255)));
  Load();
  if (!hWnd()) return;
  ShowWindow(hWnd(), SW_SHOW);
  if (m_owner) SetActiveWindow(m_owner);
}

void FormBack::UnloadMe(HWND xOwner) {
  Unload(host::vbFormCode);
  if (xOwner && IsWindow(xOwner) && IsWindowVisible(xOwner)) SetActiveWindow(xOwner);
}

}  // namespace mx::chrome
