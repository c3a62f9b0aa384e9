#pragma once
// Reads a form file's text (and the companion entries it refers to) into a FormFile.
//
// Reading is lenient where the file is merely unfamiliar: lines it does not understand, unknown
// BeginProperty blocks and Attribute or code lines are kept and written back unchanged. It is
// strict where the file is damaged: a block without End, a number that is not one, an unclosed
// string, a reference past the end of the companion file or a length larger than the bytes
// left refuse the whole file, with the line number and the reason. Nothing throws.
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "host/FormFile.h"
#include "host/Frx.h"

namespace mx::host {

struct FormFileError {
  int32_t line = 0;  // 1-based; 0 when the failure concerns the file as a whole
  std::string reason;
  // "line 12: bad number \"12x\"", or the reason alone without a line.
  [[nodiscard]] std::string Message() const;
};

// Finds a companion file by the name a reference gives; nullptr when there is none. The reader
// asks once per reference; the loader may cache.
using CompanionLoader = std::function<const FrxReader*(StringView fileName)>;

// The text is in Windows-1252, lines end in CR LF (a lone LF or CR is accepted too).
[[nodiscard]] bool ParseFormText(std::span<const uint8_t> text, const CompanionLoader& companions, FormFile& out,
                                 FormFileError& error);
// Reads a form file and the companion files it names, looked up in the form file's folder.
[[nodiscard]] bool ReadFormFile(const std::string& path, FormFile& out, FormFileError& error);

}  // namespace mx::host
