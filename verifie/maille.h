#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "base/base.h"
#include "mesh/numbering.h"
#include "mesh/vecteur.h"

namespace topomine {

// A base as the rules of the checker see it: entities by rank in their table instead of by number,
// links both ways. Once a rule has found a wrong link it mends it here, so that what follows from
// it is not found again.

constexpr int vide = -1;     ///< a slot that the file leaves empty
constexpr int inconnu = -2;  ///< a slot that could not be read, or that names what does not exist

/// Entities with more links or codes than this are skipped by the rules: no real mesh has them, and
/// time stays linear.
constexpr std::size_t beaucoup = 64;

/// Lists of ranks, one per owner, in one piece of memory.
class Listes {
 public:
  Listes() = default;
  /// From pairs (owner, rank); of one owner they keep their order.
  template <class Parcourir>
  Listes(std::size_t nb, Parcourir parcourir) : debuts_(nb + 1, 0) {
    parcourir([&](int de, int) { ++debuts_[static_cast<std::size_t>(de) + 1]; });
    for (std::size_t i = 0; i < nb; ++i) debuts_[i + 1] += debuts_[i];
    rangs_.resize(debuts_[nb]);
    std::vector<std::size_t> ou(debuts_.begin(), debuts_.end() - 1);
    parcourir([&](int de, int rang) { rangs_[ou[static_cast<std::size_t>(de)]++] = rang; });
  }
  std::span<const int> operator[](int i) const {
    const auto u = static_cast<std::size_t>(i);
    return {rangs_.data() + debuts_[u], debuts_[u + 1] - debuts_[u]};
  }

 private:
  std::vector<std::size_t> debuts_;
  std::vector<int> rangs_;
};

/// The numbers of a table, ascending, and back to their ranks.
class Rangs {
 public:
  template <class Table>
  explicit Rangs(const Table& table) {
    numeros_.reserve(table.size());
    for (const auto& [numero, entite] : table) numeros_.push_back(numero);
  }
  Rangs() = default;
  int nb() const { return static_cast<int>(numeros_.size()); }
  int numero(int rang) const { return numeros_[static_cast<std::size_t>(rang)]; }
  /// `inconnu` for a number that the table lacks.
  int rang(int numero) const;

 private:
  std::vector<int> numeros_;
};

template <std::size_t N>
using Liens = std::vector<std::array<int, N>>;

struct Maille {
  using Coins = std::array<int, 8>;  ///< corner i + 2j + 4k

  Rangs num_blocs, num_faces, num_edges, num_sommets;
  Liens<nb_faces_bloc> blocs;
  Liens<nb_edges_face> faces;
  Liens<nb_vrtxs_edge> edges;
  std::vector<Vec> positions;
  std::vector<std::pair<int, int>> partages;  ///< block and face: the face is a part of a slot
  Listes blocs_de_face, faces_d_edge;

  Maille() = default;
  /// Numbers only; the slots come with relier().
  explicit Maille(const Base& base);

  /// The upward links, from the slots as they are now.
  void monter_edges();
  void monter_faces();

  /// Vertices of a face, each once, in the order of its edges; less than 3 when it is no face.
  std::vector<int> sommets(int face) const;
  /// Corners of a block; false when one of them cannot be told. A corner of a collapsed slot is the
  /// vertex to which it shrank.
  bool coins(int bloc, Coins& coins) const;
  /// An edge that joins two vertices, `inconnu` when there is none.
  int edge_entre(int de, int vers) const;

 private:
  mutable std::map<std::pair<int, int>, int> par_bouts_;
};

template <class T>
auto& au(T& liste, int rang) {
  return liste[static_cast<std::size_t>(rang)];
}

/// Number of ranks that two slots lists have in common; empty ones do not count.
template <std::size_t N>
int nb_communs(const std::array<int, N>& x, const std::array<int, N>& y) {
  int n = 0;
  for (const int r : x)
    if (r >= 0)
      for (const int s : y) n += r == s;
  return n;
}

inline bool contient(std::span<const int> liste, int rang) {
  return std::ranges::find(liste, rang) != liste.end();
}

}  // namespace topomine
