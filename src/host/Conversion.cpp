#include "host/Conversion.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "host/DateTime.h"
#include "host/DecimalDigits.h"
#include "host/Err.h"
#include "host/Format.h"
#include "host/Locale.h"

namespace mx::host {
namespace {

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

int HexDigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// "&H..." and "&O..." starting at text[0] == '&'. Reads as many digits as there are; `used`
// tells how far it got. A trailing "&" marks a Long, so "&HFFFF&" is 65535 and not -1.
NumberParse ParseRadix(StringView text, double& value, size_t& used) {
  used = 0;
  if (text.size() < 2 || text[0] != u'&') return NumberParse::NotANumber;
  int radix;
  size_t i = 2;
  if (text[1] == u'H' || text[1] == u'h') radix = 16;
  else if (text[1] == u'O' || text[1] == u'o') radix = 8;
  else if (text[1] >= u'0' && text[1] <= u'7') { radix = 8; i = 1; }
  else return NumberParse::NotANumber;
  uint64_t accumulated = 0;
  size_t start = i;
  for (; i < text.size(); ++i) {
    int digit = HexDigitValue(text[i]);
    if (digit < 0 || digit >= radix) break;
    accumulated = accumulated * radix + digit;
    if (accumulated > 0xFFFFFFFFull) return NumberParse::Overflow;
  }
  if (i == start) return NumberParse::NotANumber;
  bool forceLong = i < text.size() && text[i] == u'&';
  if (forceLong) ++i;
  used = i;
  // The host's literals are Integers while they fit in 16 bits, then Longs: both read the top bit
  // as the sign.
  if (!forceLong && accumulated <= 0xFFFF) value = static_cast<int16_t>(static_cast<uint16_t>(accumulated));
  else value = static_cast<int32_t>(static_cast<uint32_t>(accumulated));
  return NumberParse::Ok;
}

bool StartsWith(StringView text, size_t at, StringView prefix) {
  return !prefix.empty() && text.substr(at, prefix.size()) == prefix;
}

[[noreturn]] void RaiseFor(NumberParse result) {
  Raise(result == NumberParse::Overflow ? kErrOverflow : kErrTypeMismatch);
}

template <typename T>
T CheckedRound(double value) {
  if (std::isnan(value)) Raise(kErrOverflow);
  double rounded = RoundHalfEven(value);
  if (rounded < static_cast<double>(std::numeric_limits<T>::min()) ||
      rounded > static_cast<double>(std::numeric_limits<T>::max()))
    Raise(kErrOverflow);
  return static_cast<T>(rounded);
}

}  // namespace

double Val(StringView text) {
  // The host drops blanks, tabs and line feeds before reading: Val(" 1 2 3") is 123.
  String compact;
  compact.reserve(text.size());
  for (char16_t c : text) {
    if (c != u' ' && c != u'\t' && c != u'\n') compact.push_back(c);
  }
  if (!compact.empty() && compact[0] == u'&') {
    double value = 0;
    size_t used = 0;
    NumberParse result = ParseRadix(compact, value, used);
    if (result == NumberParse::Overflow) Raise(kErrOverflow);
    return result == NumberParse::Ok ? value : 0.0;
  }
  std::string number;
  size_t i = 0;
  if (i < compact.size() && (compact[i] == u'+' || compact[i] == u'-')) number.push_back(static_cast<char>(compact[i++]));
  size_t digits = 0;
  while (i < compact.size() && IsDigit(compact[i])) { number.push_back(static_cast<char>(compact[i++])); ++digits; }
  if (i < compact.size() && compact[i] == u'.') {
    number.push_back('.');
    ++i;
    while (i < compact.size() && IsDigit(compact[i])) { number.push_back(static_cast<char>(compact[i++])); ++digits; }
  }
  if (digits == 0) return 0.0;
  if (i < compact.size() && (compact[i] == u'e' || compact[i] == u'E' || compact[i] == u'd' || compact[i] == u'D')) {
    size_t j = i + 1;
    std::string exponent = "e";
    if (j < compact.size() && (compact[j] == u'+' || compact[j] == u'-')) exponent.push_back(static_cast<char>(compact[j++]));
    size_t start = j;
    while (j < compact.size() && IsDigit(compact[j])) exponent.push_back(static_cast<char>(compact[j++]));
    // An exponent mark with no digits after it ends the number before the mark.
    if (j > start) number += exponent;
  }
  double value = std::strtod(number.c_str(), nullptr);
  if (!std::isfinite(value)) Raise(kErrOverflow);
  return value;
}

NumberParse ParseNumber(StringView text, double& value) {
  size_t begin = 0, end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  StringView s = text.substr(begin, end - begin);
  if (s.empty()) return NumberParse::NotANumber;

  if (s[0] == u'&') {
    size_t used = 0;
    NumberParse result = ParseRadix(s, value, used);
    if (result == NumberParse::Ok && used != s.size()) return NumberParse::NotANumber;
    return result;
  }

  const Locale& locale = CurrentLocale();
  bool parens = false;
  if (s.front() == u'(' && s.back() == u')') {
    parens = true;
    s = s.substr(1, s.size() - 2);
  }

  size_t i = 0;
  bool negative = false, haveSign = false, haveSymbol = false;
  auto skipBlanks = [&] { while (i < s.size() && IsBlank(s[i])) ++i; };
  // Takes a sign or the currency symbol at i, each at most once in the whole text.
  auto takeAffix = [&] {
    if (!haveSign && (s[i] == u'+' || s[i] == u'-')) {
      haveSign = true;
      negative = s[i] == u'-';
      ++i;
      return true;
    }
    if (!haveSymbol && StartsWith(s, i, locale.currencySymbol)) {
      haveSymbol = true;
      i += locale.currencySymbol.size();
      return true;
    }
    return false;
  };
  // Before the digits: a sign and the currency symbol, in either order, blanks between.
  for (skipBlanks(); i < s.size() && takeAffix(); skipBlanks()) {
  }

  std::string number;
  size_t digits = 0;
  while (i < s.size()) {
    if (IsDigit(s[i])) { number.push_back(static_cast<char>(s[i])); ++digits; }
    // Grouping marks count for nothing, wherever they stand in the whole part.
    else if (s[i] != locale.groupingMark || digits == 0) break;
    ++i;
  }
  if (i < s.size() && s[i] == locale.decimalMark) {
    number.push_back('.');
    ++i;
    while (i < s.size() && IsDigit(s[i])) { number.push_back(static_cast<char>(s[i++])); ++digits; }
  }
  if (digits == 0) return NumberParse::NotANumber;
  if (i < s.size() && (s[i] == u'e' || s[i] == u'E' || s[i] == u'd' || s[i] == u'D')) {
    number.push_back('e');
    ++i;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) number.push_back(static_cast<char>(s[i++]));
    size_t start = i;
    while (i < s.size() && IsDigit(s[i])) number.push_back(static_cast<char>(s[i++]));
    if (i == start) return NumberParse::NotANumber;
  }
  // After the digits: the sign and the symbol that did not come before, and nothing else.
  for (skipBlanks(); i < s.size(); skipBlanks())
    if (!takeAffix()) return NumberParse::NotANumber;
  // "(-1)" is no number: the parentheses are the sign.
  if (parens && haveSign) return NumberParse::NotANumber;

