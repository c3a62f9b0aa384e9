#include "host/PropertyBag.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "host/Err.h"
#include "host/Frx.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

// A picture object, or Nothing: both are "a picture" for the comparison of defaults.
bool IsEmptyPicture(const Variant& v) {
  if (!v.IsObject()) return false;
  ObjectRef obj = v.Obj();
  if (!obj) return true;
  auto picture = std::dynamic_pointer_cast<StdPicture>(obj);
  return picture && picture->IsEmpty();
}

bool ObjectsEqual(const Variant& a, const Variant& b) {
  if (IsEmptyPicture(a) && IsEmptyPicture(b)) return true;
  ObjectRef oa = a.Obj();
  ObjectRef ob = b.Obj();
  if (!oa || !ob) return oa == ob;
  if (oa == ob) return true;
  auto fa = std::dynamic_pointer_cast<StdFont>(oa);
  auto fb = std::dynamic_pointer_cast<StdFont>(ob);
  if (fa && fb) return fa->SameAs(*fb);
  auto pa = std::dynamic_pointer_cast<StdPicture>(oa);
  auto pb = std::dynamic_pointer_cast<StdPicture>(ob);
  if (pa && pb) return pa->SameAs(*pb);
  return false;
}

bool NumbersEqual(const Variant& a, const Variant& b) {
  try {
    // A Single holds fewer digits: the other side is compared as the Single it would become.
    if (a.TryGet<float>() || b.TryGet<float>()) return a.ToSingle() == b.ToSingle();
    if (a.TryGet<Currency>() || b.TryGet<Currency>()) return a.ToCurrency() == b.ToCurrency();
    return a.ToDouble() == b.ToDouble();
  } catch (const RuntimeError&) {
    return false;  // one side does not fit the other's type: not equal
  }
}

// The value a caller gets for a stored entry: fonts as new objects, companion entries as bytes.
Variant Detached(const BagEntry& entry) {
  if (auto font = std::dynamic_pointer_cast<StdFont>(entry.value.Obj())) return Variant(font->Clone());
  return entry.value;
}

// An entry compared with another: a companion entry holds text or bytes, and equals either.
bool EntriesEqual(const BagEntry& a, const BagEntry& b) {
  if (a.companionBlob || b.companionBlob) {
    const BagEntry& blob = a.companionBlob ? a : b;
    const BagEntry& other = a.companionBlob ? b : a;
    const ByteArray* bytes = blob.value.Bytes();
    if (!bytes) return false;
    if (const ByteArray* otherBytes = other.value.Bytes()) return *bytes == *otherBytes;
    if (const String* text = other.value.TryGet<String>()) return EncodeWindows1252(*text) == *bytes;
    return false;
  }
  return BagValuesEqual(a.value, b.value);
}

// A line with its companion references reduced to a mark, so that lines that point at equal
// entries at different offsets compare equal.
String WithoutReferences(const String& line) {
  String out;
  size_t from = 0;
  for (const FrxReference& ref : FindFrxReferences(line)) {
    out.append(line, from, ref.position - from);
    out.push_back(u'\x01');
    from = ref.position + ref.length;
  }
  out.append(line, from, String::npos);
  return out;
}

// A value that a form file holds no line for.
bool IsSilent(const BagEntry& entry) {
  const Variant& v = entry.value;
  return !entry.companionBlob && (v.IsEmpty() || v.IsNull() || IsEmptyPicture(v));
}

bool IsPersistable(const Variant& value) {
  if (value.IsObject()) {
    ObjectRef obj = value.Obj();
    return !obj || std::dynamic_pointer_cast<StdFont>(obj) || std::dynamic_pointer_cast<StdPicture>(obj);
  }
  if (value.IsArray()) return value.Bytes() != nullptr;
  // Text has no form for infinities and NaN.
  if (const double* d = value.TryGet<double>()) return std::isfinite(*d);
  if (const float* f = value.TryGet<float>()) return std::isfinite(*f);
  return !value.IsError();
}

}  // namespace

