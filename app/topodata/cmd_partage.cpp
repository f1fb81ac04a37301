#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iterator>
#include <memory>

#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  OptionsTable table;
  double ratio = 0.0;
  long graine = 1;
  bool sans_melange = false;
  std::string prefixe;
};

/// The parts that sep_buffer would make, with the same draws, but without a copy of any row: the
/// rows are shuffled where they stand, and those of the second part move over.
void partager(BaseBuffer& table, BaseBuffer& seconde, double ratio, bool melange) {
  if (melange) table.rdm_list();
  const double n = static_cast<double>(table._expl.size()) * ratio;
  const auto k = table._expl.begin() + static_cast<std::ptrdiff_t>(n);
  seconde._attr = table._attr;
  seconde._nom = table._nom;
  seconde._num_classe = table._num_classe;
  seconde._aff = table._aff;
  seconde._expl.assign(std::make_move_iterator(k), std::make_move_iterator(table._expl.end()));
  table._expl.erase(k, table._expl.end());
}

void executer(Options& o) {
  Progres progres;
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  Atelier atelier(o.table, liste);
  BaseBuffer premiere = atelier.construire(o.cible.mode, progres), seconde;
  srand48(o.graine);
  partager(premiere, seconde, o.ratio, !o.sans_melange);
  atelier.mettre_a_l_echelle(premiere);
  atelier.appliquer_echelle(seconde);
  atelier.cacher_constantes(premiere);

  progres.ecriture(o.prefixe);
  const std::string extension(o.table.format->extension);
  Sortie sortie_1(o.prefixe + "_1" + extension);
  Sortie sortie_2(o.prefixe + "_2" + extension);
  atelier.ecrire_tout(sortie_1.flux(), premiere);
  atelier.ecrire_tout(sortie_2.flux(), seconde);
  // Neither old file goes before both new ones are whole.
  sortie_1.fermer();
  sortie_2.fermer();
  sortie_1.conclure();
  sortie_2.conclure();
}

}  // namespace

void ajouter_partage(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("partage", "Partage la table en deux fichiers");
  options_cible(*c, o->cible);
  option_avec(*c, o->cible);
  c->add_option("--ratio", o->ratio, "Part des exemples du premier fichier, de 0 a 1")
      ->required()
      ->check(reel_jusqu_a(1.0, "un nombre de 0 a 1"));
  c->add_option("-o,--sortie", o->prefixe,
                "Prefixe des fichiers : PREFIXE_1 et PREFIXE_2, suivis de .arff, .txt ou .csv")
      ->required();
  auto* graine = c->add_option("--graine", o->graine, "Graine du melange (1 par defaut)");
  c->add_flag("--sans-melange", o->sans_melange, "Garde l'ordre de la table")->excludes(graine);
  options_table(*c, o->table);
  c->footer(
      "Exemple :\n"
      "  topodata partage cas/ nrm --ratio 0.8 --graine 7 -o essai");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
