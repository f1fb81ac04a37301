#include "app/topodata/dessin_cas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

#include "texte/affichable.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

// The picture in pixels: the case between margins, and the legend on its right.
constexpr double largeur_cas = 790, hauteur = 720, marge = 30, haut = 60;
constexpr std::size_t lettres_max = 48, noms_max = 26;

/// How wide the legend is: more for long names.
double largeur_legende(const LegendeCas& l) {
  std::size_t lettres = l.titre.size();
  for (const auto& nom : l.noms) lettres = std::max(lettres, nom.nom.size());
  return std::max(210.0, 70 + 8.2 * static_cast<double>(std::min(lettres, lettres_max)));
}

/// Plane coordinates to pixels, so that everything fits.
struct Cadre {
  double echelle, x0, y0;

  explicit Cadre(const std::vector<Touche>& touches) {
    Plan min{1e9, 1e9}, max{-1e9, -1e9};
    for (const Touche& t : touches)
      for (std::size_t i = 0; i < t.nb; ++i) {
        const Plan& p = t.points[i];
        for (const std::size_t a : {0U, 1U}) {
          min[a] = std::min(min[a], p[a]);
          max[a] = std::max(max[a], p[a]);
        }
      }
    const double l = largeur_cas - marge, h = hauteur - marge - haut;
    echelle = std::min(l / std::max(max[0] - min[0], 1e-3), h / std::max(max[1] - min[1], 1e-3));
    x0 = marge + l / 2 - echelle * (min[0] + max[0]) / 2;
    y0 = marge + h / 2 - echelle * (min[1] + max[1]) / 2;
  }
};

/// A coordinate in pixels.
std::string pixels(double v) {
  return en_texte_fixe(v, 1);
}

int octet(double v) {
  return static_cast<int>(std::lround(255 * std::clamp(v, 0.0, 1.0)));
}

std::string rgb(const Couleur& c) {
  constexpr std::string_view hexa = "0123456789abcdef";
  std::string s = "'#";
  for (const double part : c) {
    const auto u = static_cast<unsigned>(octet(part));
    s += {hexa[u / 16], hexa[u % 16]};
  }
  return s + "'";
}

/// A text between quotes, on one line, not too long.
std::string mots(const std::string& texte) {
  const bool long_ = texte.size() > lettres_max;
  std::string s = "'";
  for (const char c : affichable(long_ ? texte.substr(0, lettres_max - 3) + "..." : texte)) {
    if (c == '\'') s += c;
    s += c;
  }
  return s + "'";
}

/// A plot command and the data that it reads from the script itself.
class Trace {
 public:
  void element(const std::string& style) {
    commande_ += (commande_.empty() ? "plot '-' " : ", '-' ") + style;
    if (!donnees_.empty()) donnees_ += "e\n";
  }
  void point(double x, double y, const std::string& suite = "") {
    donnees_ += pixels(x) + ' ' + pixels(y) + suite + '\n';
  }
  void couper() { donnees_ += '\n'; }
  std::string texte() const { return commande_ + '\n' + donnees_ + "e\n"; }

 private:
  std::string commande_, donnees_;
};

void tracer(Trace& trace, const std::vector<Touche>& touches, const Cadre& cadre) {
  double epaisseur = 0;  // of the run of lines under way
  for (const Touche& t : touches) {
    if (t.nb == 2 && t.epaisseur != epaisseur) {
      epaisseur = t.epaisseur;
      trace.element("using 1:2:3 with lines lc rgb variable lw " + en_texte_fixe(epaisseur, 1) +
                    " notitle");
    } else if (t.nb == 4) {
      epaisseur = 0;
      std::string style = "with filledcurves closed fc rgb " + rgb(t.couleur);
      if (t.verre)
        style += " fs transparent solid 0.13 noborder notitle";
      else  // with a border of the same colour: no seams
        style += " fs solid border rgb " + rgb(t.couleur) + " lw 1.2 notitle";
      trace.element(style);
    }
    const int entier = octet(t.couleur[0]) << 16 | octet(t.couleur[1]) << 8 | octet(t.couleur[2]);
    for (std::size_t i = 0; i < t.nb; ++i) {
      const auto [x, y] = t.points[i];
      trace.point(cadre.x0 + cadre.echelle * x, cadre.y0 + cadre.echelle * y,
                  t.nb == 2 ? ' ' + std::to_string(entier) : "");
    }
    if (t.nb == 2) trace.couper();
  }
}

