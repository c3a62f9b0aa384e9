#pragma once
// The host's string: UTF-16 code units, as the controls count them. Lengths, positions and byte
// counts are in UTF-16 units; text is converted only at the edges (files, fonts, the console).
#include <string>
#include <string_view>

namespace mx::host {

using String = std::u16string;
using StringView = std::u16string_view;

// How text is compared: code unit by code unit, or without regard to case (and with accented
// letters ordered beside their base letters).
enum VbCompareMethod : int {
  vbBinaryCompare = 0,
  vbTextCompare = 1,
  vbDatabaseCompare = 2,  // treated as text comparison: there is no database to ask
};

// UTF-8 <-> UTF-16. Invalid input bytes become U+FFFD; lone surrogates are written as U+FFFD.
[[nodiscard]] String FromUtf8(std::string_view utf8);
[[nodiscard]] std::string ToUtf8(StringView text);

}  // namespace mx::host
