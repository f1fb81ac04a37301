#pragma once

#include <string>

#include "base/base.h"
#include "tests/cgns/modele.h"

namespace topomine {

/// The mesh of a linked base: a zone per block between its corners, of one cell or, `fin`, of one
/// to three cells along each axis; a family per Damas code, named after it. Faces of BCCODE 9999
/// stay bare.
Modele modele_de(const Base& base, bool fin);

/// Name of the family of a Damas code in such a mesh.
std::string famille_de(const Base& base, int code);

}  // namespace topomine
