#pragma once
// The numeric value of a cell text, shared by the totals, the numeric sort and CellValue.
#include "host/String.h"

namespace mx::grid {

// Empty is 0; a text the regional conversion reads as a non-zero number is that number; "True"
// is 1 and "False" 0. Anything else is upper-cased and trimmed, an "&H" or "&O" prefix kept, and
// when the first character after it is a digit the characters are walked: digits, ",", "-" and
// "." are kept, "$", "£" and blanks skipped, A-F kept after "&H", and any other character ends
// the walk. The kept text is converted the regional way; what does not convert is 0.
[[nodiscard]] double GridNumericValue(host::StringView text);

}  // namespace mx::grid
