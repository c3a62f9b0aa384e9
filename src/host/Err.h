#pragma once
// Run-time errors of the host. A failed statement raises a RuntimeError carrying the host's error
// number, the source (who raised it) and a description. Code that must run past failures
// (lifecycle, mouse, key and paint handlers) runs each statement through OnErrorResumeNext, which
// records the error in the thread's Err object instead of letting it escape.
#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "host/String.h"

namespace mx::host {

// The host's numbered errors used across the library.
enum ErrorNumber : int32_t {
  kErrReturnWithoutGoSub = 3,
  kErrInvalidProcedureCall = 5,
  kErrOverflow = 6,
  kErrOutOfMemory = 7,
  kErrSubscriptOutOfRange = 9,
  kErrDivisionByZero = 11,
  kErrTypeMismatch = 13,
  kErrOutOfStringSpace = 14,
  kErrSubOrFunctionNotDefined = 35,
  kErrInternal = 51,
  kErrBadFileNameOrNumber = 52,
  kErrFileNotFound = 53,
  kErrBadFileMode = 54,
  kErrFileAlreadyOpen = 55,
  kErrDeviceIO = 57,
  kErrFileAlreadyExists = 58,
  kErrDiskFull = 61,
  kErrInputPastEnd = 62,
  kErrPermissionDenied = 70,
  kErrPathFileAccess = 75,
  kErrPathNotFound = 76,
  kErrObjectNotSet = 91,
  kErrInvalidUseOfNull = 94,
  kErrInvalidPropertyValue = 380,
  kErrInvalidPropertyArrayIndex = 381,
  kErrObjectRequired = 424,
  kErrNoAutomation = 430,
  kErrMemberNotSupported = 438,
  kErrWrongArgumentCount = 450,
  kErrDuplicateKey = 457,
  kErrApplicationDefined = 1004,
};

// The host's standard text for a number; "Application-defined or object-defined error" for a
// number it has no text for.
[[nodiscard]] String StandardErrorDescription(int32_t number);

class RuntimeError : public std::exception {
 public:
  RuntimeError(int32_t number, String source, String description);

  [[nodiscard]] int32_t Number() const noexcept { return m_number; }
  [[nodiscard]] const String& Source() const noexcept { return m_source; }
  [[nodiscard]] const String& Description() const noexcept { return m_description; }
  // "Run-time error 13 (Source): Type mismatch", in UTF-8.
  [[nodiscard]] const char* what() const noexcept override { return m_what.c_str(); }

 private:
  int32_t m_number;
  String m_source;
  String m_description;
  std::string m_what;
};

// Throws a RuntimeError; an empty description takes the host's standard text for the number.
[[noreturn]] void Raise(int32_t number, StringView source = {}, StringView description = {});

// The Err object of the "resume next" style: the last error recorded on this thread.
class ErrObject {
 public:
  [[nodiscard]] int32_t Number() const noexcept { return m_number; }
  [[nodiscard]] const String& Source() const noexcept { return m_source; }
  [[nodiscard]] const String& Description() const noexcept { return m_description; }
  // True while an error stands (Number is not 0).
  [[nodiscard]] explicit operator bool() const noexcept { return m_number != 0; }

  void Clear() noexcept;
  // Records an error as the host does when a statement fails under "resume next".
  void Record(const RuntimeError& error);
  void Record(int32_t number, StringView source, StringView description);
  // Raises the recorded error (or a new one), as Err.Raise does. Arguments left empty take the
  // values that stand.
  [[noreturn]] void Raise(int32_t number, StringView source = {}, StringView description = {});

 private:
  int32_t m_number = 0;
  String m_source;
  String m_description;
};

// The calling thread's Err object.
[[nodiscard]] ErrObject& Err();

namespace detail {
// Records the exception in flight into Err(); maps non-host exceptions to host errors
// (bad_alloc to 7, anything else to 51 with its message).
void RecordCurrentException() noexcept;
}  // namespace detail

// Runs one statement and records a failure in Err() instead of throwing. Returns true when the
// statement ran without error. A success does not clear an earlier error, as under the host.
template <typename F>
bool OnErrorResumeNext(F&& statement) noexcept {
  try {
    std::forward<F>(statement)();
    return true;
  } catch (...) {
    detail::RecordCurrentException();
    return false;
  }
}

}  // namespace mx::host
