#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/base.h"

namespace topomine {

/// What climite.cfg says of one Damas code.
struct Limite {
  int code = 0;
  bool connue = false;  ///< the configuration has the code
  std::string famille;  ///< empty when it is not known
  int bccode = 0;       ///< as the table counts it; 0 when it is not known
};

Limite limite_de(const Base& base, int code);
/// Those of a face's or an edge's codes, in its order.
template <class Entite>
std::vector<Limite> limites(const Base& base, const Entite& entite) {
  std::vector<Limite> toutes;
  toutes.reserve(static_cast<std::size_t>(entite.nb_BC()));
  for (int i = 0; i < entite.nb_BC(); ++i) toutes.push_back(limite_de(base, entite._BC(i)));
  return toutes;
}

/// True for a wall: BCCODE 1, or the family of a piece of the scene.
bool est_paroi(const Base& base, const Limite& limite);

}  // namespace topomine
