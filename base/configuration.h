#pragma once

#include <string>
#include <string_view>

namespace topomine {

/// Names of the columns of climite.cfg that have a meaning.
inline constexpr std::string_view colonne_code = "Damas code", colonne_bccode = "BCCODE",
                                  colonne_famille = "Family";

/// The header of a climite.cfg that has no other columns.
inline constexpr std::string_view entete_climite = "Damas code;BCCODE;Family;\n";

/// The BCCODE of a wall.
inline constexpr int bccode_paroi = 1;

/// Value of a column of the boundary-condition configuration for a Damas code, where it stands;
/// null when either is unknown.
const std::string* chercher_CL(int code, const std::string& colonne);

/// Forgets the boundary-condition configuration, which is one per process: the base that is loaded
/// next reads the climite.cfg of its own folder. What is asked of a base after that is answered
/// from the new configuration; its examples are to be made before.
void oublier_configuration();

}  // namespace topomine
