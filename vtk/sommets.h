#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "base/base.h"

namespace topomine {

// Internal to vtk/.

inline constexpr int edge_effacee = 0;    ///< the edge has shrunk to a point
inline constexpr int edge_inconnue = -1;  ///< nothing says which edge it is

/// Finds the vertices of corners, known by their ranks, from the edges between them.
class Sommets {
 public:
  Sommets(const Base& base, std::size_t nb) : base_(base), coins_(nb) {}

  /// The edge between corners a and b. False when its ends are not known.
  bool joindre(std::size_t a, std::size_t b, int edge);
  /// True when every corner has its vertex.
  bool resoudre();

  template <std::size_t N>
  std::array<int, N> coins() const {
    std::array<int, N> v{};
    for (std::size_t i = 0; i < N; ++i) v[i] = *coins_[i];
    return v;
  }

 private:
  /// The edge between two corners.
  struct Cote {
    std::size_t a, b;
    int edge;
    std::array<int, 2> bouts{};

    bool touche(std::size_t c) const { return a == c || b == c; }
    std::size_t autre(std::size_t c) const { return a == c ? b : a; }
  };

  bool determine(std::size_t c) const;
  bool convient(std::size_t c, int v) const;
  std::vector<int> candidats(std::size_t c) const;

  const Base& base_;
  std::vector<Cote> cotes_;
  std::vector<std::optional<int>> coins_;
};

}  // namespace topomine
