#include "texte/nombres.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "tests/support/modele.h"

using namespace topomine;

namespace {

using Alea = std::mt19937;

unsigned tirer(Alea& alea, unsigned n) {
  return static_cast<unsigned>(alea() % n);
}

std::string texte_au_hasard(Alea& alea) {
  static const std::string choisis =
      " - + . -. 5. .5 1e 1e+ 1e-3 1E5 1e5.5 e5 1,5 12a 0x10 inf nan -nan infinity 1e999 -1e999 "
      "1e-999 4e-320 2147483647 2147483648 -2147483648 -2147483649 99999999999999999999 007 -0 +7 "
      "+-7 1e400 1.7976931348623157e308 1.7976931348623159e308 2.2250738585072011e-308 0.1 "
      "3.14159265358979323846 123456789012345678901234567890 ";
  static const char lettres[] = "0123456789012345678901234567890123456789..--+eE, \tax\351";
  switch (tirer(alea, 4)) {
    case 0: {
      const std::size_t debut =
          choisis.find(' ', tirer(alea, static_cast<unsigned>(choisis.size()) - 31)) + 1;
      return choisis.substr(debut, choisis.find(' ', debut) - debut);
    }
    case 1:
      return std::to_string(static_cast<int>(alea()) >> tirer(alea, 32));
    case 2: {
      std::ostringstream s;
      s.precision(1 + static_cast<int>(tirer(alea, 17)));
      s << std::ldexp(static_cast<double>(static_cast<int>(alea())),
                      static_cast<int>(tirer(alea, 200)) - 130);
      return s.str();
    }
    default: {
      std::string s;
      for (unsigned n = tirer(alea, 9); n > 0; --n)
        s += lettres[tirer(alea, std::size(lettres) - 1)];
      return s;
    }
  }
}

bool memes_bits(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Leftovers live as long as the stream, so many short readings see more than one long one.
TEST(Conversion, ReadsAsTheStreamOverRandomTexts) {
  Alea alea(20240611);
  for (int lecture = 0; lecture < 40000; ++lecture) {
    FluxNombres nombres;
    FluxCaracteres caracteres;
    Modele flux, flux_caracteres;
    std::deque<std::string> textes;  // a text outlives the reading
    std::string vus;
    for (unsigned n = 1 + tirer(alea, 6); n > 0; --n) {
      const std::string& t = textes.emplace_back(texte_au_hasard(alea));
      const unsigned sorte = tirer(alea, 9);
      vus += " " + std::string(sorte < 4 ? "int" : sorte < 8 ? "real" : "char") + "'" + t + "'";
      if (sorte < 4)
        ASSERT_EQ(nombres.entier(t), flux.entier(t)) << vus;
      else if (sorte < 8)
        ASSERT_PRED2(memes_bits, nombres.reel(t), flux.reel(t)) << vus;
      else
        ASSERT_EQ(caracteres.caractere(t), flux_caracteres.caractere(t)) << vus;
    }
  }
}

TEST(Conversion, StrictReadingTakesAWholeDecimalNumber) {
  for (const char* texte : {"12", " 12 ", "+12", "0012"}) EXPECT_EQ(entier_strict(texte), 12);
  for (const char* texte : {"", " ", "1 2", "12a", "1.0", "0x10", "--1", "+-1", "99999999999"})
    EXPECT_FALSE(entier_strict(texte)) << texte;
  EXPECT_EQ(entier_long_strict("99999999999"), 99999999999);
  EXPECT_FALSE(entier_long_strict("99999999999999999999"));
  EXPECT_EQ(reel_strict(" -1.5e3 "), -1500.0);
  for (const char* texte : {"1e-999", "0e9999999999"}) EXPECT_EQ(reel_strict(texte), 0.0);
  for (const char* texte : {"", "1,5", "nan", "-inf", "1e999", "0x1p3", "1e", ".", "1e-999.5"})
    EXPECT_FALSE(reel_strict(texte)) << texte;
}

TEST(Conversion, WritesAsADefaultStream) {
  Alea alea(7);
  const auto verifier = [](auto v) {
    std::ostringstream s;
    s << "a" << v;
    std::string t = "a";
    ajouter_nombre(t, v);
    ASSERT_EQ(t, s.str());
  };
  using L = std::numeric_limits<double>;
  for (double v : {0.0, -0.0, 0.1, 1e5, 999999.5, 1e6, 123456.5, 1e-4, 0.00001, 9.999995, L::max(),
                   L::min(), L::denorm_min(), L::infinity(), -L::infinity(), L::quiet_NaN()})
    verifier(v);
  for (int v : {0, -1, 7, INT_MAX, INT_MIN}) verifier(v);
  for (int i = 0; i < 30000; ++i) {
    const int n = static_cast<int>(alea());
    verifier(n >> tirer(alea, 32));
    verifier(std::ldexp(n, static_cast<int>(tirer(alea, 120)) - 70));
    verifier(static_cast<double>(n) / (i % 1000 + 1));
    verifier((n % 20000000) / 2.0);
  }
}

}  // namespace
