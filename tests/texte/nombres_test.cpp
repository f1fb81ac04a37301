#include "texte/nombres.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

using namespace topomine;

// Texts in their thousands, and numbers written, are compared with a stream's by the inputs of
// tests/corpus/conversion.

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
  EXPECT_EQ(naturel_en_tete("80x"), 80);
  EXPECT_EQ(naturel_en_tete("fg", 16), 15);
  for (const char* texte : {"", "-1", "+1", " 1", "99999999999999999999"})
    EXPECT_FALSE(naturel_en_tete(texte)) << texte;
  for (const char* texte : {"0", "-.5", "1e3", "007"}) EXPECT_TRUE(est_un_reel(texte)) << texte;
  for (const char* texte : {"", "+1", " 1", "1e", "-", "inf", "1 "})
    EXPECT_FALSE(est_un_reel(texte)) << texte;
}

TEST(Conversion, WritesTheLongestNumbers) {
  EXPECT_EQ(exactement(-2.2250738585072014e-308), "-2.2250738585072014e-308");
  EXPECT_EQ(en_texte(-2.2250738585072014e-308, 17), "-2.2250738585072014e-308");
  EXPECT_EQ(en_texte(1234567), "1.23457e+06");
  EXPECT_EQ(en_texte(123456, 5), "1.2346e+05");
  EXPECT_EQ(en_texte_fixe(-0.25, 0), "-0");
  const std::string grand = en_texte_fixe(-std::numeric_limits<double>::max(), 2);
  EXPECT_EQ(grand.size(), 313);
  EXPECT_TRUE(grand.ends_with("858368.00")) << grand;
}

// Each number of decimals has its power of ten; with digits past 2^53 a division would be off.
TEST(Conversion, PlainDecimalsAreCorrectlyRounded) {
  std::vector<std::string> textes{".9139962084340797", "907.8254179105733"};
  for (std::size_t zeros = 0; zeros < 18; ++zeros)
    textes.push_back("." + std::string(zeros, '0') + "3");
  for (const std::string& texte : textes)
    EXPECT_EQ(FluxNombres().reel(texte), std::strtod(texte.c_str(), nullptr)) << texte;
}

TEST(Conversion, LeftoversAndFailuresShowInTheNextReads) {
  const struct {
    const char* textes[3];
    int entiers[3];
    double reels[3];
    bool reste;  // of the integers
  } lignes[] = {
      {{"1,5", "2", "3"}, {1, 1, 1}, {1, 1, 1}, true},
      {{"12a", "-", "4"}, {12, 12, 12}, {12, 12, 12}, true},
      {{"-", "5", "6"}, {0, 5, 6}, {0, 5, 6}, false},
      {{"5.5", "2", " "}, {5, 5, 5}, {5.5, 2, 2}, true},
      {{"9999999999", "7", "+8"}, {0, 7, 8}, {9999999999, 7, 8}, false},
      {{"9007199254740993", "0.9007199254740993", "99999999999999.99"},
       {0, 0, 0},
       {9007199254740992, 0.9007199254740993, 99999999999999.99},
       true},
  };
  for (const auto& l : lignes) {
    FluxNombres entiers, reels;
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(entiers.entier(l.textes[i]), l.entiers[i]) << l.textes[0] << ' ' << i;
      EXPECT_EQ(reels.reel(l.textes[i]), l.reels[i]) << l.textes[0] << ' ' << i;
    }
    EXPECT_EQ(entiers.sans_reste(), !l.reste) << l.textes[0];
  }
  FluxCaracteres caracteres;
  std::string lus;
  for (const char* texte : {" ", "HO", "C", ""}) lus += caracteres.caractere(texte);
  EXPECT_EQ(lus, std::string("\0HOC", 4));
}
