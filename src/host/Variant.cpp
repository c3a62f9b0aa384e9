#include "host/Variant.h"

#include <atomic>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <limits>

#include "host/Err.h"
#include "host/DateTime.h"
#include "host/Format.h"
#include "host/Strings.h"
#include "platform/Clock.h"

namespace mx::host {

namespace {

VariantTextHooks g_hooks = RegionalVariantTextHooks();

// Days between the host's day 0 (1899-12-30) and 1970-01-01.
constexpr int64_t kUnixEpochDay = 25569;

String Ascii(const char* s) {
  String out;
  while (*s) out.push_back(static_cast<char16_t>(static_cast<unsigned char>(*s++)));
  return out;
}

[[noreturn]] void TypeMismatch() { Raise(kErrTypeMismatch); }
[[noreturn]] void Overflow() { Raise(kErrOverflow); }
[[noreturn]] void NullUse() { Raise(kErrInvalidUseOfNull); }

// Rounds a Currency to whole units, half to even.
int64_t CurrencyToWhole(Currency c) {
  int64_t q = c.scaled / Currency::kScale;
  int64_t r = c.scaled % Currency::kScale;
  int64_t half = Currency::kScale / 2;
  if (r > half || (r == half && (q & 1))) ++q;
  if (r < -half || (r == -half && (q & 1))) --q;
  return q;
}

int64_t CheckedWhole(double value, double low, double high) {
  if (std::isnan(value)) Overflow();
  double r = RoundHalfEven(value);
  if (r < low || r > high) Overflow();
  return static_cast<int64_t>(r);
}

String FormatDouble(double value, int significant) {
  if (value == 0) return u"0";  // also -0
  if (std::isnan(value)) return u"1.#QNAN";
  if (std::isinf(value)) return value > 0 ? u"1.#INF" : u"-1.#INF";
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.*G", significant, value);
  return Ascii(buf);
}

String FormatCurrency(Currency c) {
  // Work in unsigned so that the most negative value has a magnitude too.
  bool negative = c.scaled < 0;
  uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(c.scaled) : static_cast<uint64_t>(c.scaled);
  uint64_t whole = magnitude / Currency::kScale;
  uint64_t frac = magnitude % Currency::kScale;
  std::string text = (negative ? "-" : "") + std::to_string(whole);
  if (frac != 0) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%04u", static_cast<unsigned>(frac));
    std::string digits = buf;
    while (digits.back() == '0') digits.pop_back();
    text += "." + digits;
  }
  return Ascii(text.c_str());
}

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

StringView TrimBlanks(StringView s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

// A number of at most `maxDigits` digits in the text starting at `pos`, or -1.
int ReadDigits(StringView s, size_t& pos, size_t minDigits, size_t maxDigits) {
  int value = 0;
  size_t start = pos;
  while (pos < s.size() && pos - start < maxDigits && s[pos] >= u'0' && s[pos] <= u'9') {
    value = value * 10 + (s[pos] - u'0');
    ++pos;
  }
  return pos - start >= minDigits ? value : -1;
}

// "hh:nn[:ss]" from pos; the day fraction or nothing.
std::optional<double> ReadTime(StringView s, size_t& pos) {
  int h = ReadDigits(s, pos, 1, 2);
  if (h < 0 || pos >= s.size() || s[pos] != u':') return std::nullopt;
  ++pos;
  int n = ReadDigits(s, pos, 2, 2);
  if (n < 0) return std::nullopt;
  int sec = 0;
  if (pos < s.size() && s[pos] == u':') {
    ++pos;
    sec = ReadDigits(s, pos, 2, 2);
    if (sec < 0) return std::nullopt;
  }
  if (h > 23 || n > 59 || sec > 59) return std::nullopt;
  return (h * 3600 + n * 60 + sec) / 86400.0;
}

}  // namespace

// ---- Currency, rounding -------------------------------------------------------------------

double RoundHalfEven(double value) {
  if (!std::isfinite(value)) return value;
  double f = std::floor(value);
  double diff = value - f;  // exact: value and its floor share the exponent range
  if (diff < 0.5) return f;
  if (diff > 0.5) return f + 1;
  return std::fmod(f, 2.0) == 0 ? f : f + 1;
}

Currency Currency::FromDouble(double value) {
  double scaled = RoundHalfEven(value * kScale);
  // 2^63 is exactly representable; anything at or beyond it does not fit.
  if (std::isnan(scaled) || scaled >= 9223372036854775808.0 || scaled < -9223372036854775808.0) Overflow();
  return Currency{static_cast<int64_t>(scaled)};
}

// ---- VariantArray -------------------------------------------------------------------------

namespace {

Variant DefaultElement(VbVarType type) {
  switch (type) {
    case vbInteger: return Variant(int16_t{0});
    case vbLong: return Variant(int32_t{0});
    case vbSingle: return Variant(0.0f);
    case vbDouble: return Variant(0.0);
    case vbCurrency: return Variant(Currency{});
    case vbDate: return Variant(DateValue{});
    case vbString: return Variant(String());
    case vbBoolean: return Variant(false);
    case vbByte: return Variant(uint8_t{0});
    case vbObject: return Variant::Nothing();
    default: return Variant();
  }
}

size_t CountOf(const std::vector<VariantArray::Bound>& bounds) {
  size_t total = bounds.empty() ? 0 : 1;
  for (const auto& b : bounds) {
    if (b.count < 0) Raise(kErrSubscriptOutOfRange);
    // Guard the product against wrapping; nothing this large can be allocated anyway.
    if (b.count != 0 && total > std::numeric_limits<size_t>::max() / static_cast<size_t>(b.count)) {
      Raise(kErrOutOfMemory);
    }
    total *= static_cast<size_t>(b.count);
  }
  return total;
}

}  // namespace

VariantArray::VariantArray() = default;
VariantArray::~VariantArray() = default;
size_t VariantArray::Size() const { return m_items.size(); }
VariantArray::VariantArray(const VariantArray&) = default;
VariantArray::VariantArray(VariantArray&&) noexcept = default;
VariantArray& VariantArray::operator=(const VariantArray&) = default;
VariantArray& VariantArray::operator=(VariantArray&&) noexcept = default;

VariantArray::VariantArray(int32_t count, int32_t lower, VbVarType elementType)
    : VariantArray(std::vector<Bound>{Bound{lower, count}}, elementType) {}

VariantArray::VariantArray(std::vector<Variant> items, int32_t lower, VbVarType elementType)
    : m_bounds{Bound{lower, static_cast<int32_t>(items.size())}},
      m_items(std::move(items)),
      m_elementType(elementType) {}

VariantArray::VariantArray(std::vector<Bound> bounds, VbVarType elementType) : m_elementType(elementType) {
  m_items.assign(CountOf(bounds), DefaultElement(elementType));
  m_bounds = std::move(bounds);
}

int32_t VariantArray::LBound(int32_t dimension) const {
  if (dimension < 1 || dimension > Dimensions()) Raise(kErrSubscriptOutOfRange);
  return m_bounds[dimension - 1].lower;
}

int32_t VariantArray::UBound(int32_t dimension) const {
  if (dimension < 1 || dimension > Dimensions()) Raise(kErrSubscriptOutOfRange);
  const Bound& b = m_bounds[dimension - 1];
  return b.lower + b.count - 1;
}

size_t VariantArray::Offset(std::initializer_list<int32_t> indices) const {
  if (indices.size() != m_bounds.size()) Raise(kErrSubscriptOutOfRange);
  size_t offset = 0;
  size_t stride = 1;
  size_t d = 0;
  for (int32_t index : indices) {
    const Bound& b = m_bounds[d++];
    int64_t rel = static_cast<int64_t>(index) - b.lower;
    if (rel < 0 || rel >= b.count) Raise(kErrSubscriptOutOfRange);
    offset += static_cast<size_t>(rel) * stride;
    stride *= static_cast<size_t>(b.count);
  }
  return offset;
}

Variant& VariantArray::operator()(std::initializer_list<int32_t> indices) { return m_items[Offset(indices)]; }
const Variant& VariantArray::operator()(std::initializer_list<int32_t> indices) const {
  return m_items[Offset(indices)];
}
Variant& VariantArray::operator[](int32_t index) { return m_items[Offset({index})]; }
const Variant& VariantArray::operator[](int32_t index) const { return m_items[Offset({index})]; }

void VariantArray::ReDim(std::vector<Bound> bounds, bool preserve) {
  size_t total = CountOf(bounds);
  if (!preserve || !IsAllocated()) {
    m_items.assign(total, DefaultElement(m_elementType));
    m_bounds = std::move(bounds);
    return;
  }
  // Keeping elements works only when the leading dimensions stay as they are: then the old
  // elements are a prefix of the new storage.
  if (bounds.size() != m_bounds.size()) Raise(kErrSubscriptOutOfRange);
  for (size_t i = 0; i + 1 < bounds.size(); ++i) {
    if (bounds[i].lower != m_bounds[i].lower || bounds[i].count != m_bounds[i].count) {
      Raise(kErrSubscriptOutOfRange);
    }
  }
  if (bounds.back().lower != m_bounds.back().lower) Raise(kErrSubscriptOutOfRange);
  m_items.resize(total, DefaultElement(m_elementType));
  m_bounds = std::move(bounds);
}

std::vector<Variant>::iterator VariantArray::begin() { return m_items.begin(); }
std::vector<Variant>::iterator VariantArray::end() { return m_items.end(); }
std::vector<Variant>::const_iterator VariantArray::begin() const { return m_items.begin(); }
std::vector<Variant>::const_iterator VariantArray::end() const { return m_items.end(); }

namespace detail {
ArrayBox::ArrayBox(VariantArray array) : m_array(std::make_unique<VariantArray>(std::move(array))) {}
ArrayBox::ArrayBox(const ArrayBox& other) : m_array(std::make_unique<VariantArray>(*other.m_array)) {}
ArrayBox& ArrayBox::operator=(const ArrayBox& other) {
  if (this != &other) m_array = std::make_unique<VariantArray>(*other.m_array);
  return *this;
}
ArrayBox::~ArrayBox() = default;
}  // namespace detail

// ---- Variant: kinds -----------------------------------------------------------------------

Variant::Variant(VariantArray v) : m_value(detail::ArrayBox(std::move(v))) {}

Variant::Variant(const std::vector<String>& strings) {
  std::vector<Variant> items;
  items.reserve(strings.size());
  for (const String& s : strings) items.emplace_back(s);
  m_value = detail::ArrayBox(VariantArray(std::move(items), 0, vbString));
}

Variant Variant::Null() {
  Variant v;
  v.m_value = detail::NullTag{};
  return v;
}

int32_t Variant::VarType() const {
  switch (m_value.index()) {
    case 0: return vbEmpty;
    case 1: return vbNull;
    case 2: return vbInteger;
    case 3: return vbLong;
    case 4: return vbSingle;
    case 5: return vbDouble;
    case 6: return vbCurrency;
    case 7: return vbDate;
    case 8: return vbString;
    case 9: return vbBoolean;
    case 10: return vbByte;
    case 11: return vbError;
    case 12: return vbObject;
    case 13: return vbArray + vbByte;
    default: return vbArray + std::get<detail::ArrayBox>(m_value).get().ElementType();
  }
}

namespace {
const char16_t* TypeNameOf(int32_t type) {
  switch (type) {
    case vbEmpty: return u"Empty";
    case vbNull: return u"Null";
    case vbInteger: return u"Integer";
    case vbLong: return u"Long";
    case vbSingle: return u"Single";
    case vbDouble: return u"Double";
    case vbCurrency: return u"Currency";
    case vbDate: return u"Date";
    case vbString: return u"String";
    case vbObject: return u"Object";
    case vbError: return u"Error";
    case vbBoolean: return u"Boolean";
    case vbByte: return u"Byte";
    default: return u"Variant";
  }
}
}  // namespace

String Variant::TypeName() const {
  if (const ObjectRef* o = TryGet<ObjectRef>()) return *o ? (*o)->TypeName() : String(u"Nothing");
  int32_t type = VarType();
  if (type & vbArray) return String(TypeNameOf(type & ~vbArray)) + u"()";
  return TypeNameOf(type);
}

bool Variant::IsNothing() const {
  const ObjectRef* o = TryGet<ObjectRef>();
  return o && !*o;
}

bool Variant::IsArray() const {
  return std::holds_alternative<ByteArray>(m_value) || std::holds_alternative<detail::ArrayBox>(m_value);
}

bool Variant::IsMissing() const {
  const ErrorValue* e = TryGet<ErrorValue>();
  return e && e->code == kDispParamNotFound;
}

bool Variant::IsNumberKind() const {
  size_t i = m_value.index();
  return (i >= 2 && i <= 7) || i == 9 || i == 10;
}

const VariantArray* Variant::Array() const {
  const auto* box = std::get_if<detail::ArrayBox>(&m_value);
  return box ? &box->get() : nullptr;
}

VariantArray* Variant::Array() {
  auto* box = std::get_if<detail::ArrayBox>(&m_value);
  return box ? &box->get() : nullptr;
}

ObjectRef Variant::Obj() const {
  const ObjectRef* o = TryGet<ObjectRef>();
  return o ? *o : nullptr;
}

Variant Variant::Value() const {
  if (!IsObject()) return *this;
  Variant current = *this;
  // A default member may itself return an object; follow a few steps, as the host does.
  for (int depth = 0; depth < 8 && current.IsObject(); ++depth) {
    ObjectRef o = current.Obj();
    if (!o) Raise(kErrObjectNotSet);
    current = o->Invoke(u"", CallKind::Get, {});
  }
  if (current.IsObject()) TypeMismatch();
  return current;
}

// ---- Variant: conversions -----------------------------------------------------------------

double Variant::ToDouble() const {
  switch (m_value.index()) {
    case 0: return 0;
    case 1: NullUse();
    case 2: return std::get<int16_t>(m_value);
    case 3: return std::get<int32_t>(m_value);
    case 4: return std::get<float>(m_value);
    case 5: return std::get<double>(m_value);
    case 6: return std::get<Currency>(m_value).ToDouble();
    case 7: return std::get<DateValue>(m_value).days;
    case 8: {
      auto parse = g_hooks.textToNumber ? g_hooks.textToNumber : InvariantTextToNumber;
      std::optional<double> n = parse(std::get<String>(m_value));
      if (!n) TypeMismatch();
      if (!std::isfinite(*n)) Overflow();
      return *n;
    }
    case 9: return std::get<bool>(m_value) ? -1.0 : 0.0;
    case 10: return std::get<uint8_t>(m_value);
    case 12: return Value().ToDouble();
    default: TypeMismatch();
  }
}

int32_t Variant::ToLong() const {
  switch (m_value.index()) {
    case 2: return std::get<int16_t>(m_value);
    case 3: return std::get<int32_t>(m_value);
    case 9: return std::get<bool>(m_value) ? -1 : 0;
    case 10: return std::get<uint8_t>(m_value);
    case 6: {
      int64_t whole = CurrencyToWhole(std::get<Currency>(m_value));
      if (whole < INT32_MIN || whole > INT32_MAX) Overflow();
      return static_cast<int32_t>(whole);
    }
    default: return static_cast<int32_t>(CheckedWhole(ToDouble(), INT32_MIN, INT32_MAX));
  }
}

int16_t Variant::ToInteger() const {
  if (const Currency* c = TryGet<Currency>()) {
    int64_t whole = CurrencyToWhole(*c);
    if (whole < INT16_MIN || whole > INT16_MAX) Overflow();
    return static_cast<int16_t>(whole);
  }
  if (std::holds_alternative<double>(m_value) || std::holds_alternative<float>(m_value) ||
      std::holds_alternative<DateValue>(m_value) || IsString()) {
    return static_cast<int16_t>(CheckedWhole(ToDouble(), INT16_MIN, INT16_MAX));
  }
  int32_t v = ToLong();
  if (v < INT16_MIN || v > INT16_MAX) Overflow();
  return static_cast<int16_t>(v);
}

uint8_t Variant::ToByte() const {
  if (const Currency* c = TryGet<Currency>()) {
    int64_t whole = CurrencyToWhole(*c);
    if (whole < 0 || whole > 255) Overflow();
    return static_cast<uint8_t>(whole);
  }
  return static_cast<uint8_t>(CheckedWhole(ToDouble(), 0, 255));
}

float Variant::ToSingle() const {
  double d = ToDouble();
  if (std::isfinite(d) && std::fabs(d) > FLT_MAX) {
    // Values that round to FLT_MAX still fit; only those that would become infinite overflow.
    if (std::isinf(static_cast<float>(d))) Overflow();
  }
  return static_cast<float>(d);
}

Currency Variant::ToCurrency() const {
  switch (m_value.index()) {
    case 6: return std::get<Currency>(m_value);
    case 2:
    case 3:
    case 9:
    case 10: return Currency::FromUnits(ToLong());
    default: return Currency::FromDouble(ToDouble());
  }
}

DateValue Variant::ToDate() const {
  if (const DateValue* d = TryGet<DateValue>()) return *d;
  double days;
  if (const String* s = TryGet<String>()) {
    auto parseDate = g_hooks.textToDate ? g_hooks.textToDate : InvariantTextToDate;
    if (std::optional<double> d = parseDate(*s)) return DateValue{*d};
    auto parseNumber = g_hooks.textToNumber ? g_hooks.textToNumber : InvariantTextToNumber;
    std::optional<double> n = parseNumber(*s);
    if (!n) TypeMismatch();
    days = *n;
  } else {
    days = ToDouble();
  }
  if (!(days >= kMinDate && days <= kMaxDate)) Overflow();
  return DateValue{days};
}

bool Variant::ToBoolean() const {
  if (const String* s = TryGet<String>()) {
    StringView t = TrimBlanks(*s);
    if (TextEquals(t, u"True")) return true;
    if (TextEquals(t, u"False")) return false;
  }
  if (const bool* b = TryGet<bool>()) return *b;
  return ToDouble() != 0;
}

String Variant::ToString() const {
  switch (m_value.index()) {
    case 0: return String();
    case 1: NullUse();
    case 2: return Ascii(std::to_string(std::get<int16_t>(m_value)).c_str());
    case 3: return Ascii(std::to_string(std::get<int32_t>(m_value)).c_str());
    case 4:
    case 5:
    case 6: return g_hooks.numberToText ? g_hooks.numberToText(*this) : InvariantNumberToText(*this);
    case 7: {
      double days = std::get<DateValue>(m_value).days;
      return g_hooks.dateToText ? g_hooks.dateToText(days) : InvariantDateToText(days);
    }
    case 8: return std::get<String>(m_value);
    case 9: return std::get<bool>(m_value) ? u"True" : u"False";
    case 10: return Ascii(std::to_string(std::get<uint8_t>(m_value)).c_str());
    case 11: return u"Error " + Ascii(std::to_string(std::get<ErrorValue>(m_value).code).c_str());
    case 12: return Value().ToString();
    case 13: {
      // A byte array read as text: each pair of bytes is one code unit, low byte first; an odd
      // last byte becomes a unit of its own.
      const ByteArray& b = std::get<ByteArray>(m_value);
      String out;
      out.reserve((b.size() + 1) / 2);
      for (size_t i = 0; i < b.size(); i += 2) {
        char16_t lo = b[i];
        char16_t hi = i + 1 < b.size() ? b[i + 1] : 0;
        out.push_back(static_cast<char16_t>(lo | (hi << 8)));
      }
      return out;
    }
    default: TypeMismatch();
  }
}

ByteArray Variant::ToBytes() const {
  if (const ByteArray* b = TryGet<ByteArray>()) return *b;
  if (IsNull()) NullUse();
  if (!IsString() && !IsEmpty()) TypeMismatch();
  ByteArray out;
  if (const String* s = TryGet<String>()) {
    out.reserve(s->size() * 2);
    for (char16_t c : *s) {
      out.push_back(static_cast<uint8_t>(c & 0xFF));
      out.push_back(static_cast<uint8_t>(c >> 8));
    }
  }
  return out;
}

ObjectRef Variant::ToObject() const {
  if (!IsObject()) Raise(kErrObjectRequired);
  return Obj();
}

// ---- comparison ---------------------------------------------------------------------------

namespace {

// Integer-like kinds whose exact value is an int64 (for exact comparison with Currency).
bool ExactWhole(const Variant& v, int64_t& out) {
  switch (v.VarType()) {
    case vbEmpty: out = 0; return true;
    case vbInteger:
    case vbLong:
    case vbBoolean:
    case vbByte: out = v.ToLong(); return true;
    default: return false;
  }
}

}  // namespace

std::optional<int> Compare(const Variant& a0, const Variant& b0, VbCompareMethod method) {
  // Objects take part through their default values.
  Variant av, bv;
  const Variant* a = &a0;
  const Variant* b = &b0;
  if (a->IsObject()) { av = a->Value(); a = &av; }
  if (b->IsObject()) { bv = b->Value(); b = &bv; }
  if (a->IsNull() || b->IsNull()) return std::nullopt;
  if (a->IsArray() || b->IsArray() || a->IsError() || b->IsError()) TypeMismatch();
  if (a->IsEmpty() && b->IsEmpty()) return 0;

  bool as = a->IsString();
  bool bs = b->IsString();
  if (as || bs) {
    if (as && bs) return StrComp(*a->TryGet<String>(), *b->TryGet<String>(), method);
    if (as && b->IsEmpty()) return StrComp(*a->TryGet<String>(), u"", method);
    if (bs && a->IsEmpty()) return StrComp(u"", *b->TryGet<String>(), method);
    return as ? 1 : -1;  // a number sorts before any text
  }

  const Currency* ac = a->TryGet<Currency>();
  const Currency* bc = b->TryGet<Currency>();
  if (ac || bc) {
    int64_t whole;
    std::optional<int64_t> x, y;
    if (ac) x = ac->scaled;
    else if (ExactWhole(*a, whole) && std::llabs(whole) < INT64_MAX / Currency::kScale) x = whole * Currency::kScale;
    if (bc) y = bc->scaled;
    else if (ExactWhole(*b, whole) && std::llabs(whole) < INT64_MAX / Currency::kScale) y = whole * Currency::kScale;
    if (x && y) return *x < *y ? -1 : (*x > *y ? 1 : 0);
  }
  double x = a->ToDouble();
  double y = b->ToDouble();
  return x < y ? -1 : (x > y ? 1 : 0);
}

bool operator==(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c == 0;
}
bool operator!=(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c != 0;
}
bool operator<(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c < 0;
}
bool operator<=(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c <= 0;
}
bool operator>(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c > 0;
}
bool operator>=(const Variant& a, const Variant& b) {
  auto c = Compare(a, b);
  return c && *c >= 0;
}

Variant Concat(const Variant& a, const Variant& b) {
  if (a.IsNull() && b.IsNull()) return Variant::Null();
  String left = a.IsNull() ? String() : a.ToString();
  String right = b.IsNull() ? String() : b.ToString();
  return Variant(left + right);
}

bool SameObject(const Variant& a, const Variant& b) {
  return a.ToObject() == b.ToObject();
}

int32_t LBound(const Variant& v, int32_t dimension) {
  if (const VariantArray* arr = v.Array()) return arr->LBound(dimension);
  if (v.Bytes()) {
    if (dimension != 1) Raise(kErrSubscriptOutOfRange);
    return 0;
  }
  TypeMismatch();
}

int32_t UBound(const Variant& v, int32_t dimension) {
  if (const VariantArray* arr = v.Array()) return arr->UBound(dimension);
  if (const ByteArray* b = v.Bytes()) {
    if (dimension != 1) Raise(kErrSubscriptOutOfRange);
    return static_cast<int32_t>(b->size()) - 1;
  }
  TypeMismatch();
}

// ---- text hooks and the invariant forms ---------------------------------------------------

void SetVariantTextHooks(const VariantTextHooks& hooks) { g_hooks = hooks; }
const VariantTextHooks& GetVariantTextHooks() { return g_hooks; }

String InvariantNumberToText(const Variant& number) {
  if (const float* f = number.TryGet<float>()) return FormatDouble(*f, 7);
  if (const Currency* c = number.TryGet<Currency>()) return FormatCurrency(*c);
  if (const double* d = number.TryGet<double>()) return FormatDouble(*d, 15);
  if (const DateValue* d = number.TryGet<DateValue>()) return FormatDouble(d->days, 15);
  return number.ToString();
}

std::optional<double> InvariantTextToNumber(StringView text) {
  StringView s = TrimBlanks(text);
  if (s.empty()) return std::nullopt;
  if (s.size() >= 2 && s[0] == u'&' && (s[1] == u'H' || s[1] == u'h' || s[1] == u'O' || s[1] == u'o')) {
    bool hex = s[1] == u'H' || s[1] == u'h';
    uint64_t value = 0;
    if (s.size() == 2) return std::nullopt;
    for (size_t i = 2; i < s.size(); ++i) {
      char16_t c = s[i];
      int digit;
      if (c >= u'0' && c <= u'9') digit = c - u'0';
      else if (hex && c >= u'a' && c <= u'f') digit = c - u'a' + 10;
      else if (hex && c >= u'A' && c <= u'F') digit = c - u'A' + 10;
      else return std::nullopt;
      if (!hex && digit > 7) return std::nullopt;
      value = value * (hex ? 16 : 8) + digit;
      if (value > 0xFFFFFFFFull) return std::numeric_limits<double>::infinity();
    }
    // Read as a 32-bit pattern, so "&HFFFFFFFF" is -1 as a Long would hold it.
    return static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(value)));
  }
  // sign, digits with at most one ".", optional exponent; nothing else.
  std::string ascii;
  size_t i = 0;
  if (s[i] == u'+' || s[i] == u'-') ascii.push_back(static_cast<char>(s[i++]));
  size_t digits = 0;
  bool point = false;
  for (; i < s.size(); ++i) {
    char16_t c = s[i];
    if (c >= u'0' && c <= u'9') { ascii.push_back(static_cast<char>(c)); ++digits; }
    else if (c == u'.' && !point) { ascii.push_back('.'); point = true; }
    else break;
  }
  if (digits == 0) return std::nullopt;
  if (i < s.size() && (s[i] == u'e' || s[i] == u'E' || s[i] == u'd' || s[i] == u'D')) {
    ascii.push_back('e');
    ++i;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) ascii.push_back(static_cast<char>(s[i++]));
    size_t expDigits = 0;
    for (; i < s.size() && s[i] >= u'0' && s[i] <= u'9'; ++i, ++expDigits) ascii.push_back(static_cast<char>(s[i]));
    if (expDigits == 0) return std::nullopt;
  }
  if (i != s.size()) return std::nullopt;
  return std::strtod(ascii.c_str(), nullptr);  // overflow comes back as infinity
}

