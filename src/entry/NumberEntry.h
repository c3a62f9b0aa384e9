#pragma once
// Number and currency entry of the text box, as pure text logic: the key filter, the limit on
// decimals, the currency pattern, the rewriting of a set or left text into its shown form, and
// the currency entry that shifts digits in from the right while typing.
#include <cstdint>

#include "host/String.h"

namespace mx::entry {

using host::String;
using host::StringView;

// Member names carry the blanks of the public names as underscores.
enum ENUM_FORMAT_TYPE : int32_t { To_Text = 0, To_Number = 1, To_Currency = 2 };
enum ENUM_TEXT_CASE : int32_t { Case_Normal = 0, Case_Upper = 1, Case_Lower = 2 };

// What the number and currency rules read of the control's properties.
struct NumberOptions {
  int32_t formatType = To_Text;
  bool allowNegativeNumber = true;
  bool autoFormatCurrency = false;
  String currencyChar = u"R$";
  int16_t decimals = 2;
  String decimalSimbol = u",";
};

// A number key: "0" to "9" and Backspace pass; "," passes only when decimals are allowed, and
// "." then becomes ","; anything else is zeroed.
void FilterNumberKey(int16_t& keyAscii, bool xDecimal);

// Whether a key typed into a currency entry without auto-format must be refused by the decimal
// rules: a second comma always, and any other key but Delete and Backspace when the decimals
// after the comma are complete and the caret stands behind the comma with nothing selected.
[[nodiscard]] bool RefusedByDecimalsLimit(StringView text, int32_t selStart, int32_t selLength, int16_t keyAscii,
                                          int16_t decimals);

// "#,", decimals times "#", "0." and decimals times "0": "#,##0.00" for 2, "#,###0.000" for 3.
// With no decimals the point is left out ("#,0").
[[nodiscard]] String CurrencyPattern(int16_t decimals);

// What a currency entry shows after FormatType is set: "R$ 0,00" for the defaults.
[[nodiscard]] String CurrencyZeroText(const NumberOptions& options);

// The shown form of a text set into a number (FormatType 1) or currency (FormatType 2) entry:
// a minus kept in front when negatives are allowed; "-" or nothing becomes "0"; currency goes
// through the currency pattern unless it is formatted as typed, and gets its prefix. Text entries
// come back unchanged.
[[nodiscard]] String FormatNumberEntry(StringView text, const NumberOptions& options);

// The plain number a currency entry shows while it is edited: no prefix, no grouping, no fixed
// decimals ("R$ 1.234,50" -> "1234,5").
[[nodiscard]] String PlainCurrencyText(StringView text, const NumberOptions& options);

// Currency entry from the right: the digits typed so far, the last `decimals` of them behind the
// decimal mark, in the two-section currency pattern; a minus anywhere in the text is kept in
// front. "1234" gives "12,34" in pt-BR.
[[nodiscard]] String FormatCurrencyAsTyped(StringView text, int16_t decimals);

// Letter case of a text or a typed character.
[[nodiscard]] String ApplyTextCase(StringView text, int32_t textCase);
[[nodiscard]] int16_t ApplyTextCase(int16_t keyAscii, int32_t textCase);

}  // namespace mx::entry
