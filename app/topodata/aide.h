#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "topomine/version.h"

namespace CLI {
class App;
}

namespace topomine {

/// What --version says.
inline constexpr const char* version = "topodata " TOPOMINE_VERSION;

/// Columns to write help in: what COLUMNS says, else the terminal, else 80; never under 40.
std::size_t largeur_aide();

/// The text with its long lines broken between words, the rest of each under its beginning: under
/// the description where an option's line has one.
std::string replier(const std::string& texte, std::size_t largeur);

/// The layout of the help. Call before the commands are added: they take it over.
void mettre_en_page(CLI::App& app);
/// --version for each command, and what its options' values are called. Call after the commands are
/// added.
void completer_commandes(CLI::App& app);

/// The command line with `help COMMANDE` written as `COMMANDE --help`.
std::vector<std::string> developper_help(std::vector<std::string> mots);

}  // namespace topomine
