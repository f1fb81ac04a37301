#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "base/base.h"

namespace topomine {

/// Writes a line per block of the base that meets every condition, with the values that it was
/// asked for; how many there are. Each text is one or more conditions separated by commas:
///   ATTRIBUTE OP VALUE   OP is < <= > >= = or !=, the values those of the table
///   TypeC or !TypeC      also for the other attributes of set {-1,1}
///   famille=NAME, code=N, BCCODE=N   what the faces of the block carry; != for none that does
/// Throws Erreur for a condition that says nothing else than these, before anything is written.
std::size_t chercher_blocs(Base& base, const std::vector<std::string>& conditions,
                           std::ostream& out);

}  // namespace topomine
