#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <map>
#include <sstream>
#include <stdexcept>

#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "dataset/resume.h"
#include "tests/dataset/tables.h"
#include "tests/support/capture.h"

namespace {

std::string texte(double v) {
  std::ostringstream flux;
  flux << v;
  return flux.str();
}

}  // namespace

TEST(Numeric, VectorHelpers) {
  EXPECT_EQ(nb_occ({9999, 3, 9999}, 9999), 2);
  EXPECT_EQ(moyenne({}) + variance({}), 0.0);
  EXPECT_EQ(moyenne({1e16, 1.0, -1e16}), 0.0);  // in order, each sum rounded
  EXPECT_EQ(variance({2.0, 4.0, 6.0}), 56.0 / 3 - 16.0);
  EXPECT_EQ(variance({1e8 + 1, 1e8}), 0.0);  // the squares lose it: 0.25 if centred first
  EXPECT_EQ(vec_square({-3.0, 0.5}), (std::vector<double>{9.0, 0.25}));
  std::vector<int> liste{7};
  vec_init(liste, 2, 9, 3);
  EXPECT_EQ(liste, (std::vector<int>{2, 5, 8}));
  for (const int pas : {1, 0}) {  // without a step there is no list
    vec_init(liste, 4, 4 + (pas == 0), pas);
    EXPECT_TRUE(liste.empty());
  }
}

// One conversion per column: a text stays ahead of all that follows it, a lone sign is eaten, and
// there is nothing before the first one.
TEST(Stats, TextsThatAreNotNumbers) {
  const BaseBuffer t = colonnes({{"1", "?", "3", "4"},
                                 {"-", "7", "1e999", "8"},
                                 {"2", "?", "0", "0"},  // the zeros are 2, which the matrix knows
                                 {"0", "0", "2", "x"},
                                 {"3", "5", "7", "9"}});
  std::vector<double> v{99};
  EXPECT_TRUE(t.get_vec_dbl(0, v) && v == std::vector<double>({1, 1, 1, 1}));
  EXPECT_TRUE(t.get_vec_dbl(1, v) && v == std::vector<double>({0, 7, 7, 8}));
  EXPECT_EQ(t.covar(0, 1), 22.0 / 4);
  std::ostringstream matrice;
  const Capture muet;
  t.mat_cov(matrice);
  EXPECT_EQ(matrice.str(),
            "1\t5.5\t2\t1\t6\t\n5.5\t40.5\t11\t7.5\t39\t\n2\t11\t4\t2\t12\t\n"
            "1\t7.5\t2\t2\t8\t\n6\t39\t12\t8\t41\t\n");
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
    return !(t.get_vec_dbl(c, v) || t.calc_moy(c, a) || t.calc_var(c, a) || t.calc_std(c, a) ||
             t.calc_min_max(c, a, b)) &&
           v == std::vector<double>{9} && a == -7 && b == -8;
  };
  EXPECT_TRUE(refuse(1) && refuse(std::string("c1")) && refuse(std::string("absent")));
  EXPECT_TRUE(t.calc_moy("c0", a) && a == 4);
  EXPECT_TRUE(t.calc_var("c0", a) && a == 56.0 / 3 - 16 && t.calc_std(0, b) && b == std::sqrt(a));
  EXPECT_TRUE(t.calc_min_max("c0", a, b) && a == 2 && b == 6);
  t._expl.clear();
  EXPECT_FALSE(t.calc_min_max(0, a, b));
  EXPECT_TRUE(t.calc_moy(0, a) && t.calc_var("c0", b) && a == 0 && b == 0);
  EXPECT_TRUE(t.get_vec_dbl("c0", v) && v.empty());
  EXPECT_TRUE(std::isnan(t.covar(0, 0)));
  EXPECT_TRUE(t.covar(0, 1) == -1.0 && t.covar(1, 0) == -1.0);
}

TEST(Stats, ResumeOverSeveralTables) {
  topomine::Resume r(true), constant(true), mots(false);
  for (const auto& valeurs : {BaseBuffer::Exemple{"3", "1", "2"}, {"2", "7"}}) {
    r.ajouter(colonnes({valeurs}), 0);
    mots.ajouter(colonnes({valeurs}), 0);
  }
  EXPECT_TRUE(r.nb_exemples() == 5 && r.distincts() == 4 && r.moyenne() == 3);
  EXPECT_EQ(r.ecart_type(), std::sqrt(67.0 / 5 - 9));
  const std::pair<double, double> quantiles[]{{0, 1}, {0.25, 2}, {0.5, 2}, {0.625, 2.5}, {1, 7}};
  for (const auto& [part, valeur] : quantiles) EXPECT_EQ(r.quantile(part), valeur) << part;
  EXPECT_EQ(mots.effectifs(),
            (std::map<std::string, std::size_t>{{"1", 1}, {"2", 2}, {"3", 1}, {"7", 1}}));
  EXPECT_TRUE(mots.nb_exemples() == 5 && mots.distincts() == 4 && !mots.numerique());
  constant.ajouter(colonnes({BaseBuffer::Exemple(8, "0.7")}), 0);
  EXPECT_EQ(constant.ecart_type(), 0.0) << "a variance of -2e-16";
}

