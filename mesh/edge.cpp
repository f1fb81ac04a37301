#include "mesh/edge.h"

#include <cstdio>
#include <iostream>

using namespace topomine;

void Edge::set_vrtxs(int /*v0*/, int /*v1*/) {
  vrtxs_.clear();
  vrtxs_.reserve(nb_vrtxs_edge);
}

int Edge::_face(int i) const {
  if (!dans_liste(faces_, i)) {
    std::cerr << "erreur de renvoi de la face " << i << " de l'edge " << id_ << std::endl;
    static_cast<void>(std::getchar());
  }
  return lire_liste(faces_, i);
}

int Edge::_face(int i, int v) {
  if (!dans_liste(faces_, i)) {
    std::cerr << "erreur d'ajout de la face " << i << " = " << v << " sur l'edge " << id_
              << std::endl;
    static_cast<void>(std::getchar());
  }
  return ecrire_liste(faces_, i, v);
}

void Edge::clear() {
  id_ = carac_ = 0;
  bc_.clear();
  faces_.clear();
  remettre_a_zero(vrtxs_, nb_vrtxs_edge);
}

void Edge::Print() const {
  imprimer(std::cout);
}

void Edge::imprimer(std::ostream& out) const {
  out << "Edge " << id_ << '\n' << "Carac : " << carac_ << '\n';
  out << "Nb vertices: " << vrtxs_.size() << '\n' << "Vertices\n";
  imprimer_places(out, "Vertex", vrtxs_, nb_vrtxs_edge);
  imprimer_liste(out, "Nb BCs: ", "BCs : ", bc_);
  imprimer_liste(out, "Nb faces: ", "faces : ", faces_);
  out << '\n';
}