bool BagValuesEqual(const Variant& value, const Variant& defaultValue) {
  if (value.IsMissing() || defaultValue.IsMissing()) return false;
  if (value.IsObject() || defaultValue.IsObject()) {
    return value.IsObject() && defaultValue.IsObject() && ObjectsEqual(value, defaultValue);
  }
  if (value.IsArray() || defaultValue.IsArray()) {
    const ByteArray* a = value.Bytes();
    const ByteArray* b = defaultValue.Bytes();
    return a && b && *a == *b;
  }
  if (value.IsNull() || defaultValue.IsNull()) return value.IsNull() && defaultValue.IsNull();
  if (value.IsError() || defaultValue.IsError()) {
    return value.IsError() && defaultValue.IsError() && value.TryGet<ErrorValue>()->code == defaultValue.TryGet<ErrorValue>()->code;
  }
  if (value.IsString() && defaultValue.IsString()) return *value.TryGet<String>() == *defaultValue.TryGet<String>();
  if (value.IsNumberKind() && defaultValue.IsNumberKind()) return NumbersEqual(value, defaultValue);
  // Mixed kinds (text beside a number, Empty beside either): the host's comparison decides.
  try {
    std::optional<int> order = Compare(value, defaultValue);
    return order && *order == 0;
  } catch (const RuntimeError&) {
    return false;
  }
}

bool IsValidBagKey(StringView key) {
  if (key.empty()) return false;
  for (char16_t c : key) {
    if (c <= 0x20 || c == u'=' || c == u'"' || c == u'\'' || c == 0x7F) return false;
  }
  return true;
}

PropertyBag::PropertyBag(const PropertyBag& other) : Object(other) { *this = other; }

PropertyBag& PropertyBag::operator=(const PropertyBag& other) {
  if (this == &other) return *this;
  m_items = other.m_items;
  for (BagItem& item : m_items) {
    if (auto font = std::dynamic_pointer_cast<StdFont>(item.entry.value.Obj())) item.entry.value = Variant(font->Clone());
  }
  return *this;
}

