#include "app/topodata/commandes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "app/topodata/sortie.h"
#include "topomine/version.h"

namespace topomine {

namespace {

constexpr int echec = 2;

/// Every command, in the order of the help.
constexpr auto commandes = std::to_array<AjouterCommande>({
    ajouter_table,
    ajouter_partage,
    ajouter_faux,
    ajouter_attributs,
    ajouter_resume,
    ajouter_covariance,
    ajouter_voir,
    ajouter_exporte,
    ajouter_verifie,
});

void franciser(CLI::App& app) {
  app.set_help_flag("-h,--help", "Affiche cette aide");
  auto& mots = *app.get_formatter();
  for (const auto& [mot, traduit] : {std::pair{"Usage", "Usage"},
                                     {"Positionals", "Arguments"},
                                     {"Options", "Options"},
                                     {"OPTIONS", "OPTIONS"},
                                     {"Subcommands", "Commandes"},
                                     {"SUBCOMMAND", "COMMANDE"},
                                     {"SUBCOMMANDS", "COMMANDES"},
                                     {"REQUIRED", "OBLIGATOIRE"},
                                     {"Excludes", "Exclut"},
                                     {"Needs", "Demande"},
                                     {"TEXT", "TEXTE"},
                                     {"FLOAT", "REEL"},
                                     {"INT", "ENTIER"},
                                     {"UINT", "ENTIER"}})
    mots.label(mot, traduit);
}

int executer(int argc, char** argv) {
  CLI::App app("Table d'exemples, verification et exploration de cas de maillages multi-blocs.",
               "topodata");
  franciser(app);
  app.set_version_flag("--version", "topodata " TOPOMINE_VERSION, "Affiche la version");
  app.require_subcommand(1);
  app.footer("topodata COMMANDE --help detaille une commande et donne un exemple.");
  int statut = 0;
  for (const AjouterCommande ajouter : commandes) ajouter(app, statut);
  for (CLI::App* commande : app.get_subcommands({})) commande->group("Commandes");
  try {
    // The parser would only say that a command is missing.
    const auto nomme = [&](const CLI::App* commande) { return commande->check_name(argv[1]); };
    if (argc > 1 && argv[1][0] != '-' && std::ranges::none_of(app.get_subcommands({}), nomme))
      throw CLI::ExtrasError("commande inconnue : '" + std::string(argv[1]) + "'",
                             CLI::ExitCodes::ExtrasError);
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  }
  return statut;
}

}  // namespace

int executer_topodata(int argc, char** argv) {
  try {
    return executer(argc, argv);
  } catch (const Erreur& e) {
    std::cerr << "topodata : " << e.what() << std::endl;
  } catch (const std::bad_alloc&) {
    std::cerr << "topodata : memoire insuffisante" << std::endl;
  } catch (const std::exception& e) {
    std::cerr << "topodata : " << e.what() << std::endl;
  }
  return echec;
}

}  // namespace topomine
