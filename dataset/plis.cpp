#include "dataset/plis.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <utility>

namespace topomine {

std::size_t total(const std::vector<std::size_t>& nombres) {
  return std::accumulate(nombres.begin(), nombres.end(), std::size_t{0});
}

Plis::Plis(const Effectifs& effectifs, std::size_t nb, std::vector<std::size_t> ordre)
    : effectifs_(effectifs),
      ordre_(std::move(ordre)),
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

std::vector<int> Plis::repartir() {
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

double Plis::cout(std::size_t f) const {
  double somme = 0, taille = 0;
  for (std::size_t s = 0; s < poids_.size(); ++s) {
    const double n = static_cast<double>(contenu_[f][s]);
    somme += poids_[s] * n * n;
    taille += n;
  }
  return somme + taille * taille / (tout_ * tout_);
}

void Plis::mettre(std::size_t g, std::size_t f) {
  for (std::size_t s = 0; s < poids_.size(); ++s) contenu_[f][s] += effectifs_[g][s];
}

void Plis::oter(std::size_t g, std::size_t f) {
  for (std::size_t s = 0; s < poids_.size(); ++s) contenu_[f][s] -= effectifs_[g][s];
}

void Plis::deplacer(std::size_t g, std::size_t de, std::size_t vers) {
  oter(g, de);
  mettre(g, vers);
  pli_[g] = vers;
}

/// Each group with the fold of every other one: it goes there, alone or against the other. No
/// fold is emptied by it: two folds in one have more squares than apart.
bool Plis::echanger_ce_qui_aide() {
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

}  // namespace topomine
