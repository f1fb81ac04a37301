#include "dataset/partage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

#include "dataset/numeric.h"
#include "dataset/plis.h"

namespace topomine {

namespace {

/// The groups in an order of chance.
std::vector<std::size_t> ordre_au_hasard(std::size_t nb) {
  std::vector<std::size_t> ordre(nb);
  std::iota(ordre.begin(), ordre.end(), std::size_t{0});
  melanger(ordre);
  return ordre;
}

/// For each sum that some of the sizes make, the rank of the last size in it, -1 for other sums: a
/// sum is first reached with the size that completes it, and what remains without it was reached by
/// earlier ones. One bit per sum tells which are reached.
std::vector<std::int32_t> sommes_possibles(const std::vector<std::size_t>& tailles) {
  const std::size_t n = total(tailles), mots = n / 64 + 1;
  std::vector<std::int32_t> derniere(n + 1, -1);
  std::vector<std::uint64_t> atteintes(mots);
  atteintes[0] = 1;
  for (std::size_t i = 0; i < tailles.size(); ++i) {
    const std::size_t saut = tailles[i] / 64, decalage = tailles[i] % 64;
    // From the top: the words below still hold the sums without this size.
    for (std::size_t m = mots; m-- > saut;) {
      std::uint64_t nouvelles = atteintes[m - saut] << decalage;
      if (decalage > 0 && m > saut) nouvelles |= atteintes[m - saut - 1] >> (64 - decalage);
      nouvelles &= ~atteintes[m];
      atteintes[m] |= nouvelles;
      for (; nouvelles != 0; nouvelles &= nouvelles - 1)
        derniere[64 * m + static_cast<unsigned>(std::countr_zero(nouvelles))] =
            static_cast<std::int32_t>(i);
    }
  }
  return derniere;
}

/// The possible sum nearest to a target, but 0 and the sum of all; a draw between two.
std::size_t plus_proche(const std::vector<std::int32_t>& derniere, double cible) {
  std::size_t choisie = 0, autre = 0;  // one on each side of the target when they are as near
  double moindre = std::numeric_limits<double>::max();
  for (std::size_t s = 1; s + 1 < derniere.size(); ++s) {
    const double ecart = std::abs(static_cast<double>(s) - cible);
    if (derniere[s] < 0 || ecart > moindre + 1e-9) continue;
    if (ecart < moindre - 1e-9) choisie = s;
    autre = s;
    moindre = std::min(moindre, ecart);
  }
  return autre != choisie && MyRandom()(2) == 1 ? autre : choisie;
}

std::vector<bool> selon_la_taille(const std::vector<std::size_t>& tailles, double ratio) {
  const std::vector<std::size_t> ordre = ordre_au_hasard(tailles.size());
  std::vector<std::size_t> melangees;
  melangees.reserve(ordre.size());
  for (const std::size_t g : ordre) melangees.push_back(tailles[g]);
  const std::vector<std::int32_t> derniere = sommes_possibles(melangees);
  std::vector<bool> premiere(tailles.size());
  for (std::size_t s = plus_proche(derniere, ratio * static_cast<double>(total(tailles))); s > 0;) {
    const auto rang = static_cast<std::size_t>(derniere[s]);
    premiere[ordre[rang]] = true;
    s -= melangees[rang];
  }
  return premiere;
}

/// A choice of groups under way, and how far its strata, and its size, are from their shares.
class Choix {
 public:
  Choix(const Effectifs& effectifs, double ratio)
      : effectifs_(effectifs), ratio_(ratio), pris_(effectifs[0].size()), tous_(pris_) {
    for (const auto& groupe : effectifs)
      for (std::size_t s = 0; s < groupe.size(); ++s) tous_[s] += groupe[s];
    premiere.resize(effectifs.size());
  }

  void changer(std::size_t g) {
    premiere[g] = !premiere[g];
    for (std::size_t s = 0; s < pris_.size(); ++s)
      pris_[s] = premiere[g] ? pris_[s] + effectifs_[g][s] : pris_[s] - effectifs_[g][s];
  }
  /// Infinite when a part is empty.
  double ecart() const {
    const std::size_t n = total(pris_), tout = total(tous_);
    if (n == 0 || n == tout) return std::numeric_limits<double>::infinity();
    double e = std::abs(static_cast<double>(n) / static_cast<double>(tout) - ratio_);
    for (std::size_t s = 0; s < pris_.size(); ++s)
      if (tous_[s] > 0)
        e += std::abs(static_cast<double>(pris_[s]) / static_cast<double>(tous_[s]) - ratio_);
    return e;
  }

