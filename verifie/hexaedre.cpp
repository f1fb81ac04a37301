#include "verifie/hexaedre.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace topomine {

namespace {

Vecteur3 operator-(const Vecteur3& p, const Vecteur3& q) {
  return {p[0] - q[0], p[1] - q[1], p[2] - q[2]};
}

double det(const Vecteur3& p, const Vecteur3& q, const Vecteur3& r) {
  return p[0] * (q[1] * r[2] - q[2] * r[1]) - p[1] * (q[0] * r[2] - q[2] * r[0]) +
         p[2] * (q[0] * r[1] - q[1] * r[0]);
}

double norme(const Vecteur3& p) {
  return std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
}

double tetraedre(const Vecteur3& p, const Vecteur3& q, const Vecteur3& r, const Vecteur3& s) {
  return det(q - p, r - p, s - p) / 6;
}

/// Edge from a corner along an axis, turned to the positive way.
Vecteur3 arete(const Hexaedre& h, std::size_t coin, unsigned axe) {
  const std::size_t bit = std::size_t{1} << axe;
  return h[coin | bit] - h[coin & ~bit];
}

/// A bilinear face halves the tetrahedron of its corners: the volume beneath it is the mean of
/// those beneath its two cuts into triangles.
double exact(const Hexaedre& h) {
  double v = 0;
  for (unsigned axe = 0; axe < 3; ++axe)
    for (std::size_t cote = 0; cote < 2; ++cote) {
      const std::size_t b = cote << axe, l = std::size_t{1} << (axe + 1) % 3,
                        m = std::size_t{1} << (axe + 2) % 3;
      const Vecteur3 &p = h[b], &q = h[b | l], &r = h[b | l | m], &s = h[b | m], &o = h[0];
      v += (cote ? 0.5 : -0.5) * (tetraedre(o, p, q, r) + tetraedre(o, p, r, s) +
                                  tetraedre(o, p, q, s) + tetraedre(o, q, r, s));
    }
  return v;
}

}  // namespace

double distance(const Vecteur3& p, const Vecteur3& q) {
  return norme(p - q);
}

Mesures mesurer(const Hexaedre& h) {
  Mesures x{exact(h), 1, tetraedre(h[1], h[2], h[4], h[7]) + tetraedre(h[0], h[5], h[3], h[6]), 0,
            1};
  std::array<Vecteur3, 3> centre{};
  std::array<double, 3> longueurs{};
  for (std::size_t c = 0; c < 8; ++c) {
    std::array<Vecteur3, 3> axes{};
    std::array<double, 3> normes{};
    for (unsigned i = 0; i < 3; ++i) {
      axes[i] = arete(h, c, i);
      normes[i] = norme(axes[i]);
      longueurs[i] += normes[i] / 8;
      for (std::size_t d = 0; d < 3; ++d) centre[i][d] += axes[i][d] / 8;
    }
    const double jacobien = det(axes[0], axes[1], axes[2]);
    const double boite = normes[0] * normes[1] * normes[2];
    x.moyen += jacobien / 6;
    x.erikson = std::min(x.erikson, boite > 0 ? jacobien / boite : 0);
  }
  x.mor = longueurs[0] * longueurs[1] * longueurs[2];
  x.moyen /= 2;
  x.nsmb = det(centre[0], centre[1], centre[2]);
  return x;
}

}  // namespace topomine
