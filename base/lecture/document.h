#pragma once

#include <optional>
#include <string>

#include "base/lecture/limites_xml.h"

class Base;

namespace topomine {

class DocumentXml;
class Journal;

/// Parses a document held in memory; false when it is not well-formed or goes beyond the limits of
/// limites_xml.h. One without any element is well-formed for the parser. `texte` is spent.
/// suivi: with the line of each node, at a price (see DocumentXml).
bool analyser_xml(std::string texte, DocumentXml& doc, bool suivi = false);

/// The element by which a document that could not be parsed goes beyond those limits, if any.
std::optional<Depassement> hors_limites(std::string texte);

/// A walk: reads what a document holds into the base. `fichier` only names it in messages.
using Marche = bool (*)(Base& base, const DocumentXml& doc, const std::string& fichier,
                        Journal& journal);

/// How the failure to load a document is said: at the end of the opening's line, or below it.
enum class Echec { meme_ligne, ligne_neuve };

/// Loads `fichier` and hands it to `marche`; false when it cannot be loaded, or the walk says so.
bool lire_document(Base& base, const std::string& fichier, Marche marche, Echec echec,
                   Journal& journal);

}  // namespace topomine
