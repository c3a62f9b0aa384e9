#include "host/Collection.h"

#include <algorithm>

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

constexpr char16_t kSource[] = u"Collection";

// An optional argument the caller did not give: left out, or Empty.
bool Absent(const Variant& v) { return v.IsMissing() || v.IsEmpty(); }

[[noreturn]] void BadArgument() { Raise(kErrInvalidProcedureCall, kSource); }

}  // namespace

Collection::Collection(const Collection& other) : Object(other) { *this = other; }

Collection& Collection::operator=(const Collection& other) {
  if (this == &other) return *this;
  Clear();
  m_entries.reserve(other.m_entries.size());
  for (const auto& e : other.m_entries) {
    auto copy = std::make_unique<CollectionEntry>(*e);
    copy->position = m_entries.size();
    if (copy->hasKey) m_byKey.emplace(copy->key, copy.get());
    m_entries.push_back(std::move(copy));
  }
  m_positionsValidBelow = m_entries.size();
  return *this;
}

Collection::~Collection() = default;

void Collection::Renumber() const {
  for (size_t i = m_positionsValidBelow; i < m_entries.size(); ++i) m_entries[i]->position = i;
  m_positionsValidBelow = m_entries.size();
}

size_t Collection::Locate(const Variant& indexOrKey) const {
  Variant which = indexOrKey.Value();
  if (const String* key = which.TryGet<String>()) {
    auto it = m_byKey.find(FoldCase(*key));
    if (it == m_byKey.end()) BadArgument();
    Renumber();
    return it->second->position;
  }
  if (which.IsArray() || which.IsError()) Raise(kErrTypeMismatch, kSource);
  int32_t index = which.ToLong();
  if (index < 1 || index > Count()) BadArgument();
  return static_cast<size_t>(index - 1);
}

void Collection::Insert(size_t position, std::unique_ptr<CollectionEntry> entry) {
  bool atEnd = position == m_entries.size();
  CollectionEntry* raw = entry.get();
  m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(position), std::move(entry));
  if (atEnd && m_positionsValidBelow == position) {
    // Appending to a fully numbered list keeps it fully numbered: the common case stays O(1).
    raw->position = position;
    m_positionsValidBelow = m_entries.size();
  } else {
    m_positionsValidBelow = std::min(m_positionsValidBelow, position);
  }
}

void Collection::Add(Variant item, const Variant& key, const Variant& before, const Variant& after) {
  auto entry = std::make_unique<CollectionEntry>();
  entry->item = std::move(item);
  if (!Absent(key)) {
    Variant k = key.Value();
    const String* text = k.TryGet<String>();
    if (!text) Raise(kErrTypeMismatch, kSource);
    entry->key = FoldCase(*text);
    entry->hasKey = true;
    if (m_byKey.contains(entry->key)) Raise(kErrDuplicateKey, kSource);
  }
  bool hasBefore = !Absent(before);
  bool hasAfter = !Absent(after);
  if (hasBefore && hasAfter) BadArgument();
  size_t position = m_entries.size();
  if (hasBefore) position = Locate(before);
  if (hasAfter) position = Locate(after) + 1;
  if (entry->hasKey) m_byKey.emplace(entry->key, entry.get());
  Insert(position, std::move(entry));
}

const Variant& Collection::Item(const Variant& indexOrKey) const { return m_entries[Locate(indexOrKey)]->item; }

void Collection::Remove(const Variant& indexOrKey) {
  size_t position = Locate(indexOrKey);
  if (m_entries[position]->hasKey) m_byKey.erase(m_entries[position]->key);
  m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(position));
  m_positionsValidBelow = std::min(m_positionsValidBelow, position);
}

void Collection::Clear() {
  m_byKey.clear();
  m_entries.clear();
  m_positionsValidBelow = 0;
}

bool Collection::Contains(StringView key) const { return m_byKey.contains(FoldCase(key)); }

Variant Collection::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  auto required = [&](size_t i) -> const Variant& {
    const Variant& v = ArgumentAt(args, i);
    if (v.IsMissing()) Raise(449, kSource);
    return v;
  };
  if (name.empty() || TextEquals(name, u"Item")) {
    if (kind == CallKind::Let || kind == CallKind::Set) Raise(kErrMemberNotSupported, kSource);
    if (args.size() > 1) Raise(kErrWrongArgumentCount, kSource);
    return Item(required(0));
  }
  if (TextEquals(name, u"Count")) {
    if (kind == CallKind::Let || kind == CallKind::Set || !args.empty()) Raise(kErrWrongArgumentCount, kSource);
    return Count();
  }
  if (TextEquals(name, u"Add")) {
    if (args.size() > 4) Raise(kErrWrongArgumentCount, kSource);
    Add(required(0), ArgumentAt(args, 1), ArgumentAt(args, 2), ArgumentAt(args, 3));
    return Variant();
  }
  if (TextEquals(name, u"Remove")) {
    if (args.size() > 1) Raise(kErrWrongArgumentCount, kSource);
    Remove(required(0));
    return Variant();
  }
  Raise(kErrMemberNotSupported, kSource);
}

std::vector<Variant> Collection::EnumerateItems() { return {begin(), end()}; }

}  // namespace mx::host
