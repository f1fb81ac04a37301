#include <gtest/gtest.h>

#include <sstream>
#include <utility>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/cas.h"
#include "tests/support/verifier_liens.h"

using namespace topomine;

namespace {

std::string listing(const Base& b) {
  return sortie([&] { b.Print(false); });
}

class CasTest : public testing::TestWithParam<Cas> {
 protected:
  CasTest() { b.make_link(); }
  const Cas& cas = GetParam();
  Base b = cas.base;
};

TEST_P(CasTest, LoadingTheFilesGivesTheLinkedCaseBack) {
  const Dossier d;
  ecrire_cas(cas.base, d);
  Base::init_cl_cfg = true;
  Base lue(b.nom, d.chemin(), b.type);
  lue._disp(false);
  const Capture c;
  ASSERT_TRUE(lue.load_all());
  std::string traces;
  for (const char* suite : {".def", ".def", "_nrm.blck", "_nrm.face", "_nrm.edge", "_nrm.vrtx"})
    traces += "parsing fichier " + lue.nom_base + suite + " ... done. \n";
  EXPECT_EQ(c.out(), traces);
  EXPECT_EQ(c.err(), "");
  EXPECT_EQ(listing(lue), listing(b));
  EXPECT_TRUE(liens_reciproques(lue));
  for (const auto& [n, f] : lue.faces)
    for (int i = 1; i < f.nb_bloc(); ++i) EXPECT_LE(f._bloc(i - 1), f._bloc(i)) << "face " << n;
  EXPECT_EQ(lue.make_link(), 1);
  EXPECT_TRUE(liens_reciproques(lue, 2));
}

TEST_P(CasTest, NeighboursAndCodesComeBySlotAndRepeat) {
  for (const auto& [n, bloc] : b.blocs) {
    std::vector<int> voisins, par_face, par_edge;
    for (int s = 0; s < 6; ++s) {
      for (const auto& [autre, v] : b.blocs)
        for (int t = 0; t < 6; ++t)
          if (autre != n && v._face(t) == bloc._face(s)) voisins.push_back(autre);
      const Face& f = b.faces.at(bloc._face(s));
      for (int i = 0; i < f.nb_BC(); ++i) par_face.push_back(f._BC(i));
      for (int t = 0; t < f.nb_edge(); ++t)
        if (const auto e = b.edges.find(f._edge(t)); e != b.edges.end())
          for (int i = 0; i < e->second.nb_BC(); ++i)
            par_edge.push_back(std::as_const(e->second)._BC(i));
    }
    EXPECT_EQ(b.vois_bloc(n), voisins) << n;
    EXPECT_EQ(b.BC_blk_face(n), par_face) << n;
    EXPECT_EQ(b.BC_blk_edge(n), par_edge) << n;
  }
}

TEST_P(CasTest, EdgesAndCornersAreThoseOfTheGeometry) {
  // A face that no file holds has no edges, and so nothing in common with another.
  const auto connue = [&](int f) { return cas.base.faces.contains(f); };
  for (const auto& [n, milieu] : cas.blocs)
    for (int s = 0; s < 6; ++s)
      for (int t = 0; t < 6; ++t) {
        const int f = b.blk_face(n, s), g = b.blk_face(n, t);
        if (s % 3 == t % 3 && s != t) continue;
        const int commun = s == t ? b.fac_edge(f, 0) : cas.numero(vers(vers(milieu, s), t));
        const int attendu = connue(f) && connue(g) ? commun : 0;
        EXPECT_EQ(b.blk_edge(n, s, t), attendu) << n << ' ' << s << ' ' << t;
        EXPECT_EQ(b.blk_edge(n, f, g), attendu) << "by face numbers";
      }
  for (const auto& [n, milieu] : cas.blocs)
    for (int c = 0; c < 8; ++c) {
      const int i = c / 4, j = c / 2 % 2, k = c % 2;
      const int f = b.blk_face(n, 3 * i), g = b.blk_face(n, 3 * j + 1),
                h = b.blk_face(n, 3 * k + 2);
      const int coin = cas.numero(vers(vers(vers(milieu, 3 * i), 3 * j + 1), 3 * k + 2));
      const int attendu = connue(f) && connue(g) && connue(h) ? coin : 0;
      EXPECT_EQ(b.blk_vrtx_ijk(n, i, j, k), attendu) << n << ' ' << c;
      EXPECT_EQ(b.blk_vrtx_fac(n, f, g, h), attendu) << n << ' ' << c;
    }
  for (const auto& [f, milieu] : cas.faces)
    for (int c = 0; c < 4; ++c) {
      const int axe = milieu[0] % 2 == 0 ? 0 : milieu[1] % 2 == 0 ? 1 : 2;
      const int l = axe == 0 ? 1 : 0, m = axe == 2 ? 1 : 2;
      const int coin = cas.numero(vers(vers(milieu, l + c / 2 * 3), m + c % 2 * 3));
      EXPECT_EQ(b.fac_vrtx_lm(f, c / 2, c % 2), connue(f) ? coin : -2) << f << ' ' << c;
      if (!connue(f)) continue;
      const int edge = b.fac_edge(f, c / 2 * 2), autre = b.fac_edge(f, c % 2 * 2 + 1);
      EXPECT_EQ(b.fac_vrtx_edg(f, edge, autre), coin) << "by edge numbers";
    }
}

INSTANTIATE_TEST_SUITE_P(Tous, CasTest, testing::ValuesIn(tous_les_cas()),
                         [](const auto& cas) { return cas.param.base.nom; });

// Block 20 sees face 6 (edges 4, 5, 0, -7) twice, face -8, face 9 that no file has, and no more.
Base base_incomplete() {
  Base b;
  b.blocs[20]._id(20);
  const int cases[] = {6, 0, -8, 9, 6, 0};
  for (int s = 0; s < 6; ++s) b.blocs[20]._face(s, cases[s]);
  const int edges[] = {4, 5, 0, -7};
  for (int s = 0; s < 4; ++s) b.faces[6]._edge(s, edges[s]);
  b.faces[-8]._edge(0, 5);
  b.faces[-8]._edge(1, 4);
  b.faces[-8].add_bloc(33);
  b.edges[4]._vrtx(0, 70);
  b.faces[0].add_bloc(88);  // which no empty slot leads to
  b.faces[0].add_BC(9);
  b.faces[0]._edge(0, 4);
  return b;
}

TEST(Liens, ReferencesToNothingGetDefaultEntities) {
  Base b = base_incomplete();
  EXPECT_EQ(b.make_link(), 1);
  EXPECT_EQ(b.faces.size(), 4U);
  EXPECT_TRUE(b.faces[9]._id() == 0 && b.faces[9].nb_bloc() == 1 && b.faces[9]._bloc(0) == 20);
  EXPECT_EQ(b.faces[6].nb_bloc(), 2);
  EXPECT_EQ(b.faces[0].nb_bloc(), 1) << "an empty slot is no face 0";
  EXPECT_EQ(b.faces[-8].nb_bloc(), 1) << "only numbers above 0 are linked";
  EXPECT_EQ(b.edges.size(), 2U);
  EXPECT_EQ(b.edges[5].nb_face(), 2);
  EXPECT_EQ(b.vrtxs.size(), 1U);
  EXPECT_EQ(b.vrtxs[70]._edge(0), 4);
  EXPECT_EQ(b.vois_bloc(20), std::vector<int>{33}) << "negative faces are looked up";
}

TEST(Requetes, ResultCodes) {
  Base b = base_incomplete();                    // not linked: face 9 and edge 5 are in no table
  using Lignes = std::vector<std::vector<int>>;  // the arguments, then the answer
  for (const auto& l : Lignes{{21, 0, 0}, {20, 1, 0}, {20, 2, -8}, {20, 6, 0}, {20, -1, 0}})
    EXPECT_EQ(b.blk_face(l[0], l[1]), l[2]) << l[0] << ' ' << l[1];
  for (const auto& l : Lignes{{9, 0, 0}, {6, 1, 5}, {6, 4, -1}, {6, -1, -1}})
    EXPECT_EQ(b.fac_edge(l[0], l[1]), l[2]) << l[0] << ' ' << l[1];
  // An empty slot comes before a face without entry; of two common edges it is the first one of the
  // first face.
  for (const auto& l : Lignes{{21, 0, 0, -1},
                              {20, 1, 3, -2},
                              {20, 3, 1, -2},
                              {20, 7, 5, -2},
                              {20, 0, 3, -3},
                              {20, 7, 0, -3},
                              {20, 0, 4, 4},
                              {20, 6, -8, 4},
                              {20, -8, 2, 5}})
    EXPECT_EQ(b.blk_edge(l[0], l[1], l[2]), l[3]) << l[1] << ' ' << l[2];
  for (const auto& l : Lignes{{9, 0, 0, -1},
                              {6, 2, 1, -2},
                              {6, 1, 2, -2},
                              {6, 0, 1, -3},
                              {6, 3, 0, -3},
                              {6, 4, 0, 70},
                              {-8, 4, 4, 70}})
    EXPECT_EQ(b.fac_vrtx_edg(l[0], l[1], l[2]), l[3]) << l[1] << ' ' << l[2];
  // Edge 5 of the fourth line is missing.
  for (const auto& l : Lignes{{21, 0, 0, 0, -1},
                              {20, 0, 1, 3, -2},
                              {20, 0, 4, 3, -3},
                              {20, 2, 4, 0, -3},
                              {20, 0, 4, 4, 70}})
    EXPECT_EQ(b.blk_vrtx_fac(l[0], l[1], l[2], l[3]), l[4]) << l[1] << ' ' << l[2] << ' ' << l[3];
  EXPECT_EQ(b.blk_vrtx_ijk(20, 2, 0, 0), -2) << "face number 6, then slot 1";
  EXPECT_EQ(b.faces.size() + b.edges.size() + b.vrtxs.size(), 4U) << "queries create nothing";
  EXPECT_TRUE(b.BC_blk_face(20).empty() && b.vois_bloc(20) == std::vector<int>{33});
  EXPECT_TRUE(b.vois_bloc(21).empty() && b.BC_blk_face(21).empty() && b.BC_blk_edge(21).empty());

  // Nothing in common: opposite faces and edges, two edges of a face without common end.
  b = grille("boite", {2, 1, 1}).base;
  const int n = b.blocs.begin()->first;
  EXPECT_EQ(b.blk_edge(n, 0, 3), 0);
  EXPECT_EQ(b.blk_vrtx_fac(n, 0, 1, 4), 0);
  EXPECT_EQ(b.blk_vrtx_fac(n, 0, 3, 1), 0);
  EXPECT_EQ(b.fac_vrtx_edg(b.blk_face(n, 0), 0, 2), 0);
}

// Code 1 is of family "aile", 2 of "", 3 is in no row; blocks 1 to 6 see one code each.
TEST(Classes, ABlockIsOfTypeCByTheFamilyOfACodeThatItSees) {
  Base::list_CLim = {{1, {{"Family", "aile"}}}, {2, {{"Family", ""}}}, {4, {{"Family", "Aile"}}}};
  const auto classes = [](const std::vector<std::pair<std::string, char>>& pieces) {
    Base b;
    for (int n = 1; n <= 6; ++n) {
      b.blocs[n]._face(n - 1, 100 + n);
      b.faces[100 + n]._edge(1, 200 + n);
    }
    for (int n = 1; n <= 4; ++n) b.faces[100 + n].add_BC(n);
    b.edges[205].add_BC(1);
    b.blocs[6]._face(5, 999);  // in no table
    b.faces[0].add_BC(1);      // where no empty slot leads
    for (const auto& [famille, topo] : pieces) {
      b.pieces[famille]._topology(topo);
      b.pieces[famille]._fam_BC(famille);
    }
    EXPECT_EQ(b.maj_typeC(), 1);
    std::string s;
    for (const auto& [n, bloc] : b.blocs) s += bloc._typeC() ? char('0' + n) : '-';
    b.pieces.clear();
    b.maj_typeC();
    for (const auto& [n, bloc] : b.blocs)
      EXPECT_EQ(bloc._typeC(), s[static_cast<std::size_t>(n - 1)] != '-') << "never cleared";
    return s;
  };
  EXPECT_EQ(classes({}), "------");
  EXPECT_EQ(classes({{"aile", 'H'}, {"Aile", 'O'}}), "------");
  EXPECT_EQ(classes({{"aile", 'C'}}), "1---5-") << "by a face or by an edge";
  EXPECT_EQ(classes({{"aile", 'H'}, {"Aile", 'C'}, {"xxx", 'C'}}), "---4--");
  EXPECT_EQ(classes({{"", 'C'}}), "-23---") << "an empty family, and a code without row";
  Base::list_CLim.clear();
}

TEST(Listings, KindsInTheirOrderWithPauses) {
  Base b = grille("boite", {2, 1, 1}).base;
  b.make_link();
  const auto sorte = [&](int s) { return sortie([&] { b.Print(s, false); }); };
  std::string blocs, raccords;
  for (const auto& [n, e] : b.blocs) blocs += sortie([&e = e] { e.Print(); });
  EXPECT_EQ(sorte(1), blocs);
  EXPECT_EQ(sorte(7), sortie([&] { b.raccords[0].Print(); }));
  EXPECT_EQ(sorte(0) + sorte(8) + sorte(9) + sorte(-1), "");
  EXPECT_EQ(listing(b), sorte(5) + sorte(6) + sorte(7) + sorte(1) + sorte(2) + sorte(3) + sorte(4));

  Entree entree("123456");
  EXPECT_EQ(sortie([&] { b.Print(5, true); }), sorte(5));
  EXPECT_EQ(sortie([&] { b.Print(1, true); }), blocs);
  EXPECT_EQ(entree.reste(), "456") << "one character for the aircraft, one for each block";
  EXPECT_EQ(sortie([&] { b.Print(true); }), listing(b)) << "an ended input is no wait";

  // What is listed is seen before the wait.
  struct : std::stringbuf {
    int sync() override { return ++vues, 0; }
    int vues = 0;
  } tampon;
  std::ostream out(&tampon);
  b.imprimer(out, 1, true);
  EXPECT_EQ(tampon.vues, 2);

  // Blocks come before edges, and so on.
  const int bloc = b.blocs.begin()->first;
  b.edges[bloc]._carac(77);
  EXPECT_EQ(sortie([&] { b.Print_elem(bloc); }), sortie([&] { b.blocs[bloc].Print(); }));
  b.blocs.erase(bloc);
  b.vrtxs[bloc]._id(78);
  EXPECT_EQ(sortie([&] { b.Print_elem(bloc); }), sortie([&] { b.edges[bloc].Print(); }));
  EXPECT_EQ(sortie([&] { b.Print_elem(-3); }), "Element -3 inexistant...\n");
}

TEST(Base, TypeAndPrefix) {
  Base b("n", "d/", "truc");
  EXPECT_TRUE(b._type("no").empty() && b._type("xext").empty() && b.type == "truc");
  EXPECT_TRUE(b._type("nrmal") == "nrm" && b._type("ext") == "ext" && b.type == "ext");
  EXPECT_EQ(b._type("minimum"), "min");
  EXPECT_EQ(b.nom_base, "");
  b.gen_nom_base();
  EXPECT_EQ(b.nom_base, "d/n/n");
  EXPECT_TRUE(b.test_files() && !b._disp(false));
}

// What is past the end of a list is no number that another list has.
TEST(Requetes, BelowZero) {
  Base b;
  b.blocs[1]._face(0, 10);
  b.blocs[1]._face(1, 11);
  b.faces[10]._edge(0, -1);
  b.faces[11];
  EXPECT_EQ(b.blk_edge(1, 0, 1), 0);
  b.faces[11]._edge(3, -1);
  EXPECT_EQ(b.blk_edge(1, 0, 1), -1);
}

// Every answer about a block of real cases, collapsed ones among them, by slots and by numbers.
TEST(Requetes, OfRealCases) {
  const auto nombres = [](const std::vector<int>& v) {
    std::string texte;
    for (const int n : v) texte += ' ' + std::to_string(n);
    return texte;
  };
  const auto bloc = [&](const Base& b, int n) {
    std::vector<int> edges, sommets, de_faces;
    for (int s = 0; s < 6; ++s)
      for (int t = 0; t < s; ++t) edges.push_back(b.blk_edge(n, s, b.blk_face(n, t)));
    for (int c = 0; c < 8; ++c) sommets.push_back(b.blk_vrtx_ijk(n, c & 1, c >> 1 & 1, c >> 2));
    for (int s = 0; s < 6; ++s)
      for (int c = 0; c < 4; ++c)
        de_faces.push_back(b.fac_vrtx_lm(b.blk_face(n, s), c & 1, c >> 1));
    return nombres(b.vois_bloc(n)) + " |" + nombres(edges) + " |" + nombres(sommets) + " |" +
           nombres(de_faces) + " |" + nombres(b.DAM2BCCODE(b.BC_blk_face(n))) + " |" +
           nombres(b.BC_blk_edge(n));
  };
  std::string premiers;
  unsigned somme = 0;
  for (int k = 1; k <= 8; ++k) {
    Base::init_cl_cfg = false;
    Base b("mesh_case_" + std::to_string(k), TOPOMINE_CASES, "nrm");
    b._disp(false);
    const Capture muet;
    ASSERT_TRUE(b.load_all());
    for (const auto& [n, entite] : b.blocs) {
      const std::string dit = bloc(b, n);
      if (k == 1 && n < 4) premiers += dit + '\n';
      for (const char c : dit) somme = somme * 31 + static_cast<unsigned char>(c);
    }
  }
  EXPECT_EQ(
      premiers,
      " 3 | -2 -2 1 -2 0 5 -2 2 6 7 -2 3 4 8 9 | -2 -2 5 6 -2 -2 13 14 | -2 5 -2 13 -1 -1 -1 -1 1 "
      "2 5 6 -2 6 -2 14 5 6 13 14 1 2 13 14 | 13 7 1 7 | 1301 701 1301 702 1301 701 701 702 112 "
      "701 112 701 112 702 1301 702 701 702 112 702\n"
      " 5 | -2 10 10 0 0 14 11 11 15 16 12 12 13 17 18 | -2 -2 7 8 -2 -2 15 16 | -2 7 -2 15 -1 -1 "
      "-1 -1 3 4 7 8 -2 8 -2 16 7 8 15 16 3 4 15 16 | 1 7 1 7 | 112 701 112 702 112 701 701 702 "
      "111 701 111 701 111 702 112 702 701 702 111 702\n"
      " 1 4 | 2 19 23 0 24 22 20 20 23 24 21 26 0 25 26 | 5 6 9 10 13 14 17 18 | 5 9 13 17 5 6 13 "
      "14 5 6 9 10 6 10 14 18 9 10 17 18 13 14 17 18 | 13 7 4 7 | 1301 701 1301 401 1301 702 1301 "
      "701 401 701 402 401 1301 401 401 701 402 401 401 702 1301 702 401 702\n");
  EXPECT_EQ(somme, 2453308481U);
}

}  // namespace
