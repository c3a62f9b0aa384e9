#pragma once
// The host's Variant: one value of any of the host's types, with the host's conversion and
// comparison rules. Conversions that fail raise the host's run-time errors (host/Err.h):
// 13 "Type mismatch", 6 "Overflow", 94 "Invalid use of Null", 91 for a missing object.
//
// Numbers are read from and written to text through replaceable hooks (VariantTextHooks). By
// default they follow the regional setting, as the host's do; a hook set to null falls back to
// the invariant form ("." decimal, no grouping, ISO dates).
#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <variant>
#include <vector>

#include "host/String.h"

namespace mx::host {

// VarType codes of the host. An array reports vbArray plus its element type.
enum VbVarType : int32_t {
  vbEmpty = 0,
  vbNull = 1,
  vbInteger = 2,
  vbLong = 3,
  vbSingle = 4,
  vbDouble = 5,
  vbCurrency = 6,
  vbDate = 7,
  vbString = 8,
  vbObject = 9,
  vbError = 10,
  vbBoolean = 11,
  vbVariant = 12,
  vbByte = 17,
  vbArray = 8192,
};

// The host's Booleans as numbers: True is all bits set.
inline constexpr int16_t vbTrue = -1;
inline constexpr int16_t vbFalse = 0;

// The error code a Variant carries for an optional argument that was left out.
inline constexpr int32_t kDispParamNotFound = static_cast<int32_t>(0x80020004u);

// Currency: a 64-bit integer counting ten-thousandths, so four decimals are exact.
struct Currency {
  static constexpr int64_t kScale = 10000;
  int64_t scaled = 0;

  // Rounds half to even at the fourth decimal; raises 6 outside the Currency range.
  [[nodiscard]] static Currency FromDouble(double value);
  [[nodiscard]] static constexpr Currency FromUnits(int64_t units) { return Currency{units * kScale}; }
  [[nodiscard]] double ToDouble() const { return static_cast<double>(scaled) / kScale; }
  friend constexpr auto operator<=>(Currency, Currency) = default;
};

// A date as the host keeps it: days since 1899-12-30, the fraction being the time of day.
struct DateValue {
  double days = 0;
  friend constexpr auto operator<=>(DateValue, DateValue) = default;
};

// A Variant of type Error (CVErr); also how a missing optional argument is passed.
struct ErrorValue {
  int32_t code = 0;
  friend constexpr auto operator<=>(ErrorValue, ErrorValue) = default;
};

class Variant;
class Object;
using ObjectRef = std::shared_ptr<Object>;
using ByteArray = std::vector<uint8_t>;

// An array of Variants with one or more dimensions, each with its own lower bound, as the host's
// arrays. Elements are stored with the first index varying fastest, so growing the last
// dimension (ReDim Preserve) keeps every element where it was. A default-made array has no
// dimensions yet: a dynamic array that was never sized.
class VariantArray {
 public:
  struct Bound {
    int32_t lower = 0;
    int32_t count = 0;
  };

  VariantArray();
  // One dimension, lower..lower+count-1, all elements Empty.
  explicit VariantArray(int32_t count, int32_t lower = 0, VbVarType elementType = vbVariant);
  explicit VariantArray(std::vector<Variant> items, int32_t lower = 0, VbVarType elementType = vbVariant);
  // Any number of dimensions; raises 9 for a negative count.
  VariantArray(std::vector<Bound> bounds, VbVarType elementType);
  ~VariantArray();
  VariantArray(const VariantArray&);
  VariantArray(VariantArray&&) noexcept;
  VariantArray& operator=(const VariantArray&);
  VariantArray& operator=(VariantArray&&) noexcept;

  // vbVariant, or vbString for an array of Strings (as Split gives) and so on.
  [[nodiscard]] VbVarType ElementType() const { return m_elementType; }
  [[nodiscard]] bool IsAllocated() const { return !m_bounds.empty(); }
  [[nodiscard]] int32_t Dimensions() const { return static_cast<int32_t>(m_bounds.size()); }
  // Raise 9 for a dimension that does not exist (and for an array never sized).
  [[nodiscard]] int32_t LBound(int32_t dimension = 1) const;
  [[nodiscard]] int32_t UBound(int32_t dimension = 1) const;
  [[nodiscard]] size_t Size() const;

  // Element access by the host's indices; raises 9 out of range or for a wrong index count.
  [[nodiscard]] Variant& operator()(std::initializer_list<int32_t> indices);
  [[nodiscard]] const Variant& operator()(std::initializer_list<int32_t> indices) const;
  [[nodiscard]] Variant& operator[](int32_t index);
  [[nodiscard]] const Variant& operator[](int32_t index) const;

