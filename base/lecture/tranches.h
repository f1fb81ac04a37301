#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "base/lecture/xml.h"

namespace topomine {

// A parsed document takes sixteen times the memory of its text. Where messages may wait until all
// is read, a large one is parsed in slices, each with some of the entities.

/// Text of a slice, about: what it becomes fits a processor's cache, and the parser is as fast as
/// on whole documents; with slices of a megabyte it takes twice the time.
inline constexpr std::size_t taille_tranche = std::size_t{1} << 15;

/// Texts below this are not worth cutting.
inline constexpr std::size_t taille_a_couper = std::size_t{1} << 18;

/// Where a document can be cut: `bornes` are the ends of the parts of its top element's content,
/// the first one its beginning. Empty unless the document is plain: a declaration at most, then one
/// element with nothing around it, no tag with attributes, no comment, no other markup.
struct Coupe {
  std::string_view nom;  ///< of the top element
  std::vector<std::size_t> bornes;
};
Coupe reperer_coupe(std::string_view texte, std::size_t taille);

/// A slice cannot be read, or not as a slice: the document is to be read whole.
struct TrancheRefusee : std::exception {};

/// A document read in slices. Nodes of a slice are invalid once the next is asked for.
class Tranches {
 public:
  /// `texte` is what preparer_xml made.
  Tranches(std::string texte, std::size_t taille);
  Tranches(const Tranches&) = delete;
  Tranches& operator=(const Tranches&) = delete;

  /// False when the text is not to be cut, or its first slice is not well-formed.
  bool commencer();
  const DocumentXml& document() const { return doc_; }
  /// The first entity of the next slice, none at the end. Throws TrancheRefusee at one that is not
  /// well-formed.
  Noeud suivante();

 private:
  bool analyser();

  std::string texte_;
  Coupe coupe_;
  std::size_t rang_ = 0;
  DocumentXml doc_;
  Tranches* moi_ = this;  // what nodes find their Tranches by
};

/// The entity after the last one of a slice; none when the document has no slices. retenue: the
/// slice is still needed. Throws TrancheRefusee then, and at a slice that is not well-formed.
Noeud dans_la_tranche_suivante(Noeud derniere, bool retenue);

}  // namespace topomine
