#pragma once

#include <array>
#include <map>
#include <string>

namespace topomine {

// What the readers of a CGNS file share.

/// Ends the reading with what the library says about it.
[[noreturn]] void refuser_fichier();
/// What a call of the library returned: throws MaillageRefuse unless it went well.
void exiger_reussite(int statut);

/// Room for any name that the library writes, paths of families included.
class NomCgns {
 public:
  char* place() { return texte_.data(); }
  std::string texte() const { return texte_.data(); }

 private:
  std::array<char, 4096> texte_{};
};

/// The condition types that families have, as numbers of the library.
std::map<std::string, int> types_des_familles(int fichier, int base);

}  // namespace topomine
