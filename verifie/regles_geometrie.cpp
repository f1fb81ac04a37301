#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "texte/nombres.h"
#include "verifie/examen.h"
#include "verifie/hexaedre.h"

namespace topomine {

namespace {

/// Between an estimate and Exact. On blocks with straight edges they differ by less than 3, even
/// where the block is skewed or collapsed; a decimal point one place off is a factor of 10.
constexpr double facteur_estimation = 5;
/// Between Exact and what the eight corners enclose. A block that is curved like an arc of angle t
/// has t / sin t times the volume of its corners: 1.6 for a quarter of a ring, 2.4 for a third. A
/// decimal point one place off stays outside of 4 on either side of those.
constexpr double facteur_sommets = 4;
/// The same between two files, where half of the blocks have to agree.
constexpr double facteur_moyen = 2;
/// The corners of a left-handed block enclose minus its volume. Those of a block that bends by more
/// than half a turn are turned too, but sin t / t is never below -0.217.
constexpr double part_gauche = 0.25;
/// Its square, summed over neighbours, does not overflow.
constexpr double grand = 1e150;
/// Files of ten digits give values to this, for one of size 1 ...
constexpr double precision = 2e-9;
/// ... and corners to this, beside their coordinates: three edges, two ends each.
constexpr double precision_places = 4e-9;
/// Files with fewer digits: eight, seven.
constexpr double moins_precis[]{1, 100, 10};  // each on top of the one before
constexpr double hors_erikson = 1e-9;
/// More than any mesh has around a vertex.
constexpr std::size_t blocs_d_un_sommet = 64;

/// With the digits of the files: where two values differ in the last of them.
std::string precis(double v) {
  return en_texte(v, 10);
}

constexpr std::size_t nb_valeurs = 5;
constexpr std::array<const char*, nb_valeurs> noms{"Exact", "Mor", "Moyen", "NSMB", "Erikson"};
constexpr std::size_t i_exact = 0, i_erikson = 4;
using Valeurs = std::array<double, nb_valeurs>;

Valeurs donnees(const Block& b) {
  return {b._volexa(), b._volmor(), b._volmoy(), b._volnsm(), b._erik()};
}

/// What is known of a block: NaN stands for what is not.
struct Bloc {
  Valeurs lues{}, calculees{};
  double tolerance_fine = 0;  // how well values of ten digits can be had from the corners, relative
  double tolerance = 0;       // the same with the digits that the file has
  Maille::Coins coins{};
  bool coins_surs = false;
  bool dit = false;      // something has been said of its volumes
  bool differe = false;  // of what its corners give

  double rapport() const { return lues[i_exact] / calculees[i_exact]; }
  bool gauche() const {
    if (!coins_surs || calculees[i_exact] >= 0) return false;
    const double volume = std::abs(lues[i_exact]);
    return -calculees[i_exact] >= part_gauche * volume &&
           -calculees[i_exact] <= facteur_sommets * volume;
  }
  bool loin() const {
    return coins_surs && lues[i_exact] > 0 && calculees[i_exact] > 0 &&
           (rapport() >= facteur_sommets || rapport() <= 1 / facteur_sommets);
  }
  bool a_l_envers() const { return coins_surs && calculees[i_exact] < 0 && !gauche(); }
  /// Unknown values differ from nothing.
  bool ecarte(std::size_t i) const {
    const double echelle = i == i_erikson ? 1 : std::abs(calculees[i]);
    return std::abs(lues[i] - calculees[i]) > tolerance * echelle;
  }
  std::size_t nb_ecarts() const {
    std::size_t nb = 0;
    for (std::size_t i = 0; i < nb_valeurs; ++i) nb += ecarte(i);
    return nb;
  }
  /// A curve, or a vertex elsewhere, changes them all, a slip one.
  bool courbe() const { return nb_ecarts() > 2; }
  /// Turned over by a vertex that is elsewhere: two faces that change places leave the volume.
  bool retourne() const {
    return gauche() && std::abs(std::abs(lues[i_exact]) + calculees[i_exact]) >
                           tolerance * std::abs(calculees[i_exact]);
  }
};

class Volumes {
 public:
  explicit Volumes(Examen& x) : x_(x), blocs_(x.blocs.size()) {}

  void examiner() {
    for (int b = 0; b < nb(); ++b) mesurer_bloc(b);
    if (!positions_d_ailleurs()) recalculer();
    for (int b = 0; b < nb(); ++b) valeurs(b);
    for (int b = 0; b < nb(); ++b) isolees(b);
  }

