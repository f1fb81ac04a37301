#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "verifie/lecture_stricte.h"

namespace topomine {

/// What a base is judged by, besides its own files.
struct Voisinage {
  ConfigLue config;
  std::vector<std::string> bases;           ///< names of the bases of the folder
  std::map<std::string, std::string> noms;  ///< scene name to the base that was first to give it
};

/// Everything that is wrong with a base, by file and line: what its strict reading found, and what
/// does not fit together: between its entities, with the configuration, with the other bases, with
/// the table's schema. Findings that follow from another stay away. The reading's own are moved.
std::vector<Constat> verifier(CasLu& cas, Voisinage& voisinage);

/// Likewise for the configuration, with the codes whose BCCODE counts in no column of the table.
std::vector<Constat> verifier(const ConfigLue& config);

/// Where the modes of one base disagree; `dits` are the findings of each, to which nothing is added
/// for an entity that has one.
std::vector<Constat> comparer_modes(std::span<const CasLu> modes, const std::vector<Constat>& dits);

}  // namespace topomine
