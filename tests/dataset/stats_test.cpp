#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <random>
#include <sstream>
#include <stdexcept>

#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "tests/dataset/tables.h"

namespace {

// The column's numbers, read literally: one stream, never emptied, its errors cleared.
std::vector<double> lus(const BaseBuffer::Exemple& textes) {
  std::stringstream flux;
  double v = 0.0;
  std::vector<double> tous;
  for (const std::string& texte : textes) {
    flux.clear();
    flux << texte;
    if (double lu = 0.0; flux >> lu) v = lu;
    tous.push_back(v);
  }
  return tous;
}

std::string texte(double v) {
  std::ostringstream flux;
  flux << v;
  return flux.str();
}

// Equal, or both not a number: a square may overflow.
bool pareil(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

// Columns of texts that are mostly numbers, some not, from a fixed seed.
BaseBuffer::Exemple textes_au_hasard(std::mt19937& alea, bool propres) {
  BaseBuffer::Exemple textes;
  std::uniform_int_distribution<int> sorte(0, propres ? 3 : 5), lettre(0, 15), long_(0, 5);
  std::uniform_real_distribution<double> reel(-50.0, 50.0);
  for (int i = 0; i < 7; ++i) {
    const int s = sorte(alea);
    std::string t;
    if (s < 2) t = std::to_string(s == 0 ? lettre(alea) : lettre(alea) - 7);
    if (s == 2) t = texte(reel(alea));
    if (s == 3) t = texte(std::exp(reel(alea)));
    for (int n = s < 4 ? 0 : long_(alea); n > 0; --n) t += "0123.-+e ,a?159E"[lettre(alea)];
    textes.push_back(t);
  }
  return textes;
}

struct Sorties {
  std::string fichier, erreur, console;
};

Sorties matrice(const BaseBuffer& t, std::ostringstream& out) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(&t.mat_cov(out), &out);
  return {out.str(), testing::internal::GetCapturedStderr(),
          testing::internal::GetCapturedStdout()};
}

}  // namespace

TEST(Numeric, VectorHelpers) {
  EXPECT_EQ(nb_occ({9999, 3, 9999}, 9999), 2);
  EXPECT_EQ(nb_occ({}, 0), 0);
  EXPECT_EQ(moyenne({}), 0.0);
  EXPECT_EQ(variance({}), 0.0);
  EXPECT_EQ(moyenne({1e16, 1.0, -1e16}), 0.0);  // in order, each sum rounded
  EXPECT_EQ(variance({2.0, 4.0, 6.0}), 56.0 / 3 - 16.0);
  EXPECT_EQ(variance({1e8 + 1, 1e8}), 0.0);  // the squares lose it: 0.25 if centred first
  EXPECT_EQ(vec_square({-3.0, 0.5}), (std::vector<double>{9.0, 0.25}));
  std::vector<int> liste{7};
  vec_init(liste, 2, 9, 3);
  EXPECT_EQ(liste, (std::vector<int>{2, 5, 8}));
  vec_init(liste, 4, 4, 1);
  EXPECT_TRUE(liste.empty());
}

TEST(Stats, TextsThatAreNotNumbersAndTheirLeftovers) {
  const std::pair<BaseBuffer::Exemple, std::vector<double>> cas[] = {
      // A text stays ahead of all that follows it, and there is nothing before the first one.
      {{"1", "?", "3", "4"}, {1, 1, 1, 1}},
      {{"?", "2"}, {0, 0}},
      {{"12a", "5"}, {12, 12}},
      {{"1,5", "2"}, {1, 1}},
      {{"0x10", "5"}, {0, 0}},
      {{"3", "nan", "inf"}, {3, 3, 3}},
      // A lone sign, a lone exponent and an overflow are eaten.
      {{"7", "-", "8"}, {7, 7, 8}},
      {{"2", "1e", "5"}, {2, 2, 5}},
      {{"2", "1e999", "-1e999", "5"}, {2, 2, 2, 5}},
      {{"1e999", "5"}, {0, 5}},
      // Blanks are skipped; what stands after one joins the next text.
      {{"7", "", " ", "8"}, {7, 7, 7, 8}},
      {{"3 4", "5", "6"}, {3, 45, 6}},
      {{"+.5", "1.", "\t-0.25\n"}, {0.5, 1, -0.25}},
  };
  for (const auto& [textes, valeurs] : cas) {
    std::vector<double> v{99};
    ASSERT_TRUE(colonnes({textes}).get_vec_dbl(0, v));
    EXPECT_EQ(v, valeurs) << textes[0] << "/" << textes[1];
    EXPECT_EQ(lus(textes), valeurs);  // the model of the tests below
  }
}

