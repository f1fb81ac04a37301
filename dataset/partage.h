#pragma once

#include <cstddef>
#include <vector>

namespace topomine {

// Which part of a split each example goes to. Examples of one base know each other: a learner that
// is tried on the base that it was taught on looks better than it is. Groups of examples, the
// bases, can therefore be kept whole. A stratum is the examples with one value of an attribute;
// without strata all examples are of stratum 0.

/// By group and stratum, the number of examples.
using Effectifs = std::vector<std::vector<std::size_t>>;

/// The examples of the first part, one flag for each: of each stratum, those that come first, as
/// many as its share of the whole of all * ratio examples. strates: the stratum of each example, 0
/// or more; ratio: 0 to 1.
std::vector<bool> premiers_par_strate(const std::vector<int>& strates, double ratio);

/// The fold, 0 to plis - 1, whose test part each example is in: in turn, stratum after stratum.
/// strates: 0 or more; plis: 1 or more.
std::vector<int> plis_par_strate(const std::vector<int>& strates, int plis);

/// The groups of the first part, one flag for each. With one stratum its size is as near to ratio
/// as the sizes of the groups allow, exactly; with several, the size and each stratum's share are
/// as near as can be found. ratio: above 0 and below 1. Neither part is empty: at least two groups
/// must have examples. Equals are told apart by drand48.
std::vector<bool> groupes_de_la_premiere(const Effectifs& effectifs, double ratio);

/// The fold whose test part each group is in, none of them empty: plis is 1 or more, and no more
/// than there are groups with examples. Folds are of like size, or, with several strata, of like
/// composition.
std::vector<int> plis_par_groupe(const Effectifs& effectifs, int plis);

}  // namespace topomine
