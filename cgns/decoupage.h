#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "cgns/structure.h"

namespace topomine {

inline constexpr std::size_t aucun = static_cast<std::size_t>(-1);

/// A piece of a block face that is one thing: joined whole, under the same conditions, or bare.
struct Morceau {
  std::size_t zone = 0;
  int place = 0;
  Plage plage;
  std::size_t jonction = aucun;  ///< the join that says where it leads
  std::size_t face = aucun;      ///< the piece that it is one face with, itself or an earlier one
  std::vector<std::size_t> conditions;  ///< none on a joined or a bare piece
};

/// The six faces of every zone, cut into pieces.
struct Decoupage {
  std::vector<Morceau> morceaux;  ///< by zone, then slot, then range
  std::vector<std::array<std::size_t, 7>>
      debuts;                     ///< per zone: first piece of each slot, and the end
  std::vector<std::string> dits;  ///< bare pieces, overlaps, ignored conditions

  std::size_t debut(std::size_t zone, int place) const {
    return debuts[zone][static_cast<std::size_t>(place)];
  }
  std::size_t fin(std::size_t zone, int place) const {
    return debuts[zone][static_cast<std::size_t>(place) + 1];
  }
};

/// "zone 'aile' [1:9,1:1,1:5]"
std::string lieu(const Structure& s, std::size_t zone, const Plage& plage);

/// The pieces that joins and conditions make of the faces; what they leave over becomes bare
/// pieces. Expects a valid structure. Throws MaillageRefuse when joins contradict each other.
Decoupage decouper(const Structure& s);

}  // namespace topomine
