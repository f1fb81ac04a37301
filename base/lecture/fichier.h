#pragma once

#include <string>

namespace topomine {

enum class Lecture { faite, absente, impossible };

/// Reads a whole file into `contenu`. absente: it cannot be opened; impossible: it is not a regular
/// file (a folder, a pipe that would be waited for), or reading it fails.
Lecture lire_fichier(const std::string& nom, std::string& contenu);

}  // namespace topomine
