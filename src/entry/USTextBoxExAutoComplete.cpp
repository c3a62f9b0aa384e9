// USTextBoxEx: completion of the typed text from a database column.
#include "controls/ControlSupport.h"
#include "entry/APITextEvents.h"
#include "entry/ShellAutoComplete.h"
#include "entry/USTextBoxEx.h"

namespace mx::entry {

void USTextBoxEx::AutoCompleteEx(uint32_t Flags) {
  if (m_shellComplete) m_shellComplete->Flags(Flags);
  else m_shellComplete = std::make_unique<ShellAutoComplete>(*m_inner, Flags);
}

void USTextBoxEx::InitializeAutoComplete(const host::Variant& CurrentDb, StringView TableName,
                                         StringView FieldName) {
  FinalizeAutoComplete();
  auto events = std::make_unique<APITextEvents>();
  // A query that fails raises to the caller and leaves the box without completion.
  events->Texto_Inicializar(CurrentDb, TableName, FieldName);
  m_textEvents = std::move(events);
}

void USTextBoxEx::FinalizeAutoComplete() {
  if (!m_textEvents) return;
  std::unique_ptr<APITextEvents> events = std::move(m_textEvents);
  controls::detail::Step([&] { events->Texto_Finalizar(); });
}

}  // namespace mx::entry
