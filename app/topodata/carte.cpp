#include "app/topodata/carte.h"

#include "app/topodata/construction.h"
#include "app/topodata/gnuplot.h"
#include "app/topodata/sortie.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

bool est_svg(const std::string& nom) {
  return nom.ends_with(".svg");
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
std::string script_gnuplot(const Matrice& m, const Legende& legende, bool svg) {
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
  s += "set title '" + legende.titre + "' noenhanced\n";
  s += "set xtics rotate by 90 right noenhanced scale 0 " + noms + "\n";
  s += "set ytics noenhanced scale 0 " + noms + "\n";
  s += "set xrange [-0.5:" + fin + "]\nset yrange [" + fin + ":-0.5]\n";
  s += "set palette defined (0 '#fff7ec', 1 '#fdd49e', 4 '#fc8d59', 9 '#d7301f', 16 '#4a0000')\n"
       "set object 1 rectangle from graph 0,0 to graph 1,1 fillcolor rgb '#d8d8d8' behind\n"
       "set cblabel '" +
       legende.couleurs + "'\n" + echelle(m) +
       "plot $m matrix using 1:2:3 with image pixels notitle\n";
  return s;
}

}  // namespace

void controler_nom_image(const std::string& nom) {
  if (!est_svg(nom) && !nom.ends_with(".png"))
    throw Erreur("'" + nom + "' : une image se nomme .png ou .svg");
}

void dessiner_carte(const Matrice& m, const Legende& legende, const std::string& nom,
                    std::ostream& image) {
  image << dessiner(script_gnuplot(m, legende, est_svg(nom)));
}

}  // namespace topomine
