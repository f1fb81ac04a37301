#pragma once

#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "verifie/constat.h"

namespace topomine {

/// What becomes of a finding beside others, see regles.cpp.
enum class Origine {
  a_part,    ///< said whatever else is
  lecture,   ///< an element is not read as meant: explains what the rules say of its entity
  regle,     ///< may follow from what the reading says of the entity
  ensemble,  ///< likewise, or from two files that do not belong together
};

/// What is known of a kind of finding, the same wherever it is found.
struct Fiche {
  Code code;
  Gravite gravite;
  std::string_view titre;
  std::string_view sens;    ///< what it means
  std::string_view table;   ///< why it matters to the table
  std::string_view remede;  ///< how to mend it, in a few words
  Origine origine = Origine::regle;
};

/// All of them, by code.
std::span<const Fiche> catalogue();
const Fiche& fiche(Code code);

/// "V012", and back; nothing for a text that is no code of the catalogue.
std::string nom(Code code);
std::optional<Code> code_nomme(std::string_view cherche);

/// "erreur", "avertissement" or "avis".
std::string_view nom(Gravite gravite);

void expliquer(std::ostream& out, const Fiche& fiche);
/// The tables of docs/verifie.md.
void ecrire_catalogue(std::ostream& out);

}  // namespace topomine
