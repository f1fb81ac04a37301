#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "app/topodata/dessin_cas.h"
#include "app/topodata/sortie.h"
#include "base/lecture/chargement.h"
#include "tests/support/cas.h"
#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

Base sample(const Collection& c, const std::string& nom) {
  Base base(nom, c.cas(), "nrm");
  if (!charger(base).fait) std::abort();
  return base;
}

/// How many of the script's data lines lie outside the picture, but for the point that goes with a
/// legend; "nan" and "inf" do.
int hors_image(const std::string& script) {
  std::istringstream flux(script);
  int n = script.find("nan") != std::string::npos || script.find("inf") != std::string::npos;
  for (std::string l; std::getline(flux, l);) {
    std::istringstream champs(l);
    if (double x, y; champs >> x >> y && x != -99) n += x < 0 || x > 1000 || y < 0 || y > 720;
  }
  return n;
}

}  // namespace

TEST(Scene, HasTheEdgesOfTheBlocksAndTheWalls) {
  const Collection c;
  Base base = sample(c, "mesh_case_2");
  const auto de_type_C =
      std::ranges::count_if(base.blocs, [](const auto& paire) { return paire.second._typeC(); });
  ASSERT_GT(de_type_C, 0);
  const Scene scene = scene_de(base, "TypeC");
  const std::size_t contours = 4 * scene.parois.size();
  EXPECT_EQ(scene.traits.size(), 12 * base.blocs.size() + contours);
  EXPECT_EQ(std::ranges::count_if(scene.traits, &Trait::fort), 12 * de_type_C);

  // Each wall of the case, and no other face, in the colour of its own family.
  const Scene familles = scene_de(base, "famille");
  const auto murs = std::ranges::count_if(base.faces, [&](const auto& paire) {
    const Face& f = paire.second;
    return f.nb_BC() > 0 && base._CL(f._BC(0), "BCCODE") == "1";
  });
  EXPECT_EQ(static_cast<long>(familles.parois.size()), murs);
  EXPECT_EQ(familles.traits.size(), base.edges.size());
  ASSERT_FALSE(familles.legende.noms.empty());
  EXPECT_TRUE(familles.legende.noms[0].nom.starts_with("paroi_"));

  // The best and the worst block have the two ends of the scale.
  const Scene qualite = scene_de(base, "erikson");
  ASSERT_TRUE(qualite.legende.echelle);
  const auto a_la_couleur = [&](const Couleur& couleur) {
    return std::ranges::count(qualite.traits, couleur, &Trait::couleur);
  };
  EXPECT_GE(a_la_couleur(palette.front()), 12);
  EXPECT_GE(a_la_couleur(palette.back()), 12);

  EXPECT_THROW(scene_de(base, "couleur"), Erreur);
  EXPECT_THROW(scene_de(base, "base"), Erreur);
}

TEST(Dessin, StaysWithinThePictureWhateverTheShape) {
  std::vector<Base> bases;
  for (const double echelle : {1.0, 0.0, 1e-320, 1e307}) {  // a point, and all but infinite too
    bases.push_back(grille("boite", {2, 1, 1}).base);
    for (auto& [numero, v] : bases.back().vrtxs)
      v.set_pos(echelle * v._posX(), echelle * v._posY(), echelle * v._posZ());
    bases.back().make_link();
  }
  bases.push_back(grille("plat", {2, 2, 1}).base);
  for (auto& [numero, v] : bases.back().vrtxs) v._posZ(7);
  for (Base& base : bases)
    for (const std::optional<Vue>& vue :
         {std::optional<Vue>{}, {Vue{0, 90}}, {Vue{360, -90}}, {Vue{-33.5, 0}}})
      EXPECT_EQ(hors_image(script_dessin(scene_de(base, "famille"), vue, true)), 0);
}

// Many lines are thin ones, and less cut into parts.
TEST(Dessin, KeepsManyLinesAndWallsApart) {
  const struct {
    std::size_t traits, parts;
    double epaisseur;
  } rangees[]{{1, 8, 1.8},    {2500, 8, 1.8},  {2501, 7, 1.1},  {10000, 2, 1.1},
              {6667, 2, 1.1}, {10001, 1, 0.7}, {60000, 1, 0.7}, {60001, 1, 0.4}};
  for (const auto& r : rangees) {
    Scene scene;
    scene.traits.assign(r.traits, Trait{{0, 0, 0}, {1, 1, 1}, {}, false});
    const Tableau tableau = peindre(scene, {});
    EXPECT_EQ(tableau.touches.size(), r.traits * r.parts);
    EXPECT_EQ(tableau.touches[0].epaisseur, r.epaisseur) << r.traits;
    scene.traits[0].fort = true;
    EXPECT_EQ(std::ranges::max(peindre(scene, {}).touches, {}, &Touche::epaisseur).epaisseur,
              1.5 * r.epaisseur);
  }
  for (const auto& [parois, parts] :
       {std::pair<std::size_t, std::size_t>{1, 400}, {15, 400}, {100, 49}, {7000, 1}}) {
    Scene scene;
    scene.parois.resize(parois);
    EXPECT_EQ(peindre(scene, {}).touches.size(), parois * parts);
  }
}

TEST(Dessine, DrawsOrSaysInOneLineWhyNot) {
  const Collection c;
  const std::string png = (c.dossier / "a.png").string(), svg = (c.dossier / "a.svg").string();
  const auto dessine = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"dessine", c.cas(), "nrm", "mesh_case_2"});
    return topodata(options);
  };
  const std::pair<std::vector<std::string>, std::string> refus[]{
      {{"-o", "a.gif"}, "topodata : 'a.gif' : "},
      {{"-o", png, "--par", "famile"}, "topodata : attribut inconnu : 'famile'"},
      {{"-o", png, "--par", "base"}, "topodata : l'attribut 'base' n'est pas un nombre"},
      {{"-o", png, "--vue", "12"}, "topodata : vue inconnue : '12'"},
      {{"-o", png, "--vue", "12,x"}, "topodata : vue inconnue : '12,x'"},
      {{"-o", png, "--vue", "12,91"}, "topodata : vue inconnue : '12,91'"},
  };
  for (const auto& [options, dit] : refus) {
    const Resultat r = dessine(options);
    EXPECT_EQ(r.statut, 2);
    EXPECT_TRUE(r.erreur.starts_with(dit)) << r.erreur;
    EXPECT_EQ(std::ranges::count(r.erreur, '\n'), 1) << r.erreur;
  }
  EXPECT_FALSE(std::filesystem::exists(png));
  if (std::system("command -v gnuplot > /dev/null") != 0) GTEST_SKIP() << "gnuplot is missing";
  for (const char* par : {"erikson", "famille", "TypeC", "Classe"}) {
    const Resultat r = dessine({"-o", png, "--par", par, "--vue=-60,30"});
    EXPECT_EQ(r.sortie + r.erreur, "");
    EXPECT_TRUE(lire(png).starts_with("\x89PNG"));
  }
  EXPECT_EQ(dessine({"-o", svg, "--par", "famille"}).statut, 0);
  EXPECT_NE(lire(svg).find("paroi_aile"), std::string::npos);
}
