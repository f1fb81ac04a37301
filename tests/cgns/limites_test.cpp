#include <gtest/gtest.h>

#include <cmath>

#include "cgns/codes.h"
#include "cgns/enfant.h"
#include "cgns/lecture_zone.h"
#include "tests/cgns/modele.h"
#include "tests/support/dossier.h"

// What a hostile file, or a reading process gone wrong, may hand over.

namespace topomine {

namespace {

/// Two zones of 2 x 2 x 2 cells, one after the other, joined, with a wall on the first.
Modele deux_zones() {
  Modele m;
  m.s.base = "deux";
  for (const double x : {0.0, 1.0})
    m.zone({2, 2, 2}, [x](double u, double v, double w) { return Vec{x + u, v, w}; });
  m.condition(0, {{1, 1, 1}, {3, 3, 1}}, "paroi", 1);
  m.jonction(0, {{3, 1, 1}, {3, 3, 3}}, 1, {{3, 1, 1}, {1, 1, 1}, {1, 2, 3}});
  return m;
}

template <class Action>
std::string refus(Action action) {
  try {
    action();
  } catch (const MaillageRefuse& r) {
    return r.what();
  }
  return "";
}

}  // namespace

TEST(Limites, StructuresAreLookedInto) {
  const std::string condition = "condition 'c1' : ", raccord = "raccord 'r1' : ",
                    face = " ne va pas d'une face a une face",
                    plate = " : une zone de moins de deux noeuds dans un sens n'a pas de cellules";
  const struct {
    void (*changer)(Structure&);
    std::string dit;
  } rangees[]{
      {[](Structure&) {}, ""},
      {[](Structure& s) { s.zones.clear(); }, "aucune zone dans la base 'deux'"},
      {[](Structure& s) { s.zones.resize(200'000, s.zones[0]); }, ""},
      {[](Structure& s) { s.zones.resize(200'001, s.zones[0]); }, "plus de 200000 zones"},
      {[](Structure& s) { s.conditions.resize(999'999, s.conditions[0]); }, ""},
      {[](Structure& s) { s.conditions.resize(1'000'000, s.conditions[0]); },
       "plus de 1000000 raccords et conditions"},
      {[](Structure& s) {
         s.zones[1].taille = {3, 3, 1};
       },
       "zone 'zone 2'" + plate},
      {[](Structure& s) {
         s.zones[1].taille = {3, 3, 2};
       },
       raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) {
         s.zones.push_back({"z", {2'000'000'000, 2, 5}});
       },
       ""},
      {[](Structure& s) {
         s.zones.push_back({"z", {2'000'000'001, 2, 2}});
       },
       "zone 'z' : trop grande"},
      {[](Structure& s) {
         s.zones.push_back({"z", {2'000'000'000, 2, 6}});
       },
       "zone 'z' : trop grande"},
      {[](Structure& s) { s.conditions[0].zone = 2; },
       condition + "[1:3,1:3,1:1] n'est pas sur une face"},
      {[](Structure& s) { s.conditions[0].plage.max[2] = 2; },
       condition + "[1:3,1:3,1:2] n'est pas sur une face"},
      {[](Structure& s) { s.conditions[0].plage.max[0] = 4; },
       condition + "[1:4,1:3,1:1] n'est pas sur une face"},
      {[](Structure& s) { s.conditions[0].plage.min[0] = 0; },
       condition + "[0:3,1:3,1:1] n'est pas sur une face"},
      {[](Structure& s) { s.jonctions[0].zone = 2; }, raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) { s.jonctions[0].voisine = 2; }, raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) { s.jonctions[0].plage.min[0] = 2; }, raccord + "[2:3,1:3,1:3]" + face},
      {[](Structure& s) {
         s.jonctions[0].passage.t = {1, 2, 2};
       },
       raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) {
         s.jonctions[0].passage.t = {1, 2, 4};
       },
       raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) { s.jonctions[0].passage.depuis[1] = 0; },
       raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) { s.jonctions[0].passage.vers[1] = 4; }, raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) {
         s.jonctions[0].passage.vers = {2, 1, 1};
       },
       raccord + "[3:3,1:3,1:3]" + face},
      {[](Structure& s) {
         s.jonctions[0].passage.vers = {3, 1, 1};
       },
       ""},
  };
  for (const auto& r : rangees) {
    Structure s = deux_zones().s;
    r.changer(s);
    EXPECT_EQ(refus([&] { valider(s); }), r.dit);
  }
}

TEST(Limites, WhatTheReadingProcessSendsIsLookedInto) {
  const Dossier d;
  const std::string fichier = d.chemin() + "m.cgns";
  ecrire_cgns(deux_zones(), fichier);
  const Extrait e = lire_cgns(fichier, {});
  const auto octets = [](Extrait x) {
    Emballage paquet;
    emballer(paquet, x);
    return paquet.texte;
  };
  const std::string bon = octets(e);
  EXPECT_EQ(octets(deballer(bon)), bon);
  EXPECT_EQ(refus([&] { deballer(bon + "x"); }), "resultat trop long");
  for (std::size_t n = 0; n < bon.size(); n += n < 600 ? 1 : 61)
    EXPECT_NE(refus([&] { deballer(bon.substr(0, n)); }), "") << n;
  const std::string infinie = "zone 'zone 2' : mesures sans valeur finie";
  const struct {
    void (*changer)(Extrait&);
    std::string dit;
  } rangees[]{
      {[](Extrait& x) { x.structure.zones.clear(); }, "aucune zone dans la base 'deux'"},
      {[](Extrait& x) { x.mesures.pop_back(); }, "resultat incomplet"},
      {[](Extrait& x) { x.mesures[1].exact = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].mor = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].moyen = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].nsmb = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].erikson = INFINITY; }, infinie},
      {[](Extrait& x) { x.mesures[1].taille = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].morceaux[5].coins[3].x = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].morceaux[0].normales[0].y = NAN; }, infinie},
      {[](Extrait& x) { x.mesures[1].morceaux[5].normales_cotes[3].z = NAN; }, infinie},
  };
  for (const auto& r : rangees) {
    Extrait x = e;
    r.changer(x);
    EXPECT_EQ(refus([&] { deballer(octets(x)); }), r.dit);
  }
  Extrait x = e;
  x.mesures[1].morceaux.pop_back();
  EXPECT_EQ(refus([&] { accorder(x, decouper(x.structure)); }), "resultat incomplet");
  EXPECT_EQ(refus([&] { accorder(e, decouper(e.structure)); }), "");

  // Time and memory that the reading may take.
  EXPECT_EQ(refus([&] {
              extraire(fichier, {}, {0, 1UL << 30});
            }),
            fichier + " : fichier CGNS illisible (lecture de plus de 0 s)");
  EXPECT_EQ(refus([&] {
              extraire(fichier, {}, {20, 1});
            }),
            fichier +
                " : zone 'zone 1' : plus grande que ce qu'un fichier de cette taille peut "
                "contenir");
  EXPECT_EQ(refus([&] {
              lire_cgns(fichier, {"", 1e-6, 27 * 24 - 1});
            }),
            "zone 'zone 1' : plus grande que ce qu'un fichier de cette taille peut contenir");
  EXPECT_EQ(refus([&] { lire_cgns(fichier, {"", 1e-6, 27 * 24}); }), "");
  EXPECT_EQ(octets(extraire(fichier, {})), bon);
  const LimitesLecture grande = limites_pour(3'000'000'000);
  EXPECT_TRUE(grande.secondes == 60 + 1500 && grande.octets == (4UL << 30) + 96'000'000'000);
}

// On a face of 60 x 60 cells: as many pieces as it may be cut into, and one more; pieces that lie
// on each other.
TEST(Limites, FacesAreCutInManyPieces) {
  const auto structure = [](Indice nb, Indice large) {
    Modele m;
    m.zone({60, 60, 2}, [](double u, double v, double w) { return Vec{u, v, w}; });
    for (Indice n = 0; n < nb; ++n) {
      const Indice i = 1 + n % 30 * 2, j = 1 + n / 30 % 60;
      m.condition(0, {{i, j, 1}, {i + large, j + 1, 1}}, "paroi", 1);
    }
    return m.s;
  };
  const std::string trop = "face decoupee en trop de morceaux";
  Decoupage d = decouper(structure(1800, 1));
  EXPECT_EQ(d.fin(0, 2) - d.debut(0, 2), 1800U + 30U);  // bare columns between them
  EXPECT_TRUE(d.dits.empty());
  d = decouper(structure(3, 3));
  ASSERT_EQ(d.dits.size(), 2U);
  EXPECT_EQ(d.dits[0],
            "zone 'zone 1' [1:4,1:2,1:1] et [3:6,1:2,1:1] se recouvrent, les deux sont gardees");
  EXPECT_EQ(d.dits[1],
            "zone 'zone 1' [3:6,1:2,1:1] et [5:8,1:2,1:1] se recouvrent, les deux sont gardees");
  std::string morceaux;
  for (std::size_t m = d.debut(0, 2); m < d.fin(0, 2); ++m)
    morceaux += texte_plage(d.morceaux[m].plage) + (d.morceaux[m].conditions.empty() ? "- " : "+ ");
  EXPECT_EQ(morceaux,
            "[1:4,1:2,1:1]+ [3:6,1:2,1:1]+ [5:8,1:2,1:1]+ [8:61,1:61,1:1]- [1:8,2:61,1:1]- ");
  Structure s = structure(1800, 1);
  for (Indice n = 0; n < 201; ++n)
    s.conditions.push_back(
        {"", "", 1, false, false, 0, {{2 + n % 50, 1 + n / 50, 1}, {5 + n % 50, 3 + n / 50, 1}}});
  EXPECT_EQ(refus([&] { decouper(s); }), trop);
  s.conditions.pop_back();
  EXPECT_EQ(refus([&] { decouper(s); }), "");

  // A zone of n x n cells with pieces on k-min.
  const auto avec = [](Indice n, const std::vector<Plage>& plages) {
    Structure faces;
    faces.zones = {{"z", {n + 1, n + 1, 2}}};
    for (const Plage& p : plages) faces.conditions.push_back({"", "", 1, false, false, 0, p});
    return faces;
  };
  std::vector<Plage> plages;
  for (Indice n = 0; n < 31; ++n) plages.push_back({{1, 1, 1}, {61, 61 - n, 1}});
  EXPECT_EQ(refus([&] { decouper(avec(60, plages)); }), "");
  plages.push_back({{1, 1, 1}, {61, 30, 1}});
  EXPECT_EQ(refus([&] { decouper(avec(60, plages)); }), "face recouverte trop de fois");
  plages.clear();
  for (Indice n = 1; n < 2000; n += 2) plages.push_back({{n, n, 1}, {n + 1, n + 1, 1}});
  EXPECT_EQ(refus([&] { decouper(avec(2000, plages)); }), "");
  plages.push_back({{2001, 1, 1}, {2002, 2, 1}});
  EXPECT_EQ(refus([&] { decouper(avec(2001, plages)); }), trop);
  plages.clear();
  for (Indice n = 1; n < 202; n += 2) {
    plages.push_back({{n, 1, 1}, {n + 1, 203, 1}});
    plages.push_back({{1, n, 1}, {203, n + 1, 1}});
  }
  EXPECT_EQ(decouper(avec(202, plages)).dits.size(), 10'000U);
}

TEST(Limites, NodesAndImagesMayDifferInNumber) {
  const std::vector<Ijk> deux{{1, 1, 2}, {1, 1, 1}}, une{{7, 8, 9}};
  EXPECT_EQ(images_en_ordre(deux, une), une);
  EXPECT_EQ(images_en_ordre(une, deux), std::vector{deux[0]});
  EXPECT_EQ(images_en_ordre(deux, {{4, 4, 4}, {5, 5, 5}}),
            (std::vector<Ijk>{{5, 5, 5}, {4, 4, 4}}));
}

TEST(Limites, NamesOfFamiliesInAnyEncoding) {
  const std::pair<const char*, const char*> noms[]{
      {" a b ", "a b"},
      {"\x1f\x7f\xc2\x80\xc2\x9f\xc2\xa0", "____\xa0"},
      {"\xc3\xbf\xc4\x80\xdf\xbf", "\xff__"},
      {"\xe0\xa0\x80z\xef\xbf\xbf", "_z_"},
      {"\xf0\x90\x8d\x88z\xf4\x8f\xbf\xbf", "_z_"},
      // No UTF-8: taken as it is.
      {"\xc1\xbf\xf5\xbf\xc3", "\xc1\xbf\xf5\xbf\xc3"},
      {"\xc3z\xe2\xa2z\xf0\xa0\xa1z", "\xc3z\xe2\xa2z\xf0\xa0\xa1z"},
  };
  for (const auto& [nom, attendu] : noms) EXPECT_EQ(nom_de_famille(nom), attendu);
}

}  // namespace topomine
