#include "cgns/decoupage.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "mesh/numbering.h"

namespace topomine {

namespace {

constexpr char trop_de_morceaux[] = "face decoupee en trop de morceaux";

using Cle = std::tuple<std::size_t, int, Plage>;  // of a piece: zone, slot, range

/// True when two pieces of the same face have cells in common.
bool se_recouvrent(const Plage& a, const Plage& b, int place) {
  return std::ranges::all_of(axes_lm[static_cast<std::size_t>(place % 3)], [&](std::size_t axe) {
    return a.min[axe] < b.max[axe] && b.min[axe] < a.max[axe];
  });
}

/// The rectangles that pieces leave free on a face, found on the grid of their bounds.
class Reste {
 public:
  Reste(const Plage& face, int place)
      : face_(face), axes_(axes_lm[static_cast<std::size_t>(place % 3)]) {
    for (std::size_t d = 0; d < 2; ++d) coupes_[d] = {face.min[axes_[d]], face.max[axes_[d]]};
  }

  std::vector<Plage> libres(const std::vector<Plage>& prises) {
    for (const Plage& p : prises)
      for (std::size_t d = 0; d < 2; ++d) {
        coupes_[d].push_back(p.min[axes_[d]]);
        coupes_[d].push_back(p.max[axes_[d]]);
      }
    for (auto& c : coupes_) {
      std::ranges::sort(c);
      c.erase(std::unique(c.begin(), c.end()), c.end());
    }
    const std::size_t nl = coupes_[0].size() - 1, nm = coupes_[1].size() - 1;
    constexpr std::size_t cellules_max = 4'000'000;
    if (nl > cellules_max / nm) throw MaillageRefuse(trop_de_morceaux);
    libre_.assign(nl * nm, true);
    constexpr std::size_t couches_max = 16;
    reste_a_marquer_ = couches_max * nl * nm;
    for (const Plage& p : prises) marquer(p);
    std::vector<Plage> trouvees;
    for (std::size_t m = 0; m < nm; ++m)
      for (std::size_t l = 0; l < nl; ++l)
        if (libre_[m * nl + l]) trouvees.push_back(prendre(l, m));
    return trouvees;
  }

 private:
  std::size_t rang(std::size_t d, Indice noeud) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(coupes_[d], noeud) -
                                    coupes_[d].begin());
  }

  void marquer(const Plage& p) {
    const std::size_t nl = coupes_[0].size() - 1;
    const std::size_t l0 = rang(0, p.min[axes_[0]]), l1 = rang(0, p.max[axes_[0]]);
    const std::size_t m0 = rang(1, p.min[axes_[1]]), m1 = rang(1, p.max[axes_[1]]);
    const std::size_t aire = (l1 - l0) * (m1 - m0);
    if (aire > reste_a_marquer_) throw MaillageRefuse("face recouverte trop de fois");
    reste_a_marquer_ -= aire;
    for (std::size_t m = m0; m < m1; ++m)
      for (std::size_t l = l0; l < l1; ++l) libre_[m * nl + l] = false;
  }

  /// The largest free rectangle from there, along l first; it is taken.
  Plage prendre(std::size_t l, std::size_t m) {
    const std::size_t nl = coupes_[0].size() - 1, nm = coupes_[1].size() - 1;
    std::size_t fin_l = l, fin_m = m + 1;
    while (fin_l < nl && libre_[m * nl + fin_l]) ++fin_l;
    const auto rangee_libre = [&](std::size_t n) {
      for (std::size_t i = l; i < fin_l; ++i)
        if (!libre_[n * nl + i]) return false;
      return true;
    };
    while (fin_m < nm && rangee_libre(fin_m)) ++fin_m;
    Plage p = face_;
    p.min[axes_[0]] = coupes_[0][l];
    p.max[axes_[0]] = coupes_[0][fin_l];
    p.min[axes_[1]] = coupes_[1][m];
    p.max[axes_[1]] = coupes_[1][fin_m];
    marquer(p);
    return p;
  }

  Plage face_;
  std::array<std::size_t, 2> axes_;
  std::array<std::vector<Indice>, 2> coupes_;
  std::vector<bool> libre_;
  std::size_t reste_a_marquer_ = 0;
};

class Coupeur {
 public:
  explicit Coupeur(const Structure& s) : s_(s) {}

  Decoupage executer() {
    for (std::size_t j = 0; j < s_.jonctions.size(); ++j) ajouter_jonction(j);
    for (std::size_t c = 0; c < s_.conditions.size(); ++c) ajouter_condition(c);
    for (std::size_t z = 0; z < s_.zones.size(); ++z) {
      auto& debuts = d_.debuts.emplace_back();
      for (int place = 0; place < nb_faces_bloc; ++place) {
        debuts[static_cast<std::size_t>(place)] = d_.morceaux.size();
        ajouter_face(z, place);
      }
      debuts.back() = d_.morceaux.size();
    }
    relier();
    return std::move(d_);
  }

 private:
  /// What a piece of a face is used for.
  struct Emploi {
    std::size_t jonction = aucun;
    Cle partenaire{};
    std::vector<std::size_t> conditions;
  };

