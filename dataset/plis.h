#pragma once

#include <cstddef>
#include <vector>

#include "dataset/partage.h"

namespace topomine {

/// Examples of a group, or of a choice of them, over all its strata.
std::size_t total(const std::vector<std::size_t>& nombres);

/// Groups on their way into folds that are to be alike: the sum over the folds of the squares of
/// what they hold of each stratum, as a part of it, and of all.
class Plis {
 public:
  /// nb: folds, no more than there are groups. ordre: the groups as equals are to follow each
  /// other.
  Plis(const Effectifs& effectifs, std::size_t nb, std::vector<std::size_t> ordre);

  /// The fold of each group. The largest groups first, each to the fold that it unbalances least;
  /// then what helps.
  std::vector<int> repartir();

 private:
  double cout(std::size_t f) const;
  void mettre(std::size_t g, std::size_t f);
  void oter(std::size_t g, std::size_t f);
  void deplacer(std::size_t g, std::size_t de, std::size_t vers);
  bool echanger_ce_qui_aide();

  const Effectifs& effectifs_;
  std::vector<std::size_t> ordre_;
  std::vector<double> poids_;  // a rare stratum counts as much as a large one
  Effectifs contenu_;          // by fold
  std::vector<std::size_t> pli_;
  double tout_ = 0;
};

}  // namespace topomine
