// Blocks, faces, edges and vertices of a shape. All numbers count from 0 here, from 1 in the files.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tools/gen/forme.h"

namespace topomine::gen {

using Num = std::uint32_t;

/// Corner i + 2j + 4k; face slot 3*side + axis, axes i j k being u v w.
struct Bloc {
  Num zone;
  std::array<Num, 3> ijk;
  std::array<Num, 8> sommets;
  std::array<Num, 6> faces;
};

/// Edge slot 2*side + axis; seen from `bloc`, the first block that has it, in slot `place`.
struct Face {
  std::array<Num, 4> edges;
  Num bloc;
  std::uint8_t place;
  std::uint8_t nb_bloc;  // 1 on the boundary
  std::uint16_t patch;   // of a boundary face
};

struct Edge {
  Num a, b;
  Num nb_face;
};

/// Edge or vertex `num` touches `patch`.
struct Contact {
  Num num;
  unsigned patch;
  Vec normale;  // outward unit normal of the patch, at a vertex
};

struct Maillage {
  std::vector<int> patchs;  // Damas codes
  std::vector<Bloc> blocs;
  std::vector<Face> faces;
  std::vector<Edge> edges;
  std::vector<Vec> sommets;
  std::vector<Contact> edges_bord, sommets_bord;  // by number, then patch; each pair once
};

/// The shape cut into exactly `nb_bloc` blocks (at least 1).
Maillage mailler(const Forme& f, Num nb_bloc);

}  // namespace topomine::gen
