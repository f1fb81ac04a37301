// Volumes and quality of a hexahedron.
#pragma once

#include <array>

#include "tools/gen/vec.h"

namespace gen {

/// Corner c = i + 2j + 4k, axes right-handed.
using Hexaedre = std::array<Vec, 8>;

double volume_exact(const Hexaedre& h);  // between bilinear faces
double volume_mor(const Hexaedre& h);    // box of the mean edge lengths
double volume_moyen(const Hexaedre& h);  // mean of the two cuts into five tetrahedra
double volume_nsmb(const Hexaedre& h);   // Jacobian determinant at the centre
double jacobien_min(const Hexaedre& h);  // least scaled corner Jacobian, 1 for a box

}  // namespace gen