 private:
  int nb() const { return x_.maille.num_blocs.nb(); }
  Bloc& bloc(int b) { return au(blocs_, b); }
  void signaler(Code code, int b, const std::string& quoi, const std::string& champ = "Volumes") {
    x_.signaler(code, fic_blck, b, quoi, champ);
    bloc(b).dit = true;
  }

  void mesurer_bloc(int b) {
    Bloc& k = bloc(b);
    k.lues = donnees(*au(x_.blocs, b));
    k.calculees.fill(std::numeric_limits<double>::quiet_NaN());
    if (x_.liens_perdus || !x_.lus({fic_blck, fic_face, fic_edge, fic_vrtx}) ||
        x_.est_douteux(fic_blck, b) || !x_.maille.coins(b, k.coins))
      return;
    Hexaedre h;
    double taille = 0, plus_court = std::numeric_limits<double>::infinity();
    for (std::size_t c = 0; c < h.size(); ++c) {
      if (x_.est_douteux(fic_vrtx, k.coins[c])) return;
      const Vec& p = au(x_.maille.positions, k.coins[c]);
      h[c] = {p.x, p.y, p.z};
      for (const double v : h[c]) taille = std::max(taille, std::abs(v));
      for (std::size_t d = 0; d < c; ++d)
        if (k.coins[c] != k.coins[d]) plus_court = std::min(plus_court, distance(h[c], h[d]));
    }
    const Mesures mesures = mesurer(h);
    k.calculees = {mesures.exact, mesures.mor, mesures.moyen, mesures.nsmb, mesures.erikson};
    k.coins_surs = std::ranges::all_of(k.calculees, [](double v) { return std::isfinite(v); });
    if (!k.coins_surs) k.calculees.fill(std::numeric_limits<double>::quiet_NaN());
    k.tolerance_fine = precision + precision_places * taille / plus_court;
  }

  /// Most of the volumes are not those of these corners: each by far, and some by very far.
  bool positions_d_ailleurs() {
    std::size_t juges = 0, loin = 0, tres_loin = 0, gauches = 0;
    for (const Bloc& k : blocs_) {
      if (!k.coins_surs || !(k.lues[i_exact] > 0)) continue;
      ++juges;
      gauches += k.gauche();
      loin += !(k.rapport() < facteur_moyen && k.rapport() > 1 / facteur_moyen);
      tres_loin += k.loin() || k.a_l_envers();
    }
    if (gauches > 1 && gauches == juges) {
      x_.signaler(Code::bloc_gauche, fic_vrtx, "tous les blocs tournent a gauche, cas en miroir");
      for (Bloc& k : blocs_) k.coins_surs = false;
      return true;
    }
    if (loin < 2 || loin * 2 <= juges || tres_loin * 8 <= juges) return false;
    x_.signaler(Code::positions_d_un_autre_cas, fic_vrtx,
                "les positions ne sont pas celles de ces blocs : Exact de " + std::to_string(loin) +
                    " blocs sur " + std::to_string(juges) + " est loin du volume de leurs sommets");
    for (Bloc& k : blocs_) k.coins_surs = false;
    return true;
  }

