// The eight shapes, as data.
#include <stdexcept>

#include "tools/gen/forme.h"

namespace topomine::gen {

// Damas code = 100 x kind + rank. BCCODE and what it stands for:
//    1 wall        5 symmetry      9 interface with another domain   13 other
//    2 inlet       6 cutting plane 10 open                           9999 unclaimed
//    3 outlet      7 sector side   11 jet
//    4 far field   8 cyclic        12 air intake
// clang-format off
const std::vector<Condition> conditions{
    {101, 1, "paroi_dessus"}, {102, 1, "paroi_dessous"}, {103, 1, "paroi_aile"},
    {104, 1, "paroi_aile"}, {105, 1, "paroi_carlingue"}, {106, 1, "paroi_plancher"},
    {107, 1, "paroi_bosse"}, {108, 1, "paroi_plafond"}, {109, 1, "paroi_dome"},
    {110, 1, "paroi_sol"}, {111, 1, "paroi_capot"}, {112, 1, "paroi_conduit"},
    {113, 1, "paroi_levre"}, {114, 1, "paroi_moyeu"}, {115, 1, "paroi_profil"},
    {116, 1, "paroi_profil"}, {117, 1, "paroi_joue"}, {118, 1, "paroi_coude_ext"},
    {119, 1, "paroi_coude_int"}, {120, 1, "paroi_fut_amont"}, {121, 1, "paroi_fut_aval"},
    {122, 1, "paroi_plateau"}, {201, 2, "entree"}, {301, 3, "sortie"}, {401, 4, "lointain"},
    {402, 4, "lointain"}, {501, 5, "symetrie"}, {601, 6, "coupe"}, {701, 7, "secteur"},
    {702, 7, "secteur"}, {801, 8, "cyclique"}, {802, 8, "cyclique"}, {901, 9, "interface"},
    {1001, 10, "libre"}, {1101, 11, "jet"}, {1201, 12, "prise_air"}, {1301, 13, "autre"},
    {1302, 13, "autre"}, {code_sans_condition, 9999, "sans_condition"},
};
// clang-format on

const Condition& condition(int code) {
  for (const Condition& c : conditions)
    if (c.code == code) return c;
  throw std::logic_error("code absent de la table des conditions");
}

namespace {

constexpr double q = std::numbers::sqrt2 / 2;  // cosine of 45 degrees

/// splitmix64: the same draws with every compiler.
class Alea {
 public:
  explicit Alea(std::uint64_t graine) : etat_(graine) {}
  double entre(double a, double b) {
    std::uint64_t z = etat_ += 0x9e3779b97f4a7c15u;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return a + (b - a) * static_cast<double>((z ^ (z >> 31)) >> 11) * 0x1p-53;
  }

