#include "entry/NumberEntry.h"

#include <cmath>

#include "host/Conversion.h"
#include "host/Format.h"
#include "host/Locale.h"
#include "host/Strings.h"
#include "utility/MX.h"

namespace mx::entry {

namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kComma = 44;
constexpr int16_t kDot = 46;

[[nodiscard]] String WithoutChar(StringView text, char16_t c) {
  String out;
  out.reserve(text.size());
  for (char16_t ch : text) {
    if (ch != c) out.push_back(ch);
  }
  return out;
}

[[nodiscard]] bool HasMinus(StringView text) { return text.find(u'-') != StringView::npos; }

// The host's rendering of a text's value as a Double; a text that does not read as a number
// renders as nothing, as a failed conversion leaves it.
[[nodiscard]] String DoubleText(StringView text) {
  double value = 0;
  if (host::ParseNumber(host::Trim(text), value) != host::NumberParse::Ok) return String();
  return host::GeneralNumberText(value, host::CurrentLocale().decimalMark);
}

}  // namespace

void FilterNumberKey(int16_t& keyAscii, bool xDecimal) {
  if ((keyAscii >= u'0' && keyAscii <= u'9') || keyAscii == kBackspace) return;
  if (keyAscii == kComma) {
    if (!xDecimal) keyAscii = 0;
    return;
  }
  keyAscii = (keyAscii == kDot && xDecimal) ? kComma : 0;
}

bool RefusedByDecimalsLimit(StringView text, int32_t selStart, int32_t selLength, int16_t keyAscii,
                            int16_t decimals) {
  const int32_t r = host::InStrRev(text, u",");
  if (r == 0) return false;
  if (keyAscii == kComma) return true;
  if (keyAscii == kBackspace || keyAscii == kDot || keyAscii == 0) return false;
  // A selection is replaced by the key, so it may always be typed over.
  if (selLength > 0) return false;
  const int32_t after = static_cast<int32_t>(text.size()) - r;
  return after >= decimals && selStart >= r;
}

String CurrencyPattern(int16_t decimals) {
  const int32_t d = decimals > 0 ? decimals : 0;
  String out = u"#,";
  out.append(static_cast<size_t>(d), u'#');
  out += u"0";
  if (d > 0) {
    out += u".";
    out.append(static_cast<size_t>(d), u'0');
  }
  return out;
}

String CurrencyZeroText(const NumberOptions& options) {
  String out = options.currencyChar + u" 0";
  if (options.decimals > 0) {
    out += options.decimalSimbol;
    out.append(static_cast<size_t>(options.decimals), u'0');
  }
  return host::Trim(out);
}

String FormatNumberEntry(StringView text, const NumberOptions& options) {
  if (options.formatType == To_Number) {
    const bool negative = options.allowNegativeNumber && HasMinus(text);
    String out = utility::ReturnNumbersOnly(text, false);
    if (negative) out = u"-" + out;
    if (out.empty() || out == u"-") out = u"0";
    return out;
  }
  if (options.formatType != To_Currency) return String(text);

  String t(text);
  if (!options.currencyChar.empty()) t = host::Replace(t, options.currencyChar, u"");
  // The value is read without its minus, so that a shown "-R$ -5,00" reads back as the same
  // amount; the minus is put back in front when negatives are allowed.
  const bool negative = options.allowNegativeNumber && HasMinus(t);
  t = DoubleText(WithoutChar(t, u'-'));
  if (negative) t = u"-" + t;
  if (t.empty() || t == u"-") t = u"0";
  if (!options.autoFormatCurrency) {
    if (options.decimalSimbol != u",") t = host::Replace(t, u",", options.decimalSimbol);
    t = host::Format(t, CurrencyPattern(options.decimals));
  }
  if (options.currencyChar.empty()) return host::Trim(t);
  // A negative amount keeps its own minus behind the prefix: "-R$ -5,00".
  if (!t.empty() && t.front() == u'-') return u"-" + options.currencyChar + u" " + t;
  return options.currencyChar + u" " + t;
}

String PlainCurrencyText(StringView text, const NumberOptions& options) {
  String t(text);
  if (!options.currencyChar.empty()) t = host::Replace(t, options.currencyChar, u"");
  const bool negative = HasMinus(t);
  t = host::Trim(WithoutChar(WithoutChar(t, u'-'), u' '));
  if (t.empty()) return negative ? u"-" : String();
  double value = 0;
  if (host::ParseNumber(t, value) != host::NumberParse::Ok) return String();
  // Money keeps four decimals: the plain text is what the value holds at that precision.
  value = host::Round(value, 4);
  String out = host::GeneralNumberText(value, host::CurrentLocale().decimalMark);
  return negative && value != 0 ? u"-" + out : out;
}

String FormatCurrencyAsTyped(StringView text, int16_t decimals) {
  const int32_t d = decimals > 0 ? decimals : 0;
  const bool negative = HasMinus(text);
  // Only the digits count: the decimal mark and the grouping of the last rendering are laid
  // anew, so the value is the digits read as a whole number of the smallest unit.
  String digits = utility::ReturnNumbersOnly(text, false);
  if (static_cast<int32_t>(digits.size()) < d + 1) digits.insert(0, static_cast<size_t>(d + 1) - digits.size(), u'0');
  double units = 0;
  for (char16_t c : digits) units = units * 10 + (c - u'0');
  const double value = units / std::pow(10.0, d);
  const String run = String(static_cast<size_t>(d), u'#');
  String pattern = CurrencyPattern(static_cast<int16_t>(d)) + u";-#," + run + u"0";
  if (d > 0) pattern += u"." + String(static_cast<size_t>(d), u'0');
  String out = host::Format(value, pattern);
  return negative ? u"-" + out : out;
}

String ApplyTextCase(StringView text, int32_t textCase) {
  if (textCase == Case_Upper) return host::UCase(text);
  if (textCase == Case_Lower) return host::LCase(text);
  return String(text);
}

int16_t ApplyTextCase(int16_t keyAscii, int32_t textCase) {
  if (keyAscii <= 0) return keyAscii;
  const auto c = static_cast<char16_t>(static_cast<uint16_t>(keyAscii));
  if (textCase == Case_Upper) return static_cast<int16_t>(host::UpperChar(c));
  if (textCase == Case_Lower) return static_cast<int16_t>(host::LowerChar(c));
  return keyAscii;
}

}  // namespace mx::entry
