#pragma once

#include <array>

#include "mesh/vecteur.h"

namespace topomine {

/// Corner i + 2j + 4k.
using Hexaedre = std::array<Vec, 8>;

/// What the eight corners of a block give, positive for right-handed axes.
struct MesuresHexaedre {
  double exact;    ///< volume between bilinear faces
  double mor;      ///< box of the mean edge lengths
  double moyen;    ///< mean of the two cuts into five tetrahedra
  double nsmb;     ///< Jacobian determinant at the centre
  double erikson;  ///< least scaled corner Jacobian, 1 for a box, 0 at a corner that shrank
};

MesuresHexaedre mesurer(const Hexaedre& h);

}  // namespace topomine
