#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/base.h"
#include "mesh/vecteur.h"

namespace topomine {

// What a picture of a case shows, in the case's own space and colours.

/// Red, green and blue, 0 to 1.
using Couleur = std::array<double, 3>;

/// Each part is in its range.
constexpr bool sont_des_couleurs(std::span<const Couleur> couleurs) {
  return std::ranges::all_of(couleurs, [](const Couleur& c) {
    return std::ranges::all_of(c, [](double part) { return part >= 0 && part <= 1; });
  });
}

/// At the part t of the way from a to b.
inline Couleur entre(const Couleur& a, const Couleur& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

struct Trait {
  Vec a, b;
  Couleur couleur;
  bool fort;  ///< stands out
};

struct Paroi {
  std::array<Vec, 4> coins;  ///< around it
  std::optional<Vec> bloc;   ///< the middle of its block; none between two blocks
  Couleur couleur;
};

/// Either a scale of values or names of colours.
struct LegendeCas {
  struct Nom {
    std::string nom;
    Couleur couleur;
  };
  std::string titre;
  std::optional<std::pair<double, double>> echelle;
  bool logarithmique{};
  std::vector<Nom> noms;
};

/// Colours of a scale at equal distances, from its least value on.
inline constexpr auto palette = std::to_array<Couleur>({{0.05, 0.03, 0.53},
                                                        {0.36, 0.01, 0.64},
                                                        {0.61, 0.09, 0.62},
                                                        {0.80, 0.28, 0.47},
                                                        {0.91, 0.43, 0.28},
                                                        {0.95, 0.61, 0.07}});

static_assert(sont_des_couleurs(palette));

struct Scene {
  std::string titre;
  std::vector<Trait> traits;
  std::vector<Paroi> parois;
  LegendeCas legende;
  /// What is not drawn, in French: the caller says it.
  std::vector<std::string> manques;
};

/// The edges of the blocks and the walls of a case. par: "famille" (edges and walls by boundary
/// family), "TypeC", or another attribute of the table that is a number (blocks by value). Throws
/// Erreur for another word.
Scene scene_de(Base& base, const std::string& par);

}  // namespace topomine
