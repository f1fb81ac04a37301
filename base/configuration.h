#pragma once

#include <string>

namespace topomine {

/// Value of a column of the boundary-condition configuration for a Damas code, where it stands;
/// null when either is unknown.
const std::string* chercher_CL(int code, const std::string& colonne);

/// Forgets the boundary-condition configuration, which is one per process: the base that is loaded
/// next reads the climite.cfg of its own folder. What is asked of a base after that is answered
/// from the new configuration; its examples are to be made before.
void oublier_configuration();

}  // namespace topomine
