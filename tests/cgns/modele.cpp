#include "tests/cgns/modele.h"

#include <cstdlib>

#include "cgns/mesures.h"

namespace topomine {

void Modele::condition(std::size_t zone, const Plage& plage, const std::string& famille,
                       int bccode) {
  Condition c;
  c.nom = "c" + std::to_string(s.conditions.size() + 1);
  c.famille = famille;
  c.bccode = bccode;
  c.zone = zone;
  c.plage = plage;
  s.conditions.push_back(c);
}

void Modele::jonction(std::size_t zone, const Plage& plage, std::size_t voisine,
                      const Passage& passage) {
  s.jonctions.push_back(
      {"r" + std::to_string(s.jonctions.size() + 1), zone, voisine, plage, passage});
}

std::size_t Modele::rang(std::size_t z, const Ijk& p) const {
  return Coordonnees{taille(z), {}, {}, {}}.rang(p);
}

const std::vector<std::array<int, 3>>& transformations() {
  static const std::vector<std::array<int, 3>> toutes = [] {
    std::vector<std::array<int, 3>> t;
    for (int a = -3; a <= 3; ++a)
      for (int b = -3; b <= 3; ++b)
        for (int c = -3; c <= 3; ++c)
          if (transformation_valide({a, b, c})) t.push_back({a, b, c});
    return t;
  }();
  return toutes;
}

namespace {

/// t, then u.
std::array<int, 3> composer(const std::array<int, 3>& t, const std::array<int, 3>& u) {
  std::array<int, 3> r{};
  for (std::size_t a = 0; a < 3; ++a) {
    const int b = u[static_cast<std::size_t>(std::abs(t[a]) - 1)];
    r[a] = t[a] > 0 ? b : -b;
  }
  return r;
}

}  // namespace

void tourner(Modele& m, std::size_t zone, const std::array<int, 3>& t) {
  Passage p{{1, 1, 1}, {1, 1, 1}, t};
  Ijk nouvelle{};
  for (std::size_t a = 0; a < 3; ++a) {
    const auto b = static_cast<std::size_t>(std::abs(t[a]) - 1);
    nouvelle[b] = m.taille(zone)[a];
    if (t[a] < 0) p.vers[b] = nouvelle[b];
  }
  const Ijk ancienne = m.taille(zone);
  const auto avant = m.xyz[zone];
  m.s.zones[zone].taille = nouvelle;
  std::size_t n = 0;
  for (Indice k = 1; k <= ancienne[2]; ++k)
    for (Indice j = 1; j <= ancienne[1]; ++j)
      for (Indice i = 1; i <= ancienne[0]; ++i, ++n)
        for (std::size_t d = 0; d < 3; ++d)
          m.xyz[zone][d][m.rang(zone, p(Ijk{i, j, k}))] = avant[d][n];
  for (Condition& c : m.s.conditions)
    if (c.zone == zone) c.plage = p(c.plage);
  const Passage retour = p.inverse();
  for (Jonction& j : m.s.jonctions) {
    if (j.voisine == zone) {
      j.passage.vers = p(j.passage.vers);
      j.passage.t = composer(j.passage.t, t);
    }
    if (j.zone != zone) continue;
    j.plage = p(j.plage);
    j.passage.depuis = p(j.passage.depuis);
    j.passage.t = composer(retour.t, j.passage.t);
  }
}

}  // namespace topomine
