#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string_view>
#include <system_error>

#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/gnuplot.h"
#include "dataset/csv.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  OptionsTable table;
  bool brut = false;
  std::string fichier, image;
};

/// A square of texts, "NaN" where a column is not numeric, with the names of its rows and columns.
struct Matrice {
  std::vector<std::string> noms, cellules;
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

/// The names, quoted, as tics of one axis.
std::string graduations(const Matrice& m) {
  std::string texte = "(";
  for (std::size_t i = 0; i < m.noms.size(); ++i)
    texte += (i > 0 ? ", '" : "'") + m.noms[i] + "' " + std::to_string(i);
  return texte + ")";
}

/// Cells that are all alike leave gnuplot no scale: they get one.
std::string echelle(const Matrice& m) {
  const std::string* premiere = nullptr;
  for (const std::string& c : m.cellules) {
    if (!est_un_reel(c)) continue;
    if (!premiere) premiere = &c;
    if (c != *premiere) return {};
  }
  if (!premiere) throw Erreur("aucun attribut numerique a dessiner");
  return "set cbrange [" + *premiere + "-1:" + *premiere + "+1]\n";
}

/// A heat map: a square of 26 pixels per cell, and margins for the longest name and the scale.
/// Cells without a number stay grey. Most mean products are small: the colours follow their root.
std::string script_gnuplot(const Matrice& m, bool svg, const std::string& titre) {
  constexpr std::size_t pas = 26, gauche = 200, bas = 200, droite = 190, haut = 60;
  const std::size_t n = m.noms.size();
  const std::size_t largeur = pas * n + gauche + droite, hauteur = pas * n + bas + haut;
  const auto part = [](std::size_t a, std::size_t b) {
    return en_texte(static_cast<double>(a) / static_cast<double>(b)) + "\n";
  };
  const std::string fin = std::to_string(n - 1) + ".5", noms = graduations(m);
  std::string s = "$m << FIN\n";
  for (std::size_t a = 0; a < n; ++a)
    for (std::size_t b = 0; b < n; ++b) s += m.cellules[a * n + b] + (b + 1 < n ? ' ' : '\n');
  s += "FIN\nset terminal " + std::string(svg ? "svg" : "pngcairo") + " size " +
       std::to_string(largeur) + "," + std::to_string(hauteur) +
       " font 'DejaVu Sans,11' background rgb 'white'\n";
  s += "set lmargin at screen " + part(gauche, largeur);
  s += "set rmargin at screen " + part(largeur - droite, largeur);
  s += "set bmargin at screen " + part(bas, hauteur);
  s += "set tmargin at screen " + part(hauteur - haut, hauteur);
  s += "set title '" + titre + "' noenhanced\n";
  s += "set xtics rotate by 90 right noenhanced scale 0 " + noms + "\n";
  s += "set ytics noenhanced scale 0 " + noms + "\n";
  s += "set xrange [-0.5:" + fin + "]\nset yrange [" + fin + ":-0.5]\n";
  s += "set palette defined (0 '#fff7ec', 1 '#fdd49e', 4 '#fc8d59', 9 '#d7301f', 16 '#4a0000')\n"
       "set object 1 rectangle from graph 0,0 to graph 1,1 fillcolor rgb '#d8d8d8' behind\n"
       "set cblabel 'moyenne des produits'\n" +
       echelle(m) + "plot $m matrix using 1:2:3 with image pixels notitle\n";
  return s;
}

void executer(Options& o) {
  const bool svg = o.image.ends_with(".svg");
  if (!o.image.empty() && !svg && !o.image.ends_with(".png"))
    throw Erreur("'" + o.image + "' : une image se nomme .png ou .svg");
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
    Sortie image(o.image);
    dessiner(
        script_gnuplot(m, svg,
                       "Covariance non centree des attributs, " + std::to_string(table.nb_expl()) +
                           " exemples (gris : attribut non numerique)"),
        image.fichier());
    image.conclure();
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
  c->add_option("-o,--sortie", o->fichier, "Fichier csv a ecrire (sinon la sortie standard)");
  c->add_option("--image", o->image, "Image .png ou .svg a dessiner, au lieu du csv sans -o");
  c->footer(
      "Les moyennes ne sont pas retranchees, comme dans global.cov.\n"
      "Exemple :\n"
      "  topodata covariance cas/ nrm -o covariance.csv --image covariance.png");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
