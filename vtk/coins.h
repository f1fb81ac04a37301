#pragma once

#include <array>
#include <optional>

#include "base/base.h"
#include "mesh/vecteur.h"

namespace topomine {

// Where the corners of blocks and faces are. The queries of Base lose the corners of what has
// collapsed (a face shrunk to a line, an edge to a point: empty slots); here they are derived from
// the faces and edges that are left, so that a corner may occur several times.

/// Vertices of a block; corner (i,j,k) at i + 2*j + 4*k.
using CoinsBloc = std::array<int, 8>;
/// Vertices of a face, one after the other around it.
using CoinsFace = std::array<int, 4>;

/// Nothing when the tables do not give all corners (a broken case).
std::optional<CoinsBloc> coins_bloc(const Base& base, const Block& bloc);
std::optional<CoinsFace> coins_face(const Base& base, const Face& face);
/// The two ends of an edge; nothing when one of them is not in the files.
std::optional<std::array<int, 2>> bouts_edge(const Base& base, int edge);

/// Position of a vertex that the table holds.
Vec position(const Base& base, int vertex);

/// Volume between the eight corners with bilinear faces, below 0 for left-handed axes (i,j,k). As
/// mesh/hexaedre.h has it, but for the order of its sums: an export has all its digits.
double volume(const std::array<Vec, 8>& coins);
double volume(const Base& base, const CoinsBloc& coins);

}  // namespace topomine
