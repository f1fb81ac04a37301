#pragma once

#include <string>
#include <vector>

#include "app/topodata/construction.h"
#include "base/base.h"

namespace topomine {

/// What a command that reads a single base is given.
struct UneBase {
  Cible cible;
  std::string nom;
};

/// Adds CHEMIN, MODE and BASE.
void options_une_base(CLI::App& commande, UneBase& choix);
/// The base, loaded; throws Erreur when it is unknown or does not load.
Base charger_une_base(UneBase& choix, Progres& progres);

/// Column of an attribute; throws Erreur for an unknown one, with the name that is nearest to it
/// among the attributes and the other words that may stand in its place.
std::size_t colonne_de(const BaseBuffer& table, const std::string& attribut,
                       const std::vector<std::string>& autres_mots);

}  // namespace topomine
