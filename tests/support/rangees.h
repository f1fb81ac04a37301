#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/dossier.h"

/// One case of a file of cases: "=== " and its title, the input, "---", what must come of it. All
/// but the title ends in a newline.
struct Rangee {
  std::string titre, entree, attendu;
};

inline std::vector<Rangee> lire_rangees(const std::string& fichier) {
  std::vector<Rangee> rangees;
  std::istringstream flux(lire_octets(fichier));
  std::string* partie = nullptr;
  for (std::string ligne; std::getline(flux, ligne);) {
    if (ligne.starts_with("=== ")) {
      rangees.push_back({ligne.substr(4), {}, {}});
      partie = &rangees.back().entree;
    } else if (ligne == "---") {
      partie = &rangees.back().attendu;
    } else {
      (*partie += ligne) += '\n';
    }
  }
  return rangees;
}

/// What was written, with the bytes that no editor shows as "\ooo".
inline std::string visible(const std::string& octets) {
  std::string texte;
  for (const char c : octets) {
    const auto u = static_cast<unsigned char>(c);
    if (c == '\n' || (u >= ' ' && u < 127))
      texte += c;
    else
      for (const int k : {-1, 6, 3, 0})
        texte += k < 0 ? '\\' : static_cast<char>('0' + (u >> k) % 8);
  }
  return texte;
}
