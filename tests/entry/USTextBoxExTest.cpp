// USTextBoxEx on a form, driven through injected keys: masks typed and deleted character by
// character, number and currency entry, letter case, focus looks, the clipboard shortcut, the
// views of the text, persistence and the painted looks.
#include <gtest/gtest.h>

#include <algorithm>

#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "host/Form.h"
#include "host/Locale.h"
#include "host/PropertyBag.h"
#include "host/TextBox.h"
#include "platform/Clipboard.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"
#include "platform/Window.h"
#include "platform/WindowTestSupport.h"
#include "support/Golden.h"

using namespace mx::host;
using namespace mx::platform;
using mx::entry::USTextBoxEx;

namespace {

class USTextBoxExTest : public mx::platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    mx::entry::RegisterControls();
    form = std::make_shared<Form>(u"frmEntry");
    form->ClientSize(4500, 3000);
    box = Add(u"txt", 150, 150);
    other = Add(u"txtOther", 150, 900);
    form->Show();
    PumpMessages();
    // Showing the form focuses the first control; the tests enter "txt" themselves.
    other->SetFocus();
    PumpMessages();
    form->SetEventSink([this](StringView source, int32_t, StringView name, std::span<Variant> args) {
      if (ToUtf8(source) != "txt") return;
      std::string line = ToUtf8(name);
      for (const Variant& a : args) line += " " + ToUtf8(a.ToString());
      events.push_back(line);
    });
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
    c->Move(x, y, 2400, 375);  // 160 x 25 pixels
    c->Visible(true);
    return c;
  }
  void Focus(const std::shared_ptr<USTextBoxEx>& c) {
    c->SetFocus();
    PumpMessages();
  }
  void Type(std::u16string_view text) {
    for (char16_t ch : text) {
      InjectText(std::u16string_view(&ch, 1));
      PumpMessages();
    }
  }
  void Press(int vk) {
    InjectKeyPress(vk);
    PumpMessages();
  }
  void Caret(int32_t at) {
    box->SelStart(at);
    box->SelLength(0);
  }

  std::shared_ptr<Form> form;
  std::shared_ptr<USTextBoxEx> box;
  std::shared_ptr<USTextBoxEx> other;
  std::vector<std::string> events;
  ScopedLocale locale{"pt-BR"};
};

TEST_F(USTextBoxExTest, MaskTypedAndDeletedCharacterByCharacter) {
  box->Mask(u"##/##/####");
  box->MaskType(mx::entry::Only_Number);
  EXPECT_EQ(box->Text(), u"  /  /    ");
  EXPECT_EQ(box->MaxLength(), 10);
  Focus(box);
  Caret(0);
  const char16_t* expected[] = {u"3 /  /    ", u"31/  /    ", u"31/1 /    ", u"31/12/    ",
                                u"31/12/2   ", u"31/12/20  ", u"31/12/202 ", u"31/12/2023"};
  const char16_t digits[] = u"31122023";
  for (int i = 0; i < 8; ++i) {
    Type(std::u16string_view(&digits[i], 1));
    EXPECT_EQ(box->Text(), expected[i]) << i;
  }
  // Letters and a ninth digit change nothing.
  Type(u"x9");
  EXPECT_EQ(box->Text(), u"31/12/2023");
  EXPECT_EQ(box->TextNoMask(), u"31122023");

  // Backspace from the end blanks one digit at a time; the trailing blanks are trimmed away.
  Caret(10);
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"31/12/202");
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"31/12/20");
  // Delete over a selection keeps both "/".
  box->Text(u"31122023");
  box->SelStart(1);
  box->SelLength(4);
  Press(VK_DELETE);
  EXPECT_EQ(box->Text(), u"32/02/3");
  // Selecting everything and deleting gives the template back.
  box->SelStart(0);
  box->SelLength(box->TextLen());
  Press(VK_DELETE);
  EXPECT_EQ(box->Text(), u"  /  /    ");
}

