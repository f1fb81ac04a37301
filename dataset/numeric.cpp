#include "dataset/numeric.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

int nb_occ(const std::vector<int>& liste, int v) {
  return static_cast<int>(std::ranges::count(liste, v));
}

double moyenne(const std::vector<double>& valeurs) {
  if (valeurs.empty()) return 0.0;
  double somme = 0.0;
  for (const double v : valeurs) somme += v;
  return somme / static_cast<double>(valeurs.size());
}

double variance(const std::vector<double>& valeurs) {
  const double m = moyenne(valeurs);
  return moyenne(vec_square(valeurs)) - m * m;
}

std::vector<double> vec_square(const std::vector<double>& valeurs) {
  std::vector<double> carres;
  carres.reserve(valeurs.size());
  for (const double v : valeurs) carres.push_back(v * v);
  return carres;
}

void vec_init(std::vector<int>& liste, int debut, int fin, int pas) {
  liste.clear();
  if (pas < 1) return;
  for (std::int64_t v = debut; v < fin; v += pas) liste.push_back(static_cast<int>(v));
}

int MyRandom::operator()(int n) const {
  return static_cast<int>(n * drand48());
}
