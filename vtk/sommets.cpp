#include "vtk/sommets.h"

#include <algorithm>

#include "vtk/coins.h"

namespace topomine {

bool Sommets::joindre(std::size_t a, std::size_t b, int edge) {
  if (edge == edge_inconnue) return true;
  Cote cote{a, b, edge, {}};
  if (edge != edge_effacee) {
    const auto bouts = bouts_edge(base_, edge);
    if (!bouts) return false;
    cote.bouts = *bouts;
  }
  cotes_.push_back(cote);
  return true;
}

bool Sommets::resoudre() {
  const auto libre = [&](std::size_t c) { return !coins_[c] && determine(c); };
  std::size_t c = 0;
  while (c < coins_.size() && !libre(c)) ++c;
  if (c == coins_.size())
    return std::ranges::all_of(coins_, [](const auto& v) { return v.has_value(); });
  return std::ranges::any_of(candidats(c), [&](int v) {
    coins_[c] = v;
    const bool trouve = resoudre();
    if (!trouve) coins_[c].reset();
    return trouve;
  });
}

/// True when an edge at corner c leaves few vertices to it.
bool Sommets::determine(std::size_t c) const {
  return std::ranges::any_of(cotes_, [&](const Cote& cote) {
    return cote.touche(c) && (cote.edge != edge_effacee || coins_[cote.autre(c)]);
  });
}

bool Sommets::convient(std::size_t c, int v) const {
  return std::ranges::all_of(cotes_, [&](const Cote& cote) {
    if (!cote.touche(c)) return true;
    const std::optional<int>& w = coins_[cote.autre(c)];
    if (cote.edge == edge_effacee) return !w || *w == v;
    const auto [p, q] = cote.bouts;
    return (v == p && (!w || *w == q)) || (v == q && (!w || *w == p));
  });
}

std::vector<int> Sommets::candidats(std::size_t c) const {
  std::vector<int> valeurs;
  const auto proposer = [&](int v) {
    if (std::ranges::count(valeurs, v) == 0 && convient(c, v)) valeurs.push_back(v);
  };
  for (const Cote& cote : cotes_) {
    if (!cote.touche(c)) continue;
    if (cote.edge != edge_effacee)
      for (const int v : cote.bouts) proposer(v);
    else if (const auto& w = coins_[cote.autre(c)])
      proposer(*w);
  }
  return valeurs;
}

}  // namespace topomine
