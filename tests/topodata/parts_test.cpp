#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "dataset/csv.h"
#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

using Table = std::vector<std::vector<std::string>>;

Table lire_table(const std::filesystem::path& fichier) {
  return lire_csv(lire(fichier)).value();
}

/// Rows without the header, sorted.
Table lignes(Table t) {
  t.erase(t.begin());
  std::ranges::sort(t);
  return t;
}

std::set<std::string> valeurs(const Table& t, std::size_t col) {
  std::set<std::string> v;
  for (std::size_t i = 1; i < t.size(); ++i) v.insert(t[i].at(col));
  return v;
}

/// Three bases of different sizes, and a second collection with bases of the same names.
struct DeuxCollections : Collection {
  DeuxCollections() {
    for (const auto& [nom, blocs] : {std::pair{"autre", "12"}, {"grande", "27"}})
      EXPECT_EQ(
          lancer(MAKE_CASES_PROGRAM, ".", {(dossier / nom).string(), "--blocs", blocs}).statut, 0);
    // The bases of the second have other codes.
    changer("../autre/climite.cfg", "dessus", "dessous");
  }
  std::string sortie() const { return (dossier / "p").string(); }
  Resultat partage(std::vector<std::string> options) const {
    const std::vector<std::string> debut{"partage",
                                         cas(),
                                         "nrm",
                                         "--avec",
                                         (dossier / "autre").string(),
                                         "--avec",
                                         (dossier / "grande").string(),
                                         "--bases",
                                         "mesh_case_1,mesh_case_2,mesh_case_4",
                                         "--format",
                                         "csv",
                                         "-o",
                                         sortie()};
    options.insert(options.begin(), debut.begin(), debut.end());
    return topodata(options);
  }
};

}  // namespace

TEST(Parts, EveryExampleIsOnOneSideAndInOneTest) {
  const DeuxCollections c;
  ASSERT_EQ(c.partage({"--ratio", "0.5", "--sans-melange"}).statut, 0);
  Table tout = lignes(lire_table(c.sortie() + "_1.csv"));
  std::ranges::copy(lignes(lire_table(c.sortie() + "_2.csv")), std::back_inserter(tout));
  std::ranges::sort(tout);
  ASSERT_EQ(tout.size(), 3U * (8 + 12 + 27));
  struct Cas {
    std::vector<std::string> options;
    int plis;
    bool bases_entieres;
  };
  const Cas rangees[]{
      {{"--ratio", "0.7"}, 0, false},
      {{"--ratio", "0.7", "--par-base"}, 0, true},
      {{"--ratio", "0.7", "--stratifie", "TypeC"}, 0, false},
      {{"--ratio", "0.7", "--par-base", "--stratifie", "TypeC", "--sans-melange"}, 0, true},
      {{"--plis", "4"}, 4, false},
      {{"--plis", "4", "--stratifie", "type"}, 4, false},
      {{"--plis", "4", "--par-base"}, 4, true},
      {{"--plis", "bases"}, 9, true},
  };
  for (const Cas& r : rangees) {
    const Resultat fait = c.partage(r.options);
    ASSERT_EQ(fait.statut, 0) << fait.erreur;
    Table essais;
    for (int pli = 1; pli <= std::max(1, r.plis); ++pli) {
      const std::string debut = c.sortie() + (r.plis ? "_pli" + std::to_string(pli) : "");
      const Table premiere = lire_table(debut + "_1.csv"), seconde = lire_table(debut + "_2.csv");
      EXPECT_EQ(premiere[0][0], "collection");
      Table paire = lignes(premiere);
      std::ranges::copy(lignes(seconde), std::back_inserter(paire));
      std::ranges::sort(paire);
      EXPECT_EQ(paire, tout);
      std::ranges::copy(lignes(seconde), std::back_inserter(essais));
      if (!r.bases_entieres) continue;
      // Num_Base tells all bases apart, those of one name in two collections too.
      const std::size_t col = premiere[0].size() - 2;
      for (const std::string& base : valeurs(seconde, col))
        EXPECT_FALSE(valeurs(premiere, col).contains(base));
    }
    std::ranges::sort(essais);
    if (r.plis) {
      EXPECT_EQ(essais, tout);
    }
    EXPECT_EQ(fait.erreur.find("partie 1 : ") != std::string::npos, r.bases_entieres && !r.plis);
    EXPECT_EQ(std::ranges::count(fait.erreur, '\n'), r.bases_entieres ? (r.plis ? r.plis : 3) : 0);
  }
}

