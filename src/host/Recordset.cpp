#include "host/Recordset.h"

#include <sqlite3.h>

#include <cmath>
#include <optional>

#include "host/Conversion.h"
#include "host/DateTime.h"
#include "host/Err.h"
#include "host/Like.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

constexpr char16_t kSource[] = u"Recordset";

// Day 0 of the host's dates in the two numeric forms SQLite's date functions use.
constexpr double kJulianDayOfHostEpoch = 2415018.5;
constexpr double kUnixEpochInHostDays = 25569.0;

[[noreturn]] void RaiseDatabase(sqlite3* db, StringView fallback) {
  String text = db != nullptr ? FromUtf8(sqlite3_errmsg(db)) : String(fallback);
  Raise(adErrProviderFailed, kSource, text);
}

bool ContainsWord(const String& upperType, StringView word) {
  return upperType.find(word) != String::npos;
}

enum class Declared { Plain, Date, Boolean };

Declared ClassifyDeclaredType(const char* declType) {
  if (declType == nullptr) return Declared::Plain;
  String upper = UCase(FromUtf8(declType));
  if (ContainsWord(upper, u"BOOL") || upper == u"BIT") return Declared::Boolean;
  if (ContainsWord(upper, u"DATE") || ContainsWord(upper, u"TIME")) return Declared::Date;
  return Declared::Plain;
}

// Reads "yyyy-mm-dd", "yyyy-mm-dd hh:mm", "yyyy-mm-dd hh:mm:ss[.fff]" (a "T" may stand for the
// blank) and "hh:mm[:ss]" alone, the forms SQLite's own date functions write.
std::optional<double> ParseIsoDate(std::string_view s) {
  auto digits = [&](size_t at, size_t count, int& out) {
    if (at + count > s.size()) return false;
    int v = 0;
    for (size_t i = at; i < at + count; ++i) {
      if (s[i] < '0' || s[i] > '9') return false;
      v = v * 10 + (s[i] - '0');
    }
    out = v;
    return true;
  };
  auto parseTime = [&](size_t at, double& out) {
    int h = 0, m = 0, sec = 0;
    if (!digits(at, 2, h) || at + 2 >= s.size() || s[at + 2] != ':' || !digits(at + 3, 2, m)) return false;
    size_t end = at + 5;
    if (end < s.size() && s[end] == ':') {
      if (!digits(end + 1, 2, sec)) return false;
      end += 3;
      // Fractions of a second are dropped: the host's dates count whole seconds.
      if (end < s.size() && s[end] == '.') {
        ++end;
        while (end < s.size() && s[end] >= '0' && s[end] <= '9') ++end;
      }
    }
    if (end != s.size() || h > 23 || m > 59 || sec > 59) return false;
    out = TimeSerial(h, m, sec);
    return true;
  };
  int y = 0, mo = 0, d = 0;
  if (digits(0, 4, y) && s.size() >= 10 && s[4] == '-' && digits(5, 2, mo) && s[7] == '-' && digits(8, 2, d)) {
    if (mo < 1 || mo > 12 || d < 1 || d > DaysInMonth(y, mo)) return std::nullopt;
    double date = DateSerial(y, mo, d);
    if (s.size() == 10) return date;
    if (s[10] != ' ' && s[10] != 'T') return std::nullopt;
    double time = 0;
    if (!parseTime(11, time)) return std::nullopt;
    // Before 1899-12-30 the host counts the time away from day 0, so the fraction subtracts.
    return date < 0 ? date - time : date + time;
  }
  double time = 0;
  if (parseTime(0, time)) return time;
  return std::nullopt;
}

