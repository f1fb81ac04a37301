#include "app/topodata/carte.h"

#include <strings.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <ostream>
#include <string_view>

#include "app/topodata/gnuplot.h"
#include "app/topodata/sortie.h"
#include "texte/affichable.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

bool finit_par(const std::string& nom, std::string_view fin) {
  return nom.size() >= fin.size() &&
         strcasecmp(nom.c_str() + nom.size() - fin.size(), fin.data()) == 0;
}

/// A text between quotes, as gnuplot reads it.
std::string cite(const std::string& texte) {
  std::string s = "'";
  for (const char c : affichable(texte)) s += c == '\'' ? std::string("''") : std::string(1, c);
  return s + "'";
}

/// What the cells hold, and what the colours make of it.
struct Valeurs {
  std::vector<std::optional<double>> cellules;  // nothing for what is no number
  std::optional<double> min, max;
  double plus_petite = INFINITY;  // magnitude other than 0
  bool constante() const { return *min == *max; }
  double grandeur() const { return std::max(std::abs(*min), std::abs(*max)); }
};

Valeurs lire_valeurs(const Matrice& m) {
  Valeurs v;
  for (const std::string& cellule : m.cellules) {
    const auto lue = reel_strict(cellule);
    v.cellules.push_back(lue);
    if (!lue) continue;
    v.min = std::min(v.min.value_or(*lue), *lue);
    v.max = std::max(v.max.value_or(*lue), *lue);
    if (*lue != 0) v.plus_petite = std::min(v.plus_petite, std::abs(*lue));
  }
  if (!v.min) throw Erreur("aucun attribut numerique a dessiner");
  return v;
}

/// Colours and their range. Most mean products are small: the colours follow their root. Values of
/// both signs have a colour each.
std::string palette(const Valeurs& v, bool logarithme) {
  if (v.constante()) return "set palette defined (0 '#fc8d59', 1 '#fc8d59')\nunset colorbox\n";
  const std::string max = en_texte(v.grandeur());
  if (logarithme) {
    constexpr double part_min = 1e-12;  // smaller ones are as good as 0
    double min = std::max(v.plus_petite, v.grandeur() * part_min);
    if (min == v.grandeur()) min /= 10;
    return "set palette defined (0 '#fff7ec', 1 '#fdd49e', 2 '#fc8d59', 3 '#d7301f', 4 "
           "'#4a0000')\nset logscale cb\nset cbrange [" +
           en_texte(min) + ":" + max + "]\n";
  }
  if (*v.min < 0)
    return "set palette defined (-2 '#08306b', -1 '#6baed6', 0 '#ffffff', 1 '#fc8d59', 2 "
           "'#4a0000')\nset cbrange [-" +
           max + ":" + max + "]\n";
  return "set palette defined (0 '#fff7ec', 1 '#fdd49e', 4 '#fc8d59', 9 '#d7301f', 16 "
         "'#4a0000')\nset cbrange [0:" +
         max + "]\n";
}

/// Breaks a text between words into lines of so many characters.
std::vector<std::string> lignes(const std::string& texte, std::size_t largeur) {
  std::vector<std::string> faites(1);
  for (std::size_t debut = 0; debut < texte.size();) {
    const std::size_t fin = std::min(texte.find(' ', debut), texte.size());
    const std::string mot = texte.substr(debut, fin - debut);
    if (!faites.back().empty() && faites.back().size() + 1 + mot.size() > largeur)
      faites.emplace_back();
    faites.back() += (faites.back().empty() ? "" : " ") + mot;
    debut = fin + 1;
  }
  return faites;
}

/// Where everything stands, in pixels.
struct Plan {
  static constexpr std::size_t caractere = 8, lettre = 9, ligne = 20, droite = 150;
  std::size_t grille, noms, haut, largeur, hauteur;
  std::vector<std::string> titre;

  Plan(const Matrice& m, const std::string& texte) {
    const std::size_t n = m.noms.size();
    std::size_t plus_long = 0;
    for (const std::string& nom : m.noms) plus_long = std::max(plus_long, nom.size());
    grille = n * std::max<std::size_t>(26, 200 / n);
    noms = plus_long * lettre + 24;
    largeur = noms + grille + droite;
    titre = lignes(texte, largeur / caractere - 2);
    haut = ligne * (titre.size() + 1);
    hauteur = haut + grille + noms;
  }
  std::string x(std::size_t pixels) const { return part(pixels, largeur); }
  std::string y(std::size_t pixels) const { return part(hauteur - pixels, hauteur); }
  static std::string part(std::size_t a, std::size_t b) {
    return en_texte(static_cast<double>(a) / static_cast<double>(b));
  }
};

