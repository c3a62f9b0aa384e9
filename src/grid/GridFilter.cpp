// Finding and filtering rows by the text of one column.
//
// Both walk display rows from a starting row and compare the cell text with the search text by
// one GRID_SEARCH_MODE rule. Comparisons are binary on UTF-16 units; "without case" means both
// sides upper-cased first. Filtering writes only the rows' visible field.
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

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

char16_t Upper(char16_t c) {
  return c < 0x80 ? (c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c) : host::UpperChar(c);
}

// Compares a cell text, upper-cased on the fly when asked, with the (already prepared) search
// text; negative, zero or positive as binary comparison would give.
int CompareFolded(host::StringView cell, host::StringView text, bool upper) {
  const size_t n = std::min(cell.size(), text.size());
  for (size_t i = 0; i < n; ++i) {
    const char16_t c = upper ? Upper(cell[i]) : cell[i];
    if (c != text[i]) return c < text[i] ? -1 : 1;
  }
  return cell.size() < text.size() ? -1 : cell.size() > text.size() ? 1 : 0;
}

// Copies a cell text into a buffer that is reused from row to row, stripped of accents and
// upper-cased as asked.
void CellInto(host::String& out, host::StringView in, bool upper, bool strip) {
  out.assign(in);
  // Every accented letter the utility knows lies at or above U+00C0: plain texts skip it.
  if (strip && std::any_of(out.begin(), out.end(), [](char16_t c) { return c >= 0xC0; }))
    out = utility::MX().RemoveAccents(out);
  if (upper)
    for (char16_t& c : out) c = Upper(c);
}

// One cell against the search. Only Like needs the whole cell prepared; the other modes fold
// just the characters they look at, so that a filter over a million rows copies nothing.
bool Matches(int32_t mode, host::StringView cell, const Needle& search, bool upper, bool strip,
             host::String& buffer) {
  const host::StringView text = search.text;
  switch (mode) {
    case Search_Equal:
      return cell.size() == text.size() && CompareFolded(cell, text, upper) == 0;
    case Search_GreaterEqual:
      return CompareFolded(cell, text, upper) >= 0;
    case Search_Like:
      CellInto(buffer, cell, upper, strip);
      return host::Like(buffer, search.pattern);
    case Search_Navigate:
      // What incremental typing wants: the first row at or after the text that still starts
      // with the same character.
      return !cell.empty() && !text.empty() && (upper ? Upper(cell.front()) : cell.front()) == text.front() &&
             CompareFolded(cell, text, upper) >= 0;
    case Search_BeginsWith:
      // Left(cell, Len(text)) = text: a shorter cell cannot equal it.
      return cell.size() >= text.size() && CompareFolded(cell.substr(0, text.size()), text, upper) == 0;
    case Search_EndsWith:
      return cell.size() >= text.size() && CompareFolded(cell.substr(cell.size() - text.size()), text, upper) == 0;
    default:
      return false;
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
    const host::StringView raw = StoredRow(m_rowOrder[static_cast<size_t>(r)]).cells[storage].text.View();
    if (Matches(SearchMode, raw, text, !MatchCase, false, cell)) return r;
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

  // Rows are visited in storage order, the order they lie in memory: after a sort the display
  // order jumps across the whole table and every row would be a cache miss. The rows taking
  // part are those at display positions from startingRow on.
  std::vector<uint8_t> inRange;
  if (startingRow > 0) {
    inRange.assign(static_cast<size_t>(m_lastRow) + 1, 0);
    for (int32_t r = startingRow; r <= m_lastRow; ++r) inRange[static_cast<size_t>(m_rowOrder[static_cast<size_t>(r)])] = 1;
  }
  host::String cell;
  const auto ahead = static_cast<int32_t>(kCellsAhead);
  for (int32_t s = 0; s <= m_lastRow; ++s) {
    if (s + ahead <= m_lastRow) PrefetchCell(s + ahead, storage);
    if (!inRange.empty() && inRange[static_cast<size_t>(s)] == 0) continue;
    GridRow& row = StoredRow(s);
    row.visible = Matches(mode, row.cells[storage].text.View(), search, !matchCase, like, cell);
  }
  int32_t firstShown = -1;
  for (int32_t r = startingRow; r <= m_lastRow && firstShown == -1; ++r)
    if (StoredRow(m_rowOrder[static_cast<size_t>(r)]).visible) firstShown = r;
  if (firstShown == -1) {
    SelectedClearAll();
    OnSetCurrentRow(-1, false);
  } else {
    OnSetCurrentRow(firstShown, false);
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
  OnSetCurrentRow(current, false);
  RepaintIfRedraw();
}

}  // namespace mx::grid
