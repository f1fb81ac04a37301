#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "cgns/decoupage.h"
#include "cgns/structure.h"

namespace topomine {

/// Nodes and lines of nodes that are one and the same, through any chain of joins.
class Classes {
 public:
  explicit Classes(const Structure& s);

  /// The element: a node or a line of the zone, with all that joins make of it.
  std::size_t element(std::size_t zone, const Plage& plage);
  /// The class of an element; the same for all that are one. Final once nothing is united any more.
  std::size_t classe(std::size_t element);
  void unir(std::size_t a, std::size_t b);

 private:
  struct Depart {  // a join, seen from one of its zones
    Plage plage;
    Passage passage;
    std::size_t vers;
  };
  using Cle = std::pair<std::size_t, Plage>;

  std::size_t rang(const Cle& cle);
  void propager(std::size_t debut);

  std::vector<std::vector<Depart>> departs_;  // by zone
  std::map<Cle, std::size_t> rangs_;
  std::vector<Cle> cles_;
  std::vector<std::size_t> parents_;
  std::size_t credit_;  // tests left before the mesh is refused
};

}  // namespace topomine
