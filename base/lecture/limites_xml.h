#pragma once

#include <string>

namespace topomine {

/// Deepest nesting, and most attributes of one element, that a document may have to be parsed:
/// TinyXML recurses once per level and compares each attribute with all those before it.
inline constexpr int niveaux_max = 1000;
inline constexpr int attributs_max = 1000;

/// Most edges that a face may list: those beyond its four slots stay for the faces after it.
inline constexpr int edges_max = 1000;

struct LimitesXml {
  int niveaux = niveaux_max;
  int attributs = attributs_max;
};

/// Follows the document as TinyXML would read it and tells whether it can be handed over: within
/// the limits. `texte` ends in four NULs and has no other, see analyser_xml. Whether it is
/// well-formed is for the parser: up to its first error the two see the same elements.
bool xml_lisible(const std::string& texte, LimitesXml limites = {});

}  // namespace topomine
