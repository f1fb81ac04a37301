#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class BaseBuffer;

namespace topomine {

struct Bornes {
  double min = 0.0, max = 0.0;

  bool operator==(const Bornes&) const = default;
};

/// Minimum and maximum of numeric attributes, by name: measured on one table, applied to others as
/// well, so that what is learnt on the one holds on the other. As in normalize(), x becomes
/// x / d - min / d with d = max - min, or 1 for an attribute that was constant; a value outside the
/// bounds comes out below 0 or above 1.
struct Echelle {
  std::map<std::string, Bornes> bornes;

  /// That of every numeric attribute of a table; none without examples.
  static Echelle mesurer(const BaseBuffer& table);
  /// The names of the table's shown numeric attributes that have no bounds here.
  std::vector<std::string> manquants(const BaseBuffer& table) const;
  /// Maps the numeric attributes that have bounds.
  void appliquer(BaseBuffer& table) const;
};

/// Maps a numeric column by these bounds; any other column stays.
void ramener(BaseBuffer& table, int col, const Bornes& bornes);

/// Csv: attribute, minimum, maximum, in the order of the table's attributes, with all the digits
/// that tell a number from its neighbours.
void ecrire_echelle(std::ostream& out, const Echelle& echelle, const BaseBuffer& table);

/// Reads what ecrire_echelle writes. False, with what is wrong in `faute`, when the text is
/// anything else: a bound that is not a finite number, a minimum above its maximum, an attribute
/// that comes twice.
bool lire_echelle(std::string_view texte, Echelle& echelle, std::string& faute);

/// Numbers of the numeric attributes whose magnitude is below epsilon become 0.
void annuler_poussieres(BaseBuffer& table, double epsilon);

/// Names of the attributes that have one value over all examples, or none.
std::vector<std::string> attributs_constants(const BaseBuffer& table);

}  // namespace topomine