 private:
  std::uint64_t etat_;
};

// One table per shape, packed by hand.
// clang-format off

/// O around a body of revolution, from an inlet plane to an outlet plane.
Forme fuselage(Alea& alea) {
  const double r = alea.entre(4, 6), creux = alea.entre(0.35, 0.55), l = alea.entre(9, 12);
  return {.nom = "fuselage_en_O", .balayage = Balayage::fuseau,
          .mesures = {l, creux, r, alea.entre(0.85, 1.15)},
          .points = {{'o', {}}, {'a', {1, 0}}, {'b', {0, 1}}, {'c', {-1, 0}}, {'d', {0, -1}},
                     {'A', {r, 0}}, {'B', {0, r}}, {'C', {-r, 0}}, {'D', {0, -r}}},
          .lignes = {{"dab", 101, 'o'}, {"bcd", 102, 'o'}, {"ABCDA", 401, 'o'}},
          .zones = {{"aABb", 0, 1}, {"bBCc", 0, 1}, {"cCDd", 0, 1}, {"dDAa", 0, 1}},
          .classes = {{1.2, 1, alea.entre(0.4, 0.7)}, {0.8}, {1.6}}, .codes = {201, 301},
          .pieces = {{"dessus", 'O'}, {"dessous", 'O'}},
          .raccords = {{"dessus", "dessous", "C45"}}, .nb_moteur = 2};
}

/// C around a tapered swept wing set on a plane, wake behind.
Forme aile(Alea& alea) {
  const double d = alea.entre(1.2, 1.8), sillage = alea.entre(1.5, 2.5);
  const double dessus = alea.entre(0.16, 0.22), dessous = alea.entre(0.12, 0.15);
  const double fleche = alea.entre(15, 30), x = 1 + sillage;
  return {.nom = "aile_en_C", .balayage = Balayage::extrusion,
          .mesures = {alea.entre(3, 5), alea.entre(0.4, 0.7), fleche, alea.entre(0, 3)},
          .points = {{'N', {0, 0}}, {'T', {1, 0}}, {'W', {x, 0}}, {'F', {-d, 0}}, {'U', {1, d}},
                     {'V', {x, d}}, {'L', {1, -d}}, {'M', {x, -d}}, {'h', {1, -dessus}},
                     {'b', {1, dessous}}},
          .lignes = {{"TN", 103, 'h', 1}, {"NT", 104, 'b', 1}, {"UFL", 401, 'T'}, {"UV", 401},
                     {"LM", 401}, {"VWM", 301}},
          .zones = {{"TUFN", 0, 1}, {"NFLT", 0, 1}, {"TWVU", 2, 0}, {"TLMW", 0, 2}},
          .classes = {{1, 2, alea.entre(0.4, 0.7)}, {1.3, 2}, {0.8, 1, 0.3}, {1, 1, -0.2}},
          .codes = {105, 402},
          .pieces = {{"aile", 'C'}, {"carlingue", 'H'}},
          .raccords = {{"aile", "carlingue", "C90"}}, .fleche = fleche};
}

/// H in a channel with a bump on its floor.
Forme canal(Alea& alea) {
  const double h = alea.entre(0.8, 1.2), l = alea.entre(1.2, 1.8);
  const double g = l * alea.entre(0.28, 0.36), e = l - g;
  return {.nom = "canal_en_H", .balayage = Balayage::bosse,
          .mesures = {alea.entre(4, 6), h, alea.entre(0.15, 0.3), l},
          .points = {{'a', {0, 0}}, {'b', {0, g}}, {'c', {0, e}}, {'d', {0, l}},
                     {'A', {h, 0}}, {'B', {h, g}}, {'C', {h, e}}, {'D', {h, l}}},
          .lignes = {{"ab", 106}, {"bc", 107}, {"cd", 106}, {"ABCD", 108}, {"aA", 801}, {"dD", 802}},
          .zones = {{"aABb", 0, 1}, {"bBCc", 0, 2}, {"cCDd", 0, 1}},
          .classes = {{1.2, 1, alea.entre(0.2, 0.5)}, {0.6}, {0.7}, {3}}, .codes = {201, 301},
          .pieces = {{"plancher", 'H'}, {"bosse", 'H'}, {"plafond", 'H'}},
          .raccords = {{"plancher", "bosse", "C45"}}};
}

/// Spherical shell around a dome on the ground: five sides of a cube, blown up.
Forme dome(Alea& alea) {
  const double r = alea.entre(0.8, 1.2);
  return {.nom = "dome_en_coque", .balayage = Balayage::sphere,
          .mesures = {r, r * alea.entre(3, 5)},
          .points = {{'a', {-1, 1, -1}}, {'b', {-1, 1, 1}}, {'c', {1, 1, 1}}, {'d', {1, 1, -1}},
                     {'A', {-1, 0, -1}}, {'B', {-1, 0, 1}}, {'C', {1, 0, 1}}, {'D', {1, 0, -1}}},
          .lignes = {{"ABCDA", 110}},
          .zones = {{"abcd", 1, 1}, {"DdcC", 0, 1}, {"CcbB", 0, 1}, {"BbaA", 0, 1}, {"AadD", 0, 1}},
          .classes = {{0.6}, {1}, {1.4, 1, alea.entre(0.3, 0.6)}}, .codes = {109, 1001},
          .pieces = {{"dome", 'C'}, {"sol", 'H'}}, .raccords = {{"dome", "sol", "C90"}}};
}

/// O around the section of a nacelle inside an H, turned about the hub by a few degrees.
Forme nacelle(Alea& alea) {
  const double moyeu = alea.entre(0.35, 0.5), rc = moyeu + alea.entre(0.8, 0.9);
  const double haut = rc + alea.entre(0.8, 1);
  const double e = q * alea.entre(0.2, 0.28), x = alea.entre(1.6, 1.9), x1 = -alea.entre(3, 4);
  const double x2 = alea.entre(3, 4.5);
  return {.nom = "nacelle_en_O_dans_H", .balayage = Balayage::revolution,
          .mesures = {alea.entre(20, 40)},
          .points = {{'o', {0, rc}}, {'a', {q, rc - e}}, {'b', {q, rc + e}}, {'d', {-q, rc + e}},
                     {'g', {-q, rc - e}}, {'A', {x, moyeu}}, {'B', {x, haut}}, {'D', {-x, haut}},
                     {'G', {-x, moyeu}}, {'I', {x1, moyeu}}, {'J', {x1, haut}}, {'K', {x2, moyeu}},
                     {'M', {x2, haut}}},
          .lignes = {{"abd", 111, 'o'}, {"dg", 113, 'o'}, {"ga", 112, 'o'}, {"IGAK", 114},
                     {"JDBM", 401}, {"IJ", 201}, {"KM", 1101}},
          .zones = {{"aABb", 0, 1}, {"bBDd", 0, 2}, {"dDGg", 0, 1}, {"gGAa", 0, 2}, {"GDJI", 1, 3},
                    {"AKMB", 3, 1}},
          .classes = {{0.8, 1, alea.entre(0.3, 0.5)}, {0.8}, {1.1}, {0.7, 1, 0.2}, {1}},
          .codes = {701, 702},
          .pieces = {{"capot", 'O'}, {"conduit", 'O'}, {"levre", 'O'}, {"moyeu", 'H'}},
          .raccords = {{"capot", "levre", "C45"}, {"conduit", "levre", "C45"},
                       {"capot", "conduit", "C45"}}, .nb_moteur = 1};
}

/// C around a wing section, H above, below and behind, in a wind tunnel.
Forme soufflerie(Alea& alea) {
  const double d = alea.entre(0.6, 0.8), av = alea.entre(1, 1.4), h = d + alea.entre(0.8, 1.2);
  const double dessus = alea.entre(0.16, 0.22), dessous = alea.entre(0.12, 0.15);
  const double x = alea.entre(2.5, 3.5);
  return {.nom = "profil_en_C_dans_H", .balayage = Balayage::extrusion,
          .mesures = {alea.entre(1, 1.6), 1},
          .points = {{'N', {0, 0}}, {'T', {1, 0}}, {'W', {x, 0}}, {'F', {-av, 0}}, {'U', {1, d}},
                     {'V', {x, d}}, {'L', {1, -d}}, {'M', {x, -d}}, {'Z', {1, h}}, {'X', {x, h}},
                     {'K', {-av, h}}, {'z', {1, -h}}, {'x', {x, -h}}, {'k', {-av, -h}},
                     {'o', {1 - 0.45 * av, 0}}, {'h', {1, -dessus}}, {'b', {1, dessous}}},
          .lignes = {{"TN", 115, 'h', 1}, {"NT", 116, 'b', 1}, {"UFL", 0, 'o', 0.8}, {"KFk", 201},
                     {"KZX", 108}, {"kzx", 106}, {"XVWMx", 901}},
          .zones = {{"TUFN", 0, 1}, {"NFLT", 0, 1}, {"UZKF", 3, 1}, {"FkzL", 3, 1}, {"TWVU", 2, 0},
                    {"TLMW", 0, 2}, {"UVXZ", 2, 3}, {"LzxM", 3, 2}},
          .classes = {{0.8, 1, alea.entre(0.3, 0.6)}, {1.2, 2}, {0.8, 1, 0.3}, {0.6}, {0.7}},
          .codes = {117, 601},
          .pieces = {{"profil", 'C'}, {"plafond", 'H'}, {"plancher", 'H'}, {"joue", 'H'}},
          .raccords = {{"profil", "joue", "C90"}, {"plafond", "joue", "C90"},
                       {"plancher", "joue", "C90"}}};
}

/// Bent pipe: O along the wall, H in the core.
Forme coude(Alea& alea) {
  const double r = alea.entre(2, 3), s = alea.entre(0.35, 0.45);
  return {.nom = "coude_en_O", .balayage = Balayage::revolution, .mesures = {alea.entre(70, 110)},
          .points = {{'o', {0, r}}, {'a', {q, r - q}}, {'b', {q, r + q}}, {'d', {-q, r + q}},
                     {'g', {-q, r - q}}, {'A', {s, r - s}}, {'B', {s, r + s}}, {'D', {-s, r + s}},
                     {'G', {-s, r - s}}},
          .lignes = {{"abd", 118, 'o'}, {"dga", 119, 'o'}},
          .zones = {{"GABD", 2, 1}, {"AabB", 0, 1}, {"BbdD", 0, 2}, {"DdgG", 0, 1}, {"GgaA", 0, 2}},
          .classes = {{0.6, 1, -0.3}, {0.7}, {0.7}, {2}}, .codes = {1201, 1101},
          .pieces = {{"coude_ext", 'O'}, {"coude_int", 'O'}},
          .raccords = {{"coude_ext", "coude_int", "C45"}}};
}

/// Two elliptic shafts on a plate, an O around each, side by side in a stream.
Forme futs(Alea& alea) {
  const double x = alea.entre(1.6, 2), h = alea.entre(1.4, 1.8);
  const double ax = q * alea.entre(0.5, 0.7), ay = q * alea.entre(0.4, 0.6);
  const double bx = q * alea.entre(0.5, 0.7), by = q * alea.entre(0.4, 0.6);
  return {.nom = "deux_futs_en_O", .balayage = Balayage::extrusion,
          .mesures = {alea.entre(2, 3), alea.entre(0.8, 1)},
          .points = {{'o', {-x, 0}}, {'a', {ax - x, -ay}}, {'b', {ax - x, ay}},
                     {'d', {-ax - x, ay}}, {'g', {-ax - x, -ay}}, {'p', {x, 0}},
                     {'e', {x + bx, -by}}, {'f', {x + bx, by}}, {'i', {x - bx, by}},
                     {'j', {x - bx, -by}}, {'P', {0, -h}}, {'Q', {0, h}}, {'R', {-2 * x, h}},
                     {'S', {-2 * x, -h}}, {'T', {2 * x, -h}}, {'V', {2 * x, h}}},
          .lignes = {{"abdga", 120, 'o'}, {"efije", 121, 'p'}, {"RS", 201}, {"TV", 301},
                     {"VQR", 1301}, {"SPT", 1302}},
          .zones = {{"aPQb", 0, 1}, {"bQRd", 0, 2}, {"dRSg", 0, 1}, {"gSPa", 0, 2}, {"iQPj", 0, 1},
                    {"jPTe", 0, 2}, {"eTVf", 0, 1}, {"fVQi", 0, 2}},
          .classes = {{0.7, 1, alea.entre(0.3, 0.5)}, {0.7}, {0.7}, {1.2}}, .codes = {122, 501},
          .pieces = {{"fut_amont", 'O'}, {"fut_aval", 'O'}, {"plateau", 'H'}},
          .raccords = {{"fut_amont", "plateau", "C90"}, {"fut_aval", "plateau", "C90"}}};
}

// clang-format on

Cote cote(const Forme& f, char debut, char fin, const Ligne& l) {
  const Vec a = f.points.at(debut), b = f.points.at(fin);
  if (!l.centre) return {debut, fin, l.code, 1, {a, 0.5 * (a + b), b}};
  return {debut, fin, l.code, l.poids, {a, a + b - f.points.at(l.centre), b}};
}

/// The side between two points as a zone meets it; "TN" and "NT" are two if lines name both.
Zone::Bord bord(Forme& f, char p, char r) {
  for (const bool inverse : {false, true})
    for (unsigned c = 0; c < f.cotes.size(); ++c)
      if (f.cotes[c].debut == (inverse ? r : p) && f.cotes[c].fin == (inverse ? p : r))
        return {c, inverse};
  f.cotes.push_back(cote(f, p, r, {}));
  return {static_cast<unsigned>(f.cotes.size() - 1), false};
}

}  // namespace

Forme forme(unsigned numero, std::uint64_t graine) {
  constexpr std::array formes{fuselage, aile, canal, dome, nacelle, soufflerie, coude, futs};
  static_assert(formes.size() == nb_formes);
  Alea alea(graine * nb_formes + numero);
  Forme f = formes[numero](alea);
  for (const Ligne& l : f.lignes)
    for (std::size_t i = 0; i + 1 < l.lettres.size(); ++i)
      f.cotes.push_back(cote(f, l.lettres[i], l.lettres[i + 1], l));
  for (Zone& z : f.zones) {
    const std::string& c = z.coins;
    z.bords = {bord(f, c[0], c[3]), bord(f, c[0], c[1]), bord(f, c[1], c[2]), bord(f, c[3], c[2])};
  }
  return f;
}

}  // namespace topomine::gen
