#include "dataset/partage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <set>

using namespace topomine;

namespace {

/// Groups of one stratum.
Effectifs de_tailles(const std::vector<std::size_t>& tailles) {
  Effectifs e;
  for (const std::size_t t : tailles) e.push_back({t});
  return e;
}

}  // namespace

TEST(Partage, GroupsComeAsNearToTheRatioAsTheirSizesAllow) {
  srand48(1);
  for (const std::vector<std::size_t>& tailles :
       {std::vector<std::size_t>{5, 6, 9, 13, 22, 22, 32, 50},
        {1, 1},
        {0, 3, 0, 3},
        {100, 1, 1},
        {64, 128, 63, 65, 200},
        {7, 11, 130, 13, 64, 90}}) {
    const std::size_t tout = std::accumulate(tailles.begin(), tailles.end(), std::size_t{0});
    for (const double ratio : {0.01, 0.3, 0.5, 0.75, 0.99}) {
      const double cible = ratio * static_cast<double>(tout);
      double moindre = 1e9;
      for (unsigned choix = 0; choix < 1U << tailles.size(); ++choix) {
        std::size_t n = 0;
        for (std::size_t g = 0; g < tailles.size(); ++g) n += choix >> g & 1 ? tailles[g] : 0;
        if (n > 0 && n < tout)
          moindre = std::min(moindre, std::abs(static_cast<double>(n) - cible));
      }
      const std::vector<bool> premiere = groupes_de_la_premiere(de_tailles(tailles), ratio);
      std::size_t n = 0;
      for (std::size_t g = 0; g < tailles.size(); ++g) n += premiere[g] ? tailles[g] : 0;
      EXPECT_TRUE(n > 0 && n < tout);
      EXPECT_NEAR(std::abs(static_cast<double>(n) - cible), moindre, 1e-9);
    }
  }
  // The seed decides among equals.
  std::set<std::vector<bool>> vus;
  for (int graine = 0; graine < 50; ++graine) {
    srand48(graine);
    vus.insert(groupes_de_la_premiere(de_tailles({4, 4, 4, 4}), 0.5));
  }
  EXPECT_EQ(vus.size(), 6U);
}

TEST(Partage, GroupsKeepTheSharesOfTheirStrataWhereTheyCan) {
  // Sizes alone would do with any two; only {0, 3} or {1, 2} also halve the rare stratum.
  const Effectifs e{{10, 4}, {12, 2}, {11, 3}, {13, 1}};
  for (int graine = 0; graine < 9; ++graine) {
    srand48(graine);
    const std::vector<bool> p = groupes_de_la_premiere(e, 0.5);
    EXPECT_EQ(p[0], p[3]);
    EXPECT_EQ(p[1], p[2]);
    const std::vector<int> plis = plis_par_groupe(e, 2);
    EXPECT_EQ(plis[0], plis[3]);
    EXPECT_EQ(plis[1], plis[2]);
    EXPECT_NE(plis[0], plis[1]);
    // However near none or all would be, no part is empty.
    for (const double ratio : {0.01, 0.99}) {
      const std::vector<bool> q = groupes_de_la_premiere(e, ratio);
      EXPECT_EQ(std::ranges::count(q, true), ratio < 0.5 ? 1 : 3);
    }
    // A stratum without examples has no share to keep.
    const Effectifs vide{{10, 0, 4}, {12, 0, 2}, {11, 0, 3}, {13, 0, 1}};
    srand48(graine);
    EXPECT_EQ(groupes_de_la_premiere(vide, 0.5), p);
    EXPECT_EQ(plis_par_groupe(vide, 2), plis);
  }
}

TEST(Partage, FoldsAreOfLikeSizeAndNoneIsEmpty) {
  srand48(1);
  std::vector<int> plis = plis_par_groupe(de_tailles({50, 32, 22, 22, 13, 9, 6, 5}), 4);
  std::vector<int> tailles(4), ordonnees;
  for (std::size_t g = 0; const int t : {50, 32, 22, 22, 13, 9, 6, 5})
    tailles[static_cast<std::size_t>(plis[g++])] += t;
  std::ranges::sort(tailles);
  EXPECT_EQ(tailles, (std::vector{35, 37, 37, 50}));
  plis = plis_par_groupe(de_tailles({90, 1, 1}), 3);
  std::ranges::sort(plis);
  EXPECT_EQ(plis, (std::vector{0, 1, 2}));
}