TEST_F(USTextBoxExTest, TextAsDateNeedsEightDigits) {
  box->Mask(u"##/##/####");
  box->MaskType(mx::entry::Only_Number);
  box->Text(u"29022024");
  EXPECT_EQ(box->TextAsDate().ToString(), u"2024-02-29");
  EXPECT_EQ(box->TextAsDate(1, 3).ToString(), u"29/02/24");
  box->Text(u"30022024");
  EXPECT_TRUE(box->TextAsDate().IsNull());
  // A two-digit year is six digits here: never a date, whatever the layout.
  box->Mask(u"##/##/##");
  box->Text(u"311223");
  EXPECT_TRUE(box->TextAsDate(3, 1).IsNull());
  // Without a mask the text itself is counted: "1/2/2023" has eight characters, "01/02/2023" ten.
  box->Mask(u"");
  box->Text(u"1/2/2023");
  EXPECT_EQ(box->TextAsDate().ToString(), u"2023-02-01");
  box->Text(u"01/02/2023");
  EXPECT_TRUE(box->TextAsDate().IsNull());
}

TEST_F(USTextBoxExTest, CurrencyFieldDefaultsAndMaskIgnored) {
  box->FormatType(mx::entry::To_Currency);
  EXPECT_EQ(box->Text(), u"R$ 0,00");
  EXPECT_EQ(box->Alignment(), 1);
  EXPECT_EQ(box->MaxLength(), 29);
  box->Mask(u"##");
  EXPECT_EQ(box->Mask(), u"");
  EXPECT_EQ(box->Text(), u"R$ 0,00");
}

TEST_F(USTextBoxExTest, NumberFieldLimitsAndGrows) {
  box->FormatType(mx::entry::To_Number);
  EXPECT_EQ(box->Text(), u"0");
  EXPECT_EQ(box->MaxLength(), 9);
  box->Text(u"123456789012");
  EXPECT_EQ(box->Text(), u"123456789012");
  EXPECT_EQ(box->MaxLength(), 12);
  Focus(box);
  // Selected on focus: digits replace it, "." and letters are refused, "-" goes in front.
  Type(u"12.a5");
  EXPECT_EQ(box->Text(), u"125");
  Type(u"-");
  EXPECT_EQ(box->Text(), u"-125");
  EXPECT_DOUBLE_EQ(box->Value(), -125);
}

TEST_F(USTextBoxExTest, CurrencyTypedWithDecimalsLimit) {
  box->FormatType(mx::entry::To_Currency);
  Focus(box);
  // While edited the field shows its plain number, selected.
  EXPECT_EQ(box->Text(), u"0");
  EXPECT_EQ(box->CurrentLook(), USTextBoxEx::kLookFocused);
  Type(u"12.345");  // "." enters ","; the third decimal is refused at the end
  EXPECT_EQ(box->Text(), u"12,34");
  Caret(1);
  Type(u"9");  // before the comma it passes
  EXPECT_EQ(box->Text(), u"192,34");
  Focus(other);
  EXPECT_EQ(box->Text(), u"R$ 192,34");
  EXPECT_EQ(box->CurrentLook(), USTextBoxEx::kLookNormal);
}

TEST_F(USTextBoxExTest, CurrencyMinusAloneLeavesAsZero) {
  box->FormatType(mx::entry::To_Currency);
  Focus(box);
  Press(VK_BACK);  // the selected "0" goes: the change handler puts "0" back, selected
  EXPECT_EQ(box->Text(), u"0");
  box->SelText(u"");
  Type(u"-");
  Focus(other);
  EXPECT_EQ(box->Text(), u"R$ 0,00");
}

