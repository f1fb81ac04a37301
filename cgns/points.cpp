#include <algorithm>
#include <cstdlib>
#include <utility>

#include "cgns/lecture_zone.h"

namespace topomine {

namespace {

/// The axis of cell faces that lie in one plane: the one whose number does not vary and is that of
/// an end. None where two could be.
int axe_des_faces(const Ijk& taille, const Plage& p) {
  int axe = Points::inconnu;
  for (const std::size_t a : axes_ijk) {
    if (p.min[a] != p.max[a] || (p.min[a] != 1 && p.min[a] != taille[a])) continue;
    // Cells go to the last node but one: the last one is a face's number only along its normal.
    if (p.min[a] == taille[a]) return static_cast<int>(a);
    if (axe != Points::inconnu) return Points::inconnu;
    axe = static_cast<int>(a);
  }
  return axe;
}

}  // namespace

void controler_nombre(const Zone& zone, const std::string& quoi, Indice nb, bool plage) {
  if (nb < 1 || nb > zone_entiere(zone.taille).nb_noeuds() || (plage && nb != 2))
    throw MaillageRefuse("zone '" + zone.nom + "', " + quoi + " : " + std::to_string(nb) +
                         " points");
}

std::optional<Plage> plage_des_points(const Ijk& taille, const Points& points) {
  if (points.valeurs.empty()) return {};
  Plage p{points.valeurs[0], points.valeurs[0]};
  for (const Ijk& v : points.valeurs)
    for (const std::size_t a : axes_ijk) {
      p.min[a] = std::min(p.min[a], v[a]);
      p.max[a] = std::max(p.max[a], v[a]);
    }
  if (!zone_entiere(taille).contient(p)) return {};
  if (points.liste) {
    std::vector<Ijk> tries = points.valeurs;
    std::ranges::sort(tries);
    tries.erase(std::unique(tries.begin(), tries.end()), tries.end());
    if (static_cast<Indice>(tries.size()) != p.nb_noeuds()) return {};
  }
  if (points.axe != Points::noeuds) {
    const int axe = points.axe == Points::inconnu ? axe_des_faces(taille, p) : points.axe;
    if (axe == Points::inconnu) return {};
    for (const std::size_t a : axes_ijk)
      if (static_cast<int>(a) != axe) ++p.max[a];
    if (!zone_entiere(taille).contient(p)) return {};
  }
  if (place_de(taille, p) < 0) return {};
  return p;
}

std::vector<Ijk> images_en_ordre(const std::vector<Ijk>& noeuds, const std::vector<Ijk>& images) {
  std::vector<std::pair<Ijk, Ijk>> paires;
  for (std::size_t n = 0; n < std::min(noeuds.size(), images.size()); ++n) {
    const auto& [i, j, k] = noeuds[n];
    paires.push_back({{k, j, i}, images[n]});
  }
  std::ranges::sort(paires);
  std::vector<Ijk> r;
  r.reserve(paires.size());
  for (const auto& [noeud, image] : paires) r.push_back(image);
  return r;
}

std::optional<Passage> passage_vers(const Plage& plage, const std::vector<Ijk>& images) {
  if (static_cast<Indice>(images.size()) != plage.nb_noeuds()) return {};
  Passage p{plage.min, images[0], {}};
  unsigned pris = 0;
  Indice saut = 1;
  std::size_t plat = 0;
  for (const std::size_t a : axes_ijk) {
    if (plage.min[a] == plage.max[a]) {
      plat = a;
      continue;
    }
    const Ijk& suivant = images[static_cast<std::size_t>(saut)];
    for (const std::size_t b : axes_ijk) {
      const Indice pas = suivant[b] - images[0][b];
      if (std::abs(pas) != 1 || p.t[a] != 0) continue;
      p.t[a] = static_cast<int>(pas) * (static_cast<int>(b) + 1);
      pris |= 1U << b;
    }
    saut *= plage.max[a] - plage.min[a] + 1;
  }
  // Across the surface any way will do: nodes off it are never asked for.
  for (int b = 0; b < 3 && p.t[plat] == 0; ++b)
    if (!(pris >> b & 1U)) p.t[plat] = b + 1;
  if (!transformation_valide(p.t)) return {};
  std::size_t n = 0;
  for (Indice k = plage.min[2]; k <= plage.max[2]; ++k)
    for (Indice j = plage.min[1]; j <= plage.max[1]; ++j)
      for (Indice i = plage.min[0]; i <= plage.max[0]; ++i)
        if (p(Ijk{i, j, k}) != images[n++]) return {};
  return p;
}

}  // namespace topomine
