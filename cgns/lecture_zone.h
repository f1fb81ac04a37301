#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cgns/structure.h"

namespace topomine {

/// Where a zone is, as the library counts, and its rank in the structure.
struct PlaceZone {
  int fichier, base, zone;
  std::size_t rang;
};

/// What the zones of a base are known by while they are read.
struct Repertoire {
  std::map<std::string, std::size_t> zones;  ///< rank by name
  std::map<std::string, int> familles;       ///< condition type, a number of the library, by name
};

// Both read one zone's part into a structure whose zones are known. What has no place there goes to
// its `dits`.

void lire_raccords(Structure& s, const Repertoire& r, const PlaceZone& place);
void lire_conditions(Structure& s, const Repertoire& r, const PlaceZone& place);

/// A set of nodes, or of cell faces, as a file gives it.
struct Points {
  bool liste = false;  ///< each of them; else two corners
  /// Axis that the cell faces are normal to, 0 to 2; noeuds: nodes; inconnu: the file does not say.
  int axe = noeuds;
  std::vector<Ijk> valeurs;

  static constexpr int noeuds = -1, inconnu = -2;
};

/// Indices as a file holds them, three to each node.
template <class Entier>
std::vector<Ijk> triplets(const std::vector<Entier>& v) {
  std::vector<Ijk> r;
  r.reserve(v.size() / 3);
  for (std::size_t n = 0; n < v.size(); n += 3) r.push_back({v[n], v[n + 1], v[n + 2]});
  return r;
}

/// Throws MaillageRefuse, saying the zone and what has them, unless a set may have so many points.
void controler_nombre(const Zone& zone, const std::string& quoi, Indice nb, bool plage);

/// The piece of a zone's surface that points cover wholly; none where they are no such piece.
std::optional<Plage> plage_des_points(const Ijk& taille, const Points& points);

/// The images of the nodes of a list, i fastest, as passage_vers takes them.
std::vector<Ijk> images_en_ordre(const std::vector<Ijk>& noeuds, const std::vector<Ijk>& images);

/// The passage that sends the nodes of a piece, i fastest, to those of a list; none where there is
/// none.
std::optional<Passage> passage_vers(const Plage& plage, const std::vector<Ijk>& images);

}  // namespace topomine
