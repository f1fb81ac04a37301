#pragma once

#include <string>

#include "cgns/lecture_cgns.h"

namespace topomine {

/// What the process that reads a file may take.
struct LimitesLecture {
  unsigned long secondes;  ///< on the wall clock
  unsigned long octets;    ///< of memory
};

/// Ample for any file of that size that is sound.
LimitesLecture limites_pour(unsigned long taille_du_fichier);

/// lire_cgns in a child process: on damaged files the CGNS library may crash or loop.
/// Throws MaillageRefuse, saying the file, when it cannot be read.
Extrait extraire(const std::string& fichier, const OptionsLecture& options);
Extrait extraire(const std::string& fichier, const OptionsLecture& options,
                 const LimitesLecture& limites);

}  // namespace topomine
