// Description of a base before it is cut into blocks: a plane section made of
// four-sided zones, swept along a third direction.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <numbers>
#include <string>
#include <vector>

#include "tools/gen/vec.h"

namespace topomine::gen {

/// Sides along the points of `lettres`, one after the other. Conic arcs leave their ends with the
/// tangents of a quarter ellipse about `centre`, and follow it with the weight given here; with
/// weight 1 they are parabolas.
struct Ligne {
  std::string lettres;
  int code = 0;     // Damas code of the patch, 0 inside the domain
  char centre = 0;  // 0: straight
  double poids = std::numbers::sqrt2 / 2;
};

/// One side between two points of the section, as zones share it.
struct Cote {
  char debut, fin;
  int code;
  double poids;
  std::array<Vec, 3> controle;
};

/// Four corners a b c d, counterclockwise; u runs from a to b, v from a to d.
struct Zone {
  std::string coins;
  unsigned u = 0, v = 0;  // classes: sides that face each other are cut alike
  struct Bord {
    unsigned cote = 0;
    bool inverse = false;
  };
  std::array<Bord, 4> bords{};  // u-min, v-min, u-max, v-max; found from the corners
};

/// How one direction is cut.
struct Classe {
  double poids = 1;      // share of the blocks
  unsigned mini = 1;     // least number of blocks
  double etirement = 0;  // in ]-1,1[; > 0 gathers the blocks at the start
};

enum class Balayage { extrusion, revolution, fuseau, bosse, sphere };

struct Piece {
  std::string nom;  // its family is "paroi_" and the name
  char topologie;
};

struct Raccord {
  std::string piece1, piece2, type;
};

struct Forme {
  std::string nom;
  Balayage balayage{};
  std::array<double, 4> mesures{};  // of the sweep, see balayer()
  std::map<char, Vec> points;
  std::vector<Ligne> lignes;  // sides that no line names are straight and inside
  std::vector<Zone> zones;
  std::vector<Classe> classes;  // the last one is the swept direction
  std::array<int, 2> codes{};   // patches at the two ends of the sweep
  std::vector<Piece> pieces;
  std::vector<Raccord> raccords;
  double fleche = 0;  // degrees
  int nb_moteur = 0;
  std::vector<Cote> cotes{};  // made from the lines
};

/// One line of climite.cfg.
struct Condition {
  int code, bccode;
  const char* famille;
};

extern const std::vector<Condition> conditions;
inline constexpr int code_sans_condition = 1401;  // faces left bare by an unfinished layer

const Condition& condition(int code);

inline constexpr unsigned nb_formes = 8;

/// Shape `numero` (0 to 7) with the dimensions that `graine` gives it.
Forme forme(unsigned numero, std::uint64_t graine);

/// Point of a zone, u, v and w in [0,1], with its derivatives by u, v and w (right-handed).
Dual3 image(const Forme& f, const Zone& z, double u, double v, double w);

}  // namespace topomine::gen
