#include "app/topodata/colonnes.h"

#include <algorithm>
#include <ostream>

namespace topomine {

void ecrire_aligne(std::ostream& out, const std::vector<std::vector<std::string>>& lignes,
                   const std::set<std::size_t>& a_gauche) {
  std::vector<std::size_t> largeurs(lignes[0].size(), 1);
  for (const auto& ligne : lignes)
    for (std::size_t i = 0; i < ligne.size(); ++i)
      largeurs[i] = std::max(largeurs[i], ligne[i].size());
  for (const auto& ligne : lignes) {
    std::string texte;
    for (std::size_t i = 0; i < ligne.size(); ++i) {
      const std::string cellule = ligne[i].empty() ? "-" : ligne[i];
      const std::string blancs(largeurs[i] - cellule.size(), ' ');
      texte += (i > 0 ? "  " : "") + (a_gauche.contains(i) ? cellule + blancs : blancs + cellule);
    }
    texte.erase(texte.find_last_not_of(' ') + 1);
    out << texte << '\n';
  }
}

}  // namespace topomine