std::string dire(const Valeurs& v, const Legende& legende) {
  std::string texte = legende.titre + " ; ";
  if (v.constante()) return texte + legende.couleurs + " : partout " + en_texte(*v.min);
  texte += "couleur : " + legende.couleurs;
  if (legende.logarithme) texte += ", echelle logarithmique";
  if (legende.logarithme && *v.min < 0) texte += " des grandeurs, - : negative";
  return texte;
}

std::string cadre(const Matrice& m, const Plan& p, bool svg) {
  std::string s = "set terminal " + std::string(svg ? "svg" : "pngcairo") + " size " +
                  std::to_string(p.largeur) + "," + std::to_string(p.hauteur) +
                  " font 'DejaVu Sans,11' background rgb 'white'\nset format cb '%g'\n";
  s += "set lmargin at screen " + p.x(p.noms) + "\nset rmargin at screen " +
       p.x(p.noms + p.grille) + "\nset tmargin at screen " + p.y(p.haut) +
       "\nset bmargin at screen " + p.y(p.haut + p.grille) + "\n";
  for (std::size_t i = 0; i < p.titre.size(); ++i)
    s += "set label " + cite(p.titre[i]) + " at screen 0.5,screen " + p.y(Plan::ligne * (i + 1)) +
         " center noenhanced\n";
  s += "set colorbox user origin screen " + p.x(p.noms + p.grille + 16) + ",screen " +
       p.y(p.haut + p.grille) + " size screen " + p.x(20) + ",screen " +
       Plan::part(p.grille, p.hauteur) + "\n";
  std::string noms;
  for (std::size_t i = 0; i < m.noms.size(); ++i)
    noms += (i > 0 ? ", " : "(") + cite(m.noms[i]) + " " + std::to_string(i);
  const std::string fin = std::to_string(m.noms.size() - 1) + ".5";
  return s + "set xtics rotate by 90 right noenhanced scale 0 " + noms +
         ")\nset ytics noenhanced scale 0 " + noms + ")\nset xrange [-0.5:" + fin +
         "]\nset yrange [" + fin +
         ":-0.5]\n"
         "set object 1 rectangle from graph 0,0 to graph 1,1 fillcolor rgb '#d8d8d8' behind\n";
}

/// Cells one by one: "column row value", and apart from them the places of negative ones.
std::string script_gnuplot(const Matrice& m, const Legende& legende, bool svg) {
  const Valeurs v = lire_valeurs(m);
  const bool logarithme = legende.logarithme && !v.constante();
  const std::size_t n = m.noms.size();
  std::string cellules, moins;
  for (std::size_t i = 0; i < v.cellules.size(); ++i) {
    if (!v.cellules[i]) continue;
    const double c = *v.cellules[i];
    const std::string place = std::to_string(i % n) + " " + std::to_string(i / n) + " ";
    // A logarithm has no 0: what is below the scale has its first colour.
    cellules +=
        place + (logarithme && c == 0 ? "1e-300" : en_texte(logarithme ? std::abs(c) : c)) + "\n";
    if (logarithme && c < 0) moins += place + "\n";
  }
  std::string s = "$m << FIN\n" + cellules + "FIN\n";
  if (!moins.empty()) s += "$n << FIN\n" + moins + "FIN\n";
  s += cadre(m, Plan(m, dire(v, legende)), svg) + palette(v, logarithme) +
       "plot $m using 1:2:($1-0.5):($1+0.5):($2-0.5):($2+0.5):3 with boxxyerror fillstyle solid "
       "1.0 noborder linecolor palette notitle";
  if (!moins.empty()) s += ", $n using 1:2:('-') with labels notitle";
  return s + "\n";
}

}  // namespace

bool est_svg(const std::string& nom) {
  return finit_par(nom, ".svg");
}

void controler_nom_image(const std::string& nom) {
  if (!est_svg(nom) && !finit_par(nom, ".png"))
    throw Erreur("'" + nom + "' : une image se nomme .png ou .svg");
}

void dessiner_carte(const Matrice& m, const Legende& legende, const std::string& nom,
                    std::ostream& image) {
  image << dessiner(script_gnuplot(m, legende, est_svg(nom)));
}

}  // namespace topomine
