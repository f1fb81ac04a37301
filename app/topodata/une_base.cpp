#include "app/topodata/une_base.h"

#include <CLI/CLI.hpp>

#include "app/topodata/attributs.h"

namespace topomine {

void options_une_base(CLI::App& commande, UneBase& choix) {
  options_cible(commande, choix.cible, false);
  commande.add_option("BASE", choix.nom, "Nom de la base")->required();
}

Base charger_une_base(UneBase& choix, Progres& progres) {
  choix.nom = sans_barre(choix.nom);
  choix.cible.bases = choix.nom;
  if (choix.cible.noms() != std::vector{choix.nom})
    throw Erreur("base inconnue : '" + choix.nom + "'");
  controler(choix.cible);
  Base base(choix.nom, choix.cible.chemin, choix.cible.mode);
  charger_base(base, progres);
  return base;
}

std::size_t colonne_de(const BaseBuffer& table, const std::string& attribut,
                       const std::vector<std::string>& autres_mots) {
  std::vector<std::string> connus = autres_mots;
  for (const auto& [nom, type] : table._attr) connus.push_back(nom);
  exiger_attribut(attribut, connus);
  return static_cast<std::size_t>(table.num_attr(attribut));
}

}  // namespace topomine
