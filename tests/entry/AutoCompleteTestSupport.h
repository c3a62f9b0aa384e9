#pragma once
// A form with two text boxes for the completion tests, typed into through injected keys.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "host/Form.h"
#include "host/Locale.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/WindowTestSupport.h"

namespace mx::entry::testing {

class AutoCompleteTest : public mx::platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    RegisterControls();
    form = std::make_shared<host::Form>(u"frmComplete");
    form->ClientSize(6000, 4000);
    box = Add(u"txt", 150, 150);
    other = Add(u"txtOther", 150, 2400);
    form->Show();
    platform::PumpMessages();
    box->SetFocus();
    platform::PumpMessages();
  }
  void TearDown() override {
    box.reset();
    other.reset();
    if (form) form->Unload();
    form.reset();
    WindowingTest::TearDown();
  }
  std::shared_ptr<USTextBoxEx> Add(const char16_t* name, float x, float y) {
    auto c = std::dynamic_pointer_cast<USTextBoxEx>(form->AddControl(u"Morvantix.USTextBoxEx", name));
    EXPECT_TRUE(c);
    c->Move(x, y, 3600, 375);  // 240 x 25 pixels
    c->Visible(true);
    return c;
  }
  static void Type(std::u16string_view text) {
    for (char16_t ch : text) {
      platform::InjectText(std::u16string_view(&ch, 1));
      platform::PumpMessages();
    }
  }
  static void Press(int vk) {
    platform::InjectKeyPress(vk);
    platform::PumpMessages();
  }
  // The typed part and the selected completion, as "typed|completion".
  [[nodiscard]] std::u16string Shown() const {
    const std::u16string text = box->Text();
    const auto start = static_cast<size_t>(box->SelStart());
    const auto length = static_cast<size_t>(box->SelLength());
    if (start + length != text.size()) return text + u" (selection " + host::FromUtf8(std::to_string(start)) + u"+" +
                                              host::FromUtf8(std::to_string(length)) + u")";
    return text.substr(0, start) + u"|" + text.substr(start);
  }

  std::shared_ptr<host::Form> form;
  std::shared_ptr<USTextBoxEx> box;
  std::shared_ptr<USTextBoxEx> other;
  host::ScopedLocale locale{"pt-BR"};
};

}  // namespace mx::entry::testing
