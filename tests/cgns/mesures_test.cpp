#include <gtest/gtest.h>

#include <cmath>

#include "cgns/mesures.h"
#include "mesh/hexaedre.h"
#include "tests/cgns/modele.h"

namespace topomine {

namespace {

Coordonnees coordonnees(const Modele& m) {
  return {m.taille(0), m.xyz[0][0], m.xyz[0][1], m.xyz[0][2]};
}

/// A bent and twisted zone; no two of its cells are alike.
Modele vague(const Ijk& cellules) {
  Modele m;
  m.zone(cellules, [](double u, double v, double w) {
    return Vec{u + 0.1 * std::sin(3 * v + w), 2 * v + 0.2 * u * w,
               w * (1 + 0.3 * u) + 0.1 * std::cos(5 * v)};
  });
  return m;
}

}  // namespace

// Against the measures of one hexahedron, summed over the cells one by one.
TEST(Mesures, OfAllCells) {
  for (const auto& t : transformations()) {
    Modele m = vague({5, 4, 3});
    tourner(m, 0, t);
    const Coordonnees c = coordonnees(m);
    double exact = 0, centres = 0, jacobien = 1;
    for (Indice k = 1; k < c.taille[2]; ++k)
      for (Indice j = 1; j < c.taille[1]; ++j)
        for (Indice i = 1; i < c.taille[0]; ++i) {
          Hexaedre h;
          for (std::size_t n = 0; n < 8; ++n)
            h[n] = c.noeud({i + Indice(n & 1), j + Indice(n >> 1 & 1), k + Indice(n >> 2)});
          exact += mesurer(h).exact;
          centres += mesurer(h).nsmb;
          if (mesurer(h).exact < 0)
            std::swap(h[0], h[1]), std::swap(h[2], h[3]), std::swap(h[4], h[5]),
                std::swap(h[6], h[7]);
          jacobien = std::min(jacobien, mesurer(h).erikson);
        }
    EXPECT_NEAR(volume_exact(c), exact, 1e-12);
    const double sens = exact < 0 ? -1 : 1;
    const MesuresCellules mesures = mesurer_cellules(c, sens, 1);
    EXPECT_NEAR(mesures.centres, sens * centres, 1e-12);
    EXPECT_NEAR(mesures.jacobien_min, jacobien, 1e-12);
    EXPECT_TRUE(mesures.finies);
  }
}

TEST(Mesures, NeitherThreadsNorVectorsChangeABit) {
  const Modele m = vague({70, 70, 90});
  const MesuresCellules un = mesurer_cellules(coordonnees(m), 1, 1, false);
  for (const unsigned fils : {1U, 2U, 3U, 4U}) {
    const MesuresCellules n = mesurer_cellules(coordonnees(m), 1, fils);
    EXPECT_EQ(un.centres, n.centres);
    EXPECT_EQ(un.jacobien_min, n.jacobien_min);
  }
}

TEST(Mesures, EveryNodeIsLookedAt) {
  for (std::size_t n = 0; n < 6 * 5 * 4; ++n) {
    Modele m = vague({5, 4, 3});
    m.xyz[0][n % 3][n] = n % 2 ? NAN : INFINITY;
    EXPECT_FALSE(mesurer_cellules(coordonnees(m), 1, 1).finies) << n;
  }
  Modele m = vague({5, 4, 3});
  for (double& x : m.xyz[0][0]) x *= 1e300;
  for (double& y : m.xyz[0][1]) y *= 1e300;
  EXPECT_TRUE(mesurer_cellules(coordonnees(m), 1, 1).finies);
}

}  // namespace topomine
