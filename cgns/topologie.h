#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "cgns/codes.h"
#include "cgns/decoupage.h"
#include "cgns/mesures.h"

namespace topomine {

// Blocks, faces, edges and vertices of a mesh, numbered from 1 as a case has them.

struct FaceTopo {
  int numero = 0;
  std::array<int, 4> edges{};  ///< 0 where one shrank to a point
  std::size_t morceau = 0;     ///< the piece whose sides the edges are
  int nb_blocs = 0;
  std::vector<std::size_t> familles;  ///< ranks; none inside the domain
};

struct EdgeTopo {
  int debut = 0, fin = 0;  ///< vertices
  int nb_faces = 0;
  std::vector<std::size_t> familles;  ///< of all the boundary faces along it, each once
};

struct SommetTopo {
  Vec position;
  std::map<std::size_t, Vec> normales;  ///< per family that it touches, outward unit normal
};

/// Right-handed: the axis i of a left-handed zone goes the other way.
struct BlocTopo {
  std::array<std::vector<int>, 6> faces;  ///< several where a face is split, none where it shrank
  int nb_bord = 0;                        ///< faces on the boundary
};

/// The entity with number n is at n - 1, except among the faces: see FaceTopo::numero.
struct Topologie {
  std::vector<BlocTopo> blocs;
  std::vector<FaceTopo> faces;
  std::vector<EdgeTopo> edges;
  std::vector<SommetTopo> sommets;
  std::vector<std::string> dits;  ///< split and collapsed faces
};

/// What the joins, and lengths of nothing, make one. Nodes are never identified by where they are.
/// Throws MaillageRefuse when a mesh takes more than its size warrants.
Topologie identifier(const Structure& s, const Decoupage& d,
                     const std::vector<MesuresZone>& mesures, const Familles& familles);

}  // namespace topomine
