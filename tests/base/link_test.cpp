#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/capture.h"
#include "tests/support/cas.h"
#include "tests/support/verify_links.h"

namespace {

class CasTest : public testing::TestWithParam<Cas> {
 protected:
  // Whether all of the faces or edges are in the table that the files filled.
  bool connues(std::initializer_list<int> faces) const {
    return std::all_of(faces.begin(), faces.end(),
                       [&](int f) { return GetParam().base.faces.contains(f); });
  }
};

std::string listing(const Base& b) {
  return sortie([&] { b.Print(false); });
}

TEST_P(CasTest, LoadingTheFilesGivesTheCaseBack) {
  const Dossier d;
  Base attendue = GetParam().base;
  ecrire_cas(attendue, d);
  Base::init_cl_cfg = true;
  Base lue(attendue.nom, d.chemin(), attendue.type);
  lue._disp(false);
  const Capture c;
  ASSERT_TRUE(lue.load_all());
  std::string traces;
  for (const char* suite : {".def", ".def", "_nrm.blck", "_nrm.face", "_nrm.edge", "_nrm.vrtx"})
    traces += "parsing fichier " + lue.nom_base + suite + " ... done. \n";
  EXPECT_EQ(c.out(), traces);
  EXPECT_EQ(c.err(), "");
  verify_links(lue);
  attendue.make_link();
  EXPECT_EQ(listing(lue), listing(attendue));
}

TEST_P(CasTest, LinksAgreeAndDoubleWhenMadeTwice) {
  Base b = GetParam().base;
  EXPECT_EQ(b.make_link(), 1);
  verify_links(b);
  for (const auto& [n, f] : b.faces)
    for (int i = 1; i < f.nb_bloc(); ++i) EXPECT_LE(f._bloc(i - 1), f._bloc(i)) << "face " << n;
  EXPECT_EQ(b.make_link(), 1);
  verify_links(b, 2);
}

TEST_P(CasTest, NeighboursAreTheBlocksThatHoldTheSameFaces) {
  Base b = GetParam().base;
  b.make_link();
  for (const auto& [n, bloc] : b.blocs) {
    std::vector<int> voisins;
    for (int s = 0; s < 6; ++s)
      for (const auto& [autre, v] : b.blocs)
        for (int t = 0; t < 6; ++t)
          if (autre != n && v._face(t) == bloc._face(s)) voisins.push_back(autre);
    EXPECT_EQ(b.vois_bloc(n), voisins) << "block " << n;
  }
}

TEST_P(CasTest, EdgesAndCornersOfBlocksAreThoseOfTheGeometry) {
  Base b = GetParam().base;
  b.make_link();
  for (const auto& [cle, edge] : GetParam().aretes) {
    const auto [n, s, t] = cle;
    const int f = b.blk_face(n, s), g = b.blk_face(n, t);
    const int attendue = connues({f, g}) ? edge : 0;
    EXPECT_EQ(b.blk_edge(n, s, t), attendue) << n << ' ' << s << ' ' << t;
    EXPECT_EQ(b.blk_edge(n, f, g), attendue) << "by face numbers";
    EXPECT_EQ(b.blk_edge(n, s, s), connues({f}) ? b.fac_edge(f, 0) : 0) << "first edge of a face";
  }
  for (const auto& [n, coins] : GetParam().coins)
    for (int c = 0; c < 8; ++c) {
      const int i = c / 4, j = c / 2 % 2, k = c % 2;
      const int f = b.blk_face(n, 3 * i), g = b.blk_face(n, 3 * j + 1),
                h = b.blk_face(n, 3 * k + 2);
      const int attendu = connues({f, g, h}) ? coins[static_cast<std::size_t>(c)] : 0;
      EXPECT_EQ(b.blk_vrtx_ijk(n, i, j, k), attendu) << n << ' ' << c;
      EXPECT_EQ(b.blk_vrtx_fac(n, f, g, h), attendu) << n << ' ' << c;
    }
}

TEST_P(CasTest, CornersOfFacesAreThoseOfTheGeometry) {
  Base b = GetParam().base;
  b.make_link();
  for (const auto& [f, coins] : GetParam().coins_face)
    for (int c = 0; c < 4; ++c) {
      const int attendu = connues({f}) ? coins[static_cast<std::size_t>(c)] : -2;
      EXPECT_EQ(b.fac_vrtx_lm(f, c / 2, c % 2), attendu) << f << ' ' << c;
      if (connues({f})) {
        EXPECT_EQ(b.fac_vrtx_edg(f, b.fac_edge(f, c / 2 * 2), b.fac_edge(f, c % 2 * 2 + 1)),
                  attendu);
      }
    }
}

TEST_P(CasTest, CodesOfBlocksComeBySlotAndRepeat) {
  Base b = GetParam().base;
  b.make_link();
  for (const auto& [n, bloc] : b.blocs) {
    std::vector<int> par_face, par_edge;
    for (int s = 0; s < 6; ++s) {
      const Face& f = b.faces.at(bloc._face(s));
      for (int i = 0; i < f.nb_BC(); ++i) par_face.push_back(f._BC(i));
      for (int t = 0; t < f.nb_edge(); ++t)
        if (const auto e = b.edges.find(f._edge(t)); e != b.edges.end())
          for (int i = 0; i < e->second.nb_BC(); ++i)
            par_edge.push_back(std::as_const(e->second)._BC(i));
    }
    EXPECT_EQ(b.BC_blk_face(n), par_face) << n;
    EXPECT_EQ(b.BC_blk_edge(n), par_edge) << n;
  }
}

INSTANTIATE_TEST_SUITE_P(Tous, CasTest, testing::ValuesIn(tous_les_cas()),
                         [](const auto& cas) { return cas.param.nom; });

// Block 20 sees face 6 (edges 4, 5, 0, -7) twice, face -8, face 9 that no file has, and no more.
Base base_incomplete() {
  Base b;
  b.blocs[20]._id(20);
  const int cases[] = {6, 0, -8, 9, 6, 0};
  for (int s = 0; s < 6; ++s) b.blocs[20]._face(s, cases[s]);
  const int edges[] = {4, 5, 0, -7};
  for (int s = 0; s < 4; ++s) b.faces[6]._edge(s, edges[s]);
  b.faces[-8]._edge(0, 5);
  b.faces[-8].add_bloc(33);
  b.edges[4]._vrtx(0, 70);
  return b;
}

TEST(Liens, ReferencesToNothingGetDefaultEntities) {
  Base b = base_incomplete();
  EXPECT_EQ(b.make_link(), 1);
  EXPECT_EQ(b.faces.size(), 3U);
  EXPECT_EQ(b.faces[9]._id(), 0) << "a default face, but for its block";
  EXPECT_EQ(b.faces[9].nb_bloc(), 1);
  EXPECT_EQ(b.faces[9]._bloc(0), 20);
  EXPECT_EQ(b.faces[6].nb_bloc(), 2);
  EXPECT_EQ(b.faces[-8].nb_bloc(), 1) << "only numbers above 0 are linked";
  EXPECT_EQ(b.edges.size(), 2U);
  EXPECT_EQ(b.edges[5].nb_face(), 2);
  EXPECT_EQ(b.vrtxs.size(), 1U);
  EXPECT_EQ(b.vrtxs[70]._edge(0), 4);
  EXPECT_EQ(b.vois_bloc(20), std::vector<int>{33}) << "negative faces are looked up";
}

TEST(Requetes, ResultCodes) {
  Base b = base_incomplete();  // not linked: face 9 and edge 5 are in no table
  using Appel = int (*)(const Base&);
  struct Ligne {
    const char* appel;
    Appel f;
    int attendu;
  };
#define LIGNE(appel, attendu)                              \
  {                                                        \
#appel, [](const Base& x) { return x.appel; }, attendu \
  }
  const Ligne lignes[] = {
      LIGNE(blk_face(21, 0), 0),
      LIGNE(blk_face(20, 1), 0),
      LIGNE(blk_face(20, 2), -8),
      LIGNE(blk_face(20, 6), 0),
      LIGNE(blk_face(20, -1), 0),
      LIGNE(blk_edge(21, 0, 0), -1),
      LIGNE(blk_edge(20, 1, 3), -2),  // an empty slot comes before a face without entry
      LIGNE(blk_edge(20, 3, 1), -2),
      LIGNE(blk_edge(20, 7, 5), -2),
      LIGNE(blk_edge(20, 0, 3), -3),
      LIGNE(blk_edge(20, 7, 0), -3),
      LIGNE(blk_edge(20, 0, 4), 4),
      LIGNE(blk_edge(20, 6, -8), 5),
      LIGNE(blk_edge(20, -8, 2), 5),
      LIGNE(blk_vrtx_fac(21, 0, 0, 0), -1),
      LIGNE(blk_vrtx_fac(20, 0, 1, 3), -2),
      LIGNE(blk_vrtx_fac(20, 0, 4, 3), -3),
      LIGNE(blk_vrtx_fac(20, 0, 4, 4), 70),
      LIGNE(blk_vrtx_fac(20, 0, 4, 2), -3),  // edge 5 is missing
      LIGNE(blk_vrtx_ijk(20, 2, 0, 0), -2),  // face number 6, then slot 1
      LIGNE(blk_vrtx_ijk(20, 0, 1, 1), -2),
      LIGNE(fac_edge(9, 0), 0),
      LIGNE(fac_edge(6, 1), 5),
      LIGNE(fac_edge(6, 4), -1),
      LIGNE(fac_edge(6, -1), -1),
      LIGNE(fac_vrtx_edg(9, 0, 0), -1),
      LIGNE(fac_vrtx_edg(6, 2, 1), -2),
      LIGNE(fac_vrtx_edg(6, 1, 2), -2),
      LIGNE(fac_vrtx_edg(6, 0, 1), -3),
      LIGNE(fac_vrtx_edg(6, 3, 0), -3),
      LIGNE(fac_vrtx_edg(6, 4, 0), 70),
      LIGNE(fac_vrtx_edg(-8, 4, 4), 70),
      LIGNE(fac_vrtx_lm(6, 0, 1), -3),
      LIGNE(fac_vrtx_lm(6, 1, 0), -2)};
#undef LIGNE
  for (const Ligne& l : lignes) EXPECT_EQ(l.f(b), l.attendu) << l.appel;
  EXPECT_EQ(b.faces.size() + b.edges.size() + b.vrtxs.size(), 3U) << "queries create nothing";
  EXPECT_TRUE(b.vois_bloc(21).empty());
  EXPECT_TRUE(b.BC_blk_face(21).empty());
  EXPECT_TRUE(b.BC_blk_edge(21).empty());
}

TEST(Requetes, NothingInCommonIsZero) {
  Base b = grille("boite", {2, 1, 1}).base;
  const auto& bloc = b.blocs.begin()->second;
  EXPECT_EQ(b.blk_edge(bloc._id(), 0, 3), 0);
  EXPECT_EQ(b.blk_vrtx_fac(bloc._id(), 0, 1, 4), 0) << "two edges of a face without common end";
  EXPECT_EQ(b.blk_vrtx_fac(bloc._id(), 0, 3, 1), 0);
  EXPECT_EQ(b.fac_vrtx_edg(bloc._face(0), 0, 2), 0);
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

  const int bloc = b.blocs.begin()->first;
  for (int table = 0; table < 2; ++table) {
    EXPECT_EQ(sortie([&] { b.Print_elem(bloc); }), table ? sortie([&] { b.edges[bloc].Print(); })
                                                         : sortie([&] { b.blocs[bloc].Print(); }));
    b.edges[bloc]._carac(77);
    b.vrtxs[bloc]._id(78);
    b.blocs.erase(bloc);
  }
  EXPECT_EQ(sortie([&] { b.Print_elem(-3); }), "Element -3 inexistant...\n");
}

TEST(Base, TypeAndPrefix) {
  Base b("n", "d/", "truc");
  EXPECT_EQ(b._type("no"), "");
  EXPECT_EQ(b._type("xext"), "");
  EXPECT_EQ(b.type, "truc");
  EXPECT_EQ(b._type("nrmal"), "nrm");
  EXPECT_EQ(b._type("ext"), "ext");
  EXPECT_EQ(b._type("minimum"), "min");
  EXPECT_EQ(b.type, "min");
  EXPECT_EQ(b.nom_base, "");
  b.gen_nom_base();
  EXPECT_EQ(b.nom_base, "d/n/n");
  EXPECT_TRUE(b.test_files());
  EXPECT_FALSE(b._disp(false));
}

}  // namespace
