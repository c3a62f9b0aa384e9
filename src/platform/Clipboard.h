#pragma once
// The clipboard: one per process, opened by one window at a time, holding data by format.
// Text is kept as given and offered in the other text format on request: CF_UNICODETEXT from
// CF_TEXT (Latin-1) and back (characters above 255 become '?'). Data is bytes, including the
// terminating zero of text formats, since there is no global memory to hand around.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Types.h"

namespace mx::platform {

constexpr UINT CF_TEXT = 1, CF_BITMAP = 2, CF_DIB = 8, CF_UNICODETEXT = 13, CF_HDROP = 15,
               CF_DIBV5 = 17;

BOOL OpenClipboard(HWND owner);
BOOL CloseClipboard();
// Clears the data and makes the opener the owner; the clipboard must be open.
BOOL EmptyClipboard();
// The clipboard must be open. Replaces the data of that format.
BOOL SetClipboardData(UINT format, std::vector<uint8_t> data);
// The clipboard must be open; nothing when the format is not there.
[[nodiscard]] std::optional<std::vector<uint8_t>> GetClipboardData(UINT format);
[[nodiscard]] BOOL IsClipboardFormatAvailable(UINT format);
[[nodiscard]] int CountClipboardFormats();
// The format after `format` (0 for the first); 0 at the end.
[[nodiscard]] UINT EnumClipboardFormats(UINT format);
// Named formats get numbers from 0xC000; the same name gives the same number.
UINT RegisterClipboardFormatW(const char16_t* name);
[[nodiscard]] HWND GetClipboardOwner();
[[nodiscard]] HWND GetOpenClipboardWindow();

// Helpers: open, replace everything with the text, close. False when it is open elsewhere.
bool SetClipboardText(std::u16string_view text);
// The text on the clipboard (from either text format), or nothing.
[[nodiscard]] std::optional<std::u16string> GetClipboardText();
// Closes it if open and removes everything (tests).
void ResetClipboard();

}  // namespace mx::platform
