#pragma once
// A key table kept in descending order under case-insensitive text comparison, searched by
// bisection. Each entry pairs a key with the object id of its owner.
//
//   position:  1       2       3
//   key:      "zeta"  "Beta"  "alpha"        ("ab" and "AB" are the same key)
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::imagelist {

struct KeyEntry {
  host::String key;
  uint32_t id = 0;
};

struct KeySearch {
  bool found = false;
  size_t position = 0;  // 0-based: where the key is, or where it would be inserted
};

class KeyIndex {
 public:
  // Bisection: an entry that compares at or above the key moves the search down the table (to
  // smaller keys); when the key is missing, the last probe is the insertion point, one further
  // if that entry is greater than the key.
  [[nodiscard]] KeySearch Search(host::StringView key) const;
  // The owner of a key, or 0.
  [[nodiscard]] uint32_t Find(host::StringView key) const;
  void Insert(size_t position, host::String key, uint32_t id);
  // Removes the entry of that key; false when there is none.
  bool Remove(host::StringView key);
  void Clear() { m_entries.clear(); }
  [[nodiscard]] size_t Count() const { return m_entries.size(); }
  [[nodiscard]] const std::vector<KeyEntry>& Entries() const { return m_entries; }

 private:
  std::vector<KeyEntry> m_entries;
};

}  // namespace mx::imagelist