Variant ReadColumn(sqlite3_stmt* stmt, int column, Declared declared) {
  switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_NULL:
      return Variant::Null();
    case SQLITE_INTEGER: {
      sqlite3_int64 v = sqlite3_column_int64(stmt, column);
      if (declared == Declared::Boolean) return Variant(v != 0);
      if (declared == Declared::Date) return Variant::FromDate(static_cast<double>(v) / 86400.0 + kUnixEpochInHostDays);
      return Variant(static_cast<int64_t>(v));  // Long when it fits, else Double
    }
    case SQLITE_FLOAT: {
      double v = sqlite3_column_double(stmt, column);
      if (declared == Declared::Boolean) return Variant(v != 0);
      if (declared == Declared::Date) return Variant::FromDate(v - kJulianDayOfHostEpoch);
      return Variant(v);
    }
    case SQLITE_BLOB: {
      const auto* p = static_cast<const uint8_t*>(sqlite3_column_blob(stmt, column));
      int n = sqlite3_column_bytes(stmt, column);
      return Variant(ByteArray(p, p + n));
    }
    default: {
      const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
      int n = sqlite3_column_bytes(stmt, column);
      std::string_view text(p != nullptr ? p : "", static_cast<size_t>(n));
      if (declared == Declared::Date) {
        if (auto date = ParseIsoDate(text)) return Variant::FromDate(*date);
      } else if (declared == Declared::Boolean) {
        String t = UCase(FromUtf8(text));
        if (t == u"TRUE" || t == u"1") return Variant(true);
        if (t == u"FALSE" || t == u"0") return Variant(false);
      }
      return Variant(FromUtf8(text));
    }
  }
}

int32_t FieldTypeOf(Declared declared, const char* declType, const Variant& firstValue) {
  if (declared == Declared::Boolean) return adBoolean;
  if (declared == Declared::Date) return adDate;
  // SQLite's affinity rules: the declared type decides where there is one.
  if (declType != nullptr && *declType != 0) {
    String upper = UCase(FromUtf8(declType));
    if (ContainsWord(upper, u"INT")) return ContainsWord(upper, u"BIG") ? adBigInt : adInteger;
    if (ContainsWord(upper, u"CHAR") || ContainsWord(upper, u"CLOB") || ContainsWord(upper, u"TEXT")) {
      return adVarWChar;
    }
    if (ContainsWord(upper, u"BLOB")) return adLongVarBinary;
    if (ContainsWord(upper, u"REAL") || ContainsWord(upper, u"FLOA") || ContainsWord(upper, u"DOUB")) return adDouble;
  }
  // An expression column has no declared type: the first value says what it holds.
  switch (firstValue.VarType()) {
    case vbLong: return adInteger;
    case vbDouble: return adDouble;
    case vbString: return adVarWChar;
    case vbArray + vbByte: return adLongVarBinary;
    default: return adVariant;
  }
}

// ---- Find criteria ----------------------------------------------------------------------------

enum class FindOp { Eq, Ne, Lt, Gt, Le, Ge, Like };

struct Criteria {
  String field;
  FindOp op = FindOp::Eq;
  Variant value;
};