  double parsed = std::strtod(number.c_str(), nullptr);
  if (!std::isfinite(parsed)) return NumberParse::Overflow;
  value = (negative || parens) ? -parsed : parsed;
  return NumberParse::Ok;
}

bool IsNumeric(StringView text) {
  double ignored;
  return ParseNumber(text, ignored) == NumberParse::Ok;
}
bool IsNumeric(const String& text) { return IsNumeric(StringView(text)); }
bool IsNumeric(const char16_t* text) { return IsNumeric(StringView(text ? text : u"")); }

bool IsNumeric(const Variant& value) {
  if (const String* text = value.TryGet<String>()) return IsNumeric(StringView(*text));
  if (value.IsEmpty()) return true;
  if (value.TryGet<DateValue>()) return false;
  if (value.IsArray() || value.IsObject() || value.IsError() || value.IsNull()) return false;
  return value.IsNumberKind();
}

double CDbl(StringView text) {
  double value = 0;
  NumberParse result = ParseNumber(text, value);
  if (result != NumberParse::Ok) RaiseFor(result);
  return value;
}
double CDbl(const String& text) { return CDbl(StringView(text)); }
double CDbl(const char16_t* text) { return CDbl(StringView(text ? text : u"")); }

double CDbl(const Variant& value) {
  if (const String* text = value.TryGet<String>()) return CDbl(StringView(*text));
  return value.ToDouble();
}

float CSng(double value) {
  if (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()) Raise(kErrOverflow);
  return static_cast<float>(value);
}
float CSng(const Variant& value) { return CSng(CDbl(value)); }

int32_t CLng(double value) { return CheckedRound<int32_t>(value); }
int32_t CLng(const Variant& value) { return CLng(CDbl(value)); }
int16_t CInt(double value) { return CheckedRound<int16_t>(value); }
int16_t CInt(const Variant& value) { return CInt(CDbl(value)); }

Currency CCur(double value) { return Currency::FromDouble(value); }
Currency CCur(const Variant& value) {
  if (const Currency* currency = value.TryGet<Currency>()) return *currency;
  return CCur(CDbl(value));
}

double CDate(const Variant& value) {
  if (value.IsNull()) Raise(kErrInvalidUseOfNull);
  if (const DateValue* date = value.TryGet<DateValue>()) return date->days;
  if (const String* text = value.TryGet<String>()) {
    double date;
    if (TryParseDate(*text, date)) return date;
    double number;
    if (ParseNumber(*text, number) == NumberParse::Ok) return CDate(number);
    Raise(kErrTypeMismatch);
  }
  return CDate(CDbl(value));
}

bool IsDate(const Variant& value) {
  if (value.TryGet<DateValue>()) return true;
  if (const String* text = value.TryGet<String>()) return IsDate(StringView(*text));
  return false;
}

double Round(double value, int digits) {
  if (digits < 0) Raise(kErrInvalidProcedureCall);
  if (!std::isfinite(value)) return value;
  DecimalDigits decimal = DecimalDigits::FromDouble(value);
  decimal.RoundToFraction(digits, true);
  return decimal.ToDouble();
}

double Int(double value) { return std::floor(value); }
double Fix(double value) { return std::trunc(value); }

}  // namespace mx::host
