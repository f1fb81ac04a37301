#pragma once

#include <string>

class Base;

namespace topomine {

/// What came of loading a base in silence.
struct Chargement {
  bool fait = false;
  std::string dit;         ///< what the reader that failed said, on one line
  int avertissements = 0;  ///< lines that the readers wrote on standard error though all was loaded
};

/// load_all() without a word on the consoles, for programs whose standard output is their product.
/// A structural fault, too, is a failure with its message: the program goes on.
Chargement charger(Base& base);

}  // namespace topomine