TEST(Parts, SaysWhatItReachedAndFollowsTheSeed) {
  const DeuxCollections c;
  const auto essai = [&](const char* graine) {
    const std::string dit = c.partage({"--ratio", "0.6", "--par-base", "--graine", graine}).erreur;
    return dit + lire(c.sortie() + "_1.csv");
  };
  EXPECT_EQ(essai("5"), essai("5"));
  EXPECT_NE(essai("5"), essai("6"));
  // Of three bases of 8, 12 and 27 blocks each, 86 of 141 blocks are the nearest to 84.6.
  EXPECT_TRUE(
      essai("5").starts_with("topodata : part obtenue 0.609929, voulue 0.6\n"
                             "topodata : partie 1 : "));
}

TEST(Parts, TheSecondPartIsScaledAndThinnedAsTheFirst) {
  const DeuxCollections c;
  const std::string echelle = (c.dossier / "e.csv").string();
  for (const auto& options :
       {std::vector<std::string>{"--ratio", "0.5", "--sans-melange"},
        {"--ratio", "0.5", "--sans-melange", "--normalise", "--echelle", echelle}})
    ASSERT_EQ(c.partage(options).statut, 0);
  const Table e = lire_table(echelle);
  ASSERT_EQ(e[0], (std::vector<std::string>{"attribut", "minimum", "maximum"}));
  ASSERT_EQ(e.size(), 45U);
  const Table premiere = lire_table(c.sortie() + "_1.csv"),
              seconde = lire_table(c.sortie() + "_2.csv");
  ASSERT_EQ(c.partage({"--ratio", "0.5", "--sans-melange"}).statut, 0);
  const Table brute_1 = lire_table(c.sortie() + "_1.csv"),
              brute_2 = lire_table(c.sortie() + "_2.csv");
  for (const auto& [brute, mise] : {std::pair{&brute_1, &premiere}, {&brute_2, &seconde}})
    for (std::size_t col = 4; col < 48; ++col) {
      double min = 1e300, max = -1e300;
      for (std::size_t i = 1; i < brute_1.size(); ++i) {
        min = std::min(min, std::stod(brute_1[i][col]));
        max = std::max(max, std::stod(brute_1[i][col]));
      }
      ASSERT_EQ(e[col - 3][0], brute_1[0][col]);
      EXPECT_EQ(std::stod(e[col - 3][1]), min);
      EXPECT_EQ(std::stod(e[col - 3][2]), max);
      const double d = max == min ? 1 : max - min;
      for (std::size_t i = 1; i < brute->size(); ++i)
        EXPECT_NEAR(std::stod((*mise)[i][col]), std::stod((*brute)[i][col]) / d - min / d, 1e-5);
    }
  // The scale of the file does the same to new cases.
  const Resultat r = topodata({"table", c.cas(), "nrm", "--bases", "mesh_case_1", "--format", "csv",
                               "--applique-echelle", echelle});
  EXPECT_EQ(lire_csv(r.sortie).value()[1][4], premiere[1][5]);

  ASSERT_EQ(c.partage({"--ratio", "0.2", "--sans-melange", "--sans-constantes"}).statut, 0);
  const Table mince_1 = lire_table(c.sortie() + "_1.csv"),
              mince_2 = lire_table(c.sortie() + "_2.csv");
  EXPECT_EQ(mince_1[0], mince_2[0]);
  EXPECT_LT(mince_1[0].size(), 51U);
  for (std::size_t col = 0; col < mince_1[0].size(); ++col)
    EXPECT_GT(valeurs(mince_1, col).size(), 1U) << mince_1[0][col];
}

