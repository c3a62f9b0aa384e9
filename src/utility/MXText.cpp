// Text members of MX: accent removal, character filters, padding and searching.
#include <random>

#include "host/Colors.h"
#include "host/Strings.h"
#include "utility/APIStringBuilder.h"
#include "utility/CharClass.h"
#include "utility/MX.h"

namespace mx::utility {

using host::String;
using host::StringView;

namespace {

// Position-for-position: a character found in the first string becomes the one at the same
// position in the second. Letters outside the table ("ñ", "ý") stay as they are.
constexpr StringView kAccented = u"ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÒÓÔÕÖÙÚÛÜàáâãäåçèéêëìíîïòóôõöùúûü";
constexpr StringView kPlain = u"AAAAAACEEEEIIIIOOOOOUUUUaaaaaaceeeeiiiiooooouuuu";
static_assert(kAccented.size() == 48 && kPlain.size() == 48);

template <typename Keep>
String Filter(StringView text, Keep keep) {
  const String trimmed = host::Trim(text);
  APIStringBuilder builder(trimmed.size());
  for (char16_t c : trimmed) {
    if (keep(c)) builder.Append(c);
  }
  return builder.ToString();
}

}  // namespace

String MX::RemoveAccents(const String& xString) const {
  String out = xString;
  for (char16_t& c : out) {
    const size_t at = kAccented.find(c);
    if (at != StringView::npos) c = kPlain[at];
  }
  return out;
}

String ReturnNumbersOnly(StringView xString, bool xKeepMinus) {
  return Filter(xString, [xKeepMinus](char16_t c) { return IsCharDigit(c) || (xKeepMinus && c == u'-'); });
}

String MX::ReturnNumbersOnly(const String& xString) const { return utility::ReturnNumbersOnly(xString, false); }

String MX::ReturnTextsOnly(const String& xString) const { return Filter(xString, IsCharAlpha); }

String MX::ReturnTextsAndNumbersOnly(const String& xString) const { return Filter(xString, IsCharAlphaNumeric); }

String MX::FormatWithZeros(const String& xString, int16_t xNumberOfZeros) const {
  String text = host::Trim(xString);
  if (static_cast<int32_t>(text.size()) < xNumberOfZeros) {
    text.insert(0, static_cast<size_t>(xNumberOfZeros) - text.size(), u'0');
  }
  return text;
}

int32_t MX::LenTrim(const String& xString) const { return host::Len(host::Trim(xString)); }

String MX::GetStringContent(const String& xString, const String& xStringFrom, const String& xStringTo) const {
  try {
    const int32_t from = host::InStr(xString, xStringFrom, host::vbTextCompare);
    if (from == 0) return String();
    const int32_t start = from + host::Len(xStringFrom);
    const String rest = host::Mid(xString, start);
    const int32_t to = host::InStr(rest, xStringTo, host::vbTextCompare);
    if (to == 0) return String();
    return rest.substr(0, static_cast<size_t>(to - 1));
  } catch (...) {
    return String();
  }
}

String MX::LongToHex(int32_t xValue) const {
  String hex = host::Hex(host::Variant(xValue));
  if (hex.size() < 8) hex.insert(0, 8 - hex.size(), u'0');
  return hex;
}

int32_t MX::ShiftRGBColor(int32_t xColor, int16_t xShiftValue) const {
  return host::ShiftRGBColor(xColor, xShiftValue);
}

namespace {

std::mt19937& Generator() {
  // Seeded once per thread from the system's entropy, as the host's Randomize seeds from the clock.
  thread_local std::mt19937 generator{std::random_device{}()};
  return generator;
}

}  // namespace

int32_t MX::CreateRandomNumberAsLong() const {
  std::uniform_int_distribution<int32_t> any(0, INT32_MAX);
  return any(Generator());
}

String MX::CreateRandomNumberAsStr(const String& xDelimiter, int16_t xNumberOfCharactersPerSpace,
                                   int32_t xFormattedCharacters) const {
  // Despite its name the count is the number of groups. Each group is a whole number below
  // xFormattedCharacters, padded to as many digits as xFormattedCharacters has.
  if (xNumberOfCharactersPerSpace <= 0 || xFormattedCharacters < 0) return String();
  const size_t width = std::to_string(xFormattedCharacters).size();
  std::uniform_real_distribution<double> fraction(0.0, 1.0);
  String text;
  for (int16_t group = 0; group < xNumberOfCharactersPerSpace; ++group) {
    if (group > 0) text += xDelimiter;
    const auto value = static_cast<int64_t>(xFormattedCharacters * fraction(Generator()));
    String digits = host::FromUtf8(std::to_string(value));
    if (digits.size() < width) digits.insert(0, width - digits.size(), u'0');
    text += digits;
  }
  return text;
}

}  // namespace mx::utility
