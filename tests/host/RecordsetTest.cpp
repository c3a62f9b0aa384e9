#include "host/Recordset.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "RegionalTestSupport.h"
#include "host/DateTime.h"
#include "host/Err.h"

namespace mx::host {
namespace {

using test::At;

class RecordsetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_db = std::make_shared<Connection>();
    m_db->Open(u":memory:");
    m_db->Execute(
        u"CREATE TABLE people(id INTEGER, name TEXT, score REAL, born DATE, seen DATETIME, active BOOLEAN, "
        u"photo BLOB, big BIGINT);"
        u"INSERT INTO people VALUES(1, 'Ana', 9.5, '1990-05-17', '2024-01-02 13:45:10', 1, x'0102ff', 3000000000);"
        u"INSERT INTO people VALUES(2, 'Bruno', NULL, NULL, '2024-01-03', 0, NULL, -5);"
        u"INSERT INTO people VALUES(3, 'Célia', 7.25, '2001-12-31', '08:30', 'true', x'', 7);"
        u"INSERT INTO people VALUES(4, 'O''Neil', 7.25, 'not a date', 2460000.5, 'yes', NULL, 0);");
  }

  std::shared_ptr<Recordset> OpenQuery(StringView sql) {
    auto rs = Recordset::Create();
    rs->Open(sql, m_db);
    return rs;
  }

  std::shared_ptr<Connection> m_db;
};

TEST_F(RecordsetTest, ValuesTakeTheHostTypesByStorageAndDeclaredType) {
  auto rs = OpenQuery(u"SELECT * FROM people ORDER BY id");
  ASSERT_EQ(rs->FieldCount(), 8);

  // Record 1: every kind present.
  EXPECT_EQ(rs->FieldValue(0).VarType(), vbLong);
  EXPECT_EQ(rs->FieldValue(1).ToString(), u"Ana");
  EXPECT_EQ(rs->FieldValue(2).VarType(), vbDouble);
  EXPECT_DOUBLE_EQ(rs->FieldValue(2).ToDouble(), 9.5);
  ASSERT_EQ(rs->FieldValue(3).VarType(), vbDate);
  EXPECT_DOUBLE_EQ(rs->FieldValue(3).ToDate().days, At(1990, 5, 17));
  EXPECT_NEAR(rs->FieldValue(4).ToDate().days, At(2024, 1, 2, 13, 45, 10), 1e-9);
  ASSERT_EQ(rs->FieldValue(5).VarType(), vbBoolean);
  EXPECT_TRUE(rs->FieldValue(5).ToBoolean());
  ASSERT_NE(rs->FieldValue(6).Bytes(), nullptr);
  EXPECT_EQ(*rs->FieldValue(6).Bytes(), (ByteArray{0x01, 0x02, 0xFF}));
  // Past 32 bits an integer becomes a Double rather than wrapping.
  EXPECT_EQ(rs->FieldValue(7).VarType(), vbDouble);
  EXPECT_DOUBLE_EQ(rs->FieldValue(7).ToDouble(), 3000000000.0);

  rs->MoveNext();
  EXPECT_TRUE(rs->FieldValue(2).IsNull());
  EXPECT_TRUE(rs->FieldValue(3).IsNull());
  EXPECT_TRUE(rs->FieldValue(6).IsNull());
  EXPECT_FALSE(rs->FieldValue(5).ToBoolean());
  EXPECT_EQ(rs->FieldValue(7).VarType(), vbLong);
  EXPECT_EQ(rs->FieldValue(7).ToLong(), -5);

  rs->MoveNext();
  EXPECT_EQ(rs->FieldValue(1).ToString(), u"Célia");
  // A time alone is a date on day 0; "true" in a boolean column reads as True.
  EXPECT_NEAR(rs->FieldValue(4).ToDate().days, At(1899, 12, 30, 8, 30), 1e-9);
  EXPECT_TRUE(rs->FieldValue(5).ToBoolean());
  EXPECT_EQ(rs->FieldValue(6).Bytes()->size(), 0u);

  rs->MoveNext();
  // Text that is not a date, or not a Boolean, stays text; a REAL date is a Julian day.
  EXPECT_EQ(rs->FieldValue(3).VarType(), vbString);
  EXPECT_EQ(rs->FieldValue(3).ToString(), u"not a date");
  EXPECT_DOUBLE_EQ(rs->FieldValue(4).ToDate().days, 2460000.5 - 2415018.5);
  EXPECT_EQ(rs->FieldValue(5).ToString(), u"yes");
}

