#pragma once
// Shared pieces of the date picker tests: a form on a virtual clock whose today is Monday
// 2024-01-15, with a picker "dtp" (120 x 21 pixels) and a text box to take the focus away, an
// event recorder fed by the form's sink, and pointer and key input injected at screen points.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dates/Registration.h"
#include "dates/USCalendarSmall.h"
#include "dates/USDatePicker.h"
#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "host/Form.h"
#include "host/Locale.h"
#include "host/String.h"
#include "platform/Clock.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"
#include "platform/Window.h"

namespace mx::dates::testing {

using Lines = std::vector<std::string>;

class DatePickerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    m_windowsAtStart = platform::LiveHandleCount(platform::HandleType::Window);
    dates::RegisterControls();
    entry::RegisterControls();
    form = std::make_shared<host::Form>(u"frmPicker");
    form->ClientSize(6000, 4500);
    picker = std::dynamic_pointer_cast<USDatePicker>(form->AddControl(u"Morvantix.USDatePicker", u"dtp"));
    EXPECT_TRUE(picker);
    picker->Move(150, 150, 1800, 315);  // 120 x 21 pixels at (10, 10)
    picker->Control::Visible(true);
    other = std::dynamic_pointer_cast<entry::USTextBoxEx>(form->AddControl(u"Morvantix.USTextBoxEx", u"txtOther"));
    other->Move(3600, 150, 1800, 375);  // right of where the calendar drops
    other->Control::Visible(true);
    form->Show();
    platform::PumpMessages();
    other->SetFocus();
    platform::PumpMessages();
    form->SetEventSink([this](host::StringView source, int32_t, host::StringView name, std::span<host::Variant> args) {
      if (host::ToUtf8(source) != "dtp") return;
      const std::string n = host::ToUtf8(name);
      if (n == "MouseMove" || n == "MouseDown" || n == "MouseUp" || n == "KeyPress" || n == "KeyUp" ||
          n == "KeyDown") return;
      std::string line = n;
      for (const host::Variant& a : args) line += " " + host::ToUtf8(a.ToString());
      events.push_back(line);
    });
  }
  void TearDown() override {
    picker.reset();
    other.reset();
    if (form) form->Unload();
    form.reset();
    platform::PumpMessages();
    EXPECT_EQ(platform::LiveHandleCount(platform::HandleType::Window), m_windowsAtStart);
    platform::ResetWindowing();
  }

  Lines Take() {
    Lines out;
    out.swap(events);
    return out;
  }

  [[nodiscard]] platform::RECT PickerRect() const {
    platform::RECT r{};
    platform::GetWindowRect(picker->hWnd(), &r);
    return r;
  }
  [[nodiscard]] platform::RECT CalendarRect() const {
    platform::RECT r{};
    platform::GetWindowRect(picker->Calendar().hWnd(), &r);
    return r;
  }
  // A point of the picker's client area on the screen.
  [[nodiscard]] platform::POINT At(int x, int y) const {
    const platform::RECT r = PickerRect();
    return platform::POINT{r.left + x, r.top + y};
  }

  static void MoveTo(platform::POINT pt) {
    platform::InjectMouseMove(pt.x, pt.y);
    platform::PumpMessages();
  }
  static void Press(platform::POINT pt, platform::MouseButton b = platform::MouseButton::Left) {
    platform::InjectMouseMove(pt.x, pt.y);
    platform::InjectMouseButton(b, true);
    platform::InjectMouseButton(b, false);
    platform::PumpMessages();
  }
  // A button held down at a point (not yet released).
  static void Hold(platform::POINT pt) {
    platform::InjectMouseMove(pt.x, pt.y);
    platform::InjectMouseButton(platform::MouseButton::Left, true);
    platform::PumpMessages();
  }
  static void Release() {
    platform::InjectMouseButton(platform::MouseButton::Left, false);
    platform::PumpMessages();
  }
  static void Key(int vk) {
    platform::InjectKeyPress(vk);
    platform::PumpMessages();
  }
  static void Type(std::u16string_view text) {
    for (char16_t ch : text) {
      platform::InjectText(std::u16string_view(&ch, 1));
      platform::PumpMessages();
    }
  }
  // Lets the virtual clock run, timers included; long enough that the next press is no double
  // click.
  static void Wait(uint64_t ms) {
    platform::AdvanceVirtualClock(ms);
    platform::PumpMessages();
  }
  void FocusPicker() {
    picker->SetFocus();
    platform::PumpMessages();
  }

  platform::ScopedVirtualClock m_clock;
  host::ScopedLocale m_locale{"pt-BR"};
  std::shared_ptr<host::Form> form;
  std::shared_ptr<USDatePicker> picker;
  std::shared_ptr<entry::USTextBoxEx> other;
  Lines events;
  int m_windowsAtStart = 0;
};

}  // namespace mx::dates::testing
