#pragma once

#include <array>

namespace topomine {

// The local numbering of a hexahedral block, shared by the readers and the queries.
//
//    k   j      face slot of a block = 3*cote + axe      edge slot of a face = 2*cote + axe
//    |  /         0 i-min   1 j-min   2 k-min             0 l-min   1 m-min
//    | /          3 i-max   4 j-max   5 k-max             2 l-max   3 m-max
//    O----- i   corner (i,j,k) is common to the         corner (l,m) is common to the
//               faces 3i, 3j+1 and 3k+2                  edges 2l and 2m+1

inline constexpr int nb_faces_bloc = 6;
inline constexpr int nb_edges_face = 4;
inline constexpr int nb_vrtxs_edge = 2;

/// Names of the slots.
inline constexpr std::array<const char*, nb_faces_bloc> noms_faces{"i-min", "j-min", "k-min",
                                                                   "i-max", "j-max", "k-max"};
inline constexpr std::array<const char*, nb_edges_face> noms_edges{"l-min", "m-min", "l-max",
                                                                   "m-max"};

/// Type of a block none of whose faces is at the boundary; each that is adds 1.
inline constexpr int type_sans_bord = 30;

/// Slot of the block face on side `cote` (0 minimum, 1 maximum) of `axe` (0 i, 1 j, 2 k). Any other
/// side gives what the formula does, modulo 2^32.
constexpr int place_face(int cote, int axe) {
  return static_cast<int>(3 * static_cast<unsigned>(cote) + static_cast<unsigned>(axe));
}

/// Slot of the face edge on side `cote` (0 minimum, 1 maximum) of `axe` (0 l, 1 m); as above for
/// others.
constexpr int place_edge(int cote, int axe) {
  return static_cast<int>(2 * static_cast<unsigned>(cote) + static_cast<unsigned>(axe));
}

}  // namespace topomine
