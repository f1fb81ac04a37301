#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "verifie/bloc_mesure.h"

namespace topomine {

namespace {

/// Files with fewer digits: eight, seven.
constexpr double moins_precis[]{1, 100, 10};  // each on top of the one before

class Recalcul {
 public:
  Recalcul(Examen& x, std::vector<BlocMesure>& blocs) : x_(x), blocs_(blocs) {}

  /// Where the values of the blocks can be had from their corners, those that cannot are odd: one
  /// or two values of a block are slips as long as half of the blocks have none; a block with more
  /// is curved, unless it is one in ten.
  void recalculer() {
    for (BlocMesure& k : blocs_) k.tolerance = k.tolerance_fine;
    for (const double facteur : moins_precis) {
      const auto [autres, gauches, juges, courbes] = trier(facteur);
      std::vector<int> deplaces = autres;
      deplaces.insert(deplaces.end(), gauches.begin(), gauches.end());
      if (!deplaces.empty() && juges >= 2) {
        if (sommet_deplace(deplaces, juges, " ne se recalculent pas, ceux des autres si")) return;
        if (sommet_loin(deplaces, juges)) return recalculer();
      }
      if (juges == 1 && courbes == 1) break;
      if (autres.empty() || juges < 2) return;
      if (autres.size() * 2 > juges && autres.size() > 1) continue;
      if (courbes > std::max<std::size_t>(1, juges / 10))
        for (BlocMesure& k : blocs_) k.differe = k.differe && !k.courbe();
      return;
    }
    for (BlocMesure& k : blocs_) k.differe = false;
  }

 private:
  /// The blocks whose values are not those of their corners, right- and left-handed ones apart; of
  /// the right-handed ones how many were judged, and how many are curved.
  struct Tri {
    std::vector<int> autres, gauches;
    std::size_t juges = 0, courbes = 0;
  };
  /// With tolerances that much wider.
  Tri trier(double facteur) {
    Tri t;
    for (int b = 0; b < nb(); ++b) {
      BlocMesure& k = bloc(b);
      if (!k.coins_surs) continue;
      k.tolerance *= facteur;
      if (k.gauche()) {
        k.differe = k.retourne();
        if (k.differe) t.gauches.push_back(b);
        continue;
      }
      ++t.juges;
      k.differe = k.nb_ecarts() > 0;
      if (k.courbe()) ++t.courbes;
      if (k.differe) t.autres.push_back(b);
    }
    return t;
  }

  int nb() const { return static_cast<int>(blocs_.size()); }
  BlocMesure& bloc(int b) { return au(blocs_, b); }

  /// Among curved blocks: those that are far off, and they alone, have a vertex in common.
  bool sommet_loin(std::vector<int> autres, std::size_t juges) {
    std::erase_if(autres, [&](int b) {
      return !bloc(b).loin() && !bloc(b).a_l_envers() && !bloc(b).retourne();
    });
    return autres.size() > 1 &&
           sommet_deplace(autres, juges, " sont loin de ceux de leurs sommets");
  }

  /// All the blocks of a vertex, and they alone, differ in their volume.
  bool sommet_deplace(const std::vector<int>& autres, std::size_t juges, const char* en_quoi) {
    if (autres.size() >= juges) return false;
    for (const int b : autres)
      if (!bloc(b).ecarte(i_exact) && !bloc(b).ecarte(i_mor)) return false;
    std::set<int> candidats;
    for (const int v : bloc(autres[0]).coins)
      if (std::ranges::all_of(autres, [&](int b) { return contient(bloc(b).coins, v); }) &&
          std::ranges::none_of(blocs_, [&](const BlocMesure& k) {
            return k.coins_surs && !k.differe && contient(k.coins, v);
          }))
        candidats.insert(v);
    if (candidats.empty() || (autres.size() == 1 && !bloc(autres[0]).courbe())) return false;
    const int sommet = *candidats.begin();
    std::string dit = "les volumes de ses " + std::to_string(autres.size()) + " bloc(s)" + en_quoi;
    std::vector<int> autres_sommets;
    for (const int v : candidats)
      if (v != sommet) autres_sommets.push_back(x_.numero(fic_vrtx, v));
    if (!autres_sommets.empty()) dit += " (ou vertex " + enumerer(autres_sommets) + ")";
    x_.signaler(Code::sommet_deplace, fic_vrtx, sommet, dit);
    for (BlocMesure& k : blocs_)
      if (contient(k.coins, sommet)) k = BlocMesure{.lues = k.lues, .dit = true};
    return true;
  }

  Examen& x_;
  std::vector<BlocMesure>& blocs_;
};

}  // namespace

void recalculer(Examen& x, std::vector<BlocMesure>& blocs) {
  Recalcul(x, blocs).recalculer();
}

}  // namespace topomine
