#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "texte/nombres.h"

class BaseBuffer;

namespace topomine {

/// What one attribute looks like over examples that come table by table. Each different value is
/// kept once, with its count: what six digits can tell apart is bounded, however many bases there
/// are.
class Resume {
 public:
  explicit Resume(bool numerique) : numerique_(numerique) {}

  /// Takes the values of a column, in row order.
  void ajouter(const BaseBuffer& exemples, std::size_t col);

  bool numerique() const { return numerique_; }
  std::size_t nb_exemples() const { return nb_exemples_; }
  std::size_t distincts() const { return numerique_ ? nombres_.size() : textes_.size(); }
  /// Counts by value of an attribute that is not numeric.
  const std::map<std::string, std::size_t>& effectifs() const { return textes_; }

  // --- Of a numeric attribute with at least one example
  double moyenne() const { return somme_ / static_cast<double>(nb_exemples_); }
  /// Of the population. Rounding that leaves a variance a little below zero counts as 0.
  double ecart_type() const;
  /// The value below which a part of the examples lies, 0 for the minimum, 1 for the maximum;
  /// linear between two examples.
  double quantile(double part) const;

 private:
  double au_rang(std::size_t rang) const;

  bool numerique_;
  std::size_t nb_exemples_ = 0;
  double somme_ = 0.0, somme_carres_ = 0.0;
  FluxNombres flux_;
  std::vector<std::pair<double, std::size_t>> nombres_;  // ascending, each with its count
  std::map<std::string, std::size_t> textes_;
};

}  // namespace topomine