  Cle cle(std::size_t zone, const Plage& plage) const {
    return {zone, place_de(s_.zones[zone].taille, plage), plage};
  }

  /// Both sides; a join may be written on one of its zones or on both, in the same words.
  void ajouter_jonction(std::size_t n) {
    const Jonction& j = s_.jonctions[n];
    const Cle ici = cle(j.zone, j.plage), la = cle(j.voisine, j.passage(j.plage));
    for (const auto& [cote, autre] : {std::pair(ici, la), std::pair(la, ici)}) {
      Emploi& emploi = emplois_[cote];
      if (emploi.jonction == aucun) {
        emploi.jonction = n;
        emploi.partenaire = autre;
      } else if (emploi.partenaire != autre) {
        throw MaillageRefuse("raccords '" + s_.jonctions[emploi.jonction].nom + "' et '" + j.nom +
                             "' : " + lieu(s_, std::get<0>(cote), std::get<2>(cote)) +
                             " est raccordee a deux endroits");
      } else {
        accorder(s_.jonctions[emploi.jonction], j);
      }
    }
  }

  /// Two joins of the same two pieces must send the same corners to the same corners.
  void accorder(const Jonction& a, const Jonction& b) const {
    const bool meme = a.zone == b.zone && a.plage == b.plage;
    const Passage p = meme ? b.passage : b.passage.inverse();
    for (const Ijk& coin : coins(a.plage)) {
      if (a.passage(coin) == p(coin)) continue;
      // A piece that is folded onto itself is met twice, once from each end.
      if (meme && a.passage.inverse()(coin) == p(coin)) continue;
      throw MaillageRefuse("raccords '" + a.nom + "' et '" + b.nom +
                           "' : " + lieu(s_, a.zone, a.plage) + " y est orientee de deux facons");
    }
  }

  static std::array<Ijk, 3> coins(const Plage& p) {
    Ijk autre = p.min;
    for (const std::size_t a : axes_ijk)
      if (p.min[a] != p.max[a]) {
        autre[a] = p.max[a];
        break;
      }
    return {p.min, p.max, autre};
  }

  void ajouter_condition(std::size_t n) {
    const Condition& c = s_.conditions[n];
    Emploi& emploi = emplois_[cle(c.zone, c.plage)];
    const bool raccordee =
        emploi.jonction != aucun ||
        (!c.de_raccord && std::ranges::any_of(emploi.conditions, [this](std::size_t autre) {
          return s_.conditions[autre].de_raccord;
        }));
    if (!raccordee) return emploi.conditions.push_back(n);
    d_.dits.push_back("condition '" + c.nom + "' : " + lieu(s_, c.zone, c.plage) +
                      " est raccordee, la condition est laissee de cote");
  }

  void ajouter_face(std::size_t zone, int place) {
    const Plage face = face_entiere(s_.zones[zone].taille, place);
    std::vector<Plage> prises;
    const auto debut = emplois_.lower_bound(Cle{zone, place, Plage{}});
    for (auto it = debut;
         it != emplois_.end() && std::get<0>(it->first) == zone && std::get<1>(it->first) == place;
         ++it) {
      const Plage& plage = std::get<2>(it->first);
      prises.push_back(plage);
      d_.morceaux.push_back(
          {zone, place, plage, it->second.jonction, aucun, it->second.conditions});
    }
    if (prises == std::vector{face}) return;
    constexpr std::size_t prises_max = 2000;
    if (prises.size() > prises_max) throw MaillageRefuse(trop_de_morceaux);
    signaler_recouvrements(zone, place, prises);
    for (const Plage& libre : Reste(face, place).libres(prises))
      d_.morceaux.push_back({zone, place, libre, aucun, aucun, {}});
  }

  void signaler_recouvrements(std::size_t zone, int place, const std::vector<Plage>& prises) {
    for (std::size_t a = 1; a < prises.size(); ++a)
      for (std::size_t b = 0; b < a && d_.dits.size() < 10'000; ++b)
        if (se_recouvrent(prises[a], prises[b], place))
          d_.dits.push_back(lieu(s_, zone, prises[b]) + " et " + texte_plage(prises[a]) +
                            " se recouvrent, les deux sont gardees");
  }

  void relier() {
    std::map<Cle, std::size_t> rangs;
    for (std::size_t m = 0; m < d_.morceaux.size(); ++m) {
      Morceau& morceau = d_.morceaux[m];
      morceau.face = m;
      if (morceau.jonction == aucun) continue;
      const Cle ici{morceau.zone, morceau.place, morceau.plage};
      const auto la = rangs.find(emplois_.at(ici).partenaire);
      if (la != rangs.end()) morceau.face = la->second;
      rangs.emplace(ici, m);
    }
  }

  const Structure& s_;
  std::map<Cle, Emploi> emplois_;
  Decoupage d_;
};

}  // namespace

std::string lieu(const Structure& s, std::size_t zone, const Plage& plage) {
  return "zone '" + s.zones[zone].nom + "' " + texte_plage(plage);
}

Decoupage decouper(const Structure& s) {
  return Coupeur(s).executer();
}

}  // namespace topomine
