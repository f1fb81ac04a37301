#include "cgns/types_conditions.h"

#include <algorithm>
#include <array>

#include "cgns/codes.h"

namespace topomine {

namespace {

constexpr int entree = 2, sortie = 3, lointain = 4, symetrie = 5, secteur = 7;

constexpr auto types = std::to_array<TypeCondition>({
    {"BCAxisymmetricWedge", secteur},
    {"BCDegenerateLine", bccode_sans_condition, true},
    {"BCDegeneratePoint", bccode_sans_condition, true},
    {"BCDirichlet", bccode_autre},
    {"BCExtrapolate", bccode_autre},
    {"BCFarfield", lointain},
    {"BCGeneral", bccode_autre},
    {"BCInflow", entree},
    {"BCInflowSubsonic", entree},
    {"BCInflowSupersonic", entree},
    {"BCNeumann", bccode_autre},
    {"BCOutflow", sortie},
    {"BCOutflowSubsonic", sortie},
    {"BCOutflowSupersonic", sortie},
    {"BCSymmetryPlane", symetrie},
    {"BCSymmetryPolar", bccode_sans_condition, true},
    {"BCTunnelInflow", entree},
    {"BCTunnelOutflow", sortie},
    {"BCWall", bccode_paroi},
    {"BCWallInviscid", bccode_paroi},
    {"BCWallViscous", bccode_paroi},
    {"BCWallViscousHeatFlux", bccode_paroi},
    {"BCWallViscousIsothermal", bccode_paroi},
    {"UserDefined", bccode_autre},
});

}  // namespace

TypeCondition type_condition(std::string_view nom) {
  const auto* const type = std::ranges::find(types, nom, &TypeCondition::nom);
  return type != types.end() ? *type : TypeCondition{nom, bccode_sans_condition, false};
}

}  // namespace topomine