int PropertyBag::FindIndex(StringView key) const {
  String folded = FoldCase(key);
  for (size_t i = 0; i < m_items.size(); ++i) {
    const BagItem& item = m_items[i];
    if (!item.IsUnknown() && item.entry.key.size() == key.size() && FoldCase(item.entry.key) == folded) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

const BagEntry* PropertyBag::Find(StringView key) const {
  int i = FindIndex(key);
  return i < 0 ? nullptr : &m_items[static_cast<size_t>(i)].entry;
}

bool PropertyBag::Remove(StringView key) {
  int i = FindIndex(key);
  if (i < 0) return false;
  m_items.erase(m_items.begin() + i);
  return true;
}

void PropertyBag::Clear() { m_items.clear(); }

int32_t PropertyBag::Count() const {
  return static_cast<int32_t>(std::count_if(m_items.begin(), m_items.end(), [](const BagItem& i) { return !i.IsUnknown(); }));
}

std::vector<String> PropertyBag::Keys() const {
  std::vector<String> keys;
  for (const BagItem& item : m_items) {
    if (!item.IsUnknown()) keys.push_back(item.entry.key);
  }
  return keys;
}

void PropertyBag::Put(BagEntry entry) {
  int i = FindIndex(entry.key);
  if (i >= 0) {
    m_items[static_cast<size_t>(i)].entry = std::move(entry);
  } else {
    m_items.push_back(BagItem{std::move(entry), {}, {}});
  }
}

void PropertyBag::AddUnknownLines(std::vector<String> lines, std::vector<FrxEntry> entries) {
  if (lines.empty()) return;
  BagItem item;
  item.unknownLines = std::move(lines);
  item.unknownEntries = std::move(entries);
  m_items.push_back(std::move(item));
}

void PropertyBag::WriteProperty(StringView key, const Variant& value, const Variant& defaultValue) {
  if (!IsValidBagKey(key)) Raise(kErrInvalidProcedureCall, u"PropertyBag");
  if (!IsPersistable(value)) Raise(kErrTypeMismatch, u"PropertyBag");
  if (BagValuesEqual(value, defaultValue)) {
    Remove(key);
    return;
  }
  BagEntry entry;
  entry.key = String(key);
  if (auto font = std::dynamic_pointer_cast<StdFont>(value.Obj())) {
    entry.value = Variant(font->Clone());
  } else {
    entry.value = value;
  }
  // The same value written again keeps the form it was read in (a hexadecimal number, an
  // enumeration's comment); a new value starts canonical.
  if (const BagEntry* old = Find(key); old && !old->companionBlob && old->value.VarType() == value.VarType() &&
                                       BagValuesEqual(old->value, value)) {
    entry.style = old->style;
    entry.comment = old->comment;
  }
  Put(std::move(entry));
}

Variant PropertyBag::ReadProperty(StringView key, const Variant& defaultValue) const {
  const BagEntry* entry = Find(key);
  if (!entry) {
    if (defaultValue.IsMissing()) Raise(kErrDataValueNotFound, u"PropertyBag", u"Data value named not found");
    return defaultValue;
  }
  const Variant& stored = entry->value;
  if (defaultValue.IsMissing() || defaultValue.IsEmpty() || defaultValue.IsNull() || defaultValue.IsError()) {
    return Detached(*entry);
  }
  if (defaultValue.IsObject()) {
    if (!stored.IsObject()) Raise(kErrTypeMismatch, u"PropertyBag");
    return Detached(*entry);
  }
  if (defaultValue.Bytes()) return Variant(stored.ToBytes());
  if (defaultValue.IsArray()) return stored;
  if (stored.IsObject()) Raise(kErrTypeMismatch, u"PropertyBag");
  if (defaultValue.IsString()) {
    if (entry->companionBlob) return Variant(DecodeWindows1252(*stored.Bytes()));
    return Variant(stored.ToString());
  }
  if (entry->companionBlob) Raise(kErrTypeMismatch, u"PropertyBag");
  switch (defaultValue.VarType()) {
    case vbInteger: return Variant(stored.ToInteger());
    case vbLong: return Variant(stored.ToLong());
    case vbSingle: return Variant(stored.ToSingle());
    case vbDouble: return Variant(stored.ToDouble());
    case vbCurrency: return Variant(stored.ToCurrency());
    case vbDate: return Variant(stored.ToDate());
    case vbBoolean: return Variant(stored.ToBoolean());
    case vbByte: return Variant(stored.ToByte());
    default: return stored;
  }
}

bool PropertyBag::SameContents(const PropertyBag& other) const {
  auto written = [](const std::vector<BagItem>& items) {
    return std::count_if(items.begin(), items.end(), [](const BagItem& i) { return !i.IsUnknown() && !IsSilent(i.entry); });
  };
  if (written(m_items) != written(other.m_items)) return false;
  for (const BagItem& item : m_items) {
    if (item.IsUnknown() || IsSilent(item.entry)) continue;
    const BagEntry* match = other.Find(item.entry.key);
    if (!match || !EntriesEqual(item.entry, *match)) return false;
  }
  // Unknown lines are compared by the property they follow: a writer that sorts the host's lines
  // moves them with that property, so their order among themselves is not kept.
  struct Kept {
    String anchor;
    std::vector<String> lines;
    std::vector<FrxEntry> entries;
    bool operator<(const Kept& o) const { return std::tie(anchor, lines) < std::tie(o.anchor, o.lines); }
    bool operator==(const Kept& o) const { return anchor == o.anchor && lines == o.lines && entries == o.entries; }
  };
  auto collect = [](const std::vector<BagItem>& items) {
    std::vector<Kept> kept;
    String anchor;
    for (const BagItem& item : items) {
      if (!item.IsUnknown()) {
        if (!IsSilent(item.entry)) anchor = FoldCase(item.entry.key);
        continue;
      }
      Kept k{anchor, {}, item.unknownEntries};
      for (const String& line : item.unknownLines) k.lines.push_back(WithoutReferences(line));
      kept.push_back(std::move(k));
    }
    std::stable_sort(kept.begin(), kept.end());
    return kept;
  };
  return collect(m_items) == collect(other.m_items);
}

Variant PropertyBag::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  String member = FoldCase(name);
  if (member == u"READPROPERTY") {
    if (args.empty()) Raise(kErrWrongArgumentCount, u"PropertyBag");
    return ReadProperty(args[0].ToString(), ArgumentAt(args, 1));
  }
  if (member == u"WRITEPROPERTY") {
    if (args.size() < 2) Raise(kErrWrongArgumentCount, u"PropertyBag");
    WriteProperty(args[0].ToString(), args[1], ArgumentAt(args, 2));
    return Variant();
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::host