TEST_F(RecordsetTest, FieldTypesFollowTheDeclaration) {
  auto rs = OpenQuery(u"SELECT id, name, score, born, active, photo, big, id * 2.5 AS expr FROM people");
  auto fields = rs->GetFields();
  EXPECT_EQ(fields->Item(Variant(0))->Type(), adInteger);
  EXPECT_EQ(fields->Item(Variant(u"NAME"))->Type(), adVarWChar);
  EXPECT_EQ(fields->Item(Variant(2))->Type(), adDouble);
  EXPECT_EQ(fields->Item(Variant(3))->Type(), adDate);
  EXPECT_EQ(fields->Item(Variant(4))->Type(), adBoolean);
  EXPECT_EQ(fields->Item(Variant(5))->Type(), adLongVarBinary);
  EXPECT_EQ(fields->Item(Variant(6))->Type(), adBigInt);
  // An expression has no declared type: its values decide.
  EXPECT_EQ(fields->Item(Variant(u"expr"))->Type(), adDouble);
  EXPECT_EQ(fields->Item(Variant(u"expr"))->Name(), u"expr");
  EXPECT_RAISES(fields->Item(Variant(8)), adErrItemNotFound);
  EXPECT_RAISES(fields->Item(Variant(u"missing")), adErrItemNotFound);
}

TEST_F(RecordsetTest, NavigationSetsBofAndEofAndRefusesToRunPastThem) {
  auto rs = OpenQuery(u"SELECT id FROM people ORDER BY id");
  EXPECT_EQ(rs->RecordCount(), 4);
  EXPECT_FALSE(rs->BOF());
  EXPECT_FALSE(rs->EOF_());
  EXPECT_EQ(rs->AbsolutePosition(), 1);

  rs->MovePrevious();
  EXPECT_TRUE(rs->BOF());
  EXPECT_RAISES(rs->FieldValue(0), adErrNoCurrentRecord);
  EXPECT_RAISES(rs->MovePrevious(), adErrNoCurrentRecord);
  rs->MoveNext();
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 1);

  rs->MoveLast();
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 4);
  rs->MoveNext();
  EXPECT_TRUE(rs->EOF_());
  EXPECT_FALSE(rs->BOF());
  EXPECT_RAISES(rs->MoveNext(), adErrNoCurrentRecord);
  EXPECT_EQ(rs->AbsolutePosition(), -1);
  rs->MovePrevious();
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 4);
  rs->MoveFirst();
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 1);

  auto empty = OpenQuery(u"SELECT id FROM people WHERE id > 100");
  EXPECT_TRUE(empty->BOF());
  EXPECT_TRUE(empty->EOF_());
  EXPECT_EQ(empty->RecordCount(), 0);
  empty->MoveLast();
  EXPECT_TRUE(empty->BOF() && empty->EOF_());
  EXPECT_RAISES(empty->MoveNext(), adErrNoCurrentRecord);
  // The columns of an empty result are still known.
  EXPECT_EQ(empty->FieldCount(), 1);
}

TEST_F(RecordsetTest, FindWalksFromTheCurrentRecordInEitherDirection) {
  auto rs = OpenQuery(u"SELECT * FROM people ORDER BY id");
  rs->Find(u"name = 'O''Neil'");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 4);
  // The current record is a candidate: searching again stays; skipping one moves on.
  rs->MoveFirst();
  rs->Find(u"score = 7.25");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 3);
  rs->Find(u"score = 7.25");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 3);
  rs->Find(u"score = 7.25", 1);
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 4);
  rs->Find(u"score > 100", 1);
  EXPECT_TRUE(rs->EOF_());

  rs->MoveLast();
  rs->Find(u"[name] LIKE 'b*'", 0, adSearchBackward);
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 2);
  rs->Find(u"id >= 3", 0, adSearchBackward);
  EXPECT_TRUE(rs->BOF());

  rs->MoveFirst();
  rs->Find(u"score = NULL");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 2);
  rs->MoveFirst();
  rs->Find(u"born < #2000-01-01#");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 1);
  rs->Find(u"name LIKE '%lia'");
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 3);

  EXPECT_RAISES(rs->Find(u"name"), kErrInvalidProcedureCall);
  EXPECT_RAISES(rs->Find(u"name = 'open"), kErrInvalidProcedureCall);
  EXPECT_RAISES(rs->Find(u"nobody = 1"), adErrItemNotFound);
}

