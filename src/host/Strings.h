#pragma once
// The host's string functions. Positions are 1-based and lengths count UTF-16 code units, so a
// character outside the first plane (a surrogate pair) counts as two. Bad arguments raise the
// host's error 5 "Invalid procedure call or argument".
#include <cstdint>
#include <optional>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// Case mapping of one code unit: ASCII, Latin-1, Latin Extended-A, Greek and Cyrillic. Other
// units are returned unchanged.
[[nodiscard]] char16_t UpperChar(char16_t c);
[[nodiscard]] char16_t LowerChar(char16_t c);
// The letter without its accent, for Latin-1 and Latin Extended-A letters ("ã" -> "a").
[[nodiscard]] char16_t BaseLetter(char16_t c);
// The upper-case form used to compare and hash text without regard to case.
[[nodiscard]] String FoldCase(StringView s);

[[nodiscard]] int32_t Len(StringView s);
// Byte length of the text as the host stores it: two bytes per code unit.
[[nodiscard]] int32_t LenB(StringView s);
// Start beyond the end gives ""; start < 1 or a negative length raises 5.
[[nodiscard]] String Mid(StringView s, int32_t start, std::optional<int32_t> length = std::nullopt);
[[nodiscard]] String Left(StringView s, int32_t length);
[[nodiscard]] String Right(StringView s, int32_t length);

// The 1-based position of find in s at or after start, or 0. An empty find returns start; an
// empty s returns 0. start < 1 raises 5.
[[nodiscard]] int32_t InStr(StringView s, StringView find, VbCompareMethod compare = vbBinaryCompare);
[[nodiscard]] int32_t InStr(int32_t start, StringView s, StringView find, VbCompareMethod compare = vbBinaryCompare);
// The last position of find that ends at or before start (-1: the end of s), or 0. Start 0 or
// below -1 raises 5; a start past the end returns 0.
[[nodiscard]] int32_t InStrRev(StringView s, StringView find, int32_t start = -1,
                               VbCompareMethod compare = vbBinaryCompare);
// Replaces up to count occurrences (-1: all) and returns the text from start on, as the host does.
[[nodiscard]] String Replace(StringView expression, StringView find, StringView replacement, int32_t start = 1,
                             int32_t count = -1, VbCompareMethod compare = vbBinaryCompare);

// Blanks (U+0020) only; tabs and other white space stay.
[[nodiscard]] String Trim(StringView s);
[[nodiscard]] String LTrim(StringView s);
[[nodiscard]] String RTrim(StringView s);
[[nodiscard]] String LCase(StringView s);
[[nodiscard]] String UCase(StringView s);

[[nodiscard]] String Space(int32_t count);
// The host's String(count, character): the first unit of character, or the unit with that code
// (ChrW rules). An empty character or a negative count raises 5.
[[nodiscard]] String StringOf(int32_t count, StringView character);
[[nodiscard]] String StringOf(int32_t count, int32_t charCode);
[[nodiscard]] String StrReverse(StringView s);

// Split: an empty expression gives no elements; an empty delimiter gives the whole expression;
// limit -1 is no limit, 0 gives no elements, and the last element keeps the rest of the text.
// A limit below -1 raises 5.
[[nodiscard]] std::vector<String> Split(StringView expression, StringView delimiter = u" ", int32_t limit = -1,
                                        VbCompareMethod compare = vbBinaryCompare);
[[nodiscard]] String Join(const std::vector<String>& items, StringView delimiter = u" ");
// Join of an array Variant: each element as CStr shows it. Raises 13 for a non-array and 5 for an
// array of more than one dimension.
[[nodiscard]] String Join(const Variant& items, StringView delimiter = u" ");

// -1, 0 or 1. Binary: code-unit order. Text: without regard to case, letters ordered beside their
// accented forms (accents decide only between texts otherwise equal), punctuation before digits
// before letters.
[[nodiscard]] int32_t StrComp(StringView a, StringView b, VbCompareMethod compare = vbBinaryCompare);
// Text-mode equality, the test used for keys and member names.
[[nodiscard]] bool TextEquals(StringView a, StringView b);

// Asc: the Windows-1252 code of the first character ("?" = 63 for one outside it). AscW: the
// first code unit as the host's signed Integer. Both raise 5 for "".
[[nodiscard]] int32_t Asc(StringView s);
[[nodiscard]] int32_t AscW(StringView s);
// Chr: a Windows-1252 code 0..255; ChrW: -32768..65535 (negative codes wrap). Others raise 5.
[[nodiscard]] String Chr(int32_t code);
[[nodiscard]] String ChrW(int32_t code);

// Hex and Oct of a whole number: Integer and Byte values as 16 bits, others rounded to a Long
// and shown as 32 bits, so negative numbers appear in two's complement ("FFFF" for an Integer -1).
[[nodiscard]] String Hex(const Variant& number);
[[nodiscard]] String Oct(const Variant& number);
// Str: the number in the invariant form with a leading blank when it is not negative. Raises 94
// for Null and 13 for text that is not a number.
[[nodiscard]] String Str(const Variant& number);

// LSet and RSet into a field of the given width: the text cut to the width or padded with blanks
// on the right (LSet) or the left (RSet).
[[nodiscard]] String LSet(StringView text, int32_t width);
[[nodiscard]] String RSet(StringView text, int32_t width);

}  // namespace mx::host
