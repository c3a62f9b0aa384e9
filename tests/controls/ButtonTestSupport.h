#pragma once
// Shared pieces of the button tests: a clean desktop on a virtual clock, buttons made alone (a
// window of their own on the desktop) or loaded from a bag, an event recorder, and pixel reads.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/USButton.h"
#include "host/PropertyBag.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HandleTable.h"
#include "platform/User.h"

namespace mx::controls::testing {

// Opens the protected handlers and drawing entry, as a host or a subclass would reach them.
class TestButton : public USButton {
 public:
  using USButton::DrawState;
  using USButton::UserControl_AccessKeyPress;
  using USButton::UserControl_AmbientChanged;
  using USButton::UserControl_Click;
  using USButton::UserControl_GotFocus;
  using USButton::UserControl_LostFocus;
  using USButton::UserControl_MouseUp;
};

// Records every event of a button as one line: "Click", "MouseDown 1", "KeyUp 32"...
class EventLog {
 public:
  explicit EventLog(USButton& b) {
    b.Click.connect([this] { m_lines.push_back("Click"); });
    b.DblClick.connect([this] { m_lines.push_back("DblClick"); });
    b.KeyDown.connect([this](int16_t& k, int16_t&) { m_lines.push_back("KeyDown " + std::to_string(k)); });
    b.KeyPress.connect([this](int16_t& k) { m_lines.push_back("KeyPress " + std::to_string(k)); });
    b.KeyUp.connect([this](int16_t& k, int16_t&) { m_lines.push_back("KeyUp " + std::to_string(k)); });
    b.MouseDown.connect(
        [this](int16_t& btn, int16_t&, float&, float&) { m_lines.push_back("MouseDown " + std::to_string(btn)); });
    b.MouseUp.connect(
        [this](int16_t& btn, int16_t&, float&, float&) { m_lines.push_back("MouseUp " + std::to_string(btn)); });
    b.MouseEnter.connect([this] { m_lines.push_back("MouseEnter"); });
    b.MouseExit.connect([this] { m_lines.push_back("MouseExit"); });
  }
  std::vector<std::string> Take() {
    std::vector<std::string> out;
    out.swap(m_lines);
    return out;
  }

 private:
  std::vector<std::string> m_lines;
};

using Lines = std::vector<std::string>;

class ButtonTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    m_windowsAtStart = platform::LiveHandleCount(platform::HandleType::Window);
  }
  void TearDown() override {
    for (auto& b : m_buttons) b->TerminateControl();
    m_buttons.clear();
    EXPECT_EQ(platform::LiveHandleCount(platform::HandleType::Window), m_windowsAtStart);
    platform::ResetWindowing();
  }

  // A button of w x h pixels at screen (x, y), loaded at run time (userMode) from a bag, or with
  // InitProperties when bag is null, then shown.
  std::shared_ptr<TestButton> Make(int x, int y, int w, int h, host::PropertyBag* bag = nullptr,
                                   bool userMode = true) {
    auto b = std::make_shared<TestButton>();
    b->Move(static_cast<float>(x * 15), static_cast<float>(y * 15), static_cast<float>(w * 15),
            static_cast<float>(h * 15));
    if (bag) b->LoadFrom(*bag, userMode);
    else b->LoadNew(userMode);
    b->ShowControl();
    platform::PumpMessages();
    m_buttons.push_back(b);
    return b;
  }

  // The button's client area as the screen shows it, as COLORREFs (0x00BBGGRR).
  static platform::CapturedImage Capture(const USButton& b) {
    platform::PumpMessages();
    return platform::CaptureWindow(b.hWnd());
  }

  // Top-down 0xAARRGGBB words of a capture, for golden pictures.
  static std::vector<uint32_t> Pixels(const platform::CapturedImage& img) {
    std::vector<uint32_t> out;
    out.reserve(static_cast<size_t>(img.width()) * img.height());
    for (int y = 0; y < img.height(); ++y)
      for (int x = 0; x < img.width(); ++x) out.push_back(img.pixel(x, y));
    return out;
  }

  platform::ScopedVirtualClock m_clock;
  std::vector<std::shared_ptr<TestButton>> m_buttons;
  int m_windowsAtStart = 0;
};

}  // namespace mx::controls::testing