TEST_F(RecordsetTest, RequeryCloseStateAndErrors) {
  auto rs = OpenQuery(u"SELECT id FROM people");
  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_RAISES(rs->Open(u"SELECT 1", m_db), adErrObjectOpen);
  rs->MoveLast();
  m_db->Execute(u"INSERT INTO people(id) VALUES(5)");
  EXPECT_EQ(rs->RecordCount(), 4);  // a snapshot until asked again
  rs->Requery();
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_EQ(rs->AbsolutePosition(), 1);

  auto field = rs->GetFields()->Item(Variant(0));
  rs->Close();
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_RAISES(rs->EOF_(), adErrObjectClosed);
  EXPECT_RAISES(field->Value(), adErrObjectClosed);
  EXPECT_RAISES(rs->Close(), adErrObjectClosed);

  // A closed recordset opens again; a bad statement leaves it closed with the database's text.
  rs->Open(u"SELECT 42 AS answer", m_db);
  EXPECT_EQ(rs->FieldValue(0).ToLong(), 42);
  rs->Close();
  try {
    rs->Open(u"SELECT * FROM nowhere", m_db);
    ADD_FAILURE() << "a missing table was accepted";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), adErrProviderFailed);
    EXPECT_NE(e.Description().find(u"nowhere"), String::npos);
  }
  EXPECT_EQ(rs->State(), adStateClosed);
}

TEST(RecordsetFile, OpensADatabaseFileNamedByText) {
  auto path = std::filesystem::temp_directory_path() / "mx_recordset_test.db";
  std::filesystem::remove(path);
  {
    Connection c;
    c.Open(FromUtf8(path.string()));
    c.Execute(u"CREATE TABLE t(v TEXT); INSERT INTO t VALUES('x'), ('y');");
  }
  auto rs = Recordset::Create();
  rs->Open(u"SELECT v FROM t", Variant(FromUtf8(path.string())));
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->Close();
  std::filesystem::remove(path);
}

TEST_F(RecordsetTest, LateBoundWalkByMemberNames) {
  auto rs = OpenQuery(u"SELECT id, name FROM people ORDER BY id");
  Variant target(rs);
  Variant fields = CallByName(target, u"Fields", CallKind::Get);
  EXPECT_EQ(CallByName(fields, u"Count", CallKind::Get).ToLong(), 2);
  EXPECT_EQ(CallByName(CallByName(fields, u"Item", CallKind::Get, {Variant(1)}), u"Name", CallKind::Get).ToString(),
            u"name");
  String names;
  while (!CallByName(target, u"EOF", CallKind::Get).ToBoolean()) {
    // The field's default member is its value; rs("name") reaches a field directly.
    Variant field = CallByName(target, u"Fields", CallKind::Get, {Variant(u"name")});
    names += CallByName(field, u"", CallKind::Get).ToString() + u";";
    CallByName(target, u"MoveNext", CallKind::Method);
  }
  EXPECT_EQ(names, u"Ana;Bruno;Célia;O'Neil;");
  EXPECT_TRUE(CallByName(target, u"BOF", CallKind::Get).ToBoolean() == false);
  std::vector<Variant> each = fields.Obj()->EnumerateItems();
  ASSERT_EQ(each.size(), 2u);
  EXPECT_EQ(CallByName(each[0], u"Name", CallKind::Get).ToString(), u"id");
  EXPECT_RAISES(CallByName(target, u"Nothing", CallKind::Get), kErrMemberNotSupported);
}

}  // namespace
}  // namespace mx::host
