#pragma once
// Writes a FormFile as the canonical text form and its companion file.
//
// Canonical means: CR LF line ends, three blanks of indentation per level, names padded to 16
// columns, "=" and three blanks before the value; the host's lines in alphabetical order (the
// user control's _ExtentX and _ExtentY, whose "_" sorts after letters, come last), then the
// control's bag in the order its keys were written, then nested blocks. A form read from a file
// that was written so comes out byte for byte the same.
//
// Values: strings in quotes with "" for a quote; a string longer than 255 characters or with a
// control character (a line break) goes to the companion file in Windows-1252; Booleans as -1 or
// 0 with the comment 'True or 'False; Longs of keys that name a colour as &H00BBGGRR&; Singles
// and Doubles in their shortest exact decimal form with "." (an exponent as "1E+20"); Currency to
// its fourth decimal; a Date as its day count; fonts as BeginProperty blocks; pictures and byte
// arrays as companion entries. An empty picture, Nothing, Empty and Null write no line.
// Characters outside Windows-1252 are written as "?", as the host's own conversion does.
#include <functional>
#include <string>

#include "host/FormFile.h"

namespace mx::host {

struct FormWriteOptions {
  // The comment written after a number without one of its own, such as an enumeration member's
  // name ("3  'Windows Default"); the class registry supplies it. Empty: no comment.
  std::function<String(const FormBlock& block, const BagEntry& entry)> enumComment;
};

// The text form in Windows-1252 and the companion file's bytes (empty when no entry needs one).
// companionFileName is the name references use: the companion's file name, without a folder.
struct FormFileBytes {
  ByteArray text;
  ByteArray companion;
};
[[nodiscard]] FormFileBytes WriteFormText(const FormFile& form, StringView companionFileName,
                                          const FormWriteOptions& options = {});

// Writes the form file and, when one is needed, its companion (CompanionPathFor the path). A
// companion file left from an earlier save that the new text no longer needs is removed, so
// that a stale one cannot be taken for this form's. False with a reason when a file cannot be
// written.
[[nodiscard]] bool SaveFormFile(const FormFile& form, const std::string& path, std::string* error = nullptr,
                                const FormWriteOptions& options = {});

}  // namespace mx::host