  // ReDim: new bounds; with preserve only the last dimension may change and elements are kept.
  void ReDim(std::vector<Bound> bounds, bool preserve = false);
  // Storage order: first index fastest.
  [[nodiscard]] std::vector<Variant>& Items() { return m_items; }
  [[nodiscard]] const std::vector<Variant>& Items() const { return m_items; }
  [[nodiscard]] std::vector<Variant>::iterator begin();
  [[nodiscard]] std::vector<Variant>::iterator end();
  [[nodiscard]] std::vector<Variant>::const_iterator begin() const;
  [[nodiscard]] std::vector<Variant>::const_iterator end() const;

 private:
  [[nodiscard]] size_t Offset(std::initializer_list<int32_t> indices) const;

  std::vector<Bound> m_bounds;
  std::vector<Variant> m_items;
  VbVarType m_elementType = vbVariant;
};

namespace detail {
// Holds an array inside a Variant with value semantics: copying the Variant copies the array,
// as assigning an array to another variable does in the host.
class ArrayBox {
 public:
  explicit ArrayBox(VariantArray array);
  ArrayBox(const ArrayBox& other);
  ArrayBox(ArrayBox&&) noexcept = default;
  ArrayBox& operator=(const ArrayBox& other);
  ArrayBox& operator=(ArrayBox&&) noexcept = default;
  ~ArrayBox();
  [[nodiscard]] VariantArray& get() { return *m_array; }
  [[nodiscard]] const VariantArray& get() const { return *m_array; }

 private:
  std::unique_ptr<VariantArray> m_array;
};
struct EmptyTag {};
struct NullTag {};
}  // namespace detail

class Variant {
 public:
  Variant() = default;  // Empty
  Variant(int16_t v) : m_value(v) {}
  Variant(int32_t v) : m_value(v) {}
  Variant(uint8_t v) : m_value(v) {}
  Variant(bool v) : m_value(v) {}
  Variant(float v) : m_value(v) {}
  Variant(double v) : m_value(v) {}
  Variant(Currency v) : m_value(v) {}
  Variant(DateValue v) : m_value(v) {}
  Variant(ErrorValue v) : m_value(v) {}
  Variant(String v) : m_value(std::move(v)) {}
  Variant(StringView v) : m_value(String(v)) {}
  Variant(const char16_t* v) : m_value(String(v)) {}
  Variant(ByteArray v) : m_value(std::move(v)) {}
  Variant(VariantArray v);
  // An array of Strings (what Split returns), lower bound 0.
  Variant(const std::vector<String>& strings);
  Variant(ObjectRef v) : m_value(std::move(v)) {}
  template <typename T>
    requires std::is_base_of_v<Object, T>
  Variant(std::shared_ptr<T> v) : m_value(ObjectRef(std::move(v))) {}
  // Nothing: an object reference to no object.
  Variant(std::nullptr_t) : m_value(ObjectRef()) {}
  // Other integer types: a Long when the value fits, else a Double.
  template <typename T>
    requires(std::is_integral_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, int16_t> &&
             !std::is_same_v<T, int32_t> && !std::is_same_v<T, uint8_t> && !std::is_same_v<T, char16_t> &&
             !std::is_same_v<T, char>)
  Variant(T v) {
    if (v >= static_cast<T>(0) ? static_cast<uint64_t>(v) <= INT32_MAX : static_cast<int64_t>(v) >= INT32_MIN) {
      m_value = static_cast<int32_t>(v);
    } else {
      m_value = static_cast<double>(v);
    }
  }
  // UTF-8 literals would silently become Booleans through the pointer conversion.
  Variant(const char*) = delete;

  [[nodiscard]] static Variant Null();
  [[nodiscard]] static Variant Nothing() { return Variant(nullptr); }
  // The value of an optional argument that was left out (IsMissing is True).
  [[nodiscard]] static Variant Missing() { return Variant(ErrorValue{kDispParamNotFound}); }
  [[nodiscard]] static Variant FromDate(double days) { return Variant(DateValue{days}); }

