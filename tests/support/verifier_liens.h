#pragma once

#include <map>
#include <utility>

#include "base/base.h"

/// True when, on one level of a base, each number > 0 that an upper entity holds is met by the
/// lower entity's reference back, `fois` times (once per make_link), and there is no other.
template <class Haut, class Bas, class NbHaut, class LireHaut, class NbBas, class LireBas>
bool niveau_lie(const Haut& hauts, const Bas& bas, NbHaut nb_haut, LireHaut lire_haut, NbBas nb_bas,
                LireBas lire_bas, int fois) {
  std::map<std::pair<int, int>, int> descendants, montants;  // (upper, lower) -> how often
  for (const auto& [n, e] : hauts)
    for (int i = 0; i < (e.*nb_haut)(); ++i)
      if (const int v = (e.*lire_haut)(i); v > 0) descendants[{n, v}] += fois;
  for (const auto& [n, e] : bas)
    for (int i = 0; i < (e.*nb_bas)(); ++i) ++montants[{(e.*lire_bas)(i), n}];
  return descendants == montants;
}

/// Every downward number > 0 of a linked base is met by an upward one exactly as often, and back.
inline bool liens_reciproques(const Base& b, int fois = 1) {
  return niveau_lie(b.blocs, b.faces, &Block::nb_face,
                    static_cast<int (Block::*)(int) const>(&Block::_face), &Face::nb_bloc,
                    static_cast<int (Face::*)(int) const>(&Face::_bloc), fois) &&
         niveau_lie(b.faces, b.edges, &Face::nb_edge,
                    static_cast<int (Face::*)(int) const>(&Face::_edge), &Edge::nb_face,
                    static_cast<int (Edge::*)(int) const>(&Edge::_face), fois) &&
         niveau_lie(b.edges, b.vrtxs, &Edge::nb_vrtx,
                    static_cast<int (Edge::*)(int) const>(&Edge::_vrtx), &Vertex::nb_edge,
                    static_cast<int (Vertex::*)(int) const>(&Vertex::_edge), fois);
}
