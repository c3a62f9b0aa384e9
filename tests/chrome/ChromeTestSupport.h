#pragma once
// Shared pieces of the chrome tests: a clean desktop on a virtual clock, a run-time form with a
// USForm loaded from a bag and shown (the subclass installed by its timer), and injected mouse
// input in the form's own coordinates.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "chrome/Registration.h"
#include "chrome/USForm.h"
#include "host/Form.h"
#include "host/PropertyBag.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/User.h"

namespace mx::chrome::testing {

class ChromeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    RegisterControls();
  }
  void TearDown() override {
    for (auto& f : m_forms)
      if (f->IsLoaded()) f->Unload();
    m_forms.clear();
    platform::ResetWindowing();
  }

  // A form of w x h pixels at screen (x, y) holding a USForm read from `bag` at run time, shown
  // and run until the subclass is in place.
  std::shared_ptr<USForm> Make(host::PropertyBag bag = {}, int x = 100, int y = 100, int w = 400, int h = 240,
                               const char16_t* caption = u"Cadastro - Clientes") {
    auto form = std::make_shared<host::Form>(u"frmMain");
    form->Caption(caption);
    form->Move(static_cast<float>(x * 15), host::Variant(static_cast<float>(y * 15)),
               host::Variant(static_cast<float>(w * 15)), host::Variant(static_cast<float>(h * 15)));
    auto chrome = std::make_shared<USForm>();
    form->SiteControl(chrome, u"USForm1");
    chrome->LoadFrom(bag, true);
    form->Show();
    platform::RunFor(20);
    m_forms.push_back(form);
    return chrome;
  }

  [[nodiscard]] host::Form& FormOf(const USForm& chrome) const { return *chrome.Parent(); }

  static platform::RECT WindowRect(platform::HWND hwnd) {
    platform::RECT r{};
    platform::GetWindowRect(hwnd, &r);
    return r;
  }

  // Mouse input at a point of a window's client area.
  static void MoveTo(platform::HWND hwnd, int x, int y) {
    platform::POINT pt{x, y};
    platform::ClientToScreen(hwnd, &pt);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::PumpMessages();
  }
  static void Press(bool down) {
    platform::InjectMouseButton(platform::MouseButton::Left, down);
    platform::PumpMessages();
  }
  static void ClickAt(platform::HWND hwnd, int x, int y) {
    MoveTo(hwnd, x, y);
    Press(true);
    Press(false);
  }
  // Presses at a client point, moves the pointer by (dx, dy) in steps and lets go.
  static void Drag(platform::HWND hwnd, int x, int y, int dx, int dy) {
    MoveTo(hwnd, x, y);
    Press(true);
    platform::POINT pt{x, y};
    platform::ClientToScreen(hwnd, &pt);
    platform::InjectMouseMove(pt.x + dx / 2, pt.y + dy / 2);
    platform::InjectMouseMove(pt.x + dx, pt.y + dy);
    platform::PumpMessages();
    Press(false);
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
  std::vector<std::shared_ptr<host::Form>> m_forms;
};

// A bag with some keys set, for the tests that load a configured control.
inline host::PropertyBag Bag(std::initializer_list<std::pair<const char16_t*, host::Variant>> keys) {
  host::PropertyBag bag;
  for (const auto& [key, value] : keys) bag.WriteProperty(key, value);
  return bag;
}

}  // namespace mx::chrome::testing
