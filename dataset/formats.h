#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "dataset/arff.h"
#include "dataset/csv.h"

class BaseBuffer;

namespace topomine {

/// One piece of a table that is written piece by piece.
struct Morceau {
  bool premier = true, dernier = true;
  std::size_t total{};  ///< examples of the whole table
  FinDeLigne fin = FinDeLigne::lf;
};

/// ARFF.
void ecrire_weka(std::ostream& out, BaseBuffer& table, const Morceau& morceau);
/// The numeric table. Where every column is a number, "# " makes a comment of its first line: the
/// rows that follow are as long as each other, and numpy.loadtxt reads them as they are.
void ecrire_torch(std::ostream& out, BaseBuffer& table, const Morceau& morceau);
void ecrire_format_csv(std::ostream& out, BaseBuffer& table, const Morceau& morceau);

/// The word as it is.
std::string tel_quel(const std::string& mot);

/// A form that a table is written in. What it does not do is left out of its row.
struct Format {
  std::string_view mot, extension;
  std::string_view sens = {};          ///< in the users' words, where its name says too little
  bool toute_valeur = false;           ///< takes any text as a value, others write it as it stands
  bool veut_le_total = false;          ///< the number of examples comes before the first
  bool dit_la_collection = false;      ///< has the column `collection`
  bool choisit_fin_de_ligne = false;   ///< takes --crlf
  bool marque_absents = false;         ///< has a mark for values that its readers refuse
  bool termine_par_la_classe = false;  ///< ends every row with the class, even when it is hidden
  std::string (*ecrire_mot)(const std::string& mot) = tel_quel;  ///< a name, as it is written
  void (*ecrire)(std::ostream& out, BaseBuffer& table, const Morceau& morceau) = nullptr;
};

/// The first is the one that is written when none is asked for.
inline constexpr auto formats = std::to_array<Format>({
    {.mot = "weka",
     .extension = ".arff",
     .sens = "ARFF",
     .dit_la_collection = true,
     .marque_absents = true,
     .termine_par_la_classe = true,
     .ecrire_mot = mot_arff,
     .ecrire = ecrire_weka},
    {.mot = "torch",
     .extension = ".txt",
     .sens = "table de nombres",
     .veut_le_total = true,
     .termine_par_la_classe = true,
     .ecrire = ecrire_torch},
    {.mot = "csv",
     .extension = ".csv",
     .toute_valeur = true,
     .dit_la_collection = true,
     .choisit_fin_de_ligne = true,
     .ecrire = ecrire_format_csv},
});

inline constexpr const Format& format_csv = formats[2];
static_assert(format_csv.mot == "csv");

}  // namespace topomine
