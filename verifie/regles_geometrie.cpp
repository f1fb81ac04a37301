#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "mesh/hexaedre.h"
#include "texte/nombres.h"
#include "verifie/bloc_mesure.h"

namespace topomine {

namespace {

/// Between an estimate and Exact. On blocks with straight edges they differ by less than 3, even
/// where the block is skewed or collapsed; a decimal point one place off is a factor of 10.
constexpr double facteur_estimation = 5;
/// Between Exact and what the corners enclose where the two files belong together: half of the
/// blocks have to agree.
constexpr double facteur_moyen = 2;
/// Its square, summed over neighbours, does not overflow.
constexpr double grand = 1e150;
/// Files of ten digits give values to this, for one of size 1 ...
constexpr double precision = 2e-9;
/// ... and corners to this, beside their coordinates: three edges, two ends each.
constexpr double precision_places = 4e-9;
constexpr double hors_erikson = 1e-9;

/// With the digits of the files: where two values differ in the last of them.
std::string precis(double v) {
  return en_texte(v, 10);
}

Valeurs donnees(const Block& b) {
  return {b._volexa(), b._volmor(), b._volmoy(), b._volnsm(), b._erik()};
}

class Volumes {
 public:
  explicit Volumes(Examen& x) : x_(x), blocs_(x.blocs.size()) {}

  void examiner() {
    for (int b = 0; b < nb(); ++b) mesurer_bloc(b);
    if (!positions_d_ailleurs()) recalculer(x_, blocs_);
    for (int b = 0; b < nb(); ++b) valeurs(b);
    for (int b = 0; b < nb(); ++b) isolees(b);
  }

 private:
  int nb() const { return x_.maille.num_blocs.nb(); }
  BlocMesure& bloc(int b) { return au(blocs_, b); }
  void signaler(Code code, int b, const std::string& quoi, const std::string& champ = "Volumes") {
    x_.signaler(code, fic_blck, b, quoi, champ);
    bloc(b).dit = true;
  }

  void mesurer_bloc(int b) {
    BlocMesure& k = bloc(b);
    k.lues = donnees(*au(x_.blocs, b));
    if (x_.liens_perdus || !x_.lus({fic_blck, fic_face, fic_edge, fic_vrtx}) ||
        x_.est_douteux(fic_blck, b) || !x_.maille.coins(b, k.coins))
      return;
    Hexaedre h;
    double taille = 0, plus_court = std::numeric_limits<double>::infinity();
    for (std::size_t c = 0; c < h.size(); ++c) {
      if (x_.est_douteux(fic_vrtx, k.coins[c])) return;
      h[c] = au(x_.maille.positions, k.coins[c]);
      for (const double v : {h[c].x, h[c].y, h[c].z}) taille = std::max(taille, std::abs(v));
      for (std::size_t d = 0; d < c; ++d)
        if (k.coins[c] != k.coins[d]) plus_court = std::min(plus_court, distance(h[c], h[d]));
    }
    const MesuresHexaedre mesures = mesurer(h);
    k.calculees = {mesures.exact, mesures.mor, mesures.moyen, mesures.nsmb, mesures.erikson};
    k.coins_surs = std::ranges::all_of(k.calculees, [](double v) { return std::isfinite(v); });
    k.tolerance_fine = precision + precision_places * taille / plus_court;
  }

  /// Most of the volumes are not those of these corners: each by far, and some by very far.
  bool positions_d_ailleurs() {
    std::size_t juges = 0, loin = 0, tres_loin = 0, gauches = 0;
    for (const BlocMesure& k : blocs_) {
      if (!k.coins_surs || !(k.lues[i_exact] > 0)) continue;
      ++juges;
      gauches += k.gauche();
      loin += !(k.rapport() < facteur_moyen && k.rapport() > 1 / facteur_moyen);
      tres_loin += k.loin() || k.a_l_envers();
    }
    if (gauches > 1 && gauches == juges) {
      x_.signaler(Code::bloc_gauche, fic_vrtx, "tous les blocs tournent a gauche, cas en miroir");
      for (BlocMesure& k : blocs_) k.coins_surs = false;
      return true;
    }
    if (loin < 2 || loin * 2 <= juges || tres_loin * 8 <= juges) return false;
    x_.signaler(Code::positions_d_un_autre_cas, fic_vrtx,
                "les positions ne sont pas celles de ces blocs : Exact de " + std::to_string(loin) +
                    " blocs sur " + std::to_string(juges) + " est loin du volume de leurs sommets");
    for (BlocMesure& k : blocs_) k.coins_surs = false;
    return true;
  }

  void valeurs(int b) {
    BlocMesure& k = bloc(b);
    std::string grands, negatifs;
    const auto citer = [&](std::string& liste, std::size_t i) {
      liste +=
          (liste.empty() ? "" : ", ") + std::string(noms_valeurs[i]) + ' ' + en_texte(k.lues[i]);
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
    const BlocMesure& k = bloc(b);
    if (k.loin())
      return signaler(Code::exact_loin, b,
                      "Exact " + en_texte(k.lues[i_exact]) + ", ses huit sommets donnent " +
                          en_texte(k.calculees[i_exact]));
    std::string loin;
    for (std::size_t i = 1; i < i_erikson; ++i) {
      const double r = k.lues[i] / k.lues[i_exact];
      if (r >= facteur_estimation || r <= 1 / facteur_estimation)
        loin +=
            (loin.empty() ? "" : ", ") + std::string(noms_valeurs[i]) + ' ' + en_texte(k.lues[i]);
    }
    if (!loin.empty())
      signaler(Code::estimation_loin, b, loin + " loin de Exact " + en_texte(k.lues[i_exact]));
  }

  void isolees(int b) {
    const BlocMesure& k = bloc(b);
    if (!k.differe || k.dit) return;
    std::string dit;
    for (std::size_t i = 0; i < nb_valeurs; ++i)
      if (k.ecarte(i))
        dit += (dit.empty() ? "" : ", ") + std::string(noms_valeurs[i]) + ' ' + precis(k.lues[i]) +
               " au lieu de " + precis(k.calculees[i]);
    signaler(Code::valeur_isolee, b, dit + " d'apres ses huit sommets");
  }

  Examen& x_;
  std::vector<BlocMesure> blocs_;
};

}  // namespace

void regle_volumes(Examen& x) {
  Volumes(x).examiner();
}

}  // namespace topomine
