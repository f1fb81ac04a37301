#include "cgns/jointures.h"

#include <algorithm>

#include "texte/nombres.h"

namespace topomine {

namespace {

template <class Action>
void parcourir(const Plage& p, Action agir) {
  for (Indice k = p.min[2]; k <= p.max[2]; ++k)
    for (Indice j = p.min[1]; j <= p.max[1]; ++j)
      for (Indice i = p.min[0]; i <= p.max[0]; ++i) agir(Ijk{i, j, k});
}

}  // namespace

Jointures::Jointures(const Structure& s, double tolerance)
    : s_(s), tolerance_(tolerance), de_zone_(s.zones.size()) {
  for (std::size_t n = 0; n < s.jonctions.size(); ++n) {
    de_zone_[s.jonctions[n].zone].push_back(n);
    if (s.jonctions[n].voisine != s.jonctions[n].zone)
      de_zone_[s.jonctions[n].voisine].push_back(n);
  }
}

void Jointures::passer(std::size_t zone, const Coordonnees& c, double taille) {
  for (const std::size_t n : de_zone_[zone]) {
    const Jonction& j = s_.jonctions[n];
    Attente ici{{}, taille}, la{{}, taille};
    if (j.zone == zone) parcourir(j.plage, [&](const Ijk& p) { ici.noeuds.push_back(c.noeud(p)); });
    if (j.voisine == zone)
      parcourir(j.plage, [&](const Ijk& p) { la.noeuds.push_back(c.noeud(j.passage(p))); });
    if (j.zone == j.voisine) {
      comparer(j, ici, la);
    } else if (const auto autre = en_attente_.extract(n)) {
      comparer(j, j.zone == zone ? ici : la, autre.mapped());
    } else {
      en_attente_.emplace(n, std::move(j.zone == zone ? ici : la));
    }
  }
}

void Jointures::comparer(const Jonction& j, const Attente& a, const Attente& b) const {
  double ecart = 0;
  for (std::size_t n = 0; n < a.noeuds.size(); ++n)
    ecart = std::max(ecart, norme(a.noeuds[n] - b.noeuds[n]));
  const double permis = tolerance_ * std::min(a.taille, b.taille);
  if (ecart <= permis) return;
  throw MaillageRefuse("raccord '" + j.nom + "' : zone '" + s_.zones[j.zone].nom + "' " +
                       texte_plage(j.plage) + " et zone '" + s_.zones[j.voisine].nom + "' " +
                       texte_plage(j.passage(j.plage)) + " sont a " + en_texte(ecart, 3) +
                       " l'une de l'autre (permis : " + en_texte(permis, 3) + ")");
}

}  // namespace topomine
