#include <CLI/CLI.hpp>
#include <memory>

#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/options.h"
#include "app/topodata/une_base.h"
#include "vtk/ecriture.h"

namespace topomine {

namespace {

struct Options {
  UneBase base;
  std::string fichier;
  bool faces = false, aretes = false;
};

void executer(Options& o) {
  const FormatVtk* format = format_vtk(o.fichier);
  if (!format) throw Erreur("'" + o.fichier + "' : un export se nomme .vtu ou .vtk");
  Progres progres;
  Base base = charger_une_base(o.base, progres);
  progres.etape("export");
  const Grille grille =
      o.faces || o.aretes ? grille_bords(base, o.faces, o.aretes) : grille_blocs(base);
  progres.effacer();
  if (grille.cellules.empty())
    throw Erreur("rien a exporter dans " + base.nom +
                 (grille.manques.empty() ? "" : " : " + grille.manques[0]));
  for (const std::string& manque : grille.manques) dire(manque);
  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  format->ecrire(sortie.flux(), grille);
  sortie.conclure();
}

}  // namespace

void ajouter_exporte(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("exporte", "Ecrit une base pour ParaView et autres (VTK)");
  options_une_base(*c, o->base);
  option_fichier(*c, "-o,--sortie", "Fichier .vtu (XML) ou .vtk (texte) a ecrire", o->fichier)
      ->required();
  c->add_flag("--faces", o->faces, "Les faces, avec codes et familles, au lieu des blocs");
  c->add_flag("--aretes", o->aretes, "Les edges, avec codes et familles, au lieu des blocs");
  c->footer(
      "Un hexaedre par bloc, avec son numero et ses attributs numeriques de la table ; ce qui\n"
      "est replie garde ses huit points, dont certains se repetent. --faces --aretes : les deux.\n"
      "Exemple :\n"
      "  topodata exporte cas/ nrm mesh_case_2 -o mesh_case_2.vtu");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
