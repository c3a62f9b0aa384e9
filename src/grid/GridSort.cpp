// Sorting the grid's rows: the public Sort, the header click's cycle and the secondary pass.
//
// Only rowOrder moves. A sort gathers, for the display rows it covers, one item per row holding
// the row's sort key and its storage row, runs the Hoare quicksort over those items and writes
// the storage rows back into rowOrder. Keys are computed once per row per sort (numbers, dates
// and upper-cased texts), never per comparison: the order comes out the same as comparing the
// cell texts each time, because the key is a pure function of the cell.
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "grid/GridData.h"
#include "grid/GridNumeric.h"
#include "host/Conversion.h"
#include "host/DateTime.h"
#include "host/Err.h"
#include "host/Strings.h"

namespace mx::grid {

namespace {

// A date text that is not a date counts as 9999-01-31 23:59:59, so such rows end up last when
// ascending and first when descending.
constexpr double kNotADate = 2958131.0 + 86399.0 / 86400.0;

// Public GRID_SORT_TYPE to the stored state and back: the two directions are swapped.
int16_t StateFromPublic(int32_t type) { return type == Sort_Ascending ? 2 : type == Sort_Descending ? 1 : 0; }
int32_t PublicFromState(int16_t state) { return state == 2 ? Sort_Ascending : state == 1 ? Sort_Descending : Sort_Normal; }
// The click cycle on stored states: none, ascending, descending, none.
int16_t NextState(int16_t state) { return state == 0 ? 2 : state == 2 ? 1 : 0; }

struct NumberItem {
  double key;
  double pivot;  // the value the row gives when it is the pivot (differs only for booleans)
  int32_t row;
};

struct TextItem {
  const char16_t* text;
  uint32_t length;
  int32_t row;
};

bool TextLess(const TextItem& a, const TextItem& b) {
  // Binary compare of UTF-16 units, a prefix first.
  return host::StringView(a.text, a.length) < host::StringView(b.text, b.length);
}

// The classic Hoare scheme: the pivot is the item at (left + right) / 2; i rises from left while
// its item sorts before the pivot, j falls from right while the pivot sorts before its item; an
// i <= j swaps and moves both; the partition ends when i passes j, and both sides are sorted
// again. The larger side is handled by the loop rather than by recursion, so the stack stays
// shallow on any input; the sides are disjoint, so the order of the work does not change the
// result. The bounds on i and j never bind while the pivot is one of the items; they keep a pivot
// value that is not (a boolean pivot read from its text) from running off the range.
template <typename Item, typename PivotOf, typename Before>
void HoareSort(Item* items, int32_t left, int32_t right, PivotOf pivotOf, Before before) {
  while (left < right) {
    const auto pivot = pivotOf(items[(left + right) / 2]);
    int32_t i = left, j = right;
    while (i <= j) {
      while (i < right && before(items[i], pivot)) ++i;
      while (j > left && before(pivot, items[j])) --j;
      if (i <= j) {
        std::swap(items[i], items[j]);
        ++i;
        --j;
      }
    }
    if (j - left < right - i) {
      if (left < j) HoareSort(items, left, j, pivotOf, before);
      left = i;
    } else {
      if (i < right) HoareSort(items, i, right, pivotOf, before);
      right = j;
    }
  }
}

// The Boolean conversion of a cell text as the pivot reads it; a text that does not convert
// leaves the row's check bit as its value.
double BooleanOfText(host::StringView text, bool checked) {
  host::String t = host::Trim(text);
  if (t.empty()) return checked ? 1 : 0;
  if (host::FoldCase(t) == u"TRUE") return 1;
  if (host::FoldCase(t) == u"FALSE") return 0;
  double v = 0;
  if (host::ParseNumber(t, v) == host::NumberParse::Ok) return v != 0 ? 1 : 0;
  return checked ? 1 : 0;
}

}  // namespace

int32_t GridData::DisplayColOf(int32_t storageCol) const {
  for (size_t i = 0; i < m_colOrder.size(); ++i)
    if (m_colOrder[i] == storageCol) return static_cast<int32_t>(i);
  return -1;
}

int16_t GridData::ColSortState(int32_t xCol) const {
  return ValidCol(xCol) ? m_columns[static_cast<size_t>(StorageCol(xCol))].sortState : 0;
}

void GridData::Sort(int32_t vCol1, int32_t vCol1SortType, int32_t vCol2, int32_t vCol2SortType) {
  if (m_lastRow < 0) return;
  // A column past the table is the host's "Subscript out of range".
  auto storageOf = [this](int32_t col) {
    if (col == -1) return -1;
    if (!ValidCol(col)) host::Raise(host::kErrSubscriptOutOfRange, u"USFlexGrid");
    return StorageCol(col);
  };
  const int32_t col1 = storageOf(vCol1);
  const int32_t col2 = storageOf(vCol2);
  SortStorage(col1, vCol1SortType, col2, vCol2SortType, col2 != -1);
}

void GridData::SortStorage(int32_t col1, int32_t type1, int32_t col2, int32_t type2, bool col2Given) {
  if (m_lastRow < 0) return;
  if (!OnSortCloseEditor()) return;

  if (col1 != -1) m_sortCol1 = col1;
  if (col2Given) m_sortCol2 = col2;
  if (m_sortCol1 == -1 && m_sortCol2 != -1) {
    m_sortCol1 = m_sortCol2;
    m_sortCol2 = -1;
  }
  if (m_sortCol1 == m_sortCol2) m_sortCol2 = -1;

  int16_t state1 = 0;
  if (m_sortCol1 != -1) {
    int16_t& s1 = m_columns[static_cast<size_t>(m_sortCol1)].sortState;
    s1 = type1 == -1 ? NextState(s1) : StateFromPublic(type1);
    state1 = s1;
    if (m_sortCol2 != -1) {
      int16_t& s2 = m_columns[static_cast<size_t>(m_sortCol2)].sortState;
      s2 = type2 == -1 ? s1 : StateFromPublic(type2);
    }
  }

  const int32_t current = m_row >= 0 && m_row <= m_lastRow ? m_rowOrder[static_cast<size_t>(m_row)] : -1;

  if (state1 != 0) {
    SortRange(0, m_lastRow, m_sortCol1, state1);
    if (m_sortCol2 != -1) {
      // Secondary pass: each run of two or more rows whose primary texts are equal is sorted on
      // the second column. The value of a boolean column is its check bit, not its (empty) text.
      const int16_t state2 = m_columns[static_cast<size_t>(m_sortCol2)].sortState;
      const bool boolean = m_columns[static_cast<size_t>(m_sortCol1)].dataType == TypeBoolean;
      auto sameKey = [&](int32_t a, int32_t b) {
        const GridCell& ca = StoredRow(a).cells[static_cast<size_t>(m_sortCol1)];
        const GridCell& cb = StoredRow(b).cells[static_cast<size_t>(m_sortCol1)];
        if (boolean) return ((ca.flags ^ cb.flags) & kCellChecked) == 0;
        return ca.text.View() == cb.text.View();
      };
      int32_t runStart = 0;
      for (int32_t r = 1; r <= m_lastRow + 1; ++r) {
        if (r <= m_lastRow && sameKey(m_rowOrder[static_cast<size_t>(r - 1)], m_rowOrder[static_cast<size_t>(r)]))
          continue;
        if (r - 1 > runStart && state2 != 0) SortRange(runStart, r - 1, m_sortCol2, state2);
        runStart = r;
      }
    }
  } else {
    for (int32_t r = 0; r <= m_lastRow; ++r) m_rowOrder[static_cast<size_t>(r)] = r;
    m_sortCol1 = -1;
    m_sortCol2 = -1;
  }

  if (current != -1) {
    const auto at = std::find(m_rowOrder.begin(), m_rowOrder.begin() + m_lastRow + 1, current);
    OnSetCurrentRow(static_cast<int32_t>(at - m_rowOrder.begin()), true);
  }
  RepaintIfRedraw();
  SortComplete();
}

void GridData::SortRange(int32_t first, int32_t last, int32_t storageCol, int16_t state) {
  if (last <= first) return;
  const GridColumn& column = m_columns[static_cast<size_t>(storageCol)];
  const bool descending = state == 1;
  const size_t count = static_cast<size_t>(last - first + 1);
  const size_t c = static_cast<size_t>(storageCol);

  if (column.dataType == TypeNumeric || column.dataType == TypeDate || column.dataType == TypeBoolean) {
    std::vector<NumberItem> items(count);
    for (size_t k = 0; k < count; ++k) {
      const int32_t row = m_rowOrder[static_cast<size_t>(first) + k];
      const GridCell& cell = StoredRow(row).cells[c];
      double key = 0, pivot = 0;
      if (column.dataType == TypeNumeric) {
        key = pivot = GridNumericValue(cell.text.View());
      } else if (column.dataType == TypeDate) {
        if (!host::TryParseDate(cell.text.View(), key)) key = kNotADate;
        pivot = key;
      } else {
        const bool checked = (cell.flags & kCellChecked) != 0;
        key = checked ? 1 : 0;
        pivot = BooleanOfText(cell.text.View(), checked);
      }
      items[k] = {key, pivot, row};
    }
    auto pivotOf = [](const NumberItem& it) { return it.pivot; };
    const int32_t hi = static_cast<int32_t>(count) - 1;
    // Mixed comparisons: an item against the pivot value and the pivot value against an item.
    struct Ascending {
      bool operator()(const NumberItem& a, double p) const { return a.key < p; }
      bool operator()(double p, const NumberItem& b) const { return p < b.key; }
    };
    struct Descending {
      bool operator()(const NumberItem& a, double p) const { return a.key > p; }
      bool operator()(double p, const NumberItem& b) const { return p > b.key; }
    };
    if (descending) HoareSort(items.data(), 0, hi, pivotOf, Descending{});
    else HoareSort(items.data(), 0, hi, pivotOf, Ascending{});
    for (size_t k = 0; k < count; ++k) m_rowOrder[static_cast<size_t>(first) + k] = items[k].row;
    return;
  }

  // Every other type, TypeCustom included, compares the upper-cased text in binary. The folded
  // texts go into one buffer, so a sort allocates twice whatever the row count.
  size_t total = 0;
  for (size_t k = 0; k < count; ++k)
    total += StoredRow(m_rowOrder[static_cast<size_t>(first) + k]).cells[c].text.Size();
  std::vector<char16_t> folded(total);
  std::vector<TextItem> items(count);
  size_t at = 0;
  for (size_t k = 0; k < count; ++k) {
    const int32_t row = m_rowOrder[static_cast<size_t>(first) + k];
    const host::StringView text = StoredRow(row).cells[c].text.View();
    char16_t* out = folded.data() + at;
    for (size_t i = 0; i < text.size(); ++i) {
      const char16_t ch = text[i];
      out[i] = ch < 0x80 ? (ch >= u'a' && ch <= u'z' ? static_cast<char16_t>(ch - 32) : ch) : host::UpperChar(ch);
    }
    items[k] = {out, static_cast<uint32_t>(text.size()), row};
    at += text.size();
  }
  auto pivotOf = [](const TextItem& it) { return it; };
  const int32_t hi = static_cast<int32_t>(count) - 1;
  if (descending) HoareSort(items.data(), 0, hi, pivotOf, [](const TextItem& a, const TextItem& b) { return TextLess(b, a); });
  else HoareSort(items.data(), 0, hi, pivotOf, TextLess);
  for (size_t k = 0; k < count; ++k) m_rowOrder[static_cast<size_t>(first) + k] = items[k].row;
}

void GridData::SortByHeaderClick(int32_t displayCol, bool shift) {
  if (m_lastRow < 0 || !ValidCol(displayCol)) return;
  const int32_t storage = StorageCol(displayCol);
  if (shift && m_sortCol1 != -1 && storage != m_sortCol1) {
    // The secondary column steps through its own cycle under the primary sort as it stands.
    const int16_t next = NextState(m_columns[static_cast<size_t>(storage)].sortState);
    const int32_t type1 = PublicFromState(m_columns[static_cast<size_t>(m_sortCol1)].sortState);
    if (next == 0) {
      m_columns[static_cast<size_t>(storage)].sortState = 0;
      m_sortCol2 = -1;
      SortStorage(m_sortCol1, type1, -1, -1, false);
    } else {
      SortStorage(m_sortCol1, type1, storage, PublicFromState(next), true);
    }
    return;
  }
  if (storage != m_sortCol1) m_sortCol2 = -1;
  // A column that kept a state from an earlier sort goes on from there; a fresh one starts at
  // ascending.
  SortStorage(storage, -1, -1, -1, false);
}

void GridData::ReapplySortedColumns() {
  if (!m_PreserveSortedColumns) {
    ForgetSort();
    return;
  }
  if (m_sortCol1 == -1 || m_lastRow < 0) return;
  const int32_t type1 = PublicFromState(m_columns[static_cast<size_t>(m_sortCol1)].sortState);
  const int32_t type2 = m_sortCol2 == -1 ? -1 : PublicFromState(m_columns[static_cast<size_t>(m_sortCol2)].sortState);
  SortStorage(m_sortCol1, type1, m_sortCol2, type2, m_sortCol2 != -1);
}

}  // namespace mx::grid
