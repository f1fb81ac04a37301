#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>

namespace topomine {

// Index arithmetic of structured zones. Nodes are counted from 1 along i, j and k, as in the files.

using Indice = std::int64_t;
using Ijk = std::array<Indice, 3>;
inline constexpr std::array<std::size_t, 3> axes_ijk{0, 1, 2};

/// A box of nodes, bounds included, min <= max on each axis.
struct Plage {
  Ijk min{1, 1, 1}, max{1, 1, 1};

  bool contient(const Ijk& p) const;
  bool contient(const Plage& p) const { return contient(p.min) && contient(p.max); }
  Indice nb_noeuds() const;
  /// Number of axes along which it is a single node: 1 for a piece of surface.
  int nb_axes_plats() const;

  friend auto operator<=>(const Plage&, const Plage&) = default;
};

/// The box between two opposite corners, given in any order.
Plage plage_entre(const Ijk& a, const Ijk& b);

/// "[1:9,1:1,1:5]"
std::string texte_plage(const Plage& p);

/// All the nodes of a zone of that many nodes.
inline Plage zone_entiere(const Ijk& taille) {
  return {{1, 1, 1}, taille};
}

/// The two axes of a block face of that normal, in the order of its edges: l the lower one, m the
/// higher.
inline constexpr std::array<std::array<std::size_t, 2>, 3> axes_lm{{{1, 2}, {0, 2}, {0, 1}}};

/// The nodes of the zone's face in slot 0 to 5 (see mesh/numbering.h).
Plage face_entiere(const Ijk& taille, int place);
/// The slot of the face that the piece of surface lies on; -1 inside the zone and for what is no
/// piece of surface.
int place_de(const Ijk& taille, const Plage& p);

/// How the nodes on one side of a join are found on the other: axis a goes along axis |t[a]|, the
/// other way where t[a] < 0.
struct Passage {
  Ijk depuis{1, 1, 1}, vers{1, 1, 1};
  std::array<int, 3> t{1, 2, 3};

  Ijk operator()(const Ijk& p) const;
  Plage operator()(const Plage& p) const { return plage_entre((*this)(p.min), (*this)(p.max)); }
  Passage inverse() const;
};

/// True for each of the 48 ways to turn and mirror three axes.
bool transformation_valide(const std::array<int, 3>& t);

}  // namespace topomine
