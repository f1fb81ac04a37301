#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "verifie/examen.h"

namespace topomine {

/// Between Exact and what the eight corners enclose. A block that is curved like an arc of angle t
/// has t / sin t times the volume of its corners: 1.6 for a quarter of a ring, 2.4 for a third. A
/// decimal point one place off stays outside of 4 on either side of those.
constexpr double facteur_sommets = 4;
/// The corners of a left-handed block enclose minus its volume. Those of a block that bends by more
/// than half a turn are turned too, but sin t / t is never below -0.217.
constexpr double part_gauche = 0.25;

constexpr std::size_t nb_valeurs = 5;
constexpr std::array<const char*, nb_valeurs> noms_valeurs{"Exact", "Mor", "Moyen", "NSMB",
                                                           "Erikson"};
constexpr std::size_t i_exact = 0, i_mor = 1, i_erikson = 4;
using Valeurs = std::array<double, nb_valeurs>;

/// What is known of a block.
struct BlocMesure {
  Valeurs lues{};           // NaN for what could not be read
  Valeurs calculees{};      // from the corners, where they are known
  double tolerance_fine{};  // how well values of ten digits can be had from the corners, relative
  double tolerance{};       // the same with the digits that the file has
  Maille::Coins coins{};
  bool coins_surs = false;  // the corners are known, and what they give is finite
  bool dit = false;         // something has been said of its volumes
  bool differe = false;     // of what its corners give

  double rapport() const { return lues[i_exact] / calculees[i_exact]; }
  bool gauche() const {
    if (!coins_surs || calculees[i_exact] >= 0) return false;
    const double volume = std::abs(lues[i_exact]);
    return -calculees[i_exact] >= part_gauche * volume &&
           -calculees[i_exact] <= facteur_sommets * volume;
  }
  bool loin() const {
    return coins_surs && lues[i_exact] > 0 && calculees[i_exact] > 0 &&
           (rapport() >= facteur_sommets || rapport() <= 1 / facteur_sommets);
  }
  bool a_l_envers() const { return coins_surs && calculees[i_exact] < 0 && !gauche(); }
  /// Unknown values differ from nothing.
  bool ecarte(std::size_t i) const {
    const double echelle = i == i_erikson ? 1 : std::abs(calculees[i]);
    return std::abs(lues[i] - calculees[i]) > tolerance * echelle;
  }
  std::size_t nb_ecarts() const {
    std::size_t nb = 0;
    for (std::size_t i = 0; i < nb_valeurs; ++i) nb += ecarte(i);
    return nb;
  }
  /// A curve, or a vertex elsewhere, changes them all, a slip one.
  bool courbe() const { return nb_ecarts() > 2; }
  /// Turned over by a vertex that is elsewhere: two faces that change places leave the volume.
  bool retourne() const {
    return gauche() && std::abs(std::abs(lues[i_exact]) + calculees[i_exact]) >
                           tolerance * std::abs(calculees[i_exact]);
  }
};

/// Marks the blocks that differ from what their corners give where most others do not, and says
/// which vertices are elsewhere; of the blocks of those, nothing is known any more.
void recalculer(Examen& x, std::vector<BlocMesure>& blocs);

}  // namespace topomine
