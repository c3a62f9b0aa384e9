// The entry example: its form and database load, the town field completes from the shipped
// database (accents and apostrophes in the names), and the picture is written.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "controls/Registration.h"
#include "entry/EntryExample.h"
#include "entry/Registration.h"
#include "entry/USTextBoxEx.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Locale.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/WindowTestSupport.h"
#include "support/Golden.h"

namespace mx::entry {
namespace {

class EntryExampleTest : public platform::testing::WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    controls::RegisterControls();
    RegisterControls();
  }
  static std::string Example(const char* name) { return std::string(MX_SOURCE_DIR) + "/examples/" + name; }
  host::ScopedLocale m_locale{"pt-BR"};
};

TEST_F(EntryExampleTest, TownFieldCompletesFromTheShippedDatabase) {
  auto form = host::LoadFormFile(Example("entry.frm"));
  ASSERT_TRUE(form);
  WireEntryCompletion(*form, Example("entry.db"));
  form->Show();
  platform::PumpMessages();
  auto city = std::dynamic_pointer_cast<USTextBoxEx>(form->FindControl(u"txtCity"));
  ASSERT_TRUE(city);
  city->SetFocus();
  platform::PumpMessages();
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"dias", u"Dias d'Ávila"}, {u"olho d'", u"Olho d'Água das Flores"}, {u"sÃo l", u"São Luís"}};
  for (const auto& [typed, completed] : cases) {
    city->Text(u"");
    for (const char16_t* p = typed; *p; ++p) {
      platform::InjectText(host::StringView(p, 1));
      platform::PumpMessages();
    }
    EXPECT_EQ(city->Text(), completed);
    EXPECT_EQ(city->SelStart(), static_cast<int32_t>(std::char_traits<char16_t>::length(typed)));
    EXPECT_EQ(city->SelStart() + city->SelLength(), city->TextLen());
  }
  // The masks of the form are those of a date and a CPF.
  EXPECT_EQ(std::dynamic_pointer_cast<USTextBoxEx>(form->FindControl(u"txtCPF"))->Text(), u"   .   .   -  ");
  form->Unload();
}

TEST_F(EntryExampleTest, RendersAndFailsWithAMessage) {
  const std::string out = ::testing::TempDir() + "entry_example.png";
  std::ostringstream err;
  ASSERT_EQ(RenderEntryExample(Example("entry.frm"), Example("entry.db"), out, err), 0) << err.str();
  int w = 0, h = 0;
  std::vector<uint32_t> px;
  ASSERT_TRUE(mx::test::ReadPngFile(out, w, h, px));
  EXPECT_GE(w, 280);
  std::remove(out.c_str());

  std::ostringstream err2;
  EXPECT_EQ(RenderEntryExample(Example("lists.frm"), Example("entry.db"), out, err2), 1);
  EXPECT_NE(err2.str().find("txtCity"), std::string::npos) << err2.str();
  std::ostringstream err3;
  EXPECT_EQ(RenderEntryExample(Example("entry.frm"), Example("lists.db"), out, err3), 1);
  EXPECT_NE(err3.str().find("cidades"), std::string::npos) << err3.str();
}

}  // namespace
}  // namespace mx::entry