TEST(Partage, RowsKeepTheSharesOfTheirStrata) {
  std::vector<int> strates;
  for (int i = 0; i < 100; ++i) strates.push_back(i % 10 == 0 ? 1 : 0);  // 90 and 10
  const std::vector<bool> p = premiers_par_strate(strates, 0.75);
  int par_strate[2]{};
  for (std::size_t i = 0; i < 100; ++i) par_strate[strates[i]] += p[i] ? 1 : 0;
  EXPECT_EQ(par_strate[0] + par_strate[1], 75);
  EXPECT_NEAR(par_strate[1], 7.5, 0.5);
  // One stratum: the first ones, as sep_buffer does.
  EXPECT_EQ(premiers_par_strate({0, 0, 0}, 0.7), (std::vector{true, true, false}));

  const std::vector<int> plis = plis_par_strate(strates, 4);
  int tailles[4]{}, rares[4]{};
  for (std::size_t i = 0; i < 100; ++i) {
    ++tailles[plis[i]];
    rares[plis[i]] += strates[i];
  }
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(tailles[k], 25);
    EXPECT_NEAR(rares[k], 2.5, 0.5);
  }
}

// A seed gives the same parts for good: on groups of few strata and of many, and on so many groups
// that not every pair of them is tried.
TEST(Partage, FollowsItsSeed) {
  const auto groupes = [](std::size_t nb, std::size_t strates) {
    Effectifs e(nb, std::vector<std::size_t>(strates));
    for (std::size_t g = 0; g < nb; ++g)
      for (std::size_t s = 0; s < strates; ++s) e[g][s] = (g * g * 7 + s * 5 + g) % 13 + s;
    return e;
  };
  const auto en_texte = [](const auto& parts) {
    std::string texte;
    for (const auto part : parts) texte += static_cast<char>('0' + static_cast<int>(part));
    return texte;
  };
  const auto somme = [](const std::string& texte) {
    unsigned n = 0;
    for (const char c : texte) n = n * 31 + static_cast<unsigned char>(c);
    return std::to_string(n);
  };
  const struct {
    std::size_t nb, strates;
    double ratio;
    int plis;
    const char *premiere, *par_pli;
  } rangees[]{{9, 1, 0.3, 3, "001100011", "001112201"},
              {9, 3, 0.3, 4, "110001000", "001330122"},
              {12, 2, 0.55, 5, "101010100110", "442112300433"},
              {14, 4, 0.8, 2, "11111101101110", "00010110101110"},
              {200, 3, 0.6, 7, "3562180427", "730449198"},
              {201, 3, 0.6, 8, "2939914023", "1484386273"},
              {1000, 1, 0.5, 9, "2035433810", "1857957851"},
              {1001, 2, 0.5, 9, "3637616828", "1531566480"}};
  for (const auto& r : rangees) {
    srand48(3);
    const Effectifs e = groupes(r.nb, r.strates);
    const std::string premiere = en_texte(groupes_de_la_premiere(e, r.ratio)),
                      plis = en_texte(plis_par_groupe(e, r.plis));
    EXPECT_EQ(r.nb < 20 ? premiere : somme(premiere), r.premiere);
    EXPECT_EQ(r.nb < 20 ? plis : somme(plis), r.par_pli);
  }
  std::vector<int> strates;
  for (int i = 0; i < 40; ++i) strates.push_back(i * i % 7 % 4);
  EXPECT_EQ(en_texte(premiers_par_strate(strates, 0.33)),
            "1111111111110100000000000000000000000000");
  EXPECT_EQ(en_texte(plis_par_strate(strates, 7)), "0310124354235660045112236043546120516234");
}
