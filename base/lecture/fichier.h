#pragma once

#include <string>

namespace topomine {

/// What came of reading a file.
enum class Lecture {
  faite,
  absente,
  interdite,  ///< no permission for it or for a folder on its way
  boucle,     ///< links that lead to each other
  dossier,
  special,      ///< a pipe, a device, a socket: it might be waited for for ever
  interrompue,  ///< a read failed halfway
};

/// Reads a whole file into `contenu`.
Lecture lire_fichier(const std::string& nom, std::string& contenu);

}  // namespace topomine
