#include "imagelist/KeyIndex.h"

#include "host/Strings.h"

namespace mx::imagelist {

KeySearch KeyIndex::Search(host::StringView key) const {
  KeySearch r;
  if (m_entries.empty()) return r;
  size_t low = 0, high = m_entries.size();  // half-open [low, high)
  size_t mid = 0;
  int32_t c = 0;
  while (low < high) {
    mid = low + (high - low) / 2;
    c = host::StrComp(m_entries[mid].key, key, host::vbTextCompare);
    if (c == 0) {
      r.found = true;
      r.position = mid;
      return r;
    }
    if (c > 0)
      low = mid + 1;
    else
      high = mid;
  }
  r.position = c > 0 ? mid + 1 : mid;
  return r;
}

uint32_t KeyIndex::Find(host::StringView key) const {
  KeySearch s = Search(key);
  return s.found ? m_entries[s.position].id : 0;
}

void KeyIndex::Insert(size_t position, host::String key, uint32_t id) {
  if (position > m_entries.size()) position = m_entries.size();
  m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(position), KeyEntry{std::move(key), id});
}

bool KeyIndex::Remove(host::StringView key) {
  KeySearch s = Search(key);
  if (!s.found) return false;
  m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(s.position));
  return true;
}

}  // namespace mx::imagelist
