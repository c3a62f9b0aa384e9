#pragma once
// The list tests' fixture: a form with one list of 200 x 130 pixels (five rows of 26), events
// recorded by name, and helpers that drive the list with injected keys, clicks and the wheel.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "entry/Registration.h"
#include "entry/USListBox.h"
#include "host/Form.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"
#include "platform/Window.h"
#include "platform/WindowTestSupport.h"

namespace mx::entry::testing {

class ListBoxTest : public mx::platform::testing::WindowingTest {
 protected:
  static constexpr int kWidth = 200;
  static constexpr int kHeight = 130;

  void SetUp() override {
    WindowingTest::SetUp();
    RegisterControls();
    form = std::make_shared<host::Form>(u"frmList");
    form->ClientSize(6000, 4500);
    list = std::dynamic_pointer_cast<USListBox>(form->AddControl(u"Morvantix.USListBox", u"lst"));
    ASSERT_TRUE(list);
    list->Move(150, 150, kWidth * 15, kHeight * 15);
    list->Visible(true);
    form->Show();
    platform::PumpMessages();
    form->SetEventSink([this](host::StringView source, int32_t, host::StringView name, std::span<host::Variant>) {
      if (host::ToUtf8(source) == "lst") events.push_back(host::ToUtf8(name));
    });
  }
  void TearDown() override {
    list.reset();
    if (form) form->Unload();
    form.reset();
    WindowingTest::TearDown();
  }

  void Fill(int count, const char* prefix = "Item ") {
    for (int i = 0; i < count; ++i) list->AddItem(host::Variant(host::FromUtf8(prefix + std::to_string(i))), i * 10);
  }
  void Focus() {
    platform::SetFocus(list->hWnd());
    platform::PumpMessages();
  }
  void Press(int vk) {
    platform::InjectKeyPress(vk);
    platform::PumpMessages();
  }
  // A point of PicLST in screen pixels.
  platform::POINT OnPic(int x, int y) const {
    platform::POINT pt{x, y};
    platform::ClientToScreen(list->PicLSThWnd(), &pt);
    return pt;
  }
  void ClickAt(int x, int y) {
    const platform::POINT pt = OnPic(x, y);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::InjectClick();
    platform::PumpMessages();
  }
  void MoveTo(int x, int y) {
    const platform::POINT pt = OnPic(x, y);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::PumpMessages();
  }
  platform::CapturedImage Capture() const {
    platform::PumpMessages();
    return platform::CaptureWindow(list->hWnd());
  }
  int Count(const std::string& name) const {
    int n = 0;
    for (const auto& e : events) n += e == name;
    return n;
  }

  std::shared_ptr<host::Form> form;
  std::shared_ptr<USListBox> list;
  std::vector<std::string> events;
};

}  // namespace mx::entry::testing
