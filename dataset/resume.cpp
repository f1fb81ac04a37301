#include "dataset/resume.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "dataset/basebuffer.h"

namespace topomine {

namespace {

using Effectifs = std::vector<std::pair<double, std::size_t>>;

/// Both lists in one.
Effectifs fusionner(const Effectifs& a, const Effectifs& b) {
  Effectifs tous;
  auto i = a.begin(), j = b.begin();
  while (i != a.end() || j != b.end()) {
    if (j == b.end() || (i != a.end() && i->first < j->first)) {
      tous.push_back(*i++);
    } else {
      tous.push_back(*j++);
      if (i != a.end() && i->first == tous.back().first) tous.back().second += i++->second;
    }
  }
  return tous;
}

}  // namespace

void Resume::ajouter(const BaseBuffer& exemples, std::size_t col) {
  nb_exemples_ += exemples._expl.size();
  if (!numerique_) {
    for (const auto& exemple : exemples._expl) ++textes_[exemple.at(col)];
    return;
  }
  std::vector<double> valeurs;
  valeurs.reserve(exemples._expl.size());
  for (const auto& exemple : exemples._expl) {
    const double v = flux_.reel(exemple.at(col));
    valeurs.push_back(v);
    somme_ += v;
    somme_carres_ += v * v;
  }
  std::ranges::sort(valeurs);
  Effectifs nouveaux;
  for (const double v : valeurs) {
    if (nouveaux.empty() || nouveaux.back().first != v) nouveaux.emplace_back(v, 0);
    ++nouveaux.back().second;
  }
  nombres_ = fusionner(nombres_, nouveaux);
}

double Resume::ecart_type() const {
  const double m = moyenne();
  const double e = std::sqrt(somme_carres_ / static_cast<double>(nb_exemples_) - m * m);
  return std::isnan(e) && std::isfinite(m) ? 0.0 : e;
}

double Resume::au_rang(std::size_t rang) const {
  auto v = nombres_.begin();
  for (; rang >= v->second; ++v) rang -= v->second;
  return v->first;
}

double Resume::quantile(double part) const {
  const double place = part * static_cast<double>(nb_exemples_ - 1);
  const auto rang = static_cast<std::size_t>(place);
  const double bas = au_rang(rang), reste = place - static_cast<double>(rang);
  return reste == 0 ? bas : bas + reste * (au_rang(rang + 1) - bas);
}

}  // namespace topomine
