#pragma once

#include <cstddef>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

namespace topomine {

/// Writes lines for the eye, in the reader's encoding: columns as wide as their widest cell, "-"
/// where a cell is empty; to the left in these columns, to the right, as numbers are, in the
/// others.
void ecrire_aligne(std::ostream& out, std::vector<std::vector<std::string>> lignes,
                   const std::set<std::size_t>& a_gauche);

}  // namespace topomine