TEST(Stats, ByColumnAndByName) {
  BaseBuffer t = colonnes({{"2", "4", "6"}, {"1", "x", "2"}});
  t.change_type("c1", "{-1,1}");
  t.add_attr("c2", "Numeric");  // the type is exactly "numeric"
  double a = -7, b = -8;
  int col = 5;
  std::vector<double> v{9};
  EXPECT_TRUE(t.is_numeric(0) && t.is_numeric("c0", col) && col == 0);
  EXPECT_FALSE(t.is_numeric(1) || t.is_numeric(2) || t.is_numeric("c1", col) || col != 1);
  EXPECT_FALSE(t.is_numeric("absent", col) || col != -1);
  const auto refuse = [&](auto c) {
    EXPECT_FALSE(t.get_vec_dbl(c, v) || t.calc_moy(c, a) || t.calc_var(c, a) || t.calc_std(c, a) ||
                 t.calc_min_max(c, a, b));
    EXPECT_TRUE(v == std::vector<double>{9} && a == -7 && b == -8);
  };
  refuse(1);
  refuse(std::string("c1"));
  refuse(std::string("absent"));
  EXPECT_TRUE(t.calc_moy("c0", a) && a == 4);
  EXPECT_TRUE(t.calc_min_max("c0", a, b) && a == 2 && b == 6);
  t._expl.clear();
  EXPECT_FALSE(t.calc_min_max(0, a, b));
  EXPECT_TRUE(t.calc_moy(0, a) && t.calc_var("c0", b) && a == 0 && b == 0);
  EXPECT_TRUE(t.get_vec_dbl("c0", v) && v.empty());
  EXPECT_TRUE(std::isnan(t.covar(0, 0)));
  EXPECT_TRUE(t.covar(0, 1) == -1.0 && t.covar(1, 0) == -1.0);
}

TEST(Stats, AgainstSlowComputations) {
  std::mt19937 alea(20260101);
  for (int tour = 0; tour < 400; ++tour) {
    const Lignes textes{textes_au_hasard(alea, tour % 2 == 0), textes_au_hasard(alea, true)};
    BaseBuffer t = colonnes(textes);
    t.hide_attr("c1");
    double somme[2][2]{}, s[2]{};
    std::vector<double> x[2]{lus(textes[0]), lus(textes[1])};
    for (std::size_t i = 0; i < 7; ++i)
      for (std::size_t a = 0; a < 2; ++a) {
        s[a] += x[a][i];
        for (std::size_t b = 0; b < 2; ++b) somme[a][b] += x[a][i] * x[b][i];
      }
    std::vector<double> v;
    double m = 0, var = 0, ecart = 0, min = 0, max = 0;
    for (int a = 0; a < 2; ++a) {
      const auto u = static_cast<std::size_t>(a);
      ASSERT_TRUE(t.get_vec_dbl(a, v) && t.calc_moy(a, m) && t.calc_var(a, var) &&
                  t.calc_std(a, ecart) && t.calc_min_max(a, min, max));
      EXPECT_EQ(v, x[u]);
      EXPECT_EQ(m, s[u] / 7);
      EXPECT_PRED2(pareil, var, somme[u][u] / 7 - (s[u] / 7) * (s[u] / 7));
      EXPECT_PRED2(pareil, ecart, std::sqrt(var));
      EXPECT_EQ(min, *std::min_element(x[u].begin(), x[u].end()));
      EXPECT_EQ(max, *std::max_element(x[u].begin(), x[u].end()));
      for (int b = 0; b < 2; ++b)
        EXPECT_PRED2(pareil, t.covar(a, b), somme[u][static_cast<std::size_t>(b)] / 7);
    }
    EXPECT_EQ(t.normalize(), 1);
    for (std::size_t a = 0; a < 2; ++a) {
      const auto [bas, haut] = std::minmax_element(x[a].begin(), x[a].end());
      const double d = *haut == *bas ? 1.0 : *haut - *bas;
      for (std::size_t i = 0; i < 7; ++i)
        EXPECT_EQ(t._expl[i][a], texte(x[a][i] / d - *bas / d)) << textes[a][i];
    }
  }
}

