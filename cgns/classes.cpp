#include "cgns/classes.h"

namespace topomine {

namespace {

// A zone has 20 elements of its own and a join leads each to one other; only joins that lead round
// and round with an offset make more.
constexpr std::size_t elements_max = 20'000'000;
constexpr std::size_t tests_max = 2'000'000'000;

}  // namespace

Classes::Classes(const Structure& s) : departs_(s.zones.size()), credit_(tests_max) {
  for (const Jonction& j : s.jonctions) {
    departs_[j.zone].push_back({j.plage, j.passage, j.voisine});
    departs_[j.voisine].push_back({j.passage(j.plage), j.passage.inverse(), j.zone});
  }
}

std::size_t Classes::rang(const Cle& cle) {
  const auto [place, nouveau] = rangs_.try_emplace(cle, cles_.size());
  if (nouveau) {
    if (cles_.size() >= elements_max) throw MaillageRefuse("raccords trop emmeles");
    cles_.push_back(cle);
    parents_.push_back(place->second);
  }
  return place->second;
}

std::size_t Classes::element(std::size_t zone, const Plage& plage) {
  const std::size_t debut = cles_.size();
  const std::size_t e = rang({zone, plage});
  propager(debut);
  return e;
}

void Classes::propager(std::size_t debut) {
  for (std::size_t e = debut; e < cles_.size(); ++e) {
    const auto [zone, plage] = cles_[e];
    const std::vector<Depart>& departs = departs_[zone];
    if (credit_ < departs.size()) throw MaillageRefuse("raccords trop emmeles");
    credit_ -= departs.size();
    for (const Depart& d : departs)
      if (d.plage.contient(plage)) unir(e, rang({d.vers, d.passage(plage)}));
  }
}

std::size_t Classes::classe(std::size_t element) {
  while (parents_[element] != element) element = parents_[element] = parents_[parents_[element]];
  return element;
}

void Classes::unir(std::size_t a, std::size_t b) {
  parents_[classe(b)] = classe(a);
}

}  // namespace topomine