String InvariantDateToText(double days) {
  // Negative dates keep the time as a positive fraction: -1.25 is 1899-12-29 06:00.
  double whole = std::trunc(days);
  double fraction = std::fabs(days - whole);
  int64_t seconds = static_cast<int64_t>(std::llround(fraction * 86400.0));
  if (seconds >= 86400) {
    seconds -= 86400;
    whole += days < 0 ? -1 : 1;
  }
  char buf[40];
  std::string text;
  if (whole != 0 || seconds == 0) {
    int year;
    unsigned month, day;
    platform::CivilFromDays(static_cast<int64_t>(whole) - kUnixEpochDay, &year, &month, &day);
    std::snprintf(buf, sizeof buf, "%04d-%02u-%02u", year, month, day);
    text = buf;
  }
  if (seconds != 0) {
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", static_cast<int>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    if (!text.empty()) text += ' ';
    text += buf;
  }
  return Ascii(text.c_str());
}

std::optional<double> InvariantTextToDate(StringView text) {
  StringView s = TrimBlanks(text);
  size_t pos = 0;
  double whole = 0;
  bool hasDate = false;
  if (s.size() >= 8 && s[4] == u'-') {
    int y = ReadDigits(s, pos, 4, 4);
    if (y < 0 || pos >= s.size() || s[pos++] != u'-') return std::nullopt;
    int m = ReadDigits(s, pos, 1, 2);
    if (m < 1 || m > 12 || pos >= s.size() || s[pos++] != u'-') return std::nullopt;
    int d = ReadDigits(s, pos, 1, 2);
    if (d < 1) return std::nullopt;
    int64_t serial = platform::DaysFromCivil(y, m, d);
    int cy;
    unsigned cm, cd;
    platform::CivilFromDays(serial, &cy, &cm, &cd);
    if (cy != y || static_cast<int>(cm) != m || static_cast<int>(cd) != d) return std::nullopt;  // 2023-02-30
    whole = static_cast<double>(serial + kUnixEpochDay);
    hasDate = true;
    if (pos < s.size() && (s[pos] == u' ' || s[pos] == u'T')) ++pos;
  }
  double time = 0;
  if (pos < s.size()) {
    std::optional<double> t = ReadTime(s, pos);
    if (!t || pos != s.size()) return std::nullopt;
    time = *t;
  } else if (!hasDate) {
    return std::nullopt;
  }
  return whole < 0 ? whole - time : whole + time;
}

// ---- Object and late binding --------------------------------------------------------------

namespace {
std::atomic<uint32_t> g_nextObjectId{1};
}

Object::Object() : m_id(g_nextObjectId.fetch_add(1, std::memory_order_relaxed)) {}
Object::Object(const Object&) : Object() {}
Object::~Object() = default;

String Object::TypeName() const { return u"Object"; }

Variant Object::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  Raise(kErrMemberNotSupported);
}

std::vector<Variant> Object::EnumerateItems() { Raise(kErrMemberNotSupported); }

const Variant& ArgumentAt(std::span<const Variant> args, size_t index) {
  static const Variant missing = Variant::Missing();
  return index < args.size() ? args[index] : missing;
}

Variant CallByNameRef(const Variant& target, StringView name, CallKind kind, std::span<Variant> args) {
  ObjectRef o = target.ToObject();
  if (!o) Raise(kErrObjectNotSet);
  return o->Invoke(name, kind, args);
}

Variant CallByName(const Variant& target, StringView name, CallKind kind, std::vector<Variant> args) {
  return CallByNameRef(target, name, kind, std::span<Variant>(args));
}

}  // namespace mx::host
