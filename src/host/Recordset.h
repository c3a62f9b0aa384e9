#pragma once
// The host's recordsets, over SQLite. A Connection is one open database; a Recordset runs one
// query on it and keeps the rows it returned (a static cursor), so every move, RecordCount and
// Find work on that snapshot until Requery runs the query again.
//
// Values come back as the host's Variants:
//   INTEGER          Long, or Double when it does not fit 32 bits
//   REAL             Double
//   TEXT             String
//   NULL             Null
//   BLOB             Byte()
// and by the column's declared type: a type that names DATE, TIME or TIMESTAMP gives the host's
// Date (from ISO text "yyyy-mm-dd[ hh:mm[:ss]]", or a number taken as a Julian day for REAL and
// as Unix seconds for INTEGER); BOOL, BOOLEAN or BIT gives a Boolean. A value that does not read
// as its declared type keeps its storage type.
//
// Everything is reachable by name (Object::Invoke), which is how the grid walks a recordset:
// "EOF", "BOF", "Fields" ("Count", "Item" by index or name), "Name", "Value", "Type", "MoveNext".
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

struct sqlite3;

namespace mx::host {

// The recordset's error numbers, as its users test them.
enum RecordsetError : int32_t {
  adErrItemNotFound = 3265,     // no field with that name or ordinal
  adErrNoCurrentRecord = 3021,  // BOF or EOF is True
  adErrObjectClosed = 3704,     // the recordset is not open
  adErrObjectOpen = 3705,       // Open on a recordset that is open
  adErrProviderFailed = -2147467259,  // the database refused the statement (its text is the description)
};

enum ObjectStateEnum : int32_t { adStateClosed = 0, adStateOpen = 1 };
enum SearchDirectionEnum : int32_t { adSearchBackward = -1, adSearchForward = 1 };

// Field types reported by Field::Type, in the numbering recordset users know.
enum DataTypeEnum : int32_t {
  adEmpty = 0,
  adInteger = 3,
  adDouble = 5,
  adDate = 7,
  adBoolean = 11,
  adVariant = 12,
  adBigInt = 20,
  adVarWChar = 202,
  adLongVarBinary = 205,
};

// One open SQLite database. A recordset holds its connection, so the database stays open while
// any recordset over it is alive.
class Connection : public Object {
 public:
  Connection() = default;
  ~Connection() override;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // A file name, or ":memory:" for a private database in memory. Raises adErrProviderFailed
  // with the database's message when it cannot be opened, adErrObjectOpen when already open.
  void Open(StringView connectionString);
  // Runs statements that return no rows (several, separated by ";"). Raises on failure.
  void Execute(StringView sql);
  void Close();
  [[nodiscard]] int32_t State() const { return m_db != nullptr ? adStateOpen : adStateClosed; }
  [[nodiscard]] sqlite3* Handle() const { return m_db; }

  [[nodiscard]] String TypeName() const override { return u"Connection"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  sqlite3* m_db = nullptr;
};

class Recordset;
class Fields;

// One column of a recordset. Value reads the current record of the recordset it came from.
class Field : public Object {
 public:
  Field(std::weak_ptr<Recordset> owner, int32_t index) : m_owner(std::move(owner)), m_index(index) {}

  [[nodiscard]] String Name() const;
  // Raises adErrNoCurrentRecord at BOF or EOF, adErrObjectClosed once the recordset is closed.
  [[nodiscard]] Variant Value() const;
  [[nodiscard]] int32_t Type() const;

  [[nodiscard]] String TypeName() const override { return u"Field"; }
  // Value is the default member.
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  [[nodiscard]] std::shared_ptr<Recordset> Owner() const;

  std::weak_ptr<Recordset> m_owner;
  int32_t m_index;
};

// The columns of a recordset, in the query's order, numbered from 0.
class Fields : public Object {
 public:
  explicit Fields(std::weak_ptr<Recordset> owner) : m_owner(std::move(owner)) {}

  [[nodiscard]] int32_t Count() const;
  // By ordinal (0-based) or by name without regard to case; raises adErrItemNotFound.
  [[nodiscard]] std::shared_ptr<Field> Item(const Variant& indexOrName) const;

  [[nodiscard]] String TypeName() const override { return u"Fields"; }
  // Item is the default member; For Each visits the fields in order.
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;
  [[nodiscard]] std::vector<Variant> EnumerateItems() override;

 private:
  std::weak_ptr<Recordset> m_owner;
};

class Recordset : public Object {
 public:
  // Recordsets hand out fields that point back at them, so they live in a shared_ptr.
  [[nodiscard]] static std::shared_ptr<Recordset> Create();
  ~Recordset() override;

  // Runs the query. The connection is a Connection object, or text naming a database file
  // (":memory:" included), which the recordset then opens for itself.
  void Open(StringView source, const Variant& activeConnection);
  void Open(StringView source, const std::shared_ptr<Connection>& connection);
  // Runs the query again; the position returns to the first record.
  void Requery();
  void Close();
  [[nodiscard]] int32_t State() const { return m_open ? adStateOpen : adStateClosed; }

  // EOF: past the last record (and always with no records); BOF: before the first.
  [[nodiscard]] bool EOF_() const;
  [[nodiscard]] bool BOF() const;
  [[nodiscard]] int32_t RecordCount() const;
  // 1-based number of the current record, or -1 at BOF/EOF (or when empty).
  [[nodiscard]] int32_t AbsolutePosition() const;

  // MoveNext at EOF and MovePrevious at BOF raise adErrNoCurrentRecord; the others never do on
  // an open recordset (on an empty one they leave both BOF and EOF set).
  void MoveNext();
  void MovePrevious();
  void MoveFirst();
  void MoveLast();

  // Criteria of the form "<field> <op> <value>", op one of = <> < > <= >= LIKE; the value is a
  // number, 'text' (doubled quotes inside), #date# or NULL. LIKE takes * and % as wildcards.
  // Starts skipRecords past the current record (the current record itself with 0) and walks in
  // the given direction; when nothing matches the position ends at EOF (forward) or BOF
  // (backward). Raises 5 for criteria it cannot read and adErrItemNotFound for an unknown field.
  void Find(StringView criteria, int32_t skipRecords = 0, int32_t searchDirection = adSearchForward);

  [[nodiscard]] std::shared_ptr<Fields> GetFields();
  [[nodiscard]] int32_t FieldCount() const;
  [[nodiscard]] const String& FieldName(int32_t index) const;
  [[nodiscard]] int32_t FieldType(int32_t index) const;
  // The value of a field in the current record, with the checks of Field::Value.
  [[nodiscard]] const Variant& FieldValue(int32_t index) const;
  // The ordinal of a field by name, -1 when there is none.
  [[nodiscard]] int32_t FieldIndex(StringView name) const;

  [[nodiscard]] String TypeName() const override { return u"Recordset"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  Recordset() = default;
  void RequireOpen() const;
  void Run();

  struct Column {
    String name;
    int32_t type = adVariant;
  };

  std::shared_ptr<Connection> m_connection;
  String m_source;
  bool m_open = false;
  std::vector<Column> m_columns;
  // Row-major: record r, field f is m_values[r * columns + f].
  std::vector<Variant> m_values;
  int32_t m_recordCount = 0;
  // -1 is BOF, m_recordCount is EOF.
  int32_t m_position = 0;
  std::shared_ptr<Fields> m_fields;
};

}  // namespace mx::host