[[noreturn]] void BadCriteria() {
  Raise(kErrInvalidProcedureCall, kSource, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another.");
}

Criteria ParseCriteria(StringView text) {
  size_t i = 0;
  auto skipBlanks = [&] {
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t')) ++i;
  };
  Criteria c;
  skipBlanks();
  if (i < text.size() && text[i] == u'[') {
    size_t close = text.find(u']', i);
    if (close == StringView::npos) BadCriteria();
    c.field = String(text.substr(i + 1, close - i - 1));
    i = close + 1;
  } else {
    size_t start = i;
    while (i < text.size() && text[i] != u' ' && text[i] != u'=' && text[i] != u'<' && text[i] != u'>') ++i;
    c.field = String(text.substr(start, i - start));
  }
  if (c.field.empty()) BadCriteria();
  skipBlanks();
  auto startsWith = [&](StringView op) { return text.substr(i, op.size()) == op; };
  if (startsWith(u"<>")) { c.op = FindOp::Ne; i += 2; }
  else if (startsWith(u"<=")) { c.op = FindOp::Le; i += 2; }
  else if (startsWith(u">=")) { c.op = FindOp::Ge; i += 2; }
  else if (startsWith(u"=")) { c.op = FindOp::Eq; i += 1; }
  else if (startsWith(u"<")) { c.op = FindOp::Lt; i += 1; }
  else if (startsWith(u">")) { c.op = FindOp::Gt; i += 1; }
  else if (i + 4 <= text.size() && TextEquals(text.substr(i, 4), u"LIKE")) { c.op = FindOp::Like; i += 4; }
  else BadCriteria();
  skipBlanks();
  if (i >= text.size()) BadCriteria();
  StringView rest = text.substr(i);
  while (!rest.empty() && rest.back() == u' ') rest.remove_suffix(1);
  if (rest.front() == u'\'') {
    String value;
    size_t k = 1;
    for (;; ++k) {
      if (k >= rest.size()) BadCriteria();
      if (rest[k] == u'\'') {
        if (k + 1 < rest.size() && rest[k + 1] == u'\'') { value += u'\''; ++k; continue; }
        break;
      }
      value += rest[k];
    }
    if (k + 1 != rest.size()) BadCriteria();
    c.value = Variant(std::move(value));
  } else if (rest.front() == u'#') {
    if (rest.size() < 3 || rest.back() != u'#') BadCriteria();
    auto date = ParseIsoDate(ToUtf8(rest.substr(1, rest.size() - 2)));
    double days = 0;
    if (date) days = *date;
    else if (!TryParseDate(rest.substr(1, rest.size() - 2), days)) BadCriteria();
    c.value = Variant::FromDate(days);
  } else if (TextEquals(rest, u"NULL")) {
    c.value = Variant::Null();
  } else {
    // Numbers in criteria are written as source code writes them: "." is the decimal mark.
    auto number = InvariantTextToNumber(rest);
    if (!number) BadCriteria();
    c.value = Variant(*number);
  }
  if (c.op == FindOp::Like && !c.value.IsString()) BadCriteria();
  return c;
}

bool Matches(const Variant& cell, const Criteria& c) {
  if (c.value.IsNull()) {
    if (c.op == FindOp::Eq) return cell.IsNull();
    if (c.op == FindOp::Ne) return !cell.IsNull();
    return false;
  }
  if (cell.IsNull()) return false;
  if (c.op == FindOp::Like) {
    // "%" is the SQL spelling of "*"; the comparison ignores case, as the provider's does.
    String pattern = c.value.ToString();
    for (auto& ch : pattern) {
      if (ch == u'%') ch = u'*';
    }
    return Like(UCase(cell.ToString()), UCase(pattern));
  }
  std::optional<int> order;
  if (cell.IsString() && c.value.IsString()) {
    order = StrComp(cell.ToString(), c.value.ToString(), vbTextCompare);
  } else if (cell.IsString() || cell.Bytes() != nullptr) {
    // A text compared with a number: equal only when it reads as that number.
    if (!cell.IsString()) return c.op == FindOp::Ne;
    auto number = InvariantTextToNumber(cell.ToString());
    if (!number) return c.op == FindOp::Ne;
    order = Compare(Variant(*number), c.value);
  } else {
    try {
      order = Compare(cell, c.value);
    } catch (const RuntimeError&) {
      return c.op == FindOp::Ne;
    }
  }
  if (!order) return false;
  switch (c.op) {
    case FindOp::Eq: return *order == 0;
    case FindOp::Ne: return *order != 0;
    case FindOp::Lt: return *order < 0;
    case FindOp::Gt: return *order > 0;
    case FindOp::Le: return *order <= 0;
    case FindOp::Ge: return *order >= 0;
    case FindOp::Like: break;
  }
  return false;
}

void RequireNoArgs(CallKind kind, std::span<Variant> args) {
  if (kind == CallKind::Let || kind == CallKind::Set) Raise(kErrMemberNotSupported, kSource);
  if (!args.empty()) Raise(kErrWrongArgumentCount, kSource);
}

const Variant& Required(std::span<Variant> args, size_t i) {
  const Variant& v = ArgumentAt(args, i);
  if (v.IsMissing()) Raise(449, kSource);
  return v;
}

}  // namespace

// ---- Connection -------------------------------------------------------------------------------

Connection::~Connection() { Close(); }

void Connection::Open(StringView connectionString) {
  if (m_db != nullptr) Raise(adErrObjectOpen, kSource, u"Operation is not allowed when the object is open.");
  sqlite3* db = nullptr;
  std::string path = ToUtf8(connectionString);
  int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI, nullptr);
  if (rc != SQLITE_OK) {
    String message = db != nullptr ? FromUtf8(sqlite3_errmsg(db)) : String(u"cannot open the database");
    sqlite3_close(db);
    Raise(adErrProviderFailed, kSource, message);
  }
  m_db = db;
}

