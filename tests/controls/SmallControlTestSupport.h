#pragma once
// Shared pieces of the tests of the smaller controls: a clean desktop on a virtual clock,
// controls made alone (a window of their own on the desktop) or loaded from a bag, and captures
// of what the screen shows.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "host/PropertyBag.h"
#include "host/UserControl.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HandleTable.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"
#include "platform/Window.h"

namespace mx::controls::testing {

// Opens the protected host handlers of a control, as the host reaches them.
template <typename C>
class Open : public C {
 public:
  using C::UserControl_AccessKeyPress;
  using C::UserControl_Click;
  using C::UserControl_GotFocus;
  using C::UserControl_KeyDown;
  using C::UserControl_KeyUp;
  using C::UserControl_LostFocus;
  using C::UserControl_MouseDown;
  using C::UserControl_MouseUp;
};

class SmallControlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    m_windowsAtStart = platform::LiveHandleCount(platform::HandleType::Window);
  }
  void TearDown() override {
    for (auto& c : m_controls) c->TerminateControl();
    m_controls.clear();
    EXPECT_EQ(platform::LiveHandleCount(platform::HandleType::Window), m_windowsAtStart);
    platform::ResetWindowing();
  }

  // A control of w x h pixels at screen (x, y), loaded from a bag (ReadProperties, as at run time
  // when userMode) or with InitProperties when bag is null, then shown.
  template <typename C>
  std::shared_ptr<Open<C>> Make(int x, int y, int w, int h, host::PropertyBag* bag = nullptr, bool userMode = true) {
    auto c = std::make_shared<Open<C>>();
    c->Move(static_cast<float>(x * 15), static_cast<float>(y * 15), static_cast<float>(w * 15),
            static_cast<float>(h * 15));
    if (bag) c->LoadFrom(*bag, userMode);
    else c->LoadNew(userMode);
    c->ShowControl();
    platform::PumpMessages();
    m_controls.push_back(c);
    return c;
  }

  static platform::CapturedImage Capture(const host::UserControl& c) {
    platform::PumpMessages();
    return platform::CaptureWindow(c.hWnd());
  }

  // Top-down 0xAARRGGBB words of several captures stacked from top to bottom on a white ground,
  // each as wide as the widest, for one golden picture per group of controls.
  static std::vector<uint32_t> Stack(const std::vector<platform::CapturedImage>& images, int& w, int& h) {
    w = 0;
    h = 0;
    for (const auto& img : images) {
      w = std::max(w, img.width());
      h += img.height();
    }
    std::vector<uint32_t> out(static_cast<size_t>(w) * h, 0xFFFFFFFF);
    int top = 0;
    for (const auto& img : images) {
      for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
          out[static_cast<size_t>(top + y) * w + x] = 0xFF000000 | img.pixel(x, y);
        }
      top += img.height();
    }
    return out;
  }

  platform::ScopedVirtualClock m_clock;
  std::vector<std::shared_ptr<host::UserControl>> m_controls;
  int m_windowsAtStart = 0;
};

}  // namespace mx::controls::testing