TEST_F(USTextBoxExTest, CurrencyAsTypedFromTheRight) {
  Focus(box);
  box->FormatType(mx::entry::To_Currency);
  box->AutoFormatCurrency(true);
  // Formatted as typed, a field that is left shows the value's own digits behind the prefix.
  Focus(other);
  EXPECT_EQ(box->Text(), u"R$ 0");
  box->Text(u"0,00");
  EXPECT_EQ(box->Text(), u"R$ 0");
  Focus(box);
  EXPECT_EQ(box->Text(), u"0");
  Type(u"1234");
  EXPECT_EQ(box->Text(), u"12,34");
  EXPECT_EQ(box->SelStart(), 5);
  Type(u",56");  // marks are refused when formatting as typed
  EXPECT_EQ(box->Text(), u"1.234,56");
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"123,45");
  Focus(other);
  EXPECT_EQ(box->Text(), u"R$ 123,45");
}

TEST_F(USTextBoxExTest, TextCaseOnTypingAndSetting) {
  box->TextCase(mx::entry::Case_Upper);
  box->Text(u"são paulo");
  EXPECT_EQ(box->Text(), u"SÃO PAULO");
  box->Text(u"");
  Focus(box);
  Type(u"açaí");
  EXPECT_EQ(box->Text(), u"AÇAÍ");
  // A new case applies to the whole text at the next change.
  box->TextCase(mx::entry::Case_Lower);
  Type(u"X");
  EXPECT_EQ(box->Text(), u"açaíx");
}

TEST_F(USTextBoxExTest, PasteSkipsTheKeyFiltersAndIsReformatted) {
  box->FormatType(mx::entry::To_Number);
  Focus(box);
  mx::platform::SetClipboardText(u"4x2");
  InjectKey(VK_CONTROL, true);
  Press('V');
  InjectKey(VK_CONTROL, false);
  PumpMessages();
  // The paste lands whole; the change handler of a number field leaves non-empty text alone,
  // and the setter's filter applies when the text is set again.
  EXPECT_EQ(box->Text(), u"4x2");
  box->Text(box->Text());
  EXPECT_EQ(box->Text(), u"42");
}

TEST_F(USTextBoxExTest, KeyHandlerMayZeroTheKeyAndEventsComeInOrder) {
  box->KeyPress.connect([](int16_t& k) {
    if (k == 'q') k = 0;
  });
  Focus(box);
  Type(u"aq");
  EXPECT_EQ(box->Text(), u"a");
  // Typed text arrives as characters only: no key-down or key-up of its own.
  const std::vector<std::string> expected = {"KeyPress 97", "Change", "KeyPress 0"};
  EXPECT_EQ(events, expected);
}

TEST_F(USTextBoxExTest, ViewsOfTheText) {
  box->Text(u"  Ana Souza 42  ");
  EXPECT_EQ(box->TextTrim(), u"Ana Souza 42");
  EXPECT_EQ(box->TextLen(), 16);
  EXPECT_EQ(box->TextLenEx(), 12);
  EXPECT_EQ(box->ReturnNumbersOnly(), u"42");
  EXPECT_EQ(box->ReturnTextOnly(), u"AnaSouza");
  EXPECT_EQ(box->TotalLines(), 1);
  box->Text(u"a\r\nb");
  EXPECT_EQ(box->TotalLines(), 2);
  // Only blanks are trimmed: a closing line break still counts.
  box->Text(u"a\r\nb\r\nc\r\n");
  EXPECT_EQ(box->TotalLines(), 4);
  box->Text(u"ana@example.com");
  EXPECT_TRUE(box->IsValidEmail());
  box->Text(u"ana@example");
  EXPECT_FALSE(box->IsValidEmail());
}

TEST_F(USTextBoxExTest, PersistenceRoundTrip) {
  box->FormatType(mx::entry::To_Currency);
  box->Decimals(3);
  box->Required(true);
  box->Theme(0);
  box->Text(u"7,5");
  PropertyBag bag;
  box->SaveTo(bag);
  auto copy = std::make_shared<USTextBoxEx>();
  copy->LoadFrom(bag, true);
  EXPECT_EQ(copy->Text(), u"R$ 7,500");
  EXPECT_EQ(copy->Decimals(), 3);
  EXPECT_TRUE(copy->Required());
  EXPECT_EQ(copy->BorderColor(), box->BorderColor());
  copy->TerminateControl();
}

