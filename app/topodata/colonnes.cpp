#include "app/topodata/colonnes.h"

#include <algorithm>
#include <ostream>

#include "app/topodata/console.h"

namespace topomine {

namespace {

/// Columns that a text takes on a terminal, letters of several bytes counted once.
std::size_t largeur(const std::string& texte) {
  if (!lecteur_en_utf8()) return texte.size();
  return static_cast<std::size_t>(
      std::ranges::count_if(texte, [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

void ecrire_aligne(std::ostream& out, std::vector<std::vector<std::string>> lignes,
                   const std::set<std::size_t>& a_gauche) {
  std::vector<std::size_t> largeurs(lignes[0].size());
  for (auto& ligne : lignes)
    for (std::size_t i = 0; i < ligne.size(); ++i) {
      ligne[i] = ligne[i].empty() ? "-" : pour_lecteur(ligne[i]);
      largeurs[i] = std::max(largeurs[i], largeur(ligne[i]));
    }
  for (const auto& ligne : lignes) {
    std::string texte;
    for (std::size_t i = 0; i < ligne.size(); ++i) {
      const std::string blancs(largeurs[i] - largeur(ligne[i]), ' ');
      texte += (i > 0 ? "  " : "") + (a_gauche.contains(i) ? ligne[i] + blancs : blancs + ligne[i]);
    }
    texte.erase(texte.find_last_not_of(' ') + 1);
    out << texte << '\n';
  }
}

}  // namespace topomine
