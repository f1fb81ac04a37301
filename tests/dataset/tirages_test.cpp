#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <numeric>

#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "tests/dataset/tables.h"

namespace {

constexpr double pas_un_nombre = std::numeric_limits<double>::quiet_NaN();
constexpr double infini = std::numeric_limits<double>::infinity();
constexpr std::size_t derniere = 49;

// The column that decides which example a column's value is taken from.
std::size_t chef(std::size_t c) {
  if (c >= 5 && c <= 8) return 5;
  if (c >= 11 && c <= 18) return c % 2 == 1 ? 11 : 12;
  return c;
}

std::vector<std::size_t> suite(std::size_t n) {
  std::vector<std::size_t> v(n);
  std::iota(v.begin(), v.end(), 0U);
  return v;
}

// One shuffled list of examples per column from 2 to the last one.
std::vector<std::vector<std::size_t>> permutations(Tirage& tirage, std::size_t nb) {
  std::vector<std::vector<std::size_t>> p(derniere + 1);
  for (std::size_t c = 2; c <= derniere; ++c) tirage.melanger(p[c] = suite(nb));
  return p;
}

// n rows of which column c of row i comes from example source(c, i); drawn in column order.
template <class Source>
Lignes composer(const Lignes& de, const std::string& nom, std::size_t n, Source source) {
  Lignes lignes;
  for (std::size_t i = 0; i < n; ++i) {
    lignes.push_back({nom, std::to_string(i)});
    for (std::size_t c = 2; c < derniere; ++c) lignes.back().push_back(de[source(c, i)][c]);
    lignes.back().push_back("-1");
  }
  return lignes;
}

Lignes attendu_permute(const Lignes& de, std::size_t n, Tirage& tirage) {
  const auto p = permutations(tirage, de.size());
  return composer(de, "fake_base", n, [&](std::size_t c, std::size_t i) { return p[chef(c)][i]; });
}

Lignes attendu_repete(const Lignes& de, std::size_t n, Tirage& tirage) {
  const auto q = permutations(tirage, de.size())[derniere];
  return composer(de, "fake_base", n,
                  [&](std::size_t c, std::size_t) { return q[(chef(c) - 2) % de.size()]; });
}

Lignes attendu_tire(const Lignes& de, std::size_t n, Tirage& tirage) {
  std::size_t choisi[derniere]{};
  return composer(de, "fake_base2", n, [&](std::size_t c, std::size_t) {
    if (chef(c) == c) choisi[c] = tirage(de.size());
    return choisi[chef(c)];
  });
}

// A target with contents, flags and a class of its own.
BaseBuffer cible_occupee() {
  BaseBuffer t = table({{"vieux", "numeric"}}, {{"1"}});
  t.hide_attr("vieux");
  t._num_classe = 0;
  return t;
}

}  // namespace

TEST(Sampling, GeneratorAndShuffle) {
  for (std::uint32_t graine : {0U, 1767225600U}) {
    srand48(static_cast<long>(graine));
    Tirage tirage(graine);
    for (std::size_t n : {1U, 7U, 2147483647U})
      EXPECT_EQ(static_cast<std::size_t>(MyRandom()(static_cast<int>(n))), tirage(n));
    for (int nb : {0, 1, 2, 200}) {
      BaseBuffer t = reperes(nb);
      if (nb > 2) t._expl[1].resize(3);  // a short row moves like the others
      Lignes attendu = t._expl;
      tirage.melanger(attendu);
      t.rdm_list();
      EXPECT_EQ(t._expl, attendu);
      EXPECT_EQ(drand48(), tirage.reel());  // no draw more, none less
    }
  }
}

TEST(Sampling, Split) {
  const std::pair<double, int> cas[] = {{0.25, 2}, {0.9999, 9}, {1.7, 10},    {infini, 10},
                                        {0.0, 0},  {-0.5, 0},   {-infini, 0}, {pas_un_nombre, 0}};
  for (const auto& [ratio, premiers] : cas)
    for (bool melange : {false, true}) {
      BaseBuffer source = reperes(10);
      source._num_classe = 3;
      source.hide_attr("ident");
      source._expl[4].resize(1);
      Lignes tous = source._expl;
      BaseBuffer a = cible_occupee(), b;
      srand48(5);
      Tirage tirage(5);
      source.sep_buffer(ratio, a, b, melange);
      EXPECT_EQ(source._expl, tous);
      if (melange) tirage.melanger(tous);
      EXPECT_EQ(a._expl, Lignes(tous.begin(), tous.begin() + premiers)) << ratio;
      EXPECT_EQ(b._expl, Lignes(tous.begin() + premiers, tous.end())) << ratio;
      for (const BaseBuffer* t : {&a, &b})
        EXPECT_TRUE(t->_attr == source._attr && t->_nom == "reperes" && t->_num_classe == 3);
      EXPECT_TRUE(a._aff == cible_occupee()._aff && b._aff.at("ident"));
      EXPECT_EQ(drand48(), tirage.reel());
    }
}