TEST(Stats, NormalizeOddTables) {
  BaseBuffer t = table({{"n", "string"}, {"x", "numeric"}, {"k", "numeric"}, {"c", "{-1,1}"}},
                       {{"7", "2", "5", "-1"}, {"8", "4", "5", "1"}, {"9", "6", "5", "1"}});
  t.hide_all();
  EXPECT_EQ(t.normalize(), 1);
  EXPECT_EQ(t._expl, (Lignes{{"7", "0", "0", "-1"}, {"8", "0.5", "0", "1"}, {"9", "1", "0", "1"}}));
  EXPECT_EQ(BaseBuffer().normalize(), 1);
  // Short of numeric columns only is an error; short of the others is not.
  t._expl[1] = {"8", "0.5", "0"};
  EXPECT_EQ(t.normalize(), 1);
  EXPECT_EQ(t._expl[1].size(), 3U);
  for (std::size_t reste : {0U, 1U, 2U}) {
    t._expl[1].resize(reste);
    EXPECT_THROW(t.normalize(), std::out_of_range) << reste;
  }
}

TEST(Covariance, ExactBytes) {
  const BaseBuffer t = table({{"a", "numeric"}, {"b b", "{-1,1}"}, {"c", "numeric"}},
                             {{"1", "1", "0.333333"}, {"3", "-1", "-1"}});
  const std::string progres =
      "Creation matrice de covariance...\n"
      "a / a\t5\na / b b\tNaN\na / c\t-1.33333\n"
      "b b / a\tNaN\nb b / b b\tNaN\nb b / c\tNaN\n"
      "c / a\t-1.33333\nc / b b\tNaN\nc / c\t0.555555\nfin...\n";
  const struct {
    std::ios_base::fmtflags drapeaux;
    const char* attendu;
  } cas[] = {
      {{}, "5\tNaN\t-1.3333\t\nNaN\tNaN\tNaN\t\n-1.3333\tNaN\t0.55556\t\n"},
      {std::ios_base::scientific | std::ios_base::showpos,
       "+5\tNaN\t-1.3333\t\nNaN\tNaN\tNaN\t\n-1.3333\tNaN\t+0.55556\t\n"},
      {std::ios_base::fixed,
       "5.00000\tNaN\t-1.33333\t\nNaN\tNaN\tNaN\t\n-1.33333\tNaN\t0.55556\t\n"},
  };
  for (const auto& [drapeaux, attendu] : cas) {
    std::ostringstream out;
    out << std::setprecision(12);
    out.setf(drapeaux);
    const Sorties s = matrice(t, out);
    EXPECT_EQ(s.fichier, attendu);
    EXPECT_EQ(s.erreur, progres);
    EXPECT_EQ(s.console, "");
    EXPECT_EQ(out.precision(), 5);
    EXPECT_FALSE(out.flags() & std::ios_base::scientific);
  }
}

TEST(Covariance, MinusOneAndNotANumber) {
  // A true mean of -1 reads as "NaN"; a mean that is not a number is written as the stream does.
  const BaseBuffer t =
      colonnes({{"1", "1"}, {"-1", "-1"}, {"1e300", "1e300"}, {"1e300", "-1e300"}});
  EXPECT_EQ(t.covar(0, 1), -1.0);
  ASSERT_TRUE(std::isnan(t.covar(2, 3)));
  std::ostringstream out;
  const Sorties s = matrice(t, out);
  const std::string nan = texte(t.covar(2, 3));
  EXPECT_EQ(s.fichier, "1\tNaN\t1e+300\t0\t\nNaN\t1\t-1e+300\t0\t\n1e+300\t-1e+300\tinf\t" + nan +
                           "\t\n0\t0\t" + nan + "\tinf\t\n");
  EXPECT_NE(s.erreur.find("c0 / c1\tNaN\n"), std::string::npos);
  EXPECT_NE(s.erreur.find("c2 / c3\t" + nan + "\n"), std::string::npos);
  std::ostringstream rien;
  EXPECT_EQ(matrice(table({}, {}), rien).fichier, "");
}
