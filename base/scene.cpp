#include "base/scene.h"

#include <cstddef>
#include <iostream>
#include <string_view>
#include <utility>

#include "texte/affichable.h"

using topomine::affichable;

void Avion::clear() {
  *this = Avion{};
}

void Avion::Print() const {
  imprimer(std::cout);
}

void Avion::imprimer(std::ostream& out) const {
  // "Envirgure" stands before the fuselage width, and the wing area before the chord: readers of
  // these listings know them so.
  out << "R\351f\351rences Avion\n"
      << " Nom     : " << affichable(name_) << '\n'
      << " Famille : " << affichable(family_) << '\n'
      << " Longueur : " << fuse_length_ << '\n'
      << " Envirgure: " << fuse_width_ << '\n'
      << " Hauteur  : " << height_ << '\n'
      << " Span voilure : " << wing_span_ << '\n'
      << " Surf Voilure : " << wing_area_ << '\n'
      << " Corde : " << corde_ << '\n'
      << " Sweep : " << sweep_ << '\n'
      << " Nb moteur : " << nb_engine_ << '\n'
      << '\n';
}

char Piece::_topology(char c) {
  for (const char lettre : std::string_view("CHO"))
    if (c == lettre || c == lettre + ('a' - 'A')) topology_ = lettre;
  return topology_;
}

std::string Piece::_spe(int i) const {
  if (i < 0 || i >= nb_spe()) return {};
  return specials_[static_cast<std::size_t>(i)];
}

int Piece::add_spe(std::string v) {
  specials_.push_back(std::move(v));
  return nb_spe();
}

void Piece::clear() {
  nom_.clear();
  topology_ = '\0';
  specials_.clear();
}

void Piece::Print() const {
  imprimer(std::cout);
}

void Piece::imprimer(std::ostream& out) const {
  out << "Piece : " << affichable(nom_) << " (" << affichable(fam_bc_) << ") , topologie en "
      << topology_ << '\n';
  if (!specials_.empty()) {
    out << "   particualrit\351s : ";
    for (const std::string& special : specials_) out << affichable(special) << "   ";
    out << '\n';
  }
  out << '\n';
}

std::string Raccord::_type(const std::string& t) {
  const std::string_view debut = std::string_view(t).substr(0, 3);
  if (debut == "C45" || debut == "c45")
    type_ = "C45";
  else if (debut == "C90" || debut == "c90")
    type_ = "C90";
  else
    type_.clear();
  return type_;
}

void Raccord::clear() {
  pc1_.clear();
  pc2_.clear();
  type_.clear();
}

void Raccord::Print() const {
  imprimer(std::cout);
}

void Raccord::imprimer(std::ostream& out) const {
  out << "Raccord " << affichable(pc1_) << " // " << affichable(pc2_) << " : " << type_ << '\n';
}
