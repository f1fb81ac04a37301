#include <CLI/CLI.hpp>
#include <cstdlib>
#include <memory>
#include <optional>

#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  OptionsTable table;
  std::optional<long> melange;
  std::string fichier;
};

void executer(Options& o) {
  Progres progres;
  BaseBuffer table = construire(o.cible, o.table, progres);
  if (o.melange) {
    srand48(*o.melange);
    table.rdm_list();
  }
  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  ecrire(table, o.table.format, sortie.flux());
  sortie.conclure();
}

}  // namespace

void ajouter_table(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("table", "Ecrit la table : un exemple par bloc");
  options_cible(*c, o->cible);
  options_table(*c, o->table);
  option_entier(*c, "--melange", "Melange les exemples, avec cette graine", o->melange, 0,
                graine_max);
  option_sortie(*c, o->fichier);
  c->footer(
      "Weka et torch terminent chaque exemple par Classe, meme cachee ; csv n'ecrit que ce qui "
      "est\n"
      "montre.\n"
      "Exemple :\n"
      "  topodata table cas/ nrm --normalise --format csv --cache base,ident -o table.csv");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
