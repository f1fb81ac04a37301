#include <CLI/CLI.hpp>
#include <cstdlib>
#include <memory>
#include <optional>

#include "app/topodata/commandes.h"
#include "app/topodata/options.h"
#include "app/topodata/parts.h"

namespace topomine {

namespace {

void lire_plis(const std::string& texte, OptionsPartage& o) {
  if (texte == "bases") {
    o.un_pli_par_base = true;
    return;
  }
  o.plis = entier_strict(texte).value_or(0);
  if (*o.plis < 2)
    throw Erreur("--plis : '" + texte + "' (attendu : un entier de 2 a 2147483647, ou bases)");
}

}  // namespace

void ajouter_partage(CLI::App& app, int&) {
  const auto o = std::make_shared<OptionsPartage>();
  CLI::App* c =
      app.add_subcommand("partage", "Partage la table en deux parties : apprentissage et essai");
  options_cible(*c, o->cible);
  option_avec(*c, o->cible);
  option_reel(*c, "--ratio", "Part des exemples de la premiere partie, entre 0 et 1", o->ratio, 1.0,
              "un nombre de 0 a 1");
  c->add_flag("--par-base", o->par_base,
              "Garde chaque base entiere d'un cote : les blocs d'une base se connaissent, un essai "
              "sur des bases vues trompe");
  c->add_option("--stratifie", o->stratifie,
                "Garde les proportions de cet attribut nominal (TypeC, type...)");
  c->add_option_function<std::string>(
      "--plis", [o](const std::string& texte) { lire_plis(texte, *o); },
      "Au lieu de --ratio : K paires, dont chaque exemple est une fois a l'essai ; bases : une "
      "paire par base, elle seule a l'essai");
  option_fichier(
      *c, "-o,--sortie",
      "Prefixe des fichiers : PREFIXE_1 (apprentissage) et PREFIXE_2 (essai), suivis de " +
          extensions_des_formats() + " ; avec --plis, PREFIXE_pli1_1, PREFIXE_pli1_2...",
      o->prefixe)
      ->required();
  option_entier(*c, "--graine", "Graine du melange et des choix (1 par defaut)", o->graine, 0,
                graine_max);
  c->add_flag("--melange", o->melange, "Melange les exemples ; c'est le cas sans --sans-melange");
  c->add_flag("--sans-melange", o->sans_melange, "Garde l'ordre de la table");
  options_table(*c, o->table);
  c->footer(
      "L'echelle de --normalise et ce que cache --sans-constantes viennent de la premiere partie.\n"
      "Exemples :\n"
      "  topodata partage cas/ nrm --ratio 0.75 --par-base --classe TypeC -o essai\n"
      "  topodata partage cas/ nrm --plis bases --classe TypeC -o essai");
  c->callback([o] { partager(*o); });
}

}  // namespace topomine
