// Members of MX that go through the host's values and rendering: numbers shown as text,
// database fields, collections and arrays.
#include <cmath>

#include "host/Collection.h"
#include "host/Conversion.h"
#include "host/Format.h"
#include "host/Strings.h"
#include "utility/APIStringBuilder.h"
#include "utility/MX.h"

namespace mx::utility {

using host::String;

String MX::MilimeterToInche(double xValue) const {
  try {
    const double inches = host::Round(xValue * 0.0393701, 5);
    // The regional text of the number, with a decimal comma turned into a point so that the
    // result reads the same everywhere.
    return host::Replace(host::CStr(host::Variant(inches)), u",", u".");
  } catch (...) {
    return String();
  }
}

String MX::FormatFileSize(double xValue) const {
  try {
    if (std::isnan(xValue)) return String();
    if (xValue <= 999) return host::CStr(host::Variant(host::Fix(xValue))) + u" Bytes";
    // From 1000 on the value is shown in the largest unit whose size it reaches, the kilobyte
    // taking 1000 to 1023 as well ("0,98 Kb").
    static const char16_t* const kUnits[] = {u" Kb", u" Mb", u" Gb", u" Tb", u" Pb", u" Eb", u" Zb", u" Yb"};
    size_t unit = 0;
    double size = 1024.0;
    while (unit + 1 < std::size(kUnits) && xValue >= size * 1024.0) {
      size *= 1024.0;
      ++unit;
    }
    return host::Format(xValue / size, u"#,##0.00") + kUnits[unit];
  } catch (...) {
    return String();
  }
}

String MX::FixNullField(const host::Variant& xContent) const {
  try {
    if (xContent.IsNull()) return String();
    return host::CStr(xContent);
  } catch (...) {
    return String();
  }
}

String MX::JoinCollection(const host::Collection& xCol, const String& xDelimiter) const {
  APIStringBuilder builder;
  try {
    bool first = true;
    for (const host::Variant& item : xCol) {
      if (!first) builder.Append(xDelimiter);
      first = false;
      builder.Append(host::CStr(item));
    }
  } catch (...) {
    // An item with no text form (an object, an array) ends the join; the text so far stands.
  }
  return builder.ToString();
}

bool MX::IsArrayHasBeenInitialized(const host::Variant& xArr) const {
  if (xArr.Bytes() != nullptr) return true;
  const host::VariantArray* array = xArr.Array();
  return array != nullptr && array->IsAllocated();
}

}  // namespace mx::utility
