#pragma once
// The host's Collection: an ordered list of Variants, each with an optional text key. Keys are
// compared without regard to case; items are numbered from 1. Errors are the host's: 457 for a
// key already in use, 5 for an unknown key, an index out of range or a bad before/after, 13 for a
// key that is not text.
//
// Storage: entries in order in a vector (index access is direct), and a hash of the folded key
// to the entry. Each entry remembers its position; positions after an insertion or removal are
// renumbered lazily, on the next lookup by key that needs one.
#include <cstdint>
#include <iterator>
#include <span>
#include <memory>
#include <unordered_map>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

struct CollectionEntry {
  Variant item;
  String key;  // folded; empty when the item has no key
  bool hasKey = false;
  mutable size_t position = 0;
};

class Collection : public Object {
 public:
  Collection() = default;
  Collection(const Collection& other);
  Collection& operator=(const Collection& other);
  ~Collection() override;

  // Adds an item at the end, or before/after the item named by index or key (not both).
  void Add(Variant item, const Variant& key = Variant::Missing(), const Variant& before = Variant::Missing(),
           const Variant& after = Variant::Missing());
  // By a whole-number index (1-based; fractions round as the host rounds) or by a text key.
  [[nodiscard]] const Variant& Item(const Variant& indexOrKey) const;
  [[nodiscard]] const Variant& operator[](const Variant& indexOrKey) const { return Item(indexOrKey); }
  void Remove(const Variant& indexOrKey);
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_entries.size()); }
  void Clear();
  // Whether a key is in use; never raises.
  [[nodiscard]] bool Contains(StringView key) const;

  // In order; adding or removing items ends an iteration, as it does a For Each in the host.
  class const_iterator {
   public:
    using value_type = Variant;
    using difference_type = std::ptrdiff_t;
    using reference = const Variant&;
    using pointer = const Variant*;
    using iterator_category = std::forward_iterator_tag;
    const_iterator() = default;
    reference operator*() const { return (*m_it)->item; }
    pointer operator->() const { return &(*m_it)->item; }
    const_iterator& operator++() {
      ++m_it;
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator old = *this;
      ++m_it;
      return old;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b) { return a.m_it == b.m_it; }

   private:
    friend class Collection;
    explicit const_iterator(std::vector<std::unique_ptr<CollectionEntry>>::const_iterator it) : m_it(it) {}
    std::vector<std::unique_ptr<CollectionEntry>>::const_iterator m_it;
  };
  [[nodiscard]] const_iterator begin() const { return const_iterator(m_entries.begin()); }
  [[nodiscard]] const_iterator end() const { return const_iterator(m_entries.end()); }

  // Late binding: Add, Item (also the default member), Remove, Count.
  [[nodiscard]] String TypeName() const override { return u"Collection"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;
  [[nodiscard]] std::vector<Variant> EnumerateItems() override;

 private:
  // Position (0-based) of the entry an index or key names; raises 5 when there is none.
  [[nodiscard]] size_t Locate(const Variant& indexOrKey) const;
  void Renumber() const;
  void Insert(size_t position, std::unique_ptr<CollectionEntry> entry);

  std::vector<std::unique_ptr<CollectionEntry>> m_entries;
  std::unordered_map<String, CollectionEntry*> m_byKey;  // folded key -> entry
  mutable size_t m_positionsValidBelow = 0;
};

}  // namespace mx::host
