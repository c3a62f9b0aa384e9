#pragma once
// The host's number conversions. Val reads a number the way source code writes one ("." is always
// the decimal mark); IsNumeric, CDbl and the other C-functions read text under the regional
// setting, where "1.234,56" is a number in pt-BR and "1.5" is fifteen, "." being a grouping mark.
// Failures raise the host's errors: 13 "Type mismatch" for text that is no number, 6 "Overflow"
// for a value outside the target type, 94 "Invalid use of Null".
#include <cstdint>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// The leading number of a text, 0 when there is none. Blanks, tabs and line feeds are skipped
// wherever they are; "&H" and "&O" read hexadecimal and octal as the host's 16-bit Integer when
// the value fits in four hex digits, else as a 32-bit Long ("&HFFFF" is -1); an exponent may be
// written with E or D.
[[nodiscard]] double Val(StringView text);

// Reading a number under the regional setting: blanks around, a sign before or after, the
// currency symbol, parentheses for a negative, grouping marks in the whole part, one decimal
// mark, an exponent; or "&H"/"&O" as Val reads them.
enum class NumberParse { Ok, NotANumber, Overflow };
[[nodiscard]] NumberParse ParseNumber(StringView text, double& value);

[[nodiscard]] bool IsNumeric(StringView text);
[[nodiscard]] bool IsNumeric(const String& text);
[[nodiscard]] bool IsNumeric(const char16_t* text);
// Numbers, Booleans and Empty are numeric; Strings when they read as a number; Null, dates,
// objects, arrays and errors are not.
[[nodiscard]] bool IsNumeric(const Variant& value);

[[nodiscard]] double CDbl(StringView text);
[[nodiscard]] double CDbl(const String& text);
[[nodiscard]] double CDbl(const char16_t* text);
[[nodiscard]] double CDbl(const Variant& value);

[[nodiscard]] float CSng(double value);
[[nodiscard]] float CSng(const Variant& value);

// The integer conversions round half to even: CInt(2.5) is 2, CInt(3.5) is 4.
[[nodiscard]] int32_t CLng(double value);
[[nodiscard]] int32_t CLng(const Variant& value);
[[nodiscard]] int16_t CInt(double value);
[[nodiscard]] int16_t CInt(const Variant& value);
// Four decimals, the fourth rounded half to even.
[[nodiscard]] Currency CCur(double value);
[[nodiscard]] Currency CCur(const Variant& value);

// A date from a Variant: a date as it is, a number as a day count, a String read as a date
// text under the regional setting (or, failing that, as a number).
[[nodiscard]] double CDate(const Variant& value);
[[nodiscard]] bool IsDate(const Variant& value);

// Round to `digits` places after the point, half to even on the decimal digits of the value
// (Round(2.5) = 2, Round(0.125, 2) = 0.12, Round(2.675, 2) = 2.68). Negative digits raise 5.
[[nodiscard]] double Round(double value, int digits = 0);
// Int rounds down (Int(-1.5) = -2); Fix toward zero (Fix(-1.5) = -1).
[[nodiscard]] double Int(double value);
[[nodiscard]] double Fix(double value);

}  // namespace mx::host
