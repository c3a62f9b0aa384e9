// Column order and column widths: back to storage order, and the two plain-text column files.
//
// A column file has one line per column, "<display index><TAB><value>", written in Latin text
// (one byte per character): the value is the storage column for the order file and ColWidth,
// in host units, for the width file. Reading never raises; what went wrong is described in
// xError with the host's text for the error.
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "grid/GridData.h"
#include "host/Conversion.h"
#include "host/Err.h"
#include "host/Format.h"
#include "host/Variant.h"

namespace mx::grid {

namespace {

std::string FileName(host::StringView file) { return host::ToUtf8(file); }

// Reads the whole file as Latin text into lines, without their CR LF. False with the host's
// error text when the file cannot be opened.
bool ReadLines(host::StringView file, std::vector<std::string>& lines, host::String& error) {
  if (file.empty()) {
    error = host::StandardErrorDescription(host::kErrBadFileNameOrNumber);
    return false;
  }
  std::ifstream in(FileName(file), std::ios::binary);
  if (!in) {
    error = host::StandardErrorDescription(errno == EACCES ? host::kErrPermissionDenied : host::kErrFileNotFound);
    return false;
  }
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return true;
}

bool WriteLines(host::StringView file, const std::string& text, host::String& error) {
  if (file.empty()) {
    error = host::StandardErrorDescription(host::kErrBadFileNameOrNumber);
    return false;
  }
  std::ofstream out(FileName(file), std::ios::binary | std::ios::trunc);
  if (!out) {
    error = host::StandardErrorDescription(errno == EACCES ? host::kErrPermissionDenied : host::kErrPathNotFound);
    return false;
  }
  out << text;
  out.flush();
  if (!out) {
    error = host::StandardErrorDescription(host::kErrDeviceIO);
    return false;
  }
  return true;
}

// The Latin bytes of a line as host text.
host::String Latin(const std::string& s) {
  host::String out;
  out.reserve(s.size());
  for (unsigned char c : s) out.push_back(static_cast<char16_t>(c));
  return out;
}

// A line's two numbers, converted the host's way ("Type mismatch" when either is not one).
// Blank lines are skipped by the callers.
bool ParseLine(const std::string& line, double& first, double& second, host::String& error) {
  const size_t tab = line.find('\t');
  if (tab == std::string::npos) {
    error = host::StandardErrorDescription(host::kErrTypeMismatch);
    return false;
  }
  double a = 0, b = 0;
  if (host::ParseNumber(Latin(line.substr(0, tab)), a) != host::NumberParse::Ok ||
      host::ParseNumber(Latin(line.substr(tab + 1)), b) != host::NumberParse::Ok) {
    error = host::StandardErrorDescription(host::kErrTypeMismatch);
    return false;
  }
  first = a;
  second = b;
  return true;
}

bool IsBlank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

// An index read from a file: a whole number inside [0, count).
bool IndexIn(double value, int32_t count, int32_t& index) {
  if (!(value >= 0) || value >= count || value != std::floor(value)) return false;
  index = static_cast<int32_t>(value);
  return true;
}

// A width as the host prints a number: the regional decimal sign, read back by ParseNumber.
std::string Number(float v) {
  std::string out;
  for (char16_t c : host::Format(static_cast<double>(v))) out.push_back(static_cast<char>(c));
  return out;
}

}  // namespace

void GridData::RestoreColumnOrder() {
  for (size_t i = 0; i < m_colOrder.size(); ++i) m_colOrder[i] = static_cast<int32_t>(i);
  if (m_col >= Cols()) m_col = Cols() - 1;
  OnColumnsRefresh();
}

bool GridData::SaveColumnOrderToFile(host::StringView xFile, host::String& xError) {
  std::string text;
  for (size_t i = 0; i < m_colOrder.size(); ++i)
    text += std::to_string(i) + "\t" + std::to_string(m_colOrder[i]) + "\r\n";
  const bool ok = WriteLines(xFile, text, xError);
  OnColumnsRefresh();
  return ok;
}

bool GridData::LoadColumnOrderFromFile(host::StringView xFile, host::String& xError) {
  std::vector<std::string> lines;
  if (!ReadLines(xFile, lines, xError)) return false;
  // The lines are applied to a copy, and the copy is taken only when it is still an order of
  // every column: a truncated or damaged file cannot leave a column shown twice or lost.
  std::vector<int32_t> order = m_colOrder;
  const int32_t cols = Cols();
  for (const std::string& line : lines) {
    if (IsBlank(line)) continue;
    double a = 0, b = 0;
    if (!ParseLine(line, a, b, xError)) return false;
    int32_t display = 0, storage = 0;
    if (!IndexIn(a, cols, display) || !IndexIn(b, cols, storage)) {
      xError = host::StandardErrorDescription(host::kErrSubscriptOutOfRange);
      return false;
    }
    order[static_cast<size_t>(display)] = storage;
  }
  std::vector<bool> seen(static_cast<size_t>(cols), false);
  for (int32_t s : order) {
    if (seen[static_cast<size_t>(s)]) {
      xError = host::StandardErrorDescription(host::kErrInvalidPropertyValue);
      return false;
    }
    seen[static_cast<size_t>(s)] = true;
  }
  m_colOrder = std::move(order);
  OnColumnsRefresh();
  return true;
}

bool GridData::SaveColumnWidthsToFile(host::StringView xFile, host::String& xError) {
  std::string text;
  for (int32_t i = 0; i < Cols(); ++i) text += std::to_string(i) + "\t" + Number(ColWidth(i)) + "\r\n";
  const bool ok = WriteLines(xFile, text, xError);
  OnColumnsRefresh();
  return ok;
}

bool GridData::LoadColumnWidthsFromFile(host::StringView xFile, host::String& xError) {
  std::vector<std::string> lines;
  if (!ReadLines(xFile, lines, xError)) return false;
  bool ok = true;
  const bool redraw = m_redraw;
  m_redraw = false;  // one refresh at the end, not one per column
  for (const std::string& line : lines) {
    if (IsBlank(line)) continue;
    double a = 0, width = 0;
    if (!ParseLine(line, a, width, xError)) {
      ok = false;
      break;
    }
    int32_t display = 0;
    if (!IndexIn(a, Cols(), display)) {
      xError = host::StandardErrorDescription(host::kErrSubscriptOutOfRange);
      ok = false;
      break;
    }
    // A width must fit the Single it is stored in and a pixel count.
    if (!std::isfinite(width) || std::fabs(width) > 1e9) {
      xError = host::StandardErrorDescription(host::kErrOverflow);
      ok = false;
      break;
    }
    ColWidth(display, static_cast<float>(width));
  }
  m_redraw = redraw;
  OnColumnsRefresh();
  return ok;
}

}  // namespace mx::grid
