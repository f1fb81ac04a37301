#include "vtk/coins.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "tests/support/cas.h"
#include "vtk/ecriture.h"

using namespace topomine;

namespace {

/// One block whose edges shrink to points until the corners of each group are one; the faces of
/// `lignes`, and the edges of those, have shrunk with them.
struct Repli {
  const char* nom;
  std::vector<std::vector<std::size_t>> groupes;  ///< of corners, i + 2j + 4k
  std::vector<int> lignes;                        ///< face slots that are empty
};

const std::vector<Repli> replis{
    {"prism, an edge shrunk", {{0, 1}, {2, 3}}, {2}},
    {"wedge on i-min along j", {{0, 2}, {4, 6}}, {0}},
    {"wedge on i-max along k", {{1, 5}, {3, 7}}, {3}},
    {"wedge on j-max along k", {{2, 6}, {3, 7}}, {4}},
    {"one edge alone", {{0, 4}}, {}},
    {"two edges of a face, askew", {{0, 1}, {6, 7}}, {}},
    {"pyramid", {{4, 5, 6, 7}}, {5}},
    {"two faces shrunk, across", {{0, 2}, {4, 6}, {1, 5}, {3, 7}}, {0, 3}},
    {"flat lens", {{0, 2}, {4, 6}, {1, 3}, {5, 7}}, {0, 3}},
    {"two edges that meet", {{0, 2, 6}}, {}},
    {"tetrahedron", {{4, 5, 6, 7}, {0, 1}}, {5}},
};

/// The corners of block b that its case is made of.
CoinsBloc coins_entiers(const Base& base, int b) {
  CoinsBloc coins{};
  for (int c = 0; c < 8; ++c)
    coins[static_cast<std::size_t>(c)] = base.blk_vrtx_ijk(b, c & 1, c >> 1 & 1, c >> 2);
  return coins;
}

/// Collapses the block; the corners that it must have.
CoinsBloc replier(Base& base, Block& bloc, const Repli& repli) {
  CoinsBloc coins = coins_entiers(base, bloc._id());
  std::map<int, int> devient;
  for (const auto& groupe : repli.groupes)
    for (const std::size_t c : groupe) devient[coins[c]] = coins[groupe[0]];
  for (int& v : coins)
    if (devient.contains(v)) v = devient[v];
  std::map<int, int> edge_devient;
  for (auto& [numero, edge] : base.edges) {
    for (const int bout : {0, 1})
      if (devient.contains(edge._vrtx(bout))) edge._vrtx(bout, devient[edge._vrtx(bout)]);
    if (edge._vrtx(0) == edge._vrtx(1)) edge_devient[numero] = 0;
  }
  for (const int s : repli.lignes) {
    const Face& face = base.faces.at(bloc._face(s));
    // The two edges that are left lie on each other.
    int premiere = 0;
    for (int p = 0; p < 4; ++p) {
      const int e = face._edge(p);
      if (edge_devient.contains(e)) continue;
      if (premiere == 0)
        premiere = e;
      else
        edge_devient[e] = premiere;
    }
    base.faces.erase(bloc._face(s));
    bloc._face(s, 0);
  }
  for (auto& [numero, face] : base.faces)
    for (int p = 0; p < 4; ++p)
      if (edge_devient.contains(face._edge(p))) face._edge(p, edge_devient[face._edge(p)]);
  return coins;
}

}  // namespace

