#include "host/DecimalDigits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace mx::host {

DecimalDigits DecimalDigits::FromDouble(double value, int significant) {
  DecimalDigits out;
  if (value == 0 || !std::isfinite(value)) return out;
  out.negative = value < 0;
  significant = std::clamp(significant, 1, 17);
  // "%.*e" rounds correctly to the requested digits: d.dddde+XX.
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*e", significant - 1, std::fabs(value));
  const char* p = buffer;
  while (*p && *p != 'e') {
    if (*p >= '0' && *p <= '9') out.digits.push_back(*p);
    ++p;
  }
  int exponent = *p == 'e' ? std::atoi(p + 1) : 0;
  out.pointPosition = exponent + 1;
  while (!out.digits.empty() && out.digits.back() == '0') out.digits.pop_back();
  return out;
}

void DecimalDigits::RoundToFraction(int fractionDigits, bool halfEven) {
  if (digits.empty()) return;
  long keep = static_cast<long>(pointPosition) + fractionDigits;
  if (keep >= static_cast<long>(digits.size())) return;
  if (keep < 0) {
    // Every digit lies below the rounding place, too far down to reach it by rounding.
    digits.clear();
    pointPosition = 0;
    return;
  }
  char first = digits[static_cast<size_t>(keep)];
  bool up;
  if (first != '5') {
    up = first > '5';
  } else if (static_cast<size_t>(keep) + 1 < digits.size()) {
    up = true;  // more than half: digits are trimmed, so anything after the 5 is non-zero
  } else if (halfEven) {
    up = keep > 0 && (digits[static_cast<size_t>(keep) - 1] - '0') % 2 == 1;
  } else {
    up = true;
  }
  digits.resize(static_cast<size_t>(keep));
  if (up) {
    size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9') {
      digits[i - 1] = '0';
      --i;
    }
    if (i == 0) {
      // 9.99 -> 10.0: the carry makes a new leading digit.
      digits.insert(digits.begin(), '1');
      ++pointPosition;
    } else {
      ++digits[i - 1];
    }
  }
  while (!digits.empty() && digits.back() == '0') digits.pop_back();
  if (digits.empty()) pointPosition = 0;
}

int DecimalDigits::DigitAt(int power) const {
  long index = static_cast<long>(pointPosition) - 1 - power;
  if (index < 0 || index >= static_cast<long>(digits.size())) return 0;
  return digits[static_cast<size_t>(index)] - '0';
}

double DecimalDigits::ToDouble() const {
  if (digits.empty()) return 0.0;
  std::string text = (negative ? "-0." : "0.") + digits + "e" + std::to_string(pointPosition);
  return std::strtod(text.c_str(), nullptr);
}

}  // namespace mx::host
