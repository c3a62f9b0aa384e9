// Completion of a text box from a real SQLite file: accents and quotes in the data, the
// completion selected after the typed text, deletions not completing, pattern characters that
// match only themselves, several fields, a requery, and the end of the completion.
#include <cstdio>

#include "AutoCompleteTestSupport.h"
#include "entry/APITextEvents.h"
#include "host/Err.h"
#include "host/Recordset.h"

namespace mx::entry::testing {
namespace {

class AutoCompleteDatabaseTest : public AutoCompleteTest {
 protected:
  void SetUp() override {
    AutoCompleteTest::SetUp();
    path = ::testing::TempDir() + "autocomplete_" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".db";
    std::remove(path.c_str());
    Execute(
        u"CREATE TABLE people (nome TEXT, cidade TEXT);"
        u"INSERT INTO people VALUES ('João Silva', 'São Paulo');"
        u"INSERT INTO people VALUES ('José Santos', 'Curitiba');"
        u"INSERT INTO people VALUES ('D''Ávila', 'Maceió');"
        u"INSERT INTO people VALUES ('Maria', 'Salvador');"
        u"INSERT INTO people VALUES (NULL, 'Natal');");
  }
  void TearDown() override {
    AutoCompleteTest::TearDown();
    std::remove(path.c_str());
  }
  void Execute(host::StringView sql) {
    host::Connection db;
    db.Open(host::FromUtf8(path));
    db.Execute(sql);
    db.Close();
  }
  void Complete(host::StringView table, host::StringView fields) {
    box->InitializeAutoComplete(host::Variant(host::FromUtf8(path)), table, fields);
  }
  std::string path;
};

TEST_F(AutoCompleteDatabaseTest, CompletesAccentsAndQuotesWithTheAdditionSelected) {
  Complete(u"people", u"nome");
  // Lower case finds the stored spelling; the typed length stays unselected.
  Type(u"joã");
  EXPECT_EQ(Shown(), u"Joã|o Silva");
  // Typing over the selection narrows again from the start of the data.
  box->Text(u"");
  Type(u"jos");
  EXPECT_EQ(Shown(), u"Jos|é Santos");
  box->Text(u"");
  Type(u"d'");
  EXPECT_EQ(Shown(), u"D'|Ávila");
  Type(u"á");
  EXPECT_EQ(Shown(), u"D'Á|vila");
  // A text that no value begins with is left as typed.
  box->Text(u"");
  Type(u"Xa");
  EXPECT_EQ(Shown(), u"Xa|");
}

TEST_F(AutoCompleteDatabaseTest, BackspaceAndDeleteDoNotComplete) {
  Complete(u"people", u"nome");
  Type(u"Joã");
  ASSERT_EQ(Shown(), u"Joã|o Silva");
  // Backspace removes the selected completion and nothing comes back.
  Press(platform::VK_BACK);
  EXPECT_EQ(Shown(), u"Joã|");
  Press(platform::VK_BACK);
  EXPECT_EQ(Shown(), u"Jo|");
  // The next typed character completes again.
  Type(u"s");
  EXPECT_EQ(Shown(), u"Jos|é Santos");
  Press(platform::VK_DELETE);
  EXPECT_EQ(Shown(), u"Jos|");
}

TEST_F(AutoCompleteDatabaseTest, PatternCharactersMatchOnlyThemselves) {
  // Each decoy comes first and would match if the character were read as a wildcard.
  Execute(
      u"CREATE TABLE words (w TEXT);"
      u"INSERT INTO words VALUES ('5000 unidades');"
      u"INSERT INTO words VALUES ('50% off');"
      u"INSERT INTO words VALUES ('ab');"
      u"INSERT INTO words VALUES ('a*b');"
      u"INSERT INTO words VALUES ('axb');"
      u"INSERT INTO words VALUES ('a_b');"
      u"INSERT INTO words VALUES ('x done');"
      u"INSERT INTO words VALUES ('[x] done');"
      u"INSERT INTO words VALUES ('11 pick');"
      u"INSERT INTO words VALUES ('#1 pick');"
      u"INSERT INTO words VALUES ('what');"
      u"INSERT INTO words VALUES ('w?at');"
      u"INSERT INTO words VALUES ('c:\\dir');");
  Complete(u"words", u"w");
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"50%", u"50%| off"}, {u"a*", u"a*|b"},   {u"a_", u"a_|b"},       {u"[", u"[|x] done"},
      {u"#", u"#|1 pick"},   {u"w?", u"w?|at"}, {u"c:\\", u"c:\\|dir"},
  };
  for (const auto& [typed, shown] : cases) {
    box->Text(u"");
    Type(typed);
    EXPECT_EQ(Shown(), shown) << host::ToUtf8(typed);
  }
}

