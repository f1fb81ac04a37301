#pragma once

#include <optional>
#include <string>

namespace topomine {

/// Deepest nesting, and most attributes of one element, that a document may have to be parsed:
/// TinyXML recurses once per level and compares each attribute with all those before it.
inline constexpr int niveaux_max = 1000;
inline constexpr int attributs_max = 1000;

/// Most edges that a face may list: those beyond its four slots stay for the faces after it.
inline constexpr int edges_max = 1000;

/// Others than these are for fuzzing, which tells how exact xml_lisible is.
struct LimitesXml {
  int niveaux = niveaux_max;
  int attributs = attributs_max;
};

/// The element that goes beyond a limit.
struct Depassement {
  bool niveaux;  ///< by its nesting, else by its attributes
  int ligne;     ///< counted from 1
};

/// Follows the document as TinyXML would read it, to the first element that goes beyond the limits.
/// `texte` is what preparer_xml made. Whether it is well-formed is for
/// the parser: up to its first error the two see the same elements.
std::optional<Depassement> depassement(const std::string& texte, LimitesXml limites = {});

/// It can be handed over to the parser.
inline bool xml_lisible(const std::string& texte, LimitesXml limites = {}) {
  return !depassement(texte, limites);
}

/// What the names of elements and attributes begin with and go on with, for the parser.
bool commence_nom(char c);
bool continue_nom(char c);

}  // namespace topomine
