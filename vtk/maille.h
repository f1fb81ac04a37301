#pragma once

#include <array>
#include <string>
#include <variant>
#include <vector>

#include "base/base.h"
#include "vtk/coins.h"

namespace topomine {

// A case as an unstructured grid: cells over points, and values per cell.

/// Cell types of VTK.
enum TypeCellule : int { cellule_ligne = 3, cellule_quad = 9, cellule_hexaedre = 12 };

struct Cellule {
  TypeCellule type;
  std::size_t nb;                     ///< how many of the points count
  std::array<std::size_t, 8> points;  ///< ranks, in VTK's order; repeated where it has collapsed
};

/// A value per cell (or per point).
struct Donnee {
  std::string nom;
  std::variant<std::vector<int>, std::vector<double>> valeurs;
};

struct Grille {
  std::string titre;
  std::vector<Vec> points;
  std::vector<int> vertices;  ///< the number of each point's vertex
  std::vector<Cellule> cellules;
  std::vector<Donnee> donnees;
  /// What could not be put in, in French: the caller says it.
  std::vector<std::string> manques;
};

/// One hexahedron per block, its axes turned where they are left-handed, so that every volume is
/// positive. Values: "ident", "type", "TypeC", the numeric attributes of the table, and
/// "vol_coins", the volume between the corners.
Grille grille_blocs(Base& base);
/// The faces as quads and/or the edges as lines. Values: "ident", "sorte" (0 face, 1 edge),
/// "carac", "type" and the blocks of a face, and the boundary: "nb_codes", "code" and "BCCODE" of
/// the first ("code_2" ... of the others), "famille", the rank of the first family from 1 in the
/// alphabet, and a column "famille_NAME" of 0 and 1 for each. 0 where there is none.
Grille grille_bords(const Base& base, bool faces, bool edges);

}  // namespace topomine
