#pragma once
// APITextEvents: completion of a text box from a column of a database table. Texto_Inicializar
// opens "SELECT DISTINCT <fields> FROM <table>" once; after every typed change,
// Texto_AutoCompletar finds the first value that begins with the typed text, puts it into the
// box and selects what it added, so that the next typed character replaces the suggestion.
// A Backspace or Delete (reported through Texto_Verificar) never completes: the user is taking
// text away, and completing again would put back what was just removed.
//
// The public procedure names are Portuguese, as the library's users know them.
#include <cstdint>
#include <memory>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {
class Recordset;
class TextBox;
}  // namespace mx::host

namespace mx::entry {

using host::String;
using host::StringView;

class APITextEvents {
 public:
  APITextEvents() = default;
  ~APITextEvents();
  APITextEvents(const APITextEvents&) = delete;
  APITextEvents& operator=(const APITextEvents&) = delete;

  // CurrentDb is an open Connection object or the name of a database file. FieldName may list
  // several fields separated by commas: each is tried in turn. Raises the recordset's error
  // when the query cannot run (no such table or field); the object then holds no recordset.
  void Texto_Inicializar(const host::Variant& CurrentDb, StringView TableName, StringView FieldName);
  // Notes whether the key going down takes text away (Backspace 8, Delete 46).
  void Texto_Verificar(int16_t xKey);
  // Completes the box's text from the data, unless the last key was a deletion.
  void Texto_AutoCompletar(host::TextBox& xControl);
  // Runs the query again, so that rows added since are offered.
  void Texto_AtualizarDados();
  // Closes the recordset when it is open and lets it go.
  void Texto_Finalizar();

  // The typed text as the body of a LIKE pattern in a criterion between single quotes: a quote
  // doubled, the pattern characters ("*", "?", "#", "[") bracketed so that each matches itself,
  // line breaks removed. "%", which the recordset reads as "*" anywhere in a pattern, becomes
  // "?" (any one character); a match is then checked against the text itself.
  [[nodiscard]] static String EscapeLikeText(StringView text);

  [[nodiscard]] bool LastKeyDeletes() const { return m_lastKeyDeletes; }
  [[nodiscard]] const std::shared_ptr<host::Recordset>& Recordset() const { return m_recordset; }

 private:
  // The first value of `field` that begins with `typed` (ignoring case), or nothing.
  [[nodiscard]] bool FindPrefix(const String& field, StringView typed, String& value);

  std::shared_ptr<host::Recordset> m_recordset;
  std::vector<String> m_fields;
  bool m_lastKeyDeletes = false;
  // Setting the completed text raises the box's Change again; that change is ours, not typed.
  bool m_completing = false;
};

}  // namespace mx::entry
