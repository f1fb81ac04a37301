#pragma once

#include <map>
#include <string>
#include <vector>

#include "cgns/topologie.h"

namespace topomine {

// Pieces and junctions as the walls of a mesh suggest them.

struct PieceSuggeree {
  std::string nom;  ///< the family without "paroi_"
  std::string famille;
  char topologie = 'H';
  int nb_faces = 0;
};

struct RaccordSuggere {
  std::string piece1, piece2, type;
};

struct SceneSuggeree {
  std::vector<PieceSuggeree> pieces;
  std::vector<RaccordSuggere> raccords;
  Boite parois;  ///< around all walls; empty without any
};

/// One piece per wall family. Its letter: from a wall face one goes on to the next one where their
/// blocks share the face between them. Any row of faces that ends, but turns by more than 100
/// degrees, makes a C; without one, a row that comes back to where it began makes an O; the rest is
/// an H. Two pieces with a common edge make a junction, C90 when the walls meet there at 67.5
/// degrees or more, else C45.
SceneSuggeree suggerer_scene(const Structure& s, const Decoupage& d,
                             const std::vector<MesuresZone>& mesures, const Familles& familles,
                             const Topologie& t);

}  // namespace topomine
