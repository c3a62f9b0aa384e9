#pragma once
// The lists example: a form file with a USListBox filled with a few thousand towns from an
// SQLite database, each with an icon of its region, and written as a picture. What the demo
// and the documentation show of the list.
#include <ostream>
#include <string>

namespace mx::entry {

// Loads the form, fills its first list from the "cities" table of the database (ordered by
// state, then name; a separator line where the state changes, the region's icon, the
// population as the tooltip, ItemData the row id), makes a town current, shows the form
// headless and saves its window as a PNG. Returns 0, or 1 with a message on err.
int RenderListsExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                       std::ostream& err);

}  // namespace mx::entry
