#pragma once

#include <array>

namespace topomine {

using Vecteur3 = std::array<double, 3>;
/// Corner i + 2j + 4k.
using Hexaedre = std::array<Vecteur3, 8>;

/// What the eight corners of a block give, positive for right-handed axes.
struct Mesures {
  double exact;    ///< volume between bilinear faces
  double mor;      ///< box of the mean edge lengths
  double moyen;    ///< mean of the two cuts into five tetrahedra
  double nsmb;     ///< Jacobian determinant at the centre
  double erikson;  ///< least scaled corner Jacobian, 0 at a corner that shrank
};

Mesures mesurer(const Hexaedre& h);

double distance(const Vecteur3& p, const Vecteur3& q);

}  // namespace topomine
