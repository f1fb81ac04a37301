#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
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

/// The bytes that visible() wrote so.
inline std::string octets_de(const std::string& texte) {
  const auto chiffre = [&](std::size_t i) {
    return i < texte.size() && texte[i] >= '0' && texte[i] <= '7';
  };
  std::string octets;
  for (std::size_t i = 0; i < texte.size(); ++i)
    if (texte[i] == '\\' && chiffre(i + 1) && chiffre(i + 2) && chiffre(i + 3)) {
      octets += static_cast<char>(std::stoi(texte.substr(i + 1, 3), nullptr, 8));
      i += 3;
    } else {
      octets += texte[i];
    }
  return octets;
}

/// What comes of each case is what the file says. With TOPOMINE_REECRIRE in the environment the
/// file is written anew instead: the difference is to be read before it is kept.
inline void comparer_rangees(const std::string& fichier,
                             const std::function<std::string(const Rangee&)>& obtenir) {
  std::string neuf;
  for (const Rangee& r : lire_rangees(fichier)) {
    const std::string obtenu = obtenir(r);
    neuf += "=== " + r.titre + '\n' + r.entree + "---\n" + obtenu;
    if (!std::getenv("TOPOMINE_REECRIRE")) {
      EXPECT_EQ(obtenu, r.attendu) << r.titre << '\n' << r.entree;
      if (testing::GTEST_FLAG(fail_fast) && testing::Test::HasFailure()) return;
    }
  }
  if (std::getenv("TOPOMINE_REECRIRE")) std::ofstream(fichier, std::ios::binary) << neuf;
}
