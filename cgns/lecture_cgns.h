#pragma once

#include <string>

#include "cgns/paquet.h"

namespace topomine {

struct OptionsLecture {
  std::string base;          ///< of the bases in the file; empty for the only one
  double tolerance = 1e-6;   ///< see Jointures
  unsigned long octets = 0;  ///< that the coordinates of a zone may take; 0 for any number
};

/// Reads and measures a mesh in this process: a damaged file may end it. Throws MaillageRefuse.
Extrait lire_cgns(const std::string& fichier, const OptionsLecture& options);

}  // namespace topomine