TEST_F(USTextBoxExTest, MinimumSizeAndRequiredMark) {
  box->Move(150, 150, 75, 75);
  PumpMessages();
  EXPECT_EQ(box->ScaleWidth(), 19);
  EXPECT_EQ(box->ScaleHeight(), 19);
  box->Move(150, 150, 2400, 375);
  box->Required(true);
  Focus(other);
  const CapturedImage img = CaptureWindow(box->hWnd());
  // The border in the normal look's colour, the mark in RequiredColor (0xBBGGRR 0x0000C0).
  EXPECT_EQ(img.pixel(0, 0) & 0xFFFFFF, 0xFFFFFFu & ((box->BorderColor() & 0xFF) << 16 | (box->BorderColor() & 0xFF00) | (box->BorderColor() >> 16 & 0xFF)));
  EXPECT_EQ(img.pixel(159 - 4 - 1, 3) & 0xFFFFFF, 0xC00000u);
  EXPECT_EQ(img.pixel(159 - 4 - 5, 3 + 4) & 0xFFFFFF, 0xFFFFFFu);
}

TEST_F(USTextBoxExTest, SetFocusOnTheFocusedControlChangesNothing) {
  box->FormatType(mx::entry::To_Currency);
  Focus(box);
  Type(u"12,5");
  Caret(2);
  events.clear();
  // The focus passes through the control's own window and comes straight back to the inner box:
  // the text being edited is not laid out as currency and read back, and the caret stays.
  Focus(box);
  EXPECT_EQ(box->Text(), u"12,5");
  EXPECT_EQ(box->SelStart(), 2);
  EXPECT_EQ(box->SelLength(), 0);
  EXPECT_EQ(box->CurrentLook(), USTextBoxEx::kLookFocused);
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(GetFocus(), box->hWndEx());
  // Leaving afterwards still formats as usual.
  Focus(other);
  EXPECT_EQ(box->Text(), u"R$ 12,50");
  EXPECT_EQ(box->CurrentLook(), USTextBoxEx::kLookNormal);
}

TEST_F(USTextBoxExTest, TabInTheInnerBoxMovesTheFocusThroughTheForm) {
  box->FormatType(mx::entry::To_Currency);
  Focus(box);
  Type(u"5");
  events.clear();
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), other->hWndEx());
  // Leaving by Tab is a real leaving: the currency comes back; the Tab itself reaches neither
  // the key events nor the text.
  EXPECT_EQ(box->Text(), u"R$ 5,00");
  EXPECT_EQ(box->CurrentLook(), USTextBoxEx::kLookNormal);
  EXPECT_EQ(other->CurrentLook(), USTextBoxEx::kLookFocused);
  for (const std::string& e : events) EXPECT_EQ(e.find("Key"), std::string::npos) << e;
  EXPECT_EQ(other->Text(), u"");
  // Tab from the last control wraps to the first; Shift+Tab goes back.
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), box->hWndEx());
  EXPECT_EQ(box->Text(), u"5");
  InjectKey(VK_SHIFT, true);
  Press(VK_TAB);
  InjectKey(VK_SHIFT, false);
  PumpMessages();
  EXPECT_EQ(GetFocus(), other->hWndEx());
  // Ctrl+Tab is not the form's: it stays in the box, which raises it as a key.
  Focus(box);
  events.clear();
  InjectKey(VK_CONTROL, true);
  Press(VK_TAB);
  InjectKey(VK_CONTROL, false);
  PumpMessages();
  EXPECT_EQ(GetFocus(), box->hWndEx());
  EXPECT_NE(std::find(events.begin(), events.end(), "KeyDown 9 2"), events.end());
}

}  // namespace
