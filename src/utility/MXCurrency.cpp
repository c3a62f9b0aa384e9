// Money in Brazilian Portuguese words. The number is read left to right, one digit at a time,
// with the role of a digit fixed by its position counted from the units:
//
//   position  10 | 9  8  7 | 6  5  4 | 3  2  1
//   role      bi | h  t  u | h  t  u | h  t  u      (hundreds, tens, units of each group)
//             bilhões  milhões    mil     reais
//
// Three pieces of state carry between digits: whether the millions group has words, whether the
// thousands group has words, and whether the last tens digit made a word from 11 to 19, which
// swallows the unit digit after it. The wording follows the library's long-standing rules, odd
// spots included ("um mil", "vinte e um milhão", "zero centavos"), because callers print it on
// documents that must not change.
#include <cmath>
#include <cstdint>
#include <string>

#include "host/Conversion.h"
#include "utility/MX.h"

namespace mx::utility {

using host::String;

namespace {

constexpr double kLargestValue = 9999999999.99;

const char16_t* const kUnits[10] = {u"",      u"um",   u"dois", u"três", u"quatro",
                                    u"cinco", u"seis", u"sete", u"oito", u"nove"};
const char16_t* const kTeens[9] = {u"onze",      u"doze",      u"treze",   u"quatorze", u"quinze",
                                   u"dezesseis", u"dezessete", u"dezoito", u"dezenove"};
const char16_t* const kTens[10] = {u"",          u"dez",      u"vinte",   u"trinta",  u"quarenta",
                                   u"cinquenta", u"sessenta", u"setenta", u"oitenta", u"noventa"};
const char16_t* const kHundreds[10] = {u"",           u"cem",        u"duzentos",  u"trezentos",
                                       u"quatrocentos", u"quinhentos", u"seiscentos", u"setecentos",
                                       u"oitocentos",   u"novecentos"};

bool EndsWith(const String& text, std::u16string_view tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Whole cents of a non-negative value, rounded half to even on its decimal digits as the host's
// Round does (0.125 is 12 cents, 2.675 is 268).
int64_t RoundToCents(double magnitude) {
  return std::llround(host::Round(magnitude, 2) * 100.0);
}

void CollapseBlanks(String& text) {
  String out;
  out.reserve(text.size());
  for (char16_t c : text) {
    if (c == u' ' && !out.empty() && out.back() == u' ') continue;
    out.push_back(c);
  }
  const size_t first = out.find_first_not_of(u' ');
  if (first == String::npos) {
    text.clear();
    return;
  }
  text = out.substr(first, out.find_last_not_of(u' ') - first + 1);
}

}  // namespace

String MX::CurrencyAsStr(double xValue, const String& xSingularCurrencyCountry,
                         const String& xPluralCurrencyCountry, const String& xSingularDecimalCountry,
                         const String& xPluralDecimalCountry) const {
  if (std::isnan(xValue)) return String();
  const bool negative = xValue < 0;
  const double magnitude = std::fabs(xValue);
  if (magnitude > kLargestValue) return u"Valor não suportado.";
  // The value is taken to whole cents first, so 1.999 reads as two reais rather than one real and
  // a hundred cents; anything that rounds to nothing reads like zero.
  const int64_t cents = RoundToCents(magnitude);
  if (cents == 0) return u"zero " + xPluralDecimalCountry;
  if (cents > 999999999999LL) return u"Valor não suportado.";

  const int64_t whole = cents / 100;
  const int fraction = static_cast<int>(cents % 100);
  String text;

  if (whole != 0) {
    const std::string digits = std::to_string(whole);
    const int count = static_cast<int>(digits.size());
    const bool millionsHaveWords = (whole / 1000000) % 1000 != 0;
    const bool thousandsHaveWords = (whole / 1000) % 1000 != 0;
    bool teenWritten = false;

    for (int i = 0; i < count; ++i) {
      const int position = count - i;
      const int digit = digits[static_cast<size_t>(i)] - '0';
      switch (position) {
        case 10:
          text += kUnits[digit];
          text += digit == 1 ? u" bilhão " : u" bilhões ";
          break;
        case 9:
        case 6:
        case 3:
          if (digit != 0) {
            int64_t scale = 1;
            for (int k = 3; k < position; ++k) scale *= 10;
            const int64_t group = (whole / scale) % 1000;
            if (group > 100 && group < 200) {
              text += u" cento e ";
            } else {
              text += u' ';
              text += kHundreds[digit];
            }
          }
          break;
        case 8:
        case 5:
        case 2: {
          teenWritten = false;
          if (digit == 0) break;
          const int next = digits[static_cast<size_t>(i) + 1] - '0';
          const int tens = digit * 10 + next;
          text += EndsWith(text, u"entos") ? u" e " : u" ";
          if (tens >= 11 && tens <= 19) {
            text += kTeens[tens - 11];
            teenWritten = true;
          } else {
            text += kTens[digit];
          }
          break;
        }
        default: {  // units of a group: positions 7, 4 and 1
          if (digit != 0 && !teenWritten) {
            const bool joins = EndsWith(text, u"entos") || EndsWith(text, u"nte") || EndsWith(text, u"nta");
            text += joins ? u" e " : u" ";
            text += kUnits[digit];
          }
          if (position == 7 && millionsHaveWords) {
            text += (digit == 1 && !teenWritten) ? u" milhão " : u" milhões ";
          } else if (position == 4 && thousandsHaveWords) {
            text += u" mil ";
          } else if (position == 1) {
            // "um milhão de reais", but "um milhão e mil reais" has no "de".
            const bool billionsOnly = count == 10 && !millionsHaveWords;
            if (whole % 1000 == 0 && !thousandsHaveWords && (millionsHaveWords || billionsOnly)) {
              text += u" de ";
            }
            text += u' ';
            text += whole == 1 ? xSingularCurrencyCountry : xPluralCurrencyCountry;
            text += u' ';
          }
          break;
        }
      }
    }
  }

  if (fraction != 0) {
    if (whole != 0) text += u" e ";
    if (fraction < 10) {
      // Below ten cents only the last digit is read.
      text += u' ';
      text += kUnits[fraction];
    } else if (fraction >= 11 && fraction <= 19) {
      text += u' ';
      text += kTeens[fraction - 11];
    } else {
      text += u' ';
      text += kTens[fraction / 10];
      if (fraction % 10 != 0) {
        text += u" e ";
        text += kUnits[fraction % 10];
      }
    }
    text += u' ';
    text += fraction == 1 ? xSingularDecimalCountry : xPluralDecimalCountry;
  }

  CollapseBlanks(text);
  if (negative) text += magnitude > 1 ? u" negativos" : u" negativo";
  return text;
}

}  // namespace mx::utility
