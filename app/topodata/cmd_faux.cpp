#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <optional>

#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"

namespace topomine {

namespace {

enum class Methode { repete, permute, tire };

struct Options {
  Cible cible;
  OptionsTable table;
  Methode methode = Methode::permute;
  std::optional<int> nombre;
  std::optional<double> ratio;
  long graine = 1;
  bool seuls = false;
  std::string fichier;
};

/// Calls the builder with the number or the ratio, whichever was given.
template <class Construire>
void demander(const Options& o, Construire construire_faux) {
  if (!(o.nombre ? construire_faux(*o.nombre) : construire_faux(*o.ratio))) throw std::bad_alloc();
}

/// Appends the synthetic examples to the real ones. They are moved, not copied.
void ajouter(const Options& o, BaseBuffer& table) {
  if (o.methode == Methode::repete)
    return demander(o, [&](auto n) { return table.create_fakes(n); });
  BaseBuffer faux;
  demander(o, [&](auto n) {
    return o.methode == Methode::permute ? table.create_fake_base(faux, n)
                                         : table.create_fake_base2(faux, n);
  });
  table._expl.insert(table._expl.end(), std::make_move_iterator(faux._expl.begin()),
                     std::make_move_iterator(faux._expl.end()));
}

void executer(Options& o) {
  if (!o.nombre && !o.ratio) throw CLI::RequiredError("--nombre ou --ratio");
  Progres progres;
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  Atelier atelier(o.table, liste);
  BaseBuffer table = atelier.construire(o.cible.mode, progres);
  atelier.mettre_a_l_echelle(table);
  const auto reels = static_cast<std::ptrdiff_t>(table._expl.size());
  progres.etape("exemples synthetiques");
  srand48(o.graine);
  ajouter(o, table);
  const std::ptrdiff_t faits = static_cast<std::ptrdiff_t>(table._expl.size()) - reels;
  progres.effacer();
  // Held within what a count can be: a ratio may ask for anything.
  const std::ptrdiff_t voulus =
      o.nombre ? *o.nombre
               : static_cast<std::ptrdiff_t>(std::min(*o.ratio * static_cast<double>(reels), 1e18));
  if (faits < voulus)
    dire(std::to_string(faits) + " exemples synthetiques au lieu de " + std::to_string(voulus) +
         (reels == 0 ? " : il n'y a pas d'exemple reel"
                     : " : cette methode n'en fait pas plus qu'il n'y a d'exemples reels"));
  if (o.seuls) table._expl.erase(table._expl.begin(), table._expl.begin() + reels);

  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  std::optional<Sortie> echelle;
  if (!o.table.echelle.empty()) echelle.emplace(o.table.echelle);
  atelier.cacher_constantes(table);
  atelier.ecrire_tout(sortie.flux(), table);
  sortie.fermer();
  if (echelle) {
    atelier.ecrire_echelle(echelle->flux());
    echelle->conclure();
  }
  sortie.conclure();
}

}  // namespace

void ajouter_faux(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("faux", "Ecrit les exemples reels et des exemples synthetiques");
  options_cible(*c, o->cible);
  option_avec(*c, o->cible);
  const std::map<std::string, Methode> methodes{
      {"repete", Methode::repete}, {"permute", Methode::permute}, {"tire", Methode::tire}};
  option_mot(*c, "--methode",
             "repete (le meme exemple, N fois), permute (chaque valeur sert une fois) ou tire "
             "(tirages independants)",
             methodes, o->methode)
      ->required();
  auto* par_nombre = option_entier(*c, "--nombre", "Nombre d'exemples synthetiques", o->nombre, 0,
                                   std::numeric_limits<int>::max());
  option_reel(*c, "--ratio", "Leur nombre, en part du nombre d'exemples reels", o->ratio,
              std::numeric_limits<double>::max(), "un nombre de 0 a 1.79769e+308")
      ->excludes(par_nombre);
  option_entier(*c, "--graine", "Graine des tirages (1 par defaut)", o->graine, 0, graine_max);
  c->add_flag("--seuls", o->seuls, "N'ecrit que les exemples synthetiques");
  options_table(*c, o->table);
  option_sortie(*c, o->fichier);
  c->footer(
      "Exemple :\n"
      "  topodata faux cas/ nrm --methode tire --ratio 0.5 --graine 3 -o avec_faux.arff");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
