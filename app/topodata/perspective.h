#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "app/topodata/scene_dessin.h"

namespace topomine {

/// From where a case is looked at, in degrees: the azimuth of the eye from x towards y, and its
/// height above the plane (x,y).
struct Vue {
  double azimut, elevation;
};

/// Across and up; the case fits into a circle of about radius 1.
using Plan = std::array<double, 2>;

/// A piece of an edge or of a wall, as it is seen.
struct Touche {
  double eloignement;  ///< from the eye
  std::size_t nb;      ///< 2 points for a line, 4 for a wall
  std::array<Plan, 4> points;
  Couleur couleur;
  double epaisseur;
  bool verre;  ///< a wall that is seen through
};

struct Tableau {
  std::vector<Touche> touches;  ///< far ones first: each may cover those before it
  std::array<Plan, 3> axes;     ///< where x, y and z point
};

/// The scene in perspective. Without a view, one that suits its shape.
Tableau peindre(const Scene& scene, const std::optional<Vue>& vue);

}  // namespace topomine