TEST_F(AutoCompleteDatabaseTest, SeveralFieldsAreTriedInTurn) {
  // Through an open connection, as a form's code hands over its database.
  auto connection = std::make_shared<host::Connection>();
  connection->Open(host::FromUtf8(path));
  box->InitializeAutoComplete(host::Variant(connection), u"people", u"nome, cidade");
  // No name begins with "Cur": the town field answers.
  Type(u"Cur");
  EXPECT_EQ(Shown(), u"Cur|itiba");
  box->Text(u"");
  Type(u"Ma");
  EXPECT_EQ(Shown(), u"Ma|ria");
  // The row with no name still offers its town.
  box->Text(u"");
  Type(u"Na");
  EXPECT_EQ(Shown(), u"Na|tal");
  // A miss in every field, then a hit in the first again.
  box->Text(u"");
  Type(u"Q");
  EXPECT_EQ(Shown(), u"Q|");
  box->Text(u"");
  Type(u"Jo");
  EXPECT_EQ(box->Text().substr(0, 2), u"Jo");
  EXPECT_EQ(box->SelStart(), 2);
}

TEST_F(AutoCompleteDatabaseTest, RequeryOffersNewRows) {
  Complete(u"people", u"nome");
  Type(u"Zé");
  EXPECT_EQ(Shown(), u"Zé|");
  Execute(u"INSERT INTO people VALUES ('Zélia', 'Natal');");
  box->Text(u"");
  Type(u"Zé");
  EXPECT_EQ(Shown(), u"Zé|") << "the rows are those of the last query";
  ASSERT_NE(box->TextEvents(), nullptr);
  box->TextEvents()->Texto_AtualizarDados();
  box->Text(u"");
  Type(u"Zé");
  EXPECT_EQ(Shown(), u"Zé|lia");
}

TEST_F(AutoCompleteDatabaseTest, UpperCaseBoxKeepsTheSelection) {
  box->TextCase(Case_Upper);
  Complete(u"people", u"nome");
  Type(u"joã");
  EXPECT_EQ(Shown(), u"JOÃ|O SILVA");
}

TEST_F(AutoCompleteDatabaseTest, FinalizeEndsTheCompletionAndBadQueriesLeaveNone) {
  Complete(u"people", u"nome");
  std::shared_ptr<host::Recordset> rs = box->TextEvents()->Recordset();
  box->FinalizeAutoComplete();
  EXPECT_EQ(box->TextEvents(), nullptr);
  EXPECT_EQ(rs->State(), host::adStateClosed);
  Type(u"Joã");
  EXPECT_EQ(Shown(), u"Joã|");
  // A second finalize has nothing to do.
  box->FinalizeAutoComplete();

  EXPECT_THROW(Complete(u"nowhere", u"nome"), host::RuntimeError);
  EXPECT_EQ(box->TextEvents(), nullptr);
  // By name, as a form's code calls it.
  std::vector<host::Variant> args{host::Variant(host::FromUtf8(path)), host::Variant(host::String(u"people")),
                                  host::Variant(host::String(u"cidade"))};
  box->Invoke(u"InitializeAutoComplete", host::CallKind::Method, args);
  box->Text(u"");
  Type(u"sal");
  EXPECT_EQ(Shown(), u"Sal|vador");
}

TEST(APITextEventsEscape, QuotesDoubledAndLineBreaksDropped) {
  EXPECT_EQ(APITextEvents::EscapeLikeText(u"D'Ávila\r\n'"), u"D''Ávila''");
  EXPECT_EQ(APITextEvents::EscapeLikeText(u"[a]*?#%_"), u"[[]a][*][?][#]?_");
}

}  // namespace
}  // namespace mx::entry::testing