void Connection::Execute(StringView sql) {
  if (m_db == nullptr) Raise(adErrObjectClosed, kSource, u"Operation is not allowed when the object is closed.");
  char* error = nullptr;
  std::string text = ToUtf8(sql);
  if (sqlite3_exec(m_db, text.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    String message = FromUtf8(error != nullptr ? error : "statement failed");
    sqlite3_free(error);
    Raise(adErrProviderFailed, kSource, message);
  }
}

void Connection::Close() {
  if (m_db != nullptr) {
    // Statements are finalised by the recordsets as they read, so nothing stays prepared here.
    sqlite3_close_v2(m_db);
    m_db = nullptr;
  }
}

Variant Connection::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  if (TextEquals(name, u"Open")) {
    Open(Required(args, 0).ToString());
    return Variant();
  }
  if (TextEquals(name, u"Execute")) {
    Execute(Required(args, 0).ToString());
    return Variant();
  }
  if (TextEquals(name, u"Close")) {
    RequireNoArgs(kind, args);
    Close();
    return Variant();
  }
  if (TextEquals(name, u"State")) {
    RequireNoArgs(kind, args);
    return State();
  }
  return Object::Invoke(name, kind, args);
}

// ---- Field and Fields -------------------------------------------------------------------------

std::shared_ptr<Recordset> Field::Owner() const {
  auto owner = m_owner.lock();
  if (!owner) Raise(adErrObjectClosed, kSource, u"Operation is not allowed when the object is closed.");
  return owner;
}

String Field::Name() const { return Owner()->FieldName(m_index); }
Variant Field::Value() const { return Owner()->FieldValue(m_index); }
int32_t Field::Type() const { return Owner()->FieldType(m_index); }

Variant Field::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  if (name.empty() || TextEquals(name, u"Value")) {
    RequireNoArgs(kind, args);
    return Value();
  }
  if (TextEquals(name, u"Name")) {
    RequireNoArgs(kind, args);
    return Name();
  }
  if (TextEquals(name, u"Type")) {
    RequireNoArgs(kind, args);
    return Type();
  }
  return Object::Invoke(name, kind, args);
}

int32_t Fields::Count() const {
  auto owner = m_owner.lock();
  return owner ? owner->FieldCount() : 0;
}

std::shared_ptr<Field> Fields::Item(const Variant& indexOrName) const {
  auto owner = m_owner.lock();
  int32_t index = -1;
  if (owner) {
    const Variant value = indexOrName.Value();
    if (value.IsString()) {
      index = owner->FieldIndex(value.ToString());
    } else {
      index = value.ToLong();
      if (index >= owner->FieldCount()) index = -1;
    }
  }
  if (index < 0) {
    Raise(adErrItemNotFound, kSource, u"Item cannot be found in the collection corresponding to the requested name or ordinal.");
  }
  return std::make_shared<Field>(m_owner, index);
}

Variant Fields::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  if (name.empty() || TextEquals(name, u"Item")) {
    if (kind == CallKind::Let || kind == CallKind::Set) Raise(kErrMemberNotSupported, kSource);
    if (args.size() != 1) Raise(kErrWrongArgumentCount, kSource);
    return Item(args[0]);
  }
  if (TextEquals(name, u"Count")) {
    RequireNoArgs(kind, args);
    return Count();
  }
  return Object::Invoke(name, kind, args);
}

std::vector<Variant> Fields::EnumerateItems() {
  std::vector<Variant> items;
  int32_t n = Count();
  items.reserve(static_cast<size_t>(n));
  for (int32_t i = 0; i < n; ++i) items.emplace_back(std::make_shared<Field>(m_owner, i));
  return items;
}

// ---- Recordset --------------------------------------------------------------------------------

std::shared_ptr<Recordset> Recordset::Create() { return std::shared_ptr<Recordset>(new Recordset()); }

Recordset::~Recordset() = default;

void Recordset::RequireOpen() const {
  if (!m_open) Raise(adErrObjectClosed, kSource, u"Operation is not allowed when the object is closed.");
}

void Recordset::Open(StringView source, const Variant& activeConnection) {
  if (auto object = activeConnection.IsObject() ? activeConnection.Obj() : nullptr) {
    auto connection = std::dynamic_pointer_cast<Connection>(object);
    if (!connection) Raise(kErrTypeMismatch, kSource);
    Open(source, connection);
    return;
  }
  if (m_open) Raise(adErrObjectOpen, kSource, u"Operation is not allowed when the object is open.");
  auto connection = std::make_shared<Connection>();
  connection->Open(activeConnection.ToString());
  Open(source, connection);
}

