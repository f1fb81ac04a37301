#pragma once

#include <array>
#include <functional>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "base/base.h"
#include "base/configuration.h"
#include "tests/support/dossier.h"

using Cle = std::array<int, 3>;  ///< twice the coordinates of an entity's middle

/// The middle of what lies on the side of block slot s (see mesh/numbering.h) of what c is the
/// middle of: a block's face, a face's edge, an edge's vertex.
inline Cle vers(Cle c, int s) {
  c[static_cast<std::size_t>(s % 3)] += s / 3 ? 1 : -1;
  return c;
}

/// A small case whose geometry is known apart from its tables: what the queries must find.
struct Cas {
  Base base;  ///< downward references only, as the files give them
  int tour;   ///< where the first coordinate starts again from 0; 0 for nowhere
  std::map<int, Cle> blocs, faces;
  /// Number of the face, edge or vertex whose middle is c.
  int numero(const Cle& c) const {
    return 10 + (tour ? c[0] % tour : c[0]) + 12 * c[1] + 84 * c[2];
  }
};

/// How a test that has the case as its parameter is called.
inline std::ostream& operator<<(std::ostream& out, const Cas& cas) {
  return out << cas.base.nom;
}

/// Blocks in the cells of a grid of n[0]*n[1]*n[2] that `plein` keeps, all where it is empty; when
/// `boucle`, the first axis closes on itself. No two entities of any kind have the same number.
Cas grille(const std::string& nom, const Cle& n, bool boucle = false,
           const std::function<bool(int, int, int)>& plein = {});

/// One block alone, boxes, a closed ring (O), two blocks sharing two faces, a block that meets
/// itself, an open ring (C), an H, and a box whose inner face is not in the table.
std::vector<Cas> tous_les_cas();

/// <nom>contenu...</nom>
template <class... T>
std::string el(const std::string& nom, const T&... contenu) {
  std::ostringstream s;
  s.precision(17);
  ((s << '<' << nom << '>') << ... << contenu) << "</" << nom << ">\n";
  return s.str();
}

/// The documents of a base, without declaration.
std::string xml_blocs(const Base& b);
std::string xml_faces(const Base& b);
std::string xml_edges(const Base& b);
std::string xml_vrtxs(const Base& b);
std::string xml_scene(const Base& b);

/// Writes the five files of the base; b.chemin is taken from the folder `d` on.
void ecrire_cas(const Base& b, const Dossier& d);