  /// Where the values of the blocks can be had from their corners, those that cannot are odd: one
  /// or two values of a block are slips as long as half of the blocks have none; a block with more
  /// is curved, unless it is one in ten.
  void recalculer() {
    for (Bloc& k : blocs_) k.tolerance = k.tolerance_fine;
    for (const double facteur : moins_precis) {
      std::vector<int> autres, gauches;
      std::size_t juges = 0, courbes = 0;
      for (int b = 0; b < nb(); ++b) {
        Bloc& k = bloc(b);
        k.differe = false;
        if (!k.coins_surs) continue;
        k.tolerance *= facteur;
        if (k.gauche()) {
          k.differe = k.retourne();
          if (k.differe) gauches.push_back(b);
          continue;
        }
        ++juges;
        k.differe = k.nb_ecarts() > 0;
        courbes += k.courbe();
        if (k.differe) autres.push_back(b);
      }
      std::vector<int> deplaces = autres;
      deplaces.insert(deplaces.end(), gauches.begin(), gauches.end());
      if (!deplaces.empty() && juges >= 2) {
        if (sommet_deplace(deplaces, juges, " ne se recalculent pas, ceux des autres si")) return;
        if (sommet_loin(deplaces, juges)) return recalculer();
      }
      for (const int b : gauches) bloc(b).differe = false;
      if (juges == 1 && courbes == 1) break;
      if (autres.empty() || juges < 2) return;
      if (autres.size() * 2 > juges && autres.size() > 1) continue;
      if (courbes > std::max<std::size_t>(1, juges / 10))
        for (Bloc& k : blocs_) k.differe = k.differe && !k.courbe();
      return;
    }
    for (Bloc& k : blocs_) k.differe = false;
  }

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
    if (autres.size() >= juges || autres.size() > blocs_d_un_sommet) return false;
    for (const int b : autres)
      if (!bloc(b).ecarte(i_exact) && !bloc(b).ecarte(1)) return false;
    std::vector<int> candidats;
    for (const int v : bloc(autres[0]).coins)
      if (std::ranges::all_of(autres, [&](int b) { return contient(bloc(b).coins, v); }))
        candidats.push_back(v);
    std::ranges::sort(candidats);
    candidats.erase(std::unique(candidats.begin(), candidats.end()), candidats.end());
    std::erase_if(candidats, [&](int v) {
      return std::ranges::any_of(blocs_, [&](const Bloc& k) {
        return k.coins_surs && !k.differe && contient(k.coins, v);
      });
    });
    if (candidats.empty() || (autres.size() == 1 && !bloc(autres[0]).courbe())) return false;
    std::string dit = "les volumes de ses " + std::to_string(autres.size()) + " bloc(s)" + en_quoi;
    const int sommet = candidats[0];
    if (candidats.size() > 1) {
      candidats.erase(candidats.begin());
      for (int& v : candidats) v = x_.numero(fic_vrtx, v);
      dit += " (ou vertex " + enumerer(candidats) + ")";
    }
    x_.signaler(Code::sommet_deplace, fic_vrtx, sommet, dit);
    for (Bloc& k : blocs_)
      if (contient(k.coins, sommet)) k = Bloc{.lues = k.lues, .dit = true};
    return true;
  }

  void valeurs(int b) {
    Bloc& k = bloc(b);
    std::string grands, negatifs;
    const auto citer = [&](std::string& liste, std::size_t i) {
      liste += (liste.empty() ? "" : ", ") + std::string(noms[i]) + ' ' + en_texte(k.lues[i]);
    };
    for (std::size_t i = 0; i < nb_valeurs; ++i) {
      if (std::abs(k.lues[i]) > grand)
        citer(grands, i);
      else if (i != i_erikson && k.lues[i] <= 0)
        citer(negatifs, i);
    }
    if (!grands.empty()) return signaler(Code::nombre_trop_grand, b, grands + " au-dela de 1e150");
    if (k.gauche())
      return signaler(
          Code::bloc_gauche, b,
          "ses axes tournent a gauche : volume de ses sommets " + en_texte(k.calculees[i_exact]),
          "Faces");
    if (!negatifs.empty()) signaler(Code::volume_negatif, b, "volume nul ou negatif : " + negatifs);
    if (k.lues[i_erikson] < -hors_erikson || k.lues[i_erikson] > 1 + hors_erikson)
      signaler(Code::erikson_hors, b, "Erikson " + en_texte(k.lues[i_erikson]) + " hors de 0 a 1",
               "Erikson");
    if (!k.dit) rapports(b);
  }

  void rapports(int b) {
    const Bloc& k = bloc(b);
    if (k.loin())
      return signaler(Code::exact_loin, b,
                      "Exact " + en_texte(k.lues[i_exact]) + ", ses huit sommets donnent " +
                          en_texte(k.calculees[i_exact]));
    std::string loin;
    for (std::size_t i = 1; i < i_erikson; ++i) {
      const double r = k.lues[i] / k.lues[i_exact];
      if (r >= facteur_estimation || r <= 1 / facteur_estimation)
        loin += (loin.empty() ? "" : ", ") + std::string(noms[i]) + ' ' + en_texte(k.lues[i]);
    }
    if (!loin.empty())
      signaler(Code::estimation_loin, b, loin + " loin de Exact " + en_texte(k.lues[i_exact]));
  }

  void isolees(int b) {
    const Bloc& k = bloc(b);
    if (!k.differe || k.dit) return;
    std::string dit;
    for (std::size_t i = 0; i < nb_valeurs; ++i)
      if (k.ecarte(i))
        dit += (dit.empty() ? "" : ", ") + std::string(noms[i]) + ' ' + precis(k.lues[i]) +
               " au lieu de " + precis(k.calculees[i]);
    signaler(Code::valeur_isolee, b, dit + " d'apres ses huit sommets");
  }

  Examen& x_;
  std::vector<Bloc> blocs_;
};

}  // namespace

void regle_volumes(Examen& x) {
  Volumes(x).examiner();
}

}  // namespace topomine
