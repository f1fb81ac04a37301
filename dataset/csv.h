#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class BaseBuffer;

namespace topomine {

// Comma-separated values as in RFC 4180, but for the end of the lines: LF, as Unix tools expect it,
// or CR LF where that is asked for. A field that holds a comma, a quote or a line end is quoted,
// with its quotes doubled.

enum class FinDeLigne { lf, crlf };

/// Appends one field to a line under way.
void ajouter_champ_csv(std::string& ligne, std::string_view champ);

/// Writes one line.
void ecrire_ligne_csv(std::ostream& out, const std::vector<std::string>& champs,
                      FinDeLigne fin = FinDeLigne::lf);

/// The names of the shown attributes, in column order; the class column comes last. Unlike the
/// other writers, a hidden class is not written.
void ecrire_entete_csv(std::ostream& out, const BaseBuffer& table, FinDeLigne fin = FinDeLigne::lf);
/// A line per example with just these columns, in this order. An example too short for a column
/// leaves its field empty.
void ecrire_lignes_csv(std::ostream& out, const BaseBuffer& table, FinDeLigne fin = FinDeLigne::lf);

/// The fields of each line of a text; either end of line will do, a blank line has no fields.
/// Nothing when a quoted field does not end, or goes on behind its quotes.
std::optional<std::vector<std::vector<std::string>>> lire_csv(std::string_view texte);

}  // namespace topomine
