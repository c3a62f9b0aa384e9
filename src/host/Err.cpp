#include "host/Err.h"

#include <new>
#include <stdexcept>

namespace mx::host {

namespace {

struct KnownError {
  int32_t number;
  const char16_t* text;
};

// The host's own texts, word for word: callers and tests compare them.
constexpr KnownError kKnownErrors[] = {
    {3, u"Return without GoSub"},
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {10, u"This array is fixed or temporarily locked"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {16, u"Expression too complex"},
    {17, u"Can't perform requested operation"},
    {18, u"User interrupt occurred"},
    {20, u"Resume without error"},
    {28, u"Out of stack space"},
    {35, u"Sub or Function not defined"},
    {47, u"Too many DLL application clients"},
    {48, u"Error in loading DLL"},
    {49, u"Bad DLL calling convention"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {59, u"Bad record length"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {63, u"Bad record number"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {74, u"Can't rename with different drive"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {92, u"For loop not initialized"},
    {93, u"Invalid pattern string"},
    {94, u"Invalid use of Null"},
    {380, u"Invalid property value"},
    {381, u"Invalid property array index"},
    {382, u"Set not supported at runtime"},
    {383, u"Set not supported (read-only property)"},
    {385, u"Need property array index"},
    {387, u"Set not permitted"},
    {393, u"Get not supported at runtime"},
    {394, u"Get not supported (write-only property)"},
    {422, u"Property not found"},
    {423, u"Property or method not found"},
    {424, u"Object required"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class does not support Automation or does not support expected interface"},
    {438, u"Object doesn't support this property or method"},
    {440, u"Automation error"},
    {445, u"Object doesn't support this action"},
    {446, u"Object doesn't support named arguments"},
    {448, u"Named argument not found"},
    {449, u"Argument not optional"},
    {450, u"Wrong number of arguments or invalid property assignment"},
    {457, u"This key is already associated with an element of this collection"},
    {458, u"Variable uses an Automation type not supported in Visual Basic"},
    {460, u"Invalid clipboard format"},
    {461, u"Method or data member not found"},
    {481, u"Invalid picture"},
    {482, u"Printer error"},
    {735, u"Can't save file to TEMP"},
    {744, u"Search text not found"},
    {746, u"Replacements too long"},
};

std::string BuildWhat(int32_t number, const String& source, const String& description) {
  std::string what = "Run-time error " + std::to_string(number);
  if (!source.empty()) what += " (" + ToUtf8(source) + ")";
  what += ": " + ToUtf8(description);
  return what;
}

}  // namespace

String StandardErrorDescription(int32_t number) {
  for (const KnownError& e : kKnownErrors) {
    if (e.number == number) return e.text;
  }
  return u"Application-defined or object-defined error";
}

RuntimeError::RuntimeError(int32_t number, String source, String description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)) {
  if (m_description.empty()) m_description = StandardErrorDescription(m_number);
  m_what = BuildWhat(m_number, m_source, m_description);
}

void Raise(int32_t number, StringView source, StringView description) {
  throw RuntimeError(number, String(source), String(description));
}

void ErrObject::Clear() noexcept {
  m_number = 0;
  m_source.clear();
  m_description.clear();
}

void ErrObject::Record(const RuntimeError& error) {
  m_number = error.Number();
  m_source = error.Source();
  m_description = error.Description();
}

void ErrObject::Record(int32_t number, StringView source, StringView description) {
  m_number = number;
  m_source = String(source);
  m_description = description.empty() ? StandardErrorDescription(number) : String(description);
}

void ErrObject::Raise(int32_t number, StringView source, StringView description) {
  // Re-raising the standing error keeps its source and text unless new ones are given.
  String src = source.empty() ? m_source : String(source);
  String desc;
  if (!description.empty()) {
    desc = String(description);
  } else if (number == m_number) {
    desc = m_description;
  }
  RuntimeError error(number, std::move(src), std::move(desc));
  Record(error);
  throw error;
}

ErrObject& Err() {
  thread_local ErrObject err;
  return err;
}

namespace detail {

void RecordCurrentException() noexcept {
  // Recording allocates; if even that fails there is nothing better to do than keep going.
  try {
    try {
      throw;
    } catch (const RuntimeError& e) {
      Err().Record(e);
    } catch (const std::bad_alloc&) {
      Err().Record(kErrOutOfMemory, {}, {});
    } catch (const std::exception& e) {
      Err().Record(kErrInternal, {}, FromUtf8(e.what()));
    } catch (...) {
      Err().Record(kErrInternal, {}, {});
    }
  } catch (...) {
  }
}

}  // namespace detail

}  // namespace mx::host
