// A USComboBox bound to a grid column as its editor, on a form beside the grid: the grid reaches
// it only by late binding.
#include <gtest/gtest.h>

#include <memory>
#include <cstring>
#include <string>

#include "entry/Registration.h"
#include "entry/USComboBox.h"
#include "grid/USFlexGrid.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"
#include "../platform/WindowTestSupport.h"

namespace mx::grid::testing {
namespace {

// A grid of 300 x 200 pixels at (10, 10) and a hidden combo; the form works in twips.
constexpr const char* kForm = R"(VERSION 5.00
Begin VB.Form frmOrders
   ClientHeight    =   4500
   ClientWidth     =   6000
   Begin Morvantix.USFlexGrid grdOrders
      Height          =   3000
      Left            =   150
      Top             =   150
      Width           =   4500
   End
   Begin Morvantix.USComboBox cboCity
      Height          =   345
      Left            =   150
      Top             =   3600
      Width           =   1500
      Visible         =   0   'False
   End
End
)";

class GridBoundComboTest : public platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    RegisterControls();
    entry::RegisterControls();
    host::FormFile file;
    host::FormFileError error;
    ASSERT_TRUE(host::ParseFormText(std::span(reinterpret_cast<const uint8_t*>(kForm), std::strlen(kForm)),
                                    [](host::StringView) { return nullptr; }, file, error));
    form = host::Form::FromFormFile(file);
    form->Show();
    platform::PumpMessages();
    grid = std::dynamic_pointer_cast<USFlexGrid>(form->FindControl(u"grdOrders"));
    combo = std::dynamic_pointer_cast<entry::USComboBox>(form->FindControl(u"cboCity"));
    ASSERT_TRUE(grid && combo);
  }
  void TearDown() override {
    grid.reset();
    combo.reset();
    if (form) form->Unload();
    form.reset();
    WindowingTest::TearDown();
  }
  std::shared_ptr<host::Form> form;
  std::shared_ptr<USFlexGrid> grid;
  std::shared_ptr<entry::USComboBox> combo;
};

TEST_F(GridBoundComboTest, TheComboOpensOverTheCellWithItsListAndItsValueIsWrittenBack) {
  grid->AddColumn(u"Client", 1500);
  grid->AddColumn(u"City", 1500);
  grid->AddItem(u"Ana\tRecife");
  grid->AddItem(u"Bruno\tNatal");
  grid->AllowEdit(true);
  for (const char16_t* c : {u"Natal", u"Olinda", u"Recife"}) combo->AddItem(host::Variant(host::String(c)));
  grid->BindControl(1, combo);
  grid->SetFocus();
  grid->RowColSet(1, 1);
  platform::InjectKeyPress(platform::VK_F2);
  platform::PumpMessages();
  ASSERT_TRUE(grid->EditPending());
  EXPECT_TRUE(combo->Visible());
  EXPECT_TRUE(combo->IsListVisible());
  EXPECT_EQ(combo->Text(), u"Natal");
  // Over the cell, in the form's twips: the second column starts 100 pixels into the grid.
  EXPECT_FLOAT_EQ(combo->Left(), grid->Left() + 100 * 15.0f);
  EXPECT_FLOAT_EQ(combo->Width(), 100 * 15.0f);
  // The focus went into the combo and the grid did not take that for a reason to close.
  const platform::HWND focus = platform::GetFocus();
  EXPECT_TRUE(focus == combo->hWnd() || platform::IsChild(combo->hWnd(), focus));
  combo->Text(u"Olinda");
  EXPECT_TRUE(grid->UpdateCell());
  EXPECT_FALSE(combo->Visible());
  EXPECT_EQ(grid->CellText(1, 1), u"Olinda");
  EXPECT_TRUE(grid->CellChanged(1, 1));
}

}  // namespace
}  // namespace mx::grid::testing
