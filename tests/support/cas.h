#pragma once

#include <array>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "base/base.h"
#include "tests/support/dossier.h"

/// A small case whose geometry is known apart from its tables: what the queries must find.
struct Cas {
  std::string nom;
  Base base;  ///< downward references only, as the files give them
  /// Vertex at corner (i,j,k) of a block, at index 4i+2j+k.
  std::map<int, std::array<int, 8>> coins;
  /// Vertex at corner (l,m) of a face, at index 2l+m.
  std::map<int, std::array<int, 4>> coins_face;
  /// Edge between two adjacent face slots of a block, by (block, slot, slot).
  std::map<std::array<int, 3>, int> aretes;
};

/// How a test that has the case as its parameter is called.
inline std::ostream& operator<<(std::ostream& out, const Cas& cas) {
  return out << cas.nom;
}

/// Blocks in the cells of a grid of n[0]*n[1]*n[2] that `plein` keeps, all where it is empty; when
/// `boucle`, the first axis closes on itself. All numbers are above 5; blocks are numbered
/// downwards.
Cas grille(const std::string& nom, std::array<int, 3> n, bool boucle = false,
           const std::function<bool(int, int, int)>& plein = {});

/// One block alone, boxes, a closed ring (O), two blocks sharing two faces, a block that meets
/// itself, an open ring (C), an H, and a box whose inner face is not in the table.
std::vector<Cas> tous_les_cas();

/// <nom>contenu</nom>
std::string el(const std::string& nom, const std::string& contenu);
std::string el(const std::string& nom, int v);

/// The documents of a base, without declaration.
std::string xml_blocs(const Base& b);
std::string xml_faces(const Base& b);
std::string xml_edges(const Base& b);
std::string xml_vrtxs(const Base& b);
std::string xml_scene(const Base& b);

/// Writes the five files where b.gen_nom_base() and b.type say, the data folder being `d`.
void ecrire_cas(const Base& b, const Dossier& d);
