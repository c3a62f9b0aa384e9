// Brazilian taxpayer numbers, e-mail addresses, IPv4 addresses, URLs and file names.
#include <vector>

#include "utility/CharClass.h"
#include "utility/MX.h"
#include "utility/UrlParser.h"

namespace mx::utility {

using host::String;

namespace {

// Check digit rule shared by both documents: r = sum mod 11; r of 0 or 1 asks for 0, else 11 - r.
int CheckDigit(int sum) {
  const int r = sum % 11;
  return r < 2 ? 0 : 11 - r;
}

bool CheckCPF(const std::vector<int>& d) {
  int first = 0;
  for (int i = 0; i < 9; ++i) first += d[i] * (10 - i);
  int second = 0;
  for (int i = 0; i < 10; ++i) second += d[i] * (11 - i);
  return CheckDigit(first) == d[9] && CheckDigit(second) == d[10];
}

bool CheckCNPJ(const std::vector<int>& d) {
  // The weights run 5,4,3,2,9,...,2 for the first sum and 6,5,4,3,2,9,...,2 for the second.
  static constexpr int kWeights[13] = {6, 5, 4, 3, 2, 9, 8, 7, 6, 5, 4, 3, 2};
  int first = 0;
  for (int i = 0; i < 12; ++i) first += d[i] * kWeights[i + 1];
  int second = 0;
  for (int i = 0; i < 13; ++i) second += d[i] * kWeights[i];
  return CheckDigit(first) == d[12] && CheckDigit(second) == d[13];
}

}  // namespace

bool MX::IsValidCPFOrCNPJ(const String& xDocument) const {
  std::vector<int> digits;
  for (char16_t c : xDocument) {
    if (c == u'.' || c == u'-' || c == u'/') continue;
    if (!IsCharDigit(c)) return false;
    digits.push_back(c - u'0');
  }
  // Sequences of one repeated digit that satisfy the sums pass as well: there is no list of them.
  if (digits.size() == 11) return CheckCPF(digits);
  if (digits.size() == 14) return CheckCNPJ(digits);
  return false;
}

bool MX::IsValidEmail(const String& xEmail) const {
  if (xEmail.empty()) return false;
  if (xEmail.find(u'@') == String::npos || xEmail.find(u'.') == String::npos) return false;
  if (xEmail.find(u".@") != String::npos || xEmail.find(u"@.") != String::npos ||
      xEmail.find(u"..") != String::npos) {
    return false;
  }
  size_t ats = 0;
  for (char16_t c : xEmail) {
    if (c == u'@') {
      ++ats;
      continue;
    }
    if (!IsCharAlphaNumeric(c) && c != u'.' && c != u'_' && c != u'-') return false;
  }
  // Exactly one "@" splits the address into its two parts.
  return ats == 1;
}

bool MX::IsValidIP(const String& xIP) const {
  // Four dotted members, each one to three decimal digits and at most 255. Signs, blanks and
  // exponents are refused even where a lenient number reader would take them.
  int members = 0;
  size_t start = 0;
  while (true) {
    const size_t dot = xIP.find(u'.', start);
    const size_t end = dot == String::npos ? xIP.size() : dot;
    const size_t length = end - start;
    if (length == 0 || length > 3) return false;
    int value = 0;
    for (size_t i = start; i < end; ++i) {
      if (!IsCharDigit(xIP[i])) return false;
      value = value * 10 + (xIP[i] - u'0');
    }
    if (value > 255) return false;
    ++members;
    if (dot == String::npos) break;
    start = dot + 1;
  }
  return members == 4;
}

bool MX::IsValidURL(const String& xUrl) const { return ParseUrl(xUrl).has_value(); }

// File names must be portable between this system and the desktop systems whose files the library
// still reads, so a name is refused when either would refuse it: "/" and NUL for the file system
// here; < > : " \ | ? * and the control characters 1 to 31 for the other; and the names "." and
// "..", which every system reserves for the directory itself and its parent.
bool MX::IsValidFileName(const String& xFileName) const {
  if (xFileName.empty() || xFileName == u"." || xFileName == u"..") return false;
  for (char16_t c : xFileName) {
    if (c < 0x20) return false;
    switch (c) {
      case u'/':
      case u'<':
      case u'>':
      case u':':
      case u'"':
      case u'\\':
      case u'|':
      case u'?':
      case u'*':
        return false;
      default:
        break;
    }
  }
  return true;
}

}  // namespace mx::utility