/// The three axes in the lower left corner; the labels go ahead of the plot.
std::string tracer_axes(Trace& trace, const std::array<Plan, 3>& axes) {
  constexpr double x0 = 50, y0 = 50, longueur = 34;
  std::string etiquettes;
  const auto noms = std::to_array<const char*>({"x", "y", "z"});
  for (std::size_t a = 0; a < 3; ++a) {
    const auto [x, y] = axes[a];
    trace.element("with lines lc rgb '#555555' lw 1.6 notitle");
    trace.point(x0, y0);
    trace.point(x0 + longueur * x, y0 + longueur * y);
    if (std::hypot(x, y) < 0.2) continue;  // it points at the eye
    etiquettes += "set label '" + std::string(noms[a]) + "' at " +
                  pixels(x0 + (longueur + 11) * x) + ',' + pixels(y0 + (longueur + 11) * y) +
                  " center tc rgb '#333333'\n";
  }
  return etiquettes;
}

/// Names as a key; a scale as a colour box, which needs a point, outside, to go with.
std::string legende(Trace& trace, const LegendeCas& l, double largeur) {
  std::string s;
  if (!l.echelle) s += "set key title " + mots(l.titre) + " noenhanced left\n";
  for (std::size_t i = 0; i < std::min(l.noms.size(), noms_max); ++i) {
    const bool reste = i + 1 == noms_max && l.noms.size() > noms_max;
    trace.element("with lines lw 7 lc rgb " + rgb(l.noms[i].couleur) + " title " +
                  mots(reste ? "..." : l.noms[i].nom));
    trace.point(-99, -99);
  }
  if (!l.echelle) return s;
  auto [min, max] = *l.echelle;
  if (min == max) {
    const double ecart = min == 0 ? 1 : std::abs(min) / 10;
    constexpr double fini = std::numeric_limits<double>::max();
    min = std::max(min - ecart, -fini);
    max = std::min(max + ecart, fini);
  }
  s += "set cbrange [" + en_texte(min) + ':' + en_texte(max) + "]\n";
  if (l.logarithmique) s += "set logscale cb\n";
  s += "set palette defined (";
  for (std::size_t i = 0; i < palette.size(); ++i)
    s += (i > 0 ? ", " : "") + std::to_string(i) + ' ' + rgb(palette[i]);
  const std::string x = en_texte_fixe((largeur_cas + 45) / largeur, 6);
  s += ")\nset colorbox user origin screen " + x + ",0.2 size screen " +
       en_texte_fixe(22 / largeur, 6) + ",0.56\nset format cb '%g'\nset label " + mots(l.titre) +
       " at screen " + x + ",0.80 left noenhanced\n";
  trace.element("using 1:2:3 with points lc palette notitle");
  trace.point(-99, -99, " " + en_texte_fixe(min, 6));
  return s;
}

}  // namespace

std::string script_dessin(const Scene& scene, const std::optional<Vue>& vue, bool svg) {
  const Tableau tableau = peindre(scene, vue);
  Trace trace;
  tracer(trace, tableau.touches, Cadre(tableau.touches));
  const double largeur = largeur_cas + largeur_legende(scene.legende);
  const std::string dimensions =
      std::to_string(static_cast<int>(largeur)) + ',' + std::to_string(static_cast<int>(hauteur));
  std::string s = "set encoding iso_8859_1\nset terminal " + std::string(svg ? "svg" : "pngcairo") +
                  " size " + dimensions +
                  " font 'DejaVu Sans,11' background rgb 'white'\n"
                  "set lmargin at screen 0\nset rmargin at screen 1\nset bmargin at screen 0\n"
                  "set tmargin at screen 1\nunset border\nunset tics\nset cbtics\n"
                  "set xrange [0:" +
                  std::to_string(static_cast<int>(largeur)) +
                  "]\nset yrange [0:" + std::to_string(static_cast<int>(hauteur)) +
                  "]\n"
                  "set key at screen 0.985," +
                  (scene.legende.echelle ? "0.12" : "0.88") +
                  " right top Left reverse noenhanced samplen 1.2 spacing 1.15\n"
                  "set label " +
                  mots(scene.titre) + " at screen 0.03,0.955 left font ',15' noenhanced\n";
  s += tracer_axes(trace, tableau.axes);
  s += legende(trace, scene.legende, largeur);
  return s + trace.texte();
}

}  // namespace topomine