void Recordset::Open(StringView source, const std::shared_ptr<Connection>& connection) {
  if (m_open) Raise(adErrObjectOpen, kSource, u"Operation is not allowed when the object is open.");
  if (!connection || connection->Handle() == nullptr) {
    Raise(adErrObjectClosed, kSource, u"Operation is not allowed when the object is closed.");
  }
  m_connection = connection;
  m_source = String(source);
  try {
    Run();
  } catch (...) {
    m_connection.reset();
    throw;
  }
  m_open = true;
}

void Recordset::Run() {
  sqlite3* db = m_connection->Handle();
  if (db == nullptr) Raise(adErrObjectClosed, kSource, u"Operation is not allowed when the object is closed.");
  sqlite3_stmt* stmt = nullptr;
  std::string sql = ToUtf8(m_source);
  if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &stmt, nullptr) != SQLITE_OK) {
    RaiseDatabase(db, u"cannot prepare the query");
  }
  // The statement is finalised on every way out, errors included.
  struct Finaliser {
    sqlite3_stmt* s;
    ~Finaliser() { sqlite3_finalize(s); }
  } finaliser{stmt};

  int columnCount = sqlite3_column_count(stmt);
  std::vector<Declared> declared(static_cast<size_t>(columnCount));
  std::vector<Column> columns(static_cast<size_t>(columnCount));
  for (int c = 0; c < columnCount; ++c) {
    declared[c] = ClassifyDeclaredType(sqlite3_column_decltype(stmt, c));
    columns[c].name = FromUtf8(sqlite3_column_name(stmt, c));
  }
  std::vector<Variant> values;
  int32_t rows = 0;
  for (;;) {
    int rc = sqlite3_step(stmt);
    if (rc == SQLITE_DONE) break;
    if (rc != SQLITE_ROW) RaiseDatabase(db, u"the query failed");
    for (int c = 0; c < columnCount; ++c) values.push_back(ReadColumn(stmt, c, declared[c]));
    ++rows;
  }
  for (int c = 0; c < columnCount; ++c) {
    // A type seen in the data only counts when it is not Null.
    Variant first;
    for (int32_t r = 0; r < rows; ++r) {
      const Variant& v = values[static_cast<size_t>(r) * columnCount + c];
      if (!v.IsNull()) {
        first = v;
        break;
      }
    }
    columns[c].type = FieldTypeOf(declared[c], sqlite3_column_decltype(stmt, c), first);
  }
  m_columns = std::move(columns);
  m_values = std::move(values);
  m_recordCount = rows;
  m_position = 0;
}

void Recordset::Requery() {
  RequireOpen();
  Run();
}

void Recordset::Close() {
  RequireOpen();
  m_open = false;
  m_columns.clear();
  m_values.clear();
  m_recordCount = 0;
  m_position = 0;
  m_connection.reset();
}

bool Recordset::EOF_() const {
  RequireOpen();
  return m_position >= m_recordCount;
}

bool Recordset::BOF() const {
  RequireOpen();
  return m_position < 0 || m_recordCount == 0;
}

int32_t Recordset::RecordCount() const {
  RequireOpen();
  return m_recordCount;
}

int32_t Recordset::AbsolutePosition() const {
  RequireOpen();
  return m_position >= 0 && m_position < m_recordCount ? m_position + 1 : -1;
}

void Recordset::MoveNext() {
  RequireOpen();
  if (m_position >= m_recordCount) {
    Raise(adErrNoCurrentRecord, kSource, u"Either BOF or EOF is True, or the current record has been deleted.");
  }
  ++m_position;
}

void Recordset::MovePrevious() {
  RequireOpen();
  if (m_position < 0 || m_recordCount == 0) {
    Raise(adErrNoCurrentRecord, kSource, u"Either BOF or EOF is True, or the current record has been deleted.");
  }
  --m_position;
}

void Recordset::MoveFirst() {
  RequireOpen();
  m_position = 0;
}

void Recordset::MoveLast() {
  RequireOpen();
  // On an empty recordset the last record is the end.
  m_position = m_recordCount > 0 ? m_recordCount - 1 : 0;
}

