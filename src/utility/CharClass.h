#pragma once
// Character classes in the sense the utilities need: what counts as a letter or a letter-or-digit
// for the e-mail check and the text filters. Letters are those of the Latin, Greek, Cyrillic,
// Armenian, Hebrew, Arabic and East-Asian blocks, so accented Portuguese text is kept whole;
// digits are "0" to "9" only.
namespace mx::utility {

[[nodiscard]] bool IsCharAlpha(char16_t c);
[[nodiscard]] inline bool IsCharDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
[[nodiscard]] inline bool IsCharAlphaNumeric(char16_t c) { return IsCharDigit(c) || IsCharAlpha(c); }

}  // namespace mx::utility
