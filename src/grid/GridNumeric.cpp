#include "grid/GridNumeric.h"

#include "host/Conversion.h"
#include "host/Strings.h"

namespace mx::grid {

namespace {

double Convert(host::StringView text) {
  double value = 0;
  return host::ParseNumber(text, value) == host::NumberParse::Ok ? value : 0.0;
}

}  // namespace

double GridNumericValue(host::StringView text) {
  if (text.empty()) return 0;
  double direct = Convert(text);
  if (direct != 0) return direct;
  if (text == u"True") return 1;
  if (text == u"False") return 0;

  host::String upper = host::Trim(host::UCase(text));
  host::String kept;
  size_t i = 0;
  bool hex = false;
  if (upper.size() >= 2 && upper[0] == u'&' && (upper[1] == u'H' || upper[1] == u'O')) {
    hex = upper[1] == u'H';
    kept = upper.substr(0, 2);
    i = 2;
  }
  if (i >= upper.size() || upper[i] < u'0' || upper[i] > u'9') return 0;
  for (; i < upper.size(); ++i) {
    char16_t c = upper[i];
    if ((c >= u'0' && c <= u'9') || c == u',' || c == u'-' || c == u'.') {
      kept += c;
    } else if (c == u'$' || c == u'\u00A3' || c == u' ') {
      continue;
    } else if (hex && c >= u'A' && c <= u'F') {
      kept += c;
    } else {
      break;
    }
  }
  return Convert(kept);
}

}  // namespace mx::grid
