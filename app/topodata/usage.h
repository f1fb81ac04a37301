#pragma once

#include <string>

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace topomine {

/// The option parser's own words (headings of the help, types of values) in French.
void franciser(CLI::App& app);

/// Refuses a value after a flag (--csv=3).
void sans_valeur_aux_drapeaux(CLI::App& commande);

/// What it says about a command line that it has not understood, in French.
std::string en_francais(const CLI::App& app, const CLI::Error& erreur);

}  // namespace topomine
