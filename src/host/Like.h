#pragma once
// The host's Like operator. In the pattern: "?" any one character, "*" any run of characters
// (none included), "#" one digit 0-9, "[list]" one character of the list, "[!list]" one character
// not in it. A list holds characters and ascending ranges ("[a-cx]"); "-" at either end of a list
// is itself; "[" "?" "#" "*" inside brackets stand for themselves; "[]" matches nothing at all
// (a zero-length element). Binary comparison is by code unit; text comparison ignores case, for
// single characters and for range bounds alike. A "[" without its "]" or a descending range
// raises 93 "Invalid pattern string".
#include "host/String.h"

namespace mx::host {

[[nodiscard]] bool Like(StringView text, StringView pattern, VbCompareMethod compare = vbBinaryCompare);

}  // namespace mx::host
