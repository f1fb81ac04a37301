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
  bool melange = false;
  std::optional<long> graine;
  std::string fichier;
};

/// Each base's rows go out as soon as it is read: the table as a whole is never in memory.
void ecrire_au_fil(const Options& o, const Atelier& atelier, const std::vector<Provenance>& liste,
                   Progres& progres, std::ostream& out) {
  BaseBuffer exemples;
  BaseBuffer habille = atelier.habiller(exemples);
  atelier.ecrire(out, habille, Morceau{.premier = true, .dernier = false});
  pour_chaque_base(liste, o.cible.mode, progres, [&](Base& base, const Provenance& p) {
    BaseBuffer de_la_base;
    atelier.ajouter(de_la_base, base, p);
    atelier.appliquer_echelle(de_la_base);
    habille = atelier.habiller(de_la_base);
    progres.ecriture(o.fichier);
    atelier.ecrire(out, habille, Morceau{.premier = false, .dernier = false});
  });
  habille._expl.clear();
  atelier.ecrire(out, habille, Morceau{.premier = false, .dernier = true});
}

void executer(Options& o) {
  if (o.graine && !o.melange) throw Erreur("--graine demande --melange");
  Progres progres;
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  Atelier atelier(o.table, liste);
  Sortie sortie(o.fichier);
  if (atelier.au_fil() && !o.melange) {
    ecrire_au_fil(o, atelier, liste, progres, sortie.flux());
    return sortie.conclure();
  }

  std::optional<Sortie> echelle;
  if (!o.table.echelle.empty()) echelle.emplace(o.table.echelle);
  BaseBuffer exemples = atelier.construire(o.cible.mode, progres);
  progres.etape("mise en forme");
  atelier.mettre_a_l_echelle(exemples);
  atelier.cacher_constantes(exemples);
  if (o.melange) {
    srand48(o.graine.value_or(1));
    exemples.rdm_list();
  }
  progres.ecriture(o.fichier);
  atelier.ecrire_tout(sortie.flux(), exemples);
  sortie.fermer();
  if (echelle) {
    atelier.ecrire_echelle(echelle->flux());
    echelle->conclure();
  }
  sortie.conclure();
}

}  // namespace

void ajouter_table(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("table", "Ecrit la table : un exemple par bloc");
  options_cible(*c, o->cible);
  option_avec(*c, o->cible);
  options_table(*c, o->table);
  c->add_flag("--melange", o->melange, "Melange les exemples");
  option_entier(*c, "--graine", "Graine du melange (1 par defaut)", o->graine, 0, graine_max);
  option_sortie(*c, o->fichier);
  c->footer(regle_de_la_classe() +
            "\nExemples :\n"
            "  topodata table cas/ nrm --format csv -o table.csv\n"
            "  topodata table cas/ nrm --avec autres/ --bases toutes --classe TypeC -o blocs.arff");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
