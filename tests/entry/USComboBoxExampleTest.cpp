// The combo of the lists example: filled from the example database with the current state
// chosen by its tag, its measured width, and a choice moving the towns list.
#include "USComboBoxTestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "entry/ListsExample.h"
#include "host/Recordset.h"
#include "support/Golden.h"

namespace mx::entry::testing {
namespace {

class ComboExampleTest : public ComboTest {
 protected:
  std::shared_ptr<host::Connection> OpenDatabase() {
    auto connection = std::make_shared<host::Connection>();
    const std::string path = std::string(MX_SOURCE_DIR) + "/examples/lists.db";
    connection->Open(host::String(path.begin(), path.end()));
    return connection;
  }
};

TEST_F(ComboExampleTest, StatesFillWithTheCurrentOneChosenAndNoChange) {
  FillStatesCombo(*combo, OpenDatabase(), nullptr, u"BA");
  EXPECT_EQ(combo->ListCount(), 27);
  EXPECT_EQ(combo->Text(), u"Bahia");
  EXPECT_EQ(combo->ItemTag(combo->ListIndex()), u"BA");
  // Ordered by name: "Acre" first, "Tocantins" last.
  EXPECT_EQ(combo->Item(0).ToString(), u"Acre");
  EXPECT_EQ(combo->Item(26).ToString(), u"Tocantins");
  EXPECT_EQ(Take(), (Lines{"ListIndexChange"}));
  // The longest name ("Rio Grande do Norte") and the offset set the list's width.
  EXPECT_TRUE(combo->ListItemWidthCustom());
  EXPECT_GT(combo->ListItemWidth(), 100.0f);
  EXPECT_FALSE(combo->LockChange());
}

TEST_F(ComboExampleTest, ChoosingAStateShowsItsFirstTown) {
  auto towns = std::dynamic_pointer_cast<USListBox>(form->AddControl(u"Morvantix.USListBox", u"lstTowns"));
  ASSERT_TRUE(towns);
  for (const char16_t* state : {u"AC", u"AC", u"BA", u"BA", u"SP"})
    towns->AddItem(host::Variant(host::String(u"Town ") + state), 0, -1, -1, USListBox::kListForeColor, true, {},
                   nullptr, false, state);
  FillStatesCombo(*combo, OpenDatabase(), nullptr, u"SP", towns);
  EXPECT_EQ(towns->ListIndex(), 4);
  Focus();
  combo->Text(u"Bahia");
  EXPECT_EQ(towns->ListIndex(), 2);
  // Typing picks the state by its completion, and the list follows.
  combo->SelStart(0);
  combo->SelLength(combo->SelStart() + 100);
  Type(u"Acr");
  EXPECT_EQ(combo->Text(), u"Acre");
  EXPECT_EQ(towns->ListIndex(), 0);
}

TEST_F(ComboExampleTest, TheExampleFormRendersWithItsCombo) {
  const std::string out = ::testing::TempDir() + "lists_combo.png";
  std::ostringstream err;
  ASSERT_EQ(RenderListsExample(std::string(MX_SOURCE_DIR) + "/examples/lists.frm",
                               std::string(MX_SOURCE_DIR) + "/examples/lists.db", out, err),
            0)
      << err.str();
  int w = 0, h = 0;
  std::vector<uint32_t> px;
  ASSERT_TRUE(mx::test::ReadPngFile(out, w, h, px));
  if (!std::getenv("KEEP_EXAMPLE")) std::remove(out.c_str());
}

}  // namespace
}  // namespace mx::entry::testing
