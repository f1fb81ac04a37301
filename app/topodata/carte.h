#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace topomine {

/// A square of numbers as texts, row by row, "NaN" where an attribute is not numeric, with the
/// names of its rows and columns.
struct Matrice {
  std::vector<std::string> noms, cellules;
};

/// The words of a heat map, and its scale.
struct Legende {
  std::string titre;
  std::string couleurs;  ///< what the colours stand for
  bool logarithme{};     ///< for values of many magnitudes; signs are marked then
};

/// Throws Erreur unless a picture may have this name: it ends in .png or .svg, in any case.
void controler_nom_image(const std::string& nom);
bool est_svg(const std::string& nom);

/// Draws a matrix as a heat map, in the form that the picture's name asks for. Throws Erreur,
/// before it writes anything, when there is nothing to draw or gnuplot does not do it.
void dessiner_carte(const Matrice& m, const Legende& legende, const std::string& nom,
                    std::ostream& image);

}  // namespace topomine
