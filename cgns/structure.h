#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "cgns/plages.h"
#include "mesh/vecteur.h"

namespace topomine {

// What a mesh file holds, as far as a case can express it: plain values, without the file's
// library.

/// The mesh cannot be imported; the text says why.
struct MaillageRefuse : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Zone {
  std::string nom;
  Ijk taille{2, 2, 2};  ///< nodes along each axis, 2 at least
};

/// Two pieces of surface whose nodes are the same points.
struct Jonction {
  std::string nom;
  std::size_t zone = 0, voisine = 0;  ///< ranks of zones
  Plage plage;                        ///< on a face of `zone`
  Passage passage;                    ///< to a face of `voisine`
};

/// What a piece of a zone's surface is.
struct Condition {
  std::string nom;
  std::string famille;  ///< as the table of codes will know it
  int bccode = 0;
  bool degeneree = false;   ///< declared to be a line or a point
  bool de_raccord = false;  ///< stands for a join that the case cannot express
  std::size_t zone = 0;
  Plage plage;  ///< on a face of `zone`
};

struct Structure {
  std::string base;  ///< name of the base in the file
  std::vector<Zone> zones;
  std::vector<Jonction> jonctions;
  std::vector<Condition> conditions;
  std::vector<std::string> dits;  ///< what the file says and the case cannot, one line each
};

/// Bounds that no mesh in use comes near; they keep a hostile file from asking for more.
inline constexpr std::size_t zones_max = 200'000, plages_max = 1'000'000;
inline constexpr Indice axe_max = 2'000'000'000, noeuds_max = 20'000'000'000;

/// Throws MaillageRefuse when a number is out of bounds or does not fit the others: what follows
/// relies on ranges that lie on faces of zones that exist.
void valider(const Structure& s);

}  // namespace topomine
