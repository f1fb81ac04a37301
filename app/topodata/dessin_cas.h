#pragma once

#include <optional>
#include <string>

#include "app/topodata/scene_dessin.h"

namespace topomine {

/// From where a case is looked at, in degrees: the azimuth of the eye from x towards y, and its
/// height above the plane (x,y).
struct Vue {
  double azimut, elevation;
};

/// A gnuplot script that draws the scene in perspective. Without a view, one that suits its shape.
std::string script_dessin(const Scene& scene, const std::optional<Vue>& vue, bool svg);

}  // namespace topomine
