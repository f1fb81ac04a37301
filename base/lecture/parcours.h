#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/base.h"
#include "base/lecture/journal.h"
#include "base/lecture/tranches.h"
#include "base/lecture/xml.h"
#include "texte/nombres.h"

namespace topomine {

/// A walk over the entities of one document, for a run or, when its journal is strict, for a strict
/// reading. What the document must have and has not ends a run by a fault (see Journal::faute); a
/// strict reading reports it and continues with the caller's default, or with an empty Noeud, on
/// which all functions here do nothing.
class Parcours {
 public:
  /// lecteur: the reader's signature, for faults.
  Parcours(const char* lecteur, const std::string& fichier, Journal& journal)
      : lecteur_(lecteur), fichier_(fichier), journal_(journal), strict_(journal.strict()) {}

  bool stricte() const { return strict_ != nullptr; }

  /// Entities of that kind come, counted from the first.
  void sorte(const char* sorte);
  /// The entities that a list holds: each of its children, whatever its name.
  Noeud premiere(Noeud liste) { return liste ? entite(liste.premier()) : Noeud(); }
  Noeud suivante(Noeud precedente) {
    const Noeud n = precedente.suivant();
    // Text left unread belongs to this slice and would be freed with it.
    const bool reste = !nombres_.sans_reste() && !nombres_.bouche();
    return entite(n ? n : dans_la_tranche_suivante(precedente, reste));
  }
  /// Reads the entity's "Ident"; messages name it by this number from now on.
  int ident(Noeud n);
  /// Stores a copy of the entity under its "Ident", replacing an earlier one. One whose number a
  /// strict reading could not read is left out.
  template <class Entite>
  void ranger(const Base& base, std::map<int, Entite>& table, const Entite& entite) {
    if (!numero_) return;
    table.insert_or_assign(*numero_, entite);
    if (base.disp) tracer_rangement();
  }

  /// First child of that name, which must be.
  Noeud enfant(Noeud parent, const char* nom, const char* expr = "node") {
    if (!parent) return {};
    const Noeud n = parent.premier(nom);
    if (!n) manque(parent, nom, expr);
    return n;
  }
  /// What follows a node of the entity n, and must be.
  Noeud apres(Noeud precedent, Noeud n, const char* quoi, Ecart ecart, const char* expr);

  /// Text of an element: the value of its first child node, which must be, up to a NUL.
  std::optional<std::string_view> texte(Noeud element, const char* expr = "node") {
    if (strict_) return element ? strict_->texte(element) : std::nullopt;
    return texte_lu(element, expr);
  }
  std::string texte_de(Noeud parent, const char* nom) {
    return std::string(texte(enfant(parent, nom)).value_or(""));
  }
  int entier(Noeud element, int sinon = 0) {
    if (strict_) return element ? strict_->entier(element).value_or(sinon) : sinon;
    return nombres_.entier(texte_lu(element));
  }
  int entier(Noeud parent, const char* nom, int sinon = 0) {
    return entier(enfant(parent, nom), sinon);
  }
  double reel(Noeud element, double sinon = 0.0) {
    if (strict_) return element ? strict_->reel(element).value_or(sinon) : sinon;
    return nombres_.reel(texte_lu(element));
  }
  double reel(Noeud parent, const char* nom, double sinon = 0.0) {
    return reel(enfant(parent, nom), sinon);
  }
  /// Number in the "Cell" of the child `nom`.
  double cellule(Noeud parent, const char* nom, double sinon = 0.0) {
    return reel(enfant(parent, nom), "Cell", sinon);
  }
  /// Number of another entity. A strict reading takes 0 for one that is not positive.
  int reference(Noeud element);
  /// Calls `ajouter` with the number in each child of the optional element `nom`.
  template <class Ajouter>
  void pour_chaque_entier(Noeud n, const char* nom, Ajouter ajouter) {
    const Noeud liste = n.premier(nom);
    if (!liste) return;
    for (Noeud e = liste.premier(); e; e = e.suivant())
      if (const auto v = entier_lu(e)) ajouter(*v);
  }
  /// Topology letter of a piece, or a character that is none.
  char topologie(Noeud element);

  /// Number and content of a slot: the number in element `cases.sous` when there is exactly one,
  /// else the count itself, after a warning when it is not 0. In a strict reading: nothing when the
  /// slot has no valid number, content 0 when it names no entity.
  std::optional<Case> lire_case(Cases& cases, Noeud place);
  void cases_manquantes(const Cases& cases, Noeud n) {
    if (strict_ && n) strict_->cases_manquantes(cases, n);
  }
  /// For a strict reading alone. True when it has been told.
  bool ecart(Ecart e, Noeud ou, std::string_view texte = {}) {
    if (strict_ && ou) strict_->ecart(e, ou, texte);
    return stricte();
  }
  void nom_de_piece(std::string_view nom) {
    if (strict_) strict_->nom_de_piece(nom);
  }
  void famille(Noeud n, const Piece& piece, const Piece& gardee, bool nouvelle) {
    if (strict_) strict_->famille(n, piece, gardee, nouvelle);
  }

  Journal& journal() { return journal_; }

 private:
  Noeud entite(Noeud n);
  std::string_view texte_lu(Noeud element, const char* expr = "node") const {
    const Noeud n = element.premier();
    if (!n) faute(expr, element.parent(), element.valeur());
    return n.valeur();
  }
  std::optional<int> entier_lu(Noeud element) {
    if (strict_) return strict_->entier(element);
    return nombres_.entier(texte_lu(element));
  }
  void manque(Noeud parent, const char* nom, const char* expr) const;
  [[noreturn]] void faute(const char* expr, Noeud parent, std::string_view nom) const;
  void tracer_rangement();

  const char* lecteur_;
  const char* sorte_ = "";
  const std::string& fichier_;
  Journal& journal_;
  JournalStrict* strict_;
  int rang_ = 0;
  std::optional<int> numero_;
  FluxNombres nombres_;  // one conversion for the whole reading
  FluxCaracteres caracteres_;
};

/// True when the node's value begins with `debut`.
inline bool nom_commence(Noeud n, std::string_view debut) {
  return std::string_view(n.valeur()).starts_with(debut);
}

}  // namespace topomine
