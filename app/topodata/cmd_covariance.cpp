#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>

#include "app/topodata/carte.h"
#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"
#include "dataset/csv.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  OptionsTable table;
  bool brut = false;
  std::string fichier, image;
};

/// A cell as in the run's own matrix: five significant digits.
std::string cellule(double c) {
  if (c == -1.0) return "NaN";
  std::array<char, 32> tampon;
  const auto fin =
      std::to_chars(tampon.data(), tampon.data() + tampon.size(), c, std::chars_format::general, 5);
  return {tampon.data(), fin.ptr};
}

Matrice calculer(const BaseBuffer& table, Progres& progres) {
  Matrice m;
  std::vector<int> colonnes;
  for (std::size_t i = 0; i < table._attr.size(); ++i) {
    if (!table._aff.at(table._attr[i].first)) continue;
    colonnes.push_back(static_cast<int>(i));
    m.noms.push_back(table._attr[i].first);
  }
  const std::size_t n = colonnes.size();
  m.cellules.resize(n * n);
  for (std::size_t a = 0; a < n; ++a) {
    progres.etape("covariance : ligne " + std::to_string(a + 1) + " sur " + std::to_string(n));
    for (std::size_t b = a; b < n; ++b)
      m.cellules[a * n + b] = m.cellules[b * n + a] =
          cellule(table.covar(colonnes[a], colonnes[b]));
  }
  return m;
}

void ecrire_matrice(std::ostream& out, const Matrice& m) {
  std::vector<std::string> ligne{"attribut"};
  ligne.insert(ligne.end(), m.noms.begin(), m.noms.end());
  ecrire_ligne_csv(out, ligne);
  for (std::size_t a = 0; a < m.noms.size(); ++a) {
    ligne.assign(1, m.noms[a]);
    const auto debut = m.cellules.begin() + static_cast<std::ptrdiff_t>(a * m.noms.size());
    ligne.insert(ligne.end(), debut, debut + static_cast<std::ptrdiff_t>(m.noms.size()));
    ecrire_ligne_csv(out, ligne);
  }
}

void executer(Options& o) {
  if (!o.image.empty()) controler_nom_image(o.image);
  if (std::error_code e; !o.image.empty() && (o.image == o.fichier ||
                                              std::filesystem::equivalent(o.image, o.fichier, e)))
    throw Erreur("'" + o.image + "' : ni la matrice ni l'image n'ont la place de l'autre");
  Progres progres;
  o.table.format = Format::csv;
  o.table.normalise = !o.brut;
  const BaseBuffer table = construire(o.cible, o.table, progres);
  const Matrice m = calculer(table, progres);

  if (!o.image.empty()) {
    progres.etape("dessin");
    dessiner_carte(m,
                   {"Covariance non centree des attributs, " + std::to_string(table.nb_expl()) +
                        " exemples (gris : attribut non numerique)",
                    "moyenne des produits"},
                   o.image);
    if (o.fichier.empty()) return;
  }
  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  ecrire_matrice(sortie.flux(), m);
  sortie.conclure();
}

}  // namespace

void ajouter_covariance(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("covariance", "Ecrit ou dessine la matrice de covariance");
  options_cible(*c, o->cible);
  options_attributs(*c, o->table);
  c->add_flag("--brut", o->brut, "Ne ramene pas les attributs entre 0 et 1 d'abord");
  option_sortie(*c, o->fichier);
  option_fichier(*c, "--image", "Image .png ou .svg a dessiner, au lieu du csv sans -o", o->image);
  c->footer(
      "Les moyennes ne sont pas retranchees, comme dans global.cov.\n"
      "Exemple :\n"
      "  topodata covariance cas/ nrm -o covariance.csv --image covariance.png");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
