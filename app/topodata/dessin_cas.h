#pragma once

#include <optional>
#include <string>

#include "app/topodata/perspective.h"

namespace topomine {

/// A gnuplot script that draws the scene in perspective. Without a view, one that suits its shape.
std::string script_dessin(const Scene& scene, const std::optional<Vue>& vue, bool svg);

}  // namespace topomine
