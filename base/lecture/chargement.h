#pragma once

#include <string>
#include <vector>

class Base;

namespace topomine {

/// Result of loading a base without console output.
struct Chargement {
  bool fait = false;
  std::string fichier;                      ///< the last one that was opened, empty when none was
  std::string raison;                       ///< why it failed, on one line
  std::vector<std::string> avertissements;  ///< what was odd in it though it may have been loaded
};

/// load_all() without a word on the consoles, for programs whose standard output is their product.
/// A structural fault, too, is a failure with its message: the program goes on.
Chargement charger(Base& base);

}  // namespace topomine
