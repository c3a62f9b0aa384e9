#pragma once
// The private state of a UserControl, shared by its two sources (services and message
// translation). Not for use outside the host layer.
#include <memory>

#include "host/Err.h"
#include "host/UserControl.h"
#include "platform/Types.h"

namespace mx::host {

struct UserControl::Impl {
  static constexpr const char16_t* kClassName = u"MxUserControl";
  // The window class lives per thread and goes with ResetWindowing: registered when missing.
  static void RegisterClassOnce();
  static platform::LRESULT WindowProc(platform::HWND hwnd, platform::UINT msg, platform::WPARAM wParam,
                                      platform::LPARAM lParam);

  // Runs a handler of the control so that no failure reaches the platform: the error is left in
  // Err, as a statement under "resume next" leaves it.
  template <typename F>
  static void Guard(F&& f) {
    OnErrorResumeNext(std::forward<F>(f));
  }

  // False once the control is destroyed; handlers that may destroy it hold a copy.
  std::shared_ptr<bool> alive = std::make_shared<bool>(true);

  // The persistent image: a memory DC with a bitmap the size of the client area.
  platform::HDC imageDC = 0;
  platform::HBITMAP imageBitmap = 0;
  platform::HGDIOBJ oldImageBitmap = 0;
  platform::HGDIOBJ oldImageFont = 0;
  int imageWidth = 0;
  int imageHeight = 0;
  // The window's own DC (the class has CS_OWNDC), what hDC is with AutoRedraw off.
  platform::HDC windowDC = 0;
  platform::HGDIOBJ oldWindowFont = 0;
  platform::HFONT hfont = 0;
  uint64_t fontConnection = 0;

  // The pointer made from MouseIcon, and the picture it was made from.
  platform::HCURSOR customCursor = 0;
  bool ownsCustomCursor = false;
  std::shared_ptr<StdPicture> cursorPicture;
  // The pointer for MousePointer (0 for the class's own).
  [[nodiscard]] static platform::HCURSOR CursorFor(UserControl& control);

  bool initialized = false;
  bool loaded = false;
  bool showRequested = false;
  bool shown = false;
  bool inResize = false;
  bool settingGeometry = false;
  // The up that ends a double click raises MouseUp only.
  bool afterDoubleClick = false;
  bool displayAsDefault = false;
  SiteFilter siteFilter;
};

}  // namespace mx::host
