#pragma once
// Shared pieces of the combo box tests: a run-time form read from form text with one combo and a
// text box to take the focus away, an event log of the combo, and injected keys and clicks.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "entry/Registration.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/Locale.h"
#include "host/TextBox.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"
#include "platform/Window.h"
#include "platform/WindowTestSupport.h"

namespace mx::entry::testing {

// A combo of 160 x 23 pixels at (8, 8) and a text box below it. Fonts are fixed, so that
// pictures do not depend on the machine's ambient font.
inline constexpr const char* kComboForm = R"(VERSION 5.00
Begin VB.Form frmCombo
   BackColor       =   &H00FFFFFF&
   ClientHeight    =   3000
   ClientWidth     =   4500
   BeginProperty Font
      Name            =   "Tahoma"
      Size            =   8.25
   EndProperty
   Begin Morvantix.USComboBox cboCity
      Height          =   345
      Left            =   120
      Top             =   120
      Width           =   2400
      Redraw          =   -1  'True
      ListForeColor   =   &H00000000&
      ListItemSelectedForeColor=   &H00000000&
      ListBackColorEvenRows=   &H00FCFBFB&
   End
   Begin VB.TextBox txtOther
      Height          =   345
      Left            =   120
      Top             =   2400
      Width           =   2400
   End
End
)";

class ComboTest : public mx::platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    RegisterControls();
    form = LoadForm(kComboForm);
    combo = std::dynamic_pointer_cast<USComboBox>(form->FindControl(u"cboCity"));
    ASSERT_TRUE(combo);
    other = form->FindControl(u"txtOther");
    ASSERT_TRUE(other);
    form->SetEventSink([this](host::StringView source, int32_t, host::StringView name, std::span<host::Variant>) {
      if (host::ToUtf8(source) != "cboCity") return;
      const std::string n = host::ToUtf8(name);
      // Moves and keys are many and of no interest to the order of the list's events.
      if (n == "MouseMove" || n.rfind("Key", 0) == 0 || n.rfind("Mouse", 0) == 0 || n == "Click") return;
      events.push_back(n);
    });
  }
  void TearDown() override {
    combo.reset();
    other.reset();
    if (form) form->Unload();
    form.reset();
    // Subclass blocks of the mouse trackers are freed by their clean-up timers.
    platform::RunFor(300);
    WindowingTest::TearDown();
  }

  static std::shared_ptr<host::Form> LoadForm(const std::string& text) {
    host::FormFile file;
    host::FormFileError error;
    EXPECT_TRUE(host::ParseFormText(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()),
                                    [](host::StringView) { return nullptr; }, file, error));
    auto f = host::Form::FromFormFile(file);
    f->Show();
    platform::PumpMessages();
    return f;
  }

  void Fill(std::initializer_list<const char16_t*> items) {
    int32_t data = 10;
    for (const char16_t* item : items) {
      combo->AddItem(host::Variant(host::String(item)), data);
      data += 10;
    }
  }
  void Focus() {
    combo->SetFocus();
    platform::PumpMessages();
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
  static void PressWithAlt(int vk) {
    platform::InjectKey(platform::VK_MENU, true);
    platform::InjectKeyPress(vk);
    platform::InjectKey(platform::VK_MENU, false);
    platform::PumpMessages();
  }
  // A left click at a point of a window's client area.
  static void ClickAt(platform::HWND hwnd, int x, int y) {
    platform::POINT pt{x, y};
    platform::ClientToScreen(hwnd, &pt);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::InjectClick();
    platform::PumpMessages();
  }
  static platform::RECT WindowRect(platform::HWND hwnd) {
    platform::RECT rc{};
    platform::GetWindowRect(hwnd, &rc);
    return rc;
  }
  std::vector<std::string> Take() {
    std::vector<std::string> out;
    out.swap(events);
    return out;
  }

  host::ScopedLocale locale{"pt-BR"};
  std::shared_ptr<host::Form> form;
  std::shared_ptr<USComboBox> combo;
  std::shared_ptr<host::Control> other;
  std::vector<std::string> events;
};

using Lines = std::vector<std::string>;

}  // namespace mx::entry::testing
