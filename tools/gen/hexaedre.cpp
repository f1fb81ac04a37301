#include "tools/gen/hexaedre.h"

#include <algorithm>

namespace gen {

namespace {

double tetraedre(const Vec& a, const Vec& b, const Vec& c, const Vec& d) {
  return det(b - a, c - a, d - a) / 6;
}

/// Edge from a corner along an axis, turned to the positive way.
Vec arete(const Hexaedre& h, unsigned coin, unsigned axe) {
  const unsigned bit = 1u << axe;
  return h[coin | bit] - h[coin & ~bit];
}

}  // namespace

// A bilinear face halves the tetrahedron of its four corners (check it on z = xy, to which affine
// maps bring every other), so the volume beneath it is the mean of those beneath its two cuts into
// triangles.
double volume_exact(const Hexaedre& h) {
  double v = 0;
  for (unsigned axe = 0; axe < 3; ++axe)
    for (unsigned cote = 0; cote < 2; ++cote) {
      const unsigned b = cote << axe, l = 1u << (axe + 1) % 3, m = 1u << (axe + 2) % 3;
      const Vec p = h[b], q = h[b | l], r = h[b | l | m], s = h[b | m], o = h[0];
      v += (cote ? 0.5 : -0.5) * (tetraedre(o, p, q, r) + tetraedre(o, p, r, s) +
                                  tetraedre(o, p, q, s) + tetraedre(o, q, r, s));
    }
  return v;
}

double volume_mor(const Hexaedre& h) {
  double v = 1;
  for (unsigned axe = 0; axe < 3; ++axe) {
    double somme = 0;
    for (unsigned c = 0; c < 8; ++c) somme += norme(arete(h, c, axe));  // each edge twice
    v *= somme / 8;
  }
  return v;
}

double volume_moyen(const Hexaedre& h) {
  double v = tetraedre(h[1], h[2], h[4], h[7]) + tetraedre(h[0], h[5], h[3], h[6]);
  for (unsigned c = 0; c < 8; ++c) v += det(arete(h, c, 0), arete(h, c, 1), arete(h, c, 2)) / 6;
  return v / 2;
}

double volume_nsmb(const Hexaedre& h) {
  std::array<Vec, 3> axes;
  for (unsigned a = 0; a < 3; ++a)
    for (unsigned c = 0; c < 8; ++c) axes[a] = axes[a] + 0.125 * arete(h, c, a);
  return det(axes[0], axes[1], axes[2]);
}

double jacobien_min(const Hexaedre& h) {
  double j = 1;
  for (unsigned c = 0; c < 8; ++c) {
    const Vec a = arete(h, c, 0), b = arete(h, c, 1), d = arete(h, c, 2);
    j = std::min(j, det(a, b, d) / (norme(a) * norme(b) * norme(d)));
  }
  return j;
}

}  // namespace gen
