#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>

#include "app/topodata/carte.h"
#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/dessin_cas.h"
#include "app/topodata/gnuplot.h"
#include "app/topodata/options.h"
#include "app/topodata/une_base.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

struct Options {
  UneBase base;
  std::string image, par = "erikson";
  std::optional<std::string> vue;
};

/// "azimuth,elevation", in degrees.
Vue lire_vue(const std::string& texte) {
  const std::size_t virgule = texte.find(',');
  if (virgule != std::string::npos) {
    const auto az = reel_strict(texte.substr(0, virgule));
    const auto el = reel_strict(texte.substr(virgule + 1));
    if (az && el && std::abs(*az) <= 360 && std::abs(*el) <= 90) return {*az, *el};
  }
  throw Erreur("vue inconnue : '" + texte +
               "' (attendu : azimut,elevation en degres, de -360 a 360 et de -90 a 90)");
}

void executer(Options& o) {
  controler_nom_image(o.image);
  std::optional<Vue> vue;
  if (o.vue) vue = lire_vue(*o.vue);
  Progres progres;
  Base base = charger_une_base(o.base, progres);
  progres.etape("dessin");
  const Scene scene = scene_de(base, o.par);
  Sortie image(o.image);
  image.flux() << dessiner(script_dessin(scene, vue, est_svg(o.image)));
  image.conclure();
  progres.effacer();
  for (const std::string& manque : scene.manques) dire(manque);
}

}  // namespace

void ajouter_dessine(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("dessine", "Dessine les blocs d'une base en perspective");
  options_une_base(*c, o->base);
  option_fichier(*c, "-o,--sortie", "Image .png ou .svg a dessiner", o->image)->required();
  c->add_option("--par", o->par,
                "Ce que disent les couleurs : famille, TypeC ou un attribut numerique de la table "
                "(erikson par defaut)");
  c->add_option("--vue", o->vue,
                "Place de l'oeil en degres, azimut,elevation (sinon selon la forme du cas)")
      ->type_name("A,E");
  c->footer(
      "Les parois (BCCODE 1, familles des pieces) sont pleines ; celles qui cacheraient leurs\n"
      "blocs sont de verre.\n"
      "Exemple :\n"
      "  topodata dessine cas/ nrm mesh_case_2 --par TypeC --vue=-60,30 -o mesh_case_2.png");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
