#include "cgns/plages.h"

#include <algorithm>
#include <cstdlib>

#include "mesh/numbering.h"

namespace topomine {

bool Plage::contient(const Ijk& p) const {
  return std::ranges::all_of(axes_ijk,
                             [&](std::size_t a) { return min[a] <= p[a] && p[a] <= max[a]; });
}

Indice Plage::nb_noeuds() const {
  Indice n = 1;
  for (const std::size_t a : axes_ijk) n *= max[a] - min[a] + 1;
  return n;
}

int Plage::nb_axes_plats() const {
  int n = 0;
  for (const std::size_t a : axes_ijk) n += min[a] == max[a];
  return n;
}

Plage plage_entre(const Ijk& a, const Ijk& b) {
  Plage p;
  for (const std::size_t i : axes_ijk) {
    p.min[i] = std::min(a[i], b[i]);
    p.max[i] = std::max(a[i], b[i]);
  }
  return p;
}

std::string texte_plage(const Plage& p) {
  std::string texte = "[";
  for (const std::size_t a : axes_ijk)
    texte += (a ? "," : "") + std::to_string(p.min[a]) + ":" + std::to_string(p.max[a]);
  return texte + "]";
}

Plage face_entiere(const Ijk& taille, int place) {
  Plage p = zone_entiere(taille);
  const auto axe = static_cast<std::size_t>(place % 3);
  if (place / 3)
    p.min[axe] = taille[axe];
  else
    p.max[axe] = 1;
  return p;
}

int place_de(const Ijk& taille, const Plage& p) {
  if (p.nb_axes_plats() != 1) return -1;
  for (int place = 0; place < nb_faces_bloc; ++place)
    if (face_entiere(taille, place).contient(p)) return place;
  return -1;
}

Ijk Passage::operator()(const Ijk& p) const {
  Ijk q = vers;
  for (const std::size_t a : axes_ijk) {
    const Indice pas = p[a] - depuis[a];
    q[static_cast<std::size_t>(std::abs(t[a]) - 1)] += t[a] > 0 ? pas : -pas;
  }
  return q;
}

Passage Passage::inverse() const {
  Passage r{vers, depuis, {}};
  for (const std::size_t a : axes_ijk) {
    const int axe = static_cast<int>(a) + 1;
    r.t[static_cast<std::size_t>(std::abs(t[a]) - 1)] = t[a] > 0 ? axe : -axe;
  }
  return r;
}

bool transformation_valide(const std::array<int, 3>& t) {
  return std::ranges::all_of(std::array{1, 2, 3}, [&](int axe) {
    return std::ranges::count(t, axe) + std::ranges::count(t, -axe) == 1;
  });
}

}  // namespace topomine
