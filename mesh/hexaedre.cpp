#include "mesh/hexaedre.h"

#include <algorithm>
#include <cstddef>

namespace topomine {

namespace {

double tetraedre(const Vec& p, const Vec& q, const Vec& r, const Vec& s) {
  return det(q - p, r - p, s - p) / 6;
}

/// Edge from a corner along an axis, turned to the positive way.
Vec arete(const Hexaedre& h, std::size_t coin, unsigned axe) {
  const std::size_t bit = std::size_t{1} << axe;
  return h[coin | bit] - h[coin & ~bit];
}

/// A bilinear face halves the tetrahedron of its four corners (check it on z = xy, to which affine
/// maps bring every other), so the volume beneath it is the mean of those beneath its two cuts into
/// triangles.
double exact(const Hexaedre& h) {
  double v = 0;
  for (unsigned axe = 0; axe < 3; ++axe)
    for (std::size_t cote = 0; cote < 2; ++cote) {
      const std::size_t b = cote << axe, l = std::size_t{1} << (axe + 1) % 3,
                        m = std::size_t{1} << (axe + 2) % 3;
      const Vec &p = h[b], &q = h[b | l], &r = h[b | l | m], &s = h[b | m], &o = h[0];
      v += (cote ? 0.5 : -0.5) * (tetraedre(o, p, q, r) + tetraedre(o, p, r, s) +
                                  tetraedre(o, p, q, s) + tetraedre(o, q, r, s));
    }
  return v;
}

}  // namespace

MesuresHexaedre mesurer(const Hexaedre& h) {
  double moyen = tetraedre(h[1], h[2], h[4], h[7]) + tetraedre(h[0], h[5], h[3], h[6]);
  double erikson = 1;
  std::array<Vec, 3> centre;
  std::array<double, 3> longueurs{};
  for (std::size_t c = 0; c < 8; ++c) {
    std::array<Vec, 3> axes;
    std::array<double, 3> normes{};
    for (unsigned i = 0; i < 3; ++i) {
      axes[i] = arete(h, c, i);
      normes[i] = norme(axes[i]);
      longueurs[i] += normes[i] / 8;  // each edge twice
      centre[i] = centre[i] + 0.125 * axes[i];
    }
    const double jacobien = det(axes[0], axes[1], axes[2]);
    const double boite = normes[0] * normes[1] * normes[2];
    moyen += jacobien / 6;
    erikson = std::min(erikson, boite > 0 ? jacobien / boite : 0);
  }
  return {.exact = exact(h),
          .mor = longueurs[0] * longueurs[1] * longueurs[2],
          .moyen = moyen / 2,
          .nsmb = det(centre[0], centre[1], centre[2]),
          .erikson = erikson};
}

}  // namespace topomine
