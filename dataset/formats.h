#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <string_view>

#include "dataset/csv.h"

class BaseBuffer;

namespace topomine {

/// One piece of a table that is written piece by piece.
struct Morceau {
  bool premier = true, dernier = true;
  std::size_t total = 0;  ///< examples of the whole table
  FinDeLigne fin = FinDeLigne::lf;
};

/// A form that a table is written in.
struct Format {
  std::string_view mot, extension;
  bool toute_valeur;   ///< takes any text as a value; the others write it as it stands
  bool veut_le_total;  ///< the number of examples comes before the first
  void (*ecrire)(std::ostream& out, BaseBuffer& table, const Morceau& morceau);
};

/// ARFF.
void ecrire_weka(std::ostream& out, BaseBuffer& table, const Morceau& morceau);
/// The numeric table. Where every column is a number, "# " makes a comment of its first line: the
/// rows that follow are as long as each other, and numpy.loadtxt reads them as they are.
void ecrire_torch(std::ostream& out, BaseBuffer& table, const Morceau& morceau);
void ecrire_format_csv(std::ostream& out, BaseBuffer& table, const Morceau& morceau);

inline constexpr std::array<Format, 3> formats{{{"weka", ".arff", false, false, ecrire_weka},
                                                {"torch", ".txt", false, true, ecrire_torch},
                                                {"csv", ".csv", true, false, ecrire_format_csv}}};

}  // namespace topomine
