#pragma once

#include <tinyxml.h>

#include <string>

namespace topomine {

// The only interface to the XML library. To change the library, change this header, xml.cpp and
// limites_xml.cpp.

/// Makes the bytes of a file the text that the parser wants: ends of lines are "\n", the first NUL
/// ends it, and four of them follow.
void preparer_xml(std::string& texte);

/// A node of a document (an element, a text, a comment ...), or none. On an empty Noeud only
/// operator bool may be called. Good for as long as its document.
class Noeud {
 public:
  Noeud() = default;
  explicit operator bool() const { return n_ != nullptr; }
  bool operator==(const Noeud&) const = default;

  /// Children and siblings are of any kind; with a name, those of that value.
  Noeud premier() const { return Noeud(n_->FirstChild()); }
  Noeud premier(const char* nom) const { return Noeud(n_->FirstChild(nom)); }
  Noeud suivant() const { return Noeud(n_->NextSibling()); }
  Noeud suivant(const char* nom) const { return Noeud(n_->NextSibling(nom)); }
  Noeud parent() const { return Noeud(n_->Parent()); }

  bool est_element() const { return n_->ToElement() != nullptr; }
  bool est_texte() const { return n_->ToText() != nullptr; }
  bool est_commentaire() const { return n_->ToComment() != nullptr; }

  /// Name of an element, else what the node holds, up to a NUL.
  const char* valeur() const { return n_->Value(); }
  /// Counted from 1; 1 too in a document that was parsed without lines.
  int ligne() const { return n_->Row() > 0 ? n_->Row() : 1; }
  /// What the document was marked with, or null.
  const void* marque() const {
    const TiXmlDocument* doc = n_->GetDocument();
    return doc ? doc->GetUserData() : nullptr;
  }

 private:
  friend class DocumentXml;
  explicit Noeud(const TiXmlNode* n) : n_(n) {}

  const TiXmlNode* n_ = nullptr;
};

/// A parsed document; its node is the parent of the top element.
class DocumentXml {
 public:
  /// Replaces what was there; false when the parser refuses the text, which preparer_xml made and
  /// xml_lisible lets pass. suivi: with the line of each node, which costs a tenth of the time.
  bool analyser(const std::string& texte, bool suivi);

  Noeud noeud() const { return Noeud(&doc_); }
  /// The first element; none when there is no element at all.
  Noeud racine() const { return Noeud(doc_.RootElement()); }

  /// Where the parser stopped, when it refused.
  struct Arret {
    bool vide;  ///< there was nothing to parse
    int ligne, colonne;
  };
  Arret arret() const;

  void marquer(void* marque) { doc_.SetUserData(marque); }

  /// For tests and fuzzing, which take trees apart.
  TiXmlDocument& arbre() { return doc_; }

 private:
  TiXmlDocument doc_;
};

}  // namespace topomine
