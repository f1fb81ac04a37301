#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

class BaseBuffer;

namespace topomine {

// Comma-separated values as in RFC 4180: lines end in CR LF, a field that holds a comma, a quote or
// a line end is quoted, with its quotes doubled.

/// Appends one field to a line under way.
void ajouter_champ_csv(std::string& ligne, std::string_view champ);

/// Writes one line.
void ecrire_ligne_csv(std::ostream& out, const std::vector<std::string>& champs);

/// A header line with the names of the shown attributes, then a line per example with just these
/// columns, in column order. Unlike the other writers, no column is written when it is hidden.
/// An example too short for a column leaves its field empty.
std::ostream& ecrire_csv(std::ostream& out, const BaseBuffer& table);

}  // namespace topomine