// x / d - min / d, not (x - min) / d: column "g" loses a third to the rounding of its quotients.
TEST(Stats, NormalizeOddTables) {
  BaseBuffer t = table({{"n", "string"}, {"g", "numeric"}, {"k", "numeric"}, {"c", "{-1,1}"}},
                       {{"7", "1000000000000000", "5", "-1"},
                        {"8", "1000000000000001", "5", "1"},
                        {"9", "1000000000000003", "5", "1"}});
  t.hide_all();
  EXPECT_EQ(t.normalize(), 1);
  EXPECT_EQ(t._expl,
            (Lignes{{"7", "0", "0", "-1"}, {"8", "0.375", "0", "1"}, {"9", "1", "0", "1"}}));
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

// A true mean of -1 reads "NaN" too; a mean that is not a number is written as the stream does. The
// scientific flag is cleared, the others stay.
TEST(Covariance, ExactBytes) {
  BaseBuffer t = table({{"a", "numeric"}, {"b b", "{-1,1}"}, {"c", "numeric"}, {"d", "numeric"}},
                       {{"1", "1", "0.333333", "-2"}, {"3", "-1", "-1", "0"}});
  std::ostringstream out;
  out << std::setprecision(12) << std::scientific << std::showpos;
  const Capture c;
  EXPECT_EQ(&t.mat_cov(out), &out);
  EXPECT_EQ(out.str(),
            "+5\tNaN\t-1.3333\tNaN\t\nNaN\tNaN\tNaN\tNaN\t\n"
            "-1.3333\tNaN\t+0.55556\t-0.33333\t\nNaN\tNaN\t-0.33333\t+2\t\n");
  EXPECT_EQ(c.err(),
            "Creation matrice de covariance...\n"
            "a / a\t5\na / b b\tNaN\na / c\t-1.33333\na / d\tNaN\n"
            "b b / a\tNaN\nb b / b b\tNaN\nb b / c\tNaN\nb b / d\tNaN\n"
            "c / a\t-1.33333\nc / b b\tNaN\nc / c\t0.555555\nc / d\t-0.333333\n"
            "d / a\tNaN\nd / b b\tNaN\nd / c\t-0.333333\nd / d\t2\nfin...\n");
  EXPECT_EQ(c.out(), "");

  t = colonnes({{"1e300", "1e300"}, {"1e300", "-1e300"}});
  const std::string nan = texte(t.covar(0, 1));
  ASSERT_TRUE(std::isnan(t.covar(0, 1)));
  std::ostringstream autre;
  t.mat_cov(autre);
  EXPECT_EQ(autre.str(), "inf\t" + nan + "\t\n" + nan + "\tinf\t\n");
}

// Both streams in one sink: names, cell, number, in this order.
TEST(Covariance, KeepsTheOrderOfItsTwoStreams) {
  const BaseBuffer t = table({{"a", "numeric"}, {"b", "string"}}, {{"1.5", "x"}, {"-2.25", "y"}});
  std::ostringstream out;
  std::streambuf* const avant = std::cerr.rdbuf(out.rdbuf());
  t.mat_cov(out);
  std::cerr.rdbuf(avant);
  EXPECT_EQ(out.str(),
            "Creation matrice de covariance...\n"
            "a / a\t3.6562\t3.65625\na / b\tNaN\tNaN\n\n"
            "b / a\tNaN\tNaN\nb / b\tNaN\tNaN\n\nfin...\n");
}

// Rows of zeros are passed over many at a time; what is left is summed in the same order.
TEST(Covariance, OfManyRowsIsThatOfEachPair) {
  for (const int n : {63, 64, 65, 200}) {
    Lignes lignes;
    for (int i = 0; i < n; ++i)
      lignes.push_back({i % 3 == 0 ? "0" : std::to_string(i) + ".1", i % 64 == 63 ? "-7.3" : "0",
                        std::to_string(1.0 / (i + 1)), "0"});
    const BaseBuffer t =
        table({{"a", "numeric"}, {"b", "numeric"}, {"c", "numeric"}, {"d", "numeric"}}, lignes);
    std::ostringstream matrice, attendue;
    const Capture muet;
    t.mat_cov(matrice);
    attendue.precision(5);
    for (int a = 0; a < 4; ++a) {
      for (int b = 0; b < 4; ++b) attendue << t.covar(a, b) << '\t';
      attendue << '\n';
    }
    EXPECT_EQ(matrice.str(), attendue.str()) << n;
  }
}

// A host program may have set any global locale before it makes its streams.
TEST(Covariance, AndWritersKnowNoLocale) {
  struct Ponctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
  };
  BaseBuffer t = table({{"a", "numeric"}, {"b", "numeric"}}, Lignes(12, {"1234.5", "0.25"}));
  const auto textes = [&t] {
    const Capture c;
    std::ostringstream matrice, weka, torch;
    t.mat_cov(matrice);
    t.Print_weka(weka);
    t.Print_torch(torch);
    return std::vector<std::string>{matrice.str(), weka.str(), torch.str(), c.err()};
  };
  const std::vector<std::string> attendus = textes();
  const std::locale avant =
      std::locale::global(std::locale(std::locale::classic(), new Ponctuation));
  const std::vector<std::string> obtenus = textes();
  std::locale::global(avant);
  EXPECT_EQ(obtenus, attendus);
  EXPECT_EQ(obtenus[2].substr(0, 5), "12 2\n");
}
