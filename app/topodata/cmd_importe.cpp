#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "app/topodata/commandes.h"
#include "app/topodata/importation.h"
#include "app/topodata/options.h"

namespace topomine {

void ajouter_importe(CLI::App& app, int&) {
  const auto o = std::make_shared<OptionsImportation>();
  CLI::App* c = app.add_subcommand("importe", "Fait un cas d'un maillage CGNS");
  c->add_option("MAILLAGE", o->maillage, "Fichier CGNS, zones structurees a trois dimensions")
      ->required();
  c->add_option("CHEMIN", o->chemin, "Dossier des cas : climite.cfg et un dossier par base")
      ->required();
  c->add_option("BASE", o->base, "Nom de la base a ecrire")->required();
  c->add_option("--mode", o->mode, "nrm (par defaut), ext, min ou toutes")
      ->check(CLI::IsMember({"nrm", "ext", "min", "toutes"}));
  c->add_option("--base-cgns", o->base_cgns, "Base du fichier CGNS, s'il en a plusieurs");
  option_reel(*c, "--tolerance",
              "Ecart permis entre noeuds raccordes, en part de la taille de la zone (1e-6)",
              o->tolerance, 1.0, "un nombre de 0 a 1");
  c->add_option("--codes", o->codes,
                "Fichier csv famille,BCCODE : remplace les BCCODE du maillage");
  c->add_option("--pieces", o->pieces,
                "Fichier csv famille,lettre : remplace les topologies C, O, H des pieces");
  c->add_flag("--force", o->force, "Remplace les fichiers d'une base qui existe");
  c->footer(
      "Une famille de climite.cfg garde son code ; une nouvelle y recoit le sien.\n"
      "Exemple :\n"
      "  topodata importe aile.cgns cas/ mesh_case_1 --mode toutes");
  c->callback([o] { importer(*o); });
}

}  // namespace topomine
