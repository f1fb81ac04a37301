#pragma once

#include <string>

/// Deepest nesting, and most attributes of one element, that a document may have to be parsed:
/// TinyXML recurses once per level and compares each attribute with all those before it.
inline constexpr int niveaux_max = 1000;
inline constexpr int attributs_max = 1000;

/// Follows the document as TinyXML would read it and tells whether it can be handed over: within
/// the two limits above. `texte` ends at its first NUL. Whether it is well-formed is for the
/// parser: up to its first error the two see the same elements.
bool xml_lisible(const std::string& texte);
