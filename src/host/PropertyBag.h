#pragma once
// The host's property bag: what a control saves of itself, as named keys with typed values.
//
// Each key has two defaults. WriteProperty(key, value, default) stores nothing when the value
// equals the default it is given; ReadProperty(key, default) returns the default it is given
// when the key is absent. Where a control passes different defaults to the two, a value equal
// to the written default is lost on a save and comes back as the read default: that asymmetry
// is part of the saved format and is kept exactly.
//
// The bag remembers the order keys were written in (a form file lists them in that order) and
// keeps lines of a form file that it did not understand where they were, so that they are
// written back unchanged. Keys are compared without regard to case.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/Frx.h"
#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// How a number is shown in a form file's text. Canonical writes Longs of keys that name a colour
// as "&H00BBGGRR&" and other numbers in decimal; the other styles are remembered from a file, so
// that a hexadecimal value read comes back in the same form.
enum class ValueStyle : uint8_t { Canonical, HexLong, HexInteger };

struct BagEntry {
  String key;
  Variant value;
  // A companion-file entry that may be a long string or a byte array: the file does not record
  // which, so value holds the bytes and the default given to ReadProperty decides (a String
  // default reads them as Windows-1252 text).
  bool companionBlob = false;
  ValueStyle style = ValueStyle::Canonical;
  // The comment a form file wrote after the value (an enumeration's member name); written back
  // while the value stands.
  String comment;
};

// One item of the bag in order: a property, or a run of lines it did not understand (kept with
// their indentation relative to the first of them). Companion-file references inside such lines
// keep the entries they pointed at, one per reference in line order, so that a writer can store
// them again and point the references at their new offsets.
struct BagItem {
  BagEntry entry;
  std::vector<String> unknownLines;
  std::vector<FrxEntry> unknownEntries;
  [[nodiscard]] bool IsUnknown() const { return !unknownLines.empty(); }
};

// The host's error for ReadProperty of an absent key without a default.
inline constexpr int32_t kErrDataValueNotFound = 327;

class PropertyBag : public Object {
 public:
  PropertyBag() = default;
  // A copy holds copies of the values (fonts included), in the same order.
  PropertyBag(const PropertyBag& other);
  PropertyBag& operator=(const PropertyBag& other);
  PropertyBag(PropertyBag&&) noexcept = default;
  PropertyBag& operator=(PropertyBag&&) noexcept = default;
  ~PropertyBag() override = default;

  // Stores the value unless it equals the default (BagValuesEqual); a value equal to its default
  // also removes what an earlier write stored under the key. Without a default the value is
  // always stored. A key written again keeps its place. Fonts are stored as copies, so later
  // changes to the control's font do not reach the saved one. Raises 5 for a key that a form
  // file cannot hold (empty, or with a blank, "=", a quote or a control character) and 13 for a
  // value that cannot be saved (arrays other than bytes, objects other than fonts and pictures).
  void WriteProperty(StringView key, const Variant& value, const Variant& defaultValue = Variant::Missing());

  // The stored value converted to the type of the default, as the host converts on assignment
  // (a Long saved and an Integer read, a number read as text...); raises the conversion's error
  // (13, 6) when it cannot. Without a default (Missing) the stored value comes as it is, and an
  // absent key raises 327. An Empty default also takes the stored value as it is. A font read
  // is a new font object each time.
  [[nodiscard]] Variant ReadProperty(StringView key, const Variant& defaultValue = Variant::Missing()) const;

  [[nodiscard]] bool Contains(StringView key) const { return FindIndex(key) >= 0; }
  [[nodiscard]] const BagEntry* Find(StringView key) const;
  bool Remove(StringView key);
  void Clear();
  // Number of properties (unknown lines not counted), and their keys in order.
  [[nodiscard]] int32_t Count() const;
  [[nodiscard]] std::vector<String> Keys() const;

  // For form-file readers: stores an entry as it stands (no default test), replacing one with
  // the same key in place; and keeps lines that were not understood at the current end.
  void Put(BagEntry entry);
  void AddUnknownLines(std::vector<String> lines, std::vector<FrxEntry> entries = {});
  [[nodiscard]] const std::vector<BagItem>& Items() const { return m_items; }

  // The same properties with equal values (BagValuesEqual; a companion entry equals the text or
  // bytes it holds), whatever their order, and the same unknown lines in the same order (their
  // companion references compared by the entries they point at, not by offset). Entries that a
  // form file has no line for (Empty, Null, Nothing, an empty picture) are passed over.
  [[nodiscard]] bool SameContents(const PropertyBag& other) const;

  // Late binding: ReadProperty, WriteProperty.
  [[nodiscard]] String TypeName() const override { return u"PropertyBag"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  [[nodiscard]] int FindIndex(StringView key) const;

  std::vector<BagItem> m_items;
};

// Whether a value equals a default the way the bag decides it: numbers by value (Booleans, dates
// and Currency included; a Single against another number at Single precision), text exactly,
// byte arrays byte by byte, fonts by their description, pictures by their bytes with an empty
// picture equal to Nothing. A Missing default equals nothing.
[[nodiscard]] bool BagValuesEqual(const Variant& value, const Variant& defaultValue);

// A key a form file can hold.
[[nodiscard]] bool IsValidBagKey(StringView key);

}  // namespace mx::host
