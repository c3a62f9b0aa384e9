#pragma once
// The grid example: a form file with one USFlexGrid, filled from an SQLite database of orders
// and written as a picture. What the demo and the documentation show of the grid.
#include <ostream>
#include <string>

namespace mx::grid {

// Loads the form (the grid's columns come from its HeaderFormatString), fills the first grid
// from the "orders" table of the database, turns on the totals of the numeric columns, shows
// the form headless and saves its window as a PNG. Returns 0, or 1 with a message on err.
int RenderGridExample(const std::string& formPath, const std::string& dbPath, const std::string& pngPath,
                      std::ostream& err);

}  // namespace mx::grid
