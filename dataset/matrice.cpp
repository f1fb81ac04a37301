#include "dataset/matrice.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "dataset/arff.h"
#include "dataset/basebuffer.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

/// a + b, and what rounding took from it.
Somme addition(double a, double b) {
  const double s = a + b;
  if (!std::isfinite(s)) return {s, 0.0};
  const double t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}

Somme multiplication(double a, double b) {
  const double p = a * b;
  return {p, std::isfinite(p) ? std::fma(a, b, -p) : 0.0};
}

/// The product of two sums.
Somme fois(const Somme& a, const Somme& b) {
  Somme p = multiplication(a.haut, b.haut);
  p.ajouter(a.haut * b.bas);
  p.ajouter(a.bas * b.haut);
  return p;
}

/// n * sum(xy) - sum(x) * sum(y): n squared times the covariance.
double ecart_des_produits(double n, const Somme& xy, const Somme& x, const Somme& y) {
  Somme e = fois(xy, {n, 0.0});
  Somme xy_moyens = fois(x, y);
  e.ajouter({-xy_moyens.haut, -xy_moyens.bas});
  // Below this it is rounding error: values have six digits.
  constexpr double poussiere = 1e-26;
  return std::abs(e.haut) <= poussiere * std::abs(xy_moyens.haut) ? 0.0 : e.haut;
}

bool est_binaire(const std::string& type) {
  const auto valeurs = valeurs_nominales(type);
  return valeurs && valeurs->size() == 2 && std::ranges::all_of(*valeurs, est_un_reel);
}

std::vector<double> valeurs_de(const BaseBuffer& table, std::size_t col) {
  std::vector<double> valeurs;
  valeurs.reserve(table._expl.size());
  FluxNombres nombres;
  for (const auto& exemple : table._expl) valeurs.push_back(nombres.reel(exemple.at(col)));
  return valeurs;
}

}  // namespace

void Somme::ajouter(double v) {
  ajouter(Somme{v, 0.0});
}

void Somme::ajouter_produit(double a, double b) {
  ajouter(multiplication(a, b));
}

void Somme::ajouter(const Somme& autre) {
  const Somme s = addition(haut, autre.haut);
  const Somme t = addition(s.haut, s.bas + (bas + autre.bas));
  haut = t.haut;
  bas = t.bas;
}

Sommes::Sommes(std::vector<Attribut> attributs)
    : attributs_(std::move(attributs)),
      sommes_(attributs_.size()),
      produits_(attributs_.size() * attributs_.size()) {
  for (const Attribut& a : attributs_)
    nombres_.push_back(a.type == "numeric" || est_binaire(a.type));
}

void Sommes::ajouter(const BaseBuffer& exemples, const std::function<void(std::size_t)>& avance) {
  nb_exemples_ += exemples._expl.size();
  std::vector<std::vector<double>> valeurs(attributs_.size());
  for (std::size_t a = 0; a < attributs_.size(); ++a)
    if (a_des_nombres(a))
      valeurs[a] =
          valeurs_de(exemples, static_cast<std::size_t>(exemples.num_attr(attributs_[a].nom)));
  for (std::size_t a = 0; a < attributs_.size(); ++a) {
    avance(a);
    if (!a_des_nombres(a)) continue;
    for (const double v : valeurs[a]) sommes_[a].ajouter(v);
    for (std::size_t b = a; b < attributs_.size(); ++b) {
      if (!a_des_nombres(b)) continue;
      Somme& somme = produit(a, b);
      for (std::size_t i = 0; i < valeurs[a].size(); ++i) {
        const double x = valeurs[a][i], y = valeurs[b][i];
        if (x != 0 && y != 0) somme.ajouter_produit(x, y);  // most of a table are counts of 0
      }
    }
  }
}

bool Sommes::ajouter(const Sommes& autre) {
  if (attributs_ != autre.attributs_ || echelle.bornes != autre.echelle.bornes) return false;
  nb_exemples_ += autre.nb_exemples_;
  for (std::size_t i = 0; i < sommes_.size(); ++i) sommes_[i].ajouter(autre.sommes_[i]);
  for (std::size_t i = 0; i < produits_.size(); ++i) produits_[i].ajouter(autre.produits_[i]);
  return true;
}

std::optional<double> Sommes::cellule(std::size_t a, std::size_t b, Relation relation) const {
  if (b < a) std::swap(a, b);
  if (!a_des_nombres(a) || !a_des_nombres(b) || nb_exemples_ == 0) return std::nullopt;
  const double n = static_cast<double>(nb_exemples_);
  if (relation == Relation::produits) {
    if (attributs_[a].type != "numeric" || attributs_[b].type != "numeric") return std::nullopt;
    return produit(a, b).haut / n;
  }
  const auto ecart = [&](std::size_t i, std::size_t j) {
    return ecart_des_produits(n, produit(i, j), sommes_[i], sommes_[j]);
  };
  if (relation == Relation::centree) return ecart(a, b) / (n * n);
  const double va = ecart(a, a), vb = ecart(b, b);
  if (!(va > 0) || !(vb > 0)) return std::nullopt;
  return std::clamp(ecart(a, b) / (std::sqrt(va) * std::sqrt(vb)), -1.0, 1.0);
}

}  // namespace topomine
