// APITextEvents: completion from a recordset.
#include "entry/APITextEvents.h"

#include "host/Recordset.h"
#include "host/Strings.h"
#include "host/TextBox.h"

namespace mx::entry {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kDelete = 46;

// Line breaks cannot be part of a one-line criterion; they are dropped from the typed text.
String WithoutLineBreaks(StringView text) {
  String out;
  out.reserve(text.size());
  for (char16_t c : text) {
    if (c != u'\r' && c != u'\n') out += c;
  }
  return out;
}

// A field name as the criterion reader takes it: bracketed when it holds a blank.
String CriterionField(const String& field) {
  if (field.find(u' ') == String::npos && field.find(u'\t') == String::npos) return field;
  return u"[" + field + u"]";
}

}  // namespace

APITextEvents::~APITextEvents() {
  try {
    Texto_Finalizar();
  } catch (...) {
    // A recordset that fails to close is let go all the same.
  }
}

void APITextEvents::Texto_Inicializar(const host::Variant& CurrentDb, StringView TableName, StringView FieldName) {
  Texto_Finalizar();
  m_fields.clear();
  for (const String& part : host::Split(FieldName, u",")) {
    String name = host::Trim(part);
    if (!name.empty()) m_fields.push_back(std::move(name));
  }
  auto recordset = host::Recordset::Create();
  const String sql = u"SELECT DISTINCT " + String(FieldName) + u" FROM " + String(TableName) + u";";
  recordset->Open(sql, CurrentDb);
  m_recordset = std::move(recordset);
}

void APITextEvents::Texto_Verificar(int16_t xKey) { m_lastKeyDeletes = xKey == kBackspace || xKey == kDelete; }

String APITextEvents::EscapeLikeText(StringView text) {
  String out;
  out.reserve(text.size() + 8);
  for (char16_t c : WithoutLineBreaks(text)) {
    switch (c) {
      case u'\'': out += u"''"; break;
      case u'*': out += u"[*]"; break;
      case u'?': out += u"[?]"; break;
      case u'#': out += u"[#]"; break;
      case u'[': out += u"[[]"; break;
      case u'%': out += u'?'; break;
      default: out += c; break;
    }
  }
  return out;
}

bool APITextEvents::FindPrefix(const String& field, StringView typed, String& value) {
  host::Recordset& rs = *m_recordset;
  const int32_t index = rs.FieldIndex(field);
  if (index < 0) return false;
  const String criteria = CriterionField(field) + u" like '" + EscapeLikeText(typed) + u"*'";
  const String wanted = host::UCase(typed);
  const int32_t length = host::Len(typed);
  // Every search starts at the first row: the rows are in no particular order, and a search
  // from where the last one stopped would miss values before it.
  rs.MoveFirst();
  rs.Find(criteria, 0);
  while (!rs.BOF() && !rs.EOF_()) {
    const host::Variant& cell = rs.FieldValue(index);
    String text = cell.ToString();
    // A "%" was searched as any one character: only a row with the "%" itself is taken.
    if (host::UCase(host::Left(text, length)) == wanted) {
      value = std::move(text);
      return true;
    }
    rs.Find(criteria, 1);
  }
  return false;
}

void APITextEvents::Texto_AutoCompletar(host::TextBox& xControl) {
  if (m_completing || m_lastKeyDeletes || !m_recordset || m_recordset->State() == host::adStateClosed) return;
  const String typed = WithoutLineBreaks(xControl.Text());
  // An empty box is not completed: every value would begin with nothing.
  if (typed.empty()) return;
  const String selected = xControl.SelText();
  for (const String& field : m_fields) {
    String value;
    if (!FindPrefix(field, typed, value)) continue;
    m_completing = true;
    struct Reset {
      bool& flag;
      ~Reset() { flag = false; }
    } reset{m_completing};
    if (value != xControl.Text()) xControl.Text(value);
    // The completion stays selected after what was typed, so the next key types over it.
    int32_t start = host::Len(typed);
    if (!selected.empty()) {
      const int32_t at = host::InStr(value, selected);
      if (at > 0) start = at - 1;
    }
    xControl.SelStart(start);
    xControl.SelLength(host::Len(value) - start);
    return;
  }
  // Nothing found in any field: the next search starts from the top again.
  if (m_recordset->RecordCount() > 0) m_recordset->MoveFirst();
}

void APITextEvents::Texto_AtualizarDados() {
  if (m_recordset && m_recordset->State() != host::adStateClosed) m_recordset->Requery();
}

void APITextEvents::Texto_Finalizar() {
  if (!m_recordset) return;
  if (m_recordset->State() != host::adStateClosed) m_recordset->Close();
  m_recordset.reset();
}

}  // namespace mx::entry