TEST(Coins, OfCollapsedBlocksAreThoseThatTheyShrankTo) {
  for (const Repli& repli : replis) {
    SCOPED_TRACE(repli.nom);
    Cas cas = grille("replie", {1, 1, 1});
    Block& bloc = cas.base.blocs.begin()->second;
    const CoinsBloc attendus = replier(cas.base, bloc, repli);
    const auto coins = coins_bloc(cas.base, bloc);
    ASSERT_TRUE(coins);
    // Which end of a lens is i-min cannot be told: the right-handed way is taken, or the first.
    const double v = volume(cas.base, attendus);
    if (repli.lignes.size() < 2 || v >= 0)
      EXPECT_EQ(*coins, attendus);
    else
      EXPECT_EQ(volume(cas.base, *coins), -v);
    for (const auto& [numero, face] : cas.base.faces) {
      const auto autour = coins_face(cas.base, face);
      ASSERT_TRUE(autour);
      std::set<int> vus(autour->begin(), autour->end()), bouts;
      for (int p = 0; p < 4; ++p)
        if (const auto b = bouts_edge(cas.base, face._edge(p))) bouts.insert(b->begin(), b->end());
      EXPECT_EQ(vus, bouts) << numero;
    }
  }
}

TEST(Coins, DoNotNeedEveryFace) {
  // A slot that holds a count, or names a face that is nowhere or elsewhere.
  for (const int faux : {2, 99999, -1}) {
    for (int s = 0; s < 6; ++s) {
      Cas cas = grille("boite", {3, 1, 1});
      Base& base = cas.base;
      const int loin = base.blocs.begin()->second._face(0);  // the other end of the row
      Block& bloc = base.blocs.rbegin()->second;
      const CoinsBloc attendus = coins_entiers(base, bloc._id());
      bloc._face(s, faux == 2 ? loin : faux);
      EXPECT_EQ(coins_bloc(base, bloc), attendus) << faux << ' ' << s;
    }
  }
  // Two faces may fit in nowhere, no more.
  for (const int s : {1, 2}) {
    Cas cas = grille("boite", {1, 1, 1});
    Block& bloc = cas.base.blocs.begin()->second;
    const CoinsBloc attendus = coins_entiers(cas.base, bloc._id());
    for (const int t : {0, s, 3}) {
      EXPECT_EQ(coins_bloc(cas.base, bloc), attendus) << s << ' ' << t;
      const Face& face = cas.base.faces.at(bloc._face(t));
      Face autre = face;
      for (int p = 0; p < 4; ++p) autre._edge(p, 1000 * t + p + 1000);
      cas.base.faces.at(bloc._face(t)) = autre;
    }
    EXPECT_EQ(coins_bloc(cas.base, bloc), std::nullopt) << s;
  }
  // Linking makes up a vertex at the origin: it is no corner.
  Cas cas = grille("trou", {1, 1, 1});
  const Block& bloc = cas.base.blocs.begin()->second;
  cas.base.vrtxs.erase(coins_entiers(cas.base, bloc._id())[5]);
  cas.base.make_link();
  EXPECT_EQ(coins_bloc(cas.base, bloc), std::nullopt);
}

TEST(Volume, OfTwistedHexahedra) {
  // A cube, its mirror image, and one with a face turned by a quarter: 1 - 1/3 between bilinear
  // faces.
  std::array<Vec, 8> cube, miroir, tourne;
  for (std::size_t c = 0; c < 8; ++c) {
    const double x = c & 1U ? 1 : 0, y = c & 2U ? 1 : 0, z = c & 4U ? 1 : 0;
    cube[c] = {1e3 + x, y, z};
    miroir[c] = {-x, y, z};
    tourne[c] = z == 0 ? Vec{x, y, z} : Vec{1 - y, x, z};
  }
  EXPECT_DOUBLE_EQ(volume(cube), 1);
  EXPECT_DOUBLE_EQ(volume(miroir), -1);
  EXPECT_DOUBLE_EQ(volume(tourne), 2.0 / 3);
}

TEST(Ecriture, CutsTheTitleThatIsTooLong) {
  for (const std::size_t longueur : {255U, 256U}) {
    Grille vide;
    vide.titre.assign(longueur, 'x');
    std::ostringstream out;
    ecrire_vtk(out, vide);
    EXPECT_NE(out.str().find('\n' + std::string(255, 'x') + "\nASCII"), std::string::npos);
  }
}
