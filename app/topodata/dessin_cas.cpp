#include "app/topodata/dessin_cas.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>

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

double scalaire(const Position& a, const Position& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Position produit(const Position& a, const Position& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Position moins(const Position& a, const Position& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Position unitaire(const Position& a) {
  const double n = std::sqrt(scalaire(a, a));
  return n > 0 ? Position{a[0] / n, a[1] / n, a[2] / n} : a;
}

Position entre(const Position& a, const Position& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

/// The smallest box, to bring the case into a sphere of radius 1 around the origin.
struct Boite {
  Position min, max;

  explicit Boite(const Scene& scene) {
    min.fill(std::numeric_limits<double>::max());
    max.fill(std::numeric_limits<double>::lowest());
    for (const Trait& t : scene.traits)
      for (const Position* p : {&t.a, &t.b}) etendre(*p);
    for (const Paroi& paroi : scene.parois)
      for (const Position& p : paroi.coins) etendre(p);
  }
  void etendre(const Position& p) {
    for (std::size_t a = 0; a < 3; ++a) {
      min[a] = std::min(min[a], p[a]);
      max[a] = std::max(max[a], p[a]);
    }
  }
  /// Half the extent along an axis: halves first, the whole may be too large for a double.
  double demi(std::size_t axe) const { return max[axe] / 2 - min[axe] / 2; }
  double rayon() const {
    const double r = std::hypot(demi(0), demi(1), demi(2));
    return r > 0 ? r : 1;
  }
  Position ramener(const Position& p) const {
    Position q;
    for (std::size_t a = 0; a < 3; ++a) q[a] = (p[a] / 2 - (min[a] / 4 + max[a] / 4)) / rayon() * 2;
    return q;
  }
};

/// Looks a little from above at what fills space, and well onto what is flat.
Vue vue_de(const Boite& boite) {
  constexpr double mince = 0.2;
  const double x = boite.demi(0), y = boite.demi(1), z = boite.demi(2);
  if (z <= mince * std::min(x, y)) return {-80, 58};
  if (y <= mince * std::min(x, z)) return {-72, 18};
  if (x <= mince * std::min(y, z)) return {18, 18};
  return {-55, 24};
}

class Camera {
 public:
  explicit Camera(const Vue& vue)
      : Camera(vue.azimut * std::numbers::pi / 180, vue.elevation * std::numbers::pi / 180) {}
  Position oeil() const { return {distance * vers_[0], distance * vers_[1], distance * vers_[2]}; }
  double eloignement(const Position& p) const {
    const Position d = moins(oeil(), p);
    return std::sqrt(scalaire(d, d));
  }
  /// Across and up, on a plane through the origin.
  std::array<double, 2> projeter(const Position& p) const {
    const double f = distance / (distance - scalaire(p, vers_));
    return {f * scalaire(p, droite_), f * scalaire(p, dessus_)};
  }
  std::array<double, 2> direction(const Position& p) const {
    return {scalaire(p, droite_), scalaire(p, dessus_)};
  }
  /// Where the light comes from: above the eye, a little from the left.
  Position lumiere() const {
    Position l;
    for (std::size_t a = 0; a < 3; ++a) l[a] = vers_[a] + 0.8 * dessus_[a] - 0.5 * droite_[a];
    return unitaire(l);
  }

 private:
  Camera(double az, double el)
      : vers_{std::cos(el) * std::cos(az), std::cos(el) * std::sin(az), std::sin(el)},
        droite_{-std::sin(az), std::cos(az), 0},
        dessus_(produit(vers_, droite_)) {}

  static constexpr double distance = 3.4;  // radii of the case
  Position vers_, droite_, dessus_;
};

/// What is painted, far things first.
struct Touche {
  double eloignement;
  std::size_t nb;  // 2 for a line, 4 for a piece of wall
  std::array<Position, 4> points;
  Couleur couleur;
  double epaisseur, opacite;
};

class Peinture {
 public:
  Peinture(const Scene& scene, const Boite& boite, const Camera& camera)
      : boite_(boite), camera_(camera) {
    for (const Paroi& p : scene.parois) ajouter(p, parts(scene.parois.size(), 6000, 400));
    const std::size_t nb = scene.traits.size();
    const double fin = nb > 60000 ? 0.4 : nb > 10000 ? 0.7 : nb > 2500 ? 1.1 : 1.8;
    for (const Trait& t : scene.traits) ajouter(t, parts(nb, 20000, 8), t.fort ? 1.5 * fin : fin);
    std::ranges::stable_sort(
        touches, [](const Touche& a, const Touche& b) { return a.eloignement > b.eloignement; });
  }

  std::vector<Touche> touches;

 private:
  /// In how many parts each of nb things is cut: long ones reach far and near at a time.
  static std::size_t parts(std::size_t nb, std::size_t total, std::size_t max) {
    return std::clamp(total / std::max<std::size_t>(nb, 1), std::size_t{1}, max);
  }

  void ajouter(const Trait& t, std::size_t nb, double epaisseur) {
    // Edges of a wall lie in it: they are taken to be a little nearer.
    constexpr double devant = 0.025;
    const Position a = boite_.ramener(t.a), b = boite_.ramener(t.b);
    for (std::size_t i = 0; i < nb; ++i) {
      const double n = static_cast<double>(nb), k = static_cast<double>(i);
      const double d = camera_.eloignement(entre(a, b, (k + 0.5) / n));
      // Far lines fade.
      const double brume = std::clamp((d - 2.7) / 1.8, 0.0, 1.0) * 0.45;
      touches.push_back({d - devant,
                         2,
                         {entre(a, b, k / n), entre(a, b, (k + 1) / n), {}, {}},
                         entre(t.couleur, {1, 1, 1}, brume),
                         epaisseur,
                         1});
    }
  }

  void ajouter(const Paroi& p, std::size_t parts) {
    std::array<Position, 4> q;
    for (std::size_t c = 0; c < 4; ++c) q[c] = boite_.ramener(p.coins[c]);
    const Position n = unitaire(produit(moins(q[2], q[0]), moins(q[3], q[1])));
    const Position m = entre(entre(q[0], q[2], 0.5), entre(q[1], q[3], 0.5), 0.5);
    const double eclat = 0.68 + 0.32 * std::abs(scalaire(n, camera_.lumiere()));
    // A wall between the eye and its block is glass: else it would hide the case.
    bool verre = false;
    if (p.bloc) {
      const double oeil = scalaire(n, moins(camera_.oeil(), m));
      const double bloc = scalaire(n, moins(boite_.ramener(*p.bloc), m));
      verre = oeil * bloc < 0;
    }
    const auto cote = verre ? 1 : static_cast<std::size_t>(std::sqrt(static_cast<double>(parts)));
    const auto point = [&](std::size_t i, std::size_t j) {
      const double s = static_cast<double>(i) / static_cast<double>(cote);
      const double t = static_cast<double>(j) / static_cast<double>(cote);
      return entre(entre(q[0], q[1], s), entre(q[3], q[2], s), t);
    };
    for (std::size_t i = 0; i < cote; ++i)
      for (std::size_t j = 0; j < cote; ++j) {
        const std::array<Position, 4> coins{point(i, j), point(i + 1, j), point(i + 1, j + 1),
                                            point(i, j + 1)};
        const Position c =
            entre(entre(coins[0], coins[2], 0.5), entre(coins[1], coins[3], 0.5), 0.5);
        touches.push_back({camera_.eloignement(c), 4, coins, entre({0, 0, 0}, p.couleur, eclat), 0,
                           verre ? 0.13 : 1});
      }
  }

  const Boite& boite_;
  const Camera& camera_;
};

/// Plane coordinates to pixels, so that everything fits.
struct Cadre {
  double echelle, x0, y0;

  Cadre(const std::vector<Touche>& touches, const Camera& camera) {
    std::array<double, 2> min{1e9, 1e9}, max{-1e9, -1e9};
    for (const Touche& t : touches)
      for (std::size_t i = 0; i < t.nb; ++i) {
        const auto p = camera.projeter(t.points[i]);
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

void ajouter(std::string& s, double v) {
  std::array<char, 64> tampon;
  const auto fin =
      std::to_chars(tampon.data(), tampon.data() + tampon.size(), v, std::chars_format::fixed, 1);
  s.append(tampon.data(), fin.ptr);
}

int octet(double v) {
  return static_cast<int>(std::lround(255 * std::clamp(v, 0.0, 1.0)));
}

std::string rgb(const Couleur& c) {
  std::array<char, 16> t{};
  static_cast<void>(
      std::snprintf(t.data(), t.size(), "'#%02x%02x%02x'", octet(c[0]), octet(c[1]), octet(c[2])));
  return t.data();
}

/// A text between quotes, on one line, not too long.
std::string mots(const std::string& texte) {
  std::string s = "'";
  for (const char c :
       texte.size() > lettres_max ? texte.substr(0, lettres_max - 3) + "..." : texte) {
    if (c == '\'') s += c;
    s += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
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
    ajouter(donnees_, x);
    donnees_ += ' ';
    ajouter(donnees_, y);
    donnees_ += suite + '\n';
  }
  void couper() { donnees_ += '\n'; }
  std::string texte() const { return commande_ + '\n' + donnees_ + "e\n"; }

 private:
  std::string commande_, donnees_;
};

void tracer(Trace& trace, const std::vector<Touche>& touches, const Camera& camera,
            const Cadre& cadre) {
  double epaisseur = 0;  // of the run of lines under way
  for (const Touche& t : touches) {
    if (t.nb == 2 && t.epaisseur != epaisseur) {
      epaisseur = t.epaisseur;
      std::string style = "using 1:2:3 with lines lc rgb variable lw ";
      ajouter(style, epaisseur);
      trace.element(style + " notitle");
    } else if (t.nb == 4) {
      epaisseur = 0;
      std::string style = "with filledcurves closed fc rgb " + rgb(t.couleur);
      if (t.opacite < 1)
        style += " fs transparent solid 0.13 noborder notitle";
      else  // with a border of the same colour: no seams
        style += " fs solid border rgb " + rgb(t.couleur) + " lw 1.2 notitle";
      trace.element(style);
    }
    const int entier = octet(t.couleur[0]) << 16 | octet(t.couleur[1]) << 8 | octet(t.couleur[2]);
    for (std::size_t i = 0; i < t.nb; ++i) {
      const auto [x, y] = camera.projeter(t.points[i]);
      trace.point(cadre.x0 + cadre.echelle * x, cadre.y0 + cadre.echelle * y,
                  t.nb == 2 ? ' ' + std::to_string(entier) : "");
    }
    if (t.nb == 2) trace.couper();
  }
}

/// The three axes in the lower left corner; the labels go ahead of the plot.
std::string axes(Trace& trace, const Camera& camera) {
  constexpr double x0 = 50, y0 = 50, longueur = 34;
  std::string etiquettes;
  const std::array<const char*, 3> noms{"x", "y", "z"};
  for (std::size_t a = 0; a < 3; ++a) {
    Position e{};
    e[a] = 1;
    const auto [x, y] = camera.direction(e);
    trace.element("with lines lc rgb '#555555' lw 1.6 notitle");
    trace.point(x0, y0);
    trace.point(x0 + longueur * x, y0 + longueur * y);
    if (std::hypot(x, y) < 0.2) continue;  // it points at the eye
    etiquettes += "set label '" + std::string(noms[a]) + "' at ";
    ajouter(etiquettes, x0 + (longueur + 11) * x);
    etiquettes += ',';
    ajouter(etiquettes, y0 + (longueur + 11) * y);
    etiquettes += " center tc rgb '#333333'\n";
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
  std::array<char, 96> bornes{};
  if (min == max) {
    const double ecart = min == 0 ? 1 : std::abs(min) / 10;
    constexpr double fini = std::numeric_limits<double>::max();
    min = std::max(min - ecart, -fini);
    max = std::min(max + ecart, fini);
  }
  static_cast<void>(
      std::snprintf(bornes.data(), bornes.size(), "set cbrange [%.6g:%.6g]\n", min, max));
  s += bornes.data();
  if (l.logarithmique) s += "set logscale cb\n";
  s += "set palette defined (";
  for (std::size_t i = 0; i < palette.size(); ++i)
    s += (i > 0 ? ", " : "") + std::to_string(i) + ' ' + rgb(palette[i]);
  const std::string x = std::to_string((largeur_cas + 45) / largeur);
  s += ")\nset colorbox user origin screen " + x + ",0.2 size screen " +
       std::to_string(22 / largeur) + ",0.56\nset format cb '%g'\nset label " + mots(l.titre) +
       " at screen " + x + ",0.80 left noenhanced\n";
  trace.element("using 1:2:3 with points lc palette notitle");
  trace.point(-99, -99, " " + std::to_string(min));
  return s;
}

}  // namespace

std::string script_dessin(const Scene& scene, const std::optional<Vue>& vue, bool svg) {
  const Boite boite(scene);
  const Camera camera(vue ? *vue : vue_de(boite));
  const Peinture peinture(scene, boite, camera);
  const Cadre cadre(peinture.touches, camera);
  Trace trace;
  tracer(trace, peinture.touches, camera, cadre);
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
  s += axes(trace, camera);
  s += legende(trace, scene.legende, largeur);
  return s + trace.texte();
}

}  // namespace topomine
