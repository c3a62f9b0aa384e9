#pragma once
// How the collections read an Index argument: a number (Integer, Long, Single, Double or Byte)
// is taken by its whole part and must lie in 1..count; a non-empty string is a key. Anything
// else names nothing.
#include <cmath>
#include <cstdint>
#include <optional>

#include "host/Variant.h"

namespace mx::imagelist::detail {

// The 0-based position a number names, nothing for a number out of range; std::nullopt with
// isNumber false when the Variant is no number kind the collections accept.
inline std::optional<int32_t> NumericPosition(const host::Variant& v, int32_t count, bool& isNumber) {
  isNumber = true;
  double d;
  if (auto* i = v.TryGet<int16_t>())
    d = *i;
  else if (auto* l = v.TryGet<int32_t>())
    d = *l;
  else if (auto* f = v.TryGet<float>())
    d = *f;
  else if (auto* g = v.TryGet<double>())
    d = *g;
  else if (auto* b = v.TryGet<uint8_t>())
    d = *b;
  else {
    isNumber = false;
    return std::nullopt;
  }
  if (!std::isfinite(d)) return std::nullopt;
  d = std::floor(d);
  if (d < 1 || d > count) return std::nullopt;
  return static_cast<int32_t>(d) - 1;
}

}  // namespace mx::imagelist::detail