TEST(Parts, SaysInOneLineWhatCannotBeSplit) {
  const DeuxCollections c;
  const std::string e = (c.dossier / "e.csv").string();
  const std::string debut = "attribut,minimum,maximum\n";
  struct Cas {
    std::vector<std::string> options;
    std::string echelle, dit;
  };
  const Cas rangees[]{
      {{}, "", "donner --ratio"},
      {{"--ratio", "0.5", "--plis", "3"}, "", "--ratio et --plis s'excluent"},
      {{"--plis", "1"}, "", "--plis : '1' (attendu"},
      {{"--plis", "2x"}, "", "--plis : '2x' (attendu"},
      {{"--plis", "10", "--par-base"}, "", "--plis 10 : il y a trop peu de bases (9)"},
      {{"--plis", "142"}, "", "--plis 142 : il y a trop peu d'exemples (141)"},
      {{"--plis", "bases", "--stratifie", "TypeC"}, "", "--plis bases et --stratifie s'excluent"},
      {{"--ratio", "1"}, "", "--ratio 1 : la seconde partie est vide (141 exemples)"},
      {{"--ratio", "0.001"}, "", "--ratio 0.001 : la premiere partie est vide"},
      {{"--ratio", "0", "--par-base"}, "", "--par-base --ratio 0 : une partie est vide"},
      {{"--ratio", "0.5", "--stratifie", "erikson"},
       "",
       "--stratifie : 'erikson' n'est pas nominal"},
      {{"--ratio", "0.5", "--stratifie", "Typ"},
       "",
       "attribut inconnu : 'Typ' (le plus proche : type"},
      {{"--ratio", "0.5", "--sans-melange", "--graine", "2"}, "", "--sans-melange et --graine"},
      {{"--ratio", "0.5", "--sans-melange", "--melange"}, "", "--melange et --sans-melange"},
      {{"--ratio", "0.5", "--applique-echelle", c.cas()}, "", c.cas() + " : echelle illisible"},
      {{"--ratio", "0.5", "--echelle", e}, "", "--echelle demande --normalise"},
      {{"--ratio", "0.5", "--normalise"}, "x", "--normalise et --applique-echelle s'excluent"},
      {{"--ratio", "0.5"}, "", e + " : attendu : un csv qui commence par"},
      {{"--ratio", "0.5"}, debut + "erikson,0,1\n", e + " : rien pour nb_voisin, vol_exa"},
      {{"--ratio", "0.5"}, debut + "erikson,2,1\n", e + " : ligne 2 : 'erikson' a un minimum au"},
      {{"--ratio", "0.5"}, debut + "erikson,0,nan\n", e + " : ligne 2 : attendu : un nom et deux"},
      {{"--ratio", "0.5"}, debut + "a,0,1\na,0,1\n", e + " : ligne 3 : 'a' vient deux fois"},
      {{"--ratio", "0.5", "--cache", "*", "--garde", "base"}, "", "--garde et --cache s'excluent"},
      {{"--ratio", "0.5", "--crlf", "--classe", "x"}, "", "--classe : 'x' (attendu"},
  };
  for (const Cas& r : rangees) {
    std::vector<std::string> options = r.options;
    ecrire(e, r.echelle);
    if (!r.echelle.empty() || r.dit.starts_with(e))
      options.insert(options.end(), {"--applique-echelle", e});
    const Resultat fait = c.partage(options);
    EXPECT_TRUE(fait.erreur.starts_with("topodata : " + r.dit)) << fait.erreur << r.dit;
    EXPECT_EQ(std::ranges::count(fait.erreur, '\n'), 1) << fait.erreur;
    EXPECT_EQ(fait.statut, 2);
    EXPECT_FALSE(std::filesystem::exists(c.sortie() + "_1.csv"));
  }
}
