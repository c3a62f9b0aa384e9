#include <gtest/gtest.h>

#include <iterator>
#include <limits>

#include "utility/MX.h"

namespace mx::utility {
namespace {

using host::String;

struct Case {
  double value;
  const char16_t* words;
};

void ExpectWords(const Case* cases, size_t count) {
  MX mx;
  for (size_t i = 0; i < count; ++i) {
    EXPECT_EQ(host::ToUtf8(mx.CurrencyAsStr(cases[i].value)), host::ToUtf8(cases[i].words))
        << "value " << cases[i].value;
  }
}

TEST(CurrencyAsStr, ZeroReadsThePluralCentWord) {
  MX mx;
  EXPECT_EQ(mx.CurrencyAsStr(0), u"zero centavos");
  EXPECT_EQ(mx.CurrencyAsStr(0, u"dólar", u"dólares", u"cent", u"cents"), u"zero cents");
  // Less than half a cent is nothing at all.
  EXPECT_EQ(mx.CurrencyAsStr(0.004), u"zero centavos");
}

TEST(CurrencyAsStr, Units_Tens_Hundreds) {
  const Case cases[] = {
      {1, u"um real"},
      {2, u"dois reais"},
      {10, u"dez reais"},
      {11, u"onze reais"},
      {15, u"quinze reais"},
      {19, u"dezenove reais"},
      {20, u"vinte reais"},
      {21, u"vinte e um reais"},
      {35, u"trinta e cinco reais"},
      {99, u"noventa e nove reais"},
      {100, u"cem reais"},
      {101, u"cento e um reais"},
      {110, u"cento e dez reais"},
      {115, u"cento e quinze reais"},
      {199, u"cento e noventa e nove reais"},
      {200, u"duzentos reais"},
      {205, u"duzentos e cinco reais"},
      {250, u"duzentos e cinquenta reais"},
      {310, u"trezentos e dez reais"},
      {999, u"novecentos e noventa e nove reais"},
  };
  ExpectWords(cases, std::size(cases));
}

TEST(CurrencyAsStr, ThousandsMillionsBillions) {
  const Case cases[] = {
      // The unit before "mil" is always read, and nothing joins "mil" to what follows.
      {1000, u"um mil reais"},
      {1001, u"um mil um reais"},
      {2500, u"dois mil quinhentos reais"},
      {12345, u"doze mil trezentos e quarenta e cinco reais"},
      {100000, u"cem mil reais"},
      {150000, u"cento e cinquenta mil reais"},
      // "de" only when millions or billions are the last words before the currency.
      {1000000, u"um milhão de reais"},
      {1000001, u"um milhão um reais"},
      {1500000, u"um milhão quinhentos mil reais"},
      {2000000, u"dois milhões de reais"},
      {11000000, u"onze milhões de reais"},
      // A unit of one after a tens word still takes the singular.
      {21000000, u"vinte e um milhão de reais"},
      {100000000, u"cem milhões de reais"},
      {123456789,
       u"cento e vinte e três milhões quatrocentos e cinquenta e seis mil setecentos e oitenta e nove reais"},
      {1000000000, u"um bilhão de reais"},
      {1000000001, u"um bilhão um reais"},
      {1002000000, u"um bilhão dois milhões de reais"},
      {2000000000, u"dois bilhões de reais"},
      {5000001000, u"cinco bilhões um mil reais"},
  };
  ExpectWords(cases, std::size(cases));
}

TEST(CurrencyAsStr, Cents) {
  const Case cases[] = {
      {0.01, u"um centavo"},
      {0.05, u"cinco centavos"},
      {0.1, u"dez centavos"},
      {0.15, u"quinze centavos"},
      {0.21, u"vinte e um centavos"},
      {0.29, u"vinte e nove centavos"},
      {1.01, u"um real e um centavo"},
      {1.5, u"um real e cinquenta centavos"},
      {2.3, u"dois reais e trinta centavos"},
      // Exactly half a cent goes to the even cent; the rounded cents can carry into reais.
      {0.125, u"doze centavos"},
      {1.999, u"dois reais"},
      {2.675, u"dois reais e sessenta e oito centavos"},
  };
  ExpectWords(cases, std::size(cases));
}

TEST(CurrencyAsStr, LargestValueAndBeyond) {
  MX mx;
  EXPECT_EQ(host::ToUtf8(mx.CurrencyAsStr(9999999999.99)),
            "nove bilhões novecentos e noventa e nove milhões novecentos e noventa e nove mil "
            "novecentos e noventa e nove reais e noventa e nove centavos");
  EXPECT_EQ(mx.CurrencyAsStr(10000000000.0), u"Valor não suportado.");
  EXPECT_EQ(mx.CurrencyAsStr(9999999999.999), u"Valor não suportado.");
  EXPECT_EQ(mx.CurrencyAsStr(-1e300), u"Valor não suportado.");
  EXPECT_EQ(mx.CurrencyAsStr(std::numeric_limits<double>::infinity()), u"Valor não suportado.");
}

TEST(CurrencyAsStr, NegativesTakeTheirWordByMagnitude) {
  const Case cases[] = {
      {-1, u"um real negativo"},
      {-0.5, u"cinquenta centavos negativo"},
      {-2.5, u"dois reais e cinquenta centavos negativos"},
      {-1000000, u"um milhão de reais negativos"},
  };
  ExpectWords(cases, std::size(cases));
}

TEST(CurrencyAsStr, CustomCurrencyWords) {
  MX mx;
  EXPECT_EQ(mx.CurrencyAsStr(1, u"dólar", u"dólares", u"cent", u"cents"), u"um dólar");
  EXPECT_EQ(mx.CurrencyAsStr(3.01, u"dólar", u"dólares", u"cent", u"cents"), u"três dólares e um cent");
}

}  // namespace
}  // namespace mx::utility
