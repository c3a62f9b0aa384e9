#pragma once
// The lists example: a form file with a USListBox filled with a few thousand towns from an
// SQLite database, each with an icon of its region, and written as a picture. What the demo
// and the documentation show of the list.
#include <memory>
#include <ostream>
#include <string>

#include "host/String.h"

namespace mx::host {
class Connection;
}  // namespace mx::host

namespace mx::controls {
class USImageList;
}  // namespace mx::controls

namespace mx::entry {

// Loads the form, fills its first list from the "cities" table of the database (ordered by
// state, then name; a separator line where the state changes, the region's icon, the
// population as the tooltip, ItemData the row id), makes a town current, shows the form
// headless and saves its window as a PNG. Returns 0, or 1 with a message on err.
int RenderListsExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                       std::ostream& err);

// The example's combo of states, filled from the "states" table of the open database (by name;
// ItemData the row id, ItemTag the two letters, the region's icon from `icons`) with the state
// `current` selected. When `towns` is given, choosing a state makes its first town current there.
class USComboBox;
class USListBox;
void FillStatesCombo(USComboBox& combo, const std::shared_ptr<host::Connection>& connection,
                     const std::shared_ptr<controls::USImageList>& icons, host::StringView current,
                     const std::shared_ptr<USListBox>& towns = nullptr);

}  // namespace mx::entry
