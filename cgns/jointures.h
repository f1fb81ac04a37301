#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "cgns/mesures.h"
#include "cgns/structure.h"

namespace topomine {

/// Checks joins as the zones go by: keeps the coordinates of a joined piece of surface until those
/// of its other side are there, and not longer.
class Jointures {
 public:
  /// tolerance: largest distance between joined nodes, as a part of the smaller zone's diagonal.
  Jointures(const Structure& s, double tolerance);

  /// The joins of the next zone. Throws MaillageRefuse when nodes that are joined are too far
  /// apart.
  void passer(std::size_t zone, const Coordonnees& c, double taille);

 private:
  struct Attente {
    std::vector<Vec> noeuds;  // in the order of the join's range
    double taille;
  };

  void comparer(const Jonction& j, const Attente& a, const Attente& b) const;

  const Structure& s_;
  double tolerance_;
  std::vector<std::vector<std::size_t>> de_zone_;  // joins that begin or end there
  std::map<std::size_t, Attente> en_attente_;
};

}  // namespace topomine
