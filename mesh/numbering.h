#pragma once

namespace topomine {

// The local numbering of a hexahedral block, shared by the readers and the queries.
//
//    k   j      face slot of a block = 3*side + axis    edge slot of a face = 2*side + axis
//    |  /         0 i-min   1 j-min   2 k-min             0 l-min   1 m-min
//    | /          3 i-max   4 j-max   5 k-max             2 l-max   3 m-max
//    O----- i   corner (i,j,k) is common to the         corner (l,m) is common to the
//               faces 3i, 3j+1 and 3k+2                  edges 2l and 2m+1

inline constexpr int nb_faces_bloc = 6;
inline constexpr int nb_edges_face = 4;
inline constexpr int nb_vrtxs_edge = 2;

/// Slot of the block face on `side` (0 minimum, 1 maximum) of `axis` (0 i, 1 j, 2 k). Any other
/// side gives what the formula does, modulo 2^32.
constexpr int place_face(int side, int axis) {
  return static_cast<int>(3 * static_cast<unsigned>(side) + static_cast<unsigned>(axis));
}

/// Slot of the face edge on `side` (0 minimum, 1 maximum) of `axis` (0 l, 1 m); as above for
/// others.
constexpr int place_edge(int side, int axis) {
  return static_cast<int>(2 * static_cast<unsigned>(side) + static_cast<unsigned>(axis));
}

}  // namespace topomine