  // VarType, with vbArray added for arrays (vbArray + vbByte for a byte array).
  [[nodiscard]] int32_t VarType() const;
  // TypeName: "Integer", "String", "Byte()", "Variant()", an object's class name, "Nothing"...
  [[nodiscard]] String TypeName() const;
  [[nodiscard]] bool IsEmpty() const { return std::holds_alternative<detail::EmptyTag>(m_value); }
  [[nodiscard]] bool IsNull() const { return std::holds_alternative<detail::NullTag>(m_value); }
  [[nodiscard]] bool IsObject() const { return std::holds_alternative<ObjectRef>(m_value); }
  [[nodiscard]] bool IsNothing() const;
  [[nodiscard]] bool IsArray() const;
  [[nodiscard]] bool IsError() const { return std::holds_alternative<ErrorValue>(m_value); }
  [[nodiscard]] bool IsMissing() const;
  [[nodiscard]] bool IsString() const { return std::holds_alternative<String>(m_value); }
  // A number kind: Integer, Long, Single, Double, Currency, Byte, Boolean or Date.
  [[nodiscard]] bool IsNumberKind() const;

  // Direct access without conversion; nullptr when the Variant holds something else.
  template <typename T>
  [[nodiscard]] const T* TryGet() const {
    return std::get_if<T>(&m_value);
  }
  template <typename T>
  [[nodiscard]] T* TryGet() {
    return std::get_if<T>(&m_value);
  }
  [[nodiscard]] const VariantArray* Array() const;
  [[nodiscard]] VariantArray* Array();
  [[nodiscard]] const ByteArray* Bytes() const { return TryGet<ByteArray>(); }
  // The object held, or nullptr (also for Nothing).
  [[nodiscard]] ObjectRef Obj() const;

  // The host's coercions. Each raises 94 for Null, 13 for a value that cannot convert, 6 for
  // one out of range. Integer targets round half to even.
  [[nodiscard]] bool ToBoolean() const;
  [[nodiscard]] uint8_t ToByte() const;
  [[nodiscard]] int16_t ToInteger() const;
  [[nodiscard]] int32_t ToLong() const;
  [[nodiscard]] float ToSingle() const;
  [[nodiscard]] double ToDouble() const;
  [[nodiscard]] Currency ToCurrency() const;
  [[nodiscard]] DateValue ToDate() const;
  [[nodiscard]] String ToString() const;
  // A byte array: a byte array as it is, a String as its UTF-16 units (low byte first).
  [[nodiscard]] ByteArray ToBytes() const;
  // An object (Nothing included); raises 424 "Object required" for anything else.
  [[nodiscard]] ObjectRef ToObject() const;

  // The value itself for a plain value, the default member's value for an object (raising 91
  // for Nothing): what the host uses when an object appears where a value is expected.
  [[nodiscard]] Variant Value() const;

