#include <CLI/CLI.hpp>
#include <memory>

#include "app/topodata/colonnes.h"
#include "app/topodata/commandes.h"
#include "app/topodata/options.h"
#include "app/topodata/sortie.h"
#include "dataset/csv.h"
#include "dataset/schema.h"

namespace topomine {

namespace {

struct Options {
  bool csv = false;
  std::string fichier;
};

void executer(const Options& o) {
  std::vector<std::vector<std::string>> lignes{{"colonne", "attribut", "type", "sens"}};
  for (const Attribut& a : schema)
    lignes.push_back({std::to_string(lignes.size()), std::string(a.nom), std::string(a.type),
                      std::string(a.sens)});
  Sortie sortie(o.fichier);
  if (o.csv)
    for (const auto& ligne : lignes) ecrire_ligne_csv(sortie.flux(), ligne);
  else
    ecrire_aligne(sortie.flux(), lignes, {1, 2, 3});
  sortie.conclure();
}

}  // namespace

void ajouter_attributs(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("attributs", "Dit les attributs de la table et leur sens");
  c->add_flag("--csv", o->csv, "En CSV, pour un programme");
  option_sortie(*c, o->fichier);
  c->footer(
      "colonne : leur place dans la table, et leur ligne et leur cellule dans global.cov.\n"
      "Exemple :\n"
      "  topodata attributs");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
