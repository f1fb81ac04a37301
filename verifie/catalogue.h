#pragma once

#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "verifie/constat.h"

namespace topomine {

/// What is known of a kind of finding, the same wherever it is found.
struct Fiche {
  Code code;
  Gravite gravite;
  std::string_view titre;
  std::string_view sens;    ///< what it means
  std::string_view table;   ///< why it matters to the table
  std::string_view remede;  ///< how to mend it, in a few words
};

/// All of them, by code.
std::span<const Fiche> catalogue();
const Fiche& fiche(Code code);

/// "V012", and back; nothing for a text that is no code of the catalogue.
std::string nom(Code code);
std::optional<Code> code_nomme(std::string_view nom);

/// "erreur", "avertissement" or "avis".
std::string_view nom(Gravite gravite);

void expliquer(std::ostream& out, const Fiche& fiche);
/// The tables of docs/verifie.md.
void ecrire_catalogue(std::ostream& out);

}  // namespace topomine
