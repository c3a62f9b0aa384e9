// Finding and filtering rows by the text of one column.
//
// Both walk display rows from a starting row and compare the cell text with the search text by
// one GRID_SEARCH_MODE rule. Comparisons are binary on UTF-16 units; "without case" means both
// sides upper-cased first. Filtering writes only the rows' visible field.
#include <cstdint>
#include <utility>

#include "grid/GridData.h"
#include "host/Like.h"
#include "host/Strings.h"
#include "utility/MX.h"

namespace mx::grid {

namespace {

// The search text with the Like pattern made once per search: "*" + text + "*".
struct Needle {
  host::String text;
  host::String pattern;
  explicit Needle(host::String t) : text(std::move(t)), pattern(u"*" + text + u"*") {}
};

bool Matches(int32_t mode, host::StringView cell, const Needle& search) {
  const host::StringView text = search.text;
  switch (mode) {
    case Search_Equal:
      return cell == text;
    case Search_GreaterEqual:
      return cell >= text;
    case Search_Like:
      return host::Like(cell, search.pattern);
    case Search_Navigate:
      // What incremental typing wants: the first row at or after the text that still starts
      // with the same character.
      return !cell.empty() && cell >= text && !text.empty() && cell.front() == text.front();
    case Search_BeginsWith:
      return cell.substr(0, text.size()) == text;
    case Search_EndsWith:
      return cell.size() >= text.size() && cell.substr(cell.size() - text.size()) == text;
    default:
      return false;
  }
}

// Copies a cell text into a buffer that is reused from row to row, upper-cased and stripped of
// accents as asked.
void CellInto(host::String& out, host::StringView in, bool upper, bool strip) {
  out.assign(in);
  if (strip) out = utility::MX().RemoveAccents(out);
  if (!upper) return;
  for (char16_t& c : out) {
    c = c < 0x80 ? (c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c) : host::UpperChar(c);
  }
}

}  // namespace

int32_t GridData::FindItem(host::StringView SearchText, int32_t SearchColumn, int32_t SearchMode, bool MatchCase,
                           int32_t StartingRow) {
  if (m_lastRow < 0 || SearchText.empty()) return -1;
  if (StartingRow < 0 || StartingRow > m_lastRow) StartingRow = 0;
  int32_t col = SearchColumn < 0 ? (m_col < 0 ? 0 : m_col) : SearchColumn;
  if (!ValidCol(col)) return -1;
  const size_t storage = static_cast<size_t>(StorageCol(col));

  const Needle text(MatchCase ? host::String(SearchText) : host::UCase(SearchText));
  host::String cell;
  for (int32_t r = StartingRow; r <= m_lastRow; ++r) {
    CellInto(cell, StoredRow(m_rowOrder[static_cast<size_t>(r)]).cells[storage].text.View(), !MatchCase, false);
    if (Matches(SearchMode, cell, text)) return r;
  }
  return -1;
}

void GridData::FilterOn(host::StringView FilterText, int32_t SearchColumn, int32_t SearchMode, bool MatchCase,
                        int32_t StartingRow) {
  ApplyFilter(FilterText, SearchColumn, SearchMode, MatchCase, StartingRow);
}

void GridData::FilterOnEx(host::StringView FilterText, int32_t SearchColumn, int32_t SearchMode, int32_t StartingRow) {
  ApplyFilter(FilterText, SearchColumn, SearchMode, false, StartingRow);
}

void GridData::ApplyFilter(host::StringView filterText, int32_t searchColumn, int32_t mode, bool matchCase,
                           int32_t startingRow) {
  if (m_lastRow < 0) return;
  if (startingRow < 0 || startingRow > m_lastRow) startingRow = 0;
  int32_t col = searchColumn < 0 ? (m_col < 0 ? 0 : m_col) : searchColumn;
  if (!ValidCol(col)) return;
  const size_t storage = static_cast<size_t>(StorageCol(col));

  // In Like mode the text is trimmed and the cells lose their accents, so that "joao" finds
  // "João".
  const bool like = mode == Search_Like;
  host::String text = like ? host::Trim(filterText) : host::String(filterText);
  if (!matchCase) text = host::UCase(text);
  const Needle search(std::move(text));

  int32_t firstShown = -1;
  host::String cell;
  for (int32_t r = startingRow; r <= m_lastRow; ++r) {
    GridRow& row = StoredRow(m_rowOrder[static_cast<size_t>(r)]);
    CellInto(cell, row.cells[storage].text.View(), !matchCase, like);
    row.visible = Matches(mode, cell, search);
    if (row.visible && firstShown == -1) firstShown = r;
  }
  if (firstShown == -1) {
    SelectedClearAll();
    OnSetCurrentRow(-1);
  } else {
    OnSetCurrentRow(firstShown);
  }
  RepaintIfRedraw();
}

void GridData::FilterOff(int32_t StartingRow) {
  if (m_lastRow < 0) return;
  if (StartingRow < 0) StartingRow = 0;
  bool changed = false;
  for (int32_t r = StartingRow; r <= m_lastRow; ++r) {
    GridRow& row = StoredRow(m_rowOrder[static_cast<size_t>(r)]);
    if (!row.visible) {
      row.visible = true;
      changed = true;
    }
  }
  if (!changed) return;
  SelectedClearAll();
  // The current cell comes back where the filter left none: the first row that can hold it.
  int32_t current = m_row;
  if (current < 0 || current > m_lastRow) {
    current = -1;
    for (int32_t r = 0; r <= m_lastRow && current == -1; ++r) {
      const GridRow& row = StoredRow(m_rowOrder[static_cast<size_t>(r)]);
      if (row.visible && (row.flags & kRowLocked) == 0) current = r;
    }
  }
  OnSetCurrentRow(current);
  RepaintIfRedraw();
}

}  // namespace mx::grid