void Recordset::Find(StringView criteria, int32_t skipRecords, int32_t searchDirection) {
  RequireOpen();
  Criteria c = ParseCriteria(criteria);
  int32_t field = FieldIndex(c.field);
  if (field < 0) {
    Raise(adErrItemNotFound, kSource, u"Item cannot be found in the collection corresponding to the requested name or ordinal.");
  }
  int32_t step = searchDirection == adSearchBackward ? -1 : 1;
  // From BOF a forward search starts at the first record; from EOF a backward one at the last.
  int32_t start = m_position;
  if (start < 0) start = 0;
  if (start >= m_recordCount) start = m_recordCount - 1;
  int64_t at = static_cast<int64_t>(start) + static_cast<int64_t>(skipRecords) * step;
  const size_t columns = m_columns.size();
  for (; at >= 0 && at < m_recordCount; at += step) {
    if (Matches(m_values[static_cast<size_t>(at) * columns + field], c)) {
      m_position = static_cast<int32_t>(at);
      return;
    }
  }
  m_position = step > 0 ? m_recordCount : -1;
}

std::shared_ptr<Fields> Recordset::GetFields() {
  if (!m_fields) m_fields = std::make_shared<Fields>(std::static_pointer_cast<Recordset>(shared_from_this()));
  return m_fields;
}

int32_t Recordset::FieldCount() const { return static_cast<int32_t>(m_columns.size()); }

const String& Recordset::FieldName(int32_t index) const {
  RequireOpen();
  return m_columns.at(static_cast<size_t>(index)).name;
}

int32_t Recordset::FieldType(int32_t index) const {
  RequireOpen();
  return m_columns.at(static_cast<size_t>(index)).type;
}

const Variant& Recordset::FieldValue(int32_t index) const {
  RequireOpen();
  if (m_position < 0 || m_position >= m_recordCount) {
    Raise(adErrNoCurrentRecord, kSource, u"Either BOF or EOF is True, or the current record has been deleted.");
  }
  return m_values.at(static_cast<size_t>(m_position) * m_columns.size() + static_cast<size_t>(index));
}

int32_t Recordset::FieldIndex(StringView name) const {
  for (size_t i = 0; i < m_columns.size(); ++i) {
    if (TextEquals(m_columns[i].name, name)) return static_cast<int32_t>(i);
  }
  return -1;
}

Variant Recordset::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  if (TextEquals(name, u"EOF")) {
    RequireNoArgs(kind, args);
    return EOF_();
  }
  if (TextEquals(name, u"BOF")) {
    RequireNoArgs(kind, args);
    return BOF();
  }
  if (TextEquals(name, u"MoveNext")) {
    RequireNoArgs(kind, args);
    MoveNext();
    return Variant();
  }
  if (TextEquals(name, u"MovePrevious")) {
    RequireNoArgs(kind, args);
    MovePrevious();
    return Variant();
  }
  if (TextEquals(name, u"MoveFirst")) {
    RequireNoArgs(kind, args);
    MoveFirst();
    return Variant();
  }
  if (TextEquals(name, u"MoveLast")) {
    RequireNoArgs(kind, args);
    MoveLast();
    return Variant();
  }
  if (name.empty() || TextEquals(name, u"Fields")) {
    if (kind == CallKind::Let || kind == CallKind::Set) Raise(kErrMemberNotSupported, kSource);
    // rs.Fields(i) and rs(i) reach the field directly.
    if (!args.empty()) return GetFields()->Item(args[0]);
    return Variant(GetFields());
  }
  if (TextEquals(name, u"RecordCount")) {
    RequireNoArgs(kind, args);
    return RecordCount();
  }
  if (TextEquals(name, u"AbsolutePosition")) {
    RequireNoArgs(kind, args);
    return AbsolutePosition();
  }
  if (TextEquals(name, u"State")) {
    RequireNoArgs(kind, args);
    return State();
  }
  if (TextEquals(name, u"Open")) {
    Open(Required(args, 0).ToString(), Required(args, 1));
    return Variant();
  }
  if (TextEquals(name, u"Requery")) {
    Requery();
    return Variant();
  }
  if (TextEquals(name, u"Close")) {
    RequireNoArgs(kind, args);
    Close();
    return Variant();
  }
  if (TextEquals(name, u"Find")) {
    const Variant& skip = ArgumentAt(args, 1);
    const Variant& direction = ArgumentAt(args, 2);
    Find(Required(args, 0).ToString(), skip.IsMissing() ? 0 : skip.ToLong(),
         direction.IsMissing() ? adSearchForward : direction.ToLong());
    return Variant();
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::host
