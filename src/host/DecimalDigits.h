#pragma once
// A double as the decimal digits the host works with: at most 15 significant digits, the
// precision a Double reliably carries. Format and Round work on these digits rather than on the
// binary value, so 2.345 rounds to 2.35 as the user who typed it expects, although the nearest
// double is a hair below 2.345.
#include <string>

namespace mx::host {

struct DecimalDigits {
  bool negative = false;
  // Significant digits without leading or trailing zeros; empty for zero.
  std::string digits;
  // Digits before the decimal point: the value is 0.<digits> x 10^pointPosition.
  int pointPosition = 0;

  [[nodiscard]] bool IsZero() const { return digits.empty(); }

  // The digits of a finite double, rounded to `significant` digits (1 to 17).
  [[nodiscard]] static DecimalDigits FromDouble(double value, int significant = 15);

  // Rounds to `fractionDigits` places after the point (negative: to tens, hundreds...). Ties go
  // away from zero, as Format rounds, or to the even digit, as Round does.
  void RoundToFraction(int fractionDigits, bool halfEven = false);

  // The digit at a position counted from the decimal point: 0 is the units, -1 the tenths.
  [[nodiscard]] int DigitAt(int power) const;

  // Back to a double (exact to the last bit for up to 15 digits).
  [[nodiscard]] double ToDouble() const;
};

}  // namespace mx::host
