#pragma once

#include <vector>

#include "verifie/releve.h"

namespace topomine {

/// Everything that is wrong with a base, by file and line: what its strict reading found, and what
/// does not fit together: between its entities, with the configuration, with the table's schema.
std::vector<Constat> verifier(Releve releve, const ReleveConfig& config);

/// Likewise for the configuration, with the codes whose BCCODE counts in no column of the table.
std::vector<Constat> verifier(const ReleveConfig& config);

}  // namespace topomine
