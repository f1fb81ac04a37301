#pragma once

#include <string>

namespace topomine {

struct OptionsImportation {
  std::string maillage, chemin, base;
  std::string mode = "nrm";   ///< "nrm", "ext", "min" or "toutes"
  std::string base_cgns;      ///< empty for the only one
  double tolerance = 1e-6;    ///< 0 to 1, a part of the smaller zone's diagonal
  std::string codes, pieces;  ///< files; empty for none
  bool force = false;
};

/// Writes the case of a mesh and says on standard output what became of it. Throws Erreur, and has
/// written nothing then.
void importer(const OptionsImportation& o);

}  // namespace topomine