TEST(Sampling, SplitIntoItselfOrTwiceTheSame) {
  const Lignes tous = reperes(4)._expl;
  const Lignes debut{tous[0]}, reste(tous.begin() + 1, tous.end());
  BaseBuffer t = reperes(4), a, b = cible_occupee();
  t.sep_buffer(0.25, t, a, false);
  EXPECT_TRUE(t._expl == debut && a._expl == reste);
  t = reperes(4);
  t.sep_buffer(0.25, a, t, false);
  EXPECT_TRUE(a._expl == debut && t._expl == reste);
  EXPECT_TRUE(t._nom == "reperes" && t._attr.size() == 50U);
  t = reperes(4);
  t.sep_buffer(0.25, b, b, false);  // both parts, one after the other
  EXPECT_TRUE(b._expl == tous && !b._aff.at("vieux"));
  t.sep_buffer(0.25, t, t, false);
  EXPECT_EQ(t._expl, tous);
  BaseBuffer vide;
  vide.sep_buffer(0.5, a, b, true);
  EXPECT_EQ(a.nb_expl() + b.nb_expl(), 0);
}

TEST(Sampling, SyntheticRows) {
  const struct {
    std::size_t exemples;
    int n;
    std::size_t permutes, tires;  // rows that are made
  } cas[] = {{10, 3, 3, 3},    {10, 1000, 10, 1000},
             {10, -1, 10, 0},  {10, 0, 0, 0},
             {60, 60, 60, 60}, {1, 5, 1, 5},
             {0, 5, 0, 0},     {4, std::numeric_limits<int>::min(), 4, 0}};
  for (const auto& [exemples, n, permutes, tires] : cas) {
    SCOPED_TRACE(std::to_string(exemples) + " examples, n = " + std::to_string(n));
    BaseBuffer source = reperes(static_cast<int>(exemples));
    source._num_classe = 4;
    const Lignes de = source._expl;
    Tirage tirage(11);
    srand48(11);
    for (bool dans_elle_meme : {false, true}) {
      BaseBuffer copie(source), autre = cible_occupee();
      BaseBuffer& out = dans_elle_meme ? copie : autre;
      const auto drapeaux = out._aff;
      copie.create_fake_base(out, n);
      EXPECT_EQ(out._expl, attendu_permute(de, permutes, tirage));
      EXPECT_TRUE(out._nom == "fake_base" && out._attr == source._attr && out._num_classe == 4);
      EXPECT_TRUE(out._aff == drapeaux && (dans_elle_meme || copie._expl == de));

      copie = source;
      copie.create_fake_base2(out, n);
      EXPECT_EQ(out._expl, attendu_tire(de, tires, tirage));
      EXPECT_TRUE(out._nom == "fake_base2" && out._num_classe == 4 && out._aff == drapeaux);
    }
    source.create_fakes(n);
    Lignes attendu = de;
    for (auto& ligne : attendu_repete(de, permutes, tirage)) attendu.push_back(ligne);
    EXPECT_EQ(source._expl, attendu);
    EXPECT_EQ(source._nom, "reperes");
    EXPECT_EQ(drand48(), tirage.reel());
  }
}

TEST(Sampling, SyntheticRowsByRatio) {
  const struct {
    double ratio;
    int permutes, tires;
  } cas[] = {{0.49, 3, 3}, {2.5, 7, 17},          {-0.1, 0, 0},
             {-0.5, 7, 0}, {pas_un_nombre, 0, 0}, {-1e300, 7, 0}};
  for (const auto& [ratio, permutes, tires] : cas) {
    BaseBuffer t = reperes(7), out;
    t.create_fake_base(out, ratio);
    EXPECT_EQ(out.nb_expl(), permutes) << ratio;
    t.create_fake_base2(out, ratio);
    EXPECT_EQ(out.nb_expl(), tires) << ratio;
    t.create_fakes(ratio);
    EXPECT_EQ(t.nb_expl(), 7 + permutes) << ratio;
  }
  BaseBuffer t = reperes(7), vide;
  t.create_fake_base(vide, 1e300);  // more than an int holds is still all of them
  EXPECT_EQ(vide.nb_expl(), 7);
  vide = reperes(0);
  vide.create_fakes(infini);  // 0 times infinity
  EXPECT_EQ(vide.nb_expl(), 0);
}

// What a short example lacks is left out; what it has is used; nothing is read past its end.
TEST(Sampling, SyntheticRowsFromShortOnes) {
  BaseBuffer t = reperes(3), permutes, tires;
  for (auto& ligne : t._expl) ligne.resize(4);
  t.create_fake_base(permutes, 3);
  t.create_fake_base2(tires, 20);
  t.create_fakes(2);
  EXPECT_EQ(permutes.nb_expl() + tires.nb_expl() + t.nb_expl(), 3 + 20 + 5);
  t._expl.erase(t._expl.begin(), t._expl.begin() + 3);
  for (const Lignes& lignes : {permutes._expl, tires._expl, t._expl})
    for (const auto& ligne : lignes) {
      EXPECT_EQ(ligne.at(2).substr(1) + ligne.at(3).substr(1), ":2:3");
      EXPECT_TRUE(ligne.size() > 4 && ligne.back() == "-1");
    }
}
