#include "base/lecture/parcours.h"

#include <algorithm>
#include <cstdlib>

#include "texte/affichable.h"

namespace topomine {

namespace {

/// Names from the top element down to `nom`, a child of `n`.
std::string chemin_xml(Noeud n, std::string_view nom) {
  std::string chemin(nom);
  for (; n && n.est_element(); n = n.parent()) chemin.insert(0, std::string(n.valeur()) + "/");
  return affichable(chemin);
}

}  // namespace

void Parcours::sorte(const char* sorte) {
  sorte_ = sorte;
  rang_ = 0;
  numero_.reset();
  if (strict_) strict_->sorte(sorte);
}

Noeud Parcours::entite(Noeud n) {
  for (; n; n = n.suivant()) {
    ++rang_;
    numero_.reset();
    if (!strict_ || strict_->entite(n)) break;
  }
  return n;
}

int Parcours::ident(Noeud n) {
  const Noeud element = enfant(n, "Ident");
  if (element) numero_ = entier_lu(element);
  if (strict_ && numero_) strict_->ident(n, *numero_);
  return numero_.value_or(0);
}

Noeud Parcours::apres(Noeud precedent, Noeud n, const char* quoi, Ecart e, const char* expr) {
  if (!precedent) return {};
  const Noeud suivant = precedent.suivant();
  if (!suivant && !ecart(e, n)) faute(expr, n, quoi);
  return suivant;
}

int Parcours::reference(Noeud element) {
  if (!strict_) return entier(element);
  const auto v = element ? entier_lu(element) : std::nullopt;
  if (v && *v <= 0) ecart(Ecart::reference_nulle, element);
  return std::max(v.value_or(0), 0);
}

char Parcours::topologie(Noeud element) {
  if (!strict_) return caracteres_.caractere(texte_lu(element));
  const auto lu = texte(element);
  const char lettre = lu && lu->size() == 1 ? lu->front() : '\0';
  if (lu && Piece()._topology(lettre) == '\0') ecart(Ecart::topologie, element, *lu);
  return lettre;
}

std::optional<Case> Parcours::lire_case(Cases& cases, Noeud place) {
  if (strict_) return strict_->lire_case(cases, place);
  const int numero = entier(place, "Numero");
  const int nb = entier(place, cases.nb);
  if (nb == 1) return Case{numero, entier(place, cases.sous)};
  if (nb != 0) journal_.avertissement(cases.plusieurs);
  return Case{numero, nb};
}

void Parcours::manque(Noeud parent, const char* nom, const char* expr) const {
  if (!strict_) faute(expr, parent, nom);
  strict_->absent(parent, nom);
}

void Parcours::faute(const char* expr, Noeud parent, std::string_view nom) const {
  std::string entite;
  if (numero_)
    entite = std::string(sorte_) + ' ' + std::to_string(*numero_);
  else if (rang_ > 0)
    entite = std::string(sorte_) + " de rang " + std::to_string(rang_);
  journal_.faute({lecteur_, expr, fichier_, entite, chemin_xml(parent, nom)});
  std::abort();
}

void Parcours::tracer_rangement() {
  journal_.trace("save " + std::string(sorte_) + ' ' + std::to_string(*numero_) + " ... done.");
}

}  // namespace topomine
