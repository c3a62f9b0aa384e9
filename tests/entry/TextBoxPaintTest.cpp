// The text box's faces: a sheet of the looks in two themes, compared with a golden picture.
// Columns are themes; rows are a required field with text in the normal look, a required date
// mask, a focused currency field and a disabled field.
#include <gtest/gtest.h>

#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "frame/Themes.h"
#include "host/Form.h"
#include "host/Locale.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"
#include "platform/WindowTestSupport.h"
#include "support/Golden.h"

using namespace mx::host;
using namespace mx::platform;
using mx::entry::USTextBoxEx;

namespace {

constexpr int kW = 160, kH = 25, kRows = 4;

class TextBoxPaintTest : public mx::platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    mx::entry::RegisterControls();
  }
  ScopedLocale locale{"pt-BR"};
};

// One theme's column: the four looks, top to bottom, as 0xAARRGGBB rows.
std::vector<uint32_t> Column(int32_t theme) {
  auto form = std::make_shared<Form>(u"frmFaces");
  auto font = std::make_shared<StdFont>();
  font->Name(u"Tahoma");
  font->Size(Currency::FromDouble(8.25));
  form->Font(font);
  form->ClientSize(3000, 3000);
  std::vector<std::shared_ptr<USTextBoxEx>> boxes;
  for (int i = 0; i < kRows; ++i) {
    auto c = std::dynamic_pointer_cast<USTextBoxEx>(
        form->AddControl(u"Morvantix.USTextBoxEx", u"txt" + mx::host::String(1, static_cast<char16_t>(u'0' + i))));
    c->Move(150, 150 + 450 * i, kW * 15, kH * 15);
    c->Visible(true);
    c->Theme(theme);
    boxes.push_back(c);
  }
  boxes[0]->Required(true);
  boxes[0]->Text(u"Ana Souza");
  boxes[1]->Mask(u"##/##/####");
  boxes[1]->MaskType(mx::entry::Only_Number);
  boxes[1]->Required(true);
  boxes[1]->Text(u"31122023");
  boxes[2]->FormatType(mx::entry::To_Currency);
  boxes[2]->Text(u"1234,5");
  boxes[3]->Text(u"Somente leitura");
  boxes[3]->Enabled(false);
  form->Show();
  PumpMessages();
  boxes[2]->SetFocus();
  PumpMessages();
  std::vector<uint32_t> px;
  for (const auto& c : boxes) {
    const CapturedImage img = CaptureWindow(c->hWnd());
    EXPECT_EQ(img.width(), kW);
    EXPECT_EQ(img.height(), kH);
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) px.push_back(img.pixel(x, y));
  }
  boxes.clear();
  form->Unload();
  return px;
}

TEST_F(TextBoxPaintTest, GoldenLooksInTwoThemes) {
  const std::vector<uint32_t> a = Column(mx::frame::Windows_Theme);
  const std::vector<uint32_t> b = Column(mx::frame::Office_Theme_Blue);
  ASSERT_EQ(a.size(), static_cast<size_t>(kW * kH * kRows));
  ASSERT_EQ(b.size(), a.size());
  // Side by side with a 4-pixel white gutter.
  constexpr int kGap = 4, kSheetW = kW * 2 + kGap;
  std::vector<uint32_t> sheet(static_cast<size_t>(kSheetW) * kH * kRows, 0xFFFFFFFF);
  for (int y = 0; y < kH * kRows; ++y)
    for (int x = 0; x < kW; ++x) {
      sheet[static_cast<size_t>(y) * kSheetW + x] = a[static_cast<size_t>(y) * kW + x];
      sheet[static_cast<size_t>(y) * kSheetW + kW + kGap + x] = b[static_cast<size_t>(y) * kW + x];
    }
  mx::test::ExpectGolden("entry", "textbox_looks", kSheetW, kH * kRows, sheet);
}

}  // namespace
