#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "cgns/decoupage.h"
#include "cgns/structure.h"
#include "mesh/vecteur.h"

namespace topomine {

// What is measured on the coordinates of one zone, and kept when they are gone.

/// The coordinates of a zone's nodes, i fastest.
struct Coordonnees {
  Ijk taille{2, 2, 2};
  std::span<const double> x, y, z;

  std::size_t rang(const Ijk& p) const {
    return static_cast<std::size_t>(p[0] - 1 + taille[0] * (p[1] - 1 + taille[1] * (p[2] - 1)));
  }
  Vec noeud(const Ijk& p) const { return noeud(rang(p)); }
  Vec noeud(std::size_t n) const { return {x[n], y[n], z[n]}; }
};

/// Piece of surface; corner l + 2m, side 2*side + axis as the edge slots of mesh/numbering.h.
struct MesuresMorceau {
  std::array<Vec, 4> coins, normales;   ///< outward unit normals at the corners
  std::array<Vec, 4> normales_cotes;    ///< mean outward unit normal along each side
  std::array<bool, 4> cotes_ecrases{};  ///< sides that shrank to a point
  std::array<bool, 2> ecrase{};         ///< shrank along l, along m
  Boite boite;
};

struct MesuresZone {
  double exact = 0, mor = 0, moyen = 0, nsmb = 0, erikson = 0;
  bool gauche = false;                     ///< i, j, k make a left-handed frame
  double taille = 0;                       ///< diagonal of its box
  std::array<Vec, 8> coins;                ///< i + 2j + 4k
  std::array<bool, 12> aretes_ecrasees{};  ///< see arete_de_zone
  std::vector<MesuresMorceau> morceaux;    ///< in the order of the cutting
};

/// Edge 0 to 11 of a zone: along axis n / 4, on the sides n & 1 and n >> 1 & 1 of the other two
/// axes, the lower one first.
Plage arete_de_zone(const Ijk& taille, std::size_t n);

/// Side 0 to 3 of a piece on a face in that slot.
Plage cote_de_morceau(const Plage& plage, int place, std::size_t cote);

/// All measures in one pass, on up to `fils` threads: their number changes no bit of the result.
/// Throws MaillageRefuse, saying the zone, at a coordinate that is no finite number.
MesuresZone mesurer(const Structure& s, const Decoupage& d, std::size_t zone, const Coordonnees& c,
                    unsigned fils);

/// Per piece of the cutting: did it shrink to a line or a point?
std::vector<bool> pieces_ecrasees(const Decoupage& d, const std::vector<MesuresZone>& mesures);

/// The part of the pass that looks at every cell: quality and centre determinants.
struct MesuresCellules {
  double jacobien_min = 1;  ///< least scaled Jacobian of all corners of all cells
  double centres = 0;       ///< sum of the determinants at the cells' centres
  bool finies = true;
};
/// sens: 1, or -1 for a left-handed zone. larges: with wider vectors on processors that have them.
/// Neither these nor the number of threads changes a bit: the tests, which alone leave them off,
/// compare.
MesuresCellules mesurer_cellules(const Coordonnees& c, double sens, unsigned fils,
                                 bool larges = true);

/// Signed volume of the cells between bilinear faces.
double volume_exact(const Coordonnees& c);

}  // namespace topomine
