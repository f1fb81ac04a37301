#include "app/topodata/commandes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "app/topodata/aide.h"
#include "app/topodata/completion.h"
#include "app/topodata/console.h"
#include "app/topodata/sortie.h"
#include "app/topodata/usage.h"
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
    ajouter_dessine,
    ajouter_importe,
    ajouter_verifie,
});

/// What a command line that is not understood ends with; the answer of --help and --version.
int finir(const CLI::App& app, const CLI::ParseError& e) {
  if (e.get_exit_code() != 0) {
    const auto nommees = app.get_subcommands();
    dire(en_francais(app, e));
    std::cerr << pour_lecteur("topodata " + (nommees.empty() ? "" : nommees[0]->get_name() + " ") +
                              "--help dit comment ecrire cette commande")
              << '\n';
    return e.get_exit_code();
  }
  lister([&](std::ostream& listing) { app.exit(e, listing); });
  return 0;
}

int executer(const std::vector<std::string>& mots) {
  CLI::App app("Table d'exemples, verification et exploration de cas de maillages multi-blocs.",
               "topodata");
  mettre_en_page(app);
  franciser(app);
  app.set_version_flag("--version", version, "Affiche la version");
  app.require_subcommand(1);
  app.footer("topodata COMMANDE --help detaille une commande et donne un exemple.");
  int statut = 0;
  for (const AjouterCommande ajouter : commandes) ajouter(app, statut);
  app.add_subcommand("help", "Affiche l'aide d'une commande")
      ->add_option("COMMANDE", "Nom de la commande");
  for (CLI::App* commande : app.get_subcommands({})) {
    commande->group("Commandes");
    sans_valeur_aux_drapeaux(*commande);
  }
  completer_commandes(app);
  if (mots.size() > 1 && mots[1] == "__completer") {
    Sortie sortie("");
    proposer(app, {mots.begin() + 2, mots.end()}, sortie.flux());
    sortie.conclure();
    return 0;
  }
  try {
    // The parser would only say that a command is missing.
    const auto nomme = [&](const CLI::App* commande) { return commande->check_name(mots[1]); };
    if (mots.size() > 1 && !mots[1].starts_with('-') &&
        std::ranges::none_of(app.get_subcommands({}), nomme))
      throw CLI::ExtrasError("commande inconnue : '" + mots[1] + "'", CLI::ExitCodes::ExtrasError);
    // The parser takes the words from the last to the first, without the program's name.
    app.parse(std::vector<std::string>(mots.rbegin(), mots.rend() - 1));
  } catch (const CLI::ParseError& e) {
    return finir(app, e);
  }
  return statut;
}

}  // namespace

int executer_topodata(int argc, char** argv) {
  try {
    return executer(developper_help({argv, argv + argc}));
  } catch (const Erreur& e) {
    dire(e.what());
  } catch (const std::bad_alloc&) {
    dire("memoire insuffisante");
  } catch (const std::exception& e) {
    dire(e.what());
  }
  return echec;
}

}  // namespace topomine
