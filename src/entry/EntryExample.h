#pragma once
// The entry example: a form of text boxes (a date mask, a CPF mask, a quantity, an amount, a
// name in capitals, a required e-mail) and a town field that completes what is typed from an
// SQLite database of towns. The form alone cannot open the database, so the completion is wired
// here, as a form's code would do it in its Load.
#include <memory>
#include <ostream>
#include <string>

#include "host/String.h"

namespace mx::host {
class Form;
}  // namespace mx::host

namespace mx::entry {

// Wires the completion of the form's "txtCity" from the "nome" field of the database's
// "cidades" table. Raises when the form has no such box or the query cannot run.
void WireEntryCompletion(host::Form& form, const std::string& dbPath);

// Loads the form, wires the completion, shows the form headless, types a sample into each box
// (the town field shows a completion selected after the typed text) and saves the window as a
// PNG. Returns 0, or 1 with a message on err.
int RenderEntryExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                       std::ostream& err);

}  // namespace mx::entry