  std::vector<bool> premiere;

 private:
  const Effectifs& effectifs_;
  double ratio_;
  std::vector<std::size_t> pris_, tous_;
};

/// Changes one group or exchanges two for as long as that helps.
void ameliorer(Choix& choix, const std::vector<std::size_t>& ordre) {
  double e = choix.ecart();
  const auto tenter = [&](std::size_t a, std::size_t b) {
    choix.changer(a);
    if (b != a) choix.changer(b);
    if (const double nouveau = choix.ecart(); nouveau < e - 1e-12) {
      e = nouveau;
      return true;
    }
    if (b != a) choix.changer(b);
    choix.changer(a);
    return false;
  };
  for (bool mieux = true; mieux;) {
    mieux = false;
    for (const std::size_t a : ordre)
      for (const std::size_t b : ordre)
        if (a == b || choix.premiere[a] != choix.premiere[b]) mieux = tenter(a, b) || mieux;
  }
}

std::vector<bool> selon_les_strates(const Effectifs& effectifs, double ratio) {
  const int departs = effectifs.size() > 200 ? 2 : 20;
  std::vector<bool> meilleur;
  double moindre = std::numeric_limits<double>::infinity();
  for (int i = 0; i < departs; ++i) {
    const std::vector<std::size_t> ordre = ordre_au_hasard(effectifs.size());
    Choix choix(effectifs, ratio);
    // The first groups that make up the size, then better ones for them.
    const auto nb =
        static_cast<std::size_t>(std::llround(ratio * static_cast<double>(ordre.size())));
    for (std::size_t k = 0; k < nb; ++k) choix.changer(ordre[k]);
    ameliorer(choix, ordre);
    if (choix.ecart() >= moindre) continue;
    moindre = choix.ecart();
    meilleur = choix.premiere;
  }
  return meilleur;
}

}  // namespace

std::vector<bool> premiers_par_strate(const std::vector<int>& strates, double ratio) {
  const int nb = strates.empty() ? 0 : *std::ranges::max_element(strates) + 1;
  std::vector<double> parts(static_cast<std::size_t>(nb));
  for (const int s : strates) ++parts[static_cast<std::size_t>(s)];
  std::vector<std::size_t> a_prendre;
  a_prendre.reserve(parts.size());
  for (double& p : parts) a_prendre.push_back(static_cast<std::size_t>(p *= ratio));
  // What the integer parts leave of the whole goes to the largest fractions.
  std::vector<std::size_t> ordre(parts.size());
  std::iota(ordre.begin(), ordre.end(), std::size_t{0});
  std::ranges::stable_sort(ordre, [&](std::size_t a, std::size_t b) {
    return parts[a] - static_cast<double>(a_prendre[a]) >
           parts[b] - static_cast<double>(a_prendre[b]) + 1e-9;
  });
  const auto voulus = static_cast<std::size_t>(static_cast<double>(strates.size()) * ratio);
  for (std::size_t i = 0, n = total(a_prendre); n < voulus && i < ordre.size(); ++i, ++n)
    ++a_prendre[ordre[i]];

  std::vector<bool> premiers;
  for (const int s : strates) {
    std::size_t& reste = a_prendre[static_cast<std::size_t>(s)];
    premiers.push_back(reste > 0);
    if (reste > 0) --reste;
  }
  return premiers;
}

std::vector<int> plis_par_strate(const std::vector<int>& strates, int plis) {
  std::vector<std::size_t> ordre(strates.size());
  std::iota(ordre.begin(), ordre.end(), std::size_t{0});
  std::ranges::stable_sort(ordre, {}, [&](std::size_t i) { return strates[i]; });
  std::vector<int> pli(strates.size());
  for (std::size_t i = 0; i < ordre.size(); ++i)
    pli[ordre[i]] = static_cast<int>(i % static_cast<std::size_t>(plis));
  return pli;
}

std::vector<bool> groupes_de_la_premiere(const Effectifs& effectifs, double ratio) {
  if (effectifs.at(0).size() > 1) return selon_les_strates(effectifs, ratio);
  std::vector<std::size_t> tailles;
  for (const auto& groupe : effectifs) tailles.push_back(groupe[0]);
  return selon_la_taille(tailles, ratio);
}

std::vector<int> plis_par_groupe(const Effectifs& effectifs, int plis) {
  return Plis(effectifs, static_cast<std::size_t>(plis), ordre_au_hasard(effectifs.size()))
      .repartir();
}

}  // namespace topomine
