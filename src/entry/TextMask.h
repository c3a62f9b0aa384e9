#pragma once
// The fixed-position masks of the text box, as pure text logic. A mask such as "##/##/####" has
// free positions ("#" and "@") and literals (everything else). Its template is the mask with each
// free position turned into a blank, and an empty entry shows that template.
//
// Positions in these routines follow the text box: a caret is a 0-based insertion point (the
// inner control's SelStart), and "position p" is the 1-based character p, the character just
// before a caret at p.
#include <cstdint>

#include "host/String.h"

namespace mx::entry {

using host::String;
using host::StringView;

// Which characters a mask keeps. Member names carry the blanks of the public names as underscores.
enum ENUM_MASK_TYPE : int32_t { Only_Text = 0, Only_Number = 1, Text_And_Number = 2 };

// The mask with every "#" and "@" turned into a blank.
[[nodiscard]] String MaskTemplate(StringView mask);

// Whether a character belongs to the class a mask type keeps (digits only for numberOnly). An
// unknown mask type keeps nothing.
[[nodiscard]] bool MaskAcceptsChar(char16_t c, int32_t maskType, bool numberOnly = false);
// The characters of text that a mask type keeps, in order.
[[nodiscard]] String FilterMaskChars(StringView text, int32_t maskType, bool numberOnly = false);

// Lays the kept characters of text into the free positions of the mask, literals in between;
// the result is trimmed. A text with no letter or digit at all gives the untrimmed template.
[[nodiscard]] String ApplyMask(StringView text, StringView mask, int32_t maskType, bool numberOnly = false);

// The text without the mask: the text itself without a mask, else its letters (type 0), digits
// (1) or both (2); any other type gives an empty string.
[[nodiscard]] String TextNoMask(StringView text, StringView mask, int32_t maskType);

// The result of one key on a masked entry.
struct MaskKeyResult {
  String text;         // the text after the key
  int32_t caret = 0;   // where the caret goes
  bool changed = false;  // whether the text was rewritten
};

// A typed character on a masked entry: the next free position after the caret takes it over its
// blank (the text keeps the mask's length), the caret moves behind it. A character the mask type
// refuses, or one with no free position left, changes nothing. Backspace blanks the nearest free
// position before the caret and steps back over literals; Enter passes. keyAscii is zeroed for
// every key the routine consumes (all but Enter), so that the inner control inserts nothing.
[[nodiscard]] MaskKeyResult MaskKeyPress(StringView text, StringView mask, int32_t maskType, bool numberOnly,
                                         int32_t caret, int16_t& keyAscii);

// Delete or Backspace on a masked entry with the given selection: every selected position (or,
// with nothing selected, position p = selStart, where 0 counts as 1) whose character differs
// from the template becomes a blank, so that literals survive. Positions past the mask are left.
// caret receives p. The text is not yet re-laid through ApplyMask.
[[nodiscard]] String MaskBlankSelection(StringView text, StringView mask, int32_t selStart, int32_t selLength,
                                        int32_t& caret);

// The first blank of the template that is still blank in the text (0-based), or the text's
// length when there is none: where the caret waits for the next character.
[[nodiscard]] int32_t MaskFirstFree(StringView text, StringView mask);

}  // namespace mx::entry
