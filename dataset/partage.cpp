#include "dataset/partage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>

#include "dataset/numeric.h"

namespace topomine {

namespace {

std::size_t total(const std::vector<std::size_t>& nombres) {
  return std::accumulate(nombres.begin(), nombres.end(), std::size_t{0});
}

/// The groups in an order of chance.
std::vector<std::size_t> ordre_au_hasard(std::size_t nb) {
  std::vector<std::size_t> ordre(nb);
  std::iota(ordre.begin(), ordre.end(), std::size_t{0});
  const MyRandom tirer;
  for (std::size_t k = 1; k < nb; ++k)
    std::swap(ordre[k], ordre[static_cast<std::size_t>(tirer(static_cast<int>(k + 1)))]);
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
    for (std::size_t m = mots; tailles[i] > 0 && m-- > saut;) {
      std::uint64_t nouvelles = atteintes[m - saut] << decalage;
      if (decalage > 0 && m > saut) nouvelles |= atteintes[m - saut - 1] >> (64 - decalage);
      nouvelles &= ~atteintes[m];
      atteintes[m] |= nouvelles;
      for (; nouvelles != 0; nouvelles &= nouvelles - 1)
        if (const std::size_t somme = 64 * m + static_cast<unsigned>(std::countr_zero(nouvelles));
            somme <= n)
          derniere[somme] = static_cast<std::int32_t>(i);
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

/// Groups on their way into folds that are to be alike: the sum over the folds of the squares of
/// what they hold of each stratum, as a part of it, and of all.
class Plis {
 public:
  Plis(const Effectifs& effectifs, std::size_t nb)
      : effectifs_(effectifs),
        ordre_(ordre_au_hasard(effectifs.size())),
        poids_(effectifs[0].size()),
        contenu_(nb, std::vector<std::size_t>(effectifs[0].size())),
        pli_(effectifs.size()) {
    std::ranges::stable_sort(ordre_, std::ranges::greater{},
                             [&](std::size_t g) { return total(effectifs_[g]); });
    for (std::size_t s = 0; s < poids_.size(); ++s) {
      double n = 0;
      for (const auto& groupe : effectifs) n += static_cast<double>(groupe[s]);
      tout_ += n;
      if (n > 0) poids_[s] = 1.0 / (n * n);
    }
  }

  /// The largest groups first, each to the fold that it unbalances least; then what helps.
  std::vector<int> repartir() {
    for (std::size_t k = 0; k < ordre_.size(); ++k) {
      std::size_t choisi = k;
      double moindre = std::numeric_limits<double>::infinity();
      for (std::size_t f = 0; f < contenu_.size() && k >= contenu_.size(); ++f) {
        const double avant = cout(f);
        mettre(ordre_[k], f);
        if (cout(f) - avant < moindre) {
          moindre = cout(f) - avant;
          choisi = f;
        }
        oter(ordre_[k], f);
      }
      mettre(ordre_[k], choisi);
      pli_[ordre_[k]] = choisi;
    }
    constexpr std::size_t trop = 1000;  // every pair of groups would take too long
    for (bool mieux = ordre_.size() <= trop; mieux;) mieux = echanger_ce_qui_aide();
    return {pli_.begin(), pli_.end()};
  }

 private:
  double cout(std::size_t f) const {
    double somme = 0, taille = 0;
    for (std::size_t s = 0; s < poids_.size(); ++s) {
      const double n = static_cast<double>(contenu_[f][s]);
      somme += poids_[s] * n * n;
      taille += n;
    }
    return somme + taille * taille / (tout_ * tout_);
  }
  void mettre(std::size_t g, std::size_t f) {
    for (std::size_t s = 0; s < poids_.size(); ++s) contenu_[f][s] += effectifs_[g][s];
  }
  void oter(std::size_t g, std::size_t f) {
    for (std::size_t s = 0; s < poids_.size(); ++s) contenu_[f][s] -= effectifs_[g][s];
  }
  /// Each group with the fold of every other one: it goes there, alone or against the other. No
  /// fold is emptied by it: two folds in one have more squares than apart.
  bool echanger_ce_qui_aide() {
    bool aide = false;
    for (const std::size_t a : ordre_)
      for (const std::size_t b : ordre_)
        for (const bool contre : {false, true}) {
          const std::size_t fa = pli_[a], fb = pli_[b];
          if (fa == fb) continue;
          const double avant = cout(fa) + cout(fb);
          deplacer(a, fa, fb);
          if (contre) deplacer(b, fb, fa);
          if (cout(fa) + cout(fb) < avant - 1e-12) {
            aide = true;
            continue;
          }
          deplacer(a, fb, fa);
          if (contre) deplacer(b, fa, fb);
        }
    return aide;
  }
  void deplacer(std::size_t g, std::size_t de, std::size_t vers) {
    oter(g, de);
    mettre(g, vers);
    pli_[g] = vers;
  }

  const Effectifs& effectifs_;
  std::vector<std::size_t> ordre_;
  std::vector<double> poids_;  // a rare stratum counts as much as a large one
  Effectifs contenu_;
  std::vector<std::size_t> pli_;
  double tout_ = 0;
};

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
  return Plis(effectifs, static_cast<std::size_t>(plis)).repartir();
}

}  // namespace topomine