 private:
  using Storage = std::variant<detail::EmptyTag, detail::NullTag, int16_t, int32_t, float, double, Currency,
                               DateValue, String, bool, uint8_t, ErrorValue, ObjectRef, ByteArray,
                               detail::ArrayBox>;
  Storage m_value;
};

// The host's comparison of two Variants. Numbers (Booleans, dates and Currency included) compare
// numerically; Strings by the given method; Empty is 0 beside a number and "" beside a String; a
// number is less than a String. Returns nothing when either side is Null. Raises 13 for arrays
// and Error values, 91 for Nothing.
[[nodiscard]] std::optional<int> Compare(const Variant& a, const Variant& b,
                                         VbCompareMethod method = vbBinaryCompare);

// Comparison operators as an If statement sees them: binary string comparison, and a Null on
// either side makes every one of them false (so != is not the negation of == there).
[[nodiscard]] bool operator==(const Variant& a, const Variant& b);
[[nodiscard]] bool operator!=(const Variant& a, const Variant& b);
[[nodiscard]] bool operator<(const Variant& a, const Variant& b);
[[nodiscard]] bool operator<=(const Variant& a, const Variant& b);
[[nodiscard]] bool operator>(const Variant& a, const Variant& b);
[[nodiscard]] bool operator>=(const Variant& a, const Variant& b);

// The & operator: both sides as text; Null counts as "" unless both are Null (then Null).
[[nodiscard]] Variant Concat(const Variant& a, const Variant& b);

// Is: the same object (two Nothings are the same). Raises 424 when either side is no object.
[[nodiscard]] bool SameObject(const Variant& a, const Variant& b);

// The host's free-standing type functions.
[[nodiscard]] inline int32_t VarType(const Variant& v) { return v.VarType(); }
[[nodiscard]] inline String TypeName(const Variant& v) { return v.TypeName(); }
[[nodiscard]] inline bool IsEmpty(const Variant& v) { return v.IsEmpty(); }
[[nodiscard]] inline bool IsNull(const Variant& v) { return v.IsNull(); }
[[nodiscard]] inline bool IsObject(const Variant& v) { return v.IsObject(); }
[[nodiscard]] inline bool IsArray(const Variant& v) { return v.IsArray(); }
[[nodiscard]] inline bool IsMissing(const Variant& v) { return v.IsMissing(); }
[[nodiscard]] inline bool IsError(const Variant& v) { return v.IsError(); }
// LBound/UBound of a Variant holding an array; raise 13 for a non-array, 9 for a bad dimension.
[[nodiscard]] int32_t LBound(const Variant& v, int32_t dimension = 1);
[[nodiscard]] int32_t UBound(const Variant& v, int32_t dimension = 1);

// Conversions that are not numeric-format dependent. CInt, CLng, CSng, CDbl, CCur and CDate,
// whose text forms follow the regional setting, are with the formatting functions; they build on
// the Variant members above.
[[nodiscard]] inline bool CBool(const Variant& v) { return v.ToBoolean(); }
[[nodiscard]] inline uint8_t CByte(const Variant& v) { return v.ToByte(); }
[[nodiscard]] inline String CStr(const Variant& v) { return v.ToString(); }
[[nodiscard]] inline Variant CVErr(int32_t code) { return Variant(ErrorValue{code}); }

// Rounds half to even, as the host's integer conversions do.
[[nodiscard]] double RoundHalfEven(double value);

// The text seam. numberToText gets a Single, Double or Currency Variant and returns its text as
// CStr shows it; dateToText gets a day count; textToNumber and textToDate return nothing for text
// that is not a number or date. Any hook left null falls back to the invariant form below.
struct VariantTextHooks {
  String (*numberToText)(const Variant& number) = nullptr;
  std::optional<double> (*textToNumber)(StringView text) = nullptr;
  String (*dateToText)(double days) = nullptr;
  std::optional<double> (*textToDate)(StringView text) = nullptr;
};
// Install once at start-up (or from a locale switch on the UI thread): not synchronised.
void SetVariantTextHooks(const VariantTextHooks& hooks);
[[nodiscard]] const VariantTextHooks& GetVariantTextHooks();

// The invariant forms. Numbers: up to 15 significant digits for a Double and 7 for a Single,
// exponent form "1E+15" / "1.5E-05" beyond that range, no trailing zeros; Currency up to four
// decimals. Text to number: blanks around, a sign, digits with one ".", an exponent, or "&H"/"&O".
// Dates: "yyyy-mm-dd hh:nn:ss", the date left out when it is day 0 and the time when it is
// midnight.
[[nodiscard]] String InvariantNumberToText(const Variant& number);
[[nodiscard]] std::optional<double> InvariantTextToNumber(StringView text);
[[nodiscard]] String InvariantDateToText(double days);
[[nodiscard]] std::optional<double> InvariantTextToDate(StringView text);

// How a late-bound call is made; the values are the host's vbMethod, vbGet, vbLet, vbSet.
enum class CallKind : int32_t { Method = 1, Get = 2, Let = 4, Set = 8 };

// The base of every object that the host reaches by name: controls, collections, recordsets.
// Members are found by name without regard to case; the empty name is the default member.
// Arguments arrive as a span the callee may change, which is how by-reference arguments return
// values. For Let and Set the new value is the last argument.
class Object : public std::enable_shared_from_this<Object> {
 public:
  Object();
  // A copy is a new object with an identity of its own.
  Object(const Object&);
  Object& operator=(const Object&) { return *this; }
  virtual ~Object();

  // A stable 32-bit identity, never reused while the program runs; stands for an object address.
  [[nodiscard]] uint32_t ObjectId() const noexcept { return m_id; }
  [[nodiscard]] virtual String TypeName() const;
  // Raises 438 unless a derived class knows the member.
  virtual Variant Invoke(StringView name, CallKind kind, std::span<Variant> args);
  // The items a For Each visits, in order; raises 438 for an object that is no collection.
  [[nodiscard]] virtual std::vector<Variant> EnumerateItems();

 private:
  uint32_t m_id;
};

// The argument at a position, or Missing when the caller passed fewer.
[[nodiscard]] const Variant& ArgumentAt(std::span<const Variant> args, size_t index);
[[nodiscard]] inline const Variant& ArgumentAt(std::span<Variant> args, size_t index) {
  return ArgumentAt(std::span<const Variant>(args.data(), args.size()), index);
}

// CallByName: raises 424 when the target is no object, 91 when it is Nothing.
Variant CallByName(const Variant& target, StringView name, CallKind kind, std::vector<Variant> args = {});
// The same with by-reference arguments: the callee's changes are left in args.
Variant CallByNameRef(const Variant& target, StringView name, CallKind kind, std::span<Variant> args);

}  // namespace mx::host
