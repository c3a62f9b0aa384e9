#pragma once
// The host's string: UTF-16 code units, as the controls count them. Lengths, positions and byte
// counts are in UTF-16 units; text is converted only at the edges (files, fonts, the console).
#include <string>
#include <string_view>

namespace mx::host {

using String = std::u16string;
using StringView = std::u16string_view;

// UTF-8 <-> UTF-16. Invalid input bytes become U+FFFD; lone surrogates are written as U+FFFD.
[[nodiscard]] String FromUtf8(std::string_view utf8);
[[nodiscard]] std::string ToUtf8(StringView text);

}  // namespace mx::host
